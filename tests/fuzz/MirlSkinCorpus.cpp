#include "MirlSkinCorpus.h"

#include <windows.h>

#include <algorithm>

namespace mirlfuzz {

namespace {

void CollectFiles(const std::wstring &root, const std::wstring &relative, std::vector<SkinFile> &files)
{
    WIN32_FIND_DATAW found;
    std::wstring pattern = root + L"\\" + relative + L"*";
    HANDLE search = FindFirstFileW(pattern.c_str(), &found);
    if (search == INVALID_HANDLE_VALUE) {
        return;
    }
    std::vector<std::wstring> names;
    std::vector<std::wstring> folders;
    do {
        std::wstring name = found.cFileName;
        if (name == L"." || name == L"..") {
            continue;
        }
        (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY ? folders : names).push_back(name);
    } while (FindNextFileW(search, &found));
    FindClose(search);
    std::sort(names.begin(), names.end());
    std::sort(folders.begin(), folders.end());
    for (const std::wstring &name : names) {
        SkinFile file;
        file.name = Narrow(relative + name);
        std::replace(file.name.begin(), file.name.end(), '\\', '/');
        if (ReadWholeFile(root + L"\\" + relative + name, file.data)) {
            files.push_back(file);
        }
    }
    for (const std::wstring &folder : folders) {
        CollectFiles(root, relative + folder + L"\\", files);
    }
}

} // namespace

std::wstring Widen(const std::string &text)
{
    if (text.empty()) {
        return std::wstring();
    }
    int length = MultiByteToWideChar(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), nullptr, 0);
    std::wstring wide(static_cast<size_t>(length), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), &wide[0], length);
    return wide;
}

std::string Narrow(const std::wstring &text)
{
    if (text.empty()) {
        return std::string();
    }
    int length = WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), nullptr, 0, nullptr, nullptr);
    std::string narrow(static_cast<size_t>(length), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), &narrow[0], length, nullptr, nullptr);
    return narrow;
}

bool ReadWholeFile(const std::wstring &path, Bytes &data)
{
    HANDLE file = CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        return false;
    }
    LARGE_INTEGER size = {};
    bool ok = GetFileSizeEx(file, &size) != 0 && size.QuadPart < 256 * 1024 * 1024;
    if (ok) {
        data.resize(static_cast<size_t>(size.QuadPart));
        DWORD read = 0;
        ok = data.empty() || (ReadFile(file, data.data(), static_cast<DWORD>(data.size()), &read, nullptr) &&
                              read == data.size());
    }
    CloseHandle(file);
    return ok;
}

bool WriteWholeFile(const std::wstring &path, const Bytes &data)
{
    HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        return false;
    }
    DWORD written = 0;
    bool ok = data.empty() || (WriteFile(file, data.data(), static_cast<DWORD>(data.size()), &written, nullptr) &&
                               written == data.size());
    CloseHandle(file);
    return ok;
}

std::wstring ProgramFolder()
{
    wchar_t path[MAX_PATH] = {};
    DWORD length = GetModuleFileNameW(nullptr, path, MAX_PATH);
    std::wstring folder(path, length);
    size_t slash = folder.find_last_of(L"\\/");
    return slash == std::wstring::npos ? std::wstring(L".") : folder.substr(0, slash);
}

std::wstring DefaultCorpusFolder()
{
    return ProgramFolder() + L"\\fuzz-corpus";
}

std::vector<CorpusSkin> LoadCorpus(const std::wstring &folder)
{
    std::vector<CorpusSkin> corpus;
    WIN32_FIND_DATAW found;
    HANDLE search = FindFirstFileW((folder + L"\\*").c_str(), &found);
    if (search == INVALID_HANDLE_VALUE) {
        return corpus;
    }
    std::vector<std::wstring> skins;
    do {
        std::wstring name = found.cFileName;
        if ((found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) && name != L"." && name != L"..") {
            skins.push_back(name);
        }
    } while (FindNextFileW(search, &found));
    FindClose(search);
    std::sort(skins.begin(), skins.end());
    for (const std::wstring &name : skins) {
        CorpusSkin skin;
        skin.label = Narrow(name);
        CollectFiles(folder + L"\\" + name, L"", skin.files);
        corpus.push_back(skin);
    }
    return corpus;
}

} // namespace mirlfuzz
