#include "lexicon/import/source/matrix.hpp"

#include <algorithm>
#include <numeric>

namespace TAVO::importer {

Matrix::Matrix(std::uint32_t rowCount, std::uint32_t columnCount)
    : rows(rowCount),
      cols(columnCount),
      sourceRows_(rowCount),
      sourceCols_(columnCount),
      rowPlace_(rowCount),
      columnPlace_(columnCount) {
    std::size_t const side = std::max(rows, cols), least = std::min(rows, cols);
    bool const square = side <= least + least / 4;
    stride_ = square ? side : cols;
    cells_.resize(square ? side * side : side * least);
    std::iota(rowPlace_.begin(), rowPlace_.end(), std::size_t{0});
    std::iota(columnPlace_.begin(), columnPlace_.end(), std::size_t{0});
}

void Matrix::extend(std::vector<std::uint32_t> const& rowsLike, std::uint32_t columns,
                    std::vector<std::pair<std::uint32_t, std::uint32_t>> const& allowed) {
    for (std::uint32_t const like : rowsLike) rowPlace_.push_back(rowPlace_[like]);
    rows += static_cast<std::uint32_t>(rowsLike.size());
    cols += columns;
    extended_.assign(std::size_t{rows} * columns, kForbidden);
    for (auto const& [row, col] : allowed) extended_[std::size_t{row} * columns + (col - sourceCols_)] = 0;
}

void Matrix::arrange(std::vector<std::uint32_t> const& rowOrder, std::vector<std::uint32_t> const& columnOrder) {
    // Where what is to stand at a place stands now.
    std::vector<std::size_t> rowFrom, columnFrom;
    for (std::uint32_t const row : rowOrder) rowFrom.push_back(rowPlace_[row]);
    for (std::uint32_t const col : columnOrder) columnFrom.push_back(columnPlace_[col]);
    if (std::is_sorted(rowFrom.begin(), rowFrom.end()) && std::is_sorted(columnFrom.begin(), columnFrom.end())) return;

    std::vector<std::int16_t> line(sourceCols_);
    for (std::size_t row = 0; row < sourceRows_; ++row) {
        std::int16_t* const cells = &cells_[row * stride_];
        std::transform(columnFrom.begin(), columnFrom.end(), line.begin(),
                       [&](std::size_t from) { return cells[from]; });
        std::copy(line.begin(), line.end(), cells);
    }
    // Rows change places in rings; the first of a ring waits aside.
    std::vector<std::size_t> placeOf(sourceRows_);
    for (std::size_t place = 0; place < sourceRows_; ++place) placeOf[rowFrom[place]] = place;
    auto const row = [&](std::size_t place) { return cells_.begin() + static_cast<std::ptrdiff_t>(place * stride_); };
    for (std::size_t first = 0; first < sourceRows_; ++first) {
        if (rowFrom[first] == first) continue;
        std::copy_n(row(first), sourceCols_, line.begin());
        std::size_t place = first;
        for (std::size_t from = rowFrom[place]; from != first; from = rowFrom[place]) {
            std::copy_n(row(from), sourceCols_, row(place));
            rowFrom[place] = place;
            place = from;
        }
        std::copy(line.begin(), line.end(), row(place));
        rowFrom[place] = place;
    }
    for (std::size_t& place : rowPlace_) place = placeOf[place];
    for (std::size_t place = 0; place < columnOrder.size(); ++place) columnPlace_[columnOrder[place]] = place;
}

void Matrix::turn() {
    std::swap(sourceRows_, sourceCols_);
    if (stride_ != std::max(sourceRows_, sourceCols_) || cells_.size() != stride_ * stride_) {
        std::vector<std::int16_t> turned(cells_.size());
        for (std::size_t row = 0; row < sourceRows_; ++row)
            for (std::size_t col = 0; col < sourceCols_; ++col)
                turned[row * sourceCols_ + col] = cells_[col * sourceRows_ + row];
        cells_ = std::move(turned);
        stride_ = sourceCols_;
        return;
    }
    constexpr std::size_t kTile = 64;  // two tiles fit the first cache
    for (std::size_t top = 0; top < stride_; top += kTile)
        for (std::size_t left = top; left < stride_; left += kTile)
            for (std::size_t row = top; row < std::min(top + kTile, stride_); ++row)
                for (std::size_t col = std::max(left, row + 1); col < std::min(left + kTile, stride_); ++col)
                    std::swap(cells_[row * stride_ + col], cells_[col * stride_ + row]);
}

}  // namespace TAVO::importer
