// The folder stack through real messages: folders stacked with percentage heights and limits,
// the scroll range that is never reset, line, page, thumb and wheel steps, bar clicks and the
// folder-changed message, and the one batch of moves.
#include "MirlContainerTestSupport.h"
#include "controls/container/MirlContainerLogic.h"
#include "MirlMessageRecorder.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

::testing::Environment *const g_Mirl =
    ::testing::AddGlobalTestEnvironment(new mirltest::SkinEnvironment(L"containers"));

class OutlookTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        mirltest::ParkCursor();
        ASSERT_TRUE(m_Frame.Open(L"Host"));
        ASSERT_TRUE(mirltest::Activate(m_Frame.m_hWnd));
        MIRLOutlookCtrl::SetCurrentBar(nullptr);
    }
    void TearDown() override
    {
        m_Outlook.Destroy();
        m_Frame.DestroyWindow();
        mirltest::ParkCursor();
    }

    MIRLOutlookCtrl *Make(const wchar_t *name)
    {
        m_Outlook.Create(&m_Frame, m_Frame.m_hWnd, name);
        mirltest::FlushMessages();
        return m_Outlook.get();
    }

    int BarTop(unsigned int folder) { return mirltest::PlaceInParent(m_Outlook->GetFolder(folder)->pBar->m_hWnd).top; }
    int PanelTop(unsigned int folder)
    {
        return mirltest::PlaceInParent(m_Outlook->GetFolder(folder)->pPanel->m_hWnd).top;
    }
    int Position() { return ::GetScrollPos(m_Outlook->GetScrollBar(), SB_CTL); }
    void Range(int *minimum, int *maximum) { ::GetScrollRange(m_Outlook->GetScrollBar(), SB_CTL, minimum, maximum); }
    LRESULT Scroll(WORD code, WORD thumb = 0)
    {
        return ::SendMessageW(m_Outlook.hwnd(), WM_VSCROLL, MAKEWPARAM(code, thumb),
                              reinterpret_cast<LPARAM>(m_Outlook->GetScrollBar()));
    }
    void Wheel(short delta)
    {
        ::SendMessageW(m_Outlook.hwnd(), WM_MOUSEWHEEL, MAKEWPARAM(0, static_cast<WORD>(delta)), MAKELPARAM(50, 50));
    }

    mirltest::ButtonFrame m_Frame;
    mirltest::Scoped<MIRLOutlookCtrl> m_Outlook;
};

TEST_F(OutlookTest, ThreeHalvesOfThreeHundredGiveARangeOfOneHundredFifty)
{
    MIRLOutlookCtrl *outlook = Make(L"Folders");
    ASSERT_EQ(3u, outlook->GetFolderCount());
    ASSERT_EQ(6u, outlook->GetChildCount()); // a panel and a bar each
    for (unsigned int i = 0; i < 3; ++i) {
        const OUTLOOK_FOLDER *folder = outlook->GetFolder(i);
        EXPECT_EQ(150, folder->nHeight) << i;
        EXPECT_TRUE(folder->bVisible);
        EXPECT_EQ(static_cast<int>(501 + i), ::GetDlgCtrlID(folder->pBar->m_hWnd));
        EXPECT_EQ(folder->pPanel, outlook->GetChildByIndex(2 * i));
        EXPECT_EQ(folder->pBar, outlook->GetChildByIndex(2 * i + 1));
        EXPECT_TRUE(::IsWindowVisible(folder->pPanel->m_hWnd));
    }
    int minimum = -1;
    int maximum = -1;
    Range(&minimum, &maximum);
    EXPECT_EQ(0, minimum);
    EXPECT_EQ(150, maximum);
    EXPECT_FALSE(::IsWindowEnabled(outlook->GetScrollBar()));
    EXPECT_EQ(200, ::GetDlgCtrlID(outlook->GetScrollBar()));

    EXPECT_EQ(0, BarTop(0));
    EXPECT_EQ(34, PanelTop(0));
    EXPECT_EQ(184, BarTop(1));
    EXPECT_EQ(218, PanelTop(1));
    EXPECT_EQ(368, BarTop(2));
    const RECT bar = mirltest::PlaceInParent(outlook->GetFolder(0)->pBar->m_hWnd);
    const RECT scroll = mirltest::PlaceInParent(outlook->GetScrollBar());
    EXPECT_EQ(32, bar.bottom - bar.top);
    EXPECT_EQ(scroll.left, bar.right);
    EXPECT_EQ(200, scroll.right);
    EXPECT_EQ(0, scroll.top);
    EXPECT_EQ(402, scroll.bottom);
    // The first bar is current.
    EXPECT_EQ(outlook->GetFolder(0)->pBar, MIRLOutlookCtrl::GetCurrentBar());
    EXPECT_TRUE(outlook->GetFolder(0)->pBar->IsSelected());
    EXPECT_NE(nullptr, outlook->GetFolder(0)->pBar->GetBarIcon());
    EXPECT_EQ(nullptr, outlook->GetFolder(1)->pBar->GetBarIcon());
}

TEST_F(OutlookTest, MinimumAndMaximumHeights)
{
    MIRLOutlookCtrl *outlook = Make(L"FoldersLimits");
    ASSERT_EQ(2u, outlook->GetFolderCount());
    // 334 - 2 * 34 leaves 266: 10 % is 26, raised to 80; 50 % is 133, lowered to 100.
    EXPECT_EQ(80, outlook->GetFolder(0)->nHeight);
    EXPECT_EQ(100, outlook->GetFolder(1)->nHeight);
    EXPECT_EQ(0x10 + 500, ::GetDlgCtrlID(outlook->GetFolder(0)->pBar->m_hWnd));
    const RECT panel = mirltest::PlaceInParent(outlook->GetFolder(1)->pPanel->m_hWnd);
    EXPECT_EQ(34 + 80 + 34, panel.top);
    EXPECT_EQ(100, panel.bottom - panel.top);
    // The stack fits: the range was never set.
    int minimum = -1;
    int maximum = -1;
    Range(&minimum, &maximum);
    EXPECT_EQ(0, minimum);
    EXPECT_EQ(0, maximum);
}

TEST_F(OutlookTest, WhenTheStackFitsAgainTheRangeStaysAndStillActs)
{
    MIRLOutlookCtrl *outlook = Make(L"FoldersPixels");
    int minimum = -1;
    int maximum = -1;
    Range(&minimum, &maximum);
    EXPECT_EQ(0, maximum); // 70 + 90 fit in 300 - 68
    // 200 - 68 leaves 132 for 160: the range becomes 0 to 28.
    ::SetWindowPos(outlook->m_hWnd, nullptr, 0, 0, 200, 200, SWP_NOMOVE | SWP_NOZORDER);
    Range(&minimum, &maximum);
    EXPECT_EQ(28, maximum);
    // The stack fits again; the range stays.
    ::SetWindowPos(outlook->m_hWnd, nullptr, 0, 0, 200, 400, SWP_NOMOVE | SWP_NOZORDER);
    Range(&minimum, &maximum);
    EXPECT_EQ(0, minimum);
    EXPECT_EQ(28, maximum);
    Wheel(-WHEEL_DELTA);
    EXPECT_EQ(10, Position());
    EXPECT_EQ(-10, BarTop(0));
    Scroll(SB_PAGEDOWN);
    EXPECT_EQ(25, Position());
    EXPECT_EQ(-25, BarTop(0));
    Wheel(-WHEEL_DELTA);
    EXPECT_EQ(28, Position());
    // A new layout starts at the top, though the bar still shows its position.
    ::SetWindowPos(outlook->m_hWnd, nullptr, 0, 0, 200, 390, SWP_NOMOVE | SWP_NOZORDER);
    EXPECT_EQ(0, BarTop(0));
    EXPECT_EQ(28, Position());
    Range(&minimum, &maximum);
    EXPECT_EQ(28, maximum);
}

TEST_F(OutlookTest, LinePageAndThumbSteps)
{
    MIRLOutlookCtrl *outlook = Make(L"Folders");
    EXPECT_EQ(0, Scroll(SB_LINEUP));
    EXPECT_EQ(0, Position());
    Scroll(SB_LINEDOWN);
    EXPECT_EQ(1, Position());
    EXPECT_EQ(-1, BarTop(0));
    Scroll(SB_BOTTOM); // a line, not the end
    EXPECT_EQ(2, Position());
    Scroll(SB_PAGEDOWN);
    EXPECT_EQ(17, Position());
    EXPECT_EQ(-17, BarTop(0));
    EXPECT_EQ(-17 + 34, PanelTop(0));
    EXPECT_EQ(-17 + 184, BarTop(1));
    Scroll(SB_TOP); // a line, not the start
    EXPECT_EQ(16, Position());
    Scroll(SB_PAGEUP);
    EXPECT_EQ(1, Position());
    Scroll(SB_PAGEUP);
    EXPECT_EQ(0, Position());
    Scroll(SB_THUMBPOSITION, 140);
    EXPECT_EQ(140, Position());
    Scroll(SB_PAGEDOWN);
    EXPECT_EQ(150, Position());
    Scroll(SB_ENDSCROLL, 3);
    EXPECT_EQ(150, Position());
    EXPECT_EQ(outlook->m_hWnd, ::GetFocus());
    // A scroll message from another bar is not the stack's.
    ::SendMessageW(outlook->m_hWnd, WM_VSCROLL, MAKEWPARAM(SB_LINEUP, 0), 0);
    EXPECT_EQ(150, Position());
}

TEST_F(OutlookTest, WheelNotchesAreNotAccumulated)
{
    Make(L"Folders");
    Wheel(-1);
    EXPECT_EQ(10, Position());
    Wheel(-3 * WHEEL_DELTA);
    EXPECT_EQ(20, Position());
    Wheel(0);
    EXPECT_EQ(20, Position());
    Wheel(WHEEL_DELTA / 2);
    EXPECT_EQ(10, Position());
    Wheel(WHEEL_DELTA);
    Wheel(WHEEL_DELTA);
    EXPECT_EQ(0, Position());
    EXPECT_EQ(0, BarTop(0));
}

TEST_F(OutlookTest, ClickingTheCurrentBarArrangesAgainButSelectsNothingNew)
{
    MIRLOutlookCtrl *outlook = Make(L"Folders");
    MirlOutlookBar *first = outlook->GetFolder(0)->pBar;
    Scroll(SB_PAGEDOWN);
    EXPECT_EQ(-15, BarTop(0));
    mirltest::MessageSequence sequence;
    for (UINT noise : {UINT(WM_CTLCOLORBTN), UINT(WM_DRAWITEM), UINT(WM_PARENTNOTIFY), UINT(WM_CTLCOLORSCROLLBAR),
                       UINT(WM_IME_SETCONTEXT), UINT(WM_IME_NOTIFY),
                       UINT(WM_MOUSEMOVE), UINT(WM_MOUSEACTIVATE), UINT(WM_CHILDACTIVATE), UINT(WM_SETFOCUS),
                       UINT(WM_KILLFOCUS)}) {
        sequence.Ignore(noise);
    }
    mirltest::ControlRecorder spy(outlook->m_hWnd, sequence);
    // The bar's top 15 pixels are above the control: the press goes on the part that shows.
    mirltest::ClickAt(first->m_hWnd, 40, 20);
    static const mirltest::ExpectedMessage click[] = {
        {WM_COMMAND, mirltest::kControl | mirltest::kWParam, MAKEWPARAM(501, BN_CLICKED), 0},
        {WM_MIRL_FOLDER_CHANGED, mirltest::kControl | mirltest::kWParam | mirltest::kLParam, 0,
         reinterpret_cast<LPARAM>(first)},
        {0, 0, 0, 0}};
    EXPECT_MESSAGES(sequence, click, "a click on the current bar");
    EXPECT_EQ(first, MIRLOutlookCtrl::GetCurrentBar());
    EXPECT_TRUE(first->IsSelected());
    EXPECT_EQ(0, BarTop(0)); // arranged again from the top
    EXPECT_EQ(15, Position());
}

TEST_F(OutlookTest, ClickingAnotherBarMakesItCurrent)
{
    MIRLOutlookCtrl *outlook = Make(L"Folders");
    MirlOutlookBar *first = outlook->GetFolder(0)->pBar;
    MirlOutlookBar *second = outlook->GetFolder(1)->pBar;
    mirltest::ClickAt(second->m_hWnd, 40, 10);
    EXPECT_EQ(second, MIRLOutlookCtrl::GetCurrentBar());
    EXPECT_TRUE(second->IsSelected());
    EXPECT_FALSE(first->IsSelected());
    // A click in the lower zone does nothing here.
    mirltest::MoveTo(first->m_hWnd, 40, 28);
    EXPECT_TRUE(first->IsMenuZone());
    mirltest::ClickAt(first->m_hWnd, 40, 28);
    EXPECT_EQ(second, MIRLOutlookCtrl::GetCurrentBar());
}

TEST_F(OutlookTest, ABarEnteredBelowTwentyIsInTheMenuZone)
{
    MIRLOutlookCtrl *outlook = Make(L"Folders");
    MirlOutlookBar *bar = outlook->GetFolder(2)->pBar;
    mirltest::MoveTo(bar->m_hWnd, 40, 21);
    EXPECT_TRUE(bar->IsMouseOver());
    EXPECT_TRUE(bar->IsMenuZone());
    // Later moves split at 24.
    mirltest::MoveTo(bar->m_hWnd, 40, 22);
    EXPECT_FALSE(bar->IsMenuZone());
    mirltest::MoveTo(bar->m_hWnd, 40, 25);
    EXPECT_TRUE(bar->IsMenuZone());
}

TEST_F(OutlookTest, FolderChangedWithAWParamMovesToTheNextFolder)
{
    MIRLOutlookCtrl *outlook = Make(L"Folders");
    MirlOutlookBar *bars[3] = {outlook->GetFolder(0)->pBar, outlook->GetFolder(1)->pBar, outlook->GetFolder(2)->pBar};
    ::SendMessageW(outlook->m_hWnd, WM_MIRL_FOLDER_CHANGED, 1, reinterpret_cast<LPARAM>(bars[1]));
    EXPECT_EQ(bars[2], MIRLOutlookCtrl::GetCurrentBar());
    EXPECT_TRUE(bars[2]->IsSelected());
    EXPECT_FALSE(bars[0]->IsSelected());
    ::SendMessageW(outlook->m_hWnd, WM_MIRL_FOLDER_CHANGED, 1, reinterpret_cast<LPARAM>(bars[2]));
    EXPECT_EQ(bars[0], MIRLOutlookCtrl::GetCurrentBar());
    // An unknown bar is ignored.
    EXPECT_EQ(0, ::SendMessageW(outlook->m_hWnd, WM_MIRL_FOLDER_CHANGED, 1, 12345));
    EXPECT_EQ(bars[0], MIRLOutlookCtrl::GetCurrentBar());
}

TEST_F(OutlookTest, AddBarLeavesTheControlUnchanged)
{
    MIRLOutlookCtrl *outlook = Make(L"Folders");
    MirlUiWindow *ui = static_cast<MirlUiWindow *>(MirlUI::Instance()->GetUiElement(L"FoldersPixels", 6));
    ASSERT_NE(nullptr, ui);
    EXPECT_EQ(0, outlook->AddBar(ui));
    EXPECT_EQ(0, outlook->AddBar(ui->GetChildByIndex(0)));
    EXPECT_EQ(0, outlook->AddBar(nullptr));
    EXPECT_EQ(3u, outlook->GetFolderCount());
    EXPECT_EQ(6u, outlook->GetChildCount());
    EXPECT_EQ(368, BarTop(2));
}

TEST_F(OutlookTest, PixelHeightsAndNoFolders)
{
    MIRLOutlookCtrl *outlook = Make(L"FoldersPixels");
    EXPECT_EQ(70, outlook->GetFolder(0)->nHeight);
    EXPECT_EQ(90, outlook->GetFolder(1)->nHeight);
    EXPECT_EQ(34 + 70, BarTop(1));
    m_Outlook.Destroy();
    EXPECT_EQ(nullptr, MIRLOutlookCtrl::GetCurrentBar());

    mirltest::Scoped<MIRLOutlookCtrl> empty;
    ASSERT_NE(nullptr, empty.Create(&m_Frame, m_Frame.m_hWnd, L"FoldersEmpty"));
    EXPECT_EQ(0u, empty->GetFolderCount());
    EXPECT_EQ(0u, empty->GetChildCount());
    EXPECT_EQ(nullptr, MIRLOutlookCtrl::GetCurrentBar());
    EXPECT_FALSE(::IsWindowEnabled(empty->GetScrollBar()));
    ::SendMessageW(empty.hwnd(), WM_MOUSEWHEEL, MAKEWPARAM(0, static_cast<WORD>(-WHEEL_DELTA)), 0);
    ::SendMessageW(empty.hwnd(), WM_VSCROLL, SB_LINEDOWN, reinterpret_cast<LPARAM>(empty->GetScrollBar()));
    ::SendMessageW(empty.hwnd(), WM_MIRL_FOLDER_CHANGED, 1, 0);
    ::SendMessageW(empty.hwnd(), WM_MIRL_FOLDER_CHANGED, 0, 0);
    EXPECT_EQ(0, ::GetScrollPos(empty->GetScrollBar(), SB_CTL));
    EXPECT_EQ(0u, empty->GetFolderCount());
}

TEST_F(OutlookTest, ABatchTooSmallLosesNoMove)
{
    std::vector<HWND> windows;
    for (int i = 0; i < 12; ++i) {
        windows.push_back(::CreateWindowExW(0, L"STATIC", nullptr, WS_CHILD, 0, 0, 5, 5, m_Frame.m_hWnd, nullptr,
                                            nullptr, nullptr));
    }
    {
        MIRL::MirlDeferBatch batch(1);
        for (int i = 0; i < 12; ++i) {
            batch.Move(windows[i], nullptr, i * 10, i * 3, 8 + i, 4, SWP_SHOWWINDOW | SWP_NOZORDER);
        }
        batch.Move(nullptr, nullptr, 0, 0, 1, 1, 0); // no window, no move
        EXPECT_TRUE(batch.End());
        EXPECT_EQ(0, batch.GetDirectMoves());
    }
    for (int i = 0; i < 12; ++i) {
        const RECT place = mirltest::PlaceInParent(windows[i]);
        EXPECT_EQ(i * 10, place.left) << i;
        EXPECT_EQ(i * 3, place.top) << i;
        EXPECT_EQ(8 + i, place.right - place.left) << i;
        EXPECT_TRUE(::IsWindowVisible(windows[i])) << i;
        ::DestroyWindow(windows[i]);
    }
    EXPECT_EQ(6, MIRL::FolderMoveCount(3));
}

TEST_F(OutlookTest, TheFactoryMakesAnOutlookControl)
{
    MirlUiWindow *ui = static_cast<MirlUiWindow *>(MirlUI::Instance()->GetUiElement(L"Folders", 6));
    ASSERT_NE(nullptr, ui);
    MirlWindowBase *made = MirlWindowBase::CreateMirlWindow(&m_Frame, ui);
    ASSERT_NE(nullptr, made);
    MIRLOutlookCtrl *outlook = dynamic_cast<MIRLOutlookCtrl *>(made);
    ASSERT_NE(nullptr, outlook);
    EXPECT_EQ(3u, outlook->GetFolderCount());
    EXPECT_EQ(1, MIRLOutlookCtrl::GetBarImagesRef()); // this one alone holds them
    ::DestroyWindow(made->m_hWnd);
    EXPECT_EQ(0, MIRLOutlookCtrl::GetBarImagesRef());
    delete made;
}

} // namespace
