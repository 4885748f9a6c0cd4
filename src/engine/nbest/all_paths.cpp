#include "engine/nbest/all_paths.hpp"

#include "dic/record_walk.hpp"
#include "engine/exact/exact_walk.hpp"
#include "engine/lattice.hpp"
#include "engine/special_records.hpp"

#include <algorithm>
#include <cstring>
#include <new>

namespace TAVO {

/// Makes the nodes of one sentence.
class AllPaths::Builder {
public:
    Builder(AllPaths& paths, NodePool& pool, ConnTable const& table, std::size_t length,
            LatticeConstraints const& constraints)
        : paths_(paths), pool_(pool), table_(table), length_(length), constraints_(constraints) {}

    void beginPosition(std::size_t p) {
        pool_.beginPosition();
        paths_.starts_[p].firstNode = static_cast<std::uint32_t>(paths_.keys_.size());
    }

    void addUnknown(std::size_t p, std::uint32_t length) {
        // The unknown word at the very end of the text connects to nothing and
        // costs 255.
        Follower const follower =
            p + length == length_ ? ending(ConnTable::kForbidden) : followerAfter(p + length, ConnTable::kUnknownId);
        addNode(kUnknownRecord.data(), length, ConnTable::kUnknownId, kUnknownWordCost, follower);
    }

    void addRecords(std::size_t p, std::uint32_t length, RecordChain chain) {
        std::size_t const end = p + length;
        auto const add = [&](MrphDic record) {
            std::uint16_t const pid = record.pid();
            if (end != length_) {
                addNode(record.head(), length, pid, record.cost(), followerAfter(end, pid));
            } else if (std::uint8_t const cost = table_.cost(pid, ConnTable::kEndId); cost != ConnTable::kForbidden) {
                addNode(record.head(), length, pid, record.cost(), ending(cost));
            }
        };
        if (!paths_.keepsHomographs_) return eachNodeRecord(chain, table_.idCount(), add);
        std::size_t const ofOtherDictionaries = pool_.position().size();
        for (; chain; chain = chain.next()) {
            MrphDic const record = chain.record();
            bool const isId = record.pid() != 0 && record.pid() <= table_.idCount();
            if (isId && !hasTwin(record, length, ofOtherDictionaries)) add(record);
        }
    }

    void addFixed(std::size_t p, std::uint32_t length, unsigned char const* record) {
        MrphDic const dic(record);
        if (record == kUnknownRecord.data()) {
            addUnknown(p, length);
        } else if (p + length != length_) {
            addNode(record, length, dic.pid(), dic.cost(), followerAfter(p + length, dic.pid()));
        } else if (std::uint8_t const cost =
                       LatticeConstraints::connection(table_.cost(dic.pid(), ConnTable::kEndId), constraints_.forced);
                   cost != ConnTable::kForbidden) {
            addNode(record, length, dic.pid(), dic.cost(), ending(cost));
        }
    }

    void endPosition(std::size_t p) {
        Starts& starts = paths_.starts_[p];
        starts.nodes = pool_.position().data();
        starts.nodeCount = static_cast<std::uint32_t>(pool_.position().size());
        starts.lists = kNone;
        starts.forced = constraints_.forcesAt(p);
    }

    /// Where a word continues: at a node, through a list, or at the end.
    struct Follower {
        LatticeNode const* node;
        std::uint32_t list;
        PathKey key;
    };

    Follower followerAfter(std::size_t end, std::uint16_t id) {
        std::uint32_t const index = paths_.edgesAfter(end, id, table_);
        EdgeList const& list = paths_.lists_[index];
        if (list.bestKey == kNoPath) return {nullptr, kNone, kNoPath};
        return {paths_.starts_[end].nodes + (list.bestNode - list.firstNode), index, list.bestKey};
    }

private:
    /// True when one of the first @p count nodes of the position is the same word as @p record.
    bool hasTwin(MrphDic record, std::uint32_t length, std::size_t count) {
        return std::ranges::any_of(pool_.position().first(count), [&](LatticeNode const& node) {
            MrphDic const other(node.record);
            return node.length == length && other.pid() == record.pid() && other.cost() == record.cost() &&
                   std::strcmp(other.readPron(), record.readPron()) == 0 &&
                   std::strcmp(other.stdForm(), record.stdForm()) == 0 &&
                   std::strcmp(other.partForm(), record.partForm()) == 0;
        });
    }

    static Follower ending(std::uint8_t cost) { return {nullptr, kNone, pathKey(cost, 0)}; }

    void addNode(unsigned char const* record, std::uint32_t length, std::uint16_t id, std::uint8_t wordCost,
                 Follower const& follower) {
        if (follower.key == kNoPath) return;
        PathKey const key = follower.key + wordCost;
        std::uint16_t const column = table_.column(id);
        paths_.keys_.push(key);
        paths_.edgesOf_.push(follower.list);
        paths_.columns_.push(column);
        LatticeNode& node = pool_.make();
        node.record = record;
        node.next = follower.node;
        node.length = length;
        node.column = column;
        node.flags = pool_.position().size() == 1 ? LatticeNode::kFirstAtPosition : std::uint16_t{0};
        node.wordSum = wordSumOf(key);
        node.connSum = connSumOf(key);
    }

    AllPaths& paths_;
    NodePool& pool_;
    ConnTable const& table_;
    std::size_t length_;
    LatticeConstraints const& constraints_;
};

void AllPaths::clear() noexcept {
    keys_.clear();
    edgesOf_.clear();
    columns_.clear();
    lists_.clear();
    costs_.clear();
}

void AllPaths::build(Sentence& sentence, ConnTable const* table, DicSet const& dics, NodePool& pool) {
    LatticeConstraints none;
    build(sentence, table, dics, pool, none);
}

void AllPaths::build(Sentence& sentence, ConnTable const* table, DicSet const& dics, NodePool& pool,
                     LatticeConstraints& constraints) {
    checkSearchable(sentence, table, dics);
    Builder builder(*this, pool, *table, sentence.searchText().size(), constraints);
    for (;;) {
        begin(sentence);
        walkBackward(sentence.searchText(), {0, sentence.searchText().size()}, dics, constraints, builder);
        finish(sentence, builder);
        if (sentence.path.exists() || constraints.spans.empty() || constraints.forced) return;
        constraints.forced = true;
    }
}

void AllPaths::begin(Sentence& sentence) {
    if (starts_.size() <= sentence.searchText().size()) starts_.resize(sentence.searchText().size() + 1);
    sentence.firstEdgeList = static_cast<std::uint32_t>(lists_.size());
    sentence.startEdgeList = kNone;
    sentence.path = {};
}

void AllPaths::finish(Sentence& sentence, Builder& builder) {
    if (sentence.searchText().empty()) return;
    Builder::Follower const start = builder.followerAfter(0, ConnTable::kBeginId);
    sentence.path = LazyPath(start.node);
    sentence.startEdgeList = start.list;
}

std::uint32_t AllPaths::edgesAfter(std::size_t end, std::uint16_t id, ConnTable const& table) {
    Starts& starts = starts_[end];
    std::uint32_t const row = table.row(id);
    for (std::uint32_t index = starts.lists; index != kNone; index = lists_[index].sameEnd)
        if (lists_[index].row == row) return index;
    starts.lists = makeList(starts, row, table);
    return starts.lists;
}

std::uint32_t AllPaths::makeList(Starts const& starts, std::uint32_t row, ConnTable const& table) {
    if (lists_.size() >= kNone - 1) throw std::bad_alloc();
    std::size_t const firstCost = costs_.size();
    std::uint32_t const count = starts.nodeCount;
    costs_.resizeForOverwrite(firstCost + count);
    std::uint8_t* const costs = costs_.begin() + firstCost;
    std::uint16_t const* const columns = columns_.begin() + starts.firstNode;
    PathKey const* const keys = keys_.begin() + starts.firstNode;
    unsigned char const* const costOf = table.rowStart(row);
    bool const forced = starts.forced;
    PathKey bestKey = kNoPath;
    std::uint32_t best = 0;
    for (std::uint32_t i = 0; i < count; ++i) {
        std::uint8_t const cost = LatticeConstraints::connection(costOf[columns[i]], forced);
        costs[i] = cost;
        if (cost == ConnTable::kForbidden) continue;
        // Only a smaller key replaces the kept one: among complete ties the word
        // made first stays.
        PathKey const key = keys[i] + pathKey(cost, 0);
        if (key >= bestKey) continue;
        bestKey = key;
        best = i;
    }
    lists_.extend() = {
        bestKey, firstCost,   starts.firstNode, count, bestKey == kNoPath ? kNone : starts.firstNode + best,
        row,     starts.lists};
    return static_cast<std::uint32_t>(lists_.size() - 1);
}

}  // namespace TAVO
