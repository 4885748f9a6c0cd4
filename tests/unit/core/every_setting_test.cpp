// Each setting, set away from its default, makes a difference that a caller sees.
#include "config/settings.hpp"
#include "support/describe.hpp"
#include "support/docs_page.hpp"
#include "support/small_world.hpp"
#include "support/testing.hpp"

#include <tavo/tavo.hpp>

#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <sstream>

namespace TAVO::test {
namespace {

/// What may differ: the text to analyse, and what else must be set first.
struct Case {
    std::string text;
    std::function<void(Tavo&)> before = [](Tavo&) {};
};

class EverySetting : public testing::Test {
protected:
    void SetUp() override {
        SmallWorld world;
        world.namesUtf8({"BOS", "EOS", "Undef", "Noun", "Verb", "Number", "K:Undef", "S:Symbol", "Figure"})
            .cost([](unsigned left, unsigned right) {
                return static_cast<std::uint8_t>(left == 3 || right == 3 ? 200 : 10);
            });
        world.linesUtf8({"a,Noun,1,エ", "b,Verb,2,ビ", "c,Noun,3,シ", "a-b,Noun-Noun-Verb,40,エ/ビ", "1,Number,1,イチ",
                         "u,K:Undef,1", "s,S:Symbol,1", "データ,Noun,1,データ", "iPod,Noun,1,アイポッド",
                         "pq,Noun,1,,,,,,,,,first,x", "rs,Noun,1,,,,,,,,,second,y", "v,Noun,1,one", "v,Noun,1,two,,@w",
                         "w,Noun,1,,,w"});
        paths_ = world.writeTo(dir_.path());
        init_ = dir_.write("tavo.ini", "Dic=" + paths_.dic + "\nConnTable=" + paths_.connTable + "\n");
    }
    /// All that the settings may change: words in the output format, with what else they answer.
    std::string outputOf(Case const& given, std::function<void(Tavo&)> const& set, std::string const& init) {
        Tavo tavo;
        given.before(tavo);
        set(tavo);
        tavo.setInitFilePath(init.c_str());
        std::ostringstream out;
        std::string const text = toSjis(given.text);
        tavo.analyze(text);
        for (int s = 0; s < static_cast<int>(tavo.getSentenceCount()); ++s) {
            tavo.output(out, s);
            out << "|" << tavo.getAnalyzedText(s) << "|";
            std::vector<Mrph> words;
            tavo.getResult(words, s);
            for (Mrph const& m : words)
                out << m.getForm(false) << "/" << m.getRead(true) << "/" << m.getPartOfSP() << "/" << m.getAltCount()
                    << "/" << m.getEndForm(true) << "/" << m.getProsodicInfo() << "/"
                    << (m.getExtCount() > 0 ? m.getExt(0) : "") << " ";
            std::vector<std::vector<Mrph>> best;
            tavo.getResultNBest(best, s, 2);
            out << best.size();
        }
        std::ifstream maps("/proc/self/maps");
        for (std::string line; std::getline(maps, line);)
            if (line.ends_with(paths_.dic)) out << "mapped";
        return out.str();
    }
    /// @p init: another init file than that of the output without the setting.
    void expectDifference(std::string const& name, Case const& given, std::function<void(Tavo&)> const& set,
                          std::string const& init = "") {
        std::string const without = outputOf(
            given, [](Tavo&) {}, init_);
        Tavo::dispose();
        EXPECT_NE(outputOf(given, set, init.empty() ? init_ : init), without) << name;
        Tavo::dispose();
    }
    auto withRules(std::string const& rules) {
        return [this, rules](Tavo& tavo) { tavo.setReduceRulePath(dir_.write("my.rules", rules).c_str()); };
    }

    TempDir dir_;
    SmallWorld::Paths paths_;
    std::string init_;
};

TEST_F(EverySetting, OfAModeActs) {
    auto const convert = [](Tavo& tavo) { tavo.setInputConvertMode(1); };
    // By key of the init file: another value than the default, and where it tells.
    std::map<std::string, std::pair<int, Case>> const cases{
        {"MemoryMapped", {0, {"a"}}},
        {"Cooccurrence", {1, {"vw"}}},
        {"TaggedInput", {1, {"<word>a</word>b"}}},
        {"DeleteSlash", {0, {"<word Read=\"x/y\">a</word>", [](Tavo& tavo) { tavo.setTaggedInputMode(1); }}}},
        {"InputConvert", {2, {"ﾃﾞｰﾀ"}}},
        {"OutputConvert", {2, {"ﾃﾞｰﾀ", convert}}},
        {"DivideWord", {1, {"ab"}}},
        {"DelimitCRLF", {1, {"a\nb"}}},
        {"DeleteCRLF", {1, {"a\nb"}}},
        {"AlphabetCapitalize", {1, {"IPOD"}}},
        {"Alternative", {1, {"ab"}}},
        {"ReduceUndef", {0, {"uu", withRules("Undef=\n")}}},
        {"ReduceChar", {0, {"ss", withRules("Symbol=\n")}}},
        {"ReduceNumber", {0, {"11", withRules("Number=\n")}}},
    };
    for (ModeInfo const& info : kModes) {
        auto const found = cases.find(info.key);
        ASSERT_NE(found, cases.end()) << info.key << " has no case";
        auto const& [value, given] = found->second;
        ASSERT_NE(value, info.defaultValue) << info.key;
        std::string const path =
            dir_.write("mode.ini", std::string(info.key) + "=" + std::to_string(value) + "\nDic=" + paths_.dic +
                                       "\nConnTable=" + paths_.connTable + "\n");
        expectDifference(info.key, given, [&](Tavo& tavo) { tavo.setInitFilePath(path.c_str()); });
    }
}

TEST_F(EverySetting, OfATextOrFileActs) {
    auto const convert = [](Tavo& tavo) { tavo.setInputConvertMode(1); };
    auto const joins = withRules("Noun Noun -> Noun\n");
    auto const file = [&](void (Tavo::*set)(char const*), std::string const& text) {
        return [this, set, text](Tavo& tavo) { (tavo.*set)(dir_.write("file", text).c_str()); };
    };
    auto const none = [](Tavo&) {};
    TempDir other;
    SmallWorld world;
    // The verb goes before the end of a sentence, so that the compound comes apart.
    world.namesUtf8({"BOS", "EOS", "Undef", "Noun", "Verb", "Number", "K:Undef", "S:Symbol", "Figure"})
        .cost(
            [](unsigned left, unsigned right) { return static_cast<std::uint8_t>(right == 2 && left != 5 ? 100 : 0); })
        .linesUtf8({"ab,Verb,1"});
    SmallWorld::Paths const others = world.writeTo(other.path());
    auto const initOf = [&](char const* name, std::string const& dic, std::string const& table) {
        return other.write(name, "Dic=" + dic + "\nConnTable=" + table + "\n");
    };
    struct Row {
        char const* name;
        Case given;
        std::function<void(Tavo&)> set;
        std::string init = "";
    };
    std::vector<Row> const rows{
        {"Delimiter", {"ab"}, [](Tavo& tavo) { tavo.setDelimiterString({"a"}); }},
        {"OutputFormat", {"a"}, [](Tavo& tavo) { tavo.setOutputFormat("%w"); }},
        {"EOS", {"a"}, [](Tavo& tavo) { tavo.setEOS("."); }},
        {"NullString", {"pq"}, [](Tavo& tavo) { tavo.setNullString("none"); }},
        {"ProsodicInfoCombine", {"pqrs", joins}, [](Tavo& tavo) { tavo.setProsodicInfoCombineMode(0, "+"); }},
        {"ExtCombine", {"pqrs", joins}, [](Tavo& tavo) { tavo.setExtCombineMode(0, 1, ""); }},
        {"CommentRule", {"ab"}, file(&Tavo::setCommentRulePath, "String = a\nPartOfSP = Verb\n")},
        {"ReduceRule", {"ac"}, joins},
        {"CooccurrenceRule",
         {"vw", [](Tavo& tavo) { tavo.setCooccurrenceMode(1); }},
         file(&Tavo::setCooccurrenceRulePath, "WordWeight = 0\n")},
        {"ConvertRule", {"b", convert}, file(&Tavo::setConvertRulePath, "b\ta\n")},
        {"PublicPartOfSP",
         {"ﾃﾞｰﾀ", [](Tavo& tavo) { tavo.setInputConvertMode(1), tavo.setOutputConvertMode(2); }},
         file(&Tavo::setPublicPartOfSPPath, "Verb\n")},
        {"NumberPartOfSP", {"cc", withRules("Number=\n")}, file(&Tavo::setNumberPartOfSPPath, "Noun\n")},
        {"MajorPartOfSP", {"ac", withRules("Major Major -> Phrase\n")}, file(&Tavo::setMajorPartOfSPPath, "Noun\n")},
        {"EndFormRule", {"b"}, file(&Tavo::setEndFormRulePath, "Verb\tform\tb\tbe\n")},
        {"Dic", {"ab"}, none, initOf("dic", others.dic + "\nDic=" + paths_.dic, paths_.connTable)},
        {"ConnTable", {"ab"}, none, initOf("table", paths_.dic, others.connTable)},
    };
    std::set<std::string> documented, tested;
    std::string const page = docsPage("init-file.md");
    std::regex const key("\n\\| \\d+ \\| `(\\w+)`");
    for (std::sregex_iterator at(page.begin(), page.end(), key), end; at != end; ++at) documented.insert((*at)[1]);
    for (ModeInfo const& info : kModes) tested.insert(info.key);
    for (Row const& row : rows) {
        expectDifference(row.name, row.given, row.set, row.init);
        tested.insert(row.name);
    }
    EXPECT_EQ(tested, documented) << "each setting has a case and a row in the table";
}

}  // namespace
}  // namespace TAVO::test
