// A dictionary that is tried before anybody uses it.
#ifndef TAVO_LEXICON_WORDS_TRIAL_DICTIONARY_HPP
#define TAVO_LEXICON_WORDS_TRIAL_DICTIONARY_HPP

#include "lexicon/temporary_file.hpp"

#include <string>

namespace TAVO::words {

/// A file of its own, which nobody else has loaded, as long as the object lives; then the process-wide pool has it no
/// more either. Analysers that use it have to end before.
class TrialDictionary {
public:
    /// Throws lexicon_error when no temporary file can be written.
    explicit TrialDictionary(std::string const& bytes) : file_(bytes) {}
    ~TrialDictionary();
    TrialDictionary(TrialDictionary const&) = delete;
    TrialDictionary& operator=(TrialDictionary const&) = delete;

    std::string const& path() const noexcept { return file_.path(); }

private:
    TemporaryFile file_;
};

}  // namespace TAVO::words

#endif
