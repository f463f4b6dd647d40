#include "MirlLookupIndex.h"

#include <windows.h>

#include <cstring>
#include <cwchar>
#include <new>

namespace {

// Names change on any thread that loads elements; the count only has to differ after a change.
volatile LONG g_NameChanges = 0;

} // namespace

static_assert(alignof(MirlUiElement) > 2, "the slot keeps two flags in an element's address");

void MirlLookupIndex::NoteNameChange()
{
    ::InterlockedIncrement(&g_NameChanges);
}

MirlUiElement *MirlLookupIndex::Walk(const List &list, const wchar_t *name)
{
    for (MirlUiElement *element : list) {
        if (wcscmp(element->GetName(), name) == 0) {
            return element;
        }
    }
    return nullptr;
}

MirlUiElement *MirlLookupIndex::ElementOf(const Slot &slot)
{
    return reinterpret_cast<MirlUiElement *>(slot.bucket->elements[slot.index] & ~static_cast<std::uintptr_t>(Flags));
}

bool MirlLookupIndex::SameName(const Slot &slot, const wchar_t *name)
{
    if ((slot.bucket->elements[slot.index] & NameAtElement) != 0) {
        return wcscmp(ElementOf(slot)->GetName(), name) == 0;
    }
    // Each unit of name is read only after the ones before it matched non-zero characters, so
    // nothing past its terminator is read.
    const char *kept = slot.bucket->names[slot.index];
    for (int i = 0; i < InlineName; ++i) {
        const wchar_t unit = static_cast<unsigned char>(kept[i]);
        if (unit == L'\0') {
            return name[i] == L'\0';
        }
        if (name[i] != unit) {
            return false;
        }
    }
    return name[InlineName] == L'\0';
}

MirlLookupIndex::Slot MirlLookupIndex::Lookup(Table &table, const wchar_t *name, std::uint32_t tag)
{
    if (table.buckets.empty()) {
        return Slot{nullptr, 0};
    }
    const std::size_t mask = table.buckets.size() - 1;
    for (std::size_t b = tag & mask;; b = (b + 1) & mask) {
        Bucket &bucket = table.buckets[b];
        // Every hash of the bucket compared before any branch on one of them.
        unsigned matches = 0;
        for (int i = 0; i < BucketSlots; ++i) {
            matches |= static_cast<unsigned>(bucket.tags[i] == tag) << i;
        }
        for (; matches != 0; matches &= matches - 1) {
            const int i = __builtin_ctz(matches);
            if (SameName(Slot{&bucket, i}, name)) {
                return Slot{&bucket, i};
            }
        }
        // Slots fill in order and are never freed: a bucket that still has a free slot had one
        // whenever a name of it was listed, so no name of it went on to the next bucket.
        if (bucket.tags[BucketSlots - 1] == 0) {
            return Slot{nullptr, 0};
        }
    }
}

MirlLookupIndex::Slot MirlLookupIndex::FreeSlot(Table &table, std::uint32_t tag)
{
    const std::size_t mask = table.buckets.size() - 1;
    for (std::size_t b = tag & mask;; b = (b + 1) & mask) {
        Bucket &bucket = table.buckets[b];
        for (int i = 0; i < BucketSlots; ++i) {
            if (bucket.tags[i] == 0) {
                return Slot{&bucket, i};
            }
        }
    }
}

void MirlLookupIndex::Insert(Table &table, MirlUiElement *element, bool fromFallback)
{
    const wchar_t *name = element->GetName();
    const std::uint32_t tag = Tag(name);
    const std::uintptr_t address = reinterpret_cast<std::uintptr_t>(element);
    const Slot found = Lookup(table, name, tag);
    if (found.bucket != nullptr) {
        // The first element of a name stays, unless it is of the fallback list and this one
        // isn't. Same name, so the flag of where it is compared stays right.
        std::uintptr_t &kept = found.bucket->elements[found.index];
        if (!fromFallback && (kept & FromFallback) != 0) {
            kept = address | (kept & NameAtElement);
        }
        return;
    }
    // At most three quarters of the slots in use keeps the probes short. The larger table is
    // built aside, so that running out of memory leaves the index as it was.
    if ((table.used + 1) * 4 > table.buckets.size() * BucketSlots * 3) {
        Table larger;
        larger.buckets.assign(table.buckets.empty() ? 4 : table.buckets.size() * 2, Bucket());
        for (Bucket &bucket : table.buckets) {
            for (int i = 0; i < BucketSlots; ++i) {
                if (bucket.tags[i] != 0) {
                    const Slot slot = FreeSlot(larger, bucket.tags[i]);
                    slot.bucket->tags[slot.index] = bucket.tags[i];
                    slot.bucket->elements[slot.index] = bucket.elements[i];
                    std::memcpy(slot.bucket->names[slot.index], bucket.names[i], InlineName);
                }
            }
        }
        larger.used = table.used;
        std::swap(table, larger);
    }
    const Slot slot = FreeSlot(table, tag);
    slot.bucket->tags[slot.index] = tag;
    slot.bucket->elements[slot.index] = fromFallback ? address | FromFallback : address;
    const std::size_t length = wcslen(name);
    bool inSlot = length <= static_cast<std::size_t>(InlineName);
    for (std::size_t c = 0; inSlot && c < length; ++c) {
        inSlot = name[c] < 0x80;
    }
    char *kept = slot.bucket->names[slot.index];
    for (std::size_t c = 0; c < static_cast<std::size_t>(InlineName); ++c) {
        kept[c] = inSlot && c < length ? static_cast<char>(name[c]) : '\0';
    }
    if (!inSlot) {
        slot.bucket->elements[slot.index] |= NameAtElement;
    }
    ++table.used;
}

void MirlLookupIndex::CatchUp(ListIndex &index, const List &list)
{
    // A list never shrinks while it is indexed; if it did, start again rather than trust slots.
    if (list.size() < index.indexed) {
        index = ListIndex();
    }
    for (; index.indexed < list.size(); ++index.indexed) {
        if (list[index.indexed] != nullptr) {
            Insert(index.table, list[index.indexed], false);
        }
    }
}

void MirlLookupIndex::CatchUp(FallbackIndex &index, unsigned int language, const List *current,
                              const List *fallback)
{
    const std::size_t currentSize = current != nullptr ? current->size() : 0;
    const std::size_t fallbackSize = fallback != nullptr ? fallback->size() : 0;
    if (index.language != language || currentSize < index.currentIndexed || fallbackSize < index.fallbackIndexed) {
        index = FallbackIndex();
        index.language = language;
    }
    // Either list may grow after the other: an element of the current list displaces one of the
    // fallback list read before it, so the order in which the two are read doesn't matter.
    for (; index.currentIndexed < currentSize; ++index.currentIndexed) {
        if ((*current)[index.currentIndexed] != nullptr) {
            Insert(index.table, (*current)[index.currentIndexed], false);
        }
    }
    for (; index.fallbackIndexed < fallbackSize; ++index.fallbackIndexed) {
        if ((*fallback)[index.fallbackIndexed] != nullptr) {
            Insert(index.table, (*fallback)[index.fallbackIndexed], true);
        }
    }
}

void MirlLookupIndex::CheckNames()
{
    const long changes = ::InterlockedCompareExchange(&g_NameChanges, 0, 0);
    if (changes != m_NameChanges) {
        Clear();
        m_NameChanges = changes;
    }
}

MirlUiElement *MirlLookupIndex::Find(unsigned long type, unsigned int language, const List &list,
                                     const wchar_t *name)
{
    if (type < UI_ELEMENT_INFORMATION || type > UI_ELEMENT_WINDOW) {
        return Walk(list, name);
    }
    CheckNames();
    try {
        ListIndex &index = m_Lists[type - 1][language];
        CatchUp(index, list);
        const Slot found = Lookup(index.table, name, Tag(name));
        return found.bucket != nullptr ? ElementOf(found) : nullptr;
    } catch (const std::bad_alloc &) {
        // Each insertion happens whole or not at all, so the index stays true to the part of
        // the list it has read; this lookup walks, a later one goes on indexing.
        return Walk(list, name);
    }
}

MirlUiElement *MirlLookupIndex::FindWithFallback(unsigned long type, unsigned int language, const List *current,
                                                 const List *fallback, const wchar_t *name, bool &inCurrent)
{
    if (type >= UI_ELEMENT_INFORMATION && type <= UI_ELEMENT_WINDOW) {
        CheckNames();
        try {
            FallbackIndex &index = m_Fallbacks[type - 1];
            CatchUp(index, language, current, fallback);
            const Slot found = Lookup(index.table, name, Tag(name));
            inCurrent = found.bucket != nullptr && (found.bucket->elements[found.index] & FromFallback) == 0;
            return found.bucket != nullptr ? ElementOf(found) : nullptr;
        } catch (const std::bad_alloc &) {
            // As in Find: the table stays true to what it has read, and this lookup walks.
        }
    }
    MirlUiElement *element = current != nullptr ? Walk(*current, name) : nullptr;
    inCurrent = element != nullptr;
    if (element == nullptr && fallback != nullptr) {
        element = Walk(*fallback, name);
    }
    return element;
}

void MirlLookupIndex::Clear()
{
    for (std::map<unsigned int, ListIndex> &lists : m_Lists) {
        lists.clear();
    }
    for (FallbackIndex &index : m_Fallbacks) {
        index = FallbackIndex();
    }
}
