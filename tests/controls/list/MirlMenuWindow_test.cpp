// The process's popup through real messages: rows from the caller and the template, its height,
// flipping at the work area, the command, every way it is dismissed, a replacement, ending it
// from its own command, shut-down, images that travel with the rows, painting and leaks.
#include "MirlListTestSupport.h"
#include "controls/list/MirlListLogic.h"
#include "MirlLeakCounters.h"
#include "MirlMessageRecorder.h"
#include "MirlPixelTest.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace {

::testing::Environment *const g_Mirl = ::testing::AddGlobalTestEnvironment(new mirltest::SkinEnvironment(L"lists"));

const RECT kPlace = {20, 20, 180, 40};

class MenuWindowTest : public ::testing::Test {
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
        MirlMenuWindow::FinalDestroy();
        m_Holder.DestroyWindow();
        mirltest::ParkCursor();
    }

    // The popup with two rows of the caller's (21, 22) and the template's (11 with the icon,
    // 12): four rows.
    HWND Open(mirltest::ListHolder &holder, const wchar_t *name = L"Popup", const RECT &place = kPlace)
    {
        MirlMenuWindow carrier;
        carrier.AddItem(L"First", 21, nullptr);
        carrier.AddItem(L"Second", 22, nullptr);
        carrier.TrackPopupMenu(name, place, &holder);
        mirltest::FlushMessages();
        return mirltest::PopupWindow();
    }
    HWND Open() { return Open(m_Holder); }

    mirltest::ListHolder m_Holder;
};

TEST(MenuWindowItems, AddItemWithAnIdAlreadyThereChangesNothingAndAnswersItsIndex)
{
    MirlMenuWindow menu;
    EXPECT_EQ(1, menu.AddItem(L"a", 1, nullptr));
    EXPECT_EQ(2, menu.AddItem(L"b", 2, nullptr));
    EXPECT_EQ(3, menu.AddItem(L"c", 7, nullptr));
    EXPECT_EQ(0, menu.AddItem(L"again", 1, nullptr));
    EXPECT_EQ(2, menu.AddItem(L"again", 7, new Gdiplus::Bitmap(4, 4))); // the image is freed
    ASSERT_EQ(3, menu.GetItemCount());
    EXPECT_EQ(L"a", menu.GetItems().front()->text);
    EXPECT_EQ(nullptr, menu.GetItems().back()->image);
    EXPECT_EQ(3 * 26 + 4, menu.GetNeededHeight());
    menu.ClearItems();
    EXPECT_EQ(0, menu.GetItemCount());
    EXPECT_EQ(4, menu.GetNeededHeight());
}

TEST(MenuWindowLogic, RowsFlipAndHeights)
{
    RECT row = MIRL::MenuRowRect(2, 26, 160);
    EXPECT_EQ(0, row.left);
    EXPECT_EQ(56, row.top);
    EXPECT_EQ(160, row.right);
    EXPECT_EQ(82, row.bottom);
    EXPECT_EQ(5 * 26 + 4, MIRL::MenuNeededHeight(5, 26));
    const RECT low = {10, 700, 170, 808};
    RECT flipped = MIRL::FlipAboveTop(low, 768);
    EXPECT_EQ(592, flipped.top);
    EXPECT_EQ(700, flipped.bottom);
    EXPECT_EQ(10, flipped.left);
    const RECT fits = {10, 600, 170, 768};
    EXPECT_EQ(600, MIRL::FlipAboveTop(fits, 768).top); // touching the bottom is no overflow
}

TEST_F(MenuWindowTest, CallerRowsComeFirstThenTemplateRowsWithOtherIds)
{
    HWND popup = Open();
    ASSERT_NE(nullptr, popup);
    MirlMenuWindow *menu = MirlMenuWindow::Instance();
    ASSERT_EQ(4, menu->GetItemCount());
    const unsigned long ids[] = {21, 22, 11, 12};
    int i = 0;
    for (const MirlMenuWindow::MENU_ITEM *item : menu->GetItems()) {
        EXPECT_EQ(ids[i], item->id) << "row " << i;
        EXPECT_EQ(0, item->rect.left);
        EXPECT_EQ(4 + 26 * i, item->rect.top);
        EXPECT_EQ(160, item->rect.right);
        EXPECT_EQ(30 + 26 * i, item->rect.bottom);
        ++i;
    }
    EXPECT_EQ(L"Open", (*std::next(menu->GetItems().begin(), 2))->text);
    EXPECT_NE(nullptr, (*std::next(menu->GetItems().begin(), 2))->image);
    EXPECT_EQ(&m_Holder, menu->GetHolder());
    EXPECT_EQ(160, menu->GetNeededWidth());
    EXPECT_TRUE(menu->IsShowing());
    EXPECT_TRUE(::IsWindowVisible(popup));
    EXPECT_EQ(popup, ::GetCapture());
    // Popup, visible, and never activated.
    EXPECT_EQ(static_cast<LONG>(WS_POPUP | WS_VISIBLE),
              ::GetWindowLongW(popup, GWL_STYLE) & static_cast<LONG>(WS_POPUP | WS_VISIBLE | WS_CHILD));
    EXPECT_TRUE(::GetWindowLongW(popup, GWL_EXSTYLE) & WS_EX_NOACTIVATE);
    EXPECT_EQ(m_Holder.m_hWnd, ::GetActiveWindow());
    // A hidden scroll bar in the lower right corner.
    ASSERT_NE(nullptr, menu->GetScrollBar());
    EXPECT_FALSE(::IsWindowVisible(menu->GetScrollBar()));
}

TEST_F(MenuWindowTest, NRowsAreNTimes26Plus4High)
{
    HWND popup = Open();
    RECT window = {};
    ::GetWindowRect(popup, &window);
    EXPECT_EQ(20, window.left);
    EXPECT_EQ(20, window.top);
    EXPECT_EQ(180, window.right);
    EXPECT_EQ(20 + 4 * 26 + 4, window.bottom);
    EXPECT_EQ(108, MirlMenuWindow::Instance()->GetNeededHeight());
    EXPECT_EQ(108, MirlMenuWindow::Instance()->GetHeight());
}

TEST_F(MenuWindowTest, ANameWithNoTemplateMakesNoWindowAndTakesNoCapture)
{
    HWND popup = Open(m_Holder, L"NoSuchPopup");
    EXPECT_EQ(nullptr, popup);
    ASSERT_NE(nullptr, MirlMenuWindow::Instance());
    EXPECT_EQ(2, MirlMenuWindow::Instance()->GetItemCount());
    EXPECT_FALSE(MirlMenuWindow::Instance()->IsShowing());
    EXPECT_EQ(nullptr, ::GetCapture());
    EXPECT_EQ(nullptr, ::FindWindowW(L"MirlMenuWindow", nullptr));
}

TEST_F(MenuWindowTest, APopupReachingBelowTheWorkAreaOpensAboveItsRectanglesTop)
{
    RECT work = {};
    ASSERT_TRUE(::SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0));
    const RECT low = {40, work.bottom - 50, 200, work.bottom - 30};
    HWND popup = Open(m_Holder, L"Popup", low);
    ASSERT_NE(nullptr, popup);
    RECT window = {};
    ::GetWindowRect(popup, &window);
    EXPECT_EQ(work.bottom - 50 - 108, window.top);
    EXPECT_EQ(work.bottom - 50, window.bottom);
    EXPECT_EQ(40, window.left);
    EXPECT_EQ(200, window.right);
}

TEST_F(MenuWindowTest, PressingInsideAndReleasingOnARowSendsItsId)
{
    HWND popup = Open();
    mirltest::MoveTo(popup, 50, 4 + 26 + 5, 0);
    ASSERT_NE(nullptr, MirlMenuWindow::Instance()->GetHoverItem());
    EXPECT_EQ(22u, MirlMenuWindow::Instance()->GetHoverItem()->id);
    ::SendMessageW(popup, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(50, 35));
    EXPECT_TRUE(::IsWindowVisible(popup)); // a press inside does nothing
    EXPECT_TRUE(m_Holder.m_Commands.empty());
    ::SendMessageW(popup, WM_LBUTTONUP, 0, MAKELPARAM(50, 35));
    ASSERT_EQ(1u, m_Holder.m_Commands.size());
    EXPECT_EQ(MAKEWPARAM(22, 0), m_Holder.m_Commands[0].first);
    EXPECT_EQ(reinterpret_cast<LPARAM>(popup), m_Holder.m_Commands[0].second);
    // Dismissed: hidden, no hover, capture given back; the object and window stay.
    EXPECT_FALSE(::IsWindowVisible(popup));
    EXPECT_TRUE(::IsWindow(popup));
    EXPECT_EQ(nullptr, ::GetCapture());
    EXPECT_FALSE(MirlMenuWindow::Instance()->IsShowing());
    EXPECT_EQ(nullptr, MirlMenuWindow::Instance()->GetHoverItem());
}

TEST_F(MenuWindowTest, ReleasingInTheBandAboveTheFirstRowSendsNothingAndCloses)
{
    HWND popup = Open();
    mirltest::MoveTo(popup, 50, 2, 0);
    EXPECT_TRUE(MirlMenuWindow::Instance()->IsMouseInside());
    EXPECT_EQ(nullptr, MirlMenuWindow::Instance()->GetHoverItem());
    ::SendMessageW(popup, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(50, 2));
    ::SendMessageW(popup, WM_LBUTTONUP, 0, MAKELPARAM(50, 2));
    EXPECT_TRUE(m_Holder.m_Commands.empty());
    EXPECT_FALSE(::IsWindowVisible(popup));
}

TEST_F(MenuWindowTest, AReleaseWithThePointerOutsideLeavesItOpen)
{
    HWND popup = Open();
    // Client (310, 310) of the popup is screen (330, 330): the holder's child "Target".
    mirltest::MoveTo(popup, 310, 310, MK_LBUTTON);
    EXPECT_FALSE(MirlMenuWindow::Instance()->IsMouseInside());
    ::SendMessageW(popup, WM_LBUTTONUP, 0, MAKELPARAM(310, 310));
    EXPECT_TRUE(::IsWindowVisible(popup));
    EXPECT_TRUE(m_Holder.m_Commands.empty());
}

TEST_F(MenuWindowTest, APressElsewhereClosesAndGoesOnToWhatWasPressed)
{
    HWND popup = Open();
    MirlWindowBase *target = m_Holder.GetWindowItem(90UL);
    ASSERT_NE(nullptr, target);
    mirltest::MessageSequence sequence;
    mirltest::ControlRecorder spy(target->m_hWnd, sequence);
    mirltest::MoveTo(popup, 310, 310, 0);
    sequence.Clear();
    ::SendMessageW(popup, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(310, 310));
    EXPECT_FALSE(::IsWindowVisible(popup));
    EXPECT_FALSE(MirlMenuWindow::Instance()->IsShowing());
    EXPECT_NE(popup, ::GetCapture());
    EXPECT_TRUE(m_Holder.m_Commands.empty());
    ASSERT_EQ(1u, sequence.Count(WM_LBUTTONDOWN));
    for (const mirltest::RecordedMessage &message : sequence.Messages()) {
        if (message.message == WM_LBUTTONDOWN) {
            EXPECT_EQ(static_cast<WPARAM>(MK_LBUTTON), message.wParam);
            // The popup's client coordinates, passed on unchanged.
            EXPECT_EQ(MAKELPARAM(310, 310), message.lParam);
        }
    }
}

// Each of these dismisses without a command and without giving the capture back.
struct Dismissal {
    const char *label;
    UINT message;
    WPARAM wParam;
};

TEST_F(MenuWindowTest, FocusLossDeactivationDisablingAndCancelModeDismissWithoutACommand)
{
    const Dismissal rows[] = {
        {"WM_KILLFOCUS", WM_KILLFOCUS, 0},
        {"WM_ACTIVATE inactive", WM_ACTIVATE, WA_INACTIVE},
        {"WM_ENABLE false", WM_ENABLE, FALSE},
        {"WM_CANCELMODE", WM_CANCELMODE, 0},
    };
    for (const Dismissal &row : rows) {
        HWND popup = Open();
        ASSERT_NE(nullptr, popup) << row.label;
        mirltest::MoveTo(popup, 50, 40, 0);
        ASSERT_NE(nullptr, MirlMenuWindow::Instance()->GetHoverItem()) << row.label;
        ::SendMessageW(popup, row.message, row.wParam, 0);
        EXPECT_FALSE(::IsWindowVisible(popup)) << row.label;
        EXPECT_FALSE(MirlMenuWindow::Instance()->IsShowing()) << row.label;
        EXPECT_FALSE(MirlMenuWindow::Instance()->IsMouseInside()) << row.label;
        EXPECT_EQ(nullptr, MirlMenuWindow::Instance()->GetHoverItem()) << row.label;
        EXPECT_TRUE(m_Holder.m_Commands.empty()) << row.label;
        ::ReleaseCapture();
    }
    // Activation and enabling keep it up.
    HWND popup = Open();
    ::SendMessageW(popup, WM_ACTIVATE, WA_ACTIVE, 0);
    ::SendMessageW(popup, WM_ENABLE, TRUE, 0);
    EXPECT_TRUE(::IsWindowVisible(popup));
}

TEST_F(MenuWindowTest, CaptureLostWithThePointerInsideClosesIt)
{
    HWND popup = Open();
    mirltest::MoveTo(popup, 50, 40, 0);
    ASSERT_TRUE(MirlMenuWindow::Instance()->IsMouseInside());
    ::SetCapture(m_Holder.m_hWnd);
    EXPECT_FALSE(::IsWindowVisible(popup));
    EXPECT_FALSE(MirlMenuWindow::Instance()->IsShowing());
    EXPECT_TRUE(m_Holder.m_Commands.empty());
}

TEST_F(MenuWindowTest, CaptureLostWithThePointerOutsideLeavesItUp)
{
    HWND popup = Open();
    mirltest::MoveTo(popup, 310, 310, 0);
    ASSERT_FALSE(MirlMenuWindow::Instance()->IsMouseInside());
    ::SetCapture(m_Holder.m_hWnd);
    EXPECT_TRUE(::IsWindowVisible(popup));
    EXPECT_TRUE(MirlMenuWindow::Instance()->IsShowing());
}

TEST_F(MenuWindowTest, ASecondTrackPopupMenuReplacesTheFirstAndItsHolderHearsNothing)
{
    mirltest::ListHolder second;
    ASSERT_TRUE(second.Open(L"Host"));
    HWND first = Open(m_Holder);
    MirlMenuWindow *firstObject = MirlMenuWindow::Instance();
    ASSERT_NE(nullptr, first);
    HWND replacement = Open(second);
    ASSERT_NE(nullptr, replacement);
    EXPECT_FALSE(::IsWindow(first));
    EXPECT_NE(first, replacement);
    EXPECT_EQ(&second, MirlMenuWindow::Instance()->GetHolder());
    (void)firstObject; // gone: never read again
    mirltest::MoveTo(replacement, 50, 10, 0);
    ::SendMessageW(replacement, WM_LBUTTONUP, 0, MAKELPARAM(50, 10));
    EXPECT_TRUE(m_Holder.m_Commands.empty());
    ASSERT_EQ(1u, second.m_Commands.size());
    EXPECT_EQ(MAKEWPARAM(21, 0), second.m_Commands[0].first);
    MirlMenuWindow::FinalDestroy();
    second.DestroyWindow();
}

TEST_F(MenuWindowTest, EndingThePopupFromItsOwnCommandIsSafe)
{
    HWND popup = Open();
    m_Holder.m_OnCommand = [](WPARAM, LPARAM) { MirlMenuWindow::FinalDestroy(); };
    mirltest::MoveTo(popup, 50, 10, 0);
    ::SendMessageW(popup, WM_LBUTTONUP, 0, MAKELPARAM(50, 10));
    ASSERT_EQ(1u, m_Holder.m_Commands.size());
    EXPECT_EQ(nullptr, MirlMenuWindow::Instance());
    EXPECT_FALSE(::IsWindow(popup));
    EXPECT_EQ(nullptr, ::GetCapture());
}

TEST_F(MenuWindowTest, ReopeningThePopupFromItsOwnCommandShowsTheNewOne)
{
    HWND popup = Open();
    mirltest::ListHolder *holder = &m_Holder;
    m_Holder.m_OnCommand = [holder](WPARAM, LPARAM) {
        MirlMenuWindow carrier;
        carrier.AddItem(L"Again", 31, nullptr);
        const RECT place = {40, 40, 200, 60};
        carrier.TrackPopupMenu(L"Popup", place, holder);
    };
    mirltest::MoveTo(popup, 50, 10, 0);
    ::SendMessageW(popup, WM_LBUTTONUP, 0, MAKELPARAM(50, 10));
    m_Holder.m_OnCommand = nullptr;
    EXPECT_FALSE(::IsWindow(popup));
    HWND again = mirltest::PopupWindow();
    ASSERT_NE(nullptr, again);
    EXPECT_NE(popup, again);
    EXPECT_TRUE(::IsWindowVisible(again));
    EXPECT_EQ(again, ::GetCapture()); // the old popup's dismissal did not take it away
    EXPECT_EQ(3, MirlMenuWindow::Instance()->GetItemCount());
    EXPECT_TRUE(MirlMenuWindow::Instance()->IsShowing());
}

TEST_F(MenuWindowTest, TrackPopupMenuOnThePopupItselfCarriesItsRows)
{
    Open();
    MirlMenuWindow *popup = MirlMenuWindow::Instance();
    popup->TrackPopupMenu(L"Popup", kPlace, &m_Holder); // `popup` is gone after this
    mirltest::FlushMessages();
    ASSERT_NE(nullptr, MirlMenuWindow::Instance());
    EXPECT_EQ(4, MirlMenuWindow::Instance()->GetItemCount());
    EXPECT_TRUE(::IsWindowVisible(mirltest::PopupWindow()));
}

TEST_F(MenuWindowTest, ImagesOfTheCallersRowsAreCopiedAndStayValid)
{
    Gdiplus::Bitmap *mine = new Gdiplus::Bitmap(10, 12, PixelFormat32bppARGB);
    {
        MirlMenuWindow carrier;
        carrier.AddItem(L"Pictured", 41, mine);
        carrier.TrackPopupMenu(L"Popup", kPlace, &m_Holder);
    } // the carrier frees its own image here
    ASSERT_NE(nullptr, MirlMenuWindow::Instance());
    const MirlMenuWindow::MENU_ITEM *row = MirlMenuWindow::Instance()->GetItems().front();
    ASSERT_NE(nullptr, row->image);
    EXPECT_EQ(10u, row->image->GetWidth());
    EXPECT_EQ(12u, row->image->GetHeight());
    mirltest::RenderWindow(mirltest::PopupWindow()); // paints with it
}

TEST_F(MenuWindowTest, FinalDestroyEndsWindowAndObject)
{
    HWND popup = Open();
    MirlMenuWindow::FinalDestroy();
    EXPECT_EQ(nullptr, MirlMenuWindow::Instance());
    EXPECT_FALSE(::IsWindow(popup));
    MirlMenuWindow::FinalDestroy(); // nothing left: nothing done
    EXPECT_EQ(nullptr, MirlMenuWindow::Instance());
}

TEST_F(MenuWindowTest, ShutDownEndsThePopup)
{
    HWND popup = Open();
    ::SendMessageW(popup, WM_CANCELMODE, 0, 0); // hidden, still alive
    ASSERT_TRUE(::IsWindow(popup));
    MirlUnIntialize();
    EXPECT_EQ(nullptr, MirlMenuWindow::Instance());
    EXPECT_FALSE(::IsWindow(popup));
    MirlIntialize(mirltest::SkinPath(L"lists").c_str(), 1033);
}

TEST_F(MenuWindowTest, RowsPaintIconTextHoverAndFrame)
{
    HWND popup = Open();
    mirltest::MoveTo(popup, 50, 4 + 26 + 10, 0); // the second row hovers
    const mirltest::Dib picture = mirltest::RenderWindow(popup);
    ASSERT_EQ(160, picture.width());
    ASSERT_EQ(108, picture.height());
    EXPECT_EQ(0xA4A4A4u, picture.Pixel(0, 0) & 0xFFFFFF);
    EXPECT_EQ(0xA4A4A4u, picture.Pixel(159, 107) & 0xFFFFFF);
    EXPECT_EQ(0xFFFFFFu, picture.Pixel(100, 10) & 0xFFFFFF); // a row at rest on the background
    // The icon of the third row: 16 high in a 26-pixel row, 5 below its top, 4 from the left.
    EXPECT_EQ(0xFF00FFu, picture.Pixel(4, 56 + 5) & 0xFFFFFF);
    EXPECT_EQ(0xFF00FFu, picture.Pixel(19, 56 + 20) & 0xFFFFFF);
    EXPECT_NE(0xFF00FFu, picture.Pixel(20, 56 + 5) & 0xFFFFFF);
    EXPECT_NE(0xFF00FFu, picture.Pixel(4, 56 + 4) & 0xFFFFFF);
    // The hovered row's gradient ends in 9ED4E0 at its bottom.
    const DWORD bottom = picture.Pixel(120, 55) & 0xFFFFFF;
    EXPECT_NEAR(0x9E, static_cast<int>((bottom >> 16) & 0xFF), 8);
    EXPECT_NEAR(0xD4, static_cast<int>((bottom >> 8) & 0xFF), 8);
    EXPECT_NEAR(0xE0, static_cast<int>(bottom & 0xFF), 8);
    EXPECT_TRUE(mirltest::MatchesGolden(picture, "menu_rows"));
}

TEST_F(MenuWindowTest, OpeningAndClosingDoesNotGrow)
{
    auto cycle = [this]() {
        MirlMenuWindow carrier;
        carrier.AddItem(L"Pictured", 41, new Gdiplus::Bitmap(10, 12, PixelFormat32bppARGB));
        carrier.TrackPopupMenu(L"Popup", kPlace, &m_Holder);
        mirltest::RenderWindow(mirltest::PopupWindow());
        ::SendMessageW(mirltest::PopupWindow(), WM_CANCELMODE, 0, 0);
    };
    for (int i = 0; i < 5; ++i) {
        cycle();
    }
    MirlMenuWindow::FinalDestroy();
    mirltest::FlushMessages();
    const size_t heap = mirltest::BusyHeapBytes();
    const int gdi = mirltest::LiveGdiObjects();
    for (int i = 0; i < 40; ++i) {
        cycle();
    }
    MirlMenuWindow::FinalDestroy();
    mirltest::FlushMessages();
    EXPECT_EQ(gdi, mirltest::LiveGdiObjects());
    EXPECT_LE(mirltest::BusyHeapBytes(), heap + 4096);
}

} // namespace
