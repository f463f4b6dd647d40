#include "MirlTestSupport.h"

#include <gtest/gtest.h>

#include <string>

using mirltest::SkinPath;
using mirltest::TextOf;

namespace {

std::wstring MenuText(HMENU menu, UINT position)
{
    wchar_t text[1024] = {};
    GetMenuStringW(menu, position, text, 1024, MF_BYPOSITION);
    return text;
}

// Each test starts and ends the library itself.
class EntryTest : public ::testing::Test {
protected:
    void TearDown() override { MirlUnIntialize(); }
};

} // namespace

TEST_F(EntryTest, InitializeLoadsTheSkinInTheGivenLanguage)
{
    MirlIntialize(SkinPath(L"basic").c_str(), 2052);
    MirlUI *ui = MirlUI::Instance();
    ASSERT_NE(nullptr, ui);
    EXPECT_EQ(2052u, ui->GetCurrentLanguage());
    EXPECT_STREQ(L"\u6253\u5F00", TextOf(ui->GetUiElement(L"TxtOpen", UI_ELEMENT_TEXT)));
    EXPECT_STREQ(L"English only", TextOf(ui->GetUiElement(L"TxtOnlyEnglish", UI_ELEMENT_TEXT)));
    EXPECT_EQ(nullptr, ui->GetUiElement(L"TxtOnlyEnglish", UI_ELEMENT_TEXT, 2052));
}

TEST_F(EntryTest, IsValidIsFalseAfterSuccessfulInitialize)
{
    MirlIntialize(SkinPath(L"basic").c_str(), 1033);
    EXPECT_FALSE(MirlUI::Instance()->IsValid());
}

TEST_F(EntryTest, UnInitializeReleasesTheSingleton)
{
    MirlIntialize(SkinPath(L"basic").c_str(), 2052);
    MirlUnIntialize();
    // A new singleton is a fresh one: English, and empty.
    MirlUI *fresh = MirlUI::Instance();
    EXPECT_EQ(1033u, fresh->GetCurrentLanguage());
    EXPECT_EQ(nullptr, fresh->GetUiElement(L"TxtOpen", UI_ELEMENT_TEXT));
    MirlUI::Release();
}

TEST_F(EntryTest, MissingPackageThrowsCodeOneWithThePath)
{
    std::wstring missing = mirltest::BinDir() + L"\\skins\\missing-package.zip";
    try {
        MirlIntialize(missing.c_str(), 1033);
        FAIL() << "did not throw";
    } catch (const MirlException &e) {
        EXPECT_EQ(MIRL_ERROR_PACKAGE_OPEN, e.error());
        EXPECT_STREQ(missing.c_str(), e.what());
    }
}

TEST_F(EntryTest, ConversionFailureLeavesInitializeAsComErrorWithItsCode)
{
    try {
        MirlIntialize(SkinPath(L"bad_color").c_str(), 1033);
        FAIL() << "did not throw";
    } catch (const _com_error &e) {
        EXPECT_EQ(DISP_E_OVERFLOW, e.Error());
    }
    EXPECT_NE(nullptr, MirlUI::Instance()->GetUiElement(L"ClrGood", UI_ELEMENT_COLOR));
}

TEST_F(EntryTest, MenuResetReplacesNamesWithTextsInSubmenusToo)
{
    MirlIntialize(SkinPath(L"basic").c_str(), 2052);
    HMENU menu = CreatePopupMenu();
    HMENU sub = CreatePopupMenu();
    AppendMenuW(menu, MF_STRING, 1, L"TxtOpen");
    AppendMenuW(menu, MF_STRING, 2, L"NotAName");
    AppendMenuW(menu, MF_SEPARATOR, 0, nullptr);
    AppendMenuW(sub, MF_STRING, 3, L"TxtOnlyEnglish");
    AppendMenuW(menu, MF_POPUP | MF_STRING, reinterpret_cast<UINT_PTR>(sub), L"TxtOnlyChinese");

    MirlMenuReset(menu);

    EXPECT_EQ(L"\u6253\u5F00", MenuText(menu, 0));
    EXPECT_EQ(L"NotAName", MenuText(menu, 1));
    EXPECT_EQ(L"\u4E2D\u6587", MenuText(menu, 3));
    EXPECT_EQ(L"English only", MenuText(sub, 0));
    DestroyMenu(menu);
}

TEST_F(EntryTest, MenuResetTwiceFindsNothingTheSecondTime)
{
    MirlIntialize(SkinPath(L"basic").c_str(), 2052);
    HMENU menu = CreatePopupMenu();
    AppendMenuW(menu, MF_STRING, 1, L"TxtOpen");
    MirlMenuReset(menu);
    MirlUI::Instance()->SetCurrentLanguage(1033);
    // The item no longer names an element, so the new language doesn't reach it.
    MirlMenuReset(menu);
    EXPECT_EQ(L"\u6253\u5F00", MenuText(menu, 0));
    DestroyMenu(menu);
}

TEST_F(EntryTest, LanguageChangeAfterMenuResetKeepsTheOldTexts)
{
    MirlIntialize(SkinPath(L"basic").c_str(), 2052);
    HMENU menu = CreatePopupMenu();
    AppendMenuW(menu, MF_STRING, 1, L"TxtOpen");
    MirlMenuReset(menu);
    MirlUI::Instance()->SetCurrentLanguage(1033);
    EXPECT_STREQ(L"Open", TextOf(MirlUI::Instance()->GetUiElement(L"TxtOpen", UI_ELEMENT_TEXT)));
    EXPECT_EQ(L"\u6253\u5F00", MenuText(menu, 0));
    DestroyMenu(menu);
}

TEST_F(EntryTest, MenuItemLongerThanTheBufferIsLeftAsItIs)
{
    MirlIntialize(SkinPath(L"basic").c_str(), 1033);
    std::wstring longName(600, L'W');
    HMENU menu = CreatePopupMenu();
    AppendMenuW(menu, MF_STRING, 1, longName.c_str());
    AppendMenuW(menu, MF_STRING, 2, L"TxtOpen");
    MirlMenuReset(menu);
    EXPECT_EQ(longName, MenuText(menu, 0));
    EXPECT_EQ(L"Open", MenuText(menu, 1));
    DestroyMenu(menu);
}

TEST_F(EntryTest, UnInitializeTwiceIsHarmless)
{
    MirlIntialize(SkinPath(L"basic").c_str(), 1033);
    MirlUnIntialize();
    MirlUnIntialize();
}
