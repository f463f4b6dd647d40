// The number field's and the spin arrows' rules without a window.
#include "controls/edit/MirlCommonEditLogic.h"

#include <gtest/gtest.h>

#include <climits>

namespace {

TEST(SpinStep, ADownStepAtZeroStaysAtZero)
{
    EXPECT_EQ(0, MIRL::SpinStep(0, 1, -1));
}

TEST(SpinStep, StepFiveDownFromThreeIsZeroNotMinusTwo)
{
    EXPECT_EQ(0, MIRL::SpinStep(3, 5, -1));
}

TEST(SpinStep, UpAndDownByTheStep)
{
    EXPECT_EQ(1, MIRL::SpinStep(0, 1, 1));
    EXPECT_EQ(8, MIRL::SpinStep(3, 5, 1));
    EXPECT_EQ(5, MIRL::SpinStep(10, 5, -1));
    EXPECT_EQ(30, MIRL::SpinStep(10, 5, 4));
    EXPECT_EQ(10, MIRL::SpinStep(10, 5, 0));
}

TEST(SpinStep, HasNoCeilingButDoesNotOverflow)
{
    EXPECT_EQ(100001, MIRL::SpinStep(100000, 1, 1));
    EXPECT_EQ(INT_MAX, MIRL::SpinStep(INT_MAX, 1, 1));
    EXPECT_EQ(INT_MAX, MIRL::SpinStep(INT_MAX - 1, INT_MAX, INT_MAX));
    EXPECT_EQ(0, MIRL::SpinStep(INT_MIN, 1, 0));
    EXPECT_EQ(0, MIRL::SpinStep(5, INT_MIN, INT_MAX));
}

TEST(IsAllDigits, NeedsAtLeastOneDigitAndNothingElse)
{
    EXPECT_EQ(1, MIRL::IsAllDigits(L"0"));
    EXPECT_EQ(1, MIRL::IsAllDigits(L"0123456789"));
    EXPECT_EQ(0, MIRL::IsAllDigits(L""));
    EXPECT_EQ(0, MIRL::IsAllDigits(nullptr));
    EXPECT_EQ(0, MIRL::IsAllDigits(L"-1"));
    EXPECT_EQ(0, MIRL::IsAllDigits(L"1 "));
    EXPECT_EQ(0, MIRL::IsAllDigits(L"12a"));
    EXPECT_EQ(0, MIRL::IsAllDigits(L"\x0661")); // an Arabic-Indic digit is not 48 to 57
}

TEST(CommonEditFace, MiddleOverlapsLeftByOneAndRightByFour)
{
    const MIRL::CommonEditFaceParts parts = MIRL::CommonEditFace(60, 22, 5, 6);
    EXPECT_EQ(0, parts.left.left);
    EXPECT_EQ(5, parts.left.right);
    EXPECT_EQ(22, parts.left.bottom);
    EXPECT_EQ(54, parts.right.left);
    EXPECT_EQ(6, parts.right.right);
    EXPECT_EQ(4, parts.middle.left);
    EXPECT_EQ(54, parts.middle.right); // 60 - 6 - 5 + 5
    EXPECT_EQ(22, parts.middle.bottom);
}

TEST(CommonEditFace, ExtremeSizesDoNotOverflow)
{
    const MIRL::CommonEditFaceParts parts = MIRL::CommonEditFace(INT_MIN, 0, INT_MAX, INT_MAX);
    EXPECT_EQ(INT_MIN, parts.right.left);
    EXPECT_EQ(INT_MAX - 1, parts.middle.left);
    EXPECT_EQ(INT_MIN, parts.middle.right);
}

TEST(CentredOrigin, HalfTheSpareRoom)
{
    EXPECT_FLOAT_EQ(20.0f, MIRL::CentredOrigin(60, 20.0f));
    EXPECT_FLOAT_EQ(-5.0f, MIRL::CentredOrigin(10, 20.0f));
}

} // namespace
