// The candidates of a sentence in the order in which every search makes them.
#ifndef TAVO_ENGINE_BACKWARD_WALK_HPP
#define TAVO_ENGINE_BACKWARD_WALK_HPP

#include "base/bytes.hpp"
#include "dic/dic_set.hpp"

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace TAVO {

/// Goes through @p text from its last byte to its first and calls, at each
/// position p: builder.beginPosition(p); builder.addUnknown(p, length) for the
/// two-byte unknown word (from a byte of 128 or more on) and the one-byte one;
/// builder.addRecords(p, length, chain) dictionary by dictionary and by
/// increasing length; builder.endPosition(p).
template <class Builder>
void walkBackward(std::string_view text, DicSet const& dics, Builder& builder) {
    unsigned char const* const bytes = asBytes(text.data());
    for (std::size_t p = text.size(); p-- > 0;) {
        builder.beginPosition(p);
        if (bytes[p] >= 128 && p + 2 <= text.size()) builder.addUnknown(p, 2);
        builder.addUnknown(p, 1);
        for (DicEntry const& entry : dics.entries()) {
            DicTrie const* const trie = entry.dic->trie();
            if (trie == nullptr) continue;
            trie->prefixSearch(bytes + p, text.size() - p, [&](std::size_t length, RecordChain chain) {
                builder.addRecords(p, static_cast<std::uint32_t>(length), chain);
                return true;
            });
        }
        builder.endPosition(p);
    }
}

/// Calls visit(MrphDic) for the records of @p chain that may become nodes: of
/// neighbouring homographs of one id only the first does, and it counts as
/// handled even when nothing may follow it.
template <class Visit>
void eachNodeRecord(RecordChain chain, std::uint32_t idCount, Visit&& visit) {
    for (std::uint16_t handled = 0; chain; chain = chain.next()) {
        MrphDic const record = chain.record();
        std::uint16_t const pid = record.pid();
        if (pid == handled || pid == 0 || pid > idCount) continue;
        handled = pid;
        visit(record);
    }
}

}  // namespace TAVO

#endif
