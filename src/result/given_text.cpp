#include "result/given_text.hpp"

#include <algorithm>
#include <functional>

namespace TAVO {
namespace {

/// Compares addresses of unrelated texts, which "<=" must not.
bool holds(std::string_view text, std::string_view span) noexcept {
    std::less_equal<char const*> const notBehind;
    return notBehind(text.data(), span.data()) && notBehind(span.data() + span.size(), text.data() + text.size());
}

constexpr bool isLineBreak(char c) noexcept { return c == '\r' || c == '\n'; }

/// Walks both texts of @p sentence in step up to the end of [begin, end).
std::optional<std::string_view> mapSpan(Sentence const& sentence, std::size_t begin, std::size_t end) {
    std::size_t givenBegin = 0;
    std::size_t at = 0;
    for (std::size_t i = 0; i < end; ++i) {
        char const c = sentence.text[i];
        while (at < sentence.given.size() && sentence.given[at] != c && isLineBreak(sentence.given[at])) ++at;
        if (at == sentence.given.size() || sentence.given[at] != c) return std::nullopt;
        if (i == begin) givenBegin = at;
        ++at;
    }
    return begin == end ? std::string_view{} : sentence.given.substr(givenBegin, at - givenBegin);
}

}  // namespace

std::optional<std::string_view> givenText(std::vector<Sentence> const& sentences, std::string_view span) {
    // Sentences analysed as given are pieces of one text, in its order.
    auto const behind =
        std::upper_bound(sentences.begin(), sentences.end(), span.data(),
                         [](char const* p, Sentence const& s) { return std::less<char const*>()(p, s.given.data()); });
    if (behind != sentences.begin() && !std::prev(behind)->ownedText && holds(std::prev(behind)->text, span))
        return span;
    for (Sentence const& sentence : sentences) {
        if (!sentence.ownedText || !holds(sentence.text, span)) continue;
        auto const begin = static_cast<std::size_t>(span.data() - sentence.text.data());
        return mapSpan(sentence, begin, begin + span.size());
    }
    return std::nullopt;
}

}  // namespace TAVO
