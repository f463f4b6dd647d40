// MirlAtlGdi.h - GDI wrappers of WTL.
//
// WTL::CPenT<bManaged>     CPenHandle, CPen
// WTL::CBrushT<bManaged>   CBrushHandle, CBrush
// WTL::CFontT<bManaged>    CFontHandle, CFont
// WTL::CBitmapT<bManaged>  CBitmapHandle, CBitmap
// WTL::CRgnT<bManaged>     CRgnHandle, CRgn
// WTL::CDCT<bManaged>      CDCHandle, CDC
// WTL::CPaintDC            BeginPaint/EndPaint for a window
// WTL::CClientDC, CWindowDC  GetDC/GetWindowDC and ReleaseDC for a window
// WTL::CMemoryDC           off-screen DC for a rectangle, copied back to the original DC when it ends
//
// The managed forms (bManaged = true) own their handle and delete it; they can be moved but not
// copied, so that no handle is deleted twice. The handle forms are plain copyable wrappers.

#ifndef MIRL_PLATFORM_ATL_MIRLATLGDI_H
#define MIRL_PLATFORM_ATL_MIRLATLGDI_H

#include "MirlAtlBase.h"

namespace WTL
{

namespace mirl_detail
{

template <bool t_bCopyable>
struct CopyableIf
{
};

template <>
struct CopyableIf<false>
{
    CopyableIf() = default;
    CopyableIf(const CopyableIf&) = delete;
    CopyableIf& operator=(const CopyableIf&) = delete;
    CopyableIf(CopyableIf&&) = default;
    CopyableIf& operator=(CopyableIf&&) = default;
};

} // namespace mirl_detail

// ---------------------------------------------------------------------------------------------
// GDI objects. Each: constructors (from a handle, copy for handles, move), Attach, Detach,
// IsNull, DeleteObject, the handle conversion, then its own creation and query operations.

#define MIRL_GDI_OBJECT_COMMON(ClassName, HandleType, member) \
public: \
    HandleType member; \
    ClassName(HandleType h = NULL) : member(h) {} \
    ClassName(const ClassName&) = default; \
    ClassName(ClassName&& src) noexcept : member(src.member) \
    { \
        if (t_bManaged) \
            src.member = NULL; \
    } \
    ClassName& operator=(const ClassName&) = default; \
    ClassName& operator=(ClassName&& src) noexcept \
    { \
        if (this != &src) \
        { \
            Attach(src.member); \
            if (t_bManaged) \
                src.member = NULL; \
        } \
        return *this; \
    } \
    ClassName& operator=(HandleType h) \
    { \
        Attach(h); \
        return *this; \
    } \
    ~ClassName() \
    { \
        if (t_bManaged && member != NULL) \
            DeleteObject(); \
    } \
    void Attach(HandleType h) \
    { \
        if (t_bManaged && member != NULL && member != h) \
            ::DeleteObject(member); \
        member = h; \
    } \
    HandleType Detach() \
    { \
        HandleType h = member; \
        member = NULL; \
        return h; \
    } \
    operator HandleType() const { return member; } \
    bool IsNull() const { return member == NULL; } \
    BOOL DeleteObject() \
    { \
        ATLASSERT(member != NULL); \
        const BOOL bRet = ::DeleteObject(member); \
        if (bRet) \
            member = NULL; \
        return bRet; \
    }

template <bool t_bManaged>
class CPenT : private mirl_detail::CopyableIf<!t_bManaged>
{
    MIRL_GDI_OBJECT_COMMON(CPenT, HPEN, m_hPen)

    HPEN CreatePen(int nPenStyle, int nWidth, COLORREF crColor)
    {
        ATLASSERT(m_hPen == NULL);
        m_hPen = ::CreatePen(nPenStyle, nWidth, crColor);
        return m_hPen;
    }
    HPEN CreatePenIndirect(LPLOGPEN lpLogPen)
    {
        ATLASSERT(m_hPen == NULL);
        m_hPen = ::CreatePenIndirect(lpLogPen);
        return m_hPen;
    }
    int GetLogPen(LOGPEN* pLogPen) const { ATLASSERT(m_hPen != NULL); return ::GetObjectW(m_hPen, sizeof(LOGPEN), pLogPen); }
};

typedef CPenT<false> CPenHandle;
typedef CPenT<true> CPen;

template <bool t_bManaged>
class CBrushT : private mirl_detail::CopyableIf<!t_bManaged>
{
    MIRL_GDI_OBJECT_COMMON(CBrushT, HBRUSH, m_hBrush)

    HBRUSH CreateSolidBrush(COLORREF crColor)
    {
        ATLASSERT(m_hBrush == NULL);
        m_hBrush = ::CreateSolidBrush(crColor);
        return m_hBrush;
    }
    HBRUSH CreateHatchBrush(int nIndex, COLORREF crColor)
    {
        ATLASSERT(m_hBrush == NULL);
        m_hBrush = ::CreateHatchBrush(nIndex, crColor);
        return m_hBrush;
    }
    HBRUSH CreatePatternBrush(HBITMAP hBitmap)
    {
        ATLASSERT(m_hBrush == NULL);
        m_hBrush = ::CreatePatternBrush(hBitmap);
        return m_hBrush;
    }
    HBRUSH CreateBrushIndirect(const LOGBRUSH* lpLogBrush)
    {
        ATLASSERT(m_hBrush == NULL);
        m_hBrush = ::CreateBrushIndirect(lpLogBrush);
        return m_hBrush;
    }
    // A system colour brush is shared: deleting it is harmless and does nothing.
    HBRUSH CreateSysColorBrush(int nIndex)
    {
        ATLASSERT(m_hBrush == NULL);
        m_hBrush = ::GetSysColorBrush(nIndex);
        return m_hBrush;
    }
    int GetLogBrush(LOGBRUSH* pLogBrush) const { ATLASSERT(m_hBrush != NULL); return ::GetObjectW(m_hBrush, sizeof(LOGBRUSH), pLogBrush); }
};

typedef CBrushT<false> CBrushHandle;
typedef CBrushT<true> CBrush;

template <bool t_bManaged>
class CFontT : private mirl_detail::CopyableIf<!t_bManaged>
{
    MIRL_GDI_OBJECT_COMMON(CFontT, HFONT, m_hFont)

    HFONT CreateFontIndirect(const LOGFONTW* lpLogFont)
    {
        ATLASSERT(m_hFont == NULL);
        m_hFont = ::CreateFontIndirectW(lpLogFont);
        return m_hFont;
    }
    HFONT CreateFont(int nHeight, int nWidth, int nEscapement, int nOrientation, int nWeight, BYTE bItalic,
                     BYTE bUnderline, BYTE cStrikeOut, BYTE nCharSet, BYTE nOutPrecision, BYTE nClipPrecision,
                     BYTE nQuality, BYTE nPitchAndFamily, LPCWSTR lpszFacename)
    {
        ATLASSERT(m_hFont == NULL);
        m_hFont = ::CreateFontW(nHeight, nWidth, nEscapement, nOrientation, nWeight, bItalic, bUnderline,
                                cStrikeOut, nCharSet, nOutPrecision, nClipPrecision, nQuality,
                                nPitchAndFamily, lpszFacename);
        return m_hFont;
    }
    int GetLogFont(LOGFONTW* pLogFont) const { ATLASSERT(m_hFont != NULL); return ::GetObjectW(m_hFont, sizeof(LOGFONTW), pLogFont); }
    bool GetLogFont(LOGFONTW& LogFont) const { return GetLogFont(&LogFont) == sizeof(LOGFONTW); }
};

typedef CFontT<false> CFontHandle;
typedef CFontT<true> CFont;

template <bool t_bManaged>
class CBitmapT : private mirl_detail::CopyableIf<!t_bManaged>
{
    MIRL_GDI_OBJECT_COMMON(CBitmapT, HBITMAP, m_hBitmap)

    HBITMAP CreateCompatibleBitmap(HDC hDC, int nWidth, int nHeight)
    {
        ATLASSERT(m_hBitmap == NULL);
        m_hBitmap = ::CreateCompatibleBitmap(hDC, nWidth, nHeight);
        return m_hBitmap;
    }
    HBITMAP CreateBitmap(int nWidth, int nHeight, UINT nPlanes, UINT nBitsPerPixel, const void* lpBits)
    {
        ATLASSERT(m_hBitmap == NULL);
        m_hBitmap = ::CreateBitmap(nWidth, nHeight, nPlanes, nBitsPerPixel, lpBits);
        return m_hBitmap;
    }
    HBITMAP CreateDIBSection(HDC hDC, const BITMAPINFO* lpbmi, UINT uColorUse, VOID** ppvBits,
                             HANDLE hSection = NULL, DWORD dwOffset = 0)
    {
        ATLASSERT(m_hBitmap == NULL);
        m_hBitmap = ::CreateDIBSection(hDC, lpbmi, uColorUse, ppvBits, hSection, dwOffset);
        return m_hBitmap;
    }
    int GetBitmap(BITMAP* pBitMap) const { ATLASSERT(m_hBitmap != NULL); return ::GetObjectW(m_hBitmap, sizeof(BITMAP), pBitMap); }
    bool GetSize(SIZE& size) const
    {
        ATLASSERT(m_hBitmap != NULL);
        BITMAP bm = {};
        if (!GetBitmap(&bm))
            return false;
        size.cx = bm.bmWidth;
        size.cy = bm.bmHeight;
        return true;
    }
};

typedef CBitmapT<false> CBitmapHandle;
typedef CBitmapT<true> CBitmap;

template <bool t_bManaged>
class CRgnT : private mirl_detail::CopyableIf<!t_bManaged>
{
    MIRL_GDI_OBJECT_COMMON(CRgnT, HRGN, m_hRgn)

    HRGN CreateRectRgn(int x1, int y1, int x2, int y2)
    {
        ATLASSERT(m_hRgn == NULL);
        m_hRgn = ::CreateRectRgn(x1, y1, x2, y2);
        return m_hRgn;
    }
    HRGN CreateRectRgnIndirect(LPCRECT lpRect)
    {
        ATLASSERT(m_hRgn == NULL);
        m_hRgn = ::CreateRectRgnIndirect(lpRect);
        return m_hRgn;
    }
    HRGN CreateEllipticRgn(int x1, int y1, int x2, int y2)
    {
        ATLASSERT(m_hRgn == NULL);
        m_hRgn = ::CreateEllipticRgn(x1, y1, x2, y2);
        return m_hRgn;
    }
    HRGN CreateRoundRectRgn(int x1, int y1, int x2, int y2, int x3, int y3)
    {
        ATLASSERT(m_hRgn == NULL);
        m_hRgn = ::CreateRoundRectRgn(x1, y1, x2, y2, x3, y3);
        return m_hRgn;
    }
    void SetRectRgn(int x1, int y1, int x2, int y2) { ATLASSERT(m_hRgn != NULL); ::SetRectRgn(m_hRgn, x1, y1, x2, y2); }
    int CombineRgn(HRGN hRgnSrc1, HRGN hRgnSrc2, int nCombineMode) { ATLASSERT(m_hRgn != NULL); return ::CombineRgn(m_hRgn, hRgnSrc1, hRgnSrc2, nCombineMode); }
    int CombineRgn(HRGN hRgnSrc, int nCombineMode) { ATLASSERT(m_hRgn != NULL); return ::CombineRgn(m_hRgn, m_hRgn, hRgnSrc, nCombineMode); }
    int CopyRgn(HRGN hRgnSrc) { ATLASSERT(m_hRgn != NULL); return ::CombineRgn(m_hRgn, hRgnSrc, NULL, RGN_COPY); }
    int OffsetRgn(int x, int y) { ATLASSERT(m_hRgn != NULL); return ::OffsetRgn(m_hRgn, x, y); }
    int GetRgnBox(LPRECT lpRect) const { ATLASSERT(m_hRgn != NULL); return ::GetRgnBox(m_hRgn, lpRect); }
    BOOL PtInRegion(int x, int y) const { ATLASSERT(m_hRgn != NULL); return ::PtInRegion(m_hRgn, x, y); }
    BOOL RectInRegion(LPCRECT lpRect) const { ATLASSERT(m_hRgn != NULL); return ::RectInRegion(m_hRgn, lpRect); }
    BOOL EqualRgn(HRGN hRgn) const { ATLASSERT(m_hRgn != NULL); return ::EqualRgn(m_hRgn, hRgn); }
};

typedef CRgnT<false> CRgnHandle;
typedef CRgnT<true> CRgn;

#undef MIRL_GDI_OBJECT_COMMON

// ---------------------------------------------------------------------------------------------
// Device contexts

template <bool t_bManaged>
class CDCT : private mirl_detail::CopyableIf<!t_bManaged>
{
public:
    HDC m_hDC;

    // Constructors
    CDCT(HDC hDC = NULL) : m_hDC(hDC) {}
    CDCT(const CDCT&) = default;
    CDCT(CDCT&& src) noexcept : m_hDC(src.m_hDC)
    {
        if (t_bManaged)
            src.m_hDC = NULL;
    }
    CDCT& operator=(const CDCT&) = default;
    CDCT& operator=(CDCT&& src) noexcept
    {
        if (this != &src)
        {
            Attach(src.m_hDC);
            if (t_bManaged)
                src.m_hDC = NULL;
        }
        return *this;
    }
    CDCT& operator=(HDC hDC)
    {
        Attach(hDC);
        return *this;
    }
    ~CDCT()
    {
        if (t_bManaged && m_hDC != NULL)
            ::DeleteDC(Detach());
    }

    void Attach(HDC hDC)
    {
        if (t_bManaged && m_hDC != NULL && m_hDC != hDC)
            ::DeleteDC(m_hDC);
        m_hDC = hDC;
    }
    HDC Detach()
    {
        HDC hDC = m_hDC;
        m_hDC = NULL;
        return hDC;
    }
    operator HDC() const { return m_hDC; }
    bool IsNull() const { return m_hDC == NULL; }

    // Attributes
    HWND WindowFromDC() const { ATLASSERT(m_hDC != NULL); return ::WindowFromDC(m_hDC); }
    int GetDeviceCaps(int nIndex) const { ATLASSERT(m_hDC != NULL); return ::GetDeviceCaps(m_hDC, nIndex); }
    CPenHandle GetCurrentPen() const { ATLASSERT(m_hDC != NULL); return CPenHandle(static_cast<HPEN>(::GetCurrentObject(m_hDC, OBJ_PEN))); }
    CBrushHandle GetCurrentBrush() const { ATLASSERT(m_hDC != NULL); return CBrushHandle(static_cast<HBRUSH>(::GetCurrentObject(m_hDC, OBJ_BRUSH))); }
    CFontHandle GetCurrentFont() const { ATLASSERT(m_hDC != NULL); return CFontHandle(static_cast<HFONT>(::GetCurrentObject(m_hDC, OBJ_FONT))); }
    CBitmapHandle GetCurrentBitmap() const { ATLASSERT(m_hDC != NULL); return CBitmapHandle(static_cast<HBITMAP>(::GetCurrentObject(m_hDC, OBJ_BITMAP))); }

    COLORREF GetBkColor() const { ATLASSERT(m_hDC != NULL); return ::GetBkColor(m_hDC); }
    COLORREF SetBkColor(COLORREF crColor) { ATLASSERT(m_hDC != NULL); return ::SetBkColor(m_hDC, crColor); }
    int GetBkMode() const { ATLASSERT(m_hDC != NULL); return ::GetBkMode(m_hDC); }
    int SetBkMode(int nBkMode) { ATLASSERT(m_hDC != NULL); return ::SetBkMode(m_hDC, nBkMode); }
    COLORREF GetTextColor() const { ATLASSERT(m_hDC != NULL); return ::GetTextColor(m_hDC); }
    COLORREF SetTextColor(COLORREF crColor) { ATLASSERT(m_hDC != NULL); return ::SetTextColor(m_hDC, crColor); }
    UINT GetTextAlign() const { ATLASSERT(m_hDC != NULL); return ::GetTextAlign(m_hDC); }
    UINT SetTextAlign(UINT nFlags) { ATLASSERT(m_hDC != NULL); return ::SetTextAlign(m_hDC, nFlags); }
    int SetStretchBltMode(int nStretchMode) { ATLASSERT(m_hDC != NULL); return ::SetStretchBltMode(m_hDC, nStretchMode); }
    int SetROP2(int nDrawMode) { ATLASSERT(m_hDC != NULL); return ::SetROP2(m_hDC, nDrawMode); }

    // Creation
    HDC CreateCompatibleDC(HDC hDC = NULL)
    {
        ATLASSERT(m_hDC == NULL);
        m_hDC = ::CreateCompatibleDC(hDC);
        return m_hDC;
    }
    BOOL DeleteDC()
    {
        if (m_hDC == NULL)
            return FALSE;
        const BOOL bRet = ::DeleteDC(m_hDC);
        if (bRet)
            m_hDC = NULL;
        return bRet;
    }

    // State
    int SaveDC() { ATLASSERT(m_hDC != NULL); return ::SaveDC(m_hDC); }
    BOOL RestoreDC(int nSavedDC) { ATLASSERT(m_hDC != NULL); return ::RestoreDC(m_hDC, nSavedDC); }

    // Selection
    HGDIOBJ SelectObject(HGDIOBJ hObject) { ATLASSERT(m_hDC != NULL); return ::SelectObject(m_hDC, hObject); }
    HPEN SelectPen(HPEN hPen) { ATLASSERT(m_hDC != NULL); return static_cast<HPEN>(::SelectObject(m_hDC, hPen)); }
    HBRUSH SelectBrush(HBRUSH hBrush) { ATLASSERT(m_hDC != NULL); return static_cast<HBRUSH>(::SelectObject(m_hDC, hBrush)); }
    HFONT SelectFont(HFONT hFont) { ATLASSERT(m_hDC != NULL); return static_cast<HFONT>(::SelectObject(m_hDC, hFont)); }
    HBITMAP SelectBitmap(HBITMAP hBitmap) { ATLASSERT(m_hDC != NULL); return static_cast<HBITMAP>(::SelectObject(m_hDC, hBitmap)); }
    // A region is copied into the DC: the answer is the region type, not a former handle.
    int SelectRgn(HRGN hRgn) { ATLASSERT(m_hDC != NULL); return static_cast<int>(reinterpret_cast<INT_PTR>(::SelectObject(m_hDC, hRgn))); }
    HPEN SelectStockPen(int nPen) { return SelectPen(static_cast<HPEN>(::GetStockObject(nPen))); }
    HBRUSH SelectStockBrush(int nBrush) { return SelectBrush(static_cast<HBRUSH>(::GetStockObject(nBrush))); }
    HFONT SelectStockFont(int nFont) { return SelectFont(static_cast<HFONT>(::GetStockObject(nFont))); }

    // Coordinates
    BOOL GetViewportOrg(LPPOINT lpPoint) const { ATLASSERT(m_hDC != NULL); return ::GetViewportOrgEx(m_hDC, lpPoint); }
    BOOL SetViewportOrg(int x, int y, LPPOINT lpPoint = NULL) { ATLASSERT(m_hDC != NULL); return ::SetViewportOrgEx(m_hDC, x, y, lpPoint); }
    BOOL SetViewportOrg(POINT point, LPPOINT lpPointRet = NULL) { return SetViewportOrg(point.x, point.y, lpPointRet); }
    BOOL OffsetViewportOrg(int nWidth, int nHeight, LPPOINT lpPoint = NULL) { ATLASSERT(m_hDC != NULL); return ::OffsetViewportOrgEx(m_hDC, nWidth, nHeight, lpPoint); }
    BOOL GetWindowOrg(LPPOINT lpPoint) const { ATLASSERT(m_hDC != NULL); return ::GetWindowOrgEx(m_hDC, lpPoint); }
    BOOL SetWindowOrg(int x, int y, LPPOINT lpPoint = NULL) { ATLASSERT(m_hDC != NULL); return ::SetWindowOrgEx(m_hDC, x, y, lpPoint); }

    // Clipping
    int GetClipBox(LPRECT lpRect) const { ATLASSERT(m_hDC != NULL); return ::GetClipBox(m_hDC, lpRect); }
    int SelectClipRgn(HRGN hRgn) { ATLASSERT(m_hDC != NULL); return ::SelectClipRgn(m_hDC, hRgn); }
    int ExcludeClipRect(int x1, int y1, int x2, int y2) { ATLASSERT(m_hDC != NULL); return ::ExcludeClipRect(m_hDC, x1, y1, x2, y2); }
    int ExcludeClipRect(LPCRECT lpRect) { return ExcludeClipRect(lpRect->left, lpRect->top, lpRect->right, lpRect->bottom); }
    int IntersectClipRect(int x1, int y1, int x2, int y2) { ATLASSERT(m_hDC != NULL); return ::IntersectClipRect(m_hDC, x1, y1, x2, y2); }
    int IntersectClipRect(LPCRECT lpRect) { return IntersectClipRect(lpRect->left, lpRect->top, lpRect->right, lpRect->bottom); }
    BOOL PtVisible(int x, int y) const { ATLASSERT(m_hDC != NULL); return ::PtVisible(m_hDC, x, y); }
    BOOL RectVisible(LPCRECT lpRect) const { ATLASSERT(m_hDC != NULL); return ::RectVisible(m_hDC, lpRect); }

    // Lines and shapes
    BOOL MoveTo(int x, int y, LPPOINT lpPoint = NULL) { ATLASSERT(m_hDC != NULL); return ::MoveToEx(m_hDC, x, y, lpPoint); }
    BOOL LineTo(int x, int y) { ATLASSERT(m_hDC != NULL); return ::LineTo(m_hDC, x, y); }
    BOOL Rectangle(int x1, int y1, int x2, int y2) { ATLASSERT(m_hDC != NULL); return ::Rectangle(m_hDC, x1, y1, x2, y2); }
    BOOL Rectangle(LPCRECT lpRect) { return Rectangle(lpRect->left, lpRect->top, lpRect->right, lpRect->bottom); }
    BOOL RoundRect(int x1, int y1, int x2, int y2, int x3, int y3) { ATLASSERT(m_hDC != NULL); return ::RoundRect(m_hDC, x1, y1, x2, y2, x3, y3); }
    BOOL Ellipse(int x1, int y1, int x2, int y2) { ATLASSERT(m_hDC != NULL); return ::Ellipse(m_hDC, x1, y1, x2, y2); }
    BOOL Polygon(const POINT* lpPoints, int nCount) { ATLASSERT(m_hDC != NULL); return ::Polygon(m_hDC, lpPoints, nCount); }

    // Filling
    int FillRect(LPCRECT lpRect, HBRUSH hBrush) { ATLASSERT(m_hDC != NULL); return ::FillRect(m_hDC, lpRect, hBrush); }
    // With a system colour index, as a class background would give it.
    int FillRect(LPCRECT lpRect, int nColorIndex)
    {
        ATLASSERT(m_hDC != NULL);
        return ::FillRect(m_hDC, lpRect, reinterpret_cast<HBRUSH>(static_cast<INT_PTR>(nColorIndex + 1)));
    }
    int FrameRect(LPCRECT lpRect, HBRUSH hBrush) { ATLASSERT(m_hDC != NULL); return ::FrameRect(m_hDC, lpRect, hBrush); }
    BOOL InvertRect(LPCRECT lpRect) { ATLASSERT(m_hDC != NULL); return ::InvertRect(m_hDC, lpRect); }
    BOOL FillRgn(HRGN hRgn, HBRUSH hBrush) { ATLASSERT(m_hDC != NULL); return ::FillRgn(m_hDC, hRgn, hBrush); }
    BOOL FrameRgn(HRGN hRgn, HBRUSH hBrush, int nWidth, int nHeight) { ATLASSERT(m_hDC != NULL); return ::FrameRgn(m_hDC, hRgn, hBrush, nWidth, nHeight); }
    // Fills with a colour without a brush; the background colour is left as it was.
    void FillSolidRect(LPCRECT lpRect, COLORREF clr)
    {
        ATLASSERT(m_hDC != NULL);
        const COLORREF clrOld = ::SetBkColor(m_hDC, clr);
        if (clrOld != CLR_INVALID)
        {
            ::ExtTextOutW(m_hDC, 0, 0, ETO_OPAQUE, lpRect, NULL, 0, NULL);
            ::SetBkColor(m_hDC, clrOld);
        }
    }
    void FillSolidRect(int x, int y, int cx, int cy, COLORREF clr)
    {
        const RECT rect = { x, y, x + cx, y + cy };
        FillSolidRect(&rect, clr);
    }
    // A one-pixel frame: top and left in clrTopLeft, bottom and right in clrBottomRight.
    void Draw3dRect(int x, int y, int cx, int cy, COLORREF clrTopLeft, COLORREF clrBottomRight)
    {
        FillSolidRect(x, y, cx - 1, 1, clrTopLeft);
        FillSolidRect(x, y, 1, cy - 1, clrTopLeft);
        FillSolidRect(x + cx, y, -1, cy, clrBottomRight);
        FillSolidRect(x, y + cy, cx, -1, clrBottomRight);
    }
    void Draw3dRect(LPCRECT lpRect, COLORREF clrTopLeft, COLORREF clrBottomRight)
    {
        Draw3dRect(lpRect->left, lpRect->top, lpRect->right - lpRect->left, lpRect->bottom - lpRect->top,
                   clrTopLeft, clrBottomRight);
    }
    BOOL DrawEdge(LPRECT lpRect, UINT nEdge, UINT nFlags) { ATLASSERT(m_hDC != NULL); return ::DrawEdge(m_hDC, lpRect, nEdge, nFlags); }
    BOOL DrawFocusRect(LPCRECT lpRect) { ATLASSERT(m_hDC != NULL); return ::DrawFocusRect(m_hDC, lpRect); }

    // Bitmaps
    BOOL BitBlt(int x, int y, int nWidth, int nHeight, HDC hSrcDC, int xSrc, int ySrc, DWORD dwRop) const
    {
        ATLASSERT(m_hDC != NULL);
        return ::BitBlt(m_hDC, x, y, nWidth, nHeight, hSrcDC, xSrc, ySrc, dwRop);
    }
    BOOL StretchBlt(int x, int y, int nWidth, int nHeight, HDC hSrcDC, int xSrc, int ySrc, int nSrcWidth,
                    int nSrcHeight, DWORD dwRop) const
    {
        ATLASSERT(m_hDC != NULL);
        return ::StretchBlt(m_hDC, x, y, nWidth, nHeight, hSrcDC, xSrc, ySrc, nSrcWidth, nSrcHeight, dwRop);
    }
    BOOL PatBlt(int x, int y, int nWidth, int nHeight, DWORD dwRop = PATCOPY)
    {
        ATLASSERT(m_hDC != NULL);
        return ::PatBlt(m_hDC, x, y, nWidth, nHeight, dwRop);
    }
    COLORREF GetPixel(int x, int y) const { ATLASSERT(m_hDC != NULL); return ::GetPixel(m_hDC, x, y); }
    COLORREF SetPixel(int x, int y, COLORREF crColor) { ATLASSERT(m_hDC != NULL); return ::SetPixel(m_hDC, x, y, crColor); }

    // Text
    BOOL TextOut(int x, int y, LPCWSTR lpszString, int nCount = -1)
    {
        ATLASSERT(m_hDC != NULL);
        if (nCount == -1)
            nCount = ::lstrlenW(lpszString);
        return ::TextOutW(m_hDC, x, y, lpszString, nCount);
    }
    BOOL ExtTextOut(int x, int y, UINT nOptions, LPCRECT lpRect, LPCWSTR lpszString, UINT nCount = -1,
                    LPINT lpDxWidths = NULL)
    {
        ATLASSERT(m_hDC != NULL);
        if (nCount == static_cast<UINT>(-1))
            nCount = lpszString != NULL ? static_cast<UINT>(::lstrlenW(lpszString)) : 0;
        return ::ExtTextOutW(m_hDC, x, y, nOptions, lpRect, lpszString, nCount, lpDxWidths);
    }
    int DrawText(LPCWSTR lpstrText, int cchText, LPRECT lpRect, UINT uFormat)
    {
        ATLASSERT(m_hDC != NULL);
        return ::DrawTextW(m_hDC, lpstrText, cchText, lpRect, uFormat);
    }
    BOOL GetTextExtent(LPCWSTR lpszString, int nCount, LPSIZE lpSize) const
    {
        ATLASSERT(m_hDC != NULL);
        if (nCount == -1)
            nCount = ::lstrlenW(lpszString);
        return ::GetTextExtentPoint32W(m_hDC, lpszString, nCount, lpSize);
    }
    BOOL GetTextMetrics(LPTEXTMETRICW lpMetrics) const { ATLASSERT(m_hDC != NULL); return ::GetTextMetricsW(m_hDC, lpMetrics); }
};

typedef CDCT<false> CDCHandle;
typedef CDCT<true> CDC;

// BeginPaint on construction, EndPaint on destruction.
class CPaintDC : public CDC
{
public:
    HWND m_hWnd;
    PAINTSTRUCT m_ps;

    explicit CPaintDC(HWND hWnd) : m_hWnd(hWnd), m_ps()
    {
        ATLASSERT(::IsWindow(hWnd));
        m_hDC = ::BeginPaint(hWnd, &m_ps);
    }
    ~CPaintDC()
    {
        ATLASSERT(m_hDC != NULL);
        ::EndPaint(m_hWnd, &m_ps);
        Detach();
    }
};

// The window's client DC, released on destruction.
class CClientDC : public CDC
{
public:
    HWND m_hWnd;

    explicit CClientDC(HWND hWnd) : m_hWnd(hWnd)
    {
        ATLASSERT(hWnd == NULL || ::IsWindow(hWnd));
        m_hDC = ::GetDC(hWnd);
    }
    ~CClientDC()
    {
        if (m_hDC != NULL)
            ::ReleaseDC(m_hWnd, Detach());
    }
};

// The whole window's DC, released on destruction.
class CWindowDC : public CDC
{
public:
    HWND m_hWnd;

    explicit CWindowDC(HWND hWnd) : m_hWnd(hWnd)
    {
        ATLASSERT(hWnd == NULL || ::IsWindow(hWnd));
        m_hDC = ::GetWindowDC(hWnd);
    }
    ~CWindowDC()
    {
        if (m_hDC != NULL)
            ::ReleaseDC(m_hWnd, Detach());
    }
};

// An off-screen DC for rcPaint of hDC, in hDC's logical coordinates; what is drawn there is
// copied to hDC when the object ends.
class CMemoryDC : public CDC
{
public:
    HDC m_hDCOriginal;
    RECT m_rcPaint;
    CBitmap m_bmp;
    HBITMAP m_hBmpOld;

    CMemoryDC(HDC hDC, const RECT& rcPaint) : m_hDCOriginal(hDC), m_rcPaint(rcPaint), m_hBmpOld(NULL)
    {
        // Only what the original can show is buffered: a window as large as the coordinate
        // space painted into a small picture would otherwise ask for a bitmap of gigabytes.
        RECT rcClip;
        if (::GetClipBox(hDC, &rcClip) != ERROR)
            ::IntersectRect(&m_rcPaint, &rcPaint, &rcClip);
        if (CreateCompatibleDC(m_hDCOriginal) == NULL)
            return;
        m_bmp.CreateCompatibleBitmap(m_hDCOriginal, m_rcPaint.right - m_rcPaint.left, m_rcPaint.bottom - m_rcPaint.top);
        m_hBmpOld = SelectBitmap(m_bmp);
        SetViewportOrg(-m_rcPaint.left, -m_rcPaint.top);
    }
    ~CMemoryDC()
    {
        if (m_hDC == NULL)
            return;
        ::BitBlt(m_hDCOriginal, m_rcPaint.left, m_rcPaint.top, m_rcPaint.right - m_rcPaint.left,
                 m_rcPaint.bottom - m_rcPaint.top, m_hDC, m_rcPaint.left, m_rcPaint.top, SRCCOPY);
        SelectBitmap(m_hBmpOld);
    }
};

} // namespace WTL

#endif // MIRL_PLATFORM_ATL_MIRLATLGDI_H
