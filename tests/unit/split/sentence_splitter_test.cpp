#include "split/sentence_splitter.hpp"

#include "base/sjis.hpp"
#include "support/testing.hpp"

#include <random>

namespace TAVO::test {
namespace {

using namespace std::string_literals;

std::vector<std::string> pieces(std::string const& text, int delimitCrlf, int deleteCrlf,
                                std::vector<std::string> const& delimiters) {
    Settings settings;
    settings.setMode(Mode::DelimitCRLF, delimitCrlf);
    settings.setMode(Mode::DeleteCRLF, deleteCrlf);
    settings.delimiters = delimiters;
    std::vector<std::string> result;
    splitText(text, settings, [&](std::string_view piece) { result.emplace_back(piece); });
    return result;
}

TEST(SplitText, CutsAtLineBreaksAndDelimiters) {
    // 0x81 0x42 is the ideographic full stop; in 0x81 0x81 0x42 its first byte
    // is the second one of another character.
    Table<std::string, int, int, std::vector<std::string>, std::vector<std::string>> const cases{
        {"", 0, 0, {}, {}},
        {"", 1, 0, {"x"}, {}},
        {"ab\ncd", 0, 0, {}, {"ab\ncd"}},
        {"ab\ncd", 1, 0, {}, {"ab\n", "cd"}},
        {"ab\r\ncd\r\n", 1, 0, {}, {"ab\r\n", "cd\r\n"}},
        {"ab\r\ncd\r\n", 1, 1, {}, {"ab", "cd"}},
        {"\n\nab", 1, 1, {}, {"ab"}},
        {"\n\nab", 1, 0, {}, {"\n", "\n", "ab"}},
        {"a\rb\n\rc", 1, 1, {}, {"a", "b", "c"}},
        {"\x83\x0A", 1, 0, {}, {"\x83\x0A"}},
        {"A\x81\x42z", 0, 0, {"\x81\x42"}, {"A\x81\x42", "z"}},
        {"\x81\x81\x42", 0, 0, {"\x81\x42"}, {"\x81\x81\x42"}},
        {"a..b.", 0, 0, {".", ".."}, {"a.", ".", "b."}},
        {"a..b.", 0, 0, {"..", "."}, {"a..", "b."}},
        {"a.b\nc.", 1, 1, {"."}, {"a.", "b", "c."}},
        {"ab.", 0, 0, {"", ".x", "."}, {"ab."}},
        {"a\0b.c"s, 0, 0, {"."}, {"a\0b."s, "c"}},
    };
    for (auto const& [text, delimitCrlf, deleteCrlf, delimiters, expected] : cases)
        EXPECT_EQ(pieces(text, delimitCrlf, deleteCrlf, delimiters), expected) << testing::PrintToString(text);
}

TEST(SplitText, StepsByCharactersToLineBreaks) {
    std::mt19937 engine(1);
    constexpr std::string_view kBytes("\x81\xE0\x40\n\r\0a", 7);
    for (unsigned round = 0; round < 5000; ++round) {
        std::string text;
        for (auto n = 1 + engine() % 12; n > 0; --n) text += kBytes[engine() % kBytes.size()];
        std::vector<std::string> expected;
        std::size_t start = 0;
        for (std::size_t pos; (pos = findMark(text, "\r\n", start)) != npos; start = pos) {
            pos += text.compare(pos, 2, "\r\n") == 0 ? 2 : 1;
            expected.push_back(text.substr(start, pos - start));
        }
        if (start < text.size()) expected.push_back(text.substr(start));
        ASSERT_EQ(pieces(text, 1, 0, {}), expected) << testing::PrintToString(text);
    }
}

TEST(DeleteLineBreaks, StepsByCharacters) {
    // Each text, what stays, and where its bytes begin and end in the text.
    Table<std::string, std::string, std::vector<std::size_t>, std::vector<std::size_t>> const cases{
        {"a\r\nb\nc\r", "abc", {0, 3, 5}, {1, 4, 6}}, {"\n\nab\n", "ab", {2, 3}, {3, 4}},
        {"\x83\x0A\x0A", "\x83\x0A", {0, 1}, {1, 2}}, {"\x83", "\x83", {0}, {1}},
        {"\x83\0\n"s, "\x83\0"s, {0, 1}, {1, 2}},     {"\n", "", {}, {}},
    };
    for (auto const& [text, expected, begins, ends] : cases) {
        TextOrigins origins;
        EXPECT_EQ(deleteLineBreaks(text, origins), expected);
        for (std::size_t i = 0; i < expected.size(); ++i) {
            EXPECT_EQ(origins.begin(i), begins[i]) << testing::PrintToString(text) << i;
            EXPECT_EQ(origins.end(i + 1), ends[i]) << testing::PrintToString(text) << i;
        }
    }
}

}  // namespace
}  // namespace TAVO::test
