// The integer modes.
#include "api/shapes.hpp"

using namespace TAVO;
using namespace TAVO::api;

int tavo_setInputConvertMode(tavo_t* tavo, int mode) { return setNumber(tavo, &Tavo::setInputConvertMode, mode); }
int tavo_getInputConvertMode(tavo_t* tavo) { return getNumber(tavo, &Tavo::getInputConvertMode); }
int tavo_setOutputConvertMode(tavo_t* tavo, int mode) { return setNumber(tavo, &Tavo::setOutputConvertMode, mode); }
int tavo_getOutputConvertMode(tavo_t* tavo) { return getNumber(tavo, &Tavo::getOutputConvertMode); }
int tavo_setCooccurrenceMode(tavo_t* tavo, int mode) { return setNumber(tavo, &Tavo::setCooccurrenceMode, mode); }
int tavo_getCooccurrenceMode(tavo_t* tavo) { return getNumber(tavo, &Tavo::getCooccurrenceMode); }
int tavo_setDelimitCRLFMode(tavo_t* tavo, int mode) { return setNumber(tavo, &Tavo::setDelimitCRLFMode, mode); }
int tavo_getDelimitCRLFMode(tavo_t* tavo) { return getNumber(tavo, &Tavo::getDelimitCRLFMode); }
int tavo_setDeleteCRLFMode(tavo_t* tavo, int mode) { return setNumber(tavo, &Tavo::setDeleteCRLFMode, mode); }
int tavo_getDeleteCRLFMode(tavo_t* tavo) { return getNumber(tavo, &Tavo::getDeleteCRLFMode); }
int tavo_setTaggedInputMode(tavo_t* tavo, int mode) { return setNumber(tavo, &Tavo::setTaggedInputMode, mode); }
int tavo_getTaggedInputMode(tavo_t* tavo) { return getNumber(tavo, &Tavo::getTaggedInputMode); }
int tavo_setDeleteSlashMode(tavo_t* tavo, int mode) { return setNumber(tavo, &Tavo::setDeleteSlashMode, mode); }
int tavo_getDeleteSlashMode(tavo_t* tavo) { return getNumber(tavo, &Tavo::getDeleteSlashMode); }
int tavo_setAlphabetCapitalizeMode(tavo_t* tavo, int mode) {
    return setNumber(tavo, &Tavo::setAlphabetCapitalizeMode, mode);
}
int tavo_getAlphabetCapitalizeMode(tavo_t* tavo) { return getNumber(tavo, &Tavo::getAlphabetCapitalizeMode); }
int tavo_setAlternativeMode(tavo_t* tavo, int mode) { return setNumber(tavo, &Tavo::setAlternativeMode, mode); }
int tavo_getAlternativeMode(tavo_t* tavo) { return getNumber(tavo, &Tavo::getAlternativeMode); }
int tavo_setReduceUndefMode(tavo_t* tavo, int mode) { return setNumber(tavo, &Tavo::setReduceUndefMode, mode); }
int tavo_getReduceUndefMode(tavo_t* tavo) { return getNumber(tavo, &Tavo::getReduceUndefMode); }
int tavo_setReduceCharMode(tavo_t* tavo, int mode) { return setNumber(tavo, &Tavo::setReduceCharMode, mode); }
int tavo_getReduceCharMode(tavo_t* tavo) { return getNumber(tavo, &Tavo::getReduceCharMode); }
int tavo_setReduceNumberMode(tavo_t* tavo, int mode) { return setNumber(tavo, &Tavo::setReduceNumberMode, mode); }
int tavo_getReduceNumberMode(tavo_t* tavo) { return getNumber(tavo, &Tavo::getReduceNumberMode); }
int tavo_setDivideWordMode(tavo_t* tavo, int mode) { return setNumber(tavo, &Tavo::setDivideWordMode, mode); }
int tavo_getDivideWordMode(tavo_t* tavo) { return getNumber(tavo, &Tavo::getDivideWordMode); }
int tavo_setMemoryMappedMode(tavo_t* tavo, int mode) { return setNumber(tavo, &Tavo::setMemoryMappedMode, mode); }
int tavo_getMemoryMappedMode(tavo_t* tavo) { return getNumber(tavo, &Tavo::getMemoryMappedMode); }

int tavo_setProsodicInfoCombineMode(tavo_t* tavo, int mode, char const* filler) {
    return guarded(tavo, __func__, [&](Tavo& object, Call call) {
        call.require(filler != nullptr);
        return object.setProsodicInfoCombineMode(mode, filler), 0;
    });
}

int tavo_getProsodicInfoCombineMode(tavo_t* tavo) { return getNumber(tavo, &Tavo::getProsodicInfoCombineMode); }
char const* tavo_getProsodicInfoFiller(tavo_t* tavo) { return getText(tavo, &Tavo::getProsodicInfoFiller); }

int tavo_setExtCombineMode(tavo_t* tavo, int index, int mode, char const* filler) {
    return guarded(tavo, __func__, [&](Tavo& object, Call call) {
        call.require(index >= 0 && filler != nullptr);
        return object.setExtCombineMode(index, mode, filler), 0;
    });
}

int tavo_getExtCombineMode(tavo_t* tavo, int index) {
    return guarded(tavo, __func__, [&](Tavo& object, Call call) {
        call.require(index >= 0);
        return object.getExtCombineMode(index);
    });
}

char const* tavo_getExtFiller(tavo_t* tavo, int index) {
    return guarded(tavo, __func__, [&](Tavo& object, Call call) {
        call.require(index >= 0);
        return object.getExtFiller(index);
    });
}
