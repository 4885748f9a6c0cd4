#include "output/line_text.hpp"

#include "cli/cp932_tables.hpp"
#include "cli/utf8.hpp"

#include "base/bytes.hpp"

#include <algorithm>
#include <cstring>

namespace tool {

namespace {

constexpr std::uint16_t kFirstTwoByteCode = 0x100;

void storeCode(char* out, std::uint16_t code) noexcept {
    out[0] = static_cast<char>(code & 0xFF);
    out[1] = static_cast<char>(code >> 8);
}

/// The kana that @p kana and a combining mark (U+3099 voiced, U+309A
/// semi-voiced) show together; 0 when they do not combine, as with any other mark.
char32_t voicedKana(char32_t kana, char32_t mark) noexcept {
    if (mark != 0x3099 && mark != 0x309A) return 0;
    if (kana == 0x30A6 && mark == 0x3099) return 0x30F4;  // the katakana U; hiragana has no such character here
    char32_t const hiragana = kana >= 0x30A1 && kana <= 0x30F6 ? kana - 0x60 : kana;
    bool const haRow = hiragana >= 0x306F && hiragana <= 0x307B && (hiragana - 0x306F) % 3 == 0;
    bool const kaToTi = hiragana >= 0x304B && hiragana <= 0x3061 && hiragana % 2 == 1;
    bool const tuToTo = hiragana >= 0x3064 && hiragana <= 0x3068 && hiragana % 2 == 0;
    if (mark == 0x3099) return haRow || kaToTi || tuToTo ? kana + 1 : 0;
    return haRow ? kana + 2 : 0;
}

}  // namespace

/// Where the conversion stands.
struct LineText::Cursor {
    char const* in;
    char* out;
    std::uint32_t* offset;

    std::uint32_t position(std::string_view line) const noexcept {
        return static_cast<std::uint32_t>(in - line.data());
    }
};

void LineText::startLines(std::string_view first) noexcept {
    original_ = first.substr(0, 0);
    sjis_ = {};
    utf8_ = skips_ = false;
    invalidBytes_ = 0;
}

LineText::Range LineText::addSjis(std::string_view line) noexcept {
    auto const begin = static_cast<std::size_t>(line.data() - original_.data());
    original_ = sjis_ = {original_.data(), begin + line.size()};
    return {begin, sjis_.size()};
}

/// Room for @p bytes; what is there stays.
void LineText::grow(std::size_t bytes) {
    // No character has more Shift_JIS bytes than UTF-8 bytes; the stores of the
    // fast paths reach beyond the end.
    capacity_ = std::max(bytes, capacity_ * 2) + 4 * kPaddingBytes;
    auto moved = std::make_unique_for_overwrite<char[]>(capacity_);
    auto offsets = std::make_unique_for_overwrite<std::uint32_t[]>(capacity_);
    std::copy_n(bytes_.get(), sjis_.size(), moved.get());
    std::copy_n(offsets_.get(), sjis_.size(), offsets.get());
    bytes_ = std::move(moved);
    offsets_ = std::move(offsets);
}

LineText::Range LineText::addUtf8(std::string_view line) {
    std::size_t size = sjis_.size();
    if (capacity_ < size + 1 + line.size() + 4 * kPaddingBytes) grow(size + 1 + line.size());
    if (size != 0) {
        offsets_[size] = static_cast<std::uint32_t>(original_.size());
        bytes_[size++] = '\n';
    }
    original_ = {original_.data(), static_cast<std::size_t>(line.data() + line.size() - original_.data())};
    utf8_ = true;
    line_ = bytes_.get() + size;

    Cursor at{line.data(), bytes_.get() + size, offsets_.get() + size};
    char const* const end = line.data() + line.size();
    while (at.in < end) {
        std::uint32_t const w = TAVO::loadU32(TAVO::asBytes(at.in));
        std::uint32_t const position = at.position(original_);
        if ((w & 0x00C0C0F0U) == 0x008080E0U) {
            std::uint32_t const character = (w & 0xFU) << 12 | (w >> 2 & 0xFC0U) | (w >> 16 & 0x3FU);
            std::uint16_t const code = kCp932FromUnicode[character];
            if (code >= kFirstTwoByteCode && character >= 0x800) {
                storeCode(at.out, code);
                at.offset[0] = position;
                at.offset[1] = position + 3;
                at.in += 3;
                at.out += 2;
                at.offset += 2;
                continue;
            }
        } else if ((w & 0x80808080U) == 0 && end - at.in >= 4) {
            std::memcpy(at.out, at.in, 4);
            for (std::uint32_t i = 0; i != 4; ++i) at.offset[i] = position + i;
            at.in += 4;
            at.out += 4;
            at.offset += 4;
            continue;
        } else if ((w & 0x80U) == 0) {
            *at.out++ = *at.in++;
            *at.offset++ = position;
            continue;
        }
        convertRare(at);
    }
    auto const lineEnd = static_cast<std::uint32_t>(original_.size());
    if (at.out == line_ && !line.empty()) {
        // Nothing but characters that belong to a neighbour, and no neighbour.
        std::memcpy(at.out, kUnknownCharacter, 2);
        at.offset[1] = lineEnd;
        at.out += 2;
        at.offset += 2;
    }
    *at.offset = lineEnd;
    offsets_[size] = static_cast<std::uint32_t>(lineEnd - line.size());
    sjis_ = {bytes_.get(), static_cast<std::size_t>(at.out - bytes_.get())};
    return {size, sjis_.size()};
}

/// Everything but ASCII and three-byte sequences of two-byte codes.
void LineText::convertRare(Cursor& at) {
    std::string_view const rest = original_.substr(static_cast<std::size_t>(at.in - original_.data()));
    Utf8Char const c = decodeUtf8(rest);
    std::uint32_t const position = at.position(original_);
    at.in += c.bytes;
    if (!c.valid) {
        ++invalidBytes_;
        *at.out++ = kInvalidByte;
        *at.offset++ = position;
        return;
    }
    bool const afterTwoBytes = at.out - line_ >= 2 && at.offset[-1] == position;
    if (isZeroWidth(c.character)) {
        skips_ = true;
        if (!afterTwoBytes) return;
        at.offset[-1] = position + c.bytes;
        auto const* const last = TAVO::asBytes(at.out) - 2;
        char32_t const joined = voicedKana(kUnicodeFromCp932[(last[0] & 0x7FU) * 0x100U + last[1]], c.character);
        if (joined != 0) storeCode(at.out - 2, kCp932FromUnicode[joined]);
        return;
    }
    std::uint16_t const code = c.character < 0x10000 ? kCp932FromUnicode[c.character] : std::uint16_t{0};
    if (code != 0 && code < kFirstTwoByteCode) {
        *at.out++ = static_cast<char>(code);
        *at.offset++ = position;
        return;
    }
    if (code != 0) {
        storeCode(at.out, code);
    } else {
        std::memcpy(at.out, kUnknownCharacter, 2);
    }
    at.out += 2;
    at.offset[0] = position;
    at.offset[1] = position + c.bytes;
    at.offset += 2;
}

std::string_view LineText::analysed(std::size_t begin, std::size_t end, std::string& scratch) const {
    std::string_view const read = slice(begin, end);
    if (!skips_) return read;
    std::string_view rest = read;
    scratch.clear();
    char32_t last = 0;
    std::size_t lastAt = 0;  // of the last character in scratch
    while (!rest.empty()) {
        Utf8Char const c = decodeUtf8(rest);
        if (!c.valid || !isZeroWidth(c.character)) {
            last = c.valid ? c.character : 0;
            lastAt = scratch.size();
            scratch += rest.substr(0, c.bytes);
        } else if (char32_t const joined = voicedKana(last, c.character); joined != 0) {
            constexpr std::size_t kKanaBytes = 3;
            scratch.resize(lastAt + kKanaBytes);
            putUtf8(scratch.data() + lastAt, joined);
            last = 0;
        }
        rest.remove_prefix(c.bytes);
    }
    return scratch.empty() ? read : std::string_view(scratch);
}

void LineText::assignParts(LineText const& source, std::vector<Part> const& parts) {
    std::size_t total = 0;
    for (Part const& part : parts) total += part.begin == part.end ? 1 : part.end - part.begin;
    sjis_ = {};
    if (capacity_ < total + 4 * kPaddingBytes) grow(total);
    parts_.clear();
    std::size_t size = 0;
    for (Part const& part : parts) {
        std::size_t const shown = parts_.size();
        if (part.begin == part.end) {
            offsets_[size] = static_cast<std::uint32_t>(shown);
            bytes_[size++] = part.character;
            parts_ += part.character;
            continue;
        }
        std::size_t const begin = source.originalOffset(part.begin);
        for (std::size_t at = part.begin; at < part.end; ++at) {
            offsets_[size] = static_cast<std::uint32_t>(shown + source.originalOffset(at) - begin);
            bytes_[size++] = source.sjis()[at];
        }
        parts_ += source.slice(begin, source.originalOffset(part.end));
    }
    offsets_[size] = static_cast<std::uint32_t>(parts_.size());
    sjis_ = {bytes_.get(), size};
    utf8_ = source.utf8_;
    skips_ = source.skips_;
    invalidBytes_ = source.invalidBytes_;
    std::size_t const length = parts_.size();
    parts_.append(kPaddingBytes, '\0');
    original_ = std::string_view(parts_).substr(0, length);
}

}  // namespace tool
