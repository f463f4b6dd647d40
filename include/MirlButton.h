// The skin button: a system BUTTON forced to owner draw, with hover, auto repeat, a check state
// of its own, a URL, a link in its caption, a drop-down arrow zone and painting from skin images.
//
//   MirlButtonImage   one image slot: the bitmap with its size and colour-key range
//   MirlButton        constructors: MirlButton, ~MirlButton
//                     attributes: Get/SetFlat, SetFlatFocus, GetDefault, Get/SetAlign, DrawBorder,
//                       IsOnMenu, SetHighLight, Get/SetCheck, SetURL, SetAutoRepeat, SetBtnCursor
//                     operations: SubclassWindowBtn, FreeResources, CancelHover
//                     painting: LoadCommonBitmaps, LoadBitmapFromSkin, PrepareRect, the four
//                       orders, DrawItem, DrawTheBitmap, DrawTheBitmapTx, PainImageInRect,
//                       OnDrawBackground, OnDrawBorder, CreateBitmapMask
//   MIRL::SetUrlOpener  replaces the function that opens a clicked button's URL
#pragma once

#include "MirlExport.h"
#include "MirlText.h"
#include "MirlWindow.h"

#include <uxtheme.h>

// Window style bits that the button reads from its "Style" attribute. BS_MENU shares its value
// with BS_FLAT, BS_SYSTEM with BS_LEFTTEXT.
#ifndef BS_MENU
#define BS_MENU 0x8000
#endif
#ifndef BS_SYSTEM
#define BS_SYSTEM 0x20
#endif

namespace MIRL {
class MirlPremultiplied;
}

// One image slot of a button. The slot owns its bitmap.
struct MIRL_API MirlButtonImage {
    MirlButtonImage();
    ~MirlButtonImage();
    MirlButtonImage(const MirlButtonImage &) = delete;
    MirlButtonImage &operator=(const MirlButtonImage &) = delete;

    // Takes bitmap as the slot's own, with its size; the former bitmap is freed.
    void Adopt(Gdiplus::Bitmap *bitmap);
    void Free();

    Gdiplus::Bitmap *Bitmap;
    unsigned int Width;
    unsigned int Height;
    bool HasColorKey;
    Gdiplus::ARGB ColorKeyHigh;
    Gdiplus::ARGB ColorKeyLow;
    // The bitmap's pixels premultiplied for drawing it one to one, made at its first such draw
    // and owned by the slot; dropped whenever the bitmap is.
    MIRL::MirlPremultiplied *Premultiplied;
};

namespace MIRL {
typedef HINSTANCE(WINAPI *UrlOpener)(HWND, LPCWSTR, LPCWSTR, LPCWSTR, LPCWSTR, INT);
// Replaces the function that a clicked button opens its URL with (ShellExecuteW at start) and
// answers the former one. Null puts ShellExecuteW back.
MIRL_API UrlOpener SetUrlOpener(UrlOpener opener);
} // namespace MIRL

class MIRL_API MirlButton
    : public MirlWindowImpl<MirlButton, WTL::CButtonT<MirlWindowBase>, ATL::CWinTraits<0x56000000, 0>>,
      public CTransparentImpl<MirlButton> {
    typedef MirlWindowImpl<MirlButton, WTL::CButtonT<MirlWindowBase>, ATL::CWinTraits<0x56000000, 0>> Base;

public:
    DECLARE_WND_SUPERCLASS(L"MirlWindowImpl", L"BUTTON")

    // Its WM_SIZE does not lay children out: a child of its template is made where it says.
    enum { LaysOutChildrenOnSize = 0 };

    // Any OR of the ORDER_* and ALIGN_* words of the "Layout" attribute.
    enum Alignment : unsigned long {
        AlignDefault = 0,
    };
    enum { ImageNormal = 0, ImageHover = 1, ImagePressed = 2, ImageDisabled = 3, ImageSlots = 4 };

    MirlButton();
    ~MirlButton() override;

    // Creation and subclassing live in MIRL.dll, beside the destructor that undoes them.
    HWND Create(MirlWindowBase *parent, HWND hWndParent, ATL::_U_RECT rect, const wchar_t *name,
                unsigned long style = 0, unsigned long exStyle = 0, ATL::_U_MENUorID menuOrID = 0U,
                void *createParam = NULL);
    BOOL SubclassWindow(HWND hWnd);
    BOOL SubclassWindow(MirlWindowBase *source, MirlWindowBase *parent);

    // The slots own their bitmaps and the window its procedure: a button isn't copied.
    MirlButton(const MirlButton &) = delete;
    MirlButton &operator=(const MirlButton &) = delete;

    // Attributes
    void SetFlat(bool flat);
    bool GetFlat() const;
    void SetFlatFocus(bool flatFocus, bool repaint);
    bool GetDefault() const;
    // The new word shows after the next size change: the layout stays valid.
    void SetAlign(Alignment align);
    unsigned long GetAlign() const;
    void DrawBorder(bool draw);
    // Whether the last press fell in the drop-down arrow zone.
    bool IsOnMenu() const;
    void SetHighLight(bool highLight);
    // Only a check button takes it.
    void SetCheck(bool check, bool repaint);
    bool GetCheck() const;
    // Null clears the URL; a longer one is cut to 259 characters. Always true.
    bool SetURL(const wchar_t *url);
    bool SetAutoRepeat(bool repeat, unsigned long delay);
    // Does nothing: the button shows the hand over a link and the arrow elsewhere.
    bool SetBtnCursor(ATL::_U_STRINGorID cursor, HINSTANCE instance);

    // Operations
    // Does nothing: taking over a dialog's button is MirlDlgButton's business.
    int SubclassWindowBtn(HWND hWnd);
    // Frees the arrow image and the cursor.
    void FreeResources(bool checkForNull);
    // Ends the hover of a flat button.
    void CancelHover();

    // State, for the application and for tests.
    const MirlButtonImage *GetImage(int slot) const;
    Gdiplus::Bitmap *GetArrowBitmap() const { return m_BmpArrow; }
    int GetArrowWidth() const { return m_ArrowWidth; }
    int GetArrowX() const { return m_ArrowX; }
    Gdiplus::RectF GetImageRect() const { return m_ImageRect; }
    const MirlTextLayout &GetTextLayout() const { return m_TextLayout; }
    const wchar_t *GetURL() const { return m_Url; }
    unsigned long GetRepeatDelay() const { return m_RepeatDelay; }
    bool GetAutoRepeat() const { return m_AutoRepeat != 0; }
    bool IsCheckMode() const { return m_CheckMode != 0; }
    bool IsMouseOnButton() const { return m_MouseOnBtn; }
    bool IsOverLink() const { return m_OverLink; }
    bool HasLink() const { return m_HasLink; }
    bool IsPressedDrawn() const { return m_Pressed != 0; }
    bool IsFocusDrawn() const { return m_Focused != 0; }
    bool IsDisabledDrawn() const { return m_Disabled != 0; }
    HTHEME GetTheme() const { return m_Theme; }
    static int GetCommonRef();
    // The shared backgrounds: 0 disabled, 1 normal, 2 hover, 3 pressed.
    static Gdiplus::Bitmap *GetCommonBackground(int index);

    // The window procedure: a double click counts as a second press.
    static LRESULT CALLBACK WindowProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam);
    WNDPROC GetWindowProc() override;

    // Painting
    void LoadCommonBitmaps();
    void LoadBitmapFromSkin(int slot, MirlUiElementImage *element);
    // Adopts bitmap into the slot with its size and no colour key.
    void LoadBitmapFromSkin(int slot, Gdiplus::Bitmap *bitmap);
    // Lays out caption and image in the client area; true means the layout holds.
    bool PrepareRect(Gdiplus::Graphics &graphics, bool hasText);
    void ImageTextH(Gdiplus::Graphics &graphics, MirlTextLayout *layout);
    void TextImageH(Gdiplus::Graphics &graphics, MirlTextLayout *layout);
    void ImageTextV(Gdiplus::Graphics &graphics, MirlTextLayout *layout);
    void TextImageV(Gdiplus::Graphics &graphics, MirlTextLayout *layout);
    // One owner-drawn frame.
    void DrawItem(UINT id, LPDRAWITEMSTRUCT item);
    // The foreground image of a four-state button for the state.
    void DrawTheBitmap(Gdiplus::Graphics &graphics, Gdiplus::RectF &rect, bool pressed, bool disabled);
    // The common background for the state, and the drop-down arrow.
    void DrawTheBitmapTx(Gdiplus::Graphics &graphics, Gdiplus::Rect &rect, bool pressed, bool disabled);
    // An image stretched in three parts: two ends of half its width and one stretched column.
    void PainImageInRect(Gdiplus::Graphics &graphics, Gdiplus::Bitmap *image, const Gdiplus::Rect &rect);
    virtual DWORD OnDrawBackground(WTL::CDCT<false> dc, const RECT *rect);
    virtual DWORD OnDrawBorder(WTL::CDCT<false> dc, const RECT *rect);
    // A 1-bit mask of the pixels of colourKey; those pixels turn black in source. The caller
    // owns the mask; null if it can't be made.
    static HBITMAP CreateBitmapMask(HBITMAP source, DWORD width, DWORD height, COLORREF colourKey);

    // Message handlers
    LRESULT OnMouseMessage(UINT uMsg, WPARAM wParam, LPARAM lParam, BOOL &bHandled);
    int OnCreate(LPCREATESTRUCTW create);
    // Owner-draw from creation, so that WM_CREATE need not change the style; the kind asked for
    // is kept for WM_CREATE to read.
    DWORD CreationStyle(DWORD style);
    void OnDestroy();
    int OnSetWindowText(const wchar_t *text);
    void OnSize(UINT type, SIZE size);
    void OnKeyDown(UINT key, UINT repeat, UINT flags);
    void OnRButtonDown(UINT flags, POINT point);
    HRESULT OnSetImage(WPARAM slot, LPARAM fileName);
    void OnMouseMove(UINT flags, POINT point);
    void OnLButtonDown(UINT flags, POINT point);
    void OnKillFocus(HWND focus);
    void OnActivate(UINT state, BOOL minimized, HWND other);
    void OnEnable(BOOL enable);
    void OnCancelMode();
    void OnCaptureChanged(HWND capture);
    BOOL OnSetCursor(HWND hWnd, UINT hitTest, UINT message);
    void OnSysColorChange();
    LRESULT OnClicked(UINT code, int id, HWND control);
    HBRUSH OnCtlColor(HDC dc, HWND control);

// A handler that marks the message handled unless it says otherwise with SetMsgHandled(FALSE).
#define MIRL_BUTTON_HANDLER(msg, expression) \
    if (uMsg == (msg)) { \
        SetMsgHandled(TRUE); \
        lResult = static_cast<LRESULT>(expression); \
        if (IsMsgHandled()) \
            return TRUE; \
    }

    BEGIN_MSG_MAP_EX(MirlButton)
        MESSAGE_RANGE_HANDLER(WM_MOUSEFIRST, WM_MOUSEFIRST + 13, OnMouseMessage)
        MIRL_BUTTON_HANDLER(WM_CREATE, OnCreate(reinterpret_cast<LPCREATESTRUCTW>(lParam)))
        MIRL_BUTTON_HANDLER(WM_DESTROY, (OnDestroy(), 0))
        MIRL_BUTTON_HANDLER(WM_ERASEBKGND, 1)
        MIRL_BUTTON_HANDLER(WM_SETTEXT, OnSetWindowText(reinterpret_cast<const wchar_t *>(lParam)))
        MIRL_BUTTON_HANDLER(WM_SIZE, (OnSize(static_cast<UINT>(wParam), SizeOf(lParam)), 0))
        MIRL_BUTTON_HANDLER(WM_KEYDOWN, (OnKeyDown(static_cast<UINT>(wParam), LOWORD(lParam), HIWORD(lParam)), 0))
        MIRL_BUTTON_HANDLER(WM_RBUTTONDOWN, (OnRButtonDown(static_cast<UINT>(wParam), PointOf(lParam)), 0))
        MIRL_BUTTON_HANDLER(BM_SETIMAGE, OnSetImage(wParam, lParam))
        MIRL_BUTTON_HANDLER(WM_MOUSEMOVE, (OnMouseMove(static_cast<UINT>(wParam), PointOf(lParam)), 0))
        MIRL_BUTTON_HANDLER(WM_LBUTTONDOWN, (OnLButtonDown(static_cast<UINT>(wParam), PointOf(lParam)), 0))
        MIRL_BUTTON_HANDLER(WM_KILLFOCUS, (OnKillFocus(reinterpret_cast<HWND>(wParam)), 0))
        MIRL_BUTTON_HANDLER(WM_ACTIVATE, (OnActivate(LOWORD(wParam), HIWORD(wParam), reinterpret_cast<HWND>(lParam)), 0))
        MIRL_BUTTON_HANDLER(WM_ENABLE, (OnEnable(static_cast<BOOL>(wParam)), 0))
        MIRL_BUTTON_HANDLER(WM_CANCELMODE, (OnCancelMode(), 0))
        MIRL_BUTTON_HANDLER(WM_CAPTURECHANGED, (OnCaptureChanged(reinterpret_cast<HWND>(lParam)), 0))
        MIRL_BUTTON_HANDLER(WM_SETCURSOR, OnSetCursor(reinterpret_cast<HWND>(wParam), LOWORD(lParam), HIWORD(lParam)))
        MIRL_BUTTON_HANDLER(WM_SYSCOLORCHANGE, (OnSysColorChange(), 0))
        MIRL_BUTTON_HANDLER(OCM_COMMAND, OnClicked(HIWORD(wParam), LOWORD(wParam), reinterpret_cast<HWND>(lParam)))
        MIRL_BUTTON_HANDLER(OCM_DRAWITEM, (DrawItem(static_cast<UINT>(wParam), reinterpret_cast<LPDRAWITEMSTRUCT>(lParam)), 1))
        MIRL_BUTTON_HANDLER(OCM_CTLCOLORBTN, reinterpret_cast<LRESULT>(OnCtlColor(reinterpret_cast<HDC>(wParam), reinterpret_cast<HWND>(lParam))))
    END_MSG_MAP()

#undef MIRL_BUTTON_HANDLER

protected:
    static POINT PointOf(LPARAM lParam)
    {
        POINT point = {static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam))};
        return point;
    }
    static SIZE SizeOf(LPARAM lParam)
    {
        SIZE size = {static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam))};
        return size;
    }
    // The hover ends: clears it and repaints, for a flat button that hovers.
    void EndHover();
    // Loads the slot named by an image attribute of the template, if there is one.
    void LoadSlotFromAttribute(int slot, const wchar_t *attribute);
    // The value of an attribute of the template, or null.
    const wchar_t *AttributeValue(const wchar_t *name) const;
    // Grows the window base's width to the caption's, plus margins and the arrow.
    void GrowToCaption();
    void OpenTheme();
    // Lets go of the theme data that OpenTheme took; the last button closes it.
    void ReleaseTheme();
    // The system's push-button face for a theme state, through uxtheme.dll.
    void DrawSystemFace(HDC dc, const RECT &rect, int state);
    void ReleaseCommonBitmaps();
    // The auto-repeat commands while the left button is held.
    void RepeatWhileHeld();
    // Lays out caption and image with a 6-pixel side margin; the caption is measured in place.
    bool PlaceInClient(Gdiplus::Graphics &graphics, MirlTextLayout &layout, unsigned long align, bool hasText,
                       bool hasImage);
    // One of the four orders, whatever the order bits of the "Layout" word say.
    void PlaceOrder(Gdiplus::Graphics &graphics, MirlTextLayout *layout, unsigned long order);
    // The window's real style, not the "Style" attribute.
    DWORD WindowStyle() const;

    unsigned long m_Align;
    unsigned long m_RepeatDelay;
    HCURSOR m_Cursor;
    bool m_MouseOnBtn;
    unsigned int m_Pressed : 1;
    unsigned int m_Focused : 1;
    unsigned int m_Disabled : 1;
    unsigned int m_DrawBorder : 1;
    bool m_Flat;
    unsigned int m_FlatFocus : 1;
    unsigned int m_AutoRepeat : 1;
    unsigned int m_Default : 1;
    unsigned int m_CheckMode : 1;
    unsigned int m_Checked : 1;
    int m_ArrowWidth;
    bool m_HighLight;
    bool m_OnMenu;
    wchar_t m_Url[260];
    MirlButtonImage m_Images[ImageSlots];
    Gdiplus::Bitmap *m_BmpArrow;
    Gdiplus::RectF m_ImageRect;
    int m_ArrowX;
    MirlTextLayout m_TextLayout;
    HCURSOR m_CursorHand;
    HCURSOR m_CursorArrow;
    bool m_OverLink;
    bool m_HasLink;
    unsigned int m_UseTheme : 1;
    HTHEME m_Theme;
    // This window counts in m_CommonRef: set by LoadCommonBitmaps, cleared when it lets go.
    bool m_HoldsCommon;
    // The context that DrawItem's graphics draws on, while DrawItem runs; else null.
    HDC m_PaintDC;
    // From Create to WM_CREATE: the button kind (BS_TYPEMASK bits) that the style asked for.
    bool m_HasKindAsked;
    DWORD m_KindAsked;

    static int m_CommonRef;
    static Gdiplus::Bitmap *m_CommonBmpArrow;
    static Gdiplus::Bitmap *m_CommonBmpBk[4];

private:
    // The image drawn at rect one to one by a blend of its premultiplied pixels, where that
    // gives what GDI+ would draw; false, with nothing drawn, elsewhere.
    bool DrawOneToOne(Gdiplus::Graphics &graphics, MirlButtonImage &image, const Gdiplus::RectF &rect);
};
