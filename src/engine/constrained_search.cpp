#include "engine/constrained_search.hpp"

#include "dic/conn_table.hpp"
#include "engine/constrained_walk.hpp"
#include "engine/lattice.hpp"
#include "engine/special_records.hpp"

namespace TAVO {

void ConstrainedSearch::build(Sentence& sentence, DicSet const& dics) {
    sentence.bestStart = nullptr;
    if (sentence.text.empty()) return;
    starts_.assign(sentence.text.size() + 1, {});
    walkBackward(sentence.text, dics, constraints_, *this);
    sentence.bestStart = bestAfter(0, ConnTable::kBeginId).next;
}

ConstrainedSearch::Best ConstrainedSearch::bestAfter(std::size_t end, std::uint16_t left) const noexcept {
    bool const forced = constraints_.forcesAt(end);
    unsigned char const* const row = table_.rowStart(table_.row(left));
    Best best{nullptr, kNoPath};
    // In the order of making, so that only a smaller key replaces the kept one:
    // among complete ties the node made first stays.
    for (LatticeNode const& node : starts_[end]) {
        std::uint8_t const cost = LatticeConstraints::connection(row[node.column], forced);
        if (cost == ConnTable::kForbidden) continue;
        PathKey const key = pathKey(node.connSum + cost, node.wordSum);
        if (key < best.key) best = {&node, key};
    }
    return best;
}

void ConstrainedSearch::addUnknown(std::size_t p, std::uint32_t length) {
    // The unknown word at the very end of the text connects to nothing and costs
    // 255.
    std::size_t const end = p + length;
    addNode(kUnknownRecord.data(), length,
            end + 1 == starts_.size() ? Best{nullptr, pathKey(ConnTable::kForbidden, 0)}
                                      : bestAfter(end, ConnTable::kUnknownId));
}

void ConstrainedSearch::addRecords(std::size_t p, std::uint32_t length, RecordChain chain) {
    std::size_t const end = p + length;
    eachNodeRecord(chain, table_.idCount(), [&](MrphDic record) {
        if (end + 1 != starts_.size()) {
            addNode(record.head(), length, bestAfter(end, record.pid()));
        } else if (std::uint8_t const cost = table_.cost(record.pid(), ConnTable::kEndId);
                   cost != ConnTable::kForbidden) {
            addNode(record.head(), length, {nullptr, pathKey(cost, 0)});
        }
    });
}

void ConstrainedSearch::addFixed(std::size_t p, std::uint32_t length, unsigned char const* record) {
    std::size_t const end = p + length;
    if (record == kUnknownRecord.data()) {
        addUnknown(p, length);
    } else if (end + 1 != starts_.size()) {
        addNode(record, length, bestAfter(end, MrphDic(record).pid()));
    } else if (std::uint8_t const cost = LatticeConstraints::connection(
                   table_.cost(MrphDic(record).pid(), ConnTable::kEndId), constraints_.forced);
               cost != ConnTable::kForbidden) {
        addNode(record, length, {nullptr, pathKey(cost, 0)});
    }
}

void ConstrainedSearch::addNode(unsigned char const* record, std::uint32_t length, Best const& best) {
    if (best.key == kNoPath) return;
    MrphDic const dic(record);
    PathKey const key = best.key + dic.cost();
    LatticeNode& node = pool_.make();
    node.record = record;
    node.next = best.next;
    node.length = length;
    node.column = table_.column(dic.pid());
    node.flags = pool_.position().size() == 1 ? LatticeNode::kFirstAtPosition : std::uint16_t{0};
    node.wordSum = wordSumOf(key);
    node.connSum = connSumOf(key);
}

}  // namespace TAVO
