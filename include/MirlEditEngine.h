// The text engine of the self-drawn edit: the text, one measured rectangle per code unit, the
// lines those rectangles break into, the caret and the selection. It runs without a window: the
// text buffer, the client rectangle and one measuring operation are all it needs, and the few
// things it does to a screen (place the caret, redraw, take the focus) are hooks.
//
//   MirlEditMeasurer   the measuring operation: one rectangle per code unit of a text
//   MirlEditLine       one line of the line table
//   MirlEditEngine     constructors: MirlEditEngine(text buffer)
//                      tables: BuildCharRects, GetLineCount, GetSingleLineWidth/Height, GetTotalHeight
//                      mapping: FindLineForChar, FindLineForPoint, ComputeCaretPosNew, SetCursorPos,
//                        MoveCursorToLine, GetCharPastWhiteSpace
//                      single-line view: GetShownCharCount, GetStartCharByLastShown, AdjustStartChar
//                      editing: InsertText, ReplaceSelectedText, DeleteSelectedText, PadOnDeleteString
#pragma once

#include "MirlExport.h"

#include <windows.h>
#include <objidl.h>

#include <algorithm>
using std::max;
using std::min;
#include <gdiplus.h>

#include <string>
#include <vector>

// Measures a text: for every code unit, the rectangle it gets when it stands at the head of the
// rest of the text. Width is the unit's advance and X the offset at which the renderer draws it.
class MIRL_API MirlEditMeasurer {
public:
    virtual ~MirlEditMeasurer() {}
    // Fills rects with exactly text.size() rectangles.
    virtual void MeasureCharacters(const std::wstring &text, std::vector<Gdiplus::RectF> &rects) = 0;
};

struct MirlEditLine {
    int first;    // position of the line's first character
    int count;    // characters on the line
    float x;      // left edge: the margin plus the client's left
    float y;      // top
    float width;  // sum of the measured widths of its characters, not truncated
    float height; // the line height
};

class MIRL_API MirlEditEngine {
public:
    // The engine edits text in place; the buffer must outlive it.
    explicit MirlEditEngine(std::wstring &text);
    virtual ~MirlEditEngine();
    MirlEditEngine(const MirlEditEngine &) = delete;
    MirlEditEngine &operator=(const MirlEditEngine &) = delete;

    // The measurer is not owned; null measures every character as an empty rectangle.
    void SetMeasurer(MirlEditMeasurer *measurer) { m_Measurer = measurer; }
    MirlEditMeasurer *GetMeasurer() const { return m_Measurer; }

    // Rebuilds both tables from the text; always 0.
    int BuildCharRects();
    // The line a position shows on; -1 without lines.
    int FindLineForChar(int position);
    // The line at the point's height; -1 without lines or above the first. A point below the
    // last line is moved up onto it.
    int FindLineForPoint(POINT &point);
    // Kept for the interface: always 0.
    int GetCharByPos(const POINT &point);
    // The caret position nearest a point; sets the caret's pixel position on the way.
    int ComputeCaretPosNew(POINT &point);
    // How many characters from m_StartChar fit in the rectangle's width.
    int GetShownCharCount(const RECT &rect);
    // The m_StartChar that shows the end of the text.
    int GetStartCharByLastShown();
    // Scrolls a single-line view: direction 0 before a typed character, -1 and 1 for the arrows.
    void AdjustStartChar(int direction, RECT rect);
    // The position on that line under the caret's x.
    int MoveCursorToLine(int line);
    // The word step: past the next blank forward, onto the previous one backward.
    int GetCharPastWhiteSpace(bool forward, int position);
    // Places the caret at a position; m_CursorPos is left as it is.
    void SetCursorPos(int position);
    // Inserts at the cursor, or over the selection.
    void InsertText(const wchar_t *text, int length);
    void ReplaceSelectedText(const std::wstring &text);
    void DeleteSelectedText();
    // Rebuilds and shows the tail of the text after a deletion.
    void PadOnDeleteString();
    void RefreshText();

    int GetLineCount();
    int GetSingleLineWidth();
    int GetSingleLineHeight();
    int GetTotalHeight();
    // Kept for the interface: does nothing.
    void ResizeToFit();

    // The selection's ends in text order, each clamped into the text.
    void GetSelectionRange(int &low, int &high) const;
    // Puts the cursor, the anchor and the view's start back into the text.
    void ClampPositions();

    // State, for the window, its painting and tests.
    const std::wstring &GetEditText() const { return m_EditText; }
    const std::vector<MirlEditLine> &GetLines() const { return m_Lines; }
    const std::vector<Gdiplus::RectF> &GetCharRects() const { return m_CharRects; }
    int GetCursorPosition() const { return m_CursorPos; }
    int GetSelAnchor() const { return m_SelAnchor; }
    int GetStartChar() const { return m_StartChar; }
    int GetCaretX() const { return m_CaretX; }
    int GetCaretY() const { return m_CaretY; }
    int GetLineHeight() const { return m_LineHeight; }
    int GetMargin() const { return m_Margin; }
    bool HasSelection() const { return m_HasSelection; }
    bool IsHighlighting() const { return m_Highlighting; }
    bool IsMultiLine() const { return m_MultiLine; }

    // Setters for the window and for tests that stand in for it.
    void SetEditStyle(unsigned long style);
    unsigned long GetEditStyle() const { return m_EditStyle; }
    void SetLineHeight(int height) { m_LineHeight = height; }
    void SetClientRect(const RECT &rect) { m_ClientRect = rect; }
    void SetCursorPosition(int position) { m_CursorPos = position; }
    void SetSelAnchor(int position) { m_SelAnchor = position; }
    void SetStartChar(int position) { m_StartChar = position; }
    void SetHasSelection(bool selected) { m_HasSelection = selected; }
    void SetHighlighting(bool highlighting) { m_Highlighting = highlighting; }

    // The truncated width of the character at a position; 0 outside the table.
    int CharWidth(int position) const;
    // The float width of the character at a position; 0 outside the table.
    float CharWidthF(int position) const;

protected:
    // What the engine does to a screen. Without a window: the stored client rectangle, and
    // nothing for the rest.
    virtual RECT EditClientRect() { return m_ClientRect; }
    virtual void PlaceCaret(int x, int y) {}
    virtual void RedrawEdit() {}
    virtual void FocusEdit() {}

    // Float to pixel, truncating toward zero; values outside int's range saturate.
    static int Truncate(float value);
    static int Truncate(double value);

    std::wstring &m_EditText;
    MirlEditMeasurer *m_Measurer;
    unsigned long m_EditStyle;
    RECT m_ClientRect;

    int m_LineHeight;
    int m_SelAnchor;
    int m_StartChar;
    int m_CursorPos;
    bool m_Highlighting;
    bool m_HasSelection;
    int m_CaretX;
    int m_CaretY;
    std::vector<MirlEditLine> m_Lines;
    std::vector<Gdiplus::RectF> m_CharRects;
    float m_ScaleX;
    float m_ScaleY;
    float m_OuterScaleX;
    float m_OuterScaleY;
    bool m_MultiLine;
    int m_Margin;
};
