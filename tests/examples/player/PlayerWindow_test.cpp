// The sample player driven through its window with real messages, as a user would: every tab,
// typing into the search, playing and dragging, the play list's menu, the sort order, the
// crossfade's arrows, About; after each step the model says what happened.
#include "PlayerPictures.h"
#include "PlayerWindow.h"
#include "controls/container/MirlContainerTestSupport.h"
#include "MirlMessageRecorder.h"
#include "MirlPixelTest.h"

#include <gtest/gtest.h>
#include <imm.h>

#include <algorithm>

namespace {

::testing::Environment *const g_Mirl = ::testing::AddGlobalTestEnvironment(new mirltest::SkinEnvironment(L"sample"));

using player::PlayerModel;
using player::PlayerWindow;

bool Contains(const std::wstring &text, const std::wstring &part)
{
    std::wstring a(text);
    std::wstring b(part);
    std::transform(a.begin(), a.end(), a.begin(), ::towlower);
    std::transform(b.begin(), b.end(), b.begin(), ::towlower);
    return a.find(b) != std::wstring::npos;
}

class PlayerTest : public ::testing::Test {
protected:
    PlayerTest() : m_Model(player::MakeLibrary()), m_Window(m_Model) {}

    void SetUp() override
    {
        mirltest::ParkCursor();
        ASSERT_NE(nullptr, m_Window.Open());
        ASSERT_TRUE(mirltest::Activate(m_Window.m_hWnd));
        // The clock is the test's: it ticks when the test sends the timer's message.
        m_Window.KillTimer(PlayerWindow::kClockTimer);
        mirltest::FlushMessages();
    }
    void TearDown() override
    {
        MirlMenuWindow::FinalDestroy();
        m_Window.DestroyWindow();
        mirltest::ParkCursor();
    }

    HWND Control(const wchar_t *path)
    {
        MirlWindowBase *window = m_Window.Find(path);
        return window != nullptr ? window->m_hWnd : nullptr;
    }

    // The client point of a row's middle, by its index in the list.
    POINT RowPoint(int index)
    {
        int at = 0;
        for (MirlListView::INFORMATION_ITEM *item : *m_Window.List()->GetItems()) {
            if (at++ == index) {
                return POINT{item->rect.left + 60, (item->rect.top + item->rect.bottom) / 2};
            }
        }
        ADD_FAILURE() << "no row " << index;
        return POINT{0, 0};
    }

    void TypeText(HWND window, const std::wstring &text)
    {
        for (wchar_t c : text) {
            ::SendMessageW(window, WM_CHAR, c, 1);
        }
    }

    // Chooses the popup's row with that command id by a click on it.
    void ChoosePopupRow(unsigned long id)
    {
        MirlMenuWindow *popup = MirlMenuWindow::Instance();
        ASSERT_NE(nullptr, popup);
        ASSERT_TRUE(popup->IsShowing());
        for (const MirlMenuWindow::MENU_ITEM *item : popup->GetItems()) {
            if (item->id == id) {
                const int x = (item->rect.left + item->rect.right) / 2;
                const int y = (item->rect.top + item->rect.bottom) / 2;
                ::SendMessageW(popup->m_hWnd, WM_MOUSEMOVE, 0, MAKELPARAM(x, y));
                ::SendMessageW(popup->m_hWnd, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(x, y));
                ::SendMessageW(popup->m_hWnd, WM_LBUTTONUP, 0, MAKELPARAM(x, y));
                mirltest::FlushMessages();
                return;
            }
        }
        FAIL() << "the popup has no row " << id;
    }

    PlayerModel m_Model;
    PlayerWindow m_Window;
};

TEST_F(PlayerTest, OpensOnTheLibraryWithEveryTrackListedByTitle)
{
    EXPECT_EQ(PlayerWindow::PageLibrary, m_Window.CurrentPage());
    EXPECT_TRUE(::IsWindowVisible(Control(L"PageLibrary")));
    EXPECT_FALSE(::IsWindowVisible(Control(L"PagePlaying")));
    EXPECT_FALSE(::IsWindowVisible(Control(L"PageSettings")));
    ASSERT_NE(nullptr, m_Window.List());
    EXPECT_EQ(200, m_Window.List()->GetItemCount());
    EXPECT_EQ(m_Model.Visible(), m_Window.ListedIds());
    EXPECT_EQ(4, m_Window.List()->GetColumnCount());
    // The header keeps its images: the list is made anew, never cleared and filled again.
    EXPECT_NE(nullptr, m_Window.List()->GetHeaderImage(1));
}

TEST_F(PlayerTest, EveryTabShowsItsPage)
{
    const wchar_t *const tabs[] = {L"Tabs/TabPlaying", L"Tabs/TabSettings", L"Tabs/TabLibrary"};
    const int pages[] = {PlayerWindow::PagePlaying, PlayerWindow::PageSettings, PlayerWindow::PageLibrary};
    const wchar_t *const names[] = {L"PagePlaying", L"PageSettings", L"PageLibrary"};
    for (int i = 0; i < 3; ++i) {
        SCOPED_TRACE(i);
        mirltest::ClickAt(Control(tabs[i]), 20, 10);
        mirltest::FlushMessages();
        EXPECT_EQ(pages[i], m_Window.CurrentPage());
        for (const wchar_t *page : names) {
            EXPECT_EQ(page == names[i], ::IsWindowVisible(Control(page)) != FALSE);
        }
    }
    // A press on a tab's arrow selects nothing: the page stays.
    mirltest::ClickAt(Control(L"Tabs/TabSettings"), 20, 28);
    mirltest::FlushMessages();
    EXPECT_EQ(PlayerWindow::PageLibrary, m_Window.CurrentPage());
}

TEST_F(PlayerTest, TypingFiltersTheList)
{
    HWND search = Control(L"PageLibrary/Main/Search");
    TypeText(search, L"blue");
    std::vector<int> listed = m_Window.ListedIds();
    EXPECT_EQ(L"blue", m_Model.Search());
    ASSERT_FALSE(listed.empty());
    EXPECT_LT(listed.size(), 200u);
    for (int id : listed) {
        const player::Track *track = m_Model.Find(id);
        EXPECT_TRUE(Contains(track->title + L"|" + track->artist + L"|" + track->album, L"blue")) << id;
    }
    EXPECT_EQ(m_Model.Visible(), listed);

    TypeText(search, L" r");
    EXPECT_EQ(L"blue r", m_Model.Search());
    for (int id : m_Window.ListedIds()) {
        EXPECT_TRUE(Contains(m_Model.Find(id)->title, L"blue r")) << id; // Blue River, Blue Roofs
    }
    TypeText(search, L"\b\b\b\b\b\b");
    EXPECT_EQ(L"", m_Model.Search());
    EXPECT_EQ(200u, m_Window.ListedIds().size());
}

TEST_F(PlayerTest, ADoubleClickPlaysAndTheSeekBarMovesWithTheClock)
{
    HWND list = m_Window.List()->m_hWnd;
    const POINT row = RowPoint(3);
    const int id = m_Window.ListedIds()[3];
    ::SendMessageW(list, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(row.x, row.y));
    ::SendMessageW(list, WM_LBUTTONUP, 0, MAKELPARAM(row.x, row.y));
    ::SendMessageW(list, WM_LBUTTONDBLCLK, MK_LBUTTON, MAKELPARAM(row.x, row.y));
    ::SendMessageW(list, WM_LBUTTONUP, 0, MAKELPARAM(row.x, row.y));
    EXPECT_EQ(id, m_Model.PlayingId());
    EXPECT_TRUE(m_Model.IsPlaying());
    MirlMediaSeekBar *seek = dynamic_cast<MirlMediaSeekBar *>(m_Window.Find(L"PagePlaying/Seek"));
    ASSERT_NE(nullptr, seek);
    EXPECT_EQ(0.0f, seek->GetSeekPercent());
    for (int i = 0; i < 8; ++i) {
        ::SendMessageW(m_Window.m_hWnd, WM_TIMER, PlayerWindow::kClockTimer, 0);
    }
    EXPECT_EQ(2000, m_Model.PositionMs());
    const float expected = static_cast<float>(2000.0 / (m_Model.Find(id)->seconds * 1000.0));
    EXPECT_FLOAT_EQ(expected, seek->GetSeekPercent());
    // Playing shows Pause where Play was.
    EXPECT_TRUE(::IsWindowVisible(Control(L"PagePlaying/Pause")) || !::IsWindowVisible(Control(L"PagePlaying")));
    EXPECT_TRUE((::GetWindowLongW(Control(L"PagePlaying/Pause"), GWL_STYLE) & WS_VISIBLE) != 0);
    EXPECT_FALSE((::GetWindowLongW(Control(L"PagePlaying/Play"), GWL_STYLE) & WS_VISIBLE) != 0);
}

TEST_F(PlayerTest, DraggingTheSeekBarMovesThePlayback)
{
    ASSERT_TRUE(m_Model.Play(m_Window.ListedIds()[0]));
    m_Window.RefreshPlaying();
    m_Window.ShowPage(PlayerWindow::PagePlaying);
    HWND seek = Control(L"PagePlaying/Seek");
    MirlMediaSeekBar *bar = dynamic_cast<MirlMediaSeekBar *>(m_Window.Find(L"PagePlaying/Seek"));
    RECT client = {};
    ::GetClientRect(seek, &client);
    // The press takes the thumb; the move drags it.
    const RECT thumb = bar->GetThumbRect();
    const int x = (thumb.left + thumb.right) / 2;
    ::SendMessageW(seek, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(x, 7));
    EXPECT_TRUE(bar->IsDragging());
    ::SendMessageW(seek, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(client.right * 3 / 4, 7));
    ::SendMessageW(seek, WM_LBUTTONUP, 0, MAKELPARAM(client.right * 3 / 4, 7));
    const player::Track *track = m_Model.Find(m_Model.PlayingId());
    // The bar tells thousandths; the model holds the track's milliseconds at that fraction.
    const int thousandths = static_cast<int>(bar->GetSeekPercent() * 1000.0);
    EXPECT_GT(thousandths, 650);
    EXPECT_LT(thousandths, 800);
    EXPECT_EQ(track->seconds * thousandths, m_Model.PositionMs());
}

TEST_F(PlayerTest, TheMenusRemoveTakesTheRowAway)
{
    HWND list = m_Window.List()->m_hWnd;
    const int id = m_Window.ListedIds()[2];
    const POINT row = RowPoint(2);
    POINT screen = row;
    ::ClientToScreen(list, &screen);
    ::SetCursorPos(screen.x, screen.y);
    ::SendMessageW(list, WM_RBUTTONDOWN, MK_RBUTTON, MAKELPARAM(row.x, row.y));
    ::SendMessageW(list, WM_RBUTTONUP, 0, MAKELPARAM(row.x, row.y));
    // The right press chose the row, and the menu is open for the player.
    EXPECT_EQ((std::vector<int>{id}), m_Window.SelectedIds());
    ASSERT_NE(nullptr, MirlMenuWindow::Instance());
    EXPECT_EQ(&m_Window, MirlMenuWindow::Instance()->GetHolder());
    EXPECT_EQ(4, MirlMenuWindow::Instance()->GetItemCount());
    ChoosePopupRow(PlayerWindow::kMenuRemove);
    EXPECT_EQ(nullptr, m_Model.Find(id));
    EXPECT_EQ(199, m_Window.List()->GetItemCount());
    const std::vector<int> listed = m_Window.ListedIds();
    EXPECT_EQ(listed.end(), std::find(listed.begin(), listed.end(), id));
}

TEST_F(PlayerTest, TheMenuQueuesAndShowsProperties)
{
    HWND list = m_Window.List()->m_hWnd;
    const std::vector<int> ids = m_Window.ListedIds();
    // Ctrl with a click adds a row to the selection.
    const POINT first = RowPoint(1);
    const POINT second = RowPoint(5);
    ::SendMessageW(list, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(first.x, first.y));
    ::SendMessageW(list, WM_LBUTTONUP, 0, MAKELPARAM(first.x, first.y));
    ::SendMessageW(list, WM_LBUTTONDOWN, MK_LBUTTON | MK_CONTROL, MAKELPARAM(second.x, second.y));
    ::SendMessageW(list, WM_LBUTTONUP, MK_CONTROL, MAKELPARAM(second.x, second.y));
    EXPECT_EQ((std::vector<int>{ids[1], ids[5]}), m_Window.SelectedIds());

    POINT screen = second;
    ::ClientToScreen(list, &screen);
    m_Window.OpenTrackMenu(screen);
    ChoosePopupRow(PlayerWindow::kMenuQueue);
    EXPECT_EQ((std::vector<int>{ids[1], ids[5]}), m_Model.QueuedIds());

    m_Window.OpenTrackMenu(screen);
    ChoosePopupRow(PlayerWindow::kMenuProperties);
    ASSERT_TRUE(m_Window.Info().IsOpen());
    wchar_t heading[128] = {};
    ::GetDlgItemTextW(m_Window.Info().Window(), player::InfoDialog::kHeading, heading, 128);
    EXPECT_EQ(m_Model.Find(ids[1])->title, heading);
    ::SendMessageW(::GetDlgItem(m_Window.Info().Window(), IDOK), BM_CLICK, 0, 0);
    EXPECT_FALSE(m_Window.Info().IsOpen());
}

TEST_F(PlayerTest, TheSortBoxOrdersTheList)
{
    HWND sort = Control(L"PageLibrary/Main/Sort");
    RECT face = {};
    ::GetClientRect(sort, &face);
    mirltest::ClickAt(sort, face.right / 2, face.bottom / 2);
    mirltest::FlushMessages();
    ChoosePopupRow(4); // "Sort by length"
    EXPECT_EQ(player::SortOrder::Length, m_Model.GetSort());
    const std::vector<int> listed = m_Window.ListedIds();
    ASSERT_EQ(200u, listed.size());
    for (size_t i = 1; i < listed.size(); ++i) {
        EXPECT_LE(m_Model.Find(listed[i - 1])->seconds, m_Model.Find(listed[i])->seconds);
    }
}

TEST_F(PlayerTest, TheFolderBarFiltersByTheChosenTracksArtist)
{
    HWND list = m_Window.List()->m_hWnd;
    const POINT row = RowPoint(7);
    const int id = m_Window.ListedIds()[7];
    ::SendMessageW(list, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(row.x, row.y));
    ::SendMessageW(list, WM_LBUTTONUP, 0, MAKELPARAM(row.x, row.y));
    MIRLOutlookCtrl *folders = dynamic_cast<MIRLOutlookCtrl *>(m_Window.Find(L"PageLibrary/Side/Folders"));
    ASSERT_NE(nullptr, folders);
    ASSERT_EQ(3u, folders->GetFolderCount());
    mirltest::ClickAt(folders->GetFolder(1)->pBar->m_hWnd, 40, 10);
    mirltest::FlushMessages();
    EXPECT_EQ(player::Folder::Artists, m_Model.GetFolder());
    const std::vector<int> listed = m_Window.ListedIds();
    EXPECT_EQ(10u, listed.size()); // two albums of five
    for (int each : listed) {
        EXPECT_EQ(m_Model.Find(id)->artist, m_Model.Find(each)->artist);
    }
    mirltest::ClickAt(folders->GetFolder(0)->pBar->m_hWnd, 40, 10);
    mirltest::FlushMessages();
    EXPECT_EQ(player::Folder::Playlists, m_Model.GetFolder());
    EXPECT_EQ(200u, m_Window.ListedIds().size());
}

TEST_F(PlayerTest, TheSplitterSizesTheSidePanelAndTheListFollows)
{
    HWND divider = Control(L"PageLibrary/Divider");
    HWND side = Control(L"PageLibrary/Side");
    HWND list = m_Window.List()->m_hWnd;
    RECT before = mirltest::PlaceInParent(list);
    ::SendMessageW(divider, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(1, 100));
    // The bar follows the pointer's x in its own client: a move to 40 moves it 40 pixels.
    ::SendMessageW(divider, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(40, 100));
    ::SendMessageW(divider, WM_LBUTTONUP, 0, MAKELPARAM(40, 100));
    RECT panel = {};
    ::GetClientRect(side, &panel);
    EXPECT_EQ(190, panel.right);
    // The play list stands where the skin's list is laid out: 40 pixels narrower.
    RECT after = mirltest::PlaceInParent(list);
    EXPECT_EQ(before.right - before.left - 40, after.right - after.left);
    RECT placeholder = mirltest::PlaceInParent(Control(L"PageLibrary/Main/PlayList"));
    EXPECT_TRUE(::EqualRect(&placeholder, &after));
}

TEST_F(PlayerTest, VolumeBalanceAndTheJogWheelReachTheModel)
{
    ASSERT_TRUE(m_Model.Play(m_Window.ListedIds()[0]));
    m_Model.SeekFraction(0.5);
    const int before = m_Model.PositionMs();
    m_Window.ShowPage(PlayerWindow::PagePlaying);

    HWND volume = Control(L"PagePlaying/Volume");
    RECT client = {};
    ::GetClientRect(volume, &client);
    ::SendMessageW(volume, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(client.right / 4, client.bottom / 2));
    ::SendMessageW(volume, WM_LBUTTONUP, 0, MAKELPARAM(client.right / 4, client.bottom / 2));
    MirlSlider *slider = dynamic_cast<MirlSlider *>(m_Window.Find(L"PagePlaying/Volume"));
    EXPECT_LT(m_Model.Volume(), 40);
    EXPECT_EQ(slider->GetPos(), m_Model.Volume());

    HWND balance = Control(L"PagePlaying/Balance");
    ::SendMessageW(balance, WM_KEYDOWN, VK_RIGHT, 0);
    ::SendMessageW(balance, WM_KEYUP, VK_RIGHT, 0);
    EXPECT_EQ(1, m_Model.Balance());

    // The wheel turns a frame per mouse message while pressed, a second of scrubbing each.
    HWND jog = Control(L"PagePlaying/Jog");
    MirlInchingSwitch *wheel = dynamic_cast<MirlInchingSwitch *>(m_Window.Find(L"PagePlaying/Jog"));
    const int frame = wheel->GetFrame();
    ::SendMessageW(jog, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(20, 40));
    for (int x = 22; x <= 30; x += 2) {
        ::SendMessageW(jog, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(x, 40));
    }
    ::SendMessageW(jog, WM_LBUTTONUP, 0, MAKELPARAM(30, 40));
    const int turned = (wheel->GetFrame() - frame + 48) % 48;
    EXPECT_GT(turned, 0);
    EXPECT_EQ(before + turned * 1000, m_Model.PositionMs());
}

TEST_F(PlayerTest, TheSpinChangesTheCrossfadeAndAboutOpensAndCloses)
{
    m_Window.ShowPage(PlayerWindow::PageSettings);
    HWND spin = Control(L"PageSettings/Options/CrossfadeSpin");
    ASSERT_NE(nullptr, spin);
    EXPECT_EQ(5, m_Model.Crossfade());
    RECT client = {};
    ::GetClientRect(spin, &client);
    ::SendMessageW(spin, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(client.right / 2, 3));
    ::SendMessageW(spin, WM_LBUTTONUP, 0, MAKELPARAM(client.right / 2, 3));
    mirltest::FlushMessages();
    EXPECT_EQ(6, m_Model.Crossfade());

    mirltest::ClickAt(Control(L"PageSettings/About"), 20, 10);
    mirltest::FlushMessages();
    ASSERT_TRUE(m_Window.Info().IsOpen());
    wchar_t caption[128] = {};
    ::GetWindowTextW(m_Window.Info().Window(), caption, 128);
    EXPECT_STREQ(L"About MIRL Player", caption);
    ::SendMessageW(::GetDlgItem(m_Window.Info().Window(), IDOK), BM_CLICK, 0, 0);
    EXPECT_FALSE(m_Window.Info().IsOpen());
}

// The pictures that `make demo` writes and the README shows: each page and the menu open, in the
// same fixed state, alike on both architectures.
TEST_F(PlayerTest, ThePagePicturesMatchTheirGoldens)
{
    wchar_t temp[MAX_PATH] = {};
    ASSERT_NE(0u, ::GetTempPathW(MAX_PATH, temp));
    const std::wstring folder = std::wstring(temp) + L"mirl-player-pictures";
    ::CreateDirectoryW(folder.c_str(), nullptr);
    ASSERT_EQ(0, player::WritePictures(m_Window, m_Model, folder.c_str()));
    const char *const pages[] = {"library", "playing", "settings", "menu"};
    for (const char *page : pages) {
        const std::wstring file = folder + L"\\player-" + mirltest::detail::Widen(page) + L".png";
        mirltest::Dib picture = mirltest::LoadPng(file);
        ASSERT_FALSE(picture.empty()) << page;
        const std::string name = std::string("player_") + page;
        EXPECT_TRUE(mirltest::MatchesGolden(picture, name.c_str()));
        ::DeleteFileW(file.c_str());
    }
    ::RemoveDirectoryW(folder.c_str());
}

// Chinese comes into the edit only through the input method, which it opens only where the
// system's code page isn't 1252: examples_player_ime_936_test runs this under code page 936.
class PlayerChinese : public PlayerTest {};

TEST_F(PlayerChinese, TypingThroughTheInputMethodFiltersTheList)
{
    if (::GetACP() != 936) {
        GTEST_SKIP() << "code page " << ::GetACP() << "; examples_player_ime_936_test runs this under 936";
    }
    HWND search = Control(L"PageLibrary/Main/Search");
    ::SetFocus(search);
    HIMC context = ::ImmGetContext(search);
    ASSERT_NE(nullptr, context);
    std::wstring units(L"\u591C"); // 夜, night
    ASSERT_TRUE(::ImmSetCompositionStringW(context, SCS_SETSTR, &units[0], static_cast<DWORD>(units.size() * sizeof(wchar_t)), nullptr, 0));
    mirltest::FlushMessages();
    EXPECT_EQ(200u, m_Window.ListedIds().size()); // still being composed
    ASSERT_TRUE(::ImmNotifyIME(context, NI_COMPOSITIONSTR, CPS_COMPLETE, 0));
    ::ImmReleaseContext(search, context);
    mirltest::FlushMessages();
    EXPECT_EQ(L"\u591C", m_Model.Search());
    const std::vector<int> listed = m_Window.ListedIds();
    ASSERT_FALSE(listed.empty());
    EXPECT_LT(listed.size(), 200u);
    for (int id : listed) {
        const player::Track *track = m_Model.Find(id);
        EXPECT_TRUE(Contains(track->title + track->artist + track->album, L"\u591C")) << id;
    }
    EXPECT_EQ(m_Model.Visible(), listed);
}

} // namespace
