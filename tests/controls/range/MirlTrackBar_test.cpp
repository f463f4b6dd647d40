#include "MirlRangeTestSupport.h"

#include "MirlLeakCounters.h"
#include "MirlPixelTest.h"
#include "controls/range/MirlRangeLogic.h"

#include <cstdlib>
#include <memory>

namespace {

::testing::Environment *const g_Mirl =
    ::testing::AddGlobalTestEnvironment(new mirltest::RangeSkinEnvironment(L"ranges"));

// The colours of tests/fixtures/make_range_fixture.py.
const DWORD kThumb = 0xFF8000;
const DWORD kGlow = 0xFF00FF;
const DWORD kBand = 0x1E3CC8;
const DWORD kRed = 0xFF0000;
const DWORD kPaper = 0xF0F0E8;

int Count(const mirltest::Dib &picture, DWORD colour)
{
    int count = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            count += picture.Pixel(x, y) == colour ? 1 : 0;
        }
    }
    return count;
}

class TrackBarTest : public mirltest::RangeFrameTest {
protected:
    void SetUp() override
    {
        mirltest::RangeFrameTest::SetUp();
        m_Track = Control<MirlTrackBar>(201);
        ASSERT_NE(nullptr, m_Track);
    }
    RECT ThumbRect(HWND track) const
    {
        RECT rect = {};
        ::SendMessageW(track, TBM_GETTHUMBRECT, 0, reinterpret_cast<LPARAM>(&rect));
        return rect;
    }
    RECT ChannelRect(HWND track) const
    {
        RECT rect = {};
        ::SendMessageW(track, TBM_GETCHANNELRECT, 0, reinterpret_cast<LPARAM>(&rect));
        return rect;
    }
    // A second track bar of the same template under the frame, with a style of the test's.
    std::unique_ptr<MirlTrackBar> Another(DWORD style)
    {
        std::unique_ptr<MirlTrackBar> track(new MirlTrackBar());
        RECT place = {10, 100, 210, 130};
        EXPECT_NE(nullptr, track->Create(&m_Frame, m_Frame.m_hWnd, &place, L"Track", style));
        return track;
    }

    MirlTrackBar *m_Track = nullptr;
    mirltest::GdiplusSession m_Gdiplus;
};

} // namespace

TEST_F(TrackBarTest, TheFactoryMakesASuperclassNamedTrackbar)
{
    EXPECT_EQ(L"TRACKBAR", ClassOf(m_Track->m_hWnd));
}

TEST_F(TrackBarTest, TheSystemControlSawItsOwnCreationAndAnswersItsRangeMaximum)
{
    static_assert(TBM_GETRANGEMAX == WM_MIRL_DELETE_MEMORY_DC, "the two messages share a number");
    // The system's range starts at 0 to 100; a control that missed WM_CREATE answers 0.
    EXPECT_EQ(100, ::SendMessageW(m_Track->m_hWnd, TBM_GETRANGEMAX, 0, 0));
    m_Track->SetRange(0, 50);
    EXPECT_EQ(50, m_Track->GetRangeMax());
    m_Track->SetPos(20);
    EXPECT_EQ(20, m_Track->GetPos());
}

TEST_F(TrackBarTest, LoadsTheThreeImagesTheGlowAmongThem)
{
    ASSERT_NE(nullptr, m_Track->GetThumbBitmap());
    ASSERT_NE(nullptr, m_Track->GetThumbGlowBitmap());
    ASSERT_NE(nullptr, m_Track->GetChannelBitmap());
    EXPECT_EQ(11u, m_Track->GetThumbBitmap()->GetWidth());
    EXPECT_EQ(20u, m_Track->GetThumbGlowBitmap()->GetHeight());
    EXPECT_EQ(40u, m_Track->GetChannelBitmap()->GetWidth());
}

TEST_F(TrackBarTest, DrawsTheChannelBandAndTheThumbButNeverTheGlow)
{
    m_Track->SetRange(0, 100);
    m_Track->SetPos(50);
    mirltest::Dib picture = mirltest::RenderWindow(m_Track->m_hWnd);
    const RECT thumb = ThumbRect(m_Track->m_hWnd);
    const RECT channel = ChannelRect(m_Track->m_hWnd);
    ASSERT_LT(20, thumb.bottom - thumb.top) << "the system's thumb must be taller than the image here";
    // The thumb stands centred in the system's rectangle, at its natural size.
    const int top = thumb.top + (thumb.bottom - 20 - thumb.top) / 2;
    EXPECT_EQ(kThumb, picture.Pixel(thumb.left, top));
    EXPECT_EQ(kThumb, picture.Pixel(thumb.left + 10, top + 19));
    EXPECT_NE(kThumb, picture.Pixel(thumb.left + 11, top + 10));
    EXPECT_EQ(11 * 20, Count(picture, kThumb));
    // The channel is the image's band of four rows, stretched into the system's channel.
    EXPECT_EQ(kBand, picture.Pixel(channel.left, (channel.top + channel.bottom) / 2));
    EXPECT_EQ(0, Count(picture, kRed));
    EXPECT_EQ(0, Count(picture, kGlow));
    // Around them, the parent's picture.
    EXPECT_EQ(kPaper, picture.Pixel(1, 1));
    EXPECT_TRUE(mirltest::MatchesGolden(picture, "trackbar"));
}

TEST_F(TrackBarTest, WithoutAThumbTheChannelAloneIsDrawn)
{
    std::unique_ptr<MirlTrackBar> track = Another(WS_CHILD | WS_VISIBLE | TBS_NOTHUMB);
    mirltest::Dib picture = mirltest::RenderWindow(track->m_hWnd);
    const RECT channel = ChannelRect(track->m_hWnd);
    EXPECT_EQ(kBand, picture.Pixel((channel.left + channel.right) / 2, (channel.top + channel.bottom) / 2));
    EXPECT_EQ(0, Count(picture, kThumb));
    EXPECT_EQ(0, Count(picture, kGlow));
    EXPECT_TRUE(mirltest::MatchesGolden(picture, "trackbar_no_thumb"));
    track->DestroyWindow();
}

TEST_F(TrackBarTest, AThumbImageTallerThanTheSystemsRectangleLandsOutOfSight)
{
    std::unique_ptr<MirlTrackBar> track = Another(WS_CHILD | WS_VISIBLE | TBS_FIXEDLENGTH);
    ::SendMessageW(track->m_hWnd, TBM_SETTHUMBLENGTH, 12, 0);
    track->SetPos(50);
    const RECT thumb = ThumbRect(track->m_hWnd);
    ASSERT_GT(20, thumb.bottom - thumb.top);
    // The centring halves the unsigned difference: the image goes some two thousand million
    // pixels away, and nothing of it is drawn.
    EXPECT_GT(std::llabs(static_cast<long long>(MIRL::TrackThumbTop(thumb, 20)) - thumb.top), 2000000000LL);
    mirltest::Dib picture = mirltest::RenderWindow(track->m_hWnd);
    EXPECT_EQ(0, Count(picture, kThumb));
    const RECT channel = ChannelRect(track->m_hWnd);
    EXPECT_EQ(kBand, picture.Pixel(channel.left + 2, (channel.top + channel.bottom) / 2));
    EXPECT_TRUE(mirltest::MatchesGolden(picture, "trackbar_tall_thumb"));
    track->DestroyWindow();
}

TEST_F(TrackBarTest, TheCustomDrawAnswersByStage)
{
    NMCUSTOMDRAW draw = {};
    EXPECT_EQ(static_cast<DWORD>(CDRF_NOTIFYITEMDRAW), m_Track->OnPrePaint(201, &draw));
    draw.dwItemSpec = TBCD_TICS;
    EXPECT_EQ(static_cast<DWORD>(CDRF_DODEFAULT), m_Track->OnItemPrePaint(201, &draw));
}

TEST(TrackBarLeaks, CreateAndDestroyCyclesDoNotGrow)
{
    mirltest::GdiplusSession gdiplus;
    auto cycle = [] {
        for (int i = 0; i < 50; ++i) {
            MirlWindow frame;
            ASSERT_NE(nullptr, frame.Create(nullptr, nullptr, static_cast<LPRECT>(nullptr), L"Ranges"));
            MirlTrackBar *track = dynamic_cast<MirlTrackBar *>(frame.GetWindowItem(201UL));
            ASSERT_NE(nullptr, track);
            mirltest::RenderWindow(track->m_hWnd);
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
