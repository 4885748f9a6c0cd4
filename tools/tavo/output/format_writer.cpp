// The analyser's own output: each morpheme through a format string.
#include "cli/utf8.hpp"
#include "output/line_writer.hpp"
#include "output/pos_names.hpp"
#include "output/token.hpp"
#include "output/value_text.hpp"

#include "result/format.hpp"

#include <functional>

namespace tool {

namespace {

struct Piece {
    std::string literal;  // in the user's encoding; comes first
    TAVO::Directive directive;
    bool hasDirective = false;
};

/// The pieces of a format string in the user's encoding. Literal text may hold
/// characters that code page 932 lacks.
std::vector<Piece> compile(std::string const& format, Encoding encoding) {
    std::string padded = format.substr(0, format.find('\0'));  // a NUL ends a format
    std::size_t const size = padded.size();
    padded.append(kPaddingBytes, '\0');
    LineText text;
    if (encoding == Encoding::Utf8) {
        text.assignUtf8(std::string_view(padded).substr(0, size));
    } else {
        text.assignSjis(std::string_view(padded).substr(0, size));
    }
    std::string_view const sjis = text.sjis();
    std::vector<Piece> pieces;
    auto const last = [&pieces]() -> Piece& {
        if (pieces.empty() || pieces.back().hasDirective) pieces.emplace_back();
        return pieces.back();
    };
    auto const literal = [&](std::string_view bytes) {
        std::less<> const before;
        bool const inside = !before(bytes.data(), sjis.data()) && before(bytes.data(), sjis.data() + sjis.size());
        if (!inside) {  // the byte of an escape
            last().literal += bytes;
            return;
        }
        auto const at = static_cast<std::size_t>(bytes.data() - sjis.data());
        last().literal += text.slice(text.originalOffset(at), text.originalOffset(at + bytes.size()));
    };
    auto const value = [&](TAVO::Directive const& directive) {
        Piece& piece = last();
        piece.directive = directive;
        piece.hasDirective = true;
    };
    TAVO::scanFormat(sjis, literal, value);
    return pieces;
}

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
          names_(analyser, encoding_, options.showClasses),
          eos_(endOfSentence(options, analyser, ownFormat_)),
          nullString_(options.nullString.value_or(fromSjis(analyser.getNullString(), encoding_))),
          unknownWord_(fromSjis(TAVO::kUnknownWordName, encoding_)),
          pieces_(compile(
              ownFormat_ ? kOwnFormat : options.format.value_or(fromSjis(analyser.getOutputFormat(), encoding_)),
              encoding_)) {}

    void beginAnalysis(Rank const&, OutBuffer&) override { empty_ = true; }

    void writePiece(Analysis const& analysis, OutBuffer& out) override {
        forEachToken(
            analysis, morphemes_, [&](Token const& token) { writeToken(analysis.text, token, out); },
            [&] {
                out.append(eos_);
                empty_ = false;
            });
    }

    void endAnalysis(bool, OutBuffer& out) override {
        // A line without a sentence shows its end all the same.
        if (empty_) out.append(eos_);
    }

private:
    void writeToken(LineText const& text, Token const& token, OutBuffer& out) {
        std::size_t const tokenStart = out.size();
        for (Piece const& piece : pieces_) {
            out.append(piece.literal);
            if (!piece.hasDirective) continue;
            std::size_t const start = out.size();
            writeDirective(piece.directive, text, token, out);
            if (out.size() == start) out.append(nullString_);
            pad(out, start, static_cast<std::size_t>(piece.directive.width));
        }
        if (!ownFormat_) return;
        std::string_view const line = out.view().substr(tokenStart);
        out.finish(line.data() + line.find_last_not_of(' ') + 1);
        out.append('\n');
    }

    void writeDirective(TAVO::Directive const& directive, LineText const& text, Token const& token, OutBuffer& out) {
        switch (directive.letter) {
            case 'w':
            case 'W':
                return out.append(text.slice(token.begin, token.end));
            case 'h':
                if (token.morpheme != nullptr) out.append(names_.name(*token.morpheme));
                return;
            case 'H':
                if (token.morpheme != nullptr) out.append(names_.head(*token.morpheme));
                return;
            case 'u':
                if (token.morpheme == nullptr || TAVO::MrphAccess::isUnknown(*token.morpheme)) out.append(unknownWord_);
                return;
            default:
                break;
        }
        if (token.morpheme == nullptr) return;
        TAVO::Directive unpadded = directive;
        unpadded.width = 0;
        value_.clear();
        TAVO::writeValue(value_, unpadded, *token.morpheme, {});
        appendValue(out, value_, token, text);
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
    PosNames names_;
    std::string eos_, nullString_, unknownWord_;
    std::vector<Piece> pieces_;
    bool empty_ = true;
    std::string value_;
    std::vector<TAVO::Mrph> morphemes_;
};

}  // namespace

std::unique_ptr<LineWriter> makeFormatWriter(OutputOptions const& options, TAVO::Tavo const& analyser) {
    return std::make_unique<FormatWriter>(options, analyser);
}

}  // namespace tool
