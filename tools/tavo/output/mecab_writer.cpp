// MeCab's format: word, tab, the lexicon's fields as CSV. A line EOS ends each input line.
#include "lexicon/mecab_fields.hpp"
#include "output/line_writer.hpp"
#include "output/token.hpp"
#include "output/value_text.hpp"

#include "config/pos_name.hpp"

#include <cstdint>
#include <filesystem>
#include <utility>

namespace tool {

using TAVO::words::csvField;
using TAVO::words::kMecabFieldsName;
using TAVO::words::MecabFields;

namespace {

/// Words of these alone are no words in this format.
constexpr char kBlanks[] = " \t\n\v";

class MecabWriter final : public LineWriter {
public:
    MecabWriter(OutputOptions const& options, TAVO::Tavo const& analyser)
        : LineWriter(options),
          analyser_(analyser),
          encoding_(options.encoding),
          eos_(options.eos.value_or("EOS\n")),
          missing_(csvField(options.nullString.value_or("*"))),
          rows_(analyser.getPidMax() + std::size_t{1}),
          recordsStay_(analyser.getTaggedInputMode() != 1 && *analyser.getCommentRulePath() == '\0') {
        if (recordsStay_) written_.resize(kWritten);
        auto const folder = std::filesystem::path(analyser.getConnTablePath()).parent_path();
        if (!fields_.read((folder / kMecabFieldsName).string())) fields_ = fieldsOfNames();
        withoutAnalysis_.tail = joined({}, fields_.unknownCount) + "\n";
    }

    void writePiece(Analysis const& analysis, OutBuffer& out) override {
        forEachToken(
            analysis, morphemes_, [&](Token const& token) { writeToken(analysis.text, token, out); }, [] {});
    }

    void endAnalysis(bool, OutBuffer& out) override { out.append(eos_); }

private:
    enum class Value { Base, Reading, Pron };
    /// What stands behind the tab for a part of speech.
    struct Row {
        struct Piece {
            std::string before;  // in the user's encoding
            Value value;
        };
        std::vector<Piece> pieces;
        std::string tail;  // with the line's end; empty: not made yet
    };

    MecabFields fieldsOfNames() const {
        std::vector<std::string> names;
        for (unsigned pid = 1; pid < rows_.size(); ++pid)
            names.push_back(displayName(static_cast<unsigned short>(pid)));
        return MecabFields::ofNames(names);
    }
    std::string displayName(unsigned short pid) const { return sjisToUtf8(analyser_.getDisplayPartOfSP(pid)); }

    /// The line of a word, which most words of a text have had before, and those of other analyses nearly all.
    struct Written {
        unsigned char const* record = nullptr;
        std::size_t wordBytes = 0;
        std::string line;  // begins with the word
    };
    static constexpr std::size_t kWritten = 4096;

    /// Where the line of @p word stands or is to be kept; null when more than the record tells its fields.
    Written* placeOf(std::string_view word, Token const& token) {
        if (!recordsStay_ || token.morpheme == nullptr || TAVO::MrphAccess::cover(*token.morpheme) != nullptr)
            return nullptr;
        auto const address = reinterpret_cast<std::uintptr_t>(TAVO::MrphAccess::record(*token.morpheme));
        // Unknown words have one record: their last byte tells some apart.
        return &written_[(address / 4 + static_cast<unsigned char>(word.back()) * std::size_t{61}) % kWritten];
    }

    void writeToken(LineText const& text, Token const& token, OutBuffer& out) {
        std::string_view const word = text.slice(token.begin, token.end);
        Written* const place = placeOf(word, token);
        if (place == nullptr) return writeLine(word, text, token, out);
        unsigned char const* const record = TAVO::MrphAccess::record(*token.morpheme);
        if (place->record != record || place->wordBytes != word.size() || !place->line.starts_with(word)) {
            std::size_t const start = out.size();
            writeLine(word, text, token, out);
            place->line = out.view().substr(start);
            place->record = place->line.empty() ? nullptr : record;  // blanks have no line
            place->wordBytes = word.size();
            return;
        }
        out.append(place->line);
    }

    void writeLine(std::string_view word, LineText const& text, Token const& token, OutBuffer& out) {
        if (word.find_first_not_of(kBlanks) == std::string_view::npos) return;
        out.append(word);
        out.append('\t');
        Row const& row = token.morpheme == nullptr ? withoutAnalysis_ : rowOf(*token.morpheme);
        for (Row::Piece const& piece : row.pieces) {
            out.append(piece.before);
            writeValue(valueOf(*token.morpheme, piece.value), text, token, out);
        }
        out.append(row.tail);
    }

    static std::string valueOf(TAVO::Mrph const& m, Value value) {
        if (value == Value::Base) return m.getStdForm(true);
        return value == Value::Reading ? m.getRead(true) : m.getPron(true);
    }

    void writeValue(std::string const& value, LineText const& text, Token const& token, OutBuffer& out) {
        if (value.empty()) return out.append(missing_);
        std::size_t const start = out.size();
        appendValue(out, value, token, text);
        std::string_view const written = out.view().substr(start);
        if (written.find_first_of(",\"") == std::string_view::npos) return;
        std::string const quoted = csvField(written);
        out.finish(out.view().data() + start);
        out.append(quoted);
    }

    Row const& rowOf(TAVO::Mrph const& m) {
        Row& row = rows_[m.getPid() < rows_.size() ? m.getPid() : 0];
        if (row.tail.empty()) row = rowOf(m.getPid(), TAVO::MrphAccess::isUnknown(m));
        return row;
    }

    Row rowOf(unsigned short pid, bool unknown) const {
        auto const known = fields_.partsOfSpeech.find(sjisToUtf8(TAVO::withoutClass(analyser_.getPartOfSP(pid))));
        bool const told = known != fields_.partsOfSpeech.end();
        std::vector<std::string> const pos = told ? known->second.fields : MecabFields::levels(displayName(pid));
        Row row;
        if (told ? known->second.unknown : unknown) {
            row.tail = joined(pos, told ? pos.size() : fields_.unknownCount) + "\n";
            return row;
        }
        std::string before;
        for (std::size_t i = 0; i != fields_.count; ++i) {
            if (i != 0) before += ',';
            int const field = static_cast<int>(i);
            if (field == fields_.base || field == fields_.reading || field == fields_.pron) {
                Value const value = field == fields_.base   ? Value::Base
                                    : field == fields_.pron ? Value::Pron
                                                            : Value::Reading;
                row.pieces.push_back({std::exchange(before, {}), value});
            } else {
                before += fieldAt(pos, i);
            }
        }
        row.tail = before + "\n";
        return row;
    }

    std::string joined(std::vector<std::string> const& values, std::size_t count) const {
        std::string result;
        for (std::size_t i = 0; i != count; ++i) result += (i == 0 ? "" : ",") + fieldAt(values, i);
        return result;
    }

    /// Field @p index of the part of speech @p pos in the user's encoding.
    std::string fieldAt(std::vector<std::string> const& pos, std::size_t index) const {
        bool const missing = index >= pos.size() || pos[index].empty() || pos[index] == "*";
        if (missing) return missing_;
        return csvField(encoding_ == Encoding::Utf8 ? pos[index]
                                                    : argumentToSjis(pos[index], Encoding::Utf8, kMecabFieldsName));
    }

    TAVO::Tavo const& analyser_;
    Encoding encoding_;
    std::string eos_, missing_;
    MecabFields fields_;
    std::vector<Row> rows_;  // by part-of-speech id
    Row withoutAnalysis_;
    bool recordsStay_;              // no record is made for one text and freed with it
    std::vector<Written> written_;  // by record; a later word takes the place
    std::vector<TAVO::Mrph> morphemes_;
};

}  // namespace

std::unique_ptr<LineWriter> makeMecabWriter(OutputOptions const& options, TAVO::Tavo const& analyser) {
    return std::make_unique<MecabWriter>(options, analyser);
}

}  // namespace tool
