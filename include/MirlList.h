// Lists and menus.
//
//   MirlMenuWindow   the process's one popup menu: a captured, non-activating window of rows
//                    (an optional image and a text) that sends the chosen row's id to its holder
//                    constructors: MirlMenuWindow, ~MirlMenuWindow
//                    operations: Instance, FinalDestroy, TrackPopupMenu, AddItem, ClearItems,
//                      GetItemCount, GetNeededHeight, GetNeededWidth, Get/SetRowHeight, GetHolder
//   MirlListView     a report list: a header of columns over rows that are objects of the
//                    application's class (INFORMATION_ITEM) painting their own cells, scrolled
//                    by two system scroll bars; tells its parent 1124 to 1126 with the row
//                    constructors: MirlListView, ~MirlListView
//                    operations: AddColumn, AddItem, ClearItems, GetItems, GetItemCount,
//                      Get/SetRowHeight, Get/SetRowBlank, Get/SetAllowMultiSelection,
//                      Get/SetCurSel, GetColumnText, GetColumnWidth, SubclassWindow
//   MirlComboBox     a drop-down list without an edit field: a skinned face with the current
//                    item's text and an arrow; its list is the process's popup
//                    constructors: MirlComboBox, ~MirlComboBox
//                    operations: AddItem, ClearItems, GetItemCount, Get/SetItemText, GetItemInfo,
//                      Get/SetCurSel, GetWindowTextW, Get/SetRowHeight, SubclassWindow
#pragma once

#include "MirlExport.h"
#include "MirlWindow.h"

#include <list>
#include <string>
#include <vector>

class MIRL_API MirlMenuWindow : public MirlWindowImpl<MirlMenuWindow>,
                                public WTL::CDoubleBufferImpl<MirlMenuWindow> {
    typedef MirlWindowImpl<MirlMenuWindow> Base;

public:
    DECLARE_WND_CLASS_EX(L"MirlMenuWindow", CS_VREDRAW | CS_HREDRAW | CS_DBLCLKS, COLOR_WINDOW)

    struct MENU_ITEM {
        Gdiplus::Bitmap *image; // owned; null for none
        std::wstring text;
        unsigned long id;
        RECT rect;
    };

    MirlMenuWindow();
    ~MirlMenuWindow() override;
    MirlMenuWindow(const MirlMenuWindow &) = delete;
    MirlMenuWindow &operator=(const MirlMenuWindow &) = delete;

    // The popup of the process, or null. Set does not mean visible: a hidden popup stays until
    // the next TrackPopupMenu or FinalDestroy.
    static MirlMenuWindow *Instance();
    // Ends the popup of the process, window and object. Called from inside one of the popup's
    // own messages (a holder's command handler), the object goes once that message is done.
    static void FinalDestroy();

    // Shows this object's rows, then the template's, in the process's popup at rect (screen
    // coordinates), for holder. The popup before ends without a word to its holder. Returns at
    // once; the choice comes later as WM_COMMAND to the holder. This object only carries rows:
    // their images are copied, and stay the caller's.
    void TrackPopupMenu(const wchar_t *name, const RECT &rect, MirlWindowBase *holder);
    // Adds a row, taking the image, unless the id is there: the new count, or the index of the
    // row with that id (the image is then freed: the row keeps its own).
    int AddItem(const wchar_t *text, unsigned long id, Gdiplus::Bitmap *image);
    void ClearItems();
    int GetItemCount() const { return static_cast<int>(m_Items.size()); }
    int GetNeededHeight() const;
    int GetNeededWidth() const { return m_Width; }
    int GetRowHeight() const { return m_RowHeight; }
    void SetRowHeight(int height) { m_RowHeight = height; }
    MirlWindowBase *GetHolder() const { return m_Holder; }

    // State, for tests and tools.
    const std::list<MENU_ITEM *> &GetItems() const { return m_Items; }
    const MENU_ITEM *GetHoverItem() const { return m_HoverItem; }
    bool IsMouseInside() const { return m_MouseInside; }
    bool IsShowing() const { return m_Showing; }
    HWND GetScrollBar() const { return m_ScrollBar; }

    void DoPaint(WTL::CDCHandle dc);

    BEGIN_MSG_MAP(MirlMenuWindow)
        MESSAGE_HANDLER(WM_CREATE, OnCreate)
        MESSAGE_HANDLER(WM_DESTROY, OnDestroy)
        MESSAGE_HANDLER(WM_VSCROLL, OnVScroll)
        MESSAGE_HANDLER(WM_SIZE, OnSize)
        MESSAGE_HANDLER(WM_LBUTTONDOWN, OnLButtonDown)
        MESSAGE_HANDLER(WM_LBUTTONUP, OnLButtonUp)
        MESSAGE_HANDLER(WM_MOUSEMOVE, OnMouseMove)
        MESSAGE_HANDLER(WM_KILLFOCUS, OnKillFocus)
        MESSAGE_HANDLER(WM_ACTIVATE, OnActivate)
        MESSAGE_HANDLER(WM_ENABLE, OnEnable)
        MESSAGE_HANDLER(WM_CANCELMODE, OnCancelMode)
        MESSAGE_HANDLER(WM_CAPTURECHANGED, OnCaptureChanged)
        CHAIN_MSG_MAP(WTL::CDoubleBufferImpl<MirlMenuWindow>)
        CHAIN_MSG_MAP(Base)
    END_MSG_MAP()

    LRESULT OnCreate(UINT, WPARAM, LPARAM, BOOL &);
    LRESULT OnDestroy(UINT, WPARAM, LPARAM, BOOL &);
    LRESULT OnVScroll(UINT, WPARAM, LPARAM, BOOL &);
    LRESULT OnSize(UINT, WPARAM, LPARAM, BOOL &);
    LRESULT OnLButtonDown(UINT, WPARAM, LPARAM, BOOL &);
    LRESULT OnLButtonUp(UINT, WPARAM, LPARAM, BOOL &);
    LRESULT OnMouseMove(UINT, WPARAM, LPARAM, BOOL &);
    LRESULT OnKillFocus(UINT, WPARAM, LPARAM, BOOL &);
    LRESULT OnActivate(UINT, WPARAM, LPARAM, BOOL &);
    LRESULT OnEnable(UINT, WPARAM, LPARAM, BOOL &);
    LRESULT OnCancelMode(UINT, WPARAM, LPARAM, BOOL &);
    LRESULT OnCaptureChanged(UINT, WPARAM, LPARAM, BOOL &);

protected:
    HWND Create(MirlWindowBase *holder, const RECT &rect, const wchar_t *name);
    void ReAdjustRect();
    void CancelHover();
    // Hover off, capture given back, hidden: how every dismissal ends.
    void Dismiss(bool releaseCapture);
    void EndShowing();
    void OnFinalMessage(HWND hWnd) override;

    MirlWindowBase *m_Holder;
    int m_RowHeight;
    int m_ItemsHeight;
    bool m_MouseInside;
    bool m_AutoHeight;
    std::list<MENU_ITEM *> m_Items;
    MENU_ITEM *m_HoverItem;
    HWND m_ScrollBar;
    bool m_Showing;
    // Set on the popup being ended: the object goes with its window's last message.
    bool m_DeleteWithWindow;

    static MirlMenuWindow *m_Instance;
};

// Sent by MirlListView to its parent with the row in wParam and 0 in lParam.
#define WM_MIRL_LIST_HOVER (WM_USER + 100)
#define WM_MIRL_LIST_CLICK (WM_USER + 101)
#define WM_MIRL_LIST_DBLCLK (WM_USER + 102)

class MIRL_API MirlListView : public MirlWindowImpl<MirlListView>,
                              public CTransparentImpl<MirlListView>,
                              public WTL::CDoubleBufferImpl<MirlListView> {
    typedef MirlWindowImpl<MirlListView> Base;

public:
    // A row: the application derives from it and paints each cell. The list view owns the rows
    // it is given and rewrites their rectangles.
    class MIRL_API INFORMATION_ITEM {
    public:
        INFORMATION_ITEM();
        virtual ~INFORMATION_ITEM();
        // One cell of the row, in client coordinates; called for each column of a visible row.
        virtual void PaintCell(Gdiplus::Graphics &graphics, int column, RECT *cell);
        // First thing in AddItem.
        virtual void OnAdded();
        // By ClearItems, just before the row is deleted.
        virtual void OnRemoved();
        // The text a screen reader reads for one cell; by default none. A row is named by its
        // cells' texts in column order.
        virtual std::wstring GetCellText(int column) const;

        bool selected;
        RECT rect;
    };

    struct COLUMN_ITEM {
        RECT rect;
        Gdiplus::Bitmap *image; // owned, never drawn
        std::wstring text;
    };

    MirlListView();
    ~MirlListView() override;
    MirlListView(const MirlListView &) = delete;
    MirlListView &operator=(const MirlListView &) = delete;

    HWND Create(MirlWindowBase *parent, HWND hWndParent, ATL::_U_RECT rect, const wchar_t *name,
                unsigned long style = 0, unsigned long exStyle = 0, ATL::_U_MENUorID menuOrID = 0U,
                void *createParam = NULL);
    BOOL SubclassWindow(HWND hWnd);
    // Takes over a list view that the factory made. Always 1.
    int SubclassWindow(MirlWindowBase *source, MirlWindowBase *parent);

    // Appends a column of that width (the image is kept, never drawn); the column count.
    int AddColumn(Gdiplus::Bitmap *image, const wchar_t *text, int width);
    // Appends a row and takes it; the row count. Appending lays out the new row alone when the
    // rows above keep their places.
    int AddItem(INFORMATION_ITEM *item);
    // Deletes every row, and the header's four images with them.
    void ClearItems();
    std::list<INFORMATION_ITEM *> *GetItems() { return &m_Items; }
    int GetItemCount() const { return static_cast<int>(m_Items.size()); }
    int GetRowHeight() const { return m_RowHeight; }
    void SetRowHeight(int height);
    int GetRowBlank() const { return m_RowBlank; }
    void SetRowBlank(int blank);
    bool GetAllowMultiSelection() const { return m_AllowMultiSelection; }
    void SetAllowMultiSelection(bool allow);
    // Index of the first selected row, or -1.
    int GetCurSel() const;
    // That row alone selected; an index out of range clears all. Nothing is repainted.
    void SetCurSel(int index);
    // Kept for the interface: null and 0.
    const wchar_t *GetColumnText(int column) const { return NULL; }
    int GetColumnWidth(int column) const { return 0; }

    // State, for tests and tools.
    int GetTitleHeight() const { return m_TitleHeight; }
    const RECT &GetRowsRect() const { return m_RowsRect; }
    int GetColumnCount() const { return static_cast<int>(m_Columns.size()); }
    const COLUMN_ITEM *GetColumn(int index) const;
    const COLUMN_ITEM *GetCurColumn() const { return GetColumn(m_CurColumn); }
    const COLUMN_ITEM *GetHoverColumn() const { return GetColumn(m_HoverColumn); }
    const COLUMN_ITEM *GetPressedColumn() const { return GetColumn(m_PressedColumn); }
    INFORMATION_ITEM *GetHoverItem() const { return m_HoverItem; }
    bool IsHovering() const { return m_Hovering; }
    HWND GetHScrollBar() const { return m_HScrollBar; }
    HWND GetVScrollBar() const { return m_VScrollBar; }
    Gdiplus::Bitmap *GetHeaderImage(int which) const;
    // Rows whose cells the last paint asked for.
    int GetPaintedRows() const { return m_PaintedRows; }
    void GetNeededWidthAndHeight(int &width, int &height);

    void DoPaint(WTL::CDCHandle dc);
    void PaintRows(Gdiplus::Graphics &graphics);
    void PaintTitle(Gdiplus::Graphics &graphics, const RECT &rect);
    // Three parts with caps of 4 pixels; nothing for a null bitmap.
    static void PainImageInRect(Gdiplus::Graphics &graphics, Gdiplus::Bitmap *bitmap, const RECT &rect);

    BEGIN_MSG_MAP(MirlListView)
        MESSAGE_HANDLER(WM_MIRL_SUBCLASSED, OnSubclassed)
        MESSAGE_HANDLER(WM_CREATE, OnCreate)
        MESSAGE_HANDLER(WM_DESTROY, OnDestroy)
        MESSAGE_HANDLER(WM_SIZE, OnSize)
        MESSAGE_HANDLER(WM_HSCROLL, OnHScroll)
        MESSAGE_HANDLER(WM_VSCROLL, OnVScroll)
        MESSAGE_HANDLER(WM_MOUSEMOVE, OnMouseMove)
        MESSAGE_HANDLER(WM_KILLFOCUS, OnClearingMessage)
        MESSAGE_HANDLER(WM_LBUTTONDOWN, OnLButtonDown)
        MESSAGE_HANDLER(WM_LBUTTONDBLCLK, OnLButtonDown)
        MESSAGE_HANDLER(WM_ACTIVATE, OnClearingMessage)
        MESSAGE_HANDLER(WM_ENABLE, OnClearingMessage)
        MESSAGE_HANDLER(WM_CANCELMODE, OnClearingMessage)
        MESSAGE_HANDLER(WM_CAPTURECHANGED, OnCaptureChanged)
        MESSAGE_HANDLER(WM_SETCURSOR, OnSetCursor)
        MESSAGE_HANDLER(WM_PAINT, OnPaintOrPlace)
        MESSAGE_HANDLER(WM_WINDOWPOSCHANGED, OnPaintOrPlace)
        MESSAGE_HANDLER(WM_SHOWWINDOW, OnPaintOrPlace)
        MESSAGE_HANDLER(WM_SETREDRAW, OnPaintOrPlace)
        CHAIN_MSG_MAP(WTL::CDoubleBufferImpl<MirlListView>)
        CHAIN_MSG_MAP(Base)
    END_MSG_MAP()

    LRESULT OnSubclassed(UINT, WPARAM, LPARAM, BOOL &);
    LRESULT OnCreate(UINT, WPARAM, LPARAM, BOOL &);
    LRESULT OnDestroy(UINT, WPARAM, LPARAM, BOOL &);
    LRESULT OnSize(UINT, WPARAM, LPARAM, BOOL &);
    LRESULT OnHScroll(UINT, WPARAM, LPARAM, BOOL &);
    LRESULT OnVScroll(UINT, WPARAM, LPARAM, BOOL &);
    LRESULT OnMouseMove(UINT, WPARAM, LPARAM, BOOL &);
    // Focus lost, deactivation, disabling and WM_CANCELMODE end the hover.
    LRESULT OnClearingMessage(UINT, WPARAM, LPARAM, BOOL &);
    // A press and a double click: one procedure, two notifications.
    LRESULT OnLButtonDown(UINT, WPARAM, LPARAM, BOOL &);
    LRESULT OnCaptureChanged(UINT, WPARAM, LPARAM, BOOL &);
    LRESULT OnSetCursor(UINT, WPARAM, LPARAM, BOOL &);
    // A paint, a move, a size or a change of visibility may leave less of the client invalid
    // than the last layout made it; passed on.
    LRESULT OnPaintOrPlace(UINT, WPARAM, LPARAM, BOOL &);

protected:
    void ArrangeTitles(int x);
    void ArrangeItems(int x, int y);
    void ArrangeLayout(int width, int height);
    // Moves a bar to place when shown, and shows or hides it.
    void PlaceBar(HWND bar, bool shown, const RECT &place);
    void CancelHover();
    void FreeHeaderImages();
    void InvalidateTitle();
    // The whole client, unless layout already made it all invalid and nothing painted, moved
    // or showed the window since: appending many rows asks the system once.
    void InvalidateWhole();
    // Sets a bar's range to 0..maximum, keeping its position; a bar already at that range is
    // left alone.
    void SetBarRange(HWND bar, int maximum);
    int ScrollPos(HWND bar) const;

    int m_TitleHeight;
    int m_RowHeight;
    int m_RowBlank;
    bool m_AllowMultiSelection;
    bool m_Hovering;
    HCURSOR m_Cursor;
    RECT m_RowsRect;
    std::vector<COLUMN_ITEM> m_Columns;
    // Columns by index, -1 for none: the vector may move its elements as it grows.
    int m_CurColumn;
    int m_HoverColumn;
    int m_PressedColumn;
    std::list<INFORMATION_ITEM *> m_Items;
    INFORMATION_ITEM *m_HoverItem;
    HWND m_HScrollBar;
    HWND m_VScrollBar;
    Gdiplus::Bitmap *m_ImgNormal;
    Gdiplus::Bitmap *m_ImgHover;
    Gdiplus::Bitmap *m_ImgPressed;
    Gdiplus::Bitmap *m_ImgEmpty;

    // How the rows were last laid out: rows laid, at which offsets, pitch and width. A row
    // appended under the same values is laid alone.
    size_t m_LaidCount;
    int m_LaidX;
    int m_LaidY;
    int m_LaidPitch;
    int m_LaidTotal;
    // The first row reaching below the rows area's top at the last layout, and its index.
    std::list<INFORMATION_ITEM *>::iterator m_FirstVisible;
    size_t m_FirstVisibleIndex;
    // Counts every ClearItems: a walk that sent a notification stops if the rows went.
    unsigned long m_RowsGeneration;
    int m_PaintedRows;
    // Layout made the whole client invalid and no paint, move, size or visibility change came
    // since.
    bool m_WholeInvalid;
};

class MIRL_API MirlComboBox : public MirlWindowImpl<MirlComboBox>,
                              public CTransparentImpl<MirlComboBox>,
                              public WTL::CDoubleBufferImpl<MirlComboBox> {
    typedef MirlWindowImpl<MirlComboBox> Base;

public:
    class MIRL_API COMBOBO_ITEM {
    public:
        COMBOBO_ITEM();
        ~COMBOBO_ITEM();
        COMBOBO_ITEM(const COMBOBO_ITEM &) = delete;
        COMBOBO_ITEM &operator=(const COMBOBO_ITEM &) = delete;

        Gdiplus::Bitmap *image; // owned, not painted
        std::wstring text;
        long data;
        unsigned long id;
    };

    // The most items a list can choose from: row ids run from 1 to 128.
    enum { kMaxChoosable = 128 };

    MirlComboBox();
    ~MirlComboBox() override;
    MirlComboBox(const MirlComboBox &) = delete;
    MirlComboBox &operator=(const MirlComboBox &) = delete;

    HWND Create(MirlWindowBase *parent, HWND hWndParent, ATL::_U_RECT rect, const wchar_t *name,
                unsigned long style = 0, unsigned long exStyle = 0, ATL::_U_MENUorID menuOrID = 0U,
                void *createParam = NULL);
    BOOL SubclassWindow(HWND hWnd);
    BOOL SubclassWindow(MirlWindowBase *source, MirlWindowBase *parent);

    // Appends an item, taking the image; the item count. No redraw.
    int AddItem(unsigned long id, const wchar_t *text, Gdiplus::Bitmap *image, long data);
    // No current item (-1), every item deleted, repainted.
    void ClearItems();
    int GetItemCount() const { return static_cast<int>(m_Items.size()); }
    // Null for an index that is negative or past the end.
    const wchar_t *GetItemText(int index) const;
    // 1, or 0 if there is no such item.
    int SetItemText(int index, const wchar_t *text);
    COMBOBO_ITEM *GetItemInfo(int index) const;
    int GetCurSel() const { return m_CurSel; }
    // A negative index is ignored; past the end, the face goes on showing the item it showed.
    void SetCurSel(int index);
    // The current item's text, or null.
    const wchar_t *GetWindowTextW() const;
    int GetRowHeight() const { return m_RowHeight; }
    void SetRowHeight(int height);

    // State, for tests and tools.
    int GetFaceHeight() const { return m_Height; }
    bool IsHovering() const { return m_Hovering; }
    bool IsOpen() const { return m_Open; }
    const COMBOBO_ITEM *GetCurItem() const { return m_CurSel == -1 ? NULL : m_CurItem; }
    Gdiplus::Bitmap *GetCurrentFace() const { return m_ImgCurrent; }
    // 0 disabled, 1 normal, 2 hover, 3 pressed, 4 the arrow.
    Gdiplus::Bitmap *GetImage(int which) const;
    HWND GetScrollBar() const { return m_ScrollBar; }

    void DoPaint(WTL::CDCHandle dc);
    // Caps of half the bitmap's width; nothing for a null bitmap.
    static void PainImageInRect(Gdiplus::Graphics &graphics, Gdiplus::Bitmap *bitmap, const RECT &rect);
    // Kept for the interface: they do nothing.
    void ArrangeItems() {}
    void PaintRows() {}
    void PaintTitle() {}
    LRESULT OnLButtonUp(UINT, WPARAM, LPARAM, BOOL &) { return 0; }

    BEGIN_MSG_MAP(MirlComboBox)
        MESSAGE_HANDLER(WM_MIRL_SUBCLASSED, OnSubclassed)
        MESSAGE_HANDLER(WM_CREATE, OnCreate)
        MESSAGE_HANDLER(WM_DESTROY, OnDestroy)
        MESSAGE_HANDLER(WM_SIZE, OnSize)
        MESSAGE_HANDLER(WM_VSCROLL, OnVScroll)
        MESSAGE_HANDLER(WM_ENABLE, OnEnableClosesList)
        MESSAGE_HANDLER(WM_ENABLE, OnEnable)
        if (uMsg == WM_COMMAND && LOWORD(wParam) >= 1 && LOWORD(wParam) <= kMaxChoosable) {
            bHandled = TRUE;
            lResult = OnMenuCmd(HIWORD(wParam), LOWORD(wParam), reinterpret_cast<HWND>(lParam), bHandled);
            if (bHandled)
                return TRUE;
        }
        MESSAGE_HANDLER(WM_MOUSEMOVE, OnMouseMove)
        MESSAGE_HANDLER(WM_KILLFOCUS, OnClearingMessage)
        MESSAGE_HANDLER(WM_LBUTTONDOWN, OnLButtonDown)
        MESSAGE_HANDLER(WM_ACTIVATE, OnClearingMessage)
        MESSAGE_HANDLER(WM_CANCELMODE, OnClearingMessage)
        MESSAGE_HANDLER(WM_CAPTURECHANGED, OnCaptureChanged)
        CHAIN_MSG_MAP(WTL::CDoubleBufferImpl<MirlComboBox>)
        CHAIN_MSG_MAP(Base)
    END_MSG_MAP()

    LRESULT OnSubclassed(UINT, WPARAM, LPARAM, BOOL &);
    LRESULT OnCreate(UINT, WPARAM, LPARAM, BOOL &);
    LRESULT OnDestroy(UINT, WPARAM, LPARAM, BOOL &);
    LRESULT OnSize(UINT, WPARAM, LPARAM, BOOL &);
    LRESULT OnVScroll(UINT, WPARAM, LPARAM, BOOL &);
    // Disabled with its list open: the popup ends. Leaves the message to the next handler.
    LRESULT OnEnableClosesList(UINT, WPARAM, LPARAM, BOOL &);
    LRESULT OnEnable(UINT, WPARAM, LPARAM, BOOL &);
    LRESULT OnMenuCmd(UINT notify, UINT id, HWND control, BOOL &handled);
    LRESULT OnMouseMove(UINT, WPARAM, LPARAM, BOOL &);
    // Focus lost, deactivation and WM_CANCELMODE end the hover.
    LRESULT OnClearingMessage(UINT, WPARAM, LPARAM, BOOL &);
    LRESULT OnLButtonDown(UINT, WPARAM, LPARAM, BOOL &);
    LRESULT OnCaptureChanged(UINT, WPARAM, LPARAM, BOOL &);

protected:
    int GetNeededHeight() const;
    void CancelHover();
    void LoadImages();
    void FreeImages();
    Gdiplus::Bitmap *LoadFace(const wchar_t *attribute, const wchar_t *fallback);

    int m_Height;
    int m_RowHeight;
    int m_DropRoom;
    int m_CurSel;
    bool m_Hovering;
    bool m_Open;
    std::list<COMBOBO_ITEM *> m_Items;
    COMBOBO_ITEM *m_CurItem;
    HWND m_ScrollBar;
    RECT m_HitRect;
    Gdiplus::Bitmap *m_ImgArrow;
    Gdiplus::Bitmap *m_ImgNormal;
    Gdiplus::Bitmap *m_ImgHover;
    Gdiplus::Bitmap *m_ImgPressed;
    Gdiplus::Bitmap *m_ImgDisabled;
    Gdiplus::Bitmap *m_ImgCurrent;
};
