// Captions: one text with its font, alignment word and measured rectangle, the link markup
// shared by the text controls, and the scoped off-screen context that controls paint through.
//
//   MirlTextLayout        SetFont, SetText, SetRect, SetStyle; Measure; GetRect; Draw
//   MirlMemoryDC          a memory context over a rectangle of a target, copied back on scope exit
//   MIRL::ExpandFirstLink turns the first marked run of a caption into '&'-prefixed characters
#pragma once

#include "MirlExport.h"
#include "MirlStyles.h"

#include "atl/MirlAtl.h"

#include <algorithm>
using std::max;
using std::min;
#include <gdiplus.h>

#include <string>

class MIRL_API MirlTextLayout {
public:
    explicit MirlTextLayout(bool shadow = false);
    MirlTextLayout(const MirlTextLayout &source);
    MirlTextLayout &operator=(const MirlTextLayout &source);
    virtual ~MirlTextLayout();

    // The font is not owned: the control keeps it alive.
    void SetFont(Gdiplus::Font *font);
    void SetText(const wchar_t *text);
    void SetRect(const Gdiplus::RectF &rect);
    // ORDER_* and ALIGN_* bits; only the ALIGN_* bits matter to the caption.
    void SetStyle(unsigned long style);
    // The rectangle set, or after a successful Measure the measured and placed one.
    Gdiplus::RectF GetRect() const;

    // Measures the text in the rectangle set and places the result by the alignment word.
    void Measure(Gdiplus::Graphics &g);
    // Draws with ellipsis trimming and '&'-underlining; a shadowed layout draws white first.
    void Draw(Gdiplus::Graphics &g, Gdiplus::Brush *brush);

    // A "Layout" attribute as its ORDER_* and ALIGN_* word.
    static unsigned long ParseLayoutStyle(const wchar_t *text);

    const wchar_t *GetText() const { return m_Text.c_str(); }
    Gdiplus::Font *GetFont() const { return m_Font; }
    unsigned long GetStyle() const { return m_Style; }
    bool IsMeasured() const { return m_Measured; }
    bool HasShadow() const { return m_Shadow; }
    Gdiplus::RectF GetBounds() const { return m_Bounds; }

protected:
    // Horizontal alignment from the word; the line alignment takes the same value.
    Gdiplus::StringAlignment Alignment() const;

    std::wstring m_Text;
    Gdiplus::Font *m_Font;
    unsigned long m_Style;
    bool m_WordWrap;
    bool m_Measured;
    bool m_Shadow;
    Gdiplus::RectF m_Rect;
    Gdiplus::RectF m_Bounds;
};

// The scoped off-screen context of painting: drawing at the rectangle's top left lands at the
// bitmap's origin, and the picture is copied to the target when the object goes.
class MirlMemoryDC : public WTL::CMemoryDC {
public:
    MirlMemoryDC(HDC target, const RECT &rect) : WTL::CMemoryDC(target, rect) {}
};

namespace MIRL {

// The first run between open and close (found ignoring case) with an '&' before each of its
// characters, the marks taken out. hasLink tells whether both marks were found. With the close
// mark before the open one the run is empty and the text after the close mark keeps the rest.
MIRL_API std::wstring ExpandFirstLink(const std::wstring &text, const wchar_t *open, const wchar_t *close,
                                      bool *hasLink);

} // namespace MIRL
