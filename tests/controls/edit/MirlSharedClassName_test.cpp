// The button, the number field and the spin share one registered class name, each with a
// different system class behind it; the first to register fixes the class for all. Built twice:
// with MIRL_SPIN_FIRST the spin registers the name, else the button does. Either way each window
// must behave as its own system class.
#include "MirlCommonEditTestSupport.h"

#include <gtest/gtest.h>

namespace {

::testing::Environment *const g_Mirl =
    ::testing::AddGlobalTestEnvironment(new mirltest::SkinEnvironment(L"dialogs"));

std::wstring ClassNameOf(HWND window)
{
    wchar_t name[64] = {};
    ::GetClassNameW(window, name, 64);
    return name;
}

TEST(SharedClassName, EachWindowBehavesAsItsOwnSystemClass)
{
    mirltest::ButtonFrame frame;
    ASSERT_TRUE(frame.Open(L"Frame"));
#ifdef MIRL_SPIN_FIRST
    std::unique_ptr<MirlSpinCtrl> spin = mirltest::MakeFromTemplate<MirlSpinCtrl>(&frame, L"Spin");
    std::unique_ptr<MirlButton> button = mirltest::MakeFromTemplate<MirlButton>(&frame, L"Push");
    std::unique_ptr<MirlCommonEdit> edit = mirltest::MakeFromTemplate<MirlCommonEdit>(&frame, L"Number");
#else
    std::unique_ptr<MirlButton> button = mirltest::MakeFromTemplate<MirlButton>(&frame, L"Push");
    std::unique_ptr<MirlCommonEdit> edit = mirltest::MakeFromTemplate<MirlCommonEdit>(&frame, L"Number");
    std::unique_ptr<MirlSpinCtrl> spin = mirltest::MakeFromTemplate<MirlSpinCtrl>(&frame, L"Spin");
#endif
    ASSERT_NE(nullptr, button);
    ASSERT_NE(nullptr, edit);
    ASSERT_NE(nullptr, spin);
    ASSERT_NE(nullptr, button->m_hWnd);
    ASSERT_NE(nullptr, edit->m_hWnd);
    ASSERT_NE(nullptr, spin->m_hWnd);
    // One registered name for all three.
    EXPECT_EQ(L"MirlWindowImpl", ClassNameOf(button->m_hWnd));
    EXPECT_EQ(L"MirlWindowImpl", ClassNameOf(edit->m_hWnd));
    EXPECT_EQ(L"MirlWindowImpl", ClassNameOf(spin->m_hWnd));

    // The edit: text, selection and undo of the system edit.
    HWND field = edit->m_hWnd;
    ::SetWindowTextW(field, L"250");
    ::SendMessageW(field, EM_SETSEL, 0, 1);
    DWORD start = 9;
    DWORD end = 9;
    ::SendMessageW(field, EM_GETSEL, reinterpret_cast<WPARAM>(&start), reinterpret_cast<LPARAM>(&end));
    EXPECT_EQ(0u, start);
    EXPECT_EQ(1u, end);
    ::SendMessageW(field, EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(L"3"));
    EXPECT_EQ(L"350", mirltest::TextOf(field));
    EXPECT_EQ(350, edit->GetPosition());
    ::SendMessageW(field, EM_UNDO, 0, 0);
    EXPECT_EQ(L"250", mirltest::TextOf(field));

    // The spin: the up-down's own messages and its arrows.
    spin->SetBuddyWindow(edit.get());
    ::SendMessageW(spin->m_hWnd, UDM_SETRANGE32, 0, 500);
    int low = -1;
    int high = -1;
    ::SendMessageW(spin->m_hWnd, UDM_GETRANGE32, reinterpret_cast<WPARAM>(&low), reinterpret_cast<LPARAM>(&high));
    EXPECT_EQ(0, low);
    EXPECT_EQ(500, high);
    spin->SetPosition(20);
    RECT arrows = {};
    spin->GetClientRect(&arrows);
    const LPARAM up = MAKELPARAM(arrows.right / 2, 2);
    spin->SendMessageW(WM_LBUTTONDOWN, MK_LBUTTON, up);
    spin->SendMessageW(WM_LBUTTONUP, 0, up);
    EXPECT_EQ(21, edit->GetPosition());
    EXPECT_EQ(L"21", mirltest::TextOf(field));

    // The button: the system button's state and its click.
    ::SendMessageW(button->m_hWnd, BM_SETSTATE, TRUE, 0);
    EXPECT_NE(0, ::SendMessageW(button->m_hWnd, BM_GETSTATE, 0, 0) & BST_PUSHED);
    ::SendMessageW(button->m_hWnd, BM_SETSTATE, FALSE, 0);
    frame.m_Commands.clear();
    mirltest::ParkCursor();
    button->SendMessageW(WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5));
    button->SendMessageW(WM_LBUTTONUP, 0, MAKELPARAM(5, 5));
    bool clicked = false;
    for (const auto &command : frame.m_Commands) {
        clicked = clicked || command.first == MAKEWPARAM(403, BN_CLICKED);
    }
    EXPECT_TRUE(clicked);

    spin->DestroyWindow();
    edit->DestroyWindow();
    button->DestroyWindow();
    frame.DestroyWindow();
}

} // namespace
