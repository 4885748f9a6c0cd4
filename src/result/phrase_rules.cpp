#include "result/phrase_rules.hpp"

#include "base/sjis.hpp"
#include "base/text.hpp"
#include "result/mrph_access.hpp"

#include <algorithm>
#include <iterator>
#include <utility>

namespace TAVO {
namespace {

constexpr std::string_view kArrow = "->", kMajorClass = "Major";

/// Where the arrow stands, which has a blank or the line's start before it: names hold "-".
std::size_t arrowAt(std::string_view line) noexcept {
    for (std::size_t pos = findMark(line, "-"); pos != std::string_view::npos; pos = findMark(line, "-", pos + 1))
        if (line.substr(pos, kArrow.size()) == kArrow && (pos == 0 || line[pos - 1] == ' ' || line[pos - 1] == '\t'))
            return pos;
    return std::string_view::npos;
}

/// Adds the alternatives of one element, each a head with features, and tells whether the class of major parts of
/// speech is among them; false when one has no head.
bool addPatterns(std::string_view text, PatternList& patterns, bool& hasMajor) {
    for (std::size_t begin = 0; begin <= text.size();) {
        std::size_t const end = std::min(findMark(text, "|", begin), text.size());
        std::string_view const one = text.substr(begin, end - begin);
        PosName name;
        for (std::size_t at = 0; at <= one.size();) {
            std::size_t const colon = std::min(findMark(one, ":", at), one.size());
            if (at == 0)
                name.head = one.substr(0, colon);
            else if (colon != at)
                name.features.push_back(one.substr(at, colon - at));
            at = colon + 1;
        }
        if (name.head.empty()) return false;
        hasMajor = hasMajor || one == kMajorClass;
        patterns.add(name);
        begin = end + 1;
    }
    return true;
}

}  // namespace

bool PhraseRules::isPhraseRule(std::string_view line) noexcept { return arrowAt(line) != std::string_view::npos; }

std::string PhraseRules::add(std::string_view line) {
    if (rules_.size() == kMaxPhraseRules) return "Too Many Phrase Rules";
    std::size_t const arrow = arrowAt(line);
    Rule rule;
    rule.className = strip(line.substr(arrow + kArrow.size()));
    std::string_view rest = strip(line.substr(0, arrow));
    while (!rest.empty()) {
        std::size_t const end = std::min(rest.find_first_of(" \t"), rest.size());
        std::string_view word = rest.substr(0, end);
        rest = strip(rest.substr(end));
        if (rule.patterns.size() == kMaxElements) return "Too Many Elements";
        Elements const bit = Elements{1} << rule.patterns.size();
        // No second byte of a character looks like one of these marks.
        char const mark = word.back();
        if (mark == '?' || mark == '*') rule.optional |= bit;
        if (mark == '+' || mark == '*') rule.repeated |= bit;
        if (mark == '?' || mark == '*' || mark == '+') word.remove_suffix(1);
        bool hasMajor = false;
        if (!addPatterns(word, rule.patterns.emplace_back(), hasMajor)) return "No Part Of Speech:" + std::string(word);
        if (hasMajor) rule.major |= bit;
    }
    if (rule.patterns.empty()) return "No Elements";
    rules_.push_back(std::move(rule));
    return {};
}

void PhraseRules::bind(PosTables const& pos) {
    if (pos_ == &pos && boundRevision_ == pos.revision()) return;
    pos_ = &pos;
    boundRevision_ = pos.revision();
    fits_.assign(pos.getPidMax() + std::size_t{1}, {});
}

PhraseRules::Fits const& PhraseRules::fitsOf(std::uint16_t pid) const {
    static Fits const kNone;
    if (pid >= fits_.size()) return kNone;
    Fits& fits = fits_[pid];
    if (!fits.empty()) return fits;
    PosName name;
    splitPosName(pos_->name(pid), name);
    for (Rule const& rule : rules_) {
        Elements elements = pos_->isMajor(pid) ? rule.major : 0;
        for (std::size_t i = 0; i < rule.patterns.size(); ++i)
            if (rule.patterns[i].matches(name)) elements |= Elements{1} << i;
        fits.push_back(elements);
    }
    return fits;
}

PhraseRules::Elements PhraseRules::skip(Rule const& rule, Elements next) noexcept {
    for (;;) {
        Elements const more = next | (next & rule.optional) << 1;
        if (more == next) return next;
        next = more;
    }
}

std::size_t PhraseRules::matchLength(std::size_t number, std::vector<Mrph> const& morphemes, std::size_t first) const {
    Rule const& rule = rules_[number];
    Elements const done = Elements{1} << rule.patterns.size();
    std::size_t const limit = std::min(morphemes.size(), first + kMaxMembers);
    std::size_t length = 0;
    Elements next = skip(rule, 1);
    for (std::size_t i = first; i < limit && !morphemes[i].isAnnotation(); ++i) {
        Fits const& fits = fitsOf(morphemes[i].getPid());
        Elements const fitting = fits.empty() ? 0 : next & fits[number];
        next = skip(rule, fitting << 1 | (fitting & rule.repeated));
        if (next == 0) break;
        if ((next & done) != 0) length = i + 1 - first;
    }
    return length;
}

Mrph PhraseRules::joined(Rule const& rule, std::vector<Mrph>&& members) const {
    std::uint16_t const pid = rule.className.empty() ? std::uint16_t{0} : pos_->getPid(rule.className);
    Mrph phrase = MrphAccess::join(std::move(members), pid);
    if (pid == 0) MrphAccess::confirmCover(phrase).className = rule.className;
    return phrase;
}

void PhraseRules::join(std::vector<Mrph>& morphemes) const {
    if (rules_.empty() || pos_ == nullptr) return;
    std::size_t kept = 0;
    for (std::size_t at = 0; at < morphemes.size();) {
        std::size_t best = 1;
        Rule const* chosen = nullptr;
        for (std::size_t number = 0; number < rules_.size(); ++number) {
            std::size_t const length = matchLength(number, morphemes, at);
            if (length <= best) continue;
            best = length;
            chosen = &rules_[number];
        }
        auto const first = morphemes.begin() + static_cast<std::ptrdiff_t>(at);
        if (chosen != nullptr) {
            auto const end = first + static_cast<std::ptrdiff_t>(best);
            Mrph phrase = joined(*chosen, {std::make_move_iterator(first), std::make_move_iterator(end)});
            morphemes[kept] = std::move(phrase);
        } else if (kept != at) {
            morphemes[kept] = std::move(*first);
        }
        ++kept;
        at += best;
    }
    morphemes.erase(morphemes.begin() + static_cast<std::ptrdiff_t>(kept), morphemes.end());
}

}  // namespace TAVO
