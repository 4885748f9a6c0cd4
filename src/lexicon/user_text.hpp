// Short texts of users, and what they are told, in their encoding.
#ifndef TAVO_LEXICON_USER_TEXT_HPP
#define TAVO_LEXICON_USER_TEXT_HPP

#include <tavo/lexicon_maker.hpp>

#include <string>
#include <string_view>

namespace TAVO::words {

/// Comes before UTF-8 text in files of some systems and is no part of it.
inline constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

/// @p text in Shift_JIS. Throws lexicon_error that names @p what when code page 932 cannot hold it.
std::string asSjis(std::string_view text, TextEncoding encoding, std::string_view what);
/// Shift_JIS as the user's encoding shows it.
std::string fromSjis(std::string_view sjis, TextEncoding encoding);

}  // namespace TAVO::words

#endif
