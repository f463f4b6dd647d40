// Replaces functions that a module imports by name, for tests that must see which system calls
// a module makes (and make none of them reach the system).
//
//   ImportNames    the names a module imports from one DLL
//   ImportPatch    swaps one import slot for a replacement while the object lives
#pragma once

#include <windows.h>

#include <cstring>
#include <string>
#include <vector>

namespace mirltest {

namespace detail {

inline const IMAGE_IMPORT_DESCRIPTOR *ImportsOf(HMODULE module)
{
    const BYTE *base = reinterpret_cast<const BYTE *>(module);
    const IMAGE_DOS_HEADER *dos = reinterpret_cast<const IMAGE_DOS_HEADER *>(base);
    const IMAGE_NT_HEADERS *nt = reinterpret_cast<const IMAGE_NT_HEADERS *>(base + dos->e_lfanew);
    const IMAGE_DATA_DIRECTORY &directory = nt->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    if (directory.VirtualAddress == 0) {
        return nullptr;
    }
    return reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR *>(base + directory.VirtualAddress);
}

// Calls visit(name, slot) for every import by name of dll in module.
template <typename Visit>
void ForEachImport(HMODULE module, const char *dll, Visit visit)
{
    const BYTE *base = reinterpret_cast<const BYTE *>(module);
    for (const IMAGE_IMPORT_DESCRIPTOR *entry = ImportsOf(module); entry != nullptr && entry->Name != 0; ++entry) {
        if (_stricmp(reinterpret_cast<const char *>(base + entry->Name), dll) != 0 || entry->OriginalFirstThunk == 0) {
            continue;
        }
        const IMAGE_THUNK_DATA *names = reinterpret_cast<const IMAGE_THUNK_DATA *>(base + entry->OriginalFirstThunk);
        IMAGE_THUNK_DATA *slots = reinterpret_cast<IMAGE_THUNK_DATA *>(const_cast<BYTE *>(base) + entry->FirstThunk);
        for (; names->u1.AddressOfData != 0; ++names, ++slots) {
            if (IMAGE_SNAP_BY_ORDINAL(names->u1.Ordinal)) {
                continue;
            }
            const IMAGE_IMPORT_BY_NAME *byName = reinterpret_cast<const IMAGE_IMPORT_BY_NAME *>(base + names->u1.AddressOfData);
            visit(reinterpret_cast<const char *>(byName->Name), slots);
        }
    }
}

} // namespace detail

// The functions that module imports from dll by name.
inline std::vector<std::string> ImportNames(HMODULE module, const char *dll)
{
    std::vector<std::string> names;
    detail::ForEachImport(module, dll, [&](const char *name, IMAGE_THUNK_DATA *) { names.push_back(name); });
    return names;
}

// While it lives, module's import of dll!name calls replacement instead.
class ImportPatch {
public:
    ImportPatch(HMODULE module, const char *dll, const char *name, const void *replacement)
    {
        detail::ForEachImport(module, dll, [&](const char *imported, IMAGE_THUNK_DATA *slot) {
            if (m_Slot == nullptr && std::strcmp(imported, name) == 0) {
                m_Slot = slot;
            }
        });
        if (m_Slot != nullptr) {
            m_Original = Write(reinterpret_cast<ULONG_PTR>(replacement));
        }
    }
    ~ImportPatch()
    {
        if (m_Slot != nullptr) {
            Write(m_Original);
        }
    }
    ImportPatch(const ImportPatch &) = delete;
    ImportPatch &operator=(const ImportPatch &) = delete;

    bool IsActive() const { return m_Slot != nullptr; }

private:
    ULONG_PTR Write(ULONG_PTR value)
    {
        DWORD protection = 0;
        ::VirtualProtect(&m_Slot->u1.Function, sizeof(m_Slot->u1.Function), PAGE_READWRITE, &protection);
        const ULONG_PTR previous = m_Slot->u1.Function;
        m_Slot->u1.Function = value;
        ::VirtualProtect(&m_Slot->u1.Function, sizeof(m_Slot->u1.Function), protection, &protection);
        return previous;
    }

    IMAGE_THUNK_DATA *m_Slot = nullptr;
    ULONG_PTR m_Original = 0;
};

} // namespace mirltest
