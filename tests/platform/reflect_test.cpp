// Notification reflection and forwarding: a parent sends its children's notifications back to
// them as OCM_ messages; a control leaves the ones it doesn't take to DefaultReflectionHandler.
#include "AtlTestSupport.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

typedef ATL::CWinTraits<WS_POPUP | WS_VISIBLE, 0> PopupTraits;
typedef ATL::CWinTraits<WS_CHILD | WS_VISIBLE, 0> ChildTraits;

class ReflectingParent : public ATL::CWindowImpl<ReflectingParent, ATL::CWindow, PopupTraits> {
public:
    DECLARE_WND_CLASS(L"AtlTestReflectingParent")
    BEGIN_MSG_MAP(ReflectingParent)
        REFLECT_NOTIFICATIONS()
    END_MSG_MAP()
};

// A system button whose reflected messages are recorded.
class ReflectedButton : public ATL::CWindowImpl<ReflectedButton, WTL::CButton, ChildTraits> {
public:
    DECLARE_WND_CLASS(L"AtlTestReflectedButton")

    std::vector<atltest::Seen> m_reflected; // every OCM_ message that arrived
    int m_drawItems = 0;

    BEGIN_MSG_MAP(ReflectedButton)
        MESSAGE_RANGE_HANDLER(OCM__BASE, OCM__BASE + WM_USER - 1, OnAnyReflected)
        MESSAGE_HANDLER(OCM_COMMAND, OnCommand)
        MESSAGE_HANDLER(OCM_NOTIFY, OnNotify)
        MESSAGE_HANDLER(OCM_DRAWITEM, OnDrawItem)
        MESSAGE_HANDLER(OCM_CTLCOLORBTN, OnCtlColor)
        DEFAULT_REFLECTION_HANDLER()
    END_MSG_MAP()

    LRESULT OnAnyReflected(UINT uMsg, WPARAM wParam, LPARAM lParam, BOOL &bHandled)
    {
        m_reflected.push_back({uMsg, wParam, lParam});
        bHandled = FALSE;
        return 0;
    }
    LRESULT OnCommand(UINT, WPARAM, LPARAM, BOOL &) { return 0; }
    LRESULT OnNotify(UINT, WPARAM, LPARAM, BOOL &) { return 6543; }
    LRESULT OnDrawItem(UINT, WPARAM, LPARAM lParam, BOOL &)
    {
        auto *dis = reinterpret_cast<LPDRAWITEMSTRUCT>(lParam);
        if (dis->hwndItem == m_hWnd)
            ++m_drawItems;
        return TRUE;
    }
    LRESULT OnCtlColor(UINT, WPARAM, LPARAM, BOOL &) { return reinterpret_cast<LRESULT>(GetStockObject(NULL_BRUSH)); }

    std::vector<atltest::Seen> Reflected(UINT message) const
    {
        std::vector<atltest::Seen> out;
        for (const atltest::Seen &s : m_reflected) {
            if (s.message == message)
                out.push_back(s);
        }
        return out;
    }
};

class ReflectTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        WTL::CRect rc(0, 0, 200, 100);
        ASSERT_NE(nullptr, parent.Create(nullptr, rc));
        WTL::CRect rcButton(10, 10, 90, 40);
        ASSERT_NE(nullptr, button.Create(parent, rcButton, L"push", 0, 0, 77U));
        atltest::PumpMessages();
        button.UpdateWindow();
        button.m_reflected.clear();
        button.m_drawItems = 0;
    }
    void TearDown() override
    {
        if (parent.IsWindow())
            parent.DestroyWindow();
    }
    ReflectingParent parent;
    ReflectedButton button;
};

TEST_F(ReflectTest, ReflectedCommandNumberIsWmCommandAboveTheBase)
{
    EXPECT_EQ(8465, OCM_COMMAND);
    EXPECT_EQ(0x2000, OCM__BASE);
    EXPECT_EQ(8235, OCM_DRAWITEM);
    EXPECT_EQ(8501, OCM_CTLCOLORBTN);
    EXPECT_EQ(8270, OCM_NOTIFY);
}

TEST_F(ReflectTest, ClickComesBackToTheButtonAsReflectedCommand)
{
    button.Click();
    const auto commands = button.Reflected(OCM_COMMAND);
    ASSERT_EQ(1u, commands.size());
    EXPECT_EQ(MAKEWPARAM(77, BN_CLICKED), commands[0].wParam);
    EXPECT_EQ(reinterpret_cast<LPARAM>(button.m_hWnd), commands[0].lParam);
}

TEST_F(ReflectTest, NotifyIsReflectedWithItsAnswer)
{
    NMHDR nm = {button.m_hWnd, 77, NM_CLICK};
    EXPECT_EQ(6543, parent.SendMessage(WM_NOTIFY, 77, reinterpret_cast<LPARAM>(&nm)));
    EXPECT_EQ(1u, button.Reflected(OCM_NOTIFY).size());
}

TEST_F(ReflectTest, CtlColorAnswerComesFromTheChild)
{
    HDC dc = GetDC(parent);
    LRESULT brush = parent.SendMessage(WM_CTLCOLORBTN, reinterpret_cast<WPARAM>(dc), reinterpret_cast<LPARAM>(button.m_hWnd));
    ReleaseDC(parent, dc);
    EXPECT_EQ(reinterpret_cast<LRESULT>(GetStockObject(NULL_BRUSH)), brush);
}

TEST_F(ReflectTest, OwnerDrawButtonReceivesReflectedDrawItem)
{
    button.SetButtonStyle(BS_OWNERDRAW, FALSE);
    button.Invalidate();
    button.UpdateWindow();
    EXPECT_EQ(1, button.m_drawItems);
    EXPECT_EQ(1u, button.Reflected(OCM_DRAWITEM).size());
}

TEST_F(ReflectTest, MessageLeftByTheChildGetsTheDefaultAnswerOfTheOriginal)
{
    HDC dc = GetDC(parent);
    const LRESULT expected = DefWindowProcW(button, WM_CTLCOLORSTATIC, reinterpret_cast<WPARAM>(dc),
                                            reinterpret_cast<LPARAM>(button.m_hWnd));
    const LRESULT brush = parent.SendMessage(WM_CTLCOLORSTATIC, reinterpret_cast<WPARAM>(dc),
                                             reinterpret_cast<LPARAM>(button.m_hWnd));
    ReleaseDC(parent, dc);
    EXPECT_NE(0, expected);
    EXPECT_EQ(expected, brush);
    EXPECT_EQ(1u, button.Reflected(OCM_CTLCOLORSTATIC).size());
}

TEST_F(ReflectTest, DefaultReflectionHandlerTakesOnlyReflectedMessages)
{
    LRESULT result = -1;
    EXPECT_FALSE(ReflectedButton::DefaultReflectionHandler(button, WM_APP, 0, 0, result));
    EXPECT_EQ(-1, result);
    EXPECT_TRUE(ReflectedButton::DefaultReflectionHandler(button, OCM_COMMAND, 0, 0, result));
    EXPECT_EQ(0, result);
}

TEST_F(ReflectTest, CommandWithoutAControlIsNotReflected)
{
    // A menu command: lParam 0. The parent's map leaves it to DefWindowProc.
    EXPECT_EQ(0, parent.SendMessage(WM_COMMAND, MAKEWPARAM(77, 0), 0));
    EXPECT_TRUE(button.m_reflected.empty());
}

TEST_F(ReflectTest, ScrollFromAChildIsReflected)
{
    parent.SendMessage(WM_HSCROLL, SB_LINEDOWN, reinterpret_cast<LPARAM>(button.m_hWnd));
    const auto scrolls = button.Reflected(OCM_HSCROLL);
    ASSERT_EQ(1u, scrolls.size());
    EXPECT_EQ(static_cast<WPARAM>(SB_LINEDOWN), scrolls[0].wParam);
}

TEST_F(ReflectTest, ReflectNotificationsLeavesOtherMessagesUnhandled)
{
    BOOL handled = TRUE;
    EXPECT_EQ(1, parent.ReflectNotifications(WM_APP, 0, 0, handled));
    EXPECT_FALSE(handled);
    handled = TRUE;
    parent.ReflectNotifications(WM_COMMAND, 0, reinterpret_cast<LPARAM>(static_cast<HWND>(nullptr)), handled);
    EXPECT_FALSE(handled);
}

// A window in the middle passes its children's notifications on to its own parent.
class ForwardingMiddle : public ATL::CWindowImpl<ForwardingMiddle, ATL::CWindow, ChildTraits> {
public:
    BEGIN_MSG_MAP(ForwardingMiddle)
        FORWARD_NOTIFICATIONS()
    END_MSG_MAP()
};

TEST(ForwardTest, NotificationsGoOnToTheParentWithTheirAnswer)
{
    atltest::Recorder top({WM_COMMAND}, 31);
    ForwardingMiddle middle;
    WTL::CRect rc(0, 0, 50, 50);
    ASSERT_NE(nullptr, middle.Create(top.hwnd(), rc));
    HWND fakeChild = reinterpret_cast<HWND>(static_cast<UINT_PTR>(0x4444));
    EXPECT_EQ(31, middle.SendMessage(WM_COMMAND, MAKEWPARAM(5, 6), reinterpret_cast<LPARAM>(fakeChild)));
    ASSERT_EQ(1u, top.seen.size());
    EXPECT_EQ(MAKEWPARAM(5, 6), top.seen[0].wParam);
    EXPECT_EQ(reinterpret_cast<LPARAM>(fakeChild), top.seen[0].lParam);

    // Not a notification: stays with the middle window.
    EXPECT_EQ(0, middle.SendMessage(WM_APP, 1, 2));
    EXPECT_EQ(1u, top.seen.size());
    middle.DestroyWindow();
}

} // namespace
