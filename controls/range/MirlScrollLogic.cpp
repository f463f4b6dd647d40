#include "MirlScrollLogic.h"

#include "../text/MirlButtonLogic.h"

#include <climits>
#include <cmath>

namespace MIRL {

namespace {

int ClampToInt(long long value)
{
    if (value > INT_MAX) {
        return INT_MAX;
    }
    if (value < INT_MIN) {
        return INT_MIN;
    }
    return static_cast<int>(value);
}

// MulDiv with a defined answer for a zero divisor; the platform's rounding otherwise.
int MulDivOrZero(int number, int numerator, int denominator)
{
    return denominator == 0 ? 0 : ::MulDiv(number, numerator, denominator);
}

// nMax - nPage as the bar computes it: unsigned.
unsigned int PageSpan(const SCROLLINFO &info)
{
    return static_cast<unsigned int>(info.nMax) - info.nPage;
}

} // namespace

// ---- Scroll bar ----

float ScrollScaleForHeight(int height, int upHeight)
{
    const long long twice = 2LL * upHeight;
    if (upHeight <= 0 || height > twice) {
        return 1.0f;
    }
    return static_cast<float>(height) / static_cast<float>(twice);
}

RECT ScrollThumbRect(const RECT &track, int thumbLength, const SCROLLINFO &info)
{
    const long long travel = static_cast<long long>(track.bottom) - track.top + 2 * kScrollOverhang;
    const long long start = static_cast<long long>(track.top) - kScrollOverhang;
    const unsigned int span = PageSpan(info);
    RECT thumb = {0, 0, track.right, 0};
    long long top = start;
    long long length = thumbLength;
    if (thumbLength >= kScrollMinThumb) {
        if (span != 0) {
            const float offset = static_cast<float>(travel - thumbLength) * static_cast<float>(info.nPos) /
                                 static_cast<float>(span);
            top = TruncateToInt(static_cast<double>(offset + static_cast<float>(start)));
        }
    } else {
        length = kScrollMinThumb;
        const long long room = travel - thumbLength;
        if (span != 0 && room != 0) {
            const int p = TruncateToInt(static_cast<double>(static_cast<float>(info.nPos) * static_cast<float>(room) /
                                                            static_cast<float>(span)));
            const float shrink = static_cast<float>(travel - kScrollMinThumb) / static_cast<float>(room);
            top = static_cast<long long>(TruncateToInt(static_cast<double>(static_cast<float>(p) * shrink))) + start;
        }
    }
    thumb.top = ClampToInt(top);
    thumb.bottom = ClampToInt(static_cast<long long>(thumb.top) + length);
    return thumb;
}

MirlScrollRects ScrollLayout(const MirlScrollMetrics &metrics, float scale, int clientBottom, int thumbLength,
                             const SCROLLINFO &info)
{
    MirlScrollRects rects = {};
    rects.up.right = metrics.upWidth;
    rects.up.bottom = TruncateToInt(static_cast<double>(static_cast<float>(metrics.upHeight) * scale));
    rects.track.top = rects.up.bottom;
    rects.track.right = rects.up.right;
    // The up arrow's scaled height scaled again: equal to U at a scale of 1.0.
    rects.track.bottom = ClampToInt(static_cast<long long>(clientBottom) -
                                    TruncateToInt(static_cast<double>(static_cast<float>(rects.up.bottom) * scale)));
    rects.down.top = rects.track.bottom;
    rects.down.right = metrics.downWidth;
    rects.down.bottom = ClampToInt(static_cast<long long>(rects.track.bottom) +
                                   TruncateToInt(static_cast<double>(static_cast<float>(metrics.downHeight) * scale)));
    rects.thumb = ScrollThumbRect(rects.track, thumbLength, info);
    return rects;
}

int ScrollThumbPos(int y, const RECT &track, int thumbHeight, const SCROLLINFO &info)
{
    const int span = static_cast<int>(PageSpan(info) - static_cast<unsigned int>(info.nMin));
    const int from = ClampToInt(static_cast<long long>(y) - track.top + kScrollOverhang);
    const int travel = ClampToInt(static_cast<long long>(track.bottom) - thumbHeight - track.top + 2 * kScrollOverhang);
    return MulDivOrZero(from, span, travel);
}

int ScrollThumbLength(const SCROLLINFO &info, int windowHeight, int upHeight)
{
    const int room = ClampToInt(static_cast<long long>(windowHeight) - 2LL * upHeight + 2 * kScrollOverhang);
    const int positions = ClampToInt(static_cast<long long>(info.nMax) - info.nMin + 1);
    return MulDivOrZero(static_cast<int>(info.nPage), room, positions);
}

MirlScrollZone ScrollHitTest(POINT point, const MirlScrollRects &rects)
{
    RECT up = rects.up;
    up.bottom = ClampToInt(static_cast<long long>(up.bottom) - kScrollOverhang);
    RECT down = rects.down;
    down.top = ClampToInt(static_cast<long long>(down.top) + kScrollOverhang);
    RECT track = rects.track;
    track.top = ClampToInt(static_cast<long long>(track.top) - kScrollOverhang);
    track.bottom = ClampToInt(static_cast<long long>(track.bottom) + kScrollOverhang);
    if (::PtInRect(&up, point)) {
        return ScrollZoneUp;
    }
    if (::PtInRect(&down, point)) {
        return ScrollZoneDown;
    }
    if (::PtInRect(&rects.thumb, point)) {
        return ScrollZoneThumb;
    }
    if (::PtInRect(&track, point)) {
        return ScrollZoneTrack;
    }
    return ScrollZoneNone;
}

WPARAM ScrollThumbPositionCode(int pos)
{
    return static_cast<WPARAM>(((static_cast<unsigned int>(pos) & 0xFFFFu) << 16) | SB_THUMBPOSITION);
}

// ---- Slider ----

int SliderTrackPos(int pos, int min, int max, int width)
{
    long long range = static_cast<long long>(max) - min;
    if (range < 1) {
        range = 1;
    }
    const long long offset = (static_cast<long long>(pos) - min) * (static_cast<long long>(width) - 2 * kSliderMargin);
    return ClampToInt(offset / range + kSliderMargin);
}

int SliderClampPos(int pos, int min, int max)
{
    if (pos < min) {
        pos = min;
    }
    if (pos > max) {
        pos = max;
    }
    return pos;
}

MirlSliderPosition SliderPositionFromX(int x, int min, int max, int width)
{
    MirlSliderPosition result = {x, min};
    const long long right = static_cast<long long>(width) - kSliderMargin;
    if (result.trackPos < kSliderMargin) {
        result.trackPos = kSliderMargin;
    }
    if (result.trackPos > right) {
        result.trackPos = ClampToInt(right);
    }
    const long long travel = static_cast<long long>(width) - 2 * kSliderMargin;
    long long value = min;
    if (travel != 0) {
        value = (static_cast<long long>(max) - min) * (static_cast<long long>(result.trackPos) - kSliderMargin) / travel + min;
    }
    result.pos = SliderClampPos(ClampToInt(value), min, max);
    return result;
}

void SliderThumbSpan(int height, int imageHeight, LONG *top, LONG *bottom)
{
    const unsigned int half = static_cast<unsigned int>(height - imageHeight) / 2u;
    *top = static_cast<LONG>(half);
    *bottom = ClampToInt(static_cast<long long>(half) + imageHeight);
}

void SliderBackgroundSlices(int imageWidth, int width, MirlSliceSpan slices[3])
{
    const int half = imageWidth / 2;
    const int middle = ClampToInt(static_cast<long long>(width) - imageWidth);
    slices[0] = MirlSliceSpan{0, half, 0, half};
    slices[1] = MirlSliceSpan{half, middle, half, 1};
    slices[2] = MirlSliceSpan{ClampToInt(static_cast<long long>(middle) + half), half, imageWidth - half, half};
}

WPARAM SliderNotifyWParam(int pos, unsigned int flags)
{
    return static_cast<WPARAM>(((static_cast<unsigned int>(pos) & 0xFFFFu) << 16) | (flags & 0xFFFFu));
}

// ---- Media seek bar ----

int SeekClampX(int x, int thumbWidth, int trackRight)
{
    const int half = thumbWidth / 2;
    if (x < half) {
        x = half;
    }
    const long long last = static_cast<long long>(trackRight) - half;
    if (x > last) {
        x = ClampToInt(last);
    }
    return x;
}

float SeekPercentFromX(int x, int thumbWidth, int trackRight)
{
    const long long travel = static_cast<long long>(trackRight) - thumbWidth;
    if (travel == 0) {
        return 0.0f;
    }
    float p = static_cast<float>(static_cast<double>(static_cast<long long>(x) - thumbWidth / 2) / static_cast<double>(travel));
    if (p < 0.0f) {
        p = 0.0f;
    }
    if (p > 1.0f) {
        p = 1.0f;
    }
    return p;
}

int SeekThumbLeft(float percent, int trackRight, int thumbWidth)
{
    const double travel = static_cast<double>(static_cast<long long>(trackRight) - thumbWidth);
    return TruncateToInt(static_cast<double>(static_cast<float>(travel) * percent));
}

WPARAM SeekNotifyWParam(float percent)
{
    return static_cast<WPARAM>(static_cast<unsigned int>(TruncateToInt(static_cast<double>(percent) * 1000.0)));
}

bool SeekPressStartsDrag(int x, const RECT &thumb)
{
    return x > thumb.left && x < thumb.right;
}

} // namespace MIRL
