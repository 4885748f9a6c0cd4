// Which words occur near the one and which near the other of two homographs.
#ifndef TAVO_LEXICON_COOC_COOC_COUNTS_HPP
#define TAVO_LEXICON_COOC_COOC_COUNTS_HPP

#include "lexicon/cooc/word_forms.hpp"

#include <tavo/lexicon_maker.hpp>

#include <cstddef>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace TAVO::words {

/// A word of the text, as the analysis has it, at its place in characters.
struct CountedWord {
    unsigned char const* record;
    std::int32_t begin, end;
    bool fixed;  ///< markup says which word it is
};

/// Counts in two passes, the text first and then what it tells: which forms have several lexemes is known when all
/// forms are. A word is evidence for a lexeme of a group of homographs when of the group it can be that lexeme alone:
/// by another inflected form, by being written in kana, or by markup.
class CoocCounts {
public:
    using Id = WordForms::Id;

    CoocCounts(WordForms& forms, CooccurrenceOptions const& options) : forms_(forms), options_(options) {}

    /// The words of one sentence; their surfaces stand in @p surfaces.
    void addSentence(std::vector<CountedWord> words, std::vector<std::string> const& surfaces);
    void count();
    /// Forms in kana say how they are read, and most of them are parts of the grammar.
    static bool isHomograph(std::string_view surface) { return katakanaOf(surface).empty(); }

    /// A lexeme of a group, and the lexemes that tell it.
    struct Choice {
        std::size_t group;
        Id lexeme;
        std::vector<Id> context;
    };
    /// Of groups where two lexemes or more have context.
    std::vector<Choice> choices() const;
    std::vector<Id> const& group(std::size_t index) const { return groups_[index]; }
    std::set<std::string> const& surfacesOf(Id lexeme) const;
    std::size_t sentences() const noexcept { return sentences_.size(); }
    std::size_t evidence() const noexcept { return evidenceCount_; }

private:
    struct Word {
        std::string surface;
        Id lexeme;
        bool isContext;
        bool isRead = false, isReadFixed = false;
        std::vector<std::pair<std::size_t, Id>> evidence, evidenceFixed;  // group and lexeme
    };
    using Key = std::pair<std::size_t, Id>;
    struct Tally {
        std::size_t words = 0;
        std::unordered_map<Id, std::size_t> context;
    };

    void makeGroups();
    void read(Word& word, bool fixed);
    void countSentence(std::vector<CountedWord> const& words);

    WordForms& forms_;
    CooccurrenceOptions const& options_;
    std::vector<std::vector<CountedWord>> sentences_;
    std::unordered_map<unsigned char const*, Word> words_;
    std::map<Id, std::set<std::string>> surfaces_;  // as the text has them
    std::vector<std::vector<Id>> groups_;
    std::unordered_map<Id, std::vector<std::size_t>> groupsOf_;
    std::map<std::pair<std::string, std::string>, std::vector<Id>> byReading_;  // base reading and part of speech
    std::map<Key, Tally> tallies_;
    std::unordered_map<Id, std::size_t> sentencesWith_;
    std::size_t evidenceCount_ = 0;
};

}  // namespace TAVO::words

#endif
