// A compiled record as a line of dictionary source text.
#ifndef TAVO_DIC_RECORD_SOURCE_HPP
#define TAVO_DIC_RECORD_SOURCE_HPP

#include "dic/dic.hpp"
#include "dic/mrph_dic.hpp"

#include <cstddef>
#include <string>
#include <string_view>

namespace TAVO {

/// The marks of a source line that a form or a name escapes, and those that any
/// other field does.
inline constexpr std::string_view kFormMarks = "\\,-/";
inline constexpr std::string_view kTextMarks = "\\,";

/// @p text with an escape before each of @p marks, but for the first
/// @p plainSeparators separators.
std::string escapeSource(std::string_view text, std::string_view marks, std::size_t plainSeparators = 0);

/// For fields in which only a compound's separators count: a stored separator
/// more than a compound may have was escaped in the source.
std::string escapeSourceReading(std::string_view text, unsigned partCount);

/// The line (without its end) that compiles to this record again. @p form is the
/// record's surface form, @p dic the dictionary that holds it. Fields left empty
/// at the end are left out.
std::string formatSourceLine(std::string_view form, MrphDic record, Dic const& dic);

}  // namespace TAVO

#endif
