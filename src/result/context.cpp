#include "result/context.hpp"

#include <algorithm>
#include <functional>

namespace TAVO {

std::span<LatticeNode const> AnalyzerContext::candidates(LatticeNode const* node, char const* text) const {
    std::less_equal<char const*> const notAfter;
    auto const holds = [&](Sentence const& sentence) {
        std::string_view const all = sentence.text;
        return notAfter(all.data(), text) && !notAfter(all.data() + all.size(), text);
    };
    auto const found = std::find_if(sentences.begin(), sentences.end(), holds);
    if (found == sentences.end()) return {};
    auto const start = static_cast<std::size_t>(text - found->text.data());
    return lattice.candidates(node, found->text, start, connTable, dics);
}

}  // namespace TAVO
