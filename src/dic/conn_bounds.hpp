// What a search can know of a cost matrix in advance.
#ifndef TAVO_DIC_CONN_BOUNDS_HPP
#define TAVO_DIC_CONN_BOUNDS_HPP

#include <cstdint>
#include <vector>

namespace TAVO {

/// Bounds over the rows and columns of a connection-cost matrix.
struct ConnBounds {
    /// @p matrix: rows x cols bytes, row by row.
    ConnBounds(unsigned char const* matrix, std::uint32_t rows, std::uint32_t cols);
    ConnBounds() = default;

    static constexpr std::uint16_t kUnbounded = 0xFFFF;

    /// By column: its smallest cost; 255 when it forbids every row.
    std::vector<std::uint8_t> columnMinimum;
    /// By column: its largest cost; kUnbounded when it forbids a row.
    std::vector<std::uint16_t> columnMaximum;
    /// By column: 0xFF when it forbids most rows, else 0.
    std::vector<std::uint8_t> sparse;
    /// By row: whether it enters any sparse column. A word of a row that enters
    /// none need not look at words of sparse columns.
    std::vector<std::uint8_t> entersSparse;
};

}  // namespace TAVO

#endif
