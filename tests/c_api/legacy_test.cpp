// The older functions: one analyser of the process, set up by the environment.
#include "support/small_world.hpp"
#include "support/testing.hpp"

#include <tavo/tavo.h>
#include <tavo/tavo_legacy.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

extern "C" int useLegacy(char const* user, char const* otherUser, char const* system, char const* source);

namespace TAVO::test {
namespace {

/// "a" is of part of speech @p pos here; all worlds have one connection table.
SmallWorld wordsOf(std::string_view pos, std::initializer_list<std::string_view> more = {}) {
    SmallWorld world;
    world.namesUtf8({"Begin", "End", "Undef", "Noun", "Verb", "Tail"}).cost([](unsigned, unsigned) { return 10; });
    world.linesUtf8({"a," + std::string(pos) + ",5,"}).linesUtf8(more);
    return world;
}

class LegacyFunctions : public ::testing::Test {
protected:
    void SetUp() override {
        for (char const* folder : {"lexicon", "user", "other"}) std::filesystem::create_directory(at(folder));
        system = worldIn("lexicon", wordsOf("Noun", {"b,Noun,5,", "ab,Noun,200,"}));
        user = worldIn("user", wordsOf("Verb"));
        other = worldIn("other", wordsOf("Tail"));
        set("TAVO_PATH", at("lexicon"));
        set("TAVO_PATH_USR", user.dic);
    }
    void TearDown() override {
        tavofinish();
        for (char const* name : {"TAVO_PATH", "TAVO_PATH_USR", "TAVO_CONVERT", "TAVO_REDUCE"}) unsetenv(name);
        tavo_dispose();
    }
    std::string at(std::string const& name) const { return dir.path() + "/" + name; }
    static void set(char const* name, std::string const& value) { ASSERT_EQ(setenv(name, value.c_str(), 1), 0); }
    /// Connections of a path cost 0, so that word costs decide.
    SmallWorld::Paths worldIn(char const* folder, SmallWorld world) const {
        return world.cost([](unsigned, unsigned) { return 0; }).writeTo(at(folder));
    }
    void writeFile(std::string const& name, std::string const& text) const { std::ofstream(at(name)) << text; }
    static std::string error() {
        char text[256] = "";
        EXPECT_GE(tavoerror(text, sizeof text), 0);
        return text;
    }

    TempDir dir;
    SmallWorld::Paths system, user, other;
};

TEST_F(LegacyFunctions, ServeAWholeUse) {
    writeFile("lexicon/tavo.ini",
              "Dic=" + system.dicSpec() + "\nConnTable=" + system.connTable + "\nOutputFormat=%w/%H,\nEOS=.\n");
    EXPECT_EQ(useLegacy(user.dic.c_str(), other.dic.c_str(), system.dic.c_str(), system.dicSpec().c_str()), 0)
        << error();
}

TEST_F(LegacyFunctions, TakeTheFilesOfTheFolderWithoutAnInitFile) {
    set("TAVO_PATH", at("lexicon/"));
    ASSERT_EQ(tavoinit(), 0) << error();
    char out[64];
    EXPECT_EQ(tavoexec("a", out, sizeof out), 33);
    EXPECT_STREQ(out, "a          Verb                 \n");
}

TEST_F(LegacyFunctions, KeepTheAnalyserWhenAnotherCannotBeMade) {
    ASSERT_EQ(tavoinit(), 0) << error();
    writeFile("lexicon/tavo.ini", "Dic=" + at("missing") + "\n");
    EXPECT_EQ(tavoinit(), -10003);
    EXPECT_NE(error().find("missing"), std::string::npos) << error();
    EXPECT_GT(tavoexec("a", nullptr, 0), 0);
    std::filesystem::remove(at("lexicon/tavo.ini"));
    for (char const* rules : {"TAVO_CONVERT", "TAVO_REDUCE"}) {
        set(rules, at("no.rules"));
        EXPECT_EQ(tavoinit(), -10003) << rules;
        unsetenv(rules);
    }
}

TEST_F(LegacyFunctions, RebuildFromANewerSource) {
    ASSERT_EQ(tavoinit(), 0) << error();
    ASSERT_EQ(tavousrjisho(user.dicSpec().c_str()), 0) << error();
    ASSERT_EQ(tavooption("OutputFormat", "%H"), 0);
    ASSERT_EQ(tavoremake_start(user.dic.c_str()), 0);
    EXPECT_EQ(tavoremake_start(system.dic.c_str()), -10008);
    char out[64];
    ASSERT_EQ(tavoexec("a", out, sizeof out), 4);
    EXPECT_STREQ(out, "Noun");
    std::ofstream(user.source) << "a,Tail,5,\n";
    std::filesystem::last_write_time(user.source, std::filesystem::last_write_time(user.dic) + std::chrono::seconds(2));
    EXPECT_EQ(tavoremake_end(), 1) << error();
    ASSERT_EQ(tavoexec("a", out, sizeof out), 4);
    EXPECT_STREQ(out, "Tail");
}

}  // namespace
}  // namespace TAVO::test
