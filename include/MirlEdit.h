// The self-drawn edit control: its text engine (MirlEditEngine.h), the measuring of characters
// on GDI+, and the window.
//
//   MirlEditTextMeasurer   characters measured with GDI+, each distinct one once per font
//   MirlEdit               the window: keys, mouse, clipboard, input method, painting
//                          constructors: MirlEdit, ~MirlEdit; Create, SubclassWindow
//                          operations: Reset, ResetSearchContent, GetWindowTextW, SetSelAll
//                          input: OnChar, OnKeyDown, mouse handlers, CopyToClipboard, DoPaste
//                          painting: DoPaint, PaintSingleLine, PaintMultiLine
#pragma once

#include "MirlEditEngine.h"
#include "MirlExport.h"
#include "MirlWindow.h"

#include <imm.h>

#include <string>
#include <vector>

// Measures characters with GDI+ MeasureCharacterRanges in one font and string format. A
// character's rectangle depends on the character, its right neighbour and whether only blanks
// follow it on its line; rectangles are kept per font by those three, so a rebuild of a text
// whose characters were seen before costs one table walk.
class MIRL_API MirlEditTextMeasurer : public MirlEditMeasurer {
public:
    // hWnd gives the device context of measuring (null: the screen's). The font is not owned.
    MirlEditTextMeasurer(HWND hWnd, Gdiplus::Font *font);
    ~MirlEditTextMeasurer() override;
    MirlEditTextMeasurer(const MirlEditTextMeasurer &) = delete;
    MirlEditTextMeasurer &operator=(const MirlEditTextMeasurer &) = delete;

    void SetWindow(HWND hWnd) { m_hWnd = hWnd; }
    void SetFont(Gdiplus::Font *font);
    // The vertical alignment of the measuring format: 0 near, 1 centre, 2 far.
    void SetLineAlignment(int alignment);

    // Through the cache.
    void MeasureCharacters(const std::wstring &text, std::vector<Gdiplus::RectF> &rects) override;
    // Without it: each character measured at the head of the rest of the text, one GDI+ call
    // per character.
    void MeasureEachCharacter(const std::wstring &text, std::vector<Gdiplus::RectF> &rects);

    // GDI+ measurements made through this object, for tests and figures.
    unsigned long GetMeasureCalls() const { return m_MeasureCalls; }
    // Forgets every font's rectangles.
    static void ClearCache();

private:
    // The rectangle of the first unit of text[0, length); empty if GDI+ refuses.
    Gdiplus::RectF MeasureHead(Gdiplus::Graphics &graphics, const wchar_t *text, int length);
    void UpdateFontKey();

    HWND m_hWnd;
    Gdiplus::Font *m_Font;
    Gdiplus::StringFormat *m_MeasureFormat;
    int m_LineAlignment;
    std::wstring m_FontKey;
    unsigned long m_MeasureCalls;
};

// Notification codes that the edit sends its parent by WM_COMMAND.
#ifndef EN_KILLFOCUS
#define EN_KILLFOCUS 0x0200
#endif
#ifndef EN_CHANGE
#define EN_CHANGE 0x0300
#endif
#ifndef EN_ERRSPACE
#define EN_ERRSPACE 0x0500
#endif

// The library's own edit: it keeps its text, tables, caret and selection (MirlEditEngine) and
// paints every character itself.
class MIRL_API MirlEdit : public MirlWindowImpl<MirlEdit>,
                          public MirlEditEngine,
                          public WTL::CMessageFilter,
                          public CTransparentImpl<MirlEdit>,
                          public WTL::CDoubleBufferImpl<MirlEdit> {
    typedef MirlWindowImpl<MirlEdit> Base;

public:
    // Typing and pasting stop at this many characters; the input method and WM_SETTEXT do not.
    enum { MaxTypedLength = 1024 };

    MirlEdit();
    ~MirlEdit() override;
    MirlEdit(const MirlEdit &) = delete;
    MirlEdit &operator=(const MirlEdit &) = delete;

    HWND Create(MirlWindowBase *parent, HWND hWndParent, ATL::_U_RECT rect, const wchar_t *name,
                unsigned long style = 0, unsigned long exStyle = 0, ATL::_U_MENUorID menuOrID = 0U,
                void *createParam = NULL);
    BOOL SubclassWindow(HWND hWnd);
    BOOL SubclassWindow(MirlWindowBase *source, MirlWindowBase *parent);

    BOOL PreTranslateMessage(MSG *msg) override;

    // Empties the control for a new use; the caret goes with hide.
    void Reset(bool hide);
    // Empties the control and leaves it ready for typing, with the focus.
    void ResetSearchContent();
    // The text, or null while it is empty.
    const wchar_t *GetWindowTextW() const;
    // Stores a flag that nothing reads.
    void SetSelAll(bool all) { m_SelAll = all; }

    // Digits only.
    static bool IsNumber(wchar_t c);
    // False for null, true for an empty text.
    static bool IsNumber(const wchar_t *text);

    // Input
    void OnChar(UINT c, UINT repeat, UINT flags);
    void OnKeyDown(UINT key, UINT repeat, UINT flags);
    void OnLButtonDown(UINT flags, POINT point);
    void OnLButtonUp(UINT flags, POINT point);
    void OnLButtonDblClick(UINT flags, POINT point);
    void OnRButtonDown(UINT flags, POINT point);
    void OnMouseMove(UINT flags, POINT point);
    // Not in the map: WM_CAPTURECHANGED does not reach it.
    void OnCaptureChanged(HWND capture);
    void DoHilight(POINT point);
    void CopyToClipboard(bool cut);
    void DoPaste();
    LRESULT OnCopy();
    LRESULT OnCut();
    LRESULT OnPaste();
    bool InitIME();
    void UpdateIME();
    void CloseIME();
    void SetIMECompWin(HIMC context);
    LRESULT OnIMEChars(UINT message, WPARAM wParam, LPARAM lParam);
    void OnSetFocus(HWND previous);
    void OnKillFocus(HWND next);

    // Creation and painting
    LRESULT OnCreate(UINT message, WPARAM wParam, LPARAM lParam, BOOL &handled);
    LRESULT OnEraseBkgnd(UINT message, WPARAM wParam, LPARAM lParam, BOOL &handled);
    LRESULT OnSetWindowText(UINT message, WPARAM wParam, LPARAM lParam, BOOL &handled);
    LRESULT OnDestroy(UINT message, WPARAM wParam, LPARAM lParam, BOOL &handled);
    // WM_PAINT from the system: drawn into a picture of the client kept between paints. With a
    // device context in wParam it goes on to the double buffer.
    LRESULT OnPaint(UINT message, WPARAM wParam, LPARAM lParam, BOOL &handled);
    void DoPaint(WTL::CDCHandle dc);

    // State, for the application and tests.
    const wchar_t *GetWaterText() const { return m_WaterText.c_str(); }
    bool HasFocusMark() const { return m_HasFocus; }
    bool NeedsIME() const { return m_NeedIME; }
    unsigned int GetCodePage() const { return m_CodePage; }
    unsigned int GetClipboardFormat() const { return m_ClipboardFormat; }
    Gdiplus::Bitmap *GetBackImage() const { return m_BackImage; }
    Gdiplus::ARGB GetSelColor() const { return m_SelColor; }
    Gdiplus::ARGB GetSelTextColor() const { return m_SelTextColor; }
    Gdiplus::ARGB GetBorderColor() const { return m_BorderColor; }
    bool GetSelAll() const { return m_SelAll; }
    int GetTyped() const { return m_Typed; }
    // The face that a single-line edit draws in: "Arial", or a family that exists.
    Gdiplus::Font *GetSingleLineFont() const { return m_SingleLineFont; }
    // Painting draws runs of characters in one GDI+ call each; with this set it draws every
    // character with a DrawString of its own, the reference that the runs must equal.
    void SetDrawEachCharacter(bool each) { m_DrawEachCharacter = each; }
    bool GetDrawEachCharacter() const { return m_DrawEachCharacter; }
    // GDI+ text calls that the last paint made for the edit's characters.
    int GetLastTextDrawCalls() const { return m_LastTextDrawCalls; }

#define MIRL_EDIT_HANDLER(msg, expression) \
    if (uMsg == (msg)) { \
        SetMsgHandled(TRUE); \
        lResult = static_cast<LRESULT>(expression); \
        if (IsMsgHandled()) \
            return TRUE; \
    }

    BEGIN_MSG_MAP_EX(MirlEdit)
        MESSAGE_HANDLER(WM_CREATE, OnCreate)
        MESSAGE_HANDLER(WM_ERASEBKGND, OnEraseBkgnd)
        MIRL_EDIT_HANDLER(WM_LBUTTONDOWN, (OnLButtonDown(static_cast<UINT>(wParam), PointOf(lParam)), 0))
        MIRL_EDIT_HANDLER(WM_LBUTTONDBLCLK, (OnLButtonDblClick(static_cast<UINT>(wParam), PointOf(lParam)), 0))
        MIRL_EDIT_HANDLER(WM_RBUTTONDOWN, (OnRButtonDown(static_cast<UINT>(wParam), PointOf(lParam)), 0))
        MIRL_EDIT_HANDLER(WM_LBUTTONUP, (OnLButtonUp(static_cast<UINT>(wParam), PointOf(lParam)), 0))
        MIRL_EDIT_HANDLER(WM_MOUSEMOVE, (OnMouseMove(static_cast<UINT>(wParam), PointOf(lParam)), 0))
        MESSAGE_HANDLER(WM_SETTEXT, OnSetWindowText)
        MIRL_EDIT_HANDLER(WM_PASTE, OnPaste())
        MIRL_EDIT_HANDLER(WM_CUT, OnCut())
        MIRL_EDIT_HANDLER(WM_COPY, OnCopy())
        MIRL_EDIT_HANDLER(WM_CHAR, (OnChar(static_cast<UINT>(wParam), LOWORD(lParam), HIWORD(lParam)), 0))
        MIRL_EDIT_HANDLER(WM_KEYDOWN, (OnKeyDown(static_cast<UINT>(wParam), LOWORD(lParam), HIWORD(lParam)), 0))
        MIRL_EDIT_HANDLER(WM_KILLFOCUS, (OnKillFocus(reinterpret_cast<HWND>(wParam)), 0))
        MIRL_EDIT_HANDLER(WM_SETFOCUS, (OnSetFocus(reinterpret_cast<HWND>(wParam)), 0))
        MIRL_EDIT_HANDLER(WM_IME_COMPOSITION, OnIMEChars(uMsg, wParam, lParam))
        MESSAGE_HANDLER(WM_DESTROY, OnDestroy)
        MESSAGE_HANDLER(WM_PAINT, OnPaint)
        CHAIN_MSG_MAP(WTL::CDoubleBufferImpl<MirlEdit>)
        CHAIN_MSG_MAP(Base)
    END_MSG_MAP()

#undef MIRL_EDIT_HANDLER

protected:
    static POINT PointOf(LPARAM lParam)
    {
        POINT point = {static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam))};
        return point;
    }

    // The engine's screen.
    RECT EditClientRect() override;
    void PlaceCaret(int x, int y) override;
    void RedrawEdit() override;
    void FocusEdit() override;

    void PaintSingleLine(Gdiplus::Graphics &graphics, const RECT &rect);
    void PaintMultiLine(Gdiplus::Graphics &graphics, const RECT &rect);

    // WM_COMMAND to the parent with the control's identifier and code.
    void NotifyParent(WORD code);
    // Keys: the anchor follows the cursor when a Shift selection starts; a Shift selection
    // that left the anchor shows while it is made.
    void TrackAnchor(bool shift);
    void MarkSelection(bool shift);
    void TrackVerticalAnchor(bool shift, bool control);
    void StepLeft(bool control);
    void StepRight(bool control);
    // Inserts at the cursor, or at the end when the cursor lies beyond it, and moves past.
    void InsertAtCursor(const std::wstring &text);
    // The colours and objects of painting, from the skin's fixed names.
    void LoadColors();
    void FreePaintObjects();
    // The kept picture of OnPaint, made or remade for a client of that size; false if the
    // system refuses one.
    bool PreparePaintPicture(HDC target, int width, int height);
    void FreePaintPicture();
    // The clipboard's text as wide characters, read no further than its block: the private
    // format, then Unicode, then ANSI. False when there is none.
    bool ReadClipboardText(std::wstring &text);

    Gdiplus::Brush *m_SelBrush;
    Gdiplus::Brush *m_SelTextBrush;
    Gdiplus::Pen *m_BorderPen;
    Gdiplus::Bitmap *m_BackImage;
    std::wstring m_WaterText;
    bool m_HasFocus;
    bool m_SelAll;

    int m_NotifyKillFocus;
    unsigned int m_CodePage;
    bool m_NeedIME;
    unsigned int m_ClipboardFormat;
    bool m_IMEWasOpen;
    bool m_IMEWanted;
    unsigned int m_IMEConversion;
    unsigned int m_IMESentence;
    bool m_SwallowChar;
    int m_Typed;

    MirlEditTextMeasurer *m_TextMeasurer;
    Gdiplus::Font *m_SingleLineFont;
    Gdiplus::FontFamily *m_SingleLineFamily;
    Gdiplus::ARGB m_SelColor;
    Gdiplus::ARGB m_SelTextColor;
    Gdiplus::ARGB m_BorderColor;
    bool m_DrawEachCharacter;
    int m_LastTextDrawCalls;
    HDC m_PaintDC;
    HBITMAP m_PaintBitmap;
    HBITMAP m_PaintOldBitmap;
    SIZE m_PaintSize;
};
