#include "cli/block_analyser.hpp"

#include "lexicon/encoding_guess.hpp"

#include "base/sjis.hpp"
#include "core/impl.hpp"
#include "engine/nbest/all_paths.hpp"

#include <cstring>
#include <utility>

namespace tool {

std::size_t pieceLength(std::string_view line, std::size_t limit, Encoding encoding) noexcept {
    if (line.size() <= limit) return line.size();
    if (encoding == Encoding::Sjis) {
        std::size_t at = 0;
        for (std::size_t next = 0; next <= limit; next += TAVO::charWidth(line, next)) at = next;
        return at;
    }
    auto const continues = [&](std::size_t at) { return (static_cast<unsigned char>(line[at]) & 0xC0U) == 0x80; };
    constexpr std::size_t kMostContinuationBytes = 3;
    for (std::size_t back = 0; back <= kMostContinuationBytes && back < limit; ++back)
        if (!continues(limit - back)) return limit - back;
    return limit;  // no character, so nothing to keep whole
}

BlockAnalyser::BlockAnalyser(TAVO::Tavo const& prototype, OutputOptions const& options)
    : analyser_(prototype),
      encoding_(options.encoding),
      nBest_(options.nBest),
      writer_(makeLineWriter(options, analyser_)),
      tagged_(analyser_.getTaggedInputMode() == 1),
      alone_(nBest_ != 0 || tagged_ || *analyser_.getCommentRulePath() != '\0') {
    if (encoding_ == Encoding::Utf8) TAVO::TavoAccess::impl(analyser_).reduce.setWholeWord(LineText::kUnknownCharacter);
}

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
        if (addLine({line, carriageReturn}, report, out)) continue;
        writeLines(report, out);
        writeAlone({line, carriageReturn}, report, out);
    }
    writeLines(report, out);
    return report;
}

bool BlockAnalyser::addLine(Line const& line, BlockReport& report, OutBuffer& out) {
    std::string_view const text = line.text;
    // A CR in the text would be taken for a line break.
    if (alone_ || text.size() > kMostTogether || std::memchr(text.data(), '\r', text.size()) != nullptr) return false;
    if (!lines_.empty() && text.data() + text.size() > lines_.front().text.data() + kMostTogether)
        writeLines(report, out);
    if (lines_.empty()) text_.startLines(text);
    std::size_t const invalidBytes = text_.invalidBytes();
    LineText::Range const sjis = encoding_ == Encoding::Sjis ? text_.addSjis(text) : text_.addUtf8(text);
    lines_.push_back({text, line.carriageReturn, sjis, text_.invalidBytes() - invalidBytes});
    // Half a character at its end would take the line break in.
    if (TAVO::isInsideCharacter(text_.sjis(), sjis.end)) writeLines(report, out);
    return true;
}

void BlockAnalyser::writeLines(BlockReport& report, OutBuffer& out) {
    if (lines_.empty()) return;
    delimitLines(true);
    char const* const sjis = text_.sjis().data();
    analyser_.analyze(sjis, static_cast<int>(text_.sjis().size()));
    auto const count = static_cast<int>(analyser_.getSentenceCount());
    int sentence = 0;
    for (Line const& line : lines_) {
        int const first = sentence;
        while (sentence != count && analyser_.getSentencePtrWithoutNullEnd(sentence) < sjis + line.sjis.end) ++sentence;
        beginLine(line.text, out);
        writer_->beginAnalysis({1, nullptr}, out);
        writer_->writePiece({text_, analyser_, {first, sentence, line.sjis.begin}}, out);
        writer_->endAnalysis(line.carriageReturn, out);
        writer_->endLine(out);
        report.add(line.invalidBytes);
    }
    lines_.clear();
}

void BlockAnalyser::writeAlone(Line const& line, BlockReport& report, OutBuffer& out) {
    delimitLines(false);
    bool const isLong = nBest_ != 0 && !writeNBest(line.text, line.carriageReturn, out);
    if (nBest_ == 0 || isLong) writeBest(line.text, line.carriageReturn, out);
    writer_->endLine(out);
    report.add(std::exchange(invalidBytes_, 0));
    if (isLong && report.longLines++ == 0) report.firstLongLine = report.lines;
}

void BlockAnalyser::delimitLines(bool delimit) {
    int const mode = delimit ? 1 : 0;
    if (analyser_.getDelimitCRLFMode() == mode && analyser_.getDeleteCRLFMode() == mode) return;
    analyser_.setDelimitCRLFMode(mode);
    analyser_.setDeleteCRLFMode(mode);
}

void BlockAnalyser::convert(std::string_view piece) {
    if (encoding_ == Encoding::Sjis) return text_.assignSjis(piece);
    text_.assignUtf8(piece);
    invalidBytes_ += text_.invalidBytes();
}

LineText const& BlockAnalyser::shownText() { return tagged_ ? taggedLine_.strip(text_, analyser_) : text_; }

Sentences BlockAnalyser::allSentences() const { return {0, static_cast<int>(analyser_.getSentenceCount()), 0}; }

void BlockAnalyser::beginLine(std::string_view line, OutBuffer& out) {
    writer_->beginLine(tagged_ ? taggedLine_.plainText() : line, out);
}

void BlockAnalyser::writeBest(std::string_view line, bool carriageReturn, OutBuffer& out) {
    std::string_view rest = line;
    do {
        std::string_view const piece = rest.substr(0, pieceLength(rest, kMaxPieceBytes, encoding_));
        convert(piece);
        analyser_.analyze(text_.sjis().data(), static_cast<int>(text_.sjis().size()));
        LineText const& shown = shownText();
        if (rest.size() == line.size()) {
            beginLine(line, out);
            writer_->beginAnalysis({1, nullptr}, out);
        }
        writer_->writePiece({shown, analyser_, allSentences()}, out);
        rest.remove_prefix(piece.size());
    } while (!rest.empty());
    writer_->endAnalysis(carriageReturn, out);
}

bool BlockAnalyser::writeNBest(std::string_view line, bool carriageReturn, OutBuffer& out) {
    if (line.size() > kMaxPieceBytes) return false;
    convert(line);
    if (text_.sjis().size() > TAVO::kMaxNBestBytes) {
        invalidBytes_ = 0;  // counted when the line is analysed after all
        return false;
    }
    analyser_.analyzeNBest(text_.sjis().data(), static_cast<int>(text_.sjis().size()));
    LineText const& shown = shownText();
    beginLine(line, out);
    analyses_.assign(1, {});
    costs_.clear();
    if (analyser_.getSentenceCount() != 0) analyser_.getResultNBest(analyses_, costs_, 0, nBest_);
    for (std::size_t i = 0; i < analyses_.size(); ++i) {
        // Without morphemes there is no path that could cost something.
        writer_->beginAnalysis({i + 1, analyses_[i].empty() ? nullptr : &costs_[i]}, out);
        writer_->writePiece({shown, analyser_, allSentences(), &analyses_[i]}, out);
        writer_->endAnalysis(carriageReturn, out);
    }
    return true;
}

}  // namespace tool
