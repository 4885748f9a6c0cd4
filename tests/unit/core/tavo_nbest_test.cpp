#include <tavo/tavo.hpp>

#include "dic/pools.hpp"
#include "support/small_world.hpp"
#include "support/temp_dir.hpp"
#include "support/thrown.hpp"

#include <gtest/gtest.h>

#include <deque>
#include <functional>
#include <string>
#include <tuple>
#include <vector>

namespace TAVO {
namespace {

using test::thrown;
using Results = std::vector<std::vector<Mrph>>;
using Lines = std::vector<std::string>;

/// "ab" three ways, and nothing may begin with "z".
class NBestAnalyzer : public testing::Test {
protected:
    void SetUp() override {
        test::SmallWorld world;
        world.names({"BOS", "EOS", "Undef", "Noun", "Verb"});
        world.cost([](unsigned left, unsigned right) -> std::uint8_t {
            if (left == 1 && right == 3) return 255;
            if (left == 3 || right == 3) return 250;
            return static_cast<std::uint8_t>(left == right ? 20 : 10);
        });
        world.line("a,Noun,1").line("b,Verb,2").line("b,Noun,3").line("a-b,Noun-Verb-Noun,40");
        paths_ = world.writeTo(dir_.path());
        tavo_.setConnTablePath(paths_.connTable.c_str());
        tavo_.addDicPath(paths_.dicSpec().c_str(), true);
    }
    void TearDown() override {
        tavo_.offDic();
        sharedPools().dispose();
    }

    /// Keeps the text, which results point into.
    int analyze(std::string text) { return tavo_.analyze(texts_.emplace_back(std::move(text))); }
    int analyzeNBest(std::string text) { return tavo_.analyzeNBest(texts_.emplace_back(std::move(text))); }
    static std::string line(std::vector<Mrph> const& morphemes) {
        std::string text;
        for (Mrph const& m : morphemes) text += m.getForm(true) + "/" + m.getPartOfSP() + " ";
        return text;
    }
    Lines lines(int sentence, int n) {
        Results results;
        tavo_.getResultNBest(results, sentence, n);
        Lines found;
        for (auto const& morphemes : results) found.push_back(line(morphemes));
        return found;
    }
    std::string single(int sentence) {
        std::vector<Mrph> morphemes;
        tavo_.getResult(morphemes, sentence);
        return line(morphemes);
    }

    test::TempDir dir_;
    test::SmallWorld::Paths paths_;
    std::deque<std::string> texts_;
    Tavo tavo_;
};

// Connection sums: begin, between, end. Word costs decide the third and fourth.
//   ab/Noun          10 + 10          word 40
//   a/Noun b/Verb    10 + 10 + 10     word 3
//   a/Noun b/Noun    10 + 20 + 10     word 4
TEST_F(NBestAnalyzer, GivesAnalysesBestFirstWithTheirCosts) {
    EXPECT_EQ(analyzeNBest("ab"), 0);
    Results results;
    std::vector<PathCost> costs;
    tavo_.getResultNBest(results, costs, 0, 3);
    Lines found;
    for (auto const& morphemes : results) found.push_back(line(morphemes));
    EXPECT_EQ(found, (Lines{"ab/Noun ", "a/Noun b/Verb ", "a/Noun b/Noun "}));
    std::vector<std::pair<unsigned, unsigned>> sums;
    for (PathCost const cost : costs) sums.emplace_back(cost.connection, cost.word);
    EXPECT_EQ(sums, (std::vector<std::pair<unsigned, unsigned>>{{20, 40}, {30, 3}, {40, 4}}));
    EXPECT_EQ(lines(0, 2), (Lines{"ab/Noun ", "a/Noun b/Verb "}));
    EXPECT_EQ(lines(0, 1), Lines{single(0)});
    // The last one has the unknown word at the end: 10 + 250 + 255.
    tavo_.getResultNBest(results, costs, 0, 50);
    ASSERT_EQ(results.size(), 4U);
    EXPECT_EQ(line(results[3]), "a/Noun b/Undef ");
    EXPECT_EQ(costs[3].connection, 515U);
    EXPECT_EQ(costs[3].word, 256U);
}

TEST_F(NBestAnalyzer, KeepsTheEdgesOfEverySentence) {
    tavo_.setDelimiterString({"b"});
    EXPECT_EQ(analyzeNBest("abbab"), 0);
    ASSERT_EQ(tavo_.getSentenceCount(), 3U);
    EXPECT_EQ(lines(2, 2), (Lines{"ab/Noun ", "a/Noun b/Verb "}));
    EXPECT_EQ(lines(1, 9), (Lines{"b/Verb ", "b/Noun "}));
    EXPECT_EQ(lines(0, 2), (Lines{"ab/Noun ", "a/Noun b/Verb "}));
}

TEST_F(NBestAnalyzer, NeedsEdgesForMoreThanTheBest) {
    // What was analysed how; results for n = 3.
    struct {
        bool nBest;
        int alternative;
        int cooccurrence;
        std::size_t results;
    } const cases[] = {{false, 0, 0, 1}, {true, 0, 0, 3}, {false, 1, 0, 3}, {false, 0, 1, 3}};
    for (auto const& c : cases) {
        tavo_.setAlternativeMode(c.alternative);
        tavo_.setCooccurrenceMode(c.cooccurrence);
        c.nBest ? analyzeNBest("ab") : analyze("ab");
        EXPECT_EQ(single(0), "ab/Noun ");
        EXPECT_EQ(lines(0, 1), Lines{"ab/Noun "});
        Lines const found = lines(0, 3);
        EXPECT_EQ(found.size(), c.results);
        EXPECT_EQ(found[0], "ab/Noun ");
        std::vector<PathCost> costs;
        Results results;
        tavo_.getResultNBest(results, costs, 0, 3);
        EXPECT_EQ(costs.at(0).connection, 20U);
        EXPECT_EQ(costs.at(0).word, 40U);
    }
}

TEST_F(NBestAnalyzer, GivesTheSameAlternativesWithAndWithoutEdges) {
    for (bool const nBest : {false, true}) {
        nBest ? analyzeNBest("b") : analyze("b");
        std::vector<Mrph> morphemes, others;
        tavo_.getResult(morphemes, 0);
        ASSERT_EQ(morphemes.at(0).getAltCount(), 1) << nBest;
        morphemes[0].getAlt(others);
        EXPECT_EQ(line(others), "b/Noun ");
    }
}

TEST_F(NBestAnalyzer, GivesOneEmptyAnalysisOfAFailedSentence) {
    EXPECT_EQ(analyzeNBest("z"), 1);
    for (int const n : {1, 2, 1000}) EXPECT_EQ(lines(0, n), Lines{""}) << n;
    Results results;
    std::vector<PathCost> costs;
    tavo_.getResultNBest(results, costs, 0, 2);
    ASSERT_EQ(costs.size(), 1U);
    EXPECT_EQ(costs[0].connection, 0U);
}

TEST_F(NBestAnalyzer, DividesWordsInEveryAnalysis) {
    tavo_.setDivideWordMode(1);
    analyzeNBest("ab");
    EXPECT_EQ(lines(0, 2), (Lines{"a/Verb b/Noun ", "a/Noun b/Verb "}));
}

TEST_F(NBestAnalyzer, RefusesBadArgumentsAndLeavesTheResults) {
    constexpr char kRange[] = "RANGE_ERROR: Tavo::getResultNBest()";
    constexpr char kArgument[] = "INVALID_ARGUMENT: Tavo::getResultNBest()";
    constexpr char kNotReady[] = "TAVO_NOT_READY: No Analyze: Need to call analyze()";
    struct {
        char const* text;  // null: nothing was analysed
        int sentence;
        int n;
        char const* what;
    } const cases[] = {
        {nullptr, -1, -1, kRange},  {nullptr, 0, -1, kArgument},    {nullptr, 0, 0, kNotReady},
        {nullptr, 0, 1, kNotReady}, {"ab", -1, 1, kRange},          {"ab", 1, 1, kRange},
        {"ab", 1, 0, kRange},       {"ab", 0, -1, kArgument},       {"ab", 1, -1, kArgument},
        {"", 0, 1, kRange},         {"ab", 0, 0, "nothing thrown"},
    };
    for (auto const& c : cases) {
        if (c.text != nullptr) analyzeNBest(c.text);
        Results results(7);
        EXPECT_EQ(thrown([&] { tavo_.getResultNBest(results, c.sentence, c.n); }), c.what)
            << (c.text == nullptr ? "none" : c.text) << " " << c.sentence << " " << c.n;
        EXPECT_EQ(results.size(), 7U);
    }
    EXPECT_EQ(thrown([&] { tavo_.analyzeNBest("ab", -1); }), "INVALID_ARGUMENT: Tavo::analyzeNBest()");
    EXPECT_EQ(thrown([&] { tavo_.analyzeNBest(nullptr, 1); }), "INVALID_ARGUMENT: Tavo::analyzeNBest()");
    EXPECT_EQ(lines(0, 1).size(), 1U) << "a refused call leaves the analysis before it";
}

TEST_F(NBestAnalyzer, LimitsTheLengthOfALine) {
    EXPECT_EQ(analyzeNBest(std::string(8192, 'a')), 0);
    EXPECT_EQ(lines(0, 2).size(), 2U);
    tavo_.setDelimiterString({"b"});
    EXPECT_EQ(thrown([&] { analyzeNBest("ab" + std::string(8193, 'a')); }),
              "TOO_LONG_STRING: Exceed nbest limit: length=8193");
    EXPECT_EQ(tavo_.getSentenceCount(), 1U) << "sentences before the long one stay";
    EXPECT_EQ(lines(0, 1), Lines{"ab/Noun "});
    // The limit holds for analyzeNBest alone.
    tavo_.clearDelimiterString();
    tavo_.setAlternativeMode(1);
    EXPECT_EQ(analyze(std::string(8193, 'a')), 0);
    EXPECT_EQ(lines(0, 3).size(), 3U);
}

TEST(NBestReadiness, NeedsTableAndDictionary) {
    Tavo tavo;
    EXPECT_EQ(thrown([&] { tavo.analyzeNBest("a"); }), "TAVO_NOT_READY: No ConnTable: Need to call setConnTablePath()");
    test::TempDir const dir;
    tavo.setConnTablePath(test::SmallWorld().line("a,UNK").writeTo(dir.path()).connTable.c_str());
    EXPECT_EQ(thrown([&] { tavo.analyzeNBest("a"); }), "TAVO_NOT_READY: No Dictionary: Need to call addDicPath()");
    sharedPools().dispose();
}

}  // namespace
}  // namespace TAVO
