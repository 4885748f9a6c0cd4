#include "engine/constrained_search.hpp"

#include "dic/conn_table.hpp"
#include "dic/dic_set.hpp"
#include "engine/lattice.hpp"
#include "engine/special_records.hpp"

#include <tavo/error.hpp>

#include <string>

namespace TAVO {

void Lattice::build(Sentence& sentence, ConnTable const& table, DicSet const& dics,
                    LatticeConstraints const& constraints) {
    std::size_t const length = sentence.text.size();
    if (length > kMaxSentenceBytes) throw too_long_string("Exceed limit: length=" + std::to_string(length));
    ConstrainedSearch(pool_, table, dics, constraints).build(sentence);
}

void ConstrainedSearch::build(Sentence& sentence) {
    text_ = sentence.text;
    forced_ = false;
    sentence.bestStart = search();
    if (sentence.bestStart != nullptr || constraints_.spans.empty()) return;
    forced_ = true;
    sentence.bestStart = search();
}

LatticeNode const* ConstrainedSearch::search() {
    if (text_.empty()) return nullptr;
    starts_.assign(text_.size() + 1, {});
    std::size_t barrier = constraints_.barriers.size();  // those from here on lie behind p
    std::size_t span = constraints_.spans.size();
    std::size_t limit = text_.size();  // the next barrier behind p
    for (std::size_t p = text_.size(); p-- > 0;) {
        pool_.beginPosition();
        while (barrier > 0 && constraints_.barriers[barrier - 1] > p) limit = constraints_.barriers[--barrier];
        while (span > 0 && constraints_.spans[span - 1].begin > p) --span;
        FixedSpan const* const fixed =
            span > 0 && p < constraints_.spans[span - 1].end ? &constraints_.spans[span - 1] : nullptr;
        if (fixed == nullptr)
            addPlain(p, limit);
        else if (p == fixed->begin)
            addFixed(*fixed);
        starts_[p] = {pool_.position(), fixed != nullptr};
    }
    return bestAfter(0, ConnTable::kBeginId, false).next;
}

ConstrainedSearch::Best ConstrainedSearch::bestAfter(std::size_t end, std::uint16_t left,
                                                     bool leftIsFixed) const noexcept {
    Starts const& starts = starts_[end];
    bool const forced = forced_ && (leftIsFixed || starts.fixed);
    unsigned char const* const row = table_.rowStart(table_.row(left));
    Best best{nullptr, 0, 0, false};
    // In the order of making, so that only a better one replaces the kept one:
    // among complete ties the node made first stays.
    for (LatticeNode const& node : starts.nodes) {
        std::uint8_t const cost = row[node.column];
        if (cost == ConnTable::kForbidden && !forced) continue;
        std::uint32_t const sum = node.connSum + cost;
        if (!best.found || sum < best.connSum || (sum == best.connSum && node.wordSum < best.wordSum))
            best = {&node, sum, node.wordSum, true};
    }
    return best;
}

void ConstrainedSearch::addFixed(FixedSpan const& span) {
    for (unsigned char const* record : constraints_.candidates(span)) {
        if (record == kUnknownRecord.data() && span.end == text_.size())
            addNode(record, span.end - span.begin, {nullptr, ConnTable::kForbidden, 0, true});
        else
            addRecord(span.begin, span.end - span.begin, record, true);
    }
}

/// Unknown words and the words of the dictionaries that end at @p limit or before.
void ConstrainedSearch::addPlain(std::size_t position, std::size_t limit) {
    unsigned char const* const text = asBytes(text_.data());
    if (text[position] >= 128 && position + 2 <= limit) addUnknown(position, 2);
    addUnknown(position, 1);
    for (DicEntry const& entry : dics_.entries()) {
        DicTrie const* const trie = entry.dic->trie();
        if (trie == nullptr) continue;
        trie->prefixSearch(text + position, limit - position, [&](std::size_t length, RecordChain chain) {
            addRecords(position, static_cast<std::uint32_t>(length), chain);
            return true;
        });
    }
}

void ConstrainedSearch::addUnknown(std::size_t position, std::uint32_t length) {
    std::size_t const end = position + length;
    Best const best = end == text_.size() ? Best{nullptr, ConnTable::kForbidden, 0, true}
                                          : bestAfter(end, ConnTable::kUnknownId, false);
    if (best.found) addNode(kUnknownRecord.data(), length, best);
}

void ConstrainedSearch::addRecords(std::size_t position, std::uint32_t length, RecordChain chain) {
    // Of neighbouring homographs of one id only the first becomes a node.
    for (std::uint16_t handled = 0; chain; chain = chain.next()) {
        std::uint16_t const pid = chain.record().pid();
        if (pid == handled || pid == 0 || pid > table_.idCount()) continue;
        handled = pid;
        addRecord(position, length, chain.head(), false);
    }
}

void ConstrainedSearch::addRecord(std::size_t position, std::uint32_t length, unsigned char const* record, bool fixed) {
    std::uint16_t const pid = MrphDic(record).pid();
    std::size_t const end = position + length;
    if (end < text_.size()) {
        Best const best = bestAfter(end, pid, fixed);
        if (best.found) addNode(record, length, best);
        return;
    }
    std::uint8_t const cost = table_.cost(pid, ConnTable::kEndId);
    if (cost != ConnTable::kForbidden || (forced_ && fixed)) addNode(record, length, {nullptr, cost, 0, true});
}

void ConstrainedSearch::addNode(unsigned char const* record, std::uint32_t length, Best const& best) {
    MrphDic const dic(record);
    LatticeNode& node = pool_.make();
    node.record = record;
    node.next = best.next;
    node.length = length;
    node.column = table_.column(dic.pid());
    node.flags = pool_.position().size() == 1 ? LatticeNode::kFirstAtPosition : std::uint16_t{0};
    node.wordSum = best.wordSum + dic.cost();
    node.connSum = best.connSum;
}

}  // namespace TAVO
