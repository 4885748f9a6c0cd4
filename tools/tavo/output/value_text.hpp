// Values of morphemes in the user's encoding.
#ifndef TAVO_TOOL_VALUE_TEXT_HPP
#define TAVO_TOOL_VALUE_TEXT_HPP

#include "cli/encoding.hpp"
#include "output/out_buffer.hpp"
#include "output/token.hpp"

#include "result/mrph_access.hpp"

#include <string>
#include <string_view>

namespace tool {

/// The word as a base form or a reading that equals it shows it: as it was read, but for characters that analysis
/// skips.
inline std::string_view ownForm(Token const& token, LineText const& text, std::string& scratch) {
    return text.analysed(token.begin, token.end, scratch);
}

/// Appends @p value, a text of the token's morpheme. A value that is the word
/// itself is written as ownForm() tells, not as it was analysed.
inline void appendValue(OutBuffer& out, std::string_view value, Token const& token, LineText const& text) {
    if (value == TAVO::MrphAccess::form(*token.morpheme)) {
        std::string scratch;
        out.append(ownForm(token, text, scratch));
    } else if (text.isUtf8()) {
        appendSjisAsUtf8(out, value);
    } else {
        out.append(value);
    }
}

}  // namespace tool

#endif
