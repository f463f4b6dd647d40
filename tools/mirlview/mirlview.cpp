// mirlview: creates a skin template's window tree with the library itself and shows it, or
// renders it to a PNG through the windows' paint-into-a-context path.
//
//   mirlview SKIN TEMPLATE [--lang ID] [--size WxH] [--state STATE] [--png OUT.png] [--watch]
//   mirlview SKIN TEMPLATE --accessibility [--lang ID] [--size WxH] [--state STATE]
//   mirlview SKIN --gallery OUT.png|OUT.html [--lang ID]
//   mirlview SKIN --list [--lang ID]
//
// SKIN is a package or a skin folder, which is read as its package would be. --watch renders
// again whenever the skin changes on disk. --accessibility prints the window's tree as a screen
// reader reads it: role, "name", = "value", [states] and (default action), children indented.
//
// Exit codes: 0 success, 1 the window could not be made or the picture not written, 2 usage,
// 3 the skin could not be loaded, 4 no such template.
#include "MirlFolderPackage.h"
#include "MirlToolSupport.h"
#include "MirlViewAccessibility.h"
#include "MirlViewGallery.h"
#include "MirlViewRender.h"

#include <memory>

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

namespace {

// The states a control may draw differently, in the gallery's order. An edit draws "selected"
// with its whole text selected; a tab or a list row will too.
const wchar_t *const kStates[] = {L"normal", L"hover", L"pressed", L"disabled", L"checked", L"selected"};

bool IsState(const std::wstring &state)
{
    for (const wchar_t *known : kStates) {
        if (state == known) {
            return true;
        }
    }
    return false;
}

// "selected" moves the selection of every toolbar to its second tab (its only tab when there
// is one), and of every outlook control to its second folder, so that a selected face shows
// where the normal picture has none.
void SelectTabs(MirlWindowBase *window)
{
    if (MirlToolbar *toolbar = dynamic_cast<MirlToolbar *>(window)) {
        if (!toolbar->SelectTab(1)) {
            toolbar->SelectTab(0);
        }
    } else if (MIRLOutlookCtrl *outlook = dynamic_cast<MIRLOutlookCtrl *>(window)) {
        if (outlook->GetFolderCount() > 1) {
            ::SendMessageW(outlook->m_hWnd, WM_MIRL_FOLDER_CHANGED, 1,
                           reinterpret_cast<LPARAM>(outlook->GetFolder(0)->pBar));
        }
    }
    for (unsigned int i = 0; i < window->GetChildCount(); ++i) {
        SelectTabs(window->GetChildByIndex(i));
    }
}

// Puts every button and edit of the tree into the state asked for, the way a user would:
// disabled windows, a held press, a check button checked, an edit's text selected, or the pointer
// over each button in turn (a hovering button keeps its hover when another one takes the capture).
void ApplyButtonState(MirlWindowBase *window, const std::wstring &state)
{
    for (unsigned int i = 0; i < window->GetChildCount(); ++i) {
        MirlWindowBase *child = window->GetChildByIndex(i);
        if (MirlEdit *edit = dynamic_cast<MirlEdit *>(child)) {
            // An edit shows its whole text selected for "selected", and none of it otherwise
            // (a template's text starts selected, as WM_SETTEXT leaves it).
            const int length = static_cast<int>(edit->GetEditText().size());
            edit->SetSelAnchor(0);
            edit->SetCursorPosition(length);
            edit->SetHasSelection(state == L"selected");
            if (state == L"disabled") {
                ::EnableWindow(edit->m_hWnd, FALSE);
            }
        } else if (MirlButton *button = dynamic_cast<MirlButton *>(child);
                   button != NULL && state != L"normal" && state != L"selected") {
            if (state == L"disabled") {
                ::EnableWindow(button->m_hWnd, FALSE);
            } else if (state == L"pressed") {
                ::SendMessageW(button->m_hWnd, BM_SETSTATE, TRUE, 0);
            } else if (state == L"checked") {
                button->SetCheck(true, true);  // only a check button takes it
            } else if (state == L"hover") {
                ::SetActiveWindow(::GetAncestor(button->m_hWnd, GA_ROOT));
                ::SendMessageW(button->m_hWnd, WM_MOUSEMOVE, 0, MAKELPARAM(1, 1));
            }
        }
        ApplyButtonState(child, state);
    }
    ::ReleaseCapture();
}

// The range controls in the state asked for: a scroll bar's thumb hot or pressed, a slider's
// thumb glowing or held, a disabled bar without its thumb. A slider's state lasts only while it
// holds the capture, so this comes after the buttons have let go of theirs, and of several
// sliders the last one shows it.
void ApplyRangeState(MirlWindowBase *window, const std::wstring &state)
{
    if (state != L"hover" && state != L"pressed" && state != L"disabled") {
        return;
    }
    for (unsigned int i = 0; i < window->GetChildCount(); ++i) {
        MirlWindowBase *child = window->GetChildByIndex(i);
        if (MirlScrollBar *bar = dynamic_cast<MirlScrollBar *>(child)) {
            const RECT thumb = bar->GetThumbRect();
            const LPARAM centre = MAKELPARAM((thumb.left + thumb.right) / 2, (thumb.top + thumb.bottom) / 2);
            if (state == L"disabled") {
                ::EnableWindow(bar->m_hWnd, FALSE);
            } else if (state == L"hover") {
                ::SendMessageW(bar->m_hWnd, WM_MOUSEMOVE, 0, centre);
            } else {
                // A press on the thumb sends nothing and starts no timer.
                ::SendMessageW(bar->m_hWnd, WM_LBUTTONDOWN, MK_LBUTTON, centre);
            }
        } else if (MirlSlider *slider = dynamic_cast<MirlSlider *>(child)) {
            const RECT thumb = slider->GetThumbRect();
            const LPARAM centre = MAKELPARAM((thumb.left + thumb.right) / 2, (thumb.top + thumb.bottom) / 2);
            if (state == L"disabled") {
                ::EnableWindow(slider->m_hWnd, FALSE);
            } else {
                ::SetActiveWindow(::GetAncestor(slider->m_hWnd, GA_ROOT));
                // One move: it takes the capture and finds the thumb under the pointer. A second
                // would ask which window lies there, and a window rendered off the screen has none.
                ::SendMessageW(slider->m_hWnd, WM_MOUSEMOVE, 0, centre);
                if (state == L"pressed") {
                    ::SendMessageW(slider->m_hWnd, WM_LBUTTONDOWN, MK_LBUTTON, centre);
                }
            }
        } else if (dynamic_cast<MirlMediaSeekBar *>(child) != nullptr && state == L"disabled") {
            ::EnableWindow(child->m_hWnd, FALSE);
        }
        ApplyRangeState(child, state);
    }
}


enum ExitCode { ExitOk = 0, ExitFailed = 1, ExitUsage = 2, ExitSkin = 3, ExitNoTemplate = 4 };

const wchar_t kUsage[] =
    L"usage: mirlview SKIN TEMPLATE [--lang ID] [--size WxH] [--state normal|hover|pressed|disabled|checked|selected]\n"
    L"                [--png OUT.png] [--watch]\n"
    L"       mirlview SKIN TEMPLATE --accessibility [--lang ID] [--size WxH] [--state STATE]\n"
    L"       mirlview SKIN --gallery OUT.png|OUT.html [--lang ID]\n"
    L"       mirlview SKIN --list [--lang ID]\n"
    L"SKIN is a skin package (.zip) or a skin folder, read as its package would be.\n"
    L"Without --png the window opens on the screen until it is closed (Escape closes it too).\n"
    L"--watch renders again whenever the skin changes on disk, until the window is closed or,\n"
    L"with --png, until the program is stopped.\n";

struct Options {
    std::wstring package;
    std::wstring templateName;
    unsigned int language = 1033;
    int width = 0;
    int height = 0;
    std::wstring state = L"normal";
    std::wstring png;
    std::wstring gallery;
    bool list = false;
    bool watch = false;
    bool accessibility = false;
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
        } else if (arg == L"--watch") {
            options.watch = true;
        } else if (arg == L"--accessibility") {
            options.accessibility = true;
        } else if (arg == L"--lang" || arg == L"--size" || arg == L"--state" || arg == L"--png" || arg == L"--gallery") {
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
                if (!IsState(options.state)) {
                    problem = L"--state takes normal, hover, pressed, disabled, checked or selected";
                    return false;
                }
            } else if (arg == L"--gallery") {
                options.gallery = value;
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
    bool whole = options.list || !options.gallery.empty();
    if (options.list && !options.gallery.empty()) {
        problem = L"--list and --gallery go one at a time";
        return false;
    }
    if (whole && options.watch) {
        problem = L"--watch goes with a template";
        return false;
    }
    if (options.accessibility && (whole || options.watch || !options.png.empty())) {
        problem = L"--accessibility goes with a template, without --png or --watch";
        return false;
    }
    size_t wanted = whole ? 1 : 2;
    if (positional.size() != wanted) {
        problem = whole ? (options.list ? L"--list takes the skin only" : L"--gallery takes the skin only")
                        : L"a skin and a template name are needed";
        return false;
    }
    options.package = positional[0];
    if (!whole) {
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

MirlUiWindow *FindTemplate(const std::wstring &name)
{
    return static_cast<MirlUiWindow *>(MirlUI::Instance()->GetUiElement(name.c_str(), UI_ELEMENT_WINDOW));
}

int ReportNoTemplate(const std::wstring &name)
{
    std::wstring similar = SimilarTemplate(name);
    std::fwprintf(stderr, L"mirlview: the skin has no template named '%ls'%ls%ls%ls\n", name.c_str(),
                  similar.empty() ? L"" : L" (did you mean '", similar.c_str(), similar.empty() ? L"" : L"'?)");
    std::fflush(stderr);  // --watch goes on, and may be stopped at any moment
    return ExitNoTemplate;
}

// One template's window tree, made, laid out and put into a state; it goes with the object.
class TemplateView {
public:
    TemplateView() = default;
    ~TemplateView() { Destroy(); }
    TemplateView(const TemplateView &) = delete;
    TemplateView &operator=(const TemplateView &) = delete;

    // False, with the reason on standard error, when the window can't be made.
    bool Create(MirlUiWindow *ui, const Options &options, const std::wstring &state, bool interactive)
    {
        Destroy();
        unsigned long style = TemplateStyle(ui);
        int width = options.width > 0 ? options.width : TemplateInteger(ui, L"Width", 64);
        int height = options.height > 0 ? options.height : TemplateInteger(ui, L"Height", 64);
        m_Frame.reset(new ViewFrame);
        m_Frame->m_QuitOnDestroy = interactive;
        if ((style & WS_CHILD) != 0) {
            m_Host = CreateHost(width, height, interactive, options.templateName.c_str());
            RECT place = {0, 0, width, height};
            if (m_Host != nullptr) {
                m_Frame->Create(nullptr, m_Host, &place, options.templateName.c_str());
            }
        } else {
            m_Frame->Create(nullptr, nullptr, static_cast<LPRECT>(nullptr), options.templateName.c_str());
            if (m_Frame->m_hWnd != nullptr && options.width > 0) {
                RECT rect = {0, 0, options.width, options.height};
                ::AdjustWindowRectEx(&rect, static_cast<DWORD>(::GetWindowLongW(m_Frame->m_hWnd, GWL_STYLE)), FALSE,
                                     static_cast<DWORD>(::GetWindowLongW(m_Frame->m_hWnd, GWL_EXSTYLE)));
                ::SetWindowPos(m_Frame->m_hWnd, nullptr, 0, 0, rect.right - rect.left, rect.bottom - rect.top,
                               SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
            }
        }
        if (m_Frame->m_hWnd == nullptr) {
            std::fwprintf(stderr, L"mirlview: the window of template '%ls' could not be created (error %lu)\n",
                          options.templateName.c_str(), ::GetLastError());
            Destroy();
            return false;
        }
        LayOut(m_Frame->m_hWnd);
        ApplyButtonState(m_Frame.get(), state);
        ApplyRangeState(m_Frame.get(), state);
        if (state == L"selected") {
            SelectTabs(m_Frame.get());
        }
        m_State = state;
        return true;
    }

    HWND frame() const { return m_Frame != nullptr ? m_Frame->m_hWnd : nullptr; }
    HWND top() const { return m_Host != nullptr ? m_Host : frame(); }

    void Show() const
    {
        ::ShowWindow(top(), SW_SHOW);
        ::ShowWindow(frame(), SW_SHOW);
        ::UpdateWindow(top());
    }

    // The frame's client area as the screen would show it; pixels no window paints are black.
    bool Render(mirlview::GalleryShot &shot) const
    {
        RECT client = {};
        ::GetClientRect(frame(), &client);
        mirlview::Picture picture(client.right, client.bottom);
        if (!picture.IsValid()) {
            return false;
        }
        picture.Fill(RGB(0, 0, 0));
        mirlview::ComposeWindowTree(frame(), picture);
        shot.width = picture.width();
        shot.height = picture.height();
        shot.pixels.assign(picture.bits(), picture.bits() + static_cast<size_t>(shot.width) * shot.height);
        return true;
    }

    // attempts > 1 tries again a little later when the file can't be written: while a skin is
    // watched, a viewer (or a test) may be reading the last picture at that very moment.
    bool SavePng(const std::wstring &path, int attempts = 1) const
    {
        // What was queued since Create has handed a slider the real pointer's moves, which end
        // its hover: its state is put back just before the picture.
        ApplyRangeState(m_Frame.get(), m_State);
        RECT client = {};
        ::GetClientRect(frame(), &client);
        mirlview::Picture picture(client.right, client.bottom);
        picture.Fill(RGB(0, 0, 0));
        mirlview::ComposeWindowTree(frame(), picture);
        std::wstring error;
        for (int attempt = 1; !mirlview::SavePng(picture, path.c_str(), error); ++attempt) {
            if (attempt >= attempts) {
                std::fwprintf(stderr, L"mirlview: %ls: %ls\n", path.c_str(), error.c_str());
                std::fflush(stderr);
                return false;
            }
            ::Sleep(50);
        }
        return true;
    }

    // Closing it this way is not the user closing it: the program goes on.
    void Destroy()
    {
        if (m_Frame != nullptr) {
            m_Frame->m_QuitOnDestroy = false;
            if (m_Frame->m_hWnd != nullptr && ::IsWindow(m_Frame->m_hWnd)) {
                m_Frame->DestroyWindow();
            }
            m_Frame.reset();
        }
        if (m_Host != nullptr && ::IsWindow(m_Host)) {
            ::SetWindowLongPtrW(m_Host, GWLP_USERDATA, 0);
            ::DestroyWindow(m_Host);
        }
        m_Host = nullptr;
    }

private:
    std::unique_ptr<ViewFrame> m_Frame;
    HWND m_Host = nullptr;
    std::wstring m_State;
};

int ShowTemplate(const Options &options)
{
    MirlUiWindow *ui = FindTemplate(options.templateName);
    if (ui == nullptr) {
        return ReportNoTemplate(options.templateName);
    }
    bool interactive = options.png.empty() && !options.accessibility;
    TemplateView view;
    if (!view.Create(ui, options, options.state, interactive)) {
        return ExitFailed;
    }
    bool closed = !PumpPending();
    if (options.accessibility) {
        for (const std::wstring &line : mirlview::AccessibilityTree(view.frame())) {
            std::wprintf(L"%ls\n", line.c_str());
        }
        return ExitOk;
    }
    if (interactive && !closed) {
        view.Show();
        return RunMessageLoop();
    }
    if (!interactive && !view.SavePng(options.png)) {
        return ExitFailed;
    }
    return ExitOk;
}

// Handles what is queued, Escape closing the window as in the message loop; false once the
// program is to end.
bool PumpInteractive()
{
    MSG msg;
    while (::PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE)) {
        if (msg.message == WM_QUIT) {
            return false;
        }
        if (msg.message == WM_KEYDOWN && msg.wParam == VK_ESCAPE) {
            ::DestroyWindow(::GetAncestor(msg.hwnd, GA_ROOT));
            continue;
        }
        ::TranslateMessage(&msg);
        ::DispatchMessageW(&msg);
    }
    return true;
}

// Waits until the skin on disk changes and stays changed for one more look (an editor may
// write a file in several steps); false once the window has been closed.
bool WaitForChange(const std::wstring &skin, std::wstring &seen, bool interactive)
{
    const DWORD kPoll = 200;
    for (;;) {
        ::MsgWaitForMultipleObjects(0, nullptr, FALSE, kPoll, QS_ALLINPUT);
        if (!(interactive ? PumpInteractive() : PumpPending())) {
            return false;
        }
        std::wstring now = mirltool::SkinSignature(skin);
        if (now == seen) {
            continue;
        }
        ::Sleep(kPoll / 2);
        if (mirltool::SkinSignature(skin) == now) {
            seen = now;
            return true;
        }
    }
}

// Shows or writes the template, and again each time the skin changes on disk; the window
// keeps its place on the screen across each reload.
int WatchTemplate(const Options &options, mirltool::FolderPackage &folder)
{
    bool interactive = options.png.empty();
    std::wstring seen = mirltool::SkinSignature(options.package);
    TemplateView view;
    RECT place = {};
    bool placed = false;
    bool loaded = true;
    for (unsigned long render = 1;; ++render) {
        MirlUiWindow *ui = loaded ? FindTemplate(options.templateName) : nullptr;
        if (loaded && ui == nullptr) {
            ReportNoTemplate(options.templateName);
        }
        if (ui != nullptr && view.Create(ui, options, options.state, interactive)) {
            if (placed) {
                ::SetWindowPos(view.top(), nullptr, place.left, place.top, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
            }
            if (interactive) {
                view.Show();
            } else if (view.SavePng(options.png, 40)) {
                std::fwprintf(stdout, L"mirlview: wrote %ls (render %lu)\n", options.png.c_str(), render);
                std::fflush(stdout);
            }
        }
        if (!WaitForChange(options.package, seen, interactive && view.top() != nullptr)) {
            return ExitOk;
        }
        if (view.top() != nullptr) {
            placed = ::GetWindowRect(view.top(), &place) != 0;
        }
        view.Destroy();
        MirlUnIntialize();
        mirltool::LibraryStart start = mirltool::StartSkin(options.package, options.language, folder);
        loaded = start.loaded;
        if (!loaded) {
            std::fwprintf(stderr, L"mirlview: the skin %ls could not be loaded: %ls (waiting for the next change)\n",
                          options.package.c_str(), start.message.c_str());
            std::fflush(stderr);
        }
    }
}

// Every top-level template's name, each once, in the order the skin's languages list them.
std::vector<std::wstring> TopLevelTemplateNames()
{
    std::vector<std::wstring> names;
    MirlUI *ui = MirlUI::Instance();
    for (unsigned int l = 0; l < ui->GetLanguageCount(UI_ELEMENT_WINDOW); ++l) {
        unsigned int language = ui->GetLanguage(UI_ELEMENT_WINDOW, l);
        for (unsigned int i = 0; i < ui->GetUiElementCount(UI_ELEMENT_WINDOW, language); ++i) {
            std::wstring name = ui->GetUiElementByIndex(UI_ELEMENT_WINDOW, language, i)->GetName();
            if (std::find(names.begin(), names.end(), name) == names.end()) {
                names.push_back(name);
            }
        }
    }
    return names;
}

bool EndsWithIgnoringCase(const std::wstring &text, const std::wstring &end)
{
    return text.size() >= end.size() && mirltool::EqualsIgnoringCase(text.substr(text.size() - end.size()), end);
}

// Every top-level window template in every state whose picture differs from its normal one.
int MakeGallery(const Options &options)
{
    std::vector<mirlview::GalleryShot> shots;
    for (const std::wstring &name : TopLevelTemplateNames()) {
        MirlUiWindow *ui = FindTemplate(name);
        if (ui == nullptr) {
            continue;
        }
        MirlUiWindow::Attribute *cls = ui->GetAttribute(L"Class");
        // A control's own template (one that skins a dialog's control, say) is drawn by the window
        // that holds it; alone, mirlview would make it a plain window.
        if (cls != nullptr && _wcsicmp(cls->GetValue(), L"WINDOW") != 0 && _wcsicmp(cls->GetValue(), L"CUSTOMCONTROL") != 0) {
            continue;
        }
        Options one = options;
        one.templateName = name;
        size_t normal = shots.size();
        for (const wchar_t *state : kStates) {
            mirlview::GalleryShot shot;
            shot.templateName = name;
            shot.state = state;
            TemplateView view;
            if (!view.Create(ui, one, state, false) || !view.Render(shot)) {
                break;
            }
            shot.description = std::wstring(cls != nullptr ? cls->GetValue() : L"-") + L"  " +
                               std::to_wstring(shot.width) + L"x" + std::to_wstring(shot.height);
            if (shots.size() > normal && mirlview::SamePicture(shot, shots[normal])) {
                continue;
            }
            shots.push_back(std::move(shot));
        }
    }
    std::wstring error;
    bool html = EndsWithIgnoringCase(options.gallery, L".html") || EndsWithIgnoringCase(options.gallery, L".htm");
    bool saved = html ? mirlview::SaveGalleryHtml(shots, options.gallery, error)
                      : mirlview::SaveGallerySheet(shots, options.gallery, error);
    if (!saved) {
        std::fwprintf(stderr, L"mirlview: %ls: %ls\n", options.gallery.c_str(), error.c_str());
        return ExitFailed;
    }
    return ExitOk;
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
    mirltool::FolderPackage folder;
    mirltool::LibraryStart start = mirltool::StartSkin(options.package, options.language, folder);
    if (!start.loaded) {
        std::fwprintf(stderr, L"mirlview: the skin %ls could not be loaded: %ls\n", options.package.c_str(),
                      start.message.c_str());
        MirlUnIntialize();
        return ExitSkin;
    }
    int result = ExitFailed;
    try {
        if (options.list) {
            result = ListTemplates();
        } else if (!options.gallery.empty()) {
            result = MakeGallery(options);
        } else if (options.watch) {
            result = WatchTemplate(options, folder);
        } else {
            result = ShowTemplate(options);
        }
    } catch (...) {
        // A skin that throws while its windows are made is reported, never a crash.
        const std::wstring what = mirltool::DescribeCurrentException();
        std::fwprintf(stderr, L"mirlview: %ls\n", what.c_str());
    }
    MirlUnIntialize();
    return result;
}
