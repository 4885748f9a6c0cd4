#include "result/dictionary_lookup.hpp"

#include "result/mrph_access.hpp"
#include "support/result_world.hpp"
#include "support/testing.hpp"

namespace TAVO::test {
namespace {

/// Each morpheme as "form pid cost".
std::string shown(std::vector<Mrph> const& morphemes) {
    std::string result;
    for (Mrph const& m : morphemes)
        result += m.getForm(true) + " " + std::to_string(m.getPid()) + " " + std::to_string(m.getCost()) + ", ";
    return result;
}

TEST(DictionaryLookup, FindsTheRecordsOfExactlyOneForm) {
    ResultWorld world(plainWords({"a,Noun,1", "ab,Noun,2", "ab,Verb,3", "abcd,Noun,4"}));
    std::vector<Mrph> result;
    EXPECT_TRUE(lookupAppend(world.dic(), "ab", 2, result, &world.context));
    EXPECT_EQ(shown(result), "ab 4 2, ab 5 3, ");
    EXPECT_STREQ(result[1].getPartOfSP(), "Verb");
    EXPECT_TRUE(result[1].isFirstDic());
    EXPECT_TRUE(lookupAppend(world.dic(), std::string("a"), result, nullptr));
    EXPECT_EQ(result.size(), 3U);
    // The text behind the length does not count.
    EXPECT_TRUE(lookup(world.dic(), "abcd", 1, result, nullptr));
    EXPECT_EQ(shown(result), "a 4 1, ");
    for (std::string const missing : {"", "abc", "abcde", "b"}) {
        EXPECT_FALSE(lookup(world.dic(), missing, result, nullptr)) << missing;
        EXPECT_TRUE(result.empty());
    }
}

TEST(DictionaryLookup, PrefixSearchesDifferInWhatTheyCollect) {
    ResultWorld world(
        plainWords({"a,Noun,1", "a,Noun,2", "a,Verb,3", "a,Verb,9", "a,Noun,4", "ab,Verb,5", "abcd,Noun,6"}));
    std::string const text = "abc";
    std::vector<Mrph> result;
    // Homographs stand in the order of their source lines.
    EXPECT_EQ(commonPrefixAll(world.dic(), text, result, &world.context, 0), 6U);
    EXPECT_EQ(shown(result), "a 4 1, a 4 2, a 5 3, a 5 9, a 4 4, ab 5 5, ");
    result.clear();
    EXPECT_EQ(commonPrefixDistinct(world.dic(), text, result, &world.context, 0), 4U);
    EXPECT_EQ(shown(result), "a 4 1, a 5 3, a 4 4, ab 5 5, ");
    result.clear();
    EXPECT_EQ(commonPrefixMerge(world.dic(), text, result, &world.context, 0), 3U);
    EXPECT_EQ(shown(result), "a 4 1, a 5 3, ab 5 5, ");
}

TEST(DictionaryLookup, MergeTakesTheCheaperAndTheLaterRecordAcrossDictionaries) {
    ResultWorld first(plainWords({"a,Noun,30,first", "a,Verb,10"}));
    ResultWorld second(plainWords({"a,Noun,30,second", "a,Verb,11", "ab,Noun,1"}));
    std::string const text = "ab";
    std::vector<Mrph> result;
    EXPECT_EQ(commonPrefixMerge(first.dic(), text, result, nullptr, 0), 2U);
    EXPECT_EQ(commonPrefixMerge(second.dic(), text, result, nullptr, 1), 1U);
    EXPECT_EQ(shown(result), "a 4 30, a 5 10, ab 4 1, ");
    EXPECT_EQ(result[0].getReadPron(true), "second");
    EXPECT_EQ(MrphAccess::dicIndex(result[0]), 1);
    EXPECT_EQ(MrphAccess::dicIndex(result[1]), 0);
    EXPECT_EQ(MrphAccess::dicIndex(result[2]), 1);
}

TEST(DictionaryLookup, PrefixSearchStaysInsideTheText) {
    ResultWorld world(plainWords({"a,Noun", "abcd,Noun"}));
    std::vector<Mrph> result;
    EXPECT_EQ(commonPrefixAll(world.dic(), "abcd", 3, result, nullptr, 0), 1U);
    EXPECT_EQ(commonPrefixAll(world.dic(), "abcd", 0, result, nullptr, 0), 0U);
    EXPECT_EQ(commonPrefixAll(world.dic(), "abcd", 4, result, nullptr, 0), 2U);
    EXPECT_EQ(commonPrefixAll(world.dic(), std::string("a\0bcd", 5), result, nullptr, 0), 1U);
}

}  // namespace
}  // namespace TAVO::test
