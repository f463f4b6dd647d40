// Every control family read as an assistive tool reads it: the client object of each window
// through AccessibleObjectFromWindow, the tree through AccessibleChildren, the default action
// invoked through the object, and the WinEvents of each change through an out-of-context hook.
// The windows are the sample skin's, made as an application makes them.
#include "Mirl.h"
#include "MirlAccessibilityTest.h"
#include "MirlTestSupport.h"

#include <gtest/gtest.h>

#include <commctrl.h>

#include <algorithm>

#include <memory>
#include <string>
#include <vector>

namespace {

using mirltest::AccessibleChildNamed;
using mirltest::AccessibleChildWindows;
using mirltest::AccessibleReading;
using mirltest::ReadAccessible;
using mirltest::WinEventRecorder;

class SampleSkin : public ::testing::Environment {
public:
    void SetUp() override { MirlIntialize(mirltest::SkinPath(L"sample").c_str(), 1033); }
    void TearDown() override { MirlUnIntialize(); }
};
const ::testing::Environment *const kSkin = ::testing::AddGlobalTestEnvironment(new SampleSkin);

class Frame : public MirlWindowImpl<Frame> {
};

// A window of the sample skin, destroyed at the end of the test.
class SampleWindow : public ::testing::Test {
protected:
    void Open(const wchar_t *name)
    {
        m_Frame.reset(new Frame());
        ASSERT_NE(nullptr, m_Frame->Create(nullptr, nullptr, static_cast<LPRECT>(nullptr), name));
        mirltest::PumpMessages();
    }
    void TearDown() override
    {
        if (m_Frame && m_Frame->m_hWnd != nullptr) {
            m_Frame->DestroyWindow();
        }
    }
    HWND Item(const wchar_t *parent, const wchar_t *name) const
    {
        MirlWindowBase *holder = parent != nullptr ? m_Frame->GetWindowItem(parent) : m_Frame.get();
        MirlWindowBase *item = holder != nullptr ? holder->GetWindowItem(name) : nullptr;
        return item != nullptr ? item->m_hWnd : nullptr;
    }
    template <class T>
    T *Control(const wchar_t *parent, const wchar_t *name) const
    {
        MirlWindowBase *holder = parent != nullptr ? m_Frame->GetWindowItem(parent) : m_Frame.get();
        return holder != nullptr ? dynamic_cast<T *>(holder->GetWindowItem(name)) : nullptr;
    }

    std::unique_ptr<Frame> m_Frame;
};

const long kShown = 0;  // a visible, enabled window without focus has no state bits of its own

std::vector<std::wstring> Names(const std::vector<HWND> &windows)
{
    std::vector<std::wstring> names;
    for (HWND window : windows) {
        names.push_back(ReadAccessible(window).name);
    }
    return names;
}

} // namespace

// Buttons, check boxes, link buttons and statics of the player window.
TEST_F(SampleWindow, TheTextFamilyReadsAsButtonsCheckBoxesLinksAndText)
{
    Open(L"MainFrame");
    AccessibleReading frame = ReadAccessible(m_Frame->m_hWnd);
    ASSERT_TRUE(frame.read);
    EXPECT_EQ(ROLE_SYSTEM_CLIENT, frame.role);
    EXPECT_EQ(L"MIRL Player", frame.name);

    HWND backdrop = Item(nullptr, L"Backdrop");
    EXPECT_EQ((std::vector<HWND>{backdrop}), AccessibleChildWindows(m_Frame->m_hWnd));
    EXPECT_EQ((std::vector<std::wstring>{L"MIRL Player", L"01:42 / 04:05", L"Now playing: Night Drive by The Midnight Lines",
                                         L"Position", L"Volume", L"Previous track", L"Play", L"Pause", L"Stop", L"Next track",
                                         L"Shuffle", L"Playlist", L"Press Play to start, or browse the library.",
                                         L"Search the library", L"Visit the MIRL project page"}),
              Names(AccessibleChildWindows(backdrop)));

    AccessibleReading title = ReadAccessible(Item(L"Backdrop", L"Title"));
    EXPECT_EQ(ROLE_SYSTEM_STATICTEXT, title.role);
    EXPECT_EQ(STATE_SYSTEM_READONLY, title.state);
    EXPECT_FALSE(title.hasValue);
    EXPECT_EQ(L"", title.action);

    AccessibleReading hint = ReadAccessible(Item(L"Backdrop", L"Hint"));
    EXPECT_EQ(ROLE_SYSTEM_LINK, hint.role);
    EXPECT_EQ(STATE_SYSTEM_LINKED, hint.state);

    // A picture button has no caption: its name is its tooltip.
    AccessibleReading play = ReadAccessible(Item(L"Backdrop", L"Play"));
    EXPECT_EQ(ROLE_SYSTEM_PUSHBUTTON, play.role);
    EXPECT_EQ(L"Play", play.name);
    EXPECT_EQ(STATE_SYSTEM_FOCUSABLE, play.state);
    EXPECT_EQ(L"Press", play.action);

    AccessibleReading visit = ReadAccessible(Item(L"Backdrop", L"Visit"));
    EXPECT_EQ(ROLE_SYSTEM_LINK, visit.role);
    EXPECT_EQ(STATE_SYSTEM_FOCUSABLE | STATE_SYSTEM_LINKED, visit.state);
    EXPECT_EQ(L"Jump", visit.action);

    HWND shuffle = Item(L"Backdrop", L"Shuffle");
    AccessibleReading check = ReadAccessible(shuffle);
    EXPECT_EQ(ROLE_SYSTEM_CHECKBUTTON, check.role);
    EXPECT_EQ(STATE_SYSTEM_FOCUSABLE, check.state);
    EXPECT_EQ(L"Check", check.action);

    // The default action is the click: the box is checked, and the tools hear of it.
    WinEventRecorder events;
    ASSERT_TRUE(events.Hooked());
    mirltest::DoDefaultAction(shuffle);
    mirltest::PumpMessages();
    check = ReadAccessible(shuffle);
    EXPECT_EQ(STATE_SYSTEM_FOCUSABLE | STATE_SYSTEM_CHECKED, check.state & ~STATE_SYSTEM_FOCUSED);
    EXPECT_EQ(L"Uncheck", check.action);
    std::vector<DWORD> about = events.About(shuffle);
    EXPECT_NE(about.end(), std::find(about.begin(), about.end(), static_cast<DWORD>(EVENT_OBJECT_STATECHANGE)));

    // A disabled button says so, the tools hear of it, and its default action does nothing.
    HWND stop = Item(L"Backdrop", L"Stop");
    events.Clear();
    ::EnableWindow(stop, FALSE);
    mirltest::PumpMessages();
    EXPECT_EQ(STATE_SYSTEM_FOCUSABLE | STATE_SYSTEM_UNAVAILABLE, ReadAccessible(stop).state);
    EXPECT_EQ(std::vector<DWORD>{EVENT_OBJECT_STATECHANGE}, events.About(stop));
    mirltest::DoDefaultAction(stop);
    mirltest::PumpMessages();
    EXPECT_EQ(std::vector<DWORD>{EVENT_OBJECT_STATECHANGE}, events.About(stop));

    // A new caption is a new name.
    HWND caption = Item(L"Backdrop", L"Title");
    events.Clear();
    ::SetWindowTextW(caption, L"Another Player");
    mirltest::PumpMessages();
    EXPECT_EQ(L"Another Player", ReadAccessible(caption).name);
    EXPECT_EQ(std::vector<DWORD>{EVENT_OBJECT_NAMECHANGE}, events.About(caption));
}

// Sliders, the seek bar, the progress bar, the jog wheel and the scroll bar give their values.
TEST_F(SampleWindow, TheRangeFamilyGivesRolesAndValuesAndTellsOfChanges)
{
    Open(L"MainFrame");
    HWND seek = Item(L"Backdrop", L"Seek");
    AccessibleReading reading = ReadAccessible(seek);
    EXPECT_EQ(ROLE_SYSTEM_SLIDER, reading.role);
    EXPECT_EQ(L"Position", reading.name);
    EXPECT_TRUE(reading.hasValue);
    EXPECT_EQ(L"0.0%", reading.value);

    HWND volume = Item(L"Backdrop", L"Volume");
    reading = ReadAccessible(volume);
    EXPECT_EQ(ROLE_SYSTEM_SLIDER, reading.role);
    EXPECT_EQ(L"Volume", reading.name);
    EXPECT_EQ(L"50", reading.value);

    WinEventRecorder events;
    ASSERT_TRUE(events.Hooked());
    Control<MirlMediaSeekBar>(L"Backdrop", L"Seek")->SetSeekPercent(102.0f / 245.0f);
    Control<MirlSlider>(L"Backdrop", L"Volume")->SetPos(70, true);
    Control<MirlSlider>(L"Backdrop", L"Volume")->SetPos(70, true);
    mirltest::PumpMessages();
    EXPECT_EQ(L"41.6%", ReadAccessible(seek).value);
    EXPECT_EQ(L"70", ReadAccessible(volume).value);
    // One event per change, in the order of the changes; the same position again is no change.
    std::vector<mirltest::WinEventRecord> changes = events.Of(EVENT_OBJECT_VALUECHANGE);
    ASSERT_EQ(2u, changes.size());
    EXPECT_EQ((mirltest::WinEventRecord{EVENT_OBJECT_VALUECHANGE, seek, OBJID_CLIENT, CHILDID_SELF}), changes[0]);
    EXPECT_EQ((mirltest::WinEventRecord{EVENT_OBJECT_VALUECHANGE, volume, OBJID_CLIENT, CHILDID_SELF}), changes[1]);
    m_Frame->DestroyWindow();

    Open(L"LibraryFrame");
    HWND scan = Item(L"Main", L"Scan");
    reading = ReadAccessible(scan);
    EXPECT_EQ(ROLE_SYSTEM_PROGRESSBAR, reading.role);
    EXPECT_EQ(STATE_SYSTEM_READONLY, reading.state);
    EXPECT_EQ(L"0%", reading.value);
    events.Clear();
    MirlProgressBar *progress = Control<MirlProgressBar>(L"Main", L"Scan");
    progress->SetRange32(0, 1870);
    progress->SetPos(1204);
    mirltest::PumpMessages();
    EXPECT_EQ(L"64%", ReadAccessible(scan).value);
    EXPECT_EQ(std::vector<DWORD>{EVENT_OBJECT_VALUECHANGE}, events.About(scan));

    reading = ReadAccessible(Item(L"Main", L"Balance"));
    EXPECT_EQ(ROLE_SYSTEM_SLIDER, reading.role);
    EXPECT_EQ(L"0", reading.value);
    reading = ReadAccessible(Item(L"Side", L"Jog"));
    EXPECT_EQ(ROLE_SYSTEM_SLIDER, reading.role);
    EXPECT_EQ(L"Hold the button and move to scrub", reading.name);
    EXPECT_EQ(L"0", reading.value);
    m_Frame->DestroyWindow();

    Open(L"BrowseFrame");
    reading = ReadAccessible(Item(nullptr, L"Scroller"));
    EXPECT_EQ(ROLE_SYSTEM_SCROLLBAR, reading.role);
    EXPECT_EQ(L"Scroll the tracks", reading.name);
    EXPECT_EQ(L"0", reading.value);
}

// The tab strip is a page tab list, the folder bar too; the default action selects.
TEST_F(SampleWindow, TheContainerFamilyReadsAsPageTabsThatSelect)
{
    Open(L"BrowseFrame");
    HWND tabs = Item(nullptr, L"Tabs");
    EXPECT_EQ(ROLE_SYSTEM_PAGETABLIST, ReadAccessible(tabs).role);
    std::vector<HWND> pages = AccessibleChildWindows(tabs);
    EXPECT_EQ((std::vector<std::wstring>{L"Library", L"Now playing", L"Settings"}), Names(pages));
    ASSERT_EQ(3u, pages.size());
    AccessibleReading library = ReadAccessible(pages[0]);
    EXPECT_EQ(ROLE_SYSTEM_PAGETAB, library.role);
    EXPECT_EQ(STATE_SYSTEM_FOCUSABLE | STATE_SYSTEM_SELECTABLE | STATE_SYSTEM_SELECTED, library.state);
    EXPECT_EQ(L"Switch", library.action);
    EXPECT_EQ(STATE_SYSTEM_FOCUSABLE | STATE_SYSTEM_SELECTABLE, ReadAccessible(pages[1]).state);

    WinEventRecorder events;
    ASSERT_TRUE(events.Hooked());
    mirltest::DoDefaultAction(pages[1]);
    mirltest::PumpMessages();
    EXPECT_EQ(STATE_SYSTEM_SELECTED, ReadAccessible(pages[1]).state & STATE_SYSTEM_SELECTED);
    EXPECT_EQ(0, ReadAccessible(pages[0]).state & STATE_SYSTEM_SELECTED);
    std::vector<mirltest::WinEventRecord> selections = events.Of(EVENT_OBJECT_SELECTION);
    ASSERT_EQ(1u, selections.size());
    EXPECT_EQ((mirltest::WinEventRecord{EVENT_OBJECT_SELECTION, pages[1], OBJID_CLIENT, CHILDID_SELF}), selections[0]);

    HWND folders = Item(nullptr, L"Folders");
    EXPECT_EQ(ROLE_SYSTEM_PAGETABLIST, ReadAccessible(folders).role);
    HWND artists = AccessibleChildNamed(folders, L"Artists");
    ASSERT_NE(nullptr, artists);
    EXPECT_EQ(ROLE_SYSTEM_PAGETAB, ReadAccessible(artists).role);
    EXPECT_EQ(L"Open", ReadAccessible(artists).action);
    EXPECT_EQ(0, ReadAccessible(artists).state & STATE_SYSTEM_SELECTED);
    events.Clear();
    mirltest::DoDefaultAction(artists);
    mirltest::PumpMessages();
    EXPECT_EQ(STATE_SYSTEM_SELECTED, ReadAccessible(artists).state & STATE_SYSTEM_SELECTED);
    EXPECT_EQ(1u, events.Of(EVENT_OBJECT_SELECTION).size());
    m_Frame->DestroyWindow();

    Open(L"LibraryFrame");
    AccessibleReading divider = ReadAccessible(Item(nullptr, L"Divider"));
    EXPECT_EQ(ROLE_SYSTEM_SEPARATOR, divider.role);
    EXPECT_EQ(L"Drag to resize the side panel", divider.name);
}

// The player's group box: a grouping named by its caption, whose children are its controls.
TEST_F(SampleWindow, TheGroupBoxReadsAsAGroupingOfItsControls)
{
    Open(L"PlayerWindow");
    HWND page = Item(nullptr, L"PageSettings");
    ASSERT_NE(nullptr, page);
    HWND options = Control<MirlWindowBase>(L"PageSettings", L"Options")->m_hWnd;
    // On a hidden page the group is invisible too.
    EXPECT_EQ(STATE_SYSTEM_INVISIBLE, ReadAccessible(options).state & STATE_SYSTEM_INVISIBLE);
    ::ShowWindow(page, SW_SHOW);
    AccessibleReading group = ReadAccessible(options);
    EXPECT_EQ(ROLE_SYSTEM_GROUPING, group.role);
    EXPECT_EQ(L"Playback", group.name);
    EXPECT_FALSE(group.hasValue);
    EXPECT_EQ(kShown, group.state);
    EXPECT_EQ(L"", group.action);
    std::vector<HWND> children = AccessibleChildWindows(options);
    ASSERT_EQ(3u, children.size());
    AccessibleReading label = ReadAccessible(children[0]);
    EXPECT_EQ(ROLE_SYSTEM_STATICTEXT, label.role);
    EXPECT_EQ(L"Crossfade (seconds)", label.name);
    EXPECT_EQ(ROLE_SYSTEM_TEXT, ReadAccessible(children[1]).role);
    EXPECT_EQ(ROLE_SYSTEM_SPINBUTTON, ReadAccessible(children[2]).role);
}

// The search field: editable text named by its watermark, its text the value.
TEST_F(SampleWindow, TheEditFamilyGivesItsTextAsTheValue)
{
    Open(L"MainFrame");
    HWND search = Item(L"Backdrop", L"Search");
    AccessibleReading reading = ReadAccessible(search);
    EXPECT_EQ(ROLE_SYSTEM_TEXT, reading.role);
    EXPECT_EQ(L"Search the library", reading.name);
    EXPECT_TRUE(reading.hasValue);
    EXPECT_EQ(L"", reading.value);
    EXPECT_EQ(STATE_SYSTEM_FOCUSABLE, reading.state);

    WinEventRecorder events;
    ASSERT_TRUE(events.Hooked());
    ::SendMessageW(search, WM_CHAR, L'a', 1);
    ::SendMessageW(search, WM_CHAR, L'b', 1);
    mirltest::PumpMessages();
    EXPECT_EQ(L"ab", ReadAccessible(search).value);
    std::vector<mirltest::WinEventRecord> changes = events.Of(EVENT_OBJECT_VALUECHANGE);
    ASSERT_EQ(2u, changes.size());
    EXPECT_EQ((mirltest::WinEventRecord{EVENT_OBJECT_VALUECHANGE, search, OBJID_CLIENT, CHILDID_SELF}), changes[1]);
}

// The number field and its arrows of the settings dialog: editable text and a spin button.
TEST_F(SampleWindow, TheNumberFieldAndItsSpinGiveTheirNumbers)
{
    Open(L"MainFrame");
    MirlCommonEdit field;
    MirlSpinCtrl spin;
    RECT place = {10, 10, 66, 34};
    ASSERT_NE(nullptr, field.Create(m_Frame.get(), m_Frame->m_hWnd, &place, L"SettingsCrossfade"));
    RECT beside = {66, 10, 82, 34};
    ASSERT_NE(nullptr, spin.Create(m_Frame.get(), m_Frame->m_hWnd, &beside, L"SettingsCrossfadeSpin"));
    WinEventRecorder events;
    ASSERT_TRUE(events.Hooked());
    ::SetWindowTextW(field.m_hWnd, L"5");
    ::SendMessageW(spin.m_hWnd, UDM_SETPOS32, 0, 7);
    mirltest::PumpMessages();
    AccessibleReading number = ReadAccessible(field.m_hWnd);
    EXPECT_EQ(ROLE_SYSTEM_TEXT, number.role);
    EXPECT_EQ(L"5", number.value);
    EXPECT_EQ(STATE_SYSTEM_FOCUSABLE, number.state);
    // The field's text is its value, not its name.
    std::vector<DWORD> about = events.About(field.m_hWnd);
    EXPECT_EQ(about.end(), std::find(about.begin(), about.end(), static_cast<DWORD>(EVENT_OBJECT_NAMECHANGE)));
    AccessibleReading arrows = ReadAccessible(spin.m_hWnd);
    EXPECT_EQ(ROLE_SYSTEM_SPINBUTTON, arrows.role);
    EXPECT_EQ(L"7", arrows.value);
    spin.DestroyWindow();
    field.DestroyWindow();
}

// The private message is a number any program can send: with a buffer no object of the library
// waits on, the window writes nothing and answers 0.
TEST_F(SampleWindow, TheDescriptionMessageWritesOnlyWhereAnObjectWaits)
{
    Open(L"MainFrame");
    std::vector<unsigned char> buffer(512, 0xAB);
    EXPECT_EQ(0, ::SendMessageW(Item(L"Backdrop", L"Play"), MIRL::AccessibleMessage(), MIRL::AccessibleDescribe,
                                reinterpret_cast<LPARAM>(buffer.data())));
    EXPECT_EQ(std::vector<unsigned char>(512, 0xAB), buffer);
    EXPECT_EQ(0, ::SendMessageW(Item(L"Backdrop", L"Play"), MIRL::AccessibleMessage(), MIRL::AccessibleDescribe, 0));
}

// An object outlives its window: it answers that the window is gone, and nothing else.
TEST_F(SampleWindow, AnObjectWhoseWindowIsGoneSaysSo)
{
    Open(L"MainFrame");
    mirltest::AccessibleRef play(mirltest::ClientObject(Item(L"Backdrop", L"Play")));
    ASSERT_NE(nullptr, play.get());
    m_Frame->DestroyWindow();
    VARIANT self;
    self.vt = VT_I4;
    self.lVal = CHILDID_SELF;
    VARIANT role;
    ::VariantInit(&role);
    EXPECT_EQ(RPC_E_DISCONNECTED, play->get_accRole(self, &role));
    EXPECT_EQ(VT_EMPTY, role.vt);
    BSTR name = nullptr;
    EXPECT_EQ(RPC_E_DISCONNECTED, play->get_accName(self, &name));
    EXPECT_EQ(nullptr, name);
    EXPECT_EQ(RPC_E_DISCONNECTED, play->accDoDefaultAction(self));
}
