// All candidates of sentences of which only the best path was kept.
#ifndef TAVO_ENGINE_EXACT_CANDIDATE_TABLE_HPP
#define TAVO_ENGINE_EXACT_CANDIDATE_TABLE_HPP

#include "engine/lattice_node.hpp"
#include "engine/node_pool.hpp"

#include <cstddef>
#include <map>
#include <mutex>
#include <span>
#include <string_view>
#include <vector>

namespace TAVO {

class ConnTable;
class DicSet;

/// Searches a sentence with all its candidates when somebody first asks for one,
/// since hardly anybody does. Nodes live until clear().
class CandidateTable {
public:
    CandidateTable() = default;

    /// The nodes that start at @p start of the sentence @p text, in the order of
    /// making. May be called from several threads at once.
    std::span<LatticeNode const> at(std::string_view text, std::size_t start, ConnTable const& table,
                                    DicSet const& dics) const;
    /// Not while another thread is in at().
    void clear() noexcept;

private:
    struct Made {
        NodePool pool{0};
        std::vector<std::span<LatticeNode const>> starts;  // by position
    };
    mutable std::mutex mutex_;
    mutable std::map<char const*, Made> sentences_;  // by the address of their text
};

}  // namespace TAVO

#endif
