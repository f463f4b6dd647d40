#include "BenchSupport.h"

#include <algorithm>

namespace mirlbench {

double Milliseconds()
{
    static LARGE_INTEGER frequency = {};
    if (frequency.QuadPart == 0) {
        ::QueryPerformanceFrequency(&frequency);
    }
    LARGE_INTEGER now = {};
    ::QueryPerformanceCounter(&now);
    return static_cast<double>(now.QuadPart) * 1000.0 / static_cast<double>(frequency.QuadPart);
}

double Median(std::vector<double> values)
{
    if (values.empty()) {
        return 0;
    }
    std::sort(values.begin(), values.end());
    const size_t middle = values.size() / 2;
    return values.size() % 2 != 0 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

void Repeat(int repetitions, Samples &samples, const std::function<double()> &ours,
            const std::function<double()> &baseline)
{
    for (int i = 0; i < repetitions; ++i) {
        if (i % 2 == 0) {
            samples.ours.push_back(ours());
            samples.baseline.push_back(baseline());
        } else {
            samples.baseline.push_back(baseline());
            samples.ours.push_back(ours());
        }
    }
}

void Summarise(const Samples &samples, Figure &figure)
{
    figure.ours = Median(samples.ours);
    figure.baseline = Median(samples.baseline);
}

void PumpMessages()
{
    MSG msg;
    while (::PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE)) {
        ::TranslateMessage(&msg);
        ::DispatchMessageW(&msg);
    }
}

std::wstring ProgramFolder()
{
    wchar_t path[MAX_PATH] = {};
    const DWORD length = ::GetModuleFileNameW(nullptr, path, MAX_PATH);
    std::wstring folder(path, length);
    const size_t slash = folder.find_last_of(L"\\/");
    return slash == std::wstring::npos ? std::wstring(L".") : folder.substr(0, slash);
}

std::wstring BenchSkinPath(const wchar_t *name)
{
    return ProgramFolder() + L"\\skins\\" + name + L".zip";
}

std::string Narrow(const std::wstring &text)
{
    const int length = ::WideCharToMultiByte(CP_ACP, 0, text.c_str(), -1, nullptr, 0, nullptr, nullptr);
    if (length < 1) {
        return std::string();
    }
    std::string narrow(static_cast<size_t>(length), '\0');
    ::WideCharToMultiByte(CP_ACP, 0, text.c_str(), -1, &narrow[0], length, nullptr, nullptr);
    narrow.resize(static_cast<size_t>(length) - 1);
    return narrow;
}

} // namespace mirlbench
