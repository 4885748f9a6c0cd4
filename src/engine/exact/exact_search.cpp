#include "engine/exact/exact_search.hpp"

#include "dic/conn_table.hpp"
#include "dic/record_walk.hpp"
#include "engine/special_records.hpp"

namespace TAVO {

LatticeNode const* ExactSearch::build(std::string_view text, DicSet const& dics) {
    if (text.empty()) return nullptr;
    range_ = {0, text.size()};
    textEnd_ = text.size();
    starts_.assign(text.size() + 1, {});
    walkBackward(text, range_, dics, constraints_, *this);
    return first(ConnTable::kBeginId);
}

bool ExactSearch::buildPiece(std::string_view text, WalkRange range, std::span<Successor const> successors,
                             DicSet const& dics) {
    range_ = range;
    textEnd_ = text.size();
    crossed_ = false;
    starts_.assign(range.end - range.begin + 1, {});
    pool_.beginPosition();
    for (Successor const& successor : successors)
        pool_.make() = {nullptr,
                        nullptr,
                        successor.number,
                        successor.column,
                        0,
                        wordSumOf(successor.key),
                        connSumOf(successor.key)};
    endPosition(range.end);
    walkBackward(text, range, dics, constraints_, *this);
    return !crossed_;
}

ExactSearch::Best ExactSearch::bestAfter(std::size_t end, std::uint16_t left) const noexcept {
    bool const forced = constraints_.forcesAt(end);
    unsigned char const* const row = table_.rowStart(table_.row(left));
    Best best{nullptr, kNoPath};
    // In the order of making, so that only a smaller key replaces the kept one:
    // among complete ties the node made first stays.
    for (LatticeNode const& node : starts_[end - range_.begin]) {
        std::uint8_t const cost = LatticeConstraints::connection(row[node.column], forced);
        if (cost == ConnTable::kForbidden) continue;
        PathKey const key = pathKey(node.connSum + cost, node.wordSum);
        if (key < best.key) best = {&node, key};
    }
    return best;
}

ExactSearch::Best ExactSearch::ending(std::uint8_t cost) const noexcept {
    return {nullptr, cost == ConnTable::kForbidden ? kNoPath : pathKey(cost, 0)};
}

void ExactSearch::addUnknown(std::size_t p, std::uint32_t length) {
    // The unknown word at the very end of the text connects to nothing and costs 255.
    addNode(kUnknownRecord.data(), length,
            endsText(p + length) ? Best{nullptr, pathKey(ConnTable::kForbidden, 0)}
                                 : bestAfter(p + length, ConnTable::kUnknownId));
}

void ExactSearch::addRecords(std::size_t p, std::uint32_t length, RecordChain chain) {
    std::size_t const end = p + length;
    if (end > range_.end) {
        crossed_ = true;
        return;
    }
    eachNodeRecord(chain, table_.idCount(), [&](MrphDic record) {
        addNode(record.head(), length,
                endsText(end) ? ending(table_.cost(record.pid(), ConnTable::kEndId)) : bestAfter(end, record.pid()));
    });
}

void ExactSearch::addFixed(std::size_t p, std::uint32_t length, unsigned char const* record) {
    std::size_t const end = p + length;
    if (record == kUnknownRecord.data()) return addUnknown(p, length);
    std::uint16_t const pid = MrphDic(record).pid();
    addNode(record, length,
            endsText(end)
                ? ending(LatticeConstraints::connection(table_.cost(pid, ConnTable::kEndId), constraints_.forced))
                : bestAfter(end, pid));
}

void ExactSearch::addNode(unsigned char const* record, std::uint32_t length, Best const& best) {
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
