#include "MirlRangeTestSupport.h"

#include "MirlLeakCounters.h"
#include "MirlPixelTest.h"

namespace {

::testing::Environment *const g_Mirl =
    ::testing::AddGlobalTestEnvironment(new mirltest::RangeSkinEnvironment(L"ranges"));

// The colours of tests/fixtures/make_range_fixture.py.
DWORD FrameColour(int n)
{
    return (static_cast<DWORD>(40 + 4 * n) << 16) | (static_cast<DWORD>(250 - 4 * n) << 8) |
           static_cast<DWORD>(100 + 2 * n);
}
const DWORD kMask = 0x808080;
const DWORD kWheelBack = 0x141E3C;

class InchingSwitchTest : public mirltest::RangeFrameTest {
protected:
    void SetUp() override
    {
        mirltest::RangeFrameTest::SetUp();
        m_Wheel = Control<MirlInchingSwitch>(301);
        ASSERT_NE(nullptr, m_Wheel);
    }
    void Press(int x) { ::SendMessageW(m_Wheel->m_hWnd, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(x, 5)); }
    void Drag(int x) { ::SendMessageW(m_Wheel->m_hWnd, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(x, 5)); }
    void Hover(int x) { ::SendMessageW(m_Wheel->m_hWnd, WM_MOUSEMOVE, 0, MAKELPARAM(x, 5)); }

    MirlInchingSwitch *m_Wheel = nullptr;
    mirltest::GdiplusSession m_Gdiplus;
};

} // namespace

TEST_F(InchingSwitchTest, LoadsTheMaskAndAllFortyEightFrames)
{
    ASSERT_NE(nullptr, m_Wheel->GetMaskBitmap());
    for (int i = 0; i < 48; ++i) {
        EXPECT_NE(nullptr, m_Wheel->GetFrameBitmap(i)) << i;
    }
    EXPECT_EQ(nullptr, m_Wheel->GetFrameBitmap(48));
    EXPECT_EQ(nullptr, m_Wheel->GetFrameBitmap(-1));
    EXPECT_EQ(0, m_Wheel->GetFrame());
}

TEST_F(InchingSwitchTest, MaskAndFrameAreCentredInTheClient)
{
    // A client of 40 x 40: the 30-pixel mask at 5, the 16-pixel frames at 12.
    EXPECT_EQ(5, m_Wheel->GetMaskPlace().x);
    EXPECT_EQ(5, m_Wheel->GetMaskPlace().y);
    EXPECT_EQ(12, m_Wheel->GetFramePlace().x);
    EXPECT_EQ(12, m_Wheel->GetFramePlace().y);
}

TEST_F(InchingSwitchTest, APressFollowedByAMoveAtTheSameXStepsForward)
{
    Press(20);
    EXPECT_EQ(20, m_Wheel->GetLastX());
    Drag(20);
    EXPECT_EQ(1, m_Wheel->GetFrame());
    Drag(20);
    EXPECT_EQ(2, m_Wheel->GetFrame());
}

TEST_F(InchingSwitchTest, OneFrameAMessageWhateverTheDistance)
{
    Press(10);
    Drag(30);
    EXPECT_EQ(1, m_Wheel->GetFrame());
    Drag(5);
    EXPECT_EQ(0, m_Wheel->GetFrame());
    EXPECT_EQ(5, m_Wheel->GetLastX());
}

TEST_F(InchingSwitchTest, DraggingRightFromFrame47GivesFrame0AndLeftFromFrame0Gives47)
{
    Press(0);
    for (int x = 1; x <= 47; ++x) {
        Drag(x);
    }
    ASSERT_EQ(47, m_Wheel->GetFrame());
    Drag(48);
    EXPECT_EQ(0, m_Wheel->GetFrame());
    Drag(47);
    EXPECT_EQ(47, m_Wheel->GetFrame());
}

TEST_F(InchingSwitchTest, AHeldMoveFromOutsideComparesWithTheOldLastX)
{
    Press(30);
    Drag(35);
    ASSERT_EQ(1, m_Wheel->GetFrame());
    // The button was pressed elsewhere; the pointer comes in at 10: 10 is less than 35.
    Drag(10);
    EXPECT_EQ(0, m_Wheel->GetFrame());
    EXPECT_EQ(10, m_Wheel->GetLastX());
}

TEST_F(InchingSwitchTest, AWheelNeverPressedComparesWithZero)
{
    Drag(3);
    EXPECT_EQ(1, m_Wheel->GetFrame());
    EXPECT_EQ(3, m_Wheel->GetLastX());
}

TEST_F(InchingSwitchTest, AnXBeyond32767OrNegativeIsReadUnsigned)
{
    Press(100);
    // -1 arrives as 0xFFFF: 65535, more than 100, so forward.
    Drag(-1);
    EXPECT_EQ(1, m_Wheel->GetFrame());
    EXPECT_EQ(65535, m_Wheel->GetLastX());
    Drag(40000);
    EXPECT_EQ(0, m_Wheel->GetFrame());
    EXPECT_EQ(40000, m_Wheel->GetLastX());
    // A press far to the left is read unsigned as well.
    Press(-2);
    EXPECT_EQ(65534, m_Wheel->GetLastX());
}

TEST_F(InchingSwitchTest, MovesWithoutTheButtonDoNothing)
{
    Press(20);
    Drag(25);
    ASSERT_EQ(1, m_Wheel->GetFrame());
    Hover(2);
    Hover(90);
    EXPECT_EQ(1, m_Wheel->GetFrame());
    EXPECT_EQ(25, m_Wheel->GetLastX());
    ::SendMessageW(m_Wheel->m_hWnd, WM_MOUSEMOVE, MK_RBUTTON | MK_SHIFT, MAKELPARAM(0, 0));
    EXPECT_EQ(1, m_Wheel->GetFrame());
    EXPECT_EQ(25, m_Wheel->GetLastX());
}

TEST_F(InchingSwitchTest, PaintsTheBackgroundTheMaskAndTheFrameShown)
{
    Press(0);
    for (int x = 1; x <= 5; ++x) {
        Drag(x);
    }
    ASSERT_EQ(5, m_Wheel->GetFrame());
    mirltest::Dib picture = mirltest::RenderWindow(m_Wheel->m_hWnd);
    EXPECT_EQ(kWheelBack, picture.Pixel(0, 0));
    EXPECT_EQ(kWheelBack, picture.Pixel(4, 20));
    EXPECT_EQ(kMask, picture.Pixel(5, 5));
    EXPECT_EQ(kMask, picture.Pixel(34, 34));
    EXPECT_EQ(kMask, picture.Pixel(11, 20));
    EXPECT_EQ(FrameColour(5), picture.Pixel(12, 12));
    EXPECT_EQ(FrameColour(5), picture.Pixel(27, 27));
    EXPECT_EQ(kMask, picture.Pixel(28, 27));
    EXPECT_TRUE(mirltest::MatchesGolden(picture, "inching_switch_frame5"));
    Drag(4);
    EXPECT_EQ(FrameColour(4), mirltest::RenderWindow(m_Wheel->m_hWnd).Pixel(20, 20));
}

TEST_F(InchingSwitchTest, AClientSmallerThanTheImagesPlacesThemFarAwayAndShowsTheBackground)
{
    ::MoveWindow(m_Wheel->m_hWnd, 10, 100, 20, 10, TRUE);
    // 20 - 30 halved as an unsigned value.
    EXPECT_EQ(0x7FFFFFFB, m_Wheel->GetMaskPlace().x);
    EXPECT_EQ(2, m_Wheel->GetFramePlace().x);
    mirltest::Dib picture = mirltest::RenderWindow(m_Wheel->m_hWnd);
    EXPECT_EQ(kWheelBack, picture.Pixel(0, 0));
    EXPECT_EQ(kWheelBack, picture.Pixel(19, 9));
}

TEST(InchingSwitchLeaks, CreateAndDestroyCyclesDoNotGrow)
{
    mirltest::GdiplusSession gdiplus;
    auto cycle = [] {
        for (int i = 0; i < 20; ++i) {
            MirlWindow frame;
            ASSERT_NE(nullptr, frame.Create(nullptr, nullptr, static_cast<LPRECT>(nullptr), L"Ranges"));
            MirlInchingSwitch *wheel = dynamic_cast<MirlInchingSwitch *>(frame.GetWindowItem(301UL));
            ASSERT_NE(nullptr, wheel);
            ::SendMessageW(wheel->m_hWnd, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(3, 3));
            mirltest::RenderWindow(wheel->m_hWnd);
            frame.DestroyWindow();
        }
    };
    cycle();
    const size_t heapBefore = mirltest::BusyHeapBytes();
    const int gdiBefore = mirltest::LiveGdiObjects();
    cycle();
    EXPECT_EQ(gdiBefore, mirltest::LiveGdiObjects());
    EXPECT_LT(static_cast<long long>(mirltest::BusyHeapBytes()) - static_cast<long long>(heapBefore), 1024);
}
