#include "MirlTabImages.h"

#include "MirlImage.h"

namespace MIRL {

MirlTabImages::MirlTabImages(const wchar_t *active, const wchar_t *menu, const wchar_t *hover, const wchar_t *arrow)
    : m_Names{active, menu, hover, arrow}, m_Faces(), m_Brushes(), m_Arrow(NULL), m_Ref(0)
{
}

void MirlTabImages::Acquire()
{
    Free();
    for (int i = 0; i < 3; ++i) {
        m_Faces[i] = LoadSkinBitmap(m_Names[i]);
    }
    // All three brushes take the middle column at the size of the active face: the three
    // images are meant to be of one size.
    if (m_Faces[0] != NULL) {
        const float width = static_cast<float>(m_Faces[0]->GetWidth());
        const float height = static_cast<float>(m_Faces[0]->GetHeight());
        for (int i = 0; i < 3; ++i) {
            if (m_Faces[i] == NULL) {
                continue;
            }
            Gdiplus::TextureBrush *brush = new Gdiplus::TextureBrush(
                m_Faces[i], Gdiplus::WrapModeTile, Gdiplus::RectF(width * 0.5f, 0.0f, 1.0f, height));
            // A column outside a smaller image makes no brush; the face is drawn without its fill.
            if (brush->GetLastStatus() != Gdiplus::Ok) {
                delete brush;
                brush = NULL;
            }
            m_Brushes[i] = brush;
        }
    }
    m_Arrow = LoadSkinBitmap(m_Names[3]);
    ++m_Ref;
}

void MirlTabImages::Release()
{
    if (m_Ref <= 0) {
        return;
    }
    if (--m_Ref == 0) {
        Free();
    }
}

void MirlTabImages::Free()
{
    for (int i = 0; i < 3; ++i) {
        delete m_Brushes[i];
        m_Brushes[i] = NULL;
        delete m_Faces[i];
        m_Faces[i] = NULL;
    }
    delete m_Arrow;
    m_Arrow = NULL;
}

Gdiplus::Bitmap *MirlTabImages::Face(MirlTabFace face) const
{
    switch (face) {
    case TabFaceActive:
        return m_Faces[0];
    case TabFaceMenu:
        return m_Faces[1];
    case TabFaceHover:
        return m_Faces[2];
    default:
        return NULL;
    }
}

Gdiplus::TextureBrush *MirlTabImages::Brush(MirlTabFace face) const
{
    switch (face) {
    case TabFaceActive:
        return m_Brushes[0];
    case TabFaceMenu:
        return m_Brushes[1];
    case TabFaceHover:
        return m_Brushes[2];
    default:
        return NULL;
    }
}

void PaintTabFace(Gdiplus::Graphics &graphics, Gdiplus::Bitmap *image, Gdiplus::TextureBrush *brush,
                  Gdiplus::Bitmap *arrow, const RECT &item)
{
    if (image == NULL) {
        return;
    }
    const int arrowWidth = arrow != NULL ? static_cast<int>(arrow->GetWidth()) : 0;
    const int arrowHeight = arrow != NULL ? static_cast<int>(arrow->GetHeight()) : 0;
    const MirlTabFaceParts parts = PlaceTabFace(item, static_cast<int>(image->GetWidth()),
                                                static_cast<int>(image->GetHeight()), arrowWidth, arrowHeight);
    graphics.DrawImage(image, Gdiplus::Rect(parts.leftTarget.x, parts.leftTarget.y, parts.leftTarget.width,
                                            parts.leftTarget.height),
                       0, 0, parts.leftTarget.width, parts.leftTarget.height, Gdiplus::UnitPixel);
    if (brush != NULL && parts.fill.width > 0 && parts.fill.height > 0) {
        // The brush tiles from the device origin: shift it so that its column lines up.
        brush->ResetTransform();
        brush->TranslateTransform(static_cast<float>(parts.fill.x), static_cast<float>(parts.fill.y));
        graphics.FillRectangle(brush, parts.fill.x, parts.fill.y, parts.fill.width, parts.fill.height);
    }
    graphics.DrawImage(image, Gdiplus::Rect(parts.rightTarget.x, parts.rightTarget.y, parts.rightTarget.width,
                                            parts.rightTarget.height),
                       parts.rightSourceX, 0, parts.rightTarget.width, parts.rightTarget.height, Gdiplus::UnitPixel);
    if (arrow != NULL) {
        graphics.DrawImage(arrow, parts.arrowX, parts.arrowY, arrowWidth, arrowHeight);
    }
}

} // namespace MIRL
