#include "MirlSkinPackage.h"

#include "MirlException.h"
#include "Ostra.h"

#include <unzip.h>

#include <cstdio>
#include <cstring>
#include <memory>
#include <new>
#include <string>
#include <unordered_map>
#include <vector>

namespace {

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

// The first block a document is read into: real documents fit it whole, and a directory
// record that declares far more than the entry holds costs no more than this until the
// inflated bytes really need more room.
const size_t kFirstDocumentBlock = 4 * 1024 * 1024;

// Raises the last Win32 error after freeing the block.
[[noreturn]] void RaiseFreeing(HGLOBAL block)
{
    DWORD error = GetLastError();
    GlobalFree(block);
    RaiseWin32Error(error);
}

// The current entry as the block of its declared size would hold it, without the zero tail,
// inflated straight into the movable block that its stream will own, so that a document is
// copied once. The block starts at most kFirstDocumentBlock long and grows as the inflated
// bytes need, so that a document whose directory declares 64 MiB costs what it really holds.
// A damaged entry keeps what was inflated before the damage. The length is rounded up to even
// (with a zero, as the block would have) so that a UTF-16 document keeps the zero high byte of
// its last character.
HGLOBAL ReadWithoutZeroTail(unzFile zip, uLong declared)
{
    size_t capacity = declared < kFirstDocumentBlock ? declared : kFirstDocumentBlock;
    HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, capacity);
    if (block == nullptr) {
        RaiseWin32Error(GetLastError());
    }
    // Bytes counted as read: what was inflated, or, after damage, the whole span asked for,
    // whose rest is zero.
    size_t held = 0;
    if (declared > 0 && unzOpenCurrentFile(zip) == UNZ_OK) {
        for (;;) {
            if (held == capacity) {
                if (capacity == declared) {
                    break;
                }
                const size_t larger = declared - capacity < capacity ? declared : capacity * 2;
                HGLOBAL grown = GlobalReAlloc(block, larger, GMEM_MOVEABLE | GMEM_ZEROINIT);
                if (grown == nullptr) {
                    RaiseFreeing(block);
                }
                block = grown;
                capacity = larger;
            }
            unsigned char *data = static_cast<unsigned char *>(GlobalLock(block));
            if (data == nullptr) {
                RaiseFreeing(block);
            }
            const size_t want = capacity - held;
            const int got = unzReadCurrentFile(zip, data + held, static_cast<unsigned>(want));
            GlobalUnlock(block);
            if (got < 0) {
                held += want;
                break;
            }
            held += static_cast<size_t>(got);
            if (got == 0 || static_cast<size_t>(got) < want) {
                break;
            }
        }
    }
    size_t length = held;
    if (length > 0) {
        const unsigned char *data = static_cast<const unsigned char *>(GlobalLock(block));
        if (data == nullptr) {
            RaiseFreeing(block);
        }
        while (length > 0 && data[length - 1] == 0) {
            --length;
        }
        GlobalUnlock(block);
    }
    if (length % 2 != 0 && length < declared) {
        ++length;
    }
    if (length == capacity) {
        return block;
    }
    if (length == 0) {
        // An empty movable block has no memory; the handle alone is the empty document.
        GlobalFree(block);
        block = GlobalAlloc(GMEM_MOVEABLE, 0);
        if (block == nullptr) {
            RaiseWin32Error(GetLastError());
        }
        return block;
    }
    // The bytes past the length are zero: a block that grows to take in the rounding byte
    // gets a zero too.
    HGLOBAL fitted = GlobalReAlloc(block, length, GMEM_MOVEABLE | GMEM_ZEROINIT);
    if (fitted == nullptr) {
        RaiseFreeing(block);
    }
    return fitted;
}

// minizip's UNZ_MAXFILENAMEINZIP, which unzip.c keeps to itself: it looks for no name this long,
// and reads no more of an entry's name than this.
const size_t kNameLimit = 256;

// A name as minizip's case-insensitive comparison sees it: ASCII letters in upper case, other
// bytes as they are.
std::string FoldedName(const char *name)
{
    std::string folded(name);
    for (char &c : folded) {
        if (c >= 'a' && c <= 'z') {
            c = static_cast<char>(c - 0x20);
        }
    }
    return folded;
}

// The archive file as minizip's own functions open it, read through a window of its bytes.
// minizip reads a directory record a byte at a time and seeks between records; through the C
// library each of those calls costs, and every seek throws away what it had buffered. Here a
// seek only moves a position, and reads come from memory. Positions follow the C library's
// rules as minizip uses them: the offset is cut to z_off_t as minizip casts it, a position
// before the start fails and leaves the position alone, one past the end is allowed and
// reads nothing there. A file whose length can't be taken goes through minizip's functions as it is.
class WindowedFile {
public:
    static voidpf ZCALLBACK Open(voidpf opaque, const void *fileName, int mode)
    {
        zlib_filefunc64_def standard;
        fill_fopen64_filefunc(&standard);
        voidpf stream = standard.zopen64_file(standard.opaque, fileName, mode);
        if (stream == nullptr) {
            return nullptr;
        }
        WindowedFile *file = new (std::nothrow) WindowedFile(standard, static_cast<FILE *>(stream));
        if (file == nullptr) {
            standard.zclose_file(standard.opaque, stream);
            return nullptr;
        }
        return file;
    }

    static uLong ZCALLBACK Read(voidpf, voidpf stream, void *buffer, uLong size)
    {
        return static_cast<WindowedFile *>(stream)->Read(static_cast<unsigned char *>(buffer), size);
    }

    static uLong ZCALLBACK Write(voidpf, voidpf, const void *, uLong)
    {
        return 0;
    }

    static ZPOS64_T ZCALLBACK Tell(voidpf, voidpf stream)
    {
        WindowedFile *file = static_cast<WindowedFile *>(stream);
        if (file->m_Length < 0) {
            return file->m_Standard.ztell64_file(file->m_Standard.opaque, file->m_File);
        }
        return static_cast<ZPOS64_T>(file->m_Position);
    }

    static long ZCALLBACK Seek(voidpf, voidpf stream, ZPOS64_T offset, int origin)
    {
        return static_cast<WindowedFile *>(stream)->Seek(offset, origin);
    }

    static int ZCALLBACK Close(voidpf, voidpf stream)
    {
        WindowedFile *file = static_cast<WindowedFile *>(stream);
        int result = file->m_Standard.zclose_file(file->m_Standard.opaque, file->m_File);
        delete file;
        return result;
    }

    static int ZCALLBACK Error(voidpf, voidpf stream)
    {
        WindowedFile *file = static_cast<WindowedFile *>(stream);
        return file->m_Standard.zerror_file(file->m_Standard.opaque, file->m_File);
    }

    static void Fill(zlib_filefunc64_def &functions)
    {
        functions.zopen64_file = Open;
        functions.zread_file = Read;
        functions.zwrite_file = Write;
        functions.ztell64_file = Tell;
        functions.zseek64_file = Seek;
        functions.zclose_file = Close;
        functions.zerror_file = Error;
        functions.opaque = nullptr;
    }

private:
    enum : size_t { WindowSize = 64 * 1024 };

    WindowedFile(const zlib_filefunc64_def &standard, FILE *file)
        : m_Standard(standard), m_File(file), m_Length(-1), m_Position(0), m_WindowStart(0), m_WindowLength(0)
    {
        if (_fseeki64(m_File, 0, SEEK_END) == 0) {
            const long long length = _ftelli64(m_File);
            if (length >= 0 && _fseeki64(m_File, 0, SEEK_SET) == 0) {
                m_Length = length;
            }
        }
    }

    long Seek(ZPOS64_T offset, int origin)
    {
        if (m_Length < 0) {
            return m_Standard.zseek64_file(m_Standard.opaque, m_File, offset, origin);
        }
        long long base = 0;
        switch (origin) {
        case ZLIB_FILEFUNC_SEEK_SET: base = 0; break;
        case ZLIB_FILEFUNC_SEEK_CUR: base = m_Position; break;
        case ZLIB_FILEFUNC_SEEK_END: base = m_Length; break;
        default: return -1;
        }
        const long long target = base + static_cast<long long>(static_cast<z_off_t>(offset));
        if (target < 0) {
            return -1;
        }
        m_Position = target;
        return 0;
    }

    uLong Read(unsigned char *buffer, uLong size)
    {
        if (m_Length < 0) {
            return m_Standard.zread_file(m_Standard.opaque, m_File, buffer, size);
        }
        uLong done = 0;
        while (done < size) {
            const uLong wanted = size - done;
            if (m_Position >= m_WindowStart && m_Position < m_WindowStart + static_cast<long long>(m_WindowLength)) {
                const size_t offset = static_cast<size_t>(m_Position - m_WindowStart);
                const size_t available = m_WindowLength - offset;
                const size_t count = wanted < available ? wanted : available;
                std::memcpy(buffer + done, m_Window + offset, count);
                done += static_cast<uLong>(count);
                m_Position += static_cast<long long>(count);
                continue;
            }
            if (m_Position >= m_Length || _fseeki64(m_File, m_Position, SEEK_SET) != 0) {
                break;
            }
            if (wanted >= WindowSize) {
                // A large read goes straight into the caller's buffer.
                const size_t count = fread(buffer + done, 1, wanted, m_File);
                done += static_cast<uLong>(count);
                m_Position += static_cast<long long>(count);
                break;
            }
            m_WindowStart = m_Position;
            m_WindowLength = fread(m_Window, 1, WindowSize, m_File);
            if (m_WindowLength == 0) {
                break;
            }
        }
        return done;
    }

    zlib_filefunc64_def m_Standard;
    FILE *m_File;
    long long m_Length; // negative: read straight through
    long long m_Position;
    long long m_WindowStart;
    size_t m_WindowLength;
    unsigned char m_Window[WindowSize];
};

} // namespace

// Every name of the archive, read once, so that finding an entry is one jump rather than a
// walk over the whole central directory for each. Finding answers exactly as unzLocateFile
// does: the walk below is its walk, the first of several equal names wins, and once a walk
// has run into a record minizip can't read, minizip's handle finds nothing any more.
struct MirlSkinPackage::Directory {
    std::unordered_map<std::string, unz64_file_pos> firstOfName;
    // minizip's handle finds nothing any more.
    bool exhausted = false;
    // The walk stopped at an unreadable record: a name it didn't pass leaves minizip's
    // handle unable to find anything.
    bool endsOnDamage = false;

    void Read(unzFile zip);
};

void MirlSkinPackage::Directory::Read(unzFile zip)
{
    int status = unzGoToFirstFile(zip);
    if (status != UNZ_OK) {
        // As after unzOpen: minizip has no current entry to start from.
        exhausted = true;
        return;
    }
    for (;;) {
        char name[kNameLimit + 1];
        // unzLocateFile's own buffer: a longer name is cut at 256 bytes and not terminated.
        status = unzGetCurrentFileInfo64(zip, nullptr, name, sizeof(name) - 1, nullptr, 0, nullptr, 0);
        if (status != UNZ_OK) {
            // A name that can't be read ends the search there, without harm to the handle.
            return;
        }
        name[kNameLimit] = '\0';
        unz64_file_pos position = {};
        unzGetFilePos64(zip, &position);
        std::string key = FoldedName(name);
        // A name of 256 bytes or more never equals one that minizip accepts to look for.
        if (key.size() < kNameLimit) {
            firstOfName.emplace(std::move(key), position);
        }
        status = unzGoToNextFile(zip);
        if (status != UNZ_OK) {
            endsOnDamage = status != UNZ_END_OF_LIST_OF_FILE;
            return;
        }
    }
}

MirlSkinPackage::MirlSkinPackage() : m_ZipHandle(nullptr), m_Directory(nullptr)
{
}

MirlSkinPackage::~MirlSkinPackage()
{
    Close();
}

void MirlSkinPackage::Close()
{
    if (m_ZipHandle != nullptr) {
        unzClose(static_cast<unzFile>(m_ZipHandle));
        m_ZipHandle = nullptr;
    }
    delete m_Directory;
    m_Directory = nullptr;
}

bool MirlSkinPackage::Locate(const char *fileName)
{
    unzFile zip = static_cast<unzFile>(m_ZipHandle);
    if (std::strlen(fileName) >= kNameLimit) {
        // minizip refuses such a name before it looks.
        return false;
    }
    if (m_Directory == nullptr) {
        std::unique_ptr<Directory> directory(new Directory());
        directory->Read(zip);
        m_Directory = directory.release();
    }
    if (m_Directory->exhausted) {
        return false;
    }
    std::unordered_map<std::string, unz64_file_pos>::const_iterator found =
        m_Directory->firstOfName.find(FoldedName(fileName));
    if (found == m_Directory->firstOfName.end()) {
        if (m_Directory->endsOnDamage) {
            m_Directory->exhausted = true;
        }
        return false;
    }
    if (unzGoToFilePos64(zip, &found->second) != UNZ_OK) {
        m_Directory->exhausted = true;
        return false;
    }
    return true;
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
    Close();
    zlib_filefunc64_def functions;
    WindowedFile::Fill(functions);
    m_ZipHandle = unzOpen2_64(narrow.c_str(), &functions);
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
    if (!Locate(fileName)) {
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
    unzFile zip = static_cast<unzFile>(m_ZipHandle);
    if (zip == nullptr || fileName == nullptr) {
        return IStreamPtr();
    }
    if (!Locate(ToAnsi(fileName).c_str())) {
        return IStreamPtr();
    }
    unz_file_info info = {};
    unzGetCurrentFileInfo(zip, &info, nullptr, 0, nullptr, 0, nullptr, 0);
    if (info.uncompressed_size > MaxEntrySize) {
        return IStreamPtr();
    }
    HGLOBAL block = ReadWithoutZeroTail(zip, info.uncompressed_size);
    return StreamOnBlock(block);
}

IStreamPtr MirlSkinPackage::ExtractFile(const wchar_t *fileName)
{
    if (fileName == nullptr) {
        return IStreamPtr();
    }
    return ExtractFile(ToAnsi(fileName).c_str());
}
