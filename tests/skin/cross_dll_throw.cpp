// A plain program, no test framework: exceptions thrown inside MIRL.dll and Ostra.dll must
// reach this program's catch blocks. Exits 0 when all three kinds arrive intact.
#include "Mirl.h"
#include "Ostra.h"

#include <cstdio>
#include <cwchar>
#include <string>

static std::wstring BinDir()
{
    wchar_t path[MAX_PATH] = {};
    DWORD length = GetModuleFileNameW(nullptr, path, MAX_PATH);
    std::wstring dir(path, length);
    return dir.substr(0, dir.find_last_of(L"\\/"));
}

int main()
{
    int failures = 0;

    std::wstring missing = BinDir() + L"\\skins\\not-there.zip";
    try {
        MirlIntialize(missing.c_str(), 1033);
        std::printf("FAIL: MirlIntialize returned for a missing package\n");
        ++failures;
    } catch (const MirlException &e) {
        bool ok = e.error() == 1 && e.what() != nullptr && missing == e.what();
        std::printf("%s: MirlException code %d\n", ok ? "ok" : "FAIL", e.error());
        failures += ok ? 0 : 1;
    } catch (...) {
        std::printf("FAIL: another exception type arrived\n");
        ++failures;
    }
    MirlUnIntialize();

    std::wstring bad = BinDir() + L"\\skins\\bad_color.zip";
    try {
        MirlIntialize(bad.c_str(), 1033);
        std::printf("FAIL: MirlIntialize returned for a bad colour\n");
        ++failures;
    } catch (const _com_error &e) {
        bool ok = e.Error() == DISP_E_OVERFLOW;
        std::printf("%s: _com_error 0x%08lX\n", ok ? "ok" : "FAIL", static_cast<unsigned long>(e.Error()));
        failures += ok ? 0 : 1;
    } catch (...) {
        std::printf("FAIL: another exception type arrived\n");
        ++failures;
    }
    MirlUnIntialize();

    try {
        RaiseWin32Error(ERROR_ACCESS_DENIED);
    } catch (const OstraWin32Error &e) {
        bool ok = e.code() == ERROR_ACCESS_DENIED && wcslen(e.what()) > 0;
        std::printf("%s: OstraWin32Error %lu\n", ok ? "ok" : "FAIL", e.code());
        failures += ok ? 0 : 1;
    }

    std::printf("%d passed, %d failed\n", 3 - failures, failures);
    return failures == 0 ? 0 : 1;
}
