// Tagged input again, for correcting by hand and analysing once more.
#include "output/line_writer.hpp"
#include "output/token.hpp"
#include "output/value_text.hpp"

#include "result/tag_attributes.hpp"
#include "result/tagged_output.hpp"

#include <algorithm>

namespace tool {

namespace {

/// Text in the user's encoding, with entities. In UTF-8 no byte of a longer
/// character is a mark.
void appendEncoded(OutBuffer& out, std::string_view text, Encoding encoding) {
    if (encoding == Encoding::Sjis) return out.append(TAVO::encodeEntities(text));
    for (std::size_t pos = 0; pos < text.size();) {
        std::size_t const mark = std::min(text.find_first_of("<>&'\"", pos), text.size());
        out.append(text.substr(pos, mark - pos));
        if (mark < text.size()) out.append(TAVO::encodeEntities(text.substr(mark, 1)));
        pos = mark + 1;
    }
}

/// The elements of one sentence; surfaces come from the line as it was read.
class ElementSink final : public TAVO::TaggedSink {
public:
    ElementSink(LineText const& text, std::vector<Token> const& tokens, Encoding encoding, OutBuffer& out)
        : text_(text), tokens_(tokens), encoding_(encoding), out_(out) {}

    void markup(std::string_view text) override { out_.append(text); }

    void value(TAVO::Mrph const& m, std::string_view text) override {
        Token const& token = tokens_[next_];
        if (text == TAVO::MrphAccess::form(m))
            appendEncoded(out_, ownForm(token, text_, scratch_), encoding_);
        else
            appendEncoded(out_, fromSjis(text, encoding_), encoding_);
    }

    void surface(std::vector<TAVO::Mrph> const&, std::size_t first, std::size_t last) override {
        std::string_view const surface = text_.slice(tokens_[first].begin, tokens_[last - 1].end);
        appendEncoded(out_, surface, encoding_);
        next_ = last;
    }

private:
    std::string scratch_;
    LineText const& text_;
    std::vector<Token> const& tokens_;  // one per morpheme
    Encoding encoding_;
    OutBuffer& out_;
    std::size_t next_ = 0;  // the morpheme at work
};

class TaggedWriter final : public LineWriter {
public:
    explicit TaggedWriter(OutputOptions const& options) : LineWriter(options), encoding_(options.encoding) {}

    void writePiece(Analysis const& analysis, OutBuffer& out) override {
        TAVO::Tavo& analyser = analysis.analyser;
        LineText const& text = analysis.text;
        std::size_t at = analysis.sentences.start;  // in the Shift_JIS text
        for (int i = analysis.sentences.first; i != analysis.sentences.end; ++i) {
            if (analysis.morphemes == nullptr) analyser.getResult(morphemes_, i);
            std::vector<TAVO::Mrph> const& morphemes = analysis.morphemes == nullptr ? morphemes_ : *analysis.morphemes;
            tokens_.clear();
            for (TAVO::Mrph const& m : morphemes) {
                std::size_t const end = std::min(at + TAVO::MrphAccess::rawForm(m).size(), text.sjis().size());
                tokens_.push_back({text.originalOffset(at), text.originalOffset(end), &m});
                at = end;
            }
            ElementSink sink(text, tokens_, encoding_, out);
            if (!morphemes.empty())
                TAVO::writeTagged(sink, morphemes);
            else
                at = writeFailed(text, at, analyser.getSentenceLength(i), analyser.getTaggedInputMode() == 1, out);
        }
    }

    void endAnalysis(bool carriageReturn, OutBuffer& out) override { out.append(carriageReturn ? "\r\n" : "\n"); }

private:
    /// A failed sentence comes out as it went in: malformed markup too, so that
    /// it can be mended. Returns where the sentence ends.
    std::size_t writeFailed(LineText const& text, std::size_t at, std::size_t length, bool isTagged, OutBuffer& out) {
        std::size_t const end = std::min(at + length, text.sjis().size());
        std::string_view const shown = text.slice(text.originalOffset(at), text.originalOffset(end));
        if (isTagged)
            out.append(shown);
        else
            appendEncoded(out, shown, encoding_);
        return end;
    }

    Encoding encoding_;
    std::vector<TAVO::Mrph> morphemes_;
    std::vector<Token> tokens_;
};

}  // namespace

std::unique_ptr<LineWriter> makeTaggedWriter(OutputOptions const& options) {
    return std::make_unique<TaggedWriter>(options);
}

}  // namespace tool
