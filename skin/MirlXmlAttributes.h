// MirlXmlAttributes: typed reads from one node's attribute map.
// Each Get answers false and leaves its output alone when the attribute is absent.
// A value that can't be converted, or a null map, raises _com_error with the HRESULT.
#pragma once

#include "MirlExport.h"
#include "MirlCom.h"

#include <string>

class MIRL_API MirlXmlAttributes {
public:
    explicit MirlXmlAttributes(IXMLDOMNamedNodeMapPtr attributes);

    bool GetString(const wchar_t *name, std::wstring &value);
    bool GetInt(const wchar_t *name, int &value);
    bool GetUInt(const wchar_t *name, unsigned int &value);
    // 0 to 255 only: through a 16-bit integer, then a byte.
    bool GetByte(const wchar_t *name, unsigned char &value);
    bool GetBool(const wchar_t *name, bool &value);

private:
    // The attribute's value converted to the given type; false if absent.
    bool GetConverted(const wchar_t *name, VARTYPE type, _variant_t &value);

    IXMLDOMNamedNodeMapPtr m_Attributes;
};
