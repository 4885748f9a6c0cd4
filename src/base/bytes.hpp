// Little-endian loads and stores; files are never read through a cast struct.
#ifndef TAVO_BASE_BYTES_HPP
#define TAVO_BASE_BYTES_HPP

#include <bit>
#include <cstdint>
#include <cstring>
#include <string>

namespace TAVO {

inline std::uint16_t loadU16(unsigned char const* p) noexcept {
    if constexpr (std::endian::native == std::endian::little) {
        std::uint16_t value;
        std::memcpy(&value, p, sizeof value);
        return value;
    }
    return static_cast<std::uint16_t>(p[0] | (p[1] << 8));
}

inline std::uint32_t loadU32(unsigned char const* p) noexcept {
    if constexpr (std::endian::native == std::endian::little) {
        std::uint32_t value;
        std::memcpy(&value, p, sizeof value);
        return value;
    }
    return static_cast<std::uint32_t>(p[0]) | static_cast<std::uint32_t>(p[1]) << 8 |
           static_cast<std::uint32_t>(p[2]) << 16 | static_cast<std::uint32_t>(p[3]) << 24;
}

inline std::uint64_t loadU64(unsigned char const* p) noexcept {
    return loadU32(p) | static_cast<std::uint64_t>(loadU32(p + 4)) << 32;
}

inline void appendU16(std::string& out, std::uint32_t value) {
    out.push_back(static_cast<char>(value & 0xFF));
    out.push_back(static_cast<char>(value >> 8 & 0xFF));
}

inline void appendU32(std::string& out, std::uint32_t value) {
    appendU16(out, value & 0xFFFF);
    appendU16(out, value >> 16);
}

inline void appendU64(std::string& out, std::uint64_t value) {
    appendU32(out, static_cast<std::uint32_t>(value));
    appendU32(out, static_cast<std::uint32_t>(value >> 32));
}

inline unsigned char const* asBytes(char const* p) noexcept { return reinterpret_cast<unsigned char const*>(p); }
inline char const* asChars(unsigned char const* p) noexcept { return reinterpret_cast<char const*>(p); }

}  // namespace TAVO

#endif
