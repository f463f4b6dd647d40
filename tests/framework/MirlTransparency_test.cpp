#include "MirlWindowTestSupport.h"

using mirltest::Canvas;
using mirltest::PatternAt;
using mirltest::TestFrame;

namespace {

::testing::Environment *const g_Mirl = ::testing::AddGlobalTestEnvironment(new mirltest::MirlEnvironment());

class TransparencyTest : public ::testing::Test {
protected:
    void Open(const wchar_t *name)
    {
        m_Frame.m_Pattern = true;
        ASSERT_NE(nullptr, m_Frame.Create(nullptr, nullptr, static_cast<LPRECT>(nullptr), name));
    }
    void TearDown() override
    {
        if (m_Frame.IsWindow()) {
            m_Frame.DestroyWindow();
        }
    }
    TestFrame m_Frame;
};

} // namespace

TEST_F(TransparencyTest, TransparentChildShowsTheParentsPixelsBeneathIt)
{
    Open(L"Striped");
    MirlWindowBase *glass = m_Frame.GetWindowItem(L"Glass");
    ASSERT_NE(nullptr, glass);
    Canvas canvas(24, 16);
    canvas.Paint(glass->m_hWnd);
    for (int y = 0; y < 16; y += 5) {
        for (int x = 0; x < 24; x += 7) {
            EXPECT_EQ(PatternAt(10 + x, 20 + y), canvas.At(x, y)) << x << "," << y;
        }
    }
    EXPECT_EQ(PatternAt(33, 35), canvas.At(23, 15));
}

TEST_F(TransparencyTest, SecondPaintOfAChildDoesNotRepaintTheParent)
{
    Open(L"Striped");
    MirlWindowBase *glass = m_Frame.GetWindowItem(L"Glass");
    m_Frame.DeleteAllMemory();
    m_Frame.m_Paints = 0;
    Canvas canvas(24, 16);
    canvas.Paint(glass->m_hWnd);
    EXPECT_EQ(1, m_Frame.m_Paints);
    canvas.Paint(glass->m_hWnd);
    canvas.Paint(glass->m_hWnd);
    EXPECT_EQ(1, m_Frame.m_Paints);
}

TEST_F(TransparencyTest, ChainOfTransparentWindowsResolvesFromTheBottomUp)
{
    Open(L"Striped");
    MirlWindowBase *pane = m_Frame.GetWindowItem(L"Pane");
    MirlWindowBase *inner = pane->GetWindowItem(L"InnerGlass");
    ASSERT_NE(nullptr, inner);
    Canvas canvas(8, 8);
    canvas.Paint(inner->m_hWnd);
    // Inner at (2,3) of the pane, the pane at (40,4) of the frame.
    EXPECT_EQ(PatternAt(42, 7), canvas.At(0, 0));
    EXPECT_EQ(PatternAt(49, 14), canvas.At(7, 7));
    EXPECT_TRUE(pane->HasMemoryDC());
    EXPECT_TRUE(m_Frame.HasMemoryDC());
}

TEST_F(TransparencyTest, GrandparentResizeMakesNewPicturesAllTheWayUp)
{
    Open(L"Striped");
    MirlWindowBase *pane = m_Frame.GetWindowItem(L"Pane");
    MirlWindowBase *inner = pane->GetWindowItem(L"InnerGlass");
    Canvas canvas(8, 8);
    canvas.Paint(inner->m_hWnd);
    ASSERT_TRUE(pane->HasMemoryDC());
    ASSERT_TRUE(m_Frame.HasMemoryDC());

    ::SendMessageW(m_Frame.m_hWnd, WM_SIZE, SIZE_RESTORED, MAKELPARAM(64, 48));
    EXPECT_FALSE(pane->HasMemoryDC());
    EXPECT_FALSE(m_Frame.HasMemoryDC());

    m_Frame.m_Paints = 0;
    Canvas again(8, 8);
    again.Paint(inner->m_hWnd);
    EXPECT_EQ(1, m_Frame.m_Paints);
    EXPECT_TRUE(pane->HasMemoryDC());
    EXPECT_TRUE(m_Frame.HasMemoryDC());
    EXPECT_EQ(PatternAt(42, 7), again.At(0, 0));
}

TEST_F(TransparencyTest, FramedParentPictureIsWindowSizedAndReadAtClientCoordinates)
{
    Open(L"FramedStriped");
    MirlWindowBase *glass = m_Frame.GetWindowItem(L"Glass");
    Canvas canvas(24, 16);
    canvas.Paint(glass->m_hWnd);
    EXPECT_EQ(PatternAt(10, 20), canvas.At(0, 0));
    EXPECT_EQ(PatternAt(33, 35), canvas.At(23, 15));
    RECT window = {};
    m_Frame.GetWindowRect(&window);
    BITMAP bitmap = {};
    ASSERT_NE(0, ::GetObjectW(m_Frame.m_MemoryDC->m_hBitmap, sizeof(bitmap), &bitmap));
    EXPECT_EQ(window.right - window.left, bitmap.bmWidth);
    EXPECT_EQ(window.bottom - window.top, bitmap.bmHeight);
}

TEST_F(TransparencyTest, ZeroSizedParentGivesAPictureOfNoPixelsAndCopiesNothing)
{
    Open(L"ZeroParent");
    MirlWindowBase *glass = m_Frame.GetWindowItem(L"Glass");
    ASSERT_NE(nullptr, glass);
    Canvas canvas(8, 8, RGB(1, 2, 3));
    canvas.Paint(glass->m_hWnd);
    ASSERT_NE(nullptr, m_Frame.m_MemoryDC);
    EXPECT_EQ(nullptr, m_Frame.m_MemoryDC->m_hBitmap);
    EXPECT_EQ(RGB(1, 2, 3), canvas.At(0, 0));
    EXPECT_EQ(RGB(1, 2, 3), canvas.At(7, 7));
}

TEST_F(TransparencyTest, SubclassedWindowTakesItsBackgroundFromTheGivenParent)
{
    Open(L"Striped");
    MirlWindowBase *glass = m_Frame.GetWindowItem(L"Glass");
    // A second parent with another picture: a frame filled with its background colour.
    TestFrame other;
    ASSERT_NE(nullptr, other.Create(nullptr, nullptr, static_cast<LPRECT>(nullptr), L"Solid"));
    MirlWindow replacement;
    ASSERT_EQ(1, replacement.SubclassWindow(glass, &other));
    EXPECT_EQ(&other, replacement.GetReplacementParent());
    Canvas canvas(24, 16);
    canvas.Paint(replacement.m_hWnd);
    EXPECT_EQ(RGB(200, 0, 0), canvas.At(0, 0));
    EXPECT_EQ(RGB(200, 0, 0), canvas.At(23, 15));
    replacement.UnsubclassWindow(TRUE);
    other.DestroyWindow();
}
