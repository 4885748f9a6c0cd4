// Best paths as the search leaves them: their words, of which nodes are made when somebody asks.
#ifndef TAVO_ENGINE_PATH_STORE_HPP
#define TAVO_ENGINE_PATH_STORE_HPP

#include "base/raw_buffer.hpp"
#include "engine/fast/search_indexes.hpp"
#include "engine/lattice_node.hpp"
#include "engine/node_pool.hpp"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace TAVO {

/// A word of a best path.
struct PathWord {
    static constexpr std::uint8_t kUnknown = 0xFE, kExact = 0xFF;

    std::uint32_t word;  ///< list number << 8 | index in it; of the exact search's words: number among them
    std::uint16_t column;
    std::uint8_t length;  ///< in bytes, but for the exact search's words
    std::uint8_t source;  ///< number of the dictionary, or one of the above
};

/// A word that the exact search found.
struct ExactWord {
    unsigned char const* record;
    std::uint32_t length;  ///< in bytes
};

/// The best paths of all sentences of one input, in 8 bytes a word.
class PathStore {
public:
    PathStore(NodePool& pool, SearchIndexes const& indexes) : pool_(pool), indexes_(indexes) {}

    void clear() noexcept;
    /// The table that the paths' connection costs come from; it outlives them.
    void setTable(ConnTable const& table) noexcept { table_ = &table; }

    std::size_t size() const noexcept { return words_.size(); }
    /// Makes room for @p count words more.
    void reserve(std::size_t count) { words_.reserve(words_.size() + count); }
    void add(PathWord const& word) { words_.push(word); }
    /// Room behind the last word for as many as were reserved; take() tells how many were written there.
    PathWord* room() noexcept { return words_.end(); }
    void take(std::size_t count) { words_.resizeForOverwrite(words_.size() + count); }
    void addExact(LatticeNode const& node);
    PathWord const& word(std::size_t i) const noexcept { return words_[i]; }
    std::uint32_t lengthBytes(PathWord const& word) const noexcept {
        return word.source == PathWord::kExact ? exact_[word.word].length : word.length;
    }
    /// The record of @p word, whose surface begins at @p text.
    unsigned char const* record(PathWord const& word, char const* text) const noexcept;
    /// Row of the connection table for a word behind @p word.
    std::uint16_t row(PathWord const& word) const noexcept;

    /// Makes the nodes of the words [@p begin, @p end), which are a whole path of @p text; the first one. Throws
    /// bad_alloc.
    LatticeNode const* makeNodes(std::size_t begin, std::size_t end, std::string_view text);

private:
    NodePool& pool_;
    SearchIndexes const& indexes_;
    ConnTable const* table_ = nullptr;
    RawBuffer<PathWord> words_;
    RawBuffer<ExactWord> exact_;
};

/// A word of a path of which no node was made.
struct PendingWord {
    PathStore const* store;
    PathWord const* word;
    char const* text;      ///< its surface
    std::uint32_t length;  ///< in bytes
    std::uint16_t column;

    /// These look into the dictionary or its index.
    std::uint16_t row() const noexcept { return store->row(*word); }
    unsigned char const* record() const noexcept { return store->record(*word, text); }
};

/// The best path of a sentence: none, the words of a PathStore, or nodes. Nodes are made by the first call of first(),
/// which is therefore no call for two threads at once.
class LazyPath {
public:
    LazyPath() = default;
    explicit LazyPath(LatticeNode const* first) noexcept : first_(first) {}
    LazyPath(PathStore& store, std::size_t begin, std::size_t end, std::string_view text) noexcept
        : store_(&store), begin_(begin), end_(end), text_(text) {}

    bool exists() const noexcept { return store_ != nullptr || first_ != nullptr; }
    /// The first node; null without path. Throws bad_alloc, after which it may be called again.
    LatticeNode const* first() const {
        if (store_ != nullptr) {
            first_ = store_->makeNodes(begin_, end_, text_);
            store_ = nullptr;
        }
        return first_;
    }
    /// True while no node was made.
    bool isPending() const noexcept { return store_ != nullptr; }
    /// How many words a pending path has.
    std::size_t pendingCount() const noexcept { return end_ - begin_; }
    /// Column of the first word of a path.
    std::uint16_t firstColumn() const noexcept {
        return store_ != nullptr ? store_->word(begin_).column : first_->column;
    }
    /// Of a pending path: calls visit(PendingWord) for each word.
    template <class Visit>
    void visitPending(Visit&& visit) const;

private:
    mutable PathStore* store_ = nullptr;
    mutable LatticeNode const* first_ = nullptr;
    std::size_t begin_ = 0, end_ = 0;
    std::string_view text_;
};

template <class Visit>
void LazyPath::visitPending(Visit&& visit) const {
    char const* text = text_.data();
    for (std::size_t i = begin_; i != end_; ++i) {
        PathWord const& word = store_->word(i);
        std::uint32_t const length = store_->lengthBytes(word);
        visit(PendingWord{store_, &word, text, length, word.column});
        text += length;
    }
}

}  // namespace TAVO

#endif
