#include "support/record_builder.hpp"
#include "support/testing.hpp"

#include "engine/special_records.hpp"

namespace TAVO::test {
namespace {

TEST(MrphValues, WithoutRecordAndOwnerHasDefaults) {
    Mrph const m = MrphAccess::fromRecord("abc", 3, nullptr, nullptr);
    EXPECT_EQ(m.getPid(), 3);
    EXPECT_FALSE(m.isUndef() || m.isAnnotation() || m.isFirstDic());
    EXPECT_EQ(m.getPartCount() + m.getAltCount() + m.getExtCount(), 1);
    EXPECT_EQ(m.format("%w,%s,%e,%c,%C,%h%H%k%p%l%D%g%A%a%b%B%x%X", "-"), "abc,abc,abc,255,[][][],-------------");
    EXPECT_EQ(m.getReadPron(false), "");
}

TEST(MrphValues, OfTheCoverGoBeforeTheRecords) {
    RecordBuilder records;
    Mrph const m = records.mrph("ab,Noun,7,read,std,,,group,1,2,3,pro,x,y");
    EXPECT_FALSE(MrphAccess::hasCover(m));
    MrphCover& cover = MrphAccess::confirmCover(m);
    EXPECT_FALSE(MrphAccess::hasCover(m));
    EXPECT_EQ(&MrphAccess::confirmCover(m), &cover);
    // An empty cover changes nothing.
    EXPECT_EQ(m.getPid(), 4);
    EXPECT_EQ(m.format("%c %g %s", ""), "7 group std");

    cover.pid = 6;
    cover.cost = 0;
    cover.group = "own";
    cover.prosodicInfo = "own pro";
    cover.additionalInfo = "add";
    cover.grammarType = "gram";
    cover.prosodicType = "type";
    cover.category2 = {8, 9};
    cover.ext = {"only"};
    EXPECT_TRUE(MrphAccess::hasCover(m));
    EXPECT_EQ(m.getPid(), 6);
    EXPECT_EQ(m.format("%c,%g,%A,%a,%b,%B,%C,%D", ""), "0,own,own pro,add,gram,type,[1][8,9][3],only");
}

TEST(MrphValues, ACorruptRecordGivesEmptyValues) {
    RecordBuilder records;
    // A compound flag and all texts announced, in a record of the head alone.
    Mrph const m = MrphAccess::fromRecord("ab", 2, records.raw(std::string("\x08\0\x04\0\x05\0\xFF\x1E", 8)), nullptr);
    EXPECT_EQ(m.getPartCount(), 1);
    EXPECT_STREQ(m.getGroup(), "");
    EXPECT_EQ(m.getPartForm(0), "ab");
    EXPECT_EQ(m.format("%C", ""), "[][][]");
}

TEST(MrphValues, PartsTheFormDoesNotHaveAreEmpty) {
    RecordBuilder records;
    Mrph const m = MrphAccess::fromRecord("abc", 3, records.record("abcd-ef-gh,Noun"), nullptr);
    std::vector<std::string> forms;
    m.getPartForm(forms);
    EXPECT_EQ(forms, (std::vector<std::string>{"abc", "", ""}));
}

TEST(MrphValues, AnnotationIsTheMorphemeOnTheAnnotationRecord) {
    Mrph const m = MrphAccess::fromRecord("note", 4, kAnnotationRecord.data(), nullptr);
    EXPECT_TRUE(m.isAnnotation());
    EXPECT_EQ(m.getPid(), 0);
    EXPECT_EQ(m.getCost(), 0);
    EXPECT_FALSE(MrphAccess::fromRecord("x", 1, kUnknownRecord.data(), nullptr).isAnnotation());
}

TEST(MrphValues, ErrorStateIsKeptButNotCopied) {
    Mrph const m = MrphAccess::fromRecord("a", 1, nullptr, nullptr);
    EXPECT_EQ(m.getErrorCode(), 0);
    EXPECT_STREQ(m.getErrorWhat(), "");
    EXPECT_EQ(m.setErrorWhat(-10007, "first"), -10007);
    EXPECT_EQ(m.setErrorWhat(-10008, "second"), -10008);
    EXPECT_EQ(m.getErrorCode(), -10008);
    EXPECT_STREQ(m.getErrorWhat(), "second");
    EXPECT_EQ(Mrph(m).getErrorCode(), 0);
    m.clearError();
    EXPECT_EQ(m.getErrorCode(), 0);
    EXPECT_STREQ(m.getErrorWhat(), "");
}

/// Ways in which a morpheme with a form of its own can outlive the one it came from.
TEST(MrphCopy, KeepsAnOverriddenFormAfterItsSourceIsGone) {
    RecordBuilder records;
    auto const makeSource = [&records](std::string const& form) {
        auto source = std::make_unique<Mrph>(records.mrph("ab,Noun"));
        MrphAccess::setForm(*source, form);
        MrphAccess::confirmCover(*source).text0 = "kept";
        return source;
    };
    for (std::string const form : {"short", "a form that is too long to be kept inside a string object"}) {
        auto source = makeSource(form);
        Mrph const copied(*source);
        Mrph assigned = records.mrph("x,Noun");
        assigned = *source;
        Mrph const moved(std::move(*makeSource(form)));
        Mrph moveAssigned = records.mrph("y,Noun");
        moveAssigned = std::move(*makeSource(form));
        std::vector<Mrph> grown(1, *source);
        for (int i = 0; i < 20; ++i) grown.push_back(grown.front());
        MrphAccess::confirmCover(*source).form.assign(source->getFormLength(), '#');
        source.reset();
        for (Mrph const* m : {&copied, static_cast<Mrph const*>(&assigned), &moved,
                              static_cast<Mrph const*>(&moveAssigned), &std::as_const(grown).back()}) {
            EXPECT_EQ(m->getForm(true), form);
            EXPECT_EQ(m->getFormLength(), form.size());
            EXPECT_EQ(MrphAccess::rawForm(*m), "ab");
            EXPECT_EQ(MrphAccess::cover(*m)->text0, "kept");
        }
    }
}

TEST(MrphCopy, SharesNoCover) {
    RecordBuilder records;
    Mrph const source = records.mrph("ab,Noun,1");
    MrphAccess::confirmCover(source).group = "source";
    Mrph copy(source);
    MrphAccess::confirmCover(copy).group = "copy";
    EXPECT_STREQ(source.getGroup(), "source");
    Mrph const& same = copy;
    copy = same;
    EXPECT_STREQ(copy.getGroup(), "copy");
    EXPECT_EQ(copy.getForm(true), "ab");
}

TEST(MrphCopy, OnAnotherRecordTakesItsParts) {
    RecordBuilder records;
    Mrph m = records.mrph("abc,Noun,1");
    MrphAccess::setDicIndex(m, 4);
    Mrph const other = MrphAccess::withRecord(m, records.record("a-bc,Verb:Stem,2"));
    EXPECT_EQ(other.getCost(), 2);
    EXPECT_EQ(other.getPartCount(), 2);
    EXPECT_EQ(other.getPartForm(1), "bc");
    EXPECT_EQ(MrphAccess::dicIndex(other), 4);
    EXPECT_EQ(m.getPartCount(), 1);
}

TEST(MrphCopy, StoredAlternativesBelongToTheAnalyser) {
    RecordBuilder records;
    AnalyzerContext context(1);
    Mrph const m = records.mrph("ab,Noun,1", &context);
    Mrph const* const stored = MrphAccess::storeAlt(m);
    for (int i = 0; i < 100; ++i) MrphAccess::storeAlt(records.mrph("c,Noun", &context));
    ASSERT_NE(stored, nullptr);
    EXPECT_EQ(stored->getForm(true), "ab");
    EXPECT_EQ(context.alternatives.size(), 101U);
    EXPECT_EQ(MrphAccess::storeAlt(records.mrph("ab,Noun")), nullptr);
}

}  // namespace
}  // namespace TAVO::test
