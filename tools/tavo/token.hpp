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

/// Bytes [begin, end) of LineText::original(), never empty.
struct Token {
    std::size_t begin;
    std::size_t end;
    /// Null for text that has no analysis.
    TAVO::Mrph const* morpheme;
};

/// Calls visit(Token) for the words of sentence @p sentence, which starts at
/// Shift_JIS offset @p start of @p text; together they are its bytes. Returns
/// the offset where the sentence ends. @p scratch keeps its memory between calls.
template <class Visit>
std::size_t forEachToken(LineText const& text, TAVO::Tavo& analyser, int sentence, std::size_t start,
                         std::vector<TAVO::Mrph>& scratch, Visit&& visit) {
    std::size_t const sentenceEnd = std::min(start + analyser.getSentenceLength(sentence), text.sjis().size());
    std::size_t begin = text.originalOffset(start);
    std::size_t position = start;
    auto const emit = [&](std::size_t to, TAVO::Mrph const* morpheme) {
        position = std::min(to, sentenceEnd);
        std::size_t const end = text.originalOffset(position);
        // Half a character at the end of a word belongs to the word before it.
        if (end > begin) visit(Token{begin, end, morpheme});
        begin = end;
    };
    analyser.getResult(scratch, sentence);
    for (TAVO::Mrph const& morpheme : scratch) emit(position + TAVO::MrphAccess::rawForm(morpheme).size(), &morpheme);
    if (position < sentenceEnd) emit(sentenceEnd, nullptr);
    return sentenceEnd;
}

/// All sentences of the last analysis of @p text: visit(Token), then
/// endSentence() after each.
template <class Visit, class EndSentence>
void forEachToken(LineText const& text, TAVO::Tavo& analyser, std::vector<TAVO::Mrph>& scratch, Visit&& visit,
                  EndSentence&& endSentence) {
    auto const sentences = static_cast<int>(analyser.getSentenceCount());
    std::size_t position = 0;
    for (int sentence = 0; sentence < sentences; ++sentence) {
        position = forEachToken(text, analyser, sentence, position, scratch, visit);
        endSentence();
    }
}

}  // namespace tool

#endif
