#include "text/lexicon_version.hpp"

#include "config/init_file.hpp"
#include "core/impl.hpp"
#include "text/lexicon_places.hpp"

#include <tavo/error.hpp>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <system_error>
#include <utility>

namespace TAVO {

namespace {

namespace fs = std::filesystem;

/// Keys whose values are paths; each of a dictionary may have a second one behind a comma.
constexpr char const* kPathKeys[] = {"Dic",           "ConnTable",      "CommentRule",
                                     "ReduceRule",    "PublicPartOfSP", "NumberPartOfSP",
                                     "MajorPartOfSP", "ConvertRule"};

std::string inFolder(fs::path const& folder, std::string const& path) {
    return path.empty() || path == kNoFile ? path : (folder / path).string();
}

/// Paths count from the folder of the init file.
void rebase(InitValues& values, fs::path const& folder) {
    for (char const* key : kPathKeys) {
        auto const found = values.find(key);
        if (found == values.end()) continue;
        for (std::string& value : found->second) {
            std::size_t const comma = std::string_view(key) == "Dic" ? value.find(',') : std::string::npos;
            std::string const second =
                comma == std::string::npos ? "" : "," + inFolder(folder, value.substr(comma + 1));
            value = inFolder(folder, value.substr(0, comma)) + second;
        }
    }
}

/// True when the dictionaries and the table that an init file names lie in @p folder: it was not moved since it was
/// written.
bool namesOwnFolder(InitValues const& values, fs::path const& folder) {
    for (char const* key : {"Dic", "ConnTable"}) {
        auto const found = values.find(key);
        if (found == values.end()) continue;
        for (std::string const& value : found->second) {
            std::error_code failed;
            fs::path const file = value.substr(0, value.find(','));
            if (!fs::equivalent(file.parent_path(), folder, failed)) return false;
        }
    }
    return true;
}

/// What to apply for a folder with a lexicon. Of an init file that was moved only what names no files counts: they are
/// taken by their names.
InitValues valuesOfFolder(std::string const& folder) {
    InitValues values;
    fs::path const initFile = fs::path(folder) / "tavo.init";
    std::error_code ignored;
    if (fs::exists(initFile, ignored)) values = readInitFile(initFile.string());
    rebase(values, folder);
    if (!namesOwnFolder(values, folder))
        for (char const* key : kPathKeys) values.erase(key);
    if (!values.contains("Dic")) values["Dic"] = dictionariesIn(folder);
    return values;
}

InitValues valuesOf(std::string const& path) {
    std::error_code ignored;
    if (fs::is_directory(path, ignored)) {
        if (!holdsLexicon(path))
            throw file_not_found(path +
                                 ": no lexicon: it has no SysDic and ConnTable; name the folder that "
                                 "`make lexicon` or `tavo import` made, or an init file");
        return valuesOfFolder(path);
    }
    InitValues values = readInitFile(path);
    rebase(values, fs::absolute(path, ignored).parent_path());
    return values;
}

void setValue(InitValues& values, char const* key, std::string const& value) {
    if (!value.empty()) values[key] = {value};
}

/// Names the file of a dictionary that cannot be used, which the exception itself does not.
void addDictionary(Tavo& analyser, std::string const& path) {
    constexpr char kCause[] = ": no compiled dictionary, or one of another version; make it anew";
    try {
        analyser.addDicPath(path.c_str(), true);
    } catch (invalid_dictionary_version const&) {
        throw illegal_format(path + kCause);
    } catch (invalid_dictionary_char_type const&) {
        throw illegal_format(path + kCause);
    }
}

std::string textOf(std::string const& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

}  // namespace

LexiconVersion::LexiconVersion(std::string path, LexiconOptions options)
    : path_(path.empty() ? findLexicon() : std::move(path)), options_(std::move(options)) {
    InitValues values = valuesOf(path_);
    setValue(values, "CommentRule", options_.commentRules == kNoFile ? "" : options_.commentRules);
    if (options_.commentRules == kNoFile) values.erase("CommentRule");
    setValue(values, "ReduceRule", options_.reduceRules);
    for (auto const& [key, value] : options_.modes) {
        bool const isMode =
            std::any_of(kModes.begin(), kModes.end(), [&key = key](ModeInfo const& info) { return key == info.key; });
        if (!isMode) throw std::invalid_argument("INVALID_ARGUMENT: Lexicon::open(): no mode \"" + key + "\"");
        values[key] = {std::to_string(value)};
    }
    for (std::string const& dictionary : options_.dictionaries) addDictionary(prototype_, dictionary);
    if (auto const dics = values.find("Dic"); dics != values.end())
        for (std::string const& dictionary : dics->second) addDictionary(prototype_, dictionary);
    bool const isComplete = values.contains("Dic") && values.contains("ConnTable");
    std::error_code ignored;
    std::string const folder = fs::is_directory(path_, ignored) ? path_ : isComplete ? std::string() : findLexicon();
    TavoAccess::impl(prototype_).applyInitFile(prototype_, values, path_, folder);
    prototype_.setTaggedInputMode(0);
    prototype_.setDelimitCRLFMode(1);
    prototype_.setDeleteCRLFMode(1);
}

PosTexts const& LexiconVersion::pos() const {
    std::call_once(posMade_, [this] {
        fs::path const table = prototype_.getConnTablePath();
        pos_ = std::make_unique<PosTexts const>(prototype_, textOf((table.parent_path() / "pos.fields").string()));
    });
    return *pos_;
}

}  // namespace TAVO
