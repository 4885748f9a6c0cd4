// Which encoding text is in, when it is not the one that was said.
#ifndef TAVO_LEXICON_ENCODING_GUESS_HPP
#define TAVO_LEXICON_ENCODING_GUESS_HPP

#include <tavo/lexicon_maker.hpp>

#include <string>
#include <string_view>

namespace TAVO::words {

/// The encoding that @p text, from the start of a file or of a line on, seems to
/// be in, by its name for iconv; "" when that is @p said or none is likely. Some
/// stray bytes in text that is otherwise as it was said make no other encoding.
/// Looks at some kilobytes, from the first that tell something.
std::string_view otherEncoding(std::string_view text, TextEncoding said);

/// What to tell of a text in encoding @p found: what it seems to be and what to do.
std::string wrongEncoding(std::string_view found, TextEncoding said);

/// Throws lexicon_error when @p text, of the file @p path, seems to be in another encoding.
void requireEncoding(std::string_view text, std::string const& path, TextEncoding said);

}  // namespace TAVO::words

#endif
