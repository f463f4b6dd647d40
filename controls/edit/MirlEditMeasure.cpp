// Characters measured on GDI+. The rectangle a character gets at the head of the rest of the
// text depends on the character; on its right neighbour only where the two join (surrogates,
// combining marks, shaped scripts, line breaks); and for a blank, on whether it trails its
// line, which GDI+ may not measure. A short sample of those gives the same rectangle as the
// whole rest, so each distinct key is measured once per font and alignment and kept.
#include "MirlEdit.h"

#include <cstdint>
#include <cstdio>
#include <map>
#include <unordered_map>

namespace {

// A character's rectangles, by (character, neighbour, kind).
typedef std::unordered_map<std::uint64_t, Gdiplus::RectF> RectTable;

// Bounded: an edit fed random characters must not grow the process without end.
const size_t kMaxEntriesPerFont = 4096;
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

// Characters whose rectangle at the head of a text may depend on the character after them, or
// that change the one before them.
bool JoinsNeighbour(wchar_t c)
{
    return c < 0x20 || (c >= 0x7F && c <= 0x9F) || (c >= 0x0300 && c <= 0x036F) || (c >= 0x0483 && c <= 0x0489) ||
           (c >= 0x0590 && c <= 0x08FF) || (c >= 0x0900 && c <= 0x0DFF) || (c >= 0x0E00 && c <= 0x0FFF) ||
           (c >= 0x1000 && c <= 0x109F) || (c >= 0x1100 && c <= 0x11FF) || (c >= 0x1780 && c <= 0x18AF) ||
           (c >= 0x1AB0 && c <= 0x1AFF) || (c >= 0x1DC0 && c <= 0x1DFF) || (c >= 0x200B && c <= 0x200F) ||
           (c >= 0x2028 && c <= 0x202E) || (c >= 0x2060 && c <= 0x206F) || (c >= 0x20D0 && c <= 0x20FF) ||
           (c >= 0x302A && c <= 0x302F) || (c >= 0x3099 && c <= 0x309A) || (c >= 0xD800 && c <= 0xDFFF) ||
           (c >= 0xFB1D && c <= 0xFDFF) || (c >= 0xFE00 && c <= 0xFE0F) || (c >= 0xFE20 && c <= 0xFE2F) ||
           (c >= 0xFE70 && c <= 0xFEFF) || c >= 0xFFF0;
}

enum HeadKind : std::uint64_t {
    KindAlone = 0,     // a character whose neighbour doesn't matter and that is not blank
    KindBlankTail = 1, // only blanks follow to the line's end (or to the text's)
    KindInkTail = 2,   // something visible follows on the same line
    KindLast = 3,      // a joining character at the end of the text
};

// Bit 34 marks a key with its neighbour in it.
std::uint64_t KeyOf(wchar_t c, wchar_t next, HeadKind kind, bool pair)
{
    return static_cast<std::uint64_t>(c) | (static_cast<std::uint64_t>(next) << 16) |
           (static_cast<std::uint64_t>(kind) << 32) | (pair ? (1ULL << 34) : 0ULL);
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
        const bool pair = i + 1 < n && (JoinsNeighbour(c) || JoinsNeighbour(next));
        HeadKind kind = KindAlone;
        if (pair) {
            kind = ink[i + 2] ? KindInkTail : KindBlankTail;
        } else if (JoinsNeighbour(c)) {
            kind = KindLast;
        } else if (IsBlank(c)) {
            kind = ink[i + 1] ? KindInkTail : KindBlankTail;
        }
        const std::uint64_t key = KeyOf(c, pair ? next : L'\0', kind, pair);
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
        // The character, its neighbour where it joins it, and a visible character after them
        // when the line goes on with one: the same head as the whole rest of the text.
        wchar_t sample[3] = {c, L'x', L'x'};
        int length = 1;
        if (pair) {
            sample[1] = next;
            length = kind == KindInkTail ? 3 : 2;
        } else if (kind == KindInkTail) {
            length = 2;
        }
        Gdiplus::RectF rect = MeasureHead(*graphics->Get(), sample, length);
        table[key] = rect;
        rects[i] = rect;
    }
    delete graphics;
}
