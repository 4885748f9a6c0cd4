#include "engine/fast/search_state.hpp"

#include "dic/mrph_dic.hpp"

namespace TAVO {

PlacedCandidate SearchState::step(PlacedCandidate at, std::int64_t& wordSum) const noexcept {
    if (ExactPiece const* const piece = pieces.empty() ? nullptr : pieceAt(at.place)) {
        LatticeNode const* node = piece->starts[at.number];
        for (; node != nullptr && node->record != nullptr; node = node->next) wordSum += MrphDic(node->record).cost();
        return {piece->end, node != nullptr ? node->length : 0};
    }
    Candidate const word = candidate(at);
    wordSum += word.cost;
    return following(at, word);
}

}  // namespace TAVO
