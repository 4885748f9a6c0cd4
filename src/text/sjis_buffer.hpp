// Shift_JIS bytes made of UTF-8 texts, with the way back from each of them.
#ifndef TAVO_TEXT_SJIS_BUFFER_HPP
#define TAVO_TEXT_SJIS_BUFFER_HPP

#include "base/utf8.hpp"

#include <tavo/lexicon_maker.hpp>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace TAVO {

/// Texts in the bytes that are analysed, one behind the other with a line break between them.
///
/// - Letters that code page 932 lacks are analysed, with the letters of their script and the marks beside them, as
///   one character that no dictionary has. Chinese characters that it lacks take at most one between two of them in,
///   hiragana none.
/// - So is any other character that it lacks, with what belongs to it: the parts of a joined emoji, skin tones, the
///   second half of a flag.
/// - A byte that is not UTF-8 is analysed as one control character.
/// - Other marks, joiners and variation selectors are skipped. They belong to the character before them (at the
///   start of a line: behind them; alone in one they are like what the code page lacks). A character and a mark that
///   are one character together are analysed as that.
///
/// Memory grows to what was needed most, and stays.
class SjisBuffer {
public:
    /// The character that stands for a word of characters that code page 932 lacks.
    /// No word begins with its second byte, so no word is found inside it.
    static constexpr char kUnknownCharacter[] = "\xF0\x80";
    /// Stands for a byte that is not UTF-8.
    static constexpr char kInvalidByte = '\x1A';

    /// Bytes [begin, end) of sjis().
    struct Range {
        std::size_t begin, end;
    };

    void clear() noexcept {
        size_ = 0;
        skips_ = false;
        invalidBytes_ = 0;
    }
    /// Adds @p text, Shift_JIS as it is. Its offsets count from @p base on; together they are below 2^32.
    Range add(std::string_view text, std::uint32_t base, TextEncoding encoding = TextEncoding::Utf8);

    std::string_view sjis() const noexcept { return {bytes_.get(), size_}; }
    /// Where the character that holds or follows byte @p at of sjis() stands in its text; behind a text's last
    /// byte the text's end. A boundary inside a two-byte character lies behind that character.
    std::uint32_t offset(std::size_t at) const noexcept { return offsets_[at]; }
    /// Some text has characters that analysis skips.
    bool skips() const noexcept { return skips_; }
    /// Number of bytes that are not UTF-8.
    std::size_t invalidBytes() const noexcept { return invalidBytes_; }

    /// For bytes that come from elsewhere: room for @p bytes, all of which the caller writes, with their offsets
    /// and that of the end.
    void assign(std::size_t bytes);
    char* bytes() noexcept { return bytes_.get(); }
    std::uint32_t* offsets() noexcept { return offsets_.get(); }

private:
    struct Cursor;
    void grow(std::size_t bytes);
    void addUtf8(std::string_view utf8, std::uint32_t base);
    void addSjis(std::string_view sjis, std::uint32_t base) noexcept;
    void convertRare(Cursor& at);
    void convertLeadingMarks(Cursor& at);
    void convertMark(Cursor& at, Utf8Char const& mark);
    void convertUnknown(Cursor& at, char32_t character, char const* start);

    std::size_t size_ = 0, capacity_ = 0;
    bool skips_ = false;
    std::size_t invalidBytes_ = 0;
    std::unique_ptr<char[]> bytes_;
    std::unique_ptr<std::uint32_t[]> offsets_;  // by byte; of the second byte of a character, of the one behind it
};

/// @p text as dictionaries write it: without the characters that analysis skips, kana and their voicing mark as
/// one. Stands in @p text or in @p scratch.
std::string_view withoutSkipped(std::string_view text, std::string& scratch);

}  // namespace TAVO

#endif
