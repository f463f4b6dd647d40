// The worker: runs fuzz cases in its own process for the driver (mirl_fuzz.exe), which
// watches it through shared memory, and stands alone to reproduce one saved failure.
//
//   mirl_fuzz_worker skins SEED FIRST COUNT SHARED   cases FIRST.. of the seed's sequence
//   mirl_fuzz_worker skin FILE [LANGUAGE [SHARED]]  one package, as saved by the driver
//   mirl_fuzz_worker storm CLASS SEED COUNT [SHARED] a message storm on one control class
//
// A crash ends the process with the exception's code; the driver reads the case that was
// running from the shared block.
#include "MirlFuzzHost.h"
#include "MirlFuzzProtocol.h"
#include "MirlFuzzRandom.h"
#include "MirlMessageStorm.h"
#include "MirlSkinCase.h"
#include "MirlSkinCorpus.h"
#include "MirlSkinRunner.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <string>

using namespace mirlfuzz;

namespace {

SharedBlock g_LocalBlock;
SharedBlock *g_Block = &g_LocalBlock;

void Die(DWORD code)
{
    fflush(stdout);
    fflush(stderr);
    ::TerminateProcess(::GetCurrentProcess(), code);
}

// The last chance of an exception nobody handled: record it and end at once, before the
// system's debugger is started for it.
LONG WINAPI LastChance(EXCEPTION_POINTERS *pointers)
{
    DWORD code = pointers->ExceptionRecord->ExceptionCode;
    g_Block->crashCode = static_cast<LONG>(code);
    g_Block->crashAddress = reinterpret_cast<LONG64>(pointers->ExceptionRecord->ExceptionAddress);
    fprintf(stderr, "mirl_fuzz_worker: exception 0x%08lX at %p in phase %s\n", static_cast<unsigned long>(code),
            pointers->ExceptionRecord->ExceptionAddress, PhaseName(g_Block->phase));
    Die(code);
    return EXCEPTION_EXECUTE_HANDLER;
}

void OnTerminate()
{
    fprintf(stderr, "mirl_fuzz_worker: std::terminate in phase %s\n", PhaseName(g_Block->phase));
    Die(ExitTerminate);
}

void OnAbort(int)
{
    fprintf(stderr, "mirl_fuzz_worker: abort in phase %s\n", PhaseName(g_Block->phase));
    Die(ExitTerminate);
}

// Every window the library creates is progress: a skin of thousands of windows is slow, not hung.
LRESULT CALLBACK CountCreations(int code, WPARAM wParam, LPARAM lParam)
{
    if (code == HCBT_CREATEWND) {
        InterlockedIncrement(&g_Block->heartbeat);
    }
    return ::CallNextHookEx(nullptr, code, wParam, lParam);
}

uint64_t ParseNumber(const char *text)
{
    return std::strtoull(text, nullptr, 0);
}

bool HeapCheck()
{
    g_Block->phase = PhaseHeapCheck;
    if (!HeapsAreValid()) {
        snprintf(g_Block->note, sizeof(g_Block->note), "HeapValidate failed after the case");
        return false;
    }
    return true;
}

const long kWarmUpCases = 20;

int RunSkins(uint64_t seed, long first, long count)
{
    const std::vector<CorpusSkin> corpus = LoadCorpus(DefaultCorpusFolder());
    if (corpus.empty()) {
        fprintf(stderr, "mirl_fuzz_worker: no corpus in %ls\n", DefaultCorpusFolder().c_str());
        return ExitUsage;
    }
    wchar_t folder[MAX_PATH] = {};
    ::GetTempPathW(MAX_PATH, folder);
    const std::wstring path = std::wstring(folder) + L"mirl-fuzz-" + std::to_wstring(::GetCurrentProcessId()) + L".zip";
    g_Block->started = 1;
    // Every corpus skin once as it is: what the system makes on first use (fonts of a family,
    // cursors, pictures of a frame) then exists before the growth counters are read, and the
    // unmutated corpus is known to run clean in this process.
    for (const CorpusSkin &skin : corpus) {
        if (!WriteWholeFile(path, PlainPackage(skin))) {
            fprintf(stderr, "mirl_fuzz_worker: cannot write %ls\n", path.c_str());
            return ExitUsage;
        }
        RunSkinPackage(path, 1033, g_Block);
        if (!HeapCheck()) {
            return static_cast<int>(ExitHeapCorrupt);
        }
    }
    for (long i = first; i < first + count; ++i) {
        g_Block->current = i;
        g_Block->phase = PhaseStart;
        InterlockedIncrement(&g_Block->heartbeat);
        const DWORD begin = ::GetTickCount();
        SkinCase skinCase = MakeSkinCase(corpus, CaseSeed(seed, static_cast<uint64_t>(i)));
        if (!WriteWholeFile(path, skinCase.zip)) {
            fprintf(stderr, "mirl_fuzz_worker: cannot write %ls\n", path.c_str());
            return ExitUsage;
        }
        Outcome outcome = RunSkinPackage(path, skinCase.language, g_Block);
        if (!HeapCheck()) {
            return static_cast<int>(ExitHeapCorrupt);
        }
        RecordOutcome(g_Block, outcome);
        const LONG took = static_cast<LONG>(::GetTickCount() - begin);
        if (took > g_Block->slowestMs) {
            g_Block->slowestMs = took;
            g_Block->slowestCase = i;
        }
        g_Block->completed = g_Block->completed + 1;
        g_Block->phase = PhaseIdle;
        // The counters are read once the first cases have filled the caches of the system.
        if (i == first + kWarmUpCases - 1) {
            g_Block->heapBefore = static_cast<LONG64>(BusyHeapBytes());
            g_Block->gdiBefore = LiveGdiObjects();
        }
    }
    if (count >= kWarmUpCases) {
        g_Block->heapAfter = static_cast<LONG64>(BusyHeapBytes());
        g_Block->gdiAfter = LiveGdiObjects();
    }
    ::DeleteFileW(path.c_str());
    return ExitDone;
}

int RunOne(const std::wstring &path, unsigned language)
{
    g_Block->started = 1;
    g_Block->current = 0;
    Outcome outcome = RunSkinPackage(path, language, g_Block);
    if (!HeapCheck()) {
        fprintf(stderr, "mirl_fuzz_worker: %s\n", g_Block->note);
        return static_cast<int>(ExitHeapCorrupt);
    }
    RecordOutcome(g_Block, outcome);
    if (g_Block == &g_LocalBlock) {
        printf("%s\n", DescribeOutcome(outcome).c_str());
    }
    return ExitDone;
}

int RunStormMode(const std::string &className, uint64_t seed, long count)
{
    const StormClass *row = FindStormClass(className);
    if (row == nullptr) {
        fprintf(stderr, "mirl_fuzz_worker: no storm row for class %s\n", className.c_str());
        return ExitUsage;
    }
    g_Block->started = 1;
    g_Block->phase = PhaseStorm;
    DWORD result = RunStorm(*row, seed, count, g_Block);
    if (result != ExitDone) {
        fprintf(stderr, "mirl_fuzz_worker: storm on %s failed: %s\n", className.c_str(), g_Block->note);
    } else if (!HeapCheck()) {
        return static_cast<int>(ExitHeapCorrupt);
    }
    return static_cast<int>(result);
}

int Usage()
{
    fprintf(stderr, "usage: mirl_fuzz_worker skins SEED FIRST COUNT SHARED\n"
                    "       mirl_fuzz_worker skin FILE [LANGUAGE [SHARED]]\n"
                    "       mirl_fuzz_worker storm CLASS SEED COUNT [SHARED]\n");
    return ExitUsage;
}

} // namespace

int wmain(int argc, wchar_t **argv)
{
    ::SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX | SEM_NOOPENFILEERRORBOX);
    ::SetUnhandledExceptionFilter(LastChance);
    std::set_terminate(OnTerminate);
    std::signal(SIGABRT, OnAbort);
    ::SetWindowsHookExW(WH_CBT, CountCreations, nullptr, ::GetCurrentThreadId());
    if (argc < 2) {
        return Usage();
    }
    std::vector<std::string> args;
    for (int i = 1; i < argc; ++i) {
        args.push_back(Narrow(argv[i]));
    }
    SharedMemory shared;
    auto attach = [&](size_t index) {
        if (args.size() > index && shared.Open(Widen(args[index]))) {
            g_Block = shared.Block();
        }
    };
    try {
        if (args[0] == "skins" && args.size() == 5) {
            attach(4);
            return RunSkins(ParseNumber(args[1].c_str()), static_cast<long>(ParseNumber(args[2].c_str())),
                            static_cast<long>(ParseNumber(args[3].c_str())));
        }
        if (args[0] == "skin" && args.size() >= 2 && args.size() <= 4) {
            attach(3);
            unsigned language = args.size() >= 3 ? static_cast<unsigned>(ParseNumber(args[2].c_str())) : 1033;
            return RunOne(argv[2], language);
        }
        if (args[0] == "storm" && (args.size() == 4 || args.size() == 5)) {
            attach(4);
            return RunStormMode(args[1], ParseNumber(args[2].c_str()), static_cast<long>(ParseNumber(args[3].c_str())));
        }
    } catch (const std::exception &e) {
        fprintf(stderr, "mirl_fuzz_worker: unexpected exception in phase %s: %s\n", PhaseName(g_Block->phase), e.what());
        snprintf(g_Block->note, sizeof(g_Block->note), "unexpected exception: %s", e.what());
        return static_cast<int>(ExitUnexpectedException);
    } catch (...) {
        fprintf(stderr, "mirl_fuzz_worker: unexpected exception in phase %s\n", PhaseName(g_Block->phase));
        snprintf(g_Block->note, sizeof(g_Block->note), "unexpected exception of an unknown type");
        return static_cast<int>(ExitUnexpectedException);
    }
    return Usage();
}
