// mirlview: creates a skin template's window tree with the library itself and shows it, or
// renders it to a PNG through the windows' paint-into-a-context path.
//
//   mirlview SKIN.zip TEMPLATE [--lang ID] [--size WxH] [--state normal|hover|pressed|disabled] [--png OUT.png]
//   mirlview SKIN.zip --list [--lang ID]
//
// Exit codes: 0 success, 1 the window could not be made or the picture not written, 2 usage,
// 3 the skin could not be loaded, 4 no such template.
#include "MirlToolSupport.h"
#include "MirlViewRender.h"

#include <cstdio>
#include <string>
#include <vector>

namespace {

// Puts every button of the tree into the state asked for, the way a user would: disabled
// windows, a held press, or the pointer over each button in turn (a hovering button keeps its
// hover when another one takes the capture).
void ApplyButtonState(MirlWindowBase *window, const std::wstring &state)
{
    if (state == L"normal") {
        return;
    }
    for (unsigned int i = 0; i < window->GetChildCount(); ++i) {
        MirlWindowBase *child = window->GetChildByIndex(i);
        if (MirlButton *button = dynamic_cast<MirlButton *>(child)) {
            if (state == L"disabled") {
                ::EnableWindow(button->m_hWnd, FALSE);
            } else if (state == L"pressed") {
                ::SendMessageW(button->m_hWnd, BM_SETSTATE, TRUE, 0);
            } else if (state == L"hover") {
                ::SetActiveWindow(::GetAncestor(button->m_hWnd, GA_ROOT));
                ::SendMessageW(button->m_hWnd, WM_MOUSEMOVE, 0, MAKELPARAM(1, 1));
            }
        }
        ApplyButtonState(child, state);
    }
    ::ReleaseCapture();
}


enum ExitCode { ExitOk = 0, ExitFailed = 1, ExitUsage = 2, ExitSkin = 3, ExitNoTemplate = 4 };

const wchar_t kUsage[] =
    L"usage: mirlview SKIN.zip TEMPLATE [--lang ID] [--size WxH] [--state normal|hover|pressed|disabled] [--png OUT.png]\n"
    L"       mirlview SKIN.zip --list [--lang ID]\n"
    L"Without --png the window opens on the screen until it is closed (Escape closes it too).\n";

struct Options {
    std::wstring package;
    std::wstring templateName;
    unsigned int language = 1033;
    int width = 0;
    int height = 0;
    std::wstring state = L"normal";
    std::wstring png;
    bool list = false;
};

int Usage(const wchar_t *problem)
{
    if (problem != nullptr) {
        std::fwprintf(stderr, L"mirlview: %ls\n", problem);
    }
    std::fwprintf(stderr, L"%ls", kUsage);
    return ExitUsage;
}

// Fills options from the command line; a usage problem is described in problem.
bool ParseArguments(int argc, wchar_t **argv, Options &options, std::wstring &problem)
{
    std::vector<std::wstring> positional;
    for (int i = 1; i < argc; ++i) {
        std::wstring arg = argv[i];
        bool hasValue = i + 1 < argc;
        if (arg == L"--list") {
            options.list = true;
        } else if (arg == L"--lang" || arg == L"--size" || arg == L"--state" || arg == L"--png") {
            if (!hasValue) {
                problem = arg + L" needs a value";
                return false;
            }
            const wchar_t *value = argv[++i];
            if (arg == L"--lang") {
                unsigned long language = 0;
                if (!mirltool::ParseDecimal(value, language) || language == 0 || language > 0xFFFF) {
                    problem = L"--lang takes a decimal language identifier such as 1033";
                    return false;
                }
                options.language = static_cast<unsigned int>(language);
            } else if (arg == L"--size") {
                if (!mirltool::ParseSize(value, options.width, options.height)) {
                    problem = L"--size takes WIDTHxHEIGHT, such as 320x240";
                    return false;
                }
            } else if (arg == L"--state") {
                options.state = value;
                if (options.state != L"normal" && options.state != L"hover" && options.state != L"pressed" &&
                    options.state != L"disabled") {
                    problem = L"--state takes normal, hover, pressed or disabled";
                    return false;
                }
            } else {
                options.png = value;
            }
        } else if (arg.size() > 1 && arg[0] == L'-') {
            problem = L"unknown option " + arg;
            return false;
        } else {
            positional.push_back(arg);
        }
    }
    size_t wanted = options.list ? 1 : 2;
    if (positional.size() != wanted) {
        problem = options.list ? L"--list takes the skin package only" : L"a skin package and a template name are needed";
        return false;
    }
    options.package = positional[0];
    if (!options.list) {
        options.templateName = positional[1];
    }
    return true;
}

// The frame that the template becomes; it ends the message loop when it goes.
class ViewFrame : public MirlWindowImpl<ViewFrame> {
public:
    bool m_QuitOnDestroy = false;

    BEGIN_MSG_MAP(ViewFrame)
        MESSAGE_HANDLER(WM_DESTROY, OnDestroy)
        CHAIN_MSG_MAP(MirlWindowImpl<ViewFrame>)
    END_MSG_MAP()

    LRESULT OnDestroy(UINT, WPARAM, LPARAM, BOOL &handled)
    {
        if (m_QuitOnDestroy) {
            ::PostQuitMessage(0);
        }
        handled = FALSE;
        return 0;
    }
};

// A template whose style makes a child window lives in a host of the requested size, which
// it fills.
const wchar_t kHostClass[] = L"MirlViewHost";

LRESULT CALLBACK HostProc(HWND hWnd, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_SIZE: {
        HWND child = ::GetWindow(hWnd, GW_CHILD);
        if (child != nullptr) {
            ::MoveWindow(child, 0, 0, LOWORD(lParam), HIWORD(lParam), TRUE);
        }
        return 0;
    }
    case WM_DESTROY:
        if (::GetWindowLongPtrW(hWnd, GWLP_USERDATA) != 0) {
            ::PostQuitMessage(0);
        }
        return 0;
    default:
        return ::DefWindowProcW(hWnd, message, wParam, lParam);
    }
}

HWND CreateHost(int width, int height, bool interactive, const wchar_t *title)
{
    WNDCLASSEXW wc = {};
    wc.cbSize = sizeof(wc);
    wc.lpfnWndProc = HostProc;
    wc.hInstance = ::GetModuleHandleW(nullptr);
    wc.hCursor = ::LoadCursorW(nullptr, reinterpret_cast<LPCWSTR>(IDC_ARROW));
    wc.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_WINDOW + 1);
    wc.lpszClassName = kHostClass;
    ::RegisterClassExW(&wc);
    DWORD style = interactive ? WS_OVERLAPPEDWINDOW : WS_POPUP;
    RECT rect = {0, 0, width, height};
    ::AdjustWindowRectEx(&rect, style, FALSE, 0);
    HWND host = ::CreateWindowExW(0, kHostClass, title, style | WS_CLIPCHILDREN, 0, 0, rect.right - rect.left,
                                  rect.bottom - rect.top, nullptr, nullptr, wc.hInstance, nullptr);
    if (host != nullptr && interactive) {
        ::SetWindowLongPtrW(host, GWLP_USERDATA, 1);
    }
    return host;
}

// The template's window style as the window will have it: "Style" replaces the default
// WS_CHILD|WS_VISIBLE.
unsigned long TemplateStyle(MirlUiWindow *ui)
{
    MirlUiWindow::Attribute *style = ui->GetAttribute(L"Style");
    unsigned long value = style != nullptr ? MirlWindowBase::String2Style(style->GetValue()) : WS_CHILD | WS_VISIBLE;
    return value != 0 ? value : 0x56000000UL;
}

int TemplateInteger(MirlUiWindow *ui, const wchar_t *name, int fallback)
{
    MirlUiWindow::Attribute *attribute = ui->GetAttribute(name);
    return attribute != nullptr ? attribute->GetInteger() : fallback;
}

// Lays the tree out for the frame's present client size, whatever sizes came before.
void LayOut(HWND frame)
{
    RECT client = {};
    ::GetClientRect(frame, &client);
    ::SendMessageW(frame, WM_SIZE, SIZE_RESTORED, MAKELPARAM(client.right, client.bottom));
}

// Handles what is queued; false when that included the end of the program (the window can be
// closed before the message loop starts).
bool PumpPending()
{
    MSG msg;
    while (::PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE)) {
        if (msg.message == WM_QUIT) {
            return false;
        }
        ::TranslateMessage(&msg);
        ::DispatchMessageW(&msg);
    }
    return true;
}

int RunMessageLoop()
{
    MSG msg;
    while (::GetMessageW(&msg, nullptr, 0, 0) > 0) {
        if (msg.message == WM_KEYDOWN && msg.wParam == VK_ESCAPE) {
            ::DestroyWindow(::GetAncestor(msg.hwnd, GA_ROOT));
            continue;
        }
        ::TranslateMessage(&msg);
        ::DispatchMessageW(&msg);
    }
    return ExitOk;
}

int ListTemplates()
{
    MirlUI *ui = MirlUI::Instance();
    for (unsigned int l = 0; l < ui->GetLanguageCount(UI_ELEMENT_WINDOW); ++l) {
        unsigned int language = ui->GetLanguage(UI_ELEMENT_WINDOW, l);
        for (unsigned int i = 0; i < ui->GetUiElementCount(UI_ELEMENT_WINDOW, language); ++i) {
            MirlUiWindow *window = static_cast<MirlUiWindow *>(ui->GetUiElementByIndex(UI_ELEMENT_WINDOW, language, i));
            MirlUiWindow::Attribute *cls = window->GetAttribute(L"Class");
            std::wprintf(L"%ls\t%ls\t%dx%d\t%u\n", window->GetName(), cls != nullptr ? cls->GetValue() : L"-",
                         TemplateInteger(window, L"Width", 64), TemplateInteger(window, L"Height", 64), language);
        }
    }
    return ExitOk;
}

// A top-level template of another letter case, to name when the one asked for is absent.
std::wstring SimilarTemplate(const std::wstring &name)
{
    MirlUI *ui = MirlUI::Instance();
    for (unsigned int l = 0; l < ui->GetLanguageCount(UI_ELEMENT_WINDOW); ++l) {
        unsigned int language = ui->GetLanguage(UI_ELEMENT_WINDOW, l);
        for (unsigned int i = 0; i < ui->GetUiElementCount(UI_ELEMENT_WINDOW, language); ++i) {
            MirlUiElement *element = ui->GetUiElementByIndex(UI_ELEMENT_WINDOW, language, i);
            if (mirltool::EqualsIgnoringCase(element->GetName(), name)) {
                return element->GetName();
            }
        }
    }
    return std::wstring();
}

int ShowTemplate(const Options &options)
{
    MirlUiWindow *ui = static_cast<MirlUiWindow *>(
        MirlUI::Instance()->GetUiElement(options.templateName.c_str(), UI_ELEMENT_WINDOW));
    if (ui == nullptr) {
        std::wstring similar = SimilarTemplate(options.templateName);
        std::fwprintf(stderr, L"mirlview: the skin has no template named '%ls'%ls%ls%ls\n", options.templateName.c_str(),
                      similar.empty() ? L"" : L" (did you mean '", similar.c_str(), similar.empty() ? L"" : L"'?)");
        return ExitNoTemplate;
    }
    bool interactive = options.png.empty();
    unsigned long style = TemplateStyle(ui);
    int width = options.width > 0 ? options.width : TemplateInteger(ui, L"Width", 64);
    int height = options.height > 0 ? options.height : TemplateInteger(ui, L"Height", 64);

    int result = ExitOk;
    HWND host = nullptr;
    {
        ViewFrame frame;
        frame.m_QuitOnDestroy = interactive;
        if ((style & WS_CHILD) != 0) {
            host = CreateHost(width, height, interactive, options.templateName.c_str());
            RECT place = {0, 0, width, height};
            if (host != nullptr) {
                frame.Create(nullptr, host, &place, options.templateName.c_str());
            }
        } else {
            frame.Create(nullptr, nullptr, static_cast<LPRECT>(nullptr), options.templateName.c_str());
            if (frame.m_hWnd != nullptr && options.width > 0) {
                RECT rect = {0, 0, options.width, options.height};
                ::AdjustWindowRectEx(&rect, static_cast<DWORD>(::GetWindowLongW(frame.m_hWnd, GWL_STYLE)), FALSE,
                                     static_cast<DWORD>(::GetWindowLongW(frame.m_hWnd, GWL_EXSTYLE)));
                ::SetWindowPos(frame.m_hWnd, nullptr, 0, 0, rect.right - rect.left, rect.bottom - rect.top,
                               SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
            }
        }
        if (frame.m_hWnd == nullptr) {
            std::fwprintf(stderr, L"mirlview: the window of template '%ls' could not be created (error %lu)\n",
                          options.templateName.c_str(), ::GetLastError());
            result = ExitFailed;
        } else {
            LayOut(frame.m_hWnd);
            ApplyButtonState(&frame, options.state);
            bool closed = !PumpPending();
            if (interactive && !closed) {
                HWND top = host != nullptr ? host : frame.m_hWnd;
                ::ShowWindow(top, SW_SHOW);
                ::ShowWindow(frame.m_hWnd, SW_SHOW);
                ::UpdateWindow(top);
                result = RunMessageLoop();
            } else if (!interactive) {
                RECT client = {};
                ::GetClientRect(frame.m_hWnd, &client);
                mirlview::Picture picture(client.right, client.bottom);
                picture.Fill(RGB(0, 0, 0));
                mirlview::ComposeWindowTree(frame.m_hWnd, picture);
                std::wstring error;
                if (!mirlview::SavePng(picture, options.png.c_str(), error)) {
                    std::fwprintf(stderr, L"mirlview: %ls: %ls\n", options.png.c_str(), error.c_str());
                    result = ExitFailed;
                }
            }
        }
        if (frame.m_hWnd != nullptr && ::IsWindow(frame.m_hWnd)) {
            frame.DestroyWindow();
        }
    }
    if (host != nullptr && ::IsWindow(host)) {
        ::SetWindowLongPtrW(host, GWLP_USERDATA, 0);
        ::DestroyWindow(host);
    }
    return result;
}

} // namespace

int wmain(int argc, wchar_t **argv)
{
    mirltool::UseUtf8Console();
    Options options;
    std::wstring problem;
    if (argc == 2 && (std::wstring(argv[1]) == L"--help" || std::wstring(argv[1]) == L"-h")) {
        std::fwprintf(stdout, L"%ls", kUsage);
        return ExitOk;
    }
    if (!ParseArguments(argc, argv, options, problem)) {
        return Usage(problem.c_str());
    }
    mirltool::LibraryStart start = mirltool::StartLibrary(options.package.c_str(), options.language);
    if (!start.loaded) {
        std::fwprintf(stderr, L"mirlview: the skin %ls could not be loaded: %ls\n", options.package.c_str(),
                      start.message.c_str());
        MirlUnIntialize();
        return ExitSkin;
    }
    int result = ExitFailed;
    try {
        result = options.list ? ListTemplates() : ShowTemplate(options);
    } catch (...) {
        // A skin that throws while its windows are made is reported, never a crash.
        const std::wstring what = mirltool::DescribeCurrentException();
        std::fwprintf(stderr, L"mirlview: %ls\n", what.c_str());
    }
    MirlUnIntialize();
    return result;
}
