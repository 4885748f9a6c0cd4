// What characters are.
#ifndef TAVO_TEXT_CHARACTERS_HPP
#define TAVO_TEXT_CHARACTERS_HPP

#include <tavo/tokenizer.hpp>

#include <string>
#include <string_view>

namespace TAVO {

/// True for characters without a place of their own: combining marks, joiners,
/// variation selectors.
bool isZeroWidth(char32_t character) noexcept;

CharacterKind kindOf(char32_t character) noexcept;
/// That of the first character of UTF-8 @p text.
CharacterKind kindOf(std::string_view text) noexcept;

/// UTF-8 @p text as search compares it: full-width letters, digits and marks and half-width kana in their usual width,
/// letters small.
std::string normalizedText(std::string_view text);

}  // namespace TAVO

#endif
