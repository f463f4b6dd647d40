// MirlLookupIndex: the first element of each name in each element list of the skin manager,
// found by hashing, so that a lookup costs the same however many elements a skin has.
//
// The lists stay the model of order and ownership; the index only remembers how far it has
// read each list and catches up with what was appended since, keeping the first element of a
// name it meets. So "the first definition wins" holds by construction, also across includes.
// An element may be renamed (SetName, or Load again) while it is listed: every change of a name
// is counted, and a lookup after one starts the index again. The index must be cleared whenever
// the lists are.
#pragma once

#include "MirlSkin.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <vector>

class MirlLookupIndex {
public:
    // The first element of list whose name equals name (exact, as wcscmp compares), or null.
    // Never throws: without memory for the index it walks the list.
    MirlUiElement *Find(unsigned long type, unsigned int language, const std::vector<MirlUiElement *> &list,
                        const wchar_t *name);
    void Clear();
    // Called whenever an element's name changes, listed or not.
    static void NoteNameChange();
    // The same answer by walking the list in order.
    static MirlUiElement *Walk(const std::vector<MirlUiElement *> &list, const wchar_t *name);

private:
    // Open addressing with linear probing over two parallel arrays: one 32-bit tag per slot (the
    // name's hash, never 0; 0 marks a free slot), and the slots themselves. A probe reads the
    // tags, which are small enough to stay in the processor's caches even for tens of thousands
    // of names, and touches a slot only when its tag matches: a name that isn't there, as in a
    // lookup that falls back to 1033, costs no slot at all. A slot holds the name itself when it
    // is short, as most skin names are, so that a hit reads one slot of one cache line and
    // nothing else; a longer name keeps its first characters there and is compared where the
    // element keeps it.
    enum { InlineName = (32 - sizeof(void *)) / sizeof(wchar_t) };
    // Aligned so that no slot straddles two cache lines.
    struct alignas(32) Slot {
        MirlUiElement *element;
        // The name and its terminator; for a longer name, its first characters and a non-zero
        // last unit.
        wchar_t name[InlineName];
    };
    struct ListIndex {
        std::size_t indexed = 0;
        std::size_t used = 0;
        std::vector<std::uint32_t> tags;
        std::vector<Slot> slots;
    };

    static bool SameName(const Slot &slot, const wchar_t *name);
    static std::uint32_t Tag(const wchar_t *name);
    static MirlUiElement *Lookup(const ListIndex &index, const wchar_t *name, std::uint32_t tag);
    static void Insert(ListIndex &index, MirlUiElement *element);
    static void CatchUp(ListIndex &index, const std::vector<MirlUiElement *> &list);

    // One index per type (1 to 6) and language, like the manager's language maps.
    std::map<unsigned int, ListIndex> m_Lists[UI_ELEMENT_WINDOW];
    // The count of name changes the index was built under.
    long m_NameChanges = 0;
};
