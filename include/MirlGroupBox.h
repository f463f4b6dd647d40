// MirlGroupBox: a container with the skin's bar across its top and a caption on it. It passes
// its children's notifications up to its own parent, so that a control in a group box reaches
// the dialog as if it stood there directly.
//
//   MirlGroupBox   constructors: MirlGroupBox, ~MirlGroupBox
//                  operations: DoPaint, ForwardNotifications
#pragma once

#include "MirlExport.h"
#include "MirlWindow.h"

class MIRL_API MirlGroupBox : public MirlWindowImpl<MirlGroupBox>, public WTL::CDoubleBufferImpl<MirlGroupBox> {
public:
    MirlGroupBox();
    ~MirlGroupBox() override;
    // Each box owns its three bitmaps: a box isn't copied.
    MirlGroupBox(const MirlGroupBox &) = delete;
    MirlGroupBox &operator=(const MirlGroupBox &) = delete;

    HWND Create(MirlWindowBase *parent, HWND hWndParent, ATL::_U_RECT rect, const wchar_t *name,
                unsigned long style = 0, unsigned long exStyle = 0, ATL::_U_MENUorID menuOrID = 0U,
                void *createParam = NULL);
    BOOL SubclassWindow(HWND hWnd);
    BOOL SubclassWindow(MirlWindowBase *source, MirlWindowBase *parent);

    void DoPaint(WTL::CDCHandle dc);
    // Sends a child's notification to the box's parent and answers its result; the rest are
    // left unhandled.
    LRESULT ForwardNotifications(UINT uMsg, WPARAM wParam, LPARAM lParam, BOOL &bHandled);
    // Whether the box passes that message on to its parent.
    static bool IsForwarded(UINT uMsg);

    // The bar's three bitmaps: 0 left, 1 middle, 2 right.
    Gdiplus::Bitmap *GetBarBitmap(int part) const
    {
        return part == 0 ? m_BmpLeft : part == 1 ? m_BmpMiddle : part == 2 ? m_BmpRight : NULL;
    }

    BOOL ProcessWindowMessage(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam, LRESULT &lResult,
                              DWORD dwMsgMapID = 0) override
    {
        BOOL bHandled = TRUE;
        if (uMsg == WM_CREATE) {
            lResult = OnCreate(uMsg, wParam, lParam, bHandled);
            if (bHandled) {
                return TRUE;
            }
        }
        bHandled = TRUE;
        lResult = ForwardNotifications(uMsg, wParam, lParam, bHandled);
        if (bHandled) {
            return TRUE;
        }
        if (WTL::CDoubleBufferImpl<MirlGroupBox>::ProcessWindowMessage(hWnd, uMsg, wParam, lParam, lResult,
                                                                         dwMsgMapID)) {
            return TRUE;
        }
        return MirlWindowImpl<MirlGroupBox>::ProcessWindowMessage(hWnd, uMsg, wParam, lParam, lResult, dwMsgMapID);
    }

    LRESULT OnCreate(UINT, WPARAM, LPARAM, BOOL &);

protected:
    Gdiplus::Bitmap *m_BmpLeft;
    Gdiplus::Bitmap *m_BmpMiddle;
    Gdiplus::Bitmap *m_BmpRight;
};
