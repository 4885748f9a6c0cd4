#include "cli/encoding.hpp"

#include "cli/tool_error.hpp"
#include "cli/utf8.hpp"

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

std::string argumentToSjis(std::string_view utf8, Encoding encoding, std::string_view what) {
    try {
        return TAVO::words::asSjis(utf8, encoding, what);
    } catch (TAVO::lexicon_error const& error) {
        throw ToolError(ExitStatus::Usage, error.what());
    }
}

}  // namespace tool
