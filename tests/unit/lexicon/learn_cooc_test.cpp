#include "support/encoding.hpp"
#include "support/small_world.hpp"
#include "support/testing.hpp"

#include <tavo/lexicon_maker.hpp>
#include <tavo/tokenizer.hpp>

namespace TAVO::test {
namespace {

class LearnCooc : public testing::Test {
protected:
    void SetUp() override {
        SmallWorld world;
        world.namesUtf8({"BOS", "EOS", "Undef", "名詞:一般", "動詞:自立:カ行", "動詞:自立:ワ行", "助詞"});
        world.cost([](unsigned, unsigned) { return 10; });
        world.linesUtf8({"行く,動詞:自立:カ行,5,イク", "行っ,動詞:自立:カ行,5,イッ,行く",
                         "行う,動詞:自立:ワ行,9,オコナウ", "行っ,動詞:自立:ワ行,9,オコナッ,行う",
                         "市場,名詞:一般,5,シジョウ", "市場,名詞:一般,9,イチバ", "いちば,名詞:一般,5,イチバ",
                         "しじょう,名詞:一般,5,シジョウ", "山,名詞:一般,5,ヤマ", "会,名詞:一般,5,カイ",
                         "魚,名詞:一般,5,サカナ,,qL", "株,名詞:一般,5,カブ", "に,助詞,5,ニ", "を,助詞,5,ヲ"});
        world.writeTo(dir_.path());
        options_.lexicon = dir_.path();
        options_.output = dir_.path() + "/my.dic";
    }
    CooccurrenceReport learn(std::initializer_list<char const*> lines, int times = 4) {
        std::string corpus;
        for (int i = 0; i < times; ++i)
            for (char const* line : lines) corpus += std::string(line) + "\n";
        return learnCooccurrence(corpus, options_);
    }
    std::string readings(std::string const& text, LexiconOptions const& options, std::string const& init) {
        Tokenizer tokenizer(Lexicon::open(init, options));
        std::string all;
        for (Token const& token : tokenizer.tokenize(text)) all += std::string(token.reading()) + " ";
        return all;
    }
    std::string learnt(std::string const& text) { return readings(text, {}, dir_.path() + "/my.init"); }
    std::string plain(std::string const& text) { return readings(text, {}, dir_.path()); }

    TempDir dir_;
    CooccurrenceOptions options_;
};

TEST_F(LearnCooc, TellsHomographsByTheirOtherFormsAndByKana) {
    CooccurrenceReport const report = learn({"山に行く", "会を行う", "魚いちば", "株しじょう", "行っ", "市場"});
    EXPECT_EQ(std::tuple(report.sentences, report.evidence, report.homographs), std::tuple(24U, 16U, 2U));
    Table<char const*, char const*, char const*> const cases{
        {"会に行っ", "カイ ニ イッ ", "カイ ニ オコナッ "},
        {"山に行っ", "ヤマ ニ イッ ", "ヤマ ニ イッ "},
        {"魚市場", "サカナ シジョウ ", "サカナ イチバ "},
        {"株市場", "カブ シジョウ ", "カブ シジョウ "},
        {"市場", "シジョウ ", "シジョウ "},
    };
    for (auto const& [text, before, after] : cases) {
        EXPECT_EQ(plain(text), before);
        EXPECT_EQ(learnt(text), after);
        EXPECT_EQ(readings(text, {{}, {}, {}, {{"Cooccurrence", 0}}}, dir_.path() + "/my.init"), before);
        EXPECT_EQ(readings(text, {{options_.output}, {}, {}, {}}, dir_.path()), before) << "the dictionary alone";
    }
    std::string dump;
    dumpDictionary(options_.output, TextEncoding::Utf8, [&](std::string_view lines) { dump += lines; });
    EXPECT_TRUE(contains(dump, ",qL c")) << "ids of the lexicon stay: " << dump;
}

TEST_F(LearnCooc, TakesTagsAtTheirWord) {
    options_.tagged = true;
    learn({"山<word Read=\"イッ\">行っ</word>", "会<word Read=\"オコナッ\">行っ</word>"});
    EXPECT_EQ(learnt("会に行っ"), "カイ ニ オコナッ ");
    EXPECT_EQ(learnt("山に行っ"), "ヤマ ニ イッ ");
}

TEST_F(LearnCooc, RefusesWhatTellsNothing) {
    std::string const cause =
        "corpus: nothing learnt: it takes homographs that the text has in other forms, or tagged, some times each; "
        "give more text";
    EXPECT_EQ(thrown([&] { learn({""}); }), cause);
    EXPECT_EQ(thrown([&] { learn({"山に行く", "会を行う"}); }), cause) << "no homograph";
    EXPECT_EQ(thrown([&] { learn({"山に行く", "会に行く", "行っ"}); }), cause) << "one of the two alone";
    EXPECT_EQ(thrown([&] { learn({"山に行く", "会を行う", "行っ"}, 2); }), cause) << "too few";
    EXPECT_EQ(thrown([&] { learn({"山に行く", "山を行う", "行っ"}); }), cause) << "the same words beside both";
    options_.progress = [](char const*, std::size_t, std::size_t) { return false; };
    EXPECT_EQ(thrown([&] { learn({"山に行く"}); }), "stopped by the caller");
    options_.output.clear();
    EXPECT_EQ(thrown([&] { learn({"山に行く"}); }), "no name for the dictionary to write");
}

}  // namespace
}  // namespace TAVO::test
