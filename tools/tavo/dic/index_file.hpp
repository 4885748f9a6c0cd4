// Writes the search indexes beside the files that they are made from.
#ifndef TAVO_TOOL_INDEX_FILE_HPP
#define TAVO_TOOL_INDEX_FILE_HPP

#include <string>
#include <vector>

namespace tool {

/// Writes the index of the connection table at @p connTable.
/// Both throw ToolError (data), and the library's exceptions for a table or dictionary that cannot be loaded.
void writeConnIndex(std::string const& connTable);
/// Writes the index of each of @p dictionaries with that table.
void writeDicIndexes(std::string const& connTable, std::vector<std::string> const& dictionaries);

/// Warns on standard error of each index file that was not taken, which costs the time of making it at every start.
void warnOfRefusedIndexes();
/// What is wrong with the index file of @p dictionary with the table at @p connTable, empty for a sound one or none.
std::string faultOfIndex(std::string const& connTable, std::string const& dictionary);
/// The same of the table's own index.
std::string faultOfConnIndex(std::string const& connTable);

}  // namespace tool

#endif
