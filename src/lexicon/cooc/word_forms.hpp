// The words of a lexicon behind their inflected forms and spellings.
#ifndef TAVO_LEXICON_COOC_WORD_FORMS_HPP
#define TAVO_LEXICON_COOC_WORD_FORMS_HPP

#include "dic/dic_set.hpp"
#include "dic/mrph_dic.hpp"

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace TAVO::words {

/// A word in all its inflected forms: base form, how its first characters are read, and the first two levels of its
/// part of speech. Texts are Shift_JIS.
struct Lexeme {
    std::string base, stemReading, pos;
    auto operator<=>(Lexeme const&) const = default;  // NOLINT(modernize-use-nullptr): of the comparison that it makes
};

/// Katakana for the hiragana of @p text; empty when it holds anything but kana.
std::string katakanaOf(std::string_view text);

/// Numbers the lexemes of a lexicon's records and finds homographs: lexemes that have a form in common.
class WordForms {
public:
    using Id = std::uint32_t;

    explicit WordForms(DicSet const& dics) : dics_(dics) {}

    /// The lexeme of @p record, whose form is @p surface.
    Id lexemeOf(MrphDic record, std::string_view surface);
    Lexeme const& lexeme(Id id) const { return lexemes_[id]; }
    /// Base form as it is read, in katakana; empty where that cannot be told.
    std::string baseReading(Id id) const;
    /// All lexemes that @p surface can be a form of, ascending.
    std::vector<Id> const& lexemesOf(std::string const& surface);
    /// Calls visit(dictionary, record) for the records of @p surface, dictionary by dictionary.
    template <class Visit>
    void eachRecord(std::string_view surface, Visit&& visit) const {
        for (DicEntry const& entry : dics_.entries()) {
            if (entry.dic->trie() == nullptr) continue;
            for (RecordChain chain = entry.dic->trie()->exactMatch(asBytes(surface.data()), surface.size()); chain;
                 chain = chain.next())
                visit(*entry.dic, chain.record());
        }
    }

private:
    DicSet const& dics_;
    std::vector<Lexeme> lexemes_;
    std::map<Lexeme, Id> ids_;
    std::unordered_map<std::string, std::vector<Id>> bySurface_;
};

}  // namespace TAVO::words

#endif
