#include "engine/cooc/cooc_histories.hpp"

#include "base/sjis.hpp"

#include <algorithm>

namespace TAVO {

std::vector<std::uint32_t> characterNumbers(std::string_view text) {
    std::vector<std::uint32_t> numbers(text.size() + 1);
    std::uint32_t number = 0;
    for (std::size_t pos = 0; pos < text.size(); ++number)
        for (std::size_t const end = std::min(pos + charWidth(text, pos), text.size()); pos < end; ++pos)
            numbers[pos] = number;
    numbers[text.size()] = number;
    return numbers;
}

std::uint32_t CoocHistories::extended(std::uint32_t history, unsigned char const* record, std::size_t begin,
                                      std::size_t length) {
    CoocIds const* const ids = words_.of(record);
    if (ids == nullptr) return history;
    auto const [known, isNew] = known_.try_emplace({history, {ids, begin}}, static_cast<std::uint32_t>(links_.size()));
    if (!isNew) return known->second;
    CoocPlace const place{characters_[begin], characters_[begin + length], ids};
    std::int64_t const tooFar = place.begin - settings_.window;  // a word that ends here is
    std::uint64_t score = links_[history].score;
    for (std::uint32_t at = history; at != kEmpty && links_[at].place.end > tooFar; at = links_[at].before)
        score += coocScore(settings_, links_[at].place, place);
    for (auto at = context_.rbegin(); at != context_.rend() && at->end > tooFar; ++at)
        score += coocScore(settings_, *at, place);
    links_.push_back({history, place, score});
    return known->second;
}

}  // namespace TAVO
