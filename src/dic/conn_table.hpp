// The connection-cost table.
#ifndef TAVO_DIC_CONN_TABLE_HPP
#define TAVO_DIC_CONN_TABLE_HPP

#include "base/serial.hpp"
#include "base/table_block.hpp"

#include <cstddef>
#include <cstdint>
#include <mutex>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace TAVO {

class Dic;

/// Immutable after construction but for the index of names, which is made under
/// a lock of its own; so it may be read from any thread.
/// Ids run from 1 to idCount(); 1 is the beginning of a text, 2 its end,
/// 3 the unknown word (a table always has at least these three).
class ConnTable {
public:
    static constexpr std::size_t kHeaderBytes = 10;  // behind it the row indexes
    static constexpr std::uint8_t kForbidden = 255;
    static constexpr std::uint16_t kBeginId = 1, kEndId = 2, kUnknownId = 3;

    /// Loads @p path. Throws invalid_argument for null, file_not_found, and
    /// illegal_format for a file that is cut short or holds an index outside
    /// its matrix. @p flag is kept and not used.
    ConnTable(bool flag, char const* path);
    /// The same from a file's @p bytes, which are copied; @p name stands for the path.
    ConnTable(std::span<unsigned char const> bytes, std::string name);

    std::string const& path() const noexcept { return path_; }
    /// The whole file as it was read.
    std::span<unsigned char const> bytes() const noexcept { return {bytes_.get(), sizeBytes_}; }
    /// Differs from that of every other table and dictionary.
    std::uint64_t serial() const noexcept { return serial_; }
    std::uint16_t idCount() const noexcept { return idCount_; }
    std::uint32_t nameStamp() const noexcept { return nameStamp_; }
    std::uint16_t rows() const noexcept { return rows_; }
    std::uint16_t cols() const noexcept { return cols_; }
    /// Row index of a left id / column index of a right id, ids 1..idCount().
    std::uint16_t row(std::uint16_t id) const noexcept { return rowIndex_[id - 1U]; }
    std::uint16_t column(std::uint16_t id) const noexcept { return columnIndex_[id - 1U]; }
    unsigned char const* rowStart(std::uint32_t row) const noexcept { return matrix_ + std::size_t{row} * cols_; }
    /// Cost of id @p left directly before id @p right; 255 forbids. Ids 1..idCount().
    std::uint8_t cost(std::uint16_t left, std::uint16_t right) const noexcept {
        return rowStart(row(left))[column(right)];
    }

    /// Name of an id; empty for 0 and above idCount().
    char const* getName(std::uint32_t id) const noexcept;
    /// Id of a name, 0 when absent; a name that occurs twice has its later id.
    /// The first call makes an index of all names.
    std::uint16_t getId(std::string_view name) const;

private:
    std::size_t read();
    void parse(std::size_t sizeBytes);
    void checkNames(std::size_t poolBytes) const;
    void makeIndex() const;

    std::uint64_t serial_ = nextSerial();
    [[maybe_unused]] bool flag_;
    std::string path_;
    std::size_t sizeBytes_ = 0;
    std::uint16_t idCount_ = 0;
    std::uint32_t nameStamp_ = 0;
    std::vector<std::uint16_t> rowIndex_;
    std::vector<std::uint16_t> columnIndex_;
    std::uint16_t rows_ = 0;
    std::uint16_t cols_ = 0;
    TableBlock bytes_;  ///< the whole file
    unsigned char const* matrix_ = nullptr;
    unsigned char const* nameOffsets_ = nullptr;  ///< 4 bytes an id
    unsigned char const* namePool_ = nullptr;     ///< behind them, to the end of the file
    // Few analyses look for an id by its name, and the index costs more than all else here.
    mutable std::once_flag indexMade_;
    mutable std::unordered_map<std::string_view, std::uint16_t> ids_;
};

/// True when the ids of @p dic's records name the same parts of speech as the
/// ids of @p table: equal stamps, or names that are a prefix of the table's.
bool checkAdaptable(ConnTable const& table, Dic const& dic);

/// True when every index of a row or column is below @p bound.
bool allBelow(std::vector<std::uint16_t> const& indexes, std::uint16_t bound);

}  // namespace TAVO

#endif
