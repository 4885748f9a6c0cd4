#include <tavo/tavo.hpp>

#include "dic/pools.hpp"
#include "support/describe.hpp"
#include "support/small_world.hpp"
#include "support/testing.hpp"

#include <deque>

namespace TAVO::test {
namespace {

using Results = std::vector<std::vector<Mrph>>;
using Lines = std::vector<std::string>;

/// "ab" three ways, and nothing may begin with "z".
class NBestAnalyzer : public testing::Test {
protected:
    void SetUp() override {
        SmallWorld world;
        world.names({"BOS", "EOS", "Undef", "Noun", "Verb"});
        world.cost([](unsigned left, unsigned right) -> std::uint8_t {
            if (left == 1 && right == 3) return 255;
            if (left == 3 || right == 3) return 250;
            return static_cast<std::uint8_t>(left == right ? 20 : 10);
        });
        world.line("a,Noun,1").line("b,Verb,2").line("b,Noun,3").line("a-b,Noun-Verb-Noun,40");
        world.writeTo(dir_.path()).attachTo(tavo_, true);
    }
    void TearDown() override {
        tavo_.offDic();
        sharedPools().dispose();
    }

    /// Keeps the text, which results point into.
    int analyze(std::string text) { return tavo_.analyze(texts_.emplace_back(std::move(text))); }
    int analyzeNBest(std::string text) { return tavo_.analyzeNBest(texts_.emplace_back(std::move(text))); }
    Lines lines(int sentence, int n) {
        Results results;
        tavo_.getResultNBest(results, sentence, n);
        Lines found;
        for (auto const& morphemes : results) found.push_back(describe(morphemes));
        return found;
    }
    /// With connection + word cost behind each analysis.
    Lines costed(int sentence, int n) {
        Results results;
        std::vector<PathCost> costs;
        tavo_.getResultNBest(results, costs, sentence, n);
        EXPECT_EQ(costs.size(), results.size());
        Lines found;
        for (std::size_t i = 0; i < costs.size(); ++i)
            found.push_back(describe(results[i]) + " " + std::to_string(costs[i].connection) + "+" +
                            std::to_string(costs[i].word));
        return found;
    }
    /// What asking for results throws; it leaves their list as it was.
    std::string errorOf(int sentence, int n) {
        Results results(7);
        std::string const text = thrown([&] { tavo_.getResultNBest(results, sentence, n); });
        EXPECT_EQ(results.size(), 7U);
        return text;
    }
    std::string single(int sentence) { return describe(morphemesOf(tavo_, sentence)); }

    TempDir dir_;
    std::deque<std::string> texts_;
    Tavo tavo_;
};

// Connection sums: begin, between, end. Word costs decide the third and fourth.
//   ab/Noun          10 + 10          word 40
//   a/Noun b/Verb    10 + 10 + 10     word 3
//   a/Noun b/Noun    10 + 20 + 10     word 4
TEST_F(NBestAnalyzer, GivesAnalysesBestFirstWithTheirCosts) {
    EXPECT_EQ(analyzeNBest("ab"), 0);
    // The last one has the unknown word at the end: 10 + 250 + 255.
    Lines const all{"ab:Noun 20+40", "a:Noun b:Verb 30+3", "a:Noun b:Noun 40+4", "a:Noun b:Undef 515+256"};
    EXPECT_EQ(costed(0, 50), all);
    EXPECT_EQ(costed(0, 3), Lines(all.begin(), all.begin() + 3));
    EXPECT_EQ(lines(0, 2), (Lines{"ab:Noun", "a:Noun b:Verb"}));
    EXPECT_EQ(lines(0, 1), Lines{single(0)});
}

TEST_F(NBestAnalyzer, KeepsTheEdgesOfEverySentence) {
    tavo_.setDelimiterString({"b"});
    EXPECT_EQ(analyzeNBest("abbab"), 0);
    ASSERT_EQ(tavo_.getSentenceCount(), 3U);
    EXPECT_EQ(lines(2, 2), (Lines{"ab:Noun", "a:Noun b:Verb"}));
    EXPECT_EQ(lines(1, 9), (Lines{"b:Verb", "b:Noun"}));
    EXPECT_EQ(lines(0, 2), (Lines{"ab:Noun", "a:Noun b:Verb"}));
}

TEST_F(NBestAnalyzer, NeedsEdgesForMoreThanTheBest) {
    // What was analysed how; results for n = 3.
    Table<bool, int, int, std::size_t> const cases{
        {false, 0, 0, 1}, {true, 0, 0, 3}, {false, 1, 0, 3}, {false, 0, 1, 3}};
    for (auto const& [nBest, alternative, cooccurrence, count] : cases) {
        tavo_.setAlternativeMode(alternative);
        tavo_.setCooccurrenceMode(cooccurrence);
        nBest ? analyzeNBest("ab") : analyze("ab");
        EXPECT_EQ(single(0), "ab:Noun");
        EXPECT_EQ(lines(0, 1), Lines{"ab:Noun"});
        EXPECT_EQ(lines(0, 3).size(), count);
        EXPECT_EQ(costed(0, 3).at(0), "ab:Noun 20+40");
    }
}

TEST_F(NBestAnalyzer, GivesTheSameAlternativesWithAndWithoutEdges) {
    for (bool const nBest : {false, true}) {
        nBest ? analyzeNBest("b") : analyze("b");
        std::vector<Mrph> others;
        morphemesOf(tavo_).at(0).getAlt(others);
        EXPECT_EQ(describe(others), "b:Noun") << nBest;
    }
}

TEST_F(NBestAnalyzer, AlternativeModeGivesWordsOfEveryLength) {
    // Modes; alternatives of the first morpheme of the three analyses ab, a b (Verb), a b (Noun).
    Table<int, int, Lines> const cases{
        {0, 0, {"", "", ""}}, {0, 1, {"", "", ""}}, {1, 0, {"a:Noun", "ab:Noun", "ab:Noun"}}};
    for (auto const& [alternative, cooccurrence, expected] : cases) {
        tavo_.setAlternativeMode(alternative);
        tavo_.setCooccurrenceMode(cooccurrence);
        alternative + cooccurrence > 0 ? analyze("ab") : analyzeNBest("ab");
        Results results;
        tavo_.getResultNBest(results, 0, 3);
        Lines found;
        for (auto const& morphemes : results) {
            std::vector<Mrph> others;
            morphemes.at(0).getAlt(others);
            EXPECT_EQ(morphemes.at(0).getAltCount(), static_cast<int>(others.size()));
            found.push_back(describe(others));
            EXPECT_EQ(morphemes.back().getAltCount(), morphemes.size() > 1 || alternative == 1 ? 1 : 0);
        }
        EXPECT_EQ(found, expected) << alternative << cooccurrence;
    }
}

TEST_F(NBestAnalyzer, GivesOneEmptyAnalysisOfAFailedSentence) {
    EXPECT_EQ(analyzeNBest("z"), 1);
    for (int const n : {1, 2, 1000}) EXPECT_EQ(lines(0, n), Lines{""}) << n;
    EXPECT_EQ(costed(0, 2), Lines{" 0+0"});
}

TEST_F(NBestAnalyzer, DividesWordsInEveryAnalysis) {
    tavo_.setDivideWordMode(1);
    analyzeNBest("ab");
    EXPECT_EQ(lines(0, 2), (Lines{"a:Verb b:Noun", "a:Noun b:Verb"}));
}

TEST_F(NBestAnalyzer, RefusesBadArgumentsAndLeavesTheResults) {
    constexpr char kRange[] = "RANGE_ERROR: Tavo::getResultNBest()";
    constexpr char kArgument[] = "INVALID_ARGUMENT: Tavo::getResultNBest()";
    constexpr char kNotReady[] = "TAVO_NOT_READY: No Analyze: Need to call analyze()";
    // Text (null: nothing was analysed), sentence and n.
    Table<char const*, int, int, char const*> const cases{
        {nullptr, -1, -1, kRange},  {nullptr, 0, -1, kArgument},    {nullptr, 0, 0, kNotReady},
        {nullptr, 0, 1, kNotReady}, {"ab", -1, 1, kRange},          {"ab", 1, 1, kRange},
        {"ab", 1, 0, kRange},       {"ab", 0, -1, kArgument},       {"ab", 1, -1, kArgument},
        {"", 0, 1, kRange},         {"ab", 0, 0, "nothing thrown"},
    };
    for (auto const& [text, sentence, n, what] : cases) {
        if (text != nullptr) analyzeNBest(text);
        EXPECT_EQ(errorOf(sentence, n), what) << (text == nullptr ? "none" : text) << " " << sentence << " " << n;
    }
    EXPECT_ANY_THROW(tavo_.analyzeNBest("ab", -1));
    EXPECT_EQ(lines(0, 1).size(), 1U) << "a refused call leaves the analysis before it";
}

TEST_F(NBestAnalyzer, LimitsTheLengthOfALine) {
    EXPECT_EQ(analyzeNBest(std::string(8192, 'a')), 0);
    EXPECT_EQ(lines(0, 2).size(), 2U);
    tavo_.setDelimiterString({"b"});
    EXPECT_EQ(thrown([&] { analyzeNBest("ab" + std::string(8193, 'a')); }),
              "TOO_LONG_STRING: Exceed nbest limit: length=8193");
    EXPECT_EQ(tavo_.getSentenceCount(), 1U) << "sentences before the long one stay";
    EXPECT_EQ(lines(0, 1), Lines{"ab:Noun"});
    // The limit holds for analyzeNBest alone.
    tavo_.clearDelimiterString();
    tavo_.setAlternativeMode(1);
    EXPECT_EQ(analyze(std::string(8193, 'a')), 0);
    EXPECT_EQ(lines(0, 3).size(), 3U);
}

}  // namespace
}  // namespace TAVO::test
