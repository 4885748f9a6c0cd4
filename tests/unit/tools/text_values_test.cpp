#include "encoding.hpp"
#include "pos_names.hpp"
#include "support/testing.hpp"
#include "tool_error.hpp"

namespace {

using tool::Encoding;

TEST(Encoding, ValuesOfRecords) {
    TAVO::test::Table<char const*, char const*> const table{
        {"", ""},
        {"a\\~", "a\\~"},
        {"\x95\x5C\x82\xA0", "表あ"},
        {"\xB1\xDF", "ｱﾟ"},
        {"\x80\xA0", "\uFFFD\uFFFD"},  // no characters
        {"\x82", "\uFFFD"},            // cut short
        {"\x82\x20x", "\uFFFD x"},     // no second byte
        {"\xFD\x40", "\uFFFD@"},       // no lead byte of the code page
    };
    for (auto const& [sjis, utf8] : table) EXPECT_EQ(tool::sjisToUtf8(sjis), utf8);
}

TEST(Encoding, TextThatTheCodePageCannotHoldIsRefusedWhereItStands) {
    std::string out;
    EXPECT_EQ(tool::appendUtf8AsSjis(out, std::string_view("a\0表〜", 8)), std::nullopt);
    EXPECT_EQ(out, std::string("a\0\x95\x5C\x81\x60", 6));
    EXPECT_EQ(tool::appendUtf8AsSjis(out, "あé"), 3U);
    EXPECT_EQ(tool::appendUtf8AsSjis(out, "x\xFF"), 1U);
    EXPECT_THROW(tool::argumentToSjis("😀", Encoding::Utf8, "WORD"), tool::ToolError);
    EXPECT_EQ(tool::argumentToSjis("\xFF", Encoding::Sjis, "WORD"), "\xFF");
}

TEST(PosNames, OnlyANumberAtTheEndIsAClass) {
    EXPECT_EQ(tool::withoutClass("A:B-12"), "A:B");
    for (char const* whole : {"A:B", "A-", "A-b", "A-1b", "-1", "12", ""}) EXPECT_EQ(tool::withoutClass(whole), whole);
}

}  // namespace
