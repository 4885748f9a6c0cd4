// Characters of tags that code page 932 lacks, on their way through the byte-level core.
#ifndef TAVO_TEXT_TAG_ESCAPE_HPP
#define TAVO_TEXT_TAG_ESCAPE_HPP

#include <string>
#include <string_view>

namespace TAVO {

/// Appends @p utf8, any bytes, as Shift_JIS characters that stand for them in the value of an attribute: of two bytes
/// each, so that nothing that is a mark there, or in a reading, is among them.
void appendTagEscape(std::string& sjis, std::string_view utf8);

/// @p sjis in UTF-8, with what appendTagEscape() wrote as it was.
std::string tagTextToUtf8(std::string_view sjis);

}  // namespace TAVO

#endif
