// The edit's text engine without a window: a stand-in measurer gives fixed widths, so every
// line, caret and scroll position below is exact arithmetic.
#include "MirlEditEngine.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

// Widths chosen so that truncation shows: 'a' 7.5 (7 pixels), 'm' 8.0, 'i' 3.25, 'W' 20.5,
// a blank 4.0, U+200B nothing. Every rectangle sits at X 1.0.
class FixedMeasurer : public MirlEditMeasurer {
public:
    static float WidthOf(wchar_t c)
    {
        switch (c) {
        case L'm':
            return 8.0f;
        case L'i':
            return 3.25f;
        case L'W':
            return 20.5f;
        case L' ':
            return 4.0f;
        case 0x200B:
            return 0.0f;
        default:
            return 7.5f;
        }
    }
    void MeasureCharacters(const std::wstring &text, std::vector<Gdiplus::RectF> &rects) override
    {
        ++calls;
        rects.clear();
        for (wchar_t c : text) {
            rects.push_back(Gdiplus::RectF(1.0f, 2.0f, WidthOf(c), 16.0f));
        }
    }
    int calls = 0;
};

// The engine with its screen hooks counted.
class ProbeEngine : public MirlEditEngine {
public:
    ProbeEngine() : MirlEditEngine(m_Buffer)
    {
        SetMeasurer(&m_Measurer);
        SetLineHeight(14);
        SetClientRect(RECT{0, 0, 100, 20});
    }
    void Set(const wchar_t *text, unsigned long style = 0)
    {
        m_Buffer = text;
        SetEditStyle(style);
        BuildCharRects();
    }
    std::wstring m_Buffer;
    FixedMeasurer m_Measurer;
    int m_Carets = 0;
    int m_Redraws = 0;
    int m_Focus = 0;
    POINT m_LastCaret = {-1, -1};

protected:
    void PlaceCaret(int x, int y) override
    {
        ++m_Carets;
        m_LastCaret = POINT{x, y};
    }
    void RedrawEdit() override { ++m_Redraws; }
    void FocusEdit() override { ++m_Focus; }
};

void ExpectLine(const MirlEditLine &line, int first, int count, float x, float y, float width, float height)
{
    EXPECT_EQ(first, line.first);
    EXPECT_EQ(count, line.count);
    EXPECT_FLOAT_EQ(x, line.x);
    EXPECT_FLOAT_EQ(y, line.y);
    EXPECT_FLOAT_EQ(width, line.width);
    EXPECT_FLOAT_EQ(height, line.height);
}

} // namespace

// ---- tables ----

TEST(EditEngine, EmptyTextHasNoLinesAndTheCaretStandsByTheAlignment)
{
    ProbeEngine engine;
    engine.Set(L"");
    EXPECT_TRUE(engine.GetLines().empty());
    EXPECT_TRUE(engine.GetCharRects().empty());
    EXPECT_EQ(0, engine.GetLineCount());
    EXPECT_EQ(0, engine.GetSingleLineWidth());
    EXPECT_EQ(0, engine.GetSingleLineHeight());
    EXPECT_EQ(14, engine.GetTotalHeight());
    EXPECT_EQ(0, engine.m_Measurer.calls);

    engine.SetClientRect(RECT{0, 0, 101, 31});
    engine.SetCursorPos(0);
    EXPECT_EQ(3, engine.GetCaretX());
    EXPECT_EQ(8, engine.GetCaretY()); // (31 - 14) / 2
    EXPECT_EQ(1, engine.m_Carets);

    engine.SetEditStyle(ES_CENTER);
    engine.SetCursorPos(0);
    EXPECT_EQ(50, engine.GetCaretX());
    EXPECT_EQ(8, engine.GetCaretY());

    engine.SetEditStyle(ES_RIGHT);
    engine.SetCursorPos(0);
    EXPECT_EQ(101, engine.GetCaretX());

    engine.SetEditStyle(ES_MULTILINE);
    engine.SetCursorPos(0);
    EXPECT_EQ(3, engine.GetCaretX());
    EXPECT_EQ(0, engine.GetCaretY());

    engine.SetClientRect(RECT{10, 0, 101, 31});
    engine.SetEditStyle(0);
    engine.SetCursorPos(0);
    EXPECT_EQ(13, engine.GetCaretX());
}

TEST(EditEngine, SingleLineIsOneCentredLineHoweverWide)
{
    ProbeEngine engine;
    engine.Set(L"aaaaaaaaaaaaaaaaaaaa"); // 20 x 7.5 = 150, in a client 100 wide
    ASSERT_EQ(1u, engine.GetLines().size());
    ExpectLine(engine.GetLines()[0], 0, 20, 4.0f, 3.0f, 150.0f, 14.0f);
    ASSERT_EQ(20u, engine.GetCharRects().size());
    EXPECT_FLOAT_EQ(1.0f, engine.GetCharRects()[3].X);
    EXPECT_FLOAT_EQ(7.5f, engine.GetCharRects()[3].Width);
    EXPECT_EQ(150, engine.GetSingleLineWidth());
    EXPECT_EQ(14, engine.GetSingleLineHeight());
    EXPECT_EQ(14, engine.GetTotalHeight());
}

TEST(EditEngine, MultiLineBreaksOnTruncatedSumsWithoutTheLeftMargin)
{
    ProbeEngine engine;
    engine.SetClientRect(RECT{0, 0, 40, 60});
    // Truncated: 7, 14, 21, 28, 35 fit under 40 - 4 = 36 although 5 x 7.5 = 37.5 does not.
    engine.Set(L"aaaaaa", ES_MULTILINE);
    ASSERT_EQ(2u, engine.GetLines().size());
    ExpectLine(engine.GetLines()[0], 0, 5, 4.0f, 0.0f, 37.5f, 14.0f);
    ExpectLine(engine.GetLines()[1], 5, 1, 4.0f, 14.0f, 7.5f, 14.0f);
    EXPECT_EQ(28, engine.GetTotalHeight());
}

TEST(EditEngine, TheRunningWidthRestartsWithoutTheClientLeft)
{
    ProbeEngine engine;
    engine.SetClientRect(RECT{20, 5, 60, 80});
    // The first line counts from 20: 27 .. 55 fit under 56. The next lines count from 0, so
    // eight characters fit on the second.
    engine.Set(L"aaaaaaaaaaaaaa", ES_MULTILINE);
    ASSERT_EQ(3u, engine.GetLines().size());
    ExpectLine(engine.GetLines()[0], 0, 5, 24.0f, 5.0f, 37.5f, 14.0f);
    ExpectLine(engine.GetLines()[1], 5, 8, 24.0f, 19.0f, 60.0f, 14.0f);
    ExpectLine(engine.GetLines()[2], 13, 1, 24.0f, 33.0f, 7.5f, 14.0f);
}

TEST(EditEngine, LineFeedsBreakNoLine)
{
    ProbeEngine engine;
    engine.SetClientRect(RECT{0, 0, 200, 60});
    engine.Set(L"a\nb\r\nc", ES_MULTILINE);
    ASSERT_EQ(1u, engine.GetLines().size());
    EXPECT_EQ(6, engine.GetLines()[0].count);
}

TEST(EditEngine, AFirstCharacterWiderThanTheRoomLeavesAnEmptyFirstLine)
{
    ProbeEngine engine;
    engine.SetClientRect(RECT{0, 0, 20, 60});
    engine.Set(L"W", ES_MULTILINE);
    ASSERT_EQ(2u, engine.GetLines().size());
    ExpectLine(engine.GetLines()[0], 0, 0, 4.0f, 0.0f, 0.0f, 14.0f);
    ExpectLine(engine.GetLines()[1], 0, 1, 4.0f, 14.0f, 20.5f, 14.0f);
}

TEST(EditEngine, ALastLineOfZeroWidthCharactersIsNotAppended)
{
    ProbeEngine engine;
    engine.SetClientRect(RECT{0, 0, 20, 60});
    // W overflows (20 > 16) and the running width stays 20, so the zero-width unit breaks too.
    engine.Set(L"W\x200B", ES_MULTILINE);
    ASSERT_EQ(2u, engine.GetCharRects().size());
    ASSERT_EQ(2u, engine.GetLines().size());
    ExpectLine(engine.GetLines()[0], 0, 0, 4.0f, 0.0f, 0.0f, 14.0f);
    ExpectLine(engine.GetLines()[1], 0, 1, 4.0f, 14.0f, 20.5f, 14.0f);

    engine.Set(L"\x200B\x200B");
    EXPECT_EQ(2u, engine.GetCharRects().size());
    EXPECT_EQ(0, engine.GetLineCount());
    EXPECT_EQ(0, engine.GetSingleLineWidth());
}

TEST(EditEngine, GetLineCountDoesNotRebuild)
{
    ProbeEngine engine;
    engine.Set(L"abc");
    const int calls = engine.m_Measurer.calls;
    engine.m_Buffer.clear();
    EXPECT_EQ(1, engine.GetLineCount());
    EXPECT_EQ(calls, engine.m_Measurer.calls);
    EXPECT_EQ(0, engine.GetSingleLineWidth());
    EXPECT_EQ(0, engine.GetLineCount());
}

// ---- lines, points and characters ----

TEST(EditEngine, AnEndThatTheNextLineContinuesShowsAboveAndBelongsBelow)
{
    ProbeEngine engine;
    engine.SetClientRect(RECT{0, 0, 40, 60});
    engine.Set(L"aaaaaa", ES_MULTILINE);
    EXPECT_EQ(1, engine.FindLineForChar(5));
    engine.SetCursorPos(5);
    EXPECT_EQ(39, engine.GetCaretX()); // 4 + 5 x 7, at the end of the upper line
    EXPECT_EQ(0, engine.GetCaretY());
    EXPECT_EQ(0, engine.FindLineForChar(4));
    EXPECT_EQ(1, engine.FindLineForChar(6));
    EXPECT_EQ(0, engine.FindLineForChar(99)); // no line holds it
    engine.Set(L"");
    EXPECT_EQ(-1, engine.FindLineForChar(0));
}

TEST(EditEngine, FindLineForPointClampsBelowAndRefusesAbove)
{
    ProbeEngine engine;
    engine.Set(L"abc"); // one line at y 3, 14 high
    POINT above = {10, 2};
    EXPECT_EQ(-1, engine.FindLineForPoint(above));
    POINT inside = {10, 16};
    EXPECT_EQ(0, engine.FindLineForPoint(inside));
    EXPECT_EQ(16, inside.y);
    POINT edge = {10, 17}; // 3 + 14 is not less than 17, and not greater either
    EXPECT_EQ(-1, engine.FindLineForPoint(edge));
    POINT below = {10, 18};
    EXPECT_EQ(0, engine.FindLineForPoint(below));
    EXPECT_EQ(3, below.y);
}

TEST(EditEngine, ClickingAboveACentredLineLeavesTheCaretAndBelowClampsToIt)
{
    ProbeEngine engine;
    engine.Set(L"aaaa");
    engine.SetCursorPosition(2);
    engine.SetCursorPos(2);
    const int caretX = engine.GetCaretX();
    POINT above = {20, 1};
    EXPECT_EQ(2, engine.ComputeCaretPosNew(above));
    EXPECT_EQ(caretX, engine.GetCaretX());
    EXPECT_EQ(3, engine.GetCaretY());
    POINT below = {20, 19};
    // Character 2 spans 18 .. 25.5; 20 is in its left half.
    EXPECT_EQ(2, engine.ComputeCaretPosNew(below));
    EXPECT_EQ(18, engine.GetCaretX());
    EXPECT_EQ(3, engine.GetCaretY());
}

TEST(EditEngine, TheMiddleOfACharacterCountsAsItsRightHalf)
{
    ProbeEngine engine;
    engine.Set(L"mm"); // m spans 4 .. 12, its middle at 8
    POINT left = {7, 10};
    EXPECT_EQ(0, engine.ComputeCaretPosNew(left));
    EXPECT_EQ(4, engine.GetCaretX());
    POINT middle = {8, 10};
    EXPECT_EQ(1, engine.ComputeCaretPosNew(middle));
    EXPECT_EQ(12, engine.GetCaretX());
    POINT second = {17, 10};
    EXPECT_EQ(2, engine.ComputeCaretPosNew(second));
    EXPECT_EQ(20, engine.GetCaretX());
    // ComputeCaretPosNew answers; only the margin branch writes the cursor itself.
    EXPECT_EQ(0, engine.GetCursorPosition());
}

TEST(EditEngine, HitTestingWalksTruncatedWidths)
{
    ProbeEngine engine;
    engine.Set(L"aaa"); // chars start at 4, 11, 18: truncated steps of a 7.5 width
    POINT p = {18, 10};
    EXPECT_EQ(2, engine.ComputeCaretPosNew(p));
    EXPECT_EQ(18, engine.GetCaretX());
    POINT q = {22, 10}; // 18 + 3.75 = 21.75 <= 22
    EXPECT_EQ(3, engine.ComputeCaretPosNew(q));
    EXPECT_EQ(25, engine.GetCaretX()); // 18 + 7.5 truncated
}

TEST(EditEngine, ClickingLeftOfTheMarginGoesToZeroWhateverTheView)
{
    ProbeEngine engine;
    engine.Set(L"aaaaaaaaaa");
    engine.SetStartChar(3);
    engine.SetCursorPosition(7);
    POINT p = {3, 10};
    EXPECT_EQ(0, engine.ComputeCaretPosNew(p));
    EXPECT_EQ(0, engine.GetCursorPosition());
    EXPECT_EQ(0, engine.GetCaretX());
    EXPECT_EQ(3, engine.GetStartChar());
}

TEST(EditEngine, ClickingPastTheEndOfTheFirstLineGoesToTheEndOfTheText)
{
    ProbeEngine engine;
    engine.SetClientRect(RECT{0, 0, 40, 60});
    engine.Set(L"aaaaaaaaa", ES_MULTILINE); // lines of 5 and 4
    ASSERT_EQ(2, engine.GetLineCount());
    engine.SetCursorPos(2);
    const int caretX = engine.GetCaretX();
    POINT p = {45, 5};
    EXPECT_EQ(9, engine.ComputeCaretPosNew(p));
    EXPECT_EQ(caretX, engine.GetCaretX());
    EXPECT_EQ(0, engine.GetCaretY());
    // At or left of the first rectangle's X the line's first character is the answer: only a
    // multi-line edit gets there, as single-line ones stop at the margin.
    POINT start = {1, 20};
    EXPECT_EQ(5, engine.ComputeCaretPosNew(start));
}

TEST(EditEngine, TheViewOffsetAppliesToEveryLine)
{
    ProbeEngine engine;
    engine.SetClientRect(RECT{0, 0, 40, 60});
    engine.Set(L"aaaaaaaaa", ES_MULTILINE);
    engine.SetStartChar(2);
    POINT p = {5, 16}; // second line, first walked character is 5 + 2
    EXPECT_EQ(7, engine.ComputeCaretPosNew(p));
    EXPECT_EQ(4, engine.GetCaretX());
    EXPECT_EQ(14, engine.GetCaretY());
}

TEST(EditEngine, MoveCursorToLineUsesTheCaretX)
{
    ProbeEngine engine;
    engine.SetClientRect(RECT{0, 0, 40, 60});
    engine.Set(L"aaaaaaa", ES_MULTILINE); // lines of 5 and 2
    engine.SetCursorPosition(3);
    engine.SetCursorPos(3); // caret at 25
    EXPECT_EQ(3, engine.MoveCursorToLine(-1));
    EXPECT_EQ(3, engine.MoveCursorToLine(2));
    EXPECT_EQ(3, engine.MoveCursorToLine(0));
    // Onto a line too short to reach x 25: the end of the whole text.
    engine.SetCursorPos(3);
    EXPECT_EQ(7, engine.MoveCursorToLine(1));
    engine.SetCursorPos(6);
    EXPECT_EQ(11, engine.GetCaretX());
    EXPECT_EQ(1, engine.MoveCursorToLine(0));
}

// ---- SetCursorPos and the guard ----

TEST(EditEngine, SetCursorPosSumsTruncatedWidthsFromTheView)
{
    ProbeEngine engine;
    engine.Set(L"aaaaa");
    engine.SetCursorPos(3);
    EXPECT_EQ(25, engine.GetCaretX()); // 4 + 3 x 7
    EXPECT_EQ(3, engine.GetCaretY());
    EXPECT_EQ(25, engine.m_LastCaret.x);
    EXPECT_EQ(3, engine.m_LastCaret.y);
    engine.SetStartChar(1);
    engine.SetCursorPos(3);
    EXPECT_EQ(18, engine.GetCaretX());
    EXPECT_EQ(0, engine.GetCursorPosition());
    // A position that no line holds leaves the caret where it is.
    engine.SetCursorPos(9);
    EXPECT_EQ(18, engine.GetCaretX());
    EXPECT_EQ(18, engine.m_LastCaret.x);
}

TEST(EditEngine, AViewPast260FallsBackToTheStartAtTheNextCaret)
{
    ProbeEngine engine;
    engine.Set(std::wstring(300, L'a').c_str());
    engine.SetStartChar(260);
    engine.SetCursorPos(262);
    EXPECT_EQ(260, engine.GetStartChar());
    EXPECT_EQ(18, engine.GetCaretX());
    engine.SetStartChar(261);
    engine.SetCursorPos(262);
    EXPECT_EQ(0, engine.GetStartChar());
    EXPECT_EQ(4 + 262 * 7, engine.GetCaretX());
    engine.SetStartChar(-4);
    engine.SetCursorPos(1);
    EXPECT_EQ(0, engine.GetStartChar());
    EXPECT_EQ(11, engine.GetCaretX());
}

// ---- the single-line view ----

TEST(EditEngine, ShownCharCountCountsFromTheViewWithoutTheMargin)
{
    ProbeEngine engine;
    engine.Set(L"aaaaaaaaaaaaaaaaaaaa");
    RECT rect = {0, 0, 60, 20};
    EXPECT_EQ(8, engine.GetShownCharCount(rect)); // 56 fits, 63 does not
    engine.SetStartChar(15);
    EXPECT_EQ(5, engine.GetShownCharCount(rect));
    engine.SetStartChar(20);
    EXPECT_EQ(0, engine.GetShownCharCount(rect));
    engine.SetStartChar(200);
    EXPECT_EQ(0, engine.GetShownCharCount(rect));
}

TEST(EditEngine, StartCharByLastShownIsTheLongestTailThatFits)
{
    ProbeEngine engine;
    engine.Set(L"aaaaaaaaaaaaaaaaaaaa");
    // 13 x 7 = 91, + 4 = 95 <= 100; 14 x 7 + 4 = 102 > 100 at index 6.
    EXPECT_EQ(7, engine.GetStartCharByLastShown());
    engine.Set(L"aaaa");
    EXPECT_EQ(0, engine.GetStartCharByLastShown());
    engine.Set(L"");
    EXPECT_EQ(0, engine.GetStartCharByLastShown());
}

TEST(EditEngine, AdjustStartCharStepsTowardACaretInsideAndJumpsToOneAtTheEnd)
{
    ProbeEngine engine;
    engine.SetClientRect(RECT{0, 0, 60, 20});
    engine.Set(L"aaaaaaaaaaaaaaaaaaaa");
    RECT rect = {0, 0, 60, 20};

    engine.SetCursorPosition(20);
    engine.AdjustStartChar(0, rect);
    // Excess 150 - 60 + 8 = 98: 14 characters sum to 98, the 15th exceeds it.
    EXPECT_EQ(15, engine.GetStartChar());

    engine.SetStartChar(0);
    engine.SetCursorPosition(10);
    engine.AdjustStartChar(0, rect);
    EXPECT_EQ(1, engine.GetStartChar());
    engine.SetCursorPosition(5);
    engine.AdjustStartChar(0, rect);
    EXPECT_EQ(1, engine.GetStartChar());

    engine.SetCursorPosition(0);
    engine.AdjustStartChar(-1, rect);
    EXPECT_EQ(0, engine.GetStartChar());
    engine.SetCursorPosition(8);
    engine.AdjustStartChar(1, rect);
    EXPECT_EQ(0, engine.GetStartChar()); // 8 shown: 8 is not greater
    engine.SetCursorPosition(9);
    engine.AdjustStartChar(1, rect);
    EXPECT_EQ(1, engine.GetStartChar());
    engine.SetCursorPosition(10);
    engine.AdjustStartChar(1, rect);
    EXPECT_EQ(2, engine.GetStartChar());

    // Text that fits returns the view to the start.
    engine.Set(L"aaaa");
    engine.SetStartChar(3);
    engine.AdjustStartChar(0, rect);
    EXPECT_EQ(0, engine.GetStartChar());

    // A multi-line edit never scrolls.
    engine.Set(L"aaaaaaaaaaaaaaaaaaaa", ES_MULTILINE);
    engine.SetStartChar(3);
    engine.SetCursorPosition(0);
    engine.AdjustStartChar(-1, rect);
    EXPECT_EQ(3, engine.GetStartChar());
}

TEST(EditEngine, AnExactFitCountsAsFitting)
{
    ProbeEngine engine;
    engine.SetClientRect(RECT{0, 0, 36, 20});
    engine.Set(L"mmm"); // 24 + 8 = 32 <= 36
    RECT rect = {0, 0, 32, 20};
    engine.SetStartChar(2);
    engine.SetCursorPosition(3);
    engine.AdjustStartChar(0, rect);
    EXPECT_EQ(0, engine.GetStartChar());
}

// ---- word steps ----

TEST(EditEngine, WordStepsKnowOnlyTheBlank)
{
    ProbeEngine engine;
    engine.Set(L"ab cd  e\tf");
    EXPECT_EQ(3, engine.GetCharPastWhiteSpace(true, 0));
    EXPECT_EQ(3, engine.GetCharPastWhiteSpace(true, 2)); // a blank at the position itself counts
    EXPECT_EQ(6, engine.GetCharPastWhiteSpace(true, 3));
    EXPECT_EQ(10, engine.GetCharPastWhiteSpace(true, 7)); // a tab is no blank
    EXPECT_EQ(10, engine.GetCharPastWhiteSpace(true, 10));
    EXPECT_EQ(6, engine.GetCharPastWhiteSpace(false, 10));
    EXPECT_EQ(5, engine.GetCharPastWhiteSpace(false, 6));
    EXPECT_EQ(2, engine.GetCharPastWhiteSpace(false, 5));
    EXPECT_EQ(0, engine.GetCharPastWhiteSpace(false, 2));
    EXPECT_EQ(0, engine.GetCharPastWhiteSpace(false, 0));
    EXPECT_EQ(-3, engine.GetCharPastWhiteSpace(false, -3));
    EXPECT_EQ(14, engine.GetCharPastWhiteSpace(true, 14));
    EXPECT_EQ(6, engine.GetCharPastWhiteSpace(false, 14));
}

// ---- editing ----

TEST(EditEngine, InsertGoesInAtTheCursorAndRebuilds)
{
    ProbeEngine engine;
    engine.Set(L"abc");
    engine.SetCursorPosition(1);
    engine.InsertText(L"xyz", 2);
    EXPECT_EQ(L"axybc", engine.m_Buffer);
    EXPECT_EQ(3, engine.GetCursorPosition());
    EXPECT_FALSE(engine.HasSelection());
    EXPECT_EQ(5u, engine.GetCharRects().size());
    EXPECT_EQ(25, engine.GetCaretX());
    EXPECT_EQ(1, engine.m_Redraws);
    EXPECT_EQ(0, engine.m_Focus);
}

TEST(EditEngine, InsertReplacesTheSelectionAndTakesTheFocus)
{
    ProbeEngine engine;
    engine.Set(L"abcd");
    engine.SetSelAnchor(3);
    engine.SetCursorPosition(1);
    engine.SetHasSelection(true);
    engine.InsertText(L"Z", 1);
    EXPECT_EQ(L"aZd", engine.m_Buffer);
    EXPECT_EQ(2, engine.GetCursorPosition());
    EXPECT_FALSE(engine.HasSelection());
    EXPECT_EQ(1, engine.m_Focus);
    EXPECT_EQ(18, engine.GetCaretX());
}

TEST(EditEngine, ReplaceSelectedTextDoesNotRebuild)
{
    ProbeEngine engine;
    engine.Set(L"abcd");
    engine.SetSelAnchor(1);
    engine.SetCursorPosition(3);
    engine.ReplaceSelectedText(L"xyz");
    EXPECT_EQ(L"axyzd", engine.m_Buffer);
    EXPECT_EQ(4, engine.GetCursorPosition());
    EXPECT_EQ(4u, engine.GetCharRects().size());
}

TEST(EditEngine, DeleteSelectedTextErasesInTextOrderAndShowsTheTail)
{
    ProbeEngine engine;
    engine.Set(L"aaaaaaaaaaaaaaaaaaaa");
    engine.SetSelAnchor(18);
    engine.SetCursorPosition(2);
    engine.SetHasSelection(true);
    engine.SetStartChar(5);
    engine.DeleteSelectedText();
    EXPECT_EQ(L"aaaa", engine.m_Buffer);
    EXPECT_EQ(2, engine.GetCursorPosition());
    EXPECT_EQ(0, engine.GetStartChar());
    EXPECT_FALSE(engine.HasSelection());
    EXPECT_EQ(4u, engine.GetCharRects().size());

    engine.Set(L"aaaaaaaaaaaaaaaaaaaaaaaa"); // 24
    engine.SetSelAnchor(0);
    engine.SetCursorPosition(1);
    engine.SetHasSelection(true);
    engine.DeleteSelectedText();
    EXPECT_EQ(23u, engine.m_Buffer.size());
    EXPECT_EQ(10, engine.GetStartChar()); // 13 characters of the tail fit
    EXPECT_EQ(0, engine.GetCursorPosition());
}

TEST(EditEngine, PadOnDeleteStringShowsTheTailAndEndsTheSelection)
{
    ProbeEngine engine;
    engine.Set(L"aaaaaaaaaaaaaaaaaaaa");
    engine.SetHasSelection(true);
    engine.m_Buffer.erase(0, 1);
    engine.PadOnDeleteString();
    EXPECT_EQ(19u, engine.GetCharRects().size());
    EXPECT_EQ(6, engine.GetStartChar());
    EXPECT_FALSE(engine.HasSelection());
}

TEST(EditEngine, ADeletionInAWideMultiLineTextScrollsItsCaretUntilTheGuard)
{
    ProbeEngine engine;
    engine.SetClientRect(RECT{0, 0, 40, 60});
    engine.Set(L"aaaaaaaaaaaa", ES_MULTILINE); // lines of 5, 5 and 2
    engine.SetSelAnchor(11);
    engine.SetCursorPosition(12);
    engine.SetHasSelection(true);
    engine.DeleteSelectedText();
    ASSERT_EQ(3, engine.GetLineCount()); // 5, 5, 1
    // The tail walk takes the whole text as one line: 5 x 7 + 4 = 39 < 40, 6 x 7 + 4 = 46.
    EXPECT_EQ(6, engine.GetStartChar());
    engine.SetCursorPos(engine.GetCursorPosition());
    EXPECT_EQ(11, engine.GetCursorPosition());
    EXPECT_EQ(28, engine.GetCaretY());
    // The end of the text is drawn at 4 + 7 = 11 on the last line; the caret counts from the view.
    EXPECT_EQ(4, engine.GetCaretX());
    engine.SetStartChar(261);
    engine.SetCursorPos(engine.GetCursorPosition());
    EXPECT_EQ(0, engine.GetStartChar());
    EXPECT_EQ(11, engine.GetCaretX());
}

// ---- positions past the text ----

TEST(EditEngine, ACursorOrAnchorPastTheEndIsClampedBeforeUse)
{
    ProbeEngine engine;
    engine.Set(L"abc");
    engine.SetCursorPosition(50);
    engine.InsertText(L"d", 1);
    EXPECT_EQ(L"abcd", engine.m_Buffer);
    EXPECT_EQ(4, engine.GetCursorPosition());

    engine.SetSelAnchor(40);
    engine.SetCursorPosition(1);
    engine.SetHasSelection(true);
    int low = -1;
    int high = -1;
    engine.GetSelectionRange(low, high);
    EXPECT_EQ(1, low);
    EXPECT_EQ(4, high);
    engine.DeleteSelectedText();
    EXPECT_EQ(L"a", engine.m_Buffer);
    EXPECT_EQ(1, engine.GetCursorPosition());

    engine.SetSelAnchor(-7);
    engine.SetCursorPosition(-2);
    engine.SetHasSelection(true);
    engine.InsertText(L"z", 1);
    EXPECT_EQ(L"za", engine.m_Buffer);
    EXPECT_EQ(1, engine.GetCursorPosition());
}

TEST(EditEngine, StaleTablesAfterTheTextWasEmptiedReadNothingOutside)
{
    ProbeEngine engine;
    engine.SetClientRect(RECT{0, 0, 40, 60});
    engine.Set(L"aaaaaaaaaaaa", ES_MULTILINE);
    engine.SetCursorPosition(12);
    engine.SetSelAnchor(3);
    engine.m_Buffer.clear(); // as a reset does: the tables stay
    POINT p = {45, 5};
    EXPECT_EQ(0, engine.ComputeCaretPosNew(p));
    engine.SetCursorPos(12);
    EXPECT_EQ(18, engine.GetCaretX()); // 4 + 2 x 7 on the last line of the stale table
    EXPECT_EQ(3, engine.FindLineForChar(12) + 1);
    EXPECT_EQ(0, engine.GetStartCharByLastShown());
    EXPECT_EQ(0, engine.GetCharPastWhiteSpace(false, 12));
    EXPECT_EQ(12, engine.GetCharPastWhiteSpace(true, 12));
    engine.SetHasSelection(true);
    engine.InsertText(L"q", 1);
    EXPECT_EQ(L"q", engine.m_Buffer);
    EXPECT_EQ(1, engine.GetCursorPosition());
    EXPECT_EQ(1u, engine.GetCharRects().size());
}

TEST(EditEngine, AShortMeasurerStillGivesOneRectanglePerUnit)
{
    class ShortMeasurer : public MirlEditMeasurer {
    public:
        void MeasureCharacters(const std::wstring &, std::vector<Gdiplus::RectF> &rects) override
        {
            rects.assign(1, Gdiplus::RectF(0.0f, 0.0f, 5.0f, 10.0f));
        }
    } measurer;
    ProbeEngine engine;
    engine.SetMeasurer(&measurer);
    engine.Set(L"abc");
    ASSERT_EQ(3u, engine.GetCharRects().size());
    EXPECT_FLOAT_EQ(0.0f, engine.GetCharRects()[2].Width);
    engine.SetMeasurer(nullptr);
    engine.Set(L"abcd");
    EXPECT_EQ(4u, engine.GetCharRects().size());
    EXPECT_EQ(0, engine.GetLineCount());
}
