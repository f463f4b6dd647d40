// MirlAtlBase.h - common ground of the ATL/WTL subset: system headers, the assertion macro,
// the module instance and the module lock.
//
// ATL::AtlModuleInstance   the instance handle of the module (EXE or DLL) this code is linked into
// ATL::CAtlModuleLock      the lock that guards window class registration
// ATL::CAtlModuleLockGuard scoped holder of that lock
//
// The reflected-message numbers (OCM_COMMAND, OCM_NOTIFY, ...) come from <olectl.h>.

#ifndef MIRL_PLATFORM_ATL_MIRLATLBASE_H
#define MIRL_PLATFORM_ATL_MIRLATLBASE_H

#include <windows.h>
#include <commctrl.h>
#include <olectl.h>

#include <cassert>

#ifndef ATLASSERT
#define ATLASSERT(expr) assert(expr)
#endif

// The image base symbol that the PE linker defines for every module.
extern "C" IMAGE_DOS_HEADER __ImageBase;

namespace ATL
{

// The subset is wide throughout and names the W functions and types itself, so that it
// compiles the same whether or not the application defines UNICODE. IDC_ARROW and
// MAKEINTATOM follow UNICODE; this is the arrow's identifier as a wide resource name.
static const LPCWSTR kArrowCursorId = MAKEINTRESOURCEW(32512);

// Window classes are registered per module, with the module's own instance handle,
// so that a DLL and an EXE that both use these templates never share a class by accident.
inline HINSTANCE AtlModuleInstance()
{
    return reinterpret_cast<HINSTANCE>(&__ImageBase);
}

class CAtlModuleLock
{
public:
    CAtlModuleLock() { ::InitializeCriticalSection(&m_cs); }
    ~CAtlModuleLock() { ::DeleteCriticalSection(&m_cs); }
    CAtlModuleLock(const CAtlModuleLock&) = delete;
    CAtlModuleLock& operator=(const CAtlModuleLock&) = delete;

    void Lock() { ::EnterCriticalSection(&m_cs); }
    void Unlock() { ::LeaveCriticalSection(&m_cs); }

    // The one lock of this module.
    static CAtlModuleLock& Instance()
    {
        static CAtlModuleLock lock;
        return lock;
    }

private:
    CRITICAL_SECTION m_cs;
};

class CAtlModuleLockGuard
{
public:
    CAtlModuleLockGuard() { CAtlModuleLock::Instance().Lock(); }
    ~CAtlModuleLockGuard() { CAtlModuleLock::Instance().Unlock(); }
    CAtlModuleLockGuard(const CAtlModuleLockGuard&) = delete;
    CAtlModuleLockGuard& operator=(const CAtlModuleLockGuard&) = delete;
};

} // namespace ATL

#endif // MIRL_PLATFORM_ATL_MIRLATLBASE_H
