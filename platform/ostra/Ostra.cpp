#include "Ostra.h"

#include <windows.h>
#include <cwchar>

OstraWin32Error::OstraWin32Error(unsigned long code) : m_Code(code)
{
    m_Message[0] = L'\0';
    DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                                  code, 0, m_Message, ARRAYSIZE(m_Message), nullptr);
    if (length == 0) {
        swprintf(m_Message, ARRAYSIZE(m_Message), L"Unknown error 0x%08lX", code);
        return;
    }
    // The system's texts end in a line break.
    while (length > 0 && (m_Message[length - 1] == L'\r' || m_Message[length - 1] == L'\n' ||
                          m_Message[length - 1] == L' ')) {
        m_Message[--length] = L'\0';
    }
}

OstraWin32Error::OstraWin32Error(const OstraWin32Error &source) : m_Code(source.m_Code)
{
    wmemcpy(m_Message, source.m_Message, ARRAYSIZE(m_Message));
}

OstraWin32Error &OstraWin32Error::operator=(const OstraWin32Error &source)
{
    m_Code = source.m_Code;
    wmemmove(m_Message, source.m_Message, ARRAYSIZE(m_Message));
    return *this;
}

OstraWin32Error::~OstraWin32Error() = default;

unsigned long OstraWin32Error::code() const
{
    return m_Code;
}

const wchar_t *OstraWin32Error::what() const
{
    return m_Message;
}

void RaiseWin32Error(unsigned long code)
{
    throw OstraWin32Error(code);
}
