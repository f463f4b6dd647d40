// What the sample programs share: the program's folder, the skin and language options, opening
// a skin with its errors told, a dialog template built word by word in memory, and a dialog's
// background in the skin's colour.
#pragma once

#include "Mirl.h"

#include <cstdio>
#include <cstdlib>
#include <cwchar>
#include <string>
#include <vector>

namespace demo {

inline std::wstring ProgramFolder()
{
    wchar_t path[MAX_PATH] = {};
    const DWORD length = ::GetModuleFileNameW(nullptr, path, MAX_PATH);
    std::wstring folder(path, length);
    return folder.substr(0, folder.find_last_of(L"\\/"));
}

// The options every sample program takes: --skin PACKAGE.zip (the sample skin beside the
// program if none) and --lang ID (1033 if none).
struct SkinOptions {
    std::wstring skin = ProgramFolder() + L"\\skins\\sample.zip";
    unsigned int language = 1033;

    // Takes argv[i] and its value if it is one of the two, moving i past them.
    bool Take(int &i, int argc, wchar_t **argv)
    {
        if (i + 1 >= argc) {
            return false;
        }
        if (std::wcscmp(argv[i], L"--skin") == 0) {
            skin = argv[++i];
            return true;
        }
        if (std::wcscmp(argv[i], L"--lang") == 0) {
            language = static_cast<unsigned int>(std::wcstoul(argv[++i], nullptr, 10));
            return true;
        }
        return false;
    }
};

// MirlIntialize, or a sentence on standard output and false (the library is then let go).
inline bool OpenSkin(const std::wstring &skin, unsigned int language)
{
    try {
        MirlIntialize(skin.c_str(), language);
        return true;
    } catch (const MirlException &e) {
        std::wprintf(L"The skin could not be opened (code %d): %ls\n", e.error(), e.what() != nullptr ? e.what() : L"");
    } catch (const _com_error &e) {
        std::wprintf(L"The skin holds a value that can't be read: HRESULT 0x%08lX\n", static_cast<unsigned long>(e.Error()));
    }
    MirlUnIntialize();
    return false;
}

// A dialog's template, word by word: a head, then items of the system's classes by atom
// (0x0080 button, 0x0082 static) with no text; texts are set at WM_INITDIALOG.
class DialogTemplate {
public:
    enum : WORD { kButton = 0x0080, kStatic = 0x0082 };

    void Head(DWORD style, WORD count, short x, short y, short cx, short cy)
    {
        const WORD words[] = {LOWORD(style), HIWORD(style), 0, 0, count, static_cast<WORD>(x), static_cast<WORD>(y),
                              static_cast<WORD>(cx), static_cast<WORD>(cy), 0, 0, 0};
        m_Words.assign(words, words + sizeof(words) / sizeof(words[0]));
    }
    void Item(DWORD style, short x, short y, short cx, short cy, WORD id, WORD atom)
    {
        if (m_Words.size() % 2 != 0) {
            m_Words.push_back(0);
        }
        const WORD words[] = {LOWORD(style), HIWORD(style), 0, 0, static_cast<WORD>(x), static_cast<WORD>(y),
                              static_cast<WORD>(cx), static_cast<WORD>(cy), id, 0xFFFF, atom, 0, 0};
        m_Words.insert(m_Words.end(), words, words + sizeof(words) / sizeof(words[0]));
    }
    const DLGTEMPLATE *get() const { return reinterpret_cast<const DLGTEMPLATE *>(m_Words.data()); }

private:
    std::vector<WORD> m_Words;
};

// The skin's dark background under the skinned controls, which paint their own fill.
const Gdiplus::ARGB kDialogFill = 0xFF1B2130;

// WM_ERASEBKGND and WM_PRINTCLIENT of a dialog: its client in the skin's colour, on the screen
// and in a picture. Answers TRUE with the message's result set.
inline INT_PTR PaintDialogBackground(HWND dialog, WPARAM dc)
{
    RECT client = {};
    ::GetClientRect(dialog, &client);
    HBRUSH fill = ::CreateSolidBrush(RGB(0x1B, 0x21, 0x30));
    ::FillRect(reinterpret_cast<HDC>(dc), &client, fill);
    ::DeleteObject(fill);
    ::SetWindowLongPtrW(dialog, DWLP_MSGRESULT, 1);
    return TRUE;
}

// A text element of the skin in its language, or empty.
inline std::wstring SkinText(const wchar_t *name)
{
    MirlUiElementText *text = static_cast<MirlUiElementText *>(MirlUI::Instance()->GetUiElement(name, UI_ELEMENT_TEXT));
    return text != nullptr && text->GetText() != nullptr ? text->GetText() : L"";
}

} // namespace demo
