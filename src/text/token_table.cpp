#include "text/token_table.hpp"

#include "base/utf8.hpp"
#include "core/impl.hpp"
#include "result/mrph_access.hpp"
#include "text/characters.hpp"

#include <tavo/error.hpp>

#include <algorithm>
#include <limits>
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
std::size_t pieceLength(std::string_view text) noexcept {
    if (text.size() <= kMostTogether) return text.size();
    std::size_t const before = text.rfind('\n', kMostTogether);
    std::size_t const end = before != std::string_view::npos ? before : text.find('\n');
    if (end < kMostBytes) return end + 1;
    if (text.size() <= kMostBytes) return text.size();
    auto const continues = [&](std::size_t at) { return (static_cast<unsigned char>(text[at]) & 0xC0U) == 0x80; };
    constexpr std::size_t kMostContinuationBytes = 3;
    for (std::size_t back = 0; back <= kMostContinuationBytes; ++back)
        if (!continues(kMostBytes - back)) return kMostBytes - back;
    return kMostBytes;  // no character, so nothing to keep whole
}

}  // namespace

TokenTable::TokenTable(std::shared_ptr<LexiconVersion const> version, TokenizerOptions const& options)
    : version_(std::move(version)),
      options_(options),
      analyser_(version_->prototype()),
      words_(TavoAccess::impl(analyser_).context, *version_) {
    TavoAccess::impl(analyser_).reduce.setWholeWord(SjisBuffer::kUnknownCharacter);
}

void TokenTable::start(std::span<std::string_view const> texts) {
    for (std::string_view const text : texts)
        if (text.size() >= UINT32_MAX)
            throw std::invalid_argument("INVALID_ARGUMENT: Tokenizer::tokenize(): a text has " +
                                        std::to_string(text.size()) +
                                        " bytes; give it in parts of less than 4294967295");
    if (words_.isLarge()) words_.clear();
    texts_.assign(texts.begin(), texts.end());
    for (auto* const column : {&firstOfText_, &begin_, &end_, &word_, &connectionCosts_, &wordCosts_}) column->clear();
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

void TokenTable::tokenizeNBest(std::string_view text, int n) {
    if (n < 1) throw std::invalid_argument("INVALID_ARGUMENT: Tokenizer::nBest(): n is " + std::to_string(n));
    start({&text, 1});
    std::size_t rows = 1;
    std::vector<std::vector<std::vector<Mrph>>> paths;
    std::vector<std::vector<PathCost>> costs;
    Segment const segment{buffer_.add(text, 0), 0};
    if (buffer_.sjis().size() > static_cast<std::size_t>(std::numeric_limits<int>::max()))
        throw too_long_string("Exceed nbest limit: length=" + std::to_string(text.size()));
    analyser_.analyzeNBest(buffer_.sjis().data(), static_cast<int>(buffer_.sjis().size()));
    std::vector<Sentence> const& sentences = TavoAccess::impl(analyser_).context.sentences;
    paths.resize(sentences.size());
    costs.resize(sentences.size());
    for (std::size_t i = 0; i != sentences.size(); ++i) {
        analyser_.getResultNBest(paths[i], costs[i], static_cast<int>(i), n);
        rows = std::max(rows, paths[i].size());
    }
    texts_.assign(rows, text);
    for (std::size_t row = 0; row != rows; ++row) {
        beginTextsUpTo(row);
        PathCost sum{0, 0};
        for (std::size_t i = 0; i != sentences.size(); ++i) {
            std::size_t const at = std::min(row, paths[i].size() - 1);
            addPath(paths[i][at], sentences[i], {segment.range, static_cast<std::uint32_t>(row)});
            sum.connection += costs[i][at].connection;
            sum.word += costs[i][at].word;
        }
        connectionCosts_.push_back(sum.connection);
        wordCosts_.push_back(sum.word);
    }
    finish();
}

void TokenTable::tokenizeTagged(std::string_view text) {
    start({&text, 1});
    hasOwnText_ = true;
    plainText_.clear();
    analyser_.setTaggedInputMode(1);
    try {
        for (std::string_view rest = text; !rest.empty();) {
            std::size_t const end = std::min(rest.find('\n'), rest.size());
            addTaggedLine(rest.substr(0, end));
            if (end != rest.size()) plainText_ += '\n';
            rest.remove_prefix(std::min(end + 1, rest.size()));
        }
    } catch (...) {
        analyser_.setTaggedInputMode(0);
        throw;
    }
    analyser_.setTaggedInputMode(0);
    texts_.front() = plainText_;
    firstOfText_.push_back(0);
    finish();
}

/// A line of tagged text; tokens count in the plain text.
void TokenTable::addTaggedLine(std::string_view line) {
    if (line.size() > kMostBytes)
        throw too_long_string("a line of tagged text has " + std::to_string(line.size()) + " bytes");
    line_.assignTaggedUtf8(line);
    analyser_.analyze(line_.sjis().data(), static_cast<int>(line_.sjis().size()));
    LineText const& shown = taggedLine_.strip(line_, analyser_);
    auto at = static_cast<std::uint32_t>(plainText_.size());
    plainText_ += taggedLine_.plainText();
    std::size_t position = 0;  // in shown
    std::size_t begin = 0;
    auto const add = [&](std::size_t length, std::uint32_t word) {
        position = std::min(position + length, shown.sjis().size());
        std::size_t const end = shown.originalOffset(position);
        auto const bytes = static_cast<std::uint32_t>(words_.word(word).isAnnotation ? 0 : end - begin);
        bool const isWord = end > begin && (options_.keepBlanks || !isBlank(shown.slice(begin, end)));
        if (isWord) addToken(at, at + bytes, word);
        if (words_.word(word).isAnnotation) words_.setAnnotation(word, shown.slice(begin, end));
        at += bytes;
        begin = end;
    };
    std::vector<Sentence> const& sentences = TavoAccess::impl(analyser_).context.sentences;
    for (std::size_t i = 0; i != sentences.size(); ++i) {
        analyser_.getResult(morphemes_, static_cast<int>(i));
        std::size_t end = position + sentences[i].text.size();
        for (Mrph const& morpheme : morphemes_) {
            std::size_t const length = MrphAccess::rawForm(morpheme).size();
            if (morpheme.isAnnotation()) end += length;
            add(length, words_.number(morpheme));
        }
        if (position < end) add(end - position, WordTable::kNone);
    }
}

void TokenTable::addText(std::uint32_t text) {
    std::string_view rest = texts_[text];
    while (!rest.empty()) {
        std::string_view const piece = rest.substr(0, pieceLength(rest));
        if (!segments_.empty() && buffer_.sjis().size() + piece.size() > kMostTogether) analyse();
        auto const base = static_cast<std::uint32_t>(piece.data() - texts_[text].data());
        segments_.push_back({buffer_.add(piece, base), text});
        rest.remove_prefix(piece.size());
    }
}

void TokenTable::beginTextsUpTo(std::size_t text) {
    while (firstOfText_.size() <= text) firstOfText_.push_back(static_cast<std::uint32_t>(begin_.size()));
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
    auto const at = static_cast<std::size_t>(sentence.given.data() - buffer_.sjis().data());
    pieces_.clear();
    if (sentence.path.isPending() && !sentence.markup && !sentence.conversion && reduce.phrases().empty() &&
        context.settings.mode(Mode::DivideWord) != 1) {
        reduce.bind(context.pos, context.settings);
        reduce.bindColumns(*context.connTable);
        RunAppender<WordPiece, JoinPieces> joiner(reduce, pieces_, JoinPieces{words_, sentence.text.data()});
        char const* const text = sentence.text.data();
        sentence.path.visitPending([&](PendingWord const& word) {
            joiner.append(reduce.membershipOf(word), {word.text, word.length},
                          WordPiece{words_.number(word), static_cast<std::uint32_t>(word.text - text), word.length});
        });
        joiner.finish();
        return addPieces(sentence, at, segment);
    }
    analyser_.getResult(morphemes_, index);
    addPath(morphemes_, sentence, segment);
}

void TokenTable::addPath(std::vector<Mrph> const& path, Sentence const& sentence, Segment const& segment) {
    pieces_.clear();
    std::uint32_t begin = 0;
    for (Mrph const& morpheme : path) {
        auto const length = static_cast<std::uint32_t>(MrphAccess::rawForm(morpheme).size());
        pieces_.push_back({words_.number(morpheme), begin, length});
        begin += length;
    }
    addPieces(sentence, static_cast<std::size_t>(sentence.given.data() - buffer_.sjis().data()), segment);
}

void TokenTable::addPieces(Sentence const& sentence, std::size_t at, Segment const& segment) {
    auto const size = static_cast<std::uint32_t>(sentence.text.size());
    std::uint32_t const covered = pieces_.empty() ? 0 : pieces_.back().begin + pieces_.back().length;
    if (covered < size) pieces_.push_back({WordTable::kNone, covered, size - covered});
    std::string_view const text = texts_[segment.text];
    // Marks at the beginning of a line belong to its first word.
    bool const behindBreak = at != segment.range.begin && isBreak(buffer_.sjis()[at - 1]);
    std::uint32_t begin = behindBreak ? buffer_.offset(at - 1) + 1 : buffer_.offset(at);
    for (WordPiece const& piece : pieces_) {
        at = std::min(at + piece.length, segment.range.end);
        std::uint32_t const end = buffer_.offset(at);
        // Half a character at the end of a word belongs to the word before it.
        bool const isWord = end > begin && (options_.keepBlanks || !isBlankByte(text[begin]) ||
                                            !isBlank(text.substr(begin, end - begin)));
        if (isWord) addToken(begin, end, piece.word);
        begin = end;
    }
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
