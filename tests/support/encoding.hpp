// Readable Japanese in tests: UTF-8 source text to code page 932 and back.
#ifndef TAVO_TESTS_ENCODING_HPP
#define TAVO_TESTS_ENCODING_HPP

#include <string>
#include <string_view>

namespace TAVO::test {

/// Between two encodings by their names for iconv. Throws runtime_error for text that the other side cannot hold.
std::string convert(std::string_view text, char const* to, char const* from);
std::string toSjis(std::string_view utf8);
std::string toUtf8(std::string_view sjis);

}  // namespace TAVO::test

#endif
