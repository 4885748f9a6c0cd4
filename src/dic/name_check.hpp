// The check of a name pool, which dictionaries and connection tables share.
#ifndef TAVO_DIC_NAME_CHECK_HPP
#define TAVO_DIC_NAME_CHECK_HPP

#include "dic/fault_list.hpp"

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace TAVO {

/// Where names stand in a file: offsets of 4 bytes each, and the pool. Both lie
/// inside the file.
struct NameSection {
    std::size_t count;
    std::size_t offsetsPosition;
    std::size_t poolPosition;
    std::size_t poolBytes;
    std::size_t stampPosition;
};

/// Names stand in order without gaps, each ended by NUL, and fill the pool; the
/// stamp is the pool's.
void checkNames(std::string_view file, NameSection const& names, FaultList& faults);

}  // namespace TAVO

#endif
