// The range controls' rules that need no window: the progress bar's fill and its two image
// sets, the track bar's thumb and channel, the inching switch's frame steps and centring.
// The controls call these; tests call them directly.
//
//   ProgressFillLength       the filled length, counted from 0 and not from the minimum
//   PlanProgressBack         the background's three slices
//   PlanProgressFill         the filled part's slices: three, or two cut ends sharing the length
//   TrackThumbTop            where the thumb image stands in the system's thumb rectangle
//   TrackChannelBand         the 4-pixel band of the channel image
//   NextInchingFrame         one frame forward or back, wrapping 47/0
//   CentreOffset             the unsigned halving that centres an image in the client
//   LandsInside              whether an image placed there shows any pixel in the client
#pragma once

#include "../text/MirlButtonLogic.h"

namespace MIRL {

// The filled length of a bar whose client is clientWidth wide: (clientWidth - 2) * pos /
// (max - min), truncated toward zero. The position is not reduced by the minimum. An empty
// range (max == min) fills nothing; a result beyond int's range is clamped.
MIRL_API int ProgressFillLength(int clientWidth, int pos, int min, int max);

// The sizes of one image of a bar, zero for a missing one.
struct MirlImageSize {
    int width;
    int height;
};

// The background: "PGBL" natural at the client's top left, the first column of "PGBX"
// stretched between the ends, "PGBR" after it, all as high as "PGBL". A slice of no width is
// not drawn: a client narrower than both ends draws no middle.
MIRL_API void PlanProgressBack(const RECT &client, MirlImageSize left, MirlImageSize mid, MirlImageSize right,
                               MirlSlice slices[3]);

// The filled part, one pixel in from the bar's edge at (1, 1) whatever the client's origin,
// as high as "PGFL". With fill at least wl + wr: left end, the first column of "PGFX"
// stretched over fill - wl - wr, right end. Below that: the left fill / 2 columns of "PGFL"
// and the last fill - fill / 2 columns of "PGFR"; a cut wider than its image takes the whole
// image stretched. A fill reaching far past the client is drawn as one that just passes it:
// the picture is the same. Answers the slices to draw (0 to 3); unused ones have no width.
MIRL_API int PlanProgressFill(int fill, int clientWidth, MirlImageSize left, MirlImageSize mid, MirlImageSize right,
                              MirlSlice slices[3]);

// The top of a thumb image of that height centred in the system's thumb rectangle. The halving
// works on the unsigned 32-bit difference, so an image taller than the rectangle lands some
// two thousand million pixels away instead of above its top; the sum wraps as 32 bits do.
MIRL_API int TrackThumbTop(const RECT &thumb, int imageHeight);

// The band of the channel image that fills the channel: 4 rows from the middle, whole width.
// An image lower than 4 rows gives what it has.
MIRL_API Gdiplus::Rect TrackChannelBand(int imageWidth, int imageHeight);

enum { kInchingFrames = 48 };

// The frame after one mouse message at x (the low word of lParam, unsigned) with the last x:
// forward when x is at least lastX (no movement counts as forward), back otherwise, wrapping.
MIRL_API int NextInchingFrame(int frame, unsigned int x, int lastX);

// (client - image) / 2 on unsigned 32-bit values, read back as an int: an image bigger than
// the client gets a huge offset, never a negative one.
MIRL_API int CentreOffset(int client, int image);

// Whether an image of that size at (x, y) shows any pixel in a client of that size.
MIRL_API bool LandsInside(int x, int y, int width, int height, int clientWidth, int clientHeight);

} // namespace MIRL
