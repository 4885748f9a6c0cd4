// Reading init files: lines of key=value.
#ifndef TAVO_CONFIG_INIT_FILE_HPP
#define TAVO_CONFIG_INIT_FILE_HPP

#include <map>
#include <string>
#include <vector>

namespace TAVO {

/// The values of each key, in file order. Lines without "=", with an empty key
/// or an empty value are left out. docs/init-file.md tells the syntax.
using InitValues = std::map<std::string, std::vector<std::string>, std::less<>>;

/// Throws file_not_found with @p path.
InitValues readInitFile(std::string const& path);

/// @p text with the escapes \\ \a \b \f \n \r \t \v decoded; other backslash
/// sequences stay as written.
std::string decodeEscapes(std::string const& text);

/// The byte that the escape letter @p c stands for, 0 when it is none.
char escapedByte(char c) noexcept;

}  // namespace TAVO

#endif
