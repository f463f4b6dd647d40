// Drawing the edit's characters in runs: each character at the point the engine computed, as a
// DrawString of that one character would put it, in as few GDI+ calls as leave the pixels the
// same.
//
//   MirlEditGlyphRuns   collects characters with their points and brushes; draws runs
#pragma once

#include "MirlEditEngine.h"
#include "MirlExport.h"

#include <vector>

class MIRL_API MirlEditGlyphRuns {
public:
    // With eachAlone, every character is drawn by a DrawString of its own. The font and the
    // graphics are not owned and must outlive the object.
    MirlEditGlyphRuns(Gdiplus::Graphics &graphics, Gdiplus::Font *font, bool eachAlone);
    // Draws what is still pending.
    ~MirlEditGlyphRuns();
    MirlEditGlyphRuns(const MirlEditGlyphRuns &) = delete;
    MirlEditGlyphRuns &operator=(const MirlEditGlyphRuns &) = delete;

    // The character at c, as DrawString(c, 1, font, (x, y), brush) would draw it. Nothing
    // without a font or a brush.
    void Draw(const wchar_t *c, float x, float y, Gdiplus::Brush *brush);
    // Draws the pending run.
    void Flush();

    // GDI+ text calls made so far, for tests and figures.
    int GetDrawCalls() const { return m_DrawCalls; }

private:
    bool IsOpaque(Gdiplus::Brush *brush);

    Gdiplus::Graphics &m_Graphics;
    Gdiplus::Font *m_Font;
    bool m_Batch;
    float m_OriginX;
    float m_OriginY;
    // The font's Latin-1 glyphs: whether GDI knew each, the first column of its ink box from
    // its origin, and the box's width (0 for a glyph without ink).
    bool m_InkKnown[256];
    int m_InkLeft[256];
    int m_InkWidth[256];
    std::vector<UINT16> m_Glyphs;
    std::vector<Gdiplus::PointF> m_Positions;
    Gdiplus::Brush *m_RunBrush;
    // The column right of the run's ink so far.
    int m_RunRight;
    Gdiplus::Brush *m_CheckedBrush;
    bool m_CheckedOpaque;
    int m_DrawCalls;
};
