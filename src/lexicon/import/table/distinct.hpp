// Equal rows, and equal columns, of a matrix.
#ifndef TAVO_LEXICON_IMPORT_TABLE_DISTINCT_HPP
#define TAVO_LEXICON_IMPORT_TABLE_DISTINCT_HPP

#include <algorithm>
#include <cstdint>
#include <map>
#include <vector>

namespace TAVO::importer {

/// No row, column or id.
inline constexpr std::uint32_t kNoIndex = 0xFFFFFFFF;

/// 128 bits of a line, for the line: two that differ never meet in practice, and the whole matrix of a large
/// lexicon would take more room than all the rest.
struct Digest {
    std::uint64_t a = 0, b = 0;
    void add(std::uint8_t byte) noexcept {
        a = (a + byte + 1) * 0x9E3779B97F4A7C15;
        b = ((b ^ b >> 29) + byte + 1) * 0xD6E8FEB86659FD93;
    }
    bool operator==(Digest const&) const = default;
    bool operator<(Digest const& other) const noexcept { return a != other.a ? a < other.a : b < other.b; }
};
/// Rows or columns without repetitions.
struct Distinct {
    std::vector<std::uint32_t> kept;  ///< the first of each set of equal lines
    std::vector<std::uint32_t> same;  ///< per line the one kept for it; kNoIndex: it is not in use

    /// Of the lines those that @p lineOf names.
    Distinct(std::vector<std::uint32_t> const& lineOf, std::vector<Digest> const& digests)
        : same(digests.size(), kNoIndex) {
        std::map<Digest, std::uint32_t> seen;
        for (std::uint32_t const line : lineOf) {
            if (same[line] != kNoIndex) continue;
            auto const [first, fresh] = seen.emplace(digests[line], line);
            same[line] = first->second;
            if (fresh) kept.push_back(line);
        }
    }
    template <class Less>
    void sort(Less const& less) {
        std::stable_sort(kept.begin(), kept.end(), less);
    }
    /// Where the lines kept for those of @p lineOf stand.
    std::vector<std::uint16_t> places(std::vector<std::uint32_t> const& lineOf) const {
        std::vector<std::uint32_t> position(same.size(), 0);
        for (std::uint32_t i = 0; i < kept.size(); ++i) position[kept[i]] = i;
        std::vector<std::uint16_t> result;
        result.reserve(lineOf.size());
        for (std::uint32_t const line : lineOf) result.push_back(static_cast<std::uint16_t>(position[same[line]]));
        return result;
    }
};

}  // namespace TAVO::importer

#endif
