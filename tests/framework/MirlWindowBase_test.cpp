#include "MirlWindowTestSupport.h"

using mirltest::TestFrame;

namespace {

::testing::Environment *const g_Mirl = ::testing::AddGlobalTestEnvironment(new mirltest::MirlEnvironment());

class WindowBaseTest : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_NE(nullptr, m_Frame.Create(nullptr, nullptr, static_cast<LPRECT>(nullptr), L"Defaults")); }
    void TearDown() override
    {
        if (m_Frame.IsWindow()) {
            m_Frame.DestroyWindow();
        }
    }
    MirlWindowBase *Child(const wchar_t *name) { return m_Frame.GetWindowItem(name); }

    TestFrame m_Frame;
};

} // namespace

TEST(WindowBaseDefaults, NewObjectHoldsTheDocumentedDefaults)
{
    MirlWindowBase window;
    EXPECT_EQ(nullptr, window.m_hWnd);
    EXPECT_EQ(nullptr, window.GetUiWindow());
    EXPECT_EQ(0u, window.GetCommandID());
    EXPECT_EQ(64, window.GetWidth());
    EXPECT_EQ(64, window.GetHeight());
    EXPECT_EQ(-1, window.GetMinWidth());
    EXPECT_EQ(6900, window.GetMaxWidth());
    EXPECT_EQ(-1, window.GetMinHeight());
    EXPECT_EQ(6900, window.GetMaxHeight());
    EXPECT_EQ(0xFF000000UL, window.GetBkColor());
    EXPECT_EQ(0xFFFFFFFFUL, window.GetTextColor());
    EXPECT_EQ(12, window.GetLogFont().lfHeight);
    EXPECT_STREQ(L"MS Sans Serif", window.GetLogFont().lfFaceName);
    EXPECT_EQ(0x50000000UL, window.GetStyle());
    EXPECT_FALSE(window.IsTransparent());
    EXPECT_EQ(0, window.Reload());
}

TEST_F(WindowBaseTest, ClassAndWidthOnlyGetDefaultsAndTheParentsColours)
{
    MirlWindowBase *plain = Child(L"Plain");
    ASSERT_NE(nullptr, plain);
    EXPECT_EQ(50, plain->GetWidth());
    EXPECT_EQ(64, plain->GetHeight());
    EXPECT_EQ(0x50000000UL, plain->GetStyle());
    EXPECT_EQ(0x50000000L, ::GetWindowLongW(plain->m_hWnd, GWL_STYLE));
    // Inherited from the frame: panel background, ink text, its font and transparency.
    EXPECT_EQ(0xFF204060UL, plain->GetBkColor());
    EXPECT_EQ(0x80FAF00AUL, plain->GetTextColor());
    EXPECT_STREQ(L"Tahoma", plain->GetLogFont().lfFaceName);
    EXPECT_EQ(20, plain->GetLogFont().lfHeight);
    EXPECT_EQ(3, plain->GetLogFont().lfWidth);
    EXPECT_EQ(700, plain->GetLogFont().lfWeight);
    EXPECT_EQ(1, plain->GetLogFont().lfItalic);
    EXPECT_EQ(1, plain->GetLogFont().lfUnderline);
    EXPECT_TRUE(plain->IsTransparent());
    EXPECT_EQ(&m_Frame, plain->GetPackageParent());
}

TEST_F(WindowBaseTest, OwnAttributesOverrideInheritedOnes)
{
    MirlWindowBase *own = Child(L"Own");
    ASSERT_NE(nullptr, own);
    EXPECT_EQ(0xFFC80000UL, own->GetBkColor());
    EXPECT_EQ(0x80FAF00AUL, own->GetTextColor());
    EXPECT_FALSE(own->IsTransparent());
    EXPECT_EQ(5, own->GetMinWidth());
    EXPECT_EQ(77, own->GetMaxHeight());
    EXPECT_EQ(-1, own->GetMinHeight());
    EXPECT_EQ(6900, own->GetMaxWidth());
}

TEST_F(WindowBaseTest, OverlongFamilyNameIsCutToTheFaceNameField)
{
    MirlWindowBase *own = Child(L"Own");
    ASSERT_NE(nullptr, own);
    EXPECT_EQ(static_cast<size_t>(LF_FACESIZE - 1), wcslen(own->GetLogFont().lfFaceName));
    EXPECT_EQ(0, wcsncmp(L"A family name that is far longer", own->GetLogFont().lfFaceName, LF_FACESIZE - 1));
}

TEST_F(WindowBaseTest, TextToolTipAndPicResolveElements)
{
    MirlWindowBase *named = Child(L"Named");
    ASSERT_NE(nullptr, named);
    EXPECT_STREQ(L"Hello", named->GetText());
    EXPECT_STREQ(L"A tip", named->GetToolTip());
    ASSERT_NE(nullptr, named->GetPic());
    EXPECT_STREQ(L"ImgOk", named->GetPic()->GetName());
    wchar_t title[32] = {};
    ::GetWindowTextW(named->m_hWnd, title, 32);
    EXPECT_STREQ(L"Hello", title);
}

TEST_F(WindowBaseTest, TextNamingNoElementStaysEmptyAndPicBecomesNull)
{
    MirlWindowBase *unnamed = Child(L"Unnamed");
    ASSERT_NE(nullptr, unnamed);
    EXPECT_STREQ(L"", unnamed->GetText());
    EXPECT_EQ(nullptr, unnamed->GetPic());
    // An unknown colour leaves the inherited one.
    EXPECT_EQ(0xFF204060UL, unnamed->GetBkColor());
}

TEST_F(WindowBaseTest, IntegersStylesAndPositionWordsAreRead)
{
    MirlWindowBase *numbers = m_Frame.GetWindowItem(1001UL);
    ASSERT_NE(nullptr, numbers);
    EXPECT_STREQ(L"CustomControl", numbers->GetClass());
    EXPECT_EQ(0x000A0005, numbers->GetX());
    EXPECT_EQ(-3, numbers->GetY());
    EXPECT_EQ(7, numbers->GetMenu());
    EXPECT_EQ(static_cast<unsigned long>(WS_CHILD), numbers->GetStyle());
    EXPECT_EQ(static_cast<unsigned long>(WS_EX_CLIENTEDGE), numbers->GetExStyle());
    EXPECT_EQ(0xCUL, numbers->GetAlign());
    EXPECT_EQ(1001, ::GetDlgCtrlID(numbers->m_hWnd));
}

TEST_F(WindowBaseTest, GetWindowItemDoesNotDescendIntoGrandchildren)
{
    EXPECT_NE(nullptr, m_Frame.GetWindowItem(L"grand"));
    EXPECT_EQ(nullptr, m_Frame.GetWindowItem(L"GrandChild"));
    EXPECT_EQ(nullptr, m_Frame.GetWindowItem(55UL));
    EXPECT_NE(nullptr, m_Frame.GetWindowItem(L"Grand")->GetWindowItem(55UL));
}

TEST_F(WindowBaseTest, MemoryPictureIsPaintedOnceUntilAskedAgain)
{
    m_Frame.m_Paints = 0;
    MirlWindowBase::MirlTransparentDC *first = m_Frame.GetMemoryDC(false);
    ASSERT_NE(nullptr, first);
    EXPECT_EQ(1, m_Frame.m_Paints);
    EXPECT_EQ(first, m_Frame.GetMemoryDC(false));
    EXPECT_EQ(1, m_Frame.m_Paints);
    EXPECT_EQ(first, m_Frame.GetMemoryDC(true));
    EXPECT_EQ(2, m_Frame.m_Paints);
}

TEST_F(WindowBaseTest, MemoryPictureHasTheWindowsSize)
{
    MirlWindowBase::MirlTransparentDC *picture = m_Frame.GetMemoryDC(false);
    ASSERT_NE(nullptr, picture);
    BITMAP bitmap = {};
    ASSERT_NE(0, ::GetObjectW(picture->m_hBitmap, sizeof(bitmap), &bitmap));
    EXPECT_EQ(320, bitmap.bmWidth);
    EXPECT_EQ(240, bitmap.bmHeight);
}

TEST_F(WindowBaseTest, CreateMemoryDCWithAZeroSideChangesNothing)
{
    MirlWindowBase::MirlTransparentDC *picture = m_Frame.GetMemoryDC(false);
    m_Frame.m_Paints = 0;
    m_Frame.CreateMemoryDC(0, 10);
    m_Frame.CreateMemoryDC(10, 0);
    m_Frame.CreateMemoryDC(-1, 10);
    EXPECT_EQ(picture, m_Frame.m_MemoryDC);
    EXPECT_EQ(0, m_Frame.m_Paints);
    m_Frame.CreateMemoryDC(30, 20);
    EXPECT_EQ(1, m_Frame.m_Paints);
    BITMAP bitmap = {};
    ::GetObjectW(m_Frame.m_MemoryDC->m_hBitmap, sizeof(bitmap), &bitmap);
    EXPECT_EQ(30, bitmap.bmWidth);
    EXPECT_EQ(20, bitmap.bmHeight);
}

TEST_F(WindowBaseTest, DeleteAllMemoryDropsTheWholeSubtree)
{
    MirlWindowBase *grand = Child(L"Grand");
    MirlWindowBase *grandChild = grand->GetWindowItem(55UL);
    m_Frame.GetMemoryDC(false);
    grand->GetMemoryDC(false);
    grandChild->GetMemoryDC(false);
    m_Frame.DeleteAllMemory();
    EXPECT_FALSE(m_Frame.HasMemoryDC());
    EXPECT_FALSE(grand->HasMemoryDC());
    EXPECT_FALSE(grandChild->HasMemoryDC());
}

TEST_F(WindowBaseTest, ResetParentPointsChildrenAtTheGivenWindowAndGrandchildrenAtTheirGrandparent)
{
    MirlWindowBase other;
    MirlWindowBase *grand = Child(L"Grand");
    MirlWindowBase *grandChild = grand->GetWindowItem(55UL);
    m_Frame.ResetParent(&other);
    EXPECT_EQ(&other, grand->GetReplacementParent());
    // One level down, each window points at its grandparent-side window: the frame.
    EXPECT_EQ(&m_Frame, grandChild->GetReplacementParent());
    m_Frame.ResetParent(nullptr);
    EXPECT_EQ(nullptr, grand->GetReplacementParent());
}

TEST_F(WindowBaseTest, CopyMadeByFromHandleIsDestroyedWithoutTheChildren)
{
    unsigned int children = m_Frame.GetChildCount();
    ASSERT_GT(children, 0u);
    MirlWindowBase *first = m_Frame.GetChildByIndex(0);
    {
        TestFrame copy;
        copy.FromHandle(&m_Frame);
        EXPECT_EQ(1, copy.m_IsCopy);
        EXPECT_EQ(m_Frame.m_hWnd, copy.m_hWnd);
        EXPECT_EQ(children, copy.GetChildCount());
        EXPECT_EQ(nullptr, copy.m_MemoryDC);
        EXPECT_EQ(&copy, first->GetReplacementParent());
        // The copy never owned the window: it must not take it down with it.
        copy.m_hWnd = nullptr;
    }
    m_Frame.ResetParent(nullptr);
    // The children are still alive and answer.
    EXPECT_EQ(50, first->GetWidth());
    EXPECT_TRUE(::IsWindow(first->m_hWnd));
}

TEST_F(WindowBaseTest, ReloadPicksUpALanguageChange)
{
    MirlWindowBase *named = Child(L"Named");
    MirlUI::Instance()->SetCurrentLanguage(2052);
    EXPECT_EQ(1, named->Reload());
    // No 2052 text exists: the fallback gives the English one again.
    EXPECT_STREQ(L"Hello", named->GetText());
    MirlUI::Instance()->SetCurrentLanguage(1033);
}

TEST(WindowBaseTemplates, UnknownTemplateLoadsNothingAndKeepsDefaults)
{
    MirlWindowBase window;
    EXPECT_EQ(0, window.LoadAttributesFromUi(nullptr, L"NoSuchTemplate"));
    EXPECT_EQ(0, window.LoadAttributesFromUi(nullptr, 0xBADUL));
    EXPECT_EQ(64, window.GetWidth());
}

TEST(WindowBaseTemplates, LoadByNameFindsTopLevelTemplateWithoutParent)
{
    MirlWindowBase window;
    EXPECT_EQ(1, window.LoadAttributesFromUi(nullptr, L"Layout"));
    EXPECT_EQ(300, window.GetWidth());
    EXPECT_EQ(200, window.GetHeight());
}

namespace {

// A frame whose children come from a template the test builds, not from the skin.
class TemplateFrame : public MirlWindowImpl<TemplateFrame> {
public:
    void CreateChildrenOf(MirlUiWindow *ui)
    {
        m_UiWindow = ui;
        CreateChildWindows();
    }
};

} // namespace

TEST(WindowBaseChildren, ChildrenOfOneNameAnyCaseAllTakeTheFirstTemplateOfThatName)
{
    std::wstring xml = L"<P Class='WINDOW' Width='400'>";
    for (int i = 0; i < 12; ++i) {
        xml += L"<C" + std::to_wstring(i) + L" Class='WINDOW' CommandID='" + std::to_wstring(10 + i) + L"'/>";
    }
    xml += L"<Dup Class='WINDOW' CommandID='100' Width='11'/>";
    xml += L"<dUP Class='STATIC' CommandID='200' Width='22'/>";
    xml += L"<DUP Class='BUTTON' CommandID='300' Width='33'/></P>";
    MirlUiWindow ui;
    ASSERT_TRUE(ui.Load(mirltest::ParseElement(xml.c_str())));
    ASSERT_EQ(15u, ui.GetChildCount());

    TemplateFrame frame;
    ASSERT_NE(nullptr, frame.Create(nullptr, nullptr, static_cast<LPRECT>(nullptr), L"Defaults"));
    // Added after the children of the frame's own template.
    const unsigned int before = frame.GetChildCount();
    frame.CreateChildrenOf(&ui);
    ASSERT_EQ(before + 15u, frame.GetChildCount());
    for (unsigned int i = 0; i < 12; ++i) {
        MirlWindowBase *child = frame.GetChildByIndex(before + i);
        EXPECT_EQ(ui.GetChildByIndex(static_cast<int>(i)), child->GetUiWindow()) << i;
        EXPECT_EQ(10u + i, child->GetCommandID()) << i;
    }
    // The window's kind comes from the template each child was made from, its attributes from
    // the first of its name.
    MirlUiWindow *first = ui.GetChildByIndex(12);
    for (unsigned int i = 12; i < 15; ++i) {
        MirlWindowBase *child = frame.GetChildByIndex(before + i);
        EXPECT_EQ(first, child->GetUiWindow()) << i;
        EXPECT_EQ(100u, child->GetCommandID()) << i;
        EXPECT_EQ(11, child->GetWidth()) << i;
        EXPECT_STREQ(L"WINDOW", child->GetClass()) << i;
    }
    frame.DestroyWindow();
}
