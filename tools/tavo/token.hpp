// The words of an analysed text as pieces of what was read.
#ifndef TAVO_TOOL_TOKEN_HPP
#define TAVO_TOOL_TOKEN_HPP

#include "line_text.hpp"

#include "result/mrph_access.hpp"

#include <tavo/tavo.hpp>

#include <algorithm>
#include <cstddef>
#include <vector>

namespace tool {

/// An analysis to write.
struct Analysis {
    LineText const& text;
    TAVO::Tavo& analyser;  // has analysed the text
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

/// Calls visit(Token) for the words of sentence @p sentence, which starts at
/// Shift_JIS offset @p start of the text; together they are its bytes. Returns
/// the offset where the sentence ends. @p scratch keeps its memory between calls.
template <class Visit>
std::size_t forEachToken(Analysis const& analysis, int sentence, std::size_t start, std::vector<TAVO::Mrph>& scratch,
                         Visit&& visit) {
    LineText const& text = analysis.text;
    std::size_t sentenceEnd = std::min(start + analysis.analyser.getSentenceLength(sentence), text.sjis().size());
    std::size_t begin = text.originalOffset(start);
    std::size_t position = start;
    auto const emit = [&](std::size_t to, TAVO::Mrph const* morpheme) {
        position = std::min(to, sentenceEnd);
        std::size_t const end = text.originalOffset(position);
        // Half a character at the end of a word belongs to the word before it.
        if (end > begin) visit(Token{begin, end, morpheme});
        begin = end;
    };
    if (analysis.morphemes == nullptr) analysis.analyser.getResult(scratch, sentence);
    std::vector<TAVO::Mrph> const& morphemes = analysis.morphemes == nullptr ? scratch : *analysis.morphemes;
    if (analysis.analyser.getTaggedInputMode() == 1) {
        // Annotations come out beside the sentence's text.
        for (TAVO::Mrph const& morpheme : morphemes)
            if (morpheme.isAnnotation()) sentenceEnd += TAVO::MrphAccess::rawForm(morpheme).size();
        sentenceEnd = std::min(sentenceEnd, text.sjis().size());
    }
    for (TAVO::Mrph const& morpheme : morphemes) emit(position + TAVO::MrphAccess::rawForm(morpheme).size(), &morpheme);
    if (position < sentenceEnd) emit(sentenceEnd, nullptr);
    return sentenceEnd;
}

/// All sentences of @p analysis: visit(Token), then endSentence() after each.
template <class Visit, class EndSentence>
void forEachToken(Analysis const& analysis, std::vector<TAVO::Mrph>& scratch, Visit&& visit,
                  EndSentence&& endSentence) {
    auto const sentences = static_cast<int>(analysis.analyser.getSentenceCount());
    std::size_t position = 0;
    for (int sentence = 0; sentence < sentences; ++sentence) {
        position = forEachToken(analysis, sentence, position, scratch, visit);
        endSentence();
    }
}

}  // namespace tool

#endif
