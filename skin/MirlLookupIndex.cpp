#include "MirlLookupIndex.h"

#include <windows.h>

#include <cwchar>
#include <new>

namespace {

// Names change on any thread that loads elements; the count only has to differ after a change.
volatile LONG g_NameChanges = 0;

} // namespace

void MirlLookupIndex::NoteNameChange()
{
    ::InterlockedIncrement(&g_NameChanges);
}

MirlUiElement *MirlLookupIndex::Walk(const std::vector<MirlUiElement *> &list, const wchar_t *name)
{
    for (MirlUiElement *element : list) {
        if (wcscmp(element->GetName(), name) == 0) {
            return element;
        }
    }
    return nullptr;
}

std::uint32_t MirlLookupIndex::Tag(const wchar_t *name)
{
    // FNV-1a over the UTF-16 units up to the terminator, which is where wcscmp stops too.
    std::uint32_t hash = 2166136261u;
    for (; *name != L'\0'; ++name) {
        hash = (hash ^ static_cast<std::uint32_t>(static_cast<unsigned short>(*name))) * 16777619u;
    }
    return hash != 0 ? hash : 1;
}

bool MirlLookupIndex::SameName(const Slot &slot, const wchar_t *name)
{
    if (slot.name[InlineName - 1] == L'\0') {
        return wcscmp(slot.name, name) == 0;
    }
    return wcscmp(slot.element->GetName(), name) == 0;
}

MirlUiElement *MirlLookupIndex::Lookup(const ListIndex &index, const wchar_t *name, std::uint32_t tag)
{
    if (index.tags.empty()) {
        return nullptr;
    }
    const std::size_t mask = index.tags.size() - 1;
    const std::uint32_t *tags = index.tags.data();
    for (std::size_t i = tag & mask;; i = (i + 1) & mask) {
        if (tags[i] == 0) {
            return nullptr;
        }
        if (tags[i] == tag && SameName(index.slots[i], name)) {
            return index.slots[i].element;
        }
    }
}

void MirlLookupIndex::Insert(ListIndex &index, MirlUiElement *element)
{
    const wchar_t *name = element->GetName();
    const std::uint32_t tag = Tag(name);
    // The first element of a name stays; a later one of the same name is never reached.
    if (Lookup(index, name, tag) != nullptr) {
        return;
    }
    // At most half the slots in use keeps the probes short. The larger table is built aside,
    // so that running out of memory leaves the index as it was.
    if ((index.used + 1) * 2 > index.tags.size()) {
        const std::size_t size = index.tags.empty() ? 16 : index.tags.size() * 2;
        std::vector<std::uint32_t> largerTags(size, 0);
        std::vector<Slot> largerSlots(size, Slot());
        const std::size_t mask = size - 1;
        for (std::size_t from = 0; from < index.tags.size(); ++from) {
            if (index.tags[from] != 0) {
                std::size_t i = index.tags[from] & mask;
                while (largerTags[i] != 0) {
                    i = (i + 1) & mask;
                }
                largerTags[i] = index.tags[from];
                largerSlots[i] = index.slots[from];
            }
        }
        index.tags.swap(largerTags);
        index.slots.swap(largerSlots);
    }
    const std::size_t mask = index.tags.size() - 1;
    std::size_t i = tag & mask;
    while (index.tags[i] != 0) {
        i = (i + 1) & mask;
    }
    index.tags[i] = tag;
    Slot &slot = index.slots[i];
    slot.element = element;
    // Copies up to the whole slot's width: a name that fills it leaves a non-zero last unit,
    // which sends comparisons to the element's own name.
    wcsncpy(slot.name, name, InlineName);
    ++index.used;
}

void MirlLookupIndex::CatchUp(ListIndex &index, const std::vector<MirlUiElement *> &list)
{
    // A list never shrinks while it is indexed; if it did, start again rather than trust slots.
    if (list.size() < index.indexed) {
        index = ListIndex();
    }
    for (; index.indexed < list.size(); ++index.indexed) {
        if (list[index.indexed] != nullptr) {
            Insert(index, list[index.indexed]);
        }
    }
}

MirlUiElement *MirlLookupIndex::Find(unsigned long type, unsigned int language,
                                     const std::vector<MirlUiElement *> &list, const wchar_t *name)
{
    if (type < UI_ELEMENT_INFORMATION || type > UI_ELEMENT_WINDOW) {
        return Walk(list, name);
    }
    const long changes = ::InterlockedCompareExchange(&g_NameChanges, 0, 0);
    if (changes != m_NameChanges) {
        Clear();
        m_NameChanges = changes;
    }
    try {
        ListIndex &index = m_Lists[type - 1][language];
        CatchUp(index, list);
        return Lookup(index, name, Tag(name));
    } catch (const std::bad_alloc &) {
        // Each insertion happens whole or not at all, so the index stays true to the part of
        // the list it has read; this lookup walks, a later one goes on indexing.
        return Walk(list, name);
    }
}

void MirlLookupIndex::Clear()
{
    for (std::map<unsigned int, ListIndex> &lists : m_Lists) {
        lists.clear();
    }
}
