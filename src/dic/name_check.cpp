#include "dic/name_check.hpp"

#include "base/bytes.hpp"
#include "base/crc32.hpp"

namespace TAVO {

void checkNames(std::string_view file, NameSection const& names, FaultList& faults) {
    std::string_view const pool = file.substr(names.poolPosition, names.poolBytes);
    std::size_t expected = 0;
    for (std::size_t i = 0; i < names.count; ++i) {
        std::size_t const position = names.offsetsPosition + 4 * i;
        std::size_t const offset = loadU32(asBytes(file.data()) + position);
        std::string const name = "name " + std::to_string(i + 1);
        std::size_t const nul = offset < pool.size() ? pool.find('\0', offset) : std::string_view::npos;
        if (offset >= pool.size()) {
            faults.add(position, name + " lies outside the name pool");
        } else if (nul == std::string_view::npos) {
            faults.add(names.poolPosition + offset, name + " is not ended by a NUL");
        } else if (offset != expected) {
            faults.add(position, name + " does not start where the name before it ends");
        }
        expected = nul != std::string_view::npos ? nul + 1 : pool.size();
    }
    if (expected < pool.size()) faults.add(names.poolPosition + expected, "the name pool goes on behind the last name");
    if (loadU32(asBytes(file.data()) + names.stampPosition) != crc32(pool)) {
        faults.add(names.stampPosition, "the name stamp is not that of the name pool");
    }
}

}  // namespace TAVO
