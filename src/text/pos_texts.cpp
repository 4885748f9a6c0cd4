#include "text/pos_texts.hpp"

#include "base/utf8.hpp"
#include "config/pos_name.hpp"

#include <algorithm>
#include <charconv>
#include <map>
#include <unordered_map>
#include <utility>

namespace TAVO {

namespace {

/// Two of the fields that tell a part of speech are the conjugation's, where there are so many.
constexpr std::size_t kFieldsWithConjugation = 6;

/// The columns of a line of CSV.
std::vector<std::string> splitFields(std::string_view line) {
    std::vector<std::string> columns(1);
    bool quoted = false;
    for (std::size_t i = 0; i != line.size(); ++i) {
        char const c = line[i];
        if (c == '"' && quoted && i + 1 != line.size() && line[i + 1] == '"')
            columns.back() += line[++i];
        else if (c == '"')
            quoted = !quoted;
        else if (c == ',' && !quoted)
            columns.emplace_back();
        else if (c != '\r')
            columns.back() += c;
    }
    return columns;
}

/// What the file pos.fields says: the fields by the table's name without class number.
struct PosFieldLines {
    std::size_t count = 0;  // of the fields in front that tell the part of speech
    std::map<std::string, std::vector<std::string>, std::less<>> fields;

    explicit PosFieldLines(std::string_view text) {
        while (!text.empty()) {
            std::size_t const end = std::min(text.find('\n'), text.size());
            std::string_view const line = text.substr(0, end);
            text.remove_prefix(std::min(end + 1, text.size()));
            if (line.empty() || line.front() == ';') continue;
            add(splitFields(line));
        }
    }

private:
    void add(std::vector<std::string> columns) {
        if (columns.size() < 3) return;
        if (columns[0] == "layout") {
            std::from_chars(columns[2].data(), columns[2].data() + columns[2].size(), count);
        } else if (columns[0] == "word" || columns[0] == "unknown") {
            std::string name = std::move(columns[1]);
            columns.erase(columns.begin(), columns.begin() + 2);
            fields.insert_or_assign(std::move(name), std::move(columns));
        }
    }
};

std::vector<std::string> levelsOf(std::string_view name) {
    std::vector<std::string> levels;
    while (!name.empty()) {
        std::size_t const end = std::min(name.find(':'), name.size());
        levels.emplace_back(name.substr(0, end));
        name.remove_prefix(std::min(end + 1, name.size()));
    }
    return levels;
}

bool isValue(std::string const& field) { return !field.empty() && field != "*"; }

}  // namespace

PosTexts::PosTexts(ConnTable const& table, std::string_view fields)
    : parts_(1), places_(table.idCount() + std::size_t{1}) {
    PosFieldLines const lines(fields);
    // Places by name: cost classes of one part of speech, most of all ids, differ in nothing.
    std::unordered_map<std::string_view, std::uint32_t> known;
    for (std::uint32_t pid = 1; pid < places_.size(); ++pid) {
        std::string_view const tableName = withoutClass(table.getName(pid));
        auto const [place, isNew] = known.emplace(tableName, static_cast<std::uint32_t>(parts_.size()));
        places_[pid] = place->second;
        if (!isNew) continue;
        auto const line = lines.fields.find(sjisToUtf8(tableName));
        bool const isTold = line != lines.fields.end() && line->second.size() >= lines.count && lines.count != 0;
        parts_.push_back(made(displayPosName(table.getName(pid)), isTold ? &line->second : nullptr, lines.count));
    }
}

/// @p line: the fields that the file has for it, of which @p count tell the part of speech; null without.
PosTexts::Part PosTexts::made(std::string_view displayName, std::vector<std::string> const* line, std::size_t count) {
    Part part;
    part.name = keep(sjisToUtf8(displayName));
    if (line == nullptr) {
        std::vector<std::string> const levels = levelsOf(part.name);
        setFields(part, levels, levels.size());
        return part;
    }
    bool const conjugates = count >= kFieldsWithConjugation;
    std::size_t const levels = count - (conjugates ? 2 : 0);
    setFields(part, *line, levels);
    if (!conjugates) return part;
    if (isValue((*line)[levels])) part.conjugationType = keep((*line)[levels]);
    if (isValue((*line)[levels + 1])) part.conjugationForm = keep((*line)[levels + 1]);
    return part;
}

std::string_view PosTexts::keep(std::string text) { return kept_.emplace_back(std::move(text)); }

void PosTexts::setFields(Part& part, std::vector<std::string> const& levels, std::size_t count) {
    std::string text;
    for (std::size_t i = 0; i != count && isValue(levels[i]); ++i) text.append(i == 0 ? "" : "\t").append(levels[i]);
    part.fieldsText = keep(std::move(text));
    for (std::string_view rest = part.fieldsText; !rest.empty();) {
        std::size_t const end = std::min(rest.find('\t'), rest.size());
        part.fields.push_back(rest.substr(0, end));
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
}

}  // namespace TAVO
