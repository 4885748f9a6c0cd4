#include "lexicon/user_text.hpp"

#include "base/utf8.hpp"

namespace TAVO::words {

std::string asSjis(std::string_view text, TextEncoding encoding, std::string_view what) {
    if (encoding == TextEncoding::Sjis) return std::string(text);
    std::string sjis;
    if (auto const at = appendUtf8AsSjis(sjis, text)) {
        std::string_view const rest = text.substr(*at);
        throw lexicon_error("", 0,
                            std::string(what) + ": \"" + std::string(rest.substr(0, decodeUtf8(rest).bytes)) +
                                "\" is not in code page 932, the character set of dictionaries");
    }
    return sjis;
}

std::string fromSjis(std::string_view sjis, TextEncoding encoding) {
    return encoding == TextEncoding::Sjis ? std::string(sjis) : sjisToUtf8(sjis);
}

}  // namespace TAVO::words
