#include "MirlPixelTest.h"

#include <gtest/gtest.h>

#include <string>

using mirltest::Dib;
using mirltest::GoldenOptions;
using mirltest::MatchesGolden;
using mirltest::PaintRoute;
using mirltest::RenderWindow;

namespace {

const int kWidth = 32;
const int kHeight = 24;

const DWORD kRed = 0xE02020;
const DWORD kGreen = 0x20C040;
const DWORD kBlue = 0x2040E0;
const DWORD kWhite = 0xFFFFFF;
const DWORD kFrame = 0x101010;

void FillSolid(HDC dc, int left, int top, int right, int bottom, DWORD rgb)
{
    HBRUSH brush = CreateSolidBrush(RGB((rgb >> 16) & 0xFF, (rgb >> 8) & 0xFF, rgb & 0xFF));
    RECT rect = {left, top, right, bottom};
    FillRect(dc, &rect, brush);
    DeleteObject(brush);
}

// Four coloured quarters inside a one-pixel frame.
void DrawSwatch(HDC dc)
{
    FillSolid(dc, 0, 0, kWidth, kHeight, kFrame);
    FillSolid(dc, 1, 1, kWidth / 2, kHeight / 2, kRed);
    FillSolid(dc, kWidth / 2, 1, kWidth - 1, kHeight / 2, kGreen);
    FillSolid(dc, 1, kHeight / 2, kWidth / 2, kHeight - 1, kBlue);
    FillSolid(dc, kWidth / 2, kHeight / 2, kWidth - 1, kHeight - 1, kWhite);
}

// A window that paints the swatch through one handler for WM_PAINT, with or without a DC in
// wParam, and WM_PRINTCLIENT.
LRESULT CALLBACK SwatchProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_PAINT:
    case WM_PRINTCLIENT:
        if (wParam != 0) {
            DrawSwatch(reinterpret_cast<HDC>(wParam));
        } else {
            PAINTSTRUCT ps;
            DrawSwatch(BeginPaint(hwnd, &ps));
            EndPaint(hwnd, &ps);
        }
        return 0;
    case WM_ERASEBKGND:
        return 1;
    default:
        return DefWindowProcW(hwnd, message, wParam, lParam);
    }
}

// A window that paints only through BeginPaint, the way a window unaware of memory DCs does.
LRESULT CALLBACK ScreenOnlyProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_PAINT) {
        PAINTSTRUCT ps;
        DrawSwatch(BeginPaint(hwnd, &ps));
        EndPaint(hwnd, &ps);
        return 0;
    }
    return DefWindowProcW(hwnd, message, wParam, lParam);
}

HWND CreateTestWindow(const wchar_t *className, WNDPROC proc)
{
    WNDCLASSEXW wc = {};
    wc.cbSize = sizeof(wc);
    wc.lpfnWndProc = proc;
    wc.hInstance = GetModuleHandleW(nullptr);
    wc.lpszClassName = className;
    RegisterClassExW(&wc); // a second registration fails harmlessly
    return CreateWindowExW(0, className, L"", WS_POPUP | WS_VISIBLE, 50, 50, kWidth, kHeight, nullptr, nullptr,
                           GetModuleHandleW(nullptr), nullptr);
}

// Sets an environment variable for a scope and puts the old value back.
class ScopedEnvironment {
public:
    ScopedEnvironment(const wchar_t *name, const wchar_t *value) : m_Name(name)
    {
        wchar_t old[64] = {};
        m_Had = GetEnvironmentVariableW(name, old, 64) > 0;
        m_Old = old;
        SetEnvironmentVariableW(name, value);
    }
    ~ScopedEnvironment() { SetEnvironmentVariableW(m_Name.c_str(), m_Had ? m_Old.c_str() : nullptr); }

private:
    std::wstring m_Name;
    std::wstring m_Old;
    bool m_Had = false;
};

bool FileExists(const std::wstring &path)
{
    return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

class SwatchTest : public mirltest::PixelTest {
protected:
    void SetUp() override
    {
        mirltest::PixelTest::SetUp();
        if (HasFatalFailure())
            return;
        m_Window = CreateTestWindow(L"SupportSwatch", SwatchProc);
        ASSERT_NE(nullptr, m_Window);
    }
    void TearDown() override { DestroyWindow(m_Window); }

    HWND m_Window = nullptr;
};

const char kGolden[] = "support_swatch";

// Tests that fail on purpose compare with a copy of the golden under another name and folder,
// so that their .actual.png never stands for the real golden's and is removed afterwards.
class ProbeTest : public SwatchTest {
protected:
    void SetUp() override
    {
        SwatchTest::SetUp();
        if (HasFatalFailure())
            return;
        m_Probe.goldenFolder = mirltest::BinDir() + L"\\golden-probe";
        CreateDirectoryW(m_Probe.goldenFolder.c_str(), nullptr);
        ASSERT_TRUE(CopyFileW((mirltest::GoldenFolder() + L"\\support_swatch.png").c_str(), Golden().c_str(), FALSE));
    }
    void TearDown() override
    {
        DeleteFileW(Golden().c_str());
        DeleteFileW(ActualPath().c_str());
        RemoveDirectoryW(m_Probe.goldenFolder.c_str());
        SwatchTest::TearDown();
    }
    std::wstring Golden() const { return m_Probe.goldenFolder + L"\\support_probe.png"; }
    static std::wstring ActualPath() { return mirltest::BinDir() + L"\\support_probe.actual.png"; }
    // The probe's options with one field changed.
    template <class Field, class Value> GoldenOptions With(Field GoldenOptions::*field, Value value) const
    {
        GoldenOptions options = m_Probe;
        options.*field = value;
        return options;
    }

    GoldenOptions m_Probe;
};

const char kProbe[] = "support_probe";

} // namespace

TEST_F(SwatchTest, RenderedAtClientSizeWithKnownColours)
{
    Dib picture = RenderWindow(m_Window);
    ASSERT_EQ(kWidth, picture.width());
    ASSERT_EQ(kHeight, picture.height());
    EXPECT_EQ(kFrame, picture.Pixel(0, 0));
    EXPECT_EQ(kRed, picture.Pixel(1, 1));
    EXPECT_EQ(kGreen, picture.Pixel(kWidth - 2, 1));
    EXPECT_EQ(kBlue, picture.Pixel(1, kHeight - 2));
    EXPECT_EQ(kWhite, picture.Pixel(kWidth - 2, kHeight - 2));
    EXPECT_EQ(kFrame, picture.Pixel(kWidth - 1, kHeight - 1));
    // GDI's FillRect leaves alpha at 0.
    EXPECT_EQ(kRed, picture.RawPixel(1, 1));
}

TEST_F(SwatchTest, PrintClientMatchesGolden)
{
    EXPECT_TRUE(MatchesGolden(RenderWindow(m_Window), kGolden));
}

TEST_F(SwatchTest, PaintWithDcMatchesTheSameGolden)
{
    mirltest::RenderOptions options;
    options.route = PaintRoute::PaintWithDc;
    EXPECT_TRUE(MatchesGolden(RenderWindow(m_Window, options), kGolden));
}

TEST_F(ProbeTest, OnePixelChangeIsCaughtAndTheActualPictureWritten)
{
    Dib picture = RenderWindow(m_Window);
    picture.SetPixel(7, 5, 0x00123456);

    ::testing::AssertionResult result = MatchesGolden(picture, kProbe, m_Probe);

    EXPECT_FALSE(result);
    const std::string message = result.message();
    EXPECT_NE(std::string::npos, message.find("1 pixel(s) differ by more than 2 (0 allowed)")) << message;
    EXPECT_NE(std::string::npos, message.find("first at (7, 5): golden 0xE02020, actual 0x123456")) << message;
    EXPECT_NE(std::string::npos, message.find("support_probe.actual.png")) << message;
    ASSERT_TRUE(FileExists(ActualPath()));
    Dib written = mirltest::LoadPng(ActualPath());
    ASSERT_FALSE(written.empty());
    EXPECT_EQ(0, mirltest::ComparePixels(picture, written, 0).count);

    // A later match removes the stale picture.
    EXPECT_TRUE(MatchesGolden(RenderWindow(m_Window), kProbe, m_Probe));
    EXPECT_FALSE(FileExists(ActualPath()));
}

TEST_F(ProbeTest, ToleranceIsPerChannelAndDifferencesCanBeAllowed)
{
    Dib picture = RenderWindow(m_Window);
    picture.SetPixel(1, 1, kRed + 0x020000); // red channel +2
    picture.SetPixel(2, 1, kRed - 0x000002); // blue channel -2
    EXPECT_TRUE(MatchesGolden(picture, kProbe, m_Probe));

    picture.SetPixel(3, 1, kRed + 0x000300); // green channel +3
    EXPECT_FALSE(MatchesGolden(picture, kProbe, m_Probe));
    EXPECT_TRUE(MatchesGolden(picture, kProbe, With(&GoldenOptions::tolerance, 3)));
    EXPECT_TRUE(MatchesGolden(picture, kProbe, With(&GoldenOptions::allowedDifferences, 1)));
    GoldenOptions exact = With(&GoldenOptions::tolerance, 0);
    exact.allowedDifferences = 2;
    ::testing::AssertionResult result = MatchesGolden(picture, kProbe, exact);
    EXPECT_FALSE(result);
    EXPECT_NE(std::string::npos, std::string(result.message()).find("3 pixel(s) differ by more than 0 (2 allowed)"))
        << result.message();
}

TEST_F(ProbeTest, AlphaIsIgnoredUnlessAsked)
{
    // The golden, saved opaque, loads with alpha FF; GDI painted alpha 00.
    Dib picture = RenderWindow(m_Window);
    EXPECT_TRUE(MatchesGolden(picture, kProbe, m_Probe));
    ::testing::AssertionResult result = MatchesGolden(picture, kProbe, With(&GoldenOptions::compareAlpha, true));
    EXPECT_FALSE(result);
    EXPECT_NE(std::string::npos, std::string(result.message()).find("golden 0xFF101010, actual 0x00101010"))
        << result.message();
}

TEST_F(ProbeTest, SizeMismatchAndMissingGoldenFail)
{
    Dib smaller(kWidth - 1, kHeight);
    smaller.Fill(kRed);
    ::testing::AssertionResult size = MatchesGolden(smaller, kProbe, m_Probe);
    EXPECT_FALSE(size);
    EXPECT_NE(std::string::npos, std::string(size.message()).find("golden 32x24, actual 31x24")) << size.message();

    DeleteFileW(Golden().c_str());
    ::testing::AssertionResult missing = MatchesGolden(RenderWindow(m_Window), kProbe, m_Probe);
    EXPECT_FALSE(missing);
    EXPECT_NE(std::string::npos, std::string(missing.message()).find("no golden at")) << missing.message();
}

TEST_F(SwatchTest, UpdateSwitchWritesTheGoldenAndFails)
{
    GoldenOptions scratch;
    scratch.goldenFolder = mirltest::BinDir() + L"\\golden-scratch";
    const std::wstring written = scratch.goldenFolder + L"\\sub\\swatch.png";
    DeleteFileW(written.c_str());
    Dib picture = RenderWindow(m_Window);
    {
        ScopedEnvironment update(L"MIRL_UPDATE_GOLDENS", L"1");
        ::testing::AssertionResult result = MatchesGolden(picture, "sub/swatch", scratch);
        EXPECT_FALSE(result);
        EXPECT_NE(std::string::npos, std::string(result.message()).find("regenerated")) << result.message();
    }
    ASSERT_TRUE(FileExists(written));
    {
        ScopedEnvironment normal(L"MIRL_UPDATE_GOLDENS", nullptr);
        EXPECT_TRUE(MatchesGolden(picture, "sub/swatch", scratch));
    }
    DeleteFileW(written.c_str());
    RemoveDirectoryW((scratch.goldenFolder + L"\\sub").c_str());
    RemoveDirectoryW(scratch.goldenFolder.c_str());
}

TEST_F(SwatchTest, RenderingIsNoScreenGrab)
{
    // A window that paints only on screen leaves the memory picture as it was filled.
    HWND screenOnly = CreateTestWindow(L"SupportScreenOnly", ScreenOnlyProc);
    UpdateWindow(screenOnly);
    Dib picture = RenderWindow(screenOnly);
    DestroyWindow(screenOnly);
    Dib background(kWidth, kHeight);
    background.Fill(mirltest::RenderOptions().background);
    EXPECT_EQ(0, mirltest::ComparePixels(background, picture, 0).count);
}

TEST_F(SwatchTest, SavedPatternLoadsBackUnchanged)
{
    Dib checker(10, 6);
    checker.FillChecker(0xFF102030, 0xFFF0E0D0, 2);
    checker.FillRect(8, 4, 20, 20, 0xFF00FF00);
    EXPECT_EQ(0x102030u, checker.Pixel(0, 0));
    EXPECT_EQ(0xF0E0D0u, checker.Pixel(2, 0));
    EXPECT_EQ(0x00FF00u, checker.Pixel(9, 5));

    const std::wstring path = mirltest::BinDir() + L"\\support_checker.png";
    ASSERT_TRUE(mirltest::SavePng(checker, path));
    Dib loaded = mirltest::LoadPng(path);
    DeleteFileW(path.c_str());
    ASSERT_EQ(10, loaded.width());
    ASSERT_EQ(6, loaded.height());
    EXPECT_EQ(0, mirltest::ComparePixels(checker, loaded, 0, true).count);
}

TEST_F(SwatchTest, AnyBitmapCanBeReadAndSaved)
{
    HDC screen = GetDC(nullptr);
    HBITMAP ddb = CreateCompatibleBitmap(screen, 5, 4);
    HDC dc = CreateCompatibleDC(screen);
    ReleaseDC(nullptr, screen);
    HGDIOBJ old = SelectObject(dc, ddb);
    FillSolid(dc, 0, 0, 5, 4, kBlue);
    FillSolid(dc, 4, 3, 5, 4, kWhite);
    SelectObject(dc, old);
    DeleteDC(dc);

    Dib copy = mirltest::ReadBitmap(ddb);
    ASSERT_EQ(5, copy.width());
    EXPECT_EQ(kBlue, copy.Pixel(0, 0));
    EXPECT_EQ(kWhite, copy.Pixel(4, 3));
    const std::wstring path = mirltest::BinDir() + L"\\support_ddb.png";
    EXPECT_TRUE(mirltest::SavePng(ddb, path));
    EXPECT_EQ(kWhite, mirltest::LoadPng(path).Pixel(4, 3));
    DeleteFileW(path.c_str());
    DeleteObject(ddb);
}
