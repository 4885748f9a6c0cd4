#define CONSUMER analyzeInCpp
#include "c_api/consumer.c"

#include "c_api/flat_world.hpp"

extern "C" int analyzeInC(char const* dic, char const* connTable, char const* text, char* out, int size);

namespace TAVO::test {
namespace {

class Consumer : public FlatWorld {};

TEST_F(Consumer, WorksAsCAndAsCpp) {
    for (auto* const analyze : {analyzeInC, analyzeInCpp}) {
        char out[64] = "";
        EXPECT_EQ(analyze(paths.dic.c_str(), paths.connTable.c_str(), "abcdz", out, sizeof out), 0);
        EXPECT_STREQ(out, "abc/Noun d/Noun z/Undef ");
    }
}

}  // namespace
}  // namespace TAVO::test
