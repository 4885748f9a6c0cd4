#include "text/line_text.hpp"

#include "base/sjis.hpp"
#include "base/utf8.hpp"
#include "cli/utf8.hpp"
#include "support/testing.hpp"

#include <random>

namespace {

using namespace TAVO::test;
using TAVO::LineText;
using namespace std::string_literals;

/// A line as the reader hands it over: readable bytes behind it.
struct PaddedLine {
    explicit PaddedLine(std::string const& line) : bytes(line + std::string(TAVO::kPaddingBytes, '\0')) {
        text.assignUtf8(std::string_view(bytes).substr(0, line.size()));
    }
    std::string bytes;
    LineText text;
};

constexpr char kUnknown[] = "\xF0\x80";

TEST(LineText, Conversions) {
    // What, UTF-8, Shift_JIS, original offsets by Shift_JIS offset (the end included), invalid bytes.
    Table<char const*, std::string, std::string, std::vector<std::size_t>, std::size_t> const table{
        {"empty", "", "", {0}, 0},
        {"ASCII and NUL", "a\0~"s, "a\0~"s, {0, 1, 2, 3}, 0},
        {"kana", "あx", "\x82\xA0x", {0, 3, 3, 4}, 0},
        {"second byte 0x5C", "表", "\x95\x5C", {0, 3, 3}, 0},
        {"two UTF-8 bytes", "α", "\x83\xBF", {0, 2, 2}, 0},
        {"half-width katakana", "ｱ", "\xB1", {0, 3}, 0},
        {"wave dash", "〜", "\x81\x60", {0, 3, 3}, 0},
        {"its full-width twin", "～", "\x81\x60", {0, 3, 3}, 0},
        {"minus sign", "−", "\x81\x7C", {0, 3, 3}, 0},
        {"em dash", "—", "\x81\x5C", {0, 3, 3}, 0},
        {"yen sign", "¥", "\x81\x8F", {0, 2, 2}, 0},
        {"no-break space", "\u00A0", " ", {0, 2}, 0},
        {"emoji", "a😀b", "a"s + kUnknown + "b", {0, 1, 5, 5, 6}, 0},
        {"not in the code page", "鷗é", std::string(kUnknown) + kUnknown, {0, 3, 3, 5, 5}, 0},
        {"variation selector", "葛\U000E0100x", "\x8A\x8Bx", {0, 7, 7, 8}, 0},
        {"combining mark on ASCII", "1\u0301x", "1x", {0, 3, 4}, 0},
        {"letters with marks", "xe\u0301x1", kUnknown + "1"s, {0, 5, 5, 6}, 0},
        {"letter outside among others", "1naïve2", "1"s + kUnknown + "2", {0, 1, 7, 7, 8}, 0},
        {"behind two bytes", "表ïa表", "\x95\x5C"s + kUnknown + "\x95\x5C", {0, 3, 3, 6, 6, 9, 9}, 0},
        {"full-width letters", "Ａï", kUnknown, {0, 5, 5}, 0},
        {"scripts side by side", "éД", std::string(kUnknown) + "\x84\x44", {0, 2, 2, 4, 4}, 0},
        {"Han around one", "韩国语中", kUnknown + "\x92\x86"s, {0, 9, 9, 12, 12}, 0},
        {"Han around two", "韩国中语", kUnknown + "\x8D\x91\x92\x86"s + kUnknown, {0, 3, 3, 6, 6, 9, 9, 12, 12}, 0},
        {"hiragana outside", "あゔい", "\x82\xA0"s + kUnknown + "\x82\xA2", {0, 3, 3, 6, 6, 9, 9}, 0},
        {"katakana outside", "イㇰー", kUnknown, {0, 9, 9}, 0},
        {"marks of a script", "กิน", kUnknown, {0, 9, 9}, 0},
        {"joined emoji", "👩\u200D❤\uFE0F\u200D👩a", kUnknown + "a"s, {0, 20, 20, 21}, 0},
        {"skin tone", "👍🏽👍", std::string(kUnknown) + kUnknown, {0, 8, 8, 12, 12}, 0},
        {"flags", "🇯🇵🇯", std::string(kUnknown) + kUnknown, {0, 8, 8, 12, 12}, 0},
        {"keycap", "21\uFE0F\u20E3", "2"s + kUnknown, {0, 1, 8, 8}, 0},
        {"mark behind a joiner", "ウ\u200D\u3099", "\x83\x94", {0, 9, 9}, 0},
        {"voiced kana", "か\u3099", "\x82\xAA", {0, 6, 6}, 0},
        {"semi-voiced kana", "ハ\u309A", "\x83\x70", {0, 6, 6}, 0},
        {"voiced u", "ウ\u3099", "\x83\x94", {0, 6, 6}, 0},
        {"no voiced form", "ま\u3099", "\x82\xDC", {0, 6, 6}, 0},
        {"no semi-voiced form", "か\u309A", "\x82\xA9", {0, 6, 6}, 0},
        {"byte order mark", "\uFEFFあ", "\x82\xA0", {0, 6, 6}, 0},
        {"nothing but invisible", "\uFEFF\u200D", kUnknown, {0, 6, 6}, 0},
        {"stray continuation", "\x80\xBF", "\x1A\x1A", {0, 1, 2}, 2},
        {"cut short", "あ\xE3\x81", "\x82\xA0\x1A\x1A", {0, 3, 3, 4, 5}, 2},
        {"overlong", "\xE0\x8E\xB1", "\x1A\x1A\x1A", {0, 1, 2, 3}, 3},
        {"overlong ASCII", "\xC1\x81", "\x1A\x1A", {0, 1, 2}, 2},
        {"surrogate", "\xED\xA0\x80", "\x1A\x1A\x1A", {0, 1, 2, 3}, 3},
        {"above the last character", "\xF4\x90\x80\x80", "\x1A\x1A\x1A\x1A", {0, 1, 2, 3, 4}, 4},
        {"no UTF-8 byte", "\xFF", "\x1A", {0, 1}, 1},
    };
    for (auto const& [what, utf8, sjis, offsets, invalidBytes] : table) {
        SCOPED_TRACE(what);
        PaddedLine const line(utf8);
        EXPECT_EQ(line.text.sjis(), sjis);
        EXPECT_EQ(line.text.invalidBytes(), invalidBytes);
        ASSERT_EQ(line.text.sjis().size() + 1, offsets.size());
        for (std::size_t i = 0; i < offsets.size(); ++i) EXPECT_EQ(line.text.originalOffset(i), offsets[i]) << i;
    }
}

TEST(LineText, EveryCharacterOfTheCodePageIsAnalysedAsItself) {
    std::size_t checked = 0;
    for (unsigned lead = 0x81; lead <= 0xFC; ++lead) {
        if (!TAVO::isLeadByte(static_cast<char>(lead))) continue;
        for (unsigned second = 0x40; second <= 0xFC; ++second) {
            std::string const sjis{static_cast<char>(lead), static_cast<char>(second)};
            std::string utf8, expected;
            try {
                utf8 = toUtf8(sjis);
                expected = toSjis(utf8);  // some characters have two codes
            } catch (std::runtime_error const&) {
                continue;
            }
            PaddedLine const line(utf8);
            ASSERT_EQ(line.text.sjis(), expected) << std::hex << lead << ' ' << second;
            ++checked;
        }
    }
    EXPECT_GT(checked, 9000U);
}

TEST(LineText, WhatAnalysisSkipsIsLeftOut) {
    Table<std::string, std::string> const table{
        {"もも", "もも"},
        {"a\u0301\uFEFFも\u200Bも\uFE0F", "áもも"},
        {"1\u0301กิน\u200D", "1กิน"},
        {"か\u3099ハ\u309Aウ\u200D\u3099", "がパヴ"},
        {"か\u3099\u3099ま\u3099は\uFE0F", "がまは"},
        {"\xFF\u200D👩\u200D👩", "\xFF👩👩"},
        {"\uFEFF\u200D", "\uFEFF\u200D"},  // nothing else is there
    };
    for (auto const& [read, analysed] : table) {
        PaddedLine const line(read);
        std::string scratch;
        EXPECT_EQ(line.text.analysed(0, read.size(), scratch), analysed) << read;
    }
}

/// Bytes and characters of every kind.
std::string randomLine(std::mt19937& random) {
    static std::vector<std::string> const kPieces = {"a",      " ",          "あ",   "表",       "ｱ",    "😀",
                                                     "é",      "か\u3099",   "\xE3", "\xE3\x81", "\x80", "\xF0\x9F",
                                                     "\uFEFF", "\U000E0100", "\0"s,  "\xFF"};
    std::string line;
    for (auto n = random() % 40; n > 0; --n)
        line += random() % 8 == 0 ? std::string(1, static_cast<char>(random())) : kPieces[random() % kPieces.size()];
    return line;
}

TEST(LineText, WordsJoinedAreTheLineWhereverItIsCut) {
    constexpr unsigned kSeed = 20240607;
    SCOPED_TRACE(kSeed);
    std::mt19937 random(kSeed);
    LineText text;
    for (int round = 0; round < 20000; ++round) {
        std::string const line = randomLine(random);
        std::string const padded = line + std::string(TAVO::kPaddingBytes, '\0');
        text.assignUtf8(std::string_view(padded).substr(0, line.size()));
        std::size_t const size = text.sjis().size();
        ASSERT_LE(size, line.size()) << testing::PrintToString(line);
        ASSERT_EQ(size == 0, line.empty());
        // Cuts at random places, inside characters too.
        std::string joined;
        for (std::size_t at = 0; at < size;) {
            std::size_t const next = std::min(size, at + 1 + random() % 5);
            ASSERT_LE(text.originalOffset(at), text.originalOffset(next)) << testing::PrintToString(line);
            joined += text.slice(text.originalOffset(at), text.originalOffset(next));
            at = next;
        }
        ASSERT_EQ(joined, line);
        std::string scratch;
        std::string_view const shown = text.analysed(0, line.size(), scratch);
        // Stray bytes may meet where something between them is left out.
        ASSERT_TRUE(text.invalidBytes() != 0 || PaddedLine(std::string(shown)).text.sjis() == text.sjis());
        // Two-byte characters are whole.
        for (std::size_t at = 0; at < size; at += TAVO::charWidth(text.sjis(), at))
            ASSERT_FALSE(TAVO::isLeadByte(text.sjis()[at]) && TAVO::charWidth(text.sjis(), at) == 1);
    }
}

TEST(Utf8, WidthsInColumns) {
    Table<char const*, std::size_t, std::size_t> const table{
        {"", 0, 0},       {"aé", 2, 2},           {"日本ー", 6, 3},     {"ｱｲ", 2, 2},           {"α→…", 3, 3},
        {"😀", 2, 1},      {"か\u3099", 2, 2},     {"　", 2, 1},         {"葛\U000E0100", 2, 2}, {"\xFF\xE3\x81", 3, 3},
        {"\u00AD", 0, 1}, {"\u05E9\u05BF", 1, 2}, {"\U00018D00", 2, 1}, {"\u0600", 1, 1},
    };
    for (auto const& [text, columns, characters] : table) {
        EXPECT_EQ(tool::displayWidth(text), columns) << text;
        EXPECT_EQ(TAVO::countCharacters(text), characters) << text;
    }
}

}  // namespace
