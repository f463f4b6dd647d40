#include "MirlXmlMutator.h"

#include "MirlFuzzRandom.h"

#include <windows.h>

#include <algorithm>
#include <cctype>
#include <cstring>

namespace mirlfuzz {

namespace {

const size_t npos = std::string::npos;

bool IsSpace(char c)
{
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

bool EndsWithXml(const std::string &name)
{
    return name.size() >= 4 && _stricmp(name.c_str() + name.size() - 4, ".xml") == 0;
}

bool IsElement(const XmlTag &tag)
{
    return tag.kind == XmlTag::Open || tag.kind == XmlTag::Empty;
}

// The whole element that starts at tag i: through its closing tag when it has one.
std::pair<size_t, size_t> ElementSpan(const std::vector<XmlTag> &tags, size_t i)
{
    const XmlTag &tag = tags[i];
    if (tag.kind == XmlTag::Open && tag.match != npos) {
        return {tag.begin, tags[tag.match].end};
    }
    return {tag.begin, tag.end};
}

std::vector<size_t> ElementIndexes(const std::vector<XmlTag> &tags)
{
    std::vector<size_t> result;
    for (size_t i = 0; i < tags.size(); ++i) {
        if (IsElement(tags[i])) {
            result.push_back(i);
        }
    }
    return result;
}

// Elements inside the first "Windows" section when there is one, so that nesting and
// duplication reach templates more often than chance alone would.
std::vector<size_t> TemplateIndexes(const std::vector<XmlTag> &tags)
{
    std::vector<size_t> result;
    for (size_t i = 0; i < tags.size(); ++i) {
        if (tags[i].kind == XmlTag::Open && tags[i].name == "Windows" && tags[i].match != npos) {
            for (size_t k = i + 1; k < tags[i].match; ++k) {
                if (IsElement(tags[k])) {
                    result.push_back(k);
                }
            }
            break;
        }
    }
    return result;
}

std::string Repeat(const std::string &piece, size_t times)
{
    std::string result;
    result.reserve(piece.size() * times);
    for (size_t i = 0; i < times; ++i) {
        result += piece;
    }
    return result;
}

const char *const kAttributeNames[] = {
    "Class", "CommandID", "Text", "ToolTip", "Pic", "X", "Y", "Width", "Height", "MinWidth", "MaxWidth",
    "MinHeight", "MaxHeight", "ClBkGround", "ClText", "Font", "Style", "ExStyle", "Menu", "Transparent",
    "Align", "Layout", "Red", "Green", "Blue", "Alpha", "FamilyName", "Weight", "Italic", "Underline", "Bold",
    "File", "KeyColorLow", "KeyColorHigh", "Title", "Description", "Author", "Version", "Language", "Id",
    "class", "WIDTH", "file", "id",
};

const char *const kTagNames[] = {
    "Skin", "skin", "Include", "INCLUDE", "include", "Infoes", "Colors", "colors", "Fonts", "Images", "Text",
    "Windows", "WINDOWS", "Language", "language", "Level1", "MainFrame", "Tree", "a:b", "_", "X-1",
    "\xE4\xB8\xAD\xE6\x96\x87", // non-ASCII
};

const char *const kStyleWords[] = {
    "WS_CHILD", "WS_VISIBLE", "WS_POPUP", "WS_MAXIMIZE", "WS_MINIMIZE", "WS_DISABLED", "WS_CAPTION",
    "WS_SYSMENU", "WS_THICKFRAME", "WS_HSCROLL", "WS_VSCROLL", "WS_CLIPCHILDREN", "WS_BORDER", "WS_DLGFRAME",
    "WS_OVERLAPPEDWINDOW", "WS_POPUPWINDOW", "WS_EX_LAYERED", "WS_EX_TRANSPARENT", "WS_EX_TOPMOST",
    "WS_EX_MDICHILD", "WS_EX_LAYOUTRTL", "WS_EX_COMPOSITED", "WS_EX_NOACTIVATE", "WS_EX_TOOLWINDOW",
    "WS_EX_CONTROLPARENT", "WS_EX_CLIENTEDGE", "ALIGN_PARENT_LEFT", "ALIGN_PARENT_TOP", "ALIGN_PARENT_RIGHT",
    "ALIGN_PARENT_BOTTOM", "ALIGN_PARENT_WIDTH", "ALIGN_PARENT_HEIGHT", "ALIGN_PARENT_VCENTER",
    "ALIGN_PARENT_HCENTER", "ALIGN_PRE_LEFT", "ALIGN_PRE_TOP", "ALIGN_PRE_RIGHT", "ALIGN_PRE_BOTTOM",
    "OFFSET_PRE_LEFT", "OFFSET_PRE_RIGHT", "OFFSET_PRE_TOP", "OFFSET_PRE_BOTTOM", "BS_BACKIMGE", "SS_VCENTER",
    "DS_SYSMODAL", "ws_child", "", " ",
};

const char *const kFixedExtremes[] = {
    "", " ", "0", "1", "-1", "-0", "+5", "007", "2147483647", "-2147483648", "2147483648", "4294967295",
    "4294967296", "-4294967296", "18446744073709551616", "99999999999999999999999", "1e9", "1.5", "-1.5e-300",
    "0x", "0X", "x1", "0x0", "0x7FFF", "0x8000", "0xFFFF", "0x10000", "0x7FFFFFFF", "0x80000000", "0xFFFFFFFF",
    "0x1FFFFFFFF", "0xFFFFFFFFFFFFFFFFFFFF", "0xG", "0x-1", "-0x10", "7x10", "0xAgB", "0x0409", "true", "TRUE",
    "false", "yes", "NaN", "-", "--1", "\xE4\xB8\xAD\xE6\x96\x87", "&#x4E2D;&#x6587;", "\xC3\xA9",
    "\xF0\x9F\x98\x80", "&#x1F600;", "\xEF\xBF\xBD", "&#xFFFF;", "&#x1;", "&#9;&#10;&#13;", "&amp;&lt;&gt;&quot;",
    "WINDOW", "CUSTOMCONTROL", "window", "LISTBOX", "BUTTON", "Unknown", "Skin.xml", "skin.XML", "./Skin.xml",
    "../Skin.xml", "/Skin.xml", "C:\\Windows\\win.ini", "\\\\server\\share\\x.png", "Images/Button.png",
    "Buttons/Ok.png", "Ok.png", "Text.xml", "Windows.xml", "|", "||||", "ALIGN_NONE ", "Tahoma", "Arial",
};

// Invalid UTF-8 and characters that break the markup around them.
const char *const kJunk[] = {
    "<", ">", "&", "\"", "'", "/", "=", "</", "/>", "<<", "]]>", "\xC3\x28", "\xFF\xFE", "\x80",
    "<Skin>", "</Skin>", "<Windows>", "</Windows>", "<Language Id=\"2052\">", "</Language>", "&undefined;",
};

// Finds the root element; inserts snippet as its first child. A root without a body gets one.
void InsertIntoRoot(std::string &text, const std::string &snippet)
{
    std::vector<XmlTag> tags = ScanXml(text);
    for (const XmlTag &tag : tags) {
        if (tag.kind == XmlTag::Open) {
            text.insert(tag.end, snippet);
            return;
        }
        if (tag.kind == XmlTag::Empty) {
            std::string open = text.substr(tag.begin, tag.end - tag.begin - 2) + ">";
            text.replace(tag.begin, tag.end - tag.begin, open + snippet + "</" + tag.name + ">");
            return;
        }
    }
    text += snippet;
}

std::string IncludeOf(const std::string &file)
{
    return "<Include File=\"" + file + "\"/>";
}

std::string AddDocument(std::vector<SkinFile> &files, const std::string &name, const std::string &text)
{
    SkinFile file;
    file.name = name;
    file.data.assign(text.begin(), text.end());
    files.push_back(file);
    return name;
}

// A chain of documents, each including the next; the last one includes the first when cyclic.
std::string AddChain(std::vector<SkinFile> &files, size_t length, bool cyclic)
{
    for (size_t i = 0; i < length; ++i) {
        std::string next = i + 1 < length ? "Chain" + std::to_string(i + 1) + ".xml" : (cyclic ? "chain0.XML" : "");
        std::string body = "<Skin>" + (next.empty() ? std::string() : IncludeOf(next)) + "<Text><TxtChain" +
                           std::to_string(i) + " Text=\"" + std::to_string(i) + "\"/></Text></Skin>";
        AddDocument(files, "Chain" + std::to_string(i) + ".xml", body);
    }
    return "Chain0.xml";
}

std::string ToUtf16(const std::string &utf8, bool bigEndian, bool bom)
{
    std::wstring wide = Widen(utf8);
    std::string out;
    if (bom) {
        out += bigEndian ? "\xFE\xFF" : "\xFF\xFE";
    }
    for (wchar_t c : wide) {
        char low = static_cast<char>(c & 0xFF);
        char high = static_cast<char>((c >> 8) & 0xFF);
        out += bigEndian ? std::string{high, low} : std::string{low, high};
    }
    return out;
}

class Mutator {
public:
    Mutator(std::vector<SkinFile> &files, uint64_t seed) : m_Files(files), m_Random(seed) {}

    std::string Apply(XmlMutation kind)
    {
        size_t doc = PickDocument();
        std::string text(m_Files[doc].data.begin(), m_Files[doc].data.end());
        std::string what = Run(kind, text, doc);
        // The chosen document may have moved when documents were added.
        for (SkinFile &file : m_Files) {
            if (file.name == m_DocName) {
                file.data.assign(text.begin(), text.end());
                break;
            }
        }
        return m_DocName + ": " + what;
    }

private:
    size_t PickDocument()
    {
        std::vector<size_t> docs;
        for (size_t i = 0; i < m_Files.size(); ++i) {
            if (EndsWithXml(m_Files[i].name)) {
                docs.push_back(i);
            }
        }
        if (docs.empty()) {
            AddDocument(m_Files, "Skin.xml", "<Skin></Skin>");
            docs.push_back(m_Files.size() - 1);
        }
        // Skin.xml is where a package starts: give it half of the chances.
        size_t chosen = docs[m_Random.Below(docs.size())];
        for (size_t i : docs) {
            if (_stricmp(m_Files[i].name.c_str(), "Skin.xml") == 0 && m_Random.Chance(50)) {
                chosen = i;
            }
        }
        m_DocName = m_Files[chosen].name;
        return chosen;
    }

    size_t PickElement(const std::vector<XmlTag> &tags, bool preferTemplates)
    {
        std::vector<size_t> candidates = preferTemplates ? TemplateIndexes(tags) : std::vector<size_t>();
        if (candidates.empty() || m_Random.Chance(30)) {
            candidates = ElementIndexes(tags);
        }
        return candidates.empty() ? npos : candidates[m_Random.Below(candidates.size())];
    }

    std::string Run(XmlMutation kind, std::string &text, size_t doc)
    {
        std::vector<XmlTag> tags = ScanXml(text);
        switch (kind) {
        case XmlMutation::DeleteElement: {
            size_t i = PickElement(tags, false);
            if (i == npos) {
                return "nothing to delete";
            }
            std::pair<size_t, size_t> span = ElementSpan(tags, i);
            text.erase(span.first, span.second - span.first);
            return "deleted <" + tags[i].name + ">";
        }
        case XmlMutation::DuplicateElement: {
            size_t i = PickElement(tags, true);
            if (i == npos) {
                return "nothing to duplicate";
            }
            std::pair<size_t, size_t> span = ElementSpan(tags, i);
            // Rarely many times: a duplicated template tree multiplies the windows of a case.
            size_t times = m_Random.Chance(85) ? 1 : static_cast<size_t>(m_Random.Pick({2, 3, 10}));
            text.insert(span.second, Repeat(text.substr(span.first, span.second - span.first), times));
            return "duplicated <" + tags[i].name + "> " + std::to_string(times) + "x";
        }
        case XmlMutation::DeleteTag: {
            std::vector<size_t> candidates;
            for (size_t i = 0; i < tags.size(); ++i) {
                if (tags[i].kind == XmlTag::Open || tags[i].kind == XmlTag::Close) {
                    candidates.push_back(i);
                }
            }
            if (candidates.empty()) {
                return "no tag to delete";
            }
            const XmlTag &tag = tags[candidates[m_Random.Below(candidates.size())]];
            text.erase(tag.begin, tag.end - tag.begin);
            return std::string("deleted tag ") + (tag.kind == XmlTag::Close ? "</" : "<") + tag.name + ">";
        }
        case XmlMutation::ExtremeValue: return ReplaceValue(text, tags);
        case XmlMutation::RenameAttribute: {
            std::vector<std::pair<size_t, XmlAttribute>> all = AllAttributes(text, tags);
            if (all.empty()) {
                return "no attribute to rename";
            }
            const XmlAttribute &a = all[m_Random.Below(all.size())].second;
            std::string name = m_Random.Pick(kAttributeNames);
            std::string old = text.substr(a.nameBegin, a.nameEnd - a.nameBegin);
            text.replace(a.nameBegin, a.nameEnd - a.nameBegin, name);
            return "renamed attribute " + old + " to " + name;
        }
        case XmlMutation::AddAttribute: {
            size_t i = PickElement(tags, true);
            if (i == npos) {
                return "no tag for an attribute";
            }
            std::string name = m_Random.Pick(kAttributeNames);
            std::string value = PlausibleOrExtreme(name, tags, text);
            text.insert(tags[i].begin + 1 + tags[i].name.size(), " " + name + "=\"" + value + "\"");
            return "added " + name + " to <" + tags[i].name + "> (" + std::to_string(value.size()) + " chars)";
        }
        case XmlMutation::DeepNesting: return Nest(text, tags);
        case XmlMutation::IncludeCycle: return IncludeCycle(text, doc);
        case XmlMutation::ManyIncludes: return ManyIncludes(text);
        case XmlMutation::RenameTag: return RenameTag(text, tags);
        case XmlMutation::InsertNode: return InsertNode(text, tags);
        case XmlMutation::SpliceBytes: return Splice(text);
        case XmlMutation::MoveElement: return Move(text, tags);
        case XmlMutation::Encoding: return Encoding(text);
        case XmlMutation::Count: break;
        }
        return "nothing";
    }

    std::vector<std::pair<size_t, XmlAttribute>> AllAttributes(const std::string &text, const std::vector<XmlTag> &tags)
    {
        std::vector<std::pair<size_t, XmlAttribute>> all;
        for (size_t i = 0; i < tags.size(); ++i) {
            if (IsElement(tags[i])) {
                for (const XmlAttribute &a : ScanAttributes(text, tags[i])) {
                    all.push_back({i, a});
                }
            }
        }
        return all;
    }

    std::string RandomTagName(const std::vector<XmlTag> &tags)
    {
        std::vector<size_t> elements = ElementIndexes(tags);
        return elements.empty() ? std::string("Skin") : tags[elements[m_Random.Below(elements.size())]].name;
    }

    std::string StyleWords()
    {
        std::string words;
        int count = m_Random.Between(1, 8);
        for (int i = 0; i < count; ++i) {
            words += (i > 0 ? "|" : "") + std::string(m_Random.Pick(kStyleWords));
        }
        return words;
    }

    std::string PlausibleOrExtreme(const std::string &name, const std::vector<XmlTag> &tags, const std::string &text)
    {
        (void)text;
        if (m_Random.Chance(40)) {
            if (name == "Style" || name == "ExStyle" || name == "Align" || name == "Layout") {
                return StyleWords();
            }
            if (name == "Text" || name == "ToolTip" || name == "Pic" || name == "Font" || name == "ClBkGround" ||
                name == "ClText" || name == "KeyColorLow" || name == "KeyColorHigh") {
                // A name of some element, of whatever type: lookups must survive confusion.
                return RandomTagName(tags);
            }
        }
        return ExtremeAttributeValue(m_Random);
    }

    std::string ReplaceValue(std::string &text, const std::vector<XmlTag> &tags)
    {
        std::vector<std::pair<size_t, XmlAttribute>> all = AllAttributes(text, tags);
        if (all.empty()) {
            return "no attribute to replace";
        }
        const XmlAttribute &a = all[m_Random.Below(all.size())].second;
        std::string name = text.substr(a.nameBegin, a.nameEnd - a.nameBegin);
        std::string value = PlausibleOrExtreme(name, tags, text);
        text.replace(a.valueBegin, a.valueEnd - a.valueBegin, value);
        return "value of " + name + " (" + std::to_string(value.size()) + " chars): " + value.substr(0, 24);
    }

    std::string Nest(std::string &text, const std::vector<XmlTag> &tags)
    {
        static const size_t depths[] = {8, 33, 63, 64, 65, 100, 257, 1000};
        size_t depth = m_Random.Pick(depths);
        size_t i = PickElement(tags, true);
        if (i == npos) {
            return "nothing to nest";
        }
        std::pair<size_t, size_t> span = ElementSpan(tags, i);
        std::string open;
        std::string close;
        if (m_Random.Chance(50)) {
            // The element inside copies of its own start tag.
            const XmlTag &tag = tags[i];
            std::string start = text.substr(tag.begin, tag.end - tag.begin);
            if (tag.kind == XmlTag::Empty) {
                start = start.substr(0, start.size() - 2) + ">";
            }
            open = start;
            close = "</" + tag.name + ">";
        } else {
            open = "<Deep Class=\"WINDOW\" X=\"1\" Y=\"1\" Width=\"9\" Height=\"9\" Transparent=\"true\">";
            close = "</Deep>";
        }
        text.insert(span.second, Repeat(close, depth));
        text.insert(span.first, Repeat(open, depth));
        return "nested <" + tags[i].name + "> " + std::to_string(depth) + " deep";
    }

    std::string IncludeCycle(std::string &text, size_t doc)
    {
        std::string self = m_Files[doc].name;
        switch (m_Random.Below(4)) {
        case 0: {
            std::string variant = self;
            if (m_Random.Chance(50)) {
                std::transform(variant.begin(), variant.end(), variant.begin(), ::toupper);
            }
            InsertIntoRoot(text, IncludeOf(variant));
            return "includes itself as " + variant;
        }
        case 1:
            InsertIntoRoot(text, IncludeOf("Skin.xml"));
            return "includes Skin.xml";
        case 2:
            AddDocument(m_Files, "CycleA.xml", "<Skin>" + IncludeOf("CycleB.xml") + "<Text><TxtCycleA Text=\"a\"/></Text></Skin>");
            AddDocument(m_Files, "CycleB.xml", "<Skin>" + IncludeOf("cyclea.xml") + IncludeOf(self) + "</Skin>");
            InsertIntoRoot(text, IncludeOf("CycleA.xml"));
            return "includes a two-document cycle";
        default: {
            size_t length = static_cast<size_t>(m_Random.Between(30, 40));
            InsertIntoRoot(text, IncludeOf(AddChain(m_Files, length, true)));
            return "includes a cyclic chain of " + std::to_string(length);
        }
        }
    }

    std::string ManyIncludes(std::string &text)
    {
        // Each include of a document that exists parses it again: thousands of a missing one,
        // hundreds of a tiny one, a few of a long chain, keep a case well under a second.
        size_t count = 0;
        std::string target;
        switch (m_Random.Below(4)) {
        case 0:
            count = static_cast<size_t>(m_Random.Pick({1000, 2000, 5000}));
            target = m_Random.Chance(50) ? "Missing.xml" : "";
            break;
        case 1:
            count = static_cast<size_t>(m_Random.Pick({100, 300, 1000}));
            target = AddDocument(m_Files, "Tiny.xml", "<Skin><Text><TxtTiny Text=\"tiny\"/></Text></Skin>");
            break;
        case 2:
            count = static_cast<size_t>(m_Random.Pick({2, 10, 50}));
            target = m_Files[m_Random.Below(m_Files.size())].name;
            break;
        default:
            count = static_cast<size_t>(m_Random.Between(2, 8));
            target = AddChain(m_Files, static_cast<size_t>(m_Random.Between(33, 40)), false);
            break;
        }
        InsertIntoRoot(text, Repeat(IncludeOf(target), count));
        return std::to_string(count) + " includes of " + (target.empty() ? "nothing" : target);
    }

    std::string RenameTag(std::string &text, const std::vector<XmlTag> &tags)
    {
        size_t i = PickElement(tags, false);
        if (i == npos) {
            return "no tag to rename";
        }
        std::string name;
        switch (m_Random.Below(4)) {
        case 0: name = std::string(static_cast<size_t>(m_Random.Pick({300, 10000})), 'N'); break;
        case 1: name = RandomTagName(tags); break;
        default: name = m_Random.Pick(kTagNames); break;
        }
        const XmlTag &tag = tags[i];
        // The closing tag first, so that the opening tag's position stays valid.
        if (tag.kind == XmlTag::Open && tag.match != npos && m_Random.Chance(85)) {
            const XmlTag &close = tags[tag.match];
            text.replace(close.begin + 2, close.name.size(), name);
        }
        text.replace(tag.begin + 1, tag.name.size(), name);
        return "renamed <" + tag.name + "> (" + std::to_string(name.size()) + " chars)";
    }

    std::string InsertNode(std::string &text, const std::vector<XmlTag> &tags)
    {
        static const char *const nodes[] = {
            "<!-- comment -->", "loose text", "<![CDATA[ <Skin/> ]]>", "<?pi data?>", "<Language Id=\"2052\"/>",
            "<Language Id=\"-1\"><TxtX Text=\"y\"/></Language>", "<Language Id=\"99999999999\"><TxtX/></Language>",
            "<Language Id=\"0x0409\"><TxtX/></Language>", "<Language><!-- c --><TxtX Text=\"y\"/></Language>",
            "<Include/>", "<Include File=\"\"/>", "<Include File=\"Skin.xml\"/>", "<Include File=\"Images/Button.png\"/>",
            "<Include File=\"Buttons/Ok.png\"/>", "&amp;", "&#x26;", "<Windows><W Class=\"WINDOW\"/></Windows>",
            "<Windows><W Class=\"WINDOW\" Width=\"-2147483648\" Height=\"2147483647\" X=\"0xFFFF8000\"/></Windows>",
            "<Windows><W Class=\"WINDOW\" Style=\"WS_CHILD\" Transparent=\"true\" Width=\"1\"><V Class=\"WINDOW\" Transparent=\"TRUE\" Width=\"3\"/></W></Windows>",
            "<Windows><W Class=\"CUSTOMCONTROL\" Style=\"WS_POPUP|WS_VISIBLE|WS_MAXIMIZE\" Width=\"0\" Height=\"0\"/></Windows>",
            "<Windows><W Class=\"WINDOW\" Width=\"20\" Height=\"20\"><NoClass Width=\"10\" Height=\"10\"/></W></Windows>",
            "<Colors><C Red=\"255\" Green=\"-1\"/></Colors>", "<Fonts><F FamilyName=\"\" Height=\"4294967295\"/></Fonts>",
            "<Images><I File=\"Skin.xml\"/><J File=\"\"/><K File=\"Missing.png\" KeyColorLow=\"I\"/></Images>",
        };
        std::string node = m_Random.Pick(nodes);
        size_t at = tags.empty() ? text.size() : tags[m_Random.Below(tags.size())].end;
        text.insert(std::min(at, text.size()), node);
        return "inserted " + node.substr(0, 24);
    }

    std::string Splice(std::string &text)
    {
        if (text.empty()) {
            text = m_Random.Pick(kJunk);
            return "junk into an empty document";
        }
        size_t at = m_Random.Below(text.size());
        switch (m_Random.Below(3)) {
        case 0:
            text.resize(at);
            return "truncated at " + std::to_string(at);
        case 1: {
            size_t length = std::min(text.size() - at, static_cast<size_t>(m_Random.Between(1, 64)));
            text.erase(at, length);
            return "erased " + std::to_string(length) + " bytes at " + std::to_string(at);
        }
        default: {
            std::string junk;
            int pieces = m_Random.Between(1, 4);
            for (int i = 0; i < pieces; ++i) {
                junk += m_Random.Chance(70) ? std::string(m_Random.Pick(kJunk)) : std::string(1, static_cast<char>(m_Random.Next32()));
            }
            if (junk.empty()) {
                junk.assign(1, '\0');
            }
            text.insert(at, junk);
            return "inserted " + std::to_string(junk.size()) + " junk bytes at " + std::to_string(at);
        }
        }
    }

    std::string Move(std::string &text, const std::vector<XmlTag> &tags)
    {
        size_t i = PickElement(tags, false);
        if (i == npos) {
            return "nothing to move";
        }
        std::pair<size_t, size_t> span = ElementSpan(tags, i);
        std::string piece = text.substr(span.first, span.second - span.first);
        text.erase(span.first, piece.size());
        std::vector<XmlTag> rest = ScanXml(text);
        std::vector<size_t> targets;
        for (size_t k = 0; k < rest.size(); ++k) {
            if (rest[k].kind == XmlTag::Open) {
                targets.push_back(k);
            }
        }
        if (targets.empty()) {
            text += piece;
            return "moved <" + tags[i].name + "> to the end";
        }
        const XmlTag &into = rest[targets[m_Random.Below(targets.size())]];
        text.insert(into.end, piece);
        return "moved <" + tags[i].name + "> into <" + into.name + ">";
    }

    std::string Encoding(std::string &text)
    {
        // Drops an existing declaration so that the new one is the first thing in the document.
        auto dropDeclaration = [&text]() {
            if (text.compare(0, 5, "<?xml") == 0) {
                size_t end = text.find("?>");
                text.erase(0, end == npos ? text.size() : end + 2);
            }
        };
        switch (m_Random.Below(7)) {
        case 0: text.insert(0, "\xEF\xBB\xBF"); return "UTF-8 byte order mark";
        case 1:
            dropDeclaration();
            text.insert(0, "<?xml version=\"1.0\" encoding=\"utf-16\"?>");
            return "declares UTF-16, is UTF-8";
        case 2:
            dropDeclaration();
            text.insert(0, std::string("<?xml version=\"1.0\" encoding=\"") + m_Random.Pick({"x-bogus", "UTF-32", "gb2312", "windows-1252", ""}) + "\"?>");
            return "declares another encoding";
        case 3: text = ToUtf16(text, false, true); return "UTF-16LE with a byte order mark";
        case 4: text = ToUtf16(text, m_Random.Chance(50), false); return "UTF-16 without a byte order mark";
        case 5: {
            size_t at = m_Random.Below(text.size() + 1);
            text.insert(at, m_Random.Pick({"\xC3\x28", "\xFF", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xC0\xAF"}));
            return "invalid UTF-8 at " + std::to_string(at);
        }
        default: {
            size_t at = m_Random.Below(text.size() + 1);
            text.insert(at, std::string("\0", 1));
            return "NUL at " + std::to_string(at);
        }
        }
    }

    std::vector<SkinFile> &m_Files;
    Random m_Random;
    std::string m_DocName;
};

} // namespace

std::vector<XmlTag> ScanXml(const std::string &text)
{
    std::vector<XmlTag> tags;
    const size_t n = text.size();
    size_t i = 0;
    while ((i = text.find('<', i)) != npos) {
        XmlTag tag = {XmlTag::Other, i, n, std::string(), npos};
        auto until = [&](const char *end, size_t from) {
            size_t at = text.find(end, from);
            return at == npos ? n : at + std::strlen(end);
        };
        if (text.compare(i, 4, "<!--") == 0) {
            tag.end = until("-->", i + 4);
        } else if (text.compare(i, 9, "<![CDATA[") == 0) {
            tag.end = until("]]>", i + 9);
        } else if (i + 1 < n && (text[i + 1] == '?' || text[i + 1] == '!')) {
            tag.end = until(">", i + 1);
        } else {
            bool close = i + 1 < n && text[i + 1] == '/';
            size_t p = i + (close ? 2 : 1);
            size_t nameBegin = p;
            while (p < n && !IsSpace(text[p]) && text[p] != '>' && text[p] != '/' && text[p] != '<') {
                ++p;
            }
            tag.name = text.substr(nameBegin, p - nameBegin);
            char quote = 0;
            while (p < n) {
                char c = text[p];
                if (quote != 0) {
                    if (c == quote) {
                        quote = 0;
                    }
                } else if (c == '"' || c == '\'') {
                    quote = c;
                } else if (c == '>') {
                    break;
                }
                ++p;
            }
            tag.end = p < n ? p + 1 : n;
            if (tag.name.empty()) {
                tag.kind = XmlTag::Other;
            } else if (close) {
                tag.kind = XmlTag::Close;
            } else {
                tag.kind = (p < n && p > i && text[p - 1] == '/') ? XmlTag::Empty : XmlTag::Open;
            }
        }
        tags.push_back(tag);
        i = tag.end;
    }
    std::vector<size_t> open;
    for (size_t k = 0; k < tags.size(); ++k) {
        if (tags[k].kind == XmlTag::Open) {
            open.push_back(k);
        } else if (tags[k].kind == XmlTag::Close) {
            for (size_t depth = open.size(); depth > 0; --depth) {
                if (tags[open[depth - 1]].name == tags[k].name) {
                    tags[open[depth - 1]].match = k;
                    open.resize(depth - 1);
                    break;
                }
            }
        }
    }
    return tags;
}

std::vector<XmlAttribute> ScanAttributes(const std::string &text, const XmlTag &tag)
{
    std::vector<XmlAttribute> attributes;
    size_t p = tag.begin + 1 + tag.name.size();
    const size_t end = tag.end;
    while (p < end) {
        while (p < end && IsSpace(text[p])) {
            ++p;
        }
        size_t nameBegin = p;
        while (p < end && !IsSpace(text[p]) && text[p] != '=' && text[p] != '>' && text[p] != '/') {
            ++p;
        }
        size_t nameEnd = p;
        while (p < end && IsSpace(text[p])) {
            ++p;
        }
        if (nameEnd == nameBegin || p >= end || text[p] != '=') {
            break;
        }
        ++p;
        while (p < end && IsSpace(text[p])) {
            ++p;
        }
        if (p >= end || (text[p] != '"' && text[p] != '\'')) {
            break;
        }
        char quote = text[p++];
        size_t valueBegin = p;
        while (p < end && text[p] != quote) {
            ++p;
        }
        if (p >= end) {
            break;
        }
        attributes.push_back({nameBegin, nameEnd, valueBegin, p});
        ++p;
    }
    return attributes;
}

std::string ExtremeAttributeValue(Random &random)
{
    switch (random.Below(6)) {
    case 0: {
        static const size_t lengths[] = {65, 300, 10000};
        static const char *const pieces[] = {"A", "9", "F", "\xE4\xB8\xAD", "WS_CHILD|", "&#x4E2D;", " "};
        size_t length = random.Pick(lengths);
        std::string piece = random.Pick(pieces);
        std::string value = random.Chance(30) ? "0x" : "";
        return value + Repeat(piece, length);
    }
    case 1: return std::to_string(static_cast<int32_t>(random.Next32()));
    case 2: {
        char hex[16];
        snprintf(hex, sizeof(hex), "0x%08X", random.Next32());
        return hex;
    }
    default: return random.Pick(kFixedExtremes);
    }
}

std::string MutateSkinXml(std::vector<SkinFile> &files, XmlMutation kind, uint64_t seed)
{
    Mutator mutator(files, seed);
    return mutator.Apply(kind);
}

} // namespace mirlfuzz
