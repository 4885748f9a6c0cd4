#include "dic/conn_bounds.hpp"

#include <algorithm>
#include <cstddef>

namespace TAVO {

// The loop over all cells only takes minima and maxima of bytes, which compilers
// turn into vector code; what else there is to know concerns the few columns that
// forbid a row.
ConnBounds::ConnBounds(unsigned char const* matrix, std::uint32_t rows, std::uint32_t cols)
    : columnMinimum(cols, 255), columnMaximum(cols, 0), sparse(cols, 0), entersSparse(rows, 0) {
    std::vector<std::uint8_t> maximum(cols, 0);
    for (std::uint32_t row = 0; row < rows; ++row) {
        unsigned char const* const costs = matrix + std::size_t{row} * cols;
        for (std::uint32_t col = 0; col < cols; ++col) {
            columnMinimum[col] = std::min(columnMinimum[col], costs[col]);
            maximum[col] = std::max(maximum[col], costs[col]);
        }
    }
    std::vector<std::uint32_t> unbounded;
    for (std::uint32_t col = 0; col < cols; ++col) {
        columnMaximum[col] = maximum[col] == 255 ? kUnbounded : maximum[col];
        if (maximum[col] == 255) unbounded.push_back(col);
    }
    for (std::uint32_t const col : unbounded) {
        std::uint32_t forbidden = 0;
        for (std::uint32_t row = 0; row < rows; ++row) forbidden += matrix[std::size_t{row} * cols + col] == 255;
        if (forbidden <= rows / 2) continue;
        sparse[col] = 0xFF;
        for (std::uint32_t row = 0; row < rows; ++row)
            if (matrix[std::size_t{row} * cols + col] != 255) entersSparse[row] = 1;
    }
}

}  // namespace TAVO
