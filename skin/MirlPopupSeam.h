// Where shut-down ends the process's popup menu window. The menu control plugs in here;
// until it exists there is no popup to end.
#pragma once

namespace MIRL {
void FinalDestroyProcessPopup();
}
