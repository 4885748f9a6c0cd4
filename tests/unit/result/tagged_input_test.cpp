// Tagged input through the analyser; tests/golden/lines/tagged.txt has each tag,
// attribute and way to be malformed.
#include "result/tag_attributes.hpp"
#include "support/line_cases.hpp"
#include "support/tagged_world.hpp"
#include "support/testing.hpp"

#include <set>

namespace TAVO::test {
namespace {

using namespace std::string_literals;

SmallWorld words() {
    SmallWorld world;
    world.namesUtf8({"Begin", "End", "Undef", "Noun", "Verb", "Tail", "助詞"});
    // Fewer words are cheaper, and unknown words are dear.
    world.cost([](unsigned left, unsigned right) -> std::uint8_t { return left == 3 || right == 3 ? 100 : 10; });
    world.linesUtf8({"a,Noun,5,あ", "a,Verb,9,い", "b,Noun,5,び,ビ,,,g1,7:8,9,10,pros,x,y", "ab,Noun,1,えー",
                     "c,Tail,5", "abc,Noun,50", "de-f,Noun-Verb-Tail,5,で/ふ", "表,Noun,5,ひょう", "は,助詞,3,(は|わ)",
                     "ソ,Noun,5,そ"});
    return world;
}

TEST(TaggedInput, Golden) { expectLineCases("tagged.txt", words()); }

TEST(TaggedInput, MalformedMarkupLeavesTheSentencesAroundIt) {
    TaggedWorld world(words());
    world.tavo.setDelimiterString({"."});
    unsigned malformed = 0;
    for (LineCase const& c : lineCases("tagged.txt")) {
        if (c.expected != "!" + c.input) continue;
        // Tags without counterpart do not keep delimiters from ending the sentence.
        std::string const among = world.analyse("ab." + c.input + ".c.");
        EXPECT_TRUE(among.starts_with("ab:Noun .:Undef | !" + c.input + ". | ")) << among;
        EXPECT_TRUE(among.ends_with(" | c:Tail .:Undef")) << among;
        ++malformed;
    }
    EXPECT_GT(malformed, 30U);
}

TEST(TaggedInput, SentencesAreToldWithAndWithoutTheirTags) {
    TaggedWorld world(words());
    world.tavo.setDelimiterString({"."});
    std::string const text = "ab.<word>a.<word PartOfSP=\"Verb\">a.b</word>.</multiword>c.";
    EXPECT_EQ(world.tavo.analyze(text), 2);
    EXPECT_EQ(world.tavo.getErrorSentenceIndex(), (std::vector<unsigned>{1, 3}));
    EXPECT_EQ(world.tavo.getSentence(2), "a.b.");
    EXPECT_EQ(world.tavo.getSentenceLength(2), 4U);
    EXPECT_EQ(world.tavo.getAnalyzedText(2), "a.b.");
    world.tavo.setOutputConvertMode(3);
    world.tavo.analyze(text);
    EXPECT_EQ(world.tavo.getAnalyzedText(2), "<word PartOfSP=\"Verb\">a.b</word>.");
    EXPECT_EQ(world.tavo.getAnalyzedText(1), "<word>a.");
}

TEST(TaggedInput, BoundariesInsideAMultiwordAreFoundOnItsParts) {
    TaggedWorld world(words());
    std::vector<Mrph> const result = world.morphemes("<multiword>b<boundary GrammarType=\"i\"/>c</multiword>");
    ASSERT_EQ(describe(result), "bc:Noun");
    EXPECT_STREQ(result[0].getGrammarType(), "");
    EXPECT_STREQ(result[0].getPartGrammarType(1), "i");
}

TEST(TaggedInput, AMultiwordKeepsItsMembersAsParts) {
    TaggedWorld world(words());
    std::vector<Mrph> const result = world.morphemes(
        toSjis("<multiword AdditionalInfo=\"info\">a<word PartOfSP=\"Verb\" Read=\"し\">c</word>b</multiword>"));
    ASSERT_EQ(describe(result), "acb:Noun");
    Mrph const& m = result[0];
    EXPECT_STREQ(m.getAdditionalInfo(), "info");
    ASSERT_EQ(m.getPartCount(), 3);
    EXPECT_EQ(m.getRead(false), toSjis("あ/し/び"));
    EXPECT_EQ(m.getPartForm(1), "c");
    EXPECT_STREQ(m.getPartOfSP(1), "Verb");
    EXPECT_EQ(m.getPartRead(2), toSjis("び"));
}

TEST(TaggedInput, TakesAnyBytes) {
    TaggedWorld world(words());
    EXPECT_EQ(world.analyse("<word PartOfSP=\"Verb\">a\0b</word>\0c"s), "a\0b:Verb \0:Undef c:Tail"s);
    // A lone lead byte takes the mark behind it into a character.
    EXPECT_EQ(world.analyse("a\x81<word>b"), "a:Noun \x81<:Undef w:Undef o:Undef r:Undef d:Undef >:Undef b:Noun");
    EXPECT_EQ(world.analyse("<word PartOfSP=\"Verb\">\x81\0</word>"s), "\x81\0:Verb"s);
    EXPECT_EQ(world.analyse("<word PartOfSP=\"Verb\">\x81</word>"), "!<word PartOfSP=\"Verb\">\x81</word>");
}

TEST(TaggedInput, WhatIsFixedStandsEvenWhereTheTableForbidsIt) {
    SmallWorld forbidding = words();
    forbidding.cost([](unsigned left, unsigned right) -> std::uint8_t { return left == 5 || right == 5 ? 255 : 10; });
    TaggedWorld world(forbidding);
    EXPECT_EQ(world.analyse("<word PartOfSP=\"Verb\">a</word>b"), "a:Verb b:Noun");
    EXPECT_EQ(world.analyse("ab<word PartOfSP=\"Verb\">a</word>"), "ab:Noun a:Verb");
    EXPECT_EQ(world.analyse("c<word PartOfSP=\"Verb\">x</word>ab"), "c:Tail x:Verb ab:Noun");
    // Costs choose first: the verb reading is forbidden, the noun's is not.
    EXPECT_EQ(world.analyse("<word>a</word>"), "a:Noun");
    EXPECT_EQ(world.tavo.analyzeNBest("ab<word PartOfSP=\"Verb\">a</word>c"), 0);
    EXPECT_EQ(describeAll(world.tavo), "ab:Noun a:Verb c:Tail");
}

TEST(TaggedInput, NBestPathsKeepTheMarks) {
    TaggedWorld world(words());
    std::string const text = "<word>a</word>bc<annotation>x</annotation>";
    world.tavo.analyzeNBest(text);
    std::vector<std::vector<Mrph>> paths;
    world.tavo.getResultNBest(paths, 0, 9);
    std::set<std::string> found;
    for (std::vector<Mrph> const& path : paths) found.insert(describe(path));
    std::set<std::string> expected;
    for (std::string const first : {"a:Noun ", "a:Verb "})
        for (std::string const rest : {"b:Noun c:Tail", "b:Undef c:Tail", "b:Noun c:Undef", "b:Undef c:Undef"})
            expected.insert(first + rest + " [x]");
    EXPECT_EQ(found, expected);
    EXPECT_EQ(describe(paths[0]), "a:Noun b:Noun c:Tail [x]");
}

TEST(GetKeyValue, ReadsOneAttribute) {
    constexpr auto kLineEnd = static_cast<std::size_t>(-1);
    Table<std::string, std::string, std::string, std::size_t> const cases{
        {"Group=\"a&amp;b\"", "Group", "a&b", 15},
        {" /\tRead = \"x y>z/\" b", "Read", "x y>z/", 18},
        {"Read=ab/c", "Read", "ab", 7},
        {"Read=ab c", "Read", "ab", 7},
        {"Read=ab\"c", "Read", "ab", 7},
        {"flag next=1", "flag", "", 5},
        {"flag", "flag", "", 4},
        {"=x", "", "x", 2},
        {"a=\"open", "a", "open", 7},
        {"a=&lt;&gt;&apos;&quot;&amp;&x;&", "a", "<>'\"&&x;&", 31},
        {"a=\x83\x5C\x83\x22", "a", "\x83\x5C\x83\x22", 6},
        {" \t/", "", "", kLineEnd},
        {"", "", "", kLineEnd},
    };
    for (auto const& [text, key, value, next] : cases) {
        std::string foundKey, foundValue;
        EXPECT_EQ(getKeyValue(text, 0, text.size(), foundKey, foundValue), next) << text;
        EXPECT_EQ(foundKey, key) << text;
        EXPECT_EQ(foundValue, value) << text;
    }
}

}  // namespace
}  // namespace TAVO::test
