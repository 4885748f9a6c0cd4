#include "result/mrph_access.hpp"
#include "support/describe.hpp"
#include "support/result_world.hpp"
#include "support/testing.hpp"

namespace TAVO::test {
namespace {

TEST(Assembly, AlternativesAreTheOtherCandidatesOfTheSameLength) {
    ResultWorld world(
        plainWords({"a,Noun,1", "ab,Noun,1", "ab,Verb,2", "ab,Tail,3", "ab,Undef,9", "abc,Noun,9", "c,Noun,1"}));
    std::string const text = "abc";
    std::vector<Mrph> result = world.analyse(text);
    ASSERT_EQ(describe(result, "%w"), "abc");
    EXPECT_EQ(result[0].getAltCount(), 0);

    ResultWorld shorter(plainWords({"a,Noun,1", "ab,Noun,1", "ab,Verb,2", "ab,Tail,3", "ab,Undef,9", "c,Noun,1"}));
    result = shorter.analyse(text);
    ASSERT_EQ(describe(result, "%w"), "ab c");
    EXPECT_EQ(result[0].getPid(), 4);
    EXPECT_EQ(result[0].getAltCount(), 2);
    std::vector<Mrph> alternatives(3, result[1]);
    result[0].getAlt(alternatives);
    ASSERT_EQ(describe(alternatives), "ab:Verb ab:Tail");
    // An alternative's alternatives are the others.
    EXPECT_EQ(alternatives[1].getAltCount(), 2);
    result[0].getAlt(result);
    EXPECT_EQ(result.size(), 2U);
    EXPECT_EQ(Mrph(alternatives[0]).getAltCount(), 2);
}

TEST(Assembly, MorphemesOfEarlierSentencesKeepTheirCandidates) {
    ResultWorld world(plainWords({"a,Noun,1", "a,Verb,2"}));
    std::vector<Sentence>& sentences = world.context.sentences;
    sentences.resize(3);
    std::string const texts[] = {"a", std::string(6000, 'a'), "aa"};  // the middle one needs more room
    for (std::size_t i = 0; i < 3; ++i) {
        sentences[i].given = sentences[i].text = texts[i];
        world.context.lattice.build(sentences[i], world.context.connTable, world.context.dics);
    }
    for (std::size_t i = 0; i < 3; ++i) {
        std::vector<Mrph> out;
        getMrphArray(out, bestPath(sentences[i]), world.context, world.reduce, sentences[i]);
        ASSERT_EQ(out.size(), texts[i].size());
        for (Mrph const& m : out) ASSERT_EQ(m.getAltCount(), 1);
    }
}

}  // namespace
}  // namespace TAVO::test
