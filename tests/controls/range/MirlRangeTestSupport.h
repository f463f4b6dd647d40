// Helpers of the range control tests: the library on a fixture skin, and the frame that holds
// the controls of the "Ranges" template (a library window: it reflects notifications).
#pragma once

#include "MirlRange.h"
#include "MirlTestSupport.h"

#include <gtest/gtest.h>

#include <string>

namespace mirltest {

class RangeSkinEnvironment : public ::testing::Environment {
public:
    explicit RangeSkinEnvironment(const wchar_t *skin) : m_Skin(skin) {}
    void SetUp() override { MirlIntialize(SkinPath(m_Skin.c_str()).c_str(), 1033); }
    void TearDown() override { MirlUnIntialize(); }

private:
    std::wstring m_Skin;
};

// A fixture whose test opens the "Ranges" frame and finds its controls by identifier.
class RangeFrameTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_NE(nullptr, m_Frame.Create(nullptr, nullptr, static_cast<LPRECT>(nullptr), L"Ranges"));
    }
    void TearDown() override
    {
        if (m_Frame.IsWindow()) {
            m_Frame.DestroyWindow();
        }
    }
    template <class T> T *Control(unsigned long id)
    {
        T *control = dynamic_cast<T *>(m_Frame.GetWindowItem(id));
        EXPECT_NE(nullptr, control) << "no control " << id << " of the expected class";
        return control;
    }
    static std::wstring ClassOf(HWND hWnd)
    {
        wchar_t name[64] = {};
        ::GetClassNameW(hWnd, name, 64);
        return name;
    }

    MirlWindow m_Frame;
};

} // namespace mirltest
