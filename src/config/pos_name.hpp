// The syntax of part-of-speech names (head, ":" features) and patterns over it.
#ifndef TAVO_CONFIG_POS_NAME_HPP
#define TAVO_CONFIG_POS_NAME_HPP

#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace TAVO {

/// A name split up: the head ends at the first ":", "-" or "/"; features follow
/// as long as ":" introduces them. The views refer to the name's characters.
struct PosName {
    std::string_view head;
    std::vector<std::string_view> features;

    bool hasFeature(std::string_view word) const noexcept;
    /// True when @p word is the head or a feature.
    bool has(std::string_view word) const noexcept { return head == word || hasFeature(word); }
};

/// Splits @p name into @p out, whose memory is used again. Returns where the "-"
/// or "/" stands behind which nothing counts; name.size() without one.
std::size_t splitPosName(std::string_view name, PosName& out);

/// Patterns by head; a pattern is its set of features ("-X" forbids X).
class PatternList {
public:
    void add(PosName const& pattern);
    void clear() noexcept { patterns_.clear(); }
    bool empty() const noexcept { return patterns_.empty(); }
    /// True when any pattern under the name's head is satisfied.
    bool matches(PosName const& name) const;

private:
    std::multimap<std::string, std::set<std::string>, std::less<>> patterns_;
};

}  // namespace TAVO

#endif
