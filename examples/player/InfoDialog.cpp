#include "InfoDialog.h"

#include "DemoSupport.h"

namespace player {

namespace {

// The dialog's template: a popup with a caption, two labels and OK. Texts are set at
// WM_INITDIALOG.
demo::DialogTemplate MakeTemplate()
{
    const DWORD child = WS_CHILD | WS_VISIBLE;
    demo::DialogTemplate form;
    form.Head(WS_POPUP | WS_CAPTION | WS_SYSMENU | DS_MODALFRAME, 3, 40, 40, 220, 96);
    form.Item(child | SS_LEFT, 10, 10, 200, 12, InfoDialog::kHeading, demo::DialogTemplate::kStatic);
    form.Item(child | SS_LEFT, 10, 28, 200, 40, InfoDialog::kBody, demo::DialogTemplate::kStatic);
    form.Item(child | WS_TABSTOP | BS_DEFPUSHBUTTON, 158, 74, 52, 16, IDOK, demo::DialogTemplate::kButton);
    return form;
}

} // namespace

InfoDialog::InfoDialog() : m_Dialog(nullptr)
{
}

InfoDialog::~InfoDialog()
{
    Close();
}

HWND InfoDialog::Open(HWND owner, const std::wstring &caption, const std::wstring &heading, const std::wstring &body,
                      const std::wstring &ok)
{
    Close();
    m_Caption = caption;
    m_Heading = heading;
    m_Body = body;
    m_OkText = ok;
    const demo::DialogTemplate form = MakeTemplate();
    m_Dialog = ::CreateDialogIndirectParamW(::GetModuleHandleW(nullptr), form.get(), owner, DialogProc,
                                            reinterpret_cast<LPARAM>(this));
    if (m_Dialog != nullptr) {
        ::ShowWindow(m_Dialog, SW_SHOW);
    }
    return m_Dialog;
}

void InfoDialog::Close()
{
    if (m_Dialog != nullptr && ::IsWindow(m_Dialog)) {
        ::DestroyWindow(m_Dialog);
    }
    m_Dialog = nullptr;
}

void InfoDialog::OnInit(HWND dialog)
{
    ::SetWindowTextW(dialog, m_Caption.c_str());
    ::SetDlgItemTextW(dialog, kHeading, m_Heading.c_str());
    ::SetDlgItemTextW(dialog, kBody, m_Body.c_str());
    ::SetDlgItemTextW(dialog, IDOK, m_OkText.c_str());
    m_Ok.SubclassWindowBtn(::GetDlgItem(dialog, IDOK), nullptr);
    m_Ok.m_BkColor = demo::kDialogFill;
    // A label's fill brush is made when it is skinned: its colour is set first.
    m_HeadingLabel.m_BkColor = m_BodyLabel.m_BkColor = demo::kDialogFill;
    m_HeadingLabel.SubclassWindowStatic(::GetDlgItem(dialog, kHeading), nullptr);
    m_BodyLabel.SubclassWindowStatic(::GetDlgItem(dialog, kBody), nullptr);
}

void InfoDialog::OnDestroy()
{
    m_Ok.UnSubclass();
    m_HeadingLabel.UnSubclass();
    m_BodyLabel.UnSubclass();
}

INT_PTR CALLBACK InfoDialog::DialogProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam)
{
    InfoDialog *self = reinterpret_cast<InfoDialog *>(::GetWindowLongPtrW(dialog, DWLP_USER));
    switch (message) {
    case WM_INITDIALOG:
        ::SetWindowLongPtrW(dialog, DWLP_USER, lParam);
        reinterpret_cast<InfoDialog *>(lParam)->OnInit(dialog);
        return TRUE;
    case WM_ERASEBKGND:
    case WM_PRINTCLIENT: return demo::PaintDialogBackground(dialog, wParam);
    // The skinned button draws itself when its drawing request comes back to it.
    case WM_DRAWITEM: {
        const DRAWITEMSTRUCT *item = reinterpret_cast<const DRAWITEMSTRUCT *>(lParam);
        ::SendMessageW(item->hwndItem, OCM_DRAWITEM, wParam, lParam);
        return TRUE;
    }
    case WM_COMMAND:
        if (LOWORD(wParam) == IDOK || LOWORD(wParam) == IDCANCEL) {
            if (self != nullptr) {
                self->Close();
            }
        }
        return TRUE;
    case WM_DESTROY:
        if (self != nullptr) {
            self->OnDestroy();
            if (self->m_Dialog == dialog) {
                self->m_Dialog = nullptr;
            }
        }
        return FALSE;
    default: return FALSE;
    }
}

} // namespace player
