#include "engine/form_finder.hpp"

#include "base/bytes.hpp"
#include "base/sjis.hpp"

#include <algorithm>
#include <cstring>
#include <string_view>

namespace TAVO {
namespace {

// Room for characters, in bits: a little for the dictionaries that only few texts meet.
constexpr unsigned kFewBits = 6;
constexpr unsigned kMostBits = 12;
/// Forms of characters that others took the place of stay until all are forgotten.
constexpr std::size_t kMostFound = std::size_t{1} << 16;

}  // namespace

inline FormFinder::Character& FormFinder::characterOf(std::uint32_t bytes) noexcept {
    return characters_[(bytes * 0x9E3779B1U) >> (32 - charBits_)];
}

void FormFinder::clear() noexcept {
    characters_.clear();
    found_.clear();
    learnt_ = 0;
}

void FormFinder::makeRoom() {
    bool const tooFew = charBits_ < kMostBits && learnt_ > characters_.size();
    if (!characters_.empty() && !tooFew && found_.size() < kMostFound) return;
    charBits_ = tooFew ? charBits_ + 2 : std::max(charBits_, kFewBits);
    clear();
    characters_.resizeForOverwrite(std::size_t{1} << charBits_);
    std::fill(characters_.begin(), characters_.end(), Character{});
}

void FormFinder::search(DicTrie const& trie, unsigned char const* text, std::size_t n,
                        std::span<std::uint32_t const> starts, FormCache& forms, SearchTable const& table) {
    makeRoom();
    batch_.clear();
    longer_.clear();
    lookUp(text, n, starts);
    lists_.resizeForOverwrite(starts.size());
    for (std::uint32_t number = 0; number < starts.size(); ++number) {
        std::uint32_t const p = starts[number];
        std::uint32_t const bytes = bytes_[number];
        if (bytes == 0) {
            lists_[number] = {0, 0, kNone, kNone};
            findAlone(number, trie, text + p, n - p, forms, table);
            continue;
        }
        Character& character = characterOf(bytes);
        if (character.bytes != bytes) {
            character.bytes = bytes;
            learn(character, bytes > 0xFF ? 2 : 1, trie, text + p, forms, table);
        }
        lists_[number] = {character.first, character.count, kNone, kNone};
        if (character.state == kEnd) continue;
        if ((character.state & kTail) != 0)
            batch_.addTail(trie, number, p, character.consumed, character.state & ~kTail);
        else if (std::uint32_t const at = p + character.consumed; at < n)
            batch_.addWalk(trie, number, p, character.consumed, character.state, text[at]);
    }
    batch_.run(trie, text, n);
    for (PrefixBatch::Match const& match : batch_.matches()) forms.prefetchSlot(match.head);
    for (PrefixBatch::Match const& match : batch_.matches()) forms.prefetchForm(match.head);
    for (PrefixBatch::Match const& match : batch_.matches())
        addLonger(match.search, match.length, forms.find(match.head, trie.leafEnd(), table));
}

void FormFinder::lookUp(unsigned char const* text, std::size_t n, std::span<std::uint32_t const> starts) {
    bytes_.resizeForOverwrite(starts.size());
    for (std::size_t number = 0; number < starts.size(); ++number) {
        std::uint32_t const p = starts[number];
        std::uint32_t bytes = text[p];
        if (charWidth({asChars(text), n}, p) == 2) bytes |= static_cast<std::uint32_t>(text[p + 1]) << 8;
        bytes_[number] = bytes;
        __builtin_prefetch(&characterOf(bytes));
    }
}

/// Notes the forms inside the character at @p text, @p width bytes wide.
void FormFinder::learn(Character& character, std::size_t width, DicTrie const& trie, unsigned char const* text,
                       FormCache& forms, SearchTable const& table) {
    Character fresh{character.bytes, static_cast<std::uint32_t>(found_.size()), kEnd, 0, 0};
    character.bytes = 0;  // what follows may throw
    ++learnt_;
    auto const add = [&](std::size_t length, unsigned char const* head) {
        found_.push({forms.find(head, trie.leafEnd(), table), static_cast<std::uint32_t>(length)});
        ++fresh.count;
    };
    std::uint32_t base = trie.rootBase(text[0]);
    for (std::size_t consumed = 1; base != 0 || consumed > 1;) {
        if (std::uint32_t const end = trie.cell(base); DicTrie::isKeyEnd(end))
            add(consumed, trie.leaf(end & DicTrie::kValueMask));
        if (consumed == width) {
            fresh.state = base;
            fresh.consumed = static_cast<std::uint16_t>(consumed);
            break;
        }
        std::uint32_t const byte = text[consumed];
        std::uint32_t const next = trie.cell(base + byte);
        // A free cell and a key's end carry label 0, which a NUL would match.
        if (DicTrie::label(next) != byte || byte == 0) break;
        ++consumed;
        base = next & DicTrie::kValueMask;
        if (!DicTrie::isLeaf(next)) continue;
        DicTrie::Tail const tail = trie.tailOf(next);
        std::size_t const inside = std::min(tail.length, width - consumed);
        if (!tail.chain || std::memcmp(tail.bytes, text + consumed, inside) != 0) break;
        if (inside == tail.length) {
            add(consumed + tail.length, tail.chain.head());
        } else {
            fresh.state = kTail | base;
            fresh.consumed = static_cast<std::uint16_t>(consumed);
        }
        break;
    }
    character = fresh;
}

/// The forms that start with a NUL, which only a damaged dictionary has.
void FormFinder::findAlone(std::size_t number, DicTrie const& trie, unsigned char const* text, std::size_t n,
                           FormCache& forms, SearchTable const& table) {
    trie.prefixSearch(text, n, [&](std::size_t length, RecordChain chain) {
        addLonger(number, static_cast<std::uint32_t>(length), forms.find(chain.head(), trie.leafEnd(), table));
        return true;
    });
}

void FormFinder::addLonger(std::size_t number, std::uint32_t length, std::uint32_t form) {
    auto const index = static_cast<std::uint32_t>(longer_.size());
    longer_.push({form, length, kNone});
    List& list = lists_[number];
    (list.longer == kNone ? list.longer : longer_[list.lastLonger].next) = index;
    list.lastLonger = index;
}

}  // namespace TAVO
