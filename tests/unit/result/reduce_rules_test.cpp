#include "result/reduce_rules.hpp"

#include "support/describe.hpp"
#include "support/result_world.hpp"
#include "support/testing.hpp"

#include <tavo/error.hpp>

#include <map>
#include <random>
#include <span>

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
    /// The same for rules over sequences, which take morphemes to tell lengths.
    std::string phrases(char const* text) {
        reduce.bind(context.pos, context.settings);
        kept = toSjis(text);
        return toUtf8(describe(analyse(kept), "%w/%h"));
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

/// Nouns n and m (m:Proper), verbs v, particles p and q; "," is of another class.
SmallWorld phraseWords() {
    SmallWorld world;
    world.namesUtf8({"BOS", "EOS", "Unknown", "名詞:一般-7", "名詞:固有", "動詞", "助詞", "記号", "複合"})
        .cost([](unsigned, unsigned) { return 10; });
    return world.linesUtf8({"n,名詞:一般\\-7,1,エ", "m,名詞:固有,1,ム", "v,動詞,1,ブ", "p,助詞,1,プ", "q,助詞,1,ク",
                            "\\,,記号,1", "a-b,名詞:固有-名詞:固有-助詞,1,エ/ビ"});
}

TEST(PhraseRules, JoinTheLongestSequence) {
    Table<char const*, char const*, char const*> const cases{
        {"名詞+ 助詞* -> 文節", "nmpq,n,p", "nmpq/文節 ,/記号 n/名詞:一般-7 ,/記号 p/助詞"},
        {"名詞 名詞 -> 複合", "nmn", "nm/複合 n/名詞:一般-7"},  // a name of the table is a part of speech
        {"名詞+ ->", "mn", "mn/名詞:固有"},                     // without name that of the first member
        {"名詞:固有 名詞:-固有 -> X", "nmnm", "n/名詞:一般-7 mn/X m/名詞:固有"},
        {"動詞? 助詞 -> X", "pvp", "p/助詞 vp/X"},  // what joins needs two members
        {"動詞|記号 助詞* 名詞? -> X", "vpqn,n", "vpqn/X ,n/X"},
        {"助詞+ 助詞 名詞 -> X", "pppn", "pppn/X"},  // what repeats leaves the last one
        {"名詞 助詞 -> X\n名詞 助詞 動詞 -> Y\n名詞 助詞 動詞 -> Z", "npvnp", "npv/Y np/X"},
        {"名詞+ 助詞 -> X\n助詞+ 記号 -> Y", "nnp,", "nnp/X ,/記号"},  // by place, then by length
        {"記号+ -> X", ",,n", ",,/X n/名詞:一般-7"},
    };
    for (auto const& [rules, text, expected] : cases) {
        Rules world(rules, phraseWords());
        EXPECT_EQ(world.phrases(text), expected) << rules;
        world.context.settings.setMode(Mode::DivideWord, 1);
        EXPECT_EQ(world.phrases(text), Rules("", phraseWords()).phrases(text)) << "divided: " << rules;
    }
}

TEST(PhraseRules, KeepTheirParts) {
    Rules world("名詞+ 助詞+ -> 文節", phraseWords());
    world.reduce.bind(world.context.pos, world.context.settings);
    std::string const text = "nabp";
    std::vector<Mrph> const morphemes = world.analyse(text);
    ASSERT_EQ(morphemes.size(), 1U);
    Mrph const& phrase = morphemes.front();
    EXPECT_EQ(toUtf8(describe(morphemes, "%w %k")), "nabp エエビプ");
    EXPECT_EQ(phrase.getPid(), 4);
    EXPECT_EQ(phrase.getPartCount(), 4);
    std::string parts;
    for (int i = 0; i < phrase.getPartCount(); ++i)
        parts += phrase.getPartForm(i) + "/" + toUtf8(phrase.getPartOfSP(i)) + " ";
    EXPECT_EQ(parts, "n/名詞:一般-7 a/名詞:固有 b/助詞 p/助詞 ");
}

TEST(PhraseRules, TakeOnlySoManyMembers) {
    Rules world("名詞+ -> X", phraseWords());
    std::string const joined(256, 'n');
    EXPECT_EQ(world.phrases((joined + "nn").c_str()), joined + "/X nn/X");
}

/// The slow reading of a rule: element by element, all ways to go on tried.
std::size_t referenceLength(std::span<std::string const> elements, std::string_view text) {
    if (elements.empty()) return 0;
    std::string const& element = elements.front();
    char const mark = element.back();
    bool const fits = !text.empty() && element.front() == text.front();
    std::size_t best = std::string_view::npos;  // no match
    auto const offer = [&](std::size_t taken, std::size_t rest) {
        if (rest != std::string_view::npos && (best == std::string_view::npos || taken + rest > best))
            best = taken + rest;
    };
    if (mark == '?' || mark == '*') offer(0, referenceLength(elements.subspan(1), text));
    if (!fits) return best;
    offer(1, referenceLength(elements.subspan(1), text.substr(1)));
    if (mark != '+' && mark != '*') return best;
    std::vector<std::string> again(elements.begin(), elements.end());
    again.front().back() = '*';
    offer(1, referenceLength(again, text.substr(1)));
    return best;
}

TEST(PhraseRules, MatchAsTheSlowReadingDoes) {
    std::mt19937 random(20);
    auto const below = [&](unsigned n) { return random() % n; };
    std::map<char, std::string> const names{{'m', "名詞:固有"}, {'v', "動詞"}, {'p', "助詞"}};
    int joins = 0;
    for (int round = 0; round < 150; ++round) {
        std::vector<std::string> elements;
        std::string rule, text, expected;
        for (unsigned i = 0; i <= below(5); ++i) {
            std::string const mark = std::vector<std::string>{"", "?", "*", "+"}[below(4)];
            char const letter = "mvp"[below(3)];
            elements.push_back(std::string(1, letter) + mark);
            rule += names.at(letter) + mark + " ";
        }
        for (unsigned i = 0; i < 12; ++i) text += "mvp"[below(3)];
        for (std::size_t at = 0; at < text.size();) {
            std::size_t length = referenceLength(elements, std::string_view(text).substr(at));
            bool const joinsHere = length != std::string_view::npos && length > 1;
            if (!joinsHere) length = 1;
            joins += joinsHere ? 1 : 0;
            expected +=
                (expected.empty() ? "" : " ") + text.substr(at, length) + "/" + (joinsHere ? "X" : names.at(text[at]));
            at += length;
        }
        EXPECT_EQ(Rules((rule + "-> X").c_str(), phraseWords()).phrases(text.c_str()), expected) << rule;
    }
    EXPECT_GT(joins, 100);
}

TEST(PhraseRules, BadOnesAreRefused) {
    std::string many, most;
    for (int i = 0; i < 32; ++i) many += "Noun ";
    for (int i = 0; i < 32; ++i) most += "Noun -> X\n";
    Table<std::string, char const*> const cases{
        {"-> X", ":1:No Elements"},
        {"Noun\t* -> X", ":1:No Part Of Speech:"},
        {"\n:x -> X", ":2:No Part Of Speech:"},
        {"Noun|| -> X", ":1:No Part Of Speech:Noun||"},
        {many + "->", ":1:Too Many Elements"},
        {most + "Noun ->", ":33:Too Many Phrase Rules"},
        {"; coding: utf-8\n\xFF ->", ":2:Not In Shift_JIS"},
    };
    Rules world("名詞+ -> X", phraseWords());
    std::string const good = world.reduce.path();
    for (auto const& [text, place] : cases) {
        std::string const path = world.folder.write("bad.rules", text);
        EXPECT_EQ(thrown<illegal_format>([&] {
                      world.reduce.load(path.c_str());
                  }).rfind("ILLEGAL_FORMAT: " + path + place, 0),
                  0U)
            << text;
        EXPECT_EQ(world.phrases("nn"), "nn/X") << "the rules before stay";
    }
    EXPECT_EQ(world.reduce.path(), good);
    world.reduce.load(world.folder.write("utf8.rules", "; coding: utf-8\n名詞+ -> 名詞句\n").c_str());
    EXPECT_EQ(world.phrases("nn"), "nn/名詞句");
}

}  // namespace
}  // namespace TAVO::test
