#include "dic/conn_table_writer.hpp"

#include "base/bytes.hpp"
#include "base/crc32.hpp"
#include "dic/conn_table.hpp"

#include <algorithm>
#include <stdexcept>

namespace TAVO {
namespace {

void require(bool holds, char const* fault) {
    if (!holds) throw std::invalid_argument(std::string("connection table: ") + fault);
}

bool isName(std::string const& name) { return !name.empty() && name.find('\0') == std::string::npos; }

void check(ConnTableContent const& content) {
    std::size_t const count = content.names.size();
    require(count >= 3, "fewer than 3 names");
    require(count <= 65534, "more than 65534 names");
    require(std::all_of(content.names.begin(), content.names.end(), isName), "a name is empty or holds a NUL");
    require(content.rowIndex.size() == count, "not one row index per name");
    require(content.columnIndex.size() == count, "not one column index per name");
    require(allBelow(content.rowIndex, content.rows), "a row index is not below the number of rows");
    require(allBelow(content.columnIndex, content.cols), "a column index is not below the number of columns");
    require(content.matrix.size() == std::size_t{content.rows} * content.cols, "the matrix is not rows x columns");
}

}  // namespace

std::string serializeConnTable(ConnTableContent const& content) {
    check(content);
    std::string pool;
    std::string offsets;
    for (std::string const& name : content.names) {
        appendU32(offsets, static_cast<std::uint32_t>(pool.size()));
        pool.append(name.c_str(), name.size() + 1);
    }
    std::string bytes;
    appendU16(bytes, static_cast<std::uint32_t>(content.names.size()));
    appendU32(bytes, crc32(pool));
    appendU32(bytes, 0);
    for (std::uint16_t const index : content.rowIndex) appendU16(bytes, index);
    for (std::uint16_t const index : content.columnIndex) appendU16(bytes, index);
    appendU16(bytes, content.rows);
    appendU16(bytes, content.cols);
    bytes.append(content.matrix.begin(), content.matrix.end());
    return bytes + offsets + pool;
}

}  // namespace TAVO
