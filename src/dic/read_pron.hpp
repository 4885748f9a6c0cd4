// The read-pron encoding: reading and pronunciation in one string. Shared text
// stands plain, differing spans as "(reading|pronunciation)", parts are
// separated by "/", and "-" is a mark of the reading only.
#ifndef TAVO_DIC_READ_PRON_HPP
#define TAVO_DIC_READ_PRON_HPP

#include <string>
#include <string_view>
#include <vector>

namespace TAVO {

/// The reading of read-pron text @p s, up to the first @p stop when that is not
/// null. Every one-byte character is dropped, but "/" stays unless @p compact.
/// Malformed groups give @p s unchanged.
std::string extractRead(char const* s, bool compact, char const* stop = nullptr);
/// The pronunciation; only "-" is dropped.
std::string extractPron(char const* s, char const* stop = nullptr);

}  // namespace TAVO

#endif
