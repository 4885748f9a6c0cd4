// The characters of sentences as the places of a search.
#ifndef TAVO_ENGINE_FAST_TEXT_PLACES_HPP
#define TAVO_ENGINE_FAST_TEXT_PLACES_HPP

#include "base/raw_buffer.hpp"
#include "dic/index/dic_index.hpp"
#include "engine/fast/search_indexes.hpp"

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace TAVO {

/// One place for each character; before the first sentence and behind each one stands an end, a place of its own that
/// is both the end of the sentence before it and the beginning of the one behind it.
class TextPlaces {
public:
    static constexpr std::size_t kPadding = DicIndex::kMostCharacters + 1;  ///< readable behind the last place

    /// Starts anew with one end.
    void clear();
    /// Adds the places of @p text and an end; the place of its first character.
    std::size_t add(std::string_view text, SearchIndexes const& indexes);
    /// Finds the candidate lists of all places in each dictionary.
    void findLists(SearchIndexes const& indexes);

    std::size_t size() const noexcept { return flags_.size(); }
    unsigned flags(std::size_t p) const noexcept { return flags_[p]; }
    bool isEnd(std::size_t p) const noexcept { return (flags_[p] & CharacterFlag::kEnd) != 0; }
    CharacterCode code(std::size_t p) const noexcept { return codes_[p]; }
    /// Where the character begins in its sentence, in bytes; of an end: where the sentence before it ends. Behind an
    /// end a sentence begins, at 0.
    std::uint32_t offset(std::size_t p) const noexcept { return offsets_[p]; }
    /// Where the character ends in its sentence.
    std::uint32_t offsetBehind(std::size_t p) const noexcept { return offsets_[p + 1]; }
    /// Number of the candidate list of dictionary @p dic at the place.
    std::uint32_t list(std::size_t dic, std::size_t p) const noexcept { return walks_[dic].lists[p]; }
    /// How many characters from there on the dictionary's surfaces begin with: no word of a sound list is longer.
    std::uint16_t depth(std::size_t dic, std::size_t p) const noexcept { return walks_[dic].depths[p]; }
    // By place, of a dictionary where one is named.
    std::uint16_t const* flags() const noexcept { return flags_.begin(); }
    std::uint32_t const* offsets() const noexcept { return offsets_.begin(); }
    std::uint32_t const* lists(std::size_t dic) const noexcept { return walks_[dic].lists.begin(); }
    /// Ascending: the ends.
    RawBuffer<std::uint32_t> const& ends() const noexcept { return ends_; }
    /// Ascending: the places at which the search may have to check what it leaves out.
    RawBuffer<std::uint32_t> const& looks() const noexcept { return looks_; }

private:
    /// By place, what walks through the trie of a dictionary came to.
    struct Walk {
        RawBuffer<std::uint32_t> lists;
        RawBuffer<std::uint16_t> depths;
    };
    void pushEnd(std::uint32_t offset);
    void walk(DicIndex const& dic, std::uint32_t const* numbers, Walk& found);
    void findNumbers(DicIndex const& dic);

    RawBuffer<CharacterCode> codes_;
    RawBuffer<std::uint16_t> flags_;
    RawBuffer<std::uint32_t> numbers_;  // in the first dictionary, while lists are found in any
    RawBuffer<std::uint32_t> offsets_;
    RawBuffer<std::uint32_t> looks_, ends_;
    std::vector<Walk> walks_;  // by dictionary
};

}  // namespace TAVO

#endif
