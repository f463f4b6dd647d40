#include "MirlWindowTestSupport.h"

#include <utility>
#include <vector>

using mirltest::PlaceOf;
using mirltest::TestFrame;

namespace {

::testing::Environment *const g_Mirl = ::testing::AddGlobalTestEnvironment(new mirltest::MirlEnvironment());

class FrameTest : public ::testing::Test {
protected:
    void Open(const wchar_t *name) { ASSERT_NE(nullptr, m_Frame.Create(nullptr, nullptr, static_cast<LPRECT>(nullptr), name)); }
    void TearDown() override
    {
        if (m_Frame.IsWindow()) {
            m_Frame.DestroyWindow();
        }
    }
    void ExpectPlace(const wchar_t *name, LONG x, LONG y, LONG w, LONG h)
    {
        MirlWindowBase *child = m_Frame.GetWindowItem(name);
        ASSERT_NE(nullptr, child) << name;
        RECT place = PlaceOf(child->m_hWnd);
        EXPECT_EQ(x, place.left) << name;
        EXPECT_EQ(y, place.top) << name;
        EXPECT_EQ(w, place.right) << name;
        EXPECT_EQ(h, place.bottom) << name;
    }
    std::wstring TipText()
    {
        wchar_t text[64] = {};
        TTTOOLINFOW tool = {};
        tool.cbSize = sizeof(tool);
        tool.hwnd = m_Frame.m_hWnd;
        tool.uId = 1;
        tool.lpszText = text;
        ::SendMessageW(m_Frame.GetToolTipCtrl(), TTM_GETTEXTW, 64, reinterpret_cast<LPARAM>(&tool));
        return text;
    }

    TestFrame m_Frame;
};

} // namespace

TEST_F(FrameTest, TopLevelFrameTakesStyleSizeAndTitleFromItsTemplate)
{
    Open(L"Layout");
    RECT rect = {};
    m_Frame.GetWindowRect(&rect);
    EXPECT_EQ(300, rect.right - rect.left);
    EXPECT_EQ(200, rect.bottom - rect.top);
    EXPECT_EQ(static_cast<LONG>(WS_POPUP | WS_VISIBLE), ::GetWindowLongW(m_Frame.m_hWnd, GWL_STYLE) & (WS_POPUP | WS_VISIBLE | WS_CHILD));
    EXPECT_NE(nullptr, m_Frame.GetBkBrush());
    EXPECT_NE(nullptr, m_Frame.GetTxBrush());
}

TEST_F(FrameTest, CreateWithAStyleIgnoresTheTemplatesStyle)
{
    ASSERT_NE(nullptr, m_Frame.Create(nullptr, nullptr, static_cast<LPRECT>(nullptr), L"Layout", WS_POPUP | WS_BORDER));
    LONG style = ::GetWindowLongW(m_Frame.m_hWnd, GWL_STYLE);
    EXPECT_EQ(static_cast<LONG>(WS_BORDER), style & WS_BORDER);
    EXPECT_EQ(0, style & WS_VISIBLE);
}

TEST_F(FrameTest, ChildWithoutStyleOrWithEmptyStyleIsChildAndVisibleOnly)
{
    Open(L"StyleGiven");
    MirlWindowBase *none = m_Frame.GetWindowItem(L"NoStyle");
    MirlWindowBase *empty = m_Frame.GetWindowItem(L"EmptyStyle");
    MirlWindowBase *border = m_Frame.GetWindowItem(L"BorderStyle");
    ASSERT_NE(nullptr, none);
    ASSERT_NE(nullptr, empty);
    ASSERT_NE(nullptr, border);
    EXPECT_EQ(0x50000000L, ::GetWindowLongW(none->m_hWnd, GWL_STYLE));
    // An empty "Style" parses to 0, and 0 takes the traits' style.
    EXPECT_EQ(0x56000000L, ::GetWindowLongW(empty->m_hWnd, GWL_STYLE));
    EXPECT_EQ(static_cast<LONG>(WS_CHILD | WS_VISIBLE | WS_BORDER), ::GetWindowLongW(border->m_hWnd, GWL_STYLE));
}

TEST_F(FrameTest, SetTooltipTextWithNullAndNoTooltipDoesNothing)
{
    Open(L"Layout");
    m_Frame.SetTooltipText(nullptr, true);
    EXPECT_EQ(nullptr, m_Frame.GetToolTipCtrl());
    m_Frame.ActivateTooltip(true);
    EXPECT_EQ(nullptr, m_Frame.GetToolTipCtrl());
}

TEST_F(FrameTest, SecondTooltipTextReusesToolOneAndOnlyChangesTheText)
{
    Open(L"Layout");
    m_Frame.SetTooltipText(L"first", true);
    ASSERT_NE(nullptr, m_Frame.GetToolTipCtrl());
    EXPECT_EQ(1, ::SendMessageW(m_Frame.GetToolTipCtrl(), TTM_GETTOOLCOUNT, 0, 0));
    EXPECT_EQ(L"first", TipText());
    HWND tip = m_Frame.GetToolTipCtrl();
    m_Frame.SetTooltipText(L"second", false);
    EXPECT_EQ(tip, m_Frame.GetToolTipCtrl());
    EXPECT_EQ(1, ::SendMessageW(tip, TTM_GETTOOLCOUNT, 0, 0));
    EXPECT_EQ(L"second", TipText());
    EXPECT_EQ(400, ::SendMessageW(tip, TTM_GETMAXTIPWIDTH, 0, 0));
}

TEST_F(FrameTest, ToolTipAttributeMakesATipOnCreation)
{
    Open(L"Defaults");
    MirlWindowBase *named = m_Frame.GetWindowItem(L"Named");
    ASSERT_NE(nullptr, named);
    MirlWindow *window = dynamic_cast<MirlWindow *>(named);
    ASSERT_NE(nullptr, window);
    ASSERT_NE(nullptr, window->GetToolTipCtrl());
    EXPECT_EQ(1, ::SendMessageW(window->GetToolTipCtrl(), TTM_GETTOOLCOUNT, 0, 0));
}

TEST_F(FrameTest, MeasureTextOfEmptyTextIsFalseAndLeavesOutputs)
{
    Open(L"Layout");
    HDC dc = ::GetDC(m_Frame.m_hWnd);
    {
        Gdiplus::Graphics g(dc);
        int width = 17;
        int height = 19;
        EXPECT_FALSE(m_Frame.MeasureText(g, L"", m_Frame.GetTxFont(), width, height));
        EXPECT_EQ(17, width);
        EXPECT_EQ(19, height);
        EXPECT_FALSE(m_Frame.MeasureText(g, nullptr, m_Frame.GetTxFont(), width, height));
        ASSERT_NE(nullptr, m_Frame.GetTxFont());
        EXPECT_TRUE(m_Frame.MeasureText(g, L"Wide text", m_Frame.GetTxFont(), width, height));
        EXPECT_GT(width, 20);
        EXPECT_GT(height, 5);
    }
    ::ReleaseDC(m_Frame.m_hWnd, dc);
}

TEST_F(FrameTest, PaintWithADeviceContextDoesNotValidateTheWindow)
{
    Open(L"Layout");
    ::UpdateWindow(m_Frame.m_hWnd);
    m_Frame.Invalidate(FALSE);
    mirltest::Canvas canvas(300, 200);
    m_Frame.m_Paints = 0;
    canvas.Paint(m_Frame.m_hWnd);
    EXPECT_EQ(1, m_Frame.m_Paints);
    RECT update = {};
    EXPECT_TRUE(::GetUpdateRect(m_Frame.m_hWnd, &update, FALSE));
    EXPECT_EQ(300, update.right);
}

TEST_F(FrameTest, DefaultPaintFillsWithTheBackgroundColour)
{
    Open(L"Defaults");
    MirlWindowBase *own = m_Frame.GetWindowItem(L"Own");
    mirltest::Canvas canvas(10, 64);
    canvas.Paint(own->m_hWnd);
    EXPECT_EQ(RGB(200, 0, 0), canvas.At(0, 0));
    EXPECT_EQ(RGB(200, 0, 0), canvas.At(9, 63));
}

TEST_F(FrameTest, SetWindowTextChangesTitleTextAndLayoutFlag)
{
    Open(L"Layout");
    m_Frame.SetWindowTextW(L"Renamed");
    EXPECT_STREQ(L"Renamed", m_Frame.GetText());
    EXPECT_FALSE(m_Frame.IsLayoutReady());
    wchar_t title[32] = {};
    ::GetWindowTextW(m_Frame.m_hWnd, title, 32);
    EXPECT_STREQ(L"Renamed", title);
}

// Layout on live windows, read back with GetWindowRect mapped to the parent's client area.

TEST_F(FrameTest, LayoutPlacesByOffsetsParentEdgesAndPreviousSibling)
{
    Open(L"Layout");
    ExpectPlace(L"L1", 10, 20, 50, 30);
    ExpectPlace(L"L2", 240, 150, 50, 30);
    ExpectPlace(L"L3", 195, 150, 40, 10);
    ExpectPlace(L"L4", 195, 162, 40, 10);
}

TEST_F(FrameTest, LayoutOddities)
{
    Open(L"Layout2");
    ExpectPlace(L"M2", 0, 157, 20, 99);
    ExpectPlace(L"M3", 4, 0, 288, 10);
    ExpectPlace(L"M4", 124, 0, 51, 10);
    ExpectPlace(L"M5", 0, 0, 301, 10);
    ExpectPlace(L"M6", 17, 0, 20, 10);
    // The list box made no window, so the previous sibling is M6.
    ExpectPlace(L"M8", 40, 0, 20, 10);
}

TEST_F(FrameTest, LayoutFirstChildRelationsAndParentHeight)
{
    Open(L"Layout3");
    ExpectPlace(L"N1", 3, 4, 20, 10);
    ExpectPlace(L"N2", 3, 0, 20, 10);
    ExpectPlace(L"N3", -3, 1, 20, 197);
}

TEST_F(FrameTest, LayoutRunsOnEverySizeAlsoToZero)
{
    Open(L"Layout");
    ::SendMessageW(m_Frame.m_hWnd, WM_SIZE, SIZE_RESTORED, MAKELPARAM(0, 0));
    ExpectPlace(L"L1", 10, 20, 50, 30);
    ExpectPlace(L"L2", -60, -50, 50, 30);
    ExpectPlace(L"L3", -105, -50, 40, 10);
    ::SendMessageW(m_Frame.m_hWnd, WM_SIZE, SIZE_MINIMIZED, MAKELPARAM(400, 300));
    ExpectPlace(L"L2", 340, 250, 50, 30);
}

namespace {

// While set: where each child window was created, and the moves each window was asked to make
// (a WM_WINDOWPOSCHANGING that is not only the showing of a new window).
std::vector<std::pair<HWND, RECT>> *g_CreatedAt = nullptr;
std::vector<HWND> *g_Moved = nullptr;

LRESULT CALLBACK RecordCreatedAt(int code, WPARAM wParam, LPARAM lParam)
{
    const CBT_CREATEWNDW *create = reinterpret_cast<const CBT_CREATEWNDW *>(lParam);
    if (code == HCBT_CREATEWND && g_CreatedAt != nullptr && (create->lpcs->style & WS_CHILD) != 0) {
        const CREATESTRUCTW *cs = create->lpcs;
        g_CreatedAt->push_back({reinterpret_cast<HWND>(wParam), RECT{cs->x, cs->y, cs->cx, cs->cy}});
    }
    return ::CallNextHookEx(nullptr, code, wParam, lParam);
}

LRESULT CALLBACK RecordMoves(int code, WPARAM wParam, LPARAM lParam)
{
    const CWPSTRUCT *sent = reinterpret_cast<const CWPSTRUCT *>(lParam);
    if (code == HC_ACTION && sent->message == WM_WINDOWPOSCHANGING && g_Moved != nullptr &&
        (reinterpret_cast<const WINDOWPOS *>(sent->lParam)->flags & SWP_SHOWWINDOW) == 0) {
        g_Moved->push_back(sent->hwnd);
    }
    return ::CallNextHookEx(nullptr, code, wParam, lParam);
}

// The moves sent while action runs.
template <class Action>
std::vector<HWND> MovesDuring(Action action)
{
    std::vector<HWND> moved;
    g_Moved = &moved;
    HHOOK hook = ::SetWindowsHookExW(WH_CALLWNDPROC, RecordMoves, nullptr, ::GetCurrentThreadId());
    action();
    ::UnhookWindowsHookEx(hook);
    g_Moved = nullptr;
    return moved;
}

bool SameRect(const RECT &a, const RECT &b)
{
    return a.left == b.left && a.top == b.top && a.right == b.right && a.bottom == b.bottom;
}

} // namespace

TEST_F(FrameTest, ChildrenAreMadeWhereTheLayoutPutsThemAndTheFirstLayoutMovesNone)
{
    std::vector<std::pair<HWND, RECT>> createdAt;
    g_CreatedAt = &createdAt;
    HHOOK hook = ::SetWindowsHookExW(WH_CBT, RecordCreatedAt, nullptr, ::GetCurrentThreadId());
    const std::vector<HWND> moved = MovesDuring([this] { Open(L"Layout"); });
    ::UnhookWindowsHookEx(hook);
    g_CreatedAt = nullptr;

    ASSERT_EQ(4u, createdAt.size());
    const RECT expected[4] = {{10, 20, 50, 30}, {240, 150, 50, 30}, {195, 150, 40, 10}, {195, 162, 40, 10}};
    for (size_t i = 0; i < 4; ++i) {
        EXPECT_EQ(m_Frame.GetChildByIndex(static_cast<unsigned int>(i))->m_hWnd, createdAt[i].first) << i;
        EXPECT_TRUE(SameRect(expected[i], createdAt[i].second)) << i;
        EXPECT_TRUE(SameRect(expected[i], PlaceOf(createdAt[i].first))) << i;
    }
    for (HWND hWnd : moved) {
        EXPECT_EQ(m_Frame.m_hWnd, hWnd) << "a child was moved after its creation";
    }
}

TEST_F(FrameTest, ALayoutMovesOnlyTheChildrenWhosePlaceChanges)
{
    Open(L"Layout");
    MirlWindowBase *l1 = m_Frame.GetWindowItem(L"L1");
    MirlWindowBase *l2 = m_Frame.GetWindowItem(L"L2");
    ASSERT_NE(nullptr, l1);
    ASSERT_NE(nullptr, l2);

    EXPECT_TRUE(MovesDuring([this] { ::SendMessageW(m_Frame.m_hWnd, WM_SIZE, SIZE_RESTORED, MAKELPARAM(300, 200)); })
                    .empty());
    // L1 hangs from the top left corner; the other three follow the bottom right one.
    const std::vector<HWND> moved =
        MovesDuring([this] { ::SendMessageW(m_Frame.m_hWnd, WM_SIZE, SIZE_RESTORED, MAKELPARAM(400, 300)); });
    const std::vector<HWND> expected = {l2->m_hWnd, m_Frame.GetWindowItem(L"L3")->m_hWnd,
                                        m_Frame.GetWindowItem(L"L4")->m_hWnd};
    EXPECT_EQ(expected, moved);
    ExpectPlace(L"L2", 340, 250, 50, 30);
}

TEST_F(FrameTest, AChildMovedByTheApplicationIsPutBackByTheNextLayout)
{
    Open(L"Layout");
    MirlWindowBase *l1 = m_Frame.GetWindowItem(L"L1");
    ASSERT_NE(nullptr, l1);
    ::MoveWindow(l1->m_hWnd, 1, 2, 3, 4, FALSE);
    ::SendMessageW(m_Frame.m_hWnd, WM_SIZE, SIZE_RESTORED, MAKELPARAM(300, 200));
    ExpectPlace(L"L1", 10, 20, 50, 30);
}

TEST_F(FrameTest, TheChildrenOfAButtonAreMadeAtTheirTemplatesRectangles)
{
    Open(L"Holding");
    MirlWindowBase *holder = m_Frame.GetWindowItem(L"Holder");
    ASSERT_NE(nullptr, holder);
    MirlWindowBase *held = holder->GetWindowItem(L"Held");
    ASSERT_NE(nullptr, held);
    // The button keeps its children where they were made: its WM_SIZE does not place them.
    EXPECT_TRUE(SameRect(RECT{5, 6, 20, 10}, PlaceOf(held->m_hWnd)));
}

TEST_F(FrameTest, WindowsOfOneFontShareOneGdiplusFontUntilTheLastLetsGo)
{
    Open(L"Layout");
    ASSERT_NE(nullptr, m_Frame.GetTxFont());
    LOGFONTW same = m_Frame.GetLogFont();
    Gdiplus::Font *shared = MIRL::AcquireFont(m_Frame.m_hWnd, same);
    EXPECT_EQ(m_Frame.GetTxFont(), shared);
    LOGFONTW other = same;
    other.lfHeight += 7;
    Gdiplus::Font *own = MIRL::AcquireFont(m_Frame.m_hWnd, other);
    ASSERT_NE(nullptr, own);
    EXPECT_NE(shared, own);
    Gdiplus::FontFamily family;
    EXPECT_EQ(Gdiplus::Ok, shared->GetFamily(&family));
    MIRL::ReleaseFont(own);
    MIRL::ReleaseFont(shared);
    // The frame still holds its font.
    EXPECT_EQ(Gdiplus::Ok, m_Frame.GetTxFont()->GetFamily(&family));
}

TEST_F(FrameTest, AWidthRememberedWithAFontIsRecalledForThatTextOnly)
{
    Open(L"Layout");
    Gdiplus::Font *font = m_Frame.GetTxFont();
    ASSERT_NE(nullptr, font);
    float width = -1.0f;
    EXPECT_FALSE(MIRL::RecallTextWidth(font, L"Never measured", width));
    MIRL::RememberTextWidth(font, L"Measured", 42.5f);
    EXPECT_TRUE(MIRL::RecallTextWidth(font, L"Measured", width));
    EXPECT_EQ(42.5f, width);
    EXPECT_FALSE(MIRL::RecallTextWidth(font, L"measured", width));
    EXPECT_FALSE(MIRL::RecallTextWidth(nullptr, L"Measured", width));
}

TEST(WindowFont, AWindowThatIsGoneGetsNoFont)
{
    HWND gone = ::CreateWindowExW(0, L"STATIC", nullptr, WS_POPUP, 0, 0, 10, 10, nullptr, nullptr, nullptr, nullptr);
    ASSERT_NE(nullptr, gone);
    ::DestroyWindow(gone);
    LOGFONTW font = {};
    font.lfHeight = 12;
    wcscpy(font.lfFaceName, L"Tahoma");
    EXPECT_EQ(nullptr, MIRL::AcquireFont(gone, font));
}
