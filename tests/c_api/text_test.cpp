// Lexicons and tokenizers through the flat functions.
#include "flat_world.hpp"

#include <tavo/tavo_text.h>

#include <cstring>
#include <fstream>
#include <string>
#include <string_view>

namespace TAVO::test {

class FlatText : public ::testing::Test {
protected:
    void SetUp() override {
        SmallWorld::Paths const paths = flatWords().writeTo(dir.path());
        init = dir.path() + "/init";
        std::ofstream(init) << "Dic=" << paths.dic << "\nConnTable=" << paths.connTable << "\n";
        lexicon = tavo_lexicon_open(init.c_str(), nullptr, &failure);
        ASSERT_NE(lexicon, nullptr) << failure.text;
        tokenizer = tavo_tokenizer_new(lexicon, nullptr, &failure);
        ASSERT_NE(tokenizer, nullptr) << failure.text;
    }
    void TearDown() override {
        tavo_tokenizer_free(tokenizer);
        tavo_lexicon_free(lexicon);
    }
    std::string text(uint32_t number) const {
        return {tokens.string_bytes + tokens.string_offsets[number],
                tokens.string_bytes + tokens.string_offsets[number + 1]};
    }

    TempDir dir;
    std::string init;
    tavo_failure_t failure{sizeof(tavo_failure_t), 0, ""};
    tavo_lexicon_t* lexicon = nullptr;
    tavo_tokenizer_t* tokenizer = nullptr;
    tavo_tokens_t tokens{};
};

TEST_F(FlatText, ColumnsAskedFor) {
    tokens.size = sizeof tokens;
    ASSERT_EQ(tavo_tokenize(tokenizer, "é abcd", 7, TAVO_POS | TAVO_READING | TAVO_CHAR_OFFSETS, &tokens, &failure), 0)
        << failure.text;
    ASSERT_EQ(tokens.token_count, 3U);
    EXPECT_EQ(tokens.text_count, 1U);
    EXPECT_EQ(tokens.begin[1], 3U);
    EXPECT_EQ(tokens.end[1], 6U);
    EXPECT_EQ(tokens.char_begin[1], 2U);
    EXPECT_EQ(text(tokens.reading[1]), "えいびし");
    EXPECT_EQ(text(tokens.pos[1]), "Noun");
    EXPECT_EQ(tokens.flags[0], TAVO_TOKEN_UNKNOWN);
    EXPECT_EQ(tokens.word[0], 0U);
    EXPECT_NE(tokens.word[1], 0U);
    EXPECT_EQ(tokens.base, nullptr);
    EXPECT_EQ(tokens.cost, nullptr);
}

TEST_F(FlatText, BytesThatAreNoTextAreFlagged) {
    tokens.size = sizeof tokens;
    ASSERT_EQ(tavo_tokenize(tokenizer, "abc \xFF \xC3\xA9", 8, 0, &tokens, &failure), 0) << failure.text;
    ASSERT_EQ(tokens.token_count, 3U);
    EXPECT_EQ(tokens.flags[0], 0);
    EXPECT_EQ(tokens.flags[1], TAVO_TOKEN_UNKNOWN | TAVO_TOKEN_INVALID);
    EXPECT_EQ(tokens.flags[2], TAVO_TOKEN_UNKNOWN);
}

TEST_F(FlatText, StructsOfOlderProgramsAreShorter) {
    std::uint32_t const own = 0;
    tokens.size = offsetof(tavo_tokens_t, converted);
    tokens.converted = &own;
    ASSERT_EQ(tavo_tokenize(tokenizer, "abc", 3, TAVO_CONVERTED, &tokens, &failure), 0) << failure.text;
    EXPECT_EQ(tokens.token_count, 1U);
    EXPECT_EQ(tokens.converted, &own);
    tokens.size = sizeof tokens;
    ASSERT_EQ(tavo_tokenize(tokenizer, "abc", 3, TAVO_CONVERTED, &tokens, &failure), 0) << failure.text;
    EXPECT_EQ(text(tokens.converted[0]), "abc");
    tokens.size = offsetof(tavo_tokens_t, converted) - 1;
    EXPECT_NE(tavo_tokenize(tokenizer, "abc", 3, 0, &tokens, &failure), 0);
}

TEST_F(FlatText, ManyTextsOutliveTheirLexicon) {
    tavo_lexicon_free(lexicon);
    lexicon = tavo_lexicon_open(init.c_str(), nullptr, nullptr);
    char const* const texts[] = {"d", "", "abcd"};
    size_t const bytes[] = {1, 0, 4};
    tokens.size = sizeof tokens;
    ASSERT_EQ(tavo_tokenize_many(tokenizer, texts, bytes, 3, TAVO_BASE, &tokens, &failure), 0) << failure.text;
    EXPECT_EQ(tokens.text_count, 3U);
    EXPECT_EQ(tokens.first_of_text[1], 1U);
    EXPECT_EQ(tokens.first_of_text[2], 1U);
    EXPECT_EQ(tokens.first_of_text[3], 3U);
    EXPECT_EQ(text(tokens.base[1]), "ABC");
}

TEST_F(FlatText, AnalysesTagsAndLexiconsInMemory) {
    tokens.size = sizeof tokens;
    ASSERT_EQ(tavo_tokenize_nbest(tokenizer, "abcd", 4, 2, TAVO_BASE, &tokens, &failure), 0) << failure.text;
    EXPECT_EQ(tokens.text_count, 2U);
    EXPECT_EQ(text(tokens.base[0]), "ABC");
    EXPECT_LE(tokens.connection_cost[0], tokens.connection_cost[1]);
    EXPECT_EQ(tokens.plain_text, nullptr);
    char const tagged[] = "<word PartOfSP=\"Verb\">abc</word>";
    ASSERT_EQ(tavo_tokenize_tagged(tokenizer, tagged, sizeof tagged - 1, TAVO_POS, &tokens, &failure), 0);
    EXPECT_EQ(std::string(tokens.plain_text, tokens.plain_text_bytes), "abc");
    EXPECT_EQ(text(tokens.pos[0]), "Verb");

    std::vector<std::vector<std::uint64_t>> blocks;
    std::vector<tavo_lexicon_file_t> files;
    for (char const* name : {"SysDic", "ConnTable"}) {
        std::string const bytes = readFile(dir.file(name));
        std::memcpy(blocks.emplace_back(bytes.size() / 8 + 1).data(), bytes.data(), bytes.size());
        files.push_back({name, blocks.back().data(), bytes.size()});
    }
    tavo_lexicon_t* const opened = tavo_lexicon_open_memory(files.data(), files.size(), nullptr, &failure);
    ASSERT_NE(opened, nullptr) << failure.text;
    char prints[2][17];
    EXPECT_EQ(tavo_lexicon_fingerprint(opened, prints[0], &failure), 0);
    EXPECT_EQ(tavo_lexicon_fingerprint(lexicon, prints[1], &failure), 0);
    EXPECT_STREQ(prints[0], prints[1]);
    tavo_lexicon_free(opened);
}

TEST_F(FlatText, WordsOfTheDictionaries) {
    tokens.size = sizeof tokens;
    ASSERT_EQ(tavo_look_up(tokenizer, TAVO_BY_COMMON_PREFIX, "abcd", 4, 9, TAVO_READING, &tokens, &failure), 0);
    ASSERT_NE(tokens.token_count, 0U);
    EXPECT_EQ(std::string_view(tokens.plain_text, tokens.end[0]), std::string_view("abcd", tokens.end[0]));
    std::size_t const all = tokens.token_count;
    EXPECT_EQ(tokens.first_of_text[1], all);
    ASSERT_EQ(tavo_look_up(tokenizer, TAVO_BY_COMMON_PREFIX, "abcd", 4, all - 1, 0, &tokens, &failure), 0);
    EXPECT_EQ(tokens.token_count, all - 1);
    EXPECT_EQ(tavo_look_up(tokenizer, 4, "abcd", 4, 9, 0, &tokens, &failure), -10001);
    EXPECT_TRUE(std::string_view(failure.text).ends_with("by is none of TAVO_BY_..."));
}

TEST_F(FlatText, Failures) {
    EXPECT_EQ(tavo_lexicon_open((dir.path() + "/none").c_str(), nullptr, &failure), nullptr);
    EXPECT_EQ(failure.code, -10003);
    EXPECT_EQ(failure.text, "FILE_NOT_OPEN: " + dir.path() + "/none");
    EXPECT_EQ(tavo_tokenizer_new(nullptr, nullptr, &failure), nullptr);
    EXPECT_EQ(failure.code, -10001);
    EXPECT_EQ(tavo_tokenize(tokenizer, nullptr, 1, 0, &tokens, nullptr), -10001);
    tokens.size = sizeof tokens;
    EXPECT_EQ(tavo_tokenize(tokenizer, nullptr, 1, 0, &tokens, &failure), -10001);
    EXPECT_EQ(std::string_view(failure.text), "INVALID_ARGUMENT: a null text");
    tavo_lexicon_t* const again = tavo_lexicon_reloaded(lexicon, &failure);
    EXPECT_NE(again, nullptr);
    EXPECT_EQ(failure.code, 0);
    tavo_lexicon_free(again);
    tavo_lexicon_free(nullptr);
    tavo_tokenizer_free(nullptr);
}

}  // namespace TAVO::test
