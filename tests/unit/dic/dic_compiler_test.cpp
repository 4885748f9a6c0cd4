#include "dic/dic_compiler.hpp"

#include <fcntl.h>

#include "base/crc32.hpp"
#include "dic/dic_check.hpp"
#include "dic/file_access.hpp"
#include "support/testing.hpp"

namespace TAVO::test {
namespace {

using namespace std::string_literals;

std::string compiled(DicCompiler& compiler) {
    std::ostringstream out;
    EXPECT_TRUE(compiler.compile(out, false)) << compiler.error();
    return out.str();
}

TEST(DicCompilerTest, WritesTheDocumentedBytes) {
    DicCompiler compiler({"BOS", "EOS", "UNK", "N"});
    for (char const* line : {"ab,N,7", "a,N,1", "a,UNK,2,r", "acde,N"}) ASSERT_TRUE(compiler.add(line)) << line;
    std::string const bytes = compiled(compiler);
    std::string const pool = "BOS\0EOS\0UNK\0N\0"s;
    std::string header = "\x02\x01\0\0\x32\0\0\0\x04\0\0\0"s;
    appendU32(header, crc32(pool));
    std::string const offsets = "\0\0\0\0\x04\0\0\0\x08\0\0\0\x0C\0\0\0"s;
    ASSERT_EQ(bytes.substr(0, 50), header + "\0\0\0\0"s + offsets + pool);

    std::string const trie = bytes.substr(50);
    // One node: base 1 is the lowest for the labels 0, "b" and "c".
    std::size_t const usedCells = 1 + 'c' + 1;
    std::size_t const leafOffset = 1032 + 4 * (usedCells + 255);
    EXPECT_EQ(loadU32(asBytes(trie.data())), 1032U);
    EXPECT_EQ(loadU32(asBytes(trie.data()) + 4), leafOffset);
    auto const cell = [&trie](std::size_t index) { return loadU32(asBytes(trie.data()) + 1032 + 4 * index); };
    EXPECT_EQ(loadU32(asBytes(trie.data()) + 8 + 4 * 'a'), 1U);
    EXPECT_EQ(cell(1), 0x00800000U);
    EXPECT_EQ(cell(1 + 'b'), 0x62800005U);
    EXPECT_EQ(cell(1 + 'c'), 0x63800008U);
    std::string const leaf = trie.substr(leafOffset);
    EXPECT_EQ(leaf,
              "\x08\0\x04\0\x01\0\0\x01"s        // a: N, another follows
              "\x0A\0\x03\0\x02\0\x80\0r\0"s     // a: UNK with a reading
              "\0\0"s                            // up to a multiple of 4
              "\0\x08\0\x04\0\x07\0\0\0\0\0\0"s  // ab: an empty tail
              "\x02"
              "de\x08\0\x04\0\x64\0\0\0"s);
    EXPECT_TRUE(checkDic(bytes).empty());
}

TEST(DicCompilerTest, ALineMayBeAddedAfterCompiling) {
    DicCompiler both({"N"});
    ASSERT_TRUE(both.add("b,N"));
    compiled(both);
    ASSERT_TRUE(both.add("a,N"));
    DicCompiler once({"N"});
    ASSERT_TRUE(once.add("a,N"));
    ASSERT_TRUE(once.add("b,N"));
    EXPECT_EQ(compiled(both), compiled(once));
}

TEST(DicCompilerTest, TellsItsProgressWhenAsked) {
    DicCompiler compiler({"N"});
    for (int i = 0; i < 20001; ++i) ASSERT_TRUE(compiler.add(std::string("a").append(std::to_string(i)).append(",N")));
    ASSERT_TRUE(compiler.add("b,N"));
    std::ostringstream out;
    EXPECT_EQ(stderrOf([&] { EXPECT_TRUE(compiler.compile(out, true)); }),
              "Serializing Data.....Done\nBuilding Trie.....Done\nWriting Dic...Done\n");
    EXPECT_EQ(stderrOf([&] { EXPECT_TRUE(compiler.compile(out, false)); }), "");
}

TEST(DicCompilerTest, HasNoIdsFor65535Names) {
    DicCompiler tooMany(std::vector<std::string>(65535, "N"));
    std::ostringstream out;
    EXPECT_EQ(stderrOf([&] { EXPECT_FALSE(tooMany.compile(out, true)); }), "Error: Too Much PartOfSP\n");
    EXPECT_EQ(tooMany.error(), "Error: Too Much PartOfSP");
    EXPECT_EQ(out.str(), "");
}

TEST(DicCompilerTest, FailsWhenTheOutputDoes) {
    DicCompiler compiler({"N"});
    ASSERT_TRUE(compiler.add("a,N"));
    std::ostringstream out;
    out.setstate(std::ios::badbit);
    EXPECT_FALSE(compiler.compile(out, false));
    EXPECT_FALSE(compiler.compile(-1, false));
    int const full = ::open("/dev/full", O_WRONLY);
    EXPECT_FALSE(compiler.compile(full, false));
    FileClose(full);
}

TEST(DicCompilerTest, TheLaterIdOfANameCounts) {
    DicCompiler compiler({"N", "M", "N"});
    ASSERT_TRUE(compiler.add("a,N"));
    TempDir const dir;
    Dic const dic(false, dir.write("dic", compiled(compiler)).c_str());
    EXPECT_EQ(dic.trie()->exactMatch(asBytes("a"), 1).record().pid(), 3);
}

std::string written(TrieBuilder const& builder) {
    std::string bytes;
    EXPECT_TRUE(builder.write([&bytes](std::string_view part) {
        bytes += part;
        return true;
    }));
    return bytes;
}

std::string const kRecord = "\x08\0\x01\0\0\0\0\0"s;

TEST(TrieBuilderTest, KeysOfAnyLengthAreFound) {
    // Tails longer than 255 bytes, alone and with a neighbour that leaves late.
    std::vector<std::string> forms;
    for (std::size_t const length : {1U, 2U, 256U, 257U, 258U, 511U, 512U, 513U, 4096U, 70000U}) {
        std::string form(length, 'x');
        form.front() = static_cast<char>('a' + forms.size());
        forms.push_back(std::move(form));
    }
    forms.push_back(std::string(300, 'z'));
    forms.push_back(std::string(300, 'z') + std::string(300, 'y'));
    std::vector<TrieKey> keys;
    for (std::string const& form : forms) keys.push_back({form, kRecord});
    TrieBuilder builder;
    ASSERT_TRUE(builder.init(0, TrieBuilder::kDefaultLeafBytes));
    ASSERT_TRUE(builder.build(keys, false)) << builder.error();
    std::string const bytes = written(builder);
    DicTrie const trie(asBytes(bytes.data()), bytes.size());
    for (std::string const& form : forms) {
        EXPECT_TRUE(trie.exactMatch(asBytes(form.data()), form.size())) << form.size();
        EXPECT_FALSE(trie.exactMatch(asBytes(form.data()), form.size() - 1)) << form.size();
        std::string const longer = form + "!";
        EXPECT_FALSE(trie.exactMatch(asBytes(longer.data()), longer.size())) << form.size();
    }
    std::vector<std::string> visited;
    trie.visitAll([&](std::string const& key, RecordChain) { visited.push_back(key); });
    EXPECT_EQ(visited, forms);
}

TEST(TrieBuilderTest, BuildsOnce) {
    std::vector<TrieKey> const keys{{"a", kRecord}};
    TrieBuilder builder;
    ASSERT_TRUE(builder.init(0, 0));
    EXPECT_TRUE(builder.build(keys, false));
    EXPECT_EQ(stderrOf([&] { EXPECT_FALSE(builder.build(keys, true)); }), "Error: Cannot Rebuild Trie\n");
}

TEST(TrieBuilderTest, RefusesKeysOutOfOrder) {
    for (std::vector<TrieKey> const& keys : {std::vector<TrieKey>{{"b", kRecord}, {"a", kRecord}},
                                             {{"a", kRecord}, {"a", kRecord}},
                                             {{"", kRecord}},
                                             {{std::string_view("a\0b", 3), kRecord}}}) {
        TrieBuilder builder;
        ASSERT_TRUE(builder.init(0, 0));
        EXPECT_FALSE(builder.build(keys, false));
        EXPECT_EQ(builder.error(), "Error: Keys Not In Ascending Order");
    }
}

TEST(TrieBuilderTest, RefusesALeafAreaThatPositionsCannotReach) {
    // Positions are kept in 23 bits as multiples of 4: 32 MiB.
    std::string const chain(16 << 20, '\0');
    std::vector<TrieKey> const fits{{"a", chain}, {"b", chain}};
    std::vector<TrieKey> const tooLarge{{"a", chain}, {"b", chain}, {"c", kRecord}};
    TrieBuilder builder;
    ASSERT_TRUE(builder.init(0, 0));
    EXPECT_TRUE(builder.build(fits, false)) << builder.error();
    TrieBuilder refusing;
    ASSERT_TRUE(refusing.init(0, 0));
    EXPECT_EQ(stderrOf([&] { EXPECT_FALSE(refusing.build(tooLarge, true)); }),
              "Building Trie.....Error: Too Much Leaf Data: the format has room for 33554432 bytes\n"
              "Error: TrieBuilder::makeIndex(): -2\n");
    EXPECT_EQ(refusing.error(), "Error: Too Much Leaf Data: the format has room for 33554432 bytes");
}

TEST(TrieBuilderTest, RefusesMoreNodesThanBasesAreThere) {
    // One node per byte, since a tail holds 255 bytes at most.
    std::string const form((1 << 23) + 300, 'a');
    std::vector<TrieKey> const keys{{form, kRecord}};
    TrieBuilder builder;
    ASSERT_TRUE(builder.init(0, 0));
    EXPECT_FALSE(builder.build(keys, false));
    EXPECT_EQ(builder.error(), "Error: Too Many Trie Cells: the format has room for 8388608");
}

}  // namespace
}  // namespace TAVO::test
