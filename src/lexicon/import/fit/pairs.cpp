#include "lexicon/import/fit/pairs.hpp"

#include "base/sjis.hpp"

#include <algorithm>
#include <map>
#include <string_view>
#include <utility>

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
    double const hiragana = hiraganaWeight(sentences);
    auto const weightOf = [&](std::string_view text) { return hiraganaBytes(text) == text.size() ? hiragana : 1; };
    std::map<std::vector<std::uint32_t>, double> together;
    std::vector<double> starting, ending;  // weights of the nodes at each position
    Lattice lattice;
    for (std::string const& text : sentences) {
        fillLattice(lattice, index, lexicon, text);
        starting.assign(text.size() + 1, 0);
        ending.assign(text.size() + 1, 0);
        starting.back() = ending.front() = 1;  // the ends of the text
        for (Node const& node : lattice.nodes) {
            double const weight = weightOf(lexicon.words[node.word].form);
            starting[node.start] += weight;
            ending[node.end] += weight;
        }
        for (Node const& node : lattice.nodes)
            counts.asLeft[node.word] += weightOf(lexicon.words[node.word].form) * starting[node.end];
        for (std::size_t pos = 0; pos < text.size(); ++pos) {
            std::vector<std::uint32_t> words;
            for (std::uint32_t i = lattice.firstAt[pos]; i < lattice.firstAt[pos + 1]; ++i)
                words.push_back(lattice.nodes[i].word);
            std::string_view const first = std::string_view(text).substr(pos, charWidth(text, pos));
            if (!words.empty()) together[std::move(words)] += weightOf(first) * ending[pos];
        }
    }
    std::vector<std::pair<double, std::vector<std::uint32_t> const*>> order;
    order.reserve(together.size());
    for (auto const& [words, weight] : together) order.emplace_back(weight, &words);
    std::stable_sort(order.begin(), order.end(), [](auto const& a, auto const& b) { return a.first > b.first; });
    counts.together.reserve(order.size());
    for (auto const& [weight, words] : order) counts.together.push_back(*words);
    return counts;
}

}  // namespace TAVO::importer
