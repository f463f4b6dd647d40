// Pixel tests: render a window through its own paint path into a 32-bit DIB and compare it with
// a golden picture kept in the source tree.
//
//   GdiplusSession      GdiplusStartup for the scope; PixelTest is a fixture that holds one
//   Dib                 a 32-bit top-down DIB section with its own memory DC; pixel access and fills
//   RenderWindow        WM_PRINTCLIENT (or WM_PAINT with the DC in wParam) into a Dib of the
//                       window's client size; never a screen grab
//   MatchesGolden       compares a Dib with tests/golden/NAME.png; on a difference writes
//                       NAME.actual.png beside the test program
//   ComparePixels, LoadPng, SavePng, ReadBitmap
//
// Goldens are found through MIRL_SOURCE_DIR, the source tree's root, which the build defines for
// every target that links mirl_test_support. With MIRL_UPDATE_GOLDENS=1 in the environment,
// MatchesGolden writes the golden instead and fails, saying so: a regenerated picture is
// looked at before it is committed.
//
// Example:
//   class SwatchTest : public mirltest::PixelTest {};
//   TEST_F(SwatchTest, Paints)
//   {
//       mirltest::Dib picture = mirltest::RenderWindow(hwnd);
//       EXPECT_EQ(0xFF0000u, picture.Pixel(3, 3));
//       EXPECT_TRUE(mirltest::MatchesGolden(picture, "swatch"));
//   }
#pragma once

#include "MirlTestSupport.h"

#include <windows.h>
#include <objidl.h>

#include <gdiplus.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#ifndef MIRL_SOURCE_DIR
#error "MIRL_SOURCE_DIR is not defined: link the test with mirl_test_support (tests/support/CMakeLists.txt)"
#endif

namespace mirltest {

// GDI+ started for the lifetime of the object.
class GdiplusSession {
public:
    GdiplusSession()
    {
        Gdiplus::GdiplusStartupInput input;
        m_Ok = Gdiplus::GdiplusStartup(&m_Token, &input, nullptr) == Gdiplus::Ok;
    }
    ~GdiplusSession()
    {
        if (m_Ok)
            Gdiplus::GdiplusShutdown(m_Token);
    }
    GdiplusSession(const GdiplusSession &) = delete;
    GdiplusSession &operator=(const GdiplusSession &) = delete;

    bool ok() const { return m_Ok; }

private:
    ULONG_PTR m_Token = 0;
    bool m_Ok = false;
};

// A fixture for tests that load or save pictures.
class PixelTest : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(m_Gdiplus.ok()) << "GdiplusStartup failed"; }

    GdiplusSession m_Gdiplus;
};

// A 32-bit top-down DIB section selected into a memory DC of its own. Pixels are DWORDs
// 0xAARRGGBB; GDI leaves alpha 0 where it draws and GDI+ writes FF, so comparisons ignore alpha
// unless told otherwise.
class Dib {
public:
    Dib() = default;
    Dib(int width, int height) : m_Width(std::max(width, 0)), m_Height(std::max(height, 0))
    {
        if (m_Width == 0 || m_Height == 0)
            return;
        BITMAPINFO info = Format();
        void *bits = nullptr;
        m_Dc = CreateCompatibleDC(nullptr);
        m_Bitmap = CreateDIBSection(m_Dc, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
        m_Bits = static_cast<DWORD *>(bits);
        m_Old = SelectObject(m_Dc, m_Bitmap);
    }
    ~Dib() { Release(); }
    Dib(Dib &&other) noexcept { Take(other); }
    Dib &operator=(Dib &&other) noexcept
    {
        if (this != &other) {
            Release();
            Take(other);
        }
        return *this;
    }
    Dib(const Dib &) = delete;
    Dib &operator=(const Dib &) = delete;

    int width() const { return m_Width; }
    int height() const { return m_Height; }
    HDC dc() const { return m_Dc; }
    HBITMAP bitmap() const { return m_Bitmap; }
    bool empty() const { return m_Bits == nullptr; }
    // The layout of the pixels, for GetDIBits and SetDIBits.
    BITMAPINFO Format() const
    {
        BITMAPINFO info = {};
        info.bmiHeader.biSize = sizeof(BITMAPINFOHEADER);
        info.bmiHeader.biWidth = m_Width;
        info.bmiHeader.biHeight = -m_Height;
        info.bmiHeader.biPlanes = 1;
        info.bmiHeader.biBitCount = 32;
        info.bmiHeader.biCompression = BI_RGB;
        return info;
    }

    // The pixels, row by row from the top, after GDI has finished drawing into them.
    DWORD *Bits() const
    {
        GdiFlush();
        return m_Bits;
    }
    // The colour at (x, y) as 0xRRGGBB.
    DWORD Pixel(int x, int y) const { return RawPixel(x, y) & 0x00FFFFFF; }
    // The stored value at (x, y), alpha included: 0xAARRGGBB.
    DWORD RawPixel(int x, int y) const { return Bits()[Index(x, y)]; }
    void SetPixel(int x, int y, DWORD argb) { Bits()[Index(x, y)] = argb; }

    // Fills every pixel with colourAt(x, y), a 0xAARRGGBB value.
    template <class ColourAt> void FillWith(ColourAt colourAt)
    {
        DWORD *bits = Bits();
        for (int y = 0; y < m_Height; ++y) {
            for (int x = 0; x < m_Width; ++x)
                bits[Index(x, y)] = colourAt(x, y);
        }
    }
    void Fill(DWORD argb)
    {
        FillWith([argb](int, int) { return argb; });
    }
    // A rectangle clipped to the picture.
    void FillRect(int left, int top, int right, int bottom, DWORD argb)
    {
        FillWith([&, this](int x, int y) {
            return x >= left && x < right && y >= top && y < bottom ? argb : m_Bits[Index(x, y)];
        });
    }
    // Squares of `cell` pixels, `first` at the top left.
    void FillChecker(DWORD first, DWORD second, int cell)
    {
        FillWith([=](int x, int y) { return ((x / cell + y / cell) % 2 == 0) ? first : second; });
    }

private:
    size_t Index(int x, int y) const
    {
        return static_cast<size_t>(y) * static_cast<size_t>(m_Width) + static_cast<size_t>(x);
    }
    void Release()
    {
        if (m_Dc != nullptr) {
            SelectObject(m_Dc, m_Old);
            DeleteObject(m_Bitmap);
            DeleteDC(m_Dc);
        }
        m_Dc = nullptr;
        m_Bitmap = nullptr;
        m_Bits = nullptr;
        m_Width = m_Height = 0;
    }
    void Take(Dib &other)
    {
        m_Width = other.m_Width;
        m_Height = other.m_Height;
        m_Dc = std::exchange(other.m_Dc, nullptr);
        m_Bitmap = std::exchange(other.m_Bitmap, nullptr);
        m_Old = other.m_Old;
        m_Bits = std::exchange(other.m_Bits, nullptr);
        other.m_Width = other.m_Height = 0;
    }

    int m_Width = 0;
    int m_Height = 0;
    HDC m_Dc = nullptr;
    HBITMAP m_Bitmap = nullptr;
    HGDIOBJ m_Old = nullptr;
    DWORD *m_Bits = nullptr;
};

// How RenderWindow asks the window to paint.
enum class PaintRoute {
    PrintClient, // WM_PRINTCLIENT, wParam the DC, lParam the print flags
    PaintWithDc, // WM_PAINT with the DC in wParam, the library's double-buffer convention
};

struct RenderOptions {
    PaintRoute route = PaintRoute::PrintClient;
    // What the picture holds before painting: whatever stays this colour was not painted.
    DWORD background = 0x00FF00FF;
    LPARAM printFlags = PRF_CLIENT;
};

// The window's client area as the window paints it into a memory DC of the client's size.
inline Dib RenderWindow(HWND hwnd, const RenderOptions &options = RenderOptions())
{
    RECT client = {};
    GetClientRect(hwnd, &client);
    Dib picture(client.right - client.left, client.bottom - client.top);
    if (picture.empty())
        return picture;
    picture.Fill(options.background);
    WPARAM dc = reinterpret_cast<WPARAM>(picture.dc());
    if (options.route == PaintRoute::PrintClient)
        SendMessageW(hwnd, WM_PRINTCLIENT, dc, options.printFlags);
    else
        SendMessageW(hwnd, WM_PAINT, dc, 0);
    GdiFlush();
    return picture;
}

// Where two pictures differ beyond a per-channel tolerance.
struct PixelDifference {
    int count = 0; // pixels that differ
    int x = -1;    // the first of them, in row order
    int y = -1;
    DWORD expected = 0; // its colours, 0xAARRGGBB
    DWORD actual = 0;
};

// Compares two pictures of the same size channel by channel; alpha only when `compareAlpha`.
inline PixelDifference ComparePixels(const Dib &expected, const Dib &actual, int tolerance = 2,
                                     bool compareAlpha = false)
{
    PixelDifference difference;
    const DWORD *want = expected.Bits();
    const DWORD *got = actual.Bits();
    const int shifts = compareAlpha ? 4 : 3;
    for (int y = 0; y < expected.height(); ++y) {
        for (int x = 0; x < expected.width(); ++x) {
            const size_t i = static_cast<size_t>(y) * expected.width() + x;
            bool differs = false;
            for (int channel = 0; channel < shifts && !differs; ++channel) {
                const int a = static_cast<int>((want[i] >> (8 * channel)) & 0xFF);
                const int b = static_cast<int>((got[i] >> (8 * channel)) & 0xFF);
                differs = std::abs(a - b) > tolerance;
            }
            if (!differs)
                continue;
            if (difference.count++ == 0) {
                difference.x = x;
                difference.y = y;
                difference.expected = want[i];
                difference.actual = got[i];
            }
        }
    }
    return difference;
}

namespace detail {

inline std::wstring Widen(const char *text)
{
    int length = MultiByteToWideChar(CP_UTF8, 0, text, -1, nullptr, 0);
    std::wstring wide(length > 0 ? length - 1 : 0, L'\0');
    if (length > 1)
        MultiByteToWideChar(CP_UTF8, 0, text, -1, &wide[0], length);
    return wide;
}

inline std::string Narrow(const std::wstring &text)
{
    int length = WideCharToMultiByte(CP_UTF8, 0, text.c_str(), -1, nullptr, 0, nullptr, nullptr);
    std::string narrow(length > 0 ? length - 1 : 0, '\0');
    if (length > 1)
        WideCharToMultiByte(CP_UTF8, 0, text.c_str(), -1, &narrow[0], length, nullptr, nullptr);
    return narrow;
}

inline std::string Colour(DWORD argb, bool withAlpha)
{
    char text[16];
    if (withAlpha)
        std::snprintf(text, sizeof(text), "0x%08lX", static_cast<unsigned long>(argb));
    else
        std::snprintf(text, sizeof(text), "0x%06lX", static_cast<unsigned long>(argb & 0x00FFFFFF));
    return text;
}

inline bool FindEncoder(const wchar_t *mimeType, CLSID *clsid)
{
    UINT count = 0;
    UINT size = 0;
    if (Gdiplus::GetImageEncodersSize(&count, &size) != Gdiplus::Ok || size == 0)
        return false;
    std::vector<BYTE> buffer(size);
    Gdiplus::ImageCodecInfo *codecs = reinterpret_cast<Gdiplus::ImageCodecInfo *>(buffer.data());
    if (Gdiplus::GetImageEncoders(count, size, codecs) != Gdiplus::Ok)
        return false;
    for (UINT i = 0; i < count; ++i) {
        if (wcscmp(codecs[i].MimeType, mimeType) == 0) {
            *clsid = codecs[i].Clsid;
            return true;
        }
    }
    return false;
}

// Creates each missing folder on the way to `file`.
inline void CreateFoldersFor(const std::wstring &file)
{
    for (size_t slash = file.find(L'\\', 3); slash != std::wstring::npos; slash = file.find(L'\\', slash + 1))
        CreateDirectoryW(file.substr(0, slash).c_str(), nullptr);
}

} // namespace detail

// The source tree's root as a Windows path. The build knows it as a host path; under Wine a
// host path starting with '/' is mapped through Wine's own converter, Z: (the host's root) failing that.
inline std::wstring SourceFolder()
{
    const char *host = MIRL_SOURCE_DIR;
    if (host[0] == '/') {
        typedef WCHAR *(CDECL * ToDosName)(const char *);
        FARPROC proc = GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "wine_get_dos_file_name");
        if (proc != nullptr) {
            WCHAR *dos = reinterpret_cast<ToDosName>(reinterpret_cast<void (*)()>(proc))(host);
            if (dos != nullptr) {
                std::wstring folder(dos);
                HeapFree(GetProcessHeap(), 0, dos);
                return folder;
            }
        }
    }
    std::wstring folder = host[0] == '/' ? L"Z:" + detail::Widen(host) : detail::Widen(host);
    std::replace(folder.begin(), folder.end(), L'/', L'\\');
    return folder;
}

inline std::wstring GoldenFolder()
{
    return SourceFolder() + L"\\tests\\golden";
}

// Saves a picture as PNG. Alpha is written as opaque unless `keepAlpha`: GDI leaves it 0, which
// would make a picture of GDI drawing invisible in a viewer.
inline bool SavePng(const Dib &picture, const std::wstring &path, bool keepAlpha = false)
{
    CLSID png;
    if (picture.empty() || !detail::FindEncoder(L"image/png", &png))
        return false;
    std::vector<DWORD> pixels(picture.Bits(), picture.Bits() + static_cast<size_t>(picture.width()) * picture.height());
    if (!keepAlpha) {
        for (DWORD &pixel : pixels)
            pixel |= 0xFF000000;
    }
    Gdiplus::Bitmap bitmap(picture.width(), picture.height(), picture.width() * 4, PixelFormat32bppARGB,
                           reinterpret_cast<BYTE *>(pixels.data()));
    detail::CreateFoldersFor(path);
    return bitmap.Save(path.c_str(), &png, nullptr) == Gdiplus::Ok;
}

// Any bitmap (a DIB section or a device-dependent bitmap) copied into a 32-bit Dib.
inline Dib ReadBitmap(HBITMAP source)
{
    BITMAP info = {};
    if (GetObjectW(source, sizeof(info), &info) == 0)
        return Dib();
    Dib picture(info.bmWidth, info.bmHeight);
    if (picture.empty())
        return picture;
    BITMAPINFO format = picture.Format();
    GetDIBits(picture.dc(), source, 0, info.bmHeight, picture.Bits(), &format, DIB_RGB_COLORS);
    return picture;
}

inline bool SavePng(HBITMAP bitmap, const std::wstring &path, bool keepAlpha = false)
{
    return SavePng(ReadBitmap(bitmap), path, keepAlpha);
}

// A PNG file as a Dib; empty when the file cannot be read.
inline Dib LoadPng(const std::wstring &path)
{
    // The file stays open as long as the GDI+ bitmap lives: it is gone before anyone rewrites it.
    std::unique_ptr<Gdiplus::Bitmap> bitmap(Gdiplus::Bitmap::FromFile(path.c_str()));
    if (!bitmap || bitmap->GetLastStatus() != Gdiplus::Ok)
        return Dib();
    Dib picture(static_cast<int>(bitmap->GetWidth()), static_cast<int>(bitmap->GetHeight()));
    if (picture.empty())
        return picture;
    Gdiplus::BitmapData data = {};
    data.Width = picture.width();
    data.Height = picture.height();
    data.Stride = picture.width() * 4;
    data.PixelFormat = PixelFormat32bppARGB;
    data.Scan0 = picture.Bits();
    Gdiplus::Rect all(0, 0, picture.width(), picture.height());
    // ImageLockModeUserInputBuf: GDI+ converts straight into the Dib's memory.
    if (bitmap->LockBits(&all, Gdiplus::ImageLockModeRead | Gdiplus::ImageLockModeUserInputBuf,
                         PixelFormat32bppARGB, &data) != Gdiplus::Ok)
        return Dib();
    bitmap->UnlockBits(&data);
    return picture;
}

// How MatchesGolden compares.
struct GoldenOptions {
    int tolerance = 2;          // per channel
    int allowedDifferences = 0; // pixels beyond the tolerance that still pass
    bool compareAlpha = false;
    std::wstring goldenFolder;  // empty: tests/golden of the source tree
};

// Compares `actual` with GOLDEN/NAME.png (NAME may hold '/' for a subfolder). On a difference
// writes NAME.actual.png beside the test program (with '/' as '_') and fails with the count and
// the first differing pixel. With MIRL_UPDATE_GOLDENS=1 it writes the golden and fails.
inline ::testing::AssertionResult MatchesGolden(const Dib &actual, const char *name,
                                                const GoldenOptions &options = GoldenOptions())
{
    std::wstring relative = detail::Widen(name);
    std::replace(relative.begin(), relative.end(), L'/', L'\\');
    const std::wstring golden =
        (options.goldenFolder.empty() ? GoldenFolder() : options.goldenFolder) + L"\\" + relative + L".png";
    std::wstring flat = detail::Widen(name);
    std::replace(flat.begin(), flat.end(), L'/', L'_');
    const std::wstring actualPath = BinDir() + L"\\" + flat + L".actual.png";

    if (actual.empty())
        return ::testing::AssertionFailure() << "golden " << name << ": nothing was rendered (empty picture)";

    wchar_t update[8] = {};
    if (GetEnvironmentVariableW(L"MIRL_UPDATE_GOLDENS", update, 8) > 0 && wcscmp(update, L"1") == 0) {
        if (!SavePng(actual, golden))
            return ::testing::AssertionFailure() << "golden " << name << ": could not write " << detail::Narrow(golden);
        return ::testing::AssertionFailure()
               << "golden " << name << " regenerated at " << detail::Narrow(golden) << " (" << actual.width() << "x"
               << actual.height() << "): look at it, then run again without MIRL_UPDATE_GOLDENS";
    }

    const Dib expected = LoadPng(golden);
    std::string problem;
    if (expected.empty()) {
        problem = "no golden at " + detail::Narrow(golden) + " (MIRL_UPDATE_GOLDENS=1 writes it)";
    } else if (expected.width() != actual.width() || expected.height() != actual.height()) {
        problem = "size differs: golden " + std::to_string(expected.width()) + "x" + std::to_string(expected.height()) +
                  ", actual " + std::to_string(actual.width()) + "x" + std::to_string(actual.height());
    } else {
        const PixelDifference difference = ComparePixels(expected, actual, options.tolerance, options.compareAlpha);
        if (difference.count <= options.allowedDifferences) {
            DeleteFileW(actualPath.c_str()); // a stale one would mislead
            return ::testing::AssertionSuccess();
        }
        problem = std::to_string(difference.count) + " pixel(s) differ by more than " +
                  std::to_string(options.tolerance) + " (" + std::to_string(options.allowedDifferences) +
                  " allowed); first at (" + std::to_string(difference.x) + ", " + std::to_string(difference.y) +
                  "): golden " + detail::Colour(difference.expected, options.compareAlpha) + ", actual " +
                  detail::Colour(difference.actual, options.compareAlpha);
    }
    const bool saved = SavePng(actual, actualPath, options.compareAlpha);
    return ::testing::AssertionFailure() << "golden " << name << ": " << problem << "; "
                                         << (saved ? "actual written to " : "could not write ")
                                         << detail::Narrow(actualPath);
}

} // namespace mirltest
