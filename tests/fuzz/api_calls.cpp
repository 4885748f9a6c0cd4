#include "fuzz/api_calls.hpp"

namespace TAVO::test {
namespace {

constexpr MrphValue mrphValues[] = {
    tavo_getFormLength, tavo_getPid,       tavo_getCost,      tavo_getExtCount,      tavo_getAltCount,
    tavo_isUndef,       tavo_isAnnotation, tavo_isFirstDic,   tavo_getPartCount,     tavo_get_comp_cap,
    tavo_get_mrph_cap,  tavo_get_icat,     tavo_get_usrfield, tavo_getMrphErrorCode,
};
constexpr MrphNumber mrphNumbers[] = {
    tavo_getPartLength,   tavo_getPartFormLength, tavo_getPartPid,   tavo_getPartCost,
    tavo_getPartExtCount, tavo_set_comp_cap,      tavo_set_mrph_cap,
};
constexpr MrphText mrphTexts[] = {
    tavo_getPartOfSP,    tavo_getCategory,       tavo_getGroup,        tavo_getGroupCooc,    tavo_getWordCooc,
    tavo_getGrammarType, tavo_getAdditionalInfo, tavo_getProsodicInfo, tavo_getProsodicType,
};
constexpr MrphNumberText mrphNumberTexts[] = {
    tavo_getForm,
    tavo_getEndForm,
    tavo_getStdForm,
    tavo_getEndStdForm,
    tavo_getRead,
    tavo_getEndRead,
    tavo_getLVRead,
    tavo_getEndLVRead,
    tavo_getPron,
    tavo_getEndPron,
    tavo_getReadPron,
    tavo_getExt,
    tavo_getPartForm,
    tavo_getPartEndForm,
    tavo_getPartStdForm,
    tavo_getPartEndStdForm,
    tavo_getPartRead,
    tavo_getPartEndRead,
    tavo_getPartLVRead,
    tavo_getPartEndLVRead,
    tavo_getPartPron,
    tavo_getPartEndPron,
    tavo_getPartReadPron,
    tavo_getPartPartOfSP,
    tavo_getPartCategory,
    tavo_getPartGroup,
    tavo_getPartGroupCooc,
    tavo_getPartWordCooc,
    tavo_getPartGrammarType,
    tavo_getPartAdditionalInfo,
    tavo_getPartProsodicInfo,
    tavo_getPartProsodicType,
};
constexpr TavoValue tavoValues[] = {
    tavo_isOK,
    tavo_getInputConvertMode,
    tavo_getOutputConvertMode,
    tavo_getCooccurrenceMode,
    tavo_getDelimitCRLFMode,
    tavo_getDeleteCRLFMode,
    tavo_getTaggedInputMode,
    tavo_getDeleteSlashMode,
    tavo_getAlphabetCapitalizeMode,
    tavo_getAlternativeMode,
    tavo_getReduceUndefMode,
    tavo_getReduceCharMode,
    tavo_getReduceNumberMode,
    tavo_getDivideWordMode,
    tavo_getMemoryMappedMode,
    tavo_getProsodicInfoCombineMode,
    tavo_clearDelimiterString,
    tavo_getDicCount,
    tavo_touchDicAll,
    tavo_getSentenceCount,
};
constexpr TavoNumber tavoNumbers[] = {
    tavo_setInputConvertMode, tavo_setOutputConvertMode,      tavo_setCooccurrenceMode, tavo_setDelimitCRLFMode,
    tavo_setDeleteCRLFMode,   tavo_setTaggedInputMode,        tavo_setDeleteSlashMode,  tavo_setAlternativeMode,
    tavo_setReduceUndefMode,  tavo_setReduceCharMode,         tavo_setReduceNumberMode, tavo_setDivideWordMode,
    tavo_setMemoryMappedMode, tavo_setAlphabetCapitalizeMode, tavo_getExtCombineMode,   tavo_touchDic,
    tavo_getSentenceLength,
};
constexpr TavoString tavoStrings[] = {
    tavo_setOutputFormat,       tavo_setNullString,        tavo_setEOS,
    tavo_setInitFilePath,       tavo_setConnTablePath,     tavo_setConvertRulePath,
    tavo_setCommentRulePath,    tavo_setReduceRulePath,    tavo_setPublicPartOfSPPath,
    tavo_setNumberPartOfSPPath, tavo_setMajorPartOfSPPath, tavo_getDicIndex,
    tavo_touchDicPath,
};
constexpr TavoPointer tavoPointers[] = {
    tavo_getErrorWhat,
    tavo_getProsodicInfoFiller,
    tavo_getOutputFormat,
    tavo_getNullString,
    tavo_getEOS,
    tavo_getInitFilePath,
    tavo_getConnTablePath,
    tavo_getConvertRulePath,
    tavo_getCommentRulePath,
    tavo_getReduceRulePath,
    tavo_getPublicPartOfSPPath,
    tavo_getNumberPartOfSPPath,
    tavo_getMajorPartOfSPPath,
};
constexpr TavoNumberText tavoNumberTexts[] = {
    tavo_getSentence,
    tavo_getAnalyzedText,
    tavo_getDicPath,
    tavo_getSrcPath,
};

}  // namespace

std::span<MrphValue const> const kMrphValues(mrphValues);
std::span<MrphNumber const> const kMrphNumbers(mrphNumbers);
std::span<MrphText const> const kMrphTexts(mrphTexts);
std::span<MrphNumberText const> const kMrphNumberTexts(mrphNumberTexts);
std::span<TavoValue const> const kTavoValues(tavoValues);
std::span<TavoNumber const> const kTavoNumbers(tavoNumbers);
std::span<TavoString const> const kTavoStrings(tavoStrings);
std::span<TavoPointer const> const kTavoPointers(tavoPointers);
std::span<TavoNumberText const> const kTavoNumberTexts(tavoNumberTexts);

}  // namespace TAVO::test
