#include "result/comment_rules.hpp"

#include "support/line_cases.hpp"
#include "support/tagged_world.hpp"
#include "support/testing.hpp"

#include <tavo/error.hpp>

namespace TAVO::test {
namespace {

SmallWorld words() {
    SmallWorld world;
    world.namesUtf8({"Begin", "End", "Undef", "Noun", "Comment"});
    world.cost([](unsigned left, unsigned right) -> std::uint8_t { return left == 3 || right == 3 ? 100 : 10; });
    world.linesUtf8({"a,Noun,5", "b,Noun,5", "ab,Noun,5", "(w),Noun,7,わら", "表,Noun,5"});
    return world;
}

/// What a rule file's error says behind the path, "nothing thrown" without one.
std::string errorOf(TaggedWorld& world, std::string const& rules) {
    std::string const path = world.dir.write("rules", rules);
    std::string const text = thrown<illegal_format>([&] { world.tavo.setCommentRulePath(path.c_str()); });
    std::string const start = "ILLEGAL_FORMAT: " + path;
    return text.starts_with(start) ? text.substr(start.size()) : text;
}

TEST(CommentRules, BadRulesAreRefusedWithTheirLine) {
    Table<char const*, char const*> const cases{
        {"Begin=/*", ":1:Mismatch Begin and End"},
        {"End=*/\n", ":1:Mismatch Begin and End"},
        {"String=x\nBegin=/*\n", ":2:Mismatch Begin and End"},
        {"String=x\nBegin=/*\nEnd=*/\n", ":3:Illegal Use: String, Begin, End"},
        {"PartOfSP=Noun\n", ":1:Illegal Use: String, Begin, End"},
        // The only key is misspelt: the earlier check speaks.
        {"Strng=x\n", ":1:Illegal Use: String, Begin, End"},
        {"String=x\nStrng=y\n", ":2:Unknown Tag:Strng"},
        {"String=x\nstring=y\n", ":2:Unknown Tag:string"},
        {"String=\n", ":1:Empty Comment:"},
        {"Begin=x\nEnd=\n", ":2:Empty Comment:"},
        {"# comment\n\nString=x\n\n; more\nString=y\nBad=1\n", ":7:Unknown Tag:Bad"},
        {"[rule]\nString=x\n[rule]\nBegin=y\n", ":4:Mismatch Begin and End"},
        {"String=x\nString=y\nEnd=z", ":3:Mismatch Begin and End"},
        {"String=x\nData256=y\n", ":2:Data256: extension fields are Data0 to Data255"},
        {"String=x\nData-1=y\n", ":2:Data-1: extension fields are Data0 to Data255"},
        {"String=x\nData255=y\n", "nothing thrown"},
        {"", "nothing thrown"},
        {"# only comments\n:before\nno pair\n", "nothing thrown"},
        {"String=x\nPartOfSP=Noun\nStdForm=s\nReadPron=r\nRead=r\nPron=p\nLVRead=l\nGroup=g\nAdditionalInfo=a\n"
         "ProsodicInfo=p\nCategory1=1\nCategory2=2\nCategory3=3\nData=0\nData5=5\nDataX=0\n",
         "nothing thrown"},
    };
    TaggedWorld world(words());
    for (auto const& [rules, error] : cases) EXPECT_EQ(errorOf(world, rules), error) << rules;
}

TEST(CommentRules, AFailedFileLeavesTheEarlierRulesInForce) {
    TaggedWorld world(words());
    EXPECT_STREQ(world.tavo.getCommentRulePath(), "");
    std::string const good = world.dir.write("good", "String=#\nPartOfSP=Comment\n");
    world.tavo.setCommentRulePath(good.c_str());
    EXPECT_NE(errorOf(world, "String=a\n\nBegin=b\n"), "nothing thrown");
    EXPECT_THROW(world.tavo.setCommentRulePath((good + ".missing").c_str()), file_not_found);
    EXPECT_EQ(world.tavo.getCommentRulePath(), good);
    EXPECT_EQ(world.analyse("a#"), "a:Noun #:Comment");
    Tavo const copy(world.tavo);
    EXPECT_EQ(copy.getCommentRulePath(), good);
    world.tavo.setCommentRulePath(nullptr);
    EXPECT_STREQ(world.tavo.getCommentRulePath(), "");
    EXPECT_EQ(world.analyse("a#"), "a:Noun #:Undef");
}

constexpr char kRules[] =
    "String=#\nPartOfSP=Comment\n"
    "String=##!\nPartOfSP=Noun\n\n"
    "Begin=/*\nEnd=*/\nPartOfSP=Comment\n"
    "Begin=#<\nEnd=>\nPartOfSP=Comment\n"
    "[rule]\nString=a.b\nPartOfSP=Comment\n"
    "String=(w)\n"
    "String=|\nPartOfSP=nothing\n";

TEST(CommentRules, Golden) {
    TempDir const dir;
    expectLineCases("comments.txt", words(), "CommentRule=" + dir.write("rules", kRules));
}

TEST(CommentRules, GiveTheMorphemeTheirAttributes) {
    TaggedWorld world(words());
    world.tavo.setTaggedInputMode(0);
    ASSERT_EQ(errorOf(world, toSjis("String = (w)\nRead = わらい\nAdditionalInfo = laugh at \"it\"\nData1 = x\n")),
              "nothing thrown");
    std::vector<Mrph> const result = world.morphemes("a(w)(w)");
    ASSERT_EQ(describe(result), "a:Noun (w):Undef (w):Undef");
    for (std::size_t const i : {1U, 2U}) {
        Mrph const& m = result[i];
        EXPECT_EQ(toUtf8(m.format("%k, %a, %D1", "")), "わらい, laugh at \"it\", x");
    }
    EXPECT_EQ(world.tavo.getSentence(0), "a(w)(w)");
}

}  // namespace
}  // namespace TAVO::test
