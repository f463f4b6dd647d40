// The container controls: the tab strip, the folder stack and the splitter.
//
//   MirlTabButtonImpl<T>   what a toolbar's tab and a folder's bar share: a system BUTTON forced
//                          to owner draw, hover with the capture, an upper and a menu zone
//   MirlTabButton          a toolbar's tab, from a "TABBUTTON" template child
//   MirlToolbar            constructors: MirlToolbar, ~MirlToolbar
//                          operations: SelectTab, IsClickOnMenu, SubclassWindow, DoPaint
//   MirlOutlookBar         a folder's bar, with an icon of its own
//   OUTLOOK_FOLDER         one folder: its bar and its panel
//   MIRLOutlookCtrl        constructors: MIRLOutlookCtrl, ~MIRLOutlookCtrl
//                          operations: AddBar, ArrangeFolders, ScrollFolders, SubclassWindow
//
// One tab is current in the whole process, and one bar; the tabs' images are shared by all
// toolbars and the bars' by all outlook controls, freed with the last control that loaded them.
//
//   MirlSplitter           a thin bar between two sibling windows that a drag moves along x,
//                          resizing both within their templates' width limits
#pragma once

#include "MirlExport.h"
#include "MirlWindow.h"

#include <vector>

// Sent by a folder's bar to its outlook control: wParam 0 and lParam the bar, "arrange again";
// a non-zero wParam moves the selection to the folder after the bar's.
#define WM_MIRL_FOLDER_CHANGED (WM_USER + 101)

class MirlToolbar;
class MIRLOutlookCtrl;

// What a tab and a bar share. T supplies OnTabLButtonDown, OnTabClicked, DrawTab, ReleaseTab
// and kEnterMenuZoneY, the split line of the first move.
template <class T>
class MirlTabButtonImpl : public MirlWindowImpl<T, WTL::CButtonT<MirlWindowBase>, ATL::CWinTraits<0x56000000, 0>> {
    typedef MirlWindowImpl<T, WTL::CButtonT<MirlWindowBase>, ATL::CWinTraits<0x56000000, 0>> Base;

public:
    // Its WM_SIZE does not lay children out: a child of its template is made where it says.
    enum { LaysOutChildrenOnSize = 0 };

    MirlTabButtonImpl()
        : m_nRepeatDelay(100), m_fMouseOver(0), m_fPressed(0), m_fFocus(0), m_fDisabled(0), m_fReserved(0),
          m_fAutoRepeat(0), m_fCheckStyle(0), m_fSelected(0), m_bTextMeasured(false), m_fTextHeight(0.0f),
          m_fTextWidth(0.0f), m_bDrawHover(true), m_bMenuZone(false)
    {
        this->m_bMsgHandled = 0;
    }

    // State, for the application and for tests.
    bool IsMouseOver() const { return m_fMouseOver != 0; }
    bool IsMenuZone() const { return m_bMenuZone; }
    bool IsSelected() const { return m_fSelected != 0; }
    bool IsCheckStyle() const { return m_fCheckStyle != 0; }
    bool GetDrawHover() const { return m_bDrawHover; }
    bool IsTextMeasured() const { return m_bTextMeasured; }
    bool IsPressedDrawn() const { return m_fPressed != 0; }
    // Marks the tab selected or not and repaints it; the current tab is not moved.
    void SetSelected(bool selected)
    {
        m_fSelected = selected ? 1 : 0;
        if (this->IsWindow()) {
            this->InvalidateRect(NULL, TRUE);
        }
    }

    // A double click is a second press.
    static LRESULT CALLBACK WindowProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam)
    {
        if (uMsg == WM_LBUTTONDBLCLK) {
            uMsg = WM_LBUTTONDOWN;
        }
        return Base::WindowProc(hWnd, uMsg, wParam, lParam);
    }
    WNDPROC GetWindowProc() override { return WindowProc; }

#define MIRL_TAB_HANDLER(msg, expression) \
    if (uMsg == (msg)) { \
        this->SetMsgHandled(TRUE); \
        lResult = static_cast<LRESULT>(expression); \
        if (this->IsMsgHandled()) \
            return TRUE; \
    }

    BEGIN_MSG_MAP_EX(MirlTabButtonImpl)
        MESSAGE_RANGE_HANDLER(WM_MOUSEFIRST, WM_MOUSEFIRST + 13, OnMouseMessage)
        MIRL_TAB_HANDLER(WM_DESTROY, (static_cast<T *>(this)->ReleaseTab(), 0))
        MIRL_TAB_HANDLER(WM_SIZE, (static_cast<T *>(this)->OnTabSize(), 0))
        MIRL_TAB_HANDLER(WM_MOUSEMOVE, (OnMouseMove(static_cast<UINT>(wParam), PointOf(lParam)), 0))
        MIRL_TAB_HANDLER(WM_CREATE, OnCreate())
        MIRL_TAB_HANDLER(WM_KILLFOCUS, (OnClearingMessage(true), 0))
        MIRL_TAB_HANDLER(WM_LBUTTONDOWN, (static_cast<T *>(this)->OnTabLButtonDown(PointOf(lParam)), 0))
        MIRL_TAB_HANDLER(WM_ACTIVATE, (OnClearingMessage(LOWORD(wParam) == WA_INACTIVE), 0))
        MIRL_TAB_HANDLER(WM_ENABLE, (OnClearingMessage(wParam == 0), 0))
        MIRL_TAB_HANDLER(WM_CANCELMODE, (OnClearingMessage(true), 0))
        MIRL_TAB_HANDLER(WM_CAPTURECHANGED, (OnCaptureChanged(reinterpret_cast<HWND>(lParam)), 0))
        MIRL_TAB_HANDLER(WM_SYSCOLORCHANGE, (this->DefWindowProc(), 0))
        MIRL_TAB_HANDLER(OCM__BASE + WM_COMMAND, static_cast<T *>(this)->OnTabClicked(HIWORD(wParam)))
        MIRL_TAB_HANDLER(OCM__BASE + WM_DRAWITEM,
                         (static_cast<T *>(this)->DrawTab(reinterpret_cast<LPDRAWITEMSTRUCT>(lParam)), 1))
        MIRL_TAB_HANDLER(OCM__BASE + WM_CTLCOLORBTN, reinterpret_cast<LRESULT>(::GetStockObject(NULL_BRUSH)))
    END_MSG_MAP()

#undef MIRL_TAB_HANDLER

    LRESULT OnMouseMessage(UINT, WPARAM, LPARAM, BOOL &bHandled)
    {
        if (this->m_ToolTipCtrl != NULL && ::IsWindow(this->m_ToolTipCtrl) && this->GetCurrentMessage() != NULL) {
            MSG msg = *this->GetCurrentMessage();
            ::SendMessageW(this->m_ToolTipCtrl, TTM_RELAYEVENT, 0, reinterpret_cast<LPARAM>(&msg));
        }
        bHandled = FALSE;
        return 0;
    }

    void OnTabSize() { m_bTextMeasured = false; }

    LRESULT OnCreate()
    {
        BOOL handled = TRUE;
        Base::OnCreate(WM_CREATE, 0, 0, handled);
        const DWORD style = static_cast<DWORD>(::GetWindowLongW(this->m_hWnd, GWL_STYLE));
        if (style & BS_CHECKBOX) {
            m_fCheckStyle = 1;
        }
        if ((style & BS_OWNERDRAW) != BS_OWNERDRAW) {
            ::SetWindowLongW(this->m_hWnd, GWL_STYLE, static_cast<LONG>(style | BS_OWNERDRAW));
        }
        // The system button sets itself up in its own WM_CREATE.
        this->SetMsgHandled(FALSE);
        return 0;
    }

    void OnMouseMove(UINT flags, POINT point)
    {
        this->DefWindowProc();
        if ((flags & MK_LBUTTON) && !m_fMouseOver) {
            return;
        }
        if (::GetCapture() != this->m_hWnd && ::IsWindow(::GetActiveWindow()) && ::IsWindow(::GetParent(this->m_hWnd))) {
            m_fMouseOver = 1;
            m_bMenuZone = point.y > T::kEnterMenuZoneY;
            this->SetCapture();
            this->InvalidateRect(NULL, TRUE);
            return;
        }
        POINT screen = point;
        this->ClientToScreen(&screen);
        HWND under = ::WindowFromPoint(screen);
        if (under == NULL) {
            return;
        }
        if (under != this->m_hWnd) {
            if (m_fMouseOver) {
                m_fMouseOver = 0;
                this->InvalidateRect(NULL, TRUE);
            }
            if (!(flags & MK_LBUTTON)) {
                ::ReleaseCapture();
            }
            return;
        }
        const bool below = point.y > 24;
        if (below != m_bMenuZone) {
            m_bMenuZone = below;
            this->InvalidateRect(NULL, TRUE);
        }
    }

    // Focus lost, deactivation, disabling or a cancelled mode: the hover ends.
    void OnClearingMessage(bool clears)
    {
        this->DefWindowProc();
        if (clears && m_fMouseOver) {
            m_fMouseOver = 0;
            m_bMenuZone = false;
            this->InvalidateRect(NULL, TRUE);
        }
    }

    void OnCaptureChanged(HWND capture)
    {
        // Taking the capture that the tab already holds is no loss.
        if (m_fMouseOver && capture != this->m_hWnd) {
            ::ReleaseCapture();
            this->InvalidateRect(NULL, TRUE);
        }
        this->SetMsgHandled(FALSE);
    }

protected:
    static POINT PointOf(LPARAM lParam)
    {
        POINT point = {static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam))};
        return point;
    }

    // Flags of the item about to be drawn.
    void TakeDrawState(const DRAWITEMSTRUCT *item)
    {
        m_fPressed = ((item->itemState & ODS_SELECTED) != 0 || (m_fCheckStyle && m_fSelected)) ? 1 : 0;
        m_fFocus = (item->itemState & ODS_FOCUS) ? 1 : 0;
        m_fDisabled = (item->itemState & ODS_DISABLED) ? 1 : 0;
    }

    // The caption's size, measured once per size change.
    bool MeasureCaption(Gdiplus::Graphics &graphics)
    {
        if (this->m_Text.empty() || this->m_TxFont == NULL) {
            return false;
        }
        if (!m_bTextMeasured) {
            m_bTextMeasured = true;
            Gdiplus::RectF box;
            graphics.MeasureString(this->m_Text.c_str(), -1, this->m_TxFont, Gdiplus::PointF(0.0f, 0.0f), &box);
            m_fTextWidth = box.Width;
            m_fTextHeight = box.Height;
        }
        return true;
    }

    // The auto-repeat loop of a held press, when auto repeat is on.
    void RepeatWhileHeld();

    unsigned int m_nRepeatDelay;
    unsigned int m_fMouseOver : 1;
    unsigned int m_fPressed : 1;
    unsigned int m_fFocus : 1;
    unsigned int m_fDisabled : 1;
    unsigned int m_fReserved : 2;
    unsigned int m_fAutoRepeat : 1;
    unsigned int m_fCheckStyle : 1;
    unsigned int m_fSelected : 1;
    bool m_bTextMeasured;
    float m_fTextHeight;
    float m_fTextWidth;
    bool m_bDrawHover;
    bool m_bMenuZone;
};

namespace MIRL {
// The auto-repeat loop of a tab or a bar: commands to the parent until the release, made even,
// then the release and a move at the cursor sent to the button.
MIRL_API void RunTabRepeat(HWND button, unsigned int delay);
} // namespace MIRL

template <class T>
void MirlTabButtonImpl<T>::RepeatWhileHeld()
{
    MIRL::RunTabRepeat(this->m_hWnd, m_nRepeatDelay);
}

class MIRL_API MirlTabButton : public MirlTabButtonImpl<MirlTabButton> {
public:
    DECLARE_WND_SUPERCLASS(NULL, L"BUTTON")
    enum { kEnterMenuZoneY = 24 };

    MirlTabButton();
    ~MirlTabButton() override;
    MirlTabButton(const MirlTabButton &) = delete;
    MirlTabButton &operator=(const MirlTabButton &) = delete;

    HWND Create(MirlWindowBase *parent, HWND hWndParent, ATL::_U_RECT rect, const wchar_t *name,
                unsigned long style = 0, unsigned long exStyle = 0, ATL::_U_MENUorID menuOrID = 0U,
                void *createParam = NULL);

    void OnTabLButtonDown(POINT point);
    LRESULT OnTabClicked(UINT code);
    void DrawTab(LPDRAWITEMSTRUCT item);
    // The tab stops being current as its window goes.
    void ReleaseTab();
};

class MIRL_API MirlToolbar : public MirlWindowImpl<MirlToolbar>, public WTL::CDoubleBufferImpl<MirlToolbar> {
public:
    MirlToolbar();
    ~MirlToolbar() override;
    MirlToolbar(const MirlToolbar &) = delete;
    MirlToolbar &operator=(const MirlToolbar &) = delete;

    HWND Create(MirlWindowBase *parent, HWND hWndParent, ATL::_U_RECT rect, const wchar_t *name,
                unsigned long style = 0, unsigned long exStyle = 0, ATL::_U_MENUorID menuOrID = 0U,
                void *createParam = NULL);
    BOOL SubclassWindow(HWND hWnd);
    // Takes over a toolbar that the factory made, with its background brush.
    BOOL SubclassWindow(MirlWindowBase *source, MirlWindowBase *parent);

    // Makes the tab number index (tabs counted alone, from 0) current and repaints the toolbar;
    // neither tab's selected mark changes. 0 if there are too few tabs.
    int SelectTab(int index);
    // 1 if the first tab with that command id had the pointer in its menu zone at the last move.
    int IsClickOnMenu(unsigned short id);
    void DoPaint(WTL::CDCHandle dc);

    // The current tab of the process, null when there is none.
    static MirlTabButton *GetCurrentTab();
    static void SetCurrentTab(MirlTabButton *tab);
    // The shared tab images: MIRL::TabFaceActive, TabFaceMenu, TabFaceHover, or 0 for the arrow.
    static Gdiplus::Bitmap *GetTabImage(int face);
    // How many toolbars hold the shared tab images.
    static int GetTabImagesRef();
    Gdiplus::TextureBrush *GetBackgroundBrush() const { return m_pBkBrush; }
    Gdiplus::Bitmap *GetBarImage(int part) const
    {
        return part == 0 ? m_pBarLeft : part == 1 ? m_pBarXScale : part == 2 ? m_pBarRight : NULL;
    }

    BEGIN_MSG_MAP(MirlToolbar)
        MESSAGE_HANDLER(WM_CREATE, OnCreate)
        MESSAGE_HANDLER(WM_DESTROY, OnDestroy)
        CHAIN_MSG_MAP(WTL::CDoubleBufferImpl<MirlToolbar>)
        CHAIN_MSG_MAP(MirlWindowImpl<MirlToolbar>)
    END_MSG_MAP()

    LRESULT OnCreate(UINT, WPARAM, LPARAM, BOOL &);
    LRESULT OnDestroy(UINT, WPARAM, LPARAM, BOOL &);

protected:
    void ReleaseTabImages();

    Gdiplus::TextureBrush *m_pBkBrush;
    Gdiplus::Bitmap *m_pBarLeft;
    Gdiplus::Bitmap *m_pBarRight;
    Gdiplus::Bitmap *m_pBarXScale;
    bool m_HoldsTabImages;
};

class MIRL_API MirlOutlookBar : public MirlTabButtonImpl<MirlOutlookBar> {
public:
    DECLARE_WND_SUPERCLASS(NULL, L"BUTTON")
    enum { kEnterMenuZoneY = 20 };

    MirlOutlookBar();
    ~MirlOutlookBar() override;
    MirlOutlookBar(const MirlOutlookBar &) = delete;
    MirlOutlookBar &operator=(const MirlOutlookBar &) = delete;

    HWND Create(MirlWindowBase *parent, HWND hWndParent, ATL::_U_RECT rect, const wchar_t *name,
                unsigned long style = 0, unsigned long exStyle = 0, ATL::_U_MENUorID menuOrID = 0U,
                void *createParam = NULL);

    Gdiplus::Bitmap *GetBarIcon() const { return m_pBarIcon; }

    BEGIN_MSG_MAP(MirlOutlookBar)
        if (uMsg == WM_CREATE) {
            LoadBarIcon();
        }
        CHAIN_MSG_MAP(MirlTabButtonImpl<MirlOutlookBar>)
    END_MSG_MAP()

    void OnTabSize();
    void OnTabLButtonDown(POINT point);
    LRESULT OnTabClicked(UINT code);
    void DrawTab(LPDRAWITEMSTRUCT item);
    void ReleaseTab();

protected:
    void LoadBarIcon();
    void DrawFace(HDC dc, const RECT &item);

    Gdiplus::Bitmap *m_pBarIcon;
    // The picture the bar draws into first, of the client's size.
    HDC m_hMemDC;
    HBITMAP m_hMemBitmap;
    HBITMAP m_hMemOldBitmap;
};

struct OUTLOOK_FOLDER {
    MirlOutlookBar *pBar;
    MirlWindowBase *pPanel;
    bool bVisible;
    int nHeight;
};

class MIRL_API MIRLOutlookCtrl : public MirlWindowImpl<MIRLOutlookCtrl>,
                                 public CTransparentImpl<MIRLOutlookCtrl>,
                                 public WTL::CDoubleBufferImpl<MIRLOutlookCtrl> {
public:
    // Its WM_SIZE does not lay children out: a child of its template is made where it says.
    enum { LaysOutChildrenOnSize = 0 };

    MIRLOutlookCtrl();
    ~MIRLOutlookCtrl() override;
    MIRLOutlookCtrl(const MIRLOutlookCtrl &) = delete;
    MIRLOutlookCtrl &operator=(const MIRLOutlookCtrl &) = delete;

    HWND Create(MirlWindowBase *parent, HWND hWndParent, ATL::_U_RECT rect, const wchar_t *name,
                unsigned long style = 0, unsigned long exStyle = 0, ATL::_U_MENUorID menuOrID = 0U,
                void *createParam = NULL);
    BOOL SubclassWindow(HWND hWnd);
    // Takes over an outlook control that the factory made, with its folders and scroll bar.
    BOOL SubclassWindow(MirlWindowBase *source, MirlWindowBase *parent);

    // Does nothing, whatever it is given; 0.
    int AddBar(const MirlUiWindow *window);
    void DoPaint(WTL::CDCHandle dc);

    unsigned int GetFolderCount() const { return static_cast<unsigned int>(m_vFolders.size()); }
    const OUTLOOK_FOLDER *GetFolder(unsigned int index) const
    {
        return index < m_vFolders.size() ? m_vFolders[index] : NULL;
    }
    HWND GetScrollBar() const { return m_hScrollBar; }
    int GetBarHeight() const { return m_nBarHeight; }
    int GetBarGap() const { return m_nBarGap; }

    // The current bar of the process, null when there is none.
    static MirlOutlookBar *GetCurrentBar();
    static void SetCurrentBar(MirlOutlookBar *bar);
    static Gdiplus::Bitmap *GetBarImage(int face);
    static int GetBarImagesRef();

    BEGIN_MSG_MAP(MIRLOutlookCtrl)
        MESSAGE_HANDLER(WM_MIRL_SUBCLASSED, OnSubclassWindow)
        MESSAGE_HANDLER(WM_MIRL_FOLDER_CHANGED, OnFolderChanged)
        MESSAGE_HANDLER(WM_CREATE, OnCreate)
        MESSAGE_HANDLER(WM_DESTROY, OnDestroy)
        MESSAGE_HANDLER(WM_SIZE, OnSize)
        MESSAGE_HANDLER(WM_VSCROLL, OnVScroll)
        MESSAGE_HANDLER(WM_LBUTTONDOWN, OnLButtonDown)
        MESSAGE_HANDLER(WM_MOUSEMOVE, OnMouseMove)
        MESSAGE_HANDLER(WM_LBUTTONUP, OnMouseUp)
        MESSAGE_HANDLER(WM_MOUSEWHEEL, OnMouseWheel)
        CHAIN_MSG_MAP(WTL::CDoubleBufferImpl<MIRLOutlookCtrl>)
        CHAIN_MSG_MAP(MirlWindowImpl<MIRLOutlookCtrl>)
    END_MSG_MAP()

    LRESULT OnSubclassWindow(UINT, WPARAM, LPARAM, BOOL &);
    LRESULT OnFolderChanged(UINT, WPARAM, LPARAM, BOOL &);
    LRESULT OnCreate(UINT, WPARAM, LPARAM, BOOL &);
    LRESULT OnDestroy(UINT, WPARAM, LPARAM, BOOL &);
    LRESULT OnSize(UINT, WPARAM, LPARAM, BOOL &);
    LRESULT OnVScroll(UINT, WPARAM, LPARAM, BOOL &);
    LRESULT OnLButtonDown(UINT, WPARAM, LPARAM, BOOL &);
    LRESULT OnMouseMove(UINT, WPARAM, LPARAM, BOOL &);
    LRESULT OnMouseUp(UINT, WPARAM, LPARAM, BOOL &);
    LRESULT OnMouseWheel(UINT, WPARAM, LPARAM, BOOL &);

    // Lays out every bar and panel from the top, and sets the scroll range when they overflow.
    virtual void ArrangeFolders();

protected:
    // Places the same windows at the scroll position.
    void ScrollFolders();
    // Moves every bar and panel, in one batch, with the first bar's top at top.
    void PlaceFolderWindows(int top, const RECT &client);
    void ReleaseBarImages();
    void FreeFolders();

    int m_nBarHeight;
    int m_nBarGap;
    std::vector<OUTLOOK_FOLDER *> m_vFolders;
    HWND m_hScrollBar;
    bool m_HoldsBarImages;
    // Whether the folder records are this object's to free: a subclassing copy takes them over.
    bool m_OwnsFolders;
};

namespace MIRL {
// Moves of one layout in one batch made for count moves. When the batch fails, the moves it
// held and every later one are made at once, so none is lost; End makes the batch's moves.
class MIRL_API MirlDeferBatch {
public:
    explicit MirlDeferBatch(int count);
    ~MirlDeferBatch();
    MirlDeferBatch(const MirlDeferBatch &) = delete;
    MirlDeferBatch &operator=(const MirlDeferBatch &) = delete;

    void Move(HWND window, HWND insertAfter, int x, int y, int width, int height, UINT flags);
    // Ends the batch; true when every move went through it.
    bool End();
    // Moves made at once because the batch failed.
    int GetDirectMoves() const { return m_Direct; }

private:
    struct PendingMove {
        HWND window;
        HWND insertAfter;
        int x;
        int y;
        int width;
        int height;
        UINT flags;
    };
    void MoveNow(const PendingMove &move);

    HDWP m_Batch;
    std::vector<PendingMove> m_Pending;
    int m_Direct;
};
} // namespace MIRL

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
