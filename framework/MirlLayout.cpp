#include "MirlLayout.h"
#include "MirlStyles.h"

#include <climits>
#include <cstdint>

namespace {

// Scroll-bar style bits: SBS_VERT, and the edge bits SBS_LEFTALIGN/SBS_TOPALIGN (0x2) and
// SBS_RIGHTALIGN/SBS_BOTTOMALIGN (0x4), which mean "keep the thickness the window has".
constexpr unsigned long kScrollBarVertical = 0x1;
constexpr unsigned long kScrollBarEdgeAligned = 0x2 | 0x4;

int SignExtend16(std::uint32_t bits)
{
    bits &= 0xFFFFu;
    return bits >= 0x8000u ? static_cast<int>(bits) - 0x10000 : static_cast<int>(bits);
}

int LowHalf(int packed)
{
    return SignExtend16(static_cast<std::uint32_t>(packed));
}

int HighHalf(int packed)
{
    return SignExtend16(static_cast<std::uint32_t>(packed) >> 16);
}

// The arithmetic is done in 64 bits so that no sum of 32-bit inputs overflows; the window
// system takes int, so each result keeps its low 32 bits, read as two's complement.
int WrapToInt(std::int64_t value)
{
    const std::uint32_t bits = static_cast<std::uint32_t>(value);
    if (bits <= static_cast<std::uint32_t>(INT_MAX)) {
        return static_cast<int>(bits);
    }
    return static_cast<int>(bits - 0x80000000u) + INT_MIN;
}

bool Has(unsigned long align, unsigned long bit)
{
    return (align & bit) != 0;
}

}  // namespace

namespace MIRL {

MirlLayoutRect LayoutChild(int parentWidth, int parentHeight, const MirlLayoutInput &child,
                           const MirlLayoutRect &previous)
{
    std::int64_t x = LowHalf(child.x);
    std::int64_t y = LowHalf(child.y);
    std::int64_t w = child.width;
    std::int64_t h = child.height;

    // Some classes decide their own thickness, whatever the skin wrote.
    if (child.windowClass == MirlLayoutClass::ScrollBar) {
        const bool edgeAligned = Has(child.style, kScrollBarEdgeAligned);
        if (Has(child.style, kScrollBarVertical)) {
            if (edgeAligned) {
                w = child.presentWidth;
            }
        } else if (edgeAligned) {
            h = child.presentHeight;
        }
    } else if (child.windowClass == MirlLayoutClass::Splitter) {
        if (Has(child.style, SPLS_VERTICAL)) {
            w = child.splitterWeight;
        } else {
            h = child.splitterWeight;
        }
    }

    // With align 0 none of the rules below applies: the child goes where it is written.
    const unsigned long align = child.align;
    const std::int64_t W = parentWidth;
    const std::int64_t H = parentHeight;
    const std::int64_t px = previous.x;
    const std::int64_t py = previous.y;
    const std::int64_t pw = previous.w;
    const std::int64_t ph = previous.h;

    // Centring keeps the offset, so a centred child can be shifted. Division truncates
    // toward zero: a child one pixel wider than its parent stays at its offset.
    if (Has(align, ALIGN_PARENT_HCENTER)) {
        x += (W - w) / 2;
    }
    if (Has(align, ALIGN_PARENT_VCENTER)) {
        y += (H - h) / 2;
    }
    // LEFT and TOP do nothing of their own but stop the opposite bit.
    if (Has(align, ALIGN_PARENT_RIGHT) && !Has(align, ALIGN_PARENT_LEFT)) {
        x = W - w - x;
    }
    if (Has(align, ALIGN_PARENT_BOTTOM) && !Has(align, ALIGN_PARENT_TOP)) {
        y = H - h - y;
    }

    // One relation to the previous sibling per axis: the first bit set wins.
    if (Has(align, ALIGN_PRE_LEFT)) {
        x = px;
    } else if (Has(align, ALIGN_PRE_RIGHT)) {
        x = px + pw - w;
    } else if (Has(align, OFFSET_PRE_LEFT)) {
        x = px - w - x;
    } else if (Has(align, OFFSET_PRE_RIGHT)) {
        x = px + pw + x;
    }
    if (Has(align, ALIGN_PRE_TOP)) {
        y = py;
    } else if (Has(align, ALIGN_PRE_BOTTOM)) {
        y = py + ph - h;
    } else if (Has(align, OFFSET_PRE_TOP)) {
        // Not the mirror of OFFSET_PRE_LEFT: the offset is added to the previous top and
        // the child's height plays no part. Skins rely on this.
        y = py + y;
    } else if (Has(align, OFFSET_PRE_BOTTOM)) {
        y = py + ph + y;
    }

    // Stretching measures from the final position.
    if (Has(align, ALIGN_PARENT_WIDTH)) {
        w = W - x - HighHalf(child.x);
    }
    if (Has(align, ALIGN_PARENT_HEIGHT)) {
        h = H - y - HighHalf(child.y);
    }

    return {WrapToInt(x), WrapToInt(y), WrapToInt(w), WrapToInt(h)};
}

void LayoutChildren(int parentWidth, int parentHeight, const std::vector<MirlLayoutInput> &children,
                    std::vector<MirlLayoutRect> &rects)
{
    rects.clear();
    rects.reserve(children.size());
    MirlLayoutRect previous = {0, 0, 0, 0};
    for (const MirlLayoutInput &child : children) {
        previous = LayoutChild(parentWidth, parentHeight, child, previous);
        rects.push_back(previous);
    }
}

}  // namespace MIRL
