// Finding tags in a line of tagged text (docs/tagged-input.md).
#ifndef TAVO_SPLIT_MARKUP_SCANNER_HPP
#define TAVO_SPLIT_MARKUP_SCANNER_HPP

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

namespace TAVO {

/// A tag from its "<" to the next ">" outside double quotes.
struct Tag {
    static constexpr std::size_t kNoEnd = static_cast<std::size_t>(-1);

    std::size_t begin = 0;
    std::size_t end = kNoEnd;  ///< behind the ">"; kNoEnd when none follows
    std::string_view name;     ///< between "<" or "</" and the first blank, tab, "/" or ">"
    std::size_t nameEnd = 0;   ///< where the name ends
    bool closing = false;      ///< begins with "</"
    bool selfClosing = false;  ///< ends with "/>"

    bool isTerminated() const noexcept { return end != kNoEnd; }
};

/// Walks the tags of a line. The time for all of them is linear in the length of
/// the line, whatever it holds.
class MarkupScanner {
public:
    explicit MarkupScanner(std::string_view line) noexcept : line_(line) {}

    /// The next tag; the scanner goes on behind it, behind the "<" alone when
    /// the tag has no end.
    std::optional<Tag> next() noexcept;
    /// The closing tag of the annotation whose opening tag next() has just
    /// returned, if it is there and has an end; the scanner goes on behind it.
    std::optional<Tag> annotationEnd() noexcept;

private:
    struct Cursor {
        std::size_t pos = 0;
        bool oddQuotes = false;  // of the quotes up to pos
    };

    bool moveToTag(Cursor& at) const noexcept;
    Tag tagAt(Cursor& at) noexcept;

    std::string_view line_;
    Cursor at_;
    // By oddQuotes: from there on no tag of that parity has an end.
    std::size_t endlessFrom_[2] = {Tag::kNoEnd, Tag::kNoEnd};
    // The first closing tag of an annotation behind the last search's start.
    bool searched_ = false;
    std::optional<Tag> close_;
    Cursor behindClose_;
};

/// A part of a line, [begin, end).
struct TextSpan {
    std::size_t begin;
    std::size_t end;
};

/// The outermost elements of @p line, from opening to closing tag, and the tags
/// that have no counterpart, in order.
std::vector<TextSpan> elementSpans(std::string_view line);

}  // namespace TAVO

#endif
