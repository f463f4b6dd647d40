// The list view's rows as an application reads them, through the pointers it made the rows
// with: every rectangle after scrolling, appending and resizing is the one a full layout gives,
// the bars' ranges are right as soon as AddItem returns, and every append leaves the whole client
// to be painted, however the work behind it is spared.
#include "MirlListTestSupport.h"
#include "MirlPixelTest.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

::testing::Environment *const g_Mirl = ::testing::AddGlobalTestEnvironment(new mirltest::SkinEnvironment(L"lists"));

typedef MirlListView::INFORMATION_ITEM Row;

class PlainRow : public Row {
};

struct BarState {
    int min;
    int max;
    int pos;
};

BarState StateOf(HWND bar)
{
    SCROLLINFO info = {};
    info.cbSize = sizeof(info);
    info.fMask = SIF_POS | SIF_RANGE;
    ::GetScrollInfo(bar, SB_CTL, &info);
    return BarState{info.nMin, info.nMax, info.nPos};
}

// Puts a bar one line before pos and sends a line step onto it, so that the list view lays its
// rows out for pos whatever its size (a thumb message carries 16 bits).
void ScrollTo(MirlListView *list, bool vertical, int pos)
{
    HWND bar = vertical ? list->GetVScrollBar() : list->GetHScrollBar();
    ::SetScrollPos(bar, SB_CTL, pos > 0 ? pos - 1 : 1, FALSE);
    ::SendMessageW(list->m_hWnd, vertical ? WM_VSCROLL : WM_HSCROLL, pos > 0 ? SB_LINEDOWN : SB_LINEUP,
                   reinterpret_cast<LPARAM>(bar));
}

class ListViewRectsTest : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(m_Holder.Open(L"Host")); }
    void TearDown() override
    {
        m_List.Destroy();
        m_Holder.DestroyWindow();
    }
    // Columns of 100, 80, 70 and 200: wider than the 300-pixel list, so both bars show.
    MirlListView *MakeFilled(int rows)
    {
        m_List.Create(&m_Holder, m_Holder.m_hWnd, L"Songs");
        mirltest::FlushMessages();
        MirlListView *list = m_List.get();
        list->AddColumn(nullptr, L"Title", 100);
        list->AddColumn(nullptr, L"Artist", 80);
        list->AddColumn(nullptr, L"Time", 70);
        list->AddColumn(nullptr, L"Album", 200);
        Append(rows);
        return list;
    }
    void Append(int rows)
    {
        for (int i = 0; i < rows; ++i) {
            m_Rows.push_back(new PlainRow());
            m_List->AddItem(m_Rows.back());
        }
    }
    // Every row against the full layout at offsets x and y: left -x, right the columns' width
    // less x, tops one pitch apart from the header's height less y. Names the first that differs.
    ::testing::AssertionResult MatchesFullLayout(int x, int y, int pitch = 34)
    {
        MirlListView *list = m_List.get();
        int total = 0;
        for (int c = 0; c < list->GetColumnCount(); ++c) {
            total += list->GetColumn(c)->rect.right - list->GetColumn(c)->rect.left;
        }
        for (size_t i = 0; i < m_Rows.size(); ++i) {
            const RECT &rect = m_Rows[i]->rect;
            const LONG top = list->GetTitleHeight() - y + static_cast<LONG>(i) * pitch;
            if (rect.left != -x || rect.right != total - x || rect.top != top || rect.bottom != top + pitch) {
                return ::testing::AssertionFailure()
                       << "row " << i << " of " << m_Rows.size() << " is (" << rect.left << ", " << rect.top << ", "
                       << rect.right << ", " << rect.bottom << "), the full layout at x " << x << ", y " << y
                       << " gives (" << -x << ", " << top << ", " << total - x << ", " << top + pitch << ")";
            }
        }
        return ::testing::AssertionSuccess();
    }

    mirltest::ListHolder m_Holder;
    mirltest::Scoped<MirlListView> m_List;
    std::vector<Row *> m_Rows; // owned by the list: the application's own pointers
};

TEST_F(ListViewRectsTest, EveryRowAnApplicationReadsIsTheFullLayoutsAfterScrollingAppendingAndResizing)
{
    MirlListView *list = MakeFilled(2000);
    HWND vbar = list->GetVScrollBar();
    HWND hbar = list->GetHScrollBar();
    ASSERT_TRUE(::IsWindowVisible(vbar));
    ASSERT_TRUE(::IsWindowVisible(hbar));
    EXPECT_TRUE(MatchesFullLayout(0, 0));
    const int vMax = StateOf(vbar).max;
    const int hMax = StateOf(hbar).max;
    ASSERT_GT(vMax, 65536); // past what a thumb message's 16 bits can carry
    for (int y : {1, 17, 34, 35, 1000 * 34 + 5, 65535, 65536, vMax - 1, vMax, 0}) {
        ScrollTo(list, true, y);
        ASSERT_EQ(y, StateOf(vbar).pos);
        EXPECT_TRUE(MatchesFullLayout(0, y)) << "scrolled down to " << y;
    }
    ::SendMessageW(list->m_hWnd, WM_VSCROLL, SB_PAGEDOWN, reinterpret_cast<LPARAM>(vbar));
    ::SendMessageW(list->m_hWnd, WM_VSCROLL, SB_PAGEDOWN, reinterpret_cast<LPARAM>(vbar));
    ::SendMessageW(list->m_hWnd, WM_VSCROLL, SB_LINEUP, reinterpret_cast<LPARAM>(vbar));
    EXPECT_TRUE(MatchesFullLayout(0, 95));
    ::SendMessageW(list->m_hWnd, WM_HSCROLL, SB_PAGERIGHT, reinterpret_cast<LPARAM>(hbar));
    EXPECT_TRUE(MatchesFullLayout(5, 95));
    ScrollTo(list, false, hMax);
    EXPECT_TRUE(MatchesFullLayout(hMax, 95));
    ScrollTo(list, true, 40000);
    EXPECT_TRUE(MatchesFullLayout(hMax, 40000));

    // Appending while scrolled lays every row out from offset 0 again; the bars stay.
    Append(1);
    EXPECT_EQ(40000, StateOf(vbar).pos);
    EXPECT_EQ(hMax, StateOf(hbar).pos);
    EXPECT_TRUE(MatchesFullLayout(0, 0));
    Append(30);
    EXPECT_TRUE(MatchesFullLayout(0, 0));
    // The next scroll brings bars and rows together, with the rows appended.
    ::SendMessageW(list->m_hWnd, WM_VSCROLL, SB_LINEDOWN, reinterpret_cast<LPARAM>(vbar));
    EXPECT_TRUE(MatchesFullLayout(hMax, 40001));
    ::SendMessageW(list->m_hWnd, WM_HSCROLL, SB_LINELEFT, reinterpret_cast<LPARAM>(hbar));
    EXPECT_TRUE(MatchesFullLayout(hMax - 1, 40001));

    // A new size lays everything out from offset 0 too; the bars keep their positions while
    // their ranges allow.
    ::MoveWindow(list->m_hWnd, 0, 0, 280, 150, FALSE);
    EXPECT_TRUE(MatchesFullLayout(0, 0));
    EXPECT_EQ(hMax - 1, StateOf(hbar).pos);
    ScrollTo(list, true, 60000);
    EXPECT_TRUE(MatchesFullLayout(hMax - 1, 60000));
    ::MoveWindow(list->m_hWnd, 0, 0, 400, 300, FALSE);
    EXPECT_TRUE(MatchesFullLayout(0, 0));
    EXPECT_EQ(450 - 400, StateOf(hbar).max);
    EXPECT_EQ(450 - 400, StateOf(hbar).pos);

    // A blank below each row changes the pitch: the next append lays all rows out with it.
    list->SetRowBlank(3);
    EXPECT_TRUE(MatchesFullLayout(0, 0, 34)) << "set alone, the blank moves nothing";
    Append(1);
    EXPECT_TRUE(MatchesFullLayout(0, 0, 37));
    ScrollTo(list, true, 12345);
    EXPECT_TRUE(MatchesFullLayout(450 - 400, 12345, 37));
}

TEST_F(ListViewRectsTest, TheBarsRangesAreRightAsSoonAsAddItemReturns)
{
    MirlListView *list = MakeFilled(0);
    HWND vbar = list->GetVScrollBar();
    HWND hbar = list->GetHScrollBar();
    RECT client = {};
    ::GetClientRect(list->m_hWnd, &client);
    const int rowsHeight = client.bottom - list->GetTitleHeight();
    for (int rows = 1; rows <= 40; ++rows) {
        Append(1);
        // Layout asks for a maximum under 0 while the rows need less than the rows area: the
        // system keeps such a range as 0 to 0 (seen under Wine).
        const int needed = list->GetTitleHeight() + rows * 34 - rowsHeight;
        EXPECT_EQ(0, StateOf(vbar).min);
        EXPECT_EQ(needed > 0 ? needed : 0, StateOf(vbar).max) << rows << " rows";
        EXPECT_EQ(0, StateOf(hbar).min);
        EXPECT_EQ(450 - client.right, StateOf(hbar).max) << rows << " rows";
    }
    // A range the application set on a bar is the layout's again after the next append.
    ::SetScrollRange(hbar, SB_CTL, 3, 7, FALSE);
    ::SetScrollRange(vbar, SB_CTL, 0, 9, FALSE);
    Append(1);
    EXPECT_EQ(0, StateOf(hbar).min);
    EXPECT_EQ(450 - client.right, StateOf(hbar).max);
    EXPECT_EQ(list->GetTitleHeight() + 41 * 34 - rowsHeight, StateOf(vbar).max);
    // Positions are kept through the appends.
    ScrollTo(list, true, 500);
    ScrollTo(list, false, 20);
    Append(5);
    EXPECT_EQ(500, StateOf(vbar).pos);
    EXPECT_EQ(20, StateOf(hbar).pos);
}

TEST_F(ListViewRectsTest, EveryAppendLeavesTheWholeClientToBePainted)
{
    MirlListView *list = MakeFilled(3);
    RECT client = {};
    ::GetClientRect(list->m_hWnd, &client);
    RECT update = {};
    auto invalid = [&]() {
        update = RECT();
        ::GetUpdateRect(list->m_hWnd, &update, FALSE);
        return &update;
    };
    EXPECT_TRUE(::EqualRect(&client, invalid()));
    for (int round = 0; round < 3; ++round) {
        // Painted: nothing is left to paint, and the next append asks for all of it again.
        ::UpdateWindow(list->m_hWnd);
        const RECT none = {};
        EXPECT_TRUE(::EqualRect(&none, invalid())) << "round " << round;
        Append(1);
        EXPECT_TRUE(::EqualRect(&client, invalid())) << "round " << round;
        Append(2);
        EXPECT_TRUE(::EqualRect(&client, invalid())) << "round " << round;
    }
    // Hidden and shown again, resized: still the whole client after an append.
    ::UpdateWindow(list->m_hWnd);
    ::ShowWindow(list->m_hWnd, SW_HIDE);
    ::ShowWindow(list->m_hWnd, SW_SHOW);
    ::UpdateWindow(list->m_hWnd);
    Append(1);
    EXPECT_TRUE(::EqualRect(&client, invalid()));
    ::MoveWindow(list->m_hWnd, 0, 0, 350, 260, FALSE);
    ::UpdateWindow(list->m_hWnd);
    Append(1);
    ::GetClientRect(list->m_hWnd, &client);
    EXPECT_EQ(350, client.right);
    EXPECT_TRUE(::EqualRect(&client, invalid()));
    // A paint into a picture the application asks for validates nothing, and the list is still
    // to be painted.
    mirltest::RenderWindow(list->m_hWnd);
    Append(1);
    EXPECT_TRUE(::EqualRect(&client, invalid()));
}

} // namespace
