// The library's three plain entry points.
#pragma once

#include "MirlExport.h"
#include <windows.h>

extern "C" {
// Starts COM and GDI+, sets the language and loads the skin package. Throws MirlException
// when GDI+ can't start or the package can't be opened; a value in the skin that can't be
// converted leaves as _com_error with its HRESULT.
MIRL_API void MirlIntialize(const wchar_t *skinPath, unsigned int language);
// Ends the popup, releases the skin and shuts GDI+ and COM down.
MIRL_API void MirlUnIntialize();
// Replaces every menu string that names a text element with that text, submenus included.
MIRL_API void MirlMenuReset(HMENU menu);
}
