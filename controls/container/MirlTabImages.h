// The images of tabs and folder bars that one process shares: three faces with a brush of
// each face's middle column, and the arrow. A set is loaded by every control that uses it,
// replacing the former images, and freed when the last of those controls lets go.
#pragma once

#include "MirlContainerLogic.h"

#include <windows.h>
#include <objidl.h>

#include <algorithm>
using std::max;
using std::min;
#include <gdiplus.h>

namespace MIRL {

class MirlTabImages {
public:
    // Element names of the active, menu and hover faces and of the arrow.
    MirlTabImages(const wchar_t *active, const wchar_t *menu, const wchar_t *hover, const wchar_t *arrow);

    // Loads the images anew from the skin, frees the former ones and counts one more holder.
    void Acquire();
    // One holder fewer; the images go with the last.
    void Release();
    int GetRef() const { return m_Ref; }

    Gdiplus::Bitmap *Face(MirlTabFace face) const;
    Gdiplus::TextureBrush *Brush(MirlTabFace face) const;
    Gdiplus::Bitmap *Arrow() const { return m_Arrow; }

private:
    void Free();

    const wchar_t *m_Names[4];
    Gdiplus::Bitmap *m_Faces[3];
    Gdiplus::TextureBrush *m_Brushes[3];
    Gdiplus::Bitmap *m_Arrow;
    int m_Ref;
};

// Draws a face in the item rectangle: left half, the brush across the middle, right half and
// the arrow. Nothing for a missing image; no arrow without one.
void PaintTabFace(Gdiplus::Graphics &graphics, Gdiplus::Bitmap *image, Gdiplus::TextureBrush *brush,
                  Gdiplus::Bitmap *arrow, const RECT &item);

} // namespace MIRL
