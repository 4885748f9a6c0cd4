// The whole way: a lexicon's folder in, analyses out.
#include "support/describe.hpp"
#include "support/run_import.hpp"
#include "support/testing.hpp"
#include "support/tiny_lexicon.hpp"

namespace tool {
namespace {

using namespace TAVO::test;

/// An analyser over the lexicon in @p folder.
struct Imported {
    explicit Imported(TempDir const& folder) { tavo.setInitFilePath(folder.file("tavo.init").c_str()); }
    std::string analyse(std::string_view text, char const* format = "%w/%k/%s") {
        std::string const sjis = toSjis(text);
        tavo.analyze(sjis);
        return toUtf8(describe(morphemesOf(tavo), format));
    }
    TAVO::Tavo tavo;
};

TEST(ImportCommand, MakesALexiconThatAnalyses) {
    TempDir const source, out;
    std::string const report = runImport({"mecab", TinyLexicon().write(source), "-o", out.path()});
    EXPECT_TRUE(contains(report, "entries read: 6\n"));
    EXPECT_EQ(report, readFile(out.file("report.txt")));
    EXPECT_FALSE(std::filesystem::exists(out.file("SysDic.txt")));

    Imported lexicon(out);
    EXPECT_EQ(lexicon.analyse("山は川へ行く"), "山/ヤマ/山 は/ハ/は 川/カワ/川 へ/ヘ/へ 行く/イク/行く");
    EXPECT_EQ(lexicon.analyse("川へ行っ"), "川/カワ/川 へ/ヘ/へ 行っ/イッ/行く");
    EXPECT_EQ(lexicon.analyse("ソーセージは山"), "ソーセージ//ソーセージ は/ハ/は 山/ヤマ/山")
        << "a run is one morpheme";
}

TEST(ImportCommand, NumbersJoinWithTheirCommas) {
    TempDir const source, out;
    TinyLexicon tiny;
    tiny.words +=
        "２,1,1,2000,名詞,数,*,*,*,*,２,ニ,ニ\n"
        "二,1,1,2000,名詞,数,*,*,*,*,二,ニ,ニ\n";
    tiny.unknown += "NUMERIC,1,1,3000,名詞,数,*,*,*,*,*\n";
    tiny.characters += "NUMERIC 1 1 0\n0x0030..0x0039 NUMERIC\n";
    runImport({"mecab", tiny.write(source), "-o", out.path()});
    Imported lexicon(out);
    EXPECT_EQ(lexicon.analyse("山は12,345"), "山/ヤマ/山 は/ハ/は 12,345//12,345");
    EXPECT_EQ(lexicon.analyse("２２二は"), "２２/ニニ/２２ 二/ニ/二 は/ハ/は") << "digits alone join";
    lexicon.tavo.setReduceNumberMode(0);
    EXPECT_EQ(lexicon.analyse("12,3"), "12//12 ,//, 3//3") << "unknown words join still";
}

TEST(ImportCommand, ShortUnitsJoinLettersAndDigitsAlone) {
    TempDir const source, out;
    TinyLexicon tiny;
    std::string const more = ",*,*,*,*,*,*,*,*,*,*,*,*,*,*,*\n";  // 17 features
    tiny.words = "山,1,1,3000,名詞,一般" + more + "A,4,4,-2000,記号,文字" + more + "b,4,4,-2000,記号,文字" + more +
                 "φ,4,4,-2000,記号,文字" + more + "AB,4,4,9000,名詞,一般" + more + "2,4,4,-2000,名詞,数詞" + more;
    tiny.unknown += "ALPHA,1,1,8000,名詞,一般\nNUMERIC,1,1,3000,名詞,数詞\n";
    tiny.characters += "ALPHA 1 1 0\nNUMERIC 1 1 0\n0x0041..0x007A ALPHA\n0x0030..0x0039 NUMERIC\n";
    runImport({"mecab", tiny.write(source), "-o", out.path()});
    Imported lexicon(out);
    EXPECT_EQ(lexicon.analyse("山AbφA山"), "山//山 AbφA//AbφA 山//山");
    EXPECT_EQ(lexicon.analyse("山A山"), "山//山 A//A 山//山");
    EXPECT_EQ(lexicon.analyse("2,23"), "2//2 ,//, 23//23");
    EXPECT_EQ(lexicon.analyse("bA", "%w/%h"), "bA/名詞:一般:Undef:Alphabet");
}

TEST(ImportCommand, SameInputGivesSameBytes) {
    TempDir const source, first, second;
    std::string const folder = TinyLexicon().write(source);
    second.write("SysDic2", "of an earlier import");
    for (std::string const& out : {first.path(), second.path()})
        runImport({"mecab", folder, "-o", out, "--data-dir", "/data", "--source"});
    for (char const* name :
         {"SysDic", "SysDic.txt", "ConnTable", "tavo.init", "reduce.rules", "number.list", "report.txt"})
        EXPECT_EQ(readFile(first.file(name)), readFile(second.file(name))) << name;
    EXPECT_TRUE(contains(readFile(first.file("tavo.init")), "Dic=/data/SysDic,/data/SysDic.txt\n"));
    EXPECT_FALSE(std::filesystem::exists(second.file("SysDic2")));
}

TEST(ImportCommand, FitsOnGivenText) {
    TempDir const source, out;
    std::string const text = source.write("text.txt", "山は川へ行く\r\n\n川は山\n\n");
    std::string const report = runImport({"mecab", TinyLexicon().write(source), "-o", out.path(), "--text", text});
    EXPECT_TRUE(contains(report, text + ", 2 sentences"));
    EXPECT_TRUE(contains(report, "word F1 against exact arithmetic: 1.00000"));
}

TEST(ImportCommand, TextWithoutAnyAnalysisIsRefused) {
    TempDir const source;
    std::string const text = source.write("text.txt", "\r\n\xF0\x9F\x98\x80\n");
    std::vector<std::string> const arguments{"mecab", TinyLexicon().write(source), "-o", source.file("out"), "--text",
                                             text};
    EXPECT_TRUE(contains(thrown([&] { runImport(arguments); }), "no line of text to fit on"));
}

TEST(ImportCommand, BadSourceWritesNothing) {
    TempDir const source, parent;
    TinyLexicon tiny;
    tiny.words += "山,1\n";
    std::string const out = parent.file("out");
    EXPECT_THROW(runImport({"mecab", tiny.write(source), "-o", out}), std::runtime_error);
    EXPECT_FALSE(std::filesystem::exists(out));
    EXPECT_THROW(runImport({"mecab", parent.file("none"), "-o", out}), std::runtime_error);
}

TEST(ImportCommand, MergesUntilTheMatrixFits) {
    TempDir const source, whole, small;
    std::string const folder = TinyLexicon().write(source);
    runImport({"mecab", folder, "-o", whole.path(), "--merge", "0", "--merge-lines", "0"});
    std::vector<std::string> const merging{"mecab", folder,          "-o", small.path(),  "--merge",
                                           "0",     "--merge-lines", "0",  "--max-table", "0.0001"};
    runImport(merging);
    std::size_t const bytes = readFile(small.file("ConnTable")).size();
    EXPECT_LT(bytes, readFile(whole.file("ConnTable")).size());
    Imported lexicon(small);
    EXPECT_NE(lexicon.analyse("山は川へ行く"), "");
    EXPECT_THROW(runImport({"mecab", folder, "-o", small.path(), "--max-table", "0.00001"}), std::runtime_error);
}

TEST(ImportCommand, WrongArgumentsAreUsageErrors) {
    for (std::vector<std::string> const& arguments : {std::vector<std::string>{},
                                                      {"mecab"},
                                                      {"mecab", "x"},
                                                      {"mecab", "x", "-o", "y", "--step", "0"},
                                                      {"mecab", "x", "-o", "y", "--max-table", "0"}}) {
        try {
            runImport(arguments);
            ADD_FAILURE() << arguments.size();
        } catch (ToolError const& error) {
            EXPECT_EQ(error.status(), ExitStatus::Usage);
        }
    }
}

}  // namespace
}  // namespace tool
