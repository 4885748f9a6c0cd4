#include "base/sjis.hpp"
#include "result/mrph_access.hpp"
#include "support/describe.hpp"
#include "support/small_world.hpp"
#include "support/testing.hpp"

#include <tavo/lexicon.hpp>
#include <tavo/tavo.hpp>
#include <tavo/tokenizer.hpp>

#include <deque>
#include <random>

namespace TAVO::test {
namespace {

/// A lexicon that writes letters and digits full-width, and has words to find.
class Conversions : public testing::Test {
protected:
    void SetUp() override {
        SmallWorld world;
        world.namesUtf8({"BOS", "EOS", "Unknown", "名詞", "記号"}).cost([](unsigned left, unsigned right) {
            return static_cast<std::uint8_t>(left == 3 || right == 3 ? 200 : 10);
        });
        world.linesUtf8({"データ,名詞,1,データ",
                         "ガギ,名詞,1,ガギ",
                         "ＡＢ,名詞,1,エービー",
                         "１２,名詞,1,ジュウニ",
                         "キロ,名詞,1,キロ",
                         "高崎,名詞,1,タカサキ",
                         "すず,名詞,1,スズ",
                         "いすゞ,名詞,1,イスズ",
                         "すごーい,名詞,1,スゴーイ",
                         "ｉＰｏｄ,名詞,1,アイポッド",
                         "。,記号,1",
                         "国,名詞,1,クニ",
                         "平-成,名詞-名詞-名詞,1,ヘイ/セイ",
                         "遥か,名詞,1,ハルカ",
                         "遥々,名詞,1,ハルバル",
                         "遙,名詞,1,ハルカ",
                         "曽,名詞,1,ソウ",
                         "未曾有,名詞,1,ミゾウ",
                         "キ,名詞,200,キ",
                         "崎,名詞,200,サキ"});
        world.writeTo(dir_.path()).attachTo(tavo_);
    }
    std::vector<Mrph> const& analyse(std::string sjis) {
        tavo_.analyze(texts_.emplace_back(std::move(sjis)));
        morphemes_.clear();
        if (tavo_.getSentenceCount() > 0) tavo_.getResult(morphemes_, 0);
        return morphemes_;
    }
    std::string of(std::string_view text, char const* format) {
        return toUtf8(describe(analyse(toSjis(text)), format));
    }
    std::string converted(std::string const& sjis) {
        analyse(sjis);
        return tavo_.getSentenceCount() == 0 ? std::string() : tavo_.getAnalyzedText(0);
    }

    TempDir dir_;
    Tavo tavo_;
    std::deque<std::string> texts_;
    std::vector<Mrph> morphemes_;
};

TEST_F(Conversions, TurnTextIntoTheLexiconsForms) {
    Table<char const*, char const*, char const*> const cases{
        {"ﾃﾞｰﾀ", "データ", "データ"},
        {"ｶﾞｷﾞ｡", "ガギ。", "ガギ。"},
        {"AB12", "ＡＢ１２", "ＡＢ１２"},
        {"㌔", "キロ", "キロ"},
        {"①②", "１２", "１２"},
        {"髙﨑", "髙﨑", "高崎"},
        {"國", "國", "国"},
        {"遥か遥", "遥か遥", "遥か遥"},  // more words begin so than with 遙
        {"未曾有曾未曾", "未曾有曾未曾", "未曾有曽未曽"},
        {"澤", "澤", "澤"},  // 沢 begins no word here
        {"すゞ", "すず", "すず"},
        {"いすゞ", "いすゞ", "いすゞ"},
        {"ばゝズヽカヾ", "ばはズスカガ", "ばはズスカガ"},
        {"ゝ国ゝ", "ゝ国ゝ", "ゝ国ゝ"},
        {"すごーーーい", "すごーい", "すごーい"},
        {"すご～ーい", "すごーい", "すごーい"},
        {"すごｰｰい", "すごーい", "すごーい"},
        {"国～ーー国", "国～ーー国", "国～ーー国"},
        {"す～す", "す～す", "す～す"},
        {"ﾟｱﾟ", "゜ア゜", "゜ア゜"},
        {"データ", "データ", "データ"},
    };
    tavo_.setOutputConvertMode(2);
    for (auto const& [text, plain, variants] : cases) {
        for (int const level : {0, 1, 2}) {
            tavo_.setInputConvertMode(level);
            EXPECT_EQ(toUtf8(converted(toSjis(text))), level == 0 ? text : level == 1 ? plain : variants) << level;
        }
    }
}

TEST_F(Conversions, KeepTheGivenTextInResults) {
    tavo_.setInputConvertMode(2);
    constexpr char kText[] = "ﾃﾞｰﾀは㍻髙﨑㌔。";
    // Output convert mode; forms without and with the plain flag, the sentence's text.
    Table<int, char const*, char const*> const cases{
        {0, "ﾃﾞｰﾀ は ㍻ 髙﨑 ㌔ 。", kText},
        {1, "ﾃﾞｰﾀ(データ) は ㍻(平成) 髙﨑(高崎) ㌔(キロ) 。", "ﾃﾞｰﾀ(データ)は㍻(平成)髙﨑(高崎)㌔(キロ)。"},
        {2, "データ は 平成 高崎 キロ 。", "データは平成高崎キロ。"},
        {3, "ﾃﾞｰﾀ は ㍻ 髙﨑 ㌔ 。", kText}};
    for (auto const& [mode, forms, text] : cases) {
        tavo_.setOutputConvertMode(mode);
        analyse(toSjis(kText));
        std::string found;
        for (Mrph const& m : morphemes_) found += (found.empty() ? "" : " ") + toUtf8(m.getForm(false));
        EXPECT_EQ(found, forms) << mode;
        EXPECT_EQ(toUtf8(tavo_.getAnalyzedText(0)), text) << mode;
        EXPECT_EQ(toUtf8(tavo_.getSentence(0)), kText);
    }
    EXPECT_EQ(of(kText, "%k"), "データ  ヘイセイ タカサキ キロ ") << "readings are those of the words";
    EXPECT_EQ(toUtf8(analyse(toSjis("ﾃﾞｰﾀ")).at(0).getStdForm(true)), "データ");
    tavo_.setOutputConvertMode(2);
    tavo_.setPublicPartOfSPPath(dir_.write("public.list", toSjis("記号\n")).c_str());
    EXPECT_EQ(of("ﾃﾞｰﾀ｡", "%w"), "ﾃﾞｰﾀ 。") << "the forms of listed parts of speech alone change";
}

TEST_F(Conversions, PartsAndAlternativesStandInTheGivenText) {
    tavo_.setInputConvertMode(2);
    std::vector<std::string> parts;
    Mrph const compound = analyse(toSjis("平成")).at(0);
    compound.getPartForm(parts);
    EXPECT_EQ(parts, (std::vector<std::string>{toSjis("平"), toSjis("成")}));
    tavo_.setDivideWordMode(1);
    EXPECT_EQ(of("㍻国", "%w"), "㍻ 国") << "parts of one character stay one morpheme";
    tavo_.setDivideWordMode(0);
    tavo_.setAlternativeMode(1);
    EXPECT_EQ(analyse(toSjis("㌔")).at(0).getAltCount(), 0) << "キ ends inside the character";
    EXPECT_EQ(analyse(toSjis("ｷﾛ")).at(0).getAltCount(), 1);
    std::vector<Mrph> others;
    morphemes_.at(0).getAlt(others);
    EXPECT_EQ(toUtf8(describe(others)), "ｷ:名詞");
}

TEST_F(Conversions, FollowTheUsersRulesFirst) {
    tavo_.setOutputConvertMode(2);
    std::string const path =
        dir_.write("convert.rules", "; coding: utf-8\nっす\tです\nっ\tつ\nﾃﾞ\tで\nす\\t\ta\\\\b\n国\tAB\n");
    tavo_.setConvertRulePath(path.c_str());
    EXPECT_EQ(tavo_.getConvertRulePath(), path);
    EXPECT_EQ(toUtf8(converted(toSjis("っす国"))), "っす国") << "rules act with input conversion";
    tavo_.setInputConvertMode(1);
    EXPECT_EQ(toUtf8(converted(toSjis("っすっ国ﾃﾞﾃす\t"))), "ですつABでテa\\b");
    EXPECT_EQ(toUtf8(converted(toSjis("㌔"))), "キロ");
    Table<char const*, char const*> const bad{
        {"a", ":1:No Tab"},           {"a\tb\n\tb", ":2:Nothing To Convert"}, {"a\t", ":1:Nothing To Convert To"},
        {"a\tb\tc", ":1:Second Tab"}, {"\x83\tb", ":1:Half A Character"},     {"a\tb\x83", ":1:Half A Character"}};
    for (auto const& [text, cause] : bad) {
        std::string const badPath = dir_.write("bad.rules", text);
        EXPECT_EQ(thrown<illegal_format>([&] { tavo_.setConvertRulePath(badPath.c_str()); }),
                  "ILLEGAL_FORMAT: " + badPath + cause);
        EXPECT_EQ(toUtf8(converted(toSjis("っす"))), "です") << "the rules before stay";
    }
    EXPECT_THROW(tavo_.setConvertRulePath(dir_.file("none").c_str()), file_not_found);
    Tavo const copy(tavo_);
    EXPECT_EQ(copy.getConvertRulePath(), path);
    tavo_.setConvertRulePath(nullptr);
    EXPECT_EQ(toUtf8(converted(toSjis("っす"))), "っす");
}

TEST_F(Conversions, FindWordsInAnyCase) {
    tavo_.setOutputConvertMode(2);
    for (int const level : {0, 1}) {
        tavo_.setInputConvertMode(level);
        EXPECT_EQ(of("ＩＰＯＤ", "%w"), "Ｉ Ｐ Ｏ Ｄ");
        tavo_.setAlphabetCapitalizeMode(1);
        EXPECT_EQ(of("ＩＰＯＤと", "%w"), "ｉＰｏｄ と");
        EXPECT_EQ(of("ａｂ", "%w"), "ＡＢ");
        EXPECT_EQ(of("ＩＰＯ", "%w"), "Ｉ Ｐ Ｏ") << "no word";
        EXPECT_EQ(of("ab", "%w"), level == 0 ? "a b" : "ＡＢ");
        tavo_.setAlphabetCapitalizeMode(0);
    }
}

TEST_F(Conversions, KeepMarkupInPlace) {
    tavo_.setInputConvertMode(1);
    tavo_.setTaggedInputMode(1);
    EXPECT_EQ(of("ﾃ<word PartOfSP=\"記号\">ﾞｰﾀ</word>ﾃﾞｰﾀ", "%w/%h"), "ﾃ/Unknown ﾞｰﾀ/記号 ﾃﾞｰﾀ/名詞");
}

TEST_F(Conversions, LeaveTokensInTheirText) {
    std::string const init = dir_.write(
        "tavo.init", "Dic=" + dir_.file("SysDic") + "\nConnTable=" + dir_.file("ConnTable") + "\nInputConvert=2\n");
    Tokenizer tokenizer(Lexicon::open(init));
    std::string found;
    for (Token const& token : tokenizer.tokenize("ﾃﾞｰﾀは㌔。髙﨑データﾃﾞｰﾀ"))
        found.append(token.surface())
            .append("@")
            .append(std::to_string(token.begin()))
            .append("=")
            .append(token.converted())
            .append(",")
            .append(token.base())
            .append(token.wordId() != 0 ? " " : "? ");
    EXPECT_EQ(found,
              "ﾃﾞｰﾀ@0=データ,データ は@12=は,は? ㌔@15=キロ,キロ 。@18=。,。 髙﨑@21=高崎,高崎 データ@27=データ,データ "
              "ﾃﾞｰﾀ@36=データ,データ ");
}

/// Converted or not, results stand for the given text, character by character, and what is converted stays.
TEST_F(Conversions, ChangeNothingTwice) {
    std::vector<std::string> const pieces{"ﾃ",  "ﾞ",  "ﾟ",  "ｰ",  "ー", "～", "ゝ", "ゞ",     "ヽ", "ヾ",
                                          "す", "ず", "カ", "㌔", "㍻", "①",  "髙", "﨑",     "國", "曾",
                                          "未", "有", "遥", "A",  "b",  "1",  "Ｂ", "いすゞ", "国", "。"};
    std::mt19937 random(22);
    int changed = 0;
    for (int round = 0; round < 2000; ++round) {
        std::string text;
        bool const hasJunk = round % 4 == 0;
        for (unsigned i = 0; i <= random() % 8; ++i)
            text += hasJunk && random() % 8 == 0 ? std::string(1, static_cast<char>(random() % 255 + 1))
                                                 : toSjis(pieces[random() % pieces.size()]);
        tavo_.setInputConvertMode(static_cast<int>(random() % 3));
        tavo_.setAlphabetCapitalizeMode(static_cast<int>(random() % 2));
        tavo_.setOutputConvertMode(0);
        std::string joined;
        for (Mrph const& m : analyse(text)) {
            ASSERT_FALSE(MrphAccess::rawForm(m).empty()) << round;
            ASSERT_FALSE(!hasJunk && tavo_.getInputConvertMode() != 0 && isInsideCharacter(text, joined.size()))
                << round;
            joined += m.getForm(true);
        }
        EXPECT_EQ(joined, tavo_.getSentenceCount() == 0 ? "" : text) << round;
        tavo_.setOutputConvertMode(2);
        std::string const once = converted(text);
        changed += once != text ? 1 : 0;
        EXPECT_EQ(converted(once), once) << round << " " << toUtf8(text);
    }
    EXPECT_GT(changed, 500);
}

}  // namespace
}  // namespace TAVO::test
