#include "lexicon.hpp"

#include "data_dir.hpp"
#include "tool_error.hpp"

#include "config/init_file.hpp"

#include <CLI/App.hpp>

#include <cstdlib>
#include <optional>
#include <system_error>

namespace tool {

namespace {

namespace fs = std::filesystem;

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

/// A lexicon that was moved, or installed elsewhere than it was made, has paths
/// in its tavo.init that no longer hold: then its files are taken by name.
void openFolder(TAVO::Tavo& analyser, fs::path const& folder) {
    std::error_code ignored;
    fs::path const initFile = folder / "tavo.init", reduceRules = folder / "reduce.rules";
    fs::path const numberList = folder / "number.list";
    if (fs::exists(initFile, ignored) && namesItsOwnFolder(initFile)) return analyser.setInitFilePath(initFile.c_str());
    for (std::string const& path : dictionariesIn(folder)) analyser.addDicPath(path.c_str(), true);
    if (fs::exists(reduceRules, ignored)) analyser.setReduceRulePath(reduceRules.c_str());
    if (fs::exists(numberList, ignored)) analyser.setNumberPartOfSPPath(numberList.c_str());
    analyser.setConnTablePath((folder / "ConnTable").c_str());
}

}  // namespace

void namingDictionary(std::string const& path, std::function<void()> const& load) {
    constexpr char kCause[] = ": no compiled dictionary, or one of another version";
    try {
        load();
    } catch (TAVO::invalid_dictionary_version const&) {
        throw ToolError(ExitStatus::Data, path + kCause);
    } catch (TAVO::invalid_dictionary_char_type const&) {
        throw ToolError(ExitStatus::Data, path + kCause);
    }
}

void addLexiconOptions(CLI::App& app, LexiconOptions& options) {
    app.add_option("-i,--init", options.initFile, "Init file with settings, dictionaries and connection table")
        ->type_name("FILE");
    app.add_option("-d,--dic", options.dictionaries,
                   "Dictionary, used before those of the lexicon; with its source for rebuilding: DIC,SRC. "
                   "May be repeated")
        ->type_name("DIC[,SRC]")
        ->allow_extra_args(false);  // so that FILE may stand behind it
    app.add_option("-c,--conn", options.connTable, "Connection table; then only the dictionaries of -d are used")
        ->type_name("FILE");
}

std::vector<std::string> dictionariesIn(fs::path const& folder) {
    std::vector<std::string> paths;
    std::error_code ignored;
    std::string name = "SysDic";
    for (int part = 2; fs::exists(folder / name, ignored); ++part) {
        paths.push_back((folder / name).string());
        name = "SysDic" + std::to_string(part);
    }
    return paths;
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
            analyser.setConnTablePath(options.connTable.c_str());
            return addDictionaries(analyser, options);
        }
    }
    auto const folder = findLexicon();
    if (options.initFile.empty() && !folder) throw noLexicon();
    // The library looks here for what an init file does not name.
    if (folder) setenv(kPathVariable, folder->c_str(), 1);
    addDictionaries(analyser, options);

    if (options.initFile.empty()) {
        openFolder(analyser, *folder);
    } else {
        analyser.setInitFilePath(options.initFile.c_str());
    }
    if (!options.connTable.empty()) analyser.setConnTablePath(options.connTable.c_str());
}

}  // namespace tool
