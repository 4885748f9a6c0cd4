// The list of dictionaries.
#include "api/shapes.hpp"

using namespace TAVO;
using namespace TAVO::api;

namespace {

/// The words of tavo_getByRead may go with a dictionary.
template <class Argument>
int offOne(tavo_t* tavo, char const* function, bool argumentHolds, Argument argument) noexcept {
    return guarded(tavo, function, [&](tavo_t& object, Call call) {
        call.require(argumentHolds);
        object.words.clear();
        return object.offDic(argument), 0;
    });
}

template <class Argument>
int touchOne(tavo_t* tavo, char const* function, bool argumentHolds, Argument argument) noexcept {
    return guarded(tavo, function, [&](Tavo& object, Call call) {
        call.require(argumentHolds);
        return object.touchDic(argument), 0;
    });
}

/// A rebuild frees the image that morphemes point into.
template <class Argument>
int updateOne(tavo_t* tavo, char const* function, bool argumentHolds, Argument argument) noexcept {
    return guarded(tavo, function, [&](tavo_t& object, Call call) {
        call.require(argumentHolds);
        object.endHandles();
        return object.updateDic(argument);
    });
}

template <class Dictionary>
int readingOf(tavo_t* tavo, char const* function, bool argumentsHold, tavo_result_t* result, char const* reading,
              Dictionary dictionary) noexcept {
    return guarded(tavo, function, [&](tavo_t& object, Call call) {
        call.require(argumentsHold && result != nullptr && reading != nullptr);
        *result = {};
        object.getByRead(object.words.onePath(), reading, dictionary);
        return object.words.publish(result, call.function), 0;
    });
}

}  // namespace

int tavo_addDicPath(tavo_t* tavo, char const* path, int memoryMapped) {
    return guarded(tavo, __func__, [&](Tavo& object, Call call) {
        call.require(path != nullptr && isFlag(memoryMapped));
        return object.addDicPath(path, memoryMapped == 1), 0;
    });
}

int tavo_getDicCount(tavo_t* tavo) { return getNumber(tavo, &Tavo::getDicCount); }

int tavo_getDicIndex(tavo_t* tavo, char const* path) {
    return guarded(tavo, __func__, [&](Tavo& object, Call call) {
        call.require(path != nullptr);
        return object.getDicIndex(path);
    });
}

int tavo_getDicPath(tavo_t* tavo, int index, char* buffer, int size) {
    return textOf(tavo, __func__, index >= 0, {buffer, size}, [&](Tavo& object) { return object.getDicPath(index); });
}

int tavo_getSrcPath(tavo_t* tavo, int index, char* buffer, int size) {
    return textOf(tavo, __func__, index >= 0, {buffer, size}, [&](Tavo& object) { return object.getSrcPath(index); });
}

int tavo_isFirstDic(tavo_mrph_t* mrph) { return valueOf(mrph, &Mrph::isFirstDic); }

int tavo_offDic(tavo_t* tavo, int index) { return offOne(tavo, __func__, index >= 0, index); }
int tavo_offDicPath(tavo_t* tavo, char const* path) { return offOne(tavo, __func__, path != nullptr, path); }
int tavo_offDicAll(tavo_t* tavo) {
    return guarded(tavo, [](tavo_t& object) {
        object.words.clear();
        return object.offDic(), 0;
    });
}

int tavo_touchDic(tavo_t* tavo, int index) { return touchOne(tavo, __func__, index >= 0, index); }
int tavo_touchDicPath(tavo_t* tavo, char const* path) { return touchOne(tavo, __func__, path != nullptr, path); }
int tavo_touchDicAll(tavo_t* tavo) {
    return guarded(tavo, [](Tavo& object) { return object.touchDic(), 0; });
}

int tavo_updateDic(tavo_t* tavo, int index) { return updateOne(tavo, __func__, index >= 0, index); }
int tavo_updateDicPath(tavo_t* tavo, char const* path) { return updateOne(tavo, __func__, path != nullptr, path); }

int tavo_getByRead(tavo_t* tavo, tavo_result_t* result, char const* reading, int index) {
    return readingOf(tavo, __func__, index >= 0, result, reading, index);
}

int tavo_getByReadPath(tavo_t* tavo, tavo_result_t* result, char const* reading, char const* path) {
    return readingOf(tavo, __func__, path != nullptr, result, reading, path);
}
