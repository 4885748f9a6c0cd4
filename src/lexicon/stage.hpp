// Telling a caller how far the work is.
#ifndef TAVO_LEXICON_STAGE_HPP
#define TAVO_LEXICON_STAGE_HPP

#include <tavo/lexicon_maker.hpp>

#include <cstddef>

namespace TAVO::words {

/// Throws lexicon_error when the caller wants no more.
inline void tell(LexiconProgress const& progress, char const* stage, std::size_t done = 0, std::size_t total = 0) {
    if (progress && !progress(stage, done, total)) throw lexicon_error("", 0, "stopped by the caller");
}

}  // namespace TAVO::words

#endif
