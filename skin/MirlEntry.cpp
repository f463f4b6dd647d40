#include "MirlEntry.h"

#include "MirlException.h"
#include "MirlList.h"
#include "MirlSkin.h"

#include <algorithm>
using std::max;
using std::min;
#include <gdiplus.h>

namespace {

ULONG_PTR g_GdiplusToken = 0;
// Set by MirlIntialize and never cleared: the caller pairs the calls.
MirlUI *g_Ui = nullptr;

// Menu strings are read into a buffer of this many characters; longer ones are cut to fit.
const UINT kMenuTextCapacity = 512;

void ResetMenu(HMENU menu, int depth)
{
    // A menu that contains itself must not recurse for ever.
    if (depth > 32) {
        return;
    }
    int count = GetMenuItemCount(menu);
    for (int position = 0; position < count; ++position) {
        wchar_t text[kMenuTextCapacity] = {};
        MENUITEMINFOW info = {};
        info.cbSize = sizeof(info);
        info.fMask = MIIM_STRING | MIIM_FTYPE | MIIM_SUBMENU;
        info.dwTypeData = text;
        info.cch = 0;
        if (!GetMenuItemInfoW(menu, static_cast<UINT>(position), TRUE, &info)) {
            continue;
        }
        if (info.fType == MFT_STRING) {
            ZeroMemory(text, sizeof(text));
            info.cch = std::min<UINT>(info.cch + 1, kMenuTextCapacity);
            info.dwTypeData = text;
            if (GetMenuItemInfoW(menu, static_cast<UINT>(position), TRUE, &info)) {
                text[kMenuTextCapacity - 1] = L'\0';
                MirlUI *ui = MirlUI::Instance();
                MirlUiElement *element = ui != nullptr ? ui->GetUiElement(text, UI_ELEMENT_TEXT) : nullptr;
                if (element != nullptr) {
                    const wchar_t *replacement = static_cast<MirlUiElementText *>(element)->GetText();
                    MENUITEMINFOW update = {};
                    update.cbSize = sizeof(update);
                    update.fMask = MIIM_STRING;
                    update.dwTypeData = const_cast<wchar_t *>(replacement);
                    update.cch = static_cast<UINT>(wcslen(replacement));
                    SetMenuItemInfoW(menu, static_cast<UINT>(position), TRUE, &update);
                }
            }
        }
        if (info.hSubMenu != nullptr) {
            ResetMenu(info.hSubMenu, depth + 1);
        }
    }
}

} // namespace

extern "C" {

void MirlIntialize(const wchar_t *skinPath, unsigned int language)
{
    CoInitialize(nullptr);
    Gdiplus::GdiplusStartupInput input;
    if (Gdiplus::GdiplusStartup(&g_GdiplusToken, &input, nullptr) != Gdiplus::Ok) {
        throw MirlException("Can't find gdiplus.\nPlease make sure you have installed gdiplus!\n"
                            "You can go to Microsoft web to install it");
    }
    g_Ui = MirlUI::Instance();
    if (g_Ui == nullptr) {
        throw MirlException(L"Out of memory");
    }
    g_Ui->SetCurrentLanguage(language);
    g_Ui->Load(skinPath);
}

void MirlUnIntialize()
{
    MirlMenuWindow::FinalDestroy();
    if (g_Ui == nullptr) {
        return;
    }
    MirlUI::Release();
    Gdiplus::GdiplusShutdown(g_GdiplusToken);
    CoUninitialize();
}

void MirlMenuReset(HMENU menu)
{
    if (menu == nullptr) {
        return;
    }
    ResetMenu(menu, 0);
}

} // extern "C"
