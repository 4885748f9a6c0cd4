// The connection costs of a source lexicon.
#ifndef TAVO_LEXICON_IMPORT_SOURCE_MATRIX_HPP
#define TAVO_LEXICON_IMPORT_SOURCE_MATRIX_HPP

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <utility>
#include <vector>

namespace TAVO::importer {

/// Connection costs m[right id of the word before][left id of the word behind].
/// Id 0 is the text's end on both sides. A large lexicon has some hundred million of
/// them, which are held once, in two bytes each.
class Matrix {
public:
    static constexpr std::int16_t kForbidden = INT16_MIN;

    Matrix() = default;
    /// All costs are 0.
    Matrix(std::uint32_t rowCount, std::uint32_t columnCount);

    std::uint32_t rows = 0, cols = 0;  ///< with those of extend()

    std::int16_t at(std::uint32_t row, std::uint32_t col) const noexcept {
        if (col >= sourceCols_) return extended_[std::size_t{row} * (cols - sourceCols_) + (col - sourceCols_)];
        return cells_[rowPlace_[row] * stride_ + columnPlace_[col]];
    }
    void set(std::uint32_t row, std::uint32_t col, std::int16_t cost) noexcept {
        cells_[rowPlace_[row] * stride_ + columnPlace_[col]] = cost;
    }

    /// Adds a row for each of @p rowsLike, with the costs of the row that it names, and @p columns columns, which are
    /// forbidden but for @p allowed (row, column), where the cost is 0. To be called once.
    void extend(std::vector<std::uint32_t> const& rowsLike, std::uint32_t columns,
                std::vector<std::pair<std::uint32_t, std::uint32_t>> const& allowed);

    /// Puts the source's rows and columns into these orders in memory; what at() gives stays.
    void arrange(std::vector<std::uint32_t> const& rowOrder, std::vector<std::uint32_t> const& columnOrder);
    /// A row of the source by its place in the order; the costs stand in the order of the columns.
    std::int16_t const* rowAt(std::size_t place) const noexcept { return &cells_[place * stride_]; }
    /// Makes columns of rows: rowAt() gives a column then, and at() nothing, until it is turned back.
    void turn();

private:
    std::uint32_t sourceRows_ = 0, sourceCols_ = 0;
    std::size_t stride_ = 0;  // between rows; nearly square matrices are stored as squares, which turn in place
    std::vector<std::int16_t> cells_, extended_;
    std::vector<std::size_t> rowPlace_, columnPlace_;
};

/// The matrix.def at @p file. Throws lexicon_error.
Matrix readMatrix(std::filesystem::path const& file);

}  // namespace TAVO::importer

#endif
