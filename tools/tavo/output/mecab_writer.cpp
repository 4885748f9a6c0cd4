// MeCab's format: word, tab, the lexicon's fields as CSV. A line EOS ends each input line.
#include "lexicon/mecab_fields.hpp"
#include "output/line_writer.hpp"
#include "output/word_layouts.hpp"

#include "config/pos_name.hpp"

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
          rows_(analyser.getPidMax() + std::size_t{1}) {
        auto const folder = std::filesystem::path(analyser.getConnTablePath()).parent_path();
        if (!fields_.read((folder / kMecabFieldsName).string())) fields_ = fieldsOfNames();
        withoutAnalysis_.tail = joined({}, fields_.unknownCount) + "\n";
    }

    TAVO::TokenTableOptions asksFor() const override {
        return {.values = {TAVO::WordValue::of('s'), TAVO::WordValue::of('k'), TAVO::WordValue::of('p')}};
    }

    void writeAnalysis(Words const& words, Rank const&, bool, OutBuffer& out) override {
        layouts_.begin(words);
        for (std::size_t i = words.begin(); i != words.end(); ++i) {
            std::string_view const word = words.table.shownText(i, words.text);
            WordLayouts::append(
                out, layouts_.of(words.number(i), word, [&](OutBuffer& to) { return writeLine(words, i, word, to); }));
        }
        out.append(eos_);
    }

private:
    enum Value : std::size_t { Base, Reading, Pron };  // in the order of asksFor()
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

    std::uint32_t writeLine(Words const& words, std::size_t i, std::string_view word, OutBuffer& out) {
        if (word.find_first_not_of(kBlanks) == std::string_view::npos) return 0;
        out.append(word);
        out.append('\t');
        Row const& row = words.isAnalysed(i) ? rowOf(words.of(i)) : withoutAnalysis_;
        for (Row::Piece const& piece : row.pieces) {
            out.append(piece.before);
            std::string_view const value = words.table.value(i, word, piece.value);
            out.append(value.empty() ? missing_ : csvField(value));
        }
        out.append(row.tail);
        return 0;
    }

    Row const& rowOf(TAVO::WordTable::Word const& word) {
        Row& row = rows_[word.pid < rows_.size() ? word.pid : 0];
        if (row.tail.empty()) row = rowOf(word.pid, word.isUnknown);
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
    WordLayouts layouts_;
};

}  // namespace

std::unique_ptr<LineWriter> makeMecabWriter(OutputOptions const& options, TAVO::Tavo const& analyser) {
    return std::make_unique<MecabWriter>(options, analyser);
}

}  // namespace tool
