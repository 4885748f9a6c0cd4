// Index files that are sound, stale, damaged or cut: what is taken, and that no byte of one can do harm.
#include "dic/index/index_pool.hpp"

#include "dic/pools.hpp"
#include "engine/lattice.hpp"
#include "support/random_world.hpp"
#include "support/small_world.hpp"
#include "support/testing.hpp"

namespace TAVO::test {
namespace {

namespace fs = std::filesystem;

class IndexFiles : public testing::Test {
protected:
    IndexFiles() {
        world_.names({"BOS", "EOS", "UNK", "N", "P"}).cost([](unsigned left, unsigned right) -> std::uint8_t {
            return left == 3 || right == 3 ? 254 : right == 5 && left != 4 ? 255 : 10;
        });
        world_.cost(3, 5, 255);
        world_.linesUtf8({"a,N,7", "ab,N,3", "あ,N,9", "あい,N,1", "い,P,2", "い,N,2"});
        paths_ = world_.writeTo(dir_.path());
        writeIndexes();
        sharedPools().dispose();
    }
    ~IndexFiles() override { sharedPools().dispose(); }

    void writeIndexes() {
        ConnTable const table(false, paths_.connTable.c_str());
        DicSet dics;
        dics.addDicPath(paths_.dic.c_str(), false, &table);
        std::vector<std::uint64_t> const ofTable = makeConnIndex(table);
        ConnIndex const conn(IndexImage::own(std::vector<std::uint64_t>(ofTable), ConnIndex::kMagic));
        write(paths_.connTable, ofTable);
        write(paths_.dic, makeDicIndex(*dics.entries().front().dic, table, conn));
    }
    static void write(std::string const& path, std::vector<std::uint64_t> const& index) {
        writeFile(indexPath(path), {reinterpret_cast<char const*>(index.data()), index.size() * 8});
    }
    /// What is written anew is younger than the index, whatever the clock's steps.
    void touch(std::string const& path) {
        fs::last_write_time(path, fs::last_write_time(indexPath(path)) + std::chrono::seconds(2));
    }

    struct Seen {
        std::vector<IndexFault> refused;
        std::string words;  // lengths of the words of all paths
    };
    Seen analyse() {
        ConnTable const table(false, paths_.connTable.c_str());
        DicSet dics;
        dics.addDicPath(paths_.dic.c_str(), false, &table);
        Lattice lattice(0);
        std::size_t const known = sharedPools().indexes.refused().size();
        Seen seen;
        for (std::string const& text : texts_) {
            Sentence sentence;
            sentence.text = text;
            lattice.build(sentence, &table, dics);
            std::size_t length = 0;
            for (LatticeNode const* node : bestPath(sentence)) {
                seen.words += std::to_string(node->length) + "/" + std::to_string(MrphDic(node->record).pid()) + " ";
                length += node->length;
            }
            EXPECT_TRUE(length == text.size() || length == 0);
        }
        auto const& refused = sharedPools().indexes.refused();
        for (std::size_t i = known; i != refused.size(); ++i) seen.refused.push_back(refused[i].fault);
        lattice.clear();
        return seen;
    }

    TempDir dir_;
    SmallWorld world_;
    SmallWorld::Paths paths_;
    std::vector<std::string> texts_{toSjis("ababcあいあ\tいいab"), "\x82", std::string("\0\r\xA0\x81\x81", 5),
                                    toSjis("あいあいあいあい")};
};

using Faults = std::vector<IndexFault>;

TEST_F(IndexFiles, AreTakenWhenTheyAreThoseOfTheirFiles) {
    Seen const fromFiles = analyse();
    EXPECT_EQ(fromFiles.refused, Faults{});
    sharedPools().dispose();
    touch(paths_.dic);  // younger, but of the same content
    touch(paths_.connTable);
    EXPECT_EQ(analyse().refused, Faults{});
    sharedPools().dispose();
    fs::remove(indexPath(paths_.dic));
    fs::remove(indexPath(paths_.connTable));
    Seen const made = analyse();
    EXPECT_EQ(made.refused, Faults{});  // none is there to refuse
    EXPECT_EQ(made.words, fromFiles.words);
}

TEST_F(IndexFiles, OfOtherFilesAreStale) {
    std::string const before = analyse().words;
    sharedPools().dispose();
    std::string const table = readFile(paths_.connTable);
    world_.cost(4, 4, 200);  // the same size
    writeFile(paths_.connTable, serializeConnTable(world_.connTable()));
    touch(paths_.connTable);
    EXPECT_EQ(analyse().refused, (Faults{IndexFault::kStale, IndexFault::kStale}));
    sharedPools().dispose();
    writeFile(paths_.connTable, table);
    world_.line("abc,N,1");
    writeFile(paths_.dic, world_.dictionary());
    Seen const other = analyse();
    EXPECT_EQ(other.refused, Faults{IndexFault::kStale});
    EXPECT_NE(other.words, before);
}

TEST_F(IndexFiles, CutOnesAreDamaged) {
    for (std::string const& path : {paths_.dic, paths_.connTable}) {
        std::string const index = readFile(indexPath(path));
        for (std::size_t const size : {std::size_t{0}, std::size_t{63}, index.size() / 2, index.size() - 1}) {
            writeFile(indexPath(path), index.substr(0, size));
            EXPECT_EQ(analyse().refused, Faults{IndexFault::kDamaged}) << path << " of " << size;
            sharedPools().dispose();
        }
        writeFile(indexPath(path), index);
    }
}

// Sections are not summed up: a changed bit may change results, but nothing outside the file is read.
TEST_F(IndexFiles, ChangedBitsDoNoHarm) {
    Random random(1);
    for (std::string const& path : {paths_.dic, paths_.connTable}) {
        std::string const index = readFile(indexPath(path));
        std::vector<std::size_t> places;  // bytes of 0 are most; some of them
        for (std::size_t i = 0; i != index.size(); ++i)
            if (random.oneIn(index[i] != 0 && index.size() - i > 1 ? 40 : 400)) places.push_back(i);
        ASSERT_GT(places.size(), 10U);
        for (std::size_t const place : places) {
            std::string changed = index;
            changed[place] = static_cast<char>(changed[place] ^ (1 << random.below(8)));
            if (random.oneIn(2)) changed[place] = static_cast<char>(0xFF);
            writeFile(indexPath(path), changed);
            SCOPED_TRACE(path + ", byte " + std::to_string(place));
            analyse();
            sharedPools().dispose();
        }
        writeFile(indexPath(path), index);
    }
}

}  // namespace
}  // namespace TAVO::test
