// Reads files in blocks of whole lines.
#ifndef TAVO_TOOL_LINE_READER_HPP
#define TAVO_TOOL_LINE_READER_HPP

#include "cli/encoding.hpp"
#include "cli/file_io.hpp"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace tool {

/// A block of whole lines of one file; the last line of a file may lack its
/// line feed. Reused: its buffer grows to the longest line and stays.
class Block {
public:
    std::string_view text() const noexcept { return {data_.get() + begin_, size_ - begin_}; }
    /// Index of the file in the list of inputs.
    std::size_t file = 0;

private:
    friend class LineReader;
    std::size_t room() const noexcept;
    void grow();
    void append(std::string_view bytes);
    /// Cuts at @p size; the bytes behind are no continuation of a character.
    void seal(std::size_t size) noexcept;

    std::unique_ptr<char[]> data_;
    std::size_t begin_ = 0;  // of the text
    std::size_t size_ = 0;
    std::size_t capacity_ = 0;
};

class LineReader {
public:
    /// Bytes of a block unless a line is longer.
    static constexpr std::size_t kBlockBytes = std::size_t{64} * 1024;

    /// @p eager: a block is handed out as soon as a read brought whole lines.
    /// A byte order mark at the start of a UTF-8 file is dropped.
    LineReader(std::vector<std::string> paths, bool eager, Encoding encoding = Encoding::Utf8);

    /// Fills @p block; false at the end of the last file. A file that cannot be
    /// read is reported on standard error and skipped (see failed()).
    bool next(Block& block);
    bool failed() const noexcept { return failed_; }
    std::string const& path(std::size_t file) const { return paths_[file]; }

private:
    bool openNext();
    bool fill(Block& block);
    std::size_t read(Block& block);

    std::vector<std::string> paths_;
    bool eager_;
    Encoding encoding_;
    bool atStart_ = false;  // of the open file
    bool failed_ = false;
    std::size_t opened_ = 0;  // files opened so far; the open one is opened_ - 1
    Descriptor file_;
    std::string carried_;  // the beginning of a line that goes on
};

}  // namespace tool

#endif
