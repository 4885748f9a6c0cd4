#include "support/result_world.hpp"
#include "support/testing.hpp"

namespace TAVO::test {
namespace {

class SourceLine : public ::testing::Test {
protected:
    std::string source(Mrph const& m) {
        std::ostringstream os;
        EXPECT_EQ(&m.source(os, &world.dic()), &os);
        return os.str();
    }

    ResultWorld world{worldOfNames()};
    RecordBuilder records;
};

TEST_F(SourceLine, HasTheFieldsOfADictionarySource) {
    Table<std::string, std::string> const cases{
        {"ab,Noun", "ab,Noun,100,,,,,,0,0,0,\n"},
        {"ab,Noun,7,r/p,s-t,w,c,g,1:2,,65535,pro,x,,z", "ab,Noun,7,r/p,s-t,w,c,g,1:2,0,65535,pro,x,,z\n"},
        // Names and forms escape separators, other texts what ends a field.
        {"\\,\\-\\/\\\\,Suffix\\-Kind", "\\,\\-\\/\\\\,Suffix\\-Kind,100,,,,,,0,0,0,\n"},
        {"ab,Comma\\,Name,0,,,a\\,b,c\\\\,d-e", "ab,Comma\\,Name,0,,,a\\,b,c\\\\,d-e,0,0,0,\n"},
        // Second bytes 0x5C, 0x2D and 0x2F stay.
        {"\x95\\\x83-\x83/,Noun,1,\x95\\", "\x95\\\x83-\x83/,Noun,1,\x95\\,,,,,0,0,0,\n"},
        // What would be a comment line.
        {"\\;a,Noun", "\\;a,Noun,100,,,,,,0,0,0,\n"},
        {"\\#,Noun", "\\#,Noun,100,,,,,,0,0,0,\n"},
        // Compounds: the part forms as written, a name per part.
        {"a\\-b/c-d,Noun-Noun-Number\\/Odd-Verb:Stem", "a\\-b/c-d,Noun-Noun-Number\\/Odd-Verb:Stem,100,,,,,,0,0,0,\n"},
        {"a-b,Noun,1,r/p,s", "a-b,Noun-Noun-Noun,1,r/p,s,,,,0,0,0,\n"},
        // Of the separators in a compound's texts only as many as it has joints stay plain.
        {"a-b,Noun,1,r-p\\/q,s\\-t/u", "a-b,Noun-Noun-Noun,1,r-p\\/q,s-t\\/u,,,,0,0,0,\n"},
        {"a-b-c,Noun,1,r-p/q\\-t,", "a-b-c,Noun-Noun-Noun-Noun,1,r-p/q\\-t,,,,,0,0,0,\n"},
    };
    for (auto const& [line, expected] : cases) EXPECT_EQ(source(records.mrph(line)), expected) << line;
}

TEST_F(SourceLine, OfAJoinedMorphemeIsACompound) {
    Mrph m = records.mrph("a-b,Noun,200,r/p");
    MrphAccess::append(m, records.mrph("c\\-,Verb:Stem,100,q"), 6);
    EXPECT_EQ(source(m), "a-b-c\\-,Suffix\\-Kind-Noun-Noun-Verb:Stem,255,r/p/q,,,,,0,0,0,\n");
}

TEST_F(SourceLine, NeedsADictionary) {
    std::ostringstream os;
    records.mrph("ab,Noun").source(os, nullptr);
    EXPECT_EQ(os.str(), "ERROR: ILLEGAL USAGE\n");
}

}  // namespace
}  // namespace TAVO::test
