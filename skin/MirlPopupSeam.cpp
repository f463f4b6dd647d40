#include "MirlPopupSeam.h"

namespace MIRL {

void FinalDestroyProcessPopup()
{
    // No popup menu window exists yet in this library, so there is nothing to end.
}

} // namespace MIRL
