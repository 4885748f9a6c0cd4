#include "dic/dic_trie.hpp"

namespace TAVO {

DicTrie::DicTrie(unsigned char const* section, std::size_t sizeBytes) {
    if (sizeBytes < kHeaderBytes) return;
    std::size_t const nodeOffset = loadU32(section);
    std::size_t const leafOffset = loadU32(section + 4);
    if (leafOffset <= nodeOffset || sizeBytes <= leafOffset || (leafOffset - nodeOffset) % 4 != 0) return;
    // Entry 0 stays 0: a NUL ends every search.
    for (std::size_t byte = 1; byte < root_.size(); ++byte) root_[byte] = loadU32(section + 8 + byte * 4);
    cells_ = section + nodeOffset;
    cellCount_ = static_cast<std::uint32_t>((leafOffset - nodeOffset) / 4);
    leaf_ = section + leafOffset;
    leafBytes_ = sizeBytes - leafOffset;
}

RecordChain DicTrie::exactMatch(unsigned char const* key, std::size_t n) const {
    RecordChain found;
    prefixSearch(key, n, [&](std::size_t length, RecordChain chain) {
        if (length == n) found = chain;
        return true;
    });
    return found;
}

}  // namespace TAVO
