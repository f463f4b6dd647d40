#include "controls/text/MirlPremultiplied.h"
#include "MirlPixelTest.h"
#include "MirlLeakCounters.h"

#include <gtest/gtest.h>

#include <memory>

namespace {

// A 48x32 ARGB image with every alpha from 0 to 255 and colours that differ in each channel,
// so that premultiplying and blending both round somewhere.
std::unique_ptr<Gdiplus::Bitmap> MakeImage()
{
    std::unique_ptr<Gdiplus::Bitmap> image(new Gdiplus::Bitmap(48, 32, PixelFormat32bppARGB));
    for (int y = 0; y < 32; ++y) {
        for (int x = 0; x < 48; ++x) {
            const int i = y * 48 + x;
            const Gdiplus::ARGB argb = (static_cast<Gdiplus::ARGB>(i % 256) << 24) |
                                       (static_cast<Gdiplus::ARGB>((i * 7) % 256) << 16) |
                                       (static_cast<Gdiplus::ARGB>((i * 13 + 5) % 256) << 8) |
                                       static_cast<Gdiplus::ARGB>((255 - i) & 0xFF);
            image->SetPixel(x, y, Gdiplus::Color(argb));
        }
    }
    return image;
}

// A background of many colours for the image to blend over.
mirltest::Dib MakeBackground()
{
    mirltest::Dib dib(80, 60);
    for (int y = 0; y < 60; ++y) {
        for (int x = 0; x < 80; ++x) {
            dib.SetPixel(x, y, 0xFF000000u | static_cast<DWORD>((x * 3) << 16) | static_cast<DWORD>((y * 4) << 8) |
                                   static_cast<DWORD>((x + y) * 2));
        }
    }
    return dib;
}

int DifferingPixels(const mirltest::Dib &a, const mirltest::Dib &b)
{
    int differing = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            differing += a.Pixel(x, y) != b.Pixel(x, y) ? 1 : 0;
        }
    }
    return differing;
}

TEST(Premultiplied, PixelsAreTheImageTimesItsAlpha)
{
    mirltest::GdiplusSession gdiplus;
    Gdiplus::Bitmap image(3, 1, PixelFormat32bppARGB);
    image.SetPixel(0, 0, Gdiplus::Color(0x80FF0000));
    image.SetPixel(1, 0, Gdiplus::Color(0xFF123456));
    image.SetPixel(2, 0, Gdiplus::Color(0x00ABCDEF));
    std::unique_ptr<MIRL::MirlPremultiplied> pixels(MIRL::MirlPremultiplied::Make(&image));
    ASSERT_NE(nullptr, pixels);
    EXPECT_EQ(3, pixels->Width());
    EXPECT_EQ(1, pixels->Height());
    ASSERT_EQ(3u, pixels->Pixels().size());
    EXPECT_EQ(0x80800000u, pixels->Pixels()[0]);
    EXPECT_EQ(0xFF123456u, pixels->Pixels()[1]);
    EXPECT_EQ(0x00000000u, pixels->Pixels()[2]);
}

TEST(Premultiplied, NothingIsMadeOfNoImage)
{
    mirltest::GdiplusSession gdiplus;
    EXPECT_EQ(nullptr, MIRL::MirlPremultiplied::Make(nullptr));
}

TEST(Premultiplied, TheBlendIsWhatGdiplusDrawsOneToOne)
{
    mirltest::GdiplusSession gdiplus;
    std::unique_ptr<Gdiplus::Bitmap> image = MakeImage();
    std::unique_ptr<MIRL::MirlPremultiplied> pixels(MIRL::MirlPremultiplied::Make(image.get()));
    ASSERT_NE(nullptr, pixels);

    // Each at a plain context and at one whose origin is moved, as the button's shared surface is.
    for (const POINT origin : {POINT{0, 0}, POINT{-5, -7}}) {
        mirltest::Dib drawn = MakeBackground();
        mirltest::Dib blended = MakeBackground();
        ::SetViewportOrgEx(drawn.dc(), origin.x, origin.y, nullptr);
        ::SetViewportOrgEx(blended.dc(), origin.x, origin.y, nullptr);
        {
            Gdiplus::Graphics graphics(drawn.dc());
            graphics.SetInterpolationMode(Gdiplus::InterpolationModeNearestNeighbor);
            graphics.SetPixelOffsetMode(Gdiplus::PixelOffsetModeHalf);
            ASSERT_EQ(Gdiplus::Ok, graphics.DrawImage(image.get(), Gdiplus::RectF(17, 13, 48, 32), 0, 0, 48, 32,
                                                      Gdiplus::UnitPixel));
        }
        ASSERT_TRUE(MIRL::BlendPremultiplied(blended.dc(), *pixels, 17, 13, 48, 32));
        EXPECT_EQ(0, DifferingPixels(drawn, blended)) << "origin " << origin.x << "," << origin.y;
        // The image did land: the background shows a different colour under an opaque pixel.
        const int x = 17 + origin.x + 47;
        const int y = 13 + origin.y + 5;
        EXPECT_NE(MakeBackground().Pixel(x, y), blended.Pixel(x, y));
    }
    MIRL::FreePremultipliedScratch();
}

TEST(Premultiplied, APartOfTheImageFromItsCorner)
{
    mirltest::GdiplusSession gdiplus;
    std::unique_ptr<Gdiplus::Bitmap> image = MakeImage();
    std::unique_ptr<MIRL::MirlPremultiplied> pixels(MIRL::MirlPremultiplied::Make(image.get()));
    ASSERT_NE(nullptr, pixels);
    mirltest::Dib drawn = MakeBackground();
    mirltest::Dib blended = MakeBackground();
    {
        Gdiplus::Graphics graphics(drawn.dc());
        graphics.DrawImage(image.get(), Gdiplus::RectF(3, 4, 20, 10), 0, 0, 20, 10, Gdiplus::UnitPixel);
    }
    ASSERT_TRUE(MIRL::BlendPremultiplied(blended.dc(), *pixels, 3, 4, 20, 10));
    EXPECT_EQ(0, DifferingPixels(drawn, blended));
    MIRL::FreePremultipliedScratch();
}

TEST(Premultiplied, ARectangleOutsideThePixelsDrawsNothing)
{
    mirltest::GdiplusSession gdiplus;
    std::unique_ptr<Gdiplus::Bitmap> image = MakeImage();
    std::unique_ptr<MIRL::MirlPremultiplied> pixels(MIRL::MirlPremultiplied::Make(image.get()));
    ASSERT_NE(nullptr, pixels);
    mirltest::Dib target = MakeBackground();
    EXPECT_FALSE(MIRL::BlendPremultiplied(target.dc(), *pixels, 0, 0, 49, 32));
    EXPECT_FALSE(MIRL::BlendPremultiplied(target.dc(), *pixels, 0, 0, 48, 33));
    EXPECT_FALSE(MIRL::BlendPremultiplied(target.dc(), *pixels, 0, 0, 0, 32));
    EXPECT_FALSE(MIRL::BlendPremultiplied(target.dc(), *pixels, 0, 0, 48, -1));
    EXPECT_FALSE(MIRL::BlendPremultiplied(NULL, *pixels, 0, 0, 48, 32));
    EXPECT_EQ(0, DifferingPixels(target, MakeBackground()));
    MIRL::FreePremultipliedScratch();
}

TEST(Premultiplied, BlendsAndTheScratchLeaveNoGrowth)
{
    mirltest::GdiplusSession gdiplus;
    std::unique_ptr<Gdiplus::Bitmap> image = MakeImage();
    mirltest::Dib target = MakeBackground();
    auto cycle = [&] {
        std::unique_ptr<MIRL::MirlPremultiplied> pixels(MIRL::MirlPremultiplied::Make(image.get()));
        ASSERT_NE(nullptr, pixels);
        for (int i = 0; i < 20; ++i) {
            MIRL::BlendPremultiplied(target.dc(), *pixels, i, i, 48 - i, 32 - i);
        }
        MIRL::FreePremultipliedScratch();
    };
    cycle();
    const int gdiBefore = mirltest::LiveGdiObjects();
    const size_t heapBefore = mirltest::BusyHeapBytes();
    for (int i = 0; i < 50; ++i) {
        cycle();
    }
    EXPECT_EQ(gdiBefore, mirltest::LiveGdiObjects());
    // Each cycle makes 6 KB of pixels and a scratch picture: any of it kept would show here.
    EXPECT_LT(static_cast<long long>(mirltest::BusyHeapBytes()) - static_cast<long long>(heapBefore), 1024);
}

} // namespace
