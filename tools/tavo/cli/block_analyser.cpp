#include "cli/block_analyser.hpp"

#include "lexicon/encoding_guess.hpp"

#include <tavo/error.hpp>

#include <cstring>
#include <utility>

namespace tool {

namespace {

TAVO::TokenTableOptions asked(LineWriter const& writer, Encoding encoding) {
    TAVO::TokenTableOptions options = writer.asksFor();
    options.encoding = encoding;
    options.keepBlanks = true;
    return options;
}

}  // namespace

BlockAnalyser::BlockAnalyser(TAVO::Tavo const& prototype, OutputOptions const& options)
    : names_(prototype),
      encoding_(options.encoding),
      nBest_(options.nBest),
      tagged_(prototype.getTaggedInputMode() == 1),
      alone_(nBest_ != 0 || tagged_ || *prototype.getCommentRulePath() != '\0'),
      writer_(makeLineWriter(options, names_)),
      table_(prototype, asked(*writer_, encoding_)) {}

BlockReport BlockAnalyser::run(std::string_view block, OutBuffer& out) {
    BlockReport report;
    report.otherEncoding = TAVO::words::otherEncoding(block, encoding_);
    while (!block.empty()) {
        void const* const found = std::memchr(block.data(), '\n', block.size());
        bool const complete = found != nullptr;
        auto const length =
            complete ? static_cast<std::size_t>(static_cast<char const*>(found) - block.data()) : block.size();
        std::string_view line = block.substr(0, length);
        block.remove_prefix(length + (complete ? 1 : 0));
        // CR LF is a line break as a whole; any other CR is text.
        bool const carriageReturn = complete && line.ends_with('\r');
        if (carriageReturn) line.remove_suffix(1);
        if (!alone_ && line.find('\r') == std::string_view::npos) {
            lines_.push_back(line);
            carriageReturns_.push_back(carriageReturn);
            continue;
        }
        writeLines(report, out);
        writeAlone(line, carriageReturn, report, out);
    }
    writeLines(report, out);
    return report;
}

void BlockAnalyser::writeLines(BlockReport& report, OutBuffer& out) {
    if (lines_.empty()) return;
    table_.setBreaksAreText(false);
    table_.tokenize(lines_);
    for (std::size_t i = 0; i != lines_.size(); ++i) {
        writer_->beginLine(lines_[i], out);
        writer_->writeAnalysis({table_, i}, {1, nullptr}, carriageReturns_[i], out);
        writer_->endLine(out);
        report.add(table_.invalidBytes(i));
    }
    lines_.clear();
    carriageReturns_.clear();
}

void BlockAnalyser::writeAlone(std::string_view line, bool carriageReturn, BlockReport& report, OutBuffer& out) {
    table_.setBreaksAreText(true);
    bool const isLong = nBest_ != 0 && !findNBest(line);
    if (nBest_ == 0 || isLong) tagged_ ? table_.tokenizeTagged(line) : table_.tokenize({&line, 1});
    writer_->beginLine(table_.text(0), out);
    for (std::size_t i = 0; i != table_.textCount(); ++i) {
        Words const words{table_, i};
        // Without words there is no path that could cost something.
        bool const hasCost = nBest_ != 0 && !isLong && words.begin() != words.end() && words.isAnalysed(words.begin());
        TAVO::PathCost const cost =
            hasCost ? TAVO::PathCost{table_.connectionCosts()[i], table_.wordCosts()[i]} : TAVO::PathCost{};
        writer_->writeAnalysis(words, {i + 1, hasCost ? &cost : nullptr}, carriageReturn, out);
    }
    writer_->endLine(out);
    report.add(table_.invalidBytes(0));
    if (isLong && report.longLines++ == 0) report.firstLongLine = report.lines;
}

bool BlockAnalyser::findNBest(std::string_view line) {
    try {
        tagged_ ? table_.tokenizeTaggedNBest(line, nBest_) : table_.tokenizeNBest(line, nBest_);
        return true;
    } catch (TAVO::too_long_string const&) {
        return false;
    }
}

}  // namespace tool
