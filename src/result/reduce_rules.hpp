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

/// Takes the morphemes of one sentence in order and appends them to a result,
/// runs joined. Call finish() after the last one, and before anything else is
/// appended.
///
/// The open run stands at the end of the result, its members as they came; a
/// morpheme that may be inner stands behind them until its fate is known.
class RunJoiner {
public:
    RunJoiner(ReduceRules const& rules, std::vector<Mrph>& out) : rules_(rules), out_(out) {}

    void add(Mrph&& m) {
        std::uint32_t const pid = m.getPid();
        while (rule_ != ReduceRules::kNone && !extends(m, pid)) close();
        out_.push_back(std::move(m));
        if (rule_ == ReduceRules::kNone) start(pid);
    }
    /// Adds what @p make returns, a morpheme of id @p pid; it is made where it stays when no run is open.
    template <class Make>
    void addMade(std::uint32_t pid, Make const& make) {
        if (rule_ != ReduceRules::kNone) {
            add(make());
            return;
        }
        struct InPlace {
            Make const& make;
            operator Mrph() const { return make(); }
        };
        out_.emplace_back(InPlace{make});
        start(pid);
    }
    /// Appends a morpheme that no run may cross.
    void addAlone(Mrph&& m);
    void finish();

private:
    bool isInner(Mrph const& m) const;
    /// Takes @p m, which is about to be appended, into the open run, or behind it
    /// as inner; false when it fits neither.
    bool extends(Mrph const& m, std::uint32_t pid);
    /// Opens a run with the last morpheme of the result when a rule has its @p pid.
    void start(std::uint32_t pid) {
        rule_ = rules_.ruleOf(pid);
        runStart_ = out_.size() - 1;
        runEnd_ = out_.size();
    }
    /// Joins the open run; what stands behind it may open the next.
    void close();

    ReduceRules const& rules_;
    std::vector<Mrph>& out_;
    std::uint8_t rule_ = ReduceRules::kNone;  // of the open run
    // Of the open run, in the result.
    std::size_t runStart_ = 0;
    std::size_t runEnd_ = 0;
    bool hasInner_ = false;  // stands at runEnd_
};

}  // namespace TAVO

#endif
