// Builds the lattice of a sentence backward and chooses every node's best
// continuation on the way.
#ifndef TAVO_ENGINE_LATTICE_HPP
#define TAVO_ENGINE_LATTICE_HPP

#include "engine/lattice_node.hpp"
#include "engine/node_pool.hpp"
#include "engine/path_key.hpp"
#include "engine/sentence.hpp"

#include <cstdint>
#include <vector>

namespace TAVO {

class ConnTable;
class DicSet;
class DicTrie;
class RecordChain;
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
    /// Room for @p capacity nodes is allocated at once; 0 means 4096.
    explicit Lattice(std::uint32_t capacity) : pool_(capacity) {}

    bool ready() const noexcept { return pool_.ready(); }
    void clear() noexcept { pool_.clear(); }

    /// Adds the nodes of @p sentence and sets its bestStart (null when no
    /// complete path exists). Throws tavo_not_ready without table or dictionary,
    /// too_long_string beyond kMaxSentenceBytes, bad_alloc.
    void build(Sentence& sentence, ConnTable const* table, DicSet const& dics);
    /// The same under constraints, forced ones where nothing else gives a path.
    void build(Sentence& sentence, ConnTable const* table, DicSet const& dics, LatticeConstraints& constraints);

    /// Nodes by their index in the order of making: the table of candidates.
    NodePool const& nodes() const noexcept { return pool_; }
    /// For other builders of lattices of the same input.
    NodePool& nodes() noexcept { return pool_; }

private:
    /// What the search reads of a node, apart from the rest.
    struct Entry {
        PathKey key;           ///< the node's sums
        std::uint32_t order;   ///< of making, at its position
        std::uint16_t column;  ///< of the connection matrix
        std::uint8_t minimum;  ///< smallest cost of the column
    };
    /// The nodes that start at one position: plain entries, then those of
    /// sparse columns; each part sorted by the smallest total that an entry can
    /// give to any word before it.
    struct Starts {
        LatticeNode const* nodes;
        std::uint32_t first;   ///< index of the first entry
        std::uint32_t sparse;  ///< end of the plain entries
        std::uint32_t end;
    };
    /// A best continuation: the sums that a word before it takes over.
    struct Best {
        LatticeNode const* next = nullptr;
        PathKey key = kNoPath;
    };
    /// A best continuation found before, for a row at a position.
    struct Memo {
        std::uint64_t stamp = 0;
        Best best;
    };
    /// What an id costs.
    struct Id {
        std::uint16_t row;
        std::uint16_t column;
    };
    static constexpr std::size_t kMemoSlots = 1024;

    void attach(ConnTable const& table);
    Best bestAfter(std::size_t end, std::uint16_t row) noexcept;
    Best search(std::size_t end, std::uint16_t row) const noexcept;
    void addUnknown(Best const& best, std::uint32_t length);
    void addRecords(std::size_t end, std::uint32_t length, RecordChain chain);
    void addNode(unsigned char const* record, std::uint32_t length, std::uint16_t column, std::uint8_t wordCost,
                 Best const& best);
    void closePosition(std::size_t p);
    void sortEntries(std::size_t first, std::size_t end);

    NodePool pool_;
    ConnTable const* table_ = nullptr;
    std::vector<Id> ids_;         // by id; ids_[0] is unused
    std::vector<Starts> starts_;  // by position of the sentence at work
    std::vector<Entry> entries_;  // of the sentence at work, by descending position
    std::vector<Entry> sparse_;   // of the position at work
    std::vector<Memo> memos_ = std::vector<Memo>(kMemoSlots);
    std::uint64_t stampBase_ = 1;  // of the sentence at work: no stamp occurs twice
    std::size_t length_ = 0;       // of the sentence at work
};

/// Throws tavo_not_ready without table or dictionary, too_long_string beyond
/// kMaxSentenceBytes.
void checkSearchable(Sentence const& sentence, ConnTable const* table, DicSet const& dics);

/// The chosen path of @p sentence from first to last node; empty without result.
std::vector<LatticeNode const*> bestPath(Sentence const& sentence);

}  // namespace TAVO

#endif
