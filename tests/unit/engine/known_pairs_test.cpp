#include "engine/known_pairs.hpp"

#include <gtest/gtest.h>

#include <vector>

namespace TAVO::test {
namespace {

constexpr std::size_t kManyCells = 1 << 20;

/// The pair with this hash, whose upper bits tell the bucket, the next ones the tag.
std::uint32_t pairOf(std::uint32_t hash) {
    std::uint32_t inverse = 1;  // of the hash's factor, by Newton's method
    for (int i = 0; i < 5; ++i) inverse *= 2 - 0x9E3779B1U * inverse;
    return hash * inverse;
}

bool knows(KnownPairs& pairs, std::uint32_t pair) {
    KnownPairs::Known const* const known = pairs.at(pairs.numberOf(pair), pair);
    if (known == nullptr) return false;
    EXPECT_EQ(known->pair, pair);
    EXPECT_EQ(known->state, ~pair) << "what was added with it";
    return true;
}

void add(KnownPairs& pairs, std::uint32_t pair) { pairs.add({pair, ~pair, 0, 0, 0}); }

TEST(KnownPairs, TellsPairsOfOneBucketAndTagApart) {
    KnownPairs pairs;
    pairs.makeRoom(kManyCells);
    std::uint32_t const pair = pairOf(0x80402000), other = pairOf(0x80402001);
    EXPECT_FALSE(knows(pairs, 0)) << "an empty bucket knows nothing";
    add(pairs, pair);
    EXPECT_TRUE(knows(pairs, pair));
    EXPECT_FALSE(knows(pairs, other));
    add(pairs, other);
    EXPECT_TRUE(knows(pairs, other));
    EXPECT_FALSE(knows(pairs, pair)) << "one of them at a time";
}

TEST(KnownPairs, ForgetsThePairOfABucketThatWasAskedForLongerAgo) {
    KnownPairs pairs;
    pairs.makeRoom(kManyCells);
    std::uint32_t const a = pairOf(0x80102000), b = pairOf(0x80204000), c = pairOf(0x80306000);
    add(pairs, a);
    add(pairs, b);
    EXPECT_TRUE(knows(pairs, b));
    EXPECT_TRUE(knows(pairs, a));
    add(pairs, c);
    EXPECT_TRUE(knows(pairs, c));
    EXPECT_TRUE(knows(pairs, a));
    EXPECT_FALSE(knows(pairs, b));
}

TEST(KnownPairs, KeepsWhatItKnowsWhenItTakesMoreRoom) {
    KnownPairs pairs;
    unsigned grown = 0;
    std::vector<std::uint32_t> all;
    for (std::uint32_t i = 1; i <= 100000; ++i) {
        std::vector<std::uint32_t> known;
        if (bool const check = (i & (i - 1)) == 0 || i % 4096 == 0; check)
            for (std::uint32_t const pair : all)
                if (knows(pairs, pair)) known.push_back(pair);
        pairs.makeRoom(kManyCells);
        for (std::uint32_t const pair : known) EXPECT_TRUE(knows(pairs, pair)) << i;
        grown += known.empty() ? 0 : 1;
        all.push_back(i * 0x10001U);
        add(pairs, all.back());
        EXPECT_TRUE(knows(pairs, all.back()));
    }
    EXPECT_GT(grown, 20U);
    pairs.clear();
    pairs.makeRoom(kManyCells);
    EXPECT_FALSE(knows(pairs, all.back()));
}

}  // namespace
}  // namespace TAVO::test
