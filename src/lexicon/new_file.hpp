// Files that appear whole or not at all.
#ifndef TAVO_LEXICON_NEW_FILE_HPP
#define TAVO_LEXICON_NEW_FILE_HPP

#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

namespace TAVO::words {

/// Writes beside @p path under a temporary name; commit() puts the file in its
/// place. Without it the destructor removes what was written.
class NewFile {
public:
    /// Throws lexicon_error when the file cannot be made, or when @p path is
    /// something else than a regular file.
    explicit NewFile(std::string const& path);
    ~NewFile();
    NewFile(NewFile const&) = delete;
    NewFile& operator=(NewFile const&) = delete;

    /// Throws lexicon_error when not all is written.
    void write(std::string_view bytes);
    /// Throws lexicon_error when anything was not written.
    void commit();

private:
    std::filesystem::path path_, temporary_;
    std::ofstream stream_;
};

}  // namespace TAVO::words

#endif
