// The records of a surface that may become lattice nodes.
#ifndef TAVO_DIC_RECORD_WALK_HPP
#define TAVO_DIC_RECORD_WALK_HPP

#include "dic/dic_trie.hpp"

#include <cstdint>

namespace TAVO {

/// Calls visit(MrphDic) for the records of @p chain that may become nodes: of
/// neighbouring homographs of one id only the first does, and it counts as
/// handled even when nothing may follow it.
template <class Visit>
void eachNodeRecord(RecordChain chain, std::uint32_t idCount, Visit&& visit) {
    for (std::uint16_t handled = 0; chain; chain = chain.next()) {
        MrphDic const record = chain.record();
        std::uint16_t const pid = record.pid();
        if (pid == handled || pid == 0 || pid > idCount) continue;
        handled = pid;
        visit(record);
    }
}

}  // namespace TAVO

#endif
