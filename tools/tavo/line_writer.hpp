// The forms that the analysis of a line is written in.
#ifndef TAVO_TOOL_LINE_WRITER_HPP
#define TAVO_TOOL_LINE_WRITER_HPP

#include "encoding.hpp"
#include "line_text.hpp"
#include "out_buffer.hpp"

#include <tavo/tavo.hpp>

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace tool {

enum class OutputKind { Tavo, Wakati, Mecab, Json };

struct OutputOptions {
    OutputKind kind = OutputKind::Tavo;
    Encoding encoding = Encoding::Utf8;
    bool showClasses = false;
    // In the user's encoding; without them the analyser's settings hold.
    std::optional<std::string> format;
    std::optional<std::string> eos;
    std::optional<std::string> nullString;
};

/// Writes line by line: beginLine, writePiece for each piece of the line (an
/// over-long line has several), endLine. One per thread.
class LineWriter {
public:
    LineWriter() = default;
    LineWriter(LineWriter const&) = delete;
    LineWriter& operator=(LineWriter const&) = delete;
    virtual ~LineWriter() = default;

    virtual void beginLine(std::string_view line, OutBuffer& out);
    /// @p analyser has analysed @p text.
    virtual void writePiece(LineText const& text, TAVO::Tavo& analyser, OutBuffer& out) = 0;
    /// @p carriageReturn: the line ended with CR LF, not with LF.
    virtual void endLine(bool carriageReturn, OutBuffer& out) = 0;
};

/// @p analyser gives settings and names and must outlive the writer.
std::unique_ptr<LineWriter> makeLineWriter(OutputOptions const& options, TAVO::Tavo const& analyser);

// The forms one by one.
std::unique_ptr<LineWriter> makeWakatiWriter();
std::unique_ptr<LineWriter> makeFormatWriter(OutputOptions const& options, TAVO::Tavo const& analyser);
std::unique_ptr<LineWriter> makeMecabWriter(OutputOptions const& options, TAVO::Tavo const& analyser);
std::unique_ptr<LineWriter> makeJsonWriter(OutputOptions const& options, TAVO::Tavo const& analyser);

}  // namespace tool

#endif
