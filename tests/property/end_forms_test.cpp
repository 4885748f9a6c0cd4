// The endings that an import derives, against their definition and on made-up conjugations.
#include "lexicon/import/end_forms.hpp"

#include "result/end_form_rules.hpp"
#include "support/testing.hpp"

#include <map>
#include <optional>
#include <random>
#include <set>

namespace TAVO::importer {
namespace {

using namespace test;

/// The rule of the longest ending of @p text; null for none.
std::pair<std::string const, std::string> const* ruleFor(std::map<std::string, std::string> const& rules,
                                                         std::string_view text) {
    for (std::size_t begin = 0; begin <= text.size(); ++begin)
        if (auto const found = rules.find(std::string(text.substr(begin))); found != rules.end()) return &*found;
    return nullptr;
}

std::string withRule(std::pair<std::string const, std::string> const* rule, std::string const& text) {
    return rule == nullptr ? text : text.substr(0, text.size() - rule->first.size()) + rule->second;
}

/// The definition, ending by ending from the shortest on. One-byte characters.
std::vector<Ending> slowEndings(EndPairs const& given) {
    std::set<std::pair<std::string, std::string>> const pairs(given.begin(), given.end());
    std::set<std::pair<std::size_t, std::string>> endings;
    for (auto const& [text, end] : pairs)
        for (std::size_t length = 0; length <= text.size(); ++length)
            endings.emplace(length, text.substr(text.size() - length));
    std::map<std::string, std::string> rules;
    for (auto const& [length, ending] : endings) {
        auto const* const before = ruleFor(rules, ending);
        std::map<std::string, int> byAdd;  // pairs that come right when the ending becomes this
        int right = 0;
        for (auto const& [text, end] : pairs) {
            if (!text.ends_with(ending)) continue;
            right += withRule(before, text) == end ? 1 : 0;
            std::string const start = text.substr(0, text.size() - length);
            if (end.starts_with(start)) ++byAdd[end.substr(start.size())];
        }
        int best = right;
        std::set<std::pair<std::size_t, std::string>> chosen;  // what the change strips, then as it reads backwards
        for (auto const& [add, count] : byAdd) {
            if (count < best || count <= right) continue;
            if (count > best) chosen.clear();
            best = count;
            std::size_t common = 0;
            while (common < std::min(add.size(), length) && add[common] == ending[common]) ++common;
            chosen.emplace(length - common, std::string(add.rbegin(), add.rend() - static_cast<long>(common)));
        }
        if (chosen.empty()) continue;
        auto const& [strip, addBackwards] = *chosen.begin();
        rules[ending] = ending.substr(0, length - strip) + std::string(addBackwards.rbegin(), addBackwards.rend());
    }
    std::vector<Ending> made;
    for (auto const& [strip, add] : rules) made.push_back({strip, add});
    return made;
}

std::string describe(std::vector<Ending> const& endings) {
    std::string text;
    for (auto const& [strip, add] : endings) text += strip + ">" + add + " ";
    return text;
}

TEST(EndFormProperty, EndingsAreThoseOfTheDefinition) {
    std::mt19937 random(7);
    auto const word = [&](unsigned letters, unsigned most) {
        std::string text;
        for (unsigned i = static_cast<unsigned>(random() % (most + 1)); i > 0; --i)
            text += static_cast<char>('a' + random() % letters);
        return text;
    };
    std::size_t made = 0, longOnes = 0;
    for (int round = 0; round < 3000; ++round) {
        EndPairs pairs;
        unsigned const letters = 1 + static_cast<unsigned>(random() % 3);
        for (unsigned i = static_cast<unsigned>(random() % 12); i > 0; --i) {
            std::string const stem = word(letters, 3);
            pairs.emplace_back(stem + word(letters, 2), random() % 5 == 0 ? word(letters, 3) : stem + word(letters, 1));
        }
        std::vector<Ending> const found = deriveEndings(pairs), expected = slowEndings(pairs);
        ASSERT_EQ(describe(found), describe(expected)) << round;
        made += found.size();
        for (Ending const& ending : found) longOnes += ending.strip.size() > 1 ? 1U : 0U;
    }
    EXPECT_GT(made, 3000U);
    EXPECT_GT(longOnes, 500U);
}

/// A lexicon of words that a few conjugations make of stems, beside words that are not conjugated.
class Conjugations {
public:
    explicit Conjugations(std::uint32_t seed) : random_(seed) {
        constexpr char const* kNames[] = {"動詞:甲", "動詞:乙", "形容詞:丙"};
        for (char const* name : kNames) {
            std::string const end = pick({"う", "く", "る", "い"}), reading = kana(end);
            add(name, "終止", "", end, end, reading, reading);
            for (char const* form : {"連用", "未然", "仮定"}) {
                std::string const ending = pick({"っ", "か", "かっ", "表", "", "れば"});
                add(name, form, ending, end, ending.empty() ? "" : kana(ending), reading, "");
            }
        }
    }
    Lexicon lexicon;
    std::map<std::string, std::pair<std::string, std::string>> endings;  // by name, of forms

private:
    std::string pick(std::vector<std::string> const& texts) { return texts[random_() % texts.size()]; }
    static std::string kana(std::string const& ending) {
        std::map<std::string, std::string> const texts{{"う", "ウ"},     {"く", "ク"},     {"る", "ル"},
                                                       {"い", "イ"},     {"っ", "ッ"},     {"か", "カ"},
                                                       {"かっ", "カッ"}, {"表", "ヒョウ"}, {"れば", "レバ"}};
        return texts.at(ending);
    }
    void add(std::string const& conjugation, char const* form, std::string const& ending, std::string const& end,
             std::string const& reading, std::string const& endReading, std::string const& own) {
        bool const isBase = !own.empty();
        std::string const name = toSjis(conjugation + ":" + form);
        endings[name] = {isBase ? end : ending, end};
        constexpr char const* kStems[] = {"行", "ソ", "食べ", "表", "十分"};
        constexpr char const* kReadings[] = {"イ", "ソ", "タベ", "ヒョウ", "ジュウブン"};
        for (std::size_t i = 0; i < std::size(kStems); ++i) {
            Word word;
            word.name = lexicon.names.add(name);
            word.form = lexicon.keep(toSjis(kStems[i] + (isBase ? end : ending)));
            word.base = lexicon.keep(toSjis(kStems[i] + end));
            if (word.base == word.form) word.base = {};
            word.reading = lexicon.keep(toSjis(kReadings[i] + (isBase ? endReading : reading)));
            word.pron = word.reading;
            lexicon.words.push_back(word);
        }
        Word noun;
        noun.name = lexicon.names.add(toSjis("名詞:" + std::string(form)));
        noun.form = noun.reading = lexicon.keep(toSjis("山"));
        lexicon.words.push_back(noun);
    }
    std::mt19937 random_;
};

TEST(EndFormProperty, RulesOfALexiconServeItsOtherWords) {
    for (std::uint32_t seed = 0; seed < 200; ++seed) {
        Conjugations world(seed);
        EndForms const made = deriveEndForms(world.lexicon);
        EXPECT_EQ(made.forms.right, made.forms.all) << seed;
        EXPECT_EQ(made.readings.right, made.readings.all) << seed;
        EXPECT_EQ(made.prons.right, made.prons.all) << seed;
        EXPECT_EQ(made.own.right, made.own.all) << seed;
        EXPECT_GE(made.forms.all, 15U) << seed;
        EndFormRules rules;
        std::string_view const text = made.text;
        rules.load("end.rules", &text);
        for (auto const& [name, ending] : world.endings) {
            if (ending.first == ending.second) continue;
            auto const end = rules.apply(name, EndFormRules::Kind::Form, toSjis("新た" + ending.first));
            EXPECT_EQ(toUtf8(end.value_or("none")), "新た" + ending.second) << seed << toUtf8(name);
        }
        EXPECT_FALSE(rules.apply(toSjis("名詞:連用"), EndFormRules::Kind::Form, toSjis("山")));
    }
}

TEST(EndFormProperty, ReadingsAreThoseOfTheMostAlikeBaseForm) {
    Lexicon lexicon;
    auto const add = [&](char const* name, char const* form, char const* base, char const* reading) {
        Word word;
        word.name = lexicon.names.add(toSjis(name));
        word.form = lexicon.keep(toSjis(form));
        word.base = lexicon.keep(toSjis(base));
        word.reading = lexicon.keep(toSjis(reading));
        lexicon.words.push_back(word);
    };
    add("動詞:甲:終止", "開く", "", "アク");
    add("動詞:甲:終止", "開く", "", "ヒラク");
    add("動詞:乙:終止", "来る", "", "クル");
    add("動詞:丙:終止", "来る", "", "キタル");
    add("動詞:甲:連用", "開い", "開く", "ヒライ");
    add("動詞:乙:未然", "来", "来る", "コ");
    add("動詞:乙:仮定", "無い", "無", "ナイ");  // no entry has the base form
    add("動詞:丁:連用", "撃って", "撃つ", "");
    add("動詞:丁:連用", "射って", "射つ", "");
    add("動詞:丁:連用", "射って", "", "");
    EndForms const made = deriveEndForms(lexicon);
    EXPECT_EQ(made.own.all - made.own.right, 1U);
    EXPECT_EQ(lexicon.words.back().base, lexicon.words.back().form) << "what the source says stays";
    std::string const& rules = made.text;
    EXPECT_TRUE(contains(rules, "動詞:甲:連用\treading\tイ\tク\n"));
    EXPECT_TRUE(contains(rules, "動詞:乙:未然\treading\tコ\tクル\n"));
    EXPECT_TRUE(contains(rules, "動詞:乙:仮定\tform\tい\t\n"));
    EXPECT_FALSE(contains(rules, "動詞:乙:仮定\treading"));
}

}  // namespace
}  // namespace TAVO::importer
