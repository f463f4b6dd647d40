// One skin case run the way an application uses the library: start with the package, read
// every element, decode every image, re-text a menu, create every window template, lay the
// windows out at ordinary and extreme sizes, paint them into a memory picture, destroy them and
// shut the library down. The allowed failures come back as an Outcome; anything else escapes.
#pragma once

#include "MirlFuzzProtocol.h"

#include <string>

namespace mirlfuzz {

// block may be null; when set, the phases are written to it as the case goes.
Outcome RunSkinPackage(const std::wstring &path, unsigned language, SharedBlock *block);

} // namespace mirlfuzz
