// The code page 932 tables; tools/tavo/gen_cp932.cpp writes them during the build.
#ifndef TAVO_BASE_CP932_TABLES_HPP
#define TAVO_BASE_CP932_TABLES_HPP

#include <cstdint>

namespace TAVO {

/// By character of the basic plane: 0 none, a value below 0x100 one byte, else
/// two bytes with the lead byte in the low half.
extern std::uint16_t const kCp932FromUnicode[0x10000];
/// By (lead byte - 0x80) * 256 + second byte: the character, 0 none.
extern std::uint16_t const kUnicodeFromCp932[0x8000];

}  // namespace TAVO

#endif
