// The skin button's drawing: image slots and the common backgrounds, the placing of caption
// and image, and the owner-drawn frame.
#include "MirlButton.h"

#include "MirlButtonLogic.h"
#include "MirlCaptionLayout.h"
#include "MirlImage.h"
#include "MirlPremultiplied.h"

#include <vssym32.h>

#include <climits>
#include <memory>
#include <new>

namespace {

const wchar_t *const kCommonNames[4] = {L"CmBtn0", L"CmBtn1", L"CmBtn2", L"CmBtn3"};

// Images drawn pixel for pixel: a one-pixel column stretched with the default interpolation
// bleeds into its neighbours and half-blends the edge rows.
class ExactPixels {
public:
    explicit ExactPixels(Gdiplus::Graphics &graphics)
        : m_Graphics(graphics), m_Interpolation(graphics.GetInterpolationMode()),
          m_Offset(graphics.GetPixelOffsetMode())
    {
        graphics.SetInterpolationMode(Gdiplus::InterpolationModeNearestNeighbor);
        graphics.SetPixelOffsetMode(Gdiplus::PixelOffsetModeHalf);
    }
    ~ExactPixels()
    {
        m_Graphics.SetInterpolationMode(m_Interpolation);
        m_Graphics.SetPixelOffsetMode(m_Offset);
    }
    ExactPixels(const ExactPixels &) = delete;
    ExactPixels &operator=(const ExactPixels &) = delete;

private:
    Gdiplus::Graphics &m_Graphics;
    Gdiplus::InterpolationMode m_Interpolation;
    Gdiplus::PixelOffsetMode m_Offset;
};

// The off-screen surface that buttons paint through, kept from one paint to the next while any
// button holds the common images, and freed with them: a memory context and a bitmap made and
// deleted for every paint of every button cost more than drawing the button's image. One paint
// at a time uses it; a paint that finds it in use makes its own, as before.
struct SharedSurface {
    HDC dc = NULL;
    HBITMAP bitmap = NULL;
    HBITMAP original = NULL;
    int width = 0;
    int height = 0;
    int format = 0;
    bool busy = false;
    // The last button let go of the common images while a paint used the surface.
    bool freeWhenIdle = false;
};

SharedSurface g_Surface;

void FreeSurface()
{
    if (g_Surface.busy) {
        g_Surface.freeWhenIdle = true;
        return;
    }
    MIRL::FreePremultipliedScratch();
    MIRL::ReleaseOffscreen(g_Surface.dc, g_Surface.bitmap, g_Surface.original);
    g_Surface = SharedSurface();
}

// What CreateCompatibleBitmap makes for a target, as a number: the depth and layout of the
// bitmap of a memory context, or the display's depth. 0 where a surface must not be shared
// (a palette, or a target whose bitmap can't be read).
int SurfaceFormat(HDC target)
{
    if (::GetObjectType(target) != OBJ_MEMDC) {
        const int bits = ::GetDeviceCaps(target, BITSPIXEL);
        return bits > 8 ? 0x30000 | bits : 0;
    }
    DIBSECTION dib = {};
    const int size = ::GetObjectW(::GetCurrentObject(target, OBJ_BITMAP), sizeof(dib), &dib);
    if (size == static_cast<int>(sizeof(DIBSECTION))) {
        return dib.dsBmih.biBitCount > 8 ? 0x10000 | dib.dsBmih.biBitCount | static_cast<int>(dib.dsBmih.biCompression << 8)
                                         : 0;
    }
    if (size >= static_cast<int>(sizeof(BITMAP))) {
        return dib.dsBm.bmBitsPixel > 8 ? 0x20000 | dib.dsBm.bmBitsPixel : 0;
    }
    return 0;
}

// A MirlMemoryDC that paints through the shared surface when it may and can: the same
// rectangle (clipped to what the target can show), the same compatible format and size, the
// same fresh state (the context's state is saved before and restored after each paint) and
// the same zero pixels (cleared before each paint); copied to the target on scope exit.
class ButtonMemoryDC {
public:
    ButtonMemoryDC(HDC target, const RECT &rect, bool mayShare) : m_Target(target), m_Rect(rect)
    {
        if (mayShare && Borrow(rect)) {
            return;
        }
        m_Own.reset(new (std::nothrow) MirlMemoryDC(target, rect));
        m_hDC = m_Own != nullptr ? m_Own->m_hDC : NULL;
    }

    ~ButtonMemoryDC()
    {
        if (!m_Shared) {
            return;
        }
        ::BitBlt(m_Target, m_Rect.left, m_Rect.top, m_Rect.right - m_Rect.left, m_Rect.bottom - m_Rect.top,
                 g_Surface.dc, m_Rect.left, m_Rect.top, SRCCOPY);
        ::RestoreDC(g_Surface.dc, m_Saved);
        g_Surface.busy = false;
        if (g_Surface.freeWhenIdle) {
            FreeSurface();
        }
    }

    ButtonMemoryDC(const ButtonMemoryDC &) = delete;
    ButtonMemoryDC &operator=(const ButtonMemoryDC &) = delete;

    operator HDC() const { return m_hDC; }

    HDC m_hDC = NULL;

private:
    bool Borrow(const RECT &rect)
    {
        if (g_Surface.busy) {
            return false;
        }
        RECT clip;
        if (::GetClipBox(m_Target, &clip) != ERROR) {
            ::IntersectRect(&m_Rect, &rect, &clip);
        }
        const int width = m_Rect.right - m_Rect.left;
        const int height = m_Rect.bottom - m_Rect.top;
        const int format = SurfaceFormat(m_Target);
        if (width <= 0 || height <= 0 || format == 0) {
            m_Rect = rect;
            return false;
        }
        if (g_Surface.dc != NULL && g_Surface.width == width && g_Surface.height == height &&
            g_Surface.format == format) {
            ::PatBlt(g_Surface.dc, 0, 0, width, height, BLACKNESS);
        } else {
            FreeSurface();
            g_Surface.dc = ::CreateCompatibleDC(m_Target);
            g_Surface.bitmap = g_Surface.dc != NULL ? ::CreateCompatibleBitmap(m_Target, width, height) : NULL;
            if (g_Surface.bitmap == NULL) {
                FreeSurface();
                m_Rect = rect;
                return false;
            }
            g_Surface.original = static_cast<HBITMAP>(::SelectObject(g_Surface.dc, g_Surface.bitmap));
            g_Surface.width = width;
            g_Surface.height = height;
            g_Surface.format = format;
        }
        m_Saved = ::SaveDC(g_Surface.dc);
        if (m_Saved == 0) {
            m_Rect = rect;
            return false;
        }
        ::SetViewportOrgEx(g_Surface.dc, -m_Rect.left, -m_Rect.top, NULL);
        g_Surface.busy = true;
        m_Shared = true;
        m_hDC = g_Surface.dc;
        return true;
    }

    HDC m_Target;
    RECT m_Rect;
    bool m_Shared = false;
    int m_Saved = 0;
    std::unique_ptr<MirlMemoryDC> m_Own;
};

} // namespace

// ---------------------------------------------------------------------------------------------
// Images

void MirlButton::LoadCommonBitmaps()
{
    // A button counts once, however often it asks.
    if (m_HoldsCommon) {
        return;
    }
    m_HoldsCommon = true;
    if (++m_CommonRef != 1) {
        return;
    }
    // A skin without them paints buttons without a background image.
    for (int i = 0; i < 4; ++i) {
        m_CommonBmpBk[i] = MIRL::LoadSkinBitmap(kCommonNames[i]);
    }
}

void MirlButton::ReleaseCommonBitmaps()
{
    if (!m_HoldsCommon) {
        return;
    }
    m_HoldsCommon = false;
    if (--m_CommonRef > 0) {
        return;
    }
    m_CommonRef = 0;
    FreeSurface();
    delete m_CommonBmpArrow;
    m_CommonBmpArrow = NULL;
    for (Gdiplus::Bitmap *&image : m_CommonBmpBk) {
        delete image;
        image = NULL;
    }
}

void MirlButton::LoadBitmapFromSkin(int slot, MirlUiElementImage *element)
{
    if (slot < 0 || slot >= ImageSlots || element == NULL) {
        return;
    }
    MirlButtonImage &image = m_Images[slot];
    image.Adopt(MIRL::LoadElementBitmap(element));

    const wchar_t *lowName = element->GetKeyColorLow();
    const wchar_t *highName = element->GetKeyColorHigh();
    if (lowName == NULL && highName == NULL) {
        return;
    }
    image.HasColorKey = true;
    MirlUI *ui = MirlUI::Instance();
    MirlUiElementColor *low =
        lowName != NULL && ui != NULL ? static_cast<MirlUiElementColor *>(ui->GetUiElement(lowName, UI_ELEMENT_COLOR))
                                      : NULL;
    MirlUiElementColor *high =
        highName != NULL && ui != NULL ? static_cast<MirlUiElementColor *>(ui->GetUiElement(highName, UI_ELEMENT_COLOR))
                                       : NULL;
    if (low != NULL) {
        image.ColorKeyLow = MIRL::ColorToArgb(low);
        image.ColorKeyHigh = image.ColorKeyLow;
    }
    if (high != NULL) {
        image.ColorKeyHigh = MIRL::ColorToArgb(high);
        if (low == NULL) {
            image.ColorKeyLow = image.ColorKeyHigh;
        }
    }
}

void MirlButton::LoadBitmapFromSkin(int slot, Gdiplus::Bitmap *bitmap)
{
    if (slot < 0 || slot >= ImageSlots) {
        return;
    }
    m_Images[slot].Adopt(bitmap);
    m_Images[slot].HasColorKey = false;
}

HRESULT MirlButton::OnSetImage(WPARAM slot, LPARAM fileName)
{
    if (slot >= static_cast<WPARAM>(ImageSlots)) {
        return E_INVALIDARG;
    }
    MirlButtonImage &image = m_Images[slot];
    unsigned int width = 0;
    unsigned int height = 0;
    if (image.Bitmap != NULL) {
        width = image.Width;
        height = image.Height;
        image.Adopt(NULL);
    }
    const wchar_t *name = reinterpret_cast<const wchar_t *>(fileName);
    if (name == NULL) {
        m_LayoutReady = false;
        return S_OK;
    }
    IStreamPtr stream = MirlUI::Instance() != NULL ? MirlUI::Instance()->ExtractFile(name) : IStreamPtr();
    if (stream == nullptr) {
        return E_FAIL;
    }
    Gdiplus::Bitmap *file = Gdiplus::Bitmap::FromStream(stream);
    if (file == NULL || file->GetLastStatus() != Gdiplus::Ok) {
        delete file;
        return E_FAIL;
    }
    // A replacement takes the size of what it replaces, whatever the file's size.
    if (width >= 1 && height >= 1) {
        Gdiplus::Bitmap *scaled = new Gdiplus::Bitmap(static_cast<INT>(width), static_cast<INT>(height),
                                                      PixelFormat32bppARGB);
        if (scaled != NULL && scaled->GetLastStatus() == Gdiplus::Ok) {
            Gdiplus::Graphics graphics(scaled);
            graphics.DrawImage(file, 0, 0, static_cast<INT>(width), static_cast<INT>(height));
        }
        delete file;
        file = scaled;
    }
    image.Adopt(file);
    image.HasColorKey = false;
    m_LayoutReady = false;
    return S_OK;
}

// ---------------------------------------------------------------------------------------------
// Layout

bool MirlButton::PrepareRect(Gdiplus::Graphics &graphics, bool hasText)
{
    return PlaceInClient(graphics, m_TextLayout, m_Align, hasText, m_Images[ImageNormal].Bitmap != NULL);
}

bool MirlButton::PlaceInClient(Gdiplus::Graphics &graphics, MirlTextLayout &layout, unsigned long align, bool hasText,
                               bool hasImage)
{
    RECT client = {};
    GetClientRect(&client);
    const MirlCaptionInput input = {client.left,  client.top, client.right, client.bottom,
                                    align,        6,          hasText,      hasImage,
                                    m_Images[ImageNormal].Width, m_Images[ImageNormal].Height};
    // Each pass sets the rectangle, measures, and goes on with what the caption occupies.
    MirlMeasureCaption measure = [&graphics, &layout](const Gdiplus::RectF &rect) {
        layout.SetRect(rect);
        layout.Measure(graphics);
        return layout.GetRect();
    };
    return MIRL::PlaceCaption(input, measure, m_ImageRect);
}

void MirlButton::PlaceOrder(Gdiplus::Graphics &graphics, MirlTextLayout *layout, unsigned long order)
{
    const unsigned long align = (m_Align & ~static_cast<unsigned long>(0x7)) | order;
    PlaceInClient(graphics, layout != NULL ? *layout : m_TextLayout, align, true, true);
}

void MirlButton::ImageTextH(Gdiplus::Graphics &graphics, MirlTextLayout *layout)
{
    PlaceOrder(graphics, layout, ORDER_H_IMAGE_TEXT);
}

void MirlButton::TextImageH(Gdiplus::Graphics &graphics, MirlTextLayout *layout)
{
    PlaceOrder(graphics, layout, ORDER_H_TEXT_IMAGE);
}

void MirlButton::ImageTextV(Gdiplus::Graphics &graphics, MirlTextLayout *layout)
{
    PlaceOrder(graphics, layout, ORDER_V_IMAGE_TEXT);
}

void MirlButton::TextImageV(Gdiplus::Graphics &graphics, MirlTextLayout *layout)
{
    PlaceOrder(graphics, layout, ORDER_V_TEXT_IMAGE);
}

// ---------------------------------------------------------------------------------------------
// Drawing

void MirlButton::DrawItem(UINT, LPDRAWITEMSTRUCT item)
{
    if (item == NULL) {
        return;
    }
    ButtonMemoryDC dc(item->hDC, item->rcItem, m_HoldsCommon);
    if (dc.m_hDC == NULL) {
        return;
    }
    ::SetBkMode(dc, TRANSPARENT);

    const bool selected = (item->itemState & ODS_SELECTED) != 0;
    const bool pressed = m_CheckMode ? (selected || m_Checked) : selected;
    const bool disabled = (item->itemState & ODS_DISABLED) != 0;
    m_Pressed = pressed ? 1 : 0;
    m_Focused = (item->itemState & ODS_FOCUS) ? 1 : 0;
    m_Disabled = disabled ? 1 : 0;

    RECT client = {};
    GetClientRect(&client);
    if (m_Transparent) {
        PaintParentBkGround(dc);
    } else {
        OnDrawBackground(WTL::CDCT<false>(dc), &client);
    }

    Gdiplus::Graphics graphics(dc);
    // DrawTheBitmap may blend onto the context itself, as long as this graphics draws there.
    struct PaintContext {
        HDC &held;
        PaintContext(HDC &member, HDC dc) : held(member) { held = dc; }
        ~PaintContext() { held = NULL; }
    } paintContext(m_PaintDC, dc);
    if (!m_LayoutReady) {
        m_LayoutReady = PrepareRect(graphics, !m_Text.empty());
    }

    if ((m_Style & BS_SYSTEM) && m_UseTheme && m_Theme != NULL) {
        graphics.Flush(Gdiplus::FlushIntentionSync);
        DrawSystemFace(dc, item->rcItem, pressed ? PBS_PRESSED : (m_MouseOnBtn ? PBS_HOT : PBS_NORMAL));
    } else if (m_Style & BS_BACKIMGE) {
        // One pixel narrower than the control.
        Gdiplus::Rect face(0, 0, item->rcItem.right - 1, item->rcItem.bottom);
        DrawTheBitmapTx(graphics, face, pressed, disabled);
    }

    // The image sinks by a pixel while a push button is held; the caption doesn't.
    Gdiplus::RectF place = m_ImageRect;
    if (pressed && !m_CheckMode) {
        place.X += 1.0f;
        place.Y += 1.0f;
    }

    if (!m_Text.empty()) {
        if (m_OverLink) {
            Gdiplus::SolidBrush link(Gdiplus::Color(0xFFFFBB00));
            m_TextLayout.Draw(graphics, &link);
        } else {
            m_TextLayout.Draw(graphics, m_TxBrush);
        }
    }

    const MirlButtonImage &normal = m_Images[ImageNormal];
    if (m_Images[ImageHover].Bitmap != NULL) {
        DrawTheBitmap(graphics, place, pressed, disabled);
    } else if (normal.Bitmap != NULL) {
        ExactPixels exact(graphics);
        const Gdiplus::REAL width = static_cast<Gdiplus::REAL>(normal.Width);
        const Gdiplus::REAL height = static_cast<Gdiplus::REAL>(normal.Height);
        if (!m_MouseOnBtn && !pressed) {
            // An idle one-image button is drawn at 70% opacity.
            Gdiplus::ColorMatrix matrix = {{{1, 0, 0, 0, 0},
                                            {0, 1, 0, 0, 0},
                                            {0, 0, 1, 0, 0},
                                            {0, 0, 0, 0.7f, 0},
                                            {0, 0, 0, 0, 1}}};
            Gdiplus::ImageAttributes attributes;
            attributes.SetColorMatrix(&matrix, Gdiplus::ColorMatrixFlagsDefault, Gdiplus::ColorAdjustTypeDefault);
            graphics.DrawImage(normal.Bitmap, place, 0, 0, width, height, Gdiplus::UnitPixel, &attributes);
        } else {
            graphics.DrawImage(normal.Bitmap, place, 0, 0, width, height, Gdiplus::UnitPixel);
        }
    }
}

void MirlButton::DrawTheBitmap(Gdiplus::Graphics &graphics, Gdiplus::RectF &rect, bool pressed, bool disabled)
{
    int slot = ImageNormal;
    if (disabled) {
        if (m_CheckMode) {
            slot = m_Checked ? ImageHover : ImageNormal;
        } else {
            slot = m_Images[ImageDisabled].Bitmap != NULL ? ImageDisabled : ImageNormal;
        }
    } else if (pressed && m_Images[ImagePressed].Bitmap != NULL) {
        slot = ImagePressed;
    } else if ((pressed || (m_MouseOnBtn && !m_CheckMode)) && m_Images[ImageHover].Bitmap != NULL) {
        slot = ImageHover;
    }
    const MirlButtonImage &image = m_Images[slot];
    if (image.Bitmap == NULL) {
        return;
    }
    if (!image.HasColorKey && DrawOneToOne(graphics, const_cast<MirlButtonImage &>(image), rect)) {
        return;
    }
    ExactPixels exact(graphics);
    if (image.HasColorKey) {
        Gdiplus::ImageAttributes attributes;
        attributes.SetColorKey(Gdiplus::Color(image.ColorKeyLow), Gdiplus::Color(image.ColorKeyHigh),
                               Gdiplus::ColorAdjustTypeDefault);
        graphics.DrawImage(image.Bitmap, rect, 0, 0, rect.Width, rect.Height, Gdiplus::UnitPixel, &attributes);
    } else {
        graphics.DrawImage(image.Bitmap, rect, 0, 0, rect.Width, rect.Height, Gdiplus::UnitPixel);
    }
}

bool MirlButton::DrawOneToOne(Gdiplus::Graphics &graphics, MirlButtonImage &image, const Gdiplus::RectF &rect)
{
    // Only on DrawItem's own graphics (no transform, no clip of its own), at whole pixels, and
    // within the image: there GDI+ too draws by alpha-blending the premultiplied image.
    if (m_PaintDC == NULL || image.Bitmap == NULL || !MIRL::IsWholePixel(rect.X) || !MIRL::IsWholePixel(rect.Y) ||
        !MIRL::IsWholePixel(rect.Width) || !MIRL::IsWholePixel(rect.Height) || rect.Width < 1.0f ||
        rect.Height < 1.0f || rect.Width > static_cast<Gdiplus::REAL>(image.Width) ||
        rect.Height > static_cast<Gdiplus::REAL>(image.Height)) {
        return false;
    }
    if (image.Premultiplied == NULL) {
        image.Premultiplied = MIRL::MirlPremultiplied::Make(image.Bitmap);
        if (image.Premultiplied == NULL) {
            return false;
        }
    }
    graphics.Flush(Gdiplus::FlushIntentionSync);
    return MIRL::BlendPremultiplied(m_PaintDC, *image.Premultiplied, static_cast<int>(rect.X), static_cast<int>(rect.Y),
                                    static_cast<int>(rect.Width), static_cast<int>(rect.Height));
}

void MirlButton::DrawTheBitmapTx(Gdiplus::Graphics &graphics, Gdiplus::Rect &rect, bool pressed, bool disabled)
{
    Gdiplus::Bitmap *background = disabled ? m_CommonBmpBk[0]
                                  : pressed ? m_CommonBmpBk[3]
                                  : m_MouseOnBtn ? m_CommonBmpBk[2]
                                                 : m_CommonBmpBk[1];
    PainImageInRect(graphics, background, rect);
    if (!(m_Style & BS_MENU) || m_BmpArrow == NULL) {
        return;
    }
    const long long width = m_BmpArrow->GetWidth();
    const long long height = m_BmpArrow->GetHeight();
    const int x = MIRL::TruncateToInt(static_cast<double>(static_cast<long long>(rect.X) + rect.Width - width - 10));
    const int y = MIRL::TruncateToInt(static_cast<double>(rect.Y + (static_cast<long long>(rect.Height) - height) / 2));
    {
        ExactPixels exact(graphics);
        graphics.DrawImage(m_BmpArrow, Gdiplus::Rect(x, y, static_cast<INT>(width), static_cast<INT>(height)), 0, 0,
                           static_cast<INT>(width), static_cast<INT>(height), Gdiplus::UnitPixel);
    }
    m_ArrowX = x;
    rect.Width = MIRL::TruncateToInt(static_cast<double>(rect.Width) - 10);
}

void MirlButton::PainImageInRect(Gdiplus::Graphics &graphics, Gdiplus::Bitmap *image, const Gdiplus::Rect &rect)
{
    MIRL::PaintThreeSlices(graphics, image, rect);
}

void MIRL::PaintThreeSlices(Gdiplus::Graphics &graphics, Gdiplus::Bitmap *image, const Gdiplus::Rect &rect)
{
    if (image == NULL) {
        return;
    }
    MIRL::MirlSlice slices[3];
    MIRL::SplitThreeSlices(image->GetWidth(), image->GetHeight(), rect, slices);
    ExactPixels exact(graphics);
    // The middle goes first, reaching one column under the left cap, and the caps are drawn
    // over it: a stretched one-pixel column can lose its first target column (seen when it is
    // stretched both ways), which would leave a seam of background between cap and middle.
    static const int order[3] = {1, 0, 2};
    for (int index : order) {
        Gdiplus::Rect target = slices[index].target;
        const Gdiplus::Rect &source = slices[index].source;
        // A face narrower than the image has no middle; a negative width would mirror it.
        if (target.Width <= 0 || target.Height <= 0) {
            continue;
        }
        if (index == 1 && slices[0].target.Width > 0) {
            target.X -= 1;
            target.Width += 1;
        }
        graphics.DrawImage(image, target, source.X, source.Y, source.Width, source.Height, Gdiplus::UnitPixel);
    }
}

DWORD MirlButton::OnDrawBackground(WTL::CDCT<false> dc, const RECT *rect)
{
    if (dc.m_hDC == NULL || rect == NULL) {
        return 0;
    }
    HBRUSH brush = ::CreateSolidBrush(RGB(0x80, 0x80, 0x80));
    if (brush != NULL) {
        ::FillRect(dc, rect, brush);
        ::DeleteObject(brush);
    }
    return 0;
}

DWORD MirlButton::OnDrawBorder(WTL::CDCT<false> dc, const RECT *rect)
{
    if (dc.m_hDC == NULL || rect == NULL) {
        return 0;
    }
    const COLORREF shadow = ::GetSysColor(COLOR_BTNSHADOW);
    const COLORREF light = ::GetSysColor(COLOR_BTNHIGHLIGHT);
    if (m_Pressed) {
        dc.Draw3dRect(rect, shadow, light);
    } else {
        dc.Draw3dRect(rect, light, shadow);
    }
    return 0;
}

HBITMAP MirlButton::CreateBitmapMask(HBITMAP source, DWORD width, DWORD height, COLORREF colourKey)
{
    const int w = static_cast<int>(std::min<DWORD>(width, INT_MAX));
    const int h = static_cast<int>(std::min<DWORD>(height, INT_MAX));
    HBITMAP mask = ::CreateBitmap(w, h, 1, 1, NULL);
    if (mask == NULL) {
        return NULL;
    }
    HDC sourceDC = ::CreateCompatibleDC(NULL);
    HDC maskDC = ::CreateCompatibleDC(NULL);
    if (sourceDC != NULL && maskDC != NULL) {
        HGDIOBJ oldSource = ::SelectObject(sourceDC, source);
        HGDIOBJ oldMask = ::SelectObject(maskDC, mask);
        // Key pixels become white in the mask, the others black.
        const COLORREF oldBack = ::SetBkColor(sourceDC, colourKey);
        ::BitBlt(maskDC, 0, 0, w, h, sourceDC, 0, 0, SRCCOPY);
        // White in the mask turns black in the source, black leaves it as it is.
        const COLORREF oldText = ::SetTextColor(sourceDC, RGB(255, 255, 255));
        ::SetBkColor(sourceDC, RGB(0, 0, 0));
        ::BitBlt(sourceDC, 0, 0, w, h, maskDC, 0, 0, SRCAND);
        ::SetTextColor(sourceDC, oldText);
        ::SetBkColor(sourceDC, oldBack);
        ::SelectObject(maskDC, oldMask);
        ::SelectObject(sourceDC, oldSource);
    }
    if (maskDC != NULL) {
        ::DeleteDC(maskDC);
    }
    if (sourceDC != NULL) {
        ::DeleteDC(sourceDC);
    }
    return mask;
}
