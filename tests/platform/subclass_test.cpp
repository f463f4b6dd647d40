// Per-window dispatch: creation hand-over, subclassing in layers, superclasses of system
// classes, class registration, destruction and OnFinalMessage.
#include "AtlTestSupport.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace {

typedef ATL::CWinTraits<WS_POPUP, 0> PopupTraits;
typedef ATL::CWinTraits<WS_CHILD | WS_VISIBLE, 0> ChildTraits;

std::wstring TextOf(HWND hWnd)
{
    wchar_t buffer[128] = {};
    GetWindowTextW(hWnd, buffer, 128);
    return buffer;
}

std::wstring ClassOf(HWND hWnd)
{
    wchar_t buffer[128] = {};
    GetClassNameW(hWnd, buffer, 128);
    return buffer;
}

WNDPROC ProcOf(HWND hWnd)
{
    return reinterpret_cast<WNDPROC>(GetWindowLongPtrW(hWnd, GWLP_WNDPROC));
}

WNDPROC SystemProcOf(const wchar_t *className)
{
    WNDCLASSEXW wc = {};
    wc.cbSize = sizeof(wc);
    GetClassInfoExW(nullptr, className, &wc);
    return wc.lpfnWndProc;
}

// A plain STATIC made without any object.
HWND MakeStatic(const wchar_t *text)
{
    return CreateWindowExW(0, L"STATIC", text, WS_POPUP, 0, 0, 50, 20, nullptr, nullptr, nullptr, nullptr);
}

// An object that answers WM_APP + answerMsg with its tag, counts what passes through it and
// lets everything else go on.
class Layer : public ATL::CWindowImpl<Layer, ATL::CWindow, PopupTraits> {
public:
    Layer(int tag, UINT answerMsg) : m_tag(tag), m_answerMsg(answerMsg) {}
    int m_tag;
    UINT m_answerMsg;
    int m_passed = 0;
    int m_finals = 0;
    HWND m_finalHwnd = nullptr;
    HWND m_hWndAtFinal = reinterpret_cast<HWND>(static_cast<UINT_PTR>(1));
    std::wstring m_textSeen;

    BEGIN_MSG_MAP(Layer)
        MESSAGE_HANDLER(WM_APP + 50, OnCount)
        MESSAGE_HANDLER(WM_SETTEXT, OnSetText)
        MESSAGE_RANGE_HANDLER(WM_APP, WM_APP + 49, OnAnswer)
    END_MSG_MAP()

    LRESULT OnCount(UINT, WPARAM, LPARAM, BOOL &bHandled)
    {
        ++m_passed;
        bHandled = FALSE;
        return 0;
    }
    // The original procedure first, then this object looks at the result.
    LRESULT OnSetText(UINT, WPARAM, LPARAM, BOOL &)
    {
        const LRESULT lRes = DefWindowProc();
        m_textSeen = TextOf(m_hWnd);
        return lRes;
    }
    LRESULT OnAnswer(UINT uMsg, WPARAM, LPARAM, BOOL &bHandled)
    {
        if (uMsg != WM_APP + m_answerMsg) {
            bHandled = FALSE;
            return 0;
        }
        return m_tag;
    }
    void OnFinalMessage(HWND hWnd) override
    {
        ++m_finals;
        m_finalHwnd = hWnd;
        m_hWndAtFinal = m_hWnd;
    }
};

TEST(SubclassTest, SubclassedWindowAnswersThroughTheObjectAndKeepsItsOwnBehaviour)
{
    HWND hWnd = MakeStatic(L"abcd");
    const WNDPROC original = ProcOf(hWnd);
    Layer layer(5, 1);
    ASSERT_TRUE(layer.SubclassWindow(hWnd));
    EXPECT_EQ(hWnd, layer.m_hWnd);
    EXPECT_EQ(original, layer.m_pfnSuperWindowProc);
    EXPECT_EQ(layer.m_thunk.GetWNDPROC(), ProcOf(hWnd));

    EXPECT_EQ(5, SendMessageW(hWnd, WM_APP + 1, 0, 0));
    EXPECT_EQ(4, SendMessageW(hWnd, WM_GETTEXTLENGTH, 0, 0)); // STATIC's own answer

    SetWindowTextW(hWnd, L"xyz");
    EXPECT_EQ(L"xyz", layer.m_textSeen); // DefWindowProc() ran the original first
    EXPECT_EQ(L"xyz", TextOf(hWnd));
    DestroyWindow(hWnd);
}

TEST(SubclassTest, UnsubclassGivesTheOriginalProcedureBack)
{
    HWND hWnd = MakeStatic(L"abcd");
    const WNDPROC original = ProcOf(hWnd);
    Layer layer(5, 1);
    ASSERT_TRUE(layer.SubclassWindow(hWnd));
    EXPECT_EQ(hWnd, layer.UnsubclassWindow());
    EXPECT_EQ(nullptr, layer.m_hWnd);
    EXPECT_EQ(original, ProcOf(hWnd));
    EXPECT_EQ(0, SendMessageW(hWnd, WM_APP + 1, 0, 0));
    DestroyWindow(hWnd);
}

TEST(SubclassTest, SubclassOfAMissingWindowFails)
{
    HWND hWnd = MakeStatic(L"gone");
    DestroyWindow(hWnd);
    Layer layer(5, 1);
    EXPECT_FALSE(layer.SubclassWindow(hWnd));
    EXPECT_EQ(nullptr, layer.m_hWnd);
}

TEST(SubclassTest, TwoLayersEachAnswerWithTheirOwnObject)
{
    HWND hWnd = MakeStatic(L"abcd");
    Layer lower(1, 1);
    Layer upper(2, 2);
    ASSERT_TRUE(lower.SubclassWindow(hWnd));
    ASSERT_TRUE(upper.SubclassWindow(hWnd));
    EXPECT_EQ(lower.m_thunk.GetWNDPROC(), upper.m_pfnSuperWindowProc);

    EXPECT_EQ(1, SendMessageW(hWnd, WM_APP + 1, 0, 0)); // passes the upper one
    EXPECT_EQ(2, SendMessageW(hWnd, WM_APP + 2, 0, 0));
    SendMessageW(hWnd, WM_APP + 50, 0, 0);
    EXPECT_EQ(1, lower.m_passed);
    EXPECT_EQ(1, upper.m_passed);

    // The lower one can't leave without cutting the upper one out.
    EXPECT_EQ(nullptr, lower.UnsubclassWindow());
    EXPECT_EQ(hWnd, upper.UnsubclassWindow());
    EXPECT_EQ(hWnd, lower.UnsubclassWindow());
    EXPECT_EQ(0, SendMessageW(hWnd, WM_APP + 1, 0, 0));
    DestroyWindow(hWnd);
}

TEST(SubclassTest, ForcedUnsubclassRestoresEvenUnderAnotherLayer)
{
    HWND hWnd = MakeStatic(L"abcd");
    const WNDPROC original = ProcOf(hWnd);
    Layer lower(1, 1);
    ASSERT_TRUE(lower.SubclassWindow(hWnd));
    Layer upper(2, 2);
    ASSERT_TRUE(upper.SubclassWindow(hWnd));
    EXPECT_EQ(hWnd, upper.UnsubclassWindow());
    EXPECT_EQ(hWnd, lower.UnsubclassWindow(TRUE));
    EXPECT_EQ(original, ProcOf(hWnd));
    DestroyWindow(hWnd);
}

TEST(SubclassTest, DestroyedWindowEndsWithOneFinalMessageAndNoHandle)
{
    HWND hWnd = MakeStatic(L"abcd");
    Layer layer(5, 1);
    ASSERT_TRUE(layer.SubclassWindow(hWnd));
    DestroyWindow(hWnd);
    EXPECT_EQ(1, layer.m_finals);
    EXPECT_EQ(hWnd, layer.m_finalHwnd);
    EXPECT_EQ(nullptr, layer.m_hWndAtFinal);
    EXPECT_EQ(nullptr, layer.m_hWnd);
}

TEST(SubclassTest, BothLayersGetTheirFinalMessage)
{
    HWND hWnd = MakeStatic(L"abcd");
    Layer lower(1, 1);
    Layer upper(2, 2);
    ASSERT_TRUE(lower.SubclassWindow(hWnd));
    ASSERT_TRUE(upper.SubclassWindow(hWnd));
    DestroyWindow(hWnd);
    EXPECT_EQ(1, lower.m_finals);
    EXPECT_EQ(1, upper.m_finals);
    EXPECT_EQ(nullptr, lower.m_hWnd);
    EXPECT_EQ(nullptr, upper.m_hWnd);
}

TEST(SubclassTest, ObjectGoingFirstGivesTheWindowItsProcedureBack)
{
    HWND hWnd = MakeStatic(L"abcd");
    const WNDPROC original = ProcOf(hWnd);
    {
        Layer layer(5, 1);
        ASSERT_TRUE(layer.SubclassWindow(hWnd));
    }
    EXPECT_EQ(original, ProcOf(hWnd));
    EXPECT_EQ(4, SendMessageW(hWnd, WM_GETTEXTLENGTH, 0, 0));
    DestroyWindow(hWnd);
}

TEST(SubclassTest, LowerObjectGoingFirstLeavesTheChainWorking)
{
    HWND hWnd = MakeStatic(L"abcd");
    Layer upper(2, 2);
    {
        Layer lower(1, 1);
        ASSERT_TRUE(lower.SubclassWindow(hWnd));
        ASSERT_TRUE(upper.SubclassWindow(hWnd));
    }
    // The upper object still forwards through what was the lower one's thunk.
    EXPECT_EQ(4, SendMessageW(hWnd, WM_GETTEXTLENGTH, 0, 0));
    EXPECT_EQ(0, SendMessageW(hWnd, WM_APP + 1, 0, 0)); // nobody answers for the lower one now
    EXPECT_EQ(2, SendMessageW(hWnd, WM_APP + 2, 0, 0));
    DestroyWindow(hWnd);
    EXPECT_EQ(1, upper.m_finals);
}

TEST(SubclassTest, CopyOfABoundObjectSharesTheHandleButNotTheBinding)
{
    HWND hWnd = MakeStatic(L"abcd");
    Layer layer(5, 1);
    ASSERT_TRUE(layer.SubclassWindow(hWnd));
    {
        Layer copy(layer);
        EXPECT_EQ(hWnd, copy.m_hWnd);
        EXPECT_EQ(5, copy.m_tag);
        EXPECT_EQ(nullptr, copy.m_thunk.GetWNDPROC());
        Layer assigned(9, 9);
        assigned = layer;
        EXPECT_EQ(hWnd, assigned.m_hWnd);
        EXPECT_EQ(5, assigned.m_tag);
        EXPECT_EQ(nullptr, assigned.m_thunk.GetWNDPROC());
    }
    // The copies are gone; the window still goes through the original object.
    EXPECT_EQ(layer.m_thunk.GetWNDPROC(), ProcOf(hWnd));
    EXPECT_EQ(5, SendMessageW(hWnd, WM_APP + 1, 0, 0));
    DestroyWindow(hWnd);
    EXPECT_EQ(1, layer.m_finals);
}

// Creation through a registered class.

class Created : public ATL::CWindowImpl<Created, ATL::CWindow, PopupTraits> {
public:
    DECLARE_WND_CLASS(L"AtlTestCreated")

    std::vector<UINT> m_messages;
    HWND m_hWndAtNcCreate = nullptr;
    HWND m_msgHwndAtNcCreate = nullptr;
    bool m_failCreate = false;
    int m_finals = 0;

    BEGIN_MSG_MAP(Created)
        MESSAGE_HANDLER(WM_NCCREATE, OnNcCreate)
        MESSAGE_HANDLER(WM_CREATE, OnCreate)
        MESSAGE_HANDLER(WM_APP + 1, OnPing)
        MESSAGE_HANDLER(WM_APP + 5, OnSelfDestroy)
    END_MSG_MAP()

    LRESULT OnNcCreate(UINT, WPARAM, LPARAM, BOOL &bHandled)
    {
        m_hWndAtNcCreate = m_hWnd;
        m_msgHwndAtNcCreate = GetCurrentMessage()->hwnd;
        bHandled = FALSE;
        return 0;
    }
    LRESULT OnCreate(UINT, WPARAM, LPARAM, BOOL &) { return m_failCreate ? -1 : 0; }
    LRESULT OnPing(UINT, WPARAM, LPARAM, BOOL &) { return reinterpret_cast<LRESULT>(this); }
    // Destroys its own window inside a message: the final message waits for the end of it.
    LRESULT OnSelfDestroy(UINT, WPARAM, LPARAM, BOOL &)
    {
        DestroyWindow();
        return (m_hWnd != nullptr && m_finals == 0) ? 1 : 0;
    }
    void OnFinalMessage(HWND) override { ++m_finals; }
};

TEST(CreateTest, ObjectHasItsHandleFromTheFirstMessages)
{
    Created w;
    HWND hWnd = w.Create(nullptr);
    ASSERT_NE(nullptr, hWnd);
    EXPECT_EQ(hWnd, w.m_hWnd);
    EXPECT_EQ(hWnd, w.m_hWndAtNcCreate);
    EXPECT_EQ(hWnd, w.m_msgHwndAtNcCreate);
    EXPECT_EQ(reinterpret_cast<LRESULT>(&w), SendMessageW(hWnd, WM_APP + 1, 0, 0));
    EXPECT_EQ(L"AtlTestCreated", ClassOf(hWnd));
    EXPECT_EQ(static_cast<DWORD>(WS_POPUP), static_cast<DWORD>(GetWindowLongW(hWnd, GWL_STYLE)) & WS_POPUP);
    w.DestroyWindow();
    EXPECT_EQ(nullptr, w.m_hWnd);
    EXPECT_EQ(1, w.m_finals);
}

TEST(CreateTest, ClassIsRegisteredOnceForAllObjectsOfTheClass)
{
    Created a;
    Created b;
    ASSERT_NE(nullptr, a.Create(nullptr));
    ASSERT_NE(nullptr, b.Create(nullptr));
    const ATOM atom = Created::GetWndClassInfo().m_atom;
    EXPECT_NE(0, atom);
    EXPECT_EQ(atom, static_cast<ATOM>(GetClassWord(a, GCW_ATOM)));
    EXPECT_EQ(atom, static_cast<ATOM>(GetClassWord(b, GCW_ATOM)));
    EXPECT_EQ(reinterpret_cast<LRESULT>(&a), SendMessageW(a, WM_APP + 1, 0, 0));
    EXPECT_EQ(reinterpret_cast<LRESULT>(&b), SendMessageW(b, WM_APP + 1, 0, 0));
    // The class comes with the arrow cursor, double clicks and the window colour.
    EXPECT_EQ(static_cast<ULONG_PTR>(CS_HREDRAW | CS_VREDRAW | CS_DBLCLKS), GetClassLongPtrW(a, GCL_STYLE));
    EXPECT_EQ(reinterpret_cast<ULONG_PTR>(LoadCursorW(nullptr, IDC_ARROW)), GetClassLongPtrW(a, GCLP_HCURSOR));
    EXPECT_EQ(static_cast<ULONG_PTR>(COLOR_WINDOW + 1), GetClassLongPtrW(a, GCLP_HBRBACKGROUND));
    a.DestroyWindow();
    b.DestroyWindow();
}

class Unnamed : public ATL::CWindowImpl<Unnamed, ATL::CWindow, PopupTraits> {
public:
    BEGIN_MSG_MAP(Unnamed)
    END_MSG_MAP()
};

TEST(CreateTest, ClassWithoutANameGetsOneMadeUp)
{
    Unnamed w;
    ASSERT_NE(nullptr, w.Create(nullptr));
    EXPECT_EQ(0u, ClassOf(w).rfind(L"MirlAtl:", 0));
    EXPECT_EQ(ClassOf(w), Unnamed::GetWndClassInfo().m_wc.lpszClassName);
    w.DestroyWindow();
}

TEST(CreateTest, FailedCreateLeavesTheNextCreateIntact)
{
    Created failed;
    HWND bogusParent = reinterpret_cast<HWND>(static_cast<UINT_PTR>(0x5A5A));
    WTL::CRect rc(0, 0, 10, 10);
    EXPECT_EQ(nullptr, failed.Create(bogusParent, rc, nullptr, WS_CHILD));
    EXPECT_EQ(nullptr, failed.m_hWnd);

    Created good;
    ASSERT_NE(nullptr, good.Create(nullptr));
    EXPECT_EQ(nullptr, failed.m_hWnd);
    EXPECT_EQ(reinterpret_cast<LRESULT>(&good), SendMessageW(good, WM_APP + 1, 0, 0));
    good.DestroyWindow();
}

TEST(CreateTest, CreateRefusedByWmCreateEndsTheObjectsWindow)
{
    Created w;
    w.m_failCreate = true;
    EXPECT_EQ(nullptr, w.Create(nullptr));
    EXPECT_EQ(nullptr, w.m_hWnd);
    EXPECT_EQ(1, w.m_finals);
}

TEST(CreateTest, FinalMessageWaitsForTheMessageThatDestroyedTheWindow)
{
    Created w;
    HWND hWnd = w.Create(nullptr);
    ASSERT_NE(nullptr, hWnd);
    EXPECT_EQ(1, SendMessageW(hWnd, WM_APP + 5, 0, 0));
    EXPECT_FALSE(IsWindow(hWnd));
    EXPECT_EQ(nullptr, w.m_hWnd);
    EXPECT_EQ(1, w.m_finals);
}

TEST(CreateTest, ObjectCanBeCreatedAgainAfterItsWindowWent)
{
    Created w;
    ASSERT_NE(nullptr, w.Create(nullptr));
    w.DestroyWindow();
    HWND second = w.Create(nullptr);
    ASSERT_NE(nullptr, second);
    EXPECT_EQ(reinterpret_cast<LRESULT>(&w), SendMessageW(second, WM_APP + 1, 0, 0));
    w.DestroyWindow();
    EXPECT_EQ(2, w.m_finals);
}

TEST(CreateTest, OverlappedWindowIsBoundBeforeItsFirstMessage)
{
    Created w;
    ASSERT_NE(nullptr, w.Create(nullptr, nullptr, L"framed", WS_OVERLAPPEDWINDOW));
    EXPECT_EQ(w.m_hWnd, w.m_hWndAtNcCreate);
    w.DestroyWindow();
}

// An object that deletes itself when its window is gone.
bool g_selfDeleted = false;

class SelfDeleting : public ATL::CWindowImpl<SelfDeleting, ATL::CWindow, PopupTraits> {
public:
    ~SelfDeleting() { g_selfDeleted = true; }
    BEGIN_MSG_MAP(SelfDeleting)
    END_MSG_MAP()
    void OnFinalMessage(HWND) override { delete this; }
};

TEST(CreateTest, FinalMessageMayDeleteTheObject)
{
    g_selfDeleted = false;
    auto *w = new SelfDeleting;
    HWND hWnd = w->Create(nullptr);
    ASSERT_NE(nullptr, hWnd);
    DestroyWindow(hWnd);
    EXPECT_TRUE(g_selfDeleted);
}

// A class with a procedure of its own in front of the ordinary one.
class OwnProc : public ATL::CWindowImpl<OwnProc, ATL::CWindow, PopupTraits> {
public:
    BEGIN_MSG_MAP(OwnProc)
        MESSAGE_HANDLER(WM_APP + 8, OnEight)
    END_MSG_MAP()
    LRESULT OnEight(UINT, WPARAM wParam, LPARAM, BOOL &) { return 800 + static_cast<LRESULT>(wParam); }

    WNDPROC GetWindowProc() override { return Translate; }
    static LRESULT CALLBACK Translate(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam)
    {
        if (uMsg == WM_APP + 7)
            uMsg = WM_APP + 8;
        return WindowProc(hWnd, uMsg, wParam, lParam);
    }
};

TEST(CreateTest, OwnWindowProcedureRunsBeforeTheMap)
{
    OwnProc w;
    ASSERT_NE(nullptr, w.Create(nullptr));
    EXPECT_EQ(803, w.SendMessage(WM_APP + 7, 3));
    EXPECT_EQ(804, w.SendMessage(WM_APP + 8, 4));
    w.DestroyWindow();
}

// A window that makes a child of another class inside its WM_CREATE.
class ChildOfNest : public ATL::CWindowImpl<ChildOfNest, ATL::CWindow, ChildTraits> {
public:
    BEGIN_MSG_MAP(ChildOfNest)
        MESSAGE_HANDLER(WM_APP + 1, OnPing)
    END_MSG_MAP()
    LRESULT OnPing(UINT, WPARAM, LPARAM, BOOL &) { return reinterpret_cast<LRESULT>(this); }
};

class Nest : public ATL::CWindowImpl<Nest, ATL::CWindow, PopupTraits> {
public:
    ChildOfNest m_child;
    BEGIN_MSG_MAP(Nest)
        MESSAGE_HANDLER(WM_CREATE, OnCreate)
        MESSAGE_HANDLER(WM_APP + 1, OnPing)
    END_MSG_MAP()
    LRESULT OnCreate(UINT, WPARAM, LPARAM, BOOL &)
    {
        WTL::CRect rc(0, 0, 10, 10);
        return m_child.Create(m_hWnd, rc) != nullptr ? 0 : -1;
    }
    LRESULT OnPing(UINT, WPARAM, LPARAM, BOOL &) { return reinterpret_cast<LRESULT>(this); }
};

TEST(CreateTest, WindowsCreatedInsideCreationAreBoundToTheirOwnObjects)
{
    Nest w;
    ASSERT_NE(nullptr, w.Create(nullptr));
    ASSERT_NE(nullptr, w.m_child.m_hWnd);
    EXPECT_EQ(w.m_hWnd, w.m_child.GetParent().m_hWnd);
    EXPECT_EQ(reinterpret_cast<LRESULT>(&w), w.SendMessage(WM_APP + 1));
    EXPECT_EQ(reinterpret_cast<LRESULT>(&w.m_child), w.m_child.SendMessage(WM_APP + 1));
    w.DestroyWindow();
    EXPECT_EQ(nullptr, w.m_child.m_hWnd);
}

// Superclasses of system classes.

class AutoButton : public ATL::CWindowImpl<AutoButton, WTL::CButton, ChildTraits> {
public:
    DECLARE_WND_CLASS(L"AtlTestAutoButton")
    int m_clicks = 0;
    BEGIN_MSG_MAP(AutoButton)
        MESSAGE_HANDLER(WM_LBUTTONUP, OnUp)
    END_MSG_MAP()
    LRESULT OnUp(UINT, WPARAM, LPARAM, BOOL &bHandled)
    {
        ++m_clicks;
        bHandled = FALSE;
        return 0;
    }
};

class SuperEdit : public ATL::CWindowImpl<SuperEdit, WTL::CEdit, ChildTraits> {
public:
    DECLARE_WND_SUPERCLASS(L"AtlTestSuperEdit", L"EDIT")
    BEGIN_MSG_MAP(SuperEdit)
    END_MSG_MAP()
};

class SuperclassTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        WTL::CRect rc(0, 0, 300, 200);
        ASSERT_NE(nullptr, parent.Create(L"STATIC", nullptr, rc, nullptr, WS_POPUP));
    }
    void TearDown() override { parent.DestroyWindow(); }
    ATL::CWindow parent;
};

TEST_F(SuperclassTest, WrapperBaseMakesASuperclassOfItsSystemClass)
{
    AutoButton b;
    WTL::CRect rc(0, 0, 80, 20);
    ASSERT_NE(nullptr, b.Create(parent, rc, L"check", WS_CHILD | WS_VISIBLE | BS_AUTOCHECKBOX));
    EXPECT_EQ(L"AtlTestAutoButton", ClassOf(b));
    EXPECT_EQ(SystemProcOf(L"BUTTON"), b.m_pfnSuperWindowProc);
    EXPECT_EQ(L"check", TextOf(b));
    EXPECT_EQ(BST_UNCHECKED, b.GetCheck());
    b.SetCheck(BST_CHECKED);
    EXPECT_EQ(BST_CHECKED, b.GetCheck());
    b.Click();
    EXPECT_EQ(BST_UNCHECKED, b.GetCheck());
    EXPECT_EQ(1, b.m_clicks);
    EXPECT_GE(GetClassLongPtrW(b, GCL_CBWNDEXTRA), 64u);
}

TEST_F(SuperclassTest, DeclaredSuperclassBehavesAsTheSystemEdit)
{
    SuperEdit e;
    WTL::CRect rc(0, 30, 200, 50);
    ASSERT_NE(nullptr, e.Create(parent, rc, L"hello world", WS_CHILD | WS_VISIBLE));
    EXPECT_EQ(L"AtlTestSuperEdit", ClassOf(e));
    EXPECT_EQ(SystemProcOf(L"EDIT"), e.m_pfnSuperWindowProc);
    e.SetSel(6, 11);
    int start = 0, end = 0;
    e.GetSel(start, end);
    EXPECT_EQ(6, start);
    EXPECT_EQ(11, end);
    e.ReplaceSel(L"there");
    EXPECT_EQ(L"hello there", TextOf(e));
}

// One class name shared by superclasses of two system classes, the smaller one registered first.
class SharedEdit : public ATL::CWindowImpl<SharedEdit, WTL::CEdit, ChildTraits> {
public:
    DECLARE_WND_CLASS(L"AtlTestShared")
    BEGIN_MSG_MAP(SharedEdit)
    END_MSG_MAP()
};

class SharedButton : public ATL::CWindowImpl<SharedButton, WTL::CButton, ChildTraits> {
public:
    DECLARE_WND_CLASS(L"AtlTestShared")
    BEGIN_MSG_MAP(SharedButton)
    END_MSG_MAP()
};

TEST_F(SuperclassTest, SharedClassNameServesEveryBaseWhateverComesFirst)
{
    SharedEdit e;
    WTL::CRect rcEdit(0, 0, 200, 20);
    ASSERT_NE(nullptr, e.Create(parent, rcEdit, L"text"));
    SharedButton b;
    WTL::CRect rcButton(0, 30, 100, 50);
    ASSERT_NE(nullptr, b.Create(parent, rcButton, L"box", WS_CHILD | WS_VISIBLE | BS_AUTOCHECKBOX));

    EXPECT_EQ(L"AtlTestShared", ClassOf(e));
    EXPECT_EQ(L"AtlTestShared", ClassOf(b));
    EXPECT_EQ(SharedEdit::GetWndClassInfo().m_atom, SharedButton::GetWndClassInfo().m_atom);
    EXPECT_EQ(SystemProcOf(L"EDIT"), e.m_pfnSuperWindowProc);
    EXPECT_EQ(SystemProcOf(L"BUTTON"), b.m_pfnSuperWindowProc);

    b.SetCheck(BST_CHECKED);
    EXPECT_EQ(BST_CHECKED, b.GetCheck());
    b.Click();
    EXPECT_EQ(BST_UNCHECKED, b.GetCheck());
    b.SetState(TRUE);
    EXPECT_EQ(static_cast<UINT>(BST_PUSHED), b.GetState() & BST_PUSHED);

    e.SetSel(1, 3);
    e.ReplaceSel(L"EX");
    EXPECT_EQ(L"tEXt", TextOf(e));
}

// The same with a plain class registered first under the name.
class PlainShared : public ATL::CWindowImpl<PlainShared, ATL::CWindow, ChildTraits> {
public:
    DECLARE_WND_CLASS(L"AtlTestSharedPlain")
    BEGIN_MSG_MAP(PlainShared)
    END_MSG_MAP()
};

class ButtonAfterPlain : public ATL::CWindowImpl<ButtonAfterPlain, WTL::CButton, ChildTraits> {
public:
    DECLARE_WND_CLASS(L"AtlTestSharedPlain")
    BEGIN_MSG_MAP(ButtonAfterPlain)
    END_MSG_MAP()
};

TEST_F(SuperclassTest, SuperclassMayShareTheNameOfAPlainClass)
{
    PlainShared plain;
    WTL::CRect rcPlain(0, 0, 50, 20);
    ASSERT_NE(nullptr, plain.Create(parent, rcPlain));
    EXPECT_EQ(reinterpret_cast<WNDPROC>(::DefWindowProcW), plain.m_pfnSuperWindowProc);
    ButtonAfterPlain b;
    WTL::CRect rcButton(0, 30, 100, 50);
    ASSERT_NE(nullptr, b.Create(parent, rcButton, L"box", WS_CHILD | WS_VISIBLE | BS_AUTOCHECKBOX));
    EXPECT_EQ(ClassOf(plain), ClassOf(b));
    EXPECT_EQ(SystemProcOf(L"BUTTON"), b.m_pfnSuperWindowProc);
    b.Click();
    EXPECT_EQ(BST_CHECKED, b.GetCheck());
    b.Click();
    EXPECT_EQ(BST_UNCHECKED, b.GetCheck());
    EXPECT_EQ(L"box", TextOf(b));
}

} // namespace
