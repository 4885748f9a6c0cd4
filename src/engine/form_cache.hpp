// The words of surface forms, ready for the search.
#ifndef TAVO_ENGINE_FORM_CACHE_HPP
#define TAVO_ENGINE_FORM_CACHE_HPP

#include "base/raw_buffer.hpp"
#include "dic/dic_trie.hpp"
#include "engine/search_table.hpp"

#include <cstddef>
#include <cstdint>

namespace TAVO {

/// What the search reads of the record of a word.
struct FormWord {
    std::uint32_t rowOffset;  ///< of the row in the matrix, in bytes
    std::uint16_t column;
    std::uint8_t cost;
    bool bounded;  ///< every word may stand before
};

/// Neighbouring words of the cache.
struct FormWords {
    std::uint32_t first = 0;
    std::uint32_t count = 0;
    std::uint8_t enters = 0;       ///< classes of the rows
    std::uint8_t leastColumn = 0;  ///< smallest cost of the columns
    bool hasBounded = false;       ///< some are bounded
    bool allBounded = false;       ///< and here all are
};

/// The words of one surface form in one dictionary, in the order of making.
struct Form {
    unsigned char const* head;  ///< of the first record
    FormWords all;
    FormWords plain;             ///< without those of sparse columns
    std::uint8_t enteredBy = 0;  ///< classes that may stand before the sparse ones
};

/// A text uses few forms again and again, and their records lie all over the
/// dictionary; so each form's are read once.
class FormCache {
public:
    /// Forgets all forms when they fill more memory than is good for the processor's
    /// caches; true then.
    bool trim() noexcept;
    void clear() noexcept;

    /// Index of the form whose records RecordChain(@p head, @p leafEnd) holds; it is good
    /// until trim() or clear(). A bad chain gives a form without words.
    std::uint32_t find(unsigned char const* head, unsigned char const* leafEnd, SearchTable const& table) {
        if (slots_.size() < forms_.size() * 2 + 2) rehash();
        std::size_t const mask = slots_.size() - 1;
        for (std::size_t i = slot(head);; i = (i + 1) & mask) {
            std::uint32_t const index = slots_[i];
            if (index == kNone) return slots_[i] = make(head, leafEnd, table);
            if (forms_[index].head == head) return index;
        }
    }
    /// Asks for what find() will read soon: first where the form is noted, then the form.
    void prefetchSlot(unsigned char const* head) const noexcept {
        if (!slots_.empty()) __builtin_prefetch(&slots_[slot(head)]);
    }
    void prefetchForm(unsigned char const* head) const noexcept {
        if (slots_.empty()) return;
        if (std::uint32_t const index = slots_[slot(head)]; index != kNone) __builtin_prefetch(&forms_[index]);
    }
    /// Asks for words that will be read soon.
    void prefetch(FormWords const& words) const noexcept { __builtin_prefetch(&words_[words.first]); }
    /// Index of the form that is nothing but the unknown word.
    std::uint32_t unknown(SearchTable const& table);

    Form const& form(std::uint32_t index) const noexcept { return forms_[index]; }
    FormWord const* words() const noexcept { return words_.begin(); }
    /// The record of a word.
    unsigned char const* record(std::uint32_t word) const noexcept { return records_[word]; }

private:
    static constexpr std::uint32_t kNone = 0xFFFFFFFF;

    std::size_t slot(unsigned char const* head) const noexcept {
        return static_cast<std::size_t>(reinterpret_cast<std::uintptr_t>(head) * 0x9E3779B97F4A7C15ULL >> shift_);
    }
    std::uint32_t make(unsigned char const* head, unsigned char const* leafEnd, SearchTable const& table);
    void addWord(FormWords& list, MrphDic record, SearchTable const& table);
    void rehash();

    RawBuffer<std::uint32_t> slots_;  // index of a form or kNone; a power of two
    unsigned shift_ = 64;
    RawBuffer<Form> forms_;
    RawBuffer<FormWord> words_;
    RawBuffer<unsigned char const*> records_;  // by word
};

}  // namespace TAVO

#endif
