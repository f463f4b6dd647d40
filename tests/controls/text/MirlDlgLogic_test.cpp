// The dialog button's and dialog static's rules without a window: image names and slots, the
// check state after BM_SETCHECK, caption colours, the check image's place, and the static's link.
#include "controls/text/MirlDlgLogic.h"

#include <gtest/gtest.h>

#include <string>

namespace {

TEST(DlgButtonType, IsTheLowFourBitsOfTheStyle)
{
    EXPECT_EQ(3u, MIRL::DlgButtonType(WS_CHILD | WS_TABSTOP | BS_AUTOCHECKBOX));
    EXPECT_EQ(1u, MIRL::DlgButtonType(BS_DEFPUSHBUTTON | BS_CENTER));
    EXPECT_TRUE(MIRL::IsDlgCheckType(BS_CHECKBOX));
    EXPECT_TRUE(MIRL::IsDlgCheckType(BS_AUTOCHECKBOX));
    EXPECT_TRUE(MIRL::IsDlgCheckType(BS_RADIOBUTTON));
    EXPECT_TRUE(MIRL::IsDlgCheckType(BS_AUTORADIOBUTTON));
    EXPECT_FALSE(MIRL::IsDlgCheckType(BS_PUSHBUTTON));
    EXPECT_FALSE(MIRL::IsDlgCheckType(BS_DEFPUSHBUTTON));
    EXPECT_FALSE(MIRL::IsDlgCheckType(BS_3STATE));
    EXPECT_FALSE(MIRL::IsDlgCheckType(BS_GROUPBOX));
}

TEST(DlgButtonImageNames, CheckBoxesShowCheckYIdleAndCheckNChecked)
{
    const wchar_t *names[4];
    bool required[4];
    MIRL::DlgButtonImageNames(BS_AUTOCHECKBOX, names, required);
    EXPECT_STREQ(L"CheckY", names[0]);
    EXPECT_STREQ(L"CheckN", names[1]);
    EXPECT_EQ(nullptr, names[2]);
    EXPECT_EQ(nullptr, names[3]);
    EXPECT_TRUE(required[0]);
    EXPECT_TRUE(required[1]);
    MIRL::DlgButtonImageNames(BS_RADIOBUTTON, names, required);
    EXPECT_STREQ(L"RadioBtn0", names[0]);
    EXPECT_STREQ(L"RadioBtn1", names[1]);
    MIRL::DlgButtonImageNames(BS_AUTORADIOBUTTON, names, required);
    EXPECT_STREQ(L"RadioBtn0", names[0]);
}

TEST(DlgButtonImageNames, PushButtonsNeedOnlyCmBtn2)
{
    const wchar_t *names[4];
    bool required[4];
    MIRL::DlgButtonImageNames(BS_DEFPUSHBUTTON, names, required);
    EXPECT_STREQ(L"CmBtn1", names[0]);
    EXPECT_STREQ(L"CmBtn2", names[1]);
    EXPECT_STREQ(L"CmBtn3", names[2]);
    EXPECT_STREQ(L"CmBtn0", names[3]);
    EXPECT_FALSE(required[0]);
    EXPECT_TRUE(required[1]);
    EXPECT_FALSE(required[2]);
    EXPECT_FALSE(required[3]);
}

TEST(DlgButtonSlot, FollowsDisabledPressedHoverNormal)
{
    const bool all[4] = {true, true, true, true};
    EXPECT_EQ(0, MIRL::DlgButtonSlot(false, false, false, all));
    EXPECT_EQ(1, MIRL::DlgButtonSlot(false, true, false, all));
    EXPECT_EQ(2, MIRL::DlgButtonSlot(true, false, false, all));
    EXPECT_EQ(2, MIRL::DlgButtonSlot(true, true, false, all));
    EXPECT_EQ(3, MIRL::DlgButtonSlot(false, false, true, all));
    EXPECT_EQ(3, MIRL::DlgButtonSlot(true, true, true, all));
    const bool noPressedNoDisabled[4] = {true, true, false, false};
    EXPECT_EQ(1, MIRL::DlgButtonSlot(true, false, false, noPressedNoDisabled));
    EXPECT_EQ(0, MIRL::DlgButtonSlot(false, false, true, noPressedNoDisabled));
}

TEST(DlgButtonSlot, WithoutCmBtn1TheNormalStateDrawsNothing)
{
    // Slot 0 is "CmBtn1": a skin without it leaves a normal push button blank, caption included.
    const bool noNormal[4] = {false, true, true, true};
    EXPECT_EQ(-1, MIRL::DlgButtonSlot(false, false, false, noNormal));
    EXPECT_EQ(1, MIRL::DlgButtonSlot(false, true, false, noNormal));
    EXPECT_EQ(2, MIRL::DlgButtonSlot(true, false, false, noNormal));
    EXPECT_EQ(3, MIRL::DlgButtonSlot(false, false, true, noNormal));
    const bool onlyPressed[4] = {false, true, false, false};
    EXPECT_EQ(-1, MIRL::DlgButtonSlot(false, false, true, onlyPressed));
}

TEST(DlgCheckBoxSlot, PressedOrCheckedShowsSlotOne)
{
    EXPECT_EQ(0, MIRL::DlgCheckBoxSlot(false));
    EXPECT_EQ(1, MIRL::DlgCheckBoxSlot(true));
}

TEST(DlgCheckAfterSetCheck, IndeterminateLeavesTheState)
{
    EXPECT_TRUE(MIRL::DlgCheckAfterSetCheck(false, BST_CHECKED));
    EXPECT_FALSE(MIRL::DlgCheckAfterSetCheck(true, BST_UNCHECKED));
    EXPECT_TRUE(MIRL::DlgCheckAfterSetCheck(true, BST_INDETERMINATE));
    EXPECT_FALSE(MIRL::DlgCheckAfterSetCheck(false, BST_INDETERMINATE));
    EXPECT_TRUE(MIRL::DlgCheckAfterSetCheck(true, 0xFFFF));
}

TEST(DlgButtonColors, DisabledWinsOverHover)
{
    EXPECT_EQ(0xFFFFFFFFu, MIRL::DlgButtonColors(false, false).shadow);
    EXPECT_EQ(0xFF000000u, MIRL::DlgButtonColors(false, false).text);
    EXPECT_EQ(0xFFD1D1D1u, MIRL::DlgButtonColors(true, false).shadow);
    EXPECT_EQ(0xFF3A3939u, MIRL::DlgButtonColors(true, false).text);
    EXPECT_EQ(0xFF9A9EA2u, MIRL::DlgButtonColors(false, true).shadow);
    EXPECT_EQ(0xFF6D7075u, MIRL::DlgButtonColors(false, true).text);
    EXPECT_EQ(0xFF6D7075u, MIRL::DlgButtonColors(true, true).text);
}

TEST(DlgCheckImageTop, CentresAndWrapsATallerImage)
{
    EXPECT_EQ(3, MIRL::DlgCheckImageTop(20, 13));
    EXPECT_EQ(0, MIRL::DlgCheckImageTop(13, 13));
    // 10 - 14 as 32-bit unsigned is 0xFFFFFFFC; shifted, 0x7FFFFFFE.
    EXPECT_EQ(0x7FFFFFFE, MIRL::DlgCheckImageTop(10, 14));
}

TEST(SplitDialogLink, VisitUsNow)
{
    MIRL::DialogLinkParts parts = MIRL::SplitDialogLink(L"Visit <link>us</link> now");
    EXPECT_TRUE(parts.found);
    EXPECT_EQ(6, parts.start);
    EXPECT_EQ(14, parts.end);
    EXPECT_EQ(L"Visit ", parts.head);
    EXPECT_EQ(L"&u&s", parts.link);
    EXPECT_EQ(L" now", parts.tail);
    EXPECT_EQ(L"Visit &u&s now", parts.shown);
}

TEST(SplitDialogLink, MarksIgnoreCase)
{
    MIRL::DialogLinkParts parts = MIRL::SplitDialogLink(L"Visit <LINK>us</Link> now");
    EXPECT_TRUE(parts.found);
    EXPECT_EQ(L"Visit &u&s now", parts.shown);
}

TEST(SplitDialogLink, ACaptionThatBeginsWithTheLinkHasNoHead)
{
    MIRL::DialogLinkParts parts = MIRL::SplitDialogLink(L"<link>Go</link> on");
    EXPECT_EQ(0, parts.start);
    EXPECT_EQ(L"", parts.head);
    EXPECT_EQ(L"&G&o on", parts.shown);
}

TEST(SplitDialogLink, OnlyTheFirstPairCounts)
{
    MIRL::DialogLinkParts parts = MIRL::SplitDialogLink(L"a<link>b</link>c<link>d</link>");
    EXPECT_EQ(L"a&bc<link>d</link>", parts.shown);
}

TEST(SplitDialogLink, AMissingMarkLeavesTheText)
{
    MIRL::DialogLinkParts parts = MIRL::SplitDialogLink(L"Visit <link>us");
    EXPECT_FALSE(parts.found);
    EXPECT_EQ(-1, parts.start);
    EXPECT_EQ(-1, parts.end);
    EXPECT_EQ(L"Visit <link>us", parts.shown);
}

TEST(SplitDialogLink, ClosingBeforeOpeningGivesAnEmptyLink)
{
    MIRL::DialogLinkParts parts = MIRL::SplitDialogLink(L"a</link>b<link>c");
    EXPECT_TRUE(parts.found);
    EXPECT_EQ(L"a</link>b", parts.head);
    EXPECT_EQ(L"", parts.link);
    EXPECT_EQ(L"b<link>c", parts.tail);
}

TEST(DialogLinkRect, StartsWhereTheHeadEnds)
{
    const RECT rect = MIRL::DialogLinkRect(true, 0.0f, 0.0f, 38.7f, 16.9f, 17.2f);
    EXPECT_EQ(38, rect.left);
    EXPECT_EQ(0, rect.top);
    EXPECT_EQ(55, rect.right);
    EXPECT_EQ(16, rect.bottom);
}

TEST(DialogLinkRect, WithoutAHeadTheBottomIsZeroAndNothingHits)
{
    const RECT rect = MIRL::DialogLinkRect(false, 5.0f, 5.0f, 30.0f, 16.0f, 20.9f);
    EXPECT_EQ(0, rect.left);
    EXPECT_EQ(0, rect.bottom);
    EXPECT_EQ(20, rect.right);
    EXPECT_FALSE(MIRL::IsInDialogLink(true, rect, 5, 0));
}

TEST(IsInDialogLink, TheRightEdgeCountsAndTheBottomEdgeDoesNot)
{
    const RECT rect = {38, 0, 55, 16};
    EXPECT_TRUE(MIRL::IsInDialogLink(true, rect, 55, 5));
    EXPECT_TRUE(MIRL::IsInDialogLink(true, rect, 38, 0));
    EXPECT_TRUE(MIRL::IsInDialogLink(true, rect, 40, 15));
    EXPECT_FALSE(MIRL::IsInDialogLink(true, rect, 40, 16));
    EXPECT_FALSE(MIRL::IsInDialogLink(true, rect, 56, 5));
    EXPECT_FALSE(MIRL::IsInDialogLink(true, rect, 37, 5));
    EXPECT_FALSE(MIRL::IsInDialogLink(false, rect, 40, 5));
}

TEST(CutCaption, KeepsCapacityLessOne)
{
    const std::wstring longText(1500, L'x');
    EXPECT_EQ(1023u, MIRL::CutCaption(longText, 1024).size());
    EXPECT_EQ(255u, MIRL::CutCaption(longText, 256).size());
    EXPECT_EQ(1023u, MIRL::CutCaption(std::wstring(1023, L'y'), 1024).size());
    EXPECT_EQ(L"ab", MIRL::CutCaption(L"ab", 1024));
}

} // namespace
