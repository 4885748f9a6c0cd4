// Values and texts of a whole morpheme.
#include "api/shapes.hpp"
#include "result/mrph_access.hpp"

using namespace TAVO;
using namespace TAVO::api;

int tavo_getForm(tavo_mrph_t* mrph, int flag, char* buffer, int size) {
    return wholeText(mrph, __func__, &Mrph::getForm, flag, {buffer, size});
}
int tavo_getStdForm(tavo_mrph_t* mrph, int flag, char* buffer, int size) {
    return wholeText(mrph, __func__, &Mrph::getStdForm, flag, {buffer, size});
}
int tavo_getRead(tavo_mrph_t* mrph, int flag, char* buffer, int size) {
    return wholeText(mrph, __func__, &Mrph::getRead, flag, {buffer, size});
}
int tavo_getPron(tavo_mrph_t* mrph, int flag, char* buffer, int size) {
    return wholeText(mrph, __func__, &Mrph::getPron, flag, {buffer, size});
}
int tavo_getReadPron(tavo_mrph_t* mrph, int flag, char* buffer, int size) {
    return wholeText(mrph, __func__, &Mrph::getReadPron, flag, {buffer, size});
}
int tavo_getLVRead(tavo_mrph_t* mrph, int flag, char* buffer, int size) {
    return wholeText(mrph, __func__, &Mrph::getLVRead, flag, {buffer, size});
}
int tavo_getEndForm(tavo_mrph_t* mrph, int flag, char* buffer, int size) {
    return wholeText(mrph, __func__, &Mrph::getEndForm, flag, {buffer, size});
}
int tavo_getEndStdForm(tavo_mrph_t* mrph, int flag, char* buffer, int size) {
    return wholeText(mrph, __func__, &Mrph::getEndStdForm, flag, {buffer, size});
}
int tavo_getEndRead(tavo_mrph_t* mrph, int flag, char* buffer, int size) {
    return wholeText(mrph, __func__, &Mrph::getEndRead, flag, {buffer, size});
}
int tavo_getEndPron(tavo_mrph_t* mrph, int flag, char* buffer, int size) {
    return wholeText(mrph, __func__, &Mrph::getEndPron, flag, {buffer, size});
}
int tavo_getEndLVRead(tavo_mrph_t* mrph, int flag, char* buffer, int size) {
    // Callers compare the texts; the one with the first name lacks "get".
    return wholeText(mrph, {"tavo_EndLVRead", __func__}, &Mrph::getEndLVRead, flag, {buffer, size});
}

int tavo_getFormLength(tavo_mrph_t* mrph) { return valueOf(mrph, &Mrph::getFormLength); }
int tavo_getGivenBegin(tavo_mrph_t* mrph) { return valueOf(mrph, &Mrph::getGivenBegin); }
int tavo_getGivenEnd(tavo_mrph_t* mrph) { return valueOf(mrph, &Mrph::getGivenEnd); }
int tavo_getPid(tavo_mrph_t* mrph) { return valueOf(mrph, &Mrph::getPid); }
int tavo_getCost(tavo_mrph_t* mrph) { return valueOf(mrph, &Mrph::getCost); }
int tavo_getExtCount(tavo_mrph_t* mrph) { return valueOf(mrph, &Mrph::getExtCount); }
int tavo_getAltCount(tavo_mrph_t* mrph) { return valueOf(mrph, &Mrph::getAltCount); }
int tavo_isUndef(tavo_mrph_t* mrph) { return valueOf(mrph, &Mrph::isUndef); }
int tavo_isAnnotation(tavo_mrph_t* mrph) { return valueOf(mrph, &Mrph::isAnnotation); }

int tavo_getPartOfSP(tavo_mrph_t* mrph, char* buffer, int size) {
    return storedText(mrph, __func__, &Mrph::getPartOfSP, {buffer, size});
}
int tavo_getDisplayPartOfSP(tavo_mrph_t* mrph, char* buffer, int size) {
    return textOf(mrph, __func__, true, {buffer, size}, [](Mrph& object) { return object.getDisplayPartOfSP(); });
}
int tavo_getGroup(tavo_mrph_t* mrph, char* buffer, int size) {
    return storedText(mrph, __func__, &Mrph::getGroup, {buffer, size});
}
int tavo_getGroupCooc(tavo_mrph_t* mrph, char* buffer, int size) {
    return storedText(mrph, __func__, &Mrph::getGroupCooc, {buffer, size});
}
int tavo_getWordCooc(tavo_mrph_t* mrph, char* buffer, int size) {
    return storedText(mrph, __func__, &Mrph::getWordCooc, {buffer, size});
}
int tavo_getGrammarType(tavo_mrph_t* mrph, char* buffer, int size) {
    return storedText(mrph, __func__, &Mrph::getGrammarType, {buffer, size});
}
int tavo_getAdditionalInfo(tavo_mrph_t* mrph, char* buffer, int size) {
    return storedText(mrph, __func__, &Mrph::getAdditionalInfo, {buffer, size});
}
int tavo_getProsodicInfo(tavo_mrph_t* mrph, char* buffer, int size) {
    return storedText(mrph, __func__, &Mrph::getProsodicInfo, {buffer, size});
}
int tavo_getProsodicType(tavo_mrph_t* mrph, char* buffer, int size) {
    return storedText(mrph, __func__, &Mrph::getProsodicType, {buffer, size});
}

int tavo_getCategory(tavo_mrph_t* mrph, char* buffer, int size) {
    return textOf(mrph, __func__, true, {buffer, size}, [](Mrph& object) {
        std::vector<unsigned short> lists[3];
        object.getCategory(lists[0], lists[1], lists[2]);
        return categoryText(lists);
    });
}

int tavo_getCategoryCount(tavo_mrph_t* mrph, unsigned char* count1, unsigned char* count2, unsigned char* count3) {
    return guarded(mrph, __func__, [&](Mrph& object, Call call) {
        call.require(count1 != nullptr && count2 != nullptr && count3 != nullptr);
        return object.getCategoryCount(*count1, *count2, *count3), 0;
    });
}

int tavo_getExt(tavo_mrph_t* mrph, int index, char* buffer, int size) {
    return partText<char const*>(mrph, __func__, &Mrph::getExt, index, {buffer, size});
}

int tavo_getAlt(tavo_mrph_t* mrph, tavo_mrph_t** array, int count) {
    return guarded(mrph, __func__, [&](Mrph& object, Call call) {
        call.require(count >= 0);
        std::vector<Mrph> alternatives;
        object.getAlt(alternatives);
        if (array == nullptr) return static_cast<int>(alternatives.size());
        if (alternatives.size() > static_cast<std::size_t>(count)) return notEnough(object, call.function);
        for (Mrph const& alternative : alternatives) *array++ = handleOf(*MrphAccess::storeAlt(alternative));
        return static_cast<int>(alternatives.size());
    });
}
