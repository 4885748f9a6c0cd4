// The lattices of one input: the best path of each sentence, and what else could
// stand at its positions.
#ifndef TAVO_ENGINE_LATTICE_HPP
#define TAVO_ENGINE_LATTICE_HPP

#include "engine/exact/candidate_table.hpp"
#include "engine/fast/fast_search.hpp"
#include "engine/fast/search_state.hpp"
#include "engine/lattice_node.hpp"
#include "engine/node_pool.hpp"
#include "engine/path_store.hpp"
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
/// The best successor of a node is the one with the smallest
/// connection sum, among equal ones the one with the smallest word-cost sum, and
/// among those the one made first. The nodes of a position are made in this
/// order: two-byte unknown word, one-byte unknown word, then dictionary by
/// dictionary, by increasing length, in chain order.
class Lattice {
public:
    /// Room for @p capacity nodes is allocated at once; 0 means 4096.
    explicit Lattice(std::uint32_t capacity, FastSearch::Options const& options = {})
        : pool_(capacity), paths_(pool_, state_.indexes), fast_(paths_, state_, options) {}

    bool ready() const noexcept { return pool_.ready(); }
    void clear() noexcept;

    /// Finds the best path of each of @p sentences, which does not exist when there is none. Many sentences take less
    /// time together. Throws tavo_not_ready without table or dictionary, too_long_string beyond kMaxSentenceBytes,
    /// bad_alloc.
    void search(std::span<Sentence> sentences, ConnTable const* table, DicSet const& dics);
    /// The same for one sentence.
    void build(Sentence& sentence, ConnTable const* table, DicSet const& dics) { search({&sentence, 1}, table, dics); }
    /// The same under constraints, forced ones where nothing else gives a path.
    void build(Sentence& sentence, ConnTable const* table, DicSet const& dics, LatticeConstraints& constraints);
    /// True while @p table and @p dics are those of the last search().
    bool isAttached(ConnTable const& table, DicSet const& dics) const { return state_.indexes.isAttached(table, dics); }

    /// All nodes that start where @p node does, in the order of making. @p node was
    /// built by this object or by another builder into nodes(), or given here
    /// before; @p start is its position in @p text, the text of its sentence. Empty
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
    SearchState state_;
    PathStore paths_;
    FastSearch fast_;
    // Of the sentences at work that are not empty.
    std::vector<std::string_view> texts_;
    std::vector<LazyPath> found_;
    CandidateTable candidates_;
};

/// Throws tavo_not_ready without table or dictionary, too_long_string beyond
/// kMaxSentenceBytes.
void checkSearchable(Sentence const& sentence, ConnTable const* table, DicSet const& dics);

/// The best path of @p sentence from first to last node; empty without result.
std::vector<LatticeNode const*> bestPath(Sentence const& sentence);

}  // namespace TAVO

#endif
