#include "MirlSplitterLogic.h"

#include <climits>

namespace MIRL {

namespace {

// An edge moved by d, held inside LONG's range.
void Shift(LONG &edge, int d)
{
    const long long moved = static_cast<long long>(edge) + d;
    edge = moved > LONG_MAX ? LONG_MAX : moved < LONG_MIN ? LONG_MIN : static_cast<LONG>(moved);
}

} // namespace

bool SplitterStepAllowed(int d, const MirlBrotherWidth &left, const MirlBrotherWidth &right)
{
    const long long grownLeft = static_cast<long long>(left.width) + d;
    const long long shrunkRight = static_cast<long long>(right.width) - d;
    if (d < 1) {
        const bool leftTooSmall = left.minWidth > 0 && grownLeft < left.minWidth;
        const bool rightTooBig = shrunkRight > right.maxWidth;
        return !leftTooSmall && !rightTooBig;
    }
    const bool leftTooBig = grownLeft > left.maxWidth;
    const bool rightTooSmall = right.minWidth > 0 && shrunkRight < right.minWidth;
    return !leftTooBig && !rightTooSmall;
}

void SplitterStepPlaces(int d, RECT &bar, RECT &left, RECT &right)
{
    Shift(bar.left, d);
    Shift(bar.right, d);
    Shift(left.right, d);
    Shift(right.left, d);
}

} // namespace MIRL
