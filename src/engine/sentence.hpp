// The analysis state of one sentence.
#ifndef TAVO_ENGINE_SENTENCE_HPP
#define TAVO_ENGINE_SENTENCE_HPP

#include "engine/lattice_node.hpp"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace TAVO {

struct Sentence {
    static constexpr std::uint32_t kNoNode = 0xFFFFFFFF;

    /// The piece of the caller's text, as given (not owned).
    std::string_view given;
    /// The text that was analysed: equal to given, or to ownedText.
    std::string_view text;
    /// Holds the analysed text where it differs from the given one. A stable
    /// address: morphemes point into it.
    std::unique_ptr<std::string> ownedText;
    /// Index of the chosen first node; kNoNode when the sentence has no result.
    std::uint32_t bestStart = kNoNode;
    /// The sentence's nodes in the lattice: [firstNode, endNode).
    std::uint32_t firstNode = 0;
    std::uint32_t endNode = 0;
    bool failed = false;
};

}  // namespace TAVO

#endif
