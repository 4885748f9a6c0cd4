// A number that tells contents apart.
#ifndef TAVO_BASE_STAMP_HPP
#define TAVO_BASE_STAMP_HPP

#include <cstddef>
#include <cstdint>

namespace TAVO {

/// 64 bits made of @p sizeBytes bytes and their number. Equal contents have equal stamps on every machine; it finds
/// changes, not forgeries.
std::uint64_t contentStamp(unsigned char const* bytes, std::size_t sizeBytes) noexcept;

}  // namespace TAVO

#endif
