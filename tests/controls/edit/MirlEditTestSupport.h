// Helpers of the edit tests: the edits of a frame made from the "edits" fixture skin.
#pragma once

#include "MirlEdit.h"
#include "MirlPixelTest.h"
#include "MirlTestSupport.h"

#include <gtest/gtest.h>

namespace mirltest {

// The library once per test program, on the "edits" fixture skin.
class EditsEnvironment : public ::testing::Environment {
public:
    void SetUp() override { MirlIntialize(SkinPath(L"edits").c_str(), 1033); }
    void TearDown() override { MirlUnIntialize(); }
};

// The edit child of a frame with that identifier; a failure if there is none.
inline MirlEdit *EditOf(MirlWindowBase &frame, unsigned long id)
{
    MirlEdit *edit = dynamic_cast<MirlEdit *>(frame.GetWindowItem(id));
    EXPECT_NE(nullptr, edit);
    return edit;
}

// Gives the edit a text through WM_SETTEXT, with the cursor at its end and nothing selected.
inline void FillEdit(MirlEdit *edit, const wchar_t *text)
{
    ::SendMessageW(edit->m_hWnd, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text));
    edit->SetHasSelection(false);
}

// A pixel test over the "Edits" template's frame, made for each test and destroyed after it.
class EditsFrameTest : public PixelTest {
protected:
    void SetUp() override
    {
        PixelTest::SetUp();
        ASSERT_NE(nullptr, m_Frame.Create(nullptr, nullptr, static_cast<LPRECT>(nullptr), L"Edits"));
    }
    void TearDown() override
    {
        if (m_Frame.IsWindow()) {
            m_Frame.DestroyWindow();
        }
    }

    MirlWindow m_Frame;
};

} // namespace mirltest
