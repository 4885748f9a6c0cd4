// Checking, dumping and indexing the files of a lexicon.
#include "lexicon/lexicon_files.hpp"
#include "lexicon/new_file.hpp"
#include "lexicon/user_text.hpp"

#include "base/utf8.hpp"
#include "dic/conn_table.hpp"
#include "dic/dic.hpp"
#include "dic/dic_check.hpp"
#include "dic/index/index_pool.hpp"
#include "dic/pools.hpp"
#include "dic/record_source.hpp"

#include <tavo/error.hpp>
#include <tavo/lexicon_maker.hpp>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <memory>

namespace TAVO {

namespace {

/// A dictionary for this thread alone; the mappings of a process are counted under its lock.
class LoadedDic {
public:
    explicit LoadedDic(std::string const& path) {
        PoolLock const lock;
        words::namingDictionary(path, [&] { dic_ = std::make_unique<Dic>(true, path.c_str()); });
    }
    ~LoadedDic() {
        PoolLock const lock;
        dic_.reset();
    }
    LoadedDic(LoadedDic const&) = delete;
    LoadedDic& operator=(LoadedDic const&) = delete;
    Dic const& operator*() const noexcept { return *dic_; }
    Dic const* operator->() const noexcept { return dic_.get(); }

private:
    std::unique_ptr<Dic> dic_;
};

std::string_view bytesOf(std::vector<std::uint64_t> const& index) {
    return {reinterpret_cast<char const*>(index.data()), index.size() * sizeof index[0]};
}

/// Writes @p index as that of the file at @p path.
void writeIndex(std::string const& path, std::vector<std::uint64_t> const& index) {
    words::NewFile file(indexPath(path));
    file.write(bytesOf(index));
    file.commit();
}

/// Tells where the index file of @p path differs from @p made; a file that is not there does not.
void compareIndex(std::vector<LexiconFault>& faults, std::string const& path, std::vector<std::uint64_t> const& made) {
    std::ifstream in(indexPath(path), std::ios::binary);
    if (!in) return;
    std::string const found((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    std::string_view const expected = bytesOf(made);
    if (found == expected) return;
    auto const at = std::mismatch(found.begin(), found.end(), expected.begin(), expected.end()).first - found.begin();
    faults.push_back(
        {indexPath(path), 0,
         "offset " + std::to_string(at) + ": it is not the index of these files; write it anew with tavo dic index"});
}

std::vector<LexiconFault> faultsIn(std::string const& file, std::vector<std::string> const& causes) {
    std::vector<LexiconFault> faults;
    faults.reserve(causes.size());
    for (std::string const& cause : causes) faults.push_back({file, 0, cause});
    return faults;
}

/// True when reading the text that was written gives the same bytes.
bool survives(std::string_view sjis, std::string_view utf8) {
    std::string back;
    return !appendUtf8AsSjis(back, utf8) && back == sjis;
}

}  // namespace

std::vector<LexiconFault> checkDictionary(std::string_view bytes, std::string const& file) {
    return faultsIn(file, checkDic(bytes));
}

std::vector<LexiconFault> checkTable(std::string_view bytes, std::string const& file) {
    return faultsIn(file, checkConnTable(bytes));
}

std::vector<LexiconFault> checkTogether(std::string const& dictionary, std::string const& connTable) {
    ConnTable const table(false, connTable.c_str());
    LoadedDic const dic(dictionary);
    if (!checkAdaptable(table, *dic))
        return faultsIn(dictionary, {"its parts of speech are not those of " + connTable});
    std::vector<LexiconFault> faults;
    compareIndex(faults, connTable, makeConnIndex(table));
    IndexPool pool;
    if (dic->trie() != nullptr) compareIndex(faults, dictionary, makeDicIndex(*dic, table, *pool.connIndex(table)));
    return faults;
}

std::size_t dumpDictionary(std::string const& dictionary, TextEncoding encoding,
                           std::function<void(std::string_view lines)> const& write) {
    constexpr std::size_t kWriteBytes = std::size_t{1} << 20;
    LoadedDic const dic(dictionary);
    if (dic->trie() == nullptr) throw lexicon_error(dictionary, 0, "damaged dictionary");
    std::string out;
    std::size_t changed = 0;
    dic->trie()->visitAll([&](std::string const& form, RecordChain chain) {
        for (; chain; chain = chain.next()) {
            std::string const sjis = formatSourceLine(form, chain.record(), *dic);
            std::string const line = words::fromSjis(sjis, encoding);
            if (encoding == TextEncoding::Utf8 && !survives(sjis, line)) ++changed;
            out.append(line).append("\n");
        }
        if (out.size() < kWriteBytes) return;
        write(out);
        out.clear();
    });
    write(out);
    return changed;
}

void writeTableIndex(std::string const& connTable) {
    writeIndex(connTable, makeConnIndex(ConnTable(false, connTable.c_str())));
}

void writeDictionaryIndexes(std::string const& connTable, std::vector<std::string> const& dictionaries) {
    ConnTable const table(false, connTable.c_str());
    IndexPool pool;
    std::shared_ptr<ConnIndex const> const conn = pool.connIndex(table);
    for (std::string const& path : dictionaries) {
        LoadedDic const dic(path);
        if (dic->trie() == nullptr) throw illegal_format(path);
        writeIndex(path, makeDicIndex(*dic, table, *conn));
    }
}

}  // namespace TAVO
