// A jog wheel whose skin has frames 2, 3 and 5 only: it shows the frames it has and the mask
// alone for the others.
#include "MirlRangeTestSupport.h"

#include "MirlPixelTest.h"

namespace {

::testing::Environment *const g_Mirl =
    ::testing::AddGlobalTestEnvironment(new mirltest::RangeSkinEnvironment(L"ranges_partial"));

const DWORD kMask = 0x808080;
const DWORD kFrame2 = 0x30F268;

class PartialWheelTest : public mirltest::RangeFrameTest {
protected:
    mirltest::GdiplusSession m_Gdiplus;
};

} // namespace

TEST_F(PartialWheelTest, KeepsAPlaceForEveryFrameAndFillsTheOnesTheSkinHas)
{
    MirlInchingSwitch *wheel = Control<MirlInchingSwitch>(301);
    ASSERT_NE(nullptr, wheel);
    for (int i = 0; i < 48; ++i) {
        const bool present = i == 2 || i == 3 || i == 5;
        EXPECT_EQ(present, wheel->GetFrameBitmap(i) != nullptr) << i;
    }
    // Frame 0 is missing: the frames' place comes from frame 2, 16 pixels wide.
    EXPECT_EQ(12, wheel->GetFramePlace().x);
}

TEST_F(PartialWheelTest, AMissingFrameShowsTheMaskAlone)
{
    MirlInchingSwitch *wheel = Control<MirlInchingSwitch>(301);
    ASSERT_NE(nullptr, wheel);
    mirltest::Dib empty = mirltest::RenderWindow(wheel->m_hWnd);
    EXPECT_EQ(kMask, empty.Pixel(20, 20));
    ::SendMessageW(wheel->m_hWnd, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(0, 0));
    ::SendMessageW(wheel->m_hWnd, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(1, 0));
    ::SendMessageW(wheel->m_hWnd, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(2, 0));
    ASSERT_EQ(2, wheel->GetFrame());
    mirltest::Dib shown = mirltest::RenderWindow(wheel->m_hWnd);
    EXPECT_EQ(kFrame2, shown.Pixel(20, 20));
    EXPECT_TRUE(mirltest::MatchesGolden(shown, "inching_switch_partial_frame2"));
}
