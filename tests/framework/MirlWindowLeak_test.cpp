#include "MirlWindowTestSupport.h"
#include "MirlLeakCounters.h"

using mirltest::BusyHeapBytes;
using mirltest::Canvas;
using mirltest::LiveGdiObjects;
using mirltest::TestFrame;

namespace {

::testing::Environment *const g_Mirl = ::testing::AddGlobalTestEnvironment(new mirltest::MirlEnvironment());

int CountWindows(MirlWindowBase *window)
{
    int count = 1;
    for (unsigned int i = 0; i < window->GetChildCount(); ++i) {
        count += CountWindows(window->GetChildByIndex(i));
    }
    return count;
}

// One cycle: the whole tree created, laid out, its transparent leaves painted (which makes the
// pictures of their parents), then destroyed.
void CreatePaintDestroy()
{
    TestFrame *frame = new TestFrame();
    frame->Create(nullptr, nullptr, static_cast<LPRECT>(nullptr), L"Tree");
    Canvas canvas(4, 4);
    for (unsigned int p = 0; p < frame->GetChildCount(); ++p) {
        MirlWindowBase *panel = frame->GetChildByIndex(p);
        if (panel->GetChildCount() > 0) {
            canvas.Paint(panel->GetChildByIndex(0)->m_hWnd);
        }
    }
    frame->DestroyWindow();
    delete frame;
}

} // namespace

TEST(WindowLeaks, TreeTemplateHoldsTwoHundredWindows)
{
    TestFrame frame;
    frame.Create(nullptr, nullptr, static_cast<LPRECT>(nullptr), L"Tree");
    EXPECT_EQ(200, CountWindows(&frame));
    frame.DestroyWindow();
}

TEST(WindowLeaks, HundredCreateDestroyCyclesOfATwoHundredWindowTreeDoNotGrow)
{
    // Warm-up: classes registered, caches filled.
    CreatePaintDestroy();
    CreatePaintDestroy();
    size_t heapBefore = BusyHeapBytes();
    int gdiBefore = LiveGdiObjects();
    for (int i = 0; i < 100; ++i) {
        CreatePaintDestroy();
    }
    size_t heapAfter = BusyHeapBytes();
    int gdiAfter = LiveGdiObjects();
    EXPECT_EQ(gdiBefore, gdiAfter);
    // One leaked object per window per cycle would be 20,000 blocks; noise stays far below.
    EXPECT_LT(static_cast<long long>(heapAfter) - static_cast<long long>(heapBefore), 64 * 1024)
        << "before " << heapBefore << " after " << heapAfter;
}
