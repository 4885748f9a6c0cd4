#include "engine/lattice.hpp"

#include "dic/conn_table.hpp"
#include "dic/dic_set.hpp"
#include "engine/backward_walk.hpp"
#include "engine/special_records.hpp"

#include <tavo/error.hpp>

#include <algorithm>
#include <string>

namespace TAVO {

void Lattice::attach(ConnTable const& table) {
    if (table_ == &table) return;
    std::vector<Id> ids(table.idCount() + std::size_t{1});
    for (std::uint32_t id = 1; id < ids.size(); ++id) {
        auto const narrow = static_cast<std::uint16_t>(id);
        ids[id] = {table.row(narrow), table.column(narrow)};
    }
    ids_ = std::move(ids);
    table_ = &table;
}

void checkSearchable(Sentence const& sentence, ConnTable const* table, DicSet const& dics) {
    if (table == nullptr) throw tavo_not_ready("No ConnTable: Need to call setConnTablePath()");
    if (dics.getDicCount() == 0) throw tavo_not_ready("No Dictionary: Need to call addDicPath()");
    std::size_t const length = sentence.text.size();
    if (length > kMaxSentenceBytes) throw too_long_string("Exceed limit: length=" + std::to_string(length));
}

void Lattice::build(Sentence& sentence, ConnTable const* table, DicSet const& dics) {
    checkSearchable(sentence, table, dics);
    length_ = sentence.text.size();
    attach(*table);
    if (starts_.size() <= length_) starts_.resize(length_ + 1);
    starts_[length_] = {nullptr, 0, 0, 0};
    entries_.clear();

    unsigned char const* const text = asBytes(sentence.text.data());
    std::uint16_t const unknownRow = ids_[ConnTable::kUnknownId].row;
    Best unknownAfterNext;  // of the position one further right: for the two-byte unknown word
    for (std::size_t p = length_; p-- > 0;) {
        // An unknown word is one byte, or two from a byte of 128 or more on. The
        // one at the very end of the text connects to nothing and costs 255.
        Best const unknown =
            p + 1 == length_ ? Best{nullptr, pathKey(ConnTable::kForbidden, 0)} : search(p + 1, unknownRow);
        pool_.beginPosition();
        if (text[p] >= 128) addUnknown(unknownAfterNext, 2);
        addUnknown(unknown, 1);
        unknownAfterNext = unknown;
        for (DicEntry const& entry : dics.entries()) {
            DicTrie const* const trie = entry.dic->trie();
            if (trie == nullptr) continue;
            trie->prefixSearch(text + p, length_ - p, [&](std::size_t length, RecordChain chain) {
                addRecords(p + length, static_cast<std::uint32_t>(length), chain);
                return true;
            });
        }
        closePosition(p);
    }
    sentence.bestStart = length_ == 0 ? nullptr : search(0, ids_[ConnTable::kBeginId].row).next;
    stampBase_ += length_ + 1;
}

/// Takes the nodes made at @p p into the entries that the search reads.
void Lattice::closePosition(std::size_t p) {
    ConnBounds const& bounds = table_->bounds();
    std::span<LatticeNode const> const made = pool_.position();
    std::size_t const first = entries_.size();
    sparse_.clear();
    for (std::uint32_t i = 0; i < made.size(); ++i) {
        LatticeNode const& node = made[i];
        Entry const entry{pathKey(node.connSum, node.wordSum), i, node.column, bounds.columnMinimum[node.column]};
        (bounds.sparse[node.column] != 0 ? sparse_ : entries_).push_back(entry);
    }
    std::size_t const sparse = entries_.size();
    entries_.insert(entries_.end(), sparse_.begin(), sparse_.end());
    sortEntries(first, sparse);
    sortEntries(sparse, entries_.size());
    starts_[p] = {made.data(), static_cast<std::uint32_t>(first), static_cast<std::uint32_t>(sparse),
                  static_cast<std::uint32_t>(entries_.size())};
}

/// Sorts by the smallest connection sum that an entry can give to a word before it.
void Lattice::sortEntries(std::size_t first, std::size_t end) {
    auto const bound = [](Entry const& entry) { return connSumOf(entry.key) + entry.minimum; };
    auto const less = [&](Entry const& a, Entry const& b) { return bound(a) < bound(b); };
    constexpr std::size_t kFew = 32;
    if (end - first > kFew) {
        std::sort(entries_.begin() + static_cast<std::ptrdiff_t>(first),
                  entries_.begin() + static_cast<std::ptrdiff_t>(end), less);
        return;
    }
    for (std::size_t i = first + 1; i < end; ++i) {
        Entry const entry = entries_[i];
        std::size_t place = i;
        for (; place > first && less(entry, entries_[place - 1]); --place) entries_[place] = entries_[place - 1];
        entries_[place] = entry;
    }
}

Lattice::Best Lattice::bestAfter(std::size_t end, std::uint16_t row) noexcept {
    // Many words that end at one position share their row.
    std::uint64_t const stamp = (stampBase_ + end) << 16 | row;
    Memo& memo = memos_[(row * 0x9E5U + end * 0x6D1U) % kMemoSlots];
    if (memo.stamp != stamp) memo = {stamp, search(end, row)};
    return memo.best;
}

Lattice::Best Lattice::search(std::size_t end, std::uint16_t row) const noexcept {
    Starts const& starts = starts_[end];
    unsigned char const* const costs = table_->rowStart(row);
    PathKey bestKey = kNoPath;
    std::uint32_t bestOrder = 0;
    auto const scan = [&](std::uint32_t first, std::uint32_t stop) {
        for (std::uint32_t i = first; i != stop; ++i) {
            Entry const& entry = entries_[i];
            // The entries behind this one give no smaller connection sum. An
            // equal one must be looked at: word costs or the order decide.
            if (connSumOf(entry.key) + entry.minimum > connSumOf(bestKey)) break;
            std::uint8_t const cost = costs[entry.column];
            if (cost == ConnTable::kForbidden) continue;
            PathKey const key = entry.key + pathKey(cost, 0);
            // Among complete ties the node made first is the best.
            if (key < bestKey || (key == bestKey && entry.order < bestOrder)) {
                bestKey = key;
                bestOrder = entry.order;
            }
        }
    };
    scan(starts.first, starts.sparse);
    if (table_->bounds().entersSparse[row] != 0) scan(starts.sparse, starts.end);
    return {bestKey == kNoPath ? nullptr : starts.nodes + bestOrder, bestKey};
}

void Lattice::addUnknown(Best const& best, std::uint32_t length) {
    if (best.key == kNoPath) return;
    addNode(kUnknownRecord.data(), length, ids_[ConnTable::kUnknownId].column, kUnknownWordCost, best);
}

void Lattice::addRecords(std::size_t end, std::uint32_t length, RecordChain chain) {
    eachNodeRecord(chain, static_cast<std::uint32_t>(ids_.size() - 1), [&](MrphDic record) {
        Id const id = ids_[record.pid()];
        if (end != length_) {
            Best const best = bestAfter(end, id.row);
            if (best.key != kNoPath) addNode(record.head(), length, id.column, record.cost(), best);
            return;
        }
        std::uint8_t const cost = table_->rowStart(id.row)[ids_[ConnTable::kEndId].column];
        if (cost != ConnTable::kForbidden)
            addNode(record.head(), length, id.column, record.cost(), {nullptr, pathKey(cost, 0)});
    });
}

void Lattice::addNode(unsigned char const* record, std::uint32_t length, std::uint16_t column, std::uint8_t wordCost,
                      Best const& best) {
    LatticeNode& node = pool_.make();
    node.record = record;
    node.next = best.next;
    node.length = length;
    node.column = column;
    node.flags = pool_.position().size() == 1 ? LatticeNode::kFirstAtPosition : std::uint16_t{0};
    node.wordSum = wordSumOf(best.key) + wordCost;
    node.connSum = connSumOf(best.key);
}

std::vector<LatticeNode const*> bestPath(Sentence const& sentence) {
    std::vector<LatticeNode const*> path;
    for (LatticeNode const* node = sentence.bestStart; node != nullptr; node = node->next) path.push_back(node);
    return path;
}

}  // namespace TAVO
