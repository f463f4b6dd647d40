// A small modeless dialog of the system's own controls, skinned in place with the library's
// dialog button and static: a heading, a few lines and OK. The player shows About and a track's
// properties in it. One at a time: opening it again replaces what it shows.
#pragma once

#include "Mirl.h"

#include <string>

namespace player {

class InfoDialog {
public:
    InfoDialog();
    ~InfoDialog();
    InfoDialog(const InfoDialog &) = delete;
    InfoDialog &operator=(const InfoDialog &) = delete;

    // Shows the dialog over owner with a caption, a heading and a body (lines split by '\n').
    HWND Open(HWND owner, const std::wstring &caption, const std::wstring &heading, const std::wstring &body,
              const std::wstring &ok);
    void Close();
    HWND Window() const { return m_Dialog; }
    bool IsOpen() const { return m_Dialog != nullptr && ::IsWindow(m_Dialog); }

    enum : WORD { kHeading = 101, kBody = 102 };

private:
    static INT_PTR CALLBACK DialogProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);
    void OnInit(HWND dialog);
    void OnDestroy();

    HWND m_Dialog;
    std::wstring m_Caption;
    std::wstring m_Heading;
    std::wstring m_Body;
    std::wstring m_OkText;
    MirlDlgButton m_Ok;
    MirlDlgStatic m_HeadingLabel;
    MirlDlgStatic m_BodyLabel;
};

} // namespace player
