#include "dic/read_pron.hpp"

#include "base/sjis.hpp"

#include <optional>

namespace TAVO {
namespace {

/// @p s up to the first @p stop; the search steps by characters. A null or empty
/// stop is none.
std::string_view cutAt(std::string_view s, char const* stop) {
    if (stop == nullptr || *stop == '\0') return s;
    std::string_view const mark(stop);
    for (std::size_t pos = 0; pos < s.size(); pos += charWidth(s, pos)) {
        if (s.substr(pos, mark.size()) == mark) return s.substr(0, pos);
    }
    return s;
}

enum class Side { Reading, Pronunciation };

/// @p s with each group replaced by one of its sides; nothing when a group lacks
/// its "|" or ")".
std::optional<std::string> resolveGroups(std::string_view s, Side side) {
    std::string result;
    std::size_t pos = 0;
    for (;;) {
        std::size_t const open = findMark(s, "(", pos);
        result += s.substr(pos, open == std::string_view::npos ? open : open - pos);
        if (open == std::string_view::npos) return result;
        std::size_t const bar = findMark(s, "|", open + 1);
        if (bar == std::string_view::npos) return std::nullopt;
        std::size_t const close = findMark(s, ")", bar + 1);
        if (close == std::string_view::npos) return std::nullopt;
        result += side == Side::Reading ? s.substr(open + 1, bar - open - 1) : s.substr(bar + 1, close - bar - 1);
        pos = close + 1;
    }
}

/// Deletes in place the one-byte characters for which @p dropped answers true.
template <class Dropped>
void dropOneByteCharacters(std::string& text, Dropped dropped) {
    std::size_t kept = 0;
    for (std::size_t pos = 0; pos < text.size();) {
        std::size_t const width = charWidth(text, pos);
        if (width == 2 || !dropped(text[pos])) {
            for (std::size_t i = 0; i < width; ++i) text[kept++] = text[pos + i];
        }
        pos += width;
    }
    text.resize(kept);
}

}  // namespace

std::string extractRead(char const* s, bool compact, char const* stop) {
    std::string_view const used = cutAt(s, stop);
    std::optional<std::string> reading = resolveGroups(used, Side::Reading);
    if (!reading) return std::string(used);
    dropOneByteCharacters(*reading, [compact](char c) { return compact || c != '/'; });
    return *std::move(reading);
}

std::string extractPron(char const* s, char const* stop) {
    std::string_view const used = cutAt(s, stop);
    std::optional<std::string> pronunciation = resolveGroups(used, Side::Pronunciation);
    if (!pronunciation) return std::string(used);
    dropOneByteCharacters(*pronunciation, [](char c) { return c == '-'; });
    return *std::move(pronunciation);
}

}  // namespace TAVO
