// The media seek bar: a 270-pixel track, a fill up to the thumb, a thumb dragged from a press
// inside it or jumping to a press beside it, and 0xBD0 with the position in thousandths.
#include "MirlRange.h"

#include "MirlImage.h"
#include "MirlScrollLogic.h"

#include <climits>

namespace {

int XOf(LPARAM lParam)
{
    return static_cast<short>(LOWORD(lParam));
}

} // namespace

MirlMediaSeekBar::MirlMediaSeekBar()
    : m_fPercent(0.0f), m_rcTrack(), m_rcThumb(), m_bDragging(0), m_pProgressBk(NULL), m_pProgressFill(NULL),
      m_pProgressTrack(NULL), m_pProgressTrackGlow(NULL), m_pProgressTrackDown(NULL), m_pPlayButton(NULL),
      m_pPauseButton(NULL)
{
}

MirlMediaSeekBar::~MirlMediaSeekBar()
{
    FreeImages();
}

HWND MirlMediaSeekBar::Create(MirlWindowBase *parent, HWND hWndParent, ATL::_U_RECT rect, const wchar_t *name,
                              unsigned long style, unsigned long exStyle, ATL::_U_MENUorID menuOrID, void *createParam)
{
    return Base::Create(parent, hWndParent, rect, name, style, exStyle, menuOrID, createParam);
}

BOOL MirlMediaSeekBar::SubclassWindow(HWND hWnd)
{
    return Base::SubclassWindow(hWnd);
}

BOOL MirlMediaSeekBar::SubclassWindow(MirlWindowBase *source, MirlWindowBase *parent)
{
    return Base::SubclassWindow(source, parent);
}

void MirlMediaSeekBar::FreeImages()
{
    Gdiplus::Bitmap **images[] = {&m_pProgressBk, &m_pProgressFill, &m_pProgressTrack, &m_pProgressTrackGlow,
                                  &m_pProgressTrackDown};
    for (Gdiplus::Bitmap **image : images) {
        delete *image;
        *image = NULL;
    }
}

int MirlMediaSeekBar::ThumbWidth() const
{
    return m_pProgressTrack != NULL ? static_cast<int>(m_pProgressTrack->GetWidth()) : 0;
}

// ---------------------------------------------------------------------------------------------
// Operations

void MirlMediaSeekBar::SetSeekPercent(float percent)
{
    const bool changed = !(m_fPercent == percent);
    m_fPercent = percent;
    if (changed && m_hWnd != NULL && IsWindow()) {
        MIRL::NotifyAccessibleEvent(m_hWnd, EVENT_OBJECT_VALUECHANGE);
    }
    m_rcThumb.left = MIRL::SeekThumbLeft(percent, m_rcTrack.right, ThumbWidth());
    m_rcThumb.right = static_cast<LONG>(std::min<long long>(static_cast<long long>(m_rcThumb.left) + ThumbWidth(), LONG_MAX));
    if (m_hWnd != NULL && IsWindow()) {
        InvalidateRect(NULL, TRUE);
    }
}

void MirlMediaSeekBar::SetSeekPostion(int x)
{
    SetSeekPercent(MIRL::SeekPercentFromX(x, ThumbWidth(), m_rcTrack.right));
    if (m_hWnd != NULL && IsWindow()) {
        ::SendMessageW(::GetParent(m_hWnd), WM_SEEK_POSITION, MIRL::SeekNotifyWParam(m_fPercent), 0);
    }
}

void MirlMediaSeekBar::SetAssociateButton(MirlButton *play, MirlButton *pause)
{
    m_pPlayButton = play;
    m_pPauseButton = pause;
}

void MirlMediaSeekBar::ShowControlButton(int playing)
{
    if (m_pPlayButton != NULL && m_pPlayButton->m_hWnd != NULL) {
        ::ShowWindow(m_pPlayButton->m_hWnd, playing != 0 ? SW_SHOW : SW_HIDE);
    }
    if (m_pPauseButton != NULL && m_pPauseButton->m_hWnd != NULL) {
        ::ShowWindow(m_pPauseButton->m_hWnd, playing != 0 ? SW_HIDE : SW_SHOW);
    }
}

// ---------------------------------------------------------------------------------------------
// Messages

LRESULT MirlMediaSeekBar::OnCreate(UINT uMsg, WPARAM wParam, LPARAM lParam, BOOL &bHandled)
{
    // The framework's creation installs the tooltip when one is set.
    Base::OnCreate(uMsg, wParam, lParam, bHandled);
    FreeImages();
    m_pProgressBk = MIRL::LoadSkinBitmap(L"ProgressBk");
    m_pProgressFill = MIRL::LoadSkinBitmap(L"ProgressFill");
    m_pProgressTrack = MIRL::LoadSkinBitmap(L"ProgressTrack");
    m_pProgressTrackGlow = MIRL::LoadSkinBitmap(L"ProgressTrackGlow");
    m_pProgressTrackDown = MIRL::LoadSkinBitmap(L"ProgressTrackDown");

    RECT client = {};
    GetClientRect(&client);
    m_rcTrack.left = 0;
    m_rcTrack.top = 0;
    m_rcTrack.right = MIRL::kSeekTrackLength;
    m_rcTrack.bottom = client.bottom;
    const int imageHeight = m_pProgressTrack != NULL ? static_cast<int>(m_pProgressTrack->GetHeight()) : 0;
    m_rcThumb.left = 0;
    m_rcThumb.right = ThumbWidth();
    m_rcThumb.top = (m_rcTrack.bottom - imageHeight) / 2;
    m_rcThumb.bottom = m_rcThumb.top + imageHeight;
    bHandled = TRUE;
    return 0;
}

LRESULT MirlMediaSeekBar::OnDestroy(UINT uMsg, WPARAM wParam, LPARAM lParam, BOOL &bHandled)
{
    // A bar destroyed in the middle of a drag leaves no capture behind.
    m_bDragging = 0;
    if (::GetCapture() == m_hWnd) {
        ::ReleaseCapture();
    }
    Base::OnDestroy(uMsg, wParam, lParam, bHandled);
    bHandled = FALSE;
    return 0;
}

LRESULT MirlMediaSeekBar::OnLButtonDown(UINT, WPARAM, LPARAM lParam, BOOL &)
{
    const int x = MIRL::SeekClampX(XOf(lParam), ThumbWidth(), m_rcTrack.right);
    if (MIRL::SeekPressStartsDrag(x, m_rcThumb)) {
        // A press inside the thumb doesn't move it.
        m_bDragging = 1;
        SetCapture();
        return 0;
    }
    if (::GetCapture() == m_hWnd) {
        ::ReleaseCapture();
    }
    m_bDragging = 0;
    SetSeekPostion(x);
    return 0;
}

LRESULT MirlMediaSeekBar::OnMouseMove(UINT, WPARAM wParam, LPARAM lParam, BOOL &)
{
    if ((wParam & MK_LBUTTON) != 0 && m_bDragging != 0) {
        SetSeekPostion(MIRL::SeekClampX(XOf(lParam), ThumbWidth(), m_rcTrack.right));
    }
    return 0;
}

LRESULT MirlMediaSeekBar::OnLButtonUp(UINT, WPARAM, LPARAM, BOOL &)
{
    m_bDragging = 0;
    if (::GetCapture() == m_hWnd) {
        ::ReleaseCapture();
    }
    return 0;
}

// ---------------------------------------------------------------------------------------------
// Painting

void MirlMediaSeekBar::DoPaint(WTL::CDCHandle dc)
{
    RECT rc = {};
    ::GetClientRect(m_hWnd, &rc);
    Gdiplus::Graphics g(static_cast<HDC>(dc));
    if (!m_Transparent) {
        if (m_BkBrush != NULL) {
            g.FillRectangle(m_BkBrush, 0, 0, rc.right, rc.bottom);
        }
    } else {
        PaintParentBkGround(dc);
    }
    g.SetInterpolationMode(Gdiplus::InterpolationModeNearestNeighbor);
    g.SetPixelOffsetMode(Gdiplus::PixelOffsetModeHalf);
    if (m_pProgressBk != NULL) {
        const int w = static_cast<int>(m_pProgressBk->GetWidth());
        const int h = static_cast<int>(m_pProgressBk->GetHeight());
        g.DrawImage(m_pProgressBk, Gdiplus::Rect(rc.left, rc.top + (rc.bottom - h - rc.top) / 2, rc.right - rc.left, h),
                    0, 0, w, h, Gdiplus::UnitPixel);
    }
    if (m_pProgressFill != NULL) {
        // The fill runs under the thumb to its left edge plus four pixels.
        const int w = static_cast<int>(m_pProgressFill->GetWidth());
        const int h = static_cast<int>(m_pProgressFill->GetHeight());
        // A thumb that SetSeekPercent put far outside the track doesn't overflow the width.
        const int fillWidth = static_cast<int>(std::min<long long>(static_cast<long long>(m_rcThumb.left) + 2, INT_MAX));
        g.DrawImage(m_pProgressFill,
                    Gdiplus::Rect(m_rcTrack.left + 2, rc.top + (rc.bottom - h - rc.top) / 2 - 2, fillWidth, h), 0, 0, w,
                    h, Gdiplus::UnitPixel);
    }
    if (m_pProgressTrack != NULL) {
        const int w = static_cast<int>(m_pProgressTrack->GetWidth());
        const int h = static_cast<int>(m_pProgressTrack->GetHeight());
        g.DrawImage(m_pProgressTrack,
                    Gdiplus::Rect(m_rcThumb.left, m_rcThumb.top - 1, m_rcThumb.right - m_rcThumb.left,
                                  m_rcThumb.bottom - m_rcThumb.top),
                    0, 0, w, h, Gdiplus::UnitPixel);
    }
}
