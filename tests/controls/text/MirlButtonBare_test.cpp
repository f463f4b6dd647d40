// Buttons in a skin that lacks every picture they name: they load and paint without them.
#include "MirlButtonTestSupport.h"
#include "MirlPixelTest.h"

namespace {

::testing::Environment *const g_Mirl =
    ::testing::AddGlobalTestEnvironment(new mirltest::SkinEnvironment(L"buttons_bare"));

class BareButtons : public mirltest::PixelTest {
protected:
    void SetUp() override
    {
        mirltest::PixelTest::SetUp();
        mirltest::ParkCursor();
        ASSERT_TRUE(m_Frame.Open(L"Bare"));
        ASSERT_TRUE(mirltest::Activate(m_Frame.m_hWnd));
    }
    void TearDown() override { m_Frame.DestroyWindow(); }

    MirlButton *Button(const wchar_t *name) { return dynamic_cast<MirlButton *>(m_Frame.GetWindowItem(name)); }

    mirltest::ButtonFrame m_Frame;
};

TEST_F(BareButtons, NothingIsLoadedThatTheSkinLacks)
{
    MirlButton *button = Button(L"Everything");
    ASSERT_NE(nullptr, button);
    EXPECT_EQ(3, MirlButton::GetCommonRef());
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(nullptr, MirlButton::GetCommonBackground(i)) << i;
        EXPECT_EQ(nullptr, button->GetImage(i)->Bitmap) << i;
    }
    EXPECT_EQ(nullptr, button->GetArrowBitmap());
    EXPECT_EQ(0, button->GetArrowWidth());
    EXPECT_EQ(nullptr, Button(L"Arrowless")->GetArrowBitmap());
    // An element whose file is missing: no picture, but its key is read.
    const MirlButtonImage *keyed = Button(L"FileMissing")->GetImage(0);
    EXPECT_EQ(nullptr, keyed->Bitmap);
    EXPECT_TRUE(keyed->HasColorKey);
    EXPECT_EQ(0xFFFF00FFu, keyed->ColorKeyLow);
}

TEST_F(BareButtons, EveryStatePaintsTheFaceAndCaptionOnly)
{
    for (const wchar_t *name : {L"Everything", L"Arrowless", L"FileMissing"}) {
        MirlButton *button = Button(name);
        ASSERT_NE(nullptr, button) << name;
        const HWND hwnd = button->m_hWnd;
        std::vector<mirltest::Dib> pictures;
        pictures.push_back(mirltest::RenderWindow(hwnd));
        ::SendMessageW(hwnd, WM_MOUSEMOVE, 0, MAKELPARAM(50, 15));
        EXPECT_TRUE(button->IsMouseOnButton()) << name;
        pictures.push_back(mirltest::RenderWindow(hwnd));
        ::ReleaseCapture();
        button->CancelHover();
        ::SendMessageW(hwnd, BM_SETSTATE, TRUE, 0);
        pictures.push_back(mirltest::RenderWindow(hwnd));
        ::SendMessageW(hwnd, BM_SETSTATE, FALSE, 0);
        ::EnableWindow(hwnd, FALSE);
        pictures.push_back(mirltest::RenderWindow(hwnd));
        ::EnableWindow(hwnd, TRUE);
        for (const mirltest::Dib &picture : pictures) {
            // The grey face all round, where a background image or an arrow would be.
            for (int x : {0, 3, 80, 90, 99}) {
                EXPECT_EQ(0x808080u, picture.Pixel(x, 2)) << name << " at x = " << x;
                EXPECT_EQ(0x808080u, picture.Pixel(x, 15) & 0xFFFFFF) << name << " at x = " << x;
            }
        }
    }
}

TEST_F(BareButtons, PressesAndClicksWorkWithoutPictures)
{
    MirlButton *button = Button(L"Everything");
    const HWND hwnd = button->m_hWnd;
    m_Frame.m_Commands.clear();
    ::SendMessageW(hwnd, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(90, 15));
    // The arrow zone starts at 0 while there is no arrow.
    EXPECT_TRUE(button->IsOnMenu());
    ::SendMessageW(hwnd, WM_LBUTTONUP, 0, MAKELPARAM(90, 15));
    EXPECT_EQ(1u, m_Frame.m_Commands.size());
    EXPECT_TRUE(button->GetCheck());
}

} // namespace
