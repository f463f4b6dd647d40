// In-memory dialog templates for the tests of the dialog controls: a DLGTEMPLATE with its items,
// built word by word, and a modeless dialog made from it.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace mirltest {

struct DialogItem {
    DWORD style;
    short x, y, cx, cy;
    WORD id;
    WORD classAtom; // 0x0080 button, 0x0081 edit, 0x0082 static
    std::wstring text;
};

// The template of a popup dialog holding the items, in dialog units, ready for
// CreateDialogIndirectParamW and DialogBoxIndirectParamW.
class DialogTemplate {
public:
    DialogTemplate(DWORD style, short cx, short cy, const std::vector<DialogItem> &items)
    {
        Put(style);
        Put(0); // extended style
        PutWord(static_cast<WORD>(items.size()));
        PutWord(0);
        PutWord(0);
        PutWord(static_cast<WORD>(cx));
        PutWord(static_cast<WORD>(cy));
        PutWord(0); // no menu
        PutWord(0); // the dialog class
        PutString(L"");
        for (const DialogItem &item : items) {
            Align();
            Put(item.style);
            Put(0);
            PutWord(static_cast<WORD>(item.x));
            PutWord(static_cast<WORD>(item.y));
            PutWord(static_cast<WORD>(item.cx));
            PutWord(static_cast<WORD>(item.cy));
            PutWord(item.id);
            PutWord(0xFFFF);
            PutWord(item.classAtom);
            PutString(item.text);
            PutWord(0); // no creation data
        }
    }

    const DLGTEMPLATE *get() const { return reinterpret_cast<const DLGTEMPLATE *>(m_Words.data()); }

private:
    void PutWord(WORD word) { m_Words.push_back(word); }
    void Put(DWORD value)
    {
        PutWord(LOWORD(value));
        PutWord(HIWORD(value));
    }
    void PutString(const std::wstring &text)
    {
        for (wchar_t c : text) {
            PutWord(static_cast<WORD>(c));
        }
        PutWord(0);
    }
    void Align()
    {
        if (m_Words.size() % 2 != 0) {
            PutWord(0);
        }
    }
    // DWORD-aligned storage: the vector of WORDs starts on the heap's alignment.
    std::vector<WORD> m_Words;
};

} // namespace mirltest
