// Each tag, each attribute and each way to be malformed, through the analyser.
#include "result/tag_attributes.hpp"
#include "support/tagged_world.hpp"

#include <gtest/gtest.h>

#include <set>

namespace TAVO {
namespace {

using namespace std::string_literals;
using test::SmallWorld;
using test::TaggedWorld;
using test::toSjis;

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

TEST(TaggedInput, Golden) {
    struct Case {
        char const* tagged;
        char const* expected;
    };
    Case const cases[] = {
        // No tags.
        {"abcc", "abc:Noun c:Tail"},
        {"", ""},
        // word: one morpheme whatever the costs say; its neighbours follow from context.
        {"<word PartOfSP=\"Noun\">ab</word>c", "ab:Noun c:Tail"},
        {"<word PartOfSP=\"Noun\">abcc</word>", "abcc:Noun"},
        {"<word PartOfSP=\"Noun\">a</word>bc", "a:Noun b:Noun c:Tail"},
        {"<word PartOfSP=\"Verb\">a</word>bc", "a:Verb b:Noun c:Tail"},
        {"a<word PartOfSP=\"Verb\">bc</word>", "a:Noun bc:Verb"},
        {"a<word>bc</word>", "a:Noun bc:Undef"},
        {"<word>a</word>", "a:Noun"},
        {"<word PartOfSP=Tail>a</word>", "a:Tail"},
        {"<word\tPartOfSP = \"Noun\" >abc</word >", "abc:Noun"},
        {"<word PartOfSP=\"nothing\">ab</word>", "ab:Undef"},
        {"<word PartOfSP=\"\">ab</word>", "ab:Noun"},
        {"<word Unknown=\"x\" PartOfSP=\"Verb\" flag>ab</word>", "ab:Verb"},
        {"<word PartOfSP=\"助詞\">表</word>は", "表:助詞 は:助詞"},
        {"<word PartOfSP=\"Verb\">x</word><word PartOfSP=\"Tail\">y</word>", "x:Verb y:Tail"},
        // A character whose second byte is "<", "|" or "\" is no mark.
        {"表ソ<word PartOfSP=\"Verb\">表ソ</word>ソ", "表:Noun ソ:Noun 表ソ:Verb ソ:Noun"},
        // multiword.
        {"<multiword>abc</multiword>", "abc:Noun"},
        {"a<multiword>bc</multiword>", "a:Noun bc:Noun"},
        {"<multiword><word PartOfSP=\"Verb\">a</word>bc</multiword>c", "abc:Verb c:Tail"},
        {"<multiword AdditionalInfo=\"x\"><word>a</word></multiword>", "a:Noun"},
        // annotation: not analysed, anchored where it stands.
        {"<annotation>abc</annotation>", "[abc]"},
        {"<annotation>x</annotation>ab<annotation>y</annotation>", "[x] ab:Noun [y]"},
        {"a<annotation>x</annotation><annotation></annotation>bc", "a:Noun [x] [] b:Noun c:Tail"},
        {"a<annotation>1 < 2 <word> </annotations> &amp;</annotation\t>b",
         "a:Noun [1 < 2 <word> </annotations> &] b:Noun"},
        {"<multiword>a<annotation>x</annotation>b</multiword>c", "ab:Noun [x] c:Tail"},
        // boundary: no morpheme, and no word over it.
        {"a<boundary/>b", "a:Noun b:Noun"},
        {"a<boundary GrammarType=\"x\">b", "a:Noun b:Noun"},
        {"a<boundary Kind=\"word\"/>b", "a:Noun b:Noun"},
        {"ab<boundary Kind=\"sentence\"/>", "ab:Noun"},
        {"ab<boundary Kind=\"sentence\"/>\r\n", "ab:Noun \r:Undef \n:Undef"},
        {"<boundary Kind=\"sentence\">", ""},
        {"<multiword>a<boundary/>b</multiword>", "ab:Noun"},
        // Quotes may hold what would end an unquoted value or the tag.
        {"<word AdditionalInfo=\"a > b / c\" PartOfSP=\"Verb\">ab</word>", "ab:Verb"},
        {"<word AdditionalInfo=a/PartOfSP=Verb>ab</word>", "ab:Verb"},
        // Entities in texts.
        {"<word PartOfSP=\"Verb\">&lt;a&gt;</word>&amp;&apos;&quot;", "<a>:Verb &:Undef ':Undef \":Undef"},
        {"a&b&lt", "a:Noun &:Undef b:Noun &:Undef l:Undef t:Undef"},
        {"a>b", "a:Noun >:Undef b:Noun"},
    };
    TaggedWorld world(words());
    for (Case const& c : cases) EXPECT_EQ(world.analyse(toSjis(c.tagged)), toSjis(c.expected)) << c.tagged;
}

TEST(TaggedInput, MalformedSentencesFailAloneAndKeepTheirText) {
    char const* const cases[] = {
        "a<",
        "a<word",
        "<word PartOfSP=\"Noun>ab</word>x",
        "<word>ab",
        "<word>ab<word>",
        "ab</word>",
        "<word></word>",
        "<word/>",
        "<word PartOfSP=\"Noun\"/>ab</word>",
        "<word>a<word>b</word></word>",
        "<word>a<boundary/>b</word>",
        "<word>a<annotation>x</annotation>b</word>",
        "<word>a<multiword>b</multiword></word>",
        "<word>ab</multiword>",
        "<multiword>ab</word>",
        "<multiword>ab",
        "<multiword></multiword>",
        "<multiword>a<multiword>b</multiword></multiword>",
        "<multiword>a<word>b</multiword></word>",
        "ab</multiword>",
        "<annotation>ab",
        "<annotation>ab</annotation",
        "<annotation>ab</annotations>",
        "<annotation/>ab",
        "ab</annotation>",
        "<boundary></boundary>",
        "<boundary Kind=\"sentence\"/>ab",
        "ab<boundary Kind=\"sentence\"/><annotation>x</annotation>",
        "<multiword>ab<boundary Kind=\"sentence\"/></multiword>",
        "<wordx>ab</wordx>",
        "<Word>ab</Word>",
        "<word\n>ab</word>",
        "<>ab",
        "</>ab",
        "< word>ab</word>",
        "<b>ab</b>",
        "<!-- ab -->",
    };
    TaggedWorld world(words());
    world.tavo.setDelimiterString({"."});
    for (std::string const text : cases) {
        EXPECT_EQ(world.analyse(text), "!" + text) << text;
        // Tags without counterpart do not keep delimiters from ending the sentence.
        std::string const among = world.analyse("ab." + text + ".c.");
        EXPECT_TRUE(among.starts_with("ab:Noun .:Undef | !" + text + ". | ")) << among;
        EXPECT_TRUE(among.ends_with(" | c:Tail .:Undef")) << among;
    }
}

TEST(TaggedInput, OtherSentencesOfTheInputAreNotTouched) {
    TaggedWorld world(words());
    world.tavo.setDelimiterString({"."});
    std::string const text = "ab.<word>a.<word PartOfSP=\"Verb\">a.b</word>.</multiword>c.";
    EXPECT_EQ(world.tavo.analyze(text), 2);
    EXPECT_EQ(test::describeAll(world.tavo), "ab:Noun .:Undef | !<word>a. | a.b:Verb .:Undef | !</multiword>c.");
    EXPECT_EQ(world.tavo.getErrorSentenceIndex(), (std::vector<unsigned>{1, 3}));
    EXPECT_EQ(world.tavo.getSentence(2), "a.b.");
    EXPECT_EQ(world.tavo.getSentenceLength(2), 4U);
    EXPECT_EQ(world.tavo.getAnalyzedText(2), "a.b.");
    world.tavo.setOutputConvertMode(3);
    world.tavo.analyze(text);
    EXPECT_EQ(world.tavo.getAnalyzedText(2), "<word PartOfSP=\"Verb\">a.b</word>.");
    EXPECT_EQ(world.tavo.getAnalyzedText(1), "<word>a.");
}

TEST(TaggedInput, IsOffByDefault) {
    TaggedWorld world(words());
    world.tavo.setTaggedInputMode(0);
    EXPECT_EQ(world.analyse("<b>"), "<:Undef b:Noun >:Undef");
}

std::string category(Mrph const& m, int list) {
    std::vector<unsigned short> lists[3];
    m.getCategory(lists[0], lists[1], lists[2]);
    std::string text;
    for (unsigned short const number : lists[list - 1]) text += std::to_string(number) + " ";
    return text;
}

TEST(TaggedInput, AttributesBecomeTheMorphemesValues) {
    using Value = std::string (*)(Mrph const&);
    struct Case {
        char const* attribute;
        Value value;
        char const* expected;
    };
    Case const cases[] = {
        {"PartOfSP=\"Tail\"", [](Mrph const& m) { return std::string(m.getPartOfSP()); }, "Tail"},
        {"StdForm=\"s/t\"", [](Mrph const& m) { return m.getStdForm(false); }, "s/t"},
        {"StdForm=\"s/t\"", [](Mrph const& m) { return m.getStdForm(true); }, "st"},
        {"ReadPron=\"(は|わ)/し\"", [](Mrph const& m) { return m.getReadPron(false); }, "(は|わ)/し"},
        {"ReadPron=\"(は|わ)/し\"", [](Mrph const& m) { return m.getRead(true) + m.getPron(true); }, "はしわし"},
        {"Read=\"よ/み\"", [](Mrph const& m) { return m.getRead(true); }, "よみ"},
        {"Pron=\"オト\"", [](Mrph const& m) { return m.getPron(true); }, "オト"},
        {"LVRead=\"ながい\"", [](Mrph const& m) { return m.getLVRead(true); }, "ながい"},
        {"Group=\"g:h\"", [](Mrph const& m) { return std::string(m.getGroup()); }, "g:h"},
        {"AdditionalInfo=\"a &lt; b\"", [](Mrph const& m) { return std::string(m.getAdditionalInfo()); }, "a < b"},
        {"ProsodicInfo=\"p\"", [](Mrph const& m) { return std::string(m.getProsodicInfo()); }, "p"},
        {"Category1=\"1:22:333\"", [](Mrph const& m) { return category(m, 1); }, "1 22 333 "},
        {"Category2=\"65535,65536\"", [](Mrph const& m) { return category(m, 2); }, "65535 "},
        {"Category3=\"4\"", [](Mrph const& m) { return category(m, 3); }, "4 "},
        {"Data1=\"one\" Data=\"zero\"", [](Mrph const& m) { return m.getExt(0) + "+"s + m.getExt(1); }, "zero+one"},
        {"Data3=\"x\"", [](Mrph const& m) { return std::to_string(m.getExtCount()) + m.getExt(3) + m.getExt(0); },
         "4x"},
        {"Data256=\"x\" Data-1=\"y\"", [](Mrph const& m) { return std::to_string(m.getExtCount()); }, "0"},
    };
    TaggedWorld world(words());
    for (Case const& c : cases) {
        for (std::string const element : {"word", "annotation"}) {
            std::string const text = "<" + element + " " + c.attribute + ">zz</" + element + ">";
            std::vector<Mrph> const result = world.morphemes(toSjis(text));
            ASSERT_EQ(result.size(), 1U) << text;
            EXPECT_EQ(c.value(result[0]), toSjis(c.expected)) << text;
        }
    }
}

TEST(TaggedInput, AWordThatMatchesADictionaryRecordKeepsIt) {
    struct Case {
        char const* tag;
        bool fromDictionary;
        int cost;
    };
    Case const cases[] = {
        {"<word>a</word>", true, 5},
        {"<word PartOfSP=\"Verb\">a</word>", true, 9},
        {"<word PartOfSP=\"Tail\">a</word>", false, 100},
        {"<word Read=\"い\">a</word>", true, 9},
        {"<word Read=\"あ\" PartOfSP=\"Verb\">a</word>", false, 100},
        {"<word ReadPron=\"あ\">a</word>", true, 5},
        {"<word StdForm=\"a\">a</word>", true, 5},
        {"<word StdForm=\"x\">a</word>", false, 255},
        {"<word AdditionalInfo=\"x\" LVRead=\"え\">a</word>", true, 5},
        {"<word StdForm=\"ビ\" Group=\"g1\" Category1=\"7:8\" ProsodicInfo=\"pros\" Data1=\"y\">b</word>", true, 5},
        {"<word Group=\"g2\">b</word>", false, 255},
        {"<word Category3=\"1\">b</word>", false, 255},
        {"<word ProsodicInfo=\"other\">b</word>", false, 255},
        {"<word Data2=\"y\">b</word>", false, 255},
        {"<word Read=\"で/ふ\">def</word>", true, 5},
        {"<word Read=\"で-/ふ\">def</word>", true, 5},
        {"<word Read=\"でふ\">def</word>", true, 5},
        {"<word Pron=\"わ\">は</word>", true, 3},
        {"<word Pron=\"は\">は</word>", false, 255},
    };
    TaggedWorld world(words());
    for (Case const& c : cases) {
        std::vector<Mrph> const result = world.morphemes(toSjis(c.tag));
        ASSERT_EQ(result.size(), 1U) << c.tag;
        EXPECT_EQ(result[0].isFirstDic(), c.fromDictionary) << c.tag;
        EXPECT_EQ(result[0].getCost(), c.cost) << c.tag;
    }
}

TEST(TaggedInput, BoundariesAreFoundOnTheMorphemeBehindThem) {
    TaggedWorld world(words());
    std::vector<Mrph> const result = world.morphemes(
        "a<boundary GrammarType=\"g\"/><boundary ProsodicType=\"p\">c<multiword>b<boundary "
        "GrammarType=\"i\"/>c</multiword>");
    ASSERT_EQ(test::describe(result), "a:Noun c:Tail bc:Noun");
    EXPECT_STREQ(result[0].getGrammarType(), "");
    EXPECT_STREQ(result[1].getGrammarType(), "g");
    EXPECT_STREQ(result[1].getProsodicType(), "p");
    EXPECT_STREQ(result[2].getGrammarType(), "");
    EXPECT_STREQ(result[2].getPartGrammarType(1), "i");
}

TEST(TaggedInput, AMultiwordKeepsItsMembersAsParts) {
    TaggedWorld world(words());
    std::vector<Mrph> const result = world.morphemes(
        toSjis("<multiword AdditionalInfo=\"info\">a<word PartOfSP=\"Verb\" Read=\"し\">c</word>b</multiword>"));
    ASSERT_EQ(test::describe(result), "acb:Noun");
    Mrph const& m = result[0];
    EXPECT_STREQ(m.getAdditionalInfo(), "info");
    ASSERT_EQ(m.getPartCount(), 3);
    EXPECT_EQ(m.getRead(false), toSjis("あ/し/び"));
    EXPECT_EQ(m.getPartForm(1), "c");
    EXPECT_STREQ(m.getPartOfSP(1), "Verb");
    EXPECT_EQ(m.getPartRead(2), toSjis("び"));
}

TEST(TaggedInput, DivideWordModeDividesCompoundsAndMultiwords) {
    TaggedWorld world(words());
    std::string const text =
        "<word>def</word><multiword>a<word PartOfSP=\"Tail\">def</word></multiword><word PartOfSP=\"Verb\">def</word>";
    EXPECT_EQ(world.analyse(text), "def:Noun adef:Noun def:Verb");
    world.tavo.setDivideWordMode(1);
    EXPECT_EQ(world.analyse(text), "de:Verb f:Tail a:Noun def:Tail def:Verb");
}

TEST(TaggedInput, DelimitersActOutsideElementsOnly) {
    struct Case {
        char const* text;
        std::vector<char const*> delimiters;
        char const* expected;
    };
    Case const cases[] = {
        {"a.<word PartOfSP=\"Verb\">b.b</word>.c", {"."}, "a:Noun .:Undef | b.b:Verb .:Undef | c:Tail"},
        {"<annotation>x.</annotation>a.b", {"."}, "[x.] a:Noun .:Undef | b:Noun"},
        {"<annotation><word>.</annotation>a.b", {"."}, "[<word>.] a:Noun .:Undef | b:Noun"},
        {"<multiword>a<word>.</word>.</multiword>b.", {"."}, "a..:Noun b:Noun .:Undef"},
        {"a<boundary GrammarType=\".\">.b", {"."}, "a:Noun .:Undef | b:Noun"},
        {"a<boundary GrammarType=\".>.\">.b", {"."}, "a:Noun .:Undef | b:Noun"},
        {"a&lt;b;c", {";"}, "a:Noun <:Undef b:Noun ;:Undef | c:Tail"},
        {"<word PartOfSP=\"Verb\">表ソ</word>表ソ", {"\\", "|"}, "表ソ:Verb 表:Noun ソ:Noun"},
        {"a.<word>b</word>.c", {".<", ".c"}, "a:Noun .:Undef b:Noun .:Undef c:Tail"},
    };
    TaggedWorld world(words());
    for (Case const& c : cases) {
        world.tavo.setDelimiterString(c.delimiters);
        EXPECT_EQ(world.analyse(toSjis(c.text)), toSjis(c.expected)) << c.text;
    }
}

TEST(TaggedInput, LineBreaksCutElements) {
    struct Case {
        int delimit, remove;
        char const* text;
        char const* expected;
    };
    Case const cases[] = {
        {1, 1, "<word>a\nb</word>\nab", "!<word>a | !b</word> | ab:Noun"},
        {1, 0, "ab<boundary Kind=\"sentence\"/>\r\nc", "ab:Noun \r:Undef \n:Undef | c:Tail"},
        {0, 1, "<word PartOfSP=\"Verb\">a\r\nb</word>\nab\n", "ab:Verb ab:Noun"},
        {0, 1, "<word Part\nOfSP=\"Ve\nrb\">ab</word>", "ab:Verb"},
        {0, 0, "<word PartOfSP=\"Verb\">a\nb</word>", "a\nb:Verb"},
    };
    for (Case const& c : cases) {
        TaggedWorld world(words());
        world.tavo.setDelimitCRLFMode(c.delimit);
        world.tavo.setDeleteCRLFMode(c.remove);
        EXPECT_EQ(world.analyse(c.text), c.expected) << testing::PrintToString(c.text);
    }
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
    EXPECT_EQ(test::describeAll(world.tavo), "ab:Noun a:Verb c:Tail");
}

TEST(TaggedInput, NBestPathsKeepTheMarks) {
    TaggedWorld world(words());
    std::string const text = "<word>a</word>bc<annotation>x</annotation>";
    world.tavo.analyzeNBest(text);
    std::vector<std::vector<Mrph>> paths;
    world.tavo.getResultNBest(paths, 0, 9);
    std::set<std::string> found;
    for (std::vector<Mrph> const& path : paths) found.insert(test::describe(path));
    std::set<std::string> expected;
    for (std::string const first : {"a:Noun ", "a:Verb "})
        for (std::string const rest : {"b:Noun c:Tail", "b:Undef c:Tail", "b:Noun c:Undef", "b:Undef c:Undef"})
            expected.insert(first + rest + " [x]");
    EXPECT_EQ(found, expected);
    EXPECT_EQ(test::describe(paths[0]), "a:Noun b:Noun c:Tail [x]");
}

TEST(GetKeyValue, ReadsOneAttribute) {
    struct Case {
        std::string text;
        std::string key, value;
        std::size_t next;
    };
    constexpr auto kLineEnd = static_cast<std::size_t>(-1);
    Case const cases[] = {
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
    for (Case const& c : cases) {
        std::string key, value;
        EXPECT_EQ(getKeyValue(c.text, 0, c.text.size(), key, value), c.next) << c.text;
        EXPECT_EQ(key, c.key) << c.text;
        EXPECT_EQ(value, c.value) << c.text;
    }
}

}  // namespace
}  // namespace TAVO
