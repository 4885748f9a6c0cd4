#include "lexicon/words/must_win.hpp"

#include "lexicon/user_text.hpp"

#include "config/pos_name.hpp"

#include <algorithm>
#include <optional>
#include <vector>

namespace TAVO::words {

namespace {

using Path = std::vector<Mrph>;

/// How many analyses are looked at for one with a new word.
constexpr int kMostAnalyses = 2000;

Mrph const* newWord(Path const& analysis) {
    auto const found = std::find_if(analysis.begin(), analysis.end(), [](Mrph const& m) { return m.isFirstDic(); });
    return found == analysis.end() ? nullptr : &*found;
}

std::string formsOf(Path const& analysis) {
    std::string text;
    for (Mrph const& m : analysis) text += (text.empty() ? "" : " ") + m.getForm(true);
    return text;
}

/// The dearest class of the word's name that is @p units and more below its own.
std::string cheaperClass(NewWords const& words, unsigned id, unsigned units) {
    if (!words.classes() || id >= words.classes()->classes.size()) return {};
    std::vector<WordClasses::Class> const& classes = words.classes()->classes;
    WordClasses::Class const& own = classes[id];
    std::size_t best = 0;
    for (std::size_t other = 1; other < std::min(classes.size(), words.names().size()); ++other) {
        WordClasses::Class const& c = classes[other];
        bool const alike = c.known && c.row == own.row && c.column == own.column &&
                           withoutClass(words.names()[other]) == withoutClass(words.names()[id]);
        // A level is rounded in the table, so that half a unit may be missing.
        if (alike && c.level <= own.level - units - 0.5 && (best == 0 || c.level > classes[best].level)) best = other;
    }
    return words.names()[best];
}

}  // namespace

WordVerdict judge(Tavo& lexicon, NewWords const& words, std::string const& sentence, TextEncoding encoding) {
    std::string const quoted = "\"" + fromSjis(sentence, encoding) + "\"";
    lexicon.analyzeNBest(sentence);
    std::vector<Path> analyses;
    std::vector<PathCost> costs;
    if (lexicon.getSentenceCount() != 1) return {false, quoted + ": is no single sentence"};
    std::size_t found = 0;
    // Most words win or lose among the first few analyses.
    for (int count : {1, 20, kMostAnalyses}) {
        lexicon.getResultNBest(analyses, costs, 0, count);
        found = 0;
        while (found < analyses.size() && newWord(analyses[found]) == nullptr) ++found;
        if (found < analyses.size() || analyses.size() < static_cast<std::size_t>(count)) break;
    }
    std::string const best = fromSjis(formsOf(analyses.front()), encoding);
    if (found == 0) {
        std::string const form = newWord(analyses.front())->getForm(true);
        return {true, quoted + ": " + fromSjis(form, encoding) + " wins: " + best};
    }
    if (found == analyses.size())
        return {false,
                quoted + ": no new word is in the " + std::to_string(found) + " best analyses; the best is " + best};

    Mrph const& word = *newWord(analyses[found]);
    unsigned const lack = costs[found].connection - costs[0].connection;
    std::string text = quoted + ": " + fromSjis(word.getForm(true), encoding) + " lacks ";
    if (lack > 0)
        text += std::to_string(lack) + " in connection cost";
    else
        text += std::to_string(costs[found].word - costs[0].word) + " in word cost";
    text += " to win over " + best;
    std::string const name = cheaperClass(words, word.getPid(), lack);
    if (!name.empty()) text += "; as " + fromSjis(name, encoding) + " it would win";
    return {false, text};
}

}  // namespace TAVO::words
