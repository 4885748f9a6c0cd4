// Word, tab, fields joined with commas: part of speech level by level, base
// form, reading, pronunciation. A line EOS ends each input line.
#include "line_writer.hpp"
#include "pos_names.hpp"
#include "token.hpp"
#include "value_text.hpp"

namespace tool {

namespace {

class MecabWriter final : public LineWriter {
public:
    MecabWriter(OutputOptions const& options, TAVO::Tavo const& analyser)
        : names_(analyser, {options.encoding, options.showClasses, ','}),
          eos_(options.eos.value_or("EOS\n")),
          missing_(options.nullString.value_or("*")) {}

    void writePiece(Analysis const& analysis, OutBuffer& out) override {
        forEachToken(
            analysis, morphemes_, [&](Token const& token) { writeToken(analysis.text, token, out); }, [] {});
    }

    void endAnalysis(bool, OutBuffer& out) override { out.append(eos_); }

private:
    void writeToken(LineText const& text, Token const& token, OutBuffer& out) {
        out.append(text.slice(token.begin, token.end));
        out.append('\t');
        if (token.morpheme == nullptr) {
            out.append(missing_);
        } else {
            TAVO::Mrph const& m = *token.morpheme;
            std::string const& name = names_.name(m.getPid());
            out.append(name.empty() ? missing_ : name);
            field(m.getStdForm(true), text, token, out);
            field(m.getRead(true), text, token, out);
            field(m.getPron(true), text, token, out);
        }
        out.append('\n');
    }

    void field(std::string const& value, LineText const& text, Token const& token, OutBuffer& out) {
        out.append(',');
        if (value.empty()) return out.append(missing_);
        appendValue(out, value, token, text);
    }

    PosNames names_;
    std::string eos_, missing_;
    std::vector<TAVO::Mrph> morphemes_;
};

}  // namespace

std::unique_ptr<LineWriter> makeMecabWriter(OutputOptions const& options, TAVO::Tavo const& analyser) {
    return std::make_unique<MecabWriter>(options, analyser);
}

}  // namespace tool
