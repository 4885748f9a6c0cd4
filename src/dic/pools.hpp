// The process-wide pools of loaded dictionaries and connection tables.
#ifndef TAVO_DIC_POOLS_HPP
#define TAVO_DIC_POOLS_HPP

#include "dic/conn_table.hpp"
#include "dic/dic.hpp"
#include "dic/index/index_pool.hpp"

#include <atomic>
#include <map>
#include <memory>
#include <mutex>
#include <string>

namespace TAVO {

/// Everything shared by the analysers of a process.
struct SharedPools {
    std::map<std::string, std::unique_ptr<Dic const>> DIC_POOL;
    /// Number of analysers that use a pooled dictionary; -1 while one rebuilds it.
    std::map<Dic const*, int> DIC_USED;
    std::map<std::string, std::unique_ptr<ConnTable const>> CONN_TABLE_POOL;
    IndexPool indexes;
    unsigned int ObjectCount = 0;
    /// The lock over all of the above; absent until readyForThread().
    std::unique_ptr<std::recursive_mutex> CriticalSection;
    std::atomic<bool> HasCS = false;

    /// Creates the lock once; several threads may call it at the same time.
    void readyForThread();
    /// Frees everything pooled, then the lock.
    void dispose();
    /// Loads a dictionary that is not pooled yet. Once all places for mapped files are
    /// taken, the mapped dictionaries that nobody uses leave the pool. The lock is held.
    std::unique_ptr<Dic const> loadDic(bool memoryMapped, std::string const& path);
    /// The pooled table of @p path, loaded when missing. Takes the lock.
    ConnTable const* connTable(char const* path);
};

SharedPools& sharedPools();

/// Holds the process-wide lock for a scope when it exists, else does nothing.
class PoolLock {
public:
    PoolLock();

private:
    std::unique_lock<std::recursive_mutex> lock_;
};

}  // namespace TAVO

#endif
