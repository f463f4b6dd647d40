#include "MirlMessageStorm.h"

#include "MirlDialogStorm.h"
#include "MirlFuzzHost.h"
#include "MirlFuzzRandom.h"
#include "MirlSkinCorpus.h"

#include <uxtheme.h>
#include <vsstyle.h>

#include <cstdio>
#include <cstring>
#include <cwchar>

namespace mirlfuzz {

namespace {

using P = StormParam;

// Messages every window class gets: input, the library's own messages, painting into a given
// context, layout at any size, focus, capture and the notifications a parent reflects.
const StormMessage kCommonMessages[] = {
    {WM_MOUSEMOVE, WM_MOUSEMOVE, P::Number, P::Point, 12},
    {WM_LBUTTONDOWN, WM_MBUTTONDBLCLK, P::Number, P::Point, 12},
    {WM_MOUSEWHEEL, WM_MOUSEHWHEEL, P::Number, P::Point, 4},
    {WM_MOUSEHOVER, WM_MOUSEHOVER, P::Number, P::Point, 2},
    {WM_MOUSELEAVE, WM_MOUSELEAVE, P::Zero, P::Zero, 2},
    {WM_KEYDOWN, WM_KEYUP, P::Key, P::KeyData, 10},
    {WM_CHAR, WM_DEADCHAR, P::Number, P::KeyData, 5},
    {WM_SYSKEYDOWN, WM_SYSDEADCHAR, P::Key, P::KeyData, 3},
    {WM_UNICHAR, WM_UNICHAR, P::Number, P::KeyData, 1},
    {WM_IME_STARTCOMPOSITION, WM_IME_COMPOSITION, P::Number, P::Number, 1},
    {WM_IME_CHAR, WM_IME_CHAR, P::Number, P::KeyData, 1},
    {WM_USER, WM_USER + 0x7FFF, P::Number, P::Number, 8},
    {WM_USER, WM_USER + 0x200, P::Number, P::Number, 6},
    {WM_USER + 1, WM_USER + 1, P::Window, P::Number, 3},
    {WM_USER + 2, WM_USER + 2, P::Number, P::Number, 3},
    {WM_APP, 0xBFFF, P::Number, P::Number, 2},
    {WM_PAINT, WM_PAINT, P::Dc, P::Number, 8},
    {WM_PRINTCLIENT, WM_PRINTCLIENT, P::Dc, P::Number, 4},
    {WM_PRINT, WM_PRINT, P::Dc, P::Number, 2},
    {WM_ERASEBKGND, WM_ERASEBKGND, P::Dc, P::Number, 3},
    {WM_SIZE, WM_SIZE, P::Number, P::Size, 8},
    {WM_SETFOCUS, WM_KILLFOCUS, P::Window, P::Zero, 2},
    {WM_ENABLE, WM_ENABLE, P::Bool, P::Zero, 1},
    {WM_CANCELMODE, WM_CANCELMODE, P::Zero, P::Zero, 1},
    {WM_CAPTURECHANGED, WM_CAPTURECHANGED, P::Zero, P::Window, 1},
    {WM_TIMER, WM_TIMER, P::Number, P::Zero, 2},
    {WM_SETCURSOR, WM_SETCURSOR, P::Window, P::Number, 2},
    {WM_NCHITTEST, WM_NCHITTEST, P::Zero, P::Point, 2},
    {WM_CONTEXTMENU, WM_CONTEXTMENU, P::Window, P::Point, 1},
    {WM_SETFONT, WM_SETFONT, P::Font, P::Bool, 2},
    {WM_GETFONT, WM_GETFONT, P::Zero, P::Zero, 1},
    {WM_SETREDRAW, WM_SETREDRAW, P::Bool, P::Zero, 1},
    {WM_SHOWWINDOW, WM_SHOWWINDOW, P::Bool, P::Number, 1},
    {WM_ACTIVATE, WM_ACTIVATE, P::Number, P::Window, 1},
    {WM_MOUSEACTIVATE, WM_MOUSEACTIVATE, P::Window, P::Number, 1},
    {WM_COMMAND, WM_COMMAND, P::Number, P::Window, 3},
    {WM_HSCROLL, WM_VSCROLL, P::Number, P::Window, 2},
    {WM_CTLCOLORMSGBOX, WM_CTLCOLORSTATIC, P::Dc, P::Window, 2},
    {WM_PARENTNOTIFY, WM_PARENTNOTIFY, P::Number, P::Window, 1},
    {WM_THEMECHANGED, WM_THEMECHANGED, P::Zero, P::Zero, 1},
    {WM_SYSCOLORCHANGE, WM_SYSCOLORCHANGE, P::Zero, P::Zero, 1},
    {WM_SETTEXT, WM_SETTEXT, P::Zero, P::Text, 2},
    {WM_GETTEXTLENGTH, WM_GETTEXTLENGTH, P::Zero, P::Zero, 1},
    {WM_NULL, WM_NULL, P::Number, P::Number, 1},
};

// The deny-list of every class: never sent with random parameters. Each entry says why.
const DeniedMessage kCommonDenied[] = {
    // Pointers that the system or the window's own code dereferences; a string or a draw-item
    // record of the storm's own may go where the window expects one.
    {WM_CREATE, P::Zero}, {WM_NCCREATE, P::Zero},            // CREATESTRUCT
    {WM_SETTEXT, P::Text}, {WM_GETTEXT, P::Zero},            // strings
    {WM_NCCALCSIZE, P::Zero}, {WM_WINDOWPOSCHANGING, P::Zero}, {WM_WINDOWPOSCHANGED, P::Zero},
    {WM_GETMINMAXINFO, P::Zero}, {WM_SIZING, P::Zero}, {WM_MOVING, P::Zero},
    {WM_STYLECHANGING, P::Zero}, {WM_STYLECHANGED, P::Zero}, // STYLESTRUCT
    {WM_NOTIFY, P::Zero},                                    // NMHDR, read by the reflection
    {WM_DRAWITEM, P::Zero}, {WM_MEASUREITEM, P::Zero}, {WM_DELETEITEM, P::Zero}, {WM_COMPAREITEM, P::Zero},
    // The same records reflected back to a control (OCM_ lies inside the WM_USER range).
    {OCM_NOTIFY, P::Zero}, {OCM_DRAWITEM, P::DrawItem}, {OCM_MEASUREITEM, P::Zero}, {OCM_DELETEITEM, P::Zero},
    {OCM_COMPAREITEM, P::Zero},
    {WM_COPYDATA, P::Zero}, {WM_HELP, P::Zero}, {WM_SETTINGCHANGE, P::Zero}, {WM_GETDLGCODE, P::Zero},
    {WM_IME_REQUEST, P::Zero}, {WM_IME_CONTROL, P::Zero},
    {WM_IME_SETCONTEXT, P::Zero}, {WM_IME_NOTIFY, P::Zero}, // the system's IME window reads them
    // The end of the window's life, which the storm must outlast.
    {WM_DESTROY, P::Zero}, {WM_NCDESTROY, P::Zero}, {WM_CLOSE, P::Zero}, {WM_QUIT, P::Zero},
    {WM_QUERYENDSESSION, P::Zero}, {WM_ENDSESSION, P::Zero},
    // Commands and non-client input that start the system's modal move, size and menu loops.
    {WM_SYSCOMMAND, P::Zero}, {WM_NCLBUTTONDOWN, P::Zero}, {WM_NCRBUTTONDOWN, P::Zero},
    {WM_NCMBUTTONDOWN, P::Zero}, {WM_ENTERMENULOOP, P::Zero},
};

// MirlButton, on the system's BUTTON: its BM_ messages, the reflected notifications it handles.
const StormMessage kButtonMessages[] = {
    {BM_GETCHECK, BM_SETSTATE, P::Number, P::Number, 4},
    {BM_CLICK, BM_SETDONTCLICK, P::Number, P::Number, 3},
    {BM_SETIMAGE, BM_SETIMAGE, P::Number, P::Text, 3},
    {BCM_SETDROPDOWNSTATE, BCM_SETDROPDOWNSTATE, P::Bool, P::Zero, 1},
    {BCM_GETNOTELENGTH, BCM_GETNOTELENGTH, P::Zero, P::Zero, 1},
    {BCM_SETSHIELD, BCM_SETSHIELD, P::Zero, P::Bool, 1},
    {OCM_COMMAND, OCM_COMMAND, P::Number, P::Window, 4},
    {OCM_CTLCOLORBTN, OCM_CTLCOLORBTN, P::Dc, P::Window, 2},
    {OCM_DRAWITEM, OCM_DRAWITEM, P::Number, P::DrawItem, 4},
};

const DeniedMessage kButtonDenied[] = {
    {BM_SETIMAGE, P::Text}, // a package entry name
    // Not a pointer, but it replaces the owner-drawn type: the system would paint then, not the
    // control (and Wine paints nothing at all for the split and command-link types).
    {BM_SETSTYLE, P::Zero},
    // The button's structures of the common controls.
    {BCM_GETIDEALSIZE, P::Zero}, {BCM_SETIMAGELIST, P::Zero}, {BCM_GETIMAGELIST, P::Zero},
    {BCM_SETTEXTMARGIN, P::Zero}, {BCM_GETTEXTMARGIN, P::Zero}, {BCM_SETSPLITINFO, P::Zero},
    {BCM_GETSPLITINFO, P::Zero}, {BCM_SETNOTE, P::Zero}, {BCM_GETNOTE, P::Zero},
};

// MirlStatic: a caption with links, clicked and hovered by the mouse.
const StormMessage kStaticMessages[] = {
    {WM_SETTEXT, WM_SETTEXT, P::Zero, P::Text, 6},
    {OCM_CTLCOLORBTN, OCM_CTLCOLORBTN, P::Dc, P::Window, 2},
    {OCM_COMMAND, OCM_COMMAND, P::Number, P::Window, 2},
};

// MirlProgressBar, on the system's progress bar: its PBM_ messages, WM_USER + 2 among them.
const StormMessage kProgressMessages[] = {
    {PBM_SETRANGE, PBM_GETSTATE, P::Number, P::Number, 8},
    {PBM_SETRANGE32, PBM_SETRANGE32, P::Number, P::Number, 2},
};

const DeniedMessage kProgressDenied[] = {
    {PBM_GETRANGE, P::Zero}, // PBRANGE
};

// MirlTrackBar, on the system's track bar: its TBM_ messages and the custom draw of its paints.
const StormMessage kTrackBarMessages[] = {
    {TBM_GETPOS, WM_USER + 34, P::Number, P::Number, 8}, // to TBM_SETPOSNOTIFY
    {TBM_SETPOS, TBM_SETPOS, P::Bool, P::Number, 2},
    {TBM_SETRANGE, TBM_SETRANGEMAX, P::Bool, P::Number, 2},
};

const DeniedMessage kTrackBarDenied[] = {
    {TBM_GETTHUMBRECT, P::Zero}, {TBM_GETCHANNELRECT, P::Zero}, // RECT
    // A window the control would move beside itself, or send its tooltip requests to (a
    // control made its own tooltip would take them as its own messages, pointers and all).
    {TBM_SETBUDDY, P::Zero}, {TBM_SETTOOLTIPS, P::Zero},
};

// MirlInchingSwitch and MirlSplitter take the mouse: presses, held moves, releases.
const StormMessage kMouseDragMessages[] = {
    {WM_MOUSEMOVE, WM_MOUSEMOVE, P::Bool, P::Point, 10},
    {WM_LBUTTONDOWN, WM_LBUTTONUP, P::Bool, P::Point, 4},
};

// MirlCommonEdit, on the system's EDIT: the edit messages whose parameters are numbers, text
// cleared and undone, and the reflected EN_CHANGE that makes the number follow the text.
const StormMessage kCommonEditMessages[] = {
    {EM_SETSEL, EM_SETSEL, P::Number, P::Number, 3},
    {EM_GETMODIFY, EM_SETMODIFY, P::Bool, P::Zero, 1},
    {EM_LINEINDEX, EM_LINEINDEX, P::Number, P::Zero, 1},
    {EM_LINELENGTH, EM_LINELENGTH, P::Number, P::Zero, 1},
    {EM_LIMITTEXT, EM_UNDO, P::Number, P::Zero, 2},
    {EM_EMPTYUNDOBUFFER, EM_EMPTYUNDOBUFFER, P::Zero, P::Zero, 1},
    {EM_SETREADONLY, EM_SETREADONLY, P::Bool, P::Zero, 1},
    {EM_POSFROMCHAR, EM_POSFROMCHAR, P::Number, P::Zero, 1},
    {EM_CHARFROMPOS, EM_CHARFROMPOS, P::Zero, P::Point, 1},
    {WM_CLEAR, WM_UNDO, P::Zero, P::Zero, 2},
    {OCM_COMMAND, OCM_COMMAND, P::Number, P::Window, 6},
};

const DeniedMessage kCommonEditDenied[] = {
    // The system edit opens its context menu, a modal loop, at a right click.
    {WM_CONTEXTMENU, P::Zero}, {WM_RBUTTONUP, P::Zero},
    // Typed characters grow the system edit's text and undo buffer without bound: that is
    // state, not a leak, and would hide one. Typing is tested in the field's own tests; here the
    // text changes only by WM_SETTEXT, undo and clearing.
    {WM_CHAR, P::Zero}, {WM_UNICHAR, P::Zero}, {WM_IME_CHAR, P::Zero},
    // Measured under Wine: margins of tens of thousands of pixels made the scrolling edit loop
    // for ever at the next character.
    {EM_SETMARGINS, P::Zero},
    // The cue banner and balloon messages lie in the WM_USER range: strings and records.
    {EM_SETCUEBANNER, P::Zero}, {EM_GETCUEBANNER, P::Zero}, {EM_SHOWBALLOONTIP, P::Zero},
};

// MirlSpinCtrl, on the system's up-down: its messages whose parameters are numbers, and arrow
// presses. The reflected notification is a record the storm has no kind for: the tests send it.
const StormMessage kSpinMessages[] = {
    {UDM_SETRANGE, UDM_SETRANGE, P::Zero, P::Number, 2},
    {UDM_GETRANGE, UDM_GETRANGE, P::Zero, P::Zero, 1},
    {UDM_SETPOS, UDM_GETPOS, P::Zero, P::Number, 2},
    {UDM_SETBASE, UDM_GETBASE, P::Number, P::Zero, 1},
    {UDM_SETRANGE32, UDM_SETRANGE32, P::Number, P::Number, 2},
    {UDM_SETPOS32, UDM_SETPOS32, P::Zero, P::Number, 2},
    {UDM_GETBUDDY, UDM_GETBUDDY, P::Zero, P::Zero, 1},
};

const DeniedMessage kSpinDenied[] = {
    // Pointers the up-down writes through.
    {UDM_GETRANGE32, P::Zero}, {UDM_GETPOS32, P::Zero}, {UDM_SETACCEL, P::Zero}, {UDM_GETACCEL, P::Zero},
    // It subclasses its buddy: any window of the pool, the desktop included.
    {UDM_SETBUDDY, P::Zero},
};

// MirlDlgButton on a dialog's own button: its state messages and the draw-item record.
const StormMessage kDlgButtonMessages[] = {
    {BM_GETCHECK, BM_SETSTATE, P::Number, P::Number, 6},
    {BM_CLICK, BM_CLICK, P::Zero, P::Zero, 2},
    {OCM_DRAWITEM, OCM_DRAWITEM, P::Number, P::DrawItem, 4},
};

const DeniedMessage kDlgButtonDenied[] = {
    // It would replace the owner-drawn type, and the system would paint instead.
    {BM_SETSTYLE, P::Zero},
    {BM_SETIMAGE, P::Zero},
};

// MirlDlgStatic: the caption set again, with and without marks.
const StormMessage kDlgStaticMessages[] = {
    {WM_SETTEXT, WM_SETTEXT, P::Zero, P::Text, 6},
};

// MirlEdit: typing, keys with the clipboard's letters, copy and cut, and new texts. WM_PASTE is
// left out: under Wine every GetClipboardData grows the heap by about 1 KiB (measured with the
// system alone), which the growth check would count against the edit.
const StormMessage kEditMessages[] = {
    {WM_CHAR, WM_CHAR, P::Key, P::KeyData, 12},
    {WM_KEYDOWN, WM_KEYDOWN, P::Key, P::KeyData, 10},
    {WM_CUT, WM_COPY, P::Zero, P::Zero, 4},
    {WM_SETTEXT, WM_SETTEXT, P::Zero, P::Text, 4},
    {WM_LBUTTONDBLCLK, WM_LBUTTONDBLCLK, P::Number, P::Point, 3},
    {WM_IME_COMPOSITION, WM_IME_COMPOSITION, P::Number, P::Number, 2},
};

// MirlScrollBar: the system scroll bar's messages, which it passes to the default procedure, and
// the repeat timer's id among the others.
const StormMessage kScrollBarMessages[] = {
    {SBM_SETPOS, SBM_GETSCROLLBARINFO, P::Number, P::Number, 4},
    {WM_TIMER, WM_TIMER, P::Zero, P::Zero, 4},
    {WM_LBUTTONDBLCLK, WM_LBUTTONDBLCLK, P::Number, P::Point, 4},
};

const DeniedMessage kScrollBarDenied[] = {
    // Records that the default procedure may fill or read.
    {SBM_GETRANGE, P::Zero}, {SBM_GETSCROLLINFO, P::Zero}, {SBM_GETSCROLLBARINFO, P::Zero},
};

// MIRLOutlookCtrl: the folder-changed message with any bar, and its own scroll bar's steps.
const StormMessage kOutlookMessages[] = {
    {WM_USER + 101, WM_USER + 101, P::Bool, P::Window, 4},
    {WM_USER + 101, WM_USER + 101, P::Number, P::Number, 2},
    {WM_VSCROLL, WM_VSCROLL, P::Number, P::Window, 4},
    {WM_MOUSEWHEEL, WM_MOUSEWHEEL, P::Number, P::Point, 4},
};

// MirlGroupBox: what it passes up to its parent, the slider's notification among them.
const StormMessage kGroupBoxMessages[] = {
    {WM_USER + 120, WM_USER + 120, P::Number, P::Number, 4},
    {WM_COMMAND, WM_COMMAND, P::Number, P::Window, 3},
    {WM_VKEYTOITEM, WM_CHARTOITEM, P::Number, P::Window, 1},
};

// MirlComboBox: presses that open its list (the process's popup, replaced at every press and
// ended by disabling), the list's commands in and out of the 1 to 128 window.
const StormMessage kComboMessages[] = {
    {WM_LBUTTONDOWN, WM_LBUTTONDOWN, P::Number, P::Point, 8},
    {WM_COMMAND, WM_COMMAND, P::Number, P::Window, 6},
    {WM_ENABLE, WM_ENABLE, P::Bool, P::Zero, 3},
    {WM_VSCROLL, WM_VSCROLL, P::Number, P::Window, 1},
};

// MirlListView filled with rows (FillStormList): scrolling messages from any window, presses
// and double clicks with Ctrl, hover.
const StormMessage kListViewMessages[] = {
    {WM_HSCROLL, WM_VSCROLL, P::Number, P::Window, 8},
    {WM_LBUTTONDOWN, WM_LBUTTONDBLCLK, P::Number, P::Point, 6},
    {WM_MOUSEMOVE, WM_MOUSEMOVE, P::Number, P::Point, 4},
};

// Numbers at the edges of every width a parameter is read at.
uint64_t NumberFrom(uint64_t r)
{
    static const uint64_t edges[] = {
        0, 1, 2, 0xFFFFFFFFFFFFFFFFULL, 0x7F, 0x80, 0xFF, 0x7FFF, 0x8000, 0xFFFF, 0x10000,
        0x7FFFFFFF, 0x80000000ULL, 0xFFFFFFFFULL, 0x100000000ULL, 0x7FFFFFFFFFFFFFFFULL, 0x8000000000000000ULL,
    };
    switch ((r >> 8) % 4) {
    case 0: return edges[(r >> 16) % (sizeof(edges) / sizeof(edges[0]))];
    case 1: return (r >> 16) & 0xFF;
    case 2: return (r >> 16) & 0xFFFFFFFFULL;
    default: return r >> 3;
    }
}

uint64_t PairFrom(uint64_t r, const uint16_t *edges, size_t count)
{
    auto one = [&](uint64_t bits) -> uint16_t {
        return (bits & 3) != 0 ? edges[(bits >> 2) % count] : static_cast<uint16_t>(bits >> 4);
    };
    return static_cast<uint64_t>(one(r >> 8)) | (static_cast<uint64_t>(one(r >> 32)) << 16);
}

const uint16_t kCoordinates[] = {0, 1, 2, 10, 50, 99, 150, 0x7FFF, 0x8000, 0xFFFF, 0xFFFE};
const uint16_t kSizes[] = {0, 1, 2, 64, 200, 150, 320, 0x7FFF, 0x8000, 0xFFFF, 1000};
const uint64_t kKeys[] = {VK_F4, VK_MENU, VK_F10, VK_SPACE, VK_RETURN, VK_TAB, VK_ESCAPE, VK_LEFT, VK_RIGHT,
                          VK_UP, VK_DOWN, VK_HOME, VK_END, VK_PRIOR, VK_NEXT, VK_DELETE, VK_BACK, VK_INSERT,
                          VK_SHIFT, VK_CONTROL, 'A', 'C', 'V', 'X', 'Z', 0, 0xFF, VK_APPS, VK_PROCESSKEY};
const uint64_t kKeyData[] = {0, 1, 0xFFFFFFFFULL, 0x20000001ULL, 0xC0000001ULL, 0xE0000001ULL, 0x00010001ULL, 0x7FFF};

enum { PoolSize = 8 };

// Posted messages (real paints among them) are handled after every kPumpEvery sent ones. The
// warm-up runs the same way, so that the system's caches that grow with nested painting (device
// contexts in use at once) are as large as they get before the counters are read.
const int kPumpEvery = 200;
const int kWarmUpMessages = 2000;

// The system keeps released device contexts for reuse, as many as were ever in use at once;
// painting nested under extreme layouts adds a few of them over a long storm.
const int kDcCacheBound = 8;

uint64_t ParamValue(StormParam kind, uint64_t r)
{
    switch (kind) {
    case P::Zero: return 0;
    case P::Number: return NumberFrom(r);
    case P::Point: return (r & 7) == 0 ? NumberFrom(r) : PairFrom(r, kCoordinates, sizeof(kCoordinates) / sizeof(kCoordinates[0]));
    case P::Size: return (r & 7) == 0 ? NumberFrom(r) : PairFrom(r, kSizes, sizeof(kSizes) / sizeof(kSizes[0]));
    case P::Key: return (r & 3) == 0 ? (r >> 8) & 0xFF : kKeys[(r >> 8) % (sizeof(kKeys) / sizeof(kKeys[0]))];
    case P::KeyData: return (r & 3) == 0 ? NumberFrom(r) : kKeyData[(r >> 8) % (sizeof(kKeyData) / sizeof(kKeyData[0]))];
    case P::Bool: return (r & 7) == 0 ? NumberFrom(r) : (r >> 8) & 1;
    case P::Dc:
    case P::Window:
    case P::Font:
    case P::Text: return (r >> 8) % PoolSize; // an index into the worker's pool
    case P::DrawItem: return r;               // the fields of the record
    }
    return 0;
}

const char *ParamName(StormParam kind)
{
    switch (kind) {
    case P::Dc: return "dc";
    case P::Window: return "hwnd";
    case P::Font: return "font";
    case P::Text: return "text";
    default: return nullptr;
    }
}

// Live, null and stale handles that the symbolic parameters resolve to, real strings, and the
// record a DrawItem parameter points at.
struct HandlePool {
    WPARAM dc[PoolSize];
    WPARAM window[PoolSize];
    WPARAM font[PoolSize];
    std::wstring text[PoolSize];
    DRAWITEMSTRUCT item;
    HWND self;
};

// A draw-item record from random bits: any state and action, a DC of the pool, a rectangle
// from the ordinary to the extreme.
LPARAM DrawItemFrom(HandlePool &pool, uint64_t bits)
{
    static const LONG edges[] = {0, 1, 20, 64, 150, -1, 0x7FFF, -0x8000, 0x7FFFFFFF, -0x7FFFFFFF};
    auto edge = [&](unsigned shift) { return edges[(bits >> shift) % (sizeof(edges) / sizeof(edges[0]))]; };
    DRAWITEMSTRUCT &item = pool.item;
    item = DRAWITEMSTRUCT();
    item.CtlType = ODT_BUTTON;
    item.CtlID = static_cast<UINT>(bits >> 40);
    item.itemAction = static_cast<UINT>((bits >> 4) & 7);
    item.itemState = static_cast<UINT>((bits >> 8) & 0x1FFF);
    item.hwndItem = (bits & 1) != 0 ? pool.self : reinterpret_cast<HWND>(pool.window[(bits >> 1) % PoolSize]);
    item.hDC = reinterpret_cast<HDC>(pool.dc[(bits >> 24) % PoolSize]);
    item.rcItem = (bits & 2) != 0 ? RECT{0, 0, 200, 150} : RECT{edge(28), edge(32), edge(36), edge(44)};
    return reinterpret_cast<LPARAM>(&item);
}

WPARAM Resolve(HandlePool &pool, StormParam kind, uint64_t value)
{
    switch (kind) {
    case P::Dc: return pool.dc[value % PoolSize];
    case P::Window: return pool.window[value % PoolSize];
    case P::Font: return pool.font[value % PoolSize];
    case P::Text: return reinterpret_cast<WPARAM>(pool.text[value % PoolSize].c_str());
    case P::DrawItem: return static_cast<WPARAM>(DrawItemFrom(pool, value));
    default: return static_cast<WPARAM>(value);
    }
}

void Note(SharedBlock *block, const std::string &text)
{
    if (block != nullptr) {
        snprintf(block->note, sizeof(block->note), "%s", text.c_str());
    }
}

// The first value of each kind that a rehearsal sends: every pool entry, every small number
// (which covers each hit-test code and so each cursor), and the edges.
uint64_t RehearsalValue(StormParam kind, unsigned j)
{
    switch (kind) {
    case P::Zero: return 0;
    case P::Dc:
    case P::Window:
    case P::Font:
    case P::Text: return j % PoolSize;
    case P::DrawItem: return static_cast<uint64_t>(j) * 0x9E3779B97F4A7C15ULL;
    default: return j < 24 ? j : NumberFrom(static_cast<uint64_t>(j) << 16);
    }
}

// Sends each range's messages with the representative values of their parameters once, so
// that what the system creates on first use (cursors, brushes, caches) exists before the
// storm's counters are read.
template <class Send>
void Rehearse(const StormClass &row, const std::vector<StormMessage> &messages, Send send)
{
    for (const StormMessage &m : messages) {
        const UINT span = m.last - m.first + 1;
        const UINT step = span > 16 ? span / 16 : 1;
        for (UINT message = m.first; message <= m.last && message >= m.first; message += step) {
            if (IsDeniedMessage(row, message, m.lParam)) {
                continue;
            }
            for (unsigned j = 0; j < 40; ++j) {
                send(StormDraw{message, m.wParam, m.lParam, RehearsalValue(m.wParam, j), RehearsalValue(m.lParam, 39 - j)});
            }
        }
    }
}

// Everything posted handled, capture released, then every memory picture dropped by a layout of
// the host at its ordinary size: the state in which heap and GDI objects are compared. Nothing
// is pumped after the layout, so no paint makes the pictures again before the count.
void Settle(HWND host)
{
    ::ReleaseCapture();
    // The thread has one caret, a bitmap of the system's that whichever control last took the
    // focus holds; sent focus messages and a typed Enter make and end it at random. Both
    // censuses are taken without it, so that it counts as state and a caret that leaks still shows.
    ::DestroyCaret();
    PumpMessages(5000);
    RECT client = {};
    ::GetClientRect(host, &client);
    ::SendMessageW(host, WM_SIZE, SIZE_RESTORED, MAKELPARAM(client.right, client.bottom));
}

// The system's scroll bars are drawn from the theme's images, which the theme loads the first
// time a part is drawn in a state at a size and keeps for the whole process: seen under Wine,
// where a list view's bars first drawn in some state or size inside a storm grew it by up to ten
// bitmaps, the same in the next storm of the process by none. Every part in every state is drawn
// at many sizes before the first census, so that what is left to count is what the windows made.
void LoadScrollBarThemeImages(HWND window, SharedBlock *block)
{
    HTHEME theme = ::OpenThemeData(window, L"SCROLLBAR");
    if (theme == nullptr) {
        return;
    }
    HDC screen = ::GetDC(nullptr);
    HDC dc = ::CreateCompatibleDC(screen);
    HBITMAP bitmap = ::CreateCompatibleBitmap(screen, 64, 64);
    ::ReleaseDC(nullptr, screen);
    HGDIOBJ old = ::SelectObject(dc, bitmap);
    // A part may have an image for each size, chosen by the size drawn: the bars' thickness and
    // the lengths of thumbs and tracks at the storm's sizes, from tiny to long.
    static const int sides[] = {1, 8, 13, 17, 24, 40, 120};
    for (int part = SBP_ARROWBTN; part <= SBP_SIZEBOX; ++part) {
        for (int state = 1; state <= ABS_RIGHTHOVER; ++state) {
            // The driver takes a worker whose heartbeat stands still for seconds as hung.
            if (block != nullptr) {
                InterlockedIncrement(&block->heartbeat);
            }
            for (int width : sides) {
                for (int height : sides) {
                    const RECT place = {0, 0, width, height};
                    ::DrawThemeBackground(theme, dc, part, state, &place, nullptr);
                }
            }
        }
    }
    ::SelectObject(dc, old);
    ::DeleteObject(bitmap);
    ::DeleteDC(dc);
    ::CloseThemeData(theme);
}

// A row of the storm's list: a band of colour in each cell, a dark one when selected.
class StormListRow : public MirlListView::INFORMATION_ITEM {
public:
    void PaintCell(Gdiplus::Graphics &graphics, int column, RECT *cell) override
    {
        Gdiplus::SolidBrush brush(Gdiplus::Color(selected ? 0xFF202040 : 0xFF40A0C0 + 0x200000 * column));
        graphics.FillRectangle(&brush, cell->left + 1, cell->top + 2, cell->right - cell->left - 2, 6);
    }
};

// Three columns wider than the list and 300 rows: both system scroll bars are up, and every
// scroll, press and move of the storm finds rows.
void FillStormList(MirlListView *list)
{
    list->AddColumn(nullptr, L"One", 90);
    list->AddColumn(nullptr, L"Two", 90);
    list->AddColumn(nullptr, L"Three", 90);
    for (int i = 0; i < 300; ++i) {
        list->AddItem(new StormListRow());
    }
}

// Paints the window into the canvas over a sentinel; empty when nothing was painted.
std::vector<DWORD> PictureOf(MirlWindowBase *window, Canvas &canvas, UINT message)
{
    const DWORD sentinel = 0x00ABCDEF;
    canvas.Fill(sentinel);
    ::SendMessageW(window->m_hWnd, message, reinterpret_cast<WPARAM>(canvas.dc()), message == WM_PRINTCLIENT ? PRF_CLIENT : 0);
    std::vector<DWORD> pixels;
    bool painted = false;
    for (int y = 0; y < 32; ++y) {
        for (int x = 0; x < 32; ++x) {
            pixels.push_back(canvas.At(x, y));
            painted = painted || pixels.back() != sentinel;
        }
    }
    return painted ? pixels : std::vector<DWORD>();
}

} // namespace

// One row per control class. A control with messages of its own lists them, and those of them
// whose parameters are pointers, in a table of its own beside this one.
#define MIRL_STORM_TABLE(table) table, sizeof(table) / sizeof(table[0])
const StormClass kStormClasses[] = {
    {L"WINDOW", L"StormWindow", true, nullptr, 0, nullptr, 0},
    {L"CUSTOMCONTROL", L"StormCustom", true, nullptr, 0, nullptr, 0},
    {L"BUTTON", L"StormButton", false, MIRL_STORM_TABLE(kButtonMessages), MIRL_STORM_TABLE(kButtonDenied)},
    {L"STATIC", L"StormStatic", false, MIRL_STORM_TABLE(kStaticMessages), nullptr, 0},
    {L"PROGRESS", L"StormProgress", false, MIRL_STORM_TABLE(kProgressMessages), MIRL_STORM_TABLE(kProgressDenied)},
    {L"TRACKBAR", L"StormTrackBar", false, MIRL_STORM_TABLE(kTrackBarMessages), MIRL_STORM_TABLE(kTrackBarDenied)},
    {L"INCHINGSWITCH", L"StormInchingSwitch", false, MIRL_STORM_TABLE(kMouseDragMessages), nullptr, 0},
    {L"SPLITTER", L"StormSplitter", false, MIRL_STORM_TABLE(kMouseDragMessages), nullptr, 0},
    {L"COMMONEDIT", L"StormCommonEdit", false, MIRL_STORM_TABLE(kCommonEditMessages), MIRL_STORM_TABLE(kCommonEditDenied)},
    {L"SPIN", L"StormSpin", false, MIRL_STORM_TABLE(kSpinMessages), MIRL_STORM_TABLE(kSpinDenied)},
    // The dialog rows skin a dialog's own controls (MirlDialogStorm): their names only name the row.
    {L"DLGBUTTON", L"StormDlgButton", false, MIRL_STORM_TABLE(kDlgButtonMessages), MIRL_STORM_TABLE(kDlgButtonDenied)},
    {L"DLGSTATIC", L"StormDlgStatic", false, MIRL_STORM_TABLE(kDlgStaticMessages), nullptr, 0},
    {L"EDIT", L"StormEdit", false, MIRL_STORM_TABLE(kEditMessages), nullptr, 0},
    {L"EDIT", L"StormEditLines", false, MIRL_STORM_TABLE(kEditMessages), nullptr, 0},
    {L"SCROLLBAR", L"StormScrollBar", false, MIRL_STORM_TABLE(kScrollBarMessages), MIRL_STORM_TABLE(kScrollBarDenied)},
    {L"SLIDER", L"StormSlider", false, nullptr, 0, nullptr, 0},
    {L"SEEK", L"StormSeek", false, nullptr, 0, nullptr, 0},
    {L"TOOLBAR", L"StormToolbar", false, nullptr, 0, nullptr, 0},
    {L"OUTLOOK", L"StormOutlook", false, MIRL_STORM_TABLE(kOutlookMessages), nullptr, 0},
    {L"GROUPBOX", L"StormGroupBox", false, MIRL_STORM_TABLE(kGroupBoxMessages), nullptr, 0},
    {L"COMBOBOX", L"StormCombo", false, MIRL_STORM_TABLE(kComboMessages), nullptr, 0},
    {L"LISTVIEW", L"StormListView", false, MIRL_STORM_TABLE(kListViewMessages), nullptr, 0},
};
#undef MIRL_STORM_TABLE
const size_t kStormClassCount = sizeof(kStormClasses) / sizeof(kStormClasses[0]);

const StormClass *FindStormClass(const std::string &className)
{
    // A row is named by its template first: one class may have several rows.
    for (size_t i = 0; i < kStormClassCount; ++i) {
        if (_wcsicmp(Widen(className).c_str(), kStormClasses[i].templateName) == 0) {
            return &kStormClasses[i];
        }
    }
    for (size_t i = 0; i < kStormClassCount; ++i) {
        if (_wcsicmp(Widen(className).c_str(), kStormClasses[i].className) == 0) {
            return &kStormClasses[i];
        }
    }
    return nullptr;
}

bool IsDeniedMessage(const StormClass &row, UINT message, StormParam lParam)
{
    auto denies = [&](const DeniedMessage &entry) {
        return entry.message == message && (entry.safeLParam == P::Zero || entry.safeLParam != lParam);
    };
    for (const DeniedMessage &entry : kCommonDenied) {
        if (denies(entry)) {
            return true;
        }
    }
    for (size_t i = 0; i < row.deniedCount; ++i) {
        if (denies(row.denied[i])) {
            return true;
        }
    }
    return false;
}

StormGenerator::StormGenerator(const StormClass &row, uint64_t seed) : m_Row(&row), m_TotalWeight(0), m_State(seed)
{
    m_Messages.assign(kCommonMessages, kCommonMessages + sizeof(kCommonMessages) / sizeof(kCommonMessages[0]));
    m_Messages.insert(m_Messages.end(), row.messages, row.messages + row.messageCount);
    for (const StormMessage &m : m_Messages) {
        m_TotalWeight += m.weight;
    }
}

uint64_t StormGenerator::Draw()
{
    Random random(m_State);
    m_State = random.Next();
    return random.Next();
}

StormDraw StormGenerator::Next()
{
    for (;;) {
        uint64_t pick = Draw() % m_TotalWeight;
        const StormMessage *chosen = &m_Messages.front();
        for (const StormMessage &m : m_Messages) {
            if (pick < m.weight) {
                chosen = &m;
                break;
            }
            pick -= m.weight;
        }
        UINT message = chosen->first + static_cast<UINT>(Draw() % (chosen->last - chosen->first + 1));
        if (IsDeniedMessage(*m_Row, message, chosen->lParam)) {
            continue;
        }
        StormDraw draw = {message, chosen->wParam, chosen->lParam, ParamValue(chosen->wParam, Draw()),
                          ParamValue(chosen->lParam, Draw())};
        return draw;
    }
}

std::string DescribeDraw(const StormDraw &draw)
{
    char text[128];
    auto param = [](StormParam kind, uint64_t value) {
        char part[48];
        if (ParamName(kind) != nullptr) {
            snprintf(part, sizeof(part), "%s#%u", ParamName(kind), static_cast<unsigned>(value));
        } else {
            snprintf(part, sizeof(part), "0x%llX", static_cast<unsigned long long>(value));
        }
        return std::string(part);
    };
    snprintf(text, sizeof(text), "msg 0x%04X w=%s l=%s", draw.message, param(draw.wKind, draw.wValue).c_str(),
             param(draw.lKind, draw.lValue).c_str());
    return text;
}

DWORD RunStorm(const StormClass &row, uint64_t seed, long count, SharedBlock *block)
{
    DWORD result = ExitDone;
    const std::wstring skin = ProgramFolder() + L"\\skins\\fuzz_storm.zip";
    MirlIntialize(skin.c_str(), 1033);
    {
        FuzzHost host;
        MirlUiWindow *ui = static_cast<MirlUiWindow *>(MirlUI::Instance()->GetUiElement(row.templateName, UI_ELEMENT_WINDOW));
        MirlWindowBase *window = nullptr;
        if (host.Open(320, 240) && IsDialogStormClass(row.className)) {
            window = MakeDialogStormWindow(&host, row.className);
        } else if (host.IsWindow() && ui != nullptr) {
            window = MirlWindowBase::CreateMirlWindow(&host, ui);
        }
        if (window == nullptr || window->m_hWnd == nullptr || _wcsicmp(window->GetClass(), row.className) != 0) {
            Note(block, "the storm skin made no window of this class");
            delete window;
            MirlUnIntialize();
            return ExitStormSetup;
        }
        host.Adopt(window);
        if (_wcsicmp(row.className, L"LISTVIEW") == 0) {
            FillStormList(static_cast<MirlListView *>(window));
        }
        ::SendMessageW(host.m_hWnd, WM_SIZE, SIZE_RESTORED, MAKELPARAM(320, 240));

        Canvas canvas(64, 64);
        HDC bare = ::CreateCompatibleDC(nullptr);
        HDC windowDC = ::GetDC(window->m_hWnd);
        HDC staleDC = ::CreateCompatibleDC(nullptr);
        ::DeleteDC(staleDC);
        HWND stale = ::CreateWindowExW(0, L"STATIC", nullptr, WS_CHILD, 0, 0, 1, 1, host.m_hWnd, nullptr, nullptr, nullptr);
        ::DestroyWindow(stale);
        HFONT font = ::CreateFontW(-13, 0, 0, 0, FW_BOLD, 0, 0, 0, DEFAULT_CHARSET, 0, 0, 0, 0, L"Tahoma");
        HFONT staleFont = ::CreateFontW(-9, 0, 0, 0, FW_NORMAL, 0, 0, 0, DEFAULT_CHARSET, 0, 0, 0, 0, L"Tahoma");
        ::DeleteObject(staleFont);
        HWND child = window->GetChildCount() > 0 ? window->GetChildByIndex(0)->m_hWnd : window->m_hWnd;
        HandlePool pool = {
            {reinterpret_cast<WPARAM>(canvas.dc()), reinterpret_cast<WPARAM>(canvas.dc()), reinterpret_cast<WPARAM>(canvas.dc()),
             reinterpret_cast<WPARAM>(bare), reinterpret_cast<WPARAM>(windowDC), 0, reinterpret_cast<WPARAM>(staleDC),
             reinterpret_cast<WPARAM>(canvas.dc())},
            {reinterpret_cast<WPARAM>(window->m_hWnd), reinterpret_cast<WPARAM>(host.m_hWnd), reinterpret_cast<WPARAM>(child),
             reinterpret_cast<WPARAM>(::GetDesktopWindow()), 0, reinterpret_cast<WPARAM>(stale),
             reinterpret_cast<WPARAM>(window->m_hWnd), reinterpret_cast<WPARAM>(child)},
            {reinterpret_cast<WPARAM>(font), reinterpret_cast<WPARAM>(::GetStockObject(DEFAULT_GUI_FONT)), 0,
             reinterpret_cast<WPARAM>(staleFont), reinterpret_cast<WPARAM>(font), 0, reinterpret_cast<WPARAM>(font),
             reinterpret_cast<WPARAM>(::GetStockObject(SYSTEM_FONT))},
            {L"", L"Storm", L"Storm.png", L"Missing.png", std::wstring(2000, L'W'), L"(link)Go(/link) &Text (link)",
             L"\xD800\xDFFF\xFFFF", L"Skin.xml"},
            DRAWITEMSTRUCT(),
            window->m_hWnd,
        };

        const std::vector<DWORD> look = PictureOf(window, canvas, WM_PRINTCLIENT);
        StormGenerator warmUp(row, seed ^ 0x5741524DULL);
        StormGenerator storm(row, seed);
        auto send = [&](const StormDraw &draw) {
            if (block != nullptr) {
                InterlockedIncrement(&block->heartbeat);
            }
            ::SendMessageW(window->m_hWnd, draw.message, Resolve(pool, draw.wKind, draw.wValue),
                           static_cast<LPARAM>(Resolve(pool, draw.lKind, draw.lValue)));
        };
        // Caches of the system and of GDI+ fill up during the first messages: not growth.
        if (_wcsicmp(row.className, L"LISTVIEW") == 0) {
            LoadScrollBarThemeImages(window->m_hWnd, block);
        }
        Rehearse(row, storm.Messages(), send);
        for (int i = 0; i < kWarmUpMessages; ++i) {
            send(warmUp.Next());
            if (i % kPumpEvery == kPumpEvery - 1) {
                PumpMessages(500);
            }
        }
        Settle(host.m_hWnd);
        const size_t heapBefore = BusyHeapBytes();
        const GdiCensus gdiBefore = TakeGdiCensus();

        StormDraw last = {};
        for (long i = 0; i < count && result == ExitDone; ++i) {
            if (block != nullptr) {
                block->current = i;
            }
            last = storm.Next();
            send(last);
            if (block != nullptr) {
                block->completed = i + 1;
            }
            if (i % kPumpEvery == kPumpEvery - 1) {
                PumpMessages(500);
            }
            if (i % 1000 == 999 || i + 1 == count) {
                if (!::IsWindow(window->m_hWnd) || window->m_hWnd == nullptr) {
                    Note(block, "window gone after message " + std::to_string(i) + ": " + DescribeDraw(last));
                    result = ExitStormDied;
                    break;
                }
                std::vector<DWORD> now = PictureOf(window, canvas, i % 2000 == 999 ? WM_PAINT : WM_PRINTCLIENT);
                if (now.empty() || (row.keepsLook && now != look)) {
                    Note(block, std::string(now.empty() ? "painted nothing" : "painted another picture") +
                                    " after message " + std::to_string(i) + ": " + DescribeDraw(last));
                    result = ExitStormPaint;
                }
            }
        }
        if (result == ExitDone) {
            Settle(host.m_hWnd);
            const size_t heapAfter = BusyHeapBytes();
            const GdiCensus gdiAfter = TakeGdiCensus();
            const int leaked = GrowthBeyondDcCache(gdiBefore, gdiAfter, kDcCacheBound);
            if (block != nullptr) {
                block->heapBefore = static_cast<LONG64>(heapBefore);
                block->heapAfter = static_cast<LONG64>(heapAfter);
                block->gdiBefore = gdiBefore.total;
                block->gdiAfter = gdiAfter.total;
            }
            // One leaked block per thousand messages would already pass the heap's bound.
            if (leaked > 0 || static_cast<long long>(heapAfter) - static_cast<long long>(heapBefore) > 64 * 1024) {
                char text[160];
                snprintf(text, sizeof(text), "grew: heap %lld -> %lld bytes, GDI objects %d -> %d",
                         static_cast<long long>(heapBefore), static_cast<long long>(heapAfter), gdiBefore.total,
                         gdiAfter.total);
                Note(block, text);
                result = ExitStormGrowth;
            }
        }
        ::ReleaseDC(window->m_hWnd, windowDC);
        ::DeleteDC(bare);
        ::DeleteObject(font);
        host.Close();
    }
    MirlUnIntialize();
    return result;
}

} // namespace mirlfuzz
