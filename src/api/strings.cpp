// Strings, lists, files and paths.
#include "api/shapes.hpp"

using namespace TAVO;
using namespace TAVO::api;

int tavo_setOutputFormat(tavo_t* tavo, char const* text) {
    return setText(tavo, __func__, &Tavo::setOutputFormat, text);
}
char const* tavo_getOutputFormat(tavo_t* tavo) { return getText(tavo, &Tavo::getOutputFormat); }
int tavo_setNullString(tavo_t* tavo, char const* text) { return setText(tavo, __func__, &Tavo::setNullString, text); }
char const* tavo_getNullString(tavo_t* tavo) { return getText(tavo, &Tavo::getNullString); }
int tavo_setEOS(tavo_t* tavo, char const* text) { return setText(tavo, __func__, &Tavo::setEOS, text); }
char const* tavo_getEOS(tavo_t* tavo) { return getText(tavo, &Tavo::getEOS); }
int tavo_setInitFilePath(tavo_t* tavo, char const* path) {
    return setText(tavo, __func__, &Tavo::setInitFilePath, path);
}
char const* tavo_getInitFilePath(tavo_t* tavo) { return getText(tavo, &Tavo::getInitFilePath); }
int tavo_setConnTablePath(tavo_t* tavo, char const* path) {
    return setText(tavo, __func__, &Tavo::setConnTablePath, path);
}
char const* tavo_getConnTablePath(tavo_t* tavo) { return getText(tavo, &Tavo::getConnTablePath); }

int tavo_setCommentRulePath(tavo_t* tavo, char const* path) {
    return setOptionalPath(tavo, &Tavo::setCommentRulePath, path);
}
char const* tavo_getCommentRulePath(tavo_t* tavo) { return getText(tavo, &Tavo::getCommentRulePath); }
int tavo_setConvertRulePath(tavo_t* tavo, char const* path) {
    return setOptionalPath(tavo, &Tavo::setConvertRulePath, path);
}
char const* tavo_getConvertRulePath(tavo_t* tavo) { return getText(tavo, &Tavo::getConvertRulePath); }
int tavo_setReduceRulePath(tavo_t* tavo, char const* path) {
    return setOptionalPath(tavo, &Tavo::setReduceRulePath, path);
}
char const* tavo_getReduceRulePath(tavo_t* tavo) { return getText(tavo, &Tavo::getReduceRulePath); }
int tavo_setEndFormRulePath(tavo_t* tavo, char const* path) {
    return setOptionalPath(tavo, &Tavo::setEndFormRulePath, path);
}
char const* tavo_getEndFormRulePath(tavo_t* tavo) { return getText(tavo, &Tavo::getEndFormRulePath); }
int tavo_setCooccurrenceRulePath(tavo_t* tavo, char const* path) {
    return setOptionalPath(tavo, &Tavo::setCooccurrenceRulePath, path);
}
char const* tavo_getCooccurrenceRulePath(tavo_t* tavo) { return getText(tavo, &Tavo::getCooccurrenceRulePath); }
int tavo_setPublicPartOfSPPath(tavo_t* tavo, char const* path) {
    return setOptionalPath(tavo, &Tavo::setPublicPartOfSPPath, path);
}
char const* tavo_getPublicPartOfSPPath(tavo_t* tavo) { return getText(tavo, &Tavo::getPublicPartOfSPPath); }
int tavo_setNumberPartOfSPPath(tavo_t* tavo, char const* path) {
    return setOptionalPath(tavo, &Tavo::setNumberPartOfSPPath, path);
}
char const* tavo_getNumberPartOfSPPath(tavo_t* tavo) { return getText(tavo, &Tavo::getNumberPartOfSPPath); }
int tavo_setMajorPartOfSPPath(tavo_t* tavo, char const* path) {
    return setOptionalPath(tavo, &Tavo::setMajorPartOfSPPath, path);
}
char const* tavo_getMajorPartOfSPPath(tavo_t* tavo) { return getText(tavo, &Tavo::getMajorPartOfSPPath); }

int tavo_setDelimiterString(tavo_t* tavo, char const* const* strings, int count) {
    return guarded(tavo, __func__, [&](Tavo& object, Call call) {
        call.require(count >= 0 && (strings != nullptr || count == 0));
        return object.setDelimiterString(std::vector<char const*>(strings, strings + count)), 0;
    });
}

int tavo_getDelimiterString(tavo_t* tavo, char const** array, int count) {
    return guarded(tavo, __func__, [&](Tavo& object, Call call) {
        call.require(count >= 0);
        return deliverArray(object, object.getDelimiterString(), array, count, call.function);
    });
}

int tavo_clearDelimiterString(tavo_t* tavo) {
    return guarded(tavo, [](Tavo& object) { return object.clearDelimiterString(), 0; });
}
