// Analyses blocks of lines.
#ifndef TAVO_TOOL_BLOCK_ANALYSER_HPP
#define TAVO_TOOL_BLOCK_ANALYSER_HPP

#include "output/line_text.hpp"
#include "output/line_writer.hpp"
#include "output/out_buffer.hpp"
#include "output/tagged_line.hpp"
#include "output/token.hpp"

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

/// The length of the piece of @p line to analyse next: all of it, or at most
/// @p limit bytes, which end between two characters.
std::size_t pieceLength(std::string_view line, std::size_t limit, Encoding encoding) noexcept;

/// An analyser with its output format. One thread uses it at a time.
class BlockAnalyser {
public:
    /// Longer lines are analysed in pieces of at most this many bytes, which is
    /// what the library takes at once.
    static constexpr std::size_t kMaxPieceBytes = 16'843'009;

    /// Copies settings and attachments of @p prototype.
    BlockAnalyser(TAVO::Tavo const& prototype, OutputOptions const& options);

    /// Appends the analysis of each line of @p block to @p out. The bytes behind
    /// the block must be as LineText::assignUtf8 demands.
    BlockReport run(std::string_view block, OutBuffer& out);

private:
    /// A line as it was read.
    struct Line {
        std::string_view text;
        bool carriageReturn;  // CR LF ends it
        LineText::Range sjis{};
        std::size_t invalidBytes = 0;
    };
    /// Short lines are analysed together, with at most so many bytes.
    static constexpr std::size_t kMostTogether = 4096;

    /// Adds @p line to those to be analysed together; false when it must be analysed alone.
    bool addLine(Line const& line, BlockReport& report, OutBuffer& out);
    /// Analyses and writes those added.
    void writeLines(BlockReport& report, OutBuffer& out);
    void writeAlone(Line const& line, BlockReport& report, OutBuffer& out);
    /// Lets line breaks end sentences, or be text, whatever an init file says; none is left out.
    void delimitLines(bool delimit);
    void convert(std::string_view piece);
    /// The text of the last analysis, without markup.
    LineText const& shownText();
    Sentences allSentences() const;
    void beginLine(std::string_view line, OutBuffer& out);
    void writeBest(std::string_view line, bool carriageReturn, OutBuffer& out);
    /// False, and nothing is written, when the line is too long.
    bool writeNBest(std::string_view line, bool carriageReturn, OutBuffer& out);

    TAVO::Tavo analyser_;
    Encoding encoding_;
    int nBest_;
    std::unique_ptr<LineWriter> writer_;
    bool tagged_;
    bool alone_;  // each line
    std::vector<Line> lines_;
    LineText text_;
    TaggedLine taggedLine_;
    std::size_t invalidBytes_ = 0;  // of the line at work
    std::vector<std::vector<TAVO::Mrph>> analyses_;
    std::vector<TAVO::PathCost> costs_;
};

}  // namespace tool

#endif
