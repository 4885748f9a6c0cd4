// Random small worlds, in which ties, dead ends and forms at second bytes are
// everywhere.
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

inline constexpr unsigned kIds = 9;

class Random {
public:
    explicit Random(unsigned seed) : engine_(seed) {}
    unsigned below(unsigned limit) { return std::uniform_int_distribution<unsigned>(0, limit - 1)(engine_); }
    /// 1 to @p most bytes of a small alphabet, some of them NUL when wanted.
    std::string bytes(unsigned most, bool withNul);
    /// 1 to @p most bytes of it, most of them letters.
    std::string latin(unsigned most);

private:
    std::mt19937 engine_;
};

/// Ids: 1 begins a text, 2 ends it, 3 is the unknown word, others are words.
struct World {
    std::vector<WordTable> dictionaries;
    std::vector<std::uint8_t> costs;  // kIds x kIds
    /// By id: where the table has its column; empty: one behind the other. Far apart in some worlds, so that a place's
    /// costs lie in many cache lines.
    std::vector<std::uint16_t> columns;
    /// No longer form begins with a letter. Letters have alike words, of ids 4 and 5, or the second one some of id 6.
    bool plainLetters = false;

    /// Lets id 5 stand before others as id 4 does.
    void shareRow();
    /// Refers to this world.
    CostFunction costFunction() const;
};

World randomWorld(Random& random);

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
