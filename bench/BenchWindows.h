// The window trees of the benchmark: the library's from the "Tree" template of the window skin,
// and the baseline's made of plain windows, system buttons and statics of the same sizes.
#pragma once

#include "BenchSupport.h"

#include "Mirl.h"

#include <memory>

namespace mirlbench {

// A top-level window of the application's own, as an application derives it.
class BenchFrame : public MirlWindowImpl<BenchFrame> {
};

// One child of the "Tree" template as written: class, place before layout, caption, identifier.
struct ChildShape {
    std::wstring windowClass;
    int x;
    int y;
    int width;
    int height;
    std::wstring text;
    int id;
};

// The children of the "Tree" template of the window skin, which MirlIntialize must have loaded.
std::vector<ChildShape> TreeShapes();

// The library's tree from a template; throws if it wasn't made.
std::unique_ptr<BenchFrame> CreateTree(const wchar_t *templateName);
void DestroyTree(std::unique_ptr<BenchFrame> &frame);

// The baseline: a popup of 1280x900 with one child of each shape given, all through CreateWindowExW.
HWND CreateBareTree(const std::vector<ChildShape> &shapes);
void DestroyBareTree(HWND parent);

} // namespace mirlbench
