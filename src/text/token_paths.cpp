// Tokens of several analyses of one text, and of tagged text.
#include "core/impl.hpp"
#include "result/mrph_access.hpp"
#include "text/token_table.hpp"

#include <tavo/error.hpp>

#include <algorithm>
#include <limits>
#include <optional>
#include <stdexcept>

namespace TAVO {

/// Where the adding of a tagged line's words stands.
struct TokenTable::TaggedPlace {
    LineText const& shown;     // the line without its tags, with annotations
    std::uint32_t at;          // in the plain text
    std::size_t position = 0;  // in shown's Shift_JIS
    std::size_t begin = 0;     // the same in shown
};

/// The N-best paths of @p text, which is in Shift_JIS: add(path, sentence, row) for each path of each row.
template <class Body>
void TokenTable::eachAnalysis(std::string_view text, int n, Body add) {
    if (n < 1) throw std::invalid_argument("INVALID_ARGUMENT: Tokenizer::nBest(): n is " + std::to_string(n));
    if (text.size() > static_cast<std::size_t>(std::numeric_limits<int>::max()))
        throw too_long_string("Exceed nbest limit: length=" + std::to_string(text.size()));
    analyser_.analyzeNBest(text.data(), static_cast<int>(text.size()));
    std::vector<Sentence> const& sentences = TavoAccess::impl(analyser_).context.sentences;
    std::vector<std::vector<std::vector<Mrph>>> paths(sentences.size());
    std::vector<std::vector<PathCost>> costs(sentences.size());
    std::size_t rows = 1;
    for (std::size_t i = 0; i != sentences.size(); ++i) {
        analyser_.getResultNBest(paths[i], costs[i], static_cast<int>(i), n);
        rows = std::max(rows, paths[i].size());
    }
    texts_.assign(rows, texts_.front());
    for (std::size_t row = 0; row != rows; ++row) {
        beginTextsUpTo(row);
        PathCost sum{0, 0};
        for (std::size_t i = 0; i != sentences.size(); ++i) {
            std::size_t const at = std::min(row, paths[i].size() - 1);
            add(paths[i][at], sentences[i], static_cast<std::uint32_t>(row));
            sum.connection += costs[i][at].connection;
            sum.word += costs[i][at].word;
        }
        connectionCosts_.push_back(sum.connection);
        wordCosts_.push_back(sum.word);
    }
}

void TokenTable::tokenizeNBest(std::string_view text, int n) {
    start({&text, 1});
    Segment const segment = addToBuffer(text, 0, 0);
    eachAnalysis(buffer_.sjis(), n, [&](std::vector<Mrph> const& path, Sentence const& sentence, std::uint32_t row) {
        addPath(path, sentence, {segment.range, row});
    });
    finish();
}

/// @p body with the mode of tagged input; text(0) becomes the plain text that it makes.
template <class Body>
void TokenTable::asTagged(Body body) {
    hasOwnText_ = true;
    plainText_.clear();
    analyser_.setTaggedInputMode(1);
    try {
        body();
    } catch (...) {
        analyser_.setTaggedInputMode(0);
        throw;
    }
    analyser_.setTaggedInputMode(0);
    std::size_t const size = plainText_.size();
    plainText_.append(kPaddingBytes, '\0');
    texts_.assign(texts_.size(), std::string_view(plainText_).substr(0, size));
    finish();
}

void TokenTable::tokenizeTagged(std::string_view text) {
    start({&text, 1});
    asTagged([&] {
        beginTextsUpTo(0);
        for (std::string_view rest = text; !rest.empty();) {
            std::size_t const end = std::min(rest.find('\n'), rest.size());
            for (std::string_view line = rest.substr(0, end); !line.empty();) {
                std::size_t const length = lengthWithin(line, kMaxSentenceBytes, options_.encoding);
                addTaggedLine(line.substr(0, length));
                line.remove_prefix(length);
            }
            if (end != rest.size()) plainText_ += '\n';
            rest.remove_prefix(std::min(end + 1, rest.size()));
        }
    });
}

void TokenTable::tokenizeTaggedNBest(std::string_view line, int n) {
    start({&line, 1});
    asTagged([&] {
        assignLine(line);
        LineText const* shown = nullptr;
        std::optional<TaggedPlace> place;
        std::uint32_t last = UINT32_MAX;
        eachAnalysis(line_.sjis(), n, [&](std::vector<Mrph> const& path, Sentence const& sentence, std::uint32_t row) {
            if (shown == nullptr) shown = &taggedLine_.strip(line_, analyser_);
            if (row != last) place.emplace(TaggedPlace{*shown, 0});
            last = row;
            addTaggedPath(path, sentence, *place);
        });
        plainText_ = shown != nullptr ? taggedLine_.plainText() : "";
    });
}

void TokenTable::assignLine(std::string_view line) {
    options_.encoding == TextEncoding::Utf8 ? line_.assignTaggedUtf8(line) : line_.assignSjis(line);
    invalidBytes_.front() += static_cast<std::uint32_t>(line_.invalidBytes());
}

/// A line of tagged text; tokens count in the plain text.
void TokenTable::addTaggedLine(std::string_view line) {
    assignLine(line);
    analyser_.analyze(line_.sjis().data(), static_cast<int>(line_.sjis().size()));
    TaggedPlace place{taggedLine_.strip(line_, analyser_), static_cast<std::uint32_t>(plainText_.size())};
    plainText_ += taggedLine_.plainText();
    std::vector<Sentence> const& sentences = TavoAccess::impl(analyser_).context.sentences;
    for (std::size_t i = 0; i != sentences.size(); ++i) {
        analyser_.getResult(morphemes_, static_cast<int>(i));
        addTaggedPath(morphemes_, sentences[i], place);
    }
}

void TokenTable::addTaggedPath(std::vector<Mrph> const& path, Sentence const& sentence, TaggedPlace& place) {
    LineText const& shown = place.shown;
    auto const add = [&](std::size_t length, std::uint32_t word) {
        place.position = std::min(place.position + length, shown.sjis().size());
        std::size_t const begin = place.begin, end = shown.originalOffset(place.position);
        bool const isAnnotation = words_.word(word).isAnnotation;
        auto const bytes = static_cast<std::uint32_t>(isAnnotation ? 0 : end - begin);
        if (isWord(shown.original(), begin, end)) addToken(place.at, place.at + bytes, word);
        if (isAnnotation) words_.setAnnotation(word, shown.slice(begin, end));
        place.at += bytes;
        place.begin = end;
    };
    std::size_t end = place.position + sentence.text.size();
    for (Mrph const& morpheme : path) {
        std::size_t const length = MrphAccess::rawForm(morpheme).size();
        if (morpheme.isAnnotation()) end += length;
        add(length, words_.number(morpheme));
    }
    if (place.position < end) add(end - place.position, WordTable::kNone);
    endSentence();
}

}  // namespace TAVO
