#include "result/comment_rules.hpp"

#include "support/line_cases.hpp"
#include "support/tagged_world.hpp"

#include <tavo/error.hpp>

#include <gtest/gtest.h>

namespace TAVO {
namespace {

using test::SmallWorld;
using test::TaggedWorld;
using test::toSjis;

SmallWorld words() {
    SmallWorld world;
    world.namesUtf8({"Begin", "End", "Undef", "Noun", "Comment"});
    world.cost([](unsigned left, unsigned right) -> std::uint8_t { return left == 3 || right == 3 ? 100 : 10; });
    world.linesUtf8({"a,Noun,5", "b,Noun,5", "ab,Noun,5", "(w),Noun,7,わら", "表,Noun,5"});
    return world;
}

/// The text of the error that a rule file gives; the path is written as "PATH".
std::string errorOf(TaggedWorld& world, std::string const& rules) {
    std::string const path = world.dir.write("rules", rules);
    try {
        world.tavo.setCommentRulePath(path.c_str());
    } catch (illegal_format const& error) {
        std::string text = error.what();
        if (std::size_t const at = text.find(path); at != std::string::npos) text.replace(at, path.size(), "PATH");
        return text;
    }
    return "";
}

TEST(CommentRules, BadRulesAreRefusedWithTheirLine) {
    struct Case {
        char const* rules;
        char const* error;
    };
    Case const cases[] = {
        {"Begin=/*", "ILLEGAL_FORMAT: PATH:1:Mismatch Begin and End"},
        {"End=*/\n", "ILLEGAL_FORMAT: PATH:1:Mismatch Begin and End"},
        {"String=x\nBegin=/*\n", "ILLEGAL_FORMAT: PATH:2:Mismatch Begin and End"},
        {"String=x\nBegin=/*\nEnd=*/\n", "ILLEGAL_FORMAT: PATH:3:Illegal Use: String, Begin, End"},
        {"PartOfSP=Noun\n", "ILLEGAL_FORMAT: PATH:1:Illegal Use: String, Begin, End"},
        // The only key is misspelt: the earlier check speaks.
        {"Strng=x\n", "ILLEGAL_FORMAT: PATH:1:Illegal Use: String, Begin, End"},
        {"String=x\nStrng=y\n", "ILLEGAL_FORMAT: PATH:2:Unknown Tag:Strng"},
        {"String=x\nstring=y\n", "ILLEGAL_FORMAT: PATH:2:Unknown Tag:string"},
        {"String=\n", "ILLEGAL_FORMAT: PATH:1:Empty Comment:"},
        {"Begin=x\nEnd=\n", "ILLEGAL_FORMAT: PATH:2:Empty Comment:"},
        {"# comment\n\nString=x\n\n; more\nString=y\nBad=1\n", "ILLEGAL_FORMAT: PATH:7:Unknown Tag:Bad"},
        {"[rule]\nString=x\n[rule]\nBegin=y\n", "ILLEGAL_FORMAT: PATH:4:Mismatch Begin and End"},
        {"String=x\nString=y\nEnd=z", "ILLEGAL_FORMAT: PATH:3:Mismatch Begin and End"},
        {"", ""},
        {"# only comments\n:before\nno pair\n", ""},
        {"String=x\nPartOfSP=Noun\nStdForm=s\nReadPron=r\nRead=r\nPron=p\nLVRead=l\nGroup=g\nAdditionalInfo=a\n"
         "ProsodicInfo=p\nCategory1=1\nCategory2=2\nCategory3=3\nData=0\nData5=5\nDataX=0\n",
         ""},
    };
    TaggedWorld world(words());
    for (Case const& c : cases) EXPECT_EQ(errorOf(world, c.rules), c.error) << c.rules;
}

TEST(CommentRules, AFailedFileLeavesTheEarlierRulesInForce) {
    TaggedWorld world(words());
    EXPECT_STREQ(world.tavo.getCommentRulePath(), "");
    std::string const good = world.dir.write("good", "String=#\nPartOfSP=Comment\n");
    world.tavo.setCommentRulePath(good.c_str());
    EXPECT_NE(errorOf(world, "String=a\n\nBegin=b\n"), "");
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
    test::TempDir const dir;
    test::expectLineCases("comments.txt", words(), "CommentRule=" + dir.write("rules", kRules));
}

TEST(CommentRules, GiveTheMorphemeTheirAttributes) {
    TaggedWorld world(words());
    world.tavo.setTaggedInputMode(0);
    ASSERT_EQ(errorOf(world, toSjis("String = (w)\nRead = わらい\nAdditionalInfo = laugh at \"it\"\nData1 = x\n")), "");
    std::vector<Mrph> const result = world.morphemes("a(w)(w)");
    ASSERT_EQ(test::describe(result), "a:Noun (w):Undef (w):Undef");
    for (int i : {1, 2}) {
        Mrph const& m = result[static_cast<std::size_t>(i)];
        EXPECT_EQ(m.getRead(true), toSjis("わらい"));
        EXPECT_STREQ(m.getAdditionalInfo(), "laugh at \"it\"");
        EXPECT_STREQ(m.getExt(1), "x");
    }
    EXPECT_EQ(world.tavo.getSentence(0), "a(w)(w)");
}

TEST(CommentRules, NamesAreResolvedAgainstTheTableInForce) {
    SmallWorld const world = words();
    test::TempDir dir;
    SmallWorld::Paths const paths = world.writeTo(dir.path());
    std::string const init =
        dir.write("tavo.init", "CommentRule=" + dir.write("rules", "String=#\nPartOfSP=Comment\n") +
                                   "\nDic=" + paths.dic + "\nConnTable=" + paths.connTable + "\n");
    Tavo tavo;
    tavo.setInitFilePath(init.c_str());
    std::string const text = "a#";
    tavo.analyze(text);
    EXPECT_EQ(test::describeAll(tavo), "a:Noun #:Comment");
}

}  // namespace
}  // namespace TAVO
