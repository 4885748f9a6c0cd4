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
    /// The same lines from @p text, which must stay, where that is not null; @p path is only its name then.
    LineFile(std::string const& path, std::string_view const* text)
        : handle_(text == nullptr ? FileOpenShared(path.c_str()) : -1),
          reader_(text == nullptr ? LineReader(handle_) : LineReader(*text)) {
        if (handle_ < 0 && text == nullptr) throw file_not_found(path);
    }
    ~LineFile() {
        if (handle_ >= 0) FileClose(handle_);
    }
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
