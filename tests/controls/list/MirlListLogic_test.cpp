// The list family's arithmetic without windows: three-slice forms, where a combo box's list
// opens, the list view's bars and rows area, and its scroll steps.
#include "controls/list/MirlListLogic.h"

#include <gtest/gtest.h>

namespace {

TEST(ListSlices, CapsOfFourAndOneStretchedColumn)
{
    MIRL::SlicePart parts[3];
    const RECT cell = {10, 0, 110, 21};
    MIRL::ListSlices(12, cell, parts);
    EXPECT_EQ(0, parts[0].srcX);
    EXPECT_EQ(4, parts[0].srcWidth);
    EXPECT_EQ(10, parts[0].dstX);
    EXPECT_EQ(4, parts[0].dstWidth);
    EXPECT_EQ(4, parts[1].srcX);
    EXPECT_EQ(1, parts[1].srcWidth);
    EXPECT_EQ(14, parts[1].dstX);
    EXPECT_EQ(92, parts[1].dstWidth);
    EXPECT_EQ(8, parts[2].srcX);
    EXPECT_EQ(4, parts[2].srcWidth);
    EXPECT_EQ(106, parts[2].dstX);
    EXPECT_EQ(4, parts[2].dstWidth);
}

TEST(ComboSlices, CapsOfHalfTheWidthTruncated)
{
    MIRL::SlicePart parts[3];
    const RECT face = {0, 0, 150, 24};
    MIRL::ComboSlices(21, face, parts);
    EXPECT_EQ(10, parts[0].srcWidth);
    EXPECT_EQ(10, parts[0].dstWidth);
    EXPECT_EQ(10, parts[1].srcX);
    EXPECT_EQ(10, parts[1].dstX);
    EXPECT_EQ(130, parts[1].dstWidth);
    EXPECT_EQ(11, parts[2].srcX);
    EXPECT_EQ(140, parts[2].dstX);
    EXPECT_EQ(10, parts[2].dstWidth);
    // A face narrower than the two caps: the middle is negative and the right cap overlaps.
    const RECT narrow = {0, 0, 12, 24};
    MIRL::ComboSlices(20, narrow, parts);
    EXPECT_EQ(-8, parts[1].dstWidth);
    EXPECT_EQ(2, parts[2].dstX);
}

TEST(ComboDropRect, BelowTheControlOrAboveNearTheBottom)
{
    const RECT control = {100, 200, 250, 224};
    RECT drop = MIRL::ComboDropRect(control, 82, 768);
    EXPECT_EQ(224, drop.top);
    EXPECT_EQ(306, drop.bottom);
    EXPECT_EQ(100, drop.left);
    EXPECT_EQ(250, drop.right);
    const RECT low = {100, 700, 250, 724};
    drop = MIRL::ComboDropRect(low, 82, 768);
    EXPECT_EQ(618, drop.top);
    EXPECT_EQ(700, drop.bottom);
}

MIRL::ListLayoutInput Input(long long neededWidth, long long neededHeight)
{
    MIRL::ListLayoutInput in = {};
    in.width = 300;
    in.height = 200;
    in.titleHeight = 21;
    in.barHeight = 17;
    in.barWidth = 17;
    in.neededWidth = neededWidth;
    in.neededHeight = neededHeight;
    return in;
}

TEST(ListLayout, NoBarsWhenEverythingFits)
{
    const MIRL::ListLayoutResult out = ComputeListLayout(Input(250, 21 + 34 * 3));
    EXPECT_FALSE(out.needH);
    EXPECT_FALSE(out.needV);
    EXPECT_EQ(0, out.rowsRect.left);
    EXPECT_EQ(21, out.rowsRect.top);
    EXPECT_EQ(300, out.rowsRect.right);
    EXPECT_EQ(200, out.rowsRect.bottom);
    EXPECT_EQ(-50, out.hMax);
    EXPECT_EQ(123 - 179, out.vMax);
}

TEST(ListLayout, RowsThatJustFitStillShowTheVerticalBarWhenTheOverflowIsUnderTheHeader)
{
    // Rows area 179 high; five rows of 34 are 170 and fit, but the needed height counts the
    // header: 21 + 170 = 191 > 179.
    const MIRL::ListLayoutResult out = ComputeListLayout(Input(250, 21 + 34 * 5));
    EXPECT_TRUE(out.needV);
    EXPECT_FALSE(out.needH);
    EXPECT_EQ(283, out.rowsRect.right);
    EXPECT_EQ(12, out.vMax);
    // Alone, the vertical bar stops short of the bottom by the header's height.
    EXPECT_EQ(283, out.vBar.left);
    EXPECT_EQ(21, out.vBar.top);
    EXPECT_EQ(300, out.vBar.right);
    EXPECT_EQ(21 + 179 - 21, out.vBar.bottom);
    // Exactly 179 needed: no bar.
    EXPECT_FALSE(ComputeListLayout(Input(250, 179)).needV);
    EXPECT_TRUE(ComputeListLayout(Input(250, 180)).needV);
}

TEST(ListLayout, BothBarsAndTheHorizontalAlone)
{
    MIRL::ListLayoutResult out = ComputeListLayout(Input(400, 100));
    EXPECT_TRUE(out.needH);
    EXPECT_FALSE(out.needV);
    EXPECT_EQ(200 - 17, out.rowsRect.bottom);
    EXPECT_EQ(100, out.hMax);
    EXPECT_EQ(0, out.hBar.left);
    EXPECT_EQ(162 + 21, out.hBar.top);
    EXPECT_EQ(300, out.hBar.right);
    EXPECT_EQ(200, out.hBar.bottom);

    // The vertical bar narrows the area so that a width of 290 no longer fits.
    out = ComputeListLayout(Input(290, 1000));
    EXPECT_TRUE(out.needH);
    EXPECT_TRUE(out.needV);
    EXPECT_EQ(283, out.rowsRect.right);
    EXPECT_EQ(21 + 179 - 17, out.rowsRect.bottom);
    EXPECT_EQ(0, out.hBar.left);
    EXPECT_EQ(183, out.hBar.top);
    EXPECT_EQ(283, out.hBar.right);
    EXPECT_EQ(283, out.vBar.left);
    EXPECT_EQ(21, out.vBar.top);
    EXPECT_EQ(183, out.vBar.bottom);
    EXPECT_EQ(1000 - 179, out.vMax);
}

TEST(ListScroll, StepsPagesThumbAndClamping)
{
    EXPECT_EQ(9, MIRL::ListScrollPosition(SB_LINEUP, 10, 0, 48, 100));
    EXPECT_EQ(9, MIRL::ListScrollPosition(SB_TOP, 10, 0, 48, 100)); // a line, not the top
    EXPECT_EQ(11, MIRL::ListScrollPosition(SB_LINEDOWN, 10, 0, 48, 100));
    EXPECT_EQ(11, MIRL::ListScrollPosition(SB_BOTTOM, 10, 0, 48, 100));
    EXPECT_EQ(0, MIRL::ListScrollPosition(SB_PAGEUP, 10, 0, 48, 100));
    EXPECT_EQ(58, MIRL::ListScrollPosition(SB_PAGEDOWN, 10, 0, 48, 100));
    EXPECT_EQ(15, MIRL::ListScrollPosition(SB_PAGEDOWN, 10, 0, 5, 100));
    EXPECT_EQ(100, MIRL::ListScrollPosition(SB_PAGEDOWN, 90, 0, 48, 100));
    EXPECT_EQ(77, MIRL::ListScrollPosition(SB_THUMBTRACK, 10, 77, 48, 100));
    EXPECT_EQ(3399958, MIRL::ListScrollPosition(SB_THUMBPOSITION, 0, 3399958, 48, 3399958));
    EXPECT_EQ(10, MIRL::ListScrollPosition(SB_ENDSCROLL, 10, 77, 48, 100));
    EXPECT_EQ(10, MIRL::ListScrollPosition(9, 10, 77, 48, 100));
    EXPECT_EQ(0, MIRL::ListScrollPosition(SB_LINEDOWN, 0, 0, 48, -50)); // no range
}

TEST(ListRows, FirstRowBelowATop)
{
    EXPECT_EQ(0, MIRL::FirstRowBelow(21, 34, 21));
    EXPECT_EQ(0, MIRL::FirstRowBelow(21, 34, 54));
    EXPECT_EQ(1, MIRL::FirstRowBelow(21, 34, 55));
    EXPECT_EQ(99999, MIRL::FirstRowBelow(21 - 34 * 99999LL, 34, 21));
    EXPECT_EQ(99998, MIRL::FirstRowBelow(21 - 34 * 99999LL, 34, 20));
    EXPECT_EQ(0, MIRL::FirstRowBelow(21, 0, 500));
}

} // namespace
