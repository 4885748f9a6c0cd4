#include <tavo/tavo.hpp>

#include "dic/conn_table_writer.hpp"
#include "dic/pools.hpp"
#include "support/describe.hpp"
#include "support/small_world.hpp"
#include "support/testing.hpp"

#include <deque>

namespace TAVO::test {
namespace {

/// Words of letters: "ab" and its halves, "c" only before the end of a text.
class Analyzer : public testing::Test {
protected:
    void SetUp() override {
        SmallWorld world;
        world.names({"BOS", "EOS", "Undef", "Noun", "End"});
        world.cost([](unsigned left, unsigned right) -> std::uint8_t {
            if (left == 3 || right == 3) return 200;
            return left == 5 && right != 2 ? 255 : 10;
        });
        world.line("a,Noun,1,x").line("b,Noun,2").line("a-b,Noun-Noun-End,3,x/y").line("c,End");
        paths_ = world.writeTo(dir_.path());
    }
    void TearDown() override { sharedPools().dispose(); }

    void attach(Tavo& tavo) const { paths_.attachTo(tavo, true); }
    /// Keeps the text, which results point into.
    int analyze(Tavo& tavo, std::string text) { return tavo.analyze(texts_.emplace_back(std::move(text))); }
    static std::string forms(Tavo& tavo, int sentence) { return describe(morphemesOf(tavo, sentence), "%w"); }
    using Lengths = std::vector<unsigned int>;
    static Lengths lengths(Tavo& tavo, int sentence) {
        Lengths found{7};
        tavo.getLengths(found, sentence);
        return found;
    }

    TempDir dir_;
    SmallWorld::Paths paths_;
    std::deque<std::string> texts_;
};

TEST_F(Analyzer, AnalysesFromEndToEnd) {
    Tavo tavo;
    attach(tavo);
    EXPECT_EQ(analyze(tavo, "abc"), 0);
    EXPECT_EQ(forms(tavo, 0), "ab c");
    EXPECT_EQ(lengths(tavo, 0), (Lengths{2, 1}));
    tavo.setDivideWordMode(1);
    EXPECT_EQ(thrown([&] { forms(tavo, 0); }), "TAVO_NOT_READY: No Analyze: Need to call analyze()");
    analyze(tavo, "abc");
    EXPECT_EQ(forms(tavo, 0), "a b c");
    EXPECT_EQ(lengths(tavo, 0), (Lengths{1, 1, 1}));
    std::ostringstream os;
    tavo.setOutputFormat("%w/%h/%k ");
    tavo.setNullString("-");
    tavo.setEOS("$");
    tavo.output(os, 0);
    EXPECT_EQ(os.str(), "a/Noun/- b/End/- c/End/- $") << "one-byte readings hold no characters";
}

// Nodes of a path are made when somebody asks for more than lengths.
TEST_F(Analyzer, TellsLengthsBeforeAndBehindResults) {
    Tavo tavo;
    attach(tavo);
    tavo.setDelimitCRLFMode(1);
    analyze(tavo, "ab\nc\nabc");
    Lengths const expected[] = {{2, 1}, {1, 1}, {2, 1}};
    for (int sentence : {2, 0, 1, 2}) EXPECT_EQ(lengths(tavo, sentence), expected[sentence]) << sentence;
    EXPECT_EQ(forms(tavo, 2), "ab c");
    for (int sentence : {2, 1, 0}) EXPECT_EQ(lengths(tavo, sentence), expected[sentence]) << sentence;
    EXPECT_EQ(forms(tavo, 0), "ab \n");
    EXPECT_EQ(forms(tavo, 1), "c \n");

    Tavo other;
    attach(other);
    analyze(other, "abc");
    std::vector<std::string> const names{"BOS", "EOS", "Undef", "Noun", "End"};
    std::vector<std::uint16_t> const indexes(names.size(), 0);
    ConnTableContent const smaller{names, indexes, indexes, 1, 1, {10}};
    other.setConnTablePath(dir_.write("smaller", serializeConnTable(smaller)).c_str());
    EXPECT_EQ(lengths(other, 0), expected[2]) << "of the table that it was analysed with";
}

TEST_F(Analyzer, SplitsSentencesAndServesTheirTexts) {
    Tavo tavo;
    attach(tavo);
    tavo.setDelimitCRLFMode(1);
    EXPECT_EQ(analyze(tavo, "ab\nc"), 0);
    ASSERT_EQ(tavo.getSentenceCount(), 2U);
    EXPECT_EQ(std::string(tavo.getSentencePtrWithoutNullEnd(1), 1), "c");
    EXPECT_EQ(forms(tavo, 0), "ab \n");
    tavo.setDelimitCRLFMode(0);
    tavo.setDeleteCRLFMode(1);
    tavo.setOutputConvertMode(3);
    analyze(tavo, "a\nb");
    EXPECT_EQ(forms(tavo, 0), "a\nb") << "mode 3 answers the text as given";
    EXPECT_EQ(tavo.getSentence(0), "ab");
    EXPECT_EQ(tavo.getAnalyzedText(0), "a\nb");
    analyze(tavo, "");
    EXPECT_EQ(tavo.getSentenceCount(), 0U);
    EXPECT_EQ(tavo.getSentence(7), "");
    EXPECT_EQ(forms(tavo, 7), "");
}

TEST_F(Analyzer, KeepsTextsThatNobodyElseKeeps) {
    std::string longer;
    for (int i = 0; i < 40; ++i) longer += "ab ";
    std::string const longForms = [&] {
        Tavo tavo;
        attach(tavo);
        tavo.analyze(longer);
        return forms(tavo, 0);
    }();
    Table<char const*, std::function<int(Tavo&)>, std::string> const cases{
        {"literal", [](Tavo& t) { return t.analyze("abc"); }, "ab c"},
        {"short temporary", [](Tavo& t) { return t.analyze(std::string("abc")); }, "ab c"},
        {"long temporary", [&](Tavo& t) { return t.analyze(longer + ""); }, longForms},
        {"n-best literal", [](Tavo& t) { return t.analyzeNBest("abc"); }, "ab c"},
        {"n-best short temporary", [](Tavo& t) { return t.analyzeNBest(std::string("abc")); }, "ab c"},
        {"n-best long temporary", [&](Tavo& t) { return t.analyzeNBest(longer + ""); }, longForms},
    };
    Tavo tavo;
    attach(tavo);
    for (auto const& [name, analyzeIt, expected] : cases) {
        EXPECT_EQ(analyzeIt(tavo), 0) << name;
        std::vector<std::string> const others(100, std::string(longer.size(), 'z'));  // take what was freed
        EXPECT_EQ(forms(tavo, 0), expected) << name;
        EXPECT_EQ(analyze(tavo, tavo.getSentencePtrWithoutNullEnd(0)), 0) << name << ": again, from its own text";
    }
}

TEST_F(Analyzer, RecordsSentencesWithoutAPath) {
    // No text may begin with the unknown word.
    SmallWorld world;
    world.names({"BOS", "EOS", "Undef", "Noun", "End"}).line("a,Noun");
    world.cost([](unsigned left, unsigned right) -> std::uint8_t { return left == 1 && right == 3 ? 255 : 9; });
    paths_ = world.writeTo(dir_.path());
    Tavo tavo;
    attach(tavo);
    tavo.setDelimitCRLFMode(1);
    EXPECT_EQ(analyze(tavo, "a\nz\na"), 1);
    EXPECT_EQ(tavo.getErrorSentenceIndex(), std::vector<unsigned>{1});
    tavo.clearError();
    EXPECT_EQ(describeAll(tavo), "a:Noun \n:Undef | !z\n | a:Noun");
    analyze(tavo, "a");
    EXPECT_TRUE(tavo.getErrorSentenceIndex().empty());
}

/// The others are in the flat interface's tests.
TEST_F(Analyzer, ErrorTexts) {
    Tavo tavo, onlyTable, ready;
    onlyTable.setConnTablePath(paths_.connTable.c_str());
    attach(ready);
    analyze(ready, "a");
    std::vector<Mrph> out;
    Table<std::function<void()>, char const*> const cases{
        {[] { Tavo(-1); }, "INVALID_ARGUMENT: Tavo::Tavo()"},
        {[&] { tavo.analyze("a", -1); }, "INVALID_ARGUMENT: Tavo::analyze()"},
        {[&] { analyze(tavo, "a"); }, "TAVO_NOT_READY: No ConnTable: Need to call setConnTablePath()"},
        {[&] { tavo.analyzeNBest("a"); }, "TAVO_NOT_READY: No ConnTable: Need to call setConnTablePath()"},
        {[&] { analyze(onlyTable, "a"); }, "TAVO_NOT_READY: No Dictionary: Need to call addDicPath()"},
        {[&] { onlyTable.analyzeNBest("a"); }, "TAVO_NOT_READY: No Dictionary: Need to call addDicPath()"},
        {[&] { tavo.analyzeNBest("a", -1); }, "INVALID_ARGUMENT: Tavo::analyzeNBest()"},
        {[&] { tavo.analyzeNBest(nullptr, 1); }, "INVALID_ARGUMENT: Tavo::analyzeNBest()"},
        {[&] { Tavo().getResult(out, -1); }, "RANGE_ERROR: Tavo::getResult()"},
        {[&] { ready.getSentenceLength(-1); }, "RANGE_ERROR: Tavo::getSentenceLength()"},
        {[&] { ready.getSentencePtrWithoutNullEnd(1); }, "RANGE_ERROR Tavo::getSentencePtrWithoutNullEnd()"},
        {[&] { tavo.setExtCombineMode(-1, 0, ""); }, "RANGE_ERROR: Tavo::setExtCombineMode()"},
        {[&] { tavo.getExtCombineMode(-1); }, "RANGE_ERROR: Tavo::getExtCombineMode()"},
        {[&] { tavo.setOutputFormat(nullptr); }, "INVALID_ARGUMENT: Tavo::setOutputFormat()"},
        {[&] { tavo.setNullString(nullptr); }, "INVALID_ARGUMENT: Tavo::setNullString()"},
        {[&] { tavo.setEOS(nullptr); }, "INVALID_ARGUMENT: Tavo::setEOS()"},
        {[&] { tavo.setConnTablePath(nullptr); }, "INVALID_ARGUMENT: Tavo::setConnTablePath()"},
    };
    for (auto const& [action, expected] : cases) EXPECT_EQ(thrown(action), expected);
    EXPECT_EQ(forms(ready, 0), "a") << "errors leave the results alone";
}

TEST_F(Analyzer, ModeSettersDropResultsEvenWhenTheyFail) {
    Tavo tavo;
    attach(tavo);
    analyze(tavo, "a");
    EXPECT_TRUE(tavo.hasResult());
    EXPECT_THROW(tavo.setCooccurrenceMode(5), std::invalid_argument);
    EXPECT_FALSE(tavo.hasResult());
    analyze(tavo, "a");
    tavo.setNullString("x");
    EXPECT_TRUE(tavo.hasResult());
}

TEST_F(Analyzer, CopiesShareDictionariesAndCountThem) {
    auto const users = [] { return sharedPools().DIC_USED.begin()->second; };
    Tavo first;
    EXPECT_FALSE(static_cast<bool>(first));
    attach(first);
    EXPECT_TRUE(static_cast<bool>(first));
    first.setDivideWordMode(1);
    EXPECT_EQ(users(), 1);
    {
        Tavo copy(first);
        Tavo assigned;
        assigned = copy;
        assigned = copy;
        EXPECT_EQ(users(), 3);
        analyze(assigned, "ab");
        EXPECT_EQ(forms(assigned, 0), "a b");
        EXPECT_FALSE(copy.hasResult());
        EXPECT_EQ(sharedPools().ObjectCount, 3U);
    }
    EXPECT_EQ(users(), 1);
    first.offDic();
    EXPECT_EQ(users(), 0);
    EXPECT_EQ(sharedPools().DIC_POOL.size(), 1U) << "pooled dictionaries stay until dispose";
}

TEST_F(Analyzer, RefusesADictionaryOfOtherNames) {
    std::string const dic =
        dir_.write("other", SmallWorld().names({"BOS", "EOS", "Undef", "Verb"}).line("v,Verb").dictionary());
    std::string const error = "NOT_ADAPTABLE: " + paths_.connTable + ": " + dic;
    Tavo tavo, reverse;
    EXPECT_EQ(thrown([&] { (paths_.attachTo(tavo), tavo.addDicPath(dic.c_str(), true)); }), error);
    EXPECT_EQ(thrown([&] { (reverse.addDicPath(dic.c_str(), true), paths_.attachTo(reverse)); }), error);
}

TEST(Errors, CodesAndPrefixes) {
    Table<std::function<void()>, int, char const*, char const*> const cases{
        {[] { throw std::bad_alloc(); }, -10000, "ERROR_BAD_ALLOC", "bad allocation"},
        {[] { throw std::bad_array_new_length(); }, -10000, "ERROR_BAD_ALLOC", "bad allocation"},
        {[] { throw std::invalid_argument("x"); }, -10001, "ERROR_INVALID_ARGUMENT", "x"},
        {[] { throw file_not_found("abc"); }, -10003, "ERROR_FILE_NOT_OPEN", "FILE_NOT_OPEN: abc"},
        {[] { throw illegal_format("abc"); }, -10004, "ERROR_ILLEGAL_FORMAT", "ILLEGAL_FORMAT: abc"},
        {[] { throw illegal_part_of_speech("a"); }, -10005, "ERROR_ILLEGAL_PART_OF_SPEECH",
         "ILLEGAL_PART_OF_SPEECH: a"},
        {[] { throw busy_dictionary("a"); }, -10006, "ERROR_BUSY_DICTIONARY", "BUSY_DICTIONARY: a"},
        {[] { throw std::range_error("x"); }, -10007, "ERROR_INVALID_RANGE", "x"},
        {[] { throw std::length_error("x"); }, -10008, "ERROR_LOGIC", "x"},
        {[] { throw not_adaptable("a"); }, -10009, "ERROR_NOT_ADAPTABLE", "NOT_ADAPTABLE: a"},
        {[] { throw unknown_setting("abc"); }, -10010, "ERROR_UNKNOWN_SETTING", "UNKNOWN_SETTING:abc"},
        {[] { throw too_long_string("a"); }, -10011, "ERROR_TOO_LONG_STRING", "TOO_LONG_STRING: a"},
        {[] { throw tavo_not_ready("a"); }, -10012, "ERROR_NOT_READY", "TAVO_NOT_READY: a"},
        {[] { throw invalid_dictionary_version("3"); }, -10013, "ERROR_UNKNOWN", "INVALID_DIC_VERSION:3"},
        {[] { throw invalid_dictionary_char_type("3"); }, -10014, "ERROR_UNKNOWN", "INVALID_DIC_CHAR_TYPE:3"},
        {[] { throw std::runtime_error("x"); }, -99999, "ERROR_UNKNOWN", "x"},
        {[] { throw 1; }, -99999, "ERROR_UNKNOWN", "ERROR_UNKNOWN"},
    };
    for (auto const& [thrower, code, name, what] : cases) {
        std::string text;
        try {
            thrower();
        } catch (...) {
            EXPECT_EQ(currentExceptionCode(text), code);
        }
        EXPECT_EQ(text, what);
        EXPECT_STREQ(getErrorMessage(code), name);
    }
    Table<int, char const*> const others{{7, "ERROR_NONE"},
                                         {0, "ERROR_NONE"},
                                         {-10002, "ERROR_NOT_ENOUGH_BUFFER"},
                                         {-1, "ERROR_UNKNOWN"},
                                         {-9999, "ERROR_UNKNOWN"}};
    for (auto const& [code, name] : others) EXPECT_STREQ(getErrorMessage(code), name) << code;
}

}  // namespace
}  // namespace TAVO::test
