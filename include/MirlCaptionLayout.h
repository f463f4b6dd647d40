// Where a caption's text and image go in a client rectangle, for the four orders and the
// alignment word. Buttons keep a side margin of 6 pixels, labels none; the rest is shared.
#pragma once

#include "MirlExport.h"

#include <windows.h>
#include <objidl.h>

#include <algorithm>
using std::max;
using std::min;
#include <gdiplus.h>

#include <functional>

struct MirlCaptionInput {
    long left = 0;           // the client rectangle
    long top = 0;
    long right = 0;
    long bottom = 0;
    unsigned long align = 0; // ORDER_* and ALIGN_* bits
    int margin = 0;          // side margin: 6 for buttons, 0 for labels
    bool hasText = false;
    bool hasImage = false;
    unsigned int imageWidth = 0;
    unsigned int imageHeight = 0;
};

// Sets the text rectangle, measures the caption in it, and answers the measured rectangle.
typedef std::function<Gdiplus::RectF(const Gdiplus::RectF &)> MirlMeasureCaption;

namespace MIRL {

// Lays out text and image. imageRect receives the image's place and size where there is an
// image; the text's final rectangle goes through measure. False when the client area is empty
// or there is neither text nor image: the layout is then not valid and is tried again.
// Centring an image larger than the client area uses a logical shift of a 32-bit unsigned
// difference, which puts the image some two thousand million pixels away rather than clipping
// it on both sides.
MIRL_API bool PlaceCaption(const MirlCaptionInput &input, const MirlMeasureCaption &measure, Gdiplus::RectF &imageRect);

} // namespace MIRL
