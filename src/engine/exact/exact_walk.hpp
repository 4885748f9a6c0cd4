// The candidates of a sentence in the order in which every search makes them.
#ifndef TAVO_ENGINE_EXACT_EXACT_WALK_HPP
#define TAVO_ENGINE_EXACT_EXACT_WALK_HPP

#include "base/bytes.hpp"
#include "dic/dic_set.hpp"
#include "engine/exact/lattice_constraints.hpp"

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace TAVO {

/// The positions of a text that a walk goes through.
struct WalkRange {
    std::size_t begin, end;
};

/// Goes through the positions of @p range of @p text from the last one to the first and calls, at each position p:
/// builder.beginPosition(p); builder.addUnknown(p, length) for the two-byte unknown word (from a byte of 128 or more
/// on) and the one-byte one; builder.addRecords(p, length, chain) dictionary by dictionary and by increasing length;
/// builder.endPosition(p). Unknown words end inside the range, records inside the text.
///
/// Under constraints it leaves out the candidates that would cross a barrier or stand in a fixed span, and calls
/// builder.addFixed(p, length, record) for the candidates of a fixed span.
template <class Builder>
void walkBackward(std::string_view text, WalkRange range, DicSet const& dics, LatticeConstraints const& constraints,
                  Builder& builder) {
    unsigned char const* const bytes = asBytes(text.data());
    auto barrier = constraints.barriers.rbegin();
    auto span = constraints.spans.rbegin();
    std::size_t limit = text.size();  // the next barrier behind p
    auto const addPlain = [&](std::size_t p) {
        if (bytes[p] >= 128 && p + 2 <= limit && p + 2 <= range.end) builder.addUnknown(p, 2);
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
    for (std::size_t p = range.end; p-- > range.begin;) {
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
