#include <tavo/lexicon.hpp>

#include "text/lexicon_version.hpp"

#include <stdexcept>
#include <utility>

namespace TAVO {

Lexicon::Lexicon(std::shared_ptr<LexiconVersion const> version) : version_(std::move(version)) {}

Lexicon Lexicon::open(LexiconOptions const& options) {
    return Lexicon(std::make_shared<LexiconVersion const>(std::string(), options));
}

Lexicon Lexicon::open(std::string const& path, LexiconOptions const& options) {
    if (path.empty()) throw std::invalid_argument("INVALID_ARGUMENT: Lexicon::open(): the path is empty");
    return Lexicon(std::make_shared<LexiconVersion const>(path, options));
}

Lexicon Lexicon::open(std::span<LexiconFile const> files, LexiconOptions const& options) {
    if (files.empty()) throw std::invalid_argument("INVALID_ARGUMENT: Lexicon::open(): no files");
    return Lexicon(std::make_shared<LexiconVersion const>(files, options));
}

Lexicon Lexicon::reloaded() const { return Lexicon(version_->reloaded()); }

std::string const& Lexicon::path() const noexcept { return version_->path(); }
std::string Lexicon::fingerprint() const { return version_->fingerprint(); }

}  // namespace TAVO
