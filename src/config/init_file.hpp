// Reading init files: lines of key=value.
#ifndef TAVO_CONFIG_INIT_FILE_HPP
#define TAVO_CONFIG_INIT_FILE_HPP

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace TAVO {

/// A line of an init file that is no comment, as written: key and value are empty
/// where it has none.
struct InitLine {
    std::size_t number;  ///< from 1
    std::string key, value;
    bool wasCut;  ///< longer than a line may be; the rest is a line of its own
};

struct InitLines {
    /// A byte order mark, or "coding: utf-8" in a comment of the first line, says so; else
    /// the file is Shift_JIS.
    bool isUtf8 = false;
    std::vector<InitLine> lines;
};

/// Throws file_not_found with @p path.
InitLines readInitLines(std::string const& path);

/// The values of each key, in file order. Lines without "=", with an empty key
/// or an empty value are left out. docs/init-file.md tells the syntax.
using InitValues = std::map<std::string, std::vector<std::string>, std::less<>>;

/// Throws file_not_found with @p path. The texts of a UTF-8 file come in Shift_JIS, which
/// throws unknown_setting with path, key and value when it lacks a character.
InitValues readInitFile(std::string const& path);

/// True for the keys whose values are text; those of the others are numbers and paths,
/// and paths are used byte by byte.
bool isTextKey(std::string_view key) noexcept;

/// A value of ReduceRule, NumberPartOfSP, EndFormRule and CooccurrenceRule: no file, not even the one beside the
/// connection table.
inline constexpr std::string_view kNoFile = "none";

/// Rule files that belong to the connection table in whose folder they lie: by init-file
/// key, their names.
struct TableCompanion {
    std::string_view key;
    char const* name;
};
inline constexpr TableCompanion kTableCompanions[] = {
    {"CooccurrenceRule", "cooc.rules"},
    {"ReduceRule", "reduce.rules"},
    {"NumberPartOfSP", "number.list"},
    {"EndFormRule", "end.rules"},
};

/// The path of the companion of @p key in the folder of a connection table; empty when there
/// is no such file, and for keys without companion.
std::string tableCompanion(std::string const& connTablePath, std::string_view key);

/// @p text with the escapes \\ \a \b \f \n \r \t \v decoded; other backslash
/// sequences stay as written.
std::string decodeEscapes(std::string const& text);

/// The byte that the escape letter @p c stands for, 0 when it is none.
char escapedByte(char c) noexcept;

}  // namespace TAVO

#endif
