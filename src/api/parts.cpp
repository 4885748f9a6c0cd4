// Values and texts of one part of a morpheme.
#include "api/shapes.hpp"

using namespace TAVO;
using namespace TAVO::api;

int tavo_getPartCount(tavo_mrph_t* mrph) { return valueOf(mrph, &Mrph::getPartCount); }

int tavo_getPartForm(tavo_mrph_t* mrph, int part, char* buffer, int size) {
    return partText<std::string>(mrph, __func__, &Mrph::getPartForm, part, {buffer, size});
}
int tavo_getPartStdForm(tavo_mrph_t* mrph, int part, char* buffer, int size) {
    return partText<std::string>(mrph, __func__, &Mrph::getPartStdForm, part, {buffer, size});
}
int tavo_getPartRead(tavo_mrph_t* mrph, int part, char* buffer, int size) {
    return partText<std::string>(mrph, __func__, &Mrph::getPartRead, part, {buffer, size});
}
int tavo_getPartPron(tavo_mrph_t* mrph, int part, char* buffer, int size) {
    return partText<std::string>(mrph, __func__, &Mrph::getPartPron, part, {buffer, size});
}
int tavo_getPartReadPron(tavo_mrph_t* mrph, int part, char* buffer, int size) {
    return partText<std::string>(mrph, __func__, &Mrph::getPartReadPron, part, {buffer, size});
}
int tavo_getPartLVRead(tavo_mrph_t* mrph, int part, char* buffer, int size) {
    return partText<std::string>(mrph, __func__, &Mrph::getPartLVRead, part, {buffer, size});
}
int tavo_getPartEndForm(tavo_mrph_t* mrph, int part, char* buffer, int size) {
    return partText<std::string>(mrph, __func__, &Mrph::getPartEndForm, part, {buffer, size});
}
int tavo_getPartEndStdForm(tavo_mrph_t* mrph, int part, char* buffer, int size) {
    // Callers compare the texts, misspelt name included.
    return partText<std::string>(mrph, {__func__, "tavo_getPatEndStdForm"}, &Mrph::getPartEndStdForm, part,
                                 {buffer, size});
}
int tavo_getPartEndRead(tavo_mrph_t* mrph, int part, char* buffer, int size) {
    return partText<std::string>(mrph, __func__, &Mrph::getPartEndRead, part, {buffer, size});
}
int tavo_getPartEndPron(tavo_mrph_t* mrph, int part, char* buffer, int size) {
    return partText<std::string>(mrph, __func__, &Mrph::getPartEndPron, part, {buffer, size});
}
int tavo_getPartEndLVRead(tavo_mrph_t* mrph, int part, char* buffer, int size) {
    return partText<std::string>(mrph, __func__, &Mrph::getPartEndLVRead, part, {buffer, size});
}
int tavo_getPartPartOfSP(tavo_mrph_t* mrph, int part, char* buffer, int size) {
    return partText<char const*>(mrph, __func__, &Mrph::getPartOfSP, part, {buffer, size});
}
int tavo_getPartDisplayPartOfSP(tavo_mrph_t* mrph, int part, char* buffer, int size) {
    return partText<std::string>(mrph, __func__, &Mrph::getDisplayPartOfSP, part, {buffer, size});
}
int tavo_getPartGroup(tavo_mrph_t* mrph, int part, char* buffer, int size) {
    return partText<char const*>(mrph, __func__, &Mrph::getPartGroup, part, {buffer, size});
}
int tavo_getPartGroupCooc(tavo_mrph_t* mrph, int part, char* buffer, int size) {
    return partText<char const*>(mrph, __func__, &Mrph::getPartGroupCooc, part, {buffer, size});
}
int tavo_getPartWordCooc(tavo_mrph_t* mrph, int part, char* buffer, int size) {
    return partText<char const*>(mrph, __func__, &Mrph::getPartWordCooc, part, {buffer, size});
}
int tavo_getPartGrammarType(tavo_mrph_t* mrph, int part, char* buffer, int size) {
    return partText<char const*>(mrph, __func__, &Mrph::getPartGrammarType, part, {buffer, size});
}
int tavo_getPartAdditionalInfo(tavo_mrph_t* mrph, int part, char* buffer, int size) {
    return partText<char const*>(mrph, __func__, &Mrph::getPartAdditionalInfo, part, {buffer, size});
}
int tavo_getPartProsodicInfo(tavo_mrph_t* mrph, int part, char* buffer, int size) {
    return partText<char const*>(mrph, __func__, &Mrph::getPartProsodicInfo, part, {buffer, size});
}
int tavo_getPartProsodicType(tavo_mrph_t* mrph, int part, char* buffer, int size) {
    return partText<char const*>(mrph, __func__, &Mrph::getPartProsodicType, part, {buffer, size});
}

int tavo_getPartLength(tavo_mrph_t* mrph, int part) {
    return partValue<int>(mrph, __func__, &Mrph::getPartLength, part);
}
int tavo_getPartFormLength(tavo_mrph_t* mrph, int part) {
    return partValue<int>(mrph, __func__, &Mrph::getPartFormLength, part);
}
int tavo_getPartGivenBegin(tavo_mrph_t* mrph, int part) {
    return partValue<std::size_t>(mrph, __func__, &Mrph::getPartGivenBegin, part);
}
int tavo_getPartGivenEnd(tavo_mrph_t* mrph, int part) {
    return partValue<std::size_t>(mrph, __func__, &Mrph::getPartGivenEnd, part);
}
int tavo_getPartPid(tavo_mrph_t* mrph, int part) {
    return partValue<unsigned short>(mrph, __func__, &Mrph::getPartPid, part);
}
int tavo_getPartCost(tavo_mrph_t* mrph, int part) { return partValue<int>(mrph, __func__, &Mrph::getPartCost, part); }
int tavo_getPartExtCount(tavo_mrph_t* mrph, int part) {
    return partValue<int>(mrph, __func__, &Mrph::getPartExtCount, part);
}

int tavo_getPartCategory(tavo_mrph_t* mrph, int part, char* buffer, int size) {
    return textOf(mrph, __func__, part >= 0, {buffer, size}, [&](Mrph& object) {
        std::vector<unsigned short> lists[3];
        object.getPartCategory(part, lists[0], lists[1], lists[2]);
        return categoryText(lists);
    });
}

int tavo_getPartCategoryCount(tavo_mrph_t* mrph, int part, unsigned char* count1, unsigned char* count2,
                              unsigned char* count3) {
    return guarded(mrph, __func__, [&](Mrph& object, Call call) {
        call.require(part >= 0 && count1 != nullptr && count2 != nullptr && count3 != nullptr);
        return object.getPartCategoryCount(part, *count1, *count2, *count3), 0;
    });
}

int tavo_getPartExt(tavo_mrph_t* mrph, int part, int field, char* buffer, int size) {
    return textOf(mrph, __func__, part >= 0 && field >= 0, {buffer, size},
                  [&](Mrph& object) { return object.getPartExt(part, field); });
}
