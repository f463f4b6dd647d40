// MirlAtlThunk.h - the per-window procedure thunk: the one part of the subset written for the processor.
//
// ATL::CWndProcThunk  a small block of executable code that replaces the window handle argument
//                     of a window procedure call by an object pointer and jumps to a static
//                     procedure; one per window object, so that several objects can subclass
//                     the same window and each is called with its own pointer.
//
// Constructors: CWndProcThunk()
// Operations:   Allocate, Init, GetWNDPROC, Orphan

#ifndef MIRL_PLATFORM_ATL_MIRLATLTHUNK_H
#define MIRL_PLATFORM_ATL_MIRLATLTHUNK_H

#include "MirlAtlBase.h"

#include <cstring>

#if !defined(_M_IX86) && !defined(__i386__) && !defined(_M_X64) && !defined(__x86_64__)
#error "The window procedure thunk is written for x86 and x86-64 only."
#endif

namespace ATL
{

class CWndProcThunk
{
public:
    CWndProcThunk() = default;
    ~CWndProcThunk() { Free(m_pBlock); }
    // A thunk names one object: a copy of the object gets a thunk of its own when it needs one,
    // and an assigned object keeps the one it has.
    CWndProcThunk(const CWndProcThunk&) {}
    CWndProcThunk& operator=(const CWndProcThunk&) { return *this; }

    // Gets the code block ahead of time, where a failure can still be reported.
    BOOL Allocate()
    {
        if (m_pBlock == nullptr)
        {
            const HANDLE heap = Heap();
            if (heap == nullptr)
                return FALSE;
            m_pBlock = static_cast<Block*>(::HeapAlloc(heap, HEAP_ZERO_MEMORY, sizeof(Block)));
            if (m_pBlock != nullptr)
                m_pBlock->heap = heap;
        }
        return m_pBlock != nullptr;
    }

    // Makes the thunk call proc with pThis in place of the window handle.
    BOOL Init(WNDPROC proc, void* pThis)
    {
        if (!Allocate())
            return FALSE;
        Write(m_pBlock, reinterpret_cast<void*>(proc), pThis);
        return TRUE;
    }

    // The thunk as a window procedure; null before the first Allocate.
    WNDPROC GetWNDPROC() const
    {
        return m_pBlock != nullptr ? reinterpret_cast<WNDPROC>(static_cast<void*>(m_pBlock->code)) : nullptr;
    }

    // For an object that dies while another procedure, installed after its thunk, still
    // calls the thunk as its super procedure: the thunk is rewritten to forward to pfnSuper
    // with the real window handle, and frees itself after WM_NCDESTROY. This object forgets it.
    void Orphan(HWND hWnd, WNDPROC pfnSuper)
    {
        if (m_pBlock == nullptr)
            return;
        m_pBlock->hWnd = hWnd;
        m_pBlock->pfnSuper = pfnSuper;
        Write(m_pBlock, reinterpret_cast<void*>(&OrphanWindowProc), m_pBlock);
        m_pBlock = nullptr;
    }

private:
    struct Block
    {
        unsigned char code[24];
        HWND hWnd;        // set once orphaned
        WNDPROC pfnSuper; // set once orphaned
        // The heap the block came from. Every module that includes this header has a heap of
        // its own, and a window made in one module may be destroyed by code of another.
        HANDLE heap;
    };

    Block* m_pBlock = nullptr;

    // One private heap per module whose pages may be executed; it lives as long as the process.
    static HANDLE Heap()
    {
        static const HANDLE heap = ::HeapCreate(HEAP_CREATE_ENABLE_EXECUTE, 0, 0);
        return heap;
    }

    static void Free(Block* pBlock)
    {
        if (pBlock != nullptr)
            ::HeapFree(pBlock->heap, 0, pBlock);
    }

    static void Write(Block* pBlock, void* target, void* pThis)
    {
        unsigned char* p = pBlock->code;
#if defined(_M_X64) || defined(__x86_64__)
        // mov rcx, pThis ; mov rax, target ; jmp rax
        p[0] = 0x48; p[1] = 0xB9;
        std::memcpy(p + 2, &pThis, sizeof(pThis));
        p[10] = 0x48; p[11] = 0xB8;
        std::memcpy(p + 12, &target, sizeof(target));
        p[20] = 0xFF; p[21] = 0xE0;
#else
        // mov dword ptr [esp+4], pThis ; jmp target
        p[0] = 0xC7; p[1] = 0x44; p[2] = 0x24; p[3] = 0x04;
        std::memcpy(p + 4, &pThis, sizeof(pThis));
        p[8] = 0xE9;
        const UINT_PTR next = reinterpret_cast<UINT_PTR>(p + 13);
        const DWORD rel = static_cast<DWORD>(reinterpret_cast<UINT_PTR>(target) - next);
        std::memcpy(p + 9, &rel, sizeof(rel));
#endif
        ::FlushInstructionCache(::GetCurrentProcess(), pBlock->code, sizeof(pBlock->code));
    }

    static LRESULT CALLBACK OrphanWindowProc(HWND hBlock, UINT uMsg, WPARAM wParam, LPARAM lParam)
    {
        Block* pBlock = reinterpret_cast<Block*>(hBlock);
        const HWND hWnd = pBlock->hWnd;
        const LRESULT lRes = ::CallWindowProcW(pBlock->pfnSuper, hWnd, uMsg, wParam, lParam);
        // Nothing calls a window's procedures after WM_NCDESTROY. The code of this block is
        // not on the way back: the thunk jumped here, it did not call.
        if (uMsg == WM_NCDESTROY)
            Free(pBlock);
        return lRes;
    }
};

} // namespace ATL

#endif // MIRL_PLATFORM_ATL_MIRLATLTHUNK_H
