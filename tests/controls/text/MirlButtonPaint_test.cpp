// MirlButton's painting: each state, the four orders with every alignment, colour keys, the
// idle one-image button, the three-slice background, the disabled look, the drop-down arrow, a
// link under the pointer, the system theme, and a transparent button on a textured parent.
// Pictures come from the button's own owner-draw path (WM_PRINTCLIENT to the system button,
// which asks its parent to draw, which reflects to the button) and are compared with goldens;
// the facts that make each picture right are also checked pixel by pixel.
#include "MirlButtonTestSupport.h"
#include "MirlMessageRecorder.h"
#include "MirlPixelTest.h"

#include <cstdlib>
#include <string>
#include <vector>

using mirltest::Dib;
using mirltest::ScopedButton;

namespace {

::testing::Environment *const g_Mirl =
    ::testing::AddGlobalTestEnvironment(new mirltest::SkinEnvironment(L"buttons"));

// Colours of the fixture's pictures (see tests/fixtures/make_button_fixture.py).
const DWORD kGreen = 0x00C800;    // Normal.png
const DWORD kYellow = 0xFFDC00;   // Hover.png
const DWORD kRed = 0xDC0000;      // Pressed.png
const DWORD kGrey = 0x969696;     // Disabled.png
const DWORD kFrame = 0x202020;    // the frame of those four
const DWORD kFace = 0x808080;     // a button without a background image
const DWORD kLeft1 = 0x3060C8;    // CmBtn1: left end
const DWORD kMiddle1 = 0x60A0FF;  // CmBtn1: the stretched column
const DWORD kRight1 = 0x2048A0;   // CmBtn1: right end
const DWORD kBorder1 = 0x102060;  // CmBtn1: one-pixel frame
const DWORD kLeft0 = 0xA0A0A0;    // CmBtn0 (disabled): left end
const DWORD kLeft3 = 0x183078;    // CmBtn3 (pressed): left end
const DWORD kLeft2 = 0x60A0F0;    // CmBtn2 (hover): left end
const DWORD kMagenta = 0xFF00FF;  // Keyed.png outside its disc
const DWORD kDisc = 0x0040FF;     // Keyed.png's disc

bool Near(DWORD expected, DWORD actual, int tolerance = 2)
{
    for (int shift = 0; shift < 24; shift += 8) {
        const int a = static_cast<int>((expected >> shift) & 0xFF);
        const int b = static_cast<int>((actual >> shift) & 0xFF);
        if (std::abs(a - b) > tolerance) {
            return false;
        }
    }
    return true;
}

#define EXPECT_COLOUR(expected, picture, x, y)                                                                \
    EXPECT_PRED3(Near, expected, (picture).Pixel(x, y), 2)                                                      \
        << "at (" << (x) << ", " << (y) << "): 0x" << std::hex << (picture).Pixel(x, y)

// What 70% of a colour over another comes to.
DWORD Blend70(DWORD top, DWORD under)
{
    DWORD result = 0;
    for (int shift = 0; shift < 24; shift += 8) {
        const double a = (top >> shift) & 0xFF;
        const double b = (under >> shift) & 0xFF;
        result |= static_cast<DWORD>(a * 0.7 + b * 0.3 + 0.5) << shift;
    }
    return result;
}

// Pictures of equal size side by side, in rows of `columns`, 4 pixels apart on dark grey.
Dib Grid(const std::vector<Dib> &cells, int columns)
{
    const int gap = 4;
    const int width = cells[0].width();
    const int height = cells[0].height();
    const int rows = static_cast<int>((cells.size() + columns - 1) / columns);
    Dib grid(columns * width + (columns + 1) * gap, rows * height + (rows + 1) * gap);
    grid.Fill(0xFF303030);
    for (size_t i = 0; i < cells.size(); ++i) {
        const int x = gap + static_cast<int>(i % columns) * (width + gap);
        const int y = gap + static_cast<int>(i / columns) * (height + gap);
        ::BitBlt(grid.dc(), x, y, width, height, cells[i].dc(), 0, 0, SRCCOPY);
    }
    ::GdiFlush();
    return grid;
}

// The bounding box of the pixels that pass a test, as left, top, right, bottom (inclusive).
template <class Test> RECT BoxOf(const Dib &picture, int fromX, Test test)
{
    RECT box = {picture.width(), picture.height(), -1, -1};
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = fromX; x < picture.width(); ++x) {
            if (test(picture.Pixel(x, y))) {
                box.left = std::min<LONG>(box.left, x);
                box.top = std::min<LONG>(box.top, y);
                box.right = std::max<LONG>(box.right, x);
                box.bottom = std::max<LONG>(box.bottom, y);
            }
        }
    }
    return box;
}

bool IsWhite(DWORD c)
{
    return ((c >> 16) & 0xFF) > 230 && ((c >> 8) & 0xFF) > 230 && (c & 0xFF) > 230;
}

bool IsOrange(DWORD c)
{
    return ((c >> 16) & 0xFF) > 200 && ((c >> 8) & 0xFF) > 120 && ((c >> 8) & 0xFF) < 220 && (c & 0xFF) < 80;
}

// A frame of the skin's colours (or a texture), with the pointer parked away from it.
class ButtonPaint : public mirltest::PixelTest {
protected:
    void SetUp() override
    {
        mirltest::PixelTest::SetUp();
        mirltest::ParkCursor();
        ASSERT_TRUE(m_Frame.Open());
        ASSERT_TRUE(mirltest::Activate(m_Frame.m_hWnd));
    }
    void TearDown() override
    {
        if (::IsWindow(m_Frame.m_hWnd)) {
            m_Frame.DestroyWindow();
        }
    }

    HWND Make(ScopedButton &button, const wchar_t *name)
    {
        HWND hwnd = button.Create(&m_Frame, m_Frame.m_hWnd, name);
        mirltest::FlushMessages();
        return hwnd;
    }

    // The button as it paints now.
    static Dib Render(const ScopedButton &button) { return mirltest::RenderWindow(button.hwnd()); }
    static Dib RenderHovering(const ScopedButton &button)
    {
        EXPECT_TRUE(mirltest::Activate(::GetParent(button.hwnd())));
        ::SendMessageW(button.hwnd(), WM_MOUSEMOVE, 0, MAKELPARAM(50, 15));
        EXPECT_TRUE(button->IsMouseOnButton()) << "active window " << ::GetActiveWindow();
        Dib picture = Render(button);
        button->CancelHover();
        ::ReleaseCapture();
        return picture;
    }
    static Dib RenderPressed(const ScopedButton &button)
    {
        ::SendMessageW(button.hwnd(), BM_SETSTATE, TRUE, 0);
        Dib picture = Render(button);
        ::SendMessageW(button.hwnd(), BM_SETSTATE, FALSE, 0);
        return picture;
    }
    static Dib RenderDisabled(const ScopedButton &button)
    {
        ::EnableWindow(button.hwnd(), FALSE);
        Dib picture = Render(button);
        ::EnableWindow(button.hwnd(), TRUE);
        return picture;
    }
    // Normal, hover, pressed, disabled.
    static std::vector<Dib> RenderStates(const ScopedButton &button)
    {
        std::vector<Dib> states;
        states.push_back(Render(button));
        states.push_back(RenderHovering(button));
        states.push_back(RenderPressed(button));
        states.push_back(RenderDisabled(button));
        return states;
    }

    mirltest::ButtonFrame m_Frame;
};

// ---------------------------------------------------------------------------------------------
// States

TEST_F(ButtonPaint, FourStateButtonShowsTheImageAndBackgroundOfEachState)
{
    ScopedButton button;
    ASSERT_NE(nullptr, Make(button, L"Four"));
    const std::vector<Dib> states = RenderStates(button);
    const Dib &normal = states[0], &hover = states[1], &pressed = states[2], &disabled = states[3];

    // The image at (6, 7), its inside at (7, 8); the pressed one a pixel lower and further right.
    EXPECT_COLOUR(kFrame, normal, 6, 7);
    EXPECT_COLOUR(kGreen, normal, 7, 8);
    EXPECT_COLOUR(kYellow, hover, 7, 8);
    EXPECT_COLOUR(kFrame, pressed, 7, 8);
    EXPECT_COLOUR(kRed, pressed, 8, 9);
    EXPECT_COLOUR(kGrey, disabled, 7, 8);
    // The common background of each state, one pixel narrower than the button.
    EXPECT_COLOUR(kLeft1, normal, 3, 3);
    EXPECT_COLOUR(kLeft2, hover, 3, 3);
    EXPECT_COLOUR(kLeft3, pressed, 3, 3);
    EXPECT_COLOUR(kLeft0, disabled, 3, 3);
    EXPECT_COLOUR(kFace, normal, 99, 15);
    EXPECT_COLOUR(kBorder1, normal, 98, 15);
    // The caption doesn't sink: a caption alone on the plain face looks the same held.
    ScopedButton plain;
    ASSERT_NE(nullptr, Make(plain, L"Plain"));
    EXPECT_EQ(0, mirltest::ComparePixels(Render(plain), RenderPressed(plain), 0).count);

    EXPECT_TRUE(mirltest::MatchesGolden(Grid(states, 4), "button_states"));
}

TEST_F(ButtonPaint, OneImageButtonIsSeventyPercentWhenIdle)
{
    ScopedButton button;
    ASSERT_NE(nullptr, Make(button, L"One"));
    const std::vector<Dib> states = RenderStates(button);
    EXPECT_COLOUR(Blend70(kGreen, kFace), states[0], 7, 8);
    EXPECT_COLOUR(kGreen, states[1], 7, 8);
    EXPECT_COLOUR(kGreen, states[2], 8, 9); // pressed: full and sunk
    EXPECT_COLOUR(Blend70(kGreen, kFace), states[3], 7, 8);
    EXPECT_TRUE(mirltest::MatchesGolden(Grid(states, 4), "button_one_image"));
}

TEST_F(ButtonPaint, DisabledButtonsShowTheirDisabledImages)
{
    ScopedButton four, one, check;
    ASSERT_NE(nullptr, Make(four, L"Four"));
    ASSERT_NE(nullptr, Make(one, L"One"));
    ASSERT_NE(nullptr, Make(check, L"Check"));
    std::vector<Dib> pictures;
    pictures.push_back(RenderDisabled(four));
    pictures.push_back(RenderDisabled(one));
    pictures.push_back(RenderDisabled(check));
    check->SetCheck(true, true);
    pictures.push_back(RenderDisabled(check));
    EXPECT_COLOUR(kGrey, pictures[0], 7, 8);                    // "PicS"
    EXPECT_COLOUR(Blend70(kGreen, kFace), pictures[1], 7, 8);  // the one image, idle
    EXPECT_COLOUR(kGreen, pictures[2], 7, 8);                   // check button: "Pic" unchecked
    EXPECT_COLOUR(kYellow, pictures[3], 7, 8);                  // and "PicC" checked
    for (const Dib &picture : pictures) {
        EXPECT_FALSE(Near(kBorder1, picture.Pixel(0, 15))) << "no normal background";
    }
    EXPECT_COLOUR(kLeft0, pictures[0], 3, 3);
    EXPECT_TRUE(mirltest::MatchesGolden(Grid(pictures, 2), "button_disabled"));
}

TEST_F(ButtonPaint, CheckedButtonLooksPressedWithoutSinkingAndHoverDoesNotShow)
{
    ScopedButton check;
    ASSERT_NE(nullptr, Make(check, L"Check"));
    std::vector<Dib> pictures;
    pictures.push_back(Render(check));
    pictures.push_back(RenderHovering(check));
    check->SetCheck(true, false);
    pictures.push_back(Render(check));
    pictures.push_back(RenderPressed(check));
    EXPECT_COLOUR(kGreen, pictures[0], 7, 8);
    EXPECT_COLOUR(kGreen, pictures[1], 7, 8); // hover doesn't show on a check button
    EXPECT_COLOUR(kLeft2, pictures[1], 3, 3); // though its background does
    EXPECT_COLOUR(kRed, pictures[2], 7, 8);   // checked: the pressed image, in place
    EXPECT_COLOUR(kFrame, pictures[2], 6, 7);
    EXPECT_COLOUR(kLeft3, pictures[2], 3, 3);
    EXPECT_COLOUR(kFrame, pictures[3], 6, 7); // held: no sinking either
    EXPECT_TRUE(mirltest::MatchesGolden(Grid(pictures, 4), "button_check"));
}

// ---------------------------------------------------------------------------------------------
// Orders

class ButtonOrders : public ButtonPaint, public ::testing::WithParamInterface<int> {
};

TEST_P(ButtonOrders, EachAlignmentOfTheOrder)
{
    const int order = GetParam();
    std::vector<Dib> cells;
    std::vector<Gdiplus::RectF> images;
    for (const wchar_t *vertical : {L"T", L"M", L"B"}) {
        for (const wchar_t *horizontal : {L"L", L"C", L"R"}) {
            const std::wstring name = L"Order" + std::to_wstring(order) + horizontal + vertical;
            ScopedButton button;
            ASSERT_NE(nullptr, Make(button, name.c_str())) << order;
            cells.push_back(Render(button));
            images.push_back(button->GetImageRect());
        }
    }
    // Every image is drawn where the layout put it, whole, in a 110 x 56 button; one image
    // only, so at 70% while idle.
    for (size_t i = 0; i < cells.size(); ++i) {
        const int x = static_cast<int>(images[i].X);
        const int y = static_cast<int>(images[i].Y);
        ASSERT_TRUE(x >= 0 && x + 16 <= 110 && y >= 0 && y + 16 <= 56) << "cell " << i;
        EXPECT_COLOUR(Blend70(kFrame, kFace), cells[i], x, y);
        EXPECT_COLOUR(Blend70(kGreen, kFace), cells[i], x + 8, y + 8);
    }
    const std::string golden = "button_order_" + std::to_string(order);
    EXPECT_TRUE(mirltest::MatchesGolden(Grid(cells, 3), golden.c_str()));
}

INSTANTIATE_TEST_SUITE_P(AllFour, ButtonOrders, ::testing::Values(0, 1, 2, 3));

TEST_F(ButtonPaint, OrderPlacesOfTheImage)
{
    // 110 x 56, image 16 x 16: the places that the pictures of the orders show.
    const struct {
        const wchar_t *name;
        float x;
        float y;
    } rows[] = {
        {L"Order0RT", 88.0f, 6.0f},  // text, image; right: 110 - 16 - 6; top: 6
        {L"Order1LT", 6.0f, 0.0f},   // image, text; left: 6; top: 0
        {L"Order1LB", 6.0f, 40.0f},  // bottom: 56 - 16
        {L"Order1CM", -1.0f, 20.0f}, // centre: (56 - 16) / 2
        {L"Order2LT", 6.0f, -1.0f},  // text above image; left: 6
        {L"Order2RB", 88.0f, 40.0f},
        {L"Order3LT", 0.0f, 0.0f},   // image above text; left: 0, top: 0
        {L"Order3RM", 94.0f, -1.0f}, // right: 110 - 16
        {L"Order3CB", 47.0f, -1.0f}, // centre: (110 - 16) / 2
    };
    for (const auto &row : rows) {
        ScopedButton button;
        ASSERT_NE(nullptr, Make(button, row.name));
        Render(button);
        if (row.x >= 0) {
            EXPECT_EQ(row.x, button->GetImageRect().X) << row.name;
        }
        if (row.y >= 0) {
            EXPECT_EQ(row.y, button->GetImageRect().Y) << row.name;
        }
    }
}

// ---------------------------------------------------------------------------------------------
// Colour keys, the arrow, the link, the theme

TEST_F(ButtonPaint, ColourKeyWorksForFourStateButtonsOnly)
{
    ScopedButton keyed, one;
    ASSERT_NE(nullptr, Make(keyed, L"Keyed"));
    ASSERT_NE(nullptr, Make(one, L"KeyedOne"));
    std::vector<Dib> pictures;
    pictures.push_back(Render(keyed));
    pictures.push_back(Render(one));
    // 40 x 30 without a caption: the image is centred at (12, 7); the face is the common
    // image's stretched middle there.
    EXPECT_COLOUR(kMiddle1, pictures[0], 12, 7);
    EXPECT_COLOUR(kDisc, pictures[0], 20, 15);
    // Without "PicC" the key isn't used: magenta, at 70%.
    EXPECT_COLOUR(Blend70(kMagenta, kMiddle1), pictures[1], 12, 7);
    EXPECT_COLOUR(Blend70(kDisc, kMiddle1), pictures[1], 20, 15);
    EXPECT_TRUE(mirltest::MatchesGolden(Grid(pictures, 2), "button_colour_keys"));
}

TEST_F(ButtonPaint, DropDownArrowSitsTenPixelsFromTheFacesRight)
{
    ScopedButton menu, red;
    ASSERT_NE(nullptr, Make(menu, L"Menu"));
    ASSERT_NE(nullptr, Make(red, L"MenuRed"));
    std::vector<Dib> pictures;
    pictures.push_back(Render(menu));
    pictures.push_back(RenderPressed(menu));
    pictures.push_back(Render(red));
    // Face 99 wide: the 12 x 8 arrow at x = 99 - 12 - 10 = 77, y = (30 - 8) / 2 = 11.
    EXPECT_EQ(77, menu->GetArrowX());
    EXPECT_COLOUR(0xFFFFFF, pictures[0], 77 + 1, 11 + 1);
    EXPECT_COLOUR(0xFFFFFF, pictures[0], 77 + 10, 11 + 1);
    EXPECT_COLOUR(0xFFFFFF, pictures[1], 77 + 1, 11 + 1); // the arrow doesn't sink
    EXPECT_EQ(73, red->GetArrowX());                       // 99 - 16 - 10
    EXPECT_COLOUR(0xFF2020, pictures[2], 73 + 1, 11 + 1);
    EXPECT_TRUE(mirltest::MatchesGolden(Grid(pictures, 3), "button_menu"));
}

TEST_F(ButtonPaint, LinkUnderThePointerIsOrange)
{
    ScopedButton link;
    ASSERT_NE(nullptr, Make(link, L"Link"));
    std::vector<Dib> pictures;
    pictures.push_back(Render(link));
    ::SendMessageW(link.hwnd(), WM_MOUSEMOVE, 0, MAKELPARAM(30, 15));
    ASSERT_TRUE(link->IsOverLink());
    pictures.push_back(Render(link));
    ::SendMessageW(link.hwnd(), WM_MOUSEMOVE, 0, MAKELPARAM(150, 15));
    ASSERT_FALSE(link->IsOverLink());
    pictures.push_back(Render(link));
    ::ReleaseCapture();
    const RECT none = BoxOf(pictures[0], 0, IsOrange);
    const RECT over = BoxOf(pictures[1], 0, IsOrange);
    EXPECT_LT(none.right, none.left) << "no orange before";
    EXPECT_GE(over.right, over.left) << "orange under the pointer";
    EXPECT_LT(BoxOf(pictures[2], 0, IsOrange).right, 0) << "and none beside the caption";
    EXPECT_TRUE(mirltest::MatchesGolden(Grid(pictures, 1), "button_link"));
}

TEST_F(ButtonPaint, SystemStyleDrawsTheThemesPushButton)
{
    ScopedButton system;
    ASSERT_NE(nullptr, Make(system, L"System"));
    ASSERT_NE(nullptr, system->GetTheme());
    std::vector<Dib> pictures;
    pictures.push_back(Render(system));
    pictures.push_back(RenderHovering(system));
    pictures.push_back(RenderPressed(system));
    // The theme paints over the grey face.
    EXPECT_FALSE(Near(kFace, pictures[0].Pixel(50, 3)));
    EXPECT_TRUE(mirltest::MatchesGolden(Grid(pictures, 3), "button_system"));
}

// ---------------------------------------------------------------------------------------------
// Transparency and caption changes

TEST_F(ButtonPaint, TransparentButtonShowsTheParentsTextureBeneathIt)
{
    m_Frame.m_Texture = true;
    ScopedButton glass;
    ASSERT_NE(nullptr, Make(glass, L"Glass"));
    std::vector<Dib> pictures;
    pictures.push_back(Render(glass));
    pictures.push_back(RenderHovering(glass));
    // The frame's 8-pixel squares, seen from the button at (20, 12).
    auto texture = [](int x, int y) -> DWORD {
        return (((x / 8) * 8 + (y / 8) * 8) / 8) % 2 == 0 ? 0xE6C878 : 0x78461E;
    };
    for (int y : {0, 3, 27}) {
        for (int x : {0, 3, 60, 97}) {
            EXPECT_COLOUR(texture(x + 20, y + 12), pictures[0], x, y);
        }
    }
    EXPECT_COLOUR(kGreen, pictures[0], 7, 8);
    EXPECT_COLOUR(kYellow, pictures[1], 7, 8);
    EXPECT_TRUE(mirltest::MatchesGolden(Grid(pictures, 2), "button_transparent"));
}

TEST_F(ButtonPaint, APaintStartsFromBlackWhateverTheButtonBeforeItPainted)
{
    // Without a parent object a transparent button has no picture to show through: what it
    // doesn't draw stays as the off-screen bitmap began, black.
    ScopedButton glass;
    ASSERT_NE(nullptr, glass.Create(nullptr, m_Frame.m_hWnd, L"Glass"));
    mirltest::FlushMessages();
    const Dib alone = Render(glass);
    EXPECT_COLOUR(0x000000, alone, 0, 0);
    EXPECT_COLOUR(0x000000, alone, 99, 29);

    // A button of the same size that fills its whole face, painted just before.
    ScopedButton four;
    ASSERT_NE(nullptr, Make(four, L"Four"));
    EXPECT_COLOUR(kFace, Render(four), 99, 15);
    const Dib after = Render(glass);
    EXPECT_COLOUR(0x000000, after, 0, 0);
    EXPECT_COLOUR(0x000000, after, 99, 29);
    EXPECT_EQ(0, mirltest::ComparePixels(alone, after, 0).count);
    // Nor does a paint leave its state behind: the face paints the same the second time.
    EXPECT_EQ(0, mirltest::ComparePixels(Render(four), Render(four), 0).count);
}

TEST_F(ButtonPaint, NewCaptionIsDrawnInTheOldRectangle)
{
    ScopedButton plain;
    ASSERT_NE(nullptr, Make(plain, L"Plain"));
    const Dib before = Render(plain);
    const Gdiplus::RectF old = plain->GetTextLayout().GetRect();
    ::SendMessageW(plain.hwnd(), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(L"Stop"));
    const Dib after = Render(plain);
    EXPECT_GT(mirltest::ComparePixels(before, after).count, 0) << "the new caption is drawn";
    const RECT shadow = BoxOf(after, 0, IsWhite);
    EXPECT_GE(shadow.left, static_cast<LONG>(old.X) - 1);
    EXPECT_LE(shadow.right, static_cast<LONG>(old.X + old.Width) + 1);
    EXPECT_GE(shadow.top, static_cast<LONG>(old.Y));
    EXPECT_LE(shadow.bottom, static_cast<LONG>(old.Y + old.Height) + 1);
}

TEST_F(ButtonPaint, HoverImageWithoutNormalImageIsNotSeen)
{
    ScopedButton button;
    ASSERT_NE(nullptr, Make(button, L"HoverOnlyText"));
    const Dib picture = RenderHovering(button);
    const RECT yellow = BoxOf(picture, 0, [](DWORD c) { return Near(kYellow, c, 10); });
    EXPECT_LT(yellow.right, yellow.left);
}

// ---------------------------------------------------------------------------------------------
// Painting services

TEST_F(ButtonPaint, ThreeSliceStretchKeepsTheEndsAndStretchesOneColumn)
{
    ScopedButton button;
    ASSERT_NE(nullptr, Make(button, L"Plain"));
    Gdiplus::Bitmap *image = MirlButton::GetCommonBackground(1);
    ASSERT_NE(nullptr, image);
    const int widths[] = {100, 41, 20, 12};
    std::vector<Dib> pictures;
    for (int width : widths) {
        Dib picture(100, 30);
        picture.Fill(0xFF303030);
        {
            Gdiplus::Graphics graphics(picture.dc());
            button->PainImageInRect(graphics, image, Gdiplus::Rect(0, 0, width, 30));
        }
        pictures.push_back(std::move(picture));
    }
    const Dib &wide = pictures[0];
    // A 20-pixel image in 100: left 10, middle 80, right 10.
    EXPECT_COLOUR(kBorder1, wide, 0, 15);
    EXPECT_COLOUR(kLeft1, wide, 9, 15);
    for (int x : {10, 50, 89, 90}) {
        EXPECT_COLOUR(kMiddle1, wide, x, 15);
    }
    EXPECT_COLOUR(kRight1, wide, 91, 15);
    EXPECT_COLOUR(kRight1, wide, 98, 15);
    EXPECT_COLOUR(kBorder1, wide, 99, 15);
    // The height is stretched, the frame rows stay at the edges.
    EXPECT_COLOUR(kBorder1, wide, 50, 0);
    EXPECT_COLOUR(kBorder1, wide, 50, 29);
    // 41: a middle of 21; 20: none; 12: ends overlapping, nothing past the rectangle's 10 + 10.
    EXPECT_COLOUR(kMiddle1, pictures[1], 30, 15);
    EXPECT_COLOUR(kRight1, pictures[1], 32, 15);
    EXPECT_COLOUR(kBorder1, pictures[2], 19, 15);
    EXPECT_COLOUR(0x303030, pictures[2], 20, 15);
    EXPECT_TRUE(mirltest::MatchesGolden(Grid(pictures, 1), "button_three_slice"));
}

TEST_F(ButtonPaint, BackgroundIsMidGreyAndTheBorderIsAThreeDFrame)
{
    ScopedButton button;
    ASSERT_NE(nullptr, Make(button, L"Plain"));
    Dib picture(12, 10);
    picture.Fill(0xFF00FF00);
    const RECT all = {0, 0, 12, 10};
    EXPECT_EQ(0u, button->OnDrawBackground(WTL::CDCT<false>(picture.dc()), &all));
    EXPECT_COLOUR(kFace, picture, 0, 0);
    EXPECT_COLOUR(kFace, picture, 11, 9);

    const DWORD light = ::GetSysColor(COLOR_BTNHIGHLIGHT);
    const DWORD shadow = ::GetSysColor(COLOR_BTNSHADOW);
    auto rgb = [](COLORREF c) { return static_cast<DWORD>((GetRValue(c) << 16) | (GetGValue(c) << 8) | GetBValue(c)); };
    const RECT inner = {1, 1, 11, 9}; // x 1, y 1, w 10, h 8
    EXPECT_EQ(0u, button->OnDrawBorder(WTL::CDCT<false>(picture.dc()), &inner));
    EXPECT_COLOUR(rgb(light), picture, 1, 1);  // top row from x to x+w-2
    EXPECT_COLOUR(rgb(light), picture, 9, 1);
    EXPECT_COLOUR(rgb(light), picture, 1, 7);  // left column to y+h-2
    EXPECT_COLOUR(rgb(shadow), picture, 10, 1); // right column at x+w-1, the whole height
    EXPECT_COLOUR(rgb(shadow), picture, 10, 8);
    EXPECT_COLOUR(rgb(shadow), picture, 1, 8);  // bottom row at y+h-1
    EXPECT_COLOUR(kFace, picture, 5, 5);
    // Drawn pressed, the colours change places.
    mirltest::DrawButton(button.hwnd(), picture.dc(), ODS_SELECTED);
    ASSERT_TRUE(button->IsPressedDrawn());
    picture.Fill(0xFF00FF00);
    button->OnDrawBorder(WTL::CDCT<false>(picture.dc()), &inner);
    EXPECT_COLOUR(rgb(shadow), picture, 1, 1);
    EXPECT_COLOUR(rgb(light), picture, 10, 8);
}

TEST_F(ButtonPaint, BitmapMaskMarksTheKeyWhiteAndBlackensItInTheSource)
{
    // Pixels as GDI writes them, alpha 0: Wine's colour to monochrome conversion takes the
    // alpha byte into the comparison with the key, so a pixel with alpha FF never matches.
    Dib source(4, 2);
    source.FillWith([](int x, int y) { return (x + y) % 2 == 0 ? 0x0000FF00u : 0x00123456u; });
    // The source must not be selected anywhere else.
    HBITMAP bitmap = ::CreateCompatibleBitmap(source.dc(), 4, 2);
    HDC dc = ::CreateCompatibleDC(nullptr);
    HGDIOBJ old = ::SelectObject(dc, bitmap);
    ::BitBlt(dc, 0, 0, 4, 2, source.dc(), 0, 0, SRCCOPY);
    ::SelectObject(dc, old);

    HBITMAP mask = MirlButton::CreateBitmapMask(bitmap, 4, 2, RGB(0, 255, 0));
    ASSERT_NE(nullptr, mask);
    const Dib maskPicture = mirltest::ReadBitmap(mask);
    const Dib sourcePicture = mirltest::ReadBitmap(bitmap);
    for (int y = 0; y < 2; ++y) {
        for (int x = 0; x < 4; ++x) {
            const bool key = (x + y) % 2 == 0;
            EXPECT_EQ(key ? 0xFFFFFFu : 0x000000u, maskPicture.Pixel(x, y)) << x << "," << y;
            EXPECT_EQ(key ? 0x000000u : 0x123456u, sourcePicture.Pixel(x, y)) << x << "," << y;
        }
    }
    ::DeleteObject(mask);
    ::DeleteObject(bitmap);
    ::DeleteDC(dc);
}

} // namespace
