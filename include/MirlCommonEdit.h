// The number field and its spin arrows, on the system's own controls.
//
//   MirlCommonEdit   a superclassed system EDIT that paints a three-part face and its number,
//                    centred; the number follows the text while the text is all digits
//                    operations: GetPosition, SetPosition, SetTextFont, DoPaint
//   MirlSpinCtrl     a superclassed system up-down whose steps write into a MirlCommonEdit buddy,
//                    never below 0 and with no ceiling
//                    operations: SetBuddyWindow, SetStep, GetPosition, SetPosition
#pragma once

#include "MirlExport.h"
#include "MirlWindow.h"

#include <commctrl.h>

class MIRL_API MirlCommonEdit
    : public MirlWindowImpl<MirlCommonEdit, WTL::CEditT<MirlWindowBase>, ATL::CWinTraits<0x56000000, 0>>,
      public WTL::CDoubleBufferImpl<MirlCommonEdit> {
    typedef MirlWindowImpl<MirlCommonEdit, WTL::CEditT<MirlWindowBase>, ATL::CWinTraits<0x56000000, 0>> Base;

public:
    DECLARE_WND_SUPERCLASS(L"MirlWindowImpl", L"EDIT")

    MirlCommonEdit();
    ~MirlCommonEdit() override;

    // The edit owns its font and images and the window its procedure: it isn't copied.
    MirlCommonEdit(const MirlCommonEdit &) = delete;
    MirlCommonEdit &operator=(const MirlCommonEdit &) = delete;

    HWND Create(MirlWindowBase *parent, HWND hWndParent, ATL::_U_RECT rect, const wchar_t *name,
                unsigned long style = 0, unsigned long exStyle = 0, ATL::_U_MENUorID menuOrID = 0U,
                void *createParam = NULL);
    BOOL SubclassWindow(HWND hWnd);
    BOOL SubclassWindow(MirlWindowBase *source, MirlWindowBase *parent);

    int GetPosition() const { return m_Position; }
    // Stores the number; the next paint shows it.
    void SetPosition(int position) { m_Position = position; }
    // The font of the system edit while the user types. The edit takes the handle as its own
    // and deletes the one it held; null keeps the current font.
    void SetTextFont(HFONT font);
    HFONT GetTextFont() const { return m_TextFont; }

    // The face and the number.
    void DoPaint(WTL::CDCHandle dc);

    // State, for tests.
    RECT GetCreationClientRect() const { return m_ClientRect; }
    Gdiplus::Bitmap *GetImageLeft() const { return m_ImgLeft; }
    Gdiplus::Bitmap *GetImageRight() const { return m_ImgRight; }
    Gdiplus::Bitmap *GetImageMiddle() const { return m_ImgMiddle; }

    BEGIN_MSG_MAP(MirlCommonEdit)
        MESSAGE_HANDLER(WM_CREATE, OnCreate)
        MESSAGE_HANDLER(WM_DESTROY, OnDestroy)
        MESSAGE_HANDLER(WM_SETFOCUS, OnSetFocus)
        MESSAGE_HANDLER(WM_LBUTTONDOWN, OnLButtonDown)
        MESSAGE_HANDLER(WM_LBUTTONDBLCLK, OnLButtonDBClick)
        MESSAGE_HANDLER(WM_KEYDOWN, OnKeyDown)
        MESSAGE_HANDLER(OCM_COMMAND, OnReflectedCommandMessage)
        CHAIN_MSG_MAP(WTL::CDoubleBufferImpl<MirlCommonEdit>)
        CHAIN_MSG_MAP(Base)
    END_MSG_MAP()

    LRESULT OnCreate(UINT uMsg, WPARAM wParam, LPARAM lParam, BOOL &bHandled);
    LRESULT OnDestroy(UINT uMsg, WPARAM wParam, LPARAM lParam, BOOL &bHandled);
    LRESULT OnSetFocus(UINT uMsg, WPARAM wParam, LPARAM lParam, BOOL &bHandled);
    LRESULT OnLButtonDown(UINT uMsg, WPARAM wParam, LPARAM lParam, BOOL &bHandled);
    LRESULT OnLButtonDBClick(UINT uMsg, WPARAM wParam, LPARAM lParam, BOOL &bHandled);
    LRESULT OnKeyDown(UINT uMsg, WPARAM wParam, LPARAM lParam, BOOL &bHandled);
    // EN_CHANGE only: the number follows a text of digits; -1 and no change otherwise.
    LRESULT OnReflectedCommand(UINT notify, int id, HWND control, BOOL &bHandled);

private:
    LRESULT OnReflectedCommandMessage(UINT uMsg, WPARAM wParam, LPARAM lParam, BOOL &bHandled);
    // Invalidates with erase and leaves the message to the system edit.
    LRESULT Repaint(BOOL &bHandled);
    void FreeImages();

    int m_Position;
    HFONT m_TextFont;
    Gdiplus::Bitmap *m_ImgLeft;
    Gdiplus::Bitmap *m_ImgRight;
    Gdiplus::Bitmap *m_ImgMiddle;
    RECT m_ClientRect;
};

class MIRL_API MirlSpinCtrl
    : public MirlWindowImpl<MirlSpinCtrl, WTL::CUpDownCtrlT<MirlWindowBase>, ATL::CWinTraits<0x56000000, 0>> {
    typedef MirlWindowImpl<MirlSpinCtrl, WTL::CUpDownCtrlT<MirlWindowBase>, ATL::CWinTraits<0x56000000, 0>> Base;

public:
    DECLARE_WND_SUPERCLASS(L"MirlWindowImpl", UPDOWN_CLASSW)

    MirlSpinCtrl();
    ~MirlSpinCtrl() override;

    MirlSpinCtrl(const MirlSpinCtrl &) = delete;
    MirlSpinCtrl &operator=(const MirlSpinCtrl &) = delete;

    HWND Create(MirlWindowBase *parent, HWND hWndParent, ATL::_U_RECT rect, const wchar_t *name,
                unsigned long style = 0, unsigned long exStyle = 0, ATL::_U_MENUorID menuOrID = 0U,
                void *createParam = NULL);
    BOOL SubclassWindow(HWND hWnd);
    BOOL SubclassWindow(MirlWindowBase *source, MirlWindowBase *parent);

    // The field that shows the number; anything but a MirlCommonEdit counts as none. The spin
    // doesn't own it; a buddy whose window is gone is no longer written to.
    void SetBuddyWindow(MirlWindowBase *buddy);
    MirlCommonEdit *GetBuddyWindow() const { return m_Buddy; }
    void SetStep(int step) { m_Step = step; }
    int GetStep() const { return m_Step; }
    // The buddy's number (kept as the last value), or the last value without a buddy.
    int GetPosition();
    // Shows value in the buddy, negative values too, and makes it the buddy's number.
    void SetPosition(int value);

    BEGIN_MSG_MAP(MirlSpinCtrl)
        MESSAGE_HANDLER(OCM_NOTIFY, OnReflectedNotifyMessage)
        MESSAGE_HANDLER(WM_CREATE, OnCreate)
        MESSAGE_HANDLER(WM_DESTROY, OnDestroy)
        MESSAGE_HANDLER(WM_PAINT, OnSystemPaint)
        MESSAGE_HANDLER(WM_PRINTCLIENT, OnSystemPaint)
        CHAIN_MSG_MAP(Base)
    END_MSG_MAP()

    // UDN_DELTAPOS: one step from the buddy's number. Every other code is left alone.
    LRESULT OnReflectedNotify(int id, LPNMHDR header);
    LRESULT OnCreate(UINT uMsg, WPARAM wParam, LPARAM lParam, BOOL &bHandled);
    LRESULT OnDestroy(UINT uMsg, WPARAM wParam, LPARAM lParam, BOOL &bHandled);

private:
    LRESULT OnReflectedNotifyMessage(UINT uMsg, WPARAM wParam, LPARAM lParam, BOOL &bHandled);
    // The arrows are the system's own picture.
    LRESULT OnSystemPaint(UINT uMsg, WPARAM wParam, LPARAM lParam, BOOL &bHandled);
    // The buddy, if its window still exists.
    MirlCommonEdit *LiveBuddy() const;
    void ShowInBuddy(int value, bool invalidate);

    MirlCommonEdit *m_Buddy;
    int m_Position;
    int m_Step;
    HWND m_BuddyWnd;
};
