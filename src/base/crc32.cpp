#include "base/crc32.hpp"

#include <array>

namespace TAVO {
namespace {

constexpr std::array<std::uint32_t, 256> makeTable() {
    std::array<std::uint32_t, 256> table{};
    for (std::uint32_t i = 0; i < table.size(); ++i) {
        std::uint32_t value = i;
        for (int bit = 0; bit < 8; ++bit) value = (value & 1U) != 0 ? value >> 1 ^ 0xEDB88320U : value >> 1;
        table[i] = value;
    }
    return table;
}

constexpr std::array<std::uint32_t, 256> kTable = makeTable();

}  // namespace

std::uint32_t crc32(std::string_view bytes) noexcept {
    std::uint32_t value = 0xFFFFFFFFU;
    for (char const c : bytes) value = kTable[(value ^ static_cast<unsigned char>(c)) & 0xFFU] ^ value >> 8;
    return ~value;
}

}  // namespace TAVO
