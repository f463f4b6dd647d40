// The message storm: a window of each control class, made from the storm skin, gets thousands
// of seeded random messages from the ranges it handles, with extreme parameters, while the
// storm checks that it stays alive, that it still paints, and that the process's heaps and GDI
// objects do not grow. Each control class is one row of kStormClasses.
#pragma once

#include "MirlFuzzProtocol.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace mirlfuzz {

// How one parameter of a stormed message is drawn. Handles come from a pool of live, null and
// stale ones; numbers from the extremes of their kind.
enum class StormParam {
    Zero,
    Number,  // 0, ±1, 16- and 32-bit edges, pointer-width edges, random
    Point,   // packed x and y, extreme coordinates included
    Size,    // packed width and height, extreme sizes included
    Dc,      // a memory picture, a window's DC, a bare memory DC, none, a deleted one
    Window,  // the window itself, its host, a child, the desktop, none, a destroyed one
    Key,     // a virtual-key code
    KeyData, // repeat count, scan code and transition flags
    Bool,
    Font,    // a font handle, a stock one, none, a deleted one
    Text,    // a real string: empty, a name in the storm skin, link markup, 2,000 characters...
    DrawItem, // a real DRAWITEMSTRUCT for the window, with extreme rectangle, state and DC
};

// A range of messages and how to draw their parameters; weight is its share of the draws.
struct StormMessage {
    UINT first;
    UINT last;
    StormParam wParam;
    StormParam lParam;
    unsigned weight;
};

// A message whose lParam is a pointer: never sent unless that pointer is drawn as safeLParam,
// a real record (Text, DrawItem); Zero means never sent at all.
struct DeniedMessage {
    UINT message;
    StormParam safeLParam;
};

// One control class under the storm.
struct StormClass {
    const wchar_t *className;    // the "Class" word of its template
    const wchar_t *templateName; // its template in the storm skin
    bool keepsLook;              // paints the very same picture whatever it was sent
    const StormMessage *messages; // its own messages, drawn on top of the common ones
    size_t messageCount;
    const DeniedMessage *denied; // its own messages whose parameters are pointers
    size_t deniedCount;
};

extern const StormClass kStormClasses[];
extern const size_t kStormClassCount;
const StormClass *FindStormClass(const std::string &className);

// A message as drawn: symbolic parameters, resolved to live handles only in the worker, so
// that the driver can describe the sequence of a failing seed without running it.
struct StormDraw {
    UINT message;
    StormParam wKind, lKind;
    uint64_t wValue, lValue;
};

class StormGenerator {
public:
    StormGenerator(const StormClass &row, uint64_t seed);
    StormDraw Next();
    // The common messages and the class's own, as drawn from.
    const std::vector<StormMessage> &Messages() const { return m_Messages; }

private:
    const StormClass *m_Row;
    std::vector<StormMessage> m_Messages;
    unsigned m_TotalWeight;
    uint64_t m_State;
    uint64_t Draw();
};

// True for messages never sent to any window with an lParam of that kind: their parameters are
// pointers that the system, the reflection code or the control dereferences, or they end the
// window's life or start a modal loop.
bool IsDeniedMessage(const StormClass &row, UINT message, StormParam lParam);

std::string DescribeDraw(const StormDraw &draw);

// Runs a storm of count messages in this process; answers ExitDone or a storm exit code, with
// a note in block.
DWORD RunStorm(const StormClass &row, uint64_t seed, long count, SharedBlock *block);

} // namespace mirlfuzz
