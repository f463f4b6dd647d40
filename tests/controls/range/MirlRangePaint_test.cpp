// What the range controls paint, through their own paint path, in each thumb form and state:
// exact pixels where a part's colour is known, and goldens of the whole.
//
// Colours are those of tests/fixtures/make_scroll_fixture.py.
#include "MirlScrollTestSupport.h"
#include "MirlPixelTest.h"

#include <memory>
#include <vector>

namespace {

::testing::Environment *const g_Mirl = ::testing::AddGlobalTestEnvironment(new mirltest::SkinEnvironment(L"range"));

LPARAM At(int x, int y)
{
    return MAKELPARAM(x, y);
}

// Pictures side by side, 4 pixels apart, on grey.
mirltest::Dib Row(const std::vector<mirltest::Dib> &pictures)
{
    int width = 0;
    int height = 0;
    for (const mirltest::Dib &picture : pictures) {
        width += picture.width() + 4;
        height = std::max(height, picture.height());
    }
    mirltest::Dib row(width, height);
    row.Fill(0xFF808080);
    int x = 0;
    for (const mirltest::Dib &picture : pictures) {
        ::BitBlt(row.dc(), x, 0, picture.width(), picture.height(), picture.dc(), 0, 0, SRCCOPY);
        x += picture.width() + 4;
    }
    return row;
}

class RangePaint : public mirltest::PixelTest {
protected:
    RangePaint() : m_Owner(m_Sequence) {}
    void SetUp() override
    {
        mirltest::PixelTest::SetUp();
        mirltest::ParkCursor();
        ASSERT_TRUE(mirltest::Activate(m_Owner.hwnd()));
    }
    void TearDown() override { ::ReleaseCapture(); }

    std::unique_ptr<MirlScrollBar> MakeBar(const wchar_t *name, int pos)
    {
        std::unique_ptr<MirlScrollBar> bar(new MirlScrollBar());
        EXPECT_NE(nullptr, bar->Create(nullptr, m_Owner.hwnd(), static_cast<LPRECT>(nullptr), name));
        SCROLLINFO info = {sizeof(SCROLLINFO), SIF_ALL, 0, 99, 10, pos, 0};
        bar->SetScrollInfo(&info);
        return bar;
    }

    mirltest::MessageSequence m_Sequence;
    mirltest::RangeOwner m_Owner;
};

TEST_F(RangePaint, ScrollBarThumbInItsThreeFormsAndTheArrowsInTheirStates)
{
    std::unique_ptr<MirlScrollBar> bar = MakeBar(L"Bar", 0);
    HWND hwnd = bar->m_hWnd;
    std::vector<mirltest::Dib> states;

    // Normal: the full form. Thumb 10-60, one pixel in from the left.
    mirltest::Dib normal = mirltest::RenderWindow(hwnd);
    EXPECT_EQ(0x283CC8u, normal.Pixel(8, 5));   // up arrow
    EXPECT_EQ(0xC82828u, normal.Pixel(8, 195)); // down arrow
    EXPECT_EQ(0xDCDCDCu, normal.Pixel(8, 100)); // the track's middle row, stretched
    EXPECT_EQ(0x00A000u, normal.Pixel(5, 12));  // top cap over the up arrow's inner part
    EXPECT_EQ(0xDCDCDCu, normal.Pixel(0, 40));  // the track beside the thumb
    EXPECT_EQ(0x78E678u, normal.Pixel(5, 20));  // fill
    EXPECT_EQ(0xFAE600u, normal.Pixel(5, 34));  // grip at 32-38
    EXPECT_EQ(0x005A00u, normal.Pixel(5, 57));  // bottom cap at 54-60
    EXPECT_EQ(0xDCDCDCu, normal.Pixel(5, 61));
    states.push_back(std::move(normal));

    // Hover: short form B. Ten rows of the top cap, row 11 of it over 11 rows, the grip at 31-39.
    ::SendMessageW(hwnd, WM_MOUSEMOVE, 0, At(5, 30));
    ASSERT_EQ(MirlScrollBar::DrawThumbHot, bar->GetDrawPart());
    mirltest::Dib hover = mirltest::RenderWindow(hwnd);
    EXPECT_EQ(0xFF9600u, hover.Pixel(5, 12));
    EXPECT_EQ(0xFFDCA0u, hover.Pixel(5, 25));
    EXPECT_EQ(0xA000C8u, hover.Pixel(5, 33));
    EXPECT_EQ(0xC88C50u, hover.Pixel(5, 45));   // row 5 of the bottom cap, stretched
    states.push_back(std::move(hover));

    // Pressed: short form A. The upper half of the top cap, then the bottom cap from its row 5.
    ::SendMessageW(hwnd, WM_LBUTTONDOWN, MK_LBUTTON, At(5, 30));
    ASSERT_EQ(MirlScrollBar::DrawThumbPressed, bar->GetDrawPart());
    mirltest::Dib pressed = mirltest::RenderWindow(hwnd);
    EXPECT_EQ(0x009696u, pressed.Pixel(5, 12));
    EXPECT_EQ(0x009696u, pressed.Pixel(5, 34));
    EXPECT_EQ(0x0050A0u, pressed.Pixel(5, 35));
    EXPECT_EQ(0x0050A0u, pressed.Pixel(5, 59));
    states.push_back(std::move(pressed));
    ::SendMessageW(hwnd, WM_LBUTTONUP, 0, At(5, 30));

    // Arrows: up hot, down pressed.
    ::SendMessageW(hwnd, WM_MOUSEMOVE, 0, At(5, 5));
    mirltest::Dib upHot = mirltest::RenderWindow(hwnd);
    EXPECT_EQ(0x5A96FFu, upHot.Pixel(8, 5));
    states.push_back(std::move(upHot));
    ::SendMessageW(hwnd, WM_LBUTTONDOWN, MK_LBUTTON, At(5, 195));
    mirltest::Dib downPressed = mirltest::RenderWindow(hwnd);
    EXPECT_EQ(0x6E0A0Au, downPressed.Pixel(8, 195));
    states.push_back(std::move(downPressed));
    ::SendMessageW(hwnd, WM_LBUTTONUP, 0, At(5, 195));

    // Disabled: no thumb at all.
    ::EnableWindow(hwnd, FALSE);
    mirltest::Dib disabled = mirltest::RenderWindow(hwnd);
    EXPECT_EQ(0xDCDCDCu, disabled.Pixel(5, 40));
    EXPECT_EQ(0x283CC8u, disabled.Pixel(5, 12));
    states.push_back(std::move(disabled));
    ::EnableWindow(hwnd, TRUE);

    // At the end: position 89, thumb 140-190 over the down arrow's inner part.
    bar->SetScrollPos(89);
    mirltest::Dib end = mirltest::RenderWindow(hwnd);
    EXPECT_EQ(0x005A00u, end.Pixel(5, 187));
    EXPECT_EQ(0xC82828u, end.Pixel(5, 192));
    states.push_back(std::move(end));

    EXPECT_TRUE(mirltest::MatchesGolden(Row(states), "scrollbar_states"));
    bar->DestroyWindow();
}

TEST_F(RangePaint, ShortScrollBarHasScaledArrows)
{
    std::unique_ptr<MirlScrollBar> bar = MakeBar(L"ShortBar", 0);
    ::EnableWindow(bar->m_hWnd, FALSE);
    mirltest::Dib picture = mirltest::RenderWindow(bar->m_hWnd);
    // Up arrow 0-15, track 15-19, down arrow from 19 past the bottom.
    EXPECT_EQ(0x283CC8u, picture.Pixel(8, 14));
    EXPECT_EQ(0xDCDCDCu, picture.Pixel(8, 16));
    EXPECT_EQ(0xC82828u, picture.Pixel(8, 29));
    EXPECT_TRUE(mirltest::MatchesGolden(picture, "scrollbar_short"));
    bar->DestroyWindow();
}

TEST_F(RangePaint, SliderBackgroundsAndThumbStates)
{
    std::vector<mirltest::Dib> states;
    MirlSlider slider;
    ASSERT_NE(nullptr, slider.Create(nullptr, m_Owner.hwnd(), static_cast<LPRECT>(nullptr), L"Slider"));
    HWND hwnd = slider.m_hWnd;

    // Background 20 x 10 centred in 20 rows (5-15): left half, column 10 stretched, right half.
    mirltest::Dib normal = mirltest::RenderWindow(hwnd);
    EXPECT_EQ(0x6E6E6Eu, normal.Pixel(3, 10));
    EXPECT_EQ(0xC8C8C8u, normal.Pixel(30, 10));
    EXPECT_EQ(0x464646u, normal.Pixel(112, 10));
    EXPECT_EQ(0x1E50DCu, normal.Pixel(58, 3)); // thumb 52-64, 2-18
    EXPECT_EQ(0x282C34u, normal.Pixel(30, 2)); // the frame colour above the background
    states.push_back(std::move(normal));

    mirltest::PointerAt(hwnd, 20, 10);
    ::SendMessageW(hwnd, WM_MOUSEMOVE, 0, At(20, 10));
    mirltest::PointerAt(hwnd, 58, 10);
    ::SendMessageW(hwnd, WM_MOUSEMOVE, 0, At(58, 10));
    mirltest::Dib glow = mirltest::RenderWindow(hwnd);
    EXPECT_EQ(0x78B4FFu, glow.Pixel(58, 3));
    states.push_back(std::move(glow));

    ::SendMessageW(hwnd, WM_LBUTTONDOWN, MK_LBUTTON, At(58, 10));
    mirltest::Dib down = mirltest::RenderWindow(hwnd);
    EXPECT_EQ(0x0A1E78u, down.Pixel(58, 3));
    states.push_back(std::move(down));
    ::SendMessageW(hwnd, WM_LBUTTONUP, 0, At(58, 10));
    ::ReleaseCapture();

    // Disabled after creation: the normal background and thumb.
    ::EnableWindow(hwnd, FALSE);
    mirltest::Dib laterDisabled = mirltest::RenderWindow(hwnd);
    EXPECT_EQ(0x6E6E6Eu, laterDisabled.Pixel(3, 10));
    states.push_back(std::move(laterDisabled));
    slider.DestroyWindow();

    // Created disabled: the disabled background.
    MirlSlider disabled;
    ASSERT_NE(nullptr, disabled.Create(nullptr, m_Owner.hwnd(), static_cast<LPRECT>(nullptr), L"SliderDisabled"));
    mirltest::Dib createdDisabled = mirltest::RenderWindow(disabled.m_hWnd);
    EXPECT_EQ(0x963C3Cu, createdDisabled.Pixel(3, 10));
    EXPECT_EQ(0x1E50DCu, createdDisabled.Pixel(58, 3));
    states.push_back(std::move(createdDisabled));
    disabled.DestroyWindow();

    EXPECT_TRUE(mirltest::MatchesGolden(Row(states), "slider_states"));
}

TEST_F(RangePaint, SliderNarrowerThanItsBackground)
{
    MirlSlider slider;
    ASSERT_NE(nullptr, slider.Create(nullptr, m_Owner.hwnd(), static_cast<LPRECT>(nullptr), L"SliderNarrow"));
    // 18 wide: the middle's width is -2, and the right half lands at x 8, over the left one.
    // The thumb stands at 3-15.
    mirltest::Dib picture = mirltest::RenderWindow(slider.m_hWnd);
    EXPECT_EQ(18, picture.width());
    EXPECT_EQ(0x6E6E6Eu, picture.Pixel(2, 10));
    EXPECT_EQ(0x464646u, picture.Pixel(16, 10));
    EXPECT_EQ(0x1E50DCu, picture.Pixel(9, 10));
    EXPECT_TRUE(mirltest::MatchesGolden(picture, "slider_narrow"));
    slider.DestroyWindow();
}

TEST_F(RangePaint, SeekBarAtTheStartTheMiddleAndTheEnd)
{
    MirlMediaSeekBar bar;
    ASSERT_NE(nullptr, bar.Create(nullptr, m_Owner.hwnd(), static_cast<LPRECT>(nullptr), L"Seek"));
    std::vector<mirltest::Dib> states;
    for (float p : {0.0f, 0.5f, 1.0f}) {
        bar.SetSeekPercent(p);
        states.push_back(mirltest::RenderWindow(bar.m_hWnd));
    }
    // "ProgressBk" stretched over the whole 300 pixels, rows 6-14.
    EXPECT_EQ(0x323232u, states[0].Pixel(290, 8));
    // The fill runs from x 2 under the thumb (125-145), rows 5-11.
    EXPECT_EQ(0x28C85Au, states[1].Pixel(100, 6));
    EXPECT_EQ(0x28C85Au, states[1].Pixel(124, 6));
    EXPECT_EQ(0xF0F0F0u, states[1].Pixel(126, 6));
    EXPECT_EQ(0x323232u, states[1].Pixel(150, 12));
    // The thumb stands a pixel above its rectangle: 250-270, rows 2-16, ending at 270.
    EXPECT_EQ(0xF0F0F0u, states[2].Pixel(260, 8));
    EXPECT_EQ(0x141414u, states[2].Pixel(269, 8));
    EXPECT_EQ(0x323232u, states[2].Pixel(275, 8));
    mirltest::Dib column(300, 3 * 24);
    column.Fill(0xFF808080);
    for (int i = 0; i < 3; ++i) {
        ::BitBlt(column.dc(), 0, i * 24, 300, 20, states[i].dc(), 0, 0, SRCCOPY);
    }
    EXPECT_TRUE(mirltest::MatchesGolden(column, "seekbar_states"));
    bar.DestroyWindow();
}

} // namespace
