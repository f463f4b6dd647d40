// Tree creation, relayout and memory: the library's window tree against the platform's.
#include "BenchFigures.h"
#include "BenchWindows.h"

#include "MirlLeakCounters.h"

#include <psapi.h>

#include <cstdio>
#include <cwchar>

namespace mirlbench {

namespace {

const wchar_t kPlainClass[] = L"MirlBenchPlain";
const int kTreeWidth = 1280;
const int kTreeHeight = 900;
// The relayout alternates between these client sizes, so that every aligned child moves.
const SIZE kLayoutSizes[2] = {{1280, 900}, {1200, 880}};

void RegisterPlainClass()
{
    static bool registered = false;
    if (registered) {
        return;
    }
    WNDCLASSEXW wc = {};
    wc.cbSize = sizeof(wc);
    wc.style = CS_HREDRAW | CS_VREDRAW | CS_DBLCLKS;
    wc.lpfnWndProc = ::DefWindowProcW;
    wc.hInstance = ::GetModuleHandleW(nullptr);
    wc.hCursor = ::LoadCursorW(nullptr, IDC_ARROW);
    wc.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_WINDOW + 1);
    wc.lpszClassName = kPlainClass;
    registered = ::RegisterClassExW(&wc) != 0;
}

int IntegerAttribute(MirlUiWindow *window, const wchar_t *name)
{
    MirlUiWindow::Attribute *attribute = window->GetAttribute(name);
    return attribute != nullptr ? attribute->GetInteger() : 0;
}

// A child's rectangle in its parent's client coordinates.
RECT PlaceOf(HWND child)
{
    RECT r = {};
    ::GetWindowRect(child, &r);
    ::MapWindowPoints(HWND_DESKTOP, ::GetParent(child), reinterpret_cast<POINT *>(&r), 2);
    return r;
}

std::vector<HWND> ChildrenOf(HWND parent)
{
    std::vector<HWND> children;
    for (HWND child = ::GetWindow(parent, GW_CHILD); child != nullptr; child = ::GetWindow(child, GW_HWNDNEXT)) {
        children.push_back(child);
    }
    return children;
}

LPARAM SizeParam(const SIZE &size)
{
    return MAKELPARAM(size.cx, size.cy);
}

} // namespace

std::vector<ChildShape> TreeShapes()
{
    MirlUI *ui = MirlUI::Instance();
    MirlUiWindow *tree = ui != nullptr ? static_cast<MirlUiWindow *>(ui->GetUiElement(L"Tree", UI_ELEMENT_WINDOW)) : nullptr;
    if (tree == nullptr) {
        throw BenchError("the window skin has no template \"Tree\"");
    }
    std::vector<ChildShape> shapes;
    for (unsigned int i = 0; i < tree->GetChildCount(); ++i) {
        MirlUiWindow *child = tree->GetChildByIndex(static_cast<int>(i));
        ChildShape shape;
        MirlUiWindow::Attribute *windowClass = child->GetAttribute(L"Class");
        shape.windowClass = windowClass != nullptr ? windowClass->GetValue() : L"";
        shape.x = IntegerAttribute(child, L"X");
        shape.y = IntegerAttribute(child, L"Y");
        shape.width = IntegerAttribute(child, L"Width");
        shape.height = IntegerAttribute(child, L"Height");
        shape.id = IntegerAttribute(child, L"CommandID");
        MirlUiWindow::Attribute *text = child->GetAttribute(L"Text");
        MirlUiElementText *element =
            text != nullptr ? static_cast<MirlUiElementText *>(ui->GetUiElement(text->GetValue(), UI_ELEMENT_TEXT)) : nullptr;
        shape.text = element != nullptr ? element->GetText() : L"";
        shapes.push_back(shape);
    }
    return shapes;
}

std::unique_ptr<BenchFrame> CreateTree(const wchar_t *templateName)
{
    std::unique_ptr<BenchFrame> frame(new BenchFrame());
    if (frame->Create(nullptr, nullptr, static_cast<LPRECT>(nullptr), templateName) == nullptr) {
        throw BenchError("the library did not create the template " + Narrow(templateName));
    }
    return frame;
}

void DestroyTree(std::unique_ptr<BenchFrame> &frame)
{
    if (frame != nullptr && frame->m_hWnd != nullptr) {
        frame->DestroyWindow();
    }
    frame.reset();
    PumpMessages();
}

HWND CreateBareTree(const std::vector<ChildShape> &shapes)
{
    RegisterPlainClass();
    HINSTANCE instance = ::GetModuleHandleW(nullptr);
    HWND parent = ::CreateWindowExW(0, kPlainClass, nullptr, WS_POPUP | WS_VISIBLE, 0, 0, kTreeWidth, kTreeHeight,
                                    nullptr, nullptr, instance, nullptr);
    if (parent == nullptr) {
        throw BenchError("CreateWindowExW failed for the baseline's popup");
    }
    for (const ChildShape &shape : shapes) {
        const wchar_t *windowClass = kPlainClass;
        DWORD style = WS_CHILD | WS_VISIBLE;
        if (_wcsicmp(shape.windowClass.c_str(), L"BUTTON") == 0) {
            windowClass = L"BUTTON";
            style |= BS_PUSHBUTTON;
        } else if (_wcsicmp(shape.windowClass.c_str(), L"STATIC") == 0) {
            windowClass = L"STATIC";
            style |= SS_LEFT;
        }
        ::CreateWindowExW(0, windowClass, shape.text.empty() ? nullptr : shape.text.c_str(), style, shape.x, shape.y,
                          shape.width, shape.height, parent, reinterpret_cast<HMENU>(static_cast<INT_PTR>(shape.id)),
                          instance, nullptr);
    }
    return parent;
}

void DestroyBareTree(HWND parent)
{
    if (parent != nullptr) {
        ::DestroyWindow(parent);
    }
    PumpMessages();
}

std::vector<Figure> MeasureWindowTree(int repetitions)
{
    const std::vector<ChildShape> shapes = TreeShapes();
    if (shapes.size() != 1000) {
        throw BenchError("the template \"Tree\" has " + std::to_string(shapes.size()) + " children, not 1000");
    }

    // Once each before measuring, and a check that every child became a window.
    std::unique_ptr<BenchFrame> frame = CreateTree(L"Tree");
    if (frame->GetChildCount() != shapes.size() || ChildrenOf(frame->m_hWnd).size() != shapes.size()) {
        throw BenchError("the library made " + std::to_string(frame->GetChildCount()) + " of the 1000 children");
    }
    DestroyTree(frame);
    HWND bare = CreateBareTree(shapes);
    if (ChildrenOf(bare).size() != shapes.size()) {
        throw BenchError("the baseline made " + std::to_string(ChildrenOf(bare).size()) + " of the 1000 children");
    }
    DestroyBareTree(bare);

    Samples created;
    Repeat(
        repetitions, created,
        [&] {
            const double start = Milliseconds();
            frame = CreateTree(L"Tree");
            const double elapsed = Milliseconds() - start;
            DestroyTree(frame);
            return elapsed;
        },
        [&] {
            const double start = Milliseconds();
            bare = CreateBareTree(shapes);
            const double elapsed = Milliseconds() - start;
            DestroyBareTree(bare);
            return elapsed;
        });
    Figure creation{"tree creation", "ms"};
    creation.target = 1.25;
    Summarise(created, creation);

    // Relayout: the rectangles the library gives the children at each size are what the
    // baseline moves its own children to.
    frame = CreateTree(L"Tree");
    bare = CreateBareTree(shapes);
    PumpMessages();
    std::vector<HWND> ours;
    for (unsigned int i = 0; i < frame->GetChildCount(); ++i) {
        ours.push_back(frame->GetChildByIndex(i)->m_hWnd);
    }
    std::vector<HWND> theirs;
    for (const ChildShape &shape : shapes) {
        theirs.push_back(::GetDlgItem(bare, shape.id));
    }
    std::vector<RECT> places[2];
    for (int s = 0; s < 2; ++s) {
        ::SendMessageW(frame->m_hWnd, WM_SIZE, SIZE_RESTORED, SizeParam(kLayoutSizes[s]));
        PumpMessages();
        for (HWND child : ours) {
            places[s].push_back(PlaceOf(child));
        }
    }
    if (places[0][0].left == places[1][0].left) {
        throw BenchError("the children did not move with the size of their parent");
    }

    Samples moved;
    Repeat(
        repetitions, moved,
        [&] {
            const double start = Milliseconds();
            for (const SIZE &size : kLayoutSizes) {
                ::SendMessageW(frame->m_hWnd, WM_SIZE, SIZE_RESTORED, SizeParam(size));
            }
            const double elapsed = Milliseconds() - start;
            PumpMessages();
            return elapsed;
        },
        [&] {
            const double start = Milliseconds();
            for (const std::vector<RECT> &place : places) {
                for (size_t i = 0; i < theirs.size(); ++i) {
                    const RECT &r = place[i];
                    ::MoveWindow(theirs[i], r.left, r.top, r.right - r.left, r.bottom - r.top, TRUE);
                }
            }
            const double elapsed = Milliseconds() - start;
            PumpMessages();
            return elapsed;
        });
    Figure relayout{"relayout (2 sizes)", "ms"};
    relayout.target = 1.05;
    Summarise(moved, relayout);

    DestroyTree(frame);
    DestroyBareTree(bare);
    return {creation, relayout};
}

// ---- Memory ----

namespace {

SIZE_T WorkingSet()
{
    PROCESS_MEMORY_COUNTERS counters = {};
    counters.cb = sizeof(counters);
    return ::GetProcessMemoryInfo(::GetCurrentProcess(), &counters, sizeof(counters)) ? counters.WorkingSetSize : 0;
}

struct ProbeResult {
    long long workingSet;
    long long heap;
};

// Runs this program again as a memory probe and reads the two numbers it prints.
ProbeResult RunProbe(const wchar_t *kind)
{
    wchar_t program[MAX_PATH] = {};
    ::GetModuleFileNameW(nullptr, program, MAX_PATH);
    std::wstring command = L"\"" + std::wstring(program) + L"\" --memory-probe " + kind;

    SECURITY_ATTRIBUTES inherit = {sizeof(inherit), nullptr, TRUE};
    HANDLE readEnd = nullptr;
    HANDLE writeEnd = nullptr;
    if (!::CreatePipe(&readEnd, &writeEnd, &inherit, 0)) {
        throw BenchError("CreatePipe failed");
    }
    ::SetHandleInformation(readEnd, HANDLE_FLAG_INHERIT, 0);
    STARTUPINFOW startup = {};
    startup.cb = sizeof(startup);
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdOutput = writeEnd;
    startup.hStdError = ::GetStdHandle(STD_ERROR_HANDLE);
    startup.hStdInput = ::GetStdHandle(STD_INPUT_HANDLE);
    PROCESS_INFORMATION process = {};
    const BOOL started = ::CreateProcessW(program, &command[0], nullptr, nullptr, TRUE, 0, nullptr, nullptr,
                                          &startup, &process);
    ::CloseHandle(writeEnd);
    if (!started) {
        ::CloseHandle(readEnd);
        throw BenchError("could not start the memory probe");
    }
    std::string output;
    char buffer[256];
    DWORD read = 0;
    while (::ReadFile(readEnd, buffer, sizeof(buffer), &read, nullptr) && read > 0) {
        output.append(buffer, read);
    }
    ::CloseHandle(readEnd);
    const DWORD waited = ::WaitForSingleObject(process.hProcess, 120000);
    DWORD code = 1;
    ::GetExitCodeProcess(process.hProcess, &code);
    ::CloseHandle(process.hThread);
    ::CloseHandle(process.hProcess);
    ProbeResult result = {0, 0};
    if (waited != WAIT_OBJECT_0 || code != 0 ||
        std::sscanf(output.c_str(), "%lld %lld", &result.workingSet, &result.heap) != 2) {
        throw BenchError("the memory probe (" + Narrow(kind) + ") failed: " + output);
    }
    return result;
}

} // namespace

int RunMemoryProbe(const wchar_t *kind)
{
    const bool ours = std::wcscmp(kind, L"ours") == 0;
    if (!ours && std::wcscmp(kind, L"baseline") != 0) {
        std::fprintf(stderr, "mirl_bench: --memory-probe takes \"ours\" or \"baseline\"\n");
        return 2;
    }
    MirlIntialize(BenchSkinPath(L"bench_windows").c_str(), 1033);
    const std::vector<ChildShape> shapes = TreeShapes();
    // A small tree first, so that classes, fonts and themes that the first window of each kind
    // loads count for neither side.
    if (ours) {
        std::unique_ptr<BenchFrame> warm = CreateTree(L"Warm");
        DestroyTree(warm);
    } else {
        std::vector<ChildShape> oneOfEach;
        for (const ChildShape &shape : shapes) {
            bool seen = false;
            for (const ChildShape &kept : oneOfEach) {
                seen = seen || kept.windowClass == shape.windowClass;
            }
            if (!seen) {
                oneOfEach.push_back(shape);
            }
        }
        DestroyBareTree(CreateBareTree(oneOfEach));
    }
    PumpMessages();
    const SIZE_T workingSetBefore = WorkingSet();
    const size_t heapBefore = mirltest::BusyHeapBytes();

    std::unique_ptr<BenchFrame> frame;
    HWND bare = nullptr;
    if (ours) {
        frame = CreateTree(L"Tree");
    } else {
        bare = CreateBareTree(shapes);
    }
    PumpMessages();
    const long long workingSet = static_cast<long long>(WorkingSet()) - static_cast<long long>(workingSetBefore);
    const long long heap = static_cast<long long>(mirltest::BusyHeapBytes()) - static_cast<long long>(heapBefore);
    std::printf("%lld %lld\n", workingSet, heap);
    std::fflush(stdout);

    DestroyTree(frame);
    DestroyBareTree(bare);
    MirlUnIntialize();
    return 0;
}

std::vector<Figure> MeasureMemory(int repetitions)
{
    const double windows = 1000.0;
    Samples perWindow;
    Samples heapPerWindow;
    Repeat(
        repetitions, perWindow,
        [&] {
            const ProbeResult result = RunProbe(L"ours");
            heapPerWindow.ours.push_back(static_cast<double>(result.heap) / windows);
            return static_cast<double>(result.workingSet) / 1024.0 / windows;
        },
        [&] {
            const ProbeResult result = RunProbe(L"baseline");
            heapPerWindow.baseline.push_back(static_cast<double>(result.heap) / windows);
            return static_cast<double>(result.workingSet) / 1024.0 / windows;
        });
    Figure workingSet{"memory: working set", "KiB/window"};
    Summarise(perWindow, workingSet);
    Figure heap{"memory: heap in use", "bytes/window"};
    Summarise(heapPerWindow, heap);
    return {workingSet, heap};
}

} // namespace mirlbench
