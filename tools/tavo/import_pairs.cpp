#include "import_pairs.hpp"

#include "base/sjis.hpp"

#include <algorithm>
#include <string_view>

namespace TAVO::importer {
namespace {

/// Bytes of the characters of @p text that are hiragana.
std::size_t hiraganaBytes(std::string_view text) {
    std::size_t bytes = 0;
    for (std::size_t pos = 0; pos < text.size(); pos += charWidth(text, pos)) {
        std::string_view const character = text.substr(pos, charWidth(text, pos));
        if (character >= "\x82\x9F" && character <= "\x82\xF1") bytes += character.size();
    }
    return bytes;
}

/// How much a hiragana character weighs for all of them to weigh half of the text.
double hiraganaWeight(std::vector<std::string> const& sentences) {
    std::size_t hiragana = 0, all = 0;
    for (std::string const& text : sentences) {
        hiragana += hiraganaBytes(text);
        all += text.size();
    }
    if (hiragana == 0) return 1;
    return std::max(1.0, static_cast<double>(all - hiragana) / static_cast<double>(hiragana));
}

}  // namespace

PairCounts countPairs(Lexicon const& lexicon, FormIndex const& index, std::vector<std::string> const& sentences) {
    PairCounts counts;
    counts.asLeft.resize(lexicon.words.size());
    counts.asRight.resize(lexicon.words.size());
    double const hiragana = hiraganaWeight(sentences);
    std::vector<double> weights, starting, ending;  // of the nodes; of those at each position together
    Lattice lattice;
    for (std::string const& text : sentences) {
        fillLattice(lattice, index, lexicon, text);
        weights.clear();
        starting.assign(text.size() + 1, 0);
        ending.assign(text.size() + 1, 0);
        starting.back() = ending.front() = 1;  // the ends of the text
        for (Node const& node : lattice.nodes) {
            std::string_view const form = lexicon.words[node.word].form;
            weights.push_back(hiraganaBytes(form) == form.size() ? hiragana : 1);
            starting[node.start] += weights.back();
            ending[node.end] += weights.back();
        }
        for (std::size_t i = 0; i < lattice.nodes.size(); ++i) {
            Node const& node = lattice.nodes[i];
            counts.asLeft[node.word] += weights[i] * starting[node.end];
            counts.asRight[node.word] += weights[i] * ending[node.start];
        }
    }
    return counts;
}

}  // namespace TAVO::importer
