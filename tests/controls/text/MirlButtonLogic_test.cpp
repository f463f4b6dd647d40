// The button's rules without a window: placing with the button's 6-pixel margin, the
// three-slice split, the link span, the repeat count and the URL copy.
#include "MirlButton.h"
#include "MirlCaptionLayout.h"
#include "controls/text/MirlButtonLogic.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

namespace {

// A caption of a fixed size, left at the rectangle's origin; keeps every rectangle it was given.
struct FixedCaption {
    float width;
    float height;
    std::vector<Gdiplus::RectF> asked;

    MirlMeasureCaption Measurer()
    {
        return [this](const Gdiplus::RectF &rect) {
            asked.push_back(rect);
            return Gdiplus::RectF(rect.X, rect.Y, width, height);
        };
    }
};

MirlCaptionInput ButtonInput(long width, long height, unsigned long align, bool hasText, unsigned int iw,
                             unsigned int ih)
{
    MirlCaptionInput input;
    input.right = width;
    input.bottom = height;
    input.align = align;
    input.margin = 6;
    input.hasText = hasText;
    input.hasImage = iw != 0;
    input.imageWidth = iw;
    input.imageHeight = ih;
    return input;
}

TEST(ButtonPlacing, ImageLeftOfTextAlignedLeft)
{
    FixedCaption caption = {30.0f, 14.0f, {}};
    Gdiplus::RectF image;
    ASSERT_TRUE(MIRL::PlaceCaption(ButtonInput(100, 30, ORDER_H_IMAGE_TEXT | ALIGN_LEFT, true, 16, 16),
                                   caption.Measurer(), image));
    EXPECT_EQ(6.0f, image.X);
    EXPECT_EQ(7.0f, image.Y);
    // The text band: from 25 to 94, measured once, in its final place.
    ASSERT_EQ(1u, caption.asked.size());
    EXPECT_EQ(25.0f, caption.asked[0].X);
    EXPECT_EQ(94.0f, caption.asked[0].X + caption.asked[0].Width);
    EXPECT_EQ(0.0f, caption.asked[0].Y);
    EXPECT_EQ(30.0f, caption.asked[0].Height);
}

TEST(ButtonPlacing, ImageWithoutText)
{
    const struct {
        long width;
        unsigned long align;
        float x;
        float y;
    } rows[] = {
        {100, ALIGN_LEFT, 6.0f, 7.0f},
        {100, ALIGN_RIGHT | ALIGN_BOTTOM, 78.0f, 14.0f},
        {100, ALIGN_TOP, 42.0f, 0.0f},
        // (10 + 0 - 16) taken as 32-bit unsigned is 4294967290; halved, 2147483645: out of sight.
        {10, 0, static_cast<float>(2147483645u), 7.0f},
    };
    for (const auto &row : rows) {
        FixedCaption caption = {0.0f, 0.0f, {}};
        Gdiplus::RectF image;
        ASSERT_TRUE(MIRL::PlaceCaption(ButtonInput(row.width, 30, row.align, false, 16, 16), caption.Measurer(), image));
        EXPECT_EQ(row.x, image.X) << "width " << row.width << ", align " << row.align;
        EXPECT_EQ(row.y, image.Y) << "width " << row.width << ", align " << row.align;
        EXPECT_TRUE(caption.asked.empty());
    }
}

TEST(ButtonPlacing, TopAlignedImageSitsLowerBesideTextThanBeforeIt)
{
    FixedCaption caption = {30.0f, 14.0f, {}};
    Gdiplus::RectF image;
    ASSERT_TRUE(MIRL::PlaceCaption(ButtonInput(100, 30, ORDER_H_TEXT_IMAGE | ALIGN_TOP, true, 16, 16),
                                   caption.Measurer(), image));
    EXPECT_EQ(6.0f, image.Y);
    ASSERT_TRUE(MIRL::PlaceCaption(ButtonInput(100, 30, ORDER_H_IMAGE_TEXT | ALIGN_TOP, true, 16, 16),
                                   caption.Measurer(), image));
    EXPECT_EQ(0.0f, image.Y);
}

TEST(ButtonPlacing, TextAboveImageCentredStartsByTheCaptionsWidth)
{
    for (float height : {10.0f, 20.0f, 33.0f}) {
        FixedCaption caption = {60.0f, height, {}};
        Gdiplus::RectF image;
        ASSERT_TRUE(MIRL::PlaceCaption(ButtonInput(100, 100, ORDER_V_TEXT_IMAGE, true, 16, 16), caption.Measurer(),
                                       image));
        ASSERT_EQ(2u, caption.asked.size());
        EXPECT_EQ(10.5f, caption.asked[1].Y) << "caption height " << height;
    }
}

TEST(ButtonPlacing, NothingToPlaceIsNotALayout)
{
    FixedCaption caption = {10.0f, 10.0f, {}};
    Gdiplus::RectF image(1, 2, 3, 4);
    EXPECT_FALSE(MIRL::PlaceCaption(ButtonInput(100, 30, 0, false, 0, 0), caption.Measurer(), image));
    EXPECT_FALSE(MIRL::PlaceCaption(ButtonInput(0, 30, 0, true, 16, 16), caption.Measurer(), image));
    EXPECT_EQ(1.0f, image.X);
}

TEST(ButtonPlacing, TextWithoutImageKeepsSixPixelsEachSide)
{
    FixedCaption caption = {10.0f, 10.0f, {}};
    Gdiplus::RectF image;
    ASSERT_TRUE(MIRL::PlaceCaption(ButtonInput(100, 30, 0, true, 0, 0), caption.Measurer(), image));
    ASSERT_EQ(1u, caption.asked.size());
    EXPECT_EQ(6.0f, caption.asked[0].X);
    EXPECT_EQ(88.0f, caption.asked[0].Width);
}

TEST(ThreeSlices, TwentyPixelImageInAHundredPixelFace)
{
    MIRL::MirlSlice slices[3];
    MIRL::SplitThreeSlices(20, 24, Gdiplus::Rect(0, 0, 100, 30), slices);
    EXPECT_EQ(0, slices[0].target.X);
    EXPECT_EQ(10, slices[0].target.Width);
    EXPECT_EQ(10, slices[1].target.X);
    EXPECT_EQ(80, slices[1].target.Width);
    EXPECT_EQ(90, slices[2].target.X);
    EXPECT_EQ(10, slices[2].target.Width);
    for (const MIRL::MirlSlice &slice : slices) {
        EXPECT_EQ(30, slice.target.Height);
        EXPECT_EQ(24, slice.source.Height);
    }
    EXPECT_EQ(0, slices[0].source.X);
    EXPECT_EQ(10, slices[0].source.Width);
    EXPECT_EQ(10, slices[1].source.X);
    EXPECT_EQ(1, slices[1].source.Width);
    EXPECT_EQ(10, slices[2].source.X);
    EXPECT_EQ(10, slices[2].source.Width);
}

TEST(ThreeSlices, OddWidthKeepsTheCentreColumnForTheMiddle)
{
    MIRL::MirlSlice slices[3];
    MIRL::SplitThreeSlices(21, 8, Gdiplus::Rect(5, 2, 50, 12), slices);
    EXPECT_EQ(Gdiplus::Rect(5, 2, 10, 12).X, slices[0].target.X);
    EXPECT_EQ(10, slices[0].source.Width);
    EXPECT_EQ(15, slices[1].target.X);
    EXPECT_EQ(30, slices[1].target.Width); // 50 - 20
    EXPECT_EQ(10, slices[1].source.X);
    EXPECT_EQ(45, slices[2].target.X);
    EXPECT_EQ(11, slices[2].source.X); // 21 - 10: column 10 is the middle's alone
    EXPECT_EQ(10, slices[2].source.Width);
}

TEST(LinkSpan, FollowsTheHorizontalAlignment)
{
    const Gdiplus::RectF caption(6.6f, 3.0f, 40.7f, 12.0f);
    int left = 0;
    int right = 0;
    MIRL::LinkSpan(caption, 160, ALIGN_LEFT, &left, &right);
    EXPECT_EQ(6, left);
    EXPECT_EQ(47, right);
    MIRL::LinkSpan(caption, 160, ALIGN_RIGHT, &left, &right);
    EXPECT_EQ(119, left); // 160 - 40.7
    EXPECT_EQ(160, right);
    MIRL::LinkSpan(caption, 160, 0, &left, &right);
    EXPECT_EQ(59, left);  // (160 - 40.7) / 2
    EXPECT_EQ(100, right); // (160 + 40.7) / 2
    MIRL::LinkSpan(caption, 160, ALIGN_LEFT | ALIGN_RIGHT, &left, &right);
    EXPECT_EQ(6, left);
}

// Releases after a given number of peeks; counts what was sent and waited.
class CountingHooks : public MIRL::MirlRepeatHooks {
public:
    explicit CountingHooks(int releaseAtPeek) : m_ReleaseAt(releaseAtPeek) {}
    bool Released() override { return ++m_Peeks > m_ReleaseAt; }
    void Send() override { m_Events += "s"; }
    void Wait() override { m_Events += "w"; }
    std::string m_Events;

private:
    int m_ReleaseAt;
    int m_Peeks = 0;
};

TEST(RepeatLoop, CommandsUntilTheReleaseMadeEven)
{
    const struct {
        int releasedAtPeek;
        unsigned int sent;
        const char *events;
    } rows[] = {
        // The first goes out at once; an odd count gets one more right after the release.
        {3, 4u, "swswsws"},
        {2, 2u, "swsw"},
        {1, 2u, "sws"},
        // Released before the first peek: nothing.
        {0, 0u, ""},
    };
    for (const auto &row : rows) {
        CountingHooks hooks(row.releasedAtPeek);
        EXPECT_EQ(row.sent, MIRL::RunRepeatLoop(hooks)) << "released at peek " << row.releasedAtPeek;
        EXPECT_EQ(row.events, hooks.m_Events) << "released at peek " << row.releasedAtPeek;
    }
}

TEST(UrlCopy, LongSourcesAreCutTo259Characters)
{
    wchar_t url[MIRL::kUrlCapacity];
    for (wchar_t &c : url) {
        c = L'#';
    }
    const std::wstring source(300, L'x');
    MIRL::CopyUrl(url, source.c_str());
    EXPECT_EQ(259u, wcslen(url));
    EXPECT_EQ(L'\0', url[259]);
    MIRL::CopyUrl(url, L"ab");
    EXPECT_STREQ(L"ab", url);
    MIRL::CopyUrl(url, nullptr);
    for (wchar_t c : url) {
        EXPECT_EQ(L'\0', c);
    }
}

TEST(WholePixels, OnlyFiniteWholeNumbersWithinReach)
{
    EXPECT_TRUE(MIRL::IsWholePixel(0.0f));
    EXPECT_TRUE(MIRL::IsWholePixel(3.0f));
    EXPECT_TRUE(MIRL::IsWholePixel(-2.0f));
    EXPECT_TRUE(MIRL::IsWholePixel(16777216.0f));
    EXPECT_FALSE(MIRL::IsWholePixel(3.5f));
    EXPECT_FALSE(MIRL::IsWholePixel(-0.25f));
    EXPECT_FALSE(MIRL::IsWholePixel(33554432.0f));
    EXPECT_FALSE(MIRL::IsWholePixel(std::numeric_limits<float>::infinity()));
    EXPECT_FALSE(MIRL::IsWholePixel(std::numeric_limits<float>::quiet_NaN()));
}

TEST(Truncation, ClampsWhatIntCannotHold)
{
    EXPECT_EQ(2, MIRL::TruncateToInt(2.9));
    EXPECT_EQ(-2, MIRL::TruncateToInt(-2.9));
    EXPECT_EQ(INT_MAX, MIRL::TruncateToInt(1e20));
    EXPECT_EQ(INT_MIN, MIRL::TruncateToInt(-1e20));
    EXPECT_EQ(0, MIRL::TruncateToInt(std::numeric_limits<double>::quiet_NaN()));
}

} // namespace
