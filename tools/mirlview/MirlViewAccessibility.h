// The accessibility tree of a window as a screen reader reads it: roles, names, values,
// states and default actions, one line per object, children indented below their parent.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace mirlview {

std::vector<std::wstring> AccessibilityTree(HWND window);

} // namespace mirlview
