// The candidates of a sentence in which a person has fixed words and borders.
#ifndef TAVO_ENGINE_CONSTRAINED_WALK_HPP
#define TAVO_ENGINE_CONSTRAINED_WALK_HPP

#include "engine/backward_walk.hpp"
#include "engine/lattice_constraints.hpp"

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace TAVO {

/// walkBackward() under constraints: it calls what that calls, leaves out the
/// candidates that would cross a barrier or stand in a fixed span, and calls
/// builder.addFixed(p, length, record) for the candidates of a fixed span. Plain
/// text has a walk of its own, so it tests nothing for constraints.
template <class Builder>
void walkBackward(std::string_view text, DicSet const& dics, LatticeConstraints const& constraints, Builder& builder) {
    unsigned char const* const bytes = asBytes(text.data());
    auto barrier = constraints.barriers.rbegin();
    auto span = constraints.spans.rbegin();
    std::size_t limit = text.size();  // the next barrier behind p
    auto const addPlain = [&](std::size_t p) {
        if (bytes[p] >= 128 && p + 2 <= limit) builder.addUnknown(p, 2);
        builder.addUnknown(p, 1);
        for (DicEntry const& entry : dics.entries()) {
            DicTrie const* const trie = entry.dic->trie();
            if (trie == nullptr) continue;
            trie->prefixSearch(bytes + p, limit - p, [&](std::size_t length, RecordChain chain) {
                builder.addRecords(p, static_cast<std::uint32_t>(length), chain);
                return true;
            });
        }
    };
    for (std::size_t p = text.size(); p-- > 0;) {
        for (; barrier != constraints.barriers.rend() && *barrier > p; ++barrier) limit = *barrier;
        while (span != constraints.spans.rend() && span->begin > p) ++span;
        builder.beginPosition(p);
        if (span == constraints.spans.rend() || p >= span->end) {
            addPlain(p);
        } else if (p == span->begin) {
            for (unsigned char const* record : constraints.candidates(*span))
                builder.addFixed(p, span->end - span->begin, record);
        }
        builder.endPosition(p);
    }
}

}  // namespace TAVO

#endif
