#include "dic/source_record.hpp"

#include "support/testing.hpp"

namespace TAVO::test {
namespace {

using namespace std::string_literals;

SourceRecord parsed(std::string const& line) {
    SourceRecord record;
    std::string error;
    EXPECT_TRUE(record.parse(line, error)) << line << ": " << error;
    return record;
}

std::string repeated(std::string_view text, int times) {
    std::string result;
    while (times-- > 0) result += text;
    return result;
}

/// Lines and their errors.
using Refusals = Table<std::string, char const*>;

TEST(SourceRecordTest, RefusesLinesWithTheirFirstFault) {
    Refusals const refusals{
        {"", "Error: No Word"},
        {",N", "Error: No Word"},
        {"a", "Error: Too Less Fields"},
        {"\\", "Error: Word Disappeared"},
        {"-ab,N", "Error: Illegal Separator"},
        {"ab-,N", "Error: Illegal Separator"},
        {"a--b,N", "Error: Illegal Separator"},
        {"a/-b,N", "Error: Illegal Separator"},
        {"-,N", "Error: Illegal Separator"},
        {"a" + repeated("/a", 255) + ",N", "Error: Too Much Part"},
        {"a,", "Error: No PartOfSP"},
        {"a,,1", "Error: No PartOfSP"},
        {"a,N-", "Error: No Part PartOfSP"},
        {"a-b,N--M", "Error: No Part PartOfSP"},
        {"a-b,-N-M", "Error: No Part PartOfSP"},
        {"a-b,N-M", "Error: Missmatch the number of PartOfSPs"},
        {"a-b,N-M-M-M", "Error: Missmatch the number of PartOfSPs"},
        {"a,N-M-M", "Error: Missmatch the number of PartOfSPs"},
        {"a,N,x", "Error: Illegal Mrph Cost: [x]"},
        {"a,N,+1", "Error: Illegal Mrph Cost: [+1]"},
        {"a,N,-1", "Error: Illegal Mrph Cost: [-1]"},
        {"a,N,1 ", "Error: Illegal Mrph Cost: [1 ]"},
        {"a,N,12x", "Error: Illegal Mrph Cost: [12x]"},
        {"a,N,,r", "Error: Illegal Mrph Cost: []"},
        {"a,N,", "Error: Illegal Mrph Cost: []"},
        {"a,N,256", "Error: Overflaw Mrph Cost: [256]"},
        {"a,N,99999999999999999999", "Error: Overflaw Mrph Cost: [99999999999999999999]"},
        {"a-b,N,1,AB", "Error: Missmatch Word and Read"},
        {"a-b,N,1,A-B-C", "Error: Missmatch Word and Read"},
        {"a-b,N,1,A\\-B", "Error: Missmatch Word and Read"},
        {"a-b,N,1,,A/B/C", "Error: Missmatch Word and StdForm"},
        {"a,N,1,,,,,,x", "Error: Illegal Category Number"},
        {"a,N,1,,,,,,1:", "Error: Illegal Category Number"},
        {"a,N,1,,,,,,,1::2", "Error: Illegal Category Number"},
        {"a,N,1,,,,,,,,65536", "Error: Illegal Category Number"},
        {"a,N,1,,,,,,-1", "Error: Illegal Category Number"},
        {"\x81,N", "Error: Too Less Fields"},  // the lead byte takes the comma for its second byte
        {"a\0b,N"s, "Error: NUL Character in Line"},
    };
    for (auto const& [line, expected] : refusals) {
        SourceRecord record;
        std::string error;
        EXPECT_FALSE(record.parse(line, error)) << line;
        EXPECT_EQ(error, expected) << line;
    }
}

TEST(SourceRecordTest, WritesErrorsToTheStandardErrorStream) {
    SourceRecord record;
    std::string out;
    EXPECT_EQ(stderrOf([&] { EXPECT_FALSE(record.parse("ab")); }), "Error: Too Less Fields\n");
    EXPECT_EQ(stderrOf([&] { EXPECT_TRUE(record.parse("ab,N")); }), "");
    EXPECT_EQ(stderrOf([&] {
                  EXPECT_FALSE(record.serialize(out, NameTable{{"M", std::uint16_t{1}}}));
              }),
              "Error: Unlisted PartOfSP: N(ab)\n");
}

TEST(SourceRecordTest, KeepsDefaultsOfFieldsLeftOut) {
    SourceRecord const record = parsed("a,N");
    EXPECT_EQ(record.cost, 100);
    EXPECT_EQ(record.partCount, 1U);
    EXPECT_EQ(record.partForm, "");
    EXPECT_TRUE(record.ext.empty());
    EXPECT_EQ(parsed("a" + repeated("-a", 254) + ",N").partCount, 255U);
}

TEST(SourceRecordTest, ResolvesEscapesButInThePartForm) {
    SourceRecord const simple = parsed("a\\,b\\-c\\\\,N\\-1,1,r\\,p");
    EXPECT_EQ(simple.form, "a,b-c\\");
    EXPECT_EQ(simple.partCount, 1U);
    EXPECT_EQ(simple.partOfSP, "N-1");
    EXPECT_EQ(simple.readPron, "r,p");
    SourceRecord const compound = parsed("a\\-b/c,N");
    EXPECT_EQ(compound.form, "a-bc");
    EXPECT_EQ(compound.partForm, "a\\-b/c");
    EXPECT_EQ(compound.partCount, 2U);
    // An escaped two-byte character is literal with its second byte 0x5C.
    EXPECT_EQ(parsed(toSjis("\\表,N")).form, toSjis("表"));
}

TEST(SourceRecordTest, SetsCooccurrenceMarks) {
    Table<std::string, std::string, bool, bool> const cases{
        {"", "", false, false},        {"@", "", true, true},    {"x@", "", false, false},
        {"xLx", "", true, false},      {"", "xR", false, true},  {"L", "R", true, true},
        {"", "@1", true, true},        {"lr", "", false, false}, {"\x83\x4C", "", false, false},
        {"\x83\x52", "", false, false}};
    for (auto const& [word, group, left, right] : cases) {
        SourceRecord const record = parsed("a,N,1,,," + word + "," + group);
        EXPECT_EQ(record.leftMark, left) << word << "," << group;
        EXPECT_EQ(record.rightMark, right) << word << "," << group;
    }
}

TEST(SourceRecordTest, SerializesFieldsInOrder) {
    NameTable const names{{"N", std::uint16_t{1}}, {"M", std::uint16_t{0x0203}}};
    std::string out = "before";
    std::string error;
    ASSERT_TRUE(parsed("a-b,N-M-N,7,A-B,S,L,g,G,1:2,,3,P,x,").serialize(out, names, error)) << error;
    std::string const head = "\x2A\0\x01\0\x07\0\xFD\x1A"s;  // length, id, cost, reserved, flags A and B
    std::string const parts = "\x02\x03\x02\x01\0a-b\0"s;
    std::string const texts = "A-B\0S\0L\0g\0G\0"s;
    std::string const lists = "\x02\x01\0\x02\0\x01\x03\0"s;
    EXPECT_EQ(out, "before" + head + parts + texts + lists + "P\0x\0\0"s);
}

TEST(SourceRecordTest, RefusesToSerializeWhatDoesNotFit) {
    NameTable const names{{"N", std::uint16_t{1}}};
    // A record of 65536 bytes: 8 of head, the reading, its NUL.
    Refusals const refusals{
        {"a,M", "Error: Unlisted PartOfSP: M(a)"},
        {"a-b,N-N-M", "Error: Unlisted PartOfSP: M(ab)"},
        {"a,N,1," + std::string(65527, 'r'), "Error: Too Big MrphData"},
        {"a,N,1,,,,,,0" + repeated(":0", 255), "Error: Too Much Category Number"},
    };
    std::string out = "kept";
    std::string error;
    for (auto const& [line, expected] : refusals) {
        EXPECT_FALSE(parsed(line).serialize(out, names, error));
        EXPECT_EQ(error, expected);
        EXPECT_EQ(out, "kept");
    }
}

TEST(SourceRecordTest, TakesAllFieldsAndPrintsThemLabelled) {
    std::ostringstream out;
    parsed("a-b,N-M-L,255,A/B,S,@w,g,G,1:2,0:0,65535,P,x,,z").print(out);
    EXPECT_EQ(out.str(),
              "Form\tab\nPartOfSP\tN\nPartCount\t2\nPartForm\ta-b\nM\nL\nCost\t255\nReadPron\tA/B\nStdForm\tS\n"
              "WordCooc\t@w\nGroupCooc\tg\nGroup\tG\nCat1,1\t1\nCat1,2\t2\nCat2,1\t0\nCat2,2\t0\nCat3,1\t65535\n"
              "ProsodicInfo\tP\nExt1\tx\nExt2\t\nExt3\tz\n");
}

}  // namespace
}  // namespace TAVO::test
