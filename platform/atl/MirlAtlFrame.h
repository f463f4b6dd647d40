// MirlAtlFrame.h - frame helpers of WTL.
//
// WTL::CMessageFilter          the PreTranslateMessage interface
// WTL::CDoubleBufferImpl<T>    flicker-free painting mixin: chain it from T's message map and give T
//                              a DoPaint(CDCHandle dc) that draws the client area.
//
// CDoubleBufferImpl answers WM_ERASEBKGND with 1 and sends WM_PAINT and WM_PRINTCLIENT to one
// OnPaint. With a DC in wParam it paints the client rectangle into that DC; without one it uses
// BeginPaint and paints the update rectangle. Either way DoPaint draws into an off-screen DC that
// is copied to the target at the end.

#ifndef MIRL_PLATFORM_ATL_MIRLATLFRAME_H
#define MIRL_PLATFORM_ATL_MIRLATLFRAME_H

#include "MirlAtlBase.h"
#include "MirlAtlGdi.h"
#include "MirlAtlWin.h"

namespace WTL
{

class CMessageFilter
{
public:
    virtual BOOL PreTranslateMessage(MSG* pMsg) = 0;

protected:
    ~CMessageFilter() = default;
};

template <class T>
class CDoubleBufferImpl
{
public:
    BEGIN_MSG_MAP(CDoubleBufferImpl)
        MESSAGE_HANDLER(WM_ERASEBKGND, OnEraseBackground)
        MESSAGE_HANDLER(WM_PAINT, OnPaint)
        MESSAGE_HANDLER(WM_PRINTCLIENT, OnPaint)
    END_MSG_MAP()

    LRESULT OnEraseBackground(UINT /*uMsg*/, WPARAM /*wParam*/, LPARAM /*lParam*/, BOOL& /*bHandled*/)
    {
        return 1; // the paint covers the whole area
    }

    LRESULT OnPaint(UINT /*uMsg*/, WPARAM wParam, LPARAM /*lParam*/, BOOL& /*bHandled*/)
    {
        T* pT = static_cast<T*>(this);
        ATLASSERT(::IsWindow(pT->m_hWnd));
        // DoPaint gets a handle, never a managed CDC: one taken by value would delete the
        // off-screen DC before its picture is copied out.
        if (wParam != 0)
        {
            RECT rect = {};
            ::GetClientRect(pT->m_hWnd, &rect);
            CMemoryDC dcMem(reinterpret_cast<HDC>(wParam), rect);
            pT->DoPaint(CDCHandle(dcMem.m_hDC));
        }
        else
        {
            CPaintDC dc(pT->m_hWnd);
            CMemoryDC dcMem(dc.m_hDC, dc.m_ps.rcPaint);
            pT->DoPaint(CDCHandle(dcMem.m_hDC));
        }
        return 0;
    }
};

} // namespace WTL

#endif // MIRL_PLATFORM_ATL_MIRLATLFRAME_H
