// What a process holds, for leak tests: busy heap bytes and live GDI objects.
//
//   BusyHeapBytes    the busy entries of all the process's heaps, walked with HeapWalk
//   LiveGdiObjects   GDI objects found by asking every handle index for its type
#pragma once

#include <windows.h>

#include <cstddef>

namespace mirltest {

// Busy bytes of all the process's heaps, walked entry by entry.
inline size_t BusyHeapBytes()
{
    HANDLE heaps[64];
    const DWORD count = ::GetProcessHeaps(64, heaps);
    size_t busy = 0;
    for (DWORD i = 0; i < count && i < 64; ++i) {
        if (!::HeapLock(heaps[i])) {
            continue;
        }
        PROCESS_HEAP_ENTRY entry = {};
        while (::HeapWalk(heaps[i], &entry)) {
            if (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) {
                busy += entry.cbData;
            }
        }
        ::HeapUnlock(heaps[i]);
    }
    return busy;
}

// Live GDI objects of this process. GetGuiResources answers 0 under Wine; asking every handle
// index for its type works on both.
inline int LiveGdiObjects()
{
    int live = 0;
    for (UINT_PTR i = 1; i <= 0xFFFF; ++i) {
        if (::GetObjectType(reinterpret_cast<HGDIOBJ>(i)) != 0) {
            ++live;
        }
    }
    return live;
}

} // namespace mirltest
