#include "MirlStatic.h"

#include "MirlImage.h"

#include <cwchar>

namespace MIRL {

namespace {

size_t FindMark(const std::wstring &text, const wchar_t *mark, size_t from = 0)
{
    size_t length = wcslen(mark);
    for (size_t i = from; i + length <= text.size(); ++i) {
        if (_wcsnicmp(text.c_str() + i, mark, length) == 0) {
            return i;
        }
    }
    return std::wstring::npos;
}

} // namespace

std::wstring StripHotkeyPrefixes(const std::wstring &text, std::vector<int> &shownIndex)
{
    std::wstring shown;
    shownIndex.assign(text.size() + 1, 0);
    for (size_t i = 0; i < text.size(); ++i) {
        shownIndex[i] = static_cast<int>(shown.size());
        if (text[i] == L'&' && i + 1 < text.size()) {
            // The prefix shows as nothing; the character after it, even another '&', shows.
            ++i;
            shownIndex[i] = static_cast<int>(shown.size());
        }
        shown += text[i];
    }
    shownIndex[text.size()] = static_cast<int>(shown.size());
    return shown;
}

std::wstring ExpandAllLinks(const std::wstring &text, std::vector<std::pair<int, int>> &ranges)
{
    static const wchar_t kOpen[] = L"(link)";
    static const wchar_t kClose[] = L"(/link)";
    ranges.clear();
    std::wstring current = text;
    size_t a = FindMark(current, kOpen);
    while (a != std::wstring::npos) {
        // The closing mark is searched from the start every time.
        size_t b = FindMark(current, kClose);
        if (b == std::wstring::npos || b < a) {
            break;
        }
        std::wstring next = current.substr(0, a);
        int start = static_cast<int>(a);
        int end = start;
        for (size_t i = a + 6; i < b; ++i) {
            next += L'&';
            next += current[i];
            end += 2;
        }
        next += current.substr(b + 7);
        current.swap(next);
        ranges.push_back(std::make_pair(start, end));
        a = FindMark(current, kOpen);
    }
    return current;
}

} // namespace MIRL

MirlStatic::MirlStatic()
    : m_Bitmap(NULL), m_LinksReady(false), m_TextLayout(false), m_Align(0), m_ImageRect(), m_CursorHand(NULL),
      m_CursorArrow(NULL), m_HasLinks(0), m_OverLink(0), m_CurLink(-1)
{
    m_bMsgHandled = 0;
}

MirlStatic::MirlStatic(const MirlStatic &source)
    : MirlWindowImpl<MirlStatic>(), CTransparentImpl<MirlStatic>(), m_Bitmap(NULL), m_LinksReady(source.m_LinksReady),
      m_TextLayout(source.m_TextLayout), m_Align(source.m_Align), m_ImageRect(source.m_ImageRect),
      m_CursorHand(source.m_CursorHand), m_CursorArrow(source.m_CursorArrow), m_HasLinks(source.m_HasLinks),
      m_OverLink(source.m_OverLink), m_CurLink(source.m_CurLink), m_DisplayText(source.m_DisplayText)
{
    // A copy owns what it holds: its own picture and link records.
    m_bMsgHandled = 0;
    if (source.m_Bitmap != NULL) {
        m_Bitmap = source.m_Bitmap->Clone(0, 0, source.m_Bitmap->GetWidth(), source.m_Bitmap->GetHeight(),
                                          source.m_Bitmap->GetPixelFormat());
    }
    for (const MirlStaticLink *link : source.m_Links) {
        m_Links.push_back(new MirlStaticLink(*link));
    }
}

MirlStatic &MirlStatic::operator=(const MirlStatic &source)
{
    if (this != &source) {
        MirlStatic copy(source);
        std::swap(m_Bitmap, copy.m_Bitmap);
        m_Links.swap(copy.m_Links);
        m_LinksReady = source.m_LinksReady;
        m_TextLayout = source.m_TextLayout;
        m_Align = source.m_Align;
        m_ImageRect = source.m_ImageRect;
        m_CursorHand = source.m_CursorHand;
        m_CursorArrow = source.m_CursorArrow;
        m_HasLinks = source.m_HasLinks;
        m_OverLink = source.m_OverLink;
        m_CurLink = source.m_CurLink;
        m_DisplayText = source.m_DisplayText;
    }
    return *this;
}

MirlStatic::~MirlStatic()
{
    delete m_Bitmap;
    m_Bitmap = NULL;
    ClearLinks();
}

HWND MirlStatic::Create(MirlWindowBase *parent, HWND hWndParent, ATL::_U_RECT rect, const wchar_t *name,
                        unsigned long style, unsigned long exStyle, ATL::_U_MENUorID menuOrID, void *createParam)
{
    return MirlWindowImpl<MirlStatic>::Create(parent, hWndParent, rect, name, style, exStyle, menuOrID, createParam);
}

BOOL MirlStatic::SubclassWindow(HWND hWnd)
{
    return MirlWindowImpl<MirlStatic>::SubclassWindow(hWnd);
}

BOOL MirlStatic::SubclassWindow(MirlWindowBase *source, MirlWindowBase *parent)
{
    return MirlWindowImpl<MirlStatic>::SubclassWindow(source, parent);
}

BOOL MirlStatic::PreTranslateMessage(MSG *)
{
    return 0;
}

void MirlStatic::ClearLinks()
{
    for (MirlStaticLink *link : m_Links) {
        delete link;
    }
    m_Links.clear();
}

void MirlStatic::BuildLinks()
{
    m_HasLinks = 0;
    ClearLinks();
    std::vector<std::pair<int, int>> ranges;
    m_DisplayText = MIRL::ExpandAllLinks(m_DisplayText, ranges);
    for (const std::pair<int, int> &range : ranges) {
        MirlStaticLink *link = new MirlStaticLink();
        link->rect = RECT{0, 0, 0, 0};
        link->nStart = range.first;
        link->nEnd = range.second;
        m_Links.push_back(link);
        m_HasLinks = 1;
    }
}

void MirlStatic::BuildLinksRegion(Gdiplus::Graphics &g)
{
    if (!m_HasLinks) {
        return;
    }
    if (m_CursorHand == NULL) {
        m_CursorHand = ::LoadCursorW(NULL, IDC_HAND);
    }
    Gdiplus::StringFormat format;
    format.SetAlignment((m_Align & ALIGN_LEFT) ? Gdiplus::StringAlignmentNear
                        : (m_Align & ALIGN_RIGHT) ? Gdiplus::StringAlignmentFar
                                                  : Gdiplus::StringAlignmentCenter);
    // Ranges are measured from the top and placed by the line alignment here: some GDI+
    // versions leave the line alignment out of range boxes.
    format.SetLineAlignment(Gdiplus::StringAlignmentNear);
    format.SetFormatFlags(Gdiplus::StringFormatFlagsDisplayFormatControl);
    format.SetFormatFlags(Gdiplus::StringFormatFlagsMeasureTrailingSpaces);
    // Ranges are measured on the text as it is shown, the prefix characters taken out: GDI+
    // versions differ in whether range indices count them, and the shown text measures alike.
    std::vector<int> shownIndex;
    std::wstring shown = MIRL::StripHotkeyPrefixes(m_DisplayText, shownIndex);
    RECT client = {};
    ::GetClientRect(m_hWnd, &client);
    // The whole client area, not the caption's rectangle: links of a label with an image stay
    // where the text alone would be.
    Gdiplus::RectF layout(0.0f, 0.0f, static_cast<float>(client.right), static_cast<float>(client.bottom));
    float offset = 0.0f;
    if (!(m_Align & ALIGN_TOP)) {
        Gdiplus::RectF whole;
        g.MeasureString(shown.c_str(), static_cast<INT>(shown.size()), m_TxFont, layout, &format, &whole);
        float room = layout.Height - whole.Height;
        offset = (m_Align & ALIGN_BOTTOM) ? room : room * 0.5f;
    }
    for (MirlStaticLink *link : m_Links) {
        if (link->nEnd <= link->nStart) {
            continue;
        }
        int first = shownIndex[static_cast<size_t>(link->nStart)];
        int last = shownIndex[static_cast<size_t>(link->nEnd - 1)];
        Gdiplus::CharacterRange range(first, last - first + 1);
        format.SetMeasurableCharacterRanges(1, &range);
        Gdiplus::Region region;
        g.MeasureCharacterRanges(shown.c_str(), static_cast<INT>(shown.size()), m_TxFont, layout, &format, 1, &region);
        if (!region.IsEmpty(&g)) {
            Gdiplus::Rect box;
            region.GetBounds(&box, &g);
            LONG top = box.Y + static_cast<LONG>(offset);
            link->rect = RECT{box.X, top, box.X + box.Width, top + box.Height};
        }
    }
}

bool MirlStatic::PrepareRect(Gdiplus::Graphics &g, bool hasText, bool)
{
    RECT client = {};
    ::GetClientRect(m_hWnd, &client);
    MirlCaptionInput input;
    input.left = client.left;
    input.top = client.top;
    input.right = client.right;
    input.bottom = client.bottom;
    input.align = m_Align;
    input.margin = 0;
    input.hasText = hasText;
    input.hasImage = m_Bitmap != NULL;
    if (m_Bitmap != NULL) {
        input.imageWidth = m_Bitmap->GetWidth();
        input.imageHeight = m_Bitmap->GetHeight();
    }
    return MIRL::PlaceCaption(
        input,
        [this, &g](const Gdiplus::RectF &rect) {
            m_TextLayout.SetRect(rect);
            m_TextLayout.Measure(g);
            return m_TextLayout.GetRect();
        },
        m_ImageRect);
}

void MirlStatic::DoPaint(WTL::CDCHandle dc)
{
    RECT client = {};
    ::GetClientRect(m_hWnd, &client);
    Gdiplus::Graphics g(static_cast<HDC>(dc));
    if (!m_Transparent) {
        if (m_BkBrush != NULL) {
            g.FillRectangle(m_BkBrush, 0, 0, client.right, client.bottom);
        }
    } else {
        PaintParentBkGround(dc);
    }
    size_t length = m_DisplayText.size();
    if (!m_LayoutReady) {
        BuildLinks();
        m_TextLayout.SetText(m_DisplayText.c_str());
        m_LayoutReady = PrepareRect(g, length != 0, false);
        BuildLinksRegion(g);
        m_LinksReady = true;
    }
    if (length != 0) {
        m_TextLayout.Draw(g, m_TxBrush);
    }
    if (m_Bitmap != NULL) {
        Gdiplus::RectF target = (m_Style & BS_BACKIMGE)
                                    ? Gdiplus::RectF(0.0f, 0.0f, static_cast<float>(client.right),
                                                     static_cast<float>(client.bottom))
                                    : m_ImageRect;
        // Mirrored edges keep a stretched picture from fading into the background at its borders.
        Gdiplus::ImageAttributes attributes;
        attributes.SetWrapMode(Gdiplus::WrapModeTileFlipXY);
        g.DrawImage(m_Bitmap, target, 0.0f, 0.0f, static_cast<float>(m_Bitmap->GetWidth()),
                    static_cast<float>(m_Bitmap->GetHeight()), Gdiplus::UnitPixel, &attributes);
    }
}

LRESULT MirlStatic::OnDestroy(UINT, WPARAM, LPARAM, BOOL &)
{
    ClearLinks();
    return 0;
}

LRESULT MirlStatic::OnCreate(UINT uMsg, WPARAM wParam, LPARAM lParam, BOOL &bHandled)
{
    MirlWindowImpl<MirlStatic>::OnCreate(uMsg, wParam, lParam, bHandled);
    if (m_CursorArrow == NULL) {
        // A shared system cursor is never freed: it is looked up once for all labels.
        static const HCURSOR arrow = ::LoadCursorW(NULL, IDC_ARROW);
        m_CursorArrow = arrow;
    }
    if (m_Pic != NULL) {
        delete m_Bitmap;
        m_Bitmap = MIRL::LoadElementBitmap(m_Pic);
    }
    MirlUiWindow::Attribute *layout = m_UiWindow != NULL ? m_UiWindow->GetAttribute(L"Layout") : NULL;
    m_Align = layout != NULL ? MirlTextLayout::ParseLayoutStyle(layout->GetValue()) : 0;
    m_TextLayout.SetFont(m_TxFont);
    m_TextLayout.SetStyle(m_Align);
    m_TextLayout.SetText(m_DisplayText.c_str());
    return 0;
}

LRESULT MirlStatic::OnSetWindowText(UINT, WPARAM, LPARAM lParam, BOOL &)
{
    const wchar_t *text = reinterpret_cast<const wchar_t *>(lParam);
    if (text == NULL) {
        text = L"";
    }
    if (m_Text == text) {
        if (m_DisplayText != m_Text) {
            m_DisplayText = m_Text;
        }
        return 0;
    }
    m_Text = text;
    m_DisplayText = m_Text;
    m_LayoutReady = false;
    if (::IsWindow(m_hWnd)) {
        ::InvalidateRect(m_hWnd, NULL, TRUE);
    }
    return 0;
}

LRESULT MirlStatic::OnSetCursor(UINT, WPARAM, LPARAM, BOOL &)
{
    ::SetCursor(m_OverLink && m_CursorHand != NULL ? m_CursorHand : m_CursorArrow);
    return TRUE;
}

int MirlStatic::FindLink(POINT point) const
{
    for (size_t i = 0; i < m_Links.size(); ++i) {
        if (::PtInRect(&m_Links[i]->rect, point)) {
            return static_cast<int>(i);
        }
    }
    return -1;
}

LRESULT MirlStatic::OnMouseMove(UINT, WPARAM, LPARAM lParam, BOOL &)
{
    if (m_LinksReady && m_HasLinks) {
        POINT point = {static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam))};
        m_OverLink = FindLink(point) >= 0 ? 1 : 0;
    }
    return 0;
}

LRESULT MirlStatic::OnLButtonDown(UINT, WPARAM, LPARAM lParam, BOOL &)
{
    if (!m_HasLinks) {
        return 0;
    }
    POINT point = {static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam))};
    m_CurLink = FindLink(point);
    if (m_CurLink >= 0) {
        WORD id = LOWORD(::GetWindowLongW(m_hWnd, GWL_ID));
        ::SendMessageW(::GetParent(m_hWnd), WM_COMMAND, MAKEWPARAM(id, BN_CLICKED), reinterpret_cast<LPARAM>(m_hWnd));
    }
    return 0;
}

LRESULT MirlStatic::OnSize(UINT, WPARAM, LPARAM, BOOL &)
{
    m_LayoutReady = false;
    m_DisplayText = m_Text;
    return 0;
}

LRESULT MirlStatic::OnSysColorChange(UINT uMsg, WPARAM wParam, LPARAM lParam, BOOL &)
{
    return DefWindowProc(uMsg, wParam, lParam);
}

LRESULT MirlStatic::OnCtlColor(UINT, WPARAM, LPARAM, BOOL &)
{
    return reinterpret_cast<LRESULT>(::GetStockObject(NULL_BRUSH));
}
