#include "cli/utf8.hpp"

#include "cli/wide_ranges.hpp"

#include <algorithm>
#include <iterator>

namespace tool {

namespace {

bool isWide(char32_t c) noexcept {
    auto const* const range = std::lower_bound(std::begin(kWide), std::end(kWide), c,
                                               [](WideRange const& r, char32_t v) { return r.last < v; });
    return range != std::end(kWide) && range->first <= c;
}

}  // namespace

std::size_t displayWidth(std::string_view text) noexcept {
    std::size_t width = 0;
    while (!text.empty()) {
        Utf8Char const c = decodeUtf8(text);
        text.remove_prefix(c.bytes);
        if (!c.valid || c.character < 0x300) {
            width += c.character == 0xAD && c.valid ? 0 : 1;
        } else if (!isZeroWidth(c.character)) {
            width += isWide(c.character) ? 2 : 1;
        }
    }
    return width;
}

}  // namespace tool
