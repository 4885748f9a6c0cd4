#include "lexicon/import/fit/search.hpp"

#include "base/sjis.hpp"

#include <algorithm>
#include <numeric>
#include <tuple>

namespace TAVO::importer {

FormIndex::FormIndex(Lexicon const& lexicon) {
    std::vector<std::uint32_t> order(lexicon.words.size());
    std::iota(order.begin(), order.end(), 0U);
    auto const key = [&](std::uint32_t i) {
        Word const& word = lexicon.words[i];
        return std::tuple(word.form, word.row, word.col, word.cost, i);
    };
    std::sort(order.begin(), order.end(), [&](std::uint32_t a, std::uint32_t b) { return key(a) < key(b); });
    formOf_.resize(order.size());
    for (std::size_t i = 0; i < order.size(); ++i) {
        Word const& word = lexicon.words[order[i]];
        if (forms_.empty() || forms_.back() != word.form) {
            forms_.push_back(word.form);
            starts_.push_back(static_cast<std::uint32_t>(words_.size()));
        }
        formOf_[order[i]] = static_cast<std::uint32_t>(forms_.size() - 1);
        Word const* const before = i == 0 ? nullptr : &lexicon.words[order[i - 1]];
        bool const same = before != nullptr && before->form == word.form;
        if (same && before->row == word.row && before->col == word.col) continue;
        words_.push_back(order[i]);
    }
    starts_.push_back(static_cast<std::uint32_t>(words_.size()));
    constexpr std::size_t kPairs = 0x10000;
    for (std::uint32_t form = 0; form < forms_.size(); ++form) firstOf_.resize(firstBytes(forms_[form]) + 1, form);
    firstOf_.resize(kPairs + 1, static_cast<std::uint32_t>(forms_.size()));
}

std::vector<std::uint32_t> Lattice::path() const {
    std::vector<std::uint32_t> result;
    for (std::uint32_t i = last; i != kNone; i = nodes[i].previous) result.push_back(i);
    std::reverse(result.begin(), result.end());
    return result;
}

void fillLattice(Lattice& lattice, FormIndex const& index, Lexicon const& lexicon, std::string_view text) {
    lattice.nodes.clear();
    lattice.firstAt.assign(text.size() + 2, 0);
    lattice.endingAt.assign(text.size() + 1, {});
    lattice.best = Lattice::kNoPath;
    lattice.last = Lattice::kNone;
    std::size_t nextCharacter = 0;
    for (std::size_t pos = 0; pos < text.size(); ++pos) {
        lattice.firstAt[pos] = static_cast<std::uint32_t>(lattice.nodes.size());
        if (pos != nextCharacter) continue;
        nextCharacter += charWidth(text, pos);
        if (pos > 0 && lattice.endingAt[pos].empty()) continue;
        index.prefixes(text.substr(pos), [&](std::size_t length, std::uint32_t first, std::uint32_t last) {
            for (std::uint32_t i = first; i < last; ++i) {
                std::uint32_t const word = index.wordsOf()[i];
                // An "inside" has nothing to follow at the text's beginning.
                if (pos == 0 && lexicon.words[word].col >= lexicon.sourceCols) continue;
                lattice.endingAt[pos + length].push_back(static_cast<std::uint32_t>(lattice.nodes.size()));
                lattice.nodes.push_back({word, static_cast<std::uint32_t>(pos),
                                         static_cast<std::uint32_t>(pos + length), Lattice::kNone, Lattice::kNoPath});
            }
        });
    }
    lattice.firstAt[text.size()] = lattice.firstAt[text.size() + 1] = static_cast<std::uint32_t>(lattice.nodes.size());
}

}  // namespace TAVO::importer
