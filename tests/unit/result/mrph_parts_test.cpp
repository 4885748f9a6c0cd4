#include "support/record_builder.hpp"

#include <gtest/gtest.h>

#include <functional>

namespace TAVO {
namespace {

using test::RecordBuilder;
using test::thrown;
using test::wide;
using Texts = std::vector<std::string>;

template <class Value>
std::vector<Value> parts(Mrph const& m, void (Mrph::*get)(std::vector<Value>&) const) {
    std::vector<Value> values;
    (m.*get)(values);
    return values;
}

Texts forms(Mrph const& m) { return parts<std::string>(m, &Mrph::getPartForm); }
Texts stdForms(Mrph const& m) { return parts<std::string>(m, &Mrph::getPartStdForm); }
Texts reads(Mrph const& m) { return parts<std::string>(m, &Mrph::getPartRead); }
Texts prons(Mrph const& m) { return parts<std::string>(m, &Mrph::getPartPron); }
Texts readProns(Mrph const& m) { return parts<std::string>(m, &Mrph::getPartReadPron); }
std::vector<unsigned short> pids(Mrph const& m) { return parts<unsigned short>(m, &Mrph::getPartPid); }

Texts wideAll(Texts texts) {
    for (std::string& text : texts) text = wide(text);
    return texts;
}

TEST(MrphParts, EveryAccessorChecksItsIndex) {
    RecordBuilder records;
    Mrph const simple = records.mrph("ab,Noun,1,r,s,w,g,h,1,2,3,p,e");
    Mrph const compound = records.mrph("a-b,Noun,1,r/r,s/s,w,g,h,1,2,3,p,e");
    std::vector<unsigned short> list;
    std::vector<char const*> fields;
    unsigned char count = 0;
    struct Case {
        char const* errorName;
        std::function<void(Mrph const&, int)> ask;
    };
    Case const cases[] = {
        {"getPartLength", [](Mrph const& m, int i) { m.getPartLength(i); }},
        {"getPartFormLength", [](Mrph const& m, int i) { m.getPartFormLength(i); }},
        {"getPartFormNoConvert", [](Mrph const& m, int i) { m.getPartForm(i); }},
        {"getPartStdForm", [](Mrph const& m, int i) { m.getPartStdForm(i); }},
        {"getPartRead", [](Mrph const& m, int i) { m.getPartRead(i); }},
        {"getPartPron", [](Mrph const& m, int i) { m.getPartPron(i); }},
        {"getPartReadPron", [](Mrph const& m, int i) { m.getPartReadPron(i); }},
        {"getPartLVRead", [](Mrph const& m, int i) { m.getPartLVRead(i); }},
        {"getPartEndForm", [](Mrph const& m, int i) { m.getPartEndForm(i); }},
        {"getPartEndStdForm", [](Mrph const& m, int i) { m.getPartEndStdForm(i); }},
        {"getPartEndRead", [](Mrph const& m, int i) { m.getPartEndRead(i); }},
        {"getPartEndPron", [](Mrph const& m, int i) { m.getPartEndPron(i); }},
        {"getPartEndLVRead", [](Mrph const& m, int i) { m.getPartEndLVRead(i); }},
        {"getPartPid", [](Mrph const& m, int i) { m.getPartPid(i); }},
        {"getPartOfSP", [](Mrph const& m, int i) { m.getPartOfSP(i); }},
        {"getPartCost", [](Mrph const& m, int i) { m.getPartCost(i); }},
        {"getPartWordCooc", [](Mrph const& m, int i) { m.getPartWordCooc(i); }},
        {"getPartGroupCooc", [](Mrph const& m, int i) { m.getPartGroupCooc(i); }},
        {"getPartGroup", [](Mrph const& m, int i) { m.getPartGroup(i); }},
        {"getPartCategory", [&](Mrph const& m, int i) { m.getPartCategory(i, list, list, list); }},
        {"getPartCategoryCount", [&](Mrph const& m, int i) { m.getPartCategoryCount(i, count, count, count); }},
        {"getPartProsodicInfo", [](Mrph const& m, int i) { m.getPartProsodicInfo(i); }},
        {"getPartAdditionalInfo", [](Mrph const& m, int i) { m.getPartAdditionalInfo(i); }},
        {"getPartProsodicType", [](Mrph const& m, int i) { m.getPartProsodicType(i); }},
        {"getPartGrammarType", [](Mrph const& m, int i) { m.getPartGrammarType(i); }},
        {"getPartExtCount", [](Mrph const& m, int i) { m.getPartExtCount(i); }},
        {"getPartExt", [](Mrph const& m, int i) { m.getPartExt(i, 0); }},
        {"getPartExt", [&](Mrph const& m, int i) { m.getPartExt(i, fields); }},
        {"format", [](Mrph const& m, int i) { m.format(i, "%w", ""); }},
    };
    for (Case const& c : cases) {
        std::string const error = "RANGE_ERROR: Mrph::" + std::string(c.errorName) + "()";
        for (Mrph const* m : {&simple, &compound}) {
            for (int const index : {-1, m->getPartCount()})
                EXPECT_EQ(thrown<std::range_error>([&] { c.ask(*m, index); }), error);
            for (int index = 0; index < m->getPartCount(); ++index) EXPECT_NO_THROW(c.ask(*m, index)) << error;
        }
    }
    for (int const field : {-1, 1}) {
        EXPECT_EQ(thrown<std::range_error>([&] { compound.getPartExt(1, field); }), "RANGE_ERROR: Mrph::getPartExt()");
        EXPECT_EQ(thrown<std::range_error>([&] { compound.getExt(field); }), "RANGE_ERROR: Mrph::getExt()");
    }
}

TEST(MrphParts, FormsFollowThePartFormAndItsEscapes) {
    struct Case {
        std::string line;
        Texts expected;
    };
    Case const cases[] = {
        {"ab,Noun", {"ab"}},
        {"ab-c/def,Noun", {"ab", "c", "def"}},
        {"a\\-b-c\\/,Noun", {"a-b", "c/"}},
        {"\\\\-\\,,Noun", {"\\", ","}},
        // Second bytes 0x5C, 0x2D and 0x2F are neither escape nor separator.
        {"\x95\\a-b,Noun", {"\x95\\a", "b"}},
        {"\x83-a-b\x83/c,Noun", {"\x83-a", "b\x83/c"}},
        {"\\\x83-a-b,Noun", {"\x83-a", "b"}},
    };
    RecordBuilder records;
    for (Case const& c : cases) {
        Mrph const m = records.mrph(c.line);
        EXPECT_EQ(forms(m), c.expected) << c.line;
        for (int i = 0; i < m.getPartCount(); ++i) {
            auto const length = static_cast<int>(c.expected[static_cast<std::size_t>(i)].size());
            EXPECT_EQ(m.getPartLength(i), length) << c.line;
            EXPECT_EQ(m.getPartFormLength(i), length) << c.line;
        }
    }
}

TEST(MrphParts, ReadingsAreCutAtTheirSeparators) {
    struct Case {
        std::string form, readPron;
        Texts readProns, reads, prons;
    };
    Case const cases[] = {
        {"ab", "A/B", {"A/B"}, {"AB"}, {"AB"}},  // one part takes it all
        {"a-b", "AB(C|D)E/FG", {"AB(C|D)E", "FG"}, {"ABCE", "FG"}, {"ABDE", "FG"}},
        {"a-b", "/A", {"", "A"}, {"", "A"}, {"", "A"}},
        // "-" separates where only that gives the number of parts.
        {"a-b", "A-B", {"A", "B"}, {"A", "B"}, {"A", "B"}},
        {"a-b-c", "A-B/C", {"A", "B", "C"}, {"A", "B", "C"}, {"A", "B", "C"}},
        // Second bytes 0x2F, 0x28, 0x7C and 0x29.
        {"a-b",
         "\x83/\x83(/\x83|\x83)",
         {"\x83/\x83(", "\x83|\x83)"},
         {"\x83/\x83(", "\x83|\x83)"},
         {"\x83/\x83(", "\x83|\x83)"}},
    };
    RecordBuilder records;
    for (Case const& c : cases) {
        Mrph const m = records.mrph(c.form + ",Noun,1," + wide(c.readPron));
        EXPECT_EQ(readProns(m), wideAll(c.readProns)) << c.readPron;
        EXPECT_EQ(reads(m), wideAll(c.reads)) << c.readPron;
        EXPECT_EQ(prons(m), wideAll(c.prons)) << c.readPron;
        EXPECT_EQ(m.getPartLVRead(0), wide(c.reads.front()));
        EXPECT_EQ(m.getPartEndRead(0), wide(c.reads.front()));
        EXPECT_EQ(m.getPartEndPron(0), wide(c.prons.front()));
        EXPECT_EQ(m.getPartEndLVRead(0), wide(c.reads.front()));
    }
}

TEST(MrphParts, AGroupMayHoldTheSeparators) {
    struct Case {
        std::string form, readPron;
        Texts readProns;
    };
    Case const cases[] = {
        {"a-b", "(A/B|C/D)", {"(A|C)", "(B|D)"}}, {"a-b-c", "A(B/C|D/E)F/G", {"A(B|D)", "(C|E)F", "G"}},
        {"a-b", "(A/B|C)", {"(A|C)", "(B|)"}},    {"a-b", "(A-B|CD)", {"(A|CD)", "(B|)"}},
        {"a-b", "(A|B/C", {"(A|B", "C"}},  // no group: its ")" is missing
        {"a-b", "A/B/C", {"A", "B/C"}},    // too many: the last part takes the rest
        {"a-b-c", "A/B", {"A", "B", ""}},  // too few
    };
    RecordBuilder records;
    for (Case const& c : cases) {
        Mrph const m = records.mrph(c.form + ",Noun");
        MrphAccess::confirmCover(m).readPron = wide(c.readPron);
        EXPECT_EQ(readProns(m), wideAll(c.readProns)) << c.readPron;
    }
}

TEST(MrphParts, OwnReadingsAreCutTheSameWay) {
    RecordBuilder records;
    Mrph const m = records.mrph("a-b,Noun,1,x/y");
    MrphCover& cover = MrphAccess::confirmCover(m);
    cover.read = wide("A-B/C");
    cover.pron = wide("D/E");
    cover.lvRead = wide("F/G");
    EXPECT_EQ(reads(m), wideAll({"AB", "C"}));
    EXPECT_EQ(prons(m), wideAll({"D", "E"}));
    EXPECT_EQ(m.getPartLVRead(1), wide("G"));
}

TEST(MrphParts, StandardFormsFallBackToTheForms) {
    struct Case {
        std::string line;
        Texts expected;
    };
    Case const cases[] = {
        {"a-b,Noun", {"a", "b"}},        {"a-b,Noun,1,,s/t", {"s", "t"}},
        {"a-b,Noun,1,,s-t", {"s", "t"}}, {"a-b-c,Noun,1,,s/t", {"a", "b", "c"}},  // cannot be spread over three parts
        {"ab,Noun,1,,s-/t", {"st"}},
    };
    RecordBuilder records;
    for (Case const& c : cases) EXPECT_EQ(stdForms(records.mrph(c.line)), c.expected) << c.line;
}

TEST(MrphParts, IdsComeFromThePartList) {
    RecordBuilder records;
    EXPECT_EQ(pids(records.mrph("a-b,Noun")), (std::vector<unsigned short>{4, 4}));
    Mrph const m = records.mrph("a-b,Noun-Verb:Stem-Undef,9");
    EXPECT_EQ(pids(m), (std::vector<unsigned short>{5, 3}));
    EXPECT_EQ(m.getPartCost(1), 9);
    // Another id for the whole word says nothing about its parts.
    MrphAccess::confirmCover(m).pid = 6;
    EXPECT_EQ(m.getPid(), 6);
    EXPECT_EQ(pids(m), (std::vector<unsigned short>{5, 3}));
    Mrph const simple = records.mrph("ab,Noun");
    MrphAccess::confirmCover(simple).pid = 6;
    EXPECT_EQ(simple.getPartPid(0), 6);
}

TEST(MrphParts, OfJoinedMorphemesAreAnsweredByThem) {
    RecordBuilder records;
    Mrph joined = records.mrph("a-b,Noun-Noun-Undef,1," + wide("A/B") + ",s/t,wordA,,groupA");
    Mrph const b = records.mrph("cd,Verb:Stem,7," + wide("C(D|E)") + ",,wordB,,groupB");
    MrphAccess::append(joined, b, 6);
    ASSERT_EQ(joined.getPartCount(), 3);
    int localIndex = -1;
    Mrph const& owner = MrphAccess::getPartMrph(joined, 2, localIndex);
    EXPECT_EQ(owner.getForm(true), "cd");
    EXPECT_EQ(localIndex, 0);
    EXPECT_EQ(MrphAccess::getPartMrph(joined, 1, localIndex).getPartCount(), 2);
    EXPECT_EQ(localIndex, 1);
    EXPECT_EQ(thrown<std::logic_error>([&] { MrphAccess::getPartMrph(joined, 3, localIndex); }),
              "LOGIC_ERROR: Mrph::getPartMrph()");
    EXPECT_EQ(forms(joined), (Texts{"a", "b", "cd"}));
    EXPECT_EQ(stdForms(joined), (Texts{"s", "t", "cd"}));
    EXPECT_EQ(reads(joined), wideAll({"A", "B", "CD"}));
    EXPECT_EQ(prons(joined), wideAll({"A", "B", "CE"}));
    EXPECT_EQ(pids(joined), (std::vector<unsigned short>{4, 3, 5}));
    EXPECT_STREQ(joined.getPartGroup(2), "groupB");
    EXPECT_STREQ(joined.getPartWordCooc(1), "wordA");
    EXPECT_EQ(joined.getPartCost(2), 7);
    EXPECT_EQ(thrown<std::range_error>([&] { joined.getPartCost(3); }), "RANGE_ERROR: Mrph::getPartCost()");

    // A joined morpheme inside another one.
    Mrph outer = records.mrph("e,Noun,2");
    MrphAccess::append(outer, joined, 0);
    EXPECT_EQ(forms(outer), (Texts{"e", "a", "b", "cd"}));
    EXPECT_EQ(pids(outer), (std::vector<unsigned short>{4, 4, 3, 5}));
}

}  // namespace
}  // namespace TAVO
