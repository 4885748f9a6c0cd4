// Every function refuses a handle that is null.
#include "fuzz/api_calls.hpp"
#include "support/testing.hpp"

#include <tavo/tavo.h>
#include <tavo/tavo_bulk.h>

namespace TAVO::test {
namespace {

template <class Result, class Handle, class... Rest>
Result ofNull(Result (*call)(Handle*, Rest...)) {
    return call(nullptr, Rest{}...);
}

TEST(NullHandles, AreRefused) {
    auto const expectRefused = [](auto... calls) {
        int number = 0;
        for (int const code : {ofNull(calls)...}) EXPECT_EQ(code, -10001) << "function " << number++;
    };
    std::apply(expectRefused, kMrphValues);
    std::apply(expectRefused, kMrphNumbers);
    std::apply(expectRefused, kMrphTexts);
    std::apply(expectRefused, kMrphFlagTexts);
    std::apply(expectRefused, kMrphIndexForms);
    std::apply(expectRefused, kMrphIndexValues);
    std::apply(expectRefused, kTavoModes);
    std::apply(expectRefused, kTavoValues);
    std::apply(expectRefused, kTavoNumbers);
    std::apply(expectRefused, kTavoStrings);
    std::apply(expectRefused, kTavoNumberTexts);
    expectRefused(tavo_getCategoryCount, tavo_getPartCategoryCount, tavo_getPartExt, tavo_format, tavo_formatPart,
                  tavo_output, tavo_outputPart, tavo_getAlt);
    expectRefused(tavo_free, tavo_analyze, tavo_analyzeNBest, tavo_getResult, tavo_getResultNBest, tavo_getByRead,
                  tavo_getByReadPath, tavo_getErrorSentenceIndex, tavo_addDicPath, tavo_offDic, tavo_offDicPath,
                  tavo_offDicAll, tavo_updateDic, tavo_updateDicPath, tavo_setDelimiterString, tavo_getDelimiterString,
                  tavo_setExtCombineMode, tavo_setProsodicInfoCombineMode, tavo_bulkAnalyze, tavo_bulkAnalyzeNBest);
}

TEST(NullHandles, GiveNoText) {
    static_assert(kTavoPointers[0] == tavo_getErrorWhat);
    EXPECT_STREQ(tavo_getErrorWhat(nullptr), "INVALID_ARGUMENT:tavo_getErrorWhat()");
    for (std::size_t i = 1; i < kTavoPointers.size(); ++i) EXPECT_EQ(kTavoPointers[i](nullptr), nullptr) << i;
    EXPECT_EQ(tavo_getExtFiller(nullptr, 0), nullptr);
    EXPECT_STREQ(tavo_getMrphErrorWhat(nullptr), "INVALID_ARGUMENT:tavo_getMrphErrorWhat()");
}

}  // namespace
}  // namespace TAVO::test
