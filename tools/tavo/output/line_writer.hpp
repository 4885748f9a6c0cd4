// The output formats that the analysis of a line is written in.
#ifndef TAVO_TOOL_LINE_WRITER_HPP
#define TAVO_TOOL_LINE_WRITER_HPP

#include "cli/encoding.hpp"
#include "output/out_buffer.hpp"
#include "output/words.hpp"

#include <tavo/tavo.hpp>

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace tool {

enum class OutputKind { Tavo, Wakati, Mecab, Json, Tagged };

struct OutputOptions {
    OutputKind kind = OutputKind::Tavo;
    Encoding encoding = Encoding::Utf8;
    bool showClasses = false;
    int nBest = 0;  // analyses of a line; 0: its best one, without rank
    // In the user's encoding; without them the analyser's settings hold.
    std::optional<std::string> format;
    std::optional<std::string> eos;
    std::optional<std::string> nullString;
};

/// The place of an analysis among the best ones of its line, from 1 on.
struct Rank {
    std::size_t number;
    TAVO::PathCost const* cost;  // null when it is not known
};

/// Writes line by line: beginLine; writeAnalysis for each analysis of the line; endLine. One per thread.
class LineWriter {
public:
    explicit LineWriter(OutputOptions const& options) noexcept : ranked_(options.nBest != 0) {}
    LineWriter(LineWriter const&) = delete;
    LineWriter& operator=(LineWriter const&) = delete;
    virtual ~LineWriter() = default;

    /// What the words that are written are to have; the encoding and blanks do not count.
    virtual TAVO::TokenTableOptions asksFor() const = 0;
    virtual void beginLine(std::string_view line, OutBuffer& out);
    /// @p carriageReturn: the line ended with CR LF, not with LF. The text of @p words stands in memory with
    /// TAVO::kPaddingBytes behind it.
    virtual void writeAnalysis(Words const& words, Rank const& rank, bool carriageReturn, OutBuffer& out) = 0;
    /// An empty line behind the N best analyses of a line.
    virtual void endLine(OutBuffer& out);

protected:
    bool isRanked() const noexcept { return ranked_; }

private:
    bool ranked_;
};

/// @p analyser gives settings and names and must outlive the writer.
std::unique_ptr<LineWriter> makeLineWriter(OutputOptions const& options, TAVO::Tavo const& analyser);

// The forms one by one.
std::unique_ptr<LineWriter> makeWakatiWriter(OutputOptions const& options);
std::unique_ptr<LineWriter> makeFormatWriter(OutputOptions const& options, TAVO::Tavo const& analyser);
std::unique_ptr<LineWriter> makeMecabWriter(OutputOptions const& options, TAVO::Tavo const& analyser);
std::unique_ptr<LineWriter> makeTaggedWriter(OutputOptions const& options);
std::unique_ptr<LineWriter> makeJsonWriter(OutputOptions const& options);

}  // namespace tool

#endif
