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

/// @p name without the class number that tells parts of speech of one name and
/// different costs apart: "A:B-12" is "A:B".
std::string_view withoutClass(std::string_view name) noexcept;

/// What users see of a name: no class number, and no features that only the analyser
/// reads ("Undef", "Inside" and the classes of characters). The head stays; a bare
/// "Undef" is kUnknownWordName.
std::string displayPosName(std::string_view name);

/// "unknown word", Shift_JIS.
inline constexpr char kUnknownWordName[] = "\x96\xA2\x92\x6D\x8C\xEA";

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
