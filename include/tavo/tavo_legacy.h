/* SPDX-License-Identifier: Apache-2.0 */
/// Older names of the flat interface, for hosts written for them: one analyser of the process, set up
/// by files and environment variables. New code takes <tavo/tavo.h>. Compiles as C99 and as C++.
///
/// Texts are Shift_JIS bytes, lengths and sizes bytes; text arguments are zero-terminated. A result of
/// 0 or more is success, a negative one an error code of <tavo/tavo.h>: -10001 for a null pointer or a
/// negative size, -10012 before tavoinit(). tavoerror() gives its text. Texts go into a buffer of the
/// caller: a null buffer asks for the bytes needed, else the result is the text's length, or -10002
/// with an empty string in the buffer when text and terminating zero do not fit.
///
/// A dictionary is named as in <tavo/tavo.h>: "compiled" or "compiled,source". Where an attached one is
/// named, its compiled path alone counts. A call that fails leaves the list of dictionaries as it was.
///
/// Threads. Calls from several threads take turns. A host that uses other analysers beside this one
/// calls tavo_readyForThread() first, as always.
#ifndef TAVO_LEGACY_H
#define TAVO_LEGACY_H

#include <tavo/export.h>

#ifdef __cplusplus
extern "C" {
#endif

/// Makes the analyser; one that there is already is replaced when all goes well. In this order:
///   TAVO_PATH_USR  the user dictionary, asked before all others;
///   TAVO_PATH      the folder (unset or empty: the working folder) of "tavo.ini", an init file; where
///                  it is missing, "SysDic" and "ConnTable" of the folder are taken;
///   TAVO_CONVERT   a file of convert rules;
///   TAVO_REDUCE    a file of reduce rules.
/// An empty variable counts as unset.
TAVO_EXPORT int tavoinit(void);
/// Frees the analyser; 0 as well when there is none.
TAVO_EXPORT int tavofinish(void);
/// The text of the last call's error, empty when it succeeded.
TAVO_EXPORT int tavoerror(char* buffer, int size);

/// Sets a mode (decimal number) or one of OutputFormat, EOS and NullString by the name of its init-file
/// key (docs/init-file.md). Another key gives -10010.
TAVO_EXPORT int tavooption(char const* key, char const* value);

/// Analyses a text and writes all its morphemes in the output format, EOS behind each sentence.
TAVO_EXPORT int tavoexec(char const* text, char* buffer, int size);
/// The same with up to n analyses of each sentence, best first, EOS behind each. A line has at most
/// 8192 bytes; n of 0 gives an empty text, a negative one -10001.
TAVO_EXPORT int tavonbest(char const* text, int n, char* buffer, int size);
/// The dictionary form of the first morpheme of a text; the morpheme as it stands where the lexicon has
/// no rules of end forms.
TAVO_EXPORT int tavogetdicform(char const* text, char* buffer, int size);

/// Attaches a dictionary behind the others; again changes nothing.
TAVO_EXPORT int tavoattach(char const* dictionary);
/// Takes a dictionary off; -10003 when it is not attached.
TAVO_EXPORT int tavodetach(char const* path);
/// Puts a dictionary in the place of the system dictionary, the last one in the list.
TAVO_EXPORT int tavosysjisho(char const* dictionary);
/// Puts a dictionary in the place of the user dictionary, or before all others where there is none;
/// null takes the user dictionary off.
TAVO_EXPORT int tavousrjisho(char const* dictionary);
/// Puts a dictionary in the place of an attached one.
TAVO_EXPORT int tavoreplace(char const* path, char const* dictionary);

/// Takes a dictionary off so that its files may be changed by whoever rebuilds it; texts are analysed
/// without it until tavoremake_end() or tavofinish(). -10008 while another one is being remade.
TAVO_EXPORT int tavoremake_start(char const* path);
/// Puts that dictionary back where it stood and rebuilds it from its source when that is newer; the
/// result is that of tavo_updateDic(). -10008 without tavoremake_start(). When it cannot be put back it
/// stays off, and the call may be tried again.
TAVO_EXPORT int tavoremake_end(void);

#ifdef __cplusplus
}
#endif

#endif
