// Analysing, and the sentences of the last text.
#include "api/shapes.hpp"

using namespace TAVO;
using namespace TAVO::api;

namespace {

int analyzeWith(tavo_t* tavo, char const* function, int (Tavo::*analyze)(char const*, int), char const* text,
                int length) noexcept {
    return guarded(tavo, function, [&](tavo_t& object, Call call) {
        call.require(length >= 0 && (text != nullptr || length == 0));
        object.endHandles();
        return (object.*analyze)(text, length);
    });
}

}  // namespace

int tavo_analyze(tavo_t* tavo, char const* text, int length) {
    return analyzeWith(tavo, __func__, &Tavo::analyze, text, length);
}

int tavo_analyzeNBest(tavo_t* tavo, char const* text, int length) {
    return analyzeWith(tavo, __func__, &Tavo::analyzeNBest, text, length);
}

int tavo_getResult(tavo_t* tavo, tavo_result_t* result, int sentence) {
    return guarded(tavo, __func__, [&](tavo_t& object, Call call) {
        call.require(result != nullptr && sentence >= 0);
        *result = {};
        object.getResult(object.results.onePath(), sentence);
        return object.results.publish(result, call.function), 0;
    });
}

int tavo_getResultNBest(tavo_t* tavo, tavo_result_t* results, int sentence, int n) {
    return guarded(tavo, __func__, [&](tavo_t& object, Call call) {
        call.require(results != nullptr && sentence >= 0 && n >= 0);
        std::vector<std::vector<Mrph>> paths;
        object.getResultNBest(paths, sentence, n);
        if (paths.empty()) return 0;
        object.results.paths() = std::move(paths);
        object.results.publish(results, call.function);
        return static_cast<int>(object.results.paths().size());
    });
}

int tavo_getSentenceCount(tavo_t* tavo) {
    return guarded(tavo, [](Tavo& object) { return static_cast<int>(object.getSentenceCount()); });
}

int tavo_getSentence(tavo_t* tavo, int sentence, char* buffer, int size) {
    return textOf(tavo, __func__, sentence >= 0, {buffer, size},
                  [&](Tavo& object) { return object.getSentence(sentence); });
}

int tavo_getSentenceLength(tavo_t* tavo, int sentence) {
    return guarded(tavo, __func__, [&](Tavo& object, Call call) {
        call.require(sentence >= 0);
        return static_cast<int>(object.getSentenceLength(sentence));
    });
}

int tavo_getAnalyzedText(tavo_t* tavo, int sentence, char* buffer, int size) {
    return textOf(tavo, __func__, sentence >= 0, {buffer, size},
                  [&](Tavo& object) { return object.getAnalyzedText(sentence); });
}
