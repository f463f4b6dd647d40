// Pictures from the skin: the one sequence every control uses to load an image element.
//
//   MIRL::LoadSkinBitmap       element name -> decoded bitmap, or null
//   MIRL::LoadElementBitmap    image element -> decoded bitmap, or null
//   MIRL::ColorToArgb          a colour element in GDI+ order (alpha, red, green, blue)
#pragma once

#include "MirlExport.h"
#include "MirlSkin.h"

#include <algorithm>
using std::max;
using std::min;
#include <gdiplus.h>

namespace MIRL {

// The bitmap of the image element of that name in the current language (with the fallback),
// decoded from the package. Null when the element, its file or the decoding is missing: a
// skin that lacks an image is drawn without it. The caller owns the bitmap.
MIRL_API Gdiplus::Bitmap *LoadSkinBitmap(const wchar_t *elementName);
MIRL_API Gdiplus::Bitmap *LoadElementBitmap(const MirlUiElementImage *element);
// The picture in the package's entry fileName; null when there is none or it can't be decoded.
MIRL_API Gdiplus::Bitmap *LoadPackageBitmap(const wchar_t *fileName);

// Alpha in bits 24 to 31, then red, green, blue.
MIRL_API Gdiplus::ARGB ColorToArgb(const MirlUiElementColor *color);

} // namespace MIRL
