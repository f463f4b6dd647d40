// The GDI+ measurer: the table it builds from its cache equals, character for character, the
// measurement of each character at the head of the rest of the text.
#include "MirlEdit.h"
#include "MirlPixelTest.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace {

class EditMeasureTest : public mirltest::PixelTest {
protected:
    void SetUp() override
    {
        mirltest::PixelTest::SetUp();
        MirlEditTextMeasurer::ClearCache();
    }

    // Every rectangle of the cached table against the direct measurement.
    static void ExpectSameTable(Gdiplus::Font *font, int lineAlignment, const std::wstring &text)
    {
        MirlEditTextMeasurer measurer(nullptr, font);
        measurer.SetLineAlignment(lineAlignment);
        std::vector<Gdiplus::RectF> direct;
        std::vector<Gdiplus::RectF> cached;
        measurer.MeasureEachCharacter(text, direct);
        measurer.MeasureCharacters(text, cached);
        ASSERT_EQ(text.size(), direct.size());
        ASSERT_EQ(text.size(), cached.size());
        int differing = 0;
        for (size_t i = 0; i < text.size(); ++i) {
            // X and Width are what the engine reads. Y and Height too compare under near
            // alignment; centred, Y depends on how many lines the rest of the text wraps into.
            bool same = direct[i].X == cached[i].X && direct[i].Width == cached[i].Width;
            if (lineAlignment == 0) {
                same = same && direct[i].Y == cached[i].Y && direct[i].Height == cached[i].Height;
            }
            if (!same && ++differing <= 5) {
                ADD_FAILURE() << "character " << i << " (U+" << std::hex << static_cast<unsigned>(text[i]) << std::dec
                              << "): direct " << direct[i].X << "," << direct[i].Y << " " << direct[i].Width << "x"
                              << direct[i].Height << ", cached " << cached[i].X << "," << cached[i].Y << " "
                              << cached[i].Width << "x" << cached[i].Height;
            }
        }
        EXPECT_EQ(0, differing);
    }

    static std::wstring RealText()
    {
        // Prose with double blanks, punctuation, digits, a tab, line breaks, trailing blanks on
        // a line and at the end, an accent that combines, a surrogate pair and Chinese; long
        // enough that the rest of the text wraps in the measuring rectangle.
        std::wstring text = L"Now playing: \"Kind of Blue\" (1959)  -  track 04/05, 9'26\"\tFLAC 44.1 kHz";
        text += L"\r\nSe\x0301nor  Coconut,   Cafe\x0301 del Mar;  \nWAVE av To Ty Yo LT fi fl ";
        text += L"\xD834\xDD1E clef, \x64AD\x653E\x5217\x8868 \x6B4C\x66F2 [mp3]  ";
        std::wstring longer;
        for (int i = 0; i < 4; ++i) {
            longer += text;
        }
        return longer + L"end   ";
    }
};

} // namespace

TEST_F(EditMeasureTest, TheCachedTableEqualsTheMeasurementOfEachCharacter)
{
    Gdiplus::Font tahoma(L"Tahoma", 13.0f, Gdiplus::FontStyleRegular, Gdiplus::UnitPixel);
    ASSERT_EQ(Gdiplus::Ok, tahoma.GetLastStatus());
    ExpectSameTable(&tahoma, 0, RealText());
}

TEST_F(EditMeasureTest, TheTablesAgreeInArialBoldAndWhenCentred)
{
    Gdiplus::Font arial(L"Arial", 11.0f, Gdiplus::FontStyleBold, Gdiplus::UnitPixel);
    ASSERT_EQ(Gdiplus::Ok, arial.GetLastStatus());
    ExpectSameTable(&arial, 0, RealText());
    ExpectSameTable(&arial, 1, RealText());
    ExpectSameTable(&arial, 2, L"  a  b  ");
}

TEST_F(EditMeasureTest, BlanksAlone)
{
    Gdiplus::Font tahoma(L"Tahoma", 13.0f, Gdiplus::FontStyleRegular, Gdiplus::UnitPixel);
    ASSERT_EQ(Gdiplus::Ok, tahoma.GetLastStatus());
    ExpectSameTable(&tahoma, 0, L" ");
    ExpectSameTable(&tahoma, 0, L"   ");
    ExpectSameTable(&tahoma, 0, L" a ");
    ExpectSameTable(&tahoma, 0, L"a \n b");
    ExpectSameTable(&tahoma, 0, std::wstring(100, L' ') + L"x" + std::wstring(3, L' '));
}

TEST_F(EditMeasureTest, ARebuildOfSeenCharactersMeasuresNothing)
{
    Gdiplus::Font tahoma(L"Tahoma", 13.0f, Gdiplus::FontStyleRegular, Gdiplus::UnitPixel);
    MirlEditTextMeasurer measurer(nullptr, &tahoma);
    std::wstring text;
    for (int i = 0; i < 100; ++i) {
        text += L"abcdefghij";
    }
    std::vector<Gdiplus::RectF> rects;
    measurer.MeasureCharacters(text, rects);
    // Ten letters that join no neighbour: ten measurements.
    EXPECT_EQ(10u, measurer.GetMeasureCalls());
    measurer.MeasureCharacters(text, rects);
    EXPECT_EQ(10u, measurer.GetMeasureCalls());
    // A typed character in the middle adds itself only.
    text.insert(500, 1, L'q');
    measurer.MeasureCharacters(text, rects);
    EXPECT_EQ(11u, measurer.GetMeasureCalls());
    // A combining accent is measured with the letter before it, and that letter with it.
    text.insert(10, 1, L'\x0301');
    measurer.MeasureCharacters(text, rects);
    EXPECT_EQ(13u, measurer.GetMeasureCalls());
    // Another measurer of the same font shares the table.
    MirlEditTextMeasurer other(nullptr, &tahoma);
    other.MeasureCharacters(text, rects);
    EXPECT_EQ(0u, other.GetMeasureCalls());
    // The direct form costs one call per character.
    other.MeasureEachCharacter(text, rects);
    EXPECT_EQ(1002u, other.GetMeasureCalls());
}

TEST_F(EditMeasureTest, WithoutAFontEveryRectangleIsEmpty)
{
    MirlEditTextMeasurer measurer(nullptr, nullptr);
    std::vector<Gdiplus::RectF> rects;
    measurer.MeasureCharacters(L"ab", rects);
    ASSERT_EQ(2u, rects.size());
    EXPECT_EQ(0.0f, rects[1].Width);
    std::wstring withNul(L"a\0b", 3);
    Gdiplus::Font tahoma(L"Tahoma", 13.0f, Gdiplus::FontStyleRegular, Gdiplus::UnitPixel);
    measurer.SetFont(&tahoma);
    measurer.MeasureCharacters(withNul, rects);
    ASSERT_EQ(3u, rects.size());
    EXPECT_GT(rects[2].Width, 0.0f);
}

TEST_F(EditMeasureTest, RectanglesAreAdvancesAtOneOffset)
{
    Gdiplus::Font tahoma(L"Tahoma", 13.0f, Gdiplus::FontStyleRegular, Gdiplus::UnitPixel);
    ASSERT_EQ(Gdiplus::Ok, tahoma.GetLastStatus());
    MirlEditTextMeasurer measurer(nullptr, &tahoma);
    std::vector<Gdiplus::RectF> rects;
    measurer.MeasureCharacters(L"Wi a ", rects);
    ASSERT_EQ(5u, rects.size());
    EXPECT_GT(rects[0].Width, rects[1].Width);
    EXPECT_GT(rects[1].Width, 0.0f);
    EXPECT_EQ(rects[0].X, rects[1].X);
}
