// Cuts a text into the pieces that become sentences.
#ifndef TAVO_SPLIT_SENTENCE_SPLITTER_HPP
#define TAVO_SPLIT_SENTENCE_SPLITTER_HPP

#include "config/settings.hpp"
#include "split/markup_scanner.hpp"
#include "split/text_origins.hpp"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace TAVO {

/// The spans of a line that no delimiter cuts, in order, without overlap.
using SpanFinder = std::function<std::vector<TextSpan>(std::string_view line)>;

/// Calls @p piece for each sentence of @p text, in order: cut at line breaks
/// (DelimitCRLF; DeleteCRLF drops them) and behind delimiter strings, stepping
/// by characters. Empty pieces are not reported. Pieces are parts of @p text. A
/// delimiter neither starts in one of the @p spans nor reaches into one; line
/// breaks cut spans too.
void splitText(std::string_view text, Settings const& settings, std::function<void(std::string_view)> const& piece,
               SpanFinder const& spans = nullptr);

/// @p text without its line feeds and carriage returns; tells @p origins where the rest stands in it.
std::string deleteLineBreaks(std::string_view text, TextOrigins& origins);

}  // namespace TAVO

#endif
