// Lifecycle, errors, analysing, and the handles of results.
#include "c_api/flat_world.hpp"

#include <cstdio>

namespace TAVO::test {
namespace {

class ResultFunctions : public FlatWorld {
protected:
    static std::string form(tavo_mrph_t* mrph) {
        char buffer[32] = "";
        EXPECT_GE(tavo_getForm(mrph, 1, buffer, sizeof buffer), 0);
        return buffer;
    }
    static std::string partsOfSpeech(tavo_result_t const& result) {
        std::string names;
        for (int i = 0; i < result.count; ++i) {
            char buffer[32] = "";
            EXPECT_GE(tavo_getPartOfSP(result.array[i], buffer, sizeof buffer), 0);
            names += std::string(buffer) + " ";
        }
        return names;
    }
    void expectFlatError(char const* function) {
        EXPECT_EQ(tavo_getErrorWhat(tavo), std::string("INVALID_ARGUMENT:") + function + "()");
    }
};

TEST_F(ResultFunctions, Lifecycle) {
    EXPECT_EQ(tavo_new(-1), nullptr);
    EXPECT_EQ(tavo_free(nullptr), -10001);
    tavo_t* const other = tavo_new(1);
    ASSERT_NE(other, nullptr);
    EXPECT_EQ(tavo_isOK(other), 0);
    EXPECT_EQ(tavo_isOK(tavo), 1);
    EXPECT_EQ(tavo_isOK(nullptr), -10001);
    EXPECT_EQ(tavo_free(other), 0);
    EXPECT_EQ(tavo_readyForThread(), 0);
    EXPECT_EQ(tavo_readyForThread(), 0);
}

TEST_F(ResultFunctions, NamesOfCodes) {
    for (auto const& [code, name] : {std::pair(7, "ERROR_NONE"),
                                     {-10000, "ERROR_BAD_ALLOC"},
                                     {-10012, "ERROR_NOT_READY"},
                                     {-10013, "ERROR_UNKNOWN"}})
        EXPECT_STREQ(tavo_getErrorMessage(code), name) << code;
}

TEST_F(ResultFunctions, ErrorsStayUntilTheNextCallAndReadingThemIsNone) {
    EXPECT_STREQ(tavo_getErrorWhat(nullptr), "INVALID_ARGUMENT:tavo_getErrorWhat()");
    EXPECT_STREQ(tavo_getMrphErrorWhat(nullptr), "INVALID_ARGUMENT:tavo_getMrphErrorWhat()");
    EXPECT_EQ(tavo_getMrphErrorCode(nullptr), -10001);
    EXPECT_EQ(tavo_analyze(tavo, "", -1), -10001);
    expectFlatError("tavo_analyze");
    expectFlatError("tavo_analyze");
    EXPECT_EQ(tavo_getSentenceCount(tavo), 0);
    EXPECT_STREQ(tavo_getErrorWhat(tavo), "");

    tavo_mrph_t* const mrph = compound();
    EXPECT_EQ(tavo_getExt(mrph, 9, nullptr, 0), -10007);
    EXPECT_EQ(tavo_getMrphErrorCode(mrph), -10007);
    EXPECT_STREQ(tavo_getMrphErrorWhat(mrph), "RANGE_ERROR: Mrph::getExt()");
    EXPECT_STREQ(tavo_getErrorWhat(tavo), "") << "a morpheme's error is its own";
    EXPECT_EQ(tavo_getPid(mrph), 4);
    EXPECT_EQ(tavo_getMrphErrorCode(mrph), 0);
}

TEST_F(ResultFunctions, AnalysingRefusesBadArguments) {
    struct Case {
        char const* name;
        int (*analyze)(tavo_t*, char const*, int);
    };
    for (auto const& [name, analyze] :
         {Case{"tavo_analyze", tavo_analyze}, Case{"tavo_analyzeNBest", tavo_analyzeNBest}}) {
        EXPECT_EQ(analyze(tavo, "a", -1), -10001);
        expectFlatError(name);
        EXPECT_EQ(analyze(tavo, nullptr, 1), -10001);
        expectFlatError(name);
        EXPECT_EQ(analyze(tavo, nullptr, 0), 0);
        EXPECT_EQ(analyze(nullptr, "a", 1), -10001);
    }
    std::string const tooLong(8193, 'a');
    EXPECT_EQ(tavo_analyzeNBest(tavo, tooLong.data(), 8193), -10011);
    EXPECT_STREQ(tavo_getErrorWhat(tavo), "TOO_LONG_STRING: Exceed nbest limit: length=8193");
    EXPECT_EQ(tavo_analyzeNBest(tavo, tooLong.data(), 8192), 0);
}

TEST_F(ResultFunctions, ResultsOfASentence) {
    tavo_result_t result{5, nullptr};
    EXPECT_EQ(tavo_getResult(tavo, &result, 0), -10012);
    EXPECT_STREQ(tavo_getErrorWhat(tavo), "TAVO_NOT_READY: No Analyze: Need to call analyze()");
    EXPECT_EQ(result.count, 0) << "an error leaves the descriptor empty";

    std::string const text = "abcd.d";
    char const* const stops[] = {"."};
    ASSERT_EQ(tavo_setDelimiterString(tavo, stops, 1), 0);
    result = analyze(text);
    ASSERT_EQ(result.count, 3);
    EXPECT_EQ(form(result.array[0]) + " " + form(result.array[1]) + " " + form(result.array[2]), "abc d .");
    EXPECT_EQ(tavo_getSentenceCount(tavo), 2);
    EXPECT_EQ(tavo_getSentenceLength(tavo, 0), 5);
    EXPECT_EQ(tavo_getSentenceLength(tavo, 1), 1);
    EXPECT_EQ(tavo_getResult(tavo, &result, 1), 0);
    ASSERT_EQ(result.count, 1);
    EXPECT_EQ(form(result.array[0]), "d");

    EXPECT_EQ(tavo_getResult(tavo, &result, 2), -10007);
    EXPECT_STREQ(tavo_getErrorWhat(tavo), "RANGE_ERROR: Tavo::getResult()");
    EXPECT_EQ(tavo_getResult(tavo, &result, -1), -10001);
    expectFlatError("tavo_getResult");
    EXPECT_EQ(tavo_getResult(tavo, nullptr, 0), -10001);
    expectFlatError("tavo_getResult");
    EXPECT_EQ(tavo_getResult(nullptr, &result, 0), -10001);
    EXPECT_EQ(tavo_getSentenceLength(tavo, 2), -10007);
    EXPECT_EQ(tavo_getSentenceLength(tavo, -1), -10001);
    expectFlatError("tavo_getSentenceLength");
    EXPECT_EQ(tavo_getSentenceLength(nullptr, 0), -10001);
    EXPECT_EQ(tavo_getSentenceCount(nullptr), -10001);

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
    EXPECT_EQ(partsOfSpeech(results[0]), "Noun Noun ");
    EXPECT_EQ(partsOfSpeech(results[1]), "Noun Verb ");
    EXPECT_EQ(results[2].count, 9) << "beyond n nothing is written";
    EXPECT_EQ(tavo_getResultNBest(tavo, results, 0, 0), 0);
    EXPECT_EQ(partsOfSpeech(results[1]), "Noun Verb ") << "n of 0 ends no handle";
    EXPECT_EQ(tavo_getResultNBest(tavo, results, 0, 1), 1);
    EXPECT_EQ(partsOfSpeech(results[0]), "Noun Noun ");

    EXPECT_EQ(tavo_getResultNBest(tavo, results, 1, 2), -10007);
    EXPECT_STREQ(tavo_getErrorWhat(tavo), "RANGE_ERROR: Tavo::getResultNBest()");
    EXPECT_EQ(tavo_getResultNBest(nullptr, results, 0, 2), -10001);
    for (auto const& [to, sentence, n] : {std::tuple(results, -1, 1), std::tuple(results, 0, -1),
                                          std::tuple(static_cast<tavo_result_t*>(nullptr), 0, 1)}) {
        EXPECT_EQ(tavo_getResultNBest(tavo, to, sentence, n), -10001);
        expectFlatError("tavo_getResultNBest");
    }
}

TEST_F(ResultFunctions, WordsByReadingLiveBesideAnAnalysis) {
    tavo_result_t const analyzed = analyze(text_);
    std::string const reading = toSjis("でぃ");
    tavo_result_t words{};
    ASSERT_EQ(tavo_getByRead(tavo, &words, reading.c_str(), 0), 0) << tavo_getErrorWhat(tavo);
    EXPECT_EQ(partsOfSpeech(words), "Noun Verb ");
    EXPECT_EQ(form(words.array[1]), "d");
    ASSERT_EQ(tavo_getByReadPath(tavo, &words, reading.c_str(), paths.dic.c_str()), 0);
    EXPECT_EQ(partsOfSpeech(words), "Noun Verb ");
    EXPECT_EQ(form(analyzed.array[0]), "abc");
    ASSERT_EQ(tavo_getByRead(tavo, &words, "none", 0), 0);
    EXPECT_EQ(words.count, 0);

    EXPECT_EQ(tavo_getByRead(tavo, &words, "", 1), -10007);
    EXPECT_STREQ(tavo_getErrorWhat(tavo), "RANGE_ERROR: Tavo::getByRead()");
    EXPECT_EQ(tavo_getByReadPath(tavo, &words, "", "no/such"), -10003);
    EXPECT_EQ(tavo_getByRead(tavo, nullptr, "", 0), -10001);
    expectFlatError("tavo_getByRead");
    EXPECT_EQ(tavo_getByRead(tavo, &words, nullptr, 0), -10001);
    EXPECT_EQ(tavo_getByRead(tavo, &words, "", -1), -10001);
    expectFlatError("tavo_getByRead");
    EXPECT_EQ(tavo_getByReadPath(tavo, nullptr, "", ""), -10001);
    EXPECT_EQ(tavo_getByReadPath(tavo, &words, nullptr, ""), -10001);
    EXPECT_EQ(tavo_getByReadPath(tavo, &words, "", nullptr), -10001);
    expectFlatError("tavo_getByReadPath");
    EXPECT_EQ(tavo_getByRead(nullptr, &words, "", 0), -10001);
    EXPECT_EQ(tavo_getByReadPath(nullptr, &words, "", ""), -10001);
}

TEST_F(ResultFunctions, AlternativesAreMorphemesToo) {
    tavo_result_t const result = analyze(text_);
    tavo_mrph_t* const mrph = result.array[1];
    ASSERT_EQ(tavo_getAltCount(mrph), 1);
    EXPECT_EQ(tavo_getAlt(mrph, nullptr, 0), 1);
    tavo_mrph_t* alternatives[2] = {};
    EXPECT_EQ(tavo_getAlt(mrph, alternatives, 0), -10002);
    EXPECT_STREQ(tavo_getMrphErrorWhat(mrph), "NOT_ENOUGH_BUFFER:tavo_getAlt()");
    EXPECT_EQ(alternatives[0], nullptr);
    ASSERT_EQ(tavo_getAlt(mrph, alternatives, 2), 1);
    EXPECT_EQ(alternatives[1], nullptr);
    tavo_result_t again{};
    ASSERT_EQ(tavo_getResult(tavo, &again, 0), 0);
    EXPECT_EQ(partsOfSpeech({1, alternatives}), "Verb ") << "outlives another fetch";
    EXPECT_EQ(tavo_getAlt(again.array[0], alternatives, -1), -10001);
    EXPECT_STREQ(tavo_getMrphErrorWhat(again.array[0]), "INVALID_ARGUMENT:tavo_getAlt()");
    EXPECT_EQ(tavo_getAlt(nullptr, alternatives, 1), -10001);
}

TEST_F(ResultFunctions, OutputGoesToAStream) {
    tavo_mrph_t* const mrph = compound();
    std::string const path = dir.file("out.txt");
    FILE* const out = std::fopen(path.c_str(), "w");
    ASSERT_NE(out, nullptr);
    EXPECT_EQ(tavo_output(mrph, out, "%w;", "", 0), 0);
    EXPECT_EQ(tavo_output(mrph, out, "%w,", "", 1), 0);
    EXPECT_EQ(tavo_outputPart(mrph, out, 1, "%w%b.", "-"), 0);
    EXPECT_EQ(tavo_outputPart(mrph, out, 2, "", ""), -10007);
    EXPECT_STREQ(tavo_getMrphErrorWhat(mrph), "RANGE_ERROR: Mrph::output()");

    for (int const flag : {-1, 2}) EXPECT_EQ(tavo_output(mrph, out, "", "", flag), -10001);
    EXPECT_EQ(tavo_output(mrph, nullptr, "", "", 0), -10001);
    EXPECT_EQ(tavo_output(mrph, out, nullptr, "", 0), -10001);
    EXPECT_EQ(tavo_output(mrph, out, "", nullptr, 0), -10001);
    EXPECT_STREQ(tavo_getMrphErrorWhat(mrph), "INVALID_ARGUMENT:tavo_output()");
    EXPECT_EQ(tavo_outputPart(mrph, nullptr, 0, "", ""), -10001);
    EXPECT_EQ(tavo_outputPart(mrph, out, -1, "", ""), -10001);
    EXPECT_EQ(tavo_outputPart(mrph, out, 0, nullptr, ""), -10001);
    EXPECT_EQ(tavo_outputPart(mrph, out, 0, "", nullptr), -10001);
    EXPECT_STREQ(tavo_getMrphErrorWhat(mrph), "INVALID_ARGUMENT:tavo_outputPart()");
    EXPECT_EQ(tavo_output(nullptr, out, "", "", 0), -10001);
    EXPECT_EQ(tavo_outputPart(nullptr, out, 0, "", ""), -10001);
    std::fclose(out);
    EXPECT_EQ(readFile(path), "abc;ab,c,c-.");

    FILE* const readOnly = std::fopen(path.c_str(), "r");
    EXPECT_EQ(tavo_output(mrph, readOnly, "%w", "", 0), -99999);
    EXPECT_STREQ(tavo_getMrphErrorWhat(mrph), "cannot write: tavo_output()");
    std::fclose(readOnly);
}

}  // namespace
}  // namespace TAVO::test
