// The demo's settings dialog: an ordinary dialog from an in-memory template, as an application
// keeps its settings, whose own buttons and labels are skinned in place, with a skinned number
// field and spin for the crossfade in seconds. Texts come from the skin, in its language.
#pragma once

#include "Mirl.h"

#include <memory>

namespace demo {

class SettingsDialog {
public:
    SettingsDialog();
    ~SettingsDialog();
    SettingsDialog(const SettingsDialog &) = delete;
    SettingsDialog &operator=(const SettingsDialog &) = delete;

    // Modal: answers IDOK or IDCANCEL; the crossfade chosen is kept on IDOK.
    INT_PTR Run(HWND owner);
    // Modeless and shown, for a picture; Close destroys it.
    HWND Open(HWND owner);
    void Close();

    int Crossfade() const { return m_Crossfade; }

private:
    static INT_PTR CALLBACK DialogProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);
    void OnInit(HWND dialog);
    void OnDestroy();

    HWND m_Dialog;
    int m_Crossfade;
    MirlDlgButton m_Ok;
    MirlDlgButton m_Cancel;
    MirlDlgButton m_Shuffle;
    MirlDlgButton m_Repeat;
    MirlDlgStatic m_Label;
    MirlDlgStatic m_Link;
    std::unique_ptr<MirlCommonEdit> m_Field;
    std::unique_ptr<MirlSpinCtrl> m_Spin;
};

} // namespace demo
