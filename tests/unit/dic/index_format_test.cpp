// The example of docs/format-search-index.md, byte by byte.
#include "dic/conn_table.hpp"
#include "dic/dic.hpp"
#include "dic/index/index_pool.hpp"
#include "support/docs_page.hpp"
#include "support/small_world.hpp"
#include "support/temp_dir.hpp"
#include "support/testing.hpp"

#include <map>

namespace TAVO::test {
namespace {

struct Excerpt {
    std::size_t size = 0;  // of the whole file
    std::map<std::size_t, std::vector<unsigned>> lines;
};

/// "`NAME`, SIZE bytes:" begins an excerpt, "    OFFSET  BYTES   comment" is a line of it.
std::map<std::string, Excerpt> readExample() {
    std::istringstream page(docsPage("format-search-index.md"));
    std::map<std::string, Excerpt> found;
    Excerpt* excerpt = nullptr;
    for (std::string line; std::getline(page, line);) {
        std::size_t const name = line.find("`, 0x");
        if (line.starts_with('`') && name != std::string::npos) {
            excerpt = &found[line.substr(1, name - 1)];
            excerpt->size = std::stoul(line.substr(name + 3), nullptr, 16);
        } else if (excerpt != nullptr && line.starts_with("    ")) {
            std::istringstream fields(line.substr(0, line.find("   ", 11)));
            std::size_t offset = 0;
            fields >> std::hex >> offset;
            for (unsigned byte = 0; fields >> byte;) excerpt->lines[offset].push_back(byte);
        }
    }
    return found;
}

void expectExcerpt(Excerpt const& excerpt, std::vector<std::uint64_t> const& index) {
    auto const* const bytes = reinterpret_cast<unsigned char const*>(index.data());
    EXPECT_EQ(index.size() * 8, excerpt.size);
    EXPECT_GE(excerpt.lines.size(), 17U);
    for (auto const& [offset, expected] : excerpt.lines) {
        ASSERT_LE(offset + expected.size(), index.size() * 8);
        ASSERT_FALSE(expected.empty()) << std::hex << offset;
        std::vector<unsigned> const seen(bytes + offset, bytes + offset + expected.size());
        EXPECT_EQ(seen, expected) << "at " << std::hex << offset;
    }
}

TEST(IndexFormat, IsThatOfTheDocumentedExample) {
    SmallWorld world;
    unsigned char const costs[4][4] = {{255, 0, 254, 10}, {255, 255, 254, 30}, {255, 255, 254, 254}, {255, 5, 254, 30}};
    world.names({"BOS", "EOS", "UNK", "N"}).cost([&](unsigned left, unsigned right) {
        return costs[left - 1][right - 1];
    });
    world.linesUtf8({"a,N,7", "ab,N,3", "あ,N,9"});
    TempDir const folder;
    SmallWorld::Paths const paths = world.writeTo(folder.path());
    ConnTable const table(false, paths.connTable.c_str());
    Dic const dic(false, paths.dic.c_str());
    std::vector<std::uint64_t> connIndex = makeConnIndex(table);
    std::map<std::string, Excerpt> const example = readExample();
    ASSERT_EQ(example.size(), 2U);
    expectExcerpt(example.at("ConnTable.idx"), connIndex);
    ConnIndex const conn(IndexImage::own(std::move(connIndex), ConnIndex::kMagic));
    expectExcerpt(example.at("SysDic.idx"), makeDicIndex(dic, table, conn));
}

}  // namespace
}  // namespace TAVO::test
