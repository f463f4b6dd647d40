// The report list: rows of the application's class under a header of columns, two system
// scroll bars, hover held by the capture, selection by the mouse, and notifications 1124 to 1126.
// Large lists: an appended row is laid out alone when the rows above keep their places, and
// painting starts at the first visible row, found at layout.
#include "MirlList.h"

#include "MirlImage.h"
#include "MirlListLogic.h"

#include <climits>
#include <new>

namespace {

POINT PointOf(LPARAM lParam)
{
    POINT point = {static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam))};
    return point;
}

int ClampToInt(long long value)
{
    return value > INT_MAX ? INT_MAX : value < INT_MIN ? INT_MIN : static_cast<int>(value);
}

const int kHScrollBarId = 5;
const int kVScrollBarId = 6;

} // namespace

// ---------------------------------------------------------------------------------------------
// INFORMATION_ITEM

MirlListView::INFORMATION_ITEM::INFORMATION_ITEM() : selected(false), rect() {}

MirlListView::INFORMATION_ITEM::~INFORMATION_ITEM() {}

void MirlListView::INFORMATION_ITEM::PaintCell(Gdiplus::Graphics &, int, RECT *) {}

void MirlListView::INFORMATION_ITEM::OnAdded() {}

void MirlListView::INFORMATION_ITEM::OnRemoved() {}

std::wstring MirlListView::INFORMATION_ITEM::GetCellText(int) const
{
    return std::wstring();
}

// ---------------------------------------------------------------------------------------------
// MirlListView

MirlListView::MirlListView()
    : m_TitleHeight(21), m_RowHeight(34), m_RowBlank(0), m_AllowMultiSelection(true), m_Hovering(false),
      m_Cursor(NULL), m_RowsRect(), m_CurColumn(-1), m_HoverColumn(-1), m_PressedColumn(-1), m_HoverItem(NULL),
      m_HScrollBar(NULL), m_VScrollBar(NULL), m_ImgNormal(NULL), m_ImgHover(NULL), m_ImgPressed(NULL),
      m_ImgEmpty(NULL), m_LaidCount(0), m_LaidX(0), m_LaidY(0), m_LaidPitch(0), m_LaidTotal(0),
      m_FirstVisible(m_Items.end()), m_FirstVisibleIndex(0), m_RowsGeneration(0), m_PaintedRows(0), m_WholeInvalid(false)
{
}

MirlListView::~MirlListView()
{
    if (!m_IsCopy) {
        ClearItems();
        for (COLUMN_ITEM &column : m_Columns) {
            delete column.image;
        }
    }
    FreeHeaderImages();
    m_Columns.clear();
}

HWND MirlListView::Create(MirlWindowBase *parent, HWND hWndParent, ATL::_U_RECT rect, const wchar_t *name,
                          unsigned long style, unsigned long exStyle, ATL::_U_MENUorID menuOrID, void *createParam)
{
    return Base::Create(parent, hWndParent, rect, name, style, exStyle, menuOrID, createParam);
}

BOOL MirlListView::SubclassWindow(HWND hWnd)
{
    return Base::SubclassWindow(hWnd);
}

int MirlListView::SubclassWindow(MirlWindowBase *source, MirlWindowBase *parent)
{
    Base::SubclassWindow(source, parent);
    return 1;
}

LRESULT MirlListView::OnSubclassed(UINT, WPARAM, LPARAM, BOOL &)
{
    // The copy finds the bars by their ids and loads its own header images.
    m_HScrollBar = GetDlgItem(kHScrollBarId);
    m_VScrollBar = GetDlgItem(kVScrollBarId);
    FreeHeaderImages();
    m_ImgNormal = MIRL::LoadSkinBitmap(L"VistaBtn1");
    m_ImgHover = MIRL::LoadSkinBitmap(L"VistaBtn2");
    m_ImgPressed = MIRL::LoadSkinBitmap(L"VistaBtn3");
    m_ImgEmpty = MIRL::LoadSkinBitmap(L"VistaBtn0");
    return 0;
}

void MirlListView::FreeHeaderImages()
{
    delete m_ImgNormal;
    delete m_ImgHover;
    delete m_ImgPressed;
    delete m_ImgEmpty;
    m_ImgNormal = m_ImgHover = m_ImgPressed = m_ImgEmpty = NULL;
}

Gdiplus::Bitmap *MirlListView::GetHeaderImage(int which) const
{
    switch (which) {
    case 0:
        return m_ImgEmpty;
    case 1:
        return m_ImgNormal;
    case 2:
        return m_ImgHover;
    case 3:
        return m_ImgPressed;
    default:
        return NULL;
    }
}

const MirlListView::COLUMN_ITEM *MirlListView::GetColumn(int index) const
{
    return index >= 0 && static_cast<size_t>(index) < m_Columns.size() ? &m_Columns[static_cast<size_t>(index)] : NULL;
}

LRESULT MirlListView::OnCreate(UINT, WPARAM, LPARAM, BOOL &)
{
    BOOL handled = TRUE;
    Base::OnCreate(WM_CREATE, 0, 0, handled);
    FreeHeaderImages();
    m_ImgNormal = MIRL::LoadSkinBitmap(L"VistaBtn1");
    m_ImgHover = MIRL::LoadSkinBitmap(L"VistaBtn2");
    m_ImgPressed = MIRL::LoadSkinBitmap(L"VistaBtn3");
    m_ImgEmpty = MIRL::LoadSkinBitmap(L"VistaBtn0");
    RECT client = {};
    GetClientRect(&client);
    // The alignment styles give each bar the system's thickness, which layout reads back.
    m_HScrollBar = ::CreateWindowExW(0, L"SCROLLBAR", NULL, WS_CHILD | SBS_BOTTOMALIGN, client.right - 32,
                                     client.bottom - 32, 32, 32, m_hWnd,
                                     reinterpret_cast<HMENU>(static_cast<UINT_PTR>(kHScrollBarId)),
                                     ATL::AtlModuleInstance(), NULL);
    m_VScrollBar = ::CreateWindowExW(0, L"SCROLLBAR", NULL, WS_CHILD | SBS_VERT | SBS_RIGHTALIGN, client.right - 32,
                                     client.bottom - 32, 32, 32, m_hWnd,
                                     reinterpret_cast<HMENU>(static_cast<UINT_PTR>(kVScrollBarId)),
                                     ATL::AtlModuleInstance(), NULL);
    return 0;
}

LRESULT MirlListView::OnDestroy(UINT, WPARAM, LPARAM, BOOL &bHandled)
{
    if (m_Cursor != NULL) {
        ::DestroyCursor(m_Cursor);
        m_Cursor = NULL;
    }
    Base::OnDestroy(WM_DESTROY, 0, 0, bHandled);
    Release();
    bHandled = FALSE;
    return 0;
}

int MirlListView::AddColumn(Gdiplus::Bitmap *image, const wchar_t *text, int width)
{
    long long left = 0;
    for (const COLUMN_ITEM &column : m_Columns) {
        left += column.rect.right - column.rect.left;
    }
    COLUMN_ITEM column;
    column.rect.left = ClampToInt(left);
    column.rect.top = 0;
    column.rect.right = ClampToInt(left + width);
    column.rect.bottom = m_TitleHeight;
    column.image = image;
    column.text = text != NULL ? text : L"";
    // Columns are kept by index: the vector may move them as it grows.
    m_Columns.push_back(column);
    if (IsWindow()) {
        RECT client = {};
        GetClientRect(&client);
        ArrangeLayout(client.right, client.bottom);
    }
    m_CurColumn = 0;
    return GetColumnCount();
}

int MirlListView::AddItem(INFORMATION_ITEM *item)
{
    if (item == NULL) {
        return GetItemCount();
    }
    item->OnAdded();
    item->rect.left = m_RowsRect.left;
    item->rect.right = m_RowsRect.right;
    item->rect.top = m_Items.empty() ? m_TitleHeight : m_Items.back()->rect.bottom;
    item->rect.bottom = ClampToInt(static_cast<long long>(item->rect.top) + m_RowHeight);
    m_Items.push_back(item);
    if (IsWindow()) {
        RECT client = {};
        GetClientRect(&client);
        ArrangeLayout(client.right, client.bottom);
    }
    return GetItemCount();
}

void MirlListView::ClearItems()
{
    ++m_RowsGeneration;
    // Taken out of the list first: a row's OnRemoved that looks at the list finds it empty.
    std::list<INFORMATION_ITEM *> rows;
    rows.swap(m_Items);
    // No pointer into the rows survives them.
    m_HoverItem = NULL;
    m_FirstVisible = m_Items.end();
    m_FirstVisibleIndex = 0;
    m_LaidCount = 0;
    for (INFORMATION_ITEM *item : rows) {
        item->OnRemoved();
        delete item;
    }
    // The header's images go too: a list cleared and filled again paints no header.
    FreeHeaderImages();
}

void MirlListView::SetRowHeight(int height)
{
    if (height != m_RowHeight) {
        m_RowHeight = height;
        if (IsWindow()) {
            Invalidate();
        }
    }
}

void MirlListView::SetRowBlank(int blank)
{
    if (blank != m_RowBlank) {
        m_RowBlank = blank;
        if (IsWindow()) {
            Invalidate();
        }
    }
}

void MirlListView::SetAllowMultiSelection(bool allow)
{
    if (allow == m_AllowMultiSelection) {
        return;
    }
    m_AllowMultiSelection = allow;
    if (!allow) {
        for (INFORMATION_ITEM *item : m_Items) {
            item->selected = false;
        }
    }
    if (!m_Items.empty() && IsWindow()) {
        InvalidateRect(&m_RowsRect, TRUE);
    }
}

int MirlListView::GetCurSel() const
{
    int index = 0;
    for (const INFORMATION_ITEM *item : m_Items) {
        if (item->selected) {
            return index;
        }
        ++index;
    }
    return -1;
}

void MirlListView::SetCurSel(int index)
{
    int i = 0;
    for (INFORMATION_ITEM *item : m_Items) {
        item->selected = i == index;
        ++i;
    }
}

void MirlListView::GetNeededWidthAndHeight(int &width, int &height)
{
    long long total = 0;
    for (const COLUMN_ITEM &column : m_Columns) {
        total += column.rect.right - column.rect.left;
    }
    width = ClampToInt(total);
    height = ClampToInt(m_TitleHeight + (static_cast<long long>(m_RowHeight) + m_RowBlank) *
                                            static_cast<long long>(m_Items.size()));
}

void MirlListView::ArrangeTitles(int x)
{
    long long left = -static_cast<long long>(x);
    for (COLUMN_ITEM &column : m_Columns) {
        const long long width = static_cast<long long>(column.rect.right) - column.rect.left;
        column.rect.left = ClampToInt(left);
        column.rect.right = ClampToInt(left + width);
        column.rect.top = 0;
        column.rect.bottom = m_TitleHeight;
        left += width;
    }
}

void MirlListView::ArrangeItems(int x, int y)
{
    long long total = 0;
    for (const COLUMN_ITEM &column : m_Columns) {
        total += column.rect.right - column.rect.left;
    }
    const int pitch = ClampToInt(static_cast<long long>(m_RowHeight) + m_RowBlank);
    const int totalWidth = ClampToInt(total);
    const long long firstTop = static_cast<long long>(m_TitleHeight) - y;
    std::list<INFORMATION_ITEM *>::iterator from = m_Items.begin();
    size_t index = 0;
    const bool sameLayout = m_LaidCount > 0 && m_LaidCount <= m_Items.size() && m_LaidX == x && m_LaidY == y &&
                            m_LaidPitch == pitch && m_LaidTotal == totalWidth;
    if (sameLayout) {
        // Only rows appended since: the rows above keep their rectangles.
        index = m_LaidCount;
        from = m_Items.end();
        for (size_t back = m_Items.size() - m_LaidCount; back > 0; --back) {
            --from;
        }
    } else {
        m_FirstVisible = m_Items.end();
        m_FirstVisibleIndex = 0;
    }
    long long top = firstTop + static_cast<long long>(pitch) * static_cast<long long>(index);
    const LONG left = -x;
    const LONG right = ClampToInt(static_cast<long long>(totalWidth) - x);
    const long long last = top + static_cast<long long>(pitch) * static_cast<long long>(m_Items.size() - index);
    std::list<INFORMATION_ITEM *>::iterator it = from;
    // Until the first visible row is found, then without that test; in int arithmetic when every
    // edge fits, which is every list shorter than about two billion pixels.
    for (; it != m_Items.end() && m_FirstVisible == m_Items.end(); ++it, ++index) {
        INFORMATION_ITEM *item = *it;
        item->rect.left = left;
        item->rect.right = right;
        item->rect.top = ClampToInt(top);
        top += pitch;
        item->rect.bottom = ClampToInt(top);
        if (top >= m_RowsRect.top) {
            m_FirstVisible = it;
            m_FirstVisibleIndex = index;
        }
    }
    if (top >= INT_MIN && last <= INT_MAX && pitch >= 0) {
        LONG edge = static_cast<LONG>(top);
        for (; it != m_Items.end(); ++it) {
            RECT &rect = (*it)->rect;
            rect.left = left;
            rect.right = right;
            rect.top = edge;
            edge += pitch;
            rect.bottom = edge;
        }
    } else {
        for (; it != m_Items.end(); ++it) {
            RECT &rect = (*it)->rect;
            rect.left = left;
            rect.right = right;
            rect.top = ClampToInt(top);
            top += pitch;
            rect.bottom = ClampToInt(top);
        }
    }
    m_LaidCount = m_Items.size();
    m_LaidX = x;
    m_LaidY = y;
    m_LaidPitch = pitch;
    m_LaidTotal = totalWidth;
}

int MirlListView::ScrollPos(HWND bar) const
{
    SCROLLINFO info = {};
    info.cbSize = sizeof(info);
    info.fMask = SIF_POS;
    return bar != NULL && ::GetScrollInfo(bar, SB_CTL, &info) ? info.nPos : 0;
}

void MirlListView::PlaceBar(HWND bar, bool shown, const RECT &place)
{
    // Appending rows lays out again each time: a bar already where it should be is left alone.
    RECT now = {};
    ::GetWindowRect(bar, &now);
    ::MapWindowPoints(NULL, m_hWnd, reinterpret_cast<POINT *>(&now), 2);
    if (shown && !::EqualRect(&now, &place)) {
        ::MoveWindow(bar, place.left, place.top, place.right - place.left, place.bottom - place.top, FALSE);
    }
    if (((::GetWindowLongW(bar, GWL_STYLE) & WS_VISIBLE) != 0) != shown) {
        ::ShowWindow(bar, shown ? SW_SHOW : SW_HIDE);
    }
}

void MirlListView::ArrangeLayout(int width, int height)
{
    RECT bar = {};
    MIRL::ListLayoutInput in = {};
    in.width = width;
    in.height = height;
    in.titleHeight = m_TitleHeight;
    if (m_HScrollBar != NULL && ::GetWindowRect(m_HScrollBar, &bar)) {
        in.barHeight = bar.bottom - bar.top;
    }
    if (m_VScrollBar != NULL && ::GetWindowRect(m_VScrollBar, &bar)) {
        in.barWidth = bar.right - bar.left;
    }
    int neededWidth = 0;
    int neededHeight = 0;
    GetNeededWidthAndHeight(neededWidth, neededHeight);
    in.neededWidth = neededWidth;
    in.neededHeight = neededHeight;
    const MIRL::ListLayoutResult out = MIRL::ComputeListLayout(in);
    m_RowsRect = out.rowsRect;

    if (m_HScrollBar != NULL) {
        SetBarRange(m_HScrollBar, out.hMax);
        PlaceBar(m_HScrollBar, out.needH, out.hBar);
    }
    if (m_VScrollBar != NULL) {
        SetBarRange(m_VScrollBar, out.vMax);
        PlaceBar(m_VScrollBar, out.needV, out.vBar);
    }
    // The content returns to offset 0 while the bars stay: the next scroll brings them together.
    ArrangeItems(0, 0);
    ArrangeTitles(0);
    InvalidateWhole();
}

void MirlListView::SetBarRange(HWND bar, int maximum)
{
    // Positions are pixels: no page size, and the bar keeps its position. Setting a range the
    // bar already has changes nothing, and appending rows leaves the horizontal one as it is.
    SCROLLINFO info = {};
    info.cbSize = sizeof(info);
    info.fMask = SIF_RANGE | SIF_POS;
    if (::GetScrollInfo(bar, SB_CTL, &info) && info.nMin == 0 && info.nMax == maximum) {
        return;
    }
    info.fMask = SIF_RANGE | SIF_POS;
    info.nMin = 0;
    info.nMax = maximum;
    ::SetScrollInfo(bar, SB_CTL, &info, FALSE);
}

void MirlListView::InvalidateWhole()
{
    // Each invalidation is a round trip to the window server; appending 10,000 rows spent most
    // of its time there, asking for what was already asked.
    if (!m_WholeInvalid) {
        Invalidate();
        m_WholeInvalid = true;
    }
}

LRESULT MirlListView::OnPaintOrPlace(UINT, WPARAM, LPARAM, BOOL &bHandled)
{
    m_WholeInvalid = false;
    bHandled = FALSE;
    return 0;
}

LRESULT MirlListView::OnSize(UINT, WPARAM, LPARAM lParam, BOOL &bHandled)
{
    Base::OnSize(WM_SIZE, 0, lParam, bHandled);
    const int width = LOWORD(lParam);
    const int height = HIWORD(lParam);
    m_RowsRect.left = 0;
    m_RowsRect.top = 0;
    m_RowsRect.right = width;
    m_RowsRect.bottom = height;
    // A new size is a new "everything" to invalidate.
    m_WholeInvalid = false;
    ArrangeLayout(width, height);
    return 0;
}

namespace {

// The bar's 32-bit track position when it agrees with the message's 16 bits, which is always
// so below 65,536; otherwise (a message not from the bar's own tracking) the 16 bits.
int ThumbPosition(HWND bar, WPARAM wParam)
{
    const int word = HIWORD(wParam);
    SCROLLINFO info = {};
    info.cbSize = sizeof(info);
    info.fMask = SIF_TRACKPOS;
    if (::GetScrollInfo(bar, SB_CTL, &info) && (info.nTrackPos & 0xFFFF) == word) {
        return info.nTrackPos;
    }
    return word;
}

int BarMaximum(HWND bar)
{
    SCROLLINFO info = {};
    info.cbSize = sizeof(info);
    info.fMask = SIF_RANGE;
    return ::GetScrollInfo(bar, SB_CTL, &info) ? info.nMax : 0;
}

} // namespace

LRESULT MirlListView::OnHScroll(UINT, WPARAM wParam, LPARAM lParam, BOOL &bHandled)
{
    if (reinterpret_cast<HWND>(lParam) != m_HScrollBar || m_HScrollBar == NULL) {
        bHandled = FALSE;
        return 0;
    }
    const int position = ScrollPos(m_HScrollBar);
    const int next = MIRL::ListScrollPosition(LOWORD(wParam), position, ThumbPosition(m_HScrollBar, wParam), 5,
                                              BarMaximum(m_HScrollBar));
    if (next != position) {
        ::SetScrollPos(m_HScrollBar, SB_CTL, next, TRUE);
        ArrangeTitles(next);
        InvalidateTitle();
        ArrangeItems(next, ScrollPos(m_VScrollBar));
        InvalidateRect(&m_RowsRect, TRUE);
    }
    return 0;
}

LRESULT MirlListView::OnVScroll(UINT, WPARAM wParam, LPARAM lParam, BOOL &bHandled)
{
    if (reinterpret_cast<HWND>(lParam) != m_VScrollBar || m_VScrollBar == NULL) {
        bHandled = FALSE;
        return 0;
    }
    const int position = ScrollPos(m_VScrollBar);
    const int next = MIRL::ListScrollPosition(LOWORD(wParam), position, ThumbPosition(m_VScrollBar, wParam), 48,
                                              BarMaximum(m_VScrollBar));
    if (next != position) {
        ::SetScrollPos(m_VScrollBar, SB_CTL, next, TRUE);
        ArrangeItems(ScrollPos(m_HScrollBar), next);
        InvalidateRect(&m_RowsRect, TRUE);
    }
    SetFocus();
    return 0;
}

void MirlListView::InvalidateTitle()
{
    RECT client = {};
    GetClientRect(&client);
    client.bottom = m_TitleHeight;
    InvalidateRect(&client, TRUE);
}

LRESULT MirlListView::OnMouseMove(UINT, WPARAM wParam, LPARAM lParam, BOOL &)
{
    DefWindowProc();
    const bool dragging = (wParam & MK_LBUTTON) != 0;
    if (dragging && !m_Hovering) {
        return 0;
    }
    const POINT point = PointOf(lParam);
    if (::GetCapture() != m_hWnd && ::IsWindow(::GetActiveWindow()) && ::IsWindow(GetParent())) {
        m_Hovering = true;
        SetCapture();
        Invalidate();
        // The move that starts the hover goes on to find the row under the pointer.
    } else {
        POINT screen = point;
        ClientToScreen(&screen);
        const HWND under = ::WindowFromPoint(screen);
        if (under != m_hWnd) {
            if (m_Hovering) {
                m_Hovering = false;
                Invalidate();
            }
            if (dragging) {
                return 0;
            }
            CancelHover();
            ::ReleaseCapture();
            return 0;
        }
    }
    bool headerChanged = false;
    INFORMATION_ITEM *hover = NULL;
    if (point.y < 0 || point.y > m_TitleHeight) {
        if (m_HoverColumn != -1 || m_PressedColumn != -1) {
            headerChanged = true;
        }
        m_HoverColumn = -1;
        m_PressedColumn = -1;
        // Rows lie in order: the search starts at the first visible row for a point below the
        // rows area's top, and ends at the first row that starts below the point.
        std::list<INFORMATION_ITEM *>::iterator it = m_Items.begin();
        if (point.y >= m_RowsRect.top && m_LaidCount == m_Items.size() && m_FirstVisible != m_Items.end()) {
            it = m_FirstVisible;
        }
        for (; it != m_Items.end(); ++it) {
            if (::PtInRect(&(*it)->rect, point)) {
                hover = *it;
                break;
            }
            if ((*it)->rect.top > point.y) {
                break;
            }
        }
    } else {
        for (size_t i = 0; i < m_Columns.size(); ++i) {
            if (::PtInRect(&m_Columns[i].rect, point) && m_HoverColumn != static_cast<int>(i)) {
                m_HoverColumn = static_cast<int>(i);
                headerChanged = true;
            }
        }
    }
    if (hover != m_HoverItem) {
        m_HoverItem = hover;
        const HWND self = m_hWnd;
        if (hover != NULL) {
            ::SendMessageW(GetParent(), WM_MIRL_LIST_HOVER, reinterpret_cast<WPARAM>(hover), 0);
            if (!::IsWindow(self)) {
                return 0;
            }
        }
        InvalidateRect(&m_RowsRect, TRUE);
    }
    if (headerChanged) {
        InvalidateTitle();
    }
    return 0;
}

void MirlListView::CancelHover()
{
    m_Hovering = false;
    m_HoverColumn = -1;
    m_PressedColumn = -1;
    m_HoverItem = NULL;
    Invalidate();
}

LRESULT MirlListView::OnClearingMessage(UINT uMsg, WPARAM wParam, LPARAM, BOOL &)
{
    DefWindowProc();
    const bool clears = (uMsg == WM_ACTIVATE) ? LOWORD(wParam) == WA_INACTIVE : (uMsg == WM_ENABLE) ? wParam == 0 : true;
    if (clears) {
        CancelHover();
    }
    return 0;
}

LRESULT MirlListView::OnLButtonDown(UINT uMsg, WPARAM wParam, LPARAM lParam, BOOL &)
{
    DefWindowProc();
    const POINT point = PointOf(lParam);
    const UINT notice = uMsg == WM_LBUTTONDBLCLK ? WM_MIRL_LIST_DBLCLK : WM_MIRL_LIST_CLICK;
    bool headerChanged = false;
    if (point.y >= 0 && point.y <= m_TitleHeight) {
        if (m_Columns.empty()) {
            return 0;
        }
        for (size_t i = 0; i < m_Columns.size(); ++i) {
            if (::PtInRect(&m_Columns[i].rect, point)) {
                if (m_PressedColumn != static_cast<int>(i) || m_CurColumn != static_cast<int>(i)) {
                    headerChanged = true;
                }
                m_PressedColumn = static_cast<int>(i);
                m_CurColumn = static_cast<int>(i);
            }
        }
    } else {
        if (m_HoverColumn != -1 || m_PressedColumn != -1) {
            headerChanged = true;
        }
        m_HoverColumn = -1;
        m_PressedColumn = -1;
        const bool keep = m_AllowMultiSelection && (wParam & MK_CONTROL) != 0;
        bool rowsChanged = false;
        const unsigned long generation = m_RowsGeneration;
        const HWND self = m_hWnd;
        for (std::list<INFORMATION_ITEM *>::iterator it = m_Items.begin(); it != m_Items.end(); ++it) {
            INFORMATION_ITEM *item = *it;
            if (::PtInRect(&item->rect, point)) {
                if (!item->selected) {
                    rowsChanged = true;
                    // The row's child id counts from 1, after no other part.
                    ::NotifyWinEvent(keep ? EVENT_OBJECT_SELECTIONADD : EVENT_OBJECT_SELECTION, m_hWnd, OBJID_CLIENT,
                                     static_cast<LONG>(std::distance(m_Items.begin(), it)) + 1);
                }
                item->selected = true;
                ::SendMessageW(GetParent(), notice, reinterpret_cast<WPARAM>(item), 0);
                // The parent may have cleared the rows, or ended the window: the walk ends.
                if (!::IsWindow(self)) {
                    return 0;
                }
                if (generation != m_RowsGeneration) {
                    rowsChanged = true;
                    break;
                }
            } else if (!keep) {
                if (item->selected) {
                    rowsChanged = true;
                }
                item->selected = false;
            }
        }
        if (rowsChanged) {
            InvalidateRect(&m_RowsRect, TRUE);
        }
    }
    if (headerChanged) {
        InvalidateTitle();
    }
    return 0;
}

LRESULT MirlListView::OnCaptureChanged(UINT, WPARAM, LPARAM lParam, BOOL &bHandled)
{
    // Taking the capture the list view already holds is no loss (Wine still reports it).
    if (m_Hovering && reinterpret_cast<HWND>(lParam) != m_hWnd) {
        ::ReleaseCapture();
        Invalidate();
    }
    bHandled = FALSE;
    return 0;
}

LRESULT MirlListView::OnSetCursor(UINT, WPARAM, LPARAM, BOOL &bHandled)
{
    if (m_Cursor != NULL) {
        ::SetCursor(m_Cursor);
        return 1;
    }
    bHandled = FALSE;
    return 0;
}

void MirlListView::PainImageInRect(Gdiplus::Graphics &graphics, Gdiplus::Bitmap *bitmap, const RECT &rect)
{
    if (bitmap == NULL) {
        return;
    }
    MIRL::SlicePart parts[3];
    MIRL::ListSlices(static_cast<int>(bitmap->GetWidth()), rect, parts);
    const INT height = static_cast<INT>(bitmap->GetHeight());
    for (const MIRL::SlicePart &part : parts) {
        if (part.dstWidth <= 0) {
            continue;
        }
        graphics.DrawImage(bitmap, Gdiplus::Rect(part.dstX, rect.top, part.dstWidth, rect.bottom - rect.top),
                           part.srcX, 0, part.srcWidth, height, Gdiplus::UnitPixel);
    }
}

void MirlListView::PaintRows(Gdiplus::Graphics &graphics)
{
    m_PaintedRows = 0;
    // Start at the first visible row found by layout, when the list is still the one laid out.
    std::list<INFORMATION_ITEM *>::iterator it = m_Items.begin();
    if (m_LaidCount == m_Items.size() && m_FirstVisible != m_Items.end()) {
        it = m_FirstVisible;
    }
    Gdiplus::SolidBrush hoverBrush(Gdiplus::Color(0xFF808080));
    Gdiplus::SolidBrush selectedBrush(Gdiplus::Color(0xFF008080));
    for (; it != m_Items.end(); ++it) {
        INFORMATION_ITEM *item = *it;
        if (item->rect.bottom < m_RowsRect.top) {
            continue;
        }
        if (item->rect.top > m_RowsRect.bottom) {
            break;
        }
        ++m_PaintedRows;
        const Gdiplus::Rect band(m_RowsRect.left, item->rect.top, m_RowsRect.right - m_RowsRect.left,
                                 item->rect.bottom - item->rect.top);
        if (item == m_HoverItem) {
            graphics.FillRectangle(&hoverBrush, band);
        }
        if (item->selected) {
            graphics.FillRectangle(&selectedBrush, band);
        }
        RECT cell = item->rect;
        for (size_t column = 0; column < m_Columns.size(); ++column) {
            const COLUMN_ITEM &header = m_Columns[column];
            cell.right = ClampToInt(static_cast<long long>(cell.left) + header.rect.right - header.rect.left);
            cell.top = item->rect.top;
            cell.bottom = item->rect.bottom;
            item->PaintCell(graphics, static_cast<int>(column), &cell);
            cell.left = cell.right;
        }
    }
}

void MirlListView::PaintTitle(Gdiplus::Graphics &graphics, const RECT &rect)
{
    if (m_Columns.empty()) {
        PainImageInRect(graphics, m_ImgEmpty, rect);
        return;
    }
    Gdiplus::StringFormat format;
    format.SetLineAlignment(Gdiplus::StringAlignmentCenter);
    for (size_t i = 0; i < m_Columns.size(); ++i) {
        const COLUMN_ITEM &column = m_Columns[i];
        const int index = static_cast<int>(i);
        Gdiplus::Bitmap *image = m_ImgNormal;
        if (index == m_CurColumn) {
            image = m_ImgPressed;
        }
        if (m_Hovering) {
            if (index == m_HoverColumn) {
                image = m_ImgHover;
            }
            if (index == m_PressedColumn) {
                image = m_ImgPressed;
            }
        }
        PainImageInRect(graphics, image, column.rect);
        if (!column.text.empty() && m_TxFont != NULL && m_TxBrush != NULL) {
            const Gdiplus::RectF box(static_cast<Gdiplus::REAL>(column.rect.left + 4),
                                     static_cast<Gdiplus::REAL>(column.rect.top),
                                     static_cast<Gdiplus::REAL>(column.rect.right - column.rect.left - 4),
                                     static_cast<Gdiplus::REAL>(column.rect.bottom - column.rect.top));
            graphics.DrawString(column.text.c_str(), -1, m_TxFont, box, &format, m_TxBrush);
        }
    }
}

void MirlListView::DoPaint(WTL::CDCHandle dc)
{
    RECT client = {};
    GetClientRect(&client);
    if (m_Transparent) {
        PaintParentBkGround(dc.m_hDC);
    }
    Gdiplus::Graphics graphics(dc.m_hDC);
    if (!m_Transparent && m_BkBrush != NULL) {
        graphics.FillRectangle(m_BkBrush, 0, 0, client.right, client.bottom);
    }
    // Caps and columns are drawn pixel for pixel.
    graphics.SetInterpolationMode(Gdiplus::InterpolationModeNearestNeighbor);
    graphics.SetPixelOffsetMode(Gdiplus::PixelOffsetModeHalf);
    PaintRows(graphics);
    RECT title = client;
    title.bottom = m_TitleHeight;
    PaintTitle(graphics, title);
    if (GetWindowLongW(GWL_STYLE) & WS_BORDER) {
        Gdiplus::Pen pen(Gdiplus::Color(0xFF48D8FB), 2.0f);
        graphics.DrawRectangle(&pen, 0, 0, client.right - 1, client.bottom - 1);
    }
}
