// The demo for now: loads a skin package and prints what it holds, per element type and
// language, its texts in the chosen language, and the main window's template tree. Usage: SkinSummary [package.zip] [language]
#include "Mirl.h"

#include <fcntl.h>
#include <io.h>

#include <cstdio>
#include <cwchar>
#include <cstdlib>
#include <string>

namespace {

const wchar_t *const kTypeNames[] = {L"", L"information", L"colours", L"fonts", L"images", L"texts", L"windows"};

void PrintCounts(MirlUI *ui)
{
    for (unsigned long type = UI_ELEMENT_INFORMATION; type <= UI_ELEMENT_WINDOW; ++type) {
        for (unsigned int i = 0; i < ui->GetLanguageCount(type); ++i) {
            unsigned int language = ui->GetLanguage(type, i);
            std::wprintf(L"  %-12ls language %5u: %u\n", kTypeNames[type], language,
                         ui->GetUiElementCount(type, language));
        }
    }
}

void PrintTemplate(MirlUiWindow *window, int depth)
{
    MirlUiWindow::Attribute *cls = window->GetAttribute(L"Class");
    MirlUiWindow::Attribute *id = window->GetAttribute(L"CommandID");
    std::wprintf(L"  %*ls%ls (%ls", depth * 2, L"", window->GetName(), cls != nullptr ? cls->GetValue() : L"?");
    if (id != nullptr) {
        std::wprintf(L", id 0x%X", static_cast<unsigned>(id->GetInteger()));
    }
    std::wprintf(L")\n");
    for (unsigned i = 0; i < window->GetChildCount(); ++i) {
        PrintTemplate(window->GetChildByIndex(static_cast<int>(i)), depth + 1);
    }
}

std::wstring DefaultPackage()
{
    wchar_t path[MAX_PATH] = {};
    DWORD length = GetModuleFileNameW(nullptr, path, MAX_PATH);
    std::wstring dir(path, length);
    return dir.substr(0, dir.find_last_of(L"\\/")) + L"\\skins\\sample.zip";
}

} // namespace

int wmain(int argc, wchar_t **argv)
{
    // Wide output as UTF-8, so that every language's texts arrive intact.
    _setmode(_fileno(stdout), _O_U8TEXT);
    std::wstring package = argc > 1 && argv[1][0] != L'\0' ? argv[1] : DefaultPackage();
    unsigned language = argc > 2 ? static_cast<unsigned>(std::wcstoul(argv[2], nullptr, 10)) : 1033;
    try {
        MirlIntialize(package.c_str(), language);
    } catch (const MirlException &e) {
        std::wprintf(L"MirlIntialize failed with code %d: %ls\n", e.error(), e.what() != nullptr ? e.what() : L"");
        MirlUnIntialize();
        return 1;
    } catch (const _com_error &e) {
        std::wprintf(L"The skin holds a value that can't be read: HRESULT 0x%08lX\n", static_cast<unsigned long>(e.Error()));
        MirlUnIntialize();
        return 1;
    }

    MirlUI *ui = MirlUI::Instance();
    std::wprintf(L"Skin package: %ls\nLanguage: %u\n", package.c_str(), language);
    MirlUiElementInformation *info =
        static_cast<MirlUiElementInformation *>(ui->GetUiElement(L"Infoes", UI_ELEMENT_INFORMATION));
    if (info != nullptr) {
        std::wprintf(L"Title: %ls\nAuthor: %ls\nVersion: %ls\n", info->GetTitle() ? info->GetTitle() : L"",
                     info->GetAuthor() ? info->GetAuthor() : L"", info->GetVersion() ? info->GetVersion() : L"");
    }
    std::wprintf(L"Elements per type and language:\n");
    PrintCounts(ui);

    std::wprintf(L"Texts in language %u (falling back to 1033):\n", language);
    const wchar_t *const texts[] = {L"TxtTitle", L"TxtPlay", L"TxtStop", L"TxtOpen", L"TxtVolume"};
    for (const wchar_t *name : texts) {
        MirlUiElementText *text = static_cast<MirlUiElementText *>(ui->GetUiElement(name, UI_ELEMENT_TEXT));
        std::wprintf(L"  %-10ls = %ls\n", name, text != nullptr ? text->GetText() : L"(none)");
    }

    std::wprintf(L"Window templates:\n");
    MirlUiWindow *frame = ui->GetUiElement(0x1000UL);
    if (frame != nullptr) {
        PrintTemplate(frame, 0);
    }
    MirlUnIntialize();
    return 0;
}
