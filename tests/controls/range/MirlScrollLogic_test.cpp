// The range controls' arithmetic without a window: scroll bar geometry, hit zones and positions,
// slider mappings, seek bar fractions, with the exact values of their edge cases.
#include "controls/range/MirlScrollLogic.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <limits>

namespace {

using MIRL::MirlScrollMetrics;
using MIRL::MirlScrollRects;

// Arrows of 16 by 20 on a bar 200 high: up 0-20, track 20-180, down 180-200; the thumb travels
// from 10 to 190.
const MirlScrollMetrics kArrows = {20, 16, 20, 16};

SCROLLINFO Info(int nMin, int nMax, UINT nPage, int nPos)
{
    SCROLLINFO info = {};
    info.cbSize = sizeof(info);
    info.fMask = SIF_ALL;
    info.nMin = nMin;
    info.nMax = nMax;
    info.nPage = nPage;
    info.nPos = nPos;
    return info;
}

void ExpectRect(const RECT &rect, LONG left, LONG top, LONG right, LONG bottom, const char *what)
{
    EXPECT_EQ(left, rect.left) << what;
    EXPECT_EQ(top, rect.top) << what;
    EXPECT_EQ(right, rect.right) << what;
    EXPECT_EQ(bottom, rect.bottom) << what;
}

// ---- Scroll bar ----

TEST(ScrollGeometry, FullHeightBarHasArrowsAtTheirOwnSize)
{
    EXPECT_FLOAT_EQ(1.0f, MIRL::ScrollScaleForHeight(200, 20));
    const MirlScrollRects rects = MIRL::ScrollLayout(kArrows, 1.0f, 200, 72, Info(0, 99, 40, 0));
    ExpectRect(rects.up, 0, 0, 16, 20, "up");
    ExpectRect(rects.track, 0, 20, 16, 180, "track");
    ExpectRect(rects.down, 0, 180, 16, 200, "down");
    ExpectRect(rects.thumb, 0, 10, 16, 82, "thumb");
}

TEST(ScrollGeometry, ShortBarScalesTheArrowsAndTheTrackBottomTwice)
{
    // 30 pixels for two arrows of 20: scale 0.75. The track bottom takes the scaled up arrow
    // (15) scaled again (11), so the down arrow runs past the client bottom to 34.
    const float scale = MIRL::ScrollScaleForHeight(30, 20);
    EXPECT_FLOAT_EQ(0.75f, scale);
    const MirlScrollRects rects = MIRL::ScrollLayout(kArrows, scale, 30, 18, Info(0, 99, 10, 0));
    ExpectRect(rects.up, 0, 0, 16, 15, "up");
    ExpectRect(rects.track, 0, 15, 16, 19, "track");
    ExpectRect(rects.down, 0, 19, 16, 34, "down");
    EXPECT_GT(rects.down.bottom, 30);
}

TEST(ScrollGeometry, ScaleIsOneOnlyAboveTwiceTheArrow)
{
    EXPECT_FLOAT_EQ(1.0f, MIRL::ScrollScaleForHeight(41, 20));
    EXPECT_FLOAT_EQ(1.0f, MIRL::ScrollScaleForHeight(40, 20));
    EXPECT_FLOAT_EQ(0.5f, MIRL::ScrollScaleForHeight(20, 20));
    EXPECT_FLOAT_EQ(0.0f, MIRL::ScrollScaleForHeight(0, 20));
    EXPECT_FLOAT_EQ(-0.25f, MIRL::ScrollScaleForHeight(-10, 20));
    // No up arrow image: nothing to shrink, and no 0 / 0.
    EXPECT_FLOAT_EQ(1.0f, MIRL::ScrollScaleForHeight(0, 0));
    EXPECT_FLOAT_EQ(1.0f, MIRL::ScrollScaleForHeight(-5, 0));
}

TEST(ScrollGeometry, LongThumbFollowsThePositionOverTheWholeTravel)
{
    const RECT track = {0, 20, 16, 180};
    // T = 180, L = 72, nMax - nPage = 59.
    ExpectRect(MIRL::ScrollThumbRect(track, 72, Info(0, 99, 40, 0)), 0, 10, 16, 82, "nPos 0");
    // 108 * 30 / 59 = 54.9 above 10: truncated to 64.
    ExpectRect(MIRL::ScrollThumbRect(track, 72, Info(0, 99, 40, 30)), 0, 64, 16, 136, "nPos 30");
    ExpectRect(MIRL::ScrollThumbRect(track, 72, Info(0, 99, 40, 59)), 0, 118, 16, 190, "nPos 59");
    // nMin takes no part in the thumb's place.
    ExpectRect(MIRL::ScrollThumbRect(track, 72, Info(50, 99, 40, 30)), 0, 64, 16, 136, "nMin 50");
}

TEST(ScrollGeometry, ThumbBelowFiftyPixelsIsDrawnAtFifty)
{
    const RECT track = {0, 20, 16, 180};
    // L = 18: p = nPos * 162 / 89, then scaled by 130 / 162.
    ExpectRect(MIRL::ScrollThumbRect(track, 18, Info(0, 99, 10, 0)), 0, 10, 16, 60, "nPos 0");
    // p = trunc(40 * 162 / 89) = 72; 72 * 130 / 162 = 57.8: 57 + 10.
    ExpectRect(MIRL::ScrollThumbRect(track, 18, Info(0, 99, 10, 40)), 0, 67, 16, 117, "nPos 40");
    // The last position ends the thumb at the end of its travel, drawn 50 long.
    const RECT last = MIRL::ScrollThumbRect(track, 18, Info(0, 99, 10, 89));
    EXPECT_EQ(50, last.bottom - last.top);
    EXPECT_GE(last.top, 139);
    EXPECT_LE(last.bottom, 190);
}

TEST(ScrollGeometry, MaxPosIsComputedWithTheDrawnHeightOfFifty)
{
    const RECT track = {0, 20, 16, 180};
    const SCROLLINFO info = Info(0, 99, 10, 0);
    EXPECT_EQ(18, MIRL::ScrollThumbLength(info, 200, 20));
    // SetScrollInfo's m_nMaxPos: the thumb's last top (180 - 50 + 10) maps to nMax - nPage - nMin.
    EXPECT_EQ(89, MIRL::ScrollThumbPos(180 - 50 + 10, track, 50, info));
    // Between the ends the drawn height decides: top 75 is MulDiv(65, 89, 130) = 44.5, rounded to
    // 45; with the computed 18 it would have been MulDiv(65, 89, 162) = 36.
    EXPECT_EQ(45, MIRL::ScrollThumbPos(75, track, 50, info));
    EXPECT_EQ(36, MIRL::ScrollThumbPos(75, track, 18, info));
}

TEST(ScrollGeometry, ThumbPosCountsNMin)
{
    const RECT track = {0, 20, 16, 180};
    // nMax - nPage - nMin = 99 - 40 - 9 = 50 over a travel of 108.
    EXPECT_EQ(50, MIRL::ScrollThumbPos(118, track, 72, Info(9, 99, 40, 0)));
    EXPECT_EQ(25, MIRL::ScrollThumbPos(64, track, 72, Info(9, 99, 40, 0)));
}

TEST(ScrollGeometry, PageEqualToMaxLeavesTheThumbAtTheStartInsteadOfDividingByZero)
{
    const RECT track = {0, 20, 16, 180};
    const SCROLLINFO info = Info(0, 99, 99, 50);
    const int length = MIRL::ScrollThumbLength(info, 200, 20);
    EXPECT_EQ(178, length);
    ExpectRect(MIRL::ScrollThumbRect(track, length, info), 0, 10, 16, 188, "long thumb, span 0");
    ExpectRect(MIRL::ScrollThumbRect(track, 20, info), 0, 10, 16, 60, "short thumb, span 0");
}

TEST(ScrollGeometry, ThumbAsLongAsItsTravelGivesPositionZeroNotMulDivsMinusOne)
{
    const RECT track = {0, 20, 16, 180};
    // Travel 180 - 180 - 20 + 20 = 0.
    EXPECT_EQ(0, MIRL::ScrollThumbPos(10, track, 180, Info(0, 99, 10, 0)));
    EXPECT_EQ(-1, ::MulDiv(10, 89, 0));
    // A short thumb whose room is 0 (L equal to a travel of 40) stands at the start too.
    const RECT small = {0, 20, 16, 40};
    ExpectRect(MIRL::ScrollThumbRect(small, 40, Info(0, 99, 10, 40)), 0, 10, 16, 60, "L = T");
}

TEST(ScrollGeometry, PageAboveMaxIsAHugeUnsignedSpan)
{
    const RECT track = {0, 20, 16, 180};
    // nMax - nPage = 5 - 10 wraps to 4294967291: the thumb hardly moves from the start.
    ExpectRect(MIRL::ScrollThumbRect(track, 72, Info(0, 5, 10, 3)), 0, 10, 16, 82, "wrapped span");
}

TEST(ScrollGeometry, ThumbLengthOfAnEmptyRangeIsZero)
{
    EXPECT_EQ(0, MIRL::ScrollThumbLength(Info(0, -1, 10, 0), 200, 20));
    EXPECT_EQ(72, MIRL::ScrollThumbLength(Info(0, 99, 40, 0), 200, 20));
    // A range wider than int holds is held at INT_MAX positions: no overflow.
    EXPECT_EQ(0, MIRL::ScrollThumbLength(Info(INT_MIN, INT_MAX, 10, 0), 200, 20));
}

TEST(ScrollHitZones, InnerTenPixelsOfAnArrowBelongToTheTrack)
{
    const MirlScrollRects atEnd = MIRL::ScrollLayout(kArrows, 1.0f, 200, 72, Info(0, 99, 40, 59));
    EXPECT_EQ(MIRL::ScrollZoneUp, MIRL::ScrollHitTest(POINT{5, 5}, atEnd));
    EXPECT_EQ(MIRL::ScrollZoneUp, MIRL::ScrollHitTest(POINT{5, 9}, atEnd));
    EXPECT_EQ(MIRL::ScrollZoneTrack, MIRL::ScrollHitTest(POINT{5, 10}, atEnd));
    EXPECT_EQ(MIRL::ScrollZoneTrack, MIRL::ScrollHitTest(POINT{5, 15}, atEnd));
    EXPECT_EQ(MIRL::ScrollZoneDown, MIRL::ScrollHitTest(POINT{5, 195}, atEnd));
    EXPECT_EQ(MIRL::ScrollZoneDown, MIRL::ScrollHitTest(POINT{5, 190}, atEnd));
    // The thumb stands at 118-190 and is hit before the track, over the down arrow's inner part.
    EXPECT_EQ(MIRL::ScrollZoneThumb, MIRL::ScrollHitTest(POINT{5, 185}, atEnd));
    EXPECT_EQ(MIRL::ScrollZoneNone, MIRL::ScrollHitTest(POINT{20, 50}, atEnd));
    EXPECT_EQ(MIRL::ScrollZoneNone, MIRL::ScrollHitTest(POINT{5, 200}, atEnd));
}

TEST(ScrollHitZones, ThumbStandingOverAnArrowsInnerPartIsHitThere)
{
    const MirlScrollRects top = MIRL::ScrollLayout(kArrows, 1.0f, 200, 72, Info(0, 99, 40, 0));
    EXPECT_EQ(MIRL::ScrollZoneThumb, MIRL::ScrollHitTest(POINT{5, 15}, top));
    EXPECT_EQ(MIRL::ScrollZoneTrack, MIRL::ScrollHitTest(POINT{5, 185}, top));
    EXPECT_EQ(MIRL::ScrollZoneUp, MIRL::ScrollHitTest(POINT{5, 5}, top));
}

TEST(ScrollCodes, ThumbPositionCarriesTheLow16BitsAboveCode4)
{
    EXPECT_EQ(static_cast<WPARAM>(0x00050004), MIRL::ScrollThumbPositionCode(5));
    EXPECT_EQ(static_cast<WPARAM>(0xFFFF0004), MIRL::ScrollThumbPositionCode(-1));
    EXPECT_EQ(static_cast<WPARAM>(0x11700004), MIRL::ScrollThumbPositionCode(70000));
}

// ---- Slider ----

TEST(SliderArithmetic, ValueToPixelAndBackAreNotInverses)
{
    // 50 in 0..99 on a client 116 wide: 50 * 100 / 99 + 8 = 58; 58 back is 99 * 50 / 100 = 49.
    EXPECT_EQ(58, MIRL::SliderTrackPos(50, 0, 99, 116));
    const MIRL::MirlSliderPosition back = MIRL::SliderPositionFromX(58, 0, 99, 116);
    EXPECT_EQ(58, back.trackPos);
    EXPECT_EQ(49, back.pos);
}

TEST(SliderArithmetic, EqualBoundsDivideByOneAndLeaveTheThumbAtEight)
{
    EXPECT_EQ(8, MIRL::SliderTrackPos(5, 5, 5, 116));
    // A value off the equal bounds, which SetPos never stores, is placed by the same division by 1.
    EXPECT_EQ(208, MIRL::SliderTrackPos(7, 5, 5, 116));
    EXPECT_EQ(5, MIRL::SliderClampPos(9, 5, 5));
    EXPECT_EQ(5, MIRL::SliderClampPos(-9, 5, 5));
}

TEST(SliderArithmetic, InvertedRangeIsRaisedToMinThenLoweredToMax)
{
    EXPECT_EQ(5, MIRL::SliderClampPos(50, 10, 5));
    EXPECT_EQ(5, MIRL::SliderClampPos(0, 10, 5));
    EXPECT_EQ(7, MIRL::SliderClampPos(7, 0, 10));
}

TEST(SliderArithmetic, MouseXIsHeldInsideTheMargins)
{
    MIRL::MirlSliderPosition left = MIRL::SliderPositionFromX(0, 0, 99, 116);
    EXPECT_EQ(8, left.trackPos);
    EXPECT_EQ(0, left.pos);
    MIRL::MirlSliderPosition right = MIRL::SliderPositionFromX(500, 0, 99, 116);
    EXPECT_EQ(108, right.trackPos);
    EXPECT_EQ(99, right.pos);
    MIRL::MirlSliderPosition negative = MIRL::SliderPositionFromX(-32768, 0, 99, 116);
    EXPECT_EQ(8, negative.trackPos);
    EXPECT_EQ(0, negative.pos);
}

TEST(SliderArithmetic, ClientOfSixteenHasOnePointOfTrackInsteadOfDividingByZero)
{
    MIRL::MirlSliderPosition one = MIRL::SliderPositionFromX(30, 0, 99, 16);
    EXPECT_EQ(8, one.trackPos);
    EXPECT_EQ(0, one.pos);
    EXPECT_EQ(10, MIRL::SliderPositionFromX(3, 10, 20, 16).pos);
    // Narrower still: x is raised to 8 and then lowered to 2, and the division is by -6.
    MIRL::MirlSliderPosition narrow = MIRL::SliderPositionFromX(5, 0, 99, 10);
    EXPECT_EQ(2, narrow.trackPos);
    EXPECT_EQ(99, narrow.pos);
}

TEST(SliderArithmetic, ExtremeBoundsDoNotOverflow)
{
    EXPECT_EQ(8 + 100, MIRL::SliderTrackPos(INT_MAX, INT_MIN, INT_MAX, 116));
    EXPECT_EQ(INT_MAX, MIRL::SliderPositionFromX(108, INT_MIN, INT_MAX, 116).pos);
    EXPECT_EQ(INT_MIN, MIRL::SliderPositionFromX(8, INT_MIN, INT_MAX, 116).pos);
}

TEST(SliderArithmetic, NotificationCutsTheValueToItsLow16Bits)
{
    EXPECT_EQ(static_cast<WPARAM>(0x11700001), MIRL::SliderNotifyWParam(70000, MK_LBUTTON));
    EXPECT_EQ(static_cast<WPARAM>(0x00320000), MIRL::SliderNotifyWParam(50, 0));
    EXPECT_EQ(static_cast<WPARAM>(0xFFFF0009), MIRL::SliderNotifyWParam(-1, 0x10009));
}

TEST(SliderArithmetic, ThumbIsCentredVerticallyAndAnImageTallerThanTheClientWraps)
{
    LONG top = 0;
    LONG bottom = 0;
    MIRL::SliderThumbSpan(20, 10, &top, &bottom);
    EXPECT_EQ(5, top);
    EXPECT_EQ(15, bottom);
    // (10 - 20) taken unsigned, halved: the thumb stands atEnd below, out of sight.
    MIRL::SliderThumbSpan(10, 20, &top, &bottom);
    EXPECT_EQ(2147483643, top);
    EXPECT_EQ(INT_MAX, bottom);
}

TEST(SliderArithmetic, BackgroundNarrowerThanItsImageHasANegativeMiddle)
{
    MIRL::MirlSliceSpan slices[3];
    MIRL::SliderBackgroundSlices(20, 100, slices);
    EXPECT_EQ(0, slices[0].targetX);
    EXPECT_EQ(10, slices[0].targetWidth);
    EXPECT_EQ(10, slices[1].targetX);
    EXPECT_EQ(80, slices[1].targetWidth);
    EXPECT_EQ(10, slices[1].sourceX);
    EXPECT_EQ(1, slices[1].sourceWidth);
    EXPECT_EQ(90, slices[2].targetX);
    EXPECT_EQ(10, slices[2].sourceX);

    MIRL::SliderBackgroundSlices(20, 12, slices);
    EXPECT_EQ(-8, slices[1].targetWidth);
    EXPECT_EQ(2, slices[2].targetX);
    EXPECT_EQ(10, slices[2].targetWidth);

    MIRL::SliderBackgroundSlices(21, 100, slices);
    EXPECT_EQ(79, slices[1].targetWidth);
    EXPECT_EQ(89, slices[2].targetX);
    EXPECT_EQ(11, slices[2].sourceX);
}

// ---- Media seek bar ----

TEST(SeekArithmetic, PressAtZeroIsTheStartAndAtTheFarEndTheFinish)
{
    // A thumb 20 wide on the 270-pixel track.
    EXPECT_EQ(10, MIRL::SeekClampX(0, 20, 270));
    EXPECT_EQ(260, MIRL::SeekClampX(300, 20, 270));
    EXPECT_EQ(0.0f, MIRL::SeekPercentFromX(MIRL::SeekClampX(0, 20, 270), 20, 270));
    EXPECT_EQ(static_cast<WPARAM>(0), MIRL::SeekNotifyWParam(0.0f));
    EXPECT_EQ(1.0f, MIRL::SeekPercentFromX(MIRL::SeekClampX(269, 20, 270), 20, 270));
    EXPECT_EQ(static_cast<WPARAM>(1000), MIRL::SeekNotifyWParam(1.0f));
    EXPECT_EQ(0.5f, MIRL::SeekPercentFromX(135, 20, 270));
    // An odd width: half is 10, and the atEnd end (260) comes to 250 / 249, clamped to 1.0.
    EXPECT_EQ(1.0f, MIRL::SeekPercentFromX(MIRL::SeekClampX(270, 21, 270), 21, 270));
}

TEST(SeekArithmetic, ThousandthsTruncate)
{
    EXPECT_EQ(static_cast<WPARAM>(499), MIRL::SeekNotifyWParam(0.4999f));
    EXPECT_EQ(static_cast<WPARAM>(500), MIRL::SeekNotifyWParam(0.5f));
    EXPECT_EQ(static_cast<WPARAM>(1), MIRL::SeekNotifyWParam(0.0019f));
}

TEST(SeekArithmetic, TrackAsLongAsTheThumbGivesZeroNotNaN)
{
    const float p = MIRL::SeekPercentFromX(135, 270, 270);
    EXPECT_FALSE(std::isnan(p));
    EXPECT_EQ(0.0f, p);
    EXPECT_EQ(0.0f, MIRL::SeekPercentFromX(0, 270, 270));
    EXPECT_EQ(0, MIRL::SeekThumbLeft(p, 270, 270));
    // A thumb wider than the track: the travel is negative, the fraction still clamped.
    EXPECT_EQ(0.0f, MIRL::SeekPercentFromX(200, 300, 270));
}

TEST(SeekArithmetic, ThumbLeftEndsTheThumbAt270)
{
    EXPECT_EQ(250, MIRL::SeekThumbLeft(1.0f, 270, 20));
    EXPECT_EQ(0, MIRL::SeekThumbLeft(0.0f, 270, 20));
    EXPECT_EQ(125, MIRL::SeekThumbLeft(0.5f, 270, 20));
    // Outside 0 to 1 the thumb stands outside the track; a value out of int's range is held.
    EXPECT_EQ(500, MIRL::SeekThumbLeft(2.0f, 270, 20));
    EXPECT_EQ(-250, MIRL::SeekThumbLeft(-1.0f, 270, 20));
    EXPECT_EQ(INT_MAX, MIRL::SeekThumbLeft(1e30f, 270, 20));
    EXPECT_EQ(0, MIRL::SeekThumbLeft(std::numeric_limits<float>::quiet_NaN(), 270, 20));
}

TEST(SeekArithmetic, PressOnTheThumbsEdgePixelsIsAJump)
{
    const RECT thumb = {100, 0, 120, 16};
    EXPECT_FALSE(MIRL::SeekPressStartsDrag(100, thumb));
    EXPECT_FALSE(MIRL::SeekPressStartsDrag(120, thumb));
    EXPECT_TRUE(MIRL::SeekPressStartsDrag(101, thumb));
    EXPECT_TRUE(MIRL::SeekPressStartsDrag(119, thumb));
    EXPECT_FALSE(MIRL::SeekPressStartsDrag(99, thumb));
}

} // namespace
