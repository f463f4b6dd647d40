// The placement of a window's children on WM_SIZE, as plain arithmetic: each child is put
// relative to the parent's client area or to the sibling placed just before it.
#pragma once

#include "MirlExport.h"

#include <vector>

// The class words that change a child's size before it is placed.
enum class MirlLayoutClass { Other, ScrollBar, Splitter };

// What the layout reads of one child.
struct MirlLayoutInput {
    int x = 0;                // "X": low 16 bits the offset, high 16 bits the right margin, both signed
    int y = 0;                // "Y": low 16 bits the offset, high 16 bits the bottom margin
    int width = 0;            // "Width" as written
    int height = 0;           // "Height" as written
    unsigned long align = 0;  // position style bits ("Align")
    MirlLayoutClass windowClass = MirlLayoutClass::Other;
    unsigned long style = 0;  // window style bits ("Style")
    int presentWidth = 0;     // the window's size now; read for scroll bars only
    int presentHeight = 0;
    int splitterWeight = 0;   // read for splitters only
};

// A child's place: left, top, width, height, in the parent's client pixels.
struct MirlLayoutRect {
    int x;
    int y;
    int w;
    int h;
};

inline bool operator==(const MirlLayoutRect &a, const MirlLayoutRect &b)
{
    return a.x == b.x && a.y == b.y && a.w == b.w && a.h == b.h;
}

inline bool operator!=(const MirlLayoutRect &a, const MirlLayoutRect &b)
{
    return !(a == b);
}

namespace MIRL {

// Where one child goes in a parent of the given client size, after the sibling that was
// placed at previous (all zero for the first child). The parent's size is what WM_SIZE
// gives, each half read as a signed 16-bit value.
MIRL_API MirlLayoutRect LayoutChild(int parentWidth, int parentHeight, const MirlLayoutInput &child,
                                    const MirlLayoutRect &previous);

// Places all children in order, each after the one before; rects gets one entry per child.
MIRL_API void LayoutChildren(int parentWidth, int parentHeight, const std::vector<MirlLayoutInput> &children,
                             std::vector<MirlLayoutRect> &rects);

}  // namespace MIRL
