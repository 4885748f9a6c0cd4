#include <tavo/lexicon_maker.hpp>

#include <utility>

namespace TAVO {

std::string LexiconFault::text() const {
    std::string text = file;
    if (line != 0) text += (text.empty() ? "line " : ":") + std::to_string(line);
    return text.empty() ? cause : text + ": " + cause;
}

lexicon_error::lexicon_error(LexiconFault fault) : std::runtime_error(fault.text()), fault_(std::move(fault)) {}
lexicon_error::lexicon_error(std::string file, std::size_t line, std::string cause)
    : lexicon_error(LexiconFault{std::move(file), line, std::move(cause)}) {}
lexicon_error::lexicon_error(lexicon_error const&) = default;
lexicon_error& lexicon_error::operator=(lexicon_error const&) = default;
lexicon_error::~lexicon_error() = default;

}  // namespace TAVO
