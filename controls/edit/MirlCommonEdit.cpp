// The number field and its spin arrows.
#include "MirlCommonEdit.h"

#include "MirlCommonEditLogic.h"
#include "MirlImage.h"

#include <cwchar>

namespace {

HFONT MakeDefaultTextFont()
{
    return ::CreateFontW(12, 0, 0, 0, FW_NORMAL, 0, 0, 0, 0, 0, 0, 0, 32, L"Arial");
}

void FormatNumber(int value, wchar_t (&text)[16])
{
    swprintf(text, 16, L"%d", value);
}

} // namespace

// ---------------------------------------------------------------------------------------------
// MirlCommonEdit

MirlCommonEdit::MirlCommonEdit()
    : m_Position(0), m_TextFont(MakeDefaultTextFont()), m_ImgLeft(NULL), m_ImgRight(NULL), m_ImgMiddle(NULL),
      m_ClientRect()
{
}

MirlCommonEdit::~MirlCommonEdit()
{
    FreeImages();
    if (m_TextFont != NULL) {
        ::DeleteObject(m_TextFont);
        m_TextFont = NULL;
    }
}

HWND MirlCommonEdit::Create(MirlWindowBase *parent, HWND hWndParent, ATL::_U_RECT rect, const wchar_t *name,
                            unsigned long style, unsigned long exStyle, ATL::_U_MENUorID menuOrID, void *createParam)
{
    return Base::Create(parent, hWndParent, rect, name, style, exStyle, menuOrID, createParam);
}

BOOL MirlCommonEdit::SubclassWindow(HWND hWnd)
{
    return Base::SubclassWindow(hWnd);
}

BOOL MirlCommonEdit::SubclassWindow(MirlWindowBase *source, MirlWindowBase *parent)
{
    return Base::SubclassWindow(source, parent);
}

void MirlCommonEdit::FreeImages()
{
    delete m_ImgLeft;
    m_ImgLeft = NULL;
    delete m_ImgRight;
    m_ImgRight = NULL;
    delete m_ImgMiddle;
    m_ImgMiddle = NULL;
}

void MirlCommonEdit::SetTextFont(HFONT font)
{
    if (font == NULL || font == m_TextFont) {
        return;
    }
    HFONT former = m_TextFont;
    m_TextFont = font;
    if (IsWindow()) {
        SendMessageW(WM_SETFONT, reinterpret_cast<WPARAM>(font), TRUE);
    }
    // Deleted only once the edit uses the new one.
    if (former != NULL) {
        ::DeleteObject(former);
    }
}

LRESULT MirlCommonEdit::OnCreate(UINT uMsg, WPARAM wParam, LPARAM lParam, BOOL &)
{
    // The system edit sets itself up in its own WM_CREATE.
    if (DefWindowProc(uMsg, wParam, lParam) == -1) {
        return -1;
    }
    LoadingSkinResource();
    if (!m_ToolTip.empty()) {
        SetTooltipText(m_ToolTip.c_str(), true);
    }
    FreeImages();
    m_ImgLeft = MIRL::LoadSkinBitmap(L"CommonEditLeft");
    m_ImgRight = MIRL::LoadSkinBitmap(L"CommonEditRight");
    m_ImgMiddle = MIRL::LoadSkinBitmap(L"CommonEditXScale");
    GetClientRect(&m_ClientRect);
    return 0;
}

LRESULT MirlCommonEdit::OnDestroy(UINT uMsg, WPARAM wParam, LPARAM lParam, BOOL &bHandled)
{
    return Base::OnDestroy(uMsg, wParam, lParam, bHandled);
}

LRESULT MirlCommonEdit::Repaint(BOOL &bHandled)
{
    InvalidateRect(NULL, TRUE);
    bHandled = FALSE;
    return 0;
}

LRESULT MirlCommonEdit::OnSetFocus(UINT, WPARAM, LPARAM, BOOL &bHandled)
{
    return Repaint(bHandled);
}

LRESULT MirlCommonEdit::OnLButtonDown(UINT, WPARAM, LPARAM lParam, BOOL &bHandled)
{
    Repaint(bHandled);
    SetFocus();
    ::SetCaretPos(static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam)));
    // After the second character, wherever the press fell.
    SendMessageW(EM_SETSEL, 2, 2);
    SendMessageW(EM_SCROLLCARET, 0, 0);
    return 0;
}

LRESULT MirlCommonEdit::OnLButtonDBClick(UINT, WPARAM, LPARAM, BOOL &bHandled)
{
    return Repaint(bHandled);
}

LRESULT MirlCommonEdit::OnKeyDown(UINT, WPARAM, LPARAM, BOOL &bHandled)
{
    return Repaint(bHandled);
}

LRESULT MirlCommonEdit::OnReflectedCommandMessage(UINT, WPARAM wParam, LPARAM lParam, BOOL &bHandled)
{
    if (HIWORD(wParam) != EN_CHANGE) {
        bHandled = FALSE;
        return 0;
    }
    return OnReflectedCommand(HIWORD(wParam), LOWORD(wParam), reinterpret_cast<HWND>(lParam), bHandled);
}

LRESULT MirlCommonEdit::OnReflectedCommand(UINT, int, HWND, BOOL &)
{
    wchar_t text[16] = {};
    ::GetWindowTextW(m_hWnd, text, 16);
    // The field doesn't refuse what is typed: the number just stops following it.
    if (!MIRL::IsAllDigits(text)) {
        return -1;
    }
    m_Position = MIRL::ParseDigits(text);
    return 0;
}

void MirlCommonEdit::DoPaint(WTL::CDCHandle dc)
{
    PaintParentBkGround(dc);
    Gdiplus::Graphics graphics(dc.m_hDC);
    // Pixel for pixel: a stretched one-pixel middle must not bleed into the ends.
    graphics.SetInterpolationMode(Gdiplus::InterpolationModeNearestNeighbor);
    graphics.SetPixelOffsetMode(Gdiplus::PixelOffsetModeHalf);
    const int leftWidth = m_ImgLeft != NULL ? static_cast<int>(m_ImgLeft->GetWidth()) : 0;
    const int rightWidth = m_ImgRight != NULL ? static_cast<int>(m_ImgRight->GetWidth()) : 0;
    const MIRL::CommonEditFaceParts face = MIRL::CommonEditFace(m_ClientRect.right, m_ClientRect.bottom, leftWidth, rightWidth);
    auto draw = [&graphics](Gdiplus::Bitmap *image, const RECT &target) {
        if (image == NULL || target.right <= 0 || target.bottom <= 0) {
            return;
        }
        graphics.DrawImage(image, Gdiplus::Rect(target.left, target.top, target.right, target.bottom), 0, 0,
                           static_cast<INT>(image->GetWidth()), static_cast<INT>(image->GetHeight()), Gdiplus::UnitPixel);
    };
    draw(m_ImgLeft, face.left);
    draw(m_ImgRight, face.right);
    draw(m_ImgMiddle, face.middle);

    // The number's colour and font are fixed: the skin's text colour and font don't apply.
    wchar_t text[16];
    FormatNumber(m_Position, text);
    Gdiplus::Font font(L"Arial", 12.0f, Gdiplus::FontStyleRegular, Gdiplus::UnitPixel);
    if (font.GetLastStatus() != Gdiplus::Ok) {
        return;
    }
    Gdiplus::RectF box;
    graphics.MeasureString(text, -1, &font, Gdiplus::PointF(0.0f, 0.0f), &box);
    const Gdiplus::PointF origin(MIRL::CentredOrigin(m_ClientRect.right, box.Width),
                                 MIRL::CentredOrigin(m_ClientRect.bottom, box.Height));
    Gdiplus::SolidBrush black(Gdiplus::Color(0xFF000000));
    graphics.DrawString(text, -1, &font, origin, &black);
}

// ---------------------------------------------------------------------------------------------
// MirlSpinCtrl

MirlSpinCtrl::MirlSpinCtrl() : m_Buddy(NULL), m_Position(0), m_Step(1), m_BuddyWnd(NULL)
{
}

MirlSpinCtrl::~MirlSpinCtrl()
{
}

HWND MirlSpinCtrl::Create(MirlWindowBase *parent, HWND hWndParent, ATL::_U_RECT rect, const wchar_t *name,
                          unsigned long style, unsigned long exStyle, ATL::_U_MENUorID menuOrID, void *createParam)
{
    // The up-down class exists only once the common controls have registered it.
    INITCOMMONCONTROLSEX controls = {sizeof(controls), ICC_UPDOWN_CLASS};
    ::InitCommonControlsEx(&controls);
    return Base::Create(parent, hWndParent, rect, name, style, exStyle, menuOrID, createParam);
}

BOOL MirlSpinCtrl::SubclassWindow(HWND hWnd)
{
    return Base::SubclassWindow(hWnd);
}

BOOL MirlSpinCtrl::SubclassWindow(MirlWindowBase *source, MirlWindowBase *parent)
{
    return Base::SubclassWindow(source, parent);
}

void MirlSpinCtrl::SetBuddyWindow(MirlWindowBase *buddy)
{
    m_Buddy = dynamic_cast<MirlCommonEdit *>(buddy);
    m_BuddyWnd = m_Buddy != NULL ? m_Buddy->m_hWnd : NULL;
}

MirlCommonEdit *MirlSpinCtrl::LiveBuddy() const
{
    return m_Buddy != NULL && ::IsWindow(m_BuddyWnd) ? m_Buddy : NULL;
}

int MirlSpinCtrl::GetPosition()
{
    MirlCommonEdit *buddy = LiveBuddy();
    if (buddy != NULL) {
        m_Position = buddy->GetPosition();
    }
    return m_Position;
}

void MirlSpinCtrl::ShowInBuddy(int value, bool invalidate)
{
    MirlCommonEdit *buddy = LiveBuddy();
    if (buddy == NULL) {
        return;
    }
    wchar_t text[16];
    FormatNumber(value, text);
    buddy->SetWindowTextW(text);
    if (invalidate) {
        buddy->InvalidateRect(NULL, TRUE);
    }
    buddy->SetPosition(value);
}

void MirlSpinCtrl::SetPosition(int value)
{
    // No floor here: a negative value shows.
    m_Position = value;
    ShowInBuddy(value, true);
}

LRESULT MirlSpinCtrl::OnReflectedNotify(int, LPNMHDR header)
{
    // NM_RELEASEDCAPTURE and the others carry only the header.
    if (header == NULL || header->code != static_cast<UINT>(UDN_DELTAPOS)) {
        return 0;
    }
    const NMUPDOWN *step = reinterpret_cast<const NMUPDOWN *>(header);
    // Every step works from the buddy's number; the up-down's own position isn't read.
    const int next = MIRL::SpinStep(GetPosition(), m_Step, step->iDelta);
    m_Position = next;
    ShowInBuddy(next, false);
    return 0;
}

LRESULT MirlSpinCtrl::OnReflectedNotifyMessage(UINT, WPARAM wParam, LPARAM lParam, BOOL &)
{
    return OnReflectedNotify(static_cast<int>(wParam), reinterpret_cast<LPNMHDR>(lParam));
}

LRESULT MirlSpinCtrl::OnCreate(UINT uMsg, WPARAM wParam, LPARAM lParam, BOOL &)
{
    // The system up-down sets itself up in its own WM_CREATE: without it, it answers nothing.
    if (DefWindowProc(uMsg, wParam, lParam) == -1) {
        return -1;
    }
    LoadingSkinResource();
    if (!m_ToolTip.empty()) {
        SetTooltipText(m_ToolTip.c_str(), true);
    }
    return 0;
}

LRESULT MirlSpinCtrl::OnDestroy(UINT uMsg, WPARAM wParam, LPARAM lParam, BOOL &bHandled)
{
    return Base::OnDestroy(uMsg, wParam, lParam, bHandled);
}

LRESULT MirlSpinCtrl::OnSystemPaint(UINT uMsg, WPARAM wParam, LPARAM lParam, BOOL &)
{
    return DefWindowProc(uMsg, wParam, lParam);
}
