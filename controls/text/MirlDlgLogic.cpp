#include "MirlDlgLogic.h"

#include "MirlButtonLogic.h"

#include <cstdint>
#include <cwchar>

namespace MIRL {

namespace {

size_t FindMarkIgnoringCase(const std::wstring &text, const wchar_t *mark)
{
    const size_t length = wcslen(mark);
    for (size_t i = 0; i + length <= text.size(); ++i) {
        if (_wcsnicmp(text.c_str() + i, mark, length) == 0) {
            return i;
        }
    }
    return std::wstring::npos;
}

} // namespace

unsigned int DlgButtonType(unsigned long style)
{
    return static_cast<unsigned int>(style & 0x0F);
}

bool IsDlgCheckType(unsigned int type)
{
    return type == BS_CHECKBOX || type == BS_AUTOCHECKBOX || type == BS_RADIOBUTTON || type == BS_AUTORADIOBUTTON;
}

void DlgButtonImageNames(unsigned int type, const wchar_t *names[kDlgButtonSlots], bool required[kDlgButtonSlots])
{
    for (int i = 0; i < kDlgButtonSlots; ++i) {
        names[i] = NULL;
        required[i] = false;
    }
    if (type == BS_CHECKBOX || type == BS_AUTOCHECKBOX) {
        names[0] = L"CheckY";
        names[1] = L"CheckN";
        required[0] = required[1] = true;
    } else if (type == BS_RADIOBUTTON || type == BS_AUTORADIOBUTTON) {
        names[0] = L"RadioBtn0";
        names[1] = L"RadioBtn1";
        required[0] = required[1] = true;
    } else {
        names[0] = L"CmBtn1";
        names[1] = L"CmBtn2";
        names[2] = L"CmBtn3";
        names[3] = L"CmBtn0";
        required[1] = true;
    }
}

int DlgButtonSlot(bool pressed, bool hovering, bool disabled, const bool present[kDlgButtonSlots])
{
    int slot = 0;
    if (disabled) {
        slot = present[3] ? 3 : 0;
    } else if (pressed && present[2]) {
        slot = 2;
    } else if ((pressed || hovering) && present[1]) {
        slot = 1;
    }
    return present[slot] ? slot : -1;
}

int DlgCheckBoxSlot(bool pressedOrChecked)
{
    return pressedOrChecked ? 1 : 0;
}

bool DlgCheckAfterSetCheck(bool checked, WPARAM wParam)
{
    if (wParam == BST_CHECKED) {
        return true;
    }
    if (wParam == BST_UNCHECKED) {
        return false;
    }
    return checked;
}

DlgCaptionColors DlgButtonColors(bool hovering, bool disabled)
{
    if (disabled) {
        return DlgCaptionColors{0xFF9A9EA2, 0xFF6D7075};
    }
    if (hovering) {
        return DlgCaptionColors{0xFFD1D1D1, 0xFF3A3939};
    }
    return DlgCaptionColors{0xFFFFFFFF, 0xFF000000};
}

int DlgCheckImageTop(int height, unsigned int imageHeight)
{
    const uint32_t difference = static_cast<uint32_t>(height) - static_cast<uint32_t>(imageHeight);
    // At most 0x7FFFFFFF after the shift: always an int.
    return static_cast<int>(difference >> 1);
}

DialogLinkParts SplitDialogLink(const std::wstring &text)
{
    static const wchar_t kOpen[] = L"<link>";
    static const wchar_t kClose[] = L"</link>";
    DialogLinkParts parts = {false, -1, -1, std::wstring(), std::wstring(), std::wstring(), text};
    const size_t open = FindMarkIgnoringCase(text, kOpen);
    const size_t close = FindMarkIgnoringCase(text, kClose);
    if (open == std::wstring::npos || close == std::wstring::npos) {
        return parts;
    }
    parts.found = true;
    parts.start = static_cast<int>(open);
    parts.end = static_cast<int>(close);
    parts.head = text.substr(0, open);
    for (size_t i = open + 6; i < close; ++i) {
        parts.link += L'&';
        parts.link += text[i];
    }
    parts.tail = text.substr(close + 7);
    parts.shown = parts.head + parts.link + parts.tail;
    return parts;
}

RECT DialogLinkRect(bool hasHead, float headX, float headY, float headWidth, float headHeight, float linkWidth)
{
    int hx = 0;
    int hy = 0;
    if (hasHead) {
        hx = TruncateToInt(static_cast<double>(headX) + headWidth);
        hy = TruncateToInt(static_cast<double>(headY) + headHeight);
    }
    RECT rect = {hx, 0, TruncateToInt(static_cast<double>(hx) + linkWidth), hy};
    return rect;
}

bool IsInDialogLink(bool valid, const RECT &rect, int x, int y)
{
    return valid && rect.left <= x && x <= rect.right && rect.top <= y && y < rect.bottom;
}

std::wstring CutCaption(const std::wstring &text, size_t capacity)
{
    if (capacity == 0) {
        return std::wstring();
    }
    return text.size() < capacity ? text : text.substr(0, capacity - 1);
}

} // namespace MIRL
