#include "MirlPixelTest.h"
#include "MirlTestSupport.h"

#include <gtest/gtest.h>

namespace {

class SampleEnvironment : public ::testing::Environment {
public:
    void SetUp() override { MirlIntialize(mirltest::SkinPath(L"sample").c_str(), 1033); }
    void TearDown() override { MirlUnIntialize(); }
};

::testing::Environment *const g_Mirl = ::testing::AddGlobalTestEnvironment(new SampleEnvironment());

class Frame : public MirlWindowImpl<Frame> {};

} // namespace

// The sample's Shuffle button stretches a 24-pixel face over 87 pixels: caps of 12 and a middle
// of one stretched column. No column between them may show the background.
TEST(ButtonFace, StretchedFaceHasNoSeamBetweenCapAndMiddle)
{
    Frame frame;
    ASSERT_NE(nullptr, frame.Create(nullptr, nullptr, static_cast<LPRECT>(nullptr), L"MainFrame"));
    MirlWindowBase *backdrop = frame.GetWindowItem(0x1001UL);
    ASSERT_NE(nullptr, backdrop);
    MirlWindowBase *shuffle = backdrop->GetWindowItem(0x1206UL);
    ASSERT_NE(nullptr, dynamic_cast<MirlButton *>(shuffle));
    mirltest::Dib picture = mirltest::RenderWindow(shuffle->m_hWnd);
    // Mid-height, away from the caption: the cap's last column, the middle's first ones.
    const int y = 20;
    const DWORD middle = picture.Pixel(20, y);
    for (int x = 8; x <= 16; ++x) {
        EXPECT_EQ(middle, picture.Pixel(x, y)) << "column " << x;
    }
    frame.DestroyWindow();
}
