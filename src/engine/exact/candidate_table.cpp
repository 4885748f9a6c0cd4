#include "engine/exact/candidate_table.hpp"

#include "engine/exact/exact_search.hpp"

namespace TAVO {

std::span<LatticeNode const> CandidateTable::at(std::string_view text, std::size_t start, ConnTable const& table,
                                                DicSet const& dics) const {
    std::lock_guard<std::mutex> const lock(mutex_);
    auto [entry, fresh] = sentences_.try_emplace(text.data());
    if (fresh) {
        try {
            LatticeConstraints const none;
            ExactSearch search(entry->second.pool, table, none);
            search.build(text, dics);
            entry->second.starts = search.starts();
        } catch (...) {
            sentences_.erase(entry);
            throw;
        }
    }
    return entry->second.starts[start];
}

void CandidateTable::clear() noexcept { sentences_.clear(); }

}  // namespace TAVO
