// The frame that every exported function shares: refuse a null handle, clear the
// error of the call before, check arguments, turn exceptions into codes.
#ifndef TAVO_API_GUARD_HPP
#define TAVO_API_GUARD_HPP

#include "api/handle.hpp"

#include <tavo/error.hpp>

#include <string>
#include <type_traits>
#include <utility>

namespace TAVO::api {

/// "INVALID_ARGUMENT" + ":" + function + "()": errors that the flat interface
/// finds itself have no blank after the colon.
std::string flatText(char const* kind, char const* function);
[[noreturn]] void badArgument(char const* function);

/// Checks an argument of the exported function of that name.
inline void require(bool holds, char const* function) {
    if (!holds) badArgument(function);
}
constexpr bool isFlag(int value) noexcept { return value == 0 || value == 1; }

/// What a function with this result returns in the case of an error.
template <class Result>
Result failed(int code) noexcept {
    if constexpr (std::is_pointer_v<Result>)
        return nullptr;
    else
        return code;
}

/// Stores the exception being handled in @p object and returns its code.
template <class Object>
int record(Object const& object) {
    std::string what;
    int const code = currentExceptionCode(what);
    return object.setErrorWhat(code, std::move(what));
}

/// Runs body(object), an int or a pointer, as one call on the handle's object.
template <class Handle, class Body>
auto guarded(Handle* handle, Body body) noexcept -> decltype(body(objectOf(*handle))) {
    using Result = decltype(body(objectOf(*handle)));
    if (handle == nullptr) return failed<Result>(ERROR_INVALID_ARGUMENT);
    auto& object = objectOf(*handle);
    object.clearError();
    try {
        try {
            return body(object);
        } catch (...) {
            return failed<Result>(record(object));
        }
    } catch (...) {
        return failed<Result>(ERROR_BAD_ALLOC);  // no memory even for the error's text
    }
}

/// The exported function that runs, for its error texts.
struct Call {
    char const* function;
    /// Checks an argument.
    void require(bool holds) const { api::require(holds, function); }
};

/// The same with body(object, call) for functions that check arguments.
template <class Handle, class Body>
auto guarded(Handle* handle, char const* function, Body body) noexcept
    -> decltype(body(objectOf(*handle), Call{function})) {
    return guarded(handle, [&](auto& object) { return body(object, Call{function}); });
}

}  // namespace TAVO::api

#endif
