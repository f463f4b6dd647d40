// The folder stack: a bar and a panel for each template child, panels in pixels or in percent
// of the room the bars leave, a system scroll bar when the stack is higher than the control.
#include "MirlContainer.h"

#include "MirlContainerLogic.h"
#include "MirlImage.h"
#include "MirlTabImages.h"

#include <new>

namespace {

MIRL::MirlTabImages &BarImages()
{
    static MIRL::MirlTabImages images(L"TabbarButtonActivePng", L"TabbarButtonMenuSelectedPng",
                                      L"TabbarButtonMouseOnPng", L"TabbarArrow");
    return images;
}

MirlOutlookBar *g_CurrentBar = NULL;

const int kScrollBarId = 200;
const int kBarIdOffset = 500;

} // namespace

// ---------------------------------------------------------------------------------------------
// MIRL::MirlDeferBatch

namespace MIRL {

MirlDeferBatch::MirlDeferBatch(int count) : m_Batch(::BeginDeferWindowPos(count > 0 ? count : 1)), m_Direct(0) {}

MirlDeferBatch::~MirlDeferBatch()
{
    End();
}

void MirlDeferBatch::Move(HWND window, HWND insertAfter, int x, int y, int width, int height, UINT flags)
{
    if (window == NULL || !::IsWindow(window)) {
        return;
    }
    const PendingMove move = {window, insertAfter, x, y, width, height, flags};
    if (m_Batch != NULL) {
        HDWP next = ::DeferWindowPos(m_Batch, window, insertAfter, x, y, width, height, flags);
        if (next != NULL) {
            m_Batch = next;
            m_Pending.push_back(move);
            return;
        }
        // A failed DeferWindowPos frees the batch with every move it held: those are made
        // again one by one, and so is each move after them.
        m_Batch = NULL;
        for (const PendingMove &pending : m_Pending) {
            MoveNow(pending);
        }
        m_Pending.clear();
    }
    MoveNow(move);
}

void MirlDeferBatch::MoveNow(const PendingMove &move)
{
    ::SetWindowPos(move.window, move.insertAfter, move.x, move.y, move.width, move.height, move.flags);
    ++m_Direct;
}

bool MirlDeferBatch::End()
{
    if (m_Batch != NULL) {
        ::EndDeferWindowPos(m_Batch);
        m_Batch = NULL;
        m_Pending.clear();
    }
    return m_Direct == 0;
}

} // namespace MIRL

// ---------------------------------------------------------------------------------------------
// MirlOutlookBar

MirlOutlookBar::MirlOutlookBar() : m_pBarIcon(NULL), m_hMemDC(NULL), m_hMemBitmap(NULL), m_hMemOldBitmap(NULL) {}

MirlOutlookBar::~MirlOutlookBar()
{
    ReleaseTab();
    delete m_pBarIcon;
    m_pBarIcon = NULL;
}

HWND MirlOutlookBar::Create(MirlWindowBase *parent, HWND hWndParent, ATL::_U_RECT rect, const wchar_t *name,
                            unsigned long style, unsigned long exStyle, ATL::_U_MENUorID menuOrID, void *createParam)
{
    return MirlTabButtonImpl<MirlOutlookBar>::Create(parent, hWndParent, rect, name, style, exStyle, menuOrID,
                                                     createParam);
}

void MirlOutlookBar::LoadBarIcon()
{
    delete m_pBarIcon;
    m_pBarIcon = NULL;
    MirlUiWindow::Attribute *picture = m_UiWindow != NULL ? m_UiWindow->GetAttribute(L"PicBar") : NULL;
    if (picture != NULL) {
        m_pBarIcon = MIRL::LoadSkinBitmap(picture->GetValue());
    }
}

void MirlOutlookBar::ReleaseTab()
{
    if (g_CurrentBar == this) {
        g_CurrentBar = NULL;
    }
    MIRL::ReleaseOffscreen(m_hMemDC, m_hMemBitmap, m_hMemOldBitmap);
}

void MirlOutlookBar::OnTabSize()
{
    m_bTextMeasured = false;
    // Each draw makes its picture at the size of the moment.
    MIRL::ReleaseOffscreen(m_hMemDC, m_hMemBitmap, m_hMemOldBitmap);
}

void MirlOutlookBar::OnTabLButtonDown(POINT)
{
    const HWND self = m_hWnd;
    DefWindowProc();
    if (m_fAutoRepeat && ::IsWindow(self)) {
        RepeatWhileHeld();
    }
}

LRESULT MirlOutlookBar::OnTabClicked(UINT code)
{
    if (code != BN_CLICKED) {
        SetMsgHandled(FALSE);
        return 0;
    }
    if (m_fCheckStyle) {
        m_fSelected = m_fSelected ? 0 : 1;
        InvalidateRect(NULL, TRUE);
    }
    if (m_bMenuZone) {
        return 0;
    }
    if (g_CurrentBar != this) {
        if (g_CurrentBar != NULL) {
            g_CurrentBar->SetSelected(false);
        }
        g_CurrentBar = this;
        SetSelected(true);
        MIRL::NotifyAccessibleEvent(m_hWnd, EVENT_OBJECT_SELECTION);
    }
    ::SendMessageW(::GetParent(m_hWnd), WM_MIRL_FOLDER_CHANGED, 0, reinterpret_cast<LPARAM>(this));
    return 0;
}

void MirlOutlookBar::DrawFace(HDC dc, const RECT &item)
{
    if (m_Transparent) {
        PaintParentBkGround(dc);
    }
    Gdiplus::Graphics graphics(dc);
    if (!m_Transparent && m_BkBrush != NULL) {
        graphics.FillRectangle(m_BkBrush, static_cast<INT>(item.left), static_cast<INT>(item.top),
                               static_cast<INT>(item.right - item.left), static_cast<INT>(item.bottom - item.top));
    }
    const MIRL::MirlTabFace face =
        MIRL::ChooseBarFace(m_fMouseOver != 0, m_bDrawHover, m_bMenuZone, g_CurrentBar == this);
    MIRL::PaintTabFace(graphics, BarImages().Face(face), BarImages().Brush(face), BarImages().Arrow(), item);
    if (m_pBarIcon != NULL) {
        const int height = static_cast<int>(m_pBarIcon->GetHeight());
        graphics.DrawImage(m_pBarIcon, 4.0f, static_cast<float>(MIRL::BarIconTop(item, height)),
                           static_cast<float>(m_pBarIcon->GetWidth()), static_cast<float>(height));
    }
    if (MeasureCaption(graphics) && m_TxBrush != NULL) {
        float x = 0.0f;
        float y = 0.0f;
        MIRL::BarTextOrigin(item, m_fTextWidth, m_fTextHeight, &x, &y);
        graphics.DrawString(m_Text.c_str(), -1, m_TxFont, Gdiplus::PointF(x, y), m_TxBrush);
    }
}

void MirlOutlookBar::DrawTab(LPDRAWITEMSTRUCT item)
{
    if (item == NULL || item->hDC == NULL) {
        return;
    }
    TakeDrawState(item);
    RECT client = {};
    GetClientRect(&client);
    // The picture lives for one draw: a bar keeps no GDI objects between paints, so a bar that
    // is sized or scrolled into view costs nothing until it is drawn.
    if (client.right > 0 && client.bottom > 0) {
        m_hMemBitmap = ::CreateCompatibleBitmap(item->hDC, client.right, client.bottom);
        m_hMemDC = ::CreateCompatibleDC(item->hDC);
        if (m_hMemDC == NULL || m_hMemBitmap == NULL) {
            MIRL::ReleaseOffscreen(m_hMemDC, m_hMemBitmap, m_hMemOldBitmap);
        } else {
            m_hMemOldBitmap = static_cast<HBITMAP>(::SelectObject(m_hMemDC, m_hMemBitmap));
        }
    }
    if (m_hMemDC == NULL) {
        // No picture to draw into: straight onto the item's context.
        DrawFace(item->hDC, item->rcItem);
        return;
    }
    DrawFace(m_hMemDC, item->rcItem);
    ::BitBlt(item->hDC, 0, 0, client.right, client.bottom, m_hMemDC, 0, 0, SRCCOPY);
    MIRL::ReleaseOffscreen(m_hMemDC, m_hMemBitmap, m_hMemOldBitmap);
}

// ---------------------------------------------------------------------------------------------
// MIRLOutlookCtrl

MIRLOutlookCtrl::MIRLOutlookCtrl()
    : m_nBarHeight(32), m_nBarGap(2), m_hScrollBar(NULL), m_HoldsBarImages(false), m_OwnsFolders(true)
{
}

MIRLOutlookCtrl::~MIRLOutlookCtrl()
{
    ReleaseBarImages();
    FreeFolders();
}

void MIRLOutlookCtrl::FreeFolders()
{
    if (m_OwnsFolders) {
        for (OUTLOOK_FOLDER *folder : m_vFolders) {
            delete folder;
        }
    }
    m_vFolders.clear();
}

HWND MIRLOutlookCtrl::Create(MirlWindowBase *parent, HWND hWndParent, ATL::_U_RECT rect, const wchar_t *name,
                             unsigned long style, unsigned long exStyle, ATL::_U_MENUorID menuOrID, void *createParam)
{
    return MirlWindowImpl<MIRLOutlookCtrl>::Create(parent, hWndParent, rect, name, style, exStyle, menuOrID,
                                                   createParam);
}

BOOL MIRLOutlookCtrl::SubclassWindow(HWND hWnd)
{
    return MirlWindowImpl<MIRLOutlookCtrl>::SubclassWindow(hWnd);
}

BOOL MIRLOutlookCtrl::SubclassWindow(MirlWindowBase *source, MirlWindowBase *parent)
{
    MIRLOutlookCtrl *outlook = dynamic_cast<MIRLOutlookCtrl *>(source);
    if (outlook != NULL && outlook != this) {
        FreeFolders();
        // The records move over: only one of the two objects frees them.
        m_vFolders = outlook->m_vFolders;
        m_OwnsFolders = outlook->m_OwnsFolders;
        outlook->m_OwnsFolders = false;
        m_hScrollBar = outlook->m_hScrollBar;
    }
    return MirlWindowImpl<MIRLOutlookCtrl>::SubclassWindow(source, parent);
}

int MIRLOutlookCtrl::AddBar(const MirlUiWindow *)
{
    return 0;
}

void MIRLOutlookCtrl::ReleaseBarImages()
{
    if (m_HoldsBarImages) {
        m_HoldsBarImages = false;
        BarImages().Release();
    }
}

LRESULT MIRLOutlookCtrl::OnSubclassWindow(UINT, WPARAM, LPARAM, BOOL &)
{
    return 0;
}

LRESULT MIRLOutlookCtrl::OnDestroy(UINT, WPARAM, LPARAM, BOOL &bHandled)
{
    ReleaseBarImages();
    bHandled = FALSE;
    return 0;
}

LRESULT MIRLOutlookCtrl::OnCreate(UINT, WPARAM, LPARAM, BOOL &)
{
    LoadingSkinResource();
    BarImages().Acquire();
    if (m_HoldsBarImages) {
        BarImages().Release();
    }
    m_HoldsBarImages = true;

    RECT client = {};
    GetClientRect(&client);
    const unsigned int count = m_UiWindow != NULL ? m_UiWindow->GetChildCount() : 0;
    for (unsigned int i = 0; i < count && m_UiWindow != NULL; ++i) {
        MirlUiWindow *ui = m_UiWindow->GetChildByIndex(static_cast<int>(i));
        if (ui == NULL) {
            continue;
        }
        MirlUiWindow::Attribute *commandId = ui->GetAttribute(L"CommandID");
        const int id = commandId != NULL ? commandId->GetInteger() : 0;
        MirlOutlookBar *bar = new (std::nothrow) MirlOutlookBar();
        OUTLOOK_FOLDER *folder = new (std::nothrow) OUTLOOK_FOLDER();
        if (bar == NULL || folder == NULL) {
            delete bar;
            delete folder;
            continue;
        }
        RECT place = {0, 0, client.right, m_nBarHeight};
        bar->Create(this, m_hWnd, &place, ui->GetName(), 0x50000000, 0,
                    static_cast<UINT>(static_cast<unsigned int>(id) + kBarIdOffset));
        folder->pBar = bar;
        folder->bVisible = true;
        folder->nHeight = 0;
        folder->pPanel = MirlWindowBase::CreateMirlWindow(this, ui);
        if (folder->pPanel != NULL && folder->pPanel->m_hWnd != NULL) {
            ::ShowWindow(folder->pPanel->m_hWnd, SW_HIDE);
        }
        m_vFolders.push_back(folder);
        if (folder->pPanel != NULL) {
            m_Children.push_back(folder->pPanel);
        }
        m_Children.push_back(bar);
    }

    // Without folders there is no current bar to make.
    if (!m_vFolders.empty()) {
        g_CurrentBar = m_vFolders.front()->pBar;
        g_CurrentBar->SetSelected(true);
    }

    m_hScrollBar = ::CreateWindowExW(0, L"SCROLLBAR", NULL, 0x50000005, client.right - 32, client.bottom - 32, 32, 32,
                                     m_hWnd, reinterpret_cast<HMENU>(static_cast<UINT_PTR>(kScrollBarId)),
                                     ATL::AtlModuleInstance(), NULL);
    if (m_hScrollBar != NULL) {
        ::EnableWindow(m_hScrollBar, FALSE);
    }
    ArrangeFolders();
    return 0;
}

LRESULT MIRLOutlookCtrl::OnSize(UINT, WPARAM, LPARAM, BOOL &)
{
    DeleteAllMemory();
    ArrangeFolders();
    return 0;
}

void MIRLOutlookCtrl::ArrangeFolders()
{
    if (m_hScrollBar != NULL) {
        ::EnableWindow(m_hScrollBar, FALSE);
    }
    RECT bar = {};
    if (m_hScrollBar != NULL) {
        ::GetWindowRect(m_hScrollBar, &bar);
    }
    const int barWidth = bar.right - bar.left;
    RECT client = {};
    GetClientRect(&client);
    const int clientHeight = client.bottom - client.top;
    client.right -= barWidth;
    if (m_vFolders.empty()) {
        return;
    }

    std::vector<MIRL::MirlFolderSpec> specs;
    for (const OUTLOOK_FOLDER *folder : m_vFolders) {
        MirlWindowBase *panel = folder->pPanel;
        MIRL::MirlFolderSpec spec = {0, false, -1, 6900, folder->bVisible};
        if (panel != NULL) {
            spec.height = panel->GetHeight();
            spec.percent = (panel->GetAlign() & ALIGN_PARENT_HEIGHT) != 0;
            spec.minHeight = panel->GetMinHeight();
            spec.maxHeight = panel->GetMaxHeight();
        }
        specs.push_back(spec);
    }
    const MIRL::MirlFolderStack stack = MIRL::StackFolders(clientHeight, m_nBarHeight, m_nBarGap, specs);
    for (size_t i = 0; i < m_vFolders.size(); ++i) {
        m_vFolders[i]->nHeight = stack.heights[i];
    }

    if (m_hScrollBar != NULL) {
        ::MoveWindow(m_hScrollBar, client.right, 0, barWidth, clientHeight, TRUE);
        if (stack.setsRange) {
            SCROLLINFO info = {};
            info.cbSize = sizeof(info);
            info.fMask = SIF_RANGE | SIF_POS;
            info.nMin = 0;
            info.nMax = stack.rangeMax;
            info.nPage = static_cast<UINT>(stack.page);
            info.nPos = ::GetScrollPos(m_hScrollBar, SB_CTL);
            ::SetScrollInfo(m_hScrollBar, SB_CTL, &info, TRUE);
        }
    }
    // The stack starts at the top again, whatever position the bar shows.
    PlaceFolderWindows(client.top, client);
}

void MIRLOutlookCtrl::ScrollFolders()
{
    if (m_vFolders.empty()) {
        return;
    }
    RECT bar = {};
    if (m_hScrollBar != NULL) {
        ::GetWindowRect(m_hScrollBar, &bar);
    }
    RECT client = {};
    GetClientRect(&client);
    client.right -= bar.right - bar.left;
    const int position = m_hScrollBar != NULL ? ::GetScrollPos(m_hScrollBar, SB_CTL) : 0;
    PlaceFolderWindows(client.top - position, client);
}

void MIRLOutlookCtrl::PlaceFolderWindows(int top, const RECT &client)
{
    std::vector<int> heights;
    std::vector<bool> visible;
    for (const OUTLOOK_FOLDER *folder : m_vFolders) {
        heights.push_back(folder->nHeight);
        visible.push_back(folder->bVisible);
    }
    const std::vector<MIRL::MirlFolderPlace> places = MIRL::PlaceFolders(top, m_nBarHeight, m_nBarGap, heights, visible);
    const int width = std::max(0, static_cast<int>(client.right - client.left));
    {
        // One batch for the whole stack, sized for every move it makes.
        MIRL::MirlDeferBatch batch(MIRL::FolderMoveCount(m_vFolders.size()));
        HWND insertAfter = NULL;
        for (size_t i = 0; i < m_vFolders.size(); ++i) {
            const OUTLOOK_FOLDER *folder = m_vFolders[i];
            HWND barWindow = folder->pBar != NULL ? folder->pBar->m_hWnd : NULL;
            batch.Move(barWindow, insertAfter, client.left, places[i].barTop, width, m_nBarHeight, SWP_SHOWWINDOW);
            if (barWindow != NULL) {
                insertAfter = barWindow;
            }
            HWND panelWindow = folder->pPanel != NULL ? folder->pPanel->m_hWnd : NULL;
            if (folder->bVisible) {
                // A negative height (a minimum below zero) is no height.
                batch.Move(panelWindow, insertAfter, client.left, places[i].panelTop, width,
                           std::max(0, folder->nHeight), SWP_SHOWWINDOW);
            } else {
                batch.Move(panelWindow, NULL, 0, 0, 0, 0,
                           SWP_HIDEWINDOW | SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
            }
        }
        batch.End();
    }
    InvalidateRect(&client, TRUE);
}

LRESULT MIRLOutlookCtrl::OnFolderChanged(UINT, WPARAM wParam, LPARAM lParam, BOOL &)
{
    if (wParam == 0) {
        ArrangeFolders();
        return 0;
    }
    int found = -1;
    for (size_t i = 0; i < m_vFolders.size(); ++i) {
        if (reinterpret_cast<LPARAM>(m_vFolders[i]->pBar) == lParam) {
            found = static_cast<int>(i);
        }
    }
    if (found < 0) {
        return 0;
    }
    const int next = MIRL::NextFolderIndex(found, static_cast<int>(m_vFolders.size()));
    MirlOutlookBar *bar = m_vFolders[static_cast<size_t>(next)]->pBar;
    if (g_CurrentBar != NULL) {
        g_CurrentBar->SetSelected(false);
    }
    g_CurrentBar = bar;
    if (bar != NULL) {
        bar->SetSelected(true);
        MIRL::NotifyAccessibleEvent(bar->m_hWnd, EVENT_OBJECT_SELECTION);
    }
    ArrangeFolders();
    return 0;
}

LRESULT MIRLOutlookCtrl::OnVScroll(UINT, WPARAM wParam, LPARAM lParam, BOOL &bHandled)
{
    if (m_hScrollBar == NULL || reinterpret_cast<HWND>(lParam) != m_hScrollBar) {
        bHandled = FALSE;
        return 0;
    }
    SCROLLINFO info = {};
    info.cbSize = sizeof(info);
    info.fMask = SIF_RANGE | SIF_POS;
    ::GetScrollInfo(m_hScrollBar, SB_CTL, &info);
    const int position =
        MIRL::ScrollFoldersStep(LOWORD(wParam), HIWORD(wParam), info.nPos, info.nMin, info.nMax);
    if (position != info.nPos) {
        ::SetScrollPos(m_hScrollBar, SB_CTL, position, TRUE);
        ScrollFolders();
    }
    SetFocus();
    return 0;
}

LRESULT MIRLOutlookCtrl::OnMouseWheel(UINT, WPARAM wParam, LPARAM, BOOL &)
{
    if (m_hScrollBar == NULL || ::IsWindowVisible(m_hScrollBar) != 1) {
        return 0;
    }
    const int delta = GET_WHEEL_DELTA_WPARAM(wParam);
    if (delta == 0) {
        return 0;
    }
    int minimum = 0;
    int maximum = 0;
    ::GetScrollRange(m_hScrollBar, SB_CTL, &minimum, &maximum);
    const int position = MIRL::WheelStep(delta, ::GetScrollPos(m_hScrollBar, SB_CTL), minimum, maximum);
    ::SetScrollPos(m_hScrollBar, SB_CTL, position, TRUE);
    ScrollFolders();
    return 0;
}

LRESULT MIRLOutlookCtrl::OnLButtonDown(UINT, WPARAM, LPARAM, BOOL &)
{
    return DefWindowProc();
}

LRESULT MIRLOutlookCtrl::OnMouseMove(UINT, WPARAM, LPARAM, BOOL &)
{
    return DefWindowProc();
}

LRESULT MIRLOutlookCtrl::OnMouseUp(UINT, WPARAM, LPARAM, BOOL &)
{
    return DefWindowProc();
}

void MIRLOutlookCtrl::DoPaint(WTL::CDCHandle dc)
{
    RECT client = {};
    GetClientRect(&client);
    if (m_Transparent) {
        PaintParentBkGround(dc.m_hDC);
    } else if (m_BkBrush != NULL) {
        Gdiplus::Graphics graphics(dc.m_hDC);
        graphics.FillRectangle(m_BkBrush, 0, 0, client.right, client.bottom);
    }
}

MirlOutlookBar *MIRLOutlookCtrl::GetCurrentBar()
{
    return g_CurrentBar;
}

void MIRLOutlookCtrl::SetCurrentBar(MirlOutlookBar *bar)
{
    g_CurrentBar = bar;
}

Gdiplus::Bitmap *MIRLOutlookCtrl::GetBarImage(int face)
{
    return face == 0 ? BarImages().Arrow() : BarImages().Face(static_cast<MIRL::MirlTabFace>(face));
}

int MIRLOutlookCtrl::GetBarImagesRef()
{
    return BarImages().GetRef();
}
