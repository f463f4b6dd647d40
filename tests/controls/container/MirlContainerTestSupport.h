// Helpers of the container tests: a control object and its window destroyed together, and the
// pointer moves and presses that a tab or a bar takes from the mouse.
#pragma once

#include "MirlContainer.h"
#include "MirlGroupBox.h"
#include "controls/text/MirlButtonTestSupport.h"

#include <memory>

namespace mirltest {

// A control object and its window, destroyed together at the end of the scope.
template <class T>
class Scoped {
public:
    Scoped() : m_Control(new T()) {}
    ~Scoped() { Destroy(); }
    Scoped(const Scoped &) = delete;
    Scoped &operator=(const Scoped &) = delete;

    // The template of that name, as a child of parent.
    HWND Create(MirlWindowBase *parentObject, HWND parent, const wchar_t *name)
    {
        return m_Control->Create(parentObject, parent, static_cast<LPRECT>(nullptr), name);
    }
    void Destroy()
    {
        if (m_Control == nullptr) {
            return;
        }
        if (m_Control->m_hWnd != nullptr && ::IsWindow(m_Control->m_hWnd)) {
            m_Control->DestroyWindow();
        }
        m_Control.reset();
    }

    T *operator->() const { return m_Control.get(); }
    T *get() const { return m_Control.get(); }
    HWND hwnd() const { return m_Control->m_hWnd; }

private:
    std::unique_ptr<T> m_Control;
};

// Puts the pointer on a client point of the window and sends the move there: while a window
// holds the capture, Wine sends it moves at the real pointer.
inline void MoveTo(HWND window, int x, int y, WPARAM flags = 0)
{
    POINT screen = {x, y};
    ::ClientToScreen(window, &screen);
    ::SetCursorPos(screen.x, screen.y);
    ::SendMessageW(window, WM_MOUSEMOVE, flags, MAKELPARAM(x, y));
}

// A press and a release at a client point, with the pointer there first.
inline void ClickAt(HWND window, int x, int y)
{
    MoveTo(window, x, y);
    ::SendMessageW(window, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(x, y));
    ::SendMessageW(window, WM_LBUTTONUP, 0, MAKELPARAM(x, y));
}

// The window's place in its parent's client area.
inline RECT PlaceInParent(HWND window)
{
    RECT rect = {};
    ::GetWindowRect(window, &rect);
    ::MapWindowPoints(nullptr, ::GetParent(window), reinterpret_cast<POINT *>(&rect), 2);
    return rect;
}

} // namespace mirltest
