// The number field and its spin arrows through real messages: the factory rows, the system edit
// and up-down behind them, arrow steps through the parent's reflection, the floor at 0, the
// notifications that carry only a header, and the face kept at the size of creation.
#include "MirlCommonEditTestSupport.h"
#include "MirlPixelTest.h"

#include <gtest/gtest.h>

namespace {

::testing::Environment *const g_Mirl =
    ::testing::AddGlobalTestEnvironment(new mirltest::SkinEnvironment(L"dialogs"));

class CommonEdit : public mirltest::PixelTest {
protected:
    void SetUp() override
    {
        PixelTest::SetUp();
        ASSERT_TRUE(m_Frame.Open(L"Frame"));
        m_Edit = mirltest::MakeFromTemplate<MirlCommonEdit>(&m_Frame, L"Number");
        m_Spin = mirltest::MakeFromTemplate<MirlSpinCtrl>(&m_Frame, L"Spin");
        ASSERT_NE(nullptr, m_Edit);
        ASSERT_NE(nullptr, m_Spin);
        ASSERT_NE(nullptr, m_Edit->m_hWnd);
        ASSERT_NE(nullptr, m_Spin->m_hWnd);
        m_Spin->SetBuddyWindow(m_Edit.get());
    }
    void TearDown() override
    {
        if (m_Spin != nullptr && m_Spin->IsWindow()) {
            m_Spin->DestroyWindow();
        }
        if (m_Edit != nullptr && m_Edit->IsWindow()) {
            m_Edit->DestroyWindow();
        }
        m_Spin.reset();
        m_Edit.reset();
        if (m_Frame.IsWindow()) {
            m_Frame.DestroyWindow();
        }
    }

    // A press and release on the spin's upper or lower arrow.
    void ClickArrow(bool up)
    {
        RECT client = {};
        m_Spin->GetClientRect(&client);
        const LPARAM point = MAKELPARAM(client.right / 2, up ? 2 : client.bottom - 3);
        m_Spin->SendMessageW(WM_LBUTTONDOWN, MK_LBUTTON, point);
        m_Spin->SendMessageW(WM_LBUTTONUP, 0, point);
    }

    // One UDN_DELTAPOS as the up-down sends it to its parent, reflected back by the frame.
    LRESULT Delta(int delta)
    {
        NMUPDOWN step = {};
        step.hdr.hwndFrom = m_Spin->m_hWnd;
        step.hdr.idFrom = static_cast<UINT_PTR>(::GetDlgCtrlID(m_Spin->m_hWnd));
        step.hdr.code = static_cast<UINT>(UDN_DELTAPOS);
        step.iPos = 12345; // never read
        step.iDelta = delta;
        return m_Frame.SendMessageW(WM_NOTIFY, step.hdr.idFrom, reinterpret_cast<LPARAM>(&step));
    }

    mirltest::ButtonFrame m_Frame;
    std::unique_ptr<MirlCommonEdit> m_Edit;
    std::unique_ptr<MirlSpinCtrl> m_Spin;
};

TEST_F(CommonEdit, TheFactoryMakesBothFromTheirTemplates)
{
    EXPECT_STREQ(L"COMMONEDIT", m_Edit->GetClass());
    EXPECT_STREQ(L"SPIN", m_Spin->GetClass());
    EXPECT_EQ(401, ::GetDlgCtrlID(m_Edit->m_hWnd));
    EXPECT_EQ(402, ::GetDlgCtrlID(m_Spin->m_hWnd));
    EXPECT_EQ(L"7", mirltest::TextOf(m_Edit->m_hWnd));
    EXPECT_NE(nullptr, m_Edit->GetImageLeft());
    EXPECT_NE(nullptr, m_Edit->GetImageRight());
    EXPECT_NE(nullptr, m_Edit->GetImageMiddle());
    const RECT created = m_Edit->GetCreationClientRect();
    EXPECT_EQ(60, created.right);
    EXPECT_EQ(22, created.bottom);
    EXPECT_NE(nullptr, m_Edit->GetToolTipCtrl());
    EXPECT_EQ(0, m_Edit->GetPosition()) << "the number starts at 0 whatever the text";
    EXPECT_EQ(m_Edit.get(), m_Spin->GetBuddyWindow());
}

TEST_F(CommonEdit, TheSystemEditKeepsItsTextSelectionAndUndo)
{
    HWND edit = m_Edit->m_hWnd;
    ::SetWindowTextW(edit, L"1234");
    EXPECT_EQ(L"1234", mirltest::TextOf(edit));
    ::SendMessageW(edit, EM_SETSEL, 1, 3);
    DWORD start = 0;
    DWORD end = 0;
    ::SendMessageW(edit, EM_GETSEL, reinterpret_cast<WPARAM>(&start), reinterpret_cast<LPARAM>(&end));
    EXPECT_EQ(1u, start);
    EXPECT_EQ(3u, end);
    ::SendMessageW(edit, EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(L"9"));
    EXPECT_EQ(L"194", mirltest::TextOf(edit));
    EXPECT_NE(0, ::SendMessageW(edit, EM_CANUNDO, 0, 0));
    ::SendMessageW(edit, EM_UNDO, 0, 0);
    EXPECT_EQ(L"1234", mirltest::TextOf(edit));
}

TEST_F(CommonEdit, TheSystemUpDownSawItsCreate)
{
    HWND spin = m_Spin->m_hWnd;
    ::SendMessageW(spin, UDM_SETRANGE32, 0, 100);
    int low = -1;
    int high = -1;
    ::SendMessageW(spin, UDM_GETRANGE32, reinterpret_cast<WPARAM>(&low), reinterpret_cast<LPARAM>(&high));
    EXPECT_EQ(0, low);
    EXPECT_EQ(100, high);
    ::SendMessageW(spin, UDM_SETPOS32, 0, 40);
    EXPECT_EQ(40, ::SendMessageW(spin, UDM_GETPOS32, 0, 0));
}

TEST_F(CommonEdit, TypedDigitsBecomeTheNumber)
{
    HWND edit = m_Edit->m_hWnd;
    ::SetWindowTextW(edit, L"");
    mirltest::Type(edit, L"15");
    EXPECT_EQ(L"15", mirltest::TextOf(edit));
    EXPECT_EQ(15, m_Edit->GetPosition());
    mirltest::Type(edit, L"x");
    EXPECT_EQ(L"15x", mirltest::TextOf(edit));
    EXPECT_EQ(15, m_Edit->GetPosition()) << "a text that isn't all digits is not followed";
}

TEST_F(CommonEdit, ClearingTheTextByTheKeyboardKeepsTheNumber)
{
    HWND edit = m_Edit->m_hWnd;
    m_Spin->SetPosition(42);
    EXPECT_EQ(42, m_Edit->GetPosition());
    ::SendMessageW(edit, EM_SETSEL, 0, -1);
    ::SendMessageW(edit, WM_KEYDOWN, VK_DELETE, 1);
    ::SendMessageW(edit, WM_KEYUP, VK_DELETE, 0xC0000001);
    EXPECT_EQ(L"", mirltest::TextOf(edit));
    EXPECT_EQ(42, m_Edit->GetPosition());
    ::SetWindowTextW(edit, L"12");
    ::SendMessageW(edit, EM_SETSEL, 2, 2);
    mirltest::Type(edit, L"\b\b");
    EXPECT_EQ(L"", mirltest::TextOf(edit));
    EXPECT_EQ(1, m_Edit->GetPosition()) << "the last all-digit text was \"1\"";
}

TEST_F(CommonEdit, ArrowClicksStepTheBuddyThroughTheParent)
{
    ::SendMessageW(m_Spin->m_hWnd, UDM_SETRANGE32, 0, 1000);
    m_Spin->SetPosition(3);
    ClickArrow(true);
    EXPECT_EQ(4, m_Edit->GetPosition());
    EXPECT_EQ(L"4", mirltest::TextOf(m_Edit->m_hWnd));
    EXPECT_EQ(4, m_Spin->GetPosition());
    ClickArrow(false);
    ClickArrow(false);
    EXPECT_EQ(2, m_Edit->GetPosition());
    m_Spin->SetStep(5);
    ClickArrow(true);
    EXPECT_EQ(7, m_Edit->GetPosition());
    EXPECT_EQ(L"7", mirltest::TextOf(m_Edit->m_hWnd));
}

TEST_F(CommonEdit, ADownStepAtZeroStaysAtZero)
{
    ::SendMessageW(m_Spin->m_hWnd, UDM_SETRANGE32, 0, 1000);
    m_Spin->SetPosition(0);
    ClickArrow(false);
    EXPECT_EQ(0, m_Edit->GetPosition());
    EXPECT_EQ(L"0", mirltest::TextOf(m_Edit->m_hWnd));
    EXPECT_EQ(0, Delta(-1));
    EXPECT_EQ(0, m_Edit->GetPosition());
}

TEST_F(CommonEdit, StepFiveDownFromThreeGivesZeroNotMinusTwo)
{
    m_Spin->SetStep(5);
    m_Spin->SetPosition(3);
    Delta(-1);
    EXPECT_EQ(0, m_Edit->GetPosition());
    EXPECT_EQ(0, m_Spin->GetPosition());
    EXPECT_EQ(L"0", mirltest::TextOf(m_Edit->m_hWnd));
}

TEST_F(CommonEdit, TheStepWorksFromTheBuddysNumberNotTheUpDownsPosition)
{
    ::SendMessageW(m_Spin->m_hWnd, UDM_SETPOS32, 0, 90);
    m_Edit->SetPosition(10);
    Delta(2);
    EXPECT_EQ(12, m_Edit->GetPosition());
    EXPECT_EQ(L"12", mirltest::TextOf(m_Edit->m_hWnd));
}

TEST_F(CommonEdit, SetPositionMinusOneShowsMinusOne)
{
    m_Spin->SetPosition(-1);
    EXPECT_EQ(L"-1", mirltest::TextOf(m_Edit->m_hWnd));
    EXPECT_EQ(-1, m_Edit->GetPosition());
    EXPECT_EQ(-1, m_Spin->GetPosition());
}

TEST_F(CommonEdit, NotificationsWithOnlyAHeaderAreLeftAlone)
{
    m_Spin->SetPosition(8);
    // A bare header, as the up-down sends for NM_RELEASEDCAPTURE: nothing after it may be read.
    NMHDR *bare = new NMHDR();
    bare->hwndFrom = m_Spin->m_hWnd;
    bare->idFrom = static_cast<UINT_PTR>(::GetDlgCtrlID(m_Spin->m_hWnd));
    bare->code = static_cast<UINT>(NM_RELEASEDCAPTURE);
    EXPECT_EQ(0, m_Frame.SendMessageW(WM_NOTIFY, bare->idFrom, reinterpret_cast<LPARAM>(bare)));
    delete bare;
    EXPECT_EQ(8, m_Edit->GetPosition());
    EXPECT_EQ(L"8", mirltest::TextOf(m_Edit->m_hWnd));
    EXPECT_EQ(0, m_Spin->SendMessageW(OCM_NOTIFY, 0, 0));
    EXPECT_EQ(8, m_Edit->GetPosition());
}

TEST_F(CommonEdit, WithoutABuddyAStepOnlyKeepsTheValue)
{
    MirlWindowBase notAnEdit;
    m_Spin->SetBuddyWindow(&notAnEdit);
    EXPECT_EQ(nullptr, m_Spin->GetBuddyWindow());
    Delta(3);
    EXPECT_EQ(3, m_Spin->GetPosition());
    EXPECT_EQ(L"7", mirltest::TextOf(m_Edit->m_hWnd));
}

TEST_F(CommonEdit, APressPutsTheCaretAfterTheSecondCharacter)
{
    HWND edit = m_Edit->m_hWnd;
    ::SetWindowTextW(edit, L"12345");
    ::SendMessageW(edit, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(50, 5));
    ::SendMessageW(edit, WM_LBUTTONUP, 0, MAKELPARAM(50, 5));
    EXPECT_EQ(edit, ::GetFocus());
}

TEST_F(CommonEdit, TheFacePaintsTheThreePartsAndTheNumber)
{
    m_Spin->SetPosition(5);
    mirltest::RenderOptions options;
    options.route = mirltest::PaintRoute::PaintWithDc;
    const mirltest::Dib picture = mirltest::RenderWindow(m_Edit->m_hWnd, options);
    ASSERT_EQ(60, picture.width());
    EXPECT_EQ(0xC82828u, picture.Pixel(0, 0));   // left end
    EXPECT_EQ(0xC82828u, picture.Pixel(3, 21));  // left end, to the pixel before the middle
    EXPECT_EQ(0xE6E6E6u, picture.Pixel(4, 0));   // the middle starts one pixel inside the left end
    EXPECT_EQ(0xE6E6E6u, picture.Pixel(57, 0));  // and reaches four pixels under the right end
    EXPECT_EQ(0x2828C8u, picture.Pixel(58, 0));  // right end
    EXPECT_EQ(0x2828C8u, picture.Pixel(59, 21));
    int dark = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 20; x < 40; ++x) {
            dark += (picture.Pixel(x, y) & 0xFF) < 0x60 ? 1 : 0;
        }
    }
    EXPECT_GT(dark, 5) << "the number is drawn in black near the centre";
    EXPECT_TRUE(mirltest::MatchesGolden(picture, "common_edit_five"));
}

TEST_F(CommonEdit, AfterAResizeTheFaceKeepsTheSizeOfCreation)
{
    m_Edit->SetWindowPos(nullptr, 0, 0, 90, 30, SWP_NOMOVE | SWP_NOZORDER);
    const RECT created = m_Edit->GetCreationClientRect();
    EXPECT_EQ(60, created.right);
    EXPECT_EQ(22, created.bottom);
    mirltest::RenderOptions options;
    options.route = mirltest::PaintRoute::PaintWithDc;
    options.background = 0x00FF00FF;
    const mirltest::Dib picture = mirltest::RenderWindow(m_Edit->m_hWnd, options);
    ASSERT_EQ(90, picture.width());
    EXPECT_EQ(0x2828C8u, picture.Pixel(58, 0)) << "the right end stays where creation put it";
    EXPECT_NE(0x2828C8u, picture.Pixel(89, 0));
    EXPECT_NE(0xC82828u, picture.Pixel(0, 25)) << "the face is 22 pixels high";
}

} // namespace

namespace {

bool HeapsValid()
{
    HANDLE heaps[64];
    const DWORD count = ::GetProcessHeaps(64, heaps);
    for (DWORD i = 0; i < count && i < 64; ++i) {
        if (!::HeapValidate(heaps[i], 0, nullptr)) {
            return false;
        }
    }
    return true;
}

TEST_F(CommonEdit, ALongTextLeavesTheHeapsWhole)
{
    const std::wstring wide(2000, L'W');
    HWND plain = ::CreateWindowExW(0, L"EDIT", nullptr, WS_CHILD | WS_VISIBLE | WS_TABSTOP, 0, 40, 60, 22, m_Frame.m_hWnd,
                                   nullptr, nullptr, nullptr);
    ::SendMessageW(plain, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(wide.c_str()));
    EXPECT_TRUE(HeapsValid()) << "the system's own edit";
    ::DestroyWindow(plain);
    ::SendMessageW(m_Edit->m_hWnd, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(wide.c_str()));
    EXPECT_TRUE(HeapsValid()) << "the number field";
}

} // namespace
