#include "support/encoding.hpp"

#include <iconv.h>

#include <stdexcept>

namespace TAVO::test {

std::string convert(std::string_view text, char const* to, char const* from) {
    iconv_t const converter = iconv_open(to, from);
    if (converter == reinterpret_cast<iconv_t>(-1)) throw std::runtime_error(std::string("no converter to ") + to);
    std::string input(text);
    std::string output(text.size() * 4 + 16, '\0');
    char* in = input.data();
    char* out = output.data();
    std::size_t inLeft = input.size();
    std::size_t outLeft = output.size();
    bool const converted = iconv(converter, &in, &inLeft, &out, &outLeft) != static_cast<std::size_t>(-1);
    iconv_close(converter);
    if (!converted) throw std::runtime_error(std::string("cannot be converted to ") + to + ": " + input);
    output.resize(output.size() - outLeft);
    return output;
}

std::string toSjis(std::string_view utf8) { return convert(utf8, "CP932", "UTF-8"); }
std::string toUtf8(std::string_view sjis) { return convert(sjis, "UTF-8", "CP932"); }

}  // namespace TAVO::test
