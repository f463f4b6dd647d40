// MirlButton's behaviour on live windows under the buttons fixture: creation from templates,
// hover with capture, auto repeat, check state, URL, link caption, arrow zone, forwarded keys
// and clicks, image replacement. Messages are real: sent or posted, or made by moving the pointer.
#include "MirlButtonTestSupport.h"
#include "MirlMessageRecorder.h"
#include "MirlPixelTest.h"

#include <commctrl.h>

#include <functional>
#include <string>
#include <vector>

using mirltest::ExpectedMessage;
using mirltest::kControl;
using mirltest::kLParam;
using mirltest::kOptional;
using mirltest::kParent;
using mirltest::kWParam;
using mirltest::ScopedButton;

namespace {

::testing::Environment *const g_Mirl =
    ::testing::AddGlobalTestEnvironment(new mirltest::SkinEnvironment(L"buttons"));

LPARAM At(int x, int y)
{
    return MAKELPARAM(x, y);
}

// Posts WM_LBUTTONUP to a window after a delay, from a timer-queue thread: the button's repeat
// loop blocks this thread's own timers.
// Releases a held auto-repeat button once its parent has heard `count` of its commands: the
// release is posted from inside the last of them, so the loop finds it at its next look
// whatever the machine's load, where a release after a time would race the loop's sleeps.
class ReleaseAfterCommands {
public:
    ReleaseAfterCommands(HWND button, int count) : m_Button(button), m_Left(count)
    {
        ::SetWindowSubclass(::GetParent(button), &Count, reinterpret_cast<UINT_PTR>(this), 0);
    }
    ~ReleaseAfterCommands() { ::RemoveWindowSubclass(::GetParent(m_Button), &Count, reinterpret_cast<UINT_PTR>(this)); }
    ReleaseAfterCommands(const ReleaseAfterCommands &) = delete;
    ReleaseAfterCommands &operator=(const ReleaseAfterCommands &) = delete;

private:
    static LRESULT CALLBACK Count(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR self, DWORD_PTR)
    {
        ReleaseAfterCommands *release = reinterpret_cast<ReleaseAfterCommands *>(self);
        if (message == WM_COMMAND && reinterpret_cast<HWND>(lParam) == release->m_Button && --release->m_Left == 0) {
            ::PostMessageW(release->m_Button, WM_LBUTTONUP, 0, MAKELPARAM(5, 5));
        }
        return ::DefSubclassProc(window, message, wParam, lParam);
    }
    HWND m_Button;
    int m_Left;
};

// URL opening goes through the seam: a test records what would have been opened.
struct OpenedUrl {
    HWND owner;
    std::wstring verb;
    std::wstring file;
    bool parameters;
    bool directory;
    int show;
};
std::vector<OpenedUrl> g_Opened;

HINSTANCE WINAPI RecordOpen(HWND owner, LPCWSTR verb, LPCWSTR file, LPCWSTR parameters, LPCWSTR directory, INT show)
{
    g_Opened.push_back({owner, verb != nullptr ? verb : L"", file != nullptr ? file : L"", parameters != nullptr,
                        directory != nullptr, show});
    return reinterpret_cast<HINSTANCE>(static_cast<INT_PTR>(42));
}

class UrlSeam {
public:
    UrlSeam() : m_Former(MIRL::SetUrlOpener(&RecordOpen)) { g_Opened.clear(); }
    ~UrlSeam() { MIRL::SetUrlOpener(m_Former); }

private:
    MIRL::UrlOpener m_Former;
};

// A recording parent that reflects notifications, at the top left of the screen, with a button
// of a template on it and a recorder on the button. The pointer is parked elsewhere.
class ButtonMessages : public ::testing::Test {
protected:
    ButtonMessages() : m_Parent(m_Sequence) { m_Parent.ReflectNotifications(true); }

    void SetUp() override
    {
        mirltest::ParkCursor();
        ASSERT_TRUE(mirltest::Activate(m_Parent.hwnd()));
    }

    HWND Make(const wchar_t *name)
    {
        HWND hwnd = m_Button.Create(nullptr, m_Parent.hwnd(), name);
        if (hwnd != nullptr) {
            m_Spy.reset(new mirltest::ControlRecorder(hwnd, m_Sequence));
        }
        // Paint, focus, activation and colour traffic depend on the display, not on the
        // button's logic.
        for (UINT noise : {UINT(WM_KILLFOCUS), UINT(WM_SETFOCUS), UINT(WM_IME_SETCONTEXT), UINT(WM_IME_NOTIFY),
                           UINT(WM_ACTIVATE), UINT(WM_NCACTIVATE), UINT(WM_ACTIVATEAPP), UINT(WM_QUERYNEWPALETTE),
                           UINT(WM_CTLCOLORBTN), UINT(OCM__BASE + WM_CTLCOLORBTN), UINT(WM_DRAWITEM),
                           UINT(OCM__BASE + WM_DRAWITEM), UINT(BM_SETSTATE), UINT(WM_CAPTURECHANGED),
                           UINT(WM_CHANGEUISTATE), UINT(WM_UPDATEUISTATE), UINT(WM_QUERYUISTATE)}) {
            m_Sequence.Ignore(noise);
        }
        mirltest::FlushMessages();
        m_Sequence.Clear();
        return hwnd;
    }

    // The layout is made by the first paint.
    void Paint()
    {
        ::InvalidateRect(m_Button.hwnd(), nullptr, TRUE);
        ::UpdateWindow(m_Button.hwnd());
    }

    WPARAM Id() const { return static_cast<WPARAM>(::GetDlgCtrlID(m_Button.hwnd())); }
    LPARAM Self() const { return reinterpret_cast<LPARAM>(m_Button.hwnd()); }

    mirltest::MessageSequence m_Sequence;
    mirltest::RecordingParent m_Parent;
    ScopedButton m_Button;
    std::unique_ptr<mirltest::ControlRecorder> m_Spy;
};

// ---------------------------------------------------------------------------------------------
// Creation from the template

TEST_F(ButtonMessages, TemplateFillsTheFourSlotsAndForcesOwnerDraw)
{
    ASSERT_NE(nullptr, Make(L"Four"));
    for (int slot = 0; slot < MirlButton::ImageSlots; ++slot) {
        const MirlButtonImage *image = m_Button->GetImage(slot);
        ASSERT_NE(nullptr, image);
        EXPECT_NE(nullptr, image->Bitmap) << "slot " << slot;
        EXPECT_EQ(16u, image->Width);
        EXPECT_EQ(16u, image->Height);
        EXPECT_FALSE(image->HasColorKey);
    }
    EXPECT_EQ(nullptr, m_Button->GetImage(4));
    EXPECT_EQ(static_cast<DWORD>(BS_OWNERDRAW), ::GetWindowLongW(m_Button.hwnd(), GWL_STYLE) & BS_TYPEMASK);
    EXPECT_EQ(static_cast<unsigned long>(ORDER_H_IMAGE_TEXT | ALIGN_LEFT), m_Button->GetAlign());
    EXPECT_EQ(static_cast<unsigned long>(ORDER_H_IMAGE_TEXT | ALIGN_LEFT), m_Button->GetTextLayout().GetStyle());
    EXPECT_TRUE(m_Button->GetTextLayout().HasShadow());
    EXPECT_STREQ(L"Play", m_Button->GetTextLayout().GetText());
    EXPECT_EQ(100u, m_Button->GetRepeatDelay());
    EXPECT_TRUE(m_Button->GetFlat());
    EXPECT_FALSE(m_Button->GetAutoRepeat());
    wchar_t className[32] = {};
    ::GetClassNameW(m_Button.hwnd(), className, 32);
    EXPECT_STREQ(L"MirlWindowImpl", className);
}

TEST_F(ButtonMessages, ArrowWidthIsTheArrowImageLessFour)
{
    ASSERT_NE(nullptr, Make(L"Menu"));
    ASSERT_NE(nullptr, m_Button->GetArrowBitmap());
    EXPECT_EQ(8, m_Button->GetArrowWidth()); // the common 12-pixel arrow
    ScopedButton red;
    ASSERT_NE(nullptr, red.Create(nullptr, m_Parent.hwnd(), L"MenuRed"));
    EXPECT_EQ(12, red->GetArrowWidth()); // "PicArrow" names a 16-pixel one
}

TEST_F(ButtonMessages, ColourKeysComeFromTheImageElement)
{
    struct Row {
        const wchar_t *name;
        Gdiplus::ARGB low;
        Gdiplus::ARGB high;
    } rows[] = {
        {L"Keyed", 0xFFF000F0, 0xFFFF10FF},       // both named
        {L"KeyLowOnly", 0xFFF000F0, 0xFFF000F0},  // the low one is the range
        {L"KeyHighOnly", 0xFFFF10FF, 0xFFFF10FF}, // the high one is the range
        {L"KeyUnknown", 0xFF000000, 0xFF000000},  // named but not found: keyed, defaults
    };
    for (const Row &row : rows) {
        ScopedButton button;
        ASSERT_NE(nullptr, button.Create(nullptr, m_Parent.hwnd(), row.name));
        const MirlButtonImage *image = button->GetImage(0);
        EXPECT_TRUE(image->HasColorKey) << row.name;
        EXPECT_EQ(row.low, image->ColorKeyLow) << row.name;
        EXPECT_EQ(row.high, image->ColorKeyHigh) << row.name;
    }
}

namespace {

// While set: the styles the children of one parent are created with, and the windows told of a
// change of style.
struct CreationWatch {
    HWND parent;
    std::vector<DWORD> styles;
    std::vector<HWND> restyled;
};
CreationWatch *g_Watch = nullptr;

LRESULT CALLBACK WatchCreation(int code, WPARAM wParam, LPARAM lParam)
{
    const CREATESTRUCTW *cs = reinterpret_cast<const CBT_CREATEWNDW *>(lParam)->lpcs;
    if (code == HCBT_CREATEWND && g_Watch != nullptr && cs->hwndParent == g_Watch->parent) {
        g_Watch->styles.push_back(static_cast<DWORD>(cs->style));
    }
    return ::CallNextHookEx(nullptr, code, wParam, lParam);
}

LRESULT CALLBACK WatchRestyling(int code, WPARAM wParam, LPARAM lParam)
{
    const CWPSTRUCT *sent = reinterpret_cast<const CWPSTRUCT *>(lParam);
    if (code == HC_ACTION && g_Watch != nullptr && sent->message == WM_STYLECHANGING &&
        static_cast<int>(sent->wParam) == GWL_STYLE) {
        g_Watch->restyled.push_back(sent->hwnd);
    }
    return ::CallNextHookEx(nullptr, code, wParam, lParam);
}

} // namespace

TEST_F(ButtonMessages, AButtonIsOwnerDrawFromItsCreationAndKeepsTheKindItAskedFor)
{
    for (const wchar_t *name : {L"Default", L"CheckDefault"}) {
        CreationWatch watch{m_Parent.hwnd(), {}, {}};
        g_Watch = &watch;
        HHOOK cbt = ::SetWindowsHookExW(WH_CBT, WatchCreation, nullptr, ::GetCurrentThreadId());
        HHOOK sent = ::SetWindowsHookExW(WH_CALLWNDPROC, WatchRestyling, nullptr, ::GetCurrentThreadId());
        ScopedButton button;
        HWND hwnd = button.Create(nullptr, m_Parent.hwnd(), name);
        ::UnhookWindowsHookEx(sent);
        ::UnhookWindowsHookEx(cbt);
        g_Watch = nullptr;

        ASSERT_NE(nullptr, hwnd) << name;
        ASSERT_EQ(1u, watch.styles.size()) << name;
        EXPECT_EQ(static_cast<DWORD>(BS_OWNERDRAW), watch.styles[0] & BS_TYPEMASK) << name;
        EXPECT_EQ(static_cast<DWORD>(WS_CHILD | WS_VISIBLE), watch.styles[0] & (WS_CHILD | WS_VISIBLE)) << name;
        // Nothing changes the style of the new button in its WM_CREATE.
        EXPECT_EQ(std::vector<HWND>{}, watch.restyled) << name;
        EXPECT_EQ(static_cast<DWORD>(BS_OWNERDRAW), ::GetWindowLongW(hwnd, GWL_STYLE) & BS_TYPEMASK) << name;
    }
}

TEST_F(ButtonMessages, DefaultComesFromTheRealStyleOutsideCheckMode)
{
    ASSERT_NE(nullptr, Make(L"Default"));
    EXPECT_TRUE(m_Button->GetDefault());
    EXPECT_FALSE(m_Button->IsCheckMode());
    ScopedButton check;
    ASSERT_NE(nullptr, check.Create(nullptr, m_Parent.hwnd(), L"CheckDefault"));
    EXPECT_TRUE(check->IsCheckMode());
    EXPECT_FALSE(check->GetDefault());
    EXPECT_FALSE(check->GetTextLayout().HasShadow());
}

TEST_F(ButtonMessages, ThemeIsOpenedForTheButtonClass)
{
    ASSERT_NE(nullptr, Make(L"System"));
    EXPECT_NE(nullptr, m_Button->GetTheme());
}

TEST_F(ButtonMessages, ButtonsShareOneThemeWhichTheLastLetsGo)
{
    ASSERT_NE(nullptr, Make(L"System"));
    const HTHEME first = m_Button->GetTheme();
    ASSERT_NE(nullptr, first);
    {
        ScopedButton second;
        ASSERT_NE(nullptr, second.Create(nullptr, m_Parent.hwnd(), L"System"));
        EXPECT_EQ(first, second->GetTheme());
        second->DestroyWindow();
        EXPECT_EQ(nullptr, second->GetTheme());
    }
    // The first still draws with it after the other has gone.
    EXPECT_EQ(first, m_Button->GetTheme());
    m_Button->DestroyWindow();
    EXPECT_EQ(nullptr, m_Button->GetTheme());
    // Every button gone, the next one opens the theme again.
    ScopedButton third;
    ASSERT_NE(nullptr, third.Create(nullptr, m_Parent.hwnd(), L"System"));
    EXPECT_NE(nullptr, third->GetTheme());
}

TEST_F(ButtonMessages, AResizedButtonIsRepaintedOnScreenAndWhenShownAgain)
{
    HWND button = Make(L"System");
    ASSERT_NE(nullptr, button);
    ::ShowWindow(button, SW_SHOW);
    ::UpdateWindow(button);
    ASSERT_FALSE(::GetUpdateRect(button, nullptr, FALSE));
    ::SetWindowPos(button, nullptr, 0, 0, 70, 30, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOREDRAW);
    EXPECT_TRUE(::GetUpdateRect(button, nullptr, FALSE));
    ::UpdateWindow(button);

    // Hidden, it keeps no region to paint and is painted whole when shown again.
    ::ShowWindow(button, SW_HIDE);
    ::SetWindowPos(button, nullptr, 0, 0, 60, 24, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOREDRAW);
    EXPECT_FALSE(::GetUpdateRect(button, nullptr, FALSE));
    EXPECT_FALSE(m_Button->IsLayoutReady());
    ::ShowWindow(button, SW_SHOW);
    EXPECT_TRUE(::GetUpdateRect(button, nullptr, FALSE));
}

TEST_F(ButtonMessages, FactoryMakesButtonsFromButtonTemplates)
{
    mirltest::ButtonFrame frame;
    ASSERT_TRUE(frame.Open(L"Frame"));
    MirlWindowBase *child = frame.GetWindowItem(L"Child");
    ASSERT_NE(nullptr, child);
    EXPECT_NE(nullptr, dynamic_cast<MirlButton *>(child));
    wchar_t className[32] = {};
    ::GetClassNameW(child->m_hWnd, className, 32);
    EXPECT_STREQ(L"MirlWindowImpl", className);
    EXPECT_EQ(301, ::GetDlgCtrlID(child->m_hWnd));
    frame.DestroyWindow();
}

// ---------------------------------------------------------------------------------------------
// Automatic width

int CaptionWidth(MirlButton &button, const wchar_t *text, const Gdiplus::RectF *frame)
{
    HDC dc = ::GetDC(button.m_hWnd);
    Gdiplus::RectF box;
    {
        Gdiplus::Graphics graphics(dc);
        if (frame != nullptr) {
            graphics.MeasureString(text, -1, button.GetTxFont(), *frame, nullptr, &box);
        } else {
            graphics.MeasureString(text, -1, button.GetTxFont(), Gdiplus::PointF(0, 0), &box);
        }
    }
    ::ReleaseDC(button.m_hWnd, dc);
    return static_cast<int>(box.Width);
}

TEST_F(ButtonMessages, WidthGrowsToTheCaptionPlusTwelve)
{
    ASSERT_NE(nullptr, Make(L"Wide"));
    const int caption = CaptionWidth(*m_Button, L"A caption far wider than forty pixels", nullptr);
    ASSERT_GT(caption, 100);
    EXPECT_EQ(caption + 12, m_Button->GetWidth());
}

TEST_F(ButtonMessages, WidthOfADropDownButtonAddsTheArrow)
{
    ASSERT_NE(nullptr, Make(L"WideMenu"));
    const int caption = CaptionWidth(*m_Button, L"A caption far wider than forty pixels", nullptr);
    EXPECT_EQ(caption + 12 + 8, m_Button->GetWidth());
}

TEST_F(ButtonMessages, WidthOfAMultilineButtonIsMeasuredInTheTemplatesRectangle)
{
    ASSERT_NE(nullptr, Make(L"WideMultiline"));
    const Gdiplus::RectF frame(0, 0, 40, 60);
    const int caption = CaptionWidth(*m_Button, L"A caption far wider than forty pixels", &frame);
    EXPECT_EQ(std::max(40, caption + 12), m_Button->GetWidth());
    EXPECT_LT(m_Button->GetWidth(), 100);
}

TEST_F(ButtonMessages, WidthNeverShrinksAndParentWidthButtonsKeepTheirs)
{
    ASSERT_NE(nullptr, Make(L"Narrow"));
    EXPECT_EQ(300, m_Button->GetWidth());
    ScopedButton parentWidth;
    ASSERT_NE(nullptr, parentWidth.Create(nullptr, m_Parent.hwnd(), L"WideParent"));
    EXPECT_EQ(40, parentWidth->GetWidth());
}

// ---------------------------------------------------------------------------------------------
// Link markup and URL

TEST_F(ButtonMessages, LinkMarkupPrefixesEachLinkedCharacter)
{
    struct Row {
        const wchar_t *name;
        const wchar_t *caption;
        bool link;
    } rows[] = {
        {L"Link", L"go &h&e&r&e now", true},
        {L"LinkUpper", L"&a&bc", true},                      // the marks in any case
        {L"TwoLinks", L"&a(link)b(/link)", true},            // only the first pair
        {L"Backward", L"(/link)aa(link)", true},             // close before open: no run
        {L"Plain", L"Play", false},
    };
    for (const Row &row : rows) {
        ScopedButton button;
        ASSERT_NE(nullptr, button.Create(nullptr, m_Parent.hwnd(), row.name));
        EXPECT_STREQ(row.caption, button->GetText()) << row.name;
        EXPECT_STREQ(row.caption, button->GetTextLayout().GetText()) << row.name;
        EXPECT_EQ(row.link, button->HasLink()) << row.name;
    }
}

TEST_F(ButtonMessages, BackwardMarksKeepNoLinkRun)
{
    ASSERT_NE(nullptr, Make(L"Backward"));
    EXPECT_EQ(std::wstring::npos, std::wstring(m_Button->GetTextLayout().GetText()).find(L'&'));
}

TEST_F(ButtonMessages, UrlComesFromATextElementCutTo259Characters)
{
    ASSERT_NE(nullptr, Make(L"Url"));
    EXPECT_STREQ(L"http://example.invalid/button", m_Button->GetURL());
    ScopedButton longUrl;
    ASSERT_NE(nullptr, longUrl.Create(nullptr, m_Parent.hwnd(), L"LongUrl"));
    EXPECT_EQ(259u, wcslen(longUrl->GetURL()));
    EXPECT_EQ(0, wcsncmp(L"http://example.invalid/0123", longUrl->GetURL(), 27));
}

TEST_F(ButtonMessages, UrlOfAnEmptyTextClearsAndOfAnUnknownNameStays)
{
    ScopedButton empty;
    empty->SetURL(L"preset");
    ASSERT_NE(nullptr, empty.Create(nullptr, m_Parent.hwnd(), L"EmptyUrl"));
    EXPECT_STREQ(L"", empty->GetURL());
    ScopedButton unknown;
    unknown->SetURL(L"preset");
    ASSERT_NE(nullptr, unknown.Create(nullptr, m_Parent.hwnd(), L"UnknownUrl"));
    EXPECT_STREQ(L"preset", unknown->GetURL());
    EXPECT_TRUE(unknown->SetURL(nullptr));
    EXPECT_STREQ(L"", unknown->GetURL());
}

TEST_F(ButtonMessages, ClickAnywhereOpensTheUrlMaximised)
{
    UrlSeam seam;
    ASSERT_NE(nullptr, Make(L"Url"));
    ::SendMessageW(m_Button.hwnd(), WM_LBUTTONDOWN, MK_LBUTTON, At(95, 25));
    ::SendMessageW(m_Button.hwnd(), WM_LBUTTONUP, 0, At(95, 25));
    EXPECT_FALSE(m_Button->IsOverLink());
    ASSERT_EQ(1u, g_Opened.size());
    EXPECT_EQ(nullptr, g_Opened[0].owner);
    EXPECT_EQ(L"open", g_Opened[0].verb);
    EXPECT_EQ(L"http://example.invalid/button", g_Opened[0].file);
    EXPECT_FALSE(g_Opened[0].parameters);
    EXPECT_FALSE(g_Opened[0].directory);
    EXPECT_EQ(SW_SHOWMAXIMIZED, g_Opened[0].show);
}

TEST_F(ButtonMessages, CheckButtonWithAUrlFlipsAndOpensNothing)
{
    UrlSeam seam;
    ASSERT_NE(nullptr, Make(L"CheckUrl"));
    ::SendMessageW(m_Button.hwnd(), WM_LBUTTONDOWN, MK_LBUTTON, At(5, 5));
    ::SendMessageW(m_Button.hwnd(), WM_LBUTTONUP, 0, At(5, 5));
    EXPECT_TRUE(m_Button->GetCheck());
    EXPECT_TRUE(g_Opened.empty());
}

TEST_F(ButtonMessages, OnlyBnClickedIsAClick)
{
    UrlSeam seam;
    ASSERT_NE(nullptr, Make(L"Url"));
    ::SendMessageW(m_Button.hwnd(), OCM__BASE + WM_COMMAND, MAKEWPARAM(Id(), BN_SETFOCUS), Self());
    EXPECT_TRUE(g_Opened.empty());
    ::SendMessageW(m_Button.hwnd(), OCM__BASE + WM_COMMAND, MAKEWPARAM(Id(), BN_CLICKED), Self());
    EXPECT_EQ(1u, g_Opened.size());
}

TEST_F(ButtonMessages, PointerOverTheCaptionOfALinkShowsTheHand)
{
    ASSERT_NE(nullptr, Make(L"Link"));
    Paint();
    ASSERT_EQ(6.0f, m_Button->GetTextLayout().GetRect().X); // ALIGN_LEFT
    ::SendMessageW(m_Button.hwnd(), WM_MOUSEMOVE, 0, At(10, 15));
    EXPECT_TRUE(m_Button->IsOverLink());
    EXPECT_EQ(::LoadCursorW(nullptr, IDC_HAND), ::GetCursor());
    // y plays no part: below the caption is still over it.
    ::SendMessageW(m_Button.hwnd(), WM_MOUSEMOVE, 0, At(10, 29));
    EXPECT_TRUE(m_Button->IsOverLink());
    ::SendMessageW(m_Button.hwnd(), WM_MOUSEMOVE, 0, At(3, 15));
    EXPECT_FALSE(m_Button->IsOverLink());
    EXPECT_EQ(::LoadCursorW(nullptr, IDC_ARROW), ::GetCursor());
    ::ReleaseCapture();
}

TEST_F(ButtonMessages, LinkSpanFollowsTheCaptionsAlignmentWithBothEndsOutside)
{
    struct Row {
        const wchar_t *name;
        int (*left)(const Gdiplus::RectF &);
        int (*right)(const Gdiplus::RectF &);
    } rows[] = {
        {L"Link", [](const Gdiplus::RectF &c) { return static_cast<int>(c.X); },
         [](const Gdiplus::RectF &c) { return static_cast<int>(c.X + c.Width); }},
        {L"LinkRight", [](const Gdiplus::RectF &c) { return static_cast<int>(160 - c.Width); },
         [](const Gdiplus::RectF &) { return 160; }},
        {L"LinkCentre", [](const Gdiplus::RectF &c) { return static_cast<int>((160 - c.Width) * 0.5); },
         [](const Gdiplus::RectF &c) { return static_cast<int>((160 + c.Width) * 0.5); }},
    };
    for (const Row &row : rows) {
        ScopedButton button;
        ASSERT_NE(nullptr, button.Create(nullptr, m_Parent.hwnd(), row.name));
        ::UpdateWindow(button.hwnd());
        ASSERT_TRUE(button->IsLayoutReady()) << row.name;
        const Gdiplus::RectF caption = button->GetTextLayout().GetRect();
        const int left = row.left(caption);
        const int right = row.right(caption);
        const struct {
            int x;
            bool over;
        } moves[] = {{left, false}, {left + 1, true}, {right - 1, true}, {right, false}};
        for (const auto &move : moves) {
            ::SendMessageW(button.hwnd(), WM_MOUSEMOVE, 0, At(move.x, 15));
            EXPECT_EQ(move.over, button->IsOverLink()) << row.name << " at x = " << move.x;
        }
        ::ReleaseCapture();
    }
}

// ---------------------------------------------------------------------------------------------
// Hover

TEST_F(ButtonMessages, PointerOverTheButtonTakesTheCaptureAndLeavingGivesItBack)
{
    ASSERT_NE(nullptr, Make(L"Plain"));
    // The button lies at (10, 10) to (110, 40) of a parent at the screen's origin.
    ::SetCursorPos(50, 25);
    mirltest::FlushMessages(50);
    EXPECT_TRUE(m_Button->IsMouseOnButton());
    EXPECT_EQ(m_Button.hwnd(), ::GetCapture());
    // Moves inside keep it.
    ::SetCursorPos(60, 30);
    mirltest::FlushMessages(50);
    EXPECT_TRUE(m_Button->IsMouseOnButton());
    EXPECT_EQ(m_Button.hwnd(), ::GetCapture());
    // The first move over another window ends it.
    ::SetCursorPos(200, 100);
    mirltest::FlushMessages(50);
    EXPECT_FALSE(m_Button->IsMouseOnButton());
    EXPECT_EQ(nullptr, ::GetCapture());
}

TEST_F(ButtonMessages, ButtonThatIsNotFlatNeverHovers)
{
    ASSERT_NE(nullptr, Make(L"Url"));
    Paint();
    m_Button->SetFlat(false);
    EXPECT_FALSE(m_Button->GetFlat());
    HCURSOR before = ::GetCursor();
    ::SetCursorPos(50, 25);
    mirltest::FlushMessages(50);
    ::SendMessageW(m_Button.hwnd(), WM_MOUSEMOVE, 0, At(50, 15));
    EXPECT_FALSE(m_Button->IsMouseOnButton());
    EXPECT_FALSE(m_Button->IsOverLink());
    EXPECT_EQ(nullptr, ::GetCapture());
    EXPECT_EQ(before, ::GetCursor());
}

TEST_F(ButtonMessages, MoveWithTheLeftButtonDownFromElsewhereDoesNothing)
{
    ASSERT_NE(nullptr, Make(L"Url"));
    Paint();
    ::ValidateRect(m_Button.hwnd(), nullptr);
    ::SendMessageW(m_Button.hwnd(), WM_MOUSEMOVE, MK_LBUTTON, At(50, 15));
    EXPECT_FALSE(m_Button->IsMouseOnButton());
    EXPECT_FALSE(m_Button->IsOverLink());
    EXPECT_EQ(nullptr, ::GetCapture());
    RECT update = {};
    EXPECT_FALSE(::GetUpdateRect(m_Button.hwnd(), &update, FALSE)) << "nothing is redrawn";
}

TEST_F(ButtonMessages, LeavingWithTheLeftButtonHeldDropsTheHoverButKeepsTheCapture)
{
    ASSERT_NE(nullptr, Make(L"Plain"));
    ::SendMessageW(m_Button.hwnd(), WM_MOUSEMOVE, 0, At(50, 15));
    ASSERT_TRUE(m_Button->IsMouseOnButton());
    ::SendMessageW(m_Button.hwnd(), WM_LBUTTONDOWN, MK_LBUTTON, At(50, 15));
    // (150, 90) of the button is (160, 100) on the screen: the parent.
    ::SendMessageW(m_Button.hwnd(), WM_MOUSEMOVE, MK_LBUTTON, At(150, 90));
    EXPECT_FALSE(m_Button->IsMouseOnButton());
    EXPECT_EQ(m_Button.hwnd(), ::GetCapture());
    // Coming back with the button still held doesn't hover again.
    ::SendMessageW(m_Button.hwnd(), WM_MOUSEMOVE, MK_LBUTTON, At(50, 15));
    EXPECT_FALSE(m_Button->IsMouseOnButton());
    ::SendMessageW(m_Button.hwnd(), WM_LBUTTONUP, 0, At(150, 90));
    EXPECT_EQ(nullptr, ::GetCapture());
}

TEST_F(ButtonMessages, FocusActivationEnablingAndCancelModeEndTheHover)
{
    ASSERT_NE(nullptr, Make(L"Plain"));
    struct Row {
        const char *what;
        UINT message;
        WPARAM wParam;
        bool ends;
    } rows[] = {
        {"WM_KILLFOCUS", WM_KILLFOCUS, 0, true},
        {"WM_ACTIVATE inactive", WM_ACTIVATE, WA_INACTIVE, true},
        {"WM_ACTIVATE active", WM_ACTIVATE, WA_ACTIVE, false},
        {"WM_ENABLE false", WM_ENABLE, FALSE, true},
        {"WM_ENABLE true", WM_ENABLE, TRUE, false},
        {"WM_CANCELMODE", WM_CANCELMODE, 0, true},
    };
    for (const Row &row : rows) {
        ::SendMessageW(m_Button.hwnd(), WM_MOUSEMOVE, 0, At(50, 15));
        ASSERT_TRUE(m_Button->IsMouseOnButton()) << row.what;
        ::SendMessageW(m_Button.hwnd(), row.message, row.wParam, 0);
        EXPECT_EQ(!row.ends, m_Button->IsMouseOnButton()) << row.what;
        ::ReleaseCapture();
    }
    ::SendMessageW(m_Button.hwnd(), WM_MOUSEMOVE, 0, At(50, 15));
    m_Button->CancelHover();
    EXPECT_FALSE(m_Button->IsMouseOnButton());
    ::ReleaseCapture();
}

TEST_F(ButtonMessages, CaptureTakenByAnotherWindowIsLetGoButTheHoverStays)
{
    ASSERT_NE(nullptr, Make(L"Plain"));
    ::SendMessageW(m_Button.hwnd(), WM_MOUSEMOVE, 0, At(50, 15));
    ASSERT_EQ(m_Button.hwnd(), ::GetCapture());
    ::SetCapture(m_Parent.hwnd());
    EXPECT_TRUE(m_Button->IsMouseOnButton());
    EXPECT_EQ(nullptr, ::GetCapture());
    // The next move takes it again.
    ::SendMessageW(m_Button.hwnd(), WM_MOUSEMOVE, 0, At(50, 15));
    EXPECT_EQ(m_Button.hwnd(), ::GetCapture());
    ::ReleaseCapture();
}

// ---------------------------------------------------------------------------------------------
// Clicks, auto repeat, check mode, arrow zone

TEST_F(ButtonMessages, ClickComesBackAsAReflectedCommand)
{
    ASSERT_NE(nullptr, Make(L"Plain"));
    ::SendMessageW(m_Button.hwnd(), WM_LBUTTONDOWN, MK_LBUTTON, At(5, 5));
    ::SendMessageW(m_Button.hwnd(), WM_LBUTTONUP, 0, At(5, 5));
    const ExpectedMessage click[] = {
        {WM_LBUTTONDOWN, kControl, 0, 0},
        {WM_LBUTTONUP, kControl, 0, 0},
        {WM_COMMAND, kParent | kWParam | kLParam, MAKEWPARAM(114, BN_CLICKED), Self()},
        {OCM__BASE + WM_COMMAND, kControl | kWParam | kLParam, MAKEWPARAM(114, BN_CLICKED), Self()},
        {0, 0, 0, 0}};
    EXPECT_MESSAGES(m_Sequence, click, "click");
}

TEST_F(ButtonMessages, ReleasedAfterThreeCommandsSendsAnEvenFourthThenTheClick)
{
    ASSERT_NE(nullptr, Make(L"Plain"));
    EXPECT_TRUE(m_Button->SetAutoRepeat(true, 100));
    {
        ReleaseAfterCommands release(m_Button.hwnd(), 3);
        ::SendMessageW(m_Button.hwnd(), WM_LBUTTONDOWN, MK_LBUTTON, At(5, 5));
    }
    const WPARAM id = MAKEWPARAM(114, 0);
    const ExpectedMessage repeat[] = {
        {WM_LBUTTONDOWN, kControl, 0, 0},
        {WM_COMMAND, kParent | kWParam | kLParam, id, Self()},
        {OCM__BASE + WM_COMMAND, kControl, 0, 0},
        {WM_COMMAND, kParent | kWParam | kLParam, id, Self()},
        {OCM__BASE + WM_COMMAND, kControl, 0, 0},
        {WM_COMMAND, kParent | kWParam | kLParam, id, Self()},
        {OCM__BASE + WM_COMMAND, kControl, 0, 0},
        // The fourth makes the count even.
        {WM_COMMAND, kParent | kWParam | kLParam, id, Self()},
        {OCM__BASE + WM_COMMAND, kControl, 0, 0},
        // The system button completes its click.
        {WM_LBUTTONUP, kControl | kWParam | kLParam, 0, 0},
        {WM_COMMAND, kParent | kWParam | kLParam, MAKEWPARAM(114, BN_CLICKED), Self()},
        {OCM__BASE + WM_COMMAND, kControl | kWParam, MAKEWPARAM(114, BN_CLICKED), 0},
        // And the hover is brought up to date from where the pointer is.
        {WM_MOUSEMOVE, kControl | kWParam, 0, 0},
        {0, 0, 0, 0}};
    EXPECT_MESSAGES(m_Sequence, repeat, "auto repeat released after three commands");
    // That last move, like any first move, takes the capture; the next one finds the pointer
    // elsewhere and lets go.
    EXPECT_TRUE(m_Button->IsMouseOnButton());
    EXPECT_EQ(m_Button.hwnd(), ::GetCapture());
    POINT parked = {};
    ::GetCursorPos(&parked);
    ::ScreenToClient(m_Button.hwnd(), &parked);
    ::SendMessageW(m_Button.hwnd(), WM_MOUSEMOVE, 0, At(parked.x, parked.y));
    EXPECT_FALSE(m_Button->IsMouseOnButton());
    EXPECT_EQ(nullptr, ::GetCapture());
}

TEST_F(ButtonMessages, ReleasedBeforeTheFirstPeekSendsNoRepeatCommand)
{
    ASSERT_NE(nullptr, Make(L"Plain"));
    m_Button->SetAutoRepeat(true, 100);
    ::PostMessageW(m_Button.hwnd(), WM_LBUTTONUP, 0, At(5, 5));
    ::SendMessageW(m_Button.hwnd(), WM_LBUTTONDOWN, MK_LBUTTON, At(5, 5));
    const ExpectedMessage once[] = {
        {WM_LBUTTONDOWN, kControl, 0, 0},
        {WM_LBUTTONUP, kControl | kLParam, 0, 0},
        {WM_COMMAND, kParent | kWParam, MAKEWPARAM(114, BN_CLICKED), 0},
        {OCM__BASE + WM_COMMAND, kControl, 0, 0},
        {WM_MOUSEMOVE, kControl, 0, 0},
        {0, 0, 0, 0}};
    EXPECT_MESSAGES(m_Sequence, once, "released at once");
}

TEST_F(ButtonMessages, DoubleClickOnAnAutoRepeatButtonStartsASecondLoop)
{
    ASSERT_NE(nullptr, Make(L"Plain"));
    m_Button->SetAutoRepeat(true, 100);
    {
        ReleaseAfterCommands release(m_Button.hwnd(), 2);
        ::SendMessageW(m_Button.hwnd(), WM_LBUTTONDOWN, MK_LBUTTON, At(5, 5));
    }
    {
        ReleaseAfterCommands release(m_Button.hwnd(), 2);
        ::SendMessageW(m_Button.hwnd(), WM_LBUTTONDBLCLK, MK_LBUTTON, At(5, 5));
    }
    // Each press, the double click too (seen by the recorder as it came), runs a whole loop.
    std::vector<ExpectedMessage> twice;
    for (UINT press : {UINT(WM_LBUTTONDOWN), UINT(WM_LBUTTONDBLCLK)}) {
        const WPARAM id = MAKEWPARAM(114, 0);
        const ExpectedMessage loop[] = {
            {press, kControl, 0, 0},
            {WM_COMMAND, kParent | kWParam, id, 0},
            {OCM__BASE + WM_COMMAND, kControl, 0, 0},
            {WM_COMMAND, kParent | kWParam, id, 0},
            {OCM__BASE + WM_COMMAND, kControl, 0, 0},
            {WM_LBUTTONUP, kControl, 0, 0},
            {WM_COMMAND, kParent | kWParam, id, 0},
            {OCM__BASE + WM_COMMAND, kControl, 0, 0},
            {WM_MOUSEMOVE, kControl, 0, 0}};
        twice.insert(twice.end(), std::begin(loop), std::end(loop));
    }
    twice.push_back({0, 0, 0, 0});
    EXPECT_MESSAGES(m_Sequence, twice.data(), "double click");
}

TEST_F(ButtonMessages, CheckButtonFlipsOnEachClickAndDrawsPressedWhileChecked)
{
    ASSERT_NE(nullptr, Make(L"Check"));
    ASSERT_TRUE(m_Button->IsCheckMode());
    EXPECT_FALSE(m_Button->GetCheck());
    ::SendMessageW(m_Button.hwnd(), WM_LBUTTONDOWN, MK_LBUTTON, At(5, 5));
    ::SendMessageW(m_Button.hwnd(), WM_LBUTTONUP, 0, At(5, 5));
    EXPECT_TRUE(m_Button->GetCheck());
    // The system button's own check state isn't used.
    EXPECT_EQ(BST_UNCHECKED, ::SendMessageW(m_Button.hwnd(), BM_GETCHECK, 0, 0));

    mirltest::Dib picture(100, 30);
    mirltest::DrawButton(m_Button.hwnd(), picture.dc(), 0); // ODS_SELECTED gone
    EXPECT_TRUE(m_Button->IsPressedDrawn());
    ::SendMessageW(m_Button.hwnd(), WM_LBUTTONDOWN, MK_LBUTTON, At(5, 5));
    ::SendMessageW(m_Button.hwnd(), WM_LBUTTONUP, 0, At(5, 5));
    EXPECT_FALSE(m_Button->GetCheck());
    mirltest::DrawButton(m_Button.hwnd(), picture.dc(), 0);
    EXPECT_FALSE(m_Button->IsPressedDrawn());
    mirltest::DrawButton(m_Button.hwnd(), picture.dc(), ODS_SELECTED | ODS_FOCUS | ODS_DISABLED);
    EXPECT_TRUE(m_Button->IsPressedDrawn());
    EXPECT_TRUE(m_Button->IsFocusDrawn());
    EXPECT_TRUE(m_Button->IsDisabledDrawn());
}

TEST_F(ButtonMessages, SetCheckOnlyTakesInCheckMode)
{
    ASSERT_NE(nullptr, Make(L"Plain"));
    m_Button->SetCheck(true, true);
    EXPECT_FALSE(m_Button->GetCheck());
    ScopedButton check;
    ASSERT_NE(nullptr, check.Create(nullptr, m_Parent.hwnd(), L"Check"));
    check->SetCheck(true, false);
    EXPECT_TRUE(check->GetCheck());
}

// A frame that asks the button whether the press was in the arrow zone when the click arrives.
TEST(ButtonArrowZone, PressInTheArrowZoneIsOnMenuDuringTheClicksCommand)
{
    mirltest::ParkCursor();
    mirltest::ButtonFrame frame;
    ASSERT_TRUE(frame.Open());
    ScopedButton button;
    ASSERT_NE(nullptr, button.Create(&frame, frame.m_hWnd, L"Menu"));
    // Before any painting the zone starts at 0: every press is in it. (A visible button paints
    // its pressed state within the press, before the zone is tested: this one is hidden.)
    ::ShowWindow(button.hwnd(), SW_HIDE);
    EXPECT_EQ(0, button->GetArrowX());
    ::SendMessageW(button.hwnd(), WM_LBUTTONDOWN, MK_LBUTTON, At(20, 15));
    EXPECT_TRUE(button->IsOnMenu());
    ::SendMessageW(button.hwnd(), WM_LBUTTONUP, 0, At(20, 15));
    EXPECT_EQ(0, button->GetArrowX());

    ::ShowWindow(button.hwnd(), SW_SHOW);
    ::UpdateWindow(button.hwnd());
    // The face is 99 wide; the 12-pixel arrow ends 10 pixels before its right edge.
    ASSERT_EQ(77, button->GetArrowX());

    std::vector<bool> onMenu;
    frame.m_Commands.clear();
    auto press = [&](int x) {
        ::SendMessageW(button.hwnd(), WM_LBUTTONDOWN, MK_LBUTTON, At(x, 15));
        const bool during = button->IsOnMenu();
        ::SendMessageW(button.hwnd(), WM_LBUTTONUP, 0, At(x, 15));
        onMenu.push_back(during);
    };
    press(80);
    press(77);
    press(20);
    ASSERT_EQ(3u, frame.m_Commands.size());
    EXPECT_EQ(std::vector<bool>({true, true, false}), onMenu);
    EXPECT_FALSE(button->IsOnMenu());
    frame.DestroyWindow();
}

// ---------------------------------------------------------------------------------------------
// Caption changes, keys, right button, small messages

TEST_F(ButtonMessages, SetTextKeepsTheSystemTextAndTheMeasuredRectangle)
{
    ASSERT_NE(nullptr, Make(L"Plain"));
    Paint();
    ASSERT_TRUE(m_Button->IsLayoutReady());
    const Gdiplus::RectF before = m_Button->GetTextLayout().GetRect();
    EXPECT_EQ(0, ::SendMessageW(m_Button.hwnd(), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(L"A much longer caption")));
    EXPECT_STREQ(L"A much longer caption", m_Button->GetText());
    EXPECT_STREQ(L"A much longer caption", m_Button->GetTextLayout().GetText());
    wchar_t system[64] = {};
    ::GetWindowTextW(m_Button.hwnd(), system, 64);
    EXPECT_STREQ(L"Play", system);
    Paint();
    EXPECT_TRUE(m_Button->IsLayoutReady());
    const Gdiplus::RectF after = m_Button->GetTextLayout().GetRect();
    EXPECT_EQ(before.X, after.X);
    EXPECT_EQ(before.Width, after.Width);
    // A size change measures it anew.
    ::SendMessageW(m_Button.hwnd(), WM_SIZE, SIZE_RESTORED, MAKELPARAM(100, 30));
    EXPECT_FALSE(m_Button->IsLayoutReady());
    Paint();
    EXPECT_GT(m_Button->GetTextLayout().GetRect().Width, before.Width);
}

TEST_F(ButtonMessages, ArrowKeysAndF2GoToTheParentAsWellAsToTheButton)
{
    ASSERT_NE(nullptr, Make(L"Plain"));
    for (WPARAM key : {WPARAM(VK_UP), WPARAM(VK_DOWN), WPARAM(VK_F2), WPARAM(VK_LEFT)}) {
        ::SendMessageW(m_Button.hwnd(), WM_KEYDOWN, key, 0x00480001);
    }
    const ExpectedMessage keys[] = {
        {WM_KEYDOWN, kControl | kWParam, VK_UP, 0},
        {WM_KEYDOWN, kParent | kWParam | kLParam, VK_UP, 0x00480001},
        {WM_KEYDOWN, kControl | kWParam, VK_DOWN, 0},
        {WM_KEYDOWN, kParent | kWParam | kLParam, VK_DOWN, 0x00480001},
        {WM_KEYDOWN, kControl | kWParam, VK_F2, 0},
        {WM_KEYDOWN, kParent | kWParam | kLParam, VK_F2, 0x00480001},
        {WM_KEYDOWN, kControl | kWParam, VK_LEFT, 0},
        {0, 0, 0, 0}};
    EXPECT_MESSAGES(m_Sequence, keys, "keys");
}

TEST_F(ButtonMessages, SpaceStillClicksThroughTheSystemButton)
{
    ASSERT_NE(nullptr, Make(L"Plain"));
    ::SendMessageW(m_Button.hwnd(), WM_KEYDOWN, VK_SPACE, 0x00390001);
    ::SendMessageW(m_Button.hwnd(), WM_KEYUP, VK_SPACE, 0xC0390001);
    EXPECT_EQ(1u, m_Sequence.Count(OCM__BASE + WM_COMMAND));
}

TEST_F(ButtonMessages, RightButtonOfACheckStyleGoesToTheParentInItsCoordinates)
{
    ASSERT_NE(nullptr, Make(L"CheckUrl"));
    ::SendMessageW(m_Button.hwnd(), WM_RBUTTONDOWN, MK_RBUTTON, At(5, 6));
    const ExpectedMessage forwarded[] = {
        {WM_RBUTTONDOWN, kControl | kLParam, 0, MAKELPARAM(5, 6)},
        {WM_RBUTTONDOWN, kParent | kWParam | kLParam, MK_RBUTTON, MAKELPARAM(15, 16)},
        {0, 0, 0, 0}};
    EXPECT_MESSAGES(m_Sequence, forwarded, "check style");
    ScopedButton plain;
    ASSERT_NE(nullptr, plain.Create(nullptr, m_Parent.hwnd(), L"Plain"));
    m_Sequence.Clear();
    ::SendMessageW(plain.hwnd(), WM_RBUTTONDOWN, MK_RBUTTON, At(5, 6));
    EXPECT_EQ(0u, m_Sequence.Count(WM_RBUTTONDOWN));
}

TEST_F(ButtonMessages, ColourAndEraseAnswers)
{
    ASSERT_NE(nullptr, Make(L"Plain"));
    EXPECT_EQ(reinterpret_cast<LRESULT>(::GetStockObject(NULL_BRUSH)),
              ::SendMessageW(m_Button.hwnd(), OCM__BASE + WM_CTLCOLORBTN, 0, Self()));
    mirltest::Dib picture(4, 4);
    EXPECT_EQ(1, ::SendMessageW(m_Button.hwnd(), WM_ERASEBKGND, reinterpret_cast<WPARAM>(picture.dc()), 0));
}

TEST_F(ButtonMessages, MouseMessagesAreRelayedToTheTooltip)
{
    ASSERT_NE(nullptr, Make(L"Tipped"));
    HWND tooltip = m_Button->GetToolTipCtrl();
    ASSERT_NE(nullptr, tooltip);
    mirltest::MessageSequence tips;
    mirltest::ControlRecorder tipSpy(tooltip, tips);
    tips.RecordEverything();
    ::SendMessageW(m_Button.hwnd(), WM_MOUSEMOVE, 0, At(5, 5));
    ::SendMessageW(m_Button.hwnd(), WM_RBUTTONDOWN, MK_RBUTTON, At(5, 5));
    ::SendMessageW(m_Button.hwnd(), WM_KEYDOWN, VK_LEFT, 0);
    EXPECT_EQ(2u, tips.Count(TTM_RELAYEVENT));
    ::ReleaseCapture();
}

TEST_F(ButtonMessages, SmallOperationsKeepWhatTheyAreGiven)
{
    ASSERT_NE(nullptr, Make(L"Plain"));
    EXPECT_EQ(0, m_Button->SubclassWindowBtn(m_Parent.hwnd()));
    EXPECT_TRUE(m_Button->SetBtnCursor(IDC_HAND, nullptr));
    m_Button->SetFlatFocus(true, true);
    m_Button->DrawBorder(true);
    m_Button->SetHighLight(true);
    m_Button->SetAlign(static_cast<MirlButton::Alignment>(ORDER_V_IMAGE_TEXT | ALIGN_BOTTOM));
    EXPECT_EQ(static_cast<unsigned long>(ORDER_V_IMAGE_TEXT | ALIGN_BOTTOM), m_Button->GetAlign());
    // The position word of the window base is another word.
    EXPECT_EQ(0u, static_cast<MirlWindowBase &>(*m_Button).GetAlign());
    EXPECT_TRUE(m_Button->SetAutoRepeat(true, 40));
    EXPECT_TRUE(m_Button->GetAutoRepeat());
    EXPECT_EQ(40u, m_Button->GetRepeatDelay());
}

// ---------------------------------------------------------------------------------------------
// Images at run time

TEST_F(ButtonMessages, SetImageOnAFilledSlotKeepsItsSizeAndOnAnEmptyOneTakesTheFiles)
{
    ASSERT_NE(nullptr, Make(L"BigImage"));
    Paint();
    ASSERT_TRUE(m_Button->IsLayoutReady());
    ASSERT_EQ(32u, m_Button->GetImage(0)->Width);
    EXPECT_EQ(S_OK, ::SendMessageW(m_Button.hwnd(), BM_SETIMAGE, 0, reinterpret_cast<LPARAM>(L"Images/File64.png")));
    EXPECT_EQ(32u, m_Button->GetImage(0)->Width);
    EXPECT_EQ(32u, m_Button->GetImage(0)->Height);
    EXPECT_FALSE(m_Button->IsLayoutReady());
    // Scaled: the quarters of the file are the quarters of the slot.
    Gdiplus::Color colour;
    m_Button->GetImage(0)->Bitmap->GetPixel(4, 4, &colour);
    EXPECT_EQ(0xFFFF0000u, colour.GetValue());
    m_Button->GetImage(0)->Bitmap->GetPixel(27, 27, &colour);
    EXPECT_EQ(0xFFFFFF00u, colour.GetValue());

    EXPECT_EQ(S_OK, ::SendMessageW(m_Button.hwnd(), BM_SETIMAGE, 2, reinterpret_cast<LPARAM>(L"Images/File64.png")));
    EXPECT_EQ(64u, m_Button->GetImage(2)->Width);
    EXPECT_EQ(64u, m_Button->GetImage(2)->Height);
    EXPECT_FALSE(m_Button->GetImage(2)->HasColorKey);
}

TEST_F(ButtonMessages, SetImageWithAMissingFileFailsAndLeavesTheSlotEmpty)
{
    ASSERT_NE(nullptr, Make(L"BigImage"));
    Paint();
    ASSERT_TRUE(m_Button->IsLayoutReady());
    EXPECT_EQ(static_cast<LRESULT>(E_FAIL),
              ::SendMessageW(m_Button.hwnd(), BM_SETIMAGE, 1, reinterpret_cast<LPARAM>(L"Images/Nowhere.png")));
    EXPECT_EQ(nullptr, m_Button->GetImage(1)->Bitmap);
    EXPECT_TRUE(m_Button->IsLayoutReady());
    // A null name empties the slot and asks for a new layout.
    EXPECT_EQ(S_OK, ::SendMessageW(m_Button.hwnd(), BM_SETIMAGE, 0, 0));
    EXPECT_EQ(nullptr, m_Button->GetImage(0)->Bitmap);
    EXPECT_FALSE(m_Button->IsLayoutReady());
    // A slot that doesn't exist changes nothing.
    EXPECT_EQ(static_cast<LRESULT>(E_INVALIDARG),
              ::SendMessageW(m_Button.hwnd(), BM_SETIMAGE, 4, reinterpret_cast<LPARAM>(L"Images/File64.png")));
}

TEST_F(ButtonMessages, AnAdoptedBitmapBringsItsSizeAndNoKey)
{
    ASSERT_NE(nullptr, Make(L"Keyed"));
    ASSERT_TRUE(m_Button->GetImage(0)->HasColorKey);
    m_Button->LoadBitmapFromSkin(0, new Gdiplus::Bitmap(7, 5, PixelFormat32bppARGB));
    EXPECT_EQ(7u, m_Button->GetImage(0)->Width);
    EXPECT_EQ(5u, m_Button->GetImage(0)->Height);
    EXPECT_FALSE(m_Button->GetImage(0)->HasColorKey);
}

// ---------------------------------------------------------------------------------------------
// Layout through the button

TEST_F(ButtonMessages, ImageIsPlacedByTheFirstPaint)
{
    const struct {
        const wchar_t *name;
        float x;
        float y;
    } rows[] = {
        {L"Four", 6.0f, 7.0f},      // 100 x 30, image left of text, ALIGN_LEFT
        {L"ImageOnly", 6.0f, 7.0f}, // 100 x 30, no text, ALIGN_LEFT
        {L"Small", static_cast<float>(2147483645u), 7.0f}, // 10 x 30, 16 wide, centred: out of sight
    };
    for (const auto &row : rows) {
        ScopedButton button;
        ASSERT_NE(nullptr, button.Create(nullptr, m_Parent.hwnd(), row.name));
        ::UpdateWindow(button.hwnd());
        EXPECT_EQ(row.x, button->GetImageRect().X) << row.name;
        EXPECT_EQ(row.y, button->GetImageRect().Y) << row.name;
        EXPECT_EQ(16.0f, button->GetImageRect().Width) << row.name;
    }
    // Beside the image the caption begins at 6 + 16 + 3.
    ASSERT_NE(nullptr, Make(L"Four"));
    Paint();
    EXPECT_EQ(25.0f, m_Button->GetTextLayout().GetRect().X);
}

TEST_F(ButtonMessages, HoverImageWithoutNormalImageIsNotLaidOut)
{
    ASSERT_NE(nullptr, Make(L"HoverOnlyText"));
    Paint();
    EXPECT_TRUE(m_Button->IsLayoutReady());
    const Gdiplus::RectF image = m_Button->GetImageRect();
    EXPECT_EQ(0.0f, image.Width);
    EXPECT_EQ(0.0f, image.Height);
    ScopedButton bare;
    ASSERT_NE(nullptr, bare.Create(nullptr, m_Parent.hwnd(), L"HoverOnly"));
    ::UpdateWindow(bare.hwnd());
    // No text and no image: no layout, tried again at the next paint.
    EXPECT_FALSE(bare->IsLayoutReady());
}

// ---------------------------------------------------------------------------------------------
// Common images

TEST(ButtonCommonImages, LoadedByTheFirstButtonAndFreedWithTheLast)
{
    mirltest::ButtonFrame frame;
    ASSERT_TRUE(frame.Open());
    ASSERT_EQ(0, MirlButton::GetCommonRef());
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(nullptr, MirlButton::GetCommonBackground(i));
    }
    {
        ScopedButton first;
        ASSERT_NE(nullptr, first.Create(&frame, frame.m_hWnd, L"Plain"));
        EXPECT_EQ(1, MirlButton::GetCommonRef());
        Gdiplus::Bitmap *normal = MirlButton::GetCommonBackground(1);
        ASSERT_NE(nullptr, normal);
        EXPECT_EQ(20u, normal->GetWidth());
        {
            ScopedButton second;
            ASSERT_NE(nullptr, second.Create(&frame, frame.m_hWnd, L"Four"));
            EXPECT_EQ(2, MirlButton::GetCommonRef());
            EXPECT_EQ(normal, MirlButton::GetCommonBackground(1)); // loaded once
            second->LoadCommonBitmaps();                             // a button counts once
            EXPECT_EQ(2, MirlButton::GetCommonRef());
        }
        EXPECT_EQ(1, MirlButton::GetCommonRef());
        EXPECT_EQ(normal, MirlButton::GetCommonBackground(1));
    }
    EXPECT_EQ(0, MirlButton::GetCommonRef());
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(nullptr, MirlButton::GetCommonBackground(i));
    }
    EXPECT_EQ(nullptr, MirlButton::GetCommonBackground(4));
    frame.DestroyWindow();
}

TEST(ButtonCommonImages, ButtonsDestroyedWithTheirParentLetGoToo)
{
    mirltest::ButtonFrame frame;
    ASSERT_TRUE(frame.Open(L"Frame")); // its "Child" is a button made by the factory
    EXPECT_EQ(1, MirlButton::GetCommonRef());
    MirlButton *loose = new MirlButton();
    ASSERT_NE(nullptr, loose->Create(&frame, frame.m_hWnd, static_cast<LPRECT>(nullptr), L"Four"));
    EXPECT_EQ(2, MirlButton::GetCommonRef());
    frame.DestroyWindow();
    EXPECT_EQ(0, MirlButton::GetCommonRef());
    EXPECT_EQ(nullptr, MirlButton::GetCommonBackground(1));
    delete loose;
}

} // namespace
