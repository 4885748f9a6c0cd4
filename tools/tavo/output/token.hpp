// The words of an analysed text as pieces of what was read.
#ifndef TAVO_TOOL_TOKEN_HPP
#define TAVO_TOOL_TOKEN_HPP

#include "output/line_text.hpp"

#include "result/mrph_access.hpp"

#include <tavo/tavo.hpp>

#include <algorithm>
#include <cstddef>
#include <vector>

namespace tool {

/// Sentences [first, end) of an analyser, which stand side by side from a Shift_JIS offset of its text on.
struct Sentences {
    int first;
    int end;
    std::size_t start;
};

/// An analysis to write.
struct Analysis {
    LineText const& text;
    TAVO::Tavo& analyser;  // has analysed the text
    Sentences sentences;   // those to write
    /// Those of the text's only sentence; null: each sentence's best analysis.
    std::vector<TAVO::Mrph> const* morphemes = nullptr;
};

/// Bytes [begin, end) of LineText::original(), never empty.
struct Token {
    std::size_t begin;
    std::size_t end;
    /// Null for text that has no analysis.
    TAVO::Mrph const* morpheme;
};

/// Cuts a sentence into tokens, word after word.
class TokenCursor {
public:
    /// A sentence of @p text from Shift_JIS offset @p start to @p end.
    TokenCursor(LineText const& text, std::size_t start, std::size_t end)
        : text_(text),
          position_(start),
          sentenceEnd_(std::min(end, text.sjis().size())),
          begin_(text.originalOffset(start)) {}

    /// Calls visit(Token) for the next word, of @p length bytes in Shift_JIS.
    template <class Visit>
    void next(std::size_t length, TAVO::Mrph const* morpheme, Visit const& visit) {
        position_ = std::min(position_ + length, sentenceEnd_);
        std::size_t const end = text_.originalOffset(position_);
        // Half a character at the end of a word belongs to the word before it.
        if (end > begin_) visit(Token{begin_, end, morpheme});
        begin_ = end;
    }
    /// The rest, which has no analysis. Returns the sentence's end.
    template <class Visit>
    std::size_t finish(Visit const& visit) {
        if (position_ < sentenceEnd_) next(sentenceEnd_ - position_, nullptr, visit);
        return sentenceEnd_;
    }

private:
    LineText const& text_;
    std::size_t position_;
    std::size_t sentenceEnd_;
    std::size_t begin_;  // of the next token
};

/// Calls visit(Token) for the words of sentence @p sentence, which starts at
/// Shift_JIS offset @p start of the text; together they are its bytes. Returns
/// the offset where the sentence ends. @p scratch keeps its memory between calls.
template <class Visit>
std::size_t forEachToken(Analysis const& analysis, int sentence, std::size_t start, std::vector<TAVO::Mrph>& scratch,
                         Visit&& visit) {
    std::size_t end = start + analysis.analyser.getSentenceLength(sentence);
    if (analysis.morphemes == nullptr) analysis.analyser.getResult(scratch, sentence);
    std::vector<TAVO::Mrph> const& morphemes = analysis.morphemes == nullptr ? scratch : *analysis.morphemes;
    if (analysis.analyser.getTaggedInputMode() == 1) {
        // Annotations come out beside the sentence's text.
        for (TAVO::Mrph const& morpheme : morphemes)
            if (morpheme.isAnnotation()) end += TAVO::MrphAccess::rawForm(morpheme).size();
    }
    TokenCursor cursor(analysis.text, start, end);
    for (TAVO::Mrph const& morpheme : morphemes)
        cursor.next(TAVO::MrphAccess::rawForm(morpheme).size(), &morpheme, visit);
    return cursor.finish(visit);
}

/// What a writer keeps from one analysis to the next.
struct TokenScratch {
    std::vector<TAVO::Mrph> morphemes;
    std::vector<unsigned int> lengths;
};

/// The tokens of all sentences of @p analysis without their morphemes.
template <class Visit>
void forEachPiece(Analysis const& analysis, TokenScratch& scratch, Visit const& visit) {
    bool const needsMorphemes = analysis.morphemes != nullptr || analysis.analyser.getTaggedInputMode() == 1;
    std::size_t position = analysis.sentences.start;
    for (int sentence = analysis.sentences.first; sentence != analysis.sentences.end; ++sentence) {
        if (needsMorphemes) {
            position = forEachToken(analysis, sentence, position, scratch.morphemes, visit);
            continue;
        }
        analysis.analyser.getLengths(scratch.lengths, sentence);
        TokenCursor cursor(analysis.text, position, position + analysis.analyser.getSentenceLength(sentence));
        for (unsigned int const length : scratch.lengths) cursor.next(length, nullptr, visit);
        position = cursor.finish(visit);
    }
}

/// All sentences of @p analysis: visit(Token), then endSentence() after each.
template <class Visit, class EndSentence>
void forEachToken(Analysis const& analysis, std::vector<TAVO::Mrph>& scratch, Visit&& visit,
                  EndSentence&& endSentence) {
    std::size_t position = analysis.sentences.start;
    for (int sentence = analysis.sentences.first; sentence != analysis.sentences.end; ++sentence) {
        position = forEachToken(analysis, sentence, position, scratch, visit);
        endSentence();
    }
}

}  // namespace tool

#endif
