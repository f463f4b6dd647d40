#include "MirlViewGallery.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace mirlview {

namespace {

const COLORREF kSheetBackground = RGB(236, 236, 236);
const COLORREF kTitleColor = RGB(32, 32, 32);
const COLORREF kCaptionColor = RGB(96, 96, 96);

std::wstring HtmlEscape(const std::wstring &text)
{
    std::wstring out;
    for (wchar_t c : text) {
        switch (c) {
        case L'&': out += L"&amp;"; break;
        case L'<': out += L"&lt;"; break;
        case L'>': out += L"&gt;"; break;
        case L'"': out += L"&quot;"; break;
        default: out += c; break;
        }
    }
    return out;
}

std::string Utf8(const std::wstring &text)
{
    int length = ::WideCharToMultiByte(CP_UTF8, 0, text.c_str(), static_cast<int>(text.size()), nullptr, 0, nullptr, nullptr);
    std::string out(static_cast<size_t>(length > 0 ? length : 0), '\0');
    if (length > 0) {
        ::WideCharToMultiByte(CP_UTF8, 0, text.c_str(), static_cast<int>(text.size()), &out[0], length, nullptr, nullptr);
    }
    return out;
}

void CopyShot(Picture &sheet, const GalleryShot &shot, const RECT &place)
{
    DWORD *bits = const_cast<DWORD *>(sheet.bits());
    for (int y = 0; y < shot.height; ++y) {
        std::memcpy(bits + static_cast<size_t>(place.top + y) * sheet.width() + place.left,
                    shot.pixels.data() + static_cast<size_t>(y) * shot.width, static_cast<size_t>(shot.width) * 4);
    }
}

void DrawLabel(HDC dc, HFONT font, COLORREF color, POINT at, const std::wstring &text)
{
    HGDIOBJ old = ::SelectObject(dc, font);
    ::SetBkMode(dc, TRANSPARENT);
    ::SetTextColor(dc, color);
    ::TextOutW(dc, at.x, at.y, text.c_str(), static_cast<int>(text.size()));
    ::SelectObject(dc, old);
}

bool ShotToPng(const GalleryShot &shot, const std::wstring &path, std::wstring &error)
{
    Picture picture(shot.width, shot.height);
    if (!picture.IsValid()) {
        error = L"no memory for a picture of " + shot.templateName;
        return false;
    }
    std::memcpy(const_cast<DWORD *>(picture.bits()), shot.pixels.data(), shot.pixels.size() * 4);
    return SavePng(picture, path.c_str(), error);
}

} // namespace

SheetLayout LayOutSheet(const std::vector<GalleryShot> &shots)
{
    SheetLayout layout;
    int y = kSheetMargin;
    size_t i = 0;
    int widest = 0;
    while (i < shots.size()) {
        layout.titles.push_back(POINT{kSheetMargin, y});
        int top = y + kSheetTitleHeight;
        int x = kSheetMargin;
        int tallest = 0;
        const std::wstring &name = shots[i].templateName;
        for (; i < shots.size() && shots[i].templateName == name; ++i) {
            layout.pictures.push_back(RECT{x, top, x + shots[i].width, top + shots[i].height});
            layout.captions.push_back(POINT{x, top + shots[i].height + 2});
            x += shots[i].width + kSheetGap;
            tallest = std::max(tallest, shots[i].height);
        }
        widest = std::max(widest, x - kSheetGap + kSheetMargin);
        y = top + tallest + kSheetCaptionHeight + kSheetGap;
    }
    layout.width = std::max(widest, 2 * kSheetMargin);
    layout.height = y - kSheetGap + kSheetMargin;
    return layout;
}

bool SamePicture(const GalleryShot &a, const GalleryShot &b)
{
    return a.width == b.width && a.height == b.height && a.pixels == b.pixels;
}

bool SaveGallerySheet(const std::vector<GalleryShot> &shots, const std::wstring &path, std::wstring &error)
{
    if (shots.empty()) {
        error = L"the skin has no template that makes a window";
        return false;
    }
    SheetLayout layout = LayOutSheet(shots);
    Picture sheet(layout.width, layout.height);
    if (!sheet.IsValid()) {
        error = L"the sheet is too large for one picture (" + std::to_wstring(layout.width) + L"x" +
                std::to_wstring(layout.height) + L"): write HTML instead";
        return false;
    }
    sheet.Fill(kSheetBackground);
    HFONT title = ::CreateFontW(-15, 0, 0, 0, FW_BOLD, FALSE, FALSE, FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS,
                                CLIP_DEFAULT_PRECIS, NONANTIALIASED_QUALITY, DEFAULT_PITCH, L"Arial");
    HFONT caption = ::CreateFontW(-12, 0, 0, 0, FW_NORMAL, FALSE, FALSE, FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS,
                                  CLIP_DEFAULT_PRECIS, NONANTIALIASED_QUALITY, DEFAULT_PITCH, L"Arial");
    size_t row = 0;
    for (size_t i = 0; i < shots.size(); ++i) {
        if (i == 0 || shots[i].templateName != shots[i - 1].templateName) {
            DrawLabel(sheet.dc(), title, kTitleColor, layout.titles[row++],
                      shots[i].templateName + L"   " + shots[i].description);
        }
        DrawLabel(sheet.dc(), caption, kCaptionColor, layout.captions[i], shots[i].state);
    }
    ::GdiFlush();
    for (size_t i = 0; i < shots.size(); ++i) {
        CopyShot(sheet, shots[i], layout.pictures[i]);
    }
    ::DeleteObject(title);
    ::DeleteObject(caption);
    return SavePng(sheet, path.c_str(), error);
}

bool SaveGalleryHtml(const std::vector<GalleryShot> &shots, const std::wstring &path, std::wstring &error)
{
    std::wstring stem = path;
    size_t dot = stem.find_last_of(L'.');
    size_t slash = stem.find_last_of(L"\\/");
    if (dot != std::wstring::npos && (slash == std::wstring::npos || dot > slash)) {
        stem.erase(dot);
    }
    std::wstring folder = stem + L"_files";
    std::wstring folderName = slash == std::wstring::npos ? folder : folder.substr(slash + 1);
    if (!::CreateDirectoryW(folder.c_str(), nullptr) && ::GetLastError() != ERROR_ALREADY_EXISTS) {
        error = L"cannot make the folder " + folder;
        return false;
    }
    std::wstring page = L"<!DOCTYPE html>\n<html><head><meta charset=\"utf-8\"><title>Skin gallery</title>\n"
                        L"<style>body{font-family:sans-serif;background:#ececec}figure{display:inline-block;"
                        L"margin:0 16px 16px 0;vertical-align:top}figcaption{color:#606060}</style></head><body>\n";
    for (size_t i = 0; i < shots.size(); ++i) {
        const GalleryShot &shot = shots[i];
        if (i == 0 || shot.templateName != shots[i - 1].templateName) {
            page += (i == 0 ? L"" : L"</section>\n");
            page += L"<section><h2>" + HtmlEscape(shot.templateName) + L" <small>" + HtmlEscape(shot.description) +
                    L"</small></h2>\n";
        }
        std::wstring file = SafeFileName(shot.templateName) + L"." + shot.state + L".png";
        if (!ShotToPng(shot, folder + L"\\" + file, error)) {
            return false;
        }
        page += L"<figure><img src=\"" + HtmlEscape(folderName + L"/" + file) + L"\" width=\"" +
                std::to_wstring(shot.width) + L"\" height=\"" + std::to_wstring(shot.height) + L"\" alt=\"" +
                HtmlEscape(shot.templateName + L", " + shot.state) + L"\"><figcaption>" + HtmlEscape(shot.state) +
                L"</figcaption></figure>\n";
    }
    page += shots.empty() ? L"<p>The skin has no template that makes a window.</p>\n" : L"</section>\n";
    page += L"</body></html>\n";
    std::string bytes = Utf8(page);
    FILE *out = _wfopen(path.c_str(), L"wb");
    if (out == nullptr) {
        error = L"cannot write " + path;
        return false;
    }
    bool ok = std::fwrite(bytes.data(), 1, bytes.size(), out) == bytes.size();
    ok = std::fclose(out) == 0 && ok;
    if (!ok) {
        error = L"cannot write " + path;
    }
    return ok;
}

std::wstring SafeFileName(const std::wstring &name)
{
    std::wstring out;
    for (wchar_t c : name) {
        bool safe = (c >= L'a' && c <= L'z') || (c >= L'A' && c <= L'Z') || (c >= L'0' && c <= L'9') || c == L'-' ||
                    c == L'_' || c == L'.';
        out += safe ? c : L'_';
    }
    return out.empty() ? L"_" : out;
}

} // namespace mirlview
