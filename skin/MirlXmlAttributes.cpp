#include "MirlXmlAttributes.h"

#include <cwchar>

namespace {

// An attribute name as the BSTR that getNamedItem takes, laid out on the stack: a length
// prefix, the characters and a terminator. A name is only read by the callee, so it needn't
// come from SysAllocString, and a skin's load asks for tens of thousands of names.
class NameArgument {
public:
    explicit NameArgument(const wchar_t *name)
    {
        const size_t length = name != nullptr ? wcslen(name) : 0;
        if (length < Capacity) {
            m_Bytes = static_cast<DWORD>(length * sizeof(wchar_t));
            wmemcpy(m_Text, name != nullptr ? name : L"", length + 1);
        } else {
            m_Allocated = _bstr_t(name);
        }
    }
    BSTR Get() { return m_Allocated.length() > 0 ? static_cast<BSTR>(m_Allocated) : m_Text; }

private:
    enum : size_t { Capacity = 64 };
    DWORD m_Bytes = 0;
    wchar_t m_Text[Capacity];
    _bstr_t m_Allocated;
};

} // namespace

MirlXmlAttributes::MirlXmlAttributes(IXMLDOMNamedNodeMapPtr attributes) : m_Attributes(attributes)
{
}

bool MirlXmlAttributes::GetConverted(const wchar_t *name, VARTYPE type, _variant_t &value)
{
    if (m_Attributes == nullptr) {
        _com_issue_error(E_POINTER);
    }
    IXMLDOMNodePtr item;
    NameArgument argument(name);
    HRESULT hr = m_Attributes->getNamedItem(argument.Get(), &item);
    if (FAILED(hr)) {
        _com_issue_error(hr);
    }
    if (hr != S_OK || item == nullptr) {
        return false;
    }
    value.Clear();
    hr = item->get_nodeValue(&value);
    if (FAILED(hr)) {
        _com_issue_error(hr);
    }
    if (type != VT_BSTR || V_VT(&value) != VT_BSTR) {
        hr = VariantChangeType(&value, &value, 0, type);
        if (FAILED(hr)) {
            _com_issue_error(hr);
        }
    }
    return true;
}

bool MirlXmlAttributes::GetString(const wchar_t *name, std::wstring &value)
{
    _variant_t converted;
    if (!GetConverted(name, VT_BSTR, converted)) {
        return false;
    }
    BSTR text = V_BSTR(&converted);
    value.assign(text != nullptr ? text : L"", text != nullptr ? SysStringLen(text) : 0);
    return true;
}

bool MirlXmlAttributes::GetInt(const wchar_t *name, int &value)
{
    _variant_t converted;
    if (!GetConverted(name, VT_I4, converted)) {
        return false;
    }
    value = V_I4(&converted);
    return true;
}

bool MirlXmlAttributes::GetUInt(const wchar_t *name, unsigned int &value)
{
    _variant_t converted;
    if (!GetConverted(name, VT_UI4, converted)) {
        return false;
    }
    value = V_UI4(&converted);
    return true;
}

bool MirlXmlAttributes::GetByte(const wchar_t *name, unsigned char &value)
{
    _variant_t converted;
    if (!GetConverted(name, VT_I2, converted)) {
        return false;
    }
    HRESULT hr = VariantChangeType(&converted, &converted, 0, VT_UI1);
    if (FAILED(hr)) {
        _com_issue_error(hr);
    }
    value = V_UI1(&converted);
    return true;
}

bool MirlXmlAttributes::GetBool(const wchar_t *name, bool &value)
{
    _variant_t converted;
    if (!GetConverted(name, VT_BOOL, converted)) {
        return false;
    }
    value = V_BOOL(&converted) != VARIANT_FALSE;
    return true;
}
