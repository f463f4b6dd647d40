#include "MirlViewRender.h"

#include <objbase.h>

#include <algorithm>
using std::max;
using std::min;
#include <gdiplus.h>

#include <vector>

namespace mirlview {

Picture::Picture(int width, int height)
    : m_Width(width), m_Height(height), m_DC(nullptr), m_Bitmap(nullptr), m_Old(nullptr), m_Bits(nullptr)
{
    if (width <= 0 || height <= 0) {
        return;
    }
    BITMAPINFO info = {};
    info.bmiHeader.biSize = sizeof(info.bmiHeader);
    info.bmiHeader.biWidth = width;
    info.bmiHeader.biHeight = -height;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    info.bmiHeader.biCompression = BI_RGB;
    m_DC = ::CreateCompatibleDC(nullptr);
    void *bits = nullptr;
    m_Bitmap = ::CreateDIBSection(m_DC, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    if (m_DC == nullptr || m_Bitmap == nullptr) {
        return;
    }
    m_Old = ::SelectObject(m_DC, m_Bitmap);
    m_Bits = static_cast<DWORD *>(bits);
}

Picture::~Picture()
{
    if (m_DC != nullptr && m_Old != nullptr) {
        ::SelectObject(m_DC, m_Old);
    }
    if (m_Bitmap != nullptr) {
        ::DeleteObject(m_Bitmap);
    }
    if (m_DC != nullptr) {
        ::DeleteDC(m_DC);
    }
}

void Picture::Fill(COLORREF color)
{
    if (m_Bits == nullptr) {
        return;
    }
    ::GdiFlush();
    DWORD value = (static_cast<DWORD>(GetRValue(color)) << 16) | (static_cast<DWORD>(GetGValue(color)) << 8) | GetBValue(color);
    std::fill(m_Bits, m_Bits + static_cast<size_t>(m_Width) * m_Height, value);
}

namespace {

// Children from the bottom of the Z order to the top: the order in which the screen shows them
// painted over each other.
std::vector<HWND> ChildrenBottomUp(HWND parent)
{
    std::vector<HWND> children;
    for (HWND child = ::GetWindow(parent, GW_CHILD); child != nullptr; child = ::GetWindow(child, GW_HWNDNEXT)) {
        children.push_back(child);
    }
    std::reverse(children.begin(), children.end());
    return children;
}

void ComposeWindow(HWND window, HWND root, Picture &picture, const RECT &clip)
{
    RECT client = {};
    ::GetClientRect(window, &client);
    POINT origin = {0, 0};
    ::MapWindowPoints(window, root, &origin, 1);
    RECT area = {origin.x, origin.y, origin.x + client.right, origin.y + client.bottom};
    RECT visible = {};
    if (!::IntersectRect(&visible, &area, &clip)) {
        return;
    }
    // The window paints into a picture of its own, which starts as what lies beneath it: a
    // window that leaves pixels alone shows its parent there, as on the screen.
    Picture layer(client.right, client.bottom);
    if (!layer.IsValid()) {
        return;
    }
    ::BitBlt(layer.dc(), 0, 0, client.right, client.bottom, picture.dc(), origin.x, origin.y, SRCCOPY);
    ::SendMessageW(window, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(layer.dc()), PRF_CLIENT);
    ::GdiFlush();
    ::BitBlt(picture.dc(), visible.left, visible.top, visible.right - visible.left, visible.bottom - visible.top,
             layer.dc(), visible.left - origin.x, visible.top - origin.y, SRCCOPY);
    for (HWND child : ChildrenBottomUp(window)) {
        if ((::GetWindowLongW(child, GWL_STYLE) & WS_VISIBLE) != 0) {
            ComposeWindow(child, root, picture, visible);
        }
    }
}

bool PngEncoder(CLSID &clsid)
{
    UINT count = 0;
    UINT size = 0;
    if (Gdiplus::GetImageEncodersSize(&count, &size) != Gdiplus::Ok || size == 0) {
        return false;
    }
    std::vector<BYTE> buffer(size);
    Gdiplus::ImageCodecInfo *codecs = reinterpret_cast<Gdiplus::ImageCodecInfo *>(buffer.data());
    if (Gdiplus::GetImageEncoders(count, size, codecs) != Gdiplus::Ok) {
        return false;
    }
    for (UINT i = 0; i < count; ++i) {
        if (codecs[i].MimeType != nullptr && wcscmp(codecs[i].MimeType, L"image/png") == 0) {
            clsid = codecs[i].Clsid;
            return true;
        }
    }
    return false;
}

} // namespace

void ComposeWindowTree(HWND root, Picture &picture)
{
    RECT all = {0, 0, picture.width(), picture.height()};
    ComposeWindow(root, root, picture, all);
    ::GdiFlush();
}

bool SavePng(const Picture &picture, const wchar_t *path, std::wstring &error)
{
    if (!picture.IsValid()) {
        error = L"the window has no area to render";
        return false;
    }
    CLSID png = {};
    if (!PngEncoder(png)) {
        error = L"GDI+ offers no PNG encoder";
        return false;
    }
    // Alpha is meaningless here (GDI leaves it 0, GDI+ writes FF): the pixels are saved opaque.
    Gdiplus::Bitmap bitmap(picture.width(), picture.height(), picture.width() * 4, PixelFormat32bppRGB,
                           reinterpret_cast<BYTE *>(const_cast<DWORD *>(picture.bits())));
    Gdiplus::Status status = bitmap.Save(path, &png, nullptr);
    if (status != Gdiplus::Ok) {
        error = L"GDI+ could not write the file (status " + std::to_wstring(static_cast<int>(status)) + L")";
        return false;
    }
    return true;
}

} // namespace mirlview
