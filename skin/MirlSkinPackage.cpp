#include "MirlSkinPackage.h"

#include "MirlException.h"
#include "Ostra.h"

#include <unzip.h>

#include <vector>

namespace {

// minizip's case-insensitive name comparison.
const int kCaseInsensitive = 2;

// A stream that owns the block; null (and the block freed) if it can't be made.
IStreamPtr StreamOnBlock(HGLOBAL block)
{
    if (block == nullptr) {
        return IStreamPtr();
    }
    IStream *stream = nullptr;
    if (FAILED(CreateStreamOnHGlobal(block, TRUE, &stream)) || stream == nullptr) {
        GlobalFree(block);
        return IStreamPtr();
    }
    return IStreamPtr(stream, false);
}

// The length of a block without its zero tail, rounded up to even so that a UTF-16 document
// keeps the zero high byte of its last character.
SIZE_T ContentLength(HGLOBAL block)
{
    SIZE_T size = GlobalSize(block);
    const unsigned char *data = size > 0 ? static_cast<const unsigned char *>(GlobalLock(block)) : nullptr;
    if (data == nullptr) {
        return 0;
    }
    SIZE_T length = size;
    while (length > 0 && data[length - 1] == 0) {
        --length;
    }
    GlobalUnlock(block);
    return length + (length % 2 != 0 && length < size ? 1 : 0);
}

} // namespace

MirlSkinPackage::MirlSkinPackage() : m_ZipHandle(nullptr)
{
}

MirlSkinPackage::~MirlSkinPackage()
{
    if (m_ZipHandle != nullptr) {
        unzClose(static_cast<unzFile>(m_ZipHandle));
        m_ZipHandle = nullptr;
    }
}

std::string MirlSkinPackage::ToAnsi(const wchar_t *text)
{
    if (text == nullptr) {
        text = L"";
    }
    int length = WideCharToMultiByte(CP_ACP, 0, text, -1, nullptr, 0, nullptr, nullptr);
    if (length < 1) {
        RaiseWin32Error(GetLastError());
    }
    std::vector<char> buffer(static_cast<size_t>(length));
    int written = WideCharToMultiByte(CP_ACP, 0, text, -1, buffer.data(), length, nullptr, nullptr);
    if (written < 1) {
        RaiseWin32Error(GetLastError());
    }
    buffer[static_cast<size_t>(written) - 1] = '\0';
    return std::string(buffer.data());
}

void MirlSkinPackage::Open(const wchar_t *path)
{
    std::string narrow = ToAnsi(path);
    if (m_ZipHandle != nullptr) {
        unzClose(static_cast<unzFile>(m_ZipHandle));
        m_ZipHandle = nullptr;
    }
    m_ZipHandle = unzOpen(narrow.c_str());
    if (m_ZipHandle == nullptr) {
        MIRL::RaiseMirlException(MIRL_ERROR_PACKAGE_OPEN, narrow.c_str());
    }
}

bool MirlSkinPackage::IsOpen() const
{
    return m_ZipHandle != nullptr;
}

void *MirlSkinPackage::ExtractFileToHGLOBAL(const char *fileName)
{
    unzFile zip = static_cast<unzFile>(m_ZipHandle);
    if (zip == nullptr || fileName == nullptr) {
        return nullptr;
    }
    if (unzLocateFile(zip, fileName, kCaseInsensitive) != UNZ_OK) {
        return nullptr;
    }
    unz_file_info info = {};
    unzGetCurrentFileInfo(zip, &info, nullptr, 0, nullptr, 0, nullptr, 0);
    if (info.uncompressed_size > MaxEntrySize) {
        return nullptr;
    }
    HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, info.uncompressed_size);
    if (block == nullptr) {
        RaiseWin32Error(GetLastError());
    }
    if (info.uncompressed_size == 0) {
        // An empty movable block has no memory to lock; the handle alone is the empty entry.
        return block;
    }
    void *data = GlobalLock(block);
    if (data == nullptr) {
        DWORD error = GetLastError();
        GlobalFree(block);
        RaiseWin32Error(error);
    }
    // One read of the whole entry: the size comes from the directory. A damaged entry
    // leaves the block zero from where inflating stopped.
    if (unzOpenCurrentFile(zip) == UNZ_OK) {
        unzReadCurrentFile(zip, data, static_cast<unsigned>(info.uncompressed_size));
    }
    GlobalUnlock(block);
    return block;
}

void *MirlSkinPackage::ExtractFileToHGLOBAL(const wchar_t *fileName)
{
    if (fileName == nullptr) {
        return nullptr;
    }
    return ExtractFileToHGLOBAL(ToAnsi(fileName).c_str());
}

IStreamPtr MirlSkinPackage::ExtractFile(const char *fileName)
{
    return StreamOnBlock(static_cast<HGLOBAL>(ExtractFileToHGLOBAL(fileName)));
}

IStreamPtr MirlSkinPackage::ExtractDocument(const wchar_t *fileName)
{
    if (fileName == nullptr) {
        return IStreamPtr();
    }
    HGLOBAL block = static_cast<HGLOBAL>(ExtractFileToHGLOBAL(ToAnsi(fileName).c_str()));
    const SIZE_T length = block != nullptr ? ContentLength(block) : 0;
    IStreamPtr stream = StreamOnBlock(block);
    if (stream != nullptr) {
        ULARGE_INTEGER size;
        size.QuadPart = length;
        stream->SetSize(size);
    }
    return stream;
}

IStreamPtr MirlSkinPackage::ExtractFile(const wchar_t *fileName)
{
    if (fileName == nullptr) {
        return IStreamPtr();
    }
    return ExtractFile(ToAnsi(fileName).c_str());
}
