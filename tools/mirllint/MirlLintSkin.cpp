#include "MirlLintSkin.h"

#include "MirlLintRules.h"

#include <cwchar>
#include <map>

namespace mirllint {

namespace {

const CLSID kDomDocument30 = {0xf5078f32, 0xc551, 0x11d3, {0x89, 0xb9, 0x00, 0x00, 0xf8, 0x1f, 0xe2, 0x21}};

// The loader's limits: includes nested deeper than this are refused, template levels deeper
// than this are left out.
const size_t kMaxIncludeDepth = MirlUI::MaxIncludeDepth;
const int kMaxTemplateDepth = MirlUiWindow::MaxDepth;

std::wstring NodeName(IXMLDOMNodePtr node)
{
    BSTR name = nullptr;
    std::wstring result;
    if (SUCCEEDED(node->get_nodeName(&name)) && name != nullptr) {
        result.assign(name, SysStringLen(name));
    }
    SysFreeString(name);
    return result;
}

std::vector<IXMLDOMNodePtr> ChildNodes(IXMLDOMNodePtr node)
{
    std::vector<IXMLDOMNodePtr> nodes;
    IXMLDOMNodeListPtr list;
    if (node->get_childNodes(&list) != S_OK || list == nullptr) {
        return nodes;
    }
    IXMLDOMNodePtr child;
    while (list->nextNode(&child) == S_OK && child != nullptr) {
        nodes.push_back(child);
        child = nullptr;
    }
    return nodes;
}

bool IsElementName(const std::wstring &name)
{
    return !name.empty() && name[0] != L'#';
}

// The node's attributes in the DOM's order; false when the node has no attribute map at all
// (comments, text), which is what makes the loader's first attribute read fail.
bool ReadAttributes(IXMLDOMNodePtr node, std::vector<Attr> &attributes)
{
    IXMLDOMNamedNodeMapPtr map;
    if (node->get_attributes(&map) != S_OK || map == nullptr) {
        return false;
    }
    long length = 0;
    map->get_length(&length);
    for (long i = 0; i < length; ++i) {
        IXMLDOMNodePtr item;
        if (FAILED(map->get_item(i, &item)) || item == nullptr) {
            continue;
        }
        Attr attribute;
        attribute.name = NodeName(item);
        _variant_t value;
        if (item->get_nodeValue(&value) == S_OK &&
            (V_VT(&value) == VT_BSTR || SUCCEEDED(VariantChangeType(&value, &value, 0, VT_BSTR)))) {
            BSTR text = V_BSTR(&value);
            attribute.value.assign(text != nullptr ? text : L"", text != nullptr ? SysStringLen(text) : 0);
        }
        attributes.push_back(attribute);
    }
    return true;
}

unsigned int CountElements(IXMLDOMNodePtr node)
{
    unsigned int count = 0;
    for (IXMLDOMNodePtr child : ChildNodes(node)) {
        if (IsElementName(NodeName(child))) {
            count += 1 + CountElements(child);
        }
    }
    return count;
}

// Path segments of one parent's children: a name that occurred before gets its position.
class Segments {
public:
    std::wstring Next(const std::wstring &segment)
    {
        int n = ++m_Seen[segment];
        return n == 1 ? segment : segment + L"[" + std::to_wstring(n) + L"]";
    }

private:
    std::map<std::wstring, int> m_Seen;
};

std::wstring SegmentOf(const std::wstring &name)
{
    if (name == L"#comment") {
        return L"comment()";
    }
    if (name == L"#text" || name == L"#cdata-section") {
        return L"text()";
    }
    return name;
}

class Walker {
public:
    Walker(MirlUI *ui, Skin &skin, Report &report) : m_UI(ui), m_Skin(skin), m_Report(report) {}

    void Run() { LoadDocument(L"Skin.xml", nullptr); }

private:
    Location Here(const std::wstring &file, const std::wstring &path) { return Location{file, path, ++m_Order}; }

    void Error(const Location &where, const std::wstring &message, const wchar_t *rule)
    {
        m_Report.Add(Severity::Error, where, message, rule);
    }
    void Warning(const Location &where, const std::wstring &message, const wchar_t *rule)
    {
        m_Report.Add(Severity::Warning, where, message, rule);
    }
    void Abort(const Location &where, unsigned long hresult) { m_Skin.aborts.push_back(AbortPoint{where, hresult}); }

    void LoadDocument(const std::wstring &name, const Location *include);
    void WalkRoot(IXMLDOMNodePtr root, const std::wstring &file);
    void WalkSection(IXMLDOMNodePtr section, const std::wstring &file, const std::wstring &path, unsigned long type);
    void CheckLanguageAttributes(const std::vector<Attr> &attributes, const Location &where, unsigned int &language);
    void AddDefinition(IXMLDOMNodePtr node, const std::wstring &name, unsigned long type, unsigned int language,
                       const Location &where);
    void ReadTemplate(IXMLDOMNodePtr node, Template &window, int depth);
    void StrayNode(const std::wstring &name, const Location &where, const wchar_t *container);

    MirlUI *m_UI;
    Skin &m_Skin;
    Report &m_Report;
    unsigned long m_Order = 0;
    std::vector<std::wstring> m_Loading;
    std::vector<std::wstring> m_Loaded;
    size_t m_Sought = 0;
    unsigned long long m_BytesRead = 0;
    bool m_IncludeLimitReported = false;
    bool m_DocumentLimitReported = false;
};

void Walker::LoadDocument(const std::wstring &name, const Location *include)
{
    // The library counts every include it meets toward its limit, refused ones too, and follows
    // none after it; the repeated includes that lead there are reported where they are.
    if (m_Sought >= static_cast<size_t>(MirlUI::MaxDocuments)) {
        if (include != nullptr && !m_IncludeLimitReported) {
            m_IncludeLimitReported = true;
            Error(*include, L"the library follows no include past the " + std::to_wstring(MirlUI::MaxDocuments) +
                                L"th it meets: this include of '" + name + L"' and every one after it read nothing",
                  L"include-limit");
        }
        return;
    }
    ++m_Sought;
    if (include != nullptr && name.empty()) {
        Error(*include, L"an Include without \"File\" includes nothing", L"include-missing");
        return;
    }
    for (const std::wstring &loading : m_Loading) {
        if (_wcsicmp(loading.c_str(), name.c_str()) == 0) {
            std::wstring chain;
            for (const std::wstring &link : m_Loading) {
                chain += link + L" -> ";
            }
            Error(*include, L"including '" + name + L"' closes a cycle (" + chain + name + L"): the library refuses this include",
                  L"include-cycle");
            return;
        }
    }
    if (m_Loading.size() > kMaxIncludeDepth) {
        Error(*include, L"'" + name + L"' is included more than " + std::to_wstring(kMaxIncludeDepth) +
                            L" levels deep: the library leaves it out",
              L"include-too-deep");
        return;
    }
    if (m_BytesRead >= static_cast<unsigned long long>(MirlUI::MaxDocumentBytes)) {
        // Nor does it read documents past this many bytes.
        if (include != nullptr && !m_DocumentLimitReported) {
            m_DocumentLimitReported = true;
            Error(*include, L"the library reads no document once " + std::to_wstring(MirlUI::MaxDocumentBytes / (1024 * 1024)) +
                                L" MiB of documents have been read for the skin (" + std::to_wstring(m_BytesRead) +
                                L" bytes so far): '" + name + L"' and every document after it are not read",
                  L"document-size-limit");
        }
        return;
    }
    // Read as the loader reads it: what the entry holds, not the padding a forged size declares.
    IStreamPtr stream = m_UI != nullptr ? m_UI->ExtractDocument(name.c_str()) : IStreamPtr();
    if (stream == nullptr) {
        if (include != nullptr) {
            Error(*include, L"'" + name + L"' is not in the package: the include reads nothing", L"include-missing");
        } else {
            Error(Location{name, L"", ++m_Order}, L"the package has no " + name + L": the skin is empty", L"include-missing");
        }
        return;
    }
    STATSTG held = {};
    if (SUCCEEDED(stream->Stat(&held, STATFLAG_NONAME))) {
        m_BytesRead += held.cbSize.QuadPart;
    }
    for (const std::wstring &loaded : m_Loaded) {
        if (include != nullptr && _wcsicmp(loaded.c_str(), name.c_str()) == 0) {
            Warning(*include, L"'" + name + L"' is read a second time: its definitions repeat the ones read before and never win",
                    L"include-repeated");
            break;
        }
    }
    m_Loaded.push_back(name);

    IXMLDOMDocumentPtr document;
    if (FAILED(CoCreateInstance(kDomDocument30, nullptr, CLSCTX_INPROC_SERVER, __uuidof(IXMLDOMDocument),
                                reinterpret_cast<void **>(&document))) ||
        document == nullptr) {
        Error(Location{name, L"", ++m_Order}, L"MSXML 3.0 is not available: the document can't be read", L"not-well-formed");
        return;
    }
    document->put_async(VARIANT_FALSE);
    VARIANT source;
    VariantInit(&source);
    V_VT(&source) = VT_UNKNOWN;
    V_UNKNOWN(&source) = stream.GetInterfacePtr();
    VARIANT_BOOL parsed = VARIANT_FALSE;
    document->load(source, &parsed);

    IXMLDOMParseErrorPtr parseError;
    long code = 0;
    if (SUCCEEDED(document->get_parseError(&parseError)) && parseError != nullptr &&
        SUCCEEDED(parseError->get_errorCode(&code)) && code != 0) {
        long line = 0;
        long column = 0;
        BSTR reason = nullptr;
        parseError->get_line(&line);
        parseError->get_linepos(&column);
        parseError->get_reason(&reason);
        std::wstring why = reason != nullptr ? std::wstring(reason, SysStringLen(reason)) : std::wstring();
        SysFreeString(reason);
        while (!why.empty() && (why.back() == L'\n' || why.back() == L'\r' || why.back() == L' ' || why.back() == L'.')) {
            why.pop_back();
        }
        // Some DOMs give neither a place nor a useful reason; only what is known is said.
        std::wstring detail;
        if (line > 0) {
            detail = L"line " + std::to_wstring(line) + L", column " + std::to_wstring(column);
        }
        if (!why.empty() && _wcsicmp(why.c_str(), L"error") != 0) {
            detail += (detail.empty() ? L"" : L": ") + why;
        }
        Error(Location{name, L"", ++m_Order},
              L"the document is not well formed" + (detail.empty() ? std::wstring() : L" (" + detail + L")") +
                  L": it contributes nothing",
              L"not-well-formed");
        return;
    }

    IXMLDOMNodeListPtr roots;
    IXMLDOMNodePtr root;
    if (FAILED(document->selectNodes(_bstr_t(L"Skin"), &roots)) || roots == nullptr || roots->nextNode(&root) != S_OK ||
        root == nullptr) {
        IXMLDOMElement *element = nullptr;
        std::wstring rootName;
        if (SUCCEEDED(document->get_documentElement(&element)) && element != nullptr) {
            rootName = NodeName(IXMLDOMNodePtr(element));
            element->Release();
        }
        Error(Location{name, L"/" + rootName, ++m_Order},
              L"the root element is '" + rootName + L"', not 'Skin': the document contributes nothing" +
                  (_wcsicmp(rootName.c_str(), L"Skin") == 0 ? L" (names are case-sensitive)" : L""),
              L"root-not-skin");
        return;
    }
    m_Loading.push_back(name);
    WalkRoot(root, name);
    m_Loading.pop_back();
}

void Walker::WalkRoot(IXMLDOMNodePtr root, const std::wstring &file)
{
    Segments segments;
    for (IXMLDOMNodePtr child : ChildNodes(root)) {
        std::wstring name = NodeName(child);
        if (!IsElementName(name)) {
            continue;  // comments and text under the root are walked and ignored
        }
        std::wstring path = L"/Skin/" + segments.Next(name);
        Location where = Here(file, path);
        std::vector<Attr> attributes;
        ReadAttributes(child, attributes);
        if (_wcsicmp(name.c_str(), L"Include") == 0) {
            const Attr *fileAttr = FindAttrExact(attributes, L"File");
            const Attr *caseMistake = FindAttr(attributes, L"File");
            if (fileAttr == nullptr && caseMistake != nullptr) {
                Error(where, L"'" + caseMistake->name + L"' is never read: attribute names are case-sensitive; did you mean 'File'?",
                      L"attribute-case");
            }
            LoadDocument(fileAttr != nullptr ? fileAttr->value : std::wstring(), &where);
            continue;
        }
        unsigned long type = SectionType(name);
        if (type == 0) {
            const wchar_t *section = SectionOfOtherCase(name);
            if (section != nullptr) {
                Error(where, L"the section '" + name + L"' is never read: section names are case-sensitive; did you mean '" +
                                 section + L"'?",
                      L"section-case");
            } else {
                std::wstring similar = SimilarSection(name);
                Warning(where,
                        L"'" + name + L"' is not a section: its elements are ignored" +
                            (similar.empty() ? L" (sections are Infoes, Colors, Fonts, Images, Text, Windows)"
                                             : L"; did you mean '" + similar + L"'?"),
                        L"unknown-section");
            }
        } else if (type == UI_ELEMENT_INFORMATION) {
            AddDefinition(child, name, UI_ELEMENT_INFORMATION, 1033, where);
        } else {
            for (const Attr &attribute : attributes) {
                Warning(where, L"'" + attribute.name + L"' is ignored: a section takes no attributes", L"unknown-attribute");
            }
        }
        WalkSection(child, file, path, type);
    }
}

void Walker::CheckLanguageAttributes(const std::vector<Attr> &attributes, const Location &where, unsigned int &language)
{
    for (const Attr &attribute : attributes) {
        if (attribute.name == L"Id") {
            ValueProblem problem;
            long value = 0;
            if (!ConvertToInt(attribute.value, value, problem)) {
                Error(where, DescribeValueProblem(attribute, Conversion::Int, problem, true), L"unconvertible-value");
                Abort(where, problem.hresult);
                unsigned long intended = 0;
                if (ReadHexadecimal(attribute.value, intended)) {
                    language = static_cast<unsigned int>(intended);
                }
            } else {
                language = static_cast<unsigned int>(value);
            }
        } else if (_wcsicmp(attribute.name.c_str(), L"Id") == 0) {
            Error(where, L"'" + attribute.name + L"' is never read, so the block is language 1033: attribute names are case-sensitive; did you mean 'Id'?",
                  L"attribute-case");
        } else {
            Warning(where, L"'" + attribute.name + L"' is ignored: a Language block takes only \"Id\"", L"unknown-attribute");
        }
    }
}

void Walker::StrayNode(const std::wstring &name, const Location &where, const wchar_t *container)
{
    if (name == L"#comment") {
        Error(where,
              std::wstring(L"a comment directly inside a Language block is read as an element without attributes: ") +
                  L"the library stops loading the skin here (HRESULT 0x80004003); put comments outside the block",
              L"comment-in-language");
    } else {
        Error(where, std::wstring(L"text inside ") + container +
                         L" is read as an element without attributes: the library stops loading the skin here (HRESULT 0x80004003)",
              L"text-in-section");
    }
    Abort(where, static_cast<unsigned long>(E_POINTER));
}

void Walker::WalkSection(IXMLDOMNodePtr section, const std::wstring &file, const std::wstring &path, unsigned long type)
{
    Segments segments;
    for (IXMLDOMNodePtr child : ChildNodes(section)) {
        std::wstring name = NodeName(child);
        if (name == L"Language") {
            std::vector<Attr> attributes;
            ReadAttributes(child, attributes);
            const Attr *id = FindAttrExact(attributes, L"Id");
            std::wstring blockPath =
                path + L"/" + segments.Next(id != nullptr ? L"Language[@Id='" + id->value + L"']" : std::wstring(L"Language"));
            Location where = Here(file, blockPath);
            unsigned int language = 1033;
            // The loader reads "Id" even in a section it doesn't know.
            CheckLanguageAttributes(attributes, where, language);
            if (type == 0) {
                continue;
            }
            Segments inner;
            for (IXMLDOMNodePtr element : ChildNodes(child)) {
                std::wstring elementName = NodeName(element);
                Location elementWhere = Here(file, blockPath + L"/" + inner.Next(SegmentOf(elementName)));
                if (!IsElementName(elementName)) {
                    StrayNode(elementName, elementWhere, L"a Language block");
                }
                AddDefinition(element, elementName, type, language, elementWhere);
            }
            continue;
        }
        if (name == L"#comment" || type == 0) {
            continue;
        }
        Location where = Here(file, path + L"/" + segments.Next(SegmentOf(name)));
        if (!IsElementName(name)) {
            StrayNode(name, where, L"a section");
        } else if (_wcsicmp(name.c_str(), L"Language") == 0) {
            Error(where, L"'" + name + L"' is read as an element of that name, not as a language block: did you mean 'Language'?",
                  L"section-case");
        } else if (_wcsicmp(name.c_str(), L"Include") == 0) {
            Error(where, L"an Include inside a section is not followed: it is read as an element named '" + name +
                             L"'; includes stand directly under Skin",
                  L"include-misplaced");
        }
        AddDefinition(child, name, type, 1033, where);
    }
}

void Walker::AddDefinition(IXMLDOMNodePtr node, const std::wstring &name, unsigned long type, unsigned int language,
                           const Location &where)
{
    Definition definition;
    definition.type = type;
    definition.language = language;
    definition.name = name;
    definition.where = where;
    definition.hasAttributeMap = ReadAttributes(node, definition.attributes);
    if (type == UI_ELEMENT_WINDOW && definition.hasAttributeMap) {
        definition.window.where = where;
        ReadTemplate(node, definition.window, 1);
    }
    m_Skin.languages.insert(language);
    m_Skin.definitions.push_back(definition);
}

void Walker::ReadTemplate(IXMLDOMNodePtr node, Template &window, int depth)
{
    window.name = NodeName(node);
    ReadAttributes(node, window.attributes);
    if (window.attributes.size() <= 1) {
        window.loaded = false;
        window.lostDescendants = CountElements(node);
        return;
    }
    std::vector<IXMLDOMNodePtr> children = ChildNodes(node);
    if (depth >= kMaxTemplateDepth) {
        window.lostDescendants = CountElements(node);
        window.childrenTooDeep = window.lostDescendants > 0;
        return;
    }
    Segments segments;
    for (IXMLDOMNodePtr child : children) {
        std::wstring name = NodeName(child);
        if (_wcsicmp(name.c_str(), L"#comment") == 0) {
            continue;
        }
        Location where = Here(window.where.file, window.where.path + L"/" + segments.Next(SegmentOf(name)));
        if (!IsElementName(name)) {
            StrayNode(name, where, L"a template");
            continue;
        }
        Template childTemplate;
        childTemplate.where = where;
        ReadTemplate(child, childTemplate, depth + 1);
        window.children.push_back(childTemplate);
    }
}

} // namespace

const Attr *FindAttr(const std::vector<Attr> &attributes, const wchar_t *name)
{
    for (const Attr &attribute : attributes) {
        if (_wcsicmp(attribute.name.c_str(), name) == 0) {
            return &attribute;
        }
    }
    return nullptr;
}

const Attr *FindAttrExact(const std::vector<Attr> &attributes, const wchar_t *name)
{
    for (const Attr &attribute : attributes) {
        if (attribute.name == name) {
            return &attribute;
        }
    }
    return nullptr;
}

const Definition *Skin::Find(unsigned long type, const std::wstring &name, unsigned int language) const
{
    for (; m_Indexed < definitions.size(); ++m_Indexed) {
        const Definition &definition = definitions[m_Indexed];
        m_Index.emplace(Key(definition.type, definition.language, definition.name), m_Indexed);
    }
    auto found = m_Index.find(Key(type, language, name));
    return found != m_Index.end() ? &definitions[found->second] : nullptr;
}

const Definition *Skin::Resolve(unsigned long type, const std::wstring &name, unsigned int language) const
{
    const Definition *found = Find(type, name, language);
    if (found == nullptr && language != 1033) {
        found = Find(type, name, 1033);
    }
    return found;
}

const AbortPoint *Skin::FirstAbort() const
{
    const AbortPoint *first = nullptr;
    for (const AbortPoint &point : aborts) {
        if (first == nullptr || point.where.order < first->where.order) {
            first = &point;
        }
    }
    return first;
}

void WalkSkin(MirlUI *ui, Skin &skin, Report &report)
{
    Walker(ui, skin, report).Run();
}

const wchar_t *TypeNoun(unsigned long type)
{
    static const wchar_t *const nouns[] = {L"element", L"information", L"colour", L"font", L"image", L"text", L"template"};
    return type <= UI_ELEMENT_WINDOW ? nouns[type] : nouns[0];
}

} // namespace mirllint
