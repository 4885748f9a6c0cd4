// Walks whole files and reports what does not hold together.
#ifndef TAVO_DIC_DIC_CHECK_HPP
#define TAVO_DIC_DIC_CHECK_HPP

#include <string>
#include <string_view>
#include <vector>

namespace TAVO {

/// The structural faults of a compiled dictionary, one text each with its offset
/// in bytes; none for a sound file. For any bytes it ends and reads none outside.
std::vector<std::string> checkDic(std::string_view bytes);

/// The same for a connection table.
std::vector<std::string> checkConnTable(std::string_view bytes);

}  // namespace TAVO

#endif
