// Lifecycle, errors, analysing, and the handles of results.
#include "c_api/flat_world.hpp"

#include <cstdio>

namespace TAVO::test {
namespace {

class ResultFunctions : public FlatWorld {
protected:
    /// "form/part of speech " of each morpheme.
    static std::string described(tavo_result_t const& result) {
        std::string text;
        for (int i = 0; i < result.count; ++i) {
            char buffer[64] = "";
            EXPECT_GE(tavo_format(result.array[i], "%w/%h ", "", buffer, sizeof buffer), 0);
            text += buffer;
        }
        return text;
    }
};

TEST_F(ResultFunctions, Lifecycle) {
    EXPECT_EQ(tavo_new(-1), nullptr);
    tavo_t* const other = tavo_new(1);
    ASSERT_NE(other, nullptr);
    EXPECT_EQ(tavo_isOK(other), 0);
    EXPECT_EQ(tavo_isOK(tavo), 1);
    EXPECT_EQ(tavo_free(other), 0);
    EXPECT_EQ(tavo_readyForThread(), 0);
    EXPECT_EQ(tavo_readyForThread(), 0);
}

TEST_F(ResultFunctions, ErrorsStayUntilTheNextCallAndReadingThemIsNone) {
    expectFlatError(tavo_analyze(tavo, "", -1), "tavo_analyze");
    EXPECT_STREQ(tavo_getErrorWhat(tavo), "INVALID_ARGUMENT:tavo_analyze()");
    EXPECT_STREQ(tavo_getErrorMessage(-10001), "ERROR_INVALID_ARGUMENT");
    EXPECT_EQ(tavo_getSentenceCount(tavo), 0);
    EXPECT_STREQ(tavo_getErrorWhat(tavo), "");

    tavo_mrph_t* const mrph = compound();
    EXPECT_EQ(tavo_getExt(mrph, 9, nullptr, 0), -10007);
    expectError(mrph, tavo_getMrphErrorCode(mrph), -10007, "RANGE_ERROR: Mrph::getExt()");
    EXPECT_STREQ(tavo_getErrorWhat(tavo), "") << "a morpheme's error is its own";
    EXPECT_EQ(tavo_getPid(mrph), 4);
    EXPECT_EQ(tavo_getMrphErrorCode(mrph), 0);
}

TEST_F(ResultFunctions, AnalysingRefusesBadArguments) {
    Table<char const*, int (*)(tavo_t*, char const*, int)> const cases{{"tavo_analyze", tavo_analyze},
                                                                       {"tavo_analyzeNBest", tavo_analyzeNBest}};
    for (auto const& [name, analyze] : cases) {
        expectFlatError(analyze(tavo, "a", -1), name);
        expectFlatError(analyze(tavo, nullptr, 1), name);
        EXPECT_EQ(analyze(tavo, nullptr, 0), 0);
    }
    std::string const tooLong(8193, 'a');
    expectError(tavo_analyzeNBest(tavo, tooLong.data(), 8193), -10011,
                "TOO_LONG_STRING: Exceed nbest limit: length=8193");
    EXPECT_EQ(tavo_analyzeNBest(tavo, tooLong.data(), 8192), 0);
}

TEST_F(ResultFunctions, ResultsOfASentence) {
    tavo_result_t result{5, nullptr};
    expectError(tavo_getResult(tavo, &result, 0), -10012, "TAVO_NOT_READY: No Analyze: Need to call analyze()");
    EXPECT_EQ(result.count, 0) << "an error leaves the descriptor empty";

    std::string const text = "abcd.d";
    char const* const stops[] = {"."};
    ASSERT_EQ(tavo_setDelimiterString(tavo, stops, 1), 0);
    result = analyze(text);
    EXPECT_EQ(described(result), "abc/Noun d/Noun ./Undef ");
    EXPECT_EQ(tavo_getSentenceCount(tavo), 2);
    EXPECT_EQ(tavo_getSentenceLength(tavo, 0), 5);
    EXPECT_EQ(tavo_getSentenceLength(tavo, 1), 1);
    EXPECT_EQ(tavo_getResult(tavo, &result, 1), 0);
    EXPECT_EQ(described(result), "d/Noun ");

    expectError(tavo_getResult(tavo, &result, 2), -10007, "RANGE_ERROR: Tavo::getResult()");
    expectFlatError(tavo_getResult(tavo, &result, -1), "tavo_getResult");
    expectFlatError(tavo_getResult(tavo, nullptr, 0), "tavo_getResult");
    EXPECT_EQ(tavo_getSentenceLength(tavo, 2), -10007);
    expectFlatError(tavo_getSentenceLength(tavo, -1), "tavo_getSentenceLength");

    result = {5, nullptr};
    ASSERT_EQ(tavo_analyze(tavo, "", 0), 0);
    EXPECT_EQ(tavo_getResult(tavo, &result, 0), 0);
    EXPECT_EQ(result.count, 0);
    EXPECT_EQ(result.array, nullptr);
}

TEST_F(ResultFunctions, NBestFillsOneDescriptorAPath) {
    ASSERT_EQ(tavo_analyzeNBest(tavo, text_.data(), 4), 0);
    tavo_result_t results[3] = {{9, nullptr}, {9, nullptr}, {9, nullptr}};
    ASSERT_EQ(tavo_getResultNBest(tavo, results, 0, 2), 2) << tavo_getErrorWhat(tavo);
    EXPECT_EQ(described(results[0]), "abc/Noun d/Noun ");
    EXPECT_EQ(described(results[1]), "abc/Noun d/Verb ");
    EXPECT_EQ(results[2].count, 9) << "beyond n nothing is written";
    EXPECT_EQ(tavo_getResultNBest(tavo, results, 0, 0), 0);
    EXPECT_EQ(described(results[1]), "abc/Noun d/Verb ") << "n of 0 ends no handle";
    EXPECT_EQ(tavo_getResultNBest(tavo, results, 0, 1), 1);
    EXPECT_EQ(described(results[0]), "abc/Noun d/Noun ");

    expectError(tavo_getResultNBest(tavo, results, 1, 2), -10007, "RANGE_ERROR: Tavo::getResultNBest()");
    for (auto const& [to, sentence, n] : {std::tuple(results, -1, 1), std::tuple(results, 0, -1),
                                          std::tuple(static_cast<tavo_result_t*>(nullptr), 0, 1)}) {
        expectFlatError(tavo_getResultNBest(tavo, to, sentence, n), "tavo_getResultNBest");
    }
}

TEST_F(ResultFunctions, WordsByReadingLiveBesideAnAnalysis) {
    tavo_result_t const analyzed = analyze(text_);
    std::string const reading = toSjis("でぃ");
    tavo_result_t words{};
    ASSERT_EQ(tavo_getByRead(tavo, &words, reading.c_str(), 0), 0) << tavo_getErrorWhat(tavo);
    EXPECT_EQ(described(words), "d/Noun d/Verb ");
    ASSERT_EQ(tavo_getByReadPath(tavo, &words, reading.c_str(), paths.dic.c_str()), 0);
    EXPECT_EQ(described(words), "d/Noun d/Verb ");
    EXPECT_EQ(described(analyzed), "abc/Noun d/Noun ");
    ASSERT_EQ(tavo_getByRead(tavo, &words, "none", 0), 0);
    EXPECT_EQ(words.count, 0);

    expectError(tavo_getByRead(tavo, &words, "", 1), -10007, "RANGE_ERROR: Tavo::getByRead()");
    EXPECT_EQ(tavo_getByReadPath(tavo, &words, "", "no/such"), -10003);
    expectFlatError(tavo_getByRead(tavo, nullptr, "", 0), "tavo_getByRead");
    EXPECT_EQ(tavo_getByRead(tavo, &words, nullptr, 0), -10001);
    expectFlatError(tavo_getByRead(tavo, &words, "", -1), "tavo_getByRead");
    EXPECT_EQ(tavo_getByReadPath(tavo, nullptr, "", ""), -10001);
    EXPECT_EQ(tavo_getByReadPath(tavo, &words, nullptr, ""), -10001);
    expectFlatError(tavo_getByReadPath(tavo, &words, "", nullptr), "tavo_getByReadPath");
}

TEST_F(ResultFunctions, AlternativesAreMorphemesToo) {
    tavo_result_t const result = analyze(text_);
    tavo_mrph_t* const mrph = result.array[1];
    ASSERT_EQ(tavo_getAltCount(mrph), 1);
    EXPECT_EQ(tavo_getAlt(mrph, nullptr, 0), 1);
    tavo_mrph_t* alternatives[2] = {};
    expectError(mrph, tavo_getAlt(mrph, alternatives, 0), -10002, "NOT_ENOUGH_BUFFER:tavo_getAlt()");
    EXPECT_EQ(alternatives[0], nullptr);
    ASSERT_EQ(tavo_getAlt(mrph, alternatives, 2), 1);
    EXPECT_EQ(alternatives[1], nullptr);
    tavo_result_t again{};
    ASSERT_EQ(tavo_getResult(tavo, &again, 0), 0);
    EXPECT_EQ(described({1, alternatives}), "d/Verb ") << "outlives another fetch";
    expectFlatError(again.array[0], tavo_getAlt(again.array[0], alternatives, -1), "tavo_getAlt");
}

TEST_F(ResultFunctions, OutputGoesToAStream) {
    tavo_mrph_t* const mrph = compound();
    std::string const path = dir.file("out.txt");
    FILE* const out = std::fopen(path.c_str(), "w");
    ASSERT_NE(out, nullptr);
    EXPECT_EQ(tavo_output(mrph, out, "%w;", "", 0), 0);
    EXPECT_EQ(tavo_output(mrph, out, "%w,", "", 1), 0);
    EXPECT_EQ(tavo_outputPart(mrph, out, 1, "%w%b.", "-"), 0);
    expectError(mrph, tavo_outputPart(mrph, out, 2, "", ""), -10007, "RANGE_ERROR: Mrph::output()");

    for (int const flag : {-1, 2}) EXPECT_EQ(tavo_output(mrph, out, "", "", flag), -10001);
    EXPECT_EQ(tavo_output(mrph, nullptr, "", "", 0), -10001);
    EXPECT_EQ(tavo_output(mrph, out, nullptr, "", 0), -10001);
    expectFlatError(mrph, tavo_output(mrph, out, "", nullptr, 0), "tavo_output");
    EXPECT_EQ(tavo_outputPart(mrph, nullptr, 0, "", ""), -10001);
    EXPECT_EQ(tavo_outputPart(mrph, out, -1, "", ""), -10001);
    EXPECT_EQ(tavo_outputPart(mrph, out, 0, nullptr, ""), -10001);
    expectFlatError(mrph, tavo_outputPart(mrph, out, 0, "", nullptr), "tavo_outputPart");
    std::fclose(out);
    EXPECT_EQ(readFile(path), "abc;ab,c,c-.");

    FILE* const readOnly = std::fopen(path.c_str(), "r");
    expectError(mrph, tavo_output(mrph, readOnly, "%w", "", 0), -99999, "cannot write: tavo_output()");
    std::fclose(readOnly);
}

}  // namespace
}  // namespace TAVO::test
