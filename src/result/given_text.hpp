// The way back from the analysed text to the text as the caller gave it.
#ifndef TAVO_RESULT_GIVEN_TEXT_HPP
#define TAVO_RESULT_GIVEN_TEXT_HPP

#include "split/markup_scanner.hpp"

#include <tavo/mrph.hpp>

#include <optional>
#include <string_view>

namespace TAVO {

/// Where @p span, a piece of the text that @p m covers, stands in the text that the analyser of @p m was given: from
/// its first to behind its last byte, with what was taken out in between. Empty for text that was not given: that of
/// words that were looked up, and of morphemes without analyser.
std::optional<TextSpan> givenSpan(Mrph const& m, std::string_view span);
/// The same; throws logic_error with @p error where that is empty.
TextSpan requireGivenSpan(Mrph const& m, std::string_view span, char const* error);

}  // namespace TAVO

#endif
