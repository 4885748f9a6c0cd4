#include "config/pos_name.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace TAVO {
namespace {

PosName split(std::string_view text) {
    PosName name;
    splitPosName(text, name);
    return name;
}

TEST(PosName, HeadEndsAtAnySeparatorAndFeaturesFollowColonsOnly) {
    struct Case {
        char const* name;
        char const* head;
        std::vector<std::string_view> features;
    };
    // 0x83 0x5C and 0x81 0x7C are two-byte characters whose second byte is a mark.
    Case const cases[] = {
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
    for (Case const& c : cases) {
        PosName const name = split(c.name);
        EXPECT_EQ(name.head, c.head) << c.name;
        EXPECT_EQ(name.features, c.features) << c.name;
    }
}

TEST(PatternList, MatchesByHeadThenFeatures) {
    struct Case {
        char const* pattern;
        char const* name;
        bool matches;
    };
    Case const cases[] = {
        {"Noun", "Noun:Proper", true},  {"Noun:Proper", "Noun:Proper:Place", true},
        {"Noun:Proper", "Noun", false}, {"Noun:Proper:Place", "Noun:Proper", false},
        {"Noun", "Verb", false},        {"Noun:Proper", "Noun:Proper-7", true},
    };
    for (Case const& c : cases) {
        PatternList list;
        list.add(split(c.pattern));
        EXPECT_EQ(list.matches(split(c.name)), c.matches) << c.pattern << " / " << c.name;
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
}  // namespace TAVO
