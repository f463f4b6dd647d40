#include "MirlFuzzHost.h"

namespace mirlfuzz {

bool FuzzHost::Open(int width, int height)
{
    RECT place = {0, 0, width, height};
    return Create(nullptr, nullptr, &place, nullptr, WS_POPUP | WS_VISIBLE | WS_CLIPCHILDREN) != nullptr;
}

void FuzzHost::Close()
{
    if (IsWindow()) {
        DestroyWindow();
    }
    for (MirlWindowBase *child : m_Children) {
        delete child;
    }
    m_Children.clear();
}

FuzzHost::~FuzzHost()
{
    Close();
}

Canvas::Canvas(int width, int height) : m_Width(width), m_Height(height), m_Bits(nullptr)
{
    BITMAPINFO info = {};
    info.bmiHeader.biSize = sizeof(info.bmiHeader);
    info.bmiHeader.biWidth = width;
    info.bmiHeader.biHeight = -height;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    info.bmiHeader.biCompression = BI_RGB;
    m_DC = ::CreateCompatibleDC(nullptr);
    m_Bitmap = ::CreateDIBSection(m_DC, &info, DIB_RGB_COLORS, reinterpret_cast<void **>(&m_Bits), nullptr, 0);
    m_Old = ::SelectObject(m_DC, m_Bitmap);
}

Canvas::~Canvas()
{
    ::SelectObject(m_DC, m_Old);
    ::DeleteObject(m_Bitmap);
    ::DeleteDC(m_DC);
}

void Canvas::Fill(DWORD pixel)
{
    ::GdiFlush();
    for (int i = 0; i < m_Width * m_Height; ++i) {
        m_Bits[i] = pixel;
    }
}

DWORD Canvas::At(int x, int y) const
{
    ::GdiFlush();
    return m_Bits[y * m_Width + x] & 0x00FFFFFF;
}

GdiCensus TakeGdiCensus()
{
    GdiCensus census;
    for (UINT_PTR i = 1; i <= 0xFFFF; ++i) {
        DWORD type = ::GetObjectType(reinterpret_cast<HGDIOBJ>(i));
        if (type != 0) {
            ++census.total;
            ++census.byType[type & 15];
        }
    }
    return census;
}

int GrowthBeyondDcCache(const GdiCensus &before, const GdiCensus &after, int cacheBound)
{
    const int dcs = after.byType[OBJ_DC] - before.byType[OBJ_DC];
    const int regions = after.byType[OBJ_REGION] - before.byType[OBJ_REGION];
    const int cached = dcs > 0 && dcs == regions && dcs <= cacheBound ? dcs : 0;
    return (after.total - before.total) - 2 * cached;
}

bool HeapsAreValid()
{
    HANDLE heaps[256];
    DWORD count = ::GetProcessHeaps(256, heaps);
    for (DWORD i = 0; i < count && i < 256; ++i) {
        if (!::HeapValidate(heaps[i], 0, nullptr)) {
            return false;
        }
    }
    return true;
}

void PumpMessages(int limit)
{
    MSG msg;
    for (int i = 0; i < limit && ::PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE); ++i) {
        if (msg.message == WM_QUIT || msg.message == WM_CLOSE || msg.message == WM_SYSCOMMAND) {
            continue;
        }
        ::TranslateMessage(&msg);
        ::DispatchMessageW(&msg);
    }
}

} // namespace mirlfuzz
