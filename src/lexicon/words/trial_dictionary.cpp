#include "lexicon/words/trial_dictionary.hpp"

#include "dic/pools.hpp"

#include <tavo/lexicon_maker.hpp>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>

#include <unistd.h>

namespace TAVO::words {

TrialDictionary::TrialDictionary(std::string const& bytes)
    : path_((std::filesystem::temp_directory_path() / "tavo-XXXXXX").string()) {
    int const made = ::mkstemp(path_.data());
    if (made < 0) throw lexicon_error(path_, 0, std::strerror(errno));
    ::close(made);
    std::ofstream out(path_, std::ios::binary);
    if (out.write(bytes.data(), static_cast<std::streamsize>(bytes.size())).flush()) return;
    ::unlink(path_.c_str());
    throw lexicon_error(path_, 0, std::strerror(EIO));
}

TrialDictionary::~TrialDictionary() {
    PoolLock const lock;
    SharedPools& pools = sharedPools();
    if (auto const pooled = pools.DIC_POOL.find(path_); pooled != pools.DIC_POOL.end()) {
        pools.indexes.forget(pooled->second->serial());
        pools.DIC_USED.erase(pooled->second.get());
        pools.DIC_POOL.erase(pooled);
    }
    ::unlink(path_.c_str());
}

}  // namespace TAVO::words
