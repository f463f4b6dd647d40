#include "SettingsDialog.h"

#include "DemoSupport.h"

namespace demo {

namespace {

enum : WORD { kShuffle = 101, kRepeat = 102, kLabel = 103, kLink = 104 };

// The dialog's template: a popup with a caption, two check boxes, a label, a label with a link,
// and OK and Cancel. Texts are set from the skin at WM_INITDIALOG.
DialogTemplate MakeTemplate()
{
    const DWORD child = WS_CHILD | WS_VISIBLE;
    DialogTemplate form;
    form.Head(WS_POPUP | WS_CAPTION | WS_SYSMENU | DS_MODALFRAME, 6, 0, 0, 190, 112);
    form.Item(child | SS_LEFT, 8, 10, 92, 12, kLabel, DialogTemplate::kStatic);
    form.Item(child | WS_TABSTOP | BS_AUTOCHECKBOX, 8, 34, 170, 12, kShuffle, DialogTemplate::kButton);
    form.Item(child | WS_TABSTOP | BS_AUTOCHECKBOX, 8, 50, 170, 12, kRepeat, DialogTemplate::kButton);
    form.Item(child | SS_LEFT, 8, 70, 170, 12, kLink, DialogTemplate::kStatic);
    form.Item(child | WS_TABSTOP | BS_DEFPUSHBUTTON, 74, 90, 52, 16, IDOK, DialogTemplate::kButton);
    form.Item(child | WS_TABSTOP | BS_PUSHBUTTON, 130, 90, 52, 16, IDCANCEL, DialogTemplate::kButton);
    return form;
}

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
    const DialogTemplate form = MakeTemplate();
    return ::DialogBoxIndirectParamW(::GetModuleHandleW(nullptr), form.get(), owner, DialogProc,
                                     reinterpret_cast<LPARAM>(this));
}

HWND SettingsDialog::Open(HWND owner)
{
    const DialogTemplate form = MakeTemplate();
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
    ::SetWindowTextW(dialog, SkinText(L"TxtSettings").c_str());
    ::SetDlgItemTextW(dialog, kLabel, SkinText(L"TxtCrossfade").c_str());
    ::SetDlgItemTextW(dialog, kShuffle, SkinText(L"TxtShuffle").c_str());
    ::SetDlgItemTextW(dialog, kRepeat, SkinText(L"TxtRepeat").c_str());
    ::SetDlgItemTextW(dialog, kLink, SkinText(L"TxtSettingsLink").c_str());
    ::SetDlgItemTextW(dialog, IDOK, SkinText(L"TxtOk").c_str());
    ::SetDlgItemTextW(dialog, IDCANCEL, SkinText(L"TxtCancel").c_str());

    m_Ok.SubclassWindowBtn(::GetDlgItem(dialog, IDOK), nullptr);
    m_Cancel.SubclassWindowBtn(::GetDlgItem(dialog, IDCANCEL), nullptr);
    m_Shuffle.SubclassWindowBtn(::GetDlgItem(dialog, kShuffle), nullptr);
    m_Repeat.SubclassWindowBtn(::GetDlgItem(dialog, kRepeat), nullptr);
    for (MirlDlgButton *button : {&m_Ok, &m_Cancel, &m_Shuffle, &m_Repeat}) {
        button->m_BkColor = kDialogFill;
    }
    // A label's fill brush is made when it is skinned: its colour is set first.
    m_Label.m_BkColor = m_Link.m_BkColor = kDialogFill;
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
    case WM_PRINTCLIENT: return PaintDialogBackground(dialog, wParam);
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
