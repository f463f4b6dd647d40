// Ostra.dll: the one function the library uses, RaiseWin32Error, and the exception it throws.
#pragma once

#if defined(OSTRA_EXPORTS)
#define OSTRA_API __declspec(dllexport)
#else
#define OSTRA_API __declspec(dllimport)
#endif

// A Win32 error code (or an HRESULT) with the system's text for it.
class OSTRA_API OstraWin32Error {
public:
    explicit OstraWin32Error(unsigned long code);
    OstraWin32Error(const OstraWin32Error &source);
    OstraWin32Error &operator=(const OstraWin32Error &source);
    virtual ~OstraWin32Error();

    unsigned long code() const;
    // The system's message for the code, without its line break; never null.
    const wchar_t *what() const;

private:
    unsigned long m_Code;
    // Fixed storage: an exception that allocates could fail while being thrown.
    wchar_t m_Message[512];
};

// Reports a Win32 error code by throwing OstraWin32Error. Never returns.
[[noreturn]] OSTRA_API void RaiseWin32Error(unsigned long code);
