// What every figure of the benchmark shares: a clock, medians, interleaved repetitions, the
// skins the build wrote, and the row that the table prints.
//
//   Figure               one row: medians of ours and of the baseline, the unit, the target
//   Repeat               runs ours and the baseline in turn, alternating which goes first
//   Milliseconds         the performance counter in milliseconds
//   PumpMessages         lets the windows handle what creating, moving and painting queued
//   BenchSkinPath        a skin in the "skins" folder beside the program
#pragma once

#include <windows.h>

#include <functional>
#include <string>
#include <vector>

namespace mirlbench {

struct Figure {
    std::string name;
    std::string unit;
    double ours = 0;
    double baseline = 0;
    // The ratio ours / baseline must not exceed this; 0 means the figure is only reported.
    double target = 0;
};

// Time of ours and of the baseline for one repetition, in the figure's unit.
struct Samples {
    std::vector<double> ours;
    std::vector<double> baseline;
};

double Milliseconds();
double Median(std::vector<double> values);

// Each repetition measures ours and the baseline once; odd repetitions start with the
// baseline, so that neither always comes first after the other has warmed the caches.
// Each callback answers its figure for one run.
void Repeat(int repetitions, Samples &samples, const std::function<double()> &ours,
            const std::function<double()> &baseline);

// The medians of the samples into the figure.
void Summarise(const Samples &samples, Figure &figure);

void PumpMessages();

std::wstring ProgramFolder();
std::wstring BenchSkinPath(const wchar_t *name);
// A wide path in the ANSI code page, for minizip.
std::string Narrow(const std::wstring &text);

// A failure that stops the benchmark: a skin that didn't load as written, a window that wasn't
// made. The message says which.
class BenchError {
public:
    explicit BenchError(std::string message) : m_Message(std::move(message)) {}
    const std::string &what() const { return m_Message; }

private:
    std::string m_Message;
};

} // namespace mirlbench
