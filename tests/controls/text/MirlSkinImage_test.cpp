#include "MirlTestSupport.h"
#include "MirlImage.h"

#include <gtest/gtest.h>

#include <memory>

namespace {

class ImagesEnvironment : public ::testing::Environment {
public:
    void SetUp() override { MirlIntialize(mirltest::SkinPath(L"images").c_str(), 1033); }
    void TearDown() override { MirlUnIntialize(); }
};

::testing::Environment *const g_Mirl = ::testing::AddGlobalTestEnvironment(new ImagesEnvironment());

} // namespace

TEST(SkinImage, ElementWithAPictureDecodesToItsSize)
{
    std::unique_ptr<Gdiplus::Bitmap> bitmap(MIRL::LoadSkinBitmap(L"ImgRed"));
    ASSERT_NE(nullptr, bitmap);
    EXPECT_EQ(4u, bitmap->GetWidth());
    EXPECT_EQ(3u, bitmap->GetHeight());
    Gdiplus::Color pixel;
    bitmap->GetPixel(3, 2, &pixel);
    EXPECT_EQ(0xFFFF0000u, pixel.GetValue());
}

TEST(SkinImage, MissingElementFileOrPictureIsNull)
{
    EXPECT_EQ(nullptr, MIRL::LoadSkinBitmap(L"NoSuchImage"));
    EXPECT_EQ(nullptr, MIRL::LoadSkinBitmap(L"ImgMissingFile"));
    EXPECT_EQ(nullptr, MIRL::LoadSkinBitmap(L"ImgNoFile"));
    EXPECT_EQ(nullptr, MIRL::LoadSkinBitmap(L"ImgBroken"));
    EXPECT_EQ(nullptr, MIRL::LoadSkinBitmap(nullptr));
    EXPECT_EQ(nullptr, MIRL::LoadElementBitmap(nullptr));
}

TEST(SkinImage, ColourPacksAlphaRedGreenBlueFromTheTop)
{
    MirlUiElementColor *half = static_cast<MirlUiElementColor *>(MirlUI::Instance()->GetUiElement(L"ClrHalf", UI_ELEMENT_COLOR));
    ASSERT_NE(nullptr, half);
    EXPECT_EQ(0x80010203u, MIRL::ColorToArgb(half));
}
