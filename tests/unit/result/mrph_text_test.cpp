#include "split/sentence_splitter.hpp"
#include "support/record_builder.hpp"
#include "support/testing.hpp"

namespace TAVO::test {
namespace {

TEST(MrphText, BufferFormsCutAtBytes) {
    std::string const form = wide("AB") + '\0' + wide("CD");  // nine bytes, a NUL among them
    Mrph const m = MrphAccess::fromRecord(form.data(), 9, nullptr, nullptr);
    EXPECT_EQ(m.getForm(true), form);
    // A size of 4 splits the second character; that is the required cut.
    Table<int, int, std::string> const cases{{4, 0, form.substr(0, 3)},
                                             {10, 0, form},
                                             {9, 0, form.substr(0, 8)},
                                             {100, 3, form.substr(3)},
                                             {1, 0, ""},
                                             {100, 9, ""},
                                             {100, 10, ""},
                                             {3, 8, form.substr(8)}};
    for (auto const& [most, from, expected] : cases) {
        SCOPED_TRACE("size " + std::to_string(most) + " start " + std::to_string(from));
        using Fill = std::function<unsigned int(char*, int, int)>;
        Fill const fills[] = {
            [&](char* buf, int size, int start) { return m.getForm(buf, size, start, true); },
            [&](char* buf, int size, int start) { return m.getForm(buf, size, start, false); },
            [&](char* buf, int size, int start) { return m.getStdForm(buf, size, start, true); },
            [&](char* buf, int size, int start) { return m.getRawForm(buf, size, start); },
        };
        for (Fill const& fill : fills) {
            std::string buf(101, '#');
            EXPECT_EQ(fill(buf.data(), most, from), expected.size());
            EXPECT_EQ(buf.substr(0, expected.size() + 1), expected + '\0');
            EXPECT_EQ(buf.find_first_not_of('#', expected.size() + 1), std::string::npos);
        }
    }
}

TEST(MrphText, BufferFormsRefuseBadArguments) {
    RecordBuilder records;
    Mrph const m = records.mrph("abc,Noun,1," + wide("R") + ",s");
    using Fill = std::function<unsigned int(char*, int, int)>;
    auto const expectRefusals = [](std::string const& name, bool hasStart, Fill const& fill) {
        std::string const error = "INVALID_ARGUMENT: Mrph::" + name + "()";
        char buf[8] = "#######";
        EXPECT_EQ(thrown<std::invalid_argument>([&] { fill(buf, -1, 0); }), error);
        EXPECT_EQ(thrown<std::invalid_argument>([&] { fill(nullptr, 8, 0); }), error);
        EXPECT_EQ(thrown<std::invalid_argument>([&] { fill(buf, 8, -1); }), hasStart ? error : "nothing thrown");
        buf[0] = '#';
        EXPECT_EQ(fill(buf, 0, 0), 0U) << "room for nothing";
        EXPECT_EQ(buf[0], '#');
        EXPECT_GT(fill(buf, 8, 0), 0U) << name;
    };
    for (bool const compact : {true, false}) {
        expectRefusals("getForm", true,
                       [&](char* b, int size, int start) { return m.getForm(b, size, start, compact); });
        expectRefusals("getStdForm", true,
                       [&](char* b, int size, int start) { return m.getStdForm(b, size, start, compact); });
        expectRefusals("getRead", false, [&](char* b, int size, int) { return m.getRead(b, size, compact); });
        expectRefusals("getPron", false, [&](char* b, int size, int) { return m.getPron(b, size, compact); });
        expectRefusals("getReadPron", false, [&](char* b, int size, int) { return m.getReadPron(b, size, compact); });
        expectRefusals("getLVRead", false, [&](char* b, int size, int) { return m.getLVRead(b, size, compact); });
    }
    expectRefusals("getRawForm", true, [&](char* b, int size, int start) { return m.getRawForm(b, size, start); });
}

TEST(MrphText, OwnReadingsGoBeforeTheReadPronText) {
    RecordBuilder records;
    Mrph const m = records.mrph("x,Noun,1," + wide("A(B|C)"));
    MrphCover& cover = MrphAccess::confirmCover(m);
    cover.readPron = wide("D-E(F|G)/H");
    EXPECT_EQ(m.format("%K %l %P", ""), wide("DEF/H DEFH DEG/H"));
    EXPECT_EQ(m.getReadPron(true), wide("D-E(F|G)H"));
    cover.read = wide("H-I/J");
    cover.pron = wide("K-L/M");
    EXPECT_EQ(m.format("%K %k %P %l", ""), wide("HI/J HIJ KL/M HIJ"));
    cover.lvRead = wide("N/O");
    EXPECT_EQ(m.getLVRead(false), wide("N/O"));
    EXPECT_EQ(m.getReadPron(false), wide("D-E(F|G)/H"));
}

TEST(MrphText, StandardFormDropsItsSeparators) {
    Table<std::string, std::string, std::string> const cases{
        {"ab,Noun", "ab", "ab"},
        {"ab,Noun,1,,s-t/u", "st/u", "stu"},
        // 0x95 0x5C and 0x83 0x2F end in "\" and "/".
        {"ab,Noun,1,,\x95\\s\x83/", "\x95\\s\x83/", "\x95\\s\x83/"},
        {"a\\-b,Noun", "a-b", "a-b"},  // no standard form of its own: the form as it is
    };
    RecordBuilder records;
    for (auto const& [line, whole, plain] : cases) {
        Mrph const m = records.mrph(line);
        EXPECT_EQ(m.getStdForm(false), whole) << line;
        EXPECT_EQ(m.getStdForm(true), plain) << line;
        EXPECT_EQ(m.getEndStdForm(true), plain) << line;
        MrphAccess::confirmCover(m).group = "other";
        EXPECT_EQ(m.getStdForm(true), plain) << line << " under a cover without standard form";
    }
}

/// Forms under each output convert mode, of morphemes whose form is not that of the text.
TEST(GivenText, OnlyModeThreeGoesBackToIt) {
    std::string const text = "abcdef\r\ngh\nij";
    AnalyzerContext context{1};
    context.input = text;
    Sentence& sentence = context.sentences.emplace_back();
    sentence.given = std::string_view(text).substr(3);
    sentence.ownedText = std::make_unique<OwnedText>();
    sentence.text = sentence.ownedText->text = deleteLineBreaks(sentence.given, sentence.ownedText->origins);
    ASSERT_EQ(sentence.text, "defghij");
    auto const formInMode = [&](int mode, std::string_view span) {
        context.settings.setMode(Mode::OutputConvert, mode);
        Mrph m = MrphAccess::fromRecord(span.data(), static_cast<unsigned int>(span.size()), nullptr, &context);
        MrphAccess::setForm(m, "analysed");
        EXPECT_EQ(m.format("%w", ""), m.getForm(true));
        return m.getForm(false);
    };
    Table<std::string_view, std::string> const cases{
        {sentence.text.substr(0, 3), "def"},     {sentence.text.substr(2, 2), "f\r\ng"},
        {sentence.text.substr(3, 2), "gh"},      {sentence.text.substr(5, 2), "ij"},
        {sentence.text, "def\r\ngh\nij"},        {std::string_view(text).substr(1, 2), "bc"},
        {"no piece of a given text", "analysed"}};
    for (auto const& [span, expected] : cases) {
        EXPECT_EQ(formInMode(3, span), expected);
        for (int const mode : {0, 1, 2}) EXPECT_EQ(formInMode(mode, span), "analysed") << mode;
    }
}

}  // namespace
}  // namespace TAVO::test
