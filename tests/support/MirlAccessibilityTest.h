// Reading windows as an assistive tool does: the client object of a window through
// AccessibleObjectFromWindow, its child windows through AccessibleChildren, and the WinEvents of
// this process through an out-of-context hook (they arrive through the message queue: pump it).
#pragma once

#include <windows.h>
#include <oleacc.h>

#include <string>
#include <vector>

namespace mirltest {

// One IAccessible, released at the end of its scope.
class AccessibleRef {
public:
    explicit AccessibleRef(IAccessible *object = nullptr) : m_Object(object) {}
    AccessibleRef(const AccessibleRef &) = delete;
    AccessibleRef &operator=(const AccessibleRef &) = delete;
    ~AccessibleRef()
    {
        if (m_Object != nullptr) {
            m_Object->Release();
        }
    }
    IAccessible *operator->() const { return m_Object; }
    IAccessible *get() const { return m_Object; }

private:
    IAccessible *m_Object;
};

// The client object of a window, as a screen reader asks for it; null if the window gives none.
inline IAccessible *ClientObject(HWND window)
{
    IAccessible *object = nullptr;
    if (FAILED(::AccessibleObjectFromWindow(window, static_cast<DWORD>(OBJID_CLIENT), __uuidof(IAccessible),
                                            reinterpret_cast<void **>(&object)))) {
        return nullptr;
    }
    return object;
}

// What the client object of a window says of itself.
struct AccessibleReading {
    bool read = false;
    long role = 0;
    std::wstring name;
    bool hasValue = false;
    std::wstring value;
    long state = 0;
    std::wstring action;
};

inline std::wstring TakeText(HRESULT result, BSTR text)
{
    std::wstring out = SUCCEEDED(result) && text != nullptr ? std::wstring(text, ::SysStringLen(text)) : std::wstring();
    ::SysFreeString(text);
    return out;
}

inline AccessibleReading ReadAccessible(HWND window)
{
    AccessibleReading reading;
    AccessibleRef object(ClientObject(window));
    if (object.get() == nullptr) {
        return reading;
    }
    VARIANT self;
    self.vt = VT_I4;
    self.lVal = CHILDID_SELF;
    VARIANT answer;
    ::VariantInit(&answer);
    if (object->get_accRole(self, &answer) == S_OK && answer.vt == VT_I4) {
        reading.role = answer.lVal;
    }
    ::VariantClear(&answer);
    if (object->get_accState(self, &answer) == S_OK && answer.vt == VT_I4) {
        reading.state = answer.lVal;
    }
    ::VariantClear(&answer);
    BSTR text = nullptr;
    HRESULT result = object->get_accName(self, &text);
    reading.name = TakeText(result, text);
    text = nullptr;
    result = object->get_accValue(self, &text);
    reading.hasValue = result == S_OK;
    reading.value = TakeText(result, text);
    text = nullptr;
    result = object->get_accDefaultAction(self, &text);
    reading.action = TakeText(result, text);
    reading.read = true;
    return reading;
}

// The windows among the children of a window's client object, in the order it gives them.
inline std::vector<HWND> AccessibleChildWindows(HWND window)
{
    std::vector<HWND> windows;
    AccessibleRef object(ClientObject(window));
    if (object.get() == nullptr) {
        return windows;
    }
    long count = 0;
    if (FAILED(object->get_accChildCount(&count)) || count <= 0) {
        return windows;
    }
    std::vector<VARIANT> children(static_cast<size_t>(count));
    long got = 0;
    if (FAILED(::AccessibleChildren(object.get(), 0, count, children.data(), &got))) {
        return windows;
    }
    for (long i = 0; i < got; ++i) {
        VARIANT &child = children[static_cast<size_t>(i)];
        if (child.vt == VT_DISPATCH && child.pdispVal != nullptr) {
            IAccessible *part = nullptr;
            if (SUCCEEDED(child.pdispVal->QueryInterface(__uuidof(IAccessible), reinterpret_cast<void **>(&part)))) {
                HWND found = nullptr;
                if (SUCCEEDED(::WindowFromAccessibleObject(part, &found)) && found != nullptr) {
                    windows.push_back(found);
                }
                part->Release();
            }
        }
        ::VariantClear(&child);
    }
    return windows;
}

// The child window of that name among a window's accessible children; null if none.
inline HWND AccessibleChildNamed(HWND window, const std::wstring &name)
{
    for (HWND child : AccessibleChildWindows(window)) {
        if (ReadAccessible(child).name == name) {
            return child;
        }
    }
    return nullptr;
}

inline void DoDefaultAction(HWND window)
{
    AccessibleRef object(ClientObject(window));
    if (object.get() != nullptr) {
        VARIANT self;
        self.vt = VT_I4;
        self.lVal = CHILDID_SELF;
        object->accDoDefaultAction(self);
    }
}

inline void PumpMessages()
{
    MSG msg;
    for (int round = 0; round < 3; ++round) {
        while (::PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE)) {
            ::TranslateMessage(&msg);
            ::DispatchMessageW(&msg);
        }
        ::Sleep(10);
    }
}

// The WinEvents of this process about client areas, as a tool hooked out of context gets them.
struct WinEventRecord {
    DWORD event;
    HWND window;
    LONG object;
    LONG child;
    bool operator==(const WinEventRecord &other) const
    {
        return event == other.event && window == other.window && object == other.object && child == other.child;
    }
};

class WinEventRecorder {
public:
    WinEventRecorder()
    {
        Current() = this;
        m_Hook = ::SetWinEventHook(EVENT_MIN, EVENT_MAX, nullptr, &WinEventRecorder::Hook, ::GetCurrentProcessId(), 0,
                                   WINEVENT_OUTOFCONTEXT);
    }
    WinEventRecorder(const WinEventRecorder &) = delete;
    WinEventRecorder &operator=(const WinEventRecorder &) = delete;
    ~WinEventRecorder()
    {
        if (m_Hook != nullptr) {
            ::UnhookWinEvent(m_Hook);
        }
        Current() = nullptr;
    }
    bool Hooked() const { return m_Hook != nullptr; }
    void Clear() { m_Events.clear(); }
    // The events of one kind, in the order they came.
    std::vector<WinEventRecord> Of(DWORD event) const
    {
        std::vector<WinEventRecord> found;
        for (const WinEventRecord &record : m_Events) {
            if (record.event == event) {
                found.push_back(record);
            }
        }
        return found;
    }
    // The events about one window's client area, in the order they came.
    std::vector<DWORD> About(HWND window) const
    {
        std::vector<DWORD> found;
        for (const WinEventRecord &record : m_Events) {
            if (record.window == window && record.object == OBJID_CLIENT) {
                found.push_back(record.event);
            }
        }
        return found;
    }

private:
    static WinEventRecorder *&Current()
    {
        static WinEventRecorder *current = nullptr;
        return current;
    }
    static void CALLBACK Hook(HWINEVENTHOOK, DWORD event, HWND window, LONG object, LONG child, DWORD, DWORD)
    {
        if (Current() != nullptr) {
            Current()->m_Events.push_back(WinEventRecord{event, window, object, child});
        }
    }

    HWINEVENTHOOK m_Hook = nullptr;
    std::vector<WinEventRecord> m_Events;
};

} // namespace mirltest
