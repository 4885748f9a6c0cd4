#include "split/text_origins.hpp"

#include <algorithm>
#include <iterator>
#include <limits>

namespace TAVO {

std::size_t TextOrigins::begin(std::size_t position) const noexcept {
    auto const behind = std::upper_bound(origins_.begin(), origins_.end(), position,
                                         [](std::size_t at, TextOrigin const& origin) { return at < origin.position; });
    if (behind == origins_.begin()) return position;
    TextOrigin const& origin = *std::prev(behind);
    return origin.source + (position - origin.position);
}

std::size_t TextOrigins::end(std::size_t position) const noexcept {
    auto const at = std::lower_bound(origins_.begin(), origins_.end(), position,
                                     [](TextOrigin const& origin, std::size_t p) { return origin.position < p; });
    if (at != origins_.end() && at->position == position) return at->endBefore;
    return position == 0 ? 0 : begin(position - 1) + 1;
}

TextOrigins TextOrigins::through(TextOrigins const& before) const {
    TextOrigins result;
    auto cut = before.origins_.begin();
    for (auto origin = origins_.begin(); origin != origins_.end(); ++origin) {
        auto const next = std::next(origin);
        std::size_t const length = next != origins_.end() ? next->position - origin->position
                                                          : std::numeric_limits<std::size_t>::max() - origin->source;
        result.add({origin->position, before.begin(origin->source), before.end(origin->endBefore)});
        while (cut != before.origins_.end() && cut->position <= origin->source) ++cut;
        for (; cut != before.origins_.end() && cut->position < origin->source + length; ++cut)
            result.add({origin->position + (cut->position - origin->source), cut->source, cut->endBefore});
    }
    return result;
}

}  // namespace TAVO
