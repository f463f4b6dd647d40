// The edit's input: characters, keys, the mouse, the clipboard and the input method. Each
// handler decides on the engine's state and the key state only.
#include "MirlEdit.h"

#include <cstring>
#include <cwchar>

namespace {

bool KeyDown(int key)
{
    return (::GetKeyState(key) & 0x8000) != 0;
}

const wchar_t kTabBlanks[] = L"   ";

} // namespace

// ---- characters ----

void MirlEdit::InsertAtCursor(const std::wstring &text)
{
    const int length = static_cast<int>(m_Text.size());
    if (m_CursorPos < 0) {
        m_CursorPos = 0;
    }
    if (m_CursorPos > length) {
        m_CursorPos = length;
    }
    m_Text.insert(static_cast<size_t>(m_CursorPos), text);
    m_CursorPos += static_cast<int>(text.size());
}

void MirlEdit::OnChar(UINT c, UINT, UINT)
{
    if (m_SwallowChar) {
        m_SwallowChar = false;
        return;
    }
    ClampPositions();
    switch (c) {
    case 8:
        if (!m_Text.empty()) {
            if (m_HasSelection) {
                DeleteSelectedText();
            } else if (m_CursorPos > m_StartChar) {
                // Backspace does not reach behind the first shown character.
                --m_CursorPos;
                m_Text.erase(static_cast<size_t>(m_CursorPos), 1);
                PadOnDeleteString();
            }
        }
        break;
    case 9:
        AdjustStartChar(0, EditClientRect());
        if (m_HasSelection) {
            ReplaceSelectedText(kTabBlanks);
        } else {
            InsertAtCursor(kTabBlanks);
        }
        break;
    case 13:
        ::ReleaseCapture();
        ::SetFocus(::GetParent(m_hWnd));
        return;
    case 27:
        NotifyParent(EN_ERRSPACE);
        return;
    default: {
        if (!IsNumber(static_cast<wchar_t>(c)) && (m_Style & ES_NUMBER)) {
            ::MessageBeep(static_cast<UINT>(-1));
            return;
        }
        int low = 0;
        int high = 0;
        GetSelectionRange(low, high);
        const int selected = m_HasSelection ? high - low : 0;
        if (static_cast<int>(m_Text.size()) - selected >= MaxTypedLength) {
            ::MessageBeep(static_cast<UINT>(-1));
            return;
        }
        if (!IsWindowEnabled()) {
            break;
        }
        AdjustStartChar(0, EditClientRect());
        // Only Latin-1 comes through WM_CHAR: the rest of the world types through the input method.
        const std::wstring typed(1, static_cast<wchar_t>(c & 0xFF));
        if (m_HasSelection) {
            ReplaceSelectedText(typed);
        } else {
            InsertAtCursor(typed);
        }
        break;
    }
    }
    if (!m_Text.empty()) {
        m_Typed = 1;
    }
    m_HasSelection = false;
    BuildCharRects();
    RedrawEdit();
    SetCursorPos(m_CursorPos);
    NotifyParent(EN_CHANGE);
}

// ---- keys ----

void MirlEdit::TrackAnchor(bool shift)
{
    if (!m_HasSelection && shift) {
        m_SelAnchor = m_CursorPos;
    }
    m_HasSelection = shift;
}

void MirlEdit::MarkSelection(bool shift)
{
    if (shift && m_SelAnchor != m_CursorPos) {
        m_Highlighting = true;
    }
}

void MirlEdit::TrackVerticalAnchor(bool shift, bool control)
{
    if (m_HasSelection) {
        m_HasSelection = shift && !control;
    } else if (shift) {
        if (!control) {
            m_SelAnchor = m_CursorPos;
        }
        m_HasSelection = !control;
    } else {
        m_HasSelection = false;
    }
}

void MirlEdit::StepLeft(bool control)
{
    if (control) {
        m_CursorPos = GetCharPastWhiteSpace(false, m_CursorPos);
    } else if (!m_Text.empty()) {
        --m_CursorPos;
    }
    if (m_CursorPos < 0) {
        m_CursorPos = 0;
    }
    if (!m_MultiLine && m_CursorPos < m_StartChar) {
        m_StartChar = m_CursorPos;
    }
}

void MirlEdit::StepRight(bool control)
{
    if (control) {
        m_CursorPos = GetCharPastWhiteSpace(true, m_CursorPos);
    } else if (m_CursorPos < static_cast<int>(m_Text.size())) {
        ++m_CursorPos;
    }
    if (!m_MultiLine) {
        const RECT client = EditClientRect();
        if (m_CursorPos - m_StartChar > GetShownCharCount(client)) {
            ++m_StartChar;
        }
    }
}

void MirlEdit::OnKeyDown(UINT key, UINT, UINT)
{
    const bool control = KeyDown(VK_CONTROL);
    const bool shift = KeyDown(VK_SHIFT);
    m_Highlighting = false;
    ClampPositions();
    const int length = static_cast<int>(m_Text.size());
    bool placeCaret = true;
    switch (key) {
    case VK_END:
        TrackAnchor(shift);
        if (m_CursorPos < length) {
            m_CursorPos = length;
        }
        MarkSelection(shift);
        break;
    case VK_HOME:
        TrackAnchor(shift);
        if (m_CursorPos > m_StartChar) {
            m_CursorPos = m_StartChar;
        }
        MarkSelection(shift);
        break;
    case VK_LEFT:
        TrackAnchor(shift);
        StepLeft(control);
        MarkSelection(shift);
        break;
    case VK_RIGHT:
        TrackAnchor(shift);
        StepRight(control);
        MarkSelection(shift);
        break;
    case VK_UP:
    case VK_DOWN: {
        TrackVerticalAnchor(shift, control);
        POINT caret = {m_CaretX, m_CaretY};
        const int line = FindLineForPoint(caret);
        const int target = key == VK_UP ? line - 1 : line + 1;
        const bool moves = key == VK_UP ? line > 0 : line + 1 < GetLineCount();
        if (moves && m_MultiLine) {
            m_CursorPos = MoveCursorToLine(target);
            ::SetCaretPos(m_CaretX, m_CaretY);
            placeCaret = false;
        } else if (key == VK_UP) {
            StepLeft(control);
        } else {
            StepRight(control);
        }
        MarkSelection(shift);
        break;
    }
    case VK_DELETE:
        if (m_HasSelection) {
            DeleteSelectedText();
        } else if (m_CursorPos < length) {
            m_Text.erase(static_cast<size_t>(m_CursorPos), 1);
            SetCursorPos(m_CursorPos);
        }
        BuildCharRects();
        RedrawEdit();
        break;
    case 'C':
    case 99:
    case 'V':
    case 118:
    case 'X':
    case 120:
        if (IsWindowEnabled()) {
            if (!control) {
                SetMsgHandled(FALSE);
                return;
            }
            if (key == 'C' || key == 99) {
                CopyToClipboard(false);
            } else if (key == 'V' || key == 118) {
                DoPaste();
            } else {
                CopyToClipboard(true);
            }
            // The control character that the same keys make is not text.
            m_SwallowChar = true;
            return;
        }
        break;
    default:
        SetMsgHandled(FALSE);
        return;
    }
    if (placeCaret) {
        SetCursorPos(m_CursorPos);
    }
    RedrawEdit();
    NotifyParent(EN_CHANGE);
}

// ---- the mouse ----

void MirlEdit::OnLButtonDown(UINT, POINT point)
{
    ::CreateCaret(m_hWnd, NULL, 1, m_LineHeight);
    ::ShowCaret(m_hWnd);
    m_HasSelection = false;
    if (!m_Text.empty()) {
        ClampPositions();
        m_CursorPos = ComputeCaretPosNew(point);
        SetCursorPos(m_CursorPos);
        ::SetCapture(m_hWnd);
        ::SetCaretPos(m_CaretX, m_CaretY);
        m_Highlighting = true;
        m_SelAnchor = m_CursorPos;
    } else {
        SetCursorPos(0);
    }
    AdjustStartChar(0, EditClientRect());
    ::SetFocus(m_hWnd);
    ::ShowCaret(m_hWnd);
    m_HasFocus = true;
    RedrawEdit();
}

void MirlEdit::OnMouseMove(UINT, POINT point)
{
    if (m_Highlighting) {
        m_HasSelection = true;
        DoHilight(point);
    }
}

void MirlEdit::DoHilight(POINT point)
{
    if (!m_Highlighting) {
        return;
    }
    const int caretX = m_CaretX;
    const int caretY = m_CaretY;
    const int cursor = m_CursorPos;
    m_CursorPos = ComputeCaretPosNew(point);
    if (caretX == m_CaretX && caretY == m_CaretY && cursor == m_CursorPos) {
        return;
    }
    ::SetCaretPos(m_CaretX, m_CaretY);
    RedrawEdit();
}

void MirlEdit::OnLButtonUp(UINT, POINT)
{
    if (m_Highlighting) {
        m_Highlighting = false;
        ::ReleaseCapture();
    }
}

void MirlEdit::OnCaptureChanged(HWND)
{
    ::InvalidateRect(m_hWnd, NULL, TRUE);
    SetMsgHandled(FALSE);
}

void MirlEdit::OnLButtonDblClick(UINT, POINT point)
{
    if (m_MultiLine) {
        m_HasSelection = false;
        return;
    }
    m_HasSelection = true;
    ClampPositions();
    const int p = ComputeCaretPosNew(point);
    const int length = static_cast<int>(m_Text.size());
    int i = std::min(p, length);
    for (; i > 0; --i) {
        if (i != p && i < length && m_Text[static_cast<size_t>(i)] == L' ') {
            break;
        }
    }
    m_SelAnchor = i;
    int j = std::max(p, 0);
    while (j < length) {
        if (m_Text[static_cast<size_t>(j)] == L' ') {
            ++j;
            break;
        }
        ++j;
    }
    m_CursorPos = j;
    if (!m_Text.empty()) {
        // The view's start, not 0, decides whether the blank before the word is left out.
        if (i > m_StartChar) {
            m_SelAnchor = i + 1;
        }
        if (j < length) {
            m_CursorPos = j - 1;
        }
    }
    SetCursorPos(m_CursorPos);
    RedrawEdit();
}

void MirlEdit::OnRButtonDown(UINT flags, POINT point)
{
    HWND parent = ::GetParent(m_hWnd);
    if (parent == NULL) {
        return;
    }
    ::MapWindowPoints(m_hWnd, parent, &point, 1);
    ::PostMessageW(parent, WM_RBUTTONDOWN, flags, MAKELPARAM(point.x, point.y));
}

// ---- the clipboard ----

void MirlEdit::CopyToClipboard(bool cut)
{
    if (!m_HasSelection) {
        return;
    }
    int low = 0;
    int high = 0;
    GetSelectionRange(low, high);
    if (!::OpenClipboard(m_hWnd)) {
        return;
    }
    const size_t units = static_cast<size_t>(high - low);
    HGLOBAL block = ::GlobalAlloc(GMEM_DDESHARE | GMEM_ZEROINIT | GMEM_MOVEABLE, (units + 1) * sizeof(wchar_t));
    if (block != NULL) {
        wchar_t *data = static_cast<wchar_t *>(::GlobalLock(block));
        if (data != NULL) {
            std::memcpy(data, m_Text.data() + low, units * sizeof(wchar_t));
            data[units] = L'\0';
            ::GlobalUnlock(block);
        }
        ::EmptyClipboard();
        if (::SetClipboardData(m_ClipboardFormat, block) == NULL) {
            ::GlobalFree(block);
        }
    }
    ::CloseClipboard();
    if (cut) {
        DeleteSelectedText();
        BuildCharRects();
        RedrawEdit();
        SetCursorPos(m_CursorPos);
    }
}

bool MirlEdit::ReadClipboardText(std::wstring &text)
{
    bool ansi = false;
    HANDLE data = m_ClipboardFormat != 0 ? ::GetClipboardData(m_ClipboardFormat) : NULL;
    if (data == NULL) {
        data = ::GetClipboardData(CF_UNICODETEXT);
    }
    if (data == NULL) {
        data = ::GetClipboardData(CF_TEXT);
        ansi = true;
    }
    if (data == NULL) {
        return false;
    }
    const SIZE_T size = ::GlobalSize(data);
    if (size == 0) {
        return false;
    }
    const void *locked = ::GlobalLock(data);
    if (locked == NULL) {
        return false;
    }
    // Never past the block, whether or not it holds its terminating zero.
    if (ansi) {
        const char *bytes = static_cast<const char *>(locked);
        const size_t length = strnlen(bytes, size);
        const int wide = length > 0 ? ::MultiByteToWideChar(::GetACP(), 0, bytes, static_cast<int>(length), NULL, 0) : 0;
        text.assign(static_cast<size_t>(wide > 0 ? wide : 0), L'\0');
        if (wide > 0) {
            ::MultiByteToWideChar(::GetACP(), 0, bytes, static_cast<int>(length), &text[0], wide);
        }
    } else {
        const wchar_t *units = static_cast<const wchar_t *>(locked);
        text.assign(units, wcsnlen(units, size / sizeof(wchar_t)));
    }
    ::GlobalUnlock(data);
    return true;
}

void MirlEdit::DoPaste()
{
    if (!::OpenClipboard(m_hWnd)) {
        return;
    }
    std::wstring pasted;
    if (!ReadClipboardText(pasted)) {
        ::CloseClipboard();
        return;
    }
    if ((m_Style & ES_NUMBER) && !IsNumber(pasted.c_str())) {
        ::MessageBeep(static_cast<UINT>(-1));
        ::CloseClipboard();
        return;
    }
    ClampPositions();
    int low = 0;
    int high = 0;
    GetSelectionRange(low, high);
    const long long selected = m_HasSelection ? high - low : 0;
    const long long length = static_cast<long long>(m_Text.size());
    if (length - selected + static_cast<long long>(pasted.size()) > MaxTypedLength) {
        const long long room = selected - length + MaxTypedLength;
        pasted.resize(room > 0 ? static_cast<size_t>(room) : 0);
    }
    if (!pasted.empty()) {
        if (m_HasSelection) {
            ReplaceSelectedText(pasted);
        } else {
            InsertAtCursor(pasted);
        }
        m_HasSelection = false;
        RedrawEdit();
        BuildCharRects();
        SetCursorPos(m_CursorPos);
    }
    ::CloseClipboard();
}

LRESULT MirlEdit::OnCopy()
{
    CopyToClipboard(false);
    return 0;
}

LRESULT MirlEdit::OnCut()
{
    CopyToClipboard(true);
    return 0;
}

LRESULT MirlEdit::OnPaste()
{
    DoPaste();
    return 0;
}

// ---- the input method ----

bool MirlEdit::InitIME()
{
    if (::ImmGetDefaultIMEWnd(m_hWnd) == NULL) {
        return true;
    }
    HIMC context = ::ImmGetContext(m_hWnd);
    if (context == NULL) {
        return true;
    }
    m_IMEWasOpen = ::ImmGetOpenStatus(context) != FALSE;
    if (!m_IMEWasOpen && m_IMEWanted) {
        ::ImmSetOpenStatus(context, TRUE);
        ::ImmSetConversionStatus(context, m_IMEConversion, m_IMESentence);
    }
    SetIMECompWin(context);
    LOGFONTW font = m_LogFont;
    ::ImmSetCompositionFontW(context, &font);
    ::ImmReleaseContext(m_hWnd, context);
    return true;
}

void MirlEdit::SetIMECompWin(HIMC context)
{
    if (context == NULL) {
        return;
    }
    COMPOSITIONFORM form = {};
    form.dwStyle = CFS_POINT;
    form.ptCurrentPos.x = m_CaretX;
    form.ptCurrentPos.y = m_CaretY;
    ::ImmSetCompositionWindow(context, &form);
}

void MirlEdit::UpdateIME()
{
    if (!m_NeedIME || ::ImmGetDefaultIMEWnd(m_hWnd) == NULL) {
        return;
    }
    HIMC context = ::ImmGetContext(m_hWnd);
    if (context != NULL) {
        SetIMECompWin(context);
        ::ImmReleaseContext(m_hWnd, context);
    }
}

namespace {

// A composition string of the context, read into a buffer of its reported size. False when
// there is none or the read fails.
bool ReadCompositionString(HIMC context, DWORD which, std::wstring &text)
{
    const LONG bytes = ::ImmGetCompositionStringW(context, which, NULL, 0);
    if (bytes <= 0) {
        return false;
    }
    std::vector<wchar_t> buffer(static_cast<size_t>(bytes) / sizeof(wchar_t) + 1, L'\0');
    const LONG read = ::ImmGetCompositionStringW(context, which, buffer.data(), static_cast<DWORD>(bytes));
    if (read == IMM_ERROR_NODATA || read == IMM_ERROR_GENERAL || read < 0) {
        return false;
    }
    const size_t units = std::min(static_cast<size_t>(read) / sizeof(wchar_t), buffer.size());
    text.assign(buffer.data(), units);
    return true;
}

} // namespace

LRESULT MirlEdit::OnIMEChars(UINT message, WPARAM wParam, LPARAM lParam)
{
    // Where the code page is 1252 the input method is none of this control's business.
    if (!m_NeedIME || !(lParam & GCS_RESULTSTR)) {
        return ::CallWindowProcW(m_pfnSuperWindowProc, m_hWnd, message, wParam, lParam);
    }
    HIMC context = ::ImmGetContext(m_hWnd);
    if (context != NULL) {
        std::wstring result;
        if (ReadCompositionString(context, GCS_RESULTSTR, result)) {
            // The input method's text goes in whatever the length: the typing limit is not its.
            InsertText(result.data(), static_cast<int>(result.size()));
            UpdateIME();
        }
        ::ImmReleaseContext(m_hWnd, context);
    }
    NotifyParent(EN_CHANGE);
    return 0;
}

void MirlEdit::CloseIME()
{
    if (::ImmGetDefaultIMEWnd(m_hWnd) == NULL) {
        return;
    }
    HIMC context = ::ImmGetContext(m_hWnd);
    if (context == NULL) {
        return;
    }
    const bool open = ::ImmGetOpenStatus(context) != FALSE;
    if (open) {
        m_IMEWanted = true;
        DWORD conversion = 0;
        DWORD sentence = 0;
        ::ImmGetConversionStatus(context, &conversion, &sentence);
        m_IMEConversion = conversion;
        m_IMESentence = sentence;
    } else {
        m_IMEWanted = false;
    }
    std::wstring composing;
    const bool hasComposition = ::ImmGetCompositionStringW(context, GCS_COMPSTR, NULL, 0) > 0;
    if (hasComposition) {
        const bool read = ReadCompositionString(context, GCS_COMPSTR, composing);
        ::ImmNotifyIME(context, NI_COMPOSITIONSTR, CPS_CANCEL, 0);
        // Text still being composed when the focus leaves is kept.
        if (read) {
            InsertText(composing.data(), static_cast<int>(composing.size()));
        }
    }
    ::ImmNotifyIME(context, NI_COMPOSITIONSTR, CPS_CANCEL, 0);
    if (open && m_IMEWasOpen) {
        ::ImmSetOpenStatus(context, FALSE);
    }
    ::ImmReleaseContext(m_hWnd, context);
}
