#include "lexicon/cooc/cooc_counts.hpp"

#include "base/sjis.hpp"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace TAVO::words {
namespace {

/// Words of one kana, digits and signs are in every text.
bool tellsSomething(std::string_view base) {
    bool const isLong = base.size() > charWidth(base, 0);
    bool const isWide = charWidth(base, 0) == 2 && static_cast<unsigned char>(base[0]) >= 0x88;  // a kanji
    return isWide || (isLong && !katakanaOf(base).empty());
}

}  // namespace

void CoocCounts::addSentence(std::vector<CountedWord> words, std::vector<std::string> const& surfaces) {
    std::set<Id> seen;
    for (std::size_t i = 0; i != words.size(); ++i) {
        auto const [known, isNew] = words_.try_emplace(words[i].record);
        Word& word = known->second;
        if (isNew) {
            word.surface = surfaces[i];
            word.lexeme = forms_.lexemeOf(MrphDic(words[i].record), word.surface);
            word.isContext = tellsSomething(forms_.lexeme(word.lexeme).base);
            surfaces_[word.lexeme].insert(word.surface);
        }
        seen.insert(word.lexeme);
    }
    for (Id const lexeme : seen) ++sentencesWith_[lexeme];
    sentences_.push_back(std::move(words));
}

void CoocCounts::count() {
    makeGroups();
    for (std::vector<CountedWord> const& words : sentences_) countSentence(words);
}

void CoocCounts::makeGroups() {
    std::set<std::vector<Id>> groups;
    for (auto const& [record, word] : words_) {
        std::vector<Id> const& lexemes = forms_.lexemesOf(word.surface);
        if (lexemes.size() > 1 && isHomograph(word.surface)) groups.insert(lexemes);
    }
    groups_.assign(groups.begin(), groups.end());
    std::set<Id> members;
    for (std::size_t i = 0; i != groups_.size(); ++i) {
        for (Id const lexeme : groups_[i]) groupsOf_[lexeme].push_back(i);
        members.insert(groups_[i].begin(), groups_[i].end());
    }
    for (Id const lexeme : members)
        byReading_[{forms_.baseReading(lexeme), forms_.lexeme(lexeme).pos}].push_back(lexeme);
}

void CoocCounts::read(Word& word, bool fixed) {
    std::vector<Id> may;
    Lexeme const own = forms_.lexeme(word.lexeme);
    if (fixed) {
        may = {word.lexeme};
    } else {
        for (Id const id : forms_.lexemesOf(word.surface))
            if (forms_.lexeme(id).pos == own.pos) may.push_back(id);
    }
    if (std::string const kana = katakanaOf(own.base); !kana.empty() && own.base.size() > charWidth(own.base, 0))
        if (auto const found = byReading_.find({kana, own.pos}); found != byReading_.end())
            may.insert(may.end(), found->second.begin(), found->second.end());
    std::sort(may.begin(), may.end());
    may.erase(std::unique(may.begin(), may.end()), may.end());

    std::map<std::size_t, std::vector<Id>> inGroup;
    for (Id const id : may)
        if (auto const groups = groupsOf_.find(id); groups != groupsOf_.end())
            for (std::size_t const group : groups->second) inGroup[group].push_back(id);
    for (auto const& [group, ids] : inGroup)
        if (ids.size() == 1) (fixed ? word.evidenceFixed : word.evidence).emplace_back(group, ids.front());
    (fixed ? word.isReadFixed : word.isRead) = true;
}

void CoocCounts::countSentence(std::vector<CountedWord> const& words) {
    constexpr double kFew = 20;  // sentences, in which no word is one that is everywhere
    double const most = std::max(static_cast<double>(sentences_.size()) * options_.mostSentences, kFew);
    for (CountedWord const& at : words) {
        Word& word = words_.at(at.record);
        if (!(at.fixed ? word.isReadFixed : word.isRead)) read(word, at.fixed);
        auto const& evidence = at.fixed ? word.evidenceFixed : word.evidence;
        if (evidence.empty()) continue;
        std::set<Id> near;
        for (CountedWord const& other : words) {
            Word const& found = words_.at(other.record);
            std::int32_t const distance = std::max(other.begin - at.end, at.begin - other.end);
            bool const counts = &other != &at && distance < static_cast<std::int32_t>(options_.window) &&
                                found.isContext && found.lexeme != word.lexeme;
            if (counts && static_cast<double>(sentencesWith_[found.lexeme]) <= most) near.insert(found.lexeme);
        }
        ++evidenceCount_;
        for (Key const& key : evidence) {
            Tally& tally = tallies_[key];
            ++tally.words;
            for (Id const lexeme : near) ++tally.context[lexeme];
        }
    }
}

std::vector<CoocCounts::Choice> CoocCounts::choices() const {
    std::vector<Choice> all;
    for (auto first = tallies_.begin(); first != tallies_.end();) {
        auto const end = std::find_if(first, tallies_.end(),
                                      [&](auto const& entry) { return entry.first.first != first->first.first; });
        double words = 0;
        std::unordered_map<Id, double> together;
        for (auto at = first; at != end; ++at) {
            words += static_cast<double>(at->second.words);
            for (auto const& [lexeme, count] : at->second.context) together[lexeme] += static_cast<double>(count);
        }
        std::vector<Choice> ofGroup;
        for (auto at = first; at != end; ++at) {
            Choice choice{at->first.first, at->first.second, {}};
            auto const own = static_cast<double>(at->second.words);
            for (auto const& [lexeme, number] : at->second.context) {
                auto const count = static_cast<double>(number);
                double const rate = (count + 0.5) / (own + 1);
                double const others = (together[lexeme] - count + 0.5) / (words - own + 1);
                if (number >= options_.leastCount && rate / others >= options_.leastRatio)
                    choice.context.push_back(lexeme);
            }
            std::sort(choice.context.begin(), choice.context.end());
            bool const isMember = std::ranges::binary_search(groups_[choice.group], choice.lexeme);
            if (isMember && at->second.words >= options_.leastCount) ofGroup.push_back(std::move(choice));
        }
        bool const tells = std::ranges::any_of(ofGroup, [](Choice const& c) { return !c.context.empty(); });
        if (ofGroup.size() > 1 && tells) std::move(ofGroup.begin(), ofGroup.end(), std::back_inserter(all));
        first = end;
    }
    return all;
}

std::set<std::string> const& CoocCounts::surfacesOf(Id lexeme) const {
    static std::set<std::string> const kNone;
    auto const found = surfaces_.find(lexeme);
    return found == surfaces_.end() ? kNone : found->second;
}

}  // namespace TAVO::words
