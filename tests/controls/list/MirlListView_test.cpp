// The list view through real messages: rows of an application class, columns and the header's
// images, the two bars, scrolling, hover, selection, notifications with the row, the parent
// changing rows inside a notification, large lists, painting and leaks.
#include "MirlListTestSupport.h"
#include "MirlLeakCounters.h"
#include "MirlPixelTest.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

::testing::Environment *const g_Mirl = ::testing::AddGlobalTestEnvironment(new mirltest::SkinEnvironment(L"lists"));

typedef MirlListView::INFORMATION_ITEM Row;

// What the rows did, in order.
struct RowLog {
    int added = 0;
    int removed = 0;
    int deleted = 0;
    int cells = 0;
};

// A row of the application's class: each cell filled with a colour of its column.
class SongRow : public Row {
public:
    explicit SongRow(RowLog *log) : m_Log(log) {}
    ~SongRow() override
    {
        if (m_Log != nullptr) {
            ++m_Log->deleted;
        }
    }
    void PaintCell(Gdiplus::Graphics &graphics, int column, RECT *cell) override
    {
        if (m_Log != nullptr) {
            ++m_Log->cells;
        }
        static const Gdiplus::ARGB colours[] = {0xFFFFD700, 0xFF9400D3, 0xFF00CED1};
        Gdiplus::SolidBrush brush(Gdiplus::Color(colours[column % 3]));
        // An inset block: the row's band stays visible around it.
        graphics.FillRectangle(&brush, cell->left + 2, cell->top + 8, cell->right - cell->left - 4, 10);
    }
    void OnAdded() override
    {
        if (m_Log != nullptr) {
            ++m_Log->added;
        }
    }
    void OnRemoved() override
    {
        if (m_Log != nullptr) {
            ++m_Log->removed;
        }
    }

private:
    RowLog *m_Log;
};

std::vector<Row *> RowsOf(MirlListView *list)
{
    return std::vector<Row *>(list->GetItems()->begin(), list->GetItems()->end());
}

int BarPos(HWND bar)
{
    SCROLLINFO info = {};
    info.cbSize = sizeof(info);
    info.fMask = SIF_POS | SIF_RANGE;
    ::GetScrollInfo(bar, SB_CTL, &info);
    return info.nPos;
}

int BarMax(HWND bar)
{
    SCROLLINFO info = {};
    info.cbSize = sizeof(info);
    info.fMask = SIF_RANGE;
    ::GetScrollInfo(bar, SB_CTL, &info);
    return info.nMax;
}

class ListViewTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        mirltest::ParkCursor();
        ASSERT_TRUE(m_Holder.Open(L"Host"));
        ASSERT_TRUE(mirltest::Activate(m_Holder.m_hWnd));
    }
    void TearDown() override
    {
        ::ReleaseCapture();
        m_List.Destroy();
        m_Holder.DestroyWindow();
        mirltest::ParkCursor();
    }
    MirlListView *Make(const wchar_t *name = L"Songs")
    {
        m_List.Create(&m_Holder, m_Holder.m_hWnd, name);
        mirltest::FlushMessages();
        return m_List.get();
    }
    // Three columns 100, 80 and 70 wide, and rows.
    MirlListView *MakeFilled(int rows)
    {
        MirlListView *list = Make();
        list->AddColumn(nullptr, L"Title", 100);
        list->AddColumn(nullptr, L"Artist", 80);
        list->AddColumn(nullptr, L"Time", 70);
        for (int i = 0; i < rows; ++i) {
            list->AddItem(new SongRow(&m_Log));
        }
        return list;
    }

    mirltest::ListHolder m_Holder;
    mirltest::Scoped<MirlListView> m_List;
    RowLog m_Log;
};

TEST_F(ListViewTest, CreatedWithTheFourHeaderImagesAndTwoHiddenSystemBars)
{
    MirlListView *list = Make();
    ASSERT_NE(nullptr, list->m_hWnd);
    for (int i = 0; i < 4; ++i) {
        EXPECT_NE(nullptr, list->GetHeaderImage(i)) << i;
    }
    wchar_t name[32] = {};
    ASSERT_NE(nullptr, list->GetHScrollBar());
    ::GetClassNameW(list->GetHScrollBar(), name, 32);
    EXPECT_STREQ(L"ScrollBar", name);
    EXPECT_EQ(5, ::GetDlgCtrlID(list->GetHScrollBar()));
    EXPECT_EQ(6, ::GetDlgCtrlID(list->GetVScrollBar()));
    EXPECT_FALSE(::IsWindowVisible(list->GetHScrollBar()));
    EXPECT_FALSE(::IsWindowVisible(list->GetVScrollBar()));
    EXPECT_EQ(21, list->GetTitleHeight());
    EXPECT_EQ(34, list->GetRowHeight());
    EXPECT_EQ(0, list->GetRowBlank());
    EXPECT_TRUE(list->GetAllowMultiSelection());
    EXPECT_EQ(nullptr, list->GetColumnText(0));
    EXPECT_EQ(0, list->GetColumnWidth(0));
    // From the factory too.
    MirlUiWindow *songs = static_cast<MirlUiWindow *>(MirlUI::Instance()->GetUiElement(L"Songs", UI_ELEMENT_WINDOW));
    ASSERT_NE(nullptr, songs);
    MirlWindowBase *made = MirlWindowBase::CreateMirlWindow(&m_Holder, songs);
    ASSERT_NE(nullptr, dynamic_cast<MirlListView *>(made));
    made->DestroyWindow();
    delete made;
}

TEST_F(ListViewTest, NoColumnsMeansNoWidthAndTheEmptyHeaderImage)
{
    MirlListView *list = Make();
    list->AddItem(new SongRow(&m_Log));
    int width = -1;
    int height = -1;
    list->GetNeededWidthAndHeight(width, height);
    EXPECT_EQ(0, width);
    EXPECT_EQ(21 + 34, height);
    const Row *row = RowsOf(list)[0];
    EXPECT_EQ(0, row->rect.left);
    EXPECT_EQ(0, row->rect.right);
    const mirltest::Dib picture = mirltest::RenderWindow(list->m_hWnd);
    // VistaBtn0 across the whole header: olive caps of 4, its lighter middle stretched.
    EXPECT_EQ(0x808000u, picture.Pixel(0, 5));
    EXPECT_EQ(0x808000u, picture.Pixel(3, 20));
    EXPECT_EQ(0xBEBE3Cu, picture.Pixel(4, 5));
    EXPECT_EQ(0xBEBE3Cu, picture.Pixel(295, 5));
    EXPECT_EQ(0x505000u, picture.Pixel(296, 5));
    EXPECT_EQ(0x505000u, picture.Pixel(299, 20));
    EXPECT_EQ(0xF0F0E8u, picture.Pixel(150, 21)); // the rows begin at 21
    EXPECT_EQ(0, m_Log.cells);
}

TEST_F(ListViewTest, ARowAddedBeforeTheWindowIsRowHeightHighAndLayoutAddsTheBlank)
{
    MirlListView *list = m_List.get();
    list->SetRowBlank(6);
    SongRow *row = new SongRow(&m_Log);
    EXPECT_EQ(1, list->AddItem(row));
    EXPECT_EQ(1, m_Log.added);
    EXPECT_EQ(21, row->rect.top);
    EXPECT_EQ(21 + 34, row->rect.bottom);
    SongRow *second = new SongRow(&m_Log);
    list->AddItem(second);
    EXPECT_EQ(55, second->rect.top);
    EXPECT_EQ(89, second->rect.bottom);
    Make();
    EXPECT_EQ(21, row->rect.top);
    EXPECT_EQ(21 + 40, row->rect.bottom);
    EXPECT_EQ(61, second->rect.top);
    EXPECT_EQ(101, second->rect.bottom);
}

TEST_F(ListViewTest, SetRowHeightMovesNothingUntilTheNextLayout)
{
    MirlListView *list = MakeFilled(3);
    std::vector<Row *> rows = RowsOf(list);
    ::ValidateRect(list->m_hWnd, nullptr);
    list->SetRowHeight(20);
    EXPECT_TRUE(::GetUpdateRect(list->m_hWnd, nullptr, FALSE)); // invalidated
    EXPECT_EQ(55, rows[1]->rect.top);
    EXPECT_EQ(89, rows[1]->rect.bottom);
    list->AddItem(new SongRow(&m_Log));
    EXPECT_EQ(41, rows[1]->rect.top);
    EXPECT_EQ(61, rows[1]->rect.bottom);
    EXPECT_EQ(81, RowsOf(list)[3]->rect.top);
    ::ValidateRect(list->m_hWnd, nullptr);
    list->SetRowHeight(20); // the same value: nothing
    EXPECT_FALSE(::GetUpdateRect(list->m_hWnd, nullptr, FALSE));
}

TEST_F(ListViewTest, AfterClearItemsTheHeaderHasNoImagesAlsoWhenRowsComeBack)
{
    MirlListView *list = MakeFilled(2);
    list->ClearItems();
    EXPECT_EQ(2, m_Log.removed);
    EXPECT_EQ(2, m_Log.deleted);
    EXPECT_EQ(0, list->GetItemCount());
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(nullptr, list->GetHeaderImage(i)) << i;
    }
    list->AddItem(new SongRow(&m_Log));
    const mirltest::Dib picture = mirltest::RenderWindow(list->m_hWnd);
    EXPECT_EQ(0xF0F0E8u, picture.Pixel(2, 5));   // no header image: the background
    EXPECT_EQ(0xF0F0E8u, picture.Pixel(150, 5));
}

TEST_F(ListViewTest, RowsThatJustFitShowTheVerticalBarWhenTheOverflowIsUnderTheHeader)
{
    MirlListView *list = Make();
    list->AddColumn(nullptr, L"Title", 250);
    for (int i = 0; i < 5; ++i) {
        list->AddItem(new SongRow(&m_Log));
    }
    // 5 rows of 34 are 170, under the 179 of the rows area; with the header they need 191.
    EXPECT_TRUE(::IsWindowVisible(list->GetVScrollBar()));
    EXPECT_FALSE(::IsWindowVisible(list->GetHScrollBar()));
    EXPECT_EQ(12, BarMax(list->GetVScrollBar()));
    // The thickness the system gave the right-aligned bar, which layout reads back.
    RECT bar = mirltest::PlaceInParent(list->GetVScrollBar());
    const int barWidth = bar.right - bar.left;
    EXPECT_GE(barWidth, ::GetSystemMetrics(SM_CXVSCROLL));
    EXPECT_EQ(300 - barWidth, bar.left);
    EXPECT_EQ(21, bar.top);
    EXPECT_EQ(300, bar.right);
    EXPECT_EQ(21 + 179 - 21, bar.bottom); // short of the bottom by the header's height
    EXPECT_EQ(300 - barWidth, list->GetRowsRect().right);
}

TEST_F(ListViewTest, AddingARowWhileScrolledShowsTheRowsFromOffsetZeroWithTheBarWhereItWas)
{
    MirlListView *list = MakeFilled(20);
    HWND bar = list->GetVScrollBar();
    for (int i = 0; i < 3; ++i) {
        ::SendMessageW(list->m_hWnd, WM_VSCROLL, SB_LINEDOWN, reinterpret_cast<LPARAM>(bar));
    }
    EXPECT_EQ(3, BarPos(bar));
    EXPECT_EQ(18, RowsOf(list)[0]->rect.top);
    EXPECT_EQ(list->m_hWnd, ::GetFocus()); // the vertical bar's scroll focuses the list
    list->AddItem(new SongRow(&m_Log));
    EXPECT_EQ(21, RowsOf(list)[0]->rect.top);
    EXPECT_EQ(21 + 20 * 34, RowsOf(list)[20]->rect.top);
    EXPECT_EQ(3, BarPos(bar));
    // The next scroll brings them together again.
    ::SendMessageW(list->m_hWnd, WM_VSCROLL, SB_PAGEDOWN, reinterpret_cast<LPARAM>(bar));
    EXPECT_EQ(51, BarPos(bar));
    EXPECT_EQ(21 - 51, RowsOf(list)[0]->rect.top);
}

TEST_F(ListViewTest, ScrollCodesAndTheHorizontalBar)
{
    MirlListView *list = MakeFilled(20);
    list->AddColumn(nullptr, L"Album", 200); // 450 wide
    HWND hbar = list->GetHScrollBar();
    HWND vbar = list->GetVScrollBar();
    ASSERT_TRUE(::IsWindowVisible(hbar));
    ::SendMessageW(list->m_hWnd, WM_HSCROLL, SB_PAGERIGHT, reinterpret_cast<LPARAM>(hbar));
    EXPECT_EQ(5, BarPos(hbar));
    EXPECT_EQ(-5, list->GetColumn(0)->rect.left);
    EXPECT_EQ(-5, RowsOf(list)[0]->rect.left);
    ::SendMessageW(list->m_hWnd, WM_HSCROLL, SB_LEFT, reinterpret_cast<LPARAM>(hbar));
    EXPECT_EQ(4, BarPos(hbar)); // a line, not the start
    ::SendMessageW(list->m_hWnd, WM_HSCROLL, MAKEWPARAM(SB_THUMBTRACK, 60), reinterpret_cast<LPARAM>(hbar));
    EXPECT_EQ(60, BarPos(hbar));
    ::SendMessageW(list->m_hWnd, WM_HSCROLL, MAKEWPARAM(SB_THUMBPOSITION, 9999), reinterpret_cast<LPARAM>(hbar));
    EXPECT_EQ(450 - 300, BarPos(hbar)); // clamped to the range
    ::SendMessageW(list->m_hWnd, WM_HSCROLL, SB_ENDSCROLL, reinterpret_cast<LPARAM>(hbar));
    EXPECT_EQ(150, BarPos(hbar));
    // A message from another window is not the list's.
    ::SendMessageW(list->m_hWnd, WM_VSCROLL, SB_LINEDOWN, reinterpret_cast<LPARAM>(hbar));
    EXPECT_EQ(0, BarPos(vbar));
    ::SendMessageW(list->m_hWnd, WM_VSCROLL, SB_PAGEDOWN, reinterpret_cast<LPARAM>(vbar));
    EXPECT_EQ(48, BarPos(vbar));
    EXPECT_EQ(21 - 48, RowsOf(list)[0]->rect.top);
    EXPECT_EQ(-150, RowsOf(list)[0]->rect.left);
}

TEST_F(ListViewTest, TheMoveThatStartsHoverFindsTheRowAndTellsTheParent)
{
    MirlListView *list = MakeFilled(3);
    Row *second = RowsOf(list)[1];
    mirltest::MoveTo(list->m_hWnd, 50, 55 + 5, 0);
    EXPECT_TRUE(list->IsHovering());
    EXPECT_EQ(list->m_hWnd, ::GetCapture());
    EXPECT_EQ(second, list->GetHoverItem());
    ASSERT_EQ(1u, m_Holder.m_Notices.size());
    EXPECT_EQ(static_cast<UINT>(WM_USER + 100), m_Holder.m_Notices[0].first);
    EXPECT_EQ(reinterpret_cast<WPARAM>(second), m_Holder.m_Notices[0].second);
    // The same row again tells nothing more.
    mirltest::MoveTo(list->m_hWnd, 60, 55 + 6, 0);
    EXPECT_EQ(1u, m_Holder.m_Notices.size());
}

TEST_F(ListViewTest, MovingOntoTheEmptyAreaBelowTheRowsClearsTheHoverSilently)
{
    MirlListView *list = MakeFilled(3);
    mirltest::MoveTo(list->m_hWnd, 50, 30, 0);
    ASSERT_NE(nullptr, list->GetHoverItem());
    m_Holder.m_Notices.clear();
    mirltest::MoveTo(list->m_hWnd, 50, 150, 0);
    EXPECT_EQ(nullptr, list->GetHoverItem());
    EXPECT_TRUE(m_Holder.m_Notices.empty());
    EXPECT_TRUE(list->IsHovering());
}

TEST_F(ListViewTest, WithTheButtonHeldAndNoHoverMovesAreIgnored)
{
    MirlListView *list = MakeFilled(3);
    mirltest::MoveTo(list->m_hWnd, 50, 30, MK_LBUTTON);
    EXPECT_FALSE(list->IsHovering());
    EXPECT_EQ(nullptr, list->GetHoverItem());
    EXPECT_NE(list->m_hWnd, ::GetCapture());
    EXPECT_TRUE(m_Holder.m_Notices.empty());
}

TEST_F(ListViewTest, HoverOverTheHeaderAndItsEnd)
{
    MirlListView *list = MakeFilled(3);
    mirltest::MoveTo(list->m_hWnd, 120, 10, 0);
    ASSERT_NE(nullptr, list->GetHoverColumn());
    EXPECT_EQ(L"Artist", list->GetHoverColumn()->text);
    EXPECT_EQ(nullptr, list->GetHoverItem());
    ::SendMessageW(list->m_hWnd, WM_KILLFOCUS, 0, 0);
    EXPECT_FALSE(list->IsHovering());
    EXPECT_EQ(nullptr, list->GetHoverColumn());
    const UINT clearing[] = {WM_CANCELMODE, WM_ACTIVATE, WM_ENABLE};
    for (UINT message : clearing) {
        ::ReleaseCapture();
        mirltest::MoveTo(list->m_hWnd, 50, 30, 0);
        ASSERT_TRUE(list->IsHovering());
        ::SendMessageW(list->m_hWnd, message, message == WM_ACTIVATE ? WA_INACTIVE : 0, 0);
        EXPECT_FALSE(list->IsHovering()) << message;
        EXPECT_EQ(nullptr, list->GetHoverItem()) << message;
    }
}

TEST_F(ListViewTest, ClickSelectsAndTellsTheParentEvenWhenAlreadySelected)
{
    MirlListView *list = MakeFilled(3);
    std::vector<Row *> rows = RowsOf(list);
    ::SendMessageW(list->m_hWnd, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(50, 60));
    ::SendMessageW(list->m_hWnd, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(50, 60));
    ::SendMessageW(list->m_hWnd, WM_LBUTTONDBLCLK, MK_LBUTTON, MAKELPARAM(50, 60));
    ASSERT_EQ(3u, m_Holder.m_Notices.size());
    EXPECT_EQ(static_cast<UINT>(WM_USER + 101), m_Holder.m_Notices[0].first);
    EXPECT_EQ(static_cast<UINT>(WM_USER + 101), m_Holder.m_Notices[1].first);
    EXPECT_EQ(static_cast<UINT>(WM_USER + 102), m_Holder.m_Notices[2].first);
    EXPECT_EQ(reinterpret_cast<WPARAM>(rows[1]), m_Holder.m_Notices[2].second);
    EXPECT_EQ(1, list->GetCurSel());
    EXPECT_NE(list->m_hWnd, ::GetCapture()); // a press takes no capture
    // Beside all rows: the selection goes.
    ::SendMessageW(list->m_hWnd, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(50, 190));
    EXPECT_EQ(-1, list->GetCurSel());
}

TEST_F(ListViewTest, CtrlAddsRowsUnderMultiSelectionAndDoesNothingWithout)
{
    MirlListView *list = MakeFilled(4);
    std::vector<Row *> rows = RowsOf(list);
    ::SendMessageW(list->m_hWnd, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(50, 100));
    ::SendMessageW(list->m_hWnd, WM_LBUTTONDOWN, MK_LBUTTON | MK_CONTROL, MAKELPARAM(50, 30));
    ::SendMessageW(list->m_hWnd, WM_LBUTTONDOWN, MK_LBUTTON | MK_CONTROL, MAKELPARAM(50, 30)); // stays
    EXPECT_TRUE(rows[0]->selected);
    EXPECT_FALSE(rows[1]->selected);
    EXPECT_TRUE(rows[2]->selected);
    EXPECT_EQ(0, list->GetCurSel()); // the first of several
    ::SendMessageW(list->m_hWnd, WM_LBUTTONDOWN, MK_LBUTTON | MK_CONTROL, MAKELPARAM(50, 190));
    EXPECT_TRUE(rows[0]->selected); // Ctrl beside the rows keeps them

    ::ValidateRect(list->m_hWnd, nullptr);
    list->SetAllowMultiSelection(false);
    EXPECT_FALSE(list->GetAllowMultiSelection());
    EXPECT_EQ(-1, list->GetCurSel()); // all cleared
    EXPECT_TRUE(::GetUpdateRect(list->m_hWnd, nullptr, FALSE));
    ::SendMessageW(list->m_hWnd, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(50, 100));
    ::SendMessageW(list->m_hWnd, WM_LBUTTONDOWN, MK_LBUTTON | MK_CONTROL, MAKELPARAM(50, 30));
    EXPECT_TRUE(rows[0]->selected);
    EXPECT_FALSE(rows[2]->selected);
    EXPECT_EQ(0, list->GetCurSel());
}

TEST_F(ListViewTest, GetCurSelAndSetCurSel)
{
    MirlListView *list = MakeFilled(0);
    EXPECT_EQ(-1, list->GetCurSel());
    for (int i = 0; i < 4; ++i) {
        list->AddItem(new SongRow(&m_Log));
    }
    std::vector<Row *> rows = RowsOf(list);
    rows[2]->selected = true;
    rows[3]->selected = true;
    EXPECT_EQ(2, list->GetCurSel());
    list->SetCurSel(1);
    EXPECT_EQ(1, list->GetCurSel());
    EXPECT_FALSE(rows[2]->selected);
    const mirltest::Dib selected = mirltest::RenderWindow(list->m_hWnd);
    EXPECT_EQ(0x008080u, selected.Pixel(1, 55 + 2));
    ::ValidateRect(list->m_hWnd, nullptr);
    list->SetCurSel(-1);
    EXPECT_EQ(-1, list->GetCurSel());
    // Nothing is repainted until the next paint, which shows it.
    EXPECT_FALSE(::GetUpdateRect(list->m_hWnd, nullptr, FALSE));
    EXPECT_EQ(0xF0F0E8u, mirltest::RenderWindow(list->m_hWnd).Pixel(1, 55 + 2));
    list->SetCurSel(9);
    EXPECT_EQ(-1, list->GetCurSel());
}

TEST_F(ListViewTest, ThePointAtTheHeadersHeightCountsAsHeader)
{
    MirlListView *list = MakeFilled(2);
    ASSERT_EQ(21, RowsOf(list)[0]->rect.top);
    ::SendMessageW(list->m_hWnd, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(120, 5));
    ASSERT_NE(nullptr, list->GetCurColumn());
    EXPECT_EQ(L"Artist", list->GetCurColumn()->text);
    EXPECT_EQ(list->GetCurColumn(), list->GetPressedColumn());
    // y = 21 is the header's: no row is selected, and no column holds it (they end above it).
    ::SendMessageW(list->m_hWnd, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(120, 21));
    EXPECT_EQ(-1, list->GetCurSel());
    EXPECT_TRUE(m_Holder.m_Notices.empty());
    EXPECT_EQ(L"Artist", list->GetCurColumn()->text);
    EXPECT_EQ(L"Artist", list->GetPressedColumn()->text);
    // One pixel lower the row takes the press, and the pressed column is let go.
    ::SendMessageW(list->m_hWnd, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(120, 22));
    EXPECT_EQ(0, list->GetCurSel());
    EXPECT_EQ(nullptr, list->GetPressedColumn());
    EXPECT_EQ(L"Artist", list->GetCurColumn()->text);
}

TEST_F(ListViewTest, TheParentClearingTheRowsInsideAClickEndsTheWalk)
{
    MirlListView *list = MakeFilled(5);
    m_Holder.m_OnNotice = [list](UINT message, WPARAM) {
        if (message == WM_USER + 101) {
            list->ClearItems();
        }
    };
    ::SendMessageW(list->m_hWnd, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(50, 60));
    m_Holder.m_OnNotice = nullptr;
    EXPECT_EQ(0, list->GetItemCount());
    EXPECT_EQ(5, m_Log.deleted);
    // And adding inside the click: the new rows are walked like the others.
    list->AddItem(new SongRow(&m_Log));
    list->AddItem(new SongRow(&m_Log));
    m_Holder.m_OnNotice = [this, list](UINT, WPARAM) { list->AddItem(new SongRow(&m_Log)); };
    ::SendMessageW(list->m_hWnd, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(50, 30));
    m_Holder.m_OnNotice = nullptr;
    EXPECT_EQ(3, list->GetItemCount());
    EXPECT_EQ(0, list->GetCurSel());
    mirltest::RenderWindow(list->m_hWnd);
}

TEST_F(ListViewTest, ClearItemsWithAHoveredRowLeavesNoPointerToIt)
{
    MirlListView *list = MakeFilled(3);
    mirltest::MoveTo(list->m_hWnd, 50, 30, 0);
    ASSERT_NE(nullptr, list->GetHoverItem());
    list->ClearItems();
    EXPECT_EQ(nullptr, list->GetHoverItem());
    mirltest::RenderWindow(list->m_hWnd);
    mirltest::MoveTo(list->m_hWnd, 50, 60, 0);
    EXPECT_EQ(nullptr, list->GetHoverItem());
}

TEST_F(ListViewTest, ColumnsKeptByIndexSurviveTheVectorGrowing)
{
    MirlListView *list = MakeFilled(1);
    mirltest::MoveTo(list->m_hWnd, 120, 10, 0);
    ::SendMessageW(list->m_hWnd, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(200, 10));
    ASSERT_NE(nullptr, list->GetHoverColumn());
    for (int i = 0; i < 64; ++i) {
        list->AddColumn(nullptr, L"More", 10);
    }
    EXPECT_EQ(L"Artist", list->GetHoverColumn()->text);
    EXPECT_EQ(L"Time", list->GetPressedColumn()->text);
    EXPECT_EQ(L"Title", list->GetCurColumn()->text); // AddColumn makes the first current
    mirltest::RenderWindow(list->m_hWnd);
}

TEST_F(ListViewTest, AppendingLaysOutTheNewRowAlone)
{
    MirlListView *list = MakeFilled(4);
    Row *first = RowsOf(list)[0];
    const RECT marker = {-7, -7, -7, -7};
    first->rect = marker; // an appended row must not rewrite the rows above it
    list->AddItem(new SongRow(&m_Log));
    EXPECT_EQ(-7, first->rect.top);
    EXPECT_EQ(21 + 4 * 34, RowsOf(list)[4]->rect.top);
    EXPECT_EQ(250, RowsOf(list)[4]->rect.right);
    // A change of the row height lays them all out again.
    list->SetRowHeight(30);
    list->AddItem(new SongRow(&m_Log));
    EXPECT_EQ(21, first->rect.top);
    EXPECT_EQ(21 + 5 * 30, RowsOf(list)[5]->rect.top);
}

TEST_F(ListViewTest, PaintingWalksOnlyTheVisibleRows)
{
    MirlListView *list = MakeFilled(1000);
    mirltest::RenderWindow(list->m_hWnd);
    // 179 pixels of rows, 34 each: rows 0 to 5 reach into them.
    EXPECT_EQ(6, list->GetPaintedRows());
    HWND bar = list->GetVScrollBar();
    ::SendMessageW(list->m_hWnd, WM_VSCROLL, MAKEWPARAM(SB_THUMBPOSITION, 17000), reinterpret_cast<LPARAM>(bar));
    m_Log.cells = 0;
    mirltest::RenderWindow(list->m_hWnd);
    EXPECT_EQ(7, list->GetPaintedRows());
    EXPECT_EQ(7 * 3, m_Log.cells);
}

// Drags the thumb of a vertical bar to its bottom with the system's own tracking: the press
// on the thumb starts the bar's loop, which takes the queued move and release.
int DragThumbToTheEnd(HWND list, HWND bar)
{
    RECT client = {};
    ::GetClientRect(bar, &client);
    const int x = client.right / 2;
    const int start = client.right + 3; // the thumb sits at the top, below the arrow
    const int end = client.bottom - 2;
    // While the bar holds the capture, Wine moves it to the real pointer: put that at the end.
    POINT screen = {x, end};
    ::ClientToScreen(bar, &screen);
    ::SetCursorPos(screen.x, screen.y);
    mirltest::MessageSequence sequence;
    mirltest::ControlRecorder spy(list, sequence);
    ::PostMessageW(bar, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(x, end));
    ::PostMessageW(bar, WM_LBUTTONUP, 0, MAKELPARAM(x, end));
    ::SendMessageW(bar, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(x, start));
    mirltest::FlushMessages();
    return static_cast<int>(sequence.Count(WM_VSCROLL));
}

TEST_F(ListViewTest, AHundredThousandRowsFillScrollByTheThumbToTheEndAndClearWithoutGrowth)
{
    // A first round, so that what the system keeps after a thumb drag is there before counting.
    MirlListView *list = MakeFilled(1000);
    DragThumbToTheEnd(list->m_hWnd, list->GetVScrollBar());
    mirltest::RenderWindow(list->m_hWnd);
    list->ClearItems();
    mirltest::FlushMessages();
    const size_t heap = mirltest::BusyHeapBytes();
    const int gdi = mirltest::LiveGdiObjects();
    for (int i = 0; i < 100000; ++i) {
        list->AddItem(new SongRow(&m_Log));
    }
    HWND bar = list->GetVScrollBar();
    const int maximum = BarMax(bar);
    EXPECT_EQ(21 + 100000 * 34 - 179, maximum);
    EXPECT_GT(DragThumbToTheEnd(list->m_hWnd, bar), 0);
    EXPECT_EQ(maximum, BarPos(bar));
    Row *last = list->GetItems()->back();
    EXPECT_EQ(179, last->rect.bottom); // the last row is on the screen
    EXPECT_EQ(179 - 34, last->rect.top);
    mirltest::RenderWindow(list->m_hWnd);
    EXPECT_EQ(5, list->GetPaintedRows()); // bottoms 179, 145, 111, 77 and 43
    list->ClearItems();
    EXPECT_EQ(101000, m_Log.deleted);
    mirltest::FlushMessages();
    EXPECT_EQ(gdi, mirltest::LiveGdiObjects());
    EXPECT_LE(mirltest::BusyHeapBytes(), heap + 4096);
}

TEST_F(ListViewTest, RowsAndHeaderPaint)
{
    MirlListView *list = MakeFilled(5);
    list->AddItem(new SongRow(&m_Log));
    std::vector<Row *> rows = RowsOf(list);
    ::SendMessageW(list->m_hWnd, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(120, 5)); // "Artist" current
    rows[1]->selected = true;
    rows[3]->selected = true;
    mirltest::MoveTo(list->m_hWnd, 220, 100, 0); // the fourth row hovers, selected
    mirltest::MoveTo(list->m_hWnd, 50, 165, 0);  // the fifth row hovers
    const mirltest::Dib picture = mirltest::RenderWindow(list->m_hWnd);
    // Header: "Title" at rest (blue caps), "Artist" current (red), the end beside "Time".
    EXPECT_EQ(0x0000C8u, picture.Pixel(0, 3));
    EXPECT_EQ(0x6464FFu, picture.Pixel(50, 3));
    EXPECT_EQ(0x00006Eu, picture.Pixel(99, 3));
    EXPECT_EQ(0xC80000u, picture.Pixel(100, 3));
    EXPECT_EQ(0x6E0000u, picture.Pixel(179, 3));
    EXPECT_EQ(0x0000C8u, picture.Pixel(180, 3));
    EXPECT_EQ(0xF0F0E8u, picture.Pixel(260, 3)); // nothing right of the last column
    // Rows: selected teal, hovered grey, the selected row under the mouse teal; cells inset.
    EXPECT_EQ(0x008080u, picture.Pixel(1, 55 + 2));
    EXPECT_EQ(0x008080u, picture.Pixel(260, 123 + 2)); // the band spans the rows area
    EXPECT_EQ(0x808080u, picture.Pixel(1, 157 + 2));
    EXPECT_EQ(0xF0F0E8u, picture.Pixel(1, 21 + 2));
    EXPECT_EQ(0xFFD700u, picture.Pixel(10, 21 + 10));
    EXPECT_EQ(0x9400D3u, picture.Pixel(110, 21 + 10));
    EXPECT_EQ(0x00CED1u, picture.Pixel(190, 21 + 10));
    EXPECT_TRUE(mirltest::MatchesGolden(picture, "list_view_rows"));
}

TEST_F(ListViewTest, ABorderIsTwoPixelsOfAFixedBlue)
{
    MirlListView *list = Make(L"SongsFramed");
    const mirltest::Dib picture = mirltest::RenderWindow(list->m_hWnd);
    ASSERT_GT(picture.width(), 0);
    EXPECT_EQ(0x48D8FBu, picture.Pixel(picture.width() - 1, picture.height() / 2));
    EXPECT_EQ(0x48D8FBu, picture.Pixel(picture.width() / 2, picture.height() - 1));
}

TEST_F(ListViewTest, CreatingFillingAndDestroyingDoesNotGrow)
{
    auto cycle = [this]() {
        mirltest::Scoped<MirlListView> list;
        list.Create(&m_Holder, m_Holder.m_hWnd, L"Songs");
        list->AddColumn(new Gdiplus::Bitmap(4, 4), L"Title", 120);
        for (int i = 0; i < 50; ++i) {
            list->AddItem(new SongRow(nullptr));
        }
        mirltest::MoveTo(list.hwnd(), 40, 40, 0);
        mirltest::RenderWindow(list.hwnd());
        ::ReleaseCapture();
    };
    for (int i = 0; i < 3; ++i) {
        cycle();
    }
    mirltest::FlushMessages();
    const size_t heap = mirltest::BusyHeapBytes();
    const int gdi = mirltest::LiveGdiObjects();
    for (int i = 0; i < 20; ++i) {
        cycle();
    }
    mirltest::FlushMessages();
    EXPECT_EQ(gdi, mirltest::LiveGdiObjects());
    EXPECT_LE(mirltest::BusyHeapBytes(), heap + 4096);
}

} // namespace
