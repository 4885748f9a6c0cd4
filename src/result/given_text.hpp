// The way back from the analysed text to the text as the caller gave it.
#ifndef TAVO_RESULT_GIVEN_TEXT_HPP
#define TAVO_RESULT_GIVEN_TEXT_HPP

#include "engine/sentence.hpp"

#include <optional>
#include <string_view>
#include <vector>

namespace TAVO {

/// The given bytes of @p span, a piece of some sentence's analysed text. Where
/// line breaks were taken out of a sentence they come back inside the span, not
/// at its ends. Empty when no sentence holds the span, or when the sentence's
/// two texts differ in more than line breaks.
std::optional<std::string_view> givenText(std::vector<Sentence> const& sentences, std::string_view span);

}  // namespace TAVO

#endif
