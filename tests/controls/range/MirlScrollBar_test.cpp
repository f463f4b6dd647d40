// MirlScrollBar on live windows under the range fixture: presses, repeats, drags and releases
// through real messages, what the owner receives, and every way out of a press.
//
// The bar of template "Bar" is 16 x 200 with arrows of 20: up 0-20, track 20-180, down 180-200.
// With 0..99, a page of 10: thumb length 18, drawn at 50; largest position 89.
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

SCROLLINFO Info(int nMin, int nMax, UINT nPage, int nPos)
{
    SCROLLINFO info = {};
    info.cbSize = sizeof(info);
    info.fMask = SIF_ALL;
    info.nMin = nMin;
    info.nMax = nMax;
    info.nPage = nPage;
    info.nPos = nPos;
    return info;
}

class ScrollBarMessages : public ::testing::Test {
protected:
    ScrollBarMessages() : m_Owner(m_Sequence) {}

    void SetUp() override
    {
        mirltest::ParkCursor();
        ASSERT_TRUE(mirltest::Activate(m_Owner.hwnd()));
        m_Bar.reset(new MirlScrollBar());
        ASSERT_NE(nullptr, m_Bar->Create(nullptr, m_Owner.hwnd(), static_cast<LPRECT>(nullptr), L"Bar"));
        SCROLLINFO info = Info(0, 99, 10, 0);
        m_Bar->SetScrollInfo(&info);
        // The owner scrolls as a real one does: by line, by page and to the thumb's position.
        m_Owner.m_React = [this](UINT message, WPARAM wParam, LPARAM) {
            if (message != WM_VSCROLL || !m_Follow || !::IsWindow(m_Bar->m_hWnd)) {
                return;
            }
            int pos = m_Bar->GetScrollPos();
            switch (LOWORD(wParam)) {
            case SB_LINEUP: pos -= 1; break;
            case SB_LINEDOWN: pos += 1; break;
            case SB_PAGEUP: pos -= 10; break;
            case SB_PAGEDOWN: pos += 10; break;
            case SB_THUMBPOSITION: pos = HIWORD(wParam); break;
            default: return;
            }
            m_Bar->SetScrollPos(pos < 0 ? 0 : pos);
        };
        mirltest::FlushMessages();
        m_Sequence.Clear();
    }

    void TearDown() override
    {
        if (m_Bar && ::IsWindow(m_Bar->m_hWnd)) {
            m_Bar->DestroyWindow();
        }
        ::ReleaseCapture();
        mirltest::ParkCursor();
    }

    HWND Bar() const { return m_Bar->m_hWnd; }
    LPARAM Self() const { return reinterpret_cast<LPARAM>(m_Bar->m_hWnd); }
    std::vector<WPARAM> Scrolls() const { return m_Owner.Received(WM_VSCROLL); }

    // A press held at a point: the pointer stands there too.
    void Press(int x, int y)
    {
        mirltest::PointerAt(Bar(), x, y);
        ::SendMessageW(Bar(), WM_LBUTTONDOWN, MK_LBUTTON, At(x, y));
    }
    void Release(int x, int y) { ::SendMessageW(Bar(), WM_LBUTTONUP, 0, At(x, y)); }

    mirltest::MessageSequence m_Sequence;
    mirltest::RangeOwner m_Owner;
    std::unique_ptr<MirlScrollBar> m_Bar;
    bool m_Follow = true;
};

TEST_F(ScrollBarMessages, SetScrollInfoComputesTheThumbAndTheLargestPosition)
{
    EXPECT_EQ(18, m_Bar->GetThumbLength());
    EXPECT_EQ(89, m_Bar->GetMaxPos());
    EXPECT_EQ(m_Owner.hwnd(), m_Bar->GetNotifyWindow());
    const RECT thumb = m_Bar->GetThumbRect();
    EXPECT_EQ(10, thumb.top);
    EXPECT_EQ(60, thumb.bottom);
    SCROLLINFO copy = {};
    copy.fMask = SIF_POS; // whatever it asks for, all seven words come back
    EXPECT_EQ(1, m_Bar->GetScrollInfo(&copy));
    EXPECT_EQ(99, copy.nMax);
    EXPECT_EQ(10u, copy.nPage);
    EXPECT_EQ(static_cast<UINT>(SIF_ALL), copy.fMask);
}

TEST_F(ScrollBarMessages, LineDownRepeatsEveryHundredMillisecondsUntilTheRelease)
{
    Press(5, 195);
    std::vector<WPARAM> first = Scrolls();
    ASSERT_EQ(1u, first.size());
    EXPECT_EQ(static_cast<WPARAM>(SB_LINEDOWN), first[0]);
    EXPECT_EQ(Self(), m_Owner.ReceivedLParams(WM_VSCROLL)[0]);
    EXPECT_TRUE(m_Bar->IsRepeating());
    EXPECT_EQ(Bar(), ::GetCapture());

    mirltest::FlushMessages(450);
    Release(5, 195);
    std::vector<WPARAM> all = Scrolls();
    ASSERT_GE(all.size(), 4u);
    EXPECT_LE(all.size(), 8u);
    for (size_t i = 0; i + 1 < all.size(); ++i) {
        EXPECT_EQ(static_cast<WPARAM>(SB_LINEDOWN), all[i]) << i;
    }
    EXPECT_EQ(static_cast<WPARAM>(SB_ENDSCROLL), all.back());
    EXPECT_EQ(static_cast<int>(all.size()) - 1, m_Bar->GetScrollPos());
    EXPECT_FALSE(m_Bar->IsRepeating());
    EXPECT_NE(Bar(), ::GetCapture());

    // Nothing repeats after the release.
    m_Sequence.Clear();
    mirltest::FlushMessages(300);
    EXPECT_TRUE(Scrolls().empty());
}

TEST_F(ScrollBarMessages, PageDownRepeatsUntilTheThumbReachesTheMouse)
{
    // The thumb moves by ten positions a page; at 80 it covers y 126-176, and the mouse at 170.
    Press(5, 170);
    mirltest::FlushMessages(1500);
    Release(5, 170);
    std::vector<WPARAM> all = Scrolls();
    ASSERT_EQ(9u, all.size());
    for (size_t i = 0; i < 8; ++i) {
        EXPECT_EQ(static_cast<WPARAM>(SB_PAGEDOWN), all[i]) << i;
    }
    EXPECT_EQ(static_cast<WPARAM>(SB_ENDSCROLL), all[8]);
    EXPECT_EQ(80, m_Bar->GetScrollPos());
    EXPECT_EQ(126, m_Bar->GetThumbRect().top);
}

TEST_F(ScrollBarMessages, PageUpAboveTheThumb)
{
    m_Bar->SetScrollPos(89);
    Press(5, 40);
    Release(5, 40);
    std::vector<WPARAM> all = Scrolls();
    ASSERT_EQ(2u, all.size());
    EXPECT_EQ(static_cast<WPARAM>(SB_PAGEUP), all[0]);
    EXPECT_EQ(static_cast<WPARAM>(SB_ENDSCROLL), all[1]);
}

TEST_F(ScrollBarMessages, PressOnTheInnerTenPixelsOfAnArrowPagesInsteadOfStepping)
{
    m_Follow = false;
    m_Bar->SetScrollPos(89);
    Press(5, 15);
    Release(5, 15);
    std::vector<WPARAM> up = Scrolls();
    ASSERT_EQ(2u, up.size());
    EXPECT_EQ(static_cast<WPARAM>(SB_PAGEUP), up[0]);
    m_Sequence.Clear();

    // Unless the thumb stands there: at position 0 it covers 10-60, and a press at 15 drags it.
    m_Bar->SetScrollPos(0);
    Press(5, 15);
    EXPECT_EQ(MirlScrollBar::ClickThumb, m_Bar->GetClickPart());
    Release(5, 15);
    std::vector<WPARAM> thumb = Scrolls();
    ASSERT_EQ(2u, thumb.size());
    EXPECT_EQ(static_cast<WPARAM>(SB_THUMBPOSITION), thumb[0]);
    EXPECT_EQ(static_cast<WPARAM>(SB_ENDSCROLL), thumb[1]);
}

TEST_F(ScrollBarMessages, HeldUpArrowAtTheStartKeepsSendingButStopsRepainting)
{
    m_Follow = false;
    mirltest::ControlRecorder spy(Bar(), m_Sequence);
    auto paints = [this]() {
        size_t count = 0;
        for (const mirltest::RecordedMessage &m : m_Sequence.Messages()) {
            count += m.message == WM_PAINT && (m.flags & mirltest::kControl) != 0 ? 1 : 0;
        }
        return count;
    };
    Press(5, 5);
    mirltest::FlushMessages();
    m_Sequence.Record(WM_PAINT);
    m_Sequence.Clear();
    mirltest::FlushMessages(350);
    EXPECT_EQ(0u, paints());
    Release(5, 5);
    std::vector<WPARAM> all = Scrolls();
    ASSERT_GE(all.size(), 3u);
    for (size_t i = 0; i + 1 < all.size(); ++i) {
        EXPECT_EQ(static_cast<WPARAM>(SB_LINEUP), all[i]) << i;
    }
    EXPECT_EQ(static_cast<WPARAM>(SB_ENDSCROLL), all.back());
    EXPECT_EQ(0, m_Bar->GetScrollPos());

    // Away from the start each repeat repaints.
    m_Bar->SetScrollPos(5);
    Press(5, 5);
    mirltest::FlushMessages();
    m_Sequence.Clear();
    mirltest::FlushMessages(350);
    EXPECT_GE(paints(), 2u);
    Release(5, 5);
}

TEST_F(ScrollBarMessages, LineRepeatPausesWhileTheMouseIsOffTheArrow)
{
    m_Follow = false;
    Press(5, 195);
    // The mouse leaves the arrow with the button held: the ticks send nothing.
    mirltest::PointerAt(Bar(), 5, 100);
    ::SendMessageW(Bar(), WM_MOUSEMOVE, MK_LBUTTON, At(5, 100));
    m_Sequence.Clear();
    mirltest::FlushMessages(350);
    EXPECT_TRUE(Scrolls().empty());
    // Back on the arrow, it resumes.
    mirltest::PointerAt(Bar(), 5, 195);
    ::SendMessageW(Bar(), WM_MOUSEMOVE, MK_LBUTTON, At(5, 195));
    mirltest::FlushMessages(350);
    EXPECT_GE(Scrolls().size(), 2u);
    Release(5, 195);
}

TEST_F(ScrollBarMessages, DoubleClickOnAnArrowGivesTwoLineSteps)
{
    m_Follow = false;
    mirltest::PointerAt(Bar(), 5, 195);
    ::SendMessageW(Bar(), WM_LBUTTONDOWN, MK_LBUTTON, At(5, 195));
    ::SendMessageW(Bar(), WM_LBUTTONUP, 0, At(5, 195));
    ::SendMessageW(Bar(), WM_LBUTTONDBLCLK, MK_LBUTTON, At(5, 195));
    ::SendMessageW(Bar(), WM_LBUTTONUP, 0, At(5, 195));
    static const ExpectedMessage steps[] = {
        {WM_VSCROLL, kParent | kWParam, SB_LINEDOWN, 0}, {WM_VSCROLL, kParent | kWParam, SB_ENDSCROLL, 0},
        {WM_VSCROLL, kParent | kWParam, SB_LINEDOWN, 0}, {WM_VSCROLL, kParent | kWParam, SB_ENDSCROLL, 0},
        {0, 0, 0, 0}};
    mirltest::MessageSequence &seq = m_Sequence;
    // Only what the parent got from the bar counts here.
    std::vector<mirltest::RecordedMessage> kept;
    for (const mirltest::RecordedMessage &m : seq.Messages()) {
        if (m.message == WM_VSCROLL) {
            kept.push_back(m);
        }
    }
    seq.Clear();
    for (const mirltest::RecordedMessage &m : kept) {
        seq.Add(m.hwnd, m.message, m.wParam, m.lParam, m.flags);
    }
    EXPECT_MESSAGES(seq, steps, "double click on the down arrow");
    EXPECT_FALSE(m_Bar->IsRepeating());
}

TEST_F(ScrollBarMessages, ThumbDragSendsEachStepAndOnceMoreOnRelease)
{
    // Press 20 pixels into the thumb: nothing is sent, and no timer runs.
    Press(5, 30);
    EXPECT_TRUE(Scrolls().empty());
    EXPECT_FALSE(m_Bar->IsRepeating());
    EXPECT_EQ(MirlScrollBar::DrawThumbPressed, m_Bar->GetDrawPart());
    // Top 75: MulDiv(65, 89, 130) = 44.5, rounded to 45.
    mirltest::PointerAt(Bar(), 5, 95);
    ::SendMessageW(Bar(), WM_MOUSEMOVE, MK_LBUTTON, At(5, 95));
    EXPECT_EQ(75, m_Bar->GetThumbTop());
    EXPECT_EQ(45, m_Bar->GetScrollPos());
    Release(5, 95);
    std::vector<WPARAM> all = Scrolls();
    ASSERT_EQ(3u, all.size());
    EXPECT_EQ(static_cast<WPARAM>(0x002D0004), all[0]);
    EXPECT_EQ(static_cast<WPARAM>(0x002D0004), all[1]);
    EXPECT_EQ(static_cast<WPARAM>(SB_ENDSCROLL), all[2]);
    EXPECT_NE(Bar(), ::GetCapture());
}

TEST_F(ScrollBarMessages, DragStepPastTheLastPageIsDroppedButTheTopIsKept)
{
    // With nMin -20 positions reach 109, and nPage + pos passes nMax from 90 on.
    SCROLLINFO info = Info(-20, 99, 10, 0);
    m_Bar->SetScrollInfo(&info);
    EXPECT_EQ(109, m_Bar->GetMaxPos());
    Press(5, 30);
    // Top 130: MulDiv(120, 109, 130) = 100.6, rounded to 101; 10 + 101 is above 99.
    mirltest::PointerAt(Bar(), 5, 150);
    ::SendMessageW(Bar(), WM_MOUSEMOVE, MK_LBUTTON, At(5, 150));
    EXPECT_TRUE(Scrolls().empty());
    EXPECT_EQ(130, m_Bar->GetThumbTop());
    EXPECT_EQ(0, m_Bar->GetScrollPos());
    Release(5, 150);
    // The release drops its position too, and ends the scroll.
    std::vector<WPARAM> all = Scrolls();
    ASSERT_EQ(1u, all.size());
    EXPECT_EQ(static_cast<WPARAM>(SB_ENDSCROLL), all[0]);
}

TEST_F(ScrollBarMessages, DragBeyondTheTrackStopsTheThumbUntilTheMouseReturns)
{
    Press(5, 30);
    // 231 is more than 10 pixels below the track's end (180): no step.
    mirltest::PointerAt(Bar(), 5, 231);
    ::SendMessageW(Bar(), WM_MOUSEMOVE, MK_LBUTTON, At(5, 231));
    EXPECT_EQ(10, m_Bar->GetThumbTop());
    EXPECT_TRUE(Scrolls().empty());
    EXPECT_EQ(MirlScrollBar::ClickThumb, m_Bar->GetClickPart());
    // 190 is within reach again: top 170 is held at the last top, 140, the largest position.
    mirltest::PointerAt(Bar(), 5, 190);
    ::SendMessageW(Bar(), WM_MOUSEMOVE, MK_LBUTTON, At(5, 190));
    EXPECT_EQ(140, m_Bar->GetThumbTop());
    std::vector<WPARAM> all = Scrolls();
    ASSERT_EQ(1u, all.size());
    EXPECT_EQ(static_cast<WPARAM>(0x00590004), all[0]);
    Release(5, 190);
}

TEST_F(ScrollBarMessages, SetScrollPosKeepsNegativesClampsAboveAndDoesNotRepaint)
{
    ::ValidateRect(Bar(), nullptr);
    EXPECT_EQ(0, m_Bar->SetScrollPos(-5));
    EXPECT_EQ(-5, m_Bar->GetScrollPos());
    EXPECT_EQ(-5, m_Bar->SetScrollPos(500));
    EXPECT_EQ(89, m_Bar->GetScrollPos());
    EXPECT_FALSE(mirltest::HasUpdate(Bar()));
    EXPECT_TRUE(Scrolls().empty());
}

TEST_F(ScrollBarMessages, DisabledBarStillTakesClicksAndNotifies)
{
    ::EnableWindow(Bar(), FALSE);
    m_Follow = false;
    ::SendMessageW(Bar(), WM_LBUTTONDOWN, MK_LBUTTON, At(5, 195));
    ::SendMessageW(Bar(), WM_LBUTTONUP, 0, At(5, 195));
    std::vector<WPARAM> all = Scrolls();
    ASSERT_EQ(2u, all.size());
    EXPECT_EQ(static_cast<WPARAM>(SB_LINEDOWN), all[0]);
    EXPECT_EQ(static_cast<WPARAM>(SB_ENDSCROLL), all[1]);
}

TEST_F(ScrollBarMessages, ResizeKeepsTheThumbLengthAndScalesShortBars)
{
    ::SetWindowPos(Bar(), nullptr, 0, 0, 16, 100, SWP_NOMOVE | SWP_NOZORDER);
    EXPECT_EQ(18, m_Bar->GetThumbLength());
    EXPECT_FLOAT_EQ(1.0f, m_Bar->GetScale());
    ::SetWindowPos(Bar(), nullptr, 0, 0, 16, 30, SWP_NOMOVE | SWP_NOZORDER);
    EXPECT_EQ(18, m_Bar->GetThumbLength());
    EXPECT_FLOAT_EQ(0.75f, m_Bar->GetScale());
    // The down arrow runs past the client bottom.
    EXPECT_EQ(19, m_Bar->GetDownArrowRect().top);
    EXPECT_EQ(34, m_Bar->GetDownArrowRect().bottom);
}

TEST_F(ScrollBarMessages, HoverFollowsTheMouseAndLeavingClearsIt)
{
    ::SendMessageW(Bar(), WM_MOUSEMOVE, 0, At(5, 30));
    EXPECT_EQ(MirlScrollBar::DrawThumbHot, m_Bar->GetDrawPart());
    ::SendMessageW(Bar(), WM_MOUSEMOVE, 0, At(5, 5));
    EXPECT_EQ(MirlScrollBar::DrawUpHot, m_Bar->GetDrawPart());
    ::SendMessageW(Bar(), WM_MOUSEMOVE, 0, At(5, 195));
    EXPECT_EQ(MirlScrollBar::DrawDownHot, m_Bar->GetDrawPart());
    ::SendMessageW(Bar(), WM_MOUSEMOVE, 0, At(5, 100));
    EXPECT_EQ(MirlScrollBar::DrawNormal, m_Bar->GetDrawPart());
    ::SendMessageW(Bar(), WM_MOUSEMOVE, 0, At(5, 195));
    ::SendMessageW(Bar(), WM_MOUSELEAVE, 0, 0);
    EXPECT_EQ(MirlScrollBar::DrawNormal, m_Bar->GetDrawPart());
    EXPECT_FALSE(m_Bar->IsMouseTracked());
}

TEST_F(ScrollBarMessages, DestroyedInTheMiddleOfARepeatNoTimerFiresAfterwards)
{
    m_Follow = false;
    Press(5, 195);
    EXPECT_TRUE(m_Bar->IsRepeating());
    m_Bar->DestroyWindow();
    EXPECT_FALSE(m_Bar->IsRepeating());
    EXPECT_EQ(nullptr, ::GetCapture());
    m_Sequence.Clear();
    mirltest::FlushMessages(350);
    EXPECT_TRUE(Scrolls().empty());
}

TEST_F(ScrollBarMessages, DestroyedInTheMiddleOfADragTheCaptureIsReleased)
{
    Press(5, 30);
    EXPECT_EQ(Bar(), ::GetCapture());
    m_Bar->DestroyWindow();
    EXPECT_EQ(nullptr, ::GetCapture());
    m_Sequence.Clear();
    mirltest::FlushMessages(200);
    EXPECT_TRUE(Scrolls().empty());
}

TEST_F(ScrollBarMessages, OwnerThatDestroysTheBarFromItsHandlerEndsThePress)
{
    m_Owner.m_React = [this](UINT message, WPARAM, LPARAM) {
        if (message == WM_VSCROLL && ::IsWindow(m_Bar->m_hWnd)) {
            m_Bar->DestroyWindow();
        }
    };
    Press(5, 195);
    EXPECT_FALSE(::IsWindow(Bar()));
    EXPECT_FALSE(m_Bar->IsRepeating());
    EXPECT_EQ(nullptr, ::GetCapture());
    m_Sequence.Clear();
    mirltest::FlushMessages(250);
    EXPECT_TRUE(Scrolls().empty());
}

TEST_F(ScrollBarMessages, DestroyedNotifyWindowStopsTheRepeat)
{
    // The bar learns its notify window at the first SetScrollInfo: here a window that is then
    // destroyed while the bar, moved to another parent, repeats.
    mirltest::MessageSequence first;
    std::unique_ptr<mirltest::RecordingParent> notify(new mirltest::RecordingParent(first));
    MirlScrollBar bar;
    ASSERT_NE(nullptr, bar.Create(nullptr, notify->hwnd(), static_cast<LPRECT>(nullptr), L"Bar"));
    SCROLLINFO info = Info(0, 99, 10, 0);
    bar.SetScrollInfo(&info);
    ASSERT_EQ(notify->hwnd(), bar.GetNotifyWindow());
    ::SetParent(bar.m_hWnd, m_Owner.hwnd());
    mirltest::PointerAt(bar.m_hWnd, 5, 195);
    ::SendMessageW(bar.m_hWnd, WM_LBUTTONDOWN, MK_LBUTTON, At(5, 195));
    EXPECT_EQ(1u, first.Count(WM_VSCROLL));
    EXPECT_TRUE(bar.IsRepeating());
    notify.reset();
    mirltest::FlushMessages(250);
    EXPECT_FALSE(bar.IsRepeating());
    // The press itself stays open until its release, as any press does.
    EXPECT_EQ(MirlScrollBar::ClickDown, bar.GetClickPart());
    ::SendMessageW(bar.m_hWnd, WM_LBUTTONUP, 0, At(5, 195));
    EXPECT_EQ(MirlScrollBar::ClickNone, bar.GetClickPart());
    EXPECT_NE(bar.m_hWnd, ::GetCapture());
    EXPECT_TRUE(Scrolls().empty());
    bar.DestroyWindow();
}

TEST(ScrollBarWithoutWindow, SetScrollInfoStoresNothing)
{
    MirlScrollBar bar;
    SCROLLINFO info = Info(0, 99, 10, 5);
    EXPECT_EQ(0, bar.SetScrollInfo(&info));
    SCROLLINFO copy = {};
    EXPECT_EQ(1, bar.GetScrollInfo(&copy));
    EXPECT_EQ(0, copy.nMax);
    EXPECT_EQ(0, bar.GetScrollPos());
    EXPECT_EQ(nullptr, bar.GetNotifyWindow());
    // All nineteen images came from the skin.
    for (int i = 0; i < MirlScrollBar::ImageCount; ++i) {
        EXPECT_NE(nullptr, bar.GetImage(i)) << i;
    }
}

TEST(ScrollBarLeaks, PressedAndDestroyedBarsLeaveNoGrowth)
{
    mirltest::MessageSequence sequence;
    mirltest::RangeOwner owner(sequence);
    auto cycle = [&]() {
        for (int i = 0; i < 40; ++i) {
            std::unique_ptr<MirlScrollBar> bar(new MirlScrollBar());
            ASSERT_NE(nullptr, bar->Create(nullptr, owner.hwnd(), static_cast<LPRECT>(nullptr), L"Bar"));
            SCROLLINFO info = Info(0, 99, 10, 0);
            bar->SetScrollInfo(&info);
            mirltest::RenderWindow(bar->m_hWnd);
            // Half of them in a repeat, half in a drag.
            ::SendMessageW(bar->m_hWnd, WM_LBUTTONDOWN, MK_LBUTTON, At(5, i % 2 == 0 ? 195 : 30));
            bar->DestroyWindow();
        }
        mirltest::FlushMessages(150);
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
