#include "MirlFuzzProtocol.h"

#include <cstdio>
#include <cstring>

namespace mirlfuzz {

std::string DescribeOutcome(const Outcome &outcome)
{
    char text[64];
    switch (outcome.kind) {
    case OutcomeOk: return "ok";
    case OutcomeMirlException: snprintf(text, sizeof(text), "MirlException %ld", static_cast<long>(outcome.code)); return text;
    case OutcomeComError: snprintf(text, sizeof(text), "_com_error 0x%08lX", static_cast<unsigned long>(outcome.code)); return text;
    case OutcomeWin32Error: snprintf(text, sizeof(text), "OstraWin32Error 0x%08lX", static_cast<unsigned long>(outcome.code)); return text;
    case OutcomeBadAlloc: return "std::bad_alloc";
    case OutcomeLengthError: return "std::length_error";
    default: snprintf(text, sizeof(text), "outcome %ld", static_cast<long>(outcome.kind)); return text;
    }
}

const char *PhaseName(LONG phase)
{
    static const char *const names[] = {"idle", "start", "load", "elements", "images", "menu", "create",
                                        "layout", "paint", "destroy", "unload", "heap check", "storm"};
    return phase >= 0 && phase < static_cast<LONG>(sizeof(names) / sizeof(names[0])) ? names[phase] : "?";
}

void RecordOutcome(SharedBlock *block, const Outcome &outcome)
{
    if (block == nullptr) {
        return;
    }
    for (LONG i = 0; i < block->outcomeCount; ++i) {
        if (block->outcomes[i].kind == outcome.kind && block->outcomes[i].code == outcome.code) {
            ++block->outcomes[i].count;
            return;
        }
    }
    if (block->outcomeCount < SharedBlock::MaxOutcomes) {
        block->outcomes[block->outcomeCount] = {outcome.kind, outcome.code, 1};
        ++block->outcomeCount;
    }
}

SharedMemory::~SharedMemory()
{
    if (m_Block != nullptr) {
        UnmapViewOfFile(m_Block);
    }
    if (m_Mapping != nullptr) {
        CloseHandle(m_Mapping);
    }
}

bool SharedMemory::Create(const std::wstring &name)
{
    m_Mapping = CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, sizeof(SharedBlock), name.c_str());
    if (m_Mapping == nullptr) {
        return false;
    }
    m_Block = static_cast<SharedBlock *>(MapViewOfFile(m_Mapping, FILE_MAP_ALL_ACCESS, 0, 0, sizeof(SharedBlock)));
    if (m_Block != nullptr) {
        Reset();
    }
    return m_Block != nullptr;
}

bool SharedMemory::Open(const std::wstring &name)
{
    m_Mapping = OpenFileMappingW(FILE_MAP_ALL_ACCESS, FALSE, name.c_str());
    if (m_Mapping == nullptr) {
        return false;
    }
    m_Block = static_cast<SharedBlock *>(MapViewOfFile(m_Mapping, FILE_MAP_ALL_ACCESS, 0, 0, sizeof(SharedBlock)));
    return m_Block != nullptr;
}

void SharedMemory::Reset()
{
    if (m_Block != nullptr) {
        std::memset(m_Block, 0, sizeof(SharedBlock));
        m_Block->current = -1;
    }
}

} // namespace mirlfuzz
