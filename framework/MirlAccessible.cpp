// The accessible object of a library window. The system's standard object of the window does
// what it does well (place, parent, children, navigation, hit testing, focus); what only the
// control knows (role, name, value, state, default action) is asked of the window each time.
#include "MirlAccessible.h"
#include "MirlAccessibleFacts.h"
#include "MirlWindow.h"

// IIDs come from __uuidof: the x86_64 import library of oleacc declares IID_IAccessible as a
// function, so the name links to a thunk's code bytes instead of the GUID.
#include <oleacc.h>

#include <new>
#include <set>
#include <string>
#include <vector>

namespace {

// The answers being waited for. The private message is a number any program may send with any
// lParam: a window writes its description only into one that an object of ours is waiting on.
SRWLOCK g_WaitingLock = SRWLOCK_INIT;
std::set<const MirlAccessibleFacts *> &Waiting()
{
    static std::set<const MirlAccessibleFacts *> waiting;
    return waiting;
}

bool IsWaitedFor(const MirlAccessibleFacts *facts)
{
    ::AcquireSRWLockShared(&g_WaitingLock);
    const bool waited = Waiting().count(facts) != 0;
    ::ReleaseSRWLockShared(&g_WaitingLock);
    return waited;
}

class WaitFor {
public:
    explicit WaitFor(const MirlAccessibleFacts *facts) : m_Facts(facts)
    {
        if (m_Facts != nullptr) {
            ::AcquireSRWLockExclusive(&g_WaitingLock);
            m_Added = Waiting().insert(m_Facts).second;
            ::ReleaseSRWLockExclusive(&g_WaitingLock);
        }
    }
    WaitFor(const WaitFor &) = delete;
    WaitFor &operator=(const WaitFor &) = delete;
    ~WaitFor()
    {
        if (m_Added) {
            ::AcquireSRWLockExclusive(&g_WaitingLock);
            Waiting().erase(m_Facts);
            ::ReleaseSRWLockExclusive(&g_WaitingLock);
        }
    }
    bool added() const { return m_Facts == nullptr || m_Added; }

private:
    const MirlAccessibleFacts *m_Facts;
    bool m_Added = false;
};

// The object's window answers on its own thread; a window that has gone answers nothing.
bool AskWindow(HWND window, MIRL::AccessibleRequest request, MirlAccessibleFacts *facts)
{
    DWORD_PTR answer = 0;
    if (!::IsWindow(window)) {
        return false;
    }
    WaitFor waiting(facts);
    if (!waiting.added()) {
        return false;
    }
    // The timeout keeps an assistive tool from hanging on a window whose thread is busy.
    if (::SendMessageTimeoutW(window, MIRL::AccessibleMessage(), request, reinterpret_cast<LPARAM>(facts),
                              SMTO_NORMAL, 5000, &answer) == 0) {
        return false;
    }
    return answer == 1;
}

bool IsSelf(const VARIANT &child)
{
    return child.vt == VT_I4 && child.lVal == CHILDID_SELF;
}

// A part of the control (a list row, a menu row) named by its child id.
bool IsPart(const VARIANT &child)
{
    return child.vt == VT_I4 && child.lVal > 0;
}

HRESULT Text(const std::wstring &text, BSTR *out)
{
    if (out == nullptr) {
        return E_INVALIDARG;
    }
    *out = nullptr;
    if (text.empty()) {
        return S_FALSE;
    }
    *out = ::SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
    return *out != nullptr ? S_OK : E_OUTOFMEMORY;
}

class MirlAccessible final : public IAccessible {
public:
    MirlAccessible(HWND window, IAccessible *standard) : m_Refs(1), m_Window(window), m_Standard(standard) {}
    MirlAccessible(const MirlAccessible &) = delete;
    MirlAccessible &operator=(const MirlAccessible &) = delete;

    // IUnknown
    STDMETHODIMP QueryInterface(REFIID riid, void **object) override
    {
        if (object == nullptr) {
            return E_POINTER;
        }
        if (riid == IID_IUnknown || riid == IID_IDispatch || riid == __uuidof(IAccessible)) {
            *object = static_cast<IAccessible *>(this);
            AddRef();
            return S_OK;
        }
        *object = nullptr;
        return E_NOINTERFACE;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return static_cast<ULONG>(::InterlockedIncrement(&m_Refs)); }
    STDMETHODIMP_(ULONG) Release() override
    {
        LONG refs = ::InterlockedDecrement(&m_Refs);
        if (refs == 0) {
            delete this;
        }
        return static_cast<ULONG>(refs);
    }

    // IDispatch: the tools use the interface's methods directly.
    STDMETHODIMP GetTypeInfoCount(UINT *count) override
    {
        if (count == nullptr) {
            return E_INVALIDARG;
        }
        *count = 0;
        return S_OK;
    }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo **) override { return E_NOTIMPL; }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR *, UINT, LCID, DISPID *) override { return E_NOTIMPL; }
    STDMETHODIMP Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS *, VARIANT *, EXCEPINFO *, UINT *) override { return E_NOTIMPL; }

    // IAccessible: what the standard object answers well.
    STDMETHODIMP get_accParent(IDispatch **parent) override { return m_Standard->get_accParent(parent); }
    // The children are the child windows, in their order on the screen from the top, each as
    // its window object, as the system's own controls give them.
    STDMETHODIMP get_accChildCount(long *count) override
    {
        if (count == nullptr) {
            return E_INVALIDARG;
        }
        MirlAccessibleFacts facts;
        *count = static_cast<long>(ChildWindows().size()) + (Ask(facts) ? facts.itemCount : 0);
        return S_OK;
    }
    STDMETHODIMP get_accChild(VARIANT child, IDispatch **object) override
    {
        if (object == nullptr) {
            return E_INVALIDARG;
        }
        *object = nullptr;
        if (child.vt != VT_I4) {
            return E_INVALIDARG;
        }
        // Parts come first and are simple elements: the caller asks this object about them.
        MirlAccessibleFacts facts;
        const long parts = Ask(facts) ? facts.itemCount : 0;
        if (child.lVal >= 1 && child.lVal <= parts) {
            return S_FALSE;
        }
        const std::vector<HWND> windows = ChildWindows();
        const long index = child.lVal - parts;
        if (index < 1 || static_cast<size_t>(index) > windows.size()) {
            return E_INVALIDARG;
        }
        return ::AccessibleObjectFromWindow(windows[static_cast<size_t>(index - 1)], static_cast<DWORD>(OBJID_WINDOW),
                                            IID_IDispatch, reinterpret_cast<void **>(object));
    }
    STDMETHODIMP get_accDescription(VARIANT child, BSTR *text) override { return m_Standard->get_accDescription(child, text); }
    STDMETHODIMP get_accHelp(VARIANT child, BSTR *text) override { return m_Standard->get_accHelp(child, text); }
    STDMETHODIMP get_accHelpTopic(BSTR *file, VARIANT child, long *topic) override
    {
        return m_Standard->get_accHelpTopic(file, child, topic);
    }
    STDMETHODIMP get_accKeyboardShortcut(VARIANT child, BSTR *text) override
    {
        return m_Standard->get_accKeyboardShortcut(child, text);
    }
    STDMETHODIMP get_accFocus(VARIANT *child) override { return m_Standard->get_accFocus(child); }
    STDMETHODIMP get_accSelection(VARIANT *children) override { return m_Standard->get_accSelection(children); }
    STDMETHODIMP accSelect(long flags, VARIANT child) override { return m_Standard->accSelect(flags, child); }
    STDMETHODIMP accLocation(long *x, long *y, long *width, long *height, VARIANT child) override
    {
        if (!IsPart(child)) {
            return m_Standard->accLocation(x, y, width, height, child);
        }
        if (x == nullptr || y == nullptr || width == nullptr || height == nullptr) {
            return E_INVALIDARG;
        }
        MirlAccessibleFacts facts;
        if (!AskPart(child, facts)) {
            return E_INVALIDARG;
        }
        *x = facts.location.left;
        *y = facts.location.top;
        *width = facts.location.right - facts.location.left;
        *height = facts.location.bottom - facts.location.top;
        return S_OK;
    }
    STDMETHODIMP accNavigate(long direction, VARIANT start, VARIANT *end) override
    {
        return m_Standard->accNavigate(direction, start, end);
    }
    STDMETHODIMP accHitTest(long x, long y, VARIANT *child) override { return m_Standard->accHitTest(x, y, child); }
    STDMETHODIMP put_accName(VARIANT, BSTR) override { return E_NOTIMPL; }
    STDMETHODIMP put_accValue(VARIANT, BSTR) override { return E_NOTIMPL; }

    // IAccessible: what the control knows.
    STDMETHODIMP get_accName(VARIANT child, BSTR *text) override
    {
        MirlAccessibleFacts facts;
        if (IsPart(child)) {
            return AskPart(child, facts) ? Text(facts.name, text) : NoPart(text);
        }
        if (!IsSelf(child)) {
            return m_Standard->get_accName(child, text);
        }
        return Ask(facts) ? Text(facts.name, text) : Gone(text);
    }
    STDMETHODIMP get_accValue(VARIANT child, BSTR *text) override
    {
        MirlAccessibleFacts facts;
        if (IsPart(child)) {
            if (!AskPart(child, facts)) {
                return NoPart(text);
            }
        } else if (!IsSelf(child)) {
            return m_Standard->get_accValue(child, text);
        } else if (!Ask(facts)) {
            return Gone(text);
        }
        if (!facts.hasValue) {
            if (text != nullptr) {
                *text = nullptr;
            }
            return DISP_E_MEMBERNOTFOUND;
        }
        if (text == nullptr) {
            return E_INVALIDARG;
        }
        // An empty value is a value: an empty edit still has one.
        *text = ::SysAllocStringLen(facts.value.data(), static_cast<UINT>(facts.value.size()));
        return *text != nullptr ? S_OK : E_OUTOFMEMORY;
    }
    STDMETHODIMP get_accRole(VARIANT child, VARIANT *role) override
    {
        if (!IsSelf(child) && !IsPart(child)) {
            return m_Standard->get_accRole(child, role);
        }
        if (role == nullptr) {
            return E_INVALIDARG;
        }
        MirlAccessibleFacts facts;
        if (IsPart(child) ? !AskPart(child, facts) : !Ask(facts)) {
            ::VariantInit(role);
            return RPC_E_DISCONNECTED;
        }
        role->vt = VT_I4;
        role->lVal = facts.role;
        return S_OK;
    }
    STDMETHODIMP get_accState(VARIANT child, VARIANT *state) override
    {
        if (!IsSelf(child) && !IsPart(child)) {
            return m_Standard->get_accState(child, state);
        }
        if (state == nullptr) {
            return E_INVALIDARG;
        }
        MirlAccessibleFacts facts;
        if (IsPart(child) ? !AskPart(child, facts) : !Ask(facts)) {
            ::VariantInit(state);
            return RPC_E_DISCONNECTED;
        }
        state->vt = VT_I4;
        state->lVal = facts.state;
        return S_OK;
    }
    STDMETHODIMP get_accDefaultAction(VARIANT child, BSTR *text) override
    {
        MirlAccessibleFacts facts;
        if (IsPart(child)) {
            return AskPart(child, facts) ? Text(facts.defaultAction, text) : NoPart(text);
        }
        if (!IsSelf(child)) {
            return m_Standard->get_accDefaultAction(child, text);
        }
        return Ask(facts) ? Text(facts.defaultAction, text) : Gone(text);
    }
    STDMETHODIMP accDoDefaultAction(VARIANT child) override
    {
        if (!IsSelf(child) && !IsPart(child)) {
            return m_Standard->accDoDefaultAction(child);
        }
        if (!::IsWindow(m_Window)) {
            return RPC_E_DISCONNECTED;
        }
        if (IsPart(child)) {
            // A row's action is the click on it, posted like the window's own.
            MirlAccessibleFacts facts;
            facts.item = child.lVal;
            return AskWindow(m_Window, MIRL::AccessibleDoDefaultItem, &facts) ? S_OK : E_INVALIDARG;
        }
        // The window posts the click that the action stands for: the action runs when its
        // thread takes it, and the tool that asked is not held inside the command it starts.
        return AskWindow(m_Window, MIRL::AccessibleDoDefault, nullptr) ? S_OK : DISP_E_MEMBERNOTFOUND;
    }

private:
    ~MirlAccessible() { m_Standard->Release(); }

    std::vector<HWND> ChildWindows() const
    {
        std::vector<HWND> windows;
        for (HWND child = ::GetWindow(m_Window, GW_CHILD); child != nullptr && windows.size() < 100000;
             child = ::GetWindow(child, GW_HWNDNEXT)) {
            windows.push_back(child);
        }
        return windows;
    }

    bool Ask(MirlAccessibleFacts &facts) const { return AskWindow(m_Window, MIRL::AccessibleDescribe, &facts); }
    bool AskPart(const VARIANT &child, MirlAccessibleFacts &facts) const
    {
        facts.item = child.lVal;
        return AskWindow(m_Window, MIRL::AccessibleDescribeItem, &facts);
    }

    // A part that isn't there, or a window that is gone.
    HRESULT NoPart(BSTR *text) const
    {
        if (text != nullptr) {
            *text = nullptr;
        }
        return ::IsWindow(m_Window) ? E_INVALIDARG : RPC_E_DISCONNECTED;
    }

    static HRESULT Gone(BSTR *text)
    {
        if (text != nullptr) {
            *text = nullptr;
        }
        return RPC_E_DISCONNECTED;
    }

    LONG m_Refs;
    HWND m_Window;
    IAccessible *m_Standard;
};

} // namespace

namespace MIRL {

void NotifyAccessibleEvent(HWND window, DWORD event)
{
    if (window != nullptr && event != 0) {
        ::NotifyWinEvent(event, window, OBJID_CLIENT, CHILDID_SELF);
    }
}

UINT AccessibleMessage()
{
    static const UINT message = ::RegisterWindowMessageW(L"MirlAccessible");
    return message;
}

LRESULT AnswerAccessibility(MirlWindowBase *window, UINT message, WPARAM wParam, LPARAM lParam, BOOL &bHandled)
{
    bHandled = FALSE;
    if (window == nullptr || window->m_hWnd == nullptr) {
        return 0;
    }
    if (message == WM_GETOBJECT) {
        if (static_cast<long>(lParam) != OBJID_CLIENT) {
            return 0;
        }
        IAccessible *standard = nullptr;
        if (FAILED(::CreateStdAccessibleObject(window->m_hWnd, OBJID_CLIENT, __uuidof(IAccessible), reinterpret_cast<void **>(&standard))) ||
            standard == nullptr) {
            return 0;
        }
        MirlAccessible *object = new (std::nothrow) MirlAccessible(window->m_hWnd, standard);
        if (object == nullptr) {
            standard->Release();
            return 0;
        }
        LRESULT result = ::LresultFromObject(__uuidof(IAccessible), wParam, static_cast<IAccessible *>(object));
        object->Release();
        bHandled = TRUE;
        return result;
    }
    if (message != AccessibleMessage()) {
        return 0;
    }
    bHandled = TRUE;
    // No exception leaves a window procedure: a description that can't be made is no answer.
    try {
        if (wParam == AccessibleDescribe && lParam != 0 && IsWaitedFor(reinterpret_cast<const MirlAccessibleFacts *>(lParam))) {
            MirlAccessibleFacts &facts = *reinterpret_cast<MirlAccessibleFacts *>(lParam);
            DescribeWindow(window, facts);
            return 1;
        }
        if (wParam == AccessibleDescribeItem && lParam != 0 && IsWaitedFor(reinterpret_cast<const MirlAccessibleFacts *>(lParam))) {
            MirlAccessibleFacts &facts = *reinterpret_cast<MirlAccessibleFacts *>(lParam);
            return DescribeItem(window, facts) ? 1 : 0;
        }
        if (wParam == AccessibleDoDefault) {
            return DoDefaultAction(window) ? 1 : 0;
        }
        if (wParam == AccessibleDoDefaultItem && lParam != 0 && IsWaitedFor(reinterpret_cast<const MirlAccessibleFacts *>(lParam))) {
            return DoDefaultItemAction(window, reinterpret_cast<const MirlAccessibleFacts *>(lParam)->item) ? 1 : 0;
        }
    } catch (...) {
    }
    return 0;
}

} // namespace MIRL
