// What lies between an analysis and its result: whatever is done to the analyser, the
// result is still that of the analysis or is told to be gone, and the next is right.
#include <tavo/tavo.hpp>

#include "dic/pools.hpp"
#include "support/describe.hpp"
#include "support/small_world.hpp"
#include "support/testing.hpp"

#include <chrono>

namespace TAVO::test {
namespace {

namespace fs = std::filesystem;

constexpr char kGone[] = "TAVO_NOT_READY: No Analyze: Need to call analyze()";

class Misuse : public testing::Test {
protected:
    Misuse() {
        names(world_).line("a,N,1").line("b,N,1").line("c,N,1").line("a-b,N,1");
        paths_ = world_.writeTo(dir_.path());
        SmallWorld other;
        added_ = dir_.write("added", names(other).line("b-c,V,9").dictionary());
        other.cost([](unsigned, unsigned right) { return right == 4 ? 100 : 10; });  // each noun costs
        otherTable_ = dir_.write("table", serializeConnTable(other.connTable()));
        paths_.attachTo(tavo_);
        tavo_.addDicPath(added_.c_str(), false);
    }
    ~Misuse() override { sharedPools().dispose(); }

    static SmallWorld& names(SmallWorld& world) {
        return world.names({"BOS", "EOS", "UNK", "N", "V"}).cost([](unsigned, unsigned) { return 10; });
    }
    void attach(Tavo& tavo, std::string const& dic) const {
        tavo.setConnTablePath(paths_.connTable.c_str());
        tavo.addDicPath(dic.c_str(), false);
    }
    /// Adds a word to the source, which is newer then.
    void makeNewer() {
        dir_.write("SysDic.txt", world_.source() + "ab-c,V,0\n");
        fs::last_write_time(paths_.source, fs::last_write_time(paths_.dic) + std::chrono::seconds(2));
    }
    static std::string answer(Tavo& tavo) {
        std::string text;
        std::string const error = thrown([&] { text = describeAll(tavo, "%w:%h"); });
        return error == "nothing thrown" ? text : error;
    }

    TempDir dir_;
    SmallWorld world_;
    SmallWorld::Paths paths_;
    std::string otherTable_, added_;
    Tavo tavo_;
};

TEST_F(Misuse, BetweenAnalysisAndResult) {
    std::string const text = "abc", before = "ab:N c:N", bad = dir_.write("bad", "Begin=(\n"), rest = "a:UNK bc:V";
    Tavo bare;
    attach(bare, added_);
    Table<char const*, std::function<void(Tavo&)>, std::string, std::string> const cases{
        {"a mode", [](Tavo& t) { t.setDivideWordMode(1); }, kGone, "a:N b:N c:N"},
        {"how infos join", [](Tavo& t) { t.setProsodicInfoCombineMode(1, ""); }, kGone, before},
        {"how fields join", [](Tavo& t) { t.setExtCombineMode(0, 1, ""); }, kGone, before},
        {"no such join", [](Tavo& t) { EXPECT_ANY_THROW(t.setProsodicInfoCombineMode(3, "")); }, kGone, before},
        {"no such field", [](Tavo& t) { EXPECT_ANY_THROW(t.setExtCombineMode(-1, 0, "")); }, kGone, before},
        {"a list", [](Tavo& t) { t.setMajorPartOfSPPath(nullptr); }, kGone, before},
        {"delimiters", [](Tavo& t) { t.setDelimiterString({"b"}); }, before, "ab:N | c:N"},
        {"refused rules", [&](Tavo& t) { EXPECT_ANY_THROW(t.setReduceRulePath(bad.c_str())); }, before, before},
        {"refused comments", [&](Tavo& t) { EXPECT_ANY_THROW(t.setCommentRulePath(bad.c_str())); }, before, before},
        {"a table", [&](Tavo& t) { t.setConnTablePath(otherTable_.c_str()); }, before, rest},
        {"no table", [&](Tavo& t) { EXPECT_ANY_THROW(t.setConnTablePath(bad.c_str())); }, before, before},
        {"a refused analysis", [](Tavo& t) { EXPECT_ANY_THROW(t.analyze("a", -1)); }, before, before},
        {"a dictionary less", [](Tavo& t) { t.offDic(0); }, kGone, rest},
        {"all others", [&](Tavo& t) { t = bare; }, "", rest},
        {"itself", [](Tavo& t) { t = *&t; }, before, before},
        {"a copy", [&](Tavo& t) { EXPECT_EQ(Tavo(t).analyze("b", 1), 0); }, before, before},
        {"no rebuild", [](Tavo& t) { EXPECT_EQ(t.updateDic(0), 0); }, before, before},
    };
    for (auto const& [name, action, result, next] : cases) {
        Tavo tavo(tavo_);
        tavo.analyze(text);
        std::vector<Mrph> const kept = morphemesOf(tavo);
        action(tavo);
        EXPECT_EQ(answer(tavo), result) << name;
        std::vector<Mrph> others;
        if (result == before) kept.front().getAlt(others);
        tavo.analyze(text);
        EXPECT_EQ(answer(tavo), next) << name;
    }
}

TEST_F(Misuse, ADetachedDictionaryMayBeRebuiltByAnother) {
    std::string const text = "abc";
    Tavo other(tavo_);
    for (Tavo* const tavo : {&tavo_, &other}) {
        tavo->analyze(text);
        tavo->offDic(0);
    }
    attach(other, paths_.dicSpec());
    makeNewer();
    EXPECT_EQ(other.updateDic(1), 1);
    EXPECT_EQ(answer(tavo_), kGone);
    EXPECT_EQ(answer(other), "");
    tavo_.analyze(text);
    EXPECT_EQ(answer(tavo_), "a:UNK bc:V");
    other.analyze(text);
    EXPECT_EQ(answer(other), "abc:V");
}

TEST_F(Misuse, ADictionaryThatCanNeitherBeRebuiltNorTakenBack) {
    std::string const text = "abc", before = "ab:N c:N", good = readFile(paths_.dic);
    std::string const gone =
        "TAVO_NOT_READY: Dictionary not loaded: " + paths_.dic + ": Need to call offDic() and addDicPath()";
    sharedPools().dispose();
    Tavo tavo, other;
    paths_.attachTo(tavo, true);
    other.setConnTablePath(paths_.connTable.c_str());
    for (int i = 0; i < 3; ++i) tavo.analyze(text);
    EXPECT_EQ(answer(tavo), before) << "its records are in the caches of the search";
    makeNewer();
    fs::create_directories(paths_.dic + "_bak/x");
    auto const old = fs::last_write_time(paths_.dic);
    fs::rename(dir_.write("empty", ""), paths_.dic);
    fs::last_write_time(paths_.dic, old);
    EXPECT_EQ(tavo.updateDic(0), 6);

    EXPECT_FALSE(static_cast<bool>(tavo));
    std::vector<Mrph> words;
    EXPECT_EQ(thrown([&] { tavo.getResult(words, 0); }), kGone);
    EXPECT_EQ(thrown([&] { tavo.analyze(text); }), gone);
    EXPECT_EQ(thrown([&] { tavo.getResult(words, 0); }), gone);
    EXPECT_EQ(thrown([&] { tavo.analyzeNBest(text); }), gone);
    tavo.setTaggedInputMode(1);
    EXPECT_EQ(thrown([&] { tavo.analyze(text); }), gone);
    tavo.setTaggedInputMode(0);
    EXPECT_EQ(thrown([&] { Tavo(tavo).analyze(text); }), gone);

    fs::rename(dir_.write("good", good), paths_.dic);
    EXPECT_EQ(thrown([&] { other.addDicPath(paths_.dic.c_str(), true); }), "ILLEGAL_FORMAT: " + paths_.dic)
        << "still in use";
    tavo.offDic(0);
    for (Tavo* const cured : {&tavo, &other}) {
        cured->addDicPath(paths_.dic.c_str(), true);
        cured->analyze(text);
        EXPECT_EQ(answer(*cured), before);
    }
}

TEST_F(Misuse, AfterAnAnalysisThatFailed) {
    std::string const text = "abc", none = "b";
    tavo_.analyze(text);
    tavo_.offDic();
    EXPECT_THROW(tavo_.analyze(none), tavo_not_ready);
    attach(tavo_, added_);
    EXPECT_NE(answer(tavo_), "ab:N c:N");
    tavo_.analyze(none);
    EXPECT_EQ(answer(tavo_), "b:UNK");
}

}  // namespace
}  // namespace TAVO::test
