// What the fuzz driver and its worker processes share: a block of named shared memory through
// which the worker reports progress and outcomes as it goes (it survives the worker's crash,
// so the driver learns which case was running), and the worker's exit codes.
#pragma once

#include <windows.h>

#include <cstdint>
#include <string>

namespace mirlfuzz {

// How a case ended without crashing: the failures the library is allowed to report.
enum OutcomeKind : LONG {
    OutcomeOk = 1,
    OutcomeMirlException,
    OutcomeComError,
    OutcomeWin32Error,
    OutcomeBadAlloc,
    OutcomeLengthError,
};

struct Outcome {
    LONG kind = OutcomeOk;
    LONG code = 0;
};

std::string DescribeOutcome(const Outcome &outcome);

// What the worker was doing when it stopped: named in crash reports.
enum Phase : LONG {
    PhaseIdle,
    PhaseStart,
    PhaseLoad,
    PhaseElements,
    PhaseImages,
    PhaseMenu,
    PhaseCreate,
    PhaseLayout,
    PhasePaint,
    PhaseDestroy,
    PhaseUnload,
    PhaseHeapCheck,
    PhaseStorm,
};

const char *PhaseName(LONG phase);

// Worker exit codes other than a crash's own exception code.
enum : DWORD {
    ExitDone = 0,
    ExitUsage = 2,
    ExitHeapCorrupt = 0xE0F00001,      // HeapValidate failed after a case
    ExitUnexpectedException = 0xE0F00002, // a C++ exception the library must not throw
    ExitTerminate = 0xE0F00003,       // std::terminate
    ExitStormDied = 0xE0F00004,       // the stormed window is gone
    ExitStormPaint = 0xE0F00005,      // the stormed window no longer paints
    ExitStormGrowth = 0xE0F00006,     // heap or GDI objects grew during the storm
    ExitStormSetup = 0xE0F00007,      // the stormed window could not be made
};

struct OutcomeSlot {
    LONG kind;
    LONG code;
    LONG count;
};

struct SharedBlock {
    enum { MaxOutcomes = 64, NoteSize = 512 };

    volatile LONG started;    // the worker is running
    volatile LONG current;    // index of the case being run, or the message being sent
    volatile LONG completed;  // cases or messages finished
    volatile LONG heartbeat;  // moves whenever the worker makes progress
    volatile LONG phase;
    volatile LONG crashCode;  // the exception that ended the worker, from its last-chance filter
    volatile LONG64 crashAddress;
    LONG windows;         // windows the cases created
    LONG slowestCase;     // the case that took longest, and its milliseconds
    LONG slowestMs;
    LONG64 heapBefore, heapAfter;
    LONG gdiBefore, gdiAfter;
    LONG outcomeCount;
    OutcomeSlot outcomes[MaxOutcomes];
    char note[NoteSize]; // a line from the worker for the report
};

// Counts one outcome into the block.
void RecordOutcome(SharedBlock *block, const Outcome &outcome);

// A block made by the driver (create) or opened by the worker by its name.
class SharedMemory {
public:
    SharedMemory() = default;
    ~SharedMemory();
    SharedMemory(const SharedMemory &) = delete;
    SharedMemory &operator=(const SharedMemory &) = delete;

    bool Create(const std::wstring &name);
    bool Open(const std::wstring &name);
    SharedBlock *Block() const { return m_Block; }
    void Reset();

private:
    HANDLE m_Mapping = nullptr;
    SharedBlock *m_Block = nullptr;
};

} // namespace mirlfuzz
