#include "dic/dic_set.hpp"

#include <tavo/error.hpp>

#include "dic/file_access.hpp"
#include "dic/pools.hpp"

#include <algorithm>
#include <stdexcept>
#include <string_view>
#include <utility>

namespace TAVO {
namespace {

/// The pooled dictionary of @p path, loaded when missing, and anew when a rebuild
/// left it without its file and nobody uses it. The lock is held.
Dic const* pooledDic(std::string const& path, bool memoryMapped) {
    SharedPools& pools = sharedPools();
    if (auto const found = pools.DIC_POOL.find(path); found != pools.DIC_POOL.end()) {
        Dic const* const dic = found->second.get();
        int const users = pools.DIC_USED[dic];
        if (users < 0) throw busy_dictionary(path);
        if (dic->trie() != nullptr) return dic;
        if (users > 0) throw illegal_format(path);
        pools.DIC_USED.erase(dic);
        pools.DIC_POOL.erase(found);
    }
    std::unique_ptr<Dic const> loaded = pools.loadDic(memoryMapped, path);
    if (loaded->trie() == nullptr) throw illegal_format(path);
    Dic const* const dic = loaded.get();
    pools.DIC_USED.emplace(dic, 0);
    pools.DIC_POOL.emplace(path, std::move(loaded));
    return dic;
}

void countUser(Dic const* dic, int change) {
    PoolLock const lock;
    // Absent once the pools were disposed of.
    auto const used = sharedPools().DIC_USED.find(dic);
    if (used != sharedPools().DIC_USED.end()) used->second += change;
}

std::string rangeError(char const* operation) { return std::string("RANGE_ERROR: Tavo::") + operation + "()"; }
std::string invalidArgument(char const* operation) {
    return std::string("INVALID_ARGUMENT: Tavo::") + operation + "()";
}

}  // namespace

DicSet::DicSet(DicSet const& other) : entries_(other.entries_) {
    for (DicEntry const& copied : entries_) countUser(copied.dic, 1);
}

DicSet& DicSet::operator=(DicSet const& other) {
    DicSet copy(other);
    std::swap(entries_, copy.entries_);
    return *this;
}

DicSet::~DicSet() { offDic(); }

void DicSet::addDicPath(char const* pathSpec, bool memoryMapped, ConnTable const* table) {
    if (pathSpec == nullptr) throw std::invalid_argument(invalidArgument("addDicPath"));
    std::string_view const both(pathSpec);
    std::size_t const comma = both.find(',');
    DicEntry added;
    added.path = both.substr(0, comma);
    if (comma != std::string_view::npos) added.sourcePath = both.substr(comma + 1);
    added.memoryMapped = memoryMapped;
    if (FileLength(added.path.c_str()) < 0) throw file_not_found(added.path);

    PoolLock const lock;
    for (DicEntry const& present : entries_) {
        if (present.path == added.path) return;
    }
    added.dic = pooledDic(added.path, memoryMapped);
    if (added.dic->charType() != Dic::kShiftJis) {
        throw not_adaptable(added.path + ": Missmatch Char Type");  // callers compare this text
    }
    if (table != nullptr && !checkAdaptable(*table, *added.dic)) {
        throw not_adaptable(table->path() + ": " + added.path);
    }
    entries_.push_back(std::move(added));
    ++sharedPools().DIC_USED[entries_.back().dic];
}

void DicSet::add(Dic const& dic, ConnTable const* table) {
    if (dic.trie() == nullptr) throw illegal_format(dic.path());
    if (dic.charType() != Dic::kShiftJis) throw not_adaptable(dic.path() + ": Missmatch Char Type");
    if (table != nullptr && !checkAdaptable(*table, dic)) throw not_adaptable(table->path() + ": " + dic.path());
    DicEntry added;
    added.dic = &dic;
    added.path = dic.path();
    added.memoryMapped = dic.memoryMapped();
    entries_.push_back(std::move(added));
}

DicEntry& DicSet::entry(int index, char const* operation) {
    return const_cast<DicEntry&>(std::as_const(*this).entry(index, operation));
}

DicEntry const& DicSet::entry(int index, char const* operation) const {
    if (index < 0 || index >= getDicCount()) throw std::range_error(rangeError(operation));
    return entries_[static_cast<std::size_t>(index)];
}

int DicSet::position(char const* path, char const* operation) const {
    if (path == nullptr) throw std::invalid_argument(invalidArgument(operation));
    auto const found = std::find_if(entries_.begin(), entries_.end(),
                                    [path](DicEntry const& present) { return present.path == path; });
    if (found == entries_.end()) throw file_not_found(path);
    return static_cast<int>(found - entries_.begin());
}

int DicSet::getDicIndex(char const* path) const { return position(path, "getDicIndex"); }
char const* DicSet::getDicPath(int index) const { return entry(index, "getDicPath").path.c_str(); }
char const* DicSet::getSrcPath(int index) const { return entry(index, "getSrcPath").sourcePath.c_str(); }

void DicSet::offDic(int index) {
    countUser(entry(index, "offDic").dic, -1);
    entries_.erase(entries_.begin() + index);
}

void DicSet::offDic(char const* path) { offDic(position(path, "offDic")); }

void DicSet::offDic() noexcept {
    for (DicEntry const& removed : entries_) countUser(removed.dic, -1);
    entries_.clear();
}

void DicSet::touchDic(int index) const { entry(index, "touchDic"); }
void DicSet::touchDic(char const* path) const { position(path, "touchDic"); }

std::vector<ReadingWord> DicSet::findByRead(char const* reading, int index) {
    DicEntry& searched = entry(index, "getByRead");
    if (reading == nullptr) throw std::invalid_argument(invalidArgument("getByRead"));
    {
        PoolLock const lock;
        if (searched.readingIndex == nullptr)
            searched.readingIndex = std::make_shared<ReadingIndex const>(*searched.dic);
    }
    return searched.readingIndex->find(reading);
}

}  // namespace TAVO
