// The arithmetic of the list family, without windows: the popup's rows and placement, the
// three-slice forms of the list view and the combo box, the list view's scroll bars and steps.
#pragma once

#include "MirlExport.h"

#include <windows.h>

namespace MIRL {

// ---- popup menu -------------------------------------------------------------------------------

// Rows of the popup start 4 pixels below the client's top.
const int kMenuRowsTop = 4;

// The band of row index of a popup whose client is width wide.
MIRL_API RECT MenuRowRect(int index, int rowHeight, int width);
// Rows times the row height, plus the 4-pixel band above the first row.
MIRL_API int MenuNeededHeight(int rows, int rowHeight);
// A window rectangle that reaches below workBottom turns upward about its own top edge: its new
// bottom is its old top and its size stays. Otherwise it is returned as it is.
MIRL_API RECT FlipAboveTop(const RECT &window, LONG workBottom);

// ---- combo box --------------------------------------------------------------------------------

// Where the list of a combo box opens: below the control, height high, or above it when that
// would reach below workBottom.
MIRL_API RECT ComboDropRect(const RECT &control, int height, LONG workBottom);

// ---- three-slice drawing ----------------------------------------------------------------------

// One drawn part: source column range of the bitmap and destination column range.
struct SlicePart {
    int srcX;
    int srcWidth;
    int dstX;
    int dstWidth;
};

// Left cap, stretched column, right cap. The list view's form has caps of 4 pixels.
MIRL_API void ListSlices(int bitmapWidth, const RECT &rect, SlicePart parts[3]);
// The combo box's form: caps of half the bitmap's width (truncated).
MIRL_API void ComboSlices(int bitmapWidth, const RECT &rect, SlicePart parts[3]);

// ---- list view --------------------------------------------------------------------------------

// What the list view's layout decides for a client of width by height.
struct ListLayoutInput {
    int width;
    int height;
    int titleHeight;
    int barHeight;    // the horizontal bar's window height
    int barWidth;     // the vertical bar's window width
    long long neededWidth;
    long long neededHeight;
};

struct ListLayoutResult {
    bool needH;
    bool needV;
    RECT rowsRect;
    int hMax; // range maximum of the horizontal bar
    int vMax; // range maximum of the vertical bar
    RECT hBar; // places of the bars when shown (left, top, right, bottom)
    RECT vBar;
};

MIRL_API ListLayoutResult ComputeListLayout(const ListLayoutInput &in);

// The new position of a scroll message's code, clamped to 0..maximum. trackPos is the bar's
// 32-bit track position, used for SB_THUMBPOSITION and SB_THUMBTRACK; page is 5 horizontally and
// 48 vertically. Codes of 8 and above give the position back.
MIRL_API int ListScrollPosition(int code, int position, int trackPos, int page, int maximum);

// The index of the first row whose band reaches below top, for rows of equal pitch starting at
// firstTop; 0 when top lies above them all.
MIRL_API long long FirstRowBelow(long long firstTop, long long pitch, long long top);

} // namespace MIRL
