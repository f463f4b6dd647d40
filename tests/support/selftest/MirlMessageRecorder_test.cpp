#include "MirlMessageRecorder.h"

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

using mirltest::ControlRecorder;
using mirltest::ExpectedMessage;
using mirltest::MessageSequence;
using mirltest::RecordingParent;
using mirltest::kControl;
using mirltest::kLParam;
using mirltest::kOptional;
using mirltest::kParent;
using mirltest::kWParam;

namespace {

const int kButtonId = 100;

// The failures `action` reports, kept from the running test.
std::vector<testing::TestPartResult> FailuresOf(const std::function<void()> &action)
{
    testing::TestPartResultArray results;
    {
        testing::ScopedFakeTestPartResultReporter reporter(
            testing::ScopedFakeTestPartResultReporter::INTERCEPT_ONLY_CURRENT_THREAD, &results);
        action();
    }
    std::vector<testing::TestPartResult> failures;
    for (int i = 0; i < results.size(); ++i)
        failures.push_back(results.GetTestPartResult(i));
    return failures;
}

// A parent with one push button, the button focused so that a click moves no focus, and the
// pointer away from both so that releasing the capture moves nothing over them.
class RecorderTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        m_Button = m_Parent.CreateChild(L"BUTTON", L"OK", BS_PUSHBUTTON, kButtonId, {10, 10, 90, 40});
        ASSERT_NE(nullptr, m_Button);
        SetCursorPos(700, 700);
        SetFocus(m_Button);
        mirltest::FlushMessages();
        m_Seq.Clear();
    }

    MessageSequence m_Seq;
    RecordingParent m_Parent{m_Seq};
    HWND m_Button = nullptr;
};

// Messages the test sends to the parent itself, to feed the sequence without a control.
void Send(HWND hwnd, UINT message, WPARAM wParam = 0, LPARAM lParam = 0)
{
    SendMessageW(hwnd, message, wParam, lParam);
}

} // namespace

TEST_F(RecorderTest, ButtonClickTellsTheParentOnce)
{
    SendMessageW(m_Button, BM_CLICK, 0, 0);
    mirltest::FlushMessages();

    const LPARAM button = reinterpret_cast<LPARAM>(m_Button);
    const ExpectedMessage click[] = {
        {WM_CTLCOLORBTN, kParent | kLParam, 0, button}, // pressed look
        {WM_CTLCOLORBTN, kParent | kLParam, 0, button}, // released look
        {WM_COMMAND, kParent | kWParam | kLParam, MAKEWPARAM(kButtonId, BN_CLICKED), button},
        {0, 0, 0, 0}};
    EXPECT_MESSAGES(m_Seq, click, "BM_CLICK");
}

TEST_F(RecorderTest, ControlAndParentShareOneOrderedSequence)
{
    ControlRecorder spy(m_Button, m_Seq);
    SendMessageW(m_Button, BM_CLICK, 0, 0);
    mirltest::FlushMessages();

    static const ExpectedMessage click[] = {
        {BM_CLICK, kControl, 0, 0},
        {WM_LBUTTONDOWN, kControl, 0, 0},
        {BM_SETSTATE, kControl | kWParam, TRUE, 0},
        {WM_CTLCOLORBTN, kParent, 0, 0},
        {WM_LBUTTONUP, kControl, 0, 0},
        {BM_SETSTATE, kControl | kWParam, FALSE, 0},
        {WM_CTLCOLORBTN, kParent, 0, 0},
        {WM_CAPTURECHANGED, kControl, 0, 0},
        {WM_COMMAND, kParent | kWParam, MAKEWPARAM(kButtonId, BN_CLICKED), 0},
        {0, 0, 0, 0}};
    EXPECT_MESSAGES(m_Seq, click, "BM_CLICK, control and parent");
}

// The wrong table of the next test; EXPECT_NONFATAL_FAILURE takes no local variables.
MessageSequence *g_ClickSequence = nullptr;
const ExpectedMessage kNotAClick[] = {
    {WM_COMMAND, kParent | kWParam, MAKEWPARAM(kButtonId + 1, BN_CLICKED), 0},
    {0, 0, 0, 0}};

TEST_F(RecorderTest, WrongIdentifierInTableFails)
{
    m_Seq.Ignore(WM_CTLCOLORBTN);
    SendMessageW(m_Button, BM_CLICK, 0, 0);
    mirltest::FlushMessages();

    g_ClickSequence = &m_Seq;
    EXPECT_NONFATAL_FAILURE(EXPECT_MESSAGES(*g_ClickSequence, kNotAClick, "wrong id"), "wParam differs at row 0");
    g_ClickSequence = nullptr;
}

TEST_F(RecorderTest, ReportShowsBothSidesWithNamesAtTheCallersLine)
{
    ControlRecorder spy(m_Button, m_Seq);
    SendMessageW(m_Button, BM_CLICK, 0, 0);
    mirltest::FlushMessages();
    static const ExpectedMessage wrong[] = {
        {BM_CLICK, kControl, 0, 0},
        {WM_COMMAND, kParent, 0, 0},
        {0, 0, 0, 0}};

    int line = 0;
    std::vector<testing::TestPartResult> failures = FailuresOf([&] {
        line = __LINE__ + 1;
        EXPECT_MESSAGES(m_Seq, wrong, "short table");
    });

    ASSERT_EQ(1u, failures.size());
    const testing::TestPartResult &failure = failures[0];
    EXPECT_TRUE(failure.nonfatally_failed());
    EXPECT_EQ(line, failure.line_number());
    EXPECT_NE(nullptr, strstr(failure.file_name(), "MirlMessageRecorder_test.cpp"));
    const std::string report = failure.message();
    EXPECT_NE(std::string::npos, report.find("\"short table\": message differs at row 1")) << report;
    EXPECT_NE(std::string::npos, report.find("expected")) << report;
    EXPECT_NE(std::string::npos, report.find("| actual")) << report;
    // The differing row: the table's WM_COMMAND beside the control's WM_LBUTTONDOWN.
    EXPECT_NE(std::string::npos, report.find(">  1 parent  WM_COMMAND")) << report;
    EXPECT_NE(std::string::npos, report.find("| control WM_LBUTTONDOWN")) << report;
    EXPECT_NE(std::string::npos, report.find("WM_CAPTURECHANGED")) << report;
    EXPECT_NE(std::string::npos, report.find("(id 100, code 0)")) << report;
    // The sequence is used up by the check.
    EXPECT_TRUE(m_Seq.Messages().empty());
}

TEST_F(RecorderTest, CheckPassesOnlyOnExactMatch)
{
    HWND parent = m_Parent.hwnd();
    struct Case {
        const char *label;
        std::vector<ExpectedMessage> table;
        const char *problem; // nullptr: the table matches
    };
    const std::vector<Case> cases = {
        {"exact", {{WM_USER + 1, kParent | kWParam | kLParam, 7, 8}, {WM_USER + 2, kParent, 0, 0}}, nullptr},
        {"unchecked parameters", {{WM_USER + 1, kParent, 99, 99}, {WM_USER + 2, 0, 0, 0}}, nullptr},
        {"optional absent",
         {{WM_USER + 1, kParent, 0, 0}, {WM_USER + 9, kParent | kOptional, 0, 0}, {WM_USER + 2, kParent, 0, 0},
          {WM_USER + 9, kParent | kOptional, 0, 0}},
         nullptr},
        {"wParam", {{WM_USER + 1, kParent | kWParam, 6, 0}, {WM_USER + 2, kParent, 0, 0}}, "wParam differs at row 0"},
        {"lParam", {{WM_USER + 1, kParent | kLParam, 0, 9}, {WM_USER + 2, kParent, 0, 0}}, "lParam differs at row 0"},
        {"source", {{WM_USER + 1, kControl, 0, 0}, {WM_USER + 2, kParent, 0, 0}}, "message differs at row 0"},
        {"order", {{WM_USER + 2, kParent, 0, 0}, {WM_USER + 1, kParent, 0, 0}}, "message differs at row 0"},
        {"missing", {{WM_USER + 1, kParent, 0, 0}, {WM_USER + 2, kParent, 0, 0}, {WM_USER + 3, kParent, 0, 0}},
         "expected message missing at row 2"},
        {"extra", {{WM_USER + 1, kParent, 0, 0}}, "unexpected message at row 1"},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.label);
        Send(parent, WM_USER + 1, 7, 8);
        Send(parent, WM_USER + 2);
        std::vector<ExpectedMessage> table = c.table;
        table.push_back({0, 0, 0, 0});
        bool matched = true;
        std::vector<testing::TestPartResult> failures =
            FailuresOf([&] { matched = EXPECT_MESSAGES(m_Seq, table.data(), c.label); });
        if (c.problem == nullptr) {
            EXPECT_TRUE(matched);
            EXPECT_TRUE(failures.empty());
        } else {
            EXPECT_FALSE(matched);
            ASSERT_EQ(1u, failures.size());
            EXPECT_NE(std::string::npos, std::string(failures[0].message()).find(c.problem)) << failures[0].message();
        }
    }
}

TEST_F(RecorderTest, NoiseIsLeftOutUnlessAskedFor)
{
    HWND parent = m_Parent.hwnd();
    Send(parent, WM_NCHITTEST);
    Send(parent, WM_SETCURSOR, reinterpret_cast<WPARAM>(parent), MAKELPARAM(HTCLIENT, WM_MOUSEMOVE));
    Send(parent, WM_NCMOUSEMOVE, HTCAPTION);
    Send(parent, WM_ERASEBKGND);
    InvalidateRect(parent, nullptr, TRUE);
    UpdateWindow(parent);
    EXPECT_TRUE(m_Seq.Messages().empty());

    m_Seq.RecordEverything();
    Send(parent, WM_NCHITTEST);
    m_Seq.IgnoreNoise();
    m_Seq.Ignore(WM_USER + 1);
    Send(parent, WM_USER + 1);
    Send(parent, WM_NCHITTEST);
    m_Seq.Record(WM_USER + 1);
    Send(parent, WM_USER + 1);
    static const ExpectedMessage expected[] = {
        {WM_NCHITTEST, kParent, 0, 0},
        {WM_USER + 1, kParent, 0, 0},
        {0, 0, 0, 0}};
    EXPECT_MESSAGES(m_Seq, expected, "filter");
}

TEST_F(RecorderTest, ParentAnswersChosenMessages)
{
    HWND parent = m_Parent.hwnd();
    m_Parent.Answer(WM_USER + 5, 42);
    m_Parent.Answer(WM_GETDLGCODE, DLGC_WANTALLKEYS);
    EXPECT_EQ(42, SendMessageW(parent, WM_USER + 5, 0, 0));
    EXPECT_EQ(DLGC_WANTALLKEYS, SendMessageW(parent, WM_GETDLGCODE, 0, 0));
    m_Parent.StopAnswering(WM_USER + 5);
    EXPECT_EQ(0, SendMessageW(parent, WM_USER + 5, 0, 0));
    EXPECT_EQ(3u, m_Seq.Messages().size());
    EXPECT_EQ(2u, m_Seq.Count(WM_USER + 5));
}

TEST_F(RecorderTest, ReflectionSendsTheNotificationBackToTheControl)
{
    ControlRecorder spy(m_Button, m_Seq);
    m_Parent.ReflectNotifications(true);
    m_Seq.Ignore(WM_CTLCOLORBTN);
    m_Seq.Ignore(OCM__BASE + WM_CTLCOLORBTN);
    SendMessageW(m_Button, BM_CLICK, 0, 0);
    mirltest::FlushMessages();

    static const ExpectedMessage click[] = {
        {BM_CLICK, kControl, 0, 0},
        {WM_LBUTTONDOWN, kControl, 0, 0},
        {BM_SETSTATE, kControl, 0, 0},
        {WM_LBUTTONUP, kControl, 0, 0},
        {BM_SETSTATE, kControl, 0, 0},
        {WM_CAPTURECHANGED, kControl, 0, 0},
        {WM_COMMAND, kParent | kWParam, MAKEWPARAM(kButtonId, BN_CLICKED), 0},
        {OCM__BASE + WM_COMMAND, kControl | kWParam, MAKEWPARAM(kButtonId, BN_CLICKED), 0},
        {0, 0, 0, 0}};
    EXPECT_MESSAGES(m_Seq, click, "reflected click");
}

TEST_F(RecorderTest, PostedMessagesArriveWhenFlushed)
{
    PostMessageW(m_Parent.hwnd(), WM_USER + 3, 1, 2);
    EXPECT_TRUE(m_Seq.Messages().empty());
    mirltest::FlushMessages();
    static const ExpectedMessage posted[] = {
        {WM_USER + 3, kParent | kWParam | kLParam, 1, 2},
        {0, 0, 0, 0}};
    EXPECT_MESSAGES(m_Seq, posted, "posted");

    SetTimer(m_Parent.hwnd(), 1, 10, nullptr);
    mirltest::FlushMessages(100);
    KillTimer(m_Parent.hwnd(), 1);
    EXPECT_LE(1u, m_Seq.Count(WM_TIMER));
}

TEST_F(RecorderTest, SubclassIsUndoneByTheRecordersEnd)
{
    const LONG_PTR original = GetWindowLongPtrW(m_Button, GWLP_WNDPROC);
    {
        ControlRecorder spy(m_Button, m_Seq);
        EXPECT_NE(original, GetWindowLongPtrW(m_Button, GWLP_WNDPROC));
        SendMessageW(m_Button, BM_GETCHECK, 0, 0);
    }
    EXPECT_EQ(original, GetWindowLongPtrW(m_Button, GWLP_WNDPROC));
    EXPECT_EQ(nullptr, GetPropW(m_Button, L"MirlTestControlRecorder"));
    SendMessageW(m_Button, BM_GETCHECK, 0, 0);
    EXPECT_EQ(1u, m_Seq.Count(BM_GETCHECK));
}

WNDPROC g_BeforeLaterSubclass = nullptr;

LRESULT CALLBACK LaterSubclass(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_USER + 7)
        return 77;
    return CallWindowProcW(g_BeforeLaterSubclass, hwnd, message, wParam, lParam);
}

TEST_F(RecorderTest, RecorderEndingUnderALaterSubclassKeepsTheChain)
{
    {
        ControlRecorder spy(m_Button, m_Seq);
        g_BeforeLaterSubclass = reinterpret_cast<WNDPROC>(
            SetWindowLongPtrW(m_Button, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&LaterSubclass)));
    }
    EXPECT_EQ(77, SendMessageW(m_Button, WM_USER + 7, 0, 0));
    EXPECT_EQ(BST_UNCHECKED, SendMessageW(m_Button, BM_GETCHECK, 0, 0));
    EXPECT_TRUE(m_Seq.Messages().empty());
    DestroyWindow(m_Button);
    EXPECT_EQ(nullptr, GetPropW(m_Button, L"MirlTestControlRecorder"));
}

TEST_F(RecorderTest, ControlMayBeDestroyedBeforeItsRecorder)
{
    ControlRecorder spy(m_Button, m_Seq);
    DestroyWindow(m_Button);
    EXPECT_EQ(1u, m_Seq.Count(WM_DESTROY));
    EXPECT_EQ(1u, m_Seq.Count(WM_NCDESTROY));
    // The parent hears of it as well: WM_PARENTNOTIFY with WM_DESTROY.
    EXPECT_EQ(1u, m_Seq.Count(WM_PARENTNOTIFY));
}

TEST(RecordingParent, CreationIsRecordedFromTheFirstMessage)
{
    MessageSequence seq;
    RecordingParent parent(seq, WS_POPUP);
    ASSERT_NE(nullptr, parent.hwnd());
    static const ExpectedMessage creation[] = {
        {WM_GETMINMAXINFO, kParent | kOptional, 0, 0},
        {WM_NCCREATE, kParent, 0, 0},
        {WM_NCCALCSIZE, kParent, 0, 0},
        {WM_CREATE, kParent, 0, 0},
        {WM_SIZE, kParent | kWParam | kLParam, SIZE_RESTORED, MAKELPARAM(240, 160)},
        {WM_MOVE, kParent | kLParam, 0, MAKELPARAM(0, 0)},
        {0, 0, 0, 0}};
    EXPECT_MESSAGES(seq, creation, "CreateWindowEx");

    HWND hwnd = parent.hwnd();
    DestroyWindow(hwnd);
    EXPECT_EQ(nullptr, parent.hwnd());
    static const ExpectedMessage destruction[] = {
        {WM_DESTROY, kParent, 0, 0},
        {WM_NCDESTROY, kParent, 0, 0},
        {0, 0, 0, 0}};
    EXPECT_MESSAGES(seq, destruction, "DestroyWindow");
}

TEST(MessageName, NamesCommonMessagesAndReflectedOnes)
{
    EXPECT_EQ("WM_COMMAND", mirltest::MessageName(WM_COMMAND));
    EXPECT_EQ("WM_CTLCOLORBTN", mirltest::MessageName(WM_CTLCOLORBTN));
    EXPECT_EQ("BM_CLICK", mirltest::MessageName(BM_CLICK));
    EXPECT_EQ("BM_SETSTATE", mirltest::MessageName(BM_SETSTATE));
    EXPECT_EQ("OCM_COMMAND", mirltest::MessageName(8465));
    EXPECT_EQ("OCM_DRAWITEM", mirltest::MessageName(OCM__BASE + WM_DRAWITEM));
    EXPECT_EQ("OCM_NOTIFY", mirltest::MessageName(OCM__BASE + WM_NOTIFY));
    EXPECT_EQ("WM_USER", mirltest::MessageName(WM_USER));
    EXPECT_EQ("WM_USER+0x5", mirltest::MessageName(WM_USER + 5));
    EXPECT_EQ("0xC123", mirltest::MessageName(0xC123));
}
