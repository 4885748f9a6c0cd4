// What the fast search reads of a connection table.
#ifndef TAVO_DIC_INDEX_CONN_INDEX_HPP
#define TAVO_DIC_INDEX_CONN_INDEX_HPP

#include "dic/index/index_image.hpp"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace TAVO {

class ConnTable;

/// The cost matrix with padded rows, and bounds of its rows and columns. Row and column numbers are those of the
/// table, with one row and two columns more:
/// - unknownRow(): the unknown word as the word on the left,
/// - endColumn(): the end of a text behind any word but an unknown one,
/// - endAfterUnknownColumn(): the end of a text behind an unknown word, at cost 0; the 255 that this connection costs
///   is the cost sum of that end.
///
/// A column is restricted when most rows are forbidden before it. The rows that are not are of its class.
class ConnIndex {
public:
    static constexpr std::string_view kMagic{"TAVOCNX1", IndexImage::kMagicBytes};
    static constexpr std::uint8_t kUnbounded = 255;

    /// The bytes of the index of @p table.
    static std::vector<std::uint64_t> make(ConnTable const& table, IndexOrigin const& origin);
    /// Takes what was mapped or made; unsound bytes give an index that isSound() tells.
    explicit ConnIndex(IndexImage&& image);

    bool isSound() const noexcept { return sound_; }
    IndexImage const& image() const noexcept { return image_; }

    /// True when every word may stand before an unknown word at unknownCost(), and an unknown word before every word
    /// at that cost or not at all: what the fast search's omissions need.
    bool hasFlatUnknown() const noexcept { return info_[kFlatUnknown] != 0; }
    std::uint8_t unknownCost() const noexcept { return static_cast<std::uint8_t>(info_[kUnknownCost]); }
    std::uint32_t rows() const noexcept { return info_[kRows]; }
    std::uint32_t columns() const noexcept { return info_[kColumns]; }
    std::uint32_t stride() const noexcept { return info_[kStride]; }  ///< from row to row, in bytes
    unsigned char const* matrix() const noexcept { return matrix_.data(); }
    unsigned char const* row(std::uint32_t row) const noexcept { return matrix_.data() + std::size_t{row} * stride(); }
    std::uint16_t beginRow() const noexcept { return static_cast<std::uint16_t>(info_[kBeginRow]); }
    std::uint16_t unknownRow() const noexcept { return static_cast<std::uint16_t>(info_[kUnknownRow]); }
    std::uint16_t unknownColumn() const noexcept { return static_cast<std::uint16_t>(info_[kUnknownColumn]); }
    std::uint16_t endColumn() const noexcept { return static_cast<std::uint16_t>(info_[kEndColumn]); }
    std::uint16_t endAfterUnknownColumn() const noexcept { return static_cast<std::uint16_t>(info_[kEndColumn] + 1); }

    /// Largest cost of a column, over all words on the left but the unknown one; kUnbounded when a word must not stand
    /// there, the unknown one included, or when it costs more than an unknown word does.
    std::uint8_t columnMost(std::uint32_t column) const noexcept { return columnMost_[column]; }
    std::uint8_t const* columnMosts() const noexcept { return columnMost_.data(); }  ///< by column
    /// Largest cost of a row, over the end of a text and the columns that an unknown word may stand before; kUnbounded
    /// when one is forbidden.
    std::uint8_t rowMost(std::uint32_t row) const noexcept { return rowMost_[row]; }
    /// The class of a restricted column, from 1 on; 0 for others. That of a row that may stand before such columns.
    unsigned columnClass(std::uint32_t column) const noexcept { return columnClass_[column]; }
    unsigned rowClass(std::uint32_t row) const noexcept { return rowClass_[row]; }
    /// The same as a set of few bits, in which classes may share one.
    unsigned columnClasses(std::uint32_t column) const noexcept { return bitOf(columnClass(column)); }
    unsigned rowClasses(std::uint32_t row) const noexcept { return bitOf(rowClass(row)); }
    /// True when an unknown word may stand before @p column.
    bool isOpenToUnknown(std::uint32_t column) const noexcept { return row(unknownRow())[column] != 255; }

private:
    enum Info : std::size_t {
        kRows,
        kColumns,
        kStride,
        kBeginRow,
        kUnknownRow,
        kUnknownColumn,
        kEndColumn,
        kUnknownCost,
        kFlatUnknown,
        kInfoCount
    };
    enum Section : std::size_t { kInfo, kMatrix, kColumnMost, kRowMost, kColumnClass, kRowClass };
    class Maker;

    static unsigned bitOf(unsigned number) noexcept { return number == 0 ? 0 : 1U << ((number - 1) % 8); }
    bool check() const noexcept;

    IndexImage image_;
    std::span<std::uint32_t const> info_;
    std::span<std::uint8_t const> matrix_, columnMost_, rowMost_, columnClass_, rowClass_;
    bool sound_ = false;
};

}  // namespace TAVO

#endif
