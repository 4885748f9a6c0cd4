#include "convert/convert_rules.hpp"

#include "base/serial.hpp"
#include "base/sjis.hpp"
#include "config/init_file.hpp"
#include "config/rule_lines.hpp"

#include <algorithm>
#include <utility>

namespace TAVO {
namespace {

/// Fills @p rule; returns the cause of a refusal, or "".
std::string parseConvertRule(std::string const& line, ConvertRules::Rule& rule) {
    std::size_t const tab = line.find('\t');
    if (tab == npos) return "No Tab";
    rule.from = decodeEscapes(line.substr(0, tab));
    rule.to = decodeEscapes(line.substr(tab + 1));
    if (rule.from.empty()) return "Nothing To Convert";
    if (rule.to.empty()) return "Nothing To Convert To";
    if (rule.to.find('\t') != npos) return "Second Tab";
    // A cut character would take its neighbour's byte for its own.
    for (std::string const* text : {&rule.from, &rule.to})
        if (isInsideCharacter(*text, text->size())) return "Half A Character";
    return {};
}

bool comesBefore(ConvertRules::Rule const& a, ConvertRules::Rule const& b) noexcept { return a.from > b.from; }

}  // namespace

std::uint16_t charCode(std::string_view text) noexcept {
    auto const byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    return charWidth(text, 0) == 2 ? static_cast<std::uint16_t>(byte(0) << 8 | byte(1)) : std::uint16_t{byte(0)};
}

void ConvertRules::load(char const* path) {
    std::string const kept = path == nullptr ? "" : path;
    std::vector<Rule> rules;
    if (path != nullptr) {
        for (RuleLine const& line : readRuleLines(kept)) {
            Rule rule;
            if (std::string const cause = parseConvertRule(line.text, rule); !cause.empty())
                refuseRule(kept, line.number, cause);
            rules.push_back(std::move(rule));
        }
    }
    // Of rules for one text the first one counts.
    std::stable_sort(rules.begin(), rules.end(), comesBefore);
    rules.erase(std::unique(rules.begin(), rules.end(), [](Rule const& a, Rule const& b) { return a.from == b.from; }),
                rules.end());
    path_ = kept;
    rules_ = std::move(rules);
    revision_ = nextSerial();
}

ConvertRules::Rule const* ConvertRules::longest(std::string_view text) const noexcept {
    // All rules that begin the text stand among those of its first byte, longer ones first.
    auto const byFirst = [](Rule const& rule, char first) {
        return static_cast<unsigned char>(rule.from.front()) > static_cast<unsigned char>(first);
    };
    auto at = std::lower_bound(rules_.begin(), rules_.end(), text.front(), byFirst);
    for (; at != rules_.end() && at->from.front() == text.front(); ++at)
        if (text.starts_with(at->from)) return &*at;
    return nullptr;
}

}  // namespace TAVO
