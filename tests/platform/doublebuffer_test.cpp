// WTL::CDoubleBufferImpl: WM_ERASEBKGND answers 1, and WM_PAINT (with or without a DC) and
// WM_PRINTCLIENT all paint through DoPaint into an off-screen DC copied to the target.
#include "AtlTestSupport.h"

#include <gtest/gtest.h>

using atltest::Canvas;
using atltest::Rgb;
using WTL::CRect;

namespace {

// Fills its client blue, with a red pixel at the top left and a green one at the bottom right.
class Buffered : public ATL::CWindowImpl<Buffered, ATL::CWindow, ATL::CWinTraits<WS_POPUP | WS_VISIBLE, 0>>,
                 public WTL::CDoubleBufferImpl<Buffered> {
public:
    DECLARE_WND_CLASS(L"AtlTestBuffered")

    int m_paints = 0;
    HDC m_lastDc = nullptr;
    DWORD m_lastDcType = 0;
    POINT m_lastOrigin = {};
    SIZE m_lastBitmapSize = {};
    int m_ownPaints = 0;

    BEGIN_MSG_MAP(Buffered)
        MESSAGE_HANDLER(WM_PAINT, OnOwnPaint)
        CHAIN_MSG_MAP(WTL::CDoubleBufferImpl<Buffered>)
    END_MSG_MAP()

    // Looks first, as a control's own map would, then leaves the message to the double buffer.
    LRESULT OnOwnPaint(UINT, WPARAM, LPARAM, BOOL &bHandled)
    {
        ++m_ownPaints;
        bHandled = FALSE;
        return 0;
    }

    void DoPaint(WTL::CDCHandle dc)
    {
        ++m_paints;
        m_lastDc = dc;
        m_lastDcType = GetObjectType(dc);
        dc.GetViewportOrg(&m_lastOrigin);
        dc.GetCurrentBitmap().GetSize(m_lastBitmapSize);
        CRect rc;
        GetClientRect(&rc);
        dc.FillSolidRect(&rc, RGB(0, 0, 255));
        dc.SetPixel(0, 0, RGB(255, 0, 0));
        dc.SetPixel(rc.right - 1, rc.bottom - 1, RGB(0, 255, 0));
    }
};

class DoubleBufferTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        CRect rc(0, 0, 30, 20);
        ASSERT_NE(nullptr, w.Create(nullptr, rc));
        w.UpdateWindow();
        w.m_paints = 0;
        w.m_ownPaints = 0;
    }
    void TearDown() override
    {
        if (w.IsWindow())
            w.DestroyWindow();
    }

    void ExpectPicture(const Canvas &canvas)
    {
        const auto px = canvas.Pixels();
        for (int y = 0; y < canvas.height(); ++y) {
            for (int x = 0; x < canvas.width(); ++x) {
                DWORD expected = Rgb(255, 255, 255); // outside the client: untouched
                if (x < 30 && y < 20)
                    expected = Rgb(0, 0, 255);
                if (x == 0 && y == 0)
                    expected = Rgb(255, 0, 0);
                if (x == 29 && y == 19)
                    expected = Rgb(0, 255, 0);
                ASSERT_EQ(expected, px[y * canvas.width() + x]) << "at " << x << "," << y;
            }
        }
    }
    Buffered w;
};

TEST_F(DoubleBufferTest, EraseBackgroundAnswersOneAndDrawsNothing)
{
    Canvas canvas(30, 20, RGB(255, 255, 255));
    EXPECT_EQ(1, w.SendMessage(WM_ERASEBKGND, reinterpret_cast<WPARAM>(canvas.dc())));
    EXPECT_EQ(0, w.m_paints);
    EXPECT_EQ(Rgb(255, 255, 255), canvas.Pixel(5, 5));
}

TEST_F(DoubleBufferTest, PrintClientPaintsTheClientIntoTheGivenDc)
{
    Canvas canvas(40, 25, RGB(255, 255, 255));
    EXPECT_EQ(0, w.SendMessage(WM_PRINTCLIENT, reinterpret_cast<WPARAM>(canvas.dc()), PRF_CLIENT));
    EXPECT_EQ(1, w.m_paints);
    ExpectPicture(canvas);
}

TEST_F(DoubleBufferTest, DoPaintDrawsIntoAnOffscreenDcOfTheClientSize)
{
    Canvas canvas(30, 20);
    w.SendMessage(WM_PRINTCLIENT, reinterpret_cast<WPARAM>(canvas.dc()), PRF_CLIENT);
    EXPECT_NE(canvas.dc(), w.m_lastDc);
    EXPECT_EQ(static_cast<DWORD>(OBJ_MEMDC), w.m_lastDcType);
    EXPECT_EQ(30, w.m_lastBitmapSize.cx);
    EXPECT_EQ(20, w.m_lastBitmapSize.cy);
    EXPECT_EQ(0, w.m_lastOrigin.x);
    EXPECT_EQ(0, w.m_lastOrigin.y);
    EXPECT_EQ(0u, GetObjectType(w.m_lastDc)); // gone once the paint is over
}

TEST_F(DoubleBufferTest, PaintWithADcPaintsThereAndLeavesTheWindowInvalid)
{
    w.Invalidate(FALSE);
    Canvas canvas(40, 25, RGB(255, 255, 255));
    EXPECT_EQ(0, w.SendMessage(WM_PAINT, reinterpret_cast<WPARAM>(canvas.dc())));
    EXPECT_EQ(1, w.m_paints);
    EXPECT_EQ(1, w.m_ownPaints);
    ExpectPicture(canvas);
    CRect update;
    EXPECT_TRUE(w.GetUpdateRect(&update));
}

TEST_F(DoubleBufferTest, PaintWithoutADcPaintsTheUpdateRectangleAndValidatesIt)
{
    CRect part(4, 3, 10, 9);
    w.InvalidateRect(&part, FALSE);
    w.UpdateWindow();
    EXPECT_EQ(1, w.m_paints);
    EXPECT_EQ(1, w.m_ownPaints);
    EXPECT_EQ(-4, w.m_lastOrigin.x);
    EXPECT_EQ(-3, w.m_lastOrigin.y);
    EXPECT_EQ(6, w.m_lastBitmapSize.cx);
    EXPECT_EQ(6, w.m_lastBitmapSize.cy);
    CRect update;
    EXPECT_FALSE(w.GetUpdateRect(&update));
}

TEST_F(DoubleBufferTest, RepeatedPaintingLeavesNoObjectBehind)
{
    Canvas canvas(30, 20);
    const int before = atltest::CountGdiObjects();
    for (int i = 0; i < 30; ++i) {
        w.SendMessage(WM_PRINTCLIENT, reinterpret_cast<WPARAM>(canvas.dc()), PRF_CLIENT);
        w.Invalidate(FALSE);
        w.UpdateWindow();
    }
    EXPECT_EQ(60, w.m_paints);
    EXPECT_EQ(before, atltest::CountGdiObjects());
}

} // namespace
