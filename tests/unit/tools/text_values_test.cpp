#include "cli/encoding.hpp"
#include "cli/tool_error.hpp"
#include "config/pos_name.hpp"
#include "lexicon/encoding_guess.hpp"
#include "support/testing.hpp"

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

/// Text in the encodings that iconv calls so; "" stands for UTF-8.
TEST(Encoding, TheLikelyOneIsTold) {
    std::string const sentence = "東京へ行く。\nそれから、京都。\n";
    auto const as = [](std::string const& utf8, char const* name) { return TAVO::test::convert(utf8, name, "UTF-8"); };
    std::string many;
    while (many.size() < 5000) many += "x" + sentence;
    struct Case {
        std::string what, text;
        std::string_view inUtf8, inSjis;  ///< what it seems to be where each is said
    };
    std::string const sjis = as(sentence, "CP932"), euc = as(sentence, "EUC-JP");
    std::vector<Case> const table{
        {"nothing", "", "", ""},
        {"ASCII", "a\tb\x1B[1mc\x1B(B\n", "", ""},
        {"UTF-8", sentence, "", "UTF-8"},
        {"more than a sample", many, "", "UTF-8"},
        {"Shift_JIS", sjis, "Shift_JIS", ""},
        {"kanji alone", as("東京", "CP932"), "Shift_JIS", ""},
        {"more than a sample", as(many, "CP932"), "Shift_JIS", ""},
        {"half-width katakana", as("ｱ､ｲｳ ﾃｱ ｿﾚﾊ､ﾃｽﾄﾃﾞｽ", "CP932"), "", ""},
        {"EUC-JP", euc, "EUC-JP", "EUC-JP"},
        {"kanji alone", as("東京", "EUC-JP"), "EUC-JP", "EUC-JP"},
        {"behind much ASCII", std::string(9001, 'x') + euc, "EUC-JP", "EUC-JP"},
        {"EUC-KR", as("서울에서 부산까지 갑니다 그리고 다시 서울로", "EUC-KR"), "", ""},
        {"ISO-2022-JP", as(sentence, "ISO-2022-JP"), "ISO-2022-JP", "ISO-2022-JP"},
        {"with its mark", "\xFF\xFE" + as(sentence, "UTF-16LE"), "UTF-16", "UTF-16"},
        {"without", as(sentence, "UTF-16LE"), "UTF-16LE", "UTF-16LE"},
        {"the other way round", as("x" + sentence, "UTF-16BE"), "UTF-16BE", "UTF-16BE"},
        {"NUL in text", std::string("\0x\0も\0", 7), "", "UTF-8"},
        {"no text",
         std::string("\x7F"
                     "ELF\2\1\0\0\0\0\0\x90\x81\xE8\xFF",
                     15),
         "", ""},
        {"Latin", "caf\xE9 cr\xE8me\n", "", ""},
        {"one accent of another",
         "cre\x8E"
         "er\n",
         "", ""},
        {"stray bytes", sentence + sjis.substr(0, 6), "", ""},
        {"cut", sentence.substr(0, 7), "", ""},
    };
    for (auto const& [what, text, inUtf8, inSjis] : table) {
        EXPECT_EQ(TAVO::words::otherEncoding(text, Encoding::Utf8), inUtf8) << what;
        EXPECT_EQ(TAVO::words::otherEncoding(text, Encoding::Sjis), inSjis) << what;
    }
}

TEST(PosNames, OnlyANumberAtTheEndIsAClass) {
    EXPECT_EQ(TAVO::withoutClass("A:B-12"), "A:B");
    for (char const* whole : {"A:B", "A-", "A-b", "A-1b", "-1", "12", ""}) EXPECT_EQ(TAVO::withoutClass(whole), whole);
}

}  // namespace
