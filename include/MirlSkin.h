// The skin model: named elements, window templates and the skin manager.
//
//   MirlUiElement                 base of every named value: type code and name
//     MirlUiElementInformation    "Infoes": title, description, author, version, language
//     MirlUiElementColor          "Colors": red, green, blue, alpha
//     MirlUiElementFont           "Fonts": family, height, width, weight, italic, underline
//     MirlUiElementImage          "Images": package entry and colour-key names
//     MirlUiElementText           "Text": one localised string
//     MirlUiWindow                "Windows": a template tree with its attributes as text
//   MirlUI                        the process's skin manager: package, documents, language maps
#pragma once

#include "MirlExport.h"
#include "MirlCom.h"

#include <map>
#include <string>
#include <vector>

class MirlSkinPackage;
class MirlLookupIndex;

// Type codes of elements; also the type argument of MirlUI::GetUiElement.
enum {
    UI_ELEMENT_INFORMATION = 1,
    UI_ELEMENT_COLOR = 2,
    UI_ELEMENT_FONT = 3,
    UI_ELEMENT_IMAGE = 4,
    UI_ELEMENT_TEXT = 5,
    UI_ELEMENT_WINDOW = 6,
};

class MIRL_API MirlUiElement {
public:
    MirlUiElement(const MirlUiElement &source);
    MirlUiElement &operator=(const MirlUiElement &source);
    virtual ~MirlUiElement();
    // Reads the element from its tag. The base form stores the tag name.
    virtual bool Load(IXMLDOMNodePtr node);

    unsigned long GetType() const;
    // The tag name; never null.
    const wchar_t *GetName() const;
    void SetName(const wchar_t *name);
    // True if the name equals the argument, ignoring case.
    bool IsElement(const wchar_t *name) const;

protected:
    explicit MirlUiElement(unsigned long type);
    // The common start of every Load: stores the tag name (false if it can't be read) and
    // fetches the attribute map; readAttributes is false when the map can't be fetched.
    bool LoadName(IXMLDOMNodePtr node, IXMLDOMNamedNodeMapPtr &attributes, bool &readAttributes);

    unsigned long m_Type;
    std::wstring m_Name;
};

class MIRL_API MirlUiElementText : public MirlUiElement {
public:
    MirlUiElementText();
    MirlUiElementText(const MirlUiElementText &source);
    MirlUiElementText &operator=(const MirlUiElementText &source);
    bool Load(IXMLDOMNodePtr node) override;
    // Never null; empty when the tag has no "Text".
    const wchar_t *GetText() const;

protected:
    std::wstring m_Text;
};

class MIRL_API MirlUiElementInformation : public MirlUiElement {
public:
    MirlUiElementInformation();
    MirlUiElementInformation(const MirlUiElementInformation &source);
    MirlUiElementInformation &operator=(const MirlUiElementInformation &source);
    bool Load(IXMLDOMNodePtr node) override;
    // Each is null when its string is empty.
    const wchar_t *GetTitle() const;
    const wchar_t *GetDescription() const;
    const wchar_t *GetAuthor() const;
    const wchar_t *GetVersion() const;
    int GetLanguageID() const;

protected:
    std::wstring m_Title;
    std::wstring m_Description;
    std::wstring m_Author;
    std::wstring m_Version;
    int m_LanguageID;
};

class MIRL_API MirlUiElementColor : public MirlUiElement {
public:
    MirlUiElementColor();
    MirlUiElementColor(const MirlUiElementColor &source);
    MirlUiElementColor &operator=(const MirlUiElementColor &source);
    bool Load(IXMLDOMNodePtr node) override;

    unsigned char R() const;
    unsigned char G() const;
    unsigned char B() const;
    unsigned char A() const;
    unsigned char GetRed() const;
    unsigned char GetGreen() const;
    unsigned char GetBlue() const;
    unsigned char GetAlpha() const;
    // Red in bits 0 to 7, green 8 to 15, blue 16 to 23, alpha 24 to 31.
    unsigned long GetDWORD() const;

protected:
    unsigned char m_Red;
    unsigned char m_Green;
    unsigned char m_Blue;
    unsigned char m_Alpha;
};

class MIRL_API MirlUiElementFont : public MirlUiElement {
public:
    MirlUiElementFont();
    MirlUiElementFont(const MirlUiElementFont &source);
    MirlUiElementFont &operator=(const MirlUiElementFont &source);
    bool Load(IXMLDOMNodePtr node) override;

    // Never null.
    const wchar_t *GetFamilyName() const;
    int GetHeight() const;
    int GetWidth() const;
    int GetWeight() const;
    bool GetItalic() const;
    bool GetUnderline() const;

protected:
    int m_Height;
    int m_Width;
    int m_Weight;
    bool m_Italic;
    bool m_Underline;
    // Read and kept; the weight alone makes a font bold.
    bool m_Bold;
    std::wstring m_FamilyName;
};

class MIRL_API MirlUiElementImage : public MirlUiElement {
public:
    MirlUiElementImage();
    MirlUiElementImage(const MirlUiElementImage &source);
    MirlUiElementImage &operator=(const MirlUiElementImage &source);
    bool Load(IXMLDOMNodePtr node) override;

    // Names of colour elements bounding the colour key; null when not set.
    const wchar_t *GetKeyColorLow() const;
    const wchar_t *GetKeyColorHigh() const;
    // The package entry of the picture; null when not set.
    const wchar_t *GetFileName() const;

protected:
    std::wstring m_KeyColorLow;
    std::wstring m_KeyColorHigh;
    std::wstring m_FileName;
};

class MIRL_API MirlUiWindow : public MirlUiElement {
public:
    // One attribute of a template, kept as text and converted on demand.
    class MIRL_API Attribute {
    public:
        Attribute();
        Attribute(const wchar_t *name, const wchar_t *value);
        virtual ~Attribute();
        const wchar_t *GetName() const;
        const wchar_t *GetValue() const;
        // Decimal, or hexadecimal when the second character is 'x' or 'X'.
        int GetInteger() const;
        // True only for "true", in any letter case.
        bool GetBoolean() const;

    protected:
        friend class MirlUiWindow;
        std::wstring m_Name;
        std::wstring m_Value;
    };

    // Deeper template levels than this are left out when a skin is read.
    enum { MaxDepth = 64 };

    MirlUiWindow();
    // Copies are deep: each copy owns its own attributes and children.
    MirlUiWindow(const MirlUiWindow &source);
    MirlUiWindow &operator=(const MirlUiWindow &source);
    ~MirlUiWindow() override;
    // Fills the template from its tag. A tag with fewer than two attributes does not load.
    bool Load(IXMLDOMNodePtr node) override;

    // First attribute or child whose name equals the argument, ignoring case; null if none.
    Attribute *GetAttribute(const wchar_t *name) const;
    MirlUiWindow *GetChild(const wchar_t *name) const;
    // First direct child whose "CommandID" is the given value; null if none.
    MirlUiWindow *GetChildByID(unsigned long id) const;
    // Null for an index outside the list.
    Attribute *GetAttributeByIndex(int index) const;
    MirlUiWindow *GetChildByIndex(int index) const;
    unsigned int GetAttributeCount() const;
    unsigned int GetChildCount() const;

protected:
    bool LoadAtDepth(IXMLDOMNodePtr node, int depth);
    void CopyFrom(const MirlUiWindow &source);
    void FreeLists();

    std::vector<Attribute *> m_Attributes;
    std::vector<MirlUiWindow *> m_Children;
};

class MIRL_API MirlUI {
public:
    // The singleton, created on first call; null only if it could not be allocated.
    static MirlUI *Instance();
    // Destroys the singleton, whichever object it is called through, and forgets it.
    static void Release();
    // Always false: nothing sets it. Callers must not rely on it.
    bool IsValid();

    virtual ~MirlUI();
    // Opens a skin package and reads Skin.xml with its includes, replacing the former skin.
    virtual void Load(const wchar_t *skinPath);

    void SetCurrentLanguage(unsigned int language);
    unsigned int GetCurrentLanguage();

    // Exact lookup in one language: the first element of that name in document order. Its cost
    // doesn't grow with the skin.
    MirlUiElement *GetUiElement(const wchar_t *name, unsigned long type, unsigned int language);
    // The current language first, then 1033.
    MirlUiElement *GetUiElement(const wchar_t *name, unsigned long type);
    // Top-level template by its "CommandID", in one language or with the fallback.
    MirlUiWindow *GetUiElement(unsigned long commandID, unsigned int language);
    MirlUiWindow *GetUiElement(unsigned long commandID);

    // A package entry as a fresh stream on memory; null if the entry is absent.
    IStreamPtr ExtractFile(const wchar_t *fileName);
    // A package entry as a movable global memory block that the caller frees; null if absent.
    void *ExtractFileToHGLOBAL(const wchar_t *fileName);
    // A document entry as the loader parses it: what the entry holds, without the zero tail a
    // forged directory size leaves; null if absent.
    IStreamPtr ExtractDocument(const wchar_t *fileName);

    // Enumeration, for tools that list a skin: the languages a type has (ascending), and the
    // elements of one language in document order. Out-of-range indexes give 0 or null.
    unsigned int GetLanguageCount(unsigned long type);
    unsigned int GetLanguage(unsigned long type, unsigned int index);
    unsigned int GetUiElementCount(unsigned long type, unsigned int language);
    MirlUiElement *GetUiElementByIndex(unsigned long type, unsigned int language, unsigned int index);

    // How many language lists lookups have searched since the object was made: a diagnostic.
    unsigned long GetListsSearched() const;

    MirlUI(const MirlUI &) = delete;
    MirlUI &operator=(const MirlUI &) = delete;

    // Includes nested deeper than this are refused.
    enum { MaxIncludeDepth = 32 };
    // At most this many includes are followed for one skin, the first document included, and
    // every include met counts whether it is read, missing, refused as a cycle or too deep:
    // a document included a thousand times, each including a chain (or thousands of entries
    // that don't exist, or itself), would otherwise be read without end.
    enum { MaxDocuments = 1024 };
    // No document is read once this many bytes of documents have been read for one skin: a
    // large document included a thousand times would otherwise be parsed a thousand times.
    enum { MaxDocumentBytes = 8 * 1024 * 1024 };

protected:
    typedef std::vector<MirlUiElement *> ElementList;
    typedef std::map<unsigned int, ElementList> LanguageMap;

    MirlUI();
    void LoadFile(const wchar_t *fileName);
    void LoadUiFromXmlFile(IXMLDOMDocumentPtr document);
    void LoadLanguageUiElements(IXMLDOMNodePtr node, unsigned long type, unsigned int language);
    void ClearUiElements();

    LanguageMap *MapOfType(unsigned long type);
    const ElementList *FindList(unsigned long type, unsigned int language);
    // The same list without counting it as searched; null if the language has none.
    const ElementList *ListOf(unsigned long type, unsigned int language);

    static MirlUI *m_Instance;

    bool m_Valid;
    unsigned int m_CurrentLanguage;
    MirlSkinPackage *m_Package;
    std::vector<IXMLDOMDocumentPtr> m_Documents;
    LanguageMap m_Information;
    LanguageMap m_Colors;
    LanguageMap m_Fonts;
    LanguageMap m_Images;
    LanguageMap m_Texts;
    LanguageMap m_Windows;
    // Documents being read right now, outermost first: an include of one of them is refused.
    std::vector<std::wstring> m_Loading;
    unsigned long m_ListsSearched;
    // The first element of each name in each list; cleared with the lists. Null if it could not
    // be allocated: lookups then walk the lists.
    MirlLookupIndex *m_LookupIndex;
    // Includes met, and bytes of documents read, since the skin began to load.
    unsigned long m_DocumentsSought;
    unsigned long long m_DocumentBytesRead;
};
