// Drawing the edit's characters in runs must give exactly the picture of one DrawString per
// character: compared pixel for pixel, with no tolerance, on a 32-bit DIB (as tests render) and
// on a bitmap compatible with the screen (as windows paint), directly and through the edits of
// the fixture skin.
#include "controls/edit/MirlEditGlyphRuns.h"

#include "MirlEdit.h"
#include "MirlEditTestSupport.h"
#include "MirlPixelTest.h"
#include "MirlTestSupport.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace {

::testing::Environment *const g_Mirl = ::testing::AddGlobalTestEnvironment(new mirltest::EditsEnvironment());

const int kWidth = 420;
const int kHeight = 28;
const Gdiplus::ARGB kPaper = 0xFFFAFAF6;

// Texts that make neighbouring glyphs touch, stand apart, overhang and fall back.
const wchar_t *const kTexts[] = {
    L"Kind of Blue So What Freddie Freeloader Blue in Green All Blues Flamenco Sketches",
    L"WWWW iiii llll MMMM ffff jjjj //// \\\\\\\\ VAVAVA LTLTLT",
    L"0123456789 !\"#$%&'()*+,-./:;<=>?@[]^_`{|}~",
    L"\u00C7a d\u00E9j\u00E0 vu, na\u00EFve \u00C6\u00D8\u00C5 \u00F1\u00F6\u00DF \u00BF\u00A1 \u00A9\u00AE\u00B0",
    L"tab\there, soft\u00ADhyphen, no\u00A0break, code\u0001one",
    L"\u20AC\u2014\u201Cquoted\u201D \u4E2D\u6587 \u0645\u0631\u062D\u0628\u0627 e\u0301",
    L"   blanks   between   words   ",
};

// Where the engine puts each character: truncated advances from the margin, less the measured
// offset when the line fits, as painting does.
std::vector<float> EnginePositions(Gdiplus::Font *measured, const std::wstring &text, bool fits)
{
    MirlEditTextMeasurer measurer(NULL, measured);
    std::vector<Gdiplus::RectF> rects;
    measurer.MeasureCharacters(text, rects);
    std::vector<float> positions;
    int x = 4;
    for (size_t i = 0; i < text.size(); ++i) {
        positions.push_back(fits ? static_cast<float>(x) - rects[i].X : static_cast<float>(x));
        x += static_cast<int>(rects[i].Width);
    }
    return positions;
}

// Draws the text at the positions into dc, in runs or one character at a time; answers the
// GDI+ text calls made.
int DrawText(HDC dc, Gdiplus::Font *font, const std::wstring &text, const std::vector<float> &positions,
             Gdiplus::Brush *ink, bool eachAlone, int selectedFrom = -1, int selectedTo = -1,
             Gdiplus::Brush *selectedInk = NULL)
{
    Gdiplus::Graphics graphics(dc);
    Gdiplus::SolidBrush paper{Gdiplus::Color(kPaper)};
    graphics.FillRectangle(&paper, 0, 0, kWidth, kHeight);
    MirlEditGlyphRuns runs(graphics, font, eachAlone);
    for (size_t i = 0; i < text.size(); ++i) {
        const bool selected = static_cast<int>(i) >= selectedFrom && static_cast<int>(i) < selectedTo;
        runs.Draw(&text[i], positions[i], 6.0f, selected ? selectedInk : ink);
    }
    runs.Flush();
    return runs.GetDrawCalls();
}

// A bitmap compatible with the screen, as the double buffer of a window paints into, read
// back into a DIB.
class ScreenBitmap {
public:
    explicit ScreenBitmap(int width = kWidth, int height = kHeight) : m_Width(width), m_Height(height)
    {
        HDC screen = ::GetDC(NULL);
        m_Dc = ::CreateCompatibleDC(screen);
        m_Bitmap = ::CreateCompatibleBitmap(screen, width, height);
        m_Old = ::SelectObject(m_Dc, m_Bitmap);
        ::ReleaseDC(NULL, screen);
    }
    ~ScreenBitmap()
    {
        ::SelectObject(m_Dc, m_Old);
        ::DeleteObject(m_Bitmap);
        ::DeleteDC(m_Dc);
    }
    ScreenBitmap(const ScreenBitmap &) = delete;
    ScreenBitmap &operator=(const ScreenBitmap &) = delete;
    HDC dc() const { return m_Dc; }
    mirltest::Dib Read() const
    {
        mirltest::Dib copy(m_Width, m_Height);
        ::BitBlt(copy.dc(), 0, 0, m_Width, m_Height, m_Dc, 0, 0, SRCCOPY);
        ::GdiFlush();
        return copy;
    }

private:
    int m_Width;
    int m_Height;
    HDC m_Dc;
    HBITMAP m_Bitmap;
    HGDIOBJ m_Old;
};

struct Compared {
    int differing;
    int runCalls;
    int eachCalls;
};

Compared CompareOnDib(Gdiplus::Font *font, const std::wstring &text, const std::vector<float> &positions,
                      Gdiplus::Brush *ink, int selectedFrom = -1, int selectedTo = -1, Gdiplus::Brush *selectedInk = NULL)
{
    mirltest::Dib runs(kWidth, kHeight);
    mirltest::Dib each(kWidth, kHeight);
    Compared result;
    result.runCalls = DrawText(runs.dc(), font, text, positions, ink, false, selectedFrom, selectedTo, selectedInk);
    result.eachCalls = DrawText(each.dc(), font, text, positions, ink, true, selectedFrom, selectedTo, selectedInk);
    ::GdiFlush();
    result.differing = mirltest::ComparePixels(each, runs, 0).count;
    return result;
}

Compared CompareOnScreenBitmap(Gdiplus::Font *font, const std::wstring &text, const std::vector<float> &positions,
                               Gdiplus::Brush *ink)
{
    ScreenBitmap runs;
    ScreenBitmap each;
    Compared result;
    result.runCalls = DrawText(runs.dc(), font, text, positions, ink, false);
    result.eachCalls = DrawText(each.dc(), font, text, positions, ink, true);
    result.differing = mirltest::ComparePixels(each.Read(), runs.Read(), 0).count;
    return result;
}

class GlyphRunsTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        m_Arial.reset(new Gdiplus::FontFamily(L"Arial"));
        m_Tahoma.reset(new Gdiplus::FontFamily(L"Tahoma"));
        ASSERT_EQ(Gdiplus::Ok, m_Arial->GetLastStatus());
        ASSERT_EQ(Gdiplus::Ok, m_Tahoma->GetLastStatus());
        m_Fonts.emplace_back(new Gdiplus::Font(m_Arial.get(), 11.0f, Gdiplus::FontStyleRegular, Gdiplus::UnitPixel));
        m_Fonts.emplace_back(new Gdiplus::Font(m_Tahoma.get(), 13.0f, Gdiplus::FontStyleRegular, Gdiplus::UnitPixel));
        m_Fonts.emplace_back(new Gdiplus::Font(m_Tahoma.get(), 13.0f, Gdiplus::FontStyleBold, Gdiplus::UnitPixel));
        m_Fonts.emplace_back(new Gdiplus::Font(m_Arial.get(), 15.0f, Gdiplus::FontStyleItalic, Gdiplus::UnitPixel));
        LOGFONTW logFont = {};
        logFont.lfHeight = -13;
        wcscpy(logFont.lfFaceName, L"MS Sans Serif");
        HDC screen = ::GetDC(NULL);
        m_Fonts.emplace_back(new Gdiplus::Font(screen, &logFont));
        ::ReleaseDC(NULL, screen);
        for (const std::unique_ptr<Gdiplus::Font> &font : m_Fonts) {
            ASSERT_EQ(Gdiplus::Ok, font->GetLastStatus());
        }
    }

    std::unique_ptr<Gdiplus::FontFamily> m_Arial;
    std::unique_ptr<Gdiplus::FontFamily> m_Tahoma;
    std::vector<std::unique_ptr<Gdiplus::Font>> m_Fonts;
};

} // namespace

TEST_F(GlyphRunsTest, RunsPaintExactlyWhatEachCharacterAlonePaints)
{
    Gdiplus::SolidBrush ink{Gdiplus::Color(0xFF141414)};
    for (size_t f = 0; f < m_Fonts.size(); ++f) {
        for (const wchar_t *text : kTexts) {
            for (int fits = 0; fits < 2; ++fits) {
                // The table measured in the drawing font, and in another one, as a single-line
                // edit draws in its own face.
                for (int other = 0; other < 2; ++other) {
                    Gdiplus::Font *measured = m_Fonts[other ? (f + 1) % m_Fonts.size() : f].get();
                    const std::vector<float> positions = EnginePositions(measured, text, fits != 0);
                    SCOPED_TRACE(::testing::Message() << "font " << f << ", measured in " << (other ? "another" : "it")
                                                      << ", fits " << fits << ", text " << mirltest::detail::Narrow(text));
                    const Compared dib = CompareOnDib(m_Fonts[f].get(), text, positions, &ink);
                    EXPECT_EQ(0, dib.differing);
                    EXPECT_EQ(static_cast<int>(wcslen(text)), dib.eachCalls);
                    const Compared screen = CompareOnScreenBitmap(m_Fonts[f].get(), text, positions, &ink);
                    EXPECT_EQ(0, screen.differing);
                }
            }
        }
    }
}

TEST_F(GlyphRunsTest, PlainTextTakesFarFewerCallsThanCharacters)
{
    Gdiplus::SolidBrush ink{Gdiplus::Color(0xFF141414)};
    const std::wstring text = kTexts[0];
    const std::vector<float> positions = EnginePositions(m_Fonts[1].get(), text, true);
    const Compared result = CompareOnDib(m_Fonts[1].get(), text, positions, &ink);
    EXPECT_EQ(0, result.differing);
    EXPECT_EQ(static_cast<int>(text.size()), result.eachCalls);
    EXPECT_LE(result.runCalls * 4, static_cast<int>(text.size())) << result.runCalls << " calls";
}

TEST_F(GlyphRunsTest, ASelectionSplitsTheRunsByBrush)
{
    Gdiplus::SolidBrush ink{Gdiplus::Color(0xFF141414)};
    Gdiplus::SolidBrush selected{Gdiplus::Color(0xFFFFFFFF)};
    const std::wstring text = L"hello world and more";
    const std::vector<float> positions = EnginePositions(m_Fonts[1].get(), text, true);
    const Compared result = CompareOnDib(m_Fonts[1].get(), text, positions, &ink, 6, 11, &selected);
    EXPECT_EQ(0, result.differing);
    EXPECT_GE(result.runCalls, 3); // before, inside and after the selection
    EXPECT_LT(result.runCalls, static_cast<int>(text.size()));
}

TEST_F(GlyphRunsTest, ATranslucentBrushDrawsEachCharacterAlone)
{
    // Glyphs of one call that overlap would be blended once instead of twice.
    Gdiplus::SolidBrush ink{Gdiplus::Color(0x80C81E1E)};
    const std::wstring text = kTexts[1];
    const std::vector<float> positions = EnginePositions(m_Fonts[0].get(), text, false);
    const Compared result = CompareOnDib(m_Fonts[0].get(), text, positions, &ink);
    EXPECT_EQ(0, result.differing);
    EXPECT_EQ(static_cast<int>(text.size()), result.runCalls);
}

TEST_F(GlyphRunsTest, CharactersOutsideLatin1sPrintableRangeAreDrawnAlone)
{
    Gdiplus::SolidBrush ink{Gdiplus::Color(0xFF141414)};
    // A tab, a soft hyphen and a no-break blank between plain runs: three runs and three
    // characters alone.
    const std::wstring text = L"ab\tcd\u00ADef\u00A0gh";
    const std::vector<float> positions = EnginePositions(m_Fonts[1].get(), text, true);
    const Compared result = CompareOnDib(m_Fonts[1].get(), text, positions, &ink);
    EXPECT_EQ(0, result.differing);
    EXPECT_EQ(7, result.runCalls);
}

TEST_F(GlyphRunsTest, WithoutAFontOrABrushNothingIsDrawn)
{
    Gdiplus::SolidBrush ink{Gdiplus::Color(0xFF141414)};
    mirltest::Dib picture(kWidth, kHeight);
    picture.Fill(kPaper);
    {
        Gdiplus::Graphics graphics(picture.dc());
        MirlEditGlyphRuns noFont(graphics, NULL, false);
        noFont.Draw(L"a", 4.0f, 4.0f, &ink);
        noFont.Flush();
        EXPECT_EQ(0, noFont.GetDrawCalls());
        MirlEditGlyphRuns noBrush(graphics, m_Fonts[0].get(), false);
        noBrush.Draw(L"a", 4.0f, 4.0f, NULL);
        noBrush.Flush();
        EXPECT_EQ(0, noBrush.GetDrawCalls());
    }
    ::GdiFlush();
    for (int y = 0; y < kHeight; ++y) {
        for (int x = 0; x < kWidth; ++x) {
            ASSERT_EQ(kPaper & 0xFFFFFF, picture.Pixel(x, y)) << x << ", " << y;
        }
    }
}

namespace {

class EditRunsTest : public mirltest::EditsFrameTest {
protected:
    // The edit painted in runs, then one character at a time: the number of pixels that differ.
    static int PaintedDifference(MirlEdit *edit)
    {
        edit->SetDrawEachCharacter(false);
        mirltest::Dib runs = mirltest::RenderWindow(edit->m_hWnd);
        edit->SetDrawEachCharacter(true);
        mirltest::Dib each = mirltest::RenderWindow(edit->m_hWnd);
        edit->SetDrawEachCharacter(false);
        return mirltest::ComparePixels(each, runs, 0).count;
    }
};

} // namespace

TEST_F(EditRunsTest, EveryEditOfTheSkinPaintsTheSameInRuns)
{
    // Bordered with a watermark, multi-line, transparent, and plain single-line.
    const unsigned long ids[] = {201, 202, 204, 205};
    for (unsigned long id : ids) {
        MirlEdit *edit = mirltest::EditOf(m_Frame, id);
        ASSERT_NE(nullptr, edit);
        for (const wchar_t *text : kTexts) {
            mirltest::FillEdit(edit, text);
            const int length = static_cast<int>(wcslen(text));
            // Nothing selected; the end selected by keys; the middle selected while dragging;
            // and scrolled to the end by a typed character.
            for (int state = 0; state < 4; ++state) {
                SCOPED_TRACE(::testing::Message() << "edit " << id << ", state " << state << ", text "
                                                  << mirltest::detail::Narrow(text));
                if (state == 1) {
                    edit->SetSelAnchor(length / 2);
                    edit->SetCursorPosition(length);
                    edit->SetHasSelection(true);
                } else if (state == 2) {
                    edit->SetHasSelection(false);
                    edit->SetHighlighting(true);
                    edit->SetSelAnchor(length / 4);
                    edit->SetCursorPosition(length * 3 / 4);
                } else if (state == 3) {
                    edit->SetHighlighting(false);
                    edit->SetHasSelection(false);
                    edit->SetCursorPosition(length);
                    ::SendMessageW(edit->m_hWnd, WM_CHAR, L'!', 1);
                }
                EXPECT_EQ(0, PaintedDifference(edit));
            }
        }
    }
}

TEST_F(EditRunsTest, ALineOfPlainTextIsDrawnInAFewCalls)
{
    MirlEdit *edit = mirltest::EditOf(m_Frame, 205);
    ASSERT_NE(nullptr, edit);
    mirltest::FillEdit(edit, L"Kind of Blue So What");
    mirltest::RenderWindow(edit->m_hWnd);
    const int runs = edit->GetLastTextDrawCalls();
    edit->SetDrawEachCharacter(true);
    mirltest::RenderWindow(edit->m_hWnd);
    const int each = edit->GetLastTextDrawCalls();
    edit->SetDrawEachCharacter(false);
    EXPECT_GT(runs, 0);
    EXPECT_LE(runs * 4, each) << runs << " runs against " << each << " characters drawn";
}

namespace {

// What the edit shows on the screen after the system's own WM_PAINT, read from its window.
mirltest::Dib PaintedOnScreen(HWND edit)
{
    ::InvalidateRect(edit, NULL, TRUE);
    ::UpdateWindow(edit);
    RECT client = {};
    ::GetClientRect(edit, &client);
    mirltest::Dib shown(client.right, client.bottom);
    HDC dc = ::GetDC(edit);
    ::BitBlt(shown.dc(), 0, 0, client.right, client.bottom, dc, 0, 0, SRCCOPY);
    ::ReleaseDC(edit, dc);
    ::GdiFlush();
    return shown;
}

// What the double buffer paints for WM_PAINT with a device context, into a bitmap of the
// screen's kind.
mirltest::Dib PaintedByTheDoubleBuffer(HWND edit)
{
    RECT client = {};
    ::GetClientRect(edit, &client);
    ScreenBitmap target(client.right, client.bottom);
    ::SendMessageW(edit, WM_PAINT, reinterpret_cast<WPARAM>(target.dc()), 0);
    return target.Read();
}

} // namespace

TEST_F(EditRunsTest, TheKeptPicturePaintsWhatTheDoubleBufferPaints)
{
    MirlEdit *edit = mirltest::EditOf(m_Frame, 201);
    ASSERT_NE(nullptr, edit);
    mirltest::FillEdit(edit, L"Kind of Blue So What");
    edit->SetSelAnchor(5);
    edit->SetCursorPosition(12);
    edit->SetHasSelection(true);
    const mirltest::Dib shown = PaintedOnScreen(edit->m_hWnd);
    const mirltest::Dib buffered = PaintedByTheDoubleBuffer(edit->m_hWnd);
    EXPECT_EQ(0, mirltest::ComparePixels(buffered, shown, 0).count);
    EXPECT_EQ(0xFAFAF6u, buffered.Pixel(2, 2)); // the paper, not an empty picture

    // A new size makes a new picture: the wider edit shows its whole border.
    RECT place = {};
    ::GetWindowRect(edit->m_hWnd, &place);
    ::MapWindowPoints(NULL, m_Frame.m_hWnd, reinterpret_cast<POINT *>(&place), 2);
    ::MoveWindow(edit->m_hWnd, place.left, place.top, place.right - place.left + 60, place.bottom - place.top + 6, TRUE);
    const mirltest::Dib wider = PaintedOnScreen(edit->m_hWnd);
    const mirltest::Dib widerBuffered = PaintedByTheDoubleBuffer(edit->m_hWnd);
    ASSERT_EQ(widerBuffered.width(), wider.width());
    EXPECT_EQ(0, mirltest::ComparePixels(widerBuffered, wider, 0).count);
    EXPECT_EQ(0xC81E1Eu, wider.Pixel(wider.width() - 1, wider.height() - 1));
}
