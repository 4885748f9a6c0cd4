#include "support/record_builder.hpp"

#include <gtest/gtest.h>

namespace TAVO {
namespace {

using test::RecordBuilder;
using test::wide;
using Numbers = std::vector<unsigned short>;

/// Neighbouring pieces of one sentence.
struct Neighbours {
    Mrph on(std::size_t begin, std::size_t length, std::string const& line) {
        return MrphAccess::fromRecord(text.data() + begin, static_cast<unsigned int>(length), records.record(line),
                                      &context);
    }
    std::string const text = "abcdef";
    AnalyzerContext context{1};
    RecordBuilder records;
};

TEST(MrphJoin, ExtendsOverANeighbourInTheText) {
    Neighbours n;
    Mrph m = n.on(0, 2, "ab,Noun,10," + wide("A") + ",,,,g");
    Mrph const b = n.on(2, 1, "c,Verb:Stem,20," + wide("B(C|D)") + ",std,,,h");
    MrphAccess::append(m, b, 6);
    EXPECT_EQ(m.getForm(true), "abc");
    unsigned int length = 0;
    EXPECT_EQ(m.getFormWithoutNullEnd(length), n.text.data());
    EXPECT_EQ(MrphAccess::rawForm(m), "abc");
    EXPECT_EQ(m.getPid(), 6);
    EXPECT_EQ(m.getCost(), 30);
    EXPECT_EQ(m.getRead(false), wide("A/BC"));
    EXPECT_EQ(m.getPron(true), wide("ABD"));
    EXPECT_EQ(m.getStdForm(false), "ab/std");
    EXPECT_STREQ(m.getGroup(), "g:h");

    MrphAccess::append(m, n.on(3, 3, "def,Noun,30"), 0);
    EXPECT_EQ(m.getForm(true), "abcdef");
    EXPECT_EQ(m.getPid(), 6);
    EXPECT_EQ(m.getCost(), 60);
    EXPECT_EQ(m.getPartCount(), 3);
    EXPECT_EQ(m.getRead(false), wide("A/BC/"));
    EXPECT_EQ(m.getStdForm(true), "abstddef");
    EXPECT_EQ(m.getPartForm(2), "def");
}

TEST(MrphJoin, KeepsAFormThatIsNoStretchOfTheText) {
    Neighbours n;
    Mrph joined = n.on(0, 2, "ab,Noun");
    {
        Mrph other = n.on(4, 1, "e,Noun");
        MrphAccess::setForm(other, "own");
        MrphAccess::append(joined, other, 0);
    }
    Mrph const copy(joined);
    EXPECT_EQ(copy.getForm(true), "abown");
    EXPECT_EQ(copy.getPartForm(1), "own");
    EXPECT_EQ(MrphAccess::rawForm(copy), "ab");
}

TEST(MrphJoin, JoinsWithItself) {
    Neighbours n;
    Mrph m = n.on(0, 1, "a,Noun,5");
    MrphAccess::append(m, m, 0);
    EXPECT_EQ(m.getForm(true), "aa");
    EXPECT_EQ(m.getCost(), 10);
    EXPECT_EQ(m.getPartForm(1), "a");
}

TEST(MrphJoin, SettingsSayHowInformationCombines) {
    struct Case {
        int mode;
        std::string filler, first, second, third, expected;
    };
    Case const cases[] = {
        {0, "+", "a", "b", "c", "a+b+c"}, {0, "+", "", "b", "", "b"}, {0, "", "a", "b", "c", "abc"},
        {1, "", "a", "b", "c", "a"},      {1, "", "", "b", "c", ""},  {2, "", "a", "b", "c", "c"},
        {2, "", "a", "b", "", ""},
    };
    for (Case const& c : cases) {
        SCOPED_TRACE(c.expected + " in mode " + std::to_string(c.mode));
        Neighbours n;
        n.context.settings.prosodicInfoCombine = c.mode;
        n.context.settings.prosodicInfoFiller = c.filler;
        n.context.settings.extCombine[1] = c.mode;
        n.context.settings.extFiller[1] = c.filler;
        auto const line = [](std::string const& value) {
            return "x,Noun,1,,,,,,,,," + value + ",0" + value + "," + value;
        };
        Mrph m = n.on(0, 1, line(c.first));
        MrphAccess::append(m, n.on(1, 1, line(c.second)), 0);
        MrphAccess::append(m, n.on(2, 1, line(c.third)), 0);
        EXPECT_EQ(m.getProsodicInfo(), c.expected);
        EXPECT_EQ(m.getExt(1), c.expected);
        // Field 0 has no mode, which joins without filler.
        EXPECT_EQ(m.getExt(0), "0" + c.first + "0" + c.second + "0" + c.third);
    }
}

TEST(MrphJoin, UnitesTheCategories) {
    Neighbours n;
    Mrph m = n.on(0, 1, "a,Noun,1,,,,,,1:2,,5");
    MrphAccess::append(m, n.on(1, 1, "b,Noun,1,,,,,,2:3,7"), 0);
    Numbers category1, category2, category3;
    m.getCategory(category1, category2, category3);
    EXPECT_EQ(category1, (Numbers{1, 2, 3}));
    EXPECT_EQ(category2, Numbers{7});
    EXPECT_EQ(category3, Numbers{5});
}

std::vector<Mrph> divided(Mrph const& m) {
    std::vector<Mrph> out(1, m);  // must go
    MrphAccess::divide(m, out);
    return out;
}

TEST(MrphDivide, OnePartIsACopy) {
    Neighbours n;
    Mrph const m = n.on(0, 2, "ab,Noun,3");
    MrphAccess::confirmCover(m).group = "own";
    std::vector<Mrph> out(1, m);
    MrphAccess::divideAndPush(m, out);
    ASSERT_EQ(out.size(), 2U);
    EXPECT_EQ(out[1].getForm(true), "ab");
    EXPECT_STREQ(out[1].getGroup(), "own");
}

TEST(MrphDivide, PartsOfACompoundStandAlone) {
    Neighbours n;
    Mrph const m = n.on(1, 5, "bc-def,Noun-Verb:Stem-Undef,3," + wide("/A(B|C)") + ",s/t,w,,g,1:2,,,pro,x,y");
    std::vector<Mrph> const out = divided(m);
    ASSERT_EQ(out.size(), 2U);
    EXPECT_EQ(out[0].getForm(true), "bc");
    EXPECT_EQ(out[1].getForm(true), "def");
    EXPECT_EQ(MrphAccess::rawForm(out[1]).data(), n.text.data() + 3);
    EXPECT_EQ(out[0].getPid(), 5);
    EXPECT_EQ(out[1].getPid(), 3);
    // An empty reading of a part stays empty; the record's is the whole word's.
    EXPECT_EQ(out[0].getRead(true), "");
    EXPECT_EQ(out[1].getRead(true), wide("AB"));
    EXPECT_EQ(out[1].getPron(true), wide("AC"));
    EXPECT_EQ(out[0].getStdForm(true), "s");
    for (Mrph const& part : out) {
        EXPECT_EQ(part.getPartCount(), 1);
        EXPECT_EQ(part.getCost(), 3);
        EXPECT_STREQ(part.getGroup(), "g");
        EXPECT_STREQ(part.getProsodicInfo(), "pro");
        EXPECT_STREQ(part.getExt(1), "y");
        EXPECT_STREQ(part.getWordCooc(), "w");
        EXPECT_EQ(part.format("%C", ""), "[1,2][][]");
    }
}

TEST(MrphDivide, PartsOfJoinedMorphemesKeepTheirOwn) {
    Neighbours n;
    LatticeNode node{n.records.record("c,Verb:Stem,20,,,,,h"), nullptr, 1, 0, 0, 0, 0};
    Mrph m = n.on(0, 2, "a-b,Noun,10,,,,,g");
    MrphAccess::append(m, MrphAccess::fromNode(n.text.data() + 2, &node, &n.context), 6);
    std::vector<Mrph> const out = divided(m);
    ASSERT_EQ(out.size(), 3U);
    EXPECT_EQ(out[1].getForm(true), "b");
    EXPECT_EQ(out[2].getForm(true), "c");
    EXPECT_EQ(out[2].getPid(), 5);
    EXPECT_EQ(out[2].getCost(), 20);
    EXPECT_STREQ(out[0].getGroup(), "g");
    EXPECT_STREQ(out[2].getGroup(), "h");
    EXPECT_EQ(MrphAccess::node(out[2]), &node);
    EXPECT_EQ(MrphAccess::node(out[1]), nullptr);
}

TEST(MrphDivide, AFormOfItsOwnOutlivesTheMorpheme) {
    Neighbours n;
    std::vector<Mrph> out;
    {
        Mrph m = n.on(0, 4, "ab-cd,Noun");
        MrphAccess::setForm(m, "ABCDE");
        out = divided(m);
    }
    ASSERT_EQ(out.size(), 2U);
    EXPECT_EQ(out[0].getForm(true), "AB");
    EXPECT_EQ(out[1].getForm(true), "CDE");
    EXPECT_EQ(MrphAccess::rawForm(out[1]), "abcd");
}

}  // namespace
}  // namespace TAVO
