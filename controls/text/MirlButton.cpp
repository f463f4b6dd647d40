// The skin button's behaviour: creation from the template, hover with capture, auto repeat,
// check state, URL, drop-down arrow zone, and the small attribute operations.
#include "MirlButton.h"
#include "MirlPremultiplied.h"

#include "MirlButtonLogic.h"
#include "MirlImage.h"

#include <shellapi.h>
#include <vssym32.h>

#include <climits>

int MirlButton::m_CommonRef = 0;
Gdiplus::Bitmap *MirlButton::m_CommonBmpArrow = NULL;
Gdiplus::Bitmap *MirlButton::m_CommonBmpBk[4] = {NULL, NULL, NULL, NULL};

namespace {

MIRL::UrlOpener g_UrlOpener = &::ShellExecuteW;

// The theme functions, looked up once in uxtheme.dll if the system has it.
struct ThemeApi {
    typedef HTHEME(WINAPI *OpenFunction)(HWND, LPCWSTR);
    typedef HRESULT(WINAPI *CloseFunction)(HTHEME);
    typedef HRESULT(WINAPI *DrawFunction)(HTHEME, HDC, int, int, const RECT *, const RECT *);

    OpenFunction open = NULL;
    CloseFunction close = NULL;
    DrawFunction draw = NULL;

    ThemeApi()
    {
        HMODULE module = ::LoadLibraryW(L"uxtheme.dll");
        if (module == NULL) {
            return;
        }
        open = reinterpret_cast<OpenFunction>(reinterpret_cast<void (*)()>(::GetProcAddress(module, "OpenThemeData")));
        close = reinterpret_cast<CloseFunction>(reinterpret_cast<void (*)()>(::GetProcAddress(module, "CloseThemeData")));
        draw = reinterpret_cast<DrawFunction>(
            reinterpret_cast<void (*)()>(::GetProcAddress(module, "DrawThemeBackground")));
        if (open == NULL || close == NULL || draw == NULL) {
            open = NULL;
            close = NULL;
            draw = NULL;
        }
    }
};

const ThemeApi &Theme()
{
    static const ThemeApi api;
    return api;
}

// The repeat loop on a live button: the release is a WM_LBUTTONUP taken off the queue.
class ButtonRepeat : public MIRL::MirlRepeatHooks {
public:
    ButtonRepeat(HWND button, HWND parent, DWORD delay) : m_Button(button), m_Parent(parent), m_Delay(delay)
    {
        m_Id = static_cast<WORD>(::GetDlgCtrlID(button));
    }
    bool Released() override
    {
        // A button destroyed by a command it sent is released too: its queue is gone.
        MSG msg;
        return !::IsWindow(m_Button) || ::PeekMessageW(&msg, m_Button, WM_LBUTTONUP, WM_LBUTTONUP, PM_REMOVE);
    }
    void Send() override
    {
        ::SendMessageW(m_Parent, WM_COMMAND, MAKEWPARAM(m_Id, 0), reinterpret_cast<LPARAM>(m_Button));
    }
    void Wait() override { ::Sleep(m_Delay); }

private:
    HWND m_Button;
    HWND m_Parent;
    DWORD m_Delay;
    WORD m_Id;
};

} // namespace

namespace MIRL {

UrlOpener SetUrlOpener(UrlOpener opener)
{
    UrlOpener former = g_UrlOpener;
    g_UrlOpener = opener != NULL ? opener : &::ShellExecuteW;
    return former;
}

} // namespace MIRL

MirlButtonImage::MirlButtonImage()
    : Bitmap(NULL), Width(0), Height(0), HasColorKey(false), ColorKeyHigh(0xFF000000), ColorKeyLow(0xFF000000),
      Premultiplied(NULL)
{
}

MirlButtonImage::~MirlButtonImage()
{
    Free();
}

void MirlButtonImage::Adopt(Gdiplus::Bitmap *bitmap)
{
    if (bitmap != Bitmap) {
        delete Bitmap;
        delete Premultiplied;
        Premultiplied = NULL;
    }
    Bitmap = bitmap;
    Width = bitmap != NULL ? bitmap->GetWidth() : 0;
    Height = bitmap != NULL ? bitmap->GetHeight() : 0;
}

void MirlButtonImage::Free()
{
    delete Bitmap;
    Bitmap = NULL;
    delete Premultiplied;
    Premultiplied = NULL;
}

MirlButton::MirlButton()
    : m_Align(0), m_RepeatDelay(100), m_Cursor(NULL), m_MouseOnBtn(false), m_Pressed(0), m_Focused(0),
      m_Disabled(0), m_DrawBorder(0), m_Flat(true), m_FlatFocus(0), m_AutoRepeat(0), m_Default(0), m_CheckMode(0),
      m_Checked(0), m_ArrowWidth(0), m_HighLight(false), m_OnMenu(false), m_Url(), m_BmpArrow(NULL), m_ImageRect(),
      m_ArrowX(0), m_TextLayout(true), m_OverLink(false), m_HasLink(false), m_UseTheme(0), m_Theme(NULL),
      m_HoldsCommon(false), m_PaintDC(NULL), m_HasKindAsked(false), m_KindAsked(0)
{
    m_bMsgHandled = 0;
    // Shared system cursors are never freed: each is looked up once for all buttons.
    static const HCURSOR hand = ::LoadCursorW(NULL, IDC_HAND);
    static const HCURSOR arrow = ::LoadCursorW(NULL, IDC_ARROW);
    m_CursorHand = hand;
    m_CursorArrow = arrow;
}

MirlButton::~MirlButton()
{
    FreeResources(true);
    // A button whose window never saw WM_DESTROY still lets go of the common images.
    ReleaseCommonBitmaps();
    ReleaseTheme();
    for (MirlButtonImage &image : m_Images) {
        image.Free();
    }
    Release();
}

HWND MirlButton::Create(MirlWindowBase *parent, HWND hWndParent, ATL::_U_RECT rect, const wchar_t *name,
                        unsigned long style, unsigned long exStyle, ATL::_U_MENUorID menuOrID, void *createParam)
{
    return Base::Create(parent, hWndParent, rect, name, style, exStyle, menuOrID, createParam);
}

DWORD MirlButton::CreationStyle(DWORD style)
{
    m_HasKindAsked = true;
    m_KindAsked = style & BS_TYPEMASK;
    return style | BS_OWNERDRAW;
}

BOOL MirlButton::SubclassWindow(HWND hWnd)
{
    return Base::SubclassWindow(hWnd);
}

BOOL MirlButton::SubclassWindow(MirlWindowBase *source, MirlWindowBase *parent)
{
    return Base::SubclassWindow(source, parent);
}

// ---------------------------------------------------------------------------------------------
// Attributes

void MirlButton::SetFlat(bool flat)
{
    m_Flat = flat;
    if (IsWindow()) {
        InvalidateRect(NULL);
    }
}

bool MirlButton::GetFlat() const
{
    return m_Flat;
}

void MirlButton::SetFlatFocus(bool flatFocus, bool repaint)
{
    m_FlatFocus = flatFocus ? 1 : 0;
    if (repaint && IsWindow()) {
        InvalidateRect(NULL);
    }
}

bool MirlButton::GetDefault() const
{
    return m_Default != 0;
}

void MirlButton::SetAlign(Alignment align)
{
    m_Align = align;
    if (IsWindow()) {
        InvalidateRect(NULL);
    }
}

unsigned long MirlButton::GetAlign() const
{
    return m_Align;
}

void MirlButton::DrawBorder(bool draw)
{
    m_DrawBorder = draw ? 1 : 0;
}

bool MirlButton::IsOnMenu() const
{
    return m_OnMenu;
}

void MirlButton::SetHighLight(bool highLight)
{
    m_HighLight = highLight;
}

void MirlButton::SetCheck(bool check, bool repaint)
{
    if (!m_CheckMode) {
        return;
    }
    const bool changed = (m_Checked != 0) != check;
    m_Checked = check ? 1 : 0;
    if (changed && IsWindow()) {
        MIRL::NotifyAccessibleEvent(m_hWnd, EVENT_OBJECT_STATECHANGE);
    }
    if (repaint && IsWindow()) {
        InvalidateRect(NULL);
    }
}

bool MirlButton::GetCheck() const
{
    return m_Checked != 0;
}

bool MirlButton::SetURL(const wchar_t *url)
{
    MIRL::CopyUrl(m_Url, url);
    return true;
}

bool MirlButton::SetAutoRepeat(bool repeat, unsigned long delay)
{
    m_AutoRepeat = repeat ? 1 : 0;
    m_RepeatDelay = delay;
    return true;
}

bool MirlButton::SetBtnCursor(ATL::_U_STRINGorID, HINSTANCE)
{
    return true;
}

int MirlButton::SubclassWindowBtn(HWND)
{
    return 0;
}

void MirlButton::FreeResources(bool)
{
    delete m_BmpArrow;
    m_BmpArrow = NULL;
    // Nothing sets an own cursor, and a shared system cursor must not be destroyed.
    m_Cursor = NULL;
}

void MirlButton::CancelHover()
{
    EndHover();
}

const MirlButtonImage *MirlButton::GetImage(int slot) const
{
    return slot >= 0 && slot < ImageSlots ? &m_Images[slot] : NULL;
}

int MirlButton::GetCommonRef()
{
    return m_CommonRef;
}

Gdiplus::Bitmap *MirlButton::GetCommonBackground(int index)
{
    return index >= 0 && index < 4 ? m_CommonBmpBk[index] : NULL;
}

LRESULT CALLBACK MirlButton::WindowProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam)
{
    if (uMsg == WM_LBUTTONDBLCLK) {
        uMsg = WM_LBUTTONDOWN;
    }
    return Base::WindowProc(hWnd, uMsg, wParam, lParam);
}

WNDPROC MirlButton::GetWindowProc()
{
    return WindowProc;
}

DWORD MirlButton::WindowStyle() const
{
    return static_cast<DWORD>(::GetWindowLongW(m_hWnd, GWL_STYLE));
}

const wchar_t *MirlButton::AttributeValue(const wchar_t *name) const
{
    if (m_UiWindow == NULL) {
        return NULL;
    }
    MirlUiWindow::Attribute *attribute = m_UiWindow->GetAttribute(name);
    return attribute != NULL ? attribute->GetValue() : NULL;
}

// ---------------------------------------------------------------------------------------------
// Creation and destruction

int MirlButton::OnCreate(LPCREATESTRUCTW)
{
    BOOL handled = TRUE;
    Base::OnCreate(WM_CREATE, 0, 0, handled);

    m_Text = MIRL::ExpandFirstLink(m_Text, L"(link)", L"(/link)", &m_HasLink);
    LoadCommonBitmaps();
    m_Align = MirlTextLayout::ParseLayoutStyle(AttributeValue(L"Layout"));

    const wchar_t *arrow = AttributeValue(L"PicArrow");
    m_BmpArrow = MIRL::LoadSkinBitmap(arrow != NULL ? arrow : L"CmBtnArrow");
    if (m_BmpArrow != NULL) {
        m_ArrowWidth = static_cast<int>(m_BmpArrow->GetWidth()) - 4;
    }

    LoadSlotFromAttribute(ImageHover, L"PicC");
    LoadSlotFromAttribute(ImageNormal, L"Pic");
    LoadSlotFromAttribute(ImagePressed, L"PicCD");
    LoadSlotFromAttribute(ImageDisabled, L"PicS");

    const wchar_t *url = AttributeValue(L"Url");
    if (url != NULL && MirlUI::Instance() != NULL) {
        MirlUiElementText *text = static_cast<MirlUiElementText *>(MirlUI::Instance()->GetUiElement(url, UI_ELEMENT_TEXT));
        if (text != NULL) {
            SetURL(text->GetText());
        }
    }

    if (!m_ToolTip.empty()) {
        SetTooltipText(m_ToolTip.c_str(), true);
    }

    // The kind as asked for: a button made owner-draw at its creation no longer shows it.
    const DWORD style = m_HasKindAsked ? (WindowStyle() & ~BS_TYPEMASK) | m_KindAsked : WindowStyle();
    m_HasKindAsked = false;
    if (style & BS_CHECKBOX) {
        m_CheckMode = 1;
        m_TextLayout = MirlTextLayout(false);
    }
    GrowToCaption();

    m_TextLayout.SetFont(m_TxFont);
    m_TextLayout.SetStyle(m_Align);
    m_TextLayout.SetText(m_Text.c_str());

    const DWORD present = WindowStyle();
    if ((present | BS_OWNERDRAW) != present) {
        ::SetWindowLongW(m_hWnd, GWL_STYLE, static_cast<LONG>(present | BS_OWNERDRAW));
    }
    if (!m_CheckMode) {
        m_Default = (style & BS_DEFPUSHBUTTON) ? 1 : 0;
    }

    m_UseTheme = 1;
    m_bMsgHandled = 0;
    OpenTheme();
    return 0;
}

void MirlButton::LoadSlotFromAttribute(int slot, const wchar_t *attribute)
{
    const wchar_t *name = AttributeValue(attribute);
    if (name == NULL || MirlUI::Instance() == NULL) {
        return;
    }
    LoadBitmapFromSkin(slot, static_cast<MirlUiElementImage *>(MirlUI::Instance()->GetUiElement(name, UI_ELEMENT_IMAGE)));
}

void MirlButton::GrowToCaption()
{
    if (m_TxFont == NULL || m_Text.empty() ||
        (MirlWindowBase::m_Align & (ALIGN_PARENT_WIDTH | ALIGN_PARENT_HEIGHT)) != 0) {
        return;
    }
    const bool multiline = (WindowStyle() & BS_MULTILINE) != 0;
    Gdiplus::RectF box;
    // Buttons of one font share their captions: a one-line width measured once serves them all.
    if (multiline || !MIRL::RecallTextWidth(m_TxFont, m_Text.c_str(), box.Width)) {
        HDC dc = ::GetDC(m_hWnd);
        if (dc == NULL) {
            return;
        }
        {
            Gdiplus::Graphics graphics(dc);
            // The '&' of a link still count here: a linked caption asks for a little more room.
            if (multiline) {
                Gdiplus::RectF frame(0.0f, 0.0f, static_cast<float>(m_Width), static_cast<float>(m_Height));
                graphics.MeasureString(m_Text.c_str(), -1, m_TxFont, frame, NULL, &box);
            } else {
                graphics.MeasureString(m_Text.c_str(), -1, m_TxFont, Gdiplus::PointF(0.0f, 0.0f), &box);
                MIRL::RememberTextWidth(m_TxFont, m_Text.c_str(), box.Width);
            }
        }
        ::ReleaseDC(m_hWnd, dc);
    }
    long long needed = static_cast<long long>(MIRL::TruncateToInt(box.Width)) + 12;
    if (m_Style & BS_MENU) {
        needed += m_ArrowWidth;
    }
    if (needed > m_Width) {
        m_Width = static_cast<int>(std::min<long long>(needed, INT_MAX));
    }
}

namespace {

// The buttons' theme data, opened for the class and not for a window, is the same for all of
// them: opened once for the first button and closed after the last, since each opening costs
// the system a round of window-property queries.
SRWLOCK g_ThemeLock = SRWLOCK_INIT;
HTHEME g_SharedTheme = NULL;
long g_ThemeUsers = 0;

} // namespace

void MirlButton::OpenTheme()
{
    if (m_Theme != NULL || Theme().open == NULL) {
        return;
    }
    ::AcquireSRWLockExclusive(&g_ThemeLock);
    if (g_SharedTheme == NULL) {
        g_SharedTheme = Theme().open(NULL, L"BUTTON");
    }
    if (g_SharedTheme != NULL) {
        ++g_ThemeUsers;
        m_Theme = g_SharedTheme;
    }
    ::ReleaseSRWLockExclusive(&g_ThemeLock);
}

void MirlButton::ReleaseTheme()
{
    if (m_Theme == NULL) {
        return;
    }
    ::AcquireSRWLockExclusive(&g_ThemeLock);
    if (m_Theme == g_SharedTheme && --g_ThemeUsers == 0) {
        if (Theme().close != NULL) {
            Theme().close(g_SharedTheme);
        }
        g_SharedTheme = NULL;
    }
    ::ReleaseSRWLockExclusive(&g_ThemeLock);
    m_Theme = NULL;
}

void MirlButton::DrawSystemFace(HDC dc, const RECT &rect, int state)
{
    if (m_Theme != NULL && Theme().draw != NULL) {
        Theme().draw(m_Theme, dc, BP_PUSHBUTTON, state, &rect, NULL);
    }
}

void MirlButton::OnDestroy()
{
    ReleaseCommonBitmaps();
    FreeResources(true);
    BOOL handled = TRUE;
    Base::OnDestroy(WM_DESTROY, 0, 0, handled);
    // Let go with the window: a theme handle per button would pile up over a long run.
    ReleaseTheme();
    SetMsgHandled(FALSE);
}

// ---------------------------------------------------------------------------------------------
// Messages

LRESULT MirlButton::OnMouseMessage(UINT, WPARAM, LPARAM, BOOL &bHandled)
{
    if (m_ToolTipCtrl != NULL && ::IsWindow(m_ToolTipCtrl) && GetCurrentMessage() != NULL) {
        MSG msg = *GetCurrentMessage();
        ::SendMessageW(m_ToolTipCtrl, TTM_RELAYEVENT, 0, reinterpret_cast<LPARAM>(&msg));
    }
    bHandled = FALSE;
    return 0;
}

int MirlButton::OnSetWindowText(const wchar_t *text)
{
    // The system window keeps its text, and the layout stays: the new caption is drawn in the
    // rectangle measured for the old one until the next size change.
    m_Text = text != NULL ? text : L"";
    m_TextLayout.SetText(m_Text.c_str());
    if (IsWindow()) {
        InvalidateRect(NULL);
    }
    return 0;
}

void MirlButton::OnSize(UINT, SIZE)
{
    m_LayoutReady = false;
    // A window not on screen is painted whole when it is shown; asking for it now is a wasted
    // trip to the window server for every button a template creates.
    if (::IsWindowVisible(m_hWnd)) {
        InvalidateRect(NULL);
    }
}

void MirlButton::OnKeyDown(UINT key, UINT repeat, UINT flags)
{
    if (key == VK_UP || key == VK_DOWN || key == VK_F2) {
        ::SendMessageW(::GetParent(m_hWnd), WM_KEYDOWN, key, MAKELPARAM(repeat, flags));
    }
    SetMsgHandled(FALSE);
}

void MirlButton::OnRButtonDown(UINT flags, POINT point)
{
    if (m_Style & BS_CHECKBOX) {
        HWND parent = ::GetParent(m_hWnd);
        ::MapWindowPoints(m_hWnd, parent, &point, 1);
        ::SendMessageW(parent, WM_RBUTTONDOWN, flags, MAKELPARAM(point.x, point.y));
    }
}

void MirlButton::EndHover()
{
    if (m_Flat && m_MouseOnBtn) {
        m_MouseOnBtn = false;
        InvalidateRect(NULL);
    }
}

void MirlButton::OnMouseMove(UINT flags, POINT point)
{
    DefWindowProc();
    // A press that began elsewhere doesn't wake the hover.
    if ((flags & MK_LBUTTON) && !m_MouseOnBtn) {
        return;
    }
    if (!m_Flat) {
        return;
    }
    HWND active = ::GetActiveWindow();
    HWND parent = ::GetParent(m_hWnd);

    if ((m_Url[0] != L'\0' || m_HasLink) && m_CursorHand != NULL) {
        RECT client = {};
        GetClientRect(&client);
        int left = 0;
        int right = 0;
        MIRL::LinkSpan(m_TextLayout.GetRect(), client.right, m_Align, &left, &right);
        // Only x counts: anywhere above or below the caption is over it too.
        m_OverLink = left < point.x && point.x < right;
        ::SetCursor(m_OverLink ? m_CursorHand : m_CursorArrow);
    } else {
        m_OverLink = false;
    }
    InvalidateRect(NULL);

    if (::GetCapture() != m_hWnd && ::IsWindow(active) && ::IsWindow(parent)) {
        m_MouseOnBtn = true;
        SetCapture();
        InvalidateRect(NULL);
        return;
    }
    // With the capture in hand, the pointer has left once another window lies under it.
    POINT screen = point;
    ClientToScreen(&screen);
    HWND under = ::WindowFromPoint(screen);
    if (under == NULL || under == m_hWnd) {
        return;
    }
    if (m_MouseOnBtn) {
        m_MouseOnBtn = false;
        m_OverLink = false;
        InvalidateRect(NULL);
    }
    if (!(flags & MK_LBUTTON)) {
        ::ReleaseCapture();
    }
}

void MirlButton::OnLButtonDown(UINT, POINT point)
{
    if (::GetFocus() != m_hWnd) {
        SetFocus();
    }
    DefWindowProc();
    m_OnMenu = (m_Style & BS_MENU) != 0 && point.x >= m_ArrowX;
    if (!m_AutoRepeat || !IsWindow()) {
        return;
    }
    RepeatWhileHeld();
}

void MirlButton::RepeatWhileHeld()
{
    const HWND self = m_hWnd;
    SetCapture();
    ButtonRepeat repeat(self, ::GetParent(self), m_RepeatDelay);
    MIRL::RunRepeatLoop(repeat);
    if (!::IsWindow(self)) {
        return;
    }
    // The system button completes its click and sends BN_CLICKED as usual. It must still hold
    // the capture then: a button that loses it first forgets the press (so does Wine's), and
    // no click would come.
    ::SendMessageW(self, WM_LBUTTONUP, 0, 0);
    if (!::IsWindow(self)) {
        return;
    }
    if (::GetCapture() == self) {
        ::ReleaseCapture();
    }
    POINT cursor = {};
    ::GetCursorPos(&cursor);
    ::ScreenToClient(self, &cursor);
    ::SendMessageW(self, WM_MOUSEMOVE, 0, MAKELPARAM(cursor.x, cursor.y));
}

void MirlButton::OnKillFocus(HWND)
{
    DefWindowProc();
    EndHover();
}

void MirlButton::OnActivate(UINT state, BOOL, HWND)
{
    DefWindowProc();
    if (state == WA_INACTIVE) {
        EndHover();
    }
}

void MirlButton::OnEnable(BOOL enable)
{
    DefWindowProc();
    if (!enable) {
        EndHover();
    }
}

void MirlButton::OnCancelMode()
{
    DefWindowProc();
    EndHover();
}

void MirlButton::OnCaptureChanged(HWND capture)
{
    // Taking the capture that this window already holds is no loss (the system sends the
    // message even then). Otherwise the hover mark stays: the next move takes the capture again.
    if (m_MouseOnBtn && capture != m_hWnd) {
        ::ReleaseCapture();
        InvalidateRect(NULL);
    }
    SetMsgHandled(FALSE);
}

BOOL MirlButton::OnSetCursor(HWND, UINT, UINT)
{
    if (m_Cursor == NULL) {
        SetMsgHandled(FALSE);
        return FALSE;
    }
    ::SetCursor(m_Cursor);
    return TRUE;
}

void MirlButton::OnSysColorChange()
{
    DefWindowProc();
}

LRESULT MirlButton::OnClicked(UINT code, int, HWND)
{
    if (code != BN_CLICKED) {
        SetMsgHandled(FALSE);
        return 0;
    }
    if (m_CheckMode) {
        m_Checked = m_Checked ? 0 : 1;
        MIRL::NotifyAccessibleEvent(m_hWnd, EVENT_OBJECT_STATECHANGE);
        InvalidateRect(NULL);
        return 0;
    }
    // The whole button opens its URL, not the caption alone.
    if (m_Url[0] != L'\0') {
        g_UrlOpener(NULL, L"open", m_Url, NULL, NULL, SW_SHOWMAXIMIZED);
    }
    return 0;
}

HBRUSH MirlButton::OnCtlColor(HDC, HWND)
{
    return static_cast<HBRUSH>(::GetStockObject(NULL_BRUSH));
}
