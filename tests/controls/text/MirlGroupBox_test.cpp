// The group box through real messages: its children's notifications reach its parent untouched,
// before any reflection, and its own template makes its children.
#include "controls/container/MirlContainerTestSupport.h"
#include "MirlMessageRecorder.h"

#include <gtest/gtest.h>

namespace {

::testing::Environment *const g_Mirl =
    ::testing::AddGlobalTestEnvironment(new mirltest::SkinEnvironment(L"containers"));

const UINT kSliderNotify = WM_USER + 120;

class GroupBoxTest : public ::testing::Test {
protected:
    GroupBoxTest() : m_Parent(m_Sequence, WS_POPUP | WS_VISIBLE | WS_CLIPCHILDREN, RECT{0, 0, 300, 200}) {}

    void SetUp() override
    {
        mirltest::ParkCursor();
        ASSERT_NE(nullptr, m_Box.Create(nullptr, m_Parent.hwnd(), L"Group"));
        mirltest::FlushMessages();
        for (UINT noise : {UINT(WM_CTLCOLORBTN), UINT(WM_CTLCOLORSTATIC), UINT(WM_PARENTNOTIFY), UINT(WM_KILLFOCUS),
                           UINT(WM_SETFOCUS), UINT(WM_IME_SETCONTEXT), UINT(WM_IME_NOTIFY), UINT(WM_ACTIVATE),
                           UINT(WM_NCACTIVATE), UINT(WM_ACTIVATEAPP), UINT(WM_CHANGEUISTATE),
                           UINT(WM_UPDATEUISTATE), UINT(WM_QUERYUISTATE), UINT(WM_WINDOWPOSCHANGING),
                           UINT(WM_WINDOWPOSCHANGED), UINT(WM_QUERYNEWPALETTE)}) {
            m_Sequence.Ignore(noise);
        }
        m_Sequence.Clear();
    }

    HWND Button() const { return m_Box->GetChildByIndex(0) != nullptr ? m_Box->GetChildByIndex(0)->m_hWnd : nullptr; }

    mirltest::MessageSequence m_Sequence;
    mirltest::RecordingParent m_Parent;
    mirltest::Scoped<MirlGroupBox> m_Box;
};

TEST_F(GroupBoxTest, MakesItsChildrenAndLoadsItsBar)
{
    ASSERT_EQ(1u, m_Box->GetChildCount());
    EXPECT_NE(nullptr, dynamic_cast<MirlButton *>(m_Box->GetChildByIndex(0)));
    EXPECT_EQ(501, ::GetDlgCtrlID(Button()));
    EXPECT_EQ(m_Box.hwnd(), ::GetParent(Button()));
    for (int part = 0; part < 3; ++part) {
        ASSERT_NE(nullptr, m_Box->GetBarBitmap(part)) << part;
        EXPECT_EQ(12u, m_Box->GetBarBitmap(part)->GetWidth()) << part;
    }
    wchar_t text[16] = {};
    ::GetWindowTextW(m_Box.hwnd(), text, 16);
    EXPECT_STREQ(L"Output", text);
}

TEST_F(GroupBoxTest, AButtonsCommandArrivesAtTheParentUntouched)
{
    m_Sequence.Ignore(WM_DRAWITEM);
    ::SendMessageW(Button(), BM_CLICK, 0, 0);
    const mirltest::ExpectedMessage click[] = {
        {WM_COMMAND, mirltest::kParent | mirltest::kWParam | mirltest::kLParam, MAKEWPARAM(501, BN_CLICKED),
         reinterpret_cast<LPARAM>(Button())},
        {0, 0, 0, 0}};
    EXPECT_MESSAGES(m_Sequence, click, "BM_CLICK in a group box");
}

TEST_F(GroupBoxTest, ASlidersNotificationArrivesAtTheParentWithItsResult)
{
    m_Parent.Answer(kSliderNotify, 77);
    EXPECT_EQ(77, ::SendMessageW(m_Box.hwnd(), kSliderNotify, 5, 9));
    static const mirltest::ExpectedMessage slider[] = {
        {kSliderNotify, mirltest::kParent | mirltest::kWParam | mirltest::kLParam, 5, 9}, {0, 0, 0, 0}};
    EXPECT_MESSAGES(m_Sequence, slider, "the slider's notification");
}

TEST_F(GroupBoxTest, DrawItemIsForwardedNotReflected)
{
    mirltest::MessageSequence buttonSequence;
    buttonSequence.Ignore(WM_CTLCOLORBTN);
    mirltest::ControlRecorder spy(Button(), buttonSequence);
    // Without a reflecting parent the button never hears of its own drawing.
    ::InvalidateRect(Button(), nullptr, TRUE);
    ::UpdateWindow(Button());
    EXPECT_EQ(1u, m_Sequence.Count(WM_DRAWITEM));
    EXPECT_EQ(0u, buttonSequence.Count(OCM__BASE + WM_DRAWITEM));
    for (const mirltest::RecordedMessage &message : m_Sequence.Messages()) {
        if (message.message == WM_DRAWITEM) {
            EXPECT_EQ(501u, message.wParam);
        }
    }
    // A parent that reflects, as the library's own windows do, sends it back once.
    m_Parent.ReflectNotifications(true);
    ::InvalidateRect(Button(), nullptr, TRUE);
    ::UpdateWindow(Button());
    EXPECT_EQ(1u, buttonSequence.Count(OCM__BASE + WM_DRAWITEM));
}

TEST_F(GroupBoxTest, EveryForwardedMessageAndNoOther)
{
    const UINT forwarded[] = {WM_DRAWITEM, WM_MEASUREITEM, WM_DELETEITEM, WM_VKEYTOITEM, WM_CHARTOITEM,
                              WM_COMPAREITEM, WM_NOTIFY, WM_COMMAND, WM_HSCROLL, WM_VSCROLL, WM_CTLCOLORMSGBOX,
                              WM_CTLCOLOREDIT, WM_CTLCOLORLISTBOX, WM_CTLCOLORBTN, WM_CTLCOLORDLG,
                              WM_CTLCOLORSCROLLBAR, WM_CTLCOLORSTATIC, WM_PARENTNOTIFY, kSliderNotify};
    for (UINT message : forwarded) {
        EXPECT_TRUE(MirlGroupBox::IsForwarded(message)) << message;
    }
    EXPECT_EQ(19u, sizeof(forwarded) / sizeof(forwarded[0]));
    for (UINT message : {UINT(WM_SIZE), UINT(WM_PAINT), UINT(WM_USER + 101), UINT(WM_USER + 119), UINT(WM_USER + 121),
                         UINT(WM_CTLCOLORMSGBOX - 1), UINT(WM_CTLCOLORSTATIC + 1), UINT(WM_TIMER)}) {
        EXPECT_FALSE(MirlGroupBox::IsForwarded(message)) << message;
    }
    // A scroll message of an unknown bar arrives at the parent as it was sent.
    ::SendMessageW(m_Box.hwnd(), WM_HSCROLL, SB_LINEDOWN, 0);
    static const mirltest::ExpectedMessage scroll[] = {
        {WM_HSCROLL, mirltest::kParent | mirltest::kWParam | mirltest::kLParam, SB_LINEDOWN, 0}, {0, 0, 0, 0}};
    EXPECT_MESSAGES(m_Sequence, scroll, "WM_HSCROLL");
}

TEST(GroupBoxFactoryTest, TheFactoryMakesAGroupBox)
{
    mirltest::ButtonFrame frame;
    ASSERT_TRUE(frame.Open(L"Host"));
    MirlUiWindow *ui = static_cast<MirlUiWindow *>(MirlUI::Instance()->GetUiElement(L"GroupBare", 6));
    ASSERT_NE(nullptr, ui);
    MirlWindowBase *made = MirlWindowBase::CreateMirlWindow(&frame, ui);
    ASSERT_NE(nullptr, made);
    EXPECT_NE(nullptr, dynamic_cast<MirlGroupBox *>(made));
    EXPECT_TRUE(::IsWindow(made->m_hWnd));
    ::DestroyWindow(made->m_hWnd);
    delete made;
    frame.DestroyWindow();
}

} // namespace
