// What each control of the library is for a screen reader: read from the control as it is now.
#include "MirlAccessibleFacts.h"

#include "Mirl.h"

#include <commctrl.h>
#include <oleacc.h>

#include <cstdio>
#include <iterator>
#include <list>
#include <string>

namespace {

std::wstring WindowText(HWND window)
{
    const int length = ::GetWindowTextLengthW(window);
    if (length <= 0) {
        return std::wstring();
    }
    std::wstring text(static_cast<size_t>(length) + 1, L'\0');
    const int copied = ::GetWindowTextW(window, &text[0], length + 1);
    text.resize(copied > 0 ? static_cast<size_t>(copied) : 0);
    return text;
}

// A caption as a user reads it: without the markup of its links.
std::wstring WithoutLinkMarkup(std::wstring text)
{
    for (const wchar_t *mark : {L"(link)", L"(/link)", L"<link>", L"</link>"}) {
        const size_t length = wcslen(mark);
        for (size_t at = text.find(mark); at != std::wstring::npos; at = text.find(mark, at)) {
            text.erase(at, length);
        }
    }
    return text;
}

// The caption, else the template's tooltip text (both in the current language).
std::wstring NameOf(MirlWindowBase *window, const std::wstring &caption)
{
    std::wstring name = WithoutLinkMarkup(caption);
    return name.empty() ? std::wstring(window->GetToolTip()) : name;
}

long CommonState(HWND window)
{
    long state = 0;
    if (!::IsWindowVisible(window)) {
        state |= STATE_SYSTEM_INVISIBLE;
    }
    if (!::IsWindowEnabled(window)) {
        state |= STATE_SYSTEM_UNAVAILABLE;
    }
    if (::GetFocus() == window) {
        state |= STATE_SYSTEM_FOCUSED;
    }
    return state;
}

std::wstring Number(long long value)
{
    return std::to_wstring(value);
}

// A part of a whole, as the system's own progress bar says it: "64%".
std::wstring Percent(long long part, long long whole)
{
    const long long percent = whole > 0 ? part * 100 / whole : 0;
    return std::to_wstring(percent < 0 ? 0 : (percent > 100 ? 100 : percent)) + L"%";
}

void DescribeButton(MirlButton *button, HWND window, MirlAccessibleFacts &facts)
{
    facts.state |= STATE_SYSTEM_FOCUSABLE;
    if (button->IsMouseOnButton()) {
        facts.state |= STATE_SYSTEM_HOTTRACKED;
    }
    const LRESULT pushed = ::SendMessageW(window, BM_GETSTATE, 0, 0);
    if (button->IsCheckMode()) {
        facts.role = ROLE_SYSTEM_CHECKBUTTON;
        if (button->GetCheck()) {
            facts.state |= STATE_SYSTEM_CHECKED;
        }
        facts.defaultAction = button->GetCheck() ? L"Uncheck" : L"Check";
    } else if (button->GetURL()[0] != L'\0' || button->HasLink()) {
        facts.role = ROLE_SYSTEM_LINK;
        facts.state |= STATE_SYSTEM_LINKED;
        facts.defaultAction = L"Jump";
    } else {
        facts.role = ROLE_SYSTEM_PUSHBUTTON;
        facts.defaultAction = L"Press";
    }
    if ((pushed & BST_PUSHED) != 0) {
        facts.state |= STATE_SYSTEM_PRESSED;
    }
}

template <class Tab>
void DescribeTab(Tab *tab, bool current, const wchar_t *action, MirlAccessibleFacts &facts)
{
    facts.role = ROLE_SYSTEM_PAGETAB;
    facts.state |= STATE_SYSTEM_FOCUSABLE | STATE_SYSTEM_SELECTABLE;
    if (current) {
        facts.state |= STATE_SYSTEM_SELECTED;
    }
    if (tab->IsMouseOver()) {
        facts.state |= STATE_SYSTEM_HOTTRACKED;
    }
    facts.defaultAction = action;
}

void Value(MirlAccessibleFacts &facts, const std::wstring &value)
{
    facts.hasValue = true;
    facts.value = value;
}

} // namespace

namespace MIRL {

void DescribeWindow(MirlWindowBase *window, MirlAccessibleFacts &facts)
{
    HWND hwnd = window->m_hWnd;
    const std::wstring caption = WindowText(hwnd);
    const LONG style = ::GetWindowLongW(hwnd, GWL_STYLE);
    facts = MirlAccessibleFacts();
    facts.role = ROLE_SYSTEM_CLIENT;
    facts.name = NameOf(window, caption);
    facts.state = CommonState(hwnd);

    if (MirlTabButton *tab = dynamic_cast<MirlTabButton *>(window)) {
        DescribeTab(tab, MirlToolbar::GetCurrentTab() == tab, L"Switch", facts);
    } else if (MirlOutlookBar *bar = dynamic_cast<MirlOutlookBar *>(window)) {
        DescribeTab(bar, MIRLOutlookCtrl::GetCurrentBar() == bar, L"Open", facts);
    } else if (MirlButton *button = dynamic_cast<MirlButton *>(window)) {
        DescribeButton(button, hwnd, facts);
    } else if (MirlStatic *label = dynamic_cast<MirlStatic *>(window)) {
        // A static keeps its caption itself: the system's copy is the one it was made with.
        facts.name = NameOf(window, window->GetText());
        facts.role = label->HasLinks() ? ROLE_SYSTEM_LINK : ROLE_SYSTEM_STATICTEXT;
        facts.state |= label->HasLinks() ? STATE_SYSTEM_LINKED : STATE_SYSTEM_READONLY;
    } else if (MirlEdit *edit = dynamic_cast<MirlEdit *>(window)) {
        // The text is the value; the name is what the field asks for.
        facts.role = ROLE_SYSTEM_TEXT;
        facts.state |= STATE_SYSTEM_FOCUSABLE | ((style & ES_READONLY) != 0 ? STATE_SYSTEM_READONLY : 0);
        facts.name = window->GetToolTip()[0] != L'\0' ? std::wstring(window->GetToolTip()) : std::wstring(edit->GetWaterText());
        const wchar_t *text = edit->GetWindowTextW();
        Value(facts, text != nullptr ? text : L"");
    } else if (dynamic_cast<MirlCommonEdit *>(window) != nullptr) {
        facts.role = ROLE_SYSTEM_TEXT;
        facts.state |= STATE_SYSTEM_FOCUSABLE | ((style & ES_READONLY) != 0 ? STATE_SYSTEM_READONLY : 0);
        facts.name = window->GetToolTip();
        Value(facts, caption);
    } else if (dynamic_cast<MirlSpinCtrl *>(window) != nullptr) {
        facts.role = ROLE_SYSTEM_SPINBUTTON;
        Value(facts, Number(static_cast<int>(::SendMessageW(hwnd, UDM_GETPOS32, 0, 0))));
    } else if (MirlScrollBar *scroll = dynamic_cast<MirlScrollBar *>(window)) {
        facts.role = ROLE_SYSTEM_SCROLLBAR;
        Value(facts, Number(scroll->GetScrollPos()));
    } else if (MirlSlider *slider = dynamic_cast<MirlSlider *>(window)) {
        facts.role = ROLE_SYSTEM_SLIDER;
        facts.state |= STATE_SYSTEM_FOCUSABLE;
        Value(facts, Number(slider->GetPos()));
    } else if (MirlMediaSeekBar *seek = dynamic_cast<MirlMediaSeekBar *>(window)) {
        // Thousandths, as the bar tells its parent, read as a percentage with one decimal.
        facts.role = ROLE_SYSTEM_SLIDER;
        const double percent = static_cast<double>(seek->GetSeekPercent());
        const long thousandths = percent >= 0.0 && percent <= 1.0 ? static_cast<long>(percent * 1000.0) : (percent > 1.0 ? 1000 : 0);
        wchar_t text[16];
        swprintf(text, 16, L"%ld.%ld%%", thousandths / 10, thousandths % 10);
        Value(facts, text);
    } else if (dynamic_cast<MirlTrackBar *>(window) != nullptr) {
        facts.role = ROLE_SYSTEM_SLIDER;
        facts.state |= STATE_SYSTEM_FOCUSABLE;
        Value(facts, Number(static_cast<int>(::SendMessageW(hwnd, TBM_GETPOS, 0, 0))));
    } else if (MirlInchingSwitch *jog = dynamic_cast<MirlInchingSwitch *>(window)) {
        facts.role = ROLE_SYSTEM_SLIDER;
        Value(facts, Number(jog->GetFrame()));
    } else if (MirlProgressBar *progress = dynamic_cast<MirlProgressBar *>(window)) {
        facts.role = ROLE_SYSTEM_PROGRESSBAR;
        facts.state |= STATE_SYSTEM_READONLY;
        const long long min = progress->GetShownMin();
        Value(facts, Percent(progress->GetShownPos() - min, progress->GetShownMax() - min));
    } else if (dynamic_cast<MirlToolbar *>(window) != nullptr || dynamic_cast<MIRLOutlookCtrl *>(window) != nullptr) {
        facts.role = ROLE_SYSTEM_PAGETABLIST;
    } else if (MirlListView *list = dynamic_cast<MirlListView *>(window)) {
        facts.role = ROLE_SYSTEM_LIST;
        facts.state |= STATE_SYSTEM_FOCUSABLE | (list->GetAllowMultiSelection() ? STATE_SYSTEM_MULTISELECTABLE : 0);
        facts.itemCount = list->GetItemCount();
    } else if (MirlComboBox *combo = dynamic_cast<MirlComboBox *>(window)) {
        facts.role = ROLE_SYSTEM_COMBOBOX;
        facts.state |= STATE_SYSTEM_FOCUSABLE;
        facts.name = window->GetToolTip();
        const wchar_t *text = combo->GetWindowTextW();
        Value(facts, text != nullptr ? text : L"");
    } else if (MirlMenuWindow *menu = dynamic_cast<MirlMenuWindow *>(window)) {
        facts.role = ROLE_SYSTEM_MENUPOPUP;
        facts.itemCount = menu->GetItemCount();
    } else if (dynamic_cast<MirlGroupBox *>(window) != nullptr) {
        facts.role = ROLE_SYSTEM_GROUPING;
    } else if (dynamic_cast<MirlSplitter *>(window) != nullptr) {
        facts.role = ROLE_SYSTEM_SEPARATOR;
    }
}

bool DescribeItem(MirlWindowBase *window, MirlAccessibleFacts &facts)
{
    const long wanted = facts.item;
    facts = MirlAccessibleFacts();
    facts.item = wanted;
    HWND hwnd = window->m_hWnd;
    RECT place = {};
    if (MirlListView *list = dynamic_cast<MirlListView *>(window)) {
        if (wanted < 1 || wanted > list->GetItemCount()) {
            return false;
        }
        std::list<MirlListView::INFORMATION_ITEM *>::const_iterator row = list->GetItems()->begin();
        std::advance(row, wanted - 1);
        const MirlListView::INFORMATION_ITEM *item = *row;
        if (item == nullptr) {
            return false;
        }
        facts.role = ROLE_SYSTEM_LISTITEM;
        for (int column = 0; column < list->GetColumnCount(); ++column) {
            const std::wstring cell = item->GetCellText(column);
            if (!cell.empty()) {
                facts.name += (facts.name.empty() ? L"" : L", ") + cell;
            }
        }
        facts.state = STATE_SYSTEM_SELECTABLE | (item->selected ? STATE_SYSTEM_SELECTED : 0);
        RECT shown = {};
        if (!::IntersectRect(&shown, &item->rect, &list->GetRowsRect())) {
            facts.state |= STATE_SYSTEM_INVISIBLE | STATE_SYSTEM_OFFSCREEN;
        } else {
            facts.defaultAction = L"Select";
        }
        place = item->rect;
    } else if (MirlMenuWindow *menu = dynamic_cast<MirlMenuWindow *>(window)) {
        if (wanted < 1 || wanted > menu->GetItemCount()) {
            return false;
        }
        std::list<MirlMenuWindow::MENU_ITEM *>::const_iterator row = menu->GetItems().begin();
        std::advance(row, wanted - 1);
        const MirlMenuWindow::MENU_ITEM *item = *row;
        if (item == nullptr) {
            return false;
        }
        facts.role = ROLE_SYSTEM_MENUITEM;
        facts.name = item->text;
        facts.defaultAction = L"Execute";
        facts.state = menu->GetHoverItem() == item ? STATE_SYSTEM_FOCUSED | STATE_SYSTEM_HOTTRACKED : 0;
        place = item->rect;
    } else {
        return false;
    }
    ::MapWindowPoints(hwnd, nullptr, reinterpret_cast<POINT *>(&place), 2);
    facts.location = place;
    return true;
}

DWORD AccessibleEventFor(MirlWindowBase *window, UINT message)
{
    if (message == WM_ENABLE) {
        return EVENT_OBJECT_STATECHANGE;
    }
    if (message == WM_SETTEXT) {
        return dynamic_cast<MirlEdit *>(window) != nullptr || dynamic_cast<MirlCommonEdit *>(window) != nullptr ? 0
                                                                                                              : EVENT_OBJECT_NAMECHANGE;
    }
    return 0;
}

bool DoDefaultAction(MirlWindowBase *window)
{
    HWND hwnd = window->m_hWnd;
    if (!::IsWindowEnabled(hwnd)) {
        return false;
    }
    // Tabs, folder bars and buttons: the click a user makes, at the window's top left, clear
    // of a tab's menu zone.
    if (dynamic_cast<MirlButton *>(window) != nullptr || dynamic_cast<MirlTabButton *>(window) != nullptr ||
        dynamic_cast<MirlOutlookBar *>(window) != nullptr) {
        return ::PostMessageW(hwnd, BM_CLICK, 0, 0) != 0;
    }
    return false;
}

bool DoDefaultItemAction(MirlWindowBase *window, long item)
{
    MirlAccessibleFacts facts;
    facts.item = item;
    if (!::IsWindowEnabled(window->m_hWnd) || !DescribeItem(window, facts) || facts.defaultAction.empty()) {
        return false;
    }
    // The middle of the row's visible part, in the window's client coordinates.
    RECT row = facts.location;
    ::MapWindowPoints(nullptr, window->m_hWnd, reinterpret_cast<POINT *>(&row), 2);
    if (MirlListView *list = dynamic_cast<MirlListView *>(window)) {
        ::IntersectRect(&row, &row, &list->GetRowsRect());
    }
    const LPARAM at = MAKELPARAM((row.left + row.right) / 2, (row.top + row.bottom) / 2);
    HWND hwnd = window->m_hWnd;
    // A menu row answers the release over the row it hovers: the move comes first.
    return ::PostMessageW(hwnd, WM_MOUSEMOVE, 0, at) && ::PostMessageW(hwnd, WM_LBUTTONDOWN, MK_LBUTTON, at) &&
           ::PostMessageW(hwnd, WM_LBUTTONUP, 0, at);
}

} // namespace MIRL
