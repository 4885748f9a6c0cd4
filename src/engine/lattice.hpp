// The lattices of one input: the best path of each sentence, and what else could
// stand at its places.
#ifndef TAVO_ENGINE_LATTICE_HPP
#define TAVO_ENGINE_LATTICE_HPP

#include "engine/best_path_search.hpp"
#include "engine/candidate_table.hpp"
#include "engine/lattice_node.hpp"
#include "engine/node_pool.hpp"
#include "engine/sentence.hpp"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace TAVO {

class ConnTable;
class DicSet;
struct LatticeConstraints;

/// Connection sums and word-cost sums have 32 bits; a text of more bytes than
/// this could reach 2^32 with 255 a byte.
inline constexpr std::size_t kMaxSentenceBytes = 16'843'009;

/// The lattices of all sentences of one input. Nodes live until clear(), and
/// their addresses never change.
///
/// The best continuation of a word is the following node with the smallest
/// connection sum, among equal ones the one with the smallest word-cost sum, and
/// among those the one made first. The nodes of a position are made in this
/// order: two-byte unknown word, one-byte unknown word, then dictionary by
/// dictionary, by increasing length, in chain order.
class Lattice {
public:
    /// Room for @p capacity nodes is allocated at once; 0 means 4096. Long sentences are searched in @p parts.
    explicit Lattice(std::uint32_t capacity, BestPathSearch::Parts const& parts = {})
        : pool_(capacity), search_(parts) {}

    bool ready() const noexcept { return pool_.ready(); }
    void clear() noexcept;

    /// Adds the nodes of the best path of @p sentence and sets its bestStart (null
    /// when no complete path exists). The other candidates are made when somebody
    /// asks for them. Throws tavo_not_ready without table or dictionary,
    /// too_long_string beyond kMaxSentenceBytes, bad_alloc.
    void build(Sentence& sentence, ConnTable const* table, DicSet const& dics) {
        search({&sentence, 1}, table, dics);
        read(sentence);
    }
    /// The same for sentences that stand side by side, as many as belongTogether() tells. Best paths may stay unread:
    /// until read(), which must come before the next search.
    void search(std::span<Sentence> sentences, ConnTable const* table, DicSet const& dics);
    /// True when the text @p next may be searched together with others before it, of which @p first is the first one.
    bool belongTogether(std::string_view first, std::string_view next) const noexcept;
    /// Adds the nodes of @p sentence's path if it is unread. Throws bad_alloc, after which it still is.
    void read(Sentence& sentence);
    /// Gives the memory of exceptionally long paths back; to be called when none is unread.
    void forgetPaths() noexcept { search_.forgetPaths(); }
    /// Calls visit(column, length, record) for each word of @p sentence's unread path, which stays unread; record()
    /// finds the word's record, which takes time.
    template <class Visit>
    void visitUnread(Sentence const& sentence, Visit&& visit) const {
        search_.visitPath(sentence.unreadNumber, visit);
    }
    /// True while @p table and @p dics are those that the unread path was searched with.
    bool isAttached(ConnTable const& table, DicSet const& dics) const { return search_.isAttached(table, dics); }
    /// Column of the first word of @p sentence's unread path.
    std::uint16_t firstUnread(Sentence const& sentence) const noexcept {
        return search_.firstColumn(sentence.unreadNumber);
    }
    /// build() with all candidates and under constraints, forced ones where
    /// nothing else gives a path.
    void build(Sentence& sentence, ConnTable const* table, DicSet const& dics, LatticeConstraints& constraints);

    /// All nodes that start where @p node does, in the order of making. @p node was
    /// built by this object or by another builder into nodes(), or given here
    /// before; @p start is its place in @p text, the text of its sentence. Empty
    /// when @p table or @p dics are no longer those of the last build. May be
    /// called from several threads at once.
    std::span<LatticeNode const> candidates(LatticeNode const* node, std::string_view text, std::size_t start,
                                            ConnTable const* table, DicSet const& dics) const;

    /// Nodes by their index in the order of making.
    NodePool const& nodes() const noexcept { return pool_; }
    /// For other builders of lattices of the same input.
    NodePool& nodes() noexcept { return pool_; }

private:
    NodePool pool_;
    BestPathSearch search_;
    // Of the sentences at work that are not empty.
    std::vector<std::string_view> texts_;
    std::vector<BestPathSearch::Result> results_;
    CandidateTable candidates_;
};

/// Throws tavo_not_ready without table or dictionary, too_long_string beyond
/// kMaxSentenceBytes.
void checkSearchable(Sentence const& sentence, ConnTable const* table, DicSet const& dics);

/// The chosen path of @p sentence from first to last node; empty without result.
std::vector<LatticeNode const*> bestPath(Sentence const& sentence);

}  // namespace TAVO

#endif
