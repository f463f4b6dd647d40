// The window framework: every control is a MirlWindowImpl over MirlWindowBase.
//
//   MirlWindowBase                      window handle, template, common attributes, children,
//     MirlTransparentDC                 and the memory picture that transparent children copy
//   MirlWindowImpl<T, TBase, Traits>    creation from a named template, brushes and font,
//                                       tooltip, child creation, layout, default painting
//   CTransparentImpl<T>                 a private snapshot of the parent's screen pixels
//   MirlWindow                          the plain window of "WINDOW" and "CUSTOMCONTROL"
#pragma once

#include "MirlExport.h"
#include "MirlSkin.h"
#include "MirlStyles.h"
#include "MirlAccessible.h"

#include "atl/MirlAtl.h"

#include <algorithm>
#include <cwchar>
using std::max;
using std::min;
#include <gdiplus.h>

#include <string>
#include <vector>

// The library's own window messages.
#define WM_MIRL_SUBCLASSED (WM_USER + 1)      // wParam: the source window of SubclassWindow
#define WM_MIRL_DELETE_MEMORY_DC (WM_USER + 2) // drop the memory picture

class MIRL_API MirlWindowBase : public ATL::CWindow {
public:
    // A window's memory picture: a memory device context with a bitmap of the window's size.
    class MIRL_API MirlTransparentDC {
    public:
        MirlTransparentDC(HWND hWnd, int width, int height);
        ~MirlTransparentDC();
        MirlTransparentDC(const MirlTransparentDC &) = delete;
        MirlTransparentDC &operator=(const MirlTransparentDC &) = delete;

        HDC m_hDC;
        HBITMAP m_hBitmap;
        HBITMAP m_hOldBitmap;
    };

    // A child's place in its parent's client area, as the layout gives it.
    struct Place {
        int x;
        int y;
        int w;
        int h;
    };

    explicit MirlWindowBase(HWND hWnd = NULL);
    virtual ~MirlWindowBase();

    // Takes the place of a window that already exists; the copy never owns the children.
    virtual void FromHandle(MirlWindowBase *source);
    virtual int GetMinHeight();
    virtual int GetMinWidth();
    virtual int GetMaxHeight();
    virtual int GetMaxWidth();

    // Reads the common attributes from the template. 0 if the template has no attributes.
    int Reload();
    // Binds the template of that name (in the parent's template first, then at the top level),
    // inherits font, colours and transparency from the parent, and reads the attributes.
    int LoadAttributesFromUi(MirlWindowBase *parent, const wchar_t *name);
    int LoadAttributesFromUi(MirlWindowBase *parent, unsigned long commandID);
    void LoadAttributesFromParent();
    // Points every child at parent, and each deeper window at its own parent-side window.
    void ResetParent(MirlWindowBase *parent);
    const MirlWindowBase *GetPackageParent() const;

    // First direct child with that identifier, or whose template has that name (any case).
    MirlWindowBase *GetWindowItem(unsigned long commandID);
    MirlWindowBase *GetWindowItem(const wchar_t *name);

    // The memory picture, made and painted on first demand; repaint paints an existing one again.
    MirlTransparentDC *GetMemoryDC(bool repaint);
    // Replaces the picture by one of the given size; ignored unless both are above 0.
    void CreateMemoryDC(int width, int height);
    // Drops the pictures of this window and its whole subtree.
    void DeleteAllMemory();
    // Drops this window's picture only.
    void DeleteMemoryDC();

    // One window of the class that the template's "Class" names, created as a child of parent.
    static MirlWindowBase *CreateMirlWindow(MirlWindowBase *parent, MirlUiWindow *ui);

    static unsigned long String2Style(const wchar_t *text);
    static unsigned long String2ExStyle(const wchar_t *text);
    static unsigned long String2PositionStyle(const wchar_t *text);

    // What the skin said, for the application and the controls.
    MirlUiWindow *GetUiWindow() const { return m_UiWindow; }
    unsigned long GetCommandID() const { return m_CommandID; }
    const wchar_t *GetClass() const { return m_Class.c_str(); }
    const wchar_t *GetText() const { return m_Text.c_str(); }
    const wchar_t *GetToolTip() const { return m_ToolTip.c_str(); }
    MirlUiElementImage *GetPic() const { return m_Pic; }
    int GetX() const { return m_X; }
    int GetY() const { return m_Y; }
    int GetWidth() const { return m_Width; }
    int GetHeight() const { return m_Height; }
    unsigned long GetBkColor() const { return m_ClBkGround; }
    unsigned long GetTextColor() const { return m_ClText; }
    const LOGFONTW &GetLogFont() const { return m_LogFont; }
    unsigned long GetStyle() const { return m_Style; }
    unsigned long GetExStyle() const { return m_ExStyle; }
    int GetMenu() const { return m_Menu; }
    bool IsTransparent() const { return m_Transparent; }
    unsigned long GetAlign() const { return m_Align; }
    bool HasMemoryDC() const { return m_MemoryDC != NULL; }
    // The parent set by ResetParent or SubclassWindow: the background source before the package parent.
    MirlWindowBase *GetReplacementParent() const { return m_Parent; }
    unsigned int GetChildCount() const { return static_cast<unsigned int>(m_Children.size()); }
    MirlWindowBase *GetChildByIndex(unsigned int index) const
    {
        return index < m_Children.size() ? m_Children[index] : NULL;
    }

    // While CreateChildWindows makes its children where the layout will put them: where the
    // child now being made goes. False at any other time, and for a scroll bar or a splitter,
    // whose place depends on its window. Answers once per child.
    bool PlaceOfChildBeingCreated(const MirlWindowBase *child, Place &place);
    // The place the layout or the creation last gave this window, remembered so that a layout
    // that gives it again need not move it.
    void RememberPlace(const Place &place);
    // Whether the window stands at that place now: remembered there and still there.
    bool StandsAt(const Place &place) const;

protected:
    void InheritFrom(const MirlWindowBase *parent);
    // One window per child of the template, in template order, each added to the children.
    // atLayout: each is made where this window's layout will put it in the present client area,
    // for a class whose WM_SIZE lays its children out, so that the first layout moves none.
    void CreateChildWindows(bool atLayout = false);
    // The common start of both LoadAttributesFromUi forms: takes the parent, inherits from it,
    // and answers the parent's template (null without one).
    MirlUiWindow *AdoptParent(MirlWindowBase *parent);
    // Binds the template found, or none, and reads it.
    int BindTemplate(MirlUiWindow *found);
    void ApplyAttribute(const MirlUiWindow::Attribute *attribute);
    void SetFaceName(const wchar_t *family);
    // Sends the window WM_PAINT with the picture's context, so that it paints itself there.
    void PaintIntoMemoryDC();

    MirlTransparentDC *m_MemoryDC;
    int m_IsCopy;
    MirlWindowBase *m_PackageParent;
    MirlWindowBase *m_Parent;
    MirlUiWindow *m_UiWindow;
    unsigned long m_CommandID;
    std::wstring m_Class;
    std::wstring m_Text;
    std::wstring m_ToolTip;
    MirlUiElementImage *m_Pic;
    int m_X;
    int m_Y;
    int m_Width;
    int m_Height;
    int m_MinWidth;
    int m_MaxWidth;
    int m_MinHeight;
    int m_MaxHeight;
    unsigned long m_ClBkGround;
    unsigned long m_ClText;
    LOGFONTW m_LogFont;
    unsigned long m_Style;
    unsigned long m_ExStyle;
    int m_Menu;
    bool m_Transparent;
    unsigned long m_Align;
    std::vector<MirlWindowBase *> m_Children;
    // While CreateChildWindows makes one child: the child's name as its template holds it, the
    // template whose children were indexed, and the first of them of that name, which the name
    // lookup would find.
    const wchar_t *m_CreatingName;
    MirlUiWindow *m_CreatingFrom;
    MirlUiWindow *m_CreatingTemplate;
    // While CreateChildWindows makes children at their layout: whether the next Create is the
    // loop's, the client size, and the place of the child before.
    bool m_PlacingNext;
    int m_PlacingWidth;
    int m_PlacingHeight;
    Place m_PlacingPrevious;
    // The place last given by the layout or the creation, if any.
    bool m_HasPlace;
    Place m_Place;

private:
    MirlWindowBase(const MirlWindowBase &) = delete;
    MirlWindowBase &operator=(const MirlWindowBase &) = delete;
};

namespace MIRL {
// Gives a memory context its former bitmap back, deletes the bitmap and the context, and clears
// all three.
inline void ReleaseOffscreen(HDC &dc, HBITMAP &bitmap, HBITMAP &oldBitmap)
{
    if (dc != NULL && oldBitmap != NULL) {
        ::SelectObject(dc, oldBitmap);
    }
    if (bitmap != NULL) {
        ::DeleteObject(bitmap);
    }
    if (dc != NULL) {
        ::DeleteDC(dc);
    }
    dc = NULL;
    bitmap = NULL;
    oldBitmap = NULL;
}

// The layout of one window's children for a client area of that size: each child placed from
// its offsets, size and position words, relative to the parent or to the sibling before it.
MIRL_API void LayoutChildWindows(MirlWindowBase *parent, const std::vector<MirlWindowBase *> &children,
                                 int width, int height);
// True while hWnd is receiving WM_MIRL_DELETE_MEMORY_DC from DeleteAllMemory: a control on a
// system class whose own message has that number passes every other one on to the system.
MIRL_API bool IsDroppingMemory(HWND hWnd);
// Copies the part of the source's memory picture that lies beneath the window into dc.
MIRL_API void PaintParentBackground(HWND hWnd, MirlWindowBase *source, HDC dc);

// The GDI+ font of a description, one for all the windows that use it: made from the window's
// device context by the first, freed when the last releases it. Null if no font can be made
// (then nothing is counted and nothing needs releasing).
MIRL_API Gdiplus::Font *AcquireFont(HWND hWnd, const LOGFONTW &logFont);
MIRL_API void ReleaseFont(Gdiplus::Font *font);
// The width of a one-line text measured from the origin in a font that AcquireFont gave, as
// remembered with the font; false if it has not been remembered.
MIRL_API bool RecallTextWidth(Gdiplus::Font *font, const wchar_t *text, float &width);
MIRL_API void RememberTextWidth(Gdiplus::Font *font, const wchar_t *text, float width);
} // namespace MIRL

template <class T, class TBase = MirlWindowBase, class TWinTraits = ATL::CWinTraits<0x56000000, 0>>
class MirlWindowImpl : public ATL::CWindowImplBaseT<TBase, TWinTraits> {
    typedef ATL::CWindowImplBaseT<TBase, TWinTraits> Base;

public:
    DECLARE_WND_CLASS_EX(L"MirlWindow", CS_HREDRAW | CS_VREDRAW | CS_DBLCLKS, COLOR_WINDOW)

    static LPCWSTR GetWndCaption() { return NULL; }

    MirlWindowImpl() : m_BkBrush(NULL), m_TxBrush(NULL), m_TxFont(NULL), m_LayoutReady(false), m_ToolTipCtrl(NULL) {}

    ~MirlWindowImpl() { ReleaseResource(); }

    // Creates the window from the template of that name; style, identifier and rectangle come
    // from the template unless given here.
    HWND Create(MirlWindowBase *parent, HWND hWndParent, ATL::_U_RECT rect, const wchar_t *name,
                unsigned long style = 0, unsigned long exStyle = 0, ATL::_U_MENUorID menuOrID = 0U,
                void *createParam = NULL)
    {
        if (T::GetWndClassInfo().m_lpszOrigName == NULL) {
            T::GetWndClassInfo().m_lpszOrigName = TBase::GetWndClassName();
        }
        ATOM atom = T::GetWndClassInfo().Register(&this->m_pfnSuperWindowProc);

        this->LoadAttributesFromUi(parent, name);

        DWORD windowStyle = style != 0 ? style : this->m_Style;
        if (windowStyle == 0) {
            windowStyle = TWinTraits::GetWndStyle(0);
        }
        windowStyle = static_cast<T *>(this)->CreationStyle(windowStyle);
        DWORD windowExStyle = exStyle != 0 ? exStyle : this->m_ExStyle;
        UINT_PTR id = reinterpret_cast<UINT_PTR>(menuOrID.m_hMenu);
        if (id != 0) {
            this->m_CommandID = static_cast<unsigned long>(id);
        }
        // A top-level window takes a menu handle in that place, not an identifier.
        HMENU menu = (windowStyle & WS_CHILD) ? reinterpret_cast<HMENU>(static_cast<UINT_PTR>(this->m_CommandID)) : NULL;
        RECT place;
        MirlWindowBase::Place laidOut = {0, 0, 0, 0};
        const bool atLayout = rect.m_lpRect == NULL && parent != NULL && parent->PlaceOfChildBeingCreated(this, laidOut);
        if (rect.m_lpRect != NULL) {
            place = *rect.m_lpRect;
        } else if (atLayout) {
            place.left = laidOut.x;
            place.top = laidOut.y;
            place.right = static_cast<LONG>(static_cast<long long>(laidOut.x) + laidOut.w);
            place.bottom = static_cast<LONG>(static_cast<long long>(laidOut.y) + laidOut.h);
        } else {
            place.left = this->m_X;
            place.top = this->m_Y;
            place.right = static_cast<LONG>(static_cast<long long>(this->m_X) + this->m_Width);
            place.bottom = static_cast<LONG>(static_cast<long long>(this->m_Y) + this->m_Height);
        }
        const wchar_t *title = this->m_Text.empty() ? NULL : this->m_Text.c_str();
        HWND created = Base::Create(hWndParent, &place, title, windowStyle, windowExStyle, menu, atom, createParam);
        if (created != NULL && atLayout) {
            this->RememberPlace(laidOut);
        }
        return created;
    }

    // Takes over an existing window.
    BOOL SubclassWindow(HWND hWnd) { return Base::SubclassWindow(hWnd) ? 1 : 0; }

    // Takes over a window that the factory made, with its state, and a new background parent.
    BOOL SubclassWindow(MirlWindowBase *source, MirlWindowBase *parent)
    {
        if (source == NULL || !Base::SubclassWindow(source->m_hWnd)) {
            return 0;
        }
        this->FromHandle(source);
        this->m_Parent = parent;
        source->DeleteMemoryDC();
        this->m_MemoryDC = NULL;
        this->LoadingSkinResource();
        ::SendMessageW(this->m_hWnd, WM_MIRL_SUBCLASSED, reinterpret_cast<WPARAM>(source->m_hWnd), 0);
        return 1;
    }

    void LoadingSkinResource()
    {
        ReleaseResource();
        m_BkBrush = new Gdiplus::SolidBrush(Gdiplus::Color(static_cast<Gdiplus::ARGB>(this->m_ClBkGround)));
        m_TxBrush = new Gdiplus::SolidBrush(Gdiplus::Color(static_cast<Gdiplus::ARGB>(this->m_ClText)));
        // No font means no text, not a broken object.
        m_TxFont = MIRL::AcquireFont(this->m_hWnd, this->m_LogFont);
    }

    void ReleaseResource()
    {
        delete m_BkBrush;
        m_BkBrush = NULL;
        delete m_TxBrush;
        m_TxBrush = NULL;
        MIRL::ReleaseFont(m_TxFont);
        m_TxFont = NULL;
    }

    Gdiplus::Brush *GetBkBrush() { return m_BkBrush; }
    Gdiplus::Brush *GetTxBrush() { return m_TxBrush; }
    Gdiplus::Font *GetTxFont() { return m_TxFont; }
    bool IsLayoutReady() const { return m_LayoutReady; }
    HWND GetToolTipCtrl() const { return m_ToolTipCtrl; }

    void SetWindowTextW(const wchar_t *text)
    {
        ::SetWindowTextW(this->m_hWnd, text);
        this->m_Text = text != NULL ? text : L"";
        m_LayoutReady = false;
    }

    // Width and height of the text's box measured from the origin; false for an empty text.
    bool MeasureText(const Gdiplus::Graphics &g, const wchar_t *text, Gdiplus::Font *font, int &width, int &height)
    {
        if (text == NULL || *text == L'\0') {
            return false;
        }
        Gdiplus::RectF box;
        g.MeasureString(text, -1, font, Gdiplus::PointF(0.0f, 0.0f), &box);
        width = static_cast<int>(box.Width);
        height = static_cast<int>(box.Height);
        return true;
    }

    void InitToolTip()
    {
        if (m_ToolTipCtrl != NULL) {
            return;
        }
        m_ToolTipCtrl = ::CreateWindowExW(0, TOOLTIPS_CLASSW, NULL, 0, CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT,
                                          CW_USEDEFAULT, this->m_hWnd, NULL, ATL::AtlModuleInstance(), NULL);
        if (m_ToolTipCtrl != NULL) {
            ::SendMessageW(m_ToolTipCtrl, TTM_ACTIVATE, FALSE, 0);
            ::SendMessageW(m_ToolTipCtrl, TTM_SETMAXTIPWIDTH, 0, 400);
        }
    }

    void SetTooltipText(const wchar_t *text, bool activate)
    {
        if (text == NULL) {
            if (m_ToolTipCtrl != NULL) {
                ::SendMessageW(m_ToolTipCtrl, TTM_ACTIVATE, FALSE, 0);
            }
            return;
        }
        InitToolTip();
        if (m_ToolTipCtrl == NULL) {
            return;
        }
        TTTOOLINFOW tool = {};
        tool.cbSize = sizeof(tool);
        tool.hwnd = this->m_hWnd;
        tool.uId = 1;
        if (::SendMessageW(m_ToolTipCtrl, TTM_GETTOOLCOUNT, 0, 0) == 0) {
            ::GetClientRect(this->m_hWnd, &tool.rect);
            tool.lpszText = const_cast<wchar_t *>(text);
            ::SendMessageW(m_ToolTipCtrl, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
        }
        tool.lpszText = const_cast<wchar_t *>(text);
        ::SendMessageW(m_ToolTipCtrl, TTM_UPDATETIPTEXTW, 0, reinterpret_cast<LPARAM>(&tool));
        ::SendMessageW(m_ToolTipCtrl, TTM_ACTIVATE, activate ? TRUE : FALSE, 0);
    }

    void ActivateTooltip(bool activate)
    {
        if (m_ToolTipCtrl != NULL && ::SendMessageW(m_ToolTipCtrl, TTM_GETTOOLCOUNT, 0, 0) > 0) {
            ::SendMessageW(m_ToolTipCtrl, TTM_ACTIVATE, activate ? TRUE : FALSE, 0);
        }
    }

    // The background: the parent's picture beneath a transparent window, else the fill colour.
    void DoPaint(HDC dc)
    {
        RECT client = {};
        ::GetClientRect(this->m_hWnd, &client);
        if (this->m_Transparent) {
            PaintParentBkGround(dc);
        } else if (m_BkBrush != NULL) {
            Gdiplus::Graphics g(dc);
            g.FillRectangle(m_BkBrush, 0, 0, client.right, client.bottom);
        }
    }

    void PaintParentBkGround(HDC dc)
    {
        MirlWindowBase *source = this->m_Parent != NULL ? this->m_Parent : this->m_PackageParent;
        MIRL::PaintParentBackground(this->m_hWnd, source, dc);
    }

    LRESULT OnCreate(UINT, WPARAM, LPARAM, BOOL &)
    {
        LoadingSkinResource();
        // A class that keeps no text beside the system's holds its title from creation already;
        // setting it again would cost each window one more trip to the window server.
        if (!T::TextIsTheSystems || !HoldsText(this->m_Text)) {
            SetWindowTextW(this->m_Text.c_str());
        }
        if (!this->m_ToolTip.empty()) {
            SetTooltipText(this->m_ToolTip.c_str(), true);
        }
        this->CreateChildWindows(T::LaysOutChildrenOnSize != 0);
        return 0;
    }

    LRESULT OnSize(UINT, WPARAM, LPARAM lParam, BOOL &)
    {
        m_LayoutReady = false;
        this->DeleteAllMemory();
        int width = static_cast<short>(LOWORD(lParam));
        int height = static_cast<short>(HIWORD(lParam));
        MIRL::LayoutChildWindows(this, this->m_Children, width, height);
        return 0;
    }

    LRESULT OnPaint(UINT, WPARAM wParam, LPARAM, BOOL &bHandled)
    {
        T *self = static_cast<T *>(this);
        if (wParam != 0) {
            self->DoPaint(reinterpret_cast<HDC>(wParam));
        } else {
            PAINTSTRUCT ps;
            HDC dc = ::BeginPaint(this->m_hWnd, &ps);
            if (dc != NULL) {
                self->DoPaint(dc);
            }
            ::EndPaint(this->m_hWnd, &ps);
        }
        bHandled = TRUE;
        return 0;
    }

    LRESULT OnDeleteMemoryDC(UINT, WPARAM, LPARAM, BOOL &bHandled)
    {
        delete this->m_MemoryDC;
        this->m_MemoryDC = NULL;
        bHandled = TRUE;
        return 0;
    }

    LRESULT OnEraseBkGnd(UINT, WPARAM, LPARAM, BOOL &bHandled)
    {
        bHandled = TRUE;
        return 1;
    }

    // Not in the map: controls call it from their own WM_DESTROY.
    LRESULT OnDestroy(UINT, WPARAM, LPARAM, BOOL &bHandled)
    {
        if (m_ToolTipCtrl != NULL && ::DestroyWindow(m_ToolTipCtrl)) {
            m_ToolTipCtrl = NULL;
        }
        bHandled = FALSE;
        return 1;
    }

    // What the window is, for screen readers and test tools: answered ahead of every message
    // map, since not every control's map passes unknown messages on to this one.
    static LRESULT CALLBACK WindowProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam)
    {
        // Through the thunk, hWnd is the object.
        Base *object = reinterpret_cast<Base *>(hWnd);
        if (uMsg == WM_GETOBJECT || uMsg == MIRL::AccessibleMessage()) {
            BOOL handled = FALSE;
            const LRESULT result = MIRL::AnswerAccessibility(object, uMsg, wParam, lParam, handled);
            if (handled) {
                return result;
            }
        }
        if (uMsg != WM_SETTEXT && uMsg != WM_ENABLE) {
            return Base::WindowProc(hWnd, uMsg, wParam, lParam);
        }
        // A new caption is a new name, a window enabled or disabled a new state: the tools hear
        // of it once the control has taken it.
        const HWND window = object->m_hWnd;
        const DWORD event = MIRL::AccessibleEventFor(object, uMsg);
        const LRESULT result = Base::WindowProc(hWnd, uMsg, wParam, lParam);
        if (::IsWindow(window)) {
            MIRL::NotifyAccessibleEvent(window, event);
        }
        return result;
    }
    WNDPROC GetWindowProc() override { return WindowProc; }

    // The style the window is created with, given the one asked for: a class that would change
    // its style in WM_CREATE can have it from the start.
    DWORD CreationStyle(DWORD style) { return style; }

    // Whether the class reads its text only from the system (no WM_SETTEXT of its own).
    enum { TextIsTheSystems = 0 };
    // Whether the class's WM_SIZE lays its children out by their templates (this class's OnSize
    // does): then they are made at those places. A class that handles WM_SIZE otherwise says 0,
    // and its children are made at their templates' rectangles as written.
    enum { LaysOutChildrenOnSize = 1 };

    BEGIN_MSG_MAP(MirlWindowImpl)
        MESSAGE_HANDLER(WM_PAINT, OnPaint)
        MESSAGE_HANDLER(WM_PRINTCLIENT, OnPaint)
        MESSAGE_HANDLER(WM_MIRL_DELETE_MEMORY_DC, OnDeleteMemoryDC)
        MESSAGE_HANDLER(WM_CREATE, OnCreate)
        MESSAGE_HANDLER(WM_SIZE, OnSize)
        MESSAGE_HANDLER(WM_ERASEBKGND, OnEraseBkGnd)
        REFLECT_NOTIFICATIONS()
    END_MSG_MAP()

protected:
    // Whether the window's text is text, exactly; a text too long for the comparison is not.
    bool HoldsText(const std::wstring &text)
    {
        wchar_t held[66];
        if (text.size() > 64) {
            return false;
        }
        const int length = ::GetWindowTextW(this->m_hWnd, held, 66);
        return length == static_cast<int>(text.size()) && std::wmemcmp(held, text.c_str(), text.size()) == 0;
    }

    Gdiplus::Brush *m_BkBrush;
    Gdiplus::Brush *m_TxBrush;
    Gdiplus::Font *m_TxFont;
    bool m_LayoutReady;
    HWND m_ToolTipCtrl;
};

// The plain window: "WINDOW" and "CUSTOMCONTROL" templates, and an application's frame.
class MirlWindow : public MirlWindowImpl<MirlWindow> {
public:
    enum { TextIsTheSystems = 1 };
};

// A private snapshot of the parent's screen pixels beneath the window, taken once.
template <class T>
class CTransparentImpl {
public:
    CTransparentImpl() : m_hDC(NULL), m_hBitmap(NULL), m_hOldBitmap(NULL) {}
    ~CTransparentImpl() { Release(); }

    void CreateOffscreen()
    {
        if (m_hDC != NULL) {
            return;
        }
        HWND self = static_cast<T *>(this)->m_hWnd;
        HWND parent = ::GetParent(self);
        HDC parentDC = ::GetDC(parent);
        if (parentDC == NULL) {
            return;
        }
        RECT rect = {};
        ::GetWindowRect(self, &rect);
        POINT topLeft = {rect.left, rect.top};
        POINT bottomRight = {rect.right, rect.bottom};
        if (::ScreenToClient(parent, &topLeft)) {
            ::ScreenToClient(parent, &bottomRight);
        }
        int width = bottomRight.x - topLeft.x;
        int height = bottomRight.y - topLeft.y;
        m_hBitmap = ::CreateCompatibleBitmap(parentDC, width, height);
        m_hDC = ::CreateCompatibleDC(parentDC);
        if (m_hDC != NULL && m_hBitmap != NULL) {
            m_hOldBitmap = static_cast<HBITMAP>(::SelectObject(m_hDC, m_hBitmap));
            ::BitBlt(m_hDC, 0, 0, width, height, parentDC, topLeft.x, topLeft.y, SRCCOPY);
        }
        ::ReleaseDC(parent, parentDC);
    }

protected:
    void PaintParentBackGround(HDC dc, const RECT &rect)
    {
        if (m_hDC != NULL) {
            ::BitBlt(dc, rect.left, rect.top, rect.right - rect.left, rect.bottom - rect.top, m_hDC, 0, 0, SRCCOPY);
        }
    }

    void Release() { MIRL::ReleaseOffscreen(m_hDC, m_hBitmap, m_hOldBitmap); }

    HDC m_hDC;
    HBITMAP m_hBitmap;
    HBITMAP m_hOldBitmap;
};
