// The number field's and the spin arrows' rules that need no window: the step arithmetic, the
// digits test, the face's three parts and the place of the centred number.
// MirlCommonEdit and MirlSpinCtrl call these; tests call them directly.
//
//   SpinStep                 position + step * delta, floor 0, no ceiling (saturating)
//   IsAllDigits              at least one unit, all of them 0 to 9
//   CommonEditFace           left end, right end and the overlapping stretched middle
//   CentredOrigin            where a measured text starts to sit centred in the face
#pragma once

#include "MirlExport.h"

#include <windows.h>

namespace MIRL {

// The value after one notification of the arrows: position + step * delta, 0 where that is
// negative. There is no upper bound; a sum beyond int's range stops at INT_MAX rather than
// overflowing.
MIRL_API int SpinStep(int position, int step, int delta);

// 1 for a text of at least one unit, each of them '0' to '9'; 0 for null, empty or anything else.
MIRL_API int IsAllDigits(const wchar_t *text);

// The three draws of the face, as target rectangles (x, y, width, height); the source is always
// the whole image. The middle starts one pixel inside the left end and reaches four pixels under
// the right end.
struct CommonEditFaceParts {
    RECT left;   // x, y, width, height in left.left, left.top, left.right, left.bottom
    RECT middle;
    RECT right;
};
MIRL_API CommonEditFaceParts CommonEditFace(int clientRight, int clientBottom, int leftWidth, int rightWidth);

// (extent - measured) * 0.5 for each axis, as the drawing's floating origin.
MIRL_API float CentredOrigin(int extent, float measured);

} // namespace MIRL

namespace MIRL {
// The decimal value of a text that IsAllDigits accepts; a value beyond int's range stops at
// INT_MAX. 0 for anything IsAllDigits refuses.
MIRL_API int ParseDigits(const wchar_t *text);
} // namespace MIRL
