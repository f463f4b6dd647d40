#include "MirlWindowTestSupport.h"

#include <algorithm>
#include <vector>

using mirltest::TestFrame;

namespace {

::testing::Environment *const g_Mirl = ::testing::AddGlobalTestEnvironment(new mirltest::MirlEnvironment());

// The windows a hook below records, while one is set.
std::vector<HWND> *g_Recorded = nullptr;

LRESULT CALLBACK RecordCreation(int code, WPARAM wParam, LPARAM lParam)
{
    if (code == HCBT_CREATEWND && g_Recorded != nullptr) {
        g_Recorded->push_back(reinterpret_cast<HWND>(wParam));
    }
    return ::CallNextHookEx(nullptr, code, wParam, lParam);
}


LRESULT CALLBACK RecordSetText(int code, WPARAM wParam, LPARAM lParam)
{
    const CWPSTRUCT *sent = reinterpret_cast<const CWPSTRUCT *>(lParam);
    if (code == HC_ACTION && sent->message == WM_SETTEXT && g_Recorded != nullptr) {
        g_Recorded->push_back(sent->hwnd);
    }
    return ::CallNextHookEx(nullptr, code, wParam, lParam);
}

std::wstring TextOf(HWND hWnd)
{
    wchar_t text[64] = {};
    ::GetWindowTextW(hWnd, text, 64);
    return text;
}

std::wstring ClassNameOf(HWND hWnd)
{
    wchar_t name[64] = {};
    ::GetClassNameW(hWnd, name, 64);
    return name;
}

// Creates frame from the template name with the hook recording into recorded.
void CreateWhileHooked(TestFrame &frame, const wchar_t *name, int hookType, HOOKPROC hook,
                       std::vector<HWND> &recorded)
{
    g_Recorded = &recorded;
    HHOOK handle = ::SetWindowsHookExW(hookType, hook, nullptr, ::GetCurrentThreadId());
    frame.Create(nullptr, nullptr, static_cast<LPRECT>(nullptr), name);
    ::UnhookWindowsHookEx(handle);
    g_Recorded = nullptr;
}

} // namespace

TEST(WindowFactory, TreeIsCreatedDepthFirstInDocumentOrder)
{
    std::vector<HWND> created;
    TestFrame frame;
    CreateWhileHooked(frame, L"Factory", WH_CBT, RecordCreation, created);

    ASSERT_TRUE(frame.IsWindow());
    // The system also makes an input-method window for a new top-level window; keep ours.
    created.erase(std::remove_if(created.begin(), created.end(),
                                 [](HWND hWnd) { return ClassNameOf(hWnd) != L"MirlWindow"; }),
                  created.end());
    MirlWindowBase *a1 = frame.GetWindowItem(1UL);
    MirlWindowBase *a5 = frame.GetWindowItem(5UL);
    MirlWindowBase *a6 = frame.GetWindowItem(6UL);
    ASSERT_NE(nullptr, a1);
    ASSERT_NE(nullptr, a5);
    ASSERT_NE(nullptr, a6);
    MirlWindowBase *a51 = a5->GetWindowItem(51UL);
    MirlWindowBase *a52 = a5->GetWindowItem(52UL);
    ASSERT_NE(nullptr, a51);
    ASSERT_NE(nullptr, a52);
    std::vector<HWND> expected = {frame.m_hWnd, a1->m_hWnd, a5->m_hWnd, a51->m_hWnd, a52->m_hWnd, a6->m_hWnd};
    EXPECT_EQ(expected, created);
    frame.DestroyWindow();
}

TEST(WindowFactory, UnknownClassListBoxAndMissingClassLeaveNoGap)
{
    TestFrame frame;
    frame.Create(nullptr, nullptr, static_cast<LPRECT>(nullptr), L"Factory");
    ASSERT_EQ(5u, frame.GetChildCount());
    EXPECT_EQ(1u, frame.GetChildByIndex(0)->GetCommandID());
    EXPECT_EQ(5u, frame.GetChildByIndex(1)->GetCommandID());
    EXPECT_EQ(6u, frame.GetChildByIndex(2)->GetCommandID());
    EXPECT_EQ(7u, frame.GetChildByIndex(3)->GetCommandID());
    EXPECT_EQ(nullptr, frame.GetWindowItem(2UL));
    EXPECT_EQ(nullptr, frame.GetWindowItem(L"A4"));
    frame.DestroyWindow();
}

TEST(WindowFactory, ClassWordIgnoresCaseAndCustomControlIsThePlainWindow)
{
    TestFrame frame;
    frame.Create(nullptr, nullptr, static_cast<LPRECT>(nullptr), L"Factory");
    for (unsigned long id : {1UL, 5UL, 6UL}) {
        MirlWindowBase *child = frame.GetWindowItem(id);
        ASSERT_NE(nullptr, child) << id;
        EXPECT_NE(nullptr, dynamic_cast<MirlWindow *>(child)) << id;
        EXPECT_EQ(L"MirlWindow", ClassNameOf(child->m_hWnd)) << id;
        EXPECT_EQ(frame.m_hWnd, ::GetParent(child->m_hWnd)) << id;
        EXPECT_EQ(static_cast<int>(id), ::GetDlgCtrlID(child->m_hWnd)) << id;
    }
    frame.DestroyWindow();
}

TEST(WindowFactory, ButtonInAnyLetterCaseMakesAMirlButton)
{
    TestFrame frame;
    frame.Create(nullptr, nullptr, static_cast<LPRECT>(nullptr), L"Factory");
    for (unsigned long id : {7UL, 8UL}) {
        MirlWindowBase *child = frame.GetWindowItem(id);
        ASSERT_NE(nullptr, child) << id;
        EXPECT_NE(nullptr, dynamic_cast<MirlButton *>(child)) << id;
        EXPECT_EQ(nullptr, dynamic_cast<MirlWindow *>(child)) << id;
        EXPECT_EQ(static_cast<int>(id), ::GetDlgCtrlID(child->m_hWnd)) << id;
        // An owner-drawn system button underneath.
        EXPECT_EQ(static_cast<LONG>(BS_OWNERDRAW), ::GetWindowLongW(child->m_hWnd, GWL_STYLE) & BS_TYPEMASK) << id;
    }
    frame.DestroyWindow();
}

TEST(WindowFactory, NullParentTemplateOrClassMakesNoWindow)
{
    MirlUiWindow *factory = static_cast<MirlUiWindow *>(MirlUI::Instance()->GetUiElement(L"Factory", UI_ELEMENT_WINDOW));
    ASSERT_NE(nullptr, factory);
    TestFrame frame;
    frame.Create(nullptr, nullptr, static_cast<LPRECT>(nullptr), L"Factory");
    EXPECT_EQ(nullptr, MirlWindowBase::CreateMirlWindow(nullptr, factory->GetChild(L"A1")));
    EXPECT_EQ(nullptr, MirlWindowBase::CreateMirlWindow(&frame, nullptr));
    EXPECT_EQ(nullptr, MirlWindowBase::CreateMirlWindow(&frame, factory->GetChild(L"A4")));
    EXPECT_EQ(nullptr, MirlWindowBase::CreateMirlWindow(&frame, factory->GetChild(L"A2")));
    frame.DestroyWindow();
}

TEST(WindowFactory, APlainWindowHoldsItsTextFromCreationAndIsNotToldItAgain)
{
    std::vector<HWND> told;
    TestFrame frame;
    CreateWhileHooked(frame, L"Defaults", WH_CALLWNDPROC, RecordSetText, told);

    ASSERT_TRUE(frame.IsWindow());
    MirlWindowBase *named = frame.GetWindowItem(L"Named");
    MirlWindowBase *plain = frame.GetWindowItem(L"Plain");
    ASSERT_NE(nullptr, named);
    ASSERT_NE(nullptr, plain);
    EXPECT_EQ(L"Hello", TextOf(named->m_hWnd));
    EXPECT_EQ(L"", TextOf(plain->m_hWnd));
    // An application's own class may keep the text it is told, so its frame is still told it.
    EXPECT_EQ(std::vector<HWND>{frame.m_hWnd}, told);
    frame.DestroyWindow();
}
