// What the dialog button and the dialog static share in taking over a window: the object in the
// user data, the former procedure on the window as a property as well (so that a message that
// arrives after the object let go still reaches it), giving the window back, and painting the
// given or the begun context through a memory context.
#pragma once

#include <windows.h>

#include <functional>

namespace MIRL {

// One taking over: the property name and the replacing procedure of a control class.
struct DlgSubclass {
    const wchar_t *property;
    WNDPROC procedure;

    // Puts object in the user data and procedure in place; answers the former procedure.
    WNDPROC Take(HWND hWnd, void *object) const;
    // Gives the former procedure back where the window still has this one, and clears the user
    // data where it still names object. Nothing for a window that is gone.
    void GiveBack(HWND hWnd, void *object, WNDPROC former) const;
    // Whether this class's procedure is the window's now.
    bool Holds(HWND hWnd) const;
    // The former procedure, as the property keeps it; DefWindowProc without one.
    LRESULT CallFormer(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam) const;
    // The last message of the window: the property goes, the message goes to former.
    LRESULT Final(HWND hWnd, WNDPROC former, UINT uMsg, WPARAM wParam, LPARAM lParam) const;
};

// A message to the object that holds the window. The last one lets the object go first (a later
// UnSubclass then does nothing); the others go to the object's OnMsg, then, unless it handled
// them, to the former procedure. No exception leaves the procedure.
template <class T>
LRESULT Dispatch(const DlgSubclass &subclass, T *self, void (T::*release)(), HWND hWnd, UINT uMsg, WPARAM wParam,
                 LPARAM lParam)
{
    if (uMsg == WM_NCDESTROY) {
        WNDPROC former = self->GetOldProc();
        (self->*release)();
        return subclass.Final(hWnd, former, uMsg, wParam, lParam);
    }
    int handled = 0;
    LRESULT result = 0;
    try {
        result = self->OnMsg(hWnd, uMsg, wParam, lParam, handled);
    } catch (...) {
        handled = 0;
    }
    return handled ? result : subclass.CallFormer(hWnd, uMsg, wParam, lParam);
}

// WM_PAINT of a taken-over control: with a context in wParam, a memory context of the client
// over it; without, BeginPaint and a memory context of the paint rectangle.
void PaintThroughMemoryDC(HWND hWnd, HDC given, const std::function<void(HDC)> &paint);

} // namespace MIRL
