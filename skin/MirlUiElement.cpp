#include "MirlSkin.h"

#include "MirlLookupIndex.h"
#include "MirlXmlAttributes.h"

#include <cwchar>

namespace {

const wchar_t *NullIfEmpty(const std::wstring &text)
{
    return text.empty() ? nullptr : text.c_str();
}

// Reads a string attribute; an absent one clears the field.
void ReadOrClear(MirlXmlAttributes &reader, const wchar_t *name, std::wstring &field)
{
    if (!reader.GetString(name, field)) {
        field.clear();
    }
}

// Reads an unsigned attribute into a signed field; an absent one leaves the default.
void ReadUInt(MirlXmlAttributes &reader, const wchar_t *name, int &field)
{
    unsigned int value = 0;
    if (reader.GetUInt(name, value)) {
        field = static_cast<int>(value);
    }
}

} // namespace

// ---- MirlUiElement ----

MirlUiElement::MirlUiElement(unsigned long type) : m_Type(type)
{
}

MirlUiElement::MirlUiElement(const MirlUiElement &source) = default;
MirlUiElement &MirlUiElement::operator=(const MirlUiElement &source) = default;
MirlUiElement::~MirlUiElement() = default;

bool MirlUiElement::Load(IXMLDOMNodePtr node)
{
    if (node == nullptr) {
        return false;
    }
    BSTR name = nullptr;
    if (FAILED(node->get_nodeName(&name))) {
        return false;
    }
    m_Name.assign(name != nullptr ? name : L"", name != nullptr ? SysStringLen(name) : 0);
    SysFreeString(name);
    MirlLookupIndex::NoteNameChange();
    return true;
}

bool MirlUiElement::LoadName(IXMLDOMNodePtr node, IXMLDOMNamedNodeMapPtr &attributes, bool &readAttributes)
{
    if (!MirlUiElement::Load(node)) {
        return false;
    }
    // A map that can't be fetched skips the attributes; a null one is left to the reader,
    // which raises at the first attribute.
    readAttributes = SUCCEEDED(node->get_attributes(&attributes));
    return true;
}

unsigned long MirlUiElement::GetType() const
{
    return m_Type;
}

const wchar_t *MirlUiElement::GetName() const
{
    return m_Name.c_str();
}

void MirlUiElement::SetName(const wchar_t *name)
{
    m_Name = name != nullptr ? name : L"";
    MirlLookupIndex::NoteNameChange();
}

bool MirlUiElement::IsElement(const wchar_t *name) const
{
    return name != nullptr && _wcsicmp(m_Name.c_str(), name) == 0;
}

// ---- MirlUiElementText ----

MirlUiElementText::MirlUiElementText() : MirlUiElement(UI_ELEMENT_TEXT)
{
}

MirlUiElementText::MirlUiElementText(const MirlUiElementText &source) = default;
MirlUiElementText &MirlUiElementText::operator=(const MirlUiElementText &source) = default;

bool MirlUiElementText::Load(IXMLDOMNodePtr node)
{
    IXMLDOMNamedNodeMapPtr attributes;
    bool readAttributes = false;
    if (!LoadName(node, attributes, readAttributes)) {
        return false;
    }
    if (!readAttributes) {
        return true;
    }
    MirlXmlAttributes reader(attributes);
    ReadOrClear(reader, L"Text", m_Text);
    return true;
}

const wchar_t *MirlUiElementText::GetText() const
{
    return m_Text.c_str();
}

// ---- MirlUiElementInformation ----

MirlUiElementInformation::MirlUiElementInformation()
    : MirlUiElement(UI_ELEMENT_INFORMATION), m_LanguageID(1033)
{
}

MirlUiElementInformation::MirlUiElementInformation(const MirlUiElementInformation &source) = default;
MirlUiElementInformation &MirlUiElementInformation::operator=(const MirlUiElementInformation &source) = default;

bool MirlUiElementInformation::Load(IXMLDOMNodePtr node)
{
    IXMLDOMNamedNodeMapPtr attributes;
    bool readAttributes = false;
    if (!LoadName(node, attributes, readAttributes)) {
        return false;
    }
    if (!readAttributes) {
        return true;
    }
    MirlXmlAttributes reader(attributes);
    ReadOrClear(reader, L"Title", m_Title);
    ReadOrClear(reader, L"Description", m_Description);
    ReadOrClear(reader, L"Author", m_Author);
    ReadOrClear(reader, L"Version", m_Version);
    ReadUInt(reader, L"Language", m_LanguageID);
    return true;
}

const wchar_t *MirlUiElementInformation::GetTitle() const
{
    return NullIfEmpty(m_Title);
}

const wchar_t *MirlUiElementInformation::GetDescription() const
{
    return NullIfEmpty(m_Description);
}

const wchar_t *MirlUiElementInformation::GetAuthor() const
{
    return NullIfEmpty(m_Author);
}

const wchar_t *MirlUiElementInformation::GetVersion() const
{
    return NullIfEmpty(m_Version);
}

int MirlUiElementInformation::GetLanguageID() const
{
    return m_LanguageID;
}

// ---- MirlUiElementColor ----

MirlUiElementColor::MirlUiElementColor()
    : MirlUiElement(UI_ELEMENT_COLOR), m_Red(0), m_Green(0), m_Blue(0), m_Alpha(255)
{
}

MirlUiElementColor::MirlUiElementColor(const MirlUiElementColor &source) = default;
MirlUiElementColor &MirlUiElementColor::operator=(const MirlUiElementColor &source) = default;

bool MirlUiElementColor::Load(IXMLDOMNodePtr node)
{
    IXMLDOMNamedNodeMapPtr attributes;
    bool readAttributes = false;
    if (!LoadName(node, attributes, readAttributes)) {
        return false;
    }
    if (!readAttributes) {
        return true;
    }
    MirlXmlAttributes reader(attributes);
    reader.GetByte(L"Red", m_Red);
    reader.GetByte(L"Green", m_Green);
    reader.GetByte(L"Blue", m_Blue);
    reader.GetByte(L"Alpha", m_Alpha);
    return true;
}

unsigned char MirlUiElementColor::R() const { return m_Red; }
unsigned char MirlUiElementColor::G() const { return m_Green; }
unsigned char MirlUiElementColor::B() const { return m_Blue; }
unsigned char MirlUiElementColor::A() const { return m_Alpha; }
unsigned char MirlUiElementColor::GetRed() const { return m_Red; }
unsigned char MirlUiElementColor::GetGreen() const { return m_Green; }
unsigned char MirlUiElementColor::GetBlue() const { return m_Blue; }
unsigned char MirlUiElementColor::GetAlpha() const { return m_Alpha; }

unsigned long MirlUiElementColor::GetDWORD() const
{
    return static_cast<unsigned long>(m_Red) | (static_cast<unsigned long>(m_Green) << 8) |
           (static_cast<unsigned long>(m_Blue) << 16) | (static_cast<unsigned long>(m_Alpha) << 24);
}

// ---- MirlUiElementFont ----

MirlUiElementFont::MirlUiElementFont()
    : MirlUiElement(UI_ELEMENT_FONT), m_Height(18), m_Width(0), m_Weight(400), m_Italic(false),
      m_Underline(false), m_Bold(false), m_FamilyName(L"Arial")
{
}

MirlUiElementFont::MirlUiElementFont(const MirlUiElementFont &source) = default;
MirlUiElementFont &MirlUiElementFont::operator=(const MirlUiElementFont &source) = default;

bool MirlUiElementFont::Load(IXMLDOMNodePtr node)
{
    IXMLDOMNamedNodeMapPtr attributes;
    bool readAttributes = false;
    if (!LoadName(node, attributes, readAttributes)) {
        return false;
    }
    if (!readAttributes) {
        return true;
    }
    MirlXmlAttributes reader(attributes);
    reader.GetString(L"FamilyName", m_FamilyName);
    ReadUInt(reader, L"Height", m_Height);
    ReadUInt(reader, L"Width", m_Width);
    ReadUInt(reader, L"Weight", m_Weight);
    reader.GetBool(L"Italic", m_Italic);
    reader.GetBool(L"Underline", m_Underline);
    reader.GetBool(L"Bold", m_Bold);
    return true;
}

const wchar_t *MirlUiElementFont::GetFamilyName() const { return m_FamilyName.c_str(); }
int MirlUiElementFont::GetHeight() const { return m_Height; }
int MirlUiElementFont::GetWidth() const { return m_Width; }
int MirlUiElementFont::GetWeight() const { return m_Weight; }
bool MirlUiElementFont::GetItalic() const { return m_Italic; }
bool MirlUiElementFont::GetUnderline() const { return m_Underline; }

// ---- MirlUiElementImage ----

MirlUiElementImage::MirlUiElementImage() : MirlUiElement(UI_ELEMENT_IMAGE)
{
}

MirlUiElementImage::MirlUiElementImage(const MirlUiElementImage &source) = default;
MirlUiElementImage &MirlUiElementImage::operator=(const MirlUiElementImage &source) = default;

bool MirlUiElementImage::Load(IXMLDOMNodePtr node)
{
    IXMLDOMNamedNodeMapPtr attributes;
    bool readAttributes = false;
    if (!LoadName(node, attributes, readAttributes)) {
        return false;
    }
    if (!readAttributes) {
        return true;
    }
    MirlXmlAttributes reader(attributes);
    reader.GetString(L"KeyColorLow", m_KeyColorLow);
    reader.GetString(L"KeyColorHigh", m_KeyColorHigh);
    reader.GetString(L"File", m_FileName);
    return true;
}

const wchar_t *MirlUiElementImage::GetKeyColorLow() const { return NullIfEmpty(m_KeyColorLow); }
const wchar_t *MirlUiElementImage::GetKeyColorHigh() const { return NullIfEmpty(m_KeyColorHigh); }
const wchar_t *MirlUiElementImage::GetFileName() const { return NullIfEmpty(m_FileName); }
