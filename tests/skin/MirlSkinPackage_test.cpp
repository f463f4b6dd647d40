#include "MirlSkinPackage.h"
#include "MirlTestSupport.h"
#include "Ostra.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>
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

class SkinPackageTest : public ::testing::Test {
protected:
    mirltest::ComScope m_Com;
    MirlSkinPackage m_Package;
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
