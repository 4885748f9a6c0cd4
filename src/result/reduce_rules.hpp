// Reduce rules: runs of neighbouring morphemes that come out as one.
#ifndef TAVO_RESULT_REDUCE_RULES_HPP
#define TAVO_RESULT_REDUCE_RULES_HPP

#include "base/bytes.hpp"
#include "config/pos_tables.hpp"
#include "config/settings.hpp"
#include "engine/path_store.hpp"
#include "result/phrase_rules.hpp"

#include <tavo/mrph.hpp>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace TAVO {

class ConnTable;

/// One rule: the class that its members share, and what a run becomes.
/// docs/reduce-rules.md tells the file's syntax.
struct ReduceRule {
    std::uint8_t mask = 0;         ///< every bit must be in a member's type mask
    Mode mode = Mode::ReduceChar;  ///< the mode that switches the rule
    std::string partOfSP;          ///< of the joined morpheme; empty: the first member's
    std::string with;              ///< feature that a member needs to follow another; empty: none
    std::string inner;             ///< characters that join when they stand between two members
};

/// The rules of one analyser, bound to its part-of-speech ids. A copyable value.
class ReduceRules {
public:
    static constexpr std::uint8_t kNone = 0;

    /// Replaces the rules by those of @p path; null clears them. Throws
    /// file_not_found, and illegal_format (path:line:cause), after which the
    /// earlier rules stay. A @p text that is not null is taken instead of the file's, and @p path is its name.
    void load(char const* path, std::string_view const* text = nullptr);
    bool empty() const noexcept { return rules_.empty() && phrases_.empty(); }
    /// The rules over sequences of parts of speech.
    PhraseRules const& phrases() const noexcept { return phrases_; }
    std::string const& path() const noexcept { return path_; }

    /// Two bytes that stand for a whole word: no run takes it in.
    void setWholeWord(char const* bytes) noexcept { whole_ = loadU16(asBytes(bytes)); }
    bool isWholeWord(std::string_view form) const noexcept {
        return whole_ != 0 && form.size() == 2 && loadU16(asBytes(form.data())) == whole_;
    }

    /// Resolves the rules for the ids of @p pos; cheap when nothing changed.
    void bind(PosTables const& pos, Settings const& settings);

    /// Finds the memberships that columns of @p table tell, after bind(); cheap when nothing changed.
    void bindColumns(ConnTable const& table);

    /// What a morpheme is to the rules: the number of the rule (from 1) that it is a member of and whether it may
    /// follow another member directly; kNone when it is of none.
    using Membership = std::uint8_t;
    /// Its rule is the first one of the file whose mode is on and whose class fits.
    Membership membershipOf(std::uint32_t pid) const noexcept { return pid < ids_.size() ? ids_[pid] : kNone; }
    /// That of @p word, whose column and row are those of the table of bindColumns(). Its record is read where these do
    /// not tell.
    Membership membershipOf(PendingWord const& word) const {
        std::uint32_t const known = columnMemberships_[word.column];
        return known >= kAmbiguous ? membershipOfPair(word, known) : static_cast<Membership>(known);
    }
    static std::uint8_t ruleOf(Membership membership) noexcept {
        return static_cast<std::uint8_t>(membership & ~kFollows);
    }
    static bool mayFollow(Membership membership) noexcept { return (membership & kFollows) != 0; }
    /// The membership of what may follow a member of rule @p number; of kNone, one that nothing has.
    static Membership following(std::uint8_t number) noexcept { return static_cast<Membership>(number | kFollows); }
    /// True when a morpheme of @p form joins between two members of rule @p number.
    bool mayBeInner(std::uint8_t number, std::string_view form) const noexcept {
        return !rules_[number - 1U].inner.empty() && isInner(number, form);
    }
    std::uint16_t joinedPid(std::uint8_t number) const noexcept { return joinedPids_[number - 1U]; }

private:
    static constexpr std::uint8_t kFollows = 0x80;
    static constexpr std::uint32_t kAmbiguous = 0x100;  ///< what more is the place of the column's rows
    static constexpr std::size_t kMaxRules = 0x7F;

    bool isInner(std::uint8_t number, std::string_view form) const noexcept;
    Membership membershipOfPair(PendingWord const& word, std::uint32_t known) const;

    std::string path_;
    std::uint16_t whole_ = 0;
    std::vector<ReduceRule> rules_;
    PhraseRules phrases_;
    std::vector<Membership> ids_;            // by id: rule number, and kFollows
    std::vector<std::uint16_t> joinedPids_;  // by rule
    std::vector<std::uint32_t> columnMemberships_;
    std::vector<std::uint16_t> pairMemberships_;  // row by row of the columns that are not enough
    // What the bindings were made from.
    std::uint64_t boundRevision_ = 0;
    int boundModes_[3] = {-1, -1, -1};
    std::uint64_t boundTable_ = 0;  // for columnMemberships_; 0: they are not made
};

/// Takes the morphemes of one sentence in order and appends an Item for each to a
/// result, runs joined: Join makes one item of the members of a run. Call finish() after the last
/// one, and before anything else is appended.
///
/// The open run stands at the end of the result, its members as they came; a
/// morpheme that may be inner stands behind them until its fate is known.
template <class Item, class Join>
class RunAppender {
public:
    RunAppender(ReduceRules const& rules, std::vector<Item>& out, Join join = {})
        : rules_(rules), out_(out), join_(join) {}

    /// Appends the item made of @p value for a morpheme whose form is @p form.
    template <class Value>
    void append(ReduceRules::Membership membership, std::string_view form, Value&& value) {
        // Nearly all words are of no rule, or go on in a run.
        if (rule_ == ReduceRules::kNone && membership == ReduceRules::kNone)
            out_.emplace_back(std::forward<Value>(value));
        else if (membership == ReduceRules::following(rule_) && !rules_.isWholeWord(form))
            follow(std::forward<Value>(value));
        else
            appendRare(membership, form, std::forward<Value>(value));
    }
    /// Appends an item that no run may cross.
    void appendAlone(Item&& item) {
        finish();
        out_.push_back(std::move(item));
    }
    ReduceRules const& rules() const noexcept { return rules_; }
    void finish() {
        while (rule_ != ReduceRules::kNone) close();
    }

private:
    template <class Value>
    void follow(Value&& value) {
        hasInner_ = false;
        join_.append(out_, runStart_, std::forward<Value>(value));
        runEnd_ = out_.size();
    }
    template <class Value>
    [[gnu::noinline]] void appendRare(ReduceRules::Membership membership, std::string_view form, Value&& value) {
        if (rules_.isWholeWord(form))
            appendAlone(Item(std::forward<Value>(value)));
        else
            appendToRun(membership, form, std::forward<Value>(value));
    }
    template <class Value>
    void appendToRun(ReduceRules::Membership membership, std::string_view form, Value&& value) {
        std::uint8_t const rule = ReduceRules::ruleOf(membership);
        while (rule_ != ReduceRules::kNone) {
            if (rule == rule_ && (hasInner_ || ReduceRules::mayFollow(membership))) {
                return follow(std::forward<Value>(value));
            }
            if (!hasInner_ && rules_.mayBeInner(rule_, form)) {
                hasInner_ = true;
                innerRule_ = rule;
                out_.emplace_back(std::forward<Value>(value));
                return;
            }
            close();
        }
        out_.emplace_back(std::forward<Value>(value));
        if (rule != ReduceRules::kNone) start(rule);
    }
    /// Opens a run of @p rule with the last item.
    void start(std::uint8_t rule) {
        rule_ = rule;
        runEnd_ = out_.size();
        runStart_ = runEnd_ - 1;
    }
    /// Joins the open run; what stands behind it may open the next.
    void close() {
        if (runEnd_ - runStart_ > 1) {
            auto const first = out_.begin() + static_cast<std::ptrdiff_t>(runStart_);
            auto const end = out_.begin() + static_cast<std::ptrdiff_t>(runEnd_);
            join_.join(first, end, rules_.joinedPid(rule_));
            out_.erase(first + 1, end);
        }
        rule_ = ReduceRules::kNone;
        if (!hasInner_) return;
        // It joined nothing, so it may begin a run of its own.
        hasInner_ = false;
        if (innerRule_ != ReduceRules::kNone) start(innerRule_);
    }

    ReduceRules const& rules_;
    std::vector<Item>& out_;
    Join join_;
    std::uint8_t rule_ = ReduceRules::kNone;  // of the open run
    // Of the open run, in the result.
    std::size_t runStart_ = 0;
    std::size_t runEnd_ = 0;
    bool hasInner_ = false;                        // stands at runEnd_
    std::uint8_t innerRule_ = ReduceRules::kNone;  // what it is a member of
};

/// Morphemes wait for the last member of their run.
struct JoinMrphs {
    template <class Value>
    static void append(std::vector<Mrph>& out, std::size_t, Value&& value) {
        out.emplace_back(std::forward<Value>(value));
    }
    /// Puts what becomes of the members [first, end) where the first one stands.
    static void join(std::vector<Mrph>::iterator first, std::vector<Mrph>::iterator end, std::uint16_t pid);
};
/// Lengths are added up as they come.
struct AddLengths {
    static void append(std::vector<unsigned int>& out, std::size_t runStart, unsigned int length) {
        for (; out.size() > runStart + 1; out.pop_back()) length += out.back();  // the inner one
        out.back() += length;
    }
    static void join(std::vector<unsigned int>::iterator, std::vector<unsigned int>::iterator, std::uint16_t) {}
};
using RunJoiner = RunAppender<Mrph, JoinMrphs>;
using LengthJoiner = RunAppender<unsigned int, AddLengths>;

}  // namespace TAVO

#endif
