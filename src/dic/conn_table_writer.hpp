// Writes connection tables.
#ifndef TAVO_DIC_CONN_TABLE_WRITER_HPP
#define TAVO_DIC_CONN_TABLE_WRITER_HPP

#include <cstdint>
#include <string>
#include <vector>

namespace TAVO {

/// What a connection table file holds (docs/format-connection-table.md).
struct ConnTableContent {
    std::vector<std::string> names;          ///< by id from 1 on
    std::vector<std::uint16_t> rowIndex;     ///< per id as the left word, below rows
    std::vector<std::uint16_t> columnIndex;  ///< per id as the right word, below cols
    std::uint16_t rows = 0;
    std::uint16_t cols = 0;
    std::vector<std::uint8_t> matrix;  ///< rows x cols, row by row
};

/// The file's bytes. Throws invalid_argument naming what does not fit: fewer
/// than 3 or more than 65534 names, a name that is empty or holds a NUL, lists of
/// other lengths than the names', an index or the matrix outside rows and cols.
std::string serializeConnTable(ConnTableContent const& content);

}  // namespace TAVO

#endif
