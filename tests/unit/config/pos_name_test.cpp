#include "config/pos_name.hpp"

#include "support/testing.hpp"

namespace TAVO::test {
namespace {

PosName split(std::string_view text) {
    PosName name;
    splitPosName(text, name);
    return name;
}

TEST(PosName, HeadEndsAtAnySeparatorAndFeaturesFollowColonsOnly) {
    // 0x83 0x5C and 0x81 0x7C are two-byte characters whose second byte is a mark.
    Table<char const*, char const*, std::vector<std::string_view>> const cases{
        {"Noun", "Noun", {}},
        {"Noun:Proper:Place", "Noun", {"Proper", "Place"}},
        {"Noun: Proper ", "Noun", {"Proper"}},
        {"Noun:Proper-12", "Noun", {"Proper"}},
        {"Noun-a:b", "Noun", {}},
        {"Noun/a:b", "Noun", {}},
        {"Noun:a/b:c", "Noun", {"a"}},
        {"Noun:", "Noun", {""}},
        {":a", "", {"a"}},
        {"", "", {}},
        {"\x83\x5C:\x81\x7C", "\x83\x5C", {"\x81\x7C"}},
        {"a\x83\x2D", "a\x83\x2D", {}},
    };
    for (auto const& [text, head, features] : cases) {
        PosName const name = split(text);
        EXPECT_EQ(name.head, head) << text;
        EXPECT_EQ(name.features, features) << text;
    }
}

TEST(PosName, IsDisplayedWithoutWhatOnlyTheAnalyserReads) {
    Table<char const*, char const*> const cases{
        {"Noun", "Noun"},
        {"Noun:Proper-12", "Noun:Proper"},
        {"Noun:Proper:Undef:Katakana-2", "Noun:Proper"},
        {"Noun:Undef:Number:Inside", "Noun"},
        {"Noun:Numbers:Kanji:x", "Noun:Numbers:x"},
        {"Alphabet:Undef", "Alphabet"},  // the head is the lexicon's own
        {"Noun:a-Undef-3", "Noun:a-Undef"},
        {"Noun/Kana", "Noun/Kana"},
        {"Undef", kUnknownWordName},
        {"Undef:Symbol-1", kUnknownWordName},
        {"\x83\x5C:\x81\x7C:Kana", "\x83\x5C:\x81\x7C"},  // second bytes that look like marks
        {"-1", "-1"},
        {"", ""},
    };
    for (auto const& [name, shown] : cases) EXPECT_EQ(displayPosName(name), shown) << name;
}

TEST(PatternList, MatchesByHeadThenFeatures) {
    Table<char const*, char const*, bool> const cases{
        {"Noun", "Noun:Proper", true},  {"Noun:Proper", "Noun:Proper:Place", true},
        {"Noun:Proper", "Noun", false}, {"Noun:Proper:Place", "Noun:Proper", false},
        {"Noun", "Verb", false},        {"Noun:Proper", "Noun:Proper-7", true},
    };
    for (auto const& [pattern, name, matches] : cases) {
        PatternList list;
        list.add(split(pattern));
        EXPECT_EQ(list.matches(split(name)), matches) << pattern << " / " << name;
    }
}

TEST(PatternList, NegativeFeatureNeedsANameWithFeatures) {
    PosName pattern;
    pattern.head = "Noun";
    pattern.features = {"-Proper"};
    PatternList list;
    list.add(pattern);
    EXPECT_TRUE(list.matches(split("Noun:Common")));
    EXPECT_FALSE(list.matches(split("Noun:Proper")));
    EXPECT_FALSE(list.matches(split("Noun")));
}

}  // namespace
}  // namespace TAVO::test
