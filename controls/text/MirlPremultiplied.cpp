#include "MirlPremultiplied.h"

#include "MirlWindow.h"

#include <cstring>
#include <memory>
#include <new>

namespace MIRL {

MirlPremultiplied *MirlPremultiplied::Make(Gdiplus::Bitmap *bitmap)
{
    if (bitmap == NULL) {
        return NULL;
    }
    const UINT width = bitmap->GetWidth();
    const UINT height = bitmap->GetHeight();
    // A picture wider or taller than 4,096 pixels is drawn by GDI+ as it comes.
    if (width == 0 || height == 0 || width > 4096 || height > 4096) {
        return NULL;
    }
    std::unique_ptr<MirlPremultiplied> made(new (std::nothrow) MirlPremultiplied());
    if (made == nullptr) {
        return NULL;
    }
    try {
        made->m_Pixels.resize(static_cast<size_t>(width) * height);
    } catch (const std::bad_alloc &) {
        return NULL;
    }
    // GDI+ converts into our buffer, so the values are the ones its own draw would blend.
    Gdiplus::BitmapData data = {};
    data.Width = width;
    data.Height = height;
    data.Stride = static_cast<INT>(width * 4);
    data.PixelFormat = PixelFormat32bppPARGB;
    data.Scan0 = made->m_Pixels.data();
    Gdiplus::Rect all(0, 0, static_cast<INT>(width), static_cast<INT>(height));
    if (bitmap->LockBits(&all, Gdiplus::ImageLockModeRead | Gdiplus::ImageLockModeUserInputBuf,
                         PixelFormat32bppPARGB, &data) != Gdiplus::Ok) {
        return NULL;
    }
    bitmap->UnlockBits(&data);
    made->m_Width = static_cast<int>(width);
    made->m_Height = static_cast<int>(height);
    return made.release();
}

namespace {

// A top-down 32-bit DIB section in a memory context, at least as large as the largest image
// blended so far. Paints happen on the window's thread, one at a time.
struct Scratch {
    HDC dc = NULL;
    HBITMAP bitmap = NULL;
    HBITMAP original = NULL;
    std::uint32_t *bits = nullptr;
    int width = 0;
    int height = 0;
};

Scratch g_Scratch;

bool EnsureScratch(int width, int height)
{
    if (g_Scratch.dc != NULL && g_Scratch.width >= width && g_Scratch.height >= height) {
        return true;
    }
    const int newWidth = std::max(width, g_Scratch.width);
    const int newHeight = std::max(height, g_Scratch.height);
    FreePremultipliedScratch();
    BITMAPINFO info = {};
    info.bmiHeader.biSize = sizeof(info.bmiHeader);
    info.bmiHeader.biWidth = newWidth;
    info.bmiHeader.biHeight = -newHeight;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    info.bmiHeader.biCompression = BI_RGB;
    void *bits = nullptr;
    g_Scratch.dc = ::CreateCompatibleDC(NULL);
    g_Scratch.bitmap = g_Scratch.dc != NULL ? ::CreateDIBSection(g_Scratch.dc, &info, DIB_RGB_COLORS, &bits, NULL, 0)
                                            : NULL;
    if (g_Scratch.bitmap == NULL || bits == nullptr) {
        FreePremultipliedScratch();
        return false;
    }
    g_Scratch.original = static_cast<HBITMAP>(::SelectObject(g_Scratch.dc, g_Scratch.bitmap));
    g_Scratch.bits = static_cast<std::uint32_t *>(bits);
    g_Scratch.width = newWidth;
    g_Scratch.height = newHeight;
    return true;
}

} // namespace

bool BlendPremultiplied(HDC dc, const MirlPremultiplied &pixels, int x, int y, int width, int height)
{
    if (dc == NULL || width <= 0 || height <= 0 || width > pixels.Width() || height > pixels.Height()) {
        return false;
    }
    if (!EnsureScratch(width, height)) {
        return false;
    }
    ::GdiFlush();
    const std::uint32_t *from = pixels.Pixels().data();
    for (int row = 0; row < height; ++row) {
        std::memcpy(g_Scratch.bits + static_cast<size_t>(row) * g_Scratch.width,
                    from + static_cast<size_t>(row) * pixels.Width(), static_cast<size_t>(width) * 4);
    }
    BLENDFUNCTION blend = {AC_SRC_OVER, 0, 255, AC_SRC_ALPHA};
    return ::GdiAlphaBlend(dc, x, y, width, height, g_Scratch.dc, 0, 0, width, height, blend) != FALSE;
}

void FreePremultipliedScratch()
{
    MIRL::ReleaseOffscreen(g_Scratch.dc, g_Scratch.bitmap, g_Scratch.original);
    g_Scratch = Scratch();
}

} // namespace MIRL
