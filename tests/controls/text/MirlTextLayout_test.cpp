#include "MirlTestSupport.h"
#include "MirlText.h"

#include <gtest/gtest.h>

namespace {

class GdiplusEnvironment : public ::testing::Environment {
public:
    void SetUp() override
    {
        Gdiplus::GdiplusStartupInput input;
        Gdiplus::GdiplusStartup(&m_Token, &input, nullptr);
    }
    void TearDown() override { Gdiplus::GdiplusShutdown(m_Token); }

private:
    ULONG_PTR m_Token = 0;
};

::testing::Environment *const g_Gdiplus = ::testing::AddGlobalTestEnvironment(new GdiplusEnvironment());

// A 32-bit picture to measure and draw on, with a pixel font that the prefix provides.
class TextLayoutTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        m_Bitmap.reset(new Gdiplus::Bitmap(200, 100, PixelFormat32bppARGB));
        m_Graphics.reset(new Gdiplus::Graphics(m_Bitmap.get()));
        m_Graphics->Clear(Gdiplus::Color(0xFF000000));
        m_Graphics->SetTextRenderingHint(Gdiplus::TextRenderingHintSingleBitPerPixelGridFit);
        m_Font.reset(new Gdiplus::Font(L"Tahoma", 12.0f, Gdiplus::FontStyleRegular, Gdiplus::UnitPixel));
        ASSERT_EQ(Gdiplus::Ok, m_Font->GetLastStatus());
    }
    void TearDown() override
    {
        m_Font.reset();
        m_Graphics.reset();
        m_Bitmap.reset();
    }
    // The measured height of one line of text in this font.
    float LineHeight()
    {
        Gdiplus::RectF box;
        m_Graphics->MeasureString(L"Ag", -1, m_Font.get(), Gdiplus::PointF(0, 0), &box);
        return box.Height;
    }
    template <class Test> int CountPixels(Test test)
    {
        int count = 0;
        for (UINT y = 0; y < m_Bitmap->GetHeight(); ++y) {
            for (UINT x = 0; x < m_Bitmap->GetWidth(); ++x) {
                Gdiplus::Color c;
                m_Bitmap->GetPixel(x, y, &c);
                count += test(c) ? 1 : 0;
            }
        }
        return count;
    }
    // Wine smooths glyph edges whatever the rendering hint, so pixels are told by their
    // dominant colour rather than compared exactly.
    static bool IsWhite(const Gdiplus::Color &c) { return c.GetR() > 200 && c.GetG() > 200 && c.GetB() > 200; }
    static bool IsBlue(const Gdiplus::Color &c) { return c.GetB() > 200 && c.GetR() < 60 && c.GetG() < 60; }

    std::unique_ptr<Gdiplus::Bitmap> m_Bitmap;
    std::unique_ptr<Gdiplus::Graphics> m_Graphics;
    std::unique_ptr<Gdiplus::Font> m_Font;
};

MirlTextLayout Layout(Gdiplus::Font *font, const wchar_t *text, unsigned long style, const Gdiplus::RectF &rect)
{
    MirlTextLayout layout(false);
    layout.SetFont(font);
    layout.SetStyle(style);
    layout.SetText(text);
    layout.SetRect(rect);
    return layout;
}

} // namespace

TEST(TextLayoutParse, WordsWithBlanksAreReadAndCaseMatters)
{
    EXPECT_EQ(0x110UL, MirlTextLayout::ParseLayoutStyle(L"ALIGN_LEFT | ALIGN_TOP"));
    EXPECT_EQ(0UL, MirlTextLayout::ParseLayoutStyle(L"align_left"));
    EXPECT_EQ(0UL, MirlTextLayout::ParseLayoutStyle(L""));
    EXPECT_EQ(0x221UL, MirlTextLayout::ParseLayoutStyle(L"ORDER_H_IMAGE_TEXT|ALIGN_RIGHT|ALIGN_BOTTOM"));
    EXPECT_EQ(0x4UL, MirlTextLayout::ParseLayoutStyle(L"ORDER_V_IMAGE_TEXT|NO_SUCH_WORD"));
}

TEST(TextLayoutFields, StartValuesAndSettersClearTheMeasuredMark)
{
    MirlTextLayout shadowed(true);
    EXPECT_TRUE(shadowed.HasShadow());
    MirlTextLayout layout(false);
    EXPECT_FALSE(layout.HasShadow());
    EXPECT_FALSE(layout.IsMeasured());
    EXPECT_EQ(nullptr, layout.GetFont());
    EXPECT_EQ(0UL, layout.GetStyle());
    EXPECT_STREQ(L"", layout.GetText());
    Gdiplus::RectF rect = layout.GetRect();
    EXPECT_EQ(0.0f, rect.Width);
}

TEST_F(TextLayoutTest, EmptyTextMeasuresAndDrawsNothing)
{
    Gdiplus::RectF rect(3.0f, 4.0f, 50.0f, 20.0f);
    MirlTextLayout layout = Layout(m_Font.get(), L"", 0, rect);
    layout.Measure(*m_Graphics);
    EXPECT_FALSE(layout.IsMeasured());
    Gdiplus::RectF after = layout.GetRect();
    EXPECT_EQ(3.0f, after.X);
    EXPECT_EQ(4.0f, after.Y);
    EXPECT_EQ(50.0f, after.Width);
    EXPECT_EQ(20.0f, after.Height);
    Gdiplus::SolidBrush white(Gdiplus::Color(0xFFFFFFFF));
    layout.Draw(*m_Graphics, &white);
    EXPECT_EQ(200 * 100, CountPixels([](const Gdiplus::Color &c) { return c.GetValue() == 0xFF000000; }));
}

TEST_F(TextLayoutTest, MeasureTakesTheMeasuredBoxAndSettersClearIt)
{
    MirlTextLayout layout = Layout(m_Font.get(), L"Play", ALIGN_LEFT | ALIGN_TOP, Gdiplus::RectF(10, 0, 150, 60));
    layout.Measure(*m_Graphics);
    ASSERT_TRUE(layout.IsMeasured());
    Gdiplus::RectF rect = layout.GetRect();
    Gdiplus::RectF bounds = layout.GetBounds();
    EXPECT_EQ(10.0f, rect.X);
    EXPECT_EQ(0.0f, rect.Y);
    EXPECT_EQ(bounds.Width, rect.Width);
    EXPECT_EQ(bounds.Height, rect.Height);
    EXPECT_GT(rect.Width, 10.0f);
    EXPECT_LT(rect.Width, 150.0f);
    layout.SetText(L"Stop");
    EXPECT_FALSE(layout.IsMeasured());
}

TEST_F(TextLayoutTest, CentredTextInABandThatStartsLowerCentresAgainstTheTop)
{
    float line = LineHeight();
    ASSERT_LT(line, 20.0f);
    MirlTextLayout layout = Layout(m_Font.get(), L"Play", 0, Gdiplus::RectF(0, 40, 150, 20));
    layout.Measure(*m_Graphics);
    ASSERT_TRUE(layout.IsMeasured());
    float measured = layout.GetBounds().Height;
    EXPECT_FLOAT_EQ((20.0f - measured) * 0.5f, layout.GetRect().Y);
    EXPECT_LT(layout.GetRect().Y, 40.0f);
}

TEST_F(TextLayoutTest, BottomAlignedYIsOldHeightLessMeasuredHeight)
{
    MirlTextLayout layout = Layout(m_Font.get(), L"Play", ALIGN_BOTTOM, Gdiplus::RectF(0, 40, 150, 30));
    layout.Measure(*m_Graphics);
    EXPECT_FLOAT_EQ(30.0f - layout.GetBounds().Height, layout.GetRect().Y);
}

TEST_F(TextLayoutTest, LeftAndRightTogetherIsLeftTopAndBottomTogetherIsTop)
{
    MirlTextLayout both = Layout(m_Font.get(), L"Play", ALIGN_LEFT | ALIGN_RIGHT | ALIGN_TOP | ALIGN_BOTTOM,
                                 Gdiplus::RectF(10, 40, 150, 30));
    both.Measure(*m_Graphics);
    EXPECT_EQ(10.0f, both.GetRect().X);
    EXPECT_EQ(40.0f, both.GetRect().Y);
    MirlTextLayout right = Layout(m_Font.get(), L"Play", ALIGN_RIGHT, Gdiplus::RectF(10, 40, 150, 30));
    right.Measure(*m_Graphics);
    EXPECT_FLOAT_EQ(160.0f - right.GetBounds().Width, right.GetRect().X);
    MirlTextLayout centre = Layout(m_Font.get(), L"Play", 0, Gdiplus::RectF(10, 40, 150, 30));
    centre.Measure(*m_Graphics);
    EXPECT_FLOAT_EQ(10.0f + (150.0f - centre.GetBounds().Width) * 0.5f, centre.GetRect().X);
}

TEST_F(TextLayoutTest, TextTallerThanTheRectangleKeepsTheMeasuredBox)
{
    // A rectangle of no height sets no limit, so every line is measured and the box is taller.
    MirlTextLayout layout = Layout(m_Font.get(), L"one two three four five six seven eight nine ten", ALIGN_LEFT,
                                   Gdiplus::RectF(0, 7, 40, 0));
    layout.Measure(*m_Graphics);
    ASSERT_TRUE(layout.IsMeasured());
    Gdiplus::RectF rect = layout.GetRect();
    Gdiplus::RectF bounds = layout.GetBounds();
    EXPECT_GT(rect.Height, 3 * LineHeight() - 1.0f);
    EXPECT_EQ(7.0f, rect.Y);
    EXPECT_EQ(bounds.Y, rect.Y);
    EXPECT_EQ(bounds.Height, rect.Height);
}

TEST_F(TextLayoutTest, AmpersandsCountWhenMeasuredButUnderlineWhenDrawn)
{
    MirlTextLayout plain = Layout(m_Font.get(), L"here", ALIGN_LEFT, Gdiplus::RectF(0, 0, 190, 40));
    MirlTextLayout linked = Layout(m_Font.get(), L"&h&e&r&e", ALIGN_LEFT, Gdiplus::RectF(0, 0, 190, 40));
    plain.Measure(*m_Graphics);
    linked.Measure(*m_Graphics);
    EXPECT_GT(linked.GetRect().Width, plain.GetRect().Width);
}

TEST_F(TextLayoutTest, ShadowedLayoutDrawsWhiteFirstThenTheText)
{
    MirlTextLayout layout(true);
    layout.SetFont(m_Font.get());
    layout.SetText(L"IIII HHHH");
    layout.SetStyle(ALIGN_LEFT | ALIGN_TOP);
    layout.SetRect(Gdiplus::RectF(5, 5, 190, 40));
    layout.Measure(*m_Graphics);
    Gdiplus::SolidBrush blue(Gdiplus::Color(0xFF0000FF));
    layout.Draw(*m_Graphics, &blue);
    int white = CountPixels(IsWhite);
    int text = CountPixels(IsBlue);
    // The white copy one pixel lower shows only beneath the strokes; drawn last it would
    // cover nearly all of them.
    EXPECT_GT(white, 0);
    EXPECT_GT(text, white * 3);
}

TEST_F(TextLayoutTest, UnshadowedLayoutDrawsNoWhite)
{
    MirlTextLayout layout = Layout(m_Font.get(), L"IIII HHHH", ALIGN_LEFT | ALIGN_TOP, Gdiplus::RectF(5, 5, 190, 40));
    layout.Measure(*m_Graphics);
    Gdiplus::SolidBrush blue(Gdiplus::Color(0xFF0000FF));
    layout.Draw(*m_Graphics, &blue);
    EXPECT_EQ(0, CountPixels(IsWhite));
    EXPECT_GT(CountPixels(IsBlue), 0);
}

TEST(LinkMarkup, FirstRunBecomesPrefixedCharacters)
{
    bool hasLink = false;
    EXPECT_EQ(L"go &h&e&r&e now", MIRL::ExpandFirstLink(L"go (link)here(/link) now", L"(link)", L"(/link)", &hasLink));
    EXPECT_TRUE(hasLink);
}

TEST(LinkMarkup, MarksIgnoreCaseAndOnlyTheFirstPairCounts)
{
    bool hasLink = false;
    EXPECT_EQ(L"&a b (link)c(/link)", MIRL::ExpandFirstLink(L"(LINK)a(/Link) b (link)c(/link)", L"(link)", L"(/link)", &hasLink));
    EXPECT_TRUE(hasLink);
}

TEST(LinkMarkup, CloseBeforeOpenKeepsNoLinkRun)
{
    bool hasLink = false;
    std::wstring result = MIRL::ExpandFirstLink(L"(/link)a(link)", L"(link)", L"(/link)", &hasLink);
    EXPECT_EQ(L"(/link)aa(link)", result);
    EXPECT_EQ(std::wstring::npos, result.find(L'&'));
}

TEST(LinkMarkup, TextWithoutBothMarksIsUnchanged)
{
    bool hasLink = true;
    EXPECT_EQ(L"plain (link)text", MIRL::ExpandFirstLink(L"plain (link)text", L"(link)", L"(/link)", &hasLink));
    EXPECT_FALSE(hasLink);
    EXPECT_EQ(L"", MIRL::ExpandFirstLink(L"", L"(link)", L"(/link)", &hasLink));
    EXPECT_EQ(L"&x", MIRL::ExpandFirstLink(L"<link>x</LINK>", L"<link>", L"</link>", nullptr));
}

TEST_F(TextLayoutTest, MeasuredLineIsDrawnWholeWithoutMovingIt)
{
    // A font made from a LOGFONT, as windows make theirs: its measured width alone is not always
    // enough room to draw the line in.
    HDC dc = m_Graphics->GetHDC();
    LOGFONTW logFont = {};
    logFont.lfHeight = 13;
    wcscpy(logFont.lfFaceName, L"Tahoma");
    Gdiplus::Font font(dc, &logFont);
    m_Graphics->ReleaseHDC(dc);
    for (unsigned long style : {static_cast<unsigned long>(ALIGN_LEFT), static_cast<unsigned long>(ALIGN_RIGHT), 0UL}) {
        m_Graphics->Clear(Gdiplus::Color(0xFF000000));
        MirlTextLayout layout = Layout(&font, L"01:42 / 04:05", style | ALIGN_TOP, Gdiplus::RectF(0, 0, 120, 22));
        layout.Measure(*m_Graphics);
        Gdiplus::SolidBrush white(Gdiplus::Color(0xFFFFFFFF));
        layout.Draw(*m_Graphics, &white);
        // One line: nothing is drawn below the measured line.
        int inkBelow = 0;
        int inkInside = 0;
        int leftmost = 1000;
        for (UINT y = 0; y < 40; ++y) {
            for (UINT x = 0; x < 122; ++x) {
                Gdiplus::Color c;
                m_Bitmap->GetPixel(x, y, &c);
                if (c.GetR() > 100) {
                    (y >= layout.GetRect().Height + 1.0f ? inkBelow : inkInside) += 1;
                    leftmost = std::min(leftmost, static_cast<int>(x));
                }
            }
        }
        EXPECT_EQ(0, inkBelow) << style;
        EXPECT_GT(inkInside, 100) << style;
        // The text starts where the measured box does, give or take the font's side bearing.
        EXPECT_GE(leftmost, static_cast<int>(layout.GetRect().X)) << style;
        EXPECT_LE(leftmost, static_cast<int>(layout.GetRect().X) + 3) << style;
    }
}
