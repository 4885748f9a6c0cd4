// The older functions: one analyser of the process behind a lock.
#include "api/deliver.hpp"

#include <tavo/tavo_legacy.h>

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <optional>
#include <sstream>

using namespace TAVO;
using namespace TAVO::api;

namespace {

/// A dictionary that was taken off to be remade.
struct Remade {
    std::string pathPair;
    std::size_t position;
};

struct Legacy {
    std::mutex lock;
    std::unique_ptr<Tavo> tavo;
    std::string userPath;  // of the user dictionary; empty when there is none
    std::optional<Remade> remade;
    std::string errorWhat;
};

/// Never destroyed: a host may still call when its own statics end.
Legacy& legacy() {
    static Legacy& only = *new Legacy;
    return only;
}

int recordLegacy(Legacy& state) {
    std::string what;
    int const code = currentExceptionCode(what);
    state.errorWhat = std::move(what);
    return code;
}

/// Runs body(state) as one call.
template <class Body>
int legacyCall(Body body) noexcept {
    try {
        Legacy& state = legacy();
        std::lock_guard const turn(state.lock);
        state.errorWhat.clear();
        try {
            return body(state);
        } catch (...) {
            return recordLegacy(state);
        }
    } catch (...) {
        return ERROR_BAD_ALLOC;  // no memory even for the error's text
    }
}

/// The same as body(state, analyser) for functions that need the analyser; 0 unless the body tells.
template <class Body>
int analyserCall(char const* function, bool argumentsHold, Body body) noexcept {
    return legacyCall([&](Legacy& state) -> int {
        if (!state.tavo) throw tavo_not_ready("No analyser: Need to call tavoinit()");
        require(argumentsHold, function);
        if constexpr (std::is_void_v<decltype(body(state, *state.tavo))>)
            return body(state, *state.tavo), 0;
        else
            return body(state, *state.tavo);
    });
}

char const* variable(char const* name) {
    char const* const value = std::getenv(name);
    return value != nullptr && *value != '\0' ? value : nullptr;
}

std::string pathOf(std::string const& pathPair) { return pathPair.substr(0, pathPair.find(',')); }

bool isMapped(Tavo const& tavo) { return tavo.getMemoryMappedMode() == 1; }

/// The list of dictionaries as addDicPath takes them.
std::vector<std::string> dictionaries(Tavo const& tavo) {
    std::vector<std::string> pathPairs;
    for (int i = 0; i < tavo.getDicCount(); ++i) {
        std::string const source = tavo.getSrcPath(i);
        pathPairs.push_back(tavo.getDicPath(i) + (source.empty() ? "" : "," + source));
    }
    return pathPairs;
}

/// Replaces the list of dictionaries, or leaves it as it was.
void setDictionaries(Tavo& tavo, std::vector<std::string> const& pathPairs) {
    Tavo const before(tavo);  // keeps them loaded, too
    try {
        tavo.offDic();
        for (std::string const& pathPair : pathPairs) tavo.addDicPath(pathPair.c_str(), isMapped(tavo));
    } catch (...) {
        tavo = before;
        throw;
    }
}

/// Puts @p pathPair in the place of dictionary @p index.
void replaceAt(Tavo& tavo, int index, char const* pathPair) {
    std::vector<std::string> pathPairs = dictionaries(tavo);
    pathPairs[static_cast<std::size_t>(index)] = pathPair;
    setDictionaries(tavo, pathPairs);
}

/// Puts @p pathPair before the dictionary at @p position, or behind all.
void insertAt(Tavo& tavo, std::size_t position, std::string const& pathPair) {
    std::vector<std::string> pathPairs = dictionaries(tavo);
    pathPairs.insert(pathPairs.begin() + static_cast<std::ptrdiff_t>(std::min(position, pathPairs.size())), pathPair);
    setDictionaries(tavo, pathPairs);
}

bool isAttached(Tavo const& tavo, std::string const& path) {
    std::vector<std::string> const pathPairs = dictionaries(tavo);
    return std::any_of(pathPairs.begin(), pathPairs.end(),
                       [&](std::string const& pathPair) { return pathOf(pathPair) == path; });
}

void loadFolder(Tavo& tavo) {
    std::string folder = variable("TAVO_PATH") != nullptr ? variable("TAVO_PATH") : ".";
    if (folder.back() == '/' || folder.back() == '\\') folder.pop_back();
    std::string const init = folder + "/tavo.ini";
    try {
        tavo.setInitFilePath(init.c_str());
        return;
    } catch (file_not_found const& missing) {
        // Another missing file is named by the init file, which therefore exists.
        if (missing.what() != std::string(file_not_found(init).what())) throw;
    }
    tavo.addDicPath((folder + "/SysDic").c_str(), isMapped(tavo));
    tavo.setConnTablePath((folder + "/ConnTable").c_str());
}

/// A mode and its setter.
struct Option {
    char const* key;
    void (Tavo::*set)(int);
};
constexpr Option kOptions[] = {
    {"MemoryMapped", &Tavo::setMemoryMappedMode}, {"Cooccurrence", &Tavo::setCooccurrenceMode},
    {"TaggedInput", &Tavo::setTaggedInputMode},   {"DeleteSlash", &Tavo::setDeleteSlashMode},
    {"InputConvert", &Tavo::setInputConvertMode}, {"OutputConvert", &Tavo::setOutputConvertMode},
    {"DivideWord", &Tavo::setDivideWordMode},     {"DelimitCRLF", &Tavo::setDelimitCRLFMode},
    {"DeleteCRLF", &Tavo::setDeleteCRLFMode},     {"AlphabetCapitalize", &Tavo::setAlphabetCapitalizeMode},
    {"Alternative", &Tavo::setAlternativeMode},   {"ReduceUndef", &Tavo::setReduceUndefMode},
    {"ReduceChar", &Tavo::setReduceCharMode},     {"ReduceNumber", &Tavo::setReduceNumberMode},
};
struct TextOption {
    char const* key;
    void (Tavo::*set)(char const*);
};
constexpr TextOption kTextOptions[] = {
    {"OutputFormat", &Tavo::setOutputFormat}, {"EOS", &Tavo::setEOS}, {"NullString", &Tavo::setNullString}};

void setOption(Tavo& tavo, std::string_view key, std::string_view value) {
    for (TextOption const& option : kTextOptions)
        if (key == option.key) return (tavo.*option.set)(std::string(value).c_str());
    for (Option const& option : kOptions) {
        if (key != option.key) continue;
        int number = 0;
        auto const [end, fault] = std::from_chars(value.data(), value.data() + value.size(), number);
        if (fault != std::errc() || end != value.data() + value.size())
            throw unknown_setting(std::string(key) + "=" + std::string(value));
        return (tavo.*option.set)(number);
    }
    throw unknown_setting(std::string(key));
}

void writeMorphemes(std::ostream& os, Tavo const& tavo, std::vector<Mrph> const& morphemes) {
    for (Mrph const& morpheme : morphemes) morpheme.output(os, tavo.getOutputFormat(), tavo.getNullString(), false);
    os << tavo.getEOS();
}

/// Delivers what write(os, tavo, sentence) writes about each sentence of a text; nothing points into the
/// text afterwards.
template <class Write>
int textOfSentences(char const* function, bool argumentsHold, char const* text, Buffer buffer,
                    int (Tavo::*analyze)(char const*, int), Write write) noexcept {
    return analyserCall(function, argumentsHold && text != nullptr && buffer.size >= 0, [&](Legacy& state, Tavo& tavo) {
        if (buffer.data != nullptr && buffer.size > 0) *buffer.data = '\0';
        std::ostringstream os;
        (tavo.*analyze)(text, textLength(std::strlen(text), function));
        for (unsigned i = 0; i < tavo.getSentenceCount(); ++i) write(os, tavo, static_cast<int>(i));
        tavo.analyze(nullptr, 0);
        bool fits = true;
        int const length = copyText(os.str(), buffer, fits, function);
        if (fits) return length;
        state.errorWhat = flatText("NOT_ENOUGH_BUFFER", function);
        return static_cast<int>(ERROR_NOT_ENOUGH_BUFFER);
    });
}

}  // namespace

int tavoinit(void) {
    return legacyCall([](Legacy& state) {
        auto made = std::make_unique<Tavo>();
        char const* const user = variable("TAVO_PATH_USR");
        if (user != nullptr) made->addDicPath(user, isMapped(*made));
        loadFolder(*made);
        if (char const* const rules = variable("TAVO_CONVERT")) made->setConvertRulePath(rules);
        if (char const* const rules = variable("TAVO_REDUCE")) made->setReduceRulePath(rules);
        state.userPath = user != nullptr ? pathOf(user) : std::string();
        state.remade.reset();
        state.tavo = std::move(made);
        return 0;
    });
}

int tavofinish(void) {
    return legacyCall([](Legacy& state) {
        state.tavo.reset();
        state.remade.reset();
        return 0;
    });
}

int tavoerror(char* buffer, int size) {
    try {
        Legacy& state = legacy();
        std::lock_guard const turn(state.lock);
        if (size < 0) return ERROR_INVALID_ARGUMENT;
        bool fits = true;
        int const length = copyText(state.errorWhat, {buffer, size}, fits, __func__);
        return fits ? length : static_cast<int>(ERROR_NOT_ENOUGH_BUFFER);
    } catch (...) {
        return ERROR_BAD_ALLOC;
    }
}

int tavooption(char const* key, char const* value) {
    return analyserCall(__func__, key != nullptr && value != nullptr,
                        [&](Legacy&, Tavo& tavo) { setOption(tavo, key, value); });
}

int tavoexec(char const* text, char* buffer, int size) {
    return textOfSentences(__func__, true, text, {buffer, size}, &Tavo::analyze,
                           [](std::ostream& os, Tavo& tavo, int sentence) { tavo.output(os, sentence); });
}

int tavonbest(char const* text, int n, char* buffer, int size) {
    return textOfSentences(__func__, n >= 0, text, {buffer, size}, &Tavo::analyzeNBest,
                           [n](std::ostream& os, Tavo& tavo, int sentence) {
                               std::vector<std::vector<Mrph>> analyses;
                               tavo.getResultNBest(analyses, sentence, n);
                               for (auto const& morphemes : analyses) writeMorphemes(os, tavo, morphemes);
                           });
}

int tavogetdicform(char const* text, char* buffer, int size) {
    return textOfSentences(__func__, true, text, {buffer, size}, &Tavo::analyze,
                           [](std::ostream& os, Tavo& tavo, int sentence) {
                               std::vector<Mrph> morphemes;
                               tavo.getResult(morphemes, sentence);
                               if (sentence == 0 && !morphemes.empty()) os << morphemes.front().getEndForm(true);
                           });
}

int tavoattach(char const* dictionary) {
    return analyserCall(__func__, dictionary != nullptr,
                        [&](Legacy&, Tavo& tavo) { tavo.addDicPath(dictionary, isMapped(tavo)); });
}

int tavodetach(char const* path) {
    return analyserCall(__func__, path != nullptr, [&](Legacy&, Tavo& tavo) { tavo.offDic(path); });
}

int tavosysjisho(char const* dictionary) {
    return analyserCall(__func__, dictionary != nullptr, [&](Legacy& state, Tavo& tavo) {
        int const count = tavo.getDicCount();
        bool const onlyUsers = count == 0 || (count == 1 && tavo.getDicPath(0) == state.userPath);
        if (onlyUsers)
            tavo.addDicPath(dictionary, isMapped(tavo));
        else
            replaceAt(tavo, count - 1, dictionary);
    });
}

int tavousrjisho(char const* dictionary) {
    return analyserCall(__func__, true, [&](Legacy& state, Tavo& tavo) {
        bool const hasOne = !state.userPath.empty() && isAttached(tavo, state.userPath);
        if (dictionary == nullptr) {
            if (hasOne) tavo.offDic(state.userPath.c_str());
        } else if (hasOne) {
            replaceAt(tavo, tavo.getDicIndex(state.userPath.c_str()), dictionary);
        } else {
            insertAt(tavo, 0, dictionary);
        }
        state.userPath = dictionary != nullptr ? pathOf(dictionary) : std::string();
    });
}

int tavoreplace(char const* path, char const* dictionary) {
    return analyserCall(__func__, path != nullptr && dictionary != nullptr, [&](Legacy& state, Tavo& tavo) {
        replaceAt(tavo, tavo.getDicIndex(path), dictionary);
        if (path == state.userPath) state.userPath = pathOf(dictionary);
    });
}

int tavoremake_start(char const* path) {
    return analyserCall(__func__, path != nullptr, [&](Legacy& state, Tavo& tavo) {
        if (state.remade) throw std::logic_error("LOGIC_ERROR: tavoremake_start(): " + state.remade->pathPair);
        auto const position = static_cast<std::size_t>(tavo.getDicIndex(path));
        Remade remade{dictionaries(tavo)[position], position};
        tavo.offDic(path);
        state.remade = std::move(remade);
    });
}

int tavoremake_end(void) {
    return analyserCall(__func__, true, [](Legacy& state, Tavo& tavo) {
        if (!state.remade) throw std::logic_error("LOGIC_ERROR: tavoremake_end()");
        insertAt(tavo, state.remade->position, state.remade->pathPair);
        std::string const path = pathOf(state.remade->pathPair);
        state.remade.reset();
        return tavo.updateDic(path.c_str());
    });
}
