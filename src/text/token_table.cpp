#include "text/token_table.hpp"

#include "base/utf8.hpp"
#include "core/impl.hpp"
#include "result/assembly.hpp"
#include "result/mrph_access.hpp"
#include "text/characters.hpp"

#include <tavo/error.hpp>

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace TAVO {

namespace {

/// Short texts are searched together, with at most so many bytes.
constexpr std::size_t kMostTogether = 4096;
/// A line is searched in pieces of at most so many bytes.
constexpr std::size_t kMostBytes = kMaxSentenceBytes;

/// Runs of words that come out as one.
struct JoinPieces {
    WordTable& words;
    char const* text;  // of the sentence

    static void append(std::vector<WordPiece>& out, std::size_t, WordPiece piece) { out.push_back(piece); }
    void join(std::vector<WordPiece>::iterator first, std::vector<WordPiece>::iterator end, std::uint16_t pid) {
        std::uint32_t const length = end[-1].begin + end[-1].length - first->begin;
        first->word = words.joined(std::span(first, end), {text + first->begin, length}, pid);
        first->length = length;
    }
};

bool isBlankByte(char c) noexcept { return c == ' ' || (c >= '\t' && c <= '\r'); }
bool isBreak(char c) noexcept { return c == '\n' || c == '\r'; }
bool isBlank(std::string_view text) noexcept { return std::all_of(text.begin(), text.end(), isBlankByte); }

/// The length of the piece of @p text to analyse next: up to a line break where it is long.
std::size_t pieceLength(std::string_view text, bool breaksAreText, TextEncoding encoding) noexcept {
    if (text.size() <= kMostTogether) return text.size();
    if (!breaksAreText) {
        std::size_t const before = text.rfind('\n', kMostTogether);
        std::size_t const end = before != std::string_view::npos ? before : text.find('\n');
        if (end < kMostBytes) return end + 1;
    }
    return lengthWithin(text, kMostBytes, encoding);
}

std::uint32_t lengthOf(WordPiece const& piece) noexcept { return piece.length; }
std::uint32_t lengthOf(unsigned int length) noexcept { return length; }
std::uint32_t wordOf(WordPiece const& piece) noexcept { return piece.word; }
std::uint32_t wordOf(unsigned int) noexcept { return WordTable::kNone; }

}  // namespace

std::size_t lengthWithin(std::string_view text, std::size_t limit, TextEncoding encoding) noexcept {
    if (text.size() <= limit) return text.size();
    if (encoding == TextEncoding::Sjis) {
        std::size_t at = 0;
        for (std::size_t next = 0; next <= limit; next += charWidth(text, next)) at = next;
        return at;
    }
    auto const continues = [&](std::size_t at) { return (static_cast<unsigned char>(text[at]) & 0xC0U) == 0x80; };
    constexpr std::size_t kMostContinuationBytes = 3;
    for (std::size_t back = 0; back <= kMostContinuationBytes && back < limit; ++back)
        if (!continues(limit - back)) return limit - back;
    return limit;  // no character, so nothing to keep whole
}

TokenTable::TokenTable(std::shared_ptr<LexiconVersion const> version, TokenizerOptions const& options)
    : version_(std::move(version)),
      options_{.keepBlanks = options.keepBlanks, .values = {}},
      analyser_(version_->prototype()),
      words_(TavoAccess::impl(analyser_).context, version_.get(), options_.encoding, {}) {
    TavoAccess::impl(analyser_).reduce.setWholeWord(SjisBuffer::kUnknownCharacter);
    hasMarkup_ = !TavoAccess::impl(analyser_).comments.empty();
}

TokenTable::TokenTable(Tavo const& prototype, TokenTableOptions options)
    : options_(std::move(options)),
      analyser_(prototype),
      words_(TavoAccess::impl(analyser_).context, nullptr, options_.encoding, options_.values) {
    if (options_.encoding == TextEncoding::Utf8)
        TavoAccess::impl(analyser_).reduce.setWholeWord(SjisBuffer::kUnknownCharacter);
    analyser_.setTaggedInputMode(0);
    analyser_.setDelimitCRLFMode(1);
    analyser_.setDeleteCRLFMode(1);
    hasMarkup_ = !TavoAccess::impl(analyser_).comments.empty();
}

void TokenTable::setBreaksAreText(bool areText) {
    if (breaksAreText_ == areText) return;
    breaksAreText_ = areText;
    analyser_.setDelimitCRLFMode(areText ? 0 : 1);
    analyser_.setDeleteCRLFMode(areText ? 0 : 1);
}

void TokenTable::start(std::span<std::string_view const> texts) {
    for (std::string_view const text : texts)
        if (text.size() >= UINT32_MAX)
            throw std::invalid_argument("INVALID_ARGUMENT: Tokenizer::tokenize(): a text has " +
                                        std::to_string(text.size()) +
                                        " bytes; give it in parts of less than 4294967295");
    if (words_.isLarge()) words_.clear();
    texts_.assign(texts.begin(), texts.end());
    for (auto* const column :
         {&firstOfText_, &begin_, &end_, &word_, &sentenceEnds_, &firstSentence_, &connectionCosts_, &wordCosts_})
        column->clear();
    invalidBytes_.assign(texts.size(), 0);
    hasOwnText_ = false;
    characters_.made = utf16_.made = false;
    buffer_.clear();
    segments_.clear();
}

void TokenTable::tokenize(std::span<std::string_view const> texts) {
    start(texts);
    for (std::uint32_t text = 0; text != texts_.size(); ++text) addText(text);
    analyse();
    finish();
}

void TokenTable::finish() {
    beginTextsUpTo(texts_.size());
    analyser_.analyze(nullptr, 0);
    buffer_.clear();
    segments_.clear();
}

TokenTable::Segment TokenTable::addToBuffer(std::string_view piece, std::uint32_t base, std::uint32_t text) {
    std::size_t const invalidBytes = buffer_.invalidBytes();
    Segment const segment{buffer_.add(piece, base, options_.encoding), text};
    invalidBytes_[text] += static_cast<std::uint32_t>(buffer_.invalidBytes() - invalidBytes);
    return segment;
}

void TokenTable::addText(std::uint32_t text) {
    std::string_view rest = texts_[text];
    while (!rest.empty()) {
        std::string_view const piece = rest.substr(0, pieceLength(rest, breaksAreText_, options_.encoding));
        if (!segments_.empty() && buffer_.sjis().size() + piece.size() > kMostTogether) analyse();
        auto const base = static_cast<std::uint32_t>(piece.data() - texts_[text].data());
        segments_.push_back(addToBuffer(piece, base, text));
        // What follows must not be taken for a part of it, nor the line break for half a character.
        bool const endsInside =
            options_.encoding == TextEncoding::Sjis && isInsideCharacter(buffer_.sjis(), buffer_.sjis().size());
        if (breaksAreText_ || endsInside || hasMarkup_) analyse();
        rest.remove_prefix(piece.size());
    }
}

void TokenTable::beginTextsUpTo(std::size_t text) {
    while (firstOfText_.size() <= text) {
        firstOfText_.push_back(static_cast<std::uint32_t>(begin_.size()));
        firstSentence_.push_back(static_cast<std::uint32_t>(sentenceEnds_.size()));
    }
}

void TokenTable::analyse() {
    if (segments_.empty()) return;
    std::string_view const sjis = buffer_.sjis();
    analyser_.analyze(sjis.data(), static_cast<int>(sjis.size()));
    std::vector<Sentence> const& sentences = TavoAccess::impl(analyser_).context.sentences;
    auto segment = segments_.begin();
    for (std::size_t i = 0; i != sentences.size(); ++i) {
        auto const at = static_cast<std::size_t>(sentences[i].given.data() - sjis.data());
        while (at >= segment->range.end) ++segment;
        beginTextsUpTo(segment->text);
        addSentence(sentences[i], static_cast<int>(i), *segment);
    }
    buffer_.clear();
    segments_.clear();
}

void TokenTable::addSentence(Sentence const& sentence, int index, Segment const& segment) {
    AnalyzerContext& context = TavoAccess::impl(analyser_).context;
    ReduceRules& reduce = TavoAccess::impl(analyser_).reduce;
    bool const isPending = sentence.path.isPending();
    if (isPending || options_.surfacesOnly) {
        reduce.bind(context.pos, context.settings);
        if (isPending) reduce.bindColumns(*context.connTable);
    }
    if (options_.surfacesOnly) {
        lengths_.clear();
        if (appendLengths(lengths_, context, reduce, sentence)) return addItems(lengths_, sentence, segment);
    }
    pieces_.clear();
    if (isPending && !sentence.markup && !sentence.conversion && reduce.phrases().empty() &&
        context.settings.mode(Mode::DivideWord) != 1) {
        RunAppender<WordPiece, JoinPieces> joiner(reduce, pieces_, JoinPieces{words_, sentence.text.data()});
        char const* const text = sentence.text.data();
        sentence.path.visitPending([&](PendingWord const& word) {
            joiner.append(reduce.membershipOf(word), {word.text, word.length},
                          WordPiece{words_.number(word), static_cast<std::uint32_t>(word.text - text), word.length});
        });
        joiner.finish();
        return addItems(pieces_, sentence, segment);
    }
    analyser_.getResult(morphemes_, index);
    addPath(morphemes_, sentence, segment);
}

void TokenTable::addPath(std::vector<Mrph> const& path, Sentence const& sentence, Segment const& segment) {
    pieces_.clear();
    for (Mrph const& morpheme : path) {
        auto const length = static_cast<std::uint32_t>(MrphAccess::rawForm(morpheme).size());
        pieces_.push_back({options_.surfacesOnly ? WordTable::kNone : words_.number(morpheme), 0, length});
    }
    addItems(pieces_, sentence, segment);
}

bool TokenTable::isWord(std::string_view text, std::size_t begin, std::size_t end) const noexcept {
    // Half a character at the end of a word belongs to the word before it.
    return end > begin &&
           (options_.keepBlanks || !isBlankByte(text[begin]) || !isBlank(text.substr(begin, end - begin)));
}

template <class Item>
void TokenTable::addItems(std::vector<Item> const& items, Sentence const& sentence, Segment const& segment) {
    auto at = static_cast<std::size_t>(sentence.given.data() - buffer_.sjis().data());
    std::size_t const sentenceEnd = std::min(at + sentence.text.size(), segment.range.end);
    std::string_view const text = texts_[segment.text];
    // Marks at the beginning of a line belong to its first word.
    bool const behindBreak = !breaksAreText_ && at != segment.range.begin && isBreak(buffer_.sjis()[at - 1]);
    std::uint32_t begin = behindBreak ? buffer_.offset(at - 1) + 1 : buffer_.offset(at);
    auto const add = [&](std::size_t itemEnd, std::uint32_t word) {
        at = std::min(itemEnd, sentenceEnd);
        std::uint32_t const end = buffer_.offset(at);
        if (isWord(text, begin, end)) addToken(begin, end, word);
        begin = end;
    };
    for (Item const& item : items) add(at + lengthOf(item), wordOf(item));
    if (at < sentenceEnd) add(sentenceEnd, WordTable::kNone);
    endSentence();
}

std::uint32_t TokenTable::textId(std::size_t token, std::size_t text, TokenText which) {
    return textIdOf(word_[token], surface(token, text), which);
}

std::uint32_t TokenTable::textIdOf(std::uint32_t word, std::string_view surface, TokenText which) {
    std::uint32_t const found = words_.text(word, which);
    if (found != WordTable::kSurface) return found;
    if (which == TokenText::Normalized) return strings().add(normalizedText(withoutSkipped(surface, scratch_)));
    std::uint32_t const usual = words_.spelling(word, surface);
    return usual != WordTable::kNotYet ? usual : strings().add(withoutSkipped(surface, scratch_));
}

std::string_view TokenTable::shownText(std::size_t token, std::size_t text) {
    if (!hasOwnText_ || !word(token).isAnnotation) return surface(token, text);
    return strings().text(words_.text(word_[token], TokenText::Annotation));
}

std::string_view TokenTable::value(std::size_t token, std::string_view shown, std::size_t index) {
    std::uint32_t const found = words_.value(word_[token], index);
    if (found != WordTable::kSurface) return strings().text(found);
    return options_.encoding == TextEncoding::Utf8 ? withoutSkipped(shown, scratch_) : shown;
}

TokenTable::Positions const& TokenTable::made(Positions& positions, bool utf16) {
    if (positions.made) return positions;
    positions.begin.resize(begin_.size());
    positions.end.resize(begin_.size());
    for (std::size_t text = 0; text != texts_.size(); ++text) {
        std::size_t byte = 0;
        std::uint32_t count = 0;
        auto const countTo = [&](std::size_t end) {
            while (byte < end) {
                Utf8Char const c = decodeUtf8(texts_[text].substr(byte));
                byte += c.bytes;
                count += utf16 && c.bytes == 4 ? 2 : 1;
            }
            return count;
        };
        for (std::size_t token = firstOfText_[text]; token != firstOfText_[text + 1]; ++token) {
            positions.begin[token] = countTo(begin_[token]);
            positions.end[token] = countTo(end_[token]);
        }
    }
    positions.made = true;
    return positions;
}

}  // namespace TAVO
