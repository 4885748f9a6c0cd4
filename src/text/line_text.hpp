// Lines of input, or a piece of one: the Shift_JIS bytes that are analysed, and the
// way back from them to the bytes that were read.
#ifndef TAVO_TEXT_LINE_TEXT_HPP
#define TAVO_TEXT_LINE_TEXT_HPP

#include "text/sjis_buffer.hpp"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace TAVO {

/// Readable bytes that the input reader keeps behind every line.
inline constexpr std::size_t kPaddingBytes = 16;

/// Output never shows the Shift_JIS bytes of a word: it shows the bytes of the
/// line that the word came from, so whatever a line holds comes back unchanged.
///
/// Reused from line to line: buffers grow to the longest line and stay.
class LineText {
public:
    static constexpr char const* kUnknownCharacter = SjisBuffer::kUnknownCharacter;
    static constexpr char kInvalidByte = SjisBuffer::kInvalidByte;
    using Range = SjisBuffer::Range;

    /// Converts @p line, at most 2^32 - 1 bytes, which must stay unchanged while
    /// this text is used.
    void assignUtf8(std::string_view line) {
        startLines(line);
        addUtf8(line);
    }
    /// The same for a line of tagged text: in its tags, what does not come back from Shift_JIS as it was is written so
    /// that tagTextToUtf8() gives it again.
    void assignTaggedUtf8(std::string_view line);
    /// Takes Shift_JIS bytes as they are.
    void assignSjis(std::string_view line) noexcept {
        startLines(line);
        addSjis(line);
    }

    /// Becomes a text of several lines, of which @p first will be added first. Each line is as one alone; between
    /// two of them stands a line break.
    void startLines(std::string_view first) noexcept;
    /// Adds a line as assignUtf8() takes it, which stands in memory behind those before.
    Range addUtf8(std::string_view line);
    Range addSjis(std::string_view line) noexcept;

    /// A part of another text, [begin, end) in its Shift_JIS bytes, or one ASCII
    /// character of its own.
    struct Part {
        std::size_t begin, end;
        char character = '\0';  ///< counts when begin equals end
    };
    /// Becomes the parts of @p source one behind the other. Its original() is then
    /// a text of its own.
    void assignParts(LineText const& source, std::vector<Part> const& parts);

    std::string_view sjis() const noexcept { return sjis_; }
    std::string_view original() const noexcept { return original_; }
    bool isUtf8() const noexcept { return utf8_; }
    /// The offset in original() of offset @p sjisOffset (0..sjis().size()).
    std::size_t originalOffset(std::size_t sjisOffset) const noexcept {
        return utf8_ ? buffer_.offset(sjisOffset) : sjisOffset;
    }
    std::string_view slice(std::size_t begin, std::size_t end) const noexcept {
        return original_.substr(begin, end - begin);
    }
    /// Bytes [begin, end) of original() as dictionaries write them: without the characters that analysis skips, kana
    /// and their voicing mark as one. Stands in original() or in @p scratch.
    std::string_view analysed(std::size_t begin, std::size_t end, std::string& scratch) const {
        return skips_ ? withoutSkipped(slice(begin, end), scratch) : slice(begin, end);
    }
    /// Number of bytes of the line that are not UTF-8.
    std::size_t invalidBytes() const noexcept { return invalidBytes_; }

private:
    std::string_view original_, sjis_;
    bool utf8_ = false;
    bool skips_ = false;  // original() has characters that analysis skips
    std::size_t invalidBytes_ = 0;
    std::string parts_;  // what original() refers to after assignParts
    SjisBuffer buffer_;
};

}  // namespace TAVO

#endif
