// Helpers of the ATL/WTL subset's tests: a message pump, a GDI object count, a 32-bit canvas
// read back with GetDIBits, and a top-level window that records what it receives.
#pragma once

#include "atl/MirlAtl.h"

#include <algorithm>
#include <initializer_list>
#include <ostream>
#include <vector>

namespace WTL {
// Readable rectangles in assertion messages.
inline void PrintTo(const CRect &rc, std::ostream *os)
{
    *os << "(" << rc.left << ", " << rc.top << ", " << rc.right << ", " << rc.bottom << ")";
}
inline void PrintTo(const CPoint &pt, std::ostream *os)
{
    *os << "(" << pt.x << ", " << pt.y << ")";
}
inline void PrintTo(const CSize &size, std::ostream *os)
{
    *os << "(" << size.cx << " x " << size.cy << ")";
}
} // namespace WTL

namespace atltest {

// Dispatches what is queued for this thread.
inline void PumpMessages()
{
    MSG msg;
    while (PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE)) {
        TranslateMessage(&msg);
        DispatchMessageW(&msg);
    }
}

// Live GDI objects of the process: Wine answers GetObjectType for bare handle indexes.
inline int CountGdiObjects()
{
    int count = 0;
    for (UINT_PTR i = 1; i <= 0xFFFF; ++i) {
        if (GetObjectType(reinterpret_cast<HGDIOBJ>(i)) != 0)
            ++count;
    }
    return count;
}

// A pixel as GetDIBits gives it for a 32-bit DIB: 0x00RRGGBB.
constexpr DWORD Rgb(BYTE r, BYTE g, BYTE b)
{
    return (static_cast<DWORD>(r) << 16) | (static_cast<DWORD>(g) << 8) | b;
}

// A memory DC with a 32-bit top-down bitmap of its own.
class Canvas {
public:
    Canvas(int width, int height, COLORREF fill = RGB(255, 255, 255)) : m_width(width), m_height(height)
    {
        m_dc = CreateCompatibleDC(nullptr);
        BITMAPINFO bmi = Info();
        void *bits = nullptr;
        m_bitmap = CreateDIBSection(m_dc, &bmi, DIB_RGB_COLORS, &bits, nullptr, 0);
        m_old = SelectObject(m_dc, m_bitmap);
        Fill(fill);
    }
    ~Canvas()
    {
        SelectObject(m_dc, m_old);
        DeleteObject(m_bitmap);
        DeleteDC(m_dc);
    }
    Canvas(const Canvas &) = delete;
    Canvas &operator=(const Canvas &) = delete;

    HDC dc() const { return m_dc; }
    int width() const { return m_width; }
    int height() const { return m_height; }

    void Fill(COLORREF color)
    {
        HBRUSH brush = CreateSolidBrush(color);
        RECT all = {0, 0, m_width, m_height};
        FillRect(m_dc, &all, brush);
        DeleteObject(brush);
    }

    // All pixels, row by row from the top, read with GetDIBits (alpha masked off).
    std::vector<DWORD> Pixels() const
    {
        std::vector<DWORD> pixels(static_cast<size_t>(m_width) * m_height);
        BITMAPINFO bmi = Info();
        // GetDIBits wants the bitmap out of the DC.
        SelectObject(m_dc, m_old);
        GetDIBits(m_dc, m_bitmap, 0, m_height, pixels.data(), &bmi, DIB_RGB_COLORS);
        SelectObject(m_dc, m_bitmap);
        for (DWORD &p : pixels)
            p &= 0x00FFFFFF;
        return pixels;
    }
    DWORD Pixel(int x, int y) const { return Pixels()[static_cast<size_t>(y) * m_width + x]; }

private:
    BITMAPINFO Info() const
    {
        BITMAPINFO bmi = {};
        bmi.bmiHeader.biSize = sizeof(BITMAPINFOHEADER);
        bmi.bmiHeader.biWidth = m_width;
        bmi.bmiHeader.biHeight = -m_height;
        bmi.bmiHeader.biPlanes = 1;
        bmi.bmiHeader.biBitCount = 32;
        bmi.bmiHeader.biCompression = BI_RGB;
        return bmi;
    }

    int m_width;
    int m_height;
    HDC m_dc = nullptr;
    HBITMAP m_bitmap = nullptr;
    HGDIOBJ m_old = nullptr;
};

// A message as a recorder saw it.
struct Seen {
    UINT message;
    WPARAM wParam;
    LPARAM lParam;
};

// A popup whose procedure records the given messages and answers `answer` to them; everything
// else goes to DefWindowProc.
class Recorder {
public:
    Recorder(std::initializer_list<UINT> messages, LRESULT answer = 0) : m_messages(messages), m_answer(answer)
    {
        WNDCLASSEXW wc = {};
        wc.cbSize = sizeof(wc);
        wc.lpfnWndProc = Proc;
        wc.hInstance = GetModuleHandleW(nullptr);
        wc.lpszClassName = L"AtlTestRecorder";
        RegisterClassExW(&wc); // fails harmlessly once the class exists
        m_hWnd = CreateWindowExW(0, L"AtlTestRecorder", L"recorder", WS_POPUP, 0, 0, 200, 100, nullptr, nullptr,
                                 GetModuleHandleW(nullptr), this);
    }
    ~Recorder()
    {
        if (IsWindow(m_hWnd))
            DestroyWindow(m_hWnd);
    }
    Recorder(const Recorder &) = delete;
    Recorder &operator=(const Recorder &) = delete;

    HWND hwnd() const { return m_hWnd; }
    std::vector<Seen> seen;
    // Records of one message only.
    std::vector<Seen> Of(UINT message) const
    {
        std::vector<Seen> out;
        for (const Seen &s : seen) {
            if (s.message == message)
                out.push_back(s);
        }
        return out;
    }

private:
    static LRESULT CALLBACK Proc(HWND hWnd, UINT msg, WPARAM wParam, LPARAM lParam)
    {
        if (msg == WM_NCCREATE) {
            auto *cs = reinterpret_cast<CREATESTRUCTW *>(lParam);
            SetWindowLongPtrW(hWnd, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(cs->lpCreateParams));
        }
        auto *self = reinterpret_cast<Recorder *>(GetWindowLongPtrW(hWnd, GWLP_USERDATA));
        if (self != nullptr && std::find(self->m_messages.begin(), self->m_messages.end(), msg) != self->m_messages.end()) {
            self->seen.push_back({msg, wParam, lParam});
            return self->m_answer;
        }
        return DefWindowProcW(hWnd, msg, wParam, lParam);
    }

    std::vector<UINT> m_messages;
    LRESULT m_answer;
    HWND m_hWnd = nullptr;
};

inline void InitControls()
{
    INITCOMMONCONTROLSEX icc = {sizeof(icc), ICC_PROGRESS_CLASS | ICC_UPDOWN_CLASS | ICC_BAR_CLASSES | ICC_STANDARD_CLASSES};
    InitCommonControlsEx(&icc);
}

} // namespace atltest
