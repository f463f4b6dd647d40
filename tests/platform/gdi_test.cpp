// WTL GDI wrappers: ownership of the managed forms, painting operations read back pixel by
// pixel, CPaintDC, CClientDC and CMemoryDC.
#include "AtlTestSupport.h"

#include <gtest/gtest.h>

#include <type_traits>
#include <utility>

using atltest::Canvas;
using atltest::Rgb;
using WTL::CRect;

namespace {

static_assert(!std::is_copy_constructible<WTL::CDC>::value, "an owning DC must not be copied");
static_assert(std::is_copy_constructible<WTL::CDCHandle>::value, "a DC handle copies");
static_assert(!std::is_copy_constructible<WTL::CFont>::value, "an owning font must not be copied");
static_assert(std::is_move_constructible<WTL::CFont>::value, "an owning font moves");
static_assert(std::is_copy_assignable<WTL::CBrushHandle>::value, "a brush handle copies");

TEST(GdiOwnershipTest, ManagedDcIsDeletedAtTheEndOfItsScope)
{
    HDC hDC = nullptr;
    {
        WTL::CDC dc;
        hDC = dc.CreateCompatibleDC();
        ASSERT_NE(nullptr, hDC);
        EXPECT_EQ(static_cast<DWORD>(OBJ_MEMDC), GetObjectType(hDC));
    }
    EXPECT_EQ(0u, GetObjectType(hDC));
}

TEST(GdiOwnershipTest, DcHandleLeavesTheDcAlive)
{
    HDC hDC = CreateCompatibleDC(nullptr);
    {
        WTL::CDCHandle dc(hDC);
        WTL::CDCHandle copy = dc;
        EXPECT_EQ(hDC, static_cast<HDC>(copy));
    }
    EXPECT_EQ(static_cast<DWORD>(OBJ_MEMDC), GetObjectType(hDC));
    DeleteDC(hDC);
}

TEST(GdiOwnershipTest, AttachReplacesAndDetachReleases)
{
    HDC first = CreateCompatibleDC(nullptr);
    HDC second = CreateCompatibleDC(nullptr);
    HDC kept = nullptr;
    {
        WTL::CDC dc(first);
        dc.Attach(second); // the first one is deleted
        EXPECT_EQ(0u, GetObjectType(first));
        kept = dc.Detach();
        EXPECT_TRUE(dc.IsNull());
    }
    EXPECT_EQ(second, kept);
    EXPECT_EQ(static_cast<DWORD>(OBJ_MEMDC), GetObjectType(kept));
    DeleteDC(kept);
}

TEST(GdiOwnershipTest, MovedOwnerTakesTheHandleAlong)
{
    WTL::CBrush a;
    HBRUSH brush = a.CreateSolidBrush(RGB(1, 2, 3));
    WTL::CBrush b(std::move(a));
    EXPECT_TRUE(a.IsNull());
    EXPECT_EQ(brush, static_cast<HBRUSH>(b));
    WTL::CBrush c;
    c = std::move(b);
    EXPECT_TRUE(b.IsNull());
    EXPECT_EQ(brush, c.m_hBrush);
    EXPECT_EQ(static_cast<DWORD>(OBJ_BRUSH), GetObjectType(brush));
}

TEST(GdiOwnershipTest, ManagedObjectsDeleteTheirHandles)
{
    HPEN pen;
    HBRUSH brush;
    HFONT font;
    HBITMAP bitmap;
    HRGN rgn;
    {
        WTL::CPen p;
        WTL::CBrush b;
        WTL::CFont f;
        WTL::CBitmap bm;
        WTL::CRgn r;
        pen = p.CreatePen(PS_SOLID, 1, RGB(0, 0, 0));
        brush = b.CreateSolidBrush(RGB(0, 0, 0));
        font = f.CreateFont(-12, 0, 0, 0, FW_NORMAL, 0, 0, 0, DEFAULT_CHARSET, 0, 0, 0, 0, L"Tahoma");
        HDC screen = GetDC(nullptr);
        bitmap = bm.CreateCompatibleBitmap(screen, 4, 4);
        ReleaseDC(nullptr, screen);
        rgn = r.CreateRectRgn(0, 0, 1, 1);
        EXPECT_EQ(static_cast<DWORD>(OBJ_PEN), GetObjectType(pen));
        EXPECT_EQ(static_cast<DWORD>(OBJ_BRUSH), GetObjectType(brush));
        EXPECT_EQ(static_cast<DWORD>(OBJ_FONT), GetObjectType(font));
        EXPECT_EQ(static_cast<DWORD>(OBJ_BITMAP), GetObjectType(bitmap));
        EXPECT_EQ(static_cast<DWORD>(OBJ_REGION), GetObjectType(rgn));
    }
    EXPECT_EQ(0u, GetObjectType(pen));
    EXPECT_EQ(0u, GetObjectType(brush));
    EXPECT_EQ(0u, GetObjectType(font));
    EXPECT_EQ(0u, GetObjectType(bitmap));
    EXPECT_EQ(0u, GetObjectType(rgn));
}

TEST(GdiOwnershipTest, HandleFormsKeepTheirObjects)
{
    HBRUSH brush = CreateSolidBrush(RGB(9, 9, 9));
    HFONT font = CreateFontW(-12, 0, 0, 0, FW_NORMAL, 0, 0, 0, DEFAULT_CHARSET, 0, 0, 0, 0, L"Tahoma");
    {
        WTL::CBrushHandle b(brush);
        WTL::CFontHandle f = font;
        (void)b;
        (void)f;
    }
    EXPECT_EQ(static_cast<DWORD>(OBJ_BRUSH), GetObjectType(brush));
    EXPECT_EQ(static_cast<DWORD>(OBJ_FONT), GetObjectType(font));
    DeleteObject(brush);
    DeleteObject(font);
}

// A font passed by value into an owning parameter is deleted when the call ends.
HFONT g_fontInside = nullptr;
void TakeFont(WTL::CFontT<true> font)
{
    g_fontInside = font;
}

TEST(GdiOwnershipTest, OwningParameterDeletesTheFontAfterTheCall)
{
    HFONT font = CreateFontW(-12, 0, 0, 0, FW_NORMAL, 0, 0, 0, DEFAULT_CHARSET, 0, 0, 0, 0, L"Tahoma");
    TakeFont(font);
    EXPECT_EQ(font, g_fontInside);
    EXPECT_EQ(0u, GetObjectType(font));
}

TEST(GdiOwnershipTest, NoObjectIsLeftBehind)
{
    const int before = atltest::CountGdiObjects();
    for (int i = 0; i < 20; ++i) {
        Canvas canvas(8, 8);
        WTL::CBrush brush;
        brush.CreateSolidBrush(RGB(i, 0, 0));
        WTL::CFont font;
        font.CreateFont(-12, 0, 0, 0, FW_NORMAL, 0, 0, 0, DEFAULT_CHARSET, 0, 0, 0, 0, L"Tahoma");
        WTL::CRgn rgn;
        rgn.CreateRectRgn(0, 0, 3, 3);
        WTL::CMemoryDC mem(canvas.dc(), CRect(1, 1, 5, 5));
        mem.FillRect(CRect(1, 1, 5, 5), brush);
    }
    EXPECT_EQ(before, atltest::CountGdiObjects());
}

TEST(GdiObjectTest, FontDescribesItself)
{
    WTL::CFont font;
    LOGFONTW lf = {};
    lf.lfHeight = -13;
    lf.lfWeight = FW_BOLD;
    lf.lfItalic = TRUE;
    lstrcpyW(lf.lfFaceName, L"Tahoma");
    ASSERT_NE(nullptr, font.CreateFontIndirect(&lf));
    LOGFONTW back = {};
    EXPECT_TRUE(font.GetLogFont(back));
    EXPECT_EQ(-13, back.lfHeight);
    EXPECT_EQ(FW_BOLD, back.lfWeight);
    EXPECT_EQ(TRUE, back.lfItalic);
    EXPECT_STREQ(L"Tahoma", back.lfFaceName);
}

TEST(GdiObjectTest, BitmapSizeAndBrushColour)
{
    Canvas canvas(2, 2);
    WTL::CBitmap bitmap;
    ASSERT_NE(nullptr, bitmap.CreateCompatibleBitmap(canvas.dc(), 7, 5));
    SIZE size = {};
    EXPECT_TRUE(bitmap.GetSize(size));
    EXPECT_EQ(7, size.cx);
    EXPECT_EQ(5, size.cy);

    WTL::CBrush brush;
    brush.CreateSolidBrush(RGB(10, 20, 30));
    LOGBRUSH lb = {};
    EXPECT_EQ(static_cast<int>(sizeof(LOGBRUSH)), brush.GetLogBrush(&lb));
    EXPECT_EQ(RGB(10, 20, 30), lb.lbColor);
    EXPECT_EQ(static_cast<UINT>(BS_SOLID), lb.lbStyle);
}

TEST(GdiObjectTest, RegionOperations)
{
    WTL::CRgn a;
    a.CreateRectRgn(0, 0, 10, 10);
    WTL::CRgn b;
    b.CreateRectRgn(5, 5, 20, 15);
    EXPECT_EQ(COMPLEXREGION, a.CombineRgn(b, RGN_OR));
    CRect box;
    EXPECT_EQ(COMPLEXREGION, a.GetRgnBox(&box));
    EXPECT_EQ(CRect(0, 0, 20, 15), box);
    EXPECT_TRUE(a.PtInRegion(19, 14));
    EXPECT_FALSE(a.PtInRegion(19, 2));
    EXPECT_EQ(SIMPLEREGION, a.CombineRgn(a, b, RGN_AND));
    a.GetRgnBox(&box);
    EXPECT_EQ(CRect(5, 5, 20, 15), box);
    a.OffsetRgn(1, 2);
    a.GetRgnBox(&box);
    EXPECT_EQ(CRect(6, 7, 21, 17), box);
}

// Painting, read back with GetDIBits.

TEST(DcPaintTest, FillSolidRectPaintsExactlyTheRectangleAndKeepsTheBackgroundColour)
{
    Canvas canvas(10, 8, RGB(255, 255, 255));
    WTL::CDCHandle dc(canvas.dc());
    dc.SetBkColor(RGB(1, 2, 3));
    dc.FillSolidRect(2, 3, 4, 2, RGB(255, 0, 0));
    EXPECT_EQ(RGB(1, 2, 3), dc.GetBkColor());
    const auto px = canvas.Pixels();
    for (int y = 0; y < 8; ++y) {
        for (int x = 0; x < 10; ++x) {
            const bool inside = x >= 2 && x < 6 && y >= 3 && y < 5;
            EXPECT_EQ(inside ? Rgb(255, 0, 0) : Rgb(255, 255, 255), px[y * 10 + x]) << "at " << x << "," << y;
        }
    }
}

TEST(DcPaintTest, FillRectWithABrushAndWithASystemColour)
{
    Canvas canvas(6, 6, RGB(0, 0, 0));
    WTL::CDCHandle dc(canvas.dc());
    WTL::CBrush brush;
    brush.CreateSolidBrush(RGB(0, 128, 255));
    EXPECT_TRUE(dc.FillRect(CRect(0, 0, 3, 3), brush));
    EXPECT_EQ(Rgb(0, 128, 255), canvas.Pixel(2, 2));
    EXPECT_EQ(Rgb(0, 0, 0), canvas.Pixel(3, 3));

    const COLORREF window = GetSysColor(COLOR_WINDOW);
    EXPECT_TRUE(dc.FillRect(CRect(3, 3, 6, 6), COLOR_WINDOW));
    EXPECT_EQ(Rgb(GetRValue(window), GetGValue(window), GetBValue(window)), canvas.Pixel(4, 4));
}

TEST(DcPaintTest, SelectAnswersThePreviousObject)
{
    Canvas canvas(4, 4);
    WTL::CDCHandle dc(canvas.dc());
    WTL::CBrush brush;
    brush.CreateSolidBrush(RGB(7, 8, 9));
    HBRUSH old = dc.SelectBrush(brush);
    EXPECT_EQ(brush.m_hBrush, dc.GetCurrentBrush().m_hBrush);
    EXPECT_EQ(brush.m_hBrush, static_cast<HBRUSH>(dc.SelectObject(old)));
    EXPECT_EQ(old, dc.GetCurrentBrush().m_hBrush);
    HPEN oldPen = dc.SelectStockPen(NULL_PEN);
    EXPECT_EQ(GetStockObject(NULL_PEN), dc.GetCurrentPen().m_hPen);
    dc.SelectPen(oldPen);
}

TEST(DcPaintTest, PatBltUsesTheSelectedBrush)
{
    Canvas canvas(5, 5, RGB(255, 255, 255));
    WTL::CDCHandle dc(canvas.dc());
    WTL::CBrush brush;
    brush.CreateSolidBrush(RGB(0, 255, 0));
    HBRUSH old = dc.SelectBrush(brush);
    EXPECT_TRUE(dc.PatBlt(1, 1, 2, 2));
    dc.SelectBrush(old);
    EXPECT_EQ(Rgb(0, 255, 0), canvas.Pixel(1, 1));
    EXPECT_EQ(Rgb(0, 255, 0), canvas.Pixel(2, 2));
    EXPECT_EQ(Rgb(255, 255, 255), canvas.Pixel(3, 3));
}

TEST(DcPaintTest, SaveAndRestoreState)
{
    Canvas canvas(4, 4);
    WTL::CDCHandle dc(canvas.dc());
    dc.SetTextColor(RGB(1, 1, 1));
    EXPECT_EQ(OPAQUE, dc.SetBkMode(TRANSPARENT));
    const int saved = dc.SaveDC();
    EXPECT_NE(0, saved);
    EXPECT_EQ(RGB(1, 1, 1), dc.SetTextColor(RGB(2, 2, 2)));
    dc.SetBkMode(OPAQUE);
    EXPECT_TRUE(dc.RestoreDC(saved));
    EXPECT_EQ(RGB(1, 1, 1), dc.GetTextColor());
    EXPECT_EQ(TRANSPARENT, dc.GetBkMode());
}

TEST(DcPaintTest, ClipBoxFollowsTheClipping)
{
    Canvas canvas(40, 30);
    WTL::CDCHandle dc(canvas.dc());
    CRect box;
    EXPECT_EQ(SIMPLEREGION, dc.GetClipBox(&box));
    EXPECT_EQ(CRect(0, 0, 40, 30), box);
    EXPECT_EQ(SIMPLEREGION, dc.IntersectClipRect(5, 6, 10, 12));
    dc.GetClipBox(&box);
    EXPECT_EQ(CRect(5, 6, 10, 12), box);
    dc.FillSolidRect(0, 0, 40, 30, RGB(0, 0, 0));
    EXPECT_EQ(Rgb(255, 255, 255), canvas.Pixel(4, 6));
    EXPECT_EQ(Rgb(0, 0, 0), canvas.Pixel(5, 6));
    EXPECT_EQ(SIMPLEREGION, dc.SelectClipRgn(nullptr)); // clipping removed
    dc.GetClipBox(&box);
    EXPECT_EQ(CRect(0, 0, 40, 30), box);
}

TEST(DcPaintTest, ViewportOriginMovesTheDrawing)
{
    Canvas canvas(10, 10, RGB(255, 255, 255));
    WTL::CDCHandle dc(canvas.dc());
    POINT old = {-1, -1};
    EXPECT_TRUE(dc.SetViewportOrg(3, 4, &old));
    EXPECT_EQ(0, old.x);
    EXPECT_EQ(0, old.y);
    dc.FillSolidRect(0, 0, 2, 2, RGB(0, 0, 255));
    EXPECT_EQ(Rgb(0, 0, 255), canvas.Pixel(3, 4));
    EXPECT_EQ(Rgb(0, 0, 255), canvas.Pixel(4, 5));
    EXPECT_EQ(Rgb(255, 255, 255), canvas.Pixel(2, 4));
    POINT now = {};
    dc.GetViewportOrg(&now);
    EXPECT_EQ(3, now.x);
    EXPECT_EQ(4, now.y);
}

TEST(DcPaintTest, BitBltAndStretchBltCopyPixels)
{
    Canvas source(4, 4, RGB(255, 0, 0));
    SetPixel(source.dc(), 0, 0, RGB(0, 0, 255));
    Canvas target(8, 8, RGB(255, 255, 255));
    WTL::CDCHandle dc(target.dc());
    EXPECT_TRUE(dc.BitBlt(2, 2, 2, 2, source.dc(), 0, 0, SRCCOPY));
    EXPECT_EQ(Rgb(0, 0, 255), target.Pixel(2, 2));
    EXPECT_EQ(Rgb(255, 0, 0), target.Pixel(3, 3));
    EXPECT_EQ(Rgb(255, 255, 255), target.Pixel(4, 4));

    dc.SetStretchBltMode(COLORONCOLOR);
    EXPECT_TRUE(dc.StretchBlt(0, 4, 4, 4, source.dc(), 0, 0, 2, 2, SRCCOPY));
    EXPECT_EQ(Rgb(0, 0, 255), target.Pixel(1, 5));
    EXPECT_EQ(Rgb(255, 0, 0), target.Pixel(2, 6));
}

TEST(DcPaintTest, PixelsAndFrames)
{
    Canvas canvas(6, 6, RGB(255, 255, 255));
    WTL::CDCHandle dc(canvas.dc());
    dc.SetPixel(5, 5, RGB(9, 8, 7));
    EXPECT_EQ(RGB(9, 8, 7), dc.GetPixel(5, 5));

    dc.Draw3dRect(CRect(0, 0, 4, 4), RGB(255, 0, 0), RGB(0, 0, 255));
    EXPECT_EQ(Rgb(255, 0, 0), canvas.Pixel(0, 0));
    EXPECT_EQ(Rgb(255, 0, 0), canvas.Pixel(2, 0));
    EXPECT_EQ(Rgb(255, 0, 0), canvas.Pixel(0, 2));
    EXPECT_EQ(Rgb(0, 0, 255), canvas.Pixel(3, 0));
    EXPECT_EQ(Rgb(0, 0, 255), canvas.Pixel(3, 3));
    EXPECT_EQ(Rgb(0, 0, 255), canvas.Pixel(0, 3));
    EXPECT_EQ(Rgb(255, 255, 255), canvas.Pixel(1, 1));
}

TEST(DcPaintTest, TextIsDrawnInTheTextColour)
{
    Canvas canvas(60, 30, RGB(255, 255, 255));
    WTL::CDCHandle dc(canvas.dc());
    dc.SetTextColor(RGB(0, 0, 0));
    dc.SetBkMode(TRANSPARENT);
    EXPECT_TRUE(dc.TextOut(2, 2, L"WWW"));
    SIZE extent = {};
    EXPECT_TRUE(dc.GetTextExtent(L"WWW", -1, &extent));
    EXPECT_GT(extent.cx, 0);
    int dark = 0;
    for (DWORD p : canvas.Pixels())
        dark += p == Rgb(0, 0, 0) ? 1 : 0;
    EXPECT_GT(dark, 0);
}

// Device contexts of windows.

class PaintProbe : public ATL::CWindowImpl<PaintProbe, ATL::CWindow, ATL::CWinTraits<WS_POPUP | WS_VISIBLE, 0>> {
public:
    CRect m_rcPaint;
    int m_paints = 0;
    BEGIN_MSG_MAP(PaintProbe)
        MESSAGE_HANDLER(WM_PAINT, OnPaint)
        MESSAGE_HANDLER(WM_ERASEBKGND, OnErase)
    END_MSG_MAP()
    LRESULT OnPaint(UINT, WPARAM, LPARAM, BOOL &)
    {
        WTL::CPaintDC dc(m_hWnd);
        m_rcPaint = dc.m_ps.rcPaint;
        ++m_paints;
        return 0;
    }
    LRESULT OnErase(UINT, WPARAM, LPARAM, BOOL &) { return 1; }
};

TEST(WindowDcTest, PaintDcCoversTheUpdateRectangleAndValidatesIt)
{
    PaintProbe w;
    CRect rc(0, 0, 100, 80);
    ASSERT_NE(nullptr, w.Create(nullptr, rc));
    w.UpdateWindow();
    w.m_paints = 0;
    CRect part(10, 20, 30, 40);
    w.InvalidateRect(&part, FALSE);
    w.UpdateWindow();
    EXPECT_EQ(1, w.m_paints);
    EXPECT_EQ(part, w.m_rcPaint);
    CRect update;
    EXPECT_FALSE(w.GetUpdateRect(&update));
    w.DestroyWindow();
}

TEST(WindowDcTest, ClientAndWindowDcsBelongToTheWindow)
{
    PaintProbe w;
    CRect rc(0, 0, 50, 40);
    ASSERT_NE(nullptr, w.Create(nullptr, rc));
    const int before = atltest::CountGdiObjects();
    for (int i = 0; i < 10; ++i) {
        WTL::CClientDC client(w);
        EXPECT_EQ(w.m_hWnd, client.WindowFromDC());
        WTL::CWindowDC window(w);
        EXPECT_EQ(w.m_hWnd, window.WindowFromDC());
    }
    EXPECT_EQ(before, atltest::CountGdiObjects());
    w.DestroyWindow();
}

TEST(MemoryDcTest, DrawingLandsOnTheOriginalOnlyWhenTheMemoryDcEnds)
{
    Canvas canvas(20, 20, RGB(0, 0, 0));
    {
        WTL::CMemoryDC mem(canvas.dc(), CRect(5, 5, 15, 15));
        // Logical coordinates are those of the original.
        mem.FillSolidRect(CRect(0, 0, 20, 20), RGB(255, 0, 0));
        mem.SetPixel(14, 14, RGB(0, 255, 0));
        EXPECT_EQ(Rgb(0, 0, 0), canvas.Pixel(6, 6));
    }
    EXPECT_EQ(Rgb(255, 0, 0), canvas.Pixel(5, 5));
    EXPECT_EQ(Rgb(255, 0, 0), canvas.Pixel(13, 13));
    EXPECT_EQ(Rgb(0, 255, 0), canvas.Pixel(14, 14));
    EXPECT_EQ(Rgb(0, 0, 0), canvas.Pixel(4, 4));
    EXPECT_EQ(Rgb(0, 0, 0), canvas.Pixel(15, 15));
    EXPECT_EQ(Rgb(0, 0, 0), canvas.Pixel(15, 5));
}

TEST(MemoryDcTest, MemoryDcIsAnOffscreenDcOfTheRectanglesSize)
{
    Canvas canvas(20, 20);
    WTL::CMemoryDC mem(canvas.dc(), CRect(2, 3, 9, 7));
    EXPECT_NE(canvas.dc(), mem.m_hDC);
    EXPECT_EQ(static_cast<DWORD>(OBJ_MEMDC), GetObjectType(mem.m_hDC));
    SIZE size = {};
    EXPECT_TRUE(mem.GetCurrentBitmap().GetSize(size));
    EXPECT_EQ(7, size.cx);
    EXPECT_EQ(4, size.cy);
    POINT origin = {};
    mem.GetViewportOrg(&origin);
    EXPECT_EQ(-2, origin.x);
    EXPECT_EQ(-3, origin.y);
}

} // namespace
