// Word lists through the flat functions.
#include "c_api/flat_world.hpp"

#include <tavo/tavo_compile.h>

#include <memory>

extern "C" int compileInC(char const* folder, char const* table, char const* list, char const* path, char const* text,
                          char* out, int size);

namespace TAVO::test {
namespace {

using Compiled = std::unique_ptr<tavo_compiled_t, decltype(&tavo_compiled_free)>;

class FlatCompile : public FlatWorld {
protected:
    Compiled compile(std::string const& words) {
        return {tavo_compile_words(words.data(), words.size(), &options), &tavo_compiled_free};
    }
    void SetUp() override {
        FlatWorld::SetUp();
        options.size = sizeof options;
        options.lexicon = dir.path().c_str();
    }

    tavo_compile_options_t options{};
};

TEST_F(FlatCompile, ACProgramUsesWhatItCompiled) {
    char out[64] = "";
    std::string const made = dir.file("new.dic");
    EXPECT_EQ(compileInC(dir.path().c_str(), paths.connTable.c_str(), "wxyz\n", made.c_str(), "wxyz", out, sizeof out),
              0);
    EXPECT_STREQ(out, "wxyz/Noun ");
}

TEST_F(FlatCompile, FaultsAreRecords) {
    options.name = "my.txt";
    options.output = "no/such/folder/x";
    Compiled const made = compile("d,Noun,5\n\nx,Nown,5\nあ-い,Noun,5\n\xFF,Noun,5\n");
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(made->code, -10004);
    ASSERT_EQ(made->fault_count, 3U);
    Table<std::size_t, char const*, int> const faults{
        {3, "Error: Unlisted PartOfSP: Nown(x)", 0}, {4, "warning: ", 1}, {5, "Error: byte 1 is not UTF-8", 0}};
    for (std::size_t i = 0; i < faults.size(); ++i) {
        auto const& [line, cause, warning] = faults[i];
        EXPECT_STREQ(made->fault_file[i], "my.txt");
        EXPECT_EQ(made->fault_line[i], line);
        EXPECT_TRUE(contains(made->fault_cause[i], cause));
        EXPECT_EQ(made->fault_warning[i], warning) << made->fault_cause[i];
    }
    EXPECT_EQ(made->dictionary, nullptr);
    Compiled const sound = compile("d,Noun,5\n");
    ASSERT_EQ(sound->fault_count, 1U);
    EXPECT_STREQ(sound->fault_file[0], "no/such/folder/x");
    EXPECT_STREQ(sound->fault_cause[0], "No such file or directory");
}

TEST_F(FlatCompile, WrongOptionsAreAFaultToo) {
    auto const expect = [&](int code, char const* cause) {
        Compiled const made = compile("d,Noun,5\n");
        ASSERT_EQ(made->fault_count, 1U) << cause;
        EXPECT_EQ(made->code, code);
        EXPECT_TRUE(contains(made->fault_cause[0], cause));
    };
    options.must_win_count = 1;
    expect(-10001, "a count without texts");
    options.must_win_count = 0;
    options.lexicon = "/no/such/lexicon";
    expect(-10003, "/no/such/lexicon");
    options.lexicon = nullptr;
    expect(-10001, "options name no lexicon");
    options.size = 0;
    expect(-10001, "options need their size");
    options = {sizeof options, dir.path().c_str(), nullptr, 0, nullptr, nullptr, 0, 0, nullptr, nullptr, nullptr,
               nullptr};
    options.progress = [](void*, char const*, std::size_t, std::size_t) { return 1; };
    expect(-10004, "stopped by the caller");
    Compiled const none(tavo_compile_words(nullptr, 1, &options), &tavo_compiled_free);
    EXPECT_TRUE(contains(none->fault_cause[0], "no words"));
    tavo_compiled_free(nullptr);
}

TEST_F(FlatCompile, OptionsOfAnOlderCallerEndBefore) {
    options.size = offsetof(tavo_compile_options_t, output);
    options.output = "no/such/folder/x";
    EXPECT_EQ(compile("d,Noun,5\n")->code, 0);
}

TEST_F(FlatCompile, PartsOfSpeech) {
    std::unique_ptr<tavo_pos_list_t, decltype(&tavo_pos_list_free)> list(tavo_pos_list(dir.path().c_str()),
                                                                         &tavo_pos_list_free);
    ASSERT_EQ(list->code, 0) << list->error;
    ASSERT_EQ(list->count, 6U);
    EXPECT_STREQ(list->name[3], "Noun");
    EXPECT_STREQ(list->name[5], "Tail:Kana-2");
    EXPECT_STREQ(list->display_name[5], "Tail");
    list.reset(tavo_pos_list(nullptr));
    EXPECT_EQ(list->code, -10001);
    list.reset(tavo_pos_list("/no/such/lexicon"));
    EXPECT_EQ(list->code, -10003);
    EXPECT_EQ(list->count, 0U);
    EXPECT_TRUE(contains(list->error, "/no/such/lexicon"));
}

}  // namespace
}  // namespace TAVO::test
