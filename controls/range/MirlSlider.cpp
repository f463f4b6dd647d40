// The skin slider: a three-slice background and a thumb image on a plain window, a value in
// m_nMin to m_nMax, hover by holding the capture, and WM_USER + 120 to the parent on each
// change that the mouse makes.
#include "MirlRange.h"

#include "MirlImage.h"
#include "MirlScrollLogic.h"

namespace {

POINT PointOf(LPARAM lParam)
{
    POINT point = {static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam))};
    return point;
}

} // namespace

MirlSlider::MirlSlider()
    : m_pPicThumb(NULL), m_pPicThumbGlow(NULL), m_pPicThumbDown(NULL), m_pPicThumbDisable(NULL), m_pPicBk(NULL),
      m_pPicBkDisable(NULL), m_pPicBkBorder(NULL), m_pPicBkDisableBorder(NULL), m_pCurrentThumb(NULL), m_nPos(50),
      m_nMin(0), m_nMax(99), m_bHover(false), m_bActive(false), m_bBorder(false), m_bDisabled(false), m_nTrackPos(0),
      m_rcThumb()
{
}

MirlSlider::~MirlSlider()
{
    FreeImages();
    Release();
}

HWND MirlSlider::Create(MirlWindowBase *parent, HWND hWndParent, ATL::_U_RECT rect, const wchar_t *name,
                        unsigned long style, unsigned long exStyle, ATL::_U_MENUorID menuOrID, void *createParam)
{
    return Base::Create(parent, hWndParent, rect, name, style, exStyle, menuOrID, createParam);
}

BOOL MirlSlider::SubclassWindow(HWND hWnd)
{
    return Base::SubclassWindow(hWnd);
}

BOOL MirlSlider::SubclassWindow(MirlWindowBase *source, MirlWindowBase *parent)
{
    return Base::SubclassWindow(source, parent);
}

void MirlSlider::FreeImages()
{
    Gdiplus::Bitmap **images[] = {&m_pPicThumb, &m_pPicThumbGlow, &m_pPicThumbDown, &m_pPicThumbDisable,
                                  &m_pPicBk,    &m_pPicBkDisable, &m_pPicBkBorder,  &m_pPicBkDisableBorder};
    for (Gdiplus::Bitmap **image : images) {
        delete *image;
        *image = NULL;
    }
    m_pCurrentThumb = NULL;
}

// ---------------------------------------------------------------------------------------------
// Attributes

int MirlSlider::GetRange(int &min, int &max) const
{
    min = m_nMin;
    max = m_nMax;
    return m_nPos;
}

int MirlSlider::SetRange(int min, int max, bool redraw)
{
    m_nMin = min;
    m_nMax = max;
    m_nPos = MIRL::SliderClampPos(m_nPos, min, max);
    if (redraw && m_hWnd != NULL && IsWindow()) {
        InvalidateRect(NULL, TRUE);
    }
    return m_nPos;
}

int MirlSlider::GetPos() const
{
    return m_nPos;
}

int MirlSlider::SetPos(int pos, bool redraw)
{
    const int former = m_nPos;
    pos = MIRL::SliderClampPos(pos, m_nMin, m_nMax);
    if (pos != m_nPos) {
        // A change always repaints.
        SetPosInternal(pos, true);
    } else if (redraw && m_hWnd != NULL && IsWindow()) {
        InvalidateRect(NULL, TRUE);
    }
    return former;
}

void MirlSlider::SetPosInternal(int pos, bool redraw)
{
    if (m_nMin == m_nMax) {
        return;
    }
    const bool changed = m_nPos != pos;
    m_nPos = pos;
    if (m_hWnd != NULL && IsWindow()) {
        if (changed) {
            MIRL::NotifyAccessibleEvent(m_hWnd, EVENT_OBJECT_VALUECHANGE);
        }
        ObtainTrackPos(ClientWidth());
        if (redraw) {
            InvalidateRect(NULL, TRUE);
        }
    }
}

void MirlSlider::ObtainTrackPos(int width)
{
    m_nTrackPos = MIRL::SliderTrackPos(m_nPos, m_nMin, m_nMax, width);
    if (m_pPicThumb != NULL) {
        const int imageWidth = static_cast<int>(m_pPicThumb->GetWidth());
        m_rcThumb.left = m_nTrackPos - imageWidth / 2;
        m_rcThumb.right = m_rcThumb.left + imageWidth;
    }
}

void MirlSlider::SetPostion(int x, unsigned flags)
{
    const MIRL::MirlSliderPosition position = MIRL::SliderPositionFromX(x, m_nMin, m_nMax, ClientWidth());
    m_nTrackPos = position.trackPos;
    if (m_pPicThumb != NULL) {
        const int imageWidth = static_cast<int>(m_pPicThumb->GetWidth());
        m_rcThumb.left = m_nTrackPos - imageWidth / 2;
        m_rcThumb.right = m_rcThumb.left + imageWidth;
    }
    if (m_nPos != position.pos) {
        m_nPos = position.pos;
        MIRL::NotifyAccessibleEvent(m_hWnd, EVENT_OBJECT_VALUECHANGE);
    }
    ::SendMessageW(::GetParent(m_hWnd), WM_SLIDER_POSITION, MIRL::SliderNotifyWParam(m_nPos, flags),
                   reinterpret_cast<LPARAM>(m_hWnd));
}

void MirlSlider::CancelHover()
{
    m_bHover = false;
    m_bActive = false;
    m_pCurrentThumb = m_pPicThumb;
    if (m_hWnd != NULL && IsWindow()) {
        InvalidateRect(NULL, TRUE);
    }
}

int MirlSlider::ClientWidth() const
{
    RECT client = {};
    ::GetClientRect(m_hWnd, &client);
    return client.right;
}

void MirlSlider::ReleaseOwnCapture()
{
    if (::GetCapture() == m_hWnd) {
        ::ReleaseCapture();
    }
}

Gdiplus::Bitmap *MirlSlider::GetPaintedBackground() const
{
    if (m_bDisabled) {
        return m_bBorder ? m_pPicBkDisableBorder : m_pPicBkDisable;
    }
    return m_bBorder ? m_pPicBkBorder : m_pPicBk;
}

Gdiplus::Bitmap *MirlSlider::LoadNamedImage(const wchar_t *attribute, const wchar_t *defaultName) const
{
    MirlUiWindow::Attribute *named = m_UiWindow != NULL ? m_UiWindow->GetAttribute(attribute) : NULL;
    return MIRL::LoadSkinBitmap(named != NULL ? named->GetValue() : defaultName);
}

// ---------------------------------------------------------------------------------------------
// Messages

LRESULT MirlSlider::OnCreate(UINT uMsg, WPARAM wParam, LPARAM lParam, BOOL &bHandled)
{
    Base::OnCreate(uMsg, wParam, lParam, bHandled);
    m_bDisabled = (GetWindowLongW(GWL_STYLE) & WS_DISABLED) != 0;
    FreeImages();
    m_pPicBk = LoadNamedImage(L"PicBk", L"SliderBk");
    m_pPicBkDisable = LoadNamedImage(L"PicBkS", L"SliderBkDisable");
    m_pPicBkBorder = LoadNamedImage(L"PicBkBorder", L"SliderBkBorder");
    m_pPicBkDisableBorder = LoadNamedImage(L"PicBkSBorder", L"SliderBkDisableBorder");
    m_pPicThumb = LoadNamedImage(L"Pic", L"SliderTrack");
    m_pPicThumbGlow = LoadNamedImage(L"PicC", L"SliderTrackGlow");
    m_pPicThumbDown = LoadNamedImage(L"PicD", L"SliderTrackDown");
    m_pPicThumbDisable = LoadNamedImage(L"PicS", L"SliderTrackDisable");
    m_pCurrentThumb = m_pPicThumb;
    ObtainTrackPos(ClientWidth());
    bHandled = TRUE;
    return 0;
}

LRESULT MirlSlider::OnDestroy(UINT uMsg, WPARAM wParam, LPARAM lParam, BOOL &bHandled)
{
    ReleaseOwnCapture();
    FreeImages();
    m_bHover = false;
    m_bActive = false;
    Base::OnDestroy(uMsg, wParam, lParam, bHandled);
    bHandled = TRUE;
    return 0;
}

LRESULT MirlSlider::OnSize(UINT, WPARAM, LPARAM lParam, BOOL &bHandled)
{
    const int width = static_cast<short>(LOWORD(lParam));
    const int height = static_cast<short>(HIWORD(lParam));
    if (m_pPicThumb != NULL) {
        MIRL::SliderThumbSpan(height, static_cast<int>(m_pPicThumb->GetHeight()), &m_rcThumb.top, &m_rcThumb.bottom);
    }
    ObtainTrackPos(width);
    InvalidateRect(NULL, TRUE);
    // The framework drops the memory picture of the old size.
    bHandled = FALSE;
    return 0;
}

LRESULT MirlSlider::OnMouseMove(UINT, WPARAM wParam, LPARAM lParam, BOOL &)
{
    DefWindowProc();
    const POINT point = PointOf(lParam);
    const UINT flags = static_cast<UINT>(wParam);
    const HWND self = m_hWnd;
    if (::GetCapture() != self && ::IsWindow(::GetActiveWindow()) && ::IsWindow(::GetParent(self))) {
        m_bHover = true;
        SetCapture();
        InvalidateRect(NULL, TRUE);
    } else {
        POINT screen = point;
        ClientToScreen(&screen);
        const HWND under = ::WindowFromPoint(screen);
        if (under != NULL && under != self && !(flags & MK_LBUTTON)) {
            CancelHover();
            ReleaseOwnCapture();
            return 0;
        }
    }
    if (!m_bHover) {
        return 0;
    }
    if (flags & MK_LBUTTON) {
        if (m_pPicThumbDown != NULL) {
            m_pCurrentThumb = m_pPicThumbDown;
        }
        SetPostion(point.x, flags);
        if (::IsWindow(self)) {
            RedrawWindow(NULL, NULL, RDW_INVALIDATE | RDW_ERASE | RDW_UPDATENOW);
        }
        return 0;
    }
    Gdiplus::Bitmap *wanted =
        m_pPicThumbGlow != NULL && ::PtInRect(&m_rcThumb, point) ? m_pPicThumbGlow : m_pPicThumb;
    if (wanted != m_pCurrentThumb) {
        m_pCurrentThumb = wanted;
        InvalidateRect(NULL, TRUE);
    }
    return 0;
}

LRESULT MirlSlider::OnKillFocus(UINT, WPARAM, LPARAM, BOOL &)
{
    DefWindowProc();
    CancelHover();
    return 0;
}

LRESULT MirlSlider::OnSetFocus(UINT, WPARAM, LPARAM, BOOL &bHandled)
{
    m_bActive = true;
    bHandled = FALSE;
    return 0;
}

LRESULT MirlSlider::OnLButtonDown(UINT, WPARAM wParam, LPARAM lParam, BOOL &)
{
    DefWindowProc();
    SetCapture();
    if (m_pPicThumbDown != NULL) {
        m_pCurrentThumb = m_pPicThumbDown;
    }
    const POINT point = PointOf(lParam);
    const HWND self = m_hWnd;
    // A press on the thumb neither moves it nor tells the parent.
    if (!::PtInRect(&m_rcThumb, point)) {
        SetPostion(point.x, static_cast<unsigned>(wParam));
    }
    if (::IsWindow(self)) {
        InvalidateRect(NULL, TRUE);
    }
    return 0;
}

LRESULT MirlSlider::OnLButtonUp(UINT, WPARAM wParam, LPARAM lParam, BOOL &)
{
    DefWindowProc();
    const POINT point = PointOf(lParam);
    POINT screen = point;
    ClientToScreen(&screen);
    const HWND under = ::WindowFromPoint(screen);
    if (under != NULL && under != m_hWnd) {
        CancelHover();
        ReleaseOwnCapture();
        InvalidateRect(NULL, TRUE);
        SetPostion(point.x, static_cast<unsigned>(wParam));
        return 0;
    }
    // The glow comes back at the next move; the capture stays until the mouse leaves.
    m_pCurrentThumb = m_pPicThumb;
    InvalidateRect(NULL, TRUE);
    SetPostion(point.x, static_cast<unsigned>(wParam));
    return 0;
}

LRESULT MirlSlider::OnActivate(UINT, WPARAM wParam, LPARAM, BOOL &)
{
    DefWindowProc();
    if (LOWORD(wParam) != WA_INACTIVE) {
        m_bActive = true;
    } else {
        CancelHover();
    }
    return 0;
}

LRESULT MirlSlider::OnEnable(UINT, WPARAM wParam, LPARAM, BOOL &)
{
    DefWindowProc();
    if (wParam == 0) {
        CancelHover();
    }
    return 0;
}

LRESULT MirlSlider::OnCancelMode(UINT, WPARAM, LPARAM, BOOL &)
{
    DefWindowProc();
    CancelHover();
    return 0;
}

LRESULT MirlSlider::OnCaptureChanged(UINT, WPARAM, LPARAM lParam, BOOL &bHandled)
{
    // Taking the capture that this window already holds is no loss (Wine sends the message
    // even then).
    if (reinterpret_cast<HWND>(lParam) != m_hWnd) {
        if (m_bHover) {
            ReleaseOwnCapture();
            InvalidateRect(NULL, TRUE);
        }
        CancelHover();
    }
    bHandled = FALSE;
    return 0;
}

// ---------------------------------------------------------------------------------------------
// Painting

void MirlSlider::DoPaint(WTL::CDCHandle dc)
{
    RECT client = {};
    ::GetClientRect(m_hWnd, &client);
    Gdiplus::Graphics g(static_cast<HDC>(dc));
    if (m_Transparent) {
        PaintParentBkGround(dc);
    } else if (m_BkBrush != NULL) {
        g.FillRectangle(m_BkBrush, 0, 0, client.right, client.bottom);
    }
    g.SetInterpolationMode(Gdiplus::InterpolationModeNearestNeighbor);
    g.SetPixelOffsetMode(Gdiplus::PixelOffsetModeHalf);
    PaintBkGround(g, GetPaintedBackground(), WTL::CRect(client));
    PaintBkTrack(g, m_pCurrentThumb);
}

void MirlSlider::PaintBkGround(Gdiplus::Graphics &g, Gdiplus::Bitmap *bmp, const WTL::CRect &rc)
{
    if (bmp == NULL) {
        return;
    }
    const int W = static_cast<int>(bmp->GetWidth());
    const int H = static_cast<int>(bmp->GetHeight());
    const int y = rc.top + (rc.Height() - H) / 2;
    MIRL::MirlSliceSpan slices[3];
    MIRL::SliderBackgroundSlices(W, rc.Width(), slices);
    for (const MIRL::MirlSliceSpan &slice : slices) {
        g.DrawImage(bmp, Gdiplus::Rect(slice.targetX, y, slice.targetWidth, H), slice.sourceX, 0, slice.sourceWidth, H,
                    Gdiplus::UnitPixel);
    }
}

void MirlSlider::PaintBkTrack(Gdiplus::Graphics &g, Gdiplus::Bitmap *bmp)
{
    if (bmp == NULL) {
        return;
    }
    const int width = m_rcThumb.right - m_rcThumb.left;
    const int height = m_rcThumb.bottom - m_rcThumb.top;
    g.DrawImage(bmp, Gdiplus::Rect(m_rcThumb.left, m_rcThumb.top, width, height), 0, 0, width, height,
                Gdiplus::UnitPixel);
}
