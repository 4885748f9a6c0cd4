#include "dic/dic.hpp"

#include <gtest/gtest.h>
#include <tavo/error.hpp>

#include "support/encoding.hpp"
#include "support/small_world.hpp"
#include "support/temp_dir.hpp"

#include <string>
#include <utility>
#include <vector>

namespace TAVO::test {
namespace {

SmallWorld world() {
    SmallWorld made;
    made.namesUtf8({"文頭", "文末", "未定義", "名詞", "助詞"});
    made.linesUtf8(
        {"東,名詞,10,ヒガシ", "東京,名詞,20,トウキョウ", "東京都,名詞,30,トウキョウト", "と,助詞,5", "と,名詞,7"});
    return made;
}

std::vector<std::pair<std::size_t, std::uint16_t>> prefixes(Dic const& dic, std::string const& text) {
    std::vector<std::pair<std::size_t, std::uint16_t>> found;
    dic.trie()->prefixSearch(asBytes(text.data()), text.size(), [&](std::size_t length, RecordChain chain) {
        for (; chain; chain = chain.next()) found.emplace_back(length, chain.record().cost());
        return true;
    });
    return found;
}

TEST(DicTest, FindsPrefixesShortestFirst) {
    TempDir const dir;
    std::string const path = world().writeTo(dir.path()).dic;
    for (bool const memoryMapped : {false, true}) {
        Dic const dic(memoryMapped, path.c_str());
        using Found = std::vector<std::pair<std::size_t, std::uint16_t>>;
        EXPECT_EQ(prefixes(dic, toSjis("東京都と")), (Found{{2, 10}, {4, 20}, {6, 30}}));
        EXPECT_EQ(prefixes(dic, toSjis("東京と")), (Found{{2, 10}, {4, 20}}));
        EXPECT_EQ(prefixes(dic, toSjis("とと")), (Found{{2, 5}, {2, 7}}));
        EXPECT_EQ(prefixes(dic, toSjis("西")), Found{});
    }
}

}  // namespace
}  // namespace TAVO::test
