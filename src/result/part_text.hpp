// Texts that carry part separators: cutting them into parts, dropping marks.
#ifndef TAVO_RESULT_PART_TEXT_HPP
#define TAVO_RESULT_PART_TEXT_HPP

#include <string>
#include <string_view>

namespace TAVO {

/// Number of one-byte characters of @p text that are one of @p marks.
unsigned countMarks(std::string_view text, std::string_view marks) noexcept;

/// Segment @p index of the @p count segments that @p marks cut @p text into.
/// The segments joined give the text: the last one takes what is left, and
/// segments that the text does not have are empty.
std::string_view segment(std::string_view text, std::string_view marks, unsigned index, unsigned count) noexcept;

/// Length of the first part of @p written, which is removed with its separator.
/// @p written are part forms as a dictionary source has them: separated by "-"
/// or "/", with "\" making the next character literal and not counting itself.
std::size_t takePartLength(std::string_view& written) noexcept;

/// Removes the one-byte characters of @p marks.
void dropMarks(std::string& text, std::string_view marks);

/// The marks that separate the @p count parts of @p text: "/", unless only "-"
/// and "/" together are as many as the parts need. A dictionary source may
/// separate parts by either of them.
std::string_view separatorsFor(std::string_view text, unsigned count) noexcept;

/// Part @p index of a read-pron text of @p count parts, again as read-pron text.
/// A separator inside a group separates on both sides: "(a/b|c/d)" has the
/// parts "(a|c)" and "(b|d)"; a side with fewer pieces leaves the rest empty.
std::string readPronPart(std::string_view readPron, unsigned index, unsigned count);

}  // namespace TAVO

#endif
