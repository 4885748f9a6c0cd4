// The whole way: a lexicon's folder in, analyses out.
#include "import_command.hpp"

#include "support/encoding.hpp"
#include "support/tiny_lexicon.hpp"

#include <tavo/tavo.hpp>

#include <gtest/gtest.h>

#include <filesystem>

namespace tool {
namespace {

using TAVO::test::readFile;
using TAVO::test::TempDir;
using TAVO::test::TinyLexicon;
using TAVO::test::toSjis;

/// Runs the command; its report goes to @p report.
ExitStatus run(std::vector<std::string> arguments, std::string* report = nullptr) {
    arguments.insert(arguments.begin(), "import");
    std::vector<char*> argv;
    for (std::string& argument : arguments) argv.push_back(argument.data());
    testing::internal::CaptureStdout();
    std::string text;
    try {
        ExitStatus const status = importCommand(static_cast<int>(argv.size()), argv.data());
        text = testing::internal::GetCapturedStdout();
        if (report != nullptr) *report = text;
        return status;
    } catch (...) {
        testing::internal::GetCapturedStdout();
        throw;
    }
}

std::string analyse(TAVO::Tavo& tavo, char const* text) {
    std::string const sjis = toSjis(text);
    tavo.analyze(sjis);
    std::vector<TAVO::Mrph> morphemes;
    tavo.getResult(morphemes, 0);
    std::string result;
    for (TAVO::Mrph& m : morphemes) {
        if (!result.empty()) result += ' ';
        result += m.getForm(true) + "/" + m.getRead(true) + "/" + m.getStdForm(true);
    }
    return TAVO::test::toUtf8(result);
}

TEST(ImportCommand, MakesALexiconThatAnalyses) {
    TempDir const source, out;
    std::string report;
    ASSERT_EQ(run({"mecab", TinyLexicon().write(source), "-o", out.path()}, &report), ExitStatus::Ok);
    EXPECT_NE(report.find("entries read: 6\n"), std::string::npos) << report;
    EXPECT_EQ(report, readFile(out.file("report.txt")));
    EXPECT_FALSE(std::filesystem::exists(out.file("SysDic.txt")));

    TAVO::Tavo tavo;
    tavo.setInitFilePath(out.file("tavo.init").c_str());
    EXPECT_EQ(analyse(tavo, "山は川へ行く"), "山/ヤマ/山 は/ハ/は 川/カワ/川 へ/ヘ/へ 行く/イク/行く");
    EXPECT_EQ(analyse(tavo, "川へ行っ"), "川/カワ/川 へ/ヘ/へ 行っ/イッ/行く");
    EXPECT_EQ(analyse(tavo, "ソーセージは山"), "ソーセージ//ソーセージ は/ハ/は 山/ヤマ/山") << "a run is one morpheme";
}

TEST(ImportCommand, NumbersJoinWithTheirCommas) {
    TempDir const source, out;
    TinyLexicon tiny;
    tiny.words +=
        "２,1,1,2000,名詞,数,*,*,*,*,２,ニ,ニ\n"
        "二,1,1,2000,名詞,数,*,*,*,*,二,ニ,ニ\n";
    tiny.unknown += "NUMERIC,1,1,3000,名詞,数,*,*,*,*,*\n";
    tiny.characters += "NUMERIC 1 1 0\n0x0030..0x0039 NUMERIC\n";
    ASSERT_EQ(run({"mecab", tiny.write(source), "-o", out.path()}), ExitStatus::Ok);
    TAVO::Tavo tavo;
    tavo.setInitFilePath(out.file("tavo.init").c_str());
    EXPECT_EQ(analyse(tavo, "山は12,345"), "山/ヤマ/山 は/ハ/は 12,345//12,345");
    EXPECT_EQ(analyse(tavo, "２２二は"), "２２/ニニ/２２ 二/ニ/二 は/ハ/は") << "digits alone join";
    tavo.setReduceNumberMode(0);
    EXPECT_EQ(analyse(tavo, "12,3"), "12//12 ,//, 3//3") << "unknown words join still";
}

TEST(ImportCommand, ShortUnitsJoinLettersAndDigitsAlone) {
    TempDir const source, out;
    TinyLexicon tiny;
    std::string const more = ",*,*,*,*,*,*,*,*,*,*,*,*,*,*,*\n";  // 17 features
    tiny.words = "山,1,1,3000,名詞,一般" + more + "A,4,4,-2000,記号,文字" + more + "b,4,4,-2000,記号,文字" + more +
                 "φ,4,4,-2000,記号,文字" + more + "AB,4,4,9000,名詞,一般" + more + "2,4,4,-2000,名詞,数詞" + more;
    tiny.unknown += "ALPHA,1,1,8000,名詞,一般\nNUMERIC,1,1,3000,名詞,数詞\n";
    tiny.characters += "ALPHA 1 1 0\nNUMERIC 1 1 0\n0x0041..0x007A ALPHA\n0x0030..0x0039 NUMERIC\n";
    ASSERT_EQ(run({"mecab", tiny.write(source), "-o", out.path()}), ExitStatus::Ok);
    TAVO::Tavo tavo;
    tavo.setInitFilePath(out.file("tavo.init").c_str());
    EXPECT_EQ(analyse(tavo, "山AbφA山"), "山//山 AbφA//AbφA 山//山");
    EXPECT_EQ(analyse(tavo, "山A山"), "山//山 A//A 山//山");
    EXPECT_EQ(analyse(tavo, "2,23"), "2//2 ,//, 23//23");
    std::vector<TAVO::Mrph> words;
    std::string const text = toSjis("bA");
    tavo.analyze(text);
    tavo.getResult(words, 0);
    ASSERT_EQ(words.size(), 1U);
    EXPECT_EQ(TAVO::test::toUtf8(words[0].getPartOfSP()), "名詞:一般:Undef:Alphabet");
}

TEST(ImportCommand, SameInputGivesSameBytes) {
    TempDir const source, first, second;
    std::string const folder = TinyLexicon().write(source);
    second.write("SysDic2", "of an earlier import");
    for (std::string const& out : {first.path(), second.path()})
        ASSERT_EQ(run({"mecab", folder, "-o", out, "--data-dir", "/data", "--source"}), ExitStatus::Ok);
    for (char const* name :
         {"SysDic", "SysDic.txt", "ConnTable", "tavo.init", "reduce.rules", "number.list", "report.txt"})
        EXPECT_EQ(readFile(first.file(name)), readFile(second.file(name))) << name;
    EXPECT_NE(readFile(first.file("tavo.init")).find("Dic=/data/SysDic,/data/SysDic.txt\n"), std::string::npos);
    EXPECT_FALSE(std::filesystem::exists(second.file("SysDic2")));
}

TEST(ImportCommand, FitsOnGivenText) {
    TempDir const source, out;
    std::string const text = source.write("text.txt", "山は川へ行く\r\n\n川は山\n\n");
    std::string report;
    ASSERT_EQ(run({"mecab", TinyLexicon().write(source), "-o", out.path(), "--text", text}, &report), ExitStatus::Ok);
    EXPECT_NE(report.find(text + ", 2 sentences"), std::string::npos) << report;
    EXPECT_NE(report.find("word F1 against exact arithmetic: 1.00000"), std::string::npos) << report;
}

TEST(ImportCommand, TextWithoutAnyAnalysisIsRefused) {
    TempDir const source;
    std::string const text = source.write("text.txt", "\r\n\xF0\x9F\x98\x80\n");
    try {
        run({"mecab", TinyLexicon().write(source), "-o", source.file("out"), "--text", text});
        ADD_FAILURE();
    } catch (std::runtime_error const& error) {
        EXPECT_NE(std::string(error.what()).find("no line of text to fit on"), std::string::npos) << error.what();
    }
}

TEST(ImportCommand, BadSourceWritesNothing) {
    TempDir const source, parent;
    TinyLexicon tiny;
    tiny.words += "山,1\n";
    std::string const out = parent.file("out");
    EXPECT_THROW(run({"mecab", tiny.write(source), "-o", out}), std::runtime_error);
    EXPECT_FALSE(std::filesystem::exists(out));
    EXPECT_THROW(run({"mecab", parent.file("none"), "-o", out}), std::runtime_error);
}

TEST(ImportCommand, MergesUntilTheMatrixFits) {
    TempDir const source, whole, small;
    std::string const folder = TinyLexicon().write(source);
    ASSERT_EQ(run({"mecab", folder, "-o", whole.path(), "--merge", "0", "--merge-lines", "0"}), ExitStatus::Ok);
    std::vector<std::string> const merging{"mecab", folder,          "-o", small.path(),  "--merge",
                                           "0",     "--merge-lines", "0",  "--max-table", "0.0001"};
    ASSERT_EQ(run(merging), ExitStatus::Ok);
    std::size_t const bytes = readFile(small.file("ConnTable")).size();
    EXPECT_LT(bytes, readFile(whole.file("ConnTable")).size());
    TAVO::Tavo tavo;
    tavo.setInitFilePath(small.file("tavo.init").c_str());
    EXPECT_NE(analyse(tavo, "山は川へ行く"), "");
    EXPECT_THROW(run({"mecab", folder, "-o", small.path(), "--max-table", "0.00001"}), std::runtime_error);
}

TEST(ImportCommand, WrongArgumentsAreUsageErrors) {
    for (std::vector<std::string> const& arguments : {std::vector<std::string>{},
                                                      {"mecab"},
                                                      {"mecab", "x"},
                                                      {"mecab", "x", "-o", "y", "--step", "0"},
                                                      {"mecab", "x", "-o", "y", "--max-table", "0"}}) {
        try {
            run(arguments);
            ADD_FAILURE() << arguments.size();
        } catch (ToolError const& error) {
            EXPECT_EQ(error.status(), ExitStatus::Usage);
        }
    }
}

}  // namespace
}  // namespace tool
