// The four word tables of the skin's style attributes, and the parser that ORs the words
// of a "WORD|WORD" text into bits.
#pragma once

#include "MirlExport.h"

#include <cstddef>

// Room for a name, terminating zero included. No word longer than this can match a row.
constexpr std::size_t kMirlStyleNameCapacity = 256;

// One word and its bits. The name is zero-filled to the end of its array.
struct MirlStyleRow {
    wchar_t name[kMirlStyleNameCapacity];
    unsigned long value;
};

// A table is a run of rows, searched from the first.
struct MirlStyleTable {
    const MirlStyleRow *rows;
    std::size_t count;
};

namespace MIRL {

// The tables: window styles ("Style"), extended styles ("ExStyle"), position styles
// ("Align") and text layout ("Layout").
MIRL_API MirlStyleTable WindowStyleTable();
MIRL_API MirlStyleTable ExStyleTable();
MIRL_API MirlStyleTable PositionStyleTable();
MIRL_API MirlStyleTable TextLayoutTable();

// The OR of the values of the words of text. Blanks are dropped wherever they stand, "|"
// ends a word, the first row whose name equals the word exactly (case counts) gives its
// value, and a word that matches no row adds 0. A null text is read as empty.
MIRL_API unsigned long ParseStyleWords(const wchar_t *text, const MirlStyleTable &table);

MIRL_API unsigned long StringToWindowStyle(const wchar_t *text);
MIRL_API unsigned long StringToExStyle(const wchar_t *text);
MIRL_API unsigned long StringToPositionStyle(const wchar_t *text);
MIRL_API unsigned long StringToTextLayout(const wchar_t *text);

}  // namespace MIRL
