#include "text/sjis_buffer.hpp"

#include "base/bytes.hpp"
#include "base/cp932_tables.hpp"
#include "base/utf8.hpp"
#include "text/characters.hpp"

#include <algorithm>
#include <cstring>
#include <string>

namespace TAVO {

namespace {

constexpr std::uint16_t kFirstTwoByteCode = 0x100;
constexpr std::size_t kRoom = 64;  // the stores of the fast paths reach beyond the end

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

/// Where the conversion of a text stands.
struct SjisBuffer::Cursor {
    char const* in;
    char const* end;
    char const* zero;  // where the text's offsets count from
    char* start;       // of the text in the bytes
    char* out;
    std::uint32_t* offset;

    std::uint32_t position() const noexcept { return static_cast<std::uint32_t>(in - zero); }
    void put(char byte, std::uint32_t position) noexcept {
        *out++ = byte;
        *offset++ = position;
    }
    void put(std::uint16_t code, std::uint32_t position, std::uint32_t after) noexcept {
        storeCode(out, code);
        offset[0] = position;
        offset[1] = after;
        out += 2;
        offset += 2;
    }
};

/// Room for @p bytes; what is there stays.
void SjisBuffer::grow(std::size_t bytes) {
    std::size_t const capacity = std::max(bytes, capacity_ * 2) + kRoom;
    auto moved = std::make_unique_for_overwrite<char[]>(capacity);
    auto offsets = std::make_unique_for_overwrite<std::uint32_t[]>(capacity);
    std::copy_n(bytes_.get(), size_, moved.get());
    if (capacity_ != 0) std::copy_n(offsets_.get(), size_ + 1, offsets.get());
    bytes_ = std::move(moved);
    offsets_ = std::move(offsets);
    capacity_ = capacity;
}

void SjisBuffer::assign(std::size_t bytes) {
    size_ = 0;
    if (capacity_ < bytes + kRoom) grow(bytes);
    size_ = bytes;
}

SjisBuffer::Range SjisBuffer::add(std::string_view utf8, std::uint32_t base) {
    // No character has more Shift_JIS bytes than UTF-8 bytes.
    if (capacity_ < size_ + 1 + utf8.size() + kRoom) grow(size_ + 1 + utf8.size());
    if (size_ != 0) bytes_[size_++] = '\n';  // its offset is the end of the text before
    std::size_t const begin = size_;
    Cursor at{utf8.data(),          utf8.data() + utf8.size(), utf8.data() - base,
              bytes_.get() + begin, bytes_.get() + begin,      offsets_.get() + begin};
    while (at.end - at.in >= 4) {
        std::uint32_t const w = loadU32(asBytes(at.in));
        if ((w & 0x00C0C0F0U) == 0x008080E0U) {
            std::uint32_t const character = (w & 0xFU) << 12 | (w >> 2 & 0xFC0U) | (w >> 16 & 0x3FU);
            std::uint16_t const code = kCp932FromUnicode[character];
            if (code >= kFirstTwoByteCode && character >= 0x800) {
                std::uint32_t const position = at.position();
                at.put(code, position, position + 3);
                at.in += 3;
                continue;
            }
        } else if ((w & 0x80808080U) == 0) {
            std::uint32_t const position = at.position();
            std::memcpy(at.out, at.in, 4);
            for (std::uint32_t i = 0; i != 4; ++i) at.offset[i] = position + i;
            at.in += 4;
            at.out += 4;
            at.offset += 4;
            continue;
        } else if ((w & 0x80U) == 0) {
            at.put(*at.in, at.position());
            ++at.in;
            continue;
        }
        convertRare(at);
    }
    while (at.in != at.end) convertRare(at);
    std::uint32_t const end = at.position();
    if (at.out == at.start && !utf8.empty()) {
        // Nothing but characters that belong to a neighbour, and no neighbour.
        std::memcpy(at.out, kUnknownCharacter, 2);
        at.offset[0] = base;
        at.out += 2;
        at.offset += 2;
        at.offset[-1] = end;
    }
    *at.offset = end;
    offsets_[begin] = base;
    size_ = static_cast<std::size_t>(at.out - bytes_.get());
    return {begin, size_};
}

/// Any character.
void SjisBuffer::convertRare(Cursor& at) {
    Utf8Char const c = decodeUtf8({at.in, static_cast<std::size_t>(at.end - at.in)});
    std::uint32_t const position = at.position();
    at.in += c.bytes;
    if (!c.valid) {
        ++invalidBytes_;
        return at.put(kInvalidByte, position);
    }
    if (c.character < 0x80) return at.put(static_cast<char>(c.character), position);
    if (isZeroWidth(c.character)) {
        skips_ = true;
        bool const afterTwoBytes = at.out - at.start >= 2 && at.offset[-1] == position;
        if (!afterTwoBytes) return;
        at.offset[-1] = position + c.bytes;
        auto const* const last = asBytes(at.out) - 2;
        char32_t const joined = voicedKana(kUnicodeFromCp932[(last[0] & 0x7FU) * 0x100U + last[1]], c.character);
        if (joined != 0) storeCode(at.out - 2, kCp932FromUnicode[joined]);
        return;
    }
    std::uint16_t const code = c.character < 0x10000 ? kCp932FromUnicode[c.character] : std::uint16_t{0};
    if (code != 0 && code < kFirstTwoByteCode) return at.put(static_cast<char>(code), position);
    at.put(code, position, position + c.bytes);
    if (code == 0) std::memcpy(at.out - 2, kUnknownCharacter, 2);
}

std::string_view withoutSkipped(std::string_view text, std::string& scratch) {
    std::string_view rest = text;
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
    return scratch.empty() ? text : std::string_view(scratch);
}

}  // namespace TAVO
