// Drawing shared by the range controls.
#pragma once

#include <windows.h>
#include <objidl.h>

#include <algorithm>
using std::max;
using std::min;
#include <gdiplus.h>

namespace MIRL {

// The source rectangle of bitmap stretched into target, pixel for pixel with no blending. A
// target or source of no size draws nothing, and so does a null bitmap.
void DrawStretched(Gdiplus::Graphics &graphics, Gdiplus::Bitmap *bitmap, const Gdiplus::Rect &target,
                   const Gdiplus::Rect &source);

} // namespace MIRL
