// ATL::CWindow, the window traits and the argument adapters, on real windows.
#include "AtlTestSupport.h"

#include <gtest/gtest.h>

#include <string>

using ATL::CWindow;
using WTL::CRect;

namespace {

std::wstring TextOf(const CWindow &w)
{
    wchar_t buffer[128] = {};
    w.GetWindowText(buffer, 128);
    return buffer;
}

// A borderless popup, so that window and client rectangles agree.
class WindowTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        CRect rc(100, 50, 300, 150);
        ASSERT_NE(top.Create(L"STATIC", nullptr, rc, L"top", WS_POPUP), nullptr);
    }
    void TearDown() override
    {
        if (top.IsWindow())
            top.DestroyWindow();
    }
    CWindow top;
};

TEST_F(WindowTest, CreateGivesTheWindowItsTextAndRectangle)
{
    EXPECT_TRUE(::IsWindow(top.m_hWnd));
    EXPECT_EQ(L"top", TextOf(top));
    EXPECT_EQ(3, top.GetWindowTextLength());
    CRect window, client;
    EXPECT_TRUE(top.GetWindowRect(&window));
    EXPECT_TRUE(top.GetClientRect(&client));
    EXPECT_EQ(CRect(100, 50, 300, 150), window);
    EXPECT_EQ(CRect(0, 0, 200, 100), client);
}

// No rectangle means CW_USEDEFAULT for position and size, whatever the system makes of it.
TEST_F(WindowTest, NoRectangleMeansTheSystemDefaults)
{
    HWND direct = CreateWindowExW(0, L"STATIC", nullptr, WS_POPUP, CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT,
                                  CW_USEDEFAULT, nullptr, nullptr, nullptr, nullptr);
    CRect expected;
    GetWindowRect(direct, &expected);
    DestroyWindow(direct);

    CWindow w;
    ASSERT_NE(w.Create(L"STATIC", nullptr, nullptr, nullptr, WS_POPUP), nullptr);
    CRect rc;
    w.GetWindowRect(&rc);
    EXPECT_EQ(expected, rc);
    w.DestroyWindow();
}

TEST_F(WindowTest, DestroyWindowClearsTheHandle)
{
    HWND hWnd = top.m_hWnd;
    EXPECT_TRUE(top.DestroyWindow());
    EXPECT_EQ(nullptr, top.m_hWnd);
    EXPECT_FALSE(::IsWindow(hWnd));
    EXPECT_FALSE(top.IsWindow());
}

TEST_F(WindowTest, SetWindowTextChangesTheText)
{
    EXPECT_TRUE(top.SetWindowText(L"renamed"));
    EXPECT_EQ(L"renamed", TextOf(top));
    EXPECT_EQ(7, top.GetWindowTextLength());
}

TEST_F(WindowTest, AttachDetachAndConversions)
{
    HWND hWnd = top.Detach();
    EXPECT_EQ(nullptr, top.m_hWnd);
    CWindow other;
    other.Attach(hWnd);
    EXPECT_EQ(hWnd, static_cast<HWND>(other));
    CWindow assigned;
    assigned = hWnd;
    EXPECT_EQ(hWnd, assigned.m_hWnd);
    top.Attach(other.Detach());
    EXPECT_EQ(hWnd, top.m_hWnd);
}

TEST_F(WindowTest, ChildIdentifierAndTree)
{
    CWindow child;
    CRect rc(10, 20, 60, 40);
    const unsigned long id = 42;
    ASSERT_NE(child.Create(L"STATIC", top, rc, nullptr, WS_CHILD | WS_VISIBLE, 0, id), nullptr);
    EXPECT_EQ(42, child.GetDlgCtrlID());
    EXPECT_EQ(child.m_hWnd, top.GetDlgItem(42).m_hWnd);
    EXPECT_EQ(top.m_hWnd, child.GetParent().m_hWnd);
    EXPECT_EQ(top.m_hWnd, child.GetTopLevelParent().m_hWnd);
    EXPECT_TRUE(top.IsChild(child));
    EXPECT_EQ(child.m_hWnd, top.GetWindow(GW_CHILD).m_hWnd);

    EXPECT_EQ(42, child.SetDlgCtrlID(7));
    EXPECT_EQ(7, child.GetDlgCtrlID());

    CWindow second;
    CRect rc2(0, 0, 50, 50);
    ASSERT_NE(second.Create(L"STATIC", nullptr, rc2, nullptr, WS_POPUP), nullptr);
    EXPECT_EQ(top.m_hWnd, child.SetParent(second).m_hWnd);
    EXPECT_EQ(second.m_hWnd, child.GetParent().m_hWnd);
    EXPECT_FALSE(top.IsChild(child));
    second.DestroyWindow();
}

TEST_F(WindowTest, MenuOrIdTakesAnyIntegerOrAMenu)
{
    ATL::_U_MENUorID fromLiteral = 0;
    EXPECT_EQ(nullptr, fromLiteral.m_hMenu);
    ATL::_U_MENUorID fromId = 1234U;
    EXPECT_EQ(reinterpret_cast<HMENU>(static_cast<UINT_PTR>(1234)), fromId.m_hMenu);
    HMENU menu = CreateMenu();
    ATL::_U_MENUorID fromMenu = menu;
    EXPECT_EQ(menu, fromMenu.m_hMenu);
    DestroyMenu(menu);
}

TEST_F(WindowTest, StringOrIdTakesAStringOrAResourceNumber)
{
    const wchar_t *name = L"name";
    ATL::_U_STRINGorID fromString = name;
    EXPECT_EQ(name, fromString.m_lpstr);
    ATL::_U_STRINGorID fromId = 101U;
    EXPECT_TRUE(IS_INTRESOURCE(fromId.m_lpstr));
    EXPECT_EQ(101u, static_cast<unsigned>(reinterpret_cast<UINT_PTR>(fromId.m_lpstr)));
}

TEST_F(WindowTest, RectAdapterPointsAtTheGivenRectangle)
{
    RECT rc = {1, 2, 3, 4};
    ATL::_U_RECT byRef = rc;
    ATL::_U_RECT byPtr = &rc;
    ATL::_U_RECT none = nullptr;
    EXPECT_EQ(&rc, byRef.m_lpRect);
    EXPECT_EQ(&rc, byPtr.m_lpRect);
    EXPECT_EQ(nullptr, none.m_lpRect);
}

TEST_F(WindowTest, StylesAreReadAndModified)
{
    EXPECT_EQ(static_cast<DWORD>(WS_POPUP), top.GetStyle() & WS_POPUP);
    EXPECT_TRUE(top.IsWindowEnabled());
    EXPECT_TRUE(top.ModifyStyle(0, WS_DISABLED));
    EXPECT_FALSE(top.IsWindowEnabled());
    EXPECT_FALSE(top.ModifyStyle(0, WS_DISABLED)); // nothing changes
    EXPECT_TRUE(top.ModifyStyle(WS_DISABLED, 0, SWP_FRAMECHANGED));
    EXPECT_TRUE(top.IsWindowEnabled());

    EXPECT_EQ(0u, top.GetExStyle() & WS_EX_TOOLWINDOW);
    EXPECT_TRUE(top.ModifyStyleEx(0, WS_EX_TOOLWINDOW));
    EXPECT_EQ(static_cast<DWORD>(WS_EX_TOOLWINDOW), top.GetExStyle() & WS_EX_TOOLWINDOW);
}

TEST_F(WindowTest, EnableWindowAnswersTheFormerState)
{
    EXPECT_FALSE(top.EnableWindow(FALSE)); // it was enabled
    EXPECT_FALSE(top.IsWindowEnabled());
    EXPECT_TRUE(top.EnableWindow(TRUE)); // it was disabled
    EXPECT_TRUE(top.IsWindowEnabled());
}

TEST_F(WindowTest, ShowWindowAndVisibility)
{
    EXPECT_FALSE(top.IsWindowVisible());
    EXPECT_FALSE(top.ShowWindow(SW_SHOWNOACTIVATE));
    EXPECT_TRUE(top.IsWindowVisible());
    EXPECT_TRUE(top.ShowWindow(SW_HIDE));
    EXPECT_FALSE(top.IsWindowVisible());
}

TEST_F(WindowTest, MoveWindowAndSetWindowPos)
{
    CRect rc;
    EXPECT_TRUE(top.MoveWindow(5, 6, 70, 80));
    top.GetWindowRect(&rc);
    EXPECT_EQ(CRect(5, 6, 75, 86), rc);

    CRect target(11, 12, 31, 52);
    EXPECT_TRUE(top.MoveWindow(&target, FALSE));
    top.GetWindowRect(&rc);
    EXPECT_EQ(target, rc);

    EXPECT_TRUE(top.SetWindowPos(nullptr, 1, 2, 30, 40, SWP_NOZORDER | SWP_NOACTIVATE));
    top.GetWindowRect(&rc);
    EXPECT_EQ(CRect(1, 2, 31, 42), rc);

    CRect byRect(7, 8, 9, 10);
    EXPECT_TRUE(top.SetWindowPos(nullptr, &byRect, SWP_NOZORDER | SWP_NOACTIVATE));
    top.GetWindowRect(&rc);
    EXPECT_EQ(byRect, rc);
}

TEST_F(WindowTest, CoordinatesBetweenScreenAndClient)
{
    POINT pt = {1, 2};
    EXPECT_TRUE(top.ClientToScreen(&pt));
    EXPECT_EQ(101, pt.x);
    EXPECT_EQ(52, pt.y);
    EXPECT_TRUE(top.ScreenToClient(&pt));
    EXPECT_EQ(1, pt.x);
    EXPECT_EQ(2, pt.y);

    CRect rc(110, 60, 120, 75);
    EXPECT_TRUE(top.ScreenToClient(&rc));
    EXPECT_EQ(CRect(10, 10, 20, 25), rc);
    EXPECT_TRUE(top.ClientToScreen(&rc));
    EXPECT_EQ(CRect(110, 60, 120, 75), rc);
}

TEST_F(WindowTest, MapWindowPointsBetweenChildAndParent)
{
    CWindow child;
    CRect rc(10, 20, 60, 40);
    ASSERT_NE(child.Create(L"STATIC", top, rc, nullptr, WS_CHILD | WS_VISIBLE), nullptr);
    POINT pts[2] = {{0, 0}, {5, 6}};
    EXPECT_EQ(MAKELONG(10, 20), child.MapWindowPoints(top, pts, 2));
    EXPECT_EQ(10, pts[0].x);
    EXPECT_EQ(20, pts[0].y);
    EXPECT_EQ(15, pts[1].x);
    EXPECT_EQ(26, pts[1].y);

    CRect r(1, 1, 3, 4);
    EXPECT_EQ(MAKELONG(10, 20), child.MapWindowPoints(top, &r));
    EXPECT_EQ(CRect(11, 21, 13, 24), r);
}

TEST_F(WindowTest, SendAndPostMessageReachTheWindow)
{
    atltest::Recorder rec({WM_APP + 1, WM_APP + 2, WM_APP + 4}, 77);
    CWindow w(rec.hwnd());
    EXPECT_EQ(77, w.SendMessage(WM_APP + 1, 2, 3));
    EXPECT_EQ(77, CWindow::SendMessage(rec.hwnd(), WM_APP + 4, 5, 6));
    EXPECT_TRUE(w.PostMessage(WM_APP + 2, 8, 9));
    atltest::PumpMessages();
    ASSERT_EQ(3u, rec.seen.size());
    EXPECT_EQ(static_cast<UINT>(WM_APP + 1), rec.seen[0].message);
    EXPECT_EQ(2u, rec.seen[0].wParam);
    EXPECT_EQ(3, rec.seen[0].lParam);
    EXPECT_EQ(static_cast<UINT>(WM_APP + 4), rec.seen[1].message);
    EXPECT_EQ(static_cast<UINT>(WM_APP + 2), rec.seen[2].message);
    EXPECT_EQ(8u, rec.seen[2].wParam);
    EXPECT_EQ(9, rec.seen[2].lParam);
}

TEST_F(WindowTest, SetFontAndGetFont)
{
    HFONT font = CreateFontW(-13, 0, 0, 0, FW_NORMAL, 0, 0, 0, DEFAULT_CHARSET, 0, 0, 0, 0, L"Tahoma");
    ASSERT_NE(nullptr, font);
    top.SetFont(font, FALSE);
    EXPECT_EQ(font, top.GetFont());
    top.DestroyWindow();
    DeleteObject(font);
}

TEST_F(WindowTest, InvalidateAndUpdate)
{
    top.ShowWindow(SW_SHOWNOACTIVATE);
    top.UpdateWindow();
    CRect rc;
    EXPECT_FALSE(top.GetUpdateRect(&rc));

    EXPECT_TRUE(top.Invalidate(FALSE));
    EXPECT_TRUE(top.GetUpdateRect(&rc));
    EXPECT_EQ(CRect(0, 0, 200, 100), rc);
    EXPECT_TRUE(top.ValidateRect(nullptr));
    EXPECT_FALSE(top.GetUpdateRect(&rc));

    CRect part(10, 10, 30, 20);
    EXPECT_TRUE(top.InvalidateRect(&part, FALSE));
    EXPECT_TRUE(top.GetUpdateRect(&rc));
    EXPECT_EQ(part, rc);
    EXPECT_TRUE(top.UpdateWindow());
    EXPECT_FALSE(top.GetUpdateRect(&rc));

    HRGN rgn = CreateRectRgn(1, 2, 3, 4);
    top.InvalidateRgn(rgn, FALSE);
    EXPECT_TRUE(top.GetUpdateRect(&rc));
    EXPECT_EQ(CRect(1, 2, 3, 4), rc);
    DeleteObject(rgn);
    EXPECT_TRUE(top.RedrawWindow(nullptr, nullptr, RDW_VALIDATE));
    EXPECT_FALSE(top.GetUpdateRect(&rc));
}

TEST_F(WindowTest, GetDcBelongsToTheWindow)
{
    HDC dc = top.GetDC();
    ASSERT_NE(nullptr, dc);
    EXPECT_EQ(top.m_hWnd, WindowFromDC(dc));
    EXPECT_EQ(1, top.ReleaseDC(dc));
}

TEST_F(WindowTest, SetCaptureTakesTheMouse)
{
    ReleaseCapture();
    EXPECT_EQ(nullptr, top.SetCapture());
    EXPECT_EQ(top.m_hWnd, GetCapture());
    ReleaseCapture();
    EXPECT_EQ(nullptr, GetCapture());
}

TEST_F(WindowTest, TimerMessagesArriveWithTheirIdentifier)
{
    atltest::Recorder rec({WM_TIMER});
    CWindow w(rec.hwnd());
    EXPECT_EQ(5u, w.SetTimer(5, 10));
    const DWORD start = GetTickCount();
    while (rec.seen.empty() && GetTickCount() - start < 2000) {
        MsgWaitForMultipleObjects(0, nullptr, FALSE, 20, QS_ALLINPUT);
        atltest::PumpMessages();
    }
    ASSERT_FALSE(rec.seen.empty());
    EXPECT_EQ(5u, rec.seen[0].wParam);
    EXPECT_TRUE(w.KillTimer(5));
    EXPECT_FALSE(w.KillTimer(5));
}

TEST_F(WindowTest, WindowLongValues)
{
    EXPECT_EQ(0, top.SetWindowLongPtr(GWLP_USERDATA, 0x1234));
    EXPECT_EQ(0x1234, top.GetWindowLongPtr(GWLP_USERDATA));
    EXPECT_EQ(0x1234, top.SetWindowLong(GWLP_USERDATA, 0x55));
    EXPECT_EQ(0x55, top.GetWindowLong(GWLP_USERDATA));
}

TEST(WinTraitsTest, ZeroMeansTheTraitsStyle)
{
    typedef ATL::CWinTraits<0x56000000, WS_EX_CLIENTEDGE> Traits;
    EXPECT_EQ(0x56000000u, Traits::GetWndStyle(0));
    EXPECT_EQ(0x50000000u, Traits::GetWndStyle(0x50000000));
    EXPECT_EQ(static_cast<DWORD>(WS_EX_CLIENTEDGE), Traits::GetWndExStyle(0));
    EXPECT_EQ(static_cast<DWORD>(WS_EX_TOPMOST), Traits::GetWndExStyle(WS_EX_TOPMOST));
    EXPECT_EQ(0x56000000u, ATL::CControlWinTraits::GetWndStyle(0));
    EXPECT_EQ(0u, ATL::CNullTraits::GetWndStyle(0));
}

TEST(WinTraitsTest, OrTraitsAddTheirStyles)
{
    typedef ATL::CWinTraitsOR<WS_BORDER, WS_EX_TOPMOST, ATL::CWinTraits<WS_CHILD, 0>> Traits;
    EXPECT_EQ(static_cast<DWORD>(WS_BORDER | WS_CHILD), Traits::GetWndStyle(0));
    EXPECT_EQ(static_cast<DWORD>(WS_BORDER | WS_VISIBLE), Traits::GetWndStyle(WS_VISIBLE));
    EXPECT_EQ(static_cast<DWORD>(WS_EX_TOPMOST), Traits::GetWndExStyle(0));
}

} // namespace
