#include "text/line_text.hpp"

#include "base/sjis.hpp"
#include "base/utf8.hpp"
#include "split/markup_scanner.hpp"
#include "text/tag_escape.hpp"

#include <algorithm>
#include <optional>

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

namespace {

/// A text under construction beside the one it is made from.
struct Rewriting {
    LineText const& from;
    std::string bytes;
    std::vector<std::uint32_t> offsets;
    std::size_t done = 0;  // of from

    void copyTo(std::size_t end) {
        bytes.append(from.sjis().substr(done, end - done));
        for (; done != end; ++done) offsets.push_back(static_cast<std::uint32_t>(from.originalOffset(done)));
    }
    void escapeTo(std::size_t end) {
        std::size_t const begin = from.originalOffset(done), behind = from.originalOffset(end);
        offsets.push_back(static_cast<std::uint32_t>(begin));
        appendTagEscape(bytes, from.slice(begin, behind));
        offsets.resize(bytes.size(), static_cast<std::uint32_t>(behind));
        done = end;
    }
};

/// Escapes the characters of @p tag that do not come back as they were.
/// What the tag itself is made of stays: a mark behind such a character, which is no part of a value, is lost in the
/// tag.
void escapeTag(Rewriting& rewriting, Tag const& tag) {
    constexpr std::string_view kSyntax = "<>\"=/ ";
    LineText const& from = rewriting.from;
    for (std::size_t at = tag.begin; at < tag.end;) {
        std::size_t const end = std::min(at + charWidth(from.sjis(), at), tag.end);
        std::string_view const character = from.sjis().substr(at, end - at);
        std::string_view const given = from.slice(from.originalOffset(at), from.originalOffset(end));
        // Another spelling of a character of the code page is that character, as it is in the dictionaries.
        bool const isSpelling = character != SjisBuffer::kUnknownCharacter &&
                                character.front() != SjisBuffer::kInvalidByte &&
                                decodeUtf8(given).bytes == given.size();
        if (kSyntax.find(character) == std::string_view::npos && !isSpelling && given != sjisToUtf8(character)) {
            rewriting.copyTo(at);
            rewriting.escapeTo(end);
        }
        at = end;
    }
}

}  // namespace

void LineText::assignTaggedUtf8(std::string_view line) {
    assignUtf8(line);
    Rewriting rewriting{*this, {}, {}};
    MarkupScanner scanner(sjis_);
    for (std::optional<Tag> tag = scanner.next(); tag && tag->isTerminated(); tag = scanner.next()) {
        escapeTag(rewriting, *tag);
        if (tag->name == "annotation" && !tag->closing) scanner.annotationEnd();
    }
    if (rewriting.done == 0) return;
    rewriting.copyTo(sjis_.size());
    buffer_.assign(rewriting.bytes.size());
    std::copy(rewriting.bytes.begin(), rewriting.bytes.end(), buffer_.bytes());
    std::copy(rewriting.offsets.begin(), rewriting.offsets.end(), buffer_.offsets());
    buffer_.offsets()[rewriting.offsets.size()] = static_cast<std::uint32_t>(line.size());
    sjis_ = buffer_.sjis();
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
