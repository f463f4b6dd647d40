#include "MirlCaptionLayout.h"

#include "MirlStyles.h"

#include <cstdint>

namespace {

// Half of a difference taken as a 32-bit unsigned value, as the centring of images does.
float HalfUnsigned(long long value)
{
    return static_cast<float>(static_cast<uint32_t>(value) >> 1);
}

float Trunc(float value)
{
    return static_cast<float>(static_cast<long long>(value));
}

struct Text {
    float x, y, w, h;
    void Take(const Gdiplus::RectF &r)
    {
        x = r.X;
        y = r.Y;
        w = r.Width;
        h = r.Height;
    }
    Gdiplus::RectF Rect() const { return Gdiplus::RectF(x, y, w, h); }
};

const float kGap = 3.0f;

} // namespace

namespace MIRL {

bool PlaceCaption(const MirlCaptionInput &in, const MirlMeasureCaption &measure, Gdiplus::RectF &imageRect)
{
    const long long L = in.left, T = in.top, R = in.right, B = in.bottom;
    const long long iw = in.imageWidth, ih = in.imageHeight;
    const float m = static_cast<float>(in.margin);
    const unsigned long a = in.align;
    const bool left = (a & ALIGN_LEFT) != 0, right = !left && (a & ALIGN_RIGHT) != 0;
    const bool top = (a & ALIGN_TOP) != 0, bottom = !top && (a & ALIGN_BOTTOM) != 0;

    if (R - L <= 0 || B - T <= 0) {
        return false;
    }
    if (in.hasText && !in.hasImage) {
        measure(Gdiplus::RectF(L + m, static_cast<float>(T), (R - L) - 2 * m, static_cast<float>(B - T)));
        return true;
    }
    if (!in.hasText && !in.hasImage) {
        return false;
    }
    float ix = 0.0f, iy = 0.0f;
    if (!in.hasText) {
        ix = left ? m : right ? static_cast<float>(R - iw) - m : HalfUnsigned(R + L - iw);
        iy = top ? 0.0f : bottom ? static_cast<float>(B - ih) : HalfUnsigned(B + T - ih);
        imageRect = Gdiplus::RectF(ix, iy, static_cast<float>(iw), static_cast<float>(ih));
        return true;
    }

    Text t = {};
    auto pass = [&]() { t.Take(measure(t.Rect())); };
    Gdiplus::RectF final;
    if (a & ORDER_H_IMAGE_TEXT) {
        // Image left of the text.
        t.y = static_cast<float>(T);
        t.h = static_cast<float>(B - T);
        if (left) {
            ix = L + m;
            t.x = ix + iw + kGap;
            t.w = (R - m) - t.x;
        } else {
            t.x = L + m;
            t.w = (R - m) - t.x - iw - kGap;
            pass();
            if (right) {
                t.x = (R - m) - t.w;
                ix = Trunc(t.x - iw - kGap);
            } else {
                ix = Trunc(((R + L) - t.w - iw - kGap) * 0.5f);
                t.x = ix + iw + kGap;
            }
        }
        iy = top ? 0.0f : bottom ? static_cast<float>(B - ih) : HalfUnsigned(B - ih + T);
        final = Gdiplus::RectF(t.x, static_cast<float>(T), t.w, static_cast<float>(B - T));
    } else if (a & ORDER_V_TEXT_IMAGE) {
        // Text above the image.
        t.x = L + m;
        t.w = R - t.x - m;
        if (bottom) {
            iy = static_cast<float>(B - ih);
            t.y = static_cast<float>(T);
            t.h = static_cast<float>(B - ih) - kGap;
        } else {
            t.y = static_cast<float>(T);
            t.h = B - t.y - ih - kGap;
            pass();
            if (!top) {
                // The centring subtracts the measured width, not the height: a wider caption
                // starts higher.
                t.y = ((B - ih - L - kGap) - t.w) * 0.5f;
            }
            iy = Trunc(t.h + t.y + kGap);
        }
        ix = left ? L + m : right ? static_cast<float>(R - iw) - m : HalfUnsigned(R - iw + L);
        final = Gdiplus::RectF(L + m, t.y, R - (L + m) - m, t.h);
    } else if (a & ORDER_V_IMAGE_TEXT) {
        // Image above the text.
        t.x = L + m;
        t.w = R - t.x - m;
        if (top) {
            iy = static_cast<float>(T);
            t.y = iy + ih + kGap;
            t.h = B - t.y;
        } else {
            t.y = static_cast<float>(T);
            t.h = B - t.y - ih - kGap;
            pass();
            if (bottom) {
                t.y = B - t.h;
                iy = Trunc(t.y - kGap - ih);
            } else {
                // B+L where B+T would be expected; in a client rectangle both are 0.
                iy = Trunc(((B + L) - t.h - ih - kGap) * 0.5f);
                t.y = iy + ih + kGap;
            }
        }
        ix = left ? static_cast<float>(L) : right ? static_cast<float>(R - iw) : HalfUnsigned(R - iw + L);
        final = Gdiplus::RectF(static_cast<float>(L), t.y, static_cast<float>(R - L), t.h);
    } else {
        // Text left of the image.
        t.y = static_cast<float>(T);
        t.h = static_cast<float>(B - T);
        if (right) {
            ix = static_cast<float>(R - iw) - m;
            t.x = L + m;
            t.w = static_cast<float>(R - iw) - (kGap + m) - t.x;
        } else {
            t.x = L + m;
            t.w = (R - m) - t.x - iw - kGap;
            pass();
            if (!left) {
                t.x = ((R + L) - t.w - iw - kGap) * 0.5f;
            }
            ix = Trunc(t.w + t.x + kGap);
        }
        // The top margin belongs to this order only.
        iy = top ? m : bottom ? static_cast<float>(B - ih) : HalfUnsigned(B - ih + T);
        final = Gdiplus::RectF(t.x, static_cast<float>(T), t.w, static_cast<float>(B - T));
    }
    imageRect = Gdiplus::RectF(ix, iy, static_cast<float>(iw), static_cast<float>(ih));
    measure(final);
    return true;
}

} // namespace MIRL
