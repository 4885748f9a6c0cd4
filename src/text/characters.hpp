// What characters are.
#ifndef TAVO_TEXT_CHARACTERS_HPP
#define TAVO_TEXT_CHARACTERS_HPP

#include <tavo/tokenizer.hpp>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace TAVO {

/// True for characters without a place of their own: combining marks, joiners,
/// variation selectors.
bool isZeroWidth(char32_t character) noexcept;

/// Columns of a terminal: true for characters that take two.
bool isWide(char32_t character) noexcept;

/// The number of the script that a letter belongs to (text/unicode_tables.hpp); 0 for what is no letter.
std::uint8_t letterScript(char32_t character) noexcept;
/// The one character that two are together; 0 when there is none.
char32_t composed(char32_t first, char32_t second) noexcept;
char32_t smallLetter(char32_t character) noexcept;

CharacterKind kindOf(char32_t character) noexcept;
/// That of the first character of UTF-8 @p text.
CharacterKind kindOf(std::string_view text) noexcept;

/// UTF-8 @p text as search compares it: full-width letters, digits and marks and half-width kana in their usual width,
/// letters small.
std::string normalizedText(std::string_view text);

/// UTF-8 @p reading in Shift_JIS as given, in katakana and in hiragana, each one once: dictionaries write one or the
/// other. Spellings that Shift_JIS lacks are left out.
std::vector<std::string> readingSpellings(std::string_view reading);

}  // namespace TAVO

#endif
