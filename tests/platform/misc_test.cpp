// WTL::CSize, CPoint and CRect.
#include "AtlTestSupport.h"

#include <gtest/gtest.h>

using WTL::CPoint;
using WTL::CRect;
using WTL::CSize;

namespace {

TEST(SizeTest, Arithmetic)
{
    CSize a(3, 4);
    EXPECT_EQ(CSize(5, 7), a + CSize(2, 3));
    EXPECT_EQ(CSize(1, 1), a - CSize(2, 3));
    EXPECT_EQ(CSize(-3, -4), -a);
    a += CSize(1, 1);
    EXPECT_EQ(CSize(4, 5), a);
    EXPECT_TRUE(a != CSize(4, 6));
    EXPECT_EQ(CSize(0, 0), CSize());
}

TEST(PointTest, FromMouseMessageLParamKeepsTheSign)
{
    const CPoint pt(MAKELPARAM(-5, 12));
    EXPECT_EQ(-5, pt.x);
    EXPECT_EQ(12, pt.y);
    const CPoint neg(MAKELPARAM(7, -300));
    EXPECT_EQ(7, neg.x);
    EXPECT_EQ(-300, neg.y);
}

TEST(PointTest, Arithmetic)
{
    CPoint p(1, 2);
    p.Offset(3, 4);
    EXPECT_EQ(CPoint(4, 6), p);
    EXPECT_EQ(CPoint(5, 8), p + CSize(1, 2));
    EXPECT_EQ(CPoint(3, 4), p - CSize(1, 2));
    EXPECT_EQ(CSize(3, 5), p - CPoint(1, 1));
    EXPECT_EQ(CPoint(5, 7), p + CPoint(1, 1));
    p -= CPoint(4, 6);
    EXPECT_EQ(CPoint(0, 0), p);
}

TEST(RectTest, Attributes)
{
    const CRect rc(10, 20, 40, 60);
    EXPECT_EQ(30, rc.Width());
    EXPECT_EQ(40, rc.Height());
    EXPECT_EQ(CSize(30, 40), rc.Size());
    EXPECT_EQ(CPoint(10, 20), rc.TopLeft());
    EXPECT_EQ(CPoint(40, 60), rc.BottomRight());
    EXPECT_EQ(CPoint(25, 40), rc.CenterPoint());
    EXPECT_TRUE(rc.PtInRect(CPoint(10, 20)));
    EXPECT_FALSE(rc.PtInRect(CPoint(40, 60)));
    EXPECT_FALSE(rc.IsRectEmpty());
    EXPECT_TRUE(CRect(5, 5, 5, 9).IsRectEmpty());
    EXPECT_TRUE(CRect().IsRectNull());
    EXPECT_EQ(CRect(1, 2, 4, 6), CRect(CPoint(1, 2), CSize(3, 4)));
    EXPECT_EQ(CRect(1, 2, 4, 6), CRect(CPoint(1, 2), CPoint(4, 6)));
}

TEST(RectTest, Operations)
{
    CRect rc(10, 10, 20, 20);
    rc.OffsetRect(5, -5);
    EXPECT_EQ(CRect(15, 5, 25, 15), rc);
    rc.InflateRect(1, 2);
    EXPECT_EQ(CRect(14, 3, 26, 17), rc);
    rc.DeflateRect(1, 2, 3, 4);
    EXPECT_EQ(CRect(15, 5, 23, 13), rc);
    rc.MoveToXY(0, 0);
    EXPECT_EQ(CRect(0, 0, 8, 8), rc);

    CRect flipped(9, 8, 1, 2);
    flipped.NormalizeRect();
    EXPECT_EQ(CRect(1, 2, 9, 8), flipped);

    EXPECT_EQ(CRect(5, 5, 8, 8), CRect(0, 0, 8, 8) & CRect(5, 5, 10, 10));
    EXPECT_EQ(CRect(0, 0, 10, 10), CRect(0, 0, 8, 8) | CRect(5, 5, 10, 10));
    CRect none;
    EXPECT_FALSE(none.IntersectRect(CRect(0, 0, 1, 1), CRect(2, 2, 3, 3)));
    EXPECT_TRUE(none.IsRectEmpty());
    EXPECT_EQ(CRect(2, 3, 4, 5), CRect(1, 1, 3, 3) + CPoint(1, 2));
}

TEST(RectTest, PassesAsASystemRectangle)
{
    CRect rc(1, 2, 3, 4);
    RECT copy;
    CopyRect(&copy, rc);
    EXPECT_TRUE(EqualRect(&copy, rc));
    LPRECT p = rc;
    EXPECT_EQ(static_cast<RECT *>(&rc), p);
}

} // namespace
