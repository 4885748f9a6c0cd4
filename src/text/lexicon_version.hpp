// One state of a lexicon.
#ifndef TAVO_TEXT_LEXICON_VERSION_HPP
#define TAVO_TEXT_LEXICON_VERSION_HPP

#include "text/pos_texts.hpp"

#include <tavo/lexicon.hpp>
#include <tavo/tavo.hpp>

#include <memory>
#include <mutex>
#include <string>

namespace TAVO {

/// Shared by lexicons and tokenizers; constant but for what is made when first asked for, under a lock.
class LexiconVersion {
public:
    /// As Lexicon::open.
    LexiconVersion(std::string path, LexiconOptions options);

    std::string const& path() const noexcept { return path_; }
    LexiconOptions const& options() const noexcept { return options_; }
    /// Attachments and settings of the analysers of tokenizers.
    Tavo const& prototype() const noexcept { return prototype_; }
    PosTexts const& pos() const;

private:
    std::string path_;
    LexiconOptions options_;
    Tavo prototype_;
    mutable std::once_flag posMade_;
    mutable std::unique_ptr<PosTexts const> pos_;
};

}  // namespace TAVO

#endif
