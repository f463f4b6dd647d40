#include "MirlStyleTables.h"
#include "MirlStyles.h"

#include <cwchar>
#include <iterator>

namespace {

// Window styles, in the order the parser searches them. Mostly the platform's values under
// the platform's names; BS_BACKIMGE, SS_TOP/BOTTOM/VCENTER and SPLS_ are the library's own.
// Several words share a value: a bit means different things on different classes.
const MirlStyleRow kWindowStyles[] = {
    {L"WS_BORDER", 0x800000},
    {L"WS_CAPTION", 0xc00000},
    {L"WS_CHILD", 0x40000000},
    {L"WS_CHILDWINDOW", 0x40000000},
    {L"WS_CLIPCHILDREN", 0x2000000},
    {L"WS_CLIPSIBLINGS", 0x4000000},
    {L"WS_DISABLED", 0x8000000},
    {L"WS_DLGFRAME", 0x400000},
    {L"WS_GROUP", 0x20000},
    {L"WS_HSCROLL", 0x100000},
    {L"WS_ICONIC", 0x20000000},
    {L"WS_MAXIMIZE", 0x1000000},
    {L"WS_MAXIMIZEBOX", 0x10000},
    {L"WS_MINIMIZE", 0x20000000},
    {L"WS_MINIMIZEBOX", 0x20000},
    {L"WS_OVERLAPPED", 0x0},
    {L"WS_OVERLAPPEDWINDOW", 0xcf0000},
    {L"WS_POPUP", 0x80000000},
    {L"WS_POPUPWINDOW", 0x80880000},
    {L"WS_SIZEBOX", 0x40000},
    {L"WS_SYSMENU", 0x80000},
    {L"WS_TABSTOP", 0x10000},
    {L"WS_THICKFRAME", 0x40000},
    {L"WS_TILED", 0x0},
    {L"WS_TILEDWINDOW", 0xcf0000},
    {L"WS_VISIBLE", 0x10000000},
    {L"WS_VSCROLL", 0x200000},
    {L"DS_ABSALIGN", 0x1},
    {L"DS_SYSMODAL", 0x2},
    {L"DS_LOCALEDIT", 0x20},
    {L"DS_SETFONT", 0x40},
    {L"DS_MODALFRAME", 0x80},
    {L"DS_NOIDLEMSG", 0x100},
    {L"DS_SETFOREGROUND", 0x200},
    {L"DS_3DLOOK", 0x4},
    {L"DS_FIXEDSYS", 0x8},
    {L"DS_NOFAILCREATE", 0x10},
    {L"DS_CONTROL", 0x400},
    {L"DS_CENTER", 0x800},
    {L"DS_CENTERMOUSE", 0x1000},
    {L"DS_CONTEXTHELP", 0x2000},
    {L"DS_SHELLFONT", 0x48},
    {L"BS_PUSHBUTTON", 0x0},
    {L"BS_DEFPUSHBUTTON", 0x1},
    {L"BS_CHECKBOX", 0x2},
    {L"BS_AUTOCHECKBOX", 0x3},
    {L"BS_RADIOBUTTON", 0x4},
    {L"BS_3STATE", 0x5},
    {L"BS_AUTO3STATE", 0x6},
    {L"BS_GROUPBOX", 0x7},
    {L"BS_USERBUTTON", 0x8},
    {L"BS_AUTORADIOBUTTON", 0x9},
    {L"BS_PUSHBOX", 0xa},
    {L"BS_OWNERDRAW", 0xb},
    {L"BS_TYPEMASK", 0xf},
    {L"BS_LEFTTEXT", 0x20},
    {L"BS_BACKIMGE", 0x1000},
    {L"BS_MENU", 0x8000},
    {L"BS_SYSTEM", 0x20},
    {L"BS_TEXT", 0x0},
    {L"BS_ICON", 0x40},
    {L"BS_BITMAP", 0x80},
    {L"BS_LEFT", 0x100},
    {L"BS_RIGHT", 0x200},
    {L"BS_CENTER", 0x300},
    {L"BS_TOP", 0x400},
    {L"BS_BOTTOM", 0x800},
    {L"BS_VCENTER", 0xc00},
    {L"BS_PUSHLIKE", 0x1000},
    {L"BS_MULTILINE", 0x2000},
    {L"BS_NOTIFY", 0x4000},
    {L"BS_FLAT", 0x8000},
    {L"BS_RIGHTBUTTON", 0x20},
    {L"SS_LEFT", 0x0},
    {L"SS_CENTER", 0x1},
    {L"SS_RIGHT", 0x2},
    {L"SS_TOP", 0x3},
    {L"SS_BOTTOM", 0x4},
    {L"SS_VCENTER", 0x5},
    {L"SBS_HORZ", 0x0},
    {L"SBS_VERT", 0x1},
    {L"SBS_TOPALIGN", 0x2},
    {L"SBS_LEFTALIGN", 0x2},
    {L"SBS_BOTTOMALIGN", 0x4},
    {L"SBS_RIGHTALIGN", 0x4},
    {L"SBS_SIZEBOXTOPLEFTALIGN", 0x2},
    {L"SBS_SIZEBOXBOTTOMRIGHTALIGN", 0x4},
    {L"SBS_SIZEBOX", 0x8},
    {L"SBS_SIZEGRIP", 0x10},
    {L"ES_LEFT", 0x0},
    {L"ES_CENTER", 0x1},
    {L"ES_RIGHT", 0x2},
    {L"ES_MULTILINE", 0x4},
    {L"ES_UPPERCASE", 0x8},
    {L"ES_LOWERCASE", 0x10},
    {L"ES_PASSWORD", 0x20},
    {L"ES_AUTOVSCROLL", 0x40},
    {L"ES_AUTOHSCROLL", 0x80},
    {L"ES_NOHIDESEL", 0x100},
    {L"ES_OEMCONVERT", 0x400},
    {L"ES_READONLY", 0x800},
    {L"ES_WANTRETURN", 0x1000},
    {L"ES_NUMBER", 0x2000},
    {L"ES_SAVESEL", 0x8000},
    {L"ES_SUNKEN", 0x4000},
    {L"ES_DISABLENOSCROLL", 0x2000},
    {L"ES_SELECTIONBAR", 0x1000000},
    {L"ES_NOOLEDRAGDROP", 0x8},
    {L"ES_EX_NOCALLOLEINIT", 0x0},
    {L"ES_VERTICAL", 0x400000},
    {L"ES_NOIME", 0x80000},
    {L"ES_SELFIME", 0x40000},
    {L"SPLS_VERTICAL", 0x1},
    {L"SPLS_FIXED", 0x2},
    {L"TVS_HASBUTTONS", 0x1},
    {L"TVS_HASLINES", 0x2},
    {L"TVS_LINESATROOT", 0x4},
    {L"TVS_EDITLABELS", 0x8},
    {L"TVS_DISABLEDRAGDROP", 0x10},
    {L"TVS_SHOWSELALWAYS", 0x20},
    {L"TVS_RTLREADING", 0x40},
    {L"TVS_NOTOOLTIPS", 0x80},
    {L"TVS_CHECKBOXES", 0x100},
    {L"TVS_TRACKSELECT", 0x200},
    {L"TVS_SINGLEEXPAND", 0x400},
    {L"TVS_INFOTIP", 0x800},
    {L"TVS_FULLROWSELECT", 0x1000},
    {L"TVS_NOSCROLL", 0x2000},
    {L"TVS_NONEVENHEIGHT", 0x4000},
    {L"TVS_NOHSCROLL", 0x8000},
    {L"CBS_DROPDOWNLIST", 0x3},
    {L"CBS_OWNERDRAWFIXED", 0x10},
    {L"CBS_OWNERDRAWVARIABLE", 0x20},
    {L"CBS_HASSTRINGS", 0x200},
};

// Extended styles, all the platform's values.
const MirlStyleRow kExStyles[] = {
    {L"WS_EX_ACCEPTFILES", 0x10},
    {L"WS_EX_APPWINDOW", 0x40000},
    {L"WS_EX_CLIENTEDGE", 0x200},
    {L"WS_EX_COMPOSITED", 0x2000000},
    {L"WS_EX_CONTEXTHELP", 0x400},
    {L"WS_EX_CONTROLPARENT", 0x10000},
    {L"WS_EX_DLGMODALFRAME", 0x1},
    {L"WS_EX_LAYERED", 0x80000},
    {L"WS_EX_LAYOUTRTL", 0x400000},
    {L"WS_EX_LEFT", 0x0},
    {L"WS_EX_LEFTSCROLLBAR", 0x4000},
    {L"WS_EX_LTRREADING", 0x0},
    {L"WS_EX_MDICHILD", 0x40},
    {L"WS_EX_NOACTIVATE", 0x8000000},
    {L"WS_EX_NOINHERITLAYOUT", 0x100000},
    {L"WS_EX_NOPARENTNOTIFY", 0x4},
    {L"WS_EX_OVERLAPPEDWINDOW", 0x300},
    {L"WS_EX_PALETTEWINDOW", 0x188},
    {L"WS_EX_RIGHT", 0x1000},
    {L"WS_EX_RIGHTSCROLLBAR", 0x0},
    {L"WS_EX_RTLREADING", 0x2000},
    {L"WS_EX_STATICEDGE", 0x20000},
    {L"WS_EX_TOOLWINDOW", 0x80},
    {L"WS_EX_TOPMOST", 0x8},
    {L"WS_EX_TRANSPARENT", 0x20},
    {L"WS_EX_WINDOWEDGE", 0x100},
};

// Position styles of the "Align" attribute. "ALIGN_NONE " is stored with a trailing blank:
// blanks never reach a lookup, so the row can't match, which changes nothing as its value
// is 0.
const MirlStyleRow kPositionStyles[] = {
    {L"ALIGN_NONE ", ALIGN_NONE},
    {L"ALIGN_PARENT_LEFT", ALIGN_PARENT_LEFT},
    {L"ALIGN_PARENT_TOP", ALIGN_PARENT_TOP},
    {L"ALIGN_PARENT_RIGHT", ALIGN_PARENT_RIGHT},
    {L"ALIGN_PARENT_BOTTOM", ALIGN_PARENT_BOTTOM},
    {L"ALIGN_PARENT_WIDTH", ALIGN_PARENT_WIDTH},
    {L"ALIGN_PARENT_HEIGHT", ALIGN_PARENT_HEIGHT},
    {L"ALIGN_PARENT_VCENTER", ALIGN_PARENT_VCENTER},
    {L"ALIGN_PARENT_HCENTER", ALIGN_PARENT_HCENTER},
    {L"ALIGN_PRE_LEFT", ALIGN_PRE_LEFT},
    {L"ALIGN_PRE_TOP", ALIGN_PRE_TOP},
    {L"ALIGN_PRE_RIGHT", ALIGN_PRE_RIGHT},
    {L"ALIGN_PRE_BOTTOM", ALIGN_PRE_BOTTOM},
    {L"OFFSET_PRE_LEFT", OFFSET_PRE_LEFT},
    {L"OFFSET_PRE_RIGHT", OFFSET_PRE_RIGHT},
    {L"OFFSET_PRE_TOP", OFFSET_PRE_TOP},
    {L"OFFSET_PRE_BOTTOM", OFFSET_PRE_BOTTOM},
};

// Text layout of captions: order of text and image, then alignment.
const MirlStyleRow kTextLayout[] = {
    {L"ORDER_H_TEXT_IMAGE", ORDER_H_TEXT_IMAGE},
    {L"ORDER_H_IMAGE_TEXT", ORDER_H_IMAGE_TEXT},
    {L"ORDER_V_TEXT_IMAGE", ORDER_V_TEXT_IMAGE},
    {L"ORDER_V_IMAGE_TEXT", ORDER_V_IMAGE_TEXT},
    {L"ALIGN_H_CENTER", ALIGN_H_CENTER},
    {L"ALIGN_LEFT", ALIGN_LEFT},
    {L"ALIGN_RIGHT", ALIGN_RIGHT},
    {L"ALIGN_V_CENTER", ALIGN_V_CENTER},
    {L"ALIGN_TOP", ALIGN_TOP},
    {L"ALIGN_BOTTOM", ALIGN_BOTTOM},
};

static_assert(std::size(kWindowStyles) == 134, "window style table");
static_assert(std::size(kExStyles) == 26, "extended style table");
static_assert(std::size(kPositionStyles) == 17, "position style table");
static_assert(std::size(kTextLayout) == 10, "text layout table");

unsigned long LookUpWord(const wchar_t *word, const MirlStyleTable &table)
{
    for (std::size_t i = 0; i < table.count; ++i) {
        if (std::wcscmp(table.rows[i].name, word) == 0) {
            return table.rows[i].value;
        }
    }
    return 0;
}

}  // namespace

namespace MIRL {

MirlStyleTable WindowStyleTable()
{
    return {kWindowStyles, std::size(kWindowStyles)};
}

MirlStyleTable ExStyleTable()
{
    return {kExStyles, std::size(kExStyles)};
}

MirlStyleTable PositionStyleTable()
{
    return {kPositionStyles, std::size(kPositionStyles)};
}

MirlStyleTable TextLayoutTable()
{
    return {kTextLayout, std::size(kTextLayout)};
}

unsigned long ParseStyleWords(const wchar_t *text, const MirlStyleTable &table)
{
    if (text == nullptr) {
        return 0;
    }
    // The word is collected in a buffer as large as a row's name. A word that outgrows it
    // is longer than every name, so it is only counted, never stored, and adds nothing.
    wchar_t word[kMirlStyleNameCapacity];
    std::size_t length = 0;
    bool tooLong = false;
    unsigned long result = 0;
    for (const wchar_t *p = text;; ++p) {
        const wchar_t c = *p;
        if (c == L'\0' || c == L'|') {
            if (!tooLong) {
                word[length] = L'\0';
                result |= LookUpWord(word, table);
            }
            length = 0;
            tooLong = false;
            if (c == L'\0') {
                break;
            }
        } else if (c == L' ') {
            // Blanks are dropped everywhere, inside a word too.
        } else if (length + 1 < kMirlStyleNameCapacity) {
            word[length++] = c;
        } else {
            tooLong = true;
        }
    }
    return result;
}

unsigned long StringToWindowStyle(const wchar_t *text)
{
    return ParseStyleWords(text, WindowStyleTable());
}

unsigned long StringToExStyle(const wchar_t *text)
{
    return ParseStyleWords(text, ExStyleTable());
}

unsigned long StringToPositionStyle(const wchar_t *text)
{
    return ParseStyleWords(text, PositionStyleTable());
}

unsigned long StringToTextLayout(const wchar_t *text)
{
    return ParseStyleWords(text, TextLayoutTable());
}

}  // namespace MIRL
