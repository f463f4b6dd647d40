#include "MirlTestSupport.h"

#include <gtest/gtest.h>

using mirltest::ParseElement;

namespace {

int IntegerOf(const wchar_t *value)
{
    return MirlUiWindow::Attribute(L"A", value).GetInteger();
}

class UiWindowTest : public ::testing::Test {
protected:
    mirltest::ComScope m_Com;
};

} // namespace

TEST(UiWindowAttribute, DecimalAndHexadecimalCommandIdAreEqual)
{
    EXPECT_EQ(1001, IntegerOf(L"1001"));
    EXPECT_EQ(1001, IntegerOf(L"0x3E9"));
    EXPECT_EQ(1001, IntegerOf(L"0X3e9"));
}

TEST(UiWindowAttribute, EmptyValueIsZero)
{
    EXPECT_EQ(0, IntegerOf(L""));
}

TEST(UiWindowAttribute, DecimalFollowsWtoi)
{
    EXPECT_EQ(-12, IntegerOf(L"-12"));
    EXPECT_EQ(42, IntegerOf(L"42px"));
    EXPECT_EQ(0, IntegerOf(L"abc"));
    EXPECT_EQ(7, IntegerOf(L"  7"));
}

TEST(UiWindowAttribute, TwoCharacterTextIsNeverHexadecimal)
{
    EXPECT_EQ(0, IntegerOf(L"x1"));
    EXPECT_EQ(0, IntegerOf(L"0x"));
}

TEST(UiWindowAttribute, FirstCharacterIsNeverLookedAt)
{
    EXPECT_EQ(16, IntegerOf(L"0x10"));
    EXPECT_EQ(16, IntegerOf(L"7x10"));
}

TEST(UiWindowAttribute, NonHexCharacterCountsAsAPosition)
{
    EXPECT_EQ(0xA0B, IntegerOf(L"0xAgB"));
}

TEST(UiWindowAttribute, MoreThanEightHexDigitsLoseTheLeadingOnes)
{
    EXPECT_EQ(0x23456789, IntegerOf(L"0x123456789"));
    EXPECT_EQ(static_cast<int>(0xFFFFFFFFu), IntegerOf(L"0xFFFFFFFF"));
}

TEST(UiWindowAttribute, HexWalkStopsAtTheFirstXFromTheEnd)
{
    // Walking from the end, the 'x' at position 3 ends the digits.
    EXPECT_EQ(0x12, IntegerOf(L"0x1x12"));
}

TEST(UiWindowAttribute, BooleanIsTrueOnlyForTrueInAnyCase)
{
    EXPECT_TRUE(MirlUiWindow::Attribute(L"A", L"TRUE").GetBoolean());
    EXPECT_TRUE(MirlUiWindow::Attribute(L"A", L"true").GetBoolean());
    EXPECT_TRUE(MirlUiWindow::Attribute(L"A", L"TrUe").GetBoolean());
    EXPECT_FALSE(MirlUiWindow::Attribute(L"A", L"yes").GetBoolean());
    EXPECT_FALSE(MirlUiWindow::Attribute(L"A", L"1").GetBoolean());
    EXPECT_FALSE(MirlUiWindow::Attribute(L"A", L"").GetBoolean());
}

TEST_F(UiWindowTest, LoadKeepsEveryAttributeAsTextInOrder)
{
    MirlUiWindow window;
    ASSERT_TRUE(window.Load(ParseElement(L"<MainFrame Class='WINDOW' CommandID='0x1000' Width='640' Custom='x y'/>")));
    EXPECT_STREQ(L"MainFrame", window.GetName());
    ASSERT_EQ(4u, window.GetAttributeCount());
    EXPECT_STREQ(L"Class", window.GetAttributeByIndex(0)->GetName());
    EXPECT_STREQ(L"WINDOW", window.GetAttributeByIndex(0)->GetValue());
    EXPECT_STREQ(L"CommandID", window.GetAttributeByIndex(1)->GetName());
    EXPECT_EQ(4096, window.GetAttributeByIndex(1)->GetInteger());
    EXPECT_STREQ(L"Custom", window.GetAttributeByIndex(3)->GetName());
    EXPECT_STREQ(L"x y", window.GetAttributeByIndex(3)->GetValue());
}

TEST_F(UiWindowTest, AttributeLookupIgnoresCase)
{
    MirlUiWindow window;
    ASSERT_TRUE(window.Load(ParseElement(L"<W Class='BUTTON' Width='3'/>")));
    MirlUiWindow::Attribute *found = window.GetAttribute(L"class");
    ASSERT_NE(nullptr, found);
    EXPECT_STREQ(L"Class", found->GetName());
    EXPECT_STREQ(L"BUTTON", found->GetValue());
    EXPECT_EQ(nullptr, window.GetAttribute(L"Height"));
}

TEST_F(UiWindowTest, TagWithOneAttributeDoesNotLoad)
{
    MirlUiWindow window;
    EXPECT_FALSE(window.Load(ParseElement(L"<W Class='WINDOW'><C Class='A' B='1'/></W>")));
    EXPECT_STREQ(L"W", window.GetName());
    EXPECT_EQ(0u, window.GetAttributeCount());
    EXPECT_EQ(0u, window.GetChildCount());
    MirlUiWindow bare;
    EXPECT_FALSE(bare.Load(ParseElement(L"<W/>")));
}

TEST_F(UiWindowTest, ChildWithOneAttributeIsLeftOutWithItsChildren)
{
    MirlUiWindow window;
    ASSERT_TRUE(window.Load(ParseElement(
        L"<W Class='WINDOW' Width='1'>"
        L"<Lonely Class='BUTTON'><Lost Class='STATIC' Width='1'/></Lonely>"
        L"<Kept Class='BUTTON' Width='2'/>"
        L"</W>")));
    ASSERT_EQ(1u, window.GetChildCount());
    EXPECT_STREQ(L"Kept", window.GetChildByIndex(0)->GetName());
    EXPECT_EQ(nullptr, window.GetChild(L"Lonely"));
    EXPECT_EQ(nullptr, window.GetChild(L"Lost"));
}

TEST_F(UiWindowTest, CommentsAreSkippedAtAnyDepth)
{
    MirlUiWindow window;
    ASSERT_TRUE(window.Load(ParseElement(
        L"<W Class='WINDOW' Width='1'><!-- one -->"
        L"<P Class='WINDOW' Width='1'><!-- two --><I Class='STATIC' Width='1'><!-- three --></I></P>"
        L"</W>")));
    ASSERT_EQ(1u, window.GetChildCount());
    MirlUiWindow *panel = window.GetChildByIndex(0);
    ASSERT_EQ(1u, panel->GetChildCount());
    EXPECT_STREQ(L"I", panel->GetChildByIndex(0)->GetName());
    EXPECT_EQ(0u, panel->GetChildByIndex(0)->GetChildCount());
}

TEST_F(UiWindowTest, ChildLookupsByNameIgnoreCaseAndSearchDirectChildrenOnly)
{
    MirlUiWindow window;
    ASSERT_TRUE(window.Load(ParseElement(
        L"<W Class='WINDOW' Width='1'>"
        L"<OkButton Class='BUTTON' CommandID='1001'><Deep Class='STATIC' CommandID='5'/></OkButton>"
        L"<HexButton Class='BUTTON' CommandID='0x3E9'/>"
        L"</W>")));
    ASSERT_NE(nullptr, window.GetChild(L"okbutton"));
    EXPECT_STREQ(L"OkButton", window.GetChild(L"OKBUTTON")->GetName());
    EXPECT_EQ(nullptr, window.GetChild(L"Deep"));
    EXPECT_EQ(nullptr, window.GetChildByID(5));
}

TEST_F(UiWindowTest, ChildByIdComparesDecimalAndHexadecimalAndTakesTheFirst)
{
    MirlUiWindow window;
    ASSERT_TRUE(window.Load(ParseElement(
        L"<W Class='WINDOW' Width='1'>"
        L"<NoId Class='BUTTON' Width='1'/>"
        L"<HexButton Class='BUTTON' CommandID='0x3E9'/>"
        L"<OkButton Class='BUTTON' CommandID='1001'/>"
        L"</W>")));
    MirlUiWindow *found = window.GetChildByID(1001);
    ASSERT_NE(nullptr, found);
    EXPECT_STREQ(L"HexButton", found->GetName());
    EXPECT_EQ(nullptr, window.GetChildByID(1002));
}

TEST_F(UiWindowTest, IndexOutsideTheListsIsNull)
{
    MirlUiWindow empty;
    EXPECT_EQ(nullptr, empty.GetAttributeByIndex(0));
    EXPECT_EQ(nullptr, empty.GetChildByIndex(0));
    EXPECT_EQ(0u, empty.GetAttributeCount());
    EXPECT_EQ(0u, empty.GetChildCount());
    MirlUiWindow window;
    ASSERT_TRUE(window.Load(ParseElement(L"<W Class='WINDOW' Width='1'><C Class='A' B='1'/></W>")));
    EXPECT_EQ(nullptr, window.GetAttributeByIndex(2));
    EXPECT_EQ(nullptr, window.GetAttributeByIndex(-1));
    EXPECT_EQ(nullptr, window.GetChildByIndex(1));
    EXPECT_EQ(nullptr, window.GetChildByIndex(-1));
    EXPECT_NE(nullptr, window.GetChildByIndex(0));
}

TEST_F(UiWindowTest, TemplatesDeeperThanTheLimitAreLeftOut)
{
    std::wstring xml;
    const int levels = MirlUiWindow::MaxDepth + 10;
    for (int i = 1; i <= levels; ++i) {
        xml += L"<L" + std::to_wstring(i) + L" Class='WINDOW' Depth='" + std::to_wstring(i) + L"'>";
    }
    for (int i = levels; i >= 1; --i) {
        xml += L"</L" + std::to_wstring(i) + L">";
    }
    MirlUiWindow window;
    ASSERT_TRUE(window.Load(ParseElement(xml.c_str())));
    int depth = 1;
    MirlUiWindow *level = &window;
    while (level->GetChildCount() == 1) {
        level = level->GetChildByIndex(0);
        ++depth;
    }
    EXPECT_EQ(MirlUiWindow::MaxDepth, depth);
    EXPECT_EQ(MirlUiWindow::MaxDepth, level->GetAttribute(L"Depth")->GetInteger());
}

TEST_F(UiWindowTest, CopiesAreDeepAndIndependent)
{
    MirlUiWindow *window = new MirlUiWindow();
    ASSERT_TRUE(window->Load(ParseElement(L"<W Class='WINDOW' Width='1'><C Class='A' B='1'/></W>")));
    MirlUiWindow copy(*window);
    MirlUiWindow assigned;
    assigned = *window;
    delete window;
    ASSERT_EQ(2u, copy.GetAttributeCount());
    ASSERT_EQ(1u, copy.GetChildCount());
    EXPECT_STREQ(L"C", copy.GetChildByIndex(0)->GetName());
    EXPECT_STREQ(L"A", assigned.GetChildByIndex(0)->GetAttribute(L"class")->GetValue());
}
