#include "MirlButtonLogic.h"

#include "MirlStyles.h"

#include <climits>
#include <cmath>

namespace MIRL {

int TruncateToInt(double value)
{
    if (std::isnan(value)) {
        return 0;
    }
    if (value >= static_cast<double>(INT_MAX)) {
        return INT_MAX;
    }
    if (value <= static_cast<double>(INT_MIN)) {
        return INT_MIN;
    }
    return static_cast<int>(value);
}

bool IsWholePixel(float value)
{
    // Beyond 2^24 every float is whole, but far past what a window can show.
    return std::isfinite(value) && value == std::floor(value) && std::fabs(value) <= 16777216.0f;
}

void SplitThreeSlices(unsigned int width, unsigned int height, const Gdiplus::Rect &target, MirlSlice slices[3])
{
    const INT half = static_cast<INT>(width >> 1);
    const INT H = static_cast<INT>(height);
    // For an odd width the centre column belongs to the middle alone.
    const INT middle = target.Width - static_cast<INT>(width & ~1u);
    slices[0].target = Gdiplus::Rect(target.X, target.Y, half, target.Height);
    slices[0].source = Gdiplus::Rect(0, 0, half, H);
    slices[1].target = Gdiplus::Rect(target.X + half, target.Y, middle, target.Height);
    slices[1].source = Gdiplus::Rect(half, 0, 1, H);
    slices[2].target = Gdiplus::Rect(target.X + half + middle, target.Y, half, target.Height);
    slices[2].source = Gdiplus::Rect(static_cast<INT>(width) - half, 0, half, H);
}

void LinkSpan(const Gdiplus::RectF &caption, long clientRight, unsigned long style, int *left, int *right)
{
    const double r = static_cast<double>(clientRight);
    if (style & ALIGN_LEFT) {
        *left = TruncateToInt(caption.X);
        *right = TruncateToInt(static_cast<double>(caption.X) + caption.Width);
    } else if (style & ALIGN_RIGHT) {
        *left = TruncateToInt(r - caption.Width);
        *right = TruncateToInt(r);
    } else {
        *left = TruncateToInt((r - caption.Width) * 0.5);
        *right = TruncateToInt((r + caption.Width) * 0.5);
    }
}

unsigned int RunRepeatLoop(MirlRepeatHooks &hooks)
{
    unsigned int sent = 0;
    bool odd = false;
    while (!hooks.Released()) {
        hooks.Send();
        ++sent;
        hooks.Wait();
        odd = !odd;
    }
    if (odd) {
        hooks.Send();
        ++sent;
    }
    return sent;
}

void CopyUrl(wchar_t (&url)[kUrlCapacity], const wchar_t *source)
{
    size_t i = 0;
    if (source != NULL) {
        for (; i + 1 < kUrlCapacity && source[i] != L'\0'; ++i) {
            url[i] = source[i];
        }
    }
    for (; i < kUrlCapacity; ++i) {
        url[i] = L'\0';
    }
}

} // namespace MIRL
