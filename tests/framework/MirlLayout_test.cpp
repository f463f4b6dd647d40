#include "MirlLayout.h"
#include "MirlStyles.h"

#include <gtest/gtest.h>

#include <climits>
#include <ostream>
#include <vector>

using MIRL::LayoutChild;
using MIRL::LayoutChildren;

void PrintTo(const MirlLayoutRect &r, std::ostream *os)
{
    *os << "(" << r.x << ", " << r.y << ", " << r.w << ", " << r.h << ")";
}

namespace {

// The parent of most cases: 300 by 200.
constexpr int kW = 300;
constexpr int kH = 200;
const MirlLayoutRect kNoPrevious = {0, 0, 0, 0};

MirlLayoutInput Child(unsigned long align, int x, int y, int width, int height)
{
    MirlLayoutInput child;
    child.align = align;
    child.x = x;
    child.y = y;
    child.width = width;
    child.height = height;
    return child;
}

MirlLayoutInput ScrollBar(unsigned long style, int width, int height, int presentWidth, int presentHeight)
{
    MirlLayoutInput child = Child(0, 10, 20, width, height);
    child.windowClass = MirlLayoutClass::ScrollBar;
    child.style = style;
    child.presentWidth = presentWidth;
    child.presentHeight = presentHeight;
    return child;
}

MirlLayoutInput Splitter(unsigned long style, int weight)
{
    MirlLayoutInput child = Child(0, 10, 20, 50, 30);
    child.windowClass = MirlLayoutClass::Splitter;
    child.style = style;
    child.splitterWeight = weight;
    return child;
}

MirlLayoutRect Rect(int x, int y, int w, int h)
{
    return {x, y, w, h};
}

}  // namespace

// Placement against the parent

TEST(MirlLayout, AlignZeroMovesAsWritten)
{
    EXPECT_EQ(Rect(10, 20, 50, 30), LayoutChild(kW, kH, Child(0, 10, 20, 50, 30), kNoPrevious));
}

TEST(MirlLayout, AlignZeroTakesOnlyTheLowHalvesAsPosition)
{
    EXPECT_EQ(Rect(5, 7, 50, 30), LayoutChild(kW, kH, Child(0, 0x000A0005, 0x00030007, 50, 30), kNoPrevious));
}

TEST(MirlLayout, AlignZeroIgnoresThePreviousSibling)
{
    EXPECT_EQ(Rect(10, 20, 50, 30), LayoutChild(kW, kH, Child(0, 10, 20, 50, 30), Rect(100, 100, 40, 40)));
}

TEST(MirlLayout, RightAndBottomMeasureOffsetsFromTheFarEdges)
{
    EXPECT_EQ(Rect(240, 150, 50, 30),
              LayoutChild(kW, kH, Child(ALIGN_PARENT_RIGHT | ALIGN_PARENT_BOTTOM, 10, 20, 50, 30), kNoPrevious));
}

TEST(MirlLayout, LeftAndRightTogetherKeepXAsWritten)
{
    EXPECT_EQ(Rect(10, 20, 50, 30),
              LayoutChild(kW, kH, Child(ALIGN_PARENT_LEFT | ALIGN_PARENT_RIGHT, 10, 20, 50, 30), kNoPrevious));
}

TEST(MirlLayout, TopAndBottomTogetherKeepYAsWritten)
{
    EXPECT_EQ(Rect(10, 20, 50, 30),
              LayoutChild(kW, kH, Child(ALIGN_PARENT_TOP | ALIGN_PARENT_BOTTOM, 10, 20, 50, 30), kNoPrevious));
}

TEST(MirlLayout, LeftAndTopAloneActAsAlignZero)
{
    const MirlLayoutInput child = Child(ALIGN_PARENT_LEFT | ALIGN_PARENT_TOP, 0x00080004, 0x00090006, 50, 30);
    EXPECT_EQ(Rect(4, 6, 50, 30), LayoutChild(kW, kH, child, Rect(1, 2, 3, 4)));
}

TEST(MirlLayout, CentredChildTruncatesTheHalf)
{
    EXPECT_EQ(Rect(124, 0, 51, 30), LayoutChild(kW, kH, Child(ALIGN_PARENT_HCENTER, 0, 0, 51, 30), kNoPrevious));
}

TEST(MirlLayout, CentredChildWiderThanParentTruncatesTowardZero)
{
    // (300 - 301) / 2 is 0, not -1.
    EXPECT_EQ(Rect(0, 0, 301, 30), LayoutChild(kW, kH, Child(ALIGN_PARENT_HCENTER, 0, 0, 301, 30), kNoPrevious));
    EXPECT_EQ(Rect(0, -1, 301, 203),
              LayoutChild(kW, kH, Child(ALIGN_PARENT_HCENTER | ALIGN_PARENT_VCENTER, 0, 0, 301, 203), kNoPrevious));
}

TEST(MirlLayout, CentringKeepsTheOffset)
{
    EXPECT_EQ(Rect(135, 89, 50, 31),
              LayoutChild(kW, kH, Child(ALIGN_PARENT_HCENTER | ALIGN_PARENT_VCENTER, 10, 5, 50, 31), kNoPrevious));
}

TEST(MirlLayout, CentredAndRightAlignedMeasuresTheCentreFromTheRight)
{
    // Centring first gives 10 + 125 = 135, then the right edge: 300 - 50 - 135.
    EXPECT_EQ(Rect(115, 20, 50, 30),
              LayoutChild(kW, kH, Child(ALIGN_PARENT_HCENTER | ALIGN_PARENT_RIGHT, 10, 20, 50, 30), kNoPrevious));
}

// Stretching

TEST(MirlLayout, ParentWidthStretchLeavesThePackedRightMargin)
{
    EXPECT_EQ(Rect(4, 20, 288, 30),
              LayoutChild(kW, kH, Child(ALIGN_PARENT_WIDTH, 0x00080004, 20, 50, 30), kNoPrevious));
}

TEST(MirlLayout, ParentHeightStretchLeavesThePackedBottomMargin)
{
    EXPECT_EQ(Rect(10, 6, 50, 185),
              LayoutChild(kW, kH, Child(ALIGN_PARENT_HEIGHT, 10, 0x00090006, 50, 30), kNoPrevious));
}

TEST(MirlLayout, NegativeDecimalXIsOffsetAndMarginBothNegative)
{
    // -3 is 0xFFFFFFFD: offset -3, right margin -1, so the width is 300 + 3 + 1.
    EXPECT_EQ(Rect(-3, 20, 304, 30), LayoutChild(kW, kH, Child(ALIGN_PARENT_WIDTH, -3, 20, 50, 30), kNoPrevious));
}

TEST(MirlLayout, HalvesAreSignExtendedSixteenBitValues)
{
    // Offset 0x8000 is -32768; margin 0x7FFF is 32767.
    EXPECT_EQ(Rect(-32768, 20, 300 + 32768 - 32767, 30),
              LayoutChild(kW, kH, Child(ALIGN_PARENT_WIDTH, 0x7FFF8000, 20, 50, 30), kNoPrevious));
}

TEST(MirlLayout, StretchUsesTheFinalPosition)
{
    // Right of a sibling that ends at 100, gap 2, margin 5: 300 - 102 - 5.
    EXPECT_EQ(Rect(102, 20, 193, 30),
              LayoutChild(kW, kH, Child(OFFSET_PRE_RIGHT | ALIGN_PARENT_WIDTH, 0x00050002, 20, 50, 30),
                          Rect(0, 0, 100, 40)));
}

TEST(MirlLayout, StretchOfARightAlignedChildStartsFromItsRightAlignedX)
{
    // x = 300 - 50 - 10 = 240, then w = 300 - 240 - 0.
    EXPECT_EQ(Rect(240, 20, 60, 30),
              LayoutChild(kW, kH, Child(ALIGN_PARENT_RIGHT | ALIGN_PARENT_WIDTH, 10, 20, 50, 30), kNoPrevious));
}

// Relations to the previous sibling

TEST(MirlLayout, OffsetPreLeftPlacesLeftOfThePreviousWithAGap)
{
    EXPECT_EQ(Rect(195, 150, 40, 10),
              LayoutChild(kW, kH, Child(OFFSET_PRE_LEFT | ALIGN_PRE_TOP, 5, 0, 40, 10), Rect(240, 150, 50, 30)));
}

TEST(MirlLayout, OffsetPreBottomPlacesBelowThePreviousWithAGap)
{
    EXPECT_EQ(Rect(195, 162, 40, 10),
              LayoutChild(kW, kH, Child(OFFSET_PRE_BOTTOM | ALIGN_PRE_LEFT, 0, 2, 40, 10), Rect(195, 150, 40, 10)));
}

TEST(MirlLayout, SiblingsChainFromTheCornerOfTheParent)
{
    const std::vector<MirlLayoutInput> children = {
        Child(ALIGN_PARENT_RIGHT | ALIGN_PARENT_BOTTOM, 10, 20, 50, 30),
        Child(OFFSET_PRE_LEFT | ALIGN_PRE_TOP, 5, 0, 40, 10),
        Child(OFFSET_PRE_BOTTOM | ALIGN_PRE_LEFT, 0, 2, 40, 10),
    };
    std::vector<MirlLayoutRect> rects;
    LayoutChildren(kW, kH, children, rects);
    const std::vector<MirlLayoutRect> expected = {Rect(240, 150, 50, 30), Rect(195, 150, 40, 10),
                                                  Rect(195, 162, 40, 10)};
    EXPECT_EQ(expected, rects);
}

TEST(MirlLayout, OffsetPreTopAddsToThePreviousTopWhateverTheHeight)
{
    const MirlLayoutRect previous = Rect(240, 150, 50, 30);
    EXPECT_EQ(157, LayoutChild(kW, kH, Child(OFFSET_PRE_TOP, 0, 7, 40, 10), previous).y);
    EXPECT_EQ(157, LayoutChild(kW, kH, Child(OFFSET_PRE_TOP, 0, 7, 40, 90), previous).y);
    EXPECT_EQ(157, LayoutChild(kW, kH, Child(OFFSET_PRE_TOP, 0, 7, 40, 10), Rect(0, 150, 0, 99)).y);
}

TEST(MirlLayout, OffsetPreRightPlacesRightOfThePreviousWithAGap)
{
    EXPECT_EQ(Rect(133, 20, 50, 30), LayoutChild(kW, kH, Child(OFFSET_PRE_RIGHT, 3, 20, 50, 30), Rect(100, 0, 30, 5)));
}

TEST(MirlLayout, AlignPreRightAndBottomFlushTheFarEdgesAndDropTheOffsets)
{
    EXPECT_EQ(Rect(80, 110, 50, 30),
              LayoutChild(kW, kH, Child(ALIGN_PRE_RIGHT | ALIGN_PRE_BOTTOM, 7, 9, 50, 30), Rect(100, 100, 30, 40)));
}

TEST(MirlLayout, AlignPreLeftAndTopFlushTheNearEdgesAndDropTheOffsets)
{
    EXPECT_EQ(Rect(100, 60, 50, 30),
              LayoutChild(kW, kH, Child(ALIGN_PRE_LEFT | ALIGN_PRE_TOP, 7, 9, 50, 30), Rect(100, 60, 30, 40)));
}

TEST(MirlLayout, FirstChildWithOffsetPreRightMeasuresFromAZeroRectangle)
{
    std::vector<MirlLayoutRect> rects;
    LayoutChildren(kW, kH, {Child(OFFSET_PRE_RIGHT, 3, 20, 50, 30)}, rects);
    ASSERT_EQ(1u, rects.size());
    EXPECT_EQ(Rect(3, 20, 50, 30), rects[0]);
}

TEST(MirlLayout, AlignPreLeftWinsOverOffsetPreRight)
{
    EXPECT_EQ(Rect(100, 20, 50, 30),
              LayoutChild(kW, kH, Child(ALIGN_PRE_LEFT | OFFSET_PRE_RIGHT, 3, 20, 50, 30), Rect(100, 60, 30, 40)));
}

TEST(MirlLayout, EachAxisTakesTheFirstRelationInItsOrder)
{
    const MirlLayoutRect previous = Rect(100, 60, 30, 40);
    // ALIGN_PRE_RIGHT before both offsets; OFFSET_PRE_LEFT before OFFSET_PRE_RIGHT.
    EXPECT_EQ(80, LayoutChild(kW, kH, Child(ALIGN_PRE_RIGHT | OFFSET_PRE_LEFT | OFFSET_PRE_RIGHT, 3, 0, 50, 30),
                              previous).x);
    EXPECT_EQ(47, LayoutChild(kW, kH, Child(OFFSET_PRE_LEFT | OFFSET_PRE_RIGHT, 3, 0, 50, 30), previous).x);
    // ALIGN_PRE_BOTTOM before both offsets; OFFSET_PRE_TOP before OFFSET_PRE_BOTTOM.
    EXPECT_EQ(70, LayoutChild(kW, kH, Child(ALIGN_PRE_BOTTOM | OFFSET_PRE_TOP | OFFSET_PRE_BOTTOM, 0, 3, 50, 30),
                              previous).y);
    EXPECT_EQ(63, LayoutChild(kW, kH, Child(OFFSET_PRE_TOP | OFFSET_PRE_BOTTOM, 0, 3, 50, 30), previous).y);
}

TEST(MirlLayout, RelationSeesTheRightAlignedXAsItsOffset)
{
    // x = 300 - 50 - 10 = 240 first; then 20 + 240 to the right of the previous one.
    EXPECT_EQ(Rect(260, 20, 50, 30),
              LayoutChild(kW, kH, Child(ALIGN_PARENT_RIGHT | OFFSET_PRE_RIGHT, 10, 20, 50, 30), Rect(0, 0, 20, 5)));
}

// Class rules

TEST(MirlLayout, VerticalScrollBarWithRightAlignKeepsItsPresentWidth)
{
    EXPECT_EQ(Rect(10, 20, 17, 30), LayoutChild(kW, kH, ScrollBar(0x1 | 0x4, 50, 30, 17, 99), kNoPrevious));
    EXPECT_EQ(Rect(10, 20, 17, 30), LayoutChild(kW, kH, ScrollBar(0x1 | 0x2, 50, 30, 17, 99), kNoPrevious));
}

TEST(MirlLayout, HorizontalScrollBarWithBottomAlignKeepsItsPresentHeight)
{
    EXPECT_EQ(Rect(10, 20, 50, 16), LayoutChild(kW, kH, ScrollBar(0x4, 50, 30, 99, 16), kNoPrevious));
    EXPECT_EQ(Rect(10, 20, 50, 16), LayoutChild(kW, kH, ScrollBar(0x2, 50, 30, 99, 16), kNoPrevious));
}

TEST(MirlLayout, ScrollBarWithoutEdgeBitsTakesItsSizeAsWritten)
{
    EXPECT_EQ(Rect(10, 20, 50, 30), LayoutChild(kW, kH, ScrollBar(0x1, 50, 30, 17, 16), kNoPrevious));
    EXPECT_EQ(Rect(10, 20, 50, 30), LayoutChild(kW, kH, ScrollBar(0x0, 50, 30, 17, 16), kNoPrevious));
}

TEST(MirlLayout, ScrollBarKeptWidthIsPlacedFromTheRight)
{
    MirlLayoutInput bar = ScrollBar(0x1 | 0x4, 50, 30, 17, 99);
    bar.align = ALIGN_PARENT_RIGHT | ALIGN_PARENT_HEIGHT;
    bar.x = 0;
    bar.y = 0;
    EXPECT_EQ(Rect(283, 0, 17, 200), LayoutChild(kW, kH, bar, kNoPrevious));
}

TEST(MirlLayout, SplitterTakesItsWeightAcrossItsDirection)
{
    EXPECT_EQ(Rect(10, 20, 6, 30), LayoutChild(kW, kH, Splitter(SPLS_VERTICAL, 6), kNoPrevious));
    EXPECT_EQ(Rect(10, 20, 50, 6), LayoutChild(kW, kH, Splitter(SPLS_FIXED, 6), kNoPrevious));
}

TEST(MirlLayout, OtherClassesIgnoreScrollBarBits)
{
    MirlLayoutInput child = Child(0, 10, 20, 50, 30);
    child.style = 0x1 | 0x4;
    child.presentWidth = 17;
    child.presentHeight = 16;
    child.splitterWeight = 6;
    EXPECT_EQ(Rect(10, 20, 50, 30), LayoutChild(kW, kH, child, kNoPrevious));
}

// Degenerate sizes

TEST(MirlLayout, ZeroClientSizeStillPlacesEveryChild)
{
    const std::vector<MirlLayoutInput> children = {
        Child(ALIGN_PARENT_WIDTH | ALIGN_PARENT_HEIGHT, 0x00020004, 0x00030001, 50, 30),
        Child(ALIGN_PARENT_RIGHT | ALIGN_PARENT_BOTTOM, 10, 20, 50, 30),
        Child(0, 1, 2, 3, 4),
    };
    std::vector<MirlLayoutRect> rects = {Rect(9, 9, 9, 9)};
    LayoutChildren(0, 0, children, rects);
    const std::vector<MirlLayoutRect> expected = {Rect(4, 1, -6, -4), Rect(-60, -50, 50, 30), Rect(1, 2, 3, 4)};
    EXPECT_EQ(expected, rects);
}

TEST(MirlLayout, NoChildrenGiveNoRectangles)
{
    std::vector<MirlLayoutRect> rects = {Rect(9, 9, 9, 9)};
    LayoutChildren(kW, kH, {}, rects);
    EXPECT_TRUE(rects.empty());
}

TEST(MirlLayout, ExtremeSizesWrapToThirtyTwoBits)
{
    // 300 - INT_MIN - 0 is 2^31 + 300: kept to 32 bits that is INT_MIN + 300.
    EXPECT_EQ(INT_MIN + 300,
              LayoutChild(kW, kH, Child(ALIGN_PARENT_RIGHT, 0, 0, INT_MIN, 30), kNoPrevious).x);
    // INT_MAX + INT_MAX + 5 is 2^32 + 3: kept to 32 bits that is 3.
    EXPECT_EQ(3, LayoutChild(kW, kH, Child(OFFSET_PRE_RIGHT, 5, 0, 50, 30), Rect(INT_MAX, 0, INT_MAX, 0)).x);
    // The half is taken of the exact difference, 300 - INT_MIN, not of a wrapped one.
    EXPECT_EQ(150 + (INT_MAX / 2 + 1),
              LayoutChild(kW, kH, Child(ALIGN_PARENT_HCENTER, 0, 0, INT_MIN, 30), kNoPrevious).x);
}
