// Facts of Unicode; scripts/make-unicode-tables writes them.
#ifndef TAVO_TEXT_UNICODE_TABLES_HPP
#define TAVO_TEXT_UNICODE_TABLES_HPP

#include <tavo/tokenizer.hpp>

#include <cstdint>
#include <span>

namespace TAVO {

struct CodeRange {
    char32_t first, last;
};
/// Letters of a script, and the marks that it has for itself, have its number, 1 and up; other characters 0.
struct CharacterRange {
    char32_t first, last;
    std::uint8_t script;
    CharacterKind kind;
};
/// What two characters are together.
struct Composition {
    char32_t first, second, composed;
};
/// Every @p step-th character from first to last, and how far its small letter stands behind it.
struct LowerRange {
    char32_t first, last, step;
    std::int32_t difference;
};

/// Numbers of scripts that are treated in ways of their own.
inline constexpr std::uint8_t kScriptHan = 1, kScriptHiragana = 2, kScriptKatakana = 3;

// All ascend.
extern std::span<CharacterRange const> const kCharacters;
extern std::span<CodeRange const> const kZeroWidth;  ///< marks and format characters, which have no place of their own
extern std::span<CodeRange const> const kWide;       ///< East Asian wide and full-width
extern std::span<Composition const> const kCompositions;
extern std::span<LowerRange const> const kLower;

/// Of the Unicode that the tables were made from.
extern char const* const kUnicodeVersion;

}  // namespace TAVO

#endif
