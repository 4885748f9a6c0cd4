// Which words fit together.
#ifndef TAVO_ENGINE_COOC_COOC_WORDS_HPP
#define TAVO_ENGINE_COOC_COOC_WORDS_HPP

#include "config/cooc_rules.hpp"

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace TAVO {

/// One cooccurrence id of a word. It looks for its like on the sides that it is marked for; two ids of which neither
/// looks to the other's side do not count.
struct CoocId {
    std::uint32_t name;
    bool isGroup;
    bool looksLeft, looksRight;
};
using CoocIds = std::vector<CoocId>;

/// The ids of dictionary records, read once each: blank-separated names in which a capital L or R is a mark and no
/// part of the name; an at sign before the first one marks all of them for both sides.
class CoocWords {
public:
    /// Null for a record without ids. Lives until clear().
    CoocIds const* of(unsigned char const* record);
    /// Before records go.
    void clear() noexcept { ids_.clear(); }

private:
    void read(CoocIds& ids, char const* text, bool isGroup);

    std::unordered_map<unsigned char const*, std::unique_ptr<CoocIds const>> ids_;
    std::map<std::pair<bool, std::string>, std::uint32_t> names_;
};

/// A word with ids at its place, in characters from some beginning.
struct CoocPlace {
    std::int64_t begin, end;
    CoocIds const* ids;
};

/// How well @p left and @p right, which stands behind it, fit: the weights of their equal ids, times the characters
/// that are missing to the window.
std::uint64_t coocScore(CoocSettings const& settings, CoocPlace const& left, CoocPlace const& right) noexcept;

}  // namespace TAVO

#endif
