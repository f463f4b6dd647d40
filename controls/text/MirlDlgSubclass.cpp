#include "MirlDlgSubclass.h"

#include "MirlText.h"

namespace MIRL {

WNDPROC DlgSubclass::Take(HWND hWnd, void *object) const
{
    ::SetWindowLongPtrW(hWnd, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(object));
    WNDPROC former = reinterpret_cast<WNDPROC>(::GetWindowLongPtrW(hWnd, GWLP_WNDPROC));
    ::SetPropW(hWnd, property, reinterpret_cast<HANDLE>(former));
    ::SetWindowLongPtrW(hWnd, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(procedure));
    return former;
}

void DlgSubclass::GiveBack(HWND hWnd, void *object, WNDPROC former) const
{
    if (former == NULL || !::IsWindow(hWnd)) {
        return;
    }
    // A procedure put in after this one stays; the property keeps its chain whole.
    if (Holds(hWnd)) {
        ::SetWindowLongPtrW(hWnd, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(former));
        ::RemovePropW(hWnd, property);
    }
    if (::GetWindowLongPtrW(hWnd, GWLP_USERDATA) == reinterpret_cast<LONG_PTR>(object)) {
        ::SetWindowLongPtrW(hWnd, GWLP_USERDATA, 0);
    }
}

bool DlgSubclass::Holds(HWND hWnd) const
{
    return reinterpret_cast<WNDPROC>(::GetWindowLongPtrW(hWnd, GWLP_WNDPROC)) == procedure;
}

LRESULT DlgSubclass::CallFormer(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam) const
{
    WNDPROC former = reinterpret_cast<WNDPROC>(::GetPropW(hWnd, property));
    return former != NULL ? ::CallWindowProcW(former, hWnd, uMsg, wParam, lParam)
                          : ::DefWindowProcW(hWnd, uMsg, wParam, lParam);
}

LRESULT DlgSubclass::Final(HWND hWnd, WNDPROC former, UINT uMsg, WPARAM wParam, LPARAM lParam) const
{
    ::RemovePropW(hWnd, property);
    return former != NULL ? ::CallWindowProcW(former, hWnd, uMsg, wParam, lParam)
                          : ::DefWindowProcW(hWnd, uMsg, wParam, lParam);
}

void PaintThroughMemoryDC(HWND hWnd, HDC given, const std::function<void(HDC)> &paint)
{
    if (given != NULL) {
        RECT client = {};
        ::GetClientRect(hWnd, &client);
        MirlMemoryDC dc(given, client);
        paint(dc.m_hDC);
        return;
    }
    PAINTSTRUCT ps;
    HDC dc = ::BeginPaint(hWnd, &ps);
    if (dc != NULL) {
        MirlMemoryDC memory(dc, ps.rcPaint);
        paint(memory.m_hDC);
    }
    ::EndPaint(hWnd, &ps);
}

} // namespace MIRL
