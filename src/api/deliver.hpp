// How texts and arrays reach the caller's memory.
#ifndef TAVO_API_DELIVER_HPP
#define TAVO_API_DELIVER_HPP

#include "api/guard.hpp"

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace TAVO::api {

/// A buffer of the caller's.
struct Buffer {
    char* data;
    int size;
};

/// The name of an exported function in its two error texts.
struct Name {
    Name(char const* function) : inInvalid(function), inNotEnough(function) {}  // NOLINT: a name is a name
    Name(char const* invalid, char const* notEnough) : inInvalid(invalid), inNotEnough(notEnough) {}
    char const* inInvalid;
    char const* inNotEnough;
};

/// @p length as a result that leaves room for a terminating zero; throws
/// too_long_string when no int can say it.
int textLength(std::size_t length, char const* function);

/// Writes @p text and a terminating zero when both fit. Returns the text's
/// length, or length + 1 for a null buffer; false in @p fits when they do not.
int copyText(std::string_view text, Buffer buffer, bool& fits, char const* function);

template <class Object>
int notEnough(Object const& object, char const* function) {
    return object.setErrorWhat(ERROR_NOT_ENOUGH_BUFFER, flatText("NOT_ENOUGH_BUFFER", function));
}

template <class Object>
int deliver(Object const& object, std::string_view text, Buffer buffer, char const* function) {
    bool fits = true;
    int const length = copyText(text, buffer, fits, function);
    return fits ? length : notEnough(object, function);
}

/// One call of a function that delivers a text. @p argumentsHold tells about the
/// arguments beside the size; produce(object) gives the text.
template <class Handle, class Produce>
int textOf(Handle* handle, Name function, bool argumentsHold, Buffer buffer, Produce produce) noexcept {
    return guarded(handle, [&](auto& object) {
        require(argumentsHold && buffer.size >= 0, function.inInvalid);
        return deliver(object, produce(object), buffer, function.inNotEnough);
    });
}

/// Writes @p values into the caller's array when there is room for all.
template <class Object, class Value>
int deliverArray(Object const& object, std::vector<Value> const& values, Value* array, int room, char const* function) {
    if (array != nullptr) {
        if (values.size() > static_cast<std::size_t>(room)) return notEnough(object, function);
        std::copy(values.begin(), values.end(), array);
    }
    return static_cast<int>(values.size());
}

/// Category lists as text: "[1,2][][7]".
std::string categoryText(std::vector<unsigned short> const (&lists)[3]);
/// Numbers in decimal, joined by ",".
template <class Number>
std::string joined(std::vector<Number> const& numbers) {
    std::string text;
    for (Number const number : numbers) {
        if (!text.empty()) text += ',';
        text += std::to_string(number);
    }
    return text;
}

}  // namespace TAVO::api

#endif
