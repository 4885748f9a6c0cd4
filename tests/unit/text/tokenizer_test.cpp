#include "base/utf8.hpp"
#include "support/text_world.hpp"

#include <random>

namespace {

using namespace TAVO;
using namespace TAVO::test;
using namespace std::string_literals;

class TokenizerTest : public testing::Test {
protected:
    TextWorld world_;
    Lexicon lexicon_ = Lexicon::open(world_.dir.path());
    Tokenizer tokenizer_{lexicon_};
};

TEST_F(TokenizerTest, Values) {
    // Surface | bytes characters UTF-16 | part of speech | fields | conjugation | base | reading | pronunciation |
    // normalized | converted | annotation | additional | cost | unknown, kind, known word
    Table<std::string, std::string> const table{
        {"", ""},
        {" \n\t", ""},
        {"東京は",
         "東京|0-6 0-2 0-2|名詞:一般|名詞,一般,|||東京|トウキョウ|トウキョウ|東京|東京|||5|011\n"
         "は|6-9 2-3 2-3|助詞|助詞,|||は|ワ|ワ|は|は|||5|021\n"},
        {"見", "見|0-3 0-1 0-1|動詞:自立:一段:連用形|動詞,自立,|一段|連用形|見る|ミ|ミ|見る|見|||5|011\n"},
        {"12", "12|0-2 0-2 0-2|数|数,|||12|イチニ|イチニ|12|12|||10|090\n"},
        {"スー", "スー|0-6 0-2 0-2|名詞:一般|名詞,一般,|||スー|スー|スー|スー|スー|||5|031\n"},
        {"か\u3099\uFE0F", "か\u3099\uFE0F|0-9 0-3 0-3|助詞|助詞,|||が|ガ|ガ|が|が|||5|021\n"},
        {"ｘＹ", "ｘＹ|0-6 0-2 0-2|未知語|未知語,|||ｘＹ|||xy|ｘＹ|||510|140\n"},
        {"ＮＡÏve😀は",
         "ＮＡÏve|0-10 0-5 0-5|未知語|未知語,|||ＮＡÏve|||naïve|ＮＡÏve|||255|140\n"
         "😀|10-14 5-6 5-7|未知語|未知語,|||😀|||😀|😀|||255|1110\n"
         "は|14-17 6-7 7-8|助詞|助詞,|||は|ワ|ワ|は|は|||5|021\n"},
        {"\xFF\n\xE3",
         "\xFF|0-1 0-1 0-1|未知語|未知語,|||\xFF|||\xFF|\xFF|||255|1130\n"
         "\xE3|2-3 2-3 2-3|未知語|未知語,|||\xE3|||\xE3|\xE3|||255|1130\n"},
    };
    for (auto const& [text, expected] : table) EXPECT_EQ(describe(tokenizer_.tokenize(text)), expected) << text;
}

TEST_F(TokenizerTest, PhrasesAndEndForms) {
    world_.dir.write("reduce.rules", toSjis("名詞 助詞 -> 句:名詞句\n"));
    world_.dir.write("end.rules", toSjis("助詞\tform\t\tり\n動詞:自立:一段:連用形\tform,standard\t\tる\n"));
    Tokenizer tokenizer(Lexicon::open(world_.dir.path()));
    for (int round = 0; round < 2; ++round)  // the second time the words are known
        EXPECT_EQ(describe(tokenizer.tokenize("東京は見が")),
                  "東京は|0-9 0-3 0-3|句:名詞句|句,名詞句,|||東京は|トウキョウワ|トウキョウワ|東京は|東京は|||10|010\n"
                  "見|9-12 3-4 3-4|動詞:自立:一段:連用形|動詞,自立,|一段|連用形|見るる|ミ|ミ|見るる|見|||5|011\n"
                  "が|12-15 4-5 4-5|助詞|助詞,|||がり|ガ|ガ|がり|が|||5|021\n");
}

TEST_F(TokenizerTest, EqualTextsHaveEqualNumbers) {
    std::string const text = "東京は\uFE0F東京\u3099は見";
    Tokens const tokens = tokenizer_.tokenize(text);
    ASSERT_EQ(tokens.size(), 5U);
    for (TokenText const which : {TokenText::Base, TokenText::Reading, TokenText::Pos, TokenText::Normalized}) {
        EXPECT_EQ(tokens[0].textId(which), tokens[2].textId(which));
        EXPECT_EQ(tokens[1].textId(which), tokens[3].textId(which));
        EXPECT_NE(tokens[0].textId(which), tokens[1].textId(which));
    }
    EXPECT_EQ(tokenizer_.text(tokens[4].textId(TokenText::Base)), "見る");
    EXPECT_EQ(tokens[0].wordId(), tokens[2].wordId());
    EXPECT_EQ(tokens[4].textId(TokenText::Annotation), 0U);
    std::uint32_t const before = tokens[4].textId(TokenText::Reading);
    std::uint64_t const version = tokenizer_.textsVersion();
    EXPECT_EQ(tokenizer_.tokenize("見")[0].textId(TokenText::Reading), before);
    EXPECT_EQ(tokenizer_.textsVersion(), version);
}

TEST_F(TokenizerTest, TaggedText) {
    std::string const text =
        "<word PartOfSP=\"助詞\" Read=\"トーキョー\" "
        "AdditionalInfo=\"x\">東京</word>&lt;<annotation>註😀</annotation>\n見";
    Tokens const tokens = tokenizer_.tokenizeTagged(text);
    EXPECT_EQ(tokens.text(), "東京<\n見");
    EXPECT_EQ(describe(tokens),
              "東京|0-6 0-2 0-2|助詞|助詞,|||東京|トーキョー||東京|東京||x|100|010\n"
              "<|6-7 2-3 2-3|未知語|未知語,|||<|||<|<|||255|1100\n"
              "|7-7 3-3 3-3||||||||||註😀||0|000\n"
              "見|8-11 4-5 4-5|動詞:自立:一段:連用形|動詞,自立,|一段|連用形|見る|ミ|ミ|見る|見|||5|011\n");
    EXPECT_EQ(describe(tokenizer_.tokenize("<a>")), describe(tokenizer_.tokenizeTagged("&lt;a&gt;")));
}

TEST_F(TokenizerTest, WordsOfTheDictionaries) {
    auto const found = [&](std::string const& text, LookUp by, std::size_t most = SIZE_MAX) {
        std::string shown;
        for (Token const& token : tokenizer_.lookUp(text, by, most))
            shown += std::string(token.surface()) + "/" + std::string(token.reading()) + "@" +
                     std::to_string(token.charBegin()) + (token.wordId() != 0 ? " " : "? ");
        return shown;
    };
    struct {
        LookUp by;
        std::string text, expected;
    } const table[] = {
        {LookUp::Surface, "東京", "東京/トウキョウ@0 "},
        {LookUp::Surface, "か\u3099", "が/ガ@0 "},
        {LookUp::Surface, "東", ""},
        {LookUp::Surface, "", ""},
        {LookUp::Surface, "한", ""},
        {LookUp::Surface, "\xFF", ""},
        {LookUp::Reading, "とうきょう", "東京/トウキョウ@0 "},
        {LookUp::Reading, "トウキョウ", "東京/トウキョウ@0 "},
        {LookUp::Reading, "トウ", ""},
        {LookUp::Reading, "😀", ""},
        {LookUp::Prefix, "東", "東京/トウキョウ@0 "},
        {LookUp::Prefix, "東京は", ""},
        {LookUp::Prefix, "", "1/イチ@0 2/ニ@1 が/ガ@2 は/ワ@3 スー/スー@4 見/ミ@6 東京/トウキョウ@7 "},
        {LookUp::CommonPrefix, "東京は", "東京/トウキョウ@0 "},
        {LookUp::CommonPrefix, "", ""},
    };
    for (auto const& [by, text, expected] : table) EXPECT_EQ(found(text, by), expected) << text;
    EXPECT_EQ(found("", LookUp::Prefix, 2), "1/イチ@0 2/ニ@1 ");
    EXPECT_EQ(found("東京", LookUp::Surface, 0), "");
    // What is found is the word that a text has.
    std::uint64_t const id = tokenizer_.lookUp("見", LookUp::Surface)[0].wordId();
    EXPECT_EQ(tokenizer_.tokenize("は見")[1].wordId(), id);
    EXPECT_EQ(tokenizer_.lookUp("見", LookUp::Surface).text(), "見");
}

TEST_F(TokenizerTest, AttributesComeBackAsTheyWereWritten) {
    std::string const given[] = {
        "naïve",         "😀", "葛\U000E0100飾", "한국어１２", "e\u0301", "\xFF\xE3x\x81", "〜～",
        "\uE040\uF8F2é", "é", "&amp;é&lt;é",    "ー",         "ｶﾞ",      "\uF8F2\uF8F2",  "ö/é"};
    for (std::string const& value : given) {
        std::string expected = value;
        if (value.starts_with("&")) expected = "&é<é";
        if (value == "〜～") expected = "～～";  // two spellings of one character of the code page
        std::string const text = "見<word Read=\"" + value + "\" AdditionalInfo=\"" + value + "\">東京</word>は";
        Tokens const tokens = tokenizer_.tokenizeTagged(text);
        ASSERT_EQ(tokens.size(), 3U) << value;
        EXPECT_EQ(tokens.text(), "見東京は");
        EXPECT_EQ(tokens[1].additional(), expected);
        EXPECT_EQ(tokens[2].begin(), 9U);
        std::erase(expected, '/');
        EXPECT_EQ(tokens[1].reading(), expected);
        std::string const bad = "<word X=\"" + value + "\">東京";  // a sentence that fails comes out as it was read
        EXPECT_EQ(tokenizer_.tokenizeTagged(bad).text(), bad);
    }
}

TEST_F(TokenizerTest, MarksBesideTagsLeaveThemTags) {
    Tokens const tokens =
        tokenizer_.tokenizeTagged("見<word Read=\"\uFE0Fトウ\" AdditionalInfo=\"x\"\uFE0F>\uFE0F東京</word>\uFE0Fは");
    ASSERT_EQ(tokens.size(), 3U);
    EXPECT_EQ(tokens[1].reading(), "トウ");
    EXPECT_EQ(tokens[1].additional(), "x");
}

TEST_F(TokenizerTest, BestAnalysesComeFirst) {
    std::string const text = "東京は12\n見naïve";
    std::string const best = describe(tokenizer_.tokenize(text));
    TokenLists const lists = tokenizer_.nBest(text, 3);
    ASSERT_EQ(lists.size(), 3U);
    EXPECT_EQ(describe(lists[0]), best);
    EXPECT_LE(lists[0].connectionCost(), lists[1].connectionCost());
    EXPECT_NE(describe(lists[1]), best);
    EXPECT_EQ(thrown([&] { tokenizer_.nBest(text, 0); }), "INVALID_ARGUMENT: Tokenizer::nBest(): n is 0");
    std::string const longText(9000, 'x');
    EXPECT_TRUE(contains(thrown([&] { tokenizer_.nBest(longText, 2); }), "TOO_LONG_STRING"));
    EXPECT_EQ(describe(tokenizer_.tokenize(text)), best);  // and goes on working
}

std::string randomText(std::mt19937& random) {
    static std::vector<std::string> const kPieces = {"東京",
                                                     "見",
                                                     "は",
                                                     "が",
                                                     "1",
                                                     "2",
                                                     "スー",
                                                     "か\u3099",
                                                     "e\u0301",
                                                     "naïve",
                                                     "A",
                                                     "é",
                                                     "韩",
                                                     "国",
                                                     "语",
                                                     "😀",
                                                     "\u200D",
                                                     "❤\uFE0F",
                                                     "👍🏽",
                                                     "🇯",
                                                     "2\uFE0F\u20E3",
                                                     "한",
                                                     "\u1112\u1161",
                                                     "กิน",
                                                     "Д",
                                                     "ゔ",
                                                     "ㇰー",
                                                     "\n",
                                                     "\r\n",
                                                     " ",
                                                     "\t",
                                                     "\xE3",
                                                     "\xE3\x81",
                                                     "\x80",
                                                     "\xF0\x9F",
                                                     "\0"s,
                                                     "\xFF",
                                                     "\u3000",
                                                     "ｶﾞ",
                                                     "\uFEFF",
                                                     "\U000E0100",
                                                     "。"};
    std::string text;
    for (auto n = random() % 30; n > 0; --n) {
        if (random() % 8 == 0)
            text += static_cast<char>(random());
        else if (random() % 8 == 0) {
            char bytes[4];
            auto const c = static_cast<char32_t>(random() % 0x30000);
            if (c < 0xD800 || c > 0xDFFF) text.append(bytes, putUtf8(bytes, c));
        } else
            text += kPieces[random() % kPieces.size()];
    }
    return text;
}

/// Surfaces and the blanks between them are the text; positions are those that counting gives.
void expectWhole(Tokens const& tokens, std::string_view text) {
    std::size_t end = 0;
    for (Token const& token : tokens) {
        ASSERT_LE(end, token.begin());
        ASSERT_LT(token.begin(), token.end());
        EXPECT_EQ(text.substr(end, token.begin() - end).find_first_not_of(" \t\n\v\f\r"), std::string_view::npos);
        EXPECT_EQ(token.surface(), text.substr(token.begin(), token.end() - token.begin()));
        EXPECT_EQ(token.charBegin(), countCharacters(text.substr(0, token.begin())));
        EXPECT_EQ(token.charEnd(), countCharacters(text.substr(0, token.end())));
        end = token.end();
    }
    EXPECT_EQ(text.substr(end).find_first_not_of(" \t\n\v\f\r"), std::string_view::npos);
}

TEST_F(TokenizerTest, NothingIsLostWhateverTheBytes) {
    std::mt19937 random(20240607);
    Tokenizer blanks(lexicon_, {true});
    for (int round = 0; round < 300; ++round) {
        std::vector<std::string> texts(1 + random() % 20);
        std::vector<std::string_view> views;
        std::vector<std::string> alone;
        for (std::string& text : texts) {
            text = randomText(random);
            SCOPED_TRACE(testing::PrintToString(text));
            Tokens const tokens = tokenizer_.tokenize(text);
            expectWhole(tokens, text);
            alone.push_back(describe(tokens));
            views.push_back(text);
            EXPECT_EQ(describe(tokenizer_.nBest(text, 1)[0]), alone.back());
            std::string joined;
            for (Token const& token : blanks.tokenize(text)) joined += token.surface();
            std::string withoutBreaks;
            for (char const c : text)
                if (c != '\n' && c != '\r') withoutBreaks += c;
            std::erase_if(joined, [](char c) { return c == '\n' || c == '\r'; });
            EXPECT_EQ(joined, withoutBreaks);
        }
        TokenLists const lists = tokenizer_.tokenize(views);
        ASSERT_EQ(lists.size(), texts.size());
        for (std::size_t i = 0; i != texts.size(); ++i) EXPECT_EQ(describe(lists[i]), alone[i]) << texts[i];
        if (HasFailure()) return;
    }
}

TEST_F(TokenizerTest, LongTextsAreWorkedInPieces) {
    std::string text;
    while (text.size() < 20'000) text += "東京は\nnaïve見\r\n";
    Tokens const tokens = tokenizer_.tokenize(text);
    expectWhole(tokens, text);
    EXPECT_EQ(tokens.size(), text.size() / std::string("東京は\nnaïve見\r\n").size() * 4);
    std::string const line(30'000, '1');
    EXPECT_EQ(tokenizer_.tokenize(line).size(), 1U);
}

}  // namespace
