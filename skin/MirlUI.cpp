#include "MirlSkin.h"

#include "MirlException.h"
#include "MirlLookupIndex.h"
#include "MirlSkinPackage.h"
#include "Ostra.h"

#include <iterator>
#include <new>

MirlUI *MirlUI::m_Instance = nullptr;

MirlUI::MirlUI()
    : m_Valid(false), m_CurrentLanguage(1033), m_Package(new (std::nothrow) MirlSkinPackage()),
      m_ListsSearched(0), m_LookupIndex(new (std::nothrow) MirlLookupIndex()), m_DocumentsSought(0),
      m_DocumentBytesRead(0)
{
}

MirlUI::~MirlUI()
{
    ClearUiElements();
    delete m_Package;
    m_Package = nullptr;
    delete m_LookupIndex;
    m_LookupIndex = nullptr;
}

MirlUI *MirlUI::Instance()
{
    if (m_Instance == nullptr) {
        m_Instance = new (std::nothrow) MirlUI();
    }
    return m_Instance;
}

void MirlUI::Release()
{
    if (m_Instance != nullptr) {
        MirlUI *instance = m_Instance;
        m_Instance = nullptr;
        delete instance;
    }
}

bool MirlUI::IsValid()
{
    return m_Valid;
}

void MirlUI::Load(const wchar_t *skinPath)
{
    if (m_Package == nullptr) {
        RaiseWin32Error(ERROR_NOT_ENOUGH_MEMORY);
    }
    m_Package->Open(skinPath);
    ClearUiElements();
    m_DocumentsSought = 0;
    m_DocumentBytesRead = 0;
    LoadFile(L"Skin.xml");
}

void MirlUI::SetCurrentLanguage(unsigned int language)
{
    m_CurrentLanguage = language;
}

unsigned int MirlUI::GetCurrentLanguage()
{
    return m_CurrentLanguage;
}

MirlUI::LanguageMap *MirlUI::MapOfType(unsigned long type)
{
    switch (type) {
    case UI_ELEMENT_INFORMATION: return &m_Information;
    case UI_ELEMENT_COLOR: return &m_Colors;
    case UI_ELEMENT_FONT: return &m_Fonts;
    case UI_ELEMENT_IMAGE: return &m_Images;
    case UI_ELEMENT_TEXT: return &m_Texts;
    case UI_ELEMENT_WINDOW: return &m_Windows;
    default: return nullptr;
    }
}

const MirlUI::ElementList *MirlUI::FindList(unsigned long type, unsigned int language)
{
    if (MapOfType(type) == nullptr) {
        return nullptr;
    }
    ++m_ListsSearched;
    return ListOf(type, language);
}

const MirlUI::ElementList *MirlUI::ListOf(unsigned long type, unsigned int language)
{
    LanguageMap *map = MapOfType(type);
    if (map == nullptr) {
        return nullptr;
    }
    LanguageMap::const_iterator found = map->find(language);
    return found == map->end() ? nullptr : &found->second;
}

unsigned int MirlUI::GetLanguageCount(unsigned long type)
{
    LanguageMap *map = MapOfType(type);
    return map == nullptr ? 0 : static_cast<unsigned int>(map->size());
}

unsigned int MirlUI::GetLanguage(unsigned long type, unsigned int index)
{
    LanguageMap *map = MapOfType(type);
    if (map == nullptr || index >= map->size()) {
        return 0;
    }
    LanguageMap::const_iterator it = map->begin();
    std::advance(it, index);
    return it->first;
}

unsigned int MirlUI::GetUiElementCount(unsigned long type, unsigned int language)
{
    LanguageMap *map = MapOfType(type);
    if (map == nullptr) {
        return 0;
    }
    LanguageMap::const_iterator found = map->find(language);
    return found == map->end() ? 0 : static_cast<unsigned int>(found->second.size());
}

MirlUiElement *MirlUI::GetUiElementByIndex(unsigned long type, unsigned int language, unsigned int index)
{
    LanguageMap *map = MapOfType(type);
    if (map == nullptr) {
        return nullptr;
    }
    LanguageMap::const_iterator found = map->find(language);
    if (found == map->end() || index >= found->second.size()) {
        return nullptr;
    }
    return found->second[index];
}

unsigned long MirlUI::GetListsSearched() const
{
    return m_ListsSearched;
}

MirlUiElement *MirlUI::GetUiElement(const wchar_t *name, unsigned long type, unsigned int language)
{
    if (type < UI_ELEMENT_INFORMATION || type > UI_ELEMENT_WINDOW || name == nullptr) {
        return nullptr;
    }
    const ElementList *list = FindList(type, language);
    if (list == nullptr) {
        return nullptr;
    }
    return m_LookupIndex != nullptr ? m_LookupIndex->Find(type, language, *list, name)
                                    : MirlLookupIndex::Walk(*list, name);
}

MirlUiElement *MirlUI::GetUiElement(const wchar_t *name, unsigned long type)
{
    if (m_CurrentLanguage == 1033 || m_LookupIndex == nullptr) {
        MirlUiElement *element = GetUiElement(name, type, m_CurrentLanguage);
        if (element == nullptr && m_CurrentLanguage != 1033) {
            element = GetUiElement(name, type, 1033);
        }
        return element;
    }
    if (type < UI_ELEMENT_INFORMATION || type > UI_ELEMENT_WINDOW || name == nullptr) {
        return nullptr;
    }
    // Both languages in one probe; counted as the lists a search in turn would have read.
    bool inCurrent = false;
    MirlUiElement *element =
        m_LookupIndex->FindWithFallback(type, m_CurrentLanguage, ListOf(type, m_CurrentLanguage), ListOf(type, 1033),
                                        name, inCurrent);
    m_ListsSearched += inCurrent ? 1 : 2;
    return element;
}

MirlUiWindow *MirlUI::GetUiElement(unsigned long commandID, unsigned int language)
{
    const ElementList *list = FindList(UI_ELEMENT_WINDOW, language);
    if (list == nullptr) {
        return nullptr;
    }
    for (MirlUiElement *element : *list) {
        MirlUiWindow *window = static_cast<MirlUiWindow *>(element);
        MirlUiWindow::Attribute *attribute = window->GetAttribute(L"CommandID");
        if (attribute != nullptr && static_cast<unsigned long>(attribute->GetInteger()) == commandID) {
            return window;
        }
    }
    return nullptr;
}

MirlUiWindow *MirlUI::GetUiElement(unsigned long commandID)
{
    MirlUiWindow *window = GetUiElement(commandID, m_CurrentLanguage);
    if (window == nullptr && m_CurrentLanguage != 1033) {
        window = GetUiElement(commandID, 1033);
    }
    return window;
}

IStreamPtr MirlUI::ExtractFile(const wchar_t *fileName)
{
    return m_Package != nullptr ? m_Package->ExtractFile(fileName) : IStreamPtr();
}

IStreamPtr MirlUI::ExtractDocument(const wchar_t *fileName)
{
    return m_Package != nullptr ? m_Package->ExtractDocument(fileName) : IStreamPtr();
}

void *MirlUI::ExtractFileToHGLOBAL(const wchar_t *fileName)
{
    return m_Package != nullptr ? m_Package->ExtractFileToHGLOBAL(fileName) : nullptr;
}

void MirlUI::ClearUiElements()
{
    LanguageMap *maps[] = {&m_Information, &m_Colors, &m_Fonts, &m_Images, &m_Texts, &m_Windows};
    for (LanguageMap *map : maps) {
        for (LanguageMap::value_type &language : *map) {
            for (MirlUiElement *element : language.second) {
                delete element;
            }
        }
    }
    for (LanguageMap *map : maps) {
        map->clear();
    }
    if (m_LookupIndex != nullptr) {
        m_LookupIndex->Clear();
    }
    m_Documents.clear();
}
