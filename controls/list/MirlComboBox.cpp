// The drop-down list without an edit field: a face from skin images, the current item's text
// with a one-pixel white shadow, and the process's popup as its list. Row k of the list is item
// k - 1; ids above 128 are not the list's, so at most 128 items can be chosen.
#include "MirlList.h"

#include "MirlImage.h"
#include "MirlListLogic.h"

#include <climits>
#include <iterator>
#include <new>

namespace {

POINT PointOf(LPARAM lParam)
{
    POINT point = {static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam))};
    return point;
}

} // namespace

MirlComboBox::COMBOBO_ITEM::COMBOBO_ITEM() : image(NULL), data(0), id(0) {}

MirlComboBox::COMBOBO_ITEM::~COMBOBO_ITEM()
{
    delete image;
}

MirlComboBox::MirlComboBox()
    : m_Height(0), m_RowHeight(26), m_DropRoom(0), m_CurSel(-1), m_Hovering(false), m_Open(false), m_CurItem(NULL),
      m_ScrollBar(NULL), m_HitRect(), m_ImgArrow(NULL), m_ImgNormal(NULL), m_ImgHover(NULL), m_ImgPressed(NULL),
      m_ImgDisabled(NULL), m_ImgCurrent(NULL)
{
}

MirlComboBox::~MirlComboBox()
{
    if (!m_IsCopy) {
        ClearItems();
    }
    FreeImages();
}

HWND MirlComboBox::Create(MirlWindowBase *parent, HWND hWndParent, ATL::_U_RECT rect, const wchar_t *name,
                          unsigned long style, unsigned long exStyle, ATL::_U_MENUorID menuOrID, void *createParam)
{
    return Base::Create(parent, hWndParent, rect, name, style, exStyle, menuOrID, createParam);
}

BOOL MirlComboBox::SubclassWindow(HWND hWnd)
{
    return Base::SubclassWindow(hWnd);
}

BOOL MirlComboBox::SubclassWindow(MirlWindowBase *source, MirlWindowBase *parent)
{
    return Base::SubclassWindow(source, parent);
}

LRESULT MirlComboBox::OnSubclassed(UINT, WPARAM, LPARAM, BOOL &)
{
    // The copy decodes its own faces; its items are those its code adds.
    LoadImages();
    m_ScrollBar = GetDlgItem(5);
    return 0;
}

void MirlComboBox::FreeImages()
{
    delete m_ImgArrow;
    delete m_ImgNormal;
    delete m_ImgHover;
    delete m_ImgPressed;
    delete m_ImgDisabled;
    m_ImgArrow = m_ImgNormal = m_ImgHover = m_ImgPressed = m_ImgDisabled = m_ImgCurrent = NULL;
}

Gdiplus::Bitmap *MirlComboBox::LoadFace(const wchar_t *attribute, const wchar_t *fallback)
{
    MirlUiWindow::Attribute *named = m_UiWindow != NULL ? m_UiWindow->GetAttribute(attribute) : NULL;
    return MIRL::LoadSkinBitmap(named != NULL ? named->GetValue() : fallback);
}

void MirlComboBox::LoadImages()
{
    FreeImages();
    m_ImgArrow = LoadFace(L"PicArrow", L"CmBtnArrow");
    m_ImgNormal = LoadFace(L"Pic", L"CmBtn1");
    m_ImgHover = LoadFace(L"PicC", L"CmBtn2");
    m_ImgPressed = LoadFace(L"PicD", L"CmBtn3");
    m_ImgDisabled = LoadFace(L"PicS", L"CmBtn0");
    // Without a face image the control keeps the height its template gave it.
    m_Height = m_ImgNormal != NULL ? static_cast<int>(m_ImgNormal->GetHeight()) : m_Height;
    m_ImgCurrent = m_ImgNormal;
}

LRESULT MirlComboBox::OnCreate(UINT, WPARAM, LPARAM, BOOL &)
{
    BOOL handled = TRUE;
    Base::OnCreate(WM_CREATE, 0, 0, handled);
    MirlUiWindow *list = m_UiWindow != NULL ? m_UiWindow->GetChild(L"LIST") : NULL;
    MirlUI *ui = MirlUI::Instance();
    const unsigned int count = list != NULL ? list->GetChildCount() : 0;
    for (unsigned int i = 0; i < count; ++i) {
        MirlUiWindow *child = list->GetChildByIndex(static_cast<int>(i));
        if (child == NULL) {
            continue;
        }
        MirlUiWindow::Attribute *idAttribute = child->GetAttribute(L"CommandID");
        MirlUiWindow::Attribute *textAttribute = child->GetAttribute(L"Text");
        MirlUiElementText *text =
            textAttribute != NULL && ui != NULL
                ? static_cast<MirlUiElementText *>(ui->GetUiElement(textAttribute->GetValue(), UI_ELEMENT_TEXT))
                : NULL;
        AddItem(idAttribute != NULL ? static_cast<unsigned long>(idAttribute->GetInteger()) : 0,
                text != NULL ? text->GetText() : L"", NULL, 0);
    }
    m_CurSel = 0;
    m_CurItem = m_Items.empty() ? NULL : m_Items.front();
    Invalidate();
    RECT client = {};
    GetClientRect(&client);
    m_Height = client.bottom;
    LoadImages();
    m_ScrollBar = ::CreateWindowExW(0, L"SCROLLBAR", NULL, WS_CHILD | SBS_VERT | SBS_RIGHTALIGN, client.right - 32,
                                    client.bottom - 32, 32, 32, m_hWnd, reinterpret_cast<HMENU>(static_cast<UINT_PTR>(5)),
                                    ATL::AtlModuleInstance(), NULL);
    return 0;
}

LRESULT MirlComboBox::OnDestroy(UINT, WPARAM, LPARAM, BOOL &bHandled)
{
    ClearItems();
    FreeImages();
    Base::OnDestroy(WM_DESTROY, 0, 0, bHandled);
    Release();
    bHandled = FALSE;
    return 0;
}

LRESULT MirlComboBox::OnSize(UINT, WPARAM, LPARAM lParam, BOOL &bHandled)
{
    const int width = LOWORD(lParam);
    m_Open = false;
    m_DropRoom = 128 - m_Height;
    m_HitRect.left = 0;
    m_HitRect.top = 0;
    m_HitRect.right = width;
    m_HitRect.bottom = m_Height;
    // The height is the face's, not the layout's to choose. The move's own WM_SIZE lays the
    // children out: doing it here as well would double the work at every level of a nested tree.
    // The window's own width is kept: the same as the message's when the system sends it, and a
    // WM_SIZE sent by hand cannot shrink the control to nothing.
    RECT place = {};
    GetWindowRect(&place);
    HWND parent = GetParent();
    if (parent != NULL && (GetWindowLongW(GWL_STYLE) & WS_CHILD)) {
        ::MapWindowPoints(NULL, parent, reinterpret_cast<POINT *>(&place), 2);
    }
    if (HIWORD(lParam) != m_Height && place.bottom - place.top != m_Height) {
        MoveWindow(place.left, place.top, place.right - place.left, m_Height, TRUE);
        return 0;
    }
    Base::OnSize(WM_SIZE, 0, lParam, bHandled);
    Invalidate();
    return 0;
}

LRESULT MirlComboBox::OnVScroll(UINT, WPARAM, LPARAM, BOOL &)
{
    return 0;
}

int MirlComboBox::AddItem(unsigned long id, const wchar_t *text, Gdiplus::Bitmap *image, long data)
{
    COMBOBO_ITEM *item = new (std::nothrow) COMBOBO_ITEM();
    if (item == NULL) {
        delete image;
        return GetItemCount();
    }
    item->id = id;
    item->text = text != NULL ? text : L"";
    item->image = image;
    item->data = data;
    m_Items.push_back(item);
    return GetItemCount();
}

void MirlComboBox::ClearItems()
{
    m_CurSel = -1;
    // The current item goes with the others: nothing may point at it afterwards.
    m_CurItem = NULL;
    for (COMBOBO_ITEM *item : m_Items) {
        delete item;
    }
    m_Items.clear();
    if (IsWindow()) {
        Invalidate();
    }
}

MirlComboBox::COMBOBO_ITEM *MirlComboBox::GetItemInfo(int index) const
{
    if (index < 0 || static_cast<size_t>(index) >= m_Items.size()) {
        return NULL;
    }
    return *std::next(m_Items.begin(), index);
}

const wchar_t *MirlComboBox::GetItemText(int index) const
{
    const COMBOBO_ITEM *item = GetItemInfo(index);
    return item != NULL ? item->text.c_str() : NULL;
}

int MirlComboBox::SetItemText(int index, const wchar_t *text)
{
    COMBOBO_ITEM *item = GetItemInfo(index);
    if (item == NULL) {
        return 0;
    }
    item->text = text != NULL ? text : L"";
    if (IsWindow()) {
        Invalidate();
    }
    return 1;
}

void MirlComboBox::SetCurSel(int index)
{
    if (index < 0) {
        return;
    }
    m_CurSel = index;
    COMBOBO_ITEM *item = GetItemInfo(index);
    if (item != NULL) {
        m_CurItem = item;
    }
    if (IsWindow()) {
        Invalidate();
    }
}

const wchar_t *MirlComboBox::GetWindowTextW() const
{
    return GetItemText(m_CurSel);
}

void MirlComboBox::SetRowHeight(int height)
{
    if (height != m_RowHeight) {
        m_RowHeight = height;
        if (IsWindow()) {
            Invalidate();
        }
    }
}

int MirlComboBox::GetNeededHeight() const
{
    const long long height = static_cast<long long>(m_Items.size()) * m_RowHeight;
    return height > INT_MAX ? INT_MAX : static_cast<int>(height);
}

Gdiplus::Bitmap *MirlComboBox::GetImage(int which) const
{
    switch (which) {
    case 0:
        return m_ImgDisabled;
    case 1:
        return m_ImgNormal;
    case 2:
        return m_ImgHover;
    case 3:
        return m_ImgPressed;
    case 4:
        return m_ImgArrow;
    default:
        return NULL;
    }
}

LRESULT MirlComboBox::OnLButtonDown(UINT, WPARAM, LPARAM lParam, BOOL &)
{
    DefWindowProc();
    if (m_Items.empty()) {
        return 0;
    }
    const POINT point = PointOf(lParam);
    if (::PtInRect(&m_HitRect, point)) {
        MirlMenuWindow menu;
        unsigned long row = 1;
        for (const COMBOBO_ITEM *item : m_Items) {
            menu.AddItem(item->text.c_str(), row++, NULL);
        }
        RECT control = {};
        GetWindowRect(&control);
        RECT work = {};
        ::SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0);
        const RECT drop = MIRL::ComboDropRect(control, menu.GetNeededHeight(), work.bottom);
        const HWND self = m_hWnd;
        menu.TrackPopupMenu(L"LIST", drop, this);
        if (!::IsWindow(self)) {
            return 0;
        }
        m_Open = true;
    } else {
        m_Open = false;
    }
    m_ImgCurrent = m_Open ? m_ImgPressed : IsWindowEnabled() ? m_ImgNormal : m_ImgDisabled;
    Invalidate();
    return 0;
}

LRESULT MirlComboBox::OnMenuCmd(UINT, UINT id, HWND, BOOL &)
{
    if (id == 0 || id > kMaxChoosable) {
        return 0;
    }
    SetCurSel(static_cast<int>(id) - 1);
    // The value a reader shows changed, and a choice was made: both, as the system's combo box.
    MIRL::NotifyAccessibleEvent(m_hWnd, EVENT_OBJECT_VALUECHANGE);
    MIRL::NotifyAccessibleEvent(m_hWnd, EVENT_OBJECT_SELECTION);
    ::SendMessageW(GetParent(), WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(), CBN_SELCHANGE), reinterpret_cast<LPARAM>(m_hWnd));
    return 0;
}

LRESULT MirlComboBox::OnMouseMove(UINT, WPARAM wParam, LPARAM lParam, BOOL &)
{
    if ((wParam & MK_LBUTTON) && !m_Hovering) {
        return 0;
    }
    if (::GetCapture() != m_hWnd && ::IsWindow(::GetActiveWindow()) && ::IsWindow(GetParent())) {
        m_Hovering = true;
        m_ImgCurrent = m_ImgHover;
        SetCapture();
        Invalidate();
        return 0;
    }
    POINT screen = PointOf(lParam);
    ClientToScreen(&screen);
    if (::WindowFromPoint(screen) != m_hWnd) {
        CancelHover();
        ::ReleaseCapture();
    }
    return 0;
}

void MirlComboBox::CancelHover()
{
    m_Hovering = false;
    m_Open = false;
    m_ImgCurrent = IsWindowEnabled() ? m_ImgNormal : m_ImgDisabled;
    Invalidate();
}

LRESULT MirlComboBox::OnClearingMessage(UINT uMsg, WPARAM wParam, LPARAM, BOOL &)
{
    DefWindowProc();
    if (uMsg != WM_ACTIVATE || LOWORD(wParam) == WA_INACTIVE) {
        CancelHover();
    }
    return 0;
}

LRESULT MirlComboBox::OnCaptureChanged(UINT, WPARAM, LPARAM lParam, BOOL &bHandled)
{
    // Taking the capture the control already holds is no loss (Wine still reports it).
    if (m_Hovering && reinterpret_cast<HWND>(lParam) != m_hWnd) {
        ::ReleaseCapture();
        Invalidate();
    }
    bHandled = FALSE;
    return 0;
}

LRESULT MirlComboBox::OnEnableClosesList(UINT, WPARAM wParam, LPARAM, BOOL &bHandled)
{
    MirlMenuWindow *popup = MirlMenuWindow::Instance();
    if (wParam == 0 && popup != NULL && popup->m_hWnd != NULL && popup->GetHolder() == this &&
        ::IsWindowVisible(popup->m_hWnd)) {
        MirlMenuWindow::FinalDestroy();
    }
    bHandled = FALSE;
    return 0;
}

LRESULT MirlComboBox::OnEnable(UINT, WPARAM, LPARAM, BOOL &)
{
    DefWindowProc();
    CancelHover();
    Invalidate();
    return 0;
}

void MirlComboBox::PainImageInRect(Gdiplus::Graphics &graphics, Gdiplus::Bitmap *bitmap, const RECT &rect)
{
    if (bitmap == NULL) {
        return;
    }
    MIRL::SlicePart parts[3];
    MIRL::ComboSlices(static_cast<int>(bitmap->GetWidth()), rect, parts);
    const INT height = static_cast<INT>(bitmap->GetHeight());
    for (const MIRL::SlicePart &part : parts) {
        if (part.dstWidth <= 0 || part.srcWidth <= 0) {
            continue;
        }
        graphics.DrawImage(bitmap, Gdiplus::Rect(part.dstX, rect.top, part.dstWidth, rect.bottom - rect.top),
                           part.srcX, 0, part.srcWidth, height, Gdiplus::UnitPixel);
    }
}

void MirlComboBox::DoPaint(WTL::CDCHandle dc)
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
    graphics.SetInterpolationMode(Gdiplus::InterpolationModeNearestNeighbor);
    graphics.SetPixelOffsetMode(Gdiplus::PixelOffsetModeHalf);
    RECT face = client;
    face.bottom = m_Height;
    Gdiplus::Bitmap *image = m_ImgCurrent != NULL ? m_ImgCurrent : m_ImgNormal;
    PainImageInRect(graphics, image, face);
    int arrowRoom = 0;
    if (m_ImgArrow != NULL) {
        const int width = static_cast<int>(m_ImgArrow->GetWidth());
        const int height = static_cast<int>(m_ImgArrow->GetHeight());
        graphics.DrawImage(m_ImgArrow, client.right - width - 10, (client.bottom - height - client.top) / 2 + client.top,
                           width, height);
        arrowRoom = width + 12;
    }
    if (m_CurSel == -1 || m_CurItem == NULL || m_CurItem->text.empty() || m_TxFont == NULL || m_TxBrush == NULL) {
        return;
    }
    Gdiplus::RectF box(static_cast<Gdiplus::REAL>(client.left + 8), static_cast<Gdiplus::REAL>(client.top),
                       static_cast<Gdiplus::REAL>(client.right - client.left - arrowRoom),
                       static_cast<Gdiplus::REAL>(m_Height - client.top));
    Gdiplus::StringFormat format;
    format.SetLineAlignment(Gdiplus::StringAlignmentCenter);
    format.SetTrimming(Gdiplus::StringTrimmingEllipsisCharacter);
    format.SetFormatFlags(Gdiplus::StringFormatFlagsNoWrap);
    // A one-pixel white shadow under the text.
    Gdiplus::SolidBrush white(Gdiplus::Color(0xFFFFFFFF));
    Gdiplus::RectF shadow = box;
    shadow.Y += 1.0f;
    graphics.DrawString(m_CurItem->text.c_str(), -1, m_TxFont, shadow, &format, &white);
    graphics.DrawString(m_CurItem->text.c_str(), -1, m_TxFont, box, &format, m_TxBrush);
}
