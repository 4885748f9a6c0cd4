// Damaged dictionaries: nothing reads outside the image, everything
// ends. The image stands in front of a page that cannot be read; the sanitizer
// build sees the rest.
#include <tavo/error.hpp>

#include "dic/dic.hpp"
#include "dic/dic_check.hpp"
#include "dic/record_source.hpp"
#include "support/guarded_bytes.hpp"
#include "support/small_world.hpp"
#include "support/testing.hpp"

#include <random>

namespace TAVO::test {
namespace {

SmallWorld richWorld() {
    SmallWorld made;
    made.namesUtf8({"文頭", "文末", "未定義", "名詞", "助詞"});
    made.linesUtf8(
        {"東,名詞,10,ヒガシ", "東京,名詞,20,トウ(キョウ|キョー)", "東京-都,名詞-名詞-助詞,30,トウキョウ-ト,東京-都",
         "と,助詞,5,ト,,@L,R1,組,1:2:3,4,5:6,韻律,拡張1,,拡張3", "と,名詞,7", "a,名詞,1", "国際連合,名詞,40,,,,,,9"});
    for (int i = 0; i < 40; ++i) {
        std::string line{'w', static_cast<char>('a' + i % 13)};
        made.line(line.append(std::to_string(i)).append(",").append(toSjis("名詞")));
    }
    return made;
}

void readRecord(RecordChain chain, std::size_t& bytesSeen) {
    // Bounded, since damage can make many keys share long chains.
    for (int i = 0; chain && i < 1000; chain = chain.next(), ++i) {
        MrphDic const record = chain.record();
        for (unsigned part = 0; part < record.partCount(); ++part) bytesSeen += record.partPid(part);
        for (char const* const text : {record.partForm(), record.readPron(), record.stdForm(), record.wordCooc(),
                                       record.groupCooc(), record.group(), record.prosodicInfo()}) {
            bytesSeen += std::string_view(text).size();
        }
        for (unsigned list = 0; list <= 4; ++list) bytesSeen += record.category(list).size();
        for (char const* const text : record.ext()) bytesSeen += std::string_view(text).size();
    }
}

/// Everything that can be asked of a trie over the bytes behind the names.
std::size_t exercise(std::string_view image) {
    std::size_t seen = checkDic(image).size();
    if (image.size() <= 16) return seen;
    std::size_t const position = loadU32(asBytes(image.data()) + 4);
    if (position > image.size()) return seen;
    DicTrie const trie(asBytes(image.data()) + position, image.size() - position);
    trie.visitAll([&](std::string const& key, RecordChain chain) {
        seen += key.size();
        readRecord(chain, seen);
    });
    for (char const* const utf8 : {"東京都と", "とと", "国際連合軍", "wa13", "wb27wb", "aaa", "wm"}) {
        std::string const text = toSjis(utf8);
        GuardedBytes const guarded(text);
        for (std::size_t start = 0; start < text.size(); ++start) {
            trie.prefixSearch(guarded.data() + start, guarded.size() - start,
                              [&](std::size_t length, RecordChain chain) {
                                  EXPECT_LE(length, text.size() - start);
                                  readRecord(chain, seen);
                                  return true;
                              });
        }
        readRecord(trie.exactMatch(guarded.data(), guarded.size()), seen);
    }
    return seen;
}

TEST(CorruptImage, ADictionaryCutAnywhereIsSafe) {
    std::string const whole = richWorld().dictionary();
    EXPECT_EQ(checkDic(whole), std::vector<std::string>{});
    for (std::size_t length = 0; length < whole.size(); length += length < 200 ? 1 : 7) {
        GuardedBytes const image(std::string_view(whole).substr(0, length));
        exercise(image.view());
        EXPECT_FALSE(checkDic(image.view()).empty()) << "cut at " << length;
    }
}

TEST(CorruptImage, RandomFlipsAreSafe) {
    constexpr unsigned kSeed = 4711;
    std::mt19937 random(kSeed);
    std::string const whole = richWorld().dictionary();
    std::size_t const trie = loadU32(asBytes(whole.data()) + 4);
    for (int round = 0; round < 3000; ++round) {
        SCOPED_TRACE("seed " + std::to_string(kSeed) + ", round " + std::to_string(round));
        std::string bytes = whole;
        for (std::size_t flips = 1 + random() % (round % 5 == 0 ? 200 : 4); flips > 0; --flips) {
            // Half of them where the cells and records of this small trie are.
            std::size_t const position = random() % 2 == 0 ? random() % bytes.size() : trie + random() % 8;
            bytes[random() % 3 == 0 ? position : bytes.size() - 1 - random() % 1500] = static_cast<char>(random());
        }
        GuardedBytes const image(bytes);
        exercise(image.view());
    }
}

TEST(CorruptImage, LoadingDamagedDictionariesIsSafe) {
    constexpr unsigned kSeed = 12;
    std::mt19937 random(kSeed);
    TempDir const dir;
    std::string const whole = richWorld().dictionary();
    std::size_t loaded = 0;
    for (int round = 0; round < 300; ++round) {
        SCOPED_TRACE("seed " + std::to_string(kSeed) + ", round " + std::to_string(round));
        std::string bytes = whole.substr(0, round % 2 == 0 ? whole.size() : random() % whole.size());
        for (int flips = 0; flips < 6 && !bytes.empty(); ++flips)
            bytes[random() % std::min<std::size_t>(bytes.size(), 80)] = static_cast<char>(random() % 8);
        std::string const path = dir.write("dic", bytes);
        try {
            Dic const dic(round % 3 == 0, path.c_str());
            for (std::uint32_t id = 0; id <= dic.nameCount() + 1U; ++id)
                EXPECT_LE(std::string_view(dic.getPartOfSPName(id)).size(), bytes.size());
            if (dic.trie() == nullptr) continue;
            ++loaded;
            dic.trie()->visitAll([&](std::string const& key, RecordChain chain) {
                EXPECT_FALSE(formatSourceLine(key, chain.record(), dic).empty());
            });
        } catch (std::runtime_error const&) {
            // Refused by version, character type or length.
        }
    }
    EXPECT_GT(loaded, 10U);
}

}  // namespace
}  // namespace TAVO::test
