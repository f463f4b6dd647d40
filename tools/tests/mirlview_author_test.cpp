// mirlview for a skin under review and in the making: the gallery of every template in every
// state, a skin folder read as its package would be, and --watch rendering again on a change.
#include "MirlPixelTest.h"
#include "MirlToolRunner.h"

#include <objbase.h>

#include <algorithm>
using std::max;
using std::min;
#include <gdiplus.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

using mirltooltest::Quote;
using mirltooltest::RunResult;
using mirltooltest::RunTool;
using mirltooltest::Skin;
using mirltooltest::VisibleWindowOf;

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

std::wstring TempPath(const std::wstring &name)
{
    wchar_t folder[MAX_PATH] = {};
    GetTempPathW(MAX_PATH, folder);
    return std::wstring(folder) + L"mirlview_author_" + std::to_wstring(GetCurrentProcessId()) + L"_" + name;
}

std::string ReadText(const std::wstring &path)
{
    std::ifstream in(path.c_str(), std::ios::binary);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

bool WriteText(const std::wstring &path, const std::string &text)
{
    FILE *out = _wfopen(path.c_str(), L"wb");
    if (out == nullptr) {
        return false;
    }
    bool ok = std::fwrite(text.data(), 1, text.size(), out) == text.size();
    return std::fclose(out) == 0 && ok;
}

// Removes a folder of files (the gallery's pictures).
void RemoveFolder(const std::wstring &folder)
{
    WIN32_FIND_DATAW found = {};
    HANDLE search = FindFirstFileW((folder + L"\\*.png").c_str(), &found);
    if (search != INVALID_HANDLE_VALUE) {
        do {
            DeleteFileW((folder + L"\\" + found.cFileName).c_str());
        } while (FindNextFileW(search, &found));
        FindClose(search);
    }
    RemoveDirectoryW(folder.c_str());
}

// The texts between "<figcaption>" and "</figcaption>", and the h2 titles, in page order.
std::vector<std::string> Between(const std::string &page, const std::string &open, const std::string &close)
{
    std::vector<std::string> found;
    for (size_t at = page.find(open); at != std::string::npos; at = page.find(open, at + 1)) {
        size_t start = at + open.size();
        size_t end = page.find(close, start);
        if (end == std::string::npos) {
            break;
        }
        found.push_back(page.substr(start, end - start));
    }
    return found;
}

// A skin of one popup frame of the given background, as an author keeps it in a folder.
std::string FrameSkin(int red)
{
    return "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<Skin>\n  <Colors>\n    <ClrFrame Red=\"" + std::to_string(red) +
           "\" Green=\"20\" Blue=\"30\"/>\n  </Colors>\n  <Windows>\n"
           "    <Frame Class=\"WINDOW\" Style=\"WS_POPUP|WS_VISIBLE\" Width=\"64\" Height=\"48\" ClBkGround=\"ClrFrame\"/>\n"
           "  </Windows>\n</Skin>\n";
}

// A fresh skin folder in the temporary folder, removed with the object.
class SkinFolder {
public:
    explicit SkinFolder(const std::wstring &name) : m_Path(TempPath(name))
    {
        CreateDirectoryW(m_Path.c_str(), nullptr);
        Write(FrameSkin(10));
    }
    ~SkinFolder()
    {
        DeleteFileW((m_Path + L"\\Skin.xml").c_str());
        RemoveDirectoryW(m_Path.c_str());
    }
    bool Write(const std::string &skin) const { return WriteText(m_Path + L"\\Skin.xml", skin); }
    const std::wstring &path() const { return m_Path; }

private:
    std::wstring m_Path;
};

// The colour of the picture's top left pixel, or CLR_INVALID while it can't be read (absent,
// or being written). The file is read into memory first, so that it is held only for a moment.
COLORREF CornerOf(const std::wstring &png)
{
    std::string bytes = ReadText(png);
    if (bytes.empty()) {
        return CLR_INVALID;
    }
    HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE, bytes.size());
    if (block == nullptr) {
        return CLR_INVALID;
    }
    memcpy(GlobalLock(block), bytes.data(), bytes.size());
    GlobalUnlock(block);
    IStream *stream = nullptr;
    if (FAILED(CreateStreamOnHGlobal(block, TRUE, &stream))) {
        GlobalFree(block);
        return CLR_INVALID;
    }
    COLORREF corner = CLR_INVALID;
    {
        Gdiplus::Bitmap bitmap(stream);
        Gdiplus::Color color;
        if (bitmap.GetLastStatus() == Gdiplus::Ok && bitmap.GetPixel(0, 0, &color) == Gdiplus::Ok) {
            corner = RGB(color.GetR(), color.GetG(), color.GetB());
        }
    }
    stream->Release();
    return corner;
}

// Waits up to milliseconds for condition; the time it took, or -1.
template <class Condition>
long WaitFor(DWORD milliseconds, Condition condition)
{
    DWORD start = GetTickCount();
    for (;;) {
        if (condition()) {
            return static_cast<long>(GetTickCount() - start);
        }
        if (GetTickCount() - start > milliseconds) {
            return -1;
        }
        Sleep(20);
    }
}

} // namespace

// The sample skin at a glance: its main window in each state that draws differently.
TEST(MirlViewGallery, SampleSheetMatchesItsGolden)
{
    std::wstring png = TempPath(L"gallery.png");
    RunResult result = RunTool(L"mirlview.exe", Quote(Skin(L"sample")) + L" --gallery " + Quote(png));
    ASSERT_TRUE(result.finished);
    ASSERT_EQ(0u, result.exitCode);
    EXPECT_TRUE(result.err.empty());
    EXPECT_TRUE(mirltest::MatchesGolden(mirltest::LoadPng(png), "sample_gallery"));
    DeleteFileW(png.c_str());
}

// Each state whose picture differs from the normal one gets a labelled picture of its own;
// "selected" draws nothing different on a button, so it is left out.
TEST(MirlViewGallery, HtmlHasOnePicturePerTemplateAndState)
{
    std::wstring html = TempPath(L"gallery.html");
    std::wstring files = TempPath(L"gallery_files");
    RunResult result = RunTool(L"mirlview.exe", Quote(Skin(L"sample")) + L" --gallery " + Quote(html));
    ASSERT_TRUE(result.finished);
    ASSERT_EQ(0u, result.exitCode);
    std::string page = ReadText(html);
    // The player's main window comes first; the section ends where the next template's begins.
    std::vector<std::string> titles = Between(page, "<h2>", "</h2>");
    ASSERT_FALSE(titles.empty());
    EXPECT_EQ("MainFrame <small>WINDOW  480x304</small>", titles[0]);
    size_t next = page.find("<section>", page.find("<section>") + 1);
    page = page.substr(0, next);
    std::vector<std::string> states = {"normal", "hover", "pressed", "disabled", "checked"};
    EXPECT_EQ(states, Between(page, "<figcaption>", "</figcaption>"));
    std::vector<std::string> sources = Between(page, "<img src=\"", "\"");
    ASSERT_EQ(states.size(), sources.size());
    for (size_t i = 0; i < states.size(); ++i) {
        std::wstring folder = files.substr(files.find_last_of(L'\\') + 1);
        std::string expected = std::string(folder.begin(), folder.end()) + "/MainFrame." + states[i] + ".png";
        EXPECT_EQ(expected, sources[i]);
        std::wstring picture = files + L"\\MainFrame." + std::wstring(states[i].begin(), states[i].end()) + L".png";
        mirltest::Dib shot = mirltest::LoadPng(picture);
        EXPECT_EQ(480, shot.width()) << states[i];
        EXPECT_EQ(304, shot.height()) << states[i];
    }
    RemoveFolder(files);
    DeleteFileW(html.c_str());
}

// Templates without buttons draw every state alike: one picture each.
TEST(MirlViewGallery, TemplatesWithoutControlsShowOnlyTheirNormalState)
{
    std::wstring html = TempPath(L"plain.html");
    std::wstring files = TempPath(L"plain_files");
    RunResult result = RunTool(L"mirlview.exe", Quote(Skin(L"view_basic")) + L" --gallery " + Quote(html));
    ASSERT_TRUE(result.finished);
    ASSERT_EQ(0u, result.exitCode);
    std::string page = ReadText(html);
    EXPECT_EQ(std::vector<std::string>({"Frame <small>WINDOW  64x48</small>", "Panel <small>WINDOW  40x30</small>"}),
              Between(page, "<h2>", "</h2>"));
    EXPECT_EQ(std::vector<std::string>({"normal", "normal"}), Between(page, "<figcaption>", "</figcaption>"));
    RemoveFolder(files);
    DeleteFileW(html.c_str());
}

TEST(MirlViewGallery, GoesWithTheSkinAlone)
{
    EXPECT_EQ(2u, RunTool(L"mirlview.exe", Quote(Skin(L"sample")) + L" MainFrame --gallery x.png").exitCode);
    EXPECT_EQ(2u, RunTool(L"mirlview.exe", Quote(Skin(L"sample")) + L" --gallery x.png --list").exitCode);
    EXPECT_EQ(2u, RunTool(L"mirlview.exe", Quote(Skin(L"sample")) + L" --gallery x.png --watch").exitCode);
}

// A folder is read as the package the build makes of it: the same picture, pixel for pixel.
TEST(MirlViewFolder, RendersAFolderAsItsPackage)
{
    std::wstring fromZip = TempPath(L"zip.png");
    std::wstring fromFolder = TempPath(L"folder.png");
    std::wstring folder = mirltest::BinDir() + L"\\fuzz-corpus\\sample";
    RunResult zipped = RunTool(L"mirlview.exe", Quote(Skin(L"sample")) + L" MainFrame --state hover --png " + Quote(fromZip));
    RunResult unzipped = RunTool(L"mirlview.exe", Quote(folder) + L" MainFrame --state hover --png " + Quote(fromFolder));
    ASSERT_EQ(0u, zipped.exitCode);
    ASSERT_EQ(0u, unzipped.exitCode);
    mirltest::Dib a = mirltest::LoadPng(fromZip);
    mirltest::Dib b = mirltest::LoadPng(fromFolder);
    ASSERT_EQ(480, a.width());
    EXPECT_EQ(0, mirltest::ComparePixels(a, b, 0).count);
    DeleteFileW(fromZip.c_str());
    DeleteFileW(fromFolder.c_str());
}

TEST(MirlViewFolder, ListsAFolderSkinsTemplates)
{
    RunResult result = RunTool(L"mirlview.exe", Quote(mirltest::BinDir() + L"\\fuzz-corpus\\view_basic") + L" --list");
    ASSERT_TRUE(result.finished);
    EXPECT_EQ(0u, result.exitCode);
    std::vector<std::wstring> expected = {L"Frame\tWINDOW\t64x48\t1033", L"Panel\tWINDOW\t40x30\t1033"};
    EXPECT_EQ(expected, result.out);
}

// An author saves the skin; the picture follows within the two seconds promised. The program
// runs until it is stopped.
TEST(MirlViewWatch, WritesTheNewPictureWhenTheSkinChanges)
{
    SkinFolder skin(L"watch_png");
    std::wstring png = TempPath(L"watch.png");
    DeleteFileW(png.c_str());  // a picture left by an earlier process of the same id is not this one
    long reaction = -1;
    COLORREF first = CLR_INVALID;
    RunResult result = RunTool(L"mirlview.exe", Quote(skin.path()) + L" Frame --watch --png " + Quote(png),
                               [&](const PROCESS_INFORMATION &process) {
                                   WaitFor(20000, [&] { return (first = CornerOf(png)) != CLR_INVALID; });
                                   ASSERT_TRUE(skin.Write(FrameSkin(90)));
                                   reaction = WaitFor(2000, [&] { return CornerOf(png) == RGB(90, 20, 30); });
                                   TerminateProcess(process.hProcess, 0);
                               });
    EXPECT_EQ(RGB(10, 20, 30), first);
    EXPECT_GE(reaction, 0) << "no new picture within 2 s of the change";
    RecordProperty("reaction_ms", static_cast<int>(reaction));
    std::vector<std::wstring> expected = {L"mirlview: wrote " + png + L" (render 1)", L"mirlview: wrote " + png + L" (render 2)"};
    EXPECT_EQ(expected, result.out);
    DeleteFileW(png.c_str());
}

// A skin that can't be read while it is being edited is reported, and the next good save
// renders again.
TEST(MirlViewWatch, WaitsOutABrokenSave)
{
    SkinFolder skin(L"watch_broken");
    std::wstring png = TempPath(L"broken.png");
    DeleteFileW(png.c_str());
    long reaction = -1;
    RunResult result = RunTool(L"mirlview.exe", Quote(skin.path()) + L" Frame --watch --png " + Quote(png),
                               [&](const PROCESS_INFORMATION &process) {
                                   WaitFor(20000, [&] { return CornerOf(png) != CLR_INVALID; });
                                   ASSERT_TRUE(skin.Write("<Skin><Colors><ClrFrame Red=\"300\"/></Colors></Skin>"));
                                   Sleep(1500);
                                   ASSERT_TRUE(skin.Write(FrameSkin(120)));
                                   reaction = WaitFor(2000, [&] { return CornerOf(png) == RGB(120, 20, 30); });
                                   TerminateProcess(process.hProcess, 0);
                               });
    std::string said;
    for (const std::wstring &line : result.out) {
        said += std::string(line.begin(), line.end()) + "\n";
    }
    EXPECT_GE(reaction, 0) << "no new picture within 2 s of the good save; mirlview said:\n" << said;
    RecordProperty("reaction_ms", static_cast<int>(reaction));
    ASSERT_EQ(1u, result.err.size());
    EXPECT_NE(std::wstring::npos, result.err[0].find(L"could not be loaded: COM error 0x8002000A while reading the skin"));
    EXPECT_NE(std::wstring::npos, result.err[0].find(L"(waiting for the next change)"));
    DeleteFileW(png.c_str());
}

// On the screen the window is made again from the changed skin, where the author left it.
TEST(MirlViewWatch, TheWindowComesBackWhereItWas)
{
    SkinFolder skin(L"watch_window");
    HWND before = nullptr;
    HWND after = nullptr;
    RECT place = {};
    RunResult result = RunTool(L"mirlview.exe", Quote(skin.path()) + L" Frame --watch", [&](const PROCESS_INFORMATION &process) {
        WaitFor(20000, [&] { return (before = VisibleWindowOf(process.dwProcessId)) != nullptr; });
        ASSERT_NE(nullptr, before);
        SetWindowPos(before, nullptr, 150, 120, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
        Sleep(300);
        ASSERT_TRUE(skin.Write(FrameSkin(200)));
        WaitFor(5000, [&] {
            after = VisibleWindowOf(process.dwProcessId);
            return after != nullptr && after != before;
        });
        GetWindowRect(after, &place);
        PostMessageW(after, WM_CLOSE, 0, 0);
    });
    ASSERT_TRUE(result.finished);
    EXPECT_EQ(0u, result.exitCode);
    EXPECT_NE(before, after);
    EXPECT_EQ(150, place.left);
    EXPECT_EQ(120, place.top);
    EXPECT_EQ(64, place.right - place.left);
}
