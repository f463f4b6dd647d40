#include "controls/container/MirlSplitterLogic.h"

#include <gtest/gtest.h>

namespace {

using MIRL::MirlBrotherWidth;
using MIRL::SplitterStepAllowed;

const MirlBrotherWidth kFree = {100, -1, 6900};

} // namespace

TEST(SplitterStep, AStepOfZeroPassesWithinTheLimits)
{
    const MirlBrotherWidth left = {100, 100, 100};
    const MirlBrotherWidth right = {80, 80, 80};
    EXPECT_TRUE(SplitterStepAllowed(0, left, right));
    RECT bar = {100, 0, 102, 50};
    RECT l = {0, 0, 100, 50};
    RECT r = {102, 0, 182, 50};
    MIRL::SplitterStepPlaces(0, bar, l, r);
    EXPECT_EQ(100, bar.left);
    EXPECT_EQ(102, bar.right);
    EXPECT_EQ(100, l.right);
    EXPECT_EQ(102, r.left);
}

TEST(SplitterStep, AFastDragPastALimitIsRefusedWholeThoughPartOfItWouldFit)
{
    const MirlBrotherWidth left = {100, 50, 110};
    EXPECT_TRUE(SplitterStepAllowed(10, left, kFree));
    EXPECT_FALSE(SplitterStepAllowed(11, left, kFree));
    EXPECT_FALSE(SplitterStepAllowed(15, left, kFree));
    EXPECT_TRUE(SplitterStepAllowed(-50, left, kFree));
    EXPECT_FALSE(SplitterStepAllowed(-51, left, kFree));
    EXPECT_FALSE(SplitterStepAllowed(-80, left, kFree));
}

TEST(SplitterStep, TheRightBrothersLimitsAreTestedInTheSameStep)
{
    const MirlBrotherWidth right = {100, 90, 105};
    EXPECT_TRUE(SplitterStepAllowed(10, kFree, right));
    EXPECT_FALSE(SplitterStepAllowed(11, kFree, right));
    EXPECT_TRUE(SplitterStepAllowed(-5, kFree, right));
    EXPECT_FALSE(SplitterStepAllowed(-6, kFree, right));
    // Moving left with both limits broken at once is refused as well.
    const MirlBrotherWidth left = {100, 95, 6900};
    EXPECT_FALSE(SplitterStepAllowed(-6, left, right));
}

TEST(SplitterStep, ALeftBrotherWithMaximumZeroNeverGrows)
{
    const MirlBrotherWidth left = {100, -1, 0};
    EXPECT_FALSE(SplitterStepAllowed(1, left, kFree));
    EXPECT_FALSE(SplitterStepAllowed(300, left, kFree));
    // It may still shrink: moving left tests its minimum only.
    EXPECT_TRUE(SplitterStepAllowed(-1, left, kFree));
    EXPECT_TRUE(SplitterStepAllowed(0, left, kFree));
}

TEST(SplitterStep, AMinimumOfZeroOrLessIsNoMinimum)
{
    const MirlBrotherWidth left = {10, 0, 6900};
    EXPECT_TRUE(SplitterStepAllowed(-30, left, kFree));
    const MirlBrotherWidth right = {10, -5, 6900};
    EXPECT_TRUE(SplitterStepAllowed(30, kFree, right));
}

TEST(SplitterStep, AMaximumIsAlwaysInForce)
{
    // The right brother above its maximum already: no step to the left or in place may pass.
    const MirlBrotherWidth right = {200, -1, 150};
    EXPECT_FALSE(SplitterStepAllowed(0, kFree, right));
    EXPECT_FALSE(SplitterStepAllowed(-1, kFree, right));
    EXPECT_TRUE(SplitterStepAllowed(50, kFree, right));
}

TEST(SplitterStep, PlacesMoveTheBarAndTheFacingEdges)
{
    RECT bar = {100, 5, 102, 55};
    RECT l = {0, 5, 100, 55};
    RECT r = {102, 5, 182, 55};
    MIRL::SplitterStepPlaces(-7, bar, l, r);
    EXPECT_EQ(93, bar.left);
    EXPECT_EQ(95, bar.right);
    EXPECT_EQ(0, l.left);
    EXPECT_EQ(93, l.right);
    EXPECT_EQ(95, r.left);
    EXPECT_EQ(182, r.right);
    EXPECT_EQ(5, bar.top);
    EXPECT_EQ(55, r.bottom);
}
