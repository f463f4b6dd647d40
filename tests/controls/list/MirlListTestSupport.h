// Helpers of the list family's tests: the fixture skin, a holder window that records the
// commands it receives and can act inside them, and the popup's window.
#pragma once

#include "MirlList.h"
#include "controls/container/MirlContainerTestSupport.h"
#include "MirlMessageRecorder.h"

#include <functional>
#include <utility>
#include <vector>

namespace mirltest {

// A top-level window from a template that keeps every WM_COMMAND and every list notification
// (1124 to 1126) and may run a test's own code inside a command.
class ListHolder : public MirlWindowImpl<ListHolder> {
public:
    std::vector<std::pair<WPARAM, LPARAM>> m_Commands;
    std::vector<std::pair<UINT, WPARAM>> m_Notices;
    std::function<void(WPARAM, LPARAM)> m_OnCommand;
    std::function<void(UINT, WPARAM)> m_OnNotice;

    BEGIN_MSG_MAP(ListHolder)
        MESSAGE_HANDLER(WM_COMMAND, OnCommand)
        MESSAGE_RANGE_HANDLER(WM_USER + 100, WM_USER + 102, OnNotice)
        CHAIN_MSG_MAP(MirlWindowImpl<ListHolder>)
    END_MSG_MAP()

    LRESULT OnCommand(UINT, WPARAM wParam, LPARAM lParam, BOOL &bHandled)
    {
        m_Commands.push_back(std::make_pair(wParam, lParam));
        if (m_OnCommand) {
            m_OnCommand(wParam, lParam);
        }
        bHandled = FALSE;
        return 0;
    }
    LRESULT OnNotice(UINT uMsg, WPARAM wParam, LPARAM, BOOL &)
    {
        m_Notices.push_back(std::make_pair(uMsg, wParam));
        if (m_OnNotice) {
            m_OnNotice(uMsg, wParam);
        }
        return 0;
    }

    bool Open(const wchar_t *name = L"Host")
    {
        return Create(nullptr, nullptr, static_cast<LPRECT>(nullptr), name) != nullptr;
    }
};

// The window of the process's popup, null when there is none.
inline HWND PopupWindow()
{
    MirlMenuWindow *popup = MirlMenuWindow::Instance();
    return popup != nullptr ? popup->m_hWnd : nullptr;
}

} // namespace mirltest
