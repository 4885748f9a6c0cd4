#include "engine/fast/path_ties.hpp"

#include <algorithm>

namespace TAVO {

unsigned PathTies::breakTie(std::size_t end, std::span<std::uint16_t const> sums, std::uint16_t least) {
    std::size_t const place = state_.layout.begin() + end;
    auto const count = static_cast<unsigned>(sums.size());
    unsigned best = count;
    for (unsigned i = 0; i != count; ++i) {
        if (sums[i] != least) continue;
        if (best == count) {
            best = i;
            continue;
        }
        if (failed_) break;  // the choices are of no use any more
        std::int64_t const more = difference({place, best}, {place, i});
        bool const isEarlier = more == 0 && state_.candidate({place, i}).rank < state_.candidate({place, best}).rank;
        if (more > 0 || isEarlier) best = i;
    }
    return best;
}

std::int64_t PathTies::difference(PlacedCandidate a, PlacedCandidate b) {
    std::int64_t ofA = 0;
    std::int64_t ofB = 0;
    for (std::size_t steps = 0; a != b && !(a.place == b.place && state_.text.isEnd(a.place)); ++steps) {
        if (steps == kMostSteps) {
            failed_ = true;
            break;
        }
        // The one behind goes on; at one place both do.
        bool const both = a.place == b.place;
        if (both || a.place < b.place) a = state_.step(a, ofA);
        if (both || b.place < a.place) b = state_.step(b, ofB);
    }
    return ofA - ofB;
}

void PathTies::relativeWordSums(std::size_t place, std::vector<std::uint32_t>& sums) {
    constexpr std::int64_t kMiddle = std::int64_t{1} << 24;
    unsigned const count = state_.layout.count(place);
    std::uint16_t const* const connSums = state_.layout.sums() + state_.layout.firstSlot(place);
    sums.assign(count, 0);
    unsigned first = count;
    for (unsigned i = 0; i != count; ++i) {
        if (connSums[i] == CandidateLayout::kNoSum) continue;
        if (first == count) first = i;
        sums[i] = static_cast<std::uint32_t>(kMiddle + difference({place, i}, {place, first}));
    }
}

}  // namespace TAVO
