// The dialog static: a dialog's own label taken over by replacing its window procedure.
#include "MirlDlgStatic.h"

#include "MirlButtonLogic.h"
#include "MirlDlgLogic.h"
#include "MirlDlgSubclass.h"

#include <cwchar>
#include <new>
#include <vector>

namespace {

const MIRL::DlgSubclass kSubclass = {L"MirlDlgStatic.OldProc", &MirlDlgStatic::WindowProc};

MirlDlgStatic *ObjectOf(HWND hWnd)
{
    return reinterpret_cast<MirlDlgStatic *>(::GetWindowLongPtrW(hWnd, GWLP_USERDATA));
}

} // namespace

MirlDlgStatic::MirlDlgStatic()
    : m_TextColor(0xFFFFFFFF), m_BkColor(0xFF000000), m_Transparent(0), m_hWnd(NULL), m_BkBrush(NULL),
      m_TextBrush(NULL), m_LinkBrush(NULL), m_Font(NULL), m_LogFont(), m_OldProc(NULL), m_Align(ALIGN_LEFT),
      m_Parent(NULL), m_LinkStart(-1), m_LinkEnd(-1), m_LinkRectValid(false), m_LinkRect(), m_CursorHand(NULL),
      m_CursorArrow(NULL), m_OverLink(false)
{
    m_LogFont.lfHeight = 14;
    m_LogFont.lfWeight = 800;
    wcscpy_s(m_LogFont.lfFaceName, LF_FACESIZE, L"Arial");
}

MirlDlgStatic::~MirlDlgStatic()
{
    Release();
    FreeDrawing();
}

void MirlDlgStatic::FreeDrawing()
{
    delete m_BkBrush;
    m_BkBrush = NULL;
    delete m_TextBrush;
    m_TextBrush = NULL;
    delete m_LinkBrush;
    m_LinkBrush = NULL;
    delete m_Font;
    m_Font = NULL;
}

int MirlDlgStatic::SubclassWindowStatic(HWND hWnd, MirlWindowBase *parent)
{
    if (!::IsWindow(hWnd) || kSubclass.Holds(hWnd)) {
        return 1;
    }
    Release();
    FreeDrawing();
    m_TextHead.clear();
    m_TextLink.clear();
    m_TextTail.clear();
    m_LinkStart = -1;
    m_LinkEnd = -1;
    m_LinkRectValid = false;
    m_OverLink = false;

    std::vector<wchar_t> text(1024, L'\0');
    ::GetWindowTextW(hWnd, text.data(), 1024);
    m_Text = text.data();
    m_Parent = parent;

    m_hWnd = hWnd;
    m_OldProc = kSubclass.Take(hWnd, this);

    HDC dc = ::GetDC(hWnd);
    if (dc != NULL) {
        m_Font = new Gdiplus::Font(dc, &m_LogFont);
        ::ReleaseDC(hWnd, dc);
    }
    if (m_Font != NULL && m_Font->GetLastStatus() != Gdiplus::Ok) {
        delete m_Font;
        m_Font = NULL;
    }
    m_TextBrush = new Gdiplus::SolidBrush(Gdiplus::Color(m_TextColor));
    m_BkBrush = new Gdiplus::SolidBrush(Gdiplus::Color(m_BkColor));

    const MIRL::DialogLinkParts parts = MIRL::SplitDialogLink(m_Text);
    if (parts.found) {
        m_LinkStart = parts.start;
        m_LinkEnd = parts.end;
        m_LinkBrush = new Gdiplus::SolidBrush(Gdiplus::Color(0xFFFFFFFF));
        m_TextHead = parts.head;
        m_TextLink = parts.link;
        m_TextTail = parts.tail;
        m_Text = parts.shown;
    }
    ::InvalidateRect(hWnd, NULL, FALSE);
    return 1;
}

void MirlDlgStatic::UnSubclass()
{
    Release();
}

void MirlDlgStatic::Release()
{
    kSubclass.GiveBack(m_hWnd, this, m_OldProc);
    m_OldProc = NULL;
    m_hWnd = NULL;
}

LRESULT CALLBACK MirlDlgStatic::WindowProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam)
{
    MirlDlgStatic *self = ObjectOf(hWnd);
    if (self == NULL) {
        return kSubclass.CallFormer(hWnd, uMsg, wParam, lParam);
    }
    // The user data names another window's object: the message is dropped.
    if (self->m_hWnd != hWnd) {
        return 1;
    }
    return MIRL::Dispatch(kSubclass, self, &MirlDlgStatic::Release, hWnd, uMsg, wParam, lParam);
}

LRESULT MirlDlgStatic::OnMsg(HWND, UINT uMsg, WPARAM wParam, LPARAM lParam, int &handled)
{
    handled = 0;
    switch (uMsg) {
    case WM_SETTEXT: handled = 1; return OnSetText(reinterpret_cast<const wchar_t *>(lParam));
    case WM_PAINT: handled = 1; OnPaint(reinterpret_cast<HDC>(wParam)); return 0;
    // A picture of the window paints as WM_PAINT with a context does; without a context, nothing.
    case WM_PRINTCLIENT:
        handled = 1;
        if (wParam != 0) {
            OnPaint(reinterpret_cast<HDC>(wParam));
        }
        return 0;
    case WM_ERASEBKGND: handled = 1; return 1;
    case WM_SETCURSOR: handled = 1; OnSetCursor(); return 0;
    case WM_MOUSEMOVE: OnMouseMove(lParam); return 0;
    case WM_LBUTTONDOWN: handled = 1; OnLButtonDown(lParam); return 0;
    default: return 0;
    }
}

LRESULT MirlDlgStatic::OnSetText(const wchar_t *text)
{
    // The marks aren't looked for again, and the system window keeps its own text.
    m_Text = text != NULL ? text : L"";
    m_LinkRectValid = false;
    ::InvalidateRect(m_hWnd, NULL, TRUE);
    return 0;
}

void MirlDlgStatic::OnPaint(HDC given)
{
    MIRL::PaintThroughMemoryDC(m_hWnd, given, [this](HDC dc) { DoPaint(dc); });
}

void MirlDlgStatic::OnSetCursor()
{
    // Before the first paint of a link the cursors don't exist: SetCursor(null) hides it.
    ::SetCursor(m_OverLink && m_CursorHand != NULL ? m_CursorHand : m_CursorArrow);
}

void MirlDlgStatic::OnMouseMove(LPARAM lParam)
{
    m_OverLink = MIRL::IsInDialogLink(m_LinkRectValid, m_LinkRect, static_cast<short>(LOWORD(lParam)),
                                      static_cast<short>(HIWORD(lParam)));
}

void MirlDlgStatic::OnLButtonDown(LPARAM lParam)
{
    // A press never reaches the former procedure, beside the link too.
    if (!MIRL::IsInDialogLink(m_LinkRectValid, m_LinkRect, static_cast<short>(LOWORD(lParam)),
                              static_cast<short>(HIWORD(lParam)))) {
        return;
    }
    const WORD id = LOWORD(::GetWindowLongPtrW(m_hWnd, GWLP_ID));
    ::SendMessageW(::GetParent(m_hWnd), WM_COMMAND, id, reinterpret_cast<LPARAM>(m_hWnd));
}

void MirlDlgStatic::DoPaint(HDC dc)
{
    if (dc == NULL) {
        return;
    }
    RECT client = {};
    ::GetClientRect(m_hWnd, &client);
    if (m_Transparent && m_Parent != NULL) {
        MIRL::PaintParentBackground(m_hWnd, m_Parent, dc);
    }
    Gdiplus::Graphics graphics(dc);
    if (!(m_Transparent && m_Parent != NULL) && m_BkBrush != NULL) {
        graphics.FillRectangle(m_BkBrush, 0, 0, client.right, client.bottom);
    }
    if (m_Text.empty() || m_Font == NULL || m_TextBrush == NULL) {
        return;
    }
    const Gdiplus::RectF area(0.0f, 0.0f, static_cast<Gdiplus::REAL>(client.right), static_cast<Gdiplus::REAL>(client.bottom));
    Gdiplus::StringFormat format;
    format.SetAlignment(Gdiplus::StringAlignmentNear);
    // A label with a link sits at the top, one without is centred.
    format.SetLineAlignment(m_LinkBrush != NULL ? Gdiplus::StringAlignmentNear : Gdiplus::StringAlignmentCenter);
    format.SetHotkeyPrefix(Gdiplus::HotkeyPrefixShow);
    format.SetFormatFlags(Gdiplus::StringFormatFlagsDisplayFormatControl);
    graphics.DrawString(m_Text.c_str(), -1, m_Font, area, &format, m_TextBrush);
    if (m_LinkBrush == NULL) {
        return;
    }
    Gdiplus::RectF head;
    if (!m_TextHead.empty()) {
        graphics.MeasureString(m_TextHead.c_str(), -1, m_Font, area, &format, &head);
    }
    if (m_TextLink.empty()) {
        return;
    }
    // Shared system cursors: looked up, never destroyed.
    m_CursorHand = ::LoadCursorW(NULL, IDC_HAND);
    m_CursorArrow = ::LoadCursorW(NULL, IDC_ARROW);
    Gdiplus::RectF link;
    graphics.MeasureString(m_TextLink.c_str(), -1, m_Font, area, &format, &link);
    if (!m_LinkRectValid) {
        m_LinkRect = MIRL::DialogLinkRect(!m_TextHead.empty(), head.X, head.Y, head.Width, head.Height, link.Width);
        m_LinkRectValid = true;
    }
}
