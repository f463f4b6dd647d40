// Helpers of the window framework tests: the library started on the windows fixture, a test
// frame that counts its paints and can draw a position pattern, and pixel read-back.
#pragma once

#include "MirlTestSupport.h"
#include "MirlWindow.h"

#include <gtest/gtest.h>

#include <vector>

namespace mirltest {

// The library runs once per test program, on the windows fixture.
class MirlEnvironment : public ::testing::Environment {
public:
    void SetUp() override { MirlIntialize(SkinPath(L"windows").c_str(), 1033); }
    void TearDown() override { MirlUnIntialize(); }
};

// A colour unique to each position, so that a copied pixel tells where it came from.
inline COLORREF PatternAt(int x, int y)
{
    return RGB((x * 3) & 0xFF, (y * 5) & 0xFF, 128);
}

// A top-level window of the test's own class: counts paints and, if asked, paints the pattern.
class TestFrame : public MirlWindowImpl<TestFrame> {
public:
    int m_Paints = 0;
    bool m_Pattern = false;

    void DoPaint(HDC dc)
    {
        ++m_Paints;
        if (!m_Pattern) {
            MirlWindowImpl<TestFrame>::DoPaint(dc);
            return;
        }
        RECT client = {};
        ::GetClientRect(m_hWnd, &client);
        for (int y = 0; y < client.bottom; ++y) {
            for (int x = 0; x < client.right; ++x) {
                ::SetPixelV(dc, x, y, PatternAt(x, y));
            }
        }
    }

    using MirlWindowBase::m_Children;
    using MirlWindowBase::m_IsCopy;
    using MirlWindowBase::m_MemoryDC;
    using MirlWindowBase::m_PackageParent;
    using MirlWindowBase::m_Parent;
};

// A 32-bit top-down picture with a memory context, filled with one colour.
class Canvas {
public:
    Canvas(int width, int height, COLORREF fill = RGB(0x12, 0x34, 0x56)) : m_Width(width), m_Height(height)
    {
        BITMAPINFO info = {};
        info.bmiHeader.biSize = sizeof(info.bmiHeader);
        info.bmiHeader.biWidth = width;
        info.bmiHeader.biHeight = -height;
        info.bmiHeader.biPlanes = 1;
        info.bmiHeader.biBitCount = 32;
        info.bmiHeader.biCompression = BI_RGB;
        m_DC = ::CreateCompatibleDC(NULL);
        m_Bitmap = ::CreateDIBSection(m_DC, &info, DIB_RGB_COLORS, reinterpret_cast<void **>(&m_Bits), NULL, 0);
        m_Old = ::SelectObject(m_DC, m_Bitmap);
        for (int i = 0; i < width * height; ++i) {
            m_Bits[i] = (GetRValue(fill) << 16) | (GetGValue(fill) << 8) | GetBValue(fill);
        }
    }
    ~Canvas()
    {
        ::SelectObject(m_DC, m_Old);
        ::DeleteObject(m_Bitmap);
        ::DeleteDC(m_DC);
    }
    Canvas(const Canvas &) = delete;
    Canvas &operator=(const Canvas &) = delete;

    HDC dc() const { return m_DC; }
    // The pixel as a COLORREF (alpha dropped).
    COLORREF At(int x, int y) const
    {
        ::GdiFlush();
        DWORD v = m_Bits[y * m_Width + x];
        return RGB((v >> 16) & 0xFF, (v >> 8) & 0xFF, v & 0xFF);
    }
    // Paints a window into this canvas through its paint-into-a-context path.
    void Paint(HWND hWnd) { ::SendMessageW(hWnd, WM_PAINT, reinterpret_cast<WPARAM>(m_DC), 0); }

private:
    int m_Width;
    int m_Height;
    HDC m_DC;
    HBITMAP m_Bitmap;
    HGDIOBJ m_Old;
    DWORD *m_Bits = nullptr;
};

// A child's rectangle in its parent's client coordinates: left, top, width, height.
inline RECT PlaceOf(HWND child)
{
    RECT r = {};
    ::GetWindowRect(child, &r);
    ::MapWindowPoints(HWND_DESKTOP, ::GetParent(child), reinterpret_cast<POINT *>(&r), 2);
    return RECT{r.left, r.top, r.right - r.left, r.bottom - r.top};
}

} // namespace mirltest
