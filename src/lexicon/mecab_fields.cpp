#include "lexicon/mecab_fields.hpp"

#include "lexicon/import/source/source_lexicon.hpp"

#include <algorithm>
#include <charconv>
#include <fstream>
#include <map>

namespace TAVO::words {

namespace {

constexpr char kHead[] =
    "; The fields of MeCab's format by part of speech; tavo -O mecab reads it. UTF-8.\n"
    "; layout: number of fields, of those in front that tell the part of speech, and where\n"
    ";   base form, reading and pronunciation stand, from 0 (-1: nowhere)\n"
    "; word: a part of speech and these fields; unknown: one of unknown words and all its fields\n";
constexpr int kMostFields = 1000;

bool readNumber(std::string const& text, int least, int& value) {
    auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc{} && end == text.data() + text.size() && value >= least && value <= kMostFields;
}

bool readLayout(std::vector<std::string> const& columns, MecabFields& fields) {
    int count = 0, posCount = 0;
    bool const sound = columns.size() == 6 && readNumber(columns[1], 1, count) && readNumber(columns[2], 1, posCount) &&
                       readNumber(columns[3], -1, fields.base) && readNumber(columns[4], -1, fields.reading) &&
                       readNumber(columns[5], -1, fields.pron) && posCount <= count &&
                       std::max({fields.base, fields.reading, fields.pron}) < count;
    fields.count = static_cast<std::size_t>(count);
    fields.posCount = static_cast<std::size_t>(posCount);
    return sound;
}

bool readColumns(std::vector<std::string> const& columns, MecabFields& fields) {
    if (columns[0] == "layout") return readLayout(columns, fields);
    bool const unknown = columns[0] == "unknown";
    if ((!unknown && columns[0] != "word") || columns.size() < 3) return false;
    std::vector<std::string> values(columns.begin() + 2, columns.end());
    if (unknown && fields.unknownCount == 0) fields.unknownCount = values.size();
    fields.partsOfSpeech[columns[1]] = {std::move(values), unknown};
    return true;
}

}  // namespace

std::string csvField(std::string_view text) {
    if (text.find_first_of(",\"") == std::string_view::npos) return std::string(text);
    std::string quoted = "\"";
    for (char const c : text) quoted.append(c == '"' ? 2 : 1, c);
    return quoted + '"';
}

bool MecabFields::read(std::string const& path) {
    std::ifstream in(path);
    if (!in) return false;
    std::vector<std::string> columns;
    std::string line;
    for (std::size_t number = 1; std::getline(in, line); ++number) {
        if (line.empty() || line[0] == ';') continue;
        importer::splitCsv(line, columns);
        if (!readColumns(columns, *this))
            throw lexicon_error(path, number, "no line of fields; import the lexicon again, or remove the file");
    }
    if (count == 0) throw lexicon_error(path, 0, "has no line \"layout\"; import the lexicon again");
    if (unknownCount == 0) unknownCount = std::min(posCount + 1, count);
    return true;
}

std::string MecabFields::text() const {
    std::string result = kHead;
    result += "layout," + std::to_string(count) + "," + std::to_string(posCount) + "," + std::to_string(base) + "," +
              std::to_string(reading) + "," + std::to_string(pron) + "\n";
    std::map<std::string_view, PartOfSpeech const*> sorted;
    for (auto const& [name, part] : partsOfSpeech) sorted.emplace(name, &part);
    for (auto const& [name, part] : sorted) {
        result += (part->unknown ? "unknown," : "word,") + csvField(name);
        for (std::string const& field : part->fields) result += "," + csvField(field);
        result += "\n";
    }
    return result;
}

std::vector<std::string> MecabFields::levels(std::string_view displayName) {
    std::vector<std::string> result;
    while (!displayName.empty()) {
        std::size_t const end = std::min(displayName.find(':'), displayName.size());
        result.emplace_back(displayName.substr(0, end));
        displayName.remove_prefix(std::min(end + 1, displayName.size()));
    }
    return result;
}

MecabFields MecabFields::ofNames(std::vector<std::string> const& names) {
    MecabFields fields;
    fields.posCount = 1;
    for (std::string const& name : names) fields.posCount = std::max(fields.posCount, levels(name).size());
    int const values = static_cast<int>(fields.posCount);
    fields.base = values;
    fields.reading = values + 1;
    fields.pron = values + 2;
    fields.count = fields.posCount + 3;
    fields.unknownCount = fields.posCount + 1;
    return fields;
}

}  // namespace TAVO::words
