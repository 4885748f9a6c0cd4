#include "api/deliver.hpp"

#include <climits>
#include <cstring>
#include <stdexcept>

namespace TAVO::api {

std::string flatText(char const* kind, char const* function) {
    return std::string(kind).append(":").append(function).append("()");
}

void badArgument(char const* function) { throw std::invalid_argument(flatText("INVALID_ARGUMENT", function)); }

int textLength(std::size_t length, char const* function) {
    if (length >= static_cast<std::size_t>(INT_MAX)) throw too_long_string(std::string(function) + "()");
    return static_cast<int>(length);
}

int copyText(std::string_view text, Buffer buffer, bool& fits, char const* function) {
    int const length = textLength(text.size(), function);
    if (buffer.data == nullptr) return length + 1;
    fits = length < buffer.size;
    if (fits) std::memcpy(buffer.data, text.data(), text.size());
    if (buffer.size > 0) buffer.data[fits ? length : 0] = '\0';
    return length;
}

std::string categoryText(std::vector<unsigned short> const (&lists)[3]) {
    std::string text;
    for (auto const& list : lists) text.append("[").append(joined(list)).append("]");
    return text;
}

}  // namespace TAVO::api
