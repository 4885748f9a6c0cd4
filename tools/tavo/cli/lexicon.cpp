#include "cli/lexicon.hpp"

#include "cli/init_check.hpp"

#include "cli/data_dir.hpp"
#include "cli/tool_error.hpp"

#include "config/init_file.hpp"
#include "dic/pools.hpp"
#include "lexicon/lexicon_files.hpp"
#include "text/lexicon_places.hpp"

#include <CLI/App.hpp>

#include <cstdlib>
#include <optional>
#include <system_error>
#include <utility>

namespace tool {

namespace {

namespace fs = std::filesystem;
using TAVO::dictionariesIn;
using TAVO::words::namingDictionary;
using TAVO::words::useTable;

constexpr char kPathVariable[] = "TAVO_PATH";

char const* pathVariable() {
    char const* const value = std::getenv(kPathVariable);
    return value != nullptr && *value != '\0' ? value : nullptr;
}

bool holdsLexicon(fs::path const& folder) {
    std::error_code ignored;
    return fs::exists(folder / "SysDic", ignored) && fs::exists(folder / "ConnTable", ignored);
}

/// The folder to use; a TAVO_PATH that is passed over is worth a warning.
std::optional<fs::path> findLexicon() {
    auto const folders = lexiconFolders();
    for (fs::path const& folder : folders) {
        if (!holdsLexicon(folder)) continue;
        if (pathVariable() != nullptr && folder != folders.front())
            complain("warning: no lexicon in " + folders.front().string() + " (TAVO_PATH); using " + folder.string());
        return folder;
    }
    return std::nullopt;
}

ToolError noLexicon() {
    std::string text = "no lexicon found; looked for SysDic and ConnTable in";
    for (fs::path const& folder : lexiconFolders()) text += "\n  " + folder.string();
    text +=
        "\nMake one with `make lexicon` in the source tree, or from any MeCab-format lexicon with"
        "\n  tavo import mecab DIR -o OUT"
        "\nand name it: TAVO_PATH=OUT tavo ...";
    return ToolError(ExitStatus::Data, text);
}

void addDictionaries(TAVO::Tavo& analyser, LexiconOptions const& options) {
    for (std::string const& dictionary : options.dictionaries)
        namingDictionary(dictionary, [&] { analyser.addDicPath(dictionary.c_str(), true); });
}

/// True when the files that an init file names, with absolute paths, lie in the
/// folder of the init file: it was not moved since it was written.
bool namesItsOwnFolder(fs::path const& initFile) {
    std::error_code failed;
    TAVO::InitValues const values = TAVO::readInitFile(initFile.string());
    for (char const* key : {"Dic", "ConnTable"}) {
        auto const found = values.find(key);
        if (found == values.end()) continue;
        for (std::string const& value : found->second) {
            fs::path const file = value.substr(0, value.find(','));
            if (!fs::equivalent(file.parent_path(), initFile.parent_path(), failed)) return false;
        }
    }
    return true;
}

/// Applies an init file, and tells what is wrong with it by its lines.
void openInitFile(TAVO::Tavo& analyser, std::string const& path) {
    InitFindings const found = checkInitFile(path);
    for (std::string const& warning : found.warnings) complain("warning: " + warning);
    for (std::string const& error : found.errors)
        if (&error != &found.errors.back()) complain(error);
    if (!found.errors.empty()) throw ToolError(ExitStatus::Data, found.errors.back());
    analyser.setInitFilePath(path.c_str());
}

/// A lexicon that was moved, or installed elsewhere than it was made, has paths
/// in its tavo.init that no longer hold: then its files are taken by name.
void openFolder(TAVO::Tavo& analyser, fs::path const& folder) {
    std::error_code ignored;
    fs::path const initFile = folder / "tavo.init";
    if (fs::exists(initFile, ignored) && namesItsOwnFolder(initFile)) return openInitFile(analyser, initFile.string());
    for (std::string const& path : dictionariesIn(folder.string())) analyser.addDicPath(path.c_str(), true);
    useTable(analyser, (folder / "ConnTable").string());
}

}  // namespace

void addLexiconOptions(CLI::App& app, LexiconOptions& options) {
    app.add_option("-i,--init", options.initFile,
                   "Init file with settings, dictionaries and connection table, or the folder of a lexicon")
        ->type_name("FILE");
    app.add_option("-d,--dic", options.dictionaries,
                   "Dictionary, used before those of the lexicon; with its source for rebuilding: DIC,SRC. "
                   "May be repeated")
        ->type_name("DIC[,SRC]")
        ->allow_extra_args(false);  // so that FILE may stand behind it
    app.add_option("-c,--conn", options.connTable, "Connection table; then only the dictionaries of -d are used")
        ->type_name("FILE");
}

std::vector<fs::path> lexiconFolders() {
    std::vector<fs::path> folders;
    if (char const* const folder = pathVariable()) folders.emplace_back(folder);
    // A program that was built or moved with its lexicon uses that one.
    std::error_code failed;
    fs::path const program = fs::read_symlink("/proc/self/exe", failed);
    if (!failed) folders.push_back(program.parent_path().parent_path() / "share" / "tavo");
    if (folders.empty() || folders.back() != kDataDir) folders.emplace_back(kDataDir);
    return folders;
}

void openLexicon(TAVO::Tavo& analyser, LexiconOptions const& options) {
    if (!options.connTable.empty()) {
        if (options.dictionaries.empty() && options.initFile.empty())
            throw ToolError(ExitStatus::Usage, "-c needs dictionaries: name them with -d or in the init file of -i");
        if (options.initFile.empty()) {
            useTable(analyser, options.connTable);
            return addDictionaries(analyser, options);
        }
    }
    std::error_code ignored;
    bool const namesFolder = fs::is_directory(options.initFile, ignored);
    if (namesFolder && !holdsLexicon(options.initFile))
        throw ToolError(ExitStatus::Data, options.initFile + ": no lexicon: it has no SysDic and ConnTable");
    auto const folder = namesFolder ? std::optional<fs::path>(options.initFile) : findLexicon();
    if (options.initFile.empty() && !folder) throw noLexicon();
    // The library looks here for what an init file does not name.
    if (folder) setenv(kPathVariable, folder->c_str(), 1);
    addDictionaries(analyser, options);

    if (options.initFile.empty() || namesFolder) {
        openFolder(analyser, *folder);
    } else {
        openInitFile(analyser, options.initFile);
    }
    if (options.connTable.empty()) return;
    useTable(analyser, options.connTable, namesFolder ? TAVO::InitValues() : TAVO::readInitFile(options.initFile));
}

void warnOfRefusedIndexes() {
    for (TAVO::IndexPool::Refused const& refused : TAVO::sharedPools().indexes.refused()) {
        bool const isStale = refused.fault == TAVO::IndexFault::kStale;
        complain(refused.path + (isStale ? ": is the index of other files" : ": is damaged or of another version") +
                 "; an index was made in memory. Write it anew: tavo dic index -c CONNTABLE [DIC...]");
    }
}

}  // namespace tool
