// Forms found by prefix are those that a scan of all finds.
#include "lexicon/import/fit/search.hpp"
#include "support/testing.hpp"

#include <random>

namespace TAVO::importer {
namespace {

/// One to four bytes, of which the least and the largest are the edges of tables.
std::string randomForm(std::mt19937& random) {
    constexpr char kBytes[] = {'\x00', '\x01', 'a', '\xFE', '\xFF'};
    std::string form;
    for (auto n = 1 + random() % 4; n > 0; --n) form += kBytes[random() % std::size(kBytes)];
    return form;
}

TEST(ImportSearch, PrefixesAreThoseOfAScan) {
    for (unsigned seed = 1; seed <= 200; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        std::mt19937 random(seed);
        Lexicon lexicon;
        for (auto n = static_cast<std::uint32_t>(random() % 40); n > 0; --n) {
            Word word;
            word.form = lexicon.keep(randomForm(random));
            word.row = n;  // of equal words one would be listed
            lexicon.words.push_back(word);
        }
        FormIndex const index(lexicon);
        for (unsigned n = 0; n < 20; ++n) {
            std::string const text = n == 0 ? "" : randomForm(random);
            std::vector<std::string_view> found, scanned;
            index.prefixes(text, [&](std::size_t length, std::uint32_t first, std::uint32_t last) {
                ASSERT_LT(first, last);
                for (std::uint32_t i = first; i < last; ++i) {
                    found.push_back(lexicon.words[index.wordsOf()[i]].form);
                    ASSERT_EQ(found.back().size(), length);
                }
            });
            for (std::size_t length = 1; length <= text.size(); ++length)
                for (Word const& word : lexicon.words)
                    if (word.form == std::string_view(text).substr(0, length)) scanned.push_back(word.form);
            ASSERT_EQ(found, scanned);
        }
    }
}

}  // namespace
}  // namespace TAVO::importer
