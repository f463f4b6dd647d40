// An image's pixels premultiplied by their alpha, kept beside the image, and the one-to-one
// blend of them onto a device context.
//
// GDI+ draws a 32-bit ARGB image onto a device context by converting the whole image to
// premultiplied pixels and alpha-blending those, on every draw. A button repaints the same
// image again and again, so the conversion is done once here and each draw is one AlphaBlend of
// the kept pixels: the same arithmetic, the same result, without redoing it.
//
//   MirlPremultiplied          Make (from a GDI+ bitmap), Width, Height, Pixels
//   BlendPremultiplied         the rectangle (0, 0, width, height) of the pixels over dc at (x, y)
//   FreePremultipliedScratch   lets go of the scratch picture the blends go through
#pragma once

#include "MirlExport.h"

#include <windows.h>
#include <objidl.h>

#include <algorithm>
using std::max;
using std::min;
#include <gdiplus.h>

#include <cstdint>
#include <vector>

namespace MIRL {

class MIRL_API MirlPremultiplied {
public:
    // The bitmap's pixels as GDI+ premultiplies them; null without memory or for an empty or
    // unreadable bitmap.
    static MirlPremultiplied *Make(Gdiplus::Bitmap *bitmap);

    int Width() const { return m_Width; }
    int Height() const { return m_Height; }
    // Rows top-down, Width() pixels each, 0xAARRGGBB with the colours already times alpha.
    const std::vector<std::uint32_t> &Pixels() const { return m_Pixels; }

private:
    MirlPremultiplied() = default;

    int m_Width = 0;
    int m_Height = 0;
    std::vector<std::uint32_t> m_Pixels;
};

// Blends the top-left width x height of pixels over dc at (x, y) in dc's logical units, as
// AlphaBlend with per-pixel alpha does. False, with nothing drawn, where the rectangle isn't
// inside the pixels or no scratch picture could be made; the caller then draws another way.
MIRL_API bool BlendPremultiplied(HDC dc, const MirlPremultiplied &pixels, int x, int y, int width, int height);

// The blends copy the pixels through one scratch picture of the thread that paints; freed here
// (with the last button) and made again when needed.
MIRL_API void FreePremultipliedScratch();

} // namespace MIRL
