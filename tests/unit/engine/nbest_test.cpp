// Texts that tie everywhere: exact order without the 2^k partial paths.
#include "engine/nbest/nbest.hpp"

#include "engine/lattice.hpp"
#include "support/random_world.hpp"
#include "support/testing.hpp"

#include <limits>

namespace TAVO::test {
namespace {

/// All connections cost 1, unknown words and their neighbours are far worse.
World flatWorld(WordTable words) {
    World world;
    world.dictionaries.push_back(std::move(words));
    for (unsigned left = 1; left <= kIds; ++left)
        for (unsigned right = 1; right <= kIds; ++right) world.costs.push_back(left == 3 || right == 3 ? 250 : 1);
    return world;
}

struct Searched {
    Searched(World const& world, std::string const& searched, std::size_t n)
        : text(searched), attached(world), lattice(0) {
        sentence.given = sentence.text = text;
        paths.build(sentence, attached.table.get(), attached.dics, lattice.nodes());
        NBest const nbest(paths, sentence, n);
        for (std::size_t rank = 0; rank < nbest.size(); ++rank) {
            keys.push_back(nbest.key(rank));
            std::vector<std::uint32_t> nodes;
            nbest.nodes(rank, nodes);
            std::string shape;  // one letter per word: lower case for one byte, upper case for more
            for (std::uint32_t const index : nodes) {
                LatticeNode const& node = lattice.nodes().at(index);
                shape += static_cast<char>((node.length == 1 ? 'a' : 'A') + MrphDic(node.record).pid() - 4);
            }
            shapes.push_back(shape);
        }
    }

    std::string text;
    Attached attached;
    Lattice lattice;
    AllPaths paths;
    Sentence sentence;
    std::vector<PathKey> keys;
    std::vector<std::string> shapes;
};

TEST(NBestTies, EqualHomographsComeInBinaryOrder) {
    // 2^40 paths of one key; path r chooses by the bits of r, the last word's
    // homograph changing fastest.
    Searched const found(flatWorld({{"A", {{4, 7}, {5, 7}}}}), std::string(40, 'A'), 1000);
    ASSERT_EQ(found.shapes.size(), 1000U);
    for (std::size_t r = 0; r < 1000; ++r) {
        std::string expected;
        for (unsigned bit = 40; bit-- > 0;) expected += static_cast<char>('a' + (std::uint64_t{r} >> bit & 1));
        ASSERT_EQ(found.shapes[r], expected) << r;
        ASSERT_EQ(found.keys[r], pathKey(41, 280));
    }
}

TEST(NBestTies, TiesOfOtherLengthsComeByNumberOfWords) {
    // A word of three bytes costs as much as two of one byte and connects so that
    // the sums agree: only the number of words and their places differ.
    World world = flatWorld({{"A", {{4, 0}}}, {"AAA", {{5, 0}}}});
    auto const cost = [&](unsigned left, unsigned right) -> std::uint8_t& {
        return world.costs[(left - 1) * kIds + right - 1];
    };
    // Every byte costs 2 in connections: 2 behind an A, 6 behind an AAA.
    for (unsigned const right : {2U, 4U, 5U}) {
        cost(4, right) = 2;
        cost(5, right) = 6;
    }
    Searched const found(world, std::string(60, 'A'), 400);
    ASSERT_EQ(found.shapes.size(), 400U);
    EXPECT_EQ(found.shapes[0], std::string(20, 'B'));
    // Then one AAA made of single ones: 22 words, at each place from the last...
    std::vector<std::string> expected;
    std::string shape(22, 'B');
    std::fill_n(shape.begin(), 3, 'a');
    do {
        expected.push_back(shape);
    } while (expected.size() < 400 && std::next_permutation(shape.begin(), shape.end(), std::greater<>()));
    // ... in the order of making, the one-byte word before the longer one.
    expected.resize(399);
    std::vector<std::string> const rest(found.shapes.begin() + 1, found.shapes.end());
    EXPECT_EQ(rest, expected);
}

TEST(NBestTies, GapsBetweenTheLengthsEndNowhereTwice) {
    // Homographs of the long word only: path lengths 1 + 3k with many dead ends
    // in between for a search that goes by the shortest and longest alone.
    World world = flatWorld({{"A", {{4, 0}}}, {"AAAA", {{5, 0}, {6, 0}}}});
    for (unsigned const right : {2U, 4U, 5U, 6U}) {
        world.costs[3 * kIds + right - 1] = 1;
        world.costs[4 * kIds + right - 1] = 4;
        world.costs[5 * kIds + right - 1] = 4;
    }
    Searched const found(world, std::string(200, 'A'), 3000);
    ASSERT_EQ(found.shapes.size(), 3000U);
    for (std::size_t r = 0; r < 3000; ++r) {
        ASSERT_EQ(found.shapes[r].size(), 50U) << "2^50 paths of 50 words come first";
        ASSERT_EQ(found.keys[r], pathKey(201, 0));
    }
    EXPECT_TRUE(std::is_sorted(found.shapes.begin(), found.shapes.end()));
}

TEST(NBestTies, AnyCountMayBeAskedFor) {
    Searched const found(flatWorld({{"A", {{4, 1}, {5, 1}}}}), "AAA", std::numeric_limits<int>::max());
    // Eight of dictionary words, and those with one to three unknown words.
    EXPECT_EQ(found.shapes.size(), 27U);
}

}  // namespace
}  // namespace TAVO::test
