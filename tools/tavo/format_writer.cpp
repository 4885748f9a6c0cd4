// The analyser's own output: each morpheme through a format string.
#include "line_writer.hpp"
#include "pos_names.hpp"
#include "token.hpp"
#include "utf8.hpp"
#include "value_text.hpp"

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

class FormatWriter final : public LineWriter {
public:
    FormatWriter(OutputOptions const& options, TAVO::Tavo const& analyser)
        : encoding_(options.encoding),
          names_(analyser, {options.encoding, options.showClasses, ':'}),
          eos_(options.eos.value_or(fromSjis(analyser.getEOS(), encoding_))),
          nullString_(options.nullString.value_or(fromSjis(analyser.getNullString(), encoding_))),
          pieces_(compile(options.format.value_or(fromSjis(analyser.getOutputFormat(), encoding_)), encoding_)) {
        // Something must stand between the analyses of a line.
        if (options.nBest != 0 && !options.eos && eos_.empty()) eos_ = "EOS\n";
    }

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
        for (Piece const& piece : pieces_) {
            out.append(piece.literal);
            if (!piece.hasDirective) continue;
            std::size_t const start = out.size();
            writeDirective(piece.directive, text, token, out);
            if (out.size() == start) out.append(nullString_);
            pad(out, start, static_cast<std::size_t>(piece.directive.width));
        }
    }

    void writeDirective(TAVO::Directive const& directive, LineText const& text, Token const& token, OutBuffer& out) {
        switch (directive.letter) {
            case 'w':
            case 'W':
                return out.append(text.slice(token.begin, token.end));
            case 'h':
                if (token.morpheme != nullptr) out.append(names_.name(token.morpheme->getPid()));
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
    PosNames names_;
    std::string eos_, nullString_;
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
