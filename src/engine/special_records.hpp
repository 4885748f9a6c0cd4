// Records that stand for no dictionary word.
#ifndef TAVO_ENGINE_SPECIAL_RECORDS_HPP
#define TAVO_ENGINE_SPECIAL_RECORDS_HPP

#include <array>
#include <cstdint>

namespace TAVO {

/// The record of every unknown-word node: id 3, word cost 255, no body.
inline constexpr std::array<unsigned char, 8> kUnknownRecord{8, 0, 3, 0, 255, 0, 0, 0};
/// The record of annotations: no part of speech, no cost.
inline constexpr std::array<unsigned char, 8> kAnnotationRecord{8, 0, 0, 0, 0, 0, 0, 0};

inline constexpr std::uint8_t kUnknownWordCost = 255;

}  // namespace TAVO

#endif
