#include "MirlStatic.h"
#include "MirlPixelTest.h"
#include "MirlTestSupport.h"

#include <gtest/gtest.h>

#include <memory>
#include <utility>
#include <vector>

namespace {

class StaticsEnvironment : public ::testing::Environment {
public:
    void SetUp() override { MirlIntialize(mirltest::SkinPath(L"statics").c_str(), 1033); }
    void TearDown() override { MirlUnIntialize(); }
};

::testing::Environment *const g_Mirl = ::testing::AddGlobalTestEnvironment(new StaticsEnvironment());

// A frame that keeps every WM_COMMAND it receives.
class CommandFrame : public MirlWindowImpl<CommandFrame> {
public:
    std::vector<std::pair<WPARAM, LPARAM>> m_Commands;

    BEGIN_MSG_MAP(CommandFrame)
        MESSAGE_HANDLER(WM_COMMAND, OnCommand)
        CHAIN_MSG_MAP(MirlWindowImpl<CommandFrame>)
    END_MSG_MAP()

    LRESULT OnCommand(UINT, WPARAM wParam, LPARAM lParam, BOOL &bHandled)
    {
        m_Commands.push_back(std::make_pair(wParam, lParam));
        bHandled = FALSE;
        return 0;
    }
};

// A 32-bit picture of a window, painted through its paint-into-a-context path.
struct LabelPicture {
    int width;
    int height;
    std::vector<DWORD> pixels;

    explicit LabelPicture(HWND hWnd)
    {
        RECT client = {};
        ::GetClientRect(hWnd, &client);
        width = client.right;
        height = client.bottom;
        BITMAPINFO info = {};
        info.bmiHeader.biSize = sizeof(info.bmiHeader);
        info.bmiHeader.biWidth = width;
        info.bmiHeader.biHeight = -height;
        info.bmiHeader.biPlanes = 1;
        info.bmiHeader.biBitCount = 32;
        void *bits = nullptr;
        HDC dc = ::CreateCompatibleDC(nullptr);
        HBITMAP bitmap = ::CreateDIBSection(dc, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
        HGDIOBJ old = ::SelectObject(dc, bitmap);
        ::SendMessageW(hWnd, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(dc), PRF_CLIENT);
        ::GdiFlush();
        const DWORD *data = static_cast<const DWORD *>(bits);
        pixels.assign(data, data + width * height);
        ::SelectObject(dc, old);
        ::DeleteObject(bitmap);
        ::DeleteDC(dc);
    }
    DWORD At(int x, int y) const { return pixels[y * width + x] & 0xFFFFFF; }
};

class StaticTest : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_NE(nullptr, m_Frame.Create(nullptr, nullptr, static_cast<LPRECT>(nullptr), L"Labels")); }
    void TearDown() override
    {
        if (m_Frame.IsWindow()) {
            m_Frame.DestroyWindow();
        }
    }
    MirlStatic *Label(unsigned long id)
    {
        MirlStatic *label = dynamic_cast<MirlStatic *>(m_Frame.GetWindowItem(id));
        EXPECT_NE(nullptr, label);
        return label;
    }
    void Click(MirlStatic *label, LONG x, LONG y)
    {
        ::SendMessageW(label->m_hWnd, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(x, y));
    }
    static POINT Centre(const RECT &r) { return POINT{(r.left + r.right) / 2, (r.top + r.bottom) / 2}; }

    CommandFrame m_Frame;
};

} // namespace

TEST(StaticLinks, EveryRunExpandsWithItsRange)
{
    std::vector<std::pair<int, int>> ranges;
    EXPECT_EQ(L"a&bc&d", MIRL::ExpandAllLinks(L"a(link)b(/link)c(link)d(/link)", ranges));
    ASSERT_EQ(2u, ranges.size());
    EXPECT_EQ(std::make_pair(1, 3), ranges[0]);
    EXPECT_EQ(std::make_pair(4, 6), ranges[1]);
}

TEST(StaticLinks, MarksIgnoreCaseAndUnbalancedOnesStay)
{
    std::vector<std::pair<int, int>> ranges;
    EXPECT_EQ(L"&x", MIRL::ExpandAllLinks(L"(LINK)x(/Link)", ranges));
    EXPECT_EQ(1u, ranges.size());
    EXPECT_EQ(L"(link)x", MIRL::ExpandAllLinks(L"(link)x", ranges));
    EXPECT_TRUE(ranges.empty());
    EXPECT_EQ(L"(/link)(link)x(/link)", MIRL::ExpandAllLinks(L"(/link)(link)x(/link)", ranges));
    EXPECT_TRUE(ranges.empty());
    EXPECT_EQ(L"ab", MIRL::ExpandAllLinks(L"a(link)(/link)b", ranges));
    ASSERT_EQ(1u, ranges.size());
    EXPECT_EQ(std::make_pair(1, 1), ranges[0]);
}

TEST(StaticLinks, PrefixesAreTakenOutOfTheShownText)
{
    std::vector<int> index;
    EXPECT_EQ(L"abcd", MIRL::StripHotkeyPrefixes(L"a&bc&d", index));
    ASSERT_EQ(7u, index.size());
    EXPECT_EQ(1, index[1]);
    EXPECT_EQ(1, index[2]);
    EXPECT_EQ(3, index[4]);
    EXPECT_EQ(3, index[5]);
    EXPECT_EQ(L"a&b&", MIRL::StripHotkeyPrefixes(L"a&&b&", index));
}

TEST_F(StaticTest, FactoryMakesAStaticForTheStaticClass)
{
    MirlStatic *label = Label(101);
    ASSERT_NE(nullptr, label);
    wchar_t name[32] = {};
    ::GetClassNameW(label->m_hWnd, name, 32);
    EXPECT_STREQ(L"MirlWindow", name);
}

TEST_F(StaticTest, TwoLinksAreBuiltAtThePaintAndTheClickOnTheSecondNamesIt)
{
    MirlStatic *label = Label(101);
    LabelPicture picture(label->m_hWnd);
    EXPECT_STREQ(L"a&bc&d", label->GetDisplayText());
    ASSERT_EQ(2u, label->GetLinkCount());
    EXPECT_EQ(1, label->GetLink(0)->nStart);
    EXPECT_EQ(3, label->GetLink(0)->nEnd);
    EXPECT_EQ(4, label->GetLink(1)->nStart);
    EXPECT_EQ(6, label->GetLink(1)->nEnd);
    RECT second = label->GetLink(1)->rect;
    ASSERT_GT(second.right, second.left);
    EXPECT_GT(second.left, label->GetLink(0)->rect.right);

    POINT d = Centre(second);
    Click(label, d.x, d.y);
    EXPECT_EQ(1, label->GetCurLink());
    ASSERT_EQ(1u, m_Frame.m_Commands.size());
    EXPECT_EQ(MAKEWPARAM(101, BN_CLICKED), m_Frame.m_Commands[0].first);
    EXPECT_EQ(reinterpret_cast<LPARAM>(label->m_hWnd), m_Frame.m_Commands[0].second);

    POINT b = Centre(label->GetLink(0)->rect);
    Click(label, b.x, b.y);
    EXPECT_EQ(0, label->GetCurLink());
    EXPECT_EQ(2u, m_Frame.m_Commands.size());
}

TEST_F(StaticTest, PressBesideALinkSendsNothingAndForgetsTheLink)
{
    MirlStatic *label = Label(101);
    LabelPicture picture(label->m_hWnd);
    POINT d = Centre(label->GetLink(1)->rect);
    Click(label, d.x, d.y);
    Click(label, 190, 20);
    EXPECT_EQ(-1, label->GetCurLink());
    EXPECT_EQ(1u, m_Frame.m_Commands.size());
}

TEST_F(StaticTest, UpperCaseMarksMakeALink)
{
    MirlStatic *label = Label(102);
    LabelPicture picture(label->m_hWnd);
    EXPECT_TRUE(label->HasLinks());
    EXPECT_STREQ(L"&x", label->GetDisplayText());
}

TEST_F(StaticTest, OpeningMarkAloneStaysAndClicksSendNothing)
{
    MirlStatic *label = Label(103);
    LabelPicture picture(label->m_hWnd);
    EXPECT_FALSE(label->HasLinks());
    EXPECT_STREQ(L"(link)x", label->GetDisplayText());
    Click(label, 50, 10);
    EXPECT_TRUE(m_Frame.m_Commands.empty());
}

TEST_F(StaticTest, ClosingMarkFirstStopsTheScanAndKeepsTheMarks)
{
    MirlStatic *label = Label(104);
    LabelPicture picture(label->m_hWnd);
    EXPECT_FALSE(label->HasLinks());
    EXPECT_STREQ(L"(/link)(link)x(/link)", label->GetDisplayText());
}

TEST_F(StaticTest, PressBeforeTheFirstPaintSendsNothing)
{
    MirlStatic *label = Label(101);
    EXPECT_FALSE(label->HasLinks());
    Click(label, 30, 8);
    EXPECT_TRUE(m_Frame.m_Commands.empty());
    EXPECT_EQ(-1, label->GetCurLink());
}

TEST_F(StaticTest, SameCaptionAgainRestoresTheDisplayTextWithoutRepaint)
{
    MirlStatic *label = Label(101);
    LabelPicture picture(label->m_hWnd);
    ASSERT_STREQ(L"a&bc&d", label->GetDisplayText());
    ::ValidateRect(label->m_hWnd, nullptr);
    ::SendMessageW(label->m_hWnd, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(L"a(link)b(/link)c(link)d(/link)"));
    EXPECT_STREQ(L"a(link)b(/link)c(link)d(/link)", label->GetDisplayText());
    RECT update = {};
    EXPECT_FALSE(::GetUpdateRect(label->m_hWnd, &update, FALSE));
    // The layout stays valid and the records stay.
    EXPECT_EQ(2u, label->GetLinkCount());
    POINT d = Centre(label->GetLink(1)->rect);
    Click(label, d.x, d.y);
    EXPECT_EQ(1, label->GetCurLink());
}

TEST_F(StaticTest, NewCaptionInvalidatesAndRebuildsAtTheNextPaint)
{
    MirlStatic *label = Label(101);
    LabelPicture first(label->m_hWnd);
    ::ValidateRect(label->m_hWnd, nullptr);
    ::SendMessageW(label->m_hWnd, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(L"only (link)one(/link)"));
    RECT update = {};
    EXPECT_TRUE(::GetUpdateRect(label->m_hWnd, &update, FALSE));
    EXPECT_STREQ(L"only (link)one(/link)", label->GetText());
    LabelPicture second(label->m_hWnd);
    EXPECT_STREQ(L"only &o&n&e", label->GetDisplayText());
    EXPECT_EQ(1u, label->GetLinkCount());
}

TEST_F(StaticTest, BackImageCoversTheWholeLabelAndItsText)
{
    MirlStatic *label = Label(105);
    LabelPicture picture(label->m_hWnd);
    for (int y = 0; y < picture.height; ++y) {
        for (int x = 0; x < picture.width; ++x) {
            ASSERT_EQ(0x00A000u, picture.At(x, y)) << x << "," << y;
        }
    }
}

TEST_F(StaticTest, ImageLeftOfTextSitsAtTheLeftEdgeWithoutMargin)
{
    MirlStatic *label = Label(106);
    LabelPicture picture(label->m_hWnd);
    Gdiplus::RectF image = label->GetImageRect();
    EXPECT_FLOAT_EQ(0.0f, image.X);
    EXPECT_FLOAT_EQ(11.0f, image.Y);
    EXPECT_EQ(0x00A000u, picture.At(0, 11));
    EXPECT_EQ(0x00A000u, picture.At(7, 18));
    // Paper beside and below the picture.
    EXPECT_EQ(0xF0F0E8u, picture.At(8, 11));
    EXPECT_EQ(0xF0F0E8u, picture.At(0, 19));
    // The caption begins three pixels after the picture.
    EXPECT_FLOAT_EQ(11.0f, label->GetTextLayout().GetRect().X);
}

TEST_F(StaticTest, ImageWithoutTextIsCentred)
{
    MirlStatic *label = Label(108);
    LabelPicture picture(label->m_hWnd);
    Gdiplus::RectF image = label->GetImageRect();
    EXPECT_FLOAT_EQ(16.0f, image.X);
    EXPECT_FLOAT_EQ(11.0f, image.Y);
    EXPECT_EQ(0x00A000u, picture.At(16, 11));
    EXPECT_EQ(0xF0F0E8u, picture.At(15, 11));
}

TEST_F(StaticTest, LinksOfASentenceAreUnderlinedInTheInkColour)
{
    MirlStatic *label = Label(107);
    LabelPicture picture(label->m_hWnd);
    ASSERT_EQ(2u, label->GetLinkCount());
    // At the foot of each link's box one row is ink across most of the box: the underline. It
    // may straddle the box's bottom edge and be smoothed over two rows, so those rows count and
    // ink is anything clearly darker than the paper.
    for (unsigned int i = 0; i < 2; ++i) {
        RECT r = label->GetLink(i)->rect;
        int bestRun = 0;
        for (int y = r.top; y < r.bottom + 2 && y < picture.height; ++y) {
            int run = 0;
            for (int x = r.left; x < r.right; ++x) {
                DWORD c = picture.At(x, y);
                bool ink = ((c >> 16) & 0xFF) < 170 && ((c >> 8) & 0xFF) < 170;
                run = ink ? run + 1 : 0;
                bestRun = std::max(bestRun, run);
            }
        }
        EXPECT_GT(bestRun, (r.right - r.left) * 2 / 3) << "link " << i;
    }
    // And no such run outside the links: "Read the" has none.
    int plainRun = 0;
    for (int y = 0; y < picture.height; ++y) {
        int run = 0;
        for (int x = 0; x < label->GetLink(0)->rect.left - 2; ++x) {
            DWORD c = picture.At(x, y);
            run = (((c >> 16) & 0xFF) < 170 && ((c >> 8) & 0xFF) < 170) ? run + 1 : 0;
            plainRun = std::max(plainRun, run);
        }
    }
    EXPECT_LT(plainRun, 12);
}

TEST_F(StaticTest, SentenceWithTwoLinksLooksAsDesigned)
{
    MirlStatic *label = Label(107);
    EXPECT_TRUE(mirltest::MatchesGolden(mirltest::RenderWindow(label->m_hWnd), "static_two_links"));
}

// A label made by the application's own code, created and destroyed many times: the window
// procedure's thunk is made and freed by the library alone, so nothing is left behind.
TEST(StaticOwnCode, LabelsCreatedByTheApplicationLeaveNoHeapBehind)
{
    CommandFrame frame;
    ASSERT_NE(nullptr, frame.Create(nullptr, nullptr, static_cast<LPRECT>(nullptr), L"Labels"));
    auto busy = []() {
        HANDLE heaps[64];
        DWORD count = ::GetProcessHeaps(64, heaps);
        size_t total = 0;
        for (DWORD i = 0; i < count && i < 64; ++i) {
            PROCESS_HEAP_ENTRY entry = {};
            ::HeapLock(heaps[i]);
            while (::HeapWalk(heaps[i], &entry)) {
                if (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) {
                    total += entry.cbData;
                }
            }
            ::HeapUnlock(heaps[i]);
        }
        return total;
    };
    auto cycle = [&frame]() {
        MirlStatic *label = new MirlStatic();
        RECT place = {0, 0, 50, 20};
        label->Create(&frame, frame.m_hWnd, &place, L"Upper");
        label->DestroyWindow();
        delete label;
    };
    cycle();
    size_t before = busy();
    for (int i = 0; i < 500; ++i) {
        cycle();
    }
    EXPECT_LT(static_cast<long long>(busy()) - static_cast<long long>(before), 4096);
    frame.DestroyWindow();
}
