// Two toolbars and two outlook controls created, painted and destroyed in every order: the
// shared images stay while one control still shows them, go with the last, and neither the
// heaps nor the GDI objects grow.
#include "MirlContainerTestSupport.h"
#include "controls/container/MirlContainerLogic.h"
#include "MirlLeakCounters.h"
#include "MirlPixelTest.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <vector>

namespace {

::testing::Environment *const g_Mirl =
    ::testing::AddGlobalTestEnvironment(new mirltest::SkinEnvironment(L"containers"));

// Paints every tab or bar of a control in its face, hovering once.
void PaintChildren(MirlWindowBase *control)
{
    for (unsigned int i = 0; i < control->GetChildCount(); ++i) {
        HWND child = control->GetChildByIndex(i)->m_hWnd;
        mirltest::RenderWindow(child);
        ::SendMessageW(child, WM_MOUSEMOVE, 0, MAKELPARAM(5, 30));
        mirltest::RenderWindow(child);
        ::ReleaseCapture();
    }
    mirltest::RenderWindow(control->m_hWnd);
}

// Four controls of two kinds, destroyed in the order given by `order` (indices 0 to 3: toolbar
// A, toolbar B, outlook A, outlook B); after each, the images of a kind with a control left
// must still be there, and those of a kind with none left must be gone.
void Cycle(const int order[4])
{
    mirltest::ButtonFrame frame;
    ASSERT_TRUE(frame.Open(L"Host"));
    std::unique_ptr<MirlToolbar> toolbars[2] = {std::unique_ptr<MirlToolbar>(new MirlToolbar()),
                                                std::unique_ptr<MirlToolbar>(new MirlToolbar())};
    std::unique_ptr<MIRLOutlookCtrl> outlooks[2] = {std::unique_ptr<MIRLOutlookCtrl>(new MIRLOutlookCtrl()),
                                                    std::unique_ptr<MIRLOutlookCtrl>(new MIRLOutlookCtrl())};
    ASSERT_NE(nullptr, toolbars[0]->Create(&frame, frame.m_hWnd, static_cast<LPRECT>(nullptr), L"StripPlain"));
    ASSERT_NE(nullptr, outlooks[0]->Create(&frame, frame.m_hWnd, static_cast<LPRECT>(nullptr), L"Folders"));
    ASSERT_NE(nullptr, toolbars[1]->Create(&frame, frame.m_hWnd, static_cast<LPRECT>(nullptr), L"StripSecond"));
    ASSERT_NE(nullptr, outlooks[1]->Create(&frame, frame.m_hWnd, static_cast<LPRECT>(nullptr), L"FoldersPixels"));
    EXPECT_EQ(2, MirlToolbar::GetTabImagesRef());
    EXPECT_EQ(2, MIRLOutlookCtrl::GetBarImagesRef());
    for (auto &toolbar : toolbars) {
        PaintChildren(toolbar.get());
    }
    for (auto &outlook : outlooks) {
        PaintChildren(outlook.get());
    }
    int toolbarsLeft = 2;
    int outlooksLeft = 2;
    for (int i = 0; i < 4; ++i) {
        const int which = order[i];
        if (which < 2) {
            toolbars[which]->DestroyWindow();
            toolbars[which].reset();
            --toolbarsLeft;
        } else {
            outlooks[which - 2]->DestroyWindow();
            outlooks[which - 2].reset();
            --outlooksLeft;
        }
        EXPECT_EQ(toolbarsLeft, MirlToolbar::GetTabImagesRef());
        EXPECT_EQ(outlooksLeft, MIRLOutlookCtrl::GetBarImagesRef());
        EXPECT_EQ(toolbarsLeft > 0, MirlToolbar::GetTabImage(MIRL::TabFaceActive) != nullptr);
        EXPECT_EQ(outlooksLeft > 0, MIRLOutlookCtrl::GetBarImage(MIRL::TabFaceHover) != nullptr);
        // What is left still paints with the shared images.
        for (auto &toolbar : toolbars) {
            if (toolbar) {
                PaintChildren(toolbar.get());
            }
        }
        for (auto &outlook : outlooks) {
            if (outlook) {
                PaintChildren(outlook.get());
            }
        }
    }
    EXPECT_EQ(nullptr, MirlToolbar::GetCurrentTab());
    EXPECT_EQ(nullptr, MIRLOutlookCtrl::GetCurrentBar());
    frame.DestroyWindow();
}

TEST(ContainerLeaks, EveryOrderFreesTheSharedImagesWithTheLastAndLeavesNoGrowth)
{
    int order[4] = {0, 1, 2, 3};
    // Warm-up: classes registered, caches filled.
    Cycle(order);
    const size_t heapBefore = mirltest::BusyHeapBytes();
    const int gdiBefore = mirltest::LiveGdiObjects();
    int orders = 0;
    do {
        Cycle(order);
        ++orders;
    } while (std::next_permutation(order, order + 4));
    const size_t heapAfter = mirltest::BusyHeapBytes();
    const int gdiAfter = mirltest::LiveGdiObjects();
    EXPECT_EQ(24, orders);
    EXPECT_EQ(0, MirlToolbar::GetTabImagesRef());
    EXPECT_EQ(0, MIRLOutlookCtrl::GetBarImagesRef());
    EXPECT_EQ(gdiBefore, gdiAfter);
    // Ninety-six controls with their tabs, bars and panels went by: a leak of one bitmap or one
    // folder record per control would show by far more than this.
    EXPECT_LT(static_cast<long long>(heapAfter) - static_cast<long long>(heapBefore), 1024)
        << "before " << heapBefore << " after " << heapAfter;
}

} // namespace
