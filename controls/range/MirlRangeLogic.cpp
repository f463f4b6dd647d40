#include "MirlRangeLogic.h"

#include <climits>
#include <cstdint>

namespace MIRL {

namespace {

int ClampToInt(long long value)
{
    return value > INT_MAX ? INT_MAX : value < INT_MIN ? INT_MIN : static_cast<int>(value);
}

MirlSlice Slice(int x, int y, int width, int height, int srcX, int srcY, int srcWidth, int srcHeight)
{
    MirlSlice slice;
    slice.target = Gdiplus::Rect(x, y, width, height);
    slice.source = Gdiplus::Rect(srcX, srcY, srcWidth, srcHeight);
    return slice;
}

MirlSlice Nothing()
{
    return Slice(0, 0, 0, 0, 0, 0, 0, 0);
}

} // namespace

int ProgressFillLength(int clientWidth, int pos, int min, int max)
{
    const long long range = static_cast<long long>(max) - min;
    if (range == 0) {
        return 0;
    }
    return ClampToInt((static_cast<long long>(clientWidth) - 2) * pos / range);
}

void PlanProgressBack(const RECT &client, MirlImageSize left, MirlImageSize mid, MirlImageSize right,
                      MirlSlice slices[3])
{
    const int height = left.height;
    const long long middle = static_cast<long long>(client.right) - left.width - right.width - client.left;
    const int m = middle > 0 ? ClampToInt(middle) : 0;
    slices[0] = Slice(client.left, client.top, left.width, height, 0, 0, left.width, left.height);
    slices[1] = m > 0 && mid.width > 0 ? Slice(client.left + left.width, client.top, m, height, 0, 0, 1, mid.height)
                                       : Nothing();
    // The right end follows the middle as the arithmetic places it, over the left end when the
    // client is too narrow for both.
    const int rightX = ClampToInt(static_cast<long long>(client.left) + left.width + middle);
    slices[2] = Slice(rightX, client.top, right.width, height, 0, 0, right.width, right.height);
}

int PlanProgressFill(int fill, int clientWidth, MirlImageSize left, MirlImageSize mid, MirlImageSize right,
                     MirlSlice slices[3])
{
    for (int i = 0; i < 3; ++i) {
        slices[i] = Nothing();
    }
    if (fill <= 0) {
        return 0;
    }
    const int wl = left.width;
    const int wr = right.width;
    const int h = left.height;
    if (static_cast<long long>(fill) >= static_cast<long long>(wl) + wr) {
        // Past the client the right end is out of sight and the middle is one colour per row.
        const long long farthest = std::max(static_cast<long long>(clientWidth) + wr, static_cast<long long>(wl) + wr);
        const int f = static_cast<long long>(fill) > farthest ? static_cast<int>(farthest) : fill;
        const int middle = f - wl - wr;
        slices[0] = Slice(1, 1, wl, h, 0, 0, wl, left.height);
        slices[1] = middle > 0 && mid.width > 0 ? Slice(wl + 1, 1, middle, h, 0, 0, 1, mid.height) : Nothing();
        slices[2] = Slice(wl + 1 + middle, 1, wr, h, 0, 0, wr, right.height);
        return 3;
    }
    const int a = fill / 2;
    const int b = fill - a;
    if (a > 0) {
        slices[0] = Slice(1, 1, a, h, 0, 0, std::min(a, wl), left.height);
    }
    const int cut = std::min(b, wr);
    slices[1] = Slice(a + 1, 1, b, h, wr - cut, 0, cut, right.height);
    return 2;
}

int TrackThumbTop(const RECT &thumb, int imageHeight)
{
    const uint32_t difference = static_cast<uint32_t>(thumb.bottom) - static_cast<uint32_t>(imageHeight) -
                                static_cast<uint32_t>(thumb.top);
    const uint32_t top = static_cast<uint32_t>(thumb.top) + (difference >> 1);
    return static_cast<int>(static_cast<int64_t>(top) - (top > INT32_MAX ? (int64_t(1) << 32) : 0));
}

Gdiplus::Rect TrackChannelBand(int imageWidth, int imageHeight)
{
    const int top = imageHeight / 2 - 2;
    if (top < 0) {
        return Gdiplus::Rect(0, 0, imageWidth, imageHeight > 0 ? imageHeight : 0);
    }
    return Gdiplus::Rect(0, top, imageWidth, 4);
}

int NextInchingFrame(int frame, unsigned int x, int lastX)
{
    if (static_cast<long long>(x) >= lastX) {
        return frame + 1 >= kInchingFrames ? 0 : frame + 1;
    }
    return frame - 1 < 0 ? kInchingFrames - 1 : frame - 1;
}

int CentreOffset(int client, int image)
{
    const uint32_t half = (static_cast<uint32_t>(client) - static_cast<uint32_t>(image)) >> 1;
    return static_cast<int>(half);
}

bool LandsInside(int x, int y, int width, int height, int clientWidth, int clientHeight)
{
    return width > 0 && height > 0 && x < clientWidth && y < clientHeight &&
           static_cast<long long>(x) + width > 0 && static_cast<long long>(y) + height > 0;
}

} // namespace MIRL
