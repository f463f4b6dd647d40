#include "MirlGroupBox.h"

#include "MirlImage.h"
#include "controls/container/MirlContainerLogic.h"

// The slider's notification to its parent: a slider in a group box reaches the dialog too.
#define MIRL_SLIDER_NOTIFY (WM_USER + 120)

MirlGroupBox::MirlGroupBox() : m_BmpLeft(NULL), m_BmpMiddle(NULL), m_BmpRight(NULL) {}

MirlGroupBox::~MirlGroupBox()
{
    delete m_BmpLeft;
    delete m_BmpMiddle;
    delete m_BmpRight;
}

HWND MirlGroupBox::Create(MirlWindowBase *parent, HWND hWndParent, ATL::_U_RECT rect, const wchar_t *name,
                          unsigned long style, unsigned long exStyle, ATL::_U_MENUorID menuOrID, void *createParam)
{
    return MirlWindowImpl<MirlGroupBox>::Create(parent, hWndParent, rect, name, style, exStyle, menuOrID, createParam);
}

BOOL MirlGroupBox::SubclassWindow(HWND hWnd)
{
    return MirlWindowImpl<MirlGroupBox>::SubclassWindow(hWnd);
}

BOOL MirlGroupBox::SubclassWindow(MirlWindowBase *source, MirlWindowBase *parent)
{
    return MirlWindowImpl<MirlGroupBox>::SubclassWindow(source, parent);
}

LRESULT MirlGroupBox::OnCreate(UINT, WPARAM, LPARAM, BOOL &)
{
    LoadingSkinResource();
    // Three bitmaps of one file; a skin without "BarX" gives a box without a bar.
    delete m_BmpLeft;
    delete m_BmpMiddle;
    delete m_BmpRight;
    m_BmpLeft = MIRL::LoadSkinBitmap(L"BarX");
    m_BmpMiddle = MIRL::LoadSkinBitmap(L"BarX");
    m_BmpRight = MIRL::LoadSkinBitmap(L"BarX");
    SetWindowTextW(m_Text.c_str());
    if (!m_ToolTip.empty()) {
        SetTooltipText(m_ToolTip.c_str(), true);
    }
    CreateChildWindows();
    return 0;
}

bool MirlGroupBox::IsForwarded(UINT uMsg)
{
    switch (uMsg) {
    case WM_DRAWITEM:
    case WM_MEASUREITEM:
    case WM_DELETEITEM:
    case WM_VKEYTOITEM:
    case WM_CHARTOITEM:
    case WM_COMPAREITEM:
    case WM_NOTIFY:
    case WM_COMMAND:
    case WM_HSCROLL:
    case WM_VSCROLL:
    case WM_PARENTNOTIFY:
    case MIRL_SLIDER_NOTIFY:
        return true;
    default:
        return uMsg >= WM_CTLCOLORMSGBOX && uMsg <= WM_CTLCOLORSTATIC;
    }
}

LRESULT MirlGroupBox::ForwardNotifications(UINT uMsg, WPARAM wParam, LPARAM lParam, BOOL &bHandled)
{
    if (!IsForwarded(uMsg)) {
        bHandled = FALSE;
        return 0;
    }
    bHandled = TRUE;
    return ::SendMessageW(::GetParent(m_hWnd), uMsg, wParam, lParam);
}

void MirlGroupBox::DoPaint(WTL::CDCHandle dc)
{
    RECT client = {};
    GetClientRect(&client);
    if (m_Transparent) {
        PaintParentBkGround(dc.m_hDC);
    }
    Gdiplus::Graphics graphics(dc.m_hDC);
    if (!m_Transparent && m_BkBrush != NULL) {
        graphics.FillRectangle(m_BkBrush, 0, 0, client.right - client.left, client.bottom - client.top);
    }
    if (m_BmpLeft == NULL || m_BmpMiddle == NULL || m_BmpRight == NULL) {
        return;
    }
    // Stretching one column must not blend in its neighbours.
    graphics.SetInterpolationMode(Gdiplus::InterpolationModeNearestNeighbor);
    graphics.SetPixelOffsetMode(Gdiplus::PixelOffsetModeHalf);
    const int height = static_cast<int>(m_BmpLeft->GetHeight());
    const MIRL::MirlGroupBarParts parts =
        MIRL::PlaceGroupBar(client.right - client.left, static_cast<int>(m_BmpLeft->GetWidth()), height,
                            static_cast<int>(m_BmpRight->GetWidth()));
    graphics.DrawImage(m_BmpLeft, Gdiplus::Rect(parts.left.x, parts.left.y, parts.left.width, parts.left.height), 0,
                       0, parts.left.width, height, Gdiplus::UnitPixel);
    if (parts.middle.width > 0) {
        graphics.DrawImage(m_BmpMiddle,
                           Gdiplus::Rect(parts.middle.x, parts.middle.y, parts.middle.width, parts.middle.height), 0,
                           0, 1, height, Gdiplus::UnitPixel);
    }
    graphics.DrawImage(m_BmpRight, Gdiplus::Rect(parts.right.x, parts.right.y, parts.right.width, parts.right.height),
                       0, 0, parts.right.width, height, Gdiplus::UnitPixel);
    if (!m_Text.empty() && m_TxFont != NULL && m_TxBrush != NULL) {
        Gdiplus::StringFormat format;
        format.SetLineAlignment(Gdiplus::StringAlignmentCenter);
        const Gdiplus::RectF box(parts.captionX, parts.captionY, parts.captionWidth, parts.captionHeight);
        graphics.DrawString(m_Text.c_str(), -1, m_TxFont, box, &format, m_TxBrush);
    }
}
