#include "MirlWindow.h"
#include "MirlContainer.h"

#include "MirlImage.h"
#include "MirlLayout.h"
#include "MirlStyleTables.h"

#include <cstring>
#include <cwchar>
#include <new>

// ---- MirlTransparentDC ----

MirlWindowBase::MirlTransparentDC::MirlTransparentDC(HWND hWnd, int width, int height)
    : m_hDC(NULL), m_hBitmap(NULL), m_hOldBitmap(NULL)
{
    HDC windowDC = ::GetDC(hWnd);
    if (windowDC == NULL) {
        return;
    }
    m_hDC = ::CreateCompatibleDC(windowDC);
    // A window of no pixels gets a picture of no pixels: GDI would give a 1x1 bitmap instead.
    if (width > 0 && height > 0) {
        m_hBitmap = ::CreateCompatibleBitmap(windowDC, width, height);
    }
    if (m_hDC != NULL && m_hBitmap != NULL) {
        m_hOldBitmap = static_cast<HBITMAP>(::SelectObject(m_hDC, m_hBitmap));
    }
    ::ReleaseDC(hWnd, windowDC);
}

MirlWindowBase::MirlTransparentDC::~MirlTransparentDC()
{
    MIRL::ReleaseOffscreen(m_hDC, m_hBitmap, m_hOldBitmap);
}

// ---- MirlWindowBase ----

MirlWindowBase::MirlWindowBase(HWND hWnd)
    : ATL::CWindow(hWnd), m_MemoryDC(NULL), m_IsCopy(0), m_PackageParent(NULL), m_Parent(NULL), m_UiWindow(NULL),
      m_CommandID(0), m_Pic(NULL), m_X(0), m_Y(0), m_Width(64), m_Height(64), m_MinWidth(-1), m_MaxWidth(6900),
      m_MinHeight(-1), m_MaxHeight(6900), m_ClBkGround(0xFF000000UL), m_ClText(0xFFFFFFFFUL), m_LogFont(),
      m_Style(WS_CHILD | WS_VISIBLE), m_ExStyle(0), m_Menu(0), m_Transparent(false), m_Align(0),
      m_CreatingName(NULL), m_CreatingFrom(NULL), m_CreatingTemplate(NULL), m_PlacingNext(false), m_PlacingWidth(0),
      m_PlacingHeight(0), m_PlacingPrevious(), m_HasPlace(false), m_Place()
{
    m_LogFont.lfHeight = 12;
    SetFaceName(L"MS Sans Serif");
}

MirlWindowBase::~MirlWindowBase()
{
    if (m_IsCopy == 0) {
        for (MirlWindowBase *child : m_Children) {
            delete child;
        }
    }
    m_Children.clear();
    delete m_MemoryDC;
    m_MemoryDC = NULL;
}

void MirlWindowBase::SetFaceName(const wchar_t *family)
{
    // A family name longer than the face-name field is cut to fit rather than overrun it.
    wcsncpy(m_LogFont.lfFaceName, family != NULL ? family : L"", LF_FACESIZE - 1);
    m_LogFont.lfFaceName[LF_FACESIZE - 1] = L'\0';
}

int MirlWindowBase::GetMinHeight() { return m_MinHeight; }
int MirlWindowBase::GetMinWidth() { return m_MinWidth; }
int MirlWindowBase::GetMaxHeight() { return m_MaxHeight; }
int MirlWindowBase::GetMaxWidth() { return m_MaxWidth; }

const MirlWindowBase *MirlWindowBase::GetPackageParent() const
{
    return m_PackageParent;
}

unsigned long MirlWindowBase::String2Style(const wchar_t *text)
{
    return MIRL::StringToWindowStyle(text);
}

unsigned long MirlWindowBase::String2ExStyle(const wchar_t *text)
{
    return MIRL::StringToExStyle(text);
}

unsigned long MirlWindowBase::String2PositionStyle(const wchar_t *text)
{
    return MIRL::StringToPositionStyle(text);
}

void MirlWindowBase::InheritFrom(const MirlWindowBase *parent)
{
    m_LogFont = parent->m_LogFont;
    m_ClBkGround = parent->m_ClBkGround;
    m_ClText = parent->m_ClText;
    m_Transparent = parent->m_Transparent;
}

void MirlWindowBase::LoadAttributesFromParent()
{
    if (m_PackageParent != NULL) {
        InheritFrom(m_PackageParent);
    }
}

MirlUiWindow *MirlWindowBase::AdoptParent(MirlWindowBase *parent)
{
    m_PackageParent = parent;
    m_UiWindow = NULL;
    if (parent == NULL) {
        return NULL;
    }
    InheritFrom(parent);
    return parent->m_UiWindow;
}

int MirlWindowBase::BindTemplate(MirlUiWindow *found)
{
    m_UiWindow = found;
    return m_UiWindow != NULL ? Reload() : 0;
}

int MirlWindowBase::LoadAttributesFromUi(MirlWindowBase *parent, const wchar_t *name)
{
    // A child in the parent's template wins over a top-level template of the same name.
    MirlUiWindow *parentTemplate = AdoptParent(parent);
    MirlUiWindow *found = NULL;
    if (parentTemplate != NULL && name != NULL && name == parent->m_CreatingName &&
        parentTemplate == parent->m_CreatingFrom) {
        // The parent is creating this child from its template and has looked the name up already.
        found = parent->m_CreatingTemplate;
    } else if (parentTemplate != NULL) {
        found = parentTemplate->GetChild(name);
    }
    MirlUI *ui = MirlUI::Instance();
    if (found == NULL && name != NULL && ui != NULL) {
        found = static_cast<MirlUiWindow *>(ui->GetUiElement(name, UI_ELEMENT_WINDOW));
    }
    return BindTemplate(found);
}

int MirlWindowBase::LoadAttributesFromUi(MirlWindowBase *parent, unsigned long commandID)
{
    MirlUiWindow *parentTemplate = AdoptParent(parent);
    MirlUiWindow *found = parentTemplate != NULL ? parentTemplate->GetChildByID(commandID) : NULL;
    MirlUI *ui = MirlUI::Instance();
    if (found == NULL && ui != NULL) {
        found = ui->GetUiElement(commandID);
    }
    return BindTemplate(found);
}

namespace {

enum CommonAttribute {
    AttrClass, AttrCommandID, AttrText, AttrToolTip, AttrPic, AttrX, AttrY, AttrWidth, AttrHeight,
    AttrMinWidth, AttrMaxWidth, AttrMinHeight, AttrMaxHeight, AttrClBkGround, AttrClText, AttrFont,
    AttrStyle, AttrExStyle, AttrMenu, AttrTransparent, AttrAlign, AttrNone
};

const wchar_t *const kCommonAttributes[] = {
    L"Class", L"CommandID", L"Text", L"ToolTip", L"Pic", L"X", L"Y", L"Width", L"Height",
    L"MinWidth", L"MaxWidth", L"MinHeight", L"MaxHeight", L"ClBkGround", L"ClText", L"Font",
    L"Style", L"ExStyle", L"Menu", L"Transparent", L"Align",
};

CommonAttribute FindCommonAttribute(const wchar_t *name)
{
    for (int i = 0; i < AttrNone; ++i) {
        if (_wcsicmp(name, kCommonAttributes[i]) == 0) {
            return static_cast<CommonAttribute>(i);
        }
    }
    return AttrNone;
}

MirlUiElement *FindElement(const wchar_t *name, unsigned long type)
{
    MirlUI *ui = MirlUI::Instance();
    return ui != NULL ? ui->GetUiElement(name, type) : NULL;
}

// A colour element in the GDI+ order: alpha, red, green, blue from the high byte down.
bool ReadColor(const wchar_t *name, unsigned long &argb)
{
    MirlUiElementColor *color = static_cast<MirlUiElementColor *>(FindElement(name, UI_ELEMENT_COLOR));
    if (color == NULL) {
        return false;
    }
    argb = MIRL::ColorToArgb(color);
    return true;
}

} // namespace

void MirlWindowBase::ApplyAttribute(const MirlUiWindow::Attribute *attribute)
{
    const wchar_t *value = attribute->GetValue();
    switch (FindCommonAttribute(attribute->GetName())) {
    case AttrClass: m_Class = value; break;
    case AttrCommandID: m_CommandID = static_cast<unsigned long>(attribute->GetInteger()); break;
    case AttrText:
    case AttrToolTip: {
        MirlUiElementText *text = static_cast<MirlUiElementText *>(FindElement(value, UI_ELEMENT_TEXT));
        if (text != NULL) {
            (FindCommonAttribute(attribute->GetName()) == AttrText ? m_Text : m_ToolTip) = text->GetText();
        }
        break;
    }
    case AttrPic: m_Pic = static_cast<MirlUiElementImage *>(FindElement(value, UI_ELEMENT_IMAGE)); break;
    case AttrX: m_X = attribute->GetInteger(); break;
    case AttrY: m_Y = attribute->GetInteger(); break;
    case AttrWidth: m_Width = attribute->GetInteger(); break;
    case AttrHeight: m_Height = attribute->GetInteger(); break;
    case AttrMinWidth: m_MinWidth = attribute->GetInteger(); break;
    case AttrMaxWidth: m_MaxWidth = attribute->GetInteger(); break;
    case AttrMinHeight: m_MinHeight = attribute->GetInteger(); break;
    case AttrMaxHeight: m_MaxHeight = attribute->GetInteger(); break;
    case AttrClBkGround: ReadColor(value, m_ClBkGround); break;
    case AttrClText: ReadColor(value, m_ClText); break;
    case AttrFont: {
        MirlUiElementFont *font = static_cast<MirlUiElementFont *>(FindElement(value, UI_ELEMENT_FONT));
        if (font != NULL) {
            m_LogFont.lfHeight = font->GetHeight();
            m_LogFont.lfWidth = font->GetWidth();
            m_LogFont.lfWeight = font->GetWeight();
            m_LogFont.lfItalic = font->GetItalic() ? 1 : 0;
            m_LogFont.lfUnderline = font->GetUnderline() ? 1 : 0;
            SetFaceName(font->GetFamilyName());
        }
        break;
    }
    case AttrStyle: m_Style = String2Style(value); break;
    case AttrExStyle: m_ExStyle = String2ExStyle(value); break;
    case AttrMenu: m_Menu = attribute->GetInteger(); break;
    case AttrTransparent: m_Transparent = attribute->GetBoolean(); break;
    case AttrAlign: m_Align = String2PositionStyle(value); break;
    case AttrNone: break;
    }
}

int MirlWindowBase::Reload()
{
    if (m_UiWindow == NULL) {
        return 0;
    }
    unsigned int count = m_UiWindow->GetAttributeCount();
    if (count == 0) {
        return 0;
    }
    for (unsigned int i = 0; i < count; ++i) {
        ApplyAttribute(m_UiWindow->GetAttributeByIndex(static_cast<int>(i)));
    }
    return 1;
}

namespace {

// Template names compare without regard to case (_wcsicmp). The hash must agree for every pair
// that compares equal, whatever case folding the runtime applies: letters that fold to or from
// characters outside ASCII (i, k, s) and all non-ASCII characters hash alike; the other ASCII
// letters by their lower case, everything else as it is.
size_t NameHash(const wchar_t *name)
{
    size_t hash = 2166136261u;
    for (const wchar_t *p = name; *p != L'\0'; ++p) {
        unsigned int c = static_cast<unsigned int>(*p);
        if (c >= L'A' && c <= L'Z') {
            c += L'a' - L'A';
        }
        if (c >= 0x80 || c == L'i' || c == L'k' || c == L's') {
            c = 0x80;
        }
        hash = (hash ^ c) * 16777619u;
    }
    return hash;
}

// The first child of a template for each name, as GetChild finds it, without a walk of all the
// siblings for each one.
class FirstChildIndex {
public:
    explicit FirstChildIndex(const MirlUiWindow *parent)
    {
        const unsigned int count = parent->GetChildCount();
        m_Slots.assign(SlotCount(count), -1);
        m_Children.reserve(count);
        m_Next.reserve(count);
        for (unsigned int i = 0; i < count; ++i) {
            MirlUiWindow *child = parent->GetChildByIndex(static_cast<int>(i));
            const wchar_t *name = child != NULL ? child->GetName() : NULL;
            if (name == NULL || Find(name) != NULL) {
                continue;
            }
            int &head = m_Slots[NameHash(name) & (m_Slots.size() - 1)];
            m_Children.push_back(child);
            m_Next.push_back(head);
            head = static_cast<int>(m_Children.size() - 1);
        }
    }

    MirlUiWindow *Find(const wchar_t *name) const
    {
        for (int i = m_Slots[NameHash(name) & (m_Slots.size() - 1)]; i >= 0; i = m_Next[static_cast<size_t>(i)]) {
            if (_wcsicmp(m_Children[static_cast<size_t>(i)]->GetName(), name) == 0) {
                return m_Children[static_cast<size_t>(i)];
            }
        }
        return NULL;
    }

private:
    static size_t SlotCount(unsigned int count)
    {
        size_t slots = 16;
        while (slots < static_cast<size_t>(count) * 2) {
            slots *= 2;
        }
        return slots;
    }

    std::vector<int> m_Slots;
    std::vector<MirlUiWindow *> m_Children;
    std::vector<int> m_Next;
};

} // namespace

namespace MIRL {
// Where the layout puts that child in a client area of that size, after the sibling placed at
// previous.
MirlWindowBase::Place LayoutPlaceOf(const MirlWindowBase *child, int width, int height,
                                    const MirlWindowBase::Place &previous);
} // namespace MIRL

void MirlWindowBase::CreateChildWindows(bool atLayout)
{
    if (m_UiWindow == NULL) {
        return;
    }
    MirlUiWindow *indexed = m_UiWindow;
    const unsigned int count = indexed->GetChildCount();
    // The chain of places runs over all the children; one made before this call is not in it.
    atLayout = atLayout && m_Children.empty() && m_hWnd != NULL;
    if (atLayout) {
        RECT client = {};
        ::GetClientRect(m_hWnd, &client);
        // Read as WM_SIZE will give it, each half a signed 16-bit value.
        m_PlacingWidth = static_cast<short>(client.right);
        m_PlacingHeight = static_cast<short>(client.bottom);
        m_PlacingPrevious = Place();
    }
    // Below a handful of children the walk costs less than the index.
    FirstChildIndex *index = count > 8 ? new (std::nothrow) FirstChildIndex(indexed) : NULL;
    for (unsigned int i = 0; i < count; ++i) {
        // A child's creation may change the template; then the index no longer speaks for it.
        if (m_UiWindow == NULL) {
            break;
        }
        MirlUiWindow *ui = m_UiWindow->GetChildByIndex(static_cast<int>(i));
        if (index != NULL && ui != NULL && m_UiWindow == indexed && ui->GetName() != NULL) {
            m_CreatingName = ui->GetName();
            m_CreatingFrom = indexed;
            m_CreatingTemplate = index->Find(m_CreatingName);
        }
        m_PlacingNext = atLayout;
        MirlWindowBase *child = MirlWindowBase::CreateMirlWindow(this, ui);
        m_PlacingNext = false;
        m_CreatingName = NULL;
        m_CreatingFrom = NULL;
        m_CreatingTemplate = NULL;
        if (child != NULL) {
            m_Children.push_back(child);
            if (atLayout) {
                // What the layout gives this child, with the size its creation settled on, is
                // where the next one is placed from.
                m_PlacingPrevious = MIRL::LayoutPlaceOf(child, m_PlacingWidth, m_PlacingHeight, m_PlacingPrevious);
            }
        }
    }
    delete index;
}

bool MirlWindowBase::PlaceOfChildBeingCreated(const MirlWindowBase *child, Place &place)
{
    if (!m_PlacingNext || child == NULL) {
        return false;
    }
    m_PlacingNext = false;
    if (_wcsicmp(child->GetClass(), L"SCROLLBAR") == 0 || _wcsicmp(child->GetClass(), L"SPLITTER") == 0) {
        return false;
    }
    place = MIRL::LayoutPlaceOf(child, m_PlacingWidth, m_PlacingHeight, m_PlacingPrevious);
    return true;
}

void MirlWindowBase::RememberPlace(const Place &place)
{
    m_Place = place;
    m_HasPlace = true;
}

bool MirlWindowBase::StandsAt(const Place &place) const
{
    if (!m_HasPlace || m_Place.x != place.x || m_Place.y != place.y || m_Place.w != place.w || m_Place.h != place.h ||
        m_hWnd == NULL) {
        return false;
    }
    // The application or the window itself may have moved it since.
    RECT now = {};
    if (!::GetWindowRect(m_hWnd, &now)) {
        return false;
    }
    ::MapWindowPoints(HWND_DESKTOP, ::GetParent(m_hWnd), reinterpret_cast<POINT *>(&now), 2);
    return now.left == place.x && now.top == place.y && static_cast<long long>(now.right) - now.left == place.w &&
           static_cast<long long>(now.bottom) - now.top == place.h;
}

void MirlWindowBase::ResetParent(MirlWindowBase *parent)
{
    for (MirlWindowBase *child : m_Children) {
        child->m_Parent = parent;
        child->ResetParent(this);
    }
}

void MirlWindowBase::FromHandle(MirlWindowBase *source)
{
    if (source == NULL || source == this) {
        return;
    }
    m_hWnd = source->m_hWnd;
    m_MemoryDC = source->m_MemoryDC;
    m_IsCopy = source->m_IsCopy;
    m_PackageParent = source->m_PackageParent;
    m_Parent = source->m_Parent;
    m_UiWindow = source->m_UiWindow;
    m_CommandID = source->m_CommandID;
    m_Class = source->m_Class;
    m_Text = source->m_Text;
    m_ToolTip = source->m_ToolTip;
    m_Pic = source->m_Pic;
    m_X = source->m_X;
    m_Y = source->m_Y;
    m_Width = source->m_Width;
    m_Height = source->m_Height;
    m_MinWidth = source->m_MinWidth;
    m_MaxWidth = source->m_MaxWidth;
    m_MinHeight = source->m_MinHeight;
    m_MaxHeight = source->m_MaxHeight;
    m_ClBkGround = source->m_ClBkGround;
    m_ClText = source->m_ClText;
    m_LogFont = source->m_LogFont;
    m_Style = source->m_Style;
    m_ExStyle = source->m_ExStyle;
    m_Menu = source->m_Menu;
    m_Transparent = source->m_Transparent;
    m_Align = source->m_Align;
    m_Children = source->m_Children;

    // The parents' pictures may hold the window as it was.
    if (m_Parent != NULL) {
        m_Parent->DeleteMemoryDC();
    }
    if (m_PackageParent != NULL) {
        m_PackageParent->DeleteMemoryDC();
    }
    m_MemoryDC = NULL;
    m_IsCopy = 1;
    ResetParent(this);
    m_LogFont = source->m_LogFont;
}

MirlWindowBase *MirlWindowBase::GetWindowItem(unsigned long commandID)
{
    for (MirlWindowBase *child : m_Children) {
        if (child->m_CommandID == commandID) {
            return child;
        }
    }
    return NULL;
}

MirlWindowBase *MirlWindowBase::GetWindowItem(const wchar_t *name)
{
    if (name == NULL) {
        return NULL;
    }
    for (MirlWindowBase *child : m_Children) {
        if (child->m_UiWindow != NULL && _wcsicmp(child->m_UiWindow->GetName(), name) == 0) {
            return child;
        }
    }
    return NULL;
}

void MirlWindowBase::PaintIntoMemoryDC()
{
    if (m_MemoryDC != NULL && m_MemoryDC->m_hDC != NULL) {
        ::SendMessageW(m_hWnd, WM_PAINT, reinterpret_cast<WPARAM>(m_MemoryDC->m_hDC), 0);
    }
}

MirlWindowBase::MirlTransparentDC *MirlWindowBase::GetMemoryDC(bool repaint)
{
    if (m_MemoryDC == NULL) {
        RECT rect = {};
        ::GetWindowRect(m_hWnd, &rect);
        m_MemoryDC = new MirlTransparentDC(m_hWnd, rect.right - rect.left, rect.bottom - rect.top);
        PaintIntoMemoryDC();
    } else if (repaint) {
        PaintIntoMemoryDC();
    }
    return m_MemoryDC;
}

void MirlWindowBase::CreateMemoryDC(int width, int height)
{
    if (width <= 0 || height <= 0) {
        return;
    }
    delete m_MemoryDC;
    m_MemoryDC = new MirlTransparentDC(m_hWnd, width, height);
    PaintIntoMemoryDC();
}

void MirlWindowBase::DeleteMemoryDC()
{
    delete m_MemoryDC;
    m_MemoryDC = NULL;
}

namespace {

// The window that DeleteAllMemory is telling to drop its picture, for the length of that one
// message: a system control that shares the number (PBM_SETPOS) tells the two apart by it.
thread_local HWND t_DroppingPictureOf = NULL;

} // namespace

namespace MIRL {

bool IsDroppingMemory(HWND hWnd)
{
    return hWnd != NULL && hWnd == t_DroppingPictureOf;
}

} // namespace MIRL

void MirlWindowBase::DeleteAllMemory()
{
    DeleteMemoryDC();
    HWND former = t_DroppingPictureOf;
    t_DroppingPictureOf = m_hWnd;
    ::SendMessageW(m_hWnd, WM_MIRL_DELETE_MEMORY_DC, 0, 0);
    t_DroppingPictureOf = former;
    for (MirlWindowBase *child : m_Children) {
        child->DeleteMemoryDC();
        child->DeleteAllMemory();
    }
}

namespace MIRL {

MirlWindowBase::Place LayoutPlaceOf(const MirlWindowBase *child, int width, int height,
                                    const MirlWindowBase::Place &previous)
{
    MirlLayoutInput input;
    input.x = child->GetX();
    input.y = child->GetY();
    input.width = child->GetWidth();
    input.height = child->GetHeight();
    input.align = child->GetAlign();
    input.style = child->GetStyle();
    if (_wcsicmp(child->GetClass(), L"SCROLLBAR") == 0) {
        input.windowClass = MirlLayoutClass::ScrollBar;
        RECT present = {};
        ::GetWindowRect(child->m_hWnd, &present);
        input.presentWidth = present.right - present.left;
        input.presentHeight = present.bottom - present.top;
    }
    if (_wcsicmp(child->GetClass(), L"SPLITTER") == 0) {
        input.windowClass = MirlLayoutClass::Splitter;
        // A window of another class under that name (an application's own) has no weight.
        const MirlSplitter *splitter = dynamic_cast<const MirlSplitter *>(child);
        input.splitterWeight = splitter != NULL ? splitter->GetSplitterWeight() : 0;
    }
    const MirlLayoutRect before = {previous.x, previous.y, previous.w, previous.h};
    const MirlLayoutRect place = LayoutChild(width, height, input, before);
    return MirlWindowBase::Place{place.x, place.y, place.w, place.h};
}

void LayoutChildWindows(MirlWindowBase *parent, const std::vector<MirlWindowBase *> &children, int width, int height)
{
    (void)parent;
    MirlWindowBase::Place previous = {0, 0, 0, 0};
    for (MirlWindowBase *child : children) {
        const MirlWindowBase::Place place = LayoutPlaceOf(child, width, height, previous);
        // A move to where the window already stands changes nothing on screen and still costs
        // a trip to the window server.
        if (child->m_hWnd != NULL && !child->StandsAt(place)) {
            ::MoveWindow(child->m_hWnd, place.x, place.y, place.w, place.h, TRUE);
        }
        child->RememberPlace(place);
        previous = place;
    }
}

namespace {

// One shared font: its description, the windows holding it, and the one-line widths measured in
// it. The list is empty whenever no window holds a font.
struct SharedFont {
    LOGFONTW key;
    Gdiplus::Font *font;
    long users;
    std::vector<std::pair<std::wstring, float>> widths;
    SharedFont *next;
};

SRWLOCK g_FontLock = SRWLOCK_INIT;
SharedFont *g_Fonts = NULL;

// The description with everything after the face name's end cleared, so that two equal
// descriptions compare equal byte for byte.
LOGFONTW FontKey(const LOGFONTW &logFont)
{
    LOGFONTW key = logFont;
    size_t length = wcsnlen(key.lfFaceName, LF_FACESIZE);
    for (size_t i = length; i < LF_FACESIZE; ++i) {
        key.lfFaceName[i] = L'\0';
    }
    return key;
}

SharedFont *FindShared(const LOGFONTW &key)
{
    for (SharedFont *entry = g_Fonts; entry != NULL; entry = entry->next) {
        if (std::memcmp(&entry->key, &key, sizeof(key)) == 0) {
            return entry;
        }
    }
    return NULL;
}

SharedFont *FindShared(Gdiplus::Font *font)
{
    for (SharedFont *entry = g_Fonts; entry != NULL; entry = entry->next) {
        if (entry->font == font) {
            return entry;
        }
    }
    return NULL;
}

} // namespace

Gdiplus::Font *AcquireFont(HWND hWnd, const LOGFONTW &logFont)
{
    const LOGFONTW key = FontKey(logFont);
    // A window without a device context gets no font, shared or not.
    if (hWnd != NULL && !::IsWindow(hWnd)) {
        return NULL;
    }
    ::AcquireSRWLockExclusive(&g_FontLock);
    SharedFont *shared = FindShared(key);
    if (shared != NULL) {
        ++shared->users;
    }
    ::ReleaseSRWLockExclusive(&g_FontLock);
    if (shared != NULL) {
        return shared->font;
    }

    // Made outside the lock: GDI+ and the device context may take their own.
    Gdiplus::Font *font = NULL;
    HDC dc = ::GetDC(hWnd);
    if (dc != NULL) {
        font = new Gdiplus::Font(dc, &key);
        if (font != NULL && font->GetLastStatus() != Gdiplus::Ok) {
            delete font;
            font = NULL;
        }
        ::ReleaseDC(hWnd, dc);
    }
    if (font == NULL) {
        return NULL;
    }
    ::AcquireSRWLockExclusive(&g_FontLock);
    shared = FindShared(key);
    if (shared != NULL) {
        // Another thread made it meanwhile.
        ++shared->users;
        ::ReleaseSRWLockExclusive(&g_FontLock);
        delete font;
        return shared->font;
    }
    SharedFont *entry = new (std::nothrow) SharedFont();
    if (entry == NULL) {
        ::ReleaseSRWLockExclusive(&g_FontLock);
        delete font;
        return NULL;
    }
    entry->key = key;
    entry->font = font;
    entry->users = 1;
    entry->next = g_Fonts;
    g_Fonts = entry;
    ::ReleaseSRWLockExclusive(&g_FontLock);
    return font;
}

void ReleaseFont(Gdiplus::Font *font)
{
    if (font == NULL) {
        return;
    }
    ::AcquireSRWLockExclusive(&g_FontLock);
    SharedFont *found = NULL;
    for (SharedFont **link = &g_Fonts; *link != NULL; link = &(*link)->next) {
        if ((*link)->font == font) {
            if (--(*link)->users == 0) {
                found = *link;
                *link = found->next;
            }
            break;
        }
    }
    ::ReleaseSRWLockExclusive(&g_FontLock);
    if (found != NULL) {
        delete found->font;
        delete found;
    }
}

bool RecallTextWidth(Gdiplus::Font *font, const wchar_t *text, float &width)
{
    if (font == NULL || text == NULL) {
        return false;
    }
    bool known = false;
    ::AcquireSRWLockExclusive(&g_FontLock);
    SharedFont *entry = FindShared(font);
    if (entry != NULL) {
        for (const std::pair<std::wstring, float> &measured : entry->widths) {
            if (measured.first == text) {
                width = measured.second;
                known = true;
                break;
            }
        }
    }
    ::ReleaseSRWLockExclusive(&g_FontLock);
    return known;
}

void RememberTextWidth(Gdiplus::Font *font, const wchar_t *text, float width)
{
    // A few distinct captions per font are the rule; a skin with many keeps the first ones.
    const size_t kMaxWidths = 64;
    if (font == NULL || text == NULL) {
        return;
    }
    ::AcquireSRWLockExclusive(&g_FontLock);
    SharedFont *entry = FindShared(font);
    if (entry != NULL && entry->widths.size() < kMaxWidths) {
        try {
            entry->widths.push_back(std::make_pair(std::wstring(text), width));
        } catch (...) {
            // Not remembered: it is measured again next time.
        }
    }
    ::ReleaseSRWLockExclusive(&g_FontLock);
}

void PaintParentBackground(HWND hWnd, MirlWindowBase *source, HDC dc)
{
    // A transparent window without a parent object has no picture to show through.
    if (source == NULL) {
        return;
    }
    RECT rect = {};
    ::GetWindowRect(hWnd, &rect);
    POINT corner = {rect.left, rect.top};
    ::ScreenToClient(::GetParent(hWnd), &corner);
    MirlWindowBase::MirlTransparentDC *picture = source->GetMemoryDC(false);
    if (picture != NULL && picture->m_hDC != NULL && picture->m_hBitmap != NULL) {
        ::BitBlt(dc, 0, 0, rect.right - rect.left, rect.bottom - rect.top, picture->m_hDC, corner.x, corner.y, SRCCOPY);
    }
}

} // namespace MIRL
