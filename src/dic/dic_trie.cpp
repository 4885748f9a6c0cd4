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

bool DicTrie::mayContinue(unsigned char const* key, std::size_t n) const {
    std::uint32_t base = n == 0 ? 0 : root_[key[0]];
    if (base == 0) return n == 0;
    for (std::size_t i = 1; i < n; ++i) {
        std::uint32_t const next = cell(base + key[i]);
        if (label(next) != key[i] || key[i] == 0) return false;
        if (isLeaf(next)) return i + 1 < n || tailOf(next).length != 0;
        base = next & kValueMask;
    }
    for (std::uint32_t byte = 1; byte < 256; ++byte)
        if (label(cell(base + byte)) == byte) return true;
    return false;
}

}  // namespace TAVO
