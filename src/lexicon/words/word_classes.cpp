#include "lexicon/words/word_classes.hpp"

#include "config/pos_name.hpp"

#include <tavo/lexicon_maker.hpp>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <sstream>
#include <tuple>

namespace TAVO::words {

namespace {

constexpr double kMiddleByte = 128, kBytesPerUnit = 127;

std::string decimal(double value) {
    char buffer[32];
    std::snprintf(buffer, sizeof buffer, "%.4f", value);
    return buffer;
}

bool readLine(std::istringstream& words, std::string const& kind, WordClasses& result) {
    std::uint32_t id = 0;
    WordClasses::Line line;
    WordClasses::Class entry;
    if (kind == "step") return static_cast<bool>(words >> result.step) && result.step > 0;
    if (kind == "byte") return static_cast<bool>(words >> result.perByte);
    if (kind == "left" || kind == "right") {
        if (!(words >> id >> line.leader >> line.offset)) return false;
        (kind == "left" ? result.left : result.right)[id] = line;
        return true;
    }
    if (kind != "id" || !(words >> id >> entry.row >> entry.column >> entry.level) || id > 65534) return false;
    if (result.classes.size() <= id) result.classes.resize(id + std::size_t{1});
    entry.known = true;
    result.classes[id] = entry;
    return true;
}

}  // namespace

WordClasses WordClasses::read(std::string const& path) {
    std::ifstream in(path);
    if (!in) throw lexicon_error(path, 0, "cannot be opened");
    WordClasses result;
    std::string line, kind;
    for (std::size_t number = 1; std::getline(in, line); ++number) {
        std::istringstream words(line);
        if (line.empty() || line[0] == ';') continue;
        if (!(words >> kind) || !readLine(words, kind, result))
            throw lexicon_error(path, number, "no line of word classes");
    }
    if (result.classes.empty()) throw lexicon_error(path, 0, "holds no classes");
    return result;
}

std::string WordClasses::text() const {
    std::string result =
        "; Which ids stand for which costs; tavo dic build reads it.\n"
        "; left, right: id of the source, the id whose line it shares, cost\n"
        "; id: part of speech, right and left id, cost\n"
        "step " +
        decimal(step) + "\nbyte " + decimal(perByte) + "\n";
    auto const addLines = [&](char const* kind, std::map<std::uint32_t, Line> const& lines) {
        for (auto const& [id, line] : lines)
            result += kind + std::to_string(id) + " " + std::to_string(line.leader) + " " + decimal(line.offset) + "\n";
    };
    addLines("left ", left);
    addLines("right ", right);
    for (std::size_t id = 0; id < classes.size(); ++id)
        if (classes[id].known)
            result += "id " + std::to_string(id) + " " + std::to_string(classes[id].row) + " " +
                      std::to_string(classes[id].column) + " " + decimal(classes[id].level) + "\n";
    return result;
}

Placement WordClasses::bySource(std::vector<std::string> const& names, std::string_view name, std::uint32_t leftId,
                                std::uint32_t rightId, double cost, std::size_t bytes) const {
    auto const before = left.find(leftId), behind = right.find(rightId);
    if (before == left.end() || behind == right.end()) return {};
    double const shifted = cost + before->second.offset - behind->second.offset + perByte * static_cast<double>(bytes);
    return nearest(names, name, {behind->second.leader, before->second.leader, shifted / step});
}

Placement WordClasses::byWord(std::vector<std::string> const& names, std::string_view name, Placement like,
                              std::size_t likeBytes, std::size_t bytes) const {
    if (like.id >= classes.size() || !classes[like.id].known) return {};
    Class const& of = classes[like.id];
    double const longer = static_cast<double>(bytes) - static_cast<double>(likeBytes);
    double const level = of.level + (like.cost - kMiddleByte) / kBytesPerUnit + perByte * longer / step;
    return nearest(names, name, {of.row, of.column, level});
}

Placement WordClasses::nearest(std::vector<std::string> const& names, std::string_view name,
                               Place const& wanted) const {
    Placement best;
    std::tuple<bool, bool, double> least;
    for (std::size_t id = 1; id < std::min(classes.size(), names.size()); ++id) {
        Class const& c = classes[id];
        if (!c.known || withoutClass(names[id]) != name) continue;
        // A class that connects otherwise is a makeshift, however near its level is.
        std::tuple const distance(c.row != wanted.row, c.column != wanted.column, std::abs(c.level - wanted.level));
        if (best.id != 0 && distance >= least) continue;
        least = distance;
        best.id = static_cast<std::uint16_t>(id);
        double const rest = std::round(kMiddleByte + kBytesPerUnit * (wanted.level - c.level));
        best.cost = static_cast<std::uint8_t>(std::clamp(rest, 1.0, 255.0));
    }
    return best;
}

}  // namespace TAVO::words
