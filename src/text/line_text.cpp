#include "text/line_text.hpp"

namespace TAVO {

void LineText::startLines(std::string_view first) noexcept {
    original_ = first.substr(0, 0);
    sjis_ = {};
    buffer_.clear();
    utf8_ = skips_ = false;
    invalidBytes_ = 0;
}

LineText::Range LineText::addSjis(std::string_view line) noexcept {
    auto const begin = static_cast<std::size_t>(line.data() - original_.data());
    original_ = sjis_ = {original_.data(), begin + line.size()};
    return {begin, sjis_.size()};
}

LineText::Range LineText::addUtf8(std::string_view line) {
    auto const begin = static_cast<std::size_t>(line.data() - original_.data());
    Range const range = buffer_.add(line, static_cast<std::uint32_t>(begin));
    original_ = {original_.data(), begin + line.size()};
    sjis_ = buffer_.sjis();
    utf8_ = true;
    skips_ = buffer_.skips();
    invalidBytes_ = buffer_.invalidBytes();
    return range;
}

void LineText::assignParts(LineText const& source, std::vector<Part> const& parts) {
    std::size_t total = 0;
    for (Part const& part : parts) total += part.begin == part.end ? 1 : part.end - part.begin;
    buffer_.assign(total);
    char* const bytes = buffer_.bytes();
    std::uint32_t* const offsets = buffer_.offsets();
    parts_.clear();
    std::size_t size = 0;
    for (Part const& part : parts) {
        std::size_t const shown = parts_.size();
        if (part.begin == part.end) {
            offsets[size] = static_cast<std::uint32_t>(shown);
            bytes[size++] = part.character;
            parts_ += part.character;
            continue;
        }
        std::size_t const begin = source.originalOffset(part.begin);
        for (std::size_t at = part.begin; at < part.end; ++at) {
            offsets[size] = static_cast<std::uint32_t>(shown + source.originalOffset(at) - begin);
            bytes[size++] = source.sjis()[at];
        }
        parts_ += source.slice(begin, source.originalOffset(part.end));
    }
    offsets[size] = static_cast<std::uint32_t>(parts_.size());
    sjis_ = buffer_.sjis();
    utf8_ = source.utf8_;
    skips_ = source.skips_;
    invalidBytes_ = source.invalidBytes_;
    std::size_t const length = parts_.size();
    parts_.append(kPaddingBytes, '\0');
    original_ = std::string_view(parts_).substr(0, length);
}

}  // namespace TAVO
