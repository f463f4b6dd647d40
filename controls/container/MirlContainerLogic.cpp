#include "MirlContainerLogic.h"

#include <climits>

namespace MIRL {

namespace {

int ClampToInt(long long value)
{
    if (value > INT_MAX) {
        return INT_MAX;
    }
    if (value < INT_MIN) {
        return INT_MIN;
    }
    return static_cast<int>(value);
}

} // namespace

MirlTabFace ChooseTabFace(bool mouseOver, bool drawHover, bool menuZone, bool current)
{
    if (mouseOver) {
        if (!drawHover) {
            return TabFaceNone;
        }
        return menuZone ? TabFaceMenu : TabFaceHover;
    }
    return current ? TabFaceActive : TabFaceNone;
}

MirlTabFace ChooseBarFace(bool mouseOver, bool drawHover, bool menuZone, bool current)
{
    if (mouseOver) {
        if (!drawHover) {
            return TabFaceNone;
        }
        return menuZone ? TabFaceMenu : TabFaceHover;
    }
    return current ? TabFaceActive : TabFaceHover;
}

bool IsInMenuZone(int y, int limit)
{
    return y > limit;
}

MirlTabFaceParts PlaceTabFace(const RECT &item, int imageWidth, int imageHeight, int arrowWidth, int arrowHeight)
{
    const int half = imageWidth / 2;
    MirlTabFaceParts parts;
    parts.leftTarget = {item.left, item.top, half, imageHeight};
    parts.fill = {ClampToInt(static_cast<long long>(half) + item.left), item.top,
                  ClampToInt(static_cast<long long>(item.right) - item.left - imageWidth),
                  ClampToInt(static_cast<long long>(item.bottom) - item.top)};
    parts.rightTarget = {ClampToInt(static_cast<long long>(item.right) - half), item.top, imageWidth - half,
                         imageHeight};
    parts.rightSourceX = half;
    parts.arrowX = ClampToInt((static_cast<long long>(item.right) - arrowWidth + item.left) / 2);
    parts.arrowY = ClampToInt(static_cast<long long>(item.bottom) - arrowHeight - 4);
    return parts;
}

void TabTextOrigin(const RECT &item, float textWidth, float textHeight, float *x, float *y)
{
    *x = (static_cast<float>(item.right - item.left) - textWidth) * 0.5f + static_cast<float>(item.top);
    *y = (static_cast<float>(item.bottom) - textHeight) * 0.5f;
}

void BarTextOrigin(const RECT &item, float textWidth, float textHeight, float *x, float *y)
{
    *x = (static_cast<float>(item.right - item.left) - textWidth) * 0.5f + static_cast<float>(item.left);
    *y = (static_cast<float>(item.bottom) - textHeight) * 0.5f - 2.0f;
}

int BarIconTop(const RECT &item, int iconHeight)
{
    return ClampToInt((static_cast<long long>(item.top) + item.bottom - iconHeight) / 2);
}

MirlFolderStack StackFolders(int clientHeight, int barHeight, int barGap, const std::vector<MirlFolderSpec> &folders)
{
    MirlFolderStack stack;
    const long long n = static_cast<long long>(folders.size());
    stack.free = ClampToInt(clientHeight - n * (static_cast<long long>(barHeight) + barGap));
    long long left = stack.free;
    for (const MirlFolderSpec &folder : folders) {
        long long height = folder.height;
        if (folder.percent) {
            // Truncated toward zero, as integer division does.
            height = static_cast<long long>(folder.height) * stack.free / 100;
            if (height > folder.maxHeight) {
                height = folder.maxHeight;
            }
            if (height < folder.minHeight) {
                height = folder.minHeight;
            }
        }
        stack.heights.push_back(ClampToInt(height));
        left -= stack.heights.back();
    }
    stack.left = ClampToInt(left);
    stack.setsRange = left < 0;
    stack.rangeMax = stack.setsRange ? ClampToInt(-left) : 0;
    stack.page = stack.rangeMax / 5;
    return stack;
}

std::vector<MirlFolderPlace> PlaceFolders(int top, int barHeight, int barGap, const std::vector<int> &heights,
                                          const std::vector<bool> &visible)
{
    std::vector<MirlFolderPlace> places;
    long long y = top;
    for (size_t i = 0; i < heights.size(); ++i) {
        MirlFolderPlace place;
        place.barTop = ClampToInt(y);
        y += static_cast<long long>(barHeight) + barGap;
        place.panelTop = ClampToInt(y);
        if (i >= visible.size() || visible[i]) {
            y += heights[i];
        }
        places.push_back(place);
    }
    return places;
}

int FolderMoveCount(size_t count)
{
    return ClampToInt(2LL * static_cast<long long>(count));
}

int ScrollFoldersStep(int code, int thumbPosition, int position, int minimum, int maximum)
{
    long long next = position;
    switch (code) {
    case SB_LINEUP:
    case SB_TOP:
        next = static_cast<long long>(position) - 1;
        if (next < minimum) {
            next = minimum;
        }
        break;
    case SB_LINEDOWN:
    case SB_BOTTOM:
        next = static_cast<long long>(position) + 1;
        if (next > maximum) {
            next = maximum;
        }
        break;
    case SB_PAGEUP:
        next = static_cast<long long>(position) - 15;
        if (next < minimum) {
            next = minimum;
        }
        break;
    case SB_PAGEDOWN:
        next = static_cast<long long>(position) + 15;
        if (next > maximum) {
            next = maximum;
        }
        break;
    case SB_THUMBPOSITION:
    case SB_THUMBTRACK:
        next = thumbPosition;
        break;
    default:
        break;
    }
    return ClampToInt(next);
}

int WheelStep(int delta, int position, int minimum, int maximum)
{
    long long next = position;
    if (delta > 0) {
        next -= 10;
    } else if (delta < 0) {
        next += 10;
    }
    if (next > maximum) {
        next = maximum;
    }
    if (next < minimum) {
        next = minimum;
    }
    return ClampToInt(next);
}

int NextFolderIndex(int index, int count)
{
    if (count <= 0) {
        return -1;
    }
    if (index < 0 || index >= count - 1) {
        return 0;
    }
    return index + 1;
}

int TabChildIndex(const std::vector<bool> &isTab, int index)
{
    if (index < 0) {
        return -1;
    }
    int seen = 0;
    for (size_t i = 0; i < isTab.size(); ++i) {
        if (!isTab[i]) {
            continue;
        }
        if (seen == index) {
            return static_cast<int>(i);
        }
        ++seen;
    }
    return -1;
}

int FirstTabEntry(const std::vector<MirlToolbarChild> &children)
{
    int first = -1;
    int made = 0;
    for (size_t i = 0; i < children.size(); ++i) {
        if (children[i] != ToolbarChildNone) {
            ++made;
        }
        if (first < 0 && children[i] == ToolbarChildTab) {
            first = static_cast<int>(i);
        }
    }
    return first >= 0 && first < made ? first : -1;
}

MirlStripParts PlaceToolbarStrip(int clientWidth, int clientHeight, int leftWidth, int middleImageHeight)
{
    MirlStripParts parts;
    parts.left = {0, 0, leftWidth, clientHeight};
    parts.middle = {leftWidth, 0, ClampToInt(static_cast<long long>(clientWidth) - 2LL * leftWidth), clientHeight};
    parts.middleSource = {3, 0, 4, middleImageHeight};
    parts.right = {ClampToInt(static_cast<long long>(clientWidth) - leftWidth), 0, leftWidth, clientHeight};
    return parts;
}

MirlGroupBarParts PlaceGroupBar(int clientWidth, int leftWidth, int leftHeight, int rightWidth)
{
    MirlGroupBarParts parts;
    const int middle = ClampToInt(static_cast<long long>(clientWidth) - leftWidth - rightWidth);
    parts.left = {0, 0, leftWidth, leftHeight};
    parts.middle = {leftWidth, 0, middle, leftHeight};
    parts.right = {ClampToInt(static_cast<long long>(leftWidth) + middle), 0, rightWidth, leftHeight};
    parts.captionX = 8.0f;
    parts.captionY = 0.0f;
    parts.captionWidth = static_cast<float>(clientWidth - 8);
    parts.captionHeight = static_cast<float>(leftHeight);
    return parts;
}

} // namespace MIRL
