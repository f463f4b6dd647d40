// MirlAtlWin.h - windows, window classes and message maps of ATL.
//
// ATL::_U_RECT, _U_MENUorID, _U_STRINGorID   argument adapters
// ATL::CWindow                               thin wrapper of an HWND
// ATL::CWinTraits, CWinTraitsOR              default styles of a window class
// ATL::CMessageMap                           the ProcessWindowMessage interface
// ATL::CWndClassInfoW (CWndClassInfo)        a window class description, registered on first use
// ATL::CWindowImplRoot<TBase>                notification reflection and forwarding
// ATL::CWindowImplBaseT<TBase, TWinTraits>   per-object window procedure, Create, subclassing
// ATL::CWindowImpl<T, TBase, TWinTraits>     a window of a class registered for T
// BEGIN_MSG_MAP ... END_MSG_MAP              message map macros, and BEGIN_MSG_MAP_EX
//
// Messages reach an object through a thunk (MirlAtlThunk.h) that puts the object pointer where
// the window handle was. A window created by Create starts in AtlStartWindowProc, which picks up
// the object waiting on this thread and installs its thunk before the first message is handled.
// No C++ exception leaves a window procedure: one thrown by a handler ends in the default
// processing of the message.

#ifndef MIRL_PLATFORM_ATL_MIRLATLWIN_H
#define MIRL_PLATFORM_ATL_MIRLATLWIN_H

#include "MirlAtlBase.h"
#include "MirlAtlThunk.h"

#include <type_traits>

namespace ATL
{

namespace mirl_detail
{

// Width or height for CreateWindowEx: CW_USEDEFAULT stands for the whole extent, anything else
// is the difference of two edges.
inline int RectExtent(LONG lo, LONG hi)
{
    if (lo == CW_USEDEFAULT)
        return CW_USEDEFAULT;
    return static_cast<int>(static_cast<long long>(hi) - lo);
}

} // namespace mirl_detail

// ---------------------------------------------------------------------------------------------
// Argument adapters

class _U_RECT
{
public:
    _U_RECT(LPRECT lpRect) : m_lpRect(lpRect) {}
    _U_RECT(RECT& rc) : m_lpRect(&rc) {}
    LPRECT m_lpRect;
};

class _U_MENUorID
{
public:
    _U_MENUorID(HMENU hMenu) : m_hMenu(hMenu) {}
    // Any integer type, so that a literal 0 or an unsigned long identifier is not ambiguous.
    template <class TInt, typename std::enable_if<std::is_integral<TInt>::value, int>::type = 0>
    _U_MENUorID(TInt nID) : m_hMenu(reinterpret_cast<HMENU>(static_cast<UINT_PTR>(nID))) {}
    HMENU m_hMenu;
};

class _U_STRINGorID
{
public:
    _U_STRINGorID(LPCWSTR lpString) : m_lpstr(lpString) {}
    template <class TInt, typename std::enable_if<std::is_integral<TInt>::value, int>::type = 0>
    _U_STRINGorID(TInt nID) : m_lpstr(MAKEINTRESOURCEW(static_cast<WORD>(nID))) {}
    LPCWSTR m_lpstr;
};

// ---------------------------------------------------------------------------------------------
// CWindow

class CWindow
{
public:
    static inline RECT rcDefault = { CW_USEDEFAULT, CW_USEDEFAULT, 0, 0 };
    HWND m_hWnd;

    // Constructors
    CWindow(HWND hWnd = NULL) : m_hWnd(hWnd) {}
    CWindow& operator=(HWND hWnd) { m_hWnd = hWnd; return *this; }

    // Attributes
    static LPCWSTR GetWndClassName() { return NULL; }
    operator HWND() const { return m_hWnd; }
    BOOL IsWindow() const { return ::IsWindow(m_hWnd); }
    BOOL IsWindowVisible() const { ATLASSERT(::IsWindow(m_hWnd)); return ::IsWindowVisible(m_hWnd); }
    BOOL IsWindowEnabled() const { ATLASSERT(::IsWindow(m_hWnd)); return ::IsWindowEnabled(m_hWnd); }
    BOOL IsChild(HWND hWnd) const { ATLASSERT(::IsWindow(m_hWnd)); return ::IsChild(m_hWnd, hWnd); }
    BOOL IsIconic() const { ATLASSERT(::IsWindow(m_hWnd)); return ::IsIconic(m_hWnd); }
    BOOL IsZoomed() const { ATLASSERT(::IsWindow(m_hWnd)); return ::IsZoomed(m_hWnd); }

    DWORD GetStyle() const { ATLASSERT(::IsWindow(m_hWnd)); return static_cast<DWORD>(::GetWindowLongW(m_hWnd, GWL_STYLE)); }
    DWORD GetExStyle() const { ATLASSERT(::IsWindow(m_hWnd)); return static_cast<DWORD>(::GetWindowLongW(m_hWnd, GWL_EXSTYLE)); }
    LONG GetWindowLong(int nIndex) const { ATLASSERT(::IsWindow(m_hWnd)); return ::GetWindowLongW(m_hWnd, nIndex); }
    LONG SetWindowLong(int nIndex, LONG dwNewLong) { ATLASSERT(::IsWindow(m_hWnd)); return ::SetWindowLongW(m_hWnd, nIndex, dwNewLong); }
#ifdef _WIN64
    // On 32-bit Windows the Ptr names are macros for the two above.
    LONG_PTR GetWindowLongPtr(int nIndex) const { ATLASSERT(::IsWindow(m_hWnd)); return ::GetWindowLongPtrW(m_hWnd, nIndex); }
    LONG_PTR SetWindowLongPtr(int nIndex, LONG_PTR dwNewLong) { ATLASSERT(::IsWindow(m_hWnd)); return ::SetWindowLongPtrW(m_hWnd, nIndex, dwNewLong); }
#endif

    int GetDlgCtrlID() const { ATLASSERT(::IsWindow(m_hWnd)); return ::GetDlgCtrlID(m_hWnd); }
    int SetDlgCtrlID(int nID) { ATLASSERT(::IsWindow(m_hWnd)); return static_cast<int>(::SetWindowLongW(m_hWnd, GWL_ID, nID)); }

    int GetWindowText(LPWSTR lpszStringBuf, int nMaxCount) const { ATLASSERT(::IsWindow(m_hWnd)); return ::GetWindowTextW(m_hWnd, lpszStringBuf, nMaxCount); }
    int GetWindowTextLength() const { ATLASSERT(::IsWindow(m_hWnd)); return ::GetWindowTextLengthW(m_hWnd); }
    BOOL SetWindowText(LPCWSTR lpszString) { ATLASSERT(::IsWindow(m_hWnd)); return ::SetWindowTextW(m_hWnd, lpszString); }

    void SetFont(HFONT hFont, BOOL bRedraw = TRUE) { ATLASSERT(::IsWindow(m_hWnd)); ::SendMessageW(m_hWnd, WM_SETFONT, reinterpret_cast<WPARAM>(hFont), MAKELPARAM(bRedraw, 0)); }
    HFONT GetFont() const { ATLASSERT(::IsWindow(m_hWnd)); return reinterpret_cast<HFONT>(::SendMessageW(m_hWnd, WM_GETFONT, 0, 0)); }

    // Creation and destruction
    HWND Create(LPCWSTR lpstrWndClass, HWND hWndParent, _U_RECT rect = NULL, LPCWSTR szWindowName = NULL,
                DWORD dwStyle = 0, DWORD dwExStyle = 0, _U_MENUorID MenuOrID = 0U, LPVOID lpCreateParam = NULL)
    {
        ATLASSERT(m_hWnd == NULL);
        if (rect.m_lpRect == NULL)
            rect.m_lpRect = &rcDefault;
        m_hWnd = ::CreateWindowExW(dwExStyle, lpstrWndClass, szWindowName, dwStyle,
                                   rect.m_lpRect->left, rect.m_lpRect->top,
                                   mirl_detail::RectExtent(rect.m_lpRect->left, rect.m_lpRect->right),
                                   mirl_detail::RectExtent(rect.m_lpRect->top, rect.m_lpRect->bottom),
                                   hWndParent, MenuOrID.m_hMenu, AtlModuleInstance(), lpCreateParam);
        return m_hWnd;
    }

    BOOL DestroyWindow()
    {
        ATLASSERT(::IsWindow(m_hWnd));
        if (!::DestroyWindow(m_hWnd))
            return FALSE;
        m_hWnd = NULL;
        return TRUE;
    }

    void Attach(HWND hWndNew)
    {
        ATLASSERT(m_hWnd == NULL);
        ATLASSERT(hWndNew == NULL || ::IsWindow(hWndNew));
        m_hWnd = hWndNew;
    }

    HWND Detach()
    {
        HWND hWnd = m_hWnd;
        m_hWnd = NULL;
        return hWnd;
    }

    // Messages
    LRESULT SendMessage(UINT message, WPARAM wParam = 0, LPARAM lParam = 0)
    {
        ATLASSERT(::IsWindow(m_hWnd));
        return ::SendMessageW(m_hWnd, message, wParam, lParam);
    }
    static LRESULT SendMessage(HWND hWnd, UINT message, WPARAM wParam = 0, LPARAM lParam = 0)
    {
        ATLASSERT(::IsWindow(hWnd));
        return ::SendMessageW(hWnd, message, wParam, lParam);
    }
    BOOL PostMessage(UINT message, WPARAM wParam = 0, LPARAM lParam = 0)
    {
        ATLASSERT(::IsWindow(m_hWnd));
        return ::PostMessageW(m_hWnd, message, wParam, lParam);
    }

    // Size and position
    BOOL GetWindowRect(LPRECT lpRect) const { ATLASSERT(::IsWindow(m_hWnd)); return ::GetWindowRect(m_hWnd, lpRect); }
    BOOL GetClientRect(LPRECT lpRect) const { ATLASSERT(::IsWindow(m_hWnd)); return ::GetClientRect(m_hWnd, lpRect); }
    BOOL MoveWindow(int x, int y, int nWidth, int nHeight, BOOL bRepaint = TRUE)
    {
        ATLASSERT(::IsWindow(m_hWnd));
        return ::MoveWindow(m_hWnd, x, y, nWidth, nHeight, bRepaint);
    }
    BOOL MoveWindow(LPCRECT lpRect, BOOL bRepaint = TRUE)
    {
        ATLASSERT(::IsWindow(m_hWnd));
        return ::MoveWindow(m_hWnd, lpRect->left, lpRect->top, lpRect->right - lpRect->left,
                            lpRect->bottom - lpRect->top, bRepaint);
    }
    BOOL SetWindowPos(HWND hWndInsertAfter, int x, int y, int cx, int cy, UINT nFlags)
    {
        ATLASSERT(::IsWindow(m_hWnd));
        return ::SetWindowPos(m_hWnd, hWndInsertAfter, x, y, cx, cy, nFlags);
    }
    BOOL SetWindowPos(HWND hWndInsertAfter, LPCRECT lpRect, UINT nFlags)
    {
        ATLASSERT(::IsWindow(m_hWnd));
        return ::SetWindowPos(m_hWnd, hWndInsertAfter, lpRect->left, lpRect->top, lpRect->right - lpRect->left,
                              lpRect->bottom - lpRect->top, nFlags);
    }

    // Coordinates
    BOOL ScreenToClient(LPPOINT lpPoint) const { ATLASSERT(::IsWindow(m_hWnd)); return ::ScreenToClient(m_hWnd, lpPoint); }
    BOOL ClientToScreen(LPPOINT lpPoint) const { ATLASSERT(::IsWindow(m_hWnd)); return ::ClientToScreen(m_hWnd, lpPoint); }
    // Both corners; the second only if the first succeeded.
    BOOL ScreenToClient(LPRECT lpRect) const
    {
        ATLASSERT(::IsWindow(m_hWnd));
        POINT tl = { lpRect->left, lpRect->top };
        POINT br = { lpRect->right, lpRect->bottom };
        if (!::ScreenToClient(m_hWnd, &tl))
            return FALSE;
        const BOOL bRet = ::ScreenToClient(m_hWnd, &br);
        lpRect->left = tl.x; lpRect->top = tl.y;
        lpRect->right = br.x; lpRect->bottom = br.y;
        return bRet;
    }
    BOOL ClientToScreen(LPRECT lpRect) const
    {
        ATLASSERT(::IsWindow(m_hWnd));
        POINT tl = { lpRect->left, lpRect->top };
        POINT br = { lpRect->right, lpRect->bottom };
        if (!::ClientToScreen(m_hWnd, &tl))
            return FALSE;
        const BOOL bRet = ::ClientToScreen(m_hWnd, &br);
        lpRect->left = tl.x; lpRect->top = tl.y;
        lpRect->right = br.x; lpRect->bottom = br.y;
        return bRet;
    }
    int MapWindowPoints(HWND hWndTo, LPPOINT lpPoint, UINT nCount) const
    {
        ATLASSERT(::IsWindow(m_hWnd));
        return ::MapWindowPoints(m_hWnd, hWndTo, lpPoint, nCount);
    }
    int MapWindowPoints(HWND hWndTo, LPRECT lpRect) const
    {
        ATLASSERT(::IsWindow(m_hWnd));
        POINT pts[2] = { { lpRect->left, lpRect->top }, { lpRect->right, lpRect->bottom } };
        const int nRet = ::MapWindowPoints(m_hWnd, hWndTo, pts, 2);
        lpRect->left = pts[0].x; lpRect->top = pts[0].y;
        lpRect->right = pts[1].x; lpRect->bottom = pts[1].y;
        return nRet;
    }

    // Painting
    HDC BeginPaint(LPPAINTSTRUCT lpPaint) { ATLASSERT(::IsWindow(m_hWnd)); return ::BeginPaint(m_hWnd, lpPaint); }
    void EndPaint(LPPAINTSTRUCT lpPaint) { ATLASSERT(::IsWindow(m_hWnd)); ::EndPaint(m_hWnd, lpPaint); }
    HDC GetDC() { ATLASSERT(::IsWindow(m_hWnd)); return ::GetDC(m_hWnd); }
    HDC GetWindowDC() { ATLASSERT(::IsWindow(m_hWnd)); return ::GetWindowDC(m_hWnd); }
    int ReleaseDC(HDC hDC) { ATLASSERT(::IsWindow(m_hWnd)); return ::ReleaseDC(m_hWnd, hDC); }
    BOOL UpdateWindow() { ATLASSERT(::IsWindow(m_hWnd)); return ::UpdateWindow(m_hWnd); }
    BOOL Invalidate(BOOL bErase = TRUE) { ATLASSERT(::IsWindow(m_hWnd)); return ::InvalidateRect(m_hWnd, NULL, bErase); }
    BOOL InvalidateRect(LPCRECT lpRect, BOOL bErase = TRUE) { ATLASSERT(::IsWindow(m_hWnd)); return ::InvalidateRect(m_hWnd, lpRect, bErase); }
    void InvalidateRgn(HRGN hRgn, BOOL bErase = TRUE) { ATLASSERT(::IsWindow(m_hWnd)); ::InvalidateRgn(m_hWnd, hRgn, bErase); }
    BOOL ValidateRect(LPCRECT lpRect) { ATLASSERT(::IsWindow(m_hWnd)); return ::ValidateRect(m_hWnd, lpRect); }
    BOOL GetUpdateRect(LPRECT lpRect, BOOL bErase = FALSE) { ATLASSERT(::IsWindow(m_hWnd)); return ::GetUpdateRect(m_hWnd, lpRect, bErase); }
    BOOL RedrawWindow(LPCRECT lpRectUpdate = NULL, HRGN hRgnUpdate = NULL,
                      UINT flags = RDW_INVALIDATE | RDW_UPDATENOW | RDW_ERASE)
    {
        ATLASSERT(::IsWindow(m_hWnd));
        return ::RedrawWindow(m_hWnd, lpRectUpdate, hRgnUpdate, flags);
    }
    void SetRedraw(BOOL bRedraw = TRUE) { ATLASSERT(::IsWindow(m_hWnd)); ::SendMessageW(m_hWnd, WM_SETREDRAW, static_cast<WPARAM>(bRedraw), 0); }
    BOOL ShowWindow(int nCmdShow) { ATLASSERT(::IsWindow(m_hWnd)); return ::ShowWindow(m_hWnd, nCmdShow); }

    // Styles
    BOOL ModifyStyle(DWORD dwRemove, DWORD dwAdd, UINT nFlags = 0) { return ModifyLong(GWL_STYLE, dwRemove, dwAdd, nFlags); }
    BOOL ModifyStyleEx(DWORD dwRemove, DWORD dwAdd, UINT nFlags = 0) { return ModifyLong(GWL_EXSTYLE, dwRemove, dwAdd, nFlags); }

    // Window tree
    CWindow GetParent() const { ATLASSERT(::IsWindow(m_hWnd)); return CWindow(::GetParent(m_hWnd)); }
    CWindow SetParent(HWND hWndNewParent) { ATLASSERT(::IsWindow(m_hWnd)); return CWindow(::SetParent(m_hWnd, hWndNewParent)); }
    CWindow GetDlgItem(int nID) const { ATLASSERT(::IsWindow(m_hWnd)); return CWindow(::GetDlgItem(m_hWnd, nID)); }
    CWindow GetWindow(UINT nCmd) const { ATLASSERT(::IsWindow(m_hWnd)); return CWindow(::GetWindow(m_hWnd, nCmd)); }
    CWindow GetTopLevelParent() const
    {
        ATLASSERT(::IsWindow(m_hWnd));
        HWND hWndParent = m_hWnd;
        HWND hWndTmp;
        while ((hWndTmp = ::GetParent(hWndParent)) != NULL)
            hWndParent = hWndTmp;
        return CWindow(hWndParent);
    }

    // Input
    HWND SetFocus() { ATLASSERT(::IsWindow(m_hWnd)); return ::SetFocus(m_hWnd); }
    HWND SetCapture() { ATLASSERT(::IsWindow(m_hWnd)); return ::SetCapture(m_hWnd); }
    BOOL EnableWindow(BOOL bEnable = TRUE) { ATLASSERT(::IsWindow(m_hWnd)); return ::EnableWindow(m_hWnd, bEnable); }

    // Timers
    UINT_PTR SetTimer(UINT_PTR nIDEvent, UINT nElapse, TIMERPROC lpfnTimer = NULL)
    {
        ATLASSERT(::IsWindow(m_hWnd));
        return ::SetTimer(m_hWnd, nIDEvent, nElapse, lpfnTimer);
    }
    BOOL KillTimer(UINT_PTR nIDEvent) { ATLASSERT(::IsWindow(m_hWnd)); return ::KillTimer(m_hWnd, nIDEvent); }

    // Scroll bars of the window
    int SetScrollInfo(int nBar, LPSCROLLINFO lpScrollInfo, BOOL bRedraw = TRUE)
    {
        ATLASSERT(::IsWindow(m_hWnd));
        return ::SetScrollInfo(m_hWnd, nBar, lpScrollInfo, bRedraw);
    }
    BOOL GetScrollInfo(int nBar, LPSCROLLINFO lpScrollInfo) { ATLASSERT(::IsWindow(m_hWnd)); return ::GetScrollInfo(m_hWnd, nBar, lpScrollInfo); }

private:
    BOOL ModifyLong(int nIndex, DWORD dwRemove, DWORD dwAdd, UINT nFlags)
    {
        ATLASSERT(::IsWindow(m_hWnd));
        const DWORD dwOld = static_cast<DWORD>(::GetWindowLongW(m_hWnd, nIndex));
        const DWORD dwNew = (dwOld & ~dwRemove) | dwAdd;
        if (dwOld == dwNew)
            return FALSE;
        ::SetWindowLongW(m_hWnd, nIndex, static_cast<LONG>(dwNew));
        if (nFlags != 0)
            ::SetWindowPos(m_hWnd, NULL, 0, 0, 0, 0,
                           SWP_NOSIZE | SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE | nFlags);
        return TRUE;
    }
};

// ---------------------------------------------------------------------------------------------
// Window traits

template <DWORD t_dwStyle = 0, DWORD t_dwExStyle = 0>
class CWinTraits
{
public:
    static DWORD GetWndStyle(DWORD dwStyle) { return dwStyle == 0 ? t_dwStyle : dwStyle; }
    static DWORD GetWndExStyle(DWORD dwExStyle) { return dwExStyle == 0 ? t_dwExStyle : dwExStyle; }
};

typedef CWinTraits<WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN | WS_CLIPSIBLINGS, 0> CControlWinTraits;
typedef CWinTraits<WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN | WS_CLIPSIBLINGS, WS_EX_APPWINDOW | WS_EX_WINDOWEDGE> CFrameWinTraits;
typedef CWinTraits<0, 0> CNullTraits;

template <DWORD t_dwStyle = 0, DWORD t_dwExStyle = 0, class TWinTraits = CControlWinTraits>
class CWinTraitsOR
{
public:
    static DWORD GetWndStyle(DWORD dwStyle) { return dwStyle | t_dwStyle | TWinTraits::GetWndStyle(dwStyle); }
    static DWORD GetWndExStyle(DWORD dwExStyle) { return dwExStyle | t_dwExStyle | TWinTraits::GetWndExStyle(dwExStyle); }
};

// ---------------------------------------------------------------------------------------------
// Message maps

class CMessageMap
{
public:
    virtual BOOL ProcessWindowMessage(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam,
                                      LRESULT& lResult, DWORD dwMsgMapID) = 0;

protected:
    ~CMessageMap() = default;
};

} // namespace ATL

#define BEGIN_MSG_MAP(theClass) \
public: \
    BOOL ProcessWindowMessage(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam, \
                              LRESULT& lResult, DWORD dwMsgMapID = 0) \
    { \
        BOOL bHandled = TRUE; \
        (void)hWnd; (void)uMsg; (void)wParam; (void)lParam; (void)lResult; (void)bHandled; \
        switch (dwMsgMapID) \
        { \
        case 0:

// The WTL form: IsMsgHandled/SetMsgHandled, with the mark saved and restored around each message.
#define BEGIN_MSG_MAP_EX(theClass) \
public: \
    BOOL m_bMsgHandled; \
    BOOL IsMsgHandled() const { return m_bMsgHandled; } \
    void SetMsgHandled(BOOL bHandled) { m_bMsgHandled = bHandled; } \
    BOOL ProcessWindowMessage(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam, \
                              LRESULT& lResult, DWORD dwMsgMapID = 0) \
    { \
        const BOOL bOldMsgHandled = m_bMsgHandled; \
        const BOOL bRet = _ProcessWindowMessage(hWnd, uMsg, wParam, lParam, lResult, dwMsgMapID); \
        m_bMsgHandled = bOldMsgHandled; \
        return bRet; \
    } \
    BOOL _ProcessWindowMessage(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam, \
                               LRESULT& lResult, DWORD dwMsgMapID) \
    { \
        BOOL bHandled = TRUE; \
        (void)hWnd; (void)uMsg; (void)wParam; (void)lParam; (void)lResult; (void)bHandled; \
        switch (dwMsgMapID) \
        { \
        case 0:

#define ALT_MSG_MAP(msgMapID) \
            break; \
        case msgMapID:

// An unknown map identifier handles nothing.
#define END_MSG_MAP() \
            break; \
        default: \
            break; \
        } \
        return FALSE; \
    }

#define MESSAGE_HANDLER(msg, func) \
    if (uMsg == (msg)) \
    { \
        bHandled = TRUE; \
        lResult = func(uMsg, wParam, lParam, bHandled); \
        if (bHandled) \
            return TRUE; \
    }

#define MESSAGE_RANGE_HANDLER(msgFirst, msgLast, func) \
    if (uMsg >= (msgFirst) && uMsg <= (msgLast)) \
    { \
        bHandled = TRUE; \
        lResult = func(uMsg, wParam, lParam, bHandled); \
        if (bHandled) \
            return TRUE; \
    }

#define MIRL_COMMAND_HANDLER_IMPL(message, cond, func) \
    if (uMsg == (message) && (cond)) \
    { \
        bHandled = TRUE; \
        lResult = func(HIWORD(wParam), LOWORD(wParam), reinterpret_cast<HWND>(lParam), bHandled); \
        if (bHandled) \
            return TRUE; \
    }

#define COMMAND_HANDLER(id, code, func) \
    MIRL_COMMAND_HANDLER_IMPL(WM_COMMAND, LOWORD(wParam) == static_cast<WORD>(id) && HIWORD(wParam) == static_cast<WORD>(code), func)
#define COMMAND_ID_HANDLER(id, func) \
    MIRL_COMMAND_HANDLER_IMPL(WM_COMMAND, LOWORD(wParam) == static_cast<WORD>(id), func)
#define COMMAND_CODE_HANDLER(code, func) \
    MIRL_COMMAND_HANDLER_IMPL(WM_COMMAND, HIWORD(wParam) == static_cast<WORD>(code), func)
#define COMMAND_RANGE_HANDLER(idFirst, idLast, func) \
    MIRL_COMMAND_HANDLER_IMPL(WM_COMMAND, LOWORD(wParam) >= (idFirst) && LOWORD(wParam) <= (idLast), func)

#define REFLECTED_COMMAND_HANDLER(id, code, func) \
    MIRL_COMMAND_HANDLER_IMPL(OCM_COMMAND, LOWORD(wParam) == static_cast<WORD>(id) && HIWORD(wParam) == static_cast<WORD>(code), func)
#define REFLECTED_COMMAND_ID_HANDLER(id, func) \
    MIRL_COMMAND_HANDLER_IMPL(OCM_COMMAND, LOWORD(wParam) == static_cast<WORD>(id), func)
#define REFLECTED_COMMAND_CODE_HANDLER(code, func) \
    MIRL_COMMAND_HANDLER_IMPL(OCM_COMMAND, HIWORD(wParam) == static_cast<WORD>(code), func)

#define MIRL_NOTIFY_HANDLER_IMPL(message, cond, func) \
    if (uMsg == (message) && lParam != 0 && (cond)) \
    { \
        bHandled = TRUE; \
        lResult = func(static_cast<int>(wParam), reinterpret_cast<LPNMHDR>(lParam), bHandled); \
        if (bHandled) \
            return TRUE; \
    }

#define MIRL_NMHDR_ID() (reinterpret_cast<LPNMHDR>(lParam)->idFrom)
#define MIRL_NMHDR_CODE() (reinterpret_cast<LPNMHDR>(lParam)->code)

#define NOTIFY_HANDLER(id, cd, func) \
    MIRL_NOTIFY_HANDLER_IMPL(WM_NOTIFY, MIRL_NMHDR_ID() == static_cast<UINT_PTR>(id) && MIRL_NMHDR_CODE() == static_cast<UINT>(cd), func)
#define NOTIFY_ID_HANDLER(id, func) \
    MIRL_NOTIFY_HANDLER_IMPL(WM_NOTIFY, MIRL_NMHDR_ID() == static_cast<UINT_PTR>(id), func)
#define NOTIFY_CODE_HANDLER(cd, func) \
    MIRL_NOTIFY_HANDLER_IMPL(WM_NOTIFY, MIRL_NMHDR_CODE() == static_cast<UINT>(cd), func)
#define NOTIFY_RANGE_HANDLER(idFirst, idLast, func) \
    MIRL_NOTIFY_HANDLER_IMPL(WM_NOTIFY, MIRL_NMHDR_ID() >= static_cast<UINT_PTR>(idFirst) && MIRL_NMHDR_ID() <= static_cast<UINT_PTR>(idLast), func)

#define REFLECTED_NOTIFY_HANDLER(id, cd, func) \
    MIRL_NOTIFY_HANDLER_IMPL(OCM_NOTIFY, MIRL_NMHDR_ID() == static_cast<UINT_PTR>(id) && MIRL_NMHDR_CODE() == static_cast<UINT>(cd), func)
#define REFLECTED_NOTIFY_ID_HANDLER(id, func) \
    MIRL_NOTIFY_HANDLER_IMPL(OCM_NOTIFY, MIRL_NMHDR_ID() == static_cast<UINT_PTR>(id), func)
#define REFLECTED_NOTIFY_CODE_HANDLER(cd, func) \
    MIRL_NOTIFY_HANDLER_IMPL(OCM_NOTIFY, MIRL_NMHDR_CODE() == static_cast<UINT>(cd), func)

#define CHAIN_MSG_MAP(theChainClass) \
    { \
        if (theChainClass::ProcessWindowMessage(hWnd, uMsg, wParam, lParam, lResult)) \
            return TRUE; \
    }

#define CHAIN_MSG_MAP_ALT(theChainClass, msgMapID) \
    { \
        if (theChainClass::ProcessWindowMessage(hWnd, uMsg, wParam, lParam, lResult, msgMapID)) \
            return TRUE; \
    }

#define CHAIN_MSG_MAP_MEMBER(theChainMember) \
    { \
        if ((theChainMember).ProcessWindowMessage(hWnd, uMsg, wParam, lParam, lResult)) \
            return TRUE; \
    }

#define CHAIN_MSG_MAP_ALT_MEMBER(theChainMember, msgMapID) \
    { \
        if ((theChainMember).ProcessWindowMessage(hWnd, uMsg, wParam, lParam, lResult, msgMapID)) \
            return TRUE; \
    }

// Sends notifications from children back to them as OCM_ messages.
#define REFLECT_NOTIFICATIONS() \
    { \
        bHandled = TRUE; \
        lResult = this->ReflectNotifications(uMsg, wParam, lParam, bHandled); \
        if (bHandled) \
            return TRUE; \
    }

// In a control: an OCM_ message that nothing took gets the default answer of the original one.
#define DEFAULT_REFLECTION_HANDLER() \
    if (this->DefaultReflectionHandler(hWnd, uMsg, wParam, lParam, lResult)) \
        return TRUE;

// Passes notifications from children on to this window's parent.
#define FORWARD_NOTIFICATIONS() \
    { \
        bHandled = TRUE; \
        lResult = this->ForwardNotifications(uMsg, wParam, lParam, bHandled); \
        if (bHandled) \
            return TRUE; \
    }

namespace ATL
{

// ---------------------------------------------------------------------------------------------
// Window creation hand-over

namespace mirl_detail
{

// The object whose window this thread is creating, with the function that binds it.
struct CreateWndData
{
    void* pObject;
    WNDPROC (*pfnAttach)(void* pObject, HWND hWnd); // installs the object's procedure, returns it
};

inline thread_local CreateWndData* t_pCreateWndData = nullptr;

} // namespace mirl_detail

// The procedure every class registered here starts with: binds the window to the object being
// created on this thread, then hands the message to the object's own procedure.
inline LRESULT CALLBACK AtlStartWindowProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam)
{
    mirl_detail::CreateWndData* pData = mirl_detail::t_pCreateWndData;
    if (pData == nullptr) // a window of the class created without an object
        return ::DefWindowProcW(hWnd, uMsg, wParam, lParam);
    mirl_detail::t_pCreateWndData = nullptr;
    WNDPROC pProc = pData->pfnAttach(pData->pObject, hWnd);
    if (pProc == nullptr)
        return ::DefWindowProcW(hWnd, uMsg, wParam, lParam);
    return pProc(hWnd, uMsg, wParam, lParam);
}

// ---------------------------------------------------------------------------------------------
// Window class description

struct CWndClassInfoW
{
    WNDCLASSEXW m_wc;
    LPCWSTR m_lpszOrigName;  // system class to superclass, or null
    WNDPROC pWndProc;        // that class's procedure
    LPCWSTR m_lpszCursorID;
    BOOL m_bSystemCursor;
    ATOM m_atom;
    WCHAR m_szAutoName[32];
    BOOL m_bRegistered;      // this description registered the class, and unregisters it

    // Registers the class once and gives pProc the procedure to forward unhandled messages to
    // when the class is a superclass. A class that already exists under the name is reused.
    ATOM Register(WNDPROC* pProc)
    {
        CAtlModuleLockGuard lock;
        if (m_atom == 0)
        {
            const HINSTANCE hInst = AtlModuleInstance();
            if (m_lpszOrigName != NULL)
            {
                WNDCLASSEXW wc = {};
                wc.cbSize = sizeof(wc);
                if (!::GetClassInfoExW(NULL, m_lpszOrigName, &wc) && !::GetClassInfoExW(hInst, m_lpszOrigName, &wc))
                    return 0;
                const LPCWSTR lpszName = m_wc.lpszClassName;
                const WNDPROC pfnStart = m_wc.lpfnWndProc;
                m_wc = wc;
                pWndProc = wc.lpfnWndProc;
                m_wc.lpszClassName = lpszName;
                m_wc.lpfnWndProc = pfnStart;
            }
            else
            {
                m_wc.hCursor = ::LoadCursorW(m_bSystemCursor ? NULL : hInst, m_lpszCursorID);
            }
            // One class name may be shared by plain classes and superclasses of different system
            // classes, and the first registration fixes the window data size for all of them:
            // leave room for what any system procedure keeps there.
            if (m_wc.cbWndExtra < kMinWndExtra)
                m_wc.cbWndExtra = kMinWndExtra;
            m_wc.hInstance = hInst;
            m_wc.style &= ~static_cast<UINT>(CS_GLOBALCLASS);
            if (m_wc.lpfnWndProc == NULL)
                m_wc.lpfnWndProc = AtlStartWindowProc;
            if (m_wc.lpszClassName == NULL)
            {
                MakeAutoName();
                m_wc.lpszClassName = m_szAutoName;
            }
            WNDCLASSEXW wcExisting = m_wc;
            m_atom = static_cast<ATOM>(::GetClassInfoExW(m_wc.hInstance, m_wc.lpszClassName, &wcExisting));
            if (m_atom == 0)
            {
                m_atom = ::RegisterClassExW(&m_wc);
                m_bRegistered = m_atom != 0;
            }
        }
        if (m_lpszOrigName != NULL && m_atom != 0)
            *pProc = pWndProc;
        return m_atom;
    }

    ~CWndClassInfoW()
    {
        if (m_bRegistered)
            ::UnregisterClassW(MAKEINTRESOURCEW(m_atom), m_wc.hInstance);
    }

    static constexpr int kMinWndExtra = 64;

private:
    void MakeAutoName()
    {
        static const WCHAR kPrefix[] = L"MirlAtl:";
        static const WCHAR kHex[] = L"0123456789ABCDEF";
        int n = 0;
        for (const WCHAR* p = kPrefix; *p != 0; ++p)
            m_szAutoName[n++] = *p;
        const UINT_PTR value = reinterpret_cast<UINT_PTR>(this);
        for (int shift = static_cast<int>(sizeof(value) * 8) - 4; shift >= 0; shift -= 4)
            m_szAutoName[n++] = kHex[(value >> shift) & 0xF];
        m_szAutoName[n] = 0;
    }
};

typedef CWndClassInfoW CWndClassInfo;

} // namespace ATL

#define DECLARE_WND_CLASS(WndClassName) \
    static ATL::CWndClassInfo& GetWndClassInfo() \
    { \
        static ATL::CWndClassInfo wc = { \
            { sizeof(WNDCLASSEXW), CS_HREDRAW | CS_VREDRAW | CS_DBLCLKS, ATL::AtlStartWindowProc, \
              0, 0, NULL, NULL, NULL, reinterpret_cast<HBRUSH>(static_cast<INT_PTR>(COLOR_WINDOW + 1)), \
              NULL, WndClassName, NULL }, \
            NULL, NULL, ATL::kArrowCursorId, TRUE, 0, L"", FALSE }; \
        return wc; \
    }

#define DECLARE_WND_CLASS_EX(WndClassName, style, bkgnd) \
    static ATL::CWndClassInfo& GetWndClassInfo() \
    { \
        static ATL::CWndClassInfo wc = { \
            { sizeof(WNDCLASSEXW), (style), ATL::AtlStartWindowProc, \
              0, 0, NULL, NULL, NULL, reinterpret_cast<HBRUSH>(static_cast<INT_PTR>((bkgnd) + 1)), \
              NULL, WndClassName, NULL }, \
            NULL, NULL, ATL::kArrowCursorId, TRUE, 0, L"", FALSE }; \
        return wc; \
    }

// A class registered from a system class under a new name; unhandled messages go to the
// system class's procedure.
#define DECLARE_WND_SUPERCLASS(WndClassName, OrigWndClassName) \
    static ATL::CWndClassInfo& GetWndClassInfo() \
    { \
        static ATL::CWndClassInfo wc = { \
            { sizeof(WNDCLASSEXW), 0, ATL::AtlStartWindowProc, \
              0, 0, NULL, NULL, NULL, NULL, NULL, WndClassName, NULL }, \
            OrigWndClassName, NULL, NULL, TRUE, 0, L"", FALSE }; \
        return wc; \
    }

namespace ATL
{

// ---------------------------------------------------------------------------------------------
// CWindowImplRoot

template <class TBase = CWindow>
class CWindowImplRoot : public TBase, public CMessageMap
{
public:
    CWndProcThunk m_thunk;
    const MSG* m_pCurrentMsg;
    DWORD m_dwState;

    enum { WINSTATE_DESTROYED = 0x00000001 };

    CWindowImplRoot() : m_pCurrentMsg(NULL), m_dwState(0) {}
    // Copies share the window handle but not the binding: the copy is not in the window's
    // procedure chain and is in no message.
    CWindowImplRoot(const CWindowImplRoot& src) : TBase(src), CMessageMap(src), m_thunk(), m_pCurrentMsg(NULL), m_dwState(0) {}
    CWindowImplRoot& operator=(const CWindowImplRoot& src)
    {
        TBase::operator=(src);
        return *this;
    }
    // Virtual: OnFinalMessage commonly ends in `delete this`.
    virtual ~CWindowImplRoot() = default;

    // The message being handled, or null outside a message.
    const MSG* GetCurrentMessage() const { return m_pCurrentMsg; }

    // Sends a child's notification to the parent of this window.
    LRESULT ForwardNotifications(UINT uMsg, WPARAM wParam, LPARAM lParam, BOOL& bHandled)
    {
        switch (uMsg)
        {
        case WM_COMMAND: case WM_NOTIFY: case WM_PARENTNOTIFY:
        case WM_DRAWITEM: case WM_MEASUREITEM: case WM_COMPAREITEM: case WM_DELETEITEM:
        case WM_VKEYTOITEM: case WM_CHARTOITEM: case WM_HSCROLL: case WM_VSCROLL:
        case WM_CTLCOLORBTN: case WM_CTLCOLORDLG: case WM_CTLCOLOREDIT: case WM_CTLCOLORLISTBOX:
        case WM_CTLCOLORMSGBOX: case WM_CTLCOLORSCROLLBAR: case WM_CTLCOLORSTATIC:
            return ::SendMessageW(::GetParent(this->m_hWnd), uMsg, wParam, lParam);
        default:
            bHandled = FALSE;
            return 0;
        }
    }

    // Sends a child's notification back to the child as OCM__BASE + message.
    LRESULT ReflectNotifications(UINT uMsg, WPARAM wParam, LPARAM lParam, BOOL& bHandled)
    {
        HWND hWndChild = NULL;
        switch (uMsg)
        {
        case WM_COMMAND:
            hWndChild = reinterpret_cast<HWND>(lParam);
            break;
        case WM_NOTIFY:
            if (lParam != 0)
                hWndChild = reinterpret_cast<LPNMHDR>(lParam)->hwndFrom;
            break;
        case WM_PARENTNOTIFY:
            switch (LOWORD(wParam))
            {
            case WM_CREATE:
            case WM_DESTROY:
                hWndChild = reinterpret_cast<HWND>(lParam);
                break;
            default:
                hWndChild = ::GetDlgItem(this->m_hWnd, HIWORD(wParam));
                break;
            }
            break;
        case WM_DRAWITEM:
            if (wParam != 0)
                hWndChild = reinterpret_cast<LPDRAWITEMSTRUCT>(lParam)->hwndItem;
            break;
        case WM_MEASUREITEM:
            if (wParam != 0)
                hWndChild = ::GetDlgItem(this->m_hWnd, reinterpret_cast<LPMEASUREITEMSTRUCT>(lParam)->CtlID);
            break;
        case WM_COMPAREITEM:
            if (wParam != 0)
                hWndChild = reinterpret_cast<LPCOMPAREITEMSTRUCT>(lParam)->hwndItem;
            break;
        case WM_DELETEITEM:
            if (wParam != 0)
                hWndChild = reinterpret_cast<LPDELETEITEMSTRUCT>(lParam)->hwndItem;
            break;
        case WM_VKEYTOITEM: case WM_CHARTOITEM: case WM_HSCROLL: case WM_VSCROLL:
        case WM_CTLCOLORBTN: case WM_CTLCOLORDLG: case WM_CTLCOLOREDIT: case WM_CTLCOLORLISTBOX:
        case WM_CTLCOLORMSGBOX: case WM_CTLCOLORSCROLLBAR: case WM_CTLCOLORSTATIC:
            hWndChild = reinterpret_cast<HWND>(lParam);
            break;
        default:
            break;
        }
        if (hWndChild == NULL || !::IsWindow(hWndChild))
        {
            bHandled = FALSE;
            return 1;
        }
        return ::SendMessageW(hWndChild, OCM__BASE + uMsg, wParam, lParam);
    }

    // A reflected message that the control left alone gets the default answer of the original.
    static BOOL DefaultReflectionHandler(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam, LRESULT& lResult)
    {
        switch (uMsg)
        {
        case OCM_COMMAND: case OCM_NOTIFY: case OCM_PARENTNOTIFY:
        case OCM_DRAWITEM: case OCM_MEASUREITEM: case OCM_COMPAREITEM: case OCM_DELETEITEM:
        case OCM_VKEYTOITEM: case OCM_CHARTOITEM: case OCM_HSCROLL: case OCM_VSCROLL:
        case OCM_CTLCOLORBTN: case OCM_CTLCOLORDLG: case OCM_CTLCOLOREDIT: case OCM_CTLCOLORLISTBOX:
        case OCM_CTLCOLORMSGBOX: case OCM_CTLCOLORSCROLLBAR: case OCM_CTLCOLORSTATIC:
            lResult = ::DefWindowProcW(hWnd, uMsg - OCM__BASE, wParam, lParam);
            return TRUE;
        default:
            return FALSE;
        }
    }
};

// ---------------------------------------------------------------------------------------------
// CWindowImplBaseT

template <class TBase = CWindow, class TWinTraits = CControlWinTraits>
class CWindowImplBaseT : public CWindowImplRoot<TBase>
{
public:
    WNDPROC m_pfnSuperWindowProc;

    CWindowImplBaseT() : m_pfnSuperWindowProc(::DefWindowProcW) {}

    // An object that goes before its window leaves the window's procedure chain intact.
    ~CWindowImplBaseT()
    {
        const HWND hWnd = this->m_hWnd;
        const WNDPROC pOurProc = this->m_thunk.GetWNDPROC();
        if (hWnd == NULL || pOurProc == NULL || !::IsWindow(hWnd))
            return;
        if (reinterpret_cast<WNDPROC>(::GetWindowLongPtrW(hWnd, GWLP_WNDPROC)) == pOurProc)
            ::SetWindowLongPtrW(hWnd, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(m_pfnSuperWindowProc));
        else
            this->m_thunk.Orphan(hWnd, m_pfnSuperWindowProc);
    }

    static DWORD GetWndStyle(DWORD dwStyle) { return TWinTraits::GetWndStyle(dwStyle); }
    static DWORD GetWndExStyle(DWORD dwExStyle) { return TWinTraits::GetWndExStyle(dwExStyle); }

    // The static procedure the thunk jumps to; a class may return its own, which ends in WindowProc.
    virtual WNDPROC GetWindowProc() { return WindowProc; }

    static LRESULT CALLBACK StartWindowProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam)
    {
        return AtlStartWindowProc(hWnd, uMsg, wParam, lParam);
    }

    // Called through the thunk: hWnd is the object.
    static LRESULT CALLBACK WindowProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam)
    {
        CWindowImplBaseT* pThis = reinterpret_cast<CWindowImplBaseT*>(hWnd);
        const HWND hWndThis = pThis->m_hWnd;
        MSG msg = { hWndThis, uMsg, wParam, lParam, 0, { 0, 0 } };
        const MSG* pOldMsg = pThis->m_pCurrentMsg;
        pThis->m_pCurrentMsg = &msg;
        LRESULT lRes = 0;
        BOOL bRet = FALSE;
        try
        {
            bRet = pThis->ProcessWindowMessage(hWndThis, uMsg, wParam, lParam, lRes, 0);
        }
        catch (...)
        {
            bRet = FALSE;
            lRes = 0;
        }
        pThis->m_pCurrentMsg = pOldMsg;

        if (!bRet)
            lRes = pThis->DefWindowProc(uMsg, wParam, lParam);
        if (uMsg == WM_NCDESTROY)
        {
            // The window is gone: no further message may come through this object.
            if (reinterpret_cast<WNDPROC>(::GetWindowLongPtrW(hWndThis, GWLP_WNDPROC)) == pThis->m_thunk.GetWNDPROC())
                ::SetWindowLongPtrW(hWndThis, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(pThis->m_pfnSuperWindowProc));
            pThis->m_dwState |= CWindowImplRoot<TBase>::WINSTATE_DESTROYED;
        }
        // OnFinalMessage waits for the outermost message, since it may delete the object.
        if ((pThis->m_dwState & CWindowImplRoot<TBase>::WINSTATE_DESTROYED) && pOldMsg == NULL)
        {
            pThis->m_hWnd = NULL;
            pThis->m_pfnSuperWindowProc = ::DefWindowProcW; // a later Create starts afresh
            pThis->m_dwState &= ~static_cast<DWORD>(CWindowImplRoot<TBase>::WINSTATE_DESTROYED);
            try
            {
                pThis->OnFinalMessage(hWndThis);
            }
            catch (...)
            {
            }
        }
        return lRes;
    }

    // Creates a window of a registered class; the object receives its messages from the first on.
    HWND Create(HWND hWndParent, _U_RECT rect, LPCWSTR szWindowName, DWORD dwStyle, DWORD dwExStyle,
                _U_MENUorID MenuOrID, ATOM atom, LPVOID lpCreateParam = NULL)
    {
        ATLASSERT(this->m_hWnd == NULL);
        if (atom == 0)
            return NULL;
        // Allocated here, where a failure can still be reported.
        if (!this->m_thunk.Allocate())
        {
            ::SetLastError(ERROR_OUTOFMEMORY);
            return NULL;
        }
        if (rect.m_lpRect == NULL)
            rect.m_lpRect = &TBase::rcDefault;
        const RECT& rc = *rect.m_lpRect;
        const int cx = mirl_detail::RectExtent(rc.left, rc.right);
        const int cy = mirl_detail::RectExtent(rc.top, rc.bottom);

        mirl_detail::CreateWndData data = { static_cast<void*>(this), &AttachCreated };
        mirl_detail::CreateWndData* const pOldData = mirl_detail::t_pCreateWndData;
        mirl_detail::t_pCreateWndData = &data;
        const HWND hWnd = ::CreateWindowExW(dwExStyle, MAKEINTRESOURCEW(atom), szWindowName, dwStyle,
                                            rc.left, rc.top, cx, cy, hWndParent, MenuOrID.m_hMenu,
                                            AtlModuleInstance(), lpCreateParam);
        // Still set if the window never received a message.
        mirl_detail::t_pCreateWndData = pOldData;
        return hWnd;
    }

    BOOL DestroyWindow()
    {
        ATLASSERT(::IsWindow(this->m_hWnd));
        return ::DestroyWindow(this->m_hWnd);
    }

    // Puts this object in front of an existing window's procedure.
    BOOL SubclassWindow(HWND hWnd)
    {
        ATLASSERT(this->m_hWnd == NULL);
        if (this->m_hWnd != NULL || !::IsWindow(hWnd))
            return FALSE;
        if (!this->m_thunk.Init(GetWindowProc(), this))
            return FALSE;
        const WNDPROC pProc = this->m_thunk.GetWNDPROC();
        const WNDPROC pfnWndProc = reinterpret_cast<WNDPROC>(
            ::SetWindowLongPtrW(hWnd, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(pProc)));
        if (pfnWndProc == NULL)
            return FALSE;
        m_pfnSuperWindowProc = pfnWndProc;
        this->m_hWnd = hWnd;
        return TRUE;
    }

    // Gives the window back its former procedure. Without bForce only if this object's procedure
    // is still the window's, so that a later subclass is not cut out. Returns the window, or null.
    HWND UnsubclassWindow(BOOL bForce = FALSE)
    {
        ATLASSERT(this->m_hWnd != NULL);
        const WNDPROC pOurProc = this->m_thunk.GetWNDPROC();
        const WNDPROC pActiveProc = reinterpret_cast<WNDPROC>(::GetWindowLongPtrW(this->m_hWnd, GWLP_WNDPROC));
        if (!bForce && pOurProc != pActiveProc)
            return NULL;
        if (!::SetWindowLongPtrW(this->m_hWnd, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(m_pfnSuperWindowProc)))
            return NULL;
        m_pfnSuperWindowProc = ::DefWindowProcW;
        const HWND hWnd = this->m_hWnd;
        this->m_hWnd = NULL;
        return hWnd;
    }

    // Default processing of the message being handled.
    LRESULT DefWindowProc()
    {
        const MSG* pMsg = this->m_pCurrentMsg;
        if (pMsg == NULL)
            return 0;
        return DefWindowProc(pMsg->message, pMsg->wParam, pMsg->lParam);
    }

    // The procedure this object replaced: the system class's, a former subclass's, or DefWindowProc.
    LRESULT DefWindowProc(UINT uMsg, WPARAM wParam, LPARAM lParam)
    {
        return ::CallWindowProcW(m_pfnSuperWindowProc, this->m_hWnd, uMsg, wParam, lParam);
    }

    // After WM_NCDESTROY, with m_hWnd already cleared; an object may delete itself here.
    virtual void OnFinalMessage(HWND /*hWnd*/) {}

private:
    static WNDPROC AttachCreated(void* pObject, HWND hWnd)
    {
        CWindowImplBaseT* pThis = static_cast<CWindowImplBaseT*>(pObject);
        pThis->m_hWnd = hWnd;
        if (!pThis->m_thunk.Init(pThis->GetWindowProc(), pThis))
            return nullptr;
        const WNDPROC pProc = pThis->m_thunk.GetWNDPROC();
        ::SetWindowLongPtrW(hWnd, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(pProc));
        return pProc;
    }
};

// ---------------------------------------------------------------------------------------------
// CWindowImpl

template <class T, class TBase = CWindow, class TWinTraits = CControlWinTraits>
class CWindowImpl : public CWindowImplBaseT<TBase, TWinTraits>
{
public:
    DECLARE_WND_CLASS(NULL)

    static LPCWSTR GetWndCaption() { return NULL; }

    // Registers T's class on first use (a superclass of TBase's system class, if it names one).
    HWND Create(HWND hWndParent, _U_RECT rect = NULL, LPCWSTR szWindowName = NULL, DWORD dwStyle = 0,
                DWORD dwExStyle = 0, _U_MENUorID MenuOrID = 0U, LPVOID lpCreateParam = NULL)
    {
        if (T::GetWndClassInfo().m_lpszOrigName == NULL)
            T::GetWndClassInfo().m_lpszOrigName = TBase::GetWndClassName();
        const ATOM atom = T::GetWndClassInfo().Register(&this->m_pfnSuperWindowProc);
        dwStyle = T::GetWndStyle(dwStyle);
        dwExStyle = T::GetWndExStyle(dwExStyle);
        if (szWindowName == NULL)
            szWindowName = T::GetWndCaption();
        return CWindowImplBaseT<TBase, TWinTraits>::Create(hWndParent, rect, szWindowName, dwStyle, dwExStyle,
                                                           MenuOrID, atom, lpCreateParam);
    }
};

} // namespace ATL

#endif // MIRL_PLATFORM_ATL_MIRLATLWIN_H
