// The dialog button and the dialog static on real dialogs made from in-memory templates:
// taking over and giving back the window procedure, clicks, check states, the link, keyboard
// navigation, a modal dialog, and what each state paints.
#include "MirlButtonTestSupport.h"
#include "MirlDialogTemplate.h"
#include "MirlDlgButton.h"
#include "MirlDlgStatic.h"
#include "MirlPixelTest.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace {

::testing::Environment *const g_Mirl =
    ::testing::AddGlobalTestEnvironment(new mirltest::SkinEnvironment(L"dialogs"));

enum : WORD {
    kApply = 1002,
    kShuffle = 1003,
    kRepeat = 1004,
    kBare = 1005,
    kVisit = 1006,
    kGo = 1007,
    kPlain = 1008,
};

// What the dialogs' procedure saw, for the test to read.
std::vector<WPARAM> g_Commands;

INT_PTR CALLBACK RecordingProc(HWND dialog, UINT message, WPARAM wParam, LPARAM)
{
    if (message == WM_INITDIALOG) {
        return TRUE;
    }
    if (message == WM_COMMAND) {
        g_Commands.push_back(wParam);
        return TRUE;
    }
    (void)dialog;
    return FALSE;
}

const DWORD kChild = WS_CHILD | WS_VISIBLE;

std::vector<mirltest::DialogItem> StandardItems()
{
    return {
        {kChild | WS_TABSTOP | BS_DEFPUSHBUTTON, 4, 4, 50, 14, IDOK, 0x0080, L"OK"},
        {kChild | WS_TABSTOP | BS_PUSHBUTTON, 60, 4, 50, 14, kApply, 0x0080, L"Apply"},
        {kChild | WS_TABSTOP | BS_AUTOCHECKBOX, 4, 24, 80, 12, kShuffle, 0x0080, L"Shuffle"},
        {kChild | WS_TABSTOP | BS_AUTORADIOBUTTON, 4, 40, 80, 12, kRepeat, 0x0080, L"Repeat"},
        {kChild | BS_AUTOCHECKBOX, 90, 24, 30, 12, kBare, 0x0080, L""},
        {kChild | SS_LEFT, 4, 56, 120, 12, kVisit, 0x0082, L"Visit <link>us</link> now"},
        {kChild | SS_LEFT, 4, 72, 120, 12, kGo, 0x0082, L"<link>Go</link> on"},
        {kChild | SS_LEFT, 4, 88, 120, 12, kPlain, 0x0082, L"Plain"},
    };
}

// A modeless dialog of the standard items, destroyed at the end of the scope.
class Dialog {
public:
    Dialog()
    {
        g_Commands.clear();
        mirltest::DialogTemplate form(WS_POPUP | WS_VISIBLE, 200, 110, StandardItems());
        m_hWnd = ::CreateDialogIndirectParamW(::GetModuleHandleW(nullptr), form.get(), nullptr, RecordingProc, 0);
    }
    ~Dialog()
    {
        if (::IsWindow(m_hWnd)) {
            ::DestroyWindow(m_hWnd);
        }
    }
    Dialog(const Dialog &) = delete;
    Dialog &operator=(const Dialog &) = delete;

    HWND hwnd() const { return m_hWnd; }
    HWND Item(WORD id) const { return ::GetDlgItem(m_hWnd, id); }
    void Destroy() { ::DestroyWindow(m_hWnd); }

private:
    HWND m_hWnd = nullptr;
};

WNDPROC ProcOf(HWND window)
{
    return reinterpret_cast<WNDPROC>(::GetWindowLongPtrW(window, GWLP_WNDPROC));
}

void Click(HWND window, int x, int y)
{
    ::SendMessageW(window, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(x, y));
    ::SendMessageW(window, WM_LBUTTONUP, 0, MAKELPARAM(x, y));
}

mirltest::Dib Paint(HWND window)
{
    mirltest::RenderOptions options;
    options.route = mirltest::PaintRoute::PaintWithDc;
    return mirltest::RenderWindow(window, options);
}

bool SamePixels(const mirltest::Dib &a, const mirltest::Dib &b)
{
    return mirltest::ComparePixels(a, b, 0).count == 0;
}

// Whether the window has something waiting to be painted.
bool IsInvalid(HWND window)
{
    return ::GetUpdateRect(window, nullptr, FALSE) != FALSE;
}

class DlgControls : public mirltest::PixelTest {};

// ---------------------------------------------------------------------------------------------
// Taking over and giving back

TEST_F(DlgControls, SubclassingReplacesTheProcedureAndTheTypeBecomesOwnerDraw)
{
    Dialog dialog;
    ASSERT_NE(nullptr, dialog.hwnd());
    HWND ok = dialog.Item(IDOK);
    const WNDPROC former = ProcOf(ok);
    MirlDlgButton button;
    EXPECT_EQ(1, button.SubclassWindowBtn(ok, nullptr));
    EXPECT_EQ(&MirlDlgButton::WindowProc, ProcOf(ok));
    EXPECT_EQ(former, button.GetOldProc());
    EXPECT_EQ(reinterpret_cast<LONG_PTR>(&button), ::GetWindowLongPtrW(ok, GWLP_USERDATA));
    EXPECT_EQ(static_cast<DWORD>(BS_OWNERDRAW), static_cast<DWORD>(::GetWindowLongPtrW(ok, GWL_STYLE)) & BS_TYPEMASK);
    EXPECT_TRUE(button.IsDefault());
    EXPECT_FALSE(button.IsCheckType());
    EXPECT_STREQ(L"OK", button.GetText());
    ASSERT_NE(nullptr, button.GetImage(1)->Bitmap);
    EXPECT_EQ(20u, button.GetImage(0)->Width);
    EXPECT_EQ(8, button.GetArrowWidth()); // the 12-pixel arrow, less 4
    EXPECT_NE(nullptr, button.GetFont());
}

TEST_F(DlgControls, ASecondUnSubclassDoesNothing)
{
    Dialog dialog;
    HWND ok = dialog.Item(IDOK);
    const WNDPROC former = ProcOf(ok);
    MirlDlgButton button;
    button.SubclassWindowBtn(ok, nullptr);
    button.UnSubclass();
    EXPECT_EQ(former, ProcOf(ok));
    EXPECT_EQ(0, ::GetWindowLongPtrW(ok, GWLP_USERDATA));
    EXPECT_EQ(nullptr, button.GetHwnd());
    EXPECT_EQ(nullptr, button.GetOldProc());
    button.UnSubclass();
    EXPECT_EQ(former, ProcOf(ok));
    EXPECT_EQ(nullptr, button.GetHwnd());
    // The button still works as the system's.
    EXPECT_EQ(static_cast<LRESULT>(BST_UNCHECKED), ::SendMessageW(ok, BM_GETCHECK, 0, 0));
}

TEST_F(DlgControls, AWindowThatDiesFirstLeavesNothingDangling)
{
    MirlDlgButton button;
    MirlDlgStatic label;
    {
        Dialog dialog;
        button.SubclassWindowBtn(dialog.Item(kShuffle), nullptr);
        label.SubclassWindowStatic(dialog.Item(kVisit), nullptr);
        ASSERT_NE(nullptr, button.GetHwnd());
        ASSERT_NE(nullptr, label.GetHwnd());
        dialog.Destroy();
        EXPECT_EQ(nullptr, button.GetHwnd());
        EXPECT_EQ(nullptr, button.GetOldProc());
        EXPECT_EQ(nullptr, label.GetHwnd());
        EXPECT_EQ(nullptr, label.GetOldProc());
    }
    button.UnSubclass();
    label.UnSubclass();
    EXPECT_EQ(nullptr, button.GetHwnd());
    EXPECT_EQ(nullptr, label.GetHwnd());
}

TEST_F(DlgControls, AnObjectThatDiesFirstGivesTheWindowBack)
{
    Dialog dialog;
    HWND check = dialog.Item(kShuffle);
    HWND text = dialog.Item(kPlain);
    const WNDPROC buttonProc = ProcOf(check);
    const WNDPROC staticProc = ProcOf(text);
    {
        MirlDlgButton button;
        MirlDlgStatic label;
        button.SubclassWindowBtn(check, nullptr);
        label.SubclassWindowStatic(text, nullptr);
    }
    EXPECT_EQ(buttonProc, ProcOf(check));
    EXPECT_EQ(staticProc, ProcOf(text));
    EXPECT_EQ(0, ::GetWindowLongPtrW(check, GWLP_USERDATA));
    EXPECT_EQ(0, ::GetWindowLongPtrW(text, GWLP_USERDATA));
    ::SendMessageW(check, BM_SETCHECK, BST_CHECKED, 0);
    EXPECT_EQ(static_cast<LRESULT>(BST_UNCHECKED), ::SendMessageW(check, BM_GETCHECK, 0, 0))
        << "an owner-drawn button keeps no check state of its own";
    wchar_t caption[16] = {};
    ::GetWindowTextW(text, caption, 16);
    EXPECT_STREQ(L"Plain", caption);
}

TEST_F(DlgControls, ASecondObjectLeavesAWindowThatIsTakenAlone)
{
    Dialog dialog;
    HWND ok = dialog.Item(IDOK);
    MirlDlgButton first;
    MirlDlgButton second;
    first.SubclassWindowBtn(ok, nullptr);
    EXPECT_EQ(1, second.SubclassWindowBtn(ok, nullptr));
    EXPECT_EQ(nullptr, second.GetHwnd());
    EXPECT_EQ(reinterpret_cast<LONG_PTR>(&first), ::GetWindowLongPtrW(ok, GWLP_USERDATA));
}

// ---------------------------------------------------------------------------------------------
// Check boxes

TEST_F(DlgControls, AClickOnACheckBoxChangesNoPictureUntilBmSetCheck)
{
    Dialog dialog;
    HWND check = dialog.Item(kShuffle);
    MirlDlgButton button;
    button.SubclassWindowBtn(check, nullptr);
    ASSERT_TRUE(button.IsCheckType());
    RECT client = {};
    ::GetClientRect(check, &client);
    const int imageY = static_cast<int>(static_cast<unsigned>(client.bottom - 13) >> 1) + 6;

    const mirltest::Dib before = Paint(check);
    EXPECT_EQ(0x3CC85Au, before.Pixel(8, imageY)) << "CheckY, the idle picture";
    Click(check, 5, 5);
    ASSERT_EQ(1u, g_Commands.size());
    EXPECT_EQ(MAKEWPARAM(kShuffle, BN_CLICKED), g_Commands[0]);
    EXPECT_FALSE(button.IsChecked());
    EXPECT_TRUE(SamePixels(before, Paint(check)));

    ::SendMessageW(check, BM_SETCHECK, BST_CHECKED, 0);
    EXPECT_TRUE(button.IsChecked());
    const mirltest::Dib checked = Paint(check);
    EXPECT_EQ(0xDC3C3Cu, checked.Pixel(8, imageY)) << "CheckN, the checked picture";
    ::SendMessageW(check, BM_SETCHECK, BST_UNCHECKED, 0);
    EXPECT_FALSE(button.IsChecked());
    EXPECT_EQ(0x3CC85Au, Paint(check).Pixel(8, imageY));
}

TEST_F(DlgControls, BmSetCheckIndeterminateRepaintsAndLeavesTheState)
{
    Dialog dialog;
    HWND check = dialog.Item(kShuffle);
    MirlDlgButton button;
    button.SubclassWindowBtn(check, nullptr);
    ::SendMessageW(check, BM_SETCHECK, BST_CHECKED, 0);
    ::ValidateRect(check, nullptr);
    ASSERT_FALSE(IsInvalid(check));
    ::SendMessageW(check, BM_SETCHECK, BST_INDETERMINATE, 0);
    EXPECT_TRUE(IsInvalid(check));
    EXPECT_TRUE(button.IsChecked());
    ::SendMessageW(check, BM_SETCHECK, BST_UNCHECKED, 0);
    ::ValidateRect(check, nullptr);
    ::SendMessageW(check, BM_SETCHECK, BST_INDETERMINATE, 0);
    EXPECT_TRUE(IsInvalid(check));
    EXPECT_FALSE(button.IsChecked());
}

TEST_F(DlgControls, RadioButtonsShowRadioBtn0AndRadioBtn1)
{
    Dialog dialog;
    HWND radio = dialog.Item(kRepeat);
    MirlDlgButton button;
    button.SubclassWindowBtn(radio, nullptr);
    RECT client = {};
    ::GetClientRect(radio, &client);
    const int imageY = static_cast<int>(static_cast<unsigned>(client.bottom - 13) >> 1) + 6;
    EXPECT_EQ(0x3C5ADCu, Paint(radio).Pixel(8, imageY));
    ::SendMessageW(radio, BM_SETCHECK, BST_CHECKED, 0);
    EXPECT_EQ(0xF0DC28u, Paint(radio).Pixel(8, imageY));
}

TEST_F(DlgControls, AnEmptyCaptionDrawsOnlyThePicture)
{
    Dialog dialog;
    MirlDlgButton bare;
    MirlDlgButton captioned;
    bare.SubclassWindowBtn(dialog.Item(kBare), nullptr);
    captioned.SubclassWindowBtn(dialog.Item(kShuffle), nullptr);
    bare.m_BkColor = captioned.m_BkColor = 0xFF102030;
    const mirltest::Dib picture = Paint(dialog.Item(kBare));
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 2 + 13; x < picture.width(); ++x) {
            ASSERT_EQ(0x102030u, picture.Pixel(x, y)) << "at " << x << ", " << y;
        }
    }
    // The same box with a caption writes right of the picture.
    const mirltest::Dib withText = Paint(dialog.Item(kShuffle));
    int written = 0;
    for (int y = 0; y < withText.height(); ++y) {
        for (int x = 2 + 13; x < withText.width(); ++x) {
            written += withText.Pixel(x, y) != 0x102030u ? 1 : 0;
        }
    }
    EXPECT_GT(written, 20);
}

TEST_F(DlgControls, TransparentWithoutAParentFallsBackToTheFill)
{
    Dialog dialog;
    MirlDlgButton button;
    button.SubclassWindowBtn(dialog.Item(kShuffle), nullptr);
    button.m_BkColor = 0xFF102030;
    button.SetTransparent(true);
    const mirltest::Dib picture = Paint(dialog.Item(kShuffle));
    EXPECT_EQ(0x102030u, picture.Pixel(0, 0));
    EXPECT_EQ(0x102030u, picture.Pixel(1, picture.height() - 1));
}

// ---------------------------------------------------------------------------------------------
// Push buttons

TEST_F(DlgControls, APressedCaptionIsOnePixelLowerAndTheFaceStays)
{
    Dialog dialog;
    HWND apply = dialog.Item(kApply);
    MirlDlgButton button;
    button.SubclassWindowBtn(apply, nullptr);
    mirltest::Dib normal(0, 0);
    mirltest::Dib pressed(0, 0);
    RECT client = {};
    ::GetClientRect(apply, &client);
    normal = mirltest::Dib(client.right, client.bottom);
    pressed = mirltest::Dib(client.right, client.bottom);
    mirltest::DrawButton(apply, normal.dc(), 0);
    EXPECT_EQ(0, button.GetLastSlot());
    const float normalY = button.GetLastCaptionRect().Y;
    mirltest::DrawButton(apply, pressed.dc(), ODS_SELECTED);
    EXPECT_EQ(2, button.GetLastSlot()); // "CmBtn3"
    EXPECT_FLOAT_EQ(0.0f, normalY);
    EXPECT_FLOAT_EQ(1.0f, button.GetLastCaptionRect().Y);
    // The face's frame rows are where they were: the image isn't moved.
    EXPECT_EQ(0x1E1E1Eu, normal.Pixel(1, 0));
    EXPECT_EQ(0x1E1E1Eu, pressed.Pixel(1, 0));
    EXPECT_EQ(0x1E1E1Eu, normal.Pixel(1, client.bottom - 1));
    EXPECT_EQ(0x1E1E1Eu, pressed.Pixel(1, client.bottom - 1));
    EXPECT_EQ(0x5A8CDCu, normal.Pixel(3, 3));  // CmBtn1's left end
    EXPECT_EQ(0xC85050u, pressed.Pixel(3, 3)); // CmBtn3's left end
}

TEST_F(DlgControls, WithoutCmBtn1TheNormalStateDrawsNothingCaptionIncluded)
{
    Dialog dialog;
    HWND apply = dialog.Item(kApply);
    MirlDlgButton button;
    button.SubclassWindowBtn(apply, nullptr);
    // As a skin without "CmBtn1" leaves it.
    button.LoadBitmapFromSkin(0, static_cast<Gdiplus::Bitmap *>(nullptr));
    button.m_BkColor = 0xFF102030;
    const mirltest::Dib picture = Paint(apply);
    EXPECT_EQ(-1, button.GetLastSlot());
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            ASSERT_EQ(0x102030u, picture.Pixel(x, y)) << "at " << x << ", " << y;
        }
    }
    // Pressed still has its picture.
    mirltest::Dib pressed(picture.width(), picture.height());
    mirltest::DrawButton(apply, pressed.dc(), ODS_SELECTED);
    EXPECT_EQ(2, button.GetLastSlot());
}

TEST_F(DlgControls, SetTextIsStoredAndStillReachesTheSystem)
{
    Dialog dialog;
    HWND apply = dialog.Item(kApply);
    MirlDlgButton button;
    button.SubclassWindowBtn(apply, nullptr);
    ::ValidateRect(apply, nullptr);
    ::SetWindowTextW(apply, L"Save");
    EXPECT_STREQ(L"Save", button.GetText());
    EXPECT_TRUE(IsInvalid(apply));
    wchar_t caption[16] = {};
    ::GetWindowTextW(apply, caption, 16);
    EXPECT_STREQ(L"Save", caption);
}

TEST_F(DlgControls, APushButtonClickReachesTheDialog)
{
    Dialog dialog;
    MirlDlgButton button;
    button.SubclassWindowBtn(dialog.Item(kApply), nullptr);
    Click(dialog.Item(kApply), 4, 4);
    ASSERT_EQ(1u, g_Commands.size());
    EXPECT_EQ(MAKEWPARAM(kApply, BN_CLICKED), g_Commands[0]);
}

// ---------------------------------------------------------------------------------------------
// The static

TEST_F(DlgControls, VisitUsNowExpandsTheLinkAndMeasuresFromTheHead)
{
    Dialog dialog;
    HWND visit = dialog.Item(kVisit);
    MirlDlgStatic label;
    label.SubclassWindowStatic(visit, nullptr);
    EXPECT_STREQ(L"Visit &u&s now", label.GetText());
    EXPECT_STREQ(L"Visit ", label.GetTextHead());
    EXPECT_STREQ(L"&u&s", label.GetTextLink());
    EXPECT_STREQ(L" now", label.GetTextTail());
    EXPECT_EQ(6, label.GetLinkStart());
    EXPECT_EQ(14, label.GetLinkEnd());
    EXPECT_TRUE(label.HasLinkBrush());
    EXPECT_FALSE(label.IsLinkRectValid());
    Paint(visit);
    ASSERT_TRUE(label.IsLinkRectValid());

    // The same measurements the static makes, with its font and format.
    RECT client = {};
    ::GetClientRect(visit, &client);
    HDC screen = ::GetDC(visit);
    {
        Gdiplus::Graphics graphics(screen);
        Gdiplus::StringFormat format;
        format.SetAlignment(Gdiplus::StringAlignmentNear);
        format.SetLineAlignment(Gdiplus::StringAlignmentNear);
        format.SetHotkeyPrefix(Gdiplus::HotkeyPrefixShow);
        format.SetFormatFlags(Gdiplus::StringFormatFlagsDisplayFormatControl);
        const Gdiplus::RectF area(0, 0, static_cast<Gdiplus::REAL>(client.right), static_cast<Gdiplus::REAL>(client.bottom));
        Gdiplus::RectF head;
        Gdiplus::RectF link;
        graphics.MeasureString(L"Visit ", -1, label.GetFont(), area, &format, &head);
        graphics.MeasureString(L"&u&s", -1, label.GetFont(), area, &format, &link);
        const RECT rect = label.GetLinkRect();
        EXPECT_EQ(static_cast<LONG>(head.X + head.Width), rect.left);
        EXPECT_EQ(0, rect.top);
        EXPECT_EQ(static_cast<LONG>(rect.left + link.Width), rect.right);
        EXPECT_EQ(static_cast<LONG>(head.Y + head.Height), rect.bottom);
        EXPECT_GT(rect.left, 10);
        EXPECT_GT(rect.right, rect.left);
    }
    ::ReleaseDC(visit, screen);
}

TEST_F(DlgControls, APressOnTheRightEdgeCountsAndOnTheBottomEdgeDoesNot)
{
    Dialog dialog;
    HWND visit = dialog.Item(kVisit);
    MirlDlgStatic label;
    label.SubclassWindowStatic(visit, nullptr);
    Paint(visit);
    const RECT rect = label.GetLinkRect();
    ::SendMessageW(visit, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(rect.right, rect.top));
    ASSERT_EQ(1u, g_Commands.size());
    EXPECT_EQ(static_cast<WPARAM>(kVisit), g_Commands[0]);
    ::SendMessageW(visit, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(rect.left, rect.bottom));
    EXPECT_EQ(1u, g_Commands.size());
    ::SendMessageW(visit, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(rect.left, rect.bottom - 1));
    EXPECT_EQ(2u, g_Commands.size());
    ::SendMessageW(visit, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(rect.right + 1, rect.top));
    EXPECT_EQ(2u, g_Commands.size());
    // Over the link the hand shows after a move.
    ::SendMessageW(visit, WM_MOUSEMOVE, 0, MAKELPARAM(rect.left + 1, rect.top + 1));
    EXPECT_TRUE(label.IsOverLink());
    ::SendMessageW(visit, WM_MOUSEMOVE, 0, MAKELPARAM(rect.right + 1, rect.top + 1));
    EXPECT_FALSE(label.IsOverLink());
}

TEST_F(DlgControls, ACaptionThatBeginsWithTheLinkCannotBeHit)
{
    Dialog dialog;
    HWND go = dialog.Item(kGo);
    MirlDlgStatic label;
    label.SubclassWindowStatic(go, nullptr);
    EXPECT_STREQ(L"&G&o on", label.GetText());
    Paint(go);
    ASSERT_TRUE(label.IsLinkRectValid());
    const RECT rect = label.GetLinkRect();
    EXPECT_EQ(0, rect.left);
    EXPECT_EQ(0, rect.bottom);
    EXPECT_GT(rect.right, 0);
    ::SendMessageW(go, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(1, 0));
    ::SendMessageW(go, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(1, 1));
    EXPECT_TRUE(g_Commands.empty());
}

TEST_F(DlgControls, UpperCaseMarksWorkLikeLowerCase)
{
    Dialog dialog;
    HWND plain = dialog.Item(kPlain);
    ::SetWindowTextW(plain, L"Visit <LINK>us</LINK> now");
    MirlDlgStatic label;
    label.SubclassWindowStatic(plain, nullptr);
    EXPECT_STREQ(L"Visit &u&s now", label.GetText());
    EXPECT_TRUE(label.HasLinkBrush());
}

TEST_F(DlgControls, ACaptionOver1023CharactersIsCut)
{
    Dialog dialog;
    HWND plain = dialog.Item(kPlain);
    ::SetWindowTextW(plain, std::wstring(1500, L'x').c_str());
    MirlDlgStatic label;
    label.SubclassWindowStatic(plain, nullptr);
    EXPECT_EQ(1023u, wcslen(label.GetText()));
}

TEST_F(DlgControls, SetTextAfterTheFirstPaintShowsTheMarksAndKeepsTheLinkBrush)
{
    Dialog dialog;
    HWND visit = dialog.Item(kVisit);
    MirlDlgStatic label;
    label.SubclassWindowStatic(visit, nullptr);
    Paint(visit);
    ASSERT_TRUE(label.IsLinkRectValid());
    EXPECT_EQ(0, ::SendMessageW(visit, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(L"New <link>x</link>")));
    EXPECT_STREQ(L"New <link>x</link>", label.GetText());
    EXPECT_TRUE(label.HasLinkBrush()) << "the layout keeps the top alignment";
    EXPECT_FALSE(label.IsLinkRectValid());
    EXPECT_STREQ(L"&u&s", label.GetTextLink()) << "head, link and tail stay";
    wchar_t caption[64] = {};
    ::GetWindowTextW(visit, caption, 64);
    EXPECT_STREQ(L"Visit <link>us</link> now", caption) << "the system window keeps its own text";
}

TEST_F(DlgControls, APressBesideTheLinkNeverReachesTheSystem)
{
    Dialog dialog;
    HWND plain = dialog.Item(kPlain);
    MirlDlgStatic label;
    label.SubclassWindowStatic(plain, nullptr);
    EXPECT_EQ(0, ::SendMessageW(plain, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(2, 2)));
    EXPECT_TRUE(g_Commands.empty());
    EXPECT_EQ(1, ::SendMessageW(plain, WM_ERASEBKGND, 0, 0));
}

// ---------------------------------------------------------------------------------------------
// Keyboard and a modal dialog

bool DialogKey(HWND dialog, UINT key)
{
    MSG msg = {};
    msg.hwnd = ::GetFocus();
    msg.message = WM_KEYDOWN;
    msg.wParam = key;
    msg.lParam = 1;
    return ::IsDialogMessageW(dialog, &msg) != FALSE;
}

struct Skinned {
    MirlDlgButton ok, apply, shuffle, repeat;
    MirlDlgStatic visit;
    void Take(HWND dialog)
    {
        ok.SubclassWindowBtn(::GetDlgItem(dialog, IDOK), nullptr);
        apply.SubclassWindowBtn(::GetDlgItem(dialog, kApply), nullptr);
        shuffle.SubclassWindowBtn(::GetDlgItem(dialog, kShuffle), nullptr);
        repeat.SubclassWindowBtn(::GetDlgItem(dialog, kRepeat), nullptr);
        visit.SubclassWindowStatic(::GetDlgItem(dialog, kVisit), nullptr);
    }
};

TEST_F(DlgControls, TabMovesBetweenSkinnedControlsAndEnterPressesTheDefault)
{
    Dialog dialog;
    Skinned skinned;
    skinned.Take(dialog.hwnd());
    ASSERT_TRUE(mirltest::Activate(dialog.hwnd()));
    ::SetFocus(dialog.Item(IDOK));
    ASSERT_EQ(dialog.Item(IDOK), ::GetFocus());
    EXPECT_TRUE(DialogKey(dialog.hwnd(), VK_TAB));
    EXPECT_EQ(dialog.Item(kApply), ::GetFocus());
    EXPECT_TRUE(DialogKey(dialog.hwnd(), VK_TAB));
    EXPECT_EQ(dialog.Item(kShuffle), ::GetFocus());
    g_Commands.clear();
    EXPECT_TRUE(DialogKey(dialog.hwnd(), VK_RETURN));
    ASSERT_FALSE(g_Commands.empty());
    EXPECT_EQ(static_cast<WPARAM>(IDOK), LOWORD(g_Commands.back()));
    // The owner-drawn type keeps the dialog manager from restyling the default button.
    EXPECT_EQ(static_cast<DWORD>(BS_OWNERDRAW),
              static_cast<DWORD>(::GetWindowLongPtrW(dialog.Item(IDOK), GWL_STYLE)) & BS_TYPEMASK);
    EXPECT_EQ(static_cast<DWORD>(BS_OWNERDRAW),
              static_cast<DWORD>(::GetWindowLongPtrW(dialog.Item(kApply), GWL_STYLE)) & BS_TYPEMASK);
}

Skinned *g_Modal = nullptr;

INT_PTR CALLBACK ModalProc(HWND dialog, UINT message, WPARAM wParam, LPARAM)
{
    if (message == WM_INITDIALOG) {
        g_Modal->Take(dialog);
        HWND ok = ::GetDlgItem(dialog, IDOK);
        ::PostMessageW(ok, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(3, 3));
        ::PostMessageW(ok, WM_LBUTTONUP, 0, MAKELPARAM(3, 3));
        return TRUE;
    }
    if (message == WM_COMMAND) {
        g_Commands.push_back(wParam);
        if (LOWORD(wParam) == IDOK) {
            ::EndDialog(dialog, IDOK);
        }
        return TRUE;
    }
    return FALSE;
}

TEST_F(DlgControls, AModalDialogClosesByAPostedClickOnItsSkinnedButton)
{
    g_Commands.clear();
    Skinned skinned;
    g_Modal = &skinned;
    mirltest::DialogTemplate form(WS_POPUP | WS_VISIBLE, 200, 110, StandardItems());
    const INT_PTR result = ::DialogBoxIndirectParamW(::GetModuleHandleW(nullptr), form.get(), nullptr, ModalProc, 0);
    g_Modal = nullptr;
    EXPECT_EQ(IDOK, result);
    ASSERT_FALSE(g_Commands.empty());
    EXPECT_EQ(MAKEWPARAM(IDOK, BN_CLICKED), g_Commands.front());
    // The dialog is gone: every object let go, and giving back is harmless.
    EXPECT_EQ(nullptr, skinned.ok.GetHwnd());
    EXPECT_EQ(nullptr, skinned.visit.GetHwnd());
    skinned.ok.UnSubclass();
    skinned.visit.UnSubclass();
}

} // namespace

namespace {

// ---------------------------------------------------------------------------------------------
// Pictures of each state, on the dark fill a skin would give them

mirltest::Dib PaintState(HWND window)
{
    mirltest::RenderOptions options;
    options.route = mirltest::PaintRoute::PaintWithDc;
    return mirltest::RenderWindow(window, options);
}

const Gdiplus::ARGB kDialogFill = 0xFF28303A;

// A centred caption's golden for this architecture: measured under Wine, 64-bit GDI+ places a
// centred caption a pixel to the right of where 32-bit GDI+ places it.
std::string CentredGolden(const char *name)
{
    return std::string(name) + (sizeof(void *) == 8 ? "_x64" : "");
}

TEST_F(DlgControls, PushButtonStatesMatchTheirGoldens)
{
    Dialog dialog;
    HWND apply = dialog.Item(kApply);
    MirlDlgButton button;
    button.SubclassWindowBtn(apply, nullptr);
    button.m_BkColor = kDialogFill;
    EXPECT_TRUE(mirltest::MatchesGolden(PaintState(apply), CentredGolden("dlg_button_normal").c_str()));

    ::SendMessageW(apply, BM_SETSTATE, TRUE, 0);
    EXPECT_TRUE(mirltest::MatchesGolden(PaintState(apply), CentredGolden("dlg_button_pressed").c_str()));
    ::SendMessageW(apply, BM_SETSTATE, FALSE, 0);

    ASSERT_TRUE(mirltest::Activate(dialog.hwnd()));
    ::SendMessageW(apply, WM_MOUSEMOVE, 0, MAKELPARAM(5, 5));
    ASSERT_TRUE(button.IsMouseOnButton());
    EXPECT_TRUE(mirltest::MatchesGolden(PaintState(apply), CentredGolden("dlg_button_hover").c_str()));
    ::SendMessageW(apply, WM_CANCELMODE, 0, 0);
    EXPECT_FALSE(button.IsMouseOnButton());
    ::ReleaseCapture();

    ::EnableWindow(apply, FALSE);
    EXPECT_TRUE(mirltest::MatchesGolden(PaintState(apply), CentredGolden("dlg_button_disabled").c_str()));
}

TEST_F(DlgControls, CheckAndRadioStatesMatchTheirGoldens)
{
    Dialog dialog;
    MirlDlgButton check;
    MirlDlgButton radio;
    MirlDlgButton bare;
    check.SubclassWindowBtn(dialog.Item(kShuffle), nullptr);
    radio.SubclassWindowBtn(dialog.Item(kRepeat), nullptr);
    bare.SubclassWindowBtn(dialog.Item(kBare), nullptr);
    check.m_BkColor = radio.m_BkColor = bare.m_BkColor = kDialogFill;
    EXPECT_TRUE(mirltest::MatchesGolden(PaintState(dialog.Item(kShuffle)), "dlg_check_unchecked"));
    EXPECT_TRUE(mirltest::MatchesGolden(PaintState(dialog.Item(kRepeat)), "dlg_radio_unchecked"));
    EXPECT_TRUE(mirltest::MatchesGolden(PaintState(dialog.Item(kBare)), "dlg_check_bare"));
    ::SendMessageW(dialog.Item(kShuffle), BM_SETCHECK, BST_CHECKED, 0);
    ::SendMessageW(dialog.Item(kRepeat), BM_SETCHECK, BST_CHECKED, 0);
    EXPECT_TRUE(mirltest::MatchesGolden(PaintState(dialog.Item(kShuffle)), "dlg_check_checked"));
    EXPECT_TRUE(mirltest::MatchesGolden(PaintState(dialog.Item(kRepeat)), "dlg_radio_checked"));
    // Disabled changes nothing on a check box.
    ::EnableWindow(dialog.Item(kShuffle), FALSE);
    EXPECT_TRUE(mirltest::MatchesGolden(PaintState(dialog.Item(kShuffle)), "dlg_check_checked"));
}

TEST_F(DlgControls, StaticStatesMatchTheirGoldens)
{
    Dialog dialog;
    MirlDlgStatic visit;
    MirlDlgStatic plain;
    visit.m_BkColor = plain.m_BkColor = kDialogFill;
    visit.SubclassWindowStatic(dialog.Item(kVisit), nullptr);
    plain.SubclassWindowStatic(dialog.Item(kPlain), nullptr);
    EXPECT_TRUE(mirltest::MatchesGolden(PaintState(dialog.Item(kVisit)), "dlg_static_link"));
    EXPECT_TRUE(mirltest::MatchesGolden(PaintState(dialog.Item(kPlain)), "dlg_static_plain"));
}

} // namespace

namespace {

TEST_F(DlgControls, WmPrintClientPaintsWhatWmPaintWithAContextPaints)
{
    Dialog dialog;
    MirlDlgButton apply;
    MirlDlgButton check;
    MirlDlgStatic visit;
    apply.SubclassWindowBtn(dialog.Item(kApply), nullptr);
    check.SubclassWindowBtn(dialog.Item(kShuffle), nullptr);
    visit.SubclassWindowStatic(dialog.Item(kVisit), nullptr);
    apply.m_BkColor = check.m_BkColor = visit.m_BkColor = kDialogFill;
    for (WORD id : {static_cast<WORD>(kApply), static_cast<WORD>(kShuffle), static_cast<WORD>(kVisit)}) {
        const mirltest::Dib printed = mirltest::RenderWindow(dialog.Item(id));
        EXPECT_TRUE(SamePixels(PaintState(dialog.Item(id)), printed)) << id;
        EXPECT_NE(0xFF00FFu, printed.Pixel(0, 0)) << id;
    }
    EXPECT_EQ(0, ::SendMessageW(dialog.Item(kVisit), WM_PRINTCLIENT, 0, PRF_CLIENT));
}

} // namespace
