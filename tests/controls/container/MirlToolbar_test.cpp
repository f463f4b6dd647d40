// The tab strip through real messages: tabs made from the template, the current tab, presses
// in the upper and the menu zone, SelectTab, IsClickOnMenu and the shared tab images.
#include "MirlContainerTestSupport.h"
#include "controls/container/MirlContainerLogic.h"
#include "MirlMessageRecorder.h"

#include <gtest/gtest.h>

namespace {

::testing::Environment *const g_Mirl =
    ::testing::AddGlobalTestEnvironment(new mirltest::SkinEnvironment(L"containers"));

MirlTabButton *TabAt(MirlToolbar *toolbar, unsigned int index)
{
    return dynamic_cast<MirlTabButton *>(toolbar->GetChildByIndex(index));
}

class ToolbarTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        mirltest::ParkCursor();
        ASSERT_TRUE(m_Frame.Open(L"Host"));
        ASSERT_TRUE(mirltest::Activate(m_Frame.m_hWnd));
        MirlToolbar::SetCurrentTab(nullptr);
    }
    void TearDown() override
    {
        m_Toolbar.Destroy();
        m_Frame.DestroyWindow();
        mirltest::ParkCursor();
    }

    MirlToolbar *Make(const wchar_t *name)
    {
        m_Toolbar.Create(&m_Frame, m_Frame.m_hWnd, name);
        mirltest::FlushMessages();
        return m_Toolbar.get();
    }

    mirltest::ButtonFrame m_Frame;
    mirltest::Scoped<MirlToolbar> m_Toolbar;
};

TEST_F(ToolbarTest, TabsComeFromTabButtonChildrenAndTheFirstIsCurrent)
{
    MirlToolbar *toolbar = Make(L"StripPlain");
    ASSERT_NE(nullptr, toolbar->m_hWnd);
    ASSERT_EQ(4u, toolbar->GetChildCount());
    MirlTabButton *library = TabAt(toolbar, 0);
    ASSERT_NE(nullptr, library);
    EXPECT_EQ(nullptr, TabAt(toolbar, 1)); // the label is no tab
    ASSERT_NE(nullptr, TabAt(toolbar, 2));
    ASSERT_NE(nullptr, TabAt(toolbar, 3)); // "tabbutton" in lower case is a tab too
    EXPECT_EQ(library, MirlToolbar::GetCurrentTab());
    EXPECT_TRUE(library->IsSelected());
    EXPECT_FALSE(TabAt(toolbar, 2)->IsSelected());
    EXPECT_EQ(401, ::GetDlgCtrlID(library->m_hWnd));
    EXPECT_EQ(BS_OWNERDRAW, ::GetWindowLongW(library->m_hWnd, GWL_STYLE) & BS_TYPEMASK);
    RECT place = mirltest::PlaceInParent(TabAt(toolbar, 2)->m_hWnd);
    EXPECT_EQ(100, place.left);
    EXPECT_EQ(190, place.right);
    EXPECT_EQ(40, place.bottom);
    // The toolbar's text is its template's name when the template gives none.
    wchar_t text[32] = {};
    ::GetWindowTextW(toolbar->m_hWnd, text, 32);
    EXPECT_STREQ(L"StripPlain", text);
    EXPECT_NE(nullptr, toolbar->GetBackgroundBrush());
}

TEST_F(ToolbarTest, SelectTabCountsTabsOnlyAndInvalidatesTheToolbarOnly)
{
    MirlToolbar *toolbar = Make(L"StripPlain");
    MirlTabButton *library = TabAt(toolbar, 0);
    MirlTabButton *playing = TabAt(toolbar, 2);
    MirlTabButton *settings = TabAt(toolbar, 3);
    ::UpdateWindow(m_Frame.m_hWnd);
    ::ValidateRect(toolbar->m_hWnd, nullptr);
    ::ValidateRect(playing->m_hWnd, nullptr);
    ASSERT_FALSE(::GetUpdateRect(playing->m_hWnd, nullptr, FALSE));

    EXPECT_EQ(1, toolbar->SelectTab(1));
    EXPECT_EQ(playing, MirlToolbar::GetCurrentTab());
    EXPECT_TRUE(::GetUpdateRect(toolbar->m_hWnd, nullptr, FALSE));
    EXPECT_FALSE(::GetUpdateRect(playing->m_hWnd, nullptr, FALSE));
    // Neither selected mark moves.
    EXPECT_TRUE(library->IsSelected());
    EXPECT_FALSE(playing->IsSelected());

    EXPECT_EQ(1, toolbar->SelectTab(2));
    EXPECT_EQ(settings, MirlToolbar::GetCurrentTab());
    EXPECT_EQ(0, toolbar->SelectTab(3));
    EXPECT_EQ(0, toolbar->SelectTab(-1));
    EXPECT_EQ(settings, MirlToolbar::GetCurrentTab());
    EXPECT_EQ(1, toolbar->SelectTab(0));
    EXPECT_EQ(library, MirlToolbar::GetCurrentTab());
}

TEST_F(ToolbarTest, NoChildrenOrNoTabSelectsNothing)
{
    MirlToolbar *empty = Make(L"StripEmpty");
    ASSERT_NE(nullptr, empty->m_hWnd);
    EXPECT_EQ(0u, empty->GetChildCount());
    EXPECT_EQ(nullptr, MirlToolbar::GetCurrentTab());
    EXPECT_EQ(0, empty->SelectTab(0));
    EXPECT_EQ(0, empty->IsClickOnMenu(0));
    m_Toolbar.Destroy();

    mirltest::Scoped<MirlToolbar> noTab;
    noTab.Create(&m_Frame, m_Frame.m_hWnd, L"StripNoTab");
    EXPECT_EQ(1u, noTab->GetChildCount());
    EXPECT_EQ(nullptr, MirlToolbar::GetCurrentTab());
    EXPECT_EQ(0, noTab->SelectTab(0));
    EXPECT_EQ(0, noTab->IsClickOnMenu(410));
}

TEST_F(ToolbarTest, AChildWithoutAWindowBeforeTheFirstTabMovesItOneEntryOn)
{
    MirlToolbar *toolbar = Make(L"StripGhostFirst");
    ASSERT_EQ(2u, toolbar->GetChildCount());
    // The first tab is template child 1, and child-list entry 1 is the second tab.
    EXPECT_EQ(TabAt(toolbar, 1), MirlToolbar::GetCurrentTab());
    EXPECT_TRUE(TabAt(toolbar, 1)->IsSelected());
    EXPECT_FALSE(TabAt(toolbar, 0)->IsSelected());
}

TEST_F(ToolbarTest, AFirstTabIndexPastTheListLeavesTheCurrentTabAlone)
{
    MirlToolbar *toolbar = Make(L"StripGhostOnly");
    ASSERT_EQ(1u, toolbar->GetChildCount());
    EXPECT_EQ(nullptr, MirlToolbar::GetCurrentTab());
    EXPECT_FALSE(TabAt(toolbar, 0)->IsSelected());
    // SelectTab still finds the tab.
    EXPECT_EQ(1, toolbar->SelectTab(0));
    EXPECT_EQ(TabAt(toolbar, 0), MirlToolbar::GetCurrentTab());
}

TEST_F(ToolbarTest, ATabOutsideAToolbarMakesNoWindow)
{
    mirltest::Scoped<MirlWindow> window;
    ASSERT_NE(nullptr, window.Create(&m_Frame, m_Frame.m_hWnd, L"LoneTab"));
    EXPECT_EQ(0u, window->GetChildCount());
    EXPECT_EQ(nullptr, ::GetWindow(window.hwnd(), GW_CHILD));
}

TEST_F(ToolbarTest, PressAtTwentyFourSelectsAtTwentyFiveIsTheMenuZone)
{
    MirlToolbar *toolbar = Make(L"StripPlain");
    MirlTabButton *library = TabAt(toolbar, 0);
    MirlTabButton *playing = TabAt(toolbar, 2);
    HWND tab = playing->m_hWnd;

    mirltest::MoveTo(tab, 20, 25);
    EXPECT_TRUE(playing->IsMouseOver());
    EXPECT_TRUE(playing->IsMenuZone());
    EXPECT_EQ(1, toolbar->IsClickOnMenu(402));
    ::SendMessageW(tab, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(20, 25));
    ::SendMessageW(tab, WM_LBUTTONUP, 0, MAKELPARAM(20, 25));
    EXPECT_EQ(library, MirlToolbar::GetCurrentTab());
    EXPECT_FALSE(playing->IsSelected());

    mirltest::MoveTo(tab, 20, 24);
    EXPECT_FALSE(playing->IsMenuZone());
    EXPECT_EQ(0, toolbar->IsClickOnMenu(402));
    ::SendMessageW(tab, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(20, 24));
    ::SendMessageW(tab, WM_LBUTTONUP, 0, MAKELPARAM(20, 24));
    EXPECT_EQ(playing, MirlToolbar::GetCurrentTab());
    EXPECT_TRUE(playing->IsSelected());
    EXPECT_FALSE(library->IsSelected());
    // Unknown ids answer 0.
    EXPECT_EQ(0, toolbar->IsClickOnMenu(999));
}

// Records what IsClickOnMenu answers while the toolbar handles a tab's WM_COMMAND.
MirlToolbar *g_Asked = nullptr;
WNDPROC g_ToolbarProc = nullptr;
std::vector<int> g_MenuAnswers;

LRESULT CALLBACK AskWhileHandling(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_COMMAND && HIWORD(wParam) == BN_CLICKED) {
        g_MenuAnswers.push_back(g_Asked->IsClickOnMenu(LOWORD(wParam)));
    }
    return ::CallWindowProcW(g_ToolbarProc, hwnd, message, wParam, lParam);
}

TEST_F(ToolbarTest, IsClickOnMenuIsValidWhileTheClickIsHandled)
{
    MirlToolbar *toolbar = Make(L"StripPlain");
    HWND tab = TabAt(toolbar, 3)->m_hWnd;
    g_Asked = toolbar;
    g_MenuAnswers.clear();
    g_ToolbarProc = reinterpret_cast<WNDPROC>(
        ::SetWindowLongPtrW(toolbar->m_hWnd, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&AskWhileHandling)));
    mirltest::ClickAt(tab, 10, 30);
    mirltest::ClickAt(tab, 10, 5);
    ::SetWindowLongPtrW(toolbar->m_hWnd, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(g_ToolbarProc));
    ASSERT_EQ(2u, g_MenuAnswers.size());
    EXPECT_EQ(1, g_MenuAnswers[0]);
    EXPECT_EQ(0, g_MenuAnswers[1]);
}

TEST_F(ToolbarTest, ClicksReturnToTheTabAndReachNoFurther)
{
    MirlToolbar *toolbar = Make(L"StripPlain");
    HWND tab = TabAt(toolbar, 2)->m_hWnd;
    mirltest::MessageSequence sequence;
    for (UINT noise : {UINT(WM_KILLFOCUS), UINT(WM_SETFOCUS), UINT(WM_IME_SETCONTEXT), UINT(WM_IME_NOTIFY),
                       UINT(WM_CTLCOLORBTN), UINT(OCM__BASE + WM_CTLCOLORBTN), UINT(WM_DRAWITEM),
                       UINT(OCM__BASE + WM_DRAWITEM), UINT(BM_SETSTATE), UINT(WM_CAPTURECHANGED),
                       UINT(WM_CHANGEUISTATE), UINT(WM_UPDATEUISTATE), UINT(WM_QUERYUISTATE), UINT(WM_MOUSEMOVE),
                       UINT(WM_LBUTTONDOWN), UINT(WM_LBUTTONUP), UINT(WM_LBUTTONDBLCLK), UINT(WM_PARENTNOTIFY)}) {
        sequence.Ignore(noise);
    }
    mirltest::ControlRecorder toolbarSpy(toolbar->m_hWnd, sequence);
    mirltest::ControlRecorder tabSpy(tab, sequence);
    m_Frame.m_Commands.clear();
    mirltest::ClickAt(tab, 10, 10);
    static const mirltest::ExpectedMessage click[] = {
        {WM_COMMAND, mirltest::kControl | mirltest::kWParam, MAKEWPARAM(402, BN_CLICKED), 0},
        {OCM__BASE + WM_COMMAND, mirltest::kControl | mirltest::kWParam, MAKEWPARAM(402, BN_CLICKED), 0},
        {0, 0, 0, 0}};
    EXPECT_MESSAGES(sequence, click, "a click on a tab");
    EXPECT_TRUE(m_Frame.m_Commands.empty());
}

TEST_F(ToolbarTest, ASecondPressOnTheCurrentTabChangesNothing)
{
    MirlToolbar *toolbar = Make(L"StripPlain");
    MirlTabButton *library = TabAt(toolbar, 0);
    mirltest::ClickAt(library->m_hWnd, 10, 10);
    mirltest::ClickAt(library->m_hWnd, 10, 10);
    EXPECT_EQ(library, MirlToolbar::GetCurrentTab());
    EXPECT_TRUE(library->IsSelected());
    EXPECT_FALSE(TabAt(toolbar, 2)->IsSelected());
    EXPECT_FALSE(TabAt(toolbar, 3)->IsSelected());
}

TEST_F(ToolbarTest, ADoubleClickActsAsTwoPresses)
{
    MirlToolbar *toolbar = Make(L"StripPlain");
    MirlTabButton *playing = TabAt(toolbar, 2);
    HWND tab = playing->m_hWnd;
    mirltest::MessageSequence sequence;
    mirltest::ControlRecorder spy(tab, sequence);
    mirltest::MoveTo(tab, 10, 10);
    ::SendMessageW(tab, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(10, 10));
    ::SendMessageW(tab, WM_LBUTTONUP, 0, MAKELPARAM(10, 10));
    // Another tab becomes current between the two halves: the second press selects again.
    EXPECT_EQ(1, toolbar->SelectTab(0));
    ::SendMessageW(tab, WM_LBUTTONDBLCLK, MK_LBUTTON, MAKELPARAM(10, 10));
    EXPECT_EQ(playing, MirlToolbar::GetCurrentTab());
    ::SendMessageW(tab, WM_LBUTTONUP, 0, MAKELPARAM(10, 10));
    EXPECT_EQ(2u, sequence.Count(OCM__BASE + WM_COMMAND));
}

TEST_F(ToolbarTest, ACheckStyleTabTogglesAtEachClick)
{
    MirlToolbar *toolbar = Make(L"StripCheck");
    MirlTabButton *tab = TabAt(toolbar, 0);
    ASSERT_NE(nullptr, tab);
    EXPECT_TRUE(tab->IsCheckStyle());
    EXPECT_TRUE(tab->IsSelected()); // the first tab
    mirltest::ClickAt(tab->m_hWnd, 10, 10);
    EXPECT_FALSE(tab->IsSelected());
    mirltest::ClickAt(tab->m_hWnd, 10, 10);
    EXPECT_TRUE(tab->IsSelected());
    // Any other notification code is not the tab's.
    EXPECT_EQ(0, ::SendMessageW(tab->m_hWnd, OCM__BASE + WM_COMMAND, MAKEWPARAM(441, BN_SETFOCUS), 0));
    EXPECT_TRUE(tab->IsSelected());
}

TEST_F(ToolbarTest, HoverEndsWhenAnotherWindowIsUnderThePointerAndHoverFacesAlwaysShow)
{
    MirlToolbar *toolbar = Make(L"StripPlain");
    MirlTabButton *playing = TabAt(toolbar, 2);
    HWND tab = playing->m_hWnd;
    mirltest::MoveTo(tab, 10, 30);
    EXPECT_TRUE(playing->IsMouseOver());
    EXPECT_EQ(tab, ::GetCapture());
    EXPECT_TRUE(playing->GetDrawHover());
    mirltest::MoveTo(tab, 10, 10);
    EXPECT_FALSE(playing->IsMenuZone());
    // Over the next tab: the hover ends and the capture goes; the zone stays as it was.
    mirltest::MoveTo(tab, 100, 10);
    EXPECT_FALSE(playing->IsMouseOver());
    EXPECT_NE(tab, ::GetCapture());
    EXPECT_TRUE(playing->GetDrawHover());
    // A cancelled mode clears both.
    mirltest::MoveTo(tab, 10, 30);
    EXPECT_TRUE(playing->IsMenuZone());
    ::SendMessageW(tab, WM_CANCELMODE, 0, 0);
    EXPECT_FALSE(playing->IsMouseOver());
    EXPECT_FALSE(playing->IsMenuZone());
}

TEST_F(ToolbarTest, ASecondToolbarTakesTheCurrentTabAndSharesTheImages)
{
    MirlToolbar *first = Make(L"StripPlain");
    const int before = MirlToolbar::GetTabImagesRef();
    EXPECT_EQ(1, before);
    {
        mirltest::Scoped<MirlToolbar> second;
        second.Create(&m_Frame, m_Frame.m_hWnd, L"StripSecond");
        EXPECT_EQ(2, MirlToolbar::GetTabImagesRef());
        MirlTabButton *one = TabAt(second.get(), 0);
        EXPECT_EQ(one, MirlToolbar::GetCurrentTab());
        // The first toolbar's tab keeps its mark.
        EXPECT_TRUE(TabAt(first, 0)->IsSelected());
        second.Destroy();
    }
    // The current tab went with its toolbar; the images stay for the first.
    EXPECT_EQ(nullptr, MirlToolbar::GetCurrentTab());
    EXPECT_EQ(1, MirlToolbar::GetTabImagesRef());
    EXPECT_NE(nullptr, MirlToolbar::GetTabImage(MIRL::TabFaceActive));
    EXPECT_NE(nullptr, MirlToolbar::GetTabImage(0));
    m_Toolbar.Destroy();
    EXPECT_EQ(0, MirlToolbar::GetTabImagesRef());
    EXPECT_EQ(nullptr, MirlToolbar::GetTabImage(MIRL::TabFaceActive));
    EXPECT_EQ(nullptr, MirlToolbar::GetTabImage(MIRL::TabFaceMenu));
    EXPECT_EQ(nullptr, MirlToolbar::GetTabImage(MIRL::TabFaceHover));
    EXPECT_EQ(nullptr, MirlToolbar::GetTabImage(0));
}

TEST_F(ToolbarTest, TheFactoryMakesAToolbar)
{
    mirltest::Scoped<MirlWindow> window;
    // The template of a toolbar under a plain window: the factory's row.
    MirlUiWindow *ui = static_cast<MirlUiWindow *>(MirlUI::Instance()->GetUiElement(L"StripPlain", 6));
    ASSERT_NE(nullptr, ui);
    MirlWindowBase *made = MirlWindowBase::CreateMirlWindow(&m_Frame, ui);
    ASSERT_NE(nullptr, made);
    EXPECT_NE(nullptr, dynamic_cast<MirlToolbar *>(made));
    EXPECT_TRUE(::IsWindow(made->m_hWnd));
    ::DestroyWindow(made->m_hWnd);
    delete made;
    EXPECT_EQ(nullptr, MirlToolbar::GetCurrentTab());
}

} // namespace
