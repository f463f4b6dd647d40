// The dialog button: a dialog's own button taken over by replacing its window procedure.
#include "MirlDlgButton.h"

#include "MirlButtonLogic.h"
#include "MirlDlgLogic.h"
#include "MirlDlgSubclass.h"
#include "MirlImage.h"

#include <cwchar>
#include <new>

namespace {

const MIRL::DlgSubclass kSubclass = {L"MirlDlgButton.OldProc", &MirlDlgButton::WindowProc};

MirlDlgButton *ObjectOf(HWND hWnd)
{
    return reinterpret_cast<MirlDlgButton *>(::GetWindowLongPtrW(hWnd, GWLP_USERDATA));
}

POINT PointOf(LPARAM lParam)
{
    POINT point = {static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam))};
    return point;
}

} // namespace

MirlDlgButton::MirlDlgButton()
    : m_TextColor(0xFFFFFFFF), m_BkColor(0), m_Transparent(0), m_hWnd(NULL), m_Font(NULL), m_LogFont(),
      m_LayoutValid(false), m_OldProc(NULL), m_TextLayout(false), m_Align(0), m_MouseOnBtn(false), m_Pressed(0),
      m_Focused(0), m_Disabled(0), m_Default(0), m_CheckType(0), m_Checked(0), m_ArrowWidth(0), m_BmpArrow(NULL),
      m_Parent(NULL), m_LastCaptionRect(), m_LastSlot(-1)
{
    m_LogFont.lfHeight = 14;
    m_LogFont.lfWeight = 800;
    wcscpy_s(m_LogFont.lfFaceName, LF_FACESIZE, L"Arial");
}

MirlDlgButton::~MirlDlgButton()
{
    // A window that outlives its object must not keep a pointer to it.
    Release();
    FreeImages();
    delete m_Font;
    m_Font = NULL;
}

void MirlDlgButton::FreeImages()
{
    delete m_BmpArrow;
    m_BmpArrow = NULL;
    for (MirlButtonImage &image : m_Images) {
        image.Free();
    }
}

const MirlButtonImage *MirlDlgButton::GetImage(int slot) const
{
    return slot >= 0 && slot < ImageSlots ? &m_Images[slot] : NULL;
}

// ---------------------------------------------------------------------------------------------
// Taking over and letting go

int MirlDlgButton::SubclassWindowBtn(HWND hWnd, MirlWindowBase *parent)
{
    if (!::IsWindow(hWnd) || kSubclass.Holds(hWnd)) {
        return 1;
    }
    // One object, one window: a second call moves the object to the new button.
    Release();
    FreeImages();
    delete m_Font;
    m_Font = NULL;

    wchar_t text[256] = {};
    ::GetWindowTextW(hWnd, text, 256);
    m_Text = text;
    m_Parent = parent;

    // The type is replaced by owner draw (an OR alone would turn a plain radio button into a
    // command link): the system no longer flips a check box at a click.
    const DWORD style = static_cast<DWORD>(::GetWindowLongPtrW(hWnd, GWL_STYLE));
    const unsigned int type = MIRL::DlgButtonType(style);
    ::SetWindowLongPtrW(hWnd, GWL_STYLE, static_cast<LONG_PTR>((style & ~static_cast<DWORD>(BS_TYPEMASK)) | BS_OWNERDRAW));

    m_hWnd = hWnd;
    m_OldProc = kSubclass.Take(hWnd, this);

    m_BmpArrow = MIRL::LoadSkinBitmap(L"CmBtnArrow");
    m_ArrowWidth = m_BmpArrow != NULL ? static_cast<int>(m_BmpArrow->GetWidth()) - 4 : 0;

    const wchar_t *names[ImageSlots];
    bool required[ImageSlots];
    MIRL::DlgButtonImageNames(type, names, required);
    MirlUI *ui = MirlUI::Instance();
    for (int slot = 0; slot < ImageSlots; ++slot) {
        if (names[slot] != NULL && ui != NULL) {
            // A missing required image is a skin fault; it shows as an empty slot.
            LoadBitmapFromSkin(slot, static_cast<MirlUiElementImage *>(ui->GetUiElement(names[slot], UI_ELEMENT_IMAGE)));
        }
    }
    m_CheckType = MIRL::IsDlgCheckType(type) ? 1 : 0;
    m_Checked = 0;

    HDC dc = ::GetDC(hWnd);
    if (dc != NULL) {
        m_Font = new Gdiplus::Font(dc, &m_LogFont);
        ::ReleaseDC(hWnd, dc);
    }
    if (m_Font != NULL && m_Font->GetLastStatus() != Gdiplus::Ok) {
        delete m_Font;
        m_Font = NULL;
    }
    m_TextLayout.SetFont(m_Font);
    m_TextLayout.SetStyle(m_Align);
    m_TextLayout.SetText(m_Text.c_str());
    m_LayoutValid = false;

    m_Default = !m_CheckType && (style & 1) != 0 ? 1 : 0;
    ::InvalidateRect(hWnd, NULL, FALSE);
    return 1;
}

void MirlDlgButton::UnSubclass()
{
    Release();
}

void MirlDlgButton::Release()
{
    if (m_OldProc != NULL && m_MouseOnBtn && ::IsWindow(m_hWnd) && ::GetCapture() == m_hWnd) {
        ::ReleaseCapture();
    }
    kSubclass.GiveBack(m_hWnd, this, m_OldProc);
    m_OldProc = NULL;
    m_hWnd = NULL;
    m_MouseOnBtn = false;
}

// ---------------------------------------------------------------------------------------------
// Messages

LRESULT CALLBACK MirlDlgButton::WindowProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam)
{
    MirlDlgButton *self = ObjectOf(hWnd);
    if (self == NULL || self->m_hWnd != hWnd) {
        return kSubclass.CallFormer(hWnd, uMsg, wParam, lParam);
    }
    return MIRL::Dispatch(kSubclass, self, &MirlDlgButton::Release, hWnd, uMsg, wParam, lParam);
}

LRESULT MirlDlgButton::OnMsg(HWND, UINT uMsg, WPARAM wParam, LPARAM lParam, int &handled)
{
    handled = 0;
    switch (uMsg) {
    case WM_ACTIVATE: OnActivate(LOWORD(wParam)); break;
    case WM_KILLFOCUS: OnKillFocus(); break;
    case WM_ENABLE: OnEnable(static_cast<BOOL>(wParam)); break;
    case WM_SETTEXT: OnSetText(reinterpret_cast<const wchar_t *>(lParam)); break;
    case WM_PAINT: OnPaint(reinterpret_cast<HDC>(wParam)); break;
    // A picture of the window (PrintWindow, a composer) paints as WM_PAINT with a context does.
    case WM_PRINTCLIENT:
        if (wParam != 0) {
            OnPaint(reinterpret_cast<HDC>(wParam));
        }
        break;
    case WM_ERASEBKGND: break;
    case WM_CANCELMODE: CancelHover(); break;
    case WM_DRAWITEM:
    case OCM_DRAWITEM: DrawItem(static_cast<UINT>(wParam), reinterpret_cast<LPDRAWITEMSTRUCT>(lParam)); break;
    case BM_SETCHECK: OnSetCheck(wParam); break;
    case WM_MOUSEMOVE: OnMouseMove(static_cast<UINT>(wParam), PointOf(lParam)); break;
    case WM_CAPTURECHANGED: OnCaptureChanged(); break;
    default: break;
    }
    return 0;
}

void MirlDlgButton::CancelHover()
{
    if (m_MouseOnBtn) {
        m_MouseOnBtn = false;
        ::InvalidateRect(m_hWnd, NULL, TRUE);
    }
}

void MirlDlgButton::OnActivate(UINT state)
{
    if (state == WA_INACTIVE) {
        CancelHover();
    }
}

void MirlDlgButton::OnKillFocus()
{
    CancelHover();
}

void MirlDlgButton::OnEnable(BOOL enable)
{
    if (!enable) {
        CancelHover();
    }
}

void MirlDlgButton::OnSetText(const wchar_t *text)
{
    m_Text = text != NULL ? text : L"";
    m_TextLayout.SetText(m_Text.c_str());
    m_LayoutValid = false;
    ::InvalidateRect(m_hWnd, NULL, TRUE);
}

void MirlDlgButton::OnPaint(HDC given)
{
    MIRL::PaintThroughMemoryDC(m_hWnd, given, [this](HDC dc) { DoPaint(dc); });
}

void MirlDlgButton::OnSetCheck(WPARAM state)
{
    if (!m_CheckType) {
        return;
    }
    m_Checked = MIRL::DlgCheckAfterSetCheck(m_Checked != 0, state) ? 1 : 0;
    ::InvalidateRect(m_hWnd, NULL, TRUE);
}

void MirlDlgButton::OnMouseMove(UINT flags, POINT point)
{
    // A press that began elsewhere doesn't wake the hover.
    if ((flags & MK_LBUTTON) && !m_MouseOnBtn) {
        return;
    }
    if (::GetCapture() != m_hWnd && ::IsWindow(::GetActiveWindow()) && ::IsWindow(::GetParent(m_hWnd))) {
        m_MouseOnBtn = true;
        ::SetCapture(m_hWnd);
        ::InvalidateRect(m_hWnd, NULL, TRUE);
        return;
    }
    POINT screen = point;
    ::ClientToScreen(m_hWnd, &screen);
    HWND under = ::WindowFromPoint(screen);
    if (under == NULL || under == m_hWnd) {
        return;
    }
    m_MouseOnBtn = false;
    ::InvalidateRect(m_hWnd, NULL, TRUE);
    if (!(flags & MK_LBUTTON)) {
        ::ReleaseCapture();
    }
}

void MirlDlgButton::OnCaptureChanged()
{
    if (!m_MouseOnBtn) {
        return;
    }
    // The capture has already gone to the window in lParam: releasing it here would take it
    // from that window. Only a capture still held by this button is let go.
    if (::GetCapture() == m_hWnd) {
        ::ReleaseCapture();
    }
    ::InvalidateRect(m_hWnd, NULL, TRUE);
}

int MirlDlgButton::OnClicked(UINT, int, HWND)
{
    if (m_CheckType) {
        m_Checked = m_Checked ? 0 : 1;
        if (::IsWindow(m_hWnd)) {
            ::InvalidateRect(m_hWnd, NULL, TRUE);
        }
    }
    return 0;
}

// ---------------------------------------------------------------------------------------------
// Painting

void MirlDlgButton::LoadBitmapFromSkin(int slot, MirlUiElementImage *element)
{
    if (slot < 0 || slot >= ImageSlots || element == NULL) {
        return;
    }
    m_Images[slot].Adopt(MIRL::LoadElementBitmap(element));
}

void MirlDlgButton::LoadBitmapFromSkin(int slot, Gdiplus::Bitmap *bitmap)
{
    if (slot < 0 || slot >= ImageSlots) {
        delete bitmap;
        return;
    }
    m_Images[slot].Adopt(bitmap);
}

bool MirlDlgButton::PrepareRect(Gdiplus::Graphics &graphics, bool)
{
    RECT client = {};
    ::GetClientRect(m_hWnd, &client);
    if (client.right - client.left <= 0 || client.bottom - client.top <= 0) {
        return false;
    }
    m_TextLayout.SetRect(Gdiplus::RectF(static_cast<Gdiplus::REAL>(client.left), static_cast<Gdiplus::REAL>(client.top),
                                        static_cast<Gdiplus::REAL>(client.right - client.left),
                                        static_cast<Gdiplus::REAL>(client.bottom - client.top)));
    m_TextLayout.Measure(graphics);
    return true;
}

void MirlDlgButton::PaintBackground(HDC dc, const RECT &client)
{
    if (m_Transparent && m_Parent != NULL) {
        MIRL::PaintParentBackground(m_hWnd, m_Parent, dc);
        return;
    }
    Gdiplus::Graphics graphics(dc);
    Gdiplus::SolidBrush fill((Gdiplus::Color(m_BkColor)));
    graphics.FillRectangle(&fill, 0, 0, client.right, client.bottom);
}

void MirlDlgButton::DoPaint(HDC dc)
{
    if (dc == NULL) {
        return;
    }
    const LRESULT state = ::SendMessageW(m_hWnd, BM_GETSTATE, 0, 0);
    const bool pushed = (state & BST_PUSHED) != 0;
    m_Pressed = (m_CheckType ? (pushed || m_Checked) : pushed) ? 1 : 0;
    m_Focused = (state & BST_FOCUS) ? 1 : 0;
    m_Disabled = ::IsWindowEnabled(m_hWnd) ? 0 : 1;

    RECT client = {};
    ::GetClientRect(m_hWnd, &client);
    PaintFace(dc, client.right, client.bottom);
}

void MirlDlgButton::PaintFace(HDC dc, LONG right, LONG bottom)
{
    RECT client = {};
    ::GetClientRect(m_hWnd, &client);
    PaintBackground(dc, client);
    Gdiplus::Graphics graphics(dc);
    // One pixel narrower than the control, as every button face.
    Gdiplus::Rect rect(0, 0, MIRL::TruncateToInt(static_cast<double>(right) - 1), bottom);
    if (m_CheckType) {
        DrawCheckBox(graphics, rect, m_Pressed != 0, m_Disabled != 0);
        return;
    }
    if (!m_LayoutValid) {
        m_LayoutValid = PrepareRect(graphics, !m_Text.empty());
    }
    DrawTheBitmapTx(graphics, rect, m_Pressed != 0, m_Disabled != 0);
}

void MirlDlgButton::DrawItem(UINT, LPDRAWITEMSTRUCT item)
{
    if (item == NULL || item->hDC == NULL || m_hWnd == NULL) {
        return;
    }
    MirlMemoryDC dc(item->hDC, item->rcItem);
    if (dc.m_hDC == NULL) {
        return;
    }
    ::SetBkMode(dc, TRANSPARENT);
    const bool selected = (item->itemState & ODS_SELECTED) != 0;
    m_Pressed = (m_CheckType ? (selected || m_Checked) : selected) ? 1 : 0;
    m_Focused = (item->itemState & ODS_FOCUS) ? 1 : 0;
    m_Disabled = (item->itemState & ODS_DISABLED) ? 1 : 0;

    PaintFace(dc, item->rcItem.right, item->rcItem.bottom);
}

void MirlDlgButton::DrawCheckBox(Gdiplus::Graphics &graphics, Gdiplus::Rect &rect, bool pressed, bool)
{
    // Neither hover nor the disabled state changes a check box's look.
    const MirlButtonImage &image = m_Images[MIRL::DlgCheckBoxSlot(pressed)];
    m_LastSlot = image.Bitmap != NULL ? MIRL::DlgCheckBoxSlot(pressed) : -1;
    if (image.Bitmap != NULL) {
        const int top = MIRL::DlgCheckImageTop(rect.Height, image.Height);
        graphics.DrawImage(image.Bitmap, Gdiplus::Rect(2, top, static_cast<INT>(image.Width), static_cast<INT>(image.Height)),
                           0, 0, static_cast<INT>(image.Width), static_cast<INT>(image.Height), Gdiplus::UnitPixel);
    }
    if (m_Text.empty() || m_Font == NULL) {
        return;
    }
    Gdiplus::StringFormat format;
    format.SetAlignment(Gdiplus::StringAlignmentNear);
    format.SetLineAlignment(Gdiplus::StringAlignmentCenter);
    format.SetHotkeyPrefix(Gdiplus::HotkeyPrefixShow);
    format.SetFormatFlags(Gdiplus::StringFormatFlagsDisplayFormatControl);
    // The width isn't reduced by the offset: the layout reaches past the right edge.
    const Gdiplus::RectF layout(static_cast<Gdiplus::REAL>(image.Width + 4), 0.0f, static_cast<Gdiplus::REAL>(rect.Width),
                                static_cast<Gdiplus::REAL>(rect.Height));
    Gdiplus::SolidBrush brush((Gdiplus::Color(m_TextColor)));
    graphics.DrawString(m_Text.c_str(), -1, m_Font, layout, &format, &brush);
    m_LastCaptionRect = layout;
}

void MirlDlgButton::DrawTheBitmapTx(Gdiplus::Graphics &graphics, Gdiplus::Rect &rect, bool pressed, bool disabled)
{
    bool present[ImageSlots];
    for (int i = 0; i < ImageSlots; ++i) {
        present[i] = m_Images[i].Bitmap != NULL;
    }
    m_LastSlot = MIRL::DlgButtonSlot(pressed, m_MouseOnBtn && !m_CheckType, disabled, present);
    if (m_LastSlot < 0) {
        return;
    }
    PainImageInRect(graphics, m_Images[m_LastSlot].Bitmap, rect);
    if (m_Text.empty() || m_Font == NULL) {
        return;
    }
    Gdiplus::StringFormat format;
    format.SetHotkeyPrefix(Gdiplus::HotkeyPrefixShow);
    format.SetFormatFlags(Gdiplus::StringFormatFlagsDisplayFormatControl);
    format.SetAlignment((m_Align & ALIGN_LEFT)    ? Gdiplus::StringAlignmentNear
                        : (m_Align & ALIGN_RIGHT) ? Gdiplus::StringAlignmentFar
                                                  : Gdiplus::StringAlignmentCenter);
    format.SetLineAlignment((m_Align & ALIGN_TOP)      ? Gdiplus::StringAlignmentNear
                            : (m_Align & ALIGN_BOTTOM) ? Gdiplus::StringAlignmentFar
                                                       : Gdiplus::StringAlignmentCenter);
    Gdiplus::RectF text(static_cast<Gdiplus::REAL>(rect.X), static_cast<Gdiplus::REAL>(rect.Y),
                        static_cast<Gdiplus::REAL>(rect.Width), static_cast<Gdiplus::REAL>(rect.Height));
    // The caption sinks by a pixel while pressed; the face doesn't.
    if (pressed) {
        text.Y += 1.0f;
    }
    const MIRL::DlgCaptionColors colors = MIRL::DlgButtonColors(m_MouseOnBtn, disabled);
    Gdiplus::RectF shadow = text;
    shadow.Y += 1.0f;
    Gdiplus::SolidBrush shadowBrush((Gdiplus::Color(colors.shadow)));
    Gdiplus::SolidBrush textBrush((Gdiplus::Color(colors.text)));
    graphics.DrawString(m_Text.c_str(), -1, m_Font, shadow, &format, &shadowBrush);
    graphics.DrawString(m_Text.c_str(), -1, m_Font, text, &format, &textBrush);
    m_LastCaptionRect = text;
}

void MirlDlgButton::PainImageInRect(Gdiplus::Graphics &graphics, Gdiplus::Bitmap *image, const Gdiplus::Rect &rect)
{
    MIRL::PaintThreeSlices(graphics, image, rect);
}
