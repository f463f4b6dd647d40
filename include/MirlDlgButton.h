// MirlDlgButton: skins a button that a dialog template made, by replacing its window procedure.
// Push buttons, check boxes and radio buttons; a fixed bold font and caption colours with a
// shadow; images by fixed names of the skin, chosen from the button's own style.
//
//   MirlDlgButton    constructors: MirlDlgButton, ~MirlDlgButton
//                    operations: SubclassWindowBtn, UnSubclass, SetTransparent
//                    the window procedure: WindowProc, OnMsg
//                    painting: DoPaint, DrawItem, DrawCheckBox, DrawTheBitmapTx, PainImageInRect,
//                      PrepareRect, LoadBitmapFromSkin
//                    state: GetHwnd, IsCheckType, IsChecked, IsMouseOnButton, GetImage, ...
#pragma once

#include "MirlButton.h"
#include "MirlExport.h"
#include "MirlText.h"
#include "MirlWindow.h"

#include <string>

class MIRL_API MirlDlgButton {
public:
    enum { ImageSlots = 4 };

    MirlDlgButton();
    // Puts the former window procedure back if the window still has this one.
    virtual ~MirlDlgButton();

    // The object owns a font, images and the window's procedure: it isn't copied.
    MirlDlgButton(const MirlDlgButton &) = delete;
    MirlDlgButton &operator=(const MirlDlgButton &) = delete;

    // Takes over an existing button: forces owner draw, keeps the former procedure, loads the
    // images of the button's type. parent, if not null, gives the background of a transparent
    // button. Always 1; a window that is already taken over is left as it is.
    int SubclassWindowBtn(HWND hWnd, MirlWindowBase *parent);
    // Gives the window its former procedure back. Harmless when called again, and after the
    // window is gone (the object lets go of a window that is destroyed under it).
    void UnSubclass();

    // Take the background from the parent's memory picture rather than the fill.
    void SetTransparent(bool transparent) { m_Transparent = transparent ? 1 : 0; }

    static LRESULT CALLBACK WindowProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam);
    // Never sets handled: every message also reaches the former procedure.
    LRESULT OnMsg(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam, int &handled);

    // Painting
    void DoPaint(HDC dc);
    void DrawItem(UINT id, LPDRAWITEMSTRUCT item);
    void DrawCheckBox(Gdiplus::Graphics &graphics, Gdiplus::Rect &rect, bool pressed, bool disabled);
    void DrawTheBitmapTx(Gdiplus::Graphics &graphics, Gdiplus::Rect &rect, bool pressed, bool disabled);
    void PainImageInRect(Gdiplus::Graphics &graphics, Gdiplus::Bitmap *image, const Gdiplus::Rect &rect);
    // Gives the client area to the caption and measures it; false on an empty client area.
    bool PrepareRect(Gdiplus::Graphics &graphics, bool hasText);
    void LoadBitmapFromSkin(int slot, MirlUiElementImage *element);
    void LoadBitmapFromSkin(int slot, Gdiplus::Bitmap *bitmap);
    // Flips the check state of a check type and repaints. Nothing sends it: a click doesn't
    // change the picture; the application's BM_SETCHECK does.
    int OnClicked(UINT code, int id, HWND control);

    // State, for the application and for tests.
    HWND GetHwnd() const { return m_hWnd; }
    WNDPROC GetOldProc() const { return m_OldProc; }
    bool IsCheckType() const { return m_CheckType != 0; }
    bool IsChecked() const { return m_Checked != 0; }
    bool IsDefault() const { return m_Default != 0; }
    bool IsMouseOnButton() const { return m_MouseOnBtn; }
    bool IsPressedDrawn() const { return m_Pressed != 0; }
    bool IsFocusDrawn() const { return m_Focused != 0; }
    bool IsDisabledDrawn() const { return m_Disabled != 0; }
    bool IsTransparent() const { return m_Transparent != 0; }
    const wchar_t *GetText() const { return m_Text.c_str(); }
    const MirlButtonImage *GetImage(int slot) const;
    int GetArrowWidth() const { return m_ArrowWidth; }
    Gdiplus::Font *GetFont() const { return m_Font; }
    // Where the last caption was drawn (its layout rectangle, before the shadow's offset).
    Gdiplus::RectF GetLastCaptionRect() const { return m_LastCaptionRect; }
    // -1 when the last push-button paint drew nothing at all.
    int GetLastSlot() const { return m_LastSlot; }

    Gdiplus::ARGB m_TextColor;
    Gdiplus::ARGB m_BkColor;
    unsigned int m_Transparent : 1;

protected:
    void OnActivate(UINT state);
    void OnKillFocus();
    void OnEnable(BOOL enable);
    void OnSetText(const wchar_t *text);
    void OnPaint(HDC given);
    void OnSetCheck(WPARAM state);
    void OnMouseMove(UINT flags, POINT point);
    void OnCaptureChanged();
    // Clears the hover and repaints, if it hovers.
    void CancelHover();
    // The background: the parent's memory picture beneath the window, or the fill.
    void PaintBackground(HDC dc, const RECT &client);
    // Background, then the check picture or the push-button face and caption, in a face of
    // right - 1 by bottom pixels.
    void PaintFace(HDC dc, LONG right, LONG bottom);
    // Lets go of the window: the former procedure back, the user data cleared where it is ours.
    void Release();
    void FreeImages();

    HWND m_hWnd;
    Gdiplus::Font *m_Font;
    LOGFONTW m_LogFont;
    bool m_LayoutValid;
    WNDPROC m_OldProc;
    std::wstring m_Text;
    MirlTextLayout m_TextLayout;
    unsigned long m_Align;
    bool m_MouseOnBtn;
    unsigned int m_Pressed : 1;
    unsigned int m_Focused : 1;
    unsigned int m_Disabled : 1;
    unsigned int m_Default : 1;
    unsigned int m_CheckType : 1;
    unsigned int m_Checked : 1;
    int m_ArrowWidth;
    MirlButtonImage m_Images[ImageSlots];
    Gdiplus::Bitmap *m_BmpArrow;
    MirlWindowBase *m_Parent;
    Gdiplus::RectF m_LastCaptionRect;
    int m_LastSlot;
};
