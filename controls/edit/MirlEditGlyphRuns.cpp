// The edit's characters drawn in runs. A DrawString at a point puts the glyph's origin one sixth
// of the em right of the point (the default format's leading margin) and the font's ascent below
// it; DrawDriverString takes those origins directly, so a run of characters costs one call
// instead of one per character.
//
// One call is not always the same picture as one call per character: a renderer may add up the
// coverage of all glyphs of a call and blend once, where separate calls blend twice wherever two
// glyphs' antialiased edges share a pixel. So a run takes a glyph only if its ink box starts
// right of the ink already in the run; a glyph that shares a pixel column with it starts a new
// run. The boxes come from GDI's glyph metrics of the same LOGFONT, once per font. Where any of
// this is not known to hold (a font not sized in pixels, a transformed graphics, a brush that is
// not an opaque colour, a character outside Latin-1's printable range) the character is drawn
// alone, in order.
#include "MirlEditGlyphRuns.h"

#include <cmath>
#include <cstdio>
#include <cstring>
#include <map>
#include <string>

namespace {

// Latin-1 less its control codes, the no-break blank and the soft hyphen: characters that a
// DrawString of their own draws as the glyph the font's character map gives them.
bool DrawsAsItsGlyph(wchar_t c)
{
    return (c >= 0x20 && c <= 0x7E) || (c >= 0xA1 && c <= 0xFF && c != 0xAD);
}

bool IsOpaqueSolid(Gdiplus::Brush *brush)
{
    if (brush == NULL || brush->GetType() != Gdiplus::BrushTypeSolidColor) {
        return false;
    }
    Gdiplus::Color color;
    return static_cast<Gdiplus::SolidBrush *>(brush)->GetColor(&color) == Gdiplus::Ok && color.GetA() == 0xFF;
}

struct InkTable {
    bool known[256];
    int left[256];
    int width[256];
};

// Bounded: skins with many fonts must not grow the process without end.
const size_t kMaxInkFonts = 64;

std::map<std::wstring, InkTable> &InkTables()
{
    static std::map<std::wstring, InkTable> tables;
    return tables;
}

std::wstring KeyOf(const LOGFONTW &font)
{
    std::wstring key(font.lfFaceName);
    wchar_t rest[64] = {};
    std::swprintf(rest, 64, L"|%ld|%ld|%ld|%u|%u|%u", static_cast<long>(font.lfHeight),
                  static_cast<long>(font.lfWidth), static_cast<long>(font.lfWeight), font.lfItalic, font.lfCharSet,
                  font.lfQuality);
    return key + rest;
}

// Every Latin-1 glyph's ink box in the GDI font of that LOGFONT; false if GDI has no such font.
bool FillInkTable(const LOGFONTW &logFont, InkTable &table)
{
    std::memset(&table, 0, sizeof(table));
    HFONT font = ::CreateFontIndirectW(&logFont);
    if (font == NULL) {
        return false;
    }
    HDC dc = ::CreateCompatibleDC(NULL);
    bool filled = false;
    if (dc != NULL) {
        HGDIOBJ old = ::SelectObject(dc, font);
        const MAT2 identity = {{0, 1}, {0, 0}, {0, 0}, {0, 1}};
        for (int c = 0; c < 256; ++c) {
            if (!DrawsAsItsGlyph(static_cast<wchar_t>(c))) {
                continue;
            }
            GLYPHMETRICS metrics = {};
            const DWORD size = ::GetGlyphOutlineW(dc, static_cast<UINT>(c), GGO_GRAY8_BITMAP, &metrics, 0, NULL, &identity);
            if (size == GDI_ERROR) {
                continue;
            }
            table.known[c] = true;
            table.left[c] = metrics.gmptGlyphOrigin.x;
            // A glyph without ink (the blank) answers a one-pixel box and no bitmap.
            table.width[c] = size == 0 ? 0 : static_cast<int>(metrics.gmBlackBoxX);
        }
        ::SelectObject(dc, old);
        ::DeleteDC(dc);
        filled = true;
    }
    ::DeleteObject(font);
    return filled;
}

} // namespace

MirlEditGlyphRuns::MirlEditGlyphRuns(Gdiplus::Graphics &graphics, Gdiplus::Font *font, bool eachAlone)
    : m_Graphics(graphics), m_Font(font), m_Batch(false), m_OriginX(0.0f), m_OriginY(0.0f), m_RunBrush(NULL),
      m_RunRight(-1000000), m_CheckedBrush(NULL), m_CheckedOpaque(false), m_DrawCalls(0)
{
    std::memset(m_InkKnown, 0, sizeof(m_InkKnown));
    std::memset(m_InkLeft, 0, sizeof(m_InkLeft));
    std::memset(m_InkWidth, 0, sizeof(m_InkWidth));
    if (font == NULL || eachAlone) {
        return;
    }
    const Gdiplus::Unit unit = font->GetUnit();
    const Gdiplus::Unit page = graphics.GetPageUnit();
    if ((unit != Gdiplus::UnitPixel && unit != Gdiplus::UnitWorld) ||
        (page != Gdiplus::UnitDisplay && page != Gdiplus::UnitPixel) || graphics.GetPageScale() != 1.0f) {
        return;
    }
    Gdiplus::Matrix transform;
    if (graphics.GetTransform(&transform) != Gdiplus::Ok || !transform.IsIdentity()) {
        return;
    }
    Gdiplus::FontFamily family;
    if (font->GetFamily(&family) != Gdiplus::Ok) {
        return;
    }
    const INT style = font->GetStyle();
    const UINT16 em = family.GetEmHeight(style);
    LOGFONTW logFont = {};
    if (em == 0 || font->GetLogFontW(&graphics, &logFont) != Gdiplus::Ok) {
        return;
    }
    std::map<std::wstring, InkTable> &tables = InkTables();
    const std::wstring key = KeyOf(logFont);
    std::map<std::wstring, InkTable>::iterator found = tables.find(key);
    if (found == tables.end()) {
        if (tables.size() >= kMaxInkFonts) {
            tables.clear();
        }
        InkTable table;
        if (!FillInkTable(logFont, table)) {
            return;
        }
        found = tables.insert(std::make_pair(key, table)).first;
    }
    std::memcpy(m_InkKnown, found->second.known, sizeof(m_InkKnown));
    std::memcpy(m_InkLeft, found->second.left, sizeof(m_InkLeft));
    std::memcpy(m_InkWidth, found->second.width, sizeof(m_InkWidth));

    const float size = font->GetSize();
    m_OriginX = size / 6.0f;
    m_OriginY = size * static_cast<float>(family.GetCellAscent(style)) / static_cast<float>(em);
    m_Batch = true;
    m_Glyphs.reserve(128);
    m_Positions.reserve(128);
}

MirlEditGlyphRuns::~MirlEditGlyphRuns()
{
    Flush();
}

bool MirlEditGlyphRuns::IsOpaque(Gdiplus::Brush *brush)
{
    if (brush != m_CheckedBrush) {
        m_CheckedBrush = brush;
        m_CheckedOpaque = IsOpaqueSolid(brush);
    }
    return m_CheckedOpaque;
}

void MirlEditGlyphRuns::Draw(const wchar_t *c, float x, float y, Gdiplus::Brush *brush)
{
    if (m_Font == NULL || brush == NULL) {
        return;
    }
    const unsigned int code = static_cast<unsigned int>(*c);
    if (m_Batch && DrawsAsItsGlyph(*c) && m_InkKnown[code] && IsOpaque(brush)) {
        const float originX = x + m_OriginX;
        // The renderer places a glyph at its origin rounded to the nearest pixel.
        const double column = std::floor(static_cast<double>(originX) + 0.5);
        const int origin = column < -1.0e6 ? -1000000 : (column > 1.0e6 ? 1000000 : static_cast<int>(column));
        const int left = origin + m_InkLeft[code];
        const int right = left + m_InkWidth[code];
        const bool hasInk = m_InkWidth[code] > 0;
        if (brush != m_RunBrush || (hasInk && left < m_RunRight)) {
            Flush();
            m_RunBrush = brush;
        }
        m_Glyphs.push_back(static_cast<UINT16>(code));
        m_Positions.push_back(Gdiplus::PointF(originX, y + m_OriginY));
        if (hasInk && right > m_RunRight) {
            m_RunRight = right;
        }
        return;
    }
    Flush();
    ++m_DrawCalls;
    m_Graphics.DrawString(c, 1, m_Font, Gdiplus::PointF(x, y), brush);
}

void MirlEditGlyphRuns::Flush()
{
    if (!m_Glyphs.empty()) {
        ++m_DrawCalls;
        m_Graphics.DrawDriverString(m_Glyphs.data(), static_cast<INT>(m_Glyphs.size()), m_Font, m_RunBrush,
                                    m_Positions.data(), Gdiplus::DriverStringOptionsCmapLookup, NULL);
        m_Glyphs.clear();
        m_Positions.clear();
    }
    m_RunBrush = NULL;
    m_RunRight = -1000000;
}
