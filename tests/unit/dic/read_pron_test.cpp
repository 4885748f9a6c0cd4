#include "dic/read_pron.hpp"

#include "support/testing.hpp"

namespace TAVO::test {
namespace {

TEST(ReadPronTest, TakesSidesOfGroups) {
    // Text; reading with and without part separators; pronunciation.
    Table<std::string, std::string, std::string, std::string> const cases{
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
    for (auto const& [utf8, read, compact, pron] : cases) {
        std::string const text = toSjis(utf8);
        EXPECT_EQ(toUtf8(extractRead(text.c_str(), false)), read) << utf8;
        EXPECT_EQ(toUtf8(extractRead(text.c_str(), true)), compact) << utf8;
        EXPECT_EQ(toUtf8(extractPron(text.c_str())), pron) << utf8;
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
