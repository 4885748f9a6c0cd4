// Makes the index of a dictionary.
#ifndef TAVO_DIC_INDEX_DIC_INDEX_MAKER_HPP
#define TAVO_DIC_INDEX_DIC_INDEX_MAKER_HPP

#include "dic/index/candidate_list_maker.hpp"
#include "dic/index/character_trie_maker.hpp"
#include "dic/index/surface_table.hpp"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace TAVO {

class DicIndexMaker {
public:
    DicIndexMaker(SurfaceTable const& surfaces, ConnIndex const& conn);

    std::vector<std::uint64_t> write(IndexOrigin const& origin) const;

private:
    void numberCharacters();
    void addBranch(std::size_t first, std::size_t last, std::size_t depth, std::uint32_t list,
                   std::vector<ListedWord>& words, std::uint64_t& node, std::uint32_t& chain);
    void noteCharacters();
    std::uint64_t untwinned() const;
    std::uint64_t exits() const;
    bool hasTwin(std::span<IndexedWord const> words, IndexedWord const& word) const;
    unsigned flagsOfSurface(std::span<IndexedWord const> words) const;
    void deriveCodes();
    static void setBit(std::vector<std::uint64_t>& bits, std::uint32_t at) {
        bits[at >> 6] |= std::uint64_t{1} << (at & 63);
    }

    SurfaceTable const& surfaces_;
    ConnIndex const& conn_;
    CandidateListMaker lists_;
    std::vector<std::uint32_t> codes_;  // as DicIndex::codes()
    std::vector<std::uint64_t> roots_;
    std::vector<std::uint32_t> rootChains_;
    CharacterTrieMaker trie_;
    std::vector<std::uint64_t> pairs_, neighbours_;
};

}  // namespace TAVO

#endif
