// The edit window: creation from the template, the skin's colours and watermark, WM_SETTEXT,
// focus, the two resets, and the screen operations of the text engine.
#include "MirlEdit.h"

#include "MirlImage.h"

namespace {

const Gdiplus::ARGB kDefaultSelColor = 0xFF808080;

// A colour element of the skin by its fixed name, or the colour given.
Gdiplus::ARGB SkinColor(const wchar_t *name, Gdiplus::ARGB fallback)
{
    MirlUI *ui = MirlUI::Instance();
    MirlUiElement *element = ui != NULL ? ui->GetUiElement(name, UI_ELEMENT_COLOR) : NULL;
    return element != NULL ? MIRL::ColorToArgb(static_cast<MirlUiElementColor *>(element)) : fallback;
}

} // namespace

MirlEdit::MirlEdit()
    : Base(), MirlEditEngine(m_Text), m_SelBrush(NULL), m_SelTextBrush(NULL), m_BorderPen(NULL), m_BackImage(NULL),
      m_HasFocus(false), m_SelAll(false), m_NotifyKillFocus(1), m_CodePage(1252), m_NeedIME(false),
      m_ClipboardFormat(0), m_IMEWasOpen(false), m_IMEWanted(true), m_IMEConversion(9), m_IMESentence(4),
      m_SwallowChar(false), m_Typed(0), m_TextMeasurer(NULL), m_SingleLineFont(NULL), m_SingleLineFamily(NULL),
      m_SelColor(kDefaultSelColor), m_SelTextColor(kDefaultSelColor), m_BorderColor(kDefaultSelColor),
      m_DrawEachCharacter(false), m_LastTextDrawCalls(0), m_PaintDC(NULL), m_PaintBitmap(NULL),
      m_PaintOldBitmap(NULL)
{
    m_PaintSize.cx = 0;
    m_PaintSize.cy = 0;
    m_bMsgHandled = 0;
}

MirlEdit::~MirlEdit()
{
    FreePaintPicture();
    FreePaintObjects();
    delete m_BackImage;
    m_BackImage = NULL;
    SetMeasurer(NULL);
    delete m_TextMeasurer;
    m_TextMeasurer = NULL;
    Release();
}

HWND MirlEdit::Create(MirlWindowBase *parent, HWND hWndParent, ATL::_U_RECT rect, const wchar_t *name,
                      unsigned long style, unsigned long exStyle, ATL::_U_MENUorID menuOrID, void *createParam)
{
    return Base::Create(parent, hWndParent, rect, name, style, exStyle, menuOrID, createParam);
}

BOOL MirlEdit::SubclassWindow(HWND hWnd)
{
    return Base::SubclassWindow(hWnd);
}

BOOL MirlEdit::SubclassWindow(MirlWindowBase *source, MirlWindowBase *parent)
{
    return Base::SubclassWindow(source, parent);
}

BOOL MirlEdit::PreTranslateMessage(MSG *)
{
    return 0;
}

void MirlEdit::FreePaintObjects()
{
    delete m_SelBrush;
    m_SelBrush = NULL;
    delete m_SelTextBrush;
    m_SelTextBrush = NULL;
    delete m_BorderPen;
    m_BorderPen = NULL;
    delete m_SingleLineFont;
    m_SingleLineFont = NULL;
    delete m_SingleLineFamily;
    m_SingleLineFamily = NULL;
}

void MirlEdit::LoadColors()
{
    FreePaintObjects();
    // Each missing colour falls back on the one before it.
    m_SelColor = SkinColor(L"EditSel", kDefaultSelColor);
    m_SelTextColor = SkinColor(L"Black", m_SelColor);
    m_BorderColor = SkinColor(L"EditBorder", m_SelTextColor);
    m_SelBrush = new Gdiplus::SolidBrush(Gdiplus::Color(m_SelColor));
    m_SelTextBrush = new Gdiplus::SolidBrush(Gdiplus::Color(m_SelTextColor));
    m_BorderPen = new Gdiplus::Pen(Gdiplus::Color(m_BorderColor), 1.0f);
    m_BorderPen->SetAlignment(Gdiplus::PenAlignmentCenter);

    // Single-line edits draw in 11-pixel Arial; a system without it draws in a sans serif
    // family that exists.
    m_SingleLineFamily = new Gdiplus::FontFamily(L"Arial");
    if (m_SingleLineFamily->GetLastStatus() != Gdiplus::Ok) {
        delete m_SingleLineFamily;
        m_SingleLineFamily = Gdiplus::FontFamily::GenericSansSerif()->Clone();
    }
    if (m_SingleLineFamily != NULL) {
        m_SingleLineFont = new Gdiplus::Font(m_SingleLineFamily, 11.0f, Gdiplus::FontStyleRegular, Gdiplus::UnitPixel);
        if (m_SingleLineFont->GetLastStatus() != Gdiplus::Ok) {
            delete m_SingleLineFont;
            m_SingleLineFont = NULL;
        }
    }
}

LRESULT MirlEdit::OnCreate(UINT message, WPARAM wParam, LPARAM lParam, BOOL &handled)
{
    Base::OnCreate(message, wParam, lParam, handled);
    if (!m_Text.empty() && (m_Style & ES_NUMBER) && !IsNumber(m_Text.c_str())) {
        m_Text.clear();
    }

    MirlUiWindow::Attribute *water = m_UiWindow != NULL ? m_UiWindow->GetAttribute(L"WaterText") : NULL;
    m_WaterText.clear();
    if (water != NULL && MirlUI::Instance() != NULL) {
        MirlUiElement *text = MirlUI::Instance()->GetUiElement(water->GetValue(), UI_ELEMENT_TEXT);
        if (text != NULL) {
            m_WaterText = static_cast<MirlUiElementText *>(text)->GetText();
        }
    }
    delete m_BackImage;
    m_BackImage = m_Pic != NULL ? MIRL::LoadElementBitmap(m_Pic) : NULL;
    LoadColors();

    SetEditStyle(m_Style);
    const int alignment = (m_Style & ES_CENTER) ? 1 : ((m_Style & ES_RIGHT) ? 2 : 0);
    if (m_TextMeasurer == NULL) {
        m_TextMeasurer = new MirlEditTextMeasurer(m_hWnd, m_TxFont);
    }
    m_TextMeasurer->SetWindow(m_hWnd);
    m_TextMeasurer->SetFont(m_TxFont);
    m_TextMeasurer->SetLineAlignment(alignment);
    SetMeasurer(m_TextMeasurer);
    m_ClipboardFormat = ::RegisterClipboardFormatW(L"MirlEdit Unicode text");

    HDC dc = ::GetDC(m_hWnd);
    if (dc != NULL) {
        Gdiplus::Graphics graphics(dc);
        const float height = m_TxFont != NULL ? m_TxFont->GetHeight(&graphics) : 0.0f;
        m_LineHeight = Truncate(height + 0.5f);
        ::ReleaseDC(m_hWnd, dc);
    }

    BuildCharRects();
    const int length = static_cast<int>(m_Text.size());
    SetCursorPos(length);
    m_CursorPos = length;
    m_CodePage = ::GetACP();
    m_NeedIME = m_CodePage != 1252;
    handled = TRUE;
    return 0;
}

LRESULT MirlEdit::OnEraseBkgnd(UINT, WPARAM, LPARAM, BOOL &)
{
    return 1;
}

LRESULT MirlEdit::OnSetWindowText(UINT, WPARAM, LPARAM lParam, BOOL &)
{
    const wchar_t *text = reinterpret_cast<const wchar_t *>(lParam);
    if (text == NULL) {
        text = L"";
    }
    // The window's own text comes back here from the framework's SetWindowTextW, which reads
    // its pointer again afterwards: the buffer must stay where it is.
    if (text != m_Text.c_str()) {
        std::wstring value(text);
        m_Text.swap(value);
    }
    BuildCharRects();
    const int length = static_cast<int>(m_Text.size());
    SetCursorPos(length);
    m_CursorPos = length;
    m_SelAnchor = 0;
    m_HasSelection = true;
    ::InvalidateRect(m_hWnd, NULL, TRUE);
    return 0;
}

LRESULT MirlEdit::OnDestroy(UINT message, WPARAM wParam, LPARAM lParam, BOOL &handled)
{
    if (::GetCapture() == m_hWnd) {
        ::ReleaseCapture();
    }
    FreePaintPicture();
    Base::OnDestroy(message, wParam, lParam, handled);
    handled = FALSE;
    return 0;
}

const wchar_t *MirlEdit::GetWindowTextW() const
{
    return m_Text.empty() ? NULL : m_Text.c_str();
}

bool MirlEdit::IsNumber(wchar_t c)
{
    return c >= L'0' && c <= L'9';
}

bool MirlEdit::IsNumber(const wchar_t *text)
{
    if (text == NULL) {
        return false;
    }
    for (; *text != L'\0'; ++text) {
        if (!IsNumber(*text)) {
            return false;
        }
    }
    return true;
}

void MirlEdit::NotifyParent(WORD code)
{
    // The text is the edit's accessible value.
    if (code == EN_CHANGE) {
        MIRL::NotifyAccessibleEvent(m_hWnd, EVENT_OBJECT_VALUECHANGE);
    }
    HWND parent = ::GetParent(m_hWnd);
    if (parent != NULL) {
        const WORD id = static_cast<WORD>(::GetDlgCtrlID(m_hWnd));
        ::SendMessageW(parent, WM_COMMAND, MAKEWPARAM(id, code), reinterpret_cast<LPARAM>(m_hWnd));
    }
}

void MirlEdit::Reset(bool hide)
{
    if (m_NeedIME) {
        CloseIME();
    }
    NotifyParent(EN_KILLFOCUS);
    if (hide) {
        ::DestroyCaret();
        ::HideCaret(m_hWnd);
    }
    // The tables, the cursor and the selection stay as they were until the next build; every
    // use clamps them to the empty text.
    m_Text.clear();
    m_HasFocus = !hide;
    ::InvalidateRect(m_hWnd, NULL, TRUE);
}

void MirlEdit::ResetSearchContent()
{
    m_Text.clear();
    NotifyParent(EN_CHANGE);
    ::CreateCaret(m_hWnd, NULL, 1, m_LineHeight);
    m_CursorPos = 0;
    SetCursorPos(0);
    ::SetCaretPos(m_CaretX, m_CaretY);
    ::ShowCaret(m_hWnd);
    m_HasFocus = true;
    m_HasSelection = false;
    ::SetFocus(m_hWnd);
}

void MirlEdit::OnSetFocus(HWND)
{
    ::CreateCaret(m_hWnd, NULL, 1, m_LineHeight);
    if (m_NeedIME) {
        InitIME();
    }
    BuildCharRects();
    // A new caret stands where the engine last put it.
    ::SetCaretPos(m_CaretX, m_CaretY);
    ::ShowCaret(m_hWnd);
    m_HasFocus = true;
    ::InvalidateRect(m_hWnd, NULL, TRUE);
    SetMsgHandled(FALSE);
}

void MirlEdit::OnKillFocus(HWND)
{
    if (m_NeedIME) {
        CloseIME();
    }
    if (m_NotifyKillFocus != 0) {
        NotifyParent(EN_KILLFOCUS);
    }
    ::DestroyCaret();
    ::HideCaret(m_hWnd);
    m_HasFocus = false;
    ::InvalidateRect(m_hWnd, NULL, TRUE);
    SetMsgHandled(FALSE);
}

RECT MirlEdit::EditClientRect()
{
    RECT client = {};
    if (m_hWnd != NULL) {
        ::GetClientRect(m_hWnd, &client);
    }
    return client;
}

void MirlEdit::PlaceCaret(int x, int y)
{
    ::SetCaretPos(x, y);
}

void MirlEdit::RedrawEdit()
{
    if (m_hWnd != NULL) {
        ::RedrawWindow(m_hWnd, NULL, NULL, RDW_INVALIDATE | RDW_ERASE | RDW_UPDATENOW);
    }
}

void MirlEdit::FocusEdit()
{
    if (m_hWnd != NULL) {
        ::SetFocus(m_hWnd);
    }
}
