#include "lexicon/words/new_words.hpp"

#include "lexicon/import/source/source_lexicon.hpp"
#include "lexicon/import/write.hpp"

#include "base/sjis.hpp"
#include "base/utf8.hpp"
#include "config/pos_name.hpp"

#include <algorithm>
#include <charconv>

namespace TAVO::words {

namespace {

/// Fields of a line of dictionary source, as written.
std::vector<std::string_view> splitSource(std::string_view line) {
    std::vector<std::string_view> fields;
    std::size_t begin = 0, pos = 0;
    while (pos < line.size()) {
        if (line[pos] == ',') {
            fields.push_back(line.substr(begin, pos - begin));
            begin = ++pos;
            continue;
        }
        if (line[pos] == '\\') ++pos;
        if (pos < line.size()) pos += charWidth(line, pos);
    }
    fields.push_back(line.substr(begin));
    return fields;
}

/// Calls visit(character) for each character that @p field stands for; part separators stand for none.
template <class Visit>
void forEachCharacter(std::string_view field, Visit&& visit) {
    for (std::size_t pos = 0; pos < field.size();) {
        bool const escaped = field[pos] == '\\' && pos + 1 < field.size();
        pos += escaped ? 1U : 0U;
        std::size_t const width = charWidth(field, pos);
        bool const separator = !escaped && (field[pos] == '-' || field[pos] == '/');
        if (!separator) visit(field.substr(pos, width));
        pos += width;
    }
}

std::size_t formBytes(std::string_view field) {
    std::size_t bytes = 0;
    forEachCharacter(field, [&](std::string_view character) { bytes += character.size(); });
    return bytes;
}

/// A number of MeCab's format; nothing when it is left open.
bool parseOpen(std::string const& field, std::optional<int>& value) {
    if (field.empty() || field == "*") return true;
    int number = 0;
    auto const [end, fault] = std::from_chars(field.data(), field.data() + field.size(), number);
    if (fault != std::errc{} || end != field.data() + field.size()) return false;
    value = number;
    return true;
}

}  // namespace

Placement NewWords::typical(std::string_view name) const {
    auto const found = std::find(names_.begin() + 1, names_.end(), name);
    return {found == names_.end() ? std::uint16_t{0} : static_cast<std::uint16_t>(found - names_.begin())};
}

Placement NewWords::likePlacement(std::string_view name, std::size_t bytes) const {
    if (classes_) {
        Placement const placed = classes_->byWord(names_, name, like_->placement, like_->bytes, bytes);
        if (placed.id != 0) return placed;
    }
    bool const sameName = withoutClass(names_.at(like_->placement.id)) == name;
    Placement placed = sameName ? like_->placement : typical(name);
    placed.cost = like_->placement.cost;
    return placed;
}

bool NewWords::fromMecab(std::string_view line, std::string& source, std::string& error) const {
    std::vector<std::string> fields;
    importer::splitCsv(line, fields);
    std::optional<int> left, right, cost;
    if (fields.size() < 5 || fields[0].empty()) {
        error = "Error: form, left id, right id, cost and features are expected";
        return false;
    }
    if (!parseOpen(fields[1], left) || !parseOpen(fields[2], right) || !parseOpen(fields[3], cost)) {
        error = "Error: left id, right id and cost are numbers, or empty";
        return false;
    }
    auto const layout = importer::layoutFor(fields.size() - 4);
    std::string name = importer::joinName(fields, 4, static_cast<std::size_t>(layout.posFields));
    // Digits and letters have a name of their own where the lexicon's have.
    std::string const special = name + importer::classFeature(sjisToUtf8(fields[0]));
    if (typical(special).id != 0) name = special;

    bool const known = left.value_or(-1) >= 0 && right.value_or(-1) >= 0 && cost;
    Placement placed;
    if (known && classes_)
        placed = classes_->bySource(names_, name, static_cast<unsigned>(*left), static_cast<unsigned>(*right), *cost,
                                    fields[0].size());
    else if (like_)
        placed = likePlacement(name, fields[0].size());
    if (placed.id == 0) placed = typical(name);
    auto const field = [&](int index) -> std::string_view {
        if (index < 0 || fields.size() <= static_cast<std::size_t>(index) + 4) return {};
        std::string const& text = fields[static_cast<std::size_t>(index) + 4];
        return text == "*" ? std::string_view() : std::string_view(text);
    };
    std::string_view const base = field(layout.base);
    source = importer::sourceLine(fields[0], placed.id != 0 ? names_[placed.id] : name, placed.cost,
                                  field(layout.reading), field(layout.pron), base == fields[0] ? "" : base);
    return true;
}

std::string NewWords::complete(std::string_view line) const {
    std::vector<std::string_view> fields = splitSource(line);
    if (fields.size() < 3) fields.resize(3);
    if (!like_ || (!fields[1].empty() && !fields[2].empty())) return std::string(line);
    std::string name;
    forEachCharacter(fields[1], [&](std::string_view character) { name += character; });
    bool const given = !name.empty();
    // A name that is given with its class keeps it.
    bool const whole = given && withoutClass(name) != name;
    Placement placed = like_->placement;
    if (!whole) {
        if (!given) name = withoutClass(names_.at(placed.id));
        placed = likePlacement(name, formBytes(fields[0]));
    }
    std::string result(fields[0]);
    result += ',';
    result += whole || placed.id == 0 ? std::string(fields[1]) : importer::escapeField(names_[placed.id]);
    result += ',';
    result += fields[2].empty() ? std::to_string(placed.cost) : std::string(fields[2]);
    for (std::size_t i = 3; i < fields.size(); ++i) result.append(",").append(fields[i]);
    return result;
}

}  // namespace TAVO::words
