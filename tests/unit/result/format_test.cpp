#include "result/format.hpp"

#include "support/result_world.hpp"
#include "support/testing.hpp"

#include <climits>

namespace TAVO::test {
namespace {

/// Both ways of formatting, which must agree.
std::string formatted(Mrph const& m, std::string const& format, std::string const& nullString) {
    std::string const direct = m.format(format.c_str(), nullString.c_str());
    std::string compiled = "before";
    static CompiledFormat kept;  // takes on one format after the other
    kept.set(format);
    kept.write(compiled, m, nullString);
    EXPECT_EQ(compiled, "before" + direct) << format;
    return direct;
}

TEST(Format, ScansMarksAndEscapes) {
    RecordBuilder records;
    Mrph const m = records.mrph("ab,Noun,7,,,,,,,,,,e,f");
    Table<std::string, std::string> const cases{
        {"", ""},
        {"%w costs %c, 100\\%", "ab costs 7, 100%"},
        {"<%w>", "<ab>"},
        {"%w%w", "abab"},
        {"%5w|", "ab   |"},
        {"%1w|", "ab|"},
        {"%2w|", "ab|"},
        {"%0w|", "ab|"},
        {"%007w|", "ab     |"},
        {"%5w%w|", "ab   ab|"},  // a width is for one directive
        {"\\%\\\\", "%\\"},
        {"\\a\\b\\f\\n\\r\\t\\v", "\a\b\f\n\r\t\v"},
        {"a\\qb\\\"\\0", "ab"},
        {"a\\", "a"},
        {"%%", "NUL"},
        {"%%w", "NULw"},
        {"a%", "aNUL"},
        {"a%12", "aNUL         "},
        {"%5z|", "NUL  |"},
        {"%g|", "NUL|"},
        {"%D", "e,f"},
        {"%D0%D1", "ef"},
        {"%D2|", "NUL|"},
        {"%D12", "f2"},  // one digit is the field
        {"%4D1|", "f   |"},
        // Second bytes 0x5C, 0x25, 0x7C and 0x2D are neither mark nor width.
        {"\x95\\n\x83%w\x83|\x83-", "\x95\\n\x83%w\x83|\x83-"},
        {"%\x83\x41w", "w"},
        {"%12\x83\x41w", "w"},
        {"\\\x83\x41n", "n"},
        {"\\\x95\\n", "n"},
        {"%D\x83\x41", "e,f\x83\x41"},
        // A lead byte at the very end is a character of one byte.
        {"a\x83", "a\x83"},
        {"%\x83", "NUL"},
    };
    for (auto const& [format, expected] : cases) EXPECT_EQ(formatted(m, format, "NUL"), expected) << format;
    EXPECT_EQ(formatted(m, "[%g%3g]", ""), "[   ]");
}

TEST(Format, AWidthBeyondAnIntIsTheLargest) {
    Table<char const*, int> const cases{{"2147483646", INT_MAX - 1},
                                        {"2147483647", INT_MAX},
                                        {"2147483648", INT_MAX},
                                        {"9999999999999999999999", INT_MAX}};
    for (auto const& [digits, expected] : cases) {
        std::size_t pos = 0;
        EXPECT_EQ(format_detail::scanWidth(digits, pos), expected);
        EXPECT_EQ(pos, std::string_view(digits).size());
    }
}

TEST(Format, EveryDirectiveOfAWholeMorpheme) {
    ResultWorld world(worldOfNames());
    RecordBuilder records;
    Mrph const m = records.mrph(
        "a-b,Suffix\\-Kind-Noun-Verb:Stem,7," + wide("A(B|C)/D") + ",s/t,word,group,g,1:2,,3,pro,x,y", &world.context);
    MrphCover& cover = MrphAccess::confirmCover(m);
    cover.lvRead = wide("E/F");
    cover.additionalInfo = "add";
    cover.grammarType = "gram";
    cover.prosodicType = "type";
    Table<char, std::string, std::string> const cases{
        {'w', "ab", "b"},
        {'W', "ab", "b"},
        {'h', "Suffix-Kind", "Verb:Stem"},
        {'H', "Suffix", "Verb"},
        {'k', wide("ABD"), wide("D")},
        {'K', wide("AB/D"), wide("D")},
        {'p', wide("ACD"), wide("D")},
        {'P', wide("AC/D"), wide("D")},
        {'s', "st", "t"},
        {'S', "s/t", "t"},
        {'l', wide("EF"), wide("F")},
        {'L', wide("E/F"), wide("F")},
        {'e', "ab", "b"},
        {'E', "ab", "b"},
        {'c', "7", "7"},
        {'C', "[1,2][][3]", "[1,2][][3]"},
        {'D', "x,y", "x,y"},
        {'g', "g", "g"},
        {'a', "add", "add"},
        {'b', "gram", "gram"},
        {'A', "pro", "pro"},
        {'B', "type", "type"},
        {'x', "word", "word"},
        {'X', "group", "group"},
    };
    std::string known;
    for (auto const& [letter, whole, part1] : cases) {
        std::string const format = std::string("%") + letter;
        EXPECT_EQ(formatted(m, format, "NUL"), whole) << format;
        EXPECT_EQ(m.format(1, format.c_str(), "NUL"), part1) << format;
        EXPECT_EQ(m.format(1, ("%9" + format.substr(1) + "|").c_str(), "NUL"),
                  part1 + std::string(part1.size() < 9 ? 9 - part1.size() : 0, ' ') + "|");
        known += letter;
    }
    for (int letter = '!'; letter < 0x7F; ++letter) {
        auto const c = static_cast<char>(letter);
        if (known.find(c) != std::string::npos || (c >= '0' && c <= '9')) continue;
        EXPECT_EQ(formatted(m, std::string("%") + c, "NUL"), "NUL") << c;
        EXPECT_EQ(m.format(0, (std::string("%") + c).c_str(), "NUL"), "NUL") << c;
    }
}

TEST(Format, DefaultFormatPadsInBytes) {
    ResultWorld world(worldOfNames());
    RecordBuilder records;
    Mrph const m = records.mrph(wide("AB,") + "Noun,7," + wide("CD"), &world.context);
    EXPECT_EQ(formatted(m, world.context.settings.outputFormat, ""),
              wide("AB") + "       " + "Noun" + std::string(16, ' ') + " " + wide("CD") + "\n");
}

TEST(Format, MajorClassStepsByCharacters) {
    SmallWorld small;
    small.names({"Begin", "End", "Undef", "\x83:\x83/\x83-x:y", "Plain", "A/B"}).line("x,Plain");
    ResultWorld world(small);
    Mrph const m = MrphAccess::fromRecord("x", 1, nullptr, &world.context);
    MrphAccess::confirmCover(m).pid = 4;
    EXPECT_EQ(formatted(m, "%H", ""), "\x83:\x83/\x83-x");
    MrphAccess::confirmCover(m).pid = 5;
    EXPECT_EQ(formatted(m, "%H", ""), "Plain");
    MrphAccess::confirmCover(m).pid = 6;
    EXPECT_EQ(formatted(m, "%H", ""), "A");
}

TEST(Format, AValueWithNulIsNotPadded) {
    std::string const text("a\0b", 3);
    Mrph const m = MrphAccess::fromRecord(text.data(), 3, nullptr, nullptr);
    EXPECT_EQ(formatted(m, "%9w|%9c|", ""), text + "|255      |");
}

TEST(Format, PartsOfJoinedMorphemesUseTheirOwnValues) {
    RecordBuilder records;
    Mrph m = records.mrph("a-b,Noun,1,,,,,one,,,,p1,x");
    MrphAccess::append(m, records.mrph("c,Noun,2,,,,,two,,,,p2,y"), 0);
    EXPECT_EQ(m.format(0, "%w%c%g%A%D", ""), "a1onep1x");
    EXPECT_EQ(m.format(2, "%w%c%g%A%D0", ""), "c2twop2y");
}

TEST(Format, OutputRepeatsTheFormatPerPart) {
    RecordBuilder records;
    Mrph const compound = records.mrph("a-b-cd,Noun");
    Mrph const simple = records.mrph("ab,Noun");
    auto const output = [](Mrph const& m, bool byPart) {
        std::ostringstream os;
        EXPECT_EQ(&m.output(os, "<%3w>", "", byPart), &os);
        return os.str();
    };
    EXPECT_EQ(output(compound, true), "<a  ><b  ><cd >");
    EXPECT_EQ(output(compound, false), "<abcd>");
    EXPECT_EQ(output(simple, true), "<ab >");
    std::ostringstream os;
    EXPECT_EQ(&compound.output(os, 2, "%w", ""), &os);
    EXPECT_EQ(os.str(), "cd");
}

TEST(Format, RefusesBadArguments) {
    RecordBuilder records;
    Mrph const m = records.mrph("a-b,Noun");
    std::ostringstream os;
    std::string const null = "INVALID_ARGUMENT: Mrph::format()";
    using Invalid = std::invalid_argument;
    EXPECT_EQ(thrown<Invalid>([&] { m.format(nullptr, ""); }), null);
    EXPECT_EQ(thrown<Invalid>([&] { m.format("%w", nullptr); }), null);
    EXPECT_EQ(thrown<Invalid>([&] { m.format(0, nullptr, ""); }), null);
    EXPECT_EQ(thrown<Invalid>([&] { m.format(0, "%w", nullptr); }), null);
    EXPECT_EQ(thrown<Invalid>([&] { m.output(os, nullptr, "", false); }), null);
    EXPECT_EQ(thrown<Invalid>([&] { m.output(os, 1, nullptr, ""); }), null);
    for (int const part : {-1, 2}) {
        EXPECT_EQ(thrown<std::range_error>([&] { m.output(os, part, "%w", ""); }), "RANGE_ERROR: Mrph::output()");
        EXPECT_EQ(thrown<std::range_error>([&] { m.format(part, "%w", ""); }), "RANGE_ERROR: Mrph::format()");
    }
    EXPECT_EQ(os.str(), "");
}

}  // namespace
}  // namespace TAVO::test
