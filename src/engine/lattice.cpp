#include "engine/lattice.hpp"

#include "base/bytes.hpp"
#include "base/sjis.hpp"
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
    unknownRow_ = table.rowStart(table.row(ConnTable::kUnknownId));
    std::uint16_t const column = table.column(ConnTable::kUnknownId);
    unknownCost_ = unknownRow_[column];
    auto const isFlat = [&](std::uint8_t cost) { return cost == unknownCost_ || cost == ConnTable::kForbidden; };
    flatUnknown_ =
        unknownCost_ != ConnTable::kForbidden && std::all_of(unknownRow_, unknownRow_ + table.cols(), isFlat);
    for (std::uint32_t row = 0; row < table.rows(); ++row)
        flatUnknown_ = flatUnknown_ && table.rowStart(row)[column] == unknownCost_;
}

void checkSearchable(Sentence const& sentence, ConnTable const* table, DicSet const& dics) {
    if (table == nullptr) throw tavo_not_ready("No ConnTable: Need to call setConnTablePath()");
    if (dics.getDicCount() == 0) throw tavo_not_ready("No Dictionary: Need to call addDicPath()");
    std::size_t const length = sentence.text.size();
    if (length > kMaxSentenceBytes) throw too_long_string("Exceed limit: length=" + std::to_string(length));
}

void Lattice::build(Sentence& sentence, ConnTable const* table, DicSet const& dics) {
    checkSearchable(sentence, table, dics);
    attach(*table);
    text_ = asBytes(sentence.text.data());
    length_ = sentence.text.size();
    dics_ = &dics;
    if (starts_.size() <= length_) starts_.resize(length_ + 1);
    starts_[length_] = {nullptr, 0, 0, 0, 0, 0, 0, 0};
    entries_.clear();
    markCharacters();
    for (std::size_t p = length_; p-- > 0;) {
        if (inside_[p] != 0)
            boundPosition(p);
        else
            buildPosition(p, !flatUnknown_);
    }
    sentence.bestStart = length_ == 0 ? nullptr : search(0, ids_[ConnTable::kBeginId].row).next;
    stampBase_ += length_ + 1;
}

// Second bytes. A word that starts at the second byte of a character follows
// only an unknown word that cuts the character in two, or a word that ends with
// a lone lead byte. With an unknown word that costs the same everywhere, such
// analyses lose by far, and nearly always that can be told without making the
// nodes of second bytes: boundPosition() keeps, for each of them, a key that
// nothing starting there can be below, and addUnknowns() compares. Where the
// comparison cannot tell, buildThrough() makes the nodes after all, so that
// every result is the exhaustive one.

void Lattice::markCharacters() {
    inside_.assign(length_ + 1, 0);
    if (!flatUnknown_) return;
    std::string_view const text(asChars(text_), length_);
    for (std::size_t p = 0; p < length_;) {
        std::size_t const width = charWidth(text, p);
        if (width == 2) inside_[p + 1] = 1;
        p += width;
    }
}

void Lattice::findMatches(std::size_t p) {
    matches_.clear();
    for (DicEntry const& entry : dics_->entries()) {
        DicTrie const* const trie = entry.dic->trie();
        if (trie == nullptr) continue;
        trie->prefixSearch(text_ + p, length_ - p, [&](std::size_t length, RecordChain chain) {
            matches_.push_back({static_cast<std::uint32_t>(length), chain});
            return true;
        });
    }
}

/// Sets the bound of the second byte at @p p: every connection costs 0 or more,
/// so no node here is below the least one where it ends.
void Lattice::boundPosition(std::size_t p) {
    PathKey bound = unknownBound(p + 1);
    if (text_[p] >= 128 && p + 2 <= length_) bound = std::min(bound, unknownBound(p + 2));
    findMatches(p);
    for (Match const& match : matches_) bound = std::min(bound, starts_[p + match.length].least);
    starts_[p] = {nullptr, bound, bound, kNotBuilt, 0, 0, 0, 0};
}

/// Nothing below this key is an unknown word that ends at @p end.
PathKey Lattice::unknownBound(std::size_t end) const noexcept {
    if (end == length_) return pathKey(ConnTable::kForbidden, kUnknownWordCost);
    PathKey const least = starts_[end].leastForUnknown;
    return least == kNoPath ? kNoPath : least + pathKey(unknownCost_, kUnknownWordCost);
}

/// Builds the second byte at @p p, and first those of the characters that
/// follow without a break, since its words may end there.
void Lattice::buildThrough(std::size_t p) {
    std::size_t last = p;
    while (last + 2 < length_ && inside_[last + 2] != 0 && !isBuilt(last + 2)) last += 2;
    for (std::size_t m = last;; m -= 2) {
        buildPosition(m, true);
        if (m == p) return;
    }
}

/// Finds the matches at @p p and builds the second bytes where some of them end.
void Lattice::prepareMatches(std::size_t p) {
    auto const unbuilt = [&](Match const& match) { return !isBuilt(p + match.length); };
    for (;;) {
        findMatches(p);
        auto const found = std::find_if(matches_.begin(), matches_.end(), unbuilt);
        if (found == matches_.end()) return;
        buildThrough(p + found->length);  // uses the memory of the matches
    }
}

/// Makes the nodes that start at @p p. @p every: all unknown words too, else
/// only those that could be chosen.
void Lattice::buildPosition(std::size_t p, bool every) {
    prepareMatches(p);
    makeWords(p);
    if (!makeUnknowns(p, every)) {
        // Those made so far stay behind unused.
        buildThrough(p + 1);
        prepareMatches(p);
        makeWords(p);
        makeUnknowns(p, every);
    }
    std::size_t const first = entries_.size();
    entries_.insert(entries_.end(), plain_.begin(), plain_.end());
    std::size_t const sparse = entries_.size();
    entries_.insert(entries_.end(), sparse_.begin(), sparse_.end());
    sortEntries(first, sparse);
    sortEntries(sparse, entries_.size());
    Starts& starts = starts_[p];
    starts.nodes = pool_.position().data();
    starts.least = least_;
    starts.leastForUnknown = leastForUnknown_;
    starts.first = static_cast<std::uint32_t>(first);
    starts.sparse = static_cast<std::uint32_t>(sparse);
    starts.end = static_cast<std::uint32_t>(entries_.size());
}

void Lattice::makeWords(std::size_t p) {
    pool_.beginPosition();
    plain_.clear();
    sparse_.clear();
    least_ = leastForUnknown_ = kNoPath;
    leastTotal_ = kNoTotal;
    order_ = kFirstWord;
    for (Match const& match : matches_) addRecords(p + match.length, match);
}

/// Makes the unknown words at @p p. False when the second bytes that follow
/// have to be built to tell whether one could be chosen.
bool Lattice::makeUnknowns(std::size_t p, bool every) {
    Starts& starts = starts_[p];
    PathKey twoBytes = kNoPath;
    if (text_[p] >= 128 && p + 2 <= length_) {
        twoBytes = unknownBound(p + 2);
        if (every || couldBeChosen(twoBytes)) {
            if (!isBuilt(p + 2)) return false;
            starts.twoBytes = static_cast<std::uint32_t>(pool_.position().size());
            addUnknown(p + 2, 2, kTwoBytes);
        }
        // A bound says nothing of what the unknown word costs in fact.
        if (!isBuilt(p + 2)) twoBytes = kNoPath;
    }
    PathKey const oneByte = unknownBound(p + 1);
    // With the same column, and made first, the two-byte word wins every tie.
    if (!every && (oneByte >= twoBytes || !couldBeChosen(oneByte))) return true;
    if (!isBuilt(p + 1)) return false;
    starts.oneByte = static_cast<std::uint32_t>(pool_.position().size());
    addUnknown(p + 1, 1, kOneByte);
    return true;
}

/// False when some word at the position at work gives any word before it a
/// smaller connection sum than an unknown word of at least @p bound does.
bool Lattice::couldBeChosen(PathKey bound) const noexcept {
    return bound != kNoPath && leastTotal_ >= std::uint64_t{connSumOf(bound)} + unknownCost_;
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
    Memo& memo = memos_[(std::size_t{row} * 0x9E5U + end * 0x6D1U) % kMemoSlots];
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
    if (bestKey == kNoPath) return {};
    std::uint32_t const index = bestOrder >= kFirstWord  ? bestOrder - kFirstWord
                                : bestOrder == kTwoBytes ? starts.twoBytes
                                                         : starts.oneByte;
    return {starts.nodes + index, bestKey};
}

void Lattice::addUnknown(std::size_t end, std::uint32_t length, std::uint32_t order) {
    // The one at the very end of the text connects to nothing and costs 255.
    Best const best = end == length_ ? Best{nullptr, pathKey(ConnTable::kForbidden, 0)}
                                     : search(end, ids_[ConnTable::kUnknownId].row);
    std::uint16_t const column = ids_[ConnTable::kUnknownId].column;
    if (best.key != kNoPath) addNode(kUnknownRecord.data(), length, column, kUnknownWordCost, best, order);
}

void Lattice::addRecords(std::size_t end, Match const& match) {
    eachNodeRecord(match.chain, static_cast<std::uint32_t>(ids_.size() - 1), [&](MrphDic record) {
        Id const id = ids_[record.pid()];
        Best best;
        if (end != length_) {
            best = bestAfter(end, id.row);
        } else if (auto const cost = table_->rowStart(id.row)[ids_[ConnTable::kEndId].column];
                   cost != ConnTable::kForbidden) {
            best.key = pathKey(cost, 0);
        }
        if (best.key == kNoPath) return;
        addNode(record.head(), match.length, id.column, record.cost(), best, order_++);
        std::uint16_t const maximum = table_->bounds().columnMaximum[id.column];
        if (maximum != ConnBounds::kUnbounded)
            leastTotal_ = std::min(leastTotal_, std::uint64_t{connSumOf(best.key)} + maximum);
    });
}

void Lattice::addNode(unsigned char const* record, std::uint32_t length, std::uint16_t column, std::uint8_t wordCost,
                      Best const& best, std::uint32_t order) {
    PathKey const key = best.key + wordCost;
    LatticeNode& node = pool_.make();
    node.record = record;
    node.next = best.next;
    node.length = length;
    node.column = column;
    node.flags = pool_.position().size() == 1 ? LatticeNode::kFirstAtPosition : std::uint16_t{0};
    node.wordSum = wordSumOf(key);
    node.connSum = connSumOf(key);
    ConnBounds const& bounds = table_->bounds();
    Entry const entry{key, order, column, bounds.columnMinimum[column]};
    (bounds.sparse[column] != 0 ? sparse_ : plain_).push_back(entry);
    least_ = std::min(least_, key);
    if (unknownRow_[column] != ConnTable::kForbidden) leastForUnknown_ = std::min(leastForUnknown_, key);
}

std::vector<LatticeNode const*> bestPath(Sentence const& sentence) {
    std::vector<LatticeNode const*> path;
    for (LatticeNode const* node = sentence.bestStart; node != nullptr; node = node->next) path.push_back(node);
    return path;
}

}  // namespace TAVO
