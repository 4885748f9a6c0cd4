#include "lexicon/words/trial_dictionary.hpp"

#include "dic/pools.hpp"

namespace TAVO::words {

TrialDictionary::~TrialDictionary() {
    PoolLock const lock;
    SharedPools& pools = sharedPools();
    auto const pooled = pools.DIC_POOL.find(path());
    if (pooled == pools.DIC_POOL.end()) return;
    pools.indexes.forget(pooled->second->serial());
    pools.DIC_USED.erase(pooled->second.get());
    pools.DIC_POOL.erase(pooled);
}

}  // namespace TAVO::words
