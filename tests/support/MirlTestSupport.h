// Shared helpers of the test programs: fixture paths, COM scope, a DOM from text,
// and a skin manager whose maps a test can count.
#pragma once

#include "Mirl.h"

#include <string>

namespace mirltest {

// The folder of the running test program; zipped fixtures are in its "skins" folder.
inline std::wstring BinDir()
{
    wchar_t path[MAX_PATH] = {};
    DWORD length = GetModuleFileNameW(nullptr, path, MAX_PATH);
    std::wstring dir(path, length);
    size_t slash = dir.find_last_of(L"\\/");
    return slash == std::wstring::npos ? std::wstring(L".") : dir.substr(0, slash);
}

inline std::wstring SkinPath(const wchar_t *name)
{
    return BinDir() + L"\\skins\\" + name + L".zip";
}

class ComScope {
public:
    ComScope() { CoInitialize(nullptr); }
    ~ComScope() { CoUninitialize(); }
    ComScope(const ComScope &) = delete;
    ComScope &operator=(const ComScope &) = delete;
};

inline const CLSID &DomDocument30()
{
    static const CLSID clsid = {0xf5078f32, 0xc551, 0x11d3, {0x89, 0xb9, 0x00, 0x00, 0xf8, 0x1f, 0xe2, 0x21}};
    return clsid;
}

// Parses XML text and returns its root element; the document stays alive through the node.
inline IXMLDOMNodePtr ParseElement(const wchar_t *xml)
{
    IXMLDOMDocumentPtr document;
    if (FAILED(CoCreateInstance(DomDocument30(), nullptr, CLSCTX_INPROC_SERVER, __uuidof(IXMLDOMDocument),
                                reinterpret_cast<void **>(&document)))) {
        return IXMLDOMNodePtr();
    }
    VARIANT_BOOL ok = VARIANT_FALSE;
    document->loadXML(_bstr_t(xml), &ok);
    IXMLDOMElement *root = nullptr;
    document->get_documentElement(&root);
    if (root == nullptr) {
        return IXMLDOMNodePtr();
    }
    IXMLDOMNodePtr node(root);
    root->Release();
    return node;
}

// The skin manager, constructed outside the singleton so that each test has its own,
// with its maps and documents open to counting.
class ProbeUI : public MirlUI {
public:
    ProbeUI() = default;
    using MirlUI::LoadFile;

    size_t Count(unsigned long type, unsigned int language)
    {
        LanguageMap *map = MapOfType(type);
        if (map == nullptr) {
            return 0;
        }
        LanguageMap::const_iterator found = map->find(language);
        return found == map->end() ? 0 : found->second.size();
    }
    size_t Languages(unsigned long type)
    {
        LanguageMap *map = MapOfType(type);
        return map == nullptr ? 0 : map->size();
    }
    size_t Documents() const { return m_Documents.size(); }
    MirlUiElement *At(unsigned long type, unsigned int language, size_t index)
    {
        LanguageMap *map = MapOfType(type);
        return map->at(language).at(index);
    }
    void Add(unsigned long type, unsigned int language, MirlUiElement *element)
    {
        MapOfType(type)->operator[](language).push_back(element);
    }
};

inline const wchar_t *TextOf(MirlUiElement *element)
{
    return element == nullptr ? nullptr : static_cast<MirlUiElementText *>(element)->GetText();
}

} // namespace mirltest
