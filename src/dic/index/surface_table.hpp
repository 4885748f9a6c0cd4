// The surfaces of a dictionary by their characters, for the making of its index.
#ifndef TAVO_DIC_INDEX_SURFACE_TABLE_HPP
#define TAVO_DIC_INDEX_SURFACE_TABLE_HPP

#include "dic/dic_trie.hpp"
#include "dic/index/dic_index.hpp"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace TAVO {

class ConnTable;

/// A word that may become a lattice node.
struct IndexedWord {
    std::uint16_t column, row;
    std::uint8_t cost;
};

/// All surfaces in the order of their bytes, so that those that begin alike stand together.
class SurfaceTable {
public:
    SurfaceTable(DicTrie const& trie, ConnTable const& table);

    std::size_t size() const noexcept { return surfaces_.size(); }
    std::span<CharacterCode const> characters(std::size_t i) const noexcept {
        return {codes_.data() + surfaces_[i].firstCode, surfaces_[i].codeCount};
    }
    std::span<IndexedWord const> words(std::size_t i) const noexcept {
        return {words_.data() + surfaces_[i].firstWord, surfaces_[i].wordCount};
    }
    /// Position of the record chain in the trie's leaf area.
    std::uint32_t chain(std::size_t i) const noexcept { return surfaces_[i].chain; }
    /// True when all of them are made of whole characters; those that are not are not among them.
    bool isRegular() const noexcept { return regular_; }

private:
    struct Surface {
        std::uint32_t firstCode, firstWord, chain;
        std::uint32_t codeCount, wordCount;
    };
    bool addCharacters(std::string const& key);

    std::vector<CharacterCode> codes_;
    std::vector<IndexedWord> words_;
    std::vector<Surface> surfaces_;
    bool regular_ = true;
};

}  // namespace TAVO

#endif
