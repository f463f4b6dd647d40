// What a library window is, in the terms of accessibility, and its default action.
#pragma once

#include <windows.h>

#include <string>

class MirlWindowBase;

struct MirlAccessibleFacts {
    long role = 0;               // ROLE_SYSTEM_*
    std::wstring name;           // empty: none
    bool hasValue = false;
    std::wstring value;
    long state = 0;              // STATE_SYSTEM_*
    std::wstring defaultAction;  // empty: none
    // Parts a user picks that are no windows (list rows, menu rows): children 1 to itemCount,
    // before the child windows. Asked one at a time: item is 1-based on the way in, and
    // location is in screen coordinates on the way out.
    long itemCount = 0;
    long item = 0;
    RECT location = {};
};

namespace MIRL {

// Reads the window as it is now; call on the window's thread.
void DescribeWindow(MirlWindowBase *window, MirlAccessibleFacts &facts);
// Reads one of its parts, facts.item (1-based); false if there is no such part.
bool DescribeItem(MirlWindowBase *window, MirlAccessibleFacts &facts);
// Posts the click on a row (1-based) that its default action stands for: a list row shown in
// the rows' area is selected, a menu row chosen. False for a row that isn't there or can't be
// clicked (scrolled out of sight, or a disabled window).
bool DoDefaultItemAction(MirlWindowBase *window, long item);
// Posts the click or the selection that the default action stands for; false if there is none.
bool DoDefaultAction(MirlWindowBase *window);

} // namespace MIRL
