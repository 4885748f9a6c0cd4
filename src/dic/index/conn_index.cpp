#include "dic/index/conn_index.hpp"

#include "dic/conn_table.hpp"

#include <algorithm>
#include <numeric>
#include <utility>

namespace TAVO {
namespace {

constexpr std::uint32_t kLineBytes = 64;  // of a cache line, at which each row begins
constexpr unsigned kMostClasses = 255;    // beyond them classes share numbers

}  // namespace

/// Derives the parts one after the other.
class ConnIndex::Maker {
public:
    explicit Maker(ConnTable const& table)
        : table_(table),
          rows_(table.rows() + 1U),
          columns_(table.cols() + 2U),
          stride_((columns_ + kLineBytes - 1) / kLineBytes * kLineBytes),
          matrix_(std::size_t{rows_} * stride_ + kLineBytes, 255) {
        layMatrixOut();
        findUnknownCost();
        findBounds();
        findClasses();
    }

    std::vector<std::uint64_t> write(IndexOrigin const& origin) const {
        std::vector<std::uint32_t> info(kInfoCount);
        info[kRows] = rows_;
        info[kColumns] = columns_;
        info[kStride] = stride_;
        info[kBeginRow] = table_.row(ConnTable::kBeginId);
        info[kUnknownRow] = rows_ - 1;
        info[kUnknownColumn] = table_.column(ConnTable::kUnknownId);
        info[kEndColumn] = columns_ - 2;
        info[kUnknownCost] = unknownCost_;
        info[kFlatUnknown] = flat_ ? 1 : 0;
        IndexWriter writer(kMagic, origin);
        writer.add(info);
        writer.add(matrix_);
        writer.add(columnMost_);
        writer.add(rowMost_);
        writer.add(columnClass_);
        writer.add(rowClass_);
        return writer.write();
    }

private:
    std::uint8_t& at(std::uint32_t row, std::uint32_t column) { return matrix_[std::size_t{row} * stride_ + column]; }
    std::uint8_t at(std::uint32_t row, std::uint32_t column) const {
        return matrix_[std::size_t{row} * stride_ + column];
    }

    void layMatrixOut() {
        std::uint32_t const cols = table_.cols();
        std::uint32_t const endColumn = table_.column(ConnTable::kEndId);
        auto const lay = [&](std::uint32_t to, std::uint32_t from) {
            std::copy_n(table_.rowStart(from), cols, &at(to, 0));
            at(to, cols) = at(to, endColumn);
        };
        for (std::uint32_t row = 0; row + 1 < rows_; ++row) lay(row, row);
        std::uint32_t const unknown = rows_ - 1;
        lay(unknown, table_.row(ConnTable::kUnknownId));
        at(unknown, cols) = 255;
        at(unknown, cols + 1) = 0;
    }

    void findUnknownCost() {
        std::uint32_t const column = table_.column(ConnTable::kUnknownId);
        std::uint32_t const unknown = rows_ - 1;
        unknownCost_ = at(unknown, column);
        flat_ = unknownCost_ != 255;
        for (std::uint32_t row = 0; row < rows_; ++row) flat_ = flat_ && at(row, column) == unknownCost_;
        for (std::uint32_t c = 0; c + 2 < columns_; ++c)
            flat_ = flat_ && (at(unknown, c) == unknownCost_ || at(unknown, c) == 255);
    }

    /// True for the rows of words; the unknown word's own row in the table is none, unless a word shares it.
    std::vector<bool> rowsOfWords() const {
        std::vector<bool> ofWords(rows_, false);
        for (std::uint32_t id = 1; id <= table_.idCount(); ++id)
            if (id != ConnTable::kUnknownId) ofWords[table_.row(static_cast<std::uint16_t>(id))] = true;
        return ofWords;
    }

    void findBounds() {
        std::vector<bool> const ofWords = rowsOfWords();
        std::uint32_t const unknown = rows_ - 1;
        columnMost_.assign(columns_, 0);
        rowMost_.assign(rows_, 0);
        forbidden_.assign(columns_, 0);
        for (std::uint32_t row = 0; row < unknown; ++row) {
            unsigned char const* const costs = &at(row, 0);
            if (ofWords[row])
                for (std::uint32_t c = 0; c < columns_; ++c) columnMost_[c] = std::max(columnMost_[c], costs[c]);
            for (std::uint32_t c = 0; c < columns_; ++c) {
                forbidden_[c] += costs[c] == 255;
                if (at(unknown, c) == unknownCost_) rowMost_[row] = std::max(rowMost_[row], costs[c]);
            }
            rowMost_[row] = std::max(rowMost_[row], costs[columns_ - 2]);
        }
        rowMost_[unknown] = kUnbounded;
        for (std::uint32_t c = 0; c < columns_; ++c)
            if (at(unknown, c) == 255 || columnMost_[c] > unknownCost_) columnMost_[c] = kUnbounded;
    }

    /// Rows that may stand before one restricted column are of one class; so are columns that share a row.
    void findClasses() {
        columnClass_.assign(columns_, 0);
        rowClass_.assign(rows_, 0);
        std::uint32_t const unknown = rows_ - 1;
        std::vector<std::uint32_t> restricted;
        for (std::uint32_t c = 0; c + 2 < columns_; ++c)
            if (2 * forbidden_[c] > unknown && at(unknown, c) == 255) restricted.push_back(c);
        std::vector<std::uint32_t> leader(restricted.size());
        std::iota(leader.begin(), leader.end(), 0U);
        auto const find = [&](std::uint32_t i) {
            while (leader[i] != i) i = leader[i] = leader[leader[i]];
            return i;
        };
        constexpr std::uint32_t kNone = 0xFFFFFFFF;
        std::vector<std::uint32_t> firstOfRow(rows_, kNone);
        for (std::uint32_t row = 0; row < unknown; ++row) {
            for (std::uint32_t i = 0; i < restricted.size(); ++i) {
                if (at(row, restricted[i]) == 255) continue;
                if (firstOfRow[row] == kNone)
                    firstOfRow[row] = i;
                else
                    leader[find(i)] = find(firstOfRow[row]);
            }
        }
        std::vector<std::uint8_t> number(restricted.size(), 0);
        unsigned next = 0;
        for (std::uint32_t i = 0; i < restricted.size(); ++i)
            if (leader[i] == i) number[i] = static_cast<std::uint8_t>(1 + next++ % kMostClasses);
        for (std::uint32_t i = 0; i < restricted.size(); ++i) columnClass_[restricted[i]] = number[find(i)];
        for (std::uint32_t row = 0; row < unknown; ++row)
            if (firstOfRow[row] != kNone) rowClass_[row] = number[find(firstOfRow[row])];
    }

    ConnTable const& table_;
    std::uint32_t rows_, columns_, stride_;
    std::vector<std::uint8_t> matrix_;
    std::uint8_t unknownCost_ = 0;
    bool flat_ = false;
    std::vector<std::uint8_t> columnMost_, rowMost_, columnClass_, rowClass_;
    std::vector<std::uint32_t> forbidden_;  // rows that each column forbids
};

std::vector<std::uint64_t> ConnIndex::make(ConnTable const& table, IndexOrigin const& origin) {
    return Maker(table).write(origin);
}

ConnIndex::ConnIndex(IndexImage&& image)
    : image_(std::move(image)),
      info_(image_.section<std::uint32_t>(kInfo)),
      matrix_(image_.section<std::uint8_t>(kMatrix)),
      columnMost_(image_.section<std::uint8_t>(kColumnMost)),
      rowMost_(image_.section<std::uint8_t>(kRowMost)),
      columnClass_(image_.section<std::uint8_t>(kColumnClass)),
      rowClass_(image_.section<std::uint8_t>(kRowClass)),
      sound_(check()) {}

bool ConnIndex::check() const noexcept {
    if (info_.size() != kInfoCount) return false;
    std::uint32_t constexpr kMost = 65536 + 2;
    return rows() <= kMost && columns() <= kMost && columns() >= 2 && columns() <= stride() &&
           stride() <= kMost + kLineBytes && matrix_.size() == std::size_t{rows()} * stride() + kLineBytes &&
           columnMost_.size() == columns() && columnClass_.size() == columns() && rowMost_.size() == rows() &&
           rowClass_.size() == rows() && info_[kBeginRow] < rows() && info_[kUnknownRow] < rows() &&
           info_[kUnknownColumn] < columns() && info_[kEndColumn] + 2 == columns() && info_[kUnknownCost] <= 255;
}

}  // namespace TAVO
