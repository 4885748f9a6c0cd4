// The search indexes of a process: from their files, or made in memory.
#ifndef TAVO_DIC_INDEX_INDEX_POOL_HPP
#define TAVO_DIC_INDEX_INDEX_POOL_HPP

#include "dic/index/conn_index.hpp"
#include "dic/index/dic_index.hpp"

#include <cstdint>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace TAVO {

class ConnTable;
class Dic;

/// File of the index of the dictionary or connection table at @p path.
inline std::string indexPath(std::string const& path) { return path + ".idx"; }

/// Why an index file was not taken.
enum class IndexFault {
    kDamaged,  ///< it is none of this version, or unsound
    kStale     ///< it is that of another dictionary or connection table
};

/// One index for each pair of dictionary and connection table in use. An index file is taken when it is sound and was
/// made from these two: their sizes have to agree, and their content stamps where a file is younger than its index.
/// Callers hold the process-wide lock.
class IndexPool {
public:
    std::shared_ptr<ConnIndex const> connIndex(ConnTable const& table);
    /// @p conn is the index of @p table.
    std::shared_ptr<DicIndex const> dicIndex(Dic const& dic, ConnTable const& table, ConnIndex const& conn);
    /// The same where the bytes of index files may stand in memory: @p bytes are used when they are the index of
    /// these two, and stay as long as the index. Nothing is looked for among the files.
    std::shared_ptr<ConnIndex const> connIndex(ConnTable const& table, std::span<unsigned char const> bytes);
    std::shared_ptr<DicIndex const> dicIndex(Dic const& dic, ConnTable const& table, ConnIndex const& conn,
                                             std::span<unsigned char const> bytes);
    /// Makes the index of @p dic, a dictionary just written, and writes its file anew if there is one; a file that
    /// cannot be written stays, and is stale. Throws bad_alloc.
    void renew(Dic const& dic, ConnTable const& table);
    /// Drops the indexes of the dictionary or connection table with this serial number, which is no more.
    void forget(std::uint64_t serial);
    void clear() noexcept;

    /// An index file that was not taken, which costs the time of making the index at every start.
    struct Refused {
        std::string path;
        IndexFault fault;
    };
    /// Those met since the process began.
    std::vector<Refused> const& refused() const noexcept { return refused_; }

private:
    void note(std::string const& path, IndexFault fault);

    std::map<std::uint64_t, std::shared_ptr<ConnIndex const>> tables_;  // by serial number
    std::map<std::pair<std::uint64_t, std::uint64_t>, std::shared_ptr<DicIndex const>> dics_;
    std::vector<Refused> refused_;
};

/// The bytes of the index files of a connection table, and of a dictionary with it.
std::vector<std::uint64_t> makeConnIndex(ConnTable const& table);
std::vector<std::uint64_t> makeDicIndex(Dic const& dic, ConnTable const& table, ConnIndex const& conn);

}  // namespace TAVO

#endif
