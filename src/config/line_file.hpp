// Configuration and list files, line by line.
#ifndef TAVO_CONFIG_LINE_FILE_HPP
#define TAVO_CONFIG_LINE_FILE_HPP

#include "dic/file_access.hpp"

#include <tavo/error.hpp>

#include <string>
#include <string_view>

namespace TAVO {

/// An open text file; closed by the destructor. Lines follow the rules of
/// LineReader: 4096-byte buffer, CR dropped, over-long lines cut into several.
class LineFile {
public:
    /// Throws file_not_found with @p path.
    explicit LineFile(std::string const& path) : handle_(FileOpenShared(path.c_str())), reader_(handle_) {
        if (handle_ < 0) throw file_not_found(path);
    }
    ~LineFile() { FileClose(handle_); }
    LineFile(LineFile const&) = delete;
    LineFile& operator=(LineFile const&) = delete;

    bool next() { return reader_.next(); }
    std::string_view line() const noexcept { return reader_.line(); }
    std::size_t lineNumber() const noexcept { return reader_.lineNumber(); }
    bool wasCut() const noexcept { return reader_.wasCut(); }

private:
    int handle_;
    LineReader reader_;
};

}  // namespace TAVO

#endif
