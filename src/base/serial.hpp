// Numbers that no two objects of a process share.
#ifndef TAVO_BASE_SERIAL_HPP
#define TAVO_BASE_SERIAL_HPP

#include <atomic>
#include <cstdint>

namespace TAVO {

/// A number not given before, so that an object made at the address of an earlier
/// one can be told from it.
inline std::uint64_t nextSerial() noexcept {
    static std::atomic<std::uint64_t> last{0};
    return last.fetch_add(1, std::memory_order_relaxed) + 1;
}

}  // namespace TAVO

#endif
