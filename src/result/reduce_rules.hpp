// Reduce rules: runs of neighbouring morphemes that come out as one.
#ifndef TAVO_RESULT_REDUCE_RULES_HPP
#define TAVO_RESULT_REDUCE_RULES_HPP

#include "config/pos_tables.hpp"
#include "config/settings.hpp"

#include <tavo/mrph.hpp>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace TAVO {

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
    /// earlier rules stay.
    void load(char const* path);
    bool empty() const noexcept { return rules_.empty(); }
    std::string const& path() const noexcept { return path_; }

    /// Resolves the rules for the ids of @p pos; cheap when nothing changed.
    void bind(PosTables const& pos, Settings const& settings);

    /// Number of the rule (from 1) that @p pid is a member of, kNone for none:
    /// the first rule of the file whose mode is on and whose class fits.
    std::uint8_t ruleOf(std::uint32_t pid) const noexcept {
        return pid < ids_.size() ? static_cast<std::uint8_t>(ids_[pid] & ~kFollows) : kNone;
    }
    /// True when a morpheme of @p pid may follow another member directly.
    bool mayFollow(std::uint32_t pid) const noexcept { return (ids_[pid] & kFollows) != 0; }
    ReduceRule const& rule(std::uint8_t number) const noexcept { return rules_[number - 1U]; }
    std::uint16_t joinedPid(std::uint8_t number) const noexcept { return joinedPids_[number - 1U]; }

private:
    static constexpr std::uint8_t kFollows = 0x80;
    static constexpr std::size_t kMaxRules = 0x7F;

    std::string path_;
    std::vector<ReduceRule> rules_;
    std::vector<std::uint8_t> ids_;          // by id: rule number, and kFollows
    std::vector<std::uint16_t> joinedPids_;  // by rule
    // What the bindings were made from.
    std::uint64_t boundRevision_ = 0;
    int boundModes_[3] = {-1, -1, -1};
};

/// Finds runs among items that are appended to an array one after another and stand for morphemes.
/// The open run stands at the end of the array, its members as they came; a
/// morpheme that may be inner stands behind them until its fate is known.
class RunTracker {
public:
    /// Items [first, end) of the array are members.
    struct Run {
        std::size_t first;
        std::size_t end;
        std::uint8_t rule;

        bool joins() const noexcept { return end - first > 1; }
    };

    explicit RunTracker(ReduceRules const& rules) : rules_(rules) {}

    bool isOpen() const noexcept { return rule_ != ReduceRules::kNone; }
    /// Takes a morpheme of @p pid, which is about to be appended to @p count items, into the open run, or
    /// behind it as inner; false when it fits neither.
    bool takes(std::uint32_t pid, std::string_view form, std::size_t count);
    /// Behind appending: opens a run with the last one of @p count items when none is open and a rule has its @p pid.
    void appended(std::uint32_t pid, std::size_t count) {
        lastPid_ = pid;
        if (!isOpen()) start(count);
    }
    /// Closes the open run. Once its members are one item, if they join, call closed().
    Run close() noexcept {
        Run const run{first_, end_, rule_};
        rule_ = ReduceRules::kNone;
        return run;
    }
    /// What stood behind the members, as the last one of @p count items, may open the next run.
    void closed(std::size_t count) {
        if (!hasInner_) return;
        hasInner_ = false;  // it joined nothing
        start(count);
    }

private:
    void start(std::size_t count) {
        rule_ = rules_.ruleOf(lastPid_);
        first_ = count - 1;
        end_ = count;
    }
    bool isInner(std::string_view form) const;

    ReduceRules const& rules_;
    std::uint32_t lastPid_ = 0;               // of the item appended last
    std::uint8_t rule_ = ReduceRules::kNone;  // of the open run
    // Of the open run, in the array.
    std::size_t first_ = 0;
    std::size_t end_ = 0;
    bool hasInner_ = false;  // stands at end_
};

/// Takes the morphemes of one sentence in order and appends them to a result,
/// runs joined. Call finish() after the last one, and before anything else is
/// appended.
class RunJoiner {
public:
    RunJoiner(ReduceRules const& rules, std::vector<Mrph>& out) : rules_(rules), runs_(rules), out_(out) {}

    void add(Mrph&& m);
    /// Adds what @p make returns, a morpheme of id @p pid; it is made where it stays when no run is open.
    template <class Make>
    void addMade(std::uint32_t pid, Make const& make) {
        if (runs_.isOpen()) {
            add(make());
            return;
        }
        struct InPlace {
            Make const& make;
            operator Mrph() const { return make(); }
        };
        out_.emplace_back(InPlace{make});
        runs_.appended(pid, out_.size());
    }
    /// Appends a morpheme that no run may cross.
    void addAlone(Mrph&& m);
    void finish();

private:
    void close();

    ReduceRules const& rules_;
    RunTracker runs_;
    std::vector<Mrph>& out_;
};

/// The same for the lengths of morphemes.
class LengthJoiner {
public:
    LengthJoiner(ReduceRules const& rules, std::vector<unsigned int>& out) : runs_(rules), out_(out) {}

    /// Adds a morpheme of @p pid that is its @p form in the text.
    void add(std::uint32_t pid, std::string_view form) {
        while (runs_.isOpen() && !runs_.takes(pid, form, out_.size())) close();
        out_.push_back(static_cast<unsigned int>(form.size()));
        runs_.appended(pid, out_.size());
    }
    void finish();

private:
    void close();

    RunTracker runs_;
    std::vector<unsigned int>& out_;
};

}  // namespace TAVO

#endif
