/* SPDX-License-Identifier: Apache-2.0 */
/// The flat interface: plain C functions over opaque handles, one for nearly
/// every method of TAVO::Tavo and TAVO::Mrph. Compiles as C99 and as C++.
///
/// CONVENTIONS (they hold for every function that does not say otherwise)
///
/// Text is Shift_JIS bytes (code page 932); lengths, positions and sizes are in
/// bytes. Text arguments are zero-terminated unless a length goes with them.
///
/// Results. An int result of 0 or more is success: 0 for actions and setters,
/// the value for getters. A negative one is an error code; tavo_getErrorMessage
/// names it. Functions that return a pointer return null instead.
///   -10000  out of memory
///   -10001  null handle, null pointer, negative length, size or index, a flag
///           other than 0 and 1, a mode outside its range
///   -10002  the buffer is too small
///   -10003  a file cannot be opened; a dictionary is not in the list
///   -10004  a file is damaged or of another kind
///   -10005  kept for parts of speech; no function gives it: a name that the connection
///           table lacks has id 0, in tags and comment rules the unknown word's
///   -10006  a dictionary is being rebuilt
///   -10007  an index is at or above the count
///   -10008  a request that the object's state does not allow
///   -10009  a dictionary and the connection table do not fit together
///   -10010  a bad value in an init file
///   -10011  a text is too long
///   -10012  no connection table, no dictionary, or nothing analysed yet
///   -10013, -10014  a dictionary of another version or character set
///   -99999  anything else
/// No exception leaves these functions.
///
/// Errors are kept in the object that the call was made on: the analyser or the
/// morpheme. Every call first clears what the one before it left there, except
/// the functions that read it. A null handle gives -10001 (or null) and is
/// recorded nowhere.
///
/// Text results go into a buffer of the caller, given with its size in bytes:
///   - a null buffer asks for the size: the result is the text's length plus 1;
///   - when text and terminating zero fit, both are written and the result is
///     the text's length;
///   - else the result is -10002 and the buffer holds an empty string (nothing
///     is written when size is 0).
/// A text may itself hold zero bytes when the analysed text does.
///
/// Array results go into an array of the caller, given with its room in elements:
/// a null array asks for the number of elements; when there is room for all of
/// them they are written and the result is their number; else the result is
/// -10002 and nothing is written.
///
/// Flags are 0 or 1. Indexes start at 0.
///
/// Lifetimes. An analyser lives from tavo_new to tavo_free. Morpheme handles
/// belong to their analyser; those of tavo_getResult and tavo_getResultNBest
/// live until the next call of tavo_analyze, tavo_analyzeNBest, tavo_getResult,
/// tavo_getResultNBest, tavo_updateDic, tavo_updateDicPath or tavo_free on it.
/// The analysed text is not copied: keep it unchanged as long as its results are
/// used. Pointers to settings live until the setting changes.
///
/// Threads. One analyser, with its morphemes, belongs to one thread at a time.
/// Different analysers may run in parallel after one call of tavo_readyForThread.
#ifndef TAVO_H
#define TAVO_H

#include <tavo/export.h>
#include <tavo/version.h>

#include <stdio.h>  // NOLINT(modernize-deprecated-headers): for C too

#ifdef __cplusplus
extern "C" {
#endif

/// An analyser.
typedef struct tavo_t tavo_t;
/// A morpheme.
typedef struct tavo_mrph_t tavo_mrph_t;

/// A list of morphemes.
typedef struct tavo_result_t {
    int count;            ///< number of morphemes
    tavo_mrph_t** array;  ///< their handles, in order; null when count is 0
} tavo_result_t;

// LIFECYCLE AND ERRORS

/// Makes an analyser with room for nodeCapacity lattice nodes (0: 4096; it grows
/// by itself). Null for a negative argument and when memory runs out.
TAVO_EXPORT tavo_t* tavo_new(int nodeCapacity);
/// Frees the analyser and all its morphemes.
TAVO_EXPORT int tavo_free(tavo_t* tavo);
/// 1 when a connection table and at least one dictionary are loaded, else 0.
TAVO_EXPORT int tavo_isOK(tavo_t* tavo);
/// Creates the process-wide lock. Call it once before several threads make
/// analysers. 0, or -99999 on any failure.
TAVO_EXPORT int tavo_readyForThread(void);
/// Frees all loaded dictionaries and connection tables and the lock. Call it
/// after the last analyser was freed. 0, or -99999 on any failure.
TAVO_EXPORT int tavo_dispose(void);
/// The name of an error code, a static string: "ERROR_NONE" for 0 and above,
/// "ERROR_UNKNOWN" for a code without a name.
TAVO_EXPORT char const* tavo_getErrorMessage(int code);
/// The text of the last call's error, empty when it succeeded; valid until the
/// next call on the analyser. For a null handle a static text that says so.
TAVO_EXPORT char const* tavo_getErrorWhat(tavo_t* tavo);
/// The sentences of the last text that could not be analysed, as text: their
/// numbers in decimal, joined by ",".
TAVO_EXPORT int tavo_getErrorSentenceIndex(tavo_t* tavo, char* buffer, int size);
/// Error code and text of the last call on a morpheme, as tavo_getErrorWhat.
TAVO_EXPORT int tavo_getMrphErrorCode(tavo_mrph_t* mrph);
TAVO_EXPORT char const* tavo_getMrphErrorWhat(tavo_mrph_t* mrph);

// INTEGER MODES. A setter drops the results of the last analysis: they cannot be
// fetched any more. A mode outside its range leaves the setting as it was.

/// Conversion of the input before it is analysed (docs/normalisation.md): 1 widths, composed characters,
/// iteration and long-vowel marks; 2 variants of kanji, too; default 0.
TAVO_EXPORT int tavo_setInputConvertMode(tavo_t* tavo, int mode);
TAVO_EXPORT int tavo_getInputConvertMode(tavo_t* tavo);
/// Forms of results where the input was converted: 0 as given (default), 1 "given(converted)" with flag 0, 2 as
/// converted, 3 as given, with line breaks and tags.
TAVO_EXPORT int tavo_setOutputConvertMode(tavo_t* tavo, int mode);
TAVO_EXPORT int tavo_getOutputConvertMode(tavo_t* tavo);
/// 1: of analyses that cost hardly more than the best one, that whose words fit together best is taken;
/// tavo_getResultNBest puts such first, also after tavo_analyze (docs/cooccurrence.md); default 0.
TAVO_EXPORT int tavo_setCooccurrenceMode(tavo_t* tavo, int mode);
TAVO_EXPORT int tavo_getCooccurrenceMode(tavo_t* tavo);
/// 1: a line break ends a sentence; default 0.
TAVO_EXPORT int tavo_setDelimitCRLFMode(tavo_t* tavo, int mode);
TAVO_EXPORT int tavo_getDelimitCRLFMode(tavo_t* tavo);
/// 1: line breaks are taken out of the text; default 0.
TAVO_EXPORT int tavo_setDeleteCRLFMode(tavo_t* tavo, int mode);
TAVO_EXPORT int tavo_getDeleteCRLFMode(tavo_t* tavo);
/// 1: the input is tagged text; default 0.
TAVO_EXPORT int tavo_setTaggedInputMode(tavo_t* tavo, int mode);
TAVO_EXPORT int tavo_getTaggedInputMode(tavo_t* tavo);
/// Slashes of tagged input, 0 or 1; default 1.
TAVO_EXPORT int tavo_setDeleteSlashMode(tavo_t* tavo, int mode);
TAVO_EXPORT int tavo_getDeleteSlashMode(tavo_t* tavo);
/// Capitals of unknown words, 0 or 1; default 0.
TAVO_EXPORT int tavo_setAlphabetCapitalizeMode(tavo_t* tavo, int mode);
TAVO_EXPORT int tavo_getAlphabetCapitalizeMode(tavo_t* tavo);
/// 1: tavo_getAlt gives words of every length, tavo_getResultNBest more than the best after tavo_analyze;
/// default 0.
TAVO_EXPORT int tavo_setAlternativeMode(tavo_t* tavo, int mode);
TAVO_EXPORT int tavo_getAlternativeMode(tavo_t* tavo);
/// The reductions of the reduce rules (unknown words, characters, numbers), each
/// 0 or 1; default 1.
TAVO_EXPORT int tavo_setReduceUndefMode(tavo_t* tavo, int mode);
TAVO_EXPORT int tavo_getReduceUndefMode(tavo_t* tavo);
TAVO_EXPORT int tavo_setReduceCharMode(tavo_t* tavo, int mode);
TAVO_EXPORT int tavo_getReduceCharMode(tavo_t* tavo);
TAVO_EXPORT int tavo_setReduceNumberMode(tavo_t* tavo, int mode);
TAVO_EXPORT int tavo_getReduceNumberMode(tavo_t* tavo);
/// 1: compounds come out as their parts; default 0.
TAVO_EXPORT int tavo_setDivideWordMode(tavo_t* tavo, int mode);
TAVO_EXPORT int tavo_getDivideWordMode(tavo_t* tavo);
/// 1: the dictionaries of an init file are mapped, not read; default 1.
TAVO_EXPORT int tavo_setMemoryMappedMode(tavo_t* tavo, int mode);
TAVO_EXPORT int tavo_getMemoryMappedMode(tavo_t* tavo);
/// Prosodic information of a morpheme joined from several: 1 the first one's, 2
/// the last one's (default), 0 all, joined by filler.
TAVO_EXPORT int tavo_setProsodicInfoCombineMode(tavo_t* tavo, int mode, char const* filler);
TAVO_EXPORT int tavo_getProsodicInfoCombineMode(tavo_t* tavo);
TAVO_EXPORT char const* tavo_getProsodicInfoFiller(tavo_t* tavo);
/// The same for extension field index. Mode 0 and an empty filler when none is set.
TAVO_EXPORT int tavo_setExtCombineMode(tavo_t* tavo, int index, int mode, char const* filler);
TAVO_EXPORT int tavo_getExtCombineMode(tavo_t* tavo, int index);
TAVO_EXPORT char const* tavo_getExtFiller(tavo_t* tavo, int index);

// STRINGS AND LISTS

/// How tavo_output's counterpart of the class interface writes a morpheme;
/// default "%10w %20h %k\n".
TAVO_EXPORT int tavo_setOutputFormat(tavo_t* tavo, char const* format);
TAVO_EXPORT char const* tavo_getOutputFormat(tavo_t* tavo);
/// What an empty value is written as; default empty.
TAVO_EXPORT int tavo_setNullString(tavo_t* tavo, char const* text);
TAVO_EXPORT char const* tavo_getNullString(tavo_t* tavo);
/// What is written behind a sentence; default empty.
TAVO_EXPORT int tavo_setEOS(tavo_t* tavo, char const* text);
TAVO_EXPORT char const* tavo_getEOS(tavo_t* tavo);
/// Replaces the strings that end a sentence by copies of count given ones. At a
/// null string it stops with -10001; those before it are stored.
TAVO_EXPORT int tavo_setDelimiterString(tavo_t* tavo, char const* const* strings, int count);
/// Those strings, as an array result.
TAVO_EXPORT int tavo_getDelimiterString(tavo_t* tavo, char const** array, int count);
/// Empties their list.
TAVO_EXPORT int tavo_clearDelimiterString(tavo_t* tavo);

// FILES AND PATHS. A getter returns the path that was set, empty when none was.

/// Reads an init file (lines of key=value) and applies its keys in a fixed
/// order. What was applied before an error stays.
TAVO_EXPORT int tavo_setInitFilePath(tavo_t* tavo, char const* path);
TAVO_EXPORT char const* tavo_getInitFilePath(tavo_t* tavo);
/// Loads the connection table.
TAVO_EXPORT int tavo_setConnTablePath(tavo_t* tavo, char const* path);
TAVO_EXPORT char const* tavo_getConnTablePath(tavo_t* tavo);
/// Loads a rule file; null takes its rules away.
TAVO_EXPORT int tavo_setCommentRulePath(tavo_t* tavo, char const* path);
TAVO_EXPORT char const* tavo_getCommentRulePath(tavo_t* tavo);
TAVO_EXPORT int tavo_setConvertRulePath(tavo_t* tavo, char const* path);
TAVO_EXPORT char const* tavo_getConvertRulePath(tavo_t* tavo);
TAVO_EXPORT int tavo_setReduceRulePath(tavo_t* tavo, char const* path);
TAVO_EXPORT char const* tavo_getReduceRulePath(tavo_t* tavo);
TAVO_EXPORT int tavo_setEndFormRulePath(tavo_t* tavo, char const* path);
TAVO_EXPORT char const* tavo_getEndFormRulePath(tavo_t* tavo);
/// Settings of the cooccurrence mode (docs/cooccurrence.md); null gives their defaults.
TAVO_EXPORT int tavo_setCooccurrenceRulePath(tavo_t* tavo, char const* path);
TAVO_EXPORT char const* tavo_getCooccurrenceRulePath(tavo_t* tavo);
/// Loads a list of parts of speech; null goes back to the built-in one.
TAVO_EXPORT int tavo_setPublicPartOfSPPath(tavo_t* tavo, char const* path);
TAVO_EXPORT char const* tavo_getPublicPartOfSPPath(tavo_t* tavo);
TAVO_EXPORT int tavo_setNumberPartOfSPPath(tavo_t* tavo, char const* path);
TAVO_EXPORT char const* tavo_getNumberPartOfSPPath(tavo_t* tavo);
TAVO_EXPORT int tavo_setMajorPartOfSPPath(tavo_t* tavo, char const* path);
TAVO_EXPORT char const* tavo_getMajorPartOfSPPath(tavo_t* tavo);

// DICTIONARIES, in order of priority.

/// Adds a dictionary at the end: "compiled" or "compiled,source" paths. With
/// memoryMapped 1 the file is mapped, not read. Adding it twice changes nothing.
TAVO_EXPORT int tavo_addDicPath(tavo_t* tavo, char const* path, int memoryMapped);
TAVO_EXPORT int tavo_getDicCount(tavo_t* tavo);
/// Position of the dictionary with exactly this path.
TAVO_EXPORT int tavo_getDicIndex(tavo_t* tavo, char const* path);
/// The paths of a dictionary, into a buffer; the source's is empty when none was given.
TAVO_EXPORT int tavo_getDicPath(tavo_t* tavo, int index, char* buffer, int size);
TAVO_EXPORT int tavo_getSrcPath(tavo_t* tavo, int index, char* buffer, int size);
/// 1 when a morpheme comes from its analyser's first dictionary, else 0.
TAVO_EXPORT int tavo_isFirstDic(tavo_mrph_t* mrph);
/// Takes a dictionary, or all, off the list. Ends all morpheme handles: another
/// analyser may rebuild it from now on.
TAVO_EXPORT int tavo_offDic(tavo_t* tavo, int index);
TAVO_EXPORT int tavo_offDicAll(tavo_t* tavo);
TAVO_EXPORT int tavo_offDicPath(tavo_t* tavo, char const* path);
/// Check their argument and do nothing else.
TAVO_EXPORT int tavo_touchDic(tavo_t* tavo, int index);
TAVO_EXPORT int tavo_touchDicAll(tavo_t* tavo);
TAVO_EXPORT int tavo_touchDicPath(tavo_t* tavo, char const* path);
/// Rebuilds a dictionary from its source when that is newer. 0 nothing to do, 1
/// rebuilt, 2 used by another analyser, 3 no source path, 4 source unreadable, 5
/// source refused, 6 a file step failed. Ends all morpheme handles.
TAVO_EXPORT int tavo_updateDic(tavo_t* tavo, int index);
TAVO_EXPORT int tavo_updateDicPath(tavo_t* tavo, char const* path);
/// The words of a dictionary whose reading equals the given one. Their handles
/// live until the next call of tavo_getByRead, tavo_getByReadPath, tavo_analyze,
/// tavo_analyzeNBest, tavo_offDic..., tavo_updateDic... or tavo_free.
TAVO_EXPORT int tavo_getByRead(tavo_t* tavo, tavo_result_t* result, char const* reading, int index);
TAVO_EXPORT int tavo_getByReadPath(tavo_t* tavo, tavo_result_t* result, char const* reading, char const* path);

// ANALYSIS AND SENTENCES

/// Analyses length bytes of text, which is not copied. Ends all morpheme
/// handles. Returns the number of sentences that could not be analysed.
TAVO_EXPORT int tavo_analyze(tavo_t* tavo, char const* text, int length);
/// The same, keeping what tavo_getResultNBest needs; sentences of at most 8192 bytes.
TAVO_EXPORT int tavo_analyzeNBest(tavo_t* tavo, char const* text, int length);
/// The morphemes of a sentence.
TAVO_EXPORT int tavo_getResult(tavo_t* tavo, tavo_result_t* result, int sentence);
/// The best n analyses of a sentence, best first, one per element of results,
/// which has room for n. Returns how many there are.
TAVO_EXPORT int tavo_getResultNBest(tavo_t* tavo, tavo_result_t* results, int sentence, int n);
TAVO_EXPORT int tavo_getSentenceCount(tavo_t* tavo);
/// The text of a sentence, into a buffer, and its length.
TAVO_EXPORT int tavo_getSentence(tavo_t* tavo, int sentence, char* buffer, int size);
TAVO_EXPORT int tavo_getSentenceLength(tavo_t* tavo, int sentence);
/// The text of a sentence in the output convert mode, into a buffer.
TAVO_EXPORT int tavo_getAnalyzedText(tavo_t* tavo, int sentence, char* buffer, int size);

// MORPHEMES. flag 1 leaves the part separators "/" out of a text; for forms it
// gives the form as analysed.

TAVO_EXPORT int tavo_getForm(tavo_mrph_t* mrph, int flag, char* buffer, int size);
/// Length of the form as analysed.
TAVO_EXPORT int tavo_getFormLength(tavo_mrph_t* mrph);
/// Where the morpheme stands in the text that was given to tavo_analyze or tavo_analyzeNBest: its first byte, and
/// behind its last. Line breaks, tags and entities that analysis takes out count; those at the ends stand outside. For
/// an annotation where its text stands. -10008 for a word of tavo_getByRead, which stands in no text.
TAVO_EXPORT int tavo_getGivenBegin(tavo_mrph_t* mrph);
TAVO_EXPORT int tavo_getGivenEnd(tavo_mrph_t* mrph);
TAVO_EXPORT int tavo_getStdForm(tavo_mrph_t* mrph, int flag, char* buffer, int size);
TAVO_EXPORT int tavo_getRead(tavo_mrph_t* mrph, int flag, char* buffer, int size);
TAVO_EXPORT int tavo_getPron(tavo_mrph_t* mrph, int flag, char* buffer, int size);
/// Reading and pronunciation as one string, differing spans as "(reading|pronunciation)".
TAVO_EXPORT int tavo_getReadPron(tavo_mrph_t* mrph, int flag, char* buffer, int size);
TAVO_EXPORT int tavo_getLVRead(tavo_mrph_t* mrph, int flag, char* buffer, int size);
/// The same of the end (dictionary) form.
TAVO_EXPORT int tavo_getEndForm(tavo_mrph_t* mrph, int flag, char* buffer, int size);
TAVO_EXPORT int tavo_getEndStdForm(tavo_mrph_t* mrph, int flag, char* buffer, int size);
TAVO_EXPORT int tavo_getEndRead(tavo_mrph_t* mrph, int flag, char* buffer, int size);
TAVO_EXPORT int tavo_getEndPron(tavo_mrph_t* mrph, int flag, char* buffer, int size);
TAVO_EXPORT int tavo_getEndLVRead(tavo_mrph_t* mrph, int flag, char* buffer, int size);
/// Name and id of the part of speech.
TAVO_EXPORT int tavo_getPartOfSP(tavo_mrph_t* mrph, char* buffer, int size);
TAVO_EXPORT int tavo_getPid(tavo_mrph_t* mrph);
/// The name as users are shown it: without the class number and the features that
/// only the analyser reads ("A:B:Undef:Kana-2" is "A:B").
TAVO_EXPORT int tavo_getDisplayPartOfSP(tavo_mrph_t* mrph, char* buffer, int size);
/// Word cost.
TAVO_EXPORT int tavo_getCost(tavo_mrph_t* mrph);
/// The three category lists as text: the numbers of each in brackets, joined by
/// ",", as in "[1,2][][7]".
TAVO_EXPORT int tavo_getCategory(tavo_mrph_t* mrph, char* buffer, int size);
/// How many numbers each list has.
TAVO_EXPORT int tavo_getCategoryCount(tavo_mrph_t* mrph, unsigned char* count1, unsigned char* count2,
                                      unsigned char* count3);
TAVO_EXPORT int tavo_getGroup(tavo_mrph_t* mrph, char* buffer, int size);
TAVO_EXPORT int tavo_getGroupCooc(tavo_mrph_t* mrph, char* buffer, int size);
TAVO_EXPORT int tavo_getWordCooc(tavo_mrph_t* mrph, char* buffer, int size);
TAVO_EXPORT int tavo_getGrammarType(tavo_mrph_t* mrph, char* buffer, int size);
TAVO_EXPORT int tavo_getAdditionalInfo(tavo_mrph_t* mrph, char* buffer, int size);
TAVO_EXPORT int tavo_getProsodicInfo(tavo_mrph_t* mrph, char* buffer, int size);
TAVO_EXPORT int tavo_getProsodicType(tavo_mrph_t* mrph, char* buffer, int size);
/// Extension field index, and how many there are.
TAVO_EXPORT int tavo_getExt(tavo_mrph_t* mrph, int index, char* buffer, int size);
TAVO_EXPORT int tavo_getExtCount(tavo_mrph_t* mrph);
/// The other candidates of the same length at the same place, as an array result,
/// and how many there are. Each call makes new handles; they live until the next
/// tavo_analyze, tavo_analyzeNBest, tavo_updateDic, tavo_updateDicPath or tavo_free.
TAVO_EXPORT int tavo_getAlt(tavo_mrph_t* mrph, tavo_mrph_t** array, int count);
TAVO_EXPORT int tavo_getAltCount(tavo_mrph_t* mrph);
/// 1 for a word whose part of speech is marked as undefined, else 0.
TAVO_EXPORT int tavo_isUndef(tavo_mrph_t* mrph);
/// 1 for an annotation of tagged input, else 0.
TAVO_EXPORT int tavo_isAnnotation(tavo_mrph_t* mrph);
/// Room of the morpheme, in parts: as many as it has, or as were reserved. A
/// setter reserves room, for 0 to 65535, and never takes any away; nothing else
/// changes, and no other function needs it.
TAVO_EXPORT int tavo_get_comp_cap(tavo_mrph_t* mrph);
TAVO_EXPORT int tavo_set_comp_cap(tavo_mrph_t* mrph, int capacity);
/// The same in morphemes that were joined into this one (none in a plain word).
TAVO_EXPORT int tavo_get_mrph_cap(tavo_mrph_t* mrph);
TAVO_EXPORT int tavo_set_mrph_cap(tavo_mrph_t* mrph, int capacity);
/// Number of category numbers, all three lists together.
TAVO_EXPORT int tavo_get_icat(tavo_mrph_t* mrph);
/// Number of user fields, that is, extension fields.
TAVO_EXPORT int tavo_get_usrfield(tavo_mrph_t* mrph);

// PARTS of a compound or joined morpheme; part runs from 0 to tavo_getPartCount - 1.
// A simple morpheme is its own only part.

TAVO_EXPORT int tavo_getPartCount(tavo_mrph_t* mrph);
TAVO_EXPORT int tavo_getPartLength(tavo_mrph_t* mrph, int part);
TAVO_EXPORT int tavo_getPartForm(tavo_mrph_t* mrph, int part, char* buffer, int size);
TAVO_EXPORT int tavo_getPartFormLength(tavo_mrph_t* mrph, int part);
/// Where the part stands in the text that was given, as tavo_getGivenBegin and tavo_getGivenEnd.
TAVO_EXPORT int tavo_getPartGivenBegin(tavo_mrph_t* mrph, int part);
TAVO_EXPORT int tavo_getPartGivenEnd(tavo_mrph_t* mrph, int part);
TAVO_EXPORT int tavo_getPartStdForm(tavo_mrph_t* mrph, int part, char* buffer, int size);
TAVO_EXPORT int tavo_getPartRead(tavo_mrph_t* mrph, int part, char* buffer, int size);
TAVO_EXPORT int tavo_getPartPron(tavo_mrph_t* mrph, int part, char* buffer, int size);
TAVO_EXPORT int tavo_getPartReadPron(tavo_mrph_t* mrph, int part, char* buffer, int size);
TAVO_EXPORT int tavo_getPartLVRead(tavo_mrph_t* mrph, int part, char* buffer, int size);
TAVO_EXPORT int tavo_getPartEndForm(tavo_mrph_t* mrph, int part, char* buffer, int size);
TAVO_EXPORT int tavo_getPartEndStdForm(tavo_mrph_t* mrph, int part, char* buffer, int size);
TAVO_EXPORT int tavo_getPartEndRead(tavo_mrph_t* mrph, int part, char* buffer, int size);
TAVO_EXPORT int tavo_getPartEndPron(tavo_mrph_t* mrph, int part, char* buffer, int size);
TAVO_EXPORT int tavo_getPartEndLVRead(tavo_mrph_t* mrph, int part, char* buffer, int size);
TAVO_EXPORT int tavo_getPartPartOfSP(tavo_mrph_t* mrph, int part, char* buffer, int size);
TAVO_EXPORT int tavo_getPartDisplayPartOfSP(tavo_mrph_t* mrph, int part, char* buffer, int size);
TAVO_EXPORT int tavo_getPartPid(tavo_mrph_t* mrph, int part);
TAVO_EXPORT int tavo_getPartCost(tavo_mrph_t* mrph, int part);
TAVO_EXPORT int tavo_getPartCategory(tavo_mrph_t* mrph, int part, char* buffer, int size);
TAVO_EXPORT int tavo_getPartCategoryCount(tavo_mrph_t* mrph, int part, unsigned char* count1, unsigned char* count2,
                                          unsigned char* count3);
TAVO_EXPORT int tavo_getPartGroup(tavo_mrph_t* mrph, int part, char* buffer, int size);
TAVO_EXPORT int tavo_getPartGroupCooc(tavo_mrph_t* mrph, int part, char* buffer, int size);
TAVO_EXPORT int tavo_getPartWordCooc(tavo_mrph_t* mrph, int part, char* buffer, int size);
TAVO_EXPORT int tavo_getPartGrammarType(tavo_mrph_t* mrph, int part, char* buffer, int size);
TAVO_EXPORT int tavo_getPartAdditionalInfo(tavo_mrph_t* mrph, int part, char* buffer, int size);
TAVO_EXPORT int tavo_getPartProsodicInfo(tavo_mrph_t* mrph, int part, char* buffer, int size);
TAVO_EXPORT int tavo_getPartProsodicType(tavo_mrph_t* mrph, int part, char* buffer, int size);
/// Extension field of a part.
TAVO_EXPORT int tavo_getPartExt(tavo_mrph_t* mrph, int part, int field, char* buffer, int size);
TAVO_EXPORT int tavo_getPartExtCount(tavo_mrph_t* mrph, int part);

// FORMATTING. An empty value is written as nullString.

/// The morpheme, or one of its parts, through a format string, into a buffer.
TAVO_EXPORT int tavo_format(tavo_mrph_t* mrph, char const* format, char const* nullString, char* buffer, int size);
TAVO_EXPORT int tavo_formatPart(tavo_mrph_t* mrph, int part, char const* format, char const* nullString, char* buffer,
                                int size);
/// The same, written to a stream. With byPart 1 the format is repeated for each
/// part. -99999 when the stream takes less than all of it.
TAVO_EXPORT int tavo_output(tavo_mrph_t* mrph, FILE* stream, char const* format, char const* nullString, int byPart);
TAVO_EXPORT int tavo_outputPart(tavo_mrph_t* mrph, FILE* stream, int part, char const* format, char const* nullString);

#ifdef __cplusplus
}
#endif

#endif
