// An analyser of the flat interface over a few words with every kind of value.
#ifndef TAVO_TESTS_FLAT_WORLD_HPP
#define TAVO_TESTS_FLAT_WORLD_HPP

#include "support/small_world.hpp"
#include "support/testing.hpp"

#include <tavo/tavo.h>

namespace TAVO::test {

/// Texts are ASCII but for readings, so that forms can be counted on sight.
inline SmallWorld flatWords() {
    SmallWorld world;
    world.namesUtf8({"Begin", "End", "Undef", "Noun", "Verb", "Tail:Kana-2"}).cost([](unsigned, unsigned) {
        return 10;
    });
    world.linesUtf8({"ab-c,Noun-Verb-Tail:Kana\\-2,12,えい(び|びー)/し,AB/C,w1,g1,grp,1:2,,7,pros,x0,x1",
                     "d,Noun,5,でぃ", "d,Verb,6,でぃ"});
    return world;
}

class FlatWorld : public ::testing::Test {
protected:
    void SetUp() override {
        paths = flatWords().writeTo(dir.path());
        tavo = tavo_new(0);
        ASSERT_NE(tavo, nullptr);
        ASSERT_EQ(tavo_setConnTablePath(tavo, paths.connTable.c_str()), 0) << tavo_getErrorWhat(tavo);
        ASSERT_EQ(tavo_addDicPath(tavo, paths.dicSpec().c_str(), 0), 0) << tavo_getErrorWhat(tavo);
    }
    void TearDown() override {
        EXPECT_EQ(tavo_free(tavo), 0);
        EXPECT_EQ(tavo_dispose(), 0);
    }

    /// The morphemes of the text's first sentence; the text must live on.
    tavo_result_t analyze(std::string const& text) {
        tavo_result_t result{};
        EXPECT_EQ(tavo_analyze(tavo, text.data(), static_cast<int>(text.size())), 0) << tavo_getErrorWhat(tavo);
        EXPECT_EQ(tavo_getResult(tavo, &result, 0), 0) << tavo_getErrorWhat(tavo);
        return result;
    }
    /// @p result of a call on the analyser is an error of this code and text.
    void expectError(int result, int code, std::string const& what) {
        EXPECT_EQ(result, code) << what;
        EXPECT_EQ(tavo_getErrorWhat(tavo), what);
    }
    static void expectError(tavo_mrph_t* mrph, int result, int code, std::string const& what) {
        EXPECT_EQ(result, code) << what;
        EXPECT_EQ(tavo_getMrphErrorWhat(mrph), what);
    }
    /// What the flat interface says itself of an argument of @p function.
    void expectFlatError(int result, std::string const& function) {
        expectError(result, -10001, "INVALID_ARGUMENT:" + function + "()");
    }
    static void expectFlatError(tavo_mrph_t* mrph, int result, std::string const& function) {
        expectError(mrph, result, -10001, "INVALID_ARGUMENT:" + function + "()");
    }
    /// A compound of two parts.
    tavo_mrph_t* compound() { return analyze(text_).array[0]; }

    TempDir dir;
    SmallWorld::Paths paths;
    tavo_t* tavo = nullptr;
    std::string const text_ = "abcd";
};

}  // namespace TAVO::test

#endif
