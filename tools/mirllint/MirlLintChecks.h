// The checks over a walked skin: definitions that never win, element values, templates and
// their words, references to elements in every language that can reach them, image files,
// link targets and text coverage; and the comparison with what the library itself loaded.
#pragma once

#include "MirlLintReport.h"
#include "MirlLintSkin.h"

#include <vector>

namespace mirllint {

// languages: those to check the skin as; empty means every language the skin uses and 1033.
void CheckSkin(MirlUI *ui, Skin &skin, const std::vector<unsigned int> &languages, Report &report);

// Holds the walk against the library's own maps. loaded is false when the library's loader
// raised hresult; everything after that point is missing from its maps.
void CompareWithLibrary(MirlUI *ui, const Skin &skin, bool loaded, unsigned long hresult, Report &report);

} // namespace mirllint
