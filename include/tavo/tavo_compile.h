/* SPDX-License-Identifier: Apache-2.0 */
/// Making dictionaries of word lists, for C and for every language that calls C. Compiles as C99 and as C++.
///
///     tavo_compile_options_t options = {0};
///     options.size = sizeof options;
///     options.lexicon = "/usr/share/tavo";
///     options.like = like;
///     options.output = "my.dic";
///     tavo_compiled_t* made = tavo_compile_words(words, bytes, &options);
///     if (made != NULL && made->code != 0)
///         for (size_t i = 0; i < made->fault_count; ++i) ...
///     tavo_compiled_free(made);
///
/// CONVENTIONS
///
/// Texts are UTF-8 and zero-terminated, but for the word list, which has a length in bytes. Paths are as the system
/// takes them. Nothing is printed.
///
/// Structs. Each begins with its size in bytes. The caller sets that of the options to sizeof the struct and the rest
/// to 0; a library that knows more members takes them for 0. Of a result, members behind its size are not there.
///
/// Errors. A function returns a result, or null when there is no memory for one. Its code is 0, or one of the codes of
/// <tavo/tavo.h>; its faults tell what, where and what to do.
///
/// Threads. Loaded dictionaries are shared with the analysers of <tavo/tavo.h>: where there are threads, call
/// tavo_readyForThread first.
///
/// Lifetimes. All that a result points to belongs to it and lives until it is freed. The options and the list may be
/// freed at once.
#ifndef TAVO_COMPILE_H
#define TAVO_COMPILE_H

#include <tavo/export.h>

#include <stddef.h>  // NOLINT(modernize-deprecated-headers): for C too

#ifdef __cplusplus
extern "C" {
#endif

/// As TAVO::WordListOptions; a null pointer stands for an empty text.
typedef struct tavo_compile_options_t {
    size_t size;
    char const* lexicon;              ///< the lexicon's folder, or its connection table
    char const* const* dictionaries;  ///< of the lexicon; none: those in its folder
    size_t dictionary_count;
    char const* like;             ///< a word of the lexicon that gives what lines leave empty
    char const* const* must_win;  ///< sentences that the new words should win in
    size_t must_win_count;
    int mecab_format;    ///< 1: lines of MeCab's CSV format
    char const* name;    ///< of the list, in faults; null: "words"
    char const* output;  ///< dictionary to write; null: its bytes come in the result
    /// Told of now and then: a stage's name, and how much of it is done where that is known (else both are 0). 0 goes
    /// on, anything else ends the work.
    int (*progress)(void* data, char const* stage, size_t done, size_t total);
    void* progress_data;
} tavo_compile_options_t;

typedef struct tavo_compiled_t {
    size_t size;
    int code;                         ///< 0: the dictionary is made
    size_t word_count;                ///< words of the list
    unsigned char const* dictionary;  ///< when no output was named, else null
    size_t dictionary_bytes;

    /// Faults and warnings in the order of the lines, one element each.
    size_t fault_count;
    char const* const* fault_file;       ///< empty: the cause tells
    size_t const* fault_line;            ///< from 1; 0: the file as a whole
    char const* const* fault_cause;      ///< what is wrong, and what to do
    unsigned char const* fault_warning;  ///< 1: the work went on

    /// One element for each sentence of must_win.
    size_t verdict_count;
    unsigned char const* verdict_wins;  ///< 1: a new word is in the best analysis
    char const* const* verdict_text;    ///< a line to read: the analysis, or what the word lacks
} tavo_compiled_t;

/// Compiles a list of @p bytes bytes, a word a line: the word, then behind commas part of speech, cost, reading and
/// more, all of which may be left out. Of a list with faulty lines all of them are told, and nothing is written.
TAVO_EXPORT tavo_compiled_t* tavo_compile_words(char const* words, size_t bytes, tavo_compile_options_t const* options);
/// Null is allowed.
TAVO_EXPORT void tavo_compiled_free(tavo_compiled_t* compiled);

/// Parts of speech of a lexicon, one element each; the first has id 1.
typedef struct tavo_pos_list_t {
    size_t size;
    int code;
    char const* error;  ///< empty after success
    size_t count;
    char const* const* name;          ///< as the connection table has it, cost class included
    char const* const* display_name;  ///< as a person writes it
} tavo_pos_list_t;

/// @p lexicon: the lexicon's folder, or its connection table.
TAVO_EXPORT tavo_pos_list_t* tavo_pos_list(char const* lexicon);
/// Null is allowed.
TAVO_EXPORT void tavo_pos_list_free(tavo_pos_list_t* list);

#ifdef __cplusplus
}
#endif

#endif
