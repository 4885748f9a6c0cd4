#include "cli/utf8.hpp"

namespace tool {

std::size_t displayWidth(std::string_view text) noexcept {
    std::size_t width = 0;
    while (!text.empty()) {
        Utf8Char const c = decodeUtf8(text);
        text.remove_prefix(c.bytes);
        if (!c.valid || c.character < 0x300) {
            width += c.character == 0xAD && c.valid ? 0 : 1;
        } else if (!isZeroWidth(c.character)) {
            width += TAVO::isWide(c.character) ? 2 : 1;
        }
    }
    return width;
}

}  // namespace tool
