#include "engine/lattice.hpp"

#include "dic/conn_table.hpp"
#include "dic/dic_set.hpp"
#include "engine/special_records.hpp"

#include <tavo/error.hpp>

#include <string>

namespace TAVO {
namespace {

constexpr std::uint64_t kNoKey = ~std::uint64_t{0};

/// Orders continuations: connection sum first, then word-cost sum.
std::uint64_t keyOf(std::uint32_t connSum, std::uint32_t wordSum) noexcept {
    return std::uint64_t{connSum} << 32 | wordSum;
}

}  // namespace

void Lattice::attach(ConnTable const& table) {
    if (table_ == &table) return;
    std::vector<Id> ids(table.idCount() + std::size_t{1});
    for (std::uint32_t id = 1; id < ids.size(); ++id) {
        auto const narrow = static_cast<std::uint16_t>(id);
        ids[id] = {std::uint32_t{table.row(narrow)} * table.cols(), table.column(narrow)};
    }
    ids_ = std::move(ids);
    matrix_ = table.rowStart(0);
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
    starts_[length_] = {nullptr, 0};

    unsigned char const* const text = asBytes(sentence.text.data());
    std::uint32_t const unknownRow = ids_[ConnTable::kUnknownId].rowOffset;
    Best unknownAfterNext{};  // of the position one further right: for the two-byte unknown word
    for (std::size_t p = length_; p-- > 0;) {
        // An unknown word is one byte, or two from a byte of 128 or more on. The
        // one at the very end of the text connects to nothing and costs 255.
        Best const unknown =
            p + 1 == length_ ? Best{nullptr, ConnTable::kForbidden, 0, true} : bestAfter(p + 1, unknownRow);
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
        std::span<LatticeNode const> const made = pool_.position();
        starts_[p] = {made.data(), static_cast<std::uint32_t>(made.size())};
    }
    sentence.bestStart = length_ == 0 ? nullptr : chooseStart();
}

Lattice::Best Lattice::bestAfter(std::size_t end, std::uint32_t rowOffset) const noexcept {
    Starts const& starts = starts_[end];
    unsigned char const* const row = matrix_ + rowOffset;
    std::uint64_t bestKey = kNoKey;
    LatticeNode const* best = nullptr;
    // In the order of making, so that only a smaller key replaces the kept one:
    // among complete ties the node made first stays.
    for (LatticeNode const *node = starts.begin, *stop = starts.begin + starts.count; node != stop; ++node) {
        std::uint8_t const cost = row[node->column];
        if (cost == ConnTable::kForbidden) continue;
        std::uint64_t const key = keyOf(node->connSum + cost, node->wordSum);
        if (key < bestKey) {
            bestKey = key;
            best = node;
        }
    }
    return {best, static_cast<std::uint32_t>(bestKey >> 32), static_cast<std::uint32_t>(bestKey), best != nullptr};
}

void Lattice::addUnknown(Best const& best, std::uint32_t length) {
    if (!best.found) return;
    addNode(kUnknownRecord.data(), length, ids_[ConnTable::kUnknownId].column, kUnknownWordCost, best);
}

void Lattice::addRecords(std::size_t end, std::uint32_t length, RecordChain chain) {
    // Of neighbouring homographs of one id only the first becomes a node; it
    // counts as handled even when nothing may follow it.
    for (std::uint16_t handled = 0; chain; chain = chain.next()) {
        MrphDic const record = chain.record();
        std::uint16_t const pid = record.pid();
        if (pid == handled || pid >= ids_.size() || pid == 0) continue;
        handled = pid;
        Id const id = ids_[pid];
        if (end == length_) {
            std::uint8_t const cost = matrix_[id.rowOffset + ids_[ConnTable::kEndId].column];
            if (cost != ConnTable::kForbidden)
                addNode(record.head(), length, id.column, record.cost(), {nullptr, cost, 0, true});
            continue;
        }
        Best const best = bestAfter(end, id.rowOffset);
        if (best.found) addNode(record.head(), length, id.column, record.cost(), best);
    }
}

void Lattice::addNode(unsigned char const* record, std::uint32_t length, std::uint16_t column, std::uint8_t wordCost,
                      Best const& best) {
    LatticeNode& node = pool_.make();
    node.record = record;
    node.next = best.next;
    node.length = length;
    node.column = column;
    node.flags = pool_.position().size() == 1 ? LatticeNode::kFirstAtPosition : std::uint16_t{0};
    node.wordSum = best.wordSum + wordCost;
    node.connSum = best.connSum;
}

LatticeNode const* Lattice::chooseStart() const noexcept {
    return bestAfter(0, ids_[ConnTable::kBeginId].rowOffset).next;
}

std::vector<LatticeNode const*> bestPath(Sentence const& sentence) {
    std::vector<LatticeNode const*> path;
    for (LatticeNode const* node = sentence.bestStart; node != nullptr; node = node->next) path.push_back(node);
    return path;
}

}  // namespace TAVO
