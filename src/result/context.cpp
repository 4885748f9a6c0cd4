#include "result/context.hpp"

#include <algorithm>
#include <functional>

namespace TAVO {

Sentence const* AnalyzerContext::sentenceOf(char const* text) const {
    std::less_equal<char const*> const notAfter;
    auto const holds = [&](Sentence const& sentence) {
        std::string_view const all = sentence.text;
        return notAfter(all.data(), text) && !notAfter(all.data() + all.size(), text);
    };
    // Texts that are pieces of the given one stand in its order.
    auto const behind = std::partition_point(sentences.begin(), sentences.end(), [&](Sentence const& sentence) {
        return notAfter(sentence.text.data(), text);
    });
    if (behind != sentences.begin() && holds(behind[-1])) return &behind[-1];
    auto const found = std::find_if(sentences.begin(), sentences.end(), holds);
    return found == sentences.end() ? nullptr : &*found;
}

std::span<LatticeNode const> AnalyzerContext::candidates(LatticeNode const* node, char const* text) const {
    if (lateNodes && lateNodes->holds(node)) return lateNodes->candidates(node);
    Sentence const* const found = sentenceOf(text);
    if (found == nullptr) return {};
    return lattice.candidates(node, found->searchText(), searchPlace(*found, text), connTable, dics);
}

std::string_view AnalyzerContext::convertedText(std::string_view span) const {
    Sentence const* const found = span.empty() ? nullptr : sentenceOf(span.data());
    if (found == nullptr || !found->conversion) return span;
    std::size_t const begin = searchPlace(*found, span.data());
    return found->searchText().substr(begin, searchPlace(*found, span.data() + span.size()) - begin);
}

}  // namespace TAVO
