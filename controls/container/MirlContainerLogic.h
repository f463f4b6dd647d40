// The container controls' rules that need no window: which face a tab or a folder bar shows
// and where its parts go, the menu zone of a tab, the stacking of folders with percentage
// heights and their limits, the scroll steps of the folder stack, the tab counting of a
// toolbar, the strip of a toolbar and the bar of a group box. The controls call these; tests
// call them directly.
//
//   ChooseTabFace, ChooseBarFace   the face of a tab or a folder bar for its mouse state
//   PlaceTabFace                   left half, stretched fill, right half and arrow of a face
//   TabTextOrigin, BarTextOrigin   where a tab's or a bar's caption starts
//   IsInMenuZone                   a point below the tab's split line
//   StackFolders                   panel heights, the room left and the scroll range
//   PlaceFolders                   the top of each bar and panel from a start position
//   ScrollFoldersStep, WheelStep   the new position of the folder stack's scroll bar
//   NextFolderIndex                the folder after one, wrapping to the first
//   TabChildIndex, FirstTabEntry   which child of a toolbar is the n-th tab, the first one
//   PlaceToolbarStrip              the three parts of a toolbar's strip
//   PlaceGroupBar                  the three parts of a group box's bar and its caption
#pragma once

#include "MirlExport.h"

#include <windows.h>

#include <vector>

namespace MIRL {

// The face a tab or a bar draws: none, or one of the three shared images.
enum MirlTabFace { TabFaceNone = 0, TabFaceActive = 1, TabFaceMenu = 2, TabFaceHover = 3 };

// A toolbar's tab: only the current tab has a face at rest.
MIRL_API MirlTabFace ChooseTabFace(bool mouseOver, bool drawHover, bool menuZone, bool current);
// A folder bar: every bar has a face at rest, the hover face when it isn't current.
MIRL_API MirlTabFace ChooseBarFace(bool mouseOver, bool drawHover, bool menuZone, bool current);

// The split line of a tab: a point below y 24 is in the menu zone. A folder bar's first move
// uses 20 instead.
enum { kTabMenuZoneY = 24, kBarEnterMenuZoneY = 20 };
MIRL_API bool IsInMenuZone(int y, int limit = kTabMenuZoneY);

// A rectangle by left, top, width and height.
struct MirlBox {
    int x;
    int y;
    int width;
    int height;
};

// The parts of a face of imageWidth x imageHeight in the item rectangle, with an arrow of
// arrowWidth x arrowHeight: the left half unstretched, the fill of the middle column's brush
// between the halves, the right half unstretched, the arrow centred near the bottom.
struct MirlTabFaceParts {
    MirlBox leftTarget;  // source: (0, 0) and the same size
    MirlBox fill;        // painted with the brush of the image's middle column
    MirlBox rightTarget; // source: (rightSourceX, 0) and the same size
    int rightSourceX;
    int arrowX;
    int arrowY;
};
MIRL_API MirlTabFaceParts PlaceTabFace(const RECT &item, int imageWidth, int imageHeight, int arrowWidth,
                                       int arrowHeight);

// The origin of a tab's caption of textWidth x textHeight in the item rectangle. The item's top,
// not its left, is added to x: a tab's item rectangle starts at (0, 0), where the two agree.
MIRL_API void TabTextOrigin(const RECT &item, float textWidth, float textHeight, float *x, float *y);
// The origin of a folder bar's caption: centred across, two pixels above the middle.
MIRL_API void BarTextOrigin(const RECT &item, float textWidth, float textHeight, float *x, float *y);
// The top of a folder bar's icon of that height: centred in the item's height.
MIRL_API int BarIconTop(const RECT &item, int iconHeight);

// One folder's panel as the layout sees it: its height attribute, whether that is a percentage
// of the room left by the bars, its limits, and whether it is shown.
struct MirlFolderSpec {
    int height;
    bool percent;
    int minHeight;
    int maxHeight;
    bool visible;
};

// The heights of the panels and the room that is left. When left is negative the stack is
// higher than the client: the scroll bar's range becomes 0 to -left, with a page of a fifth.
struct MirlFolderStack {
    std::vector<int> heights;
    int free;
    int left;
    bool setsRange;
    int rangeMax;
    int page;
};
MIRL_API MirlFolderStack StackFolders(int clientHeight, int barHeight, int barGap,
                                      const std::vector<MirlFolderSpec> &folders);

// The top of each bar and panel from the first bar's top: each bar is followed by its gap and,
// when visible, its panel. A hidden panel's top is where the next bar starts.
struct MirlFolderPlace {
    int barTop;
    int panelTop;
};
MIRL_API std::vector<MirlFolderPlace> PlaceFolders(int top, int barHeight, int barGap, const std::vector<int> &heights,
                                                   const std::vector<bool> &visible);

// The moves that one layout of count folders makes: a bar and a panel each, shown or hidden.
MIRL_API int FolderMoveCount(size_t count);

// The new position after a WM_VSCROLL code: lines of 1 (SB_TOP and SB_BOTTOM are lines too),
// pages of 15, the thumb's position as given, and no change for the codes from 8 on.
MIRL_API int ScrollFoldersStep(int code, int thumbPosition, int position, int minimum, int maximum);
// The new position after a wheel message: 10 pixels a message whatever the delta, none for 0,
// kept within the range.
MIRL_API int WheelStep(int delta, int position, int minimum, int maximum);

// The folder after index among count, the first after the last; -1 when there are none.
MIRL_API int NextFolderIndex(int index, int count);

// Which entry of a child list is the tab number index, counting only the tab entries; -1 when
// there are too few tabs.
MIRL_API int TabChildIndex(const std::vector<bool> &isTab, int index);

// How each template child of a toolbar came out: a window of the factory, a tab, or nothing.
enum MirlToolbarChild { ToolbarChildWindow = 0, ToolbarChildTab = 1, ToolbarChildNone = 2 };
// The child-list entry that the first tab's template index names, as the toolbar takes it: the
// index is counted in the template, so a child that made no window before the first tab moves
// it one entry on. -1 when there is no tab, or when the index falls past the child list.
MIRL_API int FirstTabEntry(const std::vector<MirlToolbarChild> &children);

// A toolbar's strip in a client of clientWidth x clientHeight: "BarLeft" whole into the left
// end, columns 3 to 6 of "BarXScale" stretched across the middle, "BarRight" whole into a right
// end as wide as the left one.
struct MirlStripParts {
    MirlBox left;
    MirlBox middle;
    MirlBox middleSource;
    MirlBox right;
};
MIRL_API MirlStripParts PlaceToolbarStrip(int clientWidth, int clientHeight, int leftWidth, int middleImageHeight);

// A group box's bar in a client clientWidth wide: the left end, the first column of the middle
// image stretched between, the right end; all as high as the left image. The caption's box
// starts 8 pixels from the left whatever the left end's width. A client narrower than both ends
// gets a negative middle width, drawn as nothing.
struct MirlGroupBarParts {
    MirlBox left;
    MirlBox middle;
    MirlBox right;
    float captionX;
    float captionY;
    float captionWidth;
    float captionHeight;
};
MIRL_API MirlGroupBarParts PlaceGroupBar(int clientWidth, int leftWidth, int leftHeight, int rightWidth);

} // namespace MIRL
