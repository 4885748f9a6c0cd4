#include "convert/converter.hpp"

#include "base/bytes.hpp"
#include "base/cp932_tables.hpp"
#include "base/sjis.hpp"
#include "convert/letter_case.hpp"
#include "dic/dic_set.hpp"

#include <algorithm>
#include <utility>

namespace TAVO {
namespace {

enum class Kind : std::uint8_t { Plain, Wide, Variant, Voiced, HalfVoiced };
struct CharacterRow {
    Kind kind;
    char16_t from;
    char16_t const* to;
};
constexpr CharacterRow kRows[] = {
#include "convert/character_tables.inc"
};

constexpr std::uint8_t kRule = 1, kSingle = 2, kIteration = 4, kLongVowel = 8, kVariant = 16;
constexpr std::size_t kCodes = 0x10000;

// Marks of code page 932.
constexpr std::uint16_t kLong = 0x815B, kWave = 0x8160, kHalfLong = 0xB0, kHalfVoicing = 0xDE, kHalfHalfVoicing = 0xDF;
constexpr std::uint16_t kIterations[] = {0x8154, 0x8155, 0x8152, 0x8153};  // hiragana, voiced; katakana, voiced

constexpr bool isHiragana(std::uint16_t code) noexcept { return code >= 0x829F && code <= 0x82F1; }
constexpr bool isKatakana(std::uint16_t code) noexcept { return code >= 0x8340 && code <= 0x8396; }

std::string bytesOf(std::uint16_t code) {
    if (code < 0x100) return {static_cast<char>(code)};
    return {static_cast<char>(code >> 8), static_cast<char>(code & 0xFF)};
}

/// The character's code in code page 932; 0 for none.
std::uint16_t codeOf(char16_t c) noexcept {
    std::uint16_t const entry = kCp932FromUnicode[c];
    return entry < 0x100 ? entry : static_cast<std::uint16_t>(entry << 8 | entry >> 8);
}

std::string textOf(char16_t const* characters) {
    std::string text;
    for (; *characters != 0; ++characters) text += bytesOf(codeOf(*characters));
    return text;
}

/// Tells of single characters what the dictionaries have that begins with them, without reading all their words.
class FirstCharacters {
public:
    explicit FirstCharacters(DicSet const& dics) : dics_(dics) {}

    /// True when a word of several characters begins with the character.
    bool beginsLonger(std::uint16_t code) const {
        return inAny(code, [](DicTrie const& trie, unsigned char const* character, std::size_t bytes) {
            bool isLonger = false;
            if (trie.mayContinue(character, bytes))
                trie.visitFrom(character, bytes, [&](std::string const& form, RecordChain) {
                    isLonger = form.size() > bytes;
                    return !isLonger;
                });
            return isLonger;
        });
    }
    bool begins(std::uint16_t code) const {
        return inAny(code, [](DicTrie const& trie, unsigned char const* character,
                              std::size_t bytes) { return static_cast<bool>(trie.exactMatch(character, bytes)); }) ||
               beginsLonger(code);
    }
    /// Number of words that begin with the character, up to @p most.
    std::size_t count(std::uint16_t code, std::size_t most) const {
        std::size_t words = 0;
        inAny(code, [&](DicTrie const& trie, unsigned char const* character, std::size_t bytes) {
            if (words < most)
                trie.visitFrom(character, bytes, [&](std::string const&, RecordChain) { return ++words < most; });
            return words >= most;
        });
        return words;
    }
    /// True when more words begin with @p code than with @p other.
    bool isPreferred(std::uint16_t code, std::uint16_t other) const {
        std::size_t const words = count(other, SIZE_MAX);
        return count(code, words + 1) > words;
    }

private:
    template <class Has>
    bool inAny(std::uint16_t code, Has has) const {
        std::string const character = bytesOf(code);
        return std::any_of(dics_.entries().begin(), dics_.entries().end(), [&](DicEntry const& entry) {
            DicTrie const* const trie = entry.dic->trie();
            return trie != nullptr && has(*trie, asBytes(character.data()), character.size());
        });
    }

    DicSet const& dics_;
};

/// Which widths of letters, digits and other ASCII characters the dictionaries have. All letters go together, since
/// not each of them begins a word, and all digits.
class KnownWidths {
public:
    struct Widths {
        bool wide = false, narrow = false;
    };
    explicit KnownWidths(FirstCharacters const& first) : first_(first) {
        for (CharacterRow const& row : kRows) {
            if (row.kind != Kind::Wide || !isAlnum(*row.to)) continue;
            Widths& widths = isDigit(*row.to) ? digits_ : letters_;
            widths.wide = widths.wide || first.beginsLonger(codeOf(row.from));
            widths.narrow = widths.narrow || first.beginsLonger(codeOf(*row.to));
        }
    }
    Widths of(CharacterRow const& row) const {
        if (isAlnum(*row.to)) return isDigit(*row.to) ? digits_ : letters_;
        return {first_.begins(codeOf(row.from)), first_.begins(codeOf(*row.to))};
    }

private:
    static bool isDigit(char16_t c) noexcept { return c >= u'0' && c <= u'9'; }
    static bool isAlnum(char16_t c) noexcept {
        return isDigit(c) || (c >= u'A' && c <= u'Z') || (c >= u'a' && c <= u'z');
    }

    FirstCharacters const& first_;
    Widths letters_, digits_;
};

}  // namespace

/// The converted text as far as it is made.
class Converter::Writer {
public:
    explicit Writer(std::string_view given) : given_(given) {}

    /// [begin, end) of the given text becomes @p text.
    void change(std::size_t begin, std::size_t end, std::string_view text) {
        if (given_.substr(begin, end - begin) == text) return;
        if (!made_) made_ = std::make_unique<Conversion>();
        copyTo(begin);
        auto const newBegin = static_cast<std::uint32_t>(made_->text.size());
        made_->text += text;
        made_->changes.push_back({static_cast<std::uint32_t>(begin), static_cast<std::uint32_t>(end), newBegin,
                                  static_cast<std::uint32_t>(made_->text.size())});
        copied_ = end;
    }
    /// What the last change wrote, when it ends at @p at of the given text; else nothing.
    std::string_view writtenBefore(std::size_t at) const noexcept {
        if (!made_ || copied_ != at || made_->changes.empty()) return {};
        return std::string_view(made_->text).substr(made_->changes.back().newBegin);
    }
    std::unique_ptr<Conversion> finish() {
        if (made_) copyTo(given_.size());
        return std::move(made_);
    }

private:
    void copyTo(std::size_t end) { made_->text += given_.substr(copied_, end - copied_); }

    std::string_view given_;
    std::size_t copied_ = 0;
    std::unique_ptr<Conversion> made_;
};

void Converter::bind(Settings const& settings, ConvertRules const& rules, DicSet const& dics) {
    Made wanted;
    wanted.level = settings.mode(Mode::InputConvert);
    wanted.foldsCase = settings.mode(Mode::AlphabetCapitalize) == 1;
    isOn_ = wanted.level != 0 || wanted.foldsCase;
    if (!isOn_) return;
    rules_ = &rules;
    dics_ = &dics;
    wanted.rules = rules.revision();
    for (DicEntry const& entry : dics.entries()) wanted.dics.push_back(entry.dic->serial());
    if (made_ == wanted) return;
    made_ = std::move(wanted);
    makeTables(dics);
}

void Converter::mark(std::string_view text, std::uint8_t flag) { flags_[charCode(text)] |= flag; }

void Converter::makeTables(DicSet const& dics) {
    flags_.assign(kCodes, 0);
    singles_.assign(kCodes, 0);
    voiced_.assign(kCodes, 0);
    halfVoiced_ = unvoiced_ = voiced_;
    texts_.clear();
    if (made_.level == 0) return;
    auto const add = [&](std::uint16_t from, std::string text) {
        flags_[from] |= kSingle;
        singles_[from] = static_cast<std::uint16_t>(texts_.size());
        texts_.push_back(std::move(text));
    };
    FirstCharacters const first(dics);
    KnownWidths const known(first);
    // Letters first, since what others become has letters, too.
    for (CharacterRow const& row : kRows) {
        if (row.kind != Kind::Wide) continue;
        std::string const wide = bytesOf(codeOf(row.from)), narrow = textOf(row.to);
        auto const [hasWide, hasNarrow] = known.of(row);
        if (hasWide && !hasNarrow) add(charCode(narrow), wide);
        if (hasNarrow && !hasWide) add(charCode(wide), narrow);
    }
    for (CharacterRow const& row : kRows) {
        std::uint16_t const from = codeOf(row.from);
        std::string const to = textOf(row.to);
        if (row.kind == Kind::Plain ||
            (row.kind == Kind::Variant && made_.level == 2 && first.isPreferred(charCode(to), from))) {
            std::string whole;
            for (std::size_t at = 0; at < to.size(); at += charWidth(to, at)) {
                std::string const one = to.substr(at, charWidth(to, at));
                bool const isLetter = (flags_[charCode(one)] & kSingle) != 0 && one.size() == 1;
                whole += isLetter ? texts_[singles_[charCode(one)]] : one;
            }
            add(from, whole);
            if (row.kind == Kind::Variant) flags_[from] |= kVariant;
        } else if (row.kind == Kind::Voiced || row.kind == Kind::HalfVoiced) {
            (row.kind == Kind::Voiced ? voiced_ : halfVoiced_)[from] = charCode(to);
            unvoiced_[charCode(to)] = from;
        }
    }
    for (std::uint16_t const code : kIterations) flags_[code] |= kIteration;
    for (std::uint16_t const code : {kLong, kWave, kHalfLong}) flags_[code] |= kLongVowel;
    for (ConvertRules::Rule const& rule : rules_->rules()) mark(rule.from, kRule);
}

std::unique_ptr<Conversion> Converter::convert(std::string_view text, std::span<std::uint32_t const> cuts) const {
    std::unique_ptr<Conversion> conversion;
    if (made_.level != 0) {
        Writer writer(text);
        std::size_t begin = 0;
        for (std::size_t const cut : cuts) {
            convertPiece(writer, text, begin, cut);
            begin = std::max(begin, cut);
        }
        convertPiece(writer, text, begin, text.size());
        conversion = writer.finish();
    }
    if (made_.foldsCase) foldLetters(text, cuts, conversion);
    return conversion;
}

void Converter::convertPiece(Writer& writer, std::string_view text, std::size_t begin, std::size_t end) const {
    std::string_view const piece = text.substr(0, end);
    std::size_t previous = end;  // of the character before; none at first
    for (std::size_t at = begin; at < end;) {
        std::size_t const width = charWidth(piece, at);
        auto const first = static_cast<unsigned char>(piece[at]);
        std::uint16_t const code =
            width == 2 ? static_cast<std::uint16_t>(first << 8 | static_cast<unsigned char>(piece[at + 1])) : first;
        std::size_t next = at + width;
        if (flags_[code] != 0) {
            std::string_view before = writer.writtenBefore(at);
            if (before.empty() && previous < at) before = piece.substr(previous, at - previous);
            next = convertAt(writer, piece, at, previous < at ? before : std::string_view());
        }
        previous = at;
        at = next;
    }
}

/// Converts what stands at @p at, behind the converted text @p previous; returns where to go on.
std::size_t Converter::convertAt(Writer& writer, std::string_view text, std::size_t at,
                                 std::string_view previous) const {
    std::uint16_t const code = charCode(text.substr(at));
    std::size_t const next = at + charWidth(text, at);
    std::uint8_t const flags = flags_[code];
    if ((flags & kRule) != 0) {
        if (ConvertRules::Rule const* const rule = rules_->longest(text.substr(at))) {
            writer.change(at, at + rule->from.size(), rule->to);
            return at + rule->from.size();
        }
    }
    std::uint16_t last = 0;
    for (std::size_t i = 0; i < previous.size(); i += charWidth(previous, i)) last = charCode(previous.substr(i));
    if ((flags & kIteration) != 0) {
        bool const isVoiced = code == kIterations[1] || code == kIterations[3];
        bool const fits = code == kIterations[0] || code == kIterations[1] ? isHiragana(last) : isKatakana(last);
        std::uint16_t const base = unvoiced_[last] != 0 ? unvoiced_[last] : last;
        std::uint16_t const written = isVoiced ? voiced_[base] : base;
        if (fits && written != 0 && !isInWord(text, at, next)) writer.change(at, next, bytesOf(written));
        return next;
    }
    if ((flags & kLongVowel) != 0 && (isHiragana(last) || isKatakana(last))) {
        std::size_t end = at;
        while (end < text.size() && (flags_[charCode(text.substr(end))] & kLongVowel) != 0) end += charWidth(text, end);
        if (end > next) {
            writer.change(at, end, bytesOf(kLong));
            return end;
        }
    }
    if ((flags & kSingle) == 0 || ((flags & kVariant) != 0 && hasWordWith(text, at))) return next;
    std::string_view const single = texts_[singles_[code]];
    if (code < 0x100 && next < text.size()) {
        auto const sign = static_cast<unsigned char>(text[next]);
        auto const& voiced = sign == kHalfVoicing ? voiced_ : halfVoiced_;
        std::uint16_t const joined =
            sign == kHalfVoicing || sign == kHalfHalfVoicing ? voiced[charCode(single)] : std::uint16_t{0};
        if (joined != 0) {
            writer.change(at, next + 1, bytesOf(joined));
            return next + 1;
        }
    }
    writer.change(at, next, single);
    return next;
}

/// True when a word that begins up to four kana before the iteration mark [@p at, @p next) is written with it.
bool Converter::isInWord(std::string_view text, std::size_t at, std::size_t next) const {
    for (std::size_t begin = at, kana = 0; kana != 4 && begin >= 2; ++kana) {
        begin -= 2;
        if (isInsideCharacter(text, begin)) return false;
        std::uint16_t const code = charCode(text.substr(begin));
        if (!isHiragana(code) && !isKatakana(code)) return false;
        std::string_view const word = text.substr(begin, next - begin);
        for (DicEntry const& entry : dics_->entries()) {
            DicTrie const* const trie = entry.dic->trie();
            if (trie != nullptr && (trie->exactMatch(asBytes(word.data()), word.size()) ||
                                    trie->mayContinue(asBytes(word.data()), word.size())))
                return true;
        }
    }
    return false;
}

/// True when a word of several characters is written with the kanji at @p at and begins up to three before it.
bool Converter::hasWordWith(std::string_view text, std::size_t at) const {
    for (std::size_t begin = at, before = 0; before != 4; ++before, begin -= 2) {
        for (DicEntry const& entry : dics_->entries()) {
            bool found = false;
            if (DicTrie const* const trie = entry.dic->trie())
                trie->prefixSearch(asBytes(text.data()) + begin, text.size() - begin,
                                   [&](std::size_t length, RecordChain) {
                                       found = found || (length > 2 && begin + length > at);
                                       return !found;
                                   });
            if (found) return true;
        }
        if (begin < 2 || isInsideCharacter(text, begin - 2) || charWidth(text, begin - 2) != 2) return false;
    }
    return false;
}

void Converter::foldLetters(std::string_view text, std::span<std::uint32_t const> cuts,
                            std::unique_ptr<Conversion>& conversion) const {
    // What is replaced has as many bytes, so that all places stay.
    std::string const whole = conversion ? conversion->text : std::string(text);
    auto cut = cuts.begin();
    for (std::size_t at = 0; at < whole.size();) {
        std::size_t end = letterRunEnd(whole, at);
        if (end == at) {
            at += charWidth(whole, at);
            continue;
        }
        auto const placeOf = [&](std::uint32_t place) { return conversion ? conversion->toConverted(place) : place; };
        while (cut != cuts.end() && placeOf(*cut) <= at) ++cut;
        if (cut != cuts.end()) end = std::min(end, static_cast<std::size_t>(placeOf(*cut)));
        if (std::string const found = wordInAnyCase(*dics_, std::string_view(whole).substr(at, end - at));
            !found.empty()) {
            if (!conversion) conversion = std::make_unique<Conversion>(Conversion{std::string(text), {}});
            conversion->text.replace(at, found.size(), found);
        }
        at = end;
    }
}

}  // namespace TAVO
