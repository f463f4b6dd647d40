// Helpers of the number-field tests: a frame from the "dialogs" skin that reflects notifications,
// and controls made by the factory from their templates.
#pragma once

#include "MirlCommonEdit.h"
#include "controls/text/MirlButtonTestSupport.h"

#include <memory>

namespace mirltest {

// A control the factory made from a template of the skin, as a child of the frame.
template <class T>
std::unique_ptr<T> MakeFromTemplate(MirlWindowBase *frame, const wchar_t *name)
{
    MirlUiWindow *ui = static_cast<MirlUiWindow *>(MirlUI::Instance()->GetUiElement(name, UI_ELEMENT_WINDOW));
    if (ui == nullptr) {
        return nullptr;
    }
    MirlWindowBase *made = MirlWindowBase::CreateMirlWindow(frame, ui);
    T *typed = dynamic_cast<T *>(made);
    if (typed == nullptr) {
        delete made;
    }
    return std::unique_ptr<T>(typed);
}

// Sends the character keys of text to a window as WM_CHAR.
inline void Type(HWND window, const wchar_t *text)
{
    for (; *text != L'\0'; ++text) {
        ::SendMessageW(window, WM_CHAR, *text, 1);
    }
}

inline std::wstring TextOf(HWND window)
{
    wchar_t text[64] = {};
    ::GetWindowTextW(window, text, 64);
    return text;
}

} // namespace mirltest
