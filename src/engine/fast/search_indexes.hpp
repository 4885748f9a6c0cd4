// The indexes of an analyser's dictionaries and connection table, as the fast search reads them.
#ifndef TAVO_ENGINE_FAST_SEARCH_INDEXES_HPP
#define TAVO_ENGINE_FAST_SEARCH_INDEXES_HPP

#include "dic/conn_table.hpp"
#include "dic/dic_set.hpp"
#include "dic/index/conn_index.hpp"
#include "dic/index/dic_index.hpp"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace TAVO {

class SearchIndexes {
public:
    static constexpr std::size_t kMostDictionaries = 250;

    /// Takes the indexes of @p table and @p dics, made where there are none; cheap when they are those attached before.
    /// Throws bad_alloc.
    void attach(ConnTable const& table, DicSet const& dics);
    /// True while @p table and @p dics are those attached last.
    bool isAttached(ConnTable const& table, DicSet const& dics) const;
    /// False when only the exact search may be used.
    bool isUsable() const noexcept { return usable_; }

    ConnIndex const& conn() const noexcept { return *conn_; }
    std::size_t count() const noexcept { return dics_.size(); }
    DicIndex const& dic(std::size_t number) const noexcept { return *dics_[number]; }
    /// By code: the first dictionary's number of the character, and from bit DicIndex::kFlagShift on the flags that it
    /// has in all of them together.
    std::uint32_t const* codes() const noexcept { return codes_; }
    /// True when some surface of a dictionary holds the two-byte character @p code.
    bool hasPair(CharacterCode code) const noexcept { return (pairs_[code >> 6] >> (code & 63) & 1) != 0; }
    /// Classes that count as open everywhere: none, or all of them where the checks need all words.
    std::uint8_t alwaysOpen() const noexcept { return alwaysOpen_; }
    /// True when words without a twin may be left out (DicIndex::untwinned).
    bool leavesUntwinned() const noexcept { return leavesUntwinned_; }
    /// Record @p rank of the surface @p bytes in dictionary @p number, of those that may be nodes; null for none.
    unsigned char const* record(std::size_t number, unsigned char const* bytes, std::size_t length,
                                unsigned rank) const noexcept;

private:
    void mergeCodes();
    void mergePairs();

    std::vector<std::uint64_t> attached_;  // serial numbers of table and dictionaries
    std::uint32_t idCount_ = 0;
    std::shared_ptr<ConnIndex const> conn_;
    std::vector<std::shared_ptr<DicIndex const>> dics_;
    std::vector<DicTrie const*> tries_;
    bool usable_ = false;
    std::uint8_t alwaysOpen_ = 0;
    bool leavesUntwinned_ = false;
    std::uint32_t const* codes_ = nullptr;
    std::vector<std::uint32_t> mergedCodes_;
    std::uint64_t const* pairs_ = nullptr;
    std::vector<std::uint64_t> mergedPairs_;
};

}  // namespace TAVO

#endif
