#include "cli/encoding.hpp"

#include "cli/tool_error.hpp"
#include "cli/utf8.hpp"
#include "output/out_buffer.hpp"

namespace tool {

std::optional<Encoding> encodingNamed(std::string_view name) {
    std::string plain;
    for (char const c : name)
        if (c != '-' && c != '_') plain += c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    if (plain == "utf8") return Encoding::Utf8;
    for (std::string_view const known : {"sjis", "shiftjis", "cp932", "ms932", "mskanji", "windows31j", "cswindows31j"})
        if (plain == known) return Encoding::Sjis;
    return std::nullopt;
}

void appendSjisAsUtf8(OutBuffer& out, std::string_view sjis) {
    out.finish(TAVO::putSjisAsUtf8(out.reserve(TAVO::kUtf8BytesPerSjisByte * sjis.size()), sjis));
}

std::string argumentToSjis(std::string_view utf8, Encoding encoding, std::string_view what) {
    if (encoding == Encoding::Sjis) return std::string(utf8);
    std::string sjis;
    if (auto const at = appendUtf8AsSjis(sjis, utf8)) {
        std::string_view const rest = utf8.substr(*at);
        throw ToolError(ExitStatus::Usage, std::string(what) + ": \"" +
                                               std::string(rest.substr(0, decodeUtf8(rest).bytes)) +
                                               "\" is not in code page 932, the character set of dictionaries");
    }
    return sjis;
}

std::string fromSjis(std::string_view sjis, Encoding encoding) {
    return encoding == Encoding::Sjis ? std::string(sjis) : sjisToUtf8(sjis);
}

}  // namespace tool
