// Analysers, the process-wide state, and reading errors.
#include "api/deliver.hpp"

using namespace TAVO;
using namespace TAVO::api;

namespace {

/// For the two functions that have no object to keep an error in.
template <class Body>
int guardedStatic(Body body) noexcept {
    try {
        body();
        return ERROR_NONE;
    } catch (...) {
        return ERROR_OTHER;
    }
}

}  // namespace

tavo_t* tavo_new(int nodeCapacity) {
    try {
        return new tavo_t(nodeCapacity);
    } catch (...) {
        return nullptr;
    }
}

int tavo_free(tavo_t* tavo) {
    if (tavo == nullptr) return ERROR_INVALID_ARGUMENT;
    delete tavo;
    return ERROR_NONE;
}

int tavo_isOK(tavo_t* tavo) {
    return guarded(tavo, [](tavo_t& object) { return object ? 1 : 0; });
}

int tavo_readyForThread(void) { return guardedStatic(Tavo::readyForThread); }
int tavo_dispose(void) { return guardedStatic(Tavo::dispose); }

char const* tavo_getErrorMessage(int code) { return getErrorMessage(code); }

char const* tavo_getErrorWhat(tavo_t* tavo) {
    return tavo != nullptr ? tavo->getErrorWhat() : "INVALID_ARGUMENT:tavo_getErrorWhat()";
}

int tavo_getErrorSentenceIndex(tavo_t* tavo, char* buffer, int size) {
    return textOf(tavo, __func__, true, {buffer, size},
                  [](tavo_t& object) { return joined(object.getErrorSentenceIndex()); });
}

int tavo_getMrphErrorCode(tavo_mrph_t* mrph) {
    return mrph != nullptr ? objectOf(*mrph).getErrorCode() : ERROR_INVALID_ARGUMENT;
}

char const* tavo_getMrphErrorWhat(tavo_mrph_t* mrph) {
    return mrph != nullptr ? objectOf(*mrph).getErrorWhat() : "INVALID_ARGUMENT:tavo_getMrphErrorWhat()";
}
