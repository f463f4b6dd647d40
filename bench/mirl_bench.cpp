// The benchmark: each figure of the library beside a baseline that does the same work with the
// platform alone, measured in one process, interleaved, and printed as one table of medians.
//   mirl_bench [--repetitions N] [--only load,lookup,tree,paint,typing,lists,memory] [--png PAINT.png]
// The skins are those the build wrote into the "skins" folder beside the program.
#include "BenchFigures.h"

#include "Mirl.h"

#include <cstdio>
#include <cwchar>
#include <exception>

namespace {

using mirlbench::Figure;

const int kMinimumRepetitions = 7;

int Usage()
{
    std::fprintf(stderr,
                 "usage: mirl_bench [--repetitions N (at least %d)] [--only load,lookup,tree,paint,typing,lists,memory] "
                 "[--png PAINT.png]\n",
                 kMinimumRepetitions);
    return 2;
}

bool Wanted(const std::wstring &only, const wchar_t *name)
{
    if (only.empty()) {
        return true;
    }
    const std::wstring list = L"," + only + L",";
    return list.find(L"," + std::wstring(name) + L",") != std::wstring::npos;
}

void PrintTable(const std::vector<Figure> &figures, int repetitions)
{
    std::printf("Medians of %d repetitions, ours and the baseline interleaved in one process.\n\n", repetitions);
    std::printf("%-22s %-13s %12s %12s %8s %8s  %s\n", "figure", "unit", "ours", "baseline", "ratio", "target",
                "met");
    for (const Figure &f : figures) {
        const double ratio = f.baseline > 0 ? f.ours / f.baseline : 0;
        char target[16] = "-";
        const char *met = "report";
        if (f.target > 0) {
            std::snprintf(target, sizeof(target), "<= %.1f", f.target);
            met = ratio <= f.target ? "yes" : "NO";
        }
        std::printf("%-22s %-13s %12.3f %12.3f %8.2f %8s  %s\n", f.name.c_str(), f.unit.c_str(), f.ours, f.baseline,
                    ratio, target, met);
    }
    std::fflush(stdout);
}

// Holds COM for the whole run, so that MSXML stays loaded between the skin loads of both sides.
class ComScope {
public:
    ComScope() { ::CoInitialize(nullptr); }
    ~ComScope() { ::CoUninitialize(); }
    ComScope(const ComScope &) = delete;
    ComScope &operator=(const ComScope &) = delete;
};

void Progress(const char *what)
{
    std::fprintf(stderr, "mirl_bench: %s\n", what);
}

std::vector<Figure> RunFigures(int repetitions, const std::wstring &only, const wchar_t *png)
{
    std::vector<Figure> figures;
    if (Wanted(only, L"load")) {
        Progress("skin load");
        figures.push_back(mirlbench::MeasureSkinLoad(repetitions));
    }
    if (Wanted(only, L"lookup")) {
        Progress("lookup");
        figures.push_back(mirlbench::MeasureLookup(repetitions));
    }
    if (Wanted(only, L"tree") || Wanted(only, L"paint") || Wanted(only, L"typing")) {
        MirlIntialize(mirlbench::BenchSkinPath(L"bench_windows").c_str(), 1033);
        try {
            if (Wanted(only, L"tree")) {
                Progress("tree creation and relayout");
                const std::vector<Figure> tree = mirlbench::MeasureWindowTree(repetitions);
                figures.insert(figures.end(), tree.begin(), tree.end());
            }
            if (Wanted(only, L"paint")) {
                Progress("paint");
                figures.push_back(mirlbench::MeasurePaint(repetitions, png));
            }
            if (Wanted(only, L"typing")) {
                Progress("typing");
                const std::vector<Figure> typing = mirlbench::MeasureTyping(repetitions);
                figures.insert(figures.end(), typing.begin(), typing.end());
            }
        } catch (...) {
            MirlUnIntialize();
            throw;
        }
        MirlUnIntialize();
    }
    if (Wanted(only, L"lists")) {
        Progress("list view");
        MirlIntialize(mirlbench::BenchSkinPath(L"bench_windows").c_str(), 1033);
        try {
            const std::vector<Figure> lists = mirlbench::MeasureLists(repetitions);
            figures.insert(figures.end(), lists.begin(), lists.end());
        } catch (...) {
            MirlUnIntialize();
            throw;
        }
        MirlUnIntialize();
    }
    if (Wanted(only, L"memory")) {
        Progress("memory");
        const std::vector<Figure> memory = mirlbench::MeasureMemory(repetitions);
        figures.insert(figures.end(), memory.begin(), memory.end());
    }
    return figures;
}

} // namespace

int wmain(int argc, wchar_t **argv)
{
    int repetitions = kMinimumRepetitions;
    std::wstring only;
    const wchar_t *png = nullptr;
    for (int i = 1; i < argc; ++i) {
        if (std::wcscmp(argv[i], L"--memory-probe") == 0 && i + 1 < argc) {
            try {
                return mirlbench::RunMemoryProbe(argv[i + 1]);
            } catch (const mirlbench::BenchError &e) {
                std::fprintf(stderr, "mirl_bench: %s\n", e.what().c_str());
                return 1;
            } catch (...) {
                std::fprintf(stderr, "mirl_bench: the memory probe failed\n");
                return 1;
            }
        } else if (std::wcscmp(argv[i], L"--repetitions") == 0 && i + 1 < argc) {
            repetitions = static_cast<int>(std::wcstol(argv[++i], nullptr, 10));
        } else if (std::wcscmp(argv[i], L"--only") == 0 && i + 1 < argc) {
            only = argv[++i];
        } else if (std::wcscmp(argv[i], L"--png") == 0 && i + 1 < argc) {
            png = argv[++i];
        } else {
            return Usage();
        }
    }
    if (repetitions < kMinimumRepetitions) {
        return Usage();
    }

    ComScope com;
    std::vector<Figure> figures;
    try {
        figures = RunFigures(repetitions, only, png);
    } catch (const mirlbench::BenchError &e) {
        std::fprintf(stderr, "mirl_bench: %s\n", e.what().c_str());
        return 1;
    } catch (const MirlException &e) {
        std::fprintf(stderr, "mirl_bench: MirlException %d: %s\n", e.error(),
                     e.what() != nullptr ? mirlbench::Narrow(e.what()).c_str() : "");
        return 1;
    } catch (const _com_error &e) {
        std::fprintf(stderr, "mirl_bench: COM error 0x%08lX\n", static_cast<unsigned long>(e.Error()));
        return 1;
    } catch (const std::exception &e) {
        std::fprintf(stderr, "mirl_bench: %s\n", e.what());
        return 1;
    }
    PrintTable(figures, repetitions);
    return 0;
}
