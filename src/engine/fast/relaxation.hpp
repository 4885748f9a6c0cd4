// The innermost loop of the search: the best next candidate of each word.
#ifndef TAVO_ENGINE_FAST_RELAXATION_HPP
#define TAVO_ENGINE_FAST_RELAXATION_HPP

#include <cstddef>
#include <cstdint>
#include <span>

namespace TAVO {

/// Decides between candidates of equal connection sums.
class TieBreaker {
public:
    /// The number of the best of the candidates at place @p end (of the block) whose sum in @p sums (one for each) is
    /// @p least; there are at least two.
    virtual unsigned breakTie(std::size_t end, std::span<std::uint16_t const> sums, std::uint16_t least) = 0;

protected:
    ~TieBreaker() = default;
};

/// The arrays of a block, see CandidateLayout.
struct Relaxation {
    static constexpr std::uint16_t kNoSum = 0xFFFF;

    unsigned char const* matrix;
    std::size_t stride;
    std::uint16_t const* columns;     // by slot
    std::uint16_t* sums;              // by slot
    std::uint16_t const* rows;        // by word
    std::uint16_t const* ends;        // by word
    std::uint16_t const* slots;       // by word
    std::uint16_t const* firstSlots;  // by place
    std::uint16_t const* counts;      // by place
    std::uint8_t* next;               // by word
    TieBreaker* ties;
    // What the check of omissions needs (UnknownCheck).
    unsigned char const* columnMosts;  // by column: the largest cost of a word before it, 255 for none
    unsigned unknownCost;
};

/// Gives each of the words [@p begin, @p end), from the last to the first, the number of its best next candidate and
/// its slot the sum of the connection costs from there to the end, kNoSum when nothing may follow it. Sums saturate.
using RelaxFunction = void (*)(Relaxation const& block, std::size_t begin, std::size_t end);

/// A place of a block at which UnknownCheck looks.
struct Look {
    std::uint32_t place;
    std::uint32_t isDeep;  ///< 1: what is left out there may lead farther than three places; else 0
};
/// Writes those of @p looks to @p left that are deep, or for which the sums of their place and the three behind do not
/// prove that it passes, and returns how many these are. @p first: the block's first place.
using PassFunction = std::size_t (*)(Relaxation const& block, std::span<Look const> looks, std::size_t first,
                                     Look* left);

struct RelaxKernel {
    char const* name;
    RelaxFunction relax;
    PassFunction pass;
};

/// What this build has and this processor can run, the best one first, the last one plain C++.
std::span<RelaxKernel const> relaxKernels();
/// The kernel that searches use: the one that the environment variable TAVO_KERNEL names when it is among
/// relaxKernels(), else the first.
RelaxKernel const& relaxKernel();

}  // namespace TAVO

#endif
