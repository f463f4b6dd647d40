#include "MirlTestSupport.h"
#include "Ostra.h"

#include <gtest/gtest.h>

#include <cwchar>

TEST(MirlException, DefaultConstructedAnswersMinusOneAndNull)
{
    MirlException e;
    EXPECT_EQ(-1, e.error());
    EXPECT_EQ(nullptr, e.what());
}

TEST(MirlException, CodeOnlyKeepsCodeAndHasNoText)
{
    MirlException e(7);
    EXPECT_EQ(7, e.error());
    EXPECT_EQ(nullptr, e.what());
}

TEST(MirlException, WideTextIsCopiedAndCodeStaysMinusOne)
{
    wchar_t text[] = L"package";
    const wchar_t *message = text;
    MirlException e(message);
    text[0] = L'X';
    EXPECT_EQ(-1, e.error());
    ASSERT_NE(nullptr, e.what());
    EXPECT_STREQ(L"package", e.what());
}

TEST(MirlException, NullWideTextGivesNullMessage)
{
    const wchar_t *message = nullptr;
    MirlException e(3, message);
    EXPECT_EQ(3, e.error());
    EXPECT_EQ(nullptr, e.what());
}

TEST(MirlException, NarrowTextIsWidenedIntoCompositeCharacters)
{
    const char *message = "Caf\xe9";  // e-acute in code page 1252
    MirlException e(5, message);
    EXPECT_EQ(5, e.error());
    // MB_COMPOSITE writes a precomposed letter as base letter and combining accent.
    EXPECT_STREQ(L"Cafe\u0301", e.what());
}

TEST(MirlException, PlainNarrowTextKeepsCodeMinusOne)
{
    const char *message = "x.zip";
    MirlException e(message);
    EXPECT_EQ(-1, e.error());
    EXPECT_STREQ(L"x.zip", e.what());
}

TEST(MirlException, CopyHasOwnTextThatOutlivesTheSource)
{
    MirlException *source = new MirlException(2, L"copied text");
    MirlException copy(*source);
    EXPECT_NE(source->what(), copy.what());
    delete source;
    EXPECT_EQ(2, copy.error());
    EXPECT_STREQ(L"copied text", copy.what());
}

TEST(MirlException, AssignmentCopiesCodeAndText)
{
    MirlException target(1, L"old");
    MirlException source(9, L"new");
    target = source;
    EXPECT_EQ(9, target.error());
    EXPECT_STREQ(L"new", target.what());
    EXPECT_NE(source.what(), target.what());
    target = target;
    EXPECT_STREQ(L"new", target.what());
}

TEST(MirlException, RaiseWithNarrowTextThrowsWideText)
{
    try {
        MIRL::RaiseMirlException(1, "x.zip");
        FAIL() << "did not throw";
    } catch (const MirlException &e) {
        EXPECT_EQ(1, e.error());
        EXPECT_STREQ(L"x.zip", e.what());
    }
}

TEST(MirlException, RaiseWithCodeOnlyThrowsCodeAndNullText)
{
    try {
        MIRL::RaiseMirlException(42);
        FAIL() << "did not throw";
    } catch (const MirlException &e) {
        EXPECT_EQ(42, e.error());
        EXPECT_EQ(nullptr, e.what());
    }
}

TEST(MirlException, RaiseWithWideTextThrowsIt)
{
    try {
        MIRL::RaiseMirlException(4, L"wide");
        FAIL() << "did not throw";
    } catch (const MirlException &e) {
        EXPECT_EQ(4, e.error());
        EXPECT_STREQ(L"wide", e.what());
    }
}

TEST(OstraWin32Error, RaiseCarriesCodeAndSystemText)
{
    try {
        RaiseWin32Error(ERROR_FILE_NOT_FOUND);
        FAIL() << "did not throw";
    } catch (const OstraWin32Error &e) {
        EXPECT_EQ(static_cast<unsigned long>(ERROR_FILE_NOT_FOUND), e.code());
        wchar_t expected[512] = {};
        DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                                      ERROR_FILE_NOT_FOUND, 0, expected, 512, nullptr);
        ASSERT_GT(length, 0u);
        while (length > 0 && (expected[length - 1] == L'\n' || expected[length - 1] == L'\r' || expected[length - 1] == L' ')) {
            expected[--length] = 0;
        }
        EXPECT_STREQ(expected, e.what());
        EXPECT_GT(wcslen(e.what()), 0u);
    }
}

TEST(OstraWin32Error, UnknownCodeStillHasText)
{
    OstraWin32Error e(0xDEAD0001UL);
    EXPECT_STREQ(L"Unknown error 0xDEAD0001", e.what());
}
