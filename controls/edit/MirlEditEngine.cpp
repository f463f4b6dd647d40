// The edit's text engine. Every width is summed as truncated pixels, one character at a time, so
// that painting, hit testing and the caret walk the same numbers. Positions and tables are
// checked against the text and the table at every read: a table may be stale after the text
// was emptied without a rebuild, and a cursor may stand past the end.
#include "MirlEditEngine.h"

#include <climits>

namespace {

const int kStartCharGuard = 260;

bool IsBlank(wchar_t c)
{
    return c == L' ';
}

} // namespace

MirlEditEngine::MirlEditEngine(std::wstring &text)
    : m_EditText(text), m_Measurer(NULL), m_EditStyle(0), m_ClientRect(), m_LineHeight(0), m_SelAnchor(0),
      m_StartChar(0), m_CursorPos(0), m_Highlighting(false), m_HasSelection(false), m_CaretX(0), m_CaretY(0),
      m_ScaleX(1.0f), m_ScaleY(1.0f), m_OuterScaleX(1.0f), m_OuterScaleY(1.0f), m_MultiLine(false), m_Margin(4)
{
}

MirlEditEngine::~MirlEditEngine()
{
}

int MirlEditEngine::Truncate(double value)
{
    // NaN compares false both ways and becomes 0.
    if (!(value > static_cast<double>(INT_MIN) && value < static_cast<double>(INT_MAX))) {
        return value >= static_cast<double>(INT_MAX) ? INT_MAX : (value <= static_cast<double>(INT_MIN) ? INT_MIN : 0);
    }
    return static_cast<int>(value);
}

int MirlEditEngine::Truncate(float value)
{
    return Truncate(static_cast<double>(value));
}

namespace {

// Sums of pixels saturate instead of overflowing.
int AddPixels(int a, int b)
{
    long long sum = static_cast<long long>(a) + b;
    if (sum > INT_MAX) {
        return INT_MAX;
    }
    if (sum < INT_MIN) {
        return INT_MIN;
    }
    return static_cast<int>(sum);
}

} // namespace

void MirlEditEngine::SetEditStyle(unsigned long style)
{
    m_EditStyle = style;
    m_MultiLine = (style & ES_MULTILINE) != 0;
}

int MirlEditEngine::CharWidth(int position) const
{
    return Truncate(CharWidthF(position));
}

float MirlEditEngine::CharWidthF(int position) const
{
    if (position < 0 || static_cast<size_t>(position) >= m_CharRects.size()) {
        return 0.0f;
    }
    return m_CharRects[static_cast<size_t>(position)].Width;
}

void MirlEditEngine::ClampPositions()
{
    const int length = static_cast<int>(m_EditText.size());
    m_CursorPos = std::max(0, std::min(m_CursorPos, length));
    m_SelAnchor = std::max(0, std::min(m_SelAnchor, length));
    m_StartChar = std::max(0, std::min(m_StartChar, length));
}

void MirlEditEngine::GetSelectionRange(int &low, int &high) const
{
    const int length = static_cast<int>(m_EditText.size());
    int anchor = std::max(0, std::min(m_SelAnchor, length));
    int cursor = std::max(0, std::min(m_CursorPos, length));
    low = std::min(anchor, cursor);
    high = std::max(anchor, cursor);
}

int MirlEditEngine::BuildCharRects()
{
    const RECT client = EditClientRect();
    std::vector<Gdiplus::RectF>().swap(m_CharRects);
    std::vector<MirlEditLine>().swap(m_Lines);
    if (m_EditText.empty()) {
        return 0;
    }

    std::vector<Gdiplus::RectF> measured;
    if (m_Measurer != NULL) {
        m_Measurer->MeasureCharacters(m_EditText, measured);
    }
    // One rectangle per code unit, whatever the measurer gave.
    measured.resize(m_EditText.size(), Gdiplus::RectF(0.0f, 0.0f, 0.0f, 0.0f));
    m_CharRects.reserve(measured.size());
    m_Lines.reserve(measured.size());

    int top = m_MultiLine ? client.top : (client.bottom - m_LineHeight - client.top) / 2 + client.top;
    const float left = static_cast<float>(AddPixels(m_Margin, client.left));
    MirlEditLine line = {0, 0, left, static_cast<float>(top), 0.0f, static_cast<float>(m_LineHeight)};
    int running = client.left;
    const int limit = AddPixels(client.right, -m_Margin);
    const float scaleX = m_ScaleX * m_OuterScaleX;
    const float scaleY = m_ScaleY * m_OuterScaleY;

    for (size_t i = 0; i < measured.size(); ++i) {
        Gdiplus::RectF rect = measured[i];
        rect.X *= scaleX;
        rect.Width *= scaleX;
        rect.Y *= scaleY;
        rect.Height *= scaleY;
        running = AddPixels(running, Truncate(rect.Width));
        m_CharRects.push_back(rect);
        if (running <= limit || !m_MultiLine) {
            line.width += rect.Width;
            line.count += 1;
        } else {
            // Break before this character: the line that no longer holds it is closed.
            line.count = static_cast<int>(i) - line.first;
            m_Lines.push_back(line);
            top = AddPixels(top, m_LineHeight);
            line.first = static_cast<int>(i);
            line.count = 1;
            line.x = left;
            line.y = static_cast<float>(top);
            line.width = rect.Width;
            line.height = static_cast<float>(m_LineHeight);
            running = Truncate(rect.Width);
        }
    }
    if (line.width > 0.0f) {
        m_Lines.push_back(line);
    }
    return 0;
}

int MirlEditEngine::FindLineForChar(int position)
{
    if (m_Lines.empty()) {
        return -1;
    }
    int found = -1;
    for (size_t k = 0; k < m_Lines.size(); ++k) {
        const MirlEditLine &line = m_Lines[k];
        if (line.first <= position && static_cast<long long>(position) <= static_cast<long long>(line.first) + line.count) {
            found = static_cast<int>(k);
            break;
        }
    }
    if (found < 0) {
        return 0;
    }
    if (static_cast<size_t>(found) + 1 < m_Lines.size() && m_Lines[static_cast<size_t>(found) + 1].first == position) {
        return found + 1;
    }
    return found;
}

int MirlEditEngine::FindLineForPoint(POINT &point)
{
    if (m_Lines.empty()) {
        return -1;
    }
    const MirlEditLine &last = m_Lines.back();
    if (last.y + last.height < static_cast<float>(point.y)) {
        point.y = Truncate(last.y);
        return static_cast<int>(m_Lines.size()) - 1;
    }
    for (size_t k = 0; k < m_Lines.size(); ++k) {
        const MirlEditLine &line = m_Lines[k];
        if (Truncate(line.y) <= point.y && Truncate(line.y + line.height) > point.y) {
            return static_cast<int>(k);
        }
    }
    return -1;
}

int MirlEditEngine::GetCharByPos(const POINT &)
{
    return 0;
}

int MirlEditEngine::ComputeCaretPosNew(POINT &point)
{
    if (!m_MultiLine && point.x < m_Margin) {
        m_CursorPos = 0;
        m_CaretX = 0;
        return 0;
    }
    POINT probe = point;
    const int index = FindLineForPoint(probe);
    if (index < 0) {
        return m_CursorPos;
    }
    const MirlEditLine &line = m_Lines[static_cast<size_t>(index)];
    m_CaretY = Truncate(line.y);
    int x = Truncate(line.x);
    const float px = static_cast<float>(point.x);
    // The view's scroll offset applies to every line alike.
    for (int i = m_StartChar; i < line.count; ++i) {
        const int c = line.first + i;
        const float w = CharWidthF(c);
        if (point.x >= x && static_cast<float>(x) + w > px) {
            // The exact middle of a character counts as its right half.
            if (static_cast<float>(x) + 0.5f * w <= px) {
                m_CaretX = Truncate(static_cast<float>(x) + w);
                return c + 1;
            }
            m_CaretX = x;
            return c;
        }
        x = AddPixels(x, Truncate(w));
    }
    // Past every character of the line: to the start of the line, or to the end of the text.
    const float firstX = (line.first >= 0 && static_cast<size_t>(line.first) < m_CharRects.size())
                             ? m_CharRects[static_cast<size_t>(line.first)].X
                             : 0.0f;
    if (px <= firstX) {
        return line.first;
    }
    return static_cast<int>(m_EditText.size());
}

void MirlEditEngine::SetCursorPos(int position)
{
    if (m_CharRects.empty()) {
        const RECT client = EditClientRect();
        m_CaretY = m_MultiLine ? 0 : (client.bottom - m_LineHeight - client.top) / 2;
        if (m_EditStyle & ES_RIGHT) {
            m_CaretX = client.right;
        } else if (m_EditStyle & ES_CENTER) {
            m_CaretX = (client.right - client.left) / 2;
        } else {
            m_CaretX = AddPixels(client.left, 3);
        }
        PlaceCaret(m_CaretX, m_CaretY);
        return;
    }
    const MirlEditLine *found = NULL;
    for (const MirlEditLine &line : m_Lines) {
        if (line.first <= position && static_cast<long long>(position) <= static_cast<long long>(line.first) + line.count) {
            found = &line;
            break;
        }
    }
    if (found == NULL) {
        PlaceCaret(m_CaretX, m_CaretY);
        return;
    }
    m_CaretY = Truncate(found->y);
    int x = Truncate(found->x);
    // The guard stands in the caret's path: a view scrolled past it returns to the start.
    if (m_StartChar < 0 || m_StartChar > kStartCharGuard) {
        m_StartChar = 0;
    }
    const long long q = static_cast<long long>(m_StartChar) + found->first;
    const long long n = static_cast<long long>(position) - m_StartChar - found->first;
    for (long long k = q; k < q + n && k < static_cast<long long>(m_CharRects.size()); ++k) {
        if (k >= 0) {
            x = AddPixels(x, CharWidth(static_cast<int>(k)));
        }
    }
    m_CaretX = x;
    PlaceCaret(m_CaretX, m_CaretY);
}

int MirlEditEngine::GetShownCharCount(const RECT &rect)
{
    if (m_Lines.empty() || m_StartChar < 0 || static_cast<size_t>(m_StartChar) >= m_CharRects.size()) {
        return 0;
    }
    const int room = rect.right - rect.left;
    int sum = 0;
    int count = 0;
    for (size_t i = static_cast<size_t>(m_StartChar); i < m_CharRects.size(); ++i) {
        sum = AddPixels(sum, CharWidth(static_cast<int>(i)));
        if (sum > room) {
            break;
        }
        ++count;
    }
    return count;
}

int MirlEditEngine::GetStartCharByLastShown()
{
    if (m_EditText.empty() || m_CharRects.empty()) {
        return 0;
    }
    const RECT client = EditClientRect();
    int sum = 0;
    for (size_t i = m_CharRects.size(); i-- > 0;) {
        sum = AddPixels(sum, CharWidth(static_cast<int>(i)));
        if (AddPixels(sum, m_Margin) > client.right) {
            return static_cast<int>(i) + 1;
        }
    }
    return 0;
}

void MirlEditEngine::AdjustStartChar(int direction, RECT rect)
{
    if (m_MultiLine) {
        return;
    }
    if (direction == 0) {
        if (m_EditText.empty() || m_Lines.empty()) {
            return;
        }
        const int twice = 2 * m_Margin;
        const int width = Truncate(m_Lines[0].width);
        if (AddPixels(width, twice) <= rect.right) {
            m_StartChar = 0;
            return;
        }
        if (m_CursorPos != static_cast<int>(m_EditText.size())) {
            if (static_cast<long long>(m_CursorPos) - m_StartChar >= GetShownCharCount(rect)) {
                ++m_StartChar;
            }
            return;
        }
        // The caret at the end: one jump to the view that shows it.
        const int excess = AddPixels(AddPixels(width, -rect.right), twice);
        int sum = 0;
        int i = 0;
        for (size_t k = 0; k < m_CharRects.size(); ++k) {
            sum = AddPixels(sum, CharWidth(static_cast<int>(k)));
            if (sum > excess) {
                break;
            }
            ++i;
        }
        m_StartChar = i + 1;
    } else if (direction == -1) {
        if (m_CursorPos < m_StartChar) {
            m_StartChar = m_CursorPos;
        }
    } else if (direction == 1) {
        if (static_cast<long long>(m_CursorPos) - m_StartChar > GetShownCharCount(rect)) {
            ++m_StartChar;
        }
    }
}

int MirlEditEngine::MoveCursorToLine(int line)
{
    if (line < 0 || static_cast<size_t>(line) >= m_Lines.size()) {
        return m_CursorPos;
    }
    POINT point = {m_CaretX, Truncate(m_Lines[static_cast<size_t>(line)].y)};
    return ComputeCaretPosNew(point);
}

int MirlEditEngine::GetCharPastWhiteSpace(bool forward, int position)
{
    const int length = static_cast<int>(m_EditText.size());
    if (forward) {
        if (position >= length) {
            return position;
        }
        for (int i = std::max(position, 0); i < length; ++i) {
            if (IsBlank(m_EditText[static_cast<size_t>(i)])) {
                return i + 1;
            }
        }
        return length;
    }
    if (position < 1) {
        return position;
    }
    for (int i = std::min(position, length); i >= 1; --i) {
        if (i != position && i < length && IsBlank(m_EditText[static_cast<size_t>(i)])) {
            return i;
        }
    }
    return 0;
}

void MirlEditEngine::InsertText(const wchar_t *text, int length)
{
    std::wstring inserted;
    if (text != NULL && length > 0) {
        inserted.assign(text, static_cast<size_t>(length));
    }
    ClampPositions();
    if (!m_HasSelection) {
        m_EditText.insert(static_cast<size_t>(m_CursorPos), inserted);
        m_CursorPos += static_cast<int>(inserted.size());
    } else {
        ReplaceSelectedText(inserted);
    }
    m_HasSelection = false;
    BuildCharRects();
    SetCursorPos(m_CursorPos);
    RedrawEdit();
}

void MirlEditEngine::ReplaceSelectedText(const std::wstring &text)
{
    int low = 0;
    int high = 0;
    GetSelectionRange(low, high);
    m_EditText.replace(static_cast<size_t>(low), static_cast<size_t>(high - low), text);
    m_CursorPos = low + static_cast<int>(text.size());
    FocusEdit();
}

void MirlEditEngine::DeleteSelectedText()
{
    int low = 0;
    int high = 0;
    GetSelectionRange(low, high);
    m_EditText.erase(static_cast<size_t>(low), static_cast<size_t>(high - low));
    m_CursorPos = low;
    PadOnDeleteString();
}

void MirlEditEngine::PadOnDeleteString()
{
    BuildCharRects();
    m_StartChar = GetStartCharByLastShown();
    int sum = 0;
    for (size_t i = static_cast<size_t>(std::max(m_StartChar, 0)); i < m_CharRects.size(); ++i) {
        sum = AddPixels(sum, CharWidth(static_cast<int>(i)));
    }
    if (AddPixels(m_Margin, sum) < EditClientRect().right) {
        m_StartChar = GetStartCharByLastShown();
    }
    m_HasSelection = false;
}

void MirlEditEngine::RefreshText()
{
    BuildCharRects();
    RedrawEdit();
}

int MirlEditEngine::GetLineCount()
{
    return static_cast<int>(m_Lines.size());
}

int MirlEditEngine::GetSingleLineWidth()
{
    BuildCharRects();
    return m_Lines.empty() ? 0 : Truncate(m_Lines[0].width);
}

int MirlEditEngine::GetSingleLineHeight()
{
    BuildCharRects();
    return m_Lines.empty() ? 0 : Truncate(m_Lines[0].height);
}

int MirlEditEngine::GetTotalHeight()
{
    BuildCharRects();
    if (m_Lines.empty()) {
        return m_LineHeight;
    }
    const int height = Truncate(m_Lines[0].height);
    if (height == 0) {
        return m_LineHeight;
    }
    const long long total = static_cast<long long>(m_Lines.size()) * height;
    return total > INT_MAX ? INT_MAX : static_cast<int>(total);
}

void MirlEditEngine::ResizeToFit()
{
}
