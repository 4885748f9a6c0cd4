// Random small worlds, in which ties, dead ends, surfaces at trail bytes and unknown words that pay are everywhere.
#ifndef TAVO_TESTS_RANDOM_WORLD_HPP
#define TAVO_TESTS_RANDOM_WORLD_HPP

#include "dic/conn_table.hpp"
#include "dic/dic_set.hpp"
#include "support/reference_search.hpp"
#include "support/temp_dir.hpp"

#include <cstdint>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace TAVO::test {

inline constexpr unsigned kIds = 11;

class Random {
public:
    explicit Random(unsigned seed) : engine_(seed) {}
    unsigned below(unsigned limit) { return std::uniform_int_distribution<unsigned>(0, limit - 1)(engine_); }
    bool oneIn(unsigned n) { return below(n) == 0; }
    template <class Values>
    auto const& of(Values const& values) {
        return values[below(static_cast<unsigned>(std::size(values)))];
    }

private:
    std::mt19937 engine_;
};

/// Ids: 1 begins a text, 2 ends it, 3 is the unknown word, others are words.
struct World {
    std::string alphabet;  ///< bytes of surfaces and texts
    std::vector<WordTable> dictionaries;
    std::vector<std::uint8_t> costs;  ///< kIds x kIds
    /// By id: where the table has its column; empty: one behind the other. Far apart in some worlds, so that a place's
    /// costs lie in many cache lines.
    std::vector<std::uint16_t> columns;

    unsigned cost(unsigned left, unsigned right) const { return costs[(left - 1) * kIds + right - 1]; }
    std::uint8_t& cost(unsigned left, unsigned right) { return costs[(left - 1) * kIds + right - 1]; }
    /// Refers to this world.
    CostFunction costFunction() const;
    /// 1 to @p most bytes of the alphabet.
    std::string bytes(Random& random, unsigned most) const;
    /// The same, with surfaces in it and, when wanted, NUL.
    std::string text(Random& random, unsigned most, bool withNul) const;
    /// Surfaces, records and costs, for a failing test.
    std::string describe() const;
};

/// Half of them have unknown words of one cost, which the fast search needs.
World randomWorld(Random& random);
/// Unknown words of one cost on either side, a word for most characters; costs from nothing to what makes unknown
/// words pay; restricted columns.
World randomFlatWorld(Random& random);
/// Surfaces of so many words that lists of 255 or places of 256 have no room for them.
void addManyWords(World& world, Random& random);
/// A surface of at most @p most bytes that @p text has, or is given, made of whole characters.
void addLongSurface(World& world, Random& random, std::string& text, unsigned most);

/// A world as files, attached. One at a time: the pools go with it.
struct Attached {
    explicit Attached(World const& world);

    /// Declared first, so that the pools go when nothing uses them any more.
    struct PoolGuard {
        ~PoolGuard();
    } guard;
    TempDir dir;
    std::unique_ptr<ConnTable> table;
    DicSet dics;
};

/// Position of the dictionary that holds @p record; -1 for none.
int dictionaryOf(DicSet const& dics, unsigned char const* record);

}  // namespace TAVO::test

#endif
