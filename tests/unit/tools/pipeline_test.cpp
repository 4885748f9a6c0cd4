#include "cli/pipeline.hpp"

#include "cli/tool_error.hpp"
#include "support/small_world.hpp"
#include "support/testing.hpp"

namespace {

using TAVO::test::SmallWorld;
using TAVO::test::TempDir;
using tool::Encoding;

TEST(TokenTable, LongTextsAreCutBetweenCharacters) {
    EXPECT_EQ(TAVO::lengthWithin("abc", 3, Encoding::Utf8), 3U);
    EXPECT_EQ(TAVO::lengthWithin("あい", 5, Encoding::Utf8), 3U);
    EXPECT_EQ(TAVO::lengthWithin("aあい", 4, Encoding::Utf8), 4U);
    EXPECT_EQ(TAVO::lengthWithin("😀😀", 7, Encoding::Utf8), 4U);
    EXPECT_EQ(TAVO::lengthWithin("\x80\x80\x80\x80\x80\x80", 5, Encoding::Utf8), 5U);
    EXPECT_EQ(TAVO::lengthWithin("\x82\xA0\x82\xA2", 3, Encoding::Sjis), 2U);
    EXPECT_EQ(TAVO::lengthWithin("a\x82\xA2z", 3, Encoding::Sjis), 3U);
}

/// An analyser over two words.
class SmallLexicon {
public:
    SmallLexicon() {
        SmallWorld world;
        world.namesUtf8({"BOS", "EOS", "UNK", "名詞:一般", "助詞-2"});
        world.linesUtf8({"表,名詞:一般,1,(ひょう|ヒョー),ひょー,,,組,1:2,,,韻,e", "も,助詞\\-2,1,も"});
        world.writeTo(dir.path()).attachTo(analyser, true);
    }

    TempDir dir;
    TAVO::Tavo analyser;
};

/// In Shift_JIS, where nothing is converted and widths are bytes, the program
/// writes what the library writes.
TEST(FormatWriter, AgreesWithTheLibrary) {
    SmallLexicon lexicon;
    std::string const text = TAVO::test::toSjis("表もx");
    for (char const* format : {"%10w %20h %k\\n", "%w|%W|%h|%H|%k|%K|%p|%P|%s|%S|%l|%e|%c|%C|%D|%D0|%D1|%g|%A",
                               "%%\\%\\q%", "%3x%4X%5a%6b%2B\\\\\\t", "表%5s表\\", "%表x%2も"}) {
        SCOPED_TRACE(format);
        tool::OutputOptions options;
        options.encoding = Encoding::Sjis;
        options.showClasses = true;
        options.format = TAVO::test::toSjis(format);
        options.nullString = "-";
        options.eos = "$";
        tool::BlockAnalyser block(lexicon.analyser, options);
        tool::OutBuffer out;
        block.run(text, out);

        lexicon.analyser.setOutputFormat(options.format->c_str());
        lexicon.analyser.setNullString("-");
        lexicon.analyser.setEOS("$");
        lexicon.analyser.analyze(text);
        std::ostringstream expected;
        lexicon.analyser.output(expected, 0);
        EXPECT_EQ(out.view(), expected.str());
    }
}

/// What comes out for @p block, and what is told of it.
std::string outputOf(tool::BlockAnalyser& analyser, std::string const& block, tool::BlockReport& report) {
    std::string const padded = block + std::string(TAVO::kPaddingBytes, '\0');
    tool::OutBuffer out;
    report = analyser.run(std::string_view(padded).substr(0, block.size()), out);
    return std::string(out.view());
}

TEST(BlockAnalyser, LinesTogetherAreAsEachAlone) {
    using namespace std::string_literals;
    std::string longLine;
    while (longLine.size() < 5000) longLine += "表も";
    std::vector<std::string> const lines{
        "表も表",   "",           "\u0301表", "\uFEFF\u200D", "表\r",         "a\r表", "\r",  "x\xFF",    longLine,
        "も\u3099", "表。も。表", "\0表\0"s,  "\xE8\xA1",     "か",           "",      "表x", "\x95\x5C", "\x95",
        "も",       "\x95\x95",   "も",       "\x95\n",       "\x95\x95\x95", "表も",  "も"};
    SmallLexicon lexicon;
    std::string const fullStop = TAVO::test::toSjis("。");
    lexicon.analyser.setDelimiterString({fullStop.c_str()});
    for (Encoding const encoding : {Encoding::Utf8, Encoding::Sjis})
        for (tool::OutputKind const kind : {tool::OutputKind::Tavo, tool::OutputKind::Wakati, tool::OutputKind::Mecab,
                                            tool::OutputKind::Json, tool::OutputKind::Tagged}) {
            tool::OutputOptions options;
            options.kind = kind;
            options.encoding = encoding;
            tool::BlockAnalyser analyser(lexicon.analyser, options);
            std::string all, expected;
            std::size_t invalidBytes = 0;
            tool::BlockReport report;
            for (std::string const& line : lines)
                for (char const* lineBreak : {"\n", "\r\n"}) {
                    expected += outputOf(analyser, line + lineBreak, report);
                    invalidBytes += report.invalidBytes;
                    all += line + lineBreak;
                }
            std::string together = outputOf(analyser, all, report);
            EXPECT_EQ(together, expected) << static_cast<int>(kind);
            std::erase(together, ' ');
            EXPECT_EQ(together == all, kind == tool::OutputKind::Wakati) << together;
            EXPECT_EQ(report.invalidBytes, invalidBytes);
            EXPECT_EQ(report.firstInvalidLine, encoding == Encoding::Utf8 ? 15U : 0U);
        }
}

class PipelineThreadTest : public testing::Test {
protected:
    PipelineThreadTest() {
        TAVO::Tavo::readyForThread();
        options_.kind = tool::OutputKind::Wakati;
        std::string text;
        for (int i = 0; i < 60000; ++i) text += "表も表" + std::to_string(i) + "\n";
        files_ = {lexicon_.dir.write("a", text), lexicon_.dir.write("b", "\xFF\n")};
    }

    tool::InputReport run(std::size_t threads, tool::Sink const& sink) {
        tool::LineReader reader(files_, false);
        return tool::runPipeline(reader, lexicon_.analyser, options_, threads, sink);
    }

    SmallLexicon lexicon_;
    tool::OutputOptions options_;
    std::vector<std::string> files_;
};

TEST_F(PipelineThreadTest, OutputIsTheSameForAnyNumberOfThreads) {
    std::string alone;
    run(1, [&](std::string_view bytes) { alone += bytes; });
    ASSERT_TRUE(alone.starts_with("表 も 表 0\n表 も 表 1\n")) << alone.substr(0, 100);
    for (std::size_t const threads : {2U, 5U}) {
        std::string together;
        tool::InputReport const report = run(threads, [&](std::string_view bytes) { together += bytes; });
        EXPECT_TRUE(together == alone) << threads << " threads";  // too long to be shown
        EXPECT_EQ(report.invalidBytes, 1U);
        EXPECT_EQ(report.firstInvalidFile, files_[1]);
        EXPECT_EQ(report.firstInvalidLine, 1U);
    }
}

TEST_F(PipelineThreadTest, AFailingSinkEndsTheRun) {
    for (std::size_t const threads : {1U, 3U}) {
        int calls = 0;
        auto const sink = [&calls](std::string_view) {
            if (++calls == 2) throw tool::OutputClosed();
        };
        EXPECT_THROW(run(threads, sink), tool::OutputClosed);
        EXPECT_EQ(calls, 2);
    }
}

}  // namespace
