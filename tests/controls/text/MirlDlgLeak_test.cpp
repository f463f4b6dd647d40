// A dialog's controls skinned and given back five hundred times, painted in between: neither the
// heaps nor the GDI objects grow, and the dialog ends with its own procedures.
#include "MirlButtonTestSupport.h"
#include "MirlDialogTemplate.h"
#include "MirlDlgButton.h"
#include "MirlDlgStatic.h"
#include "MirlLeakCounters.h"
#include "MirlPixelTest.h"

#include <cstdio>
#include <vector>

namespace {

::testing::Environment *const g_Mirl =
    ::testing::AddGlobalTestEnvironment(new mirltest::SkinEnvironment(L"dialogs"));

const int kCycles = 500;

INT_PTR CALLBACK QuietProc(HWND, UINT message, WPARAM, LPARAM)
{
    return message == WM_INITDIALOG ? TRUE : FALSE;
}

struct SkinnedDialog {
    MirlDlgButton push, check, radio;
    MirlDlgStatic link, plain;
};

// One cycle: every control skinned, painted in two states, then given back.
void SkinPaintUnskin(HWND dialog)
{
    SkinnedDialog skinned;
    skinned.push.SubclassWindowBtn(::GetDlgItem(dialog, IDOK), nullptr);
    skinned.check.SubclassWindowBtn(::GetDlgItem(dialog, 11), nullptr);
    skinned.radio.SubclassWindowBtn(::GetDlgItem(dialog, 12), nullptr);
    skinned.link.SubclassWindowStatic(::GetDlgItem(dialog, 13), nullptr);
    skinned.plain.SubclassWindowStatic(::GetDlgItem(dialog, 14), nullptr);
    mirltest::RenderOptions options;
    options.route = mirltest::PaintRoute::PaintWithDc;
    for (int id : {IDOK, 11, 12, 13, 14}) {
        mirltest::RenderWindow(::GetDlgItem(dialog, id), options);
    }
    ::SendMessageW(::GetDlgItem(dialog, 11), BM_SETCHECK, BST_CHECKED, 0);
    mirltest::RenderWindow(::GetDlgItem(dialog, 11), options);
    ::SendMessageW(::GetDlgItem(dialog, 13), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(L"Visit <link>us</link> now"));
    mirltest::RenderWindow(::GetDlgItem(dialog, 13), options);
    skinned.push.UnSubclass();
    skinned.check.UnSubclass();
    skinned.radio.UnSubclass();
    skinned.link.UnSubclass();
    skinned.plain.UnSubclass();
}

TEST(DlgLeaks, FiveHundredSkinningsLeaveNoGrowth)
{
    const DWORD child = WS_CHILD | WS_VISIBLE;
    mirltest::DialogTemplate form(WS_POPUP | WS_VISIBLE, 200, 110,
                                  {
                                      {child | WS_TABSTOP | BS_DEFPUSHBUTTON, 4, 4, 50, 14, IDOK, 0x0080, L"OK"},
                                      {child | WS_TABSTOP | BS_AUTOCHECKBOX, 4, 24, 80, 12, 11, 0x0080, L"Shuffle"},
                                      {child | WS_TABSTOP | BS_AUTORADIOBUTTON, 4, 40, 80, 12, 12, 0x0080, L"Repeat"},
                                      {child | SS_LEFT, 4, 56, 120, 12, 13, 0x0082, L"Visit <link>us</link> now"},
                                      {child | SS_LEFT, 4, 72, 120, 12, 14, 0x0082, L"Plain"},
                                  });
    HWND dialog = ::CreateDialogIndirectParamW(::GetModuleHandleW(nullptr), form.get(), nullptr, QuietProc, 0);
    ASSERT_NE(nullptr, dialog);
    const WNDPROC buttonProc = reinterpret_cast<WNDPROC>(::GetWindowLongPtrW(::GetDlgItem(dialog, IDOK), GWLP_WNDPROC));
    const WNDPROC staticProc = reinterpret_cast<WNDPROC>(::GetWindowLongPtrW(::GetDlgItem(dialog, 13), GWLP_WNDPROC));

    // Warm-up: fonts, cursors and the system's caches.
    for (int i = 0; i < 5; ++i) {
        SkinPaintUnskin(dialog);
    }
    const size_t heapBefore = mirltest::BusyHeapBytes();
    const int gdiBefore = mirltest::LiveGdiObjects();
    for (int i = 0; i < kCycles; ++i) {
        SkinPaintUnskin(dialog);
    }
    const size_t heapAfter = mirltest::BusyHeapBytes();
    const int gdiAfter = mirltest::LiveGdiObjects();

    std::printf("%d skinnings: heap %+lld bytes, GDI objects %+d\n", kCycles,
                static_cast<long long>(heapAfter) - static_cast<long long>(heapBefore), gdiAfter - gdiBefore);
    EXPECT_EQ(gdiBefore, gdiAfter);
    // The smallest leak per cycle (one brush or string) would pass 8 KB over 500 cycles.
    EXPECT_LT(static_cast<long long>(heapAfter) - static_cast<long long>(heapBefore), 1024)
        << "before " << heapBefore << " after " << heapAfter;
    EXPECT_EQ(buttonProc, reinterpret_cast<WNDPROC>(::GetWindowLongPtrW(::GetDlgItem(dialog, IDOK), GWLP_WNDPROC)));
    EXPECT_EQ(staticProc, reinterpret_cast<WNDPROC>(::GetWindowLongPtrW(::GetDlgItem(dialog, 13), GWLP_WNDPROC)));
    EXPECT_EQ(0, ::GetPropW(::GetDlgItem(dialog, IDOK), L"MirlDlgButton.OldProc") != nullptr);
    ::DestroyWindow(dialog);
}

} // namespace
