// Helpers of the range control tests: the library on the range fixture, an owner window that
// records what the controls tell it (through the shared message recorder) and can answer a
// scroll notification, and the pointer put where a sent message says the mouse is.
#pragma once

#include "MirlRange.h"
#include "MirlMessageRecorder.h"
#include "controls/text/MirlButtonTestSupport.h"

#include <functional>
#include <vector>

namespace mirltest {

// A recording parent whose WM_VSCROLL, WM_USER + 120 and 0xBD0 can be answered by a test.
class RangeOwner {
public:
    explicit RangeOwner(MessageSequence &sequence, RECT rect = {0, 0, 400, 300})
        : m_Parent(sequence, WS_POPUP | WS_VISIBLE | WS_CLIPCHILDREN, rect), m_Sequence(&sequence)
    {
        s_Owner = this;
        m_Former = reinterpret_cast<WNDPROC>(
            ::SetWindowLongPtrW(m_Parent.hwnd(), GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&Proc)));
    }
    ~RangeOwner()
    {
        if (::IsWindow(m_Parent.hwnd())) {
            ::SetWindowLongPtrW(m_Parent.hwnd(), GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(m_Former));
        }
        s_Owner = nullptr;
    }
    RangeOwner(const RangeOwner &) = delete;
    RangeOwner &operator=(const RangeOwner &) = delete;

    HWND hwnd() const { return m_Parent.hwnd(); }
    // Called after the message is recorded, before the parent's own procedure.
    std::function<void(UINT, WPARAM, LPARAM)> m_React;

    // The wParam of every message of that number the parent received, in order.
    std::vector<WPARAM> Received(UINT message) const
    {
        std::vector<WPARAM> values;
        for (const RecordedMessage &m : m_Sequence->Messages()) {
            if (m.message == message && (m.flags & kParent) != 0) {
                values.push_back(m.wParam);
            }
        }
        return values;
    }
    std::vector<LPARAM> ReceivedLParams(UINT message) const
    {
        std::vector<LPARAM> values;
        for (const RecordedMessage &m : m_Sequence->Messages()) {
            if (m.message == message && (m.flags & kParent) != 0) {
                values.push_back(m.lParam);
            }
        }
        return values;
    }

private:
    static LRESULT CALLBACK Proc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam)
    {
        RangeOwner *self = s_Owner;
        LRESULT result = ::CallWindowProcW(self->m_Former, hwnd, message, wParam, lParam);
        if (self->m_React && (message == WM_VSCROLL || message == WM_SLIDER_POSITION || message == WM_SEEK_POSITION)) {
            self->m_React(message, wParam, lParam);
        }
        return result;
    }

    RecordingParent m_Parent;
    MessageSequence *m_Sequence;
    WNDPROC m_Former = nullptr;
    static inline RangeOwner *s_Owner = nullptr;
};

// Puts the pointer on a client point of a window: while a window holds the capture, Wine sends it
// moves at the real pointer, and a timer that reads the last point would see the real one.
inline void PointerAt(HWND window, int x, int y)
{
    POINT screen = {x, y};
    ::ClientToScreen(window, &screen);
    ::SetCursorPos(screen.x, screen.y);
}

inline bool HasUpdate(HWND window)
{
    RECT update = {};
    return ::GetUpdateRect(window, &update, FALSE) != FALSE;
}

} // namespace mirltest
