#include "support/record_builder.hpp"
#include "support/testing.hpp"

namespace TAVO::test {
namespace {

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

/// Form, cost, reading, pronunciation, standard form, group and id.
std::string shown(Mrph const& m) { return m.format("%w %c %K %p %S %g ", "-") + std::to_string(m.getPid()); }

TEST(MrphJoin, ExtendsOverANeighbourInTheText) {
    Neighbours n;
    Mrph m = n.on(0, 2, "ab,Noun,10," + wide("A") + ",,,,g");
    MrphAccess::append(m, n.on(2, 1, "c,Verb:Stem,20," + wide("B(C|D)") + ",std,,,h"), 6);
    EXPECT_EQ(shown(m), wide("abc 30 A/BC ABD ab/std g:h 6"));
    EXPECT_EQ(MrphAccess::rawForm(m).data(), n.text.data());
    EXPECT_EQ(MrphAccess::rawForm(m), "abc");

    MrphAccess::append(m, n.on(3, 3, "def,Noun,30"), 0);
    EXPECT_EQ(shown(m), wide("abcdef 60 A/BC/ ABD ab/std/def g:h 6"));
    EXPECT_EQ(m.getPartCount(), 3);
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
    Table<int, std::string, std::vector<std::string>, std::string> const cases{
        {0, "+", {"a", "b", "c"}, "a+b+c"}, {0, "+", {"", "b", ""}, "b"}, {0, "", {"a", "b", "c"}, "abc"},
        {1, "", {"a", "b", "c"}, "a"},      {1, "", {"", "b", "c"}, ""},  {2, "", {"a", "b", "c"}, "c"},
        {2, "", {"a", "b", ""}, ""},
    };
    for (auto const& [mode, filler, values, expected] : cases) {
        SCOPED_TRACE(expected + " in mode " + std::to_string(mode));
        Neighbours n;
        n.context.settings.prosodicInfoCombine = n.context.settings.extCombine[1] = mode;
        n.context.settings.prosodicInfoFiller = n.context.settings.extFiller[1] = filler;
        std::vector<Mrph> pieces;
        for (std::string const& value : values)
            pieces.push_back(n.on(pieces.size(), 1, "x,Noun,1,,,,,,,,," + value + ",0" + value + "," + value));
        for (std::size_t i : {1U, 2U}) MrphAccess::append(pieces[0], pieces[i], 0);
        EXPECT_EQ(pieces[0].getProsodicInfo(), expected);
        EXPECT_EQ(pieces[0].getExt(1), expected);
        // Field 0 has no mode, which joins without filler.
        EXPECT_EQ(pieces[0].getExt(0), "0" + values[0] + "0" + values[1] + "0" + values[2]);
    }
}

TEST(MrphJoin, UnitesTheCategories) {
    Neighbours n;
    Mrph m = n.on(0, 1, "a,Noun,1,,,,,,1:2,,5");
    MrphAccess::append(m, n.on(1, 1, "b,Noun,1,,,,,,2:3,7"), 0);
    EXPECT_EQ(m.format("%C", ""), "[1,2,3][7][5]");
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
    // An empty reading of a part stays empty; the record's is the whole word's.
    EXPECT_EQ(shown(out[0]), "bc 3 - - s g 5");
    EXPECT_EQ(shown(out[1]), wide("def 3 AB AC t g 3"));
    EXPECT_EQ(MrphAccess::rawForm(out[1]).data(), n.text.data() + 3);
    for (Mrph const& part : out) {
        EXPECT_EQ(part.getPartCount(), 1);
        EXPECT_EQ(part.format("%A %D1 %x %C", ""), "pro y w [1,2][][]");
    }
}

TEST(MrphDivide, PartsOfJoinedMorphemesKeepTheirOwn) {
    Neighbours n;
    LatticeNode node{n.records.record("c,Verb:Stem,20,,,,,h"), nullptr, 1, 0, 0, 0, 0};
    Mrph m = n.on(0, 2, "a-b,Noun,10,,,,,g");
    MrphAccess::append(m, MrphAccess::fromNode(n.text.data() + 2, &node, &n.context), 6);
    std::vector<Mrph> const out = divided(m);
    ASSERT_EQ(out.size(), 3U);
    EXPECT_EQ(shown(out[0]), "a 10 - - a g 4");
    EXPECT_EQ(shown(out[1]), "b 10 - - b g 4");
    EXPECT_EQ(shown(out[2]), "c 20 - - c h 5");
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
}  // namespace TAVO::test
