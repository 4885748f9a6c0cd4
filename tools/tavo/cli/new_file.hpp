// Files that appear whole or not at all.
#ifndef TAVO_TOOL_NEW_FILE_HPP
#define TAVO_TOOL_NEW_FILE_HPP

#include <filesystem>
#include <fstream>
#include <string>

namespace tool {

/// Writes beside @p path under a temporary name; commit() puts the file in its
/// place. Without it the destructor removes what was written.
class NewFile {
public:
    /// Throws ToolError (data) when the file cannot be made, or when @p path is
    /// something else than a regular file.
    explicit NewFile(std::string const& path);
    ~NewFile();
    NewFile(NewFile const&) = delete;
    NewFile& operator=(NewFile const&) = delete;

    std::ostream& stream() noexcept { return stream_; }
    /// Throws ToolError (data) when anything was not written.
    void commit();

private:
    std::filesystem::path path_, temporary_;
    std::ofstream stream_;
};

}  // namespace tool

#endif
