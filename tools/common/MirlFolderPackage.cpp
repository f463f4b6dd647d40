#include "MirlFolderPackage.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>

namespace mirltool {

namespace {

void Put16(std::vector<unsigned char> &out, unsigned value)
{
    out.push_back(static_cast<unsigned char>(value & 0xFF));
    out.push_back(static_cast<unsigned char>((value >> 8) & 0xFF));
}

void Put32(std::vector<unsigned char> &out, unsigned long value)
{
    Put16(out, static_cast<unsigned>(value & 0xFFFF));
    Put16(out, static_cast<unsigned>((value >> 16) & 0xFFFF));
}

void ListInto(const std::wstring &root, const std::wstring &relative, std::vector<std::wstring> &names)
{
    WIN32_FIND_DATAW found = {};
    std::wstring pattern = root + L"\\" + relative + (relative.empty() ? L"*" : L"\\*");
    HANDLE search = ::FindFirstFileW(pattern.c_str(), &found);
    if (search == INVALID_HANDLE_VALUE) {
        return;
    }
    do {
        std::wstring name = found.cFileName;
        if (name == L"." || name == L"..") {
            continue;
        }
        std::wstring path = relative.empty() ? name : relative + L"\\" + name;
        if ((found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
            ListInto(root, path, names);
        } else {
            names.push_back(path);
        }
    } while (::FindNextFileW(search, &found));
    ::FindClose(search);
}

bool ReadWholeFile(const std::wstring &path, std::vector<unsigned char> &data)
{
    HANDLE file = ::CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        return false;
    }
    LARGE_INTEGER size = {};
    bool ok = ::GetFileSizeEx(file, &size) != 0 && size.QuadPart < 0x7FFFFFFF;
    if (ok) {
        data.resize(static_cast<size_t>(size.QuadPart));
        DWORD read = 0;
        ok = data.empty() || (::ReadFile(file, data.data(), static_cast<DWORD>(data.size()), &read, nullptr) != 0 &&
                              read == data.size());
    }
    ::CloseHandle(file);
    return ok;
}

std::string AnsiName(const std::wstring &name)
{
    // Package entry names are matched in the ANSI code page, as the library converts them.
    int length = ::WideCharToMultiByte(CP_ACP, 0, name.c_str(), static_cast<int>(name.size()), nullptr, 0, nullptr, nullptr);
    std::string text(static_cast<size_t>(length > 0 ? length : 0), '\0');
    if (length > 0) {
        ::WideCharToMultiByte(CP_ACP, 0, name.c_str(), static_cast<int>(name.size()), &text[0], length, nullptr, nullptr);
    }
    std::replace(text.begin(), text.end(), '\\', '/');
    return text;
}

} // namespace

unsigned long Crc32(const unsigned char *data, size_t size)
{
    static unsigned long table[256];
    static bool ready = false;
    if (!ready) {
        for (unsigned long n = 0; n < 256; ++n) {
            unsigned long c = n;
            for (int k = 0; k < 8; ++k) {
                c = (c & 1) != 0 ? 0xEDB88320UL ^ (c >> 1) : c >> 1;
            }
            table[n] = c;
        }
        ready = true;
    }
    unsigned long crc = 0xFFFFFFFFUL;
    for (size_t i = 0; i < size; ++i) {
        crc = table[(crc ^ data[i]) & 0xFF] ^ (crc >> 8);
    }
    return crc ^ 0xFFFFFFFFUL;
}

bool IsFolder(const std::wstring &path)
{
    DWORD attributes = ::GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

std::vector<std::wstring> ListFolder(const std::wstring &folder)
{
    std::vector<std::wstring> names;
    ListInto(folder, L"", names);
    std::sort(names.begin(), names.end());
    for (std::wstring &name : names) {
        std::replace(name.begin(), name.end(), L'\\', L'/');
    }
    return names;
}

std::wstring SkinSignature(const std::wstring &path)
{
    std::vector<std::wstring> names;
    std::wstring prefix = path;
    if (IsFolder(path)) {
        names = ListFolder(path);
        prefix += L"\\";
    } else {
        names.push_back(L"");
    }
    std::wstring signature;
    for (const std::wstring &name : names) {
        WIN32_FILE_ATTRIBUTE_DATA data = {};
        signature += name;
        if (::GetFileAttributesExW((prefix + name).c_str(), GetFileExInfoStandard, &data)) {
            wchar_t text[64];
            std::swprintf(text, 64, L"|%lu:%lu|%lu:%lu\n", data.nFileSizeHigh, data.nFileSizeLow,
                          data.ftLastWriteTime.dwHighDateTime, data.ftLastWriteTime.dwLowDateTime);
            signature += text;
        } else {
            signature += L"|missing\n";
        }
    }
    return signature;
}

FolderPackage::~FolderPackage()
{
    if (!m_Path.empty()) {
        ::DeleteFileW(m_Path.c_str());
    }
}

bool FolderPackage::Pack(const std::wstring &folder, std::wstring &error)
{
    std::vector<unsigned char> archive;
    std::vector<unsigned char> directory;
    unsigned long count = 0;
    for (const std::wstring &name : ListFolder(folder)) {
        std::vector<unsigned char> data;
        std::wstring file = folder + L"\\" + name;
        std::replace(file.begin(), file.end(), L'/', L'\\');
        if (!ReadWholeFile(file, data)) {
            error = L"cannot read " + file;
            return false;
        }
        std::string entry = AnsiName(name);
        unsigned long crc = Crc32(data.data(), data.size());
        unsigned long offset = static_cast<unsigned long>(archive.size());
        // Local header: version 2.0, no flags, stored, no time, sizes, name.
        Put32(archive, 0x04034B50UL);
        Put16(archive, 20);
        Put16(archive, 0);
        Put16(archive, 0);
        Put32(archive, 0);
        Put32(archive, crc);
        Put32(archive, static_cast<unsigned long>(data.size()));
        Put32(archive, static_cast<unsigned long>(data.size()));
        Put16(archive, static_cast<unsigned>(entry.size()));
        Put16(archive, 0);
        archive.insert(archive.end(), entry.begin(), entry.end());
        archive.insert(archive.end(), data.begin(), data.end());
        // Its central directory record.
        Put32(directory, 0x02014B50UL);
        Put16(directory, 20);
        Put16(directory, 20);
        Put16(directory, 0);
        Put16(directory, 0);
        Put32(directory, 0);
        Put32(directory, crc);
        Put32(directory, static_cast<unsigned long>(data.size()));
        Put32(directory, static_cast<unsigned long>(data.size()));
        Put16(directory, static_cast<unsigned>(entry.size()));
        Put16(directory, 0);
        Put16(directory, 0);
        Put16(directory, 0);
        Put16(directory, 0);
        Put32(directory, 0);
        Put32(directory, offset);
        directory.insert(directory.end(), entry.begin(), entry.end());
        ++count;
        if (archive.size() > 0x7FFFFFFFUL || count > 0xFFFF) {
            error = L"the folder holds more than a ZIP without extensions can";
            return false;
        }
    }
    unsigned long directoryOffset = static_cast<unsigned long>(archive.size());
    archive.insert(archive.end(), directory.begin(), directory.end());
    Put32(archive, 0x06054B50UL);
    Put16(archive, 0);
    Put16(archive, 0);
    Put16(archive, static_cast<unsigned>(count));
    Put16(archive, static_cast<unsigned>(count));
    Put32(archive, static_cast<unsigned long>(directory.size()));
    Put32(archive, directoryOffset);
    Put16(archive, 0);

    wchar_t folderPath[MAX_PATH] = {};
    wchar_t filePath[MAX_PATH] = {};
    if (::GetTempPathW(MAX_PATH, folderPath) == 0 || ::GetTempFileNameW(folderPath, L"mrl", 0, filePath) == 0) {
        error = L"cannot make a temporary file for the folder's package";
        return false;
    }
    if (!m_Path.empty()) {
        ::DeleteFileW(m_Path.c_str());
    }
    m_Path = filePath;
    HANDLE file = ::CreateFileW(m_Path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_TEMPORARY, nullptr);
    DWORD written = 0;
    bool ok = file != INVALID_HANDLE_VALUE &&
              ::WriteFile(file, archive.data(), static_cast<DWORD>(archive.size()), &written, nullptr) != 0 &&
              written == archive.size();
    if (file != INVALID_HANDLE_VALUE) {
        ::CloseHandle(file);
    }
    if (!ok) {
        error = L"cannot write the folder's package " + m_Path;
    }
    return ok;
}

} // namespace mirltool
