#include "text/sjis_buffer.hpp"

#include "base/bytes.hpp"
#include "base/cp932_tables.hpp"
#include "base/utf8.hpp"
#include "text/characters.hpp"
#include "text/unicode_tables.hpp"

#include <algorithm>
#include <cstring>
#include <numeric>
#include <string>

namespace TAVO {

namespace {

constexpr std::uint16_t kFirstTwoByteCode = 0x100;
constexpr std::size_t kRoom = 64;  // the stores of the fast paths reach beyond the end

void storeCode(char* out, std::uint16_t code) noexcept {
    out[0] = static_cast<char>(code & 0xFF);
    out[1] = static_cast<char>(code >> 8);
}

std::uint16_t codeOf(char32_t character) noexcept {
    return character < 0x10000 ? kCp932FromUnicode[character] : std::uint16_t{0};
}

/// What @p character with the mark @p mark behind it is looked up as; 0 where the mark is passed over.
char32_t lookedUpAs(char32_t character, char32_t mark) noexcept {
    char32_t const together = composed(character, mark);
    if (together == 0 || codeOf(together) != 0) return together;
    std::uint8_t const script = letterScript(together);
    return script > kScriptHiragana ? together : U'\0';
}

bool isRegional(char32_t c) noexcept { return c >= 0x1F1E6 && c <= 0x1F1FF; }
bool isSkinTone(char32_t c) noexcept { return c >= 0x1F3FB && c <= 0x1F3FF; }
constexpr char32_t kJoiner = 0x200D, kKeycap = 0x20E3;

/// Steps over UTF-8 from character to character.
struct Utf8Cursor {
    char const* begin;
    char const* at;
    char const* end;

    /// The character here; not valid at the end.
    Utf8Char next() const noexcept {
        return at == end ? Utf8Char{0, 0, false} : decodeUtf8({at, static_cast<std::size_t>(end - at)});
    }
    /// The one before; not valid at the beginning and behind bytes that are no UTF-8.
    Utf8Char before() const noexcept {
        constexpr std::ptrdiff_t kMostBytes = 4;
        for (std::ptrdiff_t back = 1; back <= kMostBytes && back <= at - begin; ++back) {
            if ((static_cast<unsigned char>(at[-back]) & 0xC0U) == 0x80) continue;
            Utf8Char const c = decodeUtf8({at - back, static_cast<std::size_t>(back)});
            return c.bytes == back ? c : Utf8Char{0, 1, false};
        }
        return {0, 0, false};
    }
};

/// The beginning of the word of letters of @p script, with their marks, that ends at @p from.
char const* wordStart(Utf8Cursor from, std::uint8_t script) noexcept {
    char const* start = from.at;
    for (Utf8Char c = from.before(); c.valid; c = from.before()) {
        from.at -= c.bytes;
        if (letterScript(c.character) == script)
            start = from.at;
        else if (!isZeroWidth(c.character))
            break;
    }
    return start;
}

/// The end of the word of letters of @p script, with their marks, that goes on at @p from.
char const* wordEnd(Utf8Cursor from, std::uint8_t script) noexcept {
    for (Utf8Char c = from.next(); c.valid; c = from.next()) {
        if (letterScript(c.character) != script && !isZeroWidth(c.character)) break;
        from.at += c.bytes;
    }
    return from.at;
}

/// The end of the sequence that begins with the symbol @p symbol before @p from: skin tones, what is joined, the
/// second half of a flag.
char const* sequenceEnd(Utf8Cursor from, char32_t symbol) noexcept {
    if (Utf8Char const c = from.next(); isRegional(symbol) && c.valid && isRegional(c.character)) from.at += c.bytes;
    bool joins = false;
    for (Utf8Char c = from.next(); c.valid; c = from.next()) {
        CharacterKind const kind = kindOf(c.character);
        bool const joined = joins && (kind == CharacterKind::Emoji || (kind == CharacterKind::Symbol && c.bytes > 1));
        if (!joined && !isZeroWidth(c.character) && !isSkinTone(c.character)) break;
        joins = c.character == kJoiner;
        from.at += c.bytes;
    }
    return from.at;
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
    char const* begin;              // of the text
    char const* wordEnd = nullptr;  // where the last word of characters that code page 932 lacks ends
    std::uint8_t wordScript = 0;    // and its script

    Utf8Cursor utf8() const noexcept { return {begin, in, end}; }
    std::uint32_t positionOf(char const* place) const noexcept { return static_cast<std::uint32_t>(place - zero); }
    /// Takes back what was put for the characters from @p place on, of which there are some.
    void takeBack(char const* place) noexcept {
        std::uint32_t const position = positionOf(place);
        std::size_t bytes = 1;  // the first one there; the one before may have the same offset
        while (offset[-static_cast<std::ptrdiff_t>(bytes)] > position) ++bytes;
        out -= bytes;
        offset -= bytes;
    }
    /// One character for all from @p place to where the reading stands.
    void putUnknown(char const* place) noexcept {
        std::memcpy(out, kUnknownCharacter, 2);
        offset[0] = positionOf(place);
        offset[1] = position();
        out += 2;
        offset += 2;
    }

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

SjisBuffer::Range SjisBuffer::add(std::string_view text, std::uint32_t base, TextEncoding encoding) {
    // No character has more Shift_JIS bytes than UTF-8 bytes.
    if (capacity_ < size_ + 1 + text.size() + kRoom) grow(size_ + 1 + text.size());
    if (size_ != 0) bytes_[size_++] = '\n';  // its offset is the end of the text before
    std::size_t const begin = size_;
    encoding == TextEncoding::Utf8 ? addUtf8(text, base) : addSjis(text, base);
    return {begin, size_};
}

void SjisBuffer::addSjis(std::string_view sjis, std::uint32_t base) noexcept {
    std::copy_n(sjis.data(), sjis.size(), bytes_.get() + size_);
    std::iota(offsets_.get() + size_, offsets_.get() + size_ + sjis.size() + 1, base);
    size_ += sjis.size();
}

void SjisBuffer::addUtf8(std::string_view utf8, std::uint32_t base) {
    std::size_t const begin = size_;
    Cursor at{utf8.data(),          utf8.data() + utf8.size(), utf8.data() - base, bytes_.get() + begin,
              bytes_.get() + begin, offsets_.get() + begin,    utf8.data()};
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
    *at.offset = end;
    offsets_[begin] = base;
    size_ = static_cast<std::size_t>(at.out - bytes_.get());
}

/// Any character.
void SjisBuffer::convertRare(Cursor& at) {
    Utf8Char const c = at.utf8().next();
    std::uint32_t const position = at.position();
    if (!c.valid) {
        ++at.in;
        ++invalidBytes_;
        return at.put(kInvalidByte, position);
    }
    std::uint16_t const code = codeOf(c.character);
    if (code == 0 && c.character != 0) {
        if (isZeroWidth(c.character)) return convertMark(at, c);
        char const* const start = at.in;
        at.in += c.bytes;
        return convertUnknown(at, c.character, start);
    }
    at.in += c.bytes;
    if (code < kFirstTwoByteCode) return at.put(static_cast<char>(code), position);
    at.put(code, position, position + c.bytes);
}

/// Marks at the beginning of a line belong to what comes behind them, or are all there is.
void SjisBuffer::convertLeadingMarks(Cursor& at) {
    char const* const start = at.in;
    for (Utf8Char c = at.utf8().next(); c.valid && isZeroWidth(c.character); c = at.utf8().next()) at.in += c.bytes;
    if (at.in == at.end || *at.in == '\n' || *at.in == '\r') at.putUnknown(start);
}

/// A mark or another character that belongs to the one before it.
void SjisBuffer::convertMark(Cursor& at, Utf8Char const& mark) {
    skips_ = true;
    if (at.out == at.start || at.out[-1] == '\n' || at.out[-1] == '\r') return convertLeadingMarks(at);
    Utf8Cursor behind = at.utf8();
    Utf8Char before = behind.before();
    for (; before.valid && isZeroWidth(before.character); before = behind.before()) behind.at -= before.bytes;
    char const* const start = behind.at - before.bytes;
    std::uint32_t const position = at.position();
    bool const inWord = at.in == at.wordEnd;
    at.in += mark.bytes;
    if (before.valid && !inWord) {
        if (mark.character == kKeycap) {
            at.takeBack(start);
            return at.putUnknown(start);
        }
        if (char32_t const together = lookedUpAs(before.character, mark.character); together != 0) {
            std::uint16_t const code = codeOf(together);
            at.takeBack(start);
            if (code == 0) return convertUnknown(at, together, start);
            return at.put(code, at.positionOf(start), at.position());
        }
    }
    bool const afterTwoBytes = at.out - at.start >= 2 && at.offset[-1] == position;
    if (afterTwoBytes) at.offset[-1] = at.position();
    if (inWord) at.wordEnd = at.in;
}

/// A character that code page 932 lacks, which stands from @p start to where the reading stands.
void SjisBuffer::convertUnknown(Cursor& at, char32_t character, char const* start) {
    char const* const first = start;
    std::uint8_t const script = letterScript(character);
    char const* const from = at.in;
    if (script == 0) {
        at.in = sequenceEnd(at.utf8(), character);
    } else if (script > kScriptHiragana) {
        start = wordStart({at.begin, start, at.end}, script);
        at.in = wordEnd(at.utf8(), script);
    } else if (script == at.wordScript && at.wordEnd != nullptr) {
        // Han: one character that the code page has may stand between two that it lacks.
        Utf8Cursor const here{at.begin, start, at.end};
        Utf8Char const between = here.before();
        bool const joins =
            at.wordEnd == start || (script == kScriptHan && between.valid && at.wordEnd == start - between.bytes &&
                                    letterScript(between.character) == script);
        if (joins) {
            if (at.wordEnd != start) at.takeBack(at.wordEnd);
            at.offset[-1] = at.position();
            at.wordEnd = at.in;
            return;
        }
    }
    if (at.in != from) skips_ = true;  // some of it may be marks
    if (start != first) at.takeBack(start);
    at.putUnknown(start);
    at.wordEnd = at.in;
    at.wordScript = script;
}

std::string_view withoutSkipped(std::string_view text, std::string& scratch) {
    std::string_view rest = text;
    scratch.clear();
    char32_t last = 0;
    std::size_t lastAt = 0;  // of the last character in scratch
    while (!rest.empty()) {
        Utf8Char const c = decodeUtf8(rest);
        if (!c.valid || c.character < 0x80 || !isZeroWidth(c.character) || letterScript(c.character) != 0) {
            last = c.valid ? c.character : 0;
            lastAt = scratch.size();
            scratch += rest.substr(0, c.bytes);
        } else if (char32_t const together = lookedUpAs(last, c.character); together != 0) {
            scratch.resize(lastAt + 4);
            scratch.resize(static_cast<std::size_t>(putUtf8(scratch.data() + lastAt, together) - scratch.data()));
            last = together;
        }
        rest.remove_prefix(c.bytes);
    }
    return scratch.empty() ? text : std::string_view(scratch);
}

}  // namespace TAVO
