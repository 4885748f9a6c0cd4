// What the program's output formats show of words.
#ifndef TAVO_TEXT_WORD_VALUES_HPP
#define TAVO_TEXT_WORD_VALUES_HPP

#include "result/format_scan.hpp"

#include <tavo/lexicon_maker.hpp>
#include <tavo/mrph.hpp>

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace TAVO {

/// A text of a word that a TokenTable finds beside those of Token.
struct WordValue {
    enum class Kind {
        Formatted,  ///< what the letter stands for in a format string
        Pos,        ///< the part of speech as a person writes it
        PosHead     ///< its first level
    };

    Kind kind = Kind::Formatted;
    Directive directive;  ///< of Formatted; its width does not count

    static WordValue of(char letter) { return {Kind::Formatted, {.letter = letter}}; }
};

/// The value of @p m in Shift_JIS.
std::string valueOf(WordValue const& value, Mrph const& m);

/// A format string in pieces: literal text, and behind it a directive or nothing.
struct FormatPiece {
    std::string literal;  ///< as the format has it, also where code page 932 lacks it
    std::optional<Directive> directive;
};
/// @p format is in @p encoding; a NUL ends it.
std::vector<FormatPiece> formatPieces(std::string_view format, TextEncoding encoding);

}  // namespace TAVO

#endif
