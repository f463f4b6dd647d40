// The process's popup menu: one window at a time, held by the capture, dismissed by a command, a
// press elsewhere (which goes on to what was pressed), focus loss, deactivation, disabling,
// a capture lost with the pointer inside, or WM_CANCELMODE.
#include "MirlList.h"

#include "MirlImage.h"
#include "MirlListLogic.h"

#include <new>
#include <utility>
#include <vector>

MirlMenuWindow *MirlMenuWindow::m_Instance = NULL;

namespace {

struct CarriedRow {
    std::wstring text;
    unsigned long id;
    Gdiplus::Bitmap *image;
};

// The popup's own copy of a caller's image: the caller keeps and frees the one it gave.
Gdiplus::Bitmap *CopyImage(Gdiplus::Bitmap *image)
{
    if (image == NULL) {
        return NULL;
    }
    Gdiplus::Rect whole(0, 0, static_cast<INT>(image->GetWidth()), static_cast<INT>(image->GetHeight()));
    return image->Clone(whole, image->GetPixelFormat());
}

POINT PointOf(LPARAM lParam)
{
    POINT point = {static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam))};
    return point;
}

} // namespace

MirlMenuWindow::MirlMenuWindow()
    : m_Holder(NULL), m_RowHeight(26), m_ItemsHeight(0), m_MouseInside(false), m_AutoHeight(true),
      m_HoverItem(NULL), m_ScrollBar(NULL), m_Showing(false), m_DeleteWithWindow(false)
{
}

MirlMenuWindow::~MirlMenuWindow()
{
    ClearItems();
    if (m_Instance == this) {
        m_Instance = NULL;
    }
}

MirlMenuWindow *MirlMenuWindow::Instance()
{
    return m_Instance;
}

void MirlMenuWindow::FinalDestroy()
{
    MirlMenuWindow *popup = m_Instance;
    if (popup == NULL) {
        return;
    }
    m_Instance = NULL;
    if (popup->m_hWnd != NULL && ::IsWindow(popup->m_hWnd)) {
        // The object goes with the window's last message, which may be later than now when this
        // runs inside one of the popup's own messages.
        popup->m_DeleteWithWindow = true;
        popup->DestroyWindow();
        return;
    }
    delete popup;
}

void MirlMenuWindow::OnFinalMessage(HWND)
{
    m_ScrollBar = NULL;
    if (m_DeleteWithWindow) {
        delete this;
    }
}

void MirlMenuWindow::TrackPopupMenu(const wchar_t *name, const RECT &rect, MirlWindowBase *holder)
{
    std::vector<CarriedRow> rows;
    rows.reserve(m_Items.size());
    for (const MENU_ITEM *item : m_Items) {
        rows.push_back({item->text, item->id, CopyImage(item->image)});
    }
    // This object may be the popup itself: nothing of it is used after this line.
    FinalDestroy();
    MirlMenuWindow *popup = new (std::nothrow) MirlMenuWindow();
    if (popup == NULL) {
        for (CarriedRow &row : rows) {
            delete row.image;
        }
        return;
    }
    m_Instance = popup;
    for (CarriedRow &row : rows) {
        popup->AddItem(row.text.c_str(), row.id, row.image);
    }
    popup->Create(holder, rect, name);
    ::SetCapture(popup->m_hWnd);
}

int MirlMenuWindow::AddItem(const wchar_t *text, unsigned long id, Gdiplus::Bitmap *image)
{
    int index = 0;
    for (const MENU_ITEM *item : m_Items) {
        if (item->id == id) {
            delete image;
            return index;
        }
        ++index;
    }
    MENU_ITEM *item = new (std::nothrow) MENU_ITEM();
    if (item == NULL) {
        delete image;
        return GetItemCount();
    }
    item->image = image;
    item->text = text != NULL ? text : L"";
    item->id = id;
    item->rect = MIRL::MenuRowRect(index, m_RowHeight, 0);
    m_Items.push_back(item);
    return GetItemCount();
}

void MirlMenuWindow::ClearItems()
{
    m_HoverItem = NULL;
    for (MENU_ITEM *item : m_Items) {
        delete item->image;
        delete item;
    }
    m_Items.clear();
}

int MirlMenuWindow::GetNeededHeight() const
{
    return MIRL::MenuNeededHeight(GetItemCount(), m_RowHeight);
}

HWND MirlMenuWindow::Create(MirlWindowBase *holder, const RECT &rect, const wchar_t *name)
{
    m_Holder = holder;
    if (GetWndClassInfo().m_lpszOrigName == NULL) {
        GetWndClassInfo().m_lpszOrigName = MirlWindowBase::GetWndClassName();
    }
    ATOM atom = GetWndClassInfo().Register(&m_pfnSuperWindowProc);
    LoadAttributesFromUi(holder, name);
    if (m_UiWindow == NULL) {
        return NULL;
    }
    m_Showing = true;
    RECT place = rect;
    const wchar_t *title = m_Text.empty() ? NULL : m_Text.c_str();
    HWND owner = holder != NULL ? holder->m_hWnd : NULL;
    return ATL::CWindowImplBaseT<MirlWindowBase, ATL::CWinTraits<0x56000000, 0>>::Create(
        owner, &place, title, WS_POPUP | WS_VISIBLE, WS_EX_NOACTIVATE, static_cast<HMENU>(NULL), atom, NULL);
}

LRESULT MirlMenuWindow::OnCreate(UINT, WPARAM, LPARAM, BOOL &)
{
    LoadingSkinResource();
    SetWindowTextW(m_Text.c_str());
    MirlUI *ui = MirlUI::Instance();
    const unsigned int children = m_UiWindow->GetChildCount();
    for (unsigned int i = 0; i < children; ++i) {
        MirlUiWindow *child = m_UiWindow->GetChildByIndex(static_cast<int>(i));
        MirlUiWindow::Attribute *text = child != NULL ? child->GetAttribute(L"Text") : NULL;
        if (text == NULL) {
            continue;
        }
        MirlUiWindow::Attribute *idAttribute = child->GetAttribute(L"CommandID");
        const unsigned long id = idAttribute != NULL ? static_cast<unsigned long>(idAttribute->GetInteger()) : 0;
        MirlUiWindow::Attribute *pic = child->GetAttribute(L"Pic");
        Gdiplus::Bitmap *image = pic != NULL ? MIRL::LoadSkinBitmap(pic->GetValue()) : NULL;
        MirlUiElementText *element =
            ui != NULL ? static_cast<MirlUiElementText *>(ui->GetUiElement(text->GetValue(), UI_ELEMENT_TEXT)) : NULL;
        AddItem(element != NULL ? element->GetText() : L"", id, image);
    }
    RECT client = {};
    GetClientRect(&client);
    m_ScrollBar = ::CreateWindowExW(0, L"SCROLLBAR", NULL, WS_CHILD | SBS_VERT | SBS_RIGHTALIGN, client.right - 32,
                                    client.bottom - 32, 32, 32, m_hWnd, NULL, ATL::AtlModuleInstance(), NULL);
    if (m_AutoHeight) {
        RECT window = {};
        GetWindowRect(&window);
        m_Height = GetNeededHeight();
        SetWindowPos(NULL, window.left, window.top, window.right - window.left, m_Height,
                     SWP_NOACTIVATE | SWP_SHOWWINDOW);
    }
    SetCapture();
    m_ItemsHeight = GetNeededHeight() - MIRL::kMenuRowsTop;
    ReAdjustRect();
    if (IsWindowVisible()) {
        ::NotifyWinEvent(EVENT_SYSTEM_MENUPOPUPSTART, m_hWnd, OBJID_CLIENT, CHILDID_SELF);
    }
    return 0;
}

LRESULT MirlMenuWindow::OnDestroy(UINT, WPARAM, LPARAM, BOOL &bHandled)
{
    EndShowing();
    ClearItems();
    Base::OnDestroy(WM_DESTROY, 0, 0, bHandled);
    bHandled = FALSE;
    return 0;
}

LRESULT MirlMenuWindow::OnVScroll(UINT, WPARAM, LPARAM, BOOL &)
{
    return 0;
}

void MirlMenuWindow::ReAdjustRect()
{
    RECT work = {};
    if (!::SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0)) {
        return;
    }
    RECT window = {};
    GetWindowRect(&window);
    RECT placed = MIRL::FlipAboveTop(window, work.bottom);
    if (placed.top != window.top) {
        SetWindowPos(NULL, placed.left, placed.top, placed.right - placed.left, placed.bottom - placed.top,
                     SWP_NOACTIVATE | SWP_SHOWWINDOW);
    }
}

LRESULT MirlMenuWindow::OnSize(UINT, WPARAM, LPARAM lParam, BOOL &bHandled)
{
    const int width = LOWORD(lParam);
    int index = 0;
    for (MENU_ITEM *item : m_Items) {
        item->rect = MIRL::MenuRowRect(index++, m_RowHeight, width);
    }
    return Base::OnSize(WM_SIZE, 0, lParam, bHandled);
}

LRESULT MirlMenuWindow::OnMouseMove(UINT, WPARAM wParam, LPARAM lParam, BOOL &)
{
    DefWindowProc();
    if (::GetCapture() != m_hWnd && (wParam & MK_LBUTTON)) {
        return 0;
    }
    const POINT point = PointOf(lParam);
    POINT screen = point;
    ClientToScreen(&screen);
    const HWND under = ::WindowFromPoint(screen);
    m_MouseInside = under == NULL || under == m_hWnd;
    MENU_ITEM *hover = NULL;
    for (MENU_ITEM *item : m_Items) {
        if (::PtInRect(&item->rect, point)) {
            hover = item;
        }
    }
    if (hover != m_HoverItem) {
        m_HoverItem = hover;
        Invalidate();
    }
    return 0;
}

void MirlMenuWindow::CancelHover()
{
    m_MouseInside = false;
    m_HoverItem = NULL;
    Invalidate();
}

void MirlMenuWindow::Dismiss(bool releaseCapture)
{
    CancelHover();
    if (releaseCapture) {
        ::ReleaseCapture();
    }
    ShowWindow(SW_HIDE);
    EndShowing();
}

// The tools hear once that the popup is gone, however it went.
void MirlMenuWindow::EndShowing()
{
    if (m_Showing && m_hWnd != NULL) {
        ::NotifyWinEvent(EVENT_SYSTEM_MENUPOPUPEND, m_hWnd, OBJID_CLIENT, CHILDID_SELF);
    }
    m_Showing = false;
}

LRESULT MirlMenuWindow::OnLButtonDown(UINT, WPARAM wParam, LPARAM lParam, BOOL &)
{
    DefWindowProc();
    POINT screen = PointOf(lParam);
    ClientToScreen(&screen);
    const HWND under = ::WindowFromPoint(screen);
    if (under == NULL || under == m_hWnd) {
        return 0;
    }
    Dismiss(true);
    // The press goes on to what was pressed, with the popup's client coordinates as they came.
    ::SendMessageW(under, WM_LBUTTONDOWN, wParam, lParam);
    return 0;
}

LRESULT MirlMenuWindow::OnLButtonUp(UINT, WPARAM, LPARAM, BOOL &)
{
    DefWindowProc();
    if (!m_MouseInside) {
        return 0;
    }
    if (m_HoverItem != NULL && m_Holder != NULL && ::IsWindow(m_Holder->m_hWnd)) {
        const HWND self = m_hWnd;
        const WPARAM id = static_cast<WPARAM>(LOWORD(m_HoverItem->id));
        ::SendMessageW(m_Holder->m_hWnd, WM_COMMAND, id, reinterpret_cast<LPARAM>(self));
        // The holder may have ended or replaced the popup in its handler: this window is then
        // gone, and the capture, if any, is another popup's.
        if (!::IsWindow(self)) {
            return 0;
        }
    }
    Dismiss(true);
    return 0;
}

LRESULT MirlMenuWindow::OnKillFocus(UINT, WPARAM, LPARAM, BOOL &)
{
    DefWindowProc();
    Dismiss(false);
    return 0;
}

LRESULT MirlMenuWindow::OnActivate(UINT, WPARAM wParam, LPARAM, BOOL &)
{
    DefWindowProc();
    if (LOWORD(wParam) == WA_INACTIVE) {
        Dismiss(false);
    }
    return 0;
}

LRESULT MirlMenuWindow::OnEnable(UINT, WPARAM wParam, LPARAM, BOOL &)
{
    DefWindowProc();
    if (wParam == 0) {
        Dismiss(false);
    }
    return 0;
}

LRESULT MirlMenuWindow::OnCancelMode(UINT, WPARAM, LPARAM, BOOL &)
{
    DefWindowProc();
    Dismiss(false);
    return 0;
}

LRESULT MirlMenuWindow::OnCaptureChanged(UINT, WPARAM, LPARAM lParam, BOOL &bHandled)
{
    // Taking the capture the popup already holds is no loss (Wine still reports it).
    if (m_MouseInside && reinterpret_cast<HWND>(lParam) != m_hWnd) {
        ::ReleaseCapture();
        ShowWindow(SW_HIDE);
        EndShowing();
    }
    bHandled = FALSE;
    return 0;
}

void MirlMenuWindow::DoPaint(WTL::CDCHandle dc)
{
    RECT client = {};
    GetClientRect(&client);
    Gdiplus::Graphics graphics(dc.m_hDC);
    if (m_BkBrush != NULL) {
        graphics.FillRectangle(m_BkBrush, 0, 0, client.right, client.bottom);
    }
    Gdiplus::StringFormat format;
    format.SetLineAlignment(Gdiplus::StringAlignmentCenter);
    format.SetTrimming(Gdiplus::StringTrimmingEllipsisCharacter);
    format.SetFormatFlags(Gdiplus::StringFormatFlagsNoWrap);
    // Texts start 2 pixels from the top while rows start at 4: each text sits 2 pixels high.
    Gdiplus::RectF textRect(0.0f, 2.0f, 0.0f, static_cast<Gdiplus::REAL>(m_RowHeight));
    for (const MENU_ITEM *item : m_Items) {
        if (item == m_HoverItem) {
            Gdiplus::Rect band(item->rect.left, item->rect.top, item->rect.right - item->rect.left,
                               item->rect.bottom - item->rect.top);
            Gdiplus::LinearGradientBrush gradient(band, Gdiplus::Color(0x50FFFFFF), Gdiplus::Color(0xFF9ED4E0),
                                                  Gdiplus::LinearGradientModeVertical);
            graphics.FillRectangle(&gradient, band);
        }
        int x = 4;
        if (item->image != NULL) {
            const unsigned int height = item->image->GetHeight();
            // Halved as an unsigned number: an image taller than its row lands far below and
            // is not seen.
            const unsigned long long offset = (static_cast<unsigned int>(m_RowHeight) - height) >> 1;
            const long long y = item->rect.top + static_cast<long long>(offset);
            if (y < client.bottom) {
                graphics.DrawImage(item->image, 4, static_cast<INT>(y), static_cast<INT>(item->image->GetWidth()),
                                   static_cast<INT>(height));
            }
            x = static_cast<int>(item->image->GetWidth()) + 8;
        }
        textRect.X = static_cast<Gdiplus::REAL>(x);
        textRect.Width = static_cast<Gdiplus::REAL>(client.right - x - 4);
        if (!item->text.empty() && m_TxFont != NULL && m_TxBrush != NULL) {
            graphics.DrawString(item->text.c_str(), -1, m_TxFont, textRect, &format, m_TxBrush);
        }
        textRect.Y += static_cast<Gdiplus::REAL>(m_RowHeight);
    }
    Gdiplus::Pen frame(Gdiplus::Color(0xFFA4A4A4), 1.0f);
    graphics.DrawRectangle(&frame, 0, 0, client.right - 1, client.bottom - 1);
}
