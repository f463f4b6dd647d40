// MirlAtlMisc.h - geometry value types of WTL.
//
// WTL::CSize   a SIZE with arithmetic
// WTL::CPoint  a POINT with arithmetic, also built from a mouse message's LPARAM
// WTL::CRect   a RECT with the usual queries and operations
//
// All three derive from the system structure, so they pass wherever it is expected.

#ifndef MIRL_PLATFORM_ATL_MIRLATLMISC_H
#define MIRL_PLATFORM_ATL_MIRLATLMISC_H

#include "MirlAtlBase.h"

namespace WTL
{

class CSize : public SIZE
{
public:
    // Constructors
    CSize() { cx = 0; cy = 0; }
    CSize(int initCX, int initCY) { cx = initCX; cy = initCY; }
    CSize(SIZE initSize) { cx = initSize.cx; cy = initSize.cy; }
    CSize(POINT initPt) { cx = initPt.x; cy = initPt.y; }

    // Operations
    bool operator==(SIZE size) const { return cx == size.cx && cy == size.cy; }
    bool operator!=(SIZE size) const { return !(*this == size); }
    void operator+=(SIZE size) { cx += size.cx; cy += size.cy; }
    void operator-=(SIZE size) { cx -= size.cx; cy -= size.cy; }
    void SetSize(int CX, int CY) { cx = CX; cy = CY; }
    CSize operator+(SIZE size) const { return CSize(cx + size.cx, cy + size.cy); }
    CSize operator-(SIZE size) const { return CSize(cx - size.cx, cy - size.cy); }
    CSize operator-() const { return CSize(-cx, -cy); }
};

class CPoint : public POINT
{
public:
    // Constructors
    CPoint() { x = 0; y = 0; }
    CPoint(int initX, int initY) { x = initX; y = initY; }
    CPoint(POINT initPt) { x = initPt.x; y = initPt.y; }
    CPoint(SIZE initSize) { x = initSize.cx; y = initSize.cy; }
    // The signed client coordinates packed in a mouse message's LPARAM.
    explicit CPoint(LPARAM dwPoint)
    {
        x = static_cast<short>(LOWORD(dwPoint));
        y = static_cast<short>(HIWORD(dwPoint));
    }

    // Operations
    void Offset(int xOffset, int yOffset) { x += xOffset; y += yOffset; }
    void Offset(POINT point) { Offset(point.x, point.y); }
    void Offset(SIZE size) { Offset(size.cx, size.cy); }
    void SetPoint(int X, int Y) { x = X; y = Y; }
    bool operator==(POINT point) const { return x == point.x && y == point.y; }
    bool operator!=(POINT point) const { return !(*this == point); }
    void operator+=(SIZE size) { Offset(size); }
    void operator-=(SIZE size) { Offset(-size.cx, -size.cy); }
    void operator+=(POINT point) { Offset(point); }
    void operator-=(POINT point) { Offset(-point.x, -point.y); }
    CPoint operator+(SIZE size) const { return CPoint(x + size.cx, y + size.cy); }
    CPoint operator-(SIZE size) const { return CPoint(x - size.cx, y - size.cy); }
    CPoint operator+(POINT point) const { return CPoint(x + point.x, y + point.y); }
    CSize operator-(POINT point) const { return CSize(x - point.x, y - point.y); }
    CPoint operator-() const { return CPoint(-x, -y); }
};

class CRect : public RECT
{
public:
    // Constructors
    CRect() { left = 0; top = 0; right = 0; bottom = 0; }
    CRect(int l, int t, int r, int b) { left = l; top = t; right = r; bottom = b; }
    CRect(const RECT& srcRect) { ::CopyRect(this, &srcRect); }
    CRect(LPCRECT lpSrcRect) { ::CopyRect(this, lpSrcRect); }
    CRect(POINT point, SIZE size)
    {
        left = point.x; top = point.y;
        right = point.x + size.cx; bottom = point.y + size.cy;
    }
    CRect(POINT topLeft, POINT bottomRight)
    {
        left = topLeft.x; top = topLeft.y;
        right = bottomRight.x; bottom = bottomRight.y;
    }

    // Attributes
    int Width() const { return right - left; }
    int Height() const { return bottom - top; }
    CSize Size() const { return CSize(right - left, bottom - top); }
    // By value: a RECT is not two POINT objects, so no reference into it is handed out.
    CPoint TopLeft() const { return CPoint(left, top); }
    CPoint BottomRight() const { return CPoint(right, bottom); }
    CPoint CenterPoint() const { return CPoint((left + right) / 2, (top + bottom) / 2); }
    operator LPRECT() { return this; }
    operator LPCRECT() const { return this; }
    BOOL IsRectEmpty() const { return ::IsRectEmpty(this); }
    BOOL IsRectNull() const { return left == 0 && right == 0 && top == 0 && bottom == 0; }
    BOOL PtInRect(POINT point) const { return ::PtInRect(this, point); }

    // Operations
    void SetRect(int x1, int y1, int x2, int y2) { ::SetRect(this, x1, y1, x2, y2); }
    void SetRectEmpty() { ::SetRectEmpty(this); }
    void CopyRect(LPCRECT lpSrcRect) { ::CopyRect(this, lpSrcRect); }
    BOOL EqualRect(LPCRECT lpRect) const { return ::EqualRect(this, lpRect); }
    void InflateRect(int x, int y) { ::InflateRect(this, x, y); }
    void InflateRect(SIZE size) { ::InflateRect(this, size.cx, size.cy); }
    void InflateRect(int l, int t, int r, int b) { left -= l; top -= t; right += r; bottom += b; }
    void DeflateRect(int x, int y) { ::InflateRect(this, -x, -y); }
    void DeflateRect(SIZE size) { ::InflateRect(this, -size.cx, -size.cy); }
    void DeflateRect(int l, int t, int r, int b) { left += l; top += t; right -= r; bottom -= b; }
    void OffsetRect(int x, int y) { ::OffsetRect(this, x, y); }
    void OffsetRect(POINT point) { ::OffsetRect(this, point.x, point.y); }
    void OffsetRect(SIZE size) { ::OffsetRect(this, size.cx, size.cy); }
    void MoveToX(int x) { right = Width() + x; left = x; }
    void MoveToY(int y) { bottom = Height() + y; top = y; }
    void MoveToXY(int x, int y) { MoveToX(x); MoveToY(y); }
    void NormalizeRect()
    {
        if (left > right) { const LONG t = left; left = right; right = t; }
        if (top > bottom) { const LONG t = top; top = bottom; bottom = t; }
    }
    BOOL IntersectRect(LPCRECT lpRect1, LPCRECT lpRect2) { return ::IntersectRect(this, lpRect1, lpRect2); }
    BOOL UnionRect(LPCRECT lpRect1, LPCRECT lpRect2) { return ::UnionRect(this, lpRect1, lpRect2); }
    BOOL SubtractRect(LPCRECT lpRectSrc1, LPCRECT lpRectSrc2) { return ::SubtractRect(this, lpRectSrc1, lpRectSrc2); }

    bool operator==(const RECT& rect) const { return ::EqualRect(this, &rect) != FALSE; }
    bool operator!=(const RECT& rect) const { return !(*this == rect); }
    void operator+=(POINT point) { OffsetRect(point); }
    void operator+=(SIZE size) { OffsetRect(size); }
    void operator-=(POINT point) { OffsetRect(-point.x, -point.y); }
    void operator-=(SIZE size) { OffsetRect(-size.cx, -size.cy); }
    CRect operator+(POINT point) const { CRect rect(*this); rect.OffsetRect(point); return rect; }
    CRect operator-(POINT point) const { CRect rect(*this); rect.OffsetRect(-point.x, -point.y); return rect; }
    CRect operator&(const RECT& rect2) const { CRect rect; rect.IntersectRect(this, &rect2); return rect; }
    CRect operator|(const RECT& rect2) const { CRect rect; rect.UnionRect(this, &rect2); return rect; }
};

} // namespace WTL

#endif // MIRL_PLATFORM_ATL_MIRLATLMISC_H
