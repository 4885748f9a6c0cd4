// Lexicons and tokenizers as handles.
#include <tavo/tavo_text.h>
#include <tavo/error.hpp>
#include <tavo/tokenizer.hpp>

#include "base/utf8.hpp"
#include "text/characters.hpp"
#include "text/token_table.hpp"

#include <algorithm>
#include <cstring>
#include <stdexcept>
#include <string>
#include <vector>

using namespace TAVO;

struct tavo_lexicon_t {
    Lexicon lexicon;
};

struct tavo_tokenizer_t {
    tavo_tokenizer_t(Lexicon const& lexicon, TokenizerOptions const& options) : tokenizer(lexicon, options) {}

    Tokenizer tokenizer;
    std::vector<std::string_view> texts;
    // Columns that the table does not have.
    std::vector<std::uint64_t> word;
    std::vector<std::uint8_t> flags, kind;
    std::vector<std::int32_t> cost;
    std::vector<std::uint32_t> strings[kTokenTexts];
};

namespace {

constexpr std::size_t kFailureHead = offsetof(tavo_failure_t, text);

void tell(tavo_failure_t* failure, int code, std::string_view text) noexcept {
    if (failure == nullptr || failure->size < kFailureHead + 1) return;
    failure->code = code;
    std::size_t const room = std::min(failure->size, sizeof *failure) - kFailureHead - 1;
    std::size_t length = std::min(text.size(), room);
    // A character is not cut.
    while (length < text.size() && length != 0 && (static_cast<unsigned char>(text[length]) & 0xC0U) == 0x80) --length;
    std::memcpy(failure->text, text.data(), length);
    failure->text[length] = '\0';
}

/// Runs body(), which gives no error when it returns; its code.
template <class Body>
int attempted(tavo_failure_t* failure, Body body) noexcept {
    int code = ERROR_BAD_ALLOC;
    try {
        try {
            body();
            tell(failure, 0, "");
            return 0;
        } catch (...) {
            std::string what;
            code = currentExceptionCode(what);
            tell(failure, code, what);
        }
    } catch (...) {
        tell(failure, code, "BAD_ALLOC");  // no memory even for the error's text
    }
    return code;
}

void demand(bool holds, char const* text) {
    if (!holds) throw std::invalid_argument(std::string("INVALID_ARGUMENT: ") + text);
}

LexiconOptions optionsOf(tavo_lexicon_options_t const* given) {
    LexiconOptions options;
    if (given == nullptr) return options;
    demand(given->size >= sizeof *given, "tavo_lexicon_options_t: size is not set");
    for (std::size_t i = 0; i != given->dictionary_count; ++i)
        options.dictionaries.emplace_back(given->dictionaries[i]);
    if (given->comment_rules != nullptr) options.commentRules = given->comment_rules;
    if (given->reduce_rules != nullptr) options.reduceRules = given->reduce_rules;
    for (std::size_t i = 0; i != given->mode_count; ++i)
        options.modes.emplace_back(given->mode_names[i], given->mode_values[i]);
    return options;
}

struct StringColumn {
    unsigned field;
    TokenText text;
    std::uint32_t const* tavo_tokens_t::*column;
};
constexpr StringColumn kStringColumns[] = {
    {TAVO_POS, TokenText::Pos, &tavo_tokens_t::pos},
    {TAVO_POS_FIELDS, TokenText::PosFields, &tavo_tokens_t::pos_fields},
    {TAVO_CONJUGATION_TYPE, TokenText::ConjugationType, &tavo_tokens_t::conjugation_type},
    {TAVO_CONJUGATION_FORM, TokenText::ConjugationForm, &tavo_tokens_t::conjugation_form},
    {TAVO_BASE, TokenText::Base, &tavo_tokens_t::base},
    {TAVO_READING, TokenText::Reading, &tavo_tokens_t::reading},
    {TAVO_PRONUNCIATION, TokenText::Pronunciation, &tavo_tokens_t::pronunciation},
    {TAVO_NORMALIZED, TokenText::Normalized, &tavo_tokens_t::normalized},
    {TAVO_CONVERTED, TokenText::Converted, &tavo_tokens_t::converted},
    {TAVO_ANNOTATION, TokenText::Annotation, &tavo_tokens_t::annotation},
    {TAVO_ADDITIONAL, TokenText::Additional, &tavo_tokens_t::additional},
};

/// Calls visit(token, text) for each token.
template <class Visit>
void eachToken(TokenTable const& table, Visit visit) {
    for (std::size_t text = 0; text != table.textCount(); ++text)
        for (std::size_t token = table.firstOfText()[text]; token != table.firstOfText()[text + 1]; ++token)
            visit(token, text);
}

bool holdsInvalid(std::string_view text) noexcept {
    for (Utf8Char read{}; !text.empty(); text.remove_prefix(read.bytes)) {
        read = decodeUtf8(text);
        if (!read.valid) return true;
    }
    return false;
}

std::uint8_t flagsOf(TokenTable const& table, std::size_t token, std::string_view surface) {
    WordTable::Word const& word = table.word(token);
    bool const blank = surface.find_first_not_of(" \t\n\v\f\r") == std::string_view::npos;
    return static_cast<std::uint8_t>((word.isUnknown ? TAVO_TOKEN_UNKNOWN : 0) |
                                     (word.isAnnotation ? TAVO_TOKEN_ANNOTATION : 0) |
                                     (blank && !word.isAnnotation ? TAVO_TOKEN_BLANK : 0) |
                                     (word.isUnknown && holdsInvalid(surface) ? TAVO_TOKEN_INVALID : 0));
}

void fillColumns(tavo_tokenizer_t& handle, unsigned fields, tavo_tokens_t& out) {
    TokenTable& table = tableOf(handle.tokenizer);
    std::size_t const count = table.tokenCount();
    handle.word.resize(count);
    handle.flags.resize(count);
    eachToken(table, [&](std::size_t token, std::size_t text) {
        handle.word[token] = table.word(token).id;
        handle.flags[token] = flagsOf(table, token, table.surface(token, text));
    });
    out.word = handle.word.data();
    out.flags = handle.flags.data();
    if ((fields & TAVO_COST) != 0) {
        handle.cost.resize(count);
        for (std::size_t token = 0; token != count; ++token) handle.cost[token] = table.word(token).cost;
        out.cost = handle.cost.data();
    }
    if ((fields & TAVO_KIND) != 0) {
        handle.kind.resize(count);
        eachToken(table, [&](std::size_t token, std::size_t text) {
            handle.kind[token] = static_cast<std::uint8_t>(kindOf(table.surface(token, text)));
        });
        out.kind = handle.kind.data();
    }
    for (StringColumn const& column : kStringColumns) {
        if ((fields & column.field) == 0) continue;
        std::vector<std::uint32_t>& ids = handle.strings[static_cast<std::size_t>(column.text)];
        ids.resize(count);
        eachToken(table,
                  [&](std::size_t token, std::size_t text) { ids[token] = table.textId(token, text, column.text); });
        out.*column.column = ids.data();
    }
}

void fill(tavo_tokenizer_t& handle, unsigned fields, tavo_tokens_t& out) {
    TokenTable& table = tableOf(handle.tokenizer);
    out.text_count = table.textCount();
    out.token_count = table.tokenCount();
    out.first_of_text = table.firstOfText().data();
    out.begin = table.begin().data();
    out.end = table.end().data();
    if ((fields & TAVO_CHAR_OFFSETS) != 0) {
        out.char_begin = table.characters().begin.data();
        out.char_end = table.characters().end.data();
    }
    if ((fields & TAVO_UTF16_OFFSETS) != 0) {
        out.utf16_begin = table.utf16().begin.data();
        out.utf16_end = table.utf16().end.data();
    }
    fillColumns(handle, fields, out);
    if (!table.connectionCosts().empty()) {
        out.connection_cost = table.connectionCosts().data();
        out.word_cost = table.wordCosts().data();
    }
    if (table.hasOwnText()) {
        out.plain_text = table.text(0).data();
        out.plain_text_bytes = table.text(0).size();
    }
    StringTable::Flat const flat = table.strings().flat();
    out.string_count = table.strings().size();
    out.string_offsets = flat.offsets;
    out.string_bytes = flat.bytes;
    out.string_version = table.stringsVersion();
}

/// Empties the result, lets call(tokenizer) find tokens, and fills it in.
template <class Find>
int found(tavo_tokenizer_t* handle, unsigned fields, tavo_tokens_t* out, tavo_failure_t* failure, Find find) noexcept {
    return attempted(failure, [&] {
        demand(handle != nullptr && out != nullptr, "a null tokenizer or result");
        // Programs of before the columns behind this one have a shorter struct.
        demand(out->size >= offsetof(tavo_tokens_t, converted), "tavo_tokens_t: size is not set");
        tavo_tokens_t result{};
        result.size = out->size;
        std::size_t const known = std::min(out->size, sizeof result);
        std::memcpy(out, &result, known);
        find(handle->tokenizer);
        fill(*handle, fields, result);
        std::memcpy(out, &result, known);
    });
}

void demandText(char const* text, std::size_t bytes) { demand(text != nullptr || bytes == 0, "a null text"); }

}  // namespace

tavo_lexicon_t* tavo_lexicon_open(char const* path, tavo_lexicon_options_t const* options, tavo_failure_t* failure) {
    tavo_lexicon_t* opened = nullptr;
    attempted(failure, [&] {
        LexiconOptions const given = optionsOf(options);
        Lexicon const found = path == nullptr ? Lexicon::open(given) : Lexicon::open(path, given);
        opened = new tavo_lexicon_t{found};
    });
    return opened;
}

tavo_lexicon_t* tavo_lexicon_open_memory(tavo_lexicon_file_t const* files, size_t count,
                                         tavo_lexicon_options_t const* options, tavo_failure_t* failure) {
    tavo_lexicon_t* opened = nullptr;
    attempted(failure, [&] {
        demand(files != nullptr || count == 0, "null files");
        std::vector<LexiconFile> given;
        for (std::size_t i = 0; i != count; ++i) {
            demand(files[i].name != nullptr && (files[i].bytes != nullptr || files[i].byte_count == 0), "a null file");
            given.push_back({files[i].name, {static_cast<std::byte const*>(files[i].bytes), files[i].byte_count}});
        }
        opened = new tavo_lexicon_t{Lexicon::open(given, optionsOf(options))};
    });
    return opened;
}

int tavo_lexicon_fingerprint(tavo_lexicon_t const* lexicon, char digits[17], tavo_failure_t* failure) {
    return attempted(failure, [&] {
        demand(lexicon != nullptr && digits != nullptr, "a null lexicon or buffer");
        std::string const fingerprint = lexicon->lexicon.fingerprint();
        std::memcpy(digits, fingerprint.c_str(), fingerprint.size() + 1);
    });
}

tavo_lexicon_t* tavo_lexicon_reloaded(tavo_lexicon_t const* lexicon, tavo_failure_t* failure) {
    tavo_lexicon_t* opened = nullptr;
    attempted(failure, [&] {
        demand(lexicon != nullptr, "a null lexicon");
        opened = new tavo_lexicon_t{lexicon->lexicon.reloaded()};
    });
    return opened;
}

void tavo_lexicon_free(tavo_lexicon_t* lexicon) { delete lexicon; }

tavo_tokenizer_t* tavo_tokenizer_new(tavo_lexicon_t const* lexicon, tavo_tokenizer_options_t const* options,
                                     tavo_failure_t* failure) {
    tavo_tokenizer_t* made = nullptr;
    attempted(failure, [&] {
        demand(lexicon != nullptr, "a null lexicon");
        TokenizerOptions given;
        if (options != nullptr) {
            demand(options->size >= sizeof *options, "tavo_tokenizer_options_t: size is not set");
            given.keepBlanks = options->keep_blanks != 0;
        }
        made = new tavo_tokenizer_t(lexicon->lexicon, given);
    });
    return made;
}

void tavo_tokenizer_free(tavo_tokenizer_t* tokenizer) { delete tokenizer; }

int tavo_tokenize(tavo_tokenizer_t* tokenizer, char const* utf8, size_t bytes, unsigned fields, tavo_tokens_t* out,
                  tavo_failure_t* failure) {
    return found(tokenizer, fields, out, failure, [&](Tokenizer& user) {
        demandText(utf8, bytes);
        user.tokenize(std::string_view(utf8, bytes));
    });
}

int tavo_tokenize_many(tavo_tokenizer_t* tokenizer, char const* const* texts, size_t const* bytes, size_t count,
                       unsigned fields, tavo_tokens_t* out, tavo_failure_t* failure) {
    return found(tokenizer, fields, out, failure, [&](Tokenizer& user) {
        demand(count == 0 || (texts != nullptr && bytes != nullptr), "null texts");
        tokenizer->texts.clear();
        for (std::size_t i = 0; i != count; ++i) {
            demandText(texts[i], bytes[i]);
            tokenizer->texts.emplace_back(texts[i], bytes[i]);
        }
        user.tokenize(tokenizer->texts);
    });
}

int tavo_tokenize_nbest(tavo_tokenizer_t* tokenizer, char const* utf8, size_t bytes, int n, unsigned fields,
                        tavo_tokens_t* out, tavo_failure_t* failure) {
    return found(tokenizer, fields, out, failure, [&](Tokenizer& user) {
        demandText(utf8, bytes);
        user.nBest(std::string_view(utf8, bytes), n);
    });
}

int tavo_look_up(tavo_tokenizer_t* tokenizer, int by, char const* utf8, size_t bytes, size_t most, unsigned fields,
                 tavo_tokens_t* out, tavo_failure_t* failure) {
    return found(tokenizer, fields, out, failure, [&](Tokenizer& user) {
        demandText(utf8, bytes);
        demand(by >= TAVO_BY_SURFACE && by <= TAVO_BY_COMMON_PREFIX, "tavo_look_up: by is none of TAVO_BY_...");
        user.lookUp(std::string_view(utf8, bytes), static_cast<LookUp>(by), most);
    });
}

int tavo_tokenize_tagged(tavo_tokenizer_t* tokenizer, char const* utf8, size_t bytes, unsigned fields,
                         tavo_tokens_t* out, tavo_failure_t* failure) {
    return found(tokenizer, fields, out, failure, [&](Tokenizer& user) {
        demandText(utf8, bytes);
        user.tokenizeTagged(std::string_view(utf8, bytes));
    });
}
