#include "dic/conn_bounds.hpp"

#include <algorithm>
#include <cstddef>

namespace TAVO {

namespace {

/// Takes @p kRows rows into the minima and maxima of their columns. All cells go
/// through here at every start: it only takes minima and maxima of bytes, which
/// compilers turn into vector code, of several rows at once.
template <std::size_t kRows>
void take(unsigned char const* matrix, std::size_t cols, std::uint8_t* __restrict minimum,
          std::uint8_t* __restrict maximum) {
    for (std::size_t col = 0; col < cols; ++col) {
        std::uint8_t low = minimum[col];
        std::uint8_t high = maximum[col];
        for (std::size_t row = 0; row < kRows; ++row) {
            low = std::min(low, matrix[row * cols + col]);
            high = std::max(high, matrix[row * cols + col]);
        }
        minimum[col] = low;
        maximum[col] = high;
    }
}

}  // namespace

// What else there is to know concerns the few columns that forbid a row.
ConnBounds::ConnBounds(unsigned char const* matrix, std::uint32_t rows, std::uint32_t cols)
    : columnMinimum(cols, 255), columnMaximum(cols, 0), sparse(cols, 0), entersSparse(rows, 0) {
    std::vector<std::uint8_t> maximum(cols, 0);
    constexpr std::uint32_t kTogether = 8;
    std::uint32_t row = 0;
    for (; row + kTogether <= rows; row += kTogether)
        take<kTogether>(matrix + std::size_t{row} * cols, cols, columnMinimum.data(), maximum.data());
    for (; row < rows; ++row) take<1>(matrix + std::size_t{row} * cols, cols, columnMinimum.data(), maximum.data());
    std::vector<std::uint32_t> unbounded;
    for (std::uint32_t col = 0; col < cols; ++col) {
        columnMaximum[col] = maximum[col] == 255 ? kUnbounded : maximum[col];
        if (maximum[col] == 255) unbounded.push_back(col);
    }
    for (std::uint32_t const col : unbounded) {
        std::uint32_t forbidden = 0;
        for (row = 0; row < rows; ++row) forbidden += matrix[std::size_t{row} * cols + col] == 255;
        if (forbidden <= rows / 2) continue;
        sparse[col] = 0xFF;
        for (row = 0; row < rows; ++row)
            if (matrix[std::size_t{row} * cols + col] != 255) entersSparse[row] = 1;
    }
}

}  // namespace TAVO
