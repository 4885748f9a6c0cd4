// CRC-32 as used for the stamps of part-of-speech names.
#ifndef TAVO_BASE_CRC32_HPP
#define TAVO_BASE_CRC32_HPP

#include <cstdint>
#include <string_view>

namespace TAVO {

/// The reflected CRC-32 (polynomial 0xEDB88320, initial value and final
/// complement all ones) of @p bytes; 0 for no bytes.
std::uint32_t crc32(std::string_view bytes) noexcept;

}  // namespace TAVO

#endif
