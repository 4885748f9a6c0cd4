#include "base/crc32.hpp"

#include "support/testing.hpp"

namespace TAVO::test {
namespace {

TEST(Crc32, KnownValues) {
    Table<std::string, std::uint32_t> const cases{
        {"", 0},
        {std::string(1, '\0'), 0xD202EF8D},
        {"a", 0xE8B7BE43},
        {"123456789", 0xCBF43926},  // the check value of this CRC
        {"\xFF\xFF\xFF\xFF", 0xFFFFFFFF},
    };
    for (auto const& [bytes, expected] : cases) EXPECT_EQ(crc32(bytes), expected) << bytes.size() << " bytes";
}

}  // namespace
}  // namespace TAVO::test
