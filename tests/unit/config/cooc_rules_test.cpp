#include "config/cooc_rules.hpp"

#include "engine/cooc/cooc_histories.hpp"
#include "support/record_builder.hpp"
#include "support/small_world.hpp"
#include "support/testing.hpp"

#include <tavo/error.hpp>

namespace TAVO::test {
namespace {

std::string shown(CoocSettings const& s) {
    std::string text;
    for (std::uint32_t const value : {s.margin, s.sentences, s.window, s.wordWeight, s.groupWeight})
        text += std::to_string(value) + " ";
    return text;
}

TEST(CoocRulesTest, ReadsSettings) {
    TempDir const dir;
    std::string const path = dir.path() + "/rules";
    Table<char const*, char const*> const cases{
        {"", "0 0 40 2 1 "},
        {"; comment\n# another\n\n Margin=7 \nSentences = 3\r\nWindow\t=\t9\n", "7 3 9 2 1 "},
        {"WordWeight=0\nGroupWeight=1000\nGroupWeight=5\n", "0 0 40 0 5 "},
        {"Margin", "1:No Equals Sign"},
        {"\nmargin=1", "2:Unknown Setting:margin"},
        {"Margin=", "1:Margin Not From 0 To 65535"},
        {"Margin=1x", "1:Margin Not From 0 To 65535"},
        {"Margin=-1", "1:Margin Not From 0 To 65535"},
        {"Margin=99999999999", "1:Margin Not From 0 To 65535"},
        {"Window=1\nWindow=0", "2:Window Not From 1 To 65535"},
        {"GroupWeight=1001", "1:GroupWeight Not From 0 To 1000"},
    };
    CoocRules rules;
    for (auto const& [text, expected] : cases) {
        dir.write("rules", text);
        std::string const before = shown(rules.settings());
        std::string const error = thrown([&] { rules.load(path.c_str()); });
        bool const isRefusal = std::string(expected).find(':') != std::string::npos;
        EXPECT_EQ(error, isRefusal ? "ILLEGAL_FORMAT: " + path + ":" + expected : "nothing thrown") << text;
        EXPECT_EQ(shown(rules.settings()), isRefusal ? before : expected) << text;
    }
    EXPECT_EQ(thrown([&] { rules.load("/no/such/file"); }), "FILE_NOT_OPEN: /no/such/file");
    EXPECT_EQ(rules.path(), path);
    rules.load(nullptr);
    EXPECT_EQ(shown(rules.settings()), "0 0 40 2 1 ");
    EXPECT_EQ(rules.path(), "");
}

/// Score of two words with these cooccurrence fields (word, group) and one character between them.
std::uint64_t scoreOf(std::pair<std::string, std::string> const& left, std::pair<std::string, std::string> const& right,
                      std::string const& gap) {
    SmallWorld world;
    world.names({"B", "E", "U", "N"});
    for (auto const& [form, ids] : {std::pair{"a", left}, {"b", right}})
        world.line(std::string(form) + ",N,1,,," + ids.first + "," + ids.second);
    std::string const image = world.dictionary();
    Dic const dic({asBytes(image.data()), image.size()}, "SysDic");
    auto const record = [&](char const* form) { return dic.trie()->exactMatch(asBytes(form), 1).head(); };
    CoocSettings settings;
    settings.window = 10;
    CoocWords words;
    CoocHistories histories(settings, words, "a" + gap + "b", {});
    std::uint32_t const first = histories.extended(CoocHistories::kEmpty, record("a"), 0, 1);
    return histories.score(histories.extended(first, record("b"), 1 + gap.size(), 1));
}

TEST(CoocWordsTest, MatchIdsByMarksKindAndDistance) {
    struct Row {
        std::pair<std::string, std::string> left, right;
        char const* gap;
        std::uint64_t score;
    };
    // A word id counts 2 and a group id 1, times 10 less the distance.
    std::vector<Row> const rows{
        {{"x", ""}, {"x", ""}, "", 0},                  // neither looks
        {{"xR", ""}, {"x", ""}, "", 20},                // the left one looks to its right
        {{"xL", ""}, {"x", ""}, "", 0},                 // to the other side
        {{"x", ""}, {"Lx", ""}, "", 20},                // a mark stands anywhere
        {{"@x", ""}, {"xL", ""}, "", 20},               // a pair counts once
        {{"xR", ""}, {"y", ""}, "", 0},                 // another id
        {{"xR", ""}, {"", "x"}, "", 0},                 // a group is no word
        {{"", "@x y"}, {"", "y x"}, "", 20},            // at sign: all ids of the field
        {{"@x y", "@z"}, {"y x", "z"}, "", 50},         // all that match add up
        {{"x yR", ""}, {"x y", ""}, "", 20},            // a letter: its id alone
        {{"xR", ""}, {"x", ""}, "\x82\xA0", 18},        // distances are in characters, here one of two bytes
        {{"xR", ""}, {"x", ""}, "123456789", 2},        // inside the window
        {{"xR", ""}, {"x", ""}, "1234567890", 0},       // beyond it
        {{"\x83\x4Cx", ""}, {"\x83\x4Cx", ""}, "", 0},  // a second byte is no mark
        {{" @x", ""}, {"x", ""}, "", 0},                // an at sign is one in front alone
    };
    for (Row const& row : rows)
        EXPECT_EQ(scoreOf(row.left, row.right, row.gap), row.score)
            << row.left.first << "," << row.left.second << " " << row.right.first << "," << row.right.second;
}

}  // namespace
}  // namespace TAVO::test
