#include "result/reduce_rules.hpp"

#include "support/describe.hpp"
#include "support/result_world.hpp"
#include "support/testing.hpp"

#include <tavo/error.hpp>

namespace TAVO::test {
namespace {

/// Letters are words: digits 名詞:Number without reading but 1, a to c unknown
/// katakana, x and y symbols, "," a word of no class.
SmallWorld letters() {
    SmallWorld world;
    world
        .namesUtf8({"BOS", "EOS", "Unknown", "Number:Digit", "K:Undef:Katakana", "K:Undef:Katakana:Inside",
                    "記号:Symbol", "名詞", "Alphabet", "Undef"})
        .cost([](unsigned, unsigned) { return 10; });
    return world.linesUtf8({"1,Number:Digit,1,い", "2,Number:Digit,1", "3,Number:Digit,1,さ", "a,K:Undef:Katakana,1",
                            "b,K:Undef:Katakana:Inside,1", "c,K:Undef:Katakana:Inside,1", "x,記号:Symbol,1",
                            "y,記号:Symbol,1,わ,Y", "\\,,名詞,1", "：,名詞,1", "A,Alphabet,1", "U,Undef,1"});
}

struct Rules : ResultWorld {
    explicit Rules(char const* rulesUtf8, SmallWorld const& world = letters()) : ResultWorld(world) {
        reduce.load(folder.write("reduce.rules", toSjis(rulesUtf8)).c_str());
    }
    /// "form/part of speech" of each morpheme.
    std::string of(char const* text) {
        reduce.bind(context.pos, context.settings);
        kept = toSjis(text);
        std::vector<Mrph> const morphemes = analyse(kept);
        std::vector<unsigned int> lengths, expected;
        EXPECT_TRUE(appendLengths(lengths, context, reduce, context.sentences.back()));
        for (Mrph const& morpheme : morphemes)
            expected.push_back(static_cast<unsigned int>(MrphAccess::rawForm(morpheme).size()));
        EXPECT_EQ(lengths, expected) << text;
        Sentence pending;
        pending.given = pending.text = kept;
        context.lattice.search({&pending, 1}, context.connTable, context.dics);
        reduce.bindColumns(*context.connTable);
        lengths.clear();
        EXPECT_TRUE(appendLengths(lengths, context, reduce, pending));
        EXPECT_EQ(lengths, expected) << text << ", pending";
        return toUtf8(describe(morphemes, "%w/%h"));
    }
    TempDir folder;
    std::string kept;
};

TEST(ReduceRules, JoinsRunsOfAClass) {
    Table<char const*, char const*, char const*> const cases{
        {"", "12xy", "1/Number:Digit 2/Number:Digit x/記号:Symbol y/記号:Symbol"},
        {"Number=", "12x3", "12/Number:Digit x/記号:Symbol 3/Number:Digit"},
        {"Number = 名詞", "12", "12/名詞"},
        {"Number = 名詞", "1", "1/Number:Digit"},  // nothing was joined
        {"Number = : inner=,", "1,2,,3,", "1,2/Number:Digit ,/名詞 ,/名詞 3/Number:Digit ,/名詞"},
        {"Number = : inner=,：", "1：2,3", "1：2,3/Number:Digit"},
        {"Number = : inner=,", ",1x", ",/名詞 1/Number:Digit x/記号:Symbol"},
        {"Undef = : with=Inside", "abcaacb", "abc/K:Undef:Katakana a/K:Undef:Katakana acb/K:Undef:Katakana"},
        {"Undef = : with=Inside inner=,", "a,ba,aa", "a,b/K:Undef:Katakana a,a/K:Undef:Katakana a/K:Undef:Katakana"},
        {"Undef:Alphabet =", "abU", "a/K:Undef:Katakana b/K:Undef:Katakana:Inside U/Undef"},
        {"Undef =", "UabA", "Uab/Undef A/Alphabet"},
        {"Katakana =\nSymbol =", "abxyA", "ab/K:Undef:Katakana xy/記号:Symbol A/Alphabet"},
        // The first rule that has a part of speech keeps it; members of two rules don't join.
        {"Katakana =\nUndef =", "UUab", "UU/Undef ab/K:Undef:Katakana"},
        // A character that joined nothing may begin the next run.
        {"Number = : inner=xy\nSymbol =", "1xy2x3", "1/Number:Digit xy/記号:Symbol 2x3/Number:Digit"},
        {"; nothing\n# here\n\n  Number  =  名詞:そ  :  inner=,  \n", "12", "12/Number:Digit"},  // unlisted name
    };
    for (auto const& [rules, text, expected] : cases) {
        EXPECT_EQ(Rules(rules).of(text), expected) << rules << " on " << text;
        EXPECT_EQ(Rules(rules, letters().shareColumns()).of(text), expected) << rules << " on " << text;
    }
}

TEST(ReduceRules, EachModeSwitchesItsRules) {
    Table<Mode, char const*> const cases{
        {Mode::ReduceNumber, "1/Number:Digit 2/Number:Digit ab/K:Undef:Katakana xy/記号:Symbol"},
        {Mode::ReduceUndef, "12/Number:Digit a/K:Undef:Katakana b/K:Undef:Katakana:Inside xy/記号:Symbol"},
        {Mode::ReduceChar, "12/Number:Digit ab/K:Undef:Katakana x/記号:Symbol y/記号:Symbol"},
    };
    Rules rules("Number=\nUndef:Katakana=\nSymbol=");
    for (auto const& [off, expected] : cases) {
        rules.context.settings.setMode(off, 0);
        EXPECT_EQ(rules.of("12abxy"), expected);
        rules.context.settings.setMode(off, 1);
        EXPECT_EQ(rules.of("12abxy"), "12/Number:Digit ab/K:Undef:Katakana xy/記号:Symbol");
    }
}

TEST(ReduceRules, AJoinedMorphemeKeepsItsParts) {
    Rules rules("Number=\nSymbol=");
    rules.reduce.bind(rules.context.pos, rules.context.settings);
    std::string const text = "1312xy";
    std::vector<Mrph> const all = rules.analyse(text);
    ASSERT_EQ(all.size(), 2U);
    Mrph const& number = all[0];
    ASSERT_EQ(number.getPartCount(), 4);
    EXPECT_EQ(number.getPartForm(1), "3");
    EXPECT_EQ(toUtf8(number.getPartRead(0)), "い");
    EXPECT_EQ(number.getRead(true), "") << "one of the digits has no reading";
    EXPECT_EQ(all[1].getStdForm(true), "xY");
    EXPECT_EQ(MrphAccess::rawForm(number).data(), text.data());
    EXPECT_EQ(number.getForm(true), "1312");

    std::string const read = "13";
    EXPECT_EQ(toUtf8(rules.analyse(read)[0].getRead(true)), "いさ") << "readings join where all have one";
}

TEST(ReduceRules, BadRuleNamesPathLineAndCause) {
    std::string most;
    for (int i = 0; i < 127; ++i) most += "Number=\n";
    Table<std::string, char const*> const cases{
        {"Number", ":1:No Equals Sign"},
        {"; one\n\nNumber=\nNumbers=\n", ":4:Unknown Class:Numbers"},
        {"Undef:Kanji=", ":1:Unknown Class:Kanji"},
        {"=", ":1:Unknown Class:"},
        {"Number= : inner", ":1:Option Without Value:inner"},
        {"Number= : with=", ":1:Option Without Value:with="},
        {"Number= : inner=, inside=x", ":1:Unknown Option:inside"},
        {most + "Undef=\n", ":128:Too Many Rules"},
    };
    Rules world(most.c_str());
    TempDir const& folder = world.folder;
    ReduceRules& rules = world.reduce;
    std::string const good = rules.path();
    for (auto const& [text, place] : cases) {
        std::string const path = folder.write("bad.rules", text);
        EXPECT_EQ(thrown<illegal_format>([&] { rules.load(path.c_str()); }), "ILLEGAL_FORMAT: " + path + place);
        EXPECT_EQ(rules.path(), good) << "the rules before stay";
        EXPECT_EQ(world.of("12xy"), "12/Number:Digit x/記号:Symbol y/記号:Symbol");
    }
    EXPECT_THROW(rules.load(folder.file("none").c_str()), file_not_found);
    EXPECT_EQ(rules.path(), good);
    rules.load(nullptr);
    EXPECT_TRUE(rules.empty());
    EXPECT_EQ(rules.path(), "");
}

}  // namespace
}  // namespace TAVO::test
