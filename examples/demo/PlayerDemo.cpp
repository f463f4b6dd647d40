// The demo application: the sample skin's media player window, its library window, its browser
// window, or its settings dialog.
//   PlayerDemo [--skin PACKAGE.zip] [--lang ID] [--window MainFrame|LibraryFrame|BrowseFrame] [--settings] [--png OUT.png]
// With --png the window is created, laid out, painted into a picture and saved, and the program
// ends: that is how a machine without a screen shows it. Without, the window stays open.
// --settings shows the settings dialog, a dialog of the system's controls skinned in place.
#include "DemoSupport.h"
#include "Mirl.h"
#include "MirlViewRender.h"
#include "SettingsDialog.h"

#include <fcntl.h>
#include <io.h>

#include <cstdio>
#include <cwchar>
#include <string>

namespace {

class PlayerFrame : public MirlWindowImpl<PlayerFrame> {
public:
    BEGIN_MSG_MAP(PlayerFrame)
        MESSAGE_HANDLER(WM_VSCROLL, OnVScroll)
        MESSAGE_HANDLER(WM_DESTROY, OnDestroy)
        CHAIN_MSG_MAP(MirlWindowImpl<PlayerFrame>)
    END_MSG_MAP()

    // The browser window's panel of tracks is taller than its view: the skinned scroll bar
    // reports what the user did, and the application moves the panel and answers with the
    // position, as it would for the system's scroll bar.
    void PrepareScrolling()
    {
        m_Scroller = dynamic_cast<MirlScrollBar *>(GetWindowItem(L"Scroller"));
        MirlWindowBase *viewport = GetWindowItem(L"Viewport");
        m_Sheet = viewport != nullptr ? viewport->GetWindowItem(L"Sheet") : nullptr;
        if (m_Scroller == nullptr || m_Sheet == nullptr) {
            return;
        }
        RECT view = {};
        RECT sheet = {};
        ::GetClientRect(viewport->m_hWnd, &view);
        ::GetWindowRect(m_Sheet->m_hWnd, &sheet);
        SCROLLINFO info = {sizeof(info), SIF_ALL, 0, sheet.bottom - sheet.top, static_cast<UINT>(view.bottom), 0, 0};
        m_Scroller->SetScrollInfo(&info);
    }

    LRESULT OnVScroll(UINT, WPARAM wParam, LPARAM lParam, BOOL &bHandled)
    {
        if (m_Scroller == nullptr || m_Sheet == nullptr || reinterpret_cast<HWND>(lParam) != m_Scroller->m_hWnd) {
            bHandled = FALSE;
            return 0;
        }
        SCROLLINFO info = {sizeof(info)};
        m_Scroller->GetScrollInfo(&info);
        int pos = info.nPos;
        switch (LOWORD(wParam)) {
        case SB_LINEUP: pos -= 24; break;
        case SB_LINEDOWN: pos += 24; break;
        case SB_PAGEUP: pos -= static_cast<int>(info.nPage); break;
        case SB_PAGEDOWN: pos += static_cast<int>(info.nPage); break;
        case SB_THUMBPOSITION: pos = HIWORD(wParam); break;
        default: return 0;
        }
        pos = pos < 0 ? 0 : pos;
        m_Scroller->SetScrollPos(pos);
        ::SetWindowPos(m_Sheet->m_hWnd, nullptr, 0, -m_Scroller->GetScrollPos(), 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
        ::InvalidateRect(m_Scroller->m_hWnd, nullptr, TRUE);
        return 0;
    }

    LRESULT OnDestroy(UINT, WPARAM, LPARAM, BOOL &bHandled)
    {
        ::PostQuitMessage(0);
        bHandled = FALSE;
        return 0;
    }

private:
    MirlScrollBar *m_Scroller = nullptr;
    MirlWindowBase *m_Sheet = nullptr;
};

int Usage()
{
    std::fwprintf(stderr, L"usage: PlayerDemo [--skin PACKAGE.zip] [--lang ID] [--window MainFrame|LibraryFrame|BrowseFrame] [--settings] [--png OUT.png]\n");
    return 2;
}

// The player shows a track 1:42 into its 4:05 at volume 70; the library window a scan two
// thirds done and the balance in the middle; the browser window its tracks ready to scroll.
void ShowState(PlayerFrame &frame)
{
    if (MirlWindowBase *backdrop = frame.GetWindowItem(L"Backdrop")) {
        if (MirlMediaSeekBar *seek = dynamic_cast<MirlMediaSeekBar *>(backdrop->GetWindowItem(L"Seek"))) {
            seek->SetSeekPercent(102.0f / 245.0f);
        }
        if (MirlSlider *volume = dynamic_cast<MirlSlider *>(backdrop->GetWindowItem(L"Volume"))) {
            volume->SetRange(0, 100, false);
            volume->SetPos(70, true);
        }
    }
    frame.PrepareScrolling();
    MirlWindowBase *main = frame.GetWindowItem(L"Main");
    if (main == nullptr) {
        return;
    }
    if (MirlProgressBar *scan = dynamic_cast<MirlProgressBar *>(main->GetWindowItem(L"Scan"))) {
        scan->SetRange32(0, 1870);
        scan->SetPos(1204);
    }
    if (MirlTrackBar *balance = dynamic_cast<MirlTrackBar *>(main->GetWindowItem(L"Balance"))) {
        balance->SetRange(-50, 50);
        balance->SetTicFreq(10);
        balance->SetPos(0);
    }
}

// Paints the window's client area and its children into a picture saved as png.
int SavePicture(HWND window, const wchar_t *png)
{
    RECT client = {};
    ::GetClientRect(window, &client);
    mirlview::Picture picture(client.right, client.bottom);
    mirlview::ComposeWindowTree(window, picture);
    std::wstring error;
    if (!mirlview::SavePng(picture, png, error)) {
        std::wprintf(L"Could not write %ls: %ls\n", png, error.c_str());
        return 1;
    }
    std::wprintf(L"Wrote %ls (%ldx%ld)\n", png, client.right, client.bottom);
    return 0;
}

int ShowSettings(const wchar_t *png)
{
    demo::SettingsDialog settings;
    if (png == nullptr) {
        const INT_PTR answer = settings.Run(nullptr);
        std::wprintf(L"Settings: %ls, crossfade %d s\n", answer == IDOK ? L"OK" : L"cancelled", settings.Crossfade());
        return 0;
    }
    HWND dialog = settings.Open(nullptr);
    if (dialog == nullptr) {
        std::wprintf(L"The settings dialog could not be made.\n");
        return 4;
    }
    const int result = SavePicture(dialog, png);
    settings.Close();
    return result;
}

} // namespace

int wmain(int argc, wchar_t **argv)
{
    _setmode(_fileno(stdout), _O_U8TEXT);
    demo::SkinOptions options;
    const wchar_t *png = nullptr;
    const wchar_t *window = L"MainFrame";
    bool settings = false;
    for (int i = 1; i < argc; ++i) {
        if (options.Take(i, argc, argv)) {
            continue;
        }
        if (std::wcscmp(argv[i], L"--window") == 0 && i + 1 < argc) {
            window = argv[++i];
        } else if (std::wcscmp(argv[i], L"--settings") == 0) {
            settings = true;
        } else if (std::wcscmp(argv[i], L"--png") == 0 && i + 1 < argc) {
            png = argv[++i];
        } else {
            return Usage();
        }
    }

    if (!demo::OpenSkin(options.skin, options.language)) {
        return 3;
    }

    int result = 0;
    if (settings) {
        result = ShowSettings(png);
        MirlUnIntialize();
        return result;
    }
    {
        PlayerFrame frame;
        if (frame.Create(nullptr, nullptr, static_cast<LPRECT>(nullptr), window) == nullptr) {
            std::wprintf(L"The skin has no %ls template.\n", window);
            result = 4;
        } else if (png != nullptr) {
            ShowState(frame);
            result = SavePicture(frame.m_hWnd, png);
            frame.DestroyWindow();
        } else {
            ShowState(frame);
            MSG msg;
            while (::GetMessageW(&msg, nullptr, 0, 0) > 0) {
                ::TranslateMessage(&msg);
                ::DispatchMessageW(&msg);
            }
        }
    }
    MirlUnIntialize();
    return result;
}
