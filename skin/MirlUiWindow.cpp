#include "MirlSkin.h"

#include <cwchar>
#include <cwctype>
#include <cstdlib>

namespace {

// Hexadecimal digits of an attribute value, walked from the last character towards the
// first 'x' or 'X'. Every character is a position, digit or not; the first character is
// never looked at. The sum wraps at 32 bits.
unsigned int ParseHexDigits(const wchar_t *text, size_t length)
{
    unsigned int result = 0;
    unsigned int place = 1;
    for (size_t i = length - 1; i >= 1; --i) {
        wchar_t c = text[i];
        if (c == L'x' || c == L'X') {
            break;
        }
        unsigned int digit = 0;
        bool isDigit = true;
        if (c >= L'0' && c <= L'9') {
            digit = static_cast<unsigned int>(c - L'0');
        } else if (c >= L'a' && c <= L'f') {
            digit = static_cast<unsigned int>(c - L'a' + 10);
        } else if (c >= L'A' && c <= L'F') {
            digit = static_cast<unsigned int>(c - L'A' + 10);
        } else {
            isDigit = false;
        }
        if (isDigit) {
            result += digit * place;
        }
        place *= 16;
    }
    return result;
}

std::wstring TakeBstr(BSTR text)
{
    std::wstring result(text != nullptr ? text : L"", text != nullptr ? SysStringLen(text) : 0);
    SysFreeString(text);
    return result;
}

} // namespace

// ---- MirlUiWindow::Attribute ----

MirlUiWindow::Attribute::Attribute() = default;

MirlUiWindow::Attribute::Attribute(const wchar_t *name, const wchar_t *value)
    : m_Name(name != nullptr ? name : L""), m_Value(value != nullptr ? value : L"")
{
}

MirlUiWindow::Attribute::~Attribute() = default;

const wchar_t *MirlUiWindow::Attribute::GetName() const
{
    return m_Name.c_str();
}

const wchar_t *MirlUiWindow::Attribute::GetValue() const
{
    return m_Value.c_str();
}

int MirlUiWindow::Attribute::GetInteger() const
{
    const wchar_t *text = m_Value.c_str();
    size_t length = m_Value.size();
    if (length > 2 && (text[1] == L'x' || text[1] == L'X')) {
        return static_cast<int>(ParseHexDigits(text, length));
    }
    return _wtoi(text);
}

bool MirlUiWindow::Attribute::GetBoolean() const
{
    return _wcsicmp(m_Value.c_str(), L"true") == 0;
}

// ---- MirlUiWindow ----

MirlUiWindow::MirlUiWindow() : MirlUiElement(UI_ELEMENT_WINDOW)
{
}

MirlUiWindow::MirlUiWindow(const MirlUiWindow &source) : MirlUiElement(source)
{
    CopyFrom(source);
}

MirlUiWindow &MirlUiWindow::operator=(const MirlUiWindow &source)
{
    if (this != &source) {
        MirlUiElement::operator=(source);
        FreeLists();
        CopyFrom(source);
    }
    return *this;
}

MirlUiWindow::~MirlUiWindow()
{
    FreeLists();
}

void MirlUiWindow::CopyFrom(const MirlUiWindow &source)
{
    for (const Attribute *attribute : source.m_Attributes) {
        m_Attributes.push_back(new Attribute(*attribute));
    }
    for (const MirlUiWindow *child : source.m_Children) {
        m_Children.push_back(new MirlUiWindow(*child));
    }
}

void MirlUiWindow::FreeLists()
{
    for (Attribute *attribute : m_Attributes) {
        delete attribute;
    }
    for (MirlUiWindow *child : m_Children) {
        delete child;
    }
    m_Attributes.clear();
    m_Children.clear();
}

bool MirlUiWindow::Load(IXMLDOMNodePtr node)
{
    return LoadAtDepth(node, 1);
}

bool MirlUiWindow::LoadAtDepth(IXMLDOMNodePtr node, int depth)
{
    if (!MirlUiElement::Load(node)) {
        return false;
    }
    FreeLists();

    IXMLDOMNamedNodeMapPtr attributes;
    HRESULT hr = node->get_attributes(&attributes);
    if (SUCCEEDED(hr)) {
        if (attributes == nullptr) {
            _com_issue_error(E_POINTER);
        }
        long length = 0;
        if (FAILED(attributes->get_length(&length))) {
            return false;
        }
        // A template always has a "Class" and something more.
        if (length <= 1) {
            return false;
        }
        for (long i = 0; i < length; ++i) {
            IXMLDOMNodePtr item;
            if (FAILED(attributes->get_item(i, &item)) || item == nullptr) {
                continue;
            }
            BSTR name = nullptr;
            if (item->get_nodeName(&name) != S_OK) {
                SysFreeString(name);
                continue;
            }
            std::wstring attributeName = TakeBstr(name);
            _variant_t value;
            if (item->get_nodeValue(&value) != S_OK) {
                continue;
            }
            if (V_VT(&value) != VT_BSTR && FAILED(VariantChangeType(&value, &value, 0, VT_BSTR))) {
                continue;
            }
            BSTR text = V_BSTR(&value);
            Attribute *attribute = new Attribute();
            attribute->m_Name.swap(attributeName);
            attribute->m_Value.assign(text != nullptr ? text : L"", text != nullptr ? SysStringLen(text) : 0);
            m_Attributes.push_back(attribute);
        }
    }

    IXMLDOMNodeListPtr children;
    if (node->get_childNodes(&children) != S_OK || children == nullptr) {
        return true;
    }
    if (depth >= MaxDepth) {
        // Deeper levels are left out rather than walked without limit.
        return true;
    }
    IXMLDOMNodePtr child;
    while (children->nextNode(&child) == S_OK && child != nullptr) {
        BSTR name = nullptr;
        if (SUCCEEDED(child->get_nodeName(&name)) && name != nullptr && _wcsicmp(name, L"#comment") == 0) {
            SysFreeString(name);
            child = nullptr;
            continue;
        }
        SysFreeString(name);
        MirlUiWindow *window = new MirlUiWindow();
        bool loaded = false;
        try {
            loaded = window->LoadAtDepth(child, depth + 1);
        } catch (...) {
            delete window;
            throw;
        }
        if (loaded) {
            m_Children.push_back(window);
        } else {
            delete window;
        }
        child = nullptr;
    }
    return true;
}

MirlUiWindow::Attribute *MirlUiWindow::GetAttribute(const wchar_t *name) const
{
    if (name == nullptr) {
        return nullptr;
    }
    for (Attribute *attribute : m_Attributes) {
        if (_wcsicmp(attribute->GetName(), name) == 0) {
            return attribute;
        }
    }
    return nullptr;
}

MirlUiWindow *MirlUiWindow::GetChild(const wchar_t *name) const
{
    if (name == nullptr) {
        return nullptr;
    }
    for (MirlUiWindow *child : m_Children) {
        if (_wcsicmp(child->GetName(), name) == 0) {
            return child;
        }
    }
    return nullptr;
}

MirlUiWindow *MirlUiWindow::GetChildByID(unsigned long id) const
{
    for (MirlUiWindow *child : m_Children) {
        Attribute *commandID = child->GetAttribute(L"CommandID");
        if (commandID != nullptr && static_cast<unsigned long>(commandID->GetInteger()) == id) {
            return child;
        }
    }
    return nullptr;
}

MirlUiWindow::Attribute *MirlUiWindow::GetAttributeByIndex(int index) const
{
    if (index < 0 || static_cast<size_t>(index) >= m_Attributes.size()) {
        return nullptr;
    }
    return m_Attributes[static_cast<size_t>(index)];
}

MirlUiWindow *MirlUiWindow::GetChildByIndex(int index) const
{
    if (index < 0 || static_cast<size_t>(index) >= m_Children.size()) {
        return nullptr;
    }
    return m_Children[static_cast<size_t>(index)];
}

unsigned int MirlUiWindow::GetAttributeCount() const
{
    return static_cast<unsigned int>(m_Attributes.size());
}

unsigned int MirlUiWindow::GetChildCount() const
{
    return static_cast<unsigned int>(m_Children.size());
}
