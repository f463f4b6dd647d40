// The loader that walks Skin.xml and its includes into the language maps.
#include "MirlSkin.h"

#include "MirlSkinPackage.h"
#include "MirlXmlAttributes.h"
#include "Ostra.h"

#include <cwchar>

// MinGW declares this class identifier but no library defines it.
extern "C" const CLSID CLSID_DOMDocument30 = {0xf5078f32, 0xc551, 0x11d3, {0x89, 0xb9, 0x00, 0x00, 0xf8, 0x1f, 0xe2, 0x21}};

namespace {

std::wstring NameOf(IXMLDOMNodePtr node)
{
    BSTR name = nullptr;
    std::wstring result;
    if (SUCCEEDED(node->get_nodeName(&name)) && name != nullptr) {
        result.assign(name, SysStringLen(name));
    }
    SysFreeString(name);
    return result;
}

unsigned long SectionType(const std::wstring &name)
{
    static const wchar_t *const sections[] = {L"Infoes", L"Colors", L"Fonts", L"Images", L"Text", L"Windows"};
    for (unsigned long i = 0; i < 6; ++i) {
        if (name == sections[i]) {
            return i + 1;
        }
    }
    return 0;
}

IXMLDOMNamedNodeMapPtr AttributeMap(IXMLDOMNodePtr node)
{
    IXMLDOMNamedNodeMapPtr attributes;
    node->get_attributes(&attributes);
    return attributes;
}

// Marks a document as being read for as long as its load runs, so that an include of it
// from within is refused instead of recursing until the stack runs out.
class LoadingMark {
public:
    LoadingMark(std::vector<std::wstring> &loading, const wchar_t *name) : m_Loading(loading)
    {
        m_Loading.push_back(name);
    }
    ~LoadingMark() { m_Loading.pop_back(); }

private:
    std::vector<std::wstring> &m_Loading;
};

} // namespace

void MirlUI::LoadFile(const wchar_t *fileName)
{
    if (fileName == nullptr || m_Package == nullptr) {
        return;
    }
    // Every include met counts, refused ones too: a document holding thousands of includes of
    // itself, included thousands of times, would otherwise be walked without end.
    if (m_DocumentsSought >= static_cast<unsigned long>(MaxDocuments)) {
        return;
    }
    ++m_DocumentsSought;
    for (const std::wstring &loading : m_Loading) {
        if (_wcsicmp(loading.c_str(), fileName) == 0) {
            return;
        }
    }
    if (m_Loading.size() > static_cast<size_t>(MaxIncludeDepth) ||
        m_DocumentBytesRead >= static_cast<unsigned long long>(MaxDocumentBytes)) {
        return;
    }
    // Only what the entry really holds: a forged size would have the parser read megabytes
    // of zeros after the document.
    IStreamPtr stream = m_Package->ExtractDocument(fileName);
    if (stream == nullptr) {
        return;
    }
    STATSTG held = {};
    if (SUCCEEDED(stream->Stat(&held, STATFLAG_NONAME))) {
        m_DocumentBytesRead += held.cbSize.QuadPart;
    }
    IXMLDOMDocumentPtr document;
    HRESULT hr = CoCreateInstance(CLSID_DOMDocument30, nullptr, CLSCTX_INPROC_SERVER, __uuidof(IXMLDOMDocument),
                                  reinterpret_cast<void **>(&document));
    if (FAILED(hr) || document == nullptr) {
        RaiseWin32Error(FAILED(hr) ? static_cast<unsigned long>(hr) : static_cast<unsigned long>(E_POINTER));
    }
    document->put_async(VARIANT_FALSE);

    VARIANT source;
    VariantInit(&source);
    V_VT(&source) = VT_UNKNOWN;
    V_UNKNOWN(&source) = stream.GetInterfacePtr();
    VARIANT_BOOL parsed = VARIANT_FALSE;
    SetLastError(0);
    hr = document->load(source, &parsed);
    if (FAILED(hr)) {
        // A document that doesn't parse counts as loaded and empty. Some DOMs report that
        // with a failing result rather than a false one; the parse error tells them apart.
        IXMLDOMParseErrorPtr parseError;
        long code = 0;
        if (FAILED(document->get_parseError(&parseError)) || parseError == nullptr ||
            FAILED(parseError->get_errorCode(&code)) || code == 0) {
            DWORD error = GetLastError();
            RaiseWin32Error(error != 0 ? error : static_cast<unsigned long>(hr));
        }
    }
    m_Documents.push_back(document);

    LoadingMark mark(m_Loading, fileName);
    LoadUiFromXmlFile(document);
}

void MirlUI::LoadUiFromXmlFile(IXMLDOMDocumentPtr document)
{
    if (document == nullptr) {
        return;
    }
    IXMLDOMNodeListPtr roots;
    if (FAILED(document->selectNodes(_bstr_t(L"Skin"), &roots)) || roots == nullptr) {
        return;
    }
    IXMLDOMNodePtr root;
    if (roots->nextNode(&root) != S_OK || root == nullptr) {
        return;
    }
    IXMLDOMNodeListPtr sections;
    if (root->get_childNodes(&sections) != S_OK || sections == nullptr) {
        return;
    }
    IXMLDOMNodePtr section;
    while (sections->nextNode(&section) == S_OK && section != nullptr) {
        std::wstring name = NameOf(section);
        if (_wcsicmp(name.c_str(), L"Include") == 0) {
            std::wstring file;
            MirlXmlAttributes(AttributeMap(section)).GetString(L"File", file);
            LoadFile(file.c_str());
            section = nullptr;
            continue;
        }
        unsigned long type = SectionType(name);
        if (type == UI_ELEMENT_INFORMATION) {
            LoadLanguageUiElements(section, UI_ELEMENT_INFORMATION, 1033);
        }
        IXMLDOMNodeListPtr children;
        if (section->get_childNodes(&children) == S_OK && children != nullptr) {
            IXMLDOMNodePtr child;
            while (children->nextNode(&child) == S_OK && child != nullptr) {
                std::wstring childName = NameOf(child);
                if (childName == L"Language") {
                    int language = 1033;
                    MirlXmlAttributes(AttributeMap(child)).GetInt(L"Id", language);
                    IXMLDOMNodeListPtr block;
                    if (child->get_childNodes(&block) == S_OK && block != nullptr) {
                        IXMLDOMNodePtr element;
                        while (block->nextNode(&element) == S_OK && element != nullptr) {
                            LoadLanguageUiElements(element, type, static_cast<unsigned int>(language));
                            element = nullptr;
                        }
                    }
                } else if (childName != L"#comment") {
                    LoadLanguageUiElements(child, type, 1033);
                }
                child = nullptr;
            }
        }
        section = nullptr;
    }
}

void MirlUI::LoadLanguageUiElements(IXMLDOMNodePtr node, unsigned long type, unsigned int language)
{
    MirlUiElement *element = nullptr;
    switch (type) {
    case UI_ELEMENT_INFORMATION: element = new MirlUiElementInformation(); break;
    case UI_ELEMENT_COLOR: element = new MirlUiElementColor(); break;
    case UI_ELEMENT_FONT: element = new MirlUiElementFont(); break;
    case UI_ELEMENT_IMAGE: element = new MirlUiElementImage(); break;
    case UI_ELEMENT_TEXT: element = new MirlUiElementText(); break;
    case UI_ELEMENT_WINDOW: element = new MirlUiWindow(); break;
    default: return;
    }
    // In the list before reading: an element whose reading fails stays with what it read.
    MapOfType(type)->operator[](language).push_back(element);
    element->Load(node);
}
