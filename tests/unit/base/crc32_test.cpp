#include "base/crc32.hpp"

#include <gtest/gtest.h>

#include <string>

namespace TAVO {
namespace {

TEST(Crc32, KnownValues) {
    struct Case {
        std::string bytes;
        std::uint32_t expected;
    };
    Case const cases[] = {
        {"", 0},
        {std::string(1, '\0'), 0xD202EF8D},
        {"a", 0xE8B7BE43},
        {"123456789", 0xCBF43926},  // the check value of this CRC
        {"\xFF\xFF\xFF\xFF", 0xFFFFFFFF},
    };
    for (Case const& c : cases) EXPECT_EQ(crc32(c.bytes), c.expected) << c.bytes.size() << " bytes";
}

}  // namespace
}  // namespace TAVO
