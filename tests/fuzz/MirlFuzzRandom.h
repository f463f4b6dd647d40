// The fuzzer's one source of chance: a small generator whose sequence is the same on every
// compiler and architecture, so that a seed and an index name one case for good.
#pragma once

#include <cstddef>
#include <cstdint>

namespace mirlfuzz {

class Random {
public:
    explicit Random(uint64_t seed) : m_State(seed) {}

    // splitmix64: fast, and every seed, 0 included, gives a full-quality sequence.
    uint64_t Next()
    {
        uint64_t z = (m_State += 0x9E3779B97F4A7C15ULL);
        z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ULL;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EBULL;
        return z ^ (z >> 31);
    }
    uint32_t Next32() { return static_cast<uint32_t>(Next() >> 32); }

    // A number in [0, bound); 0 when bound is 0.
    size_t Below(size_t bound) { return bound == 0 ? 0 : static_cast<size_t>(Next() % bound); }
    // A number in [low, high].
    int Between(int low, int high)
    {
        return low + static_cast<int>(Below(static_cast<size_t>(static_cast<int64_t>(high) - low + 1)));
    }
    // True with a chance of percent in a hundred.
    bool Chance(unsigned percent) { return Below(100) < percent; }

    template <class T, size_t N>
    const T &Pick(const T (&items)[N])
    {
        return items[Below(N)];
    }

    // A derived seed for a sub-generator, so that adding draws to one part of a case does not
    // move the choices of another.
    uint64_t Fork() { return Next() ^ 0xA5A5A5A55A5A5A5AULL; }

private:
    uint64_t m_State;
};

// The seed of one case of a run: the same for (seed, index) in the driver and in the worker.
inline uint64_t CaseSeed(uint64_t runSeed, uint64_t index)
{
    Random r(runSeed * 0x100000001B3ULL ^ (index + 0x632BE59BD9B4E019ULL));
    r.Next();
    return r.Next();
}

} // namespace mirlfuzz
