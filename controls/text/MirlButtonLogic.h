// The skin button's rules that need no window: the three-slice split of a background image,
// the link span of the caption, the auto-repeat count and the bounded URL copy. MirlButton
// calls these; tests call them directly. The placing of caption and image is
// MIRL::PlaceCaption (MirlCaptionLayout.h), shared with the label.
//
//   TruncateToInt            float to int toward zero, clamped
//   IsWholePixel             a float that is a whole pixel
//   SplitThreeSlices         left end, one stretched column, right end
//   PaintThreeSlices         the same split drawn (defined beside the button's painting)
//   LinkSpan                 the horizontal span in which the pointer is over a link
//   RunRepeatLoop            commands until the release, made even
//   CopyUrl                  at most 259 characters and a NUL into a 260-character array
#pragma once

#include "MirlExport.h"

#include <windows.h>
#include <objidl.h>

#include <algorithm>
using std::max;
using std::min;
#include <gdiplus.h>

namespace MIRL {

// Truncation toward zero that clamps instead of overflowing: a float far outside int's range
// (an image placed two thousand million pixels away) must not be undefined behaviour.
MIRL_API int TruncateToInt(double value);

// True for a coordinate that is a whole number of pixels and within int's range.
MIRL_API bool IsWholePixel(float value);

// One part of a three-slice drawing: where it goes and where it comes from, in pixels.
struct MirlSlice {
    Gdiplus::Rect target;
    Gdiplus::Rect source;
};

// An image of width x height drawn into target as left end, one stretched middle column and
// right end, each end half the image wide; the height is always stretched.
MIRL_API void SplitThreeSlices(unsigned int width, unsigned int height, const Gdiplus::Rect &target,
                               MirlSlice slices[3]);
// Draws image into target by SplitThreeSlices, pixel for pixel; nothing for a null image.
MIRL_API void PaintThreeSlices(Gdiplus::Graphics &graphics, Gdiplus::Bitmap *image, const Gdiplus::Rect &target);

// The span [left, right] of client x in which the pointer is over the caption, by the
// ALIGN_LEFT and ALIGN_RIGHT bits of style; the pointer is over it when left < x < right.
MIRL_API void LinkSpan(const Gdiplus::RectF &caption, long clientRight, unsigned long style, int *left, int *right);

// The auto-repeat loop: until released() answers true, send() then wait(). An odd count gets
// one more send, so that a toggling receiver ends where it began. Answers the sends made.
class MirlRepeatHooks {
public:
    virtual bool Released() = 0;
    virtual void Send() = 0;
    virtual void Wait() = 0;

protected:
    ~MirlRepeatHooks() = default;
};
MIRL_API unsigned int RunRepeatLoop(MirlRepeatHooks &hooks);

enum { kUrlCapacity = 260 };
// Copies at most 259 characters and a NUL; a null source clears all 260.
MIRL_API void CopyUrl(wchar_t (&url)[kUrlCapacity], const wchar_t *source);

} // namespace MIRL
