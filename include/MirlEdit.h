// The self-drawn edit control: its text engine (MirlEditEngine.h), the measuring of characters
// on GDI+, and the window.
//
//   MirlEditTextMeasurer   characters measured with GDI+, each distinct one once per font
#pragma once

#include "MirlEditEngine.h"
#include "MirlExport.h"

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
