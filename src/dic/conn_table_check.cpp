#include "base/bytes.hpp"
#include "dic/conn_table.hpp"
#include "dic/dic_check.hpp"
#include "dic/name_check.hpp"

namespace TAVO {
namespace {

void checkIndexes(std::string_view file, std::size_t position, std::size_t count, unsigned bound, char const* what,
                  FaultList& faults) {
    for (std::size_t i = 0; i < count; ++i) {
        unsigned const index = loadU16(asBytes(file.data()) + position + 2 * i);
        if (index < bound) continue;
        faults.add(position + 2 * i, std::string("the ") + what + " of id " + std::to_string(i + 1) +
                                         " is not in the matrix: " + std::to_string(index));
    }
}

void check(std::string_view file, FaultList& faults) {
    unsigned char const* const bytes = asBytes(file.data());
    if (file.size() < ConnTable::kHeaderBytes) return faults.add(0, "the file is too short for a header");
    std::size_t const count = loadU16(bytes);
    if (count < ConnTable::kUnknownId) faults.add(0, "fewer than 3 ids: " + std::to_string(count));
    std::size_t const sizesPosition = ConnTable::kHeaderBytes + 4 * count;
    std::size_t const matrixPosition = sizesPosition + 4;
    if (file.size() < matrixPosition)
        return faults.add(ConnTable::kHeaderBytes, "the file ends inside the index lists");
    unsigned const rows = loadU16(bytes + sizesPosition);
    unsigned const cols = loadU16(bytes + sizesPosition + 2);
    checkIndexes(file, ConnTable::kHeaderBytes, count, rows, "row", faults);
    checkIndexes(file, ConnTable::kHeaderBytes + 2 * count, count, cols, "column", faults);
    std::size_t const offsetsPosition = matrixPosition + std::size_t{rows} * cols;
    std::size_t const poolPosition = offsetsPosition + 4 * count;
    if (file.size() <= poolPosition) return faults.add(sizesPosition, "the file ends before the name pool");
    checkNames(file, {count, offsetsPosition, poolPosition, file.size() - poolPosition, 2}, faults);
}

}  // namespace

std::vector<std::string> checkConnTable(std::string_view bytes) {
    FaultList faults;
    check(bytes, faults);
    return faults.lines();
}

}  // namespace TAVO
