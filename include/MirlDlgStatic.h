// MirlDlgStatic: skins a static that a dialog template made, by replacing its window procedure.
// One caption in a fixed bold font, with at most one "<link>...</link>" run; a press on the link
// sends WM_COMMAND with the static's identifier to the parent.
//
//   MirlDlgStatic    constructors: MirlDlgStatic, ~MirlDlgStatic
//                    operations: SubclassWindowStatic, UnSubclass, SetTransparent
//                    the window procedure: WindowProc, OnMsg
//                    painting: DoPaint
//                    state: GetText, GetTextHead, GetTextLink, GetTextTail, GetLinkRect, ...
#pragma once

#include "MirlExport.h"
#include "MirlText.h"
#include "MirlWindow.h"

#include <string>

class MIRL_API MirlDlgStatic {
public:
    MirlDlgStatic();
    // Puts the former window procedure back if the window still has this one.
    virtual ~MirlDlgStatic();

    // The object owns brushes, a font and the window's procedure: it isn't copied.
    MirlDlgStatic(const MirlDlgStatic &) = delete;
    MirlDlgStatic &operator=(const MirlDlgStatic &) = delete;

    // Takes over an existing static and splits its caption at the link marks. Always 1.
    int SubclassWindowStatic(HWND hWnd, MirlWindowBase *parent);
    // Gives the window its former procedure back; harmless when called again or after the
    // window is gone.
    void UnSubclass();

    void SetTransparent(bool transparent) { m_Transparent = transparent ? 1 : 0; }

    static LRESULT CALLBACK WindowProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam);
    LRESULT OnMsg(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam, int &handled);
    void DoPaint(HDC dc);

    // State, for the application and for tests.
    HWND GetHwnd() const { return m_hWnd; }
    WNDPROC GetOldProc() const { return m_OldProc; }
    const wchar_t *GetText() const { return m_Text.c_str(); }
    const wchar_t *GetTextHead() const { return m_TextHead.c_str(); }
    const wchar_t *GetTextLink() const { return m_TextLink.c_str(); }
    const wchar_t *GetTextTail() const { return m_TextTail.c_str(); }
    int GetLinkStart() const { return m_LinkStart; }
    int GetLinkEnd() const { return m_LinkEnd; }
    bool HasLinkBrush() const { return m_LinkBrush != NULL; }
    bool IsLinkRectValid() const { return m_LinkRectValid; }
    RECT GetLinkRect() const { return m_LinkRect; }
    bool IsOverLink() const { return m_OverLink; }
    bool IsTransparent() const { return m_Transparent != 0; }
    Gdiplus::Font *GetFont() const { return m_Font; }

    Gdiplus::ARGB m_TextColor;
    Gdiplus::ARGB m_BkColor;
    unsigned int m_Transparent : 1;

protected:
    LRESULT OnSetText(const wchar_t *text);
    void OnPaint(HDC given);
    void OnSetCursor();
    void OnMouseMove(LPARAM lParam);
    void OnLButtonDown(LPARAM lParam);
    void Release();
    void FreeDrawing();

    HWND m_hWnd;
    Gdiplus::SolidBrush *m_BkBrush;
    Gdiplus::SolidBrush *m_TextBrush;
    Gdiplus::SolidBrush *m_LinkBrush;
    Gdiplus::Font *m_Font;
    LOGFONTW m_LogFont;
    WNDPROC m_OldProc;
    std::wstring m_Text;
    std::wstring m_TextHead;
    std::wstring m_TextLink;
    std::wstring m_TextTail;
    unsigned long m_Align;
    MirlWindowBase *m_Parent;
    int m_LinkStart;
    int m_LinkEnd;
    bool m_LinkRectValid;
    RECT m_LinkRect;
    HCURSOR m_CursorHand;
    HCURSOR m_CursorArrow;
    bool m_OverLink;
};
