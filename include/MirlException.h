// MirlException: the library's one exception type, a wide message and an integer code.
//
//   constructors   MirlException(), (int), (wide text), (int, wide text), (narrow text), (int, narrow text), copy
//   attributes     what(), error()
//   raising        MIRL::RaiseMirlException(code [, text])
#pragma once

#include "MirlExport.h"

// No code was given to the constructor.
#define MIRL_ERROR_NONE_GIVEN (-1)
// The skin package could not be opened; the message is its path.
#define MIRL_ERROR_PACKAGE_OPEN 1

class MIRL_API MirlException {
public:
    MirlException();
    explicit MirlException(int error);
    MirlException(const wchar_t *const &message);
    MirlException(int error, const wchar_t *const &message);
    // Narrow text is converted through the system's ANSI code page.
    MirlException(const char *const &message);
    MirlException(int error, const char *const &message);
    MirlException(const MirlException &source);
    MirlException &operator=(const MirlException &source);
    virtual ~MirlException();

    // The message, or null when none was given.
    virtual const wchar_t *what() const;
    // The numeric code; MIRL_ERROR_NONE_GIVEN when none was given.
    virtual int error() const;

protected:
    wchar_t *m_Message;
    int m_Error;
    int m_OwnsMessage;
};

namespace MIRL {
[[noreturn]] MIRL_API void RaiseMirlException(unsigned long error);
[[noreturn]] MIRL_API void RaiseMirlException(unsigned long error, const wchar_t *message);
[[noreturn]] MIRL_API void RaiseMirlException(unsigned long error, const char *message);
}
