#include "MirlRangeTestSupport.h"

#include "MirlLeakCounters.h"
#include "MirlPixelTest.h"

namespace {

::testing::Environment *const g_Mirl =
    ::testing::AddGlobalTestEnvironment(new mirltest::RangeSkinEnvironment(L"ranges"));

// The colours of tests/fixtures/make_range_fixture.py.
const DWORD kBackLeft = 0x282828;
const DWORD kBackMid = 0xC8C8C8;
const DWORD kBackRight = 0x787878;
const DWORD kFillMid = 0xE6DC00;
DWORD FillLeft(int column) { return static_cast<DWORD>(100 + 25 * column) << 8; }
DWORD FillRight(int column) { return static_cast<DWORD>(100 + 25 * column); }

class ProgressBarTest : public mirltest::RangeFrameTest {
protected:
    void SetUp() override
    {
        mirltest::RangeFrameTest::SetUp();
        m_Bar = Control<MirlProgressBar>(101);
        ASSERT_NE(nullptr, m_Bar);
    }
    LRESULT SystemPos() const { return ::SendMessageW(m_Bar->m_hWnd, PBM_GETPOS, 0, 0); }

    MirlProgressBar *m_Bar = nullptr;
    mirltest::GdiplusSession m_Gdiplus;
};

} // namespace

TEST_F(ProgressBarTest, TheFactoryMakesASuperclassOfTheSystemProgressBar)
{
    EXPECT_EQ(L"MirlWindowImpl", ClassOf(m_Bar->m_hWnd));
    RECT client = {};
    ::GetClientRect(m_Bar->m_hWnd, &client);
    EXPECT_EQ(102, client.right);
    EXPECT_EQ(12, client.bottom);
}

TEST_F(ProgressBarTest, TheSystemControlSawItsOwnCreation)
{
    // A system progress bar that missed WM_CREATE answers 0 to everything.
    EXPECT_EQ(100, ::SendMessageW(m_Bar->m_hWnd, PBM_GETRANGE, FALSE, 0));
    EXPECT_EQ(10, ::SendMessageW(m_Bar->m_hWnd, PBM_GETSTEP, 0, 0));
}

TEST_F(ProgressBarTest, TheCacheHoldsOneToAHundredUntilTheFirstSetter)
{
    EXPECT_EQ(1, m_Bar->GetShownMin());
    EXPECT_EQ(100, m_Bar->GetShownMax());
    EXPECT_EQ(0, m_Bar->GetShownPos());
    m_Bar->SetRange(0, 50);
    EXPECT_EQ(0, m_Bar->GetShownMin());
    EXPECT_EQ(50, m_Bar->GetShownMax());
}

TEST_F(ProgressBarTest, SettersAnswerTheFormerPositionAndReadTheNewOneBack)
{
    m_Bar->SetRange(0, 100);
    EXPECT_EQ(0, m_Bar->SetPos(30));
    EXPECT_EQ(30, m_Bar->GetShownPos());
    EXPECT_EQ(30, m_Bar->OffsetPos(5));
    EXPECT_EQ(35, m_Bar->GetShownPos());
    EXPECT_EQ(35, m_Bar->StepIt());
    EXPECT_EQ(45, m_Bar->GetShownPos());
    EXPECT_EQ(45, SystemPos());
}

TEST_F(ProgressBarTest, SetPosAnswersSixteenBitsEvenAfterSetRange32)
{
    m_Bar->SetRange32(0, 100000);
    EXPECT_EQ(0, m_Bar->GetShownMin());
    EXPECT_EQ(100000, m_Bar->GetShownMax());
    m_Bar->SetPos(70000);
    EXPECT_EQ(70000, m_Bar->GetShownPos());
    // 70000 is 0x11170: the low word 0x1170 is 4464.
    EXPECT_EQ(4464, m_Bar->SetPos(5));
    m_Bar->SetPos(40000);
    // 40000 is 0x9C40: as a signed 16-bit value, -25536.
    EXPECT_EQ(-25536, m_Bar->SetPos(0));
}

TEST_F(ProgressBarTest, ThePositionMessageSharingTheLibrarysNumberReachesTheSystem)
{
    static_assert(PBM_SETPOS == WM_MIRL_DELETE_MEMORY_DC, "the two messages share a number");
    ::SendMessageW(m_Bar->m_hWnd, PBM_SETPOS, 40, 0);
    EXPECT_EQ(40, SystemPos());
    // Sent around the class, it isn't painted until a setter reads it back.
    EXPECT_EQ(0, m_Bar->GetShownPos());
}

TEST_F(ProgressBarTest, DroppingThePicturesOnAResizeKeepsThePosition)
{
    m_Bar->SetPos(30);
    RECT client = {};
    m_Frame.GetClientRect(&client);
    ::SendMessageW(m_Frame.m_hWnd, WM_SIZE, SIZE_RESTORED, MAKELPARAM(client.right, client.bottom));
    m_Bar->DeleteAllMemory();
    EXPECT_EQ(30, SystemPos());
    EXPECT_EQ(30, m_Bar->GetShownPos());
}

TEST_F(ProgressBarTest, TheFillCountsFromZeroNotFromTheMinimum)
{
    m_Bar->SetRange(10, 20);
    m_Bar->SetPos(15);
    // 100 inner pixels, and half as many again.
    EXPECT_EQ(150, m_Bar->GetFillLength());
    mirltest::Dib picture = mirltest::RenderWindow(m_Bar->m_hWnd);
    // Left end at 1 to 6, then the middle's first column to the client's edge: the right end is
    // out of sight.
    EXPECT_EQ(FillLeft(0), picture.Pixel(1, 1));
    EXPECT_EQ(FillLeft(5), picture.Pixel(6, 10));
    EXPECT_EQ(kFillMid, picture.Pixel(7, 5));
    EXPECT_EQ(kFillMid, picture.Pixel(101, 5));
    EXPECT_EQ(kBackLeft, picture.Pixel(0, 0));
    EXPECT_EQ(kBackLeft, picture.Pixel(0, 11));
    EXPECT_EQ(kBackRight, picture.Pixel(101, 11));
    EXPECT_TRUE(mirltest::MatchesGolden(picture, "progress_overfull"));
}

TEST_F(ProgressBarTest, AShortFillDrawsTheTwoEndsCutWithTheJoinInTheMiddle)
{
    m_Bar->SetRange(0, 100);
    m_Bar->SetPos(9);
    EXPECT_EQ(9, m_Bar->GetFillLength());
    mirltest::Dib picture = mirltest::RenderWindow(m_Bar->m_hWnd);
    // The left 4 columns of the left end, then the last 5 of the right end.
    for (int column = 0; column < 4; ++column) {
        EXPECT_EQ(FillLeft(column), picture.Pixel(1 + column, 1)) << column;
    }
    for (int column = 1; column < 6; ++column) {
        EXPECT_EQ(FillRight(column), picture.Pixel(4 + column, 10)) << column;
    }
    EXPECT_EQ(kBackMid, picture.Pixel(10, 5));
    EXPECT_EQ(kBackLeft, picture.Pixel(3, 11));
    EXPECT_TRUE(mirltest::MatchesGolden(picture, "progress_cut"));
}

TEST_F(ProgressBarTest, AFillOfOneGivesTheRightEndsLastColumnOnly)
{
    m_Bar->SetRange(0, 100);
    m_Bar->SetPos(1);
    EXPECT_EQ(1, m_Bar->GetFillLength());
    mirltest::Dib picture = mirltest::RenderWindow(m_Bar->m_hWnd);
    EXPECT_EQ(FillRight(5), picture.Pixel(1, 1));
    EXPECT_EQ(FillRight(5), picture.Pixel(1, 10));
    EXPECT_EQ(kBackLeft, picture.Pixel(2, 1));
}

TEST_F(ProgressBarTest, AnEmptyFillShowsTheBackgroundThreeSlices)
{
    m_Bar->SetRange(0, 100);
    m_Bar->SetPos(0);
    mirltest::Dib picture = mirltest::RenderWindow(m_Bar->m_hWnd);
    EXPECT_EQ(kBackLeft, picture.Pixel(3, 6));
    EXPECT_EQ(kBackMid, picture.Pixel(4, 6));
    EXPECT_EQ(kBackMid, picture.Pixel(97, 6));
    EXPECT_EQ(kBackRight, picture.Pixel(98, 6));
    EXPECT_EQ(kBackRight, picture.Pixel(101, 6));
    EXPECT_TRUE(mirltest::MatchesGolden(picture, "progress_empty"));
}

TEST_F(ProgressBarTest, AnEmptyRangeDrawsNoFill)
{
    m_Bar->SetRange32(5, 5);
    m_Bar->SetPos(5);
    EXPECT_EQ(m_Bar->GetShownMin(), m_Bar->GetShownMax());
    EXPECT_EQ(0, m_Bar->GetFillLength());
    mirltest::Dib picture = mirltest::RenderWindow(m_Bar->m_hWnd);
    EXPECT_EQ(kBackMid, picture.Pixel(10, 5));
    EXPECT_EQ(kBackLeft, picture.Pixel(1, 1));
}

TEST_F(ProgressBarTest, OnSetPosShowsWParamWithoutAskingTheSystem)
{
    BOOL handled = TRUE;
    EXPECT_EQ(0, m_Bar->OnSetPos(PBM_SETPOS, 60, 0, handled));
    EXPECT_EQ(60, m_Bar->GetShownPos());
    EXPECT_EQ(0, SystemPos());
}

TEST(ProgressBarLeaks, CreateAndDestroyCyclesDoNotGrow)
{
    mirltest::GdiplusSession gdiplus;
    auto cycle = [] {
        for (int i = 0; i < 50; ++i) {
            MirlWindow frame;
            ASSERT_NE(nullptr, frame.Create(nullptr, nullptr, static_cast<LPRECT>(nullptr), L"Ranges"));
            MirlProgressBar *bar = dynamic_cast<MirlProgressBar *>(frame.GetWindowItem(101UL));
            ASSERT_NE(nullptr, bar);
            bar->SetPos(50);
            mirltest::RenderWindow(bar->m_hWnd);
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

TEST_F(ProgressBarTest, AnotherBarTakingTheWindowOverKeepsItsRangeAndPosition)
{
    m_Bar->SetRange32(0, 500);
    m_Bar->SetPos(321);
    MirlProgressBar other;
    ASSERT_TRUE(other.SubclassWindow(m_Bar, &m_Frame));
    EXPECT_EQ(500, ::SendMessageW(other.m_hWnd, PBM_GETRANGE, FALSE, 0));
    EXPECT_EQ(321, ::SendMessageW(other.m_hWnd, PBM_GETPOS, 0, 0));
    EXPECT_EQ(321, other.SetPos(10));
    other.UnsubclassWindow();
}
