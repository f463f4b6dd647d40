// MirlSlider on live windows under the range fixture: the value's bounds, presses, drags and
// releases through real messages, WM_USER + 120 to the parent, hover by capture, the disabled
// background, and every way out of a drag.
//
// The slider of template "Slider" is 116 x 20 with a thumb of 12 x 16: the centre runs from 8
// to 108, and the value 50 of 0..99 stands at 58 (thumb 52-64, 2-18).
#include "MirlScrollTestSupport.h"
#include "MirlLeakCounters.h"
#include "MirlPixelTest.h"

#include <memory>

namespace {

::testing::Environment *const g_Mirl = ::testing::AddGlobalTestEnvironment(new mirltest::SkinEnvironment(L"range"));

LPARAM At(int x, int y)
{
    return MAKELPARAM(x, y);
}

class SliderMessages : public ::testing::Test {
protected:
    SliderMessages() : m_Owner(m_Sequence) {}

    void SetUp() override
    {
        mirltest::ParkCursor();
        ASSERT_TRUE(mirltest::Activate(m_Owner.hwnd()));
    }
    void TearDown() override
    {
        if (m_Slider && ::IsWindow(m_Slider->m_hWnd)) {
            m_Slider->DestroyWindow();
        }
        ::ReleaseCapture();
    }

    HWND Make(const wchar_t *name = L"Slider")
    {
        m_Slider.reset(new MirlSlider());
        HWND hwnd = m_Slider->Create(nullptr, m_Owner.hwnd(), static_cast<LPRECT>(nullptr), name);
        mirltest::FlushMessages();
        m_Sequence.Clear();
        return hwnd;
    }
    HWND Slider() const { return m_Slider->m_hWnd; }
    LPARAM Self() const { return reinterpret_cast<LPARAM>(m_Slider->m_hWnd); }
    std::vector<WPARAM> Notes() const { return m_Owner.Received(WM_SLIDER_POSITION); }

    mirltest::MessageSequence m_Sequence;
    mirltest::RangeOwner m_Owner;
    std::unique_ptr<MirlSlider> m_Slider;
};

TEST_F(SliderMessages, CreationPlacesTheThumbForTheStartingValue)
{
    ASSERT_NE(nullptr, Make());
    EXPECT_EQ(50, m_Slider->GetPos());
    EXPECT_EQ(58, m_Slider->GetTrackPos());
    const RECT thumb = m_Slider->GetThumbRect();
    EXPECT_EQ(52, thumb.left);
    EXPECT_EQ(64, thumb.right);
    EXPECT_EQ(2, thumb.top);
    EXPECT_EQ(18, thumb.bottom);
    // Default element names where the template names none.
    EXPECT_NE(nullptr, m_Slider->GetBackgroundImage());
    EXPECT_NE(nullptr, m_Slider->GetThumbGlowImage());
    EXPECT_NE(nullptr, m_Slider->GetThumbDisableImage());
    EXPECT_EQ(m_Slider->GetThumbImage(), m_Slider->GetCurrentThumb());
}

TEST_F(SliderMessages, TemplateAttributesNameOtherElementsAndAMissingOptionalOneStaysEmpty)
{
    ASSERT_NE(nullptr, Make(L"SliderNamed"));
    // PicC names an element that doesn't exist: no glow, and hovering the thumb keeps the normal one.
    EXPECT_EQ(nullptr, m_Slider->GetThumbGlowImage());
    ASSERT_NE(nullptr, m_Slider->GetThumbImage());
    // "SliderTrackDown" as the normal thumb: 12 x 16 as well.
    EXPECT_EQ(12u, m_Slider->GetThumbImage()->GetWidth());
}

TEST_F(SliderMessages, SetPosReturnsTheOldValueAndSetRangeTheNew)
{
    ASSERT_NE(nullptr, Make());
    EXPECT_EQ(50, m_Slider->SetPos(70, false));
    EXPECT_EQ(70, m_Slider->GetPos());
    EXPECT_EQ(78, m_Slider->GetTrackPos());
    EXPECT_EQ(70, m_Slider->SetPos(500, false));
    EXPECT_EQ(99, m_Slider->GetPos());
    EXPECT_EQ(20, m_Slider->SetRange(0, 20, true));
    int min = -1;
    int max = -1;
    EXPECT_EQ(20, m_Slider->GetRange(min, max));
    EXPECT_EQ(0, min);
    EXPECT_EQ(20, max);
    // The application's changes tell the parent nothing.
    EXPECT_TRUE(Notes().empty());
}

TEST_F(SliderMessages, InvertedRangeLetsMaxWin)
{
    ASSERT_NE(nullptr, Make());
    EXPECT_EQ(5, m_Slider->SetRange(10, 5, false));
    EXPECT_EQ(5, m_Slider->GetPos());
    MirlSlider windowless;
    EXPECT_EQ(5, windowless.SetRange(10, 5, true));
    EXPECT_EQ(7, windowless.SetRange(7, 7, true));
}

TEST_F(SliderMessages, EqualBoundsClampSetPosAndLeaveTheThumbAtEight)
{
    ASSERT_NE(nullptr, Make());
    EXPECT_EQ(5, m_Slider->SetRange(5, 5, false));
    // SetPosInternal does nothing while the bounds are equal: the thumb stays at 58 until the
    // next size, which places it at 8.
    EXPECT_EQ(5, m_Slider->SetPos(9, false));
    EXPECT_EQ(5, m_Slider->GetPos());
    EXPECT_EQ(58, m_Slider->GetTrackPos());
    ::SendMessageW(Slider(), WM_SIZE, SIZE_RESTORED, MAKELPARAM(116, 20));
    EXPECT_EQ(8, m_Slider->GetTrackPos());
}

TEST_F(SliderMessages, PressBesideTheThumbJumpsAndTellsTheParent)
{
    ASSERT_NE(nullptr, Make());
    ::SendMessageW(Slider(), WM_LBUTTONDOWN, MK_LBUTTON, At(108, 10));
    std::vector<WPARAM> notes = Notes();
    ASSERT_EQ(1u, notes.size());
    EXPECT_EQ(static_cast<WPARAM>(MAKEWPARAM(MK_LBUTTON, 99)), notes[0]);
    EXPECT_EQ(Self(), m_Owner.ReceivedLParams(WM_SLIDER_POSITION)[0]);
    EXPECT_EQ(99, m_Slider->GetPos());
    EXPECT_EQ(m_Slider->GetThumbDownImage(), m_Slider->GetCurrentThumb());
    EXPECT_EQ(Slider(), ::GetCapture());
}

TEST_F(SliderMessages, PressOnTheThumbSendsNothingUntilTheRelease)
{
    ASSERT_NE(nullptr, Make());
    mirltest::PointerAt(Slider(), 58, 10);
    ::SendMessageW(Slider(), WM_LBUTTONDOWN, MK_LBUTTON, At(58, 10));
    EXPECT_TRUE(Notes().empty());
    EXPECT_EQ(50, m_Slider->GetPos());
    // The release over the slider moves the thumb's centre to the mouse: 58 is the value 49.
    ::SendMessageW(Slider(), WM_LBUTTONUP, 0, At(58, 10));
    std::vector<WPARAM> notes = Notes();
    ASSERT_EQ(1u, notes.size());
    EXPECT_EQ(static_cast<WPARAM>(MAKEWPARAM(0, 49)), notes[0]);
    EXPECT_EQ(49, m_Slider->GetPos());
    EXPECT_EQ(58, m_Slider->GetTrackPos());
    EXPECT_EQ(m_Slider->GetThumbImage(), m_Slider->GetCurrentThumb());
}

TEST_F(SliderMessages, ValueAbove65535ReachesTheParentCutToItsLow16Bits)
{
    ASSERT_NE(nullptr, Make());
    m_Slider->SetRange(0, 100000, false);
    ::SendMessageW(Slider(), WM_LBUTTONDOWN, MK_LBUTTON, At(108, 10));
    std::vector<WPARAM> notes = Notes();
    ASSERT_EQ(1u, notes.size());
    EXPECT_EQ(static_cast<WPARAM>(MAKEWPARAM(MK_LBUTTON, 100000 & 0xFFFF)), notes[0]);
    EXPECT_EQ(34464u, HIWORD(notes[0]));
    EXPECT_EQ(Self(), m_Owner.ReceivedLParams(WM_SLIDER_POSITION)[0]);
    EXPECT_EQ(100000, m_Slider->GetPos());
}

TEST_F(SliderMessages, ReleaseOverAnotherWindowStillSetsThePositionClamped)
{
    ASSERT_NE(nullptr, Make());
    mirltest::PointerAt(Slider(), 58, 10);
    ::SendMessageW(Slider(), WM_LBUTTONDOWN, MK_LBUTTON, At(58, 10));
    // x 300 lies over the owner, not the slider: the hover ends, the capture goes, and the
    // value comes from 300 held at 108.
    ::SendMessageW(Slider(), WM_LBUTTONUP, 0, At(300, 10));
    std::vector<WPARAM> notes = Notes();
    ASSERT_EQ(1u, notes.size());
    EXPECT_EQ(static_cast<WPARAM>(MAKEWPARAM(0, 99)), notes[0]);
    EXPECT_EQ(108, m_Slider->GetTrackPos());
    EXPECT_NE(Slider(), ::GetCapture());
    EXPECT_FALSE(m_Slider->IsHovering());
}

TEST_F(SliderMessages, HoverTakesTheCaptureAndDragFollowsTheMouse)
{
    ASSERT_NE(nullptr, Make());
    mirltest::PointerAt(Slider(), 20, 10);
    ::SendMessageW(Slider(), WM_MOUSEMOVE, 0, At(20, 10));
    EXPECT_TRUE(m_Slider->IsHovering());
    EXPECT_EQ(Slider(), ::GetCapture());
    // Over the thumb the glow shows.
    mirltest::PointerAt(Slider(), 58, 10);
    ::SendMessageW(Slider(), WM_MOUSEMOVE, 0, At(58, 10));
    EXPECT_EQ(m_Slider->GetThumbGlowImage(), m_Slider->GetCurrentThumb());
    // With the button held each move sets the value: 83 is 99 * 75 / 100 = 74.
    mirltest::PointerAt(Slider(), 83, 10);
    ::SendMessageW(Slider(), WM_MOUSEMOVE, MK_LBUTTON, At(83, 10));
    std::vector<WPARAM> notes = Notes();
    ASSERT_EQ(1u, notes.size());
    EXPECT_EQ(static_cast<WPARAM>(MAKEWPARAM(MK_LBUTTON, 74)), notes[0]);
    EXPECT_EQ(m_Slider->GetThumbDownImage(), m_Slider->GetCurrentThumb());
    // Moving over another window with the button up ends the hover and lets go.
    ::SendMessageW(Slider(), WM_MOUSEMOVE, 0, At(300, 100));
    EXPECT_FALSE(m_Slider->IsHovering());
    EXPECT_NE(Slider(), ::GetCapture());
    EXPECT_EQ(m_Slider->GetThumbImage(), m_Slider->GetCurrentThumb());
}

TEST_F(SliderMessages, LosingTheCaptureEndsTheHover)
{
    ASSERT_NE(nullptr, Make());
    mirltest::PointerAt(Slider(), 20, 10);
    ::SendMessageW(Slider(), WM_MOUSEMOVE, 0, At(20, 10));
    ASSERT_TRUE(m_Slider->IsHovering());
    ::SetCapture(m_Owner.hwnd());
    EXPECT_FALSE(m_Slider->IsHovering());
    ::ReleaseCapture();
    ::SendMessageW(Slider(), WM_CANCELMODE, 0, 0);
    EXPECT_FALSE(m_Slider->IsActive());
}

TEST_F(SliderMessages, DisabledAfterCreationKeepsTheNormalBackground)
{
    ASSERT_NE(nullptr, Make());
    ::EnableWindow(Slider(), FALSE);
    EXPECT_FALSE(m_Slider->IsCreatedDisabled());
    EXPECT_EQ(m_Slider->GetBackgroundImage(), m_Slider->GetPaintedBackground());
    // Only WS_DISABLED at creation picks the disabled background; the disabled thumb never shows.
    MirlSlider disabled;
    ASSERT_NE(nullptr, disabled.Create(nullptr, m_Owner.hwnd(), static_cast<LPRECT>(nullptr), L"SliderDisabled"));
    EXPECT_TRUE(disabled.IsCreatedDisabled());
    EXPECT_EQ(disabled.GetDisabledBackgroundImage(), disabled.GetPaintedBackground());
    EXPECT_EQ(disabled.GetThumbImage(), disabled.GetCurrentThumb());
    disabled.DestroyWindow();
}

TEST_F(SliderMessages, SixteenPixelsWideDoesNotDivideByZero)
{
    ASSERT_NE(nullptr, Make(L"SliderSixteen"));
    ::SendMessageW(Slider(), WM_LBUTTONDOWN, MK_LBUTTON, At(15, 10));
    std::vector<WPARAM> notes = Notes();
    ASSERT_EQ(1u, notes.size());
    EXPECT_EQ(0, m_Slider->GetPos());
    EXPECT_EQ(8, m_Slider->GetTrackPos());
}

TEST_F(SliderMessages, DestroyedInTheMiddleOfADragTheCaptureIsReleased)
{
    ASSERT_NE(nullptr, Make());
    ::SendMessageW(Slider(), WM_LBUTTONDOWN, MK_LBUTTON, At(30, 10));
    EXPECT_EQ(Slider(), ::GetCapture());
    m_Slider->DestroyWindow();
    EXPECT_EQ(nullptr, ::GetCapture());
    EXPECT_EQ(nullptr, m_Slider->GetThumbImage());
    m_Sequence.Clear();
    mirltest::FlushMessages(150);
    EXPECT_TRUE(Notes().empty());
}

TEST(SliderLeaks, DraggedAndDestroyedSlidersLeaveNoGrowth)
{
    mirltest::MessageSequence sequence;
    mirltest::RangeOwner owner(sequence);
    auto cycle = [&]() {
        for (int i = 0; i < 40; ++i) {
            std::unique_ptr<MirlSlider> slider(new MirlSlider());
            ASSERT_NE(nullptr, slider->Create(nullptr, owner.hwnd(), static_cast<LPRECT>(nullptr), L"Slider"));
            mirltest::RenderWindow(slider->m_hWnd);
            ::SendMessageW(slider->m_hWnd, WM_LBUTTONDOWN, MK_LBUTTON, At(30, 10));
            ::SendMessageW(slider->m_hWnd, WM_MOUSEMOVE, MK_LBUTTON, At(40, 10));
            slider->DestroyWindow();
        }
        mirltest::FlushMessages(50);
        sequence.Clear();
    };
    cycle();
    const size_t heapBefore = mirltest::BusyHeapBytes();
    const int gdiBefore = mirltest::LiveGdiObjects();
    cycle();
    cycle();
    EXPECT_EQ(gdiBefore, mirltest::LiveGdiObjects());
    EXPECT_LT(static_cast<long long>(mirltest::BusyHeapBytes()) - static_cast<long long>(heapBefore), 1024);
    EXPECT_EQ(nullptr, ::GetCapture());
}

} // namespace
