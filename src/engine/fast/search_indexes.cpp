#include "engine/fast/search_indexes.hpp"

#include "dic/pools.hpp"
#include "dic/record_walk.hpp"

#include <algorithm>

namespace TAVO {

void SearchIndexes::attach(ConnTable const& table, DicSet const& dics) {
    if (isAttached(table, dics)) return;
    attached_.clear();  // what follows may throw
    dics_.clear();
    tries_.clear();
    idCount_ = table.idCount();
    {
        PoolLock const lock;
        IndexPool& pool = sharedPools().indexes;
        conn_ = pool.connIndex(table);
        usable_ = conn_->hasFlatUnknown() && dics.entries().size() <= kMostDictionaries;
        for (DicEntry const& entry : dics.entries()) {
            if (!usable_ || entry.dic->trie() == nullptr) break;
            dics_.push_back(pool.dicIndex(*entry.dic, table, *conn_));
            tries_.push_back(entry.dic->trie());
            usable_ = dics_.back()->isRegular();
        }
    }
    usable_ = usable_ && dics_.size() == dics.entries().size() && !dics_.empty();
    if (usable_) {
        mergeCodes();
        mergePairs();
    }
    attached_.push_back(table.serial());
    for (DicEntry const& entry : dics.entries()) attached_.push_back(entry.dic->serial());
}

bool SearchIndexes::isAttached(ConnTable const& table, DicSet const& dics) const {
    std::vector<DicEntry> const& entries = dics.entries();
    return attached_.size() == entries.size() + 1 && attached_.front() == table.serial() &&
           std::equal(entries.begin(), entries.end(), attached_.begin() + 1,
                      [](DicEntry const& entry, std::uint64_t serial) { return entry.dic->serial() == serial; });
}

/// One dictionary's table is used in place. Where a word without a twin could be what an unknown word gains by, none is
/// left out, no character counts as safe, and every one is looked at.
void SearchIndexes::mergeCodes() {
    std::uint64_t untwinned = 0;
    std::uint64_t exits = 0;
    for (auto const& dic : dics_) {
        untwinned |= dic->untwinned();
        exits |= dic->exits();
    }
    bool const leavesOut = untwinned != DicIndex::kAnyClass && (untwinned & exits) == 0;
    alwaysOpen_ = leavesOut ? 0 : 0xFF;
    leavesUntwinned_ = leavesOut && untwinned != 0;
    mergedCodes_.clear();
    codes_ = dics_.front()->codes();
    if (dics_.size() == 1 && leavesOut) return;
    std::vector<unsigned> own(DicIndex::kCodes, 0);
    for (auto const& dic : dics_)
        for (std::size_t code = 0; code < own.size(); ++code) own[code] |= dic->codes()[code] >> DicIndex::kFlagShift;
    mergedCodes_.resize(DicIndex::kCodes);
    for (std::uint32_t code = 0; code < mergedCodes_.size(); ++code) {
        unsigned const kept =
            leavesOut ? CharacterFlag::kOfDictionary : CharacterFlag::kOfDictionary & ~CharacterFlag::kSafe;
        unsigned const flags = deriveFlags(code, own[code] & kept, own[code & 0xFF] & kept);
        mergedCodes_[code] = (codes_[code] & 0xFFFF) | flags << DicIndex::kFlagShift;
    }
    codes_ = mergedCodes_.data();
}

void SearchIndexes::mergePairs() {
    pairs_ = dics_.front()->pairs().data();
    if (dics_.size() == 1) return;
    mergedPairs_.assign(DicIndex::kCodes / 64, 0);
    for (auto const& dic : dics_)
        for (std::size_t i = 0; i < mergedPairs_.size(); ++i) mergedPairs_[i] |= dic->pairs()[i];
    pairs_ = mergedPairs_.data();
}

unsigned char const* SearchIndexes::record(std::size_t number, unsigned char const* bytes, std::size_t length,
                                           unsigned rank) const noexcept {
    std::uint32_t const position = dics_[number]->chainOf(bytes, length);
    if (position == DicIndex::kNoChain) return nullptr;
    unsigned char const* found = nullptr;
    eachNodeRecord(tries_[number]->chainAt(position), idCount_, [&](MrphDic record) {
        if (rank-- == 0) found = record.head();
    });
    return found;
}

}  // namespace TAVO
