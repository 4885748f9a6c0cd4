// How often words stand beside others in a text.
#include "lexicon/import/fit/pairs.hpp"
#include "support/encoding.hpp"
#include "support/testing.hpp"

namespace TAVO::importer {
namespace {

using test::toSjis;

Lexicon lexiconOf(std::vector<std::string> const& forms) {
    Lexicon lexicon;
    lexicon.sourceRows = lexicon.sourceCols = 2;
    for (std::string const& form : forms) {
        Word word;
        word.form = lexicon.keep(toSjis(form));
        word.row = word.col = 1;
        lexicon.words.push_back(word);
    }
    return lexicon;
}

PairCounts count(std::vector<std::string> const& forms, std::string const& text) {
    Lexicon const lexicon = lexiconOf(forms);
    return countPairs(lexicon, FormIndex(lexicon), {toSjis(text)});
}

// a a a a あ, or a a a aあ; the text's ends are neighbours too. A third of the
// bytes are hiragana, so that a word in it counts twice.
TEST(ImportPairs, WordsInHiraganaMakeUpForTheirRarity) {
    PairCounts const counts = count({"a", "あ", "aあ"}, "aaaaあ");
    EXPECT_EQ(counts.asLeft, (std::vector<double>{1 + 1 + 2 + 2, 2, 1}));
    EXPECT_EQ(counts.together, (std::vector<std::vector<std::uint32_t>>{{0}, {1}, {0, 2}}))
        << "asked for 3 times; once, which counts twice; once";
}

TEST(ImportPairs, WhereHiraganaIsHalfOrNoneAllCountAlike) {
    for (std::string const text : {"aaん", "aaああ", "aa"}) {
        PairCounts const counts = count({"a", "ん", "あ"}, text);
        EXPECT_EQ(counts.asLeft[0], 2) << text;
        EXPECT_EQ(counts.together.front(), std::vector<std::uint32_t>{0})
            << text << ": asked for twice, the others no more";
    }
}

}  // namespace
}  // namespace TAVO::importer
