#include "MirlText.h"

#include "MirlStyleTables.h"

#include <cwctype>

MirlTextLayout::MirlTextLayout(bool shadow)
    : m_Font(NULL), m_Style(0), m_WordWrap(true), m_Measured(false), m_Shadow(shadow), m_Rect(), m_Bounds()
{
}

MirlTextLayout::MirlTextLayout(const MirlTextLayout &source) = default;
MirlTextLayout &MirlTextLayout::operator=(const MirlTextLayout &source) = default;
MirlTextLayout::~MirlTextLayout() = default;

void MirlTextLayout::SetFont(Gdiplus::Font *font)
{
    m_Font = font;
    m_Measured = false;
}

void MirlTextLayout::SetText(const wchar_t *text)
{
    m_Text = text != NULL ? text : L"";
    m_Measured = false;
}

void MirlTextLayout::SetRect(const Gdiplus::RectF &rect)
{
    m_Rect = rect;
    m_Measured = false;
}

void MirlTextLayout::SetStyle(unsigned long style)
{
    m_Style = style;
    m_Measured = false;
}

Gdiplus::RectF MirlTextLayout::GetRect() const
{
    return m_Rect;
}

unsigned long MirlTextLayout::ParseLayoutStyle(const wchar_t *text)
{
    return MIRL::StringToTextLayout(text);
}

Gdiplus::StringAlignment MirlTextLayout::Alignment() const
{
    if (m_Style & ALIGN_LEFT) {
        return Gdiplus::StringAlignmentNear;
    }
    if (m_Style & ALIGN_RIGHT) {
        return Gdiplus::StringAlignmentFar;
    }
    return Gdiplus::StringAlignmentCenter;
}

namespace {

// Where an extent of the given size lies in a span under an alignment. Some GDI+ versions
// answer MeasureString with the box at the rectangle's origin whatever the alignment; placing
// it here from its size gives the aligned box everywhere.
float Place(float start, float span, float size, Gdiplus::StringAlignment alignment)
{
    if (span <= 0.0f || alignment == Gdiplus::StringAlignmentNear) {
        return start;
    }
    if (alignment == Gdiplus::StringAlignmentFar) {
        return start + span - size;
    }
    return start + (span - size) * 0.5f;
}

} // namespace

void MirlTextLayout::Measure(Gdiplus::Graphics &g)
{
    if (m_Text.empty()) {
        return;
    }
    Gdiplus::StringAlignment alignment = Alignment();
    Gdiplus::StringFormat format;
    format.SetAlignment(alignment);
    format.SetLineAlignment(alignment);
    format.SetFormatFlags(Gdiplus::StringFormatFlagsDisplayFormatControl);
    if (!m_WordWrap) {
        format.SetFormatFlags(Gdiplus::StringFormatFlagsNoWrap);
    }
    Gdiplus::RectF measured;
    Gdiplus::Status status =
        g.MeasureString(m_Text.c_str(), static_cast<INT>(m_Text.size()), m_Font, m_Rect, &format, &measured);
    if (status != Gdiplus::Ok) {
        m_Measured = false;
        return;
    }
    measured.X = Place(m_Rect.X, m_Rect.Width, measured.Width, alignment);
    measured.Y = Place(m_Rect.Y, m_Rect.Height, measured.Height, alignment);
    m_Bounds = measured;
    m_Measured = true;

    Gdiplus::RectF old = m_Rect;
    m_Rect = m_Bounds;
    if (m_Bounds.Height < old.Height) {
        // The old top enters only for ALIGN_TOP: a band that starts lower still centres
        // against the top of the client area.
        if (m_Style & ALIGN_TOP) {
            m_Rect.Y = old.Y;
        } else if (m_Style & ALIGN_BOTTOM) {
            m_Rect.Y = old.Height - m_Bounds.Height;
        } else {
            m_Rect.Y = (old.Height - m_Bounds.Height) * 0.5f;
        }
    }
}

void MirlTextLayout::Draw(Gdiplus::Graphics &g, Gdiplus::Brush *brush)
{
    if (m_Text.empty()) {
        return;
    }
    Gdiplus::StringAlignment alignment = Alignment();
    Gdiplus::StringFormat format;
    format.SetAlignment(alignment);
    format.SetLineAlignment(alignment);
    format.SetHotkeyPrefix(Gdiplus::HotkeyPrefixShow);
    format.SetFormatFlags(Gdiplus::StringFormatFlagsDisplayFormatControl);
    format.SetTrimming(Gdiplus::StringTrimmingEllipsisCharacter);
    if (!m_WordWrap) {
        format.SetFormatFlags(Gdiplus::StringFormatFlagsNoWrap);
    }
    INT length = static_cast<INT>(m_Text.size());
    // A line measured to fit can wrap when drawn in exactly its measured width (seen with
    // fonts made from a LOGFONT). Two pixels of room on the side away from the alignment keep
    // the line whole and the text where it was.
    Gdiplus::RectF area = m_Rect;
    area.Width += 2.0f;
    if (alignment == Gdiplus::StringAlignmentFar) {
        area.X -= 2.0f;
    } else if (alignment == Gdiplus::StringAlignmentCenter) {
        area.X -= 1.0f;
    }
    if (m_Shadow) {
        Gdiplus::SolidBrush white(Gdiplus::Color(0xFFFFFFFF));
        Gdiplus::RectF lower(area.X, area.Y + 1.0f, area.Width, area.Height);
        g.DrawString(m_Text.c_str(), length, m_Font, lower, &format, &white);
    }
    g.DrawString(m_Text.c_str(), length, m_Font, area, &format, brush);
}

namespace MIRL {

namespace {

size_t FindIgnoringCase(const std::wstring &text, const wchar_t *mark)
{
    size_t length = wcslen(mark);
    if (length == 0 || text.size() < length) {
        return std::wstring::npos;
    }
    for (size_t i = 0; i + length <= text.size(); ++i) {
        if (_wcsnicmp(text.c_str() + i, mark, length) == 0) {
            return i;
        }
    }
    return std::wstring::npos;
}

} // namespace

std::wstring ExpandFirstLink(const std::wstring &text, const wchar_t *open, const wchar_t *close, bool *hasLink)
{
    if (hasLink != NULL) {
        *hasLink = false;
    }
    if (text.empty() || open == NULL || close == NULL) {
        return text;
    }
    size_t a = FindIgnoringCase(text, open);
    size_t b = FindIgnoringCase(text, close);
    if (a == std::wstring::npos || b == std::wstring::npos) {
        return text;
    }
    size_t openLength = wcslen(open);
    size_t closeLength = wcslen(close);
    std::wstring result = text.substr(0, a);
    for (size_t i = a + openLength; i < b; ++i) {
        result += L'&';
        result += text[i];
    }
    result += text.substr(std::min(b + closeLength, text.size()));
    if (hasLink != NULL) {
        *hasLink = true;
    }
    return result;
}

} // namespace MIRL
