// mirllint and mirlview on hostile packages: every skin of the fuzz corpus as it is, every input
// that once broke the library, and a fixed seeded share of the fuzzer's cases. Each tool runs as
// a process of its own, as a skin author runs it, and must end in time with one of the exit
// codes it documents: a crash or a hang fails the test, and the input stays on disk to replay.
#include "MirlToolRunner.h"

#include "MirlFuzzRandom.h"
#include "MirlSkinCase.h"
#include "MirlSkinCorpus.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <map>
#include <string>
#include <vector>

using mirltooltest::Quote;
using mirltooltest::RunResult;
using mirltooltest::RunTool;

namespace {

// The seeded share: the same cases on every run and architecture, as `mirl_fuzz --cases N
// --seed S` makes them (`mirl_fuzz --write-case I --seed S` writes one of them again).
const uint64_t kRunSeed = 1;
const long kCases = 100;

// Far beyond what any of these inputs needs, even on a slow machine.
const DWORD kToolTimeout = 20000;

// Where the inputs are written while the tools read them; a failing one stays there. Each run
// has a folder of its own, since two test runs may share a build.
std::wstring WorkFolder()
{
    static const std::wstring folder = [] {
        std::wstring bin = mirlfuzz::ProgramFolder();
        std::wstring parent = bin.substr(0, bin.find_last_of(L"\\/")) + L"\\tools-fuzz-inputs";
        ::CreateDirectoryW(parent.c_str(), nullptr);
        std::wstring own = parent + L"\\run" + std::to_wstring(::GetCurrentProcessId());
        ::CreateDirectoryW(own.c_str(), nullptr);
        return own;
    }();
    return folder;
}

// How the runs ended, per command: an account of what the inputs exercised.
std::map<std::string, std::map<std::string, int>> &Tally()
{
    static std::map<std::string, std::map<std::string, int>> tally;
    return tally;
}

// Prints the tally, and leaves the run's folder behind only when it holds an input that failed.
class Summary : public testing::Environment {
public:
    void TearDown() override
    {
        for (const auto &command : Tally()) {
            std::string line;
            for (const auto &ending : command.second) {
                line += (line.empty() ? "" : ", ") + ending.first + ": " + std::to_string(ending.second);
            }
            printf("%s: %s\n", command.first.c_str(), line.c_str());
        }
        ::RemoveDirectoryW(WorkFolder().c_str());
    }
};

const testing::Environment *const kSummary = testing::AddGlobalTestEnvironment(new Summary);

struct ToolInput {
    std::wstring name;          // file name in the work folder
    std::string origin;         // what made it, for the failure message
    mirlfuzz::Bytes package;
    unsigned int language = 0;  // passed with --lang when it is one the tools take
};

std::wstring LanguageOption(unsigned int language)
{
    return language >= 1 && language <= 0xFFFF ? L" --lang " + std::to_wstring(language) : std::wstring();
}

std::string Narrow(const std::wstring &text)
{
    return mirlfuzz::Narrow(text);
}

// What a run came to, in words: the exit code, a crash's exception code, or the hang.
std::string Ending(const RunResult &run)
{
    if (!run.finished) {
        return "no exit within " + std::to_string(kToolTimeout / 1000) + " s (killed)";
    }
    char text[48];
    snprintf(text, sizeof(text), "exit code %lu (0x%08lX)", static_cast<unsigned long>(run.exitCode),
             static_cast<unsigned long>(run.exitCode));
    return text;
}

bool EndedWithOneOf(const RunResult &run, std::initializer_list<DWORD> codes)
{
    return run.finished && std::find(codes.begin(), codes.end(), run.exitCode) != codes.end();
}

// The first template that `mirlview --list` printed ("NAME\tCLASS\tWxH\tLANGUAGE"), with its
// language; a fixed name when there is none, which mirlview answers with "no such template".
void FirstTemplate(const RunResult &list, std::wstring &name, unsigned int &language)
{
    name = L"Main";
    language = 0;
    if (!list.finished || list.exitCode != 0 || list.out.empty()) {
        return;
    }
    const std::wstring &line = list.out[0];
    size_t tab = line.find(L'\t');
    size_t last = line.find_last_of(L'\t');
    if (tab == std::wstring::npos || tab == 0) {
        return;
    }
    name = line.substr(0, tab);
    language = static_cast<unsigned int>(wcstoul(line.c_str() + last + 1, nullptr, 10));
}

// One run of a tool on a fuzz input. A run that makes no exit within the limit is given one
// more try: a tool that hangs on an input hangs again, while Wine now and then stalls a
// starting process for seconds when the machine is loaded. Both endings are tallied.
RunResult RunOnInput(const wchar_t *tool, const std::wstring &arguments)
{
    RunResult run = RunTool(tool, arguments, [](const PROCESS_INFORMATION &) {}, kToolTimeout);
    if (!run.finished) {
        ++Tally()[Narrow(tool)]["stalled once"];
        run = RunTool(tool, arguments, [](const PROCESS_INFORMATION &) {}, kToolTimeout);
    }
    return run;
}

// Runs both tools on one input; returns how many runs ended badly, each reported with the
// input's origin and the file kept for replay.
int CheckTools(const ToolInput &input)
{
    const std::wstring folder = WorkFolder();
    const std::wstring path = folder + L"\\" + input.name;
    const std::wstring png = path + L".png";
    if (!mirlfuzz::WriteWholeFile(path, input.package)) {
        ADD_FAILURE() << "could not write " << Narrow(path);
        return 1;
    }
    const std::wstring language = LanguageOption(input.language);
    int failures = 0;
    auto expect = [&](const RunResult &run, std::initializer_list<DWORD> codes, const std::wstring &command) {
        const std::string tool = Narrow(command.substr(0, command.find(L' ')));
        ++Tally()[tool + (command.find(L" --list") != std::wstring::npos ? " --list" : "")]
                 [run.finished ? "exit " + std::to_string(run.exitCode) : "killed"];
        if (!EndedWithOneOf(run, codes)) {
            ++failures;
            ADD_FAILURE() << Narrow(command) << "\n  ended with " << Ending(run) << "\n  input: " << input.origin
                          << "\n  kept as " << Narrow(path);
        }
    };

    const std::wstring lint = Quote(path) + language;
    expect(RunOnInput(L"mirllint.exe", lint), {0, 1},
           L"mirllint " + lint);

    const std::wstring listArguments = Quote(path) + L" --list" + language;
    RunResult list = RunOnInput(L"mirlview.exe", listArguments);
    expect(list, {0, 3}, L"mirlview " + listArguments);

    std::wstring templateName;
    unsigned int templateLanguage = 0;
    FirstTemplate(list, templateName, templateLanguage);
    // 1: the window could not be made or the picture not written (a template a million pixels
    // wide has no picture).
    const std::wstring render =
        Quote(path) + L" " + Quote(templateName) + LanguageOption(templateLanguage) + L" --png " + Quote(png);
    expect(RunOnInput(L"mirlview.exe", render), {0, 1, 3, 4},
           L"mirlview " + render);

    ::DeleteFileW(png.c_str());
    if (failures == 0) {
        ::DeleteFileW(path.c_str());
    }
    return failures;
}

const std::vector<mirlfuzz::CorpusSkin> &Corpus()
{
    static const std::vector<mirlfuzz::CorpusSkin> corpus = mirlfuzz::LoadCorpus(mirlfuzz::DefaultCorpusFolder());
    return corpus;
}

} // namespace

TEST(MirlToolsOnFuzzInputs, EveryCorpusSkinAsItIs)
{
    ASSERT_GE(Corpus().size(), 20u) << "the fuzz corpus beside the program is missing";
    for (const mirlfuzz::CorpusSkin &skin : Corpus()) {
        ToolInput input;
        input.name = L"corpus-" + mirlfuzz::Widen(skin.label) + L".zip";
        input.origin = "corpus skin " + skin.label + ", unmutated";
        input.package = mirlfuzz::PlainPackage(skin);
        CheckTools(input);
    }
}

TEST(MirlToolsOnFuzzInputs, EveryInputThatOnceBrokeTheLibrary)
{
    const std::wstring folder = mirlfuzz::ProgramFolder() + L"\\fuzz-regressions";
    WIN32_FIND_DATAW found;
    HANDLE search = ::FindFirstFileW((folder + L"\\*.zip").c_str(), &found);
    ASSERT_NE(INVALID_HANDLE_VALUE, search) << "no regressions in " << Narrow(folder);
    std::vector<std::wstring> names;
    do {
        names.push_back(found.cFileName);
    } while (::FindNextFileW(search, &found));
    ::FindClose(search);
    std::sort(names.begin(), names.end());
    for (const std::wstring &name : names) {
        ToolInput input;
        input.name = L"regression-" + name;
        input.origin = "regression " + Narrow(name);
        ASSERT_TRUE(mirlfuzz::ReadWholeFile(folder + L"\\" + name, input.package)) << Narrow(name);
        CheckTools(input);
    }
    EXPECT_GE(names.size(), 2u);
}

TEST(MirlToolsOnFuzzInputs, AFixedSeededShareOfTheFuzzCases)
{
    ASSERT_FALSE(Corpus().empty());
    for (long i = 0; i < kCases; ++i) {
        const uint64_t seed = mirlfuzz::CaseSeed(kRunSeed, static_cast<uint64_t>(i));
        mirlfuzz::SkinCase skinCase = mirlfuzz::MakeSkinCase(Corpus(), seed);
        ToolInput input;
        input.name = L"case" + std::to_wstring(i) + L"-seed" + std::to_wstring(seed) + L".zip";
        input.origin = "case " + std::to_string(i) + " of run seed " + std::to_string(kRunSeed) + " (case seed " +
                       std::to_string(seed) + ", from corpus skin " + skinCase.corpus + "; replay: mirl_fuzz --write-case " +
                       std::to_string(i) + " --seed " + std::to_string(kRunSeed) + ")";
        input.package = skinCase.zip;
        input.language = skinCase.language;
        CheckTools(input);
    }
}
