// Files for what only takes paths.
#ifndef TAVO_LEXICON_TEMPORARY_FILE_HPP
#define TAVO_LEXICON_TEMPORARY_FILE_HPP

#include <string>
#include <string_view>

namespace TAVO::words {

/// A file of its own that lives as long as its object.
class TemporaryFile {
public:
    /// Throws lexicon_error when it cannot be written.
    explicit TemporaryFile(std::string_view bytes);
    ~TemporaryFile();
    TemporaryFile(TemporaryFile const&) = delete;
    TemporaryFile& operator=(TemporaryFile const&) = delete;

    std::string const& path() const noexcept { return path_; }

private:
    std::string path_;
};

}  // namespace TAVO::words

#endif
