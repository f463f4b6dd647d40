// The list family read as an assistive tool reads it: a list with its rows as list items named by
// their cells, a combo box with its choice as the value, the popup with its rows as menu items;
// the selection, the choice and the popup's showing and ending as WinEvents.
#include "MirlAccessibilityTest.h"
#include "MirlListTestSupport.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

::testing::Environment *const g_Mirl = ::testing::AddGlobalTestEnvironment(new mirltest::SkinEnvironment(L"lists"));

using mirltest::AccessibleRef;
using mirltest::ReadAccessible;
using mirltest::WinEventRecord;
using mirltest::WinEventRecorder;

// A row that says what its cells show.
class Song : public MirlListView::INFORMATION_ITEM {
public:
    Song(const wchar_t *title, const wchar_t *artist) : m_Title(title), m_Artist(artist) {}
    std::wstring GetCellText(int column) const override { return column == 0 ? m_Title : column == 1 ? m_Artist : L""; }

private:
    std::wstring m_Title;
    std::wstring m_Artist;
};

// A row of an application that says nothing: the default names it with nothing.
class Mute : public MirlListView::INFORMATION_ITEM {
};

VARIANT Child(long id)
{
    VARIANT child;
    child.vt = VT_I4;
    child.lVal = id;
    return child;
}

struct Part {
    long role = 0;
    long state = 0;
    std::wstring name;
    RECT location = {};
};

Part ReadPart(IAccessible *object, long id)
{
    Part part;
    VARIANT answer;
    ::VariantInit(&answer);
    if (object->get_accRole(Child(id), &answer) == S_OK && answer.vt == VT_I4) {
        part.role = answer.lVal;
    }
    ::VariantClear(&answer);
    if (object->get_accState(Child(id), &answer) == S_OK && answer.vt == VT_I4) {
        part.state = answer.lVal;
    }
    ::VariantClear(&answer);
    BSTR text = nullptr;
    HRESULT result = object->get_accName(Child(id), &text);
    part.name = mirltest::TakeText(result, text);
    long x = 0, y = 0, width = 0, height = 0;
    if (object->accLocation(&x, &y, &width, &height, Child(id)) == S_OK) {
        part.location = RECT{x, y, x + width, y + height};
    }
    return part;
}

class ListAccessibility : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(m_Holder.Open(L"ListFrame")); }
    void TearDown() override
    {
        ::ReleaseCapture();
        MirlMenuWindow::FinalDestroy();
        m_Holder.DestroyWindow();
    }
    template <class T>
    T *Control(const wchar_t *name)
    {
        return dynamic_cast<T *>(m_Holder.GetWindowItem(name));
    }

    mirltest::ListHolder m_Holder;
};

} // namespace

TEST_F(ListAccessibility, AListGivesItsRowsAsListItemsNamedByTheirCells)
{
    MirlListView *list = Control<MirlListView>(L"FrameSongs");
    ASSERT_NE(nullptr, list);
    list->AddColumn(nullptr, L"Title", 150);
    list->AddColumn(nullptr, L"Artist", 120);
    list->AddItem(new Song(L"Night Drive", L"The Midnight Lines"));
    list->AddItem(new Song(L"Blue Hour", L""));
    list->AddItem(new Mute());
    mirltest::PumpMessages();

    mirltest::AccessibleReading reading = ReadAccessible(list->m_hWnd);
    EXPECT_EQ(ROLE_SYSTEM_LIST, reading.role);
    EXPECT_TRUE(list->GetAllowMultiSelection());
    EXPECT_EQ(STATE_SYSTEM_FOCUSABLE | STATE_SYSTEM_MULTISELECTABLE, reading.state);

    AccessibleRef object(mirltest::ClientObject(list->m_hWnd));
    ASSERT_NE(nullptr, object.get());
    long count = 0;
    ASSERT_EQ(S_OK, object->get_accChildCount(&count));
    // The three rows, then the two system scroll bars.
    EXPECT_EQ(5, count);
    std::vector<VARIANT> children(static_cast<size_t>(count));
    long got = 0;
    ASSERT_EQ(S_OK, ::AccessibleChildren(object.get(), 0, count, children.data(), &got));
    ASSERT_EQ(5, got);
    for (long i = 0; i < 3; ++i) {
        EXPECT_EQ(VT_I4, children[static_cast<size_t>(i)].vt) << i;
        EXPECT_EQ(i + 1, children[static_cast<size_t>(i)].lVal) << i;
    }
    for (VARIANT &child : children) {
        ::VariantClear(&child);
    }

    Part first = ReadPart(object.get(), 1);
    EXPECT_EQ(ROLE_SYSTEM_LISTITEM, first.role);
    EXPECT_EQ(L"Night Drive, The Midnight Lines", first.name);
    EXPECT_EQ(STATE_SYSTEM_SELECTABLE, first.state);
    RECT row = list->GetItems()->front()->rect;
    ::MapWindowPoints(list->m_hWnd, nullptr, reinterpret_cast<POINT *>(&row), 2);
    EXPECT_TRUE(::EqualRect(&row, &first.location));
    EXPECT_EQ(L"Blue Hour", ReadPart(object.get(), 2).name);
    EXPECT_EQ(L"", ReadPart(object.get(), 3).name);
    EXPECT_EQ(ROLE_SYSTEM_LISTITEM, ReadPart(object.get(), 3).role);
    EXPECT_EQ(0, ReadPart(object.get(), 4).role);  // the first scroll bar: asked of its own object

    // A click on the second row selects it, and the tools hear which.
    WinEventRecorder events;
    ASSERT_TRUE(events.Hooked());
    RECT second = (*std::next(list->GetItems()->begin()))->rect;
    ::SendMessageW(list->m_hWnd, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM((second.left + second.right) / 2, (second.top + second.bottom) / 2));
    ::SendMessageW(list->m_hWnd, WM_LBUTTONUP, 0, MAKELPARAM((second.left + second.right) / 2, (second.top + second.bottom) / 2));
    mirltest::PumpMessages();
    EXPECT_EQ(STATE_SYSTEM_SELECTABLE | STATE_SYSTEM_SELECTED, ReadPart(object.get(), 2).state);
    std::vector<WinEventRecord> selections = events.Of(EVENT_OBJECT_SELECTION);
    ASSERT_EQ(1u, selections.size());
    EXPECT_EQ((WinEventRecord{EVENT_OBJECT_SELECTION, list->m_hWnd, OBJID_CLIENT, 2}), selections[0]);

    // A row's default action is the click that selects it alone.
    BSTR action = nullptr;
    ASSERT_EQ(S_OK, object->get_accDefaultAction(Child(3), &action));
    EXPECT_EQ(L"Select", mirltest::TakeText(S_OK, action));
    EXPECT_EQ(S_OK, object->accDoDefaultAction(Child(3)));
    mirltest::PumpMessages();
    EXPECT_EQ(STATE_SYSTEM_SELECTABLE | STATE_SYSTEM_SELECTED, ReadPart(object.get(), 3).state);
    EXPECT_EQ(STATE_SYSTEM_SELECTABLE, ReadPart(object.get(), 2).state);
    selections = events.Of(EVENT_OBJECT_SELECTION);
    ASSERT_EQ(2u, selections.size());
    EXPECT_EQ((WinEventRecord{EVENT_OBJECT_SELECTION, list->m_hWnd, OBJID_CLIENT, 3}), selections[1]);
    EXPECT_EQ(E_INVALIDARG, object->accDoDefaultAction(Child(9)));

    // After the rows are cleared, their child ids name nothing.
    list->ClearItems();
    BSTR name = nullptr;
    EXPECT_EQ(E_INVALIDARG, object->get_accName(Child(1), &name));
    EXPECT_EQ(nullptr, name);
}

TEST_F(ListAccessibility, AComboBoxGivesItsChoiceAsTheValue)
{
    MirlComboBox *combo = Control<MirlComboBox>(L"FrameCombo");
    ASSERT_NE(nullptr, combo);
    mirltest::AccessibleReading reading = ReadAccessible(combo->m_hWnd);
    EXPECT_EQ(ROLE_SYSTEM_COMBOBOX, reading.role);
    EXPECT_TRUE(reading.hasValue);
    EXPECT_EQ(L"Rock", reading.value);

    // Choosing is a change the tools hear of, even of the item already shown, as the parent
    // hears CBN_SELCHANGE.
    WinEventRecorder events;
    ASSERT_TRUE(events.Hooked());
    ::SendMessageW(combo->m_hWnd, WM_COMMAND, 1, 0);
    mirltest::PumpMessages();
    EXPECT_EQ(L"Rock", ReadAccessible(combo->m_hWnd).value);
    // The value first, then the choice, as the system's combo box tells them.
    std::vector<DWORD> order;
    for (DWORD event : events.About(combo->m_hWnd)) {
        if (event == EVENT_OBJECT_VALUECHANGE || event == EVENT_OBJECT_SELECTION) {
            order.push_back(event);
        }
    }
    EXPECT_EQ((std::vector<DWORD>{EVENT_OBJECT_VALUECHANGE, EVENT_OBJECT_SELECTION}), order);
    EXPECT_EQ((std::vector<WinEventRecord>{{EVENT_OBJECT_SELECTION, combo->m_hWnd, OBJID_CLIENT, CHILDID_SELF}}),
              events.Of(EVENT_OBJECT_SELECTION));
}

TEST_F(ListAccessibility, ThePopupIsAMenuOfMenuItemsThatStartsAndEnds)
{
    WinEventRecorder events;
    ASSERT_TRUE(events.Hooked());
    MirlMenuWindow carrier;
    carrier.AddItem(L"First", 21, nullptr);
    RECT place = {40, 40, 200, 60};
    carrier.TrackPopupMenu(L"Popup", place, &m_Holder);
    mirltest::PumpMessages();
    HWND popup = mirltest::PopupWindow();
    ASSERT_NE(nullptr, popup);
    EXPECT_EQ(ROLE_SYSTEM_MENUPOPUP, ReadAccessible(popup).role);
    AccessibleRef object(mirltest::ClientObject(popup));
    ASSERT_NE(nullptr, object.get());
    MirlMenuWindow *menu = MirlMenuWindow::Instance();
    ASSERT_NE(nullptr, menu);
    const long rows = menu->GetItemCount();
    ASSERT_GE(rows, 2);
    Part first = ReadPart(object.get(), 1);
    EXPECT_EQ(ROLE_SYSTEM_MENUITEM, first.role);
    EXPECT_EQ(L"First", first.name);
    EXPECT_EQ(L"Open", ReadPart(object.get(), 2).name);
    EXPECT_EQ(0, ReadPart(object.get(), rows + 1).role);

    // A row's default action chooses it: its command reaches the holder.
    BSTR action = nullptr;
    ASSERT_EQ(S_OK, object->get_accDefaultAction(Child(1), &action));
    EXPECT_EQ(L"Execute", mirltest::TakeText(S_OK, action));
    m_Holder.m_Commands.clear();
    EXPECT_EQ(S_OK, object->accDoDefaultAction(Child(1)));
    mirltest::PumpMessages();
    ASSERT_EQ(1u, m_Holder.m_Commands.size());
    EXPECT_EQ(21u, LOWORD(m_Holder.m_Commands[0].first));

    ::SendMessageW(popup, WM_CANCELMODE, 0, 0);
    mirltest::PumpMessages();
    EXPECT_EQ((std::vector<WinEventRecord>{{EVENT_SYSTEM_MENUPOPUPSTART, popup, OBJID_CLIENT, CHILDID_SELF}}),
              events.Of(EVENT_SYSTEM_MENUPOPUPSTART));
    EXPECT_EQ((std::vector<WinEventRecord>{{EVENT_SYSTEM_MENUPOPUPEND, popup, OBJID_CLIENT, CHILDID_SELF}}),
              events.Of(EVENT_SYSTEM_MENUPOPUPEND));
}
