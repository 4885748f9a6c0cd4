// Every kernel that this machine runs against the plain one, and the plain one against its definitions.
#include "engine/fast/relaxation.hpp"

#include "support/random_world.hpp"
#include "support/testing.hpp"

#include <numeric>

namespace TAVO::test {
namespace {

/// Takes the last of equal ones and notes what it was asked.
struct TakesLast final : TieBreaker {
    unsigned breakTie(std::size_t end, std::span<std::uint16_t const> sums, std::uint16_t least) override {
        asked.push_back({end, sums.size(), least});
        return static_cast<unsigned>(std::find(sums.rbegin(), sums.rend(), least).base() - sums.begin() - 1);
    }
    std::vector<std::array<std::size_t, 3>> asked;
};

/// A block of places with one word in each slot, which ends at a later place; sums are known at the last place alone.
struct Block {
    static constexpr std::size_t kRows = 20, kStride = 64, kPlaces = 12;
    static constexpr unsigned kUnknownCost = 6;

    explicit Block(Random& random) {
        unsigned const costs = random.oneIn(2) ? 4 : 256;
        for (std::size_t i = 0; i != kRows * kStride; ++i)
            matrix.push_back(static_cast<unsigned char>(random.oneIn(4) ? 255 : random.below(costs)));
        for (std::size_t place = 0; place != kPlaces; ++place) {
            unsigned const count = 1 + random.below(random.oneIn(3) ? 40 : 9);
            firstSlots.push_back(static_cast<std::uint16_t>(sums.size()));
            counts.push_back(static_cast<std::uint16_t>(count));
            auto const own = static_cast<std::uint16_t>(random.below(kStride));
            for (unsigned i = 0; i != (count + 7) / 8 * 8; ++i) {
                columns.push_back(i == 0 || i >= count ? own : static_cast<std::uint16_t>(random.below(kStride)));
                bool const isKnown = place + 1 == kPlaces && i < count;
                sums.push_back(
                    isKnown ? static_cast<std::uint16_t>(random.oneIn(4) ? 0xFF00 + random.below(256) : random.below(9))
                            : Relaxation::kNoSum);
                if (i >= count || place + 1 == kPlaces) continue;
                rows.push_back(static_cast<std::uint16_t>(random.below(kRows)));
                ends.push_back(
                    static_cast<std::uint16_t>(place + 1 + random.below(kPlaces - 1 - static_cast<unsigned>(place))));
                slots.push_back(static_cast<std::uint16_t>(sums.size() - 1));
            }
        }
        next.resize(rows.size());
        for (std::size_t i = 0; i != kStride; ++i)
            mosts.push_back(static_cast<unsigned char>(random.oneIn(4) ? 255 : random.below(kUnknownCost + 1)));
    }
    Relaxation arrays() {
        return {matrix.data(),     kStride,       columns.data(), sums.data(), rows.data(),  ends.data(), slots.data(),
                firstSlots.data(), counts.data(), next.data(),    &ties,       mosts.data(), kUnknownCost};
    }
    void relax(RelaxFunction function) { function(arrays(), 0, rows.size()); }
    /// The places of looks at all that have three behind that the kernel leaves; of them every fifth is deep.
    std::vector<std::uint32_t> left(PassFunction function) {
        constexpr std::uint32_t kFirst = 7;  // the block's first place
        std::vector<Look> looks, kept(kPlaces);
        for (std::uint32_t place = 0; place + 3 < kPlaces; ++place) looks.push_back({place + kFirst, place % 5 == 0});
        kept.resize(function(arrays(), looks, kFirst, kept.data()));
        std::vector<std::uint32_t> places;
        for (Look const look : kept) places.push_back(look.place - kFirst);
        return places;
    }
    /// The least sum at a place, or of the sums with the largest costs of their columns.
    unsigned least(std::size_t place, bool withMost) const {
        unsigned least = Relaxation::kNoSum;
        for (std::size_t i = firstSlots[place]; i != firstSlots[place] + std::size_t{counts[place]}; ++i) {
            unsigned const most = withMost ? mosts[columns[i]] : 0;
            if (most != 255) least = std::min(least, sums[i] + most);
        }
        return least;
    }

    std::vector<unsigned char> matrix, mosts;
    std::vector<std::uint16_t> columns, sums, rows, ends, slots, firstSlots, counts;
    std::vector<std::uint8_t> next;
    TakesLast ties;
};

TEST(Relaxation, KernelsAgreeWithThePlainOne) {
    ASSERT_STREQ(relaxKernels().back().name, "plain");
    std::size_t ties = 0;
    for (unsigned seed = 1; seed <= 2000; ++seed) {
        Random random(seed);
        Block const block(random);
        Block plain = block;
        plain.relax(relaxKernels().back().relax);
        ties += plain.ties.asked.size();
        for (RelaxKernel const& kernel : relaxKernels()) {
            Block other = block;
            other.relax(kernel.relax);
            ASSERT_EQ(other.sums, plain.sums) << kernel.name << ", seed " << seed;
            ASSERT_EQ(other.ties.asked, plain.ties.asked) << kernel.name << ", seed " << seed;
            for (std::size_t word = 0; word != plain.next.size(); ++word)
                ASSERT_TRUE(plain.sums[plain.slots[word]] == Relaxation::kNoSum || other.next[word] == plain.next[word])
                    << kernel.name << ", seed " << seed << ", word " << word;
        }
    }
    EXPECT_GT(ties, 10'000U);
}

TEST(Relaxation, GivesTheLeastSumOfWhatMayFollow) {
    for (unsigned seed = 1; seed <= 300; ++seed) {
        Random random(seed);
        Block block(random);
        block.relax(relaxKernels().back().relax);
        for (std::size_t word = 0; word != block.rows.size(); ++word) {
            std::size_t const first = block.firstSlots[block.ends[word]];
            unsigned least = Relaxation::kNoSum;
            for (std::size_t i = first; i != first + block.counts[block.ends[word]]; ++i) {
                unsigned const cost = block.matrix[block.rows[word] * Block::kStride + block.columns[i]];
                if (cost != 255) least = std::min(least, block.sums[i] + cost);
            }
            ASSERT_EQ(block.sums[block.slots[word]], least) << "seed " << seed << ", word " << word;
        }
    }
}

TEST(Relaxation, LooksAreLeftThatTheNextPlacesDoNotProveToPass) {
    std::size_t passed = 0;
    for (unsigned seed = 1; seed <= 2000; ++seed) {
        Random random(seed);
        Block block(random);
        std::vector<std::uint32_t> expected;
        for (std::size_t p = 0; p != Block::kPlaces; ++p)
            for (std::size_t i = block.firstSlots[p]; i != block.firstSlots[p] + std::size_t{block.counts[p]}; ++i)
                block.sums[i] = static_cast<std::uint16_t>(random.oneIn(8) ? Relaxation::kNoSum : random.below(30));
        for (std::uint32_t p = 0; p + 3 < Block::kPlaces; ++p) {
            unsigned const least =
                std::min({block.least(p + 1, false), block.least(p + 2, false), block.least(p + 3, false)});
            unsigned const leaving = std::min(block.least(p + 1, true), block.least(p + 2, true));
            unsigned const bound = block.least(p, true);
            bool const passes = bound < 2 * Block::kUnknownCost + least && bound < Block::kUnknownCost + leaving &&
                                bound != Relaxation::kNoSum;
            if (!passes || p % 5 == 0) expected.push_back(p);
            passed += passes ? 1 : 0;
        }
        for (RelaxKernel const& kernel : relaxKernels())
            ASSERT_EQ(block.left(kernel.pass), expected) << kernel.name << ", seed " << seed;
    }
    EXPECT_GT(passed, 1000U);
}

}  // namespace
}  // namespace TAVO::test
