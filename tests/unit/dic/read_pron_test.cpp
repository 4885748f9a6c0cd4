#include "dic/read_pron.hpp"

#include <gtest/gtest.h>

#include "support/encoding.hpp"

#include <string>

namespace TAVO::test {
namespace {

struct Case {
    std::string text;
    std::string read;     // part separators kept
    std::string compact;  // dropped
    std::string pron;
};

TEST(ReadPronTest, TakesSidesOfGroups) {
    Case const cases[] = {
        {"", "", "", ""},
        {"ハシ", "ハシ", "ハシ", "ハシ"},
        {"アイ（ウ", "アイ（ウ", "アイ（ウ", "アイ（ウ"},
        {"アイ(ウ|エ)オ/カキ", "アイウオ/カキ", "アイウオカキ", "アイエオ/カキ"},
        {"(ウ|エ)", "ウ", "ウ", "エ"},
        {"(ウ|エ)(オ|カ)キ", "ウオキ", "ウオキ", "エカキ"},
        {"(|エ)キ(ウ|)", "キウ", "キウ", "エキ"},
        {"ア-イ/ウ", "アイ/ウ", "アイウ", "アイ/ウ"},
        {"アx:イ", "アイ", "アイ", "アx:イ"},
        {"ア)イ|ウ", "アイウ", "アイウ", "ア)イ|ウ"},
        // Half-width katakana are one-byte characters.
        {"アｱイ", "アイ", "アイ", "アｱイ"},
        // Second bytes 0x7C "|" and 0x5C.
        {"(ポ|ャ)ソ", "ポソ", "ポソ", "ャソ"},
        // Malformed groups change nothing, wherever they stand.
        {"ア-(イ", "ア-(イ", "ア-(イ", "ア-(イ"},
        {"ア-(イ)ウ", "ア-(イ)ウ", "ア-(イ)ウ", "ア-(イ)ウ"},
        {"ア(イ|ウ", "ア(イ|ウ", "ア(イ|ウ", "ア(イ|ウ"},
        {"ア)-(イ|ウ", "ア)-(イ|ウ", "ア)-(イ|ウ", "ア)-(イ|ウ"},
        {"(ア|イ)-(ウ", "(ア|イ)-(ウ", "(ア|イ)-(ウ", "(ア|イ)-(ウ"},
    };
    for (Case const& c : cases) {
        std::string const text = toSjis(c.text);
        EXPECT_EQ(toUtf8(extractRead(text.c_str(), false)), c.read) << c.text;
        EXPECT_EQ(toUtf8(extractRead(text.c_str(), true)), c.compact) << c.text;
        EXPECT_EQ(toUtf8(extractPron(text.c_str())), c.pron) << c.text;
    }
}

TEST(ReadPronTest, StopsAtTheStop) {
    std::string const text = toSjis("ア(イ|ウ)エ/(オ");
    EXPECT_EQ(extractRead(text.c_str(), false, "/"), toSjis("アイエ"));
    EXPECT_EQ(extractPron(text.c_str(), "/"), toSjis("アウエ"));
    EXPECT_EQ(extractRead(text.c_str(), false, "x"), text) << "malformed without stop";
    EXPECT_EQ(extractRead(text.c_str(), false, ""), text) << "an empty stop is none";
    EXPECT_EQ(extractPron(toSjis("ポ|ア").c_str(), "|"), toSjis("ポ")) << "not at the second byte of the first";
    EXPECT_EQ(extractPron(toSjis("アイウ").c_str(), toSjis("イ").c_str()), toSjis("ア"));
}

TEST(ReadPronTest, ALoneLeadByteIsOneByte) {
    EXPECT_EQ(extractRead("\x83", false), "");
    EXPECT_EQ(extractPron("-\x83"), "\x83");
}

}  // namespace
}  // namespace TAVO::test
