// Values of morphemes in the user's encoding.
#ifndef TAVO_TOOL_VALUE_TEXT_HPP
#define TAVO_TOOL_VALUE_TEXT_HPP

#include "encoding.hpp"
#include "out_buffer.hpp"
#include "token.hpp"

#include "result/mrph_access.hpp"

#include <string_view>

namespace tool {

/// Appends @p value, a text of the token's morpheme. A value that is the word
/// itself is written as it was read, not as it was analysed.
inline void appendValue(OutBuffer& out, std::string_view value, Token const& token, LineText const& text) {
    if (value == TAVO::MrphAccess::form(*token.morpheme)) {
        out.append(text.slice(token.begin, token.end));
    } else if (text.isUtf8()) {
        appendSjisAsUtf8(out, value);
    } else {
        out.append(value);
    }
}

}  // namespace tool

#endif
