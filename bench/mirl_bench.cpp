// The benchmark: each figure of the library beside a baseline that does the same work with the
// platform alone, measured in one process, interleaved. The whole set runs in rounds (three
// unless told); the table gives each figure's median ratio over the rounds and its spread, so
// that a change can be told from the noise of a shared machine.
//   mirl_bench [--repetitions N] [--rounds N] [--only load,lookup,tree,paint,typing,lists,memory]
//              [--png PAINT.png]
//   mirl_bench --stages [--repetitions N]: where the time of the skin load and of lookups goes
// The skins are those the build wrote into the "skins" folder beside the program.
#include "BenchFigures.h"

#include "Mirl.h"

#include <algorithm>
#include <cstdio>
#include <cwchar>
#include <exception>
#include <string>

namespace {

using mirlbench::Figure;

const int kMinimumRepetitions = 7;
const int kDefaultRounds = 3;

int Usage()
{
    std::fprintf(stderr,
                 "usage: mirl_bench [--repetitions N (at least %d)] [--rounds N (at least 1)] "
                 "[--only load,lookup,tree,paint,typing,lists,memory] [--png PAINT.png] | [--stages]\n",
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

double Ratio(const Figure &figure)
{
    return figure.baseline > 0 ? figure.ours / figure.baseline : 0;
}

// One figure over all rounds: the median of each column, the median of the rounds' ratios
// (not the ratio of the medians: each round's ratio is what that round measured), and the
// spread of those ratios, highest less lowest.
struct RoundsOfFigure {
    Figure figure;
    std::vector<double> ours;
    std::vector<double> baseline;
    std::vector<double> ratios;
};

std::vector<RoundsOfFigure> Gather(const std::vector<std::vector<Figure>> &rounds)
{
    std::vector<RoundsOfFigure> rows;
    for (const std::vector<Figure> &round : rounds) {
        for (const Figure &figure : round) {
            auto row = std::find_if(rows.begin(), rows.end(),
                                    [&](const RoundsOfFigure &r) { return r.figure.name == figure.name; });
            if (row == rows.end()) {
                rows.push_back(RoundsOfFigure{figure, {}, {}, {}});
                row = rows.end() - 1;
            }
            row->ours.push_back(figure.ours);
            row->baseline.push_back(figure.baseline);
            row->ratios.push_back(Ratio(figure));
        }
    }
    return rows;
}

void PrintTable(const std::vector<std::vector<Figure>> &rounds, int repetitions)
{
    std::printf("%d round%s of medians of %d repetitions, ours and the baseline interleaved in one process;\n"
                "ratio: the median of the rounds' ratios; spread: their highest less their lowest.\n\n",
                static_cast<int>(rounds.size()), rounds.size() == 1 ? "" : "s", repetitions);
    std::printf("%-22s %-13s %12s %12s %8s %7s %8s  %-6s  %s\n", "figure", "unit", "ours", "baseline", "ratio",
                "spread", "target", "met", "rounds");
    for (const RoundsOfFigure &row : Gather(rounds)) {
        const double ratio = mirlbench::Median(row.ratios);
        const double spread = *std::max_element(row.ratios.begin(), row.ratios.end()) -
                              *std::min_element(row.ratios.begin(), row.ratios.end());
        char target[16] = "-";
        const char *met = "report";
        if (row.figure.target > 0) {
            std::snprintf(target, sizeof(target), "<= %g", row.figure.target);
            met = ratio <= row.figure.target ? "yes" : "NO";
        }
        std::string each;
        for (double r : row.ratios) {
            char text[24];
            std::snprintf(text, sizeof(text), "%s%.2f", each.empty() ? "" : " ", r);
            each += text;
        }
        std::printf("%-22s %-13s %12.3f %12.3f %8.2f %7.2f %8s  %-6s  %s\n", row.figure.name.c_str(),
                    row.figure.unit.c_str(), mirlbench::Median(row.ours), mirlbench::Median(row.baseline), ratio,
                    spread, target, met, each.c_str());
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
    int rounds = kDefaultRounds;
    bool stages = false;
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
        } else if (std::wcscmp(argv[i], L"--stages") == 0) {
            stages = true;
        } else if (std::wcscmp(argv[i], L"--rounds") == 0 && i + 1 < argc) {
            rounds = static_cast<int>(std::wcstol(argv[++i], nullptr, 10));
        } else if (std::wcscmp(argv[i], L"--only") == 0 && i + 1 < argc) {
            only = argv[++i];
        } else if (std::wcscmp(argv[i], L"--png") == 0 && i + 1 < argc) {
            png = argv[++i];
        } else {
            return Usage();
        }
    }
    if (repetitions < kMinimumRepetitions || rounds < 1) {
        return Usage();
    }

    ComScope com;
    std::vector<std::vector<Figure>> results;
    try {
        if (stages) {
            mirlbench::PrintSkinStages(repetitions);
            return 0;
        }
        for (int round = 1; round <= rounds; ++round) {
            std::fprintf(stderr, "mirl_bench: round %d of %d\n", round, rounds);
            // The picture is saved once, from the first round.
            results.push_back(RunFigures(repetitions, only, round == 1 ? png : nullptr));
        }
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
    PrintTable(results, repetitions);
    return 0;
}
