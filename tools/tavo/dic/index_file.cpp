#include "dic/index_file.hpp"

#include "cli/file_io.hpp"
#include "cli/lexicon.hpp"
#include "cli/new_file.hpp"
#include "cli/tool_error.hpp"

#include "dic/conn_table.hpp"
#include "dic/dic.hpp"
#include "dic/index/index_pool.hpp"
#include "dic/pools.hpp"

#include <tavo/error.hpp>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <string_view>

namespace tool {

namespace {

void write(std::string const& path, std::vector<std::uint64_t> const& bytes) {
    NewFile file(TAVO::indexPath(path));
    file.stream().write(reinterpret_cast<char const*>(bytes.data()),
                        static_cast<std::streamsize>(bytes.size() * sizeof bytes[0]));
    file.commit();
}

/// Where the index file of @p path differs from @p made; empty where it does not, or where there is none.
std::string difference(std::string const& path, std::vector<std::uint64_t> const& made) {
    std::string const index = TAVO::indexPath(path);
    if (!std::filesystem::exists(index)) return {};
    std::string const found = readFile(index);
    std::string_view const expected(reinterpret_cast<char const*>(made.data()), made.size() * sizeof made[0]);
    if (found == expected) return {};
    auto const at = std::mismatch(found.begin(), found.end(), expected.begin(), expected.end()).first - found.begin();
    return index + ": offset " + std::to_string(at) +
           ": it is not the index of these files; write it anew with tavo dic index";
}

}  // namespace

void writeConnIndex(std::string const& connTable) {
    TAVO::ConnTable const table(false, connTable.c_str());
    write(connTable, TAVO::makeConnIndex(table));
}

void writeDicIndexes(std::string const& connTable, std::vector<std::string> const& dictionaries) {
    TAVO::ConnTable const table(false, connTable.c_str());
    TAVO::IndexPool pool;
    std::shared_ptr<TAVO::ConnIndex const> const conn = pool.connIndex(table);
    for (std::string const& path : dictionaries)
        namingDictionary(path, [&] {
            TAVO::Dic const dic(true, path.c_str());
            if (dic.trie() == nullptr) throw TAVO::illegal_format(path);
            write(path, TAVO::makeDicIndex(dic, table, *conn));
        });
}

void warnOfRefusedIndexes() {
    for (TAVO::IndexPool::Refused const& refused : TAVO::sharedPools().indexes.refused()) {
        bool const isStale = refused.fault == TAVO::IndexFault::kStale;
        complain(refused.path + (isStale ? ": is the index of other files" : ": is damaged or of another version") +
                 "; an index was made in memory. Write it anew: tavo dic index -c CONNTABLE [DIC...]");
    }
}

std::string faultOfIndex(std::string const& connTable, std::string const& dictionary) {
    TAVO::ConnTable const table(false, connTable.c_str());
    TAVO::IndexPool pool;
    TAVO::Dic const dic(true, dictionary.c_str());
    if (dic.trie() == nullptr) return {};
    return difference(dictionary, TAVO::makeDicIndex(dic, table, *pool.connIndex(table)));
}

std::string faultOfConnIndex(std::string const& connTable) {
    return difference(connTable, TAVO::makeConnIndex(TAVO::ConnTable(false, connTable.c_str())));
}

}  // namespace tool
