// Runs one of the tools as a separate process, as a skin author would, and hands back its exit
// code and its output lines.
#pragma once

#include "MirlTestSupport.h"

#include <windows.h>

#include <string>
#include <vector>

namespace mirltooltest {

using mirltest::BinDir;

inline std::wstring Skin(const wchar_t *name)
{
    return mirltest::SkinPath(name);
}

inline std::wstring Quote(const std::wstring &arg)
{
    return L"\"" + arg + L"\"";
}

namespace detail {

struct WindowSearch {
    DWORD process;
    HWND found;
};

inline BOOL CALLBACK FindVisibleWindow(HWND hWnd, LPARAM lParam)
{
    WindowSearch *search = reinterpret_cast<WindowSearch *>(lParam);
    DWORD owner = 0;
    GetWindowThreadProcessId(hWnd, &owner);
    if (owner == search->process && IsWindowVisible(hWnd)) {
        search->found = hWnd;
        return FALSE;
    }
    return TRUE;
}

} // namespace detail

// The process's visible top-level window, or null.
inline HWND VisibleWindowOf(DWORD process)
{
    detail::WindowSearch search = {process, nullptr};
    EnumWindows(detail::FindVisibleWindow, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

struct RunResult {
    DWORD exitCode = 0xFFFFFFFF;
    std::vector<std::wstring> out;  // stdout, one entry per line, without line ends
    std::vector<std::wstring> err;
    std::wstring outText;
    bool finished = false;
};

inline std::vector<std::wstring> SplitLines(const std::wstring &text)
{
    std::vector<std::wstring> lines;
    std::wstring line;
    for (wchar_t c : text) {
        if (c == L'\n') {
            lines.push_back(line);
            line.clear();
        } else if (c != L'\r') {
            line += c;
        }
    }
    if (!line.empty()) {
        lines.push_back(line);
    }
    return lines;
}

inline std::wstring FromUtf8(const std::string &bytes)
{
    if (bytes.empty()) {
        return std::wstring();
    }
    int length = MultiByteToWideChar(CP_UTF8, 0, bytes.data(), static_cast<int>(bytes.size()), nullptr, 0);
    std::wstring text(static_cast<size_t>(length), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, bytes.data(), static_cast<int>(bytes.size()), &text[0], length);
    return text;
}

namespace detail {

struct Drain {
    HANDLE pipe;
    std::string bytes;
};

inline DWORD WINAPI DrainPipe(LPVOID parameter)
{
    Drain *drain = static_cast<Drain *>(parameter);
    char buffer[4096];
    DWORD read = 0;
    while (ReadFile(drain->pipe, buffer, sizeof(buffer), &read, nullptr) && read > 0) {
        drain->bytes.append(buffer, read);
    }
    return 0;
}

} // namespace detail

// Starts "BinDir\program arguments" and waits for it; both output streams are read as UTF-8.
// started, if given, is called with the process while it runs (to drive a window, say).
template <class OnStart>
RunResult RunTool(const wchar_t *program, const std::wstring &arguments, OnStart started, DWORD timeout = 60000)
{
    RunResult result;
    SECURITY_ATTRIBUTES inherit = {sizeof(inherit), nullptr, TRUE};
    HANDLE outRead = nullptr, outWrite = nullptr, errRead = nullptr, errWrite = nullptr;
    CreatePipe(&outRead, &outWrite, &inherit, 0);
    CreatePipe(&errRead, &errWrite, &inherit, 0);
    SetHandleInformation(outRead, HANDLE_FLAG_INHERIT, 0);
    SetHandleInformation(errRead, HANDLE_FLAG_INHERIT, 0);

    STARTUPINFOW startup = {};
    startup.cb = sizeof(startup);
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = GetStdHandle(STD_INPUT_HANDLE);
    startup.hStdOutput = outWrite;
    startup.hStdError = errWrite;
    PROCESS_INFORMATION process = {};
    std::wstring command = Quote(BinDir() + L"\\" + program) + L" " + arguments;
    std::vector<wchar_t> line(command.begin(), command.end());
    line.push_back(L'\0');
    BOOL created = CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, 0, nullptr, BinDir().c_str(), &startup,
                                  &process);
    CloseHandle(outWrite);
    CloseHandle(errWrite);
    if (!created) {
        CloseHandle(outRead);
        CloseHandle(errRead);
        return result;
    }
    detail::Drain out = {outRead, std::string()};
    detail::Drain err = {errRead, std::string()};
    HANDLE readers[2] = {CreateThread(nullptr, 0, detail::DrainPipe, &out, 0, nullptr),
                         CreateThread(nullptr, 0, detail::DrainPipe, &err, 0, nullptr)};
    started(process);
    if (WaitForSingleObject(process.hProcess, timeout) == WAIT_OBJECT_0) {
        result.finished = true;
        GetExitCodeProcess(process.hProcess, &result.exitCode);
    } else {
        TerminateProcess(process.hProcess, 0xDEAD);
    }
    WaitForMultipleObjects(2, readers, TRUE, 10000);
    CloseHandle(readers[0]);
    CloseHandle(readers[1]);
    CloseHandle(outRead);
    CloseHandle(errRead);
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    result.outText = FromUtf8(out.bytes);
    result.out = SplitLines(result.outText);
    result.err = SplitLines(FromUtf8(err.bytes));
    return result;
}

inline RunResult RunTool(const wchar_t *program, const std::wstring &arguments)
{
    return RunTool(program, arguments, [](const PROCESS_INFORMATION &) {});
}

} // namespace mirltooltest
