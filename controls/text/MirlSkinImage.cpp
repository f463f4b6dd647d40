#include "MirlImage.h"

namespace MIRL {

Gdiplus::Bitmap *LoadElementBitmap(const MirlUiElementImage *element)
{
    if (element == nullptr || element->GetFileName() == nullptr) {
        return NULL;
    }
    MirlUI *ui = MirlUI::Instance();
    if (ui == NULL) {
        return NULL;
    }
    IStreamPtr stream = ui->ExtractFile(element->GetFileName());
    if (stream == nullptr) {
        return NULL;
    }
    Gdiplus::Bitmap *bitmap = Gdiplus::Bitmap::FromStream(stream);
    if (bitmap != NULL && bitmap->GetLastStatus() != Gdiplus::Ok) {
        // A file that isn't a picture counts as no picture.
        delete bitmap;
        bitmap = NULL;
    }
    return bitmap;
}

Gdiplus::Bitmap *LoadSkinBitmap(const wchar_t *elementName)
{
    MirlUI *ui = MirlUI::Instance();
    if (ui == NULL || elementName == NULL) {
        return NULL;
    }
    return LoadElementBitmap(static_cast<MirlUiElementImage *>(ui->GetUiElement(elementName, UI_ELEMENT_IMAGE)));
}

Gdiplus::ARGB ColorToArgb(const MirlUiElementColor *color)
{
    return (static_cast<Gdiplus::ARGB>(color->A()) << 24) | (static_cast<Gdiplus::ARGB>(color->R()) << 16) |
           (static_cast<Gdiplus::ARGB>(color->G()) << 8) | color->B();
}

} // namespace MIRL
