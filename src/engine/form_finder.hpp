// The surface forms of a dictionary that start at positions of a text.
#ifndef TAVO_ENGINE_FORM_FINDER_HPP
#define TAVO_ENGINE_FORM_FINDER_HPP

#include "base/raw_buffer.hpp"
#include "dic/prefix_batch.hpp"
#include "engine/form_cache.hpp"

#include <cstddef>
#include <cstdint>
#include <span>

namespace TAVO {

/// Remembers for characters which forms they are and where in the trie a longer one
/// goes on, since a text has few different ones. Longer forms are searched from all
/// starts together. Serves one dictionary and one FormCache.
class FormFinder {
public:
    /// Forgets what it remembers, as must be done when the FormCache forgets.
    void clear() noexcept;

    /// Finds the forms of @p trie in the @p n bytes at @p text from each of @p starts on.
    void search(DicTrie const& trie, unsigned char const* text, std::size_t n, std::span<std::uint32_t const> starts,
                FormCache& forms, SearchTable const& table);
    /// Calls visit(length, form) for the forms found from start number @p number, by
    /// increasing length.
    template <class Visit>
    void eachForm(std::size_t number, Visit&& visit) const {
        List const& list = lists_[number];
        for (Found const *found = found_.begin() + list.first, *end = found + list.count; found != end; ++found)
            visit(found->length, found->form);
        for (std::uint32_t i = list.longer; i != kNone; i = longer_[i].next) visit(longer_[i].length, longer_[i].form);
    }

private:
    static constexpr std::uint32_t kNone = 0xFFFFFFFF;
    // Character::state: a node, or kTail and the value of a leaf cell, or kEnd.
    static constexpr std::uint32_t kTail = std::uint32_t{1} << 31;
    static constexpr std::uint32_t kEnd = 0xFFFFFFFF;

    struct Found {
        std::uint32_t form;
        std::uint32_t length;
    };
    struct Longer {
        std::uint32_t form;
        std::uint32_t length;
        std::uint32_t next;  // of the same start; kNone behind the last
    };
    /// What is known of a character.
    struct Character {
        std::uint32_t bytes;     // the first one lowest; 0: a free place
        std::uint32_t first;     // of its forms, in found_
        std::uint32_t state;     // where longer forms go on
        std::uint16_t count;     // of its forms
        std::uint16_t consumed;  // bytes on the way to state
    };
    struct List {
        std::uint32_t first;
        std::uint32_t count;
        std::uint32_t longer;
        std::uint32_t lastLonger;
    };

    Character& characterOf(std::uint32_t bytes) noexcept;
    void makeRoom();
    void lookUp(unsigned char const* text, std::size_t n, std::span<std::uint32_t const> starts);
    void learn(Character& character, std::size_t width, DicTrie const& trie, unsigned char const* text,
               FormCache& forms, SearchTable const& table);
    void findAlone(std::size_t number, DicTrie const& trie, unsigned char const* text, std::size_t n, FormCache& forms,
                   SearchTable const& table);
    void addLonger(std::size_t number, std::uint32_t length, std::uint32_t form);

    RawBuffer<Character> characters_;  // by hash of the bytes
    unsigned charBits_ = 0;            // of the hash
    std::size_t learnt_ = 0;           // characters, since there is room for so many
    RawBuffer<Found> found_;           // of all characters learnt
    RawBuffer<List> lists_;            // by number of the start
    RawBuffer<Longer> longer_;
    RawBuffer<std::uint32_t> bytes_;  // by number of the start: its character; 0: a NUL
    PrefixBatch batch_;
};

}  // namespace TAVO

#endif
