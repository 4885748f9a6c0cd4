// The analysis state of one sentence.
#ifndef TAVO_ENGINE_SENTENCE_HPP
#define TAVO_ENGINE_SENTENCE_HPP

#include "convert/conversion.hpp"
#include "engine/path_store.hpp"
#include "split/sentence_markup.hpp"
#include "split/text_origins.hpp"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace TAVO {

/// An analysed text that is not the given one: without line breaks or without tags.
struct OwnedText {
    std::string text;
    TextOrigins origins;  ///< in the given text
};

struct Sentence {
    static constexpr std::uint32_t kNoEdges = 0xFFFFFFFF;

    /// The piece of the caller's text, as given (not owned).
    std::string_view given;
    /// The text that was analysed: given, or that of ownedText.
    std::string_view text;
    /// Holds the analysed text where it differs from the given one; its
    /// characters never move, since morphemes point at them.
    std::unique_ptr<OwnedText> ownedText;
    /// What is searched in the place of text; null when that is text itself.
    std::unique_ptr<Conversion> conversion;
    /// Nodes, paths and candidates stand in this text.
    std::string_view searchText() const noexcept { return conversion ? std::string_view(conversion->text) : text; }
    /// The best path; none when the sentence has no result.
    LazyPath path;
    /// Of an all-paths lattice: the first of the sentence's edge lists, and its
    /// last one, which leads to the words that may begin the sentence.
    std::uint32_t firstEdgeList = 0;
    std::uint32_t startEdgeList = kNoEdges;
    /// Connection cost from the beginning of the text to the first word of the path.
    std::uint8_t beginCost = 0;
    bool failed = false;
    /// What markup and comment rules say; null when they say nothing.
    std::unique_ptr<SentenceMarkup> markup;
};

}  // namespace TAVO

#endif
