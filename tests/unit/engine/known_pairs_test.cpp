#include "engine/known_pairs.hpp"

#include <gtest/gtest.h>

#include <random>

namespace TAVO::test {
namespace {

constexpr std::size_t kManyCells = 1 << 20;

/// The pair with this hash, whose upper bits tell the bucket, the next ones the tag.
std::uint32_t pairOf(std::uint32_t hash) {
    std::uint32_t inverse = 1;  // of the hash's factor, by Newton's method
    for (int i = 0; i < 5; ++i) inverse *= 2 - 0x9E3779B1U * inverse;
    return hash * inverse;
}

KnownPairs::Known knownOf(std::uint32_t pair, std::uint32_t state) {
    return {state, 0, static_cast<std::uint16_t>(pair), 0, 0};
}

bool knows(KnownPairs& pairs, std::uint32_t pair) {
    KnownPairs::Known const* const known = pairs.at(pairs.numberOf(pair), pair);
    if (known == nullptr) return false;
    EXPECT_EQ(known->state, ~pair) << "what was added with it";
    return true;
}

void add(KnownPairs& pairs, std::uint32_t pair) { pairs.add(pair, knownOf(pair, ~pair), false); }

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

TEST(KnownPairs, HasMoreRoomOnceItHasMetManyPairs) {
    KnownPairs pairs;
    for (std::uint32_t i = 1; i <= 30000; ++i) {
        pairs.makeRoom(kManyCells);
        add(pairs, i * 0x10001U);
        EXPECT_TRUE(knows(pairs, i * 0x10001U));
    }
    std::size_t known = 0;
    for (std::uint32_t i = 1000; i <= 30000; ++i) known += knows(pairs, i * 0x10001U) ? 1 : 0;
    EXPECT_GT(known, 20000U);
    pairs.clear();
    pairs.makeRoom(kManyCells);
    EXPECT_FALSE(knows(pairs, 30000 * 0x10001U));
}

// Half of the pairs share what is known of them with those that have their lower half.
TEST(KnownPairs, NeverTellsOfAPairWhatIsKnownOfAnother) {
    for (std::size_t const cells : {std::size_t{1}, kManyCells}) {
        std::mt19937 random(7);
        auto const below = [&](unsigned limit) {
            return std::uniform_int_distribution<unsigned>(0, limit - 1)(random);
        };
        KnownPairs pairs;
        std::size_t found = 0;
        for (unsigned i = 0; i < 300000; ++i) {
            std::uint32_t const first = 0x8000 + below(cells == 1 ? 8 : 3000), pair = below(40) << 16 | first;
            bool const ofFirst = (pair >> 16) % 2 == 0;
            std::uint32_t const state = ofFirst ? first : ~pair;
            pairs.makeRoom(cells);
            if (KnownPairs::Known const* const known = pairs.at(pairs.numberOf(pair), pair)) {
                ++found;
                ASSERT_EQ(known->state, state) << pair;
            } else {
                pairs.add(pair, knownOf(pair, state), ofFirst);
            }
        }
        EXPECT_GT(found, 60000U) << cells;
    }
}

}  // namespace
}  // namespace TAVO::test
