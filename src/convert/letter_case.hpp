// Words of letters in whatever case a text has them.
#ifndef TAVO_CONVERT_LETTER_CASE_HPP
#define TAVO_CONVERT_LETTER_CASE_HPP

#include <cstddef>
#include <string>
#include <string_view>

namespace TAVO {

class DicSet;

/// Where the letters of one width (one byte or two) from @p at on end; @p at when none stands there.
std::size_t letterRunEnd(std::string_view text, std::size_t at) noexcept;

/// The word of the dictionaries that differs from @p letters in case alone, empty when @p letters is a word itself,
/// when there is none, or when it is longer than 64 letters. Small letters come before large ones.
std::string wordInAnyCase(DicSet const& dics, std::string_view letters);

}  // namespace TAVO

#endif
