// The splitter's drag rule, without windows: whether one step of d pixels along x may be taken
// with the brothers' present widths and limits, and where the three windows go if it may.
//
//   SplitterStepAllowed    both limits checked against the whole step
//   SplitterStepPlaces     the bar and both brothers moved by the step
#pragma once

#include "MirlExport.h"

#include <windows.h>

namespace MIRL {

// What the rule reads of a brother: its present width and its template's limits. A minimum of
// 0 or less is no minimum; a maximum is always in force.
struct MirlBrotherWidth {
    int width;
    int minWidth;
    int maxWidth;
};

// Whether a step of d (the pointer's x from the bar's left edge) may be taken. Moving left or
// not at all (d < 1), the left brother must stay at or above its minimum and the right one at
// or below its maximum; moving right, the left brother at or below its maximum and the right
// one at or above its minimum. A step that breaks either is refused whole.
MIRL_API bool SplitterStepAllowed(int d, const MirlBrotherWidth &left, const MirlBrotherWidth &right);

// The three rectangles after a step, in the parent's client coordinates: the bar moved by d,
// the left brother's right edge and the right brother's left edge moved by d; tops and bottoms
// stay.
MIRL_API void SplitterStepPlaces(int d, RECT &bar, RECT &left, RECT &right);

} // namespace MIRL
