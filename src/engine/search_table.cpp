#include "engine/search_table.hpp"

#include "dic/conn_table.hpp"
#include "dic/dic_set.hpp"
#include "engine/backward_walk.hpp"

#include <algorithm>
#include <numeric>

namespace TAVO {
namespace {

constexpr unsigned kClasses = 7;

}  // namespace

bool SearchTable::attach(ConnTable const& table, DicSet const& dics) {
    if (isAttached(table, dics)) return false;
    bool const sameTable = !attached_.empty() && attached_.front() == table.serial();
    attached_.clear();  // what follows may throw
    if (!sameTable) {
        matrix_ = table.rowStart(0);
        deriveIds(table);
        deriveUnknown(table);
    }
    byteForms_.fill(ShortForm());
    pairForms_.resetToZeros(std::size_t{1} << 16);
    attached_.assign(1, table.serial());
    for (DicEntry const& entry : dics.entries()) attached_.push_back(entry.dic->serial());
    return true;
}

bool SearchTable::isAttached(ConnTable const& table, DicSet const& dics) const {
    std::vector<DicEntry> const& entries = dics.entries();
    return attached_.size() == entries.size() + 1 && attached_.front() == table.serial() &&
           std::equal(entries.begin(), entries.end(), attached_.begin() + 1,
                      [](DicEntry const& entry, std::uint64_t serial) { return entry.dic->serial() == serial; });
}

void SearchTable::deriveIds(ConnTable const& table) {
    std::vector<std::uint8_t> rows(table.rows(), 0);
    std::vector<std::uint8_t> columns(table.cols(), 0);
    deriveClasses(table, rows, columns);
    std::vector<Id> ids(table.idCount() + std::size_t{1});
    for (std::uint32_t id = 1; id < ids.size(); ++id) {
        std::uint16_t const row = table.row(static_cast<std::uint16_t>(id));
        std::uint16_t const column = table.column(static_cast<std::uint16_t>(id));
        ids[id] = {row * table.stride(), column, rows[row], columns[column]};
    }
    ids_ = std::move(ids);
    columnMinimum_ = table.bounds().columnMinimum;
    columnMaximum_.assign(table.cols(), ConnTable::kForbidden);
    for (std::uint32_t column = 0; column < table.cols(); ++column)
        if (std::uint16_t const maximum = table.bounds().columnMaximum[column]; maximum != ConnBounds::kUnbounded)
            columnMaximum_[column] = static_cast<std::uint8_t>(maximum);
}

/// Rows that may stand before one sparse column are of one class. There are more
/// classes than bits; classes that share a bit only make the search look at more.
void SearchTable::deriveClasses(ConnTable const& table, std::vector<std::uint8_t>& rows,
                                std::vector<std::uint8_t>& columns) {
    ConnBounds const& bounds = table.bounds();
    std::vector<std::uint16_t> sparse;
    for (std::uint32_t column = 0; column < table.cols(); ++column) {
        if (bounds.columnMaximum[column] == ConnBounds::kUnbounded) columns[column] = kAlways;
        if (bounds.sparse[column] != 0) sparse.push_back(static_cast<std::uint16_t>(column));
    }
    auto const count = static_cast<std::uint16_t>(sparse.size());  // a table has 65535 columns at most
    std::vector<std::uint16_t> leader(count);
    std::iota(leader.begin(), leader.end(), std::uint16_t{0});
    auto const find = [&](std::uint16_t i) {
        while (leader[i] != i) i = leader[i] = leader[leader[i]];
        return i;
    };
    std::vector<std::uint16_t> firstOfRow(table.rows(), 0);
    for (std::uint32_t row = 0; row < table.rows(); ++row) {
        if (bounds.entersSparse[row] == 0) continue;
        unsigned char const* const costs = table.rowStart(row);
        bool first = true;
        for (std::uint16_t i = 0; i < count; ++i) {
            if (costs[sparse[i]] == ConnTable::kForbidden) continue;
            if (first)
                firstOfRow[row] = i;
            else
                leader[find(i)] = find(firstOfRow[row]);
            first = false;
        }
    }
    std::vector<std::uint8_t> bit(count, 0);
    unsigned next = 0;
    for (std::uint16_t i = 0; i < count; ++i)
        if (leader[i] == i) bit[i] = static_cast<std::uint8_t>(1U << (next++ % kClasses));
    unsigned char const* const unknown = table.rowStart(table.row(ConnTable::kUnknownId));
    for (std::uint16_t i = 0; i < count; ++i)
        columns[sparse[i]] = unknown[sparse[i]] != ConnTable::kForbidden ? kAlways : bit[find(i)];
    for (std::uint32_t row = 0; row < table.rows(); ++row)
        if (bounds.entersSparse[row] != 0) rows[row] = bit[find(firstOfRow[row])];
}

void SearchTable::deriveUnknown(ConnTable const& table) {
    unsigned char const* const row = table.rowStart(table.row(ConnTable::kUnknownId));
    std::uint16_t const column = table.column(ConnTable::kUnknownId);
    unknownCost_ = row[column];
    auto const isFlat = [&](std::uint8_t cost) { return cost == unknownCost_ || cost == ConnTable::kForbidden; };
    unknownIsFlat_ = unknownCost_ != ConnTable::kForbidden && std::all_of(row, row + table.cols(), isFlat);
    for (std::uint32_t left = 0; left < table.rows(); ++left)
        unknownIsFlat_ = unknownIsFlat_ && table.rowStart(left)[column] == unknownCost_;
}

SearchTable::ShortForm SearchTable::formOf(std::array<unsigned char, 2> const& bytes, std::size_t length,
                                           DicSet const& dics) const {
    ShortForm form;
    form.known = true;
    for (DicEntry const& entry : dics.entries()) {
        DicTrie const* const trie = entry.dic->trie();
        if (trie == nullptr) continue;
        form.longer = form.longer || trie->mayContinue(bytes.data(), length);
        eachNodeRecord(trie->exactMatch(bytes.data(), length), idCount(), [&](MrphDic record) {
            Id const& id = ids_[record.pid()];
            form.enters = static_cast<std::uint8_t>(form.enters | id.enters);
            form.words = true;
        });
    }
    return form;
}

}  // namespace TAVO
