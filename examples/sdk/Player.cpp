// Player.cpp: the smallest MIRL application. It loads a skin, grows its window from the
// skin's "MainFrame" template and runs until the window is closed.
//   Player SKIN.zip [--lang ID] [--close-after MS]
// --close-after closes the window by itself, for unattended runs.
#include <Mirl.h>

#include <cstdio>
#include <cwchar>

class Frame : public MirlWindowImpl<Frame> {
public:
    BEGIN_MSG_MAP(Frame)
        MESSAGE_HANDLER(WM_TIMER, OnTimer)
        MESSAGE_HANDLER(WM_DESTROY, OnDestroy)
        CHAIN_MSG_MAP(MirlWindowImpl<Frame>)   // the library's map comes last
    END_MSG_MAP()

    LRESULT OnTimer(UINT, WPARAM, LPARAM, BOOL &) { DestroyWindow(); return 0; }
    LRESULT OnDestroy(UINT, WPARAM, LPARAM, BOOL &handled) { PostQuitMessage(0); handled = FALSE; return 0; }
};

int wmain(int argc, wchar_t **argv)
{
    if (argc < 2) {
        std::fwprintf(stderr, L"usage: Player SKIN.zip [--lang ID] [--close-after MS]\n");
        return 2;
    }
    unsigned int language = 1033;
    int closeAfter = -1;
    for (int i = 2; i + 1 < argc; i += 2) {
        if (std::wcscmp(argv[i], L"--lang") == 0)
            language = static_cast<unsigned int>(std::wcstoul(argv[i + 1], nullptr, 10));
        else if (std::wcscmp(argv[i], L"--close-after") == 0)
            closeAfter = static_cast<int>(std::wcstol(argv[i + 1], nullptr, 10));
    }

    try {
        MirlIntialize(argv[1], language);
    } catch (const MirlException &e) {
        std::fwprintf(stderr, L"Player: the skin could not be loaded: %ls\n", e.what() ? e.what() : L"");
        MirlUnIntialize();
        return 1;
    } catch (const _com_error &e) {
        std::fwprintf(stderr, L"Player: the skin has a value the library can't read (0x%08lX)\n",
                      static_cast<unsigned long>(e.Error()));
        MirlUnIntialize();
        return 1;
    }

    int result = 0;
    {
        Frame frame;
        if (frame.Create(nullptr, nullptr, (LPRECT)nullptr, L"MainFrame") == nullptr) {
            std::fwprintf(stderr, L"Player: the skin has no \"MainFrame\" window template\n");
            result = 1;
        } else {
            wchar_t title[128] = {};
            frame.GetWindowText(title, 128);
            std::wprintf(L"%ls\n", title);   // the template's "Text", in the language asked for
            std::fflush(stdout);
            if (closeAfter >= 0)
                frame.SetTimer(1, static_cast<UINT>(closeAfter));
            MSG msg;
            while (GetMessageW(&msg, nullptr, 0, 0) > 0) {
                TranslateMessage(&msg);
                DispatchMessageW(&msg);
            }
        }
    }
    MirlUnIntialize();
    return result;
}
