// Accessibility: every window of the library answers WM_GETOBJECT for its client area with an
// IAccessible that gives the control's role, name, value, state and default action, read from
// the control itself at each call, so that screen readers and UI test tools see what a user sees.
#pragma once

#include "MirlExport.h"

#include <windows.h>

class MirlWindowBase;

namespace MIRL {

// The private message by which the accessible object asks the window, on the window's thread,
// for what it is (wParam AccessibleDescribe, lParam the answer), for one of its rows
// (AccessibleDescribeItem), or has it or a row do its default action (AccessibleDoDefault,
// AccessibleDoDefaultItem): the object holds the window's handle only, never a pointer.
enum AccessibleRequest {
    AccessibleDescribe = 1,
    AccessibleDoDefault = 2,
    AccessibleDescribeItem = 3,
    AccessibleDoDefaultItem = 4
};
MIRL_API UINT AccessibleMessage();

// The window's answer to WM_GETOBJECT and to AccessibleMessage(); anything else is left
// unhandled. Called by the message map of every window of the library.
MIRL_API LRESULT AnswerAccessibility(MirlWindowBase *window, UINT message, WPARAM wParam, LPARAM lParam, BOOL &bHandled);

// Tells the hooked tools that something of the window's client area changed: a value
// (EVENT_OBJECT_VALUECHANGE), a state (EVENT_OBJECT_STATECHANGE), the selection
// (EVENT_OBJECT_SELECTION). Nothing for a null window.
MIRL_API void NotifyAccessibleEvent(HWND window, DWORD event);
// What WM_SETTEXT or WM_ENABLE change for the tools: the name or the state; 0 for an edit's
// text, which is its value and is reported by the edit itself. Nothing for event 0.
MIRL_API DWORD AccessibleEventFor(MirlWindowBase *window, UINT message);

} // namespace MIRL
