// The proof that the unknown words which the fast search leaves out are on no best path.
#ifndef TAVO_ENGINE_FAST_UNKNOWN_CHECK_HPP
#define TAVO_ENGINE_FAST_UNKNOWN_CHECK_HPP

#include "base/raw_buffer.hpp"
#include "engine/fast/search_state.hpp"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace TAVO {

class ConnTable;
class DicSet;
class RecordChain;

/// The fast search makes an unknown word only of a character that is no surface with a bounded word. It leaves out all
/// other unknown words and, with them, every word that begins inside a character, since only an unknown word ends
/// there. A place passes when no word but an unknown one that is left out and ends there would choose one of these.
///
/// Let U be what an unknown word costs after every word and before every word that it may stand before; S(w) the least
/// sum from a word w that starts at a place p to the end of the sentence; L(p) the least S there; A(p) the least S(w) +
/// (largest cost of w's column), over words w of bounded columns: whatever ends at p gets A(p) or less.
///
/// 1. A word x that is left out at p is chosen by nobody when U + S(x) > A(p), as each word pays U before it.
/// 2. Going from the end of the sentence to its beginning, let 1 hold behind p. Then an unknown word that ends at q has
///    at least min(U + L(q), A(q) + 1): it chooses a known word for U, or one that is left out for more than A(q) - U.
/// 3. Each place has a bounded word w of one character, and A(p) <= (largest cost of w's column) + A(q) <= U + A(q), q
///    being the place behind p. So of 2 only U + L(q) matters, and 1 holds at p when A(p) < 2U + L(q) for each q at
///    which a chain of words that are left out may come back to known ones.
/// 4. A safe character has a word with (largest cost of its column) + (largest of its row) < 2U, which is A(p) < 2U +
///    L(q) for the place q behind it. Words inside such a character matter only where they lead farther.
///
/// 5. Behind a character that needs the unknown word stands one that is not left out, which ends at p and chooses among
///    known words what costs it U: there U + S(x) > U + (least S of words that it may stand before) has to hold as
///    well.
///
/// Example: U = 254. あ (of 82 A0) is a word, A(p) is 300 and L(q) is 120: an unknown word in its place would cost the
/// word before it 254 + 254 + 120 = 628 or more, which is above 300.
class UnknownCheck {
public:
    /// Counted from what a block's sums are counted from, so that a sum that is not known may be below 0.
    using Sum = std::int32_t;
    static constexpr Sum kNone = 0x100000;
    static constexpr Sum kAny = -kNone;

    UnknownCheck(SearchState const& state) : state_(state), text_(state.text), layout_(state.layout) {}

    /// The sentence at work, the table and the dictionaries.
    void begin(std::string_view sentence, ConnTable const& table, DicSet const& dics) noexcept {
        sentence_ = sentence;
        table_ = &table;
        dics_ = &dics;
        unknownCost_ = state_.indexes.conn().unknownCost();
    }
    /// Finds the places of the text at which something is left out that could be chosen; all others pass.
    void findLooks();
    /// These places, ascending. Most pass by the sums of the next three places alone, which a kernel sees
    /// (PassFunction).
    std::span<Look const> looks() const noexcept { return {looks_.begin(), looks_.size()}; }
    /// True when place @p p passes where something is left out. Sums of places up to @p last are known.
    bool passes(std::size_t p, std::size_t last) const;
    /// True when an unknown word that ends at @p p would choose a known word as well.
    bool passesForUnknown(std::size_t p, std::size_t last) const;
    /// The least S of the words at @p p that an unknown word may stand before, kNone for none.
    Sum lowOpen(std::size_t p) const noexcept;
    /// A(p), kNone where no word is bounded.
    Sum bound(std::size_t p) const noexcept;
    /// What is left out at @p p is chosen by nobody who may choose a known word when it costs more than this, U before
    /// it included: A(p), and behind a character that needs the unknown word what that one chooses for.
    Sum limit(std::size_t p) const noexcept;

private:
    Sum low(std::size_t p) const noexcept { return layout_.leastSum(p); }
    unsigned needsLook(std::size_t p) const noexcept;
    bool isBehindUnknown(std::size_t p) const noexcept { return (text_.flags(p - 1) & CharacterFlag::kUnknown) != 0; }
    bool mayPair(std::size_t p) const noexcept;
    bool isDeep(std::size_t p) const noexcept;
    bool mayContinue(std::size_t p) const noexcept;
    Sum lowLeftOut(std::size_t p, std::size_t last) const;
    Sum lowInside(std::size_t p, std::size_t last) const;
    Sum lowOfWordsInside(std::size_t p, std::size_t last) const;
    bool lacksWordsBehind(std::size_t q, RecordChain chain) const;

    SearchState const& state_;
    TextPlaces const& text_;
    CandidateLayout const& layout_;
    std::string_view sentence_;
    ConnTable const* table_ = nullptr;
    DicSet const* dics_ = nullptr;
    Sum unknownCost_ = 0;
    RawBuffer<Look> looks_;
};

}  // namespace TAVO

#endif
