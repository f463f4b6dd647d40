// The container controls.
//
//   MirlSplitter   a thin bar between two sibling windows that a drag moves along x,
//                  resizing both within their templates' width limits
#pragma once

#include "MirlWindow.h"

class MIRL_API MirlSplitter : public MirlWindowImpl<MirlSplitter>,
                              public CTransparentImpl<MirlSplitter>,
                              public WTL::CDoubleBufferImpl<MirlSplitter> {
    typedef MirlWindowImpl<MirlSplitter> Base;

public:
    MirlSplitter();
    ~MirlSplitter() override;
    // The bar owns its image: it isn't copied.
    MirlSplitter(const MirlSplitter &) = delete;
    MirlSplitter &operator=(const MirlSplitter &) = delete;

    HWND Create(MirlWindowBase *parent, HWND hWndParent, ATL::_U_RECT rect, const wchar_t *name,
                unsigned long style = 0, unsigned long exStyle = 0, ATL::_U_MENUorID menuOrID = 0U,
                void *createParam = NULL);
    BOOL SubclassWindow(HWND hWnd);
    BOOL SubclassWindow(MirlWindowBase *source, MirlWindowBase *parent);

    // The thickness that the parent's layout gives the bar across its direction; setting it
    // moves nothing until the next layout.
    int GetSplitterWeight() const { return m_nSplitterWeight; }
    void SetSplitterWeight(int weight) { m_nSplitterWeight = weight; }
    // The children just before and just after the bar in its parent's list. The first child is
    // its own left brother; the last has no right one (null). Both null when the bar is in no
    // parent's list.
    void GetBrotherWindow(MirlWindowBase **left, MirlWindowBase **right);
    HCURSOR GetSplitterCursor() const { return m_hCursor; }
    Gdiplus::Bitmap *GetImage() const { return m_pImage; }

    void DoPaint(WTL::CDCHandle dc);

    BEGIN_MSG_MAP(MirlSplitter)
        MESSAGE_HANDLER(WM_CREATE, OnCreate)
        MESSAGE_HANDLER(WM_MOUSEMOVE, OnMouseMove)
        MESSAGE_HANDLER(WM_LBUTTONDOWN, OnLButtonDown)
        MESSAGE_HANDLER(WM_LBUTTONUP, OnLButtonUp)
        MESSAGE_HANDLER(WM_SETCURSOR, OnSetCursor)
        MESSAGE_HANDLER(WM_ERASEBKGND, OnEraseBkgnd)
        CHAIN_MSG_MAP(WTL::CDoubleBufferImpl<MirlSplitter>)
        CHAIN_MSG_MAP(Base)
    END_MSG_MAP()

    LRESULT OnCreate(UINT uMsg, WPARAM wParam, LPARAM lParam, BOOL &bHandled);
    LRESULT OnMouseMove(UINT uMsg, WPARAM wParam, LPARAM lParam, BOOL &bHandled);
    LRESULT OnLButtonDown(UINT uMsg, WPARAM wParam, LPARAM lParam, BOOL &bHandled);
    LRESULT OnLButtonUp(UINT uMsg, WPARAM wParam, LPARAM lParam, BOOL &bHandled);
    LRESULT OnSetCursor(UINT uMsg, WPARAM wParam, LPARAM lParam, BOOL &bHandled);
    LRESULT OnEraseBkgnd(UINT uMsg, WPARAM wParam, LPARAM lParam, BOOL &bHandled);

protected:
    int m_nSplitterWeight;
    HCURSOR m_hCursor;
    Gdiplus::Bitmap *m_pImage;
};
