// What the edit paints: background or veil, watermark, selection, text and border, compared
// pixel by pixel and with goldens.
#include "MirlEdit.h"
#include "MirlPixelTest.h"
#include "MirlTestSupport.h"
#include "MirlEditTestSupport.h"
#include "MirlLeakCounters.h"

#include <gtest/gtest.h>

#include <string>

namespace {

::testing::Environment *const g_Mirl = ::testing::AddGlobalTestEnvironment(new mirltest::EditsEnvironment());

const DWORD kPaper = 0xFAFAF6;
const DWORD kWater = 0x808080;
const DWORD kSel = 0x285AC8;
const DWORD kBorder = 0xC81E1E;

// How many pixels of a picture have exactly that colour.
int CountColour(const mirltest::Dib &picture, DWORD colour)
{
    int n = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            n += picture.Pixel(x, y) == colour ? 1 : 0;
        }
    }
    return n;
}

class EditPaintTest : public mirltest::EditsFrameTest {
protected:
    MirlEdit *Edit(unsigned long id) { return mirltest::EditOf(m_Frame, id); }
    static void Fill(MirlEdit *edit, const wchar_t *text) { mirltest::FillEdit(edit, text); }
};

} // namespace

TEST_F(EditPaintTest, AnEmptyUnfocusedEditShowsItsWatermark)
{
    MirlEdit *edit = Edit(201);
    mirltest::Dib picture = mirltest::RenderWindow(edit->m_hWnd);
    EXPECT_EQ(kBorder, picture.Pixel(0, 0));
    EXPECT_EQ(kBorder, picture.Pixel(picture.width() - 1, picture.height() - 1));
    EXPECT_EQ(kPaper, picture.Pixel(2, 2));
    EXPECT_GT(CountColour(picture, kWater), 0); // the watermark's solid strokes
    EXPECT_TRUE(mirltest::MatchesGolden(picture, "edit_watermark"));

    ::SetFocus(edit->m_hWnd);
    ASSERT_TRUE(edit->HasFocusMark());
    mirltest::Dib focused = mirltest::RenderWindow(edit->m_hWnd);
    EXPECT_EQ(0, CountColour(focused, kWater));

    ::SetFocus(m_Frame.m_hWnd);
    Fill(edit, L"x");
    mirltest::Dib typed = mirltest::RenderWindow(edit->m_hWnd);
    EXPECT_EQ(0, CountColour(typed, kWater));
}

TEST_F(EditPaintTest, AfterSetTextTheWholeTextShowsSelectedWithoutFocus)
{
    MirlEdit *edit = Edit(201);
    ::SendMessageW(edit->m_hWnd, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(L"Blue Train"));
    ASSERT_FALSE(edit->HasFocusMark());
    mirltest::Dib picture = mirltest::RenderWindow(edit->m_hWnd);
    // The selection's background runs from the line's left edge over the text's width.
    const MirlEditLine &line = edit->GetLines()[0];
    const int top = static_cast<int>(line.y);
    EXPECT_EQ(kSel, picture.Pixel(static_cast<int>(line.x), top));
    EXPECT_EQ(kPaper, picture.Pixel(static_cast<int>(line.x) - 1, top));
    EXPECT_EQ(kSel, picture.Pixel(static_cast<int>(line.x) + edit->GetSingleLineWidth() - 1, top + 1));
    EXPECT_EQ(kPaper, picture.Pixel(static_cast<int>(line.x) + edit->GetSingleLineWidth() + 1, top + 1));
    EXPECT_TRUE(mirltest::MatchesGolden(picture, "edit_settext_selected"));
}

TEST_F(EditPaintTest, APartOfTheTextSelectedByKeys)
{
    MirlEdit *edit = Edit(201);
    Fill(edit, L"hello world");
    edit->SetSelAnchor(6);
    edit->SetCursorPosition(11);
    edit->SetHasSelection(true);
    mirltest::Dib picture = mirltest::RenderWindow(edit->m_hWnd);
    int start = 4;
    for (int i = 0; i < 6; ++i) {
        start += edit->CharWidth(i);
    }
    const int top = static_cast<int>(edit->GetLines()[0].y);
    EXPECT_EQ(kPaper, picture.Pixel(start - 1, top));
    EXPECT_EQ(kSel, picture.Pixel(start, top));
    EXPECT_TRUE(mirltest::MatchesGolden(picture, "edit_selection"));
}

TEST_F(EditPaintTest, ALongSingleLineTextScrolledToItsEnd)
{
    MirlEdit *edit = Edit(205);
    Fill(edit, L"Kind of Blue - So What - Freddie Freeloader");
    // The caret at the end: typing one character scrolls the view to show it.
    ::SendMessageW(edit->m_hWnd, WM_CHAR, L'!', 1);
    ASSERT_GT(edit->GetStartChar(), 0);
    mirltest::Dib picture = mirltest::RenderWindow(edit->m_hWnd);
    EXPECT_GT(edit->GetStartChar(), 0);
    EXPECT_TRUE(mirltest::MatchesGolden(picture, "edit_scrolled"));
}

TEST_F(EditPaintTest, AnExactFitTakesTheScrolledPath)
{
    MirlEdit *edit = Edit(205);
    Fill(edit, L"abc");
    const int width = edit->GetSingleLineWidth();
    // Width plus both margins meets the client exactly: drawn from the view, which stays.
    ::SetWindowPos(edit->m_hWnd, nullptr, 0, 0, width + 8, 22, SWP_NOMOVE | SWP_NOZORDER);
    edit->BuildCharRects();
    edit->SetStartChar(1);
    mirltest::RenderWindow(edit->m_hWnd);
    EXPECT_EQ(1, edit->GetStartChar());
    // One pixel more and it fits: the view returns to the start.
    ::SetWindowPos(edit->m_hWnd, nullptr, 0, 0, width + 9, 22, SWP_NOMOVE | SWP_NOZORDER);
    edit->BuildCharRects();
    mirltest::RenderWindow(edit->m_hWnd);
    EXPECT_EQ(0, edit->GetStartChar());
}

TEST_F(EditPaintTest, AMultiLineSelectionOverThreeLines)
{
    MirlEdit *edit = Edit(202);
    Fill(edit, L"one two three four five six seven");
    ASSERT_GE(edit->GetLineCount(), 3);
    edit->SetSelAnchor(2);
    edit->SetCursorPosition(30);
    edit->SetHasSelection(true);
    mirltest::Dib picture = mirltest::RenderWindow(edit->m_hWnd);
    EXPECT_GT(CountColour(picture, kSel), 100);
    EXPECT_TRUE(mirltest::MatchesGolden(picture, "edit_multiline_selection"));
}

TEST_F(EditPaintTest, ATransparentEditIsGreyAndVeiledWhenFocused)
{
    MirlEdit *edit = Edit(204);
    mirltest::Dib solid = mirltest::RenderWindow(edit->m_hWnd);
    EXPECT_EQ(0xD7D7D7u, solid.Pixel(1, 1));
    EXPECT_EQ(0xD7D7D7u, solid.Pixel(solid.width() - 1, solid.height() - 1));
    ::SetFocus(edit->m_hWnd);
    mirltest::Dib veiled = mirltest::RenderWindow(edit->m_hWnd);
    // 0xC8 of the grey over the paper: each channel between the two.
    const DWORD veil = veiled.Pixel(1, 1);
    EXPECT_NE(0xD7D7D7u, veil);
    EXPECT_GE(veil & 0xFF, 0xD7u);
    EXPECT_TRUE(mirltest::MatchesGolden(solid, "edit_transparent"));
}

TEST_F(EditPaintTest, ASkinWithoutTheEditColoursPaintsAllInGrey)
{
    m_Frame.DestroyWindow();
    MirlUnIntialize();
    MirlIntialize(mirltest::SkinPath(L"edits_bare").c_str(), 1033);
    {
        MirlWindow frame;
        ASSERT_NE(nullptr, frame.Create(nullptr, nullptr, static_cast<LPRECT>(nullptr), L"Edits"));
        MirlEdit *edit = dynamic_cast<MirlEdit *>(frame.GetWindowItem(201));
        ASSERT_NE(nullptr, edit);
        EXPECT_EQ(0xFF808080u, edit->GetSelColor());
        EXPECT_EQ(0xFF808080u, edit->GetSelTextColor());
        EXPECT_EQ(0xFF808080u, edit->GetBorderColor());
        // The template's text starts selected: its characters vanish into their background.
        mirltest::Dib picture = mirltest::RenderWindow(edit->m_hWnd);
        EXPECT_EQ(kWater, picture.Pixel(0, 0));
        const MirlEditLine &line = edit->GetLines()[0];
        const int top = static_cast<int>(line.y);
        const int height = static_cast<int>(line.height);
        // The selection's fill is the sum of the truncated character widths, which falls short of
        // the truncated line width wherever the font measures fractional widths.
        int selectionRight = static_cast<int>(line.x);
        for (const Gdiplus::RectF &rect : edit->GetCharRects()) {
            selectionRight += static_cast<int>(rect.Width);
        }
        EXPECT_GT(selectionRight - static_cast<int>(line.x), 40); // "hello world" in 13-pixel Tahoma
        int differing = 0;
        for (int y = top; y < top + height; ++y) {
            for (int x = static_cast<int>(line.x); x < selectionRight; ++x) {
                differing += picture.Pixel(x, y) != kWater ? 1 : 0;
            }
        }
        EXPECT_EQ(0, differing);
        // Past the selection the paper shows again.
        EXPECT_EQ(0xFAFAF6u, picture.Pixel(selectionRight, top + height / 2));
        EXPECT_TRUE(mirltest::MatchesGolden(picture, "edit_grey_fallback"));
        frame.DestroyWindow();
    }
    MirlUnIntialize();
    MirlIntialize(mirltest::SkinPath(L"edits").c_str(), 1033);
}

namespace {

// A frame of edits made, typed into, selected, painted and destroyed.
void CreateTypePaintDestroy()
{
    MirlWindow frame;
    ASSERT_NE(nullptr, frame.Create(nullptr, nullptr, static_cast<LPRECT>(nullptr), L"Edits"));
    for (unsigned long id = 201; id <= 205; ++id) {
        MirlEdit *edit = mirltest::EditOf(frame, id);
        ASSERT_NE(nullptr, edit);
        for (const wchar_t *c = L"Kind of Blue 1959"; *c != L'\0'; ++c) {
            ::SendMessageW(edit->m_hWnd, WM_CHAR, *c, 1);
        }
        ::SendMessageW(edit->m_hWnd, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(6, 8));
        ::SendMessageW(edit->m_hWnd, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(60, 8));
        ::SendMessageW(edit->m_hWnd, WM_LBUTTONUP, 0, MAKELPARAM(60, 8));
        mirltest::RenderWindow(edit->m_hWnd);
    }
    frame.DestroyWindow();
}

} // namespace

TEST(EditLeaks, CreateTypePaintDestroyCyclesLeaveNoGrowth)
{
    mirltest::GdiplusSession gdiplus;
    // Warm-up: classes registered, the measuring table and the system's caches filled.
    CreateTypePaintDestroy();
    const size_t heapBefore = mirltest::BusyHeapBytes();
    const int gdiBefore = mirltest::LiveGdiObjects();
    for (int i = 0; i < 10; ++i) {
        CreateTypePaintDestroy();
    }
    const size_t heapAfter = mirltest::BusyHeapBytes();
    const int gdiAfter = mirltest::LiveGdiObjects();
    EXPECT_EQ(gdiBefore, gdiAfter);
    // Fifty edits went by: the smallest leak per edit would be 8 KB.
    EXPECT_LT(static_cast<long long>(heapAfter) - static_cast<long long>(heapBefore), 2048)
        << "before " << heapBefore << " after " << heapAfter;
}
