// A skin's gallery: every top-level template in every state its controls draw differently, as
// one labelled sheet (PNG) or as a page with one picture per template and state (HTML).
#pragma once

#include "MirlViewRender.h"

#include <string>
#include <vector>

namespace mirlview {

// One template in one state, as rendered.
struct GalleryShot {
    std::wstring templateName;
    std::wstring description;  // class and size, for the row's title
    std::wstring state;
    int width = 0;
    int height = 0;
    std::vector<DWORD> pixels;  // 0x00RRGGBB, rows from the top
};

// Where everything stands on the sheet: shots of one template share a row under its title,
// each shot with its state's name beneath it.
struct SheetLayout {
    int width = 0;
    int height = 0;
    std::vector<POINT> titles;    // one per row: where the template's title starts
    std::vector<RECT> pictures;   // one per shot
    std::vector<POINT> captions;  // one per shot: where its state's name starts
};

enum : int { kSheetMargin = 16, kSheetGap = 16, kSheetTitleHeight = 22, kSheetCaptionHeight = 20 };

SheetLayout LayOutSheet(const std::vector<GalleryShot> &shots);

// The shot's pixels equal another's (same size, same pixels).
bool SamePicture(const GalleryShot &a, const GalleryShot &b);

// The whole sheet as one PNG. GDI+ must be running.
bool SaveGallerySheet(const std::vector<GalleryShot> &shots, const std::wstring &path, std::wstring &error);

// A page at path (OUT.html) with one PNG per shot in the folder beside it (OUT_files).
bool SaveGalleryHtml(const std::vector<GalleryShot> &shots, const std::wstring &path, std::wstring &error);

// A name that is safe as a file name on every system: letters, digits, '-', '_' and '.'.
std::wstring SafeFileName(const std::wstring &name);

} // namespace mirlview
