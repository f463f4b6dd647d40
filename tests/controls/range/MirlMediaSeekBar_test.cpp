// MirlMediaSeekBar on live windows under the range fixture: the 270-pixel track, jumps and drags
// through real messages, 0xBD0 to the parent in thousandths, and the tied play and pause buttons.
//
// The bar of template "Seek" is 300 x 20 with a thumb of 20 x 14: its centre runs from 10 to 260.
#include "MirlScrollTestSupport.h"
#include "MirlLeakCounters.h"
#include "MirlPixelTest.h"

#include <memory>

using mirltest::ExpectedMessage;
using mirltest::kLParam;
using mirltest::kParent;
using mirltest::kWParam;

namespace {

::testing::Environment *const g_Mirl = ::testing::AddGlobalTestEnvironment(new mirltest::SkinEnvironment(L"range"));

LPARAM At(int x, int y)
{
    return MAKELPARAM(x, y);
}

class SeekBarMessages : public ::testing::Test {
protected:
    SeekBarMessages() : m_Owner(m_Sequence) {}

    void SetUp() override
    {
        mirltest::ParkCursor();
        ASSERT_TRUE(mirltest::Activate(m_Owner.hwnd()));
        m_Bar.reset(new MirlMediaSeekBar());
        ASSERT_NE(nullptr, m_Bar->Create(nullptr, m_Owner.hwnd(), static_cast<LPRECT>(nullptr), L"Seek"));
        mirltest::FlushMessages();
        m_Sequence.Clear();
    }
    void TearDown() override
    {
        if (m_Bar && ::IsWindow(m_Bar->m_hWnd)) {
            m_Bar->DestroyWindow();
        }
        ::ReleaseCapture();
    }

    HWND Bar() const { return m_Bar->m_hWnd; }
    std::vector<WPARAM> Positions() const { return m_Owner.Received(WM_SEEK_POSITION); }

    mirltest::MessageSequence m_Sequence;
    mirltest::RangeOwner m_Owner;
    std::unique_ptr<MirlMediaSeekBar> m_Bar;
};

TEST_F(SeekBarMessages, TrackIs270PixelsWhateverTheWidth)
{
    const RECT track = m_Bar->GetTrackRect();
    EXPECT_EQ(0, track.left);
    EXPECT_EQ(270, track.right);
    EXPECT_EQ(20, track.bottom);
    RECT thumb = m_Bar->GetThumbRect();
    EXPECT_EQ(0, thumb.left);
    EXPECT_EQ(20, thumb.right);
    EXPECT_EQ(3, thumb.top);
    EXPECT_EQ(17, thumb.bottom);
    m_Bar->SetSeekPercent(1.0f);
    thumb = m_Bar->GetThumbRect();
    EXPECT_EQ(250, thumb.left);
    EXPECT_EQ(270, thumb.right);
    // The application's form tells the parent nothing.
    EXPECT_TRUE(Positions().empty());
}

TEST_F(SeekBarMessages, PressAtZeroIsTheStartAndAtTheFarEndTheFinish)
{
    m_Bar->SetSeekPercent(0.5f);
    ::SendMessageW(Bar(), WM_LBUTTONDOWN, MK_LBUTTON, At(0, 10));
    ::SendMessageW(Bar(), WM_LBUTTONUP, 0, At(0, 10));
    EXPECT_EQ(0.0f, m_Bar->GetSeekPercent());
    ::SendMessageW(Bar(), WM_LBUTTONDOWN, MK_LBUTTON, At(299, 10));
    ::SendMessageW(Bar(), WM_LBUTTONUP, 0, At(299, 10));
    EXPECT_EQ(1.0f, m_Bar->GetSeekPercent());
    static const ExpectedMessage both[] = {{WM_SEEK_POSITION, kParent | kWParam | kLParam, 0, 0},
                                           {WM_SEEK_POSITION, kParent | kWParam | kLParam, 1000, 0},
                                           {0, 0, 0, 0}};
    EXPECT_MESSAGES(m_Sequence, both, "presses at both ends");
}

TEST_F(SeekBarMessages, PressOnTheThumbsEdgePixelIsAJump)
{
    m_Bar->SetSeekPercent(0.5f); // thumb 125-145
    ::SendMessageW(Bar(), WM_LBUTTONDOWN, MK_LBUTTON, At(125, 10));
    EXPECT_FALSE(m_Bar->IsDragging());
    // (125 - 10) / 250 = 0.46.
    std::vector<WPARAM> positions = Positions();
    ASSERT_EQ(1u, positions.size());
    EXPECT_EQ(static_cast<WPARAM>(460), positions[0]);
    EXPECT_NE(Bar(), ::GetCapture());
    ::SendMessageW(Bar(), WM_LBUTTONUP, 0, At(125, 10));
    m_Sequence.Clear();

    m_Bar->SetSeekPercent(0.5f);
    ::SendMessageW(Bar(), WM_LBUTTONDOWN, MK_LBUTTON, At(145, 10));
    EXPECT_FALSE(m_Bar->IsDragging());
    ASSERT_EQ(1u, Positions().size());
    EXPECT_EQ(static_cast<WPARAM>(540), Positions()[0]);
}

TEST_F(SeekBarMessages, DragFromInsideTheThumbFollowsTheMouseUntilTheRelease)
{
    m_Bar->SetSeekPercent(0.5f);
    ::SendMessageW(Bar(), WM_LBUTTONDOWN, MK_LBUTTON, At(126, 10));
    EXPECT_TRUE(m_Bar->IsDragging());
    EXPECT_EQ(Bar(), ::GetCapture());
    EXPECT_TRUE(Positions().empty());
    EXPECT_EQ(0.5f, m_Bar->GetSeekPercent());
    // The centre follows the mouse: 200 is (200 - 10) / 250 = 0.76, which as a float is
    // 0.75999999: 759 thousandths.
    ::SendMessageW(Bar(), WM_MOUSEMOVE, MK_LBUTTON, At(200, 10));
    ::SendMessageW(Bar(), WM_MOUSEMOVE, MK_LBUTTON, At(-50, 10));
    ::SendMessageW(Bar(), WM_LBUTTONUP, 0, At(-50, 10));
    EXPECT_FALSE(m_Bar->IsDragging());
    EXPECT_NE(Bar(), ::GetCapture());
    std::vector<WPARAM> positions = Positions();
    ASSERT_EQ(2u, positions.size());
    EXPECT_EQ(static_cast<WPARAM>(759), positions[0]);
    EXPECT_EQ(static_cast<WPARAM>(0), positions[1]);
}

TEST_F(SeekBarMessages, MovingWithoutAButtonOrAfterAJumpDoesNothing)
{
    ::SendMessageW(Bar(), WM_MOUSEMOVE, 0, At(200, 10));
    EXPECT_TRUE(Positions().empty());
    ::SendMessageW(Bar(), WM_LBUTTONDOWN, MK_LBUTTON, At(135, 10)); // a jump to 0.5
    ASSERT_EQ(1u, Positions().size());
    ::SendMessageW(Bar(), WM_MOUSEMOVE, MK_LBUTTON, At(200, 10));
    EXPECT_EQ(1u, Positions().size());
    EXPECT_EQ(0.5f, m_Bar->GetSeekPercent());
}

TEST_F(SeekBarMessages, TiedButtonsShowOneAndHideTheOther)
{
    // Without tied buttons nothing happens.
    m_Bar->ShowControlButton(1);
    m_Bar->ShowControlButton(0);
    MirlButton play;
    MirlButton pause;
    ASSERT_NE(nullptr, play.Create(nullptr, m_Owner.hwnd(), static_cast<LPRECT>(nullptr), L"Play"));
    ASSERT_NE(nullptr, pause.Create(nullptr, m_Owner.hwnd(), static_cast<LPRECT>(nullptr), L"Pause"));
    m_Bar->SetAssociateButton(&play, &pause);
    m_Bar->ShowControlButton(1);
    EXPECT_TRUE(::IsWindowVisible(play.m_hWnd));
    EXPECT_FALSE(::IsWindowVisible(pause.m_hWnd));
    m_Bar->ShowControlButton(0);
    EXPECT_FALSE(::IsWindowVisible(play.m_hWnd));
    EXPECT_TRUE(::IsWindowVisible(pause.m_hWnd));
    // One button alone.
    m_Bar->SetAssociateButton(nullptr, &pause);
    m_Bar->ShowControlButton(1);
    EXPECT_FALSE(::IsWindowVisible(pause.m_hWnd));
    m_Bar->SetAssociateButton(nullptr, nullptr);
    play.DestroyWindow();
    pause.DestroyWindow();
}

TEST_F(SeekBarMessages, PercentOutsideTheTrackIsKeptAndAnExtremeOneDoesNotOverflow)
{
    m_Bar->SetSeekPercent(2.0f);
    EXPECT_EQ(500, m_Bar->GetThumbRect().left);
    m_Bar->SetSeekPercent(1e30f);
    EXPECT_EQ(INT_MAX, m_Bar->GetThumbRect().left);
    EXPECT_FALSE(mirltest::RenderWindow(Bar()).empty());
    m_Bar->SetSeekPercent(-1.0f);
    EXPECT_EQ(-250, m_Bar->GetThumbRect().left);
    EXPECT_TRUE(Positions().empty());
}

TEST_F(SeekBarMessages, DestroyedInTheMiddleOfADragTheCaptureIsReleased)
{
    ::SendMessageW(Bar(), WM_LBUTTONDOWN, MK_LBUTTON, At(10, 10));
    ASSERT_TRUE(m_Bar->IsDragging());
    EXPECT_EQ(Bar(), ::GetCapture());
    m_Bar->DestroyWindow();
    EXPECT_EQ(nullptr, ::GetCapture());
    EXPECT_FALSE(m_Bar->IsDragging());
}

TEST(SeekBarLeaks, DraggedAndDestroyedBarsLeaveNoGrowth)
{
    mirltest::MessageSequence sequence;
    mirltest::RangeOwner owner(sequence);
    auto cycle = [&]() {
        for (int i = 0; i < 40; ++i) {
            std::unique_ptr<MirlMediaSeekBar> bar(new MirlMediaSeekBar());
            ASSERT_NE(nullptr, bar->Create(nullptr, owner.hwnd(), static_cast<LPRECT>(nullptr), L"Seek"));
            mirltest::RenderWindow(bar->m_hWnd);
            ::SendMessageW(bar->m_hWnd, WM_LBUTTONDOWN, MK_LBUTTON, At(10, 10));
            ::SendMessageW(bar->m_hWnd, WM_MOUSEMOVE, MK_LBUTTON, At(40, 10));
            bar->DestroyWindow();
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
