#include "engine/exact/candidate_table.hpp"

#include "engine/exact/exact_search.hpp"

namespace TAVO {

std::span<LatticeNode const> CandidateTable::at(std::string_view text, std::size_t start, ConnTable const& table,
                                                DicSet const& dics) const {
    std::lock_guard<std::mutex> const lock(mutex_);
    auto [place, fresh] = sentences_.try_emplace(text.data());
    if (fresh) {
        try {
            LatticeConstraints const none;
            ExactSearch search(place->second.pool, table, none);
            search.build(text, dics);
            place->second.starts = search.starts();
        } catch (...) {
            sentences_.erase(place);
            throw;
        }
    }
    return place->second.starts[start];
}

void CandidateTable::clear() noexcept { sentences_.clear(); }

}  // namespace TAVO
