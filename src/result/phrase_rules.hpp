// Reduce rules over sequences of parts of speech: phrases that come out as one morpheme.
#ifndef TAVO_RESULT_PHRASE_RULES_HPP
#define TAVO_RESULT_PHRASE_RULES_HPP

#include "config/pos_tables.hpp"

#include <tavo/mrph.hpp>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace TAVO {

/// A rule is a sequence of elements, each a part of speech that may be left out or repeated. Where rules match, the
/// one that takes most morphemes joins them, the first of the file among equal ones; the next match begins behind it.
/// Element i is bit i of a word: a match is followed as the set of elements that may come next.
class PhraseRules {
public:
    /// Most morphemes of a phrase, so that a text of any kind takes time in proportion to its length.
    static constexpr std::size_t kMaxMembers = 256;
    static constexpr std::size_t kMaxElements = 31;
    static constexpr std::size_t kMaxPhraseRules = 32;

    /// True for a line with the arrow of these rules.
    static bool isPhraseRule(std::string_view line) noexcept;
    /// Adds the rule of @p line; returns the cause of a refusal, or "".
    std::string add(std::string_view line);
    bool empty() const noexcept { return rules_.empty(); }

    /// Resolves the rules for the ids of @p pos; cheap when nothing changed.
    void bind(PosTables const& pos);
    /// Joins the phrases of @p morphemes, none of them across an annotation. Not from two threads at once.
    void join(std::vector<Mrph>& morphemes) const;

private:
    using Elements = std::uint32_t;
    struct Rule {
        std::vector<PatternList> patterns;  // by element
        Elements optional = 0, repeated = 0;
        Elements major = 0;  // those that the parts of speech of the major list fit
        std::string className;
    };
    /// For one id the elements that it fits, by rule; made when a morpheme of the id is first met.
    using Fits = std::vector<Elements>;

    static Elements skip(Rule const& rule, Elements next) noexcept;
    Fits const& fitsOf(std::uint16_t pid) const;
    /// How many of the morphemes from @p first on the rule takes; 0 when it does not match.
    std::size_t matchLength(std::size_t rule, std::vector<Mrph> const& morphemes, std::size_t first) const;
    Mrph joined(Rule const& rule, std::vector<Mrph>&& members) const;

    std::vector<Rule> rules_;
    PosTables const* pos_ = nullptr;
    std::uint64_t boundRevision_ = 0;
    mutable std::vector<Fits> fits_;  // by id
};

}  // namespace TAVO

#endif
