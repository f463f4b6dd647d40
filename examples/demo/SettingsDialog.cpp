#include "SettingsDialog.h"

#include <vector>

namespace demo {

namespace {

enum : WORD { kShuffle = 101, kRepeat = 102, kLabel = 103, kLink = 104 };

// The dialog's template, word by word: a popup with a caption, two check boxes, a label, a
// label with a link, and OK and Cancel. Texts are set from the skin at WM_INITDIALOG.
class Template {
public:
    Template()
    {
        const DWORD child = WS_CHILD | WS_VISIBLE;
        Head(WS_POPUP | WS_CAPTION | WS_SYSMENU | DS_MODALFRAME, 6, 0, 0, 190, 112);
        Item(child | SS_LEFT, 8, 10, 92, 12, kLabel, 0x0082);
        Item(child | WS_TABSTOP | BS_AUTOCHECKBOX, 8, 34, 170, 12, kShuffle, 0x0080);
        Item(child | WS_TABSTOP | BS_AUTOCHECKBOX, 8, 50, 170, 12, kRepeat, 0x0080);
        Item(child | SS_LEFT, 8, 70, 170, 12, kLink, 0x0082);
        Item(child | WS_TABSTOP | BS_DEFPUSHBUTTON, 74, 90, 52, 16, IDOK, 0x0080);
        Item(child | WS_TABSTOP | BS_PUSHBUTTON, 130, 90, 52, 16, IDCANCEL, 0x0080);
    }
    const DLGTEMPLATE *get() const { return reinterpret_cast<const DLGTEMPLATE *>(m_Words.data()); }

private:
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
    std::vector<WORD> m_Words;
};

const wchar_t *SkinText(const wchar_t *name)
{
    MirlUiElementText *text = static_cast<MirlUiElementText *>(MirlUI::Instance()->GetUiElement(name, UI_ELEMENT_TEXT));
    return text != nullptr && text->GetText() != nullptr ? text->GetText() : L"";
}

// The skin's dark background under the skinned controls, which paint their own fill.
const Gdiplus::ARGB kFill = 0xFF1B2130;

} // namespace

SettingsDialog::SettingsDialog() : m_Dialog(nullptr), m_Crossfade(5)
{
}

SettingsDialog::~SettingsDialog()
{
    Close();
}

INT_PTR SettingsDialog::Run(HWND owner)
{
    Template form;
    return ::DialogBoxIndirectParamW(::GetModuleHandleW(nullptr), form.get(), owner, DialogProc,
                                     reinterpret_cast<LPARAM>(this));
}

HWND SettingsDialog::Open(HWND owner)
{
    Template form;
    m_Dialog = ::CreateDialogIndirectParamW(::GetModuleHandleW(nullptr), form.get(), owner, DialogProc,
                                            reinterpret_cast<LPARAM>(this));
    if (m_Dialog != nullptr) {
        ::ShowWindow(m_Dialog, SW_SHOW);
    }
    return m_Dialog;
}

void SettingsDialog::Close()
{
    if (m_Dialog != nullptr && ::IsWindow(m_Dialog)) {
        ::DestroyWindow(m_Dialog);
    }
    m_Dialog = nullptr;
}

void SettingsDialog::OnInit(HWND dialog)
{
    m_Dialog = dialog;
    ::SetWindowTextW(dialog, SkinText(L"TxtSettings"));
    ::SetDlgItemTextW(dialog, kLabel, SkinText(L"TxtCrossfade"));
    ::SetDlgItemTextW(dialog, kShuffle, SkinText(L"TxtShuffle"));
    ::SetDlgItemTextW(dialog, kRepeat, SkinText(L"TxtRepeat"));
    ::SetDlgItemTextW(dialog, kLink, SkinText(L"TxtSettingsLink"));
    ::SetDlgItemTextW(dialog, IDOK, SkinText(L"TxtOk"));
    ::SetDlgItemTextW(dialog, IDCANCEL, SkinText(L"TxtCancel"));

    m_Ok.SubclassWindowBtn(::GetDlgItem(dialog, IDOK), nullptr);
    m_Cancel.SubclassWindowBtn(::GetDlgItem(dialog, IDCANCEL), nullptr);
    m_Shuffle.SubclassWindowBtn(::GetDlgItem(dialog, kShuffle), nullptr);
    m_Repeat.SubclassWindowBtn(::GetDlgItem(dialog, kRepeat), nullptr);
    for (MirlDlgButton *button : {&m_Ok, &m_Cancel, &m_Shuffle, &m_Repeat}) {
        button->m_BkColor = kFill;
    }
    // A label's fill brush is made when it is skinned: its colour is set first.
    m_Label.m_BkColor = m_Link.m_BkColor = kFill;
    m_Label.SubclassWindowStatic(::GetDlgItem(dialog, kLabel), nullptr);
    m_Link.SubclassWindowStatic(::GetDlgItem(dialog, kLink), nullptr);
    ::SendDlgItemMessageW(dialog, kShuffle, BM_SETCHECK, BST_CHECKED, 0);

    // The number field and its arrows beside the label, made from the skin's templates.
    RECT label = {};
    ::GetWindowRect(::GetDlgItem(dialog, kLabel), &label);
    ::MapWindowPoints(nullptr, dialog, reinterpret_cast<POINT *>(&label), 2);
    RECT field = {label.right + 8, label.top - 5, label.right + 64, label.top + 19};
    RECT arrows = {field.right, field.top, field.right + 16, field.bottom};
    m_Field.reset(new MirlCommonEdit());
    m_Spin.reset(new MirlSpinCtrl());
    m_Field->Create(nullptr, dialog, &field, L"SettingsCrossfade");
    m_Spin->Create(nullptr, dialog, &arrows, L"SettingsCrossfadeSpin");
    m_Spin->SetBuddyWindow(m_Field.get());
    m_Spin->SetStep(1);
    m_Spin->SetPosition(m_Crossfade);
}

void SettingsDialog::OnDestroy()
{
    // The dialog goes: its controls are given back, the number field and arrows destroyed and
    // deleted before their parent.
    m_Ok.UnSubclass();
    m_Cancel.UnSubclass();
    m_Shuffle.UnSubclass();
    m_Repeat.UnSubclass();
    m_Label.UnSubclass();
    m_Link.UnSubclass();
    for (MirlWindowBase *window : {static_cast<MirlWindowBase *>(m_Spin.get()), static_cast<MirlWindowBase *>(m_Field.get())}) {
        if (window != nullptr && window->IsWindow()) {
            window->DestroyWindow();
        }
    }
    m_Spin.reset();
    m_Field.reset();
}

INT_PTR CALLBACK SettingsDialog::DialogProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam)
{
    SettingsDialog *self = reinterpret_cast<SettingsDialog *>(::GetWindowLongPtrW(dialog, DWLP_USER));
    switch (message) {
    case WM_INITDIALOG:
        ::SetWindowLongPtrW(dialog, DWLP_USER, lParam);
        reinterpret_cast<SettingsDialog *>(lParam)->OnInit(dialog);
        return TRUE;
    case WM_ERASEBKGND:
    case WM_PRINTCLIENT: {
        // The dialog's own background, in the skin's colour, on screen and in a picture.
        RECT client = {};
        ::GetClientRect(dialog, &client);
        HBRUSH fill = ::CreateSolidBrush(RGB(0x1B, 0x21, 0x30));
        ::FillRect(reinterpret_cast<HDC>(wParam), &client, fill);
        ::DeleteObject(fill);
        ::SetWindowLongPtrW(dialog, DWLP_MSGRESULT, 1);
        return TRUE;
    }
    // The skinned and the library's controls want their notifications back, as every library
    // window reflects them.
    case WM_DRAWITEM: {
        const DRAWITEMSTRUCT *item = reinterpret_cast<const DRAWITEMSTRUCT *>(lParam);
        ::SendMessageW(item->hwndItem, OCM_DRAWITEM, wParam, lParam);
        return TRUE;
    }
    case WM_NOTIFY: {
        const NMHDR *header = reinterpret_cast<const NMHDR *>(lParam);
        ::SetWindowLongPtrW(dialog, DWLP_MSGRESULT, ::SendMessageW(header->hwndFrom, OCM_NOTIFY, wParam, lParam));
        return TRUE;
    }
    case WM_COMMAND:
        if (lParam != 0 && HIWORD(wParam) == EN_CHANGE) {
            ::SendMessageW(reinterpret_cast<HWND>(lParam), OCM_COMMAND, wParam, lParam);
        } else if (LOWORD(wParam) == IDOK || LOWORD(wParam) == IDCANCEL) {
            if (self != nullptr && LOWORD(wParam) == IDOK && self->m_Field != nullptr) {
                self->m_Crossfade = self->m_Field->GetPosition();
            }
            ::EndDialog(dialog, LOWORD(wParam));
        }
        return TRUE;
    case WM_DESTROY:
        if (self != nullptr) {
            self->OnDestroy();
        }
        return FALSE;
    default: return FALSE;
    }
}

} // namespace demo
