#include "lexicon/import/source/entry_reader.hpp"

#include <algorithm>
#include <charconv>

namespace TAVO::importer {
namespace fs = std::filesystem;

long long parseNumber(std::string_view text, long long low, long long high, fs::path const& file, std::size_t line,
                      char const* what) {
    long long value = 0;
    auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc{} || end != text.data() + text.size())
        fail(file, line, std::string(what) + " \"" + std::string(text) + "\" is not a number");
    if (value < low || value > high)
        fail(file, line,
             std::string(what) + " " + std::to_string(value) + " is outside " + std::to_string(low) + ".." +
                 std::to_string(high));
    return value;
}

void EntryReader::ids(fs::path const& file, std::size_t line, std::uint32_t& row, std::uint32_t& col,
                      std::int32_t& cost) {
    if (fields_.size() < 5) fail(file, line, "fewer than 5 fields");
    long long const maxLeft = lexicon_.matrix.cols - 1, maxRight = lexicon_.matrix.rows - 1;
    col = static_cast<std::uint32_t>(parseNumber(fields_[1], 0, maxLeft, file, line, "left id"));
    row = static_cast<std::uint32_t>(parseNumber(fields_[2], 0, maxRight, file, line, "right id"));
    cost = static_cast<std::int32_t>(parseNumber(fields_[3], -32768, 32767, file, line, "cost"));
}

std::vector<std::string> EntryReader::posFields() const {
    auto const first = fields_.begin() + 4;
    return {first, first + std::min<std::ptrdiff_t>(fields_.end() - first, std::max(layout_.posFields, 0))};
}

void EntryReader::describeFields(std::size_t features) {
    auto const present = [&](int index) { return index < static_cast<int>(features) ? index : -1; };
    lexicon_.fields.count = features;
    lexicon_.fields.posCount =
        std::clamp<std::size_t>(static_cast<std::size_t>(std::max(layout_.posFields, 1)), 1, features);
    lexicon_.fields.base = present(layout_.base);
    lexicon_.fields.reading = present(layout_.reading);
    lexicon_.fields.pron = present(layout_.pron);
}

std::string EntryReader::name(fs::path const& file, std::size_t line) {
    std::string const utf8 = joinName(fields_, 4, static_cast<std::size_t>(layout_.posFields));
    std::string result;
    if (!cp932_.append(result, utf8)) fail(file, line, "the part of speech has characters outside code page 932");
    return result;
}

std::string_view EntryReader::field(int index) {
    if (index < 0 || fields_.size() <= static_cast<std::size_t>(index) + 4) return {};
    std::string const& text = fields_[static_cast<std::size_t>(index) + 4];
    if (text == "*") return {};
    scratch_.clear();
    if (!cp932_.append(scratch_, text)) {
        lexicon_.leftOut.lostFields.add(text);
        return {};
    }
    return lexicon_.keep(scratch_);
}

void EntryReader::csvLine(fs::path const& file, std::string_view line, std::size_t number) {
    splitCsv(line, fields_);
    ++lexicon_.entriesRead;
    check_.add(fields_);
    Word word;
    ids(file, number, word.row, word.col, word.cost);
    if (fields_[0].empty()) {
        lexicon_.leftOut.noForm.add(file.filename().string() + ":" + std::to_string(number));
        return;
    }
    scratch_.clear();
    if (!cp932_.append(scratch_, fields_[0])) {
        lexicon_.leftOut.noCode.add(fields_[0]);
        return;
    }
    word.form = lexicon_.keep(scratch_);
    // The feature lets the reduce rules join digits, and no other numerals; where
    // letters are words, it lets them join too.
    std::string const feature = classFeature(fields_[0]);
    bool const taken = feature != ":Alphabet" || lexicon_.shortUnits;
    std::string const partOfSpeech = name(file, number) + (taken ? feature : "");
    std::uint32_t const namesBefore = lexicon_.names.size();
    word.name = lexicon_.names.add(partOfSpeech);
    if (lexicon_.names.size() != namesBefore) lexicon_.nameFields(partOfSpeech, posFields(), false);
    word.base = field(layout_.base);
    if (word.base == word.form) word.base = {};
    word.reading = field(layout_.reading);
    word.pron = field(layout_.pron);
    lexicon_.words.push_back(word);
}

void EntryReader::unknownLine(fs::path const& file, std::string_view line, std::size_t number) {
    splitCsv(line, fields_);
    UnknownTemplate entry;
    ids(file, number, entry.row, entry.col, entry.cost);
    entry.category = fields_[0];
    entry.name = name(file, number);
    entry.fields.assign(fields_.begin() + 4, fields_.end());
    lexicon_.templates.push_back(entry);
}

}  // namespace TAVO::importer
