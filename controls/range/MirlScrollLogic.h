// The range controls' rules that need no window: the scroll bar's geometry, hit zones and
// position arithmetic, the slider's value and pixel mappings, the seek bar's fraction. The
// controls call these; tests call them directly.
//
//   ScrollScaleForHeight    the arrows' shrink factor on a short bar
//   ScrollLayout            arrows, track and thumb rectangles of a bar
//   ScrollThumbRect         the thumb, held at 50 pixels when shorter
//   ScrollThumbPos          a thumb top back to a position
//   ScrollThumbLength       the thumb length that SetScrollInfo computes
//   ScrollHitTest           which part a press or a move is over
//   ScrollThumbPositionCode the WM_VSCROLL wParam of a drag step
//   SliderTrackPos          value to the thumb centre
//   SliderPositionFromX     mouse x to the thumb centre and the value
//   SliderClampPos          a value raised to the minimum, then lowered to the maximum
//   SliderThumbSpan         the thumb's top and bottom in a client of that height
//   SliderBackgroundSlices  the three slices of the background
//   SliderNotifyWParam      the WM_USER + 120 wParam
//   SeekClampX              a press or move x held inside the thumb's travel
//   SeekPercentFromX        the wanted centre of the thumb to the fraction
//   SeekThumbLeft           the fraction to the thumb's left edge
//   SeekNotifyWParam        the fraction in thousandths
//   SeekPressStartsDrag     whether a press falls strictly inside the thumb
#pragma once

#include "MirlExport.h"

#include <windows.h>

namespace MIRL {

// ---- Scroll bar ----

// The sizes of the two arrow images: "NormalTop" (U, Wu) and "NormalBottom" (D, Wd).
struct MirlScrollMetrics {
    int upHeight;
    int upWidth;
    int downHeight;
    int downWidth;
};

// The four rectangles of a bar, all with left 0.
struct MirlScrollRects {
    RECT up;
    RECT track;
    RECT down;
    RECT thumb;
};

// What a point is over, as the press and the hover see it.
enum MirlScrollZone { ScrollZoneNone = -1, ScrollZoneUp = 1, ScrollZoneDown = 2, ScrollZoneThumb = 3, ScrollZoneTrack = 4 };

// The thumb travels 10 pixels further than the track at each end, over the arrows.
enum { kScrollOverhang = 10, kScrollMinThumb = 50 };

// 1.0 when the client is taller than both arrows at full height, else height / (2 * U). A bar
// without an up arrow image (U of 0 or less) has nothing to shrink: 1.0.
MIRL_API float ScrollScaleForHeight(int height, int upHeight);

// The up arrow, the track below it, the down arrow below that and the thumb over the track.
// The track ends the up arrow's scaled height, scaled a second time, above the client bottom.
MIRL_API MirlScrollRects ScrollLayout(const MirlScrollMetrics &metrics, float scale, int clientBottom,
                                      int thumbLength, const SCROLLINFO &info);

// The thumb over the track for the thumb length (nMin takes no part, nMax - nPage is unsigned).
// A thumb shorter than 50 pixels is drawn at 50. A span of 0 (nMax equal to nPage), or a thumb
// as long as its travel, has no room to move: the thumb stands at the start of its travel.
MIRL_API RECT ScrollThumbRect(const RECT &track, int thumbLength, const SCROLLINFO &info);

// MulDiv(y - trackTop + 10, nMax - nPage - nMin, trackBottom - thumbHeight - trackTop + 20).
// A travel of 0 (a thumb no shorter than the track plus 20) gives position 0.
MIRL_API int ScrollThumbPos(int y, const RECT &track, int thumbHeight, const SCROLLINFO &info);

// MulDiv(nPage, windowHeight - 2 * U + 20, nMax - nMin + 1); a range of no positions gives 0.
MIRL_API int ScrollThumbLength(const SCROLLINFO &info, int windowHeight, int upHeight);

// With the arrows' inner 10 pixels given to the track, and the track 10 pixels longer at each
// end: up arrow, down arrow, thumb, track, in that order.
MIRL_API MirlScrollZone ScrollHitTest(POINT point, const MirlScrollRects &rects);

// SB_THUMBPOSITION in the low word, the position's low 16 bits in the high word.
MIRL_API WPARAM ScrollThumbPositionCode(int pos);

// ---- Slider ----

// The track margin at each end: the thumb's centre runs from 8 to width - 8.
enum { kSliderMargin = 8 };

// (pos - min) * (width - 16) / max(max - min, 1) + 8, truncating toward zero.
MIRL_API int SliderTrackPos(int pos, int min, int max, int width);

struct MirlSliderPosition {
    int trackPos;
    int pos;
};
// x held from 8 to width - 8 (raised first, then lowered), and the value at that pixel,
// truncating and clamped to the bounds. A client of exactly 16 pixels has one point of track:
// the value there is min.
MIRL_API MirlSliderPosition SliderPositionFromX(int x, int min, int max, int width);

MIRL_API int SliderClampPos(int pos, int min, int max);

// The thumb's top, (height - imageHeight) / 2 taken unsigned, and its bottom, top + imageHeight
// held at INT_MAX.
MIRL_API void SliderThumbSpan(int height, int imageHeight, LONG *top, LONG *bottom);

// One horizontal slice of the background: where it goes and which columns it takes.
struct MirlSliceSpan {
    int targetX;
    int targetWidth;
    int sourceX;
    int sourceWidth;
};
// Left half, one stretched column, right half, for an image W wide in a client that wide. The
// middle's width is width - W, negative in a client narrower than the image.
MIRL_API void SliderBackgroundSlices(int imageWidth, int width, MirlSliceSpan slices[3]);

// The value's low 16 bits in the high word, the mouse flags' low 16 bits in the low word.
MIRL_API WPARAM SliderNotifyWParam(int pos, unsigned int flags);

// ---- Media seek bar ----

// The track is 270 pixels long whatever the window's width.
enum { kSeekTrackLength = 270 };

// x raised to W / 2, then lowered to R - W / 2.
MIRL_API int SeekClampX(int x, int thumbWidth, int trackRight);

// (x - W / 2) / (R - W), clamped to 0.0 to 1.0. A track no longer than the thumb (R == W) has
// no travel: 0.0.
MIRL_API float SeekPercentFromX(int x, int thumbWidth, int trackRight);

// trunc((R - W) * p), held in int's range; a p that is not a number gives 0.
MIRL_API int SeekThumbLeft(float percent, int trackRight, int thumbWidth);

// trunc(p * 1000.0), held in int's range.
MIRL_API WPARAM SeekNotifyWParam(float percent);

// A press strictly between the thumb's left and right edges starts a drag.
MIRL_API bool SeekPressStartsDrag(int x, const RECT &thumb);

} // namespace MIRL
