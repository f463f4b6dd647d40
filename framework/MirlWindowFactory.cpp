// The factory: one live window object of the class that a template's "Class" names.
#include "MirlStatic.h"
#include "MirlContainer.h"
#include "MirlRange.h"
#include "MirlButton.h"
#include "MirlCommonEdit.h"
#include "MirlEdit.h"
#include "MirlGroupBox.h"
#include "MirlList.h"
#include "MirlWindow.h"

#include <cwchar>
#include <new>

namespace {

template <class T>
MirlWindowBase *MakeWindow(MirlWindowBase *parent, MirlUiWindow *ui)
{
    T *window = new (std::nothrow) T();
    if (window != NULL) {
        // The result isn't looked at: a window that failed to come into being is still returned.
        window->Create(parent, parent->m_hWnd, static_cast<LPRECT>(NULL), ui->GetName());
    }
    return window;
}

typedef MirlWindowBase *(*WindowMaker)(MirlWindowBase *parent, MirlUiWindow *ui);

struct WindowClassRow {
    const wchar_t *name;
    WindowMaker make;
};

// The classes a template may name, in the order they are compared. A row whose maker is null
// has no control behind it yet, or never will ("LISTBOX"): such a template makes no window.
const WindowClassRow kWindowClasses[] = {
    {L"WINDOW", &MakeWindow<MirlWindow>},
    {L"BUTTON", &MakeWindow<MirlButton>},
    {L"EDIT", &MakeWindow<MirlEdit>},
    {L"STATIC", &MakeWindow<MirlStatic>},
    {L"LISTBOX", NULL},       // no list box exists
    {L"SCROLLBAR", &MakeWindow<MirlScrollBar>},
    {L"TOOLBAR", &MakeWindow<MirlToolbar>},
    {L"SPLITTER", &MakeWindow<MirlSplitter>},
    {L"COMBOBOX", &MakeWindow<MirlComboBox>},
    {L"INCHINGSWITCH", &MakeWindow<MirlInchingSwitch>},
    {L"PROGRESS", &MakeWindow<MirlProgressBar>},
    {L"OUTLOOK", &MakeWindow<MIRLOutlookCtrl>},
    {L"LISTVIEW", &MakeWindow<MirlListView>},
    {L"SLIDER", &MakeWindow<MirlSlider>},
    {L"TRACKBAR", &MakeWindow<MirlTrackBar>},
    {L"SEEK", &MakeWindow<MirlMediaSeekBar>},
    {L"COMMONEDIT", &MakeWindow<MirlCommonEdit>},
    {L"SPIN", &MakeWindow<MirlSpinCtrl>},
    {L"GROUPBOX", &MakeWindow<MirlGroupBox>},
    {L"CUSTOMCONTROL", &MakeWindow<MirlWindow>},
};

} // namespace

MirlWindowBase *MirlWindowBase::CreateMirlWindow(MirlWindowBase *parent, MirlUiWindow *ui)
{
    if (parent == NULL || ui == NULL) {
        return NULL;
    }
    // A template without "Class" is a skin error; it makes no window rather than a crash.
    MirlUiWindow::Attribute *windowClass = ui->GetAttribute(L"Class");
    if (windowClass == NULL) {
        return NULL;
    }
    for (const WindowClassRow &row : kWindowClasses) {
        if (_wcsicmp(windowClass->GetValue(), row.name) == 0) {
            return row.make != NULL ? row.make(parent, ui) : NULL;
        }
    }
    return NULL;
}
