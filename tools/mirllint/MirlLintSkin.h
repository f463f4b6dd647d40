// The skin as the loader reads it, rebuilt by walking the package's documents the same way:
// includes in place, sections, language blocks, one definition per element, template trees.
// Unlike the loader, the walk keeps going past what would stop or silently drop something,
// and remembers where each thing stands so that a finding can name it.
#pragma once

#include "MirlLintReport.h"

#include "Mirl.h"

#include <map>
#include <set>
#include <tuple>
#include <string>
#include <vector>

namespace mirllint {

struct Attr {
    std::wstring name;
    std::wstring value;
};

// The first attribute whose name equals name ignoring case, as templates compare; null if none.
const Attr *FindAttr(const std::vector<Attr> &attributes, const wchar_t *name);
// The attribute with exactly that name, as element attributes compare; null if none.
const Attr *FindAttrExact(const std::vector<Attr> &attributes, const wchar_t *name);

struct Template {
    std::wstring name;
    Location where;
    std::vector<Attr> attributes;
    std::vector<Template> children;  // those the loader keeps, in document order
    bool loaded = true;              // false: fewer than two attributes
    unsigned int lostDescendants = 0;  // elements below a template that isn't loaded
    bool childrenTooDeep = false;      // its children lie deeper than the loader goes
};

struct Definition {
    unsigned long type = 0;
    unsigned int language = 1033;
    std::wstring name;
    Location where;
    std::vector<Attr> attributes;
    bool hasAttributeMap = true;  // false for comments and text read as elements
    Template window;              // for type 6
};

// A place where the loader stops reading the skin, with the code it raises.
struct AbortPoint {
    Location where;
    unsigned long hresult = 0;
};

struct Skin {
    std::vector<Definition> definitions;  // in load order
    std::set<unsigned int> languages;      // every language that holds a definition
    std::vector<AbortPoint> aborts;        // in the order found; the earliest in load order stops

    // The first definition of that type and exact name in one language; null if none. Looked up
    // in an index of the definitions, which only ever grow at the end: a skin may hold a hundred
    // thousand of them, and every one is looked up.
    const Definition *Find(unsigned long type, const std::wstring &name, unsigned int language) const;
    // The same with the loader's fallback to 1033.
    const Definition *Resolve(unsigned long type, const std::wstring &name, unsigned int language) const;
    // Where the loader stops first, or null if it reads everything.
    const AbortPoint *FirstAbort() const;

private:
    typedef std::tuple<unsigned long, unsigned int, std::wstring> Key;
    mutable std::map<Key, size_t> m_Index;  // first definition of each key
    mutable size_t m_Indexed = 0;           // definitions taken into the index so far
};

// Reads the package that the library has open through MirlUI, reporting what the loader
// would skip, refuse or fail on in the structure of the documents.
void WalkSkin(MirlUI *ui, Skin &skin, Report &report);

// The element type names of findings: "information", "colour", ... "template".
const wchar_t *TypeNoun(unsigned long type);

} // namespace mirllint
