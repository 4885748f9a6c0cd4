// Dictionary records of words that no dictionary holds.
#ifndef TAVO_RESULT_MADE_RECORDS_HPP
#define TAVO_RESULT_MADE_RECORDS_HPP

#include "dic/mrph_dic.hpp"
#include "engine/special_records.hpp"

#include <array>
#include <cstdint>
#include <map>

namespace TAVO {

/// Records live until clear(). All words of one part of speech share a record:
/// it holds what the search needs, and the morpheme's cover the other attributes.
class MadeRecords {
public:
    static constexpr unsigned char kCost = 100;  // as of a dictionary line without cost

    /// The unknown word's record for its own id and for 0.
    unsigned char const* record(std::uint16_t pid) {
        if (pid == 0 || pid == MrphDic(kUnknownRecord.data()).pid()) return kUnknownRecord.data();
        auto const low = static_cast<unsigned char>(pid & 0xFF);
        auto const high = static_cast<unsigned char>(pid >> 8);
        return records_.try_emplace(pid, Record{MrphDic::kHeadBytes, 0, low, high, kCost, 0, 0, 0})
            .first->second.data();
    }
    void clear() noexcept { records_.clear(); }

private:
    using Record = std::array<unsigned char, MrphDic::kHeadBytes>;
    std::map<std::uint16_t, Record> records_;
};

}  // namespace TAVO

#endif
