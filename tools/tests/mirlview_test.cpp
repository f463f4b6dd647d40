// mirlview as a skin author runs it: exit codes, the template list, pictures compared pixel by
// pixel with what the templates say, and the interactive window closed from outside.
#include "MirlPixelTest.h"
#include "MirlToolRunner.h"

#include <objbase.h>

#include <algorithm>
using std::max;
using std::min;
#include <gdiplus.h>

#include <gtest/gtest.h>

#include <map>

using mirltooltest::Quote;
using mirltooltest::RunResult;
using mirltooltest::RunTool;
using mirltooltest::Skin;

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

const COLORREF kFrame = RGB(10, 20, 30);
const COLORREF kRed = RGB(200, 0, 0);
const COLORREF kGreen = RGB(0, 180, 0);
const COLORREF kBlue = RGB(0, 0, 220);

// The picture a template should make: a background and rectangles painted over it in order.
struct Expected {
    int width;
    int height;
    COLORREF background;
    struct Box {
        RECT rect;
        COLORREF color;
    };
    std::vector<Box> boxes;

    COLORREF At(int x, int y) const
    {
        COLORREF color = background;
        for (const Box &box : boxes) {
            POINT p = {x, y};
            if (PtInRect(&box.rect, p)) {
                color = box.color;
            }
        }
        return color;
    }
};

std::wstring TempPng(const wchar_t *name)
{
    wchar_t folder[MAX_PATH] = {};
    GetTempPathW(MAX_PATH, folder);
    return std::wstring(folder) + L"mirlview_" + name + L"_" + std::to_wstring(GetCurrentProcessId()) + L".png";
}

void ExpectPicture(const std::wstring &path, const Expected &expected)
{
    Gdiplus::Bitmap bitmap(path.c_str());
    ASSERT_EQ(Gdiplus::Ok, bitmap.GetLastStatus()) << "no picture at " << std::string(path.begin(), path.end());
    ASSERT_EQ(static_cast<UINT>(expected.width), bitmap.GetWidth());
    ASSERT_EQ(static_cast<UINT>(expected.height), bitmap.GetHeight());
    int wrong = 0;
    for (int y = 0; y < expected.height; ++y) {
        for (int x = 0; x < expected.width; ++x) {
            Gdiplus::Color color;
            bitmap.GetPixel(x, y, &color);
            COLORREF got = RGB(color.GetR(), color.GetG(), color.GetB());
            COLORREF want = expected.At(x, y);
            if (got != want && ++wrong <= 5) {
                ADD_FAILURE() << "pixel (" << x << ", " << y << "): got 0x" << std::hex << got << ", want 0x" << want;
            }
        }
    }
    EXPECT_EQ(0, wrong);
}

// Frame of the view fixture: a red child with a blue grandchild clipped at its edge, a green
// corner laid out from the right and bottom, a hidden child that doesn't show and a
// transparent one that shows the frame.
Expected FramePicture(int width, int height)
{
    Expected picture{width, height, kFrame, {}};
    picture.boxes.push_back({{4, 4, 24, 24}, kRed});
    picture.boxes.push_back({{9, 9, 24, 15}, kBlue});
    picture.boxes.push_back({{width - 16, height - 14, width - 4, height - 4}, kGreen});
    return picture;
}

template <class OnStart>
RunResult View(const std::wstring &arguments, OnStart started)
{
    return RunTool(L"mirlview.exe", Quote(Skin(L"view_basic")) + L" " + arguments, started);
}

RunResult View(const std::wstring &arguments)
{
    return View(arguments, [](const PROCESS_INFORMATION &) {});
}

// Renders with the arguments into a PNG of its own and compares every pixel.
void RenderAndExpect(const wchar_t *name, const std::wstring &arguments, const Expected &picture)
{
    std::wstring png = TempPng(name);
    RunResult result = View(arguments + L" --png " + Quote(png));
    ASSERT_TRUE(result.finished);
    EXPECT_EQ(0u, result.exitCode);
    EXPECT_TRUE(result.err.empty());
    ExpectPicture(png, picture);
    DeleteFileW(png.c_str());
}

} // namespace

TEST(MirlView, RendersATopLevelTemplateAtItsOwnSize)
{
    RenderAndExpect(L"frame", L"Frame", FramePicture(64, 48));
}

TEST(MirlView, LaysTheTreeOutAtTheRequestedSize)
{
    RenderAndExpect(L"frame_sized", L"Frame --size 100x60", FramePicture(100, 60));
}

TEST(MirlView, AChildTemplateFillsAHostOfTheRequestedSize)
{
    Expected picture{80, 50, kGreen, {}};
    picture.boxes.push_back({{74, 2, 78, 6}, kBlue});
    RenderAndExpect(L"panel", L"Panel --size 80x50", picture);
}

TEST(MirlView, StateOfATreeWithoutButtonsChangesNothing)
{
    std::wstring png = TempPng(L"hover");
    RunResult result = View(L"Frame --state hover --png " + Quote(png));
    ASSERT_TRUE(result.finished);
    EXPECT_EQ(0u, result.exitCode);
    EXPECT_TRUE(result.err.empty());
    ExpectPicture(png, FramePicture(64, 48));
    DeleteFileW(png.c_str());
}

// "selected" moves a toolbar's selection to its second tab: the active face leaves the first
// tab and shows on the second.
TEST(MirlView, SelectedStateShowsTheSecondTabsFace)
{
    Gdiplus::GdiplusStartupInput input;
    ULONG_PTR token = 0;
    Gdiplus::GdiplusStartup(&token, &input, nullptr);
    std::map<std::wstring, std::pair<COLORREF, COLORREF>> faces;
    for (const wchar_t *state : {L"normal", L"selected"}) {
        std::wstring png = TempPng(state);
        RunResult result = RunTool(L"mirlview.exe", Quote(Skin(L"containers")) + L" ViewTabs --state " + state +
                                                        L" --png " + Quote(png));
        ASSERT_TRUE(result.finished) << state;
        ASSERT_EQ(0u, result.exitCode) << state;
        {
            Gdiplus::Bitmap bitmap(png.c_str());
            ASSERT_EQ(Gdiplus::Ok, bitmap.GetLastStatus());
            Gdiplus::Color first;
            Gdiplus::Color second;
            // The first tab stands at x 10, the second at x 100; both faces start orange.
            bitmap.GetPixel(12, 2, &first);
            bitmap.GetPixel(102, 2, &second);
            faces[state] = {RGB(first.GetR(), first.GetG(), first.GetB()),
                            RGB(second.GetR(), second.GetG(), second.GetB())};
        }
        DeleteFileW(png.c_str());
    }
    const COLORREF orange = RGB(255, 140, 0);
    EXPECT_EQ(orange, faces[L"normal"].first);
    EXPECT_NE(orange, faces[L"normal"].second);
    EXPECT_NE(orange, faces[L"selected"].first);
    // A tab without a face shows its background, the same in both pictures.
    EXPECT_EQ(faces[L"normal"].second, faces[L"selected"].first);
    EXPECT_EQ(orange, faces[L"selected"].second);
    Gdiplus::GdiplusShutdown(token);
}

// The sample player's Play button, a four-state picture button, in each state: the inside of
// its disc left of the glyph is dark glass when idle, lighter under the pointer, accent blue
// when held, and dimmed when disabled.
TEST(MirlView, StatesArePaintedOnTheButtons)
{
    std::map<std::wstring, COLORREF> disc;
    for (const wchar_t *state : {L"normal", L"hover", L"pressed", L"disabled"}) {
        std::wstring png = TempPng(state);
        RunResult result = RunTool(L"mirlview.exe", Quote(Skin(L"sample")) + L" MainFrame --size 480x300 --state " +
                                                        state + L" --png " + Quote(png));
        ASSERT_TRUE(result.finished) << state;
        ASSERT_EQ(0u, result.exitCode) << state;
        Gdiplus::Bitmap bitmap(png.c_str());
        ASSERT_EQ(Gdiplus::Ok, bitmap.GetLastStatus());
        Gdiplus::Color color;
        // Play stands at (72, 112), 36 by 36; (80, 130) is inside the disc, left of the glyph.
        // A held button's image sinks one pixel, which keeps the point inside.
        bitmap.GetPixel(80, 130, &color);
        disc[state] = RGB(color.GetR(), color.GetG(), color.GetB());
        DeleteFileW(png.c_str());
    }
    auto blue = [](COLORREF c) { return static_cast<int>(GetBValue(c)); };
    auto light = [](COLORREF c) { return GetRValue(c) + GetGValue(c) + GetBValue(c); };
    EXPECT_GT(light(disc[L"hover"]), light(disc[L"normal"]));
    EXPECT_GT(blue(disc[L"pressed"]), 180);
    EXPECT_GT(blue(disc[L"pressed"]), static_cast<int>(GetRValue(disc[L"pressed"])) + 100);
    EXPECT_LT(blue(disc[L"normal"]), 140);
    EXPECT_LT(light(disc[L"disabled"]), light(disc[L"normal"]));
}

// The range fixture's scroll bar, slider and seek bar in one window, in each state: the scroll
// bar's thumb takes its three forms and vanishes when disabled; the slider's thumb glows under
// the pointer and darkens when held; a slider disabled after creation keeps its look.
TEST(MirlView, StatesArePaintedOnTheRangeControls)
{
    struct Row {
        const wchar_t *state;
        COLORREF bar;
        COLORREF slider;
    };
    // (15, 50) is inside the bar's thumb (10-60 of the bar at 10, 10); (98, 13) inside the
    // slider's thumb (52-64 of the slider at 40, 10).
    const Row rows[] = {{L"normal", RGB(120, 230, 120), RGB(30, 80, 220)},
                        {L"hover", RGB(200, 140, 80), RGB(120, 180, 255)},
                        {L"pressed", RGB(0, 80, 160), RGB(10, 30, 120)},
                        {L"disabled", RGB(220, 220, 220), RGB(30, 80, 220)}};
    for (const Row &row : rows) {
        std::wstring png = TempPng(row.state);
        RunResult result = RunTool(L"mirlview.exe", Quote(Skin(L"range")) + L" RangeFrame --state " + row.state +
                                                        L" --png " + Quote(png));
        ASSERT_TRUE(result.finished) << row.state;
        ASSERT_EQ(0u, result.exitCode) << row.state;
        {
            Gdiplus::Bitmap bitmap(png.c_str());
            ASSERT_EQ(Gdiplus::Ok, bitmap.GetLastStatus());
            Gdiplus::Color bar;
            Gdiplus::Color slider;
            bitmap.GetPixel(15, 50, &bar);
            bitmap.GetPixel(98, 13, &slider);
            EXPECT_EQ(row.bar, RGB(bar.GetR(), bar.GetG(), bar.GetB())) << row.state;
            EXPECT_EQ(row.slider, RGB(slider.GetR(), slider.GetG(), slider.GetB())) << row.state;
        }
        DeleteFileW(png.c_str());
    }
}

// Renders a window of the sample skin at 480 x 300 and compares it with its golden picture.
static void ExpectSampleWindowMatches(const wchar_t *window, const char *golden)
{
    Gdiplus::GdiplusStartupInput input;
    ULONG_PTR token = 0;
    Gdiplus::GdiplusStartup(&token, &input, nullptr);
    std::wstring png = TempPng(window);
    RunResult result = RunTool(L"mirlview.exe", Quote(Skin(L"sample")) + L" " + window + L" --size 480x300 --png " + Quote(png));
    EXPECT_TRUE(result.finished);
    EXPECT_EQ(0u, result.exitCode);
    EXPECT_TRUE(mirltest::MatchesGolden(mirltest::LoadPng(png), golden));
    DeleteFileW(png.c_str());
    Gdiplus::GdiplusShutdown(token);
}

// The sample player's main window, as the library paints it, matches its golden picture.
TEST(MirlView, SampleMainWindowMatchesItsGolden)
{
    ExpectSampleWindowMatches(L"MainFrame", "sample_mainframe");
}

TEST(MirlView, ListsTheTemplates)
{
    RunResult result = View(L"--list");
    ASSERT_TRUE(result.finished);
    EXPECT_EQ(0u, result.exitCode);
    std::vector<std::wstring> expected = {L"Frame\tWINDOW\t64x48\t1033", L"Panel\tWINDOW\t40x30\t1033"};
    EXPECT_EQ(expected, result.out);
}

TEST(MirlView, ExitCodes)
{
    EXPECT_EQ(2u, RunTool(L"mirlview.exe", L"").exitCode);
    EXPECT_EQ(2u, View(L"").exitCode);
    EXPECT_EQ(2u, View(L"Frame --size 0x10 --png x.png").exitCode);
    EXPECT_EQ(2u, View(L"Frame --state glowing --png x.png").exitCode);
    EXPECT_EQ(2u, View(L"Frame --lang").exitCode);

    RunResult missing = RunTool(L"mirlview.exe", Quote(Skin(L"no_such_skin")) + L" Frame --png x.png");
    EXPECT_EQ(3u, missing.exitCode);
    ASSERT_EQ(1u, missing.err.size());
    EXPECT_NE(std::wstring::npos, missing.err[0].find(L"could not be loaded: MirlException code 1: "));

    RunResult broken = RunTool(L"mirlview.exe", Quote(Skin(L"bad_color")) + L" Frame --png x.png");
    EXPECT_EQ(3u, broken.exitCode);
    ASSERT_EQ(1u, broken.err.size());
    EXPECT_NE(std::wstring::npos, broken.err[0].find(L"could not be loaded: COM error 0x8002000A while reading the skin"));

    RunResult absent = View(L"frame --png x.png");
    EXPECT_EQ(4u, absent.exitCode);
    ASSERT_EQ(1u, absent.err.size());
    EXPECT_EQ(L"mirlview: the skin has no template named 'frame' (did you mean 'Frame'?)", absent.err[0]);
}

namespace {

// Waits for the process's visible top-level window, checks its client size and closes it.
void CloseWhenShown(const PROCESS_INFORMATION &process, int width, int height, bool &shown)
{
    HWND found = nullptr;
    for (int i = 0; i < 300 && found == nullptr; ++i) {
        if (WaitForSingleObject(process.hProcess, 50) == WAIT_OBJECT_0) {
            return;
        }
        found = mirltooltest::VisibleWindowOf(process.dwProcessId);
    }
    if (found == nullptr) {
        return;
    }
    shown = true;
    RECT client = {};
    GetClientRect(found, &client);
    EXPECT_EQ(width, client.right);
    EXPECT_EQ(height, client.bottom);
    PostMessageW(found, WM_CLOSE, 0, 0);
}

// Opens the template interactively, closes its window from outside once it shows, and expects
// a clean exit.
void OpenAndClose(const std::wstring &arguments, int width, int height)
{
    bool shown = false;
    RunResult result = View(arguments, [&](const PROCESS_INFORMATION &process) { CloseWhenShown(process, width, height, shown); });
    EXPECT_TRUE(shown);
    ASSERT_TRUE(result.finished);
    EXPECT_EQ(0u, result.exitCode);
}

} // namespace

TEST(MirlView, WithoutPngTheWindowStaysUntilItIsClosed)
{
    OpenAndClose(L"Frame", 64, 48);
}

TEST(MirlView, AChildTemplateOpensInAHostWindowThatClosesToo)
{
    OpenAndClose(L"Panel --size 120x90", 120, 90);
}

namespace {

COLORREF PixelOf(Gdiplus::Bitmap &bitmap, int x, int y)
{
    Gdiplus::Color color;
    bitmap.GetPixel(x, y, &color);
    return RGB(color.GetR(), color.GetG(), color.GetB());
}

} // namespace

// The range fixture's frame: a progress bar at (10, 10), a track bar at (10, 60) with its thumb at
// the start, and a jog wheel at (10, 100) showing frame 0 over its mask.
TEST(MirlView, RendersTheRangeControls)
{
    std::wstring png = TempPng(L"ranges");
    RunResult result = RunTool(L"mirlview.exe", Quote(Skin(L"ranges")) + L" Ranges --png " + Quote(png));
    ASSERT_TRUE(result.finished);
    ASSERT_EQ(0u, result.exitCode);
    Gdiplus::Bitmap bitmap(png.c_str());
    ASSERT_EQ(Gdiplus::Ok, bitmap.GetLastStatus());
    EXPECT_EQ(RGB(240, 240, 232), PixelOf(bitmap, 300, 190));
    // The progress bar's background: left end, the middle's first column, right end.
    EXPECT_EQ(RGB(40, 40, 40), PixelOf(bitmap, 12, 15));
    EXPECT_EQ(RGB(200, 200, 200), PixelOf(bitmap, 60, 15));
    EXPECT_EQ(RGB(120, 120, 120), PixelOf(bitmap, 110, 15));
    // The track bar: its channel band across the middle, the orange thumb at the start, the
    // frame's paper around them.
    int band = 0;
    int thumb = 0;
    for (int y = 60; y < 90; ++y) {
        for (int x = 10; x < 210; ++x) {
            const COLORREF c = PixelOf(bitmap, x, y);
            band += c == RGB(30, 60, 200) ? 1 : 0;
            thumb += c == RGB(255, 128, 0) ? 1 : 0;
        }
    }
    EXPECT_GT(band, 400);
    EXPECT_EQ(11 * 20, thumb);
    EXPECT_EQ(RGB(240, 240, 232), PixelOf(bitmap, 11, 61));
    // The jog wheel: background, mask, frame 0.
    EXPECT_EQ(RGB(20, 30, 60), PixelOf(bitmap, 11, 101));
    EXPECT_EQ(RGB(128, 128, 128), PixelOf(bitmap, 16, 106));
    EXPECT_EQ(RGB(40, 250, 100), PixelOf(bitmap, 30, 120));
    DeleteFileW(png.c_str());
}

// A side panel, an upright splitter and the main area, as laid out by the frame.
TEST(MirlView, RendersASplitterBetweenItsBrothers)
{
    std::wstring png = TempPng(L"split");
    RunResult result = RunTool(L"mirlview.exe", Quote(Skin(L"splitters")) + L" Split --png " + Quote(png));
    ASSERT_TRUE(result.finished);
    ASSERT_EQ(0u, result.exitCode);
    Gdiplus::Bitmap bitmap(png.c_str());
    ASSERT_EQ(Gdiplus::Ok, bitmap.GetLastStatus());
    EXPECT_EQ(RGB(40, 60, 90), PixelOf(bitmap, 50, 50));
    EXPECT_EQ(RGB(250, 250, 250), PixelOf(bitmap, 200, 50));
    // The bar's two lines: accent and white at alpha 0x50 over its black.
    const COLORREF accent = PixelOf(bitmap, 100, 50);
    const COLORREF white = PixelOf(bitmap, 101, 50);
    EXPECT_NEAR(0x5B * 0x50 / 255, GetRValue(accent), 2);
    EXPECT_NEAR(0xE1 * 0x50 / 255, GetBValue(accent), 2);
    EXPECT_NEAR(0x50, GetGValue(white), 2);
    EXPECT_EQ(RGB(250, 250, 250), PixelOf(bitmap, 102, 50));
    DeleteFileW(png.c_str());
}

// The sample skin's library window: side panel, divider and main area, the jog wheel at frame 0,
// an empty scan and the balance at its start. Only in 1033: this machine's fonts have no Chinese
// glyphs, and a picture of empty boxes would prove nothing (mirllint counts the 2052 texts).
TEST(MirlView, SampleLibraryWindowMatchesItsGolden)
{
    ExpectSampleWindowMatches(L"LibraryFrame", "sample_library");
}

// The sample skin's browser window: the tab strip with the first tab current, the folder bars
// with the first one current, the tracks panel from its top, and the scroll bar with its thumb at
// the start (the view is set up by the application, so the bar has no range here). 1033 only, as
// above.
TEST(MirlView, SampleBrowseWindowMatchesItsGolden)
{
    ExpectSampleWindowMatches(L"BrowseFrame", "sample_browse");
}

// The player window as a screen reader reads it, and the options that --accessibility refuses.
TEST(MirlView, PrintsTheAccessibilityTree)
{
    RunResult result = RunTool(L"mirlview.exe", Quote(Skin(L"sample")) + L" MainFrame --accessibility");
    ASSERT_TRUE(result.finished);
    EXPECT_EQ(0u, result.exitCode);
    const std::vector<std::wstring> expected = {
        L"client \"MIRL Player\"",
        L"  static text [read only]",
        L"    static text \"MIRL Player\" [read only]",
        L"    static text \"01:42 / 04:05\" [read only]",
        L"    link \"Now playing: Night Drive by The Midnight Lines\" [linked]",
        L"    slider \"Position\" = \"0.0%\"",
        L"    slider \"Volume\" = \"50\" [focusable]",
        L"    push button \"Previous track\" [focusable] (Press)",
        L"    push button \"Play\" [focusable] (Press)",
        L"    push button \"Pause\" [focusable] (Press)",
        L"    push button \"Stop\" [focusable] (Press)",
        L"    push button \"Next track\" [focusable] (Press)",
        L"    check button \"Shuffle\" [focusable] (Check)",
        L"    push button \"Playlist\" [focusable] (Press)",
        L"    link \"Press Play to start, or browse the library.\" [linked]",
        L"    text \"Search the library\" = \"\" [focusable]",
        L"    link \"Visit the MIRL project page\" [focusable, linked] (Jump)",
    };
    // Focus belongs to the whole display: a window of another test program may hold it.
    std::vector<std::wstring> out = result.out;
    if (!out.empty() && out[0] == L"client \"MIRL Player\" [focused]") {
        out[0] = L"client \"MIRL Player\"";
    }
    EXPECT_EQ(expected, out);

    for (const wchar_t *wrong : {L" --accessibility --list", L" MainFrame --accessibility --png x.png", L" MainFrame --accessibility --watch"}) {
        RunResult refused = RunTool(L"mirlview.exe", Quote(Skin(L"sample")) + wrong);
        ASSERT_TRUE(refused.finished);
        EXPECT_EQ(2u, refused.exitCode) << wrong;
    }
}

// The number field and its arrows as the library paints them: the face's red left end and blue
// right end from the skin, the number in black between them, and the system's arrows beside.
TEST(MirlView, TheNumberFieldAndItsSpinArePainted)
{
    std::wstring png = TempPng(L"number");
    RunResult result = RunTool(L"mirlview.exe", Quote(Skin(L"dialogs")) + L" NumberPane --png " + Quote(png));
    ASSERT_TRUE(result.finished);
    ASSERT_EQ(0u, result.exitCode);
    Gdiplus::Bitmap bitmap(png.c_str());
    ASSERT_EQ(Gdiplus::Ok, bitmap.GetLastStatus());
    auto at = [&](int x, int y) {
        Gdiplus::Color color;
        bitmap.GetPixel(x, y, &color);
        return RGB(color.GetR(), color.GetG(), color.GetB());
    };
    EXPECT_EQ(RGB(40, 44, 52), at(2, 2));
    EXPECT_EQ(RGB(200, 40, 40), at(10, 10));   // CommonEditLeft
    EXPECT_EQ(RGB(230, 230, 230), at(20, 10)); // CommonEditXScale
    EXPECT_EQ(RGB(40, 40, 200), at(69, 31));   // CommonEditRight
    int dark = 0;
    int arrows = 0;
    for (int y = 10; y < 32; ++y) {
        for (int x = 30; x < 50; ++x) {
            dark += GetRValue(at(x, y)) < 0x60 ? 1 : 0;
        }
        for (int x = 72; x < 88; ++x) {
            arrows += at(x, y) != RGB(40, 44, 52) ? 1 : 0;
        }
    }
    EXPECT_GT(dark, 5) << "the number";
    EXPECT_GT(arrows, 100) << "the up-down paints itself";
    DeleteFileW(png.c_str());
}

// The list family through mirlview: the combo box's face (blue caps, forced to the image's 24
// pixels) and the list view's empty header ("VistaBtn0", olive caps).
TEST(MirlView, RendersTheComboBoxAndTheListView)
{
    struct Row {
        const wchar_t *name;
        int x;
        int y;
        COLORREF colour;
    };
    // In the frame: the combo box at (10, 10), the list view at (10, 50).
    const Row rows[] = {{L"combo", 12, 12, RGB(0, 0, 200)}, {L"list", 11, 55, RGB(128, 128, 0)}};
    for (const Row &row : rows) {
        std::wstring png = TempPng(row.name);
        RunResult result = RunTool(L"mirlview.exe", Quote(Skin(L"lists")) + L" ListFrame --png " + Quote(png));
        ASSERT_TRUE(result.finished) << row.name;
        ASSERT_EQ(0u, result.exitCode) << row.name;
        {
            Gdiplus::Bitmap bitmap(png.c_str());
            ASSERT_EQ(Gdiplus::Ok, bitmap.GetLastStatus()) << row.name;
            Gdiplus::Color pixel;
            bitmap.GetPixel(row.x, row.y, &pixel);
            EXPECT_EQ(row.colour, RGB(pixel.GetR(), pixel.GetG(), pixel.GetB())) << row.name;
        }
        DeleteFileW(png.c_str());
    }
}
