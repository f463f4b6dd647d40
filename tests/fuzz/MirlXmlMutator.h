// Mutations of the skin documents as text: tags deleted, duplicated, moved and renamed,
// attribute values replaced by extremes, deep nesting, include cycles and floods, encodings
// that lie, and plain byte damage. Each works on the raw text through a light tag scanner,
// so that it can also make documents that no XML writer would.
#pragma once

#include "MirlSkinCorpus.h"

#include <cstdint>
#include <string>
#include <vector>

namespace mirlfuzz {

// One tag of a document as it stands in the text.
struct XmlTag {
    enum Kind { Open, Close, Empty, Other };
    Kind kind;
    size_t begin;     // at '<'
    size_t end;       // one past '>'
    std::string name; // empty for Other
    size_t match;     // for Open: index of its closing tag, or npos
};

// One attribute inside a tag: name and value ranges, the value without its quotes.
struct XmlAttribute {
    size_t nameBegin, nameEnd;
    size_t valueBegin, valueEnd;
};

std::vector<XmlTag> ScanXml(const std::string &text);
std::vector<XmlAttribute> ScanAttributes(const std::string &text, const XmlTag &tag);

enum class XmlMutation {
    DeleteElement,
    DuplicateElement,
    DeleteTag,
    ExtremeValue,
    RenameAttribute,
    AddAttribute,
    DeepNesting,
    IncludeCycle,
    ManyIncludes,
    RenameTag,
    InsertNode,
    SpliceBytes,
    MoveElement,
    Encoding,
    Count
};

// Applies one mutation, drawn from seed, to the documents of a skin; it may add documents.
// Answers a short description of what it did.
std::string MutateSkinXml(std::vector<SkinFile> &files, XmlMutation kind, uint64_t seed);

// A value meant to break whatever reads it: empty, huge, negative, hexadecimal oddities,
// non-ASCII, style words in bulk. Text as it goes between quotes in a document.
std::string ExtremeAttributeValue(class Random &random);

} // namespace mirlfuzz
