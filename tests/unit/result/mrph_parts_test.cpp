#include "support/record_builder.hpp"
#include "support/testing.hpp"

namespace TAVO::test {
namespace {

/// What an accessor of all parts answers, ";" between the parts.
template <class Value>
std::string parts(Mrph const& m, void (Mrph::*get)(std::vector<Value>&) const) {
    std::vector<Value> values;
    (m.*get)(values);
    std::ostringstream text;
    for (std::size_t i = 0; i < values.size(); ++i) text << (i == 0 ? "" : ";") << values[i];
    return text.str();
}
std::string forms(Mrph const& m) { return parts<std::string>(m, &Mrph::getPartForm); }
std::string stdForms(Mrph const& m) { return parts<std::string>(m, &Mrph::getPartStdForm); }
std::string reads(Mrph const& m) { return parts<std::string>(m, &Mrph::getPartRead); }
std::string prons(Mrph const& m) { return parts<std::string>(m, &Mrph::getPartPron); }
std::string readProns(Mrph const& m) { return parts<std::string>(m, &Mrph::getPartReadPron); }
std::string pids(Mrph const& m) { return parts<unsigned short>(m, &Mrph::getPartPid); }

/// The flat interface's tests have the texts of the other accessors.
TEST(MrphParts, AccessorsCheckTheirIndex) {
    RecordBuilder records;
    Mrph const simple = records.mrph("ab,Noun,1,r,s,w,g,h,1,2,3,p,e");
    Mrph const compound = records.mrph("a-b,Noun,1,r/r,s/s,w,g,h,1,2,3,p,e");
    std::vector<char const*> fields;
    unsigned char count = 0;
    for (Mrph const* m : {&simple, &compound}) {
        for (int const index : {-1, m->getPartCount()}) {
            EXPECT_EQ(thrown<std::range_error>([&] { m->getPartLength(index); }), "RANGE_ERROR: Mrph::getPartLength()");
            EXPECT_EQ(thrown<std::range_error>([&] { m->getPartCategoryCount(index, count, count, count); }),
                      "RANGE_ERROR: Mrph::getPartCategoryCount()");
            EXPECT_EQ(thrown<std::range_error>([&] { m->getPartExt(index, 0); }), "RANGE_ERROR: Mrph::getPartExt()");
            EXPECT_EQ(thrown<std::range_error>([&] { m->getPartExt(index, fields); }),
                      "RANGE_ERROR: Mrph::getPartExt()");
        }
    }
    EXPECT_STREQ(compound.getPartOfSP(1), "") << "no analyser, no names";
    for (int const field : {-1, 1}) {
        EXPECT_EQ(thrown<std::range_error>([&] { compound.getPartExt(1, field); }), "RANGE_ERROR: Mrph::getPartExt()");
        EXPECT_EQ(thrown<std::range_error>([&] { compound.getExt(field); }), "RANGE_ERROR: Mrph::getExt()");
    }
}

TEST(MrphParts, FormsFollowThePartFormAndItsEscapes) {
    Table<std::string, std::string> const cases{
        {"ab,Noun", "ab"},
        {"ab-c/def,Noun", "ab;c;def"},
        {"a\\-b-c\\/,Noun", "a-b;c/"},
        {"\\\\-\\,,Noun", "\\;,"},
        // Second bytes 0x5C, 0x2D and 0x2F are neither escape nor separator.
        {"\x95\\a-b,Noun", "\x95\\a;b"},
        {"\x83-a-b\x83/c,Noun", "\x83-a;b\x83/c"},
        {"\\\x83-a-b,Noun", "\x83-a;b"},
    };
    RecordBuilder records;
    for (auto const& [line, expected] : cases) {
        Mrph const m = records.mrph(line);
        EXPECT_EQ(forms(m), expected) << line;
        for (int i = 0; i < m.getPartCount(); ++i)
            EXPECT_EQ(m.getPartLength(i), static_cast<int>(m.getPartForm(i).size())) << line;
    }
}

TEST(MrphParts, ReadingsAreCutAtTheirSeparators) {
    Table<std::string, std::string, std::string, std::string, std::string> const cases{
        {"ab", "A/B", "A/B", "AB", "AB"},  // one part takes it all
        {"a-b", "AB(C|D)E/FG", "AB(C|D)E;FG", "ABCE;FG", "ABDE;FG"},
        {"a-b", "/A", ";A", ";A", ";A"},
        // "-" separates where only that gives the number of parts.
        {"a-b", "A-B", "A;B", "A;B", "A;B"},
        {"a-b-c", "A-B/C", "A;B;C", "A;B;C", "A;B;C"},
        // Second bytes 0x2F, 0x28, 0x7C and 0x29.
        {"a-b", "\x83/\x83(/\x83|\x83)", "\x83/\x83(;\x83|\x83)", "\x83/\x83(;\x83|\x83)", "\x83/\x83(;\x83|\x83)"},
    };
    RecordBuilder records;
    for (auto const& [form, readPron, cut, read, pron] : cases) {
        Mrph const m = records.mrph(form + ",Noun,1," + wide(readPron));
        EXPECT_EQ(readProns(m), wide(cut)) << readPron;
        EXPECT_EQ(reads(m), wide(read)) << readPron;
        EXPECT_EQ(prons(m), wide(pron)) << readPron;
        EXPECT_EQ(m.getPartLVRead(0), m.getPartRead(0)) << readPron;
    }
}

TEST(MrphParts, AGroupMayHoldTheSeparators) {
    Table<std::string, std::string, std::string> const cases{
        {"a-b", "(A/B|C/D)", "(A|C);(B|D)"},
        {"a-b-c", "A(B/C|D/E)F/G", "A(B|D);(C|E)F;G"},
        {"a-b", "(A/B|C)", "(A|C);(B|)"},
        {"a-b", "(A-B|CD)", "(A|CD);(B|)"},
        {"a-b", "(A|B/C", "(A|B;C"},  // no group: its ")" is missing
        {"a-b", "A/B/C", "A;B/C"},    // too many: the last part takes the rest
        {"a-b-c", "A/B", "A;B;"},     // too few
    };
    RecordBuilder records;
    for (auto const& [form, readPron, expected] : cases) {
        Mrph const m = records.mrph(form + ",Noun");
        MrphAccess::confirmCover(m).readPron = wide(readPron);
        EXPECT_EQ(readProns(m), wide(expected)) << readPron;
    }
}

TEST(MrphParts, OwnReadingsAreCutTheSameWay) {
    RecordBuilder records;
    Mrph const m = records.mrph("a-b,Noun,1,x/y");
    MrphCover& cover = MrphAccess::confirmCover(m);
    cover.read = wide("A-B/C");
    cover.pron = wide("D/E");
    cover.lvRead = wide("F/G");
    EXPECT_EQ(reads(m), wide("AB;C"));
    EXPECT_EQ(prons(m), wide("D;E"));
    EXPECT_EQ(m.getPartLVRead(1), wide("G"));
}

TEST(MrphParts, StandardFormsFallBackToTheForms) {
    Table<std::string, std::string> const cases{
        {"a-b,Noun", "a;b"},        {"a-b,Noun,1,,s/t", "s;t"},
        {"a-b,Noun,1,,s-t", "s;t"}, {"a-b-c,Noun,1,,s/t", "a;b;c"},  // cannot be spread over three parts
        {"ab,Noun,1,,s-/t", "st"},
    };
    RecordBuilder records;
    for (auto const& [line, expected] : cases) EXPECT_EQ(stdForms(records.mrph(line)), expected) << line;
}

TEST(MrphParts, IdsComeFromThePartList) {
    RecordBuilder records;
    EXPECT_EQ(pids(records.mrph("a-b,Noun")), "4;4");
    Mrph const m = records.mrph("a-b,Noun-Verb:Stem-Undef,9");
    EXPECT_EQ(pids(m), "5;3");
    // Another id for the whole word says nothing about its parts.
    MrphAccess::confirmCover(m).pid = 6;
    EXPECT_EQ(m.getPid(), 6);
    EXPECT_EQ(pids(m), "5;3");
    Mrph const simple = records.mrph("ab,Noun");
    MrphAccess::confirmCover(simple).pid = 6;
    EXPECT_EQ(pids(simple), "6");
}

TEST(MrphParts, OfJoinedMorphemesAreAnsweredByThem) {
    RecordBuilder records;
    Mrph joined = records.mrph("a-b,Noun-Noun-Undef,1," + wide("A/B") + ",s/t,wordA,,groupA");
    MrphAccess::append(joined, records.mrph("cd,Verb:Stem,7," + wide("C(D|E)") + ",,wordB,,groupB"), 6);
    int localIndex = -1;
    EXPECT_EQ(MrphAccess::getPartMrph(joined, 2, localIndex).getForm(true), "cd");
    EXPECT_EQ(localIndex, 0);
    EXPECT_EQ(MrphAccess::getPartMrph(joined, 1, localIndex).getPartCount(), 2);
    EXPECT_EQ(localIndex, 1);
    EXPECT_EQ(thrown<std::logic_error>([&] { MrphAccess::getPartMrph(joined, 3, localIndex); }),
              "LOGIC_ERROR: Mrph::getPartMrph()");
    EXPECT_EQ(forms(joined), "a;b;cd");
    EXPECT_EQ(stdForms(joined), "s;t;cd");
    EXPECT_EQ(reads(joined), wide("A;B;CD"));
    EXPECT_EQ(prons(joined), wide("A;B;CE"));
    EXPECT_EQ(pids(joined), "4;3;5");
    EXPECT_EQ(joined.format(1, "%g %x %c", ""), "groupA wordA 1");
    EXPECT_EQ(joined.format(2, "%g %x %c", ""), "groupB wordB 7");
    EXPECT_EQ(thrown<std::range_error>([&] { joined.getPartCost(3); }), "RANGE_ERROR: Mrph::getPartCost()");

    // A joined morpheme inside another one.
    Mrph outer = records.mrph("e,Noun,2");
    MrphAccess::append(outer, joined, 0);
    EXPECT_EQ(forms(outer), "e;a;b;cd");
    EXPECT_EQ(pids(outer), "4;4;3;5");
}

}  // namespace
}  // namespace TAVO::test
