// The fuzz driver: runs skin cases and message storms in worker processes, as many at once as
// there are processors, watches them for crashes and hangs, saves every failing input where it
// can be replayed, shrinks it, and prints what it ran and what came of it.
//
//   mirl_fuzz [--seconds N | --cases N] [--storms N] [--messages N] [--seed S] [--jobs N]
//             [--batch N] [--hang SECONDS] [--out FOLDER] [--no-shrink]
//   mirl_fuzz --write-case N [--seed S] [--out FOLDER]   writes case N of the seed without running it
//
// With --seconds the run lasts about that long, storms taking a tenth of the workers' time;
// otherwise exactly --cases skin cases and --storms storm rounds (each class once per round)
// are run. Failing inputs go to --out, by default the fuzz-failures folder beside bin.
// Exit status 0 when nothing failed.
#include "MirlFuzzProtocol.h"
#include "MirlFuzzRandom.h"
#include "MirlMessageStorm.h"
#include "MirlSkinCase.h"
#include "MirlSkinCorpus.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <map>
#include <memory>
#include <string>
#include <vector>

using namespace mirlfuzz;

namespace {

struct Options {
    double seconds = 0;
    long cases = 0;
    long storms = 0;
    long messages = 10000;
    uint64_t seed = 1;
    long jobs = 0;
    long batch = 500;
    double hangSeconds = 5;
    std::wstring out;
    bool shrink = true;
    long writeCase = -1;
};

// How a worker run ended.
struct WorkerRun {
    enum Ending { Done, Failed, Hung, NotStarted };
    Ending ending = Done;
    DWORD exitCode = 0;
    LONG current = -1;
    LONG completed = 0;
    LONG phase = PhaseIdle;
    std::string note;
    SharedBlock block = {};
};

struct Totals {
    long cases = 0;
    long long messages = 0;
    long storms = 0;
    long crashes = 0;
    long hangs = 0;
    long heapCorruptions = 0;
    long stormFailures = 0;
    long growths = 0;
    long long windows = 0;
    long slowestCase = -1;
    long slowestMs = 0;
    long long maxHeapGrowth = 0;
    int maxGdiGrowth = 0;
    long long maxBatchHeapGrowth = 0;
    int maxBatchGdiGrowth = 0;
    std::map<std::string, long> outcomes;
    std::vector<std::wstring> saved;

    long Failures() const { return crashes + hangs + heapCorruptions + growths + stormFailures; }
};

// Bounds on the growth over one batch (the first cases of which fill the caches). The system
// makes some objects on first use only, such as the pictures of a caption a mutated style asks
// for; one leaked object or kilobyte per case goes past these over a batch.
const long long kBatchHeapBound = 1024 * 1024;
const int kBatchGdiBound = 64;

double Now()
{
    static LARGE_INTEGER frequency = {};
    if (frequency.QuadPart == 0) {
        ::QueryPerformanceFrequency(&frequency);
    }
    LARGE_INTEGER counter;
    ::QueryPerformanceCounter(&counter);
    return static_cast<double>(counter.QuadPart) / static_cast<double>(frequency.QuadPart);
}

std::string Hex(DWORD value)
{
    char text[16];
    snprintf(text, sizeof(text), "0x%08lX", static_cast<unsigned long>(value));
    return text;
}

std::string DescribeEnding(const WorkerRun &run)
{
    switch (run.ending) {
    case WorkerRun::Done: return "done";
    case WorkerRun::Hung: return "hang";
    case WorkerRun::NotStarted: return "worker did not start";
    case WorkerRun::Failed: break;
    }
    switch (run.exitCode) {
    case ExitHeapCorrupt: return "heap corruption";
    case ExitUnexpectedException: return "unexpected C++ exception";
    case ExitTerminate: return "std::terminate";
    case ExitStormDied: return "window died";
    case ExitStormPaint: return "painting broke";
    case ExitStormGrowth: return "heap or GDI growth";
    case ExitStormSetup: return "storm setup failed";
    default: return "crash " + Hex(run.exitCode);
    }
}

// The longest one skin case or storm may take while it still makes progress.
const double kCaseSeconds = 60;

// One worker process under watch: a worker whose heartbeat stands still longer than the hang
// limit, or whose case runs longer than kCaseSeconds, is ended and reported as hung.
class Worker {
public:
    Worker() = default;
    Worker(const Worker &) = delete;
    Worker &operator=(const Worker &) = delete;
    ~Worker()
    {
        if (m_Process.hProcess != nullptr) {
            ::TerminateProcess(m_Process.hProcess, 0xDEAD);
            ::CloseHandle(m_Process.hThread);
            ::CloseHandle(m_Process.hProcess);
        }
    }

    bool Start(const std::wstring &arguments, std::string &error)
    {
        static unsigned serial = 0;
        const std::wstring name = L"Local\\mirl-fuzz-" + std::to_wstring(::GetCurrentProcessId()) + L"-" + std::to_wstring(++serial);
        if (!m_Memory.Create(name)) {
            error = "cannot create shared memory";
            return false;
        }
        std::wstring command = L"\"" + ProgramFolder() + L"\\mirl_fuzz_worker.exe\" " + arguments + L" " + name;
        std::vector<wchar_t> line(command.begin(), command.end());
        line.push_back(L'\0');
        STARTUPINFOW startup = {};
        startup.cb = sizeof(startup);
        if (!::CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &m_Process)) {
            error = "CreateProcess failed: " + Hex(::GetLastError());
            m_Process = PROCESS_INFORMATION();
            return false;
        }
        m_LastBeat = Now();
        m_CaseStarted = m_LastBeat;
        return true;
    }

    // True once the worker has ended, or has been ended; run then says how.
    bool Poll(const Options &options, WorkerRun &run)
    {
        SharedBlock *block = m_Memory.Block();
        bool ended = ::WaitForSingleObject(m_Process.hProcess, 0) == WAIT_OBJECT_0;
        if (!ended) {
            if (block->heartbeat != m_Beat) {
                m_Beat = block->heartbeat;
                m_LastBeat = Now();
            }
            if (block->current != m_Case) {
                m_Case = block->current;
                m_CaseStarted = Now();
            }
            // Starting a process under Wine can take seconds when the machine is busy. A case
            // that keeps making progress may run longer, up to a limit of its own.
            const double limit = block->started != 0 ? options.hangSeconds : 60;
            if (Now() - m_LastBeat <= limit && Now() - m_CaseStarted <= kCaseSeconds) {
                return false;
            }
            ::TerminateProcess(m_Process.hProcess, 0xDEAD);
            ::WaitForSingleObject(m_Process.hProcess, 5000);
            run.ending = block->started != 0 ? WorkerRun::Hung : WorkerRun::NotStarted;
        }
        DWORD code = 0;
        ::GetExitCodeProcess(m_Process.hProcess, &code);
        ::CloseHandle(m_Process.hThread);
        ::CloseHandle(m_Process.hProcess);
        m_Process = PROCESS_INFORMATION();
        run.exitCode = code;
        if (ended && code != ExitDone) {
            run.ending = WorkerRun::Failed;
        }
        run.block = *block;
        run.current = block->current;
        run.completed = block->completed;
        run.phase = block->phase;
        run.note = block->note;
        return true;
    }

private:
    SharedMemory m_Memory;
    PROCESS_INFORMATION m_Process = {};
    LONG m_Beat = -1;
    double m_LastBeat = 0;
    LONG m_Case = -1;
    double m_CaseStarted = 0;
};

// Runs one worker to its end.
WorkerRun RunWorker(const Options &options, const std::wstring &arguments)
{
    WorkerRun run;
    Worker worker;
    std::string error;
    if (!worker.Start(arguments, error)) {
        run.ending = WorkerRun::NotStarted;
        run.note = error;
        return run;
    }
    while (!worker.Poll(options, run)) {
        ::Sleep(20);
    }
    return run;
}

void SaveText(const std::wstring &path, const std::string &text)
{
    WriteWholeFile(path, Bytes(text.begin(), text.end()));
}

// Does this package still fail on its own, the same way?
bool StillFails(const Options &options, const std::wstring &path, unsigned language, const WorkerRun &original)
{
    WorkerRun run = RunWorker(options, L"skin \"" + path + L"\" " + std::to_wstring(language));
    return run.ending == original.ending && (run.ending == WorkerRun::Hung || run.exitCode == original.exitCode);
}

std::string CaseReport(const SkinCase &skinCase, uint64_t keep)
{
    std::string text = "corpus: " + skinCase.corpus + "\nlanguage: " + std::to_string(skinCase.language) + "\nmutations:\n";
    for (const std::string &note : skinCase.notes) {
        text += "  " + note + "\n";
    }
    char mask[32];
    snprintf(mask, sizeof(mask), "0x%llX", static_cast<unsigned long long>(keep));
    return text + "keep mask: " + mask + "\n";
}

// Saves a failing case, checks that it fails alone, and shrinks it by leaving out mutations.
void SaveSkinFailure(const Options &options, const std::vector<CorpusSkin> &corpus, long index, const WorkerRun &run,
                     Totals &totals)
{
    const uint64_t caseSeed = CaseSeed(options.seed, static_cast<uint64_t>(index));
    SkinCase skinCase = MakeSkinCase(corpus, caseSeed);
    char base[96];
    snprintf(base, sizeof(base), "%s-seed%llu-case%ld", run.ending == WorkerRun::Hung ? "hang" : "crash",
             static_cast<unsigned long long>(options.seed), index);
    const std::wstring stem = options.out + L"\\" + Widen(base);
    WriteWholeFile(stem + L".zip", skinCase.zip);
    const bool alone = StillFails(options, stem + L".zip", skinCase.language, run);

    std::string report = std::string("failure: ") + DescribeEnding(run) + "\nphase: " + PhaseName(run.phase) +
                         "\nnote: " + run.note + "\nseed: " + std::to_string(options.seed) + "\ncase: " +
                         std::to_string(index) + "\n" + CaseReport(skinCase, ~0ULL) +
                         "fails alone: " + (alone ? "yes" : "no (only after the cases before it in its batch)") +
                         "\nreplay: mirl_fuzz_worker.exe skin " + base + ".zip " + std::to_string(skinCase.language) + "\n";
    if (alone && options.shrink) {
        uint64_t keep = skinCase.ops.size() >= 64 ? ~0ULL : (1ULL << skinCase.ops.size()) - 1;
        const std::wstring trial = stem + L"-trial.zip";
        for (size_t i = 0; i < skinCase.ops.size(); ++i) {
            const uint64_t fewer = keep & ~(1ULL << i);
            SkinCase smaller = MakeSkinCase(corpus, caseSeed, fewer);
            WriteWholeFile(trial, smaller.zip);
            if (StillFails(options, trial, smaller.language, run)) {
                keep = fewer;
            }
        }
        ::DeleteFileW(trial.c_str());
        SkinCase smallest = MakeSkinCase(corpus, caseSeed, keep);
        WriteWholeFile(stem + L"-min.zip", smallest.zip);
        report += "\nshrunk to " + std::string(base) + "-min.zip:\n" + CaseReport(smallest, keep);
    }
    SaveText(stem + L".txt", report);
    totals.saved.push_back(stem + L".zip");
    fprintf(stderr, "fuzz: saved %ls.zip\n", stem.c_str());
}

void CountOutcomes(Totals &totals, const WorkerRun &run)
{
    totals.windows += run.block.windows;
    if (run.block.slowestMs > totals.slowestMs) {
        totals.slowestMs = run.block.slowestMs;
        totals.slowestCase = run.block.slowestCase;
    }
    for (LONG i = 0; i < run.block.outcomeCount; ++i) {
        Outcome outcome = {run.block.outcomes[i].kind, run.block.outcomes[i].code};
        totals.outcomes[DescribeOutcome(outcome)] += run.block.outcomes[i].count;
    }
}

// After a batch of cases [first, first + count): counts, checks growth, saves a failure.
// Answers the index after the last case that ran.
long FinishSkinBatch(const Options &options, const std::vector<CorpusSkin> &corpus, long first, long count,
                     const WorkerRun &run, Totals &totals)
{
    CountOutcomes(totals, run);
    if (run.ending == WorkerRun::NotStarted) {
        fprintf(stderr, "fuzz: the worker did not start: %s\n", run.note.c_str());
        exit(2);
    }
    if (run.ending == WorkerRun::Done) {
        totals.cases += count;
        const long long heap = run.block.heapAfter - run.block.heapBefore;
        const int gdi = run.block.gdiAfter - run.block.gdiBefore;
        totals.maxBatchHeapGrowth = std::max(totals.maxBatchHeapGrowth, heap);
        totals.maxBatchGdiGrowth = std::max(totals.maxBatchGdiGrowth, gdi);
        if (heap > kBatchHeapBound || gdi > kBatchGdiBound) {
            ++totals.growths;
            char text[256];
            snprintf(text, sizeof(text), "failure: growth over a batch of skin cases\nheap %+lld bytes, GDI objects %+d\n"
                     "replay: mirl_fuzz_worker.exe skins %llu %ld %ld\n", heap, gdi,
                     static_cast<unsigned long long>(options.seed), first, count);
            const std::wstring path = options.out + L"\\growth-seed" + std::to_wstring(options.seed) + L"-cases" +
                                      std::to_wstring(first) + L".txt";
            SaveText(path, text);
            totals.saved.push_back(path);
            fprintf(stderr, "fuzz: growth over cases %ld to %ld: heap %+lld bytes, GDI objects %+d\n", first,
                    first + count - 1, heap, gdi);
        }
        return first + count;
    }
    const long failed = std::max<long>(run.current, first);
    totals.cases += failed - first + 1;
    if (run.ending == WorkerRun::Hung) {
        ++totals.hangs;
    } else if (run.exitCode == ExitHeapCorrupt) {
        ++totals.heapCorruptions;
    } else {
        ++totals.crashes;
    }
    fprintf(stderr, "fuzz: %s at case %ld (phase %s); saving and shrinking it\n", DescribeEnding(run).c_str(), failed,
            PhaseName(run.phase));
    SaveSkinFailure(options, corpus, failed, run, totals);
    return failed + 1;
}

void FinishStorm(const Options &options, const StormClass &row, uint64_t seed, const WorkerRun &run, Totals &totals)
{
    const std::string className = Narrow(row.className);
    ++totals.storms;
    totals.messages += run.completed;
    if (run.ending == WorkerRun::NotStarted) {
        fprintf(stderr, "fuzz: the worker did not start: %s\n", run.note.c_str());
        exit(2);
    }
    if (run.ending == WorkerRun::Done) {
        totals.maxHeapGrowth = std::max<long long>(totals.maxHeapGrowth, run.block.heapAfter - run.block.heapBefore);
        totals.maxGdiGrowth = std::max<int>(totals.maxGdiGrowth, run.block.gdiAfter - run.block.gdiBefore);
        return;
    }
    if (run.ending == WorkerRun::Hung) {
        ++totals.hangs;
    } else if (run.exitCode == ExitStormGrowth) {
        ++totals.growths;
    } else if (run.exitCode == ExitStormDied || run.exitCode == ExitStormPaint || run.exitCode == ExitStormSetup) {
        ++totals.stormFailures;
    } else if (run.exitCode == ExitHeapCorrupt) {
        ++totals.heapCorruptions;
    } else {
        ++totals.crashes;
    }
    // The storm is a function of its class and seed: the command line replays it. The messages
    // before the failure are listed for the reader.
    char base[96];
    snprintf(base, sizeof(base), "storm-%s-seed%llu", className.c_str(), static_cast<unsigned long long>(seed));
    const std::wstring stem = options.out + L"\\" + Widen(base);
    std::string report = "failure: " + DescribeEnding(run) + "\nnote: " + run.note + "\nclass: " + className +
                         "\nseed: " + std::to_string(seed) + "\nmessage: " + std::to_string(run.current) +
                         "\nreplay: mirl_fuzz_worker.exe storm " + Narrow(row.templateName) + " " + std::to_string(seed) + " " +
                         std::to_string(options.messages) + "\nmessages before the failure (last 40):\n";
    StormGenerator generator(row, seed);
    for (LONG i = 0; i <= run.current && i < options.messages; ++i) {
        StormDraw draw = generator.Next();
        if (i + 40 > run.current) {
            report += "  #" + std::to_string(i) + " " + DescribeDraw(draw) + "\n";
        }
    }
    SaveText(stem + L".txt", report);
    totals.saved.push_back(stem + L".txt");
    fprintf(stderr, "fuzz: storm on %s: %s at message %ld; saved %ls.txt\n", className.c_str(),
            DescribeEnding(run).c_str(), static_cast<long>(run.current), stem.c_str());
}

// One piece of work in a worker: a batch of skin cases or one storm.
struct Job {
    bool storm = false;
    long first = 0;
    long count = 0;
    const StormClass *row = nullptr;
    uint64_t stormSeed = 0;
    double started = 0;
    std::unique_ptr<Worker> worker;
};

// Hands out the work, keeps the workers busy and collects what they report.
class Scheduler {
public:
    Scheduler(const Options &options, const std::vector<CorpusSkin> &corpus)
        : m_Options(options), m_Corpus(corpus), m_Start(Now()), m_StormSeed(options.seed)
    {
    }

    void Run()
    {
        double lastReport = m_Start;
        for (;;) {
            while (static_cast<long>(m_Jobs.size()) < m_Options.jobs && StartNext()) {
            }
            if (m_Jobs.empty()) {
                break;
            }
            for (size_t i = 0; i < m_Jobs.size();) {
                WorkerRun run;
                if (m_Jobs[i]->worker->Poll(m_Options, run)) {
                    Finish(*m_Jobs[i], run);
                    m_Jobs.erase(m_Jobs.begin() + static_cast<ptrdiff_t>(i));
                } else {
                    ++i;
                }
            }
            if (m_Options.seconds > 0 && Now() - lastReport >= 60) {
                lastReport = Now();
                printf("fuzz: %.0f s: %ld skin cases, %lld messages, %ld failures\n", Now() - m_Start, m_Totals.cases,
                       m_Totals.messages, m_Totals.Failures());
                fflush(stdout);
            }
            ::Sleep(20);
        }
    }

    const Totals &totals() const { return m_Totals; }
    double Elapsed() const { return Now() - m_Start; }

private:
    double Remaining() const { return m_Options.seconds - (Now() - m_Start); }

    bool StartNext()
    {
        std::unique_ptr<Job> job(new Job());
        if (m_Options.seconds > 0) {
            const double workerSeconds = m_SkinSeconds + m_StormSeconds;
            // A storm when storms are behind their tenth, and there is time for one.
            if (m_StormSeconds <= workerSeconds / 10 && Remaining() > 15) {
                PrepareStorm(*job);
            } else if (!PrepareBatch(*job, Remaining() - 2)) {
                return false;
            }
        } else if (!PrepareBatch(*job, 0)) {
            if (m_StormsStarted >= m_Options.storms * static_cast<long>(kStormClassCount)) {
                return false;
            }
            PrepareStorm(*job);
        }
        wchar_t arguments[160];
        if (job->storm) {
            swprintf(arguments, 160, L"storm %ls %llu %ld", job->row->templateName,
                     static_cast<unsigned long long>(job->stormSeed), m_Options.messages);
        } else {
            swprintf(arguments, 160, L"skins %llu %ld %ld", static_cast<unsigned long long>(m_Options.seed), job->first,
                     job->count);
        }
        job->worker.reset(new Worker());
        std::string error;
        if (!job->worker->Start(arguments, error)) {
            fprintf(stderr, "fuzz: the worker did not start: %s\n", error.c_str());
            exit(2);
        }
        job->started = Now();
        m_Jobs.push_back(std::move(job));
        return true;
    }

    void PrepareStorm(Job &job)
    {
        job.storm = true;
        job.row = &kStormClasses[m_StormRow];
        job.stormSeed = m_StormSeed;
        if (++m_StormRow == kStormClassCount) {
            m_StormRow = 0;
            ++m_StormSeed;
        }
        ++m_StormsStarted;
    }

    // The next range of cases: one left over after a failure first. With a time budget the
    // batch is cut to what fits in the time left.
    bool PrepareBatch(Job &job, double secondsLeft)
    {
        long count = m_Options.batch;
        if (m_Options.seconds > 0) {
            const double perCase = m_CasesDone > 0 ? m_SkinSeconds / static_cast<double>(m_CasesDone) : 0.1;
            count = std::min<long>(count, static_cast<long>(secondsLeft / perCase));
            if (count < 10) {
                return false;
            }
        }
        if (!m_Leftovers.empty()) {
            std::pair<long, long> range = m_Leftovers.front();
            m_Leftovers.pop_front();
            job.first = range.first;
            job.count = std::min(count, range.second - range.first);
            if (range.first + job.count < range.second) {
                m_Leftovers.push_front({range.first + job.count, range.second});
            }
            return true;
        }
        if (m_Options.seconds <= 0) {
            count = std::min(count, m_Options.cases - m_NextCase);
            if (count <= 0) {
                return false;
            }
        }
        job.first = m_NextCase;
        job.count = count;
        m_NextCase += count;
        return true;
    }

    void Finish(Job &job, const WorkerRun &run)
    {
        const double took = Now() - job.started;
        if (job.storm) {
            m_StormSeconds += took;
            FinishStorm(m_Options, *job.row, job.stormSeed, run, m_Totals);
            return;
        }
        m_SkinSeconds += took;
        const long next = FinishSkinBatch(m_Options, m_Corpus, job.first, job.count, run, m_Totals);
        m_CasesDone += next - job.first;
        if (next < job.first + job.count) {
            m_Leftovers.push_back({next, job.first + job.count});
        }
    }

    const Options &m_Options;
    const std::vector<CorpusSkin> &m_Corpus;
    Totals m_Totals;
    std::vector<std::unique_ptr<Job>> m_Jobs;
    std::deque<std::pair<long, long>> m_Leftovers;
    const double m_Start;
    double m_SkinSeconds = 0;
    double m_StormSeconds = 0;
    long m_CasesDone = 0;
    long m_NextCase = 0;
    long m_StormsStarted = 0;
    size_t m_StormRow = 0;
    uint64_t m_StormSeed;
};

bool ParseOptions(int argc, wchar_t **argv, Options &options)
{
    for (int i = 1; i < argc; ++i) {
        std::wstring arg = argv[i];
        auto value = [&]() -> std::wstring { return i + 1 < argc ? argv[++i] : L""; };
        if (arg == L"--seconds") {
            options.seconds = wcstod(value().c_str(), nullptr);
        } else if (arg == L"--cases") {
            options.cases = wcstol(value().c_str(), nullptr, 0);
        } else if (arg == L"--storms") {
            options.storms = wcstol(value().c_str(), nullptr, 0);
        } else if (arg == L"--messages") {
            options.messages = wcstol(value().c_str(), nullptr, 0);
        } else if (arg == L"--seed") {
            options.seed = wcstoull(value().c_str(), nullptr, 0);
        } else if (arg == L"--jobs") {
            options.jobs = wcstol(value().c_str(), nullptr, 0);
        } else if (arg == L"--batch") {
            options.batch = std::max<long>(1, wcstol(value().c_str(), nullptr, 0));
        } else if (arg == L"--hang") {
            options.hangSeconds = wcstod(value().c_str(), nullptr);
        } else if (arg == L"--out") {
            options.out = value();
        } else if (arg == L"--write-case") {
            options.writeCase = wcstol(value().c_str(), nullptr, 0);
        } else if (arg == L"--no-shrink") {
            options.shrink = false;
        } else {
            return false;
        }
    }
    return options.seconds > 0 || options.cases > 0 || options.storms > 0 || options.writeCase >= 0;
}

void PrintSummary(const Options &options, const Totals &totals, double elapsed)
{
    std::string classes;
    for (size_t i = 0; i < kStormClassCount; ++i) {
        classes += (i > 0 ? ", " : "") + Narrow(kStormClasses[i].className);
    }
    printf("fuzz: seed %llu, %.0f s, %ld workers: %ld skin cases, %lld messages in %ld storms (%s)\n",
           static_cast<unsigned long long>(options.seed), elapsed, options.jobs, totals.cases, totals.messages,
           totals.storms, classes.c_str());
    printf("fuzz: crashes %ld, hangs %ld, heap corruptions %ld, heap or GDI growth %ld, storm failures %ld\n",
           totals.crashes, totals.hangs, totals.heapCorruptions, totals.growths, totals.stormFailures);
    if (totals.cases > 0) {
        printf("fuzz: largest change over a batch of skin cases: heap %+lld bytes, GDI objects %+d\n",
               totals.maxBatchHeapGrowth, totals.maxBatchGdiGrowth);
    }
    if (totals.storms > 0) {
        printf("fuzz: largest change over a storm: heap %+lld bytes, GDI objects %+d\n", totals.maxHeapGrowth,
               totals.maxGdiGrowth);
    }
    if (totals.slowestCase >= 0) {
        printf("fuzz: %lld windows created, laid out and painted; slowest skin case %ld ms (case %ld)\n",
               totals.windows, totals.slowestMs, totals.slowestCase);
    }
    printf("fuzz: %zu distinct outcomes of skin cases:\n", totals.outcomes.size());
    std::vector<std::pair<long, std::string>> sorted;
    for (const auto &entry : totals.outcomes) {
        sorted.push_back({entry.second, entry.first});
    }
    std::sort(sorted.rbegin(), sorted.rend());
    for (const auto &entry : sorted) {
        printf("  %8ld  %s\n", entry.first, entry.second.c_str());
    }
    if (!totals.saved.empty()) {
        printf("fuzz: failing inputs saved in %ls\n", options.out.c_str());
    }
}

} // namespace

int wmain(int argc, wchar_t **argv)
{
    Options options;
    if (!ParseOptions(argc, argv, options)) {
        fprintf(stderr, "usage: mirl_fuzz [--seconds N | --cases N] [--storms N] [--messages N] [--seed S] [--jobs N]\n"
                        "                 [--batch N] [--hang SECONDS] [--out FOLDER] [--no-shrink]\n"
                        "       mirl_fuzz --write-case N [--seed S] [--out FOLDER]\n");
        return 2;
    }
    if (options.jobs <= 0) {
        SYSTEM_INFO system;
        ::GetSystemInfo(&system);
        options.jobs = std::min<long>(4, std::max<long>(1, static_cast<long>(system.dwNumberOfProcessors)));
    }
    if (options.out.empty()) {
        // bin's parent is the build folder of the architecture.
        std::wstring bin = ProgramFolder();
        options.out = bin.substr(0, bin.find_last_of(L"\\/")) + L"\\fuzz-failures";
    }
    ::CreateDirectoryW(options.out.c_str(), nullptr);
    const std::vector<CorpusSkin> corpus = LoadCorpus(DefaultCorpusFolder());
    if (corpus.empty()) {
        fprintf(stderr, "fuzz: no corpus in %ls\n", DefaultCorpusFolder().c_str());
        return 2;
    }

    if (options.writeCase >= 0) {
        SkinCase skinCase = MakeSkinCase(corpus, CaseSeed(options.seed, static_cast<uint64_t>(options.writeCase)));
        const std::wstring stem = options.out + L"\\case" + std::to_wstring(options.writeCase);
        WriteWholeFile(stem + L".zip", skinCase.zip);
        printf("%ls.zip\n%s", stem.c_str(), CaseReport(skinCase, ~0ULL).c_str());
        return 0;
    }

    Scheduler scheduler(options, corpus);
    scheduler.Run();
    PrintSummary(options, scheduler.totals(), scheduler.Elapsed());
    return scheduler.totals().Failures() == 0 ? 0 : 1;
}
