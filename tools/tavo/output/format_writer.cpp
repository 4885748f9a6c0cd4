// The analyser's own output: each morpheme through a format string.
#include "cli/utf8.hpp"
#include "output/line_writer.hpp"
#include "output/word_layouts.hpp"

#include <utility>

namespace tool {

namespace {

/// The program's own format: the library's default, with a column that tells unknown
/// words. Blanks at the end of its line are left out.
constexpr char kLibraryFormat[] = "%10w %20h %k\\n";
constexpr char kOwnFormat[] = "%10w %20h %k %u";

/// The text of --eos; else that of the init file; else none behind a format of the user's
/// own, unless a line has several analyses.
std::string endOfSentence(OutputOptions const& options, TAVO::Tavo const& analyser, bool ownFormat) {
    if (options.eos) return *options.eos;
    std::string const set = fromSjis(analyser.getEOS(), options.encoding);
    return set.empty() && (ownFormat || options.nBest != 0) ? "EOS\n" : set;
}

class FormatWriter final : public LineWriter {
public:
    FormatWriter(OutputOptions const& options, TAVO::Tavo const& analyser)
        : LineWriter(options),
          encoding_(options.encoding),
          ownFormat_(!options.format && analyser.getOutputFormat() == std::string_view(kLibraryFormat)),
          eos_(endOfSentence(options, analyser, ownFormat_)),
          nullString_(options.nullString.value_or(fromSjis(analyser.getNullString(), encoding_))),
          unknownWord_(fromSjis(TAVO::kUnknownWordName, encoding_)) {
        std::string const format =
            ownFormat_ ? kOwnFormat : options.format.value_or(fromSjis(analyser.getOutputFormat(), encoding_));
        for (TAVO::FormatPiece& read : TAVO::formatPieces(format, encoding_)) {
            Piece& piece = pieces_.emplace_back();
            piece.literal = std::move(read.literal);
            if (read.directive) setDirective(piece, *read.directive, options.showClasses);
        }
    }

    TAVO::TokenTableOptions asksFor() const override { return {.values = values_}; }

    void writeAnalysis(Words const& words, Rank const&, bool, OutBuffer& out) override {
        layouts_.begin(words);
        TAVO::TokenTable& table = words.table;
        std::size_t word = words.begin();
        std::size_t const sentence = table.firstSentence()[words.text], end = table.firstSentence()[words.text + 1];
        for (std::size_t i = sentence; i != end; ++i) {
            for (; word != table.sentenceEnds()[i]; ++word) {
                std::string_view const shown = table.shownText(word, words.text);
                auto const write = [&](OutBuffer& to) {
                    writeWord(words, word, shown, to);
                    return 0U;
                };
                WordLayouts::append(out, layouts_.of(words.number(word), shown, write));
            }
            out.append(eos_);
        }
        // A line without a sentence shows its end all the same.
        if (sentence == end) out.append(eos_);
    }

private:
    enum class Shows { Literal, Word, Unknown, Value };
    struct Piece {
        std::string literal;  // in the user's encoding; comes first
        Shows shows = Shows::Literal;
        std::size_t value = 0;  // index
        std::size_t width = 0;
    };

    void setDirective(Piece& piece, TAVO::Directive const& directive, bool showClasses) {
        char const letter = directive.letter;
        piece.width = static_cast<std::size_t>(directive.width);
        piece.shows = letter == 'w' || letter == 'W' ? Shows::Word : letter == 'u' ? Shows::Unknown : Shows::Value;
        if (piece.shows != Shows::Value) return;
        piece.value = values_.size();
        TAVO::WordValue value{.directive = directive};
        if (!showClasses && letter == 'h') value.kind = TAVO::WordValue::Kind::Pos;
        if (!showClasses && letter == 'H') value.kind = TAVO::WordValue::Kind::PosHead;
        values_.push_back(value);
    }

    void writeWord(Words const& words, std::size_t word, std::string_view shown, OutBuffer& out) {
        for (Piece const& piece : pieces_) {
            out.append(piece.literal);
            if (piece.shows == Shows::Literal) continue;
            std::size_t const start = out.size();
            if (piece.shows == Shows::Word) out.append(shown);
            if (piece.shows == Shows::Unknown && words.of(word).isUnknown) out.append(unknownWord_);
            if (piece.shows == Shows::Value) out.append(words.table.value(word, shown, piece.value));
            if (out.size() == start) out.append(nullString_);
            pad(out, start, piece.width);
        }
        if (!ownFormat_) return;
        out.finish(out.view().data() + out.view().find_last_not_of(' ') + 1);
        out.append('\n');
    }

    /// In Shift_JIS a width counts bytes, in UTF-8 the columns of a terminal.
    void pad(OutBuffer& out, std::size_t start, std::size_t width) const {
        if (width == 0) return;
        std::string_view const value = out.view().substr(start);
        if (value.find('\0') != std::string_view::npos) return;
        std::size_t const columns = encoding_ == Encoding::Utf8 ? displayWidth(value) : value.size();
        if (columns < width) out.appendBlanks(width - columns);
    }

    Encoding encoding_;
    bool ownFormat_;
    std::string eos_, nullString_, unknownWord_;
    std::vector<Piece> pieces_;
    std::vector<TAVO::WordValue> values_;
    WordLayouts layouts_;
};

}  // namespace

std::unique_ptr<LineWriter> makeFormatWriter(OutputOptions const& options, TAVO::Tavo const& analyser) {
    return std::make_unique<FormatWriter>(options, analyser);
}

}  // namespace tool
