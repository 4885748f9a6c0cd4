#include "result/reduce_rules.hpp"

#include "base/sjis.hpp"
#include "base/text.hpp"
#include "config/rule_lines.hpp"
#include "dic/conn_table.hpp"
#include "result/mrph_access.hpp"

#include <tavo/error.hpp>

#include <algorithm>
#include <iterator>
#include <utility>

namespace TAVO {
namespace {

constexpr Mode kReduceModes[] = {Mode::ReduceUndef, Mode::ReduceNumber, Mode::ReduceChar};

/// The words of @p text between separators; every one stripped.
std::vector<std::string_view> split(std::string_view text, std::string_view separators) {
    std::vector<std::string_view> words;
    for (std::size_t begin = 0; begin <= text.size();) {
        std::size_t const end = std::min(findMark(text, separators, begin), text.size());
        words.push_back(strip(text.substr(begin, end - begin)));
        begin = end + 1;
    }
    return words;
}

/// Where the options start: at the first ":" behind a blank, since names hold ":".
std::size_t optionsStart(std::string_view text) {
    for (std::size_t pos = findMark(text, ":"); pos != std::string_view::npos; pos = findMark(text, ":", pos + 1))
        if (pos == 0 || text[pos - 1] == ' ' || text[pos - 1] == '\t') return pos;
    return text.size();
}

/// Fills @p rule from the class words; returns the cause of a refusal, or "".
std::string parseClass(std::string_view text, ReduceRule& rule) {
    for (std::string_view const word : split(text, ":")) {
        auto const* const found = std::find_if(std::begin(kPosClassWords), std::end(kPosClassWords),
                                               [&](PosClassWord const& known) { return known.word == word; });
        if (found == std::end(kPosClassWords) && word != "Number") return "Unknown Class:" + std::string(word);
        std::uint8_t const bit = word == "Number" ? std::uint8_t{kNumberPos} : found->bit;
        rule.mask = static_cast<std::uint8_t>(rule.mask | bit);
    }
    if ((rule.mask & kUndefPos) != 0)
        rule.mode = Mode::ReduceUndef;
    else if ((rule.mask & kNumberPos) != 0)
        rule.mode = Mode::ReduceNumber;
    return {};
}

std::string parseOptions(std::string_view text, ReduceRule& rule) {
    for (std::string_view const option : split(text, " \t")) {
        if (option.empty()) continue;
        std::size_t const equals = option.find('=');
        std::string_view const key = option.substr(0, equals);
        if (equals == std::string_view::npos || equals + 1 == option.size())
            return "Option Without Value:" + std::string(option);
        std::string value(option.substr(equals + 1));
        if (key == "with")
            rule.with = std::move(value);
        else if (key == "inner")
            rule.inner = std::move(value);
        else
            return "Unknown Option:" + std::string(key);
    }
    return {};
}

std::string parseRule(std::string_view line, ReduceRule& rule) {
    std::size_t const equals = line.find('=');
    if (equals == std::string_view::npos) return "No Equals Sign";
    if (std::string cause = parseClass(strip(line.substr(0, equals)), rule); !cause.empty()) return cause;
    std::string_view const rest = line.substr(equals + 1);
    std::size_t const options = optionsStart(rest);
    rule.partOfSP = std::string(strip(rest.substr(0, options)));
    return options == rest.size() ? std::string() : parseOptions(rest.substr(options + 1), rule);
}

}  // namespace

void ReduceRules::load(char const* path, std::string_view const* text) {
    std::string const kept = path == nullptr ? "" : path;
    std::vector<ReduceRule> rules;
    PhraseRules phrases;
    if (path != nullptr) {
        for (RuleLine const& read : readRuleLines(kept, text)) {
            std::string_view const line = strip(read.text);
            std::string cause;
            if (PhraseRules::isPhraseRule(line)) {
                cause = phrases.add(line);
            } else {
                ReduceRule rule;
                cause = parseRule(line, rule);
                if (cause.empty() && rules.size() == kMaxRules) cause = "Too Many Rules";
                rules.push_back(std::move(rule));
            }
            if (!cause.empty()) refuseRule(kept, read.number, cause);
        }
    }
    path_ = kept;
    rules_ = std::move(rules);
    phrases_ = std::move(phrases);
    ids_.clear();
    boundRevision_ = 0;
    boundTable_ = 0;
}

void ReduceRules::bind(PosTables const& pos, Settings const& settings) {
    phrases_.bind(pos);
    if (rules_.empty()) return;
    int modes[3];
    std::transform(std::begin(kReduceModes), std::end(kReduceModes), modes, [&](Mode m) { return settings.mode(m); });
    if (boundRevision_ == pos.revision() && std::equal(std::begin(modes), std::end(modes), boundModes_)) return;

    joinedPids_.clear();
    for (ReduceRule const& rule : rules_) joinedPids_.push_back(rule.partOfSP.empty() ? 0 : pos.getPid(rule.partOfSP));
    ids_.assign(pos.getPidMax() + std::size_t{1}, kNone);
    PosName name;
    for (std::uint32_t pid = 1; pid < ids_.size(); ++pid) {
        std::uint8_t const type = pos.type(pid);
        for (std::size_t i = 0; i < rules_.size() && type != 0; ++i) {
            ReduceRule const& rule = rules_[i];
            if ((type & rule.mask) != rule.mask || settings.mode(rule.mode) != 1) continue;
            splitPosName(pos.name(pid), name);
            bool const follows = rule.with.empty() || name.hasFeature(rule.with);
            ids_[pid] = static_cast<std::uint8_t>((i + 1) | (follows ? kFollows : 0U));
            break;
        }
    }
    boundTable_ = 0;
    boundRevision_ = pos.revision();
    std::copy(std::begin(modes), std::end(modes), boundModes_);
}

void ReduceRules::bindColumns(ConnTable const& table) {
    if (boundTable_ == table.serial()) return;
    constexpr std::uint16_t kNobody = 0x200;
    std::vector<std::uint16_t> columns(table.cols(), kNobody);
    auto const take = [](std::uint16_t& known, Membership membership) {
        known = known == kNobody || known == membership ? std::uint16_t{membership} : std::uint16_t{kAmbiguous};
    };
    for (std::uint32_t pid = 1; pid <= table.idCount(); ++pid)
        take(columns[table.column(static_cast<std::uint16_t>(pid))], membershipOf(pid));
    columnMemberships_.assign(columns.begin(), columns.end());
    pairMemberships_.clear();
    for (std::uint32_t& known : columnMemberships_) {
        if (known != kAmbiguous) continue;
        known += static_cast<std::uint32_t>(pairMemberships_.size());
        pairMemberships_.resize(pairMemberships_.size() + table.rows(), kNobody);
    }
    for (std::uint32_t pid = 1; pid <= table.idCount(); ++pid) {
        std::uint32_t const known = columnMemberships_[table.column(static_cast<std::uint16_t>(pid))];
        if (known < kAmbiguous) continue;
        take(pairMemberships_[known - kAmbiguous + table.row(static_cast<std::uint16_t>(pid))], membershipOf(pid));
    }
    boundTable_ = table.serial();
}

ReduceRules::Membership ReduceRules::membershipOfPair(PendingWord const& word, std::uint32_t known) const {
    std::uint16_t const ofPair = pairMemberships_[known - kAmbiguous + word.row()];
    return ofPair < kAmbiguous ? static_cast<Membership>(ofPair) : membershipOf(MrphDic(word.record()).pid());
}

bool ReduceRules::isInner(std::uint8_t number, std::string_view form) const noexcept {
    std::string_view const inner = rules_[number - 1U].inner;
    for (std::size_t pos = 0; pos < inner.size(); pos += charWidth(inner, pos))
        if (inner.substr(pos, charWidth(inner, pos)) == form) return true;
    return false;
}

void JoinMrphs::join(std::vector<Mrph>::iterator first, std::vector<Mrph>::iterator end, std::uint16_t pid) {
    std::vector<Mrph> members(std::make_move_iterator(first), std::make_move_iterator(end));
    *first = MrphAccess::join(std::move(members), pid);
}

}  // namespace TAVO
