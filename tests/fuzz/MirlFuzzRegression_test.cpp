// Inputs the fuzzer found failing, kept as the smallest packages that showed each failure
// (tests/fuzz/regressions) or as the one message that did, and the behaviour their fixes
// pinned down.
#include "MirlFuzzHost.h"
#include "MirlMessageStorm.h"
#include "MirlSkinCorpus.h"
#include "MirlSkinRunner.h"
#include "MirlSkinPackage.h"
#include "MirlTestSupport.h"
#include "MirlZipWriter.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

using namespace mirlfuzz;

namespace {

const char kHeldDocument[] = "<Skin><Text><TxtHeld Text=\"held\"/></Text></Skin>";
const uint32_t kSixtyFourMiB = 64u * 1024 * 1024;

std::wstring RegressionFolder()
{
    return ProgramFolder() + L"\\fuzz-regressions";
}

std::vector<std::wstring> RecordedInputs()
{
    std::vector<std::wstring> inputs;
    WIN32_FIND_DATAW found;
    HANDLE search = ::FindFirstFileW((RegressionFolder() + L"\\*.zip").c_str(), &found);
    if (search == INVALID_HANDLE_VALUE) {
        return inputs;
    }
    do {
        inputs.push_back(RegressionFolder() + L"\\" + found.cFileName);
    } while (::FindNextFileW(search, &found));
    ::FindClose(search);
    return inputs;
}

double Seconds()
{
    LARGE_INTEGER counter, frequency;
    ::QueryPerformanceCounter(&counter);
    ::QueryPerformanceFrequency(&frequency);
    return static_cast<double>(counter.QuadPart) / static_cast<double>(frequency.QuadPart);
}

// A package of one Skin.xml that declares more bytes than it holds.
std::wstring WritePackage(const wchar_t *name, const Bytes &document, uint32_t declared, unsigned where)
{
    ZipArchive archive;
    ZipEntry entry;
    entry.name = "Skin.xml";
    entry.data = document;
    entry.deflate = true;
    entry.declaredUncompressed = declared;
    entry.where = where;
    archive.entries.push_back(entry);
    wchar_t folder[MAX_PATH] = {};
    ::GetTempPathW(MAX_PATH, folder);
    std::wstring path = std::wstring(folder) + name;
    WriteWholeFile(path, WriteZip(archive));
    return path;
}

Bytes Utf8(const char *text)
{
    return Bytes(text, text + std::strlen(text));
}

Bytes Utf16WithMark(const char *text)
{
    Bytes bytes = {0xFF, 0xFE};
    for (const char *p = text; *p != '\0'; ++p) {
        bytes.push_back(static_cast<unsigned char>(*p));
        bytes.push_back(0);
    }
    return bytes;
}

const wchar_t *HeldText()
{
    MirlUiElement *element = MirlUI::Instance()->GetUiElement(L"TxtHeld", UI_ELEMENT_TEXT);
    return element != nullptr ? static_cast<MirlUiElementText *>(element)->GetText() : nullptr;
}

} // namespace

TEST(FuzzRegression, EveryRecordedInputEndsAllowedWithinSecondsAndLeavesTheHeapsValid)
{
    std::vector<std::wstring> inputs = RecordedInputs();
    ASSERT_FALSE(inputs.empty()) << "no inputs in " << Narrow(RegressionFolder());
    for (const std::wstring &input : inputs) {
        const double begin = Seconds();
        Outcome outcome = RunSkinPackage(input, 1033, nullptr);
        EXPECT_LT(Seconds() - begin, 5.0) << Narrow(input);
        EXPECT_TRUE(HeapsAreValid()) << Narrow(input);
        (void)outcome; // every outcome RunSkinPackage returns is an allowed one
    }
}

TEST(FuzzRegression, NoDocumentIsReadOnceEightMebibytesOfDocumentsHaveBeen)
{
    // Big.xml holds exactly 1 MiB and Skin.xml includes it 40 times. Skin.xml and 7 copies
    // stay under 8 MiB, so an 8th copy is read and the 32 includes after it are left out.
    const std::string head = "<Skin><Text><TxtBig Text=\"big\"/></Text><!--";
    const std::string tail = "--></Skin>";
    std::string big = head + std::string(1024 * 1024 - head.size() - tail.size(), ' ') + tail;
    std::string skin = "<Skin><Text><TxtRoot Text=\"root\"/></Text>";
    for (int i = 0; i < 40; ++i) {
        skin += "<Include File=\"Big.xml\"/>";
    }
    skin += "<Text><TxtAfter Text=\"after\"/></Text></Skin>";
    ZipArchive archive;
    for (const auto &document : {std::make_pair("Skin.xml", skin), std::make_pair("Big.xml", big)}) {
        ZipEntry entry;
        entry.name = document.first;
        entry.data = Bytes(document.second.begin(), document.second.end());
        entry.deflate = true;
        archive.entries.push_back(entry);
    }
    wchar_t folder[MAX_PATH] = {};
    ::GetTempPathW(MAX_PATH, folder);
    const std::wstring path = std::wstring(folder) + L"mirl-repeated-megabyte.zip";
    ASSERT_TRUE(WriteWholeFile(path, WriteZip(archive)));
    {
        mirltest::ComScope com;
        mirltest::ProbeUI ui;
        ui.Load(path.c_str());
        EXPECT_EQ(9u, ui.Documents());
        ASSERT_EQ(10u, ui.Count(UI_ELEMENT_TEXT, 1033));
        EXPECT_STREQ(L"TxtRoot", ui.At(UI_ELEMENT_TEXT, 1033, 0)->GetName());
        EXPECT_STREQ(L"TxtBig", ui.At(UI_ELEMENT_TEXT, 1033, 8)->GetName());
        EXPECT_STREQ(L"TxtAfter", ui.At(UI_ELEMENT_TEXT, 1033, 9)->GetName());
    }
    ::DeleteFileW(path.c_str());
}

TEST(FuzzRegression, ADocumentDeclaringSixtyFourMebibytesIsParsedFromWhatItHolds)
{
    const std::wstring path = WritePackage(L"mirl-declared-document.zip", Utf8(kHeldDocument), kSixtyFourMiB, ZipEntry::Both);
    const double begin = Seconds();
    MirlIntialize(path.c_str(), 1033);
    ASSERT_NE(nullptr, HeldText());
    EXPECT_STREQ(L"held", HeldText());
    MirlUnIntialize();
    // Parsing the 64 MiB of padding took half a minute.
    EXPECT_LT(Seconds() - begin, 5.0);
    ::DeleteFileW(path.c_str());
}

TEST(FuzzRegression, ADeclaredSizeOnlyInTheDirectoryGivesAnEmptySkinQuickly)
{
    const std::wstring path = WritePackage(L"mirl-declared-directory.zip", Utf8(kHeldDocument), kSixtyFourMiB, ZipEntry::Central);
    const double begin = Seconds();
    MirlIntialize(path.c_str(), 1033);
    // The local header disagrees, so the entry doesn't open: its block is all zeros.
    EXPECT_EQ(nullptr, HeldText());
    MirlUnIntialize();
    EXPECT_LT(Seconds() - begin, 5.0);
    ::DeleteFileW(path.c_str());
}

TEST(FuzzRegression, AUtf16DocumentWithADeclaredSizeKeepsItsLastCharacter)
{
    const std::wstring path = WritePackage(L"mirl-declared-utf16.zip", Utf16WithMark(kHeldDocument), 1024 * 1024, ZipEntry::Both);
    MirlIntialize(path.c_str(), 1033);
    ASSERT_NE(nullptr, HeldText());
    EXPECT_STREQ(L"held", HeldText());
    MirlUnIntialize();
    ::DeleteFileW(path.c_str());
}

TEST(FuzzRegression, ThePackageStillHandsOutTheDeclaredBlockAndTheDocumentWithoutItsPadding)
{
    const std::wstring path = WritePackage(L"mirl-declared-package.zip", Utf8(kHeldDocument), kSixtyFourMiB, ZipEntry::Both);
    {
        MirlSkinPackage package;
        package.Open(path.c_str());
        HGLOBAL block = static_cast<HGLOBAL>(package.ExtractFileToHGLOBAL(L"Skin.xml"));
        ASSERT_NE(nullptr, block);
        EXPECT_EQ(static_cast<SIZE_T>(kSixtyFourMiB), ::GlobalSize(block));
        ::GlobalFree(block);

        IStreamPtr document = package.ExtractDocument(L"Skin.xml");
        ASSERT_NE(nullptr, document);
        STATSTG stat = {};
        ASSERT_EQ(S_OK, document->Stat(&stat, STATFLAG_NONAME));
        // The document's bytes, rounded up to an even length.
        const size_t length = std::strlen(kHeldDocument);
        EXPECT_EQ(length + length % 2, stat.cbSize.QuadPart);
    }
    ::DeleteFileW(path.c_str());
}

TEST(FuzzRegression, AMemoryDcOverASmallPictureBuffersOnlyWhatThePictureCanShow)
{
    Canvas canvas(64, 64);
    canvas.Fill(0);
    {
        // A rectangle near the limits of the coordinate space: a buffer of its size would take
        // 4 GiB, and drawing into one crashed GDI under 64-bit Wine.
        const RECT huge = {1, 1, 32767, 32767};
        WTL::CMemoryDC memory(canvas.dc(), huge);
        SIZE size = {};
        ASSERT_TRUE(memory.GetCurrentBitmap().GetSize(size));
        EXPECT_EQ(63, size.cx);
        EXPECT_EQ(63, size.cy);
        ::FillRect(memory, &huge, static_cast<HBRUSH>(::GetStockObject(WHITE_BRUSH)));
    }
    EXPECT_EQ(0u, canvas.At(0, 0));
    EXPECT_EQ(0x00FFFFFFu, canvas.At(1, 1));
    EXPECT_EQ(0x00FFFFFFu, canvas.At(63, 63));
}

TEST(FuzzRegression, AButtonDrawnWithAnItemRectangleOfTheWholeCoordinateSpaceStaysAlive)
{
    // The message of the button storm that crashed: a pressed, focused button asked to draw a
    // rectangle of 32766 by 32766 pixels into a small picture.
    const std::wstring skin = ProgramFolder() + L"\\skins\\fuzz_storm.zip";
    MirlIntialize(skin.c_str(), 1033);
    {
        FuzzHost host;
        ASSERT_TRUE(host.Open(320, 240));
        MirlUiWindow *ui = static_cast<MirlUiWindow *>(MirlUI::Instance()->GetUiElement(L"StormButton", UI_ELEMENT_WINDOW));
        ASSERT_NE(nullptr, ui);
        MirlWindowBase *button = MirlWindowBase::CreateMirlWindow(&host, ui);
        ASSERT_NE(nullptr, button);
        host.Adopt(button);
        Canvas canvas(64, 64);
        canvas.Fill(0x00ABCDEF);
        DRAWITEMSTRUCT item = {};
        item.CtlType = ODT_BUTTON;
        item.itemAction = ODA_SELECT;
        item.itemState = 0x1285;
        item.hwndItem = button->m_hWnd;
        item.hDC = canvas.dc();
        item.rcItem = RECT{1, 1, 32767, 32767};
        ::SendMessageW(button->m_hWnd, OCM_DRAWITEM, 0x80, reinterpret_cast<LPARAM>(&item));
        EXPECT_TRUE(::IsWindow(button->m_hWnd));
        EXPECT_NE(0x00ABCDEFu, canvas.At(10, 10));
    }
    MirlUnIntialize();
}

TEST(FuzzRegression, APictureWhoseDamagedChunkSeeksPastItsEndIsTreatedAsNoPicture)
{
    // The skin's language is 6702; its damaged picture made the decoder read past the block
    // under Wine.
    const std::wstring input = RegressionFolder() + L"\\crash-png-chunk-seeks-past-the-end.zip";
    Outcome outcome = RunSkinPackage(input, 6702, nullptr);
    (void)outcome;
    EXPECT_TRUE(HeapsAreValid());
}

TEST(FuzzRegression, TheEditStormsCountTheThreadsCaretAsStateNotGrowth)
{
    // Storms that found a +1 GDI object: sent focus messages and typed Enter leave the thread's
    // one caret (a bitmap the system makes) present at one census and absent at the other.
    const struct {
        const char *row;
        uint64_t seed;
    } storms[] = {{"StormEdit", 13}, {"StormEditLines", 13}};
    for (const auto &storm : storms) {
        const StormClass *row = FindStormClass(storm.row);
        ASSERT_NE(nullptr, row) << storm.row;
        SharedBlock block = {};
        EXPECT_EQ(static_cast<DWORD>(ExitDone), RunStorm(*row, storm.seed, 10000, &block))
            << storm.row << " seed " << storm.seed << ": " << block.note;
    }
}

TEST(FuzzRegression, TheListViewStormsCountTheScrollBarsThemeImagesAsTheSystemsNotGrowth)
{
    // Storms of a list view with rows whose system scroll bars were first drawn in some part,
    // state or size during the storm: the theme's images loaded then (up to ten bitmaps) are
    // the process's, kept for every later bar; drawn once before the census, they are not counted.
    for (uint64_t seed : {2, 6}) {
        const StormClass *row = FindStormClass("StormListView");
        ASSERT_NE(nullptr, row);
        SharedBlock block = {};
        EXPECT_EQ(static_cast<DWORD>(ExitDone), RunStorm(*row, seed, 10000, &block))
            << "seed " << seed << ": " << block.note;
    }
}
