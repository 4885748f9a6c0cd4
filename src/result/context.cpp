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
    auto const start = static_cast<std::size_t>(text - found->text.data());
    return lattice.candidates(node, found->text, start, connTable, dics);
}

}  // namespace TAVO
