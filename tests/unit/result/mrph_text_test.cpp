#include "support/record_builder.hpp"

#include <gtest/gtest.h>

#include <functional>

namespace TAVO {
namespace {

using test::RecordBuilder;
using test::thrown;
using test::wide;

TEST(MrphText, BufferFormsCutAtBytes) {
    RecordBuilder records;
    Mrph const m = records.mrph(wide("ABCDE") + ",Noun");  // ten bytes
    std::string const form = wide("ABCDE");
    struct Case {
        int size, start;
        std::string expected;
    };
    // A size of 4 splits the second character; that is the required cut.
    Case const cases[] = {{4, 0, form.substr(0, 3)},
                          {11, 0, form},
                          {10, 0, form.substr(0, 9)},
                          {100, 3, form.substr(3)},
                          {1, 0, ""},
                          {100, 10, ""},
                          {100, 11, ""},
                          {3, 9, form.substr(9)}};
    for (Case const& c : cases) {
        SCOPED_TRACE("size " + std::to_string(c.size) + " start " + std::to_string(c.start));
        using Fill = std::function<unsigned int(char*, int, int)>;
        Fill const fills[] = {
            [&](char* buf, int size, int start) { return m.getForm(buf, size, start, true); },
            [&](char* buf, int size, int start) { return m.getForm(buf, size, start, false); },
            [&](char* buf, int size, int start) { return m.getStdForm(buf, size, start, true); },
            [&](char* buf, int size, int start) { return m.getRawForm(buf, size, start); },
        };
        for (Fill const& fill : fills) {
            std::string buf(101, '#');
            EXPECT_EQ(fill(buf.data(), c.size, c.start), c.expected.size());
            EXPECT_EQ(std::string(buf.c_str()), c.expected);
            EXPECT_EQ(buf.find_first_not_of('#', c.expected.size() + 1), std::string::npos);
        }
    }
}

TEST(MrphText, BufferFormsRefuseBadArguments) {
    RecordBuilder records;
    Mrph const m = records.mrph("abc,Noun,1," + wide("R") + ",s");
    struct Case {
        std::string name;
        bool hasStart;
        std::function<unsigned int(char*, int, int)> fill;
    };
    Case const cases[] = {
        {"getForm", true, [&](char* b, int size, int start) { return m.getForm(b, size, start, true); }},
        {"getForm", true, [&](char* b, int size, int start) { return m.getForm(b, size, start, false); }},
        {"getRawForm", true, [&](char* b, int size, int start) { return m.getRawForm(b, size, start); }},
        {"getStdForm", true, [&](char* b, int size, int start) { return m.getStdForm(b, size, start, true); }},
        {"getRead", false, [&](char* b, int size, int) { return m.getRead(b, size, true); }},
        {"getPron", false, [&](char* b, int size, int) { return m.getPron(b, size, true); }},
        {"getReadPron", false, [&](char* b, int size, int) { return m.getReadPron(b, size, true); }},
        {"getLVRead", false, [&](char* b, int size, int) { return m.getLVRead(b, size, true); }},
    };
    for (Case const& c : cases) {
        std::string const error = "INVALID_ARGUMENT: Mrph::" + c.name + "()";
        char buf[8] = "#######";
        EXPECT_EQ(thrown<std::invalid_argument>([&] { c.fill(buf, -1, 0); }), error);
        EXPECT_EQ(thrown<std::invalid_argument>([&] { c.fill(nullptr, 8, 0); }), error);
        if (c.hasStart) {
            EXPECT_EQ(thrown<std::invalid_argument>([&] { c.fill(buf, 8, -1); }), error);
        }
        EXPECT_EQ(c.fill(buf, 0, 0), 0U) << "room for nothing";
        EXPECT_STREQ(buf, "#######");
        EXPECT_GT(c.fill(buf, 8, 0), 0U) << c.name;
    }
}

TEST(MrphText, FormMayHoldNul) {
    std::string const text("a\0b", 3);
    Mrph const m = MrphAccess::fromRecord(text.data(), 3, nullptr, nullptr);
    EXPECT_EQ(m.getForm(true), text);
    char buf[4];
    EXPECT_EQ(m.getForm(buf, 4, 0, true), 3U);
    EXPECT_EQ(std::string(buf, 3), text);
}

TEST(MrphText, ReadingsComeFromTheReadPronText) {
    RecordBuilder records;
    Mrph const m = records.mrph("x,Noun,1," + wide("A-B(C|D)E/FG"));
    EXPECT_EQ(m.getRead(false) + " " + m.getRead(true), wide("ABCE/FG ABCEFG"));
    EXPECT_EQ(m.getPron(false) + " " + m.getPron(true), wide("ABDE/FG ABDEFG"));
    EXPECT_EQ(m.getReadPron(false) + " " + m.getReadPron(true), wide("A-B(C|D)E/FG A-B(C|D)EFG"));
    EXPECT_EQ(m.getLVRead(false) + " " + m.getEndLVRead(true), wide("ABCE/FG ABCEFG"));
    EXPECT_EQ(m.getEndRead(true) + " " + m.getEndPron(false), wide("ABCEFG ABDE/FG"));
}

TEST(MrphText, OwnReadingsGoBeforeTheReadPronText) {
    RecordBuilder records;
    Mrph const m = records.mrph("x,Noun,1," + wide("A(B|C)"));
    MrphCover& cover = MrphAccess::confirmCover(m);
    cover.readPron = wide("D(E|F)/G");
    EXPECT_EQ(m.getRead(false), wide("DE/G"));
    EXPECT_EQ(m.getLVRead(true), wide("DEG"));
    cover.read = wide("H-I/J");
    cover.pron = wide("K-L/M");
    EXPECT_EQ(m.getRead(false), wide("HI/J"));
    EXPECT_EQ(m.getRead(true), wide("HIJ"));
    EXPECT_EQ(m.getPron(false), wide("KL/M"));
    EXPECT_EQ(m.getLVRead(true), wide("HIJ"));
    cover.lvRead = wide("N/O");
    EXPECT_EQ(m.getLVRead(false), wide("N/O"));
    EXPECT_EQ(m.getReadPron(false), wide("D(E|F)/G"));
}

TEST(MrphText, StandardFormDropsItsSeparators) {
    struct Case {
        std::string line, whole, plain;
    };
    Case const cases[] = {
        {"ab,Noun", "ab", "ab"},
        {"ab,Noun,1,,s-t/u", "st/u", "stu"},
        // 0x95 0x5C and 0x83 0x2F end in "\" and "/".
        {"ab,Noun,1,,\x95\\s\x83/", "\x95\\s\x83/", "\x95\\s\x83/"},
        {"a\\-b,Noun", "a-b", "a-b"},  // no standard form of its own: the form as it is
    };
    RecordBuilder records;
    for (Case const& c : cases) {
        Mrph const m = records.mrph(c.line);
        EXPECT_EQ(m.getStdForm(false), c.whole) << c.line;
        EXPECT_EQ(m.getStdForm(true), c.plain) << c.line;
        EXPECT_EQ(m.getEndStdForm(true), c.plain) << c.line;
        MrphAccess::confirmCover(m).group = "other";
        EXPECT_EQ(m.getStdForm(true), c.plain) << c.line << " under a cover without standard form";
    }
}

/// A morpheme on the given bytes of a sentence under each output convert mode.
class GivenText : public ::testing::Test {
protected:
    void addSentence(std::string_view given, bool dropLineBreaks) {
        Sentence sentence;
        sentence.given = sentence.text = given;
        if (dropLineBreaks) {
            sentence.ownedText = std::make_unique<std::string>(given);
            std::erase_if(*sentence.ownedText, [](char c) { return c == '\r' || c == '\n'; });
            sentence.text = *sentence.ownedText;
        }
        context.sentences.push_back(std::move(sentence));
    }
    std::string formInMode(int mode, std::string_view span) {
        context.settings.setMode(Mode::OutputConvert, mode);
        Mrph m = MrphAccess::fromRecord(span.data(), static_cast<unsigned int>(span.size()), nullptr, &context);
        MrphAccess::setForm(m, "analysed");
        EXPECT_EQ(m.format("%w", ""), m.getForm(true));
        return m.getForm(false);
    }

    AnalyzerContext context{1};
    std::string const text = "abcdef\r\ngh\nij";
};

TEST_F(GivenText, OnlyModeThreeGoesBackToIt) {
    addSentence(std::string_view(text).substr(0, 3), false);
    addSentence(std::string_view(text).substr(3, 3), false);
    std::string_view const span = context.sentences[1].text.substr(1, 2);
    for (int const mode : {0, 1, 2}) EXPECT_EQ(formInMode(mode, span), "analysed") << mode;
    EXPECT_EQ(formInMode(3, span), "ef");
    EXPECT_EQ(formInMode(3, "elsewhere"), "analysed");
    // A span over two sentences lies in neither.
    EXPECT_EQ(formInMode(3, std::string_view(text).substr(2, 2)), "analysed");
}

TEST_F(GivenText, BringsBackTheLineBreaksInsideASpan) {
    addSentence(std::string_view(text).substr(0, 3), true);
    addSentence(std::string_view(text).substr(3), true);
    struct Case {
        std::size_t begin, length;
        std::string expected;
    };
    std::string_view const analysed = context.sentences[1].text;
    ASSERT_EQ(analysed, "defghij");
    for (Case const& c :
         {Case{0, 3, "def"}, Case{2, 2, "f\r\ng"}, Case{3, 2, "gh"}, Case{5, 2, "ij"}, Case{0, 7, "def\r\ngh\nij"}})
        EXPECT_EQ(formInMode(3, analysed.substr(c.begin, c.length)), c.expected);
}

TEST_F(GivenText, IsNotGuessedWhereTheTextsDifferInMore) {
    addSentence(text, true);
    context.sentences[0].ownedText->at(4) = 'X';
    EXPECT_EQ(formInMode(3, context.sentences[0].text.substr(0, 3)), "abc");
    EXPECT_EQ(formInMode(3, context.sentences[0].text.substr(6, 2)), "analysed");
}

}  // namespace
}  // namespace TAVO
