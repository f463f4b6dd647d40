#include "MirlTestSupport.h"

#include <gtest/gtest.h>

using mirltest::ParseElement;

namespace {

class UiElementTest : public ::testing::Test {
protected:
    mirltest::ComScope m_Com;
};

HRESULT LoadError(MirlUiElement &element, const wchar_t *xml)
{
    try {
        element.Load(ParseElement(xml));
    } catch (const _com_error &e) {
        return e.Error();
    }
    return S_OK;
}

} // namespace

TEST_F(UiElementTest, TypeCodesOfTheFiveClassesAndTemplates)
{
    EXPECT_EQ(1u, MirlUiElementInformation().GetType());
    EXPECT_EQ(2u, MirlUiElementColor().GetType());
    EXPECT_EQ(3u, MirlUiElementFont().GetType());
    EXPECT_EQ(4u, MirlUiElementImage().GetType());
    EXPECT_EQ(5u, MirlUiElementText().GetType());
    EXPECT_EQ(6u, MirlUiWindow().GetType());
}

TEST_F(UiElementTest, NameIsTheTagName)
{
    MirlUiElementText text;
    EXPECT_STREQ(L"", text.GetName());
    ASSERT_TRUE(text.Load(ParseElement(L"<TxtOpen Text='Open'/>")));
    EXPECT_STREQ(L"TxtOpen", text.GetName());
    text.SetName(L"Other");
    EXPECT_STREQ(L"Other", text.GetName());
}

TEST_F(UiElementTest, ColorWithNoAttributesIsOpaqueBlack)
{
    MirlUiElementColor color;
    ASSERT_TRUE(color.Load(ParseElement(L"<ClrBlack/>")));
    EXPECT_EQ(0xFF000000UL, color.GetDWORD());
    EXPECT_EQ(0, color.R());
    EXPECT_EQ(255, color.A());
}

TEST_F(UiElementTest, ColorChannelsPackIntoDwordRedLowest)
{
    MirlUiElementColor color;
    ASSERT_TRUE(color.Load(ParseElement(L"<C Red='1' Green='2' Blue='3' Alpha='4'/>")));
    EXPECT_EQ(0x04030201UL, color.GetDWORD());
    EXPECT_EQ(1, color.R());
    EXPECT_EQ(1, color.GetRed());
    EXPECT_EQ(2, color.G());
    EXPECT_EQ(2, color.GetGreen());
    EXPECT_EQ(3, color.B());
    EXPECT_EQ(3, color.GetBlue());
    EXPECT_EQ(4, color.A());
    EXPECT_EQ(4, color.GetAlpha());
}

TEST_F(UiElementTest, ColorChannelOutOfRangeRaisesOverflow)
{
    MirlUiElementColor color;
    EXPECT_EQ(DISP_E_OVERFLOW, LoadError(color, L"<C Red='7' Green='300' Blue='9'/>"));
    // Values read before the failure stay; the rest keep their defaults.
    EXPECT_EQ(7, color.R());
    EXPECT_EQ(0, color.G());
    EXPECT_EQ(0, color.B());
    EXPECT_STREQ(L"C", color.GetName());
}

TEST_F(UiElementTest, NegativeColorChannelRaisesOverflow)
{
    MirlUiElementColor color;
    EXPECT_EQ(DISP_E_OVERFLOW, LoadError(color, L"<C Red='-1'/>"));
}

TEST_F(UiElementTest, ColorChannelThatIsNotANumberRaisesTypeMismatch)
{
    MirlUiElementColor color;
    EXPECT_EQ(DISP_E_TYPEMISMATCH, LoadError(color, L"<C Red='red'/>"));
}

TEST_F(UiElementTest, FontWithNoAttributesIsArial18Width0Weight400)
{
    MirlUiElementFont font;
    ASSERT_TRUE(font.Load(ParseElement(L"<F/>")));
    EXPECT_STREQ(L"Arial", font.GetFamilyName());
    EXPECT_EQ(18, font.GetHeight());
    EXPECT_EQ(0, font.GetWidth());
    EXPECT_EQ(400, font.GetWeight());
    EXPECT_FALSE(font.GetItalic());
    EXPECT_FALSE(font.GetUnderline());
}

TEST_F(UiElementTest, FontReadsEveryAttribute)
{
    MirlUiElementFont font;
    ASSERT_TRUE(font.Load(ParseElement(
        L"<F FamilyName='Tahoma' Height='24' Width='5' Weight='700' Italic='true' Underline='true' Bold='false'/>")));
    EXPECT_STREQ(L"Tahoma", font.GetFamilyName());
    EXPECT_EQ(24, font.GetHeight());
    EXPECT_EQ(5, font.GetWidth());
    EXPECT_EQ(700, font.GetWeight());
    EXPECT_TRUE(font.GetItalic());
    EXPECT_TRUE(font.GetUnderline());
}

TEST_F(UiElementTest, NegativeFontHeightRaisesOverflow)
{
    MirlUiElementFont font;
    EXPECT_EQ(DISP_E_OVERFLOW, LoadError(font, L"<F Height='-5'/>"));
    EXPECT_EQ(18, font.GetHeight());
}

TEST_F(UiElementTest, ImageWithoutFileHasNullFileName)
{
    MirlUiElementImage image;
    ASSERT_TRUE(image.Load(ParseElement(L"<Img KeyColorLow='ClrLow'/>")));
    EXPECT_EQ(nullptr, image.GetFileName());
    EXPECT_STREQ(L"ClrLow", image.GetKeyColorLow());
    EXPECT_EQ(nullptr, image.GetKeyColorHigh());
}

TEST_F(UiElementTest, ImageKeepsFileAndKeyColorNames)
{
    MirlUiElementImage image;
    ASSERT_TRUE(image.Load(ParseElement(L"<BtnOk File='Buttons/Ok.png' KeyColorLow='A' KeyColorHigh='B'/>")));
    EXPECT_STREQ(L"Buttons/Ok.png", image.GetFileName());
    EXPECT_STREQ(L"A", image.GetKeyColorLow());
    EXPECT_STREQ(L"B", image.GetKeyColorHigh());
}

TEST_F(UiElementTest, TextWithoutTextAttributeIsEmptyNotNull)
{
    MirlUiElementText text;
    ASSERT_TRUE(text.Load(ParseElement(L"<TxtEmpty/>")));
    ASSERT_NE(nullptr, text.GetText());
    EXPECT_STREQ(L"", text.GetText());
}

TEST_F(UiElementTest, TextAbsentOnSecondLoadIsCleared)
{
    MirlUiElementText text;
    ASSERT_TRUE(text.Load(ParseElement(L"<T Text='first'/>")));
    ASSERT_TRUE(text.Load(ParseElement(L"<T/>")));
    EXPECT_STREQ(L"", text.GetText());
}

TEST_F(UiElementTest, InformationTitleIsNullWhenAbsentOrEmpty)
{
    MirlUiElementInformation absent;
    ASSERT_TRUE(absent.Load(ParseElement(L"<I Author='me'/>")));
    EXPECT_EQ(nullptr, absent.GetTitle());
    EXPECT_STREQ(L"me", absent.GetAuthor());

    MirlUiElementInformation empty;
    ASSERT_TRUE(empty.Load(ParseElement(L"<I Title=''/>")));
    EXPECT_EQ(nullptr, empty.GetTitle());
}

TEST_F(UiElementTest, InformationReadsStringsAndLanguage)
{
    MirlUiElementInformation info;
    ASSERT_TRUE(info.Load(ParseElement(L"<Infoes Title='T' Description='D' Author='A' Version='V' Language='2052'/>")));
    EXPECT_STREQ(L"T", info.GetTitle());
    EXPECT_STREQ(L"D", info.GetDescription());
    EXPECT_STREQ(L"A", info.GetAuthor());
    EXPECT_STREQ(L"V", info.GetVersion());
    EXPECT_EQ(2052, info.GetLanguageID());
    MirlUiElementInformation defaults;
    EXPECT_EQ(1033, defaults.GetLanguageID());
}

TEST_F(UiElementTest, AttributeNamesOfElementsAreCaseSensitive)
{
    MirlUiElementColor color;
    ASSERT_TRUE(color.Load(ParseElement(L"<C red='10' RED='11'/>")));
    EXPECT_EQ(0, color.R());
}

TEST_F(UiElementTest, IsElementIgnoresCase)
{
    MirlUiElementText text;
    text.SetName(L"TxtOpen");
    EXPECT_TRUE(text.IsElement(L"txtopen"));
    EXPECT_TRUE(text.IsElement(L"TXTOPEN"));
    EXPECT_FALSE(text.IsElement(L"TxtOpe"));
}

TEST_F(UiElementTest, CopiesCopyEveryField)
{
    MirlUiElementFont font;
    ASSERT_TRUE(font.Load(ParseElement(L"<F FamilyName='Tahoma' Height='30' Weight='700'/>")));
    MirlUiElementFont copy(font);
    EXPECT_STREQ(L"F", copy.GetName());
    EXPECT_STREQ(L"Tahoma", copy.GetFamilyName());
    EXPECT_EQ(30, copy.GetHeight());
    EXPECT_NE(font.GetFamilyName(), copy.GetFamilyName());
    MirlUiElementColor color;
    ASSERT_TRUE(color.Load(ParseElement(L"<C Red='1' Green='2' Blue='3' Alpha='4'/>")));
    MirlUiElementColor assigned;
    assigned = color;
    EXPECT_EQ(0x04030201UL, assigned.GetDWORD());
}
