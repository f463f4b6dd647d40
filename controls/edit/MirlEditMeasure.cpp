// Characters measured on GDI+. The rectangle a character gets at the head of the rest of the
// text depends on the character, on its right neighbour (pairs, surrogates, combining marks)
// and on whether it stands among trailing blanks of its line, which GDI+ does not measure. A
// short string of those three gives the same rectangle as the whole rest, so each distinct
// triple is measured once per font and alignment and kept.
#include "MirlEdit.h"

#include <cstdint>
#include <cstdio>
#include <map>
#include <unordered_map>

namespace {

// A character's rectangles, by (character, neighbour, kind).
typedef std::unordered_map<std::uint64_t, Gdiplus::RectF> RectTable;

// Bounded: an edit fed random characters must not grow the process without end.
const size_t kMaxEntriesPerFont = 16384;
const size_t kMaxFonts = 64;
// Longer runs of blanks may meet the measuring rectangle's right edge and wrap there: their
// characters are measured as the rest of the text, uncached.
const size_t kLongBlankRun = 64;

std::map<std::wstring, RectTable> &Tables()
{
    static std::map<std::wstring, RectTable> tables;
    return tables;
}

bool IsLineBreak(wchar_t c)
{
    return c == L'\n' || c == L'\r' || c == 0x0B || c == 0x0C || c == 0x85 || c == 0x2028 || c == 0x2029;
}

// Everything that may count as white space in a text layout, line breaks aside.
bool IsBlank(wchar_t c)
{
    return c == L' ' || c == L'\t' || c == 0xA0 || c == 0x1680 || (c >= 0x2000 && c <= 0x200B) || c == 0x202F ||
           c == 0x205F || c == 0x3000 || c == 0xFEFF;
}

enum HeadKind : std::uint64_t {
    KindLast = 0,      // the last character of the text
    KindBlankTail = 1, // a neighbour, then only blanks to the line's end
    KindInkTail = 2,   // a neighbour, then something visible on the same line
};

std::uint64_t KeyOf(wchar_t c, wchar_t next, HeadKind kind)
{
    return static_cast<std::uint64_t>(c) | (static_cast<std::uint64_t>(next) << 16) |
           (static_cast<std::uint64_t>(kind) << 32);
}

} // namespace

MirlEditTextMeasurer::MirlEditTextMeasurer(HWND hWnd, Gdiplus::Font *font)
    : m_hWnd(hWnd), m_Font(NULL), m_MeasureFormat(new Gdiplus::StringFormat(0, 0)), m_LineAlignment(0),
      m_MeasureCalls(0)
{
    SetFont(font);
}

MirlEditTextMeasurer::~MirlEditTextMeasurer()
{
    delete m_MeasureFormat;
}

void MirlEditTextMeasurer::SetFont(Gdiplus::Font *font)
{
    m_Font = font;
    UpdateFontKey();
}

void MirlEditTextMeasurer::SetLineAlignment(int alignment)
{
    m_LineAlignment = alignment;
    if (m_MeasureFormat != NULL) {
        m_MeasureFormat->SetLineAlignment(static_cast<Gdiplus::StringAlignment>(alignment));
    }
    UpdateFontKey();
}

void MirlEditTextMeasurer::UpdateFontKey()
{
    m_FontKey.clear();
    if (m_Font == NULL) {
        return;
    }
    Gdiplus::FontFamily family;
    wchar_t name[LF_FACESIZE] = {};
    if (m_Font->GetFamily(&family) == Gdiplus::Ok) {
        family.GetFamilyName(name);
    }
    wchar_t rest[96] = {};
    std::swprintf(rest, 96, L"|%.4f|%d|%d|%d", static_cast<double>(m_Font->GetSize()), m_Font->GetStyle(),
                  static_cast<int>(m_Font->GetUnit()), m_LineAlignment);
    m_FontKey = name;
    m_FontKey += rest;
}

void MirlEditTextMeasurer::ClearCache()
{
    Tables().clear();
}

Gdiplus::RectF MirlEditTextMeasurer::MeasureHead(Gdiplus::Graphics &graphics, const wchar_t *text, int length)
{
    ++m_MeasureCalls;
    Gdiplus::RectF bounds(0.0f, 0.0f, 0.0f, 0.0f);
    if (m_Font == NULL || m_MeasureFormat == NULL || length < 1) {
        return bounds;
    }
    Gdiplus::CharacterRange range(0, 1);
    m_MeasureFormat->SetMeasurableCharacterRanges(1, &range);
    const Gdiplus::RectF layout(0.0f, 0.0f, 1200.0f, 1000.0f);
    Gdiplus::Region region;
    if (graphics.MeasureCharacterRanges(text, length, m_Font, layout, m_MeasureFormat, 1, &region) != Gdiplus::Ok) {
        return bounds;
    }
    // A region that the measurement did not set is still infinite: it measures nothing.
    if (region.IsInfinite(&graphics) || region.GetBounds(&bounds, &graphics) != Gdiplus::Ok) {
        return Gdiplus::RectF(0.0f, 0.0f, 0.0f, 0.0f);
    }
    return bounds;
}

namespace {

// A graphics on the window's device context, set up as measuring wants it.
class MeasuringGraphics {
public:
    explicit MeasuringGraphics(HWND hWnd) : m_hWnd(hWnd), m_DC(::GetDC(hWnd)), m_Graphics(NULL)
    {
        if (m_DC != NULL) {
            m_Graphics = new Gdiplus::Graphics(m_DC);
            m_Graphics->SetTextRenderingHint(Gdiplus::TextRenderingHintAntiAlias);
            m_Graphics->SetCompositingQuality(Gdiplus::CompositingQualityHighQuality);
        }
    }
    ~MeasuringGraphics()
    {
        if (m_Graphics != NULL) {
            m_Graphics->ResetTransform();
            delete m_Graphics;
        }
        if (m_DC != NULL) {
            ::ReleaseDC(m_hWnd, m_DC);
        }
    }
    MeasuringGraphics(const MeasuringGraphics &) = delete;
    MeasuringGraphics &operator=(const MeasuringGraphics &) = delete;
    Gdiplus::Graphics *Get() const { return m_Graphics; }

private:
    HWND m_hWnd;
    HDC m_DC;
    Gdiplus::Graphics *m_Graphics;
};

} // namespace

void MirlEditTextMeasurer::MeasureEachCharacter(const std::wstring &text, std::vector<Gdiplus::RectF> &rects)
{
    rects.assign(text.size(), Gdiplus::RectF(0.0f, 0.0f, 0.0f, 0.0f));
    if (text.empty()) {
        return;
    }
    MeasuringGraphics graphics(m_hWnd);
    if (graphics.Get() == NULL) {
        return;
    }
    for (size_t i = 0; i < text.size(); ++i) {
        rects[i] = MeasureHead(*graphics.Get(), text.c_str() + i, static_cast<int>(text.size() - i));
    }
}

void MirlEditTextMeasurer::MeasureCharacters(const std::wstring &text, std::vector<Gdiplus::RectF> &rects)
{
    const size_t n = text.size();
    rects.assign(n, Gdiplus::RectF(0.0f, 0.0f, 0.0f, 0.0f));
    if (n == 0) {
        return;
    }
    // From the end: whether something visible follows on the same line, and how long the run
    // of blanks that starts at each position is.
    std::vector<unsigned char> ink(n + 1, 0);
    std::vector<unsigned int> blankRun(n + 1, 0);
    for (size_t j = n; j-- > 0;) {
        const wchar_t c = text[j];
        if (IsLineBreak(c)) {
            ink[j] = 0;
        } else {
            ink[j] = (!IsBlank(c) || ink[j + 1]) ? 1 : 0;
        }
        blankRun[j] = IsBlank(c) ? blankRun[j + 1] + 1 : 0;
    }

    std::map<std::wstring, RectTable> &tables = Tables();
    if (tables.find(m_FontKey) == tables.end() && tables.size() >= kMaxFonts) {
        tables.clear();
    }
    RectTable &table = tables[m_FontKey];
    if (table.size() > kMaxEntriesPerFont) {
        table.clear();
    }

    MeasuringGraphics *graphics = NULL;
    for (size_t i = 0; i < n; ++i) {
        const wchar_t c = text[i];
        if (blankRun[i] > kLongBlankRun) {
            if (graphics == NULL) {
                graphics = new MeasuringGraphics(m_hWnd);
            }
            if (graphics->Get() != NULL) {
                rects[i] = MeasureHead(*graphics->Get(), text.c_str() + i, static_cast<int>(n - i));
            }
            continue;
        }
        const wchar_t next = i + 1 < n ? text[i + 1] : L'\0';
        const HeadKind kind = i + 1 >= n ? KindLast : (ink[i + 2] ? KindInkTail : KindBlankTail);
        const std::uint64_t key = KeyOf(c, next, kind);
        RectTable::const_iterator found = table.find(key);
        if (found != table.end()) {
            rects[i] = found->second;
            continue;
        }
        if (graphics == NULL) {
            graphics = new MeasuringGraphics(m_hWnd);
        }
        if (graphics->Get() == NULL) {
            continue;
        }
        // The character, its neighbour, and a visible character after them when the line
        // goes on with one: the same head as the whole rest of the text.
        wchar_t sample[3] = {c, next, L'x'};
        const int length = kind == KindLast ? 1 : (kind == KindBlankTail ? 2 : 3);
        Gdiplus::RectF rect = MeasureHead(*graphics->Get(), sample, length);
        table[key] = rect;
        rects[i] = rect;
    }
    delete graphics;
}
