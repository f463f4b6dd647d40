#include "MirlCaptionLayout.h"
#include "MirlStyles.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

// Stands for a caption of a fixed measured size: answers the rectangle it is given, with that size.
struct FakeCaption {
    float width;
    float height;
    std::vector<Gdiplus::RectF> set;

    MirlMeasureCaption Measurer()
    {
        return [this](const Gdiplus::RectF &rect) {
            set.push_back(rect);
            return Gdiplus::RectF(rect.X, rect.Y, width, height);
        };
    }
};

MirlCaptionInput Client(long width, long height, unsigned long align, int margin, bool text, unsigned int iw, unsigned int ih)
{
    MirlCaptionInput input;
    input.right = width;
    input.bottom = height;
    input.align = align;
    input.margin = margin;
    input.hasText = text;
    input.hasImage = iw > 0;
    input.imageWidth = iw;
    input.imageHeight = ih;
    return input;
}

void ExpectRect(const Gdiplus::RectF &r, float x, float y, float w, float h)
{
    EXPECT_FLOAT_EQ(x, r.X);
    EXPECT_FLOAT_EQ(y, r.Y);
    EXPECT_FLOAT_EQ(w, r.Width);
    EXPECT_FLOAT_EQ(h, r.Height);
}

} // namespace

TEST(CaptionLayout, ButtonImageLeftOfTextAlignedLeft)
{
    FakeCaption caption{40, 14, {}};
    Gdiplus::RectF image;
    ASSERT_TRUE(MIRL::PlaceCaption(Client(100, 30, ORDER_H_IMAGE_TEXT | ALIGN_LEFT, 6, true, 16, 16), caption.Measurer(), image));
    ExpectRect(image, 6, 7, 16, 16);
    ASSERT_EQ(1u, caption.set.size());
    // The text band begins at 25 and ends at 94.
    ExpectRect(caption.set.back(), 25, 0, 69, 30);
}

TEST(CaptionLayout, ButtonImageWithoutTextAlignedLeft)
{
    FakeCaption caption{0, 0, {}};
    Gdiplus::RectF image;
    ASSERT_TRUE(MIRL::PlaceCaption(Client(100, 30, ALIGN_LEFT, 6, false, 16, 16), caption.Measurer(), image));
    ExpectRect(image, 6, 7, 16, 16);
    EXPECT_TRUE(caption.set.empty());
}

TEST(CaptionLayout, ImageWiderThanTheClientWrapsFarAway)
{
    FakeCaption caption{0, 0, {}};
    Gdiplus::RectF image;
    ASSERT_TRUE(MIRL::PlaceCaption(Client(10, 30, 0, 6, false, 16, 16), caption.Measurer(), image));
    EXPECT_FLOAT_EQ(static_cast<float>(2147483645u), image.X);
    EXPECT_FLOAT_EQ(7.0f, image.Y);
}

TEST(CaptionLayout, TopMarginBelongsToTextBeforeImageOnly)
{
    FakeCaption caption{40, 14, {}};
    Gdiplus::RectF image;
    ASSERT_TRUE(MIRL::PlaceCaption(Client(100, 30, ORDER_H_TEXT_IMAGE | ALIGN_TOP, 6, true, 16, 16), caption.Measurer(), image));
    EXPECT_FLOAT_EQ(6.0f, image.Y);
    ASSERT_TRUE(MIRL::PlaceCaption(Client(100, 30, ORDER_H_IMAGE_TEXT | ALIGN_TOP, 6, true, 16, 16), caption.Measurer(), image));
    EXPECT_FLOAT_EQ(0.0f, image.Y);
}

TEST(CaptionLayout, TextAboveImageCentresWithTheMeasuredWidth)
{
    for (float textHeight : {10.0f, 20.0f}) {
        FakeCaption caption{60, textHeight, {}};
        Gdiplus::RectF image;
        ASSERT_TRUE(MIRL::PlaceCaption(Client(100, 100, ORDER_V_TEXT_IMAGE, 6, true, 16, 16), caption.Measurer(), image));
        ASSERT_EQ(2u, caption.set.size());
        EXPECT_FLOAT_EQ(10.5f, caption.set.back().Y) << textHeight;
        // The image goes right under the text: trunc(th + ty + 3).
        EXPECT_FLOAT_EQ(static_cast<float>(static_cast<int>(textHeight + 10.5f + 3.0f)), image.Y);
        ExpectRect(caption.set.back(), 6, 10.5f, 88, textHeight);
    }
}

TEST(CaptionLayout, EmptyClientOrNothingToShowIsNotValid)
{
    FakeCaption caption{10, 10, {}};
    Gdiplus::RectF image(1, 2, 3, 4);
    EXPECT_FALSE(MIRL::PlaceCaption(Client(0, 30, 0, 6, true, 16, 16), caption.Measurer(), image));
    EXPECT_FALSE(MIRL::PlaceCaption(Client(100, 0, 0, 6, true, 16, 16), caption.Measurer(), image));
    EXPECT_FALSE(MIRL::PlaceCaption(Client(100, 30, 0, 6, false, 0, 0), caption.Measurer(), image));
    ExpectRect(image, 1, 2, 3, 4);
    EXPECT_TRUE(caption.set.empty());
}

TEST(CaptionLayout, TextWithoutImageTakesTheClientLessTheMargins)
{
    FakeCaption caption{10, 10, {}};
    Gdiplus::RectF image;
    ASSERT_TRUE(MIRL::PlaceCaption(Client(100, 30, 0, 6, true, 0, 0), caption.Measurer(), image));
    ExpectRect(caption.set.back(), 6, 0, 88, 30);
    ASSERT_TRUE(MIRL::PlaceCaption(Client(100, 30, 0, 0, true, 0, 0), caption.Measurer(), image));
    ExpectRect(caption.set.back(), 0, 0, 100, 30);
}

TEST(CaptionLayout, ImageLeftOfTextCentredAndRight)
{
    FakeCaption caption{40, 14, {}};
    Gdiplus::RectF image;
    ASSERT_TRUE(MIRL::PlaceCaption(Client(100, 30, ORDER_H_IMAGE_TEXT, 6, true, 16, 16), caption.Measurer(), image));
    // First pass (6, 0, 69, 30) measures 40 wide; ix = trunc((100 - 40 - 16 - 3) * 0.5) = 20.
    ExpectRect(caption.set.front(), 6, 0, 69, 30);
    ExpectRect(image, 20, 7, 16, 16);
    ExpectRect(caption.set.back(), 39, 0, 40, 30);
    ASSERT_TRUE(MIRL::PlaceCaption(Client(100, 30, ORDER_H_IMAGE_TEXT | ALIGN_RIGHT | ALIGN_BOTTOM, 6, true, 16, 16),
                                   caption.Measurer(), image));
    ExpectRect(image, 35, 14, 16, 16);
    ExpectRect(caption.set.back(), 54, 0, 40, 30);
}

TEST(CaptionLayout, TextLeftOfImageRightUsesTheGapAndMargin)
{
    FakeCaption caption{40, 14, {}};
    Gdiplus::RectF image;
    ASSERT_TRUE(MIRL::PlaceCaption(Client(100, 30, ORDER_H_TEXT_IMAGE | ALIGN_RIGHT, 6, true, 16, 16), caption.Measurer(), image));
    ExpectRect(image, 78, 7, 16, 16);
    ExpectRect(caption.set.back(), 6, 0, 69, 30);
    // A label: R-iw-3 and no margin.
    ASSERT_TRUE(MIRL::PlaceCaption(Client(100, 30, ORDER_H_TEXT_IMAGE | ALIGN_RIGHT | ALIGN_TOP, 0, true, 16, 16),
                                   caption.Measurer(), image));
    ExpectRect(image, 84, 0, 16, 16);
    ExpectRect(caption.set.back(), 0, 0, 81, 30);
}

TEST(CaptionLayout, ImageAboveTextLosesTheSideMargins)
{
    FakeCaption caption{40, 14, {}};
    Gdiplus::RectF image;
    ASSERT_TRUE(MIRL::PlaceCaption(Client(100, 60, ORDER_V_IMAGE_TEXT | ALIGN_TOP, 6, true, 16, 16), caption.Measurer(), image));
    ExpectRect(image, 42, 0, 16, 16);
    ExpectRect(caption.set.back(), 0, 19, 100, 41);
    ASSERT_TRUE(MIRL::PlaceCaption(Client(100, 60, ORDER_V_IMAGE_TEXT | ALIGN_BOTTOM | ALIGN_RIGHT, 6, true, 16, 16),
                                   caption.Measurer(), image));
    // First pass measures 14 high: ty = 60 - 14 = 46, iy = trunc(46 - 3 - 16) = 27.
    ExpectRect(image, 84, 27, 16, 16);
    ExpectRect(caption.set.back(), 0, 46, 100, 14);
    ASSERT_TRUE(MIRL::PlaceCaption(Client(100, 60, ORDER_V_IMAGE_TEXT | ALIGN_LEFT, 6, true, 16, 16), caption.Measurer(), image));
    // iy = trunc((60 - 14 - 16 - 3) * 0.5) = 13, ty = 32.
    ExpectRect(image, 0, 13, 16, 16);
    ExpectRect(caption.set.back(), 0, 32, 100, 14);
}

TEST(CaptionLayout, LabelImageWithoutTextHasNoMargin)
{
    FakeCaption caption{0, 0, {}};
    Gdiplus::RectF image;
    ASSERT_TRUE(MIRL::PlaceCaption(Client(100, 30, ALIGN_LEFT | ALIGN_BOTTOM, 0, false, 16, 16), caption.Measurer(), image));
    ExpectRect(image, 0, 14, 16, 16);
    ASSERT_TRUE(MIRL::PlaceCaption(Client(100, 30, ALIGN_RIGHT, 0, false, 16, 16), caption.Measurer(), image));
    ExpectRect(image, 84, 7, 16, 16);
}

TEST(CaptionLayout, LabelTextAboveImageKeepsTheWholeWidth)
{
    FakeCaption caption{40, 14, {}};
    Gdiplus::RectF image;
    ASSERT_TRUE(MIRL::PlaceCaption(Client(100, 60, ORDER_V_TEXT_IMAGE | ALIGN_TOP | ALIGN_LEFT, 0, true, 16, 16),
                                   caption.Measurer(), image));
    ExpectRect(image, 0, 17, 16, 16);
    ExpectRect(caption.set.back(), 0, 0, 100, 14);
}
