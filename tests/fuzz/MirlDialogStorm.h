// The storm's windows that no template makes: a dialog of the system's own controls, skinned in
// place by the dialog button and the dialog static. The stormed window is one of its controls.
#pragma once

#include "Mirl.h"

namespace mirlfuzz {

// Whether the row's class is one of the dialog controls, made here rather than by the factory.
bool IsDialogStormClass(const wchar_t *className);

// A child dialog of host with a push button, a check box, a radio button, a label with a link
// and a plain label, all skinned. The object stands for the control the class names ("DLGBUTTON"
// the push button, "DLGSTATIC" the label with the link): its handle is that control's. Deleting
// it gives the controls back and destroys the dialog. Null if the dialog can't be made.
MirlWindowBase *MakeDialogStormWindow(MirlWindowBase *host, const wchar_t *className);

} // namespace mirlfuzz
