// Functions of one shape, each a line to the method behind it.
#ifndef TAVO_API_SHAPES_HPP
#define TAVO_API_SHAPES_HPP

#include "api/deliver.hpp"

namespace TAVO::api {

// Settings of an analyser.

inline int setNumber(tavo_t* tavo, void (Tavo::*set)(int), int value) noexcept {
    return guarded(tavo, [&](Tavo& object) { return (object.*set)(value), 0; });
}

inline int getNumber(tavo_t* tavo, int (Tavo::*get)() const) noexcept {
    return guarded(tavo, [&](Tavo& object) { return (object.*get)(); });
}

/// For settings that have no meaning for null.
inline int setText(tavo_t* tavo, char const* function, void (Tavo::*set)(char const*), char const* text) noexcept {
    return guarded(tavo, function, [&](Tavo& object, Call call) {
        call.require(text != nullptr);
        return (object.*set)(text), 0;
    });
}

/// For paths whose null takes the file away.
inline int setOptionalPath(tavo_t* tavo, void (Tavo::*set)(char const*), char const* path) noexcept {
    return guarded(tavo, [&](Tavo& object) { return (object.*set)(path), 0; });
}

inline char const* getText(tavo_t* tavo, char const* (Tavo::*get)() const) noexcept {
    return guarded(tavo, [&](Tavo& object) { return (object.*get)(); });
}

// Values of a morpheme. Value is any type that converts to the result.

template <class Value>
int valueOf(tavo_mrph_t* mrph, Value (Mrph::*get)() const) noexcept {
    return guarded(mrph, [&](Mrph& object) { return static_cast<int>((object.*get)()); });
}

template <class Value>
int partValue(tavo_mrph_t* mrph, char const* function, Value (Mrph::*get)(int) const, int part) noexcept {
    return guarded(mrph, function, [&](Mrph& object, Call call) {
        call.require(part >= 0);
        return static_cast<int>((object.*get)(part));
    });
}

// Texts of a morpheme.

inline int storedText(tavo_mrph_t* mrph, char const* function, char const* (Mrph::*get)() const,
                      Buffer buffer) noexcept {
    return textOf(mrph, function, true, buffer, [&](Mrph& object) { return (object.*get)(); });
}

inline int wholeText(tavo_mrph_t* mrph, Name function, std::string (Mrph::*get)(bool) const, int flag,
                     Buffer buffer) noexcept {
    return textOf(mrph, function, isFlag(flag), buffer, [&](Mrph& object) { return (object.*get)(flag == 1); });
}

/// Text is std::string or char const*.
template <class Text>
int partText(tavo_mrph_t* mrph, Name function, Text (Mrph::*get)(int) const, int part, Buffer buffer) noexcept {
    return textOf(mrph, function, part >= 0, buffer, [&](Mrph& object) { return (object.*get)(part); });
}

}  // namespace TAVO::api

#endif
