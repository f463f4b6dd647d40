// The container controls' rules without a window: faces, the menu zone, folder stacking, scroll
// steps, tab counting and the three-slice parts of the toolbar strip and the group box's bar.
#include "controls/container/MirlContainerLogic.h"

#include <gtest/gtest.h>

#include <climits>
#include <vector>

namespace {

using namespace MIRL;

MirlFolderSpec Percent(int height, int minimum = -1, int maximum = 6900)
{
    return MirlFolderSpec{height, true, minimum, maximum, true};
}

MirlFolderSpec Pixels(int height)
{
    return MirlFolderSpec{height, false, -1, 6900, true};
}

TEST(TabFaceTest, TabAtRestHasAFaceOnlyWhenCurrent)
{
    EXPECT_EQ(TabFaceActive, ChooseTabFace(false, true, false, true));
    EXPECT_EQ(TabFaceNone, ChooseTabFace(false, true, false, false));
    EXPECT_EQ(TabFaceNone, ChooseTabFace(false, true, true, false));
}

TEST(TabFaceTest, HoverFacesShowWithTheLibrarysOwnDrawHover)
{
    // The library never clears the draw-hover flag: with it set, hover and menu faces always show.
    EXPECT_EQ(TabFaceHover, ChooseTabFace(true, true, false, false));
    EXPECT_EQ(TabFaceHover, ChooseTabFace(true, true, false, true));
    EXPECT_EQ(TabFaceMenu, ChooseTabFace(true, true, true, true));
    EXPECT_EQ(TabFaceNone, ChooseTabFace(true, false, true, true));
}

TEST(TabFaceTest, EveryBarHasAFaceAtRest)
{
    EXPECT_EQ(TabFaceActive, ChooseBarFace(false, true, false, true));
    EXPECT_EQ(TabFaceHover, ChooseBarFace(false, true, false, false));
    EXPECT_EQ(TabFaceHover, ChooseBarFace(false, false, true, false));
    EXPECT_EQ(TabFaceMenu, ChooseBarFace(true, true, true, false));
    EXPECT_EQ(TabFaceNone, ChooseBarFace(true, false, false, true));
}

TEST(MenuZoneTest, TwentyFourIsUpperTwentyFiveIsMenu)
{
    EXPECT_FALSE(IsInMenuZone(24));
    EXPECT_TRUE(IsInMenuZone(25));
    EXPECT_FALSE(IsInMenuZone(0));
    EXPECT_FALSE(IsInMenuZone(-5));
    // A folder bar entered from outside splits at 20.
    EXPECT_FALSE(IsInMenuZone(20, kBarEnterMenuZoneY));
    EXPECT_TRUE(IsInMenuZone(21, kBarEnterMenuZoneY));
}

TEST(TabFacePartsTest, HalvesFillAndArrow)
{
    const RECT item = {0, 0, 100, 40};
    const MirlTabFaceParts parts = PlaceTabFace(item, 20, 40, 12, 8);
    EXPECT_EQ(0, parts.leftTarget.x);
    EXPECT_EQ(0, parts.leftTarget.y);
    EXPECT_EQ(10, parts.leftTarget.width);
    EXPECT_EQ(40, parts.leftTarget.height);
    EXPECT_EQ(10, parts.fill.x);
    EXPECT_EQ(80, parts.fill.width);
    EXPECT_EQ(40, parts.fill.height);
    EXPECT_EQ(90, parts.rightTarget.x);
    EXPECT_EQ(10, parts.rightTarget.width);
    EXPECT_EQ(10, parts.rightSourceX);
    EXPECT_EQ(44, parts.arrowX);
    EXPECT_EQ(28, parts.arrowY);
}

TEST(TabFacePartsTest, OddWidthRightHalfTakesTheExtraColumn)
{
    const RECT item = {5, 2, 45, 30};
    const MirlTabFaceParts parts = PlaceTabFace(item, 9, 28, 5, 3);
    EXPECT_EQ(4, parts.leftTarget.width);
    EXPECT_EQ(9, parts.fill.x);
    EXPECT_EQ(31, parts.fill.width);
    EXPECT_EQ(41, parts.rightTarget.x);
    EXPECT_EQ(5, parts.rightTarget.width);
    EXPECT_EQ(4, parts.rightSourceX);
    EXPECT_EQ(22, parts.arrowX); // (45 - 5 + 5) / 2
    EXPECT_EQ(23, parts.arrowY); // 30 - 3 - 4
}

TEST(TabFacePartsTest, ItemNarrowerThanTheImageGivesNoFill)
{
    const RECT item = {0, 0, 10, 40};
    const MirlTabFaceParts parts = PlaceTabFace(item, 20, 40, 12, 8);
    EXPECT_EQ(-10, parts.fill.width);
}

TEST(TabTextTest, TopNotLeftIsAddedAcross)
{
    float x = 0.0f;
    float y = 0.0f;
    TabTextOrigin(RECT{10, 3, 110, 43}, 40.0f, 14.0f, &x, &y);
    EXPECT_FLOAT_EQ(33.0f, x); // (100 - 40) / 2 + 3
    EXPECT_FLOAT_EQ(14.5f, y); // (43 - 14) / 2
    BarTextOrigin(RECT{10, 3, 110, 43}, 40.0f, 14.0f, &x, &y);
    EXPECT_FLOAT_EQ(40.0f, x);
    EXPECT_FLOAT_EQ(12.5f, y);
    EXPECT_EQ(8, BarIconTop(RECT{0, 0, 100, 32}, 16));
    EXPECT_EQ(7, BarIconTop(RECT{0, 0, 100, 32}, 17)); // 15 / 2
}

TEST(FolderStackTest, ThreeHalvesOfThreeHundredOverflowByOneHundredFifty)
{
    // 3 bars of 32 + 2 leave 300 of 402.
    const MirlFolderStack stack = StackFolders(402, 32, 2, {Percent(50), Percent(50), Percent(50)});
    EXPECT_EQ(300, stack.free);
    ASSERT_EQ(3u, stack.heights.size());
    EXPECT_EQ(150, stack.heights[0]);
    EXPECT_EQ(150, stack.heights[1]);
    EXPECT_EQ(150, stack.heights[2]);
    EXPECT_EQ(-150, stack.left);
    EXPECT_TRUE(stack.setsRange);
    EXPECT_EQ(150, stack.rangeMax);
    EXPECT_EQ(30, stack.page);
}

TEST(FolderStackTest, MinimumAboveThePercentageWins)
{
    const MirlFolderStack stack = StackFolders(334, 32, 2, {Percent(10, 80, 6900)});
    EXPECT_EQ(300, stack.free);
    EXPECT_EQ(80, stack.heights[0]);
    EXPECT_EQ(220, stack.left);
    EXPECT_FALSE(stack.setsRange);
}

TEST(FolderStackTest, MaximumBelowThePercentageWins)
{
    const MirlFolderStack stack = StackFolders(334, 32, 2, {Percent(50, -1, 100)});
    EXPECT_EQ(100, stack.heights[0]);
    EXPECT_EQ(200, stack.left);
}

TEST(FolderStackTest, MinimumWinsOverAMaximumBelowIt)
{
    const MirlFolderStack stack = StackFolders(334, 32, 2, {Percent(50, 120, 100)});
    EXPECT_EQ(120, stack.heights[0]);
}

TEST(FolderStackTest, PixelHeightsAndTruncation)
{
    const MirlFolderStack stack = StackFolders(335, 32, 2, {Pixels(70), Percent(33)});
    EXPECT_EQ(267, stack.free);
    EXPECT_EQ(70, stack.heights[0]);
    EXPECT_EQ(88, stack.heights[1]); // 33 * 267 / 100 = 88.11
    EXPECT_EQ(109, stack.left);
}

TEST(FolderStackTest, NegativeRoomTruncatesTowardZero)
{
    // Two bars in 50 pixels: free = -18; 50 % is -9, raised to the minimum of -1.
    const MirlFolderStack stack = StackFolders(50, 32, 2, {Percent(50), Percent(50, -20, 6900)});
    EXPECT_EQ(-18, stack.free);
    EXPECT_EQ(-1, stack.heights[0]);
    EXPECT_EQ(-9, stack.heights[1]);
    EXPECT_EQ(-8, stack.left);
    EXPECT_EQ(8, stack.rangeMax);
    EXPECT_EQ(1, stack.page);
}

TEST(FolderStackTest, AStackThatFitsLeavesTheRangeAlone)
{
    const MirlFolderStack stack = StackFolders(1000, 32, 2, {Percent(50), Percent(50)});
    EXPECT_EQ(0, stack.left);
    EXPECT_FALSE(stack.setsRange);
}

TEST(FolderStackTest, HugeValuesDoNotOverflow)
{
    const MirlFolderStack stack = StackFolders(INT_MAX, 32, 2, {Percent(INT_MAX, -1, INT_MAX), Pixels(INT_MAX)});
    EXPECT_EQ(INT_MAX - 68, stack.free);
    EXPECT_EQ(INT_MAX, stack.heights[0]);
    EXPECT_EQ(INT_MIN, stack.left);
    EXPECT_TRUE(stack.setsRange);
    EXPECT_EQ(INT_MAX, stack.rangeMax);
}

TEST(FolderStackTest, NoFolders)
{
    const MirlFolderStack stack = StackFolders(200, 32, 2, {});
    EXPECT_TRUE(stack.heights.empty());
    EXPECT_EQ(200, stack.left);
}

TEST(FolderPlaceTest, BarsGapsAndPanels)
{
    const std::vector<MirlFolderPlace> places = PlaceFolders(-40, 32, 2, {100, 50, 70}, {true, false, true});
    ASSERT_EQ(3u, places.size());
    EXPECT_EQ(-40, places[0].barTop);
    EXPECT_EQ(-6, places[0].panelTop);
    EXPECT_EQ(94, places[1].barTop);
    EXPECT_EQ(128, places[1].panelTop);
    EXPECT_EQ(128, places[2].barTop); // the hidden panel takes no room
    EXPECT_EQ(162, places[2].panelTop);
    EXPECT_EQ(6, FolderMoveCount(3));
    EXPECT_EQ(0, FolderMoveCount(0));
}

TEST(ScrollStepTest, LinesPagesAndThumb)
{
    EXPECT_EQ(49, ScrollFoldersStep(SB_LINEUP, 0, 50, 0, 150));
    EXPECT_EQ(49, ScrollFoldersStep(SB_TOP, 0, 50, 0, 150));
    EXPECT_EQ(51, ScrollFoldersStep(SB_LINEDOWN, 0, 50, 0, 150));
    EXPECT_EQ(51, ScrollFoldersStep(SB_BOTTOM, 0, 50, 0, 150));
    EXPECT_EQ(35, ScrollFoldersStep(SB_PAGEUP, 0, 50, 0, 150));
    EXPECT_EQ(65, ScrollFoldersStep(SB_PAGEDOWN, 0, 50, 0, 150));
    EXPECT_EQ(0, ScrollFoldersStep(SB_PAGEUP, 0, 10, 0, 150));
    EXPECT_EQ(150, ScrollFoldersStep(SB_PAGEDOWN, 0, 140, 0, 150));
    EXPECT_EQ(0, ScrollFoldersStep(SB_LINEUP, 0, 0, 0, 150));
    EXPECT_EQ(150, ScrollFoldersStep(SB_LINEDOWN, 0, 150, 0, 150));
    EXPECT_EQ(77, ScrollFoldersStep(SB_THUMBPOSITION, 77, 50, 0, 150));
    EXPECT_EQ(500, ScrollFoldersStep(SB_THUMBTRACK, 500, 50, 0, 150)); // as given, not clamped
    EXPECT_EQ(50, ScrollFoldersStep(SB_ENDSCROLL, 77, 50, 0, 150));
    EXPECT_EQ(50, ScrollFoldersStep(9, 77, 50, 0, 150));
    EXPECT_EQ(INT_MIN, ScrollFoldersStep(SB_PAGEUP, 0, INT_MIN, INT_MIN, 0));
}

TEST(ScrollStepTest, WheelNotchesAreNotAccumulated)
{
    EXPECT_EQ(40, WheelStep(120, 50, 0, 150));
    EXPECT_EQ(40, WheelStep(1, 50, 0, 150));
    EXPECT_EQ(40, WheelStep(960, 50, 0, 150));
    EXPECT_EQ(60, WheelStep(-120, 50, 0, 150));
    EXPECT_EQ(60, WheelStep(-1, 50, 0, 150));
    EXPECT_EQ(50, WheelStep(0, 50, 0, 150));
    EXPECT_EQ(0, WheelStep(120, 5, 0, 150));
    EXPECT_EQ(150, WheelStep(-120, 145, 0, 150));
}

TEST(FolderIndexTest, NextWrapsToTheFirst)
{
    EXPECT_EQ(1, NextFolderIndex(0, 3));
    EXPECT_EQ(2, NextFolderIndex(1, 3));
    EXPECT_EQ(0, NextFolderIndex(2, 3));
    EXPECT_EQ(0, NextFolderIndex(0, 1));
    EXPECT_EQ(-1, NextFolderIndex(0, 0));
}

TEST(TabIndexTest, CountsTabsOnly)
{
    const std::vector<bool> children = {false, true, false, true, true};
    EXPECT_EQ(1, TabChildIndex(children, 0));
    EXPECT_EQ(3, TabChildIndex(children, 1));
    EXPECT_EQ(4, TabChildIndex(children, 2));
    EXPECT_EQ(-1, TabChildIndex(children, 3));
    EXPECT_EQ(-1, TabChildIndex(children, -1));
    EXPECT_EQ(-1, TabChildIndex({}, 0));
}

TEST(TabIndexTest, FirstTabIndexIsATemplateIndex)
{
    EXPECT_EQ(0, FirstTabEntry({ToolbarChildTab, ToolbarChildTab}));
    EXPECT_EQ(1, FirstTabEntry({ToolbarChildWindow, ToolbarChildTab}));
    // A child that made no window before the first tab: the index points one entry too far.
    EXPECT_EQ(1, FirstTabEntry({ToolbarChildNone, ToolbarChildTab, ToolbarChildTab}));
    // ... and past the end of the list when nothing follows.
    EXPECT_EQ(-1, FirstTabEntry({ToolbarChildNone, ToolbarChildTab}));
    EXPECT_EQ(-1, FirstTabEntry({ToolbarChildWindow, ToolbarChildNone}));
    EXPECT_EQ(-1, FirstTabEntry({}));
}

TEST(ToolbarStripTest, RightEndIsAsWideAsTheLeft)
{
    const MirlStripParts parts = PlaceToolbarStrip(300, 40, 6, 30);
    EXPECT_EQ(0, parts.left.x);
    EXPECT_EQ(6, parts.left.width);
    EXPECT_EQ(40, parts.left.height);
    EXPECT_EQ(6, parts.middle.x);
    EXPECT_EQ(288, parts.middle.width);
    EXPECT_EQ(3, parts.middleSource.x);
    EXPECT_EQ(4, parts.middleSource.width);
    EXPECT_EQ(30, parts.middleSource.height);
    EXPECT_EQ(294, parts.right.x);
    EXPECT_EQ(6, parts.right.width);
}

TEST(GroupBarTest, CaptionStartsAtEightWhateverTheLeftWidth)
{
    for (int leftWidth : {0, 3, 8, 20, 50}) {
        const MirlGroupBarParts parts = PlaceGroupBar(200, leftWidth, 22, 5);
        EXPECT_FLOAT_EQ(8.0f, parts.captionX) << leftWidth;
        EXPECT_FLOAT_EQ(192.0f, parts.captionWidth) << leftWidth;
        EXPECT_FLOAT_EQ(22.0f, parts.captionHeight) << leftWidth;
        EXPECT_EQ(leftWidth, parts.middle.x);
        EXPECT_EQ(195 - leftWidth, parts.middle.width);
        EXPECT_EQ(195, parts.right.x);
    }
}

TEST(GroupBarTest, NarrowBoxHasNegativeMiddle)
{
    const MirlGroupBarParts parts = PlaceGroupBar(10, 8, 22, 6);
    EXPECT_EQ(-4, parts.middle.width);
    EXPECT_EQ(4, parts.right.x);
}

} // namespace
