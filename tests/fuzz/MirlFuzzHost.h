// What the skin runner and the message storm share inside a worker: the popup that hosts the
// windows under test, a memory picture to paint into, the process's heap and GDI counters, and
// a message pump that keeps windows alive.
#pragma once

#include "Mirl.h"
#include "MirlLeakCounters.h"

#include <cstddef>

namespace mirlfuzz {

// A popup of the fuzzer's own that hosts the windows made from a skin. It never closes on
// request: keyboard and mouse input may ask the system to close or to start a modal loop, and a
// host that follows would end the test instead of the window under test.
class FuzzHost : public MirlWindowImpl<FuzzHost> {
public:
    BEGIN_MSG_MAP(FuzzHost)
        MESSAGE_HANDLER(WM_SYSCOMMAND, OnRefuse)
        MESSAGE_HANDLER(WM_CLOSE, OnRefuse)
        CHAIN_MSG_MAP(MirlWindowImpl<FuzzHost>)
    END_MSG_MAP()

    LRESULT OnRefuse(UINT, WPARAM, LPARAM, BOOL &) { return 0; }

    // Creates the popup, borderless at the screen's corner, of that size and without a template.
    bool Open(int width, int height);
    // Adopts a window as a child object: laid out by this window's WM_SIZE, deleted with it.
    void Adopt(MirlWindowBase *child) { m_Children.push_back(child); }
    // Destroys the window and every child object.
    void Close();
    ~FuzzHost();
};

// A 32-bit top-down picture with its own memory context.
class Canvas {
public:
    Canvas(int width, int height);
    ~Canvas();
    Canvas(const Canvas &) = delete;
    Canvas &operator=(const Canvas &) = delete;

    HDC dc() const { return m_DC; }
    void Fill(DWORD pixel);
    DWORD At(int x, int y) const;

private:
    int m_Width;
    int m_Height;
    HDC m_DC;
    HBITMAP m_Bitmap;
    HGDIOBJ m_Old;
    DWORD *m_Bits;
};

using mirltest::BusyHeapBytes;
using mirltest::LiveGdiObjects;

// Live GDI objects by type (OBJ_PEN .. OBJ_COLORSPACE), for telling a leak from a cache.
struct GdiCensus {
    int total = 0;
    int byType[16] = {};
};
GdiCensus TakeGdiCensus();

// The growth between two censuses that can't be the system's cache of device contexts: a
// released cached DC keeps its visible region, so DCs that came with as many regions are the
// cache (up to cacheBound of them); every other new object counts.
int GrowthBeyondDcCache(const GdiCensus &before, const GdiCensus &after, int cacheBound);
// HeapValidate on every heap of the process.
bool HeapsAreValid();
// Dispatches what is posted to this thread, except requests to close or quit; at most limit.
void PumpMessages(int limit = 1000);

} // namespace mirlfuzz
