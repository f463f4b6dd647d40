#include "MirlDialogStorm.h"

#include <cwchar>
#include <vector>

namespace mirlfuzz {

namespace {

// An application's dialog procedure: owner-drawn controls get their WM_DRAWITEM back reflected,
// as the skinned button expects of a parent.
INT_PTR CALLBACK StormDialogProc(HWND, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_INITDIALOG) {
        return TRUE;
    }
    if (message == WM_DRAWITEM && lParam != 0) {
        const DRAWITEMSTRUCT *item = reinterpret_cast<const DRAWITEMSTRUCT *>(lParam);
        return ::SendMessageW(item->hwndItem, OCM_DRAWITEM, wParam, lParam) != 0;
    }
    return FALSE;
}

void PutWord(std::vector<WORD> &words, WORD word)
{
    words.push_back(word);
}

void PutText(std::vector<WORD> &words, const wchar_t *text)
{
    for (; *text != L'\0'; ++text) {
        words.push_back(static_cast<WORD>(*text));
    }
    words.push_back(0);
}

void PutItem(std::vector<WORD> &words, DWORD style, short x, short y, short cx, short cy, WORD id, WORD atom,
             const wchar_t *text)
{
    if (words.size() % 2 != 0) {
        PutWord(words, 0);
    }
    const WORD fixed[] = {LOWORD(style), HIWORD(style), 0, 0, static_cast<WORD>(x), static_cast<WORD>(y),
                          static_cast<WORD>(cx), static_cast<WORD>(cy), id, 0xFFFF, atom};
    words.insert(words.end(), fixed, fixed + sizeof(fixed) / sizeof(fixed[0]));
    PutText(words, text);
    PutWord(words, 0);
}

enum : WORD { kPush = 10, kCheck = 11, kRadio = 12, kLink = 13, kPlain = 14 };

class DialogStormWindow : public MirlWindowBase {
public:
    DialogStormWindow(MirlWindowBase *host, const wchar_t *className) : m_Dialog(NULL)
    {
        const DWORD child = WS_CHILD | WS_VISIBLE;
        std::vector<WORD> words;
        const DWORD style = DS_CONTROL | child;
        const WORD head[] = {LOWORD(style), HIWORD(style), 0, 0, 5, 0, 0, 180, 100, 0, 0};
        words.insert(words.end(), head, head + sizeof(head) / sizeof(head[0]));
        PutText(words, L"");
        PutItem(words, child | WS_TABSTOP | BS_DEFPUSHBUTTON, 4, 4, 60, 16, kPush, 0x0080, L"&Storm");
        PutItem(words, child | WS_TABSTOP | BS_AUTOCHECKBOX, 4, 24, 80, 12, kCheck, 0x0080, L"Check");
        PutItem(words, child | WS_TABSTOP | BS_RADIOBUTTON, 4, 40, 80, 12, kRadio, 0x0080, L"Radio");
        PutItem(words, child | SS_LEFT, 4, 56, 160, 12, kLink, 0x0082, L"Visit <link>us</link> now");
        PutItem(words, child | SS_LEFT, 4, 72, 160, 12, kPlain, 0x0082, L"Plain");
        m_Dialog = ::CreateDialogIndirectParamW(::GetModuleHandleW(NULL), reinterpret_cast<const DLGTEMPLATE *>(words.data()),
                                                host->m_hWnd, StormDialogProc, 0);
        if (m_Dialog == NULL) {
            return;
        }
        m_Push.SubclassWindowBtn(::GetDlgItem(m_Dialog, kPush), host);
        m_Check.SubclassWindowBtn(::GetDlgItem(m_Dialog, kCheck), host);
        m_Radio.SubclassWindowBtn(::GetDlgItem(m_Dialog, kRadio), host);
        m_Link.SubclassWindowStatic(::GetDlgItem(m_Dialog, kLink), host);
        m_Plain.SubclassWindowStatic(::GetDlgItem(m_Dialog, kPlain), host);
        m_Check.SetTransparent(true);
        m_Plain.SetTransparent(true);

        const bool button = _wcsicmp(className, L"DLGBUTTON") == 0;
        m_hWnd = button ? m_Push.GetHwnd() : m_Link.GetHwnd();
        m_Class = className;
        // The host lays its children out: the stormed control keeps its place in the dialog.
        RECT place = {};
        ::GetWindowRect(m_hWnd, &place);
        ::MapWindowPoints(NULL, m_Dialog, reinterpret_cast<POINT *>(&place), 2);
        m_X = place.left;
        m_Y = place.top;
        m_Width = place.right - place.left;
        m_Height = place.bottom - place.top;
    }

    ~DialogStormWindow() override
    {
        m_Push.UnSubclass();
        m_Check.UnSubclass();
        m_Radio.UnSubclass();
        m_Link.UnSubclass();
        m_Plain.UnSubclass();
        if (::IsWindow(m_Dialog)) {
            ::DestroyWindow(m_Dialog);
        }
        m_hWnd = NULL;
    }

    DialogStormWindow(const DialogStormWindow &) = delete;
    DialogStormWindow &operator=(const DialogStormWindow &) = delete;

    bool Made() const { return m_hWnd != NULL; }

private:
    HWND m_Dialog;
    MirlDlgButton m_Push;
    MirlDlgButton m_Check;
    MirlDlgButton m_Radio;
    MirlDlgStatic m_Link;
    MirlDlgStatic m_Plain;
};

} // namespace

bool IsDialogStormClass(const wchar_t *className)
{
    return _wcsicmp(className, L"DLGBUTTON") == 0 || _wcsicmp(className, L"DLGSTATIC") == 0;
}

MirlWindowBase *MakeDialogStormWindow(MirlWindowBase *host, const wchar_t *className)
{
    DialogStormWindow *window = new DialogStormWindow(host, className);
    if (!window->Made()) {
        delete window;
        return nullptr;
    }
    return window;
}

} // namespace mirlfuzz
