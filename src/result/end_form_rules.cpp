#include "result/end_form_rules.hpp"

#include "base/sjis.hpp"
#include "config/pos_name.hpp"
#include "config/rule_lines.hpp"

#include <algorithm>

namespace TAVO {
namespace {

/// True for text of katakana and long-vowel marks alone.
bool isKatakanaText(std::string_view text) noexcept {
    if (text.empty() || text.size() % 2 != 0) return false;
    for (std::size_t pos = 0; pos < text.size(); pos += 2) {
        unsigned const lead = static_cast<unsigned char>(text[pos]), trail = static_cast<unsigned char>(text[pos + 1]);
        bool const isKana = lead == 0x83 && trail >= 0x40 && trail <= 0x96;
        if (!isKana && !(lead == 0x81 && trail == 0x5B)) return false;
    }
    return true;
}

/// False when the last byte is half a character.
bool isWhole(std::string_view text) noexcept { return !isInsideCharacter(text, text.size()); }

constexpr std::size_t number(EndFormRules::Kind kind) noexcept { return static_cast<std::size_t>(kind); }

}  // namespace

void EndFormRules::load(char const* path, std::string_view const* text) {
    std::string const kept = path == nullptr ? "" : path;
    std::shared_ptr<Rules const> made;
    if (path != nullptr) {
        auto rules = std::make_shared<Rules>();
        for (RuleLine const& line : readRuleLines(kept, text))
            if (std::string const cause = parse(line.text, *rules); !cause.empty())
                refuseRule(kept, line.number, cause);
        for (auto& [name, kinds] : *rules) {
            for (OneKind& kind : kinds) {
                // Of rules for one ending the first one counts.
                std::stable_sort(kind.begin(), kind.end(),
                                 [](Rule const& a, Rule const& b) { return a.strip < b.strip; });
                kind.erase(std::unique(kind.begin(), kind.end(),
                                       [](Rule const& a, Rule const& b) { return a.strip == b.strip; }),
                           kind.end());
            }
        }
        if (!rules->empty()) made = std::move(rules);
    }
    path_ = kept;
    rules_ = std::move(made);
}

std::string EndFormRules::parse(std::string_view line, Rules& rules) {
    std::array<std::string_view, 4> fields;  // part of speech, kinds, strip, add
    std::size_t count = 0;
    for (std::size_t begin = 0; begin <= line.size(); ++count) {
        if (count == fields.size()) return "Too Many Fields";
        std::size_t const end = std::min(line.find('\t', begin), line.size());
        fields[count] = line.substr(begin, end - begin);
        begin = end + 1;
    }
    if (count != fields.size()) return "Too Few Fields";
    auto const& [name, kinds, strip, add] = fields;
    if (name.empty()) return "No Part Of Speech";
    if (!isWhole(strip) || !isWhole(add)) return "Half A Character";
    PartOfSpeech& partOfSpeech = rules[std::string(withoutClass(name))];
    for (std::size_t begin = 0; begin <= kinds.size();) {
        std::size_t const end = std::min(kinds.find(',', begin), kinds.size());
        std::string_view const kind = kinds.substr(begin, end - begin);
        auto const found = std::find(kKindNames.begin(), kKindNames.end(), kind);
        if (found == kKindNames.end()) return "Unknown Kind:" + std::string(kind);
        partOfSpeech[static_cast<std::size_t>(found - kKindNames.begin())].push_back(
            {std::string(strip), std::string(add)});
        begin = end + 1;
    }
    return {};
}

std::optional<std::string> EndFormRules::applied(OneKind const& rules, std::string_view text) {
    if (rules.empty()) return {};
    // The longest ending first.
    for (std::size_t pos = 0;; pos += charWidth(text, pos)) {
        std::string_view const ending = text.substr(pos);
        auto const found = std::lower_bound(rules.begin(), rules.end(), ending,
                                            [](Rule const& rule, std::string_view end) { return rule.strip < end; });
        if (found != rules.end() && found->strip == ending) return std::string(text.substr(0, pos)) + found->add;
        if (pos == text.size()) return {};
    }
}

std::optional<std::string> EndFormRules::apply(std::string_view name, Kind kind, std::string_view text) const {
    if (rules_ == nullptr || text.empty()) return {};
    auto const found = rules_->find(withoutClass(name));
    if (found == rules_->end()) return {};
    std::optional<std::string> end = applied(found->second[number(kind)], text);
    if (!end && kind == Kind::Form && isKatakanaText(text)) end = applied(found->second[number(Kind::Reading)], text);
    return end;
}

}  // namespace TAVO
