#include "MirlLintChecks.h"

#include "MirlLintRules.h"

#include <algorithm>
using std::max;
using std::min;
#include <gdiplus.h>

#include <cwchar>
#include <cwctype>
#include <map>
#include <memory>
#include <set>
#include <tuple>

namespace mirllint {

namespace {

std::wstring Join(const std::vector<unsigned int> &languages)
{
    std::wstring text;
    for (unsigned int language : languages) {
        text += (text.empty() ? L"" : L", ") + std::to_wstring(language);
    }
    return text;
}

std::wstring JoinNames(const std::vector<std::wstring> &names, size_t limit)
{
    std::wstring text;
    for (size_t i = 0; i < names.size() && i < limit; ++i) {
        text += (i == 0 ? L"" : L", ") + names[i];
    }
    if (names.size() > limit) {
        text += L" and " + std::to_wstring(names.size() - limit) + L" more";
    }
    return text;
}

std::wstring Hex(unsigned long value)
{
    wchar_t text[16];
    std::swprintf(text, 16, L"0x%08lX", value);
    return text;
}

class Checker {
public:
    Checker(MirlUI *ui, Skin &skin, const std::vector<unsigned int> &languages, Report &report)
        : m_UI(ui), m_Skin(skin), m_Report(report)
    {
        if (!languages.empty()) {
            m_Languages.assign(languages.begin(), languages.end());
        } else {
            std::set<unsigned int> all = skin.languages;
            all.insert(1033);
            m_Languages.assign(all.begin(), all.end());
        }
        m_Requested = languages;
    }

    void Run()
    {
        for (const Definition &definition : m_Skin.definitions) {
            CheckDefinition(definition);
        }
        CheckCoverage();
    }

private:
    void Error(const Location &where, const std::wstring &message, const wchar_t *rule, int phase = 1)
    {
        m_Report.Add(Severity::Error, where, message, rule, phase);
    }
    void Warning(const Location &where, const std::wstring &message, const wchar_t *rule, int phase = 1)
    {
        m_Report.Add(Severity::Warning, where, message, rule, phase);
    }

    // The checked languages in which a lookup of this top-level definition finds it.
    std::vector<unsigned int> Reach(const Definition &definition) const
    {
        std::vector<unsigned int> reach;
        for (unsigned int language : m_Languages) {
            if (m_Skin.Resolve(definition.type, definition.name, language) == &definition) {
                reach.push_back(language);
            }
        }
        return reach;
    }

    void CheckDefinition(const Definition &definition);
    void CheckElementAttributes(const Definition &definition);
    void CheckImage(const Definition &definition, const std::vector<unsigned int> &reach);
    void CheckTemplate(const Template &window, const std::wstring &parentClass, bool top, const std::vector<unsigned int> &reach);
    void CheckWordsOf(const Template &window, const wchar_t *attribute, WordTable table, const wchar_t *rule);
    void CheckReference(const Location &where, const wchar_t *attribute, const std::wstring &value, unsigned long type,
                        const std::vector<unsigned int> &reach, bool fallback);
    void CheckUrl(const Location &where, const std::wstring &value, const std::vector<unsigned int> &reach);
    void CheckFixedImages(const Template &window, const std::wstring &windowClass, const std::vector<unsigned int> &reach);
    void CheckFixedColors(const Template &window, const std::wstring &windowClass, const std::vector<unsigned int> &reach);
    void CheckDialogImages(const Definition &definition, const std::vector<unsigned int> &reach);
    void CheckToolbarChildren(const Template &window);
    void CheckOutlookFolders(const Template &window);
    // The names that some checked language finds no image element for.
    std::vector<std::wstring> MissingImages(const std::vector<std::wstring> &names, const std::vector<unsigned int> &reach) const;
    std::vector<std::wstring> MissingElements(const std::vector<std::wstring> &names, unsigned long type,
                                              const std::vector<unsigned int> &reach) const;
    std::wstring SuggestName(const std::wstring &value, unsigned long type) const;
    void CheckCoverage();

    MirlUI *m_UI;
    Skin &m_Skin;
    Report &m_Report;
    std::vector<unsigned int> m_Languages;
    std::vector<unsigned int> m_Requested;
    std::map<std::tuple<unsigned long, unsigned int, std::wstring>, const Definition *> m_First;
    std::set<std::wstring> m_FixedReported;
};

void Checker::CheckDefinition(const Definition &definition)
{
    if (!definition.hasAttributeMap) {
        return;  // a comment or text read as an element: reported where it stands
    }
    auto key = std::make_tuple(definition.type, definition.language, definition.name);
    auto first = m_First.find(key);
    if (first == m_First.end()) {
        m_First[key] = &definition;
    } else {
        const Location &earlier = first->second->where;
        bool repeatedInclude = _wcsicmp(earlier.file.c_str(), definition.where.file.c_str()) == 0 &&
                               earlier.path == definition.where.path;
        if (!repeatedInclude) {
            Warning(definition.where, L"the " + std::wstring(TypeNoun(definition.type)) + L" '" + definition.name +
                                          L"' of language " + std::to_wstring(definition.language) +
                                          L" is defined again: the first definition (" + earlier.file + L" " + earlier.path +
                                          L") always wins, so this one is never used",
                    L"shadowed-definition");
        }
        return;
    }
    std::vector<unsigned int> reach = Reach(definition);
    switch (definition.type) {
    case UI_ELEMENT_WINDOW: CheckTemplate(definition.window, std::wstring(), true, reach); break;
    case UI_ELEMENT_IMAGE:
        CheckElementAttributes(definition);
        CheckImage(definition, reach);
        if (IsDialogOnlyImage(definition.name)) {
            CheckDialogImages(definition, reach);
        }
        break;
    case UI_ELEMENT_TEXT:
        CheckElementAttributes(definition);
        if (definition.language != 1033 && m_Skin.Find(UI_ELEMENT_TEXT, definition.name, 1033) == nullptr) {
            Warning(definition.where, L"the text '" + definition.name + L"' exists in language " +
                                          std::to_wstring(definition.language) +
                                          L" but not in 1033: every other language finds nothing",
                    L"text-no-fallback");
        }
        break;
    default: CheckElementAttributes(definition); break;
    }
}

void Checker::CheckElementAttributes(const Definition &definition)
{
    std::vector<ElementAttribute> known = ElementAttributes(definition.type);
    for (const Attr &attribute : definition.attributes) {
        bool exact = false;
        const wchar_t *otherCase = nullptr;
        for (const ElementAttribute &k : known) {
            if (attribute.name == k.name) {
                exact = true;
            } else if (_wcsicmp(attribute.name.c_str(), k.name) == 0) {
                otherCase = k.name;
            }
        }
        if (exact) {
            continue;
        }
        if (otherCase != nullptr) {
            Error(definition.where, L"'" + attribute.name + L"' is never read: attribute names of elements are case-sensitive; did you mean '" +
                                        otherCase + L"'?",
                  L"attribute-case");
        } else {
            Warning(definition.where, L"'" + attribute.name + L"' is not an attribute of " +
                                          (definition.type == UI_ELEMENT_INFORMATION ? L"an " : L"a ") +
                                          TypeNoun(definition.type) + L" element: it is ignored",
                    L"unknown-attribute");
        }
    }
    for (const ElementAttribute &k : known) {
        const Attr *attribute = FindAttrExact(definition.attributes, k.name);
        ValueProblem problem;
        if (attribute != nullptr && !ConvertsAs(attribute->value, k.conversion, problem)) {
            Error(definition.where, DescribeValueProblem(*attribute, k.conversion, problem), L"unconvertible-value");
            m_Skin.aborts.push_back(AbortPoint{definition.where, problem.hresult});
        }
    }
    const Attr *family = definition.type == UI_ELEMENT_FONT ? FindAttrExact(definition.attributes, L"FamilyName") : nullptr;
    if (family != nullptr && family->value.size() >= LF_FACESIZE) {
        Warning(definition.where, L"FamilyName is " + std::to_wstring(family->value.size()) +
                                      L" characters long: a face name holds " + std::to_wstring(LF_FACESIZE - 1),
                L"font-family-too-long");
    }
}

void Checker::CheckImage(const Definition &definition, const std::vector<unsigned int> &reach)
{
    const Attr *file = FindAttrExact(definition.attributes, L"File");
    if (file == nullptr || file->value.empty()) {
        Error(definition.where, L"the image element has no \"File\": controls that draw it get no picture", L"image-file-missing");
    } else {
        IStreamPtr stream = m_UI->ExtractFile(file->value.c_str());
        if (stream == nullptr) {
            Error(definition.where, L"File=\"" + file->value + L"\" is not in the package", L"image-file-missing");
        } else {
            // Decoded as the controls decode it.
            std::unique_ptr<Gdiplus::Bitmap> bitmap(MIRL::LoadPackageBitmap(file->value.c_str()));
            if (bitmap == nullptr) {
                Error(definition.where, L"File=\"" + file->value + L"\" is not a picture that GDI+ can read",
                      L"image-unreadable");
            }
        }
    }
    for (const wchar_t *key : {L"KeyColorLow", L"KeyColorHigh"}) {
        const Attr *attribute = FindAttrExact(definition.attributes, key);
        if (attribute != nullptr) {
            CheckReference(definition.where, key, attribute->value, UI_ELEMENT_COLOR, reach, false);
        }
    }
}

std::wstring Checker::SuggestName(const std::wstring &value, unsigned long type) const
{
    for (const Definition &definition : m_Skin.definitions) {
        if (definition.type == type && definition.name != value && _wcsicmp(definition.name.c_str(), value.c_str()) == 0) {
            return L"; did you mean '" + definition.name + L"'? (names of elements are case-sensitive)";
        }
    }
    for (const Definition &definition : m_Skin.definitions) {
        if (definition.type != type && definition.type != UI_ELEMENT_WINDOW && definition.name == value) {
            return L"; '" + value + L"' is " + (definition.type == UI_ELEMENT_INFORMATION ? L"an " : L"a ") +
                   TypeNoun(definition.type);
        }
    }
    std::wstring best;
    size_t bestDistance = 3;
    for (const Definition &definition : m_Skin.definitions) {
        if (definition.type == type && definition.hasAttributeMap) {
            size_t distance = EditDistance(value, definition.name);
            if (distance < bestDistance) {
                bestDistance = distance;
                best = definition.name;
            }
        }
    }
    return best.empty() ? std::wstring() : L"; did you mean '" + best + L"'?";
}

void Checker::CheckReference(const Location &where, const wchar_t *attribute, const std::wstring &value, unsigned long type,
                             const std::vector<unsigned int> &reach, bool fallback)
{
    std::vector<unsigned int> missing;
    for (unsigned int language : reach) {
        if (m_Skin.Resolve(type, value, language) == nullptr) {
            missing.push_back(language);
        }
    }
    if (missing.empty()) {
        return;
    }
    std::wstring named = fallback ? std::wstring(attribute) + L" is absent, and its default '" + value + L"'"
                                  : std::wstring(attribute) + L"=\"" + Visible(value) + L"\"";
    std::wstring noun = TypeNoun(type);
    if (missing.size() == reach.size()) {
        Error(where, named + L" names no " + noun + L" element" + SuggestName(value, type), L"missing-element");
        return;
    }
    std::vector<unsigned int> defined;
    for (unsigned int language : m_Skin.languages) {
        if (m_Skin.Find(type, value, language) != nullptr) {
            defined.push_back(language);
        }
    }
    Error(where, named + L" names no " + noun + L" element in language " + Join(missing) + L" (it is defined only in " +
                     Join(defined) + L", and 1033 has none to fall back on)",
          L"missing-element");
}

void Checker::CheckUrl(const Location &where, const std::wstring &value, const std::vector<unsigned int> &reach)
{
    std::map<std::wstring, std::vector<unsigned int>> unsafe;
    for (unsigned int language : reach) {
        const Definition *text = m_Skin.Resolve(UI_ELEMENT_TEXT, value, language);
        const Attr *target = text != nullptr ? FindAttrExact(text->attributes, L"Text") : nullptr;
        if (target != nullptr && !target->value.empty() && !IsSafeUrl(target->value)) {
            unsafe[target->value].push_back(language);
        }
    }
    for (const auto &entry : unsafe) {
        Error(where, L"Url=\"" + value + L"\" opens '" + Visible(entry.first) + L"' (language " + Join(entry.second) +
                         L"): only http, https and mailto targets are safe, anything else is started by the shell",
              L"url-scheme");
    }
}

void Checker::CheckWordsOf(const Template &window, const wchar_t *attribute, WordTable table, const wchar_t *rule)
{
    const Attr *value = FindAttr(window.attributes, attribute);
    if (value == nullptr) {
        return;
    }
    for (const WordProblem &problem : CheckWords(value->value, table)) {
        Error(window.where, DescribeWordProblem(problem, table), rule);
    }
}

void Checker::CheckFixedImages(const Template &window, const std::wstring &windowClass, const std::vector<unsigned int> &reach)
{
    const Attr *style = FindAttr(window.attributes, L"Style");
    unsigned long styleValue = style != nullptr ? WordValue(style->value, WordTable::Style) : 0;
    std::vector<std::wstring> names = FixedImages(windowClass, styleValue);
    std::vector<std::wstring> missing = MissingImages(names, reach);
    std::wstring upper = windowClass;
    std::transform(upper.begin(), upper.end(), upper.begin(), [](wchar_t c) { return static_cast<wchar_t>(std::towupper(c)); });
    std::wstring key = upper + ((styleValue & 0x1000) != 0 ? L"+BS_BACKIMGE" : L"");
    if (missing.empty() || !m_FixedReported.insert(key).second) {
        return;
    }
    std::wstring who = upper == L"BUTTON" ? std::wstring(L"a BUTTON with BS_BACKIMGE") : L"every " + upper;
    // Every lacking name is listed: an author fixes them from this one line.
    Error(window.where, who + L" draws the image elements " + JoinNames(names, 8) + L" by their fixed names, and the skin lacks " +
                            JoinNames(missing, missing.size()) + L" (reported once, at the first such template)",
          L"control-image-missing");
}

void Checker::CheckFixedColors(const Template &window, const std::wstring &windowClass, const std::vector<unsigned int> &reach)
{
    std::vector<std::wstring> names = FixedColors(windowClass);
    std::vector<std::wstring> missing = MissingElements(names, UI_ELEMENT_COLOR, reach);
    std::wstring upper = windowClass;
    std::transform(upper.begin(), upper.end(), upper.begin(), [](wchar_t c) { return static_cast<wchar_t>(std::towupper(c)); });
    if (missing.empty() || !m_FixedReported.insert(upper + L" colours").second) {
        return;
    }
    // Without them the selection, the selected text and the border all fall back to one grey.
    Warning(window.where, L"every " + upper + L" takes the colour elements " + JoinNames(names, 8) +
                              L" (selection, selected text, border) by their fixed names, and the skin lacks " +
                              JoinNames(missing, missing.size()) +
                              L": each missing one takes the colour before it, from 0xFF808080, so selected text can vanish into "
                              L"its background (reported once, at the first such template)",
            L"control-color-missing");
}

std::vector<std::wstring> Checker::MissingImages(const std::vector<std::wstring> &names,
                                                const std::vector<unsigned int> &reach) const
{
    return MissingElements(names, UI_ELEMENT_IMAGE, reach);
}

std::vector<std::wstring> Checker::MissingElements(const std::vector<std::wstring> &names, unsigned long type,
                                                  const std::vector<unsigned int> &reach) const
{
    std::vector<std::wstring> missing;
    for (const std::wstring &name : names) {
        for (unsigned int language : reach) {
            if (m_Skin.Resolve(type, name, language) == nullptr) {
                missing.push_back(name);
                break;
            }
        }
    }
    return missing;
}

void Checker::CheckDialogImages(const Definition &definition, const std::vector<unsigned int> &reach)
{
    std::vector<std::wstring> names = DialogControlImages();
    std::vector<std::wstring> missing = MissingImages(names, reach);
    if (missing.empty() || !m_FixedReported.insert(L"dialog controls").second) {
        return;
    }
    Warning(definition.where, L"the image '" + definition.name + L"' is one that a skinned dialog's own controls draw; they also take " +
                                  JoinNames(names, 8) + L" by their fixed names, and the skin lacks " + JoinNames(missing, 8) +
                                  L" (reported once)",
            L"dialog-image-missing");
}

// A toolbar makes windows for its "TABBUTTON" children only, and picks its current tab by the
// first tab's place among all its children, taken on the list of windows it made.
void Checker::CheckToolbarChildren(const Template &window)
{
    std::vector<const Template *> tabs;
    size_t firstTab = window.children.size();
    for (size_t i = 0; i < window.children.size(); ++i) {
        const Attr *cls = FindAttr(window.children[i].attributes, L"Class");
        if (window.children[i].loaded && cls != nullptr && _wcsicmp(cls->value.c_str(), L"TABBUTTON") == 0) {
            firstTab = std::min(firstTab, i);
            tabs.push_back(&window.children[i]);
        }
    }
    if (tabs.empty()) {
        Warning(window.where, L"the TOOLBAR has no TABBUTTON child: it shows its strip with no tab, and no tab is ever current",
                L"toolbar-no-tab");
    }
    for (size_t i = 0; i < window.children.size(); ++i) {
        const Template &child = window.children[i];
        if (!child.loaded || std::find(tabs.begin(), tabs.end(), &child) != tabs.end()) {
            continue;
        }
        std::wstring line = L"a TOOLBAR makes windows for its TABBUTTON children only: '" + child.name + L"' makes none";
        if (i < firstTab && firstTab < window.children.size()) {
            // Every child before the first tab moves the pick one tab further on.
            line += firstTab < tabs.size() ? L", and as it comes before the first tab, the toolbar makes the tab '" +
                                                 tabs[firstTab]->name + L"' current instead of '" + tabs[0]->name + L"'"
                                           : L", and as it comes before the first tab, the toolbar makes no tab current";
        }
        Warning(child.where, line, L"toolbar-child-not-tab");
    }
}

// Each child of an outlook control is a folder: a bar and a panel, both made from the child's
// template, so the bar also makes the panel's own children under its face.
void Checker::CheckOutlookFolders(const Template &window)
{
    if (window.children.empty()) {
        Warning(window.where, L"the OUTLOOK has no folder: it shows an empty stack, and no bar is ever current", L"outlook-no-folder");
    }
    for (const Template &folder : window.children) {
        if (!folder.loaded) {
            continue;
        }
        if (!folder.children.empty()) {
            Warning(folder.where, L"the folder's " + std::to_wstring(folder.children.size()) +
                                      (folder.children.size() == 1 ? L" child is" : L" children are") +
                                      L" made twice: in its panel and on its bar, which is made from the same template",
                    L"outlook-folder-children");
        }
        const Attr *id = FindAttr(folder.attributes, L"CommandID");
        MirlUiWindow::Attribute reader(L"CommandID", id != nullptr ? id->value.c_str() : L"0");
        if (reader.GetInteger() == 0) {
            Warning(folder.where, std::wstring(id == nullptr ? L"the folder has no \"CommandID\"" : L"the folder's \"CommandID\" is 0") +
                                      L": its bar gets identifier 500 and its panel 0, as every folder without one does",
                    L"outlook-folder-no-command-id");
        }
    }
}

void Checker::CheckTemplate(const Template &window, const std::wstring &parentClass, bool top, const std::vector<unsigned int> &reach)
{
    size_t count = window.attributes.size();
    if (!window.loaded) {
        std::wstring has = L"the template has " + std::to_wstring(count) + (count == 1 ? L" attribute" : L" attributes") +
                           L" where at least two are needed";
        if (top) {
            Error(window.where, has + L": it is kept without attributes or children, and a window made from it has only defaults",
                  L"template-too-few-attributes");
        } else {
            Error(window.where, has + L": it is dropped" +
                                    (window.lostDescendants > 0 ? L" with its " + std::to_wstring(window.lostDescendants) +
                                                                      (window.lostDescendants == 1 ? L" descendant" : L" descendants")
                                                                : std::wstring()),
                  L"template-too-few-attributes");
        }
        return;
    }
    const Attr *cls = FindAttr(window.attributes, L"Class");
    std::wstring windowClass = cls != nullptr ? cls->value : std::wstring();
    bool itemList = _wcsicmp(parentClass.c_str(), L"COMBOBOX") == 0 && _wcsicmp(window.name.c_str(), L"LIST") == 0;
    bool item = cls == nullptr && FindAttr(window.attributes, L"Text") != nullptr;
    if (!top && !itemList) {
        if (cls == nullptr) {
            if (!item) {
                Error(window.where, L"the template has no \"Class\": it makes no window", L"template-no-class");
            }
        } else if (_wcsicmp(windowClass.c_str(), L"LISTBOX") == 0) {
            Warning(window.where, L"Class=\"" + windowClass + L"\" makes no window: the library has no list box", L"class-listbox");
        } else if (_wcsicmp(windowClass.c_str(), L"TABBUTTON") == 0) {
            if (_wcsicmp(parentClass.c_str(), L"TOOLBAR") != 0) {
                Error(window.where, L"Class=\"" + windowClass + L"\" makes a tab only inside a TOOLBAR: here it makes no window",
                      L"unknown-class");
            }
        } else if (!IsKnownClass(windowClass)) {
            std::wstring similar = SimilarClass(windowClass);
            Error(window.where, L"Class=\"" + Visible(windowClass) + L"\" is not a window class: it makes no window" +
                                    (similar.empty() ? std::wstring() : L"; did you mean '" + similar + L"'?"),
                  L"unknown-class");
        }
    }

    if (!top && _wcsicmp(windowClass.c_str(), L"BUTTON") == 0) {
        const Attr *id = FindAttr(window.attributes, L"CommandID");
        MirlUiWindow::Attribute reader(L"CommandID", id != nullptr ? id->value.c_str() : L"0");
        if (reader.GetInteger() == 0) {
            Error(window.where, std::wstring(id == nullptr ? L"the BUTTON has no \"CommandID\"" : L"the BUTTON's \"CommandID\" is 0") +
                                    L": it is never drawn, because its parent takes an owner-draw notification with "
                                    L"identifier 0 for a menu's; give it an identifier of its own",
                  L"button-no-command-id");
        }
    }

    CheckWordsOf(window, L"Style", WordTable::Style, L"style-word");
    CheckWordsOf(window, L"ExStyle", WordTable::ExStyle, L"style-word");
    CheckWordsOf(window, L"Align", WordTable::Align, L"position-word");
    CheckWordsOf(window, L"Layout", WordTable::Layout, L"layout-word");

    const Attr *style = FindAttr(window.attributes, L"Style");
    if (!top && !item && !itemList && style != nullptr) {
        unsigned long value = WordValue(style->value, WordTable::Style);
        if (value != 0 && (value & WS_CHILD) == 0) {
            Warning(window.where, L"Style=\"" + style->value + L"\" has no WS_CHILD: \"Style\" replaces the default WS_CHILD|WS_VISIBLE, "
                                  L"so this window is made as a window of its own outside its parent",
                    L"style-not-child");
        }
    }

    for (const Attr &attribute : window.attributes) {
        std::wstring meant;
        if (!itemList && !IsTemplateAttribute(attribute.name, meant)) {
            Warning(window.where, L"'" + attribute.name + L"' is read by no window: it is ignored" +
                                      (meant.empty() ? std::wstring() : L"; did you mean '" + meant + L"'?"),
                    L"unknown-attribute");
        }
        if (IsIntegerAttribute(attribute.name) && !IsWellFormedInteger(attribute.value)) {
            MirlUiWindow::Attribute reader(attribute.name.c_str(), attribute.value.c_str());
            Warning(window.where, attribute.name + L"=\"" + Visible(attribute.value) + L"\" is not a number as written: it reads as " +
                                      std::to_wstring(reader.GetInteger()),
                    L"template-number");
        } else if (IsBooleanAttribute(attribute.name) && _wcsicmp(attribute.value.c_str(), L"true") != 0 &&
                   _wcsicmp(attribute.value.c_str(), L"false") != 0) {
            Warning(window.where, attribute.name + L"=\"" + Visible(attribute.value) +
                                      L"\" reads as false: only \"true\", in any letter case, is true",
                    L"template-boolean");
        }
    }

    std::vector<ElementReference> references =
        itemList ? std::vector<ElementReference>() : TemplateReferences(item ? std::wstring() : windowClass);
    if (_wcsicmp(parentClass.c_str(), L"OUTLOOK") == 0) {
        references.push_back(ElementReference{L"PicBar", UI_ELEMENT_IMAGE, nullptr});
    }
    for (const ElementReference &reference : references) {
        const Attr *attribute = FindAttr(window.attributes, reference.attribute);
        if (attribute != nullptr) {
            CheckReference(window.where, reference.attribute, attribute->value, reference.type, reach, false);
            if (wcscmp(reference.attribute, L"Url") == 0) {
                CheckUrl(window.where, attribute->value, reach);
            }
        } else if (reference.fallback != nullptr) {
            CheckReference(window.where, reference.attribute, reference.fallback, reference.type, reach, true);
        }
    }
    if (!top && !itemList && !item && cls != nullptr) {
        CheckFixedImages(window, windowClass, reach);
        CheckFixedColors(window, windowClass, reach);
    }
    if (_wcsicmp(windowClass.c_str(), L"TOOLBAR") == 0) {
        CheckToolbarChildren(window);
    } else if (_wcsicmp(windowClass.c_str(), L"OUTLOOK") == 0) {
        CheckOutlookFolders(window);
    }

    if (window.childrenTooDeep) {
        Warning(window.where, L"the template's " + std::to_wstring(window.lostDescendants) +
                                  L" descendants lie deeper than the library reads templates: they are left out",
                L"template-too-deep");
    }
    std::vector<const Template *> siblings;
    for (const Template &child : window.children) {
        if (child.loaded) {
            auto same = std::find_if(siblings.begin(), siblings.end(), [&](const Template *sibling) {
                return _wcsicmp(sibling->name.c_str(), child.name.c_str()) == 0;
            });
            if (same != siblings.end()) {
                Error(child.where, L"a sibling named '" + (*same)->name + L"' comes first (" + (*same)->where.path +
                                       L"): windows are found by name, so this one reads that template's attributes",
                      L"duplicate-sibling");
            } else {
                siblings.push_back(&child);
            }
        }
        if (itemList) {
            if (child.loaded) {
                const Attr *text = FindAttr(child.attributes, L"Text");
                if (text != nullptr) {
                    CheckReference(child.where, L"Text", text->value, UI_ELEMENT_TEXT, reach, false);
                }
            }
            continue;
        }
        CheckTemplate(child, windowClass, false, reach);
    }
}

void Checker::CheckCoverage()
{
    std::vector<std::wstring> base;
    std::set<std::wstring> seen;
    for (const Definition &definition : m_Skin.definitions) {
        if (definition.type == UI_ELEMENT_TEXT && definition.language == 1033 && definition.hasAttributeMap &&
            seen.insert(definition.name).second) {
            base.push_back(definition.name);
        }
    }
    std::vector<unsigned int> others;
    for (unsigned int language : m_Requested.empty() ? m_Languages : m_Requested) {
        if (language != 1033 && std::find(others.begin(), others.end(), language) == others.end()) {
            others.push_back(language);
        }
    }
    std::sort(others.begin(), others.end());
    Coverage &coverage = m_Report.GetCoverage();
    coverage.base = 1033;
    coverage.texts = static_cast<unsigned int>(base.size());
    if (base.empty()) {
        return;
    }
    for (unsigned int language : others) {
        CoverageRow row;
        row.language = language;
        for (const std::wstring &name : base) {
            if (m_Skin.Find(UI_ELEMENT_TEXT, name, language) != nullptr) {
                ++row.present;
            } else {
                row.missing.push_back(name);
            }
        }
        coverage.rows.push_back(row);
        if (row.missing.empty()) {
            continue;
        }
        Location where{L"Skin.xml", L"", 0};
        for (const Definition &definition : m_Skin.definitions) {
            if (definition.type == UI_ELEMENT_TEXT && definition.language == language && definition.hasAttributeMap) {
                where = definition.where;
                break;
            }
        }
        std::wstring total = std::to_wstring(base.size());
        std::wstring message =
            row.present == 0
                ? L"language " + std::to_wstring(language) + L" has none of the " + total + L" texts of 1033: all show in English"
                : L"language " + std::to_wstring(language) + L" has " + std::to_wstring(row.present) + L" of the " + total +
                      L" texts of 1033; these show in English: " + JoinNames(row.missing, 12);
        Warning(where, message, L"text-coverage", 2);
    }
}

const wchar_t *const kTypeNouns[] = {L"", L"information elements", L"colours", L"fonts", L"images", L"texts", L"templates"};

} // namespace

void CheckSkin(MirlUI *ui, Skin &skin, const std::vector<unsigned int> &languages, Report &report)
{
    Checker(ui, skin, languages, report).Run();
}

void CompareWithLibrary(MirlUI *ui, const Skin &skin, bool loaded, unsigned long hresult, Report &report)
{
    unsigned int libraryTotal = 0;
    std::map<std::pair<unsigned long, unsigned int>, unsigned int> walked;
    for (const Definition &definition : skin.definitions) {
        ++walked[std::make_pair(definition.type, definition.language)];
    }
    std::set<std::pair<unsigned long, unsigned int>> keys;
    for (const auto &entry : walked) {
        keys.insert(entry.first);
    }
    for (unsigned long type = UI_ELEMENT_INFORMATION; type <= UI_ELEMENT_WINDOW; ++type) {
        for (unsigned int i = 0; i < ui->GetLanguageCount(type); ++i) {
            unsigned int language = ui->GetLanguage(type, i);
            libraryTotal += ui->GetUiElementCount(type, language);
            keys.insert(std::make_pair(type, language));
        }
    }
    const AbortPoint *abort = skin.FirstAbort();
    if (!loaded) {
        Location where = abort != nullptr ? abort->where : Location{L"Skin.xml", L"/Skin", 0};
        report.Add(Severity::Error, where,
                   L"the library stopped loading the skin " + std::wstring(abort != nullptr ? L"here " : L"") + L"with HRESULT " +
                       Hex(hresult) + L": it read " + std::to_wstring(libraryTotal) + L" of the " +
                       std::to_wstring(skin.definitions.size()) + L" definitions, and the rest of the skin is missing",
                   L"loader-error", 0);
        return;
    }
    if (abort != nullptr) {
        report.Add(Severity::Warning, abort->where,
                   L"mirllint expected the library to stop loading here, but it read the whole skin: this report may be wrong",
                   L"lint-mismatch", 0);
    }
    for (const auto &key : keys) {
        unsigned int library = ui->GetUiElementCount(key.first, key.second);
        unsigned int mine = walked.count(key) != 0 ? walked[key] : 0;
        if (library != mine) {
            report.Add(Severity::Warning, Location{L"Skin.xml", L"", 0},
                       L"mirllint read " + std::to_wstring(mine) + L" " + kTypeNouns[key.first] + L" of language " +
                           std::to_wstring(key.second) + L" where the library read " + std::to_wstring(library) +
                           L": this report may be incomplete",
                       L"lint-mismatch", 0);
        }
    }
}

} // namespace mirllint
