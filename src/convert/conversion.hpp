// A converted text and the way back to the given one.
#ifndef TAVO_CONVERT_CONVERSION_HPP
#define TAVO_CONVERT_CONVERSION_HPP

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace TAVO {

/// Outside its changes the text is the given one, byte by byte.
struct Conversion {
    /// A span of the given text and what became of it; neither is empty.
    struct Change {
        std::uint32_t begin, end;        ///< in the given text
        std::uint32_t newBegin, newEnd;  ///< in the converted text
    };
    std::string text;
    std::vector<Change> changes;  ///< ascending, without overlap

    /// The place of the given text that place @p at of the converted one stands for; inside a change its end, so that
    /// what was one character stays one.
    std::size_t toGiven(std::size_t at) const noexcept;
    /// The place of the converted text that stands for @p at of the given one; inside a change its end.
    std::size_t toConverted(std::size_t at) const noexcept;
};

}  // namespace TAVO

#endif
