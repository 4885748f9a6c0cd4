// The functions of the flat interface by shape, for calling them at random.
#ifndef TAVO_TESTS_FUZZ_API_CALLS_HPP
#define TAVO_TESTS_FUZZ_API_CALLS_HPP

#include <tavo/tavo.h>

#include <array>

namespace TAVO::test {

inline constexpr std::array kMrphValues = {
    tavo_getFormLength, tavo_getPid,           tavo_getCost,       tavo_getExtCount,  tavo_getAltCount,  tavo_isUndef,
    tavo_isAnnotation,  tavo_isFirstDic,       tavo_getPartCount,  tavo_get_comp_cap, tavo_get_mrph_cap, tavo_get_icat,
    tavo_get_usrfield,  tavo_getMrphErrorCode, tavo_getGivenBegin, tavo_getGivenEnd};
/// With an index or a capacity.
inline constexpr std::array kMrphNumbers = {tavo_getPartLength,   tavo_getPartFormLength, tavo_getPartGivenBegin,
                                            tavo_getPartGivenEnd, tavo_getPartPid,        tavo_getPartCost,
                                            tavo_getPartExtCount, tavo_set_comp_cap,      tavo_set_mrph_cap};
inline constexpr std::array kMrphTexts = {tavo_getPartOfSP,       tavo_getCategory,     tavo_getGroup,
                                          tavo_getGroupCooc,      tavo_getWordCooc,     tavo_getGrammarType,
                                          tavo_getAdditionalInfo, tavo_getProsodicInfo, tavo_getProsodicType};
inline constexpr std::array kMrphFlagTexts = {tavo_getForm, tavo_getEndForm, tavo_getStdForm, tavo_getEndStdForm,
                                              tavo_getRead, tavo_getEndRead, tavo_getLVRead,  tavo_getEndLVRead,
                                              tavo_getPron, tavo_getEndPron, tavo_getReadPron};
/// With an index.
inline constexpr std::array kMrphIndexForms = {tavo_getPartForm,       tavo_getPartEndForm,   tavo_getPartStdForm,
                                               tavo_getPartEndStdForm, tavo_getPartRead,      tavo_getPartEndRead,
                                               tavo_getPartLVRead,     tavo_getPartEndLVRead, tavo_getPartPron,
                                               tavo_getPartEndPron,    tavo_getPartReadPron};
inline constexpr std::array kMrphIndexValues = {tavo_getExt,
                                                tavo_getPartPartOfSP,
                                                tavo_getPartCategory,
                                                tavo_getPartGroup,
                                                tavo_getPartGroupCooc,
                                                tavo_getPartWordCooc,
                                                tavo_getPartGrammarType,
                                                tavo_getPartAdditionalInfo,
                                                tavo_getPartProsodicInfo,
                                                tavo_getPartProsodicType};
inline constexpr std::array kTavoModes = {
    tavo_getInputConvertMode, tavo_getOutputConvertMode, tavo_getCooccurrenceMode,       tavo_getDelimitCRLFMode,
    tavo_getDeleteCRLFMode,   tavo_getTaggedInputMode,   tavo_getDeleteSlashMode,        tavo_getAlphabetCapitalizeMode,
    tavo_getAlternativeMode,  tavo_getReduceUndefMode,   tavo_getReduceCharMode,         tavo_getReduceNumberMode,
    tavo_getDivideWordMode,   tavo_getMemoryMappedMode,  tavo_getProsodicInfoCombineMode};
inline constexpr std::array kTavoValues = {tavo_isOK, tavo_clearDelimiterString, tavo_getDicCount, tavo_touchDicAll,
                                           tavo_getSentenceCount};
/// Modes and dictionary indexes.
inline constexpr std::array kTavoNumbers = {
    tavo_setInputConvertMode, tavo_setOutputConvertMode,      tavo_setCooccurrenceMode, tavo_setDelimitCRLFMode,
    tavo_setDeleteCRLFMode,   tavo_setTaggedInputMode,        tavo_setDeleteSlashMode,  tavo_setAlternativeMode,
    tavo_setReduceUndefMode,  tavo_setReduceCharMode,         tavo_setReduceNumberMode, tavo_setDivideWordMode,
    tavo_setMemoryMappedMode, tavo_setAlphabetCapitalizeMode, tavo_getExtCombineMode,   tavo_touchDic,
    tavo_getSentenceLength};
inline constexpr std::array kTavoStrings = {
    tavo_setOutputFormat,       tavo_setNullString,        tavo_setEOS,
    tavo_setInitFilePath,       tavo_setConnTablePath,     tavo_setConvertRulePath,
    tavo_setCommentRulePath,    tavo_setReduceRulePath,    tavo_setPublicPartOfSPPath,
    tavo_setNumberPartOfSPPath, tavo_setMajorPartOfSPPath, tavo_getDicIndex,
    tavo_touchDicPath,          tavo_setEndFormRulePath,   tavo_setCooccurrenceRulePath};
inline constexpr std::array kTavoPointers = {tavo_getErrorWhat,
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
                                             tavo_getEndFormRulePath};
inline constexpr std::array kTavoNumberTexts = {tavo_getSentence, tavo_getAnalyzedText, tavo_getDicPath,
                                                tavo_getSrcPath};

}  // namespace TAVO::test

#endif
