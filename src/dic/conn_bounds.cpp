#include "dic/conn_bounds.hpp"

#include <algorithm>
#include <cstddef>

namespace TAVO {

// Plain loops over bytes of one row, which compilers turn into vector code: a
// matrix of 10 MB takes about a millisecond.
ConnBounds::ConnBounds(unsigned char const* matrix, std::uint32_t rows, std::uint32_t cols)

    : columnMinimum(cols, 255), columnMaximum(cols, 0), sparse(cols, 0), entersSparse(rows, 0) {
    std::vector<std::uint8_t> maximum(cols, 0);
    std::vector<std::uint16_t> forbidden(cols, 0);
    for (std::uint32_t row = 0; row < rows; ++row) {
        unsigned char const* const costs = matrix + std::size_t{row} * cols;
        for (std::uint32_t col = 0; col < cols; ++col) {
            columnMinimum[col] = std::min(columnMinimum[col], costs[col]);
            maximum[col] = std::max(maximum[col], costs[col]);
            forbidden[col] = static_cast<std::uint16_t>(forbidden[col] + (costs[col] == 255));
        }
    }
    for (std::uint32_t col = 0; col < cols; ++col) {
        columnMaximum[col] = forbidden[col] != 0 ? kUnbounded : maximum[col];
        sparse[col] = forbidden[col] > rows / 2 ? 0xFF : 0;
    }
    for (std::uint32_t row = 0; row < rows; ++row) {
        unsigned char const* const costs = matrix + std::size_t{row} * cols;
        std::uint8_t enters = 0;
        for (std::uint32_t col = 0; col < cols; ++col)
            enters = static_cast<std::uint8_t>(enters | (sparse[col] & ~costs[col]));
        entersSparse[row] = enters != 0;
    }
}

}  // namespace TAVO
