// Making dictionaries of word lists.
#include <tavo/tavo_compile.h>
#include <tavo/error.hpp>
#include <tavo/lexicon_maker.hpp>

#include <algorithm>
#include <cstring>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using namespace TAVO;

/// A result with what it points to.
struct CompiledWords : tavo_compiled_t {
    CompiledWords() : tavo_compiled_t{} { size = sizeof(tavo_compiled_t); }

    void deliver() {
        for (LexiconFault const& fault : list.faults) {
            files.push_back(fault.file.c_str());
            lines.push_back(fault.line);
            causes.push_back(fault.cause.c_str());
            warnings.push_back(fault.warning ? 1 : 0);
        }
        for (WordVerdict const& verdict : list.verdicts) {
            wins.push_back(verdict.wins ? 1 : 0);
            texts.push_back(verdict.text.c_str());
        }
        word_count = list.words;
        if (!list.dictionary.empty()) dictionary = reinterpret_cast<unsigned char const*>(list.dictionary.data());
        dictionary_bytes = list.dictionary.size();
        fault_count = list.faults.size();
        fault_file = files.data();
        fault_line = lines.data();
        fault_cause = causes.data();
        fault_warning = warnings.data();
        verdict_count = list.verdicts.size();
        verdict_wins = wins.data();
        verdict_text = texts.data();
    }

    WordList list;
    std::vector<char const*> files, causes, texts;
    std::vector<std::size_t> lines;
    std::vector<unsigned char> warnings, wins;
};

struct PosList : tavo_pos_list_t {
    PosList() : tavo_pos_list_t{} { size = sizeof(tavo_pos_list_t); }

    std::string message;
    std::vector<PartOfSpeech> parts;
    std::vector<char const*> names, displayNames;
};

std::string textOr(char const* text, char const* other) { return text != nullptr ? text : other; }

std::vector<std::string> textsOf(char const* const* texts, std::size_t count) {
    if (count != 0 && texts == nullptr)
        throw std::invalid_argument("INVALID_ARGUMENT: tavo_compile_words(): a count without texts");
    return {texts, texts + count};
}

WordListOptions optionsOf(tavo_compile_options_t const* given) {
    if (given == nullptr || given->size < sizeof given->size)
        throw std::invalid_argument("INVALID_ARGUMENT: tavo_compile_words(): options need their size");
    tavo_compile_options_t known{};
    std::memcpy(&known, given, std::min(given->size, sizeof known));
    if (known.lexicon == nullptr)
        throw std::invalid_argument("INVALID_ARGUMENT: tavo_compile_words(): options name no lexicon");
    WordListOptions options;
    options.connTable = known.lexicon;
    options.dictionaries = textsOf(known.dictionaries, known.dictionary_count);
    options.like = textOr(known.like, "");
    options.mustWin = textsOf(known.must_win, known.must_win_count);
    options.mecabFormat = known.mecab_format != 0;
    options.name = textOr(known.name, "words");
    options.output = textOr(known.output, "");
    if (known.progress != nullptr)
        options.progress = [known](char const* stage, std::size_t done, std::size_t total) {
            return known.progress(known.progress_data, stage, done, total) == 0;
        };
    return options;
}

/// Runs body(); a fault that ends it comes to stand behind those that are there.
template <class Body>
void compileInto(CompiledWords& result, Body body) {
    try {
        body();
        if (!result.list.made) result.code = ERROR_ILLEGAL_FORMAT;
    } catch (lexicon_error const& error) {
        result.code = ERROR_ILLEGAL_FORMAT;
        result.list.faults.push_back(error.fault());
    } catch (...) {
        LexiconFault fault;
        result.code = currentExceptionCode(fault.cause);
        result.list.faults.push_back(std::move(fault));
    }
    result.deliver();
}

}  // namespace

tavo_compiled_t* tavo_compile_words(char const* words, size_t bytes, tavo_compile_options_t const* options) {
    try {
        auto result = std::make_unique<CompiledWords>();
        compileInto(*result, [&] {
            if (words == nullptr && bytes != 0)
                throw std::invalid_argument("INVALID_ARGUMENT: tavo_compile_words(): no words");
            result->list = compileWords(std::string_view(words, bytes), optionsOf(options));
        });
        return result.release();
    } catch (...) {
        return nullptr;
    }
}

void tavo_compiled_free(tavo_compiled_t* compiled) { delete static_cast<CompiledWords*>(compiled); }

tavo_pos_list_t* tavo_pos_list(char const* lexicon) {
    try {
        auto result = std::make_unique<PosList>();
        try {
            if (lexicon == nullptr)
                throw std::invalid_argument("INVALID_ARGUMENT: tavo_pos_list(): no lexicon is named");
            result->parts = partsOfSpeech(lexicon);
            for (PartOfSpeech const& part : result->parts) {
                result->names.push_back(part.name.c_str());
                result->displayNames.push_back(part.displayName.c_str());
            }
        } catch (...) {
            result->code = currentExceptionCode(result->message);
        }
        result->error = result->message.c_str();
        result->count = result->names.size();
        result->name = result->names.data();
        result->display_name = result->displayNames.data();
        return result.release();
    } catch (...) {
        return nullptr;
    }
}

void tavo_pos_list_free(tavo_pos_list_t* list) { delete static_cast<PosList*>(list); }
