// The largest of everything: what is at a limit works, what is beyond is refused and
// leaves the analyser as it was.
#include "dic/dic_check.hpp"
#include "dic/dic_compiler.hpp"
#include "dic/file_access.hpp"
#include "dic/pools.hpp"
#include "engine/lattice.hpp"
#include "support/describe.hpp"
#include "support/process_usage.hpp"
#include "support/small_world.hpp"
#include "support/testing.hpp"

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>

namespace TAVO::test {
namespace {

namespace fs = std::filesystem;

class Limits : public testing::Test {
protected:
    Limits() {
        world_.names({"BOS", "EOS", "UNK", "N"}).cost([](unsigned, unsigned) { return 9; }).line("a,N,40");
    }
    ~Limits() override { sharedPools().dispose(); }

    void attach(bool mapped = false) {
        paths_ = world_.writeTo(dir_.path());
        paths_.attachTo(tavo_, mapped);
    }
    std::string formatted(std::string const& text, char const* format) {
        tavo_.analyze(text);
        return describe(morphemesOf(tavo_), format);
    }
    /// Attaches the dictionary under @p count names more.
    void attachNames(int count, bool mapped) {
        for (int i = 0; i < count; ++i) {
            std::string const name = dir_.file("name" + std::to_string(i));
            fs::create_hard_link(paths_.dic, name);
            tavo_.addDicPath(name.c_str(), mapped);
        }
    }

    TempDir dir_;
    SmallWorld world_;
    SmallWorld::Paths paths_;
    Tavo tavo_;
};

/// @p first and then @p next as often as makes 255.
std::string listOf255(std::string first, std::string_view next) {
    for (int i = 1; i < 255; ++i) first += next;
    return first;
}

TEST_F(Limits, OfOneWord) {
    std::string const longReading(65526, 'r'), longForm = "c" + std::string(59999, 'd'), manyParts(255, 'b');
    Table<char const*, std::string, std::string, char const*, std::string> const cases{
        {"a record of 65535 bytes", "long,N,1," + longReading, "long", "%p", longReading},
        {"255 parts", listOf255("b", "-b") + ",N,1", manyParts, "%w/%c", manyParts + "/1"},
        {"a form of many bytes", longForm + ",N,1", longForm + "a", "%w/%c", longForm + "/1 a/40"},
        {"255 numbers in a list", "list,N,1,,,,,," + listOf255("0", ":65535"), "list", "%C",
         "[" + listOf255("0", ",65535") + "][][]"},
    };
    for (auto const& row : cases) world_.line(std::get<1>(row));
    attach();
    EXPECT_TRUE(checkDic(readFile(paths_.dic)).empty());
    for (auto const& [name, line, text, format, expected] : cases)
        EXPECT_TRUE(formatted(text, format) == expected) << name;
    tavo_.analyze(manyParts);
    EXPECT_EQ(morphemesOf(tavo_).front().getPartCount(), 255);
    tavo_.setDivideWordMode(1);
    tavo_.analyze(manyParts);
    EXPECT_EQ(morphemesOf(tavo_).size(), 255U);
}

TEST_F(Limits, OfRecordsOfOneForm) {
    // Of neighbours with the same part of speech the first alone counts.
    world_.names({"BOS", "EOS", "UNK", "N", "V"}).cost([](unsigned, unsigned) { return 9; });
    for (int i = 0; i < 100000; ++i) {
        int const cost = i == 77777 ? 3 : i == 50000 ? 5 : i == 99999 ? 7 : 200;
        world_.line("many," + std::string(i % 2 == 0 ? "N," : "V,") + std::to_string(cost) + "," + std::to_string(i));
    }
    attach();
    EXPECT_TRUE(checkDic(readFile(paths_.dic)).empty());
    std::string const text = "amany";
    EXPECT_EQ(formatted(text, "%w/%p"), "a/ many/77777");
    tavo_.analyzeNBest(text);
    std::vector<std::vector<Mrph>> paths;
    tavo_.getResultNBest(paths, 0, 3);
    std::string readings;
    for (auto const& path : paths) readings += path.back().format("%p ", "-");
    EXPECT_EQ(readings, "77777 50000 99999 ");
}

TEST_F(Limits, OfNames) {
    // A column for each name, and every one but the last forbidden before most rows.
    ConnTableContent table;
    std::vector<std::string> names;
    for (int i = 1; i <= 65534; ++i) names.push_back(std::to_string(i) + "n");
    table.names = names;
    table.rows = 2;
    table.cols = 65534;
    for (unsigned id = 0; id < 65534; ++id) {
        table.rowIndex.push_back(id == 0 ? 0 : 1);
        table.columnIndex.push_back(static_cast<std::uint16_t>(id));
    }
    table.matrix.assign(std::size_t{2} * 65534, 255);
    table.matrix[65533] = 7;                   // the last name behind the beginning
    table.matrix[std::size_t{65534} + 1] = 8;  // the end behind any
    DicCompiler compiler(names);
    std::string error;
    ASSERT_TRUE(compiler.add("a,65534n,1", error) && compiler.add("a,65533n,0", error)) << error;
    std::ostringstream dic;
    ASSERT_TRUE(compiler.compile(dic, false));
    tavo_.setConnTablePath(dir_.write("table", serializeConnTable(table)).c_str());
    tavo_.addDicPath(dir_.write("dic", dic.str()).c_str(), false);
    EXPECT_EQ(formatted(std::string("a"), "%w/%h/%c"), "a/65534n/1");
}

TEST_F(Limits, OfMappedFiles) {
    attach(true);
    attachNames(static_cast<int>(kMappingSlots) - 1, true);
    std::string const one = dir_.file("one more");
    fs::copy_file(paths_.dic, one);
    EXPECT_EQ(thrown([&] { tavo_.addDicPath(one.c_str(), true); }), "OVERFLOW_MMAP_DESCRIPTOR:");
    EXPECT_EQ(tavo_.getDicCount(), 256);
    EXPECT_EQ(formatted("a", "%w/%c"), "a/40");
    tavo_.addDicPath(one.c_str(), false);
    EXPECT_EQ(tavo_.getDicCount(), 257);
}

TEST_F(Limits, OfMappedFilesOneAfterAnother) {
    attach(true);
    fs::create_directory(dir_.file("more"));
    for (int i = 0; i < 2 * static_cast<int>(kMappingSlots); ++i) {
        std::string const name = dir_.file("more/" + std::to_string(i));
        fs::create_hard_link(paths_.dic, name);
        tavo_.addDicPath(name.c_str(), true);
        tavo_.offDic(name.c_str());
    }
    EXPECT_LE(sharedPools().DIC_POOL.size(), kMappingSlots);
    EXPECT_EQ(sharedPools().DIC_POOL.size(), sharedPools().DIC_USED.size());
    EXPECT_EQ(formatted("a", "%w/%c"), "a/40");
    // A rebuild needs a place of its own where the old dictionary was read.
    tavo_.offDic();
    sharedPools().dispose();
    tavo_.setConnTablePath(paths_.connTable.c_str());
    tavo_.addDicPath(paths_.dic.c_str(), false);
    tavo_.offDic(0);
    tavo_.addDicPath(paths_.dicSpec().c_str(), true);
    for (int i = 0; i < static_cast<int>(kMappingSlots); ++i)
        Tavo().addDicPath(dir_.file("more/" + std::to_string(i)).c_str(), true);
    fs::last_write_time(paths_.source, fs::last_write_time(paths_.dic) + std::chrono::seconds(2));
    EXPECT_EQ(tavo_.updateDic(0), 1);
}

TEST_F(Limits, OfAttachedDictionaries) {
    attach();
    world_.line("b,N,3");
    fs::create_directory(dir_.file("last"));
    SmallWorld::Paths const last = world_.writeTo(dir_.file("last"));
    ProcessUsage const before = ProcessUsage::now();
    attachNames(10000, false);
    tavo_.addDicPath(last.dic.c_str(), false);
    EXPECT_EQ(tavo_.getDicCount(), 10002);
    EXPECT_EQ(formatted("ab", "%w/%c"), "a/40 b/3");
    ProcessUsage const after = ProcessUsage::now();
    EXPECT_LT(after.heapBytes - before.heapBytes, 10000U * 16384);
    EXPECT_EQ(after.descriptors, before.descriptors);
    std::printf("%zu bytes each\n", (after.heapBytes - before.heapBytes) / 10000);
    tavo_.offDic();
    EXPECT_EQ(tavo_.getDicCount(), 0);
}

/// Sums of the longest sentence just fit. Takes gigabytes, so it runs when asked for.
TEST_F(Limits, DISABLED_OfTheLongestSentence) {
    world_.cost([](unsigned, unsigned) { return 254; }).line("b,N,255");
    attach();
    std::string const text(kMaxSentenceBytes, 'b');
    EXPECT_EQ(tavo_.analyze(text), 0);
    std::vector<std::vector<Mrph>> paths;
    std::vector<PathCost> costs;
    tavo_.getResultNBest(paths, costs, 0, 1);
    EXPECT_EQ(paths.front().size(), kMaxSentenceBytes);
    EXPECT_EQ(costs.front().connection, (kMaxSentenceBytes + 1) * 254);
    EXPECT_EQ(costs.front().word, 4294967295U);
}

/// A file system without room, as a process sees it whose files may not grow.
TEST_F(Limits, OfTheDisk) {
    for (int i = 0; i < 100; ++i) world_.line("word" + std::to_string(i) + ",N");
    attach(true);
    std::string const before = readFile(paths_.dic);
    fs::last_write_time(paths_.source, fs::last_write_time(paths_.dic) + std::chrono::seconds(2));
    for (rlim_t const bytes : {rlim_t{0}, rlim_t{1}, rlim_t{before.size() / 2}, rlim_t{before.size() - 1}}) {
        pid_t const child = ::fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            std::signal(SIGXFSZ, SIG_IGN);
            rlimit const limit{bytes, bytes};
            ::setrlimit(RLIMIT_FSIZE, &limit);
            int const code = tavo_.updateDic(0);
            ::_exit(formatted("a", "%w/%c") == "a/40" ? code : 100);
        }
        int status = 0;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 5) << bytes << ' ' << status;
        EXPECT_TRUE(readFile(paths_.dic) == before);
        EXPECT_FALSE(fs::exists(paths_.dic + "_tmp"));
    }
    EXPECT_EQ(tavo_.updateDic(0), 1);
}

}  // namespace
}  // namespace TAVO::test
