// The splitter: a bar between the child before it and the child after it. A drag with the
// capture moves the bar and both brothers along x, one step per mouse message, refused whole
// when either brother would leave its width limits.
#include "MirlContainer.h"

#include "MirlImage.h"
#include "MirlSplitterLogic.h"

namespace {

// A window's rectangle in the client coordinates of its window parent.
RECT PlaceInParent(HWND hWnd)
{
    RECT rect = {};
    ::GetWindowRect(hWnd, &rect);
    ::MapWindowPoints(NULL, ::GetParent(hWnd), reinterpret_cast<POINT *>(&rect), 2);
    return rect;
}

void MoveTo(HWND hWnd, const RECT &rect)
{
    ::MoveWindow(hWnd, rect.left, rect.top, rect.right - rect.left, rect.bottom - rect.top, TRUE);
}

} // namespace

MirlSplitter::MirlSplitter() : m_nSplitterWeight(2), m_hCursor(NULL), m_pImage(NULL)
{
}

MirlSplitter::~MirlSplitter()
{
    // The cursor is the system's shared one: it is not destroyed.
    m_hCursor = NULL;
    delete m_pImage;
    m_pImage = NULL;
}

HWND MirlSplitter::Create(MirlWindowBase *parent, HWND hWndParent, ATL::_U_RECT rect, const wchar_t *name,
                          unsigned long style, unsigned long exStyle, ATL::_U_MENUorID menuOrID, void *createParam)
{
    return Base::Create(parent, hWndParent, rect, name, style, exStyle, menuOrID, createParam);
}

BOOL MirlSplitter::SubclassWindow(HWND hWnd)
{
    return Base::SubclassWindow(hWnd);
}

BOOL MirlSplitter::SubclassWindow(MirlWindowBase *source, MirlWindowBase *parent)
{
    return Base::SubclassWindow(source, parent);
}

void MirlSplitter::GetBrotherWindow(MirlWindowBase **left, MirlWindowBase **right)
{
    *left = NULL;
    *right = NULL;
    MirlWindowBase *parent = m_Parent != NULL ? m_Parent : m_PackageParent;
    if (parent == NULL) {
        return;
    }
    const unsigned int count = parent->GetChildCount();
    for (unsigned int i = 0; i < count; ++i) {
        if (parent->GetChildByIndex(i) == this) {
            *left = i == 0 ? this : parent->GetChildByIndex(i - 1);
            *right = parent->GetChildByIndex(i + 1);
            return;
        }
    }
}

LRESULT MirlSplitter::OnCreate(UINT, WPARAM, LPARAM, BOOL &bHandled)
{
    bHandled = FALSE;
    delete m_pImage;
    m_pImage = m_Pic != NULL ? MIRL::LoadElementBitmap(m_Pic) : NULL;
    if (m_Style & SPLS_FIXED) {
        return 0;
    }
    // Shared system cursors, looked up once for all bars.
    static const HCURSOR across = ::LoadCursorW(NULL, IDC_SIZEWE);
    static const HCURSOR along = ::LoadCursorW(NULL, IDC_SIZENS);
    m_hCursor = (m_Style & SPLS_VERTICAL) ? across : along;
    return 0;
}

LRESULT MirlSplitter::OnLButtonDown(UINT, WPARAM, LPARAM, BOOL &)
{
    ::SetCapture(m_hWnd);
    return 1;
}

LRESULT MirlSplitter::OnLButtonUp(UINT, WPARAM, LPARAM, BOOL &bHandled)
{
    ::ReleaseCapture();
    bHandled = FALSE;
    return 0;
}

LRESULT MirlSplitter::OnSetCursor(UINT, WPARAM, LPARAM, BOOL &)
{
    if (m_hCursor != NULL) {
        ::SetCursor(m_hCursor);
    }
    return 0;
}

LRESULT MirlSplitter::OnEraseBkgnd(UINT, WPARAM, LPARAM, BOOL &)
{
    return 1;
}

LRESULT MirlSplitter::OnMouseMove(UINT, WPARAM wParam, LPARAM lParam, BOOL &bHandled)
{
    if ((m_Style & SPLS_FIXED) || !(wParam & MK_LBUTTON) || ::GetCapture() != m_hWnd) {
        bHandled = FALSE;
        return 0;
    }
    const int d = static_cast<short>(LOWORD(lParam));
    MirlWindowBase *left = NULL;
    MirlWindowBase *right = NULL;
    GetBrotherWindow(&left, &right);
    // A bar with no window on one side has nothing to divide: the drag moves nothing.
    if (left == NULL || right == NULL || left == this || left->m_hWnd == NULL || right->m_hWnd == NULL) {
        return 0;
    }
    RECT bar = PlaceInParent(m_hWnd);
    RECT leftPlace = PlaceInParent(left->m_hWnd);
    RECT rightPlace = PlaceInParent(right->m_hWnd);
    const MIRL::MirlBrotherWidth leftWidth = {leftPlace.right - leftPlace.left, left->GetMinWidth(),
                                              left->GetMaxWidth()};
    const MIRL::MirlBrotherWidth rightWidth = {rightPlace.right - rightPlace.left, right->GetMinWidth(),
                                               right->GetMaxWidth()};
    if (!MIRL::SplitterStepAllowed(d, leftWidth, rightWidth)) {
        return 0;
    }
    MIRL::SplitterStepPlaces(d, bar, leftPlace, rightPlace);
    MoveTo(m_hWnd, bar);
    MoveTo(left->m_hWnd, leftPlace);
    MoveTo(right->m_hWnd, rightPlace);
    return 0;
}

void MirlSplitter::DoPaint(WTL::CDCHandle dc)
{
    RECT client = {};
    ::GetClientRect(m_hWnd, &client);
    Gdiplus::Graphics graphics(dc);
    if (!m_Transparent) {
        if (m_BkBrush != NULL) {
            graphics.FillRectangle(m_BkBrush, 0, 0, client.right, client.bottom);
        }
    } else {
        PaintParentBkGround(dc);
    }
    if (m_pImage != NULL) {
        graphics.DrawImage(m_pImage, Gdiplus::Rect(0, 0, client.right, client.bottom), 0, 0,
                           static_cast<INT>(m_pImage->GetWidth()), static_cast<INT>(m_pImage->GetHeight()),
                           Gdiplus::UnitPixel);
        return;
    }
    Gdiplus::Pen blue(Gdiplus::Color(0x505BBDE1));
    Gdiplus::Pen white(Gdiplus::Color(0x50FFFFFF));
    if (m_Style & SPLS_VERTICAL) {
        graphics.DrawLine(&blue, 0, 0, 0, client.bottom);
        graphics.DrawLine(&white, 1, 0, 1, client.bottom);
    } else {
        graphics.DrawLine(&blue, 0, 0, client.right, 0);
        graphics.DrawLine(&white, 0, 1, client.right, 1);
    }
}
