// What the containers paint: the toolbar's strip, each face of a tab and of a folder bar with
// its arrow and icon, and the group box's bar with its caption 8 pixels from the left.
#include "MirlContainerTestSupport.h"
#include "MirlMessageRecorder.h"
#include "MirlPixelTest.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <vector>

namespace {

::testing::Environment *const g_Mirl =
    ::testing::AddGlobalTestEnvironment(new mirltest::SkinEnvironment(L"containers"));

using mirltest::Dib;

// The colours of tests/fixtures/containers (make_container_fixture.py).
const DWORD kBarLeft = 0x0000C8;
const DWORD kBarMiddle = 0x00A000;
const DWORD kBarRight = 0x000064;
const DWORD kTabActiveLeft = 0xFF8C00;
const DWORD kTabActiveMiddle = 0xFFDC00;
const DWORD kTabActiveRight = 0x964B00;
const DWORD kTabMenuLeft = 0x800080;
const DWORD kTabHoverLeft = 0x008080;
const DWORD kTabHoverMiddle = 0x64DCDC;
const DWORD kBarActiveLeft = 0xC80000;
const DWORD kBarActiveRight = 0x780000;
const DWORD kBarMenuLeft = 0x0000C8;
const DWORD kBarHoverLeft = 0x009600;
const DWORD kArrow = 0xFFFFFF;
const DWORD kIcon = 0xFF00FF;
const DWORD kPaper = 0xF0F0E8;
const DWORD kGroupGrey = 0x5A5A5A;
const DWORD kGroupSteel = 0x3C64A0;
const DWORD kGroupDark = 0x1E3250;

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

class ContainerPaint : public mirltest::PixelTest {
protected:
    void SetUp() override
    {
        mirltest::PixelTest::SetUp();
        mirltest::ParkCursor();
        ASSERT_TRUE(m_Frame.Open(L"Host"));
        ASSERT_TRUE(mirltest::Activate(m_Frame.m_hWnd));
    }
    void TearDown() override
    {
        if (::IsWindow(m_Frame.m_hWnd)) {
            m_Frame.DestroyWindow();
        }
        mirltest::ParkCursor();
    }

    mirltest::ButtonFrame m_Frame;
};

TEST_F(ContainerPaint, ToolbarStripIsThreeSlices)
{
    mirltest::Scoped<MirlToolbar> toolbar;
    ASSERT_NE(nullptr, toolbar.Create(&m_Frame, m_Frame.m_hWnd, L"StripPlain"));
    Dib picture = mirltest::RenderWindow(toolbar.hwnd());
    ASSERT_EQ(300, picture.width());
    ASSERT_EQ(40, picture.height());
    for (int y : {0, 20, 39}) {
        EXPECT_COLOUR(kBarLeft, picture, 0, y);
        EXPECT_COLOUR(kBarLeft, picture, 5, y);
        EXPECT_COLOUR(kBarMiddle, picture, 6, y);
        EXPECT_COLOUR(kBarMiddle, picture, 150, y);
        EXPECT_COLOUR(kBarMiddle, picture, 293, y);
        // The right end is as wide as the left one, not its own 8 pixels.
        EXPECT_COLOUR(kBarRight, picture, 294, y);
        EXPECT_COLOUR(kBarRight, picture, 299, y);
    }
    EXPECT_TRUE(mirltest::MatchesGolden(picture, "toolbar_strip"));
}

TEST_F(ContainerPaint, TabFacesByState)
{
    mirltest::Scoped<MirlToolbar> toolbar;
    ASSERT_NE(nullptr, toolbar.Create(&m_Frame, m_Frame.m_hWnd, L"StripPlain"));
    MirlTabButton *playing = dynamic_cast<MirlTabButton *>(toolbar->GetChildByIndex(2));
    ASSERT_NE(nullptr, playing);
    HWND tab = playing->m_hWnd;
    std::vector<Dib> faces;
    // At rest and not current: no face, the window's background.
    faces.push_back(mirltest::RenderWindow(tab));
    EXPECT_COLOUR(kPaper, faces.back(), 2, 2);
    EXPECT_COLOUR(kPaper, faces.back(), 44, 34);
    // Current: the active face, with the arrow centred 4 pixels above the bottom.
    toolbar->SelectTab(1);
    faces.push_back(mirltest::RenderWindow(tab));
    EXPECT_COLOUR(kTabActiveLeft, faces.back(), 0, 2);
    EXPECT_COLOUR(kTabActiveLeft, faces.back(), 9, 2);
    EXPECT_COLOUR(kTabActiveMiddle, faces.back(), 10, 2);
    EXPECT_COLOUR(kTabActiveMiddle, faces.back(), 79, 2);
    EXPECT_COLOUR(kTabActiveMiddle, faces.back(), 80, 2);
    EXPECT_COLOUR(kTabActiveRight, faces.back(), 81, 2);
    EXPECT_COLOUR(kTabActiveRight, faces.back(), 89, 39);
    EXPECT_COLOUR(kArrow, faces.back(), 41, 32);
    EXPECT_COLOUR(kArrow, faces.back(), 48, 35);
    EXPECT_COLOUR(kTabActiveMiddle, faces.back(), 40, 33);
    EXPECT_COLOUR(kTabActiveMiddle, faces.back(), 44, 31);
    EXPECT_COLOUR(kTabActiveMiddle, faces.back(), 44, 36);
    // The pointer over the upper zone: the hover face.
    mirltest::MoveTo(tab, 20, 10);
    faces.push_back(mirltest::RenderWindow(tab));
    EXPECT_COLOUR(kTabHoverLeft, faces.back(), 2, 2);
    EXPECT_COLOUR(kTabHoverMiddle, faces.back(), 40, 2);
    // Over the menu zone: the menu face.
    mirltest::MoveTo(tab, 20, 30);
    faces.push_back(mirltest::RenderWindow(tab));
    EXPECT_COLOUR(kTabMenuLeft, faces.back(), 2, 2);
    ::ReleaseCapture();
    EXPECT_TRUE(mirltest::MatchesGolden(Grid(faces, 2), "toolbar_tab_faces"));
}

TEST_F(ContainerPaint, OutlookBarFacesIconAndArrow)
{
    mirltest::Scoped<MIRLOutlookCtrl> outlook;
    ASSERT_NE(nullptr, outlook.Create(&m_Frame, m_Frame.m_hWnd, L"Folders"));
    mirltest::FlushMessages();
    HWND first = outlook->GetFolder(0)->pBar->m_hWnd;
    HWND second = outlook->GetFolder(1)->pBar->m_hWnd;
    RECT client = {};
    ::GetClientRect(first, &client);
    const int width = client.right;
    std::vector<Dib> bars;
    // The current bar, with its icon at x 4, centred in the height.
    bars.push_back(mirltest::RenderWindow(first));
    EXPECT_COLOUR(kBarActiveLeft, bars.back(), 0, 0);
    EXPECT_COLOUR(kBarActiveLeft, bars.back(), 3, 8);
    EXPECT_COLOUR(kIcon, bars.back(), 4, 8);
    EXPECT_COLOUR(kIcon, bars.back(), 19, 23);
    EXPECT_COLOUR(kBarActiveLeft, bars.back(), 4, 7);
    EXPECT_COLOUR(kBarActiveLeft, bars.back(), 4, 24);
    EXPECT_COLOUR(kBarActiveRight, bars.back(), width - 1, 0);
    EXPECT_COLOUR(kArrow, bars.back(), (width - 8) / 2, 24);
    // Every other bar at rest shows the hover face.
    bars.push_back(mirltest::RenderWindow(second));
    EXPECT_COLOUR(kBarHoverLeft, bars.back(), 2, 2);
    // The pointer in the lower zone: the menu face.
    mirltest::MoveTo(second, 40, 28);
    bars.push_back(mirltest::RenderWindow(second));
    EXPECT_COLOUR(kBarMenuLeft, bars.back(), 2, 2);
    ::ReleaseCapture();
    EXPECT_TRUE(mirltest::MatchesGolden(Grid(bars, 1), "outlook_bars"));
}

TEST_F(ContainerPaint, GroupBarAndCaptionAtEight)
{
    mirltest::Scoped<MirlGroupBox> box;
    ASSERT_NE(nullptr, box.Create(&m_Frame, m_Frame.m_hWnd, L"Group"));
    // The button inside would hide part of the box in the picture of its client area alone:
    // the box's own paint does not draw its children.
    Dib picture = mirltest::RenderWindow(box.hwnd());
    ASSERT_EQ(200, picture.width());
    // The left end: the whole image; the middle: its first column; the right end: the whole
    // image again.
    EXPECT_COLOUR(kGroupGrey, picture, 0, 0);
    EXPECT_COLOUR(kGroupSteel, picture, 1, 0);
    EXPECT_COLOUR(kGroupDark, picture, 11, 21);
    EXPECT_COLOUR(kGroupGrey, picture, 100, 0);
    EXPECT_COLOUR(kGroupGrey, picture, 187, 21);
    EXPECT_COLOUR(kGroupGrey, picture, 188, 0);
    EXPECT_COLOUR(kGroupSteel, picture, 189, 21);
    EXPECT_COLOUR(kGroupDark, picture, 199, 0);
    // No frame below the bar: the background.
    EXPECT_COLOUR(kPaper, picture, 0, 22);
    EXPECT_COLOUR(kPaper, picture, 199, 99);
    // The caption's box starts at 8 whatever the width of the left end (12 here); GDI+ puts its
    // own leading space of a sixth of the font's height before the first glyph, and Tahoma's
    // "O" has a bearing of one pixel: the ink starts at 11.
    int leftmost = picture.width();
    for (int y = 0; y < 22; ++y) {
        for (int x = 0; x < 188; ++x) {
            const DWORD expected = x == 0 ? kGroupGrey : x < 11 ? kGroupSteel : x == 11 ? kGroupDark : kGroupGrey;
            if (!Near(expected, picture.Pixel(x, y), 30)) {
                leftmost = std::min(leftmost, x);
            }
        }
    }
    EXPECT_EQ(11, leftmost);

    mirltest::Scoped<MirlGroupBox> narrow;
    ASSERT_NE(nullptr, narrow.Create(&m_Frame, m_Frame.m_hWnd, L"GroupNarrow"));
    Dib small = mirltest::RenderWindow(narrow.hwnd());
    // 16 wide for two ends of 12: no middle, and the right end starts at 4, over the left.
    EXPECT_COLOUR(kGroupGrey, small, 4, 0);
    EXPECT_COLOUR(kGroupSteel, small, 5, 0);
    EXPECT_COLOUR(kGroupDark, small, 15, 0);
    std::vector<Dib> cells;
    cells.push_back(std::move(picture));
    EXPECT_TRUE(mirltest::MatchesGolden(Grid(cells, 1), "group_box"));
}

} // namespace
