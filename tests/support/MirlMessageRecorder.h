// Message recording for control tests: what a control and its parent receive, in one ordered
// sequence, compared with static expected tables and reported side by side when they differ.
//
//   MessageSequence     the record: one list, in arrival order, with a filter of noise
//   RecordingParent     a window of its own class that records what it receives; it can answer
//                       chosen messages with chosen results and reflect notifications as OCM_
//   ControlRecorder     a window-procedure subclass that records what one control receives
//   ExpectedMessage     a row of an expected table {message, flags, wParam, lParam}; a table
//                       ends with a zero row
//   EXPECT_MESSAGES     compares a sequence with a table, reports at the caller, then clears
//   FlushMessages       dispatches what is queued (posted messages, timers) before asserting
//   MessageName         "WM_COMMAND", "BM_CLICK", "OCM_DRAWITEM", or the number
//
// Example:
//   mirltest::MessageSequence seq;
//   mirltest::RecordingParent parent(seq);
//   HWND button = parent.CreateChild(L"BUTTON", L"OK", BS_PUSHBUTTON, 100, {10, 10, 90, 40});
//   mirltest::ControlRecorder spy(button, seq);
//   seq.Clear();
//   SendMessageW(button, BM_CLICK, 0, 0);
//   static const mirltest::ExpectedMessage click[] = {
//       {WM_COMMAND, mirltest::kParent | mirltest::kWParam, MAKEWPARAM(100, BN_CLICKED), 0},
//       {0, 0, 0, 0}};
//   EXPECT_MESSAGES(seq, click, "BM_CLICK");
#pragma once

#include <windows.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <map>
#include <set>
#include <string>
#include <vector>

#ifndef OCM__BASE
#define OCM__BASE (WM_USER + 0x1c00)
#endif

namespace mirltest {

// Who received a message, and what of an expected row must match.
enum MessageFlags : unsigned {
    kParent = 0x01,   // received by the recording parent
    kControl = 0x02,  // sent to a subclassed control
    kOptional = 0x04, // the row may be absent
    kWParam = 0x08,   // wParam must be equal
    kLParam = 0x10,   // lParam must be equal
};

// One row of an expected table. A row with neither kParent nor kControl matches either.
struct ExpectedMessage {
    UINT message;
    unsigned flags;
    WPARAM wParam;
    LPARAM lParam;
};

struct RecordedMessage {
    UINT message;
    unsigned flags; // kParent or kControl
    WPARAM wParam;
    LPARAM lParam;
    HWND hwnd;
};

// The symbolic name of a message, or its number when the table does not know it.
inline std::string MessageName(UINT message)
{
    struct Entry {
        UINT message;
        const char *name;
    };
#define MIRL_MSG(m) {m, #m}
    static const Entry names[] = {
        MIRL_MSG(WM_NULL), MIRL_MSG(WM_CREATE), MIRL_MSG(WM_DESTROY), MIRL_MSG(WM_MOVE),
        MIRL_MSG(WM_SIZE), MIRL_MSG(WM_ACTIVATE), MIRL_MSG(WM_SETFOCUS), MIRL_MSG(WM_KILLFOCUS),
        MIRL_MSG(WM_ENABLE), MIRL_MSG(WM_SETREDRAW), MIRL_MSG(WM_SETTEXT), MIRL_MSG(WM_GETTEXT),
        MIRL_MSG(WM_GETTEXTLENGTH), MIRL_MSG(WM_PAINT), MIRL_MSG(WM_CLOSE), MIRL_MSG(WM_QUIT),
        MIRL_MSG(WM_ERASEBKGND), MIRL_MSG(WM_SYSCOLORCHANGE), MIRL_MSG(WM_SHOWWINDOW),
        MIRL_MSG(WM_SETTINGCHANGE), MIRL_MSG(WM_ACTIVATEAPP), MIRL_MSG(WM_CANCELMODE),
        MIRL_MSG(WM_SETCURSOR), MIRL_MSG(WM_MOUSEACTIVATE), MIRL_MSG(WM_CHILDACTIVATE),
        MIRL_MSG(WM_GETMINMAXINFO), MIRL_MSG(WM_DRAWITEM), MIRL_MSG(WM_MEASUREITEM),
        MIRL_MSG(WM_DELETEITEM), MIRL_MSG(WM_VKEYTOITEM), MIRL_MSG(WM_CHARTOITEM),
        MIRL_MSG(WM_SETFONT), MIRL_MSG(WM_GETFONT), MIRL_MSG(WM_COMPAREITEM), MIRL_MSG(WM_GETOBJECT),
        MIRL_MSG(WM_WINDOWPOSCHANGING), MIRL_MSG(WM_WINDOWPOSCHANGED), MIRL_MSG(WM_NOTIFY),
        MIRL_MSG(WM_INPUTLANGCHANGE), MIRL_MSG(WM_HELP), MIRL_MSG(WM_CONTEXTMENU),
        MIRL_MSG(WM_STYLECHANGING), MIRL_MSG(WM_STYLECHANGED), MIRL_MSG(WM_GETICON),
        MIRL_MSG(WM_SETICON), MIRL_MSG(WM_NCCREATE), MIRL_MSG(WM_NCDESTROY), MIRL_MSG(WM_NCCALCSIZE),
        MIRL_MSG(WM_NCHITTEST), MIRL_MSG(WM_NCPAINT), MIRL_MSG(WM_NCACTIVATE), MIRL_MSG(WM_GETDLGCODE),
        MIRL_MSG(WM_SYNCPAINT), MIRL_MSG(WM_NCMOUSEMOVE), MIRL_MSG(WM_NCLBUTTONDOWN),
        MIRL_MSG(WM_NCLBUTTONUP), MIRL_MSG(WM_NCLBUTTONDBLCLK), MIRL_MSG(WM_NCRBUTTONDOWN),
        MIRL_MSG(WM_NCRBUTTONUP), MIRL_MSG(WM_KEYDOWN), MIRL_MSG(WM_KEYUP), MIRL_MSG(WM_CHAR),
        MIRL_MSG(WM_DEADCHAR), MIRL_MSG(WM_SYSKEYDOWN), MIRL_MSG(WM_SYSKEYUP), MIRL_MSG(WM_SYSCHAR),
        MIRL_MSG(WM_IME_STARTCOMPOSITION), MIRL_MSG(WM_IME_ENDCOMPOSITION), MIRL_MSG(WM_IME_COMPOSITION),
        MIRL_MSG(WM_INITDIALOG), MIRL_MSG(WM_COMMAND), MIRL_MSG(WM_SYSCOMMAND), MIRL_MSG(WM_TIMER),
        MIRL_MSG(WM_HSCROLL), MIRL_MSG(WM_VSCROLL), MIRL_MSG(WM_INITMENU), MIRL_MSG(WM_INITMENUPOPUP),
        MIRL_MSG(WM_MENUSELECT), MIRL_MSG(WM_MENUCHAR), MIRL_MSG(WM_ENTERIDLE), MIRL_MSG(WM_UNINITMENUPOPUP),
        MIRL_MSG(WM_CHANGEUISTATE), MIRL_MSG(WM_UPDATEUISTATE), MIRL_MSG(WM_QUERYUISTATE),
        MIRL_MSG(WM_CTLCOLORMSGBOX), MIRL_MSG(WM_CTLCOLOREDIT), MIRL_MSG(WM_CTLCOLORLISTBOX),
        MIRL_MSG(WM_CTLCOLORBTN), MIRL_MSG(WM_CTLCOLORDLG), MIRL_MSG(WM_CTLCOLORSCROLLBAR),
        MIRL_MSG(WM_CTLCOLORSTATIC), MIRL_MSG(WM_MOUSEMOVE), MIRL_MSG(WM_LBUTTONDOWN),
        MIRL_MSG(WM_LBUTTONUP), MIRL_MSG(WM_LBUTTONDBLCLK), MIRL_MSG(WM_RBUTTONDOWN),
        MIRL_MSG(WM_RBUTTONUP), MIRL_MSG(WM_RBUTTONDBLCLK), MIRL_MSG(WM_MBUTTONDOWN),
        MIRL_MSG(WM_MBUTTONUP), MIRL_MSG(WM_MBUTTONDBLCLK), MIRL_MSG(WM_MOUSEWHEEL),
        MIRL_MSG(WM_PARENTNOTIFY), MIRL_MSG(WM_ENTERMENULOOP), MIRL_MSG(WM_EXITMENULOOP),
        MIRL_MSG(WM_CAPTURECHANGED), MIRL_MSG(WM_MOVING), MIRL_MSG(WM_ENTERSIZEMOVE),
        MIRL_MSG(WM_EXITSIZEMOVE), MIRL_MSG(WM_IME_SETCONTEXT), MIRL_MSG(WM_IME_NOTIFY),
        MIRL_MSG(WM_IME_CHAR), MIRL_MSG(WM_MOUSEHOVER), MIRL_MSG(WM_MOUSELEAVE),
        MIRL_MSG(WM_NCMOUSEHOVER), MIRL_MSG(WM_NCMOUSELEAVE), MIRL_MSG(WM_CUT), MIRL_MSG(WM_COPY),
        MIRL_MSG(WM_PASTE), MIRL_MSG(WM_CLEAR), MIRL_MSG(WM_UNDO), MIRL_MSG(WM_PRINT),
        MIRL_MSG(WM_PRINTCLIENT), MIRL_MSG(WM_THEMECHANGED), MIRL_MSG(WM_USER),
        MIRL_MSG(BM_GETCHECK), MIRL_MSG(BM_SETCHECK), MIRL_MSG(BM_GETSTATE), MIRL_MSG(BM_SETSTATE),
        MIRL_MSG(BM_SETSTYLE), MIRL_MSG(BM_CLICK), MIRL_MSG(BM_GETIMAGE), MIRL_MSG(BM_SETIMAGE),
        MIRL_MSG(BM_SETDONTCLICK),
    };
#undef MIRL_MSG
    for (const Entry &entry : names) {
        if (entry.message == message)
            return entry.name;
    }
    // Reflected messages are the parent's own message moved up by OCM__BASE.
    if (message > OCM__BASE && message < OCM__BASE + WM_USER) {
        std::string base = MessageName(message - OCM__BASE);
        if (base.compare(0, 3, "WM_") == 0)
            return "OCM_" + base.substr(3);
    }
    char text[32];
    if (message > WM_USER && message < OCM__BASE)
        std::snprintf(text, sizeof(text), "WM_USER+0x%X", message - WM_USER);
    else
        std::snprintf(text, sizeof(text), "0x%04X", message);
    return text;
}

// The record of one test: messages of a parent and of its controls in the order they arrived.
// Paint, hit-test, cursor and non-client mouse messages are left out unless asked for: they
// depend on the display and the pointer, not on the control's logic.
class MessageSequence {
public:
    MessageSequence() { IgnoreNoise(); }
    MessageSequence(const MessageSequence &) = delete;
    MessageSequence &operator=(const MessageSequence &) = delete;

    // Appends a message unless the filter leaves it out; `source` is kParent or kControl.
    void Add(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam, unsigned source)
    {
        if (!IsIgnored(message))
            m_Messages.push_back({message, source, wParam, lParam, hwnd});
    }
    void Clear() { m_Messages.clear(); }
    const std::vector<RecordedMessage> &Messages() const { return m_Messages; }
    // How many times `message` was recorded.
    size_t Count(UINT message) const
    {
        return static_cast<size_t>(std::count_if(m_Messages.begin(), m_Messages.end(),
                                                 [message](const RecordedMessage &m) { return m.message == message; }));
    }

    // The filter: which messages are never recorded.
    void Ignore(UINT message) { m_Ignored.insert(message); }
    void Record(UINT message) { m_Ignored.erase(message); }
    void RecordEverything() { m_Ignored.clear(); }
    bool IsIgnored(UINT message) const { return m_Ignored.count(message) != 0; }
    // The default filter: painting, hit-testing, cursor shape, the non-client mouse, and the
    // shell's icon and accessibility queries.
    void IgnoreNoise()
    {
        static const UINT noise[] = {WM_PAINT, WM_NCPAINT, WM_ERASEBKGND, WM_SYNCPAINT, WM_NCHITTEST,
                                     WM_SETCURSOR, WM_NCMOUSEHOVER, WM_NCMOUSELEAVE, WM_GETICON, WM_GETOBJECT};
        m_Ignored.insert(std::begin(noise), std::end(noise));
        for (UINT m = WM_NCMOUSEFIRST; m <= WM_NCMOUSELAST; ++m)
            m_Ignored.insert(m);
    }

private:
    // WM_NCMOUSEMOVE to WM_NCXBUTTONDBLCLK.
    static constexpr UINT WM_NCMOUSEFIRST = 0x00A0;
    static constexpr UINT WM_NCMOUSELAST = 0x00AD;

    std::vector<RecordedMessage> m_Messages;
    std::set<UINT> m_Ignored;
};

namespace detail {

inline std::string Hex(ULONG_PTR value)
{
    char text[24];
    std::snprintf(text, sizeof(text), "0x%08llX", static_cast<unsigned long long>(value));
    return text;
}

inline const char *SourceName(unsigned flags)
{
    if (flags & kParent)
        return "parent ";
    if (flags & kControl)
        return "control";
    return "any    ";
}

inline std::string Describe(UINT message, unsigned flags, const std::string &wParam, const std::string &lParam)
{
    std::string name = MessageName(message);
    name.resize(std::max<size_t>(name.size(), 20), ' ');
    return std::string(SourceName(flags)) + " " + name + " w=" + wParam + " l=" + lParam;
}

inline std::string DescribeExpected(const ExpectedMessage &row)
{
    std::string text = Describe(row.message, row.flags, (row.flags & kWParam) ? Hex(row.wParam) : "any",
                                (row.flags & kLParam) ? Hex(static_cast<ULONG_PTR>(row.lParam)) : "any");
    return (row.flags & kOptional) ? text + " (optional)" : text;
}

inline std::string DescribeActual(const RecordedMessage &row)
{
    std::string text = Describe(row.message, row.flags, Hex(row.wParam), Hex(static_cast<ULONG_PTR>(row.lParam)));
    if (row.message == WM_COMMAND || row.message == OCM__BASE + WM_COMMAND) {
        char decoded[48];
        std::snprintf(decoded, sizeof(decoded), " (id %u, code %u)", LOWORD(row.wParam), HIWORD(row.wParam));
        text += decoded;
    }
    return text;
}

inline bool SameSource(const ExpectedMessage &expected, const RecordedMessage &actual)
{
    unsigned wanted = expected.flags & (kParent | kControl);
    return wanted == 0 || (wanted & actual.flags) != 0;
}

// What differs between a paired expected and actual row, or nothing.
inline std::string ParameterMismatch(const ExpectedMessage &expected, const RecordedMessage &actual)
{
    std::string why;
    if ((expected.flags & kWParam) && expected.wParam != actual.wParam)
        why += "wParam";
    if ((expected.flags & kLParam) && expected.lParam != actual.lParam)
        why += why.empty() ? "lParam" : " and lParam";
    return why;
}

} // namespace detail

// Compares the recorded sequence with `expected` (ending in a zero row) and clears the record.
// On a difference it adds one GoogleTest failure at `file`:`line` that lists both sequences side
// by side, the first differing row marked with '>'. Returns whether they matched.
inline bool CheckMessages(MessageSequence &sequence, const ExpectedMessage *expected, const char *context,
                          const char *file, int line)
{
    struct Row {
        std::string expected;
        std::string actual;
        bool bad;
    };
    std::vector<Row> rows;
    std::string problem;
    const std::vector<RecordedMessage> &actual = sequence.Messages();
    size_t a = 0;
    const ExpectedMessage *e = expected;
    bool aligned = true;

    auto fail = [&](const std::string &what) {
        if (problem.empty())
            problem = what + " at row " + std::to_string(rows.size() - 1);
        rows.back().bad = true;
    };

    while (e->message != 0 && a < actual.size()) {
        if (!aligned) {
            rows.push_back({detail::DescribeExpected(*e++), detail::DescribeActual(actual[a++]), false});
            continue;
        }
        if (e->message == actual[a].message && detail::SameSource(*e, actual[a])) {
            std::string why = detail::ParameterMismatch(*e, actual[a]);
            rows.push_back({detail::DescribeExpected(*e++), detail::DescribeActual(actual[a++]), false});
            if (!why.empty())
                fail(why + " differs");
            continue;
        }
        if (e->flags & kOptional) {
            rows.push_back({detail::DescribeExpected(*e++), "", false});
            continue;
        }
        rows.push_back({detail::DescribeExpected(*e++), detail::DescribeActual(actual[a++]), false});
        fail("message differs");
        aligned = false;
    }
    for (; e->message != 0; ++e) {
        rows.push_back({detail::DescribeExpected(*e), "", false});
        if (!(e->flags & kOptional) && aligned)
            fail("expected message missing");
    }
    for (; a < actual.size(); ++a) {
        rows.push_back({"", detail::DescribeActual(actual[a]), false});
        if (aligned)
            fail("unexpected message");
    }
    sequence.Clear();
    if (problem.empty())
        return true;

    size_t width = 8;
    for (const Row &row : rows)
        width = std::max(width, row.expected.size());
    std::string report = std::string("Message sequence \"") + (context ? context : "") + "\": " + problem + "\n";
    auto pad = [width](std::string text) {
        text.resize(width, ' ');
        return text;
    };
    report += "     " + pad("expected") + " | actual\n";
    for (size_t i = 0; i < rows.size(); ++i) {
        char index[8];
        std::snprintf(index, sizeof(index), "%c%3u ", rows[i].bad ? '>' : ' ', static_cast<unsigned>(i));
        report += index + pad(rows[i].expected) + " | " + rows[i].actual + "\n";
    }
    ADD_FAILURE_AT(file, line) << report;
    return false;
}

#define EXPECT_MESSAGES(sequence, expected, context) \
    ::mirltest::CheckMessages((sequence), (expected), (context), __FILE__, __LINE__)

// Dispatches every queued message of this thread, and keeps doing so for `milliseconds` more
// when messages are still to come (timers, a leave notification).
inline void FlushMessages(DWORD milliseconds = 0)
{
    const DWORD start = GetTickCount();
    for (;;) {
        MSG msg;
        while (PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE)) {
            TranslateMessage(&msg);
            DispatchMessageW(&msg);
        }
        const DWORD elapsed = GetTickCount() - start;
        if (elapsed >= milliseconds)
            return;
        MsgWaitForMultipleObjects(0, nullptr, FALSE, milliseconds - elapsed, QS_ALLINPUT);
    }
}

// A window of its own class that records what it receives into a MessageSequence (as kParent).
// Chosen messages can be answered with chosen results instead of DefWindowProc; with
// ReflectNotifications on, the notifications a control sends are sent back to the control as
// OCM_ messages, as the library's own parents do.
// The sequence must outlive the window. Destruction by the destructor is not recorded; destroy
// the window with DestroyWindow to record it.
class RecordingParent {
public:
    explicit RecordingParent(MessageSequence &sequence, DWORD style = WS_POPUP | WS_VISIBLE | WS_CLIPCHILDREN,
                             RECT rect = {0, 0, 240, 160}, HWND owner = nullptr)
        : m_Sequence(&sequence)
    {
        s_Creating = this;
        CreateWindowExW(0, ClassName(), L"RecordingParent", style, rect.left, rect.top, rect.right - rect.left,
                        rect.bottom - rect.top, owner, nullptr, GetModuleHandleW(nullptr), nullptr);
        s_Creating = nullptr;
    }
    ~RecordingParent()
    {
        m_Sequence = nullptr;
        if (m_hWnd != nullptr)
            DestroyWindow(m_hWnd);
    }
    RecordingParent(const RecordingParent &) = delete;
    RecordingParent &operator=(const RecordingParent &) = delete;

    HWND hwnd() const { return m_hWnd; }

    // A visible child window of this parent, `rect` in client coordinates.
    HWND CreateChild(const wchar_t *className, const wchar_t *text, DWORD style, int id, RECT rect,
                     DWORD exStyle = 0) const
    {
        return CreateWindowExW(exStyle, className, text, WS_CHILD | WS_VISIBLE | style, rect.left, rect.top,
                               rect.right - rect.left, rect.bottom - rect.top, m_hWnd,
                               reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), GetModuleHandleW(nullptr), nullptr);
    }

    // Answers `message` with `result` from now on (it is still recorded).
    void Answer(UINT message, LRESULT result) { m_Answers[message] = result; }
    void StopAnswering(UINT message) { m_Answers.erase(message); }
    void ReflectNotifications(bool on) { m_Reflect = on; }

private:
    static const wchar_t *ClassName()
    {
        static const wchar_t *name = [] {
            WNDCLASSEXW wc = {};
            wc.cbSize = sizeof(wc);
            wc.style = CS_DBLCLKS;
            wc.lpfnWndProc = Proc;
            wc.hInstance = GetModuleHandleW(nullptr);
            wc.hCursor = LoadCursorW(nullptr, IDC_ARROW);
            wc.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
            wc.lpszClassName = L"MirlTestRecordingParent";
            RegisterClassExW(&wc);
            return wc.lpszClassName;
        }();
        return name;
    }

    // The control a notification comes from, as ATL's reflection finds it; null for other messages.
    HWND NotifyingChild(UINT message, WPARAM wParam, LPARAM lParam) const
    {
        switch (message) {
        case WM_COMMAND:
        case WM_VKEYTOITEM:
        case WM_CHARTOITEM:
        case WM_HSCROLL:
        case WM_VSCROLL:
        case WM_CTLCOLORBTN:
        case WM_CTLCOLORDLG:
        case WM_CTLCOLOREDIT:
        case WM_CTLCOLORLISTBOX:
        case WM_CTLCOLORMSGBOX:
        case WM_CTLCOLORSCROLLBAR:
        case WM_CTLCOLORSTATIC:
            return reinterpret_cast<HWND>(lParam);
        case WM_NOTIFY:
            return reinterpret_cast<NMHDR *>(lParam)->hwndFrom;
        case WM_DRAWITEM:
            return wParam != 0 ? reinterpret_cast<DRAWITEMSTRUCT *>(lParam)->hwndItem : nullptr;
        case WM_MEASUREITEM:
            return wParam != 0 ? GetDlgItem(m_hWnd, reinterpret_cast<MEASUREITEMSTRUCT *>(lParam)->CtlID) : nullptr;
        case WM_COMPAREITEM:
            return wParam != 0 ? GetDlgItem(m_hWnd, reinterpret_cast<COMPAREITEMSTRUCT *>(lParam)->CtlID) : nullptr;
        case WM_DELETEITEM:
            return wParam != 0 ? GetDlgItem(m_hWnd, reinterpret_cast<DELETEITEMSTRUCT *>(lParam)->CtlID) : nullptr;
        case WM_PARENTNOTIFY:
            if (LOWORD(wParam) == WM_CREATE || LOWORD(wParam) == WM_DESTROY)
                return reinterpret_cast<HWND>(lParam);
            return nullptr;
        default:
            return nullptr;
        }
    }

    LRESULT Handle(UINT message, WPARAM wParam, LPARAM lParam)
    {
        if (m_Sequence != nullptr)
            m_Sequence->Add(m_hWnd, message, wParam, lParam, kParent);
        std::map<UINT, LRESULT>::const_iterator answer = m_Answers.find(message);
        if (answer != m_Answers.end())
            return answer->second;
        if (m_Reflect) {
            HWND child = NotifyingChild(message, wParam, lParam);
            if (child != nullptr && IsWindow(child))
                return SendMessageW(child, OCM__BASE + message, wParam, lParam);
        }
        return DefWindowProcW(m_hWnd, message, wParam, lParam);
    }

    static LRESULT CALLBACK Proc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam)
    {
        RecordingParent *self = reinterpret_cast<RecordingParent *>(GetWindowLongPtrW(hwnd, GWLP_USERDATA));
        if (self == nullptr && s_Creating != nullptr) {
            // Messages come before CreateWindowEx returns (WM_GETMINMAXINFO even before WM_NCCREATE).
            self = s_Creating;
            self->m_hWnd = hwnd;
            SetWindowLongPtrW(hwnd, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(self));
        }
        if (self == nullptr)
            return DefWindowProcW(hwnd, message, wParam, lParam);
        if (message == WM_NCDESTROY) {
            LRESULT result = self->Handle(message, wParam, lParam);
            SetWindowLongPtrW(hwnd, GWLP_USERDATA, 0);
            self->m_hWnd = nullptr;
            return result;
        }
        return self->Handle(message, wParam, lParam);
    }

    static inline RecordingParent *s_Creating = nullptr;

    MessageSequence *m_Sequence;
    HWND m_hWnd = nullptr;
    std::map<UINT, LRESULT> m_Answers;
    bool m_Reflect = false;
};

// Records what one control receives (as kControl), before its own procedure sees it, by
// replacing its window procedure and calling the old one. One recorder per control at a time.
// The subclass is removed by the destructor, or when the control is destroyed.
class ControlRecorder {
public:
    ControlRecorder(HWND control, MessageSequence &sequence) : m_Hook(new Hook{&sequence, nullptr, this})
    {
        SetPropW(control, PropName(), m_Hook);
        m_Hook->oldProc = reinterpret_cast<WNDPROC>(
            SetWindowLongPtrW(control, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&Proc)));
        m_hWnd = control;
    }
    ~ControlRecorder()
    {
        if (m_Hook == nullptr)
            return; // the control is gone and took the hook with it
        if (GetWindowLongPtrW(m_hWnd, GWLP_WNDPROC) == reinterpret_cast<LONG_PTR>(&Proc)) {
            SetWindowLongPtrW(m_hWnd, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(m_Hook->oldProc));
            RemovePropW(m_hWnd, PropName());
            delete m_Hook;
        } else {
            // Someone subclassed the control after us and still calls our procedure: keep
            // forwarding, stop recording; the hook goes with the control.
            m_Hook->sequence = nullptr;
            m_Hook->owner = nullptr;
        }
    }
    ControlRecorder(const ControlRecorder &) = delete;
    ControlRecorder &operator=(const ControlRecorder &) = delete;

    HWND hwnd() const { return m_hWnd; }

private:
    struct Hook {
        MessageSequence *sequence;
        WNDPROC oldProc;
        ControlRecorder *owner;
    };

    static const wchar_t *PropName() { return L"MirlTestControlRecorder"; }

    static LRESULT CALLBACK Proc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam)
    {
        Hook *hook = static_cast<Hook *>(GetPropW(hwnd, PropName()));
        if (hook == nullptr)
            return DefWindowProcW(hwnd, message, wParam, lParam);
        if (hook->sequence != nullptr)
            hook->sequence->Add(hwnd, message, wParam, lParam, kControl);
        LRESULT result = CallWindowProcW(hook->oldProc, hwnd, message, wParam, lParam);
        if (message == WM_NCDESTROY) {
            RemovePropW(hwnd, PropName());
            if (hook->owner != nullptr)
                hook->owner->m_Hook = nullptr;
            delete hook;
        }
        return result;
    }

    Hook *m_Hook;
    HWND m_hWnd = nullptr;
};

} // namespace mirltest
