#include "result/reduce_rules.hpp"

#include "support/encoding.hpp"
#include "support/result_world.hpp"

#include <tavo/error.hpp>

#include <gtest/gtest.h>

namespace TAVO {
namespace {

using test::ResultWorld;
using test::SmallWorld;
using test::TempDir;
using test::toSjis;
using Strings = std::vector<std::string>;

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
    explicit Rules(char const* rulesUtf8) : ResultWorld(letters()) {
        context.reduce.load(folder.write("reduce.rules", toSjis(rulesUtf8)).c_str());
    }
    /// "form/part of speech" of each morpheme.
    Strings of(char const* text) {
        context.reduce.bind(context.pos, context.settings);
        kept = toSjis(text);
        Strings result;
        for (Mrph const& m : analyse(kept)) result.push_back(test::toUtf8(m.getForm(true) + "/" + m.getPartOfSP()));
        return result;
    }
    TempDir folder;
    std::string kept;
};

TEST(ReduceRules, JoinsRunsOfAClass) {
    struct Case {
        char const* rules;
        char const* text;
        Strings expected;
    };
    Case const cases[] = {
        {"", "12xy", {"1/Number:Digit", "2/Number:Digit", "x/記号:Symbol", "y/記号:Symbol"}},
        {"Number=", "12x3", {"12/Number:Digit", "x/記号:Symbol", "3/Number:Digit"}},
        {"Number = 名詞", "12", {"12/名詞"}},
        {"Number = 名詞", "1", {"1/Number:Digit"}},  // nothing was joined
        {"Number = : inner=,", "1,2,,3,", {"1,2/Number:Digit", ",/名詞", ",/名詞", "3/Number:Digit", ",/名詞"}},
        {"Number = : inner=,：", "1：2,3", {"1：2,3/Number:Digit"}},
        {"Number = : inner=,", ",1x", {",/名詞", "1/Number:Digit", "x/記号:Symbol"}},
        {"Undef = : with=Inside", "abcaacb", {"abc/K:Undef:Katakana", "a/K:Undef:Katakana", "acb/K:Undef:Katakana"}},
        {"Undef = : with=Inside inner=,",
         "a,ba,aa",
         {"a,b/K:Undef:Katakana", "a,a/K:Undef:Katakana", "a/K:Undef:Katakana"}},
        {"Undef:Alphabet =", "abU", {"a/K:Undef:Katakana", "b/K:Undef:Katakana:Inside", "U/Undef"}},
        {"Undef =", "UabA", {"Uab/Undef", "A/Alphabet"}},
        {"Katakana =\nSymbol =", "abxyA", {"ab/K:Undef:Katakana", "xy/記号:Symbol", "A/Alphabet"}},
        // The first rule that has a part of speech keeps it; members of two rules don't join.
        {"Katakana =\nUndef =", "UUab", {"UU/Undef", "ab/K:Undef:Katakana"}},
        // A character that joined nothing may begin the next run.
        {"Number = : inner=xy\nSymbol =", "1xy2x3", {"1/Number:Digit", "xy/記号:Symbol", "2x3/Number:Digit"}},
        {"; nothing\n# here\n\n  Number  =  名詞:そ  :  inner=,  \n", "12", {"12/Number:Digit"}},  // unlisted name
    };
    for (Case const& c : cases) EXPECT_EQ(Rules(c.rules).of(c.text), c.expected) << c.rules << " on " << c.text;
}

TEST(ReduceRules, EachModeSwitchesItsRules) {
    struct Case {
        Mode off;
        Strings expected;
    };
    Case const cases[] = {
        {Mode::ReduceNumber, {"1/Number:Digit", "2/Number:Digit", "ab/K:Undef:Katakana", "xy/記号:Symbol"}},
        {Mode::ReduceUndef, {"12/Number:Digit", "a/K:Undef:Katakana", "b/K:Undef:Katakana:Inside", "xy/記号:Symbol"}},
        {Mode::ReduceChar, {"12/Number:Digit", "ab/K:Undef:Katakana", "x/記号:Symbol", "y/記号:Symbol"}},
    };
    Rules rules("Number=\nUndef:Katakana=\nSymbol=");
    for (Case const& c : cases) {
        rules.context.settings.setMode(c.off, 0);
        EXPECT_EQ(rules.of("12abxy"), c.expected);
        rules.context.settings.setMode(c.off, 1);
        EXPECT_EQ(rules.of("12abxy"), (Strings{"12/Number:Digit", "ab/K:Undef:Katakana", "xy/記号:Symbol"}));
    }
}

TEST(ReduceRules, AJoinedMorphemeKeepsItsParts) {
    Rules rules("Number=\nSymbol=");
    rules.context.reduce.bind(rules.context.pos, rules.context.settings);
    std::string const text = "1312xy";
    std::vector<Mrph> const all = rules.analyse(text);
    ASSERT_EQ(all.size(), 2U);
    Mrph const& number = all[0];
    ASSERT_EQ(number.getPartCount(), 4);
    EXPECT_EQ(number.getPartForm(1), "3");
    EXPECT_EQ(test::toUtf8(number.getPartRead(0)), "い");
    EXPECT_EQ(number.getRead(true), "") << "one of the digits has no reading";
    EXPECT_EQ(all[1].getStdForm(true), "xY");
    unsigned int length = 0;
    EXPECT_EQ(number.getFormWithoutNullEnd(length), text.data());
    EXPECT_EQ(length, 4U);

    std::string const read = "13";
    EXPECT_EQ(test::toUtf8(rules.analyse(read)[0].getRead(true)), "いさ") << "readings join where all have one";
}

TEST(ReduceRules, BadRuleNamesPathLineAndCause) {
    struct Case {
        char const* rules;
        char const* place;
    };
    Case const cases[] = {
        {"Number", ":1:No Equals Sign"},
        {"; one\n\nNumber=\nNumbers=\n", ":4:Unknown Class:Numbers"},
        {"Undef:Kanji=", ":1:Unknown Class:Kanji"},
        {"=", ":1:Unknown Class:"},
        {"Number= : inner", ":1:Option Without Value:inner"},
        {"Number= : with=", ":1:Option Without Value:with="},
        {"Number= : inner=, inside=x", ":1:Unknown Option:inside"},
    };
    TempDir const folder;
    ReduceRules rules;
    std::string const good = folder.write("good.rules", "Number=\nUndef=\n");
    rules.load(good.c_str());
    for (Case const& c : cases) {
        std::string const path = folder.write("bad.rules", c.rules);
        try {
            rules.load(path.c_str());
            ADD_FAILURE() << "accepted: " << c.rules;
        } catch (illegal_format const& error) {
            EXPECT_STREQ(error.what(), illegal_format(path + c.place).what());
        }
        EXPECT_EQ(rules.path(), good) << "the rules before stay";
        EXPECT_FALSE(rules.empty());
    }
    EXPECT_THROW(rules.load(folder.file("none").c_str()), file_not_found);
    EXPECT_EQ(rules.path(), good);
    rules.load(nullptr);
    EXPECT_TRUE(rules.empty());
    EXPECT_EQ(rules.path(), "");
}

TEST(ReduceRules, RulesOfABadFileStayInForce) {
    Rules rules("Number=");
    EXPECT_THROW(rules.context.reduce.load(rules.folder.write("bad", "Symbol=\nfault\n").c_str()), illegal_format);
    EXPECT_EQ(rules.of("12xy"), (Strings{"12/Number:Digit", "x/記号:Symbol", "y/記号:Symbol"}));
}

TEST(ReduceRules, HoldsAtMost127Rules) {
    TempDir const folder;
    std::string text;
    for (int i = 0; i < 127; ++i) text += "Number=\n";
    ReduceRules rules;
    rules.load(folder.write("most", text).c_str());
    try {
        rules.load(folder.write("more", text + "Undef=\n").c_str());
        ADD_FAILURE();
    } catch (illegal_format const& error) {
        EXPECT_NE(std::string(error.what()).find(":128:Too Many Rules"), std::string::npos);
    }
}

}  // namespace
}  // namespace TAVO
