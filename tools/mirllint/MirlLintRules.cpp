#include "MirlLintRules.h"

#include "MirlStyleTables.h"

#include <algorithm>
#include <cwchar>
#include <cwctype>

namespace mirllint {

namespace {

const wchar_t *const kSections[] = {L"Infoes", L"Colors", L"Fonts", L"Images", L"Text", L"Windows"};

// The classes the factory compares "Class" with, in its order.
const wchar_t *const kClasses[] = {L"WINDOW",  L"BUTTON",        L"EDIT",     L"STATIC",  L"LISTBOX",
                                   L"SCROLLBAR", L"TOOLBAR",     L"SPLITTER", L"COMBOBOX", L"INCHINGSWITCH",
                                   L"PROGRESS", L"OUTLOOK",      L"LISTVIEW", L"SLIDER",  L"TRACKBAR",
                                   L"SEEK",     L"COMMONEDIT",   L"SPIN",     L"GROUPBOX", L"CUSTOMCONTROL"};

bool Same(const std::wstring &a, const wchar_t *b)
{
    return _wcsicmp(a.c_str(), b) == 0;
}

// The closest of the candidates within two edits, or empty.
template <class Range>
std::wstring Closest(const std::wstring &word, const Range &candidates)
{
    std::wstring best;
    size_t bestDistance = 3;
    for (const auto &candidate : candidates) {
        size_t distance = EditDistance(word, candidate);
        if (distance < bestDistance) {
            bestDistance = distance;
            best = candidate;
        }
    }
    return best;
}

MirlStyleTable TableOf(WordTable table)
{
    switch (table) {
    case WordTable::Style: return MIRL::WindowStyleTable();
    case WordTable::ExStyle: return MIRL::ExStyleTable();
    case WordTable::Align: return MIRL::PositionStyleTable();
    case WordTable::Layout: return MIRL::TextLayoutTable();
    }
    return MIRL::WindowStyleTable();
}

bool InTable(const std::wstring &word, const MirlStyleTable &table)
{
    for (std::size_t i = 0; i < table.count; ++i) {
        if (word == table.rows[i].name) {
            return true;
        }
    }
    return false;
}

// The words of a style text as the parser reads them: blanks dropped, "|" between words.
std::vector<std::wstring> SplitWords(const std::wstring &text)
{
    std::vector<std::wstring> words(1);
    for (wchar_t c : text) {
        if (c == L'|') {
            words.emplace_back();
        } else if (c != L' ') {
            words.back() += c;
        }
    }
    return words;
}

} // namespace

// ---- Sections ----

unsigned long SectionType(const std::wstring &name)
{
    for (unsigned long i = 0; i < 6; ++i) {
        if (name == kSections[i]) {
            return i + 1;
        }
    }
    return 0;
}

const wchar_t *SectionOfOtherCase(const std::wstring &name)
{
    for (const wchar_t *section : kSections) {
        if (Same(name, section)) {
            return section;
        }
    }
    return nullptr;
}

std::wstring SimilarSection(const std::wstring &name)
{
    return Closest(name, std::vector<std::wstring>(std::begin(kSections), std::end(kSections)));
}

// ---- Values ----

bool ConvertsAs(const std::wstring &text, Conversion conversion, ValueProblem &problem)
{
    if (conversion == Conversion::String) {
        return true;
    }
    _variant_t value(text.c_str());
    static const VARTYPE kTypes[] = {VT_BSTR, VT_I4, VT_UI4, VT_I2, VT_BOOL};
    HRESULT hr = VariantChangeType(&value, &value, 0, kTypes[static_cast<int>(conversion)]);
    if (SUCCEEDED(hr) && conversion == Conversion::Byte) {
        hr = VariantChangeType(&value, &value, 0, VT_UI1);
    }
    problem.hresult = static_cast<unsigned long>(hr);
    return SUCCEEDED(hr);
}

bool ConvertToInt(const std::wstring &text, long &value, ValueProblem &problem)
{
    _variant_t converted(text.c_str());
    HRESULT hr = VariantChangeType(&converted, &converted, 0, VT_I4);
    problem.hresult = static_cast<unsigned long>(hr);
    if (FAILED(hr)) {
        return false;
    }
    value = V_I4(&converted);
    return true;
}

bool ReadHexadecimal(const std::wstring &text, unsigned long &value)
{
    if (text.size() < 3 || text[0] != L'0' || (text[1] != L'x' && text[1] != L'X')) {
        return false;
    }
    wchar_t *end = nullptr;
    value = std::wcstoul(text.c_str() + 2, &end, 16);
    return end != nullptr && *end == L'\0';
}

std::wstring DescribeValueProblem(const Attr &attribute, Conversion conversion, const ValueProblem &problem, bool language)
{
    std::wstring quoted = attribute.name + L"=\"" + Visible(attribute.value) + L"\"";
    std::wstring what;
    unsigned long intended = 0;
    if (language && ReadHexadecimal(attribute.value, intended)) {
        what = quoted + L" is hexadecimal, which the loader can't read: write the decimal " + std::to_wstring(intended);
    } else {
        switch (conversion) {
        case Conversion::Int: what = quoted + L" is not a decimal number"; break;
        case Conversion::UInt:
            what = quoted + (!attribute.value.empty() && attribute.value[0] == L'-' ? L" is negative: it must be a number of 0 or more"
                                                                                    : L" is not a number of 0 or more");
            break;
        case Conversion::Byte: what = quoted + L" is not a number from 0 to 255"; break;
        case Conversion::Bool: what = quoted + L" is not a boolean (true or false)"; break;
        case Conversion::String: what = quoted; break;
        }
    }
    wchar_t code[16];
    std::swprintf(code, 16, L"0x%08lX", problem.hresult);
    return what + L"; the library stops loading the skin here (HRESULT " + code + L")";
}

std::vector<ElementAttribute> ElementAttributes(unsigned long type)
{
    switch (type) {
    case UI_ELEMENT_INFORMATION:
        return {{L"Title", Conversion::String},
                {L"Description", Conversion::String},
                {L"Author", Conversion::String},
                {L"Version", Conversion::String},
                {L"Language", Conversion::UInt}};
    case UI_ELEMENT_COLOR:
        return {{L"Red", Conversion::Byte}, {L"Green", Conversion::Byte}, {L"Blue", Conversion::Byte}, {L"Alpha", Conversion::Byte}};
    case UI_ELEMENT_FONT:
        return {{L"FamilyName", Conversion::String}, {L"Height", Conversion::UInt}, {L"Width", Conversion::UInt},
                {L"Weight", Conversion::UInt},       {L"Italic", Conversion::Bool}, {L"Underline", Conversion::Bool},
                {L"Bold", Conversion::Bool}};
    case UI_ELEMENT_IMAGE:
        return {{L"KeyColorLow", Conversion::String}, {L"KeyColorHigh", Conversion::String}, {L"File", Conversion::String}};
    case UI_ELEMENT_TEXT: return {{L"Text", Conversion::String}};
    default: return {};
    }
}

// ---- Template words ----

const wchar_t *WordTableName(WordTable table)
{
    switch (table) {
    case WordTable::Style: return L"Style";
    case WordTable::ExStyle: return L"ExStyle";
    case WordTable::Align: return L"Align";
    case WordTable::Layout: return L"Layout";
    }
    return L"";
}

std::vector<WordProblem> CheckWords(const std::wstring &text, WordTable table)
{
    static const WordTable kAll[] = {WordTable::Style, WordTable::ExStyle, WordTable::Align, WordTable::Layout};
    std::vector<WordProblem> problems;
    MirlStyleTable rows = TableOf(table);
    for (const std::wstring &word : SplitWords(text)) {
        // An empty word adds nothing, and so does ALIGN_NONE, whose row can never match.
        if (word.empty() || InTable(word, rows) || (table == WordTable::Align && word == L"ALIGN_NONE")) {
            continue;
        }
        WordProblem problem;
        problem.word = word;
        for (std::size_t i = 0; i < rows.count && problem.suggestion.empty(); ++i) {
            if (Same(word, rows.rows[i].name)) {
                problem.suggestion = rows.rows[i].name;
            }
        }
        for (WordTable other : kAll) {
            if (other != table && problem.belongsTo.empty() && InTable(word, TableOf(other))) {
                problem.belongsTo = WordTableName(other);
            }
        }
        if (problem.suggestion.empty() && problem.belongsTo.empty()) {
            std::vector<std::wstring> names;
            for (std::size_t i = 0; i < rows.count; ++i) {
                names.push_back(rows.rows[i].name);
            }
            problem.suggestion = Closest(word, names);
        }
        problems.push_back(problem);
    }
    return problems;
}

std::wstring DescribeWordProblem(const WordProblem &problem, WordTable table)
{
    std::wstring text = std::wstring(WordTableName(table)) + L" word '" + Visible(problem.word) + L"' matches nothing and adds no bits";
    if (!problem.belongsTo.empty()) {
        return text + L": it is a word of \"" + problem.belongsTo + L"\"";
    }
    if (!problem.suggestion.empty()) {
        bool caseOnly = Same(problem.word, problem.suggestion.c_str());
        return text + (caseOnly ? L" (words are case-sensitive)" : L"") + L"; did you mean '" + problem.suggestion + L"'?";
    }
    return text;
}

unsigned long WordValue(const std::wstring &text, WordTable table)
{
    return MIRL::ParseStyleWords(text.c_str(), TableOf(table));
}

// ---- Classes ----

bool IsKnownClass(const std::wstring &value)
{
    for (const wchar_t *name : kClasses) {
        if (Same(value, name)) {
            return true;
        }
    }
    return false;
}

std::wstring SimilarClass(const std::wstring &value)
{
    return Closest(value, std::vector<std::wstring>(std::begin(kClasses), std::end(kClasses)));
}

std::vector<ElementReference> TemplateReferences(const std::wstring &windowClass)
{
    std::vector<ElementReference> references = {
        {L"Text", UI_ELEMENT_TEXT, nullptr},        {L"ToolTip", UI_ELEMENT_TEXT, nullptr},
        {L"Pic", UI_ELEMENT_IMAGE, nullptr},        {L"Font", UI_ELEMENT_FONT, nullptr},
        {L"ClBkGround", UI_ELEMENT_COLOR, nullptr}, {L"ClText", UI_ELEMENT_COLOR, nullptr},
        {L"Url", UI_ELEMENT_TEXT, nullptr},
    };
    std::vector<ElementReference> own;
    if (Same(windowClass, L"BUTTON")) {
        own = {{L"PicArrow", UI_ELEMENT_IMAGE, L"CmBtnArrow"},
               {L"PicC", UI_ELEMENT_IMAGE, nullptr},
               {L"PicCD", UI_ELEMENT_IMAGE, nullptr},
               {L"PicS", UI_ELEMENT_IMAGE, nullptr}};
    } else if (Same(windowClass, L"EDIT")) {
        own = {{L"WaterText", UI_ELEMENT_TEXT, nullptr}};
    } else if (Same(windowClass, L"SLIDER")) {
        own = {{L"PicBk", UI_ELEMENT_IMAGE, L"SliderBk"},
               {L"PicBkS", UI_ELEMENT_IMAGE, nullptr},
               {L"PicBkBorder", UI_ELEMENT_IMAGE, L"SliderBkBorder"},
               {L"PicBkSBorder", UI_ELEMENT_IMAGE, nullptr},
               {L"Pic", UI_ELEMENT_IMAGE, L"SliderTrack"},
               {L"PicC", UI_ELEMENT_IMAGE, nullptr},
               {L"PicD", UI_ELEMENT_IMAGE, nullptr},
               {L"PicS", UI_ELEMENT_IMAGE, nullptr}};
    } else if (Same(windowClass, L"COMBOBOX")) {
        own = {{L"PicArrow", UI_ELEMENT_IMAGE, L"CmBtnArrow"},
               {L"Pic", UI_ELEMENT_IMAGE, L"CmBtn1"},
               {L"PicC", UI_ELEMENT_IMAGE, L"CmBtn2"},
               {L"PicD", UI_ELEMENT_IMAGE, L"CmBtn3"},
               {L"PicS", UI_ELEMENT_IMAGE, L"CmBtn0"}};
    }
    // A class's own row for an attribute replaces the common one (the slider's "Pic" has a default).
    for (const ElementReference &reference : own) {
        auto same = std::find_if(references.begin(), references.end(),
                                 [&](const ElementReference &r) { return wcscmp(r.attribute, reference.attribute) == 0; });
        if (same != references.end()) {
            *same = reference;
        } else {
            references.push_back(reference);
        }
    }
    return references;
}

std::vector<std::wstring> FixedImages(const std::wstring &windowClass, unsigned long style)
{
    if (Same(windowClass, L"BUTTON")) {
        if ((style & 0x1000) != 0) {  // BS_BACKIMGE: the face comes from the common images
            return {L"CmBtn0", L"CmBtn1", L"CmBtn2", L"CmBtn3"};
        }
        return {};
    }
    if (Same(windowClass, L"SCROLLBAR")) {
        return {L"NormalTop",   L"HoverTop",   L"ClickTop",     L"NormalBottom",   L"HoverBottom",
                L"ClickBottom", L"YRepeateNormal", L"YRepeateHover", L"YRepeateClick", L"TopNormal",
                L"TopHover",    L"TopPressed", L"GripNormal",   L"GripHover",      L"GripClick",
                L"BottomNormal", L"BottomHover", L"BottomClick", L"YRepeat"};
    }
    if (Same(windowClass, L"SEEK")) {
        return {L"ProgressBk", L"ProgressFill", L"ProgressTrack", L"ProgressTrackGlow", L"ProgressTrackDown"};
    }
    if (Same(windowClass, L"PROGRESS")) {
        return {L"PGBL", L"PGBX", L"PGBR", L"PGFL", L"PGFX", L"PGFR"};
    }
    if (Same(windowClass, L"TRACKBAR")) {
        return {L"TrackBarThumb", L"TrackBarThumbGlow", L"ProgressFill"};
    }
    if (Same(windowClass, L"INCHINGSWITCH")) {
        std::vector<std::wstring> names = {L"InchingSwitchMask"};
        for (int i = 0; i < 48; ++i) {
            names.push_back(L"InchingSwitch" + std::to_wstring(i));
        }
        return names;
    }
    if (Same(windowClass, L"GROUPBOX")) {
        return {L"BarX"};
    }
    if (Same(windowClass, L"LISTVIEW")) {
        return {L"VistaBtn0", L"VistaBtn1", L"VistaBtn2", L"VistaBtn3"};
    }
    if (Same(windowClass, L"COMMONEDIT")) {
        return {L"CommonEditLeft", L"CommonEditRight", L"CommonEditXScale"};
    }
    if (Same(windowClass, L"TOOLBAR")) {
        return {L"BarLeft", L"BarRight", L"BarXScale", L"TabbarButtonActive", L"TabbarButtonMenuSelected",
                L"TabbarButtonMouseOn", L"TabbarArrow"};
    }
    if (Same(windowClass, L"OUTLOOK")) {
        return {L"TabbarButtonActivePng", L"TabbarButtonMenuSelectedPng", L"TabbarButtonMouseOnPng", L"TabbarArrow"};
    }
    return {};
}

std::vector<std::wstring> FixedColors(const std::wstring &windowClass)
{
    if (Same(windowClass, L"EDIT")) {
        return {L"EditSel", L"Black", L"EditBorder"};
    }
    return {};
}

std::vector<std::wstring> DialogControlImages()
{
    return {L"CheckY", L"CheckN", L"RadioBtn0", L"RadioBtn1", L"CmBtn2", L"CmBtnArrow"};
}

bool IsDialogOnlyImage(const std::wstring &name)
{
    // Element names compare case-sensitively.
    return name == L"CheckY" || name == L"CheckN" || name == L"RadioBtn0" || name == L"RadioBtn1";
}

bool IsTemplateAttribute(const std::wstring &name, std::wstring &suggestion)
{
    // The common attributes of every window, then those that controls read for themselves.
    static const wchar_t *const kKnown[] = {
        L"Class",      L"CommandID", L"Text",      L"ToolTip",  L"Pic",       L"X",         L"Y",
        L"Width",      L"Height",    L"MinWidth",  L"MaxWidth", L"MinHeight", L"MaxHeight", L"ClBkGround",
        L"ClText",     L"Font",      L"Style",     L"ExStyle",  L"Menu",      L"Transparent", L"Align",
        L"Layout",     L"PicArrow",  L"PicC",      L"PicCD",    L"PicS",      L"PicD",      L"Url",
        L"WaterText",  L"PicBk",     L"PicBkS",    L"PicBkBorder", L"PicBkSBorder", L"PicBar"};
    // Names that other formats use for the same things.
    static const wchar_t *const kSynonyms[][2] = {{L"Caption", L"Text"},   {L"Title", L"Text"},     {L"Label", L"Text"},
                                                  {L"Image", L"Pic"},      {L"Picture", L"Pic"},    {L"Icon", L"Pic"},
                                                  {L"Tip", L"ToolTip"},    {L"Id", L"CommandID"},   {L"Left", L"X"},
                                                  {L"Top", L"Y"},          {L"Color", L"ClText"},   {L"BkColor", L"ClBkGround"},
                                                  {L"Background", L"ClBkGround"}};
    for (const wchar_t *known : kKnown) {
        if (Same(name, known)) {
            return true;
        }
    }
    for (const auto &synonym : kSynonyms) {
        if (Same(name, synonym[0])) {
            suggestion = synonym[1];
            return false;
        }
    }
    suggestion = Closest(name, std::vector<std::wstring>(std::begin(kKnown), std::end(kKnown)));
    return false;
}

bool IsIntegerAttribute(const std::wstring &name)
{
    static const wchar_t *const kNames[] = {L"CommandID", L"X",        L"Y",         L"Width",     L"Height",
                                            L"MinWidth",  L"MaxWidth", L"MinHeight", L"MaxHeight", L"Menu"};
    for (const wchar_t *known : kNames) {
        if (Same(name, known)) {
            return true;
        }
    }
    return false;
}

bool IsBooleanAttribute(const std::wstring &name)
{
    return Same(name, L"Transparent");
}

bool IsWellFormedInteger(const std::wstring &value)
{
    if (value.size() > 2 && (value[1] == L'x' || value[1] == L'X')) {
        return value[0] == L'0' && std::all_of(value.begin() + 2, value.end(), [](wchar_t c) { return std::iswxdigit(c) != 0; });
    }
    size_t start = !value.empty() && (value[0] == L'-' || value[0] == L'+') ? 1 : 0;
    return value.size() > start &&
           std::all_of(value.begin() + static_cast<long>(start), value.end(), [](wchar_t c) { return c >= L'0' && c <= L'9'; });
}

// ---- Rules ----

const std::vector<std::wstring> &RuleNames()
{
    static const std::vector<std::wstring> names = {
        L"attribute-case",        L"button-no-command-id",  L"class-listbox",       L"comment-in-language",
        L"control-color-missing", L"control-image-missing", L"document-size-limit",   L"duplicate-sibling",   L"font-family-too-long",
        L"image-file-missing",    L"image-unreadable",      L"include-cycle",       L"include-limit",
        L"include-misplaced",     L"include-missing",       L"include-repeated",
        L"include-too-deep",      L"layout-word",           L"lint-mismatch",       L"loader-error",
        L"missing-element",       L"not-well-formed",       L"outlook-folder-children", L"outlook-folder-no-command-id",
        L"outlook-no-folder",     L"package-unreadable",    L"position-word",
        L"root-not-skin",         L"section-case",          L"shadowed-definition", L"style-not-child",
        L"style-word",            L"template-boolean",      L"template-no-class",   L"template-number",
        L"template-too-deep",     L"template-too-few-attributes", L"text-coverage", L"text-in-section",
        L"text-no-fallback",      L"toolbar-child-not-tab", L"toolbar-no-tab",      L"unconvertible-value",
        L"unknown-attribute",     L"unknown-class",
        L"unknown-section",       L"url-scheme"};
    return names;
}

// ---- Names ----

size_t EditDistance(const std::wstring &a, const std::wstring &b)
{
    std::vector<size_t> row(b.size() + 1);
    for (size_t j = 0; j <= b.size(); ++j) {
        row[j] = j;
    }
    for (size_t i = 1; i <= a.size(); ++i) {
        size_t diagonal = row[0];
        row[0] = i;
        for (size_t j = 1; j <= b.size(); ++j) {
            size_t above = row[j];
            bool same = std::towlower(a[i - 1]) == std::towlower(b[j - 1]);
            row[j] = std::min({row[j] + 1, row[j - 1] + 1, diagonal + (same ? 0 : 1)});
            diagonal = above;
        }
    }
    return row[b.size()];
}

std::wstring Visible(const std::wstring &text)
{
    std::wstring out;
    for (wchar_t c : text) {
        if (c == L'\t') {
            out += L"\\t";
        } else if (c == L'\n') {
            out += L"\\n";
        } else if (c == L'\r') {
            out += L"\\r";
        } else if (c < 0x20) {
            wchar_t escape[8];
            std::swprintf(escape, 8, L"\\x%02x", static_cast<unsigned>(c));
            out += escape;
        } else {
            out += c;
        }
    }
    return out;
}

bool IsSafeUrl(const std::wstring &target)
{
    static const wchar_t *const kSchemes[] = {L"http://", L"https://", L"mailto:"};
    for (const wchar_t *scheme : kSchemes) {
        size_t length = wcslen(scheme);
        if (target.size() > length && _wcsnicmp(target.c_str(), scheme, length) == 0) {
            return true;
        }
    }
    return false;
}

} // namespace mirllint
