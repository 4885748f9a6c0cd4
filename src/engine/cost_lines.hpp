// Where the costs of some columns lie in a row of the connection table.
#ifndef TAVO_ENGINE_COST_LINES_HPP
#define TAVO_ENGINE_COST_LINES_HPP

#include <array>
#include <cstddef>
#include <cstdint>

namespace TAVO {

/// The cache lines of a row that hold the costs of up to kMostWords words' columns. They are the same in all rows, so
/// that a search with wide registers takes the costs of all words from few loads.
class CostLines {
public:
    static constexpr std::size_t kMostWords = 16;
    static constexpr std::size_t kMostLines = 8;
    /// What a search that knows two lines and eight words at a time has to do.
    enum class Kind : std::uint8_t {
        kMany,       ///< too many words or lines
        kNarrow,     ///< up to 8 words in up to 2 lines
        kWide,       ///< up to 16 words in up to 4 lines
        kScattered,  ///< up to 16 words in up to 8 lines
    };
    /// By line, four of them: its number in the row. What is not needed repeats others.
    using Numbers = std::array<std::uint16_t, 4>;
    /// By word, eight of them: its place in a pair of lines, one behind the other.
    using Places = std::array<std::uint8_t, 8>;
    /// By pair of lines, and for each by eights of words: a bit for each word there.
    using Members = std::array<std::uint8_t, kMostLines>;

    /// Adds the next word.
    void add(std::uint16_t column) noexcept;
    Kind kind() const noexcept;
    /// Of lines 0 to 3, @p four 0, or of those behind, 1.
    Numbers numbers(std::size_t four) const noexcept;
    /// Of words 0 to 7, @p eight 0, or of those behind, 1.
    Places const& places(std::size_t eight) const noexcept { return places_[eight]; }
    Members const& members() const noexcept { return members_; }

private:
    std::size_t words_ = 0;
    std::size_t lines_ = 0;
    std::array<std::uint16_t, kMostLines> numbers_{};
    std::array<Places, 2> places_{};
    Members members_{};
};

}  // namespace TAVO

#endif
