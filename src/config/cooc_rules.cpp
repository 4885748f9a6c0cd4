#include "config/cooc_rules.hpp"

#include "base/text.hpp"
#include "config/rule_lines.hpp"

#include <charconv>

namespace TAVO {
namespace {

struct CoocKey {
    std::string_view name;
    std::uint32_t CoocSettings::*value;
    std::uint32_t least, most;
};

constexpr CoocKey kCoocKeys[] = {
    {"Margin", &CoocSettings::margin, 0, 65535},          {"Sentences", &CoocSettings::sentences, 0, 1000},
    {"Window", &CoocSettings::window, 1, 65535},          {"WordWeight", &CoocSettings::wordWeight, 0, 1000},
    {"GroupWeight", &CoocSettings::groupWeight, 0, 1000},
};

/// Takes a line over; returns the cause of a refusal, or "".
std::string parseCoocLine(std::string_view line, CoocSettings& settings) {
    std::size_t const equals = line.find('=');
    if (equals == std::string_view::npos) return "No Equals Sign";
    std::string_view const name = strip(line.substr(0, equals));
    std::string_view const digits = strip(line.substr(equals + 1));
    for (CoocKey const& key : kCoocKeys) {
        if (key.name != name) continue;
        std::uint32_t value = 0;
        auto const [end, code] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
        bool const isNumber = code == std::errc() && end == digits.data() + digits.size();
        if (!isNumber || value < key.least || value > key.most)
            return std::string(name) + " Not From " + std::to_string(key.least) + " To " + std::to_string(key.most);
        settings.*key.value = value;
        return {};
    }
    return "Unknown Setting:" + std::string(name);
}

}  // namespace

void CoocRules::load(char const* path, std::string_view const* text) {
    std::string const kept = path == nullptr ? "" : path;
    CoocSettings settings;
    if (path != nullptr) {
        for (RuleLine const& line : readRuleLines(kept, text))
            if (std::string const cause = parseCoocLine(line.text, settings); !cause.empty())
                refuseRule(kept, line.number, cause);
    }
    path_ = kept;
    settings_ = settings;
}

}  // namespace TAVO
