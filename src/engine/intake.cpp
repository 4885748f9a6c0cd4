#include "engine/intake.hpp"

#include "base/sjis.hpp"

namespace TAVO {
namespace {

/// Length of the delimiter that stands at @p pos, 0 when none does; the first
/// one of the list that fits wins.
std::size_t delimiterAt(std::string_view text, std::size_t pos, std::vector<std::string> const& delimiters) {
    for (std::string const& delimiter : delimiters)
        if (!delimiter.empty() && text.substr(pos).starts_with(delimiter)) return delimiter.size();
    return 0;
}

using PieceSink = std::function<void(std::string_view)>;

void splitAtDelimiters(std::string_view text, std::vector<std::string> const& delimiters, PieceSink const& piece) {
    std::size_t start = 0;
    for (std::size_t pos = 0; pos < text.size() && !delimiters.empty();) {
        std::size_t const matched = delimiterAt(text, pos, delimiters);
        if (matched == 0) {
            pos += charWidth(text, pos);
            continue;
        }
        pos += matched;
        piece(text.substr(start, pos - start));
        start = pos;
    }
    if (start < text.size()) piece(text.substr(start));
}

}  // namespace

void splitText(std::string_view text, Settings const& settings, PieceSink const& piece) {
    std::size_t start = 0;
    if (settings.mode(Mode::DelimitCRLF) == 1) {
        bool const drop = settings.mode(Mode::DeleteCRLF) == 1;
        for (std::size_t pos = findMark(text, "\r\n"); pos != std::string_view::npos;
             pos = findMark(text, "\r\n", start)) {
            std::size_t const end = pos + (text.substr(pos).starts_with("\r\n") ? 2 : 1);
            splitAtDelimiters(text.substr(start, (drop ? pos : end) - start), settings.delimiters, piece);
            start = end;
        }
    }
    splitAtDelimiters(text.substr(start), settings.delimiters, piece);
}

std::string deleteLineBreaks(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    for (std::size_t pos = 0; pos < text.size();) {
        std::size_t const width = charWidth(text, pos);
        if (text[pos] != '\r' && text[pos] != '\n') result.append(text, pos, width);
        pos += width;
    }
    return result;
}

}  // namespace TAVO
