/* SPDX-License-Identifier: Apache-2.0 */
/// Whole texts in one call, as flat arrays: an addition to <tavo/tavo.h> for
/// language bindings, where one call per value would cost more than the
/// analysis. The conventions of <tavo/tavo.h> hold.
///
/// Version: TAVO_BULK_VERSION grows with every change that a compiled caller
/// could notice; compare it with tavo_bulkVersion() before the first call.
#ifndef TAVO_BULK_H
#define TAVO_BULK_H

#include <tavo/tavo.h>

#include <stddef.h>  // NOLINT(modernize-deprecated-headers): for C too
#include <stdint.h>  // NOLINT(modernize-deprecated-headers): for C too

#ifdef __cplusplus
extern "C" {
#endif

#define TAVO_BULK_VERSION 2

/// What to deliver: any sum of these. Each of the first eight asks for a text of
/// every morpheme.
enum {
    TAVO_BULK_FORM = 0x01,                ///< the form; empty where it is the text at start
    TAVO_BULK_PART_OF_SP = 0x02,          ///< the part of speech
    TAVO_BULK_STD_FORM = 0x04,            ///< the standard form; empty where it is the form
    TAVO_BULK_READ = 0x08,                ///< the reading, without part separators
    TAVO_BULK_PRON = 0x10,                ///< the pronunciation, without part separators
    TAVO_BULK_GROUP = 0x20,               ///< the group
    TAVO_BULK_INFO = 0x40,                ///< the additional information
    TAVO_BULK_DISPLAY_PART_OF_SP = 0x80,  ///< the part of speech as tavo_getDisplayPartOfSP
    /// Lengths and starts count characters, not bytes.
    TAVO_BULK_CHARACTERS = 0x100,
    /// Starts are positions in the text as analysed: the texts of its sentences,
    /// joined. Tagged input needs it, since tags have no place in the result; else
    /// starts are positions in the text as given.
    TAVO_BULK_ANALYZED = 0x200
};

/// Bits of a morpheme's flags.
enum {
    TAVO_BULK_UNKNOWN = 0x1,    ///< in no dictionary, or as tavo_isUndef
    TAVO_BULK_ANNOTATION = 0x2  ///< as tavo_isAnnotation
};

/// A row for each text (or each path of one text) and its morphemes in order. The
/// arrays belong to the analyser and live until its next bulk call or tavo_free.
typedef struct tavo_bulk_t {
    size_t rowCount;
    size_t morphemeCount;  ///< of all rows
    size_t fieldCount;     ///< number of texts asked for
    size_t stringBytes;

    // One element a row.
    uint32_t const* rowEnd;             ///< number of morphemes up to the end of the row
    uint32_t const* rowLength;          ///< length of the text that starts count in
    uint32_t const* rowFailed;          ///< number of sentences that could not be analysed
    uint32_t const* rowText;            ///< with TAVO_BULK_ANALYZED that text, as an offset into strings, else 0
    uint32_t const* rowConnectionCost;  ///< of tavo_bulkAnalyzeNBest: sum of the connection costs, else 0
    uint32_t const* rowWordCost;        ///< of tavo_bulkAnalyzeNBest: sum of the word costs, else 0

    // One element a morpheme.
    uint32_t const* start;
    uint32_t const* length;  ///< 0 for annotations
    int32_t const* cost;     ///< word cost
    uint16_t const* pid;     ///< part-of-speech id
    uint8_t const* flags;

    /// Texts as offsets into strings, field by field in the order of the bits:
    /// text f of morpheme m is strings + fields[f * morphemeCount + m].
    uint32_t const* fields;
    /// Zero-terminated texts, the empty one first. Equal offsets are equal texts.
    char const* strings;
} tavo_bulk_t;

/// TAVO_BULK_VERSION of the library.
TAVO_EXPORT int tavo_bulkVersion(void);

/// Analyses count texts and delivers what was asked for. The texts may be freed
/// afterwards; together they have at most 2147483647 bytes. Ends all morpheme
/// handles and leaves the analyser as after an empty text. Returns the number of
/// texts.
///
/// On an error the rows of the texts before the one that failed are delivered,
/// so that result->rowCount is that text's place; a refused argument leaves
/// result empty. -10008 when tags changed a text and TAVO_BULK_ANALYZED
/// was not asked for.
TAVO_EXPORT int tavo_bulkAnalyze(tavo_t* tavo, tavo_bulk_t* result, char const* const* texts, int const* lengths,
                                 int count, unsigned what);

/// The best n analyses of one text, a row each, best first. When it has several
/// sentences, row k joins the k-th analyses of all of them (the last one of a
/// sentence that has fewer). Sentences of at most 8192 bytes. Returns the number
/// of rows.
TAVO_EXPORT int tavo_bulkAnalyzeNBest(tavo_t* tavo, tavo_bulk_t* result, char const* text, int length, int n,
                                      unsigned what);

#ifdef __cplusplus
}
#endif

#endif
