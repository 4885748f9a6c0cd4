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
    /// The piece of the caller's text, as given (not owned).
    std::string_view given;
    /// The text that was analysed: equal to given, or to ownedText.
    std::string_view text;
    /// Holds the analysed text where it differs from the given one; its
    /// characters never move, since morphemes point at them.
    std::unique_ptr<std::string> ownedText;
    /// The chosen first node; null when the sentence has no result.
    LatticeNode const* bestStart = nullptr;
    bool failed = false;
};

}  // namespace TAVO

#endif
