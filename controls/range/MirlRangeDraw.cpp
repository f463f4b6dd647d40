#include "MirlRangeDraw.h"

namespace MIRL {

void DrawStretched(Gdiplus::Graphics &graphics, Gdiplus::Bitmap *bitmap, const Gdiplus::Rect &target,
                   const Gdiplus::Rect &source)
{
    if (bitmap == NULL || target.Width <= 0 || target.Height <= 0 || source.Width <= 0 || source.Height <= 0) {
        return;
    }
    const Gdiplus::InterpolationMode interpolation = graphics.GetInterpolationMode();
    const Gdiplus::PixelOffsetMode offset = graphics.GetPixelOffsetMode();
    graphics.SetInterpolationMode(Gdiplus::InterpolationModeNearestNeighbor);
    graphics.SetPixelOffsetMode(Gdiplus::PixelOffsetModeHalf);
    if (target.Width != source.Width) {
        // Wine's GDI+ leaves out the first column of some horizontal stretches (one column to
        // 90 or 94, forty to 184): the first column drawn at its own width fills that pixel.
        graphics.DrawImage(bitmap, Gdiplus::Rect(target.X, target.Y, 1, target.Height), source.X, source.Y, 1,
                           source.Height, Gdiplus::UnitPixel);
    }
    graphics.DrawImage(bitmap, target, source.X, source.Y, source.Width, source.Height, Gdiplus::UnitPixel);
    graphics.SetInterpolationMode(interpolation);
    graphics.SetPixelOffsetMode(offset);
}

} // namespace MIRL
