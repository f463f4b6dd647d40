// The demo application: the sample skin's media player window, its library window, or its
// settings dialog.
//   PlayerDemo [--skin PACKAGE.zip] [--lang ID] [--window MainFrame|LibraryFrame] [--settings] [--png OUT.png]
// With --png the window is created, laid out, painted into a picture and saved, and the program
// ends: that is how a machine without a screen shows it. Without, the window stays open.
// --settings shows the settings dialog, a dialog of the system's controls skinned in place.
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
        MESSAGE_HANDLER(WM_DESTROY, OnDestroy)
        CHAIN_MSG_MAP(MirlWindowImpl<PlayerFrame>)
    END_MSG_MAP()

    LRESULT OnDestroy(UINT, WPARAM, LPARAM, BOOL &bHandled)
    {
        ::PostQuitMessage(0);
        bHandled = FALSE;
        return 0;
    }
};

std::wstring ProgramFolder()
{
    wchar_t path[MAX_PATH] = {};
    DWORD length = ::GetModuleFileNameW(nullptr, path, MAX_PATH);
    std::wstring folder(path, length);
    return folder.substr(0, folder.find_last_of(L"\\/"));
}

int Usage()
{
    std::fwprintf(stderr, L"usage: PlayerDemo [--skin PACKAGE.zip] [--lang ID] [--window NAME] [--settings] [--png OUT.png]\n");
    return 2;
}

// The library window shows a scan two thirds done and the balance in the middle.
void ShowLibraryState(MirlWindowBase &frame)
{
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
    std::wstring skin = ProgramFolder() + L"\\skins\\sample.zip";
    unsigned int language = 1033;
    const wchar_t *png = nullptr;
    const wchar_t *window = L"MainFrame";
    bool settings = false;
    for (int i = 1; i < argc; ++i) {
        if (std::wcscmp(argv[i], L"--skin") == 0 && i + 1 < argc) {
            skin = argv[++i];
        } else if (std::wcscmp(argv[i], L"--lang") == 0 && i + 1 < argc) {
            language = static_cast<unsigned int>(std::wcstoul(argv[++i], nullptr, 10));
        } else if (std::wcscmp(argv[i], L"--window") == 0 && i + 1 < argc) {
            window = argv[++i];
        } else if (std::wcscmp(argv[i], L"--settings") == 0) {
            settings = true;
        } else if (std::wcscmp(argv[i], L"--png") == 0 && i + 1 < argc) {
            png = argv[++i];
        } else {
            return Usage();
        }
    }

    try {
        MirlIntialize(skin.c_str(), language);
    } catch (const MirlException &e) {
        std::wprintf(L"The skin could not be opened (code %d): %ls\n", e.error(), e.what() != nullptr ? e.what() : L"");
        MirlUnIntialize();
        return 3;
    } catch (const _com_error &e) {
        std::wprintf(L"The skin holds a value that can't be read: HRESULT 0x%08lX\n", static_cast<unsigned long>(e.Error()));
        MirlUnIntialize();
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
            ShowLibraryState(frame);
            result = SavePicture(frame.m_hWnd, png);
            frame.DestroyWindow();
        } else {
            ShowLibraryState(frame);
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
