#include <tavo/lexicon.hpp>

#include "text/lexicon_version.hpp"

#include <stdexcept>
#include <utility>

namespace TAVO {

namespace {

std::shared_ptr<LexiconVersion const> makeVersion(std::string path, LexiconOptions const& options) {
    static std::once_flag ready;
    std::call_once(ready, &Tavo::readyForThread);
    return std::make_shared<LexiconVersion const>(std::move(path), options);
}

}  // namespace

Lexicon::Lexicon(std::shared_ptr<LexiconVersion const> version) : version_(std::move(version)) {}

Lexicon Lexicon::open(LexiconOptions const& options) { return Lexicon(makeVersion({}, options)); }

Lexicon Lexicon::open(std::string const& path, LexiconOptions const& options) {
    if (path.empty()) throw std::invalid_argument("INVALID_ARGUMENT: Lexicon::open(): the path is empty");
    return Lexicon(makeVersion(path, options));
}

Lexicon Lexicon::reloaded() const { return Lexicon(makeVersion(version_->path(), version_->options())); }

std::string const& Lexicon::path() const noexcept { return version_->path(); }

}  // namespace TAVO
