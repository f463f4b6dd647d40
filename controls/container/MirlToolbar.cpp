// The tab strip: tabs from "TABBUTTON" template children, other children from the factory, one
// current tab in the process and one set of tab images for all toolbars.
#include "MirlContainer.h"

#include "MirlButtonLogic.h"
#include "MirlContainerLogic.h"
#include "MirlImage.h"
#include "MirlTabImages.h"

#include <cwchar>
#include <new>

namespace {

MIRL::MirlTabImages &TabImages()
{
    static MIRL::MirlTabImages images(L"TabbarButtonActive", L"TabbarButtonMenuSelected", L"TabbarButtonMouseOn",
                                      L"TabbarArrow");
    return images;
}

MirlTabButton *g_CurrentTab = NULL;

// The repeat loop of a held tab or bar: the release is a WM_LBUTTONUP taken off the queue.
class TabRepeat : public MIRL::MirlRepeatHooks {
public:
    TabRepeat(HWND button, DWORD delay)
        : m_Button(button), m_Parent(::GetParent(button)), m_Delay(delay),
          m_Id(static_cast<WORD>(::GetDlgCtrlID(button)))
    {
    }
    bool Released() override
    {
        MSG msg;
        return !::IsWindow(m_Button) || ::PeekMessageW(&msg, m_Button, WM_LBUTTONUP, WM_LBUTTONUP, PM_REMOVE);
    }
    void Send() override
    {
        ::SendMessageW(m_Parent, WM_COMMAND, MAKEWPARAM(m_Id, 0), reinterpret_cast<LPARAM>(m_Button));
    }
    void Wait() override { ::Sleep(m_Delay); }

private:
    HWND m_Button;
    HWND m_Parent;
    DWORD m_Delay;
    WORD m_Id;
};

bool IsTabClass(const wchar_t *name)
{
    return name != NULL && _wcsicmp(name, L"TABBUTTON") == 0;
}

} // namespace

namespace MIRL {

void RunTabRepeat(HWND button, unsigned int delay)
{
    ::SetCapture(button);
    TabRepeat repeat(button, delay);
    RunRepeatLoop(repeat);
    if (!::IsWindow(button)) {
        return;
    }
    ::ReleaseCapture();
    ::SendMessageW(button, WM_LBUTTONUP, 0, 0);
    if (!::IsWindow(button)) {
        return;
    }
    POINT cursor = {};
    ::GetCursorPos(&cursor);
    ::ScreenToClient(button, &cursor);
    ::SendMessageW(button, WM_MOUSEMOVE, 0, MAKELPARAM(cursor.x, cursor.y));
}

} // namespace MIRL

// ---------------------------------------------------------------------------------------------
// MirlTabButton

MirlTabButton::MirlTabButton() {}

MirlTabButton::~MirlTabButton()
{
    ReleaseTab();
}

HWND MirlTabButton::Create(MirlWindowBase *parent, HWND hWndParent, ATL::_U_RECT rect, const wchar_t *name,
                           unsigned long style, unsigned long exStyle, ATL::_U_MENUorID menuOrID, void *createParam)
{
    return MirlTabButtonImpl<MirlTabButton>::Create(parent, hWndParent, rect, name, style, exStyle, menuOrID,
                                                    createParam);
}

void MirlTabButton::ReleaseTab()
{
    // The current tab never outlives its window: a later draw or press must not reach it.
    if (g_CurrentTab == this) {
        g_CurrentTab = NULL;
    }
}

void MirlTabButton::OnTabLButtonDown(POINT)
{
    const HWND self = m_hWnd;
    DefWindowProc();
    if (!::IsWindow(self)) {
        return;
    }
    if (m_fAutoRepeat) {
        RepeatWhileHeld();
        if (!::IsWindow(self)) {
            return;
        }
    }
    if (g_CurrentTab != this && !m_bMenuZone) {
        if (g_CurrentTab != NULL) {
            g_CurrentTab->SetSelected(false);
        }
        g_CurrentTab = this;
        SetSelected(true);
        MIRL::NotifyAccessibleEvent(m_hWnd, EVENT_OBJECT_SELECTION);
    }
}

LRESULT MirlTabButton::OnTabClicked(UINT code)
{
    if (code != BN_CLICKED || !m_fCheckStyle) {
        SetMsgHandled(FALSE);
        return 0;
    }
    m_fSelected = m_fSelected ? 0 : 1;
    InvalidateRect(NULL, TRUE);
    return 0;
}

void MirlTabButton::DrawTab(LPDRAWITEMSTRUCT item)
{
    if (item == NULL || item->hDC == NULL) {
        return;
    }
    TakeDrawState(item);
    if (m_Transparent) {
        PaintParentBkGround(item->hDC);
    }
    Gdiplus::Graphics graphics(item->hDC);
    if (!m_Transparent && m_BkBrush != NULL) {
        RECT client = {};
        GetClientRect(&client);
        graphics.FillRectangle(m_BkBrush, 0, 0, client.right, client.bottom);
    }
    const MIRL::MirlTabFace face = MIRL::ChooseTabFace(m_fMouseOver != 0, m_bDrawHover, m_bMenuZone, g_CurrentTab == this);
    MIRL::PaintTabFace(graphics, TabImages().Face(face), TabImages().Brush(face), TabImages().Arrow(), item->rcItem);
    if (MeasureCaption(graphics) && m_TxBrush != NULL) {
        float x = 0.0f;
        float y = 0.0f;
        MIRL::TabTextOrigin(item->rcItem, m_fTextWidth, m_fTextHeight, &x, &y);
        graphics.DrawString(m_Text.c_str(), -1, m_TxFont, Gdiplus::PointF(x, y), m_TxBrush);
    }
}

// ---------------------------------------------------------------------------------------------
// MirlToolbar

MirlToolbar::MirlToolbar()
    : m_pBkBrush(NULL), m_pBarLeft(MIRL::LoadSkinBitmap(L"BarLeft")), m_pBarRight(MIRL::LoadSkinBitmap(L"BarRight")),
      m_pBarXScale(MIRL::LoadSkinBitmap(L"BarXScale")), m_HoldsTabImages(false)
{
}

MirlToolbar::~MirlToolbar()
{
    // A toolbar whose window never saw WM_DESTROY still lets go of the tab images.
    ReleaseTabImages();
    if (!m_IsCopy) {
        delete m_pBkBrush;
    }
    m_pBkBrush = NULL;
    delete m_pBarLeft;
    delete m_pBarRight;
    delete m_pBarXScale;
    // The tabs are deleted with the children by the window base.
}

HWND MirlToolbar::Create(MirlWindowBase *parent, HWND hWndParent, ATL::_U_RECT rect, const wchar_t *name,
                         unsigned long style, unsigned long exStyle, ATL::_U_MENUorID menuOrID, void *createParam)
{
    return MirlWindowImpl<MirlToolbar>::Create(parent, hWndParent, rect, name, style, exStyle, menuOrID, createParam);
}

BOOL MirlToolbar::SubclassWindow(HWND hWnd)
{
    return MirlWindowImpl<MirlToolbar>::SubclassWindow(hWnd);
}

BOOL MirlToolbar::SubclassWindow(MirlWindowBase *source, MirlWindowBase *parent)
{
    if (!MirlWindowImpl<MirlToolbar>::SubclassWindow(source, parent)) {
        return 0;
    }
    // The brush moves over: only one of the two objects may delete it.
    MirlToolbar *toolbar = dynamic_cast<MirlToolbar *>(source);
    if (toolbar != NULL && toolbar != this) {
        if (!m_IsCopy) {
            delete m_pBkBrush;
        }
        m_pBkBrush = toolbar->m_pBkBrush;
        toolbar->m_pBkBrush = NULL;
    }
    return 1;
}

void MirlToolbar::ReleaseTabImages()
{
    if (m_HoldsTabImages) {
        m_HoldsTabImages = false;
        TabImages().Release();
    }
}

LRESULT MirlToolbar::OnDestroy(UINT, WPARAM, LPARAM, BOOL &bHandled)
{
    ReleaseTabImages();
    bHandled = FALSE;
    return 0;
}

LRESULT MirlToolbar::OnCreate(UINT, WPARAM, LPARAM, BOOL &)
{
    LoadingSkinResource();
    if (m_UiWindow != NULL && m_Text.empty()) {
        SetWindowTextW(m_UiWindow->GetName());
    } else {
        SetWindowTextW(m_Text.c_str());
    }

    Gdiplus::Bitmap *background = MIRL::LoadElementBitmap(m_Pic);
    if (background != NULL) {
        // Kept for an application's subclass; the strip itself is drawn from the bar images.
        Gdiplus::TextureBrush *brush = new Gdiplus::TextureBrush(
            background, Gdiplus::WrapModeTile,
            Gdiplus::RectF(4.0f, 0.0f, 1.0f, static_cast<float>(background->GetHeight())));
        if (brush->GetLastStatus() == Gdiplus::Ok) {
            delete m_pBkBrush;
            m_pBkBrush = brush;
        } else {
            delete brush;
        }
        delete background;
    }

    if (!m_HoldsTabImages) {
        TabImages().Acquire();
        m_HoldsTabImages = true;
    } else {
        // A second WM_CREATE loads the images anew without counting this toolbar twice.
        TabImages().Acquire();
        TabImages().Release();
    }

    std::vector<MIRL::MirlToolbarChild> made;
    const unsigned int count = m_UiWindow != NULL ? m_UiWindow->GetChildCount() : 0;
    for (unsigned int i = 0; i < count && m_UiWindow != NULL; ++i) {
        MirlUiWindow *ui = m_UiWindow->GetChildByIndex(static_cast<int>(i));
        MirlWindowBase *child = MirlWindowBase::CreateMirlWindow(this, ui);
        if (child != NULL) {
            m_Children.push_back(child);
            made.push_back(MIRL::ToolbarChildWindow);
            continue;
        }
        MirlUiWindow::Attribute *windowClass = ui != NULL ? ui->GetAttribute(L"Class") : NULL;
        if (windowClass == NULL || !IsTabClass(windowClass->GetValue())) {
            made.push_back(MIRL::ToolbarChildNone);
            continue;
        }
        MirlTabButton *tab = new (std::nothrow) MirlTabButton();
        if (tab == NULL) {
            made.push_back(MIRL::ToolbarChildNone);
            continue;
        }
        tab->Create(this, m_hWnd, static_cast<LPRECT>(NULL), ui->GetName());
        m_Children.push_back(tab);
        made.push_back(MIRL::ToolbarChildTab);
    }

    // The first tab's template index taken on the child list; an entry that isn't a tab, or
    // none, leaves the current tab as it was.
    const int entry = MIRL::FirstTabEntry(made);
    MirlTabButton *first = entry >= 0 ? dynamic_cast<MirlTabButton *>(GetChildByIndex(static_cast<unsigned int>(entry))) : NULL;
    if (first != NULL) {
        g_CurrentTab = first;
        first->SetSelected(true);
    }
    return 0;
}

int MirlToolbar::SelectTab(int index)
{
    std::vector<bool> isTab;
    for (MirlWindowBase *child : m_Children) {
        isTab.push_back(child != NULL && child->m_hWnd != NULL && dynamic_cast<MirlTabButton *>(child) != NULL &&
                        IsTabClass(child->GetClass()));
    }
    const int entry = MIRL::TabChildIndex(isTab, index);
    if (entry < 0) {
        return 0;
    }
    g_CurrentTab = static_cast<MirlTabButton *>(m_Children[static_cast<size_t>(entry)]);
    MIRL::NotifyAccessibleEvent(g_CurrentTab->m_hWnd, EVENT_OBJECT_SELECTION);
    // The strip alone, whatever the toolbar's clipping style: a tab shows its new face when it
    // is next painted.
    ::RedrawWindow(m_hWnd, NULL, NULL, RDW_INVALIDATE | RDW_ERASE | RDW_NOCHILDREN);
    return 1;
}

int MirlToolbar::IsClickOnMenu(unsigned short id)
{
    for (MirlWindowBase *child : m_Children) {
        MirlTabButton *tab = dynamic_cast<MirlTabButton *>(child);
        if (tab != NULL && static_cast<unsigned short>(tab->GetCommandID()) == id) {
            return tab->IsMenuZone() ? 1 : 0;
        }
    }
    return 0;
}

void MirlToolbar::DoPaint(WTL::CDCHandle dc)
{
    RECT client = {};
    GetClientRect(&client);
    Gdiplus::Graphics graphics(dc.m_hDC);
    // Stretching a column must not blend in its neighbours.
    graphics.SetInterpolationMode(Gdiplus::InterpolationModeNearestNeighbor);
    graphics.SetPixelOffsetMode(Gdiplus::PixelOffsetModeHalf);
    const int leftWidth = m_pBarLeft != NULL ? static_cast<int>(m_pBarLeft->GetWidth()) : 0;
    const int middleHeight = m_pBarXScale != NULL ? static_cast<int>(m_pBarXScale->GetHeight()) : 0;
    const MIRL::MirlStripParts parts = MIRL::PlaceToolbarStrip(client.right, client.bottom, leftWidth, middleHeight);
    // The middle first, one column wider on the left, and the ends over it: GDI+ under Wine
    // leaves the first column of a stretch from a source that doesn't start at 0 unpainted.
    if (m_pBarXScale != NULL && parts.middle.width > 0) {
        graphics.DrawImage(m_pBarXScale,
                           Gdiplus::Rect(parts.middle.x - 1, parts.middle.y, parts.middle.width + 1, parts.middle.height),
                           parts.middleSource.x, parts.middleSource.y, parts.middleSource.width,
                           parts.middleSource.height, Gdiplus::UnitPixel);
    }
    if (m_pBarLeft != NULL) {
        graphics.DrawImage(m_pBarLeft, Gdiplus::Rect(parts.left.x, parts.left.y, parts.left.width, parts.left.height),
                           0, 0, leftWidth, static_cast<int>(m_pBarLeft->GetHeight()), Gdiplus::UnitPixel);
    }
    if (m_pBarRight != NULL) {
        graphics.DrawImage(m_pBarRight,
                           Gdiplus::Rect(parts.right.x, parts.right.y, parts.right.width, parts.right.height), 0, 0,
                           static_cast<int>(m_pBarRight->GetWidth()), static_cast<int>(m_pBarRight->GetHeight()),
                           Gdiplus::UnitPixel);
    }
}

MirlTabButton *MirlToolbar::GetCurrentTab()
{
    return g_CurrentTab;
}

void MirlToolbar::SetCurrentTab(MirlTabButton *tab)
{
    g_CurrentTab = tab;
}

Gdiplus::Bitmap *MirlToolbar::GetTabImage(int face)
{
    return face == 0 ? TabImages().Arrow() : TabImages().Face(static_cast<MIRL::MirlTabFace>(face));
}

int MirlToolbar::GetTabImagesRef()
{
    return TabImages().GetRef();
}
