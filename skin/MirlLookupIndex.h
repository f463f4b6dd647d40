// MirlLookupIndex: the first element of each name in each element list of the skin manager,
// found by hashing, so that a lookup costs the same however many elements a skin has.
//
// The lists stay the model of order and ownership; the index only remembers how far it has
// read each list and catches up with what was appended since, keeping the first element of a
// name it meets. So "the first definition wins" holds by construction, also across includes.
// An element may be renamed (SetName, or Load again) while it is listed: every change of a name
// is counted, and a lookup after one starts the index again. The index must be cleared whenever
// the lists are.
//
// Besides one table per list, it keeps one table per type for the lookup with fallback: the
// current language's list read over 1033's, so that a name only 1033 has is found in one probe,
// as a name of the current language is.
#pragma once

#include "MirlSkin.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <vector>

class MirlLookupIndex {
public:
    typedef std::vector<MirlUiElement *> List;

    // The first element of list whose name equals name (exact, as wcscmp compares), or null.
    // Never throws: without memory for the index it walks the list.
    MirlUiElement *Find(unsigned long type, unsigned int language, const List &list, const wchar_t *name);
    // The first element of that name in current, or else the first in fallback; either list may
    // be null (a language without elements of the type). inCurrent tells which list answered.
    // Never throws, as Find.
    MirlUiElement *FindWithFallback(unsigned long type, unsigned int language, const List *current,
                                    const List *fallback, const wchar_t *name, bool &inCurrent);
    void Clear();
    // Called whenever an element's name changes, listed or not.
    static void NoteNameChange();
    // The same answer by walking the list in order.
    static MirlUiElement *Walk(const List &list, const wchar_t *name);
    // The hash a name is filed under, never 0: FNV-1a over the UTF-16 units up to the
    // terminator, which is where wcscmp stops too.
    static std::uint32_t Tag(const wchar_t *name)
    {
        std::uint32_t hash = 2166136261u;
        for (; *name != L'\0'; ++name) {
            hash = (hash ^ static_cast<std::uint32_t>(static_cast<unsigned short>(*name))) * 16777619u;
        }
        return hash != 0 ? hash : 1;
    }

    // Slots in one bucket, and characters of a name kept in its slot: a name of at most this
    // many characters, all of them ASCII, is compared there; any other is compared where its
    // element keeps it.
    enum { BucketSlots = sizeof(void *) == 4 ? 4 : 2 };
    enum { InlineName = (64 - BucketSlots * (4 + sizeof(void *))) / BucketSlots };

private:
    // Open addressing over buckets of one cache line each, at most three quarters of the slots in
    // use. A name's hash chooses a bucket; the name goes to the first free slot from there on,
    // into the buckets after it once that one is full. A slot holds the hash (never 0; 0 marks a
    // free slot), the name itself when it is short, and the element: a lookup of a short name
    // compares the hashes of one bucket at once, then reads the name beside the one that matches,
    // all in one line, so that a skin of 20,000 names is answered from 16 bytes a name (32 where
    // pointers are 8 bytes) that stay in the processor's caches.
    enum : std::uintptr_t {
        NameAtElement = 1, // the name isn't (wholly) in the slot
        FromFallback = 2,  // the element is of the fallback list
        Flags = 3
    };
    struct alignas(64) Bucket {
        std::uint32_t tags[BucketSlots];
        // The elements' addresses with two flags in their low bits, which alignment leaves free.
        std::uintptr_t elements[BucketSlots];
        // The names, zero-padded, without a terminator when one fills the space.
        char names[BucketSlots][InlineName];
    };
    static_assert(sizeof(Bucket) == 64, "a bucket is one cache line");
    struct Slot {
        Bucket *bucket;
        int index;
    };
    struct Table {
        std::size_t used = 0;
        std::vector<Bucket> buckets;
    };
    struct ListIndex {
        std::size_t indexed = 0;
        Table table;
    };
    struct FallbackIndex {
        // The current language the table was built for; 0 before it is built.
        unsigned int language = 0;
        std::size_t currentIndexed = 0;
        std::size_t fallbackIndexed = 0;
        Table table;
    };

    static MirlUiElement *ElementOf(const Slot &slot);
    static bool SameName(const Slot &slot, const wchar_t *name);
    // The slot of name, or one whose bucket is null.
    static Slot Lookup(Table &table, const wchar_t *name, std::uint32_t tag);
    static Slot FreeSlot(Table &table, std::uint32_t tag);
    // Lists element under its name unless the name is there already; an element of the current
    // list displaces one of the fallback list, which it comes before in every lookup.
    static void Insert(Table &table, MirlUiElement *element, bool fromFallback);
    static void CatchUp(ListIndex &index, const List &list);
    static void CatchUp(FallbackIndex &index, unsigned int language, const List *current, const List *fallback);
    void CheckNames();

    // One index per type (1 to 6) and language, like the manager's language maps.
    std::map<unsigned int, ListIndex> m_Lists[UI_ELEMENT_WINDOW];
    // One per type, for the current language over 1033.
    FallbackIndex m_Fallbacks[UI_ELEMENT_WINDOW];
    // The count of name changes the index was built under.
    long m_NameChanges = 0;
};
