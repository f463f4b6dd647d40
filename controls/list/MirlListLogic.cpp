#include "MirlListLogic.h"

#include <algorithm>
#include <climits>

namespace MIRL {

namespace {

int ClampToInt(long long value)
{
    return value > INT_MAX ? INT_MAX : value < INT_MIN ? INT_MIN : static_cast<int>(value);
}

} // namespace

RECT MenuRowRect(int index, int rowHeight, int width)
{
    const long long top = kMenuRowsTop + static_cast<long long>(index) * rowHeight;
    RECT rect = {0, ClampToInt(top), width, ClampToInt(top + rowHeight)};
    return rect;
}

int MenuNeededHeight(int rows, int rowHeight)
{
    return ClampToInt(static_cast<long long>(rows) * rowHeight + kMenuRowsTop);
}

RECT FlipAboveTop(const RECT &window, LONG workBottom)
{
    if (window.bottom <= workBottom) {
        return window;
    }
    const long long height = static_cast<long long>(window.bottom) - window.top;
    RECT flipped = window;
    flipped.bottom = window.top;
    flipped.top = ClampToInt(window.top - height);
    return flipped;
}

RECT ComboDropRect(const RECT &control, int height, LONG workBottom)
{
    RECT drop = control;
    drop.top = control.bottom;
    drop.bottom = ClampToInt(static_cast<long long>(control.bottom) + height);
    if (drop.bottom > workBottom) {
        drop.bottom = control.top;
        drop.top = ClampToInt(static_cast<long long>(control.top) - height);
    }
    return drop;
}

namespace {

void Slices(int bitmapWidth, int cap, const RECT &rect, SlicePart parts[3])
{
    const int middle = ClampToInt(static_cast<long long>(rect.right) - 2LL * cap - rect.left);
    parts[0] = {0, cap, rect.left, cap};
    parts[1] = {cap, 1, ClampToInt(static_cast<long long>(rect.left) + cap), middle};
    parts[2] = {bitmapWidth - cap, cap, ClampToInt(static_cast<long long>(rect.left) + cap + middle), cap};
}

} // namespace

void ListSlices(int bitmapWidth, const RECT &rect, SlicePart parts[3])
{
    Slices(bitmapWidth, 4, rect, parts);
}

void ComboSlices(int bitmapWidth, const RECT &rect, SlicePart parts[3])
{
    Slices(bitmapWidth, bitmapWidth / 2, rect, parts);
}

ListLayoutResult ComputeListLayout(const ListLayoutInput &in)
{
    ListLayoutResult out = {};
    const int rowsHeight = in.height - in.titleHeight;
    int useWidth = in.width;
    int useHeight = rowsHeight;
    if (in.neededWidth > in.width) {
        out.needH = true;
        useHeight = rowsHeight - in.barHeight;
    }
    // The needed height counts the header while useHeight does not: the vertical bar comes one
    // header early.
    if (in.neededHeight > useHeight) {
        out.needV = true;
        useWidth = in.width - in.barWidth;
        if (!out.needH && in.neededWidth > useWidth) {
            out.needH = true;
            useHeight -= in.barHeight;
        }
    }
    out.rowsRect = {0, in.titleHeight, useWidth, ClampToInt(static_cast<long long>(in.titleHeight) + useHeight)};
    out.hMax = ClampToInt(in.neededWidth - in.width);
    out.vMax = ClampToInt(in.neededHeight - rowsHeight);
    const int below = rowsHeight - in.barHeight;
    if (out.needH && out.needV) {
        out.hBar = {0, below + in.titleHeight, in.width - in.barWidth, below + in.titleHeight + in.barHeight};
        out.vBar = {in.width - in.barWidth, in.titleHeight, in.width, in.titleHeight + below};
    } else if (out.needH) {
        out.hBar = {0, below + in.titleHeight, in.width, below + in.titleHeight + in.barHeight};
    } else if (out.needV) {
        // The header's height comes off twice here: the bar stops short of the bottom.
        out.vBar = {in.width - in.barWidth, in.titleHeight, in.width, in.titleHeight + rowsHeight - in.titleHeight};
    }
    return out;
}

int ListScrollPosition(int code, int position, int trackPos, int page, int maximum)
{
    long long next = position;
    switch (code) {
    case SB_LINEUP:
    case SB_TOP:
        next = static_cast<long long>(position) - 1;
        break;
    case SB_LINEDOWN:
    case SB_BOTTOM:
        next = static_cast<long long>(position) + 1;
        break;
    case SB_PAGEUP:
        next = static_cast<long long>(position) - page;
        break;
    case SB_PAGEDOWN:
        next = static_cast<long long>(position) + page;
        break;
    case SB_THUMBPOSITION:
    case SB_THUMBTRACK:
        next = trackPos;
        break;
    default:
        return position;
    }
    const long long top = std::max(0, maximum);
    return static_cast<int>(std::min(std::max(next, 0LL), top));
}

long long FirstRowBelow(long long firstTop, long long pitch, long long top)
{
    if (pitch <= 0 || top <= firstTop) {
        return 0;
    }
    return (top - firstTop) / pitch;
}

} // namespace MIRL
