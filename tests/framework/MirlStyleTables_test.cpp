#include "MirlStyleTables.h"
#include "MirlStyles.h"

#include <gtest/gtest.h>

#include <cwchar>
#include <set>
#include <string>
#include <vector>

using MIRL::ParseStyleWords;
using MIRL::StringToExStyle;
using MIRL::StringToPositionStyle;
using MIRL::StringToTextLayout;
using MIRL::StringToWindowStyle;

namespace {

// The words of each table with their values, in table order, as "WORD value" items joined
// by ", ". The value is the last blank-separated part, so a name may end in a blank.
const wchar_t kListedWindowStyles[] =
    L"WS_BORDER 0x800000, WS_CAPTION 0xc00000, WS_CHILD 0x40000000, "
    L"WS_CHILDWINDOW 0x40000000, WS_CLIPCHILDREN 0x2000000, WS_CLIPSIBLINGS 0x4000000, "
    L"WS_DISABLED 0x8000000, WS_DLGFRAME 0x400000, WS_GROUP 0x20000, WS_HSCROLL 0x100000, "
    L"WS_ICONIC 0x20000000, WS_MAXIMIZE 0x1000000, WS_MAXIMIZEBOX 0x10000, "
    L"WS_MINIMIZE 0x20000000, WS_MINIMIZEBOX 0x20000, WS_OVERLAPPED 0x0, "
    L"WS_OVERLAPPEDWINDOW 0xcf0000, WS_POPUP 0x80000000, WS_POPUPWINDOW 0x80880000, "
    L"WS_SIZEBOX 0x40000, WS_SYSMENU 0x80000, WS_TABSTOP 0x10000, WS_THICKFRAME 0x40000, "
    L"WS_TILED 0x0, WS_TILEDWINDOW 0xcf0000, WS_VISIBLE 0x10000000, WS_VSCROLL 0x200000, "
    L"DS_ABSALIGN 0x1, DS_SYSMODAL 0x2, DS_LOCALEDIT 0x20, DS_SETFONT 0x40, "
    L"DS_MODALFRAME 0x80, DS_NOIDLEMSG 0x100, DS_SETFOREGROUND 0x200, DS_3DLOOK 0x4, "
    L"DS_FIXEDSYS 0x8, DS_NOFAILCREATE 0x10, DS_CONTROL 0x400, DS_CENTER 0x800, "
    L"DS_CENTERMOUSE 0x1000, DS_CONTEXTHELP 0x2000, DS_SHELLFONT 0x48, BS_PUSHBUTTON 0x0, "
    L"BS_DEFPUSHBUTTON 0x1, BS_CHECKBOX 0x2, BS_AUTOCHECKBOX 0x3, BS_RADIOBUTTON 0x4, "
    L"BS_3STATE 0x5, BS_AUTO3STATE 0x6, BS_GROUPBOX 0x7, BS_USERBUTTON 0x8, "
    L"BS_AUTORADIOBUTTON 0x9, BS_PUSHBOX 0xa, BS_OWNERDRAW 0xb, BS_TYPEMASK 0xf, "
    L"BS_LEFTTEXT 0x20, BS_BACKIMGE 0x1000, BS_MENU 0x8000, BS_SYSTEM 0x20, BS_TEXT 0x0, "
    L"BS_ICON 0x40, BS_BITMAP 0x80, BS_LEFT 0x100, BS_RIGHT 0x200, BS_CENTER 0x300, "
    L"BS_TOP 0x400, BS_BOTTOM 0x800, BS_VCENTER 0xc00, BS_PUSHLIKE 0x1000, "
    L"BS_MULTILINE 0x2000, BS_NOTIFY 0x4000, BS_FLAT 0x8000, BS_RIGHTBUTTON 0x20, "
    L"SS_LEFT 0x0, SS_CENTER 0x1, SS_RIGHT 0x2, SS_TOP 0x3, SS_BOTTOM 0x4, "
    L"SS_VCENTER 0x5, SBS_HORZ 0x0, SBS_VERT 0x1, SBS_TOPALIGN 0x2, SBS_LEFTALIGN 0x2, "
    L"SBS_BOTTOMALIGN 0x4, SBS_RIGHTALIGN 0x4, SBS_SIZEBOXTOPLEFTALIGN 0x2, "
    L"SBS_SIZEBOXBOTTOMRIGHTALIGN 0x4, SBS_SIZEBOX 0x8, SBS_SIZEGRIP 0x10, ES_LEFT 0x0, "
    L"ES_CENTER 0x1, ES_RIGHT 0x2, ES_MULTILINE 0x4, ES_UPPERCASE 0x8, ES_LOWERCASE 0x10, "
    L"ES_PASSWORD 0x20, ES_AUTOVSCROLL 0x40, ES_AUTOHSCROLL 0x80, ES_NOHIDESEL 0x100, "
    L"ES_OEMCONVERT 0x400, ES_READONLY 0x800, ES_WANTRETURN 0x1000, ES_NUMBER 0x2000, "
    L"ES_SAVESEL 0x8000, ES_SUNKEN 0x4000, ES_DISABLENOSCROLL 0x2000, "
    L"ES_SELECTIONBAR 0x1000000, ES_NOOLEDRAGDROP 0x8, ES_EX_NOCALLOLEINIT 0x0, "
    L"ES_VERTICAL 0x400000, ES_NOIME 0x80000, ES_SELFIME 0x40000, SPLS_VERTICAL 0x1, "
    L"SPLS_FIXED 0x2, TVS_HASBUTTONS 0x1, TVS_HASLINES 0x2, TVS_LINESATROOT 0x4, "
    L"TVS_EDITLABELS 0x8, TVS_DISABLEDRAGDROP 0x10, TVS_SHOWSELALWAYS 0x20, "
    L"TVS_RTLREADING 0x40, TVS_NOTOOLTIPS 0x80, TVS_CHECKBOXES 0x100, "
    L"TVS_TRACKSELECT 0x200, TVS_SINGLEEXPAND 0x400, TVS_INFOTIP 0x800, "
    L"TVS_FULLROWSELECT 0x1000, TVS_NOSCROLL 0x2000, TVS_NONEVENHEIGHT 0x4000, "
    L"TVS_NOHSCROLL 0x8000, CBS_DROPDOWNLIST 0x3, CBS_OWNERDRAWFIXED 0x10, "
    L"CBS_OWNERDRAWVARIABLE 0x20, CBS_HASSTRINGS 0x200";

const wchar_t kListedExStyles[] =
    L"WS_EX_ACCEPTFILES 0x10, WS_EX_APPWINDOW 0x40000, WS_EX_CLIENTEDGE 0x200, "
    L"WS_EX_COMPOSITED 0x2000000, WS_EX_CONTEXTHELP 0x400, WS_EX_CONTROLPARENT 0x10000, "
    L"WS_EX_DLGMODALFRAME 0x1, WS_EX_LAYERED 0x80000, WS_EX_LAYOUTRTL 0x400000, "
    L"WS_EX_LEFT 0x0, WS_EX_LEFTSCROLLBAR 0x4000, WS_EX_LTRREADING 0x0, "
    L"WS_EX_MDICHILD 0x40, WS_EX_NOACTIVATE 0x8000000, WS_EX_NOINHERITLAYOUT 0x100000, "
    L"WS_EX_NOPARENTNOTIFY 0x4, WS_EX_OVERLAPPEDWINDOW 0x300, WS_EX_PALETTEWINDOW 0x188, "
    L"WS_EX_RIGHT 0x1000, WS_EX_RIGHTSCROLLBAR 0x0, WS_EX_RTLREADING 0x2000, "
    L"WS_EX_STATICEDGE 0x20000, WS_EX_TOOLWINDOW 0x80, WS_EX_TOPMOST 0x8, "
    L"WS_EX_TRANSPARENT 0x20, WS_EX_WINDOWEDGE 0x100";

const wchar_t kListedPositionStyles[] =
    L"ALIGN_NONE  0x0, ALIGN_PARENT_LEFT 0x1, ALIGN_PARENT_TOP 0x2, "
    L"ALIGN_PARENT_RIGHT 0x4, ALIGN_PARENT_BOTTOM 0x8, ALIGN_PARENT_WIDTH 0x10, "
    L"ALIGN_PARENT_HEIGHT 0x20, ALIGN_PARENT_VCENTER 0x100, ALIGN_PARENT_HCENTER 0x200, "
    L"ALIGN_PRE_LEFT 0x10000, ALIGN_PRE_TOP 0x20000, ALIGN_PRE_RIGHT 0x40000, "
    L"ALIGN_PRE_BOTTOM 0x80000, OFFSET_PRE_LEFT 0x100000, OFFSET_PRE_RIGHT 0x200000, "
    L"OFFSET_PRE_TOP 0x400000, OFFSET_PRE_BOTTOM 0x800000";

const wchar_t kListedTextLayout[] =
    L"ORDER_H_TEXT_IMAGE 0x0, ORDER_H_IMAGE_TEXT 0x1, ORDER_V_TEXT_IMAGE 0x2, "
    L"ORDER_V_IMAGE_TEXT 0x4, ALIGN_H_CENTER 0x0, ALIGN_LEFT 0x10, ALIGN_RIGHT 0x20, "
    L"ALIGN_V_CENTER 0x0, ALIGN_TOP 0x100, ALIGN_BOTTOM 0x200";

struct ListedRow {
    std::wstring name;
    unsigned long value;
};

std::vector<ListedRow> ReadListing(const wchar_t *listing)
{
    std::vector<ListedRow> rows;
    const std::wstring text(listing);
    size_t start = 0;
    while (start < text.size()) {
        size_t end = text.find(L", ", start);
        if (end == std::wstring::npos) {
            end = text.size();
        }
        const std::wstring item = text.substr(start, end - start);
        const size_t blank = item.rfind(L' ');
        rows.push_back({item.substr(0, blank), std::wcstoul(item.c_str() + blank + 1, nullptr, 16)});
        start = end + 2;
    }
    return rows;
}

struct NamedTable {
    const char *label;
    MirlStyleTable table;
    const wchar_t *listing;
    size_t rows;
};

std::vector<NamedTable> AllTables()
{
    return {
        {"window styles", MIRL::WindowStyleTable(), kListedWindowStyles, 134},
        {"extended styles", MIRL::ExStyleTable(), kListedExStyles, 26},
        {"position styles", MIRL::PositionStyleTable(), kListedPositionStyles, 17},
        {"text layout", MIRL::TextLayoutTable(), kListedTextLayout, 10},
    };
}

// A one-row table whose name is `length` copies of 'A', valued 1.
MirlStyleRow RowOfLength(size_t length)
{
    MirlStyleRow row = {};
    for (size_t i = 0; i < length; ++i) {
        row.name[i] = L'A';
    }
    row.value = 1;
    return row;
}

}  // namespace

// Whole tables

TEST(MirlStyleTables, TablesHoldExactlyTheListedWordsInOrder)
{
    for (const NamedTable &t : AllTables()) {
        SCOPED_TRACE(t.label);
        const std::vector<ListedRow> listed = ReadListing(t.listing);
        ASSERT_EQ(t.rows, listed.size());
        ASSERT_EQ(t.rows, t.table.count);
        for (size_t i = 0; i < listed.size(); ++i) {
            SCOPED_TRACE(testing::Message() << "row " << i);
            EXPECT_EQ(listed[i].name, std::wstring(t.table.rows[i].name));
            EXPECT_EQ(listed[i].value, t.table.rows[i].value);
        }
    }
}

TEST(MirlStyleTables, NoNameAppearsTwiceInATable)
{
    for (const NamedTable &t : AllTables()) {
        SCOPED_TRACE(t.label);
        std::set<std::wstring> seen;
        for (size_t i = 0; i < t.table.count; ++i) {
            EXPECT_TRUE(seen.insert(t.table.rows[i].name).second) << "duplicate at row " << i;
        }
    }
}

TEST(MirlStyleTables, EveryRowWordParsesToItsValue)
{
    for (const NamedTable &t : AllTables()) {
        SCOPED_TRACE(t.label);
        for (size_t i = 0; i < t.table.count; ++i) {
            const MirlStyleRow &row = t.table.rows[i];
            SCOPED_TRACE(testing::Message() << "row " << i);
            EXPECT_EQ(row.value, ParseStyleWords(row.name, t.table));
            // Also as the second word of a text, to see that the parser restarts its word.
            const std::wstring text = std::wstring(L"UNKNOWN|") + row.name;
            EXPECT_EQ(row.value, ParseStyleWords(text.c_str(), t.table));
        }
    }
}

TEST(MirlStyleTables, StringToFunctionsReadTheirOwnTable)
{
    EXPECT_EQ(0x40000000ul, StringToWindowStyle(L"WS_CHILD"));
    EXPECT_EQ(0ul, StringToExStyle(L"WS_CHILD"));
    EXPECT_EQ(0x8ul, StringToExStyle(L"WS_EX_TOPMOST"));
    EXPECT_EQ(0ul, StringToWindowStyle(L"WS_EX_TOPMOST"));
    EXPECT_EQ(0x10ul, StringToPositionStyle(L"ALIGN_PARENT_WIDTH"));
    EXPECT_EQ(0ul, StringToTextLayout(L"ALIGN_PARENT_WIDTH"));
    EXPECT_EQ(0x10ul, StringToTextLayout(L"ALIGN_LEFT"));
    EXPECT_EQ(0ul, StringToPositionStyle(L"ALIGN_LEFT"));
}

// Parsing

TEST(MirlStyleTables, ChildAndVisibleCombine)
{
    EXPECT_EQ(0x50000000ul, StringToWindowStyle(L"WS_CHILD|WS_VISIBLE"));
}

TEST(MirlStyleTables, BlanksInsideAndAroundWordsAreDropped)
{
    EXPECT_EQ(0x50000000ul, StringToWindowStyle(L" WS_CHILD | WS_VISIBLE "));
    EXPECT_EQ(0x40000000ul, StringToWindowStyle(L"WS _CHILD"));
    EXPECT_EQ(0x50000000ul, StringToWindowStyle(L"W S_C H I L D|WS_VIS IBLE"));
}

TEST(MirlStyleTables, LowerCaseWordAddsNothing)
{
    EXPECT_EQ(0ul, StringToWindowStyle(L"ws_child"));
    EXPECT_EQ(0x10000000ul, StringToWindowStyle(L"Ws_Child|WS_VISIBLE"));
}

TEST(MirlStyleTables, DoublePipeAddsNothing)
{
    EXPECT_EQ(0x50000000ul, StringToWindowStyle(L"WS_CHILD||WS_VISIBLE"));
}

TEST(MirlStyleTables, RightAndBottomPositionWordsCombine)
{
    EXPECT_EQ(0xCul, StringToPositionStyle(L"ALIGN_PARENT_RIGHT|ALIGN_PARENT_BOTTOM"));
}

TEST(MirlStyleTables, EmptyTextAndLonePipeAreZero)
{
    EXPECT_EQ(0ul, StringToWindowStyle(L""));
    EXPECT_EQ(0ul, StringToWindowStyle(L"|"));
    EXPECT_EQ(0ul, StringToWindowStyle(L"   "));
}

TEST(MirlStyleTables, NullTextIsZero)
{
    EXPECT_EQ(0ul, StringToWindowStyle(nullptr));
}

TEST(MirlStyleTables, VerticalScrollBarWordsCombineToFive)
{
    EXPECT_EQ(5ul, StringToWindowStyle(L"SBS_VERT|SBS_RIGHTALIGN"));
}

TEST(MirlStyleTables, TrailingPipeKeepsTheWordsBeforeIt)
{
    EXPECT_EQ(0x40000000ul, StringToWindowStyle(L"WS_CHILD|"));
    EXPECT_EQ(0x40000000ul, StringToWindowStyle(L"|WS_CHILD"));
}

TEST(MirlStyleTables, UnknownWordAddsNothingAndParsingGoesOn)
{
    EXPECT_EQ(0x50000000ul, StringToWindowStyle(L"WS_CHILD|NO_SUCH_WORD|WS_VISIBLE"));
}

TEST(MirlStyleTables, TabAndLineFeedStayInTheWord)
{
    EXPECT_EQ(0ul, StringToWindowStyle(L"WS_CHILD\t"));
    EXPECT_EQ(0x10000000ul, StringToWindowStyle(L"\nWS_CHILD|WS_VISIBLE"));
}

TEST(MirlStyleTables, AlignNoneRowWithItsTrailingBlankNeverMatches)
{
    const MirlStyleTable table = MIRL::PositionStyleTable();
    EXPECT_STREQ(L"ALIGN_NONE ", table.rows[0].name);
    // Given a value that would show, the stored row still matches neither spelling...
    MirlStyleRow stored = table.rows[0];
    stored.value = 0x80;
    EXPECT_EQ(0ul, ParseStyleWords(L"ALIGN_NONE", {&stored, 1}));
    EXPECT_EQ(0ul, ParseStyleWords(L"ALIGN_NONE ", {&stored, 1}));
    // ...where the same row without the blank matches both.
    const MirlStyleRow trimmed = {L"ALIGN_NONE", 0x80};
    EXPECT_EQ(0x80ul, ParseStyleWords(L"ALIGN_NONE ", {&trimmed, 1}));
    EXPECT_EQ(0x2ul, StringToPositionStyle(L"ALIGN_NONE |ALIGN_PARENT_TOP"));
}

TEST(MirlStyleTables, FirstMatchingRowGivesTheValue)
{
    const MirlStyleRow rows[] = {{L"WORD", 0x1}, {L"WORD", 0x2}, {L"OTHER", 0x4}};
    EXPECT_EQ(0x1ul, ParseStyleWords(L"WORD", {rows, 3}));
    EXPECT_EQ(0x5ul, ParseStyleWords(L"OTHER|WORD", {rows, 3}));
    const MirlStyleRow zeroFirst[] = {{L"WORD", 0x0}, {L"WORD", 0x8}};
    EXPECT_EQ(0x0ul, ParseStyleWords(L"WORD", {zeroFirst, 2}));
}

TEST(MirlStyleTables, WordsSharingABitGiveTheSameValue)
{
    EXPECT_EQ(0x1000ul, StringToWindowStyle(L"BS_BACKIMGE"));
    EXPECT_EQ(0x1000ul, StringToWindowStyle(L"BS_PUSHLIKE"));
    EXPECT_EQ(0x1000ul, StringToWindowStyle(L"ES_WANTRETURN"));
    EXPECT_EQ(0x1000ul, StringToWindowStyle(L"BS_BACKIMGE|BS_PUSHLIKE"));
}

TEST(MirlStyleTables, TextLayoutWordsCombine)
{
    EXPECT_EQ(0x214ul, StringToTextLayout(L"ORDER_V_IMAGE_TEXT|ALIGN_LEFT|ALIGN_BOTTOM"));
}

// Long words

TEST(MirlStyleTables, WordOfTenThousandCharactersMatchesNothing)
{
    const std::wstring word(10000, L'W');
    EXPECT_EQ(0ul, StringToWindowStyle(word.c_str()));
    EXPECT_EQ(0x50000000ul, StringToWindowStyle((L"WS_CHILD|" + word + L"|WS_VISIBLE").c_str()));
}

TEST(MirlStyleTables, NameFollowedByManyCharactersMatchesNothing)
{
    const std::wstring text = L"WS_CHILD" + std::wstring(10000, L'X');
    EXPECT_EQ(0ul, StringToWindowStyle(text.c_str()));
}

TEST(MirlStyleTables, BlanksDoNotCountTowardsAWordsLength)
{
    const std::wstring text = std::wstring(10000, L' ') + L"WS_CHILD" + std::wstring(10000, L' ');
    EXPECT_EQ(0x40000000ul, StringToWindowStyle(text.c_str()));
}

TEST(MirlStyleTables, WordAsLongAsTheLongestPossibleNameStillMatches)
{
    const size_t longest = kMirlStyleNameCapacity - 1;
    const MirlStyleRow row = RowOfLength(longest);
    const std::wstring exact(longest, L'A');
    EXPECT_EQ(1ul, ParseStyleWords(exact.c_str(), {&row, 1}));
    const std::wstring longer(longest + 1, L'A');
    EXPECT_EQ(0ul, ParseStyleWords(longer.c_str(), {&row, 1}));
    EXPECT_EQ(1ul, ParseStyleWords((longer + L"|" + exact).c_str(), {&row, 1}));
}

// The library's own constants

TEST(MirlStyleTables, LibraryStyleConstantsHaveTheirValues)
{
    EXPECT_EQ(0x1000, BS_BACKIMGE);
    EXPECT_EQ(3, SS_TOP);
    EXPECT_EQ(4, SS_BOTTOM);
    EXPECT_EQ(5, SS_VCENTER);
    EXPECT_EQ(1, SPLS_VERTICAL);
    EXPECT_EQ(2, SPLS_FIXED);
}
