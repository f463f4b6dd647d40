// The rules of the dialog button and the dialog static that need no window: which image a
// button type loads and shows, the check state that BM_SETCHECK leaves, the caption colours, the
// check box's vertical place, and the static's one link (its marks, its rectangle, its hit test).
// MirlDlgButton and MirlDlgStatic call these; tests call them directly.
//
//   DlgButtonType            the button type of a style, before owner draw is ORed in
//   IsDlgCheckType           check boxes and radio buttons
//   DlgButtonImageNames      the element names of the four slots for a type
//   DlgButtonSlot            the slot a push button shows, or -1 for nothing at all
//   DlgCheckBoxSlot          the slot a check box or radio button shows
//   DlgCheckAfterSetCheck    the kept check state after BM_SETCHECK
//   DlgButtonColors          shadow and text colour of a push-button caption
//   DlgCheckImageTop         the check image's y: a logical shift of a 32-bit difference
//   SplitDialogLink          "<link>...</link>" (any case) into head, link and tail
//   DialogLinkRect           the link's rectangle from the head's bounds and the link's width
//   IsInDialogLink           the hit test: right edge inside, bottom edge outside
#pragma once

#include "MirlExport.h"

#include <windows.h>

#include <string>

namespace MIRL {

enum { kDlgButtonSlots = 4 };

// The type in the style's low four bits.
MIRL_API unsigned int DlgButtonType(unsigned long style);
// BS_CHECKBOX, BS_AUTOCHECKBOX, BS_RADIOBUTTON and BS_AUTORADIOBUTTON.
MIRL_API bool IsDlgCheckType(unsigned int type);

// The element names of slots 0 to 3 for the type; null where the type loads nothing. For a push
// button, required[i] tells which name must exist (only "CmBtn2"); the others are loaded only
// where the skin has them. For a check type both names are required.
MIRL_API void DlgButtonImageNames(unsigned int type, const wchar_t *names[kDlgButtonSlots],
                                  bool required[kDlgButtonSlots]);

// The slot a push button shows: disabled gives 3 if present, else 0; pressed gives 2 if present;
// pressed or hovering gives 1 if present; else 0. -1 when that slot is empty: nothing is drawn,
// the caption neither.
MIRL_API int DlgButtonSlot(bool pressed, bool hovering, bool disabled, const bool present[kDlgButtonSlots]);
// A check box or radio button: slot 1 pressed or checked, else 0. Hover and disabled don't count.
MIRL_API int DlgCheckBoxSlot(bool pressedOrChecked);

// BM_SETCHECK: 1 checks, 0 unchecks, any other value leaves the state as it was.
MIRL_API bool DlgCheckAfterSetCheck(bool checked, WPARAM wParam);

struct DlgCaptionColors {
    DWORD shadow;
    DWORD text;
};
// Disabled wins over hovering.
MIRL_API DlgCaptionColors DlgButtonColors(bool hovering, bool disabled);

// (height - imageHeight) >> 1 on 32-bit unsigned values: an image taller than the box wraps and
// lands far below, out of sight, rather than being clipped at both edges.
MIRL_API int DlgCheckImageTop(int height, unsigned int imageHeight);

// The parts of a caption with one link. found is false (and text comes back unchanged in
// shown) when either mark is missing. Only the first pair counts; a closing mark before the
// opening one gives an empty link.
struct DialogLinkParts {
    bool found;
    int start; // index of "<link>"
    int end;   // index of "</link>"
    std::wstring head;
    std::wstring link; // each character with '&' in front
    std::wstring tail;
    std::wstring shown; // head + link + tail, or the text as it stands
};
MIRL_API DialogLinkParts SplitDialogLink(const std::wstring &text);

// left = hx, top = 0, right = trunc(hx + linkWidth), bottom = hy, where hx and hy are the
// truncated right and bottom of the head's measured bounds (0 and 0 without a head).
MIRL_API RECT DialogLinkRect(bool hasHead, float headX, float headY, float headWidth, float headHeight,
                             float linkWidth);
MIRL_API bool IsInDialogLink(bool valid, const RECT &rect, int x, int y);

// The caption as GetWindowText into a buffer of capacity characters gives it: at most
// capacity - 1 characters.
MIRL_API std::wstring CutCaption(const std::wstring &text, size_t capacity);

} // namespace MIRL
