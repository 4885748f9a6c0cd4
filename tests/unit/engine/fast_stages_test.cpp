// The stages of the fast search on lattices drawn by hand. What stands over an arrow is its connection cost.
#include "engine/fast/fast_search.hpp"

#include "support/fast_rig.hpp"
#include "support/testing.hpp"

namespace TAVO::test {
namespace {

constexpr std::uint8_t kU = 20;  // of an unknown word, before and behind

/// Every connection costs 9 but those given, which are by left and right id.
World worldOf(WordTable words, std::vector<std::array<unsigned, 3>> const& costs) {
    World world;
    world.dictionaries = {std::move(words)};
    world.costs.assign(kIds * kIds, 9);
    for (unsigned id = 1; id <= kIds; ++id) world.cost(id, 3) = world.cost(3, id) = kU;
    for (auto const& [left, right, cost] : costs) world.cost(left, right) = static_cast<std::uint8_t>(cost);
    return world;
}

class FastStages : public testing::Test {
protected:
    LazyPath search(World const& world, std::string text, FastSearch::Options const& options = {}) {
        text_ = std::move(text);
        rig_.reset();  // the pools go with what is attached
        attached_.reset();
        attached_ = std::make_unique<Attached>(world);
        rig_ = std::make_unique<FastRig>(*attached_, options);
        std::string_view const view = text_;
        return rig_->search({&view, 1}).front();
    }
    /// The sums of the candidates at @p place.
    std::vector<unsigned> sums(std::size_t place) const {
        CandidateLayout const& layout = rig_->state.layout;
        std::uint16_t const* const first = layout.sums() + layout.firstSlot(place);
        return {first, first + layout.count(place)};
    }
    /// "surface/id" of each word of the path, "!" before those that the exact search found.
    std::string words(LazyPath const& path) const {
        std::string all;
        std::size_t i = 0, at = 0;
        path.visitPending([&](PendingWord const& word) {
            all += (all.empty() ? "" : " ") + std::string(rig_->paths.word(i++).source == PathWord::kExact ? "!" : "") +
                   text_.substr(at, word.length) + "/" + std::to_string(MrphDic(word.record()).pid());
            at += word.length;
        });
        return all;
    }

    std::string text_;
    std::unique_ptr<Attached> attached_;
    std::unique_ptr<FastRig> rig_;
};

//      1      2      3
// BOS --- A/4 --- B/6 --- EOS
//    \       \ 8     7   /
//     \       -- B/4 ----
//      9   0             /
//       -- AB/5 ---------
TEST_F(FastStages, SumsOfAllCandidates) {
    LazyPath const path = search(worldOf({{"A", {{4, 7}}}, {"AB", {{5, 3}}}, {"B", {{4, 1}, {6, 2}}}},
                                         {{1, 4, 1}, {4, 6, 2}, {6, 2, 3}, {4, 4, 8}, {4, 2, 7}, {1, 5, 9}, {5, 2, 0}}),
                                 "AB");
    EXPECT_EQ(sums(3), (std::vector<unsigned>{0, 255}));    // the end, and that behind an unknown word
    EXPECT_EQ(sums(2), (std::vector<unsigned>{7, 3}));      // B/4, B/6
    EXPECT_EQ(sums(1), (std::vector<unsigned>{2 + 3, 0}));  // A/4, AB/5
    EXPECT_EQ(sums(0), (std::vector<unsigned>{1 + 2 + 3, 255}));
    ASSERT_TRUE(path.isPending());
    EXPECT_EQ(path.firstColumn(), attached_->table->column(4));
    EXPECT_EQ(words(path), "A/4 B/6");
    LatticeNode const* const first = path.first();
    ASSERT_FALSE(path.isPending());
    EXPECT_EQ(first->connSum, 2U + 3U);
    EXPECT_EQ(first->wordSum, 7U + 2U);
    EXPECT_EQ(first->next->connSum, 3U);
    EXPECT_EQ(path.first(), first);
    EXPECT_EQ(first->next->next, nullptr);
}

// Column 7 is restricted: 5 alone may stand before it. Such words stand behind the others, and only where one is open.
TEST_F(FastStages, RestrictedWordsStandBehindAnOpeningWord) {
    World world = worldOf({{"A", {{4, 1}}}, {"B", {{5, 1}}}, {"C", {{7, 1}, {6, 1}, {4, 1}}}}, {{4, 2, 0}});
    for (unsigned left = 1; left <= kIds; ++left) world.cost(left, 7) = left == 5 ? 0 : 255;
    std::copy_n(&world.cost(6, 1), kIds, &world.cost(7, 1));  // 6 is 7's twin
    search(world, "ACBC");
    CandidateLayout const& layout = rig_->state.layout;
    EXPECT_EQ(layout.count(2), 2U);  // behind A
    ASSERT_EQ(layout.count(4), 3U);  // behind B
    std::vector<unsigned> ranks;
    for (unsigned i = 0; i != 3; ++i) ranks.push_back(rig_->state.candidate({4, i}).rank);
    EXPECT_EQ(ranks, (std::vector<unsigned>{1, 2, 0}));
    //  6 -9- EOS, 4 -0- EOS, 7 -9- EOS; B/5 -0- 7, -9- 6 and 4
    EXPECT_EQ(sums(4), (std::vector<unsigned>{9, 0, 9}));
    EXPECT_EQ(sums(3), (std::vector<unsigned>{std::min(9 + 0, 0 + 9)}));
}

// Equal connection sums: the word costs up to where the paths meet decide, then the order of making.
TEST_F(FastStages, TiesAreBrokenByWordCostsThenByOrder) {
    struct Case {
        unsigned first, second, third;
        char const* expected;
    };
    // A/4, /5, /6 cost first, second, third; all connections 9.
    for (Case const& c : {Case{3, 2, 4, "A/5 B/4"}, {2, 2, 2, "A/4 B/4"}, {2, 1, 1, "A/5 B/4"}, {3, 3, 2, "A/6 B/4"}})
        EXPECT_EQ(
            words(search(worldOf({{"A", {{4, c.first}, {5, c.second}, {6, c.third}}}, {"B", {{4, 0}}}}, {}), "AB")),
            c.expected);
    World world = worldOf({{"A", {{5, 0}}}, {"C", {{7, 1}, {6, 1}}}}, {});
    for (unsigned left = 1; left <= kIds; ++left) world.cost(left, 7) = left == 5 ? 9 : 255;
    EXPECT_EQ(words(search(world, "AC")), "A/5 C/7");  // made first, laid out last
}

//       U              U      0
// BOS ----- unknown A ----- B/5 --- EOS      The unknown word costs w's neighbours U + U + L(q) = 40 + 0,
//    \ m      c           /                  w at most m + c + 0: m, the largest cost of w's column, is 20.
//     ----- w: A/4 -------
TEST_F(FastStages, APlacePassesBelowTwiceTheUnknownCost) {
    struct Case {
        unsigned c;
        std::size_t pieces;
        char const* expected;
    };
    for (Case const& c : {Case{19, 0, "B/5 A/4 B/5"}, {20, 1, "!B/5 !A/4 B/5"}}) {
        World const world =
            worldOf({{"A", {{4, 1}}}, {"B", {{5, 1}}}}, {{5, 4, 20}, {4, 5, c.c}, {5, 2, 0}, {4, 2, 9}, {1, 5, 0}});
        LazyPath const path = search(world, "BAB");
        EXPECT_EQ(rig_->state.pieces.size(), c.pieces) << c.c;
        EXPECT_EQ(words(path), c.expected) << c.c;
        EXPECT_EQ(path.first()->connSum, 20 + c.c + 0);
    }
}

// A surface that begins at a trail byte, reached over an unknown word of one byte:
//      U        U                0
// BOS --- 82 ----- 41 81 41/5 ----- EOS   against   BOS -9- 8241/4 -90- 8141/6 -1- EOS
TEST_F(FastStages, WordsInsideCharactersAreFoundByTheExactSearch) {
    World world = worldOf({{"\x82\x41", {{4, 1}}}, {"\x41\x81\x41", {{5, 1}}}, {"\x81\x41", {{6, 1}}}},
                          {{5, 2, 0}, {6, 2, 1}, {4, 6, 90}});
    EXPECT_EQ(words(search(world, "\x82\x41\x81\x41")), "!\x82/3 !\x41\x81\x41/5");
    world.dictionaries[0].erase("\x41\x81\x41");
    world.cost(4, 6) = 9;
    EXPECT_EQ(words(search(world, "\x82\x41\x81\x41")), "\x82\x41/4 \x81\x41/6");
}

// A piece in the middle of a text leaves the rest to the fast search, in any blocks.
TEST_F(FastStages, PiecesAreShort) {
    World const world = worldOf({{"A", {{4, 1}}}, {"B", {{5, 1}}}, {"C", {{6, 1}}}},
                                {{5, 4, 20}, {4, 5, 20}, {6, 5, 0}, {5, 6, 0}, {6, 6, 0}});
    for (std::size_t const block : {2U, 5U, 1024U}) {
        LazyPath const path = search(world, "CCCCCCBABCCCCCC", {block, 3, nullptr});
        std::string const found = words(path);
        EXPECT_EQ(std::count(found.begin(), found.end(), '!') > 0, true) << block;
        EXPECT_LT(std::count(found.begin(), found.end(), '!'), 6) << block << ": " << found;
        ASSERT_FALSE(rig_->state.pieces.empty());
        EXPECT_TRUE(rig_->state.pieces.front().begin <= 8 && 8 < rig_->state.pieces.front().end) << block;
        EXPECT_EQ(rig_->state.pieceAt(rig_->state.pieces.front().begin), &rig_->state.pieces.front());
        EXPECT_EQ(rig_->state.pieceAt(1), nullptr);
    }
}

// No place is a seam, so that the piece of the last character needs an earlier beginning than the largest block has.
TEST_F(FastStages, TheExactSearchTakesOverFromTheLargestBlock) {
    World world = worldOf({{"\x82\xA0", {}}, {"\x82\xA2", {{4, 1}}}}, {{4, 2, kU}});
    for (unsigned id = 5; id <= kIds; ++id)
        for (unsigned cost = 1; cost <= 2; ++cost) world.dictionaries[0]["\x82\xA0"].push_back({id, cost});
    for (unsigned left = 4; left <= kIds; ++left)
        for (unsigned right = 4; right <= kIds; ++right)
            world.cost(left, right) = static_cast<std::uint8_t>(right == 4 ? kU : 5 + (7 * left + 5 * right) % 11);
    std::string text;
    while (text.size() < 12000) text += "\x82\xA0";
    EXPECT_FALSE(search(world, text + "\x82\xA2").exists());
    EXPECT_TRUE(search(world, text).exists());
}

// A word reaches the first places of a later block, where it may open a class.
TEST_F(FastStages, LongWordsOpenClassesInLaterBlocks) {
    World world = worldOf({{"A", {{4, 1}}}, {"AAAAAA", {{5, 1}}}, {"B", {{7, 1}, {6, 2}}}},
                          {{1, 5, 0}, {5, 6, 9}, {7, 2, 0}, {6, 2, 0}});
    for (unsigned left = 1; left <= kIds; ++left) world.cost(left, 7) = left == 5 ? 0 : 255;
    EXPECT_EQ(words(search(world, "AAAAAABAAAAAABAAAAAAB", {4, 3, nullptr})), "AAAAAA/5 B/7 AAAAAA/5 B/7 AAAAAA/5 B/7");
}

}  // namespace
}  // namespace TAVO::test
