// The sample player: the sample skin's "PlayerWindow" over a built-in library of tracks.
//   Player [--skin PACKAGE.zip] [--lang ID] [--pictures FOLDER]
// With --pictures the window is shown in a fixed state and each page is painted into a PNG in
// FOLDER (player-library.png, player-playing.png, player-settings.png, player-menu.png), and
// the program ends: that is how a machine without a screen shows it.
#include "DemoSupport.h"
#include "PlayerPictures.h"
#include "PlayerWindow.h"

#include <fcntl.h>
#include <io.h>

#include <cstdio>
#include <cwchar>
#include <string>

namespace {

int Usage()
{
    std::fwprintf(stderr, L"usage: Player [--skin PACKAGE.zip] [--lang ID] [--pictures FOLDER]\n");
    return 2;
}

} // namespace

int wmain(int argc, wchar_t **argv)
{
    _setmode(_fileno(stdout), _O_U8TEXT);
    demo::SkinOptions options;
    const wchar_t *pictures = nullptr;
    for (int i = 1; i < argc; ++i) {
        if (options.Take(i, argc, argv)) {
            continue;
        }
        if (std::wcscmp(argv[i], L"--pictures") == 0 && i + 1 < argc) {
            pictures = argv[++i];
        } else {
            return Usage();
        }
    }

    if (!demo::OpenSkin(options.skin, options.language)) {
        return 3;
    }

    int result = 0;
    {
        player::PlayerModel model(player::MakeLibrary());
        player::PlayerWindow window(model);
        if (window.Open() == nullptr) {
            std::wprintf(L"The player window could not be made (no PlayerWindow template, or error %lu).\n",
                         ::GetLastError());
            result = 4;
        } else if (pictures != nullptr) {
            result = player::WritePictures(window, model, pictures);
            window.DestroyWindow();
        } else {
            window.SetQuitOnClose(true);
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
