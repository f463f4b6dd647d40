#include "MirlSkinPackage.h"
#include "MirlTestSupport.h"
#include "Ostra.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

using mirltest::SkinPath;

namespace {

std::string ReadEntry(HGLOBAL block)
{
    const char *data = static_cast<const char *>(GlobalLock(block));
    std::string text(data, GlobalSize(block));
    GlobalUnlock(block);
    return text;
}

std::string ReadStream(IStreamPtr stream, ULONG want)
{
    std::string text(want, '\0');
    ULONG got = 0;
    stream->Read(&text[0], want, &got);
    text.resize(got);
    return text;
}

std::vector<unsigned char> ReadFileBytes(const std::wstring &path)
{
    std::vector<unsigned char> bytes;
    FILE *file = _wfopen(path.c_str(), L"rb");
    if (file == nullptr) {
        return bytes;
    }
    int c;
    while ((c = fgetc(file)) != EOF) {
        bytes.push_back(static_cast<unsigned char>(c));
    }
    fclose(file);
    return bytes;
}

std::wstring WriteTempZip(const std::vector<unsigned char> &bytes, const wchar_t *name)
{
    std::wstring path = mirltest::BinDir() + L"\\" + name;
    FILE *file = _wfopen(path.c_str(), L"wb");
    fwrite(bytes.data(), 1, bytes.size(), file);
    fclose(file);
    return path;
}

// Offset of the central directory record that names an entry; npos if none.
size_t CentralRecordOf(const std::vector<unsigned char> &zip, const std::string &name)
{
    for (size_t i = 0; i + 46 <= zip.size(); ++i) {
        if (zip[i] == 0x50 && zip[i + 1] == 0x4b && zip[i + 2] == 0x01 && zip[i + 3] == 0x02) {
            size_t nameLength = zip[i + 28] | (zip[i + 29] << 8);
            if (i + 46 + nameLength <= zip.size() &&
                std::string(reinterpret_cast<const char *>(&zip[i + 46]), nameLength) == name) {
                return i;
            }
        }
    }
    return std::string::npos;
}

unsigned long Le32(const std::vector<unsigned char> &zip, size_t at)
{
    return zip[at] | (zip[at + 1] << 8) | (zip[at + 2] << 16) | (static_cast<unsigned long>(zip[at + 3]) << 24);
}

std::string ExpectedData()
{
    std::string text;
    char line[64];
    for (int i = 0; i < 200; ++i) {
        snprintf(line, sizeof(line), "line %04d of the deflated entry\n", i);
        text += line;
    }
    return text;
}

void PutLe16(std::vector<unsigned char> &out, unsigned value)
{
    out.push_back(static_cast<unsigned char>(value & 0xFF));
    out.push_back(static_cast<unsigned char>((value >> 8) & 0xFF));
}

void PutLe32(std::vector<unsigned char> &out, unsigned long value)
{
    PutLe16(out, static_cast<unsigned>(value & 0xFFFF));
    PutLe16(out, static_cast<unsigned>((value >> 16) & 0xFFFF));
}

unsigned long Crc32(const std::string &data)
{
    unsigned long crc = 0xFFFFFFFFUL;
    for (unsigned char byte : data) {
        crc ^= byte;
        for (int bit = 0; bit < 8; ++bit) {
            crc = (crc >> 1) ^ (0xEDB88320UL & (0UL - (crc & 1)));
        }
    }
    return crc ^ 0xFFFFFFFFUL;
}

// A ZIP of stored entries, named exactly as given (equal names and zero bytes included).
std::vector<unsigned char> StoredZip(const std::vector<std::pair<std::string, std::string>> &entries)
{
    std::vector<unsigned char> zip;
    std::vector<unsigned char> directory;
    for (const auto &entry : entries) {
        const unsigned long offset = static_cast<unsigned long>(zip.size());
        const unsigned long crc = Crc32(entry.second);
        const unsigned long size = static_cast<unsigned long>(entry.second.size());
        const unsigned nameLength = static_cast<unsigned>(entry.first.size());
        PutLe32(zip, 0x04034b50UL);
        PutLe16(zip, 20); // version needed
        PutLe16(zip, 0);  // flags
        PutLe16(zip, 0);  // stored
        PutLe16(zip, 0);  // time
        PutLe16(zip, 0x21); // 1980-01-01
        PutLe32(zip, crc);
        PutLe32(zip, size);
        PutLe32(zip, size);
        PutLe16(zip, nameLength);
        PutLe16(zip, 0);
        zip.insert(zip.end(), entry.first.begin(), entry.first.end());
        zip.insert(zip.end(), entry.second.begin(), entry.second.end());

        PutLe32(directory, 0x02014b50UL);
        PutLe16(directory, 20); // made by
        PutLe16(directory, 20); // needed
        PutLe16(directory, 0);
        PutLe16(directory, 0);
        PutLe16(directory, 0);
        PutLe16(directory, 0x21);
        PutLe32(directory, crc);
        PutLe32(directory, size);
        PutLe32(directory, size);
        PutLe16(directory, nameLength);
        PutLe16(directory, 0); // extra
        PutLe16(directory, 0); // comment
        PutLe16(directory, 0); // disk
        PutLe16(directory, 0); // internal attributes
        PutLe32(directory, 0); // external attributes
        PutLe32(directory, offset);
        directory.insert(directory.end(), entry.first.begin(), entry.first.end());
    }
    const unsigned long directoryOffset = static_cast<unsigned long>(zip.size());
    zip.insert(zip.end(), directory.begin(), directory.end());
    PutLe32(zip, 0x06054b50UL);
    PutLe16(zip, 0);
    PutLe16(zip, 0);
    PutLe16(zip, static_cast<unsigned>(entries.size()));
    PutLe16(zip, static_cast<unsigned>(entries.size()));
    PutLe32(zip, static_cast<unsigned long>(directory.size()));
    PutLe32(zip, directoryOffset);
    PutLe16(zip, 0);
    return zip;
}

// The entry's bytes, or "(absent)".
std::string EntryText(MirlSkinPackage &package, const wchar_t *name)
{
    HGLOBAL block = static_cast<HGLOBAL>(package.ExtractFileToHGLOBAL(name));
    if (block == nullptr) {
        return "(absent)";
    }
    std::string text = ReadEntry(block);
    GlobalFree(block);
    return text;
}

class SkinPackageTest : public ::testing::Test {
protected:
    // Writes an archive beside the tests and opens it; it is deleted after the test.
    std::wstring OpenTempZip(const std::vector<unsigned char> &zip, const wchar_t *name)
    {
        std::wstring path = WriteTempZip(zip, name);
        m_TempFiles.push_back(path);
        m_Package.Open(path.c_str());
        return path;
    }

    void TearDown() override
    {
        // Another archive in its place lets go of the written one.
        m_Package.Open(SkinPath(L"package").c_str());
        for (const std::wstring &path : m_TempFiles) {
            DeleteFileW(path.c_str());
        }
    }

    mirltest::ComScope m_Com;
    MirlSkinPackage m_Package;
    std::vector<std::wstring> m_TempFiles;
};

} // namespace

TEST_F(SkinPackageTest, OpenedPackageGivesEntryAsMemoryBlock)
{
    m_Package.Open(SkinPath(L"package").c_str());
    HGLOBAL block = static_cast<HGLOBAL>(m_Package.ExtractFileToHGLOBAL(L"Data.txt"));
    ASSERT_NE(nullptr, block);
    // A movable block: its handle is not its address.
    void *address = GlobalLock(block);
    EXPECT_NE(static_cast<void *>(block), address);
    GlobalUnlock(block);
    EXPECT_EQ(ExpectedData(), ReadEntry(block));
    EXPECT_EQ(nullptr, GlobalFree(block));
}

TEST_F(SkinPackageTest, EntryInOtherLetterCaseIsFound)
{
    m_Package.Open(SkinPath(L"package").c_str());
    HGLOBAL block = static_cast<HGLOBAL>(m_Package.ExtractFileToHGLOBAL(L"buttons/OK.PNG"));
    ASSERT_NE(nullptr, block);
    std::string bytes = ReadEntry(block);
    ASSERT_EQ(1024u, bytes.size());
    EXPECT_EQ('\x00', bytes[0]);
    EXPECT_EQ('\xff', bytes[255]);
    EXPECT_EQ('\x01', bytes[257]);
    GlobalFree(block);
}

TEST_F(SkinPackageTest, FolderIsNotAddedAndSlashesAreNotChanged)
{
    m_Package.Open(SkinPath(L"package").c_str());
    EXPECT_EQ(nullptr, m_Package.ExtractFileToHGLOBAL(L"Ok.png"));
    EXPECT_EQ(nullptr, m_Package.ExtractFileToHGLOBAL(L"Buttons\\Ok.png"));
}

TEST_F(SkinPackageTest, AbsentEntryIsNullWithoutError)
{
    m_Package.Open(SkinPath(L"package").c_str());
    EXPECT_EQ(nullptr, m_Package.ExtractFileToHGLOBAL(L"Nothing.xml"));
    EXPECT_EQ(nullptr, m_Package.ExtractFile(L"Nothing.xml"));
}

TEST_F(SkinPackageTest, NameOutsideAnsiCodePageIsReplacedAndNotFound)
{
    // The machine's ANSI code page is 1252 here; U+4E2D has no form in it.
    ASSERT_EQ(1252u, GetACP());
    EXPECT_EQ(std::string("?.txt"), MirlSkinPackage::ToAnsi(L"\u4E2D.txt"));
    m_Package.Open(SkinPath(L"package").c_str());
    EXPECT_EQ(nullptr, m_Package.ExtractFile(L"\u4E2D.txt"));
}

TEST_F(SkinPackageTest, ZeroLengthEntryGivesValidHandleAndEmptyStream)
{
    m_Package.Open(SkinPath(L"package").c_str());
    HGLOBAL block = static_cast<HGLOBAL>(m_Package.ExtractFileToHGLOBAL(L"Empty.bin"));
    ASSERT_NE(nullptr, block);
    EXPECT_EQ(0u, GlobalSize(block));
    GlobalFree(block);
    IStreamPtr stream = m_Package.ExtractFile(L"Empty.bin");
    ASSERT_NE(nullptr, stream);
    STATSTG stat = {};
    ASSERT_EQ(S_OK, stream->Stat(&stat, STATFLAG_NONAME));
    EXPECT_EQ(0u, stat.cbSize.QuadPart);
}

TEST_F(SkinPackageTest, TwoStreamsFromOneEntryAreIndependent)
{
    m_Package.Open(SkinPath(L"package").c_str());
    IStreamPtr first = m_Package.ExtractFile(L"Data.txt");
    IStreamPtr second = m_Package.ExtractFile(L"Data.txt");
    ASSERT_NE(nullptr, first);
    ASSERT_NE(nullptr, second);
    EXPECT_NE(first.GetInterfacePtr(), second.GetInterfacePtr());
    EXPECT_EQ("line 0000", ReadStream(first, 9));
    EXPECT_EQ(" of the d", ReadStream(first, 9));
    // Reading the first moved only the first.
    EXPECT_EQ("line 0000", ReadStream(second, 9));
    // Writing into one stream leaves the other's memory alone.
    LARGE_INTEGER start = {};
    first->Seek(start, STREAM_SEEK_SET, nullptr);
    ULONG written = 0;
    first->Write("XXXX", 4, &written);
    second->Seek(start, STREAM_SEEK_SET, nullptr);
    EXPECT_EQ("line", ReadStream(second, 4));
}

TEST_F(SkinPackageTest, StreamStartsAtBeginningAndHoldsWholeEntry)
{
    m_Package.Open(SkinPath(L"package").c_str());
    IStreamPtr stream = m_Package.ExtractFile(L"DATA.TXT");
    ASSERT_NE(nullptr, stream);
    STATSTG stat = {};
    ASSERT_EQ(S_OK, stream->Stat(&stat, STATFLAG_NONAME));
    EXPECT_EQ(ExpectedData().size(), stat.cbSize.QuadPart);
    EXPECT_EQ(ExpectedData(), ReadStream(stream, static_cast<ULONG>(stat.cbSize.QuadPart)));
}

TEST_F(SkinPackageTest, ExtractionBeforeAnyOpenIsNull)
{
    EXPECT_FALSE(m_Package.IsOpen());
    EXPECT_EQ(nullptr, m_Package.ExtractFileToHGLOBAL(L"Data.txt"));
    EXPECT_EQ(nullptr, m_Package.ExtractFile(L"Data.txt"));
}

TEST_F(SkinPackageTest, FailedOpenThrowsCodeOneWithPathAndClosesFormerPackage)
{
    m_Package.Open(SkinPath(L"package").c_str());
    ASSERT_TRUE(m_Package.IsOpen());
    std::wstring missing = mirltest::BinDir() + L"\\skins\\no-such-package.zip";
    try {
        m_Package.Open(missing.c_str());
        FAIL() << "did not throw";
    } catch (const MirlException &e) {
        EXPECT_EQ(MIRL_ERROR_PACKAGE_OPEN, e.error());
        EXPECT_STREQ(missing.c_str(), e.what());
    }
    EXPECT_FALSE(m_Package.IsOpen());
    // Extraction after a failed open yields null, not a crash.
    EXPECT_EQ(nullptr, m_Package.ExtractFileToHGLOBAL(L"Data.txt"));
    EXPECT_EQ(nullptr, m_Package.ExtractFile(L"Data.txt"));
}

TEST_F(SkinPackageTest, SecondOpenReplacesTheFirstPackage)
{
    m_Package.Open(SkinPath(L"package").c_str());
    m_Package.Open(SkinPath(L"basic").c_str());
    EXPECT_EQ(nullptr, m_Package.ExtractFileToHGLOBAL(L"Data.txt"));
    IStreamPtr more = m_Package.ExtractFile(L"More.xml");
    EXPECT_NE(nullptr, more);
}

TEST_F(SkinPackageTest, FileThatIsNotZipFailsToOpenWithCodeOne)
{
    std::wstring path = WriteTempZip(std::vector<unsigned char>(300, 'z'), L"not-a-zip.zip");
    try {
        m_Package.Open(path.c_str());
        FAIL() << "did not throw";
    } catch (const MirlException &e) {
        EXPECT_EQ(1, e.error());
    }
    EXPECT_FALSE(m_Package.IsOpen());
    DeleteFileW(path.c_str());
}

TEST_F(SkinPackageTest, TruncatedZipFailsToOpen)
{
    std::vector<unsigned char> zip = ReadFileBytes(SkinPath(L"package"));
    ASSERT_GT(zip.size(), 100u);
    zip.resize(zip.size() / 2);
    std::wstring path = WriteTempZip(zip, L"truncated.zip");
    EXPECT_THROW(m_Package.Open(path.c_str()), MirlException);
    EXPECT_EQ(nullptr, m_Package.ExtractFile(L"Data.txt"));
    DeleteFileW(path.c_str());
}

TEST_F(SkinPackageTest, ForgedHugeSizeIsRefusedAsAbsent)
{
    std::vector<unsigned char> zip = ReadFileBytes(SkinPath(L"package"));
    size_t record = CentralRecordOf(zip, "Data.txt");
    ASSERT_NE(std::string::npos, record);
    // Uncompressed size of the central record: 4 GiB less 16 bytes.
    zip[record + 24] = 0xF0;
    zip[record + 25] = 0xFF;
    zip[record + 26] = 0xFF;
    zip[record + 27] = 0xFF;
    std::wstring path = WriteTempZip(zip, L"forged-size.zip");
    m_Package.Open(path.c_str());
    EXPECT_EQ(nullptr, m_Package.ExtractFileToHGLOBAL(L"Data.txt"));
    EXPECT_EQ(nullptr, m_Package.ExtractFile(L"Data.txt"));
    // Other entries are unaffected.
    HGLOBAL block = static_cast<HGLOBAL>(m_Package.ExtractFileToHGLOBAL(L"Buttons/Ok.png"));
    ASSERT_NE(nullptr, block);
    EXPECT_EQ(1024u, GlobalSize(block));
    GlobalFree(block);
    DeleteFileW(path.c_str());
}

TEST_F(SkinPackageTest, CorruptDeflateDataGivesBlockOfDeclaredSize)
{
    std::vector<unsigned char> zip = ReadFileBytes(SkinPath(L"package"));
    size_t record = CentralRecordOf(zip, "Data.txt");
    ASSERT_NE(std::string::npos, record);
    unsigned long local = Le32(zip, record + 42);
    size_t nameLength = zip[local + 26] | (zip[local + 27] << 8);
    size_t extraLength = zip[local + 28] | (zip[local + 29] << 8);
    size_t data = local + 30 + nameLength + extraLength;
    unsigned long compressed = Le32(zip, record + 20);
    ASSERT_GT(compressed, 20u);
    for (size_t i = data + compressed / 2; i < data + compressed; ++i) {
        zip[i] = 0xFF;
    }
    std::wstring path = WriteTempZip(zip, L"corrupt-data.zip");
    m_Package.Open(path.c_str());
    HGLOBAL block = static_cast<HGLOBAL>(m_Package.ExtractFileToHGLOBAL(L"Data.txt"));
    ASSERT_NE(nullptr, block);
    EXPECT_EQ(ExpectedData().size(), GlobalSize(block));
    EXPECT_NE(ExpectedData(), ReadEntry(block));
    GlobalFree(block);
    DeleteFileW(path.c_str());
}

TEST_F(SkinPackageTest, OfEntriesWithEqualNamesInAnyLetterCaseTheFirstIsFound)
{
    OpenTempZip(StoredZip({{"Other.txt", "other"}, {"Dup.txt", "first"}, {"DUP.TXT", "second"}, {"dup.txt", "third"}}),
                L"duplicates.zip");
    EXPECT_EQ("first", EntryText(m_Package, L"dUp.TxT"));
    EXPECT_EQ("first", EntryText(m_Package, L"DUP.TXT"));
    EXPECT_EQ("other", EntryText(m_Package, L"other.TXT"));
    EXPECT_EQ("first", EntryText(m_Package, L"dup.txt"));
}

TEST_F(SkinPackageTest, OnlyAsciiLettersMatchInEitherCase)
{
    OpenTempZip(StoredZip({{"\xC4pfel.txt", "apples"}, {"Stra\xDF" "e.txt", "street"}}), L"ansi-names.zip");
    EXPECT_EQ("apples", EntryText(m_Package, L"\u00C4PFEL.TXT"));
    EXPECT_EQ("(absent)", EntryText(m_Package, L"\u00E4pfel.txt"));
    EXPECT_EQ("street", EntryText(m_Package, L"STRA\u00DFE.txt"));
}

TEST_F(SkinPackageTest, AnEntryNameEndsAtItsFirstZeroByte)
{
    OpenTempZip(StoredZip({{std::string("Cut\0Rest.txt", 12), "cut"}, {"Cut", "later"}}), L"zero-name.zip");
    EXPECT_EQ("cut", EntryText(m_Package, L"cut"));
    EXPECT_EQ("(absent)", EntryText(m_Package, L"Cut\u0001Rest.txt"));
}

TEST_F(SkinPackageTest, NamesOfUpTo255BytesAreFoundAndLongerOnesNever)
{
    const std::string longest(255, 'n');
    const std::string tooLong(256, 'n');
    OpenTempZip(StoredZip({{tooLong, "too long"}, {longest, "longest"}, {"Short.txt", "short"}}), L"long-names.zip");
    EXPECT_EQ("longest", EntryText(m_Package, std::wstring(255, L'N').c_str()));
    EXPECT_EQ("(absent)", EntryText(m_Package, std::wstring(256, L'n').c_str()));
    EXPECT_EQ("short", EntryText(m_Package, L"Short.txt"));
}

// minizip's search stops at a directory record it can't read, and its handle then finds
// nothing more, not even entries before that record. The package keeps that outcome.
TEST_F(SkinPackageTest, AfterASearchRunsIntoAnUnreadableDirectoryRecordNothingIsFound)
{
    std::vector<unsigned char> zip = StoredZip({{"A.txt", "a"}, {"B.txt", "b"}, {"C.txt", "c"}});
    size_t record = CentralRecordOf(zip, "B.txt");
    ASSERT_NE(std::string::npos, record);
    zip[record + 3] = 0x00; // no longer a directory record's signature
    const std::wstring path = OpenTempZip(zip, L"damaged-directory.zip");
    EXPECT_EQ("a", EntryText(m_Package, L"A.txt"));
    EXPECT_EQ("a", EntryText(m_Package, L"a.TXT"));
    // A name too long to look for is refused before any search.
    EXPECT_EQ("(absent)", EntryText(m_Package, std::wstring(300, L'x').c_str()));
    EXPECT_EQ("a", EntryText(m_Package, L"A.txt"));
    EXPECT_EQ("(absent)", EntryText(m_Package, L"C.txt"));
    EXPECT_EQ("(absent)", EntryText(m_Package, L"A.txt"));
    // A new opening starts afresh.
    m_Package.Open(path.c_str());
    EXPECT_EQ("a", EntryText(m_Package, L"A.txt"));
    EXPECT_EQ("(absent)", EntryText(m_Package, L"B.txt"));
    EXPECT_EQ("(absent)", EntryText(m_Package, L"A.txt"));
}

TEST_F(SkinPackageTest, AnUnreadableFirstDirectoryRecordHidesEveryEntry)
{
    std::vector<unsigned char> zip = StoredZip({{"A.txt", "a"}, {"B.txt", "b"}});
    size_t record = CentralRecordOf(zip, "A.txt");
    ASSERT_NE(std::string::npos, record);
    zip[record + 3] = 0x00;
    OpenTempZip(zip, L"damaged-first.zip");
    EXPECT_EQ("(absent)", EntryText(m_Package, L"A.txt"));
    EXPECT_EQ("(absent)", EntryText(m_Package, L"B.txt"));
}

TEST_F(SkinPackageTest, EntriesAcrossAPackageOfManyBlocksComeOutWhole)
{
    // Entries of sizes that straddle any read-ahead, and many records in the directory.
    std::vector<std::pair<std::string, std::string>> entries;
    for (int i = 0; i < 300; ++i) {
        std::string data;
        const size_t size = static_cast<size_t>(i % 7 == 0 ? 70000 + i * 13 : 1 + i * 37);
        for (size_t k = 0; k < size; ++k) {
            data.push_back(static_cast<char>('a' + (k * 7 + static_cast<size_t>(i)) % 26));
        }
        entries.emplace_back("Entries/" + std::to_string(i) + ".bin", data);
    }
    OpenTempZip(StoredZip(entries), L"many-blocks.zip");
    for (int i : {299, 0, 7, 150, 1, 298, 70, 7}) {
        const std::wstring name = L"entries/" + std::to_wstring(i) + L".BIN";
        EXPECT_EQ(entries[static_cast<size_t>(i)].second, EntryText(m_Package, name.c_str())) << i;
    }
    EXPECT_EQ("(absent)", EntryText(m_Package, L"Entries/300.bin"));
}

TEST_F(SkinPackageTest, BytesBeforeTheFirstEntryAreSkipped)
{
    std::vector<unsigned char> zip = StoredZip({{"A.txt", "alpha"}, {"B.txt", "beta"}});
    // A self-extracting stub: every offset in the archive is now short by its length.
    std::vector<unsigned char> stub(100000, 0x90);
    zip.insert(zip.begin(), stub.begin(), stub.end());
    OpenTempZip(zip, L"stub.zip");
    EXPECT_EQ("beta", EntryText(m_Package, L"B.txt"));
    EXPECT_EQ("alpha", EntryText(m_Package, L"A.txt"));
}
