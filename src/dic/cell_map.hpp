// Which cells of a double array are free and which bases are taken, and the
// search for the place of a new node.
#ifndef TAVO_DIC_CELL_MAP_HPP
#define TAVO_DIC_CELL_MAP_HPP

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace TAVO {

/// Two bit maps. A search tests 64 bases at once: the free bits of the cells
/// base + label, shifted by the label, are and-ed over all labels.
class CellMap {
public:
    void reset(std::uint32_t cells);
    std::uint32_t capacity() const noexcept { return capacity_; }

    /// A base of 1 or above that no node has and for which all cells base +
    /// label are free: the lowest one outside the runs of bases that are given up.
    /// Labels ascend. Grows the map when it is full.
    ///
    /// The front of a large map is full of holes that fit hardly any node. A
    /// run of 64 bases where searches kept failing is given up; that leaves a
    /// few cells unused and keeps the search short. Nodes of one cell, which fit
    /// nearly everywhere, give up runs of their own.
    std::uint32_t findBase(std::span<std::uint8_t const> labels);
    /// Marks the base taken and its cells used.
    void take(std::uint32_t base, std::span<std::uint8_t const> labels);

private:
    static constexpr std::uint32_t kWordBits = 64;

    /// How often searches failed in each word of bases_.
    struct Search {
        std::vector<std::uint8_t> failures;
        std::uint32_t firstWord = 0;  ///< all words before it are given up
    };

    void grow(std::uint32_t cells);
    std::uint64_t freeFrom(std::uint32_t cell) const noexcept;

    std::uint32_t capacity_ = 0;
    std::vector<std::uint64_t> free_;
    std::vector<std::uint64_t> bases_;
    Search single_;
    Search several_;
};

}  // namespace TAVO

#endif
