// Analyses blocks of lines.
#ifndef TAVO_TOOL_BLOCK_ANALYSER_HPP
#define TAVO_TOOL_BLOCK_ANALYSER_HPP

#include "output/line_writer.hpp"
#include "output/out_buffer.hpp"

#include <tavo/tavo.hpp>

#include <cstddef>
#include <memory>
#include <string_view>
#include <vector>

namespace tool {

/// What a block held.
struct BlockReport {
    std::size_t lines = 0;
    std::size_t invalidBytes = 0;
    std::size_t firstInvalidLine = 0;  // 1-based in the block; 0 when there is none
    std::size_t longLines = 0;         // too long for more than the best analysis
    std::size_t firstLongLine = 0;     // as firstInvalidLine
    std::string_view otherEncoding;    // that the block seems to be in, as otherEncoding() tells

    /// Adds a line with so many bytes that are not text.
    void add(std::size_t invalid) noexcept {
        ++lines;
        if (invalid != 0 && invalidBytes == 0) firstInvalidLine = lines;
        invalidBytes += invalid;
    }
};

/// An analyser with its output format. One thread uses it at a time.
class BlockAnalyser {
public:
    /// Copies settings and attachments of @p prototype.
    BlockAnalyser(TAVO::Tavo const& prototype, OutputOptions const& options);

    /// Appends the analysis of each line of @p block to @p out. Behind the block stand TAVO::kPaddingBytes.
    BlockReport run(std::string_view block, OutBuffer& out);

private:
    /// Analyses and writes the lines that were gathered.
    void writeLines(BlockReport& report, OutBuffer& out);
    void writeAlone(std::string_view line, bool carriageReturn, BlockReport& report, OutBuffer& out);
    /// False when the line is too long for it.
    bool findNBest(std::string_view line);

    TAVO::Tavo names_;  // threads share no analyser
    Encoding encoding_;
    int nBest_;
    bool tagged_;
    bool alone_;  // each line
    std::unique_ptr<LineWriter> writer_;
    TAVO::TokenTable table_;
    std::vector<std::string_view> lines_;
    std::vector<bool> carriageReturns_;  // by line: CR LF ends it
};

}  // namespace tool

#endif
