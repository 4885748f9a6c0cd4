// Fields of CSV lines, and the names of parts of speech that they make.
#include "lexicon/import/source/charset.hpp"
#include "lexicon/import/source/source_lexicon.hpp"

#include <algorithm>

namespace TAVO::importer {
namespace {

/// Latin of either width, Greek, Cyrillic.
bool isLetter(std::uint32_t c) {
    auto const within = [&](std::uint32_t low, std::uint32_t high) { return c >= low && c <= high; };
    return within('A', 'Z') || within('a', 'z') || within(0xFF21, 0xFF3A) || within(0xFF41, 0xFF5A) ||
           within(0x0391, 0x03C9) || within(0x0401, 0x0451);
}

}  // namespace

std::string joinName(std::vector<std::string> const& fields, std::size_t first, std::size_t count) {
    std::string name;
    for (std::size_t i = first; i < std::min(fields.size(), first + count); ++i) {
        if (fields[i].empty() || fields[i] == "*") continue;
        if (!name.empty()) name += ':';
        for (char c : fields[i]) name += c == '-' || c == '/' ? ':' : c;
    }
    return name.empty() ? "*" : name;
}

std::string classFeature(std::string_view form) {
    bool digitBefore = false, first = true;
    for (std::size_t pos = 0; pos < form.size();) {
        std::uint32_t const c = nextCodePoint(form, pos);
        if (first && pos == form.size() && isLetter(c)) return ":Alphabet";
        first = false;
        bool const digit = (c >= '0' && c <= '9') || (c >= 0xFF10 && c <= 0xFF19);
        bool const comma = c == ',' || c == 0xFF0C;
        if (!digit && !(comma && digitBefore)) return {};
        digitBefore = digit;
    }
    return digitBefore ? ":Number" : "";
}

void splitCsv(std::string_view line, std::vector<std::string>& fields) {
    std::size_t count = 0;
    std::size_t pos = 0;
    while (true) {
        if (fields.size() == count) fields.emplace_back();
        std::string& field = fields[count++];
        field.clear();
        if (pos < line.size() && line[pos] == '"') {
            ++pos;
            while (pos < line.size() && (line[pos] != '"' || (pos + 1 < line.size() && line[pos + 1] == '"'))) {
                if (line[pos] == '"') ++pos;
                field += line[pos++];
            }
            pos = std::min(line.find(',', pos), line.size());
        } else {
            std::size_t const end = std::min(line.find(',', pos), line.size());
            field.assign(line.substr(pos, end - pos));
            pos = end;
        }
        if (pos >= line.size()) break;
        ++pos;
    }
    fields.resize(count);
}

}  // namespace TAVO::importer
