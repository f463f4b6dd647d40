// The edit window through real messages: what it holds, what it tells its parent and what it
// paints.
#include "MirlEdit.h"
#include "MirlMessageRecorder.h"
#include "MirlPixelTest.h"
#include "MirlTestSupport.h"
#include "MirlEditTestSupport.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <utility>
#include <vector>

namespace {

::testing::Environment *const g_Mirl = ::testing::AddGlobalTestEnvironment(new mirltest::EditsEnvironment());

// A frame that keeps every WM_COMMAND and WM_RBUTTONDOWN it receives.
class EditFrame : public MirlWindowImpl<EditFrame> {
public:
    std::vector<std::pair<WPARAM, LPARAM>> m_Commands;
    std::vector<std::pair<WPARAM, LPARAM>> m_RightClicks;

    BEGIN_MSG_MAP(EditFrame)
        MESSAGE_HANDLER(WM_COMMAND, OnCommand)
        MESSAGE_HANDLER(WM_RBUTTONDOWN, OnRightClick)
        CHAIN_MSG_MAP(MirlWindowImpl<EditFrame>)
    END_MSG_MAP()

    LRESULT OnCommand(UINT, WPARAM wParam, LPARAM lParam, BOOL &bHandled)
    {
        m_Commands.push_back(std::make_pair(wParam, lParam));
        bHandled = FALSE;
        return 0;
    }
    LRESULT OnRightClick(UINT, WPARAM wParam, LPARAM lParam, BOOL &)
    {
        m_RightClicks.push_back(std::make_pair(wParam, lParam));
        return 0;
    }
    size_t Count(WORD id, WORD code) const
    {
        size_t n = 0;
        for (const std::pair<WPARAM, LPARAM> &command : m_Commands) {
            n += command.first == MAKEWPARAM(id, code) ? 1 : 0;
        }
        return n;
    }
};

// Ctrl and Shift as GetKeyState reports them to this thread.
void SetKeys(bool control, bool shift)
{
    BYTE keys[256] = {};
    ::GetKeyboardState(keys);
    keys[VK_CONTROL] = control ? 0x80 : 0;
    keys[VK_SHIFT] = shift ? 0x80 : 0;
    keys[VK_LCONTROL] = 0;
    keys[VK_RCONTROL] = 0;
    keys[VK_LSHIFT] = 0;
    keys[VK_RSHIFT] = 0;
    ::SetKeyboardState(keys);
}

// Puts one format of text on the clipboard.
void PutOnClipboard(HWND owner, UINT format, const void *data, size_t bytes)
{
    ASSERT_TRUE(::OpenClipboard(owner));
    ::EmptyClipboard();
    HGLOBAL block = ::GlobalAlloc(GMEM_MOVEABLE, bytes);
    std::memcpy(::GlobalLock(block), data, bytes);
    ::GlobalUnlock(block);
    ::SetClipboardData(format, block);
    ::CloseClipboard();
}

class EditTest : public mirltest::PixelTest {
protected:
    void SetUp() override
    {
        mirltest::PixelTest::SetUp();
        SetKeys(false, false);
        ASSERT_NE(nullptr, m_Frame.Create(nullptr, nullptr, static_cast<LPRECT>(nullptr), L"Edits"));
    }
    void TearDown() override
    {
        SetKeys(false, false);
        if (m_Frame.IsWindow()) {
            m_Frame.DestroyWindow();
        }
    }
    MirlEdit *Edit(unsigned long id) { return mirltest::EditOf(m_Frame, id); }
    static void Type(MirlEdit *edit, const wchar_t *text)
    {
        for (; *text != L'\0'; ++text) {
            ::SendMessageW(edit->m_hWnd, WM_CHAR, *text, 1);
        }
    }
    static void Key(MirlEdit *edit, UINT key, bool control = false, bool shift = false)
    {
        SetKeys(control, shift);
        ::SendMessageW(edit->m_hWnd, WM_KEYDOWN, key, 1);
        SetKeys(false, false);
    }
    static void Fill(MirlEdit *edit, const wchar_t *text) { mirltest::FillEdit(edit, text); }
    static std::wstring TextOf(MirlEdit *edit) { return edit->GetEditText(); }
    size_t Changes(MirlEdit *edit) const { return m_Frame.Count(static_cast<WORD>(::GetDlgCtrlID(edit->m_hWnd)), EN_CHANGE); }

    EditFrame m_Frame;
};

} // namespace

// ---- creation ----

TEST_F(EditTest, TheFactoryMakesAnEditForTheEditClass)
{
    MirlEdit *edit = Edit(201);
    ASSERT_NE(nullptr, edit);
    EXPECT_STREQ(L"Search", edit->GetWaterText());
    EXPECT_EQ(nullptr, edit->GetWindowTextW());
    EXPECT_EQ(13, edit->GetLineHeight()); // the font height of 13-pixel Tahoma, rounded
    EXPECT_EQ(0xFF285AC8u, edit->GetSelColor());
    EXPECT_EQ(0xFFFFFFFFu, edit->GetSelTextColor());
    EXPECT_EQ(0xFFC81E1Eu, edit->GetBorderColor());
    EXPECT_NE(0u, edit->GetClipboardFormat());
    EXPECT_EQ(::RegisterClipboardFormatW(L"MirlEdit Unicode text"), edit->GetClipboardFormat());
    EXPECT_FALSE(edit->IsMultiLine());
    EXPECT_TRUE(Edit(202)->IsMultiLine());
    EXPECT_STREQ(L"", Edit(205)->GetWaterText());
    ASSERT_NE(nullptr, edit->GetSingleLineFont());
}

TEST_F(EditTest, OnCodePage1252NoInputMethodIsUsed)
{
    MirlEdit *edit = Edit(201);
    EXPECT_EQ(1252u, edit->GetCodePage());
    EXPECT_FALSE(edit->NeedsIME());
}

TEST_F(EditTest, ATemplateTextLongerThanTheStringsOwnRoomSurvivesCreation)
{
    MirlEdit *edit = Edit(204);
    EXPECT_EQ(L"hello world", TextOf(edit));
    EXPECT_STREQ(L"hello world", edit->GetWindowTextW());
    EXPECT_EQ(11, edit->GetCursorPosition());
}

TEST_F(EditTest, ANumericEditWithLettersInItsTemplateStartsEmpty)
{
    EXPECT_EQ(L"", TextOf(Edit(203)));
}

TEST_F(EditTest, SetTextOnANumericEditTakesAnyTextAndSelectsIt)
{
    MirlEdit *edit = Edit(203);
    m_Frame.m_Commands.clear();
    ::SendMessageW(edit->m_hWnd, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(L"a1 b2"));
    EXPECT_EQ(L"a1 b2", TextOf(edit));
    EXPECT_EQ(0, edit->GetSelAnchor());
    EXPECT_EQ(5, edit->GetCursorPosition());
    EXPECT_TRUE(edit->HasSelection());
    EXPECT_TRUE(m_Frame.m_Commands.empty());
}

// ---- typing ----

TEST_F(EditTest, TypingInsertsAndTellsTheParent)
{
    MirlEdit *edit = Edit(201);
    m_Frame.m_Commands.clear();
    Type(edit, L"ab");
    EXPECT_EQ(L"ab", TextOf(edit));
    EXPECT_EQ(2, edit->GetCursorPosition());
    ASSERT_EQ(2u, m_Frame.m_Commands.size());
    EXPECT_EQ(MAKEWPARAM(201, EN_CHANGE), m_Frame.m_Commands[0].first);
    EXPECT_EQ(reinterpret_cast<LPARAM>(edit->m_hWnd), m_Frame.m_Commands[0].second);
    EXPECT_EQ(1, edit->GetTyped());
    EXPECT_EQ(2u, edit->GetCharRects().size());
}

TEST_F(EditTest, AtTheLimitTypingIsRefusedUnlessItReplacesASelection)
{
    MirlEdit *edit = Edit(201);
    Fill(edit, std::wstring(1024, L'a').c_str());
    m_Frame.m_Commands.clear();
    Type(edit, L"b");
    EXPECT_EQ(1024u, TextOf(edit).size());
    EXPECT_TRUE(m_Frame.m_Commands.empty());
    edit->SetSelAnchor(1023);
    edit->SetCursorPosition(1024);
    edit->SetHasSelection(true);
    Type(edit, L"b");
    EXPECT_EQ(1024u, TextOf(edit).size());
    EXPECT_EQ(L'b', TextOf(edit)[1023]);
    EXPECT_EQ(1u, Changes(edit));
}

TEST_F(EditTest, TabIsNotFiltered)
{
    MirlEdit *number = Edit(203);
    Type(number, L"\t");
    EXPECT_EQ(L"   ", TextOf(number));
    Type(number, L"x");
    EXPECT_EQ(L"   ", TextOf(number));

    MirlEdit *edit = Edit(201);
    Fill(edit, std::wstring(1024, L'a').c_str());
    Type(edit, L"\t");
    EXPECT_EQ(1027u, TextOf(edit).size());
    EXPECT_EQ(1027, edit->GetCursorPosition());

    Fill(edit, L"xy");
    edit->SetCursorPosition(1);
    ::EnableWindow(edit->m_hWnd, FALSE);
    Type(edit, L"\t");
    EXPECT_EQ(L"x   y", TextOf(edit));
    EXPECT_EQ(4, edit->GetCursorPosition());
}

TEST_F(EditTest, ADisabledEditDropsAPrintableCharacterButTellsOfAChange)
{
    MirlEdit *edit = Edit(201);
    Fill(edit, L"xy");
    ::EnableWindow(edit->m_hWnd, FALSE);
    m_Frame.m_Commands.clear();
    Type(edit, L"z");
    EXPECT_EQ(L"xy", TextOf(edit));
    EXPECT_EQ(1u, Changes(edit));
    // Ctrl with C does nothing but the closing steps.
    edit->SetSelAnchor(0);
    edit->SetHasSelection(true);
    ::OpenClipboard(m_Frame.m_hWnd);
    ::EmptyClipboard();
    ::CloseClipboard();
    Key(edit, 'C', true);
    EXPECT_EQ(2u, Changes(edit));
    EXPECT_FALSE(::IsClipboardFormatAvailable(edit->GetClipboardFormat()));
    Type(edit, L"\x03");
    EXPECT_EQ(3u, Changes(edit)); // not swallowed: no copy set the mark
    EXPECT_EQ(L"xy", TextOf(edit));
}

TEST_F(EditTest, ACharacterAbove255KeepsItsLowByte)
{
    MirlEdit *edit = Edit(201);
    Type(edit, L"\x4E2D\x0141");
    EXPECT_EQ(std::wstring(L"\x2D\x41"), TextOf(edit));
}

TEST_F(EditTest, CodeOneGoesIntoTheText)
{
    MirlEdit *edit = Edit(201);
    Type(edit, L"\x01");
    EXPECT_EQ(std::wstring(1, L'\x01'), TextOf(edit));
    MirlEdit *number = Edit(203);
    m_Frame.m_Commands.clear();
    Type(number, L"\x01");
    EXPECT_EQ(L"", TextOf(number));
    EXPECT_TRUE(m_Frame.m_Commands.empty());
}

TEST_F(EditTest, EscapeSendsTheCancelCode)
{
    MirlEdit *edit = Edit(201);
    Fill(edit, L"ab");
    m_Frame.m_Commands.clear();
    Type(edit, L"\x1B");
    ASSERT_EQ(1u, m_Frame.m_Commands.size());
    EXPECT_EQ(MAKEWPARAM(201, EN_ERRSPACE), m_Frame.m_Commands[0].first);
    EXPECT_EQ(L"ab", TextOf(edit));
}

TEST_F(EditTest, EnterInAMultiLineEditGivesTheFocusToTheParent)
{
    MirlEdit *edit = Edit(202);
    ::SetFocus(edit->m_hWnd);
    Fill(edit, L"ab");
    m_Frame.m_Commands.clear();
    Type(edit, L"\r");
    EXPECT_EQ(L"ab", TextOf(edit));
    EXPECT_EQ(m_Frame.m_hWnd, ::GetFocus());
    EXPECT_EQ(0u, Changes(edit));
    Key(edit, VK_RETURN);
    EXPECT_EQ(0u, Changes(edit));
    EXPECT_EQ(L"ab", TextOf(edit));
}

TEST_F(EditTest, BackspaceDoesNotReachBehindTheFirstShownCharacter)
{
    MirlEdit *edit = Edit(201);
    Fill(edit, L"abcd");
    edit->SetCursorPosition(0);
    m_Frame.m_Commands.clear();
    Type(edit, L"\b");
    EXPECT_EQ(L"abcd", TextOf(edit));
    EXPECT_EQ(1u, Changes(edit));
    edit->SetStartChar(2);
    edit->SetCursorPosition(2);
    Type(edit, L"\b");
    EXPECT_EQ(L"abcd", TextOf(edit));
    EXPECT_EQ(2u, Changes(edit));
    edit->SetStartChar(0);
    edit->SetCursorPosition(3);
    Type(edit, L"\b");
    EXPECT_EQ(L"abd", TextOf(edit));
    EXPECT_EQ(2, edit->GetCursorPosition());
}

// ---- keys ----

TEST_F(EditTest, LeftOnEmptyAndRightAtTheEndStayButTellOfAChange)
{
    MirlEdit *edit = Edit(201);
    m_Frame.m_Commands.clear();
    Key(edit, VK_LEFT);
    EXPECT_EQ(0, edit->GetCursorPosition());
    EXPECT_EQ(1u, Changes(edit));
    Fill(edit, L"ab");
    Key(edit, VK_RIGHT);
    EXPECT_EQ(2, edit->GetCursorPosition());
    EXPECT_EQ(2u, Changes(edit));
}

TEST_F(EditTest, ShiftEndThenLeftEndsTheSelectionFromItsEnd)
{
    MirlEdit *edit = Edit(201);
    Fill(edit, L"abcdef");
    edit->SetCursorPosition(1);
    Key(edit, VK_END, false, true);
    EXPECT_EQ(1, edit->GetSelAnchor());
    EXPECT_EQ(6, edit->GetCursorPosition());
    EXPECT_TRUE(edit->HasSelection());
    EXPECT_TRUE(edit->IsHighlighting());
    Key(edit, VK_LEFT);
    EXPECT_FALSE(edit->HasSelection());
    EXPECT_FALSE(edit->IsHighlighting());
    EXPECT_EQ(5, edit->GetCursorPosition());
}

TEST_F(EditTest, ShiftArrowsAndHomeSelect)
{
    MirlEdit *edit = Edit(201);
    Fill(edit, L"abcdef");
    edit->SetCursorPosition(3);
    Key(edit, VK_LEFT, false, true);
    Key(edit, VK_LEFT, false, true);
    EXPECT_EQ(3, edit->GetSelAnchor());
    EXPECT_EQ(1, edit->GetCursorPosition());
    EXPECT_TRUE(edit->HasSelection());
    Key(edit, VK_HOME, false, true);
    EXPECT_EQ(0, edit->GetCursorPosition());
    EXPECT_EQ(3, edit->GetSelAnchor());
    Key(edit, VK_RIGHT, false, true);
    EXPECT_EQ(1, edit->GetCursorPosition());
    Key(edit, VK_DELETE);
    EXPECT_EQ(L"adef", TextOf(edit));
}

TEST_F(EditTest, CtrlArrowsStepByWords)
{
    MirlEdit *edit = Edit(201);
    Fill(edit, L"one two three");
    edit->SetCursorPosition(0);
    Key(edit, VK_RIGHT, true);
    EXPECT_EQ(4, edit->GetCursorPosition());
    Key(edit, VK_RIGHT, true);
    EXPECT_EQ(8, edit->GetCursorPosition());
    Key(edit, VK_RIGHT, true);
    EXPECT_EQ(13, edit->GetCursorPosition());
    Key(edit, VK_LEFT, true);
    EXPECT_EQ(7, edit->GetCursorPosition());
    Key(edit, VK_LEFT, true);
    EXPECT_EQ(3, edit->GetCursorPosition());
    Key(edit, VK_LEFT, true);
    EXPECT_EQ(0, edit->GetCursorPosition());
}

TEST_F(EditTest, DeleteErasesAtTheCursorOrTheSelection)
{
    MirlEdit *edit = Edit(201);
    Fill(edit, L"abcdef");
    edit->SetCursorPosition(1);
    m_Frame.m_Commands.clear();
    Key(edit, VK_DELETE);
    EXPECT_EQ(L"acdef", TextOf(edit));
    EXPECT_EQ(1u, Changes(edit));
    edit->SetSelAnchor(4);
    edit->SetHasSelection(true);
    Key(edit, VK_DELETE);
    EXPECT_EQ(L"af", TextOf(edit));
    EXPECT_EQ(1, edit->GetCursorPosition());
    Key(edit, VK_END);
    Key(edit, VK_DELETE);
    EXPECT_EQ(L"af", TextOf(edit));
}

TEST_F(EditTest, UpAndDownOffTheEdgeLinesStepOneCharacter)
{
    MirlEdit *edit = Edit(202);
    // 80 pixels wide: "aaaa aaaa aaaa aaaa" breaks into lines.
    Fill(edit, L"aaaaaaaaaaaaaaaaaaaaaaaaa");
    ASSERT_GE(edit->GetLineCount(), 3);
    edit->SetCursorPosition(2);
    edit->SetCursorPos(2);
    Key(edit, VK_UP);
    EXPECT_EQ(1, edit->GetCursorPosition());
    const int last = static_cast<int>(TextOf(edit).size()) - 1;
    edit->SetCursorPosition(last);
    edit->SetCursorPos(last);
    Key(edit, VK_DOWN);
    EXPECT_EQ(last + 1, edit->GetCursorPosition());
}

TEST_F(EditTest, UpAndDownMoveBetweenLinesAndOntoAShorterOneToTheEnd)
{
    MirlEdit *edit = Edit(202);
    Fill(edit, L"aaaaaaaaaaaaaaaaaaaaaaaaa");
    const std::vector<MirlEditLine> &lines = edit->GetLines();
    ASSERT_GE(lines.size(), 3u);
    const int lastLine = static_cast<int>(lines.size()) - 1;
    ASSERT_LT(lines[static_cast<size_t>(lastLine)].count, lines[0].count);
    // From the end of the line before the last, up and down keep the column where it exists.
    const int p = lines[1].first + 1;
    edit->SetCursorPosition(p);
    edit->SetCursorPos(p);
    m_Frame.m_Commands.clear();
    Key(edit, VK_UP);
    EXPECT_EQ(1, edit->GetCursorPosition());
    EXPECT_EQ(1u, Changes(edit));
    Key(edit, VK_DOWN);
    EXPECT_EQ(p, edit->GetCursorPosition());
    // Onto the shorter last line from a column it doesn't reach: the end of the whole text.
    const int wide = lines[static_cast<size_t>(lastLine) - 1].first + lines[static_cast<size_t>(lastLine) - 1].count - 1;
    edit->SetCursorPosition(wide);
    edit->SetCursorPos(wide);
    Key(edit, VK_DOWN);
    EXPECT_EQ(static_cast<int>(TextOf(edit).size()), edit->GetCursorPosition());
}

// ---- the mouse ----

TEST_F(EditTest, DraggingSelectsWithCaptureAndTheReleaseKeepsTheSelection)
{
    MirlEdit *edit = Edit(201);
    Fill(edit, L"hello world");
    const std::vector<Gdiplus::RectF> &rects = edit->GetCharRects();
    ASSERT_EQ(11u, rects.size());
    const int y = static_cast<int>(edit->GetLines()[0].y) + 4;
    ::SendMessageW(edit->m_hWnd, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, y));
    EXPECT_EQ(edit->m_hWnd, ::GetCapture());
    EXPECT_EQ(0, edit->GetCursorPosition());
    EXPECT_TRUE(edit->IsHighlighting());
    EXPECT_FALSE(edit->HasSelection());
    EXPECT_EQ(edit->m_hWnd, ::GetFocus());
    int x = 4;
    for (int i = 0; i < 5; ++i) {
        x += static_cast<int>(rects[static_cast<size_t>(i)].Width);
    }
    ::SendMessageW(edit->m_hWnd, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(x + 1, y));
    EXPECT_TRUE(edit->HasSelection());
    EXPECT_EQ(5, edit->GetCursorPosition());
    EXPECT_EQ(0, edit->GetSelAnchor());
    EXPECT_EQ(x, edit->GetCaretX());
    POINT caret = {};
    ::GetCaretPos(&caret);
    EXPECT_EQ(x, caret.x);
    ::SendMessageW(edit->m_hWnd, WM_LBUTTONUP, 0, MAKELPARAM(x + 1, y));
    EXPECT_EQ(nullptr, ::GetCapture());
    EXPECT_FALSE(edit->IsHighlighting());
    EXPECT_TRUE(edit->HasSelection());
}

TEST_F(EditTest, AClickWithoutAMoveSelectsNothing)
{
    MirlEdit *edit = Edit(201);
    Fill(edit, L"hello");
    const int y = static_cast<int>(edit->GetLines()[0].y) + 4;
    ::SendMessageW(edit->m_hWnd, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(60, y));
    ::SendMessageW(edit->m_hWnd, WM_LBUTTONUP, 0, MAKELPARAM(60, y));
    EXPECT_FALSE(edit->HasSelection());
    EXPECT_EQ(5, edit->GetCursorPosition());
}

TEST_F(EditTest, ADoubleClickSelectsAWord)
{
    MirlEdit *edit = Edit(201);
    Fill(edit, L"ab cd");
    const int y = static_cast<int>(edit->GetLines()[0].y) + 4;
    int x = 4;
    for (int i = 0; i < 4; ++i) {
        x += static_cast<int>(edit->GetCharRects()[static_cast<size_t>(i)].Width);
    }
    // On the last word: to the end, and the blank before it is left out (it lies right of 0).
    ::SendMessageW(edit->m_hWnd, WM_LBUTTONDBLCLK, MK_LBUTTON, MAKELPARAM(x - 1, y));
    EXPECT_TRUE(edit->HasSelection());
    EXPECT_EQ(3, edit->GetSelAnchor());
    EXPECT_EQ(5, edit->GetCursorPosition());
    // With the view starting at the blank, the blank is kept.
    edit->SetStartChar(2);
    ::SendMessageW(edit->m_hWnd, WM_LBUTTONDBLCLK, MK_LBUTTON, MAKELPARAM(8, y));
    EXPECT_EQ(2, edit->GetSelAnchor());
    EXPECT_EQ(5, edit->GetCursorPosition());
    // On the first word: from 0 up to the blank.
    edit->SetStartChar(0);
    ::SendMessageW(edit->m_hWnd, WM_LBUTTONDBLCLK, MK_LBUTTON, MAKELPARAM(6, y));
    EXPECT_EQ(0, edit->GetSelAnchor());
    EXPECT_EQ(2, edit->GetCursorPosition());
    // A multi-line edit selects nothing.
    MirlEdit *multi = Edit(202);
    Fill(multi, L"ab cd");
    multi->SetHasSelection(true);
    ::SendMessageW(multi->m_hWnd, WM_LBUTTONDBLCLK, MK_LBUTTON, MAKELPARAM(6, 4));
    EXPECT_FALSE(multi->HasSelection());
}

TEST_F(EditTest, ARightClickGoesToTheParentInItsCoordinates)
{
    MirlEdit *edit = Edit(205); // at (150, 40), without a border
    ::SendMessageW(edit->m_hWnd, WM_RBUTTONDOWN, MK_RBUTTON, MAKELPARAM(7, 5));
    EXPECT_TRUE(m_Frame.m_RightClicks.empty()); // posted, not sent
    mirltest::FlushMessages();
    ASSERT_EQ(1u, m_Frame.m_RightClicks.size());
    EXPECT_EQ(static_cast<WPARAM>(MK_RBUTTON), m_Frame.m_RightClicks[0].first);
    EXPECT_EQ(MAKELPARAM(157, 45), m_Frame.m_RightClicks[0].second);
}

// ---- the clipboard ----

TEST_F(EditTest, CopyWritesOnlyThePrivateFormatAndPasteReadsIt)
{
    MirlEdit *edit = Edit(201);
    Fill(edit, L"hello world");
    edit->SetSelAnchor(6);
    edit->SetCursorPosition(11);
    edit->SetHasSelection(true);
    m_Frame.m_Commands.clear();
    Key(edit, 'C', true);
    EXPECT_TRUE(m_Frame.m_Commands.empty());
    ASSERT_TRUE(::OpenClipboard(m_Frame.m_hWnd));
    HANDLE data = ::GetClipboardData(edit->GetClipboardFormat());
    ASSERT_NE(nullptr, data);
    EXPECT_EQ(12u, ::GlobalSize(data));
    EXPECT_STREQ(L"world", static_cast<const wchar_t *>(::GlobalLock(data)));
    ::GlobalUnlock(data);
    EXPECT_EQ(nullptr, ::GetClipboardData(CF_UNICODETEXT));
    ::CloseClipboard();
    // The control character of Ctrl with C is dropped once.
    Type(edit, L"\x03");
    EXPECT_EQ(L"hello world", TextOf(edit));
    EXPECT_TRUE(m_Frame.m_Commands.empty());

    MirlEdit *other = Edit(205);
    ::SendMessageW(other->m_hWnd, WM_PASTE, 0, 0);
    EXPECT_EQ(L"world", TextOf(other));
    EXPECT_EQ(5, other->GetCursorPosition());
    EXPECT_TRUE(m_Frame.m_Commands.empty()); // paste tells nothing
}

TEST_F(EditTest, CutRemovesTheSelection)
{
    MirlEdit *edit = Edit(201);
    Fill(edit, L"hello world");
    edit->SetSelAnchor(0);
    edit->SetCursorPosition(6);
    edit->SetHasSelection(true);
    EXPECT_EQ(0, ::SendMessageW(edit->m_hWnd, WM_CUT, 0, 0));
    EXPECT_EQ(L"world", TextOf(edit));
    EXPECT_EQ(0, edit->GetCursorPosition());
    EXPECT_FALSE(edit->HasSelection());
    Key(edit, VK_END);
    Key(edit, 'V', true);
    EXPECT_EQ(L"worldhello ", TextOf(edit));
}

TEST_F(EditTest, PasteReadsUnicodeAndAnsiTextAndNoFurtherThanTheBlock)
{
    MirlEdit *edit = Edit(201);
    const wchar_t unicode[] = L"caf\x00E9";
    PutOnClipboard(m_Frame.m_hWnd, CF_UNICODETEXT, unicode, sizeof(unicode));
    ::SendMessageW(edit->m_hWnd, WM_PASTE, 0, 0);
    EXPECT_EQ(L"caf\x00E9", TextOf(edit));

    Fill(edit, L"");
    const char ansi[] = "tune\xE9";
    PutOnClipboard(m_Frame.m_hWnd, CF_TEXT, ansi, sizeof(ansi));
    ::SendMessageW(edit->m_hWnd, WM_PASTE, 0, 0);
    EXPECT_EQ(L"tune\x00E9", TextOf(edit));

    // A private block without its zero unit: three units and no more.
    Fill(edit, L"");
    const wchar_t unterminated[] = {L'x', L'y', L'z'};
    PutOnClipboard(m_Frame.m_hWnd, edit->GetClipboardFormat(), unterminated, sizeof(unterminated));
    ASSERT_TRUE(::OpenClipboard(m_Frame.m_hWnd));
    const SIZE_T block = ::GlobalSize(::GetClipboardData(edit->GetClipboardFormat()));
    ::CloseClipboard();
    ::SendMessageW(edit->m_hWnd, WM_PASTE, 0, 0);
    EXPECT_EQ(L"xyz", TextOf(edit).substr(0, 3));
    EXPECT_LE(TextOf(edit).size(), block / sizeof(wchar_t));
}

TEST_F(EditTest, PastingTwoThousandCharactersKeepsTheFirst1024)
{
    MirlEdit *edit = Edit(201);
    std::wstring text;
    for (int i = 0; i < 2000; ++i) {
        text += static_cast<wchar_t>(L'a' + i % 26);
    }
    PutOnClipboard(m_Frame.m_hWnd, CF_UNICODETEXT, text.c_str(), (text.size() + 1) * sizeof(wchar_t));
    ::SendMessageW(edit->m_hWnd, WM_PASTE, 0, 0);
    EXPECT_EQ(text.substr(0, 1024), TextOf(edit));
    EXPECT_EQ(1024, edit->GetCursorPosition());
    // Full: nothing more goes in, and a selection stays as it was.
    edit->SetSelAnchor(3);
    edit->SetCursorPosition(3);
    edit->SetHasSelection(true);
    ::SendMessageW(edit->m_hWnd, WM_PASTE, 0, 0);
    EXPECT_EQ(1024u, TextOf(edit).size());
    EXPECT_TRUE(edit->HasSelection());
}

TEST_F(EditTest, ANumericEditRefusesPastedLettersWhole)
{
    MirlEdit *number = Edit(203);
    const wchar_t digits[] = L"12x";
    PutOnClipboard(m_Frame.m_hWnd, CF_UNICODETEXT, digits, sizeof(digits));
    ::SendMessageW(number->m_hWnd, WM_PASTE, 0, 0);
    EXPECT_EQ(L"", TextOf(number));
    const wchar_t only[] = L"123";
    PutOnClipboard(m_Frame.m_hWnd, CF_UNICODETEXT, only, sizeof(only));
    ::SendMessageW(number->m_hWnd, WM_PASTE, 0, 0);
    EXPECT_EQ(L"123", TextOf(number));
}

TEST_F(EditTest, TheInputMethodsTextGoesPastTheLimit)
{
    MirlEdit *edit = Edit(201);
    Fill(edit, std::wstring(1024, L'a').c_str());
    edit->InsertText(L"\x4E2D\x6587", 2);
    EXPECT_EQ(1026u, TextOf(edit).size());
    EXPECT_EQ(L'\x6587', TextOf(edit)[1025]);
}

// ---- focus and resets ----

TEST_F(EditTest, LosingTheFocusTellsTheParent)
{
    MirlEdit *edit = Edit(201);
    ::SetFocus(edit->m_hWnd);
    EXPECT_TRUE(edit->HasFocusMark());
    m_Frame.m_Commands.clear();
    ::SetFocus(m_Frame.m_hWnd);
    EXPECT_FALSE(edit->HasFocusMark());
    ASSERT_EQ(1u, m_Frame.m_Commands.size());
    EXPECT_EQ(MAKEWPARAM(201, EN_KILLFOCUS), m_Frame.m_Commands[0].first);
    EXPECT_EQ(reinterpret_cast<LPARAM>(edit->m_hWnd), m_Frame.m_Commands[0].second);
}

TEST_F(EditTest, ResetsEmptyTheTextAndLaterUseClampsTheStaleState)
{
    MirlEdit *edit = Edit(201);
    Fill(edit, L"hello world");
    edit->SetCursorPosition(11);
    edit->SetSelAnchor(8);
    m_Frame.m_Commands.clear();
    edit->Reset(true);
    EXPECT_EQ(L"", TextOf(edit));
    EXPECT_FALSE(edit->HasFocusMark());
    ASSERT_EQ(1u, m_Frame.m_Commands.size());
    EXPECT_EQ(MAKEWPARAM(201, EN_KILLFOCUS), m_Frame.m_Commands[0].first);
    EXPECT_EQ(11u, edit->GetCharRects().size()); // stale until the next build
    Key(edit, VK_LEFT, false, true);
    Key(edit, VK_DELETE);
    Type(edit, L"\bq");
    EXPECT_EQ(L"q", TextOf(edit));
    EXPECT_EQ(1, edit->GetCursorPosition());

    m_Frame.m_Commands.clear();
    edit->ResetSearchContent();
    EXPECT_EQ(L"", TextOf(edit));
    EXPECT_EQ(0, edit->GetCursorPosition());
    EXPECT_TRUE(edit->HasFocusMark());
    EXPECT_EQ(edit->m_hWnd, ::GetFocus());
    EXPECT_EQ(1u, Changes(edit));
    Type(edit, L"z");
    EXPECT_EQ(L"z", TextOf(edit));
}
