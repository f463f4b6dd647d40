#include "MirlContainer.h"
#include "MirlMessageRecorder.h"
#include "MirlPixelTest.h"
#include "MirlTestSupport.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace {

class SplitterEnvironment : public ::testing::Environment {
public:
    void SetUp() override { MirlIntialize(mirltest::SkinPath(L"splitters").c_str(), 1033); }
    void TearDown() override { MirlUnIntialize(); }
};

::testing::Environment *const g_Mirl = ::testing::AddGlobalTestEnvironment(new SplitterEnvironment());

// A window's rectangle in its parent's client coordinates.
RECT Place(HWND hWnd)
{
    RECT rect = {};
    ::GetWindowRect(hWnd, &rect);
    ::MapWindowPoints(nullptr, ::GetParent(hWnd), reinterpret_cast<POINT *>(&rect), 2);
    return rect;
}

::testing::AssertionResult NearColour(DWORD expected, DWORD actual)
{
    for (int shift = 0; shift < 24; shift += 8) {
        if (std::abs(static_cast<int>((expected >> shift) & 0xFF) - static_cast<int>((actual >> shift) & 0xFF)) > 2) {
            return ::testing::AssertionFailure() << std::hex << "expected " << expected << ", got " << actual;
        }
    }
    return ::testing::AssertionSuccess();
}

// A pen colour of alpha 0x50 over black.
DWORD OverBlack(DWORD rgb)
{
    DWORD result = 0;
    for (int shift = 0; shift < 24; shift += 8) {
        result |= (((rgb >> shift) & 0xFF) * 0x50 / 255) << shift;
    }
    return result;
}

class SplitterTest : public ::testing::Test {
protected:
    void TearDown() override
    {
        ::ReleaseCapture();
        if (m_Frame.IsWindow()) {
            m_Frame.DestroyWindow();
        }
    }
    // Opens the template; its children are the side (1), the bar (2) and the main area (3).
    void Open(const wchar_t *name)
    {
        ASSERT_NE(nullptr, m_Frame.Create(nullptr, nullptr, static_cast<LPRECT>(nullptr), name));
        m_Bar = dynamic_cast<MirlSplitter *>(m_Frame.GetWindowItem(2UL));
        ASSERT_NE(nullptr, m_Bar);
        m_Side = m_Frame.GetWindowItem(1UL)->m_hWnd;
        m_Main = m_Frame.GetWindowItem(3UL)->m_hWnd;
    }
    void Press(HWND bar) { ::SendMessageW(bar, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(1, 5)); }
    void Drag(HWND bar, int d) { ::SendMessageW(bar, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(d, 5)); }
    void ExpectPlaces(LONG sideRight, LONG barLeft, LONG mainLeft)
    {
        EXPECT_EQ(0, Place(m_Side).left);
        EXPECT_EQ(sideRight, Place(m_Side).right);
        EXPECT_EQ(barLeft, Place(m_Bar->m_hWnd).left);
        EXPECT_EQ(mainLeft, Place(m_Main).left);
        EXPECT_EQ(300, Place(m_Main).right);
    }

    MirlWindow m_Frame;
    MirlSplitter *m_Bar = nullptr;
    HWND m_Side = nullptr;
    HWND m_Main = nullptr;
    mirltest::GdiplusSession m_Gdiplus;
};

} // namespace

TEST_F(SplitterTest, TheBrothersAreTheChildrenBeforeAndAfterTheBar)
{
    Open(L"Split");
    MirlWindowBase *left = nullptr;
    MirlWindowBase *right = nullptr;
    m_Bar->GetBrotherWindow(&left, &right);
    EXPECT_EQ(m_Frame.GetWindowItem(1UL), left);
    EXPECT_EQ(m_Frame.GetWindowItem(3UL), right);
}

TEST_F(SplitterTest, TheLayoutGivesAnUprightBarItsWeightAsWidth)
{
    Open(L"Split");
    EXPECT_EQ(2, m_Bar->GetSplitterWeight());
    RECT bar = Place(m_Bar->m_hWnd);
    EXPECT_EQ(2, bar.right - bar.left);
    EXPECT_EQ(100, bar.bottom - bar.top);
    m_Bar->SetSplitterWeight(6);
    EXPECT_EQ(2, Place(m_Bar->m_hWnd).right - Place(m_Bar->m_hWnd).left);
    ::SendMessageW(m_Frame.m_hWnd, WM_SIZE, SIZE_RESTORED, MAKELPARAM(300, 100));
    EXPECT_EQ(6, Place(m_Bar->m_hWnd).right - Place(m_Bar->m_hWnd).left);
}

TEST_F(SplitterTest, AnUprightBarShowsTheWestEastCursor)
{
    Open(L"Split");
    EXPECT_EQ(::LoadCursorW(nullptr, IDC_SIZEWE), m_Bar->GetSplitterCursor());
    ::SetCursor(::LoadCursorW(nullptr, IDC_IBEAM));
    EXPECT_EQ(0, ::SendMessageW(m_Bar->m_hWnd, WM_SETCURSOR, reinterpret_cast<WPARAM>(m_Bar->m_hWnd),
                                MAKELPARAM(HTCLIENT, WM_MOUSEMOVE)));
    EXPECT_EQ(::LoadCursorW(nullptr, IDC_SIZEWE), ::GetCursor());
}

TEST_F(SplitterTest, ADragWithTheCaptureMovesTheBarAndBothBrothers)
{
    Open(L"Split");
    ExpectPlaces(100, 100, 102);
    Press(m_Bar->m_hWnd);
    EXPECT_EQ(m_Bar->m_hWnd, ::GetCapture());
    Drag(m_Bar->m_hWnd, 10);
    ExpectPlaces(110, 110, 112);
    Drag(m_Bar->m_hWnd, -30);
    ExpectPlaces(80, 80, 82);
    // Tops and bottoms stay.
    EXPECT_EQ(0, Place(m_Main).top);
    EXPECT_EQ(100, Place(m_Main).bottom);
    ::SendMessageW(m_Bar->m_hWnd, WM_LBUTTONUP, 0, MAKELPARAM(1, 5));
    EXPECT_EQ(nullptr, ::GetCapture());
    Drag(m_Bar->m_hWnd, 10);
    ExpectPlaces(80, 80, 82);
}

TEST_F(SplitterTest, WithoutTheCaptureOrTheButtonAMoveDoesNothing)
{
    Open(L"Split");
    Drag(m_Bar->m_hWnd, 10);
    ExpectPlaces(100, 100, 102);
    Press(m_Bar->m_hWnd);
    ::SendMessageW(m_Bar->m_hWnd, WM_MOUSEMOVE, 0, MAKELPARAM(10, 5));
    ExpectPlaces(100, 100, 102);
}

TEST_F(SplitterTest, AFastDragPastALimitIsRefusedWholeEvenIfPartOfItWouldFit)
{
    Open(L"Split");
    Press(m_Bar->m_hWnd);
    // The side panel is 100 wide with a maximum of 120: 21 is too far, though 20 would fit.
    Drag(m_Bar->m_hWnd, 21);
    ExpectPlaces(100, 100, 102);
    Drag(m_Bar->m_hWnd, 20);
    ExpectPlaces(120, 120, 122);
    // And back: minimum 60, so a step of -61 is refused and -60 taken.
    Drag(m_Bar->m_hWnd, -61);
    ExpectPlaces(120, 120, 122);
    Drag(m_Bar->m_hWnd, -60);
    ExpectPlaces(60, 60, 62);
}

TEST_F(SplitterTest, AStepOfZeroMovesTheWindowsOntoThemselves)
{
    Open(L"Split");
    mirltest::MessageSequence sequence;
    mirltest::ControlRecorder side(m_Side, sequence);
    mirltest::ControlRecorder main(m_Main, sequence);
    Press(m_Bar->m_hWnd);
    sequence.Clear();
    Drag(m_Bar->m_hWnd, 0);
    ExpectPlaces(100, 100, 102);
    // Each brother is moved, to where it already is.
    EXPECT_EQ(2u, sequence.Count(WM_WINDOWPOSCHANGING));
}

TEST_F(SplitterTest, AFixedBarHasNoCursorAndAPressTakesTheCaptureWithoutEffect)
{
    Open(L"SplitFixed");
    EXPECT_EQ(nullptr, m_Bar->GetSplitterCursor());
    const HCURSOR beam = ::LoadCursorW(nullptr, IDC_IBEAM);
    ::SetCursor(beam);
    EXPECT_EQ(0, ::SendMessageW(m_Bar->m_hWnd, WM_SETCURSOR, reinterpret_cast<WPARAM>(m_Bar->m_hWnd),
                                MAKELPARAM(HTCLIENT, WM_MOUSEMOVE)));
    EXPECT_EQ(beam, ::GetCursor());
    Press(m_Bar->m_hWnd);
    EXPECT_EQ(m_Bar->m_hWnd, ::GetCapture());
    Drag(m_Bar->m_hWnd, 10);
    ExpectPlaces(100, 100, 102);
}

TEST_F(SplitterTest, ALyingBarShowsTheNorthSouthCursorButADragStillMovesItAlongX)
{
    Open(L"SplitFlat");
    EXPECT_EQ(::LoadCursorW(nullptr, IDC_SIZENS), m_Bar->GetSplitterCursor());
    // The layout gives a lying bar its weight as height.
    RECT bar = Place(m_Bar->m_hWnd);
    EXPECT_EQ(20, bar.right - bar.left);
    EXPECT_EQ(2, bar.bottom - bar.top);
    Press(m_Bar->m_hWnd);
    Drag(m_Bar->m_hWnd, 10);
    EXPECT_EQ(110, Place(m_Side).right);
    EXPECT_EQ(110, Place(m_Bar->m_hWnd).left);
    EXPECT_EQ(130, Place(m_Main).left);
    EXPECT_EQ(0, Place(m_Bar->m_hWnd).top);
}

TEST_F(SplitterTest, ALeftBrotherWithMaximumZeroNeverGrows)
{
    Open(L"SplitZero");
    EXPECT_EQ(0, m_Frame.GetWindowItem(1UL)->GetMaxWidth());
    Press(m_Bar->m_hWnd);
    Drag(m_Bar->m_hWnd, 1);
    ExpectPlaces(100, 100, 102);
    Drag(m_Bar->m_hWnd, -5);
    ExpectPlaces(95, 95, 97);
}

TEST_F(SplitterTest, ABrotherWithoutMaxWidthHasTheDefaultOf6900)
{
    Open(L"SplitFlat");
    EXPECT_EQ(6900, m_Frame.GetWindowItem(1UL)->GetMaxWidth());
    EXPECT_EQ(-1, m_Frame.GetWindowItem(3UL)->GetMinWidth());
}

TEST_F(SplitterTest, ABarAsFirstOrLastChildMovesNothing)
{
    ASSERT_NE(nullptr, m_Frame.Create(nullptr, nullptr, static_cast<LPRECT>(nullptr), L"SplitEdges"));
    MirlSplitter *first = dynamic_cast<MirlSplitter *>(m_Frame.GetWindowItem(1UL));
    MirlSplitter *last = dynamic_cast<MirlSplitter *>(m_Frame.GetWindowItem(3UL));
    ASSERT_NE(nullptr, first);
    ASSERT_NE(nullptr, last);
    HWND middle = m_Frame.GetWindowItem(2UL)->m_hWnd;
    MirlWindowBase *left = nullptr;
    MirlWindowBase *right = nullptr;
    first->GetBrotherWindow(&left, &right);
    EXPECT_EQ(first, left);
    EXPECT_EQ(m_Frame.GetWindowItem(2UL), right);
    last->GetBrotherWindow(&left, &right);
    EXPECT_EQ(m_Frame.GetWindowItem(2UL), left);
    EXPECT_EQ(nullptr, right);

    const RECT middleBefore = Place(middle);
    Press(first->m_hWnd);
    Drag(first->m_hWnd, 10);
    EXPECT_EQ(0, Place(first->m_hWnd).left);
    EXPECT_EQ(middleBefore.left, Place(middle).left);
    ::SendMessageW(first->m_hWnd, WM_LBUTTONUP, 0, 0);
    Press(last->m_hWnd);
    Drag(last->m_hWnd, -10);
    EXPECT_EQ(202, Place(last->m_hWnd).left);
    EXPECT_EQ(middleBefore.right, Place(middle).right);
}

TEST_F(SplitterTest, AnUprightBarDrawsTwoUprightLines)
{
    Open(L"Split");
    mirltest::Dib picture = mirltest::RenderWindow(m_Bar->m_hWnd);
    ASSERT_EQ(2, picture.width());
    EXPECT_TRUE(NearColour(OverBlack(0x5BBDE1), picture.Pixel(0, 0)));
    EXPECT_TRUE(NearColour(OverBlack(0x5BBDE1), picture.Pixel(0, 99)));
    EXPECT_TRUE(NearColour(OverBlack(0xFFFFFF), picture.Pixel(1, 50)));
    EXPECT_TRUE(mirltest::MatchesGolden(picture, "splitter_upright"));
}

TEST_F(SplitterTest, ALyingBarDrawsTwoLyingLines)
{
    Open(L"SplitFlat");
    mirltest::Dib picture = mirltest::RenderWindow(m_Bar->m_hWnd);
    ASSERT_EQ(2, picture.height());
    EXPECT_TRUE(NearColour(OverBlack(0x5BBDE1), picture.Pixel(0, 0)));
    EXPECT_TRUE(NearColour(OverBlack(0x5BBDE1), picture.Pixel(19, 0)));
    EXPECT_TRUE(NearColour(OverBlack(0xFFFFFF), picture.Pixel(10, 1)));
    EXPECT_TRUE(mirltest::MatchesGolden(picture, "splitter_lying"));
}

TEST_F(SplitterTest, ABarWithAnImageDrawsItStretchedInsteadOfTheLines)
{
    Open(L"SplitImage");
    ASSERT_NE(nullptr, m_Bar->GetImage());
    mirltest::Dib picture = mirltest::RenderWindow(m_Bar->m_hWnd);
    ASSERT_EQ(2, picture.width());
    EXPECT_EQ(0x008080u, picture.Pixel(0, 50));
    EXPECT_EQ(0x804000u, picture.Pixel(1, 50));
    EXPECT_TRUE(mirltest::MatchesGolden(picture, "splitter_image"));
}
