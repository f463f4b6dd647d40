#include "PlayerPictures.h"

#include "MirlViewRender.h"

#include <cstdio>
#include <string>

namespace player {

namespace {

// Paints the window's client area and children, and the popup over it if one is given.
int Save(HWND window, HWND popup, const std::wstring &path)
{
    RECT client = {};
    ::GetClientRect(window, &client);
    mirlview::Picture picture(client.right, client.bottom);
    mirlview::ComposeWindowTree(window, picture);
    if (popup != nullptr && ::IsWindowVisible(popup)) {
        RECT place = {};
        ::GetClientRect(popup, &place);
        mirlview::Picture over(place.right, place.bottom);
        mirlview::ComposeWindowTree(popup, over);
        POINT origin = {0, 0};
        ::MapWindowPoints(popup, window, &origin, 1);
        ::BitBlt(picture.dc(), origin.x, origin.y, place.right, place.bottom, over.dc(), 0, 0, SRCCOPY);
    }
    std::wstring error;
    if (!mirlview::SavePng(picture, path.c_str(), error)) {
        std::wprintf(L"Could not write %ls: %ls\n", path.c_str(), error.c_str());
        return 1;
    }
    std::wprintf(L"Wrote %ls (%ldx%ld)\n", path.c_str(), client.right, client.bottom);
    return 0;
}

void Pump()
{
    MSG msg;
    while (::PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE)) {
        ::TranslateMessage(&msg);
        ::DispatchMessageW(&msg);
    }
}

} // namespace

int WritePictures(PlayerWindow &window, PlayerModel &model, const wchar_t *folder)
{
    // The clock stands still: every picture shows the same moment.
    window.KillTimer(PlayerWindow::kClockTimer);
    const std::wstring base = std::wstring(folder) + L"\\player-";
    const std::vector<int> listed = window.ListedIds();
    if (listed.size() > 4) {
        model.Play(listed[2]);
        model.SeekFraction(0.42);
        model.AdvanceScan(model.ScanTotal() * 2 / 3);
        if (MirlListView *list = window.List()) {
            int index = 0;
            for (MirlListView::INFORMATION_ITEM *item : *list->GetItems()) {
                item->selected = index == 2 || index == 4;
                ++index;
            }
        }
        window.AdvanceClock(0);
    }
    int result = 0;
    window.ShowPage(PlayerWindow::PageLibrary);
    Pump();
    result |= Save(window.m_hWnd, nullptr, base + L"library.png");
    window.ShowPage(PlayerWindow::PagePlaying);
    Pump();
    result |= Save(window.m_hWnd, nullptr, base + L"playing.png");
    window.ShowPage(PlayerWindow::PageSettings);
    Pump();
    result |= Save(window.m_hWnd, nullptr, base + L"settings.png");

    window.ShowPage(PlayerWindow::PageLibrary);
    if (MirlListView *list = window.List()) {
        RECT row = {};
        list->GetWindowRect(&row);
        POINT at = {row.left + 120, row.top + list->GetTitleHeight() + 24 * 4 + 12};
        window.OpenTrackMenu(at);
    }
    Pump();
    MirlMenuWindow *popup = MirlMenuWindow::Instance();
    result |= Save(window.m_hWnd, popup != nullptr ? popup->m_hWnd : nullptr, base + L"menu.png");
    MirlMenuWindow::FinalDestroy();
    return result;
}

} // namespace player
