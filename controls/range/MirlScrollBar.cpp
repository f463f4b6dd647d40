// The skin scroll bar: its own scroll information, nineteen fixed images, the thumb's geometry,
// hit zones, the 100 ms repeat of arrows and pages, and WM_VSCROLL to its owner. It never moves
// by itself: the owner answers each notification with SetScrollPos or SetScrollInfo.
#include "MirlRange.h"

#include "MirlImage.h"
#include "MirlScrollLogic.h"

#include <climits>

namespace {

const wchar_t *const kImageNames[MirlScrollBar::ImageCount] = {
    L"NormalTop",  L"HoverTop",    L"ClickTop",      L"NormalBottom",   L"HoverBottom",
    L"ClickBottom", L"YRepeateNormal", L"YRepeateHover", L"YRepeateClick", L"TopNormal",
    L"TopHover",   L"TopPressed",  L"GripNormal",    L"GripHover",      L"GripClick",
    L"BottomNormal", L"BottomHover", L"BottomClick", L"YRepeat"};

int WidthOf(Gdiplus::Bitmap *bitmap)
{
    return bitmap != NULL ? static_cast<int>(bitmap->GetWidth()) : 0;
}

int HeightOf(Gdiplus::Bitmap *bitmap)
{
    return bitmap != NULL ? static_cast<int>(bitmap->GetHeight()) : 0;
}

POINT PointOf(LPARAM lParam)
{
    POINT point = {static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam))};
    return point;
}

// One image, or part of it, stretched into a target; a missing image draws nothing.
void Draw(Gdiplus::Graphics &g, Gdiplus::Bitmap *image, int x, int y, int width, int height, int sourceX, int sourceY,
          int sourceWidth, int sourceHeight)
{
    if (image == NULL) {
        return;
    }
    g.DrawImage(image, Gdiplus::Rect(x, y, width, height), sourceX, sourceY, sourceWidth, sourceHeight,
                Gdiplus::UnitPixel);
}

void DrawWhole(Gdiplus::Graphics &g, Gdiplus::Bitmap *image, const RECT &target)
{
    Draw(g, image, target.left, target.top, target.right - target.left, target.bottom - target.top, 0, 0,
         WidthOf(image), HeightOf(image));
}

} // namespace

MirlScrollBar::MirlScrollBar()
    : m_bMouseTracked(0), m_nClickPart(ClickNone), m_nDrawPart(DrawNormal), m_nPressedPart(PressedNone),
      m_nDragOffset(-1), m_nThumbTop(-1), m_ptLast(), m_nTimerId(0), m_Images(), m_scrollInfo(), m_hNotifyWnd(NULL),
      m_nThumbLength(0), m_nMaxPos(0), m_fScale(1.0f)
{
    m_ptLast.x = -1;
    m_ptLast.y = -1;
    for (int i = 0; i < ImageCount; ++i) {
        m_Images[i] = MIRL::LoadSkinBitmap(kImageNames[i]);
    }
}

MirlScrollBar::~MirlScrollBar()
{
    for (Gdiplus::Bitmap *&image : m_Images) {
        delete image;
        image = NULL;
    }
}

HWND MirlScrollBar::Create(MirlWindowBase *parent, HWND hWndParent, ATL::_U_RECT rect, const wchar_t *name,
                           unsigned long style, unsigned long exStyle, ATL::_U_MENUorID menuOrID, void *createParam)
{
    return Base::Create(parent, hWndParent, rect, name, style, exStyle, menuOrID, createParam);
}

BOOL MirlScrollBar::SubclassWindow(HWND hWnd)
{
    return Base::SubclassWindow(hWnd);
}

BOOL MirlScrollBar::SubclassWindow(MirlWindowBase *source, MirlWindowBase *parent)
{
    return Base::SubclassWindow(source, parent);
}

// ---------------------------------------------------------------------------------------------
// The owner's interface

int MirlScrollBar::GetScrollInfo(SCROLLINFO *info)
{
    if (info != NULL) {
        *info = m_scrollInfo;
    }
    return 1;
}

int MirlScrollBar::GetScrollPos()
{
    return m_scrollInfo.nPos;
}

int MirlScrollBar::SetScrollInfo(SCROLLINFO *info)
{
    if (m_hWnd == NULL || !IsWindow() || info == NULL) {
        return 0;
    }
    if (m_hNotifyWnd == NULL) {
        m_hNotifyWnd = ::GetParent(m_hWnd);
    }
    m_scrollInfo = *info;
    RECT window = {};
    ::GetWindowRect(m_hWnd, &window);
    m_nThumbLength = MIRL::ScrollThumbLength(m_scrollInfo, window.bottom - window.top, HeightOf(m_Images[NormalTop]));
    const Rects rects = Layout();
    const int thumbHeight = rects.thumb.bottom - rects.thumb.top;
    m_nMaxPos = ThumbPos(rects.track.bottom - thumbHeight + MIRL::kScrollOverhang, rects);
    InvalidateRect(NULL, TRUE);
    return 0;
}

int MirlScrollBar::SetScrollPos(int pos)
{
    const int former = m_scrollInfo.nPos;
    m_scrollInfo.nPos = pos > m_nMaxPos ? m_nMaxPos : pos;
    return former;
}

RECT MirlScrollBar::GetUpArrowRect() const
{
    return Layout().up;
}

RECT MirlScrollBar::GetDownArrowRect() const
{
    return Layout().down;
}

RECT MirlScrollBar::GetTrackRect() const
{
    return Layout().track;
}

RECT MirlScrollBar::GetThumbRect() const
{
    return Layout().thumb;
}

// ---------------------------------------------------------------------------------------------
// Geometry and notification

MirlScrollBar::Rects MirlScrollBar::Layout() const
{
    RECT client = {};
    if (m_hWnd != NULL) {
        ::GetClientRect(m_hWnd, &client);
    }
    const MIRL::MirlScrollMetrics metrics = {HeightOf(m_Images[NormalTop]), WidthOf(m_Images[NormalTop]),
                                             HeightOf(m_Images[NormalBottom]), WidthOf(m_Images[NormalBottom])};
    const MIRL::MirlScrollRects computed = MIRL::ScrollLayout(metrics, m_fScale, client.bottom, m_nThumbLength, m_scrollInfo);
    Rects rects = {computed.up, computed.track, computed.down, computed.thumb};
    return rects;
}

int MirlScrollBar::ThumbPos(int top, const Rects &rects) const
{
    return MIRL::ScrollThumbPos(top, rects.track, rects.thumb.bottom - rects.thumb.top, m_scrollInfo);
}

bool MirlScrollBar::Notify(WPARAM code)
{
    const HWND self = m_hWnd;
    HWND target = m_hNotifyWnd != NULL ? m_hNotifyWnd : ::GetParent(self);
    ::SendMessageW(target, WM_VSCROLL, code, reinterpret_cast<LPARAM>(self));
    return ::IsWindow(self) != FALSE;
}

void MirlScrollBar::StopRepeat()
{
    if (m_nTimerId != 0) {
        m_ptLast.x = -1;
        m_ptLast.y = -1;
        ::KillTimer(m_hWnd, kRepeatTimerId);
        m_nTimerId = 0;
    }
}

void MirlScrollBar::RefreshBar(int drawPart, const RECT &up, const RECT &down, const RECT &thumb)
{
    if (drawPart == DrawUpHot || drawPart == DrawUpPressed) {
        InvalidateRect(&up, TRUE);
    } else if (drawPart == DrawDownHot || drawPart == DrawDownPressed) {
        InvalidateRect(&down, TRUE);
    } else if (drawPart == DrawThumbHot || drawPart == DrawThumbPressed) {
        InvalidateRect(&thumb, TRUE);
    }
}

// ---------------------------------------------------------------------------------------------
// Messages

LRESULT MirlScrollBar::OnCreate(UINT uMsg, WPARAM wParam, LPARAM lParam, BOOL &bHandled)
{
    Base::OnCreate(uMsg, wParam, lParam, bHandled);
    return 0;
}

LRESULT MirlScrollBar::OnDestroy(UINT uMsg, WPARAM wParam, LPARAM lParam, BOOL &bHandled)
{
    // A bar destroyed in the middle of a press leaves no timer and no capture behind.
    StopRepeat();
    m_nClickPart = ClickNone;
    m_nPressedPart = PressedNone;
    m_nDrawPart = DrawNormal;
    if (::GetCapture() == m_hWnd) {
        ::ReleaseCapture();
    }
    Base::OnDestroy(uMsg, wParam, lParam, bHandled);
    bHandled = FALSE;
    return 0;
}

LRESULT MirlScrollBar::OnLButtonDown(UINT, WPARAM, LPARAM lParam, BOOL &)
{
    DefWindowProc();
    const POINT point = PointOf(lParam);
    const Rects rects = Layout();
    const MIRL::MirlScrollRects zones = {rects.up, rects.track, rects.down, rects.thumb};
    bool alive = true;
    switch (MIRL::ScrollHitTest(point, zones)) {
    case MIRL::ScrollZoneUp:
        m_nClickPart = ClickUp;
        m_nDrawPart = DrawUpPressed;
        m_nPressedPart = PressedUp;
        alive = Notify(SB_LINEUP);
        break;
    case MIRL::ScrollZoneDown:
        m_nClickPart = ClickDown;
        m_nDrawPart = DrawDownPressed;
        m_nPressedPart = PressedDown;
        alive = Notify(SB_LINEDOWN);
        break;
    case MIRL::ScrollZoneThumb:
        m_nClickPart = ClickThumb;
        m_nDrawPart = DrawThumbPressed;
        m_nPressedPart = PressedThumb;
        m_nDragOffset = point.y - rects.thumb.top;
        m_nThumbTop = rects.thumb.top;
        break;
    case MIRL::ScrollZoneTrack:
        m_nDrawPart = DrawNormal;
        m_nPressedPart = PressedNone;
        if (point.y < rects.thumb.top) {
            m_nClickPart = ClickPageUp;
            alive = Notify(SB_PAGEUP);
        } else if (point.y >= rects.thumb.bottom) {
            m_nClickPart = ClickPageDown;
            alive = Notify(SB_PAGEDOWN);
        } else {
            m_nClickPart = ClickNone;
        }
        break;
    default:
        m_nClickPart = ClickNone;
        m_nDrawPart = DrawNormal;
        m_nPressedPart = PressedNone;
        break;
    }
    if (!alive) {
        return 0;
    }
    // A drag has no timer; every other press repeats, even one outside every part.
    if (m_nClickPart != ClickThumb) {
        StopRepeat();
        m_ptLast = point;
        m_nTimerId = ::SetTimer(m_hWnd, kRepeatTimerId, kRepeatInterval, NULL);
    }
    SetCapture();
    InvalidateRect(NULL, TRUE);
    return 0;
}

LRESULT MirlScrollBar::OnTimer(UINT, WPARAM, LPARAM, BOOL &)
{
    if (m_nClickPart < ClickUp || m_nClickPart > ClickPageDown || m_nClickPart == ClickThumb) {
        return 0;
    }
    // With the owner gone there is nobody to scroll for: the repeat ends.
    const HWND target = m_hNotifyWnd != NULL ? m_hNotifyWnd : ::GetParent(m_hWnd);
    if (!::IsWindow(target)) {
        StopRepeat();
        return 0;
    }
    const Rects rects = Layout();
    switch (m_nClickPart) {
    case ClickUp:
        if (::PtInRect(&rects.up, m_ptLast)) {
            const bool atStart = m_scrollInfo.nPos == 0;
            if (Notify(SB_LINEUP) && !atStart) {
                InvalidateRect(NULL, FALSE);
            }
        }
        break;
    case ClickDown:
        if (::PtInRect(&rects.down, m_ptLast)) {
            const bool atEnd = m_scrollInfo.nPos == m_nMaxPos;
            if (Notify(SB_LINEDOWN) && !atEnd) {
                InvalidateRect(NULL, FALSE);
            }
        }
        break;
    case ClickPageUp:
        if (::PtInRect(&rects.track, m_ptLast) && m_ptLast.y < rects.thumb.top) {
            if (Notify(SB_PAGEUP)) {
                InvalidateRect(NULL, FALSE);
            }
        }
        break;
    case ClickPageDown:
        if (::PtInRect(&rects.track, m_ptLast) && m_ptLast.y >= rects.thumb.bottom) {
            if (Notify(SB_PAGEDOWN)) {
                InvalidateRect(NULL, FALSE);
            }
        }
        break;
    default:
        break;
    }
    return 0;
}

LRESULT MirlScrollBar::OnMouseMove(UINT, WPARAM, LPARAM lParam, BOOL &)
{
    DefWindowProc();
    if (m_bMouseTracked == 0) {
        TRACKMOUSEEVENT track = {};
        track.cbSize = sizeof(track);
        track.dwFlags = TME_LEAVE;
        track.hwndTrack = m_hWnd;
        if (::_TrackMouseEvent(&track)) {
            m_bMouseTracked = 1;
        }
    }
    const POINT point = PointOf(lParam);
    m_ptLast = point;

    const Rects rects = Layout();
    const MIRL::MirlScrollRects zones = {rects.up, rects.track, rects.down, rects.thumb};
    // The hot arrows repaint nothing here: they show at the next repaint for another reason.
    switch (MIRL::ScrollHitTest(point, zones)) {
    case MIRL::ScrollZoneUp:
        if (m_nPressedPart == PressedNone) {
            if (m_nDrawPart != DrawUpPressed) {
                m_nDrawPart = DrawUpHot;
            }
        } else if (m_nPressedPart == PressedUp) {
            m_nDrawPart = DrawUpPressed;
        }
        break;
    case MIRL::ScrollZoneDown:
        if (m_nPressedPart == PressedNone) {
            if (m_nDrawPart != DrawDownPressed) {
                m_nDrawPart = DrawDownHot;
            }
        } else if (m_nPressedPart == PressedDown) {
            m_nDrawPart = DrawDownPressed;
        }
        break;
    case MIRL::ScrollZoneThumb:
        if (m_nPressedPart == PressedNone && m_nDrawPart != DrawThumbPressed) {
            m_nDrawPart = DrawThumbHot;
            InvalidateRect(&rects.thumb, TRUE);
        } else if (m_nPressedPart == PressedThumb) {
            m_nDrawPart = DrawThumbPressed;
            InvalidateRect(&rects.thumb, TRUE);
        }
        break;
    case MIRL::ScrollZoneTrack:
        if (m_nDrawPart != DrawThumbPressed) {
            m_nDrawPart = DrawNormal;
        }
        break;
    default:
        if (m_nPressedPart != PressedThumb) {
            m_nDrawPart = DrawNormal;
        }
        break;
    }

    // The drag follows the mouse only within 10 pixels beyond the track's ends; further out the
    // thumb stops, and tracking resumes when the mouse comes back.
    const long long y = point.y;
    if (m_nClickPart != ClickThumb || y < static_cast<long long>(rects.track.top) - MIRL::kScrollOverhang ||
        y > static_cast<long long>(rects.track.bottom) + MIRL::kScrollOverhang) {
        return 0;
    }
    const int oldTop = m_nThumbTop;
    long long top = y - m_nDragOffset;
    if (top == oldTop) {
        return 0;
    }
    const int thumbHeight = rects.thumb.bottom - rects.thumb.top;
    const long long first = static_cast<long long>(rects.track.top) - MIRL::kScrollOverhang;
    const long long last = static_cast<long long>(rects.track.bottom) + MIRL::kScrollOverhang - thumbHeight;
    if (top < first) {
        top = first;
    }
    if (top >= last) {
        top = last;
    }
    m_nThumbTop = static_cast<int>(top < INT_MIN ? INT_MIN : (top > INT_MAX ? INT_MAX : top));
    const int oldPos = ThumbPos(oldTop, rects);
    const int newPos = ThumbPos(m_nThumbTop, rects);
    // The thumb on the screen follows nPos: it moves when the owner answers with SetScrollPos.
    if (oldPos != newPos && static_cast<long long>(m_scrollInfo.nPage) + newPos <= m_scrollInfo.nMax) {
        if (Notify(MIRL::ScrollThumbPositionCode(newPos))) {
            RedrawWindow(NULL, NULL, RDW_INVALIDATE | RDW_ERASE | RDW_UPDATENOW);
        }
    }
    return 0;
}

LRESULT MirlScrollBar::OnLButtonUp(UINT, WPARAM, LPARAM, BOOL &)
{
    m_nDrawPart = DrawNormal;
    m_nPressedPart = PressedNone;
    DefWindowProc();
    const HWND self = m_hWnd;
    if (m_nClickPart == ClickThumb) {
        const Rects rects = Layout();
        const int pos = ThumbPos(m_nThumbTop, rects);
        if (static_cast<long long>(m_scrollInfo.nPage) + pos <= m_scrollInfo.nMax && !Notify(MIRL::ScrollThumbPositionCode(pos))) {
            return 0;
        }
    }
    if (m_nClickPart != ClickNone) {
        if (!Notify(SB_ENDSCROLL)) {
            return 0;
        }
        m_nClickPart = ClickNone;
        InvalidateRect(NULL, TRUE);
    }
    StopRepeat();
    if (::GetCapture() == self) {
        ::ReleaseCapture();
    }
    return 0;
}

LRESULT MirlScrollBar::OnMouseLeave(UINT, WPARAM, LPARAM, BOOL &)
{
    m_bMouseTracked = 0;
    const Rects rects = Layout();
    RefreshBar(m_nDrawPart, rects.up, rects.down, rects.thumb);
    m_nDrawPart = DrawNormal;
    return 0;
}

LRESULT MirlScrollBar::OnSize(UINT, WPARAM, LPARAM lParam, BOOL &bHandled)
{
    m_fScale = MIRL::ScrollScaleForHeight(static_cast<short>(HIWORD(lParam)), HeightOf(m_Images[NormalTop]));
    // The framework drops the memory picture of the new size too. The thumb length stays.
    bHandled = FALSE;
    return 0;
}

LRESULT MirlScrollBar::OnSetScrollInfo(UINT uMsg, WPARAM wParam, LPARAM lParam, BOOL &)
{
    const LRESULT result = DefWindowProc(uMsg, 1, lParam);
    if (wParam != 0) {
        InvalidateRect(NULL, TRUE);
    }
    return result;
}

LRESULT MirlScrollBar::OnLButtonDblClk(UINT, WPARAM wParam, LPARAM lParam, BOOL &)
{
    // A double click is a second press.
    SendMessageW(WM_LBUTTONDOWN, wParam, lParam);
    return 0;
}

LRESULT MirlScrollBar::OnEraseBkgnd(UINT, WPARAM, LPARAM, BOOL &)
{
    return 1;
}

// ---------------------------------------------------------------------------------------------
// Painting

LRESULT MirlScrollBar::OnPaint(UINT, WPARAM, LPARAM, BOOL &)
{
    PAINTSTRUCT ps;
    HDC dc = ::BeginPaint(m_hWnd, &ps);
    if (dc != NULL) {
        DoPaint(WTL::CDCHandle(dc));
    }
    ::EndPaint(m_hWnd, &ps);
    return 0;
}

void MirlScrollBar::DoPaint(WTL::CDCHandle dc)
{
    Gdiplus::Graphics g(static_cast<HDC>(dc));
    if (m_Transparent) {
        PaintParentBkGround(dc);
    } else if (m_BkBrush != NULL) {
        RECT client = {};
        ::GetClientRect(m_hWnd, &client);
        g.FillRectangle(m_BkBrush, 0, 0, client.right, client.bottom);
    }
    OwnerPaint(g);
}

void MirlScrollBar::OwnerPaint(Gdiplus::Graphics &g)
{
    // One stretched source row or column must stay one colour, not blend into its neighbours.
    g.SetInterpolationMode(Gdiplus::InterpolationModeNearestNeighbor);
    g.SetPixelOffsetMode(Gdiplus::PixelOffsetModeHalf);
    const Rects rects = Layout();

    const int up = m_nDrawPart == DrawUpHot ? HoverTop : (m_nDrawPart == DrawUpPressed ? ClickTop : NormalTop);
    DrawWhole(g, m_Images[up], rects.up);
    const int down = m_nDrawPart == DrawDownHot ? HoverBottom : (m_nDrawPart == DrawDownPressed ? ClickBottom : NormalBottom);
    DrawWhole(g, m_Images[down], rects.down);

    Gdiplus::Bitmap *track = m_Images[YRepeat];
    Draw(g, track, rects.track.left, rects.track.top, rects.track.right - rects.track.left,
         rects.track.bottom - rects.track.top, 0, HeightOf(track) / 2, WidthOf(track), 1);

    // A disabled bar has no thumb.
    if (!IsWindowEnabled()) {
        return;
    }
    DrawThumb(g, rects.thumb, m_nDrawPart == DrawThumbHot ? 1 : (m_nDrawPart == DrawThumbPressed ? 2 : 0));
}

void MirlScrollBar::DrawThumb(Gdiplus::Graphics &g, const RECT &thumb, int set)
{
    static const int kSets[3][4] = {{TopNormal, YRepeateNormal, GripNormal, BottomNormal},
                                    {TopHover, YRepeateHover, GripHover, BottomHover},
                                    {TopPressed, YRepeateClick, GripClick, BottomClick}};
    Gdiplus::Bitmap *topCap = m_Images[kSets[set][0]];
    Gdiplus::Bitmap *fill = m_Images[kSets[set][1]];
    Gdiplus::Bitmap *grip = m_Images[kSets[set][2]];
    Gdiplus::Bitmap *bottomCap = m_Images[kSets[set][3]];

    const long long H = static_cast<long long>(thumb.bottom) - thumb.top;
    const int top = thumb.top;
    const int bottom = thumb.bottom;
    // Thumb images stand one pixel in from the left.
    const int x = thumb.left + 1;
    const int w = WidthOf(topCap);
    const int tH = HeightOf(topCap);
    const int gH = HeightOf(grip);
    const int gW = WidthOf(grip);
    const int bH = HeightOf(bottomCap);
    if (H > INT_MAX / 2) {
        return;
    }
    const int h = static_cast<int>(H);

    if (h - gH - tH - bH >= 1) {
        // Full form: caps at their size, the fill's middle row stretched between them, the grip
        // centred.
        Draw(g, topCap, x, top, w, tH, 0, 0, w, tH);
        Draw(g, fill, x, top + tH, w, h - tH - bH, 0, HeightOf(fill) / 2, WidthOf(m_Images[YRepeateNormal]), 1);
        Draw(g, grip, x, top + (h - gH) / 2, w, gH, 0, 0, gW, gH);
        Draw(g, bottomCap, x, bottom - bH, WidthOf(bottomCap), bH, 0, 0, WidthOf(bottomCap), bH);
        return;
    }
    if (h <= gH + 4) {
        // Short form A: the upper half of the top cap over the lower half taken from the bottom cap.
        if (h < 5) {
            return;
        }
        const int half = h / 2;
        Draw(g, topCap, x, top, w, half, 0, 0, w, half);
        Draw(g, bottomCap, x, top + half, w, half, 0, tH - half, w, half);
        if (h - 20 <= 4) {
            Draw(g, grip, x, top + (h - 4) / 2, gW, 4, 0, gH / 2 - 2, gW, 4);
        }
        return;
    }
    // Short form B: ten rows of each cap; the bottom one takes the grip's height as its source.
    Draw(g, topCap, x, top, w, 10, 0, 0, w, 10);
    Draw(g, bottomCap, x, bottom - 10, w, 10, 0, 0, w, gH);
    if (static_cast<unsigned int>(h - 20) > static_cast<unsigned int>(gH)) {
        Draw(g, grip, x, top + (h - gH) / 2, gW, gH, 0, 0, gW, gH);
        const int fillRows = (h - gH - 20) / 2;
        Draw(g, topCap, x, top + 10, w, fillRows, 0, 11, w, 1);
        Draw(g, bottomCap, x, bottom - (h - gH) / 2 - 2, w, fillRows + 2, 0, 5, w, 1);
    } else if (h - 20 > 4) {
        Draw(g, grip, x, top + 10, gW, h - 20, 0, (gH - (h - 20)) / 2, gW, h - 20);
    } else {
        Draw(g, grip, x, top + (h - 4) / 2, gW, 4, 0, gH / 2 - 2, gW, 4);
    }
}
