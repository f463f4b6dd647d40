// mirllint: loads a skin with the library's own loader, walks its documents again to see what
// the loader silently drops, and reports one line per finding:
//
//   FILE: warning|error: PATH: message [rule-name]
//
//   mirllint SKIN [--lang ID]... [--json]
//
// SKIN is a package or a skin folder, which is read as its package would be.
//
// Exit codes: 0 no error (warnings allowed), 1 at least one error, 2 usage.
#include "MirlToolSupport.h"

#include "MirlLintChecks.h"
#include "MirlLintReport.h"
#include "MirlLintSkin.h"

#include <cstdio>
#include <string>
#include <vector>

namespace {

const wchar_t kUsage[] = L"usage: mirllint SKIN [--lang ID]... [--json]\nSKIN is a skin package (.zip) or a skin folder, read as its package would be.\n";

std::wstring BaseName(const std::wstring &path)
{
    size_t slash = path.find_last_of(L"\\/");
    return slash == std::wstring::npos ? path : path.substr(slash + 1);
}

// Loads the package, walks and checks it, prints the report; the exit code.
int CheckPackage(const std::wstring &package, const std::vector<unsigned int> &languages, bool json)
{
    mirllint::Report report;
    mirltool::FolderPackage folder;
    mirltool::LibraryStart start = mirltool::StartSkin(package, 1033, folder);
    if (!start.packageOpened) {
        report.Add(mirllint::Severity::Error, mirllint::Location{BaseName(package), L"", 0},
                   L"the library could not open the package: " + start.message, L"package-unreadable", 0);
    } else {
        MirlUI *ui = MirlUI::Instance();
        mirllint::Skin skin;
        mirllint::WalkSkin(ui, skin, report);
        mirllint::CheckSkin(ui, skin, languages, report);
        mirllint::CompareWithLibrary(ui, skin, start.loaded, start.hresult, report);
    }
    report.Sort();
    std::wstring output = json ? report.Json(BaseName(package)) : report.Text();
    std::fwprintf(stdout, L"%ls", output.c_str());
    std::fflush(stdout);
    std::fwprintf(stderr, L"mirllint: %u error%ls, %u warning%ls\n", static_cast<unsigned>(report.Errors()),
                  report.Errors() == 1 ? L"" : L"s", static_cast<unsigned>(report.Warnings()),
                  report.Warnings() == 1 ? L"" : L"s");
    MirlUnIntialize();
    return report.Errors() > 0 ? 1 : 0;
}

} // namespace

int wmain(int argc, wchar_t **argv)
{
    mirltool::UseUtf8Console();
    std::wstring package;
    std::vector<unsigned int> languages;
    bool json = false;
    for (int i = 1; i < argc; ++i) {
        std::wstring arg = argv[i];
        if (arg == L"--json") {
            json = true;
        } else if (arg == L"--lang") {
            unsigned long language = 0;
            if (i + 1 >= argc || !mirltool::ParseDecimal(argv[i + 1], language) || language == 0 || language > 0xFFFF) {
                std::fwprintf(stderr, L"mirllint: --lang takes a decimal language identifier such as 2052\n%ls", kUsage);
                return 2;
            }
            languages.push_back(static_cast<unsigned int>(language));
            ++i;
        } else if (arg == L"--help" || arg == L"-h") {
            std::fwprintf(stdout, L"%ls", kUsage);
            return 0;
        } else if (arg.size() > 1 && arg[0] == L'-') {
            std::fwprintf(stderr, L"mirllint: unknown option %ls\n%ls", arg.c_str(), kUsage);
            return 2;
        } else if (package.empty()) {
            package = arg;
        } else {
            std::fwprintf(stderr, L"mirllint: one skin package at a time\n%ls", kUsage);
            return 2;
        }
    }
    if (package.empty()) {
        std::fwprintf(stderr, L"%ls", kUsage);
        return 2;
    }

    try {
        return CheckPackage(package, languages, json);
    } catch (...) {
        // A skin that throws while it is walked is an error of the skin, never a crash.
        const std::wstring what = mirltool::DescribeCurrentException();
        std::fwprintf(stderr, L"mirllint: checking stopped: %ls\n", what.c_str());
        MirlUnIntialize();
        return 1;
    }
}
