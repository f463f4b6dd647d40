// The figures, one function each. Every function measures ours and its baseline in the same
// process, interleaved, and throws BenchError when what it measures didn't come out as written.
//
//   MeasureSkinLoad      MirlIntialize + MirlUnIntialize of the large skin / its documents in DOMs
//   MeasureLookup        GetUiElement over the large skin / over the skin of 100 elements
//   MeasureWindowTree    Create and WM_SIZE of 1,000 children / CreateWindowExW and MoveWindow
//   MeasurePaint         a full repaint of 300 transparent buttons / BitBlt of the same area
//   MeasureMemory        working set and heap per window, each measured in a fresh process
//   RunMemoryProbe       the fresh process of MeasureMemory
//   MeasureTyping        a typed character in an edit of 1,000 characters / the system's EDIT,
//                        and / the same edit at 10 characters
//   PrintSkinStages      the skin load taken apart (package, parse, DOM walk, building, freeing),
//                        and lookups by kind (found in 2052, through the fallback), large / small
//   MeasureLists         appending 10,000 rows / the system's list view in report style; one
//                        page painted and one page scrolled in 100,000 rows / 100 and 1,000
#pragma once

#include "BenchSupport.h"

namespace mirlbench {

Figure MeasureSkinLoad(int repetitions);
Figure MeasureLookup(int repetitions);
// Prints where the time of the skin load goes, stage by stage, and the cost of each kind of
// lookup, as medians of passes.
void PrintSkinStages(int repetitions);
// Needs the window skin loaded through MirlIntialize. Creation, then relayout.
std::vector<Figure> MeasureWindowTree(int repetitions);
// Needs the window skin loaded through MirlIntialize. With png, the repaint is saved there.
Figure MeasurePaint(int repetitions, const wchar_t *png);
// Working set, then heap.
std::vector<Figure> MeasureMemory(int repetitions);
// "ours" or "baseline": prints the growth of the working set and of the busy heap bytes that
// creating the 1,000-window tree caused. Answers the process's exit code.
int RunMemoryProbe(const wchar_t *kind);
// Typing against the system's EDIT, then at 1,000 characters against at 10.
std::vector<Figure> MeasureTyping(int repetitions);
// Append, then paint, then scroll.
std::vector<Figure> MeasureLists(int repetitions);

} // namespace mirlbench
