// Damaged files: bytes of their own, or a sound file with bytes put over it.
#ifndef TAVO_TESTS_FUZZ_IMAGE_HPP
#define TAVO_TESTS_FUZZ_IMAGE_HPP

#include "fuzz/fuzz_input.hpp"

#include <string>

namespace TAVO::test {

inline std::string damaged(std::string const& sound, FuzzInput& in) {
    unsigned const how = in.byte();
    if (how % 8 == 7) return in.rest();
    std::string bytes = sound;
    while (!in.empty()) {
        std::size_t const low = in.byte(), position = (low | in.byte() << 8) % bytes.size();
        bytes[position] = static_cast<char>(in.byte());
        if (how % 8 == 6 && in.empty()) bytes.resize(position);
    }
    return bytes;
}

}  // namespace TAVO::test

#endif
