// Rules of end forms: the file, and the texts that they give.
#include "result/end_form_rules.hpp"

#include "support/describe.hpp"
#include "support/small_world.hpp"
#include "support/testing.hpp"

#include <tavo/error.hpp>
#include <tavo/tavo.hpp>

namespace TAVO::test {
namespace {

constexpr char kRules[] =
    "; coding: utf-8\n"
    "動詞:カ行:連用\tform\tっ\tく\n"
    "動詞:カ行:連用\treading,pron\tッ\tク\n"
    "動詞:カ行:連用\treading\tギョッ\tギョウ\n"
    "動詞:カ行:連用\tstandard\t\t！\n"
    "動詞:一段:連用\tform\t\tる\n"
    "動詞:一段:連用\tform\t見\t覧\n"
    "動詞:一段:連用\tform\t見\tこれは二つ目\n"
    "動詞:一段:連用\treading\t\tル\n"
    "動詞:表:連用\tform\tソ\t表\n";

class EndForms : public testing::Test {
protected:
    void SetUp() override {
        SmallWorld world;
        world.namesUtf8({"BOS", "EOS", "Unknown", "動詞:カ行:連用-3", "動詞:一段:連用", "助動詞", "名詞", "述語"})
            .cost([](unsigned left, unsigned right) {
                return static_cast<std::uint8_t>(left == 3 || right == 3 ? 200 : 10);
            });
        world.linesUtf8({"行っ,動詞:カ行:連用\\-3,1,イッ", "イッ,動詞:カ行:連用\\-3,1,イッ",
                         "行,動詞:カ行:連用\\-3,1,ギョッ", "見,動詞:一段:連用,1,ミ",
                         "食べ,動詞:一段:連用,1,(タ|ダ)ベ,食べる", "ネ,動詞:一段:連用,1", "た,助動詞,1,タ",
                         "猫,名詞,1,ネコ", "猫-見,名詞-名詞-動詞:一段:連用,1,ネコ/ミ",
                         "言っ,動詞:カ行:連用\\-3,1,イッ,言-う"});
        paths_ = world.writeTo(dir_.path());
        paths_.attachTo(tavo_);
        file_ = dir_.write("end.rules", kRules);
    }
    std::string of(char const* text, char const* format = "%w/%e") { return toUtf8(describe(analyse(text), format)); }
    std::vector<Mrph> const& analyse(char const* text) {
        tavo_.analyze(text_ = toSjis(text));
        return morphemes_ = morphemesOf(tavo_);
    }

    TempDir dir_;
    SmallWorld::Paths paths_;
    std::string file_, text_;
    Tavo tavo_;
    std::vector<Mrph> morphemes_;
};

TEST_F(EndForms, AreThePlainOnesWithoutRules) {
    EXPECT_EQ(of("行った"), "行っ/行っ た/た");
    EXPECT_EQ(toUtf8(morphemes_.at(0).getEndRead(true)), "イッ");
    tavo_.setEndFormRulePath(file_.c_str());
    EXPECT_EQ(of("行った"), "行っ/行く た/た");
    Tavo const copy(tavo_);
    EXPECT_EQ(copy.getEndFormRulePath(), file_);
    tavo_.setEndFormRulePath(nullptr);
    EXPECT_EQ(of("行った"), "行っ/行っ た/た");
    EXPECT_STREQ(tavo_.getEndFormRulePath(), "");
}

TEST_F(EndForms, FollowTheRulesOfThePartOfSpeech) {
    tavo_.setEndFormRulePath(file_.c_str());
    // Form, reading, pronunciation, standard form, each in its end form.
    Table<char const*, std::vector<char const*>> const cases{
        {"行っ", {"行く", "イク", "イク", "行く"}},
        {"イッ", {"イク", "イク", "イク", "イク"}},        // forms in katakana follow the readings
        {"行", {"行", "ギョウ", "ギョク", "行"}},          // no rule fits the form; the longest ending counts
        {"見", {"覧", "ミル", "ミ", "覧"}},                // the first rule of one ending
        {"食べ", {"食べる", "タベル", "ダベ", "食べる"}},  // a standard form has rules of its own
        {"ネ", {"ネる", "", "", "ネる"}},                  // nothing is made of nothing
        {"言っ", {"言く", "イク", "イク", "言う！"}},
        {"猫", {"猫", "ネコ", "ネコ", "猫"}},
        {"猫見", {"猫見", "ネコミ", "ネコミ", "猫見"}},
        {"？", {"？", "", "", "？"}},
    };
    for (auto const& [text, ends] : cases) {
        analyse(text);
        ASSERT_EQ(morphemes_.size(), 1U) << text;
        Mrph const& m = morphemes_.front();
        std::vector<std::string> const found{toUtf8(m.getEndForm(true)), toUtf8(m.getEndRead(true)),
                                             toUtf8(m.getEndPron(true)), toUtf8(m.getEndStdForm(true))};
        EXPECT_EQ(found, std::vector<std::string>(ends.begin(), ends.end())) << text;
        EXPECT_EQ(m.getEndLVRead(true), m.getEndRead(true)) << text;
        if (m.getPartCount() > 1) continue;
        std::vector<std::string> const parts{toUtf8(m.getPartEndForm(0)), toUtf8(m.getPartEndRead(0)),
                                             toUtf8(m.getPartEndPron(0)), toUtf8(m.getPartEndStdForm(0))};
        EXPECT_EQ(parts, found) << text;
    }
    Mrph const& compound = analyse("猫見").front();
    EXPECT_EQ(toUtf8(compound.getPartEndForm(0) + compound.getPartEndForm(1) + compound.getPartEndRead(1)), "猫覧ミル");
    EXPECT_THROW(compound.getPartEndForm(2), std::range_error);
}

TEST_F(EndForms, OfAPhraseAreThoseOfItsFirstMember) {
    tavo_.setReduceRulePath(dir_.write("phrases", toSjis("動詞 助動詞+ -> 文節\n名詞 動詞 -> 述語\n")).c_str());
    EXPECT_EQ(of("行った"), "行った/行った");
    tavo_.setEndFormRulePath(file_.c_str());
    EXPECT_EQ(of("行った", "%w/%h/%e"), "行った/文節/行く");
    EXPECT_EQ(toUtf8(morphemes_.at(0).getEndRead(true)), "イク");
    EXPECT_EQ(of("猫行っ"), "猫行っ/猫行っ") << "a name of the table has its own rules";
}

TEST_F(EndForms, OfConvertedTextAreThoseOfTheWord) {
    tavo_.setEndFormRulePath(file_.c_str());
    tavo_.setInputConvertMode(1);
    EXPECT_EQ(of("ｲｯた"), "ｲｯ/イク た/た");
    EXPECT_EQ(toUtf8(morphemes_.at(0).getPartEndForm(0)), "イク");
}

TEST_F(EndForms, ComeWithTheConnectionTable) {
    auto const used = [&](std::string const& line) {
        Tavo tavo;
        tavo.setInitFilePath(
            dir_.write("tavo.ini", line + "\nDic=" + paths_.dic + "\nConnTable=" + paths_.connTable + "\n").c_str());
        return std::string(tavo.getEndFormRulePath());
    };
    EXPECT_EQ(used(""), file_);
    EXPECT_EQ(used("EndFormRule=none"), "");
    std::string const other = dir_.write("other", "");
    EXPECT_EQ(used("EndFormRule=" + other), other);
}

TEST_F(EndForms, RefuseBadLines) {
    Table<std::string, std::string> const cases{
        {"a\tform\tb", ":1:Too Few Fields"},         {"; x\na\tform\tb\tc\td", ":2:Too Many Fields"},
        {"\tform\tb\tc", ":1:No Part Of Speech"},    {"a\tforms\tb\tc", ":1:Unknown Kind:forms"},
        {"a\tform,\tb\tc", ":1:Unknown Kind:"},      {"a\tform\t\x83\tc", ":1:Half A Character"},
        {"a\tform\tb\t\x83", ":1:Half A Character"},
    };
    tavo_.setEndFormRulePath(file_.c_str());
    for (auto const& [text, cause] : cases) {
        std::string const path = dir_.write("bad", text);
        EXPECT_EQ(thrown<illegal_format>([&] { tavo_.setEndFormRulePath(path.c_str()); }),
                  "ILLEGAL_FORMAT: " + path + cause);
        EXPECT_EQ(of("行った"), "行っ/行く た/た") << "the rules before stay";
    }
    EXPECT_THROW(tavo_.setEndFormRulePath(dir_.file("none").c_str()), file_not_found);
}

}  // namespace
}  // namespace TAVO::test
