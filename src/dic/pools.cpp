#include "dic/pools.hpp"

#include "dic/file_access.hpp"

#include <stdexcept>

namespace TAVO {

SharedPools& sharedPools() {
    // Never destroyed, so that an analyser with static storage can still let go
    // of its dictionaries while the process ends.
    static SharedPools& pools = *new SharedPools;
    return pools;
}

void SharedPools::readyForThread() {
    static std::mutex making;
    std::lock_guard<std::mutex> const lock(making);
    if (HasCS) return;
    CriticalSection = std::make_unique<std::recursive_mutex>();
    HasCS = true;
}

void SharedPools::dispose() {
    {
        PoolLock const lock;
        DIC_POOL.clear();
        DIC_USED.clear();
        CONN_TABLE_POOL.clear();
        indexes.clear();
        HasCS = false;
    }
    CriticalSection.reset();
}

std::unique_ptr<Dic const> SharedPools::loadDic(bool memoryMapped, std::string const& path) {
    if (memoryMapped && MmapIsFull()) {
        std::erase_if(DIC_POOL, [this](auto const& pooled) {
            auto const used = DIC_USED.find(pooled.second.get());
            if (used->second != 0 || !pooled.second->memoryMapped()) return false;
            DIC_USED.erase(used);
            return true;
        });
    }
    return std::make_unique<Dic const>(memoryMapped, path.c_str());
}

ConnTable const* SharedPools::connTable(char const* path) {
    if (path == nullptr) throw std::invalid_argument("INVALID_ARGUMENT: Tavo::setConnTablePath()");
    PoolLock const lock;
    if (auto const found = CONN_TABLE_POOL.find(path); found != CONN_TABLE_POOL.end()) return found->second.get();
    auto table = std::make_unique<ConnTable const>(false, path);
    return CONN_TABLE_POOL.emplace(path, std::move(table)).first->second.get();
}

PoolLock::PoolLock() {
    SharedPools& pools = sharedPools();
    if (pools.HasCS) lock_ = std::unique_lock(*pools.CriticalSection);
}

}  // namespace TAVO
