#include "dic/conn_table.hpp"

#include <tavo/error.hpp>

#include "base/bytes.hpp"
#include "dic/dic.hpp"
#include "dic/file_access.hpp"

#include <algorithm>
#include <cstring>
#include <utility>

namespace TAVO {
namespace {

std::vector<std::uint16_t> loadIndexes(unsigned char const* p, std::size_t count) {
    std::vector<std::uint16_t> indexes(count);
    for (std::size_t i = 0; i < count; ++i) indexes[i] = loadU16(p + 2 * i);
    return indexes;
}

}  // namespace

bool allBelow(std::vector<std::uint16_t> const& indexes, std::uint16_t bound) {
    return std::all_of(indexes.begin(), indexes.end(), [bound](std::uint16_t index) { return index < bound; });
}

ConnTable::ConnTable(bool flag, char const* path)
    : flag_(flag),
      path_(path != nullptr ? path : throw std::invalid_argument("INVALID_ARGUMENT: ConnTable::ConnTable()")) {
    parse(read());
}

ConnTable::ConnTable(std::span<unsigned char const> bytes, std::string name) : flag_(false), path_(std::move(name)) {
    if (bytes.empty()) throw illegal_format(path_);
    bytes_ = makeTableBlock(bytes.size());
    std::memcpy(bytes_.get(), bytes.data(), bytes.size());
    parse(bytes.size());
}

/// Reads the whole file; its size.
std::size_t ConnTable::read() {
    int const handle = FileOpenShared(path_.c_str());
    if (handle < 0) throw file_not_found(path_);
    std::int64_t size = -1;
    std::int64_t got = -1;
    try {
        size = FileSeek(handle, 0, 2);
        if (size > 0 && FileSeek(handle, 0, 0) == 0) {
            bytes_ = makeTableBlock(static_cast<std::size_t>(size));
            got = FileRead(handle, bytes_.get(), static_cast<std::size_t>(size));
        }
    } catch (std::bad_alloc const&) {
        FileClose(handle);
        throw;
    }
    FileClose(handle);
    if (got <= 0 || got != size) throw illegal_format(path_);
    return static_cast<std::size_t>(size);
}

void ConnTable::parse(std::size_t sizeBytes) {
    sizeBytes_ = sizeBytes;
    unsigned char const* const bytes = bytes_.get();
    if (sizeBytes < kHeaderBytes) throw illegal_format(path_);
    idCount_ = loadU16(bytes);
    nameStamp_ = loadU32(bytes + 2);
    std::size_t const sizesPosition = kHeaderBytes + std::size_t{4} * idCount_;
    if (idCount_ < kUnknownId || sizeBytes < sizesPosition + 4) throw illegal_format(path_);
    rowIndex_ = loadIndexes(bytes + kHeaderBytes, idCount_);
    columnIndex_ = loadIndexes(bytes + kHeaderBytes + std::size_t{2} * idCount_, idCount_);
    rows_ = loadU16(bytes + sizesPosition);
    cols_ = loadU16(bytes + sizesPosition + 2);
    if (!allBelow(rowIndex_, rows_) || !allBelow(columnIndex_, cols_)) throw illegal_format(path_);
    std::size_t const matrixPosition = sizesPosition + 4;
    std::size_t const offsetsPosition = matrixPosition + std::size_t{rows_} * cols_;
    std::size_t const poolPosition = offsetsPosition + std::size_t{4} * idCount_;
    if (sizeBytes <= poolPosition) throw illegal_format(path_);
    nameOffsets_ = bytes + offsetsPosition;
    namePool_ = bytes + poolPosition;
    checkNames(sizeBytes - poolPosition);
    matrix_ = bytes + matrixPosition;
}

/// Every name begins in the pool and ends in it: at or before its last NUL.
void ConnTable::checkNames(std::size_t poolBytes) const {
    std::size_t ends = poolBytes;  // behind the last NUL
    while (ends != 0 && namePool_[ends - 1] != 0) --ends;
    for (std::uint32_t i = 0; i < idCount_; ++i)
        if (loadU32(nameOffsets_ + std::size_t{4} * i) >= ends) throw illegal_format(path_);
}

char const* ConnTable::getName(std::uint32_t id) const noexcept {
    return id != 0 && id <= idCount_ ? asChars(namePool_ + loadU32(nameOffsets_ + std::size_t{4} * (id - 1))) : "";
}

std::uint16_t ConnTable::getId(std::string_view name) const {
    std::call_once(indexMade_, [this] { makeIndex(); });
    auto const found = ids_.find(name);
    return found != ids_.end() ? found->second : std::uint16_t{0};
}

void ConnTable::makeIndex() const {
    ids_.reserve(idCount_);
    for (std::uint32_t id = 1; id <= idCount_; ++id) ids_[getName(id)] = static_cast<std::uint16_t>(id);
}

bool checkAdaptable(ConnTable const& table, Dic const& dic) {
    if (table.nameStamp() == dic.nameStamp()) return true;
    if (dic.nameCount() > table.idCount()) return false;
    for (std::uint32_t id = 1; id <= dic.nameCount(); ++id) {
        if (std::strcmp(table.getName(id), dic.getPartOfSPName(id)) != 0) return false;
    }
    return true;
}

}  // namespace TAVO
