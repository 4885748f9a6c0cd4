#include "lexicon/lexicon_files.hpp"

#include <tavo/error.hpp>
#include <tavo/lexicon_maker.hpp>

#include <filesystem>
#include <system_error>
#include <utility>

namespace TAVO::words {

void namingDictionary(std::string const& path, std::function<void()> const& load) {
    constexpr char kCause[] = "no compiled dictionary, or one of another version";
    try {
        load();
    } catch (invalid_dictionary_version const&) {
        throw lexicon_error(path, 0, kCause);
    } catch (invalid_dictionary_char_type const&) {
        throw lexicon_error(path, 0, kCause);
    }
}

std::string tableAt(std::string const& path) {
    std::error_code ignored;
    std::filesystem::path const given(path);
    return std::filesystem::is_directory(given, ignored) ? (given / "ConnTable").string() : path;
}

void useTable(Tavo& analyser, std::string const& table, InitValues const& named) {
    using Setter = void (Tavo::*)(char const*);
    for (auto const& [key, set] : {std::pair<char const*, Setter>{"ReduceRule", &Tavo::setReduceRulePath},
                                   {"CooccurrenceRule", &Tavo::setCooccurrenceRulePath},
                                   {"NumberPartOfSP", &Tavo::setNumberPartOfSPPath},
                                   {"EndFormRule", &Tavo::setEndFormRulePath}}) {
        if (named.contains(key)) continue;
        std::string const path = tableCompanion(table, key);
        (analyser.*set)(path.empty() ? nullptr : path.c_str());
    }
    analyser.setConnTablePath(table.c_str());
}

}  // namespace TAVO::words
