#include "config/pos_tables.hpp"

#include <gtest/gtest.h>

#include "dic/conn_table.hpp"
#include "support/small_world.hpp"
#include "support/temp_dir.hpp"

#include <string>
#include <vector>

namespace TAVO::test {
namespace {

struct TypedName {
    std::string name;
    int type;
};

/// Each name in its place among neighbours that are like it.
TypedName const kNames[] = {
    {"BOS", 0},
    {"EOS", 0},
    {"Undef", kUndefPos | kMajorPos},
    {"Kana-1", kKanaPos},
    {"Kana-2:Undef", kKanaPos},
    {"Kana", kKanaPos},
    {"Kana/x", kKanaPos},
    {"Kana:Undef", kKanaPos | kUndefPos},
    {"Kana:Undef-1", kKanaPos | kUndefPos},
    {"Kana-3", kKanaPos},
    {"Kan", 0},
    {"Kan:Roman", kRomanPos},
    {"Kan:Roman2", 0},
    {"Kan:Roman-1", kRomanPos},
    {"Number", kNumberPos},
    {"Number:Kana", kNumberPos | kKanaPos},
    {"N", 0},
    {"N: ", 0},
    {"N: -1", 0},
    {"N: :Symbol-1", kSymbolPos},
    // The first byte of a two-byte character, last in one name, takes the mark of the next for its second byte.
    {"a\x83", 0},
    {"a\x83-:Undef", kUndefPos},
    {"x:\x83", 0},
    {"x:\x83-:Roman", kRomanPos},
    {"x:\x83\x2F", 0},
    {"x:\x83\x2F/:Roman", 0},
};

TEST(PosTables, NamesHaveTheirTypeBesideAnyOther) {
    SmallWorld world;
    std::vector<std::string> names;
    for (TypedName const& each : kNames) names.push_back(each.name);
    world.names(names);
    TempDir const dir;
    ConnTable const table(false, world.writeTo(dir.path()).connTable.c_str());
    PosTables tables;
    tables.setPartOfSP(&table);
    for (std::uint32_t pid = 1; pid <= names.size(); ++pid)
        EXPECT_EQ(tables.type(pid), kNames[pid - 1].type) << kNames[pid - 1].name;
    EXPECT_EQ(tables.type(0), 0);
}

}  // namespace
}  // namespace TAVO::test
