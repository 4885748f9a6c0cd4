// The syntax of part-of-speech names (head, ":" features) and patterns over it.
#ifndef TAVO_CONFIG_POS_NAME_HPP
#define TAVO_CONFIG_POS_NAME_HPP

#include <map>
#include <set>
#include <string>
#include <string_view>

namespace TAVO {

/// A name split up: the head ends at the first ":", "-" or "/"; features follow
/// as long as ":" introduces them.
struct PosName {
    std::string head;
    std::set<std::string> features;
};

PosName splitPosName(std::string_view name);

/// Patterns by head; a pattern is its set of features ("-X" forbids X).
class PatternList {
public:
    void add(PosName pattern) { patterns_.emplace(std::move(pattern.head), std::move(pattern.features)); }
    void clear() noexcept { patterns_.clear(); }
    bool empty() const noexcept { return patterns_.empty(); }
    /// True when any pattern under the name's head is satisfied.
    bool matches(PosName const& name) const;

private:
    std::multimap<std::string, std::set<std::string>> patterns_;
};

}  // namespace TAVO

#endif
