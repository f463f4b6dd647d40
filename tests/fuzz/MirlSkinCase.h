// One fuzz case: a corpus skin, a few mutations of its documents, of its ZIP structure and of
// the bytes of the package, and a language. A case is a pure function of (corpus, seed), so the
// driver and the worker make the same bytes from the same seed; a keep mask leaves mutations
// out, which is how a failing case is shrunk.
#pragma once

#include "MirlSkinCorpus.h"

#include <cstdint>
#include <string>
#include <vector>

namespace mirlfuzz {

struct SkinCaseOp {
    enum Level { Xml, Zip, Byte };
    Level level;
    int kind;
    uint64_t seed;
};

struct SkinCase {
    uint64_t seed = 0;
    std::string corpus;           // label of the corpus skin
    unsigned language = 1033;
    std::vector<SkinCaseOp> ops;  // all the mutations the seed draws
    std::vector<std::string> notes; // what each applied one did
    Bytes zip;
};

// Every mutation is applied when keep is all ones; bit i off leaves out ops[i].
SkinCase MakeSkinCase(const std::vector<CorpusSkin> &corpus, uint64_t seed, uint64_t keep = ~0ULL);

// The package of a corpus skin without any mutation, for the worker's warm-up.
Bytes PlainPackage(const CorpusSkin &skin);

} // namespace mirlfuzz
