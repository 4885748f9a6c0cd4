// Conversion between the encodings of source lexicons, UTF-8 and code page 932.
#ifndef TAVO_LEXICON_IMPORT_SOURCE_CHARSET_HPP
#define TAVO_LEXICON_IMPORT_SOURCE_CHARSET_HPP

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace TAVO::importer {

/// Appends @p bytes, written in encoding @p charset (a name as in a lexicon's
/// dicrc), in UTF-8. Returns how many were text in that encoding. Throws
/// std::runtime_error for an encoding that the system does not know.
std::size_t appendUtf8(std::string& out, std::string_view bytes, std::string const& charset);

/// Decodes the character at @p pos of @p utf8 and moves pos behind it. A byte
/// that starts no character gives 0xFFFD and moves by one.
std::uint32_t nextCodePoint(std::string_view utf8, std::size_t& pos) noexcept;

/// Code page 932 by Unicode code point, as the program reads texts.
class Cp932 {
public:
    static Cp932 const& table();

    /// The code of @p codePoint (one byte when below 0x100), 0 when the page
    /// lacks it. NUL has no code either.
    std::uint16_t code(std::uint32_t codePoint) const noexcept;
    /// Appends @p utf8 to @p out; false, with out unchanged, when a character
    /// is missing from the page.
    bool append(std::string& out, std::string_view utf8) const;
    /// Every code of the page with its code point, in code order.
    struct Pair {
        std::uint16_t code;
        std::uint16_t codePoint;
    };
    std::vector<Pair> const& all() const noexcept { return all_; }

private:
    Cp932();

    std::vector<Pair> all_;
};

}  // namespace TAVO::importer

#endif
