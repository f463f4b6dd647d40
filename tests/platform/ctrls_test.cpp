// WTL control wrappers on the real system controls, and CCustomDraw.
#include "AtlTestSupport.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

using WTL::CRect;

namespace {

std::wstring TextOf(HWND hWnd)
{
    wchar_t buffer[128] = {};
    GetWindowTextW(hWnd, buffer, 128);
    return buffer;
}

class CtrlsTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() { atltest::InitControls(); }
    void SetUp() override { ASSERT_NE(nullptr, parent.hwnd()); }
    // The parent records WM_COMMAND and answers 0.
    atltest::Recorder parent{{WM_COMMAND}};
};

TEST_F(CtrlsTest, ClassNames)
{
    EXPECT_STREQ(L"STATIC", WTL::CStatic::GetWndClassName());
    EXPECT_STREQ(L"BUTTON", WTL::CButton::GetWndClassName());
    EXPECT_STREQ(L"EDIT", WTL::CEdit::GetWndClassName());
    EXPECT_STREQ(L"msctls_progress32", WTL::CProgressBarCtrl::GetWndClassName());
    EXPECT_STREQ(L"msctls_updown32", WTL::CUpDownCtrl::GetWndClassName());
    EXPECT_STREQ(L"msctls_trackbar32", WTL::CTrackBarCtrl::GetWndClassName());
    EXPECT_EQ(nullptr, ATL::CWindow::GetWndClassName());
}

TEST_F(CtrlsTest, ButtonCheckStyleStateAndClick)
{
    WTL::CButton b;
    CRect rc(0, 0, 80, 20);
    ASSERT_NE(nullptr, b.Create(parent.hwnd(), rc, L"box", WS_CHILD | WS_VISIBLE | BS_AUTOCHECKBOX, 0, 10U));
    EXPECT_EQ(static_cast<UINT>(BS_AUTOCHECKBOX), b.GetButtonStyle());
    EXPECT_EQ(BST_UNCHECKED, b.GetCheck());
    b.SetCheck(BST_CHECKED);
    EXPECT_EQ(BST_CHECKED, b.GetCheck());
    EXPECT_EQ(static_cast<UINT>(BST_CHECKED), b.GetState() & BST_CHECKED);

    b.Click();
    EXPECT_EQ(BST_UNCHECKED, b.GetCheck());
    const auto commands = parent.Of(WM_COMMAND);
    ASSERT_EQ(1u, commands.size());
    EXPECT_EQ(MAKEWPARAM(10, BN_CLICKED), commands[0].wParam);
    EXPECT_EQ(reinterpret_cast<LPARAM>(b.m_hWnd), commands[0].lParam);

    b.SetState(TRUE);
    EXPECT_EQ(static_cast<UINT>(BST_PUSHED), b.GetState() & BST_PUSHED);
    b.SetState(FALSE);
    EXPECT_EQ(0u, b.GetState() & BST_PUSHED);

    b.SetButtonStyle(BS_PUSHBUTTON, FALSE);
    EXPECT_EQ(static_cast<UINT>(BS_PUSHBUTTON), b.GetButtonStyle());
}

TEST_F(CtrlsTest, ButtonImages)
{
    WTL::CButton b;
    CRect rc(0, 0, 80, 20);
    ASSERT_NE(nullptr, b.Create(parent.hwnd(), rc, nullptr, WS_CHILD | BS_BITMAP));
    HDC screen = GetDC(nullptr);
    HBITMAP bitmap = CreateCompatibleBitmap(screen, 8, 8);
    ReleaseDC(nullptr, screen);
    EXPECT_EQ(nullptr, b.SetBitmap(bitmap));
    EXPECT_EQ(bitmap, b.GetBitmap());
    EXPECT_EQ(bitmap, b.SetBitmap(nullptr));
    b.DestroyWindow();
    DeleteObject(bitmap);
}

TEST_F(CtrlsTest, StaticIconAndBitmap)
{
    WTL::CStatic s;
    CRect rc(0, 0, 40, 40);
    ASSERT_NE(nullptr, s.Create(parent.hwnd(), rc, nullptr, WS_CHILD | SS_BITMAP));
    HDC screen = GetDC(nullptr);
    HBITMAP bitmap = CreateCompatibleBitmap(screen, 8, 8);
    ReleaseDC(nullptr, screen);
    EXPECT_EQ(nullptr, s.SetBitmap(bitmap));
    EXPECT_EQ(bitmap, s.GetBitmap());
    s.DestroyWindow();
    DeleteObject(bitmap);

    WTL::CStatic icon;
    ASSERT_NE(nullptr, icon.Create(parent.hwnd(), rc, nullptr, WS_CHILD | SS_ICON));
    HICON hIcon = LoadIconW(nullptr, IDI_APPLICATION);
    icon.SetIcon(hIcon);
    EXPECT_EQ(hIcon, icon.GetIcon());
}

TEST_F(CtrlsTest, EditSelectionAndReplacement)
{
    WTL::CEdit e;
    CRect rc(0, 0, 200, 20);
    ASSERT_NE(nullptr, e.Create(parent.hwnd(), rc, L"hello world", WS_CHILD | WS_VISIBLE | ES_AUTOHSCROLL));
    e.SetSel(2, 5);
    int start = -1, end = -1;
    e.GetSel(start, end);
    EXPECT_EQ(2, start);
    EXPECT_EQ(5, end);
    EXPECT_EQ(static_cast<DWORD>(MAKELONG(2, 5)), e.GetSel());
    e.ReplaceSel(L"XY", TRUE);
    EXPECT_EQ(L"heXY world", TextOf(e));
    EXPECT_TRUE(e.CanUndo());
    EXPECT_TRUE(e.Undo());
    EXPECT_EQ(L"hello world", TextOf(e));

    e.SetSelAll();
    EXPECT_EQ(static_cast<DWORD>(MAKELONG(0, 11)), e.GetSel());
    e.SetSel(static_cast<DWORD>(MAKELONG(3, 4)));
    EXPECT_EQ(static_cast<DWORD>(MAKELONG(3, 4)), e.GetSel());
    e.Clear();
    EXPECT_EQ(L"helo world", TextOf(e));
}

TEST_F(CtrlsTest, EditLimitsModifyPasswordAndMargins)
{
    WTL::CEdit e;
    CRect rc(0, 0, 200, 20);
    ASSERT_NE(nullptr, e.Create(parent.hwnd(), rc, L"", WS_CHILD | WS_VISIBLE));
    e.LimitText(4);
    EXPECT_EQ(4u, e.GetLimitText());
    e.SetLimitText(9);
    EXPECT_EQ(9u, e.GetLimitText());

    EXPECT_FALSE(e.GetModify());
    e.SetModify();
    EXPECT_TRUE(e.GetModify());

    e.SetPasswordChar(L'*');
    EXPECT_EQ(L'*', e.GetPasswordChar());

    EXPECT_TRUE(e.SetReadOnly());
    EXPECT_EQ(static_cast<DWORD>(ES_READONLY), e.GetStyle() & ES_READONLY);

    e.SetMargins(3, 4);
    EXPECT_EQ(static_cast<DWORD>(MAKELONG(3, 4)), e.GetMargins());
}

TEST_F(CtrlsTest, EditLines)
{
    WTL::CEdit e;
    CRect rc(0, 0, 200, 80);
    ASSERT_NE(nullptr, e.Create(parent.hwnd(), rc, L"a\r\nbb\r\nccc", WS_CHILD | WS_VISIBLE | ES_MULTILINE));
    EXPECT_EQ(3, e.GetLineCount());
    EXPECT_EQ(3, e.LineIndex(1));
    EXPECT_EQ(2, e.LineLength(e.LineIndex(1)));
    EXPECT_EQ(1, e.LineFromChar(4));
    EXPECT_EQ(0, e.GetFirstVisibleLine());
    wchar_t line[16] = {};
    EXPECT_EQ(3, e.GetLine(2, line, 15));
    EXPECT_EQ(L"ccc", std::wstring(line, 3));
    const POINT pt = e.PosFromChar(4);
    EXPECT_EQ(4, e.CharFromPos(pt));
}

TEST_F(CtrlsTest, ProgressRangePositionAndStep)
{
    WTL::CProgressBarCtrl p;
    CRect rc(0, 0, 100, 10);
    ASSERT_NE(nullptr, p.Create(parent.hwnd(), rc, nullptr, WS_CHILD | WS_VISIBLE));
    EXPECT_EQ(static_cast<DWORD>(MAKELONG(0, 100)), p.SetRange(10, 20)); // the former range
    int lower = 0, upper = 0;
    p.GetRange(lower, upper);
    EXPECT_EQ(10, lower);
    EXPECT_EQ(20, upper);
    EXPECT_EQ(10, p.GetRangeLimit(TRUE));
    EXPECT_EQ(20, p.GetRangeLimit(FALSE));
    PBRANGE range = {};
    p.GetRange(&range);
    EXPECT_EQ(10, range.iLow);
    EXPECT_EQ(20, range.iHigh);

    p.SetPos(15);
    EXPECT_EQ(15u, p.GetPos());
    EXPECT_EQ(15, p.OffsetPos(2));
    EXPECT_EQ(17u, p.GetPos());
    EXPECT_EQ(10, p.SetStep(1)); // the default step
    EXPECT_EQ(1, p.GetStep());
    EXPECT_EQ(17, p.StepIt());
    EXPECT_EQ(18u, p.GetPos());
}

TEST_F(CtrlsTest, ProgressFormerPositionIsCutToSixteenBits)
{
    WTL::CProgressBarCtrl p;
    CRect rc(0, 0, 100, 10);
    ASSERT_NE(nullptr, p.Create(parent.hwnd(), rc, nullptr, WS_CHILD | WS_VISIBLE));
    p.SetRange32(-5, 100000);
    int lower = 0, upper = 0;
    p.GetRange(lower, upper);
    EXPECT_EQ(-5, lower);
    EXPECT_EQ(100000, upper);
    p.SetPos(70000);
    EXPECT_EQ(70000u, p.GetPos());
    EXPECT_EQ(70000 - 65536, p.SetPos(1));
}

TEST_F(CtrlsTest, ProgressColours)
{
    WTL::CProgressBarCtrl p;
    CRect rc(0, 0, 100, 10);
    ASSERT_NE(nullptr, p.Create(parent.hwnd(), rc, nullptr, WS_CHILD | WS_VISIBLE));
    EXPECT_EQ(CLR_DEFAULT, p.SetBarColor(RGB(1, 2, 3)));
    EXPECT_EQ(RGB(1, 2, 3), p.GetBarColor());
    EXPECT_EQ(CLR_DEFAULT, p.SetBkColor(RGB(4, 5, 6)));
    EXPECT_EQ(RGB(4, 5, 6), p.GetBkColor());
}

TEST_F(CtrlsTest, UpDownWithABuddy)
{
    WTL::CEdit buddy;
    CRect rcEdit(0, 0, 60, 20);
    ASSERT_NE(nullptr, buddy.Create(parent.hwnd(), rcEdit, L"", WS_CHILD | WS_VISIBLE));
    WTL::CUpDownCtrl u;
    CRect rc(60, 0, 80, 20);
    ASSERT_NE(nullptr, u.Create(parent.hwnd(), rc, nullptr, WS_CHILD | WS_VISIBLE | UDS_SETBUDDYINT));
    EXPECT_EQ(nullptr, u.SetBuddy(buddy).m_hWnd);
    EXPECT_EQ(buddy.m_hWnd, u.GetBuddy().m_hWnd);

    u.SetRange(0, 50);
    int lower = -1, upper = -1;
    u.GetRange(lower, upper);
    EXPECT_EQ(0, lower);
    EXPECT_EQ(50, upper);
    EXPECT_EQ(static_cast<DWORD>(MAKELONG(50, 0)), u.GetRange());

    u.SetPos(20);
    EXPECT_EQ(L"20", TextOf(buddy));
    BOOL error = TRUE;
    EXPECT_EQ(20, u.GetPos(&error));
    EXPECT_FALSE(error);
    EXPECT_EQ(20, u.SetPos(30)); // the former position

    u.SetRange32(-100, 100000);
    u.GetRange32(lower, upper);
    EXPECT_EQ(-100, lower);
    EXPECT_EQ(100000, upper);
    u.SetPos32(75000);
    error = TRUE;
    EXPECT_EQ(75000, u.GetPos32(&error));
    EXPECT_FALSE(error);

    EXPECT_EQ(10, u.SetBase(16));
    EXPECT_EQ(16u, u.GetBase());

    UDACCEL accel[2] = {{0, 1}, {2, 5}};
    EXPECT_TRUE(u.SetAccel(2, accel));
    UDACCEL back[2] = {};
    EXPECT_EQ(2u, u.GetAccel(2, back));
    EXPECT_EQ(2u, back[1].nSec);
    EXPECT_EQ(5u, back[1].nInc);
}

TEST_F(CtrlsTest, UpDownWithoutABuddyReportsAnErrorForPos32)
{
    WTL::CUpDownCtrl u;
    CRect rc(60, 0, 80, 20);
    ASSERT_NE(nullptr, u.Create(parent.hwnd(), rc, nullptr, WS_CHILD | WS_VISIBLE));
    u.SetRange32(0, 10);
    u.SetPos32(4);
    BOOL error = FALSE;
    EXPECT_EQ(4, u.GetPos32(&error));
    EXPECT_TRUE(error);
}

TEST_F(CtrlsTest, TrackBarRangePositionAndSizes)
{
    WTL::CTrackBarCtrl t;
    CRect rc(0, 0, 200, 30);
    ASSERT_NE(nullptr, t.Create(parent.hwnd(), rc, nullptr, WS_CHILD | WS_VISIBLE | TBS_ENABLESELRANGE));
    t.SetRange(0, 100);
    EXPECT_EQ(0, t.GetRangeMin());
    EXPECT_EQ(100, t.GetRangeMax());
    t.SetRangeMin(5);
    t.SetRangeMax(50, TRUE);
    int lo = 0, hi = 0;
    t.GetRange(lo, hi);
    EXPECT_EQ(5, lo);
    EXPECT_EQ(50, hi);

    t.SetPos(30);
    EXPECT_EQ(30, t.GetPos());
    t.SetPos(80);
    EXPECT_EQ(50, t.GetPos()); // clamped by the control

    const int page = t.GetPageSize();
    EXPECT_EQ(page, t.SetPageSize(7));
    EXPECT_EQ(7, t.GetPageSize());
    EXPECT_EQ(1, t.SetLineSize(3));
    EXPECT_EQ(3, t.GetLineSize());

    t.SetSelection(10, 20);
    t.GetSelection(lo, hi);
    EXPECT_EQ(10, lo);
    EXPECT_EQ(20, hi);
    t.SetSelStart(12);
    EXPECT_EQ(12, t.GetSelStart());
    t.SetSelEnd(18);
    EXPECT_EQ(18, t.GetSelEnd());
    t.ClearSel(TRUE);
    EXPECT_EQ(t.GetSelStart(), t.GetSelEnd());

    CRect thumb, channel;
    t.GetThumbRect(&thumb);
    t.GetChannelRect(&channel);
    EXPECT_FALSE(thumb.IsRectEmpty());
    EXPECT_FALSE(channel.IsRectEmpty());
}

TEST_F(CtrlsTest, TrackBarTics)
{
    WTL::CTrackBarCtrl t;
    CRect rc(0, 0, 200, 30);
    ASSERT_NE(nullptr, t.Create(parent.hwnd(), rc, nullptr, WS_CHILD | WS_VISIBLE | TBS_AUTOTICKS));
    t.SetRange(0, 100);
    t.ClearTics();
    EXPECT_EQ(2u, t.GetNumTics()); // the two ends
    EXPECT_TRUE(t.SetTic(40));
    EXPECT_EQ(3u, t.GetNumTics());
    EXPECT_EQ(40, t.GetTic(0));
    ASSERT_NE(nullptr, t.GetTicArray());
    EXPECT_EQ(40u, t.GetTicArray()[0]);
    EXPECT_GT(t.GetTicPos(0), 0);
    t.ClearTics(TRUE);
    EXPECT_EQ(2u, t.GetNumTics());
}

TEST_F(CtrlsTest, TrackBarBuddy)
{
    WTL::CTrackBarCtrl t;
    CRect rc(0, 0, 200, 30);
    ASSERT_NE(nullptr, t.Create(parent.hwnd(), rc, nullptr, WS_CHILD | WS_VISIBLE));
    WTL::CStatic label;
    CRect rcLabel(0, 40, 40, 60);
    ASSERT_NE(nullptr, label.Create(parent.hwnd(), rcLabel, L"L", WS_CHILD | WS_VISIBLE));
    EXPECT_EQ(nullptr, t.SetBuddy(label, TRUE).m_hWnd);
    EXPECT_EQ(label.m_hWnd, t.GetBuddy(TRUE).m_hWnd);
    EXPECT_EQ(nullptr, t.GetBuddy(FALSE).m_hWnd);
}

// A wrapper over a base class other than CWindow keeps that base.
struct TaggedWindow : public ATL::CWindow {
    TaggedWindow(HWND hWnd = nullptr) : ATL::CWindow(hWnd) {}
    int m_tag = 7;
};

TEST_F(CtrlsTest, WrapperOverAnotherBase)
{
    WTL::CButtonT<TaggedWindow> b;
    CRect rc(0, 0, 80, 20);
    ASSERT_NE(nullptr, b.Create(parent.hwnd(), rc, L"t", WS_CHILD | BS_AUTORADIOBUTTON));
    EXPECT_EQ(7, b.m_tag);
    b.SetCheck(BST_CHECKED);
    EXPECT_EQ(BST_CHECKED, b.GetCheck());
    WTL::CButtonT<TaggedWindow> other;
    other = b.m_hWnd;
    EXPECT_EQ(BST_CHECKED, other.GetCheck());
}

// Custom draw of a track bar whose parent reflects notifications.

class ReflectingParent : public ATL::CWindowImpl<ReflectingParent, ATL::CWindow, ATL::CWinTraits<WS_POPUP | WS_VISIBLE, 0>> {
public:
    BEGIN_MSG_MAP(ReflectingParent)
        REFLECT_NOTIFICATIONS()
    END_MSG_MAP()
};

class DrawnTrackBar : public ATL::CWindowImpl<DrawnTrackBar, WTL::CTrackBarCtrl>,
                      public WTL::CCustomDraw<DrawnTrackBar> {
public:
    int m_prePaints = 0;
    std::set<DWORD_PTR> m_items;

    BEGIN_MSG_MAP(DrawnTrackBar)
        CHAIN_MSG_MAP_ALT(WTL::CCustomDraw<DrawnTrackBar>, 1)
        DEFAULT_REFLECTION_HANDLER()
    END_MSG_MAP()

    DWORD OnPrePaint(int, LPNMCUSTOMDRAW)
    {
        ++m_prePaints;
        return CDRF_NOTIFYITEMDRAW;
    }
    DWORD OnItemPrePaint(int, LPNMCUSTOMDRAW draw)
    {
        m_items.insert(draw->dwItemSpec);
        return CDRF_DODEFAULT;
    }
};

TEST_F(CtrlsTest, CustomDrawReachesTheControlByStage)
{
    ReflectingParent top;
    CRect rcTop(0, 0, 240, 60);
    ASSERT_NE(nullptr, top.Create(nullptr, rcTop));
    DrawnTrackBar t;
    CRect rc(10, 10, 210, 40);
    ASSERT_NE(nullptr, t.Create(top, rc));
    t.UpdateWindow();
    t.m_prePaints = 0;
    t.m_items.clear();

    t.Invalidate();
    t.UpdateWindow();
    EXPECT_EQ(1, t.m_prePaints);
    EXPECT_EQ(1u, t.m_items.count(TBCD_THUMB));
    EXPECT_EQ(1u, t.m_items.count(TBCD_CHANNEL));
    top.DestroyWindow();
}

// The dispatch table: each stage goes to its own overridable, unknown stages are not handled.
class StageProbe : public WTL::CCustomDraw<StageProbe> {
public:
    DWORD OnPrePaint(int, LPNMCUSTOMDRAW) { return 1; }
    DWORD OnPostPaint(int, LPNMCUSTOMDRAW) { return 2; }
    DWORD OnPreErase(int, LPNMCUSTOMDRAW) { return 3; }
    DWORD OnPostErase(int, LPNMCUSTOMDRAW) { return 4; }
    DWORD OnItemPrePaint(int, LPNMCUSTOMDRAW) { return 5; }
    DWORD OnItemPostPaint(int, LPNMCUSTOMDRAW) { return 6; }
    DWORD OnItemPreErase(int, LPNMCUSTOMDRAW) { return 7; }
    DWORD OnItemPostErase(int, LPNMCUSTOMDRAW) { return 8; }
    DWORD OnSubItemPrePaint(int, LPNMCUSTOMDRAW) { return 9; }
};

TEST(CustomDrawTest, EachStageHasItsOwnHandler)
{
    struct Row {
        DWORD stage;
        LRESULT expected;
    };
    const Row rows[] = {
        {CDDS_PREPAINT, 1},     {CDDS_POSTPAINT, 2},     {CDDS_PREERASE, 3},
        {CDDS_POSTERASE, 4},    {CDDS_ITEMPREPAINT, 5},  {CDDS_ITEMPOSTPAINT, 6},
        {CDDS_ITEMPREERASE, 7}, {CDDS_ITEMPOSTERASE, 8}, {CDDS_ITEMPREPAINT | CDDS_SUBITEM, 9},
    };
    StageProbe probe;
    for (const Row &row : rows) {
        NMCUSTOMDRAW nm = {};
        nm.hdr.code = NM_CUSTOMDRAW;
        nm.hdr.idFrom = 3;
        nm.dwDrawStage = row.stage;
        LRESULT result = -1;
        EXPECT_TRUE(probe.ProcessWindowMessage(nullptr, WM_NOTIFY, 3, reinterpret_cast<LPARAM>(&nm), result))
            << "stage " << row.stage;
        EXPECT_EQ(row.expected, result) << "stage " << row.stage;
        result = -1;
        EXPECT_TRUE(probe.ProcessWindowMessage(nullptr, OCM_NOTIFY, 3, reinterpret_cast<LPARAM>(&nm), result, 1))
            << "reflected stage " << row.stage;
        EXPECT_EQ(row.expected, result) << "reflected stage " << row.stage;
    }

    NMCUSTOMDRAW unknown = {};
    unknown.hdr.code = NM_CUSTOMDRAW;
    unknown.dwDrawStage = 0x12345;
    LRESULT result = -1;
    EXPECT_FALSE(probe.ProcessWindowMessage(nullptr, WM_NOTIFY, 3, reinterpret_cast<LPARAM>(&unknown), result));

    NMHDR other = {nullptr, 3, NM_CLICK};
    EXPECT_FALSE(probe.ProcessWindowMessage(nullptr, WM_NOTIFY, 3, reinterpret_cast<LPARAM>(&other), result));
    // The reflected form only in map 1, the plain form only in map 0.
    NMCUSTOMDRAW pre = {};
    pre.hdr.code = NM_CUSTOMDRAW;
    pre.dwDrawStage = CDDS_PREPAINT;
    EXPECT_FALSE(probe.ProcessWindowMessage(nullptr, OCM_NOTIFY, 3, reinterpret_cast<LPARAM>(&pre), result));
    EXPECT_FALSE(probe.ProcessWindowMessage(nullptr, WM_NOTIFY, 3, reinterpret_cast<LPARAM>(&pre), result, 1));
}

} // namespace
