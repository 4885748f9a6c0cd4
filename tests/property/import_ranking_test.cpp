// Imported tables rank analyses as the source's exact arithmetic does.
#include "lexicon/import/fit/cluster.hpp"
#include "lexicon/import/table/table.hpp"
#include "support/testing.hpp"

#include <algorithm>
#include <random>
#include <set>

namespace TAVO::importer {
namespace {

constexpr unsigned kWorlds = 300;

/// A random lexicon over the letters a to c, with costs that fit a byte when one
/// unit of source cost is one unit of a byte.
class RandomWorld {
public:
    explicit RandomWorld(unsigned seed) : random_(seed) {
        std::uint32_t const ids = 2 + pick(4);
        lexicon.sourceRows = lexicon.sourceCols = ids;
        lexicon.matrix = Matrix(ids, ids);
        for (std::uint32_t i = 0; i < ids; ++i) lexicon.rowBase.push_back(i);
        for (std::uint32_t i = 0; i < ids * ids; ++i)
            lexicon.matrix.set(i / ids, i % ids, static_cast<std::int16_t>(static_cast<int>(pick(41)) - 20));
        for (char letter : {'a', 'b', 'c'}) addWord(std::string(1, letter));
        for (unsigned i = 0; i < 14; ++i) {
            std::string form;
            for (unsigned n = 1 + pick(4); n > 0; --n) form += static_cast<char>('a' + pick(3));
            addWord(form);
        }
        shifts.row.push_back(0);
        for (std::uint32_t i = 1; i < ids; ++i) shifts.row.push_back(static_cast<double>(pick(21)) - 10);
        shifts.perByte = 20;
        shifts.end = -60;
    }
    std::string text() {
        std::string result;
        for (unsigned n = 1 + pick(12); n > 0; --n) result += static_cast<char>('a' + pick(3));
        return result;
    }

    Lexicon lexicon;
    Shifts shifts;

private:
    std::uint32_t pick(std::uint32_t below) { return static_cast<std::uint32_t>(random_() % below); }
    void addWord(std::string const& form) {
        Word word;
        word.form = lexicon.keep(form);
        word.row = 1 + pick(lexicon.sourceRows - 1);
        word.col = 1 + pick(lexicon.sourceCols - 1);
        word.cost = 40 + static_cast<std::int32_t>(pick(41)) - 20;
        word.name = lexicon.names.add(pick(2) == 0 ? "A" : "B");
        lexicon.words.push_back(word);
    }

    std::mt19937 random_;
};

/// Calls check(world, index) with random worlds.
template <class Check>
void onRandomWorlds(Check check) {
    for (unsigned seed = 1; seed <= kWorlds; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        RandomWorld world(seed);
        check(world, FormIndex(world.lexicon));
        if (testing::Test::HasFatalFailure()) return;
    }
}

/// Tables whose bytes are the source's costs.
Tables exactTables(RandomWorld& world, FormIndex const& index, double contextTolerance, PairCounts const& pairs = {}) {
    TableOptions options;
    options.step = 1;
    options.levelTolerance = 0;
    options.contextTolerance = contextTolerance;
    return buildTables(world.lexicon, index, world.shifts, {}, pairs, options);
}

std::int64_t exactCost(RandomWorld const& world, Lattice const& lattice) {
    std::int64_t sum = 0;
    std::uint32_t left = Lattice::kNone;
    for (std::uint32_t const i : lattice.path()) {
        sum += ExactEdge{world.lexicon}(left, lattice.nodes[i].word);
        left = lattice.nodes[i].word;
    }
    return sum + ExactEdge{world.lexicon}(left, Lattice::kNone);
}

/// The tables' best analysis of a text costs what the best one does.
void expectCheapest(RandomWorld& world, FormIndex const& index, Tables const& tables) {
    std::string const text = world.text();
    Lattice lattice;
    fillLattice(lattice, index, world.lexicon, text);
    searchForward(lattice, text.size(), ExactEdge{world.lexicon});
    std::int64_t const best = lattice.best;
    searchForward(lattice, text.size(), TableEdge{tables});
    EXPECT_LT(lattice.best, Lattice::kNoPath);
    EXPECT_EQ(exactCost(world, lattice), best) << text;
}

TEST(ImportRanking, TablesFindTheCheapestAnalysis) {
    onRandomWorlds([](RandomWorld& world, FormIndex const& index) {
        Tables const tables = exactTables(world, index, 0);
        for (unsigned i = 0; i < 10; ++i) expectCheapest(world, index, tables);
    });
}

TEST(ImportRanking, BackwardSearchAgreesWithForward) {
    onRandomWorlds([](RandomWorld& world, FormIndex const& index) {
        std::string const text = world.text();
        Lattice lattice;
        fillLattice(lattice, index, world.lexicon, text);
        searchForward(lattice, text.size(), ExactEdge{world.lexicon});
        searchBackward(lattice, text.size(), ExactEdge{world.lexicon});
        for (std::uint32_t const i : lattice.path())
            ASSERT_EQ(lattice.nodes[i].best + lattice.nodes[i].rest, lattice.best);
    });
}

/// Rows and columns that differ from others by a constant fall together, and the
/// ranking stays.
TEST(ImportRanking, ConstantsBetweenLinesMoveIntoTheWords) {
    onRandomWorlds([](RandomWorld& world, FormIndex const& index) {
        Matrix& matrix = world.lexicon.matrix;
        for (std::uint32_t i = 0; i < matrix.cols; ++i)
            matrix.set(matrix.rows - 1, i, static_cast<std::int16_t>(matrix.at(1, i) + 7));
        // Rows are used all alike here, so no weights distort the mean.
        Clusters const clusters = findClusters(world.lexicon, {}, 0.5);
        if (matrix.rows > 2) {
            EXPECT_EQ(clusters.rows.leader[matrix.rows - 1], 1U);
            EXPECT_NEAR(clusters.rows.offset[matrix.rows - 1], 7, 1e-3);
            EXPECT_LT(clusters.rows.count, matrix.rows);
        }
        expectCheapest(world, index, exactTables(world, index, 1e-3));
    });
}

/// Use decides where lines stand and nothing else: the most used rows and groups of columns come first.
TEST(ImportRanking, LinesStandInTheOrderOfTheirUse) {
    onRandomWorlds([](RandomWorld& world, FormIndex const& index) {
        Tables const plain = exactTables(world, index, 0);
        PairCounts const pairs = countPairs(world.lexicon, index, {world.text(), world.text(), world.text()});
        Tables const ordered = exactTables(world, index, 0, pairs);
        ASSERT_EQ(ordered.names, plain.names);
        ASSERT_EQ(ordered.idOfWord, plain.idOfWord);
        for (std::uint16_t left = 1; left <= plain.names.size(); ++left)
            for (std::uint16_t right = 1; right <= plain.names.size(); ++right)
                ASSERT_EQ(ordered.byteOf(left, right), plain.byteOf(left, right)) << left << " before " << right;
        std::vector<double> rows(ordered.rows, 0);
        for (std::size_t word = 0; word < world.lexicon.words.size(); ++word)
            rows[ordered.rowOf[ordered.idOfWord[word] - 1U]] += pairs.asLeft[word];
        EXPECT_TRUE(std::is_sorted(rows.rbegin(), rows.rend()));
        std::uint32_t columns = 0;
        for (std::vector<std::uint32_t> const& words : pairs.together)
            for (std::uint32_t const word : words) {
                std::uint32_t const column = ordered.columnOf[ordered.idOfWord[word] - 1U];
                ASSERT_LE(column, columns) << "columns stand in the order in which they are asked for together";
                columns = std::max(columns, column + 1);
            }
        EXPECT_GT(columns, 0U);
    });
}

TEST(ImportRanking, FixedIdsAndUniqueNames) {
    onRandomWorlds([](RandomWorld& world, FormIndex const& index) {
        Tables const tables = buildTables(world.lexicon, index, world.shifts, {}, {}, TableOptions{.step = 1});
        ASSERT_EQ(std::vector<std::string>(tables.names.begin(), tables.names.begin() + 3),
                  (std::vector<std::string>{"BOS", "EOS", "Undef"}));
        std::set<std::string> const names(tables.names.begin(), tables.names.end());
        ASSERT_EQ(names.size(), tables.names.size());
        for (std::uint32_t i = 0; i < world.lexicon.names.size(); ++i)
            ASSERT_EQ(names.count(world.lexicon.names.at(i)), 1U) << "a class of each name has the bare name";
        for (std::uint16_t id = 1; id <= tables.names.size(); ++id) {
            ASSERT_EQ(tables.byteOf(3, id), Tables::kHighest) << "the last resort fits everywhere equally badly";
            if (id != 2) {
                ASSERT_EQ(tables.byteOf(id, 3), Tables::kHighest);
            }
        }
    });
}

}  // namespace
}  // namespace TAVO::importer
