/* SPDX-License-Identifier: Apache-2.0 */
/// Words of UTF-8 texts, for C and for every language that calls C: a lexicon, a tokenizer a thread, one call for one
/// text or for many, flat arrays back. Compiles as C99 and as C++.
///
///     tavo_failure_t failure = {sizeof failure};
///     tavo_lexicon_t* lexicon = tavo_lexicon_open(NULL, NULL, &failure);
///     tavo_tokenizer_t* tokenizer = tavo_tokenizer_new(lexicon, NULL, &failure);
///     tavo_tokens_t tokens = {sizeof tokens};
///     if (tavo_tokenize(tokenizer, text, bytes, TAVO_READING, &tokens, &failure) == 0)
///         for (size_t i = 0; i < tokens.token_count; ++i) ...
///
/// CONVENTIONS
///
/// Texts are UTF-8, whatever their bytes; lengths are in bytes. Paths are zero-terminated.
///
/// Structs. The caller sets `size` to sizeof the struct before the call; a library that knows more members than the
/// caller leaves the others alone.
///
/// Errors. A function that returns an int returns 0, or one of the codes of <tavo/tavo.h>; one that returns a
/// pointer returns null. Code and text (what, where, what to do) come in the failure, which may be null. Nothing is
/// printed, and nothing global is changed.
///
/// Threads. A lexicon may be used by all threads at once. A tokenizer belongs to one thread at a time.
///
/// Lifetimes. A tokenizer keeps its lexicon: that may be freed before. What a call fills in belongs to the tokenizer
/// and lives until its next call.
#ifndef TAVO_TEXT_H
#define TAVO_TEXT_H

#include <tavo/export.h>

#include <stddef.h>  // NOLINT(modernize-deprecated-headers): for C too
#include <stdint.h>  // NOLINT(modernize-deprecated-headers): for C too

#ifdef __cplusplus
extern "C" {
#endif

typedef struct tavo_lexicon_t tavo_lexicon_t;
typedef struct tavo_tokenizer_t tavo_tokenizer_t;

/// What went wrong.
typedef struct tavo_failure_t {
    size_t size;
    int code;         ///< 0 after success
    char text[2044];  ///< zero-terminated UTF-8, cut where it is longer
} tavo_failure_t;

/// As TAVO::LexiconOptions; null pointers stand for what is not to be changed.
typedef struct tavo_lexicon_options_t {
    size_t size;
    char const* const* dictionaries;  ///< asked before those of the lexicon
    size_t dictionary_count;
    char const* comment_rules;      ///< path; "none": none
    char const* reduce_rules;       ///< path; "none": none
    char const* const* mode_names;  ///< keys of an init file, such as "DivideWord"
    int const* mode_values;         ///< one for each
    size_t mode_count;
} tavo_lexicon_options_t;

/// A file of a lexicon in memory, as TAVO::LexiconFile: aligned to 8 bytes, and it must stay.
typedef struct tavo_lexicon_file_t {
    char const* name;
    void const* bytes;
    size_t byte_count;
} tavo_lexicon_file_t;

/// Opens a folder with a lexicon, an init file or, when @p path is null, the first lexicon found
/// (TAVO::Lexicon::places).
TAVO_EXPORT tavo_lexicon_t* tavo_lexicon_open(char const* path, tavo_lexicon_options_t const* options,
                                              tavo_failure_t* failure);
TAVO_EXPORT tavo_lexicon_t* tavo_lexicon_open_memory(tavo_lexicon_file_t const* files, size_t count,
                                                     tavo_lexicon_options_t const* options, tavo_failure_t* failure);
/// Another handle, of the same lexicon as its files are now.
TAVO_EXPORT tavo_lexicon_t* tavo_lexicon_reloaded(tavo_lexicon_t const* lexicon, tavo_failure_t* failure);
/// Writes 16 hexadecimal digits and a zero byte: equal for lexicons that give equal analyses.
TAVO_EXPORT int tavo_lexicon_fingerprint(tavo_lexicon_t const* lexicon, char digits[17], tavo_failure_t* failure);
/// Null is allowed.
TAVO_EXPORT void tavo_lexicon_free(tavo_lexicon_t* lexicon);

typedef struct tavo_tokenizer_options_t {
    size_t size;
    int keep_blanks;  ///< 1: words of blanks alone come out, too; line breaks never do
} tavo_tokenizer_options_t;

/// @p options may be null.
TAVO_EXPORT tavo_tokenizer_t* tavo_tokenizer_new(tavo_lexicon_t const* lexicon, tavo_tokenizer_options_t const* options,
                                                 tavo_failure_t* failure);
/// Null is allowed.
TAVO_EXPORT void tavo_tokenizer_free(tavo_tokenizer_t* tokenizer);

/// Columns that are filled when asked for: any sum of these. The others are null.
enum {
    TAVO_POS = 0x1,         ///< part of speech, levels with ":" between them
    TAVO_POS_FIELDS = 0x2,  ///< its levels without the conjugation, tabs between them
    TAVO_CONJUGATION_TYPE = 0x4,
    TAVO_CONJUGATION_FORM = 0x8,
    TAVO_BASE = 0x10,     ///< dictionary form
    TAVO_READING = 0x20,  ///< in katakana
    TAVO_PRONUNCIATION = 0x40,
    TAVO_NORMALIZED = 0x80,       ///< base form as search compares it
    TAVO_ANNOTATION = 0x100,      ///< of tagged text
    TAVO_ADDITIONAL = 0x200,      ///< of tagged text
    TAVO_CONVERTED = 0x400,       ///< what was analysed in the place of the surface (docs/normalisation.md)
    TAVO_CHAR_OFFSETS = 0x1000,   ///< char_begin, char_end
    TAVO_UTF16_OFFSETS = 0x2000,  ///< utf16_begin, utf16_end
    TAVO_COST = 0x4000,
    TAVO_KIND = 0x8000
};

/// Bits of a token's flags.
enum {
    TAVO_TOKEN_UNKNOWN = 0x1,     ///< in no dictionary
    TAVO_TOKEN_ANNOTATION = 0x2,  ///< stands beside the text
    TAVO_TOKEN_BLANK = 0x4,       ///< blanks alone
    TAVO_TOKEN_INVALID = 0x8      ///< holds bytes that are not UTF-8
};

/// Values of kind: of which characters a word is, told by its first one.
enum {
    TAVO_KIND_OTHER,
    TAVO_KIND_KANJI,
    TAVO_KIND_HIRAGANA,
    TAVO_KIND_KATAKANA,
    TAVO_KIND_LATIN,
    TAVO_KIND_GREEK,
    TAVO_KIND_CYRILLIC,
    TAVO_KIND_HANGUL,
    TAVO_KIND_LETTER,
    TAVO_KIND_DIGIT,
    TAVO_KIND_SYMBOL,
    TAVO_KIND_EMOJI,
    TAVO_KIND_BLANK,
    TAVO_KIND_INVALID
};

/// Tokens as columns, one element a token. Positions count from the beginning of the token's text.
typedef struct tavo_tokens_t {
    size_t size;
    size_t text_count;   ///< texts, or analyses of one
    size_t token_count;  ///< of all texts
    uint32_t const*
        first_of_text;      ///< text_count + 1 elements: the tokens of text i are first_of_text[i] up to [i + 1]
    uint32_t const* begin;  ///< in bytes
    uint32_t const* end;
    uint64_t const* word;  ///< TAVO::Token::wordId: the dictionary's word, 0 when no dictionary holds it
    uint8_t const* flags;

    // Asked for.
    uint32_t const* char_begin;  ///< in characters; a byte that is not UTF-8 counts as one
    uint32_t const* char_end;
    uint32_t const* utf16_begin;
    uint32_t const* utf16_end;
    int32_t const* cost;
    uint8_t const* kind;
    // Strings by number.
    uint32_t const* pos;
    uint32_t const* pos_fields;
    uint32_t const* conjugation_type;
    uint32_t const* conjugation_form;
    uint32_t const* base;
    uint32_t const* reading;
    uint32_t const* pronunciation;
    uint32_t const* normalized;
    uint32_t const* annotation;
    uint32_t const* additional;

    /// The strings that the numbers stand for, each distinct one once: string i is the bytes from string_offsets[i]
    /// up to string_offsets[i + 1]; number 0 is the empty one, a value that the word lacks. The table grows from
    /// call to call, and a number keeps its string while string_version stays the same: strings that were converted
    /// once need not be again. The version changes seldom, when the table begins anew to bound its memory.
    size_t string_count;
    uint32_t const* string_offsets;  ///< string_count + 1 elements
    char const* string_bytes;
    uint64_t string_version;

    /// Of N-best, one element an analysis: sums of its costs; else null.
    uint32_t const* connection_cost;
    uint32_t const* word_cost;
    /// Of tagged text the text without its tags, of a look-up the surfaces one behind the other: begin and end count
    /// in it; else null.
    char const* plain_text;
    size_t plain_text_bytes;

    uint32_t const* converted;  ///< strings by number, asked for
} tavo_tokens_t;

/// Finds the words of one text of @p bytes bytes.
TAVO_EXPORT int tavo_tokenize(tavo_tokenizer_t* tokenizer, char const* utf8, size_t bytes, unsigned fields,
                              tavo_tokens_t* out, tavo_failure_t* failure);
/// The same for many texts, which are searched together.
TAVO_EXPORT int tavo_tokenize_many(tavo_tokenizer_t* tokenizer, char const* const* texts, size_t const* bytes,
                                   size_t count, unsigned fields, tavo_tokens_t* out, tavo_failure_t* failure);
/// Up to @p n analyses of a text, best first, each like a text of its own (TAVO::Tokenizer::nBest).
TAVO_EXPORT int tavo_tokenize_nbest(tavo_tokenizer_t* tokenizer, char const* utf8, size_t bytes, int n, unsigned fields,
                                    tavo_tokens_t* out, tavo_failure_t* failure);
/// Text with tags (docs/tagged-input.md).
TAVO_EXPORT int tavo_tokenize_tagged(tavo_tokenizer_t* tokenizer, char const* utf8, size_t bytes, unsigned fields,
                                     tavo_tokens_t* out, tavo_failure_t* failure);

/// Values of @p by.
enum {
    TAVO_BY_SURFACE,       ///< words that are the text
    TAVO_BY_READING,       ///< words that read so, in hiragana or katakana
    TAVO_BY_PREFIX,        ///< words that begin with the text; with an empty text all words
    TAVO_BY_COMMON_PREFIX  ///< words that the text begins with, shortest first
};

/// Up to @p most words of the dictionaries themselves (TAVO::Tokenizer::lookUp).
TAVO_EXPORT int tavo_look_up(tavo_tokenizer_t* tokenizer, int by, char const* utf8, size_t bytes, size_t most,
                             unsigned fields, tavo_tokens_t* out, tavo_failure_t* failure);

#ifdef __cplusplus
}
#endif

#endif
