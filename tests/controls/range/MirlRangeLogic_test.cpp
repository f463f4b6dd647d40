#include "controls/range/MirlRangeLogic.h"

#include <gtest/gtest.h>

#include <climits>

namespace {

using MIRL::MirlImageSize;
using MIRL::MirlSlice;

void ExpectSlice(const MirlSlice &slice, int x, int y, int w, int h, int sx, int sy, int sw, int sh, const char *what)
{
    SCOPED_TRACE(what);
    EXPECT_EQ(x, slice.target.X);
    EXPECT_EQ(y, slice.target.Y);
    EXPECT_EQ(w, slice.target.Width);
    EXPECT_EQ(h, slice.target.Height);
    EXPECT_EQ(sx, slice.source.X);
    EXPECT_EQ(sy, slice.source.Y);
    EXPECT_EQ(sw, slice.source.Width);
    EXPECT_EQ(sh, slice.source.Height);
}

const MirlImageSize kEnd = {6, 10};
const MirlImageSize kMid = {3, 10};

} // namespace

TEST(ProgressFill, CountsFromZeroNotFromTheMinimum)
{
    // Range 10 to 20 at 15 on a bar of 100 inner pixels: 150 pixels, half again its length.
    EXPECT_EQ(150, MIRL::ProgressFillLength(102, 15, 10, 20));
    EXPECT_EQ(50, MIRL::ProgressFillLength(102, 50, 0, 100));
    EXPECT_EQ(0, MIRL::ProgressFillLength(102, 0, 0, 100));
}

TEST(ProgressFill, TruncatesTowardZero)
{
    EXPECT_EQ(33, MIRL::ProgressFillLength(102, 1, 0, 3));
    EXPECT_EQ(-33, MIRL::ProgressFillLength(102, -1, 0, 3));
    // A range written upside down gives a negative fill: nothing is drawn.
    EXPECT_EQ(-50, MIRL::ProgressFillLength(102, 5, 20, 10));
}

TEST(ProgressFill, AnEmptyRangeFillsNothing)
{
    EXPECT_EQ(0, MIRL::ProgressFillLength(102, 7, 5, 5));
    EXPECT_EQ(0, MIRL::ProgressFillLength(102, INT_MIN, 0, 0));
}

TEST(ProgressFill, ExtremesAreClampedNotOverflowed)
{
    EXPECT_EQ(INT_MAX, MIRL::ProgressFillLength(INT_MAX, INT_MAX, 0, 1));
    EXPECT_EQ(INT_MIN, MIRL::ProgressFillLength(INT_MAX, INT_MIN, 0, 1));
    // The range itself is taken in 64 bits: INT_MAX - INT_MIN does not wrap to -1.
    EXPECT_EQ(0, MIRL::ProgressFillLength(102, 100, INT_MIN, INT_MAX));
}

TEST(ProgressFill, AFillOfBothEndsOrMoreDrawsThreeSlices)
{
    MirlSlice slices[3];
    ASSERT_EQ(3, MIRL::PlanProgressFill(40, 102, kEnd, kMid, kEnd, slices));
    ExpectSlice(slices[0], 1, 1, 6, 10, 0, 0, 6, 10, "left end");
    ExpectSlice(slices[1], 7, 1, 28, 10, 0, 0, 1, 10, "first column of the middle");
    ExpectSlice(slices[2], 35, 1, 6, 10, 0, 0, 6, 10, "right end");
}

TEST(ProgressFill, ExactlyBothEndsDrawNoMiddle)
{
    MirlSlice slices[3];
    ASSERT_EQ(3, MIRL::PlanProgressFill(12, 102, kEnd, kMid, kEnd, slices));
    ExpectSlice(slices[0], 1, 1, 6, 10, 0, 0, 6, 10, "left end");
    EXPECT_EQ(0, slices[1].target.Width);
    ExpectSlice(slices[2], 7, 1, 6, 10, 0, 0, 6, 10, "right end");
}

TEST(ProgressFill, BelowBothEndsTheEndsAreCutAndMeetInTheMiddle)
{
    MirlSlice slices[3];
    ASSERT_EQ(2, MIRL::PlanProgressFill(9, 102, kEnd, kMid, kEnd, slices));
    ExpectSlice(slices[0], 1, 1, 4, 10, 0, 0, 4, 10, "the left 4 columns of the left end");
    ExpectSlice(slices[1], 5, 1, 5, 10, 1, 0, 5, 10, "the last 5 columns of the right end");
    EXPECT_EQ(0, slices[2].target.Width);
}

TEST(ProgressFill, AFillOfOneGivesTheLeftEndNothingAndTheRightEndOneColumn)
{
    MirlSlice slices[3];
    ASSERT_EQ(2, MIRL::PlanProgressFill(1, 102, kEnd, kMid, kEnd, slices));
    EXPECT_EQ(0, slices[0].target.Width);
    EXPECT_EQ(0, slices[0].source.Width);
    ExpectSlice(slices[1], 1, 1, 1, 10, 5, 0, 1, 10, "the last column of the right end");
}

TEST(ProgressFill, NoFillDrawsNothing)
{
    MirlSlice slices[3];
    EXPECT_EQ(0, MIRL::PlanProgressFill(0, 102, kEnd, kMid, kEnd, slices));
    EXPECT_EQ(0, MIRL::PlanProgressFill(-5, 102, kEnd, kMid, kEnd, slices));
}

TEST(ProgressFill, ACutWiderThanItsImageStretchesTheWholeImage)
{
    const MirlImageSize wideLeft = {10, 10};
    const MirlImageSize narrowRight = {2, 10};
    MirlSlice slices[3];
    ASSERT_EQ(2, MIRL::PlanProgressFill(11, 102, wideLeft, kMid, narrowRight, slices));
    ExpectSlice(slices[0], 1, 1, 5, 10, 0, 0, 5, 10, "left");
    ExpectSlice(slices[1], 6, 1, 6, 10, 0, 0, 2, 10, "the whole right end over 6 columns");
}

TEST(ProgressFill, AFillFarPastTheClientEndsJustPastIt)
{
    MirlSlice slices[3];
    ASSERT_EQ(3, MIRL::PlanProgressFill(INT_MAX, 102, kEnd, kMid, kEnd, slices));
    ExpectSlice(slices[1], 7, 1, 96, 10, 0, 0, 1, 10, "middle to the client's edge");
    EXPECT_EQ(103, slices[2].target.X);
    // 150 of 100 inner pixels is drawn as it is: the right end just out of sight.
    ASSERT_EQ(3, MIRL::PlanProgressFill(150, 102, kEnd, kMid, kEnd, slices));
    EXPECT_EQ(103, slices[2].target.X);
}

TEST(ProgressFill, TheFillStartsAtOneOneWhateverTheClientOrigin)
{
    const RECT client = {5, 7, 105, 27};
    MirlSlice back[3];
    MIRL::PlanProgressBack(client, kEnd, kMid, kEnd, back);
    ExpectSlice(back[0], 5, 7, 6, 10, 0, 0, 6, 10, "background left end at the origin");
    ExpectSlice(back[1], 11, 7, 88, 10, 0, 0, 1, 10, "background middle");
    ExpectSlice(back[2], 99, 7, 6, 10, 0, 0, 6, 10, "background right end");
    MirlSlice fill[3];
    ASSERT_EQ(3, MIRL::PlanProgressFill(50, 100, kEnd, kMid, kEnd, fill));
    EXPECT_EQ(1, fill[0].target.X);
    EXPECT_EQ(1, fill[0].target.Y);
}

TEST(ProgressBack, TheEndsTakeTheLeftEndsHeight)
{
    const RECT client = {0, 0, 50, 30};
    const MirlImageSize tallLeft = {4, 12};
    const MirlImageSize mid = {1, 8};
    const MirlImageSize right = {4, 8};
    MirlSlice back[3];
    MIRL::PlanProgressBack(client, tallLeft, mid, right, back);
    ExpectSlice(back[0], 0, 0, 4, 12, 0, 0, 4, 12, "left");
    ExpectSlice(back[1], 4, 0, 42, 12, 0, 0, 1, 8, "middle stretched to the left end's height");
    ExpectSlice(back[2], 46, 0, 4, 12, 0, 0, 4, 8, "right");
}

TEST(ProgressBack, AClientNarrowerThanBothEndsHasNoMiddle)
{
    const RECT client = {0, 0, 8, 10};
    MirlSlice back[3];
    MIRL::PlanProgressBack(client, kEnd, kMid, kEnd, back);
    EXPECT_EQ(0, back[1].target.Width);
    // The right end stands where the arithmetic puts it, over the left end.
    EXPECT_EQ(2, back[2].target.X);
}

TEST(TrackThumb, IsCentredInTheSystemsThumbRectangle)
{
    const RECT thumb = {20, 10, 31, 30};
    EXPECT_EQ(14, MIRL::TrackThumbTop(thumb, 12));
    EXPECT_EQ(10, MIRL::TrackThumbTop(thumb, 20));
    EXPECT_EQ(10, MIRL::TrackThumbTop(thumb, 19)); // 1 / 2 is 0
}

TEST(TrackThumb, AnImageTallerThanTheRectangleLandsFarAwayThroughTheUnsignedShift)
{
    const RECT thumb = {20, 10, 31, 30};
    // 30 - 24 - 10 is -4: 0xFFFFFFFC / 2 is 0x7FFFFFFE, and 10 + 0x7FFFFFFE wraps to 0x80000008.
    EXPECT_EQ(-2147483640, MIRL::TrackThumbTop(thumb, 24));
    EXPECT_EQ(static_cast<int>(0x80000009u - 0x100000000ll), MIRL::TrackThumbTop(thumb, 22));
    EXPECT_FALSE(MIRL::LandsInside(20, MIRL::TrackThumbTop(thumb, 24), 11, 24, 200, 40));
    // At the top of the client the sum stays positive and as large.
    const RECT top = {0, 0, 10, 10};
    EXPECT_EQ(0x7FFFFFFF, MIRL::TrackThumbTop(top, 11));
}

TEST(TrackChannel, IsABandOfFourRowsFromTheMiddle)
{
    const Gdiplus::Rect band = MIRL::TrackChannelBand(40, 12);
    EXPECT_EQ(0, band.X);
    EXPECT_EQ(4, band.Y);
    EXPECT_EQ(40, band.Width);
    EXPECT_EQ(4, band.Height);
    const Gdiplus::Rect low = MIRL::TrackChannelBand(40, 3);
    EXPECT_EQ(0, low.Y);
    EXPECT_EQ(3, low.Height);
}

TEST(InchingFrames, NoMovementStepsForward)
{
    EXPECT_EQ(6, MIRL::NextInchingFrame(5, 30, 30));
}

TEST(InchingFrames, OneFrameAMessageWhateverTheDistance)
{
    EXPECT_EQ(6, MIRL::NextInchingFrame(5, 31, 30));
    EXPECT_EQ(6, MIRL::NextInchingFrame(5, 3000, 30));
    EXPECT_EQ(4, MIRL::NextInchingFrame(5, 29, 30));
    EXPECT_EQ(4, MIRL::NextInchingFrame(5, 0, 3000));
}

TEST(InchingFrames, WrapsAtBothEnds)
{
    EXPECT_EQ(0, MIRL::NextInchingFrame(47, 31, 30));
    EXPECT_EQ(47, MIRL::NextInchingFrame(0, 29, 30));
}

TEST(InchingFrames, AnXBeyond32767OrNegativeIsReadUnsigned)
{
    // -1 in the low word is 65535: more than any x, so forward.
    EXPECT_EQ(11, MIRL::NextInchingFrame(10, 0xFFFF, 100));
    EXPECT_EQ(11, MIRL::NextInchingFrame(10, 40000, 32767));
    EXPECT_EQ(9, MIRL::NextInchingFrame(10, 40000, 65535));
}

TEST(InchingCentre, HalvesOnUnsignedValues)
{
    EXPECT_EQ(10, MIRL::CentreOffset(60, 40));
    EXPECT_EQ(0, MIRL::CentreOffset(40, 40));
    EXPECT_EQ(0, MIRL::CentreOffset(41, 40));
    // An image 10 pixels bigger than the client: 0xFFFFFFF6 / 2.
    EXPECT_EQ(0x7FFFFFFB, MIRL::CentreOffset(30, 40));
    EXPECT_FALSE(MIRL::LandsInside(MIRL::CentreOffset(30, 40), 0, 40, 40, 30, 30));
}

TEST(InchingCentre, LandsInsideIsAnyPixelOfTheClient)
{
    EXPECT_TRUE(MIRL::LandsInside(0, 0, 1, 1, 1, 1));
    EXPECT_TRUE(MIRL::LandsInside(-9, -9, 10, 10, 1, 1));
    EXPECT_FALSE(MIRL::LandsInside(-10, 0, 10, 10, 5, 5));
    EXPECT_FALSE(MIRL::LandsInside(5, 0, 10, 10, 5, 5));
    EXPECT_FALSE(MIRL::LandsInside(0, 0, 0, 10, 5, 5));
    EXPECT_FALSE(MIRL::LandsInside(INT_MIN, INT_MIN, 10, 10, 5, 5));
}
