#include "dic/index/index_pool.hpp"

#include <sys/stat.h>

#include "base/stamp.hpp"
#include "dic/conn_table.hpp"
#include "dic/dic.hpp"
#include "dic/file_access.hpp"

namespace TAVO {
namespace {

std::uint64_t stampOf(std::span<unsigned char const> bytes) noexcept {
    return contentStamp(bytes.data(), bytes.size());
}

/// True when @p path may have changed since @p index was written.
bool isYounger(std::string const& path, std::string const& index) noexcept {
    struct stat ofPath {
    }, ofIndex{};
    if (::stat(path.c_str(), &ofPath) != 0 || ::stat(index.c_str(), &ofIndex) != 0) return true;
    return ofPath.st_mtim.tv_sec != ofIndex.st_mtim.tv_sec ? ofPath.st_mtim.tv_sec > ofIndex.st_mtim.tv_sec
                                                           : ofPath.st_mtim.tv_nsec > ofIndex.st_mtim.tv_nsec;
}

/// True when a file of @p bytes at @p path is the one of @p size and @p stamp that @p index was made from.
bool isOrigin(std::span<unsigned char const> bytes, std::string const& path, std::string const& index,
              std::uint64_t size, std::uint64_t stamp) noexcept {
    return bytes.size() == size && (!isYounger(path, index) || stampOf(bytes) == stamp);
}

/// In one step; on failure the file stays as it was.
void replaceFile(std::string const& path, std::span<unsigned char const> bytes) {
    std::string const temporary = path + "_tmp";
    int const handle = FileCreate(temporary.c_str());
    if (handle < 0) return;
    bool const written = FileWrite(handle, bytes.data(), bytes.size()) == static_cast<std::int64_t>(bytes.size());
    if (!written || FileRename(temporary.c_str(), path.c_str()) != 0) FileDelete(temporary.c_str());
    FileClose(handle);
}

bool exists(std::string const& path) noexcept {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0;
}

}  // namespace

std::vector<std::uint64_t> makeConnIndex(ConnTable const& table) {
    return ConnIndex::make(table, {0, 0, table.bytes().size(), stampOf(table.bytes())});
}

std::vector<std::uint64_t> makeDicIndex(Dic const& dic, ConnTable const& table, ConnIndex const& conn) {
    IndexOrigin const& ofTable = conn.image().origin();
    return DicIndex::make(dic, table, conn,
                          {dic.bytes().size(), stampOf(dic.bytes()), ofTable.tableBytes, ofTable.tableStamp});
}

std::shared_ptr<ConnIndex const> IndexPool::connIndex(ConnTable const& table) {
    std::shared_ptr<ConnIndex const>& index = tables_[table.serial()];
    if (index != nullptr) return index;
    std::string const path = indexPath(table.path());
    auto found = std::make_shared<ConnIndex const>(IndexImage::map(path, ConnIndex::kMagic));
    IndexOrigin const& origin = found->image().origin();
    bool const isOurs = found->isSound() && found->rows() == table.rows() + 1U &&
                        isOrigin(table.bytes(), table.path(), path, origin.tableBytes, origin.tableStamp);
    if (!isOurs) {
        note(path, found->isSound() ? IndexFault::kStale : IndexFault::kDamaged);
        found = std::make_shared<ConnIndex const>(IndexImage::own(makeConnIndex(table), ConnIndex::kMagic));
    }
    return index = std::move(found);
}

std::shared_ptr<DicIndex const> IndexPool::dicIndex(Dic const& dic, ConnTable const& table, ConnIndex const& conn) {
    std::shared_ptr<DicIndex const>& index = dics_[{dic.serial(), table.serial()}];
    if (index != nullptr) return index;
    std::string const path = indexPath(dic.path());
    auto found = std::make_shared<DicIndex const>(IndexImage::map(path, DicIndex::kMagic), conn);
    IndexOrigin const& origin = found->image().origin();
    IndexOrigin const& ofTable = conn.image().origin();
    bool const isOurs = found->isSound() && origin.tableBytes == ofTable.tableBytes &&
                        origin.tableStamp == ofTable.tableStamp &&
                        isOrigin(dic.bytes(), dic.path(), path, origin.dicBytes, origin.dicStamp);
    if (!isOurs) {
        note(path, found->isSound() ? IndexFault::kStale : IndexFault::kDamaged);
        found =
            std::make_shared<DicIndex const>(IndexImage::own(makeDicIndex(dic, table, conn), DicIndex::kMagic), conn);
    }
    return index = std::move(found);
}

std::shared_ptr<ConnIndex const> IndexPool::connIndex(ConnTable const& table, std::span<unsigned char const> bytes) {
    auto found = std::make_shared<ConnIndex const>(IndexImage::view(bytes, ConnIndex::kMagic));
    IndexOrigin const& origin = found->image().origin();
    bool const isOurs = found->isSound() && found->rows() == table.rows() + 1U &&
                        origin.tableBytes == table.bytes().size() && origin.tableStamp == stampOf(table.bytes());
    if (!isOurs) found = std::make_shared<ConnIndex const>(IndexImage::own(makeConnIndex(table), ConnIndex::kMagic));
    return tables_[table.serial()] = std::move(found);
}

std::shared_ptr<DicIndex const> IndexPool::dicIndex(Dic const& dic, ConnTable const& table, ConnIndex const& conn,
                                                    std::span<unsigned char const> bytes) {
    auto found = std::make_shared<DicIndex const>(IndexImage::view(bytes, DicIndex::kMagic), conn);
    IndexOrigin const& origin = found->image().origin();
    IndexOrigin const& ofTable = conn.image().origin();
    bool const isOurs = found->isSound() && origin.tableBytes == ofTable.tableBytes &&
                        origin.tableStamp == ofTable.tableStamp && origin.dicBytes == dic.bytes().size() &&
                        origin.dicStamp == stampOf(dic.bytes());
    if (!isOurs)
        found =
            std::make_shared<DicIndex const>(IndexImage::own(makeDicIndex(dic, table, conn), DicIndex::kMagic), conn);
    return dics_[{dic.serial(), table.serial()}] = std::move(found);
}

void IndexPool::clear() noexcept {
    tables_.clear();
    dics_.clear();
}

void IndexPool::renew(Dic const& dic, ConnTable const& table) {
    std::shared_ptr<ConnIndex const> const conn = connIndex(table);
    IndexImage image = IndexImage::own(makeDicIndex(dic, table, *conn), DicIndex::kMagic);
    std::string const path = indexPath(dic.path());
    if (exists(path)) replaceFile(path, image.bytes());
    dics_[{dic.serial(), table.serial()}] = std::make_shared<DicIndex const>(std::move(image), *conn);
}

void IndexPool::forget(std::uint64_t serial) {
    tables_.erase(serial);
    std::erase_if(dics_,
                  [serial](auto const& entry) { return entry.first.first == serial || entry.first.second == serial; });
}

void IndexPool::note(std::string const& path, IndexFault fault) {
    if (exists(path)) refused_.push_back({path, fault});
}

}  // namespace TAVO
