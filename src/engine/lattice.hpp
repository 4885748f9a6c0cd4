// Builds the lattice of a sentence backward and chooses every node's best
// continuation on the way.
#ifndef TAVO_ENGINE_LATTICE_HPP
#define TAVO_ENGINE_LATTICE_HPP

#include "dic/dic_trie.hpp"
#include "engine/lattice_node.hpp"
#include "engine/node_pool.hpp"
#include "engine/path_key.hpp"
#include "engine/sentence.hpp"

#include <cstdint>
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
        std::uint32_t order;   ///< of making, at its position: kTwoBytes, kOneByte, then the words
        std::uint16_t column;  ///< of the connection matrix
        std::uint8_t minimum;  ///< smallest cost of the column
    };
    static constexpr std::uint32_t kTwoBytes = 0, kOneByte = 1, kFirstWord = 2;

    /// The nodes that start at one position: words first, then unknown words.
    /// Entries: plain ones, then those of sparse columns; each part sorted by
    /// the smallest connection sum that an entry can give to a word before it.
    struct Starts {
        LatticeNode const* nodes;
        PathKey least;            ///< smallest key here; while not built, nothing smaller can be here
        PathKey leastForUnknown;  ///< the same of the nodes that an unknown word may stand before
        std::uint32_t first;      ///< index of the first entry; kNotBuilt
        std::uint32_t sparse;     ///< end of the plain entries
        std::uint32_t end;        ///< end of the entries
        std::uint32_t twoBytes;   ///< index of the two-byte unknown word in nodes, where made
        std::uint32_t oneByte;    ///< index of the one-byte unknown word in nodes, where made
    };
    static constexpr std::uint32_t kNotBuilt = 0xFFFFFFFF;

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
    /// A surface form of a dictionary that stands at the position at work.
    struct Match {
        std::uint32_t length;
        RecordChain chain;
    };
    /// What an id costs.
    struct Id {
        std::uint16_t row;
        std::uint16_t column;
    };
    static constexpr std::size_t kMemoSlots = 1024;
    static constexpr std::uint64_t kNoTotal = ~std::uint64_t{0};

    void attach(ConnTable const& table);
    void markCharacters();
    void findMatches(std::size_t p);
    void prepareMatches(std::size_t p);
    void boundPosition(std::size_t p);
    void buildThrough(std::size_t p);
    void buildPosition(std::size_t p, bool every);
    void makeWords(std::size_t p);
    bool makeUnknowns(std::size_t p, bool every);
    bool couldBeChosen(PathKey bound) const noexcept;
    PathKey unknownBound(std::size_t end) const noexcept;
    void addUnknown(std::size_t end, std::uint32_t length, std::uint32_t order);
    void addRecords(std::size_t end, Match const& match);
    void addNode(unsigned char const* record, std::uint32_t length, std::uint16_t column, std::uint8_t wordCost,
                 Best const& best, std::uint32_t order);
    void sortEntries(std::size_t first, std::size_t end);
    Best bestAfter(std::size_t end, std::uint16_t row) noexcept;
    Best search(std::size_t end, std::uint16_t row) const noexcept;
    bool isBuilt(std::size_t p) const noexcept { return starts_[p].first != kNotBuilt; }

    NodePool pool_;
    ConnTable const* table_ = nullptr;
    std::vector<Id> ids_;  // by id; ids_[0] is unused
    unsigned char const* unknownRow_ = nullptr;
    /// Every word costs unknownCost_ before an unknown word, and behind one too
    /// unless it is forbidden there.
    bool flatUnknown_ = false;
    std::uint8_t unknownCost_ = 0;

    // The sentence at work.
    unsigned char const* text_ = nullptr;
    std::size_t length_ = 0;
    DicSet const* dics_ = nullptr;
    std::vector<Starts> starts_;        // by position
    std::vector<std::uint8_t> inside_;  // by position: 1 for second bytes of characters
    std::vector<Entry> entries_;
    std::uint64_t stampBase_ = 1;  // no stamp occurs twice
    std::vector<Memo> memos_ = std::vector<Memo>(kMemoSlots);

    // The position at work.
    std::vector<Match> matches_;
    std::vector<Entry> plain_;
    std::vector<Entry> sparse_;
    std::uint32_t order_ = kFirstWord;  // of the next word
    PathKey least_ = kNoPath;
    PathKey leastForUnknown_ = kNoPath;
    std::uint64_t leastTotal_ = kNoTotal;  // smallest sum that some word gives to every word before it
};

/// Throws tavo_not_ready without table or dictionary, too_long_string beyond
/// kMaxSentenceBytes.
void checkSearchable(Sentence const& sentence, ConnTable const* table, DicSet const& dics);

/// The chosen path of @p sentence from first to last node; empty without result.
std::vector<LatticeNode const*> bestPath(Sentence const& sentence);

}  // namespace TAVO

#endif
