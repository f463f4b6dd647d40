// What both skin tools share: UTF-8 console output, number arguments, and starting the
// library on a package with an account of why it failed.
#pragma once

#include "Mirl.h"
#include "MirlFolderPackage.h"
#include "Ostra.h"

#include <fcntl.h>
#include <io.h>

#include <cstdio>
#include <cstring>
#include <exception>
#include <new>
#include <cwchar>
#include <cwctype>
#include <string>

namespace mirltool {

// Wide output as UTF-8 on both streams, so that every language's texts arrive intact.
inline void UseUtf8Console()
{
    _setmode(_fileno(stdout), _O_U8TEXT);
    _setmode(_fileno(stderr), _O_U8TEXT);
}

// A whole decimal number without sign; false for anything else.
inline bool ParseDecimal(const wchar_t *text, unsigned long &value)
{
    if (text == nullptr || *text == L'\0') {
        return false;
    }
    unsigned long long result = 0;
    for (const wchar_t *p = text; *p != L'\0'; ++p) {
        if (*p < L'0' || *p > L'9') {
            return false;
        }
        result = result * 10 + static_cast<unsigned>(*p - L'0');
        if (result > 0xFFFFFFFFULL) {
            return false;
        }
    }
    value = static_cast<unsigned long>(result);
    return true;
}

// "WxH" with both above zero.
inline bool ParseSize(const wchar_t *text, int &width, int &height)
{
    if (text == nullptr) {
        return false;
    }
    std::wstring value(text);
    size_t x = value.find_first_of(L"xX");
    unsigned long w = 0;
    unsigned long h = 0;
    if (x == std::wstring::npos || !ParseDecimal(value.substr(0, x).c_str(), w) ||
        !ParseDecimal(value.substr(x + 1).c_str(), h) || w == 0 || h == 0 || w > 16384 || h > 16384) {
        return false;
    }
    width = static_cast<int>(w);
    height = static_cast<int>(h);
    return true;
}

inline std::wstring Hex32(unsigned long value)
{
    wchar_t text[16];
    std::swprintf(text, 16, L"0x%08lX", value);
    return text;
}

// How starting the library on a package went.
struct LibraryStart {
    bool loaded = false;         // the whole skin was read
    bool packageOpened = false;  // the package is open, whatever happened while reading it
    unsigned long hresult = 0;   // the COM or Win32 code of a reading failure
    std::wstring message;        // the library's account of a failure
};

// The exception being handled, described; call it only inside a catch block.
inline std::wstring DescribeCurrentException(unsigned long *code = nullptr)
{
    unsigned long value = 0;
    std::wstring text;
    try {
        throw;
    } catch (const MirlException &e) {
        value = static_cast<unsigned long>(e.error());
        text = L"MirlException code " + std::to_wstring(e.error()) + L": " +
               (e.what() != nullptr ? e.what() : L"(no message)");
    } catch (const _com_error &e) {
        value = static_cast<unsigned long>(e.Error());
        text = L"COM error " + Hex32(value);
    } catch (const OstraWin32Error &e) {
        value = e.code();
        text = L"Win32 error " + Hex32(value) + L": " + e.what();
    } catch (const std::bad_alloc &) {
        value = static_cast<unsigned long>(E_OUTOFMEMORY);
        text = L"out of memory";
    } catch (const std::exception &e) {
        const char *what = e.what();
        text = L"C++ exception: " + std::wstring(what, what + std::strlen(what));
    } catch (...) {
        text = L"an unknown exception";
    }
    if (code != nullptr) {
        *code = value;
    }
    return text;
}

// MirlIntialize with every failure it can raise turned into a description. The caller pairs
// it with MirlUnIntialize whatever the outcome.
inline LibraryStart StartLibrary(const wchar_t *package, unsigned int language)
{
    LibraryStart start;
    try {
        MirlIntialize(package, language);
        start.loaded = true;
        start.packageOpened = true;
    } catch (const MirlException &) {
        // Raised before or while opening: nothing of the package is readable.
        start.message = DescribeCurrentException(&start.hresult);
    } catch (const _com_error &) {
        start.packageOpened = true;
        start.message = DescribeCurrentException(&start.hresult) + L" while reading the skin";
    } catch (...) {
        start.packageOpened = true;
        start.message = DescribeCurrentException(&start.hresult);
    }
    return start;
}

// StartLibrary on a skin as an author gives it: a package, or a folder, which is packed into
// folder (a temporary archive that lives as long as that object) and read as its package.
inline LibraryStart StartSkin(const std::wstring &skin, unsigned int language, FolderPackage &folder)
{
    if (!IsFolder(skin)) {
        return StartLibrary(skin.c_str(), language);
    }
    std::wstring error;
    if (!folder.Pack(skin, error)) {
        LibraryStart start;
        start.message = L"the folder could not be read as a package: " + error;
        return start;
    }
    return StartLibrary(folder.path().c_str(), language);
}

inline bool EqualsIgnoringCase(const std::wstring &a, const std::wstring &b)
{
    return _wcsicmp(a.c_str(), b.c_str()) == 0;
}

} // namespace mirltool
