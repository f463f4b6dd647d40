// Pictures of live window trees: each window paints itself through its paint-into-a-context
// path, and the pictures are composed at the windows' places as the screen would show them.
#pragma once

#include <windows.h>

#include <string>

namespace mirlview {

// A 32-bit top-down picture with a memory context.
class Picture {
public:
    Picture(int width, int height);
    ~Picture();
    Picture(const Picture &) = delete;
    Picture &operator=(const Picture &) = delete;

    bool IsValid() const { return m_Bits != nullptr; }
    HDC dc() const { return m_DC; }
    int width() const { return m_Width; }
    int height() const { return m_Height; }
    // Pixels as 0x00RRGGBB words, row after row from the top.
    const DWORD *bits() const { return m_Bits; }

    void Fill(COLORREF color);

private:
    int m_Width;
    int m_Height;
    HDC m_DC;
    HBITMAP m_Bitmap;
    HGDIOBJ m_Old;
    DWORD *m_Bits;
};

// Paints root's client area and every visible descendant into the picture, which must have
// the root's client size. Children are painted after their parent, bottom of the Z order first,
// each clipped to its ancestors' client areas.
void ComposeWindowTree(HWND root, Picture &picture);

// Writes the picture as PNG through GDI+, which must be running. False with a reason on failure.
bool SavePng(const Picture &picture, const wchar_t *path, std::wstring &error);

} // namespace mirlview
