#include "config/init_file.hpp"

#include "dic/pools.hpp"
#include "support/small_world.hpp"
#include "support/testing.hpp"

#include <tavo/tavo.hpp>

#include <cstdlib>

namespace TAVO::test {
namespace {

class InitFile : public testing::Test {
protected:
    void SetUp() override {
        paths_ = SmallWorld().names({"BOS", "EOS", "Undef", "Noun"}).line("a,Noun").writeTo(dir_.path());
        unsetenv("TAVO_PATH");
    }
    void TearDown() override {
        unsetenv("TAVO_PATH");
        sharedPools().dispose();
    }

    /// Applies @p lines, with the small world's files named unless @p bare.
    void apply(Tavo& tavo, std::string const& lines, bool bare = false) {
        std::string const files = bare ? "" : "\nDic=" + paths_.dic + "\nConnTable=" + paths_.connTable + "\n";
        tavo.setInitFilePath(dir_.write("tavo.ini", lines + files).c_str());
    }
    std::string errorOf(std::string const& lines, bool bare = false) {
        Tavo tavo;
        return thrown([&] { apply(tavo, lines, bare); });
    }

    TempDir dir_;
    SmallWorld::Paths paths_;
};

TEST_F(InitFile, SetsEveryIntegerModeLastValueWins) {
    Table<char const*, int (Tavo::*)() const, int> const cases{
        {"MemoryMapped=0\nCooccurrence=1\nMemoryMapped=1", &Tavo::getMemoryMappedMode, 1},
        {"MemoryMapped=0", &Tavo::getMemoryMappedMode, 0},
        {"Cooccurrence=1abc", &Tavo::getCooccurrenceMode, 1},
        {"TaggedInput=1", &Tavo::getTaggedInputMode, 1},
        {"DeleteSlash=0", &Tavo::getDeleteSlashMode, 0},
        {"InputConvert=2", &Tavo::getInputConvertMode, 2},
        {"OutputConvert=3", &Tavo::getOutputConvertMode, 3},
        {"DivideWord=1", &Tavo::getDivideWordMode, 1},
        {" DelimitCRLF = 1 ", &Tavo::getDelimitCRLFMode, 1},
        {"DeleteCRLF=1", &Tavo::getDeleteCRLFMode, 1},
        {"AlphabetCapitalize=01", &Tavo::getAlphabetCapitalizeMode, 1},
        {"Alternative=1", &Tavo::getAlternativeMode, 1},
        {"ReduceUndef=0", &Tavo::getReduceUndefMode, 0},
        {"ReduceChar=0", &Tavo::getReduceCharMode, 0},
        {"ReduceNumber=0", &Tavo::getReduceNumberMode, 0},
        {";DivideWord=1\n#DivideWord=1", &Tavo::getDivideWordMode, 0},
        {" ;x=1\nDivideWord=1", &Tavo::getDivideWordMode, 1},
        {"dividEWord=1\n[DivideWord]\nDivideWord\nDivideWord=\n=1", &Tavo::getDivideWordMode, 0},
        {"ProsodicInfoCombine=begin", &Tavo::getProsodicInfoCombineMode, 1},
        {"ProsodicInfoCombine=end", &Tavo::getProsodicInfoCombineMode, 2},
        {"ProsodicInfoCombine=|", &Tavo::getProsodicInfoCombineMode, 0},
    };
    for (auto const& [lines, getter, expected] : cases) {
        Tavo tavo;
        apply(tavo, lines);
        EXPECT_EQ((tavo.*getter)(), expected) << lines;
    }
}

TEST_F(InitFile, RefusesBadIntegers) {
    std::string const path = dir_.file("tavo.ini");
    Table<char const*, std::string> const cases{
        {"Cooccurrence=2", "UNKNOWN_SETTING:" + path + ": Cooccurrence=2"},
        {"ReduceNumber=5", "UNKNOWN_SETTING:" + path + ": ReduceNumber=5"},
        {"DelimitCRLF=99999999999999999999", "UNKNOWN_SETTING:" + path + ": DelimitCRLF=99999999999999999999"},
        {"Cooccurrence=x", "UNKNOWN_SETTING:"},
        {"Cooccurrence=-1", "UNKNOWN_SETTING:"},
        {"Cooccurrence=9\nCooccurrence=0", "nothing thrown"},
    };
    for (auto const& [line, expected] : cases) EXPECT_EQ(errorOf(line), expected) << line;
}

TEST_F(InitFile, StringsAndLists) {
    Tavo tavo;
    apply(tavo,
          "OutputFormat=%w\\n\nEOS=E\\n\\q\\\\\nNullString=\\t*\nDelimiter=.\nDelimiter=!=\n"
          "ExtCombine=3:end\nExtCombine=1:+\nExtCombine=7\nProsodicInfoCombine=|");
    EXPECT_STREQ(tavo.getOutputFormat(), "%w\\n");
    EXPECT_STREQ(tavo.getEOS(), "E\n\\q\\");
    EXPECT_STREQ(tavo.getNullString(), "\t*");
    ASSERT_EQ(tavo.getDelimiterString().size(), 2U);
    EXPECT_STREQ(tavo.getDelimiterString()[1], "!=");
    EXPECT_EQ(tavo.getExtCombineMode(3), 2);
    EXPECT_STREQ(tavo.getExtFiller(3), "");
    EXPECT_STREQ(tavo.getExtFiller(1), "+");
    EXPECT_STREQ(tavo.getProsodicInfoFiller(), "|");
    apply(tavo, "ExtCombine=2:begin");
    EXPECT_EQ(tavo.getExtCombineMode(3), 0) << "the key clears the earlier fields";
    EXPECT_STREQ(tavo.getOutputFormat(), "%w\\n") << "keys that are absent keep their values";
}

TEST_F(InitFile, LongLinesAreCutAndGoOnAsFurtherLines) {
    // 4095 bytes form the first line, one byte is lost, and the rest is a line.
    std::string const first = "NullString=" + std::string(4095 - 11, 'x');
    Tavo tavo;
    apply(tavo, first + "?" + "EOS=y");
    EXPECT_EQ(std::string(tavo.getNullString()).size(), 4095U - 11U);
    EXPECT_STREQ(tavo.getEOS(), "y");
}

TEST_F(InitFile, DefaultFilesComeFromTavoPath) {
    setenv("TAVO_PATH", (dir_.path() + "\\").c_str(), 1);
    Tavo tavo;
    apply(tavo, "", true);
    EXPECT_STREQ(tavo.getDicPath(0), (dir_.path() + "/SysDic").c_str());
    EXPECT_STREQ(tavo.getConnTablePath(), (dir_.path() + "/ConnTable").c_str());
    EXPECT_TRUE(static_cast<bool>(tavo));
    unsetenv("TAVO_PATH");
    EXPECT_EQ(errorOf("", true), "FILE_NOT_OPEN: ./SysDic");
}

TEST_F(InitFile, TextsMayBeUtf8) {
    Table<char const*, char const*, std::string> const cases{
        {"a first line", "; encoding: utf-8\n", toSjis("表\n")},
        {"another one", "# -*- Coding: UTF8 -*-\r\n", toSjis("表\n")},
        {"a byte order mark", "\xEF\xBB\xBF", toSjis("表\n")},
        {"none", "; utf-8, they say\n", "表\n"},
        {"a second line", ";\n; coding: utf-8\n", "表\n"},
        {"no comment", "coding: utf-8\n", "表\n"},
    };
    std::string const rules = dir_.write("表", "");
    for (auto const& [name, start, expected] : cases) {
        Tavo tavo;
        apply(tavo, std::string(start) + "EOS=表\\n\nDelimiter=表\\n\nConvertRule=" + rules);
        EXPECT_EQ(tavo.getEOS(), expected) << name;
        EXPECT_EQ(tavo.getDelimiterString().at(0), expected.substr(0, expected.size() - 1) + "\\n") << name;
        EXPECT_EQ(tavo.getConvertRulePath(), rules) << "paths are bytes";
    }
    EXPECT_EQ(errorOf("; coding: utf-8\nEOS=\U0001F600"),
              "UNKNOWN_SETTING:" + dir_.file("tavo.ini") + ": EOS=\U0001F600");
}

TEST_F(InitFile, FilesBesideTheConnectionTableBelongToIt) {
    std::string const beside = dir_.write("reduce.rules", "Number =\n"), list = dir_.write("number.list", "Noun\n");
    TempDir const elsewhere;
    std::string const other = elsewhere.write("other.rules", "Symbol =\n");
    std::string const bare = elsewhere.write("ConnTable", readFile(paths_.connTable));
    Table<std::string, std::string, std::string> const cases{
        {"", beside, list},
        {"ReduceRule=" + other, other, list},
        {"ReduceRule=none\nNumberPartOfSP=none", "", ""},
        {"ConnTable=" + bare + "\nDic=" + paths_.dic, "", ""},
    };
    Tavo again;
    for (auto const& [lines, rules, numbers] : cases) {
        Tavo tavo;
        bool const namesTable = lines.starts_with("ConnTable");
        apply(tavo, lines, namesTable);
        EXPECT_EQ(tavo.getReduceRulePath(), rules) << lines;
        EXPECT_EQ(tavo.getNumberPartOfSPPath(), numbers) << lines;
        apply(again, "");
        apply(again, lines, namesTable);
        EXPECT_EQ(again.getReduceRulePath(), rules) << lines << ": they go with their table";
    }
    Tavo set;
    set.setReduceRulePath(other.c_str());
    apply(set, "");
    EXPECT_EQ(set.getReduceRulePath(), other) << "what was set before stays";
    set.setReduceRulePath(nullptr);
    set.setConnTablePath(paths_.connTable.c_str());
    EXPECT_STREQ(set.getReduceRulePath(), "") << "the setter reads the table alone";
    setenv("TAVO_PATH", dir_.path().c_str(), 1);
    Tavo byDefault;
    apply(byDefault, "", true);
    EXPECT_EQ(byDefault.getReduceRulePath(), beside);
}

TEST_F(InitFile, ErrorsKeepWhatWasAppliedBefore) {
    Tavo tavo;
    EXPECT_THROW(tavo.setInitFilePath(nullptr), std::invalid_argument);
    EXPECT_THROW(tavo.setInitFilePath(dir_.file("none").c_str()), file_not_found);
    EXPECT_STREQ(tavo.getInitFilePath(), dir_.file("none").c_str());
    EXPECT_THROW(apply(tavo, "DivideWord=1\nReduceRule=" + dir_.file("none")), file_not_found);
    EXPECT_EQ(tavo.getDivideWordMode(), 1);
    EXPECT_EQ(tavo.getDicCount(), 1);
    EXPECT_STREQ(tavo.getConnTablePath(), "");
}

TEST(DecodeEscapes, StepsByCharacters) {
    EXPECT_EQ(decodeEscapes("\\a\\b\\f\\n\\r\\t\\v\\\\"), "\a\b\f\n\r\t\v\\");
    EXPECT_EQ(decodeEscapes("\x83\x5Cn\\"), "\x83\x5Cn\\");
}

}  // namespace
}  // namespace TAVO::test
