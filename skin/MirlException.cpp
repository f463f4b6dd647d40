#include "MirlException.h"

#include <windows.h>
#include <cwchar>
#include <new>

namespace {

wchar_t *CopyWide(const wchar_t *text)
{
    if (text == nullptr) {
        return nullptr;
    }
    size_t length = wcslen(text);
    wchar_t *copy = new (std::nothrow) wchar_t[length + 1];
    if (copy != nullptr) {
        wmemcpy(copy, text, length + 1);
    }
    return copy;
}

wchar_t *WidenAnsi(const char *text)
{
    if (text == nullptr) {
        return nullptr;
    }
    int length = MultiByteToWideChar(CP_ACP, MB_COMPOSITE, text, -1, nullptr, 0);
    if (length < 1) {
        return nullptr;
    }
    wchar_t *copy = new (std::nothrow) wchar_t[length];
    if (copy == nullptr) {
        return nullptr;
    }
    if (MultiByteToWideChar(CP_ACP, MB_COMPOSITE, text, -1, copy, length) < 1) {
        delete[] copy;
        return nullptr;
    }
    copy[length - 1] = L'\0';
    return copy;
}

} // namespace

MirlException::MirlException() : m_Message(nullptr), m_Error(MIRL_ERROR_NONE_GIVEN), m_OwnsMessage(0)
{
}

MirlException::MirlException(int error) : m_Message(nullptr), m_Error(error), m_OwnsMessage(0)
{
}

MirlException::MirlException(const wchar_t *const &message)
    : m_Message(CopyWide(message)), m_Error(MIRL_ERROR_NONE_GIVEN), m_OwnsMessage(m_Message != nullptr)
{
}

MirlException::MirlException(int error, const wchar_t *const &message)
    : m_Message(CopyWide(message)), m_Error(error), m_OwnsMessage(m_Message != nullptr)
{
}

MirlException::MirlException(const char *const &message)
    : m_Message(WidenAnsi(message)), m_Error(MIRL_ERROR_NONE_GIVEN), m_OwnsMessage(m_Message != nullptr)
{
}

MirlException::MirlException(int error, const char *const &message)
    : m_Message(WidenAnsi(message)), m_Error(error), m_OwnsMessage(m_Message != nullptr)
{
}

MirlException::MirlException(const MirlException &source)
    : m_Message(CopyWide(source.m_Message)), m_Error(source.m_Error), m_OwnsMessage(m_Message != nullptr)
{
}

MirlException &MirlException::operator=(const MirlException &source)
{
    if (this != &source) {
        wchar_t *copy = CopyWide(source.m_Message);
        if (m_OwnsMessage) {
            delete[] m_Message;
        }
        m_Message = copy;
        m_OwnsMessage = copy != nullptr;
        m_Error = source.m_Error;
    }
    return *this;
}

MirlException::~MirlException()
{
    if (m_OwnsMessage) {
        delete[] m_Message;
    }
}

const wchar_t *MirlException::what() const
{
    return m_Message;
}

int MirlException::error() const
{
    return m_Error;
}

namespace MIRL {

void RaiseMirlException(unsigned long error)
{
    throw MirlException(static_cast<int>(error));
}

void RaiseMirlException(unsigned long error, const wchar_t *message)
{
    throw MirlException(static_cast<int>(error), message);
}

void RaiseMirlException(unsigned long error, const char *message)
{
    throw MirlException(static_cast<int>(error), message);
}

} // namespace MIRL
