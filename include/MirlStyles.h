// The library's own style words: position styles of the "Align" attribute, text layout
// words of the "Layout" attribute, and the few window style bits that the library gives a
// meaning of its own.
#pragma once

// Position styles: how a child is placed in its parent's client area on WM_SIZE.
enum MirlPositionStyle : unsigned long {
    ALIGN_NONE = 0x0,
    ALIGN_PARENT_LEFT = 0x1,
    ALIGN_PARENT_TOP = 0x2,
    ALIGN_PARENT_RIGHT = 0x4,
    ALIGN_PARENT_BOTTOM = 0x8,
    ALIGN_PARENT_WIDTH = 0x10,
    ALIGN_PARENT_HEIGHT = 0x20,
    ALIGN_PARENT_VCENTER = 0x100,
    ALIGN_PARENT_HCENTER = 0x200,
    ALIGN_PRE_LEFT = 0x10000,
    ALIGN_PRE_TOP = 0x20000,
    ALIGN_PRE_RIGHT = 0x40000,
    ALIGN_PRE_BOTTOM = 0x80000,
    OFFSET_PRE_LEFT = 0x100000,
    OFFSET_PRE_RIGHT = 0x200000,
    OFFSET_PRE_TOP = 0x400000,
    OFFSET_PRE_BOTTOM = 0x800000,
};

// Text layout: the order of caption and image, and their alignment. The zero values are
// the defaults of their group.
enum MirlTextLayoutStyle : unsigned long {
    ORDER_H_TEXT_IMAGE = 0x0,
    ORDER_H_IMAGE_TEXT = 0x1,
    ORDER_V_TEXT_IMAGE = 0x2,
    ORDER_V_IMAGE_TEXT = 0x4,
    ALIGN_H_CENTER = 0x0,
    ALIGN_LEFT = 0x10,
    ALIGN_RIGHT = 0x20,
    ALIGN_V_CENTER = 0x0,
    ALIGN_TOP = 0x100,
    ALIGN_BOTTOM = 0x200,
};

// Window style bits read per class. BS_BACKIMGE shares its bit with BS_PUSHLIKE; the SS_
// words replace the platform's meaning of the low static bits.
#ifndef BS_BACKIMGE
#define BS_BACKIMGE 0x1000
#endif
#ifndef SS_TOP
#define SS_TOP 0x3
#endif
#ifndef SS_BOTTOM
#define SS_BOTTOM 0x4
#endif
#ifndef SS_VCENTER
#define SS_VCENTER 0x5
#endif
#ifndef SPLS_VERTICAL
#define SPLS_VERTICAL 0x1
#endif
#ifndef SPLS_FIXED
#define SPLS_FIXED 0x2
#endif
